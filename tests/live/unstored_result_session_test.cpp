#include <gmock/gmock.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "tests/live/both_ways.h"

using corvane::test::BothWays;
using corvane::test::ConnectionId;
using corvane::test::Failure;
using corvane::test::FailureOf;
using corvane::test::Fetched;
using corvane::test::FetchedValue;
using corvane::test::Item;
using corvane::test::NameOf;
using corvane::test::Parameters;
using corvane::test::Rows;
using corvane::test::Session;
using corvane::test::TextCursor;
using corvane::test::Way;
using ::testing::ElementsAre;

// A cursor that is open leaves its session as free, whether its result was read straight from the connection or stored
// by the client library first.

namespace {

constexpr auto kBoth = {Way::kUnstored, Way::kStored};
constexpr auto kAll = {Way::kUnstored, Way::kStored, Way::kStatement};

constexpr unsigned kLockWaitTimeout = 1205;

// A record of the table of numbers.
struct Number : ASDomain {
  ASInt id;
  ASAttribute idColumn{"id", "Id", 0, corvane::kKey};

  Number() : ASDomain("n", "Number") { Add(idColumn, id); }
  Number(Number const&) = delete;
  Number& operator=(Number const&) = delete;

  // All numbers up to the largest, in order.
  void Ask(ASCursor& cursor, int largest) {
    cursor.Project() << idColumn;
    cursor.Where(idColumn <= largest);
    cursor.Order(ASOrder(idColumn.Query()));
  }
};

class UnstoredSession : public BothWays {
 protected:
  void CreateTables() override {
    BothWays::CreateTables();
    Run(Item::kTable);
  }

  Number number, other;
};

INSTANTIATE_TEST_SUITE_P(Ways, UnstoredSession, ::testing::ValuesIn(kBoth), NameOf);

// Other statements while a cursor is open.

TEST_P(UnstoredSession, RunsStatementsWhileACursorIsOpen) {
  Session session(With());
  std::string const id = ConnectionId(session);
  ASCursor cursor(&session);
  number.Ask(cursor, 5000);
  EXPECT_EQ(cursor.Fetch(), 1);
  EXPECT_EQ(session.Execute("INSERT INTO item VALUES (1, 'one')"), 1U);
  EXPECT_EQ(FetchedValue(session, "SELECT name FROM item"), "one");
  EXPECT_NE(session.Ping(), 0);
  EXPECT_EQ(cursor.Fetch(), 2);
  EXPECT_EQ(static_cast<int>(number.id), 2);
  EXPECT_EQ(cursor.GetAmount(), 5000);
  EXPECT_EQ(ConnectionId(session), id);
}

TEST_P(UnstoredSession, InsertsInsideTheLoop) {
  Session session(WithTransactions());
  ASCursor cursor(&session);
  number.Ask(cursor, 100);
  while (cursor.Fetch() != 0) {
    Item item(static_cast<int>(number.id), "of the loop");
    EXPECT_EQ(session.Insert(item), 1U);
  }
  session.Commit();
  EXPECT_EQ(StoredRows("SELECT COUNT(*), MIN(id), MAX(id) FROM item"), (Rows{{"100", "1", "100"}}));
}

TEST_P(UnstoredSession, DeletesInsideTheLoopWhatIsRead) {
  Session session(With());
  ASCursor cursor(&session);
  number.Ask(cursor, 5000);
  int rows = 0;
  for (; cursor.Fetch() != 0; ++rows) {
    if (rows == 0) session.Execute("DELETE FROM n");
  }
  EXPECT_EQ(rows, 5000);
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM n"), "0");
}

TEST_P(UnstoredSession, HasTwoCursorsFetchInTurn) {
  Session session(With());
  ASCursor upwards(&session), downwards(&session);
  number.Ask(upwards, 3);
  downwards.Project() << other.idColumn;
  downwards.Order(-other.idColumn);
  upwards.Open();
  downwards.Open();
  std::vector<int> read;
  while (upwards.Fetch() != 0 && downwards.Fetch() != 0) {
    read.push_back(static_cast<int>(number.id));
    read.push_back(static_cast<int>(other.id));
  }
  EXPECT_THAT(read, ElementsAre(1, 5000, 2, 4999, 3, 4998));
  EXPECT_EQ(downwards.GetAmount(), 5000);
}

TEST_P(UnstoredSession, OpensACursorInTheLoopOfAnother) {
  Session session(With());
  ASCursor outer(&session);
  number.Ask(outer, 50);
  std::vector<int> amounts;
  while (outer.Fetch() != 0) {
    ASCursor inner(&session);
    other.Ask(inner, static_cast<int>(number.id));
    amounts.push_back(inner.GetAmount());
  }
  ASSERT_EQ(amounts.size(), 50U);
  EXPECT_EQ(amounts.front(), 1);
  EXPECT_EQ(amounts.back(), 50);
}

TEST_P(UnstoredSession, OpensTheSameCursorAgainAfterDetach) {
  Session session(With());
  ASCursor cursor(&session);
  number.Ask(cursor, 5000);
  cursor.Open();
  std::unique_ptr<MapBuffer> const detached(cursor.Detach());
  Run("DELETE FROM n WHERE id>10");
  EXPECT_EQ(cursor.Reset().GetAmount(), 10);
}

struct Numbers : ASSimpleCache {
  ASInt id;
  ASAttribute idColumn{"id", "Id", 0, corvane::kKey};

