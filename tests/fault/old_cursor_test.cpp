// Cursors of the older interface: opening, reading by the older names, and what failures leave behind.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <list>
#include <new>
#include <string>
#include <vector>

#include "corvane/corvane.h"
#include "tests/support/failing_allocation.h"
#include "tests/support/scripted_cursor.h"
#include "tests/support/sql.h"

namespace corvane::test {
namespace {

using ORDBMS::old_cursor;
using ORDBMS::old_filter;
using ORDBMS::Rdbms;
using testing::Each;
using testing::ElementsAre;

constexpr char const* kNoSession = "There is no session for cursor. ";

struct Country : ASDomain {
  ASInt code;
  ASVStr name{20};
  ASAttribute codeColumn{"code"};
  ASAttribute nameColumn{"name"};

  Country() : ASDomain("country", "Country") { Add(codeColumn, code).Add(nameColumn, name); }
  Country(Country const&) = delete;
  Country& operator=(Country const&) = delete;
};

class OldCursor : public ScriptedCursor {
 protected:
  void TearDown() override {
    Rdbms::SetSession(nullptr);
    ScriptedCursor::TearDown();
  }

  // Gives the cursor a record of its own.
  static Country& Own(old_cursor& cursor) {
    auto* const country = new Country;
    cursor.SetRecord(country);  // the cursor's from here on
    return *country;
  }

  // The columns that the cursor reads into.
  static std::list<ASSimpleAttribute*> Items(old_cursor const& cursor) {
    return static_cast<ASFilter const&>(cursor).Project().Items();
  }

