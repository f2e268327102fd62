#include "corvane/query/setter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <string_view>

#include "corvane/corvane.h"
#include "tests/support/sql.h"

using corvane::test::Cities;
using corvane::test::Customers;
using corvane::test::Orders;

namespace {

class Setter : public testing::Test {
 protected:
  std::string Text(ASSetter const& setter) const { return corvane::test::Sql(setter, {{&o, "o"}, {&c, "c"}}); }

  Orders o;
  Customers c;
  ASAttribute& total = o.totalColumn;
};

TEST_F(Setter, AssignsAnExpressionToItsColumn) {
  ASExpression const expression = total + 5;
  EXPECT_EQ(Text(total.Set(expression)), "o.total = o.total + '5'");
}

TEST_F(Setter, AssignsWhateverMakesAnExpression) {
  EXPECT_EQ(Text(total.Set(7)), "o.total = '7'");
  EXPECT_EQ(Text(total.Set(2.5)), "o.total = '2.5'");
  EXPECT_EQ(Text(total.Set(5000000000L)), "o.total = '5000000000'");
  EXPECT_EQ(Text(total.Set("O'B")), "o.total = 'O\\'B'");
  EXPECT_EQ(Text(total.Set(std::string_view("x"))), "o.total = 'x'");
  EXPECT_EQ(Text(total.Set(Int(7))), "o.total = '7'");
  EXPECT_EQ(Text(total.Set(c.idColumn)), "o.total = c.id");
  EXPECT_EQ(Text(total.Set(total * 2 + c.idColumn)), "o.total = o.total * '2' + c.id");
}

TEST_F(Setter, AssignsNullAsAKeyword) {
  EXPECT_EQ(Text(total.Set(ASInt())), "o.total = NULL");
  EXPECT_EQ(Text(total.Set(ASTime())), "o.total = NULL");
  EXPECT_EQ(Text(total.Set(static_cast<char const*>(nullptr))), "o.total = NULL");
}

TEST_F(Setter, AssignsNothingFromAnEmptyExpression) { EXPECT_EQ(Text(total.Set(ASExpression())), "o.total = "); }

class SetterOfNoNumber : public Setter {
 protected:
  std::string Refusal(ASExpression const& expression) const {
    try {
      return Text(total.Set(expression));
    } catch (AException const& error) {
      return error.what();
    }
  }

  double const infinity = std::numeric_limits<double>::infinity();
  char const* const refused = "Value has no SQL form, it is not a finite number: total. ";
};

// Servers in a lenient mode would store 0.
TEST_F(SetterOfNoNumber, Throws) {
  EXPECT_EQ(Refusal(std::nan("")), refused);
  EXPECT_EQ(Refusal(infinity), refused);
  EXPECT_EQ(Refusal(-infinity), refused);
  EXPECT_EQ(Refusal(std::numeric_limits<float>::infinity()), refused);
}

TEST_F(SetterOfNoNumber, ThrowsForAValue) {
  ASDouble number;
  number = infinity;
  EXPECT_EQ(Refusal(number), refused);
  ASDCurrency amount;
  amount = -infinity;
  EXPECT_EQ(Refusal(amount), refused);
}

TEST_F(SetterOfNoNumber, ThrowsWhereverItStandsInTheExpression) {
  EXPECT_EQ(Refusal(total + infinity), refused);
  EXPECT_EQ(Refusal(ASExpression(infinity) + total), refused);
  EXPECT_EQ(Refusal((total + infinity) * 2 - 1), refused);
  EXPECT_EQ(Refusal(ASExpression(1) / (total + infinity)), refused);
  ASExpression copy;
  copy = total * infinity;
  EXPECT_EQ(Refusal(ASExpression(copy)), refused);
}

TEST_F(SetterOfNoNumber, TakesTheTextOfOne) { EXPECT_EQ(Refusal("nan"), "o.total = 'nan'"); }

TEST_F(SetterOfNoNumber, TakesNullAndTheLargestNumber) {
  EXPECT_EQ(Refusal(ASDouble()), "o.total = NULL");
  EXPECT_EQ(Refusal(1e300), "o.total = '1e+300'");
}

TEST_F(Setter, NamesTheTableOfItsColumn) {
  ASExpression const expression(c.idColumn);
  EXPECT_EQ(total.Set(expression).UpdateQuery(), "orders");
}

TEST_F(Setter, NamesTheTableAsItIsStored) {
  Cities t;
  ASExpression const expression(7);
  EXPECT_EQ(t.idColumn.Set(expression).UpdateQuery(), "shop.cities");
}

TEST_F(Setter, WithoutRecordNamesNoTable) {
  ASAttribute const free("free");
  ASExpression const expression(7);
  EXPECT_EQ(free.Set(expression).Query(), "free = '7'");
  EXPECT_EQ(free.Set(expression).UpdateQuery().IsNull(), 1);
}

TEST_F(Setter, PointsAtTheCallersExpression) {
  ASExpression expression(7);
  ASSetter const setter = total.Set(expression);
  expression = ASExpression(8);
  EXPECT_EQ(Text(setter), "o.total = '8'");
}

TEST_F(Setter, IsMadeFromColumnAndExpressionToo) {
  ASExpression expression(7);
  ASSetter const setter(&total, &expression);
  EXPECT_EQ(Text(setter), "o.total = '7'");
  EXPECT_EQ(setter.UpdateQuery(), "orders");
}

TEST_F(Setter, CopiesShareColumnAndExpression) {
  ASExpression expression(7);
  ASSetter const setter = total.Set(expression);
  ASSetter const copy(setter);
  expression = ASExpression(8);
  EXPECT_EQ(Text(copy), "o.total = '8'");
}

TEST_F(Setter, DoesNotLookAtTheMarkOfAnOuterJoin) {
  ASAttribute const marked = ++total;
  ASExpression const expression(7);
  EXPECT_EQ(Text(marked.Set(expression)), "o.total = '7'");
  EXPECT_EQ(marked.Set(expression).UpdateQuery(), "orders");
}

}  // namespace
