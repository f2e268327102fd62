#include "corvane/query/comparison.h"

#include <gtest/gtest.h>

#include <list>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "corvane/corvane.h"
#include "tests/support/sql.h"

using corvane::test::Cities;
using corvane::test::Customers;
using corvane::test::Described;
using corvane::test::Orders;
using corvane::test::Sql;

namespace {

class Comparison : public testing::Test {
 protected:
  std::string All(ASComparison const& condition) const {
    return Described(condition, {{&o, "o"}, {&c, "c"}, {&t, "t"}});
  }

  Orders o;
  Customers c;
  Cities t;
  ASAttribute& total = o.totalColumn;
  ASAttribute& customer = o.customerColumn;
  ASComparison const empty{"", nullptr, nullptr};
};

// ---- Construction ----

TEST_F(Comparison, NamesTheRecordsThatItIsGiven) { EXPECT_EQ(All(ASComparison("text", &o, &c)), "[text] o c"); }

TEST_F(Comparison, NamesNoRecordForANullPointer) {
  EXPECT_EQ(All(ASComparison("text", nullptr, nullptr)), "[text]");
  EXPECT_EQ(All(ASComparison("text", &o, nullptr)), "[text] o");
  EXPECT_EQ(All(ASComparison("text", nullptr, &c)), "[text] c");
}

TEST_F(Comparison, NamesARecordOnce) { EXPECT_EQ(All(ASComparison("text", &o, &o)), "[text] o"); }

TEST_F(Comparison, StartsWithoutJoins) {
  ASComparison const condition("text", &o, &c);
  EXPECT_TRUE(condition.JoinPairs().empty());
  EXPECT_TRUE(condition.JoinConditions().empty());
}

TEST_F(Comparison, CopiesItsText) {
  Str text("text");
  ASComparison const condition(text, nullptr, nullptr);
  text << " changed";
  EXPECT_EQ(condition.Query(), "text");
}

TEST_F(Comparison, HandsOutACopyOfItsText) {
  ASComparison const condition("text", nullptr, nullptr);
  condition.Query() << " changed";
  EXPECT_EQ(condition.Query(), "text");
}

TEST_F(Comparison, AnOuterJoinHasNoTextAndNamesNoRecord) {
  EXPECT_EQ(All(ASComparison::OuterJoin("on", &o, &c)), "[] (o) LEFT JOIN c ON [on]");
  EXPECT_EQ(All(ASComparison::OuterJoin("on", nullptr, &c)), "[] (null) LEFT JOIN c ON [on]");
}

// ---- AND ----

TEST_F(Comparison, AndPutsBothSidesInParentheses) {
  EXPECT_EQ(All(total > 1 && total < 9), "[(o.total>1) AND (o.total<9)] o");
}

TEST_F(Comparison, AndAppendsTheRecordsThatAreNotNamedYet) {
  EXPECT_EQ(All(total == 1 && c.idColumn == 2), "[(o.total=1) AND (c.id=2)] o c");
  EXPECT_EQ(All(ASComparison("x", &o, nullptr) && ASComparison("y", &c, &o)), "[(x) AND (y)] o c");
  EXPECT_EQ(All(ASComparison("x", &c, nullptr) && ASComparison("y", &t, &o)), "[(x) AND (y)] c t o");
  EXPECT_EQ(All(ASComparison("x", &o, &c) && ASComparison("y", &c, &o)), "[(x) AND (y)] o c");
}

TEST_F(Comparison, AndAppendsTheJoinsOfTheRightSide) {
  EXPECT_EQ(All(total > 1 && ++c.idColumn == customer), "[o.total>1] o (o) LEFT JOIN c ON [c.id=(o.customer_id)]");
}

TEST_F(Comparison, AndKeepsTheJoinsOfTheLeftSide) {
  EXPECT_EQ(All((++c.idColumn == customer) && total > 1), "[o.total>1] o (o) LEFT JOIN c ON [c.id=(o.customer_id)]");
}

TEST_F(Comparison, AndLinesUpTheJoinsOfBothSides) {
  EXPECT_EQ(All((++c.idColumn == customer) && (++t.idColumn == c.idColumn)),
            "[] (o) LEFT JOIN c ON [c.id=(o.customer_id)] (c) LEFT JOIN t ON [t.id=(c.id)]");
}

TEST_F(Comparison, AndDoesNotLookForDuplicatesAmongJoins) {
  EXPECT_EQ(All((++c.idColumn == customer) && (++c.idColumn == customer)),
            "[] (o) LEFT JOIN c ON [c.id=(o.customer_id)] (o) LEFT JOIN c ON [c.id=(o.customer_id)]");
}

TEST_F(Comparison, AndLeavesTheRightSideAsItWas) {
  ASComparison const right = ASComparison("y", &c, nullptr) && ASComparison::OuterJoin("on", &o, &t);
  ASComparison left("x", &o, nullptr);
  left&& right;
  EXPECT_EQ(All(right), "[y] c (o) LEFT JOIN t ON [on]");
}

// ---- OR ----

TEST_F(Comparison, OrPutsBothSidesInParentheses) {
  EXPECT_EQ(All(total < 1 || total > 9), "[(o.total<1) OR (o.total>9)] o");
}

TEST_F(Comparison, OrAppendsTheRecordsThatAreNotNamedYet) {
  EXPECT_EQ(All(total == 1 || c.idColumn == 2), "[(o.total=1) OR (c.id=2)] o c");
  EXPECT_EQ(All(ASComparison("x", &c, nullptr) || ASComparison("y", &t, &o)), "[(x) OR (y)] c t o");
  EXPECT_EQ(All(ASComparison("x", &o, &c) || ASComparison("y", &c, &o)), "[(x) OR (y)] o c");
}

TEST_F(Comparison, OrDropsTheOuterJoinsOfItsRightSide) {
  EXPECT_EQ(All(total > 1 || ++c.idColumn == customer), "[o.total>1] o");
}

TEST_F(Comparison, OrDropsTheJoinsButKeepsTextAndRecordsOfItsRightSide) {
  ASComparison const right = ASComparison("y", &c, nullptr) && ASComparison::OuterJoin("on", &o, &t);
  EXPECT_EQ(All(ASComparison("x", &o, nullptr) || right), "[(x) OR (y)] o c");
}

TEST_F(Comparison, OrKeepsTheJoinsOfItsLeftSide) {
  EXPECT_EQ(All((++c.idColumn == customer) || total > 1), "[o.total>1] o (o) LEFT JOIN c ON [c.id=(o.customer_id)]");
}

// ---- NOT ----

TEST_F(Comparison, NotNamesNoRecordsAndHasNoJoins) {
  EXPECT_EQ(All(!(total == 3)), "[ NOT (o.total=3) ]");
  EXPECT_EQ(All(!((++c.idColumn == customer) && total == 3)), "[ NOT (o.total=3) ]");
}

TEST_F(Comparison, NotLeavesTheOriginalAsItWas) {
  ASComparison const condition = total == 3 && ++c.idColumn == customer;
  static_cast<void>(!condition);
  EXPECT_EQ(All(condition), "[o.total=3] o (o) LEFT JOIN c ON [c.id=(o.customer_id)]");
}

TEST_F(Comparison, NotTwice) { EXPECT_EQ(All(!!(total == 3)), "[ NOT ( NOT (o.total=3) ) ]"); }

TEST_F(Comparison, NotOfACombinationAddsItsOwnParentheses) {
  EXPECT_EQ(All(!(total > 1 && total < 9)), "[ NOT ((o.total>1) AND (o.total<9)) ]");
}

TEST_F(Comparison, ANegationBesideAConditionThatNamesTheRecord) {
  EXPECT_EQ(All(total.IsNotNull() && !(total == 3)), "[(o.total IS NOT NULL) AND ( NOT (o.total=3) )] o");
  EXPECT_EQ(All(!(total == 3) && total.IsNotNull()), "[( NOT (o.total=3) ) AND (o.total IS NOT NULL)] o");
}

// ---- Nesting ----

TEST_F(Comparison, NestingToTheLeft) {
  EXPECT_EQ(All((total == 1 && total == 2) && total == 3), "[((o.total=1) AND (o.total=2)) AND (o.total=3)] o");
}

TEST_F(Comparison, NestingToTheRight) {
  EXPECT_EQ(All(total == 1 && (total == 2 && total == 3)), "[(o.total=1) AND ((o.total=2) AND (o.total=3))] o");
}

TEST_F(Comparison, AndAndOrMixed) {
  EXPECT_EQ(All((total == 1 && total == 2) || total == 3), "[((o.total=1) AND (o.total=2)) OR (o.total=3)] o");
  EXPECT_EQ(All(total == 1 && (total == 2 || total == 3)), "[(o.total=1) AND ((o.total=2) OR (o.total=3))] o");
}

TEST_F(Comparison, RecordsKeepTheOrderOfTheirFirstAppearance) {
  EXPECT_EQ(All(t.idColumn == 1 && (c.idColumn == customer || t.idColumn == customer)),
            "[(t.id=1) AND ((c.id=(o.customer_id)) OR (t.id=(o.customer_id)))] t c o");
}

// ---- Empty conditions ----

TEST_F(Comparison, NamesAnyNumberOfRecordsInOrder) {
  std::vector<std::unique_ptr<Orders>> records;
  std::vector<ASDomain*> expected;
  ASComparison all = empty;
  for (int i = 0; i < 12; ++i) {
    records.push_back(std::make_unique<Orders>());
    expected.push_back(records.back().get());
    all&& records.back()->idColumn == i;
    all&& records.front()->idColumn == i;
    EXPECT_EQ(std::vector<ASDomain*>(all.Domains().begin(), all.Domains().end()), expected);
  }
  ASComparison const copy = all;
  ASComparison assigned = total == 1;
  assigned = copy;
  ASComparison const moved = std::move(all);
  EXPECT_EQ(std::vector<ASDomain*>(copy.Domains().begin(), copy.Domains().end()), expected);
  EXPECT_EQ(std::vector<ASDomain*>(assigned.Domains().begin(), assigned.Domains().end()), expected);
  EXPECT_EQ(std::vector<ASDomain*>(moved.Domains().begin(), moved.Domains().end()), expected);
}

TEST_F(Comparison, TheListOfItsRecordsStaysWhereItIs) {
  ASComparison condition = total == 1;
  std::list<ASDomain*> const& records = condition.Domains();
  EXPECT_EQ(records, std::list<ASDomain*>{&o});
  condition&& c.idColumn == t.idColumn;
  EXPECT_EQ(records, (std::list<ASDomain*>{&o, &c, &t}));
  condition = ASComparison("text", &t, nullptr);
  EXPECT_EQ(records, std::list<ASDomain*>{&t});
  EXPECT_EQ(&condition.Domains(), &records);
}

TEST_F(Comparison, AMovedFromOneNamesNoRecord) {
  ASComparison condition = total == 1;
  condition.Domains();
  ASComparison const moved = std::move(condition);
  EXPECT_EQ(moved.Domains().size(), 1U);
  EXPECT_TRUE(condition.Domains().empty());  // NOLINT(bugprone-use-after-move)
}

TEST_F(Comparison, AnEmptySideLeavesTheTextToTheOther) {
  EXPECT_EQ(All(ASComparison(empty) && total == 3), "[o.total=3] o");
  EXPECT_EQ(All(ASComparison(empty) || total == 3), "[o.total=3] o");
  EXPECT_EQ(All(total == 3 && empty), "[o.total=3] o");
  EXPECT_EQ(All(total == 3 || empty), "[o.total=3] o");
}

TEST_F(Comparison, TwoEmptySidesStayEmpty) {
  EXPECT_EQ(All(ASComparison(empty) && empty), "[]");
  EXPECT_EQ(All(ASComparison(empty) || empty), "[]");
}

TEST_F(Comparison, ANullTextIsAnEmptyOne) {
  ASComparison const null(Str(), nullptr, nullptr);
  EXPECT_EQ(All(ASComparison(null) && total == 3), "[o.total=3] o");
  EXPECT_EQ(All(total == 3 || null), "[o.total=3] o");
}

TEST_F(Comparison, AnEmptySideStillNamesItsRecords) {
  ASComparison const named("", &c, nullptr);
  EXPECT_EQ(All(total == 3 && named), "[o.total=3] o c");
  EXPECT_EQ(All(total == 3 || named), "[o.total=3] o c");
  EXPECT_EQ(All(ASComparison(named) && total == 3), "[o.total=3] c o");
}

TEST_F(Comparison, AnEmptyConditionStartsAChain) {
  ASComparison all(empty);
  all&& total > 1;
  all&& total < 9;
  all&& total != 5;
  EXPECT_EQ(All(all), "[((o.total>1) AND (o.total<9)) AND (o.total<>5)] o");
}

// ---- What is changed and what is returned ----

TEST_F(Comparison, AndChangesANamedConditionAndReturnsIt) {
  ASComparison left = total > 1;
  ASComparison const& result = left && total < 9;
  EXPECT_EQ(&result, &left);
  EXPECT_EQ(All(left), "[(o.total>1) AND (o.total<9)] o");
}

TEST_F(Comparison, OrChangesANamedConditionAndReturnsIt) {
  ASComparison left = total < 1;
  ASComparison const& result = left || total > 9;
  EXPECT_EQ(&result, &left);
  EXPECT_EQ(All(left), "[(o.total<1) OR (o.total>9)] o");
}

TEST_F(Comparison, ANamedConditionIsChangedEachTimeItIsCombined) {
  ASComparison left = total == 1;
  static_cast<void>(left && total == 2);
  static_cast<void>(left || total == 3);
  EXPECT_EQ(All(left), "[((o.total=1) AND (o.total=2)) OR (o.total=3)] o");
}

TEST_F(Comparison, ResultsOfTemporariesAreValues) {
  static_assert(std::is_same<decltype(std::declval<ASComparison>() && empty), ASComparison>::value);
  static_assert(std::is_same<decltype(std::declval<ASComparison>() || empty), ASComparison>::value);
  static_assert(std::is_same<decltype(std::declval<ASComparison&>() && empty), ASComparison&>::value);
  static_assert(std::is_same<decltype(std::declval<ASComparison&>() || empty), ASComparison&>::value);
  static_assert(std::is_same<decltype(!std::declval<ASComparison const&>()), ASComparison>::value);
}

TEST_F(Comparison, AReferenceToTheResultOfTemporariesDoesNotDangle) {
  ASComparison const& both = total > 1 && total < 9;
  ASComparison const& either = total < 1 || total > 9;
  ASComparison const& chain = total > 1 && total < 9 && ++c.idColumn == customer;
  EXPECT_EQ(All(both), "[(o.total>1) AND (o.total<9)] o");
  EXPECT_EQ(All(either), "[(o.total<1) OR (o.total>9)] o");
  EXPECT_EQ(All(chain), "[(o.total>1) AND (o.total<9)] o (o) LEFT JOIN c ON [c.id=(o.customer_id)]");
}

TEST_F(Comparison, CombinesWithItself) {
  ASComparison both = total == 1 && ++c.idColumn == customer;
  both&& both;
  EXPECT_EQ(All(both),
            "[(o.total=1) AND (o.total=1)] o (o) LEFT JOIN c ON [c.id=(o.customer_id)] (o) LEFT JOIN c ON "
            "[c.id=(o.customer_id)]");
  ASComparison either = total == 1 && ++c.idColumn == customer;
  either || either;
  EXPECT_EQ(All(either), "[(o.total=1) OR (o.total=1)] o (o) LEFT JOIN c ON [c.id=(o.customer_id)]");
}

TEST_F(Comparison, AnEmptyOneCombinedWithItselfStaysEmpty) {
  ASComparison condition(empty);
  condition&& condition;
  condition || condition;
  EXPECT_EQ(All(condition), "[]");
}

// ---- Copies and assignment ----

TEST_F(Comparison, CombinesWithItselfAgainAndAgain) {
  ASComparison condition = total == 1;
  condition&& condition;
  condition || condition;
  EXPECT_EQ(All(condition), "[((o.total=1) AND (o.total=1)) OR ((o.total=1) AND (o.total=1))] o");
}

TEST_F(Comparison, CombinesWithItselfWhereItsTextIsLong) {
  std::string const text(3000, 'x');
  ASComparison both(Str(text), nullptr, nullptr);
  both&& both;
  EXPECT_EQ(both.Query().ToString(), "(" + text + ") AND (" + text + ")");
  ASComparison either(Str(text), nullptr, nullptr);
  either || either;
  EXPECT_EQ(either.Query().ToString(), "(" + text + ") OR (" + text + ")");
}

TEST_F(Comparison, CombinesTextsOfEveryLength) {
  for (std::size_t left = 1; left < 90; ++left) {
    for (std::size_t right = 1; right < 90; right += 4) {
      std::string const a(left, 'a');
      std::string const b(right, 'b');
      ASComparison both(Str(a), nullptr, nullptr);
      both&& ASComparison(Str(b), nullptr, nullptr);
      ASSERT_EQ(both.Query().ToString(), "(" + a + ") AND (" + b + ")");
      ASComparison either(Str(a), nullptr, nullptr);
      either || ASComparison(Str(b), nullptr, nullptr);
      ASSERT_EQ(either.Query().ToString(), "(" + a + ") OR (" + b + ")");
    }
  }
}

TEST_F(Comparison, AChainToTheLeftNestsAsDeepAsItIsLong) {
  ASComparison chain = total == 0;
  std::string expected = "o.total=0";
  for (int i = 1; i <= 1000; ++i) {
    chain&& total == i;
    expected = "(" + expected + ") AND (o.total=" + std::to_string(i) + ")";
  }
  EXPECT_EQ(All(chain), "[" + expected + "] o");
}

TEST_F(Comparison, AChainOfBothWordsNestsAsDeepAsItIsLong) {
  ASComparison chain(empty);
  std::string expected = "o.total=0";
  chain || total == 0;
  for (int i = 1; i <= 500; ++i) {
    if (i % 2 == 0) {
      chain&& total == i;
    } else {
      chain || total == i;
    }
    chain&& empty;
    expected = "(" + expected + (i % 2 == 0 ? ") AND (o.total=" : ") OR (o.total=") + std::to_string(i) + ")";
  }
  EXPECT_EQ(All(chain), "[" + expected + "] o");
}

TEST_F(Comparison, AChainToTheRightNestsAsDeepAsItIsLong) {
  ASComparison chain = total == 0;
  std::string expected = "o.total=0";
  for (int i = 1; i <= 300; ++i) {
    ASComparison const before(chain);
    ASComparison next = total == i;
    next&& before;
    chain = next;
    expected = "(o.total=" + std::to_string(i) + ") AND (" + expected + ")";
  }
  EXPECT_EQ(All(chain), "[" + expected + "] o");
}

TEST_F(Comparison, LeavesTheRightSideAsItWasWhateverItsLength) {
  ASComparison const right(Str(std::string(3000, 'r')), &c, nullptr);
  ASComparison left = total == 1;
  left&& right;
  left || right;
  EXPECT_EQ(All(right), "[" + std::string(3000, 'r') + "] c");
}

TEST_F(Comparison, CombinesTextsWithNuls) {
  ASComparison left(Str("a\0b", 3), nullptr, nullptr);
  left&& ASComparison(Str("c\0d", 3), nullptr, nullptr);
  EXPECT_EQ(left.Query().ToString(), std::string("(a\0b) AND (c\0d)", 15));
}

TEST_F(Comparison, ANullSideCombinedWithItselfStaysEmpty) {
  ASComparison null(Str(), nullptr, nullptr);
  null&& null;
  null || null;
  EXPECT_EQ(All(null), "[]");
}

TEST_F(Comparison, TheCombinationWithAnEmptySideStandsOnItsOwn) {
  ASComparison right = total == 1;
  ASComparison left(empty);
  left&& right;
  right&& total == 2;
  EXPECT_EQ(All(left), "[o.total=1] o");
}

TEST_F(Comparison, ConditionsOfAggregatesCombineWithThemselves) {
  std::unique_ptr<ASGroupAttribute> const sum(total.Sum());
  ASGroupComparison both = *sum > 1;
  both&& both;
  ASGroupComparison either = *sum > 1;
  either || either;
  EXPECT_EQ(Sql(both, {{&o, "o"}}), "(SUM(o.total)>1) AND (SUM(o.total)>1)");
  EXPECT_EQ(Sql(either, {{&o, "o"}}), "(SUM(o.total)>1) OR (SUM(o.total)>1)");
}

TEST_F(Comparison, ACopyHasEverything) {
  ASComparison const original = ASComparison("text", &o, &c) && ASComparison::OuterJoin("on", &o, &t);
  ASComparison const copy(original);
  EXPECT_EQ(All(copy), "[text] o c (o) LEFT JOIN t ON [on]");
  EXPECT_EQ(All(original), "[text] o c (o) LEFT JOIN t ON [on]");
}

TEST_F(Comparison, ACopyIsIndependent) {
  auto original = std::make_unique<ASComparison>(ASComparison("text", &o, &c) && ASComparison::OuterJoin("on", &o, &t));
  ASComparison copy(*original);
  copy&& ASComparison("more", &t, nullptr);
  EXPECT_EQ(All(*original), "[text] o c (o) LEFT JOIN t ON [on]");
  original.reset();
  EXPECT_EQ(All(copy), "[(text) AND (more)] o c t (o) LEFT JOIN t ON [on]");
}

TEST_F(Comparison, AMovedOneHasEverything) {
  ASComparison original = ASComparison("text", &o, &c) && ASComparison::OuterJoin("on", &o, &t);
  ASComparison const moved(std::move(original));
  EXPECT_EQ(All(moved), "[text] o c (o) LEFT JOIN t ON [on]");
}

TEST_F(Comparison, AMovedFromOneCanBeAssigned) {
  ASComparison original = total == 1;
  ASComparison const moved(std::move(original));
  original = total == 2;
  EXPECT_EQ(All(original), "[o.total=2] o");
}

TEST_F(Comparison, AssignmentKeepsTheTargetsOuterJoins) {
  ASComparison const source = ASComparison("new", &c, nullptr) && ASComparison::OuterJoin("new on", &o, &c);
  ASComparison target = ASComparison("old", &o, nullptr) && ASComparison::OuterJoin("old on", &o, &t);
  target = source;
  EXPECT_EQ(All(target), "[new] c (o) LEFT JOIN t ON [old on]");
}

TEST_F(Comparison, CombiningAConstantLeavesItAlone) {
  ASComparison const join = ++c.idColumn == customer;
  EXPECT_EQ(All(join && total > 1), "[o.total>1] o (o) LEFT JOIN c ON [c.id=(o.customer_id)]");
  EXPECT_EQ(All(join || total > 1), "[o.total>1] o (o) LEFT JOIN c ON [c.id=(o.customer_id)]");
  EXPECT_EQ(All(join), "[] (o) LEFT JOIN c ON [c.id=(o.customer_id)]");
}

TEST_F(Comparison, AssignmentOfATemporaryKeepsTheTargetsOuterJoins) {
  ASComparison target = ASComparison("old", &o, nullptr) && ASComparison::OuterJoin("old on", &o, &t);
  target = ASComparison("new", &c, nullptr) && ASComparison::OuterJoin("new on", &o, &c);
  EXPECT_EQ(All(target), "[new] c (o) LEFT JOIN t ON [old on]");
  ASComparison source = ASComparison("newer", &o, &c) && ASComparison::OuterJoin("newer on", &o, &c);
  target = std::move(source);
  EXPECT_EQ(All(target), "[newer] o c (o) LEFT JOIN t ON [old on]");
}

TEST_F(Comparison, AssigningAnOuterJoinLosesIt) {
  ASComparison target = total == 1;
  target = ++c.idColumn == customer;
  EXPECT_EQ(All(target), "[]");
}

TEST_F(Comparison, AssignmentLeavesTheSourceAsItWas) {
  ASComparison const source = ASComparison("new", &c, nullptr) && ASComparison::OuterJoin("new on", &o, &c);
  ASComparison target(empty);
  target = source;
  EXPECT_EQ(All(source), "[new] c (o) LEFT JOIN c ON [new on]");
}

TEST_F(Comparison, AssignmentReturnsTheTarget) {
  ASComparison target(empty);
  EXPECT_EQ(&(target = total == 1), &target);
}

TEST_F(Comparison, SelfAssignmentDoesNothing) {
  ASComparison condition = ASComparison("text", &o, &c) && ASComparison::OuterJoin("on", &o, &t);
  ASComparison const& self = condition;
  condition = self;
  EXPECT_EQ(All(condition), "[text] o c (o) LEFT JOIN t ON [on]");
}

}  // namespace
