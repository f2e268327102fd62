// Opening a cursor that fails, at every step: what is thrown, what is left, and that the cursor works afterwards.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <new>
#include <string>
#include <vector>

#include "corvane/corvane.h"
#include "tests/support/failing_allocation.h"
#include "tests/support/scripted_cursor.h"

namespace corvane::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

// A cursor over "SELECT a FROM ", which still opens after a failure.
class CursorFailure : public ScriptedCursor {
 protected:
  void SetUp() override {
    ScriptedCursor::SetUp();
    cursor.AssignSession(session);
    cursor.Project() << a;
  }

  void ReopenWith(Parameters parameters) {
    Reopen(std::move(parameters));
    cursor.AssignSession(session);
  }

  void ExpectClosedAndUsable() {
    EXPECT_EQ(cursor.GetUURecord(0), nullptr);
    EXPECT_EQ(cursor.Detach(), nullptr);
    EXPECT_EQ(client.UnfreedResults(), 0U);
    EXPECT_EQ(a.value.IsNull(), 1);
    Answer(1, {{"5"}, {"6"}});
    EXPECT_EQ(cursor.GetAmount(), 2);
    EXPECT_EQ(cursor.Fetch(0), 1);
    EXPECT_EQ(a.value, 5);
  }

  Column<ASInt> a{"a"};
  ASCursor cursor{nullptr};
};

// ---- the statement

TEST_F(CursorFailure, OfARefusedStatementIsTheSessions) {
  client.FailQuery(1054, "Unknown column");
  EXPECT_EQ(ThrownBy([&] { cursor.Open(); }),
            (Thrown{102, "DB Error 1054 (Unknown column) in query\n\b\nSELECT a FROM "}));
  ExpectClosedAndUsable();
}

TEST_F(CursorFailure, OfALostConnectionWithAutocommitOffReconnectsAndThrows) {
  client.FailQuery(2006, "gone").Matching("SELECT");
  EXPECT_EQ(ThrownBy([&] { cursor.Open(); }), (Thrown{102, "DB Error 0 () in query\n\b\nSELECT a FROM "}));
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("1 query SELECT a FROM ", "1 close", "2 init",
                                                  "2 connect '' '' '' '' 0", "2 query SET AUTOCOMMIT=0"));
  ExpectClosedAndUsable();
}

TEST_F(CursorFailure, OfALostConnectionWithAutocommitOnIsNone) {
  ReopenWith({{"AutoCommit", "on"}});
  client.FailQuery(2013, "lost").Matching("SELECT").Times(2);
  Answer(1, {{"5"}}).Matching("SELECT");
  EXPECT_EQ(cursor.Fetch(), 1);
  EXPECT_EQ(a.value, 5);
  EXPECT_THAT(Statements(), ElementsAre("SELECT a FROM ", "SET AUTOCOMMIT=1", "SELECT a FROM ", "SET AUTOCOMMIT=1",
                                        "SELECT a FROM "));
}

TEST_F(CursorFailure, OfALostConnectionThatStaysLostThrows) {
  ReopenWith({{"AutoReconnect", "off"}});
  client.FailQuery(2006, "gone");
  EXPECT_EQ(ThrownBy([&] { cursor.Open(); }), (Thrown{103, "Database connection lost"}));
  ExpectClosedAndUsable();
}

TEST_F(CursorFailure, OfEveryWayToOpenLeavesTheCursorClosed) {
  client.FailQuery(1054, "Unknown column").Times(5);
  EXPECT_EQ(ThrownBy([&] { cursor.Fetch(); }).number, 102);
  EXPECT_EQ(ThrownBy([&] { cursor.Fetch(0); }).number, 102);
  EXPECT_EQ(ThrownBy([&] { cursor.FetchSingle(); }).number, 102);
  EXPECT_EQ(ThrownBy([&] { cursor.GetAmount(); }).number, 102);
  EXPECT_EQ(ThrownBy([&] { cursor.Reset(); }).number, 102);
  ExpectClosedAndUsable();
}

// ---- the result

