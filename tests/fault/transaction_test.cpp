// The ends of transactions, and read-only mode.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/support/scripted_session.h"

namespace corvane::test {
namespace {

using testing::ElementsAre;
using testing::ExitedWithCode;

using Commit = ScriptedSession;

TEST_F(Commit, SendsCommit) {
  ASSession& session = Ready();
  session.Commit();
  EXPECT_THAT(client.Calls(), ElementsAre("query COMMIT"));
}

TEST_F(Commit, RefusedThrowsAsAnyStatement) {
  ASSession& session = Ready();
  client.FailQuery(1213, "deadlock");
  EXPECT_EQ(ThrownBy([&] { session.Commit(); }), (Thrown{102, "DB Error 1213 (deadlock) in query\n\b\nCOMMIT"}));
}

TEST_F(Commit, LostWithAutocommitOffReconnectsAndThrows) {
  ASSession& session = Ready();
  client.FailQuery(2013, "lost");
  EXPECT_EQ(ThrownBy([&] { session.Commit(); }), (Thrown{102, "DB Error 0 () in query\n\b\nCOMMIT"}));
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("1 query COMMIT", "1 close", "2 init", "2 connect '' '' '' '' 0",
                                                  "2 query SET AUTOCOMMIT=0"));
}

TEST_F(Commit, LostWithAutocommitOnReconnectsAndIsRepeated) {
  ASSession& session = Ready({{"AutoCommit", "on"}});
  client.FailQuery(2013, "lost");
  session.Commit();
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("1 query COMMIT", "1 close", "2 init", "2 connect '' '' '' '' 0",
                                                  "2 query SET AUTOCOMMIT=1", "2 query COMMIT"));
}

TEST_F(Commit, LostWithReconnectionForbiddenThrows) {
  ASSession& session = Ready({{"AutoReconnect", "off"}});
  client.FailQuery(2013, "lost");
  EXPECT_EQ(ThrownBy([&] { session.Commit(); }), (Thrown{103, "Database connection lost"}));
}

using Rollback = ScriptedSession;

TEST_F(Rollback, SendsRollback) {
  ASSession& session = Ready();
  session.Rollback();
  EXPECT_THAT(client.Calls(), ElementsAre("query ROLLBACK"));
}

TEST_F(Rollback, LeavesTheAffectedRowsAlone) {
  ASSession& session = Ready();
  client.SetAffectedRows(5);
  session.Execute("UPDATE x");
  client.SetAffectedRows(0);
  session.Rollback();
  EXPECT_EQ(session.RowsAffected(), 5U);
}

TEST_F(Rollback, LostWithNumber2006ThrowsAndReopensNothing) {
  ASSession& session = Ready({{"AutoCommit", "on"}});
  client.FailQuery(2006, "gone");
  EXPECT_EQ(ThrownBy([&] { session.Rollback(); }), (Thrown{0, "DB fatal error 2006 (gone) during ROLLBACK. "}));
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("1 query ROLLBACK"));
}

TEST_F(Rollback, LostWithNumber2013ThrowsAndReopensNothing) {
  ASSession& session = Ready({{"AutoCommit", "on"}});
  client.FailQuery(2013, "lost");
  EXPECT_EQ(ThrownBy([&] { session.Rollback(); }), (Thrown{0, "DB fatal error 2013 (lost) during ROLLBACK. "}));
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("1 query ROLLBACK"));
}

TEST_F(Rollback, LostWithNumber2014ThrowsAndReopensNothing) {
  ASSession& session = Ready({{"AutoReconnect", "off"}});
  client.FailQuery(2014, "out of sync");
  EXPECT_EQ(ThrownBy([&] { session.Rollback(); }), (Thrown{0, "DB fatal error 2014 (out of sync) during ROLLBACK. "}));
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("1 query ROLLBACK"));
}

TEST_F(Rollback, ThrowsWhileAResultWasNotTaken) {
  ASSession& session = Ready();
  client.AnswerQuery(1, {{"1"}});
  session.Execute("SELECT 1");
  EXPECT_EQ(
      ThrownBy([&] { session.Rollback(); }),
      (Thrown{0, "DB fatal error 2014 (Commands out of sync; you can't run this command now) during ROLLBACK. "}));
}

TEST_F(Rollback, RefusedReturnsNormally) {
  ASSession& session = Ready();
  client.FailQuery(1064, "syntax");
  EXPECT_EQ(ThrownBy([&] { session.Rollback(); }), (Thrown{-1, "nothing was thrown"}));
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("1 query ROLLBACK"));
}

TEST_F(Rollback, FailedWithoutANumberReturnsNormally) {
  ASSession& session = Ready();
  client.FailQuery(0, "");
  EXPECT_EQ(ThrownBy([&] { session.Rollback(); }), (Thrown{-1, "nothing was thrown"}));
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("1 query ROLLBACK"));
}

