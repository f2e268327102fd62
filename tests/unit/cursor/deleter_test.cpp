#include "corvane/cursor/deleter.h"

#include <gtest/gtest.h>

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "corvane/corvane.h"
#include "tests/support/sql.h"

using corvane::test::Cities;
using corvane::test::Customers;
using corvane::test::Name;
using corvane::test::Orders;

namespace {

class Deleter : public testing::Test {
 protected:
  std::string Text(ASFilter const& deleter) const { return corvane::test::Sql(deleter, names); }

  Orders o;
  Customers c;
  Cities y;
  std::vector<Name> names{{&o, "o"}, {&c, "c"}, {&y, "y"}};
};

// ---- tables and condition

TEST_F(Deleter, DeletesTheRowsOfTheCondition) {
  ASDeleter deleter(o);
  deleter.Where(o.idColumn == 3);
  EXPECT_EQ(Text(deleter), "DELETE FROM o USING orders o WHERE o.id=3");
}

TEST_F(Deleter, ASecondConditionReplacesTheFirst) {
  ASDeleter deleter(o);
  deleter.Where(o.idColumn == 3);
  deleter.Set(o.idColumn == 4);
  EXPECT_EQ(Text(deleter), "DELETE FROM o USING orders o WHERE o.id=4");
}

TEST_F(Deleter, ListsTheTablesOfTheConditionInOrderWithoutParentheses) {
  ASDeleter deleter(o);
  deleter.Where(o.customerColumn == c.idColumn && c.nameColumn == "O'B");
  EXPECT_EQ(Text(deleter),
            "DELETE FROM o USING orders o, customers c WHERE (o.customer_id=(c.id)) AND (c.name='O\\'B')");
}

TEST_F(Deleter, DeletesFromItsRecordWhicheverTableComesFirst) {
  ASDeleter deleter(o);
  deleter.Where(c.idColumn == o.customerColumn);
  EXPECT_EQ(Text(deleter), "DELETE FROM o USING customers c, orders o WHERE c.id=(o.customer_id)");
}

TEST_F(Deleter, DoesNotAddItsOwnTableToThoseOfTheCondition) {
  ASDeleter deleter(o);
  deleter.Where(c.nameColumn == "x");
  EXPECT_EQ(Text(deleter), "DELETE FROM o USING customers c WHERE c.name='x'");
}

TEST_F(Deleter, TwoRecordsOfOneTableAreToldApart) {
  Orders other;
  names.push_back({&other, "p"});
  ASDeleter deleter(o);
  deleter.Where(o.totalColumn == other.totalColumn && o.idColumn > other.idColumn);
  EXPECT_EQ(Text(deleter), "DELETE FROM o USING orders o, orders p WHERE (o.total=(p.total)) AND (o.id>p.id)");
}

TEST_F(Deleter, ProjectedColumnsAreNotWritten) {
  ASDeleter deleter(o);
  deleter.DistinctProject() << o.idColumn << c.nameColumn;
  deleter.Where(o.customerColumn == c.idColumn);
  EXPECT_EQ(Text(deleter), "DELETE FROM o USING orders o, customers c WHERE o.customer_id=(c.id)");
}

TEST_F(Deleter, TakesOverTableAndAliasOfTheRecord) {
  auto record = std::make_unique<Cities>();
  std::string const alias = record->Alias().ToString();
  ASDeleter const deleter(*record);
  record.reset();
  EXPECT_EQ(deleter.Query().ToString(), "DELETE FROM " + alias + " USING shop.cities " + alias);
}

TEST_F(Deleter, ComparedWithNullStillNamesItsRecordAndDeletesNothing) {
  ASDeleter deleter(o);
  deleter.Where(o.totalColumn > ASInt());
  EXPECT_EQ(Text(deleter), "DELETE FROM o USING orders o WHERE  0 = 1 ");
}

// ---- conditions that name no record

TEST_F(Deleter, WithoutConditionDeletesEveryRow) {
  ASDeleter const deleter(o);
  EXPECT_EQ(Text(deleter), "DELETE FROM o USING orders o");
}

TEST_F(Deleter, AConditionThatNamesNoRecordIsDropped) {
  ASDeleter deleter(o);
  deleter.Where(!(o.totalColumn == 3));
  EXPECT_EQ(Text(deleter), "DELETE FROM o USING orders o");
}

// Records and a sub-query for the conditions.
struct Operands {
  Orders& o;
  Customers& c;
  ASFilter& inner;
};

struct Unnamed {
  char const* name;
  ASComparison (*condition)(Operands const&);

