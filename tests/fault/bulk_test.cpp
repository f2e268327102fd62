// Running an UPDATE or DELETE: the statement sent, what is returned, logged and thrown.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "corvane/corvane.h"
#include "tests/support/scripted_cursor.h"
#include "tests/support/sql.h"

namespace corvane::test {
namespace {

using testing::ElementsAre;

constexpr char const* kUpdate = "UPDATE orders o SET o.total = o.total + '5' WHERE o.id=3";
constexpr char const* kDelete = "DELETE FROM o USING orders o WHERE o.id=3";

// An updater and a deleter of the same rows.
class Statements {
 protected:
  Statements() {
    updater.Where(o.idColumn == 3);
    deleter.Where(o.idColumn == 3);
  }

  std::string Named(std::string const& text) const { return Sql(Str(text), {{&o, "o"}}); }

  Orders o;
  ASUpdater updater{o.totalColumn.Set(o.totalColumn + 5)};
  ASDeleter deleter{o};
};

class Bulk : public ScriptedCursor, protected Statements {
 protected:
  // The statements that were sent, with the names of the records.
  std::vector<std::string> Sent() const {
    std::vector<std::string> sent;
    for (std::string const& statement : ScriptedCursor::Statements()) sent.push_back(Named(statement));
    return sent;
  }

