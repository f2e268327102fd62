#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <gmock/gmock.h>

#include <stdexcept>
#include <string>

#include "tests/support/live.h"

using corvane::test::ConnectionId;
using corvane::test::Environment;
using corvane::test::Failure;
using corvane::test::FailureOf;
using corvane::test::FetchedValue;
using corvane::test::LiveTest;
using corvane::test::Observer;
using corvane::test::Parameters;
using corvane::test::Rows;
using corvane::test::Session;
using ::testing::StartsWith;

namespace {

class Connect : public LiveTest {
 protected:
  // "user:password@schema", the beginning of a connection string.
  Str Account() const {
    Str text;
    text << User() << ":" << Password() << "@" << Schema();
    return text;
  }
  static bool HasSocket() { return !Environment("MYSQL_UNIX_PORT").empty(); }
  static bool HasDefaultPort() { return !Environment("MYSQL_TCP_PORT").empty(); }
};

using ConnectDeathTest = Connect;

// A port of the loopback address that refuses connections, and that nobody else takes meanwhile.
class ClosedPort {
 public:
  ClosedPort() : handle_(socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    auto* const anyAddress = reinterpret_cast<sockaddr*>(&address);
    if (bind(handle_, anyAddress, length) != 0 || getsockname(handle_, anyAddress, &length) != 0) {
      throw std::runtime_error("no free port");
    }
    number_ = ntohs(address.sin_port);
  }
  ClosedPort(ClosedPort const&) = delete;
  ClosedPort& operator=(ClosedPort const&) = delete;
  ~ClosedPort() { close(handle_); }
  std::string Number() const { return std::to_string(number_); }

 private:
  int handle_;
  int number_ = 0;
};

// An account that goes with the test.
class TemporaryUser {
 public:
  TemporaryUser(std::string const& schema, std::string name, std::string const& limit)
      : observer_(schema), name_(std::move(name)) {
    observer_.Run("CREATE USER '" + name_ + "'@'%' IDENTIFIED BY 'pass'");
    observer_.Run("GRANT ALL PRIVILEGES ON " + schema + ".* TO '" + name_ + "'@'%' WITH " + limit);
  }
  TemporaryUser(TemporaryUser const&) = delete;
  TemporaryUser& operator=(TemporaryUser const&) = delete;
  ~TemporaryUser() { observer_.Refusal("DROP USER '" + name_ + "'@'%'"); }
  std::string const& Name() const { return name_; }

