#include "corvane/data/double.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <limits>

#include "corvane/data/dcurrency.h"
#include "tests/unit/data/column_probes.h"

using corvane::test::Slot;
using corvane::test::WritesNothing;

namespace {

constexpr double kLowest = std::numeric_limits<double>::lowest();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

// An application's column that counts what it is asked to do.
class CountingDouble : public ASDouble {
 public:
  using ASDouble::operator=;
  ASDouble& operator=(Double const& other) override {
    ++assignments;
    return ASDouble::operator=(other);
  }

  int assignments = 0;
};

ASDouble Holding(double number) {
  ASDouble value;
  value = number;
  return value;
}

// ---- Assignment ----

TEST(ASDouble, TakesAPlainNumber) { EXPECT_EQ(Holding(2.5).getstr(), "2.5"); }

TEST(ASDouble, TakesADouble) {
  ASDouble value;
  value = Double(-2.5);
  EXPECT_EQ(value.getstr(), "-2.5");
}

TEST(ASDouble, TakesNumbersOfOtherTypes) {
  ASDouble value;
  value = 5;
  EXPECT_EQ(value.getstr(), "5");
  value = 6L;
  EXPECT_EQ(value.getstr(), "6");
  value = 0.5f;
  EXPECT_EQ(value.getstr(), "0.5");
}

TEST(ASDouble, TakesTheNumberOfACurrency) {
  ASDCurrency price;
  price = 19.99;
  ASDouble value;
  value = price;
  EXPECT_EQ(value.getstr(), "19.99");
}

TEST(ASDouble, LowestNumberIsNull) {
  ASDouble value = Holding(2.5);
  value = kLowest;
  EXPECT_EQ(value.IsNull(), 1);
}

TEST(ASDouble, InfinityIsNotNull) {
  EXPECT_EQ(Holding(kInfinity).IsNull(), 0);
  EXPECT_EQ(Holding(-kInfinity).IsNull(), 0);
}

TEST(ASDouble, AssigningTheNumberItHasWritesNothing) {
  ASDouble const value = Holding(2.5);
  EXPECT_TRUE(WritesNothing(value, [](ASDouble& target) { target = Double(2.5); }));
  EXPECT_TRUE(WritesNothing(value, [](ASDouble& target) { target = Holding(2.5); }));
  EXPECT_TRUE(WritesNothing(value, [](ASDouble& target) { target = 2.5; }));
}

TEST(ASDouble, AssigningAnotherNumberWrites) {
  EXPECT_FALSE(WritesNothing(Holding(2.5), [](ASDouble& target) { target = Double(2.25); }));
}

TEST(ASDouble, AssignmentOfADoubleReturnsTheTarget) {
  ASDouble value;
  EXPECT_EQ(&(value = Double(2.5)), &value);
  EXPECT_EQ(&(value = 2), &value);
}

// ---- Comparison ----

TEST(ASDouble, EqualsTheSameNumber) {
  ASDouble const value = Holding(2.5);
  EXPECT_TRUE(value == Double(2.5));
  EXPECT_FALSE(value == Double(2.25));
  EXPECT_TRUE(value == 2.5);
  EXPECT_FALSE(value == 2.25);
  EXPECT_TRUE(value == Holding(2.5));
  EXPECT_FALSE(value == Holding(2.25));
  EXPECT_TRUE(Holding(2) == 2);
  EXPECT_TRUE(Holding(2) == 2L);
}

TEST(ASDouble, IsLessThanALargerNumber) {
  ASDouble const value = Holding(2.5);
  EXPECT_TRUE(value < Double(2.75));
  EXPECT_FALSE(value < Double(2.5));
  EXPECT_TRUE(value < 2.75);
  EXPECT_TRUE(value < 3);
  EXPECT_FALSE(value < 2);
  EXPECT_TRUE(value < Holding(2.75));
}

TEST(ASDouble, NullLiesBeforeMinusInfinityInTheOrder) {
  basic_type const& null = ASDouble();
  basic_type const& lowest = Holding(-kInfinity);
  EXPECT_TRUE(null < lowest);
  EXPECT_FALSE(lowest < null);
  EXPECT_FALSE(lowest == null);
}

TEST(ASDouble, NanStandsAtTheNullInTheOrder) {
  basic_type const& nan = Holding(kNan);
  basic_type const& null = ASDouble();
  basic_type const& number = Holding(0.0);
  EXPECT_TRUE(nan == null);
  EXPECT_TRUE(nan == nan);
  EXPECT_FALSE(nan < null);
  EXPECT_FALSE(null < nan);
  EXPECT_TRUE(nan < number);
  EXPECT_FALSE(number < nan);
}

// ---- Text and raw form ----

TEST(ASDouble, TextHasTheFewestDigitsThatReadBack) {
  EXPECT_EQ(Holding(0.1).getstr(), "0.1");
  EXPECT_EQ(Holding(1234567.891).getstr(), "1234567.891");
  EXPECT_EQ(Holding(1.0 / 3.0).getstr(), "0.3333333333333333");
  EXPECT_EQ(Holding(0.000001).getstr(), "0.000001");
  EXPECT_EQ(Holding(100000).getstr(), "100000");
}

TEST(ASDouble, VeryLargeAndVerySmallNumbersHaveAnExponent) {
  EXPECT_EQ(Holding(1e17).getstr(), "1e+17");
  EXPECT_EQ(Holding(1e-7).getstr(), "1e-07");
}

TEST(ASDouble, NullIsTheTextOfItsStoredNumber) { EXPECT_EQ(ASDouble().getstr(), "-1.7976931348623157e+308"); }

TEST(ASDouble, RawNumberIsSeenThroughVoidptr) {
  ASDouble const value = Holding(2.5);
  double number = 0;
  std::memcpy(&number, value.voidptr(), sizeof number);
  EXPECT_EQ(number, 2.5);
}

TEST(ASDouble, RawWriteIsTaken) {
  ASDouble value;
  double const number = 2.5;
  std::memcpy(value.voidptr(), &number, sizeof number);
  EXPECT_EQ(value.IsNull(), 0);
  EXPECT_EQ(value.getstr(), "2.5");
}

TEST(ASDouble, RawWriteOfTheLowestNumberMakesNull) {
  ASDouble value = Holding(2.5);
  std::memcpy(value.voidptr(), &kLowest, sizeof kLowest);
  EXPECT_EQ(value.IsNull(), 1);
}

TEST(ASDouble, NullIsTheBitPatternThatCellsCarry) {
  ASDouble const null;
  std::uint64_t bits = 0;
  std::memcpy(&bits, null.voidptr(), sizeof bits);
  EXPECT_EQ(bits, 0xFFEFFFFFFFFFFFFFu);
}

TEST(ASDouble, ConvertsToItsNumber) {
  double const number = Holding(2.5);
  EXPECT_EQ(number, 2.5);
}

// ---- Compound assignment ----

TEST(ASDouble, CompoundAssignmentOfADouble) {
  ASDouble value = Holding(7);
  EXPECT_EQ((value += Double(0.5)).getstr(), "7.5");
  EXPECT_EQ((value -= Double(2)).getstr(), "5.5");
  EXPECT_EQ((value *= Double(-3)).getstr(), "-16.5");
  EXPECT_EQ((value /= Double(4)).getstr(), "-4.125");
}

TEST(ASDouble, CompoundAssignmentOfAPlainNumber) {
  ASDouble value = Holding(7);
  EXPECT_EQ((value += 0.5).getstr(), "7.5");
  EXPECT_EQ((value -= 2.0).getstr(), "5.5");
  EXPECT_EQ((value *= -3.0).getstr(), "-16.5");
  EXPECT_EQ((value /= 4.0).getstr(), "-4.125");
}

TEST(ASDouble, CompoundAssignmentOfAnInteger) {
  ASDouble value = Holding(7.5);
  EXPECT_EQ((value += 1).getstr(), "8.5");
  EXPECT_EQ((value -= 2L).getstr(), "6.5");
  EXPECT_EQ((value *= 2u).getstr(), "13");
  EXPECT_EQ((value /= 4).getstr(), "3.25");
}

TEST(ASDouble, CompoundAssignmentReturnsTheTarget) {
  ASDouble value = Holding(7);
  EXPECT_EQ(&(value += 5.0), &value);
  EXPECT_EQ(&(value -= 5.0), &value);
  EXPECT_EQ(&(value *= 5.0), &value);
  EXPECT_EQ(&(value /= 5.0), &value);
  EXPECT_EQ(&(value += Double(5)), &value);
  EXPECT_EQ(&(value -= Double(5)), &value);
  EXPECT_EQ(&(value *= Double(5)), &value);
  EXPECT_EQ(&(value /= Double(5)), &value);
}

TEST(ASDouble, CompoundAssignmentTakesItselfAsOperand) {
  ASDouble value = Holding(2.5);
  ASDouble const& itself = value;
  EXPECT_EQ((value += itself).getstr(), "5");
  EXPECT_EQ((value *= itself).getstr(), "25");
  EXPECT_EQ((value /= itself).getstr(), "1");
  EXPECT_EQ((value -= itself).getstr(), "0");
}

TEST(ASDouble, NeutralDoubleWritesNothing) {
  ASDouble const seven = Holding(7);
  EXPECT_TRUE(WritesNothing(seven, [](ASDouble& value) { value += Double(0.0); }));
  EXPECT_TRUE(WritesNothing(seven, [](ASDouble& value) { value -= Double(0.0); }));
  EXPECT_TRUE(WritesNothing(seven, [](ASDouble& value) { value *= Double(1.0); }));
  EXPECT_TRUE(WritesNothing(seven, [](ASDouble& value) { value /= Double(1.0); }));
}

TEST(ASDouble, NeutralPlainNumberWritesNothing) {
  ASDouble const seven = Holding(7);
  EXPECT_TRUE(WritesNothing(seven, [](ASDouble& value) { value += 0.0; }));
  EXPECT_TRUE(WritesNothing(seven, [](ASDouble& value) { value -= 0; }));
  EXPECT_TRUE(WritesNothing(seven, [](ASDouble& value) { value *= 1.0; }));
  EXPECT_TRUE(WritesNothing(seven, [](ASDouble& value) { value /= 1; }));
}

TEST(ASDouble, NullStaysNullUnderNeutralOperands) {
  ASDouble value;
  value += 0.0;
  value -= Double(0.0);
  value *= 1.0;
  value /= Double(1.0);
  EXPECT_EQ(value.IsNull(), 1);
}

TEST(ASDouble, NullStaysNullUnderOtherOperands) {
  ASDouble value;
  value += 5.0;
  EXPECT_EQ(value.IsNull(), 1);
  value -= Double(1);
  EXPECT_EQ(value.IsNull(), 1);
  value *= 0.0;
  EXPECT_EQ(value.IsNull(), 1);
  value /= Double(2);
  EXPECT_EQ(value.IsNull(), 1);
}

TEST(ASDouble, NullOperandGivesNull) {
  ASDouble value = Holding(7);
  value += Double();
  EXPECT_EQ(value.IsNull(), 1);
  value = 7;
  value -= Double();
  EXPECT_EQ(value.IsNull(), 1);
  value = 7;
  value *= Double();
  EXPECT_EQ(value.IsNull(), 1);
  value = 7;
  value /= Double();
  EXPECT_EQ(value.IsNull(), 1);
}

TEST(ASDouble, DivisionByZeroGivesInfinity) {
  ASDouble value = Holding(7);
  value /= 0.0;
  EXPECT_EQ(static_cast<double>(value), kInfinity);
}

TEST(ASDouble, AddsAndMultipliesBesidePlainNumbers) {
  ASDouble const value = Holding(2.5);
  EXPECT_EQ((value + 1).getstr(), "3.5");
  EXPECT_EQ((value - 0.25).getstr(), "2.25");
  EXPECT_EQ((value * 2L).getstr(), "5");
  EXPECT_EQ((value / 2).getstr(), "1.25");
  EXPECT_EQ((-value).getstr(), "-2.5");
}

// ---- Virtual functions ----

TEST(ASDouble, PutsItsOperatorsBehindTrim) {
  using OfDouble = ASDouble& (ASDouble::*)(Double const&);
  using OfPlain = ASDouble& (ASDouble::*)(double);
  EXPECT_EQ(Slot(static_cast<OfDouble>(&ASDouble::operator=)), 15);
  EXPECT_EQ(Slot(static_cast<ASDouble& (ASDouble::*)(ASDouble const&)>(&ASDouble::operator=)), 16);
  EXPECT_EQ(Slot(static_cast<OfDouble>(&ASDouble::operator+=)), 17);
  EXPECT_EQ(Slot(static_cast<OfDouble>(&ASDouble::operator-=)), 18);
  EXPECT_EQ(Slot(static_cast<OfDouble>(&ASDouble::operator*=)), 19);
  EXPECT_EQ(Slot(static_cast<OfDouble>(&ASDouble::operator/=)), 20);
  EXPECT_EQ(Slot(static_cast<OfPlain>(&ASDouble::operator+=)), 21);
  EXPECT_EQ(Slot(static_cast<OfPlain>(&ASDouble::operator-=)), 22);
  EXPECT_EQ(Slot(static_cast<OfPlain>(&ASDouble::operator*=)), 23);
  EXPECT_EQ(Slot(static_cast<OfPlain>(&ASDouble::operator/=)), 24);
}

TEST(ASDouble, OverriddenAssignmentIsReachedThroughTheColumnClass) {
  CountingDouble counting;
  ASDouble& value = counting;
  value = Double(5);
  value = 6.5;
  value = 7;
  EXPECT_EQ(counting.assignments, 3);
  EXPECT_EQ(counting.getstr(), "7");
}

}  // namespace