TEST_F(CursorFailure, OfAStatementWithoutResultIsAFetchError) {
  EXPECT_EQ(ThrownBy([&] { cursor.Open(); }), (Thrown{0, "MySQL fetch error. "}));
  ExpectClosedAndUsable();
}

// The client library leaves the result on the connection then, which the next statement therefore opens anew.
TEST_F(CursorFailure, OfAResultThatThereIsNoMemoryForIsAFetchError) {
  ReopenWith({{"AutoCommit", "on"}});
  Answer(1, {{"1"}});
  client.FailUseResult(2008, "Client run out of memory");
  EXPECT_EQ(ThrownBy([&] { cursor.Open(); }), (Thrown{0, "MySQL fetch error. "}));
  EXPECT_EQ(cursor.GetUURecord(0), nullptr);
  Answer(1, {{"5"}}).Matching("SELECT");
  EXPECT_EQ(cursor.Fetch(), 1);
  EXPECT_EQ(a.value, 5);
  EXPECT_THAT(client.Calls(), ElementsAre("query SELECT a FROM ", "use_result", "query SELECT a FROM ", "close", "init",
                                          "connect '' '' '' '' 0", "query SET AUTOCOMMIT=1", "query SELECT a FROM ",
                                          "use_result", "free_result"));
}

TEST_F(CursorFailure, OfAStatementsResultThatIsLostIsAFetchError) {
  Answer(1, {{"1"}}).Times(4);
  client.FailStoreResult(2013, "lost");
  client.FailStoreResult(1317, "interrupted").After(1);
  client.FailStoreResult(2008, "out of memory").After(3);
  ASCursor raw(session);
  EXPECT_EQ(ThrownBy([&] { raw.Statement("SELECT 1"); }), (Thrown{0, "MySQL fetch error. "}));
  EXPECT_EQ(ThrownBy([&] { raw.Statement("SELECT 1"); }), (Thrown{0, "MySQL fetch error. "}));
  EXPECT_EQ(ThrownBy([&] { raw.Statement("SELECT 1"); }), (Thrown{0, "MySQL fetch error. "}));
  EXPECT_EQ(raw.GetUURecord(0), nullptr);
  EXPECT_THAT(raw.Project().Items(), IsEmpty());
  ExpectClosedAndUsable();
}

// ---- its size

constexpr char const* kTooLarge = "Result is too large for the row buffer. ";

class CursorFailureOfRows : public CursorFailure, public testing::WithParamInterface<std::uint64_t> {};

// The result of a raw text is stored: it says how many rows it has.
TEST_P(CursorFailureOfRows, ThatDoNotFitIsReportedBeforeAnyIsRead) {
  Answer(1, {{"1"}, {"2"}}).Times(2).Fields({{"n", MYSQL_TYPE_LONG, 11}}).AnnouncedRows(GetParam());
  ASCursor raw(session);
  EXPECT_EQ(ThrownBy([&] { raw.Statement("SELECT 1"); }), (Thrown{0, kTooLarge}));
  EXPECT_EQ(raw.GetUURecord(0), nullptr);
  ExpectClosedAndUsable();
}

INSTANTIATE_TEST_SUITE_P(Announced, CursorFailureOfRows,
                         testing::Values(89478486U, 178956971U, 2147483647U, 2147483648U, 4294967296U, 4294967297U,
                                         768614336404564651U, 18446744073709551615U));

TEST_F(CursorFailure, OfWideRowsDependsOnTheirWidth) {
  ASCursor raw(session);
  Answer(1, {{"x"}}).Times(2).Fields({{"s", MYSQL_TYPE_VAR_STRING, 65535}}).AnnouncedRows(32753);  // of 65,568 bytes
  EXPECT_EQ(ThrownBy([&] { raw.Statement("SELECT s"); }), (Thrown{0, kTooLarge}));
  Answer(1, {{"x"}}).Times(2).Fields({{"s", MYSQL_TYPE_VAR_STRING, 65535}}).AnnouncedRows(3);
  raw.Statement("SELECT s");
  EXPECT_EQ(raw.GetAmount(), 1);
}

