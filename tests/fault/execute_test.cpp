// Statements on the main connection: results, refusals, lost connections and log lines.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <type_traits>

#include "tests/support/scripted_session.h"
#include "tests/support/small_stack.h"

namespace corvane::test {
namespace {

using testing::ElementsAre;
using testing::ExitedWithCode;

using Execute = ScriptedSession;

TEST_F(Execute, SendsTheStatementAndReturnsTheAffectedRows) {
  ASSession& session = Ready();
  client.SetAffectedRows(3);
  EXPECT_EQ(session.Execute("UPDATE t SET a=1"), 3U);
  EXPECT_THAT(client.Calls(), ElementsAre("query UPDATE t SET a=1"));
}

TEST_F(Execute, ReturnsTheWholeRangeOfAffectedRows) {
  ASSession& session = Ready();
  client.SetAffectedRows(18446744073709551615U);
  EXPECT_EQ(session.Execute("SELECT 1"), 18446744073709551615U);
}

TEST_F(Execute, TakesTextsOfEveryKind) {
  ASSession& session = Ready();
  Str statement("a");
  session.Execute(statement);
  session.Execute(Str("b"));
  session.Execute("c");
  session.Execute(std::string("d"));
  EXPECT_THAT(client.Calls(), ElementsAre("query a", "query b", "query c", "query d"));
}

TEST_F(Execute, SendsAnEmptyTextForANullOne) {
  ASSession& session = Ready();
  session.Execute(Str());
  EXPECT_THAT(client.Calls(), ElementsAre("query "));
}

TEST_F(Execute, SendsEveryByteButNul) {
  ASSession& session = Ready();
  session.Execute("SELECT '%s%n\x01\x7F\xFF\xC3\xA9\n\t'");
  EXPECT_THAT(client.Calls(), ElementsAre("query SELECT '%s%n\x01\x7F\xFF\xC3\xA9\n\t'"));
}

TEST_F(Execute, DoesNotSendAStatementWithANulByte) {
  ASSession& session = Ready({{"AutoCommit", "on"}});
  EXPECT_EQ(ThrownBy([&] { session.Execute(Str("DELETE FROM t\0 WHERE a=1", 24)); }),
            (Thrown{0, "Statement contains a NUL byte. "}));
  EXPECT_THAT(client.Calls(), ElementsAre());
}

TEST_F(Execute, DoesNotSendAStatementThatEndsInANulByte) {
  ASSession& session = Ready();
  EXPECT_EQ(ThrownBy([&] { session.Execute(Str("COMMIT\0", 7)); }), (Thrown{0, "Statement contains a NUL byte. "}));
  EXPECT_THAT(client.Calls(), ElementsAre());
}

TEST_F(Execute, DoesNotTakeTheResult) {
  ASSession& session = Ready();
  client.AnswerQuery(1, {{"1"}});
  session.Execute("SELECT 1");
  EXPECT_THAT(client.Calls(), ElementsAre("query SELECT 1"));
}

// Refused statements.

struct Refusal {
  unsigned number;
  int code;
  char const* message;
};

class ExecuteRefused : public ScriptedSession, public testing::WithParamInterface<Refusal> {};

TEST_P(ExecuteRefused, ThrowsNumberAndTextAndSendsNothingElse) {
  ASSession& session = Ready({{"AutoCommit", "on"}});
  client.FailQuery(GetParam().number, "no");
  EXPECT_EQ(ThrownBy([&] { session.Execute("INSERT x"); }), (Thrown{GetParam().code, GetParam().message}));
  EXPECT_THAT(client.Calls(), ElementsAre("query INSERT x"));
}

INSTANTIATE_TEST_SUITE_P(Numbers, ExecuteRefused,
                         testing::Values(Refusal{1217, 100, "DB Error 1217 (no) in query\n\b\nINSERT x"},
                                         Refusal{1062, 102, "DB Error 1062 (no) in query\n\b\nINSERT x"},
                                         Refusal{1064, 102, "DB Error 1064 (no) in query\n\b\nINSERT x"},
                                         Refusal{1216, 102, "DB Error 1216 (no) in query\n\b\nINSERT x"},
                                         Refusal{1451, 102, "DB Error 1451 (no) in query\n\b\nINSERT x"},
                                         Refusal{1452, 102, "DB Error 1452 (no) in query\n\b\nINSERT x"},
                                         Refusal{1, 102, "DB Error 1 (no) in query\n\b\nINSERT x"},
                                         // Those that the server's end of a connection gives are refusals as well.
                                         Refusal{1053, 102, "DB Error 1053 (no) in query\n\b\nINSERT x"},
                                         Refusal{1153, 102, "DB Error 1153 (no) in query\n\b\nINSERT x"},
                                         Refusal{1317, 102, "DB Error 1317 (no) in query\n\b\nINSERT x"},
                                         Refusal{1927, 102, "DB Error 1927 (no) in query\n\b\nINSERT x"},
                                         Refusal{4031, 102, "DB Error 4031 (no) in query\n\b\nINSERT x"},
                                         Refusal{2002, 102, "DB Error 2002 (no) in query\n\b\nINSERT x"},
                                         Refusal{2055, 102, "DB Error 2055 (no) in query\n\b\nINSERT x"},
                                         Refusal{4294967295U, 102, "DB Error 4294967295 (no) in query\n\b\nINSERT x"}));

TEST_F(Execute, RefusedReportsALongStatementInFull) {
  ASSession& session = Ready();
  client.FailQuery(1064, "syntax");
  std::string const statement(100000, 'x');
  EXPECT_EQ(ThrownBy([&] { session.Execute(statement); }),
            (Thrown{102, "DB Error 1064 (syntax) in query\n\b\n" + statement}));
}

TEST_F(Execute, RefusedReportsTextAndStatementAsTheyStand) {
  ASSession& session = Ready();
  client.FailQuery(1064, "near '%s'\n");
  EXPECT_EQ(ThrownBy([&] { session.Execute("%n\n'\xC3\xA9'"); }),
            (Thrown{102, "DB Error 1064 (near '%s'\n) in query\n\b\n%n\n'\xC3\xA9'"}));
}

TEST_F(Execute, RefusedWithTheExitFlagThrows) {
  ASSession& session = Ready({}, 0, true);
  client.FailQuery(1062, "duplicate");
  EXPECT_EQ(ThrownBy([&] { session.Execute("INSERT x"); }),
            (Thrown{102, "DB Error 1062 (duplicate) in query\n\b\nINSERT x"}));
}

TEST_F(Execute, RefusedLeavesTheSessionUsable) {
  ASSession& session = Ready();
  client.FailQuery(1062, "duplicate");
  ThrownBy([&] { session.Execute("INSERT x"); });
  client.SetAffectedRows(1);
  EXPECT_EQ(session.Execute("INSERT y"), 1U);
}

// Lost connections.

class ExecuteLost : public ScriptedSession, public testing::WithParamInterface<unsigned> {};

TEST_P(ExecuteLost, WithAutocommitOnReconnectsAndRunsTheStatementAgain) {
  ASSession& session = Ready({{"Host", "h"}, {"AutoCommit", "on"}});
  client.FailQuery(GetParam(), "lost").Matching("UPDATE");
  client.AnswerQuery().Matching("UPDATE").AffectedRows(7);
  EXPECT_EQ(session.Execute("UPDATE x"), 7U);
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("1 query UPDATE x", "1 close", "2 init", "2 connect h '' '' '' 0",
                                                  "2 query SET AUTOCOMMIT=1", "2 query UPDATE x"));
}

TEST_P(ExecuteLost, WithAutocommitOffReconnectsAndThrows) {
  ASSession& session = Ready({{"Host", "h"}});
  client.FailQuery(GetParam(), "lost").Matching("UPDATE");
  EXPECT_EQ(ThrownBy([&] { session.Execute("UPDATE x"); }), (Thrown{102, "DB Error 0 () in query\n\b\nUPDATE x"}));
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("1 query UPDATE x", "1 close", "2 init", "2 connect h '' '' '' 0",
                                                  "2 query SET AUTOCOMMIT=0"));
}

