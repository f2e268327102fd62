#include <gmock/gmock.h>

#include <string>

#include "tests/support/live.h"

using corvane::test::ConnectionId;
using corvane::test::Environment;
using corvane::test::Failure;
using corvane::test::FailureOf;
using corvane::test::LiveTest;
using corvane::test::Parameters;
using corvane::test::Session;

namespace {

// The sequence connection goes through the UNIX socket, as its port cannot be given.
class SequenceConnection : public LiveTest {
 protected:
  void CreateTables() override {
    if (Environment("MYSQL_UNIX_PORT").empty()) GTEST_SKIP() << "MYSQL_UNIX_PORT is not set";
    Run("CREATE TABLE counter (Val INT)");
    Run("INSERT INTO counter VALUES (41)");
    Run("CREATE TABLE seen (connection BIGINT)");
  }

  Parameters WithSequence(Parameters changes = {}) const {
    changes["EmulateSequences"] = "yes";
    return With(changes);
  }
  // The server's number of the sequence connection.
  std::string SequenceConnectionId(ASSession& session) {
    session.ExecuteSeq("INSERT INTO seen VALUES (CONNECTION_ID())");
    return Stored("SELECT connection FROM seen").value();
  }
};

TEST_F(SequenceConnection, RunsItsStatement) {
  Session session(WithSequence());
  session.ExecuteSeq("UPDATE counter SET Val=LAST_INSERT_ID(Val+1)");
  EXPECT_EQ(Stored("SELECT Val FROM counter"), "42");
}

TEST_F(SequenceConnection, IsNotTheMainConnection) {
  Session session(WithSequence());
  EXPECT_NE(SequenceConnectionId(session), ConnectionId(session));
}

TEST_F(SequenceConnection, StoresAtOnceWhileTheMainConnectionHasATransactionOpen) {
  Session session(WithSequence({{"AutoCommit", "off"}}));
  session.Execute("INSERT INTO seen VALUES (1)");
  session.ExecuteSeq("UPDATE counter SET Val=42");
  EXPECT_EQ(Stored("SELECT Val FROM counter"), "42");
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM seen"), "0");
}

TEST_F(SequenceConnection, IsNotTouchedByARollback) {
  Session session(WithSequence({{"AutoCommit", "off"}}));
  session.Execute("INSERT INTO seen VALUES (1)");
  session.ExecuteSeq("UPDATE counter SET Val=42");
  session.Rollback();
  session.Commit();
  EXPECT_EQ(Stored("SELECT Val FROM counter"), "42");
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM seen"), "0");
}

TEST_F(SequenceConnection, LeavesTheRowsAffectedAlone) {
  Session session(WithSequence());
  session.Execute("INSERT INTO seen VALUES (1), (2), (3)");
  session.ExecuteSeq("UPDATE counter SET Val=42");
  EXPECT_EQ(session.RowsAffected(), 3U);
}

TEST_F(SequenceConnection, LeavesTheInsertIdAlone) {
  Run("CREATE TABLE numbered (id INT PRIMARY KEY AUTO_INCREMENT)");
  Session session(WithSequence());
  session.Execute("INSERT INTO numbered VALUES (7)");
  session.ExecuteSeq("UPDATE counter SET Val=LAST_INSERT_ID(Val+1)");
  EXPECT_EQ(static_cast<int>(session.GetInsertId()), 7);
}

TEST_F(SequenceConnection, IsReopenedWhenKilledAndTheStatementRunOnce) {
  Session session(WithSequence());
  Kill(SequenceConnectionId(session));
  session.ExecuteSeq("UPDATE counter SET Val=Val+1");
  EXPECT_EQ(Stored("SELECT Val FROM counter"), "42");
  EXPECT_TRUE(ConnectionsBecome(2));
}

TEST_F(SequenceConnection, IsReopenedInATransaction) {
  Session session(WithSequence({{"AutoCommit", "off"}}));
  Kill(SequenceConnectionId(session));
  session.ExecuteSeq("UPDATE counter SET Val=Val+1");
  EXPECT_EQ(Stored("SELECT Val FROM counter"), "42");
}

TEST_F(SequenceConnection, IsReopenedEvenWithAutoReconnectOff) {
  Session session(WithSequence({{"AutoReconnect", "off"}}));
  Kill(SequenceConnectionId(session));
  session.ExecuteSeq("UPDATE counter SET Val=Val+1");
  EXPECT_EQ(Stored("SELECT Val FROM counter"), "42");
}

TEST_F(SequenceConnection, LossLeavesTheMainTransactionOpen) {
  Session session(WithSequence({{"AutoCommit", "off"}}));
  session.Execute("UPDATE counter SET Val=100");
  std::string const main = ConnectionId(session);
  Kill(SequenceConnectionId(session));
  session.ExecuteSeq("DELETE FROM seen");
  session.Commit();
  EXPECT_EQ(ConnectionId(session), main);
  EXPECT_EQ(Stored("SELECT Val FROM counter"), "100");
}

TEST_F(SequenceConnection, IsReopenedWithTheMainConnection) {
  Session session(WithSequence());
  std::string const sequence = SequenceConnectionId(session);
  Kill(ConnectionId(session));
  session.Execute("DELETE FROM seen");
  EXPECT_NE(SequenceConnectionId(session), sequence);
  EXPECT_TRUE(ConnectionsBecome(2));
}

TEST_F(SequenceConnection, UnreadResultIsAnsweredByReopening) {
  Session session(WithSequence());
  session.ExecuteSeq("SELECT Val FROM counter");
  session.ExecuteSeq("UPDATE counter SET Val=Val+1");
  EXPECT_EQ(Stored("SELECT Val FROM counter"), "42");
  EXPECT_TRUE(ConnectionsBecome(2));
}

TEST_F(SequenceConnection, MissingTableIsRefusedWithoutANumber) {
  Session session(WithSequence());
  EXPECT_EQ(FailureOf([&] { session.ExecuteSeq("UPDATE missing SET Val=1"); }),
            (Failure{0, "DB Error 1146 (Table '" + Schema() +
                            ".missing' doesn't exist) in query\n\b\nUPDATE missing SET Val=1"}));
}

TEST_F(SequenceConnection, ServesOnAfterARefusedStatement) {
  Session session(WithSequence());
  EXPECT_THROW(session.ExecuteSeq("UPDATE missing SET Val=1"), AException);
  session.ExecuteSeq("UPDATE counter SET Val=Val+1");
  EXPECT_EQ(Stored("SELECT Val FROM counter"), "42");
}

TEST_F(SequenceConnection, IsMissingWithEmulateSequencesNo) {
  Session session(With({{"EmulateSequences", "no"}}));
  EXPECT_EQ(FailureOf([&] { session.ExecuteSeq("UPDATE counter SET Val=42"); }),
            (Failure{0, "Sequence connection is not established. "}));
  EXPECT_EQ(Stored("SELECT Val FROM counter"), "41");
}

TEST_F(SequenceConnection, IsMissingAfterDisconnect) {
  Session session(WithSequence());
  session.Disconnect();
  EXPECT_EQ(FailureOf([&] { session.ExecuteSeq("UPDATE counter SET Val=42"); }),
            (Failure{0, "Sequence connection is not established. "}));
}

TEST_F(SequenceConnection, ThatCouldNotBeOpenedIsTriedAgainAndReported) {
  Session session(WithSequence({{"SequenceHost", "127.0.0.2"}}));  // where the server does not listen
  Failure const failure = FailureOf([&] { session.ExecuteSeq("UPDATE counter SET Val=42"); });
  EXPECT_EQ(failure.number, 0);
  EXPECT_THAT(failure.message, ::testing::StartsWith("mysql_real_connect failed for sequence\n Error 2002 ("));
}

}  // namespace
