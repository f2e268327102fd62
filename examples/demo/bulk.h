#ifndef CORVANE_EXAMPLES_DEMO_BULK_H
#define CORVANE_EXAMPLES_DEMO_BULK_H

#include "account.h"
#include "corvane/corvane.h"
#include "tzdata.h"

namespace demo {

/// Changes and deletes many rows by one statement each, a step for each, and compares what the database holds then with
/// the files. Rolls back. Throws AException when the server fails.
void ChangeInBulk(ASSession& session, TimeZoneData const& data, Account& account);

}  // namespace demo

#endif
