// Every input that the fuzzers' corpora hold, those that once made a target fail among them, given to its target.

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "tests/fuzz/target.h"
#include "tests/support/tally.h"

// Of the sanitizers' runtime library, where there is one.
extern "C" __attribute__((weak)) void __sanitizer_set_death_callback(void (*callback)());

namespace corvane::fuzz {
namespace {

std::string current;  // the file whose input is being tried

void NameCurrent() {
  std::string const line = "while " + current + " was tried\n";
  std::fputs(line.c_str(), stderr);
}

void DieByName(int signal) {
  NameCurrent();
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

std::vector<std::filesystem::path> Entries(std::filesystem::path const& folder) {
  std::vector<std::filesystem::path> entries;
  for (auto const& entry : std::filesystem::directory_iterator(folder)) entries.push_back(entry.path());
  std::sort(entries.begin(), entries.end());
  return entries;
}

std::string Content(std::filesystem::path const& file) {
  std::ifstream in(file, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

class Replay : public testing::Test {
 public:
  explicit Replay(Target const& target) : target_(target) {}

  static void SetUpTestSuite() {
    if (__sanitizer_set_death_callback != nullptr) return __sanitizer_set_death_callback(NameCurrent);
    for (int const signal : {SIGABRT, SIGSEGV, SIGBUS, SIGFPE, SIGILL}) std::signal(signal, DieByName);
  }
  static void TearDownTestSuite() {
    if (__sanitizer_set_death_callback != nullptr) __sanitizer_set_death_callback(nullptr);
  }

  void TestBody() override {
    unsigned tried = 0;
    for (auto const& file : Entries(std::filesystem::path(CORVANE_FUZZ_CORPUS) / target_.name)) {
      current = file.string();
      ++tried;
      try {
        target_.run(Input(Content(file)));
      } catch (std::exception const& error) {
        ADD_FAILURE() << current << ": " << error.what();
      }
    }
    EXPECT_GT(tried, 0U);
    test::Tally(std::string("inputs of the fuzzers' corpus ") + target_.name, target_.checked, tried);
  }

 private:
  Target const& target_;
};

TEST(Corpora, BelongToTargets) {
  std::vector<std::string> names;
  for (auto const* target = Target::First(); target != nullptr; target = target->next) names.emplace_back(target->name);
  std::sort(names.begin(), names.end());
  std::vector<std::string> folders;
  for (auto const& folder : Entries(CORVANE_FUZZ_CORPUS)) folders.push_back(folder.filename());
  EXPECT_EQ(folders, names);
}

}  // namespace
}  // namespace corvane::fuzz

int main(int count, char** arguments) {
  using namespace corvane::fuzz;
  testing::InitGoogleTest(&count, arguments);
  for (auto const* target = Target::First(); target != nullptr; target = target->next) {
    testing::RegisterTest("Replay", target->name, nullptr, nullptr, __FILE__, __LINE__,
                          [target]() -> Replay* { return new Replay(*target); });
  }
  return RUN_ALL_TESTS();
}
