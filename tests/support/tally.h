#ifndef CORVANE_TESTS_SUPPORT_TALLY_H
#define CORVANE_TESTS_SUPPORT_TALLY_H

#include <cstdint>
#include <string>

namespace corvane::test {

/// Counts what a test tried and what it checked of each: `Tally("client calls failed", "exception, log, state")`.
/// When the program ends it prints one line for each pair, with the sum, and appends it to the file that CORVANE_TALLY
/// names, for the table at the end of ./run test. May be called from several threads.
void Tally(std::string const& tried, std::string const& checked, std::uint64_t count = 1);

}  // namespace corvane::test

#endif
