#include <gmock/gmock.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <future>
#include <memory>
#include <string>

#include "tests/live/both_ways.h"

using corvane::test::BothWays;
using corvane::test::ConnectionId;
using corvane::test::Failure;
using corvane::test::FailureOf;
using corvane::test::FetchedValue;
using corvane::test::NameOf;
using corvane::test::Rows;
using corvane::test::RowsOf;
using corvane::test::Session;
using corvane::test::Taking;
using corvane::test::TextCursor;
using corvane::test::Way;
using ::testing::ExitedWithCode;
using ::testing::StartsWith;

// A result that breaks off, or that does not fit, fails in the same way whether it is read straight from the connection
// or stored by the client library first.

namespace {

constexpr auto kBoth = {Way::kUnstored, Way::kStored};
constexpr auto kAll = {Way::kUnstored, Way::kStored, Way::kStatement};

constexpr char const* kNoResult = "MySQL fetch error. ";

// Rows of 1,000 bytes; the server has sent many of them when it comes to the 500th.
class BrokenResult : public BothWays {
 protected:
  void CreateTables() override {
    BothWays::CreateTables();
    Run("CREATE TABLE pause (seconds INT)");
    Run("INSERT INTO pause VALUES (30)");
    Run("CREATE TABLE mark (id INT PRIMARY KEY) ENGINE=InnoDB");
  }

  // The 500th row takes as long as the table `pause` says.
  static constexpr char const* kPausing =
      "SELECT id, REPEAT('x', 1000), IF(id=500, SLEEP((SELECT seconds FROM pause)), 0) FROM n ORDER BY id";
  // Each row takes two milliseconds.
  static constexpr char const* kSlow = "SELECT id, REPEAT('x', 20000), SLEEP(0.002) FROM n ORDER BY id";
  static constexpr int kAmount = 5000;

  // Opens the cursor while the statement, with the connection's number behind it, is run beside it.
  Failure FailureOfOpening(TextCursor& cursor, ASSession& session, std::string const& statement) {
    std::string const id = ConnectionId(session);
    auto const other = OnceAsleep(id, statement + " " + id);
    Failure const failure = FailureOf([&] { cursor.Run(); });
    other.wait();
    Run("UPDATE pause SET seconds=0");
    return failure;
  }

