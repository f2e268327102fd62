#include "tests/support/tally.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <map>
#include <mutex>
#include <utility>

namespace corvane::test {

namespace {

class Table : public ::testing::Environment {
 public:
  void Add(std::string const& tried, std::string const& checked, std::uint64_t count) {
    std::lock_guard<std::mutex> const guard(mutex_);
    counts_[{tried, checked}] += count;
  }

  void TearDown() override {
    char const* const name = std::getenv("CORVANE_TALLY");
    std::ofstream file;
    if (name != nullptr) file.open(name, std::ios::app);
    for (auto const& [what, count] : counts_) {
      std::cout << "[ COUNTED  ] " << count << ' ' << what.first << ": " << what.second << '\n';
      if (file) file << count << '\t' << what.first << '\t' << what.second << '\n';
    }
  }

 private:
  std::mutex mutex_;
  std::map<std::pair<std::string, std::string>, std::uint64_t> counts_;
};

auto* const table = static_cast<Table*>(::testing::AddGlobalTestEnvironment(new Table));  // owned by GoogleTest

}  // namespace

void Tally(std::string const& tried, std::string const& checked, std::uint64_t count) {
  table->Add(tried, checked, count);
}

}  // namespace corvane::test
