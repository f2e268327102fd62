#include <gmock/gmock.h>

#include <limits>
#include <string>

#include "tests/live/query_test.h"

using corvane::test::Aggregate;
using corvane::test::Customers;
using corvane::test::Failure;
using corvane::test::FailureOf;
using corvane::test::Orders;
using corvane::test::QueryTest;
using testing::EndsWith;

// What the query language renders although servers refuse it, and what becomes of the cursor.
namespace {

// The failure of a statement that the server refuses, up to the server's own words.
Failure DbError(int number) { return {102, "DB Error " + std::to_string(number) + " ("}; }

Failure const kUnknownColumn = DbError(1054);
Failure const kSyntaxError = DbError(1064);
Failure const kUnknownTable = DbError(1109);
Failure const kWrongUsage = DbError(1221);
Failure const kLimitInSubQuery = DbError(1235);
Failure const kTableNotAllowed = DbError(1250);

class QueryRefused : public QueryTest {
 protected:
  // What executing the statement throws.
  Failure Refused(Str const& statement) {
    Failure failure = FailureOf([&] { TheSession().Execute(statement); });
    EXPECT_THAT(failure.message, EndsWith(") in query\n\b\n" + statement.ToString()));
    failure.message.erase(failure.message.find('(') + 1);
    return failure;
  }

  // What opening the cursor throws; it is closed then, and can run another statement.
  Failure Refused(ASCursor& cursor) {
    Failure failure = FailureOf([&] { cursor.Open(); });
    EXPECT_THAT(failure.message, EndsWith(") in query\n\b\n" + cursor.Query().ToString()));
    failure.message.erase(failure.message.find('(') + 1);
    EXPECT_EQ(cursor.GetUURecord(0), nullptr);
    cursor = ASFilter();
    cursor.Statement("SELECT id FROM customers WHERE id=1");
    EXPECT_EQ(cursor.Fetch(), 1);
    EXPECT_EQ(cursor.GetAmount(), 1);
    return failure;
  }

  // The same of a cursor over the orders with this condition.
  Failure Refused(ASComparison const& condition) {
    ASCursor cursor(&TheSession());
    cursor.Project() << o.idColumn;
    cursor.Where(condition);
    return Refused(cursor);
  }

  // The same of one over groups of orders.
  Failure RefusedGroups(ASGroupComparison const& condition) {
    ASCursor cursor(&TheSession());
    cursor.Project() << o.customerColumn;
    cursor.Having(condition);
    return Refused(cursor);
  }

  // The same of one over all orders in this order.
  Failure RefusedOrder(ASOrder const& order) {
    ASCursor cursor(&TheSession());
    cursor.Project() << o.idColumn;
    cursor.Order(order);
    return Refused(cursor);
  }

  // The numbers of the customers.
  ASFilter AllCustomers() {
    ASFilter filter;
    filter.Project() << c.idColumn;
    return filter;
  }