  old_cursor cursor;
};

// ---- opening

TEST_F(OldCursor, OpensByItsStatement) {
  Answer(1, {{"1"}, {"2"}});
  cursor.Project("code").Set("name", "'Italy'", ORDBMS::EQUAL);
  cursor.orderby("code", ORDBMS::DESCENDING);
  cursor.Open(session);
  EXPECT_THAT(client.Calls(), ElementsAre("query (SELECT code FROM  WHERE name='Italy') ORDER BY code DESC",
                                          "use_result", "free_result"));
  EXPECT_EQ(cursor.GetAmount(), 2);
}

TEST_F(OldCursor, ReadsItsColumnsIntoItsRecord) {
  Country const& country = Own(cursor);
  Answer(2, {{"1", "Italy"}, {"2", std::nullopt}});
  cursor.Project("code").Project("name");
  cursor.Open(session);
  EXPECT_EQ(cursor.Fetch(), 1);
  EXPECT_EQ(country.code, 1);
  EXPECT_EQ(country.name, "Italy");
  EXPECT_EQ(cursor.Fetch(), 2);
  EXPECT_EQ(country.code, 2);
  EXPECT_EQ(country.name.IsNull(), 1);
  EXPECT_EQ(cursor.Fetch(), 0);
}

TEST_F(OldCursor, ListsTheRecordBehindTheProjectedColumns) {
  Orders o;
  Country& country = Own(cursor);
  Answer(3, {{"9", "1", "Italy"}});
  cursor.Project() << o.idColumn;
  cursor.Open(session);
  EXPECT_THAT(Items(cursor), ElementsAre(&o.idColumn, &country.codeColumn, &country.nameColumn));
  cursor.Fetch();
  EXPECT_EQ(o.id, 9);
  EXPECT_EQ(country.code, 1);
  EXPECT_EQ(country.name, "Italy");
}

TEST_F(OldCursor, DoesNotWriteTheRecordIntoTheSelectList) {
  Orders o;
  Own(cursor);
  Answer(3, {{"9", "1", "Italy"}});
  cursor.Project() << o.idColumn;
  cursor.Open(session);
  EXPECT_EQ(Sql(cursor, {{&o, "o"}}), "(SELECT o.id FROM )");
  ASSERT_EQ(Statements().size(), 1U);
  EXPECT_EQ(Sql(Str(Statements()[0]), {{&o, "o"}}), "(SELECT o.id FROM )");
}

TEST_F(OldCursor, WithoutRecordReadsTheProjectedColumnsAlone) {
  Column<ASInt> a("a");
  Answer(1, {{"7"}});
  cursor.Project() << a;
  cursor.Open(session);
  EXPECT_EQ(cursor.Fetch(), 1);
  EXPECT_EQ(a.value, 7);
}

TEST_F(OldCursor, ReadsByTheColumnsOfAnotherFilter) {
  Column<ASInt> a("a");
  old_filter filter;
  filter.Project() << a;
  Country const& country = Own(cursor);
  Answer(3, {{"7", "1", "Italy"}});
  cursor << &filter;
  cursor.Open(session);
  cursor.Fetch();
  EXPECT_EQ(a.value, 7);
  EXPECT_EQ(country.code, 1);
}

TEST_F(OldCursor, ResultsOfMoreColumnsThanAreReadAreTaken) {
  Country const& country = Own(cursor);
  Answer(3, {{"1", "Italy", "spare"}});
  cursor.Open(session);
  cursor.Fetch();
  EXPECT_EQ(country.name, "Italy");
}

struct OwnText : old_cursor {
  Str Query() const override { return "SELECT own"; }
};

TEST_F(OldCursor, ADerivedCursorsRenderingIsRun) {
  OwnText own;
  Answer(1, {});
  own.Open(session);
  EXPECT_THAT(Statements(), ElementsAre("SELECT own"));
}

// ---- opened already

TEST_F(OldCursor, OpensOnce) {
  Country& country = Own(cursor);
  Answer(2, {{"1", "Italy"}});
  cursor.Open(session);
  client.ForgetCalls();
  cursor.Open(session);
  EXPECT_THAT(client.Calls(), ElementsAre());
  EXPECT_THAT(Items(cursor), ElementsAre(&country.codeColumn, &country.nameColumn));
  EXPECT_EQ(cursor.GetAmount(), 1);
}

TEST_F(OldCursor, TakesTheSessionThoughItIsOpen) {
  ASSession other({{"EmulateSequences", "no"}}, 0, false);
  Column<ASInt> a("a");
  Answer(1, {{"1"}});
  Answer(1, {{"2"}});
  cursor.Project() << a;
  cursor.Open(session);
  cursor.Open(&other);
  delete cursor.Detach();
  client.ForgetCalls();
  cursor.Open();
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("2 query (SELECT a FROM )", "2 use_result", "2 free_result"));
}

TEST_F(OldCursor, OpensAgainAfterDetach) {
  Country& country = Own(cursor);
  Answer(2, {{"1", "Italy"}});
  Answer(2, {{"2", "Malta"}});
  cursor.Open(session);
  cursor.Fetch();
  delete cursor.Detach();
  cursor.Open(session);
  cursor.Reset();
  EXPECT_EQ(cursor.Fetch(), 1);
  EXPECT_EQ(country.code, 2);
  EXPECT_EQ(country.name, "Malta");
  EXPECT_THAT(Items(cursor), ElementsAre(&country.codeColumn, &country.nameColumn));
}

TEST_F(OldCursor, ReadsIntoTheSessionGivenAtItsConstruction) {
  old_cursor other(session);
  Answer(1, {{"1"}});
  other.Project("code");
  EXPECT_EQ(other.GetAmount(), 1);
  EXPECT_THAT(Statements(), ElementsAre("(SELECT code FROM )"));
}

// ---- what has no effect on the statement

TEST_F(OldCursor, RunsWithoutLimitAndSetOperations) {
  Column<ASInt> a("a");
  old_filter filter;
  filter.Project("b");
  Answer(1, {{"1"}});
  cursor.AssignSession(session);
  cursor.Project() << a;
  cursor.Limit(1, 2);
  cursor.Union(filter).UnionAll(filter).Intersect(filter).Minus(filter);
  EXPECT_EQ(cursor.SimpleQuery(), "(SELECT a FROM )");
  cursor.Open(session);
  EXPECT_THAT(Statements(), ElementsAre("(SELECT a FROM )"));
}

TEST_F(OldCursor, RendersWithoutARawText) {
  cursor.AssignSession(session);
  cursor.Project("code");
  cursor.Statement("DELETE FROM t");
  EXPECT_EQ(cursor.Query(), "(SELECT code FROM )");
  EXPECT_EQ(cursor.SimpleQuery(), "(SELECT code FROM )");
}

TEST_F(OldCursor, IsAnOperandOfASetOperation) {
  Column<ASInt> a("a");
  cursor.Project("code");
  cursor.orderby("code", ORDBMS::ASCENDING);
  ASCursor whole(session);
  whole.Project() << a;
  whole.Union(cursor);
  EXPECT_EQ(whole.Query(), "SELECT a FROM  UNION (SELECT code FROM ) ORDER BY code ASC");
}

// ---- failures of opening

TEST_F(OldCursor, WithoutSessionThrows) {
  Own(cursor);
  EXPECT_EQ(ThrownBy([&] { cursor.Open(nullptr); }), (Thrown{0, kNoSession}));
  EXPECT_THAT(Items(cursor), ElementsAre());
}

TEST_F(OldCursor, LosesItsSessionToANullOne) {
  cursor.AssignSession(session);
  EXPECT_EQ(ThrownBy([&] { cursor.Open(nullptr); }), (Thrown{0, kNoSession}));
}

TEST_F(OldCursor, ARefusedStatementIsThrownAsTheSessionDoes) {
  cursor.Project("code");
  client.FailQuery(1146, "no table");
  EXPECT_EQ(ThrownBy([&] { cursor.Open(session); }),
            (Thrown{102, "DB Error 1146 (no table) in query\n\b\n(SELECT code FROM )"}));
}

TEST_F(OldCursor, AFailureLeavesTheProjectionAsItWas) {
  Column<ASInt> a("a");
  Own(cursor);
  cursor.Project() << a;
  client.FailQuery(1146, "no table");
  ThrownBy([&] { cursor.Open(session); });
  EXPECT_THAT(Items(cursor), ElementsAre(&a));
  EXPECT_EQ(cursor.Query(), "(SELECT a FROM )");
}

TEST_F(OldCursor, AResultThatIsTooNarrowLeavesTheProjectionAsItWas) {
  Column<ASInt> a("a");
  Own(cursor);
  cursor.Project() << a;
  Answer(2, {{"7", "1"}});
  EXPECT_EQ(ThrownBy([&] { cursor.Open(session); }), (Thrown{0, "MySQL fetch error. "}));
  EXPECT_THAT(Items(cursor), ElementsAre(&a));
}

TEST_F(OldCursor, ALostResultLeavesTheProjectionAsItWas) {
  Own(cursor);
  Answer(2, {{"1", "Italy"}, {"2", "Malta"}});
  client.FailFetchRow(2013, "lost").After(1);
  EXPECT_EQ(ThrownBy([&] { cursor.Open(session); }), (Thrown{0, "MySQL fetch error. "}));
  EXPECT_THAT(Items(cursor), ElementsAre());
}

TEST_F(OldCursor, OpensAfterAFailure) {
  Column<ASInt> a("a");
  Country& country = Own(cursor);
  cursor.Project() << a;
  client.FailQuery(1146, "no table");
  Answer(3, {{"7", "1", "Italy"}});
  ThrownBy([&] { cursor.Open(session); });
  cursor.Open(session);
  EXPECT_EQ(cursor.Fetch(), 1);
  EXPECT_THAT(Items(cursor), ElementsAre(&a, &country.codeColumn, &country.nameColumn));
  EXPECT_EQ(a.value, 7);
  EXPECT_EQ(country.name, "Italy");
}

TEST_F(OldCursor, AFailureAfterDetachKeepsTheColumnsThatWereListed) {
  Country& country = Own(cursor);
  Answer(2, {{"1", "Italy"}});
  client.FailQuery(1146, "no table").After(1);
  cursor.Open(session);
  delete cursor.Detach();
  ThrownBy([&] { cursor.Open(session); });
  EXPECT_THAT(Items(cursor), ElementsAre(&country.codeColumn, &country.nameColumn));
}

// ---- memory

// Fails each allocation of opening in turn, up to the one that is not reached any more; what each failure threw.
std::vector<std::string> FailEachAllocationOf(old_cursor& cursor, ASSession* session) {
  std::vector<std::string> thrown;
  for (unsigned allowed = 0;; ++allowed) {
    FailingAllocation const failing(allowed);
    std::string message;
    try {
      cursor.Open(session);
    } catch (AException const& error) {
      UnfailingAllocation const unfailing;
      message = error.what();
    } catch (std::bad_alloc const&) {
      UnfailingAllocation const unfailing;
      message = "bad_alloc";
    }
    UnfailingAllocation const unfailing;
    if (!failing.Failed()) return thrown;
    thrown.push_back(message);
    EXPECT_EQ(static_cast<ASFilter&>(cursor).Project().Items().size(), 1U) << "after " << allowed;
    EXPECT_EQ(cursor.Detach(), nullptr) << "after " << allowed;
  }
}

// ---- another record

TEST_F(OldCursor, TheSameRecordOnceMoreStays) {
  Country& country = Own(cursor);
  cursor.SetRecord(&country);
  Answer(2, {{"1", "a"}});
  cursor.Open(session);
  EXPECT_EQ(cursor.Fetch(), 1);
  EXPECT_EQ(country.name, "a");
}

TEST_F(OldCursor, AnotherRecordClosesTheCursor) {
  Own(cursor);
  Answer(2, {{"1", "a"}, {"2", "b"}});
  cursor.Open(session);
  cursor.Fetch();
  Country& other = Own(cursor);
  EXPECT_THAT(Items(cursor), ElementsAre());
  Answer(2, {{"3", "c"}});
  cursor.Open(session);
  EXPECT_EQ(cursor.Fetch(), 1);
  EXPECT_EQ(other.name, "c");
}

TEST_F(OldCursor, WithoutItsRecordReadsNothing) {
  Own(cursor);
  Answer(2, {{"1", "a"}});
  cursor.Open(session);
  cursor.SetRecord(nullptr);
  Answer(2, {{"1", "a"}});
  cursor.Open(session);
  EXPECT_EQ(cursor.Fetch(), 1);
  Int field;
  EXPECT_ANY_THROW(Rdbms::GetField(cursor, field, "code"));
}

class OldCursorMemory : public OldCursor {
 protected:
  void SetUp() override {
    OldCursor::SetUp();
    country = &Own(cursor);
    cursor.Project() << a;
    client.AnswerQuery(3, {{"7", "1", "Italy"}}).Times(1000);
  }

