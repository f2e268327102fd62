#ifndef CORVANE_TESTS_SUPPORT_FAULT_PROXY_H
#define CORVANE_TESTS_SUPPORT_FAULT_PROXY_H

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <list>
#include <mutex>
#include <ostream>
#include <string>
#include <thread>
#include <vector>

namespace corvane::test {

enum class Way { kToServer, kToClient };

/// What happens to a connection as soon as `after` bytes have gone the given way; nothing goes through after that,
/// either way.
struct Fault {
  enum class Kind {
    kNone,
    kClose,   // both ends see the connection closed in good order
    kReset,   // both ends see it reset
    kSwallow  // half open: both ends stay open, and what they send is dropped
  };
  Kind kind = Kind::kNone;
  Way way = Way::kToServer;
  std::uint64_t after = 0;
};
std::ostream& operator<<(std::ostream& out, Fault const& fault);

/// Bytes that went one way without any going the other; `end` counts from the beginning of the connection.
struct Turn {
  Way way;
  std::uint64_t end;
};

/// A TCP proxy on the loopback interface, in a thread of its own, that harms the connections which it passes on.
/// Ends all of them when it ends itself.
class FaultProxy {
 public:
  /// On a port of the kernel's choice. Throws std::runtime_error.
  FaultProxy(std::string host, std::string const& port);
  FaultProxy(FaultProxy const&) = delete;
  FaultProxy& operator=(FaultProxy const&) = delete;
  ~FaultProxy();

  std::string Port() const { return std::to_string(port_); }

  /// The next connection suffers the first fault, the one behind it the second, and so on; later ones none.
  void Arm(std::vector<Fault> faults);
  /// Passes so many bytes on at a time, each time after a pause. Holds for all connections.
  void Slice(std::size_t bytes, std::chrono::milliseconds pause = {});
  /// Passes all bytes on as they come, after a pause.
  void Delay(std::chrono::milliseconds pause) { Slice(kAll, pause); }
  /// Reads nothing any more of what comes from one side, on all connections.
  void StopReading(Way way);
  /// Resets all connections, and reads from those that come again.
  void Drop();

  /// What went through the n-th connection since Arm(), from 0.
  std::vector<Turn> Turns(std::size_t connection) const;
  /// How many connections came since Arm().
  std::size_t Connections() const;

 private:
  using Clock = std::chrono::steady_clock;
  static constexpr std::size_t kAll = 65536;

  // One side of a connection: where it is, and what came from it and waits to be passed on.
  struct Side {
    int socket = -1;  // owned
    std::string pending;
    Clock::time_point due{};
    std::uint64_t passed = 0;
    bool ended = false;  // has sent all that it will
    bool shut = false;   // its end has been passed on
  };
  struct Connection {
    Side client, server;
    Fault fault;
    std::uint64_t round;  // of arming
    std::size_t number;   // in its round
    enum class State { kPassing, kClosing, kSwallowing, kOver } state = State::kPassing;
  };

  void Serve();
  void Accept();
  // False when the connection is over.
  bool Step(Connection& connection);
  void Receive(Connection& connection, Side& from);
  bool Pass(Connection& connection, Side& from, Side& to, Way way);
  bool Strike(Connection& connection);
  bool IsRead(Connection const& connection, Side const& from) const;
  int MillisecondsToWait() const;
  void Wake() const;
  static void Close(Connection& connection);

  std::string host_;
  int serverPort_;
  int listener_ = -1;
  int wake_ = -1;  // an event counter
  int port_ = 0;

  mutable std::mutex mutex_;  // of all that follows
  bool end_ = false;
  std::uint64_t round_ = 0;
  std::vector<Fault> faults_;
  std::vector<std::vector<Turn>> turns_;
  std::size_t slice_ = kAll;
  std::chrono::milliseconds pause_{};
  bool readsFromClients_ = true;
  bool readsFromServer_ = true;
  std::list<Connection> connections_;

  std::thread thread_;
};

}  // namespace corvane::test

#endif
