#include "tests/support/live.h"

using corvane::test::Environment;
using corvane::test::Item;
using corvane::test::ItemTest;
using corvane::test::OpenFiles;

namespace {

constexpr unsigned kLockWaitTimeout = 1205;

class SessionEnd : public ItemTest {
 protected:
  void CreateTables() override {
    ItemTest::CreateTables();
    Run("INSERT INTO item VALUES (1, 'one')");
  }
  // A connection that had been closed would be gone afterwards.
  void LetTheServerNotice() { Run("DO SLEEP(0.1)"); }
};

TEST_F(SessionEnd, DestructorClosesNoDatabaseConnection) {
  if (Environment("MYSQL_UNIX_PORT").empty()) GTEST_SKIP() << "MYSQL_UNIX_PORT is not set";
  int const before = OpenFiles();
  { ASSession const session(With({{"EmulateSequences", "yes"}}), 0, false); }
  EXPECT_EQ(OpenFiles(), before + 2);
  EXPECT_EQ(ConnectionHosts().size(), 2U);
}

TEST_F(SessionEnd, LocksStayAfterTheDestructor) {
  {
    ASSession session(WithTransactions(), 0, false);
    Item item(1, "");
    session.Select(item);
  }
  LetTheServerNotice();
  EXPECT_EQ(Refusal("UPDATE item SET name='stolen' WHERE id=1"), kLockWaitTimeout);
}

TEST_F(SessionEnd, UncommittedRowIsNeitherStoredNorGivenUpByTheDestructor) {
  {
    ASSession session(WithTransactions(), 0, false);
    Item const item(2, "two");
    session.Insert(item);
  }
  LetTheServerNotice();
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM item"), "1");
  EXPECT_EQ(Refusal("INSERT INTO item VALUES (2, 'other')"), kLockWaitTimeout);
}

TEST_F(SessionEnd, CommitBeforeTheDestructorLeavesNoLock) {
  {
    ASSession session(WithTransactions(), 0, false);
    Item item(1, "");
    session.Select(item);
    session.Commit();
  }
  EXPECT_EQ(Refusal("UPDATE item SET name='free' WHERE id=1"), 0U);
}

TEST_F(SessionEnd, DisconnectFreesTheLocks) {
  ASSession session(WithTransactions(), 0, false);
  Item item(1, "");
  session.Select(item);
  session.Disconnect();
  EXPECT_TRUE(ConnectionsBecome(0));
  EXPECT_EQ(Refusal("UPDATE item SET name='free' WHERE id=1"), 0U);
}

TEST_F(SessionEnd, DestructorAfterDisconnectLeavesNoConnection) {
  {
    ASSession session(With(), 0, false);
    session.Disconnect();
  }
  EXPECT_TRUE(ConnectionsBecome(0));
}

}  // namespace
