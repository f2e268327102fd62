// Raw statements of a cursor: how often they are executed, the columns they get, and the results they leave behind.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <iterator>
#include <ostream>
#include <string>
#include <vector>

#include "corvane/corvane.h"
#include "tests/support/scripted_cursor.h"

namespace corvane::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

constexpr char const* kFetchError = "MySQL fetch error. ";
constexpr unsigned long kLongText = 4294967295;  // as servers declare LONGTEXT and LONGBLOB

class CursorStatement : public ScriptedCursor {
 protected:
  void SetUp() override {
    ScriptedCursor::SetUp();
    cursor.AssignSession(session);
  }

  ASAttribute const& Item(int index) const {
    return dynamic_cast<ASAttribute const&>(**std::next(cursor.Project().Items().begin(), index));
  }
  ASData const& Value(int index) const { return *Item(index).Data(); }
  int ItemCount() const { return static_cast<int>(cursor.Project().Items().size()); }

  // What sends a statement that may not be sent again.
  void ExpectNothingIsSent() {
    client.ForgetCalls();
    EXPECT_EQ(cursor.Fetch(), 0);
    EXPECT_EQ(cursor.Fetch(1), 0);
    EXPECT_EQ(cursor.FetchSingle(), 0);
    EXPECT_EQ(cursor.GetAmount(), 0);
    cursor.Reset();
    cursor.Open();
    EXPECT_EQ(cursor.GetUURecord(0), nullptr);
    EXPECT_THAT(client.Calls(), IsEmpty());
  }

  // After a query that failed.
  void ExpectItIsNotRunAgain() {
    Thrown const thrown{0, "Raw statement has failed, it is not run again. "};
    client.ForgetCalls();
    EXPECT_EQ(ThrownBy([&] { cursor.Fetch(); }), thrown);
    EXPECT_EQ(ThrownBy([&] { cursor.Fetch(1); }), thrown);
    EXPECT_EQ(ThrownBy([&] { cursor.FetchSingle(); }), thrown);
    EXPECT_EQ(ThrownBy([&] { cursor.GetAmount(); }), thrown);
    EXPECT_EQ(ThrownBy([&] { cursor.Reset(); }), thrown);
    EXPECT_EQ(ThrownBy([&] { cursor.Open(); }), thrown);
    EXPECT_EQ(cursor.GetUURecord(0), nullptr);
    EXPECT_THAT(client.Calls(), IsEmpty());
  }

  // The statement twice answered alike: for its columns and for its rows.
  ScriptedClient::Answer& AnswerTwice(unsigned columns, std::vector<Row> rows) {
    return Answer(columns, std::move(rows)).Times(2);
  }

  ASCursor cursor{nullptr};
};

// ---- how often it is executed

TEST_F(CursorStatement, WithoutSelectIsExecutedOnce) {
  cursor.Statement("UPDATE t SET a=1");
  EXPECT_THAT(client.Calls(), ElementsAre("query UPDATE t SET a=1"));
  ExpectNothingIsSent();
}

TEST_F(CursorStatement, WithoutSelectIsNotExecutedForARecord) {
  ASInt id;
  ASAttribute idColumn("id");
  ASDomain record("t", "");
  record.Add(idColumn, id);
  cursor.Statement("UPDATE t SET a=1");
  client.ForgetCalls();
  EXPECT_EQ(cursor.Fetch(record), 0);
  EXPECT_EQ(ItemCount(), 0);
  EXPECT_THAT(client.Calls(), IsEmpty());
}

TEST_F(CursorStatement, WithoutSelectMakesNoColumns) {
  Answer(1, {{"t"}});
  cursor.Statement("SHOW TABLES");
  EXPECT_EQ(ItemCount(), 0);
  ExpectNothingIsSent();
}

TEST_F(CursorStatement, WithoutSelectThatIsRefusedIsExecutedOnce) {
  client.FailQuery(1062, "Duplicate");
  EXPECT_EQ(ThrownBy([&] { cursor.Statement("INSERT x"); }),
            (Thrown{102, "DB Error 1062 (Duplicate) in query\n\b\nINSERT x"}));
  EXPECT_THAT(Statements(), ElementsAre("INSERT x"));
  ExpectNothingIsSent();
}

