#include "corvane/ordbms/old_cursor.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "corvane/corvane.h"
#include "tests/support/sql.h"

using corvane::test::Orders;
using namespace ORDBMS;

namespace {

std::string Text(ASFilter const& filter) { return filter.Query().ToString(); }

// ---- the statement

TEST(OldCursor, PutsTheFiltersStatementInParentheses) {
  old_cursor cursor;
  cursor.Project("code").Project("name");
  cursor.Set("name", "'Italy'", EQUAL).Or("name", "'Malta'", EQUAL);
  EXPECT_EQ(Text(cursor), "(SELECT code, name FROM  WHERE name='Italy' OR name='Malta')");
}

TEST(OldCursor, WithoutAnythingSelectsAll) { EXPECT_EQ(Text(old_cursor()), "(SELECT * FROM )"); }

TEST(OldCursor, NamesItsTablesAsAFilterDoes) {
  Str const table("country");
  old_cursor cursor;
  cursor.Join(table);
  Str expected("(SELECT * FROM country P");
  expected << reinterpret_cast<unsigned long>(table.voidptr()) << ')';
  EXPECT_EQ(Text(cursor), expected.ToString());
}

TEST(OldCursor, TakesTheColumnsAndConditionsOfRecords) {
  Orders o;
  old_cursor cursor;
  cursor.Project() << o.idColumn;
  cursor.Where(o.totalColumn > 10);
  EXPECT_EQ(corvane::test::Sql(cursor, {{&o, "o"}}), "(SELECT o.id FROM  WHERE o.total>10)");
}

TEST(OldCursor, NeedsNoSessionForItsTexts) {
  old_cursor const cursor(nullptr);
  EXPECT_EQ(cursor.Query(), "(SELECT * FROM )");
  EXPECT_EQ(cursor.SimpleQuery(), "(SELECT * FROM )");
}

TEST(OldCursor, ALimitHasNoEffect) {
  old_cursor cursor;
  cursor.Limit(10, 5);
  EXPECT_EQ(Text(cursor), "(SELECT * FROM )");
  EXPECT_EQ(cursor.SimpleQuery(), "(SELECT * FROM )");
}

TEST(OldCursor, WritesNeitherHavingNorGroupingNorHint) {
  Orders o;
  std::unique_ptr<ASGroupAttribute> const sum(o.totalColumn.Sum());
  old_cursor cursor;
  cursor.Project() << o.idColumn;
  cursor.Having(*sum > 100);
  cursor.GroupBy() << o.idColumn;
  cursor.Hint("first");
  EXPECT_EQ(corvane::test::Sql(cursor, {{&o, "o"}}), "(SELECT o.id FROM )");
}

TEST(OldCursor, IsItselfWhateverBaseItIsAskedThrough) {
  old_cursor cursor;
  cursor.orderby("name", ASCENDING);
  EXPECT_EQ(static_cast<ASFilter&>(cursor).Query(), "(SELECT * FROM ) ORDER BY name ASC");
  EXPECT_EQ(static_cast<old_filter&>(cursor).Query(), "(SELECT * FROM ) ORDER BY name ASC");
  EXPECT_EQ(static_cast<ASCursor&>(cursor).Query(), "(SELECT * FROM ) ORDER BY name ASC");
  EXPECT_EQ(static_cast<ASCursor&>(cursor).SimpleQuery(), "(SELECT * FROM )");
}

TEST(OldCursor, IsASubQuery) {
  old_cursor cursor;
  cursor.Project("code");
  EXPECT_EQ(cursor.Exists().Query(), " EXISTS ((SELECT code FROM ))");
}

// ---- the order

TEST(OldCursor, OrdersByAColumn) {
  old_cursor cursor;
  cursor.orderby("name", DESCENDING);
  EXPECT_EQ(Text(cursor), "(SELECT * FROM ) ORDER BY name DESC");
}

TEST(OldCursor, OrdersByAPosition) {
  old_cursor cursor;
  cursor.orderby(2, ASCENDING);
  EXPECT_EQ(Text(cursor), "(SELECT * FROM ) ORDER BY 2 ASC");
}

TEST(OldCursor, ListsItsOrders) {
  old_cursor cursor;
  cursor.orderby("name", DESCENDING);
  cursor.orderby(2, DESCENDING);
  cursor.orderby("LEFT(code, 1)", ASCENDING);
  EXPECT_EQ(Text(cursor), "(SELECT * FROM ) ORDER BY name DESC, 2 DESC, LEFT(code, 1) ASC");
}

TEST(OldCursor, ACodeThatIsNoneGivesNoWord) {
  old_cursor cursor;
  cursor.orderby("name", static_cast<sort_order>(2));
  cursor.orderby(1, ASCENDING);
  EXPECT_EQ(Text(cursor), "(SELECT * FROM ) ORDER BY name, 1 ASC");
}

TEST(OldCursor, ItsParenthesisedFormHasNoOrder) {
  old_cursor cursor;
  cursor.Project("code");
  cursor.orderby("name", DESCENDING);
  EXPECT_EQ(cursor.SimpleQuery(), "(SELECT code FROM )");
}

TEST(OldCursor, TheTextOfAColumnIsLeftAlone) {
  Str const column("name");
  old_cursor cursor;
  cursor.orderby(column, DESCENDING);
  EXPECT_EQ(column, "name");
}

// ---- another filter's part

class OldCursorOfFilter : public testing::Test {
 protected:
  OldCursorOfFilter() {
    filter.Project("code");
    filter.Set("name", "'x'", EQUAL);
  }

