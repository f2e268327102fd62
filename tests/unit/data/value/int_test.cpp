#include "corvane/data/value/int.h"

#include <gtest/gtest.h>

#include <climits>
#include <set>
#include <string>
#include <type_traits>

#include "corvane/data/value/exception.h"

namespace {

// The largest number wraps to this one, which is NULL.
constexpr int kNullNumber = INT_MIN;

// Construction, assignment, conversion

TEST(Int, IsNullByDefault) {
  Int const value;
  EXPECT_EQ(value.IsNull(), 1);
  EXPECT_EQ(value.IsNotNull(), 0);
}

TEST(Int, HoldsANumber) {
  Int const value(42);
  EXPECT_EQ(static_cast<int>(value), 42);
  EXPECT_EQ(value.IsNull(), 0);
  EXPECT_EQ(value.IsNotNull(), 1);
}

TEST(Int, HoldsZeroAsANumber) {
  Int const value(0);
  EXPECT_EQ(value.IsNull(), 0);
}

TEST(Int, HoldsTheLargestAndTheSmallestNumber) {
  EXPECT_EQ(static_cast<int>(Int(INT_MAX)), 2147483647);
  EXPECT_EQ(static_cast<int>(Int(-2147483647)), -2147483647);
  EXPECT_EQ(Int(-2147483647).IsNull(), 0);
}

TEST(Int, ReadsTheSmallest32BitNumberBackAsNull) {
  Int const value(kNullNumber);
  EXPECT_EQ(value.IsNull(), 1);
  EXPECT_EQ(value.IsNotNull(), 0);
}

TEST(Int, StoresTheSmallest32BitNumberForNull) {
  Int value(42);
  value.SetNull();
  EXPECT_EQ(value.IsNull(), 1);
  EXPECT_EQ(static_cast<int>(value), kNullNumber);
}

TEST(Int, Copies) {
  Int original(42);
  Int const copy(original);
  original = 7;
  EXPECT_EQ(static_cast<int>(copy), 42);
}

TEST(Int, CopiesNull) {
  Int const original;
  Int const copy(original);
  EXPECT_EQ(copy.IsNull(), 1);
}

TEST(Int, AssignsItsOwnType) {
  Int const source(42);
  Int value(7);
  value = source;
  EXPECT_EQ(static_cast<int>(value), 42);
}

TEST(Int, BecomesNullByAssigningNull) {
  Int const null;
  Int value(7);
  value = null;
  EXPECT_EQ(value.IsNull(), 1);
}

TEST(Int, SurvivesSelfAssignment) {
  Int value(42);
  Int const& same = value;
  value = same;
  EXPECT_EQ(static_cast<int>(value), 42);
}

TEST(Int, AssignsAScalar) {
  Int value;
  value = 42;
  EXPECT_EQ(static_cast<int>(value), 42);
}

TEST(Int, BecomesNullByAssigningTheSmallest32BitNumber) {
  Int value(42);
  value = kNullNumber;
  EXPECT_EQ(value.IsNull(), 1);
}

TEST(Int, AssignsIntegersOfOtherTypesThatFit) {
  Int value;
  value = 2147483647L;
  EXPECT_EQ(static_cast<int>(value), 2147483647);
  value = -2147483647LL;
  EXPECT_EQ(static_cast<int>(value), -2147483647);
  value = 5U;
  EXPECT_EQ(static_cast<int>(value), 5);
  value = 6UL;
  EXPECT_EQ(static_cast<int>(value), 6);
  value = 7ULL;
  EXPECT_EQ(static_cast<int>(value), 7);
  value = short{-8};
  EXPECT_EQ(static_cast<int>(value), -8);
}

TEST(Int, RefusesIntegersThatDoNotFit) {
  Int value(42);
  EXPECT_THROW(value = 2147483648L, AException);
  EXPECT_THROW(value = -2147483649L, AException);
  EXPECT_THROW(value = 4294967295U, AException);
  EXPECT_THROW(value = ULLONG_MAX, AException);
  EXPECT_EQ(static_cast<int>(value), 42);
}

TEST(Int, NamesItselfWhenItRefusesAnInteger) {
  Int value;
  try {
    value = 5000000000L;
    FAIL() << "nothing thrown";
  } catch (AException const& exception) {
    EXPECT_STREQ(exception.what(), "Number is out of range for Int. ");
  }
}

TEST(Int, ReturnsItselfFromAssignment) {
  Int const other(1);
  Int value;
  EXPECT_EQ(&(value = other), &value);
  EXPECT_EQ(&(value = 2), &value);
  EXPECT_EQ(&(value = 3L), &value);
}

// Arithmetic

TEST(Int, Adds) {
  EXPECT_EQ(static_cast<int>(Int(40) + Int(2)), 42);
  EXPECT_EQ(static_cast<int>(Int(40) + 2), 42);
}

TEST(Int, Subtracts) {
  EXPECT_EQ(static_cast<int>(Int(40) - Int(2)), 38);
  EXPECT_EQ(static_cast<int>(Int(40) - 2), 38);
}

TEST(Int, Multiplies) {
  EXPECT_EQ(static_cast<int>(Int(-6) * Int(7)), -42);
  EXPECT_EQ(static_cast<int>(Int(-6) * 7), -42);
}

TEST(Int, DividesTowardZero) {
  EXPECT_EQ(static_cast<int>(Int(-7) / Int(2)), -3);
  EXPECT_EQ(static_cast<int>(Int(-7) / 2), -3);
}

TEST(Int, GivesArithmeticResultsOfItsOwnType) {
  EXPECT_TRUE((std::is_same<decltype(Int() + Int()), Int>::value));
  EXPECT_TRUE((std::is_same<decltype(Int() - 1), Int>::value));
  EXPECT_TRUE((std::is_same<decltype(Int() * Int()), Int>::value));
  EXPECT_TRUE((std::is_same<decltype(Int() / 1), Int>::value));
  EXPECT_TRUE((std::is_same<decltype(-Int()), Int>::value));
  EXPECT_TRUE((std::is_same<decltype(+Int()), Int>::value));
}

TEST(Int, LeavesItsOperandsAlone) {
  Int const left(40);
  Int const right(2);
  EXPECT_EQ(static_cast<int>(left * right), 80);
  EXPECT_EQ(static_cast<int>(left), 40);
  EXPECT_EQ(static_cast<int>(right), 2);
}

TEST(Int, KeepsItsSignByUnaryPlus) {
  EXPECT_EQ(static_cast<int>(+Int(-42)), -42);
  EXPECT_EQ((+Int()).IsNull(), 1);
}

TEST(Int, ChangesItsSignByUnaryMinus) {
  EXPECT_EQ(static_cast<int>(-Int(42)), -42);
  EXPECT_EQ(static_cast<int>(-Int(-2147483647)), 2147483647);
}

TEST(Int, StaysNullByUnaryMinus) { EXPECT_EQ((-Int()).IsNull(), 1); }

TEST(Int, AddsOntoItself) {
  Int value(40);
  EXPECT_EQ(&(value += Int(1)), &value);
  EXPECT_EQ(&(value += 1), &value);
  EXPECT_EQ(static_cast<int>(value), 42);
}

TEST(Int, SubtractsFromItself) {
  Int value(44);
  EXPECT_EQ(&(value -= Int(1)), &value);
  EXPECT_EQ(&(value -= 1), &value);
  EXPECT_EQ(static_cast<int>(value), 42);
}

TEST(Int, MultipliesItself) {
  Int value(7);
  EXPECT_EQ(&(value *= Int(3)), &value);
  EXPECT_EQ(&(value *= 2), &value);
  EXPECT_EQ(static_cast<int>(value), 42);
}

TEST(Int, DividesItself) {
  Int value(42);
  EXPECT_EQ(&(value /= Int(3)), &value);
  EXPECT_EQ(&(value /= 2), &value);
  EXPECT_EQ(static_cast<int>(value), 7);
}

TEST(Int, TakesItselfAsTheOperandOfACompoundAssignment) {
  Int value(6);
  Int const& same = value;
  value += same;
  EXPECT_EQ(static_cast<int>(value), 12);
  value *= same;
  EXPECT_EQ(static_cast<int>(value), 144);
  value /= same;
  EXPECT_EQ(static_cast<int>(value), 1);
  value -= same;
  EXPECT_EQ(static_cast<int>(value), 0);
}

TEST(Int, IncrementsBeforeUse) {
  Int value(41);
  EXPECT_EQ(&++value, &value);
  EXPECT_EQ(static_cast<int>(value), 42);
}

TEST(Int, IncrementsAfterUse) {
  Int value(41);
  EXPECT_EQ(static_cast<int>(value++), 41);
  EXPECT_EQ(static_cast<int>(value), 42);
}

TEST(Int, DecrementsBeforeUse) {
  Int value(43);
  EXPECT_EQ(&--value, &value);
  EXPECT_EQ(static_cast<int>(value), 42);
}

TEST(Int, DecrementsAfterUse) {
  Int value(43);
  EXPECT_EQ(static_cast<int>(value--), 43);
  EXPECT_EQ(static_cast<int>(value), 42);
}

// NULL in arithmetic

TEST(Int, IsNullAsTheSumWithNull) {
  EXPECT_EQ((Int() + Int(5)).IsNull(), 1);
  EXPECT_EQ((Int(5) + Int()).IsNull(), 1);
  EXPECT_EQ((Int() + 5).IsNull(), 1);
  EXPECT_EQ((Int() + 0).IsNull(), 1);
}

TEST(Int, IsNullAsTheDifferenceWithNull) {
  EXPECT_EQ((Int() - Int(5)).IsNull(), 1);
  EXPECT_EQ((Int(5) - Int()).IsNull(), 1);
  EXPECT_EQ((Int() - 1).IsNull(), 1);
  EXPECT_EQ((Int() - Int()).IsNull(), 1);
}

TEST(Int, IsNullAsTheProductWithNull) {
  EXPECT_EQ((Int() * Int(5)).IsNull(), 1);
  EXPECT_EQ((Int(5) * Int()).IsNull(), 1);
  EXPECT_EQ((Int() * 0).IsNull(), 1);
}

TEST(Int, IsNullAsTheQuotientWithNull) {
  EXPECT_EQ((Int() / Int(5)).IsNull(), 1);
  EXPECT_EQ((Int(5) / Int()).IsNull(), 1);
  EXPECT_EQ((Int() / -1).IsNull(), 1);
}

TEST(Int, StaysNullInCompoundAssignments) {
  Int value;
  value += 5;
  EXPECT_EQ(value.IsNull(), 1);
  value -= 1;
  EXPECT_EQ(value.IsNull(), 1);
  value *= 2;
  EXPECT_EQ(value.IsNull(), 1);
  value /= -1;
  EXPECT_EQ(value.IsNull(), 1);
}

TEST(Int, BecomesNullByACompoundAssignmentWithNull) {
  Int value(5);
  value += Int();
  EXPECT_EQ(value.IsNull(), 1);
}

TEST(Int, StaysNullWhenIncrementedOrDecremented) {
  Int value;
  ++value;
  EXPECT_EQ(value.IsNull(), 1);
  --value;
  EXPECT_EQ(value.IsNull(), 1);
  EXPECT_EQ((value++).IsNull(), 1);
  EXPECT_EQ(value.IsNull(), 1);
  EXPECT_EQ((value--).IsNull(), 1);
  EXPECT_EQ(value.IsNull(), 1);
}

// Overflow

TEST(Int, WrapsASumThatOverflows) {
  EXPECT_EQ(static_cast<int>(Int(2147483647) + 2), -2147483647);
  EXPECT_EQ(static_cast<int>(Int(-2147483647) + Int(-2)), 2147483647);
}

TEST(Int, WrapsADifferenceThatOverflows) {
  EXPECT_EQ(static_cast<int>(Int(-2147483647) - 2), 2147483647);
  EXPECT_EQ(static_cast<int>(Int(2147483647) - Int(-2)), -2147483647);
}

TEST(Int, WrapsAProductThatOverflows) {
  EXPECT_EQ(static_cast<int>(Int(2147483647) * 2), -2);
  EXPECT_EQ(static_cast<int>(Int(65537) * Int(65537)), 131073);
}

TEST(Int, WrapsToNullOnePastTheLargestNumber) {
  Int value(2147483647);
  ++value;
  EXPECT_EQ(value.IsNull(), 1);
}

TEST(Int, WrapsToNullOneBeforeTheSmallestNumber) {
  Int value(-2147483647);
  --value;
  EXPECT_EQ(value.IsNull(), 1);
}

TEST(Int, IsNullAfterDivisionByZero) {
  EXPECT_EQ((Int(5) / Int(0)).IsNull(), 1);
  EXPECT_EQ((Int(5) / 0).IsNull(), 1);
  EXPECT_EQ((Int(0) / 0).IsNull(), 1);
}

TEST(Int, BecomesNullWhenDividedByZero) {
  Int value(5);
  value /= 0;
  EXPECT_EQ(value.IsNull(), 1);
}

TEST(Int, IsNullAfterDividingTheSmallest32BitNumberByMinusOne) { EXPECT_EQ((Int(kNullNumber) / Int(-1)).IsNull(), 1); }

// Comparisons

TEST(Int, EqualsItsOwnType) {
  EXPECT_TRUE(Int(42) == Int(42));
  EXPECT_FALSE(Int(42) == Int(43));
  EXPECT_FALSE(Int(42) != Int(42));
  EXPECT_TRUE(Int(42) != Int(43));
}

TEST(Int, EqualsAScalar) {
  EXPECT_TRUE(Int(42) == 42);
  EXPECT_FALSE(Int(42) == 43);
  EXPECT_TRUE(42 == Int(42));
  EXPECT_FALSE(Int(42) != 42);
}

TEST(Int, OrdersBesideItsOwnType) {
  EXPECT_TRUE(Int(-1) < Int(1));
  EXPECT_FALSE(Int(1) < Int(-1));
  EXPECT_FALSE(Int(1) < Int(1));
}

TEST(Int, OrdersBesideAScalar) {
  EXPECT_TRUE(Int(-1) < 1);
  EXPECT_FALSE(Int(1) < -1);
  EXPECT_FALSE(Int(1) < 1);
}

TEST(Int, OrdersByEveryOperator) {
  EXPECT_TRUE(Int(1) > Int(-1));
  EXPECT_FALSE(Int(1) > 1);
  EXPECT_TRUE(Int(1) >= Int(1));
  EXPECT_FALSE(Int(-1) >= 1);
  EXPECT_TRUE(Int(1) <= Int(1));
  EXPECT_FALSE(Int(1) <= -1);
}

TEST(Int, TakesTwoNullsForEqual) {
  EXPECT_TRUE(Int() == Int());
  EXPECT_FALSE(Int() < Int());
}

TEST(Int, OrdersNullBeforeEveryNumber) {
  EXPECT_TRUE(Int() < Int(-2147483647));
  EXPECT_FALSE(Int(-2147483647) < Int());
  EXPECT_FALSE(Int() == Int(0));
}

TEST(Int, ComparesWithAnIntBehindTheRoot) {
  Int const same(42);
  Int const greater(43);
  basic_type const& sameRoot = same;
  basic_type const& greaterRoot = greater;
  EXPECT_TRUE(Int(42) == sameRoot);
  EXPECT_FALSE(Int(42) == greaterRoot);
  EXPECT_TRUE(Int(42) < greaterRoot);
  EXPECT_FALSE(Int(42) < sameRoot);
}

TEST(Int, CanBeTheKeyOfASet) {
  std::set<Int> const keys{Int(3), Int(), Int(-1), Int(), Int(3)};
  std::string order;
  for (Int const& key : keys) order += key.getstr().ToString() + " ";
  EXPECT_EQ(order, "-2147483648 -1 3 ");
}

// Raw value and text

TEST(Int, PointsToItsNumber) {
  Int value(42);
  EXPECT_EQ(*static_cast<int*>(value.voidptr()), 42);
  *static_cast<int*>(value.voidptr()) = 43;
  EXPECT_EQ(static_cast<int>(value), 43);
}

TEST(Int, BecomesNullThroughItsRawValue) {
  Int value(42);
  *static_cast<int*>(value.voidptr()) = kNullNumber;
  EXPECT_EQ(value.IsNull(), 1);
}

TEST(Int, HasFourBytes) {
  EXPECT_EQ(Int(42).GetSize(), 4);
  EXPECT_EQ(Int(42).size(), 4);
  EXPECT_EQ(Int().GetSize(), 4);
}

TEST(Int, WritesItsNumberInDecimal) {
  EXPECT_EQ(Int(0).getstr(), "0");
  EXPECT_EQ(Int(42).getstr(), "42");
  EXPECT_EQ(Int(-42).getstr(), "-42");
  EXPECT_EQ(Int(2147483647).getstr(), "2147483647");
  EXPECT_EQ(Int(-2147483647).getstr(), "-2147483647");
}

TEST(Int, WritesItsStoredNumberForNull) { EXPECT_EQ(Int().getstr(), "-2147483648"); }

TEST(Int, TellsItsScalarItsNameAndItsNullNumber) {
  static_assert(std::is_same<Int::Scalar, int>::value, "");
  EXPECT_EQ(std::string(Int::kName), "Int");
  EXPECT_EQ(int{Int::kNull}, -2147483647 - 1);
}

}  // namespace
