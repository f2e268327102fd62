#include <gmock/gmock.h>

#include <algorithm>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "tests/link/site.h"
#include "tests/support/seed.h"
#include "tests/support/tally.h"
#include "tests/support/watchdog.h"

using corvane::test::Bytes;
using corvane::test::Conversation;
using corvane::test::Fault;
using corvane::test::LinkTest;
using corvane::test::Mode;
using corvane::test::Place;
using corvane::test::Seed;
using corvane::test::Session;
using corvane::test::Site;
using corvane::test::Tally;
using corvane::test::Watchdog;
using corvane::test::Way;
using testing::Contains;

// The sequence connection, which is a session's second one, ends behind any byte.
namespace {

enum SequenceRequest : std::size_t { kConnecting, kCounting, kAsking, kNone };

class CutSequence : public LinkTest {
 protected:
  void CreateTables() override { site_ = MakeSite(); }
  Site& TheSite() { return *site_; }

  corvane::test::Parameters WithSequence() {
    return TheSite().Through(
        Mode{true},
        {{"EmulateSequences", "yes"}, {"SequenceHost", "127.0.0.1"}, {"SequencePort", TheSite().Proxy().Port()}});
  }
  int Stored() { return std::stoi(TheSite().Other().Value("SELECT Val FROM counter").value()); }
  void Count41() {
    TheSite().Other().Run("DELETE FROM counter");
    TheSite().Other().Run("INSERT INTO counter VALUES (41)");
  }

  Conversation Listen() {
    Count41();
    TheSite().Proxy().Arm({});
    Session session(WithSequence());
    EXPECT_EQ(ASSequence(&session, "counter").getNext(), 42);
    return {TheSite().Proxy().Turns(1), 2};
  }

  // A number whose answer was lost is skipped; none is given when the answer breaks off.
  static std::set<int> NumbersAt(Place const& place) {
    if (place.request == kCounting) return place.delivered ? std::set<int>{42, 43} : std::set<int>{42};
    if (place.request != kAsking) return {42};
    return place.answered > 0 ? std::set<int>{43, 0} : std::set<int>{43};
  }

  void Try(Conversation const& conversation, Fault const& fault) {
    Place const place = conversation.PlaceOf(fault);
    SCOPED_TRACE(testing::Message() << fault << ", request " << place.request);
    Watchdog const watchdog(30, "a sequence connection");
    Count41();
    TheSite().Proxy().Arm({Fault{}, fault});
    {
      Session session(WithSequence());
      ASSequence numbers(&session, "counter");
      int const number = numbers.getNext();
      EXPECT_THAT(NumbersAt(place), Contains(number));
      EXPECT_GE(Stored(), std::max(number, 42));
      // And the next one is a new one. (A request that was lost on its way back may be carried out last of all.)
      EXPECT_GT(numbers.getNext(), std::max(number, 42));
      EXPECT_EQ(corvane::test::FetchedValue(session, "SELECT 7"), "7");
    }
    Tally("sequence connections cut at a byte", "number given, number stored, next number");
  }

 private:
  std::unique_ptr<Site> site_;
};

TEST_F(CutSequence, BehindAnyByteGivesNoNumberTwice) {
  Conversation const conversation = Listen();
  Bytes const end = conversation.End();
  for (auto const& [way, last] : {std::pair{Way::kToServer, end.toServer}, std::pair{Way::kToClient, end.toClient}}) {
    for (std::uint64_t after = 0; after <= last && !HasFailure(); ++after) {
      Try(conversation, {(after + Seed()) % 2 == 0 ? Fault::Kind::kClose : Fault::Kind::kReset, way, after});
    }
  }
}

}  // namespace
