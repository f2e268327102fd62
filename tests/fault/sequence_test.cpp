// Numbers of a sequence: what is sent, answers that hold none, and lost connections.

#include "corvane/session/sequence.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <ostream>
#include <string>

#include "tests/support/scripted_session.h"
#include "tests/support/small_stack.h"

namespace corvane::test {
namespace {

using testing::ElementsAre;
using testing::ExitedWithCode;

std::map<std::string, std::string> const kSequences{
    {"SequenceHost", "s"}, {"UserName", "u"}, {"Password", "p"}, {"Database", "d"}, {"EmulateSequences", "yes"}};

constexpr char const* kUpdate = "UPDATE numbers SET Val=LAST_INSERT_ID(Val+1)";
constexpr char const* kSelect = "SELECT LAST_INSERT_ID()";

// Handle 1 is the main connection, handle 2 the sequence connection.
class Sequence : public ScriptedSession {
 protected:
  void SetUp() override {
    ScriptedSession::SetUp();
    client.SetAffectedRows(1);
  }

  // The answer of the next SELECT without one.
  void Hand(Field const& number) { client.AnswerQuery(1, {{number}}).Matching(kSelect); }
  static int NextOf(ASSession& session) { return ASSequence(&session, "numbers").getNext(); }

  // How often this was called.
  auto CallsOf(std::string const& call) const {
    auto const calls = client.Calls();
    return std::count(calls.begin(), calls.end(), call);
  }
  // The last calls, from the last UPDATE on.
  std::vector<std::string> LastRound() const {
    auto const calls = client.CallsByHandle();
    auto const isUpdate = [](std::string const& call) { return call.find(kUpdate) != std::string::npos; };
    auto const last = std::find_if(calls.rbegin(), calls.rend(), isUpdate);
    return last == calls.rend() ? calls : std::vector<std::string>(last.base() - 1, calls.end());
  }
};

// What is sent.

TEST_F(Sequence, MakingItSendsNothing) {
  ASSession& session = Ready(kSequences);
  ASSequence const numbers(&session, "numbers");
  EXPECT_THAT(client.Calls(), ElementsAre());
}

TEST_F(Sequence, CountsUpAndReadsTheNumberOnTheSequenceConnection) {
  ASSession& session = Ready(kSequences);
  Hand("42");
  ASSequence numbers(&session, "numbers");
  EXPECT_EQ(numbers.getNext(), 42);
  EXPECT_THAT(client.CallsByHandle(),
              ElementsAre("2 query UPDATE numbers SET Val=LAST_INSERT_ID(Val+1)", "2 query SELECT LAST_INSERT_ID()",
                          "2 store_result", "2 free_result"));
}

TEST_F(Sequence, EveryNumberIsCountedAnew) {
  ASSession& session = Ready(kSequences);
  Hand("42");
  Hand("43");
  ASSequence numbers(&session, "numbers");
  EXPECT_EQ(numbers.getNext(), 42);
  client.ForgetCalls();
  EXPECT_EQ(numbers.getNext(), 43);
  EXPECT_THAT(client.CallsByHandle(),
              ElementsAre("2 query UPDATE numbers SET Val=LAST_INSERT_ID(Val+1)", "2 query SELECT LAST_INSERT_ID()",
                          "2 store_result", "2 free_result"));
}

TEST_F(Sequence, NameStandsAsItIsGiven) {
  ASSession& session = Ready(kSequences);
  Hand("1");
  ASSequence numbers(&session, "shop.`order`");
  numbers.getNext();
  EXPECT_EQ(client.CallsByHandle().at(0), "2 query UPDATE shop.`order` SET Val=LAST_INSERT_ID(Val+1)");
}

TEST_F(Sequence, NameIsTakenOver) {
  ASSession& session = Ready(kSequences);
  Hand("1");
  Str name("numbers");
  ASSequence numbers(&session, name);
  name = "others";
  numbers.getNext();
  EXPECT_EQ(client.CallsByHandle().at(0), "2 query UPDATE numbers SET Val=LAST_INSERT_ID(Val+1)");
}

TEST_F(Sequence, NameWithANulByteIsNotSent) {
  ASSession& session = Ready(kSequences);
  ASSequence numbers(&session, Str("numbers\0x", 9));
  EXPECT_EQ(ThrownBy([&] { numbers.getNext(); }), (Thrown{0, "Statement contains a NUL byte. "}));
  EXPECT_THAT(client.Calls(), ElementsAre());
}

TEST_F(Sequence, LeavesTheMainConnectionsRowsAffectedAlone) {
  ASSession& session = Ready(kSequences);
  client.AnswerQuery().Matching("INSERT").AffectedRows(3);
  session.Execute("INSERT t");
  Hand("42");
  EXPECT_EQ(NextOf(session), 42);
  EXPECT_EQ(session.RowsAffected(), 3U);
}

// Numbers that the server may answer with.

struct Answered {
  char const* name;
  char const* text;
  int number;

