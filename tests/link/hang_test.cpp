#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "tests/link/site.h"
#include "tests/support/seed.h"
#include "tests/support/tally.h"
#include "tests/support/watchdog.h"

using corvane::test::AllExchanges;
using corvane::test::Bytes;
using corvane::test::Conversation;
using corvane::test::Exchange;
using corvane::test::Expect;
using corvane::test::Failure;
using corvane::test::FailureOf;
using corvane::test::Fault;
using corvane::test::IsLongRun;
using corvane::test::LinkTest;
using corvane::test::Mode;
using corvane::test::Parameters;
using corvane::test::Place;
using corvane::test::Report;
using corvane::test::Seed;
using corvane::test::Session;
using corvane::test::Site;
using corvane::test::Tally;
using corvane::test::Watchdog;
using corvane::test::Way;
using std::chrono::milliseconds;
using testing::StartsWith;

// A link that goes dead while both of its ends stay open: nothing but a time limit ends the waiting.
namespace {

using Clock = std::chrono::steady_clock;

Parameters const kLimits{{"ConnectTimeout", "1"}, {"ReadTimeout", "1"}, {"WriteTimeout", "1"}};
// What a limit of one second comes to; behind it there is one more connection, on a machine that is busy.
constexpr milliseconds kLeast(900), kMost(4000);
constexpr unsigned kPatience = 120;  // seconds

struct Hang {
  Exchange const* exchange;
  Mode mode;
  Fault fault;
};

std::ostream& operator<<(std::ostream& out, Hang const& hang) {
  return out << *hang.exchange << ", " << hang.mode << ": " << hang.fault;
}

class Dead : public LinkTest {
 protected:
  // Tries each, several at once, since most of the time is spent waiting.
  void TryAll(std::vector<Hang> const& hangs) {
    constexpr int kThreads = 12;
    Watchdog const watchdog(kPatience, "dead links");
    std::atomic<std::size_t> next{0};
    std::vector<std::thread> threads;
    for (int number = 0; number < kThreads; ++number) {
      std::unique_ptr<Site> site = MakeSite(number);
      threads.emplace_back([&hangs, &next, site = std::move(site)] {
        for (std::size_t i = next++; i < hangs.size(); i = next++) Try(*site, hangs[i]);
      });
    }
    for (std::thread& thread : threads) thread.join();
  }

 private:
  static void Try(Site& site, Hang const& hang) {
    SCOPED_TRACE(testing::Message() << hang);
    Conversation const conversation = site.Listen(*hang.exchange, hang.mode);
    Place const place = conversation.PlaceOf(hang.fault);
    Report const report = site.Do(*hang.exchange, hang.mode, {hang.fault}, place.delivered, kLimits);
    Check(report, Expect(*hang.exchange, hang.mode, place));
    EXPECT_GE(report.took, kLeast);
    EXPECT_LE(report.took, kMost);
    Tally(place.request == 0 ? "links dead while connecting, limit 1 s" : "links dead in a statement, limit 1 s",
          "outcome, message, values, what the server holds, time");
  }
};

std::vector<Mode> const kModes{{true, true}, {true, false}, {true, true, false}, {false, true}, {false, false}};

TEST_F(Dead, WhileConnectingIsLeftInTime) {
  std::unique_ptr<Site> const site = MakeSite(80);
  Exchange const& exchange = AllExchanges().front();
  Bytes const connected = site->Listen(exchange, kModes.front()).Connected();
  std::vector<Hang> hangs;
  for (Mode const mode : kModes) {
    for (std::uint64_t const after : {std::uint64_t{0}, std::uint64_t{1}, connected.toServer}) {
      hangs.push_back({&exchange, mode, {Fault::Kind::kSwallow, Way::kToServer, after}});
    }
    for (std::uint64_t const after : {std::uint64_t{1}, std::uint64_t{20}, connected.toClient - 1}) {
      hangs.push_back({&exchange, mode, {Fault::Kind::kSwallow, Way::kToClient, after}});
    }
  }
  TryAll(hangs);
}

// Within the request, behind it, and within the answer; all of them in the longer form.
TEST_F(Dead, InAStatementIsLeftInTime) {
  std::unique_ptr<Site> const site = MakeSite(80);
  std::vector<Hang> hangs;
  for (Exchange const& exchange : AllExchanges()) {
    Conversation const conversation = site->Listen(exchange, kModes.front());
    std::size_t const last = conversation.Requests();
    Bytes const before = conversation.Before(last);
    Bytes const behind = conversation.Behind(last);
    for (Mode const mode : kModes) {
      hangs.push_back({&exchange, mode, {Fault::Kind::kSwallow, Way::kToServer, before.toServer + 6}});
      hangs.push_back({&exchange, mode, {Fault::Kind::kSwallow, Way::kToServer, behind.toServer}});
      hangs.push_back({&exchange, mode, {Fault::Kind::kSwallow, Way::kToClient, behind.toClient - 1}});
    }
  }
  if (!IsLongRun()) {
    std::shuffle(hangs.begin(), hangs.end(), std::mt19937(Seed()));
    hangs.resize(hangs.size() / 3);
  }
  TryAll(hangs);
}

// The rest has no exchange of its own.

class DeadOnce : public LinkTest {
 protected:
  void CreateTables() override { site_ = MakeSite(); }
  Site& TheSite() { return *site_; }
  Parameters Limited(Mode mode, Parameters const& changes = {}) {
    Parameters parameters = changes;
    parameters.insert(kLimits.begin(), kLimits.end());
    return TheSite().Through(mode, parameters);
  }
  Clock::duration Took() const { return Clock::now() - begin_; }
  void Begin() { begin_ = Clock::now(); }

