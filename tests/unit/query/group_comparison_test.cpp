#include "corvane/query/group_comparison.h"

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>
#include <type_traits>
#include <utility>

#include "tests/support/sql.h"

using corvane::test::Cities;
using corvane::test::Customers;
using corvane::test::Orders;
using corvane::test::Sql;

namespace {

using Domains = std::set<ASDomain*>;

class GroupComparison : public testing::Test {
 protected:
  Orders o;
  Customers c;
  Cities t;
  ASGroupComparison const empty{"", nullptr, nullptr};
};

TEST_F(GroupComparison, HasTheTextAndBothRecords) {
  ASGroupComparison const condition("a>1", &o, &c);
  EXPECT_EQ(condition.Query(), "a>1");
  EXPECT_EQ(condition.Domains(), (Domains{&o, &c}));
}

TEST_F(GroupComparison, TakesNoHoldOfTheText) {
  Str text("a>1");
  ASGroupComparison const condition(text, &o, nullptr);
  text << "0";
  EXPECT_EQ(condition.Query(), "a>1");
}

TEST_F(GroupComparison, NamesARecordOnce) { EXPECT_EQ(ASGroupComparison("a>1", &o, &o).Domains(), (Domains{&o})); }

TEST_F(GroupComparison, LeavesNullRecordsOut) {
  EXPECT_EQ(ASGroupComparison("a>1", nullptr, &c).Domains(), (Domains{&c}));
  EXPECT_EQ(ASGroupComparison("a>1", &o, nullptr).Domains(), (Domains{&o}));
  EXPECT_EQ(ASGroupComparison("a>1", nullptr, nullptr).Domains(), Domains{});
}

TEST_F(GroupComparison, AndPutsBothInParentheses) {
  EXPECT_EQ((ASGroupComparison("a", &o, nullptr) && ASGroupComparison("b", &c, nullptr)).Query(), "(a) AND (b)");
}

TEST_F(GroupComparison, OrPutsBothInParentheses) {
  EXPECT_EQ((ASGroupComparison("a", &o, nullptr) || ASGroupComparison("b", &c, nullptr)).Query(), "(a) OR (b)");
}

TEST_F(GroupComparison, OrOfTwoAggregatesNamesBothRecords) {
  std::unique_ptr<ASGroupAttribute> const sum(o.totalColumn.Sum());
  std::unique_ptr<ASGroupAttribute> const count(c.idColumn.Count());
  ASGroupComparison const both = (*sum > 3) || (*count < 1);
  EXPECT_EQ(Sql(both, {{&o, "o"}, {&c, "c"}}), "(SUM(o.total)>3) OR (COUNT(c.id)<1)");
  EXPECT_EQ(both.Domains(), (Domains{&o, &c}));
}

TEST_F(GroupComparison, NestsFromTheLeft) {
  ASGroupComparison const a("a", &o, nullptr);
  ASGroupComparison const b("b", &c, nullptr);
  ASGroupComparison const d("d", &t, nullptr);
  EXPECT_EQ(((ASGroupComparison(a) && b) && d).Query(), "((a) AND (b)) AND (d)");
  EXPECT_EQ(((ASGroupComparison(a) && b) || d).Query(), "((a) AND (b)) OR (d)");
  EXPECT_EQ((ASGroupComparison(a) && (ASGroupComparison(b) || d)).Query(), "(a) AND ((b) OR (d))");
}

TEST_F(GroupComparison, AnEmptySideLeavesTheTextToTheOther) {
  ASGroupComparison const a("a", &o, nullptr);
  struct Row {
    ASGroupComparison combined;
    char const* text;
  };
  Row const rows[] = {
      {ASGroupComparison(a) && empty, "a"},    {ASGroupComparison(a) || empty, "a"},
      {ASGroupComparison(empty) && a, "a"},    {ASGroupComparison(empty) || a, "a"},
      {ASGroupComparison(empty) && empty, ""}, {ASGroupComparison(empty) || empty, ""},
  };
  for (Row const& row : rows) EXPECT_EQ(row.combined.Query(), row.text);
}

TEST_F(GroupComparison, AndAddsTheOthersRecords) {
  ASGroupComparison combined("a", &o, &c);
  combined&& ASGroupComparison("b", &c, &t);
  EXPECT_EQ(combined.Domains(), (Domains{&o, &c, &t}));
}

TEST_F(GroupComparison, OrAddsTheOthersRecords) {
  ASGroupComparison combined("a", &o, &c);
  combined || ASGroupComparison("b", &c, &t);
  EXPECT_EQ(combined.Domains(), (Domains{&o, &c, &t}));
}

TEST_F(GroupComparison, AddsTheRecordsOfAnEmptyTextAsWell) {
  ASGroupComparison combined("a", &o, nullptr);
  combined&& ASGroupComparison("", &c, nullptr);
  EXPECT_EQ(combined.Domains(), (Domains{&o, &c}));
}

TEST_F(GroupComparison, CombiningChangesTheLeftSideAndReturnsIt) {
  ASGroupComparison left("a", &o, nullptr);
  ASGroupComparison const right("b", &c, nullptr);
  EXPECT_EQ(&(left && right), &left);
  EXPECT_EQ(left.Query(), "(a) AND (b)");
  EXPECT_EQ(&(left || right), &left);
  EXPECT_EQ(left.Query(), "((a) AND (b)) OR (b)");
}

TEST_F(GroupComparison, CombiningLeavesTheRightSideAsItIs) {
  ASGroupComparison left("a", &o, nullptr);
  ASGroupComparison const right("b", &c, nullptr);
  left&& right;
  left || right;
  EXPECT_EQ(right.Query(), "b");
  EXPECT_EQ(right.Domains(), (Domains{&c}));
}

TEST_F(GroupComparison, CombiningATemporaryGivesAValue) {
  static_assert(std::is_same_v<decltype(std::declval<ASGroupComparison>() && std::declval<ASGroupComparison>()),
                               ASGroupComparison>);
  static_assert(std::is_same_v<decltype(std::declval<ASGroupComparison>() || std::declval<ASGroupComparison>()),
                               ASGroupComparison>);
  ASGroupComparison const& held = ASGroupComparison("a", &o, nullptr) && ASGroupComparison("b", &c, nullptr);
  ASGroupComparison const& other = ASGroupComparison("d", &o, nullptr) || ASGroupComparison("e", &c, nullptr);
  EXPECT_EQ(held.Query(), "(a) AND (b)");
  EXPECT_EQ(held.Domains(), (Domains{&o, &c}));
  EXPECT_EQ(other.Query(), "(d) OR (e)");
  EXPECT_EQ(other.Domains(), (Domains{&o, &c}));
}

TEST_F(GroupComparison, CombiningAConstantLeavesItAlone) {
  ASGroupComparison const left("a", &o, nullptr);
  EXPECT_EQ((left && ASGroupComparison("b", &c, nullptr)).Query(), "(a) AND (b)");
  EXPECT_EQ((left || ASGroupComparison("b", &c, nullptr)).Query(), "(a) OR (b)");
  EXPECT_EQ((left || ASGroupComparison("b", &c, nullptr)).Domains(), (Domains{&o, &c}));
  EXPECT_EQ(left.Query(), "a");
  EXPECT_EQ(left.Domains(), (Domains{&o}));
}

TEST_F(GroupComparison, CombinesWithItself) {
  ASGroupComparison both("a", &o, nullptr);
  both&& both;
  EXPECT_EQ(both.Query(), "(a) AND (a)");
  ASGroupComparison either("a", &o, nullptr);
  either || either;
  EXPECT_EQ(either.Query(), "(a) OR (a)");
  EXPECT_EQ(either.Domains(), (Domains{&o}));
}

TEST_F(GroupComparison, CopyStandsOnItsOwn) {
  ASGroupComparison original("a", &o, nullptr);
  ASGroupComparison const copy(original);
  original&& ASGroupComparison("b", &c, nullptr);
  EXPECT_EQ(copy.Query(), "a");
  EXPECT_EQ(copy.Domains(), (Domains{&o}));
}

TEST_F(GroupComparison, AssignmentReplacesTextAndRecords) {
  ASGroupComparison target("a", &o, nullptr);
  target = ASGroupComparison("b", &c, nullptr);
  EXPECT_EQ(target.Query(), "b");
  EXPECT_EQ(target.Domains(), (Domains{&c}));
}

}  // namespace
