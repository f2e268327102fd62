#ifndef CORVANE_EXAMPLES_DEMO_QUESTIONS_H
#define CORVANE_EXAMPLES_DEMO_QUESTIONS_H

#include "account.h"
#include "corvane/corvane.h"
#include "tzdata.h"

namespace demo {

/// Asks questions about the loaded data in the query language, a step for each, and compares the rows that come back
/// with the answers that the files give. Commits. Throws AException when the server fails.
void AskQuestions(ASSession& session, TimeZoneData const& data, Account& account);

}  // namespace demo

#endif
