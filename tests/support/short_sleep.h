#ifndef CORVANE_TESTS_SUPPORT_SHORT_SLEEP_H
#define CORVANE_TESTS_SUPPORT_SHORT_SLEEP_H

namespace corvane::test {

/// How often the program has called sleep(), which the library does after a refused connection. A program that links
/// short_sleep.cpp has a sleep() of its own, which returns almost at once.
int Sleeps();

}  // namespace corvane::test

#endif
