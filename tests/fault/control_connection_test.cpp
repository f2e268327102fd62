// The control connection, to a real peer on the loopback address.

#include <arpa/inet.h>
#include <dirent.h>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <pthread.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdint>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "corvane/session/tcp_socket.h"
#include "tests/support/scripted_session.h"

namespace corvane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

// The longest that a test waits for what is to happen, and how long it looks whether something does not.
constexpr int kPatience = 10000;  // milliseconds
constexpr int kMoment = 100;

void Pause(int milliseconds) { std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds)); }

void ReplaceAll(std::string& text, std::string const& what, std::string const& by) {
  for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size())) {
    text.replace(at, what.size(), by);
  }
}

// The peer's end of a connection; closed with the object.
class Connection {
 public:
  explicit Connection(int handle) : handle_(handle) {}
  Connection(Connection&& other) noexcept : handle_(std::exchange(other.handle_, -1)) {}
  Connection(Connection const&) = delete;
  Connection& operator=(Connection const&) = delete;
  ~Connection() { Close(); }

  void Send(std::string const& bytes) {
    if (send(handle_, bytes.data(), bytes.size(), MSG_NOSIGNAL) < 0) throw std::runtime_error("send");
  }
  // Sends no more, still listens.
  void EndSending() { shutdown(handle_, SHUT_WR); }
  void Close() {
    if (handle_ >= 0) close(std::exchange(handle_, -1));
  }
  // Closes so that the other end meets an error.
  void Reset() {
    linger const atOnce{1, 0};
    setsockopt(handle_, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    Close();
  }
  // Whether the other end is closed, now or within the time; bytes that it sent count as not closed.
  bool IsClosed(int milliseconds) {
    pollfd waited{handle_, POLLIN, 0};
    if (poll(&waited, 1, milliseconds) <= 0) return false;
    char byte = 0;
    return recv(handle_, &byte, 1, 0) <= 0;
  }

 private:
  int handle_;
};

// A socket on a free port of 127.0.0.1.
class Listener {
 public:
  Listener() : handle_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const plain = reinterpret_cast<sockaddr*>(&address);
    if (bind(handle_, plain, size) != 0 || listen(handle_, 8) != 0 || getsockname(handle_, plain, &size) != 0) {
      throw std::runtime_error("no port to listen on");
    }
    port_ = ntohs(address.sin_port);
  }
  Listener(Listener const&) = delete;
  Listener& operator=(Listener const&) = delete;
  ~Listener() { Stop(); }

  int Port() const { return port_; }
  Connection Accept() {
    pollfd waited{handle_, POLLIN, 0};
    if (poll(&waited, 1, kPatience) <= 0) throw std::runtime_error("nobody connects");
    return Connection(accept4(handle_, nullptr, nullptr, SOCK_CLOEXEC));
  }
  bool IsCalled(int milliseconds) {
    pollfd waited{handle_, POLLIN, 0};
    return poll(&waited, 1, milliseconds) > 0;
  }
  // From now on connections to the port are refused.
  void Stop() {
    if (handle_ >= 0) close(std::exchange(handle_, -1));
  }

 private:
  int handle_;
  int port_ = 0;
};

// What the peer does, in a thread of its own; waited for at the end of the object.
class Peer {
 public:
  explicit Peer(std::function<void()> act)
      : thread_([act = std::move(act)] {
          try {
            act();
          } catch (std::exception const& error) {
            ADD_FAILURE() << "peer: " << error.what();
          }
        }) {}
  Peer(Peer const&) = delete;
  Peer& operator=(Peer const&) = delete;
  ~Peer() { thread_.join(); }

 private:
  std::thread thread_;
};

std::size_t OpenDescriptors() {
  std::size_t count = 0;
  DIR* const folder = opendir("/proc/self/fd");
  while (readdir(folder) != nullptr) ++count;
  closedir(folder);
  return count;
}

class ControlConnection : public ScriptedSession {
 protected:
  Parameters WithControl(Parameters parameters = {}) {
    parameters.try_emplace("Host", "127.0.0.1");
    parameters.try_emplace("ControlPort", std::to_string(listener.Port()));
    return parameters;
  }

