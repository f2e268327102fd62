// Statements on the sequence connection: refusals, lost connections and log lines.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "tests/support/scripted_session.h"
#include "tests/support/small_stack.h"

namespace corvane::test {
namespace {

using testing::ElementsAre;
using testing::ExitedWithCode;

// Handle 1 is the main connection, handle 2 the sequence connection.
std::map<std::string, std::string> const kSequences{
    {"SequenceHost", "s"}, {"UserName", "u"}, {"Password", "p"}, {"Database", "d"}, {"EmulateSequences", "yes"}};

std::map<std::string, std::string> With(std::string const& key, std::string const& value) {
  auto parameters = kSequences;
  parameters[key] = value;
  return parameters;
}

using ExecuteSeq = ScriptedSession;

TEST_F(ExecuteSeq, SendsTheStatementOnTheSequenceConnection) {
  ASSession& session = Ready(kSequences);
  session.ExecuteSeq("UPDATE s");
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("2 query UPDATE s"));
}

TEST_F(ExecuteSeq, LeavesTheAffectedRowsOfTheMainConnectionAlone) {
  ASSession& session = Ready(kSequences);
  client.AnswerQuery().Matching("UPDATE t").AffectedRows(5);
  client.AnswerQuery().Matching("UPDATE s").AffectedRows(1);
  session.Execute("UPDATE t");
  session.ExecuteSeq("UPDATE s");
  EXPECT_EQ(session.RowsAffected(), 5U);
}

TEST_F(ExecuteSeq, TakesATextThatIsNotConstant) {
  ASSession& session = Ready(kSequences);
  Str statement("UPDATE s");
  session.ExecuteSeq(statement);
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("2 query UPDATE s"));
}

TEST_F(ExecuteSeq, ThrowsInASessionWithoutSequences) {
  ASSession& session = Ready({{"EmulateSequences", "no"}});
  EXPECT_EQ(ThrownBy([&] { session.ExecuteSeq("UPDATE s"); }), (Thrown{0, "Sequence connection is not established. "}));
  EXPECT_THAT(client.Calls(), ElementsAre());
}

TEST_F(ExecuteSeq, ThrowsWithoutSequencesWithTheExitFlagToo) {
  ASSession& session = Ready({{"EmulateSequences", "no"}}, 0, true);
  EXPECT_EQ(ThrownBy([&] { session.ExecuteSeq("UPDATE s"); }), (Thrown{0, "Sequence connection is not established. "}));
}

TEST_F(ExecuteSeq, ThrowsWhenNoHandleWasToBeHad) {
  client.FailInit().After(1);
  ASSession& session = Ready(kSequences);
  EXPECT_EQ(ThrownBy([&] { session.ExecuteSeq("UPDATE s"); }), (Thrown{0, "Sequence connection is not established. "}));
}

TEST_F(ExecuteSeq, DoesNotSendAStatementWithANulByte) {
  ASSession& session = Ready(kSequences);
  EXPECT_EQ(ThrownBy([&] { session.ExecuteSeq(Str("UPDATE s\0 WHERE a=1", 19)); }),
            (Thrown{0, "Statement contains a NUL byte. "}));
  EXPECT_THAT(client.Calls(), ElementsAre());
}

// Refused statements; the exception carries no number of its own.

struct Refusal {
  unsigned number;
  char const* message;
};

class ExecuteSeqRefused : public ScriptedSession, public testing::WithParamInterface<Refusal> {};

TEST_P(ExecuteSeqRefused, ThrowsNumberAndTextAndSendsNothingElse) {
  ASSession& session = Ready(kSequences);
  client.FailQuery(GetParam().number, "no");
  EXPECT_EQ(ThrownBy([&] { session.ExecuteSeq("UPDATE s"); }), (Thrown{0, GetParam().message}));
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("2 query UPDATE s"));
}

INSTANTIATE_TEST_SUITE_P(Numbers, ExecuteSeqRefused,
                         testing::Values(Refusal{1146, "DB Error 1146 (no) in query\n\b\nUPDATE s"},
                                         Refusal{1217, "DB Error 1217 (no) in query\n\b\nUPDATE s"},
                                         Refusal{1927, "DB Error 1927 (no) in query\n\b\nUPDATE s"},
                                         // Without a number the connection does not count as lost here.
                                         Refusal{0, "DB Error 0 (no) in query\n\b\nUPDATE s"}));

