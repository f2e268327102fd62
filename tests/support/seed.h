#ifndef CORVANE_TESTS_SUPPORT_SEED_H
#define CORVANE_TESTS_SUPPORT_SEED_H

#include <cstdlib>
#include <random>
#include <string>

namespace corvane::test {

/// What tests that use chance start from: CORVANE_TEST_SEED, and without it always the same number.
inline unsigned Seed() {
  char const* const seed = std::getenv("CORVANE_TEST_SEED");
  return seed != nullptr ? static_cast<unsigned>(std::stoul(seed)) : 1;
}

/// Whether tests that have a longer form are to run it: CORVANE_TEST_LONG is set.
inline bool IsLongRun() { return std::getenv("CORVANE_TEST_LONG") != nullptr; }

/// A number from `least` to `most`.
template <class Number>
Number Chosen(std::mt19937& chance, Number least, Number most) {
  return std::uniform_int_distribution<Number>(least, most)(chance);
}

}  // namespace corvane::test

#endif