TEST_F(CursorStatement, WithSelectIsExecutedForItsColumnsAndForItsRows) {
  AnswerTwice(1, {{"5"}});
  cursor.Statement("SELECT a FROM t");
  EXPECT_THAT(client.Calls(), ElementsAre("query SELECT a FROM t", "store_result", "free_result",
                                          "query SELECT a FROM t", "store_result", "free_result"));
  client.ForgetCalls();
  cursor.Open();
  EXPECT_EQ(cursor.GetAmount(), 1);
  EXPECT_EQ(cursor.Reset().Fetch(), 1);
  EXPECT_EQ(cursor.Fetch(), 0);
  EXPECT_THAT(client.Calls(), IsEmpty());
}

class CursorStatementText : public CursorStatement, public testing::WithParamInterface<char const*> {};

TEST_P(CursorStatementText, CountsAsAQuery) {
  AnswerTwice(1, {{"5"}});
  cursor.Statement(GetParam());
  EXPECT_THAT(Statements(), ElementsAre(GetParam(), GetParam()));
  EXPECT_EQ(cursor.GetAmount(), 1);
}

INSTANTIATE_TEST_SUITE_P(WithSelectInAnyCaseAndPlace, CursorStatementText,
                         testing::Values("select 1", "SELECT 1", "sElEcT 1", "(Select 1)",
                                         "WITH c AS (SELECT 1) TABLE c", "CALL reselected()", "select"));

TEST_F(CursorStatement, WithSelectButWithoutResultIsExecutedOnceThenThrows) {
  EXPECT_EQ(ThrownBy([&] { cursor.Statement("INSERT INTO t SELECT 1"); }), (Thrown{0, kFetchError}));
  EXPECT_THAT(Statements(), ElementsAre("INSERT INTO t SELECT 1"));
  EXPECT_EQ(ItemCount(), 0);
  ExpectNothingIsSent();
}

TEST_F(CursorStatement, ThatFailsTheFirstTimeIsNotExecutedAgain) {
  client.FailQuery(1064, "syntax");
  EXPECT_EQ(ThrownBy([&] { cursor.Statement("SELECT x"); }),
            (Thrown{102, "DB Error 1064 (syntax) in query\n\b\nSELECT x"}));
  EXPECT_THAT(Statements(), ElementsAre("SELECT x"));
  EXPECT_EQ(ItemCount(), 0);
  ExpectItIsNotRunAgain();
}

TEST_F(CursorStatement, ThatFailsTheSecondTimeIsNotExecutedAgainAndItsColumnsGo) {
  Column<ASInt> mine("mine");
  cursor.Project() << mine;
  Answer(1, {{"5"}});
  client.FailQuery(1205, "Lock wait timeout").After(1);
  EXPECT_EQ(ThrownBy([&] { cursor.Statement("SELECT x"); }).number, 102);
  EXPECT_THAT(Statements(), ElementsAre("SELECT x", "SELECT x"));
  EXPECT_THAT(cursor.Project().Items(), ElementsAre(&mine));
  ExpectItIsNotRunAgain();
}

TEST_F(CursorStatement, WhoseFirstResultIsLostIsNotExecutedAgain) {
  Answer(1, {{"5"}});
  client.FailStoreResult(1317, "interrupted");
  EXPECT_EQ(ThrownBy([&] { cursor.Statement("SELECT x"); }), (Thrown{0, kFetchError}));
  ExpectItIsNotRunAgain();
}

TEST_F(CursorStatement, WhoseSecondResultIsLostIsNotExecutedAgainAndItsColumnsGo) {
  AnswerTwice(1, {{"5"}});
  client.FailStoreResult(1317, "interrupted").After(1);
  EXPECT_EQ(ThrownBy([&] { cursor.Statement("SELECT x"); }), (Thrown{0, kFetchError}));
  EXPECT_EQ(ItemCount(), 0);
  ExpectItIsNotRunAgain();
}

TEST_F(CursorStatement, AfterDetachIsExecutedOnceMoreIntoTheSameColumns) {
  AnswerTwice(1, {{"5"}});
  Answer(1, {{"6"}});
  cursor.Statement("SELECT a");
  delete cursor.Detach();
  EXPECT_EQ(cursor.Fetch(), 1);
  EXPECT_THAT(Statements(), ElementsAre("SELECT a", "SELECT a", "SELECT a"));
  EXPECT_EQ(ItemCount(), 1);
  EXPECT_EQ(Value(0).getstr().ToString().substr(0, 2), "6 ");
}

TEST_F(CursorStatement, LeavesOutAColumnThatWasUnboundWhenItRunsAgain) {
  AnswerTwice(2, {{"five", "six"}});
  Answer(2, {{"seven", "eight"}});
  cursor.Statement("SELECT a, b");
  const_cast<ASAttribute&>(Item(0)).Register(nullptr, nullptr);
  delete cursor.Detach();
  EXPECT_EQ(cursor.Fetch(), 1);
  EXPECT_EQ(Item(0).Data(), nullptr);
  EXPECT_EQ(Value(1).getstr().ToString().substr(0, 6), "eight ");
}

