#include <gmock/gmock.h>

#include <future>
#include <string>

#include "tests/support/live.h"

using corvane::test::ConnectionId;
using corvane::test::Failure;
using corvane::test::FailureOf;
using corvane::test::Item;
using corvane::test::ItemTest;
using corvane::test::Observer;
using corvane::test::Session;
using ::testing::AnyOf;
using ::testing::IsEmpty;
using ::testing::StartsWith;

// Connections, statements and servers that end under a cursor.

namespace {

constexpr char const* kLost = "Database connection lost";
constexpr char const* kNoResult = "MySQL fetch error. ";
constexpr char const* kFailed = "Raw statement has failed, it is not run again. ";

class CursorKilled : public ItemTest {
 protected:
  void CreateTables() override {
    ItemTest::CreateTables();
    Run("INSERT INTO item VALUES (1, 'one')");
  }

  Item item;
};

// A closed cursor gives no cell, and opens.
void ExpectClosedAndUsable(ASCursor& cursor, int rows) {
  EXPECT_EQ(cursor.GetUURecord(0), nullptr);
  EXPECT_EQ(cursor.GetAmount(), rows);
}

// The idle connection is killed.

TEST_F(CursorKilled, BeforeOpenWithAutocommitItRunsOnANewConnection) {
  Session session(With());
  std::string const first = ConnectionId(session);
  ASCursor cursor(&session);
  Kill(first);
  EXPECT_EQ(cursor.Fetch(item), 1);
  EXPECT_EQ(item.name, "one");
  EXPECT_NE(ConnectionId(session), first);
}

TEST_F(CursorKilled, BeforeOpenInATransactionItIsReported) {
  Session session(WithTransactions());
  ASCursor cursor(&session);
  cursor.Project() << item.nameColumn;
  std::string const query = cursor.Query().ToString();
  Kill(ConnectionId(session));
  EXPECT_EQ(FailureOf([&] { cursor.Fetch(); }), (Failure{102, "DB Error 0 () in query\n\b\n" + query}));
  ExpectClosedAndUsable(cursor, 1);
}

TEST_F(CursorKilled, BeforeOpenWithoutReconnectItIsReported) {
  Session session(With({{"AutoReconnect", "off"}}));
  ASCursor cursor(&session);
  cursor.Project() << item.nameColumn;
  Kill(ConnectionId(session));
  EXPECT_EQ(FailureOf([&] { cursor.GetAmount(); }), (Failure{103, kLost}));
  session.Connect(false);
  ExpectClosedAndUsable(cursor, 1);
}

TEST_F(CursorKilled, BeforeFetchOfARecordTheProjectionIsAsBefore) {
  Session session(WithTransactions());
  ASCursor cursor(&session);
  Kill(ConnectionId(session));
  EXPECT_EQ(FailureOf([&] { cursor.Fetch(item); }).number, 102);
  EXPECT_THAT(cursor.Project().Items(), IsEmpty());
  EXPECT_EQ(cursor.Fetch(item), 1);
  EXPECT_EQ(cursor.Project().Items().size(), 2U);
}

TEST_F(CursorKilled, AfterOpenTheRowsStay) {
  Run("INSERT INTO item VALUES (2, 'two')");
  Session session(WithTransactions());
  ASCursor cursor(&session);
  cursor.Order(ASOrder(item.idColumn.Query()));
  cursor.Fetch(item);
  Kill(ConnectionId(session));
  EXPECT_EQ(cursor.Fetch(item), 2);
  EXPECT_EQ(item.name, "two");
}

TEST_F(CursorKilled, BeforeAStatementWithAutocommitItRunsOnANewConnection) {
  Session session(With());
  ASCursor cursor(&session);
  Kill(ConnectionId(session));
  cursor.Statement("SELECT name FROM item");
  EXPECT_EQ(cursor.GetAmount(), 1);
}

TEST_F(CursorKilled, BeforeAStatementInATransactionItIsReported) {
  Session session(WithTransactions());
  ASCursor cursor(&session);
  Kill(ConnectionId(session));
  EXPECT_EQ(FailureOf([&] { cursor.Statement("SELECT name FROM item"); }),
            (Failure{102, "DB Error 0 () in query\n\b\nSELECT name FROM item"}));
  EXPECT_THAT(cursor.Project().Items(), IsEmpty());
  EXPECT_EQ(FailureOf([&] { cursor.GetAmount(); }), (Failure{0, kFailed}));
}

TEST_F(CursorKilled, BeforeAChangeInATransactionItIsReportedAndNotRun) {
  Session session(WithTransactions());
  ASCursor cursor(&session);
  Kill(ConnectionId(session));
  EXPECT_EQ(FailureOf([&] { cursor.Statement("DELETE FROM item"); }),
            (Failure{102, "DB Error 0 () in query\n\b\nDELETE FROM item"}));
  cursor.Fetch();
  session.Commit();
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM item"), "1");
}

// While the query runs.

struct Pause : ASDomain {
  ASInt seconds;
  ASAttribute secondsColumn{"seconds"};
  // Sleeps on the server.
  ASGroupAttribute sleep;

