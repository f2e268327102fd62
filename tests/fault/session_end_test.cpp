// The end of a session, its connections being closed before that, and members that do nothing.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include "tests/support/scripted_session.h"

namespace corvane::test {
namespace {

using testing::ElementsAre;
using testing::StartsWith;

using SessionEnd = ScriptedSession;

TEST_F(SessionEnd, DestructorClosesNoDatabaseConnection) {
  Ready({{"EmulateSequences", "yes"}});
  Destroy();
  EXPECT_THAT(client.Calls(), ElementsAre());
  EXPECT_EQ(client.OpenHandles(), 2U);
}

TEST_F(SessionEnd, DestructorSendsNothingInReadOnlyModeEither) {
  ASSession& session = Ready();
  session.PushReadOnly();
  Destroy();
  EXPECT_THAT(client.Calls(), ElementsAre());
}

TEST_F(SessionEnd, IsPossibleAfterAReconnectionThatFailed) {
  ASSession& session = Ready();
  client.FailConnect(2002, "no server");
  ThrownBy([&] { session.Connect(false); });
  client.ForgetCalls();
  Destroy();
  EXPECT_THAT(client.Calls(), ElementsAre());
}

TEST_F(SessionEnd, IsPossibleWithoutAnyHandle) {
  ASSession& session = Ready();
  client.FailInit();
  ThrownBy([&] { session.Connect(false); });
  Destroy();
  EXPECT_EQ(client.OpenHandles(), 0U);
}

TEST_F(SessionEnd, EndsOneSessionAndLeavesOthersAlone) {
  std::map<std::string, std::string> const parameters{{"EmulateSequences", "no"}};
  ASSession other(parameters, 0, false);
  { ASSession const session(parameters, 0, false); }
  client.ForgetCalls();
  other.Execute("SELECT 1");
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("1 query SELECT 1"));
}

static_assert(!std::is_copy_constructible_v<ASSession> && !std::is_copy_assignable_v<ASSession>);
static_assert(!std::is_move_constructible_v<ASSession> && !std::is_move_assignable_v<ASSession>);
static_assert(!std::is_polymorphic_v<ASSession>);

using SessionEndLog = ScriptedSessionAtLevel;

TEST_P(SessionEndLog, ShowsTheDisconnection) {
  Ready({}, Level());
  EXPECT_EQ(LogOf([&] { Destroy(); }), Log());
}

INSTANTIATE_TEST_SUITE_P(Levels, SessionEndLog,
                         testing::ValuesIn(ByLevel("", "", "SESSION ADDR DISCONNECT\n\n",
                                                   "SESSION ADDR DISCONNECT\n\n")),
                         LevelName);

using SessionNotBegunLog = ScriptedSession;

TEST_F(SessionNotBegunLog, ShowsNoDisconnectionAfterAConstructorThatFailed) {
  client.FailConnect(1045, "denied");
  EXPECT_EQ(LogOf([&] { Construct({}, 2); }),
            "SESSION ADDR CONNECTION PARAMETERS:\n"
            "  EmulateSequences=no\n"
            "\n"
            "mysql_real_connect failed\n Error 1045 (denied)\n");
}

using Disconnect = ScriptedSession;

TEST_F(Disconnect, ClosesBothDatabaseConnectionsAtOnce) {
  ASSession& session = Ready({{"EmulateSequences", "yes"}});
  session.Disconnect();
  EXPECT_THAT(client.CallsByHandle(), testing::UnorderedElementsAre("1 close", "2 close"));
}

TEST_F(Disconnect, TwiceClosesOnce) {
  ASSession& session = Ready();
  session.Disconnect();
  session.Disconnect();
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("1 close"));
}

TEST_F(Disconnect, IsMetByTheNextStatementAsALostConnectionAndReopenedWithAutocommitOn) {
  ASSession& session = Ready({{"AutoCommit", "on"}});
  session.Disconnect();
  client.ForgetCalls();
  client.SetAffectedRows(1);
  EXPECT_EQ(session.Execute("UPDATE x"), 1U);
  EXPECT_THAT(client.CallsByHandle(),
              ElementsAre("2 init", "2 connect '' '' '' '' 0", "2 query SET AUTOCOMMIT=1", "2 query UPDATE x"));
}

TEST_F(Disconnect, IsMetByTheNextStatementAsALostTransactionWithAutocommitOff) {
  ASSession& session = Ready();
  session.Disconnect();
  client.ForgetCalls();
  EXPECT_EQ(ThrownBy([&] { session.Execute("UPDATE x"); }), (Thrown{102, "DB Error 0 () in query\n\b\nUPDATE x"}));
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("2 init", "2 connect '' '' '' '' 0", "2 query SET AUTOCOMMIT=0"));
}

TEST_F(Disconnect, LeavesNoSequenceConnection) {
  ASSession& session = Ready({{"EmulateSequences", "yes"}});
  session.Disconnect();
  EXPECT_EQ(ThrownBy([&] { session.ExecuteSeq("UPDATE s"); }), (Thrown{0, "Sequence connection is not established. "}));
}

TEST_F(Disconnect, IsUndoneByConnecting) {
  ASSession& session = Ready({{"EmulateSequences", "yes"}});
  session.Disconnect();
  client.ForgetCalls();
  session.Connect(false);
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("3 init", "3 connect '' '' '' '' 0", "3 query SET AUTOCOMMIT=0",
                                                  "4 init", "4 connect '' '' '' '' 0"));
}

TEST_F(Disconnect, LeavesNoInsertId) {
  ASSession& session = Ready();
  client.SetInsertId(42);
  session.Execute("INSERT x");
  session.Disconnect();
  EXPECT_EQ(session.GetInsertId(), 0);
}