  friend std::ostream& operator<<(std::ostream& out, Answered const& row) { return out << row.text; }
};

class SequenceNumber : public Sequence, public testing::WithParamInterface<Answered> {};

TEST_P(SequenceNumber, IsReadInto32Bits) {
  ASSession& session = Ready(kSequences);
  Hand(GetParam().text);
  EXPECT_EQ(NextOf(session), GetParam().number);
}

INSTANTIATE_TEST_SUITE_P(Answers, SequenceNumber,
                         testing::Values(Answered{"One", "1", 1},                                      //
                                         Answered{"Zero", "0", 0},                                     //
                                         Answered{"Negative", "-7", -7},                               //
                                         Answered{"LeadingZeros", "007", 7},                           //
                                         Answered{"BlanksAround", "  42 ", 42},                        //
                                         Answered{"TextBehind", "42x", 42},                            //
                                         Answered{"Largest", "2147483647", 2147483647},                //
                                         Answered{"LargestAndOne", "2147483648", -2147483647 - 1},     //
                                         Answered{"AllBitsOf32", "4294967295", -1},                    //
                                         Answered{"Bit33", "4294967296", 0},                           //
                                         Answered{"Bit33AndOne", "4294967297", 1},                     //
                                         Answered{"NegativeBeyond32Bits", "-2147483649", 2147483647},  //
                                         Answered{"NoNumber", "x", 0},                                 //
                                         Answered{"Empty", "", 0}),
                         [](auto const& row) { return row.param.name; });

// Answers without a number.

TEST_F(Sequence, NoRowChangedGivesZeroAndIsNotReadFor) {
  ASSession& session = Ready(kSequences);
  client.AnswerQuery().Matching(kUpdate).AffectedRows(0);
  EXPECT_EQ(NextOf(session), 0);
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("2 query UPDATE numbers SET Val=LAST_INSERT_ID(Val+1)"));
}

TEST_F(Sequence, TwoRowsChangedAreReadFor) {
  ASSession& session = Ready(kSequences);
  client.AnswerQuery().Matching(kUpdate).AffectedRows(2);
  Hand("42");
  EXPECT_EQ(NextOf(session), 42);
}

TEST_F(Sequence, ResultThatCannotBeStoredGivesZero) {
  ASSession& session = Ready(kSequences);
  Hand("42");
  client.FailStoreResult(2013, "lost");
  EXPECT_EQ(NextOf(session), 0);
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("2 query UPDATE numbers SET Val=LAST_INSERT_ID(Val+1)",
                                                  "2 query SELECT LAST_INSERT_ID()", "2 store_result"));
}

TEST_F(Sequence, SelectWithoutAResultGivesZero) {
  ASSession& session = Ready(kSequences);
  client.AnswerQuery().Matching(kSelect);
  EXPECT_EQ(NextOf(session), 0);
}

TEST_F(Sequence, ResultWithoutARowGivesZeroAndIsFreed) {
  ASSession& session = Ready(kSequences);
  client.AnswerQuery(1, {}).Matching(kSelect);
  EXPECT_EQ(NextOf(session), 0);
  EXPECT_EQ(client.CallsByHandle().back(), "2 free_result");
  EXPECT_EQ(client.UnfreedResults(), 0U);
}

TEST_F(Sequence, NullGivesZeroAndTheResultIsFreed) {
  ASSession& session = Ready(kSequences);
  Hand(Field());
  EXPECT_EQ(NextOf(session), 0);
  EXPECT_EQ(client.CallsByHandle().back(), "2 free_result");
  EXPECT_EQ(client.UnfreedResults(), 0U);
}

// After each of these the same object hands out the next number.

struct Trouble {
  char const* name;
  void (*arrange)(ScriptedClient&);
};

void PrintTo(Trouble const& trouble, std::ostream* out) { *out << trouble.name; }

class SequenceAfter : public Sequence, public testing::WithParamInterface<Trouble> {};

