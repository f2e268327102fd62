#include "corvane/data/value/double.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <set>
#include <string>
#include <type_traits>

namespace {

constexpr double kNullNumber = -1.7976931348623157e+308;
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

// Construction, assignment, conversion

TEST(Double, IsNullByDefault) {
  Double const value;
  EXPECT_EQ(value.IsNull(), 1);
  EXPECT_EQ(value.IsNotNull(), 0);
}

TEST(Double, HoldsANumber) {
  Double const value(2.5);
  EXPECT_EQ(static_cast<double>(value), 2.5);
  EXPECT_EQ(value.IsNull(), 0);
  EXPECT_EQ(value.IsNotNull(), 1);
}

TEST(Double, HoldsZeroAsANumber) { EXPECT_EQ(Double(0.0).IsNull(), 0); }

TEST(Double, HoldsTheLargestNumber) {
  Double const value(std::numeric_limits<double>::max());
  EXPECT_EQ(value.IsNull(), 0);
  EXPECT_EQ(static_cast<double>(value), 1.7976931348623157e+308);
}

TEST(Double, ReadsTheLowestNumberBackAsNull) { EXPECT_EQ(Double(kNullNumber).IsNull(), 1); }

TEST(Double, HoldsTheNextToLowestNumber) { EXPECT_EQ(Double(std::nextafter(kNullNumber, 0.0)).IsNull(), 0); }

TEST(Double, HoldsInfinitiesAndNan) {
  EXPECT_EQ(Double(kInfinity).IsNull(), 0);
  EXPECT_EQ(Double(-kInfinity).IsNull(), 0);
  EXPECT_EQ(Double(kNan).IsNull(), 0);
}

TEST(Double, StoresTheLowestNumberForNull) {
  Double value(2.5);
  value.SetNull();
  EXPECT_EQ(value.IsNull(), 1);
  EXPECT_EQ(static_cast<double>(value), kNullNumber);
}

TEST(Double, HasKnownBitsWhenNull) {
  Double const value;
  std::uint64_t bits = 0;
  std::memcpy(&bits, value.voidptr(), sizeof bits);
  EXPECT_EQ(bits, 0xFFEFFFFFFFFFFFFFU);
}

TEST(Double, Copies) {
  Double original(2.5);
  Double const copy(original);
  original = 7.0;
  EXPECT_EQ(static_cast<double>(copy), 2.5);
}

TEST(Double, CopiesNull) {
  Double const original;
  Double const copy(original);
  EXPECT_EQ(copy.IsNull(), 1);
}

TEST(Double, AssignsItsOwnType) {
  Double const source(2.5);
  Double value;
  value = source;
  EXPECT_EQ(static_cast<double>(value), 2.5);
}

TEST(Double, BecomesNullByAssigningNull) {
  Double const null;
  Double value(2.5);
  value = null;
  EXPECT_EQ(value.IsNull(), 1);
}

TEST(Double, SurvivesSelfAssignment) {
  Double value(2.5);
  Double const& same = value;
  value = same;
  EXPECT_EQ(static_cast<double>(value), 2.5);
}

TEST(Double, AssignsAScalar) {
  Double value;
  value = 2.5;
  EXPECT_EQ(static_cast<double>(value), 2.5);
  EXPECT_EQ(value.IsNull(), 0);
}

TEST(Double, AssignsNumbersOfOtherTypes) {
  Double value;
  value = 2.5F;
  EXPECT_EQ(static_cast<double>(value), 2.5);
  value = 3;
  EXPECT_EQ(static_cast<double>(value), 3.0);
  value = 5000000000L;
  EXPECT_EQ(static_cast<double>(value), 5e9);
  value = 4294967295U;
  EXPECT_EQ(static_cast<double>(value), 4294967295.0);
  value = -4LL;
  EXPECT_EQ(static_cast<double>(value), -4.0);
}

TEST(Double, ReturnsItselfFromAssignment) {
  Double const other(1.0);
  Double value;
  EXPECT_EQ(&(value = other), &value);
  EXPECT_EQ(&(value = 2.0), &value);
  EXPECT_EQ(&(value = 3), &value);
}

// Arithmetic

TEST(Double, Adds) {
  EXPECT_EQ(static_cast<double>(Double(2.5) + Double(0.25)), 2.75);
  EXPECT_EQ(static_cast<double>(Double(2.5) + 0.25), 2.75);
}

TEST(Double, Subtracts) {
  EXPECT_EQ(static_cast<double>(Double(2.5) - Double(0.25)), 2.25);
  EXPECT_EQ(static_cast<double>(Double(2.5) - 0.25), 2.25);
}

TEST(Double, Multiplies) {
  EXPECT_EQ(static_cast<double>(Double(2.5) * Double(-0.5)), -1.25);
  EXPECT_EQ(static_cast<double>(Double(2.5) * -0.5), -1.25);
}

TEST(Double, Divides) {
  EXPECT_EQ(static_cast<double>(Double(2.5) / Double(0.5)), 5.0);
  EXPECT_EQ(static_cast<double>(Double(2.5) / 0.5), 5.0);
}

TEST(Double, GivesArithmeticResultsOfItsOwnType) {
  EXPECT_TRUE((std::is_same<decltype(Double() + Double()), Double>::value));
  EXPECT_TRUE((std::is_same<decltype(Double() - 1.0), Double>::value));
  EXPECT_TRUE((std::is_same<decltype(Double() * Double()), Double>::value));
  EXPECT_TRUE((std::is_same<decltype(Double() / 1.0), Double>::value));
  EXPECT_TRUE((std::is_same<decltype(-Double()), Double>::value));
  EXPECT_TRUE((std::is_same<decltype(+Double()), Double>::value));
}

TEST(Double, KeepsItsSignByUnaryPlus) {
  EXPECT_EQ(static_cast<double>(+Double(-2.5)), -2.5);
  EXPECT_EQ((+Double()).IsNull(), 1);
}

TEST(Double, ChangesItsSignByUnaryMinus) { EXPECT_EQ(static_cast<double>(-Double(2.5)), -2.5); }

TEST(Double, StaysNullByUnaryMinus) { EXPECT_EQ((-Double()).IsNull(), 1); }

TEST(Double, AddsOntoItself) {
  Double value(2.5);
  EXPECT_EQ(&(value += Double(0.25)), &value);
  EXPECT_EQ(&(value += 0.25), &value);
  EXPECT_EQ(static_cast<double>(value), 3.0);
}

TEST(Double, SubtractsFromItself) {
  Double value(2.5);
  EXPECT_EQ(&(value -= Double(0.25)), &value);
  EXPECT_EQ(&(value -= 0.25), &value);
  EXPECT_EQ(static_cast<double>(value), 2.0);
}

TEST(Double, MultipliesItself) {
  Double value(2.5);
  EXPECT_EQ(&(value *= Double(2.0)), &value);
  EXPECT_EQ(&(value *= 0.5), &value);
  EXPECT_EQ(static_cast<double>(value), 2.5);
}

TEST(Double, DividesItself) {
  Double value(5.0);
  EXPECT_EQ(&(value /= Double(2.0)), &value);
  EXPECT_EQ(&(value /= 0.5), &value);
  EXPECT_EQ(static_cast<double>(value), 5.0);
}

TEST(Double, TakesItselfAsTheOperandOfACompoundAssignment) {
  Double value(1.5);
  Double const& same = value;
  value += same;
  EXPECT_EQ(static_cast<double>(value), 3.0);
  value *= same;
  EXPECT_EQ(static_cast<double>(value), 9.0);
  value /= same;
  EXPECT_EQ(static_cast<double>(value), 1.0);
  value -= same;
  EXPECT_EQ(static_cast<double>(value), 0.0);
}

// NULL in arithmetic

TEST(Double, IsNullAsTheSumWithNull) {
  EXPECT_EQ((Double() + Double(5.0)).IsNull(), 1);
  EXPECT_EQ((Double(5.0) + Double()).IsNull(), 1);
  EXPECT_EQ((Double() + 1e300).IsNull(), 1);
}

TEST(Double, IsNullAsTheDifferenceWithNull) {
  EXPECT_EQ((Double() - Double(5.0)).IsNull(), 1);
  EXPECT_EQ((Double(5.0) - Double()).IsNull(), 1);
  EXPECT_EQ((Double() - Double()).IsNull(), 1);
}

TEST(Double, IsNullAsTheProductWithNull) {
  EXPECT_EQ((Double() * Double(0.0)).IsNull(), 1);
  EXPECT_EQ((Double(0.5) * Double()).IsNull(), 1);
  EXPECT_EQ((Double() * 0.5).IsNull(), 1);
}

TEST(Double, IsNullAsTheQuotientWithNull) {
  EXPECT_EQ((Double() / Double(2.0)).IsNull(), 1);
  EXPECT_EQ((Double(2.0) / Double()).IsNull(), 1);
  EXPECT_EQ((Double() / 0.0).IsNull(), 1);
}

TEST(Double, StaysNullInCompoundAssignments) {
  Double value;
  value += 1e300;
  EXPECT_EQ(value.IsNull(), 1);
  value -= 1e300;
  EXPECT_EQ(value.IsNull(), 1);
  value *= 0.5;
  EXPECT_EQ(value.IsNull(), 1);
  value /= 2.0;
  EXPECT_EQ(value.IsNull(), 1);
}

TEST(Double, BecomesNullByACompoundAssignmentWithNull) {
  Double value(5.0);
  value += Double();
  EXPECT_EQ(value.IsNull(), 1);
}

// What IEEE 754 gives

TEST(Double, IsInfiniteAfterDivisionByZero) {
  EXPECT_EQ(static_cast<double>(Double(1.0) / 0.0), kInfinity);
  EXPECT_EQ(static_cast<double>(Double(-1.0) / Double(0.0)), -kInfinity);
}

TEST(Double, IsNanAfterDividingZeroByZero) { EXPECT_TRUE(std::isnan(static_cast<double>(Double(0.0) / 0.0))); }

TEST(Double, OverflowsToInfinity) { EXPECT_EQ(static_cast<double>(Double(1e300) * 1e300), kInfinity); }

// Comparisons

TEST(Double, EqualsItsOwnType) {
  EXPECT_TRUE(Double(2.5) == Double(2.5));
  EXPECT_FALSE(Double(2.5) == Double(2.75));
  EXPECT_FALSE(Double(2.5) != Double(2.5));
  EXPECT_TRUE(Double(2.5) != Double(2.75));
}

TEST(Double, EqualsAScalar) {
  EXPECT_TRUE(Double(2.5) == 2.5);
  EXPECT_FALSE(Double(2.5) == 2.75);
  EXPECT_TRUE(2.5 == Double(2.5));
}

TEST(Double, OrdersBesideItsOwnType) {
  EXPECT_TRUE(Double(-2.5) < Double(2.5));
  EXPECT_FALSE(Double(2.5) < Double(-2.5));
  EXPECT_FALSE(Double(2.5) < Double(2.5));
}

TEST(Double, OrdersBesideAScalar) {
  EXPECT_TRUE(Double(-2.5) < 2.5);
  EXPECT_FALSE(Double(2.5) < -2.5);
  EXPECT_FALSE(Double(2.5) < 2.5);
}

TEST(Double, OrdersByEveryOperator) {
  EXPECT_TRUE(Double(2.5) > Double(-2.5));
  EXPECT_FALSE(Double(2.5) > 2.5);
  EXPECT_TRUE(Double(2.5) >= Double(2.5));
  EXPECT_FALSE(Double(-2.5) >= 2.5);
  EXPECT_TRUE(Double(2.5) <= Double(2.5));
  EXPECT_FALSE(Double(2.5) <= -2.5);
}

TEST(Double, OrdersNullBeforeMinusInfinityByEveryOperator) {
  EXPECT_TRUE(Double(-kInfinity) > Double());
  EXPECT_FALSE(Double(-kInfinity) <= Double());
  EXPECT_FALSE(Double() >= Double(-kInfinity));
  EXPECT_TRUE(Double() <= Double(-kInfinity));
}

TEST(Double, TakesBothZerosForEqual) {
  EXPECT_TRUE(Double(0.0) == Double(-0.0));
  EXPECT_FALSE(Double(-0.0) < Double(0.0));
}

TEST(Double, TakesTwoNullsForEqual) {
  EXPECT_TRUE(Double() == Double());
  EXPECT_FALSE(Double() < Double());
}

TEST(Double, OrdersNullBeforeEveryFiniteNumber) {
  EXPECT_TRUE(Double() < Double(-1e308));
  EXPECT_FALSE(Double(-1e308) < Double());
  EXPECT_FALSE(Double() == Double(0.0));
}

TEST(Double, OrdersNullBeforeMinusInfinity) {
  EXPECT_TRUE(Double() < Double(-kInfinity));
  EXPECT_FALSE(Double(-kInfinity) < Double());
  EXPECT_TRUE(Double() < -kInfinity);
}

TEST(Double, ComparesWithADoubleBehindTheRoot) {
  Double const same(2.5);
  Double const greater(2.75);
  basic_type const& sameRoot = same;
  basic_type const& greaterRoot = greater;
  EXPECT_TRUE(Double(2.5) == sameRoot);
  EXPECT_FALSE(Double(2.5) == greaterRoot);
  EXPECT_TRUE(Double(2.5) < greaterRoot);
  EXPECT_FALSE(Double(2.5) < sameRoot);
}

TEST(Double, OrdersNullBeforeMinusInfinityBehindTheRoot) {
  Double const null;
  Double const lowest(-kInfinity);
  basic_type const& nullRoot = null;
  basic_type const& lowestRoot = lowest;
  EXPECT_TRUE(nullRoot < lowestRoot);
  EXPECT_FALSE(lowestRoot < nullRoot);
  EXPECT_FALSE(nullRoot == lowestRoot);
}

TEST(Double, TakesNanForNullBehindTheRoot) {
  Double const nan(kNan);
  Double const null;
  Double const number(-1e308);
  basic_type const& nanRoot = nan;
  basic_type const& nullRoot = null;
  basic_type const& numberRoot = number;
  EXPECT_TRUE(nanRoot == nanRoot);
  EXPECT_TRUE(nanRoot == nullRoot);
  EXPECT_FALSE(nanRoot < nullRoot);
  EXPECT_FALSE(nullRoot < nanRoot);
  EXPECT_TRUE(nanRoot < numberRoot);
  EXPECT_FALSE(numberRoot < nanRoot);
}

TEST(Double, CanBeTheKeyOfASet) {
  std::set<Double> const keys{Double(2.5), Double(), Double(-1e308), Double(), Double(2.5)};
  std::string order;
  for (Double const& key : keys) order += key.IsNull() != 0 ? "null " : key.getstr().ToString() + " ";
  EXPECT_EQ(order, "null -1e+308 2.5 ");
}

// Raw value and text

TEST(Double, PointsToItsNumber) {
  Double value(2.5);
  EXPECT_EQ(*static_cast<double*>(value.voidptr()), 2.5);
  *static_cast<double*>(value.voidptr()) = 2.75;
  EXPECT_EQ(static_cast<double>(value), 2.75);
}

TEST(Double, BecomesNullThroughItsRawValue) {
  Double value(2.5);
  *static_cast<double*>(value.voidptr()) = kNullNumber;
  EXPECT_EQ(value.IsNull(), 1);
}

TEST(Double, HasEightBytes) {
  EXPECT_EQ(Double(2.5).GetSize(), 8);
  EXPECT_EQ(Double(2.5).size(), 8);
  EXPECT_EQ(Double().GetSize(), 8);
}

TEST(Double, WritesItsNumberInPlainNotation) {
  EXPECT_EQ(Double(0.0).getstr(), "0");
  EXPECT_EQ(Double(100000.0).getstr(), "100000");
  EXPECT_EQ(Double(0.0001).getstr(), "0.0001");
  EXPECT_EQ(Double(-2.5).getstr(), "-2.5");
  EXPECT_EQ(Double(1234567.891).getstr(), "1234567.891");
}

TEST(Double, WritesVeryLargeAndVerySmallNumbersWithAnExponent) {
  EXPECT_EQ(Double(1e17).getstr(), "1e+17");
  EXPECT_EQ(Double(-1.5e-7).getstr(), "-1.5e-07");
}

TEST(Double, WritesItsStoredNumberForNull) { EXPECT_EQ(Double().getstr(), "-1.7976931348623157e+308"); }

TEST(Double, TellsItsScalarItsNameAndItsNullNumber) {
  static_assert(std::is_same<Double::Scalar, double>::value, "");
  EXPECT_EQ(std::string(Double::kName), "Double");
  EXPECT_EQ(double{Double::kNull}, -1.7976931348623157e+308);
}

}  // namespace
