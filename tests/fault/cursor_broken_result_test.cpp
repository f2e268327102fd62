// Results that break off while a cursor reads their rows: the server interrupts the statement or the connection goes.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

#include "corvane/corvane.h"
#include "tests/support/scripted_cursor.h"

namespace corvane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char const* kFetchError = "MySQL fetch error. ";

// A record of one column of each way in which rows hold their values, all of which have content.
class CursorBrokenResult : public ScriptedCursor {
 protected:
  void SetUp() override {
    ScriptedCursor::SetUp();
    record.Add(idColumn, id).Add(nameColumn, name).Add(smallColumn, small).Add(largeColumn, large);
    cursor.AssignSession(session);
    id = 7;
    name = "before";
    small.Fill("xyz", 3);
    large = RealBlob(3, "uvw");
  }

  void ReopenWith(Parameters parameters) {
    Reopen(std::move(parameters));
    cursor.AssignSession(session);
  }

  void AnswerRows(std::size_t count) {
    Answer(4, std::vector<Row>(count, Row{"1", "Ann", std::string(1000, 's'), std::string(2000, 'l')}))
        .Matching("SELECT");
  }

  void ExpectValuesAsBefore() {
    EXPECT_EQ(id, 7);
    EXPECT_EQ(name.getstr(), "before");
    EXPECT_EQ(Bytes(small.Bytes(), 3), "xyz");
    EXPECT_EQ(Bytes(large.voidptr(), large.Length()), "uvw");
  }

  void ExpectClosed() {
    EXPECT_EQ(cursor.GetUURecord(0), nullptr);
    EXPECT_EQ(cursor.Detach(), nullptr);
    EXPECT_THAT(cursor.Project().Items(), IsEmpty());
    EXPECT_EQ(client.UnfreedResults(), 0U);
  }

  void ExpectUsable() {
    AnswerRows(2);
    EXPECT_EQ(cursor.Fetch(record), 1);
    EXPECT_EQ(cursor.GetAmount(), 2);
    EXPECT_EQ(id, 1);
    EXPECT_EQ(name.getstr(), "Ann");
    EXPECT_EQ(large.Length(), 2000U);
  }

  ASInt id;
  ASVStr name{3000};
  ASBlob small{1000};
  ASRealBlob large{0};
  ASAttribute idColumn{"id"};
  ASAttribute nameColumn{"name"};
  ASAttribute smallColumn{"small"};
  ASAttribute largeColumn{"large"};
  ASDomain record{"t", ""};
  ASCursor cursor{nullptr};
};

// The statement failed with this number in place of a row, 0-based, of 2,000.
struct Broken {
  unsigned number;
  unsigned row;

  friend std::ostream& operator<<(std::ostream& out, Broken const& broken) {
    return out << broken.number << " in place of row " << broken.row;
  }
};

class CursorResultInterrupted : public CursorBrokenResult, public testing::WithParamInterface<Broken> {
 protected:
  void Break() {
    AnswerRows(2000);
    client.FailFetchRow(GetParam().number, "text").After(GetParam().row);
    EXPECT_EQ(ThrownBy([&] { cursor.Fetch(record); }), (Thrown{0, kFetchError}));
  }
};

TEST_P(CursorResultInterrupted, LeavesCursorAndValuesAsBefore) {
  Break();
  ExpectClosed();
  ExpectValuesAsBefore();
  ExpectUsable();
}

TEST_P(CursorResultInterrupted, LeavesTheConnectionUsable) {
  Break();
  client.ForgetCalls();
  session->Execute("SET a=1");
  EXPECT_THAT(client.Calls(), ElementsAre("query SET a=1"));
}

INSTANTIATE_TEST_SUITE_P(Numbers, CursorResultInterrupted,
                         testing::Values(Broken{1317, 0}, Broken{1317, 1}, Broken{1317, 1000}, Broken{1317, 2000},
                                         Broken{1969, 0}, Broken{1969, 1}, Broken{1969, 1000}, Broken{1969, 2000},
                                         Broken{2027, 0}, Broken{2027, 1}, Broken{2027, 1000}, Broken{2027, 2000},
                                         Broken{2008, 0}, Broken{2008, 1}, Broken{2008, 1000}, Broken{2008, 2000}));

class CursorResultLost : public CursorResultInterrupted {};

TEST_P(CursorResultLost, LeavesCursorAndValuesAsBefore) {
  ReopenWith({{"AutoCommit", "on"}});
  Break();
  ExpectClosed();
  ExpectValuesAsBefore();
  ExpectUsable();
}