TEST_F(CursorStatement, ReadsIntoTheCallersValueHoweverSmallWhenItRunsAgain) {
  AnswerTwice(1, {{"five"}});
  Answer(1, {{"seven"}});
  cursor.Statement("SELECT a");
  ASVStr mine(3);
  const_cast<ASAttribute&>(Item(0)).Register(&mine, nullptr);
  delete cursor.Detach();
  EXPECT_EQ(cursor.Fetch(), 1);
  EXPECT_EQ(mine.getstr(), "sev");
}

TEST_F(CursorStatement, WithoutSessionThrowsAndIsForgotten) {
  cursor.AssignSession(nullptr);
  EXPECT_EQ(ThrownBy([&] { cursor.Statement("SELECT 1"); }), (Thrown{0, "There is no session for cursor. "}));
  EXPECT_EQ(ThrownBy([&] { cursor.Statement("UPDATE t SET a=1"); }), (Thrown{0, "There is no session for cursor. "}));
  cursor.AssignSession(session);
  EXPECT_EQ(cursor.Query(), "SELECT * FROM ");
  EXPECT_THAT(client.Calls(), IsEmpty());
}

TEST_F(CursorStatement, TakesTextsOfEveryKind) {
  Str const text("SET a=1");
  cursor.Statement(text);
  cursor.Statement(Str("SET a=2"));
  cursor.Statement("SET a=3");
  cursor.Statement(std::string("SET a=4"));
  EXPECT_THAT(Statements(), ElementsAre("SET a=1", "SET a=2", "SET a=3", "SET a=4"));
}

// ---- on a cursor that is not new

TEST_F(CursorStatement, OnAnOpenCursorReplacesItsRowsAndStartsAtTheFirst) {
  Answer(1, {{"1"}, {"2"}, {"3"}});
  cursor.Fetch(2);
  AnswerTwice(1, {{"5"}, {"6"}});
  cursor.Statement("SELECT a");
  EXPECT_EQ(cursor.GetAmount(), 2);
  EXPECT_EQ(cursor.Fetch(), 1);
}

TEST_F(CursorStatement, WithoutSelectOnAnOpenCursorClosesIt) {
  Answer(1, {{"1"}, {"2"}});
  cursor.Open();
  cursor.Statement("UPDATE t SET a=1");
  ExpectNothingIsSent();
}

TEST_F(CursorStatement, ThreeTimesInARowHasTheColumnsOfTheLast) {
  AnswerTwice(1, {{"1"}}).Fields({{"one", MYSQL_TYPE_LONG, 11}});
  AnswerTwice(2, {{"2", "3"}}).Fields({{"two", MYSQL_TYPE_LONG, 11}, {"three", MYSQL_TYPE_LONG, 11}});
  AnswerTwice(1, {{"4"}}).Fields({{"four", MYSQL_TYPE_LONG, 11}});
  cursor.Statement("SELECT 1");
  EXPECT_EQ(cursor.Fetch(), 1);
  cursor.Statement("SELECT 2");
  EXPECT_EQ(ItemCount(), 2);
  EXPECT_EQ(cursor.Fetch(), 1);
  EXPECT_EQ(Value(1).getstr(), "3");
  cursor.Statement("SELECT 4");
  EXPECT_EQ(ItemCount(), 1);
  EXPECT_EQ(cursor.Fetch(), 1);
  EXPECT_EQ(Item(0).Name(), "four");
  EXPECT_EQ(Value(0).getstr(), "4");
}

TEST_F(CursorStatement, WithoutSelectDropsTheColumnsOfTheOneBefore) {
  AnswerTwice(1, {{"1"}});
  cursor.Statement("SELECT 1");
  cursor.Statement("SET a=1");
  EXPECT_EQ(ItemCount(), 0);
}

TEST_F(CursorStatement, MayBeAValueOfTheOneBefore) {
  AnswerTwice(1, {{"SELECT 2"}}).Fields({{"text", MYSQL_TYPE_VAR_STRING, 8}});
  AnswerTwice(1, {{"2"}}).Fields({{"n", MYSQL_TYPE_LONG, 11}}).Matching("SELECT 2");
  cursor.Statement("SELECT 1");
  cursor.Fetch();
  cursor.Statement(dynamic_cast<ASStr const&>(Value(0)));
  cursor.Fetch();
  EXPECT_EQ(Value(0).getstr(), "2");
}