TEST_P(SequenceAfter, HandsOutTheNextNumber) {
  ASSession& session = Ready(kSequences);
  ASSequence numbers(&session, "numbers");
  GetParam().arrange(client);
  ThrownBy([&] { EXPECT_EQ(numbers.getNext(), 0); });
  EXPECT_EQ(client.UnusedSteps(), 0U);
  Hand("42");
  EXPECT_EQ(numbers.getNext(), 42);
}

INSTANTIATE_TEST_SUITE_P(
    Troubles, SequenceAfter,
    testing::Values(Trouble{"NoRowChanged", [](ScriptedClient& c) { c.AnswerQuery().AffectedRows(0); }},
                    Trouble{"NoStoredResult", [](ScriptedClient& c) { c.FailStoreResult(2013, "lost"); }},
                    Trouble{"NoResult", [](ScriptedClient& c) { c.AnswerQuery().Matching(kSelect); }},
                    Trouble{"NoRow", [](ScriptedClient& c) { c.AnswerQuery(1, {}).Matching(kSelect); }},
                    Trouble{"Null", [](ScriptedClient& c) { c.AnswerQuery(1, {{Field()}}).Matching(kSelect); }},
                    Trouble{"RefusedUpdate", [](ScriptedClient& c) { c.FailQuery(1146, "no table"); }},
                    Trouble{"RefusedSelect", [](ScriptedClient& c) { c.FailQuery(1317, "no").Matching(kSelect); }},
                    Trouble{"FailedReopening",
                            [](ScriptedClient& c) {
                              c.FailQuery(2013, "lost").Matching(kUpdate);
                              c.FailConnect(2002, "no server");
                            }},
                    Trouble{"FailedReopeningInTheSelect",
                            [](ScriptedClient& c) {
                              c.FailQuery(2013, "lost").Matching(kSelect);
                              c.FailConnect(2002, "no server");
                            }}),
    [](auto const& row) { return row.param.name; });

// Refused statements.

TEST_F(Sequence, RefusedUpdateThrowsWithoutANumber) {
  ASSession& session = Ready(kSequences);
  client.FailQuery(1146, "no table").Matching(kUpdate);
  EXPECT_EQ(ThrownBy([&] { NextOf(session); }),
            (Thrown{0, "DB Error 1146 (no table) in query\n\b\nUPDATE numbers SET Val=LAST_INSERT_ID(Val+1)"}));
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("2 query UPDATE numbers SET Val=LAST_INSERT_ID(Val+1)"));
}

TEST_F(Sequence, RefusedSelectThrowsWithoutANumber) {
  ASSession& session = Ready(kSequences);
  client.FailQuery(1317, "interrupted").Matching(kSelect);
  EXPECT_EQ(ThrownBy([&] { NextOf(session); }),
            (Thrown{0, "DB Error 1317 (interrupted) in query\n\b\nSELECT LAST_INSERT_ID()"}));
  EXPECT_THAT(client.CallsByHandle(),
              ElementsAre("2 query UPDATE numbers SET Val=LAST_INSERT_ID(Val+1)", "2 query SELECT LAST_INSERT_ID()"));
}

// No sequence connection.

TEST_F(Sequence, WithoutASessionThrows) {
  ASSequence numbers(nullptr, "numbers");
  EXPECT_EQ(ThrownBy([&] { numbers.getNext(); }), (Thrown{0, "Sequence connection is not established. "}));
}

TEST_F(Sequence, InASessionWithoutSequencesThrowsAndSendsNothing) {
  ASSession& session = Ready({{"EmulateSequences", "no"}});
  EXPECT_EQ(ThrownBy([&] { NextOf(session); }), (Thrown{0, "Sequence connection is not established. "}));
  EXPECT_THAT(client.Calls(), ElementsAre());
}

TEST_F(Sequence, InASessionWithoutSequencesThrowsWithTheExitFlagToo) {
  ASSession& session = Ready({{"EmulateSequences", "no"}}, 0, true);
  EXPECT_EQ(ThrownBy([&] { NextOf(session); }), (Thrown{0, "Sequence connection is not established. "}));
}

TEST_F(Sequence, WithoutAHandleThrows) {
  client.FailInit().After(1);
  ASSession& session = Ready(kSequences);
  EXPECT_EQ(ThrownBy([&] { NextOf(session); }), (Thrown{0, "Sequence connection is not established. "}));
  EXPECT_THAT(client.Calls(), ElementsAre());
}