TEST_F(ExecuteSeq, RefusedWithTheExitFlagThrows) {
  ASSession& session = Ready(kSequences, 0, true);
  client.FailQuery(0, "");
  EXPECT_EQ(ThrownBy([&] { session.ExecuteSeq("UPDATE s"); }), (Thrown{0, "DB Error 0 () in query\n\b\nUPDATE s"}));
}

TEST_F(ExecuteSeq, RefusedReportsTheErrorOfTheSequenceConnection) {
  ASSession& session = Ready(kSequences);
  client.FailQuery(1062, "duplicate").Matching("INSERT");
  client.FailQuery(1146, "no table").Matching("UPDATE s");
  ThrownBy([&] { session.Execute("INSERT x"); });
  EXPECT_EQ(ThrownBy([&] { session.ExecuteSeq("UPDATE s"); }),
            (Thrown{0, "DB Error 1146 (no table) in query\n\b\nUPDATE s"}));
}

// Lost connections.

class ExecuteSeqLost : public ScriptedSession, public testing::WithParamInterface<unsigned> {};

TEST_P(ExecuteSeqLost, IsReopenedOnPortZeroAndTheStatementRunAgain) {
  ASSession& session = Ready(With("Port", "3307"));
  client.FailQuery(GetParam(), "lost");
  session.ExecuteSeq("UPDATE s");
  EXPECT_THAT(client.CallsByHandle(),
              ElementsAre("2 query UPDATE s", "2 close", "3 init", "3 connect s u p d 0", "3 query UPDATE s"));
}

TEST_P(ExecuteSeqLost, IsReopenedThoughReconnectionIsForbidden) {
  ASSession& session = Ready(With("AutoReconnect", "off"));
  client.FailQuery(GetParam(), "lost");
  session.ExecuteSeq("UPDATE s");
  EXPECT_THAT(client.CallsByHandle(),
              ElementsAre("2 query UPDATE s", "2 close", "3 init", "3 connect s u p d 0", "3 query UPDATE s"));
}

TEST_P(ExecuteSeqLost, IsReopenedWithTheExitFlagToo) {
  ASSession& session = Ready(kSequences, 0, true);
  client.FailQuery(GetParam(), "lost");
  session.ExecuteSeq("UPDATE s");
  EXPECT_THAT(client.CallsByHandle(),
              ElementsAre("2 query UPDATE s", "2 close", "3 init", "3 connect s u p d 0", "3 query UPDATE s"));
}

TEST_P(ExecuteSeqLost, IsReopenedWithAutocommitOnAsWell) {
  ASSession& session = Ready(With("AutoCommit", "on"));
  client.FailQuery(GetParam(), "lost");
  session.ExecuteSeq("UPDATE s");
  EXPECT_THAT(client.CallsByHandle(),
              ElementsAre("2 query UPDATE s", "2 close", "3 init", "3 connect s u p d 0", "3 query UPDATE s"));
}

INSTANTIATE_TEST_SUITE_P(Numbers, ExecuteSeqLost, testing::Values(2006U, 2013U, 2014U));

TEST_F(ExecuteSeq, LostAgainAndAgainIsRepeatedUntilItSucceeds) {
  ASSession& session = Ready(kSequences);
  client.FailQuery(2006, "gone");
  client.FailQuery(2013, "lost");
  session.ExecuteSeq("UPDATE s");
  EXPECT_THAT(client.CallsByHandle(),
              ElementsAre("2 query UPDATE s", "2 close", "3 init", "3 connect s u p d 0", "3 query UPDATE s",  //
                          "3 close", "4 init", "4 connect s u p d 0", "4 query UPDATE s"));
  EXPECT_EQ(client.OpenHandles(), 2U);
}

TEST_F(ExecuteSeq, LostAHundredThousandTimesDoesNotGrowTheStack) {
  ASSession& session = Ready(kSequences);
  client.FailQuery(2006, "gone").Times(100000);
  RunOnSmallStack([&] { session.ExecuteSeq("UPDATE s"); });
  auto const calls = client.Calls();
  EXPECT_EQ(std::count(calls.begin(), calls.end(), "connect s u p d 0"), 100000);
  EXPECT_EQ(std::count(calls.begin(), calls.end(), "query UPDATE s"), 100001);
  EXPECT_EQ(client.OpenHandles(), 2U);
}

