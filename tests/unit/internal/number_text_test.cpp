#include "corvane/internal/number_text.h"

#include <gtest/gtest.h>

#include <climits>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <locale>
#include <string>
#include <vector>

#include "tests/unit/internal/number_probes.h"

namespace {

using corvane::internal::kFixedRoom;
using corvane::internal::kNumberRoom;
using corvane::internal::ParseDouble;
using corvane::internal::ParseInteger;
using corvane::internal::TruncateToInt;
using corvane::internal::WriteFixed;
using corvane::test::Random;
using corvane::test::Same;
using corvane::test::StandardDouble;
using corvane::test::StandardInteger;
using corvane::test::Written;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

std::string Fixed(double number) {
  char room[kFixedRoom];
  return std::string(room, WriteFixed(room, number));
}

// Reads a text in just as much memory as it needs, so that a sanitizer sees what is read behind its end.
long long ReadCopy(std::string const& text) {
  std::vector<char> const copy(text.c_str(), text.c_str() + text.size() + 1);
  return ParseInteger(copy.data());
}

double FromBits(std::uint64_t bits) {
  double number = 0;
  std::memcpy(&number, &bits, sizeof number);
  return number;
}

// A text with the shape of a number, some of its parts missing or wrong.
std::string NumberLike(Random& random) {
  std::string text = random.Text(" \t\n\v\f\r", 2);
  text += random.Text("+-", random.Below(8) == 0 ? 2 : 1);
  text += random.Below(16) == 0 ? random.Text("0", 30) : std::string();
  text += random.Text("0123456789", random.Below(8) == 0 ? 400 : 21);
  text += random.Below(2) == 0 ? random.Text(".,", 1) + random.Text("0123456789", random.Below(8) == 0 ? 400 : 20)
                               : std::string();
  text += random.Below(2) == 0
              ? random.Text("eE", 1) + random.Text("+-", 1) + random.Text("0123456789", random.Below(8) == 0 ? 6 : 3)
              : std::string();
  text += random.Below(4) == 0 ? random.Text(" abcxX.,+-'", 3) : std::string();
  return text;
}

// A double of any bits, NaN and infinities left out.
double AnyFinite(Random& random) {
  double number = FromBits(random.Bits());
  while (!std::isfinite(number)) number = FromBits(random.Bits());
  return number;
}

// Digits that say something: neither leading zeros nor those that only fill up an integer.
std::string SignificantDigits(std::string const& text) {
  std::string digits;
  for (char const c : text.substr(0, text.find('e'))) {
    if (c >= '0' && c <= '9') digits += c;
  }
  digits.erase(0, digits.find_first_not_of('0'));
  digits.erase(digits.find_last_not_of('0') + 1);
  return digits;
}

// The texts and numbers that both fixtures below go through.
void ReadIntegersAsTheCLibraryDoes() {
  Random random;
  for (int i = 0; i < 200000; ++i) {
    std::string const text = NumberLike(random);
    ASSERT_EQ(ParseInteger(text.c_str()), StandardInteger(text)) << "'" << text << "'";
  }
}

void ReadIntegersOutOfNoiseAsTheCLibraryDoes() {
  Random random;
  for (int i = 0; i < 200000; ++i) {
    std::string const text = random.Text(" \t\n\v\f\r\b+-0123456789xe.,", 8);
    ASSERT_EQ(ParseInteger(text.c_str()), StandardInteger(text)) << "'" << text << "'";
  }
}

void ReadDoublesAsTheCLibraryDoes() {
  Random random;
  for (int i = 0; i < 200000; ++i) {
    std::string const text = NumberLike(random);
    ASSERT_TRUE(Same(ParseDouble(text.c_str()), StandardDouble(text))) << "'" << text << "'";
  }
}

void ReadDoublesOutOfNoiseAsTheCLibraryDoes() {
  Random random;
  for (int i = 0; i < 400000; ++i) {
    std::string const text = random.Text(" \t\n+-0123456789..,eExXpPinfatyINFATY()_", 10);
    ASSERT_TRUE(Same(ParseDouble(text.c_str()), StandardDouble(text))) << "'" << text << "'";
  }
}

void ReadPrintedDoublesAsTheCLibraryDoes() {
  Random random;
  for (int i = 0; i < 200000; ++i) {
    char text[64];
    int const digits = static_cast<int>(random.Below(25));
    double const number = FromBits(random.Bits());
    std::snprintf(text, sizeof text, random.Below(8) == 0 ? "%.*a" : "%.*e", digits, number);
    ASSERT_TRUE(Same(ParseDouble(text), StandardDouble(text))) << "'" << text << "'";
  }
}

void WriteDoublesThatReadBack() {
  Random random;
  for (int i = 0; i < 200000; ++i) {
    double const number = AnyFinite(random);
    std::string const text = Written(number);
    ASSERT_TRUE(Same(ParseDouble(text.c_str()), number)) << text;
    ASSERT_TRUE(Same(StandardDouble(text), number)) << text;
  }
}

// The signless numbers of the plain notation, where random bits hardly ever fall.
double AnyPlain(Random& random) {
  double const scale = std::pow(10.0, static_cast<double>(random.Below(23)) - 6);
  return static_cast<double>(1 + random.Below(9999999)) / 1e6 * scale;
}

void WritePlainDoublesThatReadBack() {
  Random random;
  for (int i = 0; i < 200000; ++i) {
    double const number = AnyPlain(random);
    std::string const text = Written(number);
    ASSERT_TRUE(Same(ParseDouble(text.c_str()), number)) << text;
    ASSERT_TRUE(Same(StandardDouble(text), number)) << text;
  }
}

void WriteIntegersThatReadBack() {
  Random random;
  for (int i = 0; i < 200000; ++i) {
    auto const number = static_cast<long long>(random.Bits() >> random.Below(64));
    ASSERT_EQ(ParseInteger(Written(number).c_str()), number);
  }
}

// WriteNumber

TEST(NumberText, WritesIntegers) {
  EXPECT_EQ(Written(0LL), "0");
  EXPECT_EQ(Written(42LL), "42");
  EXPECT_EQ(Written(-42LL), "-42");
}

TEST(NumberText, WritesTheLimitsOfIntegers) {
  EXPECT_EQ(Written(LLONG_MAX), "9223372036854775807");
  EXPECT_EQ(Written(LLONG_MIN), "-9223372036854775808");
  EXPECT_EQ(Written(ULLONG_MAX), "18446744073709551615");
  EXPECT_EQ(Written(0ULL), "0");
}

TEST(NumberText, WritesDoublesInPlainNotationInTheMiddleRange) {
  EXPECT_EQ(Written(0.0), "0");
  EXPECT_EQ(Written(1.0), "1");
  EXPECT_EQ(Written(-2.5), "-2.5");
  EXPECT_EQ(Written(100000.0), "100000");
  EXPECT_EQ(Written(0.0001), "0.0001");
  EXPECT_EQ(Written(1234567.891), "1234567.891");
}

TEST(NumberText, WritesTheEndsOfThePlainRange) {
  EXPECT_EQ(Written(1e-6), "0.000001");
  EXPECT_EQ(Written(-1e-6), "-0.000001");
  EXPECT_EQ(Written(99999999999999984.0), "99999999999999984");
  EXPECT_EQ(Written(-99999999999999984.0), "-99999999999999984");
}

TEST(NumberText, WritesAnExponentJustOutsideThePlainRange) {
  EXPECT_EQ(Written(9.999999999999997e-7), "9.999999999999997e-07");
  EXPECT_EQ(Written(1e17), "1e+17");
  EXPECT_EQ(Written(-1e17), "-1e+17");
}

TEST(NumberText, WritesTheFewestDigitsThatReadBack) {
  EXPECT_EQ(Written(0.1), "0.1");
  EXPECT_EQ(Written(0.1 + 0.2), "0.30000000000000004");
  EXPECT_EQ(Written(1e23), "1e+23");
  EXPECT_EQ(Written(5e-324), "5e-324");
}

TEST(NumberText, WritesTheLimitsOfDoubles) {
  EXPECT_EQ(Written(std::numeric_limits<double>::max()), "1.7976931348623157e+308");
  EXPECT_EQ(Written(std::numeric_limits<double>::lowest()), "-1.7976931348623157e+308");
  EXPECT_EQ(Written(std::numeric_limits<double>::min()), "2.2250738585072014e-308");
  EXPECT_EQ(Written(std::numeric_limits<double>::denorm_min()), "5e-324");
}

TEST(NumberText, WritesTheSignOfZero) { EXPECT_TRUE(Same(ParseDouble(Written(-0.0).c_str()), -0.0)); }

TEST(NumberText, WritesWordsForWhatIsNoNumber) {
  EXPECT_EQ(Written(kInfinity), "inf");
  EXPECT_EQ(Written(-kInfinity), "-inf");
  EXPECT_EQ(Written(std::fabs(std::numeric_limits<double>::quiet_NaN())), "nan");
}

TEST(NumberText, NeedsNoMoreThanItsRoom) {
  Random random;
  for (int i = 0; i < 200000; ++i) {
    ASSERT_LE(Written(AnyFinite(random)).size(), kNumberRoom);
    ASSERT_LE(Written(-AnyPlain(random)).size(), kNumberRoom);
  }
}

TEST(NumberText, WritesNoDigitThatCouldBeLeftOut) {
  Random random;
  for (int i = 0; i < 50000; ++i) {
    double const number = i % 2 == 0 ? AnyFinite(random) : AnyPlain(random);
    if (std::fabs(number) >= 9007199254740992.0 && std::fabs(number) < 1e17) continue;  // integers keep all digits
    std::string const text = Written(number);
    int const digits = static_cast<int>(SignificantDigits(text).size());
    if (digits < 2) continue;
    char shorter[64];
    std::snprintf(shorter, sizeof shorter, "%.*e", digits - 2, number);
    ASSERT_NE(StandardDouble(shorter), number) << text << " could be " << shorter;
  }
}

TEST(NumberText, WritesDoublesThatReadBack) { WriteDoublesThatReadBack(); }

TEST(NumberText, WritesPlainDoublesThatReadBack) { WritePlainDoublesThatReadBack(); }

TEST(NumberText, WritesIntegersThatReadBack) { WriteIntegersThatReadBack(); }

// WriteFixed

TEST(NumberText, WritesSixDecimals) {
  EXPECT_EQ(Fixed(0.0), "0.000000");
  EXPECT_EQ(Fixed(1.0), "1.000000");
  EXPECT_EQ(Fixed(1.5), "1.500000");
  EXPECT_EQ(Fixed(1234567.891), "1234567.891000");
  EXPECT_EQ(Fixed(1e17), "100000000000000000.000000");
}

TEST(NumberText, WritesTheSignOfNegativeFixedNumbers) {
  EXPECT_EQ(Fixed(-1.5), "-1.500000");
  EXPECT_EQ(Fixed(-0.25), "-0.250000");
  EXPECT_EQ(Fixed(-1e-7), "-0.000000");
  EXPECT_EQ(Fixed(-0.0), "-0.000000");
}

TEST(NumberText, RoundsToSixDecimals) {
  EXPECT_EQ(Fixed(0.1 + 0.2), "0.300000");
  EXPECT_EQ(Fixed(2.0 / 3.0), "0.666667");
  EXPECT_EQ(Fixed(1.0000004), "1.000000");
  EXPECT_EQ(Fixed(1.0000006), "1.000001");
  EXPECT_EQ(Fixed(0.9999999), "1.000000");
  EXPECT_EQ(Fixed(-99.9999999), "-100.000000");
  EXPECT_EQ(Fixed(1e-7), "0.000000");
  EXPECT_EQ(Fixed(5e-324), "0.000000");
}

TEST(NumberText, RoundsFixedTiesToTheEvenDecimal) {
  EXPECT_EQ(Fixed(0.0078125), "0.007812");
  EXPECT_EQ(Fixed(0.0234375), "0.023438");
}

TEST(NumberText, WritesTheLargestFixedNumbersInFull) {
  std::string const largest =
      "1797693134862315708145274237317043567980705675258449965989174768031572607800285387605895586327668781"
      "7154045895351438246423432132688946418276846754670353751698604991057655128207624549009038932894407586"
      "8508455133942304583236903222948165808559332123348274797826204144723168738177180919299881250404026184"
      "124858368.000000";
  EXPECT_EQ(Fixed(std::numeric_limits<double>::max()), largest);
  EXPECT_EQ(Fixed(std::numeric_limits<double>::lowest()), "-" + largest);
}

TEST(NumberText, WritesWordsForWhatIsNoFixedNumber) {
  EXPECT_EQ(Fixed(kInfinity), "inf");
  EXPECT_EQ(Fixed(-kInfinity), "-inf");
  EXPECT_EQ(Fixed(std::fabs(std::numeric_limits<double>::quiet_NaN())), "nan");
}

TEST(NumberText, WritesNoTerminatorBehindFixedNumbers) {
  char room[kFixedRoom];
  std::memset(room, '#', sizeof room);
  EXPECT_EQ(WriteFixed(room, 1.5), 8U);
  EXPECT_EQ(std::string(room, 9), "1.500000#");
}

TEST(NumberText, WritesFixedNumbersAsTheCLibraryDoes) {
  Random random;
  for (int i = 0; i < 20000; ++i) {
    double const number = i % 2 == 0 ? AnyFinite(random) : AnyPlain(random);
    char expected[kFixedRoom + 1];
    std::snprintf(expected, sizeof expected, "%f", number);
    ASSERT_EQ(Fixed(number), expected);
  }
}

// ParseInteger

TEST(NumberText, ReadsIntegers) {
  EXPECT_EQ(ParseInteger("0"), 0);
  EXPECT_EQ(ParseInteger("42"), 42);
  EXPECT_EQ(ParseInteger("-42"), -42);
  EXPECT_EQ(ParseInteger("+42"), 42);
  EXPECT_EQ(ParseInteger("007"), 7);
}

TEST(NumberText, ReadsTheLimitsOfIntegers) {
  EXPECT_EQ(ParseInteger("9223372036854775807"), LLONG_MAX);
  EXPECT_EQ(ParseInteger("-9223372036854775808"), LLONG_MIN);
}

TEST(NumberText, ReadsIntegersBeyondTheLimitsAsTheLimits) {
  EXPECT_EQ(ParseInteger("9223372036854775808"), LLONG_MAX);
  EXPECT_EQ(ParseInteger("+9223372036854775808"), LLONG_MAX);
  EXPECT_EQ(ParseInteger("-9223372036854775809"), LLONG_MIN);
  EXPECT_EQ(ParseInteger("99999999999999999999999999999999"), LLONG_MAX);
}

TEST(NumberText, ReadsIntegersBehindBlanks) { EXPECT_EQ(ParseInteger(" \t\n\v\f\r42"), 42); }

TEST(NumberText, ReadsIntegersUpToTheFirstOtherCharacter) {
  EXPECT_EQ(ParseInteger("42 43"), 42);
  EXPECT_EQ(ParseInteger("42.9"), 42);
  EXPECT_EQ(ParseInteger("42,9"), 42);
  EXPECT_EQ(ParseInteger("0x2A"), 0);
  EXPECT_EQ(ParseInteger("1e3"), 1);
}

TEST(NumberText, ReadsNoDigitsAsIntegerZero) {
  EXPECT_EQ(ParseInteger(""), 0);
  EXPECT_EQ(ParseInteger(" "), 0);
  EXPECT_EQ(ParseInteger("-"), 0);
  EXPECT_EQ(ParseInteger("+"), 0);
  EXPECT_EQ(ParseInteger("+-1"), 0);
  EXPECT_EQ(ParseInteger("-+1"), 0);
  EXPECT_EQ(ParseInteger("- 1"), 0);
  EXPECT_EQ(ParseInteger("abc"), 0);
}

TEST(NumberText, ReadsIntegersBehindManyZeros) {
  EXPECT_EQ(ParseInteger("000000000000000000042"), 42);
  EXPECT_EQ(ParseInteger("-000000000000000000042"), -42);
  EXPECT_EQ(ParseInteger("0000000000000000000000000000000000000000"), 0);
  EXPECT_EQ(ParseInteger("00000000000000000009223372036854775807"), LLONG_MAX);
  EXPECT_EQ(ParseInteger("00000000000000000009223372036854775808"), LLONG_MAX);
}

TEST(NumberText, ReadsIntegersOf18And19Digits) {
  EXPECT_EQ(ParseInteger("999999999999999999"), 999999999999999999);
  EXPECT_EQ(ParseInteger("-999999999999999999"), -999999999999999999);
  EXPECT_EQ(ParseInteger("1000000000000000000"), 1000000000000000000);
  EXPECT_EQ(ParseInteger("-1000000000000000000"), -1000000000000000000);
  EXPECT_EQ(ParseInteger("9999999999999999999"), LLONG_MAX);
  EXPECT_EQ(ParseInteger("-9999999999999999999"), LLONG_MIN);
}

TEST(NumberText, ReadsIntegersUpToTheEndOfTheTextWhateverLiesBehindIt) {
  EXPECT_EQ(ParseInteger("12\0345"), 12);
  EXPECT_EQ(ParseInteger("-12\0345"), -12);
  EXPECT_EQ(ParseInteger("-\0345"), 0);
  EXPECT_EQ(ParseInteger(" \0345"), 0);
  EXPECT_EQ(ParseInteger("\0345"), 0);
}

TEST(NumberText, ReadsIntegersOfEveryLengthAsTheCLibraryDoes) {
  Random random;
  for (char const* const before : {"", "-", "+", " ", " -", "\t+", "+-", "-+", "--", "++", "- ", "0", "-0"}) {
    for (std::size_t length = 0; length <= 40; ++length) {
      for (char const* const behind : {"", " ", "-1", "+", ".5", "e3", "x", "/", ":", "\n"}) {
        for (char const first : {'0', '1', '8', '9'}) {
          for (int i = 0; i < 8; ++i) {
            std::string digits(length, first);
            for (std::size_t at = 1; at < length && i > 0; ++at) digits[at] = random.AnyOf("0123456789");
            std::string const text = before + digits + behind;
            ASSERT_EQ(ReadCopy(text), StandardInteger(text)) << "'" << text << "'";
          }
        }
      }
    }
  }
}

TEST(NumberText, ReadsIntegersAroundTheLimitsAsTheCLibraryDoes) {
  Random random;
  for (int i = 0; i < 100000; ++i) {
    // The last four digits of the limits of 63 and of 64 bits are replaced, and a sign and zeros put before them.
    std::string text = random.Below(2) == 0 ? "922337203685477" : "1844674407370955";
    for (int digit = 0; digit < 4; ++digit) text += random.AnyOf("0123456789");
    text = random.Text("+-", 1) + random.Text("0", 3) + text;
    ASSERT_EQ(ReadCopy(text), StandardInteger(text)) << "'" << text << "'";
  }
}

TEST(NumberText, ReadsEveryTextOfUpToThreeCharactersAsTheCLibraryDoes) {
  for (int a = 0; a < 128; ++a) {
    for (int b = 0; b < 128; ++b) {
      for (char const c : std::string("\0 -+059/:.x", 11)) {
        std::string const text = {static_cast<char>(a), static_cast<char>(b), c};
        ASSERT_EQ(ParseInteger(text.c_str()), StandardInteger(text)) << testing::PrintToString(text);
      }
    }
  }
}

TEST(NumberText, ReadsIntegersBetweenOtherBytesAsTheCLibraryDoes) {
  for (int byte = 0; byte < 256; ++byte) {
    char const c = static_cast<char>(byte);
    for (std::string const& text :
         {std::string(1, c) + "7", "4" + std::string(1, c) + "2", "-" + std::string(1, c) + "2",
          std::string("999999999999999999") + c, std::string("922337203685477580") + c}) {
      ASSERT_EQ(ParseInteger(text.c_str()), StandardInteger(text)) << testing::PrintToString(text);
    }
  }
}

TEST(NumberText, ReadsIntegersAsTheCLibraryDoes) { ReadIntegersAsTheCLibraryDoes(); }

TEST(NumberText, ReadsIntegersOutOfNoiseAsTheCLibraryDoes) { ReadIntegersOutOfNoiseAsTheCLibraryDoes(); }

// ParseDouble

TEST(NumberText, ReadsDoubles) {
  EXPECT_EQ(ParseDouble("0"), 0.0);
  EXPECT_EQ(ParseDouble("2.5"), 2.5);
  EXPECT_EQ(ParseDouble("-2.5"), -2.5);
  EXPECT_EQ(ParseDouble("+2.5"), 2.5);
  EXPECT_EQ(ParseDouble(".5"), 0.5);
  EXPECT_EQ(ParseDouble("5."), 5.0);
  EXPECT_EQ(ParseDouble("1234567.891"), 1234567.891);
}

TEST(NumberText, ReadsExponents) {
  EXPECT_EQ(ParseDouble("1e3"), 1000.0);
  EXPECT_EQ(ParseDouble("1E+3"), 1000.0);
  EXPECT_EQ(ParseDouble("-1.5e-07"), -1.5e-7);
}

TEST(NumberText, ReadsDoublesBehindBlanks) { EXPECT_EQ(ParseDouble(" \t\n\v\f\r2.5"), 2.5); }

TEST(NumberText, ReadsDoublesUpToTheFirstOtherCharacter) {
  EXPECT_EQ(ParseDouble("2.5abc"), 2.5);
  EXPECT_EQ(ParseDouble("2.5.5"), 2.5);
  EXPECT_EQ(ParseDouble("1,5"), 1.0);
  EXPECT_EQ(ParseDouble("1e"), 1.0);
  EXPECT_EQ(ParseDouble("1e+"), 1.0);
  EXPECT_EQ(ParseDouble("1e5x"), 100000.0);
}

TEST(NumberText, ReadsNoDigitsAsZero) {
  EXPECT_EQ(ParseDouble(""), 0.0);
  EXPECT_EQ(ParseDouble("."), 0.0);
  EXPECT_EQ(ParseDouble("-"), 0.0);
  EXPECT_EQ(ParseDouble("+-1"), 0.0);
  EXPECT_EQ(ParseDouble("++1"), 0.0);
  EXPECT_EQ(ParseDouble("- 1"), 0.0);
  EXPECT_EQ(ParseDouble("e5"), 0.0);
  EXPECT_EQ(ParseDouble("abc"), 0.0);
}

TEST(NumberText, ReadsTheSignOfZero) { EXPECT_TRUE(Same(ParseDouble("-0"), -0.0)); }

TEST(NumberText, ReadsTheLimitsOfDoubles) {
  EXPECT_EQ(ParseDouble("1.7976931348623157e308"), std::numeric_limits<double>::max());
  EXPECT_EQ(ParseDouble("-1.7976931348623157e308"), std::numeric_limits<double>::lowest());
  EXPECT_EQ(ParseDouble("2.2250738585072014e-308"), std::numeric_limits<double>::min());
  EXPECT_EQ(ParseDouble("4.9406564584124654e-324"), std::numeric_limits<double>::denorm_min());
}

TEST(NumberText, ReadsWhatIsTooLargeAsInfinity) {
  EXPECT_EQ(ParseDouble("1e309"), kInfinity);
  EXPECT_EQ(ParseDouble("+1e309"), kInfinity);
  EXPECT_EQ(ParseDouble("-1e309"), -kInfinity);
  EXPECT_EQ(ParseDouble("1e999999999999999999999"), kInfinity);
}

TEST(NumberText, ReadsWhatIsTooSmallAsZero) {
  EXPECT_TRUE(Same(ParseDouble("1e-400"), 0.0));
  EXPECT_TRUE(Same(ParseDouble("-1e-400"), -0.0));
  EXPECT_TRUE(Same(ParseDouble("1e-999999999999999999999"), 0.0));
}

TEST(NumberText, ReadsZeroWithAnyExponentAsZero) {
  EXPECT_TRUE(Same(ParseDouble("0e999999999999"), 0.0));
  EXPECT_TRUE(Same(ParseDouble("-0.0e-999999999999"), -0.0));
}

TEST(NumberText, RoundsToTheNearestDouble) {
  EXPECT_EQ(ParseDouble("9007199254740993"), 9007199254740992.0);
  EXPECT_EQ(ParseDouble("9007199254740993.0000000000000000000000000000000000000001"), 9007199254740994.0);
}

TEST(NumberText, ReadsInfinityAndNan) {
  EXPECT_EQ(ParseDouble("inf"), kInfinity);
  EXPECT_EQ(ParseDouble("-Infinity"), -kInfinity);
  EXPECT_EQ(ParseDouble("+INF"), kInfinity);
  EXPECT_TRUE(std::isnan(ParseDouble("nan")));
  EXPECT_TRUE(std::isnan(ParseDouble("+NaN")));
  EXPECT_EQ(ParseDouble("in"), 0.0);
}

TEST(NumberText, ReadsHexadecimalDoubles) {
  EXPECT_EQ(ParseDouble("0x10"), 16.0);
  EXPECT_EQ(ParseDouble("-0X1.8p3"), -12.0);
  EXPECT_EQ(ParseDouble("+0x.8"), 0.5);
  EXPECT_EQ(ParseDouble("0x"), 0.0);
}

TEST(NumberText, ReadsDoublesAsTheCLibraryDoes) { ReadDoublesAsTheCLibraryDoes(); }

TEST(NumberText, ReadsDoublesOutOfNoiseAsTheCLibraryDoes) { ReadDoublesOutOfNoiseAsTheCLibraryDoes(); }

TEST(NumberText, ReadsPrintedDoublesAsTheCLibraryDoes) { ReadPrintedDoublesAsTheCLibraryDoes(); }

// TruncateToInt

TEST(NumberText, KeepsNumbersThatFitAnInt) {
  EXPECT_EQ(TruncateToInt(0), 0);
  EXPECT_EQ(TruncateToInt(-1), -1);
  EXPECT_EQ(TruncateToInt(2147483647), 2147483647);
  EXPECT_EQ(TruncateToInt(-2147483648LL), INT_MIN);
}

TEST(NumberText, KeepsTheLow32BitsOfWiderNumbers) {
  EXPECT_EQ(TruncateToInt(2147483648LL), INT_MIN);
  EXPECT_EQ(TruncateToInt(4294967295LL), -1);
  EXPECT_EQ(TruncateToInt(4294967296LL), 0);
  EXPECT_EQ(TruncateToInt(-2147483649LL), 2147483647);
  EXPECT_EQ(TruncateToInt(LLONG_MAX), -1);
  EXPECT_EQ(TruncateToInt(LLONG_MIN), 0);
}

// The same while the C library reads and writes a comma for the decimal point.
class CommaLocale : public testing::Test {
 protected:
  void SetUp() override {
    char const* const names[] = {"de_DE.UTF-8", "de_DE.utf8",  "de_DE",       "de_AT.UTF-8",
                                 "fr_FR.UTF-8", "es_ES.UTF-8", "it_IT.UTF-8", "nl_NL.UTF-8",
                                 "pl_PL.UTF-8", "pt_BR.UTF-8", "ru_RU.UTF-8"};
    for (char const* const name : names) {
      if (std::setlocale(LC_ALL, name) != nullptr && std::strcmp(std::localeconv()->decimal_point, ",") == 0) return;
    }
    GTEST_SKIP() << "No locale with a decimal comma is installed.";
  }