  void TearDown() override {
    client.Reset();  // answers are left over
    OldCursor::TearDown();
  }

  Column<ASInt> a{"a"};
  Country* country = nullptr;
};

TEST_F(OldCursorMemory, ExhaustedLeavesTheProjectionAsItWas) {
  EXPECT_GT(FailEachAllocationOf(cursor, session).size(), 3U);
  EXPECT_THAT(Items(cursor), ElementsAre(&a, &country->codeColumn, &country->nameColumn));
  EXPECT_EQ(cursor.Fetch(), 1);
  EXPECT_EQ(country->name, "Italy");
}

TEST_F(OldCursorMemory, ExhaustedThrowsAsEveryFailureOfOpening) {
  EXPECT_THAT(FailEachAllocationOf(cursor, session), Each("Out of memory for the row buffer. "));
}

// ---- the older names

class OldNames : public OldCursor {
 protected:
  void SetUp() override {
    OldCursor::SetUp();
    Rdbms::SetSession(session);
  }

  // Opens the cursor on a result of two rows, (1, Italy) and (2, NULL).
  Country& Opened() {
    Country& country = Own(cursor);
    Answer(2, {{"1", "Italy"}, {"2", std::nullopt}});
    cursor.Project("code").Project("name");
    Rdbms::OpenCursor(cursor);
    return country;
  }
};

TEST_F(OldNames, SetSessionSetsIt) { EXPECT_EQ(Rdbms::session, session); }

TEST_F(OldNames, OpenCursorOpensOnTheSession) {
  Answer(1, {});
  cursor.Project("code");
  EXPECT_EQ(Rdbms::OpenCursor(cursor), 1);
  EXPECT_THAT(client.Calls(), ElementsAre("query (SELECT code FROM )", "use_result", "free_result"));
}

TEST_F(OldNames, OpenCursorListsTheRecord) {
  Country& country = Opened();
  EXPECT_THAT(Items(cursor), ElementsAre(&country.codeColumn, &country.nameColumn));
}

TEST_F(OldNames, OpenCursorReplacesTheCursorsOwnSession) {
  ASSession other({{"EmulateSequences", "no"}}, 0, false);
  old_cursor elsewhere(&other);
  client.ForgetCalls();
  Answer(1, {});
  Rdbms::OpenCursor(elsewhere);
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("1 query (SELECT * FROM )", "1 use_result", "1 free_result"));
}