TEST_F(ExecuteSeq, ThatCouldNotBeConnectedAtFirstIsConnectedByItsFirstUse) {
  client.FailConnect(2002, "no server").After(1);
  ASSession& session = Ready(kSequences);
  session.ExecuteSeq("UPDATE s");
  EXPECT_THAT(client.CallsByHandle(),
              ElementsAre("2 query UPDATE s", "2 close", "3 init", "3 connect s u p d 0", "3 query UPDATE s"));
}

TEST_F(ExecuteSeq, LostAndThenRefusedThrowsTheRefusalWithoutAPause) {
  ASSession& session = Ready(kSequences);
  client.FailQuery(2013, "lost");
  client.FailConnect(2002, "no server");
  EXPECT_EQ(ThrownBy([&] { session.ExecuteSeq("UPDATE s"); }),
            (Thrown{0, "mysql_real_connect failed for sequence\n Error 2002 (no server)\n"}));
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("2 query UPDATE s", "2 close", "3 init", "3 connect s u p d 0"));
}

TEST_F(ExecuteSeq, RecoversAfterAReopeningThatFailed) {
  ASSession& session = Ready(kSequences);
  client.FailQuery(2013, "lost");
  client.FailConnect(2002, "no server");
  ThrownBy([&] { session.ExecuteSeq("UPDATE s"); });
  client.ForgetCalls();
  session.ExecuteSeq("UPDATE s");
  EXPECT_THAT(client.CallsByHandle(),
              ElementsAre("3 query UPDATE s", "3 close", "4 init", "4 connect s u p d 0", "4 query UPDATE s"));
}

TEST_F(ExecuteSeq, LostAndWithoutANewHandleThrows) {
  ASSession& session = Ready(kSequences);
  client.FailQuery(2013, "lost");
  client.FailInit();
  EXPECT_EQ(ThrownBy([&] { session.ExecuteSeq("UPDATE s"); }), (Thrown{0, "mysql_init failed for sequence. "}));
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("2 query UPDATE s", "2 close", "- init"));
}

TEST_F(ExecuteSeq, IsNotEstablishedAfterThereWasNoNewHandle) {
  ASSession& session = Ready(kSequences);
  client.FailQuery(2013, "lost");
  client.FailInit();
  ThrownBy([&] { session.ExecuteSeq("UPDATE s"); });
  EXPECT_EQ(ThrownBy([&] { session.ExecuteSeq("UPDATE s"); }), (Thrown{0, "Sequence connection is not established. "}));
}

TEST_F(ExecuteSeq, LostLeavesTheMainConnectionAlone) {
  ASSession& session = Ready(kSequences);
  client.FailQuery(2013, "lost").Matching("UPDATE s");
  client.FailConnect(2002, "no server");
  ThrownBy([&] { session.ExecuteSeq("UPDATE s"); });
  client.ForgetCalls();
  session.Execute("UPDATE t");
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("1 query UPDATE t"));
}

TEST_F(ExecuteSeq, WorksOnTheConnectionThatAReconnectionOpened) {
  ASSession& session = Ready(With("AutoCommit", "on"));
  client.FailQuery(2013, "lost").Matching("UPDATE t");
  session.Execute("UPDATE t");
  client.ForgetCalls();
  session.ExecuteSeq("UPDATE s");
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("4 query UPDATE s"));
}

// The process ends.

using ExecuteSeqDeathTest = ScriptedSessionDeathTest;

TEST_F(ExecuteSeqDeathTest, LostAndThenRefusedWithTheExitFlagEndsTheProcess) {
  ASSession& session = Ready(kSequences, 1, true);
  client.FailQuery(2013, "lost");
  client.FailConnect(2002, "no server");
  EXPECT_EXIT(session.ExecuteSeq("UPDATE s"), ExitedWithCode(1),
              Logged("SESSION ADDR EXECUTE Failed\n Error 2013 (lost) in query\nUPDATE s\n"
                     "DB fatal error 2013 (lost) in query\n\b\nUPDATE s\n"
                     "Trying to reconnect...\n"
                     "mysql_real_connect failed for sequence\n Error 2002 (no server)\n"));
}

