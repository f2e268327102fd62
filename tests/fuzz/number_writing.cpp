// The texts of numbers against printf, and read back. These programs run in the "C" locale.

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "corvane/corvane.h"
#include "corvane/internal/number_text.h"
#include "tests/fuzz/target.h"

namespace corvane::fuzz {
namespace {

template <class... Arguments>
std::string Printed(char const* format, Arguments... arguments) {
  char text[400];
  return std::string(text, static_cast<std::size_t>(std::snprintf(text, sizeof text, format, arguments...)));
}

template <class Number>
std::string Written(Number number) {
  char room[internal::kNumberRoom];
  return std::string(room, internal::WriteNumber(room, number));
}

// A number in the form d.ddde+xx, with as few digits as are read as the same.
std::string Shortest(double number) {
  std::string text;
  for (int decimals = 0; decimals <= 17; ++decimals) {
    text = Printed("%.*e", decimals, number);
    if (std::strtod(text.c_str(), nullptr) == number) break;
  }
  return text;
}

// The same digits without an exponent.
std::string Plain(std::string const& scientific) {
  std::size_t const e = scientific.find('e');
  int const exponent = std::atoi(scientific.c_str() + e + 1);
  std::string digits;
  for (char const c : scientific.substr(0, e)) {
    if (c >= '0' && c <= '9') digits += c;
  }
  std::string const sign = scientific.front() == '-' ? "-" : "";
  if (exponent < 0) return sign + "0." + std::string(static_cast<std::size_t>(-exponent - 1), '0') + digits;
  auto const before = static_cast<std::size_t>(exponent) + 1;
  if (digits.size() <= before) return sign + digits + std::string(before - digits.size(), '0');
  return sign + digits.substr(0, before) + "." + digits.substr(before);
}

std::string Expected(double number) {
  if (std::isnan(number)) return std::signbit(number) ? "-nan" : "nan";
  if (std::isinf(number)) return number < 0 ? "-inf" : "inf";
  double const magnitude = std::fabs(number);
  constexpr double kAllIntegers = 9007199254740992;  // from here on every digit is written
  if (magnitude >= kAllIntegers && magnitude < 1e17) return Printed("%.0f", number);
  std::string const shortest = Shortest(number);
  return magnitude == 0 || (magnitude >= 1e-6 && magnitude < 1e17) ? Plain(shortest) : shortest;
}

void CheckReal(double number) {
  std::string const text = Written(number);
  std::string const expected = Expected(number);
  // Beside a power of two a number further off may be shorter than the nearest one of as many digits.
  bool const shorter = text.size() < expected.size() && std::strtod(text.c_str(), nullptr) == number;
  if (!shorter) CheckEqual(text, expected, "the text of a double");
  if (std::isfinite(number)) CheckEqual(internal::ParseDouble(text.c_str()), number, "a double written and read");
  char fixed[internal::kFixedRoom];
  if (std::isfinite(number)) {
    CheckEqual(std::string(fixed, internal::WriteFixed(fixed, number)), Printed("%f", number), "a double as %f");
  }
  Str appended("x");
  appended << number;
  CheckEqual(appended.ToString(), "x" + text, "Str << double");
  ASDCurrency currency;
  currency = number;
  CheckEqual(currency.getstr().ToString(), text, "the text of a currency");
  CheckEqual(Double(number).getstr().ToString(), text, "the text of a Double");
}

Target const target("number_writing", "texts against printf and strtod", [](Input input) {
  while (!input.AtEnd()) {
    auto const bits = input.Take<std::uint64_t>();
    auto const number = static_cast<long long>(bits);
    CheckEqual(Written(number), Printed("%lld", number), "the text of a long long");
    CheckEqual(Written(static_cast<unsigned long long>(bits)), Printed("%llu", static_cast<unsigned long long>(bits)),
               "the text of an unsigned long long");
    CheckEqual(Int(static_cast<std::int32_t>(bits)).getstr().ToString(), Printed("%d", static_cast<std::int32_t>(bits)),
               "the text of an Int");
    double real = 0;
    std::memcpy(&real, &bits, sizeof real);
    CheckReal(real);
    CheckReal(static_cast<double>(number) / 100);
    CheckReal(static_cast<double>(static_cast<std::int32_t>(bits)) / 1e4);
  }
});

}  // namespace
}  // namespace corvane::fuzz