 private:
  Watchdog const watchdog_{kPatience, "a dead link"};
  Clock::time_point begin_;
  std::unique_ptr<Site> site_;
};

TEST_F(DeadOnce, ReceiverOfALargeStatementIsLeftInTime) {
  for (bool const autocommit : {true, false}) {
    Session session(Limited({autocommit, false}));
    Str const statement = Str("UPDATE item SET name='") + std::string(15000000, 'x') + "'";
    TheSite().Proxy().StopReading(Way::kToServer);
    Begin();
    EXPECT_EQ(FailureOf([&] { session.Execute(statement); }), (Failure{103, "Database connection lost"}));
    EXPECT_GE(Took(), kLeast);
    EXPECT_LE(Took(), kMost);
    TheSite().Proxy().Drop();
    session.Connect(false);
    Tally("statements that nobody reads, limit 1 s", "exception, time, session usable");
  }
}

TEST_F(DeadOnce, SenderOfALargeResultIsLeftInTime) {
  for (bool const autocommit : {true, false}) {
    Session session(Limited({autocommit, false}));
    session.Execute("SELECT REPEAT('x', 15000000) UNION ALL SELECT REPEAT('y', 15000000)");
    TheSite().Proxy().StopReading(Way::kToClient);
    Begin();
    EXPECT_EQ(FailureOf([&] { session.FetchMultiple(); }), (Failure{0, "MySQL fetch error. "}));
    EXPECT_GE(Took(), kLeast);
    EXPECT_LE(Took(), kMost);
    TheSite().Proxy().Drop();
    session.Connect(false);
    Tally("results of which no more comes, limit 1 s", "exception, time, session usable");
  }
}

// The limit is for each wait, not for the whole statement.
TEST_F(DeadOnce, SlowSenderIsWaitedForBeyondTheLimit) {
  Session session(Limited({true, false}));
  TheSite().Proxy().Slice(4, milliseconds(50));
  Begin();
  EXPECT_EQ(corvane::test::FetchedValue(session, "SELECT 'a text that takes two seconds to arrive'"),
            "a text that takes two seconds to arrive");
  EXPECT_GE(Took(), milliseconds(1500));
}

TEST_F(DeadOnce, LimitOfReconnectionsBoundsTheWholeWait) {
  Session session(Limited({true}, {{"RetryLimit", "2"}}));
  Fault const never{Fault::Kind::kSwallow, Way::kToServer, 0};
  TheSite().Proxy().Drop();
  TheSite().Proxy().Arm({never, never, never});
  Begin();
  EXPECT_EQ(FailureOf([&] { session.Execute("UPDATE item SET name='x'"); }),
            (Failure{103, "Database connection lost"}));
  EXPECT_EQ(TheSite().Proxy().Connections(), 2U);
  EXPECT_GE(Took(), milliseconds(1900));
  EXPECT_LE(Took(), milliseconds(6000));
  TheSite().Proxy().Drop();
  TheSite().Proxy().Arm({});
  EXPECT_EQ(session.Execute("UPDATE item SET name='x' WHERE id=77"), 0U);
}

}  // namespace
