#ifndef CORVANE_INTERNAL_CLIENT_LIBRARY_H
#define CORVANE_INTERNAL_CLIENT_LIBRARY_H

#include <mysql.h>

#include <cstddef>
#include <memory>

// The MySQL client library as the rest of the code sees it. What differs between the client libraries that serve is
// settled in client_library.cpp.
namespace corvane::internal {

struct SessionOptions;

/// Initialises the client library, once, whichever thread comes first. Needed before mysql_init from several threads
/// and before escaping without any connection.
void EnsureClientLibrary();

/// mysql_escape_string; returns the length written, at most 2 * length + 1 bytes with the terminating NUL.
std::size_t Escape(char* to, char const* bytes, std::size_t length);

/// Forbids the client library to reconnect by itself: a lost transaction would go unnoticed.
void ForbidReconnect(MYSQL* handle);

/// Prepares a handle for connecting as the options say; those that are not given leave it alone.
void SetOptions(MYSQL* handle, SessionOptions const& options);

/// Whether the connection uses TLS.
bool IsEncrypted(MYSQL* handle);

/// The last error of a handle; number 0 and an empty text for a null handle.
struct ClientError {
  explicit ClientError(MYSQL* handle);
  unsigned number;
  char const* text;
};

/// Whether the number says that the connection is gone (2006, 2013) or out of step for good (2014).
bool IsConnectionLost(unsigned number);

/// Error 2014 of the client library: the statement was not sent, since an earlier one is not done with.
constexpr unsigned kClientOutOfSync = 2014;

/// Error 2026 of the client library: TLS could not be agreed upon.
constexpr unsigned kClientTls = 2026;

/// Error 1217 of the server: a foreign key forbids the change.
constexpr unsigned kServerForeignKey = 1217;

struct FreeResult {
  void operator()(MYSQL_RES* result) const { mysql_free_result(result); }
};
using ResultPtr = std::unique_ptr<MYSQL_RES, FreeResult>;

}  // namespace corvane::internal

#endif