  // A session whose control connection is established; the peer's end of it.
  Connection Established(Parameters parameters = {}, int debugLevel = 0) {
    std::unique_ptr<Connection> connection;
    {
      Peer const peer([&] {
        connection = std::make_unique<Connection>(listener.Accept());
        connection->Send("x");
      });
      session = &Ready(WithControl(std::move(parameters)), debugLevel);
    }
    return std::move(*connection);
  }

  // The port written as "PORT".
  std::string Shown(std::string text) {
    ReplaceAll(text, std::to_string(listener.Port()), "PORT");
    return text;
  }
  Thrown Shown(Thrown thrown) { return {thrown.number, Shown(thrown.message)}; }

  Listener listener;
  ASSession* session = nullptr;
};

TEST_F(ControlConnection, MustAnswerBeforeTheDatabaseIsOpened) {
  Peer const peer([this] {
    Connection connection = listener.Accept();
    Pause(kMoment);
    EXPECT_THAT(client.Calls(), IsEmpty());
    connection.Send("x");
    EXPECT_FALSE(connection.IsClosed(kMoment));
  });
  Construct(WithControl({{"Port", "3307"}}));
  EXPECT_THAT(client.Calls(), ElementsAre("init", "connect 127.0.0.1 '' '' '' 3307", "query SET AUTOCOMMIT=0"));
}

TEST_F(ControlConnection, IsWaitedForLongerThanOneStep) {
  Peer const peer([this] {
    Connection connection = listener.Accept();
    Pause(1300);
    EXPECT_THAT(client.Calls(), IsEmpty());
    connection.Send("x");
    EXPECT_FALSE(connection.IsClosed(kMoment));
  });
  Construct(WithControl());
  EXPECT_EQ(client.OpenHandles(), 1U);
}

TEST_F(ControlConnection, IsEstablishedByAnyByte) {
  Peer const peer([this] {
    Connection connection = listener.Accept();
    connection.Send(std::string(1, '\0'));
    EXPECT_FALSE(connection.IsClosed(kMoment));
  });
  Construct(WithControl());
  EXPECT_EQ(client.OpenHandles(), 1U);
}

TEST_F(ControlConnection, IsEstablishedThoughThePeerClosesBehindItsByte) {
  Peer const peer([this] { listener.Accept().Send("x"); });
  Construct(WithControl());
  EXPECT_EQ(client.OpenHandles(), 1U);
}

TEST_F(ControlConnection, ComesFromAConnectionStringToo) {
  Peer const peer([this] {
    Connection connection = listener.Accept();
    connection.Send("x");
    EXPECT_FALSE(connection.IsClosed(kMoment));
  });
  ConstructFrom(("u:p@db/s/127.0.0.1:3307/" + std::to_string(listener.Port())).c_str());
  EXPECT_THAT(client.Calls(), ElementsAre("init", "connect 127.0.0.1 u p db 3307", "query SET AUTOCOMMIT=0", "init",
                                          "connect s u p db 0"));
}

TEST_F(ControlConnection, IsNeverWrittenToAndClosedByTheDestructor) {
  Connection connection = Established({{"AutoCommit", "on"}});
  session->Execute("SELECT 1");
  EXPECT_FALSE(connection.IsClosed(kMoment));
  Destroy();
  EXPECT_TRUE(connection.IsClosed(kPatience));
}

TEST_F(ControlConnection, ThatThePeerEndsLaterIsNotMissed) {
  Connection connection = Established();
  connection.Reset();
  session->Execute("SELECT 1");
  Destroy();
  EXPECT_THAT(client.Calls(), ElementsAre("query SELECT 1"));
}

TEST_F(ControlConnection, LogsNothingWhenItSucceeds) {
  Peer const peer([this] { listener.Accept().Send("x"); });
  EXPECT_EQ(Shown(LogOf([&] { Construct(WithControl(), 5); })),
            "SESSION ADDR CONNECTION PARAMETERS:\n"
            "  ControlPort=PORT\n"
            "  EmulateSequences=no\n"
            "  Host=127.0.0.1\n"
            "\n"
            "SESSION ADDR EXECUTE SET AUTOCOMMIT=0\n"
            "\n"
            "EXECUTE COMPLETE\n"
            "autocommit mode swithced OFF\n");
}

