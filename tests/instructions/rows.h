#ifndef CORVANE_TESTS_INSTRUCTIONS_ROWS_H
#define CORVANE_TESTS_INSTRUCTIONS_ROWS_H

// Stands in for the client library, in as few instructions as can be: rows.cpp defines the functions that the library
// calls, where they take precedence over those of the shared library. Every statement succeeds. Escaping stays real.
namespace corvane::test {

/// How many accounts there are; the next row behind the last one is the first.
constexpr long kAccounts = 1000;

/// Every result from now on has `count` rows, the first of which is the account number `first`, counted from 0.
void AnswerWith(long first, long count);

}  // namespace corvane::test

#endif