  explicit Numbers(ASSession& session) : ASDomain("n", "Number"), ASSimpleCache(&session, 0) { Add(idColumn, id); }
  Numbers(Numbers const&) = delete;
  Numbers& operator=(Numbers const&) = delete;
};

TEST_P(UnstoredSession, FillsACacheWhileACursorIsOpen) {
  Session session(With());
  ASCursor cursor(&session);
  number.Ask(cursor, 5000);
  EXPECT_EQ(cursor.Fetch(), 1);
  Numbers numbers(session);
  EXPECT_EQ(numbers.PreFetch(), 5000);
  EXPECT_EQ(cursor.Fetch(), 2);
  EXPECT_EQ(static_cast<int>(number.id), 2);
}

// What is left on the session behind an opened cursor.

class UnstoredAftermath : public UnstoredSession {};

INSTANTIATE_TEST_SUITE_P(Ways, UnstoredAftermath, ::testing::ValuesIn(kAll), NameOf);

TEST_P(UnstoredAftermath, HasNoResultToTake) {
  Session session(With());
  auto const cursor = Cursor(session, "SELECT id FROM n");
  cursor->Run();
  EXPECT_EQ(FailureOf([&] { session.FetchMultiple(); }), (Failure{0, "MySQL fetch error. "}));
  EXPECT_EQ(FetchedValue(session, "SELECT 7"), "7");
}

TEST_P(UnstoredAftermath, HasNoResultToTakeOfNoRowsEither) {
  Session session(With());
  auto const cursor = Cursor(session, "SELECT id FROM n LIMIT 0");
  cursor->Run();
  EXPECT_EQ(cursor->GetAmount(), 0);
  EXPECT_EQ(FailureOf([&] { session.FetchMultiple(); }), (Failure{0, "MySQL fetch error. "}));
  EXPECT_EQ(FetchedValue(session, "SELECT 7"), "7");
}

TEST_P(UnstoredAftermath, CountsAffectedRowsAndInsertIdAsForAnyResult) {
  Run("CREATE TABLE counted (id INT AUTO_INCREMENT PRIMARY KEY, name VARCHAR(20))");
  Session session(With());
  session.Execute("INSERT INTO counted (name) VALUES ('a'), ('b')");
  Fetched(session, "SELECT id FROM n");
  int const insertId = static_cast<int>(session.GetInsertId());
  auto const cursor = Cursor(session, "SELECT id FROM n");
  cursor->Run();
  EXPECT_EQ(session.RowsAffected(), 18446744073709551615U);
  EXPECT_EQ(static_cast<int>(session.GetInsertId()), insertId);
  EXPECT_EQ(FetchedValue(session, "SELECT LAST_INSERT_ID()"), "1");
}

TEST_P(UnstoredAftermath, HasTheWarningsOfEveryRow) {
  Session session(With());
  auto const cursor = Cursor(session, "SELECT CAST(CONCAT(id, 'x') AS UNSIGNED), REPEAT('x', 1000) FROM n LIMIT 60");
  cursor->Run();
  EXPECT_EQ(FetchedValue(session, "SELECT @@warning_count"), "60");
  auto const again = Cursor(session, "SELECT CAST('1x' AS UNSIGNED)");
  again->Run();
  EXPECT_EQ(Fetched(session, "SHOW WARNINGS"), (Rows{{"Warning", "1292", "Truncated incorrect INTEGER value: '1x'"}}));
}

TEST_P(UnstoredAftermath, SleepsOnTheServer) {
  Session session(With());
  std::string const id = ConnectionId(session);
  auto const cursor = Cursor(session, "SELECT id, REPEAT('x', 10000) FROM n");
  cursor->Run();
  EXPECT_TRUE(Becomes("SELECT command FROM information_schema.processlist WHERE id=" + id, "Sleep"));
}

// Locks.

TEST_P(UnstoredAftermath, HoldsNoTableWithAutocommit) {
  Session session(With());
  auto const cursor = Cursor(session, "SELECT id FROM n");
  cursor->Run();
  Run("SET lock_wait_timeout=0");
  EXPECT_EQ(Refusal("DROP TABLE n"), 0U);
  EXPECT_EQ(cursor->GetAmount(), 5000);
}

TEST_P(UnstoredAftermath, HoldsTheTableInATransaction) {
  Session session(WithTransactions());
  auto const cursor = Cursor(session, "SELECT id FROM n");
  cursor->Run();
  Run("SET lock_wait_timeout=0");
  EXPECT_EQ(Refusal("DROP TABLE n"), kLockWaitTimeout);
  session.Commit();
  EXPECT_EQ(Refusal("DROP TABLE n"), 0U);
}

TEST_P(UnstoredAftermath, HoldsTheRowsThatAreLockedUntilTheEndOfTheTransaction) {
  Session session(WithTransactions());
  auto const cursor = Cursor(session, "SELECT id FROM n WHERE id<=1000 FOR UPDATE");
  cursor->Run();
  EXPECT_EQ(cursor->GetAmount(), 1000);
  EXPECT_EQ(Refusal("UPDATE n SET id=-1 WHERE id=1000"), kLockWaitTimeout);
  session.Rollback();
  EXPECT_EQ(Refusal("UPDATE n SET id=-1 WHERE id=1000"), 0U);
}

TEST_P(UnstoredAftermath, OfARowThatAnotherHoldsIsReported) {
  Run("START TRANSACTION");
  Run("UPDATE n SET id=-1 WHERE id=500");
  Session session(WithTransactions());
  session.Execute("SET innodb_lock_wait_timeout=0");
  auto const cursor = Cursor(session, "SELECT id, REPEAT('x', 1000) FROM n FOR UPDATE");
  EXPECT_NE(FailureOf([&] { cursor->Run(); }).number, -1);
  EXPECT_TRUE(cursor->IsClosed());
  Run("ROLLBACK");
  cursor->Run();
  EXPECT_EQ(cursor->GetAmount(), 5000);
}

TEST_P(UnstoredAftermath, RowsReadInATransactionAreThoseOfItsBeginning) {
  Session session(WithTransactions());
  auto const cursor = Cursor(session, "SELECT id FROM n");
  cursor->Run();
  Run("DELETE FROM n WHERE id>10");
  auto const again = Cursor(session, "SELECT id FROM n");
  again->Run();
  EXPECT_EQ(again->GetAmount(), 5000);
}

// Several sessions at once.

class UnstoredThreads : public UnstoredSession {
 protected:
  static constexpr int kThreads = 4;
  static constexpr int kRows = 20000;
};

INSTANTIATE_TEST_SUITE_P(Ways, UnstoredThreads, ::testing::ValuesIn(kBoth), NameOf);

TEST_P(UnstoredThreads, ReadTheirRowsAtTheSameTime) {
  Run("CREATE TABLE many (id INT PRIMARY KEY, name VARCHAR(20))");
  Run("INSERT INTO many SELECT n.id + 5000 * (m.id - 1), CONCAT('name ', n.id) FROM n JOIN n m ON m.id<=4");
  Parameters const parameters = With();
  std::atomic<int> right{0};
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([&] {
      Session session(parameters);
      Item item;
      TextCursor cursor(session, GetParam(), "SELECT id, name FROM many ORDER BY id");
      cursor.Project() << item.idColumn << item.nameColumn;
      int expected = 1;
      while (cursor.Fetch() != 0) {
        std::string const name = "name " + std::to_string((expected - 1) % 5000 + 1);
        if (static_cast<int>(item.id) == expected++ && item.name == name.c_str()) ++right;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(right, kThreads * kRows);
}

}  // namespace