TEST_F(Rollback, RefusedWithTheExitFlagReturnsNormally) {
  ASSession& session = Ready({}, 0, true);
  client.FailQuery(1064, "syntax");
  EXPECT_EQ(ThrownBy([&] { session.Rollback(); }), (Thrown{-1, "nothing was thrown"}));
}

TEST_F(Rollback, SendsNothingWhenTheLastConnectionWasRefused) {
  ASSession& session = Ready();
  client.FailConnect(2002, "no server");
  ThrownBy([&] { session.Connect(false); });
  client.ForgetCalls();
  session.Rollback();
  EXPECT_THAT(client.Calls(), ElementsAre());
}

TEST_F(Rollback, SendsNothingWhenTheModeStatementWasRefused) {
  ASSession& session = Ready();
  client.FailQuery(1227, "no right");
  ThrownBy([&] { session.Connect(false); });
  client.ForgetCalls();
  session.Rollback();
  EXPECT_THAT(client.Calls(), ElementsAre());
}

TEST_F(Rollback, SendsNothingWithoutAHandle) {
  ASSession& session = Ready();
  client.FailInit();
  ThrownBy([&] { session.Connect(false); });
  client.ForgetCalls();
  session.Rollback();
  EXPECT_THAT(client.Calls(), ElementsAre());
}

TEST_F(Rollback, SendsNothingAfterDisconnecting) {
  ASSession& session = Ready();
  session.Disconnect();
  client.ForgetCalls();
  session.Rollback();
  EXPECT_THAT(client.Calls(), ElementsAre());
}

TEST_F(Rollback, IsSentAgainOnceTheSessionHasReconnected) {
  ASSession& session = Ready();
  client.FailConnect(2002, "no server");
  ThrownBy([&] { session.Connect(false); });
  session.Connect(false);
  client.ForgetCalls();
  session.Rollback();
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("3 query ROLLBACK"));
}

// The process ends.

using TransactionDeathTest = ScriptedSessionDeathTest;

TEST_F(TransactionDeathTest, RollbackLostWithTheExitFlagEndsTheProcess) {
  ASSession& session = Ready({}, 1, true);
  client.FailQuery(2013, "lost");
  EXPECT_EXIT(session.Rollback(), ExitedWithCode(1), Logged("DB fatal error 2013 (lost) during ROLLBACK\n"));
}

TEST_F(TransactionDeathTest, CommitLostWithTheExitFlagEndsTheProcess) {
  ASSession& session = Ready({}, 0, true);
  client.FailQuery(2013, "lost");
  EXPECT_EXIT(session.Commit(), ExitedWithCode(1), Logged(""));
}

// Log lines at every debug level.

using CommitLog = ScriptedSessionAtLevel;

TEST_P(CommitLog, ShowsTheCommitAndItsExecution) {
  ASSession& session = Ready({}, Level());
  EXPECT_EQ(LogOf([&] { session.Commit(); }), Log());
}

INSTANTIATE_TEST_SUITE_P(Levels, CommitLog,
                         testing::ValuesIn(ByLevel("", "",
                                                   "SESSION ADDR \n"
                                                   "COMMIT\n"
                                                   "\n"
                                                   "SESSION ADDR EXECUTE COMMIT\n"
                                                   "\n"
                                                   "EXECUTE COMPLETE\n",
                                                   "SESSION ADDR \n"
                                                   "COMMIT\n"
                                                   "\n"
                                                   "SESSION ADDR EXECUTE COMMIT\n"
                                                   "\n"
                                                   "EXECUTE COMPLETE\n")),
                         LevelName);

using RollbackLog = ScriptedSessionAtLevel;

TEST_P(RollbackLog, ShowsTheRollbackAlone) {
  ASSession& session = Ready({}, Level());
  EXPECT_EQ(LogOf([&] { session.Rollback(); }), Log());
}

TEST_P(RollbackLog, ShowsTheRollbackThoughNothingIsSent) {
  ASSession& session = Ready({}, Level());
  client.FailConnect(2002, "no server");
  LogOf([&] { session.Connect(false); });
  EXPECT_EQ(LogOf([&] { session.Rollback(); }), Log());
}

TEST_P(RollbackLog, ShowsTheRollbackAfterDisconnecting) {
  ASSession& session = Ready({}, Level());
  LogOf([&] { session.Disconnect(); });
  EXPECT_EQ(LogOf([&] { session.Rollback(); }), Log());
}

INSTANTIATE_TEST_SUITE_P(Levels, RollbackLog,
                         testing::ValuesIn(ByLevel("", "", "SESSION ADDR \nROLLBACK\n\n",
                                                   "SESSION ADDR \nROLLBACK\n\n")),
                         LevelName);

