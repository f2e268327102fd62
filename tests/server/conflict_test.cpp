#include <gmock/gmock.h>

#include <future>
#include <string>

#include "tests/support/live.h"
#include "tests/support/tally.h"
#include "tests/support/watchdog.h"

using corvane::ErrorKind;
using corvane::test::FetchedValue;
using corvane::test::Item;
using corvane::test::ItemTest;
using corvane::test::Rows;
using corvane::test::Session;
using corvane::test::Tally;
using corvane::test::Watchdog;

// Transactions that get in each other's way.
namespace {

constexpr char const* kChecked = "exception, transaction, rows, session usable";

class Conflict : public ItemTest {
 protected:
  void CreateTables() override {
    ItemTest::CreateTables();
    Run("INSERT INTO item VALUES (1, 'one'), (2, 'two'), (3, 'three'), (4, 'four')");
  }

  // Waits until a statement waits for a row. (The list of transactions would be no good here: the server keeps its
  // answer for those who ask again within 0.1 seconds.)
  void AwaitWaiting() {
    EXPECT_TRUE(
        Becomes("SELECT variable_value FROM information_schema.global_status"
                " WHERE variable_name='INNODB_ROW_LOCK_CURRENT_WAITS'",
                "1"));
  }

  template <class Action>
  static void ExpectConflict(Action action, int number, std::string const& text) {
    try {
      action();
      ADD_FAILURE() << "no conflict";
    } catch (AException const& error) {
      EXPECT_EQ(error.Number(), 102);
      EXPECT_EQ(error.ServerError(), number);
      EXPECT_EQ(error.Kind(), ErrorKind::kLockConflict);
      EXPECT_EQ(error.what(), text);
    }
    Tally(number == 1213 ? "deadlocks" : "lock timeouts", kChecked);
  }
  static constexpr char const* kDeadlock =
      "DB Error 1213 (Deadlock found when trying to get lock; try restarting transaction) in query\n\b\n";
  static constexpr char const* kTimeout =
      "DB Error 1205 (Lock wait timeout exceeded; try restarting transaction) in query\n\b\n";

 private:
  Watchdog const watchdog_{60, "a conflict of locks"};
};

// The one that has changed fewer rows is the victim.
TEST_F(Conflict, DeadlockEndsTheLighterTransaction) {
  for (int round = 0; round < 10; ++round) {
    Run("UPDATE item SET name='before'");
    Session victim(WithTransactions());
    Session other(WithTransactions());
    for (int const id : {1, 3, 4}) other.Update(Item(id, "other"));
    victim.Update(Item(2, "victim"));
    auto waiting = std::async(std::launch::async, [&] { return other.Update(Item(2, "other")); });
    AwaitWaiting();
    ExpectConflict([&] { victim.Update(Item(1, "victim")); }, 1213,
                   std::string(kDeadlock) + "UPDATE `item` SET `name`='victim' WHERE `id`='1'");
    EXPECT_EQ(waiting.get(), 1U);
    EXPECT_EQ(FetchedValue(victim, "SELECT @@in_transaction"), "0");
    other.Commit();
    // The whole transaction once more.
    victim.Update(Item(2, "again"));
    victim.Update(Item(1, "again"));
    victim.Commit();
    EXPECT_EQ(StoredRows("SELECT name FROM item ORDER BY id"), (Rows{{"again"}, {"again"}, {"other"}, {"other"}}));
  }
}

TEST_F(Conflict, DeadlockAtARecordsSelectLeavesTheRecordAlone) {
  Session victim(WithTransactions());
  Session other(WithTransactions());
  for (int const id : {1, 3}) other.Update(Item(id, "other"));
  Item item(2, "");
  EXPECT_EQ(victim.Select(item), 1);
  auto waiting = std::async(std::launch::async, [&] { return other.Update(Item(2, "other")); });
  AwaitWaiting();
  Item wanted(1, "untouched");
  ExpectConflict([&] { victim.Select(wanted); }, 1213,
                 std::string(kDeadlock) + "SELECT `id`, `name` FROM `item` WHERE `id`='1' FOR UPDATE");
  EXPECT_EQ(wanted.name, "untouched");
  EXPECT_EQ(waiting.get(), 1U);
  other.Commit();
  EXPECT_EQ(victim.Select(wanted), 1);
  EXPECT_EQ(wanted.name, "other");
}

TEST_F(Conflict, LockTimeoutLeavesTheTransactionOpen) {
  Session holder(WithTransactions());
  holder.Update(Item(1, "holder"));
  Session waiting(WithTransactions());
  waiting.Execute("SET innodb_lock_wait_timeout=1");
  waiting.Insert(Item(5, "kept"));
  ExpectConflict([&] { waiting.Update(Item(1, "waiting")); }, 1205,
                 std::string(kTimeout) + "UPDATE `item` SET `name`='waiting' WHERE `id`='1'");
  EXPECT_EQ(FetchedValue(waiting, "SELECT @@in_transaction"), "1");
  holder.Commit();
  EXPECT_EQ(waiting.Update(Item(1, "waiting")), 1U);
  waiting.Commit();
  EXPECT_EQ(StoredRows("SELECT name FROM item WHERE id IN (1, 5) ORDER BY id"), (Rows{{"waiting"}, {"kept"}}));
}

TEST_F(Conflict, LockTimeoutWithAutocommitChangesNothing) {
  Session holder(WithTransactions());
  holder.Update(Item(1, "holder"));
  Session waiting(With());
  waiting.Execute("SET innodb_lock_wait_timeout=1");
  ExpectConflict([&] { waiting.Delete(Item(1, "")); }, 1205,
                 std::string(kTimeout) + "DELETE FROM `item` WHERE `id`='1'");
  holder.Rollback();
  EXPECT_EQ(Stored("SELECT name FROM item WHERE id=1"), "one");
  EXPECT_EQ(waiting.Delete(Item(1, "")), 1U);
}

}  // namespace
