#ifndef CORVANE_TESTS_INJECTION_HOSTILE_TEXTS_H
#define CORVANE_TESTS_INJECTION_HOSTILE_TEXTS_H

#include <string>
#include <vector>

namespace corvane::test {

/// The capacity of the text columns that hostile texts are written to; many of them would lose half an escape there,
/// were texts escaped before they are cut.
constexpr unsigned kCapacity = 40;

/// More than 5,000 texts that try to break out of a literal: combinations of what is known to do so somewhere, texts
/// that are cut at kCapacity, long ones, and random ones. The seed of the random ones is printed; CORVANE_TEST_SEED
/// gives another one.
std::vector<std::string> const& HostileTexts();

/// The text with what is not plain ASCII as \xNN, and without the middle of a long one.
std::string Shown(std::string const& text);

/// The bytes as a literal that no quoting is needed for: X'616263'.
std::string HexLiteral(std::string const& bytes);
/// The same digits alone.
std::string Hex(std::string const& bytes);

}  // namespace corvane::test

#endif