TEST_F(Sequence, AfterDisconnectThrows) {
  ASSession& session = Ready(kSequences);
  session.Disconnect();
  client.ForgetCalls();
  EXPECT_EQ(ThrownBy([&] { NextOf(session); }), (Thrown{0, "Sequence connection is not established. "}));
  EXPECT_THAT(client.Calls(), ElementsAre());
}

// Lost connections.

class SequenceLost : public Sequence, public testing::WithParamInterface<unsigned> {};

TEST_P(SequenceLost, InTheUpdateRepeatsTheUpdate) {
  ASSession& session = Ready(kSequences);
  client.FailQuery(GetParam(), "lost").Matching(kUpdate);
  Hand("42");
  EXPECT_EQ(NextOf(session), 42);
  EXPECT_THAT(client.CallsByHandle(),
              ElementsAre("2 query UPDATE numbers SET Val=LAST_INSERT_ID(Val+1)", "2 close",  //
                          "3 init", "3 connect s u p d 0", "3 query UPDATE numbers SET Val=LAST_INSERT_ID(Val+1)",
                          "3 query SELECT LAST_INSERT_ID()", "3 store_result", "3 free_result"));
}

TEST_P(SequenceLost, InTheSelectIsCountedAnewAndReadWhereItWasCounted) {
  ASSession& session = Ready(kSequences);
  client.FailQuery(GetParam(), "lost").Matching(kSelect);
  Hand("0");  // what a connection that has not counted answers
  Hand("43");
  EXPECT_EQ(NextOf(session), 43);
  std::string const last = std::string(1, client.CallsByHandle().back().front());
  EXPECT_THAT(LastRound(),
              ElementsAre(last + " query UPDATE numbers SET Val=LAST_INSERT_ID(Val+1)",
                          last + " query SELECT LAST_INSERT_ID()", last + " store_result", last + " free_result"));
}

TEST_P(SequenceLost, InTheSelectIsReopenedOnce) {
  ASSession& session = Ready(kSequences);
  client.FailQuery(GetParam(), "lost").Matching(kSelect);
  Hand("0");
  Hand("43");
  EXPECT_EQ(NextOf(session), 43);
  EXPECT_EQ(CallsOf("connect s u p d 0"), 1);
  EXPECT_EQ(CallsOf("query UPDATE numbers SET Val=LAST_INSERT_ID(Val+1)"), 2);
}

TEST_P(SequenceLost, IsReopenedThoughReconnectionIsForbidden) {
  auto parameters = kSequences;
  parameters["AutoReconnect"] = "off";
  ASSession& session = Ready(parameters);
  client.FailQuery(GetParam(), "lost").Matching(kUpdate);
  Hand("42");
  EXPECT_EQ(NextOf(session), 42);
}

INSTANTIATE_TEST_SUITE_P(Numbers, SequenceLost, testing::Values(2006U, 2013U, 2014U));

TEST_F(Sequence, LostInTheSelectAgainAndAgainIsCountedAnewEachTime) {
  ASSession& session = Ready(kSequences);
  client.FailQuery(2013, "lost").Matching(kSelect);
  Hand("0");
  client.FailQuery(2006, "gone").Matching(kSelect).After(2);
  Hand("0");
  client.FailQuery(2013, "lost").Matching(kSelect).After(4);
  Hand("0");
  Hand("45");
  EXPECT_EQ(NextOf(session), 45);
  EXPECT_GE(CallsOf("query UPDATE numbers SET Val=LAST_INSERT_ID(Val+1)"), 4);
}

TEST_F(Sequence, LostInTheRepeatedSelectIsReopenedAgain) {
  ASSession& session = Ready(kSequences);
  client.FailQuery(2013, "lost").Matching(kSelect).Times(3);
  Hand("0");
  Hand("43");
  EXPECT_EQ(NextOf(session), 43);
}

TEST_F(Sequence, LostInTheUpdateAndInTheSelectIsCountedAnew) {
  ASSession& session = Ready(kSequences);
  client.FailQuery(2006, "gone").Matching(kUpdate);
  client.FailQuery(2013, "lost").Matching(kSelect);
  Hand("0");
  Hand("44");
  EXPECT_EQ(NextOf(session), 44);
}

