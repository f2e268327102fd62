// What a cursor renders: the filter's statement with the session's keywords, set operations, order and limit.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "corvane/corvane.h"
#include "tests/support/scripted_cursor.h"
#include "tests/support/sql.h"

namespace corvane::test {
namespace {

using testing::ElementsAre;

class CursorQuery : public ScriptedCursor {
 protected:
  std::string Text(ASFilter const& query) const { return Sql(query, names); }
  std::string Simple(ASCursor const& query) const { return Sql(query.SimpleQuery(), names); }

  Orders o;
  Customers c;
  Cities y;
  std::vector<Name> names{{&o, "o"}, {&c, "c"}, {&y, "y"}};
};

// ---- the filter's part

TEST_F(CursorQuery, WithoutColumnsSelectsAll) {
  ASCursor cursor(session);
  EXPECT_EQ(Text(cursor), "SELECT * FROM ");
}

TEST_F(CursorQuery, QuotesTheTable) {
  ASCursor cursor(session);
  cursor.Project() << o.idColumn << o.totalColumn;
  EXPECT_EQ(Text(cursor), "SELECT o.id, o.total FROM (`orders` o)");
}

TEST_F(CursorQuery, QuotesSchemaAndTableApart) {
  ASCursor cursor(session);
  cursor.Project() << y.nameColumn;
  EXPECT_EQ(Text(cursor), "SELECT y.name FROM (`shop`.`cities` y)");
}

TEST_F(CursorQuery, QuotesEveryTableOfAJoin) {
  ASCursor cursor(session);
  cursor.Project() << o.idColumn << c.nameColumn;
  cursor.Where(c.idColumn == o.customerColumn);
  EXPECT_EQ(Text(cursor), "SELECT o.id, c.name FROM (`orders` o, `customers` c) WHERE c.id=(o.customer_id)");
}

TEST_F(CursorQuery, QuotesTheOptionalTablesOfOuterJoins) {
  ASCursor cursor(session);
  cursor.Project() << o.idColumn;
  cursor.Where(++c.idColumn == o.customerColumn && ++y.idColumn == o.totalColumn && o.totalColumn > 10);
  EXPECT_EQ(Text(cursor),
            "SELECT o.id FROM (`orders` o) LEFT JOIN `customers` c ON (c.id=(o.customer_id))"
            " LEFT JOIN `shop`.`cities` y ON (y.id=(o.total)) WHERE o.total>10");
}

TEST_F(CursorQuery, QuotesInTheGroupingToo) {
  ASCursor cursor(session);
  cursor.GroupBy() << o.idColumn;
  cursor.Query();
  EXPECT_EQ(Sql(cursor.GroupBy().JoinQuery(), names), "(`orders` o)");
}

TEST_F(CursorQuery, HasHintGroupingAndHaving) {
  ASCursor cursor(session);
  std::unique_ptr<ASGroupAttribute> const sum(o.totalColumn.Sum());
  cursor.Project() << o.customerColumn << *sum;
  cursor.Hint("first");
  cursor.Having(*sum > 100);
  EXPECT_EQ(Text(cursor),
            "SELECT /*+ first */o.customer_id, SUM(o.total) FROM (`orders` o) GROUP BY o.customer_id"
            "  HAVING SUM(o.total)>100");
}

TEST_F(CursorQuery, OfAnAssignedFilterIsTheFilters) {
  ASFilter filter;
  filter.Project() << o.idColumn;
  filter.Where(o.totalColumn > 10);
  ASCursor cursor(session);
  cursor.Limit(5);
  cursor = filter;
  EXPECT_EQ(Text(cursor), "SELECT o.id FROM (`orders` o) WHERE o.total>10 LIMIT 5");
}

// ---- order and limit

class CursorOrderLimit : public CursorQuery {
 protected:
  void SetUp() override {
    CursorQuery::SetUp();
    cursor.AssignSession(session);
    cursor.Project() << o.idColumn;
  }