 private:
  Observer observer_;
  std::string name_;
};

TEST_F(Connect, ParameterMapOpensTheDatabase) {
  Session session({{"Host", Host()},
                   {"Port", Port()},
                   {"UserName", User()},
                   {"Password", Password()},
                   {"Database", Schema()},
                   {"EmulateSequences", "no"}},
                  0, false);
  EXPECT_EQ(FetchedValue(session, "SELECT DATABASE()"), Schema());
}

TEST_F(Connect, ConnectionStringOpensTheDatabase) {
  Session session(Account() + "/" + Host() + ":" + Port(), 0, false);
  EXPECT_EQ(FetchedValue(session, "SELECT DATABASE()"), Schema());
}

TEST_F(Connect, ConnectionStringLeavesAutocommitOff) {
  Session session(Account() + "/" + Host() + ":" + Port(), 0, false);
  EXPECT_EQ(FetchedValue(session, "SELECT @@autocommit"), "0");
}

TEST_F(Connect, ConnectionStringOpensMainAndSequenceConnectionToTheSameHost) {
  if (!HasDefaultPort()) GTEST_SKIP() << "MYSQL_TCP_PORT is not set";
  Session session(Account() + "/127.0.0.1:" + Port(), 0, false);
  EXPECT_EQ(ConnectionHosts(), (Rows{{"127.0.0.1"}, {"127.0.0.1"}}));
}

TEST_F(Connect, ConnectionStringNamesTheSequenceHostBeforeTheHost) {
  if (!HasSocket()) GTEST_SKIP() << "MYSQL_UNIX_PORT is not set";
  Session session(Account() + "/localhost/127.0.0.1:" + Port(), 0, false);
  EXPECT_EQ(ConnectionHosts(), (Rows{{"127.0.0.1"}, {"localhost"}}));
}

TEST_F(Connect, ConnectionStringWithoutHostUsesTheSocketForBothConnections) {
  if (!HasSocket()) GTEST_SKIP() << "MYSQL_UNIX_PORT is not set";
  Session session(Account(), 0, false);
  EXPECT_EQ(ConnectionHosts(), (Rows{{"localhost"}, {"localhost"}}));
}

TEST_F(Connect, EmptyHostUsesTheSocketWhateverThePort) {
  if (!HasSocket()) GTEST_SKIP() << "MYSQL_UNIX_PORT is not set";
  Session session(With({{"Host", ""}, {"Port", "1"}}));
  EXPECT_EQ(ConnectionHosts(), (Rows{{"localhost"}}));
}

TEST_F(Connect, EmptyPortIsTheClientLibrarysDefault) {
  if (!HasDefaultPort()) GTEST_SKIP() << "MYSQL_TCP_PORT is not set";
  Session session(With({{"Host", "127.0.0.1"}, {"Port", ""}}));
  EXPECT_EQ(ConnectionHosts(), (Rows{{"127.0.0.1"}}));
}

TEST_F(Connect, PortThatIsNoNumberIsTheClientLibrarysDefault) {
  if (!HasDefaultPort()) GTEST_SKIP() << "MYSQL_TCP_PORT is not set";
  Session session(With({{"Host", "127.0.0.1"}, {"Port", "mysql"}}));
  EXPECT_EQ(ConnectionHosts(), (Rows{{"127.0.0.1"}}));
}

TEST_F(Connect, EmptyDatabaseSelectsNone) {
  Session session(With({{"Database", ""}}));
  EXPECT_EQ(FetchedValue(session, "SELECT DATABASE()"), std::nullopt);
}

TEST_F(Connect, WrongPasswordIsRefused) {
  Failure const failure = FailureOf([&] { Session session(With({{"Password", "wrong"}})); });
  EXPECT_THAT(failure.message,
              StartsWith("mysql_real_connect failed\n Error 1045 (Access denied for user '" + User() + "'@'"));
}

TEST_F(Connect, UnknownDatabaseIsRefused) {
  EXPECT_EQ(FailureOf([&] {
              Session session(With({{"Database", "corvane_no_such"}}));
            }),
            (Failure{0, "mysql_real_connect failed\n Error 1049 (Unknown database 'corvane_no_such')\n"}));
}

TEST_F(Connect, ServerThatIsNotThereIsReported) {
  ClosedPort const closed;
  Failure const failure = FailureOf([&] { Session session(With({{"Host", "127.0.0.1"}, {"Port", closed.Number()}})); });
  EXPECT_THAT(failure.message, StartsWith("mysql_real_connect failed\n Error 2002 ("));
}

TEST_F(ConnectDeathTest, ExitFlagEndsTheProcessAfterTheReport) {
  EXPECT_EXIT(ASSession(With({{"Database", "corvane_no_such"}}), 1, true), ::testing::ExitedWithCode(1),
              "mysql_real_connect failed\n Error 1049 \\(Unknown database 'corvane_no_such'\\)\n");
}

TEST_F(Connect, ModeStatementThatIsRefusedLeavesNoConnectionBehind) {
  std::string const number = Schema().substr(std::string("corvane_live").size());  // MySQL's names have 16 letters
  TemporaryUser const user(Schema(), "u" + number, "MAX_QUERIES_PER_HOUR 1");
  Parameters const account = With({{"UserName", user.Name()}, {"Password", "pass"}});
  std::string const resource = IsMariaDb() ? "max_queries_per_hour" : "max_questions";
  Session const first(account);
  EXPECT_EQ(FailureOf([&] { Session second(account); }),
            (Failure{102, "DB Error 1226 (User '" + user.Name() + "' has exceeded the '" + resource +
                              "' resource (current value: 1)) in query\n\b\nSET AUTOCOMMIT=1"}));
  EXPECT_TRUE(Becomes("SELECT COUNT(*) FROM information_schema.processlist WHERE user='" + user.Name() + "'", "1"));
}

TEST_F(Connect, AutoCommitOnSwitchesItOn) {
  Session session(With({{"AutoCommit", "on"}}));
  EXPECT_EQ(FetchedValue(session, "SELECT @@autocommit"), "1");
}

TEST_F(Connect, AutoCommitOnCountsInCapitals) {
  Session session(With({{"AutoCommit", "ON"}}));
  EXPECT_EQ(FetchedValue(session, "SELECT @@autocommit"), "1");
}

TEST_F(Connect, AnyOtherAutoCommitSwitchesItOff) {
  Session session(With({{"AutoCommit", "yes"}}));
  EXPECT_EQ(FetchedValue(session, "SELECT @@autocommit"), "0");
}

TEST_F(Connect, EmptyAutoCommitSwitchesItOff) {
  Session session(With({{"AutoCommit", ""}}));
  EXPECT_EQ(FetchedValue(session, "SELECT @@autocommit"), "0");
}

TEST_F(Connect, EmulateSequencesNoOpensOneConnectionOnly) {
  Session session(With({{"EmulateSequences", "no"}}));
  EXPECT_TRUE(ConnectionsBecome(1));
}

TEST_F(Connect, EmulateSequencesNoCountsInCapitals) {
  Session session(With({{"EmulateSequences", "No"}}));
  EXPECT_TRUE(ConnectionsBecome(1));
}

TEST_F(Connect, EmptyEmulateSequencesOpensTwoConnections) {
  if (!HasSocket()) GTEST_SKIP() << "MYSQL_UNIX_PORT is not set";
  Session session(With({{"EmulateSequences", ""}}));
  EXPECT_TRUE(ConnectionsBecome(2));
}

TEST_F(Connect, SequenceConnectionTakesItsPortFromTheEnvironment) {
  if (!HasDefaultPort() || !HasSocket()) GTEST_SKIP() << "MYSQL_TCP_PORT or MYSQL_UNIX_PORT is not set";
  Session session(With({{"Host", ""}, {"Port", "1"}, {"EmulateSequences", "yes"}, {"SequenceHost", "127.0.0.1"}}));
  EXPECT_EQ(ConnectionHosts(), (Rows{{"localhost"}, {"127.0.0.1"}}));
}

TEST_F(Connect, RefusedSequenceConnectionLeavesTheSessionUsable) {
  // The server listens on 127.0.0.1 alone.
  Session session(With({{"EmulateSequences", "yes"}, {"SequenceHost", "127.0.0.2"}}));
  EXPECT_EQ(FetchedValue(session, "SELECT 1"), "1");
}

TEST_F(Connect, AgainReplacesBothConnections) {
  if (!HasSocket()) GTEST_SKIP() << "MYSQL_UNIX_PORT is not set";
  Session session(With({{"EmulateSequences", "yes"}}));
  std::string const before = ConnectionId(session);
  session.Connect(false);
  EXPECT_NE(ConnectionId(session), before);
  EXPECT_TRUE(ConnectionsBecome(2));
}

TEST_F(Connect, AgainLeavesTheReadOnlyStateAlone) {
  Session session(With());
  session.ReadOnly();
  session.Connect(false);
  EXPECT_EQ(session.IsReadOnly(), 1);
}

TEST_F(Connect, DisconnectClosesBothConnections) {
  if (!HasSocket()) GTEST_SKIP() << "MYSQL_UNIX_PORT is not set";
  Session session(With({{"EmulateSequences", "yes"}}));
  session.Disconnect();
  EXPECT_TRUE(ConnectionsBecome(0));
}

TEST_F(Connect, PingIsAnsweredByTheServer) {
  Session session(With());
  EXPECT_TRUE(session.Ping());
}

TEST_F(Connect, PingFailsAfterDisconnect) {
  Session session(With());
  session.Disconnect();
  EXPECT_FALSE(session.Ping());
}

TEST_F(Connect, PingFailsOnAKilledConnectionAndReopensNothing) {
  Session session(With());
  Kill(ConnectionId(session));
  EXPECT_FALSE(session.Ping());
  EXPECT_TRUE(ConnectionsBecome(0));
}

}  // namespace