TEST_F(OldNames, OpenCursorWithoutSessionThrowsThoughTheCursorHasOne) {
  Rdbms::SetSession(nullptr);
  cursor.AssignSession(session);
  EXPECT_EQ(ThrownBy([&] { Rdbms::OpenCursor(cursor); }), (Thrown{0, kNoSession}));
  EXPECT_THAT(client.Calls(), ElementsAre());
}

TEST_F(OldNames, OpenCursorThrowsWhatOpenThrows) {
  client.FailQuery(1146, "no table");
  EXPECT_EQ(ThrownBy([&] { Rdbms::OpenCursor(cursor); }),
            (Thrown{102, "DB Error 1146 (no table) in query\n\b\n(SELECT * FROM )"}));
}

TEST_F(OldNames, CursorBulkCountsTheRows) {
  Opened();
  EXPECT_EQ(Rdbms::CursorBulk(cursor), 2);
}

TEST_F(OldNames, CursorBulkOpens) {
  Answer(1, {{"1"}});
  cursor.AssignSession(session);
  EXPECT_EQ(Rdbms::CursorBulk(cursor), 1);
}

TEST_F(OldNames, FetchWalksTheRows) {
  Country const& country = Opened();
  EXPECT_EQ(Rdbms::Fetch(cursor), 1);
  EXPECT_EQ(country.name, "Italy");
  EXPECT_EQ(Rdbms::Fetch(cursor), 2);
  EXPECT_EQ(country.code, 2);
  EXPECT_EQ(Rdbms::Fetch(cursor), 0);
  EXPECT_EQ(Rdbms::Fetch(cursor), 0);
}