  ASCursor cursor{nullptr};
};

TEST_F(CursorOrderLimit, OneOrder) {
  cursor.Order(-o.idColumn);
  EXPECT_EQ(Text(cursor), "SELECT o.id FROM (`orders` o) ORDER BY o.id DESC");
}

TEST_F(CursorOrderLimit, TwoOrdersMakeOneList) {
  cursor.Order(ASOrder(o.idColumn.Query()));
  cursor.Order(-o.totalColumn + o.noteColumn);
  EXPECT_EQ(Text(cursor), "SELECT o.id FROM (`orders` o) ORDER BY o.id, o.total DESC, o.note ASC");
}

TEST_F(CursorOrderLimit, OfAnAggregate) {
  std::unique_ptr<ASGroupAttribute> const sum(o.totalColumn.Sum());
  cursor.Order(-*sum);
  EXPECT_EQ(Text(cursor), "SELECT o.id FROM (`orders` o) ORDER BY SUM(o.total) DESC");
}

TEST_F(CursorOrderLimit, AnEmptyOrderWritesNothing) {
  cursor.Order(ASOrder());
  EXPECT_EQ(Text(cursor), "SELECT o.id FROM (`orders` o)");
}

TEST_F(CursorOrderLimit, IsTakenOverAsItWas) {
  ASOrder order("1");
  cursor.Order(order);
  order << "2";
  EXPECT_EQ(Text(cursor), "SELECT o.id FROM (`orders` o) ORDER BY 1");
}

struct LimitText {
  unsigned count;
  unsigned offset;
  char const* text;
};

class CursorLimit : public CursorOrderLimit, public testing::WithParamInterface<LimitText> {};

TEST_P(CursorLimit, StandsAtTheEnd) {
  cursor.Limit(GetParam().count, GetParam().offset);
  EXPECT_EQ(Text(cursor), std::string("SELECT o.id FROM (`orders` o)") + GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(Numbers, CursorLimit,
                         testing::Values(LimitText{10, 0, " LIMIT 10"}, LimitText{10, 5, " LIMIT 10 OFFSET 5"},
                                         LimitText{0, 0, " LIMIT 0"}, LimitText{0, 1, " LIMIT 0 OFFSET 1"},
                                         LimitText{4294967295, 4294967295, " LIMIT 4294967295 OFFSET 4294967295"}));

TEST_F(CursorOrderLimit, ASecondLimitReplacesTheFirst) {
  cursor.Limit(10, 5);
  cursor.Limit(3);
  EXPECT_EQ(Text(cursor), "SELECT o.id FROM (`orders` o) LIMIT 3");
}

TEST_F(CursorOrderLimit, LimitReturnsTheCursor) { EXPECT_EQ(&cursor.Limit(1), &cursor); }

TEST_F(CursorOrderLimit, StandInThisOrderBehindTheSetOperations) {
  ASFilter other;
  other.Project() << c.idColumn;
  cursor.Limit(10, 5);
  cursor.Order(ASOrder("1"));
  cursor.Union(other);
  cursor.Where(o.totalColumn > 10);
  EXPECT_EQ(Text(cursor),
            "SELECT o.id FROM (`orders` o) WHERE o.total>10 UNION SELECT c.id FROM (`customers` c)"
            " ORDER BY 1 LIMIT 10 OFFSET 5");
}

// ---- set operations

struct SetOperation {
  ASCursor& (ASCursor::*append)(ASFilter const&);
  char const* text;
  char const* name;
};

class CursorSetOperation : public CursorQuery, public testing::WithParamInterface<SetOperation> {
 protected:
  ASCursor& Append(ASCursor& cursor, ASFilter const& other) { return (cursor.*GetParam().append)(other); }
};

TEST_P(CursorSetOperation, IsAppendedToTheStatement) {
  ASCursor cursor(session);
  cursor.Project() << o.idColumn;
  ASFilter other;
  other.Project() << y.idColumn;
  EXPECT_EQ(&Append(cursor, other), &cursor);
  EXPECT_EQ(Text(cursor),
            std::string("SELECT o.id FROM (`orders` o)") + GetParam().text + "SELECT y.id FROM (`shop`.`cities` y)");
}

TEST_P(CursorSetOperation, RendersTheOtherAtOnce) {
  ASCursor cursor(session);
  cursor.Project() << o.idColumn;
  ASFilter other;
  other.Project() << c.idColumn;
  Append(cursor, other);
  other.Project() << c.nameColumn;
  other.Where(c.idColumn == 1);
  EXPECT_EQ(Text(cursor),
            std::string("SELECT o.id FROM (`orders` o)") + GetParam().text + "SELECT c.id FROM (`customers` c)");
}

TEST_P(CursorSetOperation, SetsTheKeywordsOfTheOther) {
  ASCursor cursor(session);
  ASFilter other;
  other.Project() << c.idColumn;
  other.GroupBy() << o.idColumn;
  Append(cursor, other);
  EXPECT_EQ(Text(other), "SELECT c.id FROM (`customers` c) GROUP BY o.id");
  EXPECT_EQ(Sql(other.GroupBy().JoinQuery(), names), "(`orders` o)");
}

TEST_P(CursorSetOperation, WithoutSessionThrowsAndAppendsNothing) {
  ASCursor cursor(nullptr);
  cursor.Project() << o.idColumn;
  ASFilter other;
  other.Project() << c.idColumn;
  EXPECT_EQ(ThrownBy([&] { Append(cursor, other); }), (Thrown{0, "There is no session for cursor. "}));
  cursor.AssignSession(session);
  EXPECT_EQ(Text(cursor), "SELECT o.id FROM (`orders` o)");
}

INSTANTIATE_TEST_SUITE_P(Keywords, CursorSetOperation,
                         testing::Values(SetOperation{&ASCursor::Union, " UNION ", "Union"},
                                         SetOperation{&ASCursor::UnionAll, " UNION ALL ", "UnionAll"},
                                         SetOperation{&ASCursor::Intersect, " INTERSECT ", "Intersect"},
                                         SetOperation{&ASCursor::Minus, " MINUS ", "Minus"}),
                         [](auto const& row) { return row.param.name; });

TEST_F(CursorQuery, SetOperationsFollowEachOther) {
  ASFilter customers;
  ASFilter cities;
  customers.Project() << c.idColumn;
  cities.Project() << y.idColumn;
  ASCursor cursor(session);
  cursor.Project() << o.idColumn;
  cursor.Union(customers).Minus(cities).UnionAll(customers);
  EXPECT_EQ(Text(cursor),
            "SELECT o.id FROM (`orders` o) UNION SELECT c.id FROM (`customers` c)"
            " MINUS SELECT y.id FROM (`shop`.`cities` y) UNION ALL SELECT c.id FROM (`customers` c)");
}

TEST_F(CursorQuery, OfACursorAsOperandIsThatCursorsWhole) {
  ASCursor other(session);
  other.Project() << c.idColumn;
  other.Order(-c.idColumn);
  other.Limit(2);
  ASCursor cursor(session);
  cursor.Project() << o.idColumn;
  cursor.Union(other);
  EXPECT_EQ(Text(cursor),
            "SELECT o.id FROM (`orders` o) UNION SELECT c.id FROM (`customers` c) ORDER BY c.id DESC LIMIT 2");
}

TEST_F(CursorQuery, OfItselfAsOperandIsWhatItWas) {
  ASCursor cursor(session);
  cursor.Project() << o.idColumn;
  cursor.Union(cursor);
  EXPECT_EQ(Text(cursor), "SELECT o.id FROM (`orders` o) UNION SELECT o.id FROM (`orders` o)");
}

TEST_F(CursorQuery, IsAsItWasWhenTheOtherCannotBeRendered) {
  ASCursor other(nullptr);
  ASCursor cursor(session);
  cursor.Project() << o.idColumn;
  EXPECT_EQ(ThrownBy([&] { cursor.Union(other); }), (Thrown{0, "There is no session for cursor. "}));
  EXPECT_EQ(Text(cursor), "SELECT o.id FROM (`orders` o)");
}

// ---- as an operand

TEST_F(CursorQuery, SimpleHasParenthesesAndNeitherOrderNorLimit) {
  ASFilter other;
  other.Project() << c.idColumn;
  ASCursor cursor(session);
  cursor.Project() << o.idColumn;
  cursor.Order(-o.idColumn);
  cursor.Limit(10, 5);
  cursor.Union(other);
  EXPECT_EQ(Simple(cursor), "(SELECT o.id FROM (`orders` o) UNION SELECT c.id FROM (`customers` c))");
}

TEST_F(CursorQuery, SimpleQuotesInTheGroupingToo) {
  ASCursor cursor(session);
  cursor.GroupBy() << o.idColumn;
  cursor.SimpleQuery();
  EXPECT_EQ(Sql(cursor.GroupBy().JoinQuery(), names), "(`orders` o)");
}

// ---- raw texts

TEST_F(CursorQuery, OfARawTextIsThatTextAlone) {
  ASFilter other;
  ASCursor cursor(session);
  cursor.Project() << o.idColumn;
  cursor.Order(-o.idColumn);
  cursor.Limit(10);
  cursor.Union(other);
  cursor.Statement(" UPDATE t SET a='Sel.'; ");
  client.ForgetCalls();
  EXPECT_EQ(Text(cursor), " UPDATE t SET a='Sel.'; ");
  EXPECT_EQ(Simple(cursor), " UPDATE t SET a='Sel.'; ");
  EXPECT_THAT(client.Calls(), ElementsAre());
}

TEST_F(CursorQuery, OfARawTextNeedsNoSession) {
  ASCursor cursor(session);
  cursor.Statement("UPDATE t SET a=1");
  cursor.AssignSession(nullptr);
  EXPECT_EQ(Text(cursor), "UPDATE t SET a=1");
  EXPECT_EQ(Simple(cursor), "UPDATE t SET a=1");
}

// ---- sessions

TEST_F(CursorQuery, WithoutSessionThrows) {
  ASCursor cursor(nullptr);
  EXPECT_EQ(ThrownBy([&] { cursor.Query(); }), (Thrown{0, "There is no session for cursor. "}));
  EXPECT_EQ(ThrownBy([&] { cursor.SimpleQuery(); }), (Thrown{0, "There is no session for cursor. "}));
}

TEST_F(CursorQuery, TakesTheSessionThatIsAssigned) {
  ASCursor cursor(nullptr);
  cursor.Project() << o.idColumn;
  cursor.AssignSession(session);
  EXPECT_EQ(Text(cursor), "SELECT o.id FROM (`orders` o)");
}

TEST_F(CursorQuery, OrderAndLimitNeedNoSession) {
  ASCursor cursor(nullptr);
  cursor.Project() << o.idColumn;
  cursor.Order(-o.idColumn);
  cursor.Limit(1);
  cursor.AssignSession(session);
  EXPECT_EQ(Text(cursor), "SELECT o.id FROM (`orders` o) ORDER BY o.id DESC LIMIT 1");
}

// ---- once open

TEST_F(CursorQuery, OfAnOpenCursorChangesWithoutItsRows) {
  Answer(1, {{"1"}, {"2"}});
  ASFilter other;
  other.Project() << c.idColumn;
  ASCursor cursor(session);
  cursor.Project() << o.idColumn;
  cursor.Open();
  client.ForgetCalls();
  cursor.Union(other).Limit(1);
  cursor.Order(ASOrder("1"));
  EXPECT_EQ(Text(cursor), "SELECT o.id FROM (`orders` o) UNION SELECT c.id FROM (`customers` c) ORDER BY 1 LIMIT 1");
  EXPECT_EQ(cursor.GetAmount(), 2);
  EXPECT_THAT(client.Calls(), ElementsAre());
}

// ---- cursors of applications

class CountingCursor : public ASCursor {
 public:
  using ASCursor::ASCursor;
  Str Query() const override {
    ++rendered;
    return "SELECT 'mine'";
  }
  mutable int rendered = 0;
};

TEST_F(CursorQuery, OfADerivedCursorIsWhatOpenSends) {
  Answer(1, {{"1"}}).Matching("SELECT 'mine'");
  CountingCursor cursor(session);
  cursor.Open();
  EXPECT_THAT(Statements(), ElementsAre("SELECT 'mine'"));
  EXPECT_EQ(cursor.rendered, 1);
}

TEST_F(CursorQuery, OfADerivedCursorIsWhatARawStatementReadsItsRowsBy) {
  Answer(1, {{"1"}}).Matching("raw");
  Answer(1, {{"2"}, {"3"}}).Matching("mine");
  CountingCursor cursor(session);
  cursor.Statement("SELECT 'raw'");
  EXPECT_THAT(Statements(), ElementsAre("SELECT 'raw'", "SELECT 'mine'"));
  EXPECT_EQ(cursor.GetAmount(), 2);
}

TEST_F(CursorQuery, OfADerivedCursorIsAskedForByFetchSingleEvenWhenOpen) {
  Answer(1, {{"1"}});
  CountingCursor cursor(session);
  cursor.Open();
  cursor.FetchSingle();
  EXPECT_EQ(cursor.rendered, 2);
  EXPECT_THAT(Statements(), ElementsAre("SELECT 'mine'"));
}

TEST_F(CursorQuery, OfADerivedCursorIsWhatASetOperationTakes) {
  CountingCursor other(session);
  ASCursor cursor(session);
  cursor.Project() << o.idColumn;
  cursor.Union(other);
  EXPECT_EQ(Text(cursor), "SELECT o.id FROM (`orders` o) UNION SELECT 'mine'");
}

}  // namespace
}  // namespace corvane::test
