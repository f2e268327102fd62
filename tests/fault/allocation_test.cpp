// Each allocation of an operation fails in turn: nothing leaks, and the same operation then succeeds.

#include <gtest/gtest.h>

#include <cctype>
#include <iostream>
#include <map>
#include <new>
#include <optional>
#include <streambuf>
#include <string>

#include "tests/fault/allocation_operations.h"
#include "tests/support/failing_allocation.h"
#include "tests/support/scripted_client.h"
#include "tests/support/tally.h"

namespace corvane::test {
namespace {

constexpr char const* kNoMemoryForRows = "Out of memory for the row buffer. ";

// With the numbers of six and more digits, the addresses in names of tables, written "#".
std::string WithoutAddresses(Str const& text) {
  std::string const all = text.ToString();
  std::string shown;
  for (std::size_t at = 0; at < all.size();) {
    std::size_t end = at;
    while (end < all.size() && std::isdigit(static_cast<unsigned char>(all[end])) != 0) ++end;
    bool const alias = end - at >= 6 && at > 0 && (all[at - 1] == 'T' || all[at - 1] == 'P');
    shown += alias ? "#" : all.substr(at, end > at ? end - at : 1);
    at = end > at ? end : at + 1;
  }
  return shown;
}

std::string Shown(std::function<Str()> const& text) { return text ? WithoutAddresses(text()) : ""; }

struct Outcome {
  bool failed;  // an allocation did
  Str result;
  std::string thrown;
};

Outcome TryWith(unsigned allocations, FailingAllocation::Times times, std::function<Str()> const& act) {
  Outcome outcome{false, Str(), "nothing"};
  FailingAllocation const failing(allocations, times);
  try {
    outcome.result = act();
  } catch (AException const& error) {
    UnfailingAllocation const unfailing;
    outcome.thrown = error.what();
  } catch (std::bad_alloc const&) {
    UnfailingAllocation const unfailing;
    outcome.thrown = "bad_alloc";
  }
  outcome.failed = failing.Failed();
  return outcome;
}

// Fails the allocations one after the other, each on objects of its own, until the operation comes to its end without.
// Returns how many failed.
template <class Prepare>
unsigned FailEach(FailingAllocation::Times times, std::string const& gives, Prepare prepare) {
  for (unsigned allocations = 0;; ++allocations) {
    SCOPED_TRACE("after " + std::to_string(allocations) +
                 (times == FailingAllocation::kOnce ? ", once" : ", for good"));
    {
      Prepared const prepared = prepare();
      std::string const before = Shown(prepared.state);
      Outcome const outcome = TryWith(allocations, times, prepared.act);
      if (outcome.thrown == "nothing") {
        EXPECT_EQ(WithoutAddresses(outcome.result), gives);
      } else {
        EXPECT_TRUE(outcome.thrown == "bad_alloc" || outcome.thrown == kNoMemoryForRows) << outcome.thrown;
      }
      std::string const state = Shown(prepared.state);
      EXPECT_EQ(Shown(prepared.act), gives) << "the second time";
      EXPECT_TRUE(state == before || state == Shown(prepared.state)) << "half done: " << state;
      if (!outcome.failed) return allocations;
    }
    if (::testing::Test::HasFailure()) return allocations;
  }
}

class AllocationOf : public testing::TestWithParam<Operation> {};

TEST_P(AllocationOf, FailsOneByOne) {
  std::string const gives = Shown(GetParam().prepare().act);
  EXPECT_EQ(gives, GetParam().gives);
  for (auto const times : {FailingAllocation::kOnce, FailingAllocation::kFromThenOn}) {
    unsigned const failed = FailEach(times, gives, GetParam().prepare);
    Tally("allocations failed, of values, records and queries", "exception, no leak, state, then the same again",
          failed);
  }
}

INSTANTIATE_TEST_SUITE_P(Plain, AllocationOf, testing::ValuesIn(PlainOperations()),
                         [](auto const& row) { return row.param.name; });

// Instead of the standard error stream.
class Nowhere : public std::streambuf {
 public:
  Nowhere() : before_(std::cerr.rdbuf(this)) {}
  Nowhere(Nowhere const&) = delete;
  Nowhere& operator=(Nowhere const&) = delete;
  ~Nowhere() override { std::cerr.rdbuf(before_); }

 protected:
  std::streamsize xsputn(char const*, std::streamsize size) override { return size; }
  int overflow(int c) override { return traits_type::not_eof(c); }

 private:
  std::streambuf* before_;
};

class AllocationOfASession : public testing::TestWithParam<SessionOperation> {
 protected:
  void TearDown() override { client.Reset(); }

  // The session has no transaction that would be lost with its connection: a statement that finds the connection in
  // disorder throws.
  Prepared Prepare(int level) {
    Close();
    client.Reset();
    AnswerOperations(client);
    session_.emplace(
        std::map<std::string, std::string>{
            {"Host", "a host with a name of some length"}, {"AutoCommit", "off"}, {"EmulateSequences", "yes"}},
        level, false);
    return GetParam().prepare(*session_);
  }

  // Nothing may be left then.
  void Close() {
    if (!session_.has_value()) return;
    session_->Disconnect();
    EXPECT_EQ(client.OpenHandles(), 0U);
    EXPECT_EQ(client.UnfreedResults(), 0U);
    session_.reset();
  }

  ScriptedClient& client = ScriptedClient::Get();
  std::optional<ASSession> session_;
};

TEST_P(AllocationOfASession, FailsOneByOne) {
  Nowhere const log;
  for (int const level : {0, 5}) {
    std::string const gives = Shown(Prepare(level).act);
    EXPECT_EQ(gives, GetParam().gives);
    for (auto const times : {FailingAllocation::kOnce, FailingAllocation::kFromThenOn}) {
      SCOPED_TRACE("level " + std::to_string(level));
      unsigned const failed = FailEach(times, gives, [&] { return Prepare(level); });
      Tally("allocations failed, of sessions, cursors and caches",
            "exception, no leak, state, connection, then the same again", failed);
    }
  }
  Close();
}

INSTANTIATE_TEST_SUITE_P(Open, AllocationOfASession, testing::ValuesIn(SessionOperations()),
                         [](auto const& row) { return row.param.name; });

}  // namespace
}  // namespace corvane::test
