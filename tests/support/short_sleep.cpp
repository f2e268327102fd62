#include "tests/support/short_sleep.h"

#include <unistd.h>

#include <atomic>

namespace corvane::test {

namespace {

std::atomic<int> sleeps{0};

}  // namespace

int Sleeps() { return sleeps; }

}  // namespace corvane::test

extern "C" unsigned sleep(unsigned) {
  ++corvane::test::sleeps;
  usleep(2000);
  return 0;
}
