#include "corvane/data/int64.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <type_traits>

#include "corvane/data/value/double.h"
#include "corvane/data/value/exception.h"
#include "tests/unit/data/column_probes.h"

using corvane::test::Slot;
using corvane::test::WritesNothing;
using testing::StrEq;
using testing::ThrowsMessage;

namespace {

// An application's column that counts what it is asked to do.
class CountingInt64 : public ASInt64 {
 public:
  using ASInt64::operator=;
  ASInt64& operator=(Int64 const& other) override {
    ++assignments;
    return ASInt64::operator=(other);
  }

  int assignments = 0;
};

ASInt64 Holding(long number) {
  ASInt64 value;
  value = number;
  return value;
}

void WriteRaw(ASInt64& value, long number) { std::memcpy(value.voidptr(), &number, sizeof number); }

// ---- Assignment ----

TEST(ASInt64, TakesAPlainNumber) { EXPECT_EQ(Holding(5000000000).getstr(), "5000000000"); }

TEST(ASInt64, TakesAnInt64) {
  ASInt64 value;
  value = Int64(-5000000000);
  EXPECT_EQ(value.getstr(), "-5000000000");
}

TEST(ASInt64, TakesNumbersOfOtherTypes) {
  ASInt64 value;
  value = 5;
  EXPECT_EQ(value.getstr(), "5");
  value = 4294967295u;
  EXPECT_EQ(value.getstr(), "4294967295");
  value = 8ll;
  EXPECT_EQ(value.getstr(), "8");
}

TEST(ASInt64, TakesTheLimits) {
  EXPECT_EQ(Holding(LONG_MAX).getstr(), "9223372036854775807");
  EXPECT_EQ(Holding(LONG_MIN).getstr(), "-9223372036854775808");
}

TEST(ASInt64, SmallestNumberIsNotNull) { EXPECT_EQ(Holding(LONG_MIN).IsNull(), 0); }

TEST(ASInt64, NumberOutOfRangeThrowsAndChangesNothing) {
  ASInt64 value = Holding(5);
  EXPECT_THAT([&] { value = 9223372036854775808ul; },
              ThrowsMessage<AException>(StrEq("Number is out of range for Int64. ")));
  EXPECT_EQ(value.getstr(), "5");
}

TEST(ASInt64, PlainNumberEndsTheNullState) {
  ASInt64 value;
  value = 0;
  EXPECT_EQ(value.IsNull(), 0);
  EXPECT_EQ(value.getstr(), "0");
}

TEST(ASInt64, SmallestNumberEndsTheNullState) {
  ASInt64 value;
  value = LONG_MIN;
  EXPECT_EQ(value.IsNull(), 0);
}

TEST(ASInt64, AssignedNumberEndsANullStateOverTheSameStoredNumber) {
  ASInt64 value;
  WriteRaw(value, 5);
  value = Int64(5);
  EXPECT_EQ(value.IsNull(), 0);
  EXPECT_EQ(value.getstr(), "5");
}

TEST(ASInt64, AssignedNullInt64MakesNull) {
  ASInt64 value = Holding(5);
  value = Int64();
  EXPECT_EQ(value.IsNull(), 1);
  EXPECT_EQ(value.getstr(), "-9223372036854775808");
}

TEST(ASInt64, AssigningTheNumberItHasWritesNothing) {
  ASInt64 const five = Holding(5);
  EXPECT_TRUE(WritesNothing(five, [](ASInt64& value) { value = Int64(5); }));
  EXPECT_TRUE(WritesNothing(five, [](ASInt64& value) { value = Holding(5); }));
  EXPECT_TRUE(WritesNothing(five, [](ASInt64& value) { value = 5; }));
  EXPECT_TRUE(WritesNothing(five, [](ASInt64& value) { value = 5L; }));
}

TEST(ASInt64, AssigningAnotherNumberWrites) {
  EXPECT_FALSE(WritesNothing(Holding(5), [](ASInt64& value) { value = Int64(6); }));
}

TEST(ASInt64, AssignmentOfAnInt64ReturnsTheTarget) {
  ASInt64 value;
  EXPECT_EQ(&(value = Int64(5)), &value);
  EXPECT_EQ(&(value = 6), &value);
}

// ---- Null state ----

TEST(ASInt64, NullIsTheTextOfTheSmallestNumber) { EXPECT_EQ(ASInt64().getstr(), "-9223372036854775808"); }

TEST(ASInt64, SetNullLeavesNoStaleNumber) {
  ASInt64 value = Holding(5);
  value.SetNull();
  EXPECT_EQ(value.getstr(), "-9223372036854775808");
}

TEST(ASInt64, SetNotNullEndsTheNullState) {
  ASInt64 value;
  WriteRaw(value, 5);
  value.SetNotNull();
  EXPECT_EQ(value.IsNull(), 0);
  EXPECT_EQ(value.getstr(), "5");
}

TEST(ASInt64, RawWriteDoesNotEndTheNullState) {
  ASInt64 value;
  WriteRaw(value, 5);
  EXPECT_EQ(value.IsNull(), 1);
}

TEST(ASInt64, RawNumberUnderNullNeverReachesTheText) {
  ASInt64 value;
  WriteRaw(value, 5);
  EXPECT_EQ(value.getstr(), "-9223372036854775808");
}

TEST(ASInt64, AssignedNullReplacesARawNumberUnderNull) {
  ASInt64 value;
  WriteRaw(value, 5);
  value = Int64();
  long stored = 0;
  std::memcpy(&stored, value.voidptr(), sizeof stored);
  EXPECT_EQ(stored, LONG_MIN);
}

TEST(ASInt64, NullsAreEqualWhateverIsStored) {
  ASInt64 value;
  WriteRaw(value, 5);
  EXPECT_TRUE(value == Int64());
  EXPECT_FALSE(value < Int64());
  EXPECT_FALSE(value == 5L);
}

// ---- Comparison ----

TEST(ASInt64, EqualsTheSameInt64) {
  ASInt64 const value = Holding(5000000000);
  EXPECT_TRUE(value == Int64(5000000000));
  EXPECT_FALSE(value == Int64(705032704));  // its lower 32 bits
  EXPECT_TRUE(value != Int64(5));
}

TEST(ASInt64, EqualsTheSamePlainNumber) {
  ASInt64 const value = Holding(5);
  EXPECT_TRUE(value == 5L);
  EXPECT_FALSE(value == 6L);
  EXPECT_TRUE(value == 5);
  EXPECT_TRUE(value == 5u);
  EXPECT_TRUE(value != 6);
}

TEST(ASInt64, EqualsTheSameColumn) {
  EXPECT_TRUE(Holding(5) == Holding(5));
  EXPECT_FALSE(Holding(5) == Holding(6));
  EXPECT_TRUE(Holding(5) != Holding(6));
}

TEST(ASInt64, NegativeNumberEqualsNoUnsignedOne) { EXPECT_FALSE(Holding(-1) == 18446744073709551615ul); }

TEST(ASInt64, NullEqualsNoPlainNumber) {
  ASInt64 const null;
  EXPECT_FALSE(null == LONG_MIN);
  EXPECT_TRUE(null != LONG_MIN);
  EXPECT_FALSE(null == 0);
}

TEST(ASInt64, IsLessThanALargerNumber) {
  ASInt64 const value = Holding(5000000000);
  EXPECT_TRUE(value < 5000000001L);
  EXPECT_FALSE(value < 5000000000L);
  EXPECT_FALSE(value < 5);
  EXPECT_TRUE(value < Int64(5000000001));
  EXPECT_TRUE(value < Holding(5000000001));
  EXPECT_TRUE(value < 18446744073709551615ul);
}

TEST(ASInt64, NullLiesBeforeTheSmallestNumber) {
  ASInt64 const null;
  EXPECT_TRUE(null < LONG_MIN);
  EXPECT_TRUE(null < Holding(LONG_MIN));
  EXPECT_FALSE(Holding(LONG_MIN) < null);
}

TEST(ASInt64, RawNumberIsSeenThroughVoidptr) {
  ASInt64 const value = Holding(5000000000);
  long number = 0;
  std::memcpy(&number, value.voidptr(), sizeof number);
  EXPECT_EQ(number, 5000000000);
}

TEST(ASInt64, ConvertsToItsNumber) {
  long const number = Holding(5000000000);
  EXPECT_EQ(number, 5000000000);
}

// ---- Compound assignment ----

TEST(ASInt64, CompoundAssignmentOfAnInt64) {
  ASInt64 value = Holding(5000000000);
  EXPECT_EQ((value += Int64(5)).getstr(), "5000000005");
  EXPECT_EQ((value -= Int64(2)).getstr(), "5000000003");
  EXPECT_EQ((value *= Int64(-3)).getstr(), "-15000000009");
  EXPECT_EQ((value /= Int64(4)).getstr(), "-3750000002");
}

TEST(ASInt64, CompoundAssignmentOfAPlainNumber) {
  ASInt64 value = Holding(5000000000);
  EXPECT_EQ((value += 5L).getstr(), "5000000005");
  EXPECT_EQ((value -= 2L).getstr(), "5000000003");
  EXPECT_EQ((value *= -3L).getstr(), "-15000000009");
  EXPECT_EQ((value /= 4L).getstr(), "-3750000002");
}

TEST(ASInt64, CompoundAssignmentOfANumberOfAnotherType) {
  ASInt64 value = Holding(7);
  EXPECT_EQ((value += 5).getstr(), "12");
  EXPECT_EQ((value -= 2u).getstr(), "10");
  EXPECT_EQ((value *= 2.5).getstr(), "25");
  EXPECT_EQ((value /= 2).getstr(), "12");
}

TEST(ASInt64, CompoundAssignmentReturnsTheTarget) {
  ASInt64 value = Holding(7);
  EXPECT_EQ(&(value += 5L), &value);
  EXPECT_EQ(&(value -= 5L), &value);
  EXPECT_EQ(&(value *= 5L), &value);
  EXPECT_EQ(&(value /= 5L), &value);
  EXPECT_EQ(&(value += Int64(5)), &value);
  EXPECT_EQ(&(value -= Int64(5)), &value);
  EXPECT_EQ(&(value *= Int64(5)), &value);
  EXPECT_EQ(&(value /= Int64(5)), &value);
}

TEST(ASInt64, CompoundAssignmentTakesItselfAsOperand) {
  ASInt64 value = Holding(7);
  ASInt64 const& itself = value;
  EXPECT_EQ((value += itself).getstr(), "14");
  EXPECT_EQ((value *= itself).getstr(), "196");
  EXPECT_EQ((value /= itself).getstr(), "1");
  EXPECT_EQ((value -= itself).getstr(), "0");
}

TEST(ASInt64, NeutralInt64WritesNothing) {
  ASInt64 const seven = Holding(7);
  EXPECT_TRUE(WritesNothing(seven, [](ASInt64& value) { value += Int64(0); }));
  EXPECT_TRUE(WritesNothing(seven, [](ASInt64& value) { value -= Int64(0); }));
  EXPECT_TRUE(WritesNothing(seven, [](ASInt64& value) { value *= Int64(1); }));
  EXPECT_TRUE(WritesNothing(seven, [](ASInt64& value) { value /= Int64(1); }));
}

TEST(ASInt64, NeutralPlainNumberWritesNothing) {
  ASInt64 const seven = Holding(7);
  EXPECT_TRUE(WritesNothing(seven, [](ASInt64& value) { value += 0L; }));
  EXPECT_TRUE(WritesNothing(seven, [](ASInt64& value) { value -= 0L; }));
  EXPECT_TRUE(WritesNothing(seven, [](ASInt64& value) { value *= 1L; }));
  EXPECT_TRUE(WritesNothing(seven, [](ASInt64& value) { value /= 1L; }));
}

TEST(ASInt64, NullStaysNullUnderNeutralOperands) {
  ASInt64 value;
  value += 0L;
  value -= Int64(0);
  value *= 1L;
  value /= Int64(1);
  EXPECT_EQ(value.IsNull(), 1);
}

TEST(ASInt64, NullStaysNullUnderOtherOperands) {
  ASInt64 value;
  value += 5L;
  EXPECT_EQ(value.IsNull(), 1);
  value -= Int64(1);
  EXPECT_EQ(value.IsNull(), 1);
  value *= 0L;
  EXPECT_EQ(value.IsNull(), 1);
  value /= Int64(-1);
  EXPECT_EQ(value.IsNull(), 1);
}

TEST(ASInt64, NullOperandGivesNull) {
  ASInt64 value = Holding(7);
  value += Int64();
  EXPECT_EQ(value.IsNull(), 1);
  value = 7;
  value -= Int64();
  EXPECT_EQ(value.IsNull(), 1);
  value = 7;
  value *= Int64();
  EXPECT_EQ(value.IsNull(), 1);
  value = 7;
  value /= Int64();
  EXPECT_EQ(value.IsNull(), 1);
}

TEST(ASInt64, NullFromArithmeticLeavesNoStaleNumber) {
  ASInt64 value = Holding(7);
  value += Int64();
  EXPECT_EQ(value.getstr(), "-9223372036854775808");
}

TEST(ASInt64, DivisionByZeroGivesNull) {
  ASInt64 value = Holding(7);
  value /= 0L;
  EXPECT_EQ(value.IsNull(), 1);
  value = 7;
  value /= Int64(0);
  EXPECT_EQ(value.IsNull(), 1);
}

TEST(ASInt64, SmallestNumberDividedByMinusOneGivesNull) {
  ASInt64 value = Holding(LONG_MIN);
  value /= -1L;
  EXPECT_EQ(value.IsNull(), 1);
}

TEST(ASInt64, OverflowWraps) {
  ASInt64 value = Holding(LONG_MAX);
  EXPECT_EQ((value += 2L).getstr(), "-9223372036854775807");
  EXPECT_EQ((value -= 2L).getstr(), "9223372036854775807");
  EXPECT_EQ((value *= 2L).getstr(), "-2");
}

// ---- Steps ----

TEST(ASInt64, PrefixStepReturnsTheColumn) {
  ASInt64 value = Holding(7);
  EXPECT_EQ(&++value, &value);
  EXPECT_EQ(value.getstr(), "8");
  EXPECT_EQ(&--value, &value);
  EXPECT_EQ(value.getstr(), "7");
}

TEST(ASInt64, PostfixStepReturnsThePreviousNumberAsAPlainValue) {
  ASInt64 value = Holding(7);
  static_assert(std::is_same<decltype(value++), Int64>::value, "");
  static_assert(std::is_same<decltype(value--), Int64>::value, "");
  EXPECT_EQ((value++).getstr(), "7");
  EXPECT_EQ(value.getstr(), "8");
  EXPECT_EQ((value--).getstr(), "8");
  EXPECT_EQ(value.getstr(), "7");
}

TEST(ASInt64, NullStaysNullUnderSteps) {
  ASInt64 value;
  ++value;
  EXPECT_EQ(value.IsNull(), 1);
  --value;
  EXPECT_EQ(value.IsNull(), 1);
  EXPECT_EQ((value++).IsNull(), 1);
  EXPECT_EQ((value--).IsNull(), 1);
  EXPECT_EQ(value.IsNull(), 1);
}

TEST(ASInt64, AddsAndMultipliesBesidePlainNumbers) {
  ASInt64 const value = Holding(7);
  EXPECT_EQ((value + 1).getstr(), "8");
  EXPECT_EQ((value - 1L).getstr(), "6");
  EXPECT_EQ((value * 2u).getstr(), "14");
  EXPECT_EQ((value / 2).getstr(), "3");
  EXPECT_EQ((value * 0.5).getstr(), "3.5");
  EXPECT_EQ((-value).getstr(), "-7");
}

// ---- Virtual functions ----

TEST(ASInt64, PutsItsOperatorsBehindTrim) {
  using OfInt64 = ASInt64& (ASInt64::*)(Int64 const&);
  using OfPlain = ASInt64& (ASInt64::*)(long);
  EXPECT_EQ(Slot(static_cast<OfInt64>(&ASInt64::operator=)), 15);
  EXPECT_EQ(Slot(static_cast<ASInt64& (ASInt64::*)(ASInt64 const&)>(&ASInt64::operator=)), 16);
  EXPECT_EQ(Slot(static_cast<bool (ASInt64::*)(Int64 const&) const>(&ASInt64::operator==)), 17);
  EXPECT_EQ(Slot(static_cast<bool (ASInt64::*)(long) const>(&ASInt64::operator==)), 18);
  EXPECT_EQ(Slot(static_cast<ASInt64& (ASInt64::*)()>(&ASInt64::operator++)), 19);
  EXPECT_EQ(Slot(static_cast<Int64 (ASInt64::*)(int)>(&ASInt64::operator++)), 20);
  EXPECT_EQ(Slot(static_cast<ASInt64& (ASInt64::*)()>(&ASInt64::operator--)), 21);
  EXPECT_EQ(Slot(static_cast<Int64 (ASInt64::*)(int)>(&ASInt64::operator--)), 22);
  EXPECT_EQ(Slot(static_cast<OfInt64>(&ASInt64::operator+=)), 23);
  EXPECT_EQ(Slot(static_cast<OfInt64>(&ASInt64::operator-=)), 24);
  EXPECT_EQ(Slot(static_cast<OfInt64>(&ASInt64::operator*=)), 25);
  EXPECT_EQ(Slot(static_cast<OfInt64>(&ASInt64::operator/=)), 26);
  EXPECT_EQ(Slot(static_cast<OfPlain>(&ASInt64::operator+=)), 27);
  EXPECT_EQ(Slot(static_cast<OfPlain>(&ASInt64::operator-=)), 28);
  EXPECT_EQ(Slot(static_cast<OfPlain>(&ASInt64::operator*=)), 29);
  EXPECT_EQ(Slot(static_cast<OfPlain>(&ASInt64::operator/=)), 30);
}

TEST(ASInt64, OverriddenAssignmentIsReachedThroughTheColumnClass) {
  CountingInt64 counting;
  ASInt64& value = counting;
  value = Int64(5);
  value = 6;
  value = 7L;
  EXPECT_EQ(counting.assignments, 3);
  EXPECT_EQ(counting.getstr(), "7");
}

}  // namespace
