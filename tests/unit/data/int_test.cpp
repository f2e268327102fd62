#include "corvane/data/int.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <type_traits>

#include "corvane/data/time.h"
#include "corvane/data/value/double.h"
#include "corvane/data/value/exception.h"
#include "tests/unit/data/column_probes.h"

using corvane::test::Slot;
using corvane::test::WritesNothing;
using testing::StrEq;
using testing::ThrowsMessage;

namespace {

// An application's column that counts what it is asked to do.
class CountingInt : public ASInt {
 public:
  using ASInt::operator=;
  using ASInt::operator+=;
  ASInt& operator=(Int const& other) override {
    ++assignments;
    return ASInt::operator=(other);
  }
  ASInt& operator+=(Int const& other) override {
    ++additions;
    return ASInt::operator+=(other);
  }

  int assignments = 0;
  int additions = 0;
};

ASInt Holding(int number) {
  ASInt value;
  value = number;
  return value;
}

// ---- Assignment ----

TEST(ASInt, TakesAPlainNumber) {
  ASInt value;
  value = 5;
  EXPECT_EQ(value.getstr(), "5");
}

TEST(ASInt, TakesAnInt) {
  ASInt value;
  value = Int(-5);
  EXPECT_EQ(value.getstr(), "-5");
}

TEST(ASInt, TakesNumbersOfOtherTypes) {
  ASInt value;
  value = 5L;
  EXPECT_EQ(value.getstr(), "5");
  value = 6u;
  EXPECT_EQ(value.getstr(), "6");
  value = static_cast<short>(-7);
  EXPECT_EQ(value.getstr(), "-7");
  value = 8ull;
  EXPECT_EQ(value.getstr(), "8");
}

TEST(ASInt, TakesTheLimits) {
  EXPECT_EQ(Holding(2147483647).getstr(), "2147483647");
  EXPECT_EQ(Holding(-2147483647).getstr(), "-2147483647");
}

TEST(ASInt, SmallestNumberIsNull) {
  ASInt value = Holding(5);
  value = INT_MIN;
  EXPECT_EQ(value.IsNull(), 1);
  EXPECT_EQ(value.IsNotNull(), 0);
}

TEST(ASInt, NumberOutOfRangeThrowsAndChangesNothing) {
  ASInt value = Holding(5);
  EXPECT_THAT([&] { value = 2147483648L; }, ThrowsMessage<AException>(StrEq("Number is out of range for Int. ")));
  EXPECT_THAT([&] { value = 4294967295u; }, ThrowsMessage<AException>(StrEq("Number is out of range for Int. ")));
  EXPECT_EQ(value.getstr(), "5");
}

TEST(ASInt, AssigningTheNumberItHasWritesNothing) {
  ASInt const five = Holding(5);
  EXPECT_TRUE(WritesNothing(five, [](ASInt& value) { value = Int(5); }));
  EXPECT_TRUE(WritesNothing(five, [](ASInt& value) { value = Holding(5); }));
  EXPECT_TRUE(WritesNothing(five, [](ASInt& value) { value = 5; }));
  EXPECT_TRUE(WritesNothing(five, [](ASInt& value) { value = 5L; }));
}

TEST(ASInt, AssigningNullToNullWritesNothing) {
  EXPECT_TRUE(WritesNothing(ASInt(), [](ASInt& value) { value = ASInt(); }));
}

TEST(ASInt, AssigningAnotherNumberWrites) {
  EXPECT_FALSE(WritesNothing(Holding(5), [](ASInt& value) { value = Int(6); }));
}

TEST(ASInt, AssignmentOfAnIntReturnsTheTarget) {
  ASInt value;
  EXPECT_EQ(&(value = Int(5)), &value);
  EXPECT_EQ(&(value = 6), &value);
}

TEST(ASInt, TakesTheNumberOfATime) {
  ASInt value;
  value = ASTime(1088689500);
  EXPECT_EQ(value.getstr(), "1088689500");
}

// ---- Comparison ----

TEST(ASInt, EqualsTheSameInt) {
  ASInt const value = Holding(5);
  EXPECT_TRUE(value == Int(5));
  EXPECT_FALSE(value == Int(6));
}

TEST(ASInt, EqualsTheSamePlainNumber) {
  ASInt const value = Holding(5);
  EXPECT_TRUE(value == 5);
  EXPECT_FALSE(value == 6);
  EXPECT_TRUE(value != 6);
}

TEST(ASInt, EqualsTheSameColumn) {
  EXPECT_TRUE(Holding(5) == Holding(5));
  EXPECT_FALSE(Holding(5) == Holding(6));
}

TEST(ASInt, EqualsTheSameNumberOfAnotherType) {
  ASInt const value = Holding(5);
  EXPECT_TRUE(value == 5L);
  EXPECT_TRUE(value == 5u);
  EXPECT_TRUE(value == 5.0);
  EXPECT_FALSE(value == 5.5);
  EXPECT_FALSE(value == 4294967301L);  // 5 in the lower 32 bits
}

TEST(ASInt, NegativeNumberEqualsNoUnsignedOne) { EXPECT_FALSE(Holding(-1) == 4294967295u); }

TEST(ASInt, IsLessThanALargerNumber) {
  ASInt const value = Holding(5);
  EXPECT_TRUE(value < 6);
  EXPECT_FALSE(value < 5);
  EXPECT_TRUE(value < Int(6));
  EXPECT_FALSE(value < Int(5));
  EXPECT_TRUE(value < Holding(6));
  EXPECT_TRUE(value < 4294967296L);
  EXPECT_TRUE(value < 5.5);
}

TEST(ASInt, ComparesWithATimeThroughTheRoot) {
  basic_type const& time = ASTime(5);
  basic_type const& five = Holding(5);
  basic_type const& four = Holding(4);
  EXPECT_TRUE(five == time);
  EXPECT_TRUE(four < time);
  EXPECT_FALSE(time < five);
}

// ---- Text and raw form ----

TEST(ASInt, NullIsTheTextOfItsStoredNumber) { EXPECT_EQ(ASInt().getstr(), "-2147483648"); }

TEST(ASInt, RawNumberIsSeenThroughVoidptr) {
  ASInt const value = Holding(5);
  int number = 0;
  std::memcpy(&number, value.voidptr(), sizeof number);
  EXPECT_EQ(number, 5);
}

TEST(ASInt, RawWriteIsTaken) {
  ASInt value;
  int const number = 5;
  std::memcpy(value.voidptr(), &number, sizeof number);
  EXPECT_EQ(value.IsNull(), 0);
  EXPECT_EQ(value.getstr(), "5");
}

TEST(ASInt, RawWriteOfTheSmallestNumberMakesNull) {
  ASInt value = Holding(5);
  int const number = INT_MIN;
  std::memcpy(value.voidptr(), &number, sizeof number);
  EXPECT_EQ(value.IsNull(), 1);
}

TEST(ASInt, ConvertsToItsNumber) {
  int const number = Holding(5);
  EXPECT_EQ(number, 5);
}

// ---- Compound assignment ----

TEST(ASInt, CompoundAssignmentOfAnInt) {
  ASInt value = Holding(7);
  EXPECT_EQ((value += Int(5)).getstr(), "12");
  EXPECT_EQ((value -= Int(2)).getstr(), "10");
  EXPECT_EQ((value *= Int(-3)).getstr(), "-30");
  EXPECT_EQ((value /= Int(4)).getstr(), "-7");
}

TEST(ASInt, CompoundAssignmentOfAPlainNumber) {
  ASInt value = Holding(7);
  EXPECT_EQ((value += 5).getstr(), "12");
  EXPECT_EQ((value -= 2).getstr(), "10");
  EXPECT_EQ((value *= -3).getstr(), "-30");
  EXPECT_EQ((value /= 4).getstr(), "-7");
}

TEST(ASInt, CompoundAssignmentOfANumberOfAnotherType) {
  ASInt value = Holding(7);
  EXPECT_EQ((value += 5L).getstr(), "12");
  EXPECT_EQ((value -= 2u).getstr(), "10");
  EXPECT_EQ((value *= 2.5).getstr(), "25");
  EXPECT_EQ((value /= 2.0).getstr(), "12");
}

TEST(ASInt, CompoundAssignmentOutOfRangeThrowsAndChangesNothing) {
  ASInt value = Holding(7);
  EXPECT_THAT([&] { value += 2147483648L; }, ThrowsMessage<AException>(StrEq("Number is out of range for Int. ")));
  EXPECT_THAT([&] { value *= 1e10; }, ThrowsMessage<AException>(StrEq("Number is out of range for Int. ")));
  EXPECT_EQ(value.getstr(), "7");
}

TEST(ASInt, CompoundAssignmentReturnsTheTarget) {
  ASInt value = Holding(7);
  EXPECT_EQ(&(value += 5), &value);
  EXPECT_EQ(&(value -= 5), &value);
  EXPECT_EQ(&(value *= 5), &value);
  EXPECT_EQ(&(value /= 5), &value);
  EXPECT_EQ(&(value += Int(5)), &value);
  EXPECT_EQ(&(value -= Int(5)), &value);
  EXPECT_EQ(&(value *= Int(5)), &value);
  EXPECT_EQ(&(value /= Int(5)), &value);
}

TEST(ASInt, CompoundAssignmentTakesItselfAsOperand) {
  ASInt value = Holding(7);
  ASInt const& itself = value;
  EXPECT_EQ((value += itself).getstr(), "14");
  EXPECT_EQ((value *= itself).getstr(), "196");
  EXPECT_EQ((value /= itself).getstr(), "1");
  EXPECT_EQ((value -= itself).getstr(), "0");
}

TEST(ASInt, NeutralIntWritesNothing) {
  ASInt const seven = Holding(7);
  EXPECT_TRUE(WritesNothing(seven, [](ASInt& value) { value += Int(0); }));
  EXPECT_TRUE(WritesNothing(seven, [](ASInt& value) { value -= Int(0); }));
  EXPECT_TRUE(WritesNothing(seven, [](ASInt& value) { value *= Int(1); }));
  EXPECT_TRUE(WritesNothing(seven, [](ASInt& value) { value /= Int(1); }));
}

TEST(ASInt, NeutralPlainNumberWritesNothing) {
  ASInt const seven = Holding(7);
  EXPECT_TRUE(WritesNothing(seven, [](ASInt& value) { value += 0; }));
  EXPECT_TRUE(WritesNothing(seven, [](ASInt& value) { value -= 0; }));
  EXPECT_TRUE(WritesNothing(seven, [](ASInt& value) { value *= 1; }));
  EXPECT_TRUE(WritesNothing(seven, [](ASInt& value) { value /= 1; }));
}

TEST(ASInt, NullStaysNullUnderNeutralOperands) {
  ASInt value;
  value += 0;
  value -= Int(0);
  value *= 1;
  value /= Int(1);
  EXPECT_EQ(value.IsNull(), 1);
}

TEST(ASInt, NullStaysNullUnderOtherOperands) {
  ASInt value;
  value += 5;
  EXPECT_EQ(value.IsNull(), 1);
  value -= Int(1);
  EXPECT_EQ(value.IsNull(), 1);
  value *= 0;
  EXPECT_EQ(value.IsNull(), 1);
  value /= Int(-1);
  EXPECT_EQ(value.IsNull(), 1);
  value += 2.5;
  EXPECT_EQ(value.IsNull(), 1);
}

TEST(ASInt, NullOperandGivesNull) {
  ASInt value = Holding(7);
  value += Int();
  EXPECT_EQ(value.IsNull(), 1);
  value = 7;
  value -= Int();
  EXPECT_EQ(value.IsNull(), 1);
  value = 7;
  value *= Int();
  EXPECT_EQ(value.IsNull(), 1);
  value = 7;
  value /= Int();
  EXPECT_EQ(value.IsNull(), 1);
}

TEST(ASInt, DivisionByZeroGivesNull) {
  ASInt value = Holding(7);
  value /= 0;
  EXPECT_EQ(value.IsNull(), 1);
  value = 7;
  value /= Int(0);
  EXPECT_EQ(value.IsNull(), 1);
}

TEST(ASInt, OverflowWraps) {
  ASInt value = Holding(2147483647);
  EXPECT_EQ((value += 2).getstr(), "-2147483647");
  EXPECT_EQ((value -= 2).getstr(), "2147483647");
  EXPECT_EQ((value *= 2).getstr(), "-2");
}

// ---- Steps ----

TEST(ASInt, PrefixStepReturnsTheColumn) {
  ASInt value = Holding(7);
  EXPECT_EQ(&++value, &value);
  EXPECT_EQ(value.getstr(), "8");
  EXPECT_EQ(&--value, &value);
  EXPECT_EQ(value.getstr(), "7");
}

TEST(ASInt, PostfixStepReturnsThePreviousNumberAsAPlainValue) {
  ASInt value = Holding(7);
  static_assert(std::is_same<decltype(value++), Int>::value, "");
  static_assert(std::is_same<decltype(value--), Int>::value, "");
  EXPECT_EQ((value++).getstr(), "7");
  EXPECT_EQ(value.getstr(), "8");
  EXPECT_EQ((value--).getstr(), "8");
  EXPECT_EQ(value.getstr(), "7");
}

TEST(ASInt, NullStaysNullUnderSteps) {
  ASInt value;
  ++value;
  EXPECT_EQ(value.IsNull(), 1);
  --value;
  EXPECT_EQ(value.IsNull(), 1);
  EXPECT_EQ((value++).IsNull(), 1);
  EXPECT_EQ((value--).IsNull(), 1);
  EXPECT_EQ(value.IsNull(), 1);
}

// ---- Arithmetic beside plain numbers ----

TEST(ASInt, AddsAndMultipliesBesidePlainNumbers) {
  ASInt const value = Holding(7);
  EXPECT_EQ((value + 1).getstr(), "8");
  EXPECT_EQ((value - 1L).getstr(), "6");
  EXPECT_EQ((value * 2u).getstr(), "14");
  EXPECT_EQ((value / 2).getstr(), "3");
  EXPECT_EQ((value * 0.5).getstr(), "3.5");
  EXPECT_EQ((-value).getstr(), "-7");
}

TEST(ASInt, NullGivesNullBesidePlainNumbers) {
  ASInt const null;
  EXPECT_EQ((null + 1).IsNull(), 1);
  EXPECT_EQ((null * 0.5).IsNull(), 1);
  EXPECT_EQ((-null).IsNull(), 1);
}

// ---- Virtual functions ----

TEST(ASInt, PutsItsOperatorsBehindTrim) {
  using OfInt = ASInt& (ASInt::*)(Int const&);
  using OfPlain = ASInt& (ASInt::*)(int);
  EXPECT_EQ(Slot(static_cast<OfInt>(&ASInt::operator=)), 15);
  EXPECT_EQ(Slot(static_cast<ASInt& (ASInt::*)(ASInt const&)>(&ASInt::operator=)), 16);
  EXPECT_EQ(Slot(static_cast<bool (ASInt::*)(Int const&) const>(&ASInt::operator==)), 17);
  EXPECT_EQ(Slot(static_cast<bool (ASInt::*)(int) const>(&ASInt::operator==)), 18);
  EXPECT_EQ(Slot(static_cast<ASInt& (ASInt::*)()>(&ASInt::operator++)), 19);
  EXPECT_EQ(Slot(static_cast<Int (ASInt::*)(int)>(&ASInt::operator++)), 20);
  EXPECT_EQ(Slot(static_cast<ASInt& (ASInt::*)()>(&ASInt::operator--)), 21);
  EXPECT_EQ(Slot(static_cast<Int (ASInt::*)(int)>(&ASInt::operator--)), 22);
  EXPECT_EQ(Slot(static_cast<OfInt>(&ASInt::operator+=)), 23);
  EXPECT_EQ(Slot(static_cast<OfInt>(&ASInt::operator-=)), 24);
  EXPECT_EQ(Slot(static_cast<OfInt>(&ASInt::operator*=)), 25);
  EXPECT_EQ(Slot(static_cast<OfInt>(&ASInt::operator/=)), 26);
  EXPECT_EQ(Slot(static_cast<OfPlain>(&ASInt::operator+=)), 27);
  EXPECT_EQ(Slot(static_cast<OfPlain>(&ASInt::operator-=)), 28);
  EXPECT_EQ(Slot(static_cast<OfPlain>(&ASInt::operator*=)), 29);
  EXPECT_EQ(Slot(static_cast<OfPlain>(&ASInt::operator/=)), 30);
}

TEST(ASInt, OverriddenAssignmentIsReachedThroughTheColumnClass) {
  CountingInt counting;
  ASInt& value = counting;
  value = Int(5);
  value = 6;
  value = 7L;
  EXPECT_EQ(counting.assignments, 3);
  EXPECT_EQ(counting.getstr(), "7");
}

TEST(ASInt, OverriddenAdditionIsReachedThroughTheColumnClass) {
  CountingInt counting;
  counting = 5;
  ASInt& value = counting;
  value += Int(1);
  EXPECT_EQ(counting.additions, 1);
  EXPECT_EQ(counting.getstr(), "6");
}

}  // namespace