TEST_P(CursorResultLost, HasTheNextStatementConnectAgainAndRunWithAutocommitOn) {
  ReopenWith({{"AutoCommit", "on"}});
  Break();
  client.ForgetCalls();
  session->Execute("SET a=1");
  EXPECT_THAT(client.Calls(), ElementsAre("query SET a=1", "close", "init", "connect '' '' '' '' 0",
                                          "query SET AUTOCOMMIT=1", "query SET a=1"));
}

TEST_P(CursorResultLost, HasTheNextStatementConnectAgainAndFailWithAutocommitOff) {
  Break();
  client.ForgetCalls();
  EXPECT_EQ(ThrownBy([&] { session->Execute("SET a=1"); }), (Thrown{102, "DB Error 0 () in query\n\b\nSET a=1"}));
  EXPECT_THAT(client.Calls(),
              ElementsAre("query SET a=1", "close", "init", "connect '' '' '' '' 0", "query SET AUTOCOMMIT=0"));
  ExpectUsable();
}

TEST_P(CursorResultLost, HasTheNextStatementFailWithAutoReconnectOff) {
  ReopenWith({{"AutoReconnect", "off"}});
  Break();
  EXPECT_EQ(ThrownBy([&] { session->Execute("SET a=1"); }), (Thrown{103, "Database connection lost"}));
}

INSTANTIATE_TEST_SUITE_P(Numbers, CursorResultLost,
                         testing::Values(Broken{2006, 0}, Broken{2006, 1}, Broken{2006, 1000}, Broken{2006, 2000},
                                         Broken{2013, 0}, Broken{2013, 1}, Broken{2013, 1000}, Broken{2013, 2000}));

TEST_F(CursorBrokenResult, WithoutRowsIsAFetchErrorToo) {
  AnswerRows(0);
  client.FailFetchRow(1317, "interrupted");
  EXPECT_EQ(ThrownBy([&] { cursor.Fetch(record); }), (Thrown{0, kFetchError}));
  ExpectClosed();
  ExpectUsable();
}

TEST_F(CursorBrokenResult, IsAFetchErrorWhateverOpensTheCursor) {
  Column<ASInt> a("a");
  a.value = 7;
  ASCursor other(session);
  other.Project() << a;
  auto const expectBroken = [&](auto open) {
    Answer(1, {{"1"}, {"2"}, {"3"}});
    client.FailFetchRow(1317, "interrupted").After(1);
    EXPECT_EQ(ThrownBy(open), (Thrown{0, kFetchError}));
    EXPECT_EQ(other.GetUURecord(0), nullptr);
    EXPECT_EQ(a.value, 7);
  };
  expectBroken([&] { other.Open(); });
  expectBroken([&] { other.Fetch(); });
  expectBroken([&] { other.Fetch(0); });
  expectBroken([&] { other.FetchSingle(); });
  expectBroken([&] { other.GetAmount(); });
  expectBroken([&] { other.Reset(); });
}

TEST_F(CursorBrokenResult, OfACursorThatIsReadFromTheMiddleLeavesTheCurrentRow) {
  Column<ASInt> a("a");
  ASCursor other(session);
  other.Project() << a;
  Answer(1, {{"1"}, {"2"}, {"3"}}).Times(3);
  other.Fetch(0);
  delete other.Detach();
  client.FailFetchRow(1317, "interrupted").After(2);
  EXPECT_EQ(ThrownBy([&] { other.Fetch(); }), (Thrown{0, kFetchError}));
  EXPECT_EQ(other.Fetch(), 2);
  EXPECT_EQ(a.value, 2);
}

// The rest of a result that is given up is read, and may break off as well.
TEST_F(CursorBrokenResult, BehindAFailureOfItsOwnChangesNothing) {
  Column<ASInt> a("a");
  Column<ASInt> b("b");
  ASCursor wide(session);
  wide.Project() << a << b;
  Answer(1, {{"1"}, {"2"}, {"3"}});
  client.FailFetchRow(1317, "interrupted").After(1);
  EXPECT_EQ(ThrownBy([&] { wide.Open(); }), (Thrown{0, kFetchError}));
  EXPECT_EQ(client.UnfreedResults(), 0U);
  session->Execute("SET a=1");
  EXPECT_THAT(client.Calls(), ElementsAre("query SELECT a, b FROM ", "use_result", "free_result", "query SET a=1"));
}

}  // namespace
}  // namespace corvane::test