  void ExpectFailed(TextCursor& cursor, Failure const& failure) {
    EXPECT_EQ(failure, (Failure{0, kNoResult}));
    EXPECT_TRUE(cursor.IsClosed());
    EXPECT_EQ(cursor.Detach(), nullptr);
  }
  // The same, with some of the rows having been read before, if they were read one by one.
  void ExpectFailedMidway(TextCursor& cursor, Failure const& failure) {
    EXPECT_EQ(Taking::GivenRows() > 0, GetParam() == Way::kUnstored);
    EXPECT_LE(Taking::GivenRows(), 500);
    ExpectFailed(cursor, failure);
  }
};

INSTANTIATE_TEST_SUITE_P(Ways, BrokenResult, ::testing::ValuesIn(kAll), NameOf);

// The statement is killed.

TEST_P(BrokenResult, OfAKilledStatementIsReportedAndReadAgain) {
  Session session(With());
  auto const cursor = Cursor(session, kPausing);
  ExpectFailedMidway(*cursor, FailureOfOpening(*cursor, session, "KILL QUERY"));
  cursor->Run();
  EXPECT_EQ(cursor->GetAmount(), kAmount);
  EXPECT_EQ(cursor->Fetch(4999), 5000);
}

TEST_P(BrokenResult, OfAKilledStatementLeavesTheConnectionReady) {
  Session session(With());
  std::string const id = ConnectionId(session);
  auto const cursor = Cursor(session, kPausing);
  ExpectFailedMidway(*cursor, FailureOfOpening(*cursor, session, "KILL QUERY"));
  EXPECT_EQ(FailureOf([&] { session.FetchMultiple(); }), (Failure{0, kNoResult}));
  EXPECT_EQ(ConnectionId(session), id);
  EXPECT_EQ(session.Execute("INSERT INTO mark VALUES (1)"), 1U);
}

TEST_P(BrokenResult, OfAKilledStatementLeavesTheTransactionOpen) {
  Session session(WithTransactions());
  session.Execute("INSERT INTO mark VALUES (1)");
  auto const cursor = Cursor(session, kPausing);
  ExpectFailedMidway(*cursor, FailureOfOpening(*cursor, session, "KILL QUERY"));
  session.Execute("INSERT INTO mark VALUES (2)");
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM mark"), "0");
  session.Commit();
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM mark"), "2");
}

TEST_P(BrokenResult, OfAStatementKilledWhileRowsTrickleInIsReported) {
  Run("DO GET_LOCK('" + Schema() + "', 0)");
  Session session(With());
  std::string const id = ConnectionId(session);
  auto const cursor = Cursor(session, "SELECT id, REPEAT('x', 20000), IF(id=100, GET_LOCK('" + Schema() +
                                          "', 30), SLEEP(0.002)) FROM n ORDER BY id");
  auto const other = std::async(std::launch::async, [&] {
    EXPECT_TRUE(
        Becomes("SELECT COUNT(*) FROM information_schema.processlist WHERE state='User lock' AND id=" + id, "1"));
    Run("KILL QUERY " + id);
  });
  Failure const failure = FailureOf([&] { cursor->Run(); });
  ExpectFailedMidway(*cursor, failure);
  EXPECT_EQ(FetchedValue(session, "SELECT 7"), "7");
}

TEST_P(BrokenResult, OfAKilledStatementWithLongRowsIsReported) {
  Session session(With());
  auto const cursor = Cursor(
      session, "SELECT id, REPEAT('x', 3000000), IF(id=5, SLEEP((SELECT seconds FROM pause)), 0) FROM n LIMIT 10");
  ExpectFailedMidway(*cursor, FailureOfOpening(*cursor, session, "KILL QUERY"));
  EXPECT_EQ(FetchedValue(session, "SELECT 7"), "7");
}

// The connection is killed.

TEST_P(BrokenResult, OfAKilledConnectionIsReportedAndReadAgainOnANewOne) {
  Session session(With());
  std::string const id = ConnectionId(session);
  auto const cursor = Cursor(session, kPausing);
  ExpectFailedMidway(*cursor, FailureOfOpening(*cursor, session, "KILL CONNECTION"));
  cursor->Run();
  EXPECT_EQ(cursor->GetAmount(), kAmount);
  EXPECT_NE(ConnectionId(session), id);
}

TEST_P(BrokenResult, OfAKilledConnectionInATransactionIsReportedAtTheNextStatementToo) {
  Session session(WithTransactions());
  session.Execute("INSERT INTO mark VALUES (1)");
  auto const cursor = Cursor(session, kPausing);
  ExpectFailedMidway(*cursor, FailureOfOpening(*cursor, session, "KILL CONNECTION"));
  EXPECT_EQ(FailureOf([&] { session.Execute("INSERT INTO mark VALUES (2)"); }),
            (Failure{102, "DB Error 0 () in query\n\b\nINSERT INTO mark VALUES (2)"}));
  session.Execute("INSERT INTO mark VALUES (3)");
  session.Commit();
  EXPECT_EQ(StoredRows("SELECT id FROM mark"), (Rows{{"3"}}));
}

TEST_P(BrokenResult, OfAKilledConnectionIsReportedAsLostAtTheNextStatementWithoutReconnect) {
  Session session(With({{"AutoReconnect", "off"}}));
  auto const cursor = Cursor(session, kPausing);
  ExpectFailedMidway(*cursor, FailureOfOpening(*cursor, session, "KILL CONNECTION"));
  EXPECT_EQ(FailureOf([&] { session.Execute("SELECT 1"); }), (Failure{103, "Database connection lost"}));
  session.Connect(false);
  cursor->Run();
  EXPECT_EQ(cursor->GetAmount(), kAmount);
}

TEST_P(BrokenResult, OfAKilledConnectionIsReportedByRollbackOnce) {
  Session session(WithTransactions());
  auto const cursor = Cursor(session, kPausing);
  ExpectFailedMidway(*cursor, FailureOfOpening(*cursor, session, "KILL CONNECTION"));
  EXPECT_THAT(FailureOf([&] { session.Rollback(); }).message, StartsWith("DB fatal error 200"));
}

// The server ends the statement by itself.

TEST_P(BrokenResult, OfAStatementThatTakesTooLongIsReportedAndTheConnectionKept) {
  if (!IsMariaDb()) {  // MySQL 5.6 has no such limit
    EXPECT_EQ(Refusal("SET max_statement_time=0"), 1193U);
    return;
  }
  Session session(WithTransactions());
  std::string const id = ConnectionId(session);
  session.Execute("INSERT INTO mark VALUES (1)");
  session.Execute("SET max_statement_time=0.3");
  auto const cursor = Cursor(session, kSlow);
  ExpectFailedMidway(*cursor, FailureOf([&] { cursor->Run(); }));
  session.Execute("SET max_statement_time=0");
  EXPECT_EQ(ConnectionId(session), id);
  session.Commit();
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM mark"), "1");
}

TEST_P(BrokenResult, OfAFunctionThatFailsForOneRowIsReported) {
  Run("CREATE FUNCTION refuse(number INT) RETURNS INT DETERMINISTIC BEGIN"
      " IF number=500 THEN SIGNAL SQLSTATE '45000' SET MESSAGE_TEXT='refused'; END IF; RETURN number; END");
  Session session(WithTransactions());
  session.Execute("INSERT INTO mark VALUES (1)");
  auto const cursor = Cursor(session, "SELECT refuse(id), REPEAT('x', 1000) FROM n ORDER BY id");
  ExpectFailedMidway(*cursor, FailureOf([&] { cursor->Run(); }));
  EXPECT_EQ(FetchedValue(session, "SELECT COUNT(*) FROM mark"), "1");
  session.Commit();
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM mark"), "1");
}

TEST_P(BrokenResult, OfANumberOutOfRangeIsReported) {
  Session session(With());
  auto const cursor = Cursor(session, "SELECT 9223372036854775307+id, REPEAT('x', 1000) FROM n ORDER BY id");
  ExpectFailedMidway(*cursor, FailureOf([&] { cursor->Run(); }));
  EXPECT_EQ(FetchedValue(session, "SELECT 7"), "7");
}

TEST_P(BrokenResult, OfASubqueryOfSeveralRowsIsReported) {
  Session session(With());
  Run("INSERT INTO pause VALUES (1)");
  auto const cursor = Cursor(session,
                             "SELECT (SELECT seconds FROM pause WHERE seconds=1 OR n.id=500), REPEAT('x', 1000)"
                             " FROM n ORDER BY id");
  ExpectFailedMidway(*cursor, FailureOf([&] { cursor->Run(); }));
  EXPECT_EQ(FetchedValue(session, "SELECT 7"), "7");
}

TEST_P(BrokenResult, OfTheFirstRowIsReported) {
  Session session(With());
  auto const cursor = Cursor(session, "SELECT 9223372036854775807+id FROM n");
  EXPECT_NE(FailureOf([&] { cursor->Run(); }).number, -1);
  EXPECT_TRUE(cursor->IsClosed());
  EXPECT_EQ(FetchedValue(session, "SELECT 7"), "7");
}

// What a cursor with columns is left with.

class BrokenValues : public BrokenResult {
 protected:
  BrokenValues() { record.Add(idColumn, id).Add(textColumn, text); }

