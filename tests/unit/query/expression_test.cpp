#include "corvane/query/expression.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "corvane/corvane.h"
#include "tests/support/sql.h"

using corvane::test::Customers;
using corvane::test::Orders;
using testing::ElementsAre;

namespace {

class Expression : public testing::Test {
 protected:
  std::string Text(ASExpression const& expression) const {
    return corvane::test::Sql(expression, {{&o, "o"}, {&c, "c"}});
  }

  // left + right, left - right, left * right, left / right.
  template <class Left, class Right>
  std::vector<std::string> FourWays(Left const& left, Right const& right) const {
    return {Text(left + right), Text(left - right), Text(left * right), Text(left / right)};
  }
  template <class Right>
  std::vector<std::string> FourWays(Right const& right) const {
    return FourWays(total, right);
  }

  Orders o;
  Customers c;
  ASAttribute& total = o.totalColumn;
  ASAttribute& id = c.idColumn;
};

template <class Column, class Value>
Column Holding(Column column, Value const& value) {
  column = value;
  return column;
}

// The four operations on o.total and what stands on the right.
auto WithTotal(char const* right) {
  std::string const operand(right);
  return ElementsAre("o.total + " + operand, "o.total - " + operand, "o.total * " + operand, "o.total / " + operand);
}

// ---- One operand ----

TEST_F(Expression, TheEmptyOneRendersNothing) {
  EXPECT_EQ(Text(ASExpression()), "");
  EXPECT_EQ(ASExpression().Query().length(), 0);
}

TEST_F(Expression, NumbersAreQuoted) {
  EXPECT_EQ(Text(ASExpression(7)), "'7'");
  EXPECT_EQ(Text(ASExpression(-7)), "'-7'");
  EXPECT_EQ(Text(ASExpression(0)), "'0'");
  EXPECT_EQ(Text(total + 5), "o.total + '5'");
}

TEST_F(Expression, NumbersOfEveryKindKeepTheirValue) {
  EXPECT_EQ(Text(ASExpression(2.5)), "'2.5'");
  EXPECT_EQ(Text(ASExpression(0.5F)), "'0.5'");
  EXPECT_EQ(Text(ASExpression(0.1)), "'0.1'");
  EXPECT_EQ(Text(ASExpression(1234567.891)), "'1234567.891'");
  EXPECT_EQ(Text(ASExpression(1e100)), "'1e+100'");
  EXPECT_EQ(Text(ASExpression(5L)), "'5'");
  EXPECT_EQ(Text(ASExpression(0L)), "'0'");
  EXPECT_EQ(Text(ASExpression(-5000000000L)), "'-5000000000'");
  EXPECT_EQ(Text(ASExpression(4000000000U)), "'4000000000'");
  EXPECT_EQ(Text(ASExpression(5UL)), "'5'");
  EXPECT_EQ(Text(ASExpression(-9223372036854775807LL - 1)), "'-9223372036854775808'");
  EXPECT_EQ(Text(ASExpression(18446744073709551615ULL)), "'18446744073709551615'");
  EXPECT_EQ(Text(ASExpression(short{-5})), "'-5'");
  EXPECT_EQ(Text(ASExpression(true)), "'1'");
  EXPECT_EQ(Text(ASExpression('c')), "'99'");
  EXPECT_EQ(Text(ASExpression(2147483647)), "'2147483647'");
  EXPECT_EQ(Text(ASExpression(-2147483647 - 1)), "'-2147483648'");
}

TEST_F(Expression, TextsOfEveryKindAreQuoted) {
  EXPECT_EQ(Text(ASExpression("x")), "'x'");
  EXPECT_EQ(Text(ASExpression(std::string("x"))), "'x'");
  EXPECT_EQ(Text(ASExpression(std::string_view("xyz", 1))), "'x'");
  EXPECT_EQ(Text(ASExpression(Str("x"))), "'x'");
}

TEST_F(Expression, EmptyTextsAreTwoQuotes) {
  EXPECT_EQ(Text(ASExpression("")), "''");
  EXPECT_EQ(Text(ASExpression(std::string())), "''");
  EXPECT_EQ(Text(ASExpression(std::string_view())), "''");
  EXPECT_EQ(Text(ASExpression(Str(""))), "''");
  EXPECT_EQ(Text(ASExpression(Holding(ASVStr(5), ""))), "''");
}

TEST_F(Expression, TextsAreEscaped) {
  char const* const nasty = "'\"\\\n\r\x1A\xC3\xA9%_";
  EXPECT_EQ(Text(ASExpression(nasty)), "'\\'\\\"\\\\\\n\\r\\Z\xC3\xA9%_'");
  EXPECT_EQ(Text(ASExpression(std::string(nasty))), "'\\'\\\"\\\\\\n\\r\\Z\xC3\xA9%_'");
  EXPECT_EQ(Text(ASExpression(Str(nasty))), "'\\'\\\"\\\\\\n\\r\\Z\xC3\xA9%_'");
  EXPECT_EQ(Text(total + nasty), "o.total + '\\'\\\"\\\\\\n\\r\\Z\xC3\xA9%_'");
  EXPECT_EQ(Text(total + Str(nasty)), "o.total + '\\'\\\"\\\\\\n\\r\\Z\xC3\xA9%_'");
}

TEST_F(Expression, NulsOfAStandardStringAreEscaped) {
  EXPECT_EQ(Text(ASExpression(std::string("a\0b", 3))), "'a\\0b'");
  EXPECT_EQ(Text(total + std::string_view("a\0b", 3)), "o.total + 'a\\0b'");
}

TEST_F(Expression, LongTextsAreTakenWhole) {
  std::string const quotes(70001, '\'');
  std::string escaped;
  for (int i = 0; i < 70001; ++i) escaped += "\\'";
  EXPECT_TRUE(Text(ASExpression(quotes)) == "'" + escaped + "'");
  EXPECT_TRUE(Text(total + quotes.c_str()) == "o.total + '" + escaped + "'");
}

TEST_F(Expression, ValuesOfEveryKindAreQuoted) {
  EXPECT_EQ(Text(ASExpression(Int(5))), "'5'");
  EXPECT_EQ(Text(ASExpression(Int64(5000000000))), "'5000000000'");
  EXPECT_EQ(Text(ASExpression(Double(2.5))), "'2.5'");
  EXPECT_EQ(Text(ASExpression(Guid(1, 2))), "'00000000-0000-0001-0000-000000000002'");
  EXPECT_EQ(Text(ASExpression(Blob(3, "abc"))), "'BLOB'");
  EXPECT_EQ(Text(ASExpression(RealBlob(3, "abc"))), "'BLOB'");
  EXPECT_EQ(Text(ASExpression(Holding(ASInt(), 5))), "'5'");
  EXPECT_EQ(Text(ASExpression(Holding(ASInt64(), 5000000000))), "'5000000000'");
  EXPECT_EQ(Text(ASExpression(Holding(ASDouble(), 2.5))), "'2.5'");
  EXPECT_EQ(Text(ASExpression(Holding(ASDCurrency(), 19.99))), "'19.99'");
  EXPECT_EQ(Text(ASExpression(Holding(ASStr(4), "ab"))), "'ab  '");
  EXPECT_EQ(Text(ASExpression(Holding(ASVStr(4), "ab"))), "'ab'");
  EXPECT_EQ(Text(ASExpression(ASTime(1088689500))), "'2004-07-01 13:45:00'");
  EXPECT_EQ(Text(ASExpression(Holding(ASGuid(), Guid(1, 2)))), "'00000000-0000-0001-0000-000000000002'");
  EXPECT_EQ(Text(ASExpression(Holding(ASBlob(5), Blob(3, "abc")))), "'BLOB'");
  EXPECT_EQ(Text(ASExpression(Holding(ASGeometry(5), Blob(3, "abc")))), "'BLOB'");
  EXPECT_EQ(Text(ASExpression(Holding(ASRealBlob(0), RealBlob(3, "abc")))), "'BLOB'");
}

TEST_F(Expression, NullsOfEveryKindAreTheKeyword) {
  EXPECT_EQ(Text(ASExpression(Int())), "NULL");
  EXPECT_EQ(Text(ASExpression(Int64())), "NULL");
  EXPECT_EQ(Text(ASExpression(Double())), "NULL");
  EXPECT_EQ(Text(ASExpression(Str())), "NULL");
  EXPECT_EQ(Text(ASExpression(Guid())), "NULL");
  EXPECT_EQ(Text(ASExpression(Blob())), "NULL");
  EXPECT_EQ(Text(ASExpression(RealBlob())), "NULL");
  EXPECT_EQ(Text(ASExpression(ASInt())), "NULL");
  EXPECT_EQ(Text(ASExpression(ASInt64())), "NULL");
  EXPECT_EQ(Text(ASExpression(ASDouble())), "NULL");
  EXPECT_EQ(Text(ASExpression(ASDCurrency())), "NULL");
  EXPECT_EQ(Text(ASExpression(ASStr(4))), "NULL");
  EXPECT_EQ(Text(ASExpression(ASVStr(4))), "NULL");
  EXPECT_EQ(Text(ASExpression(ASTime())), "NULL");
  EXPECT_EQ(Text(ASExpression(ASGuid())), "NULL");
  EXPECT_EQ(Text(ASExpression(ASBlob(5))), "NULL");
  EXPECT_EQ(Text(ASExpression(ASGeometry(5))), "NULL");
  EXPECT_EQ(Text(ASExpression(ASRealBlob(0))), "NULL");
  EXPECT_EQ(Text(ASExpression(static_cast<char const*>(nullptr))), "NULL");
}

TEST_F(Expression, TheWordNullAsATextIsQuoted) { EXPECT_EQ(Text(ASExpression("NULL")), "'NULL'"); }

TEST_F(Expression, AColumnIsItsQualifiedName) {
  EXPECT_EQ(Text(ASExpression(total)), "o.total");
  EXPECT_EQ(Text(ASExpression(ASAttribute("free"))), "free");
  EXPECT_EQ(Text(ASExpression(total.Abs())), " ABS(o.total)");
}

TEST_F(Expression, AValueIsTakenAsItIsWhenTheExpressionIsMade) {
  ASInt value = Holding(ASInt(), 5);
  ASExpression const leaf(value);
  ASExpression const sum = total + value;
  value = 6;
  EXPECT_EQ(Text(leaf), "'5'");
  EXPECT_EQ(Text(sum), "o.total + '5'");
}

TEST_F(Expression, AColumnIsTakenAsItIsWhenTheExpressionIsRendered) {
  ASAttribute column("number");
  ASExpression const leaf(column);
  ASExpression const sum = column + column;
  column.Register(nullptr, &c);
  EXPECT_EQ(Text(leaf), "c.number");
  EXPECT_EQ(Text(sum), "c.number + c.number");
}

// ---- A column and an operand ----

TEST_F(Expression, AColumnAndANumberOfEveryKind) {
  EXPECT_THAT(FourWays(5), WithTotal("'5'"));
  EXPECT_THAT(FourWays(2.5), WithTotal("'2.5'"));
  EXPECT_THAT(FourWays(0.5F), WithTotal("'0.5'"));
  EXPECT_THAT(FourWays(5L), WithTotal("'5'"));
  EXPECT_THAT(FourWays(4000000000U), WithTotal("'4000000000'"));
  EXPECT_THAT(FourWays(5UL), WithTotal("'5'"));
  EXPECT_THAT(FourWays(-5000000000LL), WithTotal("'-5000000000'"));
  EXPECT_THAT(FourWays(18446744073709551615ULL), WithTotal("'18446744073709551615'"));
  EXPECT_THAT(FourWays(short{5}), WithTotal("'5'"));
}

TEST_F(Expression, AColumnAndATextOfEveryKind) {
  EXPECT_THAT(FourWays("x"), WithTotal("'x'"));
  EXPECT_THAT(FourWays(""), WithTotal("''"));
  EXPECT_THAT(FourWays(std::string_view("xyz", 1)), WithTotal("'x'"));
  EXPECT_THAT(FourWays(Str("x")), WithTotal("'x'"));
  EXPECT_THAT(FourWays(static_cast<char const*>(nullptr)), WithTotal("NULL"));
}

TEST_F(Expression, AColumnAndAValueOfEveryKind) {
  EXPECT_THAT(FourWays(Int(5)), WithTotal("'5'"));
  EXPECT_THAT(FourWays(Int64(5)), WithTotal("'5'"));
  EXPECT_THAT(FourWays(Double(2.5)), WithTotal("'2.5'"));
  EXPECT_THAT(FourWays(Holding(ASInt(), 5)), WithTotal("'5'"));
  EXPECT_THAT(FourWays(Holding(ASInt64(), 5)), WithTotal("'5'"));
  EXPECT_THAT(FourWays(Holding(ASDouble(), 2.5)), WithTotal("'2.5'"));
  EXPECT_THAT(FourWays(Holding(ASDCurrency(), 2.5)), WithTotal("'2.5'"));
  EXPECT_THAT(FourWays(Holding(ASStr(3), "x")), WithTotal("'x  '"));
  EXPECT_THAT(FourWays(Holding(ASVStr(3), "x")), WithTotal("'x'"));
  EXPECT_THAT(FourWays(ASTime(0)), WithTotal("'1970-01-01 00:00:00'"));
  EXPECT_THAT(FourWays(Guid(1, 2)), WithTotal("'00000000-0000-0001-0000-000000000002'"));
  EXPECT_THAT(FourWays(Blob(3, "abc")), WithTotal("'BLOB'"));
}

TEST_F(Expression, AColumnAndANullOfEveryKind) {
  EXPECT_THAT(FourWays(Int()), WithTotal("NULL"));
  EXPECT_THAT(FourWays(Int64()), WithTotal("NULL"));
  EXPECT_THAT(FourWays(Double()), WithTotal("NULL"));
  EXPECT_THAT(FourWays(Str()), WithTotal("NULL"));
  EXPECT_THAT(FourWays(ASInt()), WithTotal("NULL"));
  EXPECT_THAT(FourWays(ASInt64()), WithTotal("NULL"));
  EXPECT_THAT(FourWays(ASDouble()), WithTotal("NULL"));
  EXPECT_THAT(FourWays(ASDCurrency()), WithTotal("NULL"));
  EXPECT_THAT(FourWays(ASStr(3)), WithTotal("NULL"));
  EXPECT_THAT(FourWays(ASVStr(3)), WithTotal("NULL"));
  EXPECT_THAT(FourWays(ASTime()), WithTotal("NULL"));
  EXPECT_THAT(FourWays(ASGuid()), WithTotal("NULL"));
  EXPECT_THAT(FourWays(ASBlob(3)), WithTotal("NULL"));
  EXPECT_THAT(FourWays(ASRealBlob(0)), WithTotal("NULL"));
}

TEST_F(Expression, AColumnAndAColumn) {
  EXPECT_THAT(FourWays(id), WithTotal("c.id"));
  EXPECT_THAT(FourWays(total), WithTotal("o.total"));
  EXPECT_THAT(FourWays(ASAttribute("free")), WithTotal("free"));
}

TEST_F(Expression, AColumnAndAnExpression) {
  EXPECT_THAT(FourWays(ASExpression(5)), WithTotal("'5'"));
  EXPECT_THAT(FourWays(ASExpression(id)), WithTotal("c.id"));
  EXPECT_THAT(FourWays(id + 5), WithTotal("c.id + '5'"));
  EXPECT_THAT(FourWays(ASExpression()), WithTotal(""));
}

// ---- An expression and an operand ----

TEST_F(Expression, AnExpressionAndAnOperandOfEveryKind) {
  ASExpression const left(total);
  EXPECT_THAT(FourWays(left, 5), WithTotal("'5'"));
  EXPECT_THAT(FourWays(left, 0.5), WithTotal("'0.5'"));
  EXPECT_THAT(FourWays(left, 5000000000L), WithTotal("'5000000000'"));
  EXPECT_THAT(FourWays(left, 4000000000U), WithTotal("'4000000000'"));
  EXPECT_THAT(FourWays(left, "O'B"), WithTotal("'O\\'B'"));
  EXPECT_THAT(FourWays(left, static_cast<char const*>(nullptr)), WithTotal("NULL"));
  EXPECT_THAT(FourWays(left, std::string_view("x")), WithTotal("'x'"));
  EXPECT_THAT(FourWays(left, Str("x")), WithTotal("'x'"));
  EXPECT_THAT(FourWays(left, Int(5)), WithTotal("'5'"));
  EXPECT_THAT(FourWays(left, Int()), WithTotal("NULL"));
  EXPECT_THAT(FourWays(left, Holding(ASVStr(3), "x")), WithTotal("'x'"));
  EXPECT_THAT(FourWays(left, ASTime()), WithTotal("NULL"));
  EXPECT_THAT(FourWays(left, id), WithTotal("c.id"));
  EXPECT_THAT(FourWays(left, id.Abs()), WithTotal(" ABS(c.id)"));
  EXPECT_THAT(FourWays(left, id * 5), WithTotal("c.id * '5'"));
  EXPECT_THAT(FourWays(left, left), WithTotal("o.total"));
}

TEST_F(Expression, LeftSidesOfEveryKind) {
  EXPECT_THAT(FourWays(ASExpression(5), id), ElementsAre("'5' + c.id", "'5' - c.id", "'5' * c.id", "'5' / c.id"));
  EXPECT_THAT(FourWays(ASExpression("x"), id), ElementsAre("'x' + c.id", "'x' - c.id", "'x' * c.id", "'x' / c.id"));
  EXPECT_THAT(FourWays(ASExpression(Int()), id),
              ElementsAre("NULL + c.id", "NULL - c.id", "NULL * c.id", "NULL / c.id"));
  EXPECT_THAT(FourWays(ASExpression(), id), ElementsAre(" + c.id", " - c.id", " * c.id", " / c.id"));
  EXPECT_THAT(FourWays(total - 1, id), ElementsAre("o.total - '1' + c.id", "o.total - '1' - c.id",
                                                   "o.total - '1' * c.id", "o.total - '1' / c.id"));
  EXPECT_THAT(FourWays(total.Abs(), id), ElementsAre(" ABS(o.total) + c.id", " ABS(o.total) - c.id",
                                                     " ABS(o.total) * c.id", " ABS(o.total) / c.id"));
}

TEST_F(Expression, ParenthesesAreNeverWritten) {
  EXPECT_EQ(Text((total + 1) * id), "o.total + '1' * c.id");
  EXPECT_EQ(Text(total * (id + 1)), "o.total * c.id + '1'");
  EXPECT_EQ(Text(total - (id - 1)), "o.total - c.id - '1'");
  EXPECT_EQ(Text((total + 1) / (id - 2)), "o.total + '1' / c.id - '2'");
  EXPECT_EQ(Text(((total + 1) * 2 - id) / 3), "o.total + '1' * '2' - c.id / '3'");
}

TEST_F(Expression, OperatorsLeaveTheirOperandsAsTheyWere) {
  ASExpression const left = total + 1;
  ASExpression const right = id - 2;
  static_cast<void>(left * right);
  EXPECT_EQ(Text(left), "o.total + '1'");
  EXPECT_EQ(Text(right), "c.id - '2'");
}

TEST_F(Expression, CombinesWithItself) {
  ASExpression const e = total + 1;
  EXPECT_EQ(Text(e * e), "o.total + '1' * o.total + '1'");
}

// ---- Copies, assignment, moves ----

TEST_F(Expression, ACopyOutlivesItsSource) {
  auto source = std::make_unique<ASExpression>((total + "O'B") * (id - ASInt()));
  ASExpression const copy(*source);
  source.reset();
  EXPECT_EQ(Text(copy), "o.total + 'O\\'B' * c.id - NULL");
}

TEST_F(Expression, AResultOutlivesItsOperands) {
  auto left = std::make_unique<ASExpression>(total + 1);
  auto right = std::make_unique<ASExpression>(id - 2);
  ASExpression const product = *left * *right;
  left.reset();
  right.reset();
  EXPECT_EQ(Text(product), "o.total + '1' * c.id - '2'");
}

TEST_F(Expression, CopiesOfEveryKindOfOperand) {
  auto const copied = [this](ASExpression const& source) { return Text(ASExpression(source)); };
  EXPECT_EQ(copied(ASExpression()), "");
  EXPECT_EQ(copied(ASExpression(7)), "'7'");
  EXPECT_EQ(copied(ASExpression("")), "''");
  EXPECT_EQ(copied(ASExpression(Int())), "NULL");
  EXPECT_EQ(copied(ASExpression(total)), "o.total");
  EXPECT_EQ(copied(total / 2), "o.total / '2'");
  EXPECT_EQ(copied(total / Int()), "o.total / NULL");
  EXPECT_EQ(copied(ASExpression(7) - total), "'7' - o.total");
  EXPECT_EQ(copied(total * (total - 1)), "o.total * o.total - '1'");
}

TEST_F(Expression, ACopySharesTheColumns) {
  ASAttribute column("number");
  ASExpression const source = column + 1;
  ASExpression const copy(source);
  column.Register(nullptr, &c);
  EXPECT_EQ(Text(copy), "c.number + '1'");
}

TEST_F(Expression, AssignmentCopiesTheWholeTree) {
  auto source = std::make_unique<ASExpression>((total + 1) * (id - 2));
  ASExpression target = id / 3;
  target = *source;
  EXPECT_EQ(Text(*source), "o.total + '1' * c.id - '2'");
  source.reset();
  EXPECT_EQ(Text(target), "o.total + '1' * c.id - '2'");
}

TEST_F(Expression, AssignmentReplacesEveryKindOfOperand) {
  ASExpression target = (total + 1) * (id - 2);
  target = ASExpression(7);
  EXPECT_EQ(Text(target), "'7'");
  target = total;
  EXPECT_EQ(Text(target), "o.total");
  target = ASInt();
  EXPECT_EQ(Text(target), "NULL");
  target = "x";
  EXPECT_EQ(Text(target), "'x'");
  target = ASExpression();
  EXPECT_EQ(Text(target), "");
}

TEST_F(Expression, AssignmentReturnsTheTarget) {
  ASExpression const source(7);
  ASExpression target;
  EXPECT_EQ(&(target = source), &target);
  EXPECT_EQ(&(target = ASExpression(8)), &target);
}

TEST_F(Expression, SelfAssignmentDoesNothing) {
  ASExpression e = (total + 1) * (id.Abs() - 2);
  ASExpression const& self = e;
  e = self;
  EXPECT_EQ(Text(e), "o.total + '1' *  ABS(c.id) - '2'");
}

TEST_F(Expression, GrowsByAssigningFromItself) {
  ASExpression e(total);
  e = e + 1;
  e = e * e;
  EXPECT_EQ(Text(e), "o.total + '1' * o.total + '1'");
}

TEST_F(Expression, MovingTakesTheWholeTree) {
  ASExpression source = (total + 1) * (id - ASInt());
  ASExpression constructed(std::move(source));
  EXPECT_EQ(Text(constructed), "o.total + '1' * c.id - NULL");
  ASExpression assigned(7);
  assigned = std::move(constructed);
  EXPECT_EQ(Text(assigned), "o.total + '1' * c.id - NULL");
}

TEST_F(Expression, AMovedFromOneCanBeAssigned) {
  ASExpression source = total + 1;
  ASExpression const target(std::move(source));
  source = id - 2;
  EXPECT_EQ(Text(source), "c.id - '2'");
  EXPECT_EQ(Text(target), "o.total + '1'");
}

// ---- Temporary columns ----

TEST_F(Expression, TemporaryColumnsAreKept) {
  ASExpression const leaf = total.Abs();
  ASExpression const left = total.Abs() + 1;
  ASExpression const right = total - id.Abs();
  ASExpression const both = total.Abs() * id.Abs();
  ASExpression const ofExpressions = (total.Abs() + 1) / (ASExpression(2) - id.Abs());
  ASExpression const marked = ++total + ++id;
  EXPECT_EQ(Text(leaf), " ABS(o.total)");
  EXPECT_EQ(Text(left), " ABS(o.total) + '1'");
  EXPECT_EQ(Text(right), "o.total -  ABS(c.id)");
  EXPECT_EQ(Text(both), " ABS(o.total) *  ABS(c.id)");
  EXPECT_EQ(Text(ofExpressions), " ABS(o.total) + '1' / '2' -  ABS(c.id)");
  EXPECT_EQ(Text(marked), "o.total + c.id");
}

TEST_F(Expression, TemporaryColumnsOnTheLeftOfEveryOperatorAreKept) {
  ASExpression const sum = total.Abs() + id;
  ASExpression const difference = total.Abs() - id;
  ASExpression const product = total.Abs() * id;
  ASExpression const quotient = total.Abs() / id;
  EXPECT_EQ(Text(sum), " ABS(o.total) + c.id");
  EXPECT_EQ(Text(difference), " ABS(o.total) - c.id");
  EXPECT_EQ(Text(product), " ABS(o.total) * c.id");
  EXPECT_EQ(Text(quotient), " ABS(o.total) / c.id");
}

TEST_F(Expression, TemporaryColumnsAreKeptByCopiesOfAnExpressionThatIsGone) {
  auto source = std::make_unique<ASExpression>((total.Abs() + 1) * (id.Abs() - 2));
  ASExpression const copy(*source);
  ASExpression assigned;
  assigned = *source;
  ASExpression const moved(std::move(*source));
  source.reset();
  EXPECT_EQ(Text(copy), " ABS(o.total) + '1' *  ABS(c.id) - '2'");
  EXPECT_EQ(Text(assigned), " ABS(o.total) + '1' *  ABS(c.id) - '2'");
  EXPECT_EQ(Text(moved), " ABS(o.total) + '1' *  ABS(c.id) - '2'");
}

TEST_F(Expression, ConstTemporariesAreKeptToo) {
  auto const absolute = [this]() -> ASAttribute const { return total.Abs(); };
  ASExpression const leaf = absolute();
  ASExpression const sum = absolute() + absolute();
  EXPECT_EQ(Text(leaf), " ABS(o.total)");
  EXPECT_EQ(Text(sum), " ABS(o.total) +  ABS(o.total)");
}

// A column of an application that renders itself.
struct Now : ASAttribute {
  Str Query() const override { return "NOW()"; }
};

TEST_F(Expression, TemporariesThatRenderThemselvesAreKeptAsTheyRender) {
  ASExpression const leaf = Now();
  ASExpression const left = Now() + 1;
  ASExpression const right = total - Now();
  EXPECT_EQ(Text(leaf), "NOW()");
  EXPECT_EQ(Text(left), "NOW() + '1'");
  EXPECT_EQ(Text(right), "o.total - NOW()");
}

TEST_F(Expression, AKeptColumnBelongsToEveryCopy) {
  ASExpression target;
  {
    ASExpression const source = total.Abs() - id.Abs();
    target = source;
  }
  EXPECT_EQ(Text(target), " ABS(o.total) -  ABS(c.id)");
}

}  // namespace