TEST_F(ControlConnection, TriesEveryAddressOfTheHost) {
  Peer const peer([this] { listener.Accept().Send("x"); });
  Construct(WithControl({{"Host", "localhost"}}));
  EXPECT_EQ(client.OpenHandles(), 1U);
}

TEST_F(ControlConnection, GoesToThisMachineWithoutAHost) {
  Peer const peer([this] { listener.Accept().Send("x"); });
  Construct(WithControl({{"Host", ""}}));
  EXPECT_EQ(client.OpenHandles(), 1U);
}

TEST_F(ControlConnection, PortIsReadAsALeadingNumber) {
  Peer const peer([this] { listener.Accept().Send("x"); });
  Construct(WithControl({{"ControlPort", " +" + std::to_string(listener.Port()) + "/x"}}));
  EXPECT_EQ(client.OpenHandles(), 1U);
}

TEST_F(ControlConnection, SignalsDoNotDisturbTheWait) {
  struct sigaction counted {};
  struct sigaction before {};
  static volatile std::sig_atomic_t signals;
  signals = 0;
  counted.sa_handler = [](int) { signals = signals + 1; };
  sigaction(SIGUSR1, &counted, &before);
  {
    Peer const peer([this, waiting = pthread_self()] {
      Connection connection = listener.Accept();
      for (int i = 0; i < 5; ++i) {
        Pause(20);
        pthread_kill(waiting, SIGUSR1);
      }
      Pause(20);
      EXPECT_THAT(client.Calls(), IsEmpty());
      connection.Send("x");
      EXPECT_FALSE(connection.IsClosed(kMoment));
    });
    Construct(WithControl());
  }
  sigaction(SIGUSR1, &before, nullptr);
  EXPECT_GT(signals, 0);
  EXPECT_EQ(client.OpenHandles(), 1U);
}

TEST_F(ControlConnection, WorksBeyondTheFirst1024Descriptors) {
  rlimit before{};
  getrlimit(RLIMIT_NOFILE, &before);
  if (before.rlim_max < 1200) GTEST_SKIP() << "no more than " << before.rlim_max << " descriptors allowed";
  rlimit raised = before;
  raised.rlim_cur = 1200;
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &raised), 0);
  std::vector<int> taken;
  while (taken.empty() || taken.back() < 1100) taken.push_back(open("/dev/null", O_RDONLY | O_CLOEXEC));
  {
    Peer const peer([this] { listener.Accept().Send("x"); });
    Construct(WithControl());
  }
  Destroy();
  for (int const descriptor : taken) close(descriptor);
  setrlimit(RLIMIT_NOFILE, &before);
  EXPECT_EQ(client.OpenHandles(), 1U);
}

// Without a port above 0 there is no control connection.

class ControlPort : public ScriptedSession, public testing::WithParamInterface<char const*> {};

TEST_P(ControlPort, BelowOneMeansNoControlConnection) {
  std::size_t const before = OpenDescriptors();
  Construct({{"Host", "127.0.0.1"}, {"ControlPort", GetParam()}});
  EXPECT_EQ(OpenDescriptors(), before);
  EXPECT_THAT(client.Calls(), ElementsAre("init", "connect 127.0.0.1 '' '' '' 0", "query SET AUTOCOMMIT=0"));
}

INSTANTIATE_TEST_SUITE_P(Texts, ControlPort, testing::Values("", "0", "-1", "-4000", "none", "x4000", "0x10", "+"));

TEST_F(ControlConnection, IsNotMadeWhenNoPortIsGiven) {
  std::size_t const before = OpenDescriptors();
  Construct({{"Host", "127.0.0.1"}});
  EXPECT_EQ(OpenDescriptors(), before);
}

// The peer closes without a byte.

class NoByteAtLevel : public ControlConnection, public testing::WithParamInterface<LevelLog> {};

TEST_P(NoByteAtLevel, IsLoggedFromTheLevelOfStatementsOn) {
  Peer const peer([this] { listener.Accept(); });
  EXPECT_EQ(Shown(LogOf([&] { Construct(WithControl(), GetParam().level); })), GetParam().log);
}

