// Opening the connections of a session: calls, parameters, failures and log lines.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/support/scripted_session.h"

namespace corvane::test {
namespace {

using testing::ElementsAre;
using testing::ExitedWithCode;

using Connect = ScriptedSession;

TEST_F(Connect, OpensTheMainConnectionAndThenSwitchesAutocommitOff) {
  Construct({});
  EXPECT_THAT(client.Calls(), ElementsAre("init", "connect '' '' '' '' 0", "query SET AUTOCOMMIT=0"));
}

TEST_F(Connect, PassesItsParametersToTheMainConnection) {
  Construct({{"Host", "h"}, {"Port", "3307"}, {"UserName", "u"}, {"Password", "p"}, {"Database", "d"}});
  EXPECT_THAT(client.Calls(), ElementsAre("init", "connect h u p d 3307", "query SET AUTOCOMMIT=0"));
}

TEST_F(Connect, OpensTheSequenceConnectionLast) {
  Construct({{"Host", "h"},
             {"SequenceHost", "s"},
             {"UserName", "u"},
             {"Password", "p"},
             {"Database", "d"},
             {"EmulateSequences", "yes"}});
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("1 init", "1 connect h u p d 0", "1 query SET AUTOCOMMIT=0", "2 init",
                                                  "2 connect s u p d 0"));
}

TEST_F(Connect, SequenceConnectionAlwaysUsesPortZero) {
  Construct({{"Port", "3307"}, {"EmulateSequences", "yes"}});
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("1 init", "1 connect '' '' '' '' 3307", "1 query SET AUTOCOMMIT=0",
                                                  "2 init", "2 connect '' '' '' '' 0"));
}

TEST_F(Connect, SequenceConnectionDoesNotFallBackToTheMainHost) {
  Construct({{"Host", "h"}, {"EmulateSequences", "yes"}});
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("1 init", "1 connect h '' '' '' 0", "1 query SET AUTOCOMMIT=0",
                                                  "2 init", "2 connect '' '' '' '' 0"));
}

TEST_F(Connect, OpensASequenceConnectionWhenNothingIsSaidAboutIt) {
  ASSession const session(std::map<std::string, std::string>{}, 0, false);
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("1 init", "1 connect '' '' '' '' 0", "1 query SET AUTOCOMMIT=0",
                                                  "2 init", "2 connect '' '' '' '' 0"));
}

TEST_F(Connect, LooksParametersUpByTheCaseOfTheirLetters) {
  Construct({{"host", "h"}, {"PORT", "1"}, {"Username", "u"}, {"password", "p"}, {"DATABASE", "d"}});
  EXPECT_THAT(client.Calls(), ElementsAre("init", "connect '' '' '' '' 0", "query SET AUTOCOMMIT=0"));
}

TEST_F(Connect, KeepsItsOwnCopyOfTheParameters) {
  std::map<std::string, std::string> parameters{{"Host", "h"}, {"EmulateSequences", "no"}};
  ASSession session(parameters, 0, false);
  parameters["Host"] = "elsewhere";
  client.ForgetCalls();
  session.Connect(false);
  EXPECT_THAT(client.Calls(), ElementsAre("close", "init", "connect h '' '' '' 0", "query SET AUTOCOMMIT=0"));
}

TEST_F(Connect, LeavesTheCallersParametersAlone) {
  std::map<std::string, std::string> const parameters{{"EmulateSequences", "no"}};
  ASSession const session(parameters, 0, false);
  EXPECT_THAT(parameters, ElementsAre(testing::Pair("EmulateSequences", "no")));
}

TEST_F(Connect, ForbidsTheClientLibraryToReconnectTheMainConnectionByItself) {
  Construct({});
  EXPECT_FALSE(client.AnyHandleReconnectsByItself());
}

TEST_F(Connect, AgainClosesTheSequenceAndThenTheMainConnectionBeforeItOpensBothAnew) {
  ASSession& session = Ready({{"EmulateSequences", "yes"}});
  session.Connect(false);
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("2 close", "1 close", "3 init", "3 connect '' '' '' '' 0",
                                                  "3 query SET AUTOCOMMIT=0", "4 init", "4 connect '' '' '' '' 0"));
}

TEST_F(Connect, AgainKeepsReadOnlyMode) {
  ASSession& session = Ready();
  session.PushReadOnly();
  session.Connect(false);
  EXPECT_EQ(session.IsReadOnly(), 1);
  session.PopReadOnly();
  EXPECT_EQ(session.IsReadOnly(), 0);
}