TEST_F(CursorStatement, LeavesTheCallersColumnsWhichCountAsTheFirst) {
  Column<ASInt> mine("mine");
  cursor.Project() << mine;
  Answer(1, {{"1"}});
  cursor.Open();
  Answer(1, {{"2"}});
  Answer(2, {{"3", "4"}});
  cursor.Statement("SELECT x");
  EXPECT_EQ(ItemCount(), 2);
  cursor.Fetch();
  EXPECT_EQ(mine.value, 3);
  EXPECT_EQ(Value(1).getstr().ToString().substr(0, 2), "4 ");
}

TEST_F(CursorStatement, WithFewerColumnsThanTheCallersAndItsOwnThrows) {
  Column<ASInt> mine("mine");
  cursor.Project() << mine;
  AnswerTwice(1, {{"1"}});
  EXPECT_EQ(ThrownBy([&] { cursor.Statement("SELECT x"); }), (Thrown{0, kFetchError}));
  EXPECT_THAT(cursor.Project().Items(), ElementsAre(&mine));
  EXPECT_EQ(client.UnfreedResults(), 0U);
  ExpectItIsNotRunAgain();
}

TEST_F(CursorStatement, AfterTheProjectionWasClearedWorksAsOnANewCursor) {
  AnswerTwice(1, {{"1"}});
  AnswerTwice(1, {{"2"}});
  cursor.Statement("SELECT 1");
  cursor.Project().Clear();
  cursor.Statement("SELECT 2");
  EXPECT_EQ(ItemCount(), 1);
  EXPECT_EQ(cursor.Fetch(), 1);
}

// ---- its columns

TEST_F(CursorStatement, NamesItsColumnsAfterThoseOfTheResult) {
  AnswerTwice(2, {}).Fields({{"id", MYSQL_TYPE_LONG, 11}, {"COUNT(*)", MYSQL_TYPE_LONGLONG, 21}});
  cursor.Statement("SELECT id, COUNT(*) FROM t");
  ASSERT_EQ(ItemCount(), 2);
  EXPECT_EQ(Item(0).Name(), "id");
  EXPECT_EQ(Item(0).Label(), "id");
  EXPECT_EQ(Item(1).Name(), "COUNT(*)");
  EXPECT_EQ(Value(1).GetName(), "COUNT(*)");
  EXPECT_EQ(Item(0).ACType(), 0);
  EXPECT_EQ(Item(0).IsKey(), 0);
  ASSERT_NE(Item(0).Domain(), nullptr);
  EXPECT_EQ(Item(0).Domain(), Item(1).Domain());
  EXPECT_EQ(Item(0).Domain()->Name(), "Table");
  EXPECT_EQ(Item(0).Domain()->Label(), "");
  EXPECT_EQ(Item(0).Domain()->size(), 2U);
}

TEST_F(CursorStatement, LeavesTheSelectListAsItWas) {
  AnswerTwice(1, {{"1"}});
  cursor.Statement("SELECT 1");
  EXPECT_EQ(cursor.Project().ProjectQuery(), "");
  EXPECT_THAT(cursor.Project().Domains(), IsEmpty());
}

TEST_F(CursorStatement, ReadsItsRows) {
  AnswerTwice(2, {{"1", "ab"}, {std::nullopt, std::nullopt}})
      .Fields({{"n", MYSQL_TYPE_LONG, 11}, {"s", MYSQL_TYPE_VAR_STRING, 4}});
  cursor.Statement("SELECT n, s");
  EXPECT_EQ(cursor.Fetch(), 1);
  EXPECT_EQ(Value(0).getstr(), "1");
  EXPECT_EQ(Value(1).getstr(), "ab  ");
  EXPECT_EQ(cursor.Fetch(), 2);
  EXPECT_EQ(Value(0).IsNull(), 1);
  EXPECT_EQ(Value(1).IsNull(), 1);
}

class CursorStatementType : public CursorStatement, public testing::WithParamInterface<enum_field_types> {
 protected:
  void Describe() {
    AnswerTwice(1, {{"4294967301"}}).Fields({{"a", GetParam(), 20}});
    cursor.Statement("SELECT a");
    cursor.Fetch();
  }
};

using CursorStatementIntegerType = CursorStatementType;
TEST_P(CursorStatementIntegerType, IsReadIntoThirtyTwoBits) {
  Describe();
  EXPECT_NE(dynamic_cast<ASInt const*>(&Value(0)), nullptr);
  EXPECT_EQ(Value(0).GetDBType(), kDbInt);
  EXPECT_EQ(Value(0).getstr(), "5");
}
INSTANTIATE_TEST_SUITE_P(OfTwoToEightBytes, CursorStatementIntegerType,
                         testing::Values(MYSQL_TYPE_SHORT, MYSQL_TYPE_LONG, MYSQL_TYPE_LONGLONG, MYSQL_TYPE_INT24));

