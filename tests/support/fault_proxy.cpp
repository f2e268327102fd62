#include "tests/support/fault_proxy.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <utility>

namespace corvane::test {

namespace {

[[noreturn]] void Fail(char const* what) { throw std::runtime_error(std::string(what) + ": " + std::strerror(errno)); }

sockaddr_in Loopback(std::string const& host, int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  if (inet_pton(AF_INET, host.c_str(), &address.sin_addr) != 1) throw std::runtime_error("no IPv4 address: " + host);
  return address;
}

sockaddr const* Generic(sockaddr_in const& address) { return reinterpret_cast<sockaddr const*>(&address); }

// Small packets leave at once: what was sent as one piece arrives as one.
void SendAtOnce(int socket) {
  int const on = 1;
  setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
}

// Closing then resets the connection.
void ResetOnClose(int socket) {
  linger const none{1, 0};
  setsockopt(socket, SOL_SOCKET, SO_LINGER, &none, sizeof none);
}

}  // namespace

std::ostream& operator<<(std::ostream& out, Fault const& fault) {
  std::array<char const*, 4> const kinds{"none", "close", "reset", "swallow"};
  return out << kinds.at(static_cast<std::size_t>(fault.kind)) << " after " << fault.after << " bytes to the "
             << (fault.way == Way::kToServer ? "server" : "client");
}

FaultProxy::FaultProxy(std::string host, std::string const& port)
    : host_(std::move(host)), serverPort_(std::stoi(port)) {
  sockaddr_in address = Loopback("127.0.0.1", 0);
  socklen_t length = sizeof address;
  listener_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  wake_ = eventfd(0, EFD_CLOEXEC);
  if (listener_ < 0 || wake_ < 0 || bind(listener_, Generic(address), sizeof address) != 0 ||
      listen(listener_, SOMAXCONN) != 0 ||
      getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &length) != 0) {
    close(listener_);
    close(wake_);
    Fail("no port for the proxy");
  }
  port_ = ntohs(address.sin_port);
  thread_ = std::thread([this] { Serve(); });
}

FaultProxy::~FaultProxy() {
  {
    std::lock_guard<std::mutex> const guard(mutex_);
    end_ = true;
  }
  Wake();
  thread_.join();
  for (Connection& connection : connections_) Close(connection);
  close(listener_);
  close(wake_);
}

void FaultProxy::Arm(std::vector<Fault> faults) {
  std::lock_guard<std::mutex> const guard(mutex_);
  ++round_;
  faults_ = std::move(faults);
  turns_.clear();
}

void FaultProxy::Slice(std::size_t bytes, std::chrono::milliseconds pause) {
  std::lock_guard<std::mutex> const guard(mutex_);
  slice_ = bytes;
  pause_ = pause;
}

void FaultProxy::StopReading(Way way) {
  std::lock_guard<std::mutex> const guard(mutex_);
  (way == Way::kToServer ? readsFromClients_ : readsFromServer_) = false;
}

void FaultProxy::Drop() {
  std::lock_guard<std::mutex> const guard(mutex_);
  for (Connection& connection : connections_) {
    ResetOnClose(connection.client.socket);
    ResetOnClose(connection.server.socket);
    connection.state = Connection::State::kOver;
  }
  readsFromClients_ = readsFromServer_ = true;
  Wake();
}

std::vector<Turn> FaultProxy::Turns(std::size_t connection) const {
  std::lock_guard<std::mutex> const guard(mutex_);
  return turns_.at(connection);
}

std::size_t FaultProxy::Connections() const {
  std::lock_guard<std::mutex> const guard(mutex_);
  return turns_.size();
}

void FaultProxy::Wake() const {
  std::uint64_t const one = 1;
  if (write(wake_, &one, sizeof one) < 0) Fail("the proxy cannot be woken");
}

void FaultProxy::Close(Connection& connection) {
  if (connection.client.socket >= 0) close(std::exchange(connection.client.socket, -1));
  if (connection.server.socket >= 0) close(std::exchange(connection.server.socket, -1));
}

// A side is read when nothing of it waits, so that a slow receiver slows the sender down.
bool FaultProxy::IsRead(Connection const& connection, Side const& from) const {
  if (from.ended || !from.pending.empty()) return false;
  return &from == &connection.client ? readsFromClients_ : readsFromServer_;
}

int FaultProxy::MillisecondsToWait() const {
  if (pause_.count() == 0) return -1;
  bool const waits = std::any_of(connections_.begin(), connections_.end(), [](Connection const& connection) {
    return !connection.client.pending.empty() || !connection.server.pending.empty();
  });
  return waits ? 1 : -1;
}

