#include <gmock/gmock.h>

#include <string>

#include "tests/support/live.h"

using corvane::test::ConnectionId;
using corvane::test::Failure;
using corvane::test::FailureOf;
using corvane::test::FetchedValue;
using corvane::test::Item;
using corvane::test::ItemTest;
using corvane::test::Rows;
using corvane::test::Session;
using ::testing::StartsWith;

namespace {

constexpr unsigned kLockWaitTimeout = 1205;

class Transaction : public ItemTest {};

TEST_F(Transaction, RowIsNotSeenBeforeTheCommit) {
  Session session(WithTransactions());
  Item const item(1, "one");
  session.Insert(item);
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM item"), "0");
}

TEST_F(Transaction, CommitStoresTheRow) {
  Session session(WithTransactions());
  Item const item(1, "one");
  session.Insert(item);
  session.Commit();
  EXPECT_EQ(StoredRows("SELECT id, name FROM item"), (Rows{{"1", "one"}}));
}

TEST_F(Transaction, RollbackForgetsTheRow) {
  Session session(WithTransactions());
  Item const item(1, "one");
  session.Insert(item);
  session.Rollback();
  session.Commit();
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM item"), "0");
}

TEST_F(Transaction, RollbackReachesBackToTheLastCommit) {
  Session session(WithTransactions());
  Item item(1, "one");
  session.Insert(item);
  session.Commit();
  item.name = "uno";
  session.Update(item);
  session.Rollback();
  EXPECT_EQ(StoredRows("SELECT id, name FROM item"), (Rows{{"1", "one"}}));
}

TEST_F(Transaction, SessionSeesItsOwnRowBeforeTheCommit) {
  Session session(WithTransactions());
  Item item(1, "one");
  session.Insert(item);
  EXPECT_EQ(session.Select(item), 1);
}

TEST_F(Transaction, RefusedStatementLeavesTheTransactionOpen) {
  Session session(WithTransactions());
  Item const item(1, "one");
  session.Insert(item);
  EXPECT_THROW(session.Insert(item), AException);
  session.Commit();
  EXPECT_EQ(StoredRows("SELECT id, name FROM item"), (Rows{{"1", "one"}}));
}

TEST_F(Transaction, AutocommitStoresARowAtOnce) {
  Session session(With());
  Item const item(1, "one");
  session.Insert(item);
  EXPECT_EQ(StoredRows("SELECT id, name FROM item"), (Rows{{"1", "one"}}));
}

TEST_F(Transaction, AutocommitLeavesNothingToRollBack) {
  Session session(With());
  Item const item(1, "one");
  session.Insert(item);
  session.Rollback();
  EXPECT_EQ(StoredRows("SELECT id, name FROM item"), (Rows{{"1", "one"}}));
}

class RowLock : public ItemTest {
 protected:
  void CreateTables() override {
    ItemTest::CreateTables();
    Run("INSERT INTO item VALUES (1, 'one'), (2, 'two')");
  }
};

TEST_F(RowLock, IsTakenBySelect) {
  Session session(WithTransactions());
  Item item(1, "");
  session.Select(item);
  EXPECT_EQ(Refusal("UPDATE item SET name='stolen' WHERE id=1"), kLockWaitTimeout);
}

TEST_F(RowLock, IsTakenOnTheSelectedRowOnly) {
  Session session(WithTransactions());
  Item item(1, "");
  session.Select(item);
  EXPECT_EQ(Refusal("UPDATE item SET name='free' WHERE id=2"), 0U);
}

TEST_F(RowLock, IsNotTakenInReadOnlyMode) {
  Session session(WithTransactions());
  session.ReadOnly();
  Item item(1, "");
  session.Select(item);
  EXPECT_EQ(Refusal("UPDATE item SET name='free' WHERE id=1"), 0U);
}

TEST_F(RowLock, IsTakenAgainAfterClearReadOnly) {
  Session session(WithTransactions());
  session.ReadOnly();
  session.ClearReadOnly();
  Item item(1, "");
  session.Select(item);
  EXPECT_EQ(Refusal("UPDATE item SET name='stolen' WHERE id=1"), kLockWaitTimeout);
}

TEST_F(RowLock, IsNotTakenBetweenPushAndPopReadOnly) {
  Session session(WithTransactions());
  session.PushReadOnly();
  Item item(1, "");
  session.Select(item);
  session.PopReadOnly();
  EXPECT_EQ(Refusal("UPDATE item SET name='free' WHERE id=1"), 0U);
}

TEST_F(RowLock, IsTakenAgainAfterPopReadOnly) {
  Session session(WithTransactions());
  session.PushReadOnly();
  session.PopReadOnly();
  Item item(1, "");
  session.Select(item);
  EXPECT_EQ(Refusal("UPDATE item SET name='stolen' WHERE id=1"), kLockWaitTimeout);
}

TEST_F(RowLock, EndsWithTheCommit) {
  Session session(WithTransactions());
  Item item(1, "");
  session.Select(item);
  session.Commit();
  EXPECT_EQ(Refusal("UPDATE item SET name='free' WHERE id=1"), 0U);
}

TEST_F(RowLock, EndsWithTheRollback) {
  Session session(WithTransactions());
  Item item(1, "");
  session.Select(item);
  session.Rollback();
  EXPECT_EQ(Refusal("UPDATE item SET name='free' WHERE id=1"), 0U);
}

TEST_F(RowLock, DoesNotOutlastTheStatementUnderAutocommit) {
  Session session(With());
  Item item(1, "");
  session.Select(item);
  EXPECT_EQ(Refusal("UPDATE item SET name='free' WHERE id=1"), 0U);
}

TEST_F(RowLock, OfAnotherSessionRefusesTheUpdateInTheEnd) {
  Session holder(WithTransactions());
  Item held(1, "");
  holder.Select(held);
  Session session(WithTransactions());
  session.Execute("SET innodb_lock_wait_timeout=0");
  Item const item(1, "stolen");
  EXPECT_EQ(FailureOf([&] { session.Update(item); }),
            (Failure{102,
                     "DB Error 1205 (Lock wait timeout exceeded; try restarting transaction) in query\n\b\n"
                     "UPDATE `item` SET `name`='stolen' WHERE `id`='1'"}));
}

TEST_F(RowLock, OfAnotherSessionRefusesTheSelectInTheEnd) {
  Session holder(WithTransactions());
  Item held(1, "");
  holder.Select(held);
  Session session(WithTransactions());
  session.Execute("SET innodb_lock_wait_timeout=0");
  Item item(1, "");
  EXPECT_EQ(FailureOf([&] { session.Select(item); }),
            (Failure{102,
                     "DB Error 1205 (Lock wait timeout exceeded; try restarting transaction) in query\n\b\n"
                     "SELECT `id`, `name` FROM `item` WHERE `id`='1' FOR UPDATE"}));
}

TEST_F(RowLock, OfAnotherSessionDoesNotHinderAReadOnlySelect) {
  Session holder(WithTransactions());
  Item held(1, "");
  holder.Select(held);
  Session session(WithTransactions());
  session.Execute("SET innodb_lock_wait_timeout=0");
  session.ReadOnly();
  Item item(1, "");
  EXPECT_EQ(session.Select(item), 1);
}

class TransactionLost : public ItemTest {
 protected:
  // Inserts a row and loses the connection.
  void LoseInsert(ASSession& session) {
    Item const item(1, "one");
    session.Insert(item);
    Kill(ConnectionId(session));
  }
};

TEST_F(TransactionLost, CommitReconnectsAndReportsTheNewConnection) {
  Session session(WithTransactions());
  LoseInsert(session);
  EXPECT_EQ(FailureOf([&] { session.Commit(); }), (Failure{102, "DB Error 0 () in query\n\b\nCOMMIT"}));
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM item"), "0");
}

TEST_F(TransactionLost, CommitUnderAutocommitIsSentAgain) {
  Session session(With());
  Kill(ConnectionId(session));
  session.Commit();
  EXPECT_TRUE(session.Ping());
}

TEST_F(TransactionLost, RollbackIsReportedAndReopensNothing) {
  Session session(WithTransactions());
  LoseInsert(session);
  Failure const failure = FailureOf([&] { session.Rollback(); });
  EXPECT_EQ(failure.number, 0);
  EXPECT_THAT(failure.message, StartsWith("DB fatal error 20"));
  EXPECT_THAT(failure.message, ::testing::EndsWith(") during ROLLBACK. "));
  EXPECT_TRUE(ConnectionsBecome(0));
}

TEST_F(TransactionLost, RollbackOfAKilledSocketConnectionNamesTheError) {
  if (corvane::test::Environment("MYSQL_UNIX_PORT").empty()) GTEST_SKIP() << "MYSQL_UNIX_PORT is not set";
  Session session(WithTransactions({{"Host", ""}}));
  LoseInsert(session);
  EXPECT_THAT(FailureOf([&] { session.Rollback(); }).message, StartsWith("DB fatal error 2006 ("));
}

TEST_F(TransactionLost, RollbackAfterDisconnectSendsNothing) {
  Session session(WithTransactions());
  session.Disconnect();
  EXPECT_NO_THROW(session.Rollback());
}

TEST_F(TransactionLost, DisconnectRollsBack) {
  Session session(WithTransactions());
  Item const item(1, "one");
  session.Insert(item);
  session.Disconnect();
  EXPECT_TRUE(ConnectionsBecome(0));
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM item"), "0");
}

}  // namespace