TEST_P(ExecuteLost, WithReconnectionForbiddenThrowsAndLeavesTheHandleAlone) {
  ASSession& session = Ready({{"AutoCommit", "on"}, {"AutoReconnect", "oFf"}});
  client.FailQuery(GetParam(), "lost");
  EXPECT_EQ(ThrownBy([&] { session.Execute("UPDATE x"); }), (Thrown{103, "Database connection lost"}));
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("1 query UPDATE x"));
}

INSTANTIATE_TEST_SUITE_P(Numbers, ExecuteLost, testing::Values(0U, 2006U, 2013U, 2014U));

class ExecuteLostForGood : public ScriptedSession, public testing::WithParamInterface<char const*> {};

TEST_P(ExecuteLostForGood, IsNotReconnected) {
  ASSession& session = Ready({{"AutoReconnect", GetParam()}});
  client.FailQuery(2013, "lost");
  EXPECT_EQ(ThrownBy([&] { session.Execute("UPDATE x"); }), (Thrown{103, "Database connection lost"}));
}

INSTANTIATE_TEST_SUITE_P(Words, ExecuteLostForGood, testing::Values("off", "OFF", "Off", "oFF"));

class ExecuteLostForNow : public ScriptedSession, public testing::WithParamInterface<char const*> {};

TEST_P(ExecuteLostForNow, IsReconnected) {
  ASSession& session = Ready({{"AutoCommit", "on"}, {"AutoReconnect", GetParam()}});
  client.FailQuery(2013, "lost");
  session.Execute("UPDATE x");
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("1 query UPDATE x", "1 close", "2 init", "2 connect '' '' '' '' 0",
                                                  "2 query SET AUTOCOMMIT=1", "2 query UPDATE x"));
}

INSTANTIATE_TEST_SUITE_P(Words, ExecuteLostForNow, testing::Values("", "on", "no", "0", "off ", " off", "offf"));

TEST_F(Execute, LostWithAutocommitOffReconnectsAndReportsTheNewConnection) {
  ASSession& session = Ready();
  client.FailQuery(2013, "Lost connection to MySQL server during query").Matching("UPDATE");
  EXPECT_EQ(ThrownBy([&] { session.Execute("UPDATE x"); }), (Thrown{102, "DB Error 0 () in query\n\b\nUPDATE x"}));
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("1 query UPDATE x", "1 close", "2 init", "2 connect '' '' '' '' 0",
                                                  "2 query SET AUTOCOMMIT=0"));
}

