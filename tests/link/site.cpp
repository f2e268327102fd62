#include "tests/link/site.h"

#include <gmock/gmock.h>

#include <chrono>
#include <stdexcept>
#include <thread>
#include <utility>

#include "tests/support/short_sleep.h"

namespace corvane::test {

Site::Site(std::string schema)
    : schema_(std::move(schema)),
      observer_(schema_),
      proxy_(Environment("CORVANE_TEST_HOST"), Environment("CORVANE_TEST_PORT")) {
  for (std::string const& statement : TablesOfExchanges()) observer_.Run(statement);
}

Site::~Site() {
  proxy_.Drop();
  EXPECT_TRUE(ConnectionsEnd());
  EXPECT_TRUE(Dropped());
}

// A connection is off the server's list a moment before it has let go of its locks.
bool Site::Dropped() {
  constexpr int kAttempts = 50;
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    if (observer_.Refusal("DROP DATABASE " + schema_) == 0) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
  }
  return false;
}

Parameters Site::Through(Mode mode, Parameters changes) const {
  changes.insert({{"Host", "127.0.0.1"},
                  {"Port", proxy_.Port()},
                  {"UserName", Environment("CORVANE_TEST_USER")},
                  {"Password", Environment("CORVANE_TEST_PASSWORD")},
                  {"Database", schema_},
                  {"AutoCommit", mode.autocommit ? "on" : "off"},
                  {"AutoReconnect", mode.reconnect ? "on" : "off"},
                  {"EmulateSequences", "no"}});
  if (!mode.repeatsWrites) changes["RetryWrites"] = "off";
  return changes;
}

bool Site::ConnectionsEnd() {
  return observer_.Becomes(
      "SELECT COUNT(*) FROM information_schema.processlist WHERE db='" + schema_ + "' AND id<>CONNECTION_ID()", "0");
}

void Site::Restore() {
  if (state_ == kFreshState) return;
  for (std::string const& statement : RowsOfExchanges()) observer_.Run(statement);
  state_ = kFreshState;
}

// One statement may still meet the fault, and one more has to tell then that the connection was lost.
bool Site::Recovers(ASSession& session, Mode mode) {
  for (int attempt = 0; attempt < 3; ++attempt) {
    try {
      return FetchedValue(session, "SELECT 7") == "7";
    } catch (AException const& error) {
      Outcome const outcome = OutcomeOf(error);
      if (outcome == Outcome::kNoRows) continue;
      if (outcome != (mode.reconnect ? Outcome::kDied : Outcome::kLost)) return false;
      if (!mode.reconnect) session.Connect(false);
    }
  }
  return false;
}

Conversation Site::Listen(Exchange const& exchange, Mode mode) {
  Restore();
  state_.clear();
  proxy_.Arm({});
  std::vector<Turn> turns;
  {
    Session session(Through(mode));
    EXPECT_EQ(exchange.run(session, false), "");
    turns = proxy_.Turns(0);
  }
  EXPECT_TRUE(ConnectionsEnd());
  return {turns, exchange.requests.size() + 1};  // setting the autocommit mode is one more
}

Report Site::Do(Exchange const& exchange, Mode mode, std::vector<Fault> const& faults, bool repeated,
                Parameters const& changes) {
  Restore();
  proxy_.Arm(faults);
  Report report;
  int const sleeps = Sleeps();
  auto const begin = std::chrono::steady_clock::now();
  auto const isOver = [&] {
    report.sleeps = Sleeps() - sleeps;
    report.took = std::chrono::steady_clock::now() - begin;
  };
  auto const failed = [&](AException const& error) {
    report.outcome = OutcomeOf(error);
    report.message = error.what();
    report.kind = error.Kind();
  };
  try {
    Session session(Through(mode, changes));
    report.constructed = true;
    try {
      report.wrong = exchange.run(session, repeated);
    } catch (AException const& error) {
      failed(error);
    } catch (std::runtime_error const& error) {
      report.wrong = error.what();
    }
    isOver();
    proxy_.Arm({});
    report.recovered = Recovers(session, mode);
  } catch (AException const& error) {
    if (report.constructed) throw;
    failed(error);
    isOver();
  }
  proxy_.Drop();
  if (!ConnectionsEnd()) report.wrong += " connections left";
  report.state = state_ = observer_.Value(kStateOfExchanges).value_or("NULL");
  return report;
}

std::unique_ptr<Site> LinkTest::MakeSite(int number) const {
  return std::make_unique<Site>(Schema() + "_" + std::to_string(10 + number));
}

void LinkTest::Check(Report const& report, Expected const& expected) {
  EXPECT_THAT(expected.outcomes, testing::Contains(report.outcome)) << report.message;
  EXPECT_EQ(report.constructed, expected.constructed);
  EXPECT_EQ(report.wrong, "");
  EXPECT_TRUE(report.recovered);
  if (report.outcome == Outcome::kDone) {
    EXPECT_EQ(report.state, expected.done);
  } else {
    EXPECT_THAT(expected.states, testing::Contains(report.state));
    EXPECT_EQ(report.kind, expected.kind) << report.message;
  }
}

}  // namespace corvane::test
