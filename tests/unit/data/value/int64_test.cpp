#include "corvane/data/value/int64.h"

#include <gtest/gtest.h>

#include <climits>
#include <set>
#include <string>
#include <type_traits>

#include "corvane/data/value/exception.h"

namespace {

// Construction, assignment, conversion

TEST(Int64, IsNullByDefault) {
  Int64 const value;
  EXPECT_EQ(value.IsNull(), 1);
  EXPECT_EQ(value.IsNotNull(), 0);
}

TEST(Int64, HoldsANumber) {
  Int64 const value(5000000000L);
  EXPECT_EQ(static_cast<long>(value), 5000000000L);
  EXPECT_EQ(value.IsNull(), 0);
  EXPECT_EQ(value.IsNotNull(), 1);
}

TEST(Int64, HoldsZeroAsANumber) { EXPECT_EQ(Int64(0L).IsNull(), 0); }

TEST(Int64, HoldsTheSmallestNumberAsANumber) {
  Int64 const value(LONG_MIN);
  EXPECT_EQ(value.IsNull(), 0);
  EXPECT_EQ(static_cast<long>(value), LONG_MIN);
}

TEST(Int64, HoldsTheLargestNumber) { EXPECT_EQ(static_cast<long>(Int64(LONG_MAX)), 9223372036854775807L); }

TEST(Int64, StoresTheSmallestNumberWhileNull) {
  Int64 value(42L);
  value.SetNull();
  EXPECT_EQ(value.IsNull(), 1);
  EXPECT_EQ(static_cast<long>(value), LONG_MIN);
  EXPECT_EQ(static_cast<long>(Int64()), LONG_MIN);
}

TEST(Int64, StopsBeingNullBySetNotNull) {
  Int64 value;
  value.SetNotNull();
  EXPECT_EQ(value.IsNull(), 0);
  EXPECT_EQ(value.IsNotNull(), 1);
}

TEST(Int64, KeepsItsNumberBySetNotNull) {
  Int64 value(42L);
  value.SetNotNull();
  EXPECT_EQ(static_cast<long>(value), 42);
}

TEST(Int64, Copies) {
  Int64 original(42L);
  Int64 const copy(original);
  original = 7L;
  EXPECT_EQ(static_cast<long>(copy), 42);
}

TEST(Int64, CopiesNull) {
  Int64 const original;
  Int64 const copy(original);
  EXPECT_EQ(copy.IsNull(), 1);
}

TEST(Int64, AssignsItsOwnType) {
  Int64 const source(42L);
  Int64 value;
  value = source;
  EXPECT_EQ(static_cast<long>(value), 42);
  EXPECT_EQ(value.IsNull(), 0);
}

TEST(Int64, BecomesNullByAssigningNull) {
  Int64 const null;
  Int64 value(7L);
  value = null;
  EXPECT_EQ(value.IsNull(), 1);
  EXPECT_EQ(static_cast<long>(value), LONG_MIN);
}

TEST(Int64, SurvivesSelfAssignment) {
  Int64 value(42L);
  Int64 const& same = value;
  value = same;
  EXPECT_EQ(static_cast<long>(value), 42);
}

TEST(Int64, StopsBeingNullByAssigningAScalar) {
  Int64 value;
  value = 42L;
  EXPECT_EQ(value.IsNull(), 0);
  EXPECT_EQ(static_cast<long>(value), 42);
}

TEST(Int64, StopsBeingNullByAssigningTheSmallestNumber) {
  Int64 value;
  value = LONG_MIN;
  EXPECT_EQ(value.IsNull(), 0);
}

TEST(Int64, AssignsIntegersOfOtherTypesThatFit) {
  Int64 value;
  value = 5;
  EXPECT_EQ(static_cast<long>(value), 5);
  value = 4294967295U;
  EXPECT_EQ(static_cast<long>(value), 4294967295L);
  value = -6LL;
  EXPECT_EQ(static_cast<long>(value), -6);
  value = 9223372036854775807UL;
  EXPECT_EQ(static_cast<long>(value), 9223372036854775807L);
  value = short{-8};
  EXPECT_EQ(static_cast<long>(value), -8);
  EXPECT_EQ(value.IsNull(), 0);
}

TEST(Int64, RefusesIntegersThatDoNotFit) {
  Int64 value(42L);
  EXPECT_THROW(value = 9223372036854775808UL, AException);
  EXPECT_THROW(value = ULLONG_MAX, AException);
  EXPECT_EQ(static_cast<long>(value), 42);
}

TEST(Int64, StaysNullWhenItRefusesAnInteger) {
  Int64 value;
  EXPECT_THROW(value = ULLONG_MAX, AException);
  EXPECT_EQ(value.IsNull(), 1);
}

TEST(Int64, NamesItselfWhenItRefusesAnInteger) {
  Int64 value;
  try {
    value = ULLONG_MAX;
    FAIL() << "nothing thrown";
  } catch (AException const& exception) {
    EXPECT_STREQ(exception.what(), "Number is out of range for Int64. ");
  }
}

TEST(Int64, ReturnsItselfFromAssignment) {
  Int64 const other(1L);
  Int64 value;
  EXPECT_EQ(&(value = other), &value);
  EXPECT_EQ(&(value = 2L), &value);
  EXPECT_EQ(&(value = 3), &value);
}

// Arithmetic

TEST(Int64, Adds) {
  EXPECT_EQ(static_cast<long>(Int64(5000000000L) + Int64(2L)), 5000000002L);
  EXPECT_EQ(static_cast<long>(Int64(5000000000L) + 2L), 5000000002L);
}

TEST(Int64, Subtracts) {
  EXPECT_EQ(static_cast<long>(Int64(5000000000L) - Int64(2L)), 4999999998L);
  EXPECT_EQ(static_cast<long>(Int64(5000000000L) - 2L), 4999999998L);
}

TEST(Int64, Multiplies) {
  EXPECT_EQ(static_cast<long>(Int64(-5000000000L) * Int64(2L)), -10000000000L);
  EXPECT_EQ(static_cast<long>(Int64(-5000000000L) * 2L), -10000000000L);
}

TEST(Int64, DividesTowardZero) {
  EXPECT_EQ(static_cast<long>(Int64(-10000000001L) / Int64(2L)), -5000000000L);
  EXPECT_EQ(static_cast<long>(Int64(-10000000001L) / 2L), -5000000000L);
}

TEST(Int64, GivesArithmeticResultsOfItsOwnType) {
  EXPECT_TRUE((std::is_same<decltype(Int64() + Int64()), Int64>::value));
  EXPECT_TRUE((std::is_same<decltype(Int64() - 1L), Int64>::value));
  EXPECT_TRUE((std::is_same<decltype(Int64() * Int64()), Int64>::value));
  EXPECT_TRUE((std::is_same<decltype(Int64() / 1L), Int64>::value));
  EXPECT_TRUE((std::is_same<decltype(-Int64()), Int64>::value));
  EXPECT_TRUE((std::is_same<decltype(+Int64()), Int64>::value));
}

TEST(Int64, LeavesItsOperandsAlone) {
  Int64 const left(40L);
  Int64 const right(2L);
  EXPECT_EQ(static_cast<long>(left * right), 80);
  EXPECT_EQ(static_cast<long>(left), 40);
  EXPECT_EQ(static_cast<long>(right), 2);
}

TEST(Int64, KeepsItsSignByUnaryPlus) {
  EXPECT_EQ(static_cast<long>(+Int64(-42L)), -42);
  EXPECT_EQ((+Int64()).IsNull(), 1);
}

TEST(Int64, ChangesItsSignByUnaryMinus) {
  EXPECT_EQ(static_cast<long>(-Int64(42L)), -42);
  EXPECT_EQ(static_cast<long>(-Int64(0L)), 0);
}

TEST(Int64, StaysNullByUnaryMinus) { EXPECT_EQ((-Int64()).IsNull(), 1); }

TEST(Int64, AddsOntoItself) {
  Int64 value(40L);
  EXPECT_EQ(&(value += Int64(1L)), &value);
  EXPECT_EQ(&(value += 1L), &value);
  EXPECT_EQ(static_cast<long>(value), 42);
}

TEST(Int64, SubtractsFromItself) {
  Int64 value(44L);
  EXPECT_EQ(&(value -= Int64(1L)), &value);
  EXPECT_EQ(&(value -= 1L), &value);
  EXPECT_EQ(static_cast<long>(value), 42);
}

TEST(Int64, MultipliesItself) {
  Int64 value(7L);
  EXPECT_EQ(&(value *= Int64(3L)), &value);
  EXPECT_EQ(&(value *= 2L), &value);
  EXPECT_EQ(static_cast<long>(value), 42);
}

TEST(Int64, DividesItself) {
  Int64 value(42L);
  EXPECT_EQ(&(value /= Int64(3L)), &value);
  EXPECT_EQ(&(value /= 2L), &value);
  EXPECT_EQ(static_cast<long>(value), 7);
}

TEST(Int64, TakesItselfAsTheOperandOfACompoundAssignment) {
  Int64 value(6L);
  Int64 const& same = value;
  value += same;
  EXPECT_EQ(static_cast<long>(value), 12);
  value *= same;
  EXPECT_EQ(static_cast<long>(value), 144);
  value /= same;
  EXPECT_EQ(static_cast<long>(value), 1);
  value -= same;
  EXPECT_EQ(static_cast<long>(value), 0);
}

TEST(Int64, IncrementsBeforeUse) {
  Int64 value(41L);
  EXPECT_EQ(&++value, &value);
  EXPECT_EQ(static_cast<long>(value), 42);
}

TEST(Int64, IncrementsAfterUse) {
  Int64 value(41L);
  EXPECT_EQ(static_cast<long>(value++), 41);
  EXPECT_EQ(static_cast<long>(value), 42);
}

TEST(Int64, DecrementsBeforeUse) {
  Int64 value(43L);
  EXPECT_EQ(&--value, &value);
  EXPECT_EQ(static_cast<long>(value), 42);
}

TEST(Int64, DecrementsAfterUse) {
  Int64 value(43L);
  EXPECT_EQ(static_cast<long>(value--), 43);
  EXPECT_EQ(static_cast<long>(value), 42);
}

// NULL in arithmetic

TEST(Int64, IsNullAsTheSumWithNull) {
  EXPECT_EQ((Int64() + Int64(5L)).IsNull(), 1);
  EXPECT_EQ((Int64(5L) + Int64()).IsNull(), 1);
  EXPECT_EQ((Int64() + 5L).IsNull(), 1);
  EXPECT_EQ((Int64() + 0L).IsNull(), 1);
}

TEST(Int64, IsNullAsTheDifferenceWithNull) {
  EXPECT_EQ((Int64() - Int64(5L)).IsNull(), 1);
  EXPECT_EQ((Int64(5L) - Int64()).IsNull(), 1);
  EXPECT_EQ((Int64() - 1L).IsNull(), 1);
  EXPECT_EQ((Int64() - Int64()).IsNull(), 1);
}

TEST(Int64, IsNullAsTheProductWithNull) {
  EXPECT_EQ((Int64() * Int64(5L)).IsNull(), 1);
  EXPECT_EQ((Int64(5L) * Int64()).IsNull(), 1);
  EXPECT_EQ((Int64() * 0L).IsNull(), 1);
}

TEST(Int64, IsNullAsTheQuotientWithNull) {
  EXPECT_EQ((Int64() / Int64(5L)).IsNull(), 1);
  EXPECT_EQ((Int64(5L) / Int64()).IsNull(), 1);
  EXPECT_EQ((Int64() / -1L).IsNull(), 1);
}

TEST(Int64, StoresTheSmallestNumberForANullResult) {
  EXPECT_EQ(static_cast<long>(Int64(5L) + Int64()), LONG_MIN);
  EXPECT_EQ(static_cast<long>(Int64(5L) / 0L), LONG_MIN);
}

TEST(Int64, StaysNullInCompoundAssignments) {
  Int64 value;
  value += 5L;
  EXPECT_EQ(value.IsNull(), 1);
  value -= 1L;
  EXPECT_EQ(value.IsNull(), 1);
  value *= 2L;
  EXPECT_EQ(value.IsNull(), 1);
  value /= -1L;
  EXPECT_EQ(value.IsNull(), 1);
}

TEST(Int64, BecomesNullByACompoundAssignmentWithNull) {
  Int64 value(5L);
  value += Int64();
  EXPECT_EQ(value.IsNull(), 1);
}

TEST(Int64, StaysNullWhenIncrementedOrDecremented) {
  Int64 value;
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

TEST(Int64, WrapsASumThatOverflows) {
  EXPECT_EQ(static_cast<long>(Int64(LONG_MAX) + 2L), -9223372036854775807L);
  EXPECT_EQ(static_cast<long>(Int64(LONG_MIN) + Int64(-1L)), 9223372036854775807L);
}

TEST(Int64, WrapsADifferenceThatOverflows) {
  EXPECT_EQ(static_cast<long>(Int64(LONG_MIN) - 1L), 9223372036854775807L);
  EXPECT_EQ(static_cast<long>(Int64(LONG_MAX) - Int64(-2L)), -9223372036854775807L);
}

TEST(Int64, WrapsAProductThatOverflows) {
  EXPECT_EQ(static_cast<long>(Int64(LONG_MAX) * 2L), -2);
  EXPECT_EQ(static_cast<long>(Int64(4294967297L) * Int64(4294967297L)), 8589934593L);
  EXPECT_EQ(static_cast<long>(Int64(LONG_MIN) * -1L), LONG_MIN);
}

TEST(Int64, WrapsToTheSmallestNumberNotToNull) {
  Int64 value(LONG_MAX);
  ++value;
  EXPECT_EQ(value.IsNull(), 0);
  EXPECT_EQ(static_cast<long>(value), LONG_MIN);
}

TEST(Int64, WrapsToTheLargestNumber) {
  Int64 value(LONG_MIN);
  --value;
  EXPECT_EQ(static_cast<long>(value), LONG_MAX);
}

TEST(Int64, WrapsTheSmallestNumberByUnaryMinus) {
  Int64 const value = -Int64(LONG_MIN);
  EXPECT_EQ(value.IsNull(), 0);
  EXPECT_EQ(static_cast<long>(value), LONG_MIN);
}

TEST(Int64, IsNullAfterDivisionByZero) {
  EXPECT_EQ((Int64(5L) / Int64(0L)).IsNull(), 1);
  EXPECT_EQ((Int64(5L) / 0L).IsNull(), 1);
  EXPECT_EQ((Int64(0L) / 0L).IsNull(), 1);
}

TEST(Int64, BecomesNullWhenDividedByZero) {
  Int64 value(5L);
  value /= 0L;
  EXPECT_EQ(value.IsNull(), 1);
}

TEST(Int64, IsNullAfterDividingTheSmallestNumberByMinusOne) {
  EXPECT_EQ((Int64(LONG_MIN) / Int64(-1L)).IsNull(), 1);
  EXPECT_EQ((Int64(LONG_MIN) / -1L).IsNull(), 1);
}

TEST(Int64, BecomesNullWhenTheSmallestNumberIsDividedByMinusOne) {
  Int64 value(LONG_MIN);
  value /= -1L;
  EXPECT_EQ(value.IsNull(), 1);
}

TEST(Int64, DividesTheSmallestNumberByOthers) {
  EXPECT_EQ(static_cast<long>(Int64(LONG_MIN) / 1L), LONG_MIN);
  EXPECT_EQ(static_cast<long>(Int64(LONG_MIN) / -2L), 4611686018427387904L);
}

// Comparisons

TEST(Int64, EqualsItsOwnType) {
  EXPECT_TRUE(Int64(42L) == Int64(42L));
  EXPECT_FALSE(Int64(42L) == Int64(43L));
  EXPECT_FALSE(Int64(42L) != Int64(42L));
  EXPECT_TRUE(Int64(42L) != Int64(43L));
}

TEST(Int64, EqualsAScalar) {
  EXPECT_TRUE(Int64(42L) == 42L);
  EXPECT_FALSE(Int64(42L) == 43L);
  EXPECT_FALSE(Int64(42L) != 42L);
  EXPECT_TRUE(Int64(42L) != 43L);
  EXPECT_TRUE(42L == Int64(42L));
}

TEST(Int64, OrdersBesideItsOwnType) {
  EXPECT_TRUE(Int64(-1L) < Int64(1L));
  EXPECT_FALSE(Int64(1L) < Int64(-1L));
  EXPECT_FALSE(Int64(1L) < Int64(1L));
}

TEST(Int64, OrdersBesideAScalar) {
  EXPECT_TRUE(Int64(-1L) < 1L);
  EXPECT_FALSE(Int64(1L) < -1L);
  EXPECT_FALSE(Int64(1L) < 1L);
}

TEST(Int64, TakesTwoNullsForEqual) {
  EXPECT_TRUE(Int64() == Int64());
  EXPECT_FALSE(Int64() != Int64());
  EXPECT_FALSE(Int64() < Int64());
}

TEST(Int64, TakesTwoNullsForEqualWhateverLiesInThem) {
  Int64 null;
  *static_cast<long*>(null.voidptr()) = 5;
  EXPECT_TRUE(null == Int64());
  EXPECT_FALSE(null < Int64());
  EXPECT_FALSE(Int64() < null);
}

TEST(Int64, OrdersNullBeforeEveryNumber) {
  EXPECT_TRUE(Int64() < Int64(LONG_MIN));
  EXPECT_FALSE(Int64(LONG_MIN) < Int64());
  EXPECT_TRUE(Int64() < LONG_MIN);
}

TEST(Int64, OrdersNullBeforeTheSmallestNumberByEveryOperator) {
  EXPECT_TRUE(Int64(LONG_MIN) > Int64());
  EXPECT_FALSE(Int64(LONG_MIN) <= Int64());
  EXPECT_FALSE(Int64() >= Int64(LONG_MIN));
  EXPECT_TRUE(Int64() <= Int64(LONG_MIN));
}

TEST(Int64, OrdersByEveryOperator) {
  EXPECT_TRUE(Int64(1L) > Int64(-1L));
  EXPECT_FALSE(Int64(1L) > 1L);
  EXPECT_TRUE(Int64(1L) >= Int64(1L));
  EXPECT_FALSE(Int64(-1L) >= 1L);
  EXPECT_TRUE(Int64(1L) <= Int64(1L));
  EXPECT_FALSE(Int64(1L) <= -1L);
}

TEST(Int64, TellsNullFromTheSmallestNumber) {
  EXPECT_FALSE(Int64() == Int64(LONG_MIN));
  EXPECT_TRUE(Int64() != Int64(LONG_MIN));
  EXPECT_FALSE(Int64() == LONG_MIN);
  EXPECT_TRUE(Int64() != LONG_MIN);
}

TEST(Int64, ComparesWithAnInt64BehindTheRoot) {
  Int64 const same(42L);
  Int64 const greater(43L);
  basic_type const& sameRoot = same;
  basic_type const& greaterRoot = greater;
  EXPECT_TRUE(Int64(42L) == sameRoot);
  EXPECT_FALSE(Int64(42L) == greaterRoot);
  EXPECT_TRUE(Int64(42L) < greaterRoot);
  EXPECT_FALSE(Int64(42L) < sameRoot);
}

TEST(Int64, CanBeTheKeyOfASet) {
  std::set<Int64> const keys{Int64(3L), Int64(), Int64(LONG_MIN), Int64(), Int64(3L)};
  std::string order;
  for (Int64 const& key : keys) order += key.IsNull() != 0 ? "null " : key.getstr().ToString() + " ";
  EXPECT_EQ(order, "null -9223372036854775808 3 ");
}

// Raw value and text

TEST(Int64, PointsToItsNumber) {
  Int64 value(42L);
  EXPECT_EQ(*static_cast<long*>(value.voidptr()), 42);
  *static_cast<long*>(value.voidptr()) = 43;
  EXPECT_EQ(static_cast<long>(value), 43);
}

TEST(Int64, TakesANumberThroughItsRawValueAndSetNotNull) {
  Int64 value;
  *static_cast<long*>(value.voidptr()) = 42;
  EXPECT_EQ(value.IsNull(), 1);
  value.SetNotNull();
  EXPECT_EQ(value.IsNull(), 0);
  EXPECT_EQ(static_cast<long>(value), 42);
}

TEST(Int64, HasEightBytes) {
  EXPECT_EQ(Int64(42L).GetSize(), 8);
  EXPECT_EQ(Int64(42L).size(), 8);
  EXPECT_EQ(Int64().GetSize(), 8);
}

TEST(Int64, WritesItsNumberInDecimal) {
  EXPECT_EQ(Int64(0L).getstr(), "0");
  EXPECT_EQ(Int64(-42L).getstr(), "-42");
  EXPECT_EQ(Int64(9007199254740993L).getstr(), "9007199254740993");
  EXPECT_EQ(Int64(LONG_MAX).getstr(), "9223372036854775807");
  EXPECT_EQ(Int64(LONG_MIN).getstr(), "-9223372036854775808");
}

TEST(Int64, WritesItsStoredNumberForNull) { EXPECT_EQ(Int64().getstr(), "-9223372036854775808"); }

TEST(Int64, WritesNoStaleNumberForNull) {
  Int64 value(42L);
  value.SetNull();
  EXPECT_EQ(value.getstr(), "-9223372036854775808");
}

// atoint64_t

TEST(Int64, ReadsADecimalText) {
  EXPECT_EQ(Int64::atoint64_t("0"), 0);
  EXPECT_EQ(Int64::atoint64_t("42"), 42);
  EXPECT_EQ(Int64::atoint64_t("-42"), -42);
  EXPECT_EQ(Int64::atoint64_t("+42"), 42);
  EXPECT_EQ(Int64::atoint64_t("0042"), 42);
}

TEST(Int64, ReadsTheLimits) {
  EXPECT_EQ(Int64::atoint64_t("9223372036854775807"), LONG_MAX);
  EXPECT_EQ(Int64::atoint64_t("-9223372036854775808"), LONG_MIN);
}

TEST(Int64, ReadsWhatDoesNotFitAsTheNearestNumber) {
  EXPECT_EQ(Int64::atoint64_t("9223372036854775808"), LONG_MAX);
  EXPECT_EQ(Int64::atoint64_t("-9223372036854775809"), LONG_MIN);
  EXPECT_EQ(Int64::atoint64_t("99999999999999999999999999"), LONG_MAX);
  EXPECT_EQ(Int64::atoint64_t("-99999999999999999999999999"), LONG_MIN);
}

TEST(Int64, ReadsBehindLeadingBlanks) { EXPECT_EQ(Int64::atoint64_t(" \t\n\v\f\r-42"), -42); }

TEST(Int64, ReadsUpToTheFirstOtherCharacter) {
  EXPECT_EQ(Int64::atoint64_t("42abc"), 42);
  EXPECT_EQ(Int64::atoint64_t("42.9"), 42);
  EXPECT_EQ(Int64::atoint64_t("42 43"), 42);
  EXPECT_EQ(Int64::atoint64_t("0x10"), 0);
}

TEST(Int64, ReadsATextWithoutDigitsAsZero) {
  EXPECT_EQ(Int64::atoint64_t(""), 0);
  EXPECT_EQ(Int64::atoint64_t("abc"), 0);
  EXPECT_EQ(Int64::atoint64_t("-"), 0);
  EXPECT_EQ(Int64::atoint64_t("+-5"), 0);
  EXPECT_EQ(Int64::atoint64_t("- 5"), 0);
}

TEST(Int64, ReadsANullPointerAsZero) { EXPECT_EQ(Int64::atoint64_t(nullptr), 0); }

TEST(Int64, TellsItsScalarAndItsName) {
  static_assert(std::is_same<Int64::Scalar, long>::value, "");
  EXPECT_EQ(std::string(Int64::kName), "Int64");
}

}  // namespace
