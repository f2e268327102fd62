#include "corvane/query/order.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <type_traits>
#include <utility>

#include "tests/support/sql.h"

using corvane::test::Customers;
using corvane::test::Orders;
using corvane::test::Sql;

namespace {

class Order : public testing::Test {
 protected:
  std::string Text(ASOrder const& order) const { return Sql(order, {{&o, "o"}, {&c, "c"}}); }

  Orders o;
  Customers c;
  std::unique_ptr<ASGroupAttribute> const sum{o.totalColumn.Sum()};
};

TEST_F(Order, StartsEmpty) { EXPECT_EQ(ASOrder().Query(), ""); }

TEST_F(Order, TakesTheTextAsItStands) { EXPECT_EQ(ASOrder("1 DESC, note").Query(), "1 DESC, note"); }

TEST_F(Order, IsMadeFromATextOnPurposeOnly) { EXPECT_FALSE((std::is_convertible_v<Str, ASOrder>)); }

TEST_F(Order, AppendingToAnEmptyOneWritesNoComma) {
  ASOrder order;
  order << "a";
  EXPECT_EQ(order.Query(), "a");
}

TEST_F(Order, AppendingToAnEmptyTextWritesNoComma) {
  ASOrder order("");
  order << "a";
  EXPECT_EQ(order.Query(), "a");
}

TEST_F(Order, AppendingSeparatesByACommaAndABlank) {
  ASOrder order("a");
  order << "b" << Str("c DESC");
  EXPECT_EQ(order.Query(), "a, b, c DESC");
}

TEST_F(Order, AppendingAnEmptyTextWritesTheCommaAllTheSame) {
  ASOrder order("a");
  order << "";
  EXPECT_EQ(order.Query(), "a, ");
}

TEST_F(Order, AppendingReturnsTheOrder) {
  ASOrder order;
  EXPECT_EQ(&(order << "a"), &order);
}

TEST_F(Order, AppendingItsOwnTextRepeatsIt) {
  ASOrder order("a");
  order << order.Query();
  EXPECT_EQ(order.Query(), "a, a");
}

TEST_F(Order, KeepsNoHoldOfTheText) {
  Str text("a");
  ASOrder order(text);
  order << text;
  text << "b";
  EXPECT_EQ(order.Query(), "a, a");
}

TEST_F(Order, TakesOverATextThatIsMoved) {
  Str text("a text long enough to have a block of its own, DESC");
  ASOrder order(std::move(text));
  text = "b";
  order << text;
  EXPECT_EQ(order.Query(), "a text long enough to have a block of its own, DESC, b");
}

TEST_F(Order, TakesATextThatIsNull) {
  ASOrder order{Str()};
  EXPECT_EQ(order.Query(), "");
  order << "a";
  EXPECT_EQ(order.Query(), "a");
}

TEST_F(Order, LeavesTheTextOfAColumnThatIsMoved) {
  ASVStr column(8);
  column = "1 DESC";
  ASOrder const order(std::move(static_cast<Str&>(column)));
  EXPECT_EQ(order.Query(), "1 DESC");
  EXPECT_STREQ(column.str(), "1 DESC");
}

TEST_F(Order, ContinuesALongTextWhole) {
  std::string const text(3000, 'x');
  EXPECT_EQ(Text(ASOrder(Str(text)) - o.idColumn), text + ", o.id DESC");
}

TEST_F(Order, ContinuesItself) {
  ASOrder order("a");
  order = order - o.idColumn;
  order = order + o.idColumn;
  EXPECT_EQ(Text(order), "a, o.id DESC, o.id ASC");
}

TEST_F(Order, ContinuingLeavesTheOrderAsItWas) {
  ASOrder const order = -o.idColumn;
  EXPECT_EQ(Text(order + o.noteColumn), "o.id DESC, o.note ASC");
  EXPECT_EQ(Text(order - o.noteColumn), "o.id DESC, o.note DESC");
  EXPECT_EQ(Text(order), "o.id DESC");
}

TEST_F(Order, ContinuesAnOrderThatIsMoved) {
  ASOrder order = -o.idColumn;
  EXPECT_EQ(Text(std::move(order) + o.noteColumn - c.nameColumn), "o.id DESC, o.note ASC, c.name DESC");
}

TEST_F(Order, CopyStandsOnItsOwn) {
  ASOrder original("a");
  ASOrder const copy(original);
  original << "b";
  EXPECT_EQ(copy.Query(), "a");
}

TEST_F(Order, AssignmentReplacesTheText) {
  ASOrder order("a");
  order = ASOrder("b");
  EXPECT_EQ(order.Query(), "b");
}

TEST_F(Order, AssigningItToItselfChangesNothing) {
  ASOrder order("a");
  ASOrder const& same = order;
  order = same;
  EXPECT_EQ(order.Query(), "a");
}

TEST_F(Order, AColumnWithAMinusDescends) { EXPECT_EQ(Text(-o.idColumn), "o.id DESC"); }

TEST_F(Order, ADerivedColumnWithAMinusDescends) { EXPECT_EQ(Text(-o.noteColumn.Upper()), " UPPER(o.note) DESC"); }

TEST_F(Order, AnAggregateWithAMinusDescends) { EXPECT_EQ(Text(-*sum), "SUM(o.total) DESC"); }

TEST_F(Order, ColumnsContinueIt) {
  EXPECT_EQ(Text(-o.idColumn - c.nameColumn), "o.id DESC, c.name DESC");
  EXPECT_EQ(Text(-o.idColumn + c.nameColumn), "o.id DESC, c.name ASC");
  EXPECT_EQ(Text(-o.idColumn + c.nameColumn - o.totalColumn + o.noteColumn),
            "o.id DESC, c.name ASC, o.total DESC, o.note ASC");
}

TEST_F(Order, ColumnsContinueATextAsItStands) {
  EXPECT_EQ(Text(ASOrder(o.idColumn.Query()) - c.nameColumn), "o.id, c.name DESC");
  EXPECT_EQ(Text(ASOrder("1") + c.nameColumn), "1, c.name ASC");
}

TEST_F(Order, ColumnsContinueAnAggregate) {
  EXPECT_EQ(Text(-*sum - o.idColumn), "SUM(o.total) DESC, o.id DESC");
  EXPECT_EQ(Text(-*sum + o.idColumn), "SUM(o.total) DESC, o.id ASC");
}

TEST_F(Order, ContinuingAnEmptyOrderWritesTheCommaAllTheSame) {
  EXPECT_EQ(Text(ASOrder() + o.idColumn), ", o.id ASC");
  EXPECT_EQ(Text(ASOrder() - o.idColumn), ", o.id DESC");
}

TEST_F(Order, ContinuingByAColumnMakesANewOne) {
  ASOrder const order = -o.idColumn;
  EXPECT_EQ(Text(order - c.nameColumn), "o.id DESC, c.name DESC");
  EXPECT_EQ(Text(order + c.nameColumn), "o.id DESC, c.name ASC");
  EXPECT_EQ(Text(order), "o.id DESC");
}

TEST_F(Order, AggregatesAreAppendedToTheOrderItself) {
  ASOrder order("1");
  ASOrder& descending = order - *sum;
  EXPECT_EQ(&descending, &order);
  EXPECT_EQ(Text(order), "1, SUM(o.total) DESC");
  ASOrder& ascending = order + *sum;
  EXPECT_EQ(&ascending, &order);
  EXPECT_EQ(Text(order), "1, SUM(o.total) DESC, SUM(o.total) ASC");
}

TEST_F(Order, AggregatesBeginAnEmptyOneWithoutAComma) {
  ASOrder descending;
  descending - *sum;
  EXPECT_EQ(Text(descending), "SUM(o.total) DESC");
  ASOrder ascending;
  ascending + *sum;
  EXPECT_EQ(Text(ascending), "SUM(o.total) ASC");
}

TEST_F(Order, AggregatesAreAppendedInAChain) {
  std::unique_ptr<ASGroupAttribute> const count(c.idColumn.Count());
  ASOrder order = -o.idColumn;
  order - *sum + *count;
  EXPECT_EQ(Text(order), "o.id DESC, SUM(o.total) DESC, COUNT(c.id) ASC");
}

}  // namespace