using CursorStatementOtherType = CursorStatementType;
TEST_P(CursorStatementOtherType, IsATextOfTheDeclaredLength) {
  Describe();
  EXPECT_NE(dynamic_cast<ASStr const*>(&Value(0)), nullptr);
  EXPECT_EQ(Value(0).GetDBType(), kDbStr);
  EXPECT_EQ(Value(0).GetSize(), 20);
  EXPECT_EQ(Value(0).getstr(), "4294967301          ");
}
INSTANTIATE_TEST_SUITE_P(OfTheServer, CursorStatementOtherType,
                         testing::Values(MYSQL_TYPE_DECIMAL, MYSQL_TYPE_TINY, MYSQL_TYPE_FLOAT, MYSQL_TYPE_DOUBLE,
                                         MYSQL_TYPE_NULL, MYSQL_TYPE_TIMESTAMP, MYSQL_TYPE_DATE, MYSQL_TYPE_TIME,
                                         MYSQL_TYPE_DATETIME, MYSQL_TYPE_YEAR, MYSQL_TYPE_NEWDATE, MYSQL_TYPE_VARCHAR,
                                         MYSQL_TYPE_BIT, MYSQL_TYPE_NEWDECIMAL, MYSQL_TYPE_ENUM, MYSQL_TYPE_SET,
                                         MYSQL_TYPE_TINY_BLOB, MYSQL_TYPE_MEDIUM_BLOB, MYSQL_TYPE_LONG_BLOB,
                                         MYSQL_TYPE_BLOB, MYSQL_TYPE_VAR_STRING, MYSQL_TYPE_STRING,
                                         MYSQL_TYPE_GEOMETRY));

TEST_F(CursorStatement, IntegersOfTwoToEightBytesAreInts) {
  AnswerTwice(5, {{"1", "2", "3", "4294967300", "5"}})
      .Fields({{"tiny", MYSQL_TYPE_TINY, 4},
               {"short", MYSQL_TYPE_SHORT, 6},
               {"medium", MYSQL_TYPE_INT24, 9},
               {"long", MYSQL_TYPE_LONGLONG, 20},
               {"int", MYSQL_TYPE_LONG, 11}});
  cursor.Statement("SELECT *");
  cursor.Fetch();
  EXPECT_EQ(Value(0).GetType(), kTypeStr);
  EXPECT_EQ(Value(0).getstr(), "1   ");
  EXPECT_EQ(Value(1).getstr(), "2");
  EXPECT_EQ(Value(2).getstr(), "3");
  EXPECT_EQ(Value(3).getstr(), "4");
  EXPECT_EQ(Value(4).getstr(), "5");
}

// ---- their sizes

TEST_F(CursorStatement, OfADeclaredLengthOfZeroHoldsNoText) {
  AnswerTwice(1, {{""}}).Fields({{"a", MYSQL_TYPE_VAR_STRING, 0}});
  cursor.Statement("SELECT ''");
  cursor.Fetch();
  EXPECT_EQ(Value(0).GetSize(), 0);
  EXPECT_EQ(Value(0).IsNull(), 0);
  EXPECT_EQ(Value(0).getstr(), "");
}

TEST_F(CursorStatement, HoldsTextsAtTheirDeclaredLengthWhereTheRowsFit) {
  AnswerTwice(1, {{"ab"}}).Fields({{"a", MYSQL_TYPE_BLOB, 262140}});
  cursor.Statement("SELECT a");
  EXPECT_EQ(Value(0).GetSize(), 262140);
}

TEST_F(CursorStatement, HoldsTheLongestTextsAsTheyAre) {
  AnswerTwice(2, {{"abc", "x"}, {"defgh", "y"}, {std::nullopt, "z"}})
      .Fields({{"a", MYSQL_TYPE_BLOB, kLongText}, {"b", MYSQL_TYPE_VAR_STRING, 65535}});
  cursor.Statement("SELECT a, b");
  EXPECT_EQ(Value(0).GetSize(), 5);
  EXPECT_EQ(Value(1).GetSize(), 65535);
  cursor.Fetch(1);
  EXPECT_EQ(Value(0).getstr(), "defgh");
}