// A text of an application that tells a size which it never needs, so that few rows are large.
class Roomy : public ASVStr {
 public:
  explicit Roomy(int size) : ASVStr(8), size_(size) {}
  using ASVStr::operator=;
  int GetSize() const override { return size_; }

 private:
  int size_;
};

TEST_F(CursorFailure, OfRowsThatDoNotFitComesAtTheFirstThatDoesNot) {
  Column<Roomy> wide("s", 1000000000);
  cursor.Project() << wide;
  Answer(2, {{"1", "x"}, {"2", "y"}, {"3", "z"}, {"4", "z"}});
  EXPECT_EQ(ThrownBy([&] { cursor.Open(); }), (Thrown{0, kTooLarge}));
  EXPECT_EQ(client.UnfreedResults(), 0U);
  Answer(2, {{"5", "x"}, {"6", "y"}});
  EXPECT_EQ(cursor.Fetch(1), 2);
  EXPECT_EQ(a.value, 6);
  EXPECT_EQ(wide.value.getstr(), "y");
}

TEST_F(CursorFailure, OfRowsThatDoNotFitLeavesTheConnectionUsable) {
  Column<Roomy> wide("s", 1000000000);
  cursor.Project() << wide;
  Answer(2, {{"1", "x"}, {"2", "y"}, {"3", "z"}, {"4", "z"}});
  ThrownBy([&] { cursor.Open(); });
  session->Execute("SET a=1");
  EXPECT_THAT(client.Calls(), ElementsAre("query SELECT a, s FROM ", "use_result", "free_result", "query SET a=1"));
}

TEST_F(CursorFailure, OfARowBeginsAboveTheLargestIntOfBytes) {
  Column<Roomy> fits("s", 2147483615);  // 24 bytes, the text and its terminator: 2,147,483,640
  Column<Roomy> above("s", 2147483616);
  ASCursor first(session);
  ASCursor second(session);
  first.Project() << fits;
  second.Project() << above;
  Answer(1, {{"x"}});
  EXPECT_EQ(first.Fetch(), 1);
  EXPECT_EQ(fits.value.getstr(), "x");
  Answer(1, {{"x"}});
  EXPECT_EQ(ThrownBy([&] { second.Open(); }), (Thrown{0, kTooLarge}));
  EXPECT_EQ(second.GetUURecord(0), nullptr);
}

TEST_F(CursorFailure, OfRowsThatNeverFitIsNoneWithoutRows) {
  Column<Roomy> wide("s", INT_MAX);
  Column<Roomy> other("t", INT_MAX);
  cursor.Project() << wide << other;
  Answer(3, {});
  EXPECT_EQ(cursor.GetAmount(), 0);
}

TEST_F(CursorFailure, OfAStatementsRowsLeavesItsColumnsOut) {
  ASCursor raw(session);
  Answer(1, {{"1"}}).Times(2).AnnouncedRows(2147483647);
  EXPECT_EQ(ThrownBy([&] { raw.Statement("SELECT 1"); }), (Thrown{0, kTooLarge}));
  EXPECT_THAT(raw.Project().Items(), IsEmpty());
  EXPECT_EQ(client.UnfreedResults(), 0U);
}

TEST_F(CursorFailure, OfARecordsRowsLeavesTheProjectionAsItWas) {
  Roomy name(1000000000);
  ASAttribute nameColumn("name");
  ASDomain record("t", "");
  record.Add(nameColumn, name);
  Answer(2, {{"1", "x"}, {"2", "y"}, {"3", "z"}});
  EXPECT_EQ(ThrownBy([&] { cursor.Fetch(record); }), (Thrown{0, kTooLarge}));
  EXPECT_EQ(name.IsNull(), 1);
  ExpectClosedAndUsable();
}

// ---- memory

#if defined(__SANITIZE_ADDRESS__)
#define CORVANE_TEST_ADDRESS_SPACE_IS_TAKEN 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define CORVANE_TEST_ADDRESS_SPACE_IS_TAKEN 1
#endif
#endif
#ifndef CORVANE_TEST_ADDRESS_SPACE_IS_TAKEN