TEST_F(Connect, QuotesIdentifiersWithBackticks) {
  ASSession const& session = Construct({});
  EXPECT_EQ(session.getKWPrefix(), "`");
  EXPECT_EQ(session.getKWSuffix(), "`");
}

TEST_F(Connect, TellsTheDebugLevelGiven) {
  EXPECT_EQ(Construct({}, 1).DebugLevel(), 1);
  EXPECT_EQ(Construct({}, -7).DebugLevel(), -7);
}

TEST_F(Connect, LogsNothingAtANegativeLevel) {
  client.FailConnect(1045, "denied");
  EXPECT_EQ(LogOf([&] { Construct({}, -1); }), "");
}

// Port texts, as atoi reads them.
struct PortText {
  char const* text;
  char const* call;
};

class ConnectPort : public ScriptedSession, public testing::WithParamInterface<PortText> {};

TEST_P(ConnectPort, IsReadAsALeadingNumber) {
  Construct({{"Port", GetParam().text}});
  EXPECT_EQ(client.Calls()[1], GetParam().call);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, ConnectPort,
    testing::Values(PortText{"3306", "connect '' '' '' '' 3306"}, PortText{"", "connect '' '' '' '' 0"},
                    PortText{"0", "connect '' '' '' '' 0"}, PortText{"mysql", "connect '' '' '' '' 0"},
                    PortText{" \t3306", "connect '' '' '' '' 3306"}, PortText{"+3306", "connect '' '' '' '' 3306"},
                    PortText{"003306", "connect '' '' '' '' 3306"}, PortText{"3306/4000", "connect '' '' '' '' 3306"},
                    PortText{"3306.9", "connect '' '' '' '' 3306"}, PortText{"0x10", "connect '' '' '' '' 0"}));

// The three words that are read without regard to the case of their letters.
class ConnectAutoCommitOn : public ScriptedSession, public testing::WithParamInterface<char const*> {};

TEST_P(ConnectAutoCommitOn, SwitchesAutocommitOn) {
  Construct({{"AutoCommit", GetParam()}});
  EXPECT_EQ(client.Calls().back(), "query SET AUTOCOMMIT=1");
}

INSTANTIATE_TEST_SUITE_P(Words, ConnectAutoCommitOn, testing::Values("on", "ON", "On", "oN"));

class ConnectAutoCommitOff : public ScriptedSession, public testing::WithParamInterface<char const*> {};

TEST_P(ConnectAutoCommitOff, SwitchesAutocommitOff) {
  Construct({{"AutoCommit", GetParam()}});
  EXPECT_EQ(client.Calls().back(), "query SET AUTOCOMMIT=0");
}

INSTANTIATE_TEST_SUITE_P(Words, ConnectAutoCommitOff,
                         testing::Values("", "off", "1", "yes", "true", "on ", " on", "o", "onn"));

class ConnectWithoutSequences : public ScriptedSession, public testing::WithParamInterface<char const*> {};

TEST_P(ConnectWithoutSequences, OpensOneConnection) {
  Construct({{"EmulateSequences", GetParam()}});
  EXPECT_EQ(client.OpenHandles(), 1U);
}

INSTANTIATE_TEST_SUITE_P(Words, ConnectWithoutSequences, testing::Values("no", "NO", "No", "nO"));

class ConnectWithSequences : public ScriptedSession, public testing::WithParamInterface<char const*> {};

TEST_P(ConnectWithSequences, OpensTwoConnections) {
  Construct({{"EmulateSequences", GetParam()}});
  EXPECT_EQ(client.OpenHandles(), 2U);
}

INSTANTIATE_TEST_SUITE_P(Words, ConnectWithSequences,
                         testing::Values("", "yes", "off", "0", "n", "no ", " no", "none"));

// Failures.

TEST_F(Connect, RefusedPausesForASecondAndReportsNumberAndText) {
  client.FailConnect(1045, "Access denied for user 'u'");
  EXPECT_EQ(ThrownBy([&] { Construct({}); }),
            (Thrown{0, "mysql_real_connect failed\n Error 1045 (Access denied for user 'u')\n"}));
  EXPECT_THAT(client.Calls(), ElementsAre("init", "connect '' '' '' '' 0", "sleep 1", "close"));
  EXPECT_EQ(client.OpenHandles(), 0U);
}

TEST_F(Connect, RefusedReportsTheServersTextAsItStands) {
  client.FailConnect(4000000000U, "100%s %n \x01 \xC3\xA9");
  EXPECT_EQ(ThrownBy([&] { Construct({}); }),
            (Thrown{0, "mysql_real_connect failed\n Error 4000000000 (100%s %n \x01 \xC3\xA9)\n"}));
}

