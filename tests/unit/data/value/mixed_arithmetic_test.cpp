#include "corvane/data/value/mixed_arithmetic.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <type_traits>

#include "corvane/data/value/double.h"
#include "corvane/data/value/exception.h"
#include "corvane/data/value/int.h"
#include "corvane/data/value/int64.h"

namespace {

// The message of the AException that `action` throws.
template <class Action>
std::string MessageOf(Action action) {
  try {
    action();
  } catch (AException const& exception) {
    return exception.what();
  }
  return "nothing thrown";
}

// A value of one of the three types beside a number of every other arithmetic type, and beside a value of another.

template <class Number>
constexpr char const* kNameOf = "";
template <>
constexpr char const* kNameOf<char> = "Char";
template <>
constexpr char const* kNameOf<signed char> = "SignedChar";
template <>
constexpr char const* kNameOf<unsigned char> = "UnsignedChar";
template <>
constexpr char const* kNameOf<short> = "Short";
template <>
constexpr char const* kNameOf<unsigned short> = "UnsignedShort";
template <>
constexpr char const* kNameOf<int> = "Int";
template <>
constexpr char const* kNameOf<unsigned> = "Unsigned";
template <>
constexpr char const* kNameOf<long> = "Long";
template <>
constexpr char const* kNameOf<unsigned long> = "UnsignedLong";
template <>
constexpr char const* kNameOf<long long> = "LongLong";
template <>
constexpr char const* kNameOf<unsigned long long> = "UnsignedLongLong";
template <>
constexpr char const* kNameOf<float> = "Float";
template <>
constexpr char const* kNameOf<double> = "Double";
template <>
constexpr char const* kNameOf<long double> = "LongDouble";
template <>
constexpr char const* kNameOf<Int> = "IntValue";
template <>
constexpr char const* kNameOf<Int64> = "Int64Value";
template <>
constexpr char const* kNameOf<Double> = "DoubleValue";

template <class Value, class Number>
struct Pair {
  using ValueType = Value;
  using NumberType = Number;
};

template <class PairType>
class MixedPair : public testing::Test {
 protected:
  using Value = typename PairType::ValueType;
  using Number = typename PairType::NumberType;
  using Scalar = typename Value::Scalar;