  ASInt id;
  ASVStr text{20U};
  ASAttribute idColumn{"id"}, textColumn{"t"};
  ASDomain record{"n", ""};
};

INSTANTIATE_TEST_SUITE_P(Ways, BrokenValues, ::testing::ValuesIn(kBoth), NameOf);

TEST_P(BrokenValues, AreAsTheyWereAndTheProjectionToo) {
  id = 77;
  text = "before";
  Session session(With());
  auto const cursor = Cursor(session, kPausing);
  std::string const connection = ConnectionId(session);
  auto const other = OnceAsleep(connection, "KILL QUERY " + connection);
  EXPECT_EQ(FailureOf([&] { cursor->Fetch(record); }), (Failure{0, kNoResult}));
  EXPECT_EQ(static_cast<int>(id), 77);
  EXPECT_EQ(text, "before");
  EXPECT_TRUE(cursor->Project().Items().empty());
}

TEST_P(BrokenValues, AreReadByTheSameCursorAfterwards) {
  Session session(With());
  auto const cursor = Cursor(session, kPausing);
  cursor->Project() << idColumn << textColumn;
  ExpectFailedMidway(*cursor, FailureOfOpening(*cursor, session, "KILL QUERY"));
  EXPECT_EQ(cursor->Fetch(), 1);
  EXPECT_EQ(static_cast<int>(id), 1);
  EXPECT_EQ(text, "xxxxxxxxxxxxxxxxxxxx");
  EXPECT_EQ(cursor->GetAmount(), kAmount);
}

// Results that are refused before or while their rows are read: the rest of them is dropped.

struct SaysText : ASInt {
  using ASInt::operator=;
  int GetType() const override { return corvane::kTypeStr; }
};

TEST_P(BrokenValues, OfAClassThatIsNotWhatItSaysAreRefused) {
  SaysText value;
  ASAttribute column("id");
  record.Add(column, value);
  Session session(WithTransactions());
  session.Execute("INSERT INTO mark VALUES (1)");
  auto const cursor = Cursor(session, "SELECT id, REPEAT('x', 1000) FROM n");
  cursor->Project() << column;
  EXPECT_EQ(FailureOf([&] { cursor->Run(); }), (Failure{0, "Incompatible types for ASCursor::Open(). "}));
  EXPECT_TRUE(cursor->IsClosed());
  EXPECT_EQ(FetchedValue(session, "SELECT COUNT(*) FROM mark"), "1");
}

TEST_P(BrokenValues, MoreThanTheResultHasAreRefused) {
  Session session(WithTransactions());
  session.Execute("INSERT INTO mark VALUES (1)");
  auto const cursor = Cursor(session, "SELECT REPEAT('x', 10000) FROM n");
  cursor->Project() << idColumn << textColumn;
  ExpectFailed(*cursor, FailureOf([&] { cursor->Run(); }));
  EXPECT_EQ(FetchedValue(session, "SELECT COUNT(*) FROM mark"), "1");
}

// A text that says it may be as long; what is not written is not touched.
class Vast : public ASVStr {
 public:
  explicit Vast(int size) : ASVStr(20U), size_(size) {}
  using ASVStr::operator=;
  int GetSize() const override { return size_; }