  Pause() : ASDomain("pause", "Pause"), sleep("", nullptr, nullptr) {
    Add(secondsColumn, seconds);
    sleep = secondsColumn.Expression(Str("SLEEP(") + secondsColumn.Query() + ")");
  }
  Pause(Pause const&) = delete;
  Pause& operator=(Pause const&) = delete;
};

class CursorKilledMidway : public CursorKilled {
 protected:
  void CreateTables() override {
    CursorKilled::CreateTables();
    Run("CREATE TABLE pause (seconds INT)");
    Run("INSERT INTO pause VALUES (30)");
  }

  // In the background: waits until the session's connection sleeps, shortens the pause, and runs the statement.
  std::future<void> OnceAsleep(std::string const& connectionId, std::string const& statement) {
    return std::async(std::launch::async, [this, connectionId, statement] {
      Observer other(Schema());
      EXPECT_TRUE(other.SeesSleeping(connectionId));
      other.Run("UPDATE pause SET seconds=0");
      other.Run(statement);
    });
  }
  std::future<void> KillAsleep(std::string const& connectionId) {
    return OnceAsleep(connectionId, "KILL CONNECTION " + connectionId);
  }
  std::future<void> KillQueryAsleep(std::string const& connectionId) {
    return OnceAsleep(connectionId, "KILL QUERY " + connectionId);
  }

