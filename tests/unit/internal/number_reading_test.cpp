// What ParseInteger() and ParseDouble() make of texts whose length is known: the same as the C library, and nothing
// behind the end is read.

#include <gtest/gtest.h>

#include <climits>
#include <cstddef>
#include <cstdint>
#include <string>

#include "corvane/internal/number_text.h"
#include "tests/unit/internal/guarded_page.h"
#include "tests/unit/internal/number_probes.h"

namespace {

using corvane::internal::ParseDouble;
using corvane::internal::ParseInteger;
using corvane::test::GuardedPage;
using corvane::test::Random;
using corvane::test::Same;
using corvane::test::StandardDouble;
using corvane::test::StandardInteger;

char const* const kDigits = "0123456789";

std::string Digits(Random& random, std::size_t length) {
  std::string digits(length, '0');
  for (char& digit : digits) digit = random.AnyOf(kDigits);
  return digits;
}

class NumberReading : public testing::Test {
 protected:
  // Reads the text, its length known and not, at the end of readable memory.
  testing::AssertionResult IntegerIs(long long expected, std::string const& text) {
    char const* const at = page_.Put(text);
    long long const read = ParseInteger(at, text.size());
    long long const unsized = ParseInteger(at);
    if (read == expected && unsized == expected) return testing::AssertionSuccess();
    return testing::AssertionFailure() << testing::PrintToString(text) << " is " << expected << ", read as " << read
                                       << ", without length " << unsized;
  }
  testing::AssertionResult IntegerIsStandard(std::string const& text) { return IntegerIs(StandardInteger(text), text); }

  testing::AssertionResult DoubleIsStandard(std::string const& text) {
    char const* const at = page_.Put(text);
    double const expected = StandardDouble(text);
    testing::AssertionResult const sized = Same(ParseDouble(at, text.size()), expected);
    testing::AssertionResult const unsized = Same(ParseDouble(at), expected);
    if (sized && unsized) return testing::AssertionSuccess();
    return testing::AssertionFailure() << testing::PrintToString(text) << " is read as " << sized.message()
                                       << ", without length " << unsized.message();
  }

  Random random_;

