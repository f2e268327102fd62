#ifndef CORVANE_TESTS_CLUSTER_ACCOUNT_H
#define CORVANE_TESTS_CLUSTER_ACCOUNT_H

#include <cstdint>
#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "tests/cluster/journal.h"

namespace corvane::test {

/// What a node has of each id: the numbers of the rows, in ascending order, separated by commas.
using Stored = std::map<Id, std::string>;

/// What a node has of an id that is there once, and whole: two rows.
constexpr char const* kWhole = "1,2";

/// What the journals say, compared with what a node has.
struct Account {
  std::uint64_t acknowledged = 0;
  std::uint64_t refused = 0;
  std::uint64_t unknown = 0;
  std::uint64_t unknownStored = 0;  ///< of the unknown: those that are there

  // Each must be 0.
  std::uint64_t lost = 0;           ///< acknowledged, and not there
  std::uint64_t notWhole = 0;       ///< there in part, or more than once
  std::uint64_t refusedStored = 0;  ///< refused, and there
  std::uint64_t unclear = 0;        ///< with no outcome, or several, or begun more than once, or not at all
  std::uint64_t strange = 0;        ///< there, and in no journal

  std::uint64_t Faults() const { return lost + notWhole + refusedStored + unclear + strange; }
};

Account Compare(std::vector<Line> const& journal, Stored const& stored);

std::ostream& operator<<(std::ostream& out, Account const& account);

/// How long a killed node kept the writers from their work: the time from the kill until the first acknowledgement of
/// what was begun after the node was gone.
struct Recovery {
  std::vector<Clock::duration> hit;  ///< of each writer that lost a connection meanwhile
  std::vector<Clock::duration> all;  ///< of each writer
};

/// `journals` has one of each writer. A writer without such an acknowledgement is left out.
Recovery RecoveryAfter(Clock::time_point kill, Clock::time_point gone, std::vector<std::vector<Line>> const& journals);

/// The middle one, of an even number the upper of the two; zero of none.
Clock::duration Median(std::vector<Clock::duration> times);
Clock::duration Worst(std::vector<Clock::duration> const& times);

}  // namespace corvane::test

#endif