TEST_F(Connect, WithoutAHandleIsRefusedWithNumberZero) {
  client.FailInit();
  EXPECT_EQ(ThrownBy([&] { Construct({}); }), (Thrown{0, "mysql_real_connect failed\n Error 0 ()\n"}));
  EXPECT_THAT(client.Calls(), ElementsAre("init", "sleep 1"));
  EXPECT_EQ(client.OpenHandles(), 0U);
}

TEST_F(Connect, RefusedModeStatementLeavesNoHandleBehind) {
  client.FailQuery(1227, "no right").Matching("SET AUTOCOMMIT");
  EXPECT_EQ(ThrownBy([&] {
              Construct({{"AutoCommit", "on"}});
            }),
            (Thrown{102, "DB Error 1227 (no right) in query\n\b\nSET AUTOCOMMIT=1"}));
  EXPECT_THAT(client.CallsByHandle(),
              ElementsAre("1 init", "1 connect '' '' '' '' 0", "1 query SET AUTOCOMMIT=1", "1 close"));
  EXPECT_EQ(client.OpenHandles(), 0U);
}

// With the server's own mode, on, each statement of a transaction would be committed at once.
TEST_F(Connect, RefusedModeStatementLeavesNoConnectionInAnotherMode) {
  ASSession& session = Ready();
  client.FailQuery(1317, "interrupted").Matching("SET AUTOCOMMIT");
  EXPECT_EQ(ThrownBy([&] { session.Connect(false); }),
            (Thrown{102, "DB Error 1317 (interrupted) in query\n\b\nSET AUTOCOMMIT=0"}));
  EXPECT_EQ(client.OpenHandles(), 0U);
  client.ForgetCalls();
  EXPECT_EQ(ThrownBy([&] { session.Execute("INSERT x"); }), (Thrown{102, "DB Error 0 () in query\n\b\nINSERT x"}));
  session.Execute("INSERT x");
  EXPECT_THAT(client.CallsByHandle(),
              ElementsAre("3 init", "3 connect '' '' '' '' 0", "3 query SET AUTOCOMMIT=0", "3 query INSERT x"));
}

TEST_F(Connect, ForbiddenReconnectionLeavesNoHandleBehind) {
  client.FailQuery(2013, "lost").Matching("SET AUTOCOMMIT");
  EXPECT_EQ(ThrownBy([&] { Construct({{"AutoReconnect", "off"}}); }), (Thrown{103, "Database connection lost"}));
  EXPECT_EQ(client.OpenHandles(), 0U);
}

TEST_F(Connect, SequenceRefusedIsNoFailure) {
  client.FailConnect(2002, "no server").After(1);
  EXPECT_EQ(ThrownBy([&] { Construct({{"EmulateSequences", "yes"}}); }), (Thrown{-1, "nothing was thrown"}));
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("1 init", "1 connect '' '' '' '' 0", "1 query SET AUTOCOMMIT=0",
                                                  "2 init", "2 connect '' '' '' '' 0"));
  EXPECT_EQ(client.OpenHandles(), 2U);
}

TEST_F(Connect, SequenceRefusedIsNoFailureWithTheExitFlagEither) {
  client.FailConnect(2002, "no server").After(1);
  EXPECT_EQ(ThrownBy([&] { Construct({{"EmulateSequences", "yes"}}, 0, true); }), (Thrown{-1, "nothing was thrown"}));
}

TEST_F(Connect, SequenceWithoutAHandleIsNoFailure) {
  client.FailInit().After(1);
  EXPECT_EQ(ThrownBy([&] { Construct({{"EmulateSequences", "yes"}}); }), (Thrown{-1, "nothing was thrown"}));
  EXPECT_EQ(client.OpenHandles(), 1U);
}

TEST_F(Connect, SequenceNoticeIsWrittenEvenAfterAFailure) {
  client.FailConnect(2002, "no server").After(1);
  EXPECT_EQ(LogOf([&] {
              Construct({{"EmulateSequences", ""}}, 5);
            }),
            "SESSION ADDR CONNECTION PARAMETERS:\n"
            "  EmulateSequences=\n"
            "\n"
            "SESSION ADDR EXECUTE SET AUTOCOMMIT=0\n"
            "\n"
            "EXECUTE COMPLETE\n"
            "autocommit mode swithced OFF\n"
            "mysql_real_connect failed for sequence\n"
            " Error 2002 (no server)\n"
            "Sequence connection established\n");
}

