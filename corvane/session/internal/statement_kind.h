#ifndef CORVANE_SESSION_INTERNAL_STATEMENT_KIND_H
#define CORVANE_SESSION_INTERNAL_STATEMENT_KIND_H

#include <string_view>

// What can be told of a statement from its text. Both err on the side of false.
namespace corvane::internal {

/// Whether running the statement cannot change anything that outlives the connection: a SELECT, SHOW, DESCRIBE or
/// EXPLAIN without comments, a second statement, INTO or ":=", calling no function but built-in ones without effects.
/// A view that calls a function with effects is not seen.
bool CannotChangeData(std::string_view statement);

/// Whether the statement, sent in a transaction, leaves it open: nothing is committed when its connection is lost.
/// Tables of engines without transactions are not seen.
bool CannotCommit(std::string_view statement);

}  // namespace corvane::internal

#endif
