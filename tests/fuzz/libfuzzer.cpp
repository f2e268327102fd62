// Where libFuzzer enters a program of one target.

#include <cstdio>
#include <cstdlib>

#include "tests/fuzz/target.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* bytes, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* bytes, std::size_t size) {
  using namespace corvane::fuzz;
  try {
    Target::First()->run(Input(bytes, size));
  } catch (Finding const& finding) {
    std::fprintf(stderr, "%s: %s\n", Target::First()->name, finding.what());
    std::abort();
  }
  return 0;
}
