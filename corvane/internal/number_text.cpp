#include "corvane/internal/number_text.h"

#include <locale.h>  // newlocale
#include <stdlib.h>  // strtod_l

#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <limits>

namespace corvane::internal {

namespace {

constexpr int kWordDigits = 8;  // that are handled at once, a byte each

// No number of so many digits overflows an unsigned long long.
constexpr int kSafeDigits = std::numeric_limits<unsigned long long>::digits10;

constexpr unsigned long long kTenToEight = 100'000'000;

// The eight digits of a number below 10^8, a byte each with the value of the digit, the first one lowest: halves, then
// quarters, then all of them are divided at once (P. Khuong, "How to Print Integers Really Fast", 2017).
std::uint64_t DigitsOf(std::uint64_t number) {
  std::uint64_t const halves = number / 10'000 | number % 10'000 << 32;
  std::uint64_t const hundreds = halves * 10'486 >> 20 & 0x0000007F0000007F;  // 10486 / 2^20: a hundredth
  std::uint64_t const pairs = hundreds | (halves - hundreds * 100) << 16;
  std::uint64_t const tens = pairs * 103 >> 10 & 0x000F000F000F000F;  // 103 / 2^10: a tenth
  return tens | (pairs - tens * 10) << 8;
}

void PutDigits(char* to, std::uint64_t digits) { StoreWord(to, digits + 0x3030303030303030); }

// Without leading zeros. It writes eight bytes whatever the length.
std::size_t WriteShort(char* to, std::uint64_t number) {
  std::uint64_t const digits = DigitsOf(number);
  int const leadingZeros = number != 0 ? __builtin_ctzll(digits) / 8 : kWordDigits - 1;
  PutDigits(to, digits >> (8 * leadingZeros));
  return static_cast<std::size_t>(kWordDigits - leadingZeros);
}

// The blanks of isspace() in the "C" locale.
char const* SkipBlanks(char const* text) {
  while (*text == ' ' || (*text >= '\t' && *text <= '\r')) ++text;
  return text;
}

char const* SkipDigits(char const* text) {
  while (IsDigit(*text)) ++text;
  return text;
}

// Takes eight digits over into the number, if there are as many: two at a time, then four, then all, in one register
// (D. Lemire, "Number Parsing at a Gigabyte per Second", 2021).
bool TakeWord(unsigned long long& number, char const* at) {
  constexpr std::uint64_t kZeros = 0x3030303030303030;
  constexpr std::uint64_t kHigh = 0xF0F0F0F0F0F0F0F0;
  constexpr std::uint64_t kSix = 0x0606060606060606;  // lifts what lies behind '9' into the high half
  constexpr std::uint64_t kPairs = 0x000000FF000000FF;
  std::uint64_t word = LoadWord(at);
  if ((word & kHigh) != kZeros || ((word + kSix) & kHigh) != kZeros) return false;
  word -= kZeros;
  word = word * 10 + (word >> 8);
  word = ((word & kPairs) * (100 + (1'000'000ULL << 32)) + ((word >> 16) & kPairs) * (1 + (10'000ULL << 32))) >> 32;
  number = number * 100'000'000 + word;
  return true;
}

// Takes the digits up to `end` over into the number and returns where they stop.
char const* TakeDigits(unsigned long long& number, char const* at, char const* end) {
  unsigned long long taken = number;
  for (; at != end && IsDigit(*at); ++at) taken = taken * 10 + static_cast<unsigned char>(*at - '0');
  number = taken;
  return at;
}

// The powers of ten that a double holds exactly, as far as they are needed.
constexpr double kPowersOfTen[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                   1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};

// A plain decimal number of at most 16 characters, the whole text: 15 digits and a power of ten up to 10^22 are exact
// as doubles, so that their quotient is rounded once, to the double that lies nearest (W. D. Clinger, "How to Read
// Floating Point Numbers Accurately", 1990). So are 16 digits without a point.
bool ParseShortDecimal(double& number, char const* text, char const* end) {
  if (end - text > static_cast<std::ptrdiff_t>(std::size(kPowersOfTen))) return false;
  char const* const digits = *text == '-' ? text + 1 : text;
  unsigned long long mantissa = 0;
  char const* const point = TakeDigits(mantissa, digits, end);
  std::ptrdiff_t decimals = 0;
  if (point != end) {
    if (*point != '.' || TakeDigits(mantissa, point + 1, end) != end) return false;
    decimals = end - point - 1;
  }
  if (point == digits) return false;
  double const magnitude = static_cast<double>(mantissa) / kPowersOfTen[decimals];
  number = *text == '-' ? -magnitude : magnitude;
  return true;
}

double ParseWithC(char const* text) {
  static locale_t const c = newlocale(LC_ALL_MASK, "C", nullptr);
  return c != nullptr ? strtod_l(text, nullptr, c) : 0.0;
}

// Numbers below it have at most 15 digits with the decimals that WriteShortDecimal() tries.
constexpr double kMostExact = 1e11;

// In any other mode of rounding the check below would take a neighbour for the number.
bool RoundsToNearest() {
  double const volatile tiny = std::numeric_limits<double>::min();
  return 1.0 + tiny == 1.0 - tiny;
}

// Writes a number that has few decimals; 0 when it has more. No two decimal numbers of at most 15 digits are read as
// the same double, so that the first one that is read as this number is the shortest text that is.
std::size_t WriteShortDecimal(char* to, double number, double magnitude) {
  constexpr int kMostDecimals = 4;
  for (int decimals = 0; decimals <= kMostDecimals; ++decimals) {
    // NOLINTNEXTLINE(bugprone-incorrect-roundings): what is rounded to another number is found out at once
    auto const scaled = static_cast<std::int64_t>(magnitude * kPowersOfTen[decimals] + 0.5);
    if (static_cast<double>(scaled) / kPowersOfTen[decimals] != magnitude) continue;
    char* at = to;
    if (std::signbit(number)) *at++ = '-';
    auto const power = static_cast<std::int64_t>(kPowersOfTen[decimals]);
    at += WriteNumber(at, static_cast<unsigned long long>(scaled / power));
    if (decimals > 0) {
      *at = '.';
      for (std::int64_t i = decimals, rest = scaled % power; i > 0; --i, rest /= 10) {
        at[i] = static_cast<char>('0' + rest % 10);
      }
      at += 1 + decimals;
    }
    return static_cast<std::size_t>(at - to);
  }
  return 0;
}

}  // namespace

std::size_t WriteNumber(char* to, long long number) {
  if (number >= 0) return WriteNumber(to, static_cast<unsigned long long>(number));
  *to = '-';
  return 1 + WriteNumber(to + 1, 0 - static_cast<unsigned long long>(number));
}

std::size_t WriteNumber(char* to, unsigned long long number) {
  if (number < kTenToEight) return WriteShort(to, number);
  unsigned long long const head = number / kTenToEight;
  std::size_t const length = head < kTenToEight ? WriteShort(to, head) : WriteNumber(to, head);
  PutDigits(to + length, DigitsOf(number % kTenToEight));
  return length + kWordDigits;
}

std::size_t WriteNumber(char* to, double number) {
  double const magnitude = std::fabs(number);
  if (std::size_t const length =
          magnitude < kMostExact && RoundsToNearest() ? WriteShortDecimal(to, number, magnitude) : 0)
    return length;
  bool const plain = magnitude == 0 || (magnitude >= 1e-6 && magnitude < 1e17);
  auto const format = plain ? std::chars_format::fixed : std::chars_format::scientific;
  return static_cast<std::size_t>(std::to_chars(to, to + kNumberRoom, number, format).ptr - to);
}

std::size_t WriteFixed(char* to, double number) {
  constexpr int kDecimals = 6;
  return static_cast<std::size_t>(std::to_chars(to, to + kFixedRoom, number, std::chars_format::fixed, kDecimals).ptr -
                                  to);
}

long long ParseInteger(char const* text) {
  constexpr long long kMax = std::numeric_limits<long long>::max();
  char const* digits = *text == '-' ? text + 1 : text;
  int count = 0;
  unsigned long long magnitude = 0;
  for (; count < kSafeDigits && IsDigit(digits[count]); ++count) {
    magnitude = magnitude * 10 + static_cast<unsigned char>(digits[count] - '0');
  }
  // Nearly every field ends here: a plain number that fits, with nothing before it but "-".
  if (count > 0 && !IsDigit(digits[count]) && magnitude <= static_cast<unsigned long long>(kMax)) {
    auto const number = static_cast<long long>(magnitude);
    return *text == '-' ? -number : number;
  }

  text = SkipBlanks(text);
  if (*text == '+' && text[1] != '-') ++text;  // from_chars takes "-" only
  digits = *text == '-' ? text + 1 : text;
  long long number = 0;
  auto const parsed = std::from_chars(text, SkipDigits(digits), number);
  if (parsed.ec == std::errc::result_out_of_range) {
    return *text == '-' ? std::numeric_limits<long long>::min() : kMax;
  }
  return number;
}

long long ParseInteger(char const* text, std::size_t length) {
  char const* const end = text + length;
  char const* const digits = *text == '-' ? text + 1 : text;
  unsigned long long magnitude = 0;
  if (digits == end || end - digits > std::numeric_limits<long long>::digits10) return ParseInteger(text);
  char const* at = digits;
  while (end - at >= kWordDigits && TakeWord(magnitude, at)) at += kWordDigits;
  at = TakeDigits(magnitude, at, end);
  if (at != end) return ParseInteger(text);
  auto const number = static_cast<long long>(magnitude);
  return *text == '-' ? -number : number;
}

double ParseDouble(char const* text) { return ParseDouble(text, std::strlen(text)); }

double ParseDouble(char const* text, std::size_t length) {
  char const* const end = text + length;
  if (double number = 0; ParseShortDecimal(number, text, end)) return number;
  text = SkipBlanks(text);
  char const* const signless = *text == '+' || *text == '-' ? text + 1 : text;
  if (signless[0] == '0' && (signless[1] == 'x' || signless[1] == 'X')) return ParseWithC(text);  // hexadecimal
  if (*text == '+') {
    if (*signless == '-' || *signless == '+') return 0;
    text = signless;
  }
  double number = 0;
  auto const parsed = std::from_chars(text, end, number);
  // Out of range from_chars gives no value, atof the nearest one: infinity, zero or a denormal.
  return parsed.ec == std::errc::result_out_of_range ? ParseWithC(text) : number;
}

}  // namespace corvane::internal