TEST_F(Execute, LostReopensTheSequenceConnectionToo) {
  ASSession& session = Ready({{"AutoCommit", "on"}, {"EmulateSequences", "yes"}});
  client.FailQuery(2013, "lost");
  session.Execute("UPDATE x");
  EXPECT_THAT(client.CallsByHandle(),
              ElementsAre("1 query UPDATE x", "2 close", "1 close", "3 init", "3 connect '' '' '' '' 0",
                          "3 query SET AUTOCOMMIT=1", "4 init", "4 connect '' '' '' '' 0", "3 query UPDATE x"));
  EXPECT_EQ(client.OpenHandles(), 2U);
}

TEST_F(Execute, LostAgainAndAgainIsRepeatedUntilItSucceeds) {
  ASSession& session = Ready({{"AutoCommit", "on"}});
  client.FailQuery(2006, "gone").Matching("UPDATE");
  client.FailQuery(2013, "lost").Matching("UPDATE");
  client.FailQuery(0, "").Matching("UPDATE");
  client.AnswerQuery().Matching("UPDATE").AffectedRows(1);
  EXPECT_EQ(session.Execute("UPDATE x"), 1U);
  EXPECT_THAT(
      client.CallsByHandle(),
      ElementsAre("1 query UPDATE x",                                                                              //
                  "1 close", "2 init", "2 connect '' '' '' '' 0", "2 query SET AUTOCOMMIT=1", "2 query UPDATE x",  //
                  "2 close", "3 init", "3 connect '' '' '' '' 0", "3 query SET AUTOCOMMIT=1", "3 query UPDATE x",  //
                  "3 close", "4 init", "4 connect '' '' '' '' 0", "4 query SET AUTOCOMMIT=1", "4 query UPDATE x"));
}

TEST_F(Execute, RefusedAfterALossThrowsTheRefusal) {
  ASSession& session = Ready({{"AutoCommit", "on"}});
  client.FailQuery(2013, "lost").Matching("INSERT");
  client.FailQuery(1062, "duplicate").Matching("INSERT");
  EXPECT_EQ(ThrownBy([&] { session.Execute("INSERT x"); }),
            (Thrown{102, "DB Error 1062 (duplicate) in query\n\b\nINSERT x"}));
}

TEST_F(Execute, LostAndTheModeStatementLostTwiceCompletesEveryOpening) {
  ASSession& session = Ready({{"AutoCommit", "on"}, {"EmulateSequences", "yes"}});
  client.FailQuery(2013, "lost").Matching("UPDATE");
  client.FailQuery(2006, "gone").Matching("SET AUTOCOMMIT").Times(2);
  client.AnswerQuery().Matching("UPDATE").AffectedRows(7);
  EXPECT_EQ(session.Execute("UPDATE x"), 7U);
  EXPECT_THAT(client.CallsByHandle(),
              ElementsAre("1 query UPDATE x",                                                                     //
                          "2 close", "1 close", "3 init", "3 connect '' '' '' '' 0", "3 query SET AUTOCOMMIT=1",  //
                          "3 close", "4 init", "4 connect '' '' '' '' 0", "4 query SET AUTOCOMMIT=1",             //
                          "4 close", "5 init", "5 connect '' '' '' '' 0", "5 query SET AUTOCOMMIT=1",             //
                          "6 init", "6 connect '' '' '' '' 0",                                                    //
                          "5 query SET AUTOCOMMIT=1", "6 close", "7 init", "7 connect '' '' '' '' 0",             //
                          "5 query SET AUTOCOMMIT=1", "7 close", "8 init", "8 connect '' '' '' '' 0",             //
                          "5 query UPDATE x"));
}

TEST_F(Execute, LostAndTheModeStatementLostWithAutocommitOffReportsTheModeStatement) {
  ASSession& session = Ready();
  client.FailQuery(2013, "lost").Matching("UPDATE");
  client.FailQuery(2006, "gone").Matching("SET AUTOCOMMIT");
  EXPECT_EQ(ThrownBy([&] { session.Execute("UPDATE x"); }),
            (Thrown{102, "DB Error 0 () in query\n\b\nSET AUTOCOMMIT=0"}));
  EXPECT_THAT(client.CallsByHandle(),
              ElementsAre("1 query UPDATE x",                                                          //
                          "1 close", "2 init", "2 connect '' '' '' '' 0", "2 query SET AUTOCOMMIT=0",  //
                          "2 close", "3 init", "3 connect '' '' '' '' 0", "3 query SET AUTOCOMMIT=0"));
}

TEST_F(Execute, LostAHundredThousandTimesDoesNotGrowTheStack) {
  ASSession& session = Ready({{"AutoCommit", "on"}});
  client.FailQuery(2006, "gone").Matching("UPDATE").Times(100000);
  client.AnswerQuery().Matching("UPDATE").AffectedRows(7);
  unsigned long rows = 0;
  RunOnSmallStack([&] { rows = session.Execute("UPDATE x"); });
  EXPECT_EQ(rows, 7U);
  auto const calls = client.Calls();
  EXPECT_EQ(std::count(calls.begin(), calls.end(), "connect '' '' '' '' 0"), 100000);
}

