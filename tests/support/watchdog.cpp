#include "tests/support/watchdog.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstring>

namespace corvane::test {

namespace {

std::array<char, 512> message{};
std::size_t length = 0;

void Add(char const* text) {
  std::size_t const more = std::min(std::strlen(text), message.size() - length);
  std::memcpy(message.data() + length, text, more);
  length += more;
}

// Only what a signal handler may do.
void Bark(int) {
  [[maybe_unused]] ssize_t const written = write(STDERR_FILENO, message.data(), length);
  _exit(1);
}

}  // namespace

Watchdog::Watchdog(unsigned seconds, std::string const& tried) {
  length = 0;
  Add("HANGS: ");
  Add(tried.c_str());
  Add("\n");
  std::signal(SIGALRM, Bark);
  alarm(seconds);
}

Watchdog::~Watchdog() { alarm(0); }

}  // namespace corvane::test
