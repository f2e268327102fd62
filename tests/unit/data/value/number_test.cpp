#include "corvane/data/value/number.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <climits>
#include <cmath>
#include <cstddef>
#include <string>
#include <type_traits>

#include "corvane/data/value/relation.h"

using corvane::IfOtherNumber;
using corvane::IfOtherNumbers;
using corvane::Number;

namespace {

std::string Text(Number const& number) {
  Str out("");
  number.AppendTo(out);
  return out.ToString();
}

template <class T, class = void>
struct IsOtherNumber : std::false_type {};
template <class T>
struct IsOtherNumber<T, IfOtherNumber<T, void>> : std::true_type {};

template <class T, class U, class = void>
struct AreOtherNumbers : std::false_type {};
template <class T, class U>
struct AreOtherNumbers<T, U, IfOtherNumbers<T, U, void>> : std::true_type {};

enum Plain { kPlain };

TEST(Number, IsFiniteUnlessItIsADoubleThatIsNot) {
  EXPECT_TRUE(Number(5).IsFinite());
  EXPECT_TRUE(Number(ULLONG_MAX).IsFinite());
  EXPECT_TRUE(Number(DBL_MAX).IsFinite());
  EXPECT_FALSE(Number(std::nan("")).IsFinite());
  EXPECT_FALSE(Number(HUGE_VAL).IsFinite());
  EXPECT_FALSE(Number(-HUGE_VALF).IsFinite());
}

TEST(Number, WritesIntegersInDecimal) {
  EXPECT_EQ(Text(0), "0");
  EXPECT_EQ(Text(5), "5");
  EXPECT_EQ(Text(-5), "-5");
  EXPECT_EQ(Text(5U), "5");
  EXPECT_EQ(Text(5L), "5");
  EXPECT_EQ(Text(-5L), "-5");
  EXPECT_EQ(Text(5UL), "5");
  EXPECT_EQ(Text(-5LL), "-5");
  EXPECT_EQ(Text(5ULL), "5");
  EXPECT_EQ(Text(short{-5}), "-5");
  EXPECT_EQ(Text(static_cast<unsigned short>(65535)), "65535");
}

TEST(Number, WritesIntegersAtTheirLimits) {
  EXPECT_EQ(Text(INT_MAX), "2147483647");
  EXPECT_EQ(Text(INT_MIN), "-2147483648");
  EXPECT_EQ(Text(UINT_MAX), "4294967295");
  EXPECT_EQ(Text(LLONG_MAX), "9223372036854775807");
  EXPECT_EQ(Text(LLONG_MIN), "-9223372036854775808");
  EXPECT_EQ(Text(ULLONG_MAX), "18446744073709551615");
}

TEST(Number, WritesCharactersAsNumbers) {
  EXPECT_EQ(Text('c'), "99");
  EXPECT_EQ(Text('\0'), "0");
  EXPECT_EQ(Text(static_cast<signed char>(-1)), "-1");
  EXPECT_EQ(Text(static_cast<unsigned char>(255)), "255");
  EXPECT_EQ(Text(L'c'), "99");
}

TEST(Number, WritesTruthValuesAsNumbers) {
  EXPECT_EQ(Text(true), "1");
  EXPECT_EQ(Text(false), "0");
}

TEST(Number, WritesDoublesWithTheFewestDigitsThatReadBack) {
  EXPECT_EQ(Text(2.5), "2.5");
  EXPECT_EQ(Text(0.1), "0.1");
  EXPECT_EQ(Text(-0.5), "-0.5");
  EXPECT_EQ(Text(0.0), "0");
  EXPECT_EQ(Text(3.0), "3");
  EXPECT_EQ(Text(1234567.891), "1234567.891");
  EXPECT_EQ(Text(1e100), "1e+100");
  EXPECT_EQ(Text(DBL_MAX), "1.7976931348623157e+308");
  EXPECT_EQ(Text(0.5F), "0.5");
  EXPECT_EQ(Text(2.5L), "2.5");
}

TEST(Number, AppendsBehindWhatIsThere) {
  Str out("a=");
  Number(5).AppendTo(out);
  Number(2.5).AppendTo(out);
  Number(5U).AppendTo(out);
  EXPECT_EQ(out, "a=52.55");
}

TEST(Number, AppendsToANullText) {
  Str out;
  Number(5).AppendTo(out);
  EXPECT_EQ(out, "5");
}

TEST(Number, TellsWhetherItIsFinite) {
  EXPECT_TRUE(Number(2.5).IsFinite());
  EXPECT_TRUE(Number(DBL_MAX).IsFinite());
  EXPECT_TRUE(Number(-1).IsFinite());
  EXPECT_TRUE(Number(18446744073709551615ULL).IsFinite());
  EXPECT_FALSE(Number(HUGE_VAL).IsFinite());
  EXPECT_FALSE(Number(-HUGE_VALF).IsFinite());
  EXPECT_FALSE(Number(std::nan("")).IsFinite());
}

TEST(Number, IsMadeOfNumbersAlone) {
  static_assert(std::is_convertible<int, Number>::value);
  static_assert(std::is_convertible<unsigned char, Number>::value);
  static_assert(std::is_convertible<float, Number>::value);
  static_assert(!std::is_convertible<char const*, Number>::value);
  static_assert(!std::is_convertible<std::nullptr_t, Number>::value);
  static_assert(!std::is_convertible<Str, Number>::value);
  static_assert(std::is_convertible<Plain, Number>::value);
  static_assert(!std::is_convertible<corvane::Relation, Number>::value);
}

TEST(Number, WritesEnumeratorsByTheirNumber) {
  enum Wide : unsigned long { kWide = 18446744073709551615UL };
  EXPECT_EQ(Text(kPlain), "0");
  EXPECT_EQ(Text(kWide), "18446744073709551615");
}

TEST(Number, OtherNumbersAreAllButIntAndDouble) {
  static_assert(IsOtherNumber<unsigned>::value && IsOtherNumber<long>::value && IsOtherNumber<short>::value);
  static_assert(IsOtherNumber<bool>::value && IsOtherNumber<char>::value && IsOtherNumber<long long>::value);
  static_assert(IsOtherNumber<float>::value && IsOtherNumber<long double>::value && IsOtherNumber<Plain>::value);
  static_assert(!IsOtherNumber<int>::value && !IsOtherNumber<double>::value);
  static_assert(!IsOtherNumber<char const*>::value && !IsOtherNumber<Str>::value);
  static_assert(!IsOtherNumber<corvane::Relation>::value);
}

TEST(Number, PairsOfOtherNumbersAreAllButTwoIntsAndTwoDoubles) {
  static_assert(!AreOtherNumbers<int, int>::value && !AreOtherNumbers<double, double>::value);
  static_assert(AreOtherNumbers<int, double>::value && AreOtherNumbers<double, int>::value);
  static_assert(AreOtherNumbers<long, long>::value && AreOtherNumbers<int, long>::value);
  static_assert(AreOtherNumbers<float, float>::value && AreOtherNumbers<unsigned, double>::value);
  static_assert(!AreOtherNumbers<int, char const*>::value && !AreOtherNumbers<Str, int>::value);
}

}  // namespace
