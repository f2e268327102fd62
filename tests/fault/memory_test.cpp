// What is left when there is no memory, where something could be half done.

#include <gtest/gtest.h>

#include <new>
#include <string>

#include "tests/support/failing_allocation.h"
#include "tests/support/scripted_cursor.h"
#include "tests/support/scripted_session.h"

namespace corvane::test {
namespace {

using Memory = ScriptedCursor;

// Runs the action with the next allocation failing, then the one behind it, and
// so on until it comes to its end; `check` looks at what each failure left.
template <class Action, class Check>
void FailEachAllocation(Action action, Check check) {
  for (unsigned allocations = 0;; ++allocations) {
    SCOPED_TRACE("after " + std::to_string(allocations));
    try {
      FailingAllocation const failing(allocations);
      action();
      if (!failing.Failed()) return;
    } catch (std::bad_alloc const&) {
      check();
    }
  }
}

TEST_F(Memory, ARecordThatCannotBeGivenAllColumnsGetsNone) {
  ASInt id;
  ASVStr name(60);
  ASAttribute idColumn("id");
  ASAttribute nameColumn("name");
  ASDomain record("country", "Country");
  record.Add(idColumn, id).Add(nameColumn, name);
  ASDomain copy;
  FailEachAllocation([&] { copy = record; }, [&] { EXPECT_EQ(copy.size(), 0U); });
  EXPECT_EQ(copy.size(), 2U);
}

// The statement has been executed by the time its completion is to be logged.
TEST_F(Memory, ALineOfLogThatCannotBeWrittenFailsNoStatement) {
  session = &Ready({}, 2);
  Str const statement("INSERT t");
  unsigned sent = 0;
  LogOf([&] {
    FailEachAllocation([&] { session->Execute(statement), ++sent; }, [] { ADD_FAILURE() << "the statement failed"; });
  });
  EXPECT_EQ(Statements().size(), sent);
}

TEST_F(Memory, ARawStatementLeavesNoResultInTheWay) {
  ASCursor cursor(session);
  Answer(1, {{"t"}}).Matching("SHOW").Times(100);
  FailEachAllocation([&] { cursor.Statement("SHOW TABLES of a schema with a name of some length"); },
                     [&] { EXPECT_EQ(session->Execute("INSERT t"), 0U); });
  client.Reset();
}

// More than is kept of an earlier block.
TEST_F(Memory, ARowBufferThatGetsNoPagesIsReportedAndStays) {
  constexpr int kLarge = 32 * 1024 * 1024;
  MapBuffer buffer;
  buffer.Get(100);
  int const before = buffer.Capacity();
  Thrown thrown{};
  {
    FailingAllocation const failing(1);  // the first one only looks for a place
    thrown = ThrownBy([&] { buffer.Get(kLarge); });
  }
  EXPECT_EQ(thrown, (Thrown{0, "Out of memory for the row buffer. "}));
  EXPECT_EQ(buffer.Capacity(), before);
  buffer.Get(kLarge);
  EXPECT_EQ(buffer.Capacity(), kLarge);
}

using SafeModeWithoutMemory = ScriptedSession;

TEST_F(SafeModeWithoutMemory, KeepsNoConnectionThatItHadNoMemoryToLookAt) {
  bool hasFailed = true;
  for (unsigned allocations = 0; hasFailed; ++allocations) {
    client.AnswerQuery(2, {{"", "utf8mb4"}}).Matching("sql_mode");
    ASSession& session = Ready({{"SafeMode", "on"}});
    client.AnswerQuery(2, {{"", "utf8mb4"}}).Matching("sql_mode");
    bool isThrown = false;
    {
      FailingAllocation const failing(allocations);
      try {
        session.Connect(false);
      } catch (std::bad_alloc const&) {
        isThrown = true;
      }
      hasFailed = failing.Failed();
    }
    bool const isOldOne = client.Calls().empty();
    EXPECT_EQ(client.OpenHandles(), isThrown && !isOldOne ? 0U : 1U) << allocations;
    Destroy();
    client.Reset();
  }
}

}  // namespace
}  // namespace corvane::test