 private:
  int size_;
};

class LargeResult : public BrokenResult {
 protected:
  // Opens the cursor with rows of so many bytes: two cells, a NUL, and the text between.
  Failure FailureOfRows(TextCursor& cursor, int rowSize) {
    Vast text(rowSize - 2 * static_cast<int>(sizeof(UU)) - 1);
    ASInt id;
    ASAttribute idColumn("id"), textColumn("t");
    ASDomain record("n", "");
    record.Add(idColumn, id).Add(textColumn, text);
    cursor.Project() << idColumn << textColumn;
    Failure const failure = FailureOf([&] { cursor.Open(); });
    amount_ = failure.number == -1 ? cursor.GetAmount() : 0;
    delete cursor.Detach();
    cursor.Project().Clear();
    return failure;
  }
  int Amount() const { return amount_; }

  static inline Failure const kNothing{-1, "nothing was thrown"};
  static inline Failure const kTooLarge{0, "Result is too large for the row buffer. "};

 private:
  int amount_ = 0;
};

INSTANTIATE_TEST_SUITE_P(Ways, LargeResult, ::testing::ValuesIn(kBoth), NameOf);

TEST_P(LargeResult, IsReadUpToTwoGibibytes) {
  Session session(With());
  auto const cursor = Cursor(session, "SELECT id, 'text' FROM n LIMIT 2");
  EXPECT_EQ(FailureOfRows(*cursor, 1073741808), kNothing);
  EXPECT_EQ(Amount(), 2);
}

TEST_P(LargeResult, IsRefusedFromTwoGibibytesOn) {
  Session session(With());
  auto const cursor = Cursor(session, "SELECT id, 'text' FROM n LIMIT 2");
  EXPECT_EQ(FailureOfRows(*cursor, 1073741832), kTooLarge);
  EXPECT_EQ(FetchedValue(session, "SELECT 7"), "7");
}

TEST_P(LargeResult, IsRefusedWhereTheBufferHasGrown) {
  Session session(With());
  auto const cursor = Cursor(session, "SELECT id, 'text' FROM n LIMIT 21");
  EXPECT_EQ(FailureOfRows(*cursor, 102261120), kNothing);  // 21 times: 2,147,483,520
  EXPECT_EQ(Amount(), 21);
  EXPECT_EQ(FailureOfRows(*cursor, 102261144), kTooLarge);
  EXPECT_EQ(FetchedValue(session, "SELECT 7"), "7");
}

TEST_P(LargeResult, LeavesTransactionAndConnectionWithManyRowsUnread) {
  Session session(WithTransactions());
  std::string const id = ConnectionId(session);
  session.Execute("INSERT INTO mark VALUES (1)");
  auto const cursor = Cursor(session, "SELECT id, REPEAT('x', 10000) FROM n");
  EXPECT_EQ(FailureOfRows(*cursor, 1500000000), kTooLarge);
  EXPECT_EQ(FetchedValue(session, "SELECT COUNT(*) FROM mark"), "1");
  EXPECT_EQ(ConnectionId(session), id);
  session.Commit();
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM mark"), "1");
}

// No memory.

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define CORVANE_TEST_ADDRESS_SPACE_IS_TAKEN 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define CORVANE_TEST_ADDRESS_SPACE_IS_TAKEN 1
#endif
#endif
#ifndef CORVANE_TEST_ADDRESS_SPACE_IS_TAKEN

// While it lives, the address space may grow by so many bytes.
class LittleMemory {
 public:
  explicit LittleMemory(std::size_t more) {
    getrlimit(RLIMIT_AS, &before_);
    std::size_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    rlimit little = before_;
    little.rlim_cur = pages * static_cast<std::size_t>(getpagesize()) + more;
    setrlimit(RLIMIT_AS, &little);
  }
  LittleMemory(LittleMemory const&) = delete;
  LittleMemory& operator=(LittleMemory const&) = delete;
  ~LittleMemory() { setrlimit(RLIMIT_AS, &before_); }