TEST_F(Execute, LosingTheModeStatementAHundredThousandTimesDoesNotGrowTheStack) {
  ASSession& session = Ready({{"AutoCommit", "on"}, {"EmulateSequences", "yes"}});
  client.FailQuery(2013, "lost").Matching("UPDATE");
  client.FailQuery(2006, "gone").Matching("SET AUTOCOMMIT").Times(100000);
  client.AnswerQuery().Matching("UPDATE").AffectedRows(7);
  unsigned long rows = 0;
  RunOnSmallStack([&] { rows = session.Execute("UPDATE x"); });
  EXPECT_EQ(rows, 7U);
  auto const calls = client.Calls();
  // Each of the 100,001 openings sends the statement until it succeeds, and opens the sequence connection.
  EXPECT_EQ(std::count(calls.begin(), calls.end(), "query SET AUTOCOMMIT=1"), 200001);
  EXPECT_EQ(std::count(calls.begin(), calls.end(), "connect '' '' '' '' 0"), 200002);
  EXPECT_EQ(client.OpenHandles(), 2U);
}

// Reconnections that fail.

TEST_F(Execute, LostAndThenRefusedThrowsTheRefusalAfterAPause) {
  ASSession& session = Ready({{"AutoCommit", "on"}});
  client.FailQuery(2013, "lost");
  client.FailConnect(2002, "no server");
  EXPECT_EQ(ThrownBy([&] { session.Execute("UPDATE x"); }),
            (Thrown{0, "mysql_real_connect failed\n Error 2002 (no server)\n"}));
  EXPECT_THAT(client.CallsByHandle(),
              ElementsAre("1 query UPDATE x", "1 close", "2 init", "2 connect '' '' '' '' 0", "- sleep 1"));
}

TEST_F(Execute, RecoversAfterAReconnectionThatFailed) {
  ASSession& session = Ready({{"AutoCommit", "on"}});
  client.FailQuery(2013, "lost");
  client.FailConnect(2002, "no server");
  ThrownBy([&] { session.Execute("UPDATE x"); });
  client.ForgetCalls();
  client.SetAffectedRows(1);
  EXPECT_EQ(session.Execute("UPDATE x"), 1U);
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("2 query UPDATE x", "2 close", "3 init", "3 connect '' '' '' '' 0",
                                                  "3 query SET AUTOCOMMIT=1", "3 query UPDATE x"));
}

TEST_F(Execute, RecoversWithAutocommitOffAfterReportingTheLossOnceMore) {
  ASSession& session = Ready();
  client.FailQuery(2013, "lost");
  client.FailConnect(2002, "no server");
  ThrownBy([&] { session.Execute("UPDATE x"); });
  EXPECT_EQ(ThrownBy([&] { session.Execute("UPDATE x"); }), (Thrown{102, "DB Error 0 () in query\n\b\nUPDATE x"}));
  client.SetAffectedRows(1);
  EXPECT_EQ(session.Execute("UPDATE x"), 1U);
}

TEST_F(Execute, RecoversAfterAReconnectionThatGotNoHandle) {
  ASSession& session = Ready({{"AutoCommit", "on"}});
  client.FailQuery(2013, "lost");
  client.FailInit();
  EXPECT_EQ(ThrownBy([&] { session.Execute("UPDATE x"); }), (Thrown{0, "mysql_real_connect failed\n Error 0 ()\n"}));
  client.ForgetCalls();
  client.SetAffectedRows(1);
  EXPECT_EQ(session.Execute("UPDATE x"), 1U);
  EXPECT_THAT(client.CallsByHandle(),
              ElementsAre("2 init", "2 connect '' '' '' '' 0", "2 query SET AUTOCOMMIT=1", "2 query UPDATE x"));
}

TEST_F(Execute, WithoutAHandleAndWithReconnectionForbiddenReportsTheLoss) {
  ASSession& session = Ready({{"AutoReconnect", "off"}});
  session.Disconnect();
  EXPECT_EQ(ThrownBy([&] { session.Execute("UPDATE x"); }), (Thrown{103, "Database connection lost"}));
}

TEST_F(Execute, LostAndTheModeStatementRefusedThrowsTheRefusal) {
  ASSession& session = Ready({{"AutoCommit", "on"}});
  client.FailQuery(2013, "lost").Matching("UPDATE");
  client.FailQuery(1227, "no right").Matching("SET AUTOCOMMIT");
  EXPECT_EQ(ThrownBy([&] { session.Execute("UPDATE x"); }),
            (Thrown{102, "DB Error 1227 (no right) in query\n\b\nSET AUTOCOMMIT=1"}));
}

TEST_F(Execute, ForbidsTheClientLibraryToReconnectTheNewConnectionByItself) {
  ASSession& session = Ready({{"AutoCommit", "on"}});
  client.FailQuery(2013, "lost");
  session.Execute("UPDATE x");
  EXPECT_FALSE(client.AnyHandleReconnectsByItself());
}

