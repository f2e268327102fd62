#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <chrono>
#include <future>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/live.h"

using corvane::test::ConnectionId;
using corvane::test::Failure;
using corvane::test::FailureOf;
using corvane::test::FetchedValue;
using corvane::test::LiveTest;
using corvane::test::Session;

namespace {

class ControlConnection : public LiveTest {};

// The front-end: listens on a port of the loopback address. Waits for nothing longer than five seconds.
class FrontEnd {
 public:
  FrontEnd() : listener_(socket(AF_INET, SOCK_STREAM, 0)) {
    timeval const patience{5, 0};
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    auto* const anyAddress = reinterpret_cast<sockaddr*>(&address);
    if (setsockopt(listener_, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience) != 0 ||
        bind(listener_, anyAddress, length) != 0 || listen(listener_, 5) != 0 ||
        getsockname(listener_, anyAddress, &length) != 0) {
      throw std::runtime_error("no front-end");
    }
    port_ = std::to_string(ntohs(address.sin_port));
  }
  FrontEnd(FrontEnd const&) = delete;
  FrontEnd& operator=(FrontEnd const&) = delete;
  ~FrontEnd() {
    TurnAway();
    close(listener_);
  }

  std::string const& Port() const { return port_; }
  void Accept() { clients_.push_back(accept(listener_, nullptr, nullptr)); }
  void Admit() { EXPECT_EQ(send(clients_.back(), "!", 1, MSG_NOSIGNAL), 1); }
  void TurnAway() {
    for (int const client : clients_) close(client);
    clients_.clear();
  }
  // Whether the client closes its end.
  bool SeesTheEnd() {
    char byte = 0;
    return recv(clients_.back(), &byte, 1, 0) == 0;
  }

 private:
  int listener_;
  std::string port_;
  std::vector<int> clients_;
};

TEST_F(ControlConnection, ByteFromTheFrontEndLetsTheSessionOpen) {
  FrontEnd frontEnd;
  auto const served = std::async(std::launch::async, [&] {
    frontEnd.Accept();
    frontEnd.Admit();
  });
  Session session(With({{"Host", "127.0.0.1"}, {"ControlPort", frontEnd.Port()}}));
  EXPECT_EQ(FetchedValue(session, "SELECT 1"), "1");
}

TEST_F(ControlConnection, NothingIsOpenedBeforeTheFrontEndAnswers) {
  FrontEnd frontEnd;
  auto const served = std::async(std::launch::async, [&] {
    frontEnd.Accept();
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_TRUE(ConnectionHosts().empty());
    frontEnd.Admit();
  });
  Session const session(With({{"Host", "127.0.0.1"}, {"ControlPort", frontEnd.Port()}}));
}

TEST_F(ControlConnection, EndWithoutAByteFailsAndOpensNothing) {
  FrontEnd frontEnd;
  auto const served = std::async(std::launch::async, [&] {
    frontEnd.Accept();
    frontEnd.TurnAway();
  });
  EXPECT_EQ(
      FailureOf([&] {
        Session session(With({{"Host", "127.0.0.1"}, {"ControlPort", frontEnd.Port()}}));
      }),
      (Failure{0, "Failed to create a control connection to 127.0.0.1:" + frontEnd.Port() + "\nMuxer timeout.\n"}));
  EXPECT_TRUE(ConnectionHosts().empty());
}

TEST_F(ControlConnection, IsOpenedAnewWhenALostSessionReconnects) {
  FrontEnd frontEnd;
  auto const served = std::async(std::launch::async, [&] {
    frontEnd.Accept();
    frontEnd.Admit();
    frontEnd.Accept();
    frontEnd.Admit();
  });
  Session session(With({{"Host", "127.0.0.1"}, {"ControlPort", frontEnd.Port()}}));
  Kill(ConnectionId(session));
  EXPECT_EQ(FetchedValue(session, "SELECT 1"), "1");
}

TEST_F(ControlConnection, EndsWithTheSession) {
  FrontEnd frontEnd;
  auto const served = std::async(std::launch::async, [&] {
    frontEnd.Accept();
    frontEnd.Admit();
  });
  { Session const session(With({{"Host", "127.0.0.1"}, {"ControlPort", frontEnd.Port()}})); }
  served.wait();
  EXPECT_TRUE(frontEnd.SeesTheEnd());
}

}  // namespace