TEST_F(Connect, FailedAgainLeavesTheSessionUnconnectedButUsable) {
  ASSession& session = Ready({{"AutoCommit", "on"}});
  client.FailConnect(2002, "no server");
  EXPECT_EQ(ThrownBy([&] { session.Connect(false); }),
            (Thrown{0, "mysql_real_connect failed\n Error 2002 (no server)\n"}));
  EXPECT_EQ(ThrownBy([&] { session.Connect(false); }), (Thrown{-1, "nothing was thrown"}));
  EXPECT_THAT(client.CallsByHandle(),
              ElementsAre("1 close", "2 init", "2 connect '' '' '' '' 0", "- sleep 1", "2 close", "3 init",
                          "3 connect '' '' '' '' 0", "3 query SET AUTOCOMMIT=1"));
}

// The mode statement may lose the new connection again: connections are then opened within the opening of others.

TEST_F(Connect, LostWhileSettingAutocommitOnOpensAnotherAndCompletesBoth) {
  client.FailQuery(2013, "lost").Matching("SET AUTOCOMMIT");
  Construct({{"AutoCommit", "on"}, {"EmulateSequences", "yes"}});
  EXPECT_THAT(client.CallsByHandle(),
              ElementsAre("1 init", "1 connect '' '' '' '' 0", "1 query SET AUTOCOMMIT=1",               // lost
                          "1 close", "2 init", "2 connect '' '' '' '' 0", "2 query SET AUTOCOMMIT=1",    // inner
                          "3 init", "3 connect '' '' '' '' 0",                                           //
                          "2 query SET AUTOCOMMIT=1", "3 close", "4 init", "4 connect '' '' '' '' 0"));  // outer
  EXPECT_EQ(client.OpenHandles(), 2U);
}

TEST_F(Connect, LostThreeLevelsDeepCompletesFromTheInnermostOutwards) {
  client.FailQuery(2006, "gone").Matching("SET AUTOCOMMIT");
  client.FailQuery(2013, "lost").Matching("SET AUTOCOMMIT");
  client.FailQuery(0, "").Matching("SET AUTOCOMMIT");
  Construct({{"AutoCommit", "on"}, {"EmulateSequences", "yes"}});
  EXPECT_THAT(client.CallsByHandle(),
              ElementsAre("1 init", "1 connect '' '' '' '' 0", "1 query SET AUTOCOMMIT=1",             // first, lost
                          "1 close", "2 init", "2 connect '' '' '' '' 0", "2 query SET AUTOCOMMIT=1",  // second, lost
                          "2 close", "3 init", "3 connect '' '' '' '' 0", "3 query SET AUTOCOMMIT=1",  // third, lost
                          "3 close", "4 init", "4 connect '' '' '' '' 0", "4 query SET AUTOCOMMIT=1",  // fourth
                          "5 init", "5 connect '' '' '' '' 0",                                         //
                          "4 query SET AUTOCOMMIT=1", "5 close", "6 init", "6 connect '' '' '' '' 0",  // third
                          "4 query SET AUTOCOMMIT=1", "6 close", "7 init", "7 connect '' '' '' '' 0",  // second
                          "4 query SET AUTOCOMMIT=1", "7 close", "8 init", "8 connect '' '' '' '' 0"));
  EXPECT_EQ(client.OpenHandles(), 2U);
}

TEST_F(Connect, LostOnceMoreWhileCompletingTheOuterOpensAnotherAgain) {
  client.FailQuery(2013, "lost").Matching("SET AUTOCOMMIT");
  client.FailQuery(2013, "lost").Matching("SET AUTOCOMMIT").After(2);
  Construct({{"AutoCommit", "on"}});
  EXPECT_THAT(client.CallsByHandle(),
              ElementsAre("1 init", "1 connect '' '' '' '' 0", "1 query SET AUTOCOMMIT=1",             // outer, lost
                          "1 close", "2 init", "2 connect '' '' '' '' 0", "2 query SET AUTOCOMMIT=1",  // inner
                          "2 query SET AUTOCOMMIT=1",                                                  // outer, lost
                          "2 close", "3 init", "3 connect '' '' '' '' 0", "3 query SET AUTOCOMMIT=1",  // inner
                          "3 query SET AUTOCOMMIT=1"));                                                // outer
}

