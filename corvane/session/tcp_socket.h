#ifndef CORVANE_SESSION_TCP_SOCKET_H
#define CORVANE_SESSION_TCP_SOCKET_H

#include <exception>

#include "corvane/data/value/str.h"

/// What a session's control connection is made of: TCP sockets.
namespace IO {

/// What the socket classes throw: the message names what failed and why.
class CORVANE_API Exception : public std::exception {
 public:
  /// A null message counts as empty.
  explicit Exception(char const* message);
  /// Copies the message.
  /// @{
  Exception(Exception const& other);
  Exception& operator=(Exception const& other);
  /// @}

  ~Exception() override;
  /// The message. Valid as long as the exception, and until it is assigned to.
  char const* what() const noexcept override;
  /// A copy of what().
  Str Message() const;

 private:
  Str message_;
};

/// A connected TCP socket, closed with the object and not passed on to programs that the process starts.
class CORVANE_API TcpSocket {
 public:
  /// Connects to the first address of `host` that answers (the loopback address for an empty host).
  /// Throws Exception when there is none. An attempt may take `seconds`, at 0 and without as long as the system
  /// lets it last; looking the name up is not counted.
  /// @{
  TcpSocket(Str const& host, int port, unsigned seconds);
  TcpSocket(Str const& host, int port);
  /// @}

  /// A socket is not copied: the descriptor is its own.
  /// @{
  TcpSocket(TcpSocket const&) = delete;
  TcpSocket& operator=(TcpSocket const&) = delete;
  /// @}

  ~TcpSocket();

  /// Waits for and reads up to `length` bytes. Returns how many, 0 when the peer has closed.
  /// Throws Exception on an error, a reset connection among them.
  int Read(void* to, int length);
  /// The file descriptor; stays the socket's.
  int Handle() const { return handle_; }

 private:
  int handle_;
};

/// Waits for a descriptor to become readable (poll(2)); throws Exception on an error.
/// Returns 1 when nothing has happened within `milliseconds`, an interrupting signal included, else 0.
CORVANE_API int WaitReadable(int handle, int milliseconds);

/// Waits on a socket that outlives it.
template <class Socket>
class Select {
 public:
  /// `mode` 1: for something to read, the only mode there is.
  Select(Socket& socket, int /*mode*/, int milliseconds) : socket_(socket), milliseconds_(milliseconds) {}

  /// 1 when nothing has happened yet, 0 when the socket is ready: data, end of file or an error to be read.
  /// Throws Exception when waiting itself fails.
  int Wait() { return WaitReadable(socket_.Handle(), milliseconds_); }

 private:
  Socket& socket_;
  int milliseconds_;
};

/// Waits on a TcpSocket.
using SelectTcpSocket = Select<TcpSocket>;

}  // namespace IO

#endif