// Results that were not taken.

TEST_F(Execute, CountsAResultThatWasNotTakenAsALostConnection) {
  ASSession& session = Ready();
  client.AnswerQuery(1, {{"1"}}).Matching("SELECT 1");
  session.Execute("SELECT 1");
  EXPECT_EQ(ThrownBy([&] { session.Execute("SELECT 2"); }), (Thrown{102, "DB Error 0 () in query\n\b\nSELECT 2"}));
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("1 query SELECT 1", "1 query SELECT 2", "1 close", "2 init",
                                                  "2 connect '' '' '' '' 0", "2 query SET AUTOCOMMIT=0"));
}

using FetchMultiple = ScriptedSession;

TEST_F(FetchMultiple, GivesTheWholeResultToTheCaller) {
  ASSession& session = Ready();
  client.AnswerQuery(2, {{"1", std::nullopt}, {"2", "b"}});
  session.Execute("SELECT a, b");
  MYSQL_RES* const result = session.FetchMultiple();
  EXPECT_EQ(mysql_num_rows(result), 2U);
  EXPECT_EQ(mysql_num_fields(result), 2U);
  EXPECT_STREQ(mysql_fetch_row(result)[0], "1");
  EXPECT_EQ(client.UnfreedResults(), 1U);
  mysql_free_result(result);
}

TEST_F(FetchMultiple, GivesTheClientLibrarysOwnType) {
  EXPECT_TRUE((std::is_same<MYSQL_RES*, decltype(mysql_store_result(nullptr))>::value));
  EXPECT_TRUE((std::is_same<MYSQL*, decltype(mysql_init(nullptr))>::value));
  EXPECT_TRUE((std::is_same<MYSQL_RES*, decltype(Ready().FetchMultiple())>::value));
}

TEST_F(FetchMultiple, LetsFurtherStatementsRunWhileTheCallerHoldsTheResult) {
  ASSession& session = Ready();
  client.AnswerQuery(1, {{"1"}}).Matching("SELECT 1");
  session.Execute("SELECT 1");
  MYSQL_RES* const result = session.FetchMultiple();
  EXPECT_EQ(session.Execute("SELECT 2"), 0U);
  mysql_free_result(result);
}

TEST_F(FetchMultiple, GivesAnEmptyResultToo) {
  ASSession& session = Ready();
  client.AnswerQuery(1, {});
  session.Execute("SELECT 1 FROM t");
  MYSQL_RES* const result = session.FetchMultiple();
  EXPECT_EQ(mysql_num_rows(result), 0U);
  mysql_free_result(result);
}

TEST_F(FetchMultiple, ThrowsForAStatementWithoutResult) {
  ASSession& session = Ready();
  session.Execute("UPDATE x");
  EXPECT_EQ(ThrownBy([&] { session.FetchMultiple(); }), (Thrown{0, "MySQL fetch error. "}));
}

TEST_F(FetchMultiple, ThrowsForAResultThatWasTakenBefore) {
  ASSession& session = Ready();
  client.AnswerQuery(1, {{"1"}});
  session.Execute("SELECT 1");
  mysql_free_result(session.FetchMultiple());
  EXPECT_EQ(ThrownBy([&] { session.FetchMultiple(); }), (Thrown{0, "MySQL fetch error. "}));
}

TEST_F(FetchMultiple, ThrowsWhenTheResultCannotBeRead) {
  ASSession& session = Ready();
  client.AnswerQuery(1, {{"1"}});
  client.FailStoreResult(1317, "interrupted");
  session.Execute("SELECT 1");
  EXPECT_EQ(ThrownBy([&] { session.FetchMultiple(); }), (Thrown{0, "MySQL fetch error. "}));
}

TEST_F(FetchMultiple, ThrowsWithoutAConnection) {
  ASSession& session = Ready();
  session.Disconnect();
  EXPECT_EQ(ThrownBy([&] { session.FetchMultiple(); }), (Thrown{0, "MySQL fetch error. "}));
}

using RowsAffected = ScriptedSession;

TEST_F(RowsAffected, AreThoseOfTheLastStatement) {
  ASSession& session = Ready();
  client.SetAffectedRows(5);
  session.Execute("UPDATE x");
  EXPECT_EQ(session.RowsAffected(), 5U);
  client.SetAffectedRows(18446744073709551615U);
  session.Execute("SELECT 1");
  EXPECT_EQ(session.RowsAffected(), 18446744073709551615U);
}

TEST_F(RowsAffected, AreZeroAfterConstruction) { EXPECT_EQ(Ready().RowsAffected(), 0U); }

TEST_F(RowsAffected, SurviveARefusedStatement) {
  ASSession& session = Ready();
  client.SetAffectedRows(5);
  session.Execute("UPDATE x");
  client.FailQuery(1062, "duplicate");
  ThrownBy([&] { session.Execute("INSERT x"); });
  EXPECT_EQ(session.RowsAffected(), 5U);
}

TEST_F(RowsAffected, SurviveALostConnectionThatIsNotReopened) {
  ASSession& session = Ready({{"AutoReconnect", "off"}});
  client.SetAffectedRows(5);
  session.Execute("UPDATE x");
  client.FailQuery(2013, "lost");
  ThrownBy([&] { session.Execute("UPDATE y"); });
  EXPECT_EQ(session.RowsAffected(), 5U);
}

