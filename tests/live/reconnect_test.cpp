#include <gmock/gmock.h>

#include <future>
#include <string>

#include "tests/support/live.h"

using corvane::test::ConnectionId;
using corvane::test::Environment;
using corvane::test::Failure;
using corvane::test::FailureOf;
using corvane::test::FetchedValue;
using corvane::test::Item;
using corvane::test::ItemTest;
using corvane::test::Observer;
using corvane::test::OpenFiles;
using corvane::test::Rows;
using corvane::test::Session;
using ::testing::StartsWith;

namespace {

constexpr char const* kLost = "Database connection lost";

class Reconnect : public ItemTest {};
using ReconnectDeathTest = Reconnect;

// The idle connection is killed.

TEST_F(Reconnect, AutocommitRunsTheStatementOnANewConnection) {
  Session session(With());
  Kill(ConnectionId(session));
  Item const item(1, "one");
  EXPECT_EQ(session.Insert(item), 1U);
  EXPECT_EQ(StoredRows("SELECT id, name FROM item"), (Rows{{"1", "one"}}));
}

TEST_F(Reconnect, AutocommitSelectsOnANewConnection) {
  Run("INSERT INTO item VALUES (1, 'one')");
  Session session(With());
  Kill(ConnectionId(session));
  Item item(1, "");
  EXPECT_EQ(session.Select(item), 1);
  EXPECT_EQ(item.name, "one");
}

TEST_F(Reconnect, AutocommitIsOnAgain) {
  Session session(With());
  Kill(ConnectionId(session));
  EXPECT_EQ(FetchedValue(session, "SELECT @@autocommit"), "1");
}

TEST_F(Reconnect, SocketConnectionIsReopenedToo) {
  if (Environment("MYSQL_UNIX_PORT").empty()) GTEST_SKIP() << "MYSQL_UNIX_PORT is not set";
  Session session(With({{"Host", ""}}));
  Kill(ConnectionId(session));
  Item const item(1, "one");
  EXPECT_EQ(session.Insert(item), 1U);
}

TEST_F(Reconnect, TransactionIsReportedLostAndTheStatementNotRun) {
  Session session(WithTransactions());
  Kill(ConnectionId(session));
  Item const item(1, "one");
  EXPECT_EQ(FailureOf([&] { session.Insert(item); }),
            (Failure{102, "DB Error 0 () in query\n\b\nINSERT INTO `item` (`id`, `name`) VALUES ('1', 'one')"}));
  session.Commit();
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM item"), "0");
}

TEST_F(Reconnect, TransactionsGoOnOnTheNewConnection) {
  Session session(WithTransactions());
  Kill(ConnectionId(session));
  Item const item(1, "one");
  EXPECT_THROW(session.Insert(item), AException);
  session.Insert(item);
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM item"), "0");
  session.Commit();
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM item"), "1");
}

TEST_F(Reconnect, FirstPartOfALostTransactionIsGone) {
  Session session(WithTransactions());
  Item const first(1, "one");
  session.Insert(first);
  Kill(ConnectionId(session));
  Item const second(2, "two");
  EXPECT_THROW(session.Insert(second), AException);
  session.Insert(second);
  session.Commit();
  EXPECT_EQ(StoredRows("SELECT id, name FROM item"), (Rows{{"2", "two"}}));
}

TEST_F(Reconnect, ReadOnlyModeIsKept) {
  Session session(With());
  session.ReadOnly();
  Kill(ConnectionId(session));
  session.Execute("DO 0");
  EXPECT_EQ(session.IsReadOnly(), 1);
}

TEST_F(Reconnect, AutoReconnectOffLeavesTheConnectionLost) {
  Session session(With({{"AutoReconnect", "off"}}));
  Kill(ConnectionId(session));
  EXPECT_EQ(FailureOf([&] { session.Execute("DO 0"); }), (Failure{103, kLost}));
  EXPECT_EQ(FailureOf([&] { session.Execute("DO 0"); }), (Failure{103, kLost}));
  EXPECT_TRUE(ConnectionsBecome(0));
}

TEST_F(Reconnect, AutoReconnectOffCountsInCapitals) {
  Session session(With({{"AutoReconnect", "OFF"}}));
  Kill(ConnectionId(session));
  EXPECT_EQ(FailureOf([&] { session.Execute("DO 0"); }), (Failure{103, kLost}));
}

TEST_F(Reconnect, AutoReconnectOffReportsALostTransactionAlike) {
  Session session(WithTransactions({{"AutoReconnect", "off"}}));
  Kill(ConnectionId(session));
  EXPECT_EQ(FailureOf([&] { session.Commit(); }), (Failure{103, kLost}));
}

TEST_F(Reconnect, ConnectRecoversASessionWithAutoReconnectOff) {
  Session session(With({{"AutoReconnect", "off"}}));
  Kill(ConnectionId(session));
  EXPECT_THROW(session.Execute("DO 0"), AException);
  session.Connect(false);
  Item const item(1, "one");
  EXPECT_EQ(session.Insert(item), 1U);
}

TEST_F(Reconnect, DisconnectedSessionIsOpenedByItsNextStatement) {
  Session session(With());
  session.Disconnect();
  Item const item(1, "one");
  EXPECT_EQ(session.Insert(item), 1U);
}

TEST_F(Reconnect, DisconnectedSessionStaysClosedWithAutoReconnectOff) {
  Session session(With({{"AutoReconnect", "off"}}));
  session.Disconnect();
  EXPECT_EQ(FailureOf([&] { session.Execute("DO 0"); }), (Failure{103, kLost}));
}

TEST_F(ReconnectDeathTest, ExitFlagEndsTheProcess) {
  EXPECT_EXIT(
      {
        ASSession session(With(), 0, true);
        Observer(Schema()).Kill(ConnectionId(session));
        session.Execute("DO 0");
      },
      ::testing::ExitedWithCode(1), "");
}

TEST_F(ReconnectDeathTest, ExitFlagEndsTheProcessDuringARollback) {
  EXPECT_EXIT(
      {
        ASSession session(WithTransactions(), 0, true);
        Observer(Schema()).Kill(ConnectionId(session));
        session.Rollback();
      },
      ::testing::ExitedWithCode(1), "");
}

TEST_F(Reconnect, ManyLossesLeaveOneConnectionToTheServer) {
  Session session(With());
  for (int i = 0; i < 200; ++i) Kill(ConnectionId(session));
  EXPECT_NE(ConnectionId(session), "");
  EXPECT_TRUE(ConnectionsBecome(1));
}

TEST_F(Reconnect, ConnectManyTimesLeavesNoOpenFile) {
  Session session(With());
  int const before = OpenFiles();
  for (int i = 0; i < 20; ++i) session.Connect(false);
  EXPECT_EQ(OpenFiles(), before);
}

TEST_F(Reconnect, ConnectManyTimesLeavesTwoConnectionsToTheServer) {
  if (Environment("MYSQL_UNIX_PORT").empty()) GTEST_SKIP() << "MYSQL_UNIX_PORT is not set";
  Session session(With({{"EmulateSequences", "yes"}}));
  for (int i = 0; i < 200; ++i) session.Connect(false);
  EXPECT_TRUE(ConnectionsBecome(2));
}

// The connection is killed while its statement sleeps.

class ReconnectMidway : public ItemTest {
 protected:
  void CreateTables() override {
    ItemTest::CreateTables();
    Run("INSERT INTO item VALUES (1, 'one')");
    Run("CREATE TABLE pause (seconds INT)");
    Run("INSERT INTO pause VALUES (30)");
  }
  // In the background: waits until the session's connection sleeps, shortens the pause, and kills the connection.
  std::future<void> KillAsleep(std::string const& connectionId) {
    return std::async(std::launch::async, [this, connectionId] {
      Observer other(Schema());
      EXPECT_TRUE(other.SeesSleeping(connectionId));
      other.Run("UPDATE pause SET seconds=0");
      other.Run("KILL CONNECTION " + connectionId);
    });
  }
  // In the background: waits until the session's connection sleeps, and kills its statement alone.
  std::future<void> KillQueryAsleep(std::string const& connectionId) {
    return std::async(std::launch::async, [this, connectionId] {
      Observer other(Schema());
      EXPECT_TRUE(other.SeesSleeping(connectionId));
      other.Run("KILL QUERY " + connectionId);
    });
  }
};

TEST_F(ReconnectMidway, AutocommitRunsTheStatementAgain) {
  Session session(With());
  std::string const first = ConnectionId(session);
  auto const killer = KillAsleep(first);
  EXPECT_EQ(FetchedValue(session, "SELECT SLEEP(seconds) FROM pause"), "0");
  EXPECT_NE(ConnectionId(session), first);
}

TEST_F(ReconnectMidway, TransactionIsReportedLost) {
  Session session(WithTransactions());
  auto const killer = KillAsleep(ConnectionId(session));
  EXPECT_EQ(FailureOf([&] { session.Execute("SELECT SLEEP(seconds) FROM pause"); }),
            (Failure{102, "DB Error 0 () in query\n\b\nSELECT SLEEP(seconds) FROM pause"}));
}

TEST_F(ReconnectMidway, AutoReconnectOffLeavesTheConnectionLost) {
  Session session(With({{"AutoReconnect", "off"}}));
  auto const killer = KillAsleep(ConnectionId(session));
  EXPECT_EQ(FailureOf([&] { session.Execute("SELECT SLEEP(seconds) FROM pause"); }), (Failure{103, kLost}));
}

TEST_F(ReconnectMidway, KilledStatementIsRefusedAndTheConnectionKept) {
  Session session(With());
  std::string const id = ConnectionId(session);
  auto const killer = KillQueryAsleep(id);
  EXPECT_EQ(FailureOf([&] { session.Execute("UPDATE item, pause SET name='' WHERE SLEEP(seconds)=0"); }),
            (Failure{102,
                     "DB Error 1317 (Query execution was interrupted) in query\n\b\n"
                     "UPDATE item, pause SET name='' WHERE SLEEP(seconds)=0"}));
  EXPECT_EQ(ConnectionId(session), id);
}

TEST_F(ReconnectMidway, QueryKilledBehindItsColumnsHasNoResultAndTheConnectionIsKept) {
  Session session(With());
  std::string const id = ConnectionId(session);
  auto const killer = KillQueryAsleep(id);
  session.Execute("SELECT 1 FROM pause WHERE SLEEP(seconds)=0");
  EXPECT_EQ(FailureOf([&] { session.FetchMultiple(); }), (Failure{0, "MySQL fetch error. "}));
  EXPECT_EQ(ConnectionId(session), id);
}

// A statement that is sent while a result waits to be read finds the connection out of step, which counts as lost.

using ReconnectUnreadResult = Reconnect;

TEST_F(ReconnectUnreadResult, AutocommitRunsTheStatementOnANewConnection) {
  Session session(With());
  session.Execute("SELECT 1");
  Item const item(1, "one");
  EXPECT_EQ(session.Insert(item), 1U);
  EXPECT_EQ(StoredRows("SELECT id, name FROM item"), (Rows{{"1", "one"}}));
  EXPECT_TRUE(ConnectionsBecome(1));
}

TEST_F(ReconnectUnreadResult, TransactionIsReportedLost) {
  Session session(WithTransactions());
  Item const item(1, "one");
  session.Insert(item);
  session.Execute("SELECT 1");
  EXPECT_EQ(FailureOf([&] { session.Commit(); }), (Failure{102, "DB Error 0 () in query\n\b\nCOMMIT"}));
  EXPECT_TRUE(ConnectionsBecome(1));
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM item"), "0");
}

TEST_F(ReconnectUnreadResult, AutoReconnectOffReportsTheConnectionLost) {
  Session session(With({{"AutoReconnect", "off"}}));
  session.Execute("SELECT 1");
  EXPECT_EQ(FailureOf([&] { session.Execute("DO 0"); }), (Failure{103, kLost}));
}

TEST_F(ReconnectUnreadResult, RollbackIsReported) {
  Session session(WithTransactions());
  session.Execute("SELECT 1");
  EXPECT_EQ(
      FailureOf([&] { session.Rollback(); }),
      (Failure{0, "DB fatal error 2014 (Commands out of sync; you can't run this command now) during ROLLBACK. "}));
}

// The server drops the connection over a statement above its max_allowed_packet.

class ReconnectOversized : public Reconnect {
 protected:
  static Str Oversized() { return Str("SELECT LENGTH('") + std::string(40000000, 'x') + "')"; }
};

TEST_F(ReconnectOversized, AutoReconnectOffReportsTheConnectionLost) {
  Session session(With({{"AutoReconnect", "off"}}));
  EXPECT_EQ(FailureOf([&] { session.Execute(Oversized()); }), (Failure{103, kLost}));
}

TEST_F(ReconnectOversized, ConnectRecoversTheSession) {
  Session session(With({{"AutoReconnect", "off"}}));
  EXPECT_THROW(session.Execute(Oversized()), AException);
  session.Connect(false);
  Item const item(1, "one");
  EXPECT_EQ(session.Insert(item), 1U);
}

TEST_F(ReconnectOversized, TransactionIsReportedLost) {
  Session session(WithTransactions());
  Failure const failure = FailureOf([&] { session.Execute(Oversized()); });
  EXPECT_EQ(failure.number, 102);
  EXPECT_THAT(failure.message, StartsWith("DB Error 0 () in query\n\b\nSELECT LENGTH('xxx"));
}

// The server itself goes away.

class ReconnectServer : public ItemTest {
 protected:
  void CreateTables() override {
    if (!HasServerControl()) GTEST_SKIP() << "CORVANE_TEST_SERVER_TOOL is not set";
    ItemTest::CreateTables();
    Run("INSERT INTO item VALUES (1, 'one')");
  }
};

TEST_F(ReconnectServer, StoppedAndStartedIsFoundAgain) {
  Session session(With());
  StopServer();
  StartServer();
  Item item(1, "");
  EXPECT_EQ(session.Select(item), 1);
  EXPECT_EQ(item.name, "one");
}

TEST_F(ReconnectServer, KilledAndStartedIsFoundAgain) {
  Session session(With());
  KillServer();
  StartServer();
  Item item(1, "");
  EXPECT_EQ(session.Select(item), 1);
  EXPECT_EQ(item.name, "one");
}

TEST_F(ReconnectServer, RestartLosesATransaction) {
  Session session(WithTransactions());
  Item const item(2, "two");
  session.Insert(item);
  StopServer();
  StartServer();
  EXPECT_EQ(FailureOf([&] { session.Commit(); }), (Failure{102, "DB Error 0 () in query\n\b\nCOMMIT"}));
  EXPECT_EQ(StoredRows("SELECT id, name FROM item"), (Rows{{"1", "one"}}));
}

TEST_F(ReconnectServer, SequenceConnectionIsFoundAgain) {
  if (Environment("MYSQL_UNIX_PORT").empty()) GTEST_SKIP() << "MYSQL_UNIX_PORT is not set";
  Session session(With({{"EmulateSequences", "yes"}}));
  StopServer();
  StartServer();
  session.ExecuteSeq("UPDATE item SET name='seen'");
  EXPECT_EQ(Stored("SELECT name FROM item"), "seen");
}

TEST_F(ReconnectServer, GoneIsReportedAndFoundWhenItIsBack) {
  Session session(With());
  StopServer();
  EXPECT_THAT(FailureOf([&] { session.Execute("DO 0"); }).message,
              StartsWith("mysql_real_connect failed\n Error 2002 ("));
  StartServer();
  Item item(1, "");
  EXPECT_EQ(session.Select(item), 1);
}

TEST_F(ReconnectServer, GoneIsReportedByAutoReconnectOffWithoutTrying) {
  Session session(With({{"AutoReconnect", "off"}}));
  StopServer();
  EXPECT_EQ(FailureOf([&] { session.Execute("DO 0"); }), (Failure{103, kLost}));
}

}  // namespace