INSTANTIATE_TEST_SUITE_P(Levels, NoByteAtLevel,
                         testing::ValuesIn(ByLevel("", "",
                                                   "SESSION ADDR CONNECTION PARAMETERS:\n"
                                                   "  ControlPort=PORT\n"
                                                   "  EmulateSequences=no\n"
                                                   "  Host=127.0.0.1\n"
                                                   "\n"
                                                   "Failed to create a control connection to 127.0.0.1:PORT\n"
                                                   "Muxer timeout.\n",
                                                   "SESSION ADDR CONNECTION PARAMETERS:\n"
                                                   "  ControlPort=PORT\n"
                                                   "  EmulateSequences=no\n"
                                                   "  Host=127.0.0.1\n"
                                                   "\n"
                                                   "Failed to create a control connection to 127.0.0.1:PORT\n"
                                                   "Muxer timeout.\n")),
                         LevelName);

TEST_F(ControlConnection, WithoutAByteThrowsAndOpensNoDatabase) {
  Peer const peer([this] { listener.Accept(); });
  EXPECT_EQ(Shown(ThrownBy([&] { Construct(WithControl()); })),
            (Thrown{0, "Failed to create a control connection to 127.0.0.1:PORT\nMuxer timeout.\n"}));
  EXPECT_THAT(client.Calls(), IsEmpty());
}

TEST_F(ControlConnection, WithoutAByteThrowsWithTheExitFlagToo) {
  Peer const peer([this] { listener.Accept(); });
  EXPECT_EQ(Shown(ThrownBy([&] { Construct(WithControl(), 0, true); })),
            (Thrown{0, "Failed to create a control connection to 127.0.0.1:PORT\nMuxer timeout.\n"}));
}

TEST_F(ControlConnection, WithoutAByteIsClosedByTheConstructorThatFails) {
  Peer const peer([this] {
    Connection connection = listener.Accept();
    connection.EndSending();
    EXPECT_TRUE(connection.IsClosed(kPatience));
  });
  EXPECT_THROW(Construct(WithControl()), AException);
}

TEST_F(ControlConnection, WithoutAByteStaysOpenUntilTheSessionEnds) {
  Connection first = Established();
  std::unique_ptr<Connection> second;
  {
    Peer const peer([&] {
      second = std::make_unique<Connection>(listener.Accept());
      second->EndSending();
    });
    EXPECT_THROW(session->Connect(false), AException);
  }
  EXPECT_FALSE(second->IsClosed(kMoment));
  Destroy();
  EXPECT_TRUE(second->IsClosed(kPatience));
}

// The peer resets the connection, or there is none.

class ResetAtLevel : public ControlConnection, public testing::WithParamInterface<LevelLog> {};

TEST_P(ResetAtLevel, IsLoggedAtEveryLevel) {
  Peer const peer([this] { listener.Accept().Reset(); });
  EXPECT_EQ(Shown(LogOf([&] { Construct(WithControl(), GetParam().level); })), GetParam().log);
}

INSTANTIATE_TEST_SUITE_P(Levels, ResetAtLevel,
                         testing::ValuesIn(ByLevel("Failed to create a control connection to 127.0.0.1:PORT\n"
                                                   "Read failed: Connection reset by peer\n",
                                                   "Failed to create a control connection to 127.0.0.1:PORT\n"
                                                   "Read failed: Connection reset by peer\n",
                                                   "SESSION ADDR CONNECTION PARAMETERS:\n"
                                                   "  ControlPort=PORT\n"
                                                   "  EmulateSequences=no\n"
                                                   "  Host=127.0.0.1\n"
                                                   "\n"
                                                   "Failed to create a control connection to 127.0.0.1:PORT\n"
                                                   "Read failed: Connection reset by peer\n",
                                                   "SESSION ADDR CONNECTION PARAMETERS:\n"
                                                   "  ControlPort=PORT\n"
                                                   "  EmulateSequences=no\n"
                                                   "  Host=127.0.0.1\n"
                                                   "\n"
                                                   "Failed to create a control connection to 127.0.0.1:PORT\n"
                                                   "Read failed: Connection reset by peer\n")),
                         LevelName);

