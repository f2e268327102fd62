#include "corvane/internal/client_library.h"

#include <mutex>

namespace corvane::internal {

namespace {

constexpr unsigned kServerGone = 2006;         // CR_SERVER_GONE_ERROR
constexpr unsigned kServerLost = 2013;         // CR_SERVER_LOST
constexpr unsigned kCommandsOutOfSync = 2014;  // CR_COMMANDS_OUT_OF_SYNC

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

ClientError::ClientError(MYSQL* handle)
    : number(handle != nullptr ? mysql_errno(handle) : 0), text(handle != nullptr ? mysql_error(handle) : "") {}

bool IsConnectionLost(unsigned number) {
  return number == kServerGone || number == kServerLost || number == kCommandsOutOfSync;
}

}  // namespace corvane::internal
