#ifndef CORVANE_TESTS_UNIT_INTERNAL_NUMBER_PROBES_H
#define CORVANE_TESTS_UNIT_INTERNAL_NUMBER_PROBES_H

#include <gtest/gtest.h>
#include <locale.h>  // newlocale
#include <stdlib.h>  // strtod_l

#include <cmath>
#include <cstdint>
#include <cstring>
#include <random>
#include <string>

#include "corvane/internal/number_text.h"

// What the tests of numbers and their texts have in common.
namespace corvane::test {

template <class Number>
std::string Written(Number number) {
  char room[internal::kNumberRoom];
  return std::string(room, internal::WriteNumber(room, number));
}

/// What the C library reads in the "C" locale, whatever the locale in force.
inline locale_t CLocale() {
  static locale_t const c = newlocale(LC_ALL_MASK, "C", nullptr);
  return c;
}

inline double StandardDouble(std::string const& text) { return strtod_l(text.c_str(), nullptr, CLocale()); }

inline long long StandardInteger(std::string const& text) { return strtoll_l(text.c_str(), nullptr, 10, CLocale()); }

inline std::uint64_t BitsOf(double number) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &number, sizeof bits);
  return bits;
}

/// The same double: bit by bit, or a NaN as well.
inline testing::AssertionResult Same(double read, double expected) {
  if (std::isnan(expected) ? std::isnan(read) : BitsOf(read) == BitsOf(expected)) return testing::AssertionSuccess();
  return testing::AssertionFailure() << Written(read) << " instead of " << Written(expected);
}

/// Texts out of the same random numbers in every run.
class Random {
 public:
  std::uint64_t Bits() { return generator_(); }
  std::uint64_t Below(std::uint64_t limit) { return generator_() % limit; }

  char AnyOf(std::string const& alphabet) { return alphabet[Below(alphabet.size())]; }

  // Up to `longest` characters of `alphabet`.
  std::string Text(std::string const& alphabet, std::uint64_t longest) {
    std::string text;
    for (std::uint64_t left = Below(longest + 1); left > 0; --left) text += AnyOf(alphabet);
    return text;
  }

 private:
  std::mt19937_64 generator_{20240229};
};

}  // namespace corvane::test

#endif
