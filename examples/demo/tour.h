#ifndef CORVANE_EXAMPLES_DEMO_TOUR_H
#define CORVANE_EXAMPLES_DEMO_TOUR_H

#include "account.h"
#include "database.h"
#include "tzdata.h"

namespace demo {

/// Loads the data and shows on it, step by step, what the library does. Throws AException when the server fails.
void RunTour(Target const& target, TimeZoneData const& data, Account& account);

}  // namespace demo

#endif