using RollbackLostLog = ScriptedSessionAtLevel;

TEST_P(RollbackLostLog, ShowsTheFatalError) {
  ASSession& session = Ready({}, Level());
  client.FailQuery(2013, "lost");
  EXPECT_EQ(LogOf([&] { session.Rollback(); }), Log());
}

INSTANTIATE_TEST_SUITE_P(Levels, RollbackLostLog,
                         testing::ValuesIn(ByLevel("", "DB fatal error 2013 (lost) during ROLLBACK\n",
                                                   "SESSION ADDR \nROLLBACK\n\n"
                                                   "DB fatal error 2013 (lost) during ROLLBACK\n",
                                                   "SESSION ADDR \nROLLBACK\n\n"
                                                   "DB fatal error 2013 (lost) during ROLLBACK\n")),
                         LevelName);

using RollbackRefusedLog = ScriptedSessionAtLevel;

TEST_P(RollbackRefusedLog, ShowsTheErrorBehindTwoBlanks) {
  ASSession& session = Ready({}, Level());
  client.FailQuery(1064, "syntax");
  EXPECT_EQ(LogOf([&] { session.Rollback(); }), Log());
}

INSTANTIATE_TEST_SUITE_P(Levels, RollbackRefusedLog,
                         testing::ValuesIn(ByLevel("", "SESSION ADDR  Error 1064 (syntax) during ROLLBACK\n",
                                                   "SESSION ADDR \nROLLBACK\n\n"
                                                   "SESSION ADDR  Error 1064 (syntax) during ROLLBACK\n",
                                                   "SESSION ADDR \nROLLBACK\n\n"
                                                   "SESSION ADDR  Error 1064 (syntax) during ROLLBACK\n")),
                         LevelName);

// Read-only mode.

using ReadOnly = ScriptedSession;

TEST_F(ReadOnly, IsOffAtFirst) { EXPECT_EQ(Ready().IsReadOnly(), 0); }

TEST_F(ReadOnly, IsSwitchedOnAndOff) {
  ASSession& session = Ready();
  session.ReadOnly();
  EXPECT_EQ(session.IsReadOnly(), 1);
  session.ClearReadOnly();
  EXPECT_EQ(session.IsReadOnly(), 0);
}

TEST_F(ReadOnly, ComesBackLevelByLevel) {
  ASSession& session = Ready();
  session.PushReadOnly();
  session.PushReadOnly();
  EXPECT_EQ(session.IsReadOnly(), 1);
  session.PopReadOnly();
  EXPECT_EQ(session.IsReadOnly(), 1);
  session.PopReadOnly();
  EXPECT_EQ(session.IsReadOnly(), 0);
  session.PopReadOnly();
  EXPECT_EQ(session.IsReadOnly(), 0);
}

TEST_F(ReadOnly, PoppedFromAReadOnlySessionStaysOn) {
  ASSession& session = Ready();
  session.ReadOnly();
  session.PushReadOnly();
  session.PopReadOnly();
  EXPECT_EQ(session.IsReadOnly(), 1);
}

TEST_F(ReadOnly, PoppedWithoutASavedStateStaysAsItIs) {
  ASSession& session = Ready();
  session.ReadOnly();
  session.PopReadOnly();
  EXPECT_EQ(session.IsReadOnly(), 1);
}

TEST_F(ReadOnly, SwitchedOnForgetsTheSavedStates) {
  ASSession& session = Ready();
  session.PushReadOnly();
  session.ReadOnly();
  session.PopReadOnly();
  EXPECT_EQ(session.IsReadOnly(), 1);
}

TEST_F(ReadOnly, SwitchedOffForgetsTheSavedStates) {
  ASSession& session = Ready();
  session.ReadOnly();
  session.PushReadOnly();
  session.ClearReadOnly();
  session.PopReadOnly();
  EXPECT_EQ(session.IsReadOnly(), 0);
}

TEST_F(ReadOnly, SurvivesAReconnectionWithItsSavedStates) {
  ASSession& session = Ready({{"AutoCommit", "on"}});
  session.PushReadOnly();
  client.FailQuery(2013, "lost");
  session.Execute("UPDATE x");
  EXPECT_EQ(session.IsReadOnly(), 1);
  session.PopReadOnly();
  EXPECT_EQ(session.IsReadOnly(), 0);
}

TEST_F(ReadOnly, RefusesAndSendsNothingByItself) {
  ASSession& session = Ready();
  session.ReadOnly();
  session.Execute("UPDATE x");
  session.ClearReadOnly();
  EXPECT_THAT(client.Calls(), ElementsAre("query UPDATE x"));
}

}  // namespace
}  // namespace corvane::test
