// What WriteNumber() writes of integers, digit by digit, and how far it writes behind its texts.

#include <gtest/gtest.h>

#include <cfenv>
#include <charconv>
#include <climits>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>
#include <string_view>

#include "corvane/internal/number_text.h"
#include "tests/unit/internal/number_probes.h"

namespace {

using corvane::internal::kNumberRoom;
using corvane::internal::LoadWord;
using corvane::internal::StoreWord;
using corvane::internal::WriteNumber;
using corvane::test::Random;

// Writes a number with guard bytes on both sides of its room.
template <class Number>
testing::AssertionResult IsWrittenAs(std::string_view expected, Number number) {
  constexpr std::size_t kGuard = 16;
  char bytes[kGuard + kNumberRoom + kGuard];
  std::memset(bytes, '#', sizeof bytes);
  char* const room = bytes + kGuard;
  std::string_view const text(room, WriteNumber(room, number));
  if (text != expected) return testing::AssertionFailure() << "'" << text << "' instead of '" << expected << "'";
  std::string_view const guards(bytes, sizeof bytes);
  bool const kept = guards.substr(0, kGuard).find_first_not_of('#') == std::string_view::npos &&
                    guards.substr(kGuard + kNumberRoom).find_first_not_of('#') == std::string_view::npos;
  return kept ? testing::AssertionSuccess() : testing::AssertionFailure() << "writes outside its room: " << expected;
}

template <class Number>
testing::AssertionResult IsWrittenAsByToChars(Number number) {
  char text[24];
  return IsWrittenAs(
      std::string_view(text, static_cast<std::size_t>(std::to_chars(text, text + 24, number).ptr - text)), number);
}

// The number as both kinds of integers, and its negative.
testing::AssertionResult IsWrittenInEveryForm(unsigned long long number) {
  testing::AssertionResult const asUnsigned = IsWrittenAsByToChars(number);
  if (!asUnsigned || number > LLONG_MAX) return asUnsigned;
  testing::AssertionResult const asSigned = IsWrittenAsByToChars(static_cast<long long>(number));
  return asSigned ? IsWrittenAsByToChars(-static_cast<long long>(number)) : asSigned;
}

// Any number of so many digits.
unsigned long long OfDigits(Random& random, int digits) {
  unsigned long long lowest = 1;
  for (int i = 1; i < digits; ++i) lowest *= 10;
  unsigned long long const count = digits == 20 ? ULLONG_MAX - lowest : 9 * lowest;
  return lowest + random.Below(count);
}

double FromBits(std::uint64_t bits) {
  double number = 0;
  std::memcpy(&number, &bits, sizeof number);
  return number;
}

TEST(NumberWriting, WritesEveryIntegerUpTo200000) {
  for (unsigned long long number = 0; number <= 200'000; ++number) ASSERT_TRUE(IsWrittenInEveryForm(number));
}

TEST(NumberWriting, WritesThePowersOfTenAndTheirNeighbours) {
  unsigned long long power = 1;
  for (int digits = 1; digits <= 20; ++digits, power *= 10) {
    ASSERT_TRUE(IsWrittenInEveryForm(power - 1));
    ASSERT_TRUE(IsWrittenInEveryForm(power));
    ASSERT_TRUE(IsWrittenInEveryForm(power + 1));
  }
}

TEST(NumberWriting, WritesTheMultiplesOfPowersOfTenAndTheirNeighbours) {
  unsigned long long power = 1;
  for (int digits = 1; digits <= 19; ++digits, power *= 10) {
    for (unsigned long long factor = 1; factor <= 9; ++factor) {
      ASSERT_TRUE(IsWrittenInEveryForm(factor * power - 1));
      ASSERT_TRUE(IsWrittenInEveryForm(factor * power));
      ASSERT_TRUE(IsWrittenInEveryForm(factor * power + 1));
    }
  }
}

TEST(NumberWriting, WritesThePowersOfTwoAndTheirNeighbours) {
  for (int bit = 0; bit < 64; ++bit) {
    ASSERT_TRUE(IsWrittenInEveryForm((1ULL << bit) - 1));
    ASSERT_TRUE(IsWrittenInEveryForm(1ULL << bit));
    ASSERT_TRUE(IsWrittenInEveryForm((1ULL << bit) + 1));
  }
}

TEST(NumberWriting, WritesTheLimits) {
  EXPECT_TRUE(IsWrittenAs("9223372036854775807", LLONG_MAX));
  EXPECT_TRUE(IsWrittenAs("9223372036854775806", LLONG_MAX - 1));
  EXPECT_TRUE(IsWrittenAs("-9223372036854775808", LLONG_MIN));
  EXPECT_TRUE(IsWrittenAs("-9223372036854775807", LLONG_MIN + 1));
  EXPECT_TRUE(IsWrittenAs("18446744073709551615", ULLONG_MAX));
  EXPECT_TRUE(IsWrittenAs("18446744073709551614", ULLONG_MAX - 1));
  EXPECT_TRUE(IsWrittenAs("9223372036854775808", 9223372036854775808ULL));
}

TEST(NumberWriting, WritesZerosBetweenTheDigits) {
  EXPECT_TRUE(IsWrittenAs("100000000", 100'000'000ULL));
  EXPECT_TRUE(IsWrittenAs("-100000001", -100'000'001LL));
  EXPECT_TRUE(IsWrittenAs("10000000000000000", 10'000'000'000'000'000ULL));
  EXPECT_TRUE(IsWrittenAs("12300000000000004", 12'300'000'000'000'004ULL));
  EXPECT_TRUE(IsWrittenAs("10000000000000000001", 10'000'000'000'000'000'001ULL));
}

TEST(NumberWriting, WritesIntegersOfEveryLength) {
  Random random;
  for (int i = 0; i < 1'000'000; ++i) ASSERT_TRUE(IsWrittenInEveryForm(OfDigits(random, 1 + i % 20)));
}

TEST(NumberWriting, WritesEveryGroupOfEightDigitsAtEveryPlace) {
  Random random;
  for (int i = 0; i < 200'000; ++i) {
    unsigned long long const group = random.Below(100'000'000);
    ASSERT_TRUE(IsWrittenInEveryForm(group));
    ASSERT_TRUE(IsWrittenInEveryForm(group * 100'000'000));
    ASSERT_TRUE(IsWrittenInEveryForm(700'000'000 + group));
    ASSERT_TRUE(IsWrittenInEveryForm(70'000'000'000'000'000 + group));
  }
}

TEST(NumberWriting, WritesTheLongestDoublesWithinItsRoom) {
  EXPECT_TRUE(IsWrittenAs("-1.7976931348623157e+308", std::numeric_limits<double>::lowest()));
  EXPECT_TRUE(IsWrittenAs("-2.2250738585072014e-308", -std::numeric_limits<double>::min()));
  EXPECT_TRUE(IsWrittenAs("-0.0000012345678901234567", -0.0000012345678901234567));
  EXPECT_TRUE(IsWrittenAs("-99999999999999984", -99999999999999984.0));
  EXPECT_TRUE(IsWrittenAs("-inf", -std::numeric_limits<double>::infinity()));
}

TEST(NumberWriting, WritesAnyDoubleWithinItsRoom) {
  Random random;
  for (int i = 0; i < 200'000; ++i) {
    double const any = FromBits(random.Bits());
    ASSERT_TRUE(IsWrittenAs(corvane::test::Written(any), any));
    double const plain = -std::pow(10.0, static_cast<double>(random.Below(23)) - 6) *
                         (1 + static_cast<double>(random.Below(1'000'000'000)) / 1e9);
    ASSERT_TRUE(IsWrittenAs(corvane::test::Written(plain), plain));
  }
}

TEST(NumberWriting, AWordHasItsFirstCharacterLowest) {
  EXPECT_EQ(LoadWord("12345678"), 0x3837363534333231U);
  char text[] = "........#";
  StoreWord(text, 0x3837363534333231U);
  EXPECT_STREQ(text, "12345678#");
}

// Under another mode of rounding a text with few decimals could pass for a neighbour of its number.
TEST(NumberWriting, TextsReadBackAsTheSameNumberInEveryModeOfRounding) {
  int const before = std::fegetround();
  for (int const mode : {FE_TONEAREST, FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
    Random random;
    for (int i = 0; i < 50'000; ++i) {
      double const plain = static_cast<double>(random.Below(1'000'000)) / 10'000;
      for (double const number : {plain, std::nextafter(plain, 1e9), std::nextafter(plain, -1e9)}) {
        char text[kNumberRoom + 1];
        std::fesetround(mode);
        text[WriteNumber(text, number)] = '\0';
        std::fesetround(before);
        ASSERT_EQ(std::strtod(text, nullptr), number) << text << " in mode " << mode;
      }
    }
  }
}

}  // namespace