TEST_F(Connect, LostWhileSettingAutocommitOffOpensAnotherAndFails) {
  client.FailQuery(2013, "lost").Matching("SET AUTOCOMMIT");
  EXPECT_EQ(ThrownBy([&] {
              Construct({{"EmulateSequences", "yes"}});
            }),
            (Thrown{102, "DB Error 0 () in query\n\b\nSET AUTOCOMMIT=0"}));
  EXPECT_THAT(client.CallsByHandle(),
              ElementsAre("1 init", "1 connect '' '' '' '' 0", "1 query SET AUTOCOMMIT=0",             // lost
                          "1 close", "2 init", "2 connect '' '' '' '' 0", "2 query SET AUTOCOMMIT=0",  //
                          "3 init", "3 connect '' '' '' '' 0", "3 close", "2 close"));
  EXPECT_EQ(client.OpenHandles(), 0U);
}

TEST_F(Connect, LostSeveralLevelsDeepWithAutocommitOffFailsOnceTheInnermostIsOpen) {
  client.FailQuery(2013, "lost").Matching("SET AUTOCOMMIT").Times(2);
  EXPECT_EQ(ThrownBy([&] { Construct({}); }), (Thrown{102, "DB Error 0 () in query\n\b\nSET AUTOCOMMIT=0"}));
  EXPECT_THAT(client.CallsByHandle(),
              ElementsAre("1 init", "1 connect '' '' '' '' 0", "1 query SET AUTOCOMMIT=0",             // lost
                          "1 close", "2 init", "2 connect '' '' '' '' 0", "2 query SET AUTOCOMMIT=0",  // lost
                          "2 close", "3 init", "3 connect '' '' '' '' 0", "3 query SET AUTOCOMMIT=0", "3 close"));
}

TEST_F(Connect, RefusedWhileAnotherIsBeingOpenedReportsTheRefusal) {
  client.FailQuery(2013, "lost").Matching("SET AUTOCOMMIT");
  client.FailConnect(2002, "no server").After(1);
  EXPECT_EQ(ThrownBy([&] {
              Construct({{"AutoCommit", "on"}});
            }),
            (Thrown{0, "mysql_real_connect failed\n Error 2002 (no server)\n"}));
  EXPECT_THAT(client.CallsByHandle(),
              ElementsAre("1 init", "1 connect '' '' '' '' 0", "1 query SET AUTOCOMMIT=1", "1 close", "2 init",
                          "2 connect '' '' '' '' 0", "- sleep 1", "2 close"));
}

// The process ends.

using ConnectDeathTest = ScriptedSessionDeathTest;

TEST_F(ConnectDeathTest, RefusedWithTheExitFlagEndsTheProcess) {
  client.FailConnect(1045, "denied");
  EXPECT_EXIT(Construct({}, 1, true), ExitedWithCode(1), Logged("mysql_real_connect failed\n Error 1045 (denied)\n"));
}

TEST_F(ConnectDeathTest, WithoutAHandleAndWithTheExitFlagEndsTheProcess) {
  client.FailInit();
  EXPECT_EXIT(Construct({}, 0, true), ExitedWithCode(1), Logged(""));
}

TEST_F(ConnectDeathTest, LostWhileSettingAutocommitWithTheExitFlagEndsTheProcess) {
  client.FailQuery(2013, "lost");
  EXPECT_EXIT(Construct({}, 0, true), ExitedWithCode(1), Logged(""));
}

TEST_F(ConnectDeathTest, ArgumentDecidesAboutARefusalNotTheFlagOfTheSession) {
  ASSession& session = Ready({}, 0, false);
  client.FailConnect(1045, "denied");
  EXPECT_EXIT(session.Connect(true), ExitedWithCode(1), Logged(""));
}

TEST_F(ConnectDeathTest, FlagOfTheSessionDecidesAboutALossNotTheArgument) {
  ASSession& session = Ready({}, 0, true);
  client.FailQuery(2013, "lost");
  EXPECT_EXIT(session.Connect(false), ExitedWithCode(1), Logged(""));
}

TEST_F(Connect, ArgumentWithoutExitThrowsWhateverTheFlagOfTheSession) {
  ASSession& session = Ready({}, 0, true);
  client.FailConnect(1045, "denied");
  EXPECT_EQ(ThrownBy([&] { session.Connect(false); }),
            (Thrown{0, "mysql_real_connect failed\n Error 1045 (denied)\n"}));
}