struct OwnFetch : old_cursor {
  using old_cursor::Fetch;
  int Fetch() override { return 42; }
};

TEST_F(OldNames, FetchIsThatOfADerivedCursor) {
  OwnFetch own;
  EXPECT_EQ(Rdbms::Fetch(own), 42);
  EXPECT_THAT(client.Calls(), ElementsAre());
}

TEST_F(OldNames, CloseCursorLeavesTheCursorOpen) {
  Opened();
  Rdbms::Fetch(cursor);
  client.ForgetCalls();
  EXPECT_EQ(Rdbms::CloseCursor(cursor), 1);
  EXPECT_EQ(Rdbms::Fetch(cursor), 2);
  EXPECT_THAT(client.Calls(), ElementsAre());
}

// ---- fields of the rows

TEST_F(OldNames, GetFieldGivesTheFetchedRow) {
  Opened();
  Country field;
  Rdbms::Fetch(cursor);
  Rdbms::GetField(cursor, field.code);
  Rdbms::GetField(cursor, field.name);
  EXPECT_EQ(field.code, 1);
  EXPECT_EQ(field.name, "Italy");
}

TEST_F(OldNames, GetFieldGivesANullField) {
  Opened();
  Country field;
  field.name = "old";
  Rdbms::Fetch(cursor);
  Rdbms::Fetch(cursor);
  Rdbms::GetField(cursor, field.code);
  Rdbms::GetField(cursor, field.name);
  EXPECT_EQ(field.code, 2);
  EXPECT_EQ(field.name.IsNull(), 1);
}

