#ifndef CORVANE_TESTS_SUPPORT_WATCHDOG_H
#define CORVANE_TESTS_SUPPORT_WATCHDOG_H

#include <string>

namespace corvane::test {

/// Ends the program, saying what was being tried, when that takes longer than `seconds`. One at a time.
class Watchdog {
 public:
  Watchdog(unsigned seconds, std::string const& tried);
  Watchdog(Watchdog const&) = delete;
  Watchdog& operator=(Watchdog const&) = delete;
  ~Watchdog();
};

}  // namespace corvane::test

#endif
