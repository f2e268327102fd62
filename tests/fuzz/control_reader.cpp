// The control connection, and the sockets below it, with a peer on the loopback address that sends any bytes in any
// pieces and closes or resets the connection at any moment.

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <string>
#include <thread>
#include <vector>

#include "corvane/session/ardbms.h"
#include "corvane/session/tcp_socket.h"
#include "tests/fuzz/scripted.h"
#include "tests/fuzz/target.h"

namespace corvane::fuzz {
namespace {

constexpr int kPatience = 10000;  // milliseconds

enum class End { kClose, kReset, kLinger };  // kLinger: waits for the other side, when there was something to read

struct Script {
  std::vector<std::string> pieces;
  End end;

  std::string Bytes() const {
    std::string bytes;
    for (std::string const& piece : pieces) bytes += piece;
    return bytes;
  }
};

class Peer {
 public:
  Peer() : listener_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    bool const listens = bind(listener_, reinterpret_cast<sockaddr*>(&address), size) == 0 &&
                         getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &size) == 0 &&
                         listen(listener_, 8) == 0;
    Check(listens, "the peer does not listen");
    port_ = ntohs(address.sin_port);
  }
  Peer(Peer const&) = delete;
  Peer& operator=(Peer const&) = delete;
  ~Peer() { close(listener_); }

  int Port() const { return port_; }

  // Takes one connection and does what the script says; afterwards waits for the other side to close, too.
  void Serve(Script const& script) const {
    pollfd waited{listener_, POLLIN, 0};
    if (poll(&waited, 1, kPatience) <= 0) return;
    int const handle = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    if (handle < 0) return;
    int const on = 1;
    setsockopt(handle, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    // However this ends, no connection is left waiting in the system.
    linger const atOnce{1, 0};
    setsockopt(handle, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    for (std::string const& piece : script.pieces) {
      if (send(handle, piece.data(), piece.size(), MSG_NOSIGNAL) < 0) break;
    }
    if (script.end != End::kReset) {
      if (script.end == End::kClose) shutdown(handle, SHUT_WR);
      char byte = 0;
      pollfd other{handle, POLLIN, 0};
      if (poll(&other, 1, kPatience) > 0) static_cast<void>(recv(handle, &byte, 1, 0));
    }
    close(handle);
  }

 private:
  int listener_;
  int port_ = 0;
};

// While a peer serves, in a thread of its own.
class Serving {
 public:
  Serving(Peer const& peer, Script const& script) : thread_([&peer, &script] { peer.Serve(script); }) {}
  Serving(Serving const&) = delete;
  Serving& operator=(Serving const&) = delete;
  ~Serving() { thread_.join(); }

 private:
  std::thread thread_;
};

// All bytes, in pieces of at most `piece`; what was read before the connection was reset.
void BySocket(Peer const& peer, Script const& script, int piece) {
  std::string read;
  bool reset = false;
  {
    Serving const serving(peer, script);
    try {
      IO::TcpSocket socket("127.0.0.1", peer.Port());
      std::vector<char> room(static_cast<std::size_t>(piece));
      while (true) {
        if (script.end == End::kLinger && read.size() == script.Bytes().size()) break;
        IO::SelectTcpSocket select(socket, 1, kPatience);
        CheckEqual(select.Wait(), 0, "what Wait() says of bytes, of an end and of an error");
        int const got = socket.Read(room.data(), piece);
        Check(got >= 0 && got <= piece, "how many bytes were read");
        if (got == 0) break;
        read.append(room.data(), static_cast<std::size_t>(got));
      }
    } catch (IO::Exception const& error) {
      reset = true;
      Check(error.Message().findStr("Connection reset by peer") >= 0, error.what());
    }
  }
  Check(!reset || script.end == End::kReset, "an error without one");
  if (reset) {
    CheckEqual(read, script.Bytes().substr(0, read.size()), "the bytes before a reset");
  } else {
    CheckEqual(read, script.Bytes(), "the bytes");
  }
}

void BySession(Peer const& peer, Script const& script) {
  auto& client = test::ScriptedClient::Get();
  client.Reset();
  std::string message;
  {
    CapturedLog const log;
    Serving const serving(peer, script);
    try {
      ASSession session(
          {{"Host", "127.0.0.1"}, {"ControlPort", std::to_string(peer.Port())}, {"EmulateSequences", "no"}}, 0, false);
      message = "connected";
      session.Disconnect();
    } catch (AException const& error) {
      message = error.what();
    }
  }
  std::string const failed = "Failed to create a control connection to 127.0.0.1:" + std::to_string(peer.Port()) + "\n";
  bool const sent = !script.Bytes().empty();
  bool const reset = script.end == End::kReset && message.find("Connection reset by peer") != std::string::npos;
  if (reset) {
    CheckEqual(message.substr(0, failed.size()), failed, "the exception of a reset");
    CheckEqual(message.back(), '\n', "its end");
  } else if (sent) {
    CheckEqual(message, "connected", "a control connection that sends something");
  } else {
    CheckEqual(message, failed + "Muxer timeout.\n", "a control connection that sends nothing");
  }
  CheckEqual(client.Calls().empty(), message != "connected", "whether the database was not opened");
  client.Reset();
}

Target const target("control_reader", "bytes as sent; connected, refused or reset as played", [](Input input) {
  static Peer const peer;
  // A socket that fails is left open by the session: there is room for so many of them only.
  static int resets = 100;
  bool const whole = input.Flag();
  int const piece = 1 + static_cast<int>(input.Byte());
  auto const end = static_cast<End>(input.Below(3));
  Script script{{}, end};
  for (unsigned count = input.Below(8); count > 0; --count) script.pieces.push_back(input.Text());
  if (script.end == End::kLinger && script.Bytes().empty()) script.end = End::kClose;  // it would wait for ever
  if (!whole || (script.end == End::kReset && resets-- <= 0)) return BySocket(peer, script, piece);
  BySession(peer, script);
});

}  // namespace
}  // namespace corvane::fuzz
