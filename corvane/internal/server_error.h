#ifndef CORVANE_INTERNAL_SERVER_ERROR_H
#define CORVANE_INTERNAL_SERVER_ERROR_H

#include "corvane/data/value/exception.h"

// What is known of the error numbers of servers (from 1000 and, of newer ones, from 3000 on) and of client libraries
// (2000 to 2999 and 5000 on).
namespace corvane::internal {

/// The SQLSTATE that the servers' manuals give for a number; "HY000", the general error, for all others.
char const* SqlStateOf(int serverError);

/// What a caller can do about it. Never kOutcomeUnknown, which only the statement can tell; kOther for 0.
ErrorKind KindOf(int serverError);

}  // namespace corvane::internal

#endif
