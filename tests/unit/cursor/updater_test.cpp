#include "corvane/cursor/updater.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "corvane/corvane.h"
#include "tests/support/sql.h"

using corvane::test::Cities;
using corvane::test::Customers;
using corvane::test::Name;
using corvane::test::Orders;

namespace {

class Updater : public testing::Test {
 protected:
  std::string Text(ASFilter const& updater) const { return corvane::test::Sql(updater, names); }

  // What appending the assignment throws.
  static std::string Refusal(ASUpdater& updater, ASSetter const& assignment) {
    try {
      updater << assignment;
    } catch (AException const& refused) {
      return refused.what();
    }
    return "nothing was thrown";
  }

  Orders o;
  Customers c;
  Cities y;
  std::vector<Name> names{{&o, "o"}, {&c, "c"}, {&y, "y"}};
};

constexpr char const* kSingleTable = "Only single table may be updated in single UPDATE SQL query. ";

// ---- tables and condition

TEST_F(Updater, ChangesTheRowsOfTheCondition) {
  ASUpdater updater(o.totalColumn.Set(o.totalColumn + 5));
  updater.Where(o.idColumn == 3);
  EXPECT_EQ(Text(updater), "UPDATE orders o SET o.total = o.total + '5' WHERE o.id=3");
}

TEST_F(Updater, WithoutConditionAndColumnNamesNoTable) {
  ASUpdater const updater(o.totalColumn.Set(7));
  EXPECT_EQ(Text(updater), "UPDATE  SET o.total = '7'");
}

TEST_F(Updater, WithoutConditionTakesTheTableOfAProjectedColumn) {
  ASUpdater updater(o.totalColumn.Set(7));
  updater.Project() << o.idColumn;
  EXPECT_EQ(Text(updater), "UPDATE orders o SET o.total = '7'");
}

TEST_F(Updater, ANegationNamesNoTable) {
  ASUpdater updater(o.totalColumn.Set(7));
  updater.Where(!(o.idColumn == 3));
  EXPECT_EQ(Text(updater), "UPDATE  SET o.total = '7' WHERE  NOT (o.id=3) ");
}

TEST_F(Updater, AProjectedColumnNamesTheTableOfANegation) {
  ASUpdater updater(o.totalColumn.Set(7));
  updater.Project() << o.idColumn;
  updater.Where(!(o.idColumn == 3));
  EXPECT_EQ(Text(updater), "UPDATE orders o SET o.total = '7' WHERE  NOT (o.id=3) ");
}

TEST_F(Updater, ASecondConditionReplacesTheFirst) {
  ASUpdater updater(o.totalColumn.Set(7));
  updater.Where(o.idColumn == 3);
  updater.Set(o.idColumn == 4);
  EXPECT_EQ(Text(updater), "UPDATE orders o SET o.total = '7' WHERE o.id=4");
}

TEST_F(Updater, ListsTheTablesOfTheConditionInOrderWithoutParentheses) {
  ASUpdater updater(o.totalColumn.Set(c.idColumn));
  updater.Where(c.idColumn == o.customerColumn && c.nameColumn == "x" && y.nameColumn == c.nameColumn);
  EXPECT_EQ(Text(updater),
            "UPDATE customers c, orders o, shop.cities y SET o.total = c.id"
            " WHERE ((c.id=(o.customer_id)) AND (c.name='x')) AND (y.name=(c.name))");
}

TEST_F(Updater, AnAssignmentNamesNoTable) {
  ASUpdater updater(o.totalColumn.Set(c.idColumn));
  updater.Where(o.idColumn == 3);
  EXPECT_EQ(Text(updater), "UPDATE orders o SET o.total = c.id WHERE o.id=3");
}

TEST_F(Updater, ProjectedColumnsAreNotWritten) {
  ASUpdater updater(o.totalColumn.Set(7));
  updater.DistinctProject() << c.nameColumn << o.noteColumn;
  EXPECT_EQ(Text(updater), "UPDATE customers c, orders o SET o.total = '7'");
}

// ---- outer joins

TEST_F(Updater, OuterJoinStandsBehindTheTables) {
  ASUpdater updater(o.totalColumn.Set(7));
  updater.Where(++c.idColumn == o.customerColumn && o.totalColumn > 10);
  EXPECT_EQ(Text(updater),
            "UPDATE orders o LEFT JOIN customers c ON (c.id=(o.customer_id)) SET o.total = '7' WHERE o.total>10");
}

TEST_F(Updater, OuterJoinBehindSeveralTablesHasNoParenthesesEither) {
  ASUpdater updater(o.totalColumn.Set(7));
  updater.Where(y.nameColumn == o.noteColumn && ++c.idColumn == o.customerColumn);
  EXPECT_EQ(Text(updater),
            "UPDATE shop.cities y, orders o LEFT JOIN customers c ON (c.id=(o.customer_id)) SET o.total = '7'"
            " WHERE y.name=(o.note)");
}

TEST_F(Updater, OuterJoinAloneNamesTheOptionalTableOnly) {
  ASUpdater updater(o.totalColumn.Set(7));
  updater.Where(++c.idColumn == o.customerColumn);
  EXPECT_EQ(Text(updater), "UPDATE  LEFT JOIN customers c ON (c.id=(o.customer_id)) SET o.total = '7'");
}

TEST_F(Updater, ConditionsOnOneOptionalTableShareItsJoin) {
  ASUpdater updater(o.totalColumn.Set(7));
  updater.Project() << o.idColumn;
  updater.Where(++c.idColumn == o.customerColumn && ++c.nameColumn == o.noteColumn);
  EXPECT_EQ(Text(updater),
            "UPDATE orders o LEFT JOIN customers c ON (c.id=(o.customer_id) AND c.name=(o.note)) SET o.total = '7'");
}

TEST_F(Updater, OuterJoinsOfTwoTables) {
  ASUpdater updater(o.totalColumn.Set(7));
  updater.Where(++c.idColumn == o.customerColumn && ++y.nameColumn == o.noteColumn && c.nameColumn.IsNull());
  updater.Project() << o.idColumn;
  EXPECT_EQ(Text(updater),
            "UPDATE orders o LEFT JOIN customers c ON (c.id=(o.customer_id)) LEFT JOIN shop.cities y ON"
            " (y.name=(o.note)) SET o.total = '7' WHERE c.name IS NULL");
}

// ---- quoted table names

TEST_F(Updater, TableNamesAreBareUnlessKeywordsAreGiven) {
  ASUpdater updater(o.totalColumn.Set(7));
  updater.Where(y.nameColumn == o.noteColumn && ++c.idColumn == o.customerColumn);
  updater.Project().setKW("`", "`");
  EXPECT_EQ(Text(updater),
            "UPDATE `shop`.`cities` y, `orders` o LEFT JOIN `customers` c ON (c.id=(o.customer_id))"
            " SET o.total = '7' WHERE y.name=(o.note)");
}

// ---- assignments

TEST_F(Updater, ListsItsAssignmentsInOrder) {
  ASUpdater updater(o.totalColumn.Set(7));
  updater << o.noteColumn.Set("x") << o.customerColumn.Set(o.customerColumn * 2);
  updater.Where(o.idColumn == 3);
  EXPECT_EQ(Text(updater),
            "UPDATE orders o SET o.total = '7', o.note = 'x', o.customer_id = o.customer_id * '2' WHERE o.id=3");
}

TEST_F(Updater, AppendingReturnsTheUpdater) {
  ASUpdater updater(o.totalColumn.Set(7));
  EXPECT_EQ(&(updater << o.noteColumn.Set("x")), &updater);
}

TEST_F(Updater, TheSameColumnMayBeAssignedAgain) {
  ASUpdater updater(o.totalColumn.Set(7));
  updater << o.totalColumn.Set(8);
  EXPECT_EQ(Text(updater), "UPDATE  SET o.total = '7', o.total = '8'");
}

TEST_F(Updater, TakesTemporaryExpressions) {
  ASUpdater updater(o.totalColumn.Set(o.customerColumn.Abs() + 1));
  updater << o.noteColumn.Set(c.nameColumn.Upper()) << o.customerColumn.Set(o.customerColumn + 1);
  EXPECT_EQ(Text(updater),
            "UPDATE  SET o.total =  ABS(o.customer_id) + '1', o.note =  UPPER(c.name), o.customer_id = o.customer_id +"
            " '1'");
}

TEST_F(Updater, TakesTheValueOfAnAssignmentAtOnce) {
  ASExpression first(7);
  ASExpression second(8);
  ASUpdater updater(o.totalColumn.Set(first));
  updater << o.customerColumn.Set(second);
  first = 1;
  second = 2;
  EXPECT_EQ(Text(updater), "UPDATE  SET o.total = '7', o.customer_id = '8'");
}

TEST_F(Updater, AssignsNullAndEscapedTexts) {
  ASUpdater updater(o.totalColumn.Set(ASInt()));
  updater << o.noteColumn.Set("O'B");
  EXPECT_EQ(Text(updater), "UPDATE  SET o.total = NULL, o.note = 'O\\'B'");
}

TEST_F(Updater, AssignsNothingFromAnEmptyExpression) {
  ASUpdater updater((o.totalColumn.Set(ASExpression())));
  updater << o.noteColumn.Set("x");
  EXPECT_EQ(Text(updater), "UPDATE  SET o.total = , o.note = 'x'");
}

// ---- a single table

TEST_F(Updater, AnAssignmentToAnotherTableIsRefused) {
  ASUpdater updater(o.totalColumn.Set(7));
  EXPECT_EQ(Refusal(updater, c.nameColumn.Set("x")), kSingleTable);
}

TEST_F(Updater, ARefusalHasNoNumber) {
  ASUpdater updater(o.totalColumn.Set(7));
  try {
    updater << c.nameColumn.Set("x");
    FAIL() << "nothing was thrown";
  } catch (AException const& refused) {
    EXPECT_EQ(refused.Number(), 0);
  }
}

TEST_F(Updater, AnAssignmentThatIsRefusedIsInTheListAllTheSame) {
  ASUpdater updater(o.totalColumn.Set(7));
  Refusal(updater, c.nameColumn.Set("x"));
  EXPECT_EQ(Text(updater), "UPDATE  SET o.total = '7', c.name = 'x'");
}

TEST_F(Updater, AfterARefusalTheFirstTableIsStillTaken) {
  ASUpdater updater(o.totalColumn.Set(7));
  Refusal(updater, c.nameColumn.Set("x"));
  updater << o.noteColumn.Set("y");
  EXPECT_EQ(Text(updater), "UPDATE  SET o.total = '7', c.name = 'x', o.note = 'y'");
}

TEST_F(Updater, AfterARefusalTheOtherTableIsRefusedAgain) {
  ASUpdater updater(o.totalColumn.Set(7));
  Refusal(updater, c.nameColumn.Set("x"));
  EXPECT_EQ(Refusal(updater, c.nameColumn.Set("y")), kSingleTable);
}

TEST_F(Updater, AnotherRecordOfTheSameTableIsTaken) {
  Orders other;
  names.push_back({&other, "p"});
  ASUpdater updater(o.totalColumn.Set(7));
  updater << other.noteColumn.Set("x");
  EXPECT_EQ(Text(updater), "UPDATE  SET o.total = '7', p.note = 'x'");
}

TEST_F(Updater, TheConditionMayNameOtherTables) {
  ASUpdater updater(o.totalColumn.Set(7));
  updater.Where(c.idColumn == 3);
  updater << o.noteColumn.Set("x");
  EXPECT_EQ(Text(updater), "UPDATE customers c SET o.total = '7', o.note = 'x' WHERE c.id=3");
}

// ---- columns without record

TEST_F(Updater, AColumnWithoutRecordIsWrittenByItsName) {
  ASAttribute const free("free");
  ASUpdater const updater(free.Set(7));
  EXPECT_EQ(Text(updater), "UPDATE  SET free = '7'");
}

TEST_F(Updater, BehindAColumnWithoutRecordTheNextOneSettlesTheTable) {
  ASAttribute const free("free");
  ASUpdater updater(free.Set(7));
  updater << free.Set(8) << o.totalColumn.Set(9);
  EXPECT_EQ(Refusal(updater, c.nameColumn.Set("x")), kSingleTable);
  EXPECT_EQ(Text(updater), "UPDATE  SET free = '7', free = '8', o.total = '9', c.name = 'x'");
}

TEST_F(Updater, AColumnWithoutRecordIsRefusedBehindATable) {
  ASAttribute const free("free");
  ASUpdater updater(o.totalColumn.Set(7));
  EXPECT_EQ(Refusal(updater, free.Set(8)), kSingleTable);
}

// ---- what is not written

TEST_F(Updater, WritesNeitherHavingNorGroupingNorHint) {
  std::unique_ptr<ASGroupAttribute> const sum(o.totalColumn.Sum());
  ASUpdater updater(o.totalColumn.Set(7));
  updater.Where(o.idColumn == 3);
  updater.Having(*sum > 100);
  updater.GroupBy() << o.customerColumn;
  updater.Hint("first");
  EXPECT_EQ(Text(updater), "UPDATE orders o SET o.total = '7' WHERE o.id=3");
}

TEST_F(Updater, TheGroupingNamesNoTable) {
  ASUpdater updater(o.totalColumn.Set(7));
  updater.GroupBy() << o.customerColumn;
  EXPECT_EQ(Text(updater), "UPDATE  SET o.total = '7'");
}

// ---- copies

TEST_F(Updater, ACopyHasAssignmentsTablesConditionAndKeywords) {
  ASUpdater updater(o.totalColumn.Set(7));
  updater.Where(++c.idColumn == o.customerColumn && o.totalColumn > 10);
  updater.Project().setKW("`", "`");
  ASUpdater const copy(updater);
  EXPECT_EQ(Text(copy),
            "UPDATE `orders` o LEFT JOIN `customers` c ON (c.id=(o.customer_id)) SET o.total = '7' WHERE o.total>10");
}

TEST_F(Updater, ACopyKnowsItsTable) {
  ASUpdater const updater(o.totalColumn.Set(7));
  ASUpdater copy(updater);
  EXPECT_EQ(Refusal(copy, c.nameColumn.Set("x")), kSingleTable);
}

TEST_F(Updater, ACopyGoesItsOwnWay) {
  ASUpdater updater(o.totalColumn.Set(7));
  updater.Where(o.idColumn == 3);
  ASUpdater copy(updater);
  copy << o.noteColumn.Set("x");
  copy.Where(o.idColumn == 4);
  EXPECT_EQ(Text(updater), "UPDATE orders o SET o.total = '7' WHERE o.id=3");
  EXPECT_EQ(Text(copy), "UPDATE orders o SET o.total = '7', o.note = 'x' WHERE o.id=4");
}

// Its copy constructor says nothing of the virtual base, and many will not.
struct Named : ASUpdater {
  Named(ASSetter const& assignment, char const* text) : ASUpdater(assignment), name(text) {}
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wextra"
  Named(Named const& other) : ASUpdater(other), name(other.name) {}
#pragma GCC diagnostic pop
  Named& operator=(Named const&) = default;
  std::string name;
};

TEST_F(Updater, ACopyOfADerivedClassKeepsTheCondition) {
  Named updater(o.totalColumn.Set(7), "x");
  updater.Where(o.idColumn == 3);
  Named const copy(updater);
  EXPECT_EQ(Text(copy), "UPDATE orders o SET o.total = '7' WHERE o.id=3");
}

TEST_F(Updater, ARefusedNumberIsNotInTheList) {
  ASUpdater updater(o.totalColumn.Set(7));
  EXPECT_EQ(Refusal(updater, o.totalColumn.Set(std::nan(""))),
            "Value has no SQL form, it is not a finite number: total. ");
  updater << o.noteColumn.Set("x");
  EXPECT_EQ(Text(updater), "UPDATE  SET o.total = '7', o.note = 'x'");
}

TEST_F(Updater, AssignmentReplacesAssignmentsTablesAndCondition) {
  ASUpdater updater(o.totalColumn.Set(7));
  updater.Where(o.idColumn == 3);
  ASUpdater target(c.nameColumn.Set("x"));
  target.Where(c.idColumn == 4);
  target = updater;
  EXPECT_EQ(Text(target), "UPDATE orders o SET o.total = '7' WHERE o.id=3");
}

// The condition alone would update other rows.
TEST_F(Updater, AssignmentTakesOuterJoinsOver) {
  ASUpdater updater(o.totalColumn.Set(7));
  updater.Project() << o.idColumn;
  updater.Where(++c.idColumn == o.customerColumn && c.idColumn.IsNull());
  ASUpdater target(c.nameColumn.Set("x"));
  target = updater;
  EXPECT_EQ(Text(target),
            "UPDATE orders o LEFT JOIN customers c ON (c.id=(o.customer_id)) SET o.total = '7' WHERE c.id IS NULL");
}

TEST_F(Updater, AssignmentReplacesTheTableOfTheAssignments) {
  ASUpdater const updater(o.totalColumn.Set(7));
  ASUpdater target(c.nameColumn.Set("x"));
  target = updater;
  EXPECT_EQ(Refusal(target, c.nameColumn.Set("y")), kSingleTable);
}

TEST_F(Updater, AssignmentToItselfChangesNothing) {
  ASUpdater updater(o.totalColumn.Set(7));
  updater.Where(o.idColumn == 3);
  ASUpdater const& same = updater;
  updater = same;
  EXPECT_EQ(Text(updater), "UPDATE orders o SET o.total = '7' WHERE o.id=3");
}

}  // namespace