  Pause pause;
};

TEST_F(CursorKilledMidway, WithAutocommitItRunsAgain) {
  Session session(With());
  std::string const first = ConnectionId(session);
  ASCursor cursor(&session);
  cursor.Project() << pause.sleep;
  auto const killer = KillAsleep(first);
  EXPECT_EQ(cursor.Fetch(), 1);
  EXPECT_EQ(static_cast<int>(pause.seconds), 0);
  EXPECT_NE(ConnectionId(session), first);
}

TEST_F(CursorKilledMidway, InATransactionItIsReported) {
  Session session(WithTransactions());
  ASCursor cursor(&session);
  cursor.Project() << pause.sleep;
  std::string const query = cursor.Query().ToString();
  auto const killer = KillAsleep(ConnectionId(session));
  EXPECT_EQ(FailureOf([&] { cursor.Open(); }), (Failure{102, "DB Error 0 () in query\n\b\n" + query}));
  killer.wait();
  ExpectClosedAndUsable(cursor, 1);
}

TEST_F(CursorKilledMidway, WithoutReconnectItIsReported) {
  Session session(With({{"AutoReconnect", "off"}}));
  ASCursor cursor(&session);
  cursor.Project() << pause.sleep;
  auto const killer = KillAsleep(ConnectionId(session));
  EXPECT_EQ(FailureOf([&] { cursor.Open(); }), (Failure{103, kLost}));
  killer.wait();
  session.Connect(false);
  ExpectClosedAndUsable(cursor, 1);
}

TEST_F(CursorKilledMidway, RawTextRunsAgain) {
  Session session(With());
  ASCursor cursor(&session);
  auto const killer = KillAsleep(ConnectionId(session));
  cursor.Statement("SELECT SLEEP(seconds) FROM pause");
  EXPECT_EQ(cursor.GetAmount(), 1);
}

TEST_F(CursorKilledMidway, RawTextInATransactionIsReported) {
  Session session(WithTransactions());
  ASCursor cursor(&session);
  auto const killer = KillAsleep(ConnectionId(session));
  EXPECT_EQ(FailureOf([&] { cursor.Statement("SELECT SLEEP(seconds) FROM pause"); }),
            (Failure{102, "DB Error 0 () in query\n\b\nSELECT SLEEP(seconds) FROM pause"}));
  EXPECT_THAT(cursor.Project().Items(), IsEmpty());
  EXPECT_EQ(FailureOf([&] { cursor.GetAmount(); }), (Failure{0, kFailed}));
}

// The statement alone is killed: the server says so instead of answering, or behind the columns of its result.
::testing::Matcher<std::string> IsError(std::string const& number) {
  return AnyOf(StartsWith("DB Error " + number + " ("), std::string(kNoResult));
}

TEST_F(CursorKilledMidway, KilledQueryIsReportedAndTheConnectionKept) {
  Session session(WithTransactions());
  session.Execute("INSERT INTO item VALUES (2, 'two')");
  std::string const id = ConnectionId(session);
  ASCursor cursor(&session);
  cursor.Project() << pause.sleep;
  auto const killer = KillQueryAsleep(id);
  EXPECT_THAT(FailureOf([&] { cursor.Open(); }).message, IsError("1317"));
  killer.wait();
  EXPECT_EQ(ConnectionId(session), id);
  session.Commit();
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM item"), "2");
}

TEST_F(CursorKilledMidway, KilledQueryCanBeRunAgain) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Project() << pause.sleep;
  auto const killer = KillQueryAsleep(ConnectionId(session));
  EXPECT_THAT(FailureOf([&] { cursor.Open(); }).message, IsError("1317"));
  killer.wait();
  ExpectClosedAndUsable(cursor, 1);
}

TEST_F(CursorKilledMidway, KilledRawTextIsReported) {
  Session session(With());
  ASCursor cursor(&session);
  auto const killer = KillQueryAsleep(ConnectionId(session));
  EXPECT_THAT(FailureOf([&] { cursor.Statement("SELECT SLEEP(seconds) FROM pause"); }).message, IsError("1317"));
  EXPECT_THAT(cursor.Project().Items(), IsEmpty());
  EXPECT_EQ(FailureOf([&] { cursor.Fetch(); }), (Failure{0, "Raw statement has failed, it is not run again. "}));
}

TEST_F(CursorKilledMidway, QueryThatTakesTooLongIsReportedAndTheConnectionKept) {
  if (!IsMariaDb()) {  // MySQL 5.6 has no such limit
    EXPECT_EQ(Refusal("SET max_statement_time=0"), 1193U);
    return;
  }
  Session session(With());
  std::string const id = ConnectionId(session);
  session.Execute("SET max_statement_time=0.1");
  ASCursor cursor(&session);
  cursor.Project() << pause.sleep;
  EXPECT_THAT(FailureOf([&] { cursor.Open(); }).message, IsError("1969"));
  EXPECT_EQ(ConnectionId(session), id);
  Run("UPDATE pause SET seconds=0");
  ExpectClosedAndUsable(cursor, 1);
}

// While the result is read: the first row is more than the server holds back, the second one sleeps.