using GetInsertId = ScriptedSession;

TEST_F(GetInsertId, IsTheNumberOfTheMainConnection) {
  ASSession& session = Ready({{"EmulateSequences", "yes"}});
  client.AnswerQuery().Matching("INSERT").InsertId(42);
  client.AnswerQuery().Matching("SEQUENCE").InsertId(7);
  session.Execute("INSERT x");
  session.ExecuteSeq("SEQUENCE");
  EXPECT_EQ(session.GetInsertId(), 42);
}

TEST_F(GetInsertId, IsZeroAndNotNullWhenNoNumberWasGiven) {
  ASSession& session = Ready();
  session.Execute("UPDATE x");
  EXPECT_EQ(session.GetInsertId(), 0);
  EXPECT_EQ(session.GetInsertId().IsNull(), 0);
}

TEST_F(GetInsertId, IsNarrowedToItsLowest32Bits) {
  ASSession& session = Ready();
  client.SetInsertId(2147483647U);
  session.Execute("INSERT a");
  EXPECT_EQ(session.GetInsertId(), 2147483647);
  client.SetInsertId(4294967298U);
  session.Execute("INSERT b");
  EXPECT_EQ(session.GetInsertId(), 2);
  client.SetInsertId(4294967295U);
  session.Execute("INSERT c");
  EXPECT_EQ(session.GetInsertId(), -1);
}

TEST_F(GetInsertId, ReadsAsNullAt2147483648) {
  ASSession& session = Ready();
  client.SetInsertId(2147483648U);
  session.Execute("INSERT x");
  EXPECT_NE(session.GetInsertId().IsNull(), 0);
}

// The process ends.

using ExecuteDeathTest = ScriptedSessionDeathTest;

TEST_F(ExecuteDeathTest, LostWithTheExitFlagEndsTheProcessBeforeItReconnects) {
  ASSession& session = Ready({{"AutoCommit", "on"}}, 1, true);
  client.FailQuery(2013, "lost");
  EXPECT_EXIT(session.Execute("UPDATE x"), ExitedWithCode(1),
              Logged("SESSION ADDR EXECUTE Failed\n Error 2013 (lost) in query\nUPDATE x\n"
                     "DB fatal error 2013 (lost) in query\n\b\nUPDATE x\n"));
}

TEST_F(ExecuteDeathTest, LostWithNumberZeroAndTheExitFlagEndsTheProcess) {
  ASSession& session = Ready({}, 0, true);
  client.FailQuery(0, "");
  EXPECT_EXIT(session.Execute("UPDATE x"), ExitedWithCode(1), Logged(""));
}

TEST_F(ExecuteDeathTest, ExitFlagComesBeforeForbiddenReconnection) {
  ASSession& session = Ready({{"AutoReconnect", "off"}}, 0, true);
  client.FailQuery(2006, "gone");
  EXPECT_EXIT(session.Execute("UPDATE x"), ExitedWithCode(1), Logged(""));
}

// Log lines at every debug level.

using ExecuteLog = ScriptedSessionAtLevel;

TEST_P(ExecuteLog, ShowsStatementAndCompletion) {
  ASSession& session = Ready({}, Level());
  EXPECT_EQ(LogOf([&] { session.Execute("SELECT '%s\n'"); }), Log());
}

INSTANTIATE_TEST_SUITE_P(Levels, ExecuteLog,
                         testing::ValuesIn(ByLevel("", "",
                                                   "SESSION ADDR EXECUTE SELECT '%s\n'\n"
                                                   "\n"
                                                   "EXECUTE COMPLETE\n",
                                                   "SESSION ADDR EXECUTE SELECT '%s\n'\n"
                                                   "\n"
                                                   "EXECUTE COMPLETE\n")),
                         LevelName);

using ExecuteRefusedLog = ScriptedSessionAtLevel;

TEST_P(ExecuteRefusedLog, ShowsNumberTextAndStatement) {
  ASSession& session = Ready({}, Level());
  client.FailQuery(1062, "duplicate");
  EXPECT_EQ(LogOf([&] { session.Execute("INSERT x"); }), Log());
}

INSTANTIATE_TEST_SUITE_P(Levels, ExecuteRefusedLog,
                         testing::ValuesIn(ByLevel("",
                                                   "SESSION ADDR EXECUTE Failed\n"
                                                   " Error 1062 (duplicate) in query\n"
                                                   "INSERT x\n",
                                                   "SESSION ADDR EXECUTE INSERT x\n"
                                                   "\n"
                                                   "SESSION ADDR EXECUTE Failed\n"
                                                   " Error 1062 (duplicate) in query\n"
                                                   "INSERT x\n",
                                                   "SESSION ADDR EXECUTE INSERT x\n"
                                                   "\n"
                                                   "SESSION ADDR EXECUTE Failed\n"
                                                   " Error 1062 (duplicate) in query\n"
                                                   "INSERT x\n")),
                         LevelName);

using ExecuteLostForGoodLog = ScriptedSessionAtLevel;