TEST_F(CursorStatement, HoldsTextsAboveTheBoundAsTheyAreWhenTheRowsWouldNotFit) {
  // 8,200 rows of 262,168 bytes and more.
  AnswerTwice(3, {{"abc", "de", "f"}})
      .Fields({{"a", MYSQL_TYPE_BLOB, 262140}, {"b", MYSQL_TYPE_BLOB, 65536}, {"c", MYSQL_TYPE_VAR_STRING, 255}})
      .AnnouncedRows(8200);
  cursor.Statement("SELECT a, b, c");
  EXPECT_EQ(Value(0).GetSize(), 3);
  EXPECT_EQ(Value(1).GetSize(), 2);
  EXPECT_EQ(Value(2).GetSize(), 255);
  EXPECT_EQ(cursor.Fetch(), 1);
  EXPECT_EQ(Value(0).getstr(), "abc");
}

TEST_F(CursorStatement, HoldsALongTextWithoutRowsInNoRoom) {
  AnswerTwice(1, {}).Fields({{"a", MYSQL_TYPE_BLOB, kLongText}});
  cursor.Statement("SELECT a");
  EXPECT_EQ(Value(0).GetSize(), 0);
  EXPECT_EQ(cursor.Fetch(), 0);
}

TEST_F(CursorStatement, MakesRoomForALongerTextOfTheSecondResult) {
  Answer(1, {{"ab"}}).Fields({{"a", MYSQL_TYPE_BLOB, kLongText}});
  Answer(1, {{"ab"}, {"abcdefgh"}}).Fields({{"a", MYSQL_TYPE_BLOB, kLongText}});
  cursor.Statement("SELECT a");
  cursor.Fetch(1);
  EXPECT_EQ(Value(0).getstr(), "abcdefgh");
  EXPECT_EQ(Value(0).GetName(), "a");
  cursor.Fetch(0);
  EXPECT_EQ(Value(0).getstr(), "ab      ");
}

TEST_F(CursorStatement, MakesRoomForALongerDeclaredLengthOfTheSecondResult) {
  Answer(1, {{"ab"}}).Fields({{"a", MYSQL_TYPE_VAR_STRING, 4}});
  Answer(1, {{"abcdefgh"}}).Fields({{"a", MYSQL_TYPE_VAR_STRING, 8}});
  cursor.Statement("SELECT a");
  cursor.Fetch();
  EXPECT_EQ(Value(0).getstr(), "abcdefgh");
}

TEST_F(CursorStatement, HasTheSizeOfAShorterTextOfTheSecondResult) {
  Answer(1, {{"abcdefgh"}}).Fields({{"a", MYSQL_TYPE_BLOB, kLongText}});
  Answer(1, {{"ab"}}).Fields({{"a", MYSQL_TYPE_BLOB, kLongText}});
  cursor.Statement("SELECT a");
  cursor.Fetch();
  EXPECT_EQ(Value(0).getstr(), "ab");
}

TEST_F(CursorStatement, WhoseSecondResultLostAColumnThrows) {
  Answer(2, {{"1", "2"}});
  Answer(1, {{"1"}});
  EXPECT_EQ(ThrownBy([&] { cursor.Statement("SELECT *"); }), (Thrown{0, kFetchError}));
  EXPECT_EQ(ItemCount(), 0);
  EXPECT_EQ(client.UnfreedResults(), 0U);
}

TEST_F(CursorStatement, WhoseSecondResultGainedAColumnLeavesItOut) {
  Answer(1, {{"1"}});
  Answer(2, {{"1", "2"}});
  cursor.Statement("SELECT *");
  EXPECT_EQ(ItemCount(), 1);
  EXPECT_EQ(cursor.Fetch(), 1);
}

// ---- results that are left

TEST_F(CursorStatement, LeavesNothingBehindAQuery) {
  AnswerTwice(1, {{"1"}});
  cursor.Statement("SELECT 1");
  client.ForgetCalls();
  session->Execute("SET a=1");
  EXPECT_THAT(client.Calls(), ElementsAre("query SET a=1"));
}

class CursorStatementLeftover : public CursorStatement {
 protected:
  void SetUp() override {
    CursorStatement::SetUp();
    Answer(1, {{"t"}}).Matching("SHOW");
    cursor.Statement("SHOW TABLES");
    client.ForgetCalls();
  }
};

TEST_F(CursorStatementLeftover, IsFreedBeforeTheNextStatement) {
  session->Execute("SET a=1");
  EXPECT_THAT(client.Calls(), ElementsAre("store_result", "free_result", "query SET a=1"));
}

