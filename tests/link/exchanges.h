#ifndef CORVANE_TESTS_LINK_EXCHANGES_H
#define CORVANE_TESTS_LINK_EXCHANGES_H

#include <ostream>
#include <string>
#include <vector>

#include "corvane/corvane.h"

// What is sent over a link that fails: each kind of statement, with all that can be known of it.
namespace corvane::test {

/// What one request is, as far as a failure of its link matters.
enum class Request {
  kChange,    // may be done again, and then changes nothing
  kInsert,    // is refused the second time
  kQuery,     // has rows in its answer
  kCommit,    // may be done again, and then does nothing
  kRollback,  // is never sent again
};

/// The tables of all exchanges, with their rows.
std::vector<std::string> TablesOfExchanges();
/// Statements that make the rows of the tables those again.
std::vector<std::string> RowsOfExchanges();
/// A query whose only field shows what the tables hold that are written to.
extern char const* const kStateOfExchanges;
/// Its answer for the rows above.
extern char const* const kFreshState;

struct Exchange {
  char const* name;
  std::vector<Request> requests;
  // What others see in the tables before the first request, and after each.
  std::vector<char const*> withAutocommit;
  std::vector<char const*> inTransaction;
  // Does it, and returns what was wrong in what the library gave: nothing, as a rule. With `repeated` one of the
  // requests may have been done twice.
  std::string (*run)(ASSession& session, bool repeated);
};
std::ostream& operator<<(std::ostream& out, Exchange const& exchange);

std::vector<Exchange> const& AllExchanges();

}  // namespace corvane::test

#endif