TEST_F(Connect, FlagOfTheSessionDecidesAboutARefusalWithinTheOpeningOfAnother) {
  ASSession& session = Ready({{"AutoCommit", "on"}}, 0, false);
  client.FailQuery(2013, "lost").Matching("SET AUTOCOMMIT");
  client.FailConnect(1045, "denied").After(1);
  EXPECT_EQ(ThrownBy([&] { session.Connect(true); }), (Thrown{0, "mysql_real_connect failed\n Error 1045 (denied)\n"}));
}

// Log lines at every debug level.

using ConnectLog = ScriptedSessionAtLevel;

TEST_P(ConnectLog, ShowsParametersModeAndSequenceConnection) {
  EXPECT_EQ(
      LogOf([&] {
        Construct({{"Host", "h"}, {"Password", "secret"}, {"AutoCommit", "oN"}, {"EmulateSequences", "yes"}}, Level());
      }),
      Log());
}

INSTANTIATE_TEST_SUITE_P(Levels, ConnectLog,
                         testing::ValuesIn(ByLevel("", "",
                                                   "SESSION ADDR CONNECTION PARAMETERS:\n"
                                                   "  AutoCommit=oN\n"
                                                   "  EmulateSequences=yes\n"
                                                   "  Host=h\n"
                                                   "  Password=secret\n"
                                                   "\n"
                                                   "SESSION ADDR EXECUTE SET AUTOCOMMIT=1\n"
                                                   "\n"
                                                   "EXECUTE COMPLETE\n",
                                                   "SESSION ADDR CONNECTION PARAMETERS:\n"
                                                   "  AutoCommit=oN\n"
                                                   "  EmulateSequences=yes\n"
                                                   "  Host=h\n"
                                                   "  Password=secret\n"
                                                   "\n"
                                                   "SESSION ADDR EXECUTE SET AUTOCOMMIT=1\n"
                                                   "\n"
                                                   "EXECUTE COMPLETE\n"
                                                   "autocommit mode swithced ON\n"
                                                   "Sequence connection established\n")),
                         LevelName);

using ConnectWithoutSequencesLog = ScriptedSessionAtLevel;

TEST_P(ConnectWithoutSequencesLog, SaysNothingOfThem) {
  EXPECT_EQ(LogOf([&] { Construct({{"EmulateSequences", "no"}}, Level()); }), Log());
}

INSTANTIATE_TEST_SUITE_P(Levels, ConnectWithoutSequencesLog,
                         testing::ValuesIn(ByLevel("", "",
                                                   "SESSION ADDR CONNECTION PARAMETERS:\n"
                                                   "  EmulateSequences=no\n"
                                                   "\n"
                                                   "SESSION ADDR EXECUTE SET AUTOCOMMIT=0\n"
                                                   "\n"
                                                   "EXECUTE COMPLETE\n",
                                                   "SESSION ADDR CONNECTION PARAMETERS:\n"
                                                   "  EmulateSequences=no\n"
                                                   "\n"
                                                   "SESSION ADDR EXECUTE SET AUTOCOMMIT=0\n"
                                                   "\n"
                                                   "EXECUTE COMPLETE\n"
                                                   "autocommit mode swithced OFF\n")),
                         LevelName);

using ConnectAgainLog = ScriptedSessionAtLevel;

TEST_P(ConnectAgainLog, ShowsTheParametersThatWereLookedUpInVain) {
  ASSession& session = Ready({{"EmulateSequences", ""}}, Level());
  EXPECT_EQ(LogOf([&] { session.Connect(false); }), Log());
}

INSTANTIATE_TEST_SUITE_P(Levels, ConnectAgainLog,
                         testing::ValuesIn(ByLevel("", "",
                                                   "SESSION ADDR CONNECTION PARAMETERS:\n"
                                                   "  AutoCommit=\n"
                                                   "  ControlPort=\n"
                                                   "  Database=\n"
                                                   "  EmulateSequences=\n"
                                                   "  Host=\n"
                                                   "  Password=\n"
                                                   "  Port=\n"
                                                   "  SequenceHost=\n"
                                                   "  UserName=\n"
                                                   "\n"
                                                   "SESSION ADDR EXECUTE SET AUTOCOMMIT=0\n"
                                                   "\n"
                                                   "EXECUTE COMPLETE\n",
                                                   "SESSION ADDR CONNECTION PARAMETERS:\n"
                                                   "  AutoCommit=\n"
                                                   "  ControlPort=\n"
                                                   "  Database=\n"
                                                   "  EmulateSequences=\n"
                                                   "  Host=\n"
                                                   "  Password=\n"
                                                   "  Port=\n"
                                                   "  SequenceHost=\n"
                                                   "  UserName=\n"
                                                   "\n"
                                                   "SESSION ADDR EXECUTE SET AUTOCOMMIT=0\n"
                                                   "\n"
                                                   "EXECUTE COMPLETE\n"
                                                   "autocommit mode swithced OFF\n"
                                                   "Sequence connection established\n")),
                         LevelName);