TEST_F(CursorStatementLeftover, IsFreedOnce) {
  session->Execute("SET a=1");
  client.ForgetCalls();
  session->Execute("SET a=2");
  EXPECT_THAT(client.Calls(), ElementsAre("query SET a=2"));
}

TEST_F(CursorStatementLeftover, IsFreedBeforeACommit) {
  session->Commit();
  EXPECT_THAT(client.Calls(), ElementsAre("store_result", "free_result", "query COMMIT"));
}

TEST_F(CursorStatementLeftover, IsFreedBeforeARollback) {
  session->Rollback();
  EXPECT_THAT(client.Calls(), ElementsAre("store_result", "free_result", "query ROLLBACK"));
}

TEST_F(CursorStatementLeftover, IsFreedBeforeAPing) {
  EXPECT_TRUE(session->Ping());
  EXPECT_THAT(client.Calls(), ElementsAre("store_result", "free_result", "query DO 0"));
}

TEST_F(CursorStatementLeftover, IsFreedBeforeTheNextStatementOfTheCursor) {
  AnswerTwice(1, {{"1"}});
  cursor.Statement("SELECT 1");
  EXPECT_EQ(cursor.GetAmount(), 1);
  EXPECT_EQ(client.Calls()[0], "store_result");
  EXPECT_EQ(client.Calls()[1], "free_result");
}

TEST_F(CursorStatementLeftover, CanBeTakenFirst) {
  MYSQL_RES* const result = session->FetchMultiple();
  EXPECT_STREQ(mysql_fetch_row(result)[0], "t");
  mysql_free_result(result);
  session->Execute("SET a=1");
  EXPECT_THAT(client.Calls(), ElementsAre("store_result", "free_result", "query SET a=1"));
}

TEST_F(CursorStatementLeftover, GoesWithItsConnection) {
  Reopen({{"AutoCommit", "on"}});
  Answer(1, {{"t"}}).Matching("SHOW");
  cursor.AssignSession(session);
  cursor.Statement("SHOW TABLES");
  session->Disconnect();
  client.ForgetCalls();
  session->Execute("SET a=1");
  EXPECT_THAT(client.Calls(), ElementsAre("init", "connect '' '' '' '' 0", "query SET AUTOCOMMIT=1", "query SET a=1"));
}

TEST_F(CursorStatementLeftover, GoesWithAConnectionThatIsOpenedAnew) {
  session->Connect(false);
  client.ForgetCalls();
  session->Execute("SET a=1");
  EXPECT_THAT(client.Calls(), ElementsAre("query SET a=1"));
}

TEST_F(CursorStatementLeftover, OfAStatementThatReconnectedIsFreedToo) {
  Reopen({{"AutoCommit", "on"}});
  cursor.AssignSession(session);
  client.FailQuery(2006, "gone").Matching("SHOW");
  Answer(1, {{"t"}}).Matching("SHOW");
  cursor.Statement("SHOW TABLES");
  client.ForgetCalls();
  session->Execute("SET a=1");
  EXPECT_THAT(client.Calls(), ElementsAre("store_result", "free_result", "query SET a=1"));
}

// ---- results of a CALL

TEST_F(CursorStatement, OfACallLeavesNoResultInTheWayOfTheNext) {
  Answer(1, {{"1"}}).Then(1, {{"2"}}).Then();
  cursor.Statement("CALL p()");
  EXPECT_EQ(client.UnfreedResults(), 1U);
  session->Execute("SET a=1");
  EXPECT_THAT(client.Calls(),
              ElementsAre("query CALL p()", "store_result", "next_result", "store_result", "free_result", "next_result",
                          "store_result", "next_result", "free_result", "query SET a=1"));
}

TEST_F(CursorStatement, OfACallWhoseFirstResultWasTakenLeavesTheOthersToBeFreed) {
  Answer(1, {{"1"}}).Then(1, {{"2"}}).Then();
  cursor.Statement("CALL p()");
  mysql_free_result(session->FetchMultiple());
  session->Execute("SET a=1");
  EXPECT_EQ(client.Calls().back(), "query SET a=1");
  EXPECT_THAT(client.Calls(), Not(Contains("init")));
  EXPECT_EQ(client.UnfreedResults(), 0U);
}

TEST_F(CursorStatement, OfACallWithSelectIsReadAndLeavesTheOtherResultsToBeFreed) {
  AnswerTwice(1, {{"1"}, {"2"}}).Then(1, {{"3"}}).Then();
  cursor.Statement("CALL selected()");
  EXPECT_EQ(cursor.GetAmount(), 2);
  session->Execute("SET a=1");
  EXPECT_THAT(Statements(), ElementsAre("CALL selected()", "CALL selected()", "SET a=1"));
  EXPECT_THAT(client.Calls(), Not(Contains("init")));
  EXPECT_EQ(client.UnfreedResults(), 0U);
}