TEST_P(ExecuteLostForGoodLog, ShowsTheFatalErrorWithoutReconnection) {
  ASSession& session = Ready({{"AutoReconnect", "off"}}, Level());
  client.FailQuery(2013, "lost");
  EXPECT_EQ(LogOf([&] { session.Execute("UPDATE x"); }), Log());
}

INSTANTIATE_TEST_SUITE_P(Levels, ExecuteLostForGoodLog,
                         testing::ValuesIn(ByLevel("",
                                                   "SESSION ADDR EXECUTE Failed\n"
                                                   " Error 2013 (lost) in query\n"
                                                   "UPDATE x\n"
                                                   "DB fatal error 2013 (lost) in query\n\b\nUPDATE x\n",
                                                   "SESSION ADDR EXECUTE UPDATE x\n"
                                                   "\n"
                                                   "SESSION ADDR EXECUTE Failed\n"
                                                   " Error 2013 (lost) in query\n"
                                                   "UPDATE x\n"
                                                   "DB fatal error 2013 (lost) in query\n\b\nUPDATE x\n",
                                                   "SESSION ADDR EXECUTE UPDATE x\n"
                                                   "\n"
                                                   "SESSION ADDR EXECUTE Failed\n"
                                                   " Error 2013 (lost) in query\n"
                                                   "UPDATE x\n"
                                                   "DB fatal error 2013 (lost) in query\n\b\nUPDATE x\n")),
                         LevelName);

using ExecuteReconnectingLog = ScriptedSessionAtLevel;

TEST_P(ExecuteReconnectingLog, ShowsTheWholeOpeningAndTheRepetition) {
  ASSession& session = Ready({{"AutoCommit", "on"}, {"EmulateSequences", "yes"}}, Level());
  client.FailQuery(2013, "lost");
  EXPECT_EQ(LogOf([&] { session.Execute("UPDATE x"); }), Log());
}

INSTANTIATE_TEST_SUITE_P(Levels, ExecuteReconnectingLog,
                         testing::ValuesIn(ByLevel("",
                                                   "SESSION ADDR EXECUTE Failed\n"
                                                   " Error 2013 (lost) in query\n"
                                                   "UPDATE x\n"
                                                   "DB fatal error 2013 (lost) in query\n\b\nUPDATE x\n"
                                                   "Reconnecting.\n",
                                                   "SESSION ADDR EXECUTE UPDATE x\n"
                                                   "\n"
                                                   "SESSION ADDR EXECUTE Failed\n"
                                                   " Error 2013 (lost) in query\n"
                                                   "UPDATE x\n"
                                                   "DB fatal error 2013 (lost) in query\n\b\nUPDATE x\n"
                                                   "Reconnecting.\n"
                                                   "SESSION ADDR CONNECTION PARAMETERS:\n"
                                                   "  AutoCommit=on\n"
                                                   "  AutoReconnect=\n"
                                                   "  ControlPort=\n"
                                                   "  Database=\n"
                                                   "  EmulateSequences=yes\n"
                                                   "  Host=\n"
                                                   "  Password=\n"
                                                   "  Port=\n"
                                                   "  SequenceHost=\n"
                                                   "  UserName=\n"
                                                   "\n"
                                                   "SESSION ADDR EXECUTE SET AUTOCOMMIT=1\n"
                                                   "\n"
                                                   "EXECUTE COMPLETE\n"
                                                   "SESSION ADDR EXECUTE UPDATE x\n"
                                                   "\n"
                                                   "EXECUTE COMPLETE\n",
                                                   "SESSION ADDR EXECUTE UPDATE x\n"
                                                   "\n"
                                                   "SESSION ADDR EXECUTE Failed\n"
                                                   " Error 2013 (lost) in query\n"
                                                   "UPDATE x\n"
                                                   "DB fatal error 2013 (lost) in query\n\b\nUPDATE x\n"
                                                   "Reconnecting.\n"
                                                   "SESSION ADDR CONNECTION PARAMETERS:\n"
                                                   "  AutoCommit=on\n"
                                                   "  AutoReconnect=\n"
                                                   "  ControlPort=\n"
                                                   "  Database=\n"
                                                   "  EmulateSequences=yes\n"
                                                   "  Host=\n"
                                                   "  Password=\n"
                                                   "  Port=\n"
                                                   "  SequenceHost=\n"
                                                   "  UserName=\n"
                                                   "\n"
                                                   "SESSION ADDR EXECUTE SET AUTOCOMMIT=1\n"
                                                   "\n"
                                                   "EXECUTE COMPLETE\n"
                                                   "autocommit mode swithced ON\n"
                                                   "Sequence connection established\n"
                                                   "SESSION ADDR EXECUTE UPDATE x\n"
                                                   "\n"
                                                   "EXECUTE COMPLETE\n")),
                         LevelName);

using ExecuteLostTransactionLog = ScriptedSessionAtLevel;

TEST_P(ExecuteLostTransactionLog, EndsWithTheOpeningOfTheNewConnection) {
  ASSession& session = Ready({}, Level());
  client.FailQuery(0, "");
  EXPECT_EQ(LogOf([&] { session.Execute("UPDATE x"); }), Log());
}