TEST_F(ControlConnection, ResetThrowsAndOpensNoDatabase) {
  Peer const peer([this] { listener.Accept().Reset(); });
  Thrown thrown{};
  LogOf([&] { thrown = ThrownBy([&] { Construct(WithControl()); }); });
  EXPECT_EQ(Shown(thrown), (Thrown{0,
                                   "Failed to create a control connection to 127.0.0.1:PORT\n"
                                   "Read failed: Connection reset by peer\n"}));
  EXPECT_THAT(client.Calls(), IsEmpty());
}

TEST_F(ControlConnection, RefusedThrowsAndIsLogged) {
  listener.Stop();
  Thrown thrown{};
  EXPECT_EQ(Shown(LogOf([&] { thrown = ThrownBy([&] { Construct(WithControl()); }); })),
            "Failed to create a control connection to 127.0.0.1:PORT\n"
            "Connection to 127.0.0.1:PORT failed: Connection refused\n");
  EXPECT_EQ(Shown(thrown), (Thrown{0,
                                   "Failed to create a control connection to 127.0.0.1:PORT\n"
                                   "Connection to 127.0.0.1:PORT failed: Connection refused\n"}));
  EXPECT_THAT(client.Calls(), IsEmpty());
}

TEST_F(ControlConnection, RefusedThrowsWithTheExitFlagToo) {
  listener.Stop();
  Thrown thrown{};
  LogOf([&] { thrown = ThrownBy([&] { Construct(WithControl(), 0, true); }); });
  EXPECT_EQ(Shown(thrown), (Thrown{0,
                                   "Failed to create a control connection to 127.0.0.1:PORT\n"
                                   "Connection to 127.0.0.1:PORT failed: Connection refused\n"}));
}

TEST_F(ControlConnection, ToAnUnknownHostThrowsAndIsLogged) {
  std::string const host(100, 'x');  // no label of a name is as long: nobody is asked for it
  Thrown thrown{};
  std::string const log = Shown(LogOf([&] { thrown = ThrownBy([&] { Construct(WithControl({{"Host", host}})); }); }));
  EXPECT_THAT(log, StartsWith("Failed to create a control connection to " + host + ":PORT\nConnection to " + host +
                              ":PORT failed: "));
  EXPECT_EQ(Shown(thrown), (Thrown{0, log}));
  EXPECT_THAT(client.Calls(), IsEmpty());
}

TEST_F(ControlConnection, ToAPortThatCannotBeThrowsAndIsLogged) {
  Thrown thrown{};
  std::string const log = LogOf([&] {
    thrown = ThrownBy([&] { Construct(WithControl({{"ControlPort", "65536"}})); });
  });
  EXPECT_THAT(log, StartsWith("Failed to create a control connection to 127.0.0.1:65536\n"));
  EXPECT_EQ(thrown, (Thrown{0, log}));
}

TEST_F(ControlConnection, ASocketThatFailsIsLeftOpen) {
  Connection first = Established();
  std::size_t const before = OpenDescriptors();
  {
    Peer const peer([this] { listener.Accept().Reset(); });
    LogOf([&] { session->Connect(false); });
  }
  // The first socket has been closed; the one that failed takes its place, and keeps it beyond the session's end.
  EXPECT_TRUE(first.IsClosed(kPatience));
  EXPECT_EQ(OpenDescriptors(), before);
  Destroy();
  EXPECT_EQ(OpenDescriptors(), before);
}

TEST_F(ControlConnection, ThatIsRefusedLeavesNoSocket) {
  std::size_t const before = OpenDescriptors();
  Listener closed;
  closed.Stop();
  LogOf([&] { Construct(WithControl({{"ControlPort", std::to_string(closed.Port())}})); });
  EXPECT_EQ(OpenDescriptors(), before);
}

// Reconnection.