TEST_F(OldNames, GetFieldTakesANameForAPlainValue) {
  Opened();
  Int code(0);
  Str name;
  Rdbms::Fetch(cursor);
  Rdbms::GetField(cursor, code, "CODE");
  Rdbms::GetField(cursor, name, "name of it");
  EXPECT_EQ(code, 1);
  EXPECT_EQ(name, "Italy");
}

TEST_F(OldNames, GetFieldGivesTheFirstOfSeveralColumns) {
  Column<ASInt> code("Code");
  cursor.Project() << code;
  Own(cursor);
  Answer(3, {{"7", "1", "Italy"}});
  Rdbms::OpenCursor(cursor);
  Rdbms::Fetch(cursor);
  Int field(0);
  Rdbms::GetField(cursor, field, "code");
  EXPECT_EQ(field, 7);
}

TEST_F(OldNames, GetFieldPassesOverColumnsWithoutValue) {
  ASAttribute const empty("code");
  cursor.Project() << empty;
  Own(cursor);
  Answer(3, {{"7", "1", "Italy"}});
  Rdbms::OpenCursor(cursor);
  Rdbms::Fetch(cursor);
  Int field(0);
  Rdbms::GetField(cursor, field, "code");
  EXPECT_EQ(field, 1);
}

TEST_F(OldNames, GetFieldOfAnotherTypeThrowsAndLeavesTheValue) {
  Opened();
  Rdbms::Fetch(cursor);
  Str field("old");
  EXPECT_EQ(ThrownBy([&] { Rdbms::GetField(cursor, field, "code"); }),
            (Thrown{0, "Incompatible types for Str::copy(). "}));
  EXPECT_EQ(field, "old");
}

// What reading a field throws as a text.
template <class Action>
std::string TextThrownBy(Action action) {
  try {
    action();
  } catch (Str const& text) {
    return text.ToString();
  }
  return "no text was thrown";
}

TEST_F(OldNames, GetFieldOfAnUnknownColumnThrowsAText) {
  Opened();
  Rdbms::Fetch(cursor);
  Int field(5);
  EXPECT_EQ(TextThrownBy([&] { Rdbms::GetField(cursor, field, "Size x"); }),
            "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD Size x \xEF\xBF\xBD\xEF\xBF\xBD "
            "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"
            "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD \xEF\xBF\xBD "
            "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD. ");
  EXPECT_EQ(field, 5);
}

TEST_F(OldNames, GetFieldOfAnUnboundValueThrowsAText) {
  Opened();
  Rdbms::Fetch(cursor);
  ASInt field;
  EXPECT_EQ(TextThrownBy([&] { Rdbms::GetField(cursor, field); }),
            "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD EMPTY \xEF\xBF\xBD\xEF\xBF\xBD "
            "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"
            "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD \xEF\xBF\xBD "
            "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD. ");
}

TEST_F(OldNames, GetFieldOpensNothing) {
  Own(cursor);
  Int field(5);
  EXPECT_NE(TextThrownBy([&] { Rdbms::GetField(cursor, field, "code"); }), "no text was thrown");
  EXPECT_THAT(client.Calls(), ElementsAre());
}

}  // namespace
}  // namespace corvane::test