  friend std::ostream& operator<<(std::ostream& out, Unnamed const& row) { return out << row.name; }
};

class DeleterDropsCondition : public Deleter, public testing::WithParamInterface<Unnamed> {
 protected:
  DeleterDropsCondition() {
    inner.Project() << c.idColumn;
    inner.Where(c.nameColumn == "x");
  }

  ASComparison Condition() { return GetParam().condition({o, c, inner}); }

  ASFilter inner;
};

TEST_P(DeleterDropsCondition, AndDeletesEveryRow) {
  ASDeleter deleter(o);
  deleter.Where(Condition());
  EXPECT_EQ(Text(deleter), "DELETE FROM o USING orders o");
}

TEST_P(DeleterDropsCondition, UnlessAColumnIsProjected) {
  ASComparison const condition = Condition();
  ASDeleter deleter(o);
  deleter.Project() << o.idColumn;
  deleter.Where(condition);
  EXPECT_EQ(Text(deleter),
            "DELETE FROM o USING orders o WHERE " + corvane::test::Sql(condition, {{&o, "o"}, {&c, "c"}}));
}

Unnamed const kUnnamed[] = {
    {"Negation", [](Operands const& in) { return !(in.o.totalColumn == 3); }},
    {"NegationOfTwoTables", [](Operands const& in) { return !(in.o.customerColumn == in.c.idColumn); }},
    {"NegationOfANegation", [](Operands const& in) { return !!(in.o.totalColumn == 3); }},
    {"NegationOfAConjunction", [](Operands const& in) { return !(in.o.totalColumn == 3 && in.o.idColumn > 1); }},
    {"Exists", [](Operands const& in) { return in.inner.Exists(); }},
    {"NotExists", [](Operands const& in) { return in.inner.NotExists(); }},
    {"UpperCaseColumn", [](Operands const& in) { return in.o.noteColumn.Upper() == "X"; }},
    {"LowerCaseColumn", [](Operands const& in) { return in.o.noteColumn.Lower() != "x"; }},
    {"AbsoluteColumn", [](Operands const& in) { return in.o.totalColumn.Abs() > 5; }},
    {"PositionInAColumn", [](Operands const& in) { return in.o.noteColumn.InStr("x") == 1; }},
    {"DerivedColumnIsNull", [](Operands const& in) { return in.o.noteColumn.Upper().IsNull(); }},
    {"DerivedColumnLike", [](Operands const& in) { return in.o.noteColumn.Upper().Like("X%"); }},
    {"DerivedColumnIn", [](Operands const& in) { return in.o.totalColumn.Abs().In(in.inner.Select()); }},
    {"DerivedColumnBetween", [](Operands const& in) { return in.o.totalColumn.Abs().Between(1, 5); }},
    {"ColumnWithoutRecord", [](Operands const&) { return ASAttribute("free") == 3; }},
    {"ColumnsWithoutRecord", [](Operands const&) { return ASAttribute("free") < ASAttribute("other"); }},
    {"ValuesEqual", [](Operands const& in) { return in.o.total.EQ(Int(3)); }},
    {"ValuesUnequal", [](Operands const& in) { return in.o.total.NE(Int(3)); }},
    {"ValueGreater", [](Operands const& in) { return in.o.total.GT(Int(3)); }},
    {"ValueLess", [](Operands const& in) { return in.o.total.LT(Int(3)); }},
    {"ValueNotLess", [](Operands const& in) { return in.o.total.GE(Int(3)); }},
    {"ValueNotGreater", [](Operands const& in) { return in.o.total.LE(Int(3)); }},
    {"TextWithoutRecord", [](Operands const&) { return ASComparison("1=1", nullptr, nullptr); }},
    {"NegationAndExists", [](Operands const& in) { return !(in.o.totalColumn == 3) && in.inner.Exists(); }},
    {"ValuesOrDerivedColumn",
     [](Operands const& in) { return in.o.total.EQ(Int(3)) || in.o.noteColumn.Upper() == "X"; }},
    {"NegationOrNegation", [](Operands const& in) { return !(in.o.totalColumn == 3) || !(in.o.idColumn == 1); }},
};

INSTANTIATE_TEST_SUITE_P(Conditions, DeleterDropsCondition, testing::ValuesIn(kUnnamed),
                         [](testing::TestParamInfo<Unnamed> const& row) { return std::string(row.param.name); });

TEST_F(Deleter, AConditionWithoutTextDeletesEveryRow) {
  ASDeleter deleter(o);
  deleter.Where(ASComparison("", nullptr, nullptr));
  EXPECT_EQ(Text(deleter), "DELETE FROM o USING orders o");
}

TEST_F(Deleter, AProjectedColumnWithoutRecordDoesNotKeepTheCondition) {
  ASAttribute const free("free");
  ASDeleter deleter(o);
  deleter.Project() << free;
  deleter.Where(!(o.totalColumn == 3));
  EXPECT_EQ(Text(deleter), "DELETE FROM o USING orders o");
}

TEST_F(Deleter, AColumnOfTheGroupingDoesNotKeepTheCondition) {
  ASDeleter deleter(o);
  deleter.GroupBy() << o.idColumn;
  deleter.Where(!(o.totalColumn == 3));
  EXPECT_EQ(Text(deleter), "DELETE FROM o USING orders o");
}

TEST_F(Deleter, AConditionThatNamesTheRecordKeepsANegation) {
  ASDeleter deleter(o);
  deleter.Where(o.totalColumn.IsNotNull() && !(o.totalColumn == 3));
  EXPECT_EQ(Text(deleter), "DELETE FROM o USING orders o WHERE (o.total IS NOT NULL) AND ( NOT (o.total=3) )");
}

TEST_F(Deleter, AnEarlierConditionThatNamesTheRecordKeepsANegation) {
  ASDeleter deleter(o);
  deleter.Where(o.idColumn == 1);
  deleter.Where(!(o.totalColumn == 3));
  EXPECT_EQ(Text(deleter), "DELETE FROM o USING orders o WHERE  NOT (o.total=3) ");
}

TEST_F(Deleter, AConditionThatNamesAnotherRecordKeepsANegation) {
  ASDeleter deleter(o);
  deleter.Where(!(o.totalColumn == 3) && c.idColumn == 1);
  EXPECT_EQ(Text(deleter), "DELETE FROM o USING customers c WHERE ( NOT (o.total=3) ) AND (c.id=1)");
}

// ---- outer joins

TEST_F(Deleter, OuterJoinStandsBehindTheTables) {
  ASDeleter deleter(o);
  deleter.Where(++c.idColumn == o.customerColumn && o.totalColumn > 10 && c.idColumn.IsNull());
  EXPECT_EQ(Text(deleter),
            "DELETE FROM o USING orders o LEFT JOIN customers c ON (c.id=(o.customer_id))"
            " WHERE (o.total>10) AND (c.id IS NULL)");
}

TEST_F(Deleter, OuterJoinBehindSeveralTablesHasNoParenthesesEither) {
  ASDeleter deleter(o);
  deleter.Where(o.noteColumn == y.nameColumn && ++c.idColumn == o.customerColumn);
  EXPECT_EQ(Text(deleter),
            "DELETE FROM o USING orders o, shop.cities y LEFT JOIN customers c ON (c.id=(o.customer_id))"
            " WHERE o.note=(y.name)");
}

TEST_F(Deleter, OuterJoinAloneNamesTheOptionalTableOnly) {
  ASDeleter deleter(o);
  deleter.Where(++c.idColumn == o.customerColumn);
  EXPECT_EQ(Text(deleter), "DELETE FROM o USING  LEFT JOIN customers c ON (c.id=(o.customer_id))");
}

TEST_F(Deleter, OuterJoinAloneKeepsANegation) {
  ASDeleter deleter(o);
  deleter.Where(++c.idColumn == o.customerColumn && !(o.totalColumn == 3));
  EXPECT_EQ(Text(deleter),
            "DELETE FROM o USING  LEFT JOIN customers c ON (c.id=(o.customer_id)) WHERE  NOT (o.total=3) ");
}

TEST_F(Deleter, ItsOwnTableMayBeTheOptionalOne) {
  ASDeleter deleter(o);
  deleter.Where(++o.customerColumn == c.idColumn && c.nameColumn == "x");
  EXPECT_EQ(Text(deleter),
            "DELETE FROM o USING customers c LEFT JOIN orders o ON (o.customer_id=(c.id)) WHERE c.name='x'");
}

TEST_F(Deleter, ItsOwnTableOptionalAgainstAValueHasNoPlainTable) {
  ASDeleter deleter(o);
  deleter.Where(++o.totalColumn == Int(5));
  EXPECT_EQ(Text(deleter), "DELETE FROM o USING  LEFT JOIN orders o ON (o.total=5)");
}

// ---- quoted table names

TEST_F(Deleter, TableNamesAreBareUnlessKeywordsAreGiven) {
  ASDeleter deleter(y);
  deleter.Where(y.nameColumn == o.noteColumn && ++c.idColumn == o.customerColumn);
  deleter.Project().setKW("`", "`");
  EXPECT_EQ(Text(deleter),
            "DELETE FROM y USING `shop`.`cities` y, `orders` o LEFT JOIN `customers` c ON (c.id=(o.customer_id))"
            " WHERE y.name=(o.note)");
}

TEST_F(Deleter, OfEveryRowHasABareTableNameAlways) {
  ASDeleter deleter(y);
  deleter.Project().setKW("`", "`");
  EXPECT_EQ(Text(deleter), "DELETE FROM y USING shop.cities y");
}

// ---- what is not written

TEST_F(Deleter, WritesNeitherHavingNorGroupingNorHint) {
  std::unique_ptr<ASGroupAttribute> const sum(o.totalColumn.Sum());
  ASDeleter deleter(o);
  deleter.Where(o.idColumn == 3);
  deleter.Having(*sum > 100);
  deleter.GroupBy() << o.customerColumn;
  deleter.Hint("first");
  EXPECT_EQ(Text(deleter), "DELETE FROM o USING orders o WHERE o.id=3");
}

// ---- copies

TEST_F(Deleter, ACopyHasTableConditionAndKeywords) {
  ASDeleter deleter(o);
  deleter.Where(++c.idColumn == o.customerColumn && o.totalColumn > 10);
  deleter.Project().setKW("`", "`");
  ASDeleter const copy(deleter);
  EXPECT_EQ(Text(copy),
            "DELETE FROM o USING `orders` o LEFT JOIN `customers` c ON (c.id=(o.customer_id)) WHERE o.total>10");
}

TEST_F(Deleter, ACopyGoesItsOwnWay) {
  ASDeleter deleter(o);
  deleter.Where(o.idColumn == 3);
  ASDeleter copy(deleter);
  copy.Where(o.idColumn == 4);
  EXPECT_EQ(Text(deleter), "DELETE FROM o USING orders o WHERE o.id=3");
  EXPECT_EQ(Text(copy), "DELETE FROM o USING orders o WHERE o.id=4");
}

// Its copy constructor says nothing of the virtual base, and many will not.
struct Named : ASDeleter {
  Named(ASDomain const& record, char const* text) : ASDeleter(record), name(text) {}
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wextra"
  Named(Named const& other) : ASDeleter(other), name(other.name) {}
#pragma GCC diagnostic pop
  Named& operator=(Named const&) = default;
  std::string name;
};

TEST_F(Deleter, ACopyOfADerivedClassKeepsTheCondition) {
  Named deleter(o, "x");
  deleter.Where(++c.idColumn == o.customerColumn && o.totalColumn > 10);
  Named const copy(deleter);
  EXPECT_EQ(Text(copy),
            "DELETE FROM o USING orders o LEFT JOIN customers c ON (c.id=(o.customer_id)) WHERE o.total>10");
}

TEST_F(Deleter, AssignmentReplacesTableAndCondition) {
  ASDeleter deleter(o);
  deleter.Where(o.idColumn == 3);
  ASDeleter target(c);
  target.Where(c.idColumn == 4);
  target = deleter;
  EXPECT_EQ(Text(target), "DELETE FROM o USING orders o WHERE o.id=3");
}

// The condition alone would delete other rows.
TEST_F(Deleter, AssignmentTakesOuterJoinsOver) {
  ASDeleter deleter(o);
  deleter.Project() << o.idColumn;
  deleter.Where(++c.idColumn == o.customerColumn && c.idColumn.IsNull());
  ASDeleter target(c);
  target = deleter;
  EXPECT_EQ(Text(target),
            "DELETE FROM o USING orders o LEFT JOIN customers c ON (c.id=(o.customer_id)) WHERE c.id IS NULL");
}

TEST_F(Deleter, AssignmentReplacesTheTableOfEveryRow) {
  ASDeleter const deleter(o);
  ASDeleter target(c);
  target = deleter;
  EXPECT_EQ(Text(target), "DELETE FROM o USING orders o");
}

TEST_F(Deleter, AssignmentToItselfChangesNothing) {
  ASDeleter deleter(o);
  deleter.Where(o.idColumn == 3);
  ASDeleter const& same = deleter;
  deleter = same;
  EXPECT_EQ(Text(deleter), "DELETE FROM o USING orders o WHERE o.id=3");
}

}  // namespace
