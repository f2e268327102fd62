#ifndef CORVANE_EXAMPLES_DEMO_SEQUENCE_H
#define CORVANE_EXAMPLES_DEMO_SEQUENCE_H

#include "account.h"
#include "corvane/corvane.h"
#include "database.h"

namespace demo {

/// Takes numbers from a sequence by two sessions in turn, a step. Throws AException when the server fails.
void CountFromTwoSessions(ASSession& session, Target const& target, Account& account);

}  // namespace demo

#endif