TEST_F(Disconnect, KeepsTheAffectedRows) {
  ASSession& session = Ready();
  client.SetAffectedRows(5);
  session.Execute("UPDATE x");
  session.Disconnect();
  EXPECT_EQ(session.RowsAffected(), 5U);
}

TEST_F(Disconnect, LeavesNothingOpenForTheDestructor) {
  ASSession& session = Ready({{"EmulateSequences", "yes"}});
  session.Disconnect();
  Destroy();
  EXPECT_EQ(client.OpenHandles(), 0U);
}

using DisconnectLog = ScriptedSessionAtLevel;

TEST_P(DisconnectLog, ShowsTheDisconnection) {
  ASSession& session = Ready({}, Level());
  EXPECT_EQ(LogOf([&] { session.Disconnect(); }), Log());
}

INSTANTIATE_TEST_SUITE_P(Levels, DisconnectLog,
                         testing::ValuesIn(ByLevel("", "", "SESSION ADDR DISCONNECT\n\n",
                                                   "SESSION ADDR DISCONNECT\n\n")),
                         LevelName);

using Ping = ScriptedSession;

TEST_F(Ping, AsksTheMainConnectionOnce) {
  ASSession& session = Ready({{"EmulateSequences", "yes"}});
  EXPECT_TRUE(session.Ping());
  EXPECT_THAT(client.CallsByHandle(), ElementsAre(StartsWith("1 query ")));
}

TEST_F(Ping, TellsThatTheConnectionIsLostAndReopensNothing) {
  ASSession& session = Ready({{"AutoCommit", "on"}});
  client.FailQuery(2006, "gone");
  EXPECT_FALSE(session.Ping());
  EXPECT_THAT(client.CallsByHandle(), ElementsAre(StartsWith("1 query ")));
}

TEST_F(Ping, NeitherThrowsNorEndsTheProcessWithTheExitFlag) {
  ASSession& session = Ready({}, 0, true);
  client.FailQuery(2013, "lost");
  EXPECT_FALSE(session.Ping());
}

TEST_F(Ping, IsFalseWithoutAConnection) {
  ASSession& session = Ready();
  session.Disconnect();
  client.ForgetCalls();
  EXPECT_FALSE(session.Ping());
  EXPECT_THAT(client.Calls(), ElementsAre());
}

TEST_F(Ping, IsFalseAfterAReconnectionThatFailed) {
  ASSession& session = Ready();
  client.FailConnect(2002, "no server");
  ThrownBy([&] { session.Connect(false); });
  EXPECT_FALSE(session.Ping());
}

TEST_F(Ping, LeavesTheAffectedRowsAlone) {
  ASSession& session = Ready();
  client.SetAffectedRows(5);
  session.Execute("UPDATE x");
  client.SetAffectedRows(0);
  session.Ping();
  EXPECT_EQ(session.RowsAffected(), 5U);
}

TEST_F(Ping, LogsNothing) {
  ASSession& session = Ready({}, 5);
  client.FailQuery(2013, "lost").After(1);
  EXPECT_EQ(LogOf([&] { session.Ping(); }), "");
  EXPECT_EQ(LogOf([&] { session.Ping(); }), "");
}

using NoOps = ScriptedSession;

TEST_F(NoOps, CallNothing) {
  ASSession& session = Ready();
  session.Break();
  EXPECT_EQ(session.Error(), 0);
  EXPECT_EQ(session.Error(7), "");
  EXPECT_THAT(client.Calls(), ElementsAre());
}

TEST_F(NoOps, TellNothingAfterAFailureEither) {
  ASSession& session = Ready();
  client.FailQuery(1064, "syntax");
  ThrownBy([&] { session.Execute("x"); });
  EXPECT_EQ(session.Error(), 0);
  EXPECT_EQ(session.Error(1064), "");
}

using SessionThreads = ScriptedSession;

TEST_F(SessionThreads, OpenAndEndTheirSessionsAtTheSameMoment) {
  constexpr unsigned threadCount = 8;
  constexpr unsigned sessionsEach = 50;
  std::atomic<unsigned> ready{0};
  std::vector<std::thread> threads;
  for (unsigned i = 0; i < threadCount; ++i) {
    threads.emplace_back([&ready] {
      ++ready;
      while (ready < threadCount) std::this_thread::yield();
      for (unsigned j = 0; j < sessionsEach; ++j) {
        ASSession session("u:p@db/h:3306", 0, false);
        session.Execute("SELECT 1");
        session.ExecuteSeq("SELECT 2");
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(client.OpenHandles(), threadCount * sessionsEach * 2);
}

TEST_F(SessionThreads, FailToOpenTheirSessionsAtTheSameMoment) {
  constexpr unsigned threadCount = 8;
  constexpr unsigned sessionsEach = 50;
  client.FailConnect(1045, "denied").Times(threadCount * sessionsEach);
  std::atomic<unsigned> ready{0};
  std::atomic<unsigned> refused{0};
  std::vector<std::thread> threads;
  for (unsigned i = 0; i < threadCount; ++i) {
    threads.emplace_back([&ready, &refused] {
      ++ready;
      while (ready < threadCount) std::this_thread::yield();
      for (unsigned j = 0; j < sessionsEach; ++j) {
        auto const thrown = ThrownBy([] { ASSession const session("u:p@db/h:3306", 0, false); });
        if (thrown == Thrown{0, "mysql_real_connect failed\n Error 1045 (denied)\n"}) ++refused;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(refused, threadCount * sessionsEach);
  EXPECT_EQ(client.OpenHandles(), 0U);
}

}  // namespace
}  // namespace corvane::test