TEST_F(Sequence, LostInTheSelectAndThenNoRowChangedGivesZero) {
  ASSession& session = Ready(kSequences);
  client.FailQuery(2013, "lost").Matching(kSelect);
  Hand("0");
  client.AnswerQuery().Matching(kUpdate).AffectedRows(1);
  client.AnswerQuery().Matching(kUpdate).AffectedRows(0);
  EXPECT_EQ(NextOf(session), 0);
}

TEST_F(Sequence, LostInTheSelectAndThenRefusedThrows) {
  ASSession& session = Ready(kSequences);
  client.FailQuery(2013, "lost").Matching(kSelect);
  Hand("0");
  client.FailQuery(1146, "no table").Matching(kUpdate).After(1);
  EXPECT_EQ(ThrownBy([&] { NextOf(session); }),
            (Thrown{0, "DB Error 1146 (no table) in query\n\b\nUPDATE numbers SET Val=LAST_INSERT_ID(Val+1)"}));
}

TEST_F(Sequence, LostInTheSelectTenThousandTimesDoesNotGrowTheStack) {
  ASSession& session = Ready(kSequences);
  client.FailQuery(2013, "lost").Matching(kSelect).Times(10000);
  Hand("0");
  Hand("42");
  int number = 0;
  RunOnSmallStack([&] { number = NextOf(session); });
  EXPECT_EQ(number, 42);
  EXPECT_EQ(client.OpenHandles(), 2U);
}

TEST_F(Sequence, LostLeavesTheMainConnectionAlone) {
  ASSession& session = Ready(kSequences);
  client.FailQuery(2013, "lost").Matching(kUpdate);
  Hand("42");
  NextOf(session);
  client.ForgetCalls();
  session.Execute("UPDATE t");
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("1 query UPDATE t"));
}

TEST_F(Sequence, LostAndNotReopenedThrows) {
  ASSession& session = Ready(kSequences);
  client.FailQuery(2013, "lost").Matching(kUpdate);
  client.FailConnect(2002, "no server");
  EXPECT_EQ(ThrownBy([&] { NextOf(session); }),
            (Thrown{0, "mysql_real_connect failed for sequence\n Error 2002 (no server)\n"}));
}

TEST_F(Sequence, LostInTheSelectAndNotReopenedThrows) {
  ASSession& session = Ready(kSequences);
  client.FailQuery(2013, "lost").Matching(kSelect);
  client.FailConnect(2002, "no server");
  EXPECT_EQ(ThrownBy([&] { NextOf(session); }),
            (Thrown{0, "mysql_real_connect failed for sequence\n Error 2002 (no server)\n"}));
}

TEST_F(Sequence, LostAndWithoutANewHandleThrows) {
  ASSession& session = Ready(kSequences);
  client.FailQuery(2013, "lost").Matching(kSelect);
  client.FailInit();
  EXPECT_EQ(ThrownBy([&] { NextOf(session); }), (Thrown{0, "mysql_init failed for sequence. "}));
}

TEST_F(Sequence, ThatCouldNotBeConnectedAtFirstIsConnectedByTheFirstNumber) {
  client.FailConnect(2002, "no server").After(1);
  ASSession& session = Ready(kSequences);
  Hand("42");
  EXPECT_EQ(NextOf(session), 42);
  EXPECT_EQ(CallsOf("connect s u p d 0"), 1);
}

// The process ends.

using SequenceDeathTest = ScriptedSessionDeathTest;

TEST_F(SequenceDeathTest, LostAndNotReopenedWithTheExitFlagEndsTheProcess) {
  ASSession& session = Ready(kSequences, 1, true);
  client.SetAffectedRows(1);
  client.FailQuery(2013, "lost").Matching(kSelect);
  client.FailConnect(2002, "no server");
  EXPECT_EXIT(ASSequence(&session, "numbers").getNext(), ExitedWithCode(1),
              Logged("SESSION ADDR EXECUTE Failed\n Error 2013 (lost) in query\nSELECT LAST_INSERT_ID()\n"
                     "DB fatal error 2013 (lost) in query\n\b\nSELECT LAST_INSERT_ID()\n"
                     "Trying to reconnect...\n"
                     "mysql_real_connect failed for sequence\n Error 2002 (no server)\n"));
}

// Log lines at every debug level.

class SequenceAtLevel : public ScriptedSessionAtLevel {
 protected:
  // What one number logs; affected rows are 1.
  std::string LogOfNext(ASSession& session) {
    client.SetAffectedRows(1);
    return LogOf([&] { ASSequence(&session, "numbers").getNext(); });
  }
};

class SequenceLog : public SequenceAtLevel {};

