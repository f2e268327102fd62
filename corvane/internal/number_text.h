#ifndef CORVANE_INTERNAL_NUMBER_TEXT_H
#define CORVANE_INTERNAL_NUMBER_TEXT_H

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace corvane::internal {

/// Room that every number written by the functions below fits into.
constexpr std::size_t kNumberRoom = 40;

/// Each writes a number's text to `to`, which has kNumberRoom bytes (no terminating NUL; what lies behind the text is
/// not kept), and returns its length.
std::size_t WriteNumber(char* to, long long number);
std::size_t WriteNumber(char* to, unsigned long long number);
/// The fewest digits that read back as the same double: plain notation for 0 and 1e-6 <= |x| < 1e17, with an
/// exponent outside; "nan" and "inf" for what is no number. Never dependent on the locale.
std::size_t WriteNumber(char* to, double number);

/// "%f" of the "C" locale: six decimals. At most kFixedRoom characters.
std::size_t WriteFixed(char* to, double number);
constexpr std::size_t kFixedRoom = 320;  // a sign, 309 digits, a point, six decimals

/// A digit of the "C" locale.
constexpr bool IsDigit(char c) { return static_cast<unsigned char>(c - '0') <= 9; }

/// Eight characters as one number, the first one lowest, so that they can be looked at all at once.
inline std::uint64_t LoadWord(char const* at) {
  std::uint64_t word = 0;
  std::memcpy(&word, at, sizeof word);
#if __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
  word = __builtin_bswap64(word);
#endif
  return word;
}

/// The other way round.
inline void StoreWord(char* to, std::uint64_t word) {
#if __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
  word = __builtin_bswap64(word);
#endif
  std::memcpy(to, &word, sizeof word);
}

/// What atoi, atoll and atof give in the "C" locale, whatever the locale in force: leading blanks and a sign are
/// taken, reading stops at the first other character, no digits give 0. ParseInteger saturates.
long long ParseInteger(char const* text);
double ParseDouble(char const* text);
/// The same for a text whose length is known; the NUL must be there.
long long ParseInteger(char const* text, std::size_t length);
double ParseDouble(char const* text, std::size_t length);

/// Two's-complement truncation, as an integer column of 32 bits takes a wider number.
constexpr int TruncateToInt(long long number) { return static_cast<int>(static_cast<unsigned>(number)); }

}  // namespace corvane::internal

#endif