TEST_F(ControlConnection, IsClosedBeforeItIsOpenedAnew) {
  Connection first = Established({{"AutoCommit", "on"}});
  client.FailQuery(2013, "lost").Matching("UPDATE");
  {
    Peer const peer([&] {
      Connection second = listener.Accept();
      EXPECT_TRUE(first.IsClosed(0));
      EXPECT_THAT(client.Calls(), ElementsAre("query UPDATE x"));
      second.Send("x");
      EXPECT_FALSE(second.IsClosed(kMoment));
    });
    session->Execute("UPDATE x");
  }
  EXPECT_THAT(client.CallsByHandle(),
              ElementsAre("1 query UPDATE x", "1 close", "2 init", "2 connect 127.0.0.1 '' '' '' 0",
                          "2 query SET AUTOCOMMIT=1", "2 query UPDATE x"));
}

TEST_F(ControlConnection, ThatFailsToBeOpenedAnewLeavesTheDatabaseConnectionsUntouched) {
  Connection first = Established({{"EmulateSequences", "yes"}});
  listener.Stop();
  Thrown thrown{};
  LogOf([&] { thrown = ThrownBy([&] { session->Connect(false); }); });
  EXPECT_EQ(Shown(thrown), (Thrown{0,
                                   "Failed to create a control connection to 127.0.0.1:PORT\n"
                                   "Connection to 127.0.0.1:PORT failed: Connection refused\n"}));
  EXPECT_THAT(client.Calls(), IsEmpty());
  session->Execute("UPDATE x");
  session->ExecuteSeq("UPDATE s");
  session->Rollback();
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("1 query UPDATE x", "2 query UPDATE s", "1 query ROLLBACK"));
}

TEST_F(ControlConnection, ThatFailsToBeOpenedAnewHasBeenClosed) {
  Connection first = Established();
  listener.Stop();
  LogOf([&] { session->Connect(false); });
  EXPECT_TRUE(first.IsClosed(kPatience));
}

TEST_F(ControlConnection, WithoutAByteAnewLeavesTheDatabaseConnectionsUntouched) {
  Connection first = Established();
  {
    Peer const peer([this] { listener.Accept(); });
    EXPECT_THROW(session->Connect(false), AException);
  }
  EXPECT_THAT(client.Calls(), IsEmpty());
  session->Execute("UPDATE x");
  session->Rollback();
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("1 query UPDATE x", "1 query ROLLBACK"));
}

TEST_F(ControlConnection, ThatFailsAfterALossIsTriedAgainByTheNextStatement) {
  Connection first = Established({{"AutoCommit", "on"}});
  client.FailQuery(2013, "lost").Matching("UPDATE").Times(2);
  {
    Peer const peer([this] { listener.Accept(); });
    EXPECT_EQ(Shown(ThrownBy([&] { session->Execute("UPDATE x"); })),
              (Thrown{0, "Failed to create a control connection to 127.0.0.1:PORT\nMuxer timeout.\n"}));
  }
  {
    Peer const peer([this] { listener.Accept().Send("x"); });
    session->Execute("UPDATE x");
  }
  EXPECT_THAT(client.CallsByHandle(),
              ElementsAre("1 query UPDATE x", "1 query UPDATE x", "1 close", "2 init", "2 connect 127.0.0.1 '' '' '' 0",
                          "2 query SET AUTOCOMMIT=1", "2 query UPDATE x"));
}

TEST_F(ControlConnection, StaysWhenTheDatabaseRefusesTheConnection) {
  Connection first = Established();
  std::unique_ptr<Connection> second;
  client.FailConnect(2002, "no server");
  {
    Peer const peer([&] {
      second = std::make_unique<Connection>(listener.Accept());
      second->Send("x");
    });
    EXPECT_THROW(session->Connect(false), AException);
  }
  EXPECT_FALSE(second->IsClosed(kMoment));
}

TEST_F(ControlConnection, IsNotReopenedForTheSequenceConnection) {
  Connection first = Established({{"EmulateSequences", "yes"}});
  client.FailQuery(2013, "lost");
  session->ExecuteSeq("UPDATE s");
  EXPECT_FALSE(listener.IsCalled(kMoment));
  EXPECT_FALSE(first.IsClosed(0));
}

TEST_F(ControlConnection, IsClosedByAConstructorThatTheDatabaseRefuses) {
  client.FailConnect(1045, "denied");
  Peer const peer([this] {
    Connection connection = listener.Accept();
    connection.Send("x");
    EXPECT_TRUE(connection.IsClosed(kPatience));
  });
  EXPECT_EQ(ThrownBy([&] { Construct(WithControl()); }),
            (Thrown{0, "mysql_real_connect failed\n Error 1045 (denied)\n"}));
}

