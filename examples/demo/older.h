#ifndef CORVANE_EXAMPLES_DEMO_OLDER_H
#define CORVANE_EXAMPLES_DEMO_OLDER_H

#include "account.h"
#include "corvane/corvane.h"
#include "tzdata.h"

namespace demo {

/// Asks one of the questions once more, through the older interface, whose columns and tables are texts, and compares
/// the answer with that of ASCursor and with the files. Commits. Throws AException when the server fails.
void AskInTheOlderWay(ASSession& session, TimeZoneData const& data, Account& account);

}  // namespace demo

#endif
