#include "tests/injection/canary.h"

#include <vector>

#include "tests/support/tally.h"

namespace corvane::test {

void CanaryTest::ExpectUnderstood(Literals const& literals, char const* setting) {
  Session session(With());
  session.Execute(setting);
  std::string query;
  std::vector<std::string const*> expected;
  auto const ask = [&] {
    Rows const rows = Fetched(session, query);
    ASSERT_EQ(rows.size(), 1U);
    ASSERT_EQ(rows[0].size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
      EXPECT_EQ(rows[0][i], Hex(*expected[i])) << setting << ": " << Shown(*expected[i]);
    }
    expected.clear();
  };
  for (auto const& [literal, bytes] : literals) {
    query += (expected.empty() ? "SELECT HEX(" : ", HEX(") + literal + ")";
    expected.push_back(&bytes);
    if (expected.size() < 200 && query.size() < 1000000) continue;
    ask();
    query.clear();
  }
  if (!expected.empty()) ask();
  Tally("hostile literals on the server", std::string("SELECT gives the bytes back, ") + setting, literals.size());
}

}  // namespace corvane::test