TEST_F(ExecuteSeqDeathTest, LostAndWithoutANewHandleWithTheExitFlagEndsTheProcess) {
  ASSession& session = Ready(kSequences, 1, true);
  client.FailQuery(2013, "lost");
  client.FailInit();
  EXPECT_EXIT(session.ExecuteSeq("UPDATE s"), ExitedWithCode(1),
              Logged("SESSION ADDR EXECUTE Failed\n Error 2013 (lost) in query\nUPDATE s\n"
                     "DB fatal error 2013 (lost) in query\n\b\nUPDATE s\n"
                     "Trying to reconnect...\n"
                     "SESSION ADDR mysql_init failed for sequence\n"));
}

// Log lines at every debug level.

using ExecuteSeqLog = ScriptedSessionAtLevel;

TEST_P(ExecuteSeqLog, ShowsTheStatementWithoutItsCompletion) {
  ASSession& session = Ready(kSequences, Level());
  EXPECT_EQ(LogOf([&] { session.ExecuteSeq("UPDATE s"); }), Log());
}

INSTANTIATE_TEST_SUITE_P(Levels, ExecuteSeqLog,
                         testing::ValuesIn(ByLevel("", "", "SESSION ADDR EXECUTE UPDATE s\n\n",
                                                   "SESSION ADDR EXECUTE UPDATE s\n\n")),
                         LevelName);

using ExecuteSeqWithoutSequencesLog = ScriptedSessionAtLevel;

TEST_P(ExecuteSeqWithoutSequencesLog, ShowsTheStatement) {
  ASSession& session = Ready({}, Level());
  EXPECT_EQ(LogOf([&] { session.ExecuteSeq("UPDATE s"); }), Log());
}

INSTANTIATE_TEST_SUITE_P(Levels, ExecuteSeqWithoutSequencesLog,
                         testing::ValuesIn(ByLevel("", "", "SESSION ADDR EXECUTE UPDATE s\n\n",
                                                   "SESSION ADDR EXECUTE UPDATE s\n\n")),
                         LevelName);

using ExecuteSeqRefusedLog = ScriptedSessionAtLevel;

TEST_P(ExecuteSeqRefusedLog, ShowsNumberTextAndStatement) {
  ASSession& session = Ready(kSequences, Level());
  client.FailQuery(1146, "no table");
  EXPECT_EQ(LogOf([&] { session.ExecuteSeq("UPDATE s"); }), Log());
}

INSTANTIATE_TEST_SUITE_P(Levels, ExecuteSeqRefusedLog,
                         testing::ValuesIn(ByLevel("",
                                                   "SESSION ADDR EXECUTE Failed\n"
                                                   " Error 1146 (no table) in query\n"
                                                   "UPDATE s\n",
                                                   "SESSION ADDR EXECUTE UPDATE s\n"
                                                   "\n"
                                                   "SESSION ADDR EXECUTE Failed\n"
                                                   " Error 1146 (no table) in query\n"
                                                   "UPDATE s\n",
                                                   "SESSION ADDR EXECUTE UPDATE s\n"
                                                   "\n"
                                                   "SESSION ADDR EXECUTE Failed\n"
                                                   " Error 1146 (no table) in query\n"
                                                   "UPDATE s\n")),
                         LevelName);

using ExecuteSeqReopenedLog = ScriptedSessionAtLevel;

TEST_P(ExecuteSeqReopenedLog, ShowsTheLossAndTheRepetition) {
  ASSession& session = Ready(kSequences, Level());
  client.FailQuery(2013, "lost");
  EXPECT_EQ(LogOf([&] { session.ExecuteSeq("UPDATE s"); }), Log());
}

INSTANTIATE_TEST_SUITE_P(Levels, ExecuteSeqReopenedLog,
                         testing::ValuesIn(ByLevel("",
                                                   "SESSION ADDR EXECUTE Failed\n"
                                                   " Error 2013 (lost) in query\n"
                                                   "UPDATE s\n"
                                                   "DB fatal error 2013 (lost) in query\n\b\nUPDATE s\n"
                                                   "Trying to reconnect...\n",
                                                   "SESSION ADDR EXECUTE UPDATE s\n"
                                                   "\n"
                                                   "SESSION ADDR EXECUTE Failed\n"
                                                   " Error 2013 (lost) in query\n"
                                                   "UPDATE s\n"
                                                   "DB fatal error 2013 (lost) in query\n\b\nUPDATE s\n"
                                                   "Trying to reconnect...\n"
                                                   "SESSION ADDR EXECUTE UPDATE s\n"
                                                   "\n",
                                                   "SESSION ADDR EXECUTE UPDATE s\n"
                                                   "\n"
                                                   "SESSION ADDR EXECUTE Failed\n"
                                                   " Error 2013 (lost) in query\n"
                                                   "UPDATE s\n"
                                                   "DB fatal error 2013 (lost) in query\n\b\nUPDATE s\n"
                                                   "Trying to reconnect...\n"
                                                   "SESSION ADDR EXECUTE UPDATE s\n"
                                                   "\n")),
                         LevelName);