  // Both fit every arithmetic type.
  Value const eight_{static_cast<Scalar>(8)};
  Number const two_ = static_cast<Number>(2);
};

using MixedPairs = testing::Types<
    Pair<Int, signed char>, Pair<Int, unsigned char>, Pair<Int, char>, Pair<Int, short>, Pair<Int, unsigned short>,
    Pair<Int, unsigned>, Pair<Int, long>, Pair<Int, unsigned long>, Pair<Int, long long>, Pair<Int, unsigned long long>,
    Pair<Int, float>, Pair<Int, double>, Pair<Int, long double>, Pair<Int64, signed char>, Pair<Int64, unsigned char>,
    Pair<Int64, char>, Pair<Int64, short>, Pair<Int64, unsigned short>, Pair<Int64, int>, Pair<Int64, unsigned>,
    Pair<Int64, unsigned long>, Pair<Int64, long long>, Pair<Int64, unsigned long long>, Pair<Int64, float>,
    Pair<Int64, double>, Pair<Int64, long double>, Pair<Double, signed char>, Pair<Double, unsigned char>,
    Pair<Double, char>, Pair<Double, short>, Pair<Double, unsigned short>, Pair<Double, int>, Pair<Double, unsigned>,
    Pair<Double, long>, Pair<Double, unsigned long>, Pair<Double, long long>, Pair<Double, unsigned long long>,
    Pair<Double, float>, Pair<Double, long double>, Pair<Int, Int64>, Pair<Int, Double>, Pair<Int64, Int>,
    Pair<Int64, Double>, Pair<Double, Int>, Pair<Double, Int64>>;

// "Int64BesideUnsignedLong".
struct PairNames {
  template <class PairType>
  static std::string GetName(int) {
    return std::string(PairType::ValueType::kName) + "Beside" + kNameOf<typename PairType::NumberType>;
  }
};
TYPED_TEST_SUITE(MixedPair, MixedPairs, PairNames);

TYPED_TEST(MixedPair, Adds) { EXPECT_EQ((this->eight_ + this->two_).getstr(), "10"); }

TYPED_TEST(MixedPair, Subtracts) { EXPECT_EQ((this->eight_ - this->two_).getstr(), "6"); }

TYPED_TEST(MixedPair, Multiplies) { EXPECT_EQ((this->eight_ * this->two_).getstr(), "16"); }

TYPED_TEST(MixedPair, Divides) { EXPECT_EQ((this->eight_ / this->two_).getstr(), "4"); }

TYPED_TEST(MixedPair, AddsOntoTheValue) {
  auto value = this->eight_;
  EXPECT_EQ(&(value += this->two_), &value);
  EXPECT_EQ(value.getstr(), "10");
}

TYPED_TEST(MixedPair, SubtractsFromTheValue) {
  auto value = this->eight_;
  EXPECT_EQ(&(value -= this->two_), &value);
  EXPECT_EQ(value.getstr(), "6");
}

TYPED_TEST(MixedPair, MultipliesTheValue) {
  auto value = this->eight_;
  EXPECT_EQ(&(value *= this->two_), &value);
  EXPECT_EQ(value.getstr(), "16");
}

TYPED_TEST(MixedPair, DividesTheValue) {
  auto value = this->eight_;
  EXPECT_EQ(&(value /= this->two_), &value);
  EXPECT_EQ(value.getstr(), "4");
}

TYPED_TEST(MixedPair, Equals) {
  auto value = this->eight_;
  EXPECT_FALSE(value == this->two_);
  value = static_cast<typename TestFixture::Scalar>(2);
  EXPECT_TRUE(value == this->two_);
}

TYPED_TEST(MixedPair, Differs) {
  auto value = this->eight_;
  EXPECT_TRUE(value != this->two_);
  value = static_cast<typename TestFixture::Scalar>(2);
  EXPECT_FALSE(value != this->two_);
}

TYPED_TEST(MixedPair, OrdersBehindTheNumber) {
  EXPECT_FALSE(this->eight_ < this->two_);
  EXPECT_TRUE(this->eight_ > this->two_);
  EXPECT_FALSE(this->eight_ <= this->two_);
  EXPECT_TRUE(this->eight_ >= this->two_);
}

TYPED_TEST(MixedPair, OrdersAtTheNumber) {
  typename TestFixture::Value const same(static_cast<typename TestFixture::Scalar>(2));
  EXPECT_FALSE(same < this->two_);
  EXPECT_FALSE(same > this->two_);
  EXPECT_TRUE(same <= this->two_);
  EXPECT_TRUE(same >= this->two_);
}

TYPED_TEST(MixedPair, OrdersBeforeTheNumber) {
  typename TestFixture::Value const less(static_cast<typename TestFixture::Scalar>(1));
  EXPECT_TRUE(less < this->two_);
  EXPECT_FALSE(less > this->two_);
  EXPECT_TRUE(less <= this->two_);
  EXPECT_FALSE(less >= this->two_);
}

TYPED_TEST(MixedPair, IsNullWithNull) {
  typename TestFixture::Value const null;
  EXPECT_EQ((null + this->two_).IsNull(), 1);
  EXPECT_EQ((null - this->two_).IsNull(), 1);
  EXPECT_EQ((null * this->two_).IsNull(), 1);
  EXPECT_EQ((null / this->two_).IsNull(), 1);
}

TYPED_TEST(MixedPair, StaysNull) {
  typename TestFixture::Value value;
  value += this->two_;
  EXPECT_EQ(value.IsNull(), 1);
  value -= this->two_;
  EXPECT_EQ(value.IsNull(), 1);
  value *= this->two_;
  EXPECT_EQ(value.IsNull(), 1);
  value /= this->two_;
  EXPECT_EQ(value.IsNull(), 1);
}

TYPED_TEST(MixedPair, OrdersNullBeforeTheNumber) {
  typename TestFixture::Value const null;
  EXPECT_FALSE(null == this->two_);
  EXPECT_TRUE(null != this->two_);
  EXPECT_TRUE(null < this->two_);
  EXPECT_FALSE(null > this->two_);
  EXPECT_TRUE(null <= this->two_);
  EXPECT_FALSE(null >= this->two_);
}

// Types of the results

TEST(MixedArithmetic, GivesTheWiderTypeBesideIntegersOfMoreBits) {
  EXPECT_TRUE((std::is_same<decltype(Int() + 1L), Int64>::value));
  EXPECT_TRUE((std::is_same<decltype(Int() / 1U), Int64>::value));
  EXPECT_TRUE((std::is_same<decltype(1L * Int()), Int64>::value));
}

TEST(MixedArithmetic, KeepsTheValueTypeBesideIntegersOfNoMoreBits) {
  EXPECT_TRUE((std::is_same<decltype(Int() + short{1}), Int>::value));
  EXPECT_TRUE((std::is_same<decltype(Int() - true), Int>::value));
  EXPECT_TRUE((std::is_same<decltype(Int64() - 1), Int64>::value));
  EXPECT_TRUE((std::is_same<decltype(Int64() * 1ULL), Int64>::value));
  EXPECT_TRUE((std::is_same<decltype(Double() + 1), Double>::value));
  EXPECT_TRUE((std::is_same<decltype(Double() / 1UL), Double>::value));
}

TEST(MixedArithmetic, GivesDoublesBesideFloatingNumbers) {
  EXPECT_TRUE((std::is_same<decltype(Int() + 1.0), Double>::value));
  EXPECT_TRUE((std::is_same<decltype(Int() - 1.0F), Double>::value));
  EXPECT_TRUE((std::is_same<decltype(Int64() * 1.0), Double>::value));
  EXPECT_TRUE((std::is_same<decltype(Int64() / 1.0F), Double>::value));
  EXPECT_TRUE((std::is_same<decltype(Double() + 1.0F), Double>::value));
}

TEST(MixedArithmetic, KeepsFractionsOfFloatingNumbers) {
  EXPECT_EQ(static_cast<double>(Int(5) + 0.5), 5.5);
  EXPECT_EQ(static_cast<double>(Int(5) - 0.5), 4.5);
  EXPECT_EQ(static_cast<double>(Int(5) * 0.5), 2.5);
  EXPECT_EQ(static_cast<double>(Int(5) / 2.0), 2.5);
  EXPECT_EQ(static_cast<double>(Int64(5L) * 0.5F), 2.5);
}

TEST(MixedArithmetic, TruncatesCompoundAssignmentsTowardZero) {
  Int positive(5);
  positive *= 0.5;
  EXPECT_EQ(static_cast<int>(positive), 2);
  Int negative(-5);
  negative *= 0.5;
  EXPECT_EQ(static_cast<int>(negative), -2);
  Int64 wide(5L);
  wide /= 2.0;
  EXPECT_EQ(static_cast<long>(wide), 2);
  wide += 0.9;
  EXPECT_EQ(static_cast<long>(wide), 2);
  wide -= 0.1;
  EXPECT_EQ(static_cast<long>(wide), 1);
}

TEST(MixedArithmetic, WrapsIntegersThatFitAsTheValueTypeDoes) {
  EXPECT_EQ(static_cast<int>(Int(2147483647) + 2L), -2147483647);
  EXPECT_EQ(static_cast<long>(Int64(LONG_MAX) + 2), -9223372036854775807L);
}

TEST(MixedArithmetic, IsNullAfterDivisionByAnIntegerZero) {
  EXPECT_EQ((Int(5) / 0L).IsNull(), 1);
  EXPECT_EQ((Int64(5L) / 0).IsNull(), 1);
  EXPECT_EQ((Int64(LONG_MIN) / -1).IsNull(), 1);
}

TEST(MixedArithmetic, BecomesNullWhenDividedByAnIntegerZero) {
  Int value(5);
  value /= 0U;
  EXPECT_EQ(value.IsNull(), 1);
  Int64 wide(5L);
  wide /= 0;
  EXPECT_EQ(wide.IsNull(), 1);
}

// Numbers that do not fit

TEST(MixedArithmetic, ComputesInTheWiderType) {
  EXPECT_EQ((Int(1) + 2147483647L).getstr(), "2147483648");
  EXPECT_EQ((Int(1) - 4294967295U).getstr(), "-4294967294");
  EXPECT_EQ((Int(1000000) * 1000000L).getstr(), "1000000000000");
  EXPECT_EQ((1000000L * Int(1000000)).getstr(), "1000000000000");
  EXPECT_EQ((Int(7) / 2147483648L).getstr(), "0");
}

TEST(MixedArithmetic, RefusesIntegersBeyondEverySignedOne) {
  Int value(1);
  EXPECT_EQ(MessageOf([&] { value / ULLONG_MAX; }), "Number is out of range for Int64. ");
  Int64 wide(1L);
  EXPECT_EQ(MessageOf([&] { wide + 9223372036854775808UL; }), "Number is out of range for Int64. ");
}

TEST(MixedArithmetic, LeavesTheValueAloneWhenAResultDoesNotFit) {
  Int value(42);
  EXPECT_EQ(MessageOf([&] { value += 2147483648L; }), "Number is out of range for Int. ");
  EXPECT_EQ(MessageOf([&] { value -= 4294967296L; }), "Number is out of range for Int. ");
  EXPECT_EQ(MessageOf([&] { value *= 2147483648L; }), "Number is out of range for Int. ");
  EXPECT_EQ(static_cast<int>(value), 42);
}

TEST(MixedArithmetic, TakesACompoundResultThatFitsWhateverTheOperand) {
  Int value(42);
  value /= 2147483648L;
  EXPECT_EQ(static_cast<int>(value), 0);
  value -= 2147483647L;
  EXPECT_EQ(static_cast<int>(value), -2147483647);
}

TEST(MixedArithmetic, LeavesTheValueAloneWhenATruncatedResultDoesNotFit) {
  Int value(2147483647);
  EXPECT_EQ(MessageOf([&] { value *= 2.0; }), "Number is out of range for Int. ");
  EXPECT_EQ(MessageOf([&] { value += 1e300; }), "Number is out of range for Int. ");
  EXPECT_EQ(static_cast<int>(value), 2147483647);
  Int64 wide(LONG_MAX);
  EXPECT_EQ(MessageOf([&] { wide *= 2.0; }), "Number is out of range for Int64. ");
  EXPECT_EQ(static_cast<long>(wide), LONG_MAX);
}

TEST(MixedArithmetic, TakesTheLargestTruncatedResultThatFits) {
  Int value(2147483647);
  value += 0.5;
  EXPECT_EQ(static_cast<int>(value), 2147483647);
}

// Comparisons of unlike sizes and signs

TEST(MixedArithmetic, EqualsNoIntegerThatDoesNotFit) {
  EXPECT_FALSE(Int(-1) == 4294967295U);
  EXPECT_FALSE(Int(-1) == ULONG_MAX);
  EXPECT_FALSE(Int(0) == 4294967296L);
  EXPECT_FALSE(Int64(-1L) == ULONG_MAX);
  EXPECT_TRUE(Int(-1) != 4294967295U);
  EXPECT_TRUE(Int64(-1L) != ULONG_MAX);
}

TEST(MixedArithmetic, OrdersNegativeValuesBeforeUnsignedNumbers) {
  EXPECT_TRUE(Int(-1) < 0U);
  EXPECT_TRUE(Int(-1) < 1UL);
  EXPECT_TRUE(Int64(-1L) < 1UL);
  EXPECT_TRUE(Int64(-1L) < 1U);
}

TEST(MixedArithmetic, OrdersNegativeValuesNowhereButBeforeUnsignedNumbers) {
  EXPECT_FALSE(Int(-1) > 1U);
  EXPECT_TRUE(Int(-1) <= 1U);
  EXPECT_FALSE(Int64(-1L) >= 1UL);
  EXPECT_FALSE(Int64(-1L) > ULONG_MAX);
}

TEST(MixedArithmetic, OrdersBesideIntegersThatDoNotFit) {
  EXPECT_TRUE(Int(2147483647) < 2147483648L);
  EXPECT_FALSE(Int(-2147483647) < -2147483649L);
  EXPECT_TRUE(Int(-2147483647) > -2147483649L);
  EXPECT_TRUE(Int64(LONG_MAX) < ULONG_MAX);
  EXPECT_FALSE(Int64(LONG_MAX) >= ULONG_MAX);
}

TEST(MixedArithmetic, OrdersNullBeforeIntegersThatDoNotFit) {
  EXPECT_TRUE(Int() < 5000000000L);
  EXPECT_TRUE(Int() < -5000000000L);
  EXPECT_TRUE(Int64() < ULONG_MAX);
}

TEST(MixedArithmetic, ComparesIntegersWithFractionsAsDoubles) {
  EXPECT_FALSE(Int(2) == 2.5);
  EXPECT_TRUE(Int(2) < 2.5);
  EXPECT_FALSE(Int(3) < 2.5);
  EXPECT_TRUE(Int64(2L) == 2.0);
  EXPECT_TRUE(Int64(2L) != 2.5F);
}

TEST(MixedArithmetic, TellsNullFromTheFloatingNumberOfItsStoredValue) {
  EXPECT_FALSE(Int() == -2147483648.0);
  EXPECT_TRUE(Int() < -2147483648.0);
  EXPECT_FALSE(Int64() == -9223372036854775808.0);
  EXPECT_TRUE(Int64() < -9223372036854775808.0);
}

TEST(MixedArithmetic, TakesTheSmallestTruncatedResultThatFits) {
  Int64 wide(-4611686018427387904L);
  wide *= 2.0;
  EXPECT_EQ(static_cast<long>(wide), LONG_MIN);
}

// A value of another type as the operand

TEST(MixedArithmetic, GivesTheWiderTypeBesideIntegerValues) {
  EXPECT_TRUE((std::is_same<decltype(Int() + Int64()), Int64>::value));
  EXPECT_TRUE((std::is_same<decltype(Int64() + Int()), Int64>::value));
  EXPECT_TRUE((std::is_same<decltype(Double() + Int()), Double>::value));
}

TEST(MixedArithmetic, GivesDoublesBesideDoubleValues) {
  EXPECT_TRUE((std::is_same<decltype(Int() * Double()), Double>::value));
  EXPECT_TRUE((std::is_same<decltype(Int64() - Double()), Double>::value));
  EXPECT_EQ(static_cast<double>(Int(5) * Double(0.5)), 2.5);
}

TEST(MixedArithmetic, IsNullWithANullOfAnotherType) {
  EXPECT_EQ((Int(1) + Int64()).IsNull(), 1);
  EXPECT_EQ((Int64(1L) - Int()).IsNull(), 1);
  EXPECT_EQ((Double(1.0) * Int()).IsNull(), 1);
  EXPECT_EQ((Double(1.0) / Int64()).IsNull(), 1);
  EXPECT_EQ((Int(1) + Double()).IsNull(), 1);
}

TEST(MixedArithmetic, BecomesNullByACompoundAssignmentWithANullOfAnotherType) {
  Int narrow(1);
  narrow += Int64();
  EXPECT_EQ(narrow.IsNull(), 1);
  Int64 wide(1L);
  wide -= Int();
  EXPECT_EQ(wide.IsNull(), 1);
  Int64 truncated(1L);
  truncated *= Double();
  EXPECT_EQ(truncated.IsNull(), 1);
  Double fraction(1.0);
  fraction /= Int();
  EXPECT_EQ(fraction.IsNull(), 1);
}

TEST(MixedArithmetic, TakesNullsOfTwoTypesForEqual) {
  EXPECT_TRUE(Int() == Int64());
  EXPECT_TRUE(Int64() == Double());
  EXPECT_FALSE(Double() != Int());
  EXPECT_FALSE(Int() < Int64());
  EXPECT_FALSE(Int64() > Double());
  EXPECT_TRUE(Double() <= Int());
}

TEST(MixedArithmetic, OrdersBehindANullOfAnotherType) {
  EXPECT_TRUE(Int(-2147483647) > Int64());
  EXPECT_FALSE(Int64(LONG_MIN) < Int());
  EXPECT_FALSE(Double(-1e300) == Int());
  EXPECT_TRUE(Double(-1e308) > Int64());
}

TEST(MixedArithmetic, RefusesAResultOfIntegerValuesThatDoesNotFit) {
  Int value(42);
  EXPECT_EQ((value + Int64(5000000000L)).getstr(), "5000000042");
  EXPECT_EQ(MessageOf([&] { value += Int64(5000000000L); }), "Number is out of range for Int. ");
  EXPECT_EQ(static_cast<int>(value), 42);
}

TEST(MixedArithmetic, ConstructsFromAValueOfAnotherType) {
  EXPECT_EQ(Int64(Int()).IsNull(), 1);
  EXPECT_EQ(Double(Int64()).IsNull(), 1);
  EXPECT_EQ(Int(Int64(7L)).getstr(), "7");
  EXPECT_EQ(Int(Double(-2.9)).getstr(), "-2");
  EXPECT_EQ(MessageOf([] { Int(Int64(5000000000L)); }), "Number is out of range for Int. ");
  EXPECT_EQ(MessageOf([] { Int(5000000000L); }), "Number is out of range for Int. ");
  EXPECT_EQ(MessageOf([] { Int64(1e30); }), "Number is out of range for Int64. ");
}

TEST(MixedArithmetic, TakesANumberOnTheLeft) {
  EXPECT_EQ((1 + Int()).IsNull(), 1);
  EXPECT_EQ((7 / Int(0)).IsNull(), 1);
  EXPECT_EQ((7 - Int64(2L)).getstr(), "5");
  EXPECT_EQ((7.0 / Int(2)).getstr(), "3.5");
  EXPECT_FALSE(1U < Int(-1));
  EXPECT_FALSE(LONG_MIN == Int64());
}

TEST(MixedArithmetic, ComputesWithTheNumberOnTheLeft) {
  EXPECT_EQ((8 + Int(2)).getstr(), "10");
  EXPECT_EQ((8L - Int(2)).getstr(), "6");
  EXPECT_EQ((8 * Int64(2L)).getstr(), "16");
  EXPECT_EQ((1 / Double(2.0)).getstr(), "0.5");
}

TEST(MixedArithmetic, ComparesWithTheNumberOnTheLeft) {
  EXPECT_TRUE(8 == Int(8));
  EXPECT_FALSE(8L == Int(2));
  EXPECT_TRUE(8 != Int64(2L));
  EXPECT_FALSE(8.0 != Double(8.0));
  EXPECT_TRUE(2 < Int(8));
  EXPECT_FALSE(8 < Int(8));
  EXPECT_TRUE(8.5 > Int(8));
  EXPECT_FALSE(8 > Int64(8L));
  EXPECT_TRUE(8 <= Double(8.0));
  EXPECT_FALSE(9 <= Double(8.0));
  EXPECT_TRUE(8U >= Int(8));
  EXPECT_FALSE(7L >= Int64(8L));
}

}  // namespace
