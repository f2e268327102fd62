#include "corvane/session/tcp_socket.h"

#include <fcntl.h>
#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <climits>
#include <cstdint>
#include <memory>
#include <system_error>

namespace IO {

namespace {

constexpr int kHighestPort = 65535;

[[noreturn]] void Throw(Str what, std::string const& why) {
  what << ": " << why;
  throw Exception(what.str());
}

std::string ErrorText(int number) { return std::generic_category().message(number); }

struct FreeAddresses {
  void operator()(addrinfo* addresses) const { freeaddrinfo(addresses); }
};
using AddressesPtr = std::unique_ptr<addrinfo, FreeAddresses>;

AddressesPtr Resolve(Str const& host, int port, Str const& what) {
  addrinfo hints{};
  hints.ai_socktype = SOCK_STREAM;
  hints.ai_flags = AI_NUMERICSERV;
  Str service;
  service << port;
  addrinfo* found = nullptr;
  int const failed = getaddrinfo(host.length() > 0 ? host.str() : nullptr, service.str(), &hints, &found);
  if (failed != 0) Throw(what, failed == EAI_SYSTEM ? ErrorText(errno) : gai_strerror(failed));
  return AddressesPtr(found);
}

// Waits for the end of an attempt to connect.
bool Finished(int handle, int milliseconds) {
  using Clock = std::chrono::steady_clock;
  auto const end = Clock::now() + std::chrono::milliseconds(milliseconds);
  pollfd waited{handle, POLLOUT, 0};
  int left = milliseconds;
  int ready = 0;
  while ((ready = poll(&waited, 1, left)) < 0) {
    if (errno != EINTR) return false;
    if (milliseconds < 0) continue;
    auto const rest = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now());
    left = static_cast<int>(std::max<std::chrono::milliseconds::rep>(rest.count(), 0));
  }
  int error = ETIMEDOUT;
  socklen_t size = sizeof error;
  if (ready > 0 && getsockopt(handle, SOL_SOCKET, SO_ERROR, &error, &size) != 0) return false;
  errno = error;
  return error == 0;
}

// Blocking again afterwards. connect(2) goes on by itself when a signal interrupts it.
bool Connected(int handle, addrinfo const& address, unsigned seconds) {
  int const flags = fcntl(handle, F_GETFL);
  if (seconds > 0) fcntl(handle, F_SETFL, flags | O_NONBLOCK);
  bool isConnected = connect(handle, address.ai_addr, address.ai_addrlen) == 0;
  if (!isConnected && (errno == EINTR || errno == EINPROGRESS)) {
    constexpr unsigned kMaxSeconds = INT_MAX / 1000;
    isConnected = Finished(handle, seconds > 0 ? static_cast<int>(std::min(seconds, kMaxSeconds)) * 1000 : -1);
  }
  if (isConnected && seconds > 0) fcntl(handle, F_SETFL, flags);
  return isConnected;
}

}  // namespace

Exception::Exception(char const* message) : message_(message) {}
Exception::Exception(Exception const& other) = default;
Exception& Exception::operator=(Exception const& other) = default;
Exception::~Exception() = default;
char const* Exception::what() const noexcept { return message_.str(); }
Str Exception::Message() const { return message_; }

TcpSocket::TcpSocket(Str const& host, int port, unsigned seconds) : handle_(-1) {
  Str what("Connection to ");
  what << host << ':' << port << " failed";
  if (port < 1 || port > kHighestPort) Throw(what, "no such port");
  AddressesPtr const addresses = Resolve(host, port, what);
  int error = 0;
  for (addrinfo const* address = addresses.get(); address != nullptr; address = address->ai_next) {
    handle_ = socket(address->ai_family, address->ai_socktype | SOCK_CLOEXEC, address->ai_protocol);
    if (handle_ >= 0 && Connected(handle_, *address, seconds)) return;
    error = errno;
    if (handle_ >= 0) close(handle_);
  }
  Throw(what, ErrorText(error));
}

TcpSocket::TcpSocket(Str const& host, int port) : TcpSocket(host, port, 0) {}

TcpSocket::~TcpSocket() { close(handle_); }

int TcpSocket::Read(void* to, int length) {
  while (true) {
    ssize_t const got = recv(handle_, to, length > 0 ? static_cast<std::size_t>(length) : 0, 0);
    if (got >= 0) return static_cast<int>(got);
    if (errno != EINTR) Throw("Read failed", ErrorText(errno));
  }
}

int WaitReadable(int handle, int milliseconds) {
  pollfd waited{handle, POLLIN, 0};
  int const ready = poll(&waited, 1, milliseconds);
  if (ready < 0 && errno != EINTR) Throw("Waiting failed", ErrorText(errno));
  return ready > 0 ? 0 : 1;
}

}  // namespace IO