// While it lives, the program's address space may not grow above 1 GiB.
class LittleAddressSpace {
 public:
  LittleAddressSpace() {
    getrlimit(RLIMIT_AS, &before_);
    rlimit little = before_;
    little.rlim_cur = std::min<rlim_t>(before_.rlim_max, rlim_t{1} << 30);
    setrlimit(RLIMIT_AS, &little);
  }
  LittleAddressSpace(LittleAddressSpace const&) = delete;
  LittleAddressSpace& operator=(LittleAddressSpace const&) = delete;
  ~LittleAddressSpace() { setrlimit(RLIMIT_AS, &before_); }

 private:
  rlimit before_{};
};

constexpr char const* kNoMemory = "Out of memory for the row buffer. ";

TEST_F(CursorFailure, OfARowBufferThatThereIsNoMemoryForIsReported) {
  Answer(1, {{"1"}}).Times(2).Fields({{"n", MYSQL_TYPE_LONG, 11}}).AnnouncedRows(89478485);  // 2,147,483,640 bytes
  ASCursor raw(session);
  {
    LittleAddressSpace const little;
    EXPECT_EQ(ThrownBy([&] { raw.Statement("SELECT 1"); }), (Thrown{0, kNoMemory}));
  }
  EXPECT_EQ(raw.GetUURecord(0), nullptr);
  ExpectClosedAndUsable();
}

TEST_F(CursorFailure, OfARowBufferThatCannotGrowAnyMoreIsReported) {
  Column<Roomy> wide("s", 400000000);
  ASCursor rows(session);
  rows.Project() << wide;
  Answer(1, {{"x"}, {"y"}, {"z"}, {"z"}});
  {
    LittleAddressSpace const little;
    EXPECT_EQ(ThrownBy([&] { rows.Open(); }), (Thrown{0, kNoMemory}));
  }
  EXPECT_EQ(rows.GetUURecord(0), nullptr);
  ExpectClosedAndUsable();
  EXPECT_THAT(client.Calls(), ElementsAre("query SELECT s FROM ", "use_result", "free_result", "query SELECT a FROM ",
                                          "use_result", "free_result"));
}

#endif

// Every operator new of the action fails once. `check` is called after each failure with what was thrown ("bad_alloc"
// or a message) and with whether the rows' result, number `results`, had been taken by then. Returns how often it
// failed until the action got through.
template <class Prepare, class Action, class Check>
unsigned FailEachAllocation(ScriptedClient& client, Prepare prepare, Action action, unsigned results, Check check) {
  for (unsigned allowed = 0;; ++allowed) {
    prepare();
    client.ForgetCalls();
    std::string thrown = "nothing";
    bool failed = false;
    {
      FailingAllocation const failing(allowed);
      try {
        action();
      } catch (AException const& error) {
        UnfailingAllocation const unfailing;
        thrown = error.what();
      } catch (std::bad_alloc const&) {
        UnfailingAllocation const unfailing;
        thrown = "bad_alloc";
      }
      failed = failing.Failed();
    }
    if (!failed) return allowed;
    std::vector<std::string> const calls = client.Calls();
    auto const taken =
        std::count(calls.begin(), calls.end(), "store_result") + std::count(calls.begin(), calls.end(), "use_result");
    check(thrown, taken == results);
  }
}

void ExpectMemoryFailure(std::string const& thrown, bool resultTaken) {
  EXPECT_EQ(thrown, resultTaken ? "Out of memory for the row buffer. " : "bad_alloc");
}