using ConnectRefusedLog = ScriptedSessionAtLevel;

TEST_P(ConnectRefusedLog, ShowsNumberAndText) {
  client.FailConnect(1045, "denied");
  EXPECT_EQ(LogOf([&] { Construct({}, Level()); }), Log());
}

INSTANTIATE_TEST_SUITE_P(Levels, ConnectRefusedLog,
                         testing::ValuesIn(ByLevel("", "mysql_real_connect failed\n Error 1045 (denied)\n",
                                                   "SESSION ADDR CONNECTION PARAMETERS:\n"
                                                   "  EmulateSequences=no\n"
                                                   "\n"
                                                   "mysql_real_connect failed\n Error 1045 (denied)\n",
                                                   "SESSION ADDR CONNECTION PARAMETERS:\n"
                                                   "  EmulateSequences=no\n"
                                                   "\n"
                                                   "mysql_real_connect failed\n Error 1045 (denied)\n")),
                         LevelName);

using ConnectWithoutAHandleLog = ScriptedSessionAtLevel;

TEST_P(ConnectWithoutAHandleLog, ShowsThatAndTheRefusal) {
  client.FailInit();
  EXPECT_EQ(LogOf([&] { Construct({}, Level()); }), Log());
}

INSTANTIATE_TEST_SUITE_P(Levels, ConnectWithoutAHandleLog,
                         testing::ValuesIn(ByLevel("",
                                                   "SESSION ADDR mysql_init failed\n"
                                                   "mysql_real_connect failed\n Error 0 ()\n",
                                                   "SESSION ADDR CONNECTION PARAMETERS:\n"
                                                   "  EmulateSequences=no\n"
                                                   "\n"
                                                   "SESSION ADDR mysql_init failed\n"
                                                   "mysql_real_connect failed\n Error 0 ()\n",
                                                   "SESSION ADDR CONNECTION PARAMETERS:\n"
                                                   "  EmulateSequences=no\n"
                                                   "\n"
                                                   "SESSION ADDR mysql_init failed\n"
                                                   "mysql_real_connect failed\n Error 0 ()\n")),
                         LevelName);

using ConnectSequenceRefusedLog = ScriptedSessionAtLevel;

TEST_P(ConnectSequenceRefusedLog, ShowsNumberAndText) {
  client.FailConnect(2002, "no server").After(1);
  EXPECT_EQ(LogOf([&] { Construct({{"EmulateSequences", ""}}, Level()); }), Log());
}

INSTANTIATE_TEST_SUITE_P(Levels, ConnectSequenceRefusedLog,
                         testing::ValuesIn(ByLevel("",
                                                   "mysql_real_connect failed for sequence\n Error 2002 (no server)\n",
                                                   "SESSION ADDR CONNECTION PARAMETERS:\n"
                                                   "  EmulateSequences=\n"
                                                   "\n"
                                                   "SESSION ADDR EXECUTE SET AUTOCOMMIT=0\n"
                                                   "\n"
                                                   "EXECUTE COMPLETE\n"
                                                   "mysql_real_connect failed for sequence\n Error 2002 (no server)\n",
                                                   "SESSION ADDR CONNECTION PARAMETERS:\n"
                                                   "  EmulateSequences=\n"
                                                   "\n"
                                                   "SESSION ADDR EXECUTE SET AUTOCOMMIT=0\n"
                                                   "\n"
                                                   "EXECUTE COMPLETE\n"
                                                   "autocommit mode swithced OFF\n"
                                                   "mysql_real_connect failed for sequence\n Error 2002 (no server)\n"
                                                   "Sequence connection established\n")),
                         LevelName);

using ConnectSequenceWithoutAHandleLog = ScriptedSessionAtLevel;

TEST_P(ConnectSequenceWithoutAHandleLog, ShowsThatAndTheRefusal) {
  client.FailInit().After(1);
  EXPECT_EQ(LogOf([&] { Construct({{"EmulateSequences", ""}}, Level()); }), Log());
}

