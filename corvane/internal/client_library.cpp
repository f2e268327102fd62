#include "corvane/internal/client_library.h"

#include <mutex>

#include "corvane/session/internal/options.h"

namespace corvane::internal {

namespace {

constexpr unsigned kServerGone = 2006;  // CR_SERVER_GONE_ERROR
constexpr unsigned kServerLost = 2013;  // CR_SERVER_LOST

// The flag's place differs: MYSQL::reconnect in MySQL's library, MYSQL::options.reconnect in MariaDB's. Where the one
// is missing its overload drops out.
template <class Handle>
auto ClearReconnect(Handle* handle, int) -> decltype(static_cast<void>(handle->reconnect = 0)) {
  handle->reconnect = 0;
}

template <class Handle>
auto ClearReconnect(Handle* handle, long) -> decltype(static_cast<void>(handle->options.reconnect = 0)) {
  handle->options.reconnect = 0;
}

void SetSeconds(MYSQL* handle, mysql_option option, unsigned seconds) {
  if (seconds > 0) mysql_options(handle, option, &seconds);
}

void SetText(MYSQL* handle, mysql_option option, std::string const& text) {
  if (!text.empty()) mysql_options(handle, option, text.c_str());
}

#ifdef LIBMARIADB

// Here "enforced" means TLS where the server offers it, the authority is checked when one is given, and "verified"
// checks authority and name. That a connection has come to be encrypted the session checks itself.
void SetSslMode(MYSQL* handle, SslMode mode) {
  my_bool const enforced = mode >= SslMode::kPreferred ? 1 : 0;
  my_bool const verified = mode >= SslMode::kVerifyIdentity ? 1 : 0;
  mysql_options(handle, MYSQL_OPT_SSL_ENFORCE, &enforced);
  mysql_options(handle, MYSQL_OPT_SSL_VERIFY_SERVER_CERT, &verified);
}

#else

void SetSslMode(MYSQL* handle, SslMode mode) {
  unsigned number = SSL_MODE_DISABLED;
  if (mode == SslMode::kPreferred) number = SSL_MODE_PREFERRED;
  if (mode == SslMode::kRequired) number = SSL_MODE_REQUIRED;
  if (mode == SslMode::kVerifyCa) number = SSL_MODE_VERIFY_CA;
  if (mode == SslMode::kVerifyIdentity) number = SSL_MODE_VERIFY_IDENTITY;
  mysql_options(handle, MYSQL_OPT_SSL_MODE, &number);
}

#endif

}  // namespace

void EnsureClientLibrary() {
  static std::once_flag once;
  std::call_once(once, [] { mysql_library_init(0, nullptr, nullptr); });
}

std::size_t Escape(char* to, char const* bytes, std::size_t length) {
  EnsureClientLibrary();
  return mysql_escape_string(to, bytes, length);
}

void ForbidReconnect(MYSQL* handle) { ClearReconnect(handle, 0); }

void SetOptions(MYSQL* handle, SessionOptions const& options) {
  // While it connects the client library minds this limit alone, for what it reads, too.
  SetSeconds(handle, MYSQL_OPT_CONNECT_TIMEOUT,
             options.connectTimeout > 0 ? options.connectTimeout : options.readTimeout);
  SetSeconds(handle, MYSQL_OPT_READ_TIMEOUT, options.readTimeout);
  SetSeconds(handle, MYSQL_OPT_WRITE_TIMEOUT, options.writeTimeout);
  SetText(handle, MYSQL_SET_CHARSET_NAME, options.charset);
  if (options.sslMode == SslMode::kUnset) return;
  SetSslMode(handle, options.sslMode);
  if (options.sslMode == SslMode::kDisabled) return;  // MariaDB's library takes a file as a wish for TLS
  SetText(handle, MYSQL_OPT_SSL_CA, options.sslCa);
  SetText(handle, MYSQL_OPT_SSL_CERT, options.sslCert);
  SetText(handle, MYSQL_OPT_SSL_KEY, options.sslKey);
}

bool IsEncrypted(MYSQL* handle) { return mysql_get_ssl_cipher(handle) != nullptr; }

ClientError::ClientError(MYSQL* handle)
    : number(handle != nullptr ? mysql_errno(handle) : 0), text(handle != nullptr ? mysql_error(handle) : "") {}

bool IsConnectionLost(unsigned number) {
  return number == kServerGone || number == kServerLost || number == kClientOutOfSync;
}

}  // namespace corvane::internal