  Orders o;
  Customers c;
  Aggregate sum{o.totalColumn.Sum()};
  Aggregate largestNote{o.noteColumn.Max()};
};

// Conditions.

TEST_F(QueryRefused, ValuesThatAreNotEqual) {
  ASInt nine, ten;
  nine = 9;
  ten = 10;
  EXPECT_EQ(Refused(nine.NE(ten)), kSyntaxError);
}

TEST_F(QueryRefused, EqualToOrInAny) {
  ASAttribute const any = AllCustomers().Any();
  EXPECT_EQ(Refused(o.customerColumn == any), kSyntaxError);
  EXPECT_EQ(Refused(o.customerColumn.In(any)), kSyntaxError);
  EXPECT_EQ(Refused(o.customerColumn.NotIn(any)), kSyntaxError);
}

TEST_F(QueryRefused, ComparedWithASelectOtherThanByEquality) {
  ASAttribute const select = AllCustomers().Select();
  EXPECT_EQ(Refused(o.customerColumn != select), kSyntaxError);
  EXPECT_EQ(Refused(o.customerColumn > select), kSyntaxError);
  EXPECT_EQ(Refused(o.customerColumn < select), kSyntaxError);
  EXPECT_EQ(Refused(o.customerColumn >= select), kSyntaxError);
  EXPECT_EQ(Refused(o.customerColumn <= select), kSyntaxError);
}

TEST_F(QueryRefused, AggregateComparedWithASelect) {
  ASAttribute const select = AllCustomers().Select();
  EXPECT_EQ(RefusedGroups(*sum == select), kSyntaxError);
  EXPECT_EQ(RefusedGroups(*sum > select), kSyntaxError);
}

TEST_F(QueryRefused, InASelectWithALimit) {
  ASCursor customers(&TheSession());
  customers.Project() << c.idColumn;
  customers.Limit(1);
  EXPECT_EQ(Refused(o.customerColumn.In(customers.Select())), kLimitInSubQuery);
}

TEST_F(QueryRefused, EscapeCharactersThatNeedEscaping) {
  EXPECT_EQ(Refused(o.noteColumn.Like("x%", '\\')), kSyntaxError);
  EXPECT_EQ(Refused(o.noteColumn.Like("x%", '\'')), kSyntaxError);
  EXPECT_EQ(Refused(o.noteColumn.NotLike("x%", '\\')), kSyntaxError);
  EXPECT_EQ(Refused(o.noteColumn.NotLike("x%", '\'')), kSyntaxError);
  EXPECT_EQ(Refused(o.noteColumn.Like(o.noteColumn, '\\')), kSyntaxError);
  EXPECT_EQ(Refused(o.noteColumn.Like(o.noteColumn, '\'')), kSyntaxError);
  EXPECT_EQ(RefusedGroups(largestNote->Like("x%", '\\')), kSyntaxError);
  EXPECT_EQ(RefusedGroups(largestNote->Like("x%", '\'')), kSyntaxError);
}

TEST_F(QueryRefused, QuotesWhereNothingIsEscaped) {
  EXPECT_EQ(Refused(o.noteColumn.Between("O'B", "Z")), kSyntaxError);
  EXPECT_EQ(Refused(o.noteColumn.Between("A", "O'B")), kSyntaxError);
  EXPECT_EQ(Refused(o.noteColumn.Between(Str("O'B"), Str("Z"))), kSyntaxError);
  EXPECT_EQ(Refused(o.noteColumn.IntersectGeo("0 0,0 1,1 1,'0 0")), kSyntaxError);
  o.note = "O'B";
  EXPECT_EQ(Refused(o.note.EQ(Str("x"))), kSyntaxError);
  EXPECT_EQ(Refused(o.note.LE(Str("x"))), kSyntaxError);
}

TEST_F(QueryRefused, NumbersThatAreNotFinite) {
  double const infinity = std::numeric_limits<double>::infinity();
  double const notANumber = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(Refused(o.totalColumn < infinity), kUnknownColumn);
  EXPECT_EQ(Refused(o.totalColumn > -infinity), kUnknownColumn);
  EXPECT_EQ(Refused(o.totalColumn == notANumber), kUnknownColumn);
  EXPECT_EQ(Refused(o.totalColumn < Double(infinity)), kUnknownColumn);
  EXPECT_EQ(Refused(o.totalColumn.Between(0.0, infinity)), kUnknownColumn);
  EXPECT_EQ(RefusedGroups(*sum < infinity), kUnknownColumn);
  EXPECT_EQ(RefusedGroups(*sum == notANumber), kUnknownColumn);
}

// Aggregates.

TEST_F(QueryRefused, AggregateComparedWithATextThatNobodyQuoted) {
  EXPECT_EQ(RefusedGroups(*largestNote == "Ada"), kUnknownColumn);
  EXPECT_EQ(RefusedGroups(*largestNote != "Ada"), kUnknownColumn);
  EXPECT_EQ(RefusedGroups(*largestNote == "Ada Lovelace"), kSyntaxError);
  EXPECT_EQ(RefusedGroups(*largestNote == "O'Brien"), kSyntaxError);
  EXPECT_EQ(RefusedGroups(*largestNote == ""), kSyntaxError);
}

TEST_F(QueryRefused, InStrOfAnAggregateAndAText) {
  EXPECT_EQ(RefusedGroups(largestNote->InStr("Ada")), kUnknownColumn);
  EXPECT_EQ(RefusedGroups(largestNote->InStr("'Ada'")), kSyntaxError);
  EXPECT_EQ(RefusedGroups(largestNote->InStr("")), kSyntaxError);
}

TEST_F(QueryRefused, AggregateComparedWithAColumnThatIsNotSelected) {
  EXPECT_EQ(RefusedGroups(*sum > o.noteColumn), kUnknownColumn);
}

TEST_F(QueryRefused, TwoHavings) {
  ASCursor cursor(&TheSession());
  cursor.Project() << o.customerColumn;
  cursor.Having(*sum > 0);
  cursor.Having(*sum < 100);
  EXPECT_EQ(Refused(cursor), kSyntaxError);
}

// Tables.

TEST_F(QueryRefused, NoTableAtAll) {
  ASCursor cursor(&TheSession());
  EXPECT_EQ(Refused(cursor), kSyntaxError);
}

TEST_F(QueryRefused, OnlyOptionalTables) {
  ASCursor cursor(&TheSession());
  cursor.Project() << c.idColumn;
  cursor.Where(++c.idColumn == o.customerColumn);
  EXPECT_EQ(Refused(cursor), kSyntaxError);
}

TEST_F(QueryRefused, ANegationAlone) {
  ASCursor cursor(&TheSession());
  cursor.Where(!(o.idColumn == 3));
  EXPECT_EQ(Refused(cursor), kSyntaxError);
}

TEST_F(QueryRefused, ANegationOverATableThatNothingElseNames) {
  EXPECT_EQ(Refused(!(c.nameColumn == "Ada")), kUnknownColumn);
}

TEST_F(QueryRefused, ColumnsOfATableThatNothingElseNames) {
  EXPECT_EQ(Refused(o.customerColumn.In(c.idColumn)), kUnknownColumn);
  EXPECT_EQ(Refused(o.noteColumn.Like(c.nameColumn)), kUnknownColumn);
  EXPECT_EQ(Refused(o.totalColumn.Between(c.idColumn, c.idColumn)), kUnknownColumn);
  EXPECT_EQ(Refused(c.idColumn.Abs() == 1), kUnknownColumn);
  EXPECT_EQ(RefusedOrder(-c.idColumn), kUnknownColumn);
}

TEST_F(QueryRefused, GroupsOfATableThatNothingElseNames) {
  ASCursor cursor(&TheSession());
  cursor.Project() << *sum;
  cursor.GroupBy() << c.idColumn;
  EXPECT_EQ(Refused(cursor), kUnknownColumn);
}

TEST_F(QueryRefused, AnOuterJoinWhoseRequiredTableNothingElseNames) {
  Customers others;
  ASCursor cursor(&TheSession());
  cursor.Project() << others.idColumn;
  cursor.Where(++c.idColumn == o.customerColumn);
  EXPECT_EQ(Refused(cursor), kUnknownColumn);
}

// The rest of the statement.

// The word continues the name of the column.
TEST_F(QueryRefused, DistinctBehindAColumn) {
  ASCursor last(&TheSession());
  last.Project() << o.idColumn;
  last.DistinctProject();
  EXPECT_EQ(Refused(last), kUnknownColumn);

  ASCursor between(&TheSession());
  between.Project() << o.idColumn;
  between.DistinctProject() << o.totalColumn;
  EXPECT_EQ(Refused(between), kUnknownColumn);
}

TEST_F(QueryRefused, DistinctTwice) {
  ASCursor cursor(&TheSession());
  cursor.DistinctProject();
  cursor.DistinctProject() << o.totalColumn;
  EXPECT_EQ(Refused(cursor), kSyntaxError);
}

TEST_F(QueryRefused, AnOrderThatContinuesAnEmptyOne) {
  EXPECT_EQ(RefusedOrder(ASOrder() + o.idColumn), kSyntaxError);
  EXPECT_EQ(RefusedOrder(ASOrder() - o.idColumn), kSyntaxError);
}

TEST_F(QueryRefused, ConnectBy) {
  ASCursor cursor(&TheSession());
  cursor.Project() << o.idColumn;
  cursor.Where(o.totalColumn > 0);
  cursor.ConnectBy(o.idColumn == o.customerColumn, o.idColumn == 1);
  EXPECT_EQ(Refused(cursor), kSyntaxError);

  ASCursor withoutStart(&TheSession());
  withoutStart.Project() << o.idColumn;
  withoutStart.ConnectBy(o.idColumn == o.customerColumn, ASComparison("", nullptr, nullptr));
  EXPECT_EQ(Refused(withoutStart), kSyntaxError);
}

// Set operations.

TEST_F(QueryRefused, Minus) {
  ASCursor cursor(&TheSession());
  cursor.Project() << o.idColumn;
  cursor.Minus(AllCustomers());
  EXPECT_EQ(Refused(cursor), kSyntaxError);
}

TEST_F(QueryRefused, AUnionOrderedByAColumnOfARecord) {
  ASCursor cursor(&TheSession());
  cursor.Project() << o.idColumn;
  cursor.Union(AllCustomers());
  cursor.Order(-o.idColumn);
  EXPECT_EQ(Refused(cursor), IsMariaDb() ? kTableNotAllowed : kUnknownColumn);
}

TEST_F(QueryRefused, AnOrderedOperandOfAUnion) {
  ASCursor ordered(&TheSession());
  ordered.Project() << c.idColumn;
  ordered.Order(-c.idColumn);
  ASCursor behind(&TheSession());
  behind.Project() << o.idColumn;
  behind.Union(ordered);
  EXPECT_EQ(Refused(behind), IsMariaDb() ? kTableNotAllowed : kUnknownColumn);

  ASCursor before(&TheSession());
  before.Project() << o.idColumn;
  before.Union(ordered).Union(AllCustomers());
  EXPECT_EQ(Refused(before), IsMariaDb() ? kTableNotAllowed : kWrongUsage);
}

TEST_F(QueryRefused, ALimitedOperandBeforeMore) {
  ASCursor limited(&TheSession());
  limited.Project() << c.idColumn;
  limited.Limit(1);
  ASCursor followed(&TheSession());
  followed.Project() << o.idColumn;
  followed.UnionAll(limited).UnionAll(AllCustomers());
  if (IsMariaDb()) {
    EXPECT_EQ(Refused(followed), kSyntaxError);
  } else {  // MySQL 5.6 limits that operand, as if it stood in parentheses
    EXPECT_EQ(followed.GetAmount(), 6 + 1 + 5);
  }

  ASCursor ordered(&TheSession());
  ordered.Project() << o.idColumn;
  ordered.Union(limited);
  ordered.Order(ASOrder("1"));
  EXPECT_EQ(Refused(ordered), kSyntaxError);

  ASCursor alsoLimited(&TheSession());
  alsoLimited.Project() << o.idColumn;
  alsoLimited.Union(limited).Limit(1);
  EXPECT_EQ(Refused(alsoLimited), kSyntaxError);
}

TEST_F(QueryRefused, OperandsOfDifferentWidth) {
  ASCursor cursor(&TheSession());
  cursor.Project() << o.idColumn << o.totalColumn;
  cursor.Union(AllCustomers());
  EXPECT_EQ(Refused(cursor), DbError(1222));
}

// UPDATE and DELETE, put together by hand.

TEST_F(QueryRefused, AnAssignmentOfNothing) {
  ASExpression const nothing;
  ASSetter const setter = o.totalColumn.Set(nothing);
  EXPECT_EQ(Refused("UPDATE " + setter.UpdateQuery() + ' ' + o.Alias() + " SET " + setter.Query() + " WHERE " +
                    (o.idColumn == 1).Query()),
            kSyntaxError);
}

TEST_F(QueryRefused, AnAssignmentToAnotherTable) {
  ASExpression const name("x");
  EXPECT_EQ(Refused("UPDATE orders " + o.Alias() + " SET " + c.nameColumn.Set(name).Query()), kUnknownColumn);
}

// The comma binds weaker than the join, which sees the last table alone.
TEST_F(QueryRefused, ADeleteWithAnOuterJoinOfATableThatIsNotTheLast) {
  Customers others;
  ASFilter filter;
  filter.Project() << o.idColumn << others.idColumn;
  filter.Where(++c.idColumn == o.customerColumn);
  EXPECT_EQ(Refused("DELETE FROM " + o.Alias() + " USING " + filter.Project().JoinForDeleteQuery()), kUnknownColumn);
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM orders"), "6");
}

TEST_F(QueryRefused, ADeleteFromATableThatIsNotListed) {
  ASFilter const filter = AllCustomers();
  EXPECT_EQ(Refused("DELETE FROM " + o.Alias() + " USING " + filter.Project().JoinForDeleteQuery()), kUnknownTable);
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM customers"), "5");
}

}  // namespace
