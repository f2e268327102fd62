#ifndef CORVANE_SESSION_MYSQL_FWD_H
#define CORVANE_SESSION_MYSQL_FWD_H

// The client library's handle types, declared so that no public header needs <mysql.h>; correct before and after it.
// The tags are those of MariaDB's client library. When another client library is found, the build writes and installs
// this file with the tags of that one.
struct st_mysql;
struct st_mysql_res;
/// A connection of the client library. To use it include `<mysql.h>`.
typedef struct st_mysql MYSQL;
/// A result of the client library. To use it include `<mysql.h>`; free it with `mysql_free_result`.
typedef struct st_mysql_res MYSQL_RES;

#endif
