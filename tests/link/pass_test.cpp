#include <gtest/gtest.h>

#include <chrono>
#include <memory>

#include "tests/link/site.h"
#include "tests/support/tally.h"
#include "tests/support/watchdog.h"

using corvane::test::AllExchanges;
using corvane::test::Exchange;
using corvane::test::LinkTest;
using corvane::test::Mode;
using corvane::test::Outcome;
using corvane::test::Report;
using corvane::test::Site;
using corvane::test::Tally;
using corvane::test::Watchdog;

// A link that is bad, but passes everything on.
namespace {

class Passed : public LinkTest {
 protected:
  void CreateTables() override { site_ = MakeSite(); }
  Site& TheSite() { return *site_; }

  void ExpectAllDone(char const* counted) {
    for (Exchange const& exchange : AllExchanges()) {
      for (bool const autocommit : {true, false}) {
        SCOPED_TRACE(testing::Message() << exchange << (autocommit ? ", autocommit" : ", transactions"));
        Watchdog const watchdog(30, exchange.name);
        Report const report = TheSite().Do(exchange, Mode{autocommit}, {}, false);
        EXPECT_EQ(report.outcome, Outcome::kDone) << report.message;
        EXPECT_EQ(report.wrong, "");
        EXPECT_EQ(report.state, (autocommit ? exchange.withAutocommit : exchange.inTransaction).back());
        Tally(counted, "done, values, what the server holds");
      }
    }
  }

 private:
  std::unique_ptr<Site> site_;
};

TEST_F(Passed, InSingleBytesChangesNothing) {
  TheSite().Proxy().Slice(1);
  ExpectAllDone("exchanges in single bytes, both ways");
}

TEST_F(Passed, InPiecesChangesNothing) {
  TheSite().Proxy().Slice(7, std::chrono::milliseconds(1));
  ExpectAllDone("exchanges in delayed pieces, both ways");
}

TEST_F(Passed, LateChangesNothing) {
  TheSite().Proxy().Delay(std::chrono::milliseconds(10));
  ExpectAllDone("exchanges over a slow link");
}

TEST_F(Passed, LargeRowsInPiecesAreWhole) {
  TheSite().Proxy().Slice(1000);
  corvane::test::Session session(TheSite().Through(Mode{true}));
  ASRealBlob bytes(0U);
  ASAttribute column("c");
  ASDomain record("", "");
  record.Add(column, bytes);
  session.Execute("SELECT REPEAT('0123456789', 1000000)");
  ASSERT_EQ(session.Fetch(record), 1);
  ASSERT_EQ(bytes.Length(), 10000000U);
  auto const* const begin = static_cast<char const*>(bytes.voidptr());
  for (std::size_t i = 0; i < bytes.Length(); ++i) {
    ASSERT_EQ(begin[i], static_cast<char>('0' + i % 10)) << "at byte " << i;
  }
}

}  // namespace
