#include "corvane/data/dcurrency.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

#include "tests/unit/data/column_probes.h"

using corvane::test::Slot;
using corvane::test::WritesNothing;

namespace {

// An application's column that counts what it is asked to do.
class CountingCurrency : public ASDCurrency {
 public:
  using ASDCurrency::operator=;
  ASDCurrency& operator=(Double const& other) override {
    ++assignments;
    return ASDCurrency::operator=(other);
  }

  int assignments = 0;
};

ASDCurrency Holding(double number) {
  ASDCurrency value;
  value = number;
  return value;
}

ASDouble PlainHolding(double number) {
  ASDouble value;
  value = number;
  return value;
}

TEST(ASDCurrency, TakesAPlainNumber) { EXPECT_EQ(Holding(19.99).getstr(), "19.99"); }

TEST(ASDCurrency, TakesADouble) {
  ASDCurrency value;
  value = Double(19.99);
  EXPECT_EQ(value.getstr(), "19.99");
}

TEST(ASDCurrency, TakesAnASDouble) {
  ASDCurrency value;
  value = PlainHolding(19.99);
  EXPECT_EQ(value.getstr(), "19.99");
}

TEST(ASDCurrency, TakesAnInteger) {
  ASDCurrency value;
  value = 20;
  EXPECT_EQ(value.getstr(), "20");
}

TEST(ASDCurrency, TakesNullFromAnASDouble) {
  ASDCurrency value = Holding(19.99);
  value = ASDouble();
  EXPECT_EQ(value.IsNull(), 1);
}

TEST(ASDCurrency, AssignmentReturnsTheCurrency) {
  ASDCurrency value;
  ASDCurrency& assigned = value = Double(19.99);
  EXPECT_EQ(&assigned, &value);
}

TEST(ASDCurrency, AssigningTheAmountItHasWritesNothing) {
  ASDCurrency const value = Holding(19.99);
  EXPECT_TRUE(WritesNothing(value, [](ASDCurrency& target) { target = Double(19.99); }));
  EXPECT_TRUE(WritesNothing(value, [](ASDCurrency& target) { target = PlainHolding(19.99); }));
  EXPECT_TRUE(WritesNothing(value, [](ASDCurrency& target) { target = Holding(19.99); }));
  EXPECT_TRUE(WritesNothing(value, [](ASDCurrency& target) { target = 19.99; }));
}

TEST(ASDCurrency, AssigningAnotherAmountWrites) {
  EXPECT_FALSE(WritesNothing(Holding(19.99), [](ASDCurrency& target) { target = 19.98; }));
}

TEST(ASDCurrency, NeutralOperandWritesNothing) {
  ASDCurrency const value = Holding(19.99);
  EXPECT_TRUE(WritesNothing(value, [](ASDCurrency& target) { target += 0.0; }));
  EXPECT_TRUE(WritesNothing(value, [](ASDCurrency& target) { target -= Double(0.0); }));
  EXPECT_TRUE(WritesNothing(value, [](ASDCurrency& target) { target *= 1; }));
  EXPECT_TRUE(WritesNothing(value, [](ASDCurrency& target) { target /= Double(1.0); }));
}

TEST(ASDCurrency, CompoundAssignment) {
  ASDCurrency value = Holding(20);
  value += 0.5;
  EXPECT_EQ(value.getstr(), "20.5");
  value -= Double(10);
  EXPECT_EQ(value.getstr(), "10.5");
  value *= 2;
  EXPECT_EQ(value.getstr(), "21");
  value /= 4.0;
  EXPECT_EQ(value.getstr(), "5.25");
}

TEST(ASDCurrency, NullStaysNullUnderArithmetic) {
  ASDCurrency value;
  value += 5.0;
  value *= 0.0;
  EXPECT_EQ(value.IsNull(), 1);
}

TEST(ASDCurrency, EqualsTheSameAmount) {
  ASDCurrency const value = Holding(19.5);
  EXPECT_TRUE(value == 19.5);
  EXPECT_TRUE(value == Double(19.5));
  EXPECT_TRUE(value == Holding(19.5));
  EXPECT_TRUE(value == PlainHolding(19.5));
  EXPECT_FALSE(value == Holding(19.25));
  EXPECT_TRUE(Holding(20) == 20);
}

TEST(ASDCurrency, IsLessThanALargerAmount) {
  ASDCurrency const value = Holding(19.5);
  EXPECT_TRUE(value < 19.75);
  EXPECT_TRUE(value < Holding(20));
  EXPECT_FALSE(value < Holding(19.5));
}

TEST(ASDCurrency, NullIsTheBitPatternThatCellsCarry) {
  ASDCurrency const null;
  std::uint64_t bits = 0;
  std::memcpy(&bits, null.voidptr(), sizeof bits);
  EXPECT_EQ(bits, 0xFFEFFFFFFFFFFFFFu);
}

TEST(ASDCurrency, AssignedThroughTheDoubleClassItTakesTheAmount) {
  ASDCurrency price;
  ASDouble& value = price;
  value = Double(19.99);
  EXPECT_EQ(price.getstr(), "19.99");
  value = PlainHolding(20.01);
  EXPECT_EQ(price.getstr(), "20.01");
}

TEST(ASDCurrency, OverriddenAssignmentIsReachedThroughTheDoubleClass) {
  CountingCurrency counting;
  ASDouble& value = counting;
  value = Double(5);
  value = 6.5;
  EXPECT_EQ(counting.assignments, 2);
  EXPECT_EQ(counting.getstr(), "6.5");
}

TEST(ASDCurrency, OverridesTheAssignmentsOfTheDoubleInPlace) {
  EXPECT_EQ(Slot(static_cast<ASDCurrency& (ASDCurrency::*)(Double const&)>(&ASDCurrency::operator=)), 15);
  EXPECT_EQ(Slot(static_cast<ASDCurrency& (ASDCurrency::*)(ASDouble const&)>(&ASDCurrency::operator=)), 16);
}

TEST(ASDCurrency, PutsItsOwnAssignmentBehindThoseOfTheDouble) {
  EXPECT_EQ(Slot(static_cast<ASDCurrency& (ASDCurrency::*)(ASDCurrency const&)>(&ASDCurrency::operator=)), 25);
}

}  // namespace