class CursorKilledReading : public CursorKilledMidway {
 protected:
  void CreateTables() override {
    CursorKilledMidway::CreateTables();
    Run("CREATE TABLE page (id INT PRIMARY KEY, body LONGTEXT)");
    Run("INSERT INTO page VALUES (1, REPEAT('x', 1000000)), (2, 'y')");
    body = pageBody.Expression("CONCAT(body, IF(id=1, '', SLEEP((SELECT seconds FROM pause))))");
  }
  void Project(ASCursor& cursor) {
    cursor.Project() << body;
    cursor.Where(pageId > 0);
    cursor.Order(ASOrder(pageId.Query()));
  }

  ASDomain page{"page", "Page"};
  ASInt id;
  ASVStr text{20U};
  ASAttribute pageId{"id"}, pageBody{"body"};
  ASGroupAttribute body{"", nullptr, nullptr};

  CursorKilledReading() { page.Add(pageId, id).Add(pageBody, text); }
};

TEST_F(CursorKilledReading, LostConnectionIsReported) {
  Session session(With());
  ASCursor cursor(&session);
  Project(cursor);
  auto const killer = KillAsleep(ConnectionId(session));
  EXPECT_EQ(FailureOf([&] { cursor.Open(); }), (Failure{0, kNoResult}));
  killer.wait();
  ExpectClosedAndUsable(cursor, 2);
}

TEST_F(CursorKilledReading, LostConnectionIsReportedOnceMoreInATransaction) {
  Session session(WithTransactions());
  ASCursor cursor(&session);
  Project(cursor);
  auto const killer = KillAsleep(ConnectionId(session));
  EXPECT_EQ(FailureOf([&] { cursor.Open(); }), (Failure{0, kNoResult}));
  killer.wait();
  EXPECT_EQ(FailureOf([&] { cursor.Open(); }).number, 102);
  ExpectClosedAndUsable(cursor, 2);
}

TEST_F(CursorKilledReading, KilledQueryIsReportedAndTheConnectionKept) {
  Session session(With());
  std::string const connection = ConnectionId(session);
  ASCursor cursor(&session);
  Project(cursor);
  auto const killer = KillQueryAsleep(connection);
  EXPECT_EQ(FailureOf([&] { cursor.Open(); }), (Failure{0, kNoResult}));
  killer.wait();
  EXPECT_EQ(ConnectionId(session), connection);
  ExpectClosedAndUsable(cursor, 2);
}

// The server itself goes away.

class CursorServer : public CursorKilledMidway {
 protected:
  void CreateTables() override {
    if (!HasServerControl()) GTEST_SKIP() << "CORVANE_TEST_SERVER_TOOL is not set";
    CursorKilledMidway::CreateTables();
  }
};

TEST_F(CursorServer, GoneBeforeOpenIsReportedAndTheCursorOpensWhenItIsBack) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Project() << item.nameColumn;
  StopServer();
  EXPECT_THAT(FailureOf([&] { cursor.Open(); }).message, StartsWith("mysql_real_connect failed\n Error 2002 ("));
  StartServer();
  ExpectClosedAndUsable(cursor, 1);
}

TEST_F(CursorServer, KilledDuringOpenIsReportedAndTheCursorOpensWhenItIsBack) {
  Session session(With());
  std::string const id = ConnectionId(session);
  ASCursor cursor(&session);
  cursor.Project() << pause.sleep;
  auto const killer = std::async(std::launch::async, [&] {
    EXPECT_TRUE(Observer(Schema()).SeesSleeping(id));
    KillServer();
  });
  EXPECT_THAT(FailureOf([&] { cursor.Open(); }).message, StartsWith("mysql_real_connect failed\n Error "));
  killer.wait();
  StartServer();
  Run("UPDATE pause SET seconds=0");
  ExpectClosedAndUsable(cursor, 1);
}

TEST_F(CursorServer, GoneAfterOpenLeavesTheRows) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Project() << item.nameColumn;
  cursor.Open();
  StopServer();
  EXPECT_EQ(cursor.Fetch(), 1);
  EXPECT_EQ(item.name, "one");
}

}  // namespace