 private:
  rlimit before_{};
};

class NoMemory : public BrokenResult {
 protected:
  // In a process of its own: opens the cursor with little memory, asks for another value with as little, and opens it
  // again with as much as there is. Says how each ended, and whether the connection stayed the same.
  [[noreturn]] void Tell(std::string const& query, ASData& value, std::size_t memory) {
    Session session(WithTransactions());
    session.Execute("INSERT INTO mark VALUES (1)");
    std::string const id = ConnectionId(session);
    ASAttribute column("c");
    ASDomain record("n", "");
    record.Add(column, value);
    auto const cursor = Cursor(session, query);
    cursor->Project() << column;
    Failure failure{};
    std::string next;
    {
      LittleMemory const little(memory);
      failure = FailureOf([&] { cursor->Open(); });
      failure.message += cursor->IsClosed() ? "closed" : "open";
      Failure const nextFailure = FailureOf([&] { next = *FetchedValue(session, "SELECT COUNT(*) FROM mark"); });
      if (nextFailure.number != -1) next = nextFailure.message;
    }
    Failure const again = FailureOf([&] { cursor->Open(); });
    std::fprintf(stderr, "%s, %s, %s, %d rows, %s\n", failure.message.c_str(), next.c_str(), again.message.c_str(),
                 again.number == -1 ? cursor->GetAmount() : 0,
                 ConnectionId(session) == id ? "connection kept" : "another connection");
    std::_Exit(0);
  }
};

using NoMemoryDeathTest = NoMemory;
using NoMemoryForStoringDeathTest = NoMemory;
INSTANTIATE_TEST_SUITE_P(Ways, NoMemoryDeathTest, ::testing::ValuesIn(kBoth), NameOf);
INSTANTIATE_TEST_SUITE_P(Ways, NoMemoryForStoringDeathTest, ::testing::Values(Way::kUnstored), NameOf);

constexpr char const* kUsable =
    "Out of memory for the row buffer\\. closed, 1, nothing was thrown, 64 rows, connection kept";

// The client library holds these rows easily.
TEST_P(NoMemoryDeathTest, ForTheRowBufferIsReportedAndTheTransactionKept) {
  ASVStr text(1000000U);
  EXPECT_EXIT(Tell("SELECT 'x' FROM n LIMIT 64", text, 24U << 20), ExitedWithCode(0), kUsable);
}

TEST_P(NoMemoryDeathTest, ForTheFirstRowIsReportedAndTheTransactionKept) {
  Vast text(1000000000);
  EXPECT_EXIT(Tell("SELECT 'x' FROM n LIMIT 2", text, 24U << 20), ExitedWithCode(0),
              "Out of memory for the row buffer\\. closed, 1, nothing was thrown, 2 rows, connection kept");
}

// The client library itself has no memory for the row: it gives the connection up.
TEST_P(NoMemoryDeathTest, ForOneRowOfTheServersIsReportedAndTheConnectionLost) {
  ASVStr text(10U);
  EXPECT_EXIT(Tell("SELECT REPEAT('x', 15000000) FROM n LIMIT 3", text, 8U << 20), ExitedWithCode(0),
              "MySQL fetch error\\. closed, DB Error 0 \\(\\) in query\n\b\nSELECT COUNT\\(\\*\\) FROM mark, "
              "nothing was thrown, 3 rows, another connection");
}

// The client library would have no memory for these rows, and would leave the connection unusable.
TEST_P(NoMemoryForStoringDeathTest, ForManyRowsIsReportedAndTheTransactionKept) {
  ASVStr text(1000000U);
  EXPECT_EXIT(Tell("SELECT REPEAT('x', 1000000) FROM n LIMIT 64", text, 24U << 20), ExitedWithCode(0), kUsable);
}

TEST_P(NoMemoryForStoringDeathTest, ForLargeBinariesIsReportedAndTheTransactionKept) {
  ASRealBlob bytes(0U);
  EXPECT_EXIT(Tell("SELECT REPEAT('x', 1000000) FROM n LIMIT 64", bytes, 24U << 20), ExitedWithCode(0), kUsable);
}

TEST_P(NoMemoryForStoringDeathTest, IsNoMatterForRowsThatTheCursorDoesNotHold) {
  ASVStr text(10U);
  EXPECT_EXIT(Tell("SELECT REPEAT('x', 1000000) FROM n LIMIT 64", text, 24U << 20), ExitedWithCode(0),
              "nothing was thrownopen, 1, nothing was thrown, 64 rows, connection kept");
}

#endif

}  // namespace