INSTANTIATE_TEST_SUITE_P(Levels, ExecuteLostTransactionLog,
                         testing::ValuesIn(ByLevel("",
                                                   "SESSION ADDR EXECUTE Failed\n"
                                                   " Error 0 () in query\n"
                                                   "UPDATE x\n"
                                                   "DB fatal error 0 () in query\n\b\nUPDATE x\n"
                                                   "Reconnecting.\n",
                                                   "SESSION ADDR EXECUTE UPDATE x\n"
                                                   "\n"
                                                   "SESSION ADDR EXECUTE Failed\n"
                                                   " Error 0 () in query\n"
                                                   "UPDATE x\n"
                                                   "DB fatal error 0 () in query\n\b\nUPDATE x\n"
                                                   "Reconnecting.\n"
                                                   "SESSION ADDR CONNECTION PARAMETERS:\n"
                                                   "  AutoCommit=\n"
                                                   "  AutoReconnect=\n"
                                                   "  ControlPort=\n"
                                                   "  Database=\n"
                                                   "  EmulateSequences=no\n"
                                                   "  Host=\n"
                                                   "  Password=\n"
                                                   "  Port=\n"
                                                   "  UserName=\n"
                                                   "\n"
                                                   "SESSION ADDR EXECUTE SET AUTOCOMMIT=0\n"
                                                   "\n"
                                                   "EXECUTE COMPLETE\n",
                                                   "SESSION ADDR EXECUTE UPDATE x\n"
                                                   "\n"
                                                   "SESSION ADDR EXECUTE Failed\n"
                                                   " Error 0 () in query\n"
                                                   "UPDATE x\n"
                                                   "DB fatal error 0 () in query\n\b\nUPDATE x\n"
                                                   "Reconnecting.\n"
                                                   "SESSION ADDR CONNECTION PARAMETERS:\n"
                                                   "  AutoCommit=\n"
                                                   "  AutoReconnect=\n"
                                                   "  ControlPort=\n"
                                                   "  Database=\n"
                                                   "  EmulateSequences=no\n"
                                                   "  Host=\n"
                                                   "  Password=\n"
                                                   "  Port=\n"
                                                   "  UserName=\n"
                                                   "\n"
                                                   "SESSION ADDR EXECUTE SET AUTOCOMMIT=0\n"
                                                   "\n"
                                                   "EXECUTE COMPLETE\n"
                                                   "autocommit mode swithced OFF\n")),
                         LevelName);

using ExecuteReconnectionRefusedLog = ScriptedSessionAtLevel;

TEST_P(ExecuteReconnectionRefusedLog, EndsWithTheRefusal) {
  ASSession& session = Ready({}, Level());
  client.FailQuery(2013, "lost");
  client.FailConnect(2002, "no server");
  EXPECT_EQ(LogOf([&] { session.Execute("UPDATE x"); }), Log());
}

INSTANTIATE_TEST_SUITE_P(Levels, ExecuteReconnectionRefusedLog,
                         testing::ValuesIn(ByLevel("",
                                                   "SESSION ADDR EXECUTE Failed\n"
                                                   " Error 2013 (lost) in query\n"
                                                   "UPDATE x\n"
                                                   "DB fatal error 2013 (lost) in query\n\b\nUPDATE x\n"
                                                   "Reconnecting.\n"
                                                   "mysql_real_connect failed\n Error 2002 (no server)\n",
                                                   "SESSION ADDR EXECUTE UPDATE x\n"
                                                   "\n"
                                                   "SESSION ADDR EXECUTE Failed\n"
                                                   " Error 2013 (lost) in query\n"
                                                   "UPDATE x\n"
                                                   "DB fatal error 2013 (lost) in query\n\b\nUPDATE x\n"
                                                   "Reconnecting.\n"
                                                   "SESSION ADDR CONNECTION PARAMETERS:\n"
                                                   "  AutoCommit=\n"
                                                   "  AutoReconnect=\n"
                                                   "  ControlPort=\n"
                                                   "  Database=\n"
                                                   "  EmulateSequences=no\n"
                                                   "  Host=\n"
                                                   "  Password=\n"
                                                   "  Port=\n"
                                                   "  UserName=\n"
                                                   "\n"
                                                   "mysql_real_connect failed\n Error 2002 (no server)\n",
                                                   "SESSION ADDR EXECUTE UPDATE x\n"
                                                   "\n"
                                                   "SESSION ADDR EXECUTE Failed\n"
                                                   " Error 2013 (lost) in query\n"
                                                   "UPDATE x\n"
                                                   "DB fatal error 2013 (lost) in query\n\b\nUPDATE x\n"
                                                   "Reconnecting.\n"
                                                   "SESSION ADDR CONNECTION PARAMETERS:\n"
                                                   "  AutoCommit=\n"
                                                   "  AutoReconnect=\n"
                                                   "  ControlPort=\n"
                                                   "  Database=\n"
                                                   "  EmulateSequences=no\n"
                                                   "  Host=\n"
                                                   "  Password=\n"
                                                   "  Port=\n"
                                                   "  UserName=\n"
                                                   "\n"
                                                   "mysql_real_connect failed\n Error 2002 (no server)\n")),
                         LevelName);

}  // namespace
}  // namespace corvane::test