TEST_P(SequenceLog, ShowsBothStatements) {
  ASSession& session = Ready(kSequences, Level());
  client.AnswerQuery(1, {{"42"}}).Matching(kSelect);
  EXPECT_EQ(LogOfNext(session), Log());
}

constexpr char const* kBothStatements =
    "SESSION ADDR EXECUTE UPDATE numbers SET Val=LAST_INSERT_ID(Val+1)\n\n"
    "SESSION ADDR EXECUTE SELECT LAST_INSERT_ID()\n\n";

INSTANTIATE_TEST_SUITE_P(Levels, SequenceLog, testing::ValuesIn(ByLevel("", "", kBothStatements, kBothStatements)),
                         LevelName);

class SequenceWithoutSequencesLog : public SequenceAtLevel {};

TEST_P(SequenceWithoutSequencesLog, IsEmpty) {
  ASSession& session = Ready({}, Level());
  EXPECT_EQ(LogOfNext(session), Log());
}

INSTANTIATE_TEST_SUITE_P(Levels, SequenceWithoutSequencesLog, testing::ValuesIn(ByLevel("", "", "", "")), LevelName);

class SequenceRefusedLog : public SequenceAtLevel {};

TEST_P(SequenceRefusedLog, ShowsTheFailure) {
  ASSession& session = Ready(kSequences, Level());
  client.FailQuery(1146, "no table");
  EXPECT_EQ(LogOfNext(session), Log());
}

INSTANTIATE_TEST_SUITE_P(Levels, SequenceRefusedLog,
                         testing::ValuesIn(ByLevel("",
                                                   "SESSION ADDR EXECUTE Failed\n"
                                                   " Error 1146 (no table) in query\n"
                                                   "UPDATE numbers SET Val=LAST_INSERT_ID(Val+1)\n",
                                                   "SESSION ADDR EXECUTE UPDATE numbers SET Val=LAST_INSERT_ID(Val+1)\n"
                                                   "\n"
                                                   "SESSION ADDR EXECUTE Failed\n"
                                                   " Error 1146 (no table) in query\n"
                                                   "UPDATE numbers SET Val=LAST_INSERT_ID(Val+1)\n",
                                                   "SESSION ADDR EXECUTE UPDATE numbers SET Val=LAST_INSERT_ID(Val+1)\n"
                                                   "\n"
                                                   "SESSION ADDR EXECUTE Failed\n"
                                                   " Error 1146 (no table) in query\n"
                                                   "UPDATE numbers SET Val=LAST_INSERT_ID(Val+1)\n")),
                         LevelName);

class SequenceReopenedLog : public SequenceAtLevel {};

TEST_P(SequenceReopenedLog, ShowsTheLossAndTheRepetition) {
  ASSession& session = Ready(kSequences, Level());
  client.FailQuery(2006, "gone").Matching(kUpdate);
  client.AnswerQuery(1, {{"42"}}).Matching(kSelect);
  EXPECT_EQ(LogOfNext(session), Log());
}

constexpr char const* kLossAndRepetition =
    "SESSION ADDR EXECUTE UPDATE numbers SET Val=LAST_INSERT_ID(Val+1)\n\n"
    "SESSION ADDR EXECUTE Failed\n"
    " Error 2006 (gone) in query\n"
    "UPDATE numbers SET Val=LAST_INSERT_ID(Val+1)\n"
    "DB fatal error 2006 (gone) in query\n\b\nUPDATE numbers SET Val=LAST_INSERT_ID(Val+1)\n"
    "Trying to reconnect...\n"
    "SESSION ADDR EXECUTE UPDATE numbers SET Val=LAST_INSERT_ID(Val+1)\n\n"
    "SESSION ADDR EXECUTE SELECT LAST_INSERT_ID()\n\n";

INSTANTIATE_TEST_SUITE_P(
    Levels, SequenceReopenedLog,
    testing::ValuesIn(ByLevel("",
                              "SESSION ADDR EXECUTE Failed\n"
                              " Error 2006 (gone) in query\n"
                              "UPDATE numbers SET Val=LAST_INSERT_ID(Val+1)\n"
                              "DB fatal error 2006 (gone) in query\n\b\nUPDATE numbers SET Val=LAST_INSERT_ID(Val+1)\n"
                              "Trying to reconnect...\n",
                              kLossAndRepetition, kLossAndRepetition)),
    LevelName);

}  // namespace
}  // namespace corvane::test
