// What a lost connection says of the statement that met it, how often it is opened again, and what is repeated.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

#include "corvane/session/sequence.h"
#include "tests/support/scripted_session.h"

namespace corvane::test {
namespace {

using testing::ElementsAre;

class LostStatement : public ScriptedSession {
 protected:
  /// The exception of an action that must throw one.
  template <class Action>
  AException ExceptionOf(Action action) {
    try {
      action();
    } catch (AException const& error) {
      return error;
    }
    ADD_FAILURE() << "nothing was thrown";
    return AException("");
  }
  AException ExceptionOf(ASSession& session, char const* statement) {
    return ExceptionOf([&] { session.Execute(statement); });
  }
  /// What is thrown when the connection is lost while the statement's result is fetched.
  AException LostInTheResultOf(ASSession& session, char const* statement) {
    client.AnswerQuery(1, {{"1"}}).AffectedRows(static_cast<std::uint64_t>(-1));
    client.FailStoreResult(2013, "lost");
    session.Execute(statement);
    return ExceptionOf([&] { session.FetchMultiple(); });
  }
  std::ptrdiff_t CountOf(std::string const& call) {
    auto const calls = client.Calls();
    return std::count(calls.begin(), calls.end(), call);
  }
};

TEST_F(LostStatement, ARefusalTellsTheServersError) {
  ASSession& session = Ready();
  client.FailQuery(1062, "Duplicate entry");
  AException const error = ExceptionOf(session, "INSERT INTO t VALUES (1)");
  EXPECT_EQ(error.Number(), kErrStatementRefused);
  EXPECT_EQ(error.ServerError(), 1062);
  EXPECT_STREQ(error.SqlState(), "23000");
  EXPECT_EQ(error.Kind(), ErrorKind::kDuplicateKey);
}

TEST_F(LostStatement, ATransactionThatDiedTellsWhyAndThatNothingWasChanged) {
  ASSession& session = Ready();
  client.FailQuery(2013, "Lost connection");
  AException const error = ExceptionOf(session, "INSERT INTO t VALUES (1)");
  EXPECT_STREQ(error.what(), "DB Error 0 () in query\n\b\nINSERT INTO t VALUES (1)");
  EXPECT_EQ(error.Number(), kErrStatementRefused);
  EXPECT_EQ(error.ServerError(), 2013);
  EXPECT_STREQ(error.SqlState(), "HY000");
  EXPECT_EQ(error.Kind(), ErrorKind::kConnectionLost);
}

TEST_F(LostStatement, NobodyKnowsTheOutcomeOfALostCommit) {
  ASSession& session = Ready();
  client.FailQuery(2013, "Lost connection");
  AException const error = ExceptionOf([&] { session.Commit(); });
  EXPECT_EQ(error.Number(), kErrStatementRefused);
  EXPECT_EQ(error.Kind(), ErrorKind::kOutcomeUnknown);
}

TEST_F(LostStatement, NorOfALostCommitThatIsNotReconnected) {
  ASSession& session = Ready({{"AutoReconnect", "off"}});
  client.FailQuery(2006, "gone");
  AException const error = ExceptionOf([&] { session.Commit(); });
  EXPECT_EQ(error.Number(), kErrConnectionLost);
  EXPECT_EQ(error.ServerError(), 2006);
  EXPECT_EQ(error.Kind(), ErrorKind::kOutcomeUnknown);
}

TEST_F(LostStatement, NorOfALostInsertInAutocommitMode) {
  ASSession& session = Ready({{"AutoReconnect", "off"}, {"AutoCommit", "on"}});
  client.FailQuery(2013, "lost");
  EXPECT_EQ(ExceptionOf(session, "INSERT INTO t VALUES (1)").Kind(), ErrorKind::kOutcomeUnknown);
  client.FailQuery(2013, "lost");
  EXPECT_EQ(ExceptionOf(session, "SELECT 1").Kind(), ErrorKind::kConnectionLost);
}

TEST_F(LostStatement, NorOfOneWhoseConnectionCannotBeOpenedAgain) {
  ASSession& session = Ready({{"AutoCommit", "on"}});
  client.FailQuery(2013, "lost");
  client.FailConnect(2002, "away");
  AException const error = ExceptionOf(session, "INSERT INTO t VALUES (1)");
  EXPECT_STREQ(error.what(), "mysql_real_connect failed\n Error 2002 (away)\n");
  EXPECT_EQ(error.ServerError(), 2002);
  EXPECT_EQ(error.Kind(), ErrorKind::kOutcomeUnknown);
}

TEST_F(LostStatement, NorOfOneWhoseRepetitionIsRefused) {
  ASSession& session = Ready({{"AutoCommit", "on"}});
  client.FailQuery(2013, "lost").Matching("INSERT");
  client.FailQuery(1062, "Duplicate entry").Matching("INSERT");
  AException const error = ExceptionOf(session, "INSERT INTO t VALUES (1)");
  EXPECT_EQ(error.ServerError(), 1062);
  EXPECT_EQ(error.Kind(), ErrorKind::kOutcomeUnknown);
}

TEST_F(LostStatement, WithoutAConnectionNothingWasSent) {
  ASSession& session = Ready({{"AutoCommit", "on"}});
  session.Disconnect();
  client.FailConnect(2002, "away");
  EXPECT_EQ(ExceptionOf(session, "INSERT INTO t VALUES (1)").Kind(), ErrorKind::kConnectionLost);
}

TEST_F(LostStatement, NothingIsSentOverAConnectionThatIsKnownToBeLost) {
  ASSession& session = Ready({{"AutoCommit", "on"}, {"AutoReconnect", "off"}});
  client.FailQuery(2013, "lost").Matching("INSERT");
  EXPECT_EQ(ExceptionOf(session, "INSERT INTO t VALUES (1)").Kind(), ErrorKind::kOutcomeUnknown);
  client.FailQuery(2006, "gone").Matching("INSERT");
  EXPECT_EQ(ExceptionOf(session, "INSERT INTO t VALUES (2)").Kind(), ErrorKind::kConnectionLost);
}

TEST_F(LostStatement, NorOverOneThatCouldNotBeOpenedAgain) {
  ASSession& session = Ready({{"AutoCommit", "on"}});
  client.FailQuery(2013, "lost").Matching("INSERT");
  client.FailConnect(2002, "away").Times(2);
  EXPECT_EQ(ExceptionOf(session, "INSERT INTO t VALUES (1)").Kind(), ErrorKind::kOutcomeUnknown);
  EXPECT_EQ(ExceptionOf(session, "INSERT INTO t VALUES (2)").Kind(), ErrorKind::kConnectionLost);
}

TEST_F(LostStatement, AFailedConnectTellsTheClientLibrarysError) {
  client.FailConnect(1045, "Access denied");
  AException const refused = ExceptionOf([&] { Construct(); });
  EXPECT_EQ(refused.ServerError(), 1045);
  EXPECT_STREQ(refused.SqlState(), "28000");
  EXPECT_EQ(refused.Kind(), ErrorKind::kRefused);
  client.FailConnect(2003, "away");
  EXPECT_EQ(ExceptionOf([&] { Construct(); }).Kind(), ErrorKind::kConnectionLost);
}

TEST_F(LostStatement, ALostRollbackIsALostConnection) {
  ASSession& session = Ready();
  client.FailQuery(2013, "lost");
  AException const error = ExceptionOf([&] { session.Rollback(); });
  EXPECT_EQ(error.ServerError(), 2013);
  EXPECT_EQ(error.Kind(), ErrorKind::kConnectionLost);
}

TEST_F(LostStatement, AResultThatCannotBeFetchedTellsWhy) {
  ASSession& session = Ready();
  AException const error = LostInTheResultOf(session, "SELECT 1");
  EXPECT_STREQ(error.what(), "MySQL fetch error. ");
  EXPECT_EQ(error.ServerError(), 2013);
  EXPECT_EQ(error.Kind(), ErrorKind::kConnectionLost);
}

TEST_F(LostStatement, WhatAStatementWithAResultChangesItMayHaveChanged) {
  ASSession& session = Ready({{"AutoCommit", "on"}});
  EXPECT_EQ(LostInTheResultOf(session, "INSERT INTO t VALUES (1) RETURNING id").Kind(), ErrorKind::kOutcomeUnknown);
  EXPECT_EQ(LostInTheResultOf(session, "SELECT f(1)").Kind(), ErrorKind::kOutcomeUnknown);
  EXPECT_EQ(LostInTheResultOf(session, "SELECT a FROM t").Kind(), ErrorKind::kConnectionLost);
}

// To the client library everything that happens to an encrypted connection is an error of TLS.
TEST_F(LostStatement, WithTlsItsErrorIsALoss) {
  client.SetEncrypted(true);
  ASSession& session = Ready({{"AutoCommit", "on"}, {"SslMode", "required"}, {"RetryWrites", "off"}});
  client.FailQuery(2026, "eof").Matching("SELECT 1");
  session.Execute("SELECT 1");
  EXPECT_EQ(CountOf("query SELECT 1"), 2);
  client.FailQuery(2026, "eof").Matching("INSERT");
  EXPECT_EQ(ExceptionOf(session, "INSERT INTO t VALUES (1)").Number(), kErrOutcomeUnknown);
  client.FailQuery(2026, "eof").Matching("ROLLBACK");
  EXPECT_STREQ(ExceptionOf([&] { session.Rollback(); }).what(), "DB fatal error 2026 (eof) during ROLLBACK. ");
}

TEST_F(LostStatement, WithoutTlsItIsARefusalLikeAnyOther) {
  ASSession& session = Ready({{"AutoCommit", "on"}});
  client.FailQuery(2026, "eof");
  EXPECT_EQ(ExceptionOf(session, "SELECT 1").Kind(), ErrorKind::kRefused);
}

using RetryLimit = LostStatement;

TEST_F(RetryLimit, BoundsTheReconnectionsOfAStatementThatIsLostEachTime) {
  ASSession& session = Ready({{"AutoCommit", "on"}, {"RetryLimit", "3"}});
  client.FailQuery(2013, "lost").Matching("SELECT 1").Times(4);
  AException const error = ExceptionOf(session, "SELECT 1");
  EXPECT_STREQ(error.what(), "Database connection lost");
  EXPECT_EQ(error.Number(), kErrConnectionLost);
  EXPECT_EQ(error.ServerError(), 2013);
  EXPECT_EQ(error.Kind(), ErrorKind::kConnectionLost);
  EXPECT_EQ(CountOf("init"), 3);
  EXPECT_EQ(CountOf("query SELECT 1"), 4);
}

TEST_F(RetryLimit, ALossLessSucceeds) {
  ASSession& session = Ready({{"AutoCommit", "on"}, {"RetryLimit", "3"}});
  client.FailQuery(2013, "lost").Matching("SELECT 1").Times(3);
  session.Execute("SELECT 1");
  EXPECT_EQ(CountOf("init"), 3);
}

TEST_F(RetryLimit, CountsForEachStatementAnew) {
  ASSession& session = Ready({{"AutoCommit", "on"}, {"RetryLimit", "1"}});
  for (int i = 0; i < 3; ++i) {
    client.FailQuery(2006, "gone").Matching("SELECT 1");
    session.Execute("SELECT 1");
  }
  EXPECT_EQ(CountOf("init"), 3);
}

TEST_F(RetryLimit, OfZeroForbidsReconnecting) {
  ASSession& session = Ready({{"AutoCommit", "on"}, {"RetryLimit", "0"}});
  client.FailQuery(2006, "gone");
  EXPECT_EQ(ExceptionOf(session, "SELECT 1").Number(), kErrConnectionLost);
  EXPECT_THAT(client.Calls(), ElementsAre("query SELECT 1"));
}

TEST_F(RetryLimit, TriesAServerThatIsAwayAgain) {
  ASSession& session = Ready({{"AutoCommit", "on"}, {"RetryLimit", "3"}});
  client.FailQuery(2013, "lost").Matching("SELECT 1");
  client.FailConnect(2002, "away").Times(2);
  session.Execute("SELECT 1");
  EXPECT_EQ(CountOf("init"), 3);
  EXPECT_EQ(CountOf("sleep 1"), 2);
}

TEST_F(RetryLimit, GivesUpOnAServerThatStaysAway) {
  ASSession& session = Ready({{"RetryLimit", "2"}});
  client.FailQuery(2013, "lost").Matching("SELECT 1");
  client.FailConnect(2002, "away").Times(2);
  AException const error = ExceptionOf(session, "SELECT 1");
  EXPECT_EQ(error.Number(), kErrConnectionLost);
  EXPECT_EQ(error.ServerError(), 2002);
  EXPECT_EQ(CountOf("init"), 2);
}

TEST_F(RetryLimit, TriesAgainWhereTlsCouldNotBeAgreedUpon) {
  ASSession& session = Ready({{"AutoCommit", "on"}, {"RetryLimit", "2"}});
  client.FailQuery(2013, "lost").Matching("SELECT 1");
  client.FailConnect(2026, "unexpected eof");
  session.Execute("SELECT 1");
  EXPECT_EQ(CountOf("init"), 2);
}

TEST_F(RetryLimit, DoesNotRepeatWhatTheServerRefuses) {
  ASSession& session = Ready({{"RetryLimit", "5"}});
  client.FailQuery(2013, "lost").Matching("SELECT 1");
  client.FailConnect(1045, "Access denied");
  EXPECT_STREQ(ExceptionOf(session, "SELECT 1").what(), "mysql_real_connect failed\n Error 1045 (Access denied)\n");
  EXPECT_EQ(CountOf("init"), 1);
}

TEST_F(RetryLimit, CountsLossesWhileTheAutocommitModeIsSet) {
  ASSession& session = Ready({{"AutoCommit", "on"}, {"RetryLimit", "4"}});
  client.FailQuery(2013, "lost").Matching("SELECT 1");
  client.FailQuery(2013, "lost").Matching("SET AUTOCOMMIT").Times(4);
  EXPECT_EQ(ExceptionOf(session, "SELECT 1").Number(), kErrConnectionLost);
  EXPECT_EQ(CountOf("init"), 4);
}

TEST_F(RetryLimit, HoldsForTheFirstConnectionToo) {
  client.FailQuery(2013, "lost").Matching("SET AUTOCOMMIT").Times(3);
  EXPECT_EQ(ExceptionOf([&] { Construct({{"RetryLimit", "2"}}); }).Number(), kErrConnectionLost);
  EXPECT_EQ(CountOf("init"), 3);
}

TEST_F(RetryLimit, PausesLongerEachTime) {
  ASSession& session = Ready({{"AutoCommit", "on"}, {"RetryLimit", "4"}});
  client.FailQuery(2013, "lost").Matching("SELECT 1").Times(4);
  auto const begin = std::chrono::steady_clock::now();
  session.Execute("SELECT 1");  // after 0, 50, 100 and 200 ms
  auto const took = std::chrono::steady_clock::now() - begin;
  EXPECT_GE(took, std::chrono::milliseconds(350));
  EXPECT_LT(took, std::chrono::seconds(5));
}

TEST_F(RetryLimit, BoundsTheSequenceConnectionToo) {
  ASSession& session = Ready({{"RetryLimit", "2"}, {"EmulateSequences", "yes"}});
  client.FailQuery(2013, "lost").Matching("SELECT 1").Times(3);
  AException const error = ExceptionOf([&] { session.ExecuteSeq("SELECT 1"); });
  EXPECT_STREQ(error.what(), "Database connection lost");
  EXPECT_EQ(error.Number(), kErrConnectionLost);
  EXPECT_EQ(CountOf("init"), 2);
}

TEST_F(RetryLimit, BoundsASequenceThatIsLostAtEveryStep) {
  ASSession& session = Ready({{"RetryLimit", "3"}, {"EmulateSequences", "yes"}});
  ASSequence numbers(&session, "n");
  client.SetAffectedRows(1);
  client.FailQuery(2013, "lost").Matching("SELECT LAST_INSERT_ID()").Times(4);
  EXPECT_EQ(ExceptionOf([&] { numbers.getNext(); }).Number(), kErrConnectionLost);
  EXPECT_EQ(CountOf("init"), 3);
}

TEST_F(RetryLimit, TriesASequenceServerThatIsAwayAgain) {
  ASSession& session = Ready({{"RetryLimit", "2"}, {"EmulateSequences", "yes"}});
  client.FailQuery(2013, "lost").Matching("SELECT 1");
  client.FailConnect(2002, "away");
  session.ExecuteSeq("SELECT 1");
  EXPECT_EQ(CountOf("init"), 2);
}

class RetryWritesOff : public LostStatement {
 protected:
  ASSession& Careful(Parameters parameters = {}) {
    parameters["RetryWrites"] = "off";
    parameters.try_emplace("AutoCommit", "on");
    return Ready(std::move(parameters));
  }
};

TEST_F(RetryWritesOff, AStatementThatCannotChangeDataIsRepeated) {
  ASSession& session = Careful();
  client.FailQuery(2013, "lost").Matching("SELECT");
  session.Execute("SELECT `id` FROM `t` WHERE `id`='1' FOR UPDATE");
  EXPECT_EQ(CountOf("query SELECT `id` FROM `t` WHERE `id`='1' FOR UPDATE"), 2);
}

TEST_F(RetryWritesOff, AWriteIsNotRepeatedAndItsOutcomeUnknown) {
  ASSession& session = Careful();
  client.FailQuery(2013, "lost").Matching("INSERT");
  AException const error = ExceptionOf(session, "INSERT INTO t VALUES (1)");
  EXPECT_STREQ(error.what(), "Connection lost, outcome unknown: error 2013 in query\n\b\nINSERT INTO t VALUES (1)");
  EXPECT_EQ(error.Number(), kErrOutcomeUnknown);
  EXPECT_EQ(error.Number(), 104);
  EXPECT_EQ(error.ServerError(), 2013);
  EXPECT_EQ(error.Kind(), ErrorKind::kOutcomeUnknown);
  EXPECT_EQ(CountOf("query INSERT INTO t VALUES (1)"), 1);
}

TEST_F(RetryWritesOff, TheNumberIsTheSameWhateverElseFails) {
  ASSession& session = Careful({{"RetryLimit", "1"}});
  client.FailQuery(2013, "lost").Matching("INSERT");
  client.FailConnect(2002, "away");
  AException const away = ExceptionOf(session, "INSERT INTO t VALUES (1)");
  EXPECT_EQ(away.Number(), kErrOutcomeUnknown);
  EXPECT_EQ(away.ServerError(), 2013);
  ASSession& other = Careful({{"AutoReconnect", "off"}});
  client.FailQuery(2013, "lost").Matching("INSERT");
  EXPECT_EQ(ExceptionOf(other, "INSERT INTO t VALUES (1)").Number(), kErrOutcomeUnknown);
}

TEST_F(RetryWritesOff, TheConnectionIsOpenAgainAfterwards) {
  ASSession& session = Careful();
  client.FailQuery(2013, "lost").Matching("DELETE");
  ExceptionOf(session, "DELETE FROM t");
  client.ForgetCalls();
  session.Execute("DELETE FROM t");
  EXPECT_THAT(client.Calls(), ElementsAre("query DELETE FROM t"));
}

TEST_F(RetryWritesOff, HoldsForEveryErrorThatCountsAsALoss) {
  for (unsigned const number : {2006U, 2013U, 2014U, 0U}) {
    ASSession& session = Careful();
    client.FailQuery(number, "lost").Matching("UPDATE");
    AException const error = ExceptionOf(session, "UPDATE t SET a=1");
    EXPECT_EQ(error.Number(), kErrOutcomeUnknown);
    EXPECT_EQ(error.ServerError(), static_cast<int>(number));
    EXPECT_EQ(CountOf("query UPDATE t SET a=1"), 1);
  }
}

TEST_F(RetryWritesOff, AStatementThatWasNeverSentIsSentOnceTheConnectionIsOpen) {
  ASSession& session = Careful();
  session.Disconnect();
  session.Execute("INSERT INTO t VALUES (1)");
  EXPECT_EQ(CountOf("query INSERT INTO t VALUES (1)"), 1);
}

TEST_F(RetryWritesOff, SoIsOneThatMeetsAConnectionKnownToBeLost) {
  ASSession& session = Careful();
  client.FailQuery(2013, "lost").Matching("UPDATE");
  client.FailConnect(2002, "away");
  ExceptionOf(session, "UPDATE t SET a=1");
  session.Execute("INSERT INTO t VALUES (1)");
  EXPECT_EQ(CountOf("query INSERT INTO t VALUES (1)"), 2);
}

TEST_F(RetryWritesOff, ChangesNothingInTransactions) {
  ASSession& session = Careful({{"AutoCommit", "off"}});
  client.FailQuery(2013, "lost").Matching("INSERT");
  AException const error = ExceptionOf(session, "INSERT INTO t VALUES (1)");
  EXPECT_STREQ(error.what(), "DB Error 0 () in query\n\b\nINSERT INTO t VALUES (1)");
  EXPECT_EQ(error.Number(), kErrStatementRefused);
}

TEST_F(RetryWritesOff, OnIsAsWithout) {
  ASSession& session = Ready({{"AutoCommit", "on"}, {"RetryWrites", "ON"}});
  client.FailQuery(2013, "lost").Matching("INSERT");
  session.Execute("INSERT INTO t VALUES (1)");
  EXPECT_EQ(CountOf("query INSERT INTO t VALUES (1)"), 2);
}

TEST_F(RetryWritesOff, HoldsForStatementsOnTheSequenceConnection) {
  ASSession& session = Careful({{"EmulateSequences", "yes"}});
  client.FailQuery(2013, "lost").Matching("UPDATE");
  AException const error = ExceptionOf([&] { session.ExecuteSeq("UPDATE t SET a=1"); });
  EXPECT_STREQ(error.what(), "Connection lost, outcome unknown: error 2013 in query\n\b\nUPDATE t SET a=1");
  EXPECT_EQ(error.Number(), kErrOutcomeUnknown);
  client.FailQuery(2013, "lost").Matching("SELECT 1");
  session.ExecuteSeq("SELECT 1");
  EXPECT_EQ(CountOf("query SELECT 1"), 2);
}

// A number that was counted and is not handed out is only skipped.
TEST_F(RetryWritesOff, DoesNotKeepASequenceFromCountingAgain) {
  ASSession& session = Careful({{"EmulateSequences", "yes"}});
  ASSequence numbers(&session, "n");
  client.SetAffectedRows(1);
  client.AnswerQuery(1, {{"8"}}).Matching("SELECT LAST_INSERT_ID()");
  client.FailQuery(2013, "lost").Matching("UPDATE n");
  EXPECT_EQ(numbers.getNext(), 8);
}

}  // namespace
}  // namespace corvane::test