 private:
  GuardedPage page_;
};

// ---- Integers ----

TEST_F(NumberReading, ReadsIntegers) {
  EXPECT_TRUE(IntegerIs(0, "0"));
  EXPECT_TRUE(IntegerIs(7, "7"));
  EXPECT_TRUE(IntegerIs(-42, "-42"));
  EXPECT_TRUE(IntegerIs(1234567, "1234567"));
  EXPECT_TRUE(IntegerIs(12345678, "12345678"));
  EXPECT_TRUE(IntegerIs(123456789, "123456789"));
  EXPECT_TRUE(IntegerIs(-12345678, "-12345678"));
  EXPECT_TRUE(IntegerIs(123456789012345, "123456789012345"));
  EXPECT_TRUE(IntegerIs(1234567890123456, "1234567890123456"));
  EXPECT_TRUE(IntegerIs(-12345678901234567, "-12345678901234567"));
  EXPECT_TRUE(IntegerIs(123456789012345678, "123456789012345678"));
  EXPECT_TRUE(IntegerIs(-999999999999999999, "-999999999999999999"));
  EXPECT_TRUE(IntegerIs(1234567890123456789, "1234567890123456789"));
}

TEST_F(NumberReading, ReadsIntegersBeyondTheLimitsAsTheLimits) {
  EXPECT_TRUE(IntegerIs(LLONG_MAX, "9223372036854775807"));
  EXPECT_TRUE(IntegerIs(LLONG_MAX, "9223372036854775808"));
  EXPECT_TRUE(IntegerIs(LLONG_MIN, "-9223372036854775808"));
  EXPECT_TRUE(IntegerIs(LLONG_MIN, "-9223372036854775809"));
  EXPECT_TRUE(IntegerIs(LLONG_MAX, "9999999999999999999"));
  EXPECT_TRUE(IntegerIs(LLONG_MAX, "18446744073709551616"));
  EXPECT_TRUE(IntegerIs(LLONG_MIN, "-99999999999999999999999999"));
}

TEST_F(NumberReading, ReadsNoDigitsAsIntegerZero) {
  for (char const* const text : {"", "-", "+", " ", "--1", "-+1", "+-1", "++1", "- 1", "abc", "-abc", "/", ":", ".5"}) {
    EXPECT_TRUE(IntegerIs(0, text));
  }
}

TEST_F(NumberReading, ReadsIntegersBehindManyZeros) {
  EXPECT_TRUE(IntegerIs(0, "-0"));
  EXPECT_TRUE(IntegerIs(7, "00000007"));
  EXPECT_TRUE(IntegerIs(-7, "-0000000000000007"));
  EXPECT_TRUE(IntegerIs(7, "000000000000000000000000007"));
  EXPECT_TRUE(IntegerIs(LLONG_MAX, "00000000009223372036854775807"));
}

TEST_F(NumberReading, ReadsIntegersOfEveryLengthAsTheCLibraryDoes) {
  for (std::string const before :
       {"", "-", "+", " ", "\t-", "\n+", "+-", "-+", "--", "++", "- ", "0", "-0", " \v\f\r"}) {
    for (std::size_t length = 0; length <= 25; ++length) {
      for (int i = 0; i < 500; ++i) ASSERT_TRUE(IntegerIsStandard(before + Digits(random_, length)));
    }
  }
}

TEST_F(NumberReading, ReadsIntegersWithAnyByteAtAnyPlaceAsTheCLibraryDoes) {
  for (std::string const before : {"", "-"}) {
    for (std::size_t length = 1; length <= 25; ++length) {
      for (std::size_t at = 0; at < length; ++at) {
        std::string text = before + Digits(random_, length);
        for (int byte = 0; byte < 256; ++byte) {
          text[before.size() + at] = static_cast<char>(byte);
          ASSERT_TRUE(IntegerIsStandard(text));
        }
      }
    }
  }
}

TEST_F(NumberReading, ReadsIntegersWithAnyTwoOddBytesAsTheCLibraryDoes) {
  std::string const odd("\0 -+/:.a\x80\xff", 10);
  for (std::size_t const length : {7U, 8U, 9U, 15U, 16U, 17U, 18U, 19U, 20U}) {
    for (std::size_t first = 0; first < length; ++first) {
      for (std::size_t second = first + 1; second < length; ++second) {
        std::string text = Digits(random_, length);
        for (char const a : odd) {
          text[first] = a;
          text[second] = random_.AnyOf(odd);
          ASSERT_TRUE(IntegerIsStandard(text));
        }
      }
    }
  }
}

TEST_F(NumberReading, ReadsIntegersUpToANul) {
  EXPECT_TRUE(IntegerIs(12, std::string("12\0345678", 8)));
  EXPECT_TRUE(IntegerIs(12345678, std::string("12345678\0"
                                              "12345678",
                                              17)));
  EXPECT_TRUE(IntegerIs(-1, std::string("-1\0", 3)));
  EXPECT_TRUE(IntegerIs(0, std::string("\0"
                                       "12345678",
                                       9)));
  EXPECT_TRUE(IntegerIs(0, std::string("-\0"
                                       "12345678",
                                       10)));
}

TEST_F(NumberReading, ReadsIntegersAroundTheLimitsAsTheCLibraryDoes) {
  for (int i = 0; i < 200'000; ++i) {
    std::string const head = random_.Below(2) == 0 ? "922337203685477" : "1844674407370955";
    ASSERT_TRUE(IntegerIsStandard(random_.Text("+-", 1) + random_.Text("0", 3) + head + Digits(random_, 4)));
  }
}

// ---- Doubles ----

TEST_F(NumberReading, ReadsOddDoublesAsTheCLibraryDoes) {
  for (std::string const text :
       {"",     ".",    "-",    "-.",   "1.",   ".5",  "-.5",  "-0",    "-0.0", "-0.", "0.",   "0.0",
        "00",   "1e5",  "1E-5", "0x10", "-0x1", "+1",  "+.5",  " 1",    "\t-1", "nan", "-nan", "inf",
        "-inf", "1.5.", "1..5", "..5",  "--1",  "-+1", "+-1",  "- 1",   "1 ",   "1,5", "1-",   "1.-5",
        "1.5-", "e5",   "1e",   "1.e5", "0x",   "x",   "1 2",  "1.5 ",  "1.5x", "/1",  ":1",   "1/",
        "1:",   "1.:5", "infi", "1inf", "1nan", "0e0", "-0e9", "1e-400"}) {
    EXPECT_TRUE(DoubleIsStandard(text));
  }
}

TEST_F(NumberReading, ReadsDoublesBitForBit) {
  EXPECT_TRUE(Same(ParseDouble("0.1", 3), 0.1));
  EXPECT_TRUE(Same(ParseDouble("-0.3", 4), -0.3));
  EXPECT_TRUE(Same(ParseDouble("1234567.89", 10), 1234567.89));
  EXPECT_TRUE(Same(ParseDouble("-0", 2), -0.0));
  EXPECT_TRUE(Same(ParseDouble("-0.00", 5), -0.0));
  EXPECT_TRUE(Same(ParseDouble("0.00000000000001", 16), 1e-14));
  EXPECT_TRUE(Same(ParseDouble("9.00719925474099", 16), 9.00719925474099));
}

TEST_F(NumberReading, ReadsDecimalsWithAPointAtEveryPlaceAsTheCLibraryDoes) {
  for (std::size_t length = 0; length <= 20; ++length) {
    for (std::size_t point = 0; point <= length; ++point) {
      for (int i = 0; i < 4'000; ++i) {
        std::string const digits = Digits(random_, length);
        std::string const text = digits.substr(0, point) + "." + digits.substr(point);
        ASSERT_TRUE(DoubleIsStandard(text));
        ASSERT_TRUE(DoubleIsStandard("-" + text));
      }
    }
  }
}

TEST_F(NumberReading, ReadsDecimalsWithoutAPointAsTheCLibraryDoes) {
  for (std::size_t length = 1; length <= 20; ++length) {
    for (int i = 0; i < 5'000; ++i) {
      std::string const digits = Digits(random_, length);
      ASSERT_TRUE(DoubleIsStandard(digits));
      ASSERT_TRUE(DoubleIsStandard("-" + digits));
    }
  }
}

TEST_F(NumberReading, ReadsTheNeighboursOf2To53AsTheCLibraryDoes) {
  for (std::uint64_t number = (1ULL << 53) - 300; number <= (1ULL << 53) + 300; ++number) {
    std::string const digits = std::to_string(number);
    for (std::size_t point = 0; point <= digits.size(); ++point) {
      std::string text = digits;
      text.insert(point, 1, '.');
      ASSERT_TRUE(DoubleIsStandard(text));
    }
    ASSERT_TRUE(DoubleIsStandard(digits));
    ASSERT_TRUE(DoubleIsStandard("-" + digits));
  }
}

TEST_F(NumberReading, ReadsDecimalsThatLieBetweenTwoDoublesAsTheCLibraryDoes) {
  // Halves of odd numbers above 2^52 lie exactly between two doubles, or beside such a place.
  for (std::uint64_t number = 1ULL << 52; number < (1ULL << 52) + 2'000; ++number) {
    for (char const* const decimals : {".5", ".4", ".6", ".49", ".51", ".50", ".500000001"}) {
      ASSERT_TRUE(DoubleIsStandard(std::to_string(number) + decimals));
    }
  }
}

TEST_F(NumberReading, ReadsDoublesWithAnyByteAtAnyPlaceAsTheCLibraryDoes) {
  for (std::string const text : {"0", "-5", "12.5", "-12.5", "1234567.89", "1234567890.12345", "-123456789.12345",
                                 "12345678901234.5", "12345678901234567", "0.12345678901234", "99999999999999.99"}) {
    for (std::size_t at = 0; at < text.size(); ++at) {
      std::string changed = text;
      for (int byte = 0; byte < 256; ++byte) {
        changed[at] = static_cast<char>(byte);
        ASSERT_TRUE(DoubleIsStandard(changed));
      }
    }
  }
}

TEST_F(NumberReading, ReadsDoublesOutOfNoiseAsTheCLibraryDoes) {
  std::string const alphabet("0123456789012345678901234567890123456789....--+e \0", 50);
  for (int i = 0; i < 500'000; ++i) ASSERT_TRUE(DoubleIsStandard(random_.Text(alphabet, 20)));
}

}  // namespace
