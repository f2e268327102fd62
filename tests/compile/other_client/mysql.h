// A stand-in for the header of MySQL's own client library (8.0), as far as Corvane uses it: its tags, `bool` where the
// other library has my_bool, and the reconnect flag in the handle itself. For compiling only.
#ifndef CORVANE_TESTS_COMPILE_OTHER_CLIENT_MYSQL_H
#define CORVANE_TESTS_COMPILE_OTHER_CLIENT_MYSQL_H

#include <cstdint>

typedef struct MYSQL {
  void* extension;
  bool reconnect;
} MYSQL;
typedef struct MYSQL_RES MYSQL_RES;
typedef char** MYSQL_ROW;

enum enum_field_types {
  MYSQL_TYPE_SHORT = 2,
  MYSQL_TYPE_LONG = 3,
  MYSQL_TYPE_LONGLONG = 8,
  MYSQL_TYPE_INT24 = 9,
  MYSQL_TYPE_GEOMETRY = 255
};
typedef struct MYSQL_FIELD {
  char* name;
  unsigned long length;
  unsigned long max_length;
  enum_field_types type;
} MYSQL_FIELD;

enum mysql_option {
  MYSQL_OPT_CONNECT_TIMEOUT,
  MYSQL_SET_CHARSET_NAME,
  MYSQL_OPT_READ_TIMEOUT,
  MYSQL_OPT_WRITE_TIMEOUT,
  MYSQL_OPT_SSL_KEY,
  MYSQL_OPT_SSL_CERT,
  MYSQL_OPT_SSL_CA,
  MYSQL_OPT_SSL_MODE
};
enum mysql_ssl_mode {
  SSL_MODE_DISABLED = 1,
  SSL_MODE_PREFERRED,
  SSL_MODE_REQUIRED,
  SSL_MODE_VERIFY_CA,
  SSL_MODE_VERIFY_IDENTITY
};

extern "C" {
int mysql_server_init(int argc, char** argv, char** groups);
MYSQL* mysql_init(MYSQL* mysql);
MYSQL* mysql_real_connect(MYSQL* mysql, char const* host, char const* user, char const* password, char const* database,
                          unsigned port, char const* socket, unsigned long flags);
int mysql_options(MYSQL* mysql, mysql_option option, void const* value);
char const* mysql_get_ssl_cipher(MYSQL* mysql);
void mysql_close(MYSQL* mysql);
int mysql_query(MYSQL* mysql, char const* statement);
MYSQL_RES* mysql_store_result(MYSQL* mysql);
MYSQL_RES* mysql_use_result(MYSQL* mysql);
MYSQL_ROW mysql_fetch_row(MYSQL_RES* result);
unsigned long* mysql_fetch_lengths(MYSQL_RES* result);
std::uint64_t mysql_num_rows(MYSQL_RES* result);
unsigned mysql_num_fields(MYSQL_RES* result);
MYSQL_FIELD* mysql_fetch_fields(MYSQL_RES* result);
int mysql_next_result(MYSQL* mysql);
void mysql_free_result(MYSQL_RES* result);
std::uint64_t mysql_affected_rows(MYSQL* mysql);
std::uint64_t mysql_insert_id(MYSQL* mysql);
unsigned long mysql_escape_string(char* to, char const* from, unsigned long length);
unsigned mysql_errno(MYSQL* mysql);
char const* mysql_error(MYSQL* mysql);
}

#define mysql_library_init mysql_server_init

#endif