using ExecuteSeqReopeningRefusedLog = ScriptedSessionAtLevel;

TEST_P(ExecuteSeqReopeningRefusedLog, EndsWithTheRefusal) {
  ASSession& session = Ready(kSequences, Level());
  client.FailQuery(2006, "gone");
  client.FailConnect(2002, "no server");
  EXPECT_EQ(LogOf([&] { session.ExecuteSeq("UPDATE s"); }), Log());
}

INSTANTIATE_TEST_SUITE_P(Levels, ExecuteSeqReopeningRefusedLog,
                         testing::ValuesIn(ByLevel("",
                                                   "SESSION ADDR EXECUTE Failed\n"
                                                   " Error 2006 (gone) in query\n"
                                                   "UPDATE s\n"
                                                   "DB fatal error 2006 (gone) in query\n\b\nUPDATE s\n"
                                                   "Trying to reconnect...\n"
                                                   "mysql_real_connect failed for sequence\n Error 2002 (no server)\n",
                                                   "SESSION ADDR EXECUTE UPDATE s\n"
                                                   "\n"
                                                   "SESSION ADDR EXECUTE Failed\n"
                                                   " Error 2006 (gone) in query\n"
                                                   "UPDATE s\n"
                                                   "DB fatal error 2006 (gone) in query\n\b\nUPDATE s\n"
                                                   "Trying to reconnect...\n"
                                                   "mysql_real_connect failed for sequence\n Error 2002 (no server)\n",
                                                   "SESSION ADDR EXECUTE UPDATE s\n"
                                                   "\n"
                                                   "SESSION ADDR EXECUTE Failed\n"
                                                   " Error 2006 (gone) in query\n"
                                                   "UPDATE s\n"
                                                   "DB fatal error 2006 (gone) in query\n\b\nUPDATE s\n"
                                                   "Trying to reconnect...\n"
                                                   "mysql_real_connect failed for sequence\n"
                                                   " Error 2002 (no server)\n")),
                         LevelName);

using ExecuteSeqWithoutAHandleLog = ScriptedSessionAtLevel;

TEST_P(ExecuteSeqWithoutAHandleLog, EndsWithThat) {
  ASSession& session = Ready(kSequences, Level());
  client.FailQuery(2014, "out of sync");
  client.FailInit();
  EXPECT_EQ(LogOf([&] { session.ExecuteSeq("UPDATE s"); }), Log());
}

INSTANTIATE_TEST_SUITE_P(Levels, ExecuteSeqWithoutAHandleLog,
                         testing::ValuesIn(ByLevel("",
                                                   "SESSION ADDR EXECUTE Failed\n"
                                                   " Error 2014 (out of sync) in query\n"
                                                   "UPDATE s\n"
                                                   "DB fatal error 2014 (out of sync) in query\n\b\nUPDATE s\n"
                                                   "Trying to reconnect...\n"
                                                   "SESSION ADDR mysql_init failed for sequence\n",
                                                   "SESSION ADDR EXECUTE UPDATE s\n"
                                                   "\n"
                                                   "SESSION ADDR EXECUTE Failed\n"
                                                   " Error 2014 (out of sync) in query\n"
                                                   "UPDATE s\n"
                                                   "DB fatal error 2014 (out of sync) in query\n\b\nUPDATE s\n"
                                                   "Trying to reconnect...\n"
                                                   "SESSION ADDR mysql_init failed for sequence\n",
                                                   "SESSION ADDR EXECUTE UPDATE s\n"
                                                   "\n"
                                                   "SESSION ADDR EXECUTE Failed\n"
                                                   " Error 2014 (out of sync) in query\n"
                                                   "UPDATE s\n"
                                                   "DB fatal error 2014 (out of sync) in query\n\b\nUPDATE s\n"
                                                   "Trying to reconnect...\n"
                                                   "SESSION ADDR mysql_init failed for sequence\n")),
                         LevelName);

}  // namespace
}  // namespace corvane::test