void FaultProxy::Serve() {
  std::vector<pollfd> waited;
  for (;;) {
    int patience = -1;
    {
      std::lock_guard<std::mutex> const guard(mutex_);
      waited.assign({{listener_, POLLIN, 0}, {wake_, POLLIN, 0}});
      for (Connection const& connection : connections_) {
        for (Side const* const side : {&connection.client, &connection.server}) {
          Side const& other = side == &connection.client ? connection.server : connection.client;
          bool const writes = !other.pending.empty() && pause_.count() == 0;
          auto const events = static_cast<short>((IsRead(connection, *side) ? POLLIN : 0) | (writes ? POLLOUT : 0));
          // Without anything to wait for it is left out: a socket that was hung up would be reported all the time.
          waited.push_back({events != 0 ? side->socket : -1, events, 0});
        }
      }
      patience = MillisecondsToWait();
    }
    poll(waited.data(), waited.size(), patience);
    std::lock_guard<std::mutex> const guard(mutex_);
    if (end_) return;
    std::uint64_t times = 0;
    if (waited[1].revents != 0 && read(wake_, &times, sizeof times) < 0) Fail("the proxy cannot be woken");
    for (auto connection = connections_.begin(); connection != connections_.end();) {
      if (Step(*connection)) {
        ++connection;
      } else {
        Close(*connection);
        connection = connections_.erase(connection);
      }
    }
    if (waited[0].revents != 0) Accept();
  }
}

void FaultProxy::Accept() {
  Connection connection;
  connection.client.socket = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
  if (connection.client.socket < 0) return;
  connection.round = round_;
  connection.number = turns_.size();
  turns_.emplace_back();
  if (connection.number < faults_.size()) connection.fault = faults_[connection.number];
  SendAtOnce(connection.client.socket);
  // The server is on this machine: connecting takes no time, or fails at once.
  sockaddr_in const address = Loopback(host_, serverPort_);
  connection.server.socket = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  bool const harmedAtOnce = connection.fault.kind != Fault::Kind::kNone && connection.fault.after == 0;
  if (!harmedAtOnce &&
      (connection.server.socket < 0 || connect(connection.server.socket, Generic(address), sizeof address) != 0)) {
    Close(connection);
    return;
  }
  SendAtOnce(connection.server.socket);
  if (harmedAtOnce && !Strike(connection)) return Close(connection);
  connections_.push_back(std::move(connection));
}

bool FaultProxy::Step(Connection& connection) {
  if (connection.state == Connection::State::kOver) return false;
  for (Side* const side : {&connection.client, &connection.server}) {
    if (IsRead(connection, *side)) Receive(connection, *side);
  }
  if (connection.state == Connection::State::kClosing) return !connection.client.ended || !connection.server.ended;
  if (connection.state == Connection::State::kSwallowing) return true;
  if (!Pass(connection, connection.client, connection.server, Way::kToServer)) return false;
  if (connection.state != Connection::State::kPassing) return true;
  if (!Pass(connection, connection.server, connection.client, Way::kToClient)) return false;
  return !connection.client.shut || !connection.server.shut;
}

void FaultProxy::Receive(Connection& connection, Side& from) {
  std::array<char, kAll> bytes;
  ssize_t const count = recv(from.socket, bytes.data(), bytes.size(), MSG_DONTWAIT);
  if (count < 0 && (errno == EAGAIN || errno == EINTR)) return;
  if (count <= 0) {
    from.ended = true;
  } else if (connection.state == Connection::State::kPassing) {
    from.pending.assign(bytes.data(), static_cast<std::size_t>(count));
    from.due = Clock::now() + pause_;
  }
}

// Passes on what may go by now; false when the connection is over.
bool FaultProxy::Pass(Connection& connection, Side& from, Side& to, Way way) {
  if (!from.pending.empty()) {
    if (Clock::now() < from.due) return true;
    bool const harmed = connection.fault.kind != Fault::Kind::kNone && connection.fault.way == way;
    std::uint64_t const left = harmed ? connection.fault.after - from.passed : kAll;
    auto const length = static_cast<std::size_t>(std::min<std::uint64_t>({from.pending.size(), slice_, left}));
    ssize_t const sent = send(to.socket, from.pending.data(), length, MSG_DONTWAIT | MSG_NOSIGNAL);
    if (sent < 0) return errno == EAGAIN || errno == EINTR;
    from.pending.erase(0, static_cast<std::size_t>(sent));
    from.passed += static_cast<std::uint64_t>(sent);
    from.due = Clock::now() + pause_;
    if (connection.round == round_) {
      std::vector<Turn>& turns = turns_[connection.number];
      if (turns.empty() || turns.back().way != way) turns.push_back({way, 0});
      turns.back().end = from.passed;
    }
    if (harmed && from.passed == connection.fault.after) return Strike(connection);
  }
  if (from.ended && from.pending.empty() && !from.shut) {
    from.shut = true;
    shutdown(to.socket, SHUT_WR);
  }
  return true;
}

// Does the harm; false when the connection is over with it.
bool FaultProxy::Strike(Connection& connection) {
  connection.client.pending.clear();
  connection.server.pending.clear();
  switch (connection.fault.kind) {
    case Fault::Kind::kReset:
      ResetOnClose(connection.client.socket);
      ResetOnClose(connection.server.socket);
      return false;
    case Fault::Kind::kClose:
      connection.state = Connection::State::kClosing;
      shutdown(connection.client.socket, SHUT_WR);
      shutdown(connection.server.socket, SHUT_WR);
      return true;
    case Fault::Kind::kSwallow:
      connection.state = Connection::State::kSwallowing;
      return true;
    default:
      return true;
  }
}

}  // namespace corvane::test
