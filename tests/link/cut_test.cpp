#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "tests/link/site.h"
#include "tests/support/seed.h"
#include "tests/support/tally.h"
#include "tests/support/watchdog.h"

using corvane::test::AllExchanges;
using corvane::test::Bytes;
using corvane::test::Chosen;
using corvane::test::Conversation;
using corvane::test::Exchange;
using corvane::test::Expect;
using corvane::test::Expected;
using corvane::test::Fault;
using corvane::test::IsLongRun;
using corvane::test::LinkTest;
using corvane::test::Mode;
using corvane::test::Outcome;
using corvane::test::Place;
using corvane::test::Report;
using corvane::test::Request;
using corvane::test::Seed;
using corvane::test::Site;
using corvane::test::Tally;
using corvane::test::Watchdog;
using corvane::test::Way;

// A link that ends behind any byte of what is said over it.
namespace {

constexpr unsigned kPatience = 30;  // seconds
constexpr char const* kChecked = "outcome, message, values, what the server holds, session usable";

class Cut : public LinkTest, public testing::WithParamInterface<std::tuple<Exchange, bool>> {
 protected:
  void CreateTables() override { site_ = MakeSite(); }

  Exchange const& TheExchange() const { return std::get<0>(GetParam()); }
  // All that there are for the test's autocommit mode.
  std::vector<Mode> Modes() const {
    bool const autocommit = std::get<1>(GetParam());
    if (!autocommit) return {{false, true}, {false, false}};
    return {{true, true}, {true, false}, {true, true, false}};
  }
  Site& TheSite() { return *site_; }

  void Try(Conversation const& conversation, Mode mode, Fault const& fault) {
    Place const place = conversation.PlaceOf(fault);
    Expected const expected = Expect(TheExchange(), mode, place);
    std::ostringstream tried;
    tried << TheExchange() << ", " << mode << ": " << fault << " (request " << place.request
          << (place.delivered ? ", delivered)" : ", not delivered)");
    SCOPED_TRACE(tried.str());
    Watchdog const watchdog(kPatience, tried.str());
    Report const report = TheSite().Do(TheExchange(), mode, {fault}, place.delivered);
    Check(report, expected);
    EXPECT_EQ(report.sleeps, expected.sleeps);
    if (report.outcome != Outcome::kDone && report.kind != corvane::ErrorKind::kOutcomeUnknown) {
      EXPECT_EQ(report.state, expected.states.front()) << "something was changed: " << report.message;
    }
    Tally(place.request < 2 ? "links cut while connecting" : "links cut in a statement or its answer", kChecked);
  }

  // Behind each byte of the way, from the `first` to the `last`: each time in another mode and with another kind of
  // fault, and in an answer, which is the same with and without autocommit, by turns with and without; or with all.
  void TryAll(Conversation const& conversation, Way way, std::uint64_t first, std::uint64_t last) {
    std::vector<Mode> const modes = Modes();
    for (std::uint64_t after = first; after <= last && !HasFailure(); ++after) {
      std::uint64_t turn = after + Seed();
      if (way == Way::kToClient && !IsLongRun()) {
        if ((turn % 2 == 0) != modes.front().autocommit) continue;
        turn /= 2;
      }
      for (std::size_t i = 0; i < modes.size(); ++i) {
        bool const closes = (turn / modes.size() + i) % 2 == 0;
        if (IsLongRun() || turn % modes.size() == i) {
          Try(conversation, modes[i], {closes ? Fault::Kind::kClose : Fault::Kind::kReset, way, after});
        }
        if (IsLongRun()) {
          Try(conversation, modes[i], {closes ? Fault::Kind::kReset : Fault::Kind::kClose, way, after});
        }
      }
    }
  }

 private:
  std::unique_ptr<Site> site_;
};

std::string NameOf(testing::TestParamInfo<std::tuple<Exchange, bool>> const& info) {
  return std::string(std::get<0>(info.param).name) + (std::get<1>(info.param) ? "WithAutocommit" : "InATransaction");
}

INSTANTIATE_TEST_SUITE_P(Exchanges, Cut, testing::Combine(testing::ValuesIn(AllExchanges()), testing::Bool()), NameOf);

// Connecting is the same for all exchanges; the longer form cuts it for each of them all the same.
TEST_P(Cut, BehindAnyByteIsReportedOrMended) {
  Conversation const conversation = TheSite().Listen(TheExchange(), Modes().front());
  bool const connecting = IsLongRun() || std::string(TheExchange().name) == "Insert";
  Bytes const first = connecting ? Bytes() : conversation.Connected();
  TryAll(conversation, Way::kToServer, first.toServer, conversation.End().toServer);
  TryAll(conversation, Way::kToClient, first.toClient, conversation.End().toClient);
}

// Several connections of a session one after the other, anywhere: what is documented for any of them may come of it.

class CutAgain : public LinkTest {
 protected:
  static Expected Anything(Exchange const& exchange, Mode mode) {
    auto const& states = mode.autocommit ? exchange.withAutocommit : exchange.inTransaction;
    Expected expected;
    expected.outcomes = {Outcome::kDone, Outcome::kConnectFailed};
    expected.outcomes.push_back(mode.reconnect ? Outcome::kDied : Outcome::kLost);
    if (!mode.repeatsWrites) expected.outcomes.push_back(Outcome::kUnknown);
    for (Request const request : exchange.requests) {
      if (request == Request::kQuery) expected.outcomes.push_back(Outcome::kNoRows);
      if (request == Request::kRollback) expected.outcomes.push_back(Outcome::kNoRollback);
      if (request == Request::kInsert && mode.autocommit) expected.outcomes.push_back(Outcome::kTwice);
    }
    expected.states.assign(states.begin(), states.end());
    expected.done = states.back();
    return expected;
  }
};

TEST_F(CutAgain, AnywhereIsReportedOrMended) {
  std::unique_ptr<Site> const site = MakeSite();
  std::mt19937 chance(Seed());
  int const rounds = IsLongRun() ? 2000 : 200;
  for (int round = 0; round < rounds && !HasFailure(); ++round) {
    Exchange const& exchange = AllExchanges()[Chosen<std::size_t>(chance, 0, AllExchanges().size() - 1)];
    Mode const mode{Chosen(chance, 0, 1) == 1, Chosen(chance, 0, 1) == 1, Chosen(chance, 0, 1) == 1};
    std::ostringstream tried;
    tried << "seed " << Seed() << ", round " << round << ", " << exchange << ", " << mode << ':';
    std::vector<Fault> faults;
    for (int count = Chosen(chance, 1, 4); count > 0; --count) {
      Way const way = Chosen(chance, 0, 1) == 1 ? Way::kToServer : Way::kToClient;
      Fault::Kind const kind = Chosen(chance, 0, 1) == 1 ? Fault::Kind::kClose : Fault::Kind::kReset;
      // Most of them behind connecting, which would keep the later ones from being met.
      faults.push_back({kind, way, Chosen<std::uint64_t>(chance, Chosen(chance, 0, 3) == 0 ? 0 : 100, 700)});
      tried << ' ' << faults.back() << ';';
    }
    SCOPED_TRACE(tried.str());
    Watchdog const watchdog(kPatience, tried.str());
    site->Proxy().Slice(Chosen<std::size_t>(chance, 1, 200));
    Report const report = site->Do(exchange, mode, faults, true);
    Expected expected = Anything(exchange, mode);
    expected.constructed = report.constructed;
    expected.kind = report.kind;
    Check(report, expected);
    Tally("several links cut anywhere, by chance", kChecked);
  }
}

}  // namespace
