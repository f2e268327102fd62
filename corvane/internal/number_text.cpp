#include "corvane/internal/number_text.h"

#include <locale.h>  // newlocale
#include <stdlib.h>  // strtod_l

#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

namespace corvane::internal {

namespace {

// No number of so many digits overflows an unsigned long long.
constexpr int kSafeDigits = std::numeric_limits<unsigned long long>::digits10;

template <class Number>
std::size_t WriteInteger(char* to, Number number) {
  return static_cast<std::size_t>(std::to_chars(to, to + kNumberRoom, number).ptr - to);
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

double ParseWithC(char const* text) {
  static locale_t const c = newlocale(LC_ALL_MASK, "C", nullptr);
  return c != nullptr ? strtod_l(text, nullptr, c) : 0.0;
}

}  // namespace

std::size_t WriteNumber(char* to, long long number) { return WriteInteger(to, number); }
std::size_t WriteNumber(char* to, unsigned long long number) { return WriteInteger(to, number); }

std::size_t WriteNumber(char* to, double number) {
  double const magnitude = std::fabs(number);
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

double ParseDouble(char const* text) {
  text = SkipBlanks(text);
  char const* const signless = *text == '+' || *text == '-' ? text + 1 : text;
  if (signless[0] == '0' && (signless[1] == 'x' || signless[1] == 'X')) return ParseWithC(text);  // hexadecimal
  if (*text == '+') {
    if (*signless == '-' || *signless == '+') return 0;
    text = signless;
  }
  double number = 0;
  auto const parsed = std::from_chars(text, text + std::strlen(text), number);
  // Out of range from_chars gives no value, atof the nearest one: infinity, zero or a denormal.
  return parsed.ec == std::errc::result_out_of_range ? ParseWithC(text) : number;
}

}  // namespace corvane::internal