  old_filter filter;
  old_cursor cursor;
};

TEST_F(OldCursorOfFilter, HasColumnsAndCondition) {
  cursor << &filter;
  EXPECT_EQ(Text(cursor), "(SELECT code FROM  WHERE name='x')");
}

TEST_F(OldCursorOfFilter, HasTheTables) {
  Str const table("country");
  filter.Join(table);
  cursor << &filter;
  Str expected("(SELECT code FROM country P");
  expected << reinterpret_cast<unsigned long>(table.voidptr()) << " WHERE name='x')";
  EXPECT_EQ(Text(cursor), expected.ToString());
}

TEST_F(OldCursorOfFilter, HasTheColumnsToRead) {
  Orders o;
  filter.Project() << o.idColumn;
  cursor << &filter;
  EXPECT_EQ(cursor.ASFilter::Project().Items(), filter.ASFilter::Project().Items());
}

TEST_F(OldCursorOfFilter, LosesItsOwnPartButTheOrder) {
  cursor.Project("id").Set("id", 1, 5);
  cursor.orderby("name", DESCENDING);
  cursor << &filter;
  EXPECT_EQ(Text(cursor), "(SELECT code FROM  WHERE name='x') ORDER BY name DESC");
}

TEST_F(OldCursorOfFilter, TakesItAsItIsThen) {
  cursor << &filter;
  filter.And("a", 1, 5);
  EXPECT_EQ(Text(cursor), "(SELECT code FROM  WHERE name='x')");
}

TEST_F(OldCursorOfFilter, LeavesTheFilterAlone) {
  cursor << &filter;
  cursor.And("a", 1, 5);
  EXPECT_EQ(Text(filter), "SELECT code FROM  WHERE name='x'");
}

TEST_F(OldCursorOfFilter, MayBeThatOfAnotherCursor) {
  old_cursor other;
  other.Project("id");
  other.orderby(1, ASCENDING);
  cursor << &other;
  EXPECT_EQ(Text(cursor), "(SELECT id FROM )");
}

TEST_F(OldCursorOfFilter, OfItselfIsUnchanged) {
  cursor.Project("id").Set("id", 1, 5);
  cursor << &cursor;
  EXPECT_EQ(Text(cursor), "(SELECT id FROM  WHERE id BETWEEN 1 AND 5)");
}

TEST_F(OldCursorOfFilter, ReturnsTheCursor) { EXPECT_EQ(&(cursor << &filter), &cursor); }

TEST_F(OldCursorOfFilter, WithoutFilterThrowsAndKeepsItsOwn) {
  cursor.Project("id");
  try {
    cursor << static_cast<old_filter*>(nullptr);
    FAIL() << "nothing was thrown";
  } catch (AException const& error) {
    EXPECT_STREQ(error.what(), "There is no filter for cursor. ");
  }
  EXPECT_EQ(Text(cursor), "(SELECT id FROM )");
}

// ---- the owned record

struct Counted : ASDomain {
  explicit Counted(int& living) : ASDomain("t", "T"), living_(living) { ++living_; }
  Counted(Counted const&) = delete;
  Counted& operator=(Counted const&) = delete;
  ~Counted() override { --living_; }

 private:
  int& living_;
};

TEST(OldCursor, DeletesItsRecord) {
  int living = 0;
  {
    old_cursor cursor;
    cursor.SetRecord(new Counted(living));  // the cursor's from here on
    EXPECT_EQ(living, 1);
  }
  EXPECT_EQ(living, 0);
}

TEST(OldCursor, DeletesTheRecordThatAnotherOneReplaces) {
  int first = 0;
  int second = 0;
  old_cursor cursor;
  cursor.SetRecord(new Counted(first));   // the cursor's from here on
  cursor.SetRecord(new Counted(second));  // the cursor's from here on
  EXPECT_EQ(first, 0);
  EXPECT_EQ(second, 1);
}

TEST(OldCursor, TheRecordDoesNotShowInTheStatement) {
  old_cursor cursor;
  cursor.SetRecord(new Orders);  // the cursor's from here on
  EXPECT_EQ(Text(cursor), "(SELECT * FROM )");
}

}  // namespace