TEST_F(CursorFailure, OfEachAllocationOfOpenLeavesTheCursorClosed) {
  Column<ASVStr> text("s", 8U);
  Column<ASBlob> small("b", std::uint16_t{65535});
  Column<ASGeometry> shape("g", std::uint16_t{8});
  Column<ASRealBlob> large("r", 0U);
  cursor.Project() << text << small << shape << large << text.Expression("1");
  Row const row{"5", "abc", std::string(60000, 'x'), "yz", std::string(1000, 'z'), "w"};
  unsigned const failures = FailEachAllocation(
      client,
      [&] {
        client.Reset(), session = &Ready(), cursor.AssignSession(session), Answer(6, {row, row, row});
      },
      [&] { cursor.Open(); }, 1,
      [&](std::string const& thrown, bool resultTaken) {
        ExpectMemoryFailure(thrown, resultTaken);
        EXPECT_EQ(cursor.GetUURecord(0), nullptr);
        EXPECT_EQ(cursor.Detach(), nullptr);
        EXPECT_EQ(client.UnfreedResults(), 0U);
        session->Execute("SET a=1");
        EXPECT_EQ(client.Calls().back(), "query SET a=1");
        EXPECT_THAT(client.Calls(), Not(Contains("init")));
      });
  EXPECT_GE(failures, 10U);
  EXPECT_EQ(cursor.GetAmount(), 3);
  EXPECT_EQ(cursor.Fetch(2), 3);
  EXPECT_EQ(a.value, 5);
  EXPECT_EQ(Bytes(large.value.voidptr(), large.value.Length()), std::string(1000, 'z'));
}

TEST_F(CursorFailure, OfEachAllocationOfAStatementLeavesItsColumnsOut) {
  ASCursor raw(session);
  unsigned const failures = FailEachAllocation(
      client,
      [&] {
        client.Reset();
        raw.AssignSession(session = &Ready());
        Answer(2, {{"1", "ab"}}).Fields({{"n", MYSQL_TYPE_LONG, 11}, {"s", MYSQL_TYPE_BLOB, 4294967295}});
        Answer(2, {{"1", "abcd"}}).Fields({{"n", MYSQL_TYPE_LONG, 11}, {"s", MYSQL_TYPE_BLOB, 4294967295}});
      },
      [&] { raw.Statement("SELECT n, s FROM a_table_with_a_name_that_is_not_short"); }, 2,
      [&](std::string const& thrown, bool) {
        EXPECT_TRUE(thrown == "Out of memory for the row buffer. " || thrown == "bad_alloc") << thrown;
        EXPECT_EQ(raw.GetUURecord(0), nullptr);
        EXPECT_THAT(raw.Project().Items(), IsEmpty());
        EXPECT_EQ(client.UnfreedResults(), 0U);
      });
  EXPECT_GE(failures, 10U);
  EXPECT_EQ(raw.Fetch(), 1);
  EXPECT_EQ(raw.Project().Items().back()->Data()->getstr(), "abcd");
}

TEST_F(CursorFailure, OfEachAllocationOfARecordsFetchLeavesTheProjectionAsItWas) {
  ASInt id;
  ASVStr name(8);
  ASRealBlob bytes(0);
  ASAttribute idColumn("id");
  ASAttribute nameColumn("name");
  ASAttribute bytesColumn("bytes");
  ASDomain record("t", "");
  record.Add(idColumn, id).Add(nameColumn, name).Add(bytesColumn, bytes);
  unsigned const failures = FailEachAllocation(
      client,
      [&] {
        client.Reset();
        cursor.AssignSession(session = &Ready());
        Answer(4, {{"1", "2", "Ann", std::nullopt}});
      },
      [&] { cursor.Fetch(record); }, 1,
      [&](std::string const& thrown, bool resultTaken) {
        ExpectMemoryFailure(thrown, resultTaken);
        EXPECT_EQ(cursor.GetUURecord(0), nullptr);
        EXPECT_EQ(cursor.Project().ProjectQuery(), "a");
        EXPECT_THAT(cursor.Project().Items(), ElementsAre(&a));
        EXPECT_THAT(cursor.Project().BinaryPositions(), IsEmpty());
        EXPECT_EQ(client.UnfreedResults(), 0U);
      });
  EXPECT_GE(failures, 10U);
  EXPECT_EQ(name.getstr(), "Ann");
}

}  // namespace
}  // namespace corvane::test