INSTANTIATE_TEST_SUITE_P(Levels, ConnectSequenceWithoutAHandleLog,
                         testing::ValuesIn(ByLevel("",
                                                   "SESSION ADDR mysql_init failed for sequence\n"
                                                   "mysql_real_connect failed for sequence\n Error 0 ()\n",
                                                   "SESSION ADDR CONNECTION PARAMETERS:\n"
                                                   "  EmulateSequences=\n"
                                                   "\n"
                                                   "SESSION ADDR EXECUTE SET AUTOCOMMIT=0\n"
                                                   "\n"
                                                   "EXECUTE COMPLETE\n"
                                                   "SESSION ADDR mysql_init failed for sequence\n"
                                                   "mysql_real_connect failed for sequence\n Error 0 ()\n",
                                                   "SESSION ADDR CONNECTION PARAMETERS:\n"
                                                   "  EmulateSequences=\n"
                                                   "\n"
                                                   "SESSION ADDR EXECUTE SET AUTOCOMMIT=0\n"
                                                   "\n"
                                                   "EXECUTE COMPLETE\n"
                                                   "autocommit mode swithced OFF\n"
                                                   "SESSION ADDR mysql_init failed for sequence\n"
                                                   "mysql_real_connect failed for sequence\n Error 0 ()\n"
                                                   "Sequence connection established\n")),
                         LevelName);

using ConnectLostLog = ScriptedSessionAtLevel;

TEST_P(ConnectLostLog, ShowsTheLinesOfBothOpenings) {
  client.FailQuery(2013, "lost").Matching("SET AUTOCOMMIT");
  EXPECT_EQ(LogOf([&] { Construct({{"AutoCommit", "on"}, {"AutoReconnect", ""}}, Level()); }), Log());
}

INSTANTIATE_TEST_SUITE_P(
    Levels, ConnectLostLog,
    testing::ValuesIn(ByLevel("",
                              "SESSION ADDR EXECUTE Failed\n Error 2013 (lost) in query\nSET AUTOCOMMIT=1\n"
                              "DB fatal error 2013 (lost) in query\n\b\nSET AUTOCOMMIT=1\n"
                              "Reconnecting.\n",
                              "SESSION ADDR CONNECTION PARAMETERS:\n"
                              "  AutoCommit=on\n"
                              "  AutoReconnect=\n"
                              "  EmulateSequences=no\n"
                              "\n"
                              "SESSION ADDR EXECUTE SET AUTOCOMMIT=1\n\n"
                              "SESSION ADDR EXECUTE Failed\n Error 2013 (lost) in query\nSET AUTOCOMMIT=1\n"
                              "DB fatal error 2013 (lost) in query\n\b\nSET AUTOCOMMIT=1\n"
                              "Reconnecting.\n"
                              "SESSION ADDR CONNECTION PARAMETERS:\n"
                              "  AutoCommit=on\n"
                              "  AutoReconnect=\n"
                              "  ControlPort=\n"
                              "  Database=\n"
                              "  EmulateSequences=no\n"
                              "  Host=\n"
                              "  Password=\n"
                              "  Port=\n"
                              "  UserName=\n"
                              "\n"
                              "SESSION ADDR EXECUTE SET AUTOCOMMIT=1\n\nEXECUTE COMPLETE\n"
                              "SESSION ADDR EXECUTE SET AUTOCOMMIT=1\n\nEXECUTE COMPLETE\n",
                              "SESSION ADDR CONNECTION PARAMETERS:\n"
                              "  AutoCommit=on\n"
                              "  AutoReconnect=\n"
                              "  EmulateSequences=no\n"
                              "\n"
                              "SESSION ADDR EXECUTE SET AUTOCOMMIT=1\n\n"
                              "SESSION ADDR EXECUTE Failed\n Error 2013 (lost) in query\nSET AUTOCOMMIT=1\n"
                              "DB fatal error 2013 (lost) in query\n\b\nSET AUTOCOMMIT=1\n"
                              "Reconnecting.\n"
                              "SESSION ADDR CONNECTION PARAMETERS:\n"
                              "  AutoCommit=on\n"
                              "  AutoReconnect=\n"
                              "  ControlPort=\n"
                              "  Database=\n"
                              "  EmulateSequences=no\n"
                              "  Host=\n"
                              "  Password=\n"
                              "  Port=\n"
                              "  UserName=\n"
                              "\n"
                              "SESSION ADDR EXECUTE SET AUTOCOMMIT=1\n\nEXECUTE COMPLETE\n"
                              "autocommit mode swithced ON\n"
                              "SESSION ADDR EXECUTE SET AUTOCOMMIT=1\n\nEXECUTE COMPLETE\n"
                              "autocommit mode swithced ON\n")),
    LevelName);

}  // namespace
}  // namespace corvane::test