  // What the action throws, with the names of the records.
  template <class Action>
  Thrown Refusal(Action action) const {
    Thrown thrown = ThrownBy(action);
    thrown.message = Named(thrown.message);
    return thrown;
  }
};

// ---- the statement and what it returns

TEST_F(Bulk, UpdaterSendsItsStatementAlone) {
  updater.Execute(session);
  ASSERT_EQ(client.Calls().size(), 1U);
  EXPECT_EQ(Named(client.Calls()[0]), std::string("query ") + kUpdate);
}

TEST_F(Bulk, DeleterSendsItsStatementAlone) {
  deleter.Execute(session);
  ASSERT_EQ(client.Calls().size(), 1U);
  EXPECT_EQ(Named(client.Calls()[0]), std::string("query ") + kDelete);
}

TEST_F(Bulk, UpdaterReturnsTheNumberOfChangedRows) {
  client.AnswerQuery().Matching("UPDATE").AffectedRows(7);
  EXPECT_EQ(updater.Execute(session), 7U);
  EXPECT_EQ(session->RowsAffected(), 7U);
}

TEST_F(Bulk, DeleterReturnsTheNumberOfDeletedRows) {
  client.AnswerQuery().Matching("DELETE").AffectedRows(7);
  EXPECT_EQ(deleter.Execute(session), 7U);
  EXPECT_EQ(session->RowsAffected(), 7U);
}

TEST_F(Bulk, ReturnsNoughtWhenNoRowWasChanged) {
  EXPECT_EQ(updater.Execute(session), 0U);
  EXPECT_EQ(deleter.Execute(session), 0U);
}

TEST_F(Bulk, ReturnsNumbersOfMoreThan32Bits) {
  client.SetAffectedRows(10000000000);
  EXPECT_EQ(updater.Execute(session), 10000000000U);
  EXPECT_EQ(deleter.Execute(session), 10000000000U);
}

TEST_F(Bulk, ExecutesAgain) {
  client.AnswerQuery().AffectedRows(7);
  client.AnswerQuery().AffectedRows(2);
  EXPECT_EQ(updater.Execute(session), 7U);
  EXPECT_EQ(updater.Execute(session), 2U);
  EXPECT_THAT(Sent(), ElementsAre(kUpdate, kUpdate));
}

TEST_F(Bulk, ExecutesTheStatementAsItIsThen) {
  updater.Execute(session);
  deleter.Execute(session);
  updater << o.noteColumn.Set("x");
  updater.Where(o.idColumn == 4);
  deleter.Where(o.idColumn == 4);
  updater.Execute(session);
  deleter.Execute(session);
  EXPECT_THAT(Sent(),
              ElementsAre(kUpdate, kDelete, "UPDATE orders o SET o.total = o.total + '5', o.note = 'x' WHERE o.id=4",
                          "DELETE FROM o USING orders o WHERE o.id=4"));
}

TEST_F(Bulk, ConstantStatementsExecute) {
  ASUpdater const& constantUpdater = updater;
  ASDeleter const& constantDeleter = deleter;
  constantUpdater.Execute(session);
  constantDeleter.Execute(session);
  EXPECT_THAT(Sent(), ElementsAre(kUpdate, kDelete));
}

TEST_F(Bulk, TableNamesAreBareWhateverTheSessionQuotes) {
  updater.Execute(session);
  EXPECT_EQ(session->getKWPrefix(), "`");
  EXPECT_THAT(Sent(), ElementsAre(kUpdate));
}

TEST_F(Bulk, KeywordsGivenAreSent) {
  updater.Project().setKW(session->getKWPrefix(), session->getKWSuffix());
  deleter.Project().setKW(session->getKWPrefix(), session->getKWSuffix());
  updater.Execute(session);
  deleter.Execute(session);
  EXPECT_THAT(Sent(), ElementsAre("UPDATE `orders` o SET o.total = o.total + '5' WHERE o.id=3",
                                  "DELETE FROM o USING `orders` o WHERE o.id=3"));
}

TEST_F(Bulk, UsesTheSessionThatIsGiven) {
  ASSession other({{"EmulateSequences", "no"}}, 0, false);
  client.ForgetCalls();
  updater.Execute(&other);
  deleter.Execute(session);
  ASSERT_EQ(client.CallsByHandle().size(), 2U);
  EXPECT_EQ(Named(client.CallsByHandle()[0]), std::string("2 query ") + kUpdate);
  EXPECT_EQ(Named(client.CallsByHandle()[1]), std::string("1 query ") + kDelete);
}

TEST_F(Bulk, AReadOnlySessionExecutesAllTheSame) {
  session->ReadOnly();
  updater.Execute(session);
  deleter.Execute(session);
  EXPECT_THAT(Sent(), ElementsAre(kUpdate, kDelete));
}

// ---- an application's own rendering

struct OwnUpdater : ASUpdater {
  using ASUpdater::ASUpdater;
  Str Query() const override { return "UPDATE own"; }
};

struct OwnDeleter : ASDeleter {
  using ASDeleter::ASDeleter;
  Str Query() const override { return "DELETE own"; }
};

TEST_F(Bulk, ADerivedUpdatersRenderingIsRun) {
  OwnUpdater const own(o.totalColumn.Set(7));
  own.Execute(session);
  EXPECT_THAT(Sent(), ElementsAre("UPDATE own"));
}

TEST_F(Bulk, ADerivedDeletersRenderingIsRun) {
  OwnDeleter const own(o);
  own.Execute(session);
  EXPECT_THAT(Sent(), ElementsAre("DELETE own"));
}

struct FailingUpdater : ASUpdater {
  using ASUpdater::ASUpdater;
  Str Query() const override { throw AException("no text"); }
};

TEST_F(Bulk, WhatTheRenderingThrowsIsThrown) {
  FailingUpdater const failing(o.totalColumn.Set(7));
  EXPECT_EQ(ThrownBy([&] { failing.Execute(session); }), (Thrown{0, "no text"}));
  EXPECT_THAT(client.Calls(), ElementsAre());
}

// ---- failures

TEST_F(Bulk, WithoutSessionUpdaterThrows) {
  EXPECT_EQ(ThrownBy([&] { updater.Execute(nullptr); }), (Thrown{0, "There is no session for updater. "}));
  EXPECT_THAT(client.Calls(), ElementsAre());
}

TEST_F(Bulk, WithoutSessionDeleterThrows) {
  EXPECT_EQ(ThrownBy([&] { deleter.Execute(nullptr); }), (Thrown{0, "There is no session for deleter. "}));
  EXPECT_THAT(client.Calls(), ElementsAre());
}

TEST_F(Bulk, ARefusedUpdateIsThrownAsTheSessionDoes) {
  client.FailQuery(1054, "no column");
  EXPECT_EQ(Refusal([&] { updater.Execute(session); }),
            (Thrown{102,
                    "DB Error 1054 (no column) in query\n\b\nUPDATE orders o SET o.total = o.total + '5'"
                    " WHERE o.id=3"}));
}

TEST_F(Bulk, ARefusedDeleteIsThrownAsTheSessionDoes) {
  client.FailQuery(1109, "no table");
  EXPECT_EQ(Refusal([&] { deleter.Execute(session); }),
            (Thrown{102, "DB Error 1109 (no table) in query\n\b\nDELETE FROM o USING orders o WHERE o.id=3"}));
}

TEST_F(Bulk, AForeignKeyIsThrownWithTheSessionsCode) {
  client.FailQuery(1217, "parent");
  EXPECT_EQ(Refusal([&] { deleter.Execute(session); }),
            (Thrown{100, "DB Error 1217 (parent) in query\n\b\nDELETE FROM o USING orders o WHERE o.id=3"}));
}

TEST_F(Bulk, AValueWithANulByteIsNotSent) {
  ASUpdater nul(o.noteColumn.Set("x"));
  nul.Project() << o.idColumn;
  nul.Project().setKW(Str("\0", 1), "");
  EXPECT_EQ(ThrownBy([&] { nul.Execute(session); }), (Thrown{0, "Statement contains a NUL byte. "}));
  EXPECT_THAT(client.Calls(), ElementsAre());
}

TEST_F(Bulk, ExecutesAgainAfterARefusal) {
  client.FailQuery(1205, "timeout").Matching("UPDATE");
  ThrownBy([&] { updater.Execute(session); });
  client.SetAffectedRows(1);
  EXPECT_EQ(updater.Execute(session), 1U);
  EXPECT_THAT(Sent(), ElementsAre(kUpdate, kUpdate));
}

TEST_F(Bulk, LostWithAutocommitOnIsRunAgain) {
  Reopen({{"AutoCommit", "on"}});
  client.FailQuery(2013, "lost").Matching("UPDATE");
  client.FailQuery(2006, "gone").Matching("DELETE");
  client.AnswerQuery().Matching("UPDATE").AffectedRows(7);
  client.AnswerQuery().Matching("DELETE").AffectedRows(3);
  EXPECT_EQ(updater.Execute(session), 7U);
  EXPECT_EQ(deleter.Execute(session), 3U);
  EXPECT_THAT(Sent(), ElementsAre(kUpdate, "SET AUTOCOMMIT=1", kUpdate, kDelete, "SET AUTOCOMMIT=1", kDelete));
}

TEST_F(Bulk, LostWithAutocommitOffIsNotRunAgain) {
  client.FailQuery(2013, "lost").Matching("UPDATE");
  EXPECT_EQ(Refusal([&] { updater.Execute(session); }),
            (Thrown{102, "DB Error 0 () in query\n\b\nUPDATE orders o SET o.total = o.total + '5' WHERE o.id=3"}));
  EXPECT_THAT(Sent(), ElementsAre(kUpdate, "SET AUTOCOMMIT=0"));
}

TEST_F(Bulk, ADeletionLostWithAutocommitOffIsNotRunAgain) {
  client.FailQuery(2006, "gone").Matching("DELETE");
  EXPECT_EQ(Refusal([&] { deleter.Execute(session); }),
            (Thrown{102, "DB Error 0 () in query\n\b\nDELETE FROM o USING orders o WHERE o.id=3"}));
  EXPECT_THAT(Sent(), ElementsAre(kDelete, "SET AUTOCOMMIT=0"));
}

TEST_F(Bulk, LostWithReconnectionForbiddenThrows) {
  Reopen({{"AutoCommit", "on"}, {"AutoReconnect", "off"}});
  client.FailQuery(2013, "lost");
  EXPECT_EQ(ThrownBy([&] { deleter.Execute(session); }), (Thrown{103, "Database connection lost"}));
  EXPECT_THAT(Sent(), ElementsAre(kDelete));
}

// ---- log lines at every debug level

class BulkLog : public ScriptedSessionAtLevel, protected Statements {
 protected:
  // The log of executing the statement, whose address is replaced by "OBJECT".
  template <class Statement>
  std::string LogOfExecuting(Statement const& statement) {
    ASSession& session = Ready({}, Level());
    Str log = LogOf([&] { statement.Execute(&session); });
    std::ostringstream address;
    address << static_cast<void const*>(&statement);
    log.replaceStr(address.str(), "OBJECT");
    return Named(log.ToString());
  }
};

using BulkUpdaterLog = BulkLog;

TEST_P(BulkUpdaterLog, ShowsItsAddressAndTheStatementFirst) { EXPECT_EQ(LogOfExecuting(updater), Log()); }

constexpr char const* kUpdateLines =
    "SESSION OBJECT EXECUTE-> UPDATE orders o SET o.total = o.total + '5' WHERE o.id=3\n\n"
    "SESSION ADDR EXECUTE UPDATE orders o SET o.total = o.total + '5' WHERE o.id=3\n\n"
    "EXECUTE COMPLETE\n";

INSTANTIATE_TEST_SUITE_P(Levels, BulkUpdaterLog, testing::ValuesIn(ByLevel("", "", kUpdateLines, kUpdateLines)),
                         LevelName);

using BulkDeleterLog = BulkLog;

TEST_P(BulkDeleterLog, ShowsItsAddressAndTheStatementFirst) { EXPECT_EQ(LogOfExecuting(deleter), Log()); }

constexpr char const* kDeleteLines =
    "SESSION OBJECT EXECUTE-> DELETE FROM o USING orders o WHERE o.id=3\n\n"
    "SESSION ADDR EXECUTE DELETE FROM o USING orders o WHERE o.id=3\n\n"
    "EXECUTE COMPLETE\n";

INSTANTIATE_TEST_SUITE_P(Levels, BulkDeleterLog, testing::ValuesIn(ByLevel("", "", kDeleteLines, kDeleteLines)),
                         LevelName);

using BulkRefusedLog = BulkLog;

TEST_P(BulkRefusedLog, ShowsTheStatementBeforeItsFailure) {
  Ready({}, Level());
  client.FailQuery(1109, "no table").Matching("DELETE");
  EXPECT_EQ(LogOfExecuting(deleter), Log());
}

constexpr char const* kFailureLines =
    "SESSION ADDR EXECUTE Failed\n Error 1109 (no table) in query\nDELETE FROM o USING orders o WHERE o.id=3\n";
constexpr char const* kRefusedLines =
    "SESSION OBJECT EXECUTE-> DELETE FROM o USING orders o WHERE o.id=3\n\n"
    "SESSION ADDR EXECUTE DELETE FROM o USING orders o WHERE o.id=3\n\n"
    "SESSION ADDR EXECUTE Failed\n Error 1109 (no table) in query\nDELETE FROM o USING orders o WHERE o.id=3\n";

INSTANTIATE_TEST_SUITE_P(Levels, BulkRefusedLog,
                         testing::ValuesIn(ByLevel("", kFailureLines, kRefusedLines, kRefusedLines)), LevelName);

TEST_F(Bulk, WithoutSessionNothingIsLogged) {
  EXPECT_EQ(LogOf([&] { updater.Execute(nullptr); }), "");
  EXPECT_EQ(LogOf([&] { deleter.Execute(nullptr); }), "");
}

TEST_F(Bulk, ADerivedStatementIsLoggedByItsOwnText) {
  OwnUpdater const own(o.totalColumn.Set(7));
  ASSession& logging = Ready({}, 2);
  std::ostringstream expected;
  expected << "SESSION " << static_cast<void const*>(static_cast<ASUpdater const*>(&own))
           << " EXECUTE-> UPDATE own\n\nSESSION ADDR EXECUTE UPDATE own\n\nEXECUTE COMPLETE\n";
  EXPECT_EQ(LogOf([&] { own.Execute(&logging); }), expected.str());
}

}  // namespace
}  // namespace corvane::test