TEST_F(CursorStatement, OfACallThatRunsAgainLeavesItsResultsToBeFreed) {
  Answer(1, {{"1"}}).Then().Times(3);
  cursor.Statement("CALL selected()");
  delete cursor.Detach();
  cursor.Open();
  session->Execute("SET a=1");
  EXPECT_THAT(Statements(), ElementsAre("CALL selected()", "CALL selected()", "CALL selected()", "SET a=1"));
  EXPECT_THAT(client.Calls(), Not(Contains("init")));
}

TEST_F(CursorStatement, OfACallThatFailsOnItsWayLeavesTheNextStatementAlone) {
  Answer(1, {{"1"}}).Then(1, {{"2"}}).Then();
  client.FailNextResult(1146, "no table");
  EXPECT_EQ(ThrownBy([&] { cursor.Statement("CALL p()"); }),
            (Thrown{102, "DB Error 1146 (no table) in query\n\b\nCALL p()"}));
  session->Execute("SET a=1");
  EXPECT_THAT(Statements(), ElementsAre("CALL p()", "SET a=1"));
  EXPECT_THAT(client.Calls(), Not(Contains("init")));
  EXPECT_EQ(client.UnfreedResults(), 0U);
}

TEST_F(CursorStatement, OfACallWhoseLaterStatementAForeignKeyForbidsThrowsItsNumber) {
  Answer(1, {{"1"}}).Then(1, {{"2"}}).Then();
  client.FailNextResult(1217, "parent");
  EXPECT_EQ(ThrownBy([&] { cursor.Statement("CALL p()"); }),
            (Thrown{100, "DB Error 1217 (parent) in query\n\b\nCALL p()"}));
}

TEST_F(CursorStatement, OfACallWhoseFirstResultIsLostThrows) {
  Answer(1, {{"1"}}).Then();
  client.FailStoreResult(1317, "interrupted");
  EXPECT_EQ(ThrownBy([&] { cursor.Statement("CALL p()"); }),
            (Thrown{102, "DB Error 1317 (interrupted) in query\n\b\nCALL p()"}));
  EXPECT_EQ(client.UnfreedResults(), 0U);
}

TEST_F(CursorStatement, OfACallIsForgottenWithItsConnection) {
  Reopen({{"AutoCommit", "on"}});
  cursor.AssignSession(session);
  Answer(1, {{"1"}}).Then();
  cursor.Statement("CALL p()");
  session->Disconnect();
  client.ForgetCalls();
  session->Execute("SET a=1");
  EXPECT_THAT(client.Calls(), ElementsAre("init", "connect '' '' '' '' 0", "query SET AUTOCOMMIT=1", "query SET a=1"));
}

class CursorStatementCall : public CursorStatement, public testing::WithParamInterface<char const*> {
 protected:
  void Run() {
    Answer(1, {{"1"}}).Matching(GetParam());
    cursor.Statement(GetParam());
    session->Execute("SET a=1");
  }
};

TEST_P(CursorStatementCall, IsAskedForFurtherResults) {
  Run();
  EXPECT_THAT(client.Calls(), Contains("next_result"));
}

INSTANTIATE_TEST_SUITE_P(Texts, CursorStatementCall,
                         testing::Values("CALL p()", "call p", "CaLl p()", " \t\r\n\v\fCALL p()", "CALL\tp()",
                                         "CALL`p`()", "CALL/**/p()", "/* first */CALL p()", "/* a */ /* b */ CALL p()",
                                         "-- first\nCALL p()", "# first\n CALL p()", "/**/CALL p()",
                                         "/* -- */ # /*\n CALL p()", "/*/ first */ CALL p()"));

using CursorStatementNoCall = CursorStatementCall;
TEST_P(CursorStatementNoCall, IsNotAskedForFurtherResults) {
  Run();
  EXPECT_THAT(client.Calls(), Not(Contains("next_result")));
  EXPECT_EQ(client.UnfreedResults(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Texts, CursorStatementNoCall,
                         testing::Values("SHOW TABLES", "callers", "CALL_ p", "CALL1 p", "CAL p()", "SHOW CALL p()",
                                         "UPDATE t SET a='CALL p()'", "/* CALL p()", "-- CALL p()", "# CALL p()",
                                         "/* CALL p() */ SHOW TABLES", "/*"));

}  // namespace
}  // namespace corvane::test