// The sockets by themselves.

TEST(TcpSocket, ReadsWhatHasCome) {
  Listener listener;
  IO::TcpSocket socket("127.0.0.1", listener.Port());
  Connection connection = listener.Accept();
  connection.Send("abc");
  char bytes[3] = {};
  EXPECT_EQ(socket.Read(bytes, 2), 2);
  EXPECT_EQ(socket.Read(bytes + 2, 1), 1);
  EXPECT_EQ(std::string(bytes, 3), "abc");
}

TEST(TcpSocket, ReadsNothingOnceThePeerHasClosed) {
  Listener listener;
  IO::TcpSocket socket("127.0.0.1", listener.Port());
  listener.Accept().Close();
  char byte = 0;
  EXPECT_EQ(socket.Read(&byte, 1), 0);
}

TEST(TcpSocket, ThrowsOnceThePeerHasReset) {
  Listener listener;
  IO::TcpSocket socket("127.0.0.1", listener.Port());
  listener.Accept().Reset();
  char byte = 0;
  EXPECT_THROW(socket.Read(&byte, 1), IO::Exception);
}

TEST(TcpSocket, IsClosedWithTheObject) {
  Listener listener;
  auto socket = std::make_unique<IO::TcpSocket>("127.0.0.1", listener.Port());
  Connection connection = listener.Accept();
  EXPECT_FALSE(connection.IsClosed(0));
  socket.reset();
  EXPECT_TRUE(connection.IsClosed(kPatience));
}

TEST(TcpSocket, IsNotPassedOnToOtherPrograms) {
  Listener const listener;
  IO::TcpSocket const socket("127.0.0.1", listener.Port());
  EXPECT_EQ(fcntl(socket.Handle(), F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
}

TEST(TcpSocket, ThrowsWhereNobodyListens) {
  Listener listener;
  listener.Stop();
  EXPECT_THROW(IO::TcpSocket("127.0.0.1", listener.Port()), IO::Exception);
}

TEST(TcpSocket, ThrowsForPortsThatCannotBe) {
  EXPECT_THROW(IO::TcpSocket("127.0.0.1", 0), IO::Exception);
  EXPECT_THROW(IO::TcpSocket("127.0.0.1", -1), IO::Exception);
  EXPECT_THROW(IO::TcpSocket("127.0.0.1", 65536), IO::Exception);
}

TEST(Select, TellsThatNothingHasHappenedYet) {
  Listener listener;
  IO::TcpSocket socket("127.0.0.1", listener.Port());
  Connection const connection = listener.Accept();
  IO::Select<IO::TcpSocket> select(socket, 1, 1);
  EXPECT_EQ(select.Wait(), 1);
}

TEST(Select, TellsThatThereIsSomethingToRead) {
  Listener listener;
  IO::TcpSocket socket("127.0.0.1", listener.Port());
  Connection connection = listener.Accept();
  connection.Send("x");
  IO::SelectTcpSocket select(socket, 1, kPatience);
  EXPECT_EQ(select.Wait(), 0);
}

TEST(Select, TellsThatThePeerHasClosed) {
  Listener listener;
  IO::TcpSocket socket("127.0.0.1", listener.Port());
  listener.Accept().Close();
  IO::SelectTcpSocket select(socket, 1, kPatience);
  EXPECT_EQ(select.Wait(), 0);
}

TEST(SocketException, KeepsItsMessage) {
  std::string message = "no route";
  IO::Exception const exception(message.c_str());
  message = "changed";
  EXPECT_STREQ(exception.what(), "no route");
  EXPECT_EQ(exception.Message(), "no route");
}

TEST(SocketException, CopiesItsMessage) {
  IO::Exception const exception("no route");
  IO::Exception const copy(exception);
  EXPECT_STREQ(copy.what(), "no route");
}

TEST(SocketException, AssignsItsMessage) {
  IO::Exception exception("no route");
  exception = IO::Exception("refused");
  EXPECT_STREQ(exception.what(), "refused");
}

}  // namespace
}  // namespace corvane::test
