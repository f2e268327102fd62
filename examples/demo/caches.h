#ifndef CORVANE_EXAMPLES_DEMO_CACHES_H
#define CORVANE_EXAMPLES_DEMO_CACHES_H

#include "account.h"
#include "corvane/corvane.h"
#include "database.h"
#include "tzdata.h"

namespace demo {

/// Reads countries through a record cache, and changes one, two steps; lets the server count what it was asked.
/// Commits, and leaves the countries as they were. Throws AException when the server fails.
void UseACache(ASSession& session, Target const& target, TimeZoneData const& data, Account& account);

}  // namespace demo

#endif