  void TearDown() override { std::setlocale(LC_ALL, "C"); }
};

TEST_F(CommaLocale, IsInForce) {
  char text[16];
  std::snprintf(text, sizeof text, "%.1f", 1.5);
  EXPECT_STREQ(text, "1,5");
}

TEST_F(CommaLocale, WritesDoublesWithAPoint) {
  EXPECT_EQ(Written(-2.5), "-2.5");
  EXPECT_EQ(Written(1234567.891), "1234567.891");
  EXPECT_EQ(Written(1.5e-7), "1.5e-07");
}

TEST_F(CommaLocale, ReadsDoublesWithAPoint) {
  EXPECT_EQ(ParseDouble("2.5"), 2.5);
  EXPECT_EQ(ParseDouble("1,5"), 1.0);
  EXPECT_EQ(ParseDouble("0x1.8p3"), 12.0);
  EXPECT_EQ(ParseDouble("1.5e400"), kInfinity);
}

TEST_F(CommaLocale, WritesDoublesThatReadBack) { WriteDoublesThatReadBack(); }

TEST_F(CommaLocale, WritesPlainDoublesThatReadBack) { WritePlainDoublesThatReadBack(); }

TEST_F(CommaLocale, WritesIntegersThatReadBack) { WriteIntegersThatReadBack(); }

TEST_F(CommaLocale, ReadsIntegersAsTheCLibraryDoesInTheCLocale) { ReadIntegersAsTheCLibraryDoes(); }

TEST_F(CommaLocale, ReadsIntegersOutOfNoiseAsTheCLibraryDoesInTheCLocale) { ReadIntegersOutOfNoiseAsTheCLibraryDoes(); }

TEST_F(CommaLocale, ReadsDoublesAsTheCLibraryDoesInTheCLocale) { ReadDoublesAsTheCLibraryDoes(); }

TEST_F(CommaLocale, ReadsDoublesOutOfNoiseAsTheCLibraryDoesInTheCLocale) { ReadDoublesOutOfNoiseAsTheCLibraryDoes(); }

// The same while the C++ library's streams group digits and write a comma.
class CommaStreams : public testing::Test {
 protected:
  void SetUp() override { before_ = std::locale::global(std::locale(std::locale(), new Comma)); }
  void TearDown() override { std::locale::global(before_); }

 private:
  class Comma : public std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
  };

  std::locale before_;
};

TEST_F(CommaStreams, WritesNumbersWithAPointAndUngrouped) {
  EXPECT_EQ(Written(1234567.891), "1234567.891");
  EXPECT_EQ(Written(1234567LL), "1234567");
}

TEST_F(CommaStreams, ReadsNumbersWithAPoint) {
  EXPECT_EQ(ParseDouble("1234567.891"), 1234567.891);
  EXPECT_EQ(ParseInteger("1.234"), 1);
}

}  // namespace
