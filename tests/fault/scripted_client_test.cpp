#include "tests/support/scripted_client.h"

#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstring>
#include <string>
#include <vector>

#include "tests/support/scripted_session.h"

namespace corvane::test {
namespace {

using testing::ElementsAre;

// The functions by the address that the program's own code calls, and by the one that shared libraries are bound to.
TEST(ScriptedClient, TakesPrecedenceOverTheClientLibraryAndOverSleep) {
  struct {
    char const* name;
    void* own;
  } const functions[] = {
      {"mysql_init", reinterpret_cast<void*>(&mysql_init)},
      {"mysql_real_connect", reinterpret_cast<void*>(&mysql_real_connect)},
      {"mysql_close", reinterpret_cast<void*>(&mysql_close)},
      {"mysql_query", reinterpret_cast<void*>(&mysql_query)},
      {"mysql_store_result", reinterpret_cast<void*>(&mysql_store_result)},
      {"mysql_use_result", reinterpret_cast<void*>(&mysql_use_result)},
      {"mysql_next_result", reinterpret_cast<void*>(&mysql_next_result)},
      {"mysql_fetch_fields", reinterpret_cast<void*>(&mysql_fetch_fields)},
      {"mysql_fetch_row", reinterpret_cast<void*>(&mysql_fetch_row)},
      {"mysql_fetch_lengths", reinterpret_cast<void*>(&mysql_fetch_lengths)},
      {"mysql_num_fields", reinterpret_cast<void*>(&mysql_num_fields)},
      {"mysql_num_rows", reinterpret_cast<void*>(&mysql_num_rows)},
      {"mysql_free_result", reinterpret_cast<void*>(&mysql_free_result)},
      {"mysql_affected_rows", reinterpret_cast<void*>(&mysql_affected_rows)},
      {"mysql_insert_id", reinterpret_cast<void*>(&mysql_insert_id)},
      {"mysql_errno", reinterpret_cast<void*>(&mysql_errno)},
      {"mysql_error", reinterpret_cast<void*>(&mysql_error)},
      {"sleep", reinterpret_cast<void*>(&sleep)},
  };
  for (auto const& function : functions) {
    EXPECT_EQ(dlsym(RTLD_DEFAULT, function.name), function.own) << function.name;
  }
}

class ScriptedClientCalls : public ScriptedSession {
 protected:
  // A handle of its own, connected.
  void SetUp() override {
    ScriptedSession::SetUp();
    handle = mysql_init(nullptr);
    ASSERT_EQ(mysql_real_connect(handle, "host", "user", "password", "database", 3306, nullptr, 0), handle);
  }
  void TearDown() override {
    mysql_close(handle);
    ScriptedSession::TearDown();
  }

  MYSQL* handle = nullptr;
};

TEST_F(ScriptedClientCalls, AreThoseThatASessionMakes) {
  client.ForgetCalls();
  Construct({{"Host", "h"}, {"UserName", "u"}, {"Password", "p"}, {"Database", "d"}, {"Port", "3307"}});
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("2 init", "2 connect h u p d 3307", "2 query SET AUTOCOMMIT=0"));
}

TEST_F(ScriptedClientCalls, SucceedWithoutAScript) {
  EXPECT_EQ(mysql_query(handle, "SELECT 1"), 0);
  EXPECT_EQ(mysql_errno(handle), 0U);
  EXPECT_STREQ(mysql_error(handle), "");
  EXPECT_EQ(mysql_store_result(handle), nullptr);
}

TEST_F(ScriptedClientCalls, FailAsScriptedForThoseThatMatchAfterThoseThatPass) {
  client.FailQuery(1062, "Duplicate").Matching("INSERT").After(1).Times(2);
  EXPECT_EQ(mysql_query(handle, "INSERT 1"), 0);
  EXPECT_EQ(mysql_query(handle, "SELECT 2"), 0);
  EXPECT_EQ(mysql_query(handle, "INSERT 3"), 1);
  EXPECT_EQ(mysql_query(handle, "SELECT 4"), 0);
  EXPECT_EQ(mysql_query(handle, "INSERT 5"), 1);
  EXPECT_EQ(mysql_errno(handle), 1062U);
  EXPECT_STREQ(mysql_error(handle), "Duplicate");
  EXPECT_EQ(mysql_query(handle, "INSERT 6"), 0);
  EXPECT_EQ(mysql_errno(handle), 0U);
}

TEST_F(ScriptedClientCalls, FailOneFailureAfterTheOther) {
  client.FailQuery(2006, "gone");
  client.FailQuery(2013, "lost").After(1);
  mysql_query(handle, "a");
  EXPECT_EQ(mysql_errno(handle), 2006U);
  mysql_query(handle, "b");
  EXPECT_EQ(mysql_errno(handle), 2013U);
}

TEST_F(ScriptedClientCalls, GiveRowsByteForByte) {
  client.AnswerQuery(2, {{std::string("a\0b", 3), std::nullopt}, {"", "x"}});
  mysql_query(handle, "SELECT");
  MYSQL_RES* const result = mysql_store_result(handle);
  EXPECT_EQ(mysql_num_fields(result), 2U);
  EXPECT_EQ(mysql_num_rows(result), 2U);
  MYSQL_ROW row = mysql_fetch_row(result);
  EXPECT_EQ(mysql_fetch_lengths(result)[0], 3U);
  EXPECT_EQ(std::memcmp(row[0], "a\0b", 4), 0);
  EXPECT_EQ(row[1], nullptr);
  EXPECT_EQ(mysql_fetch_lengths(result)[1], 0U);
  row = mysql_fetch_row(result);
  EXPECT_STREQ(row[0], "");
  EXPECT_STREQ(row[1], "x");
  EXPECT_EQ(mysql_fetch_row(result), nullptr);
  EXPECT_EQ(client.UnfreedResults(), 1U);
  mysql_free_result(result);
}

TEST_F(ScriptedClientCalls, AreOutOfStepOnceAResultWasNotTaken) {
  client.AnswerQuery(1, {{"1"}});
  mysql_query(handle, "SELECT 1");
  EXPECT_EQ(mysql_query(handle, "SELECT 2"), 1);
  EXPECT_EQ(mysql_errno(handle), 2014U);
  EXPECT_EQ(mysql_store_result(handle), nullptr);
  EXPECT_EQ(mysql_query(handle, "SELECT 3"), 1);
}

TEST_F(ScriptedClientCalls, DescribeColumnsByDefault) {
  client.AnswerQuery(2, {{"a", "bcd"}, {std::nullopt, "ef"}});
  mysql_query(handle, "SELECT");
  MYSQL_RES* const result = mysql_store_result(handle);
  MYSQL_FIELD const* const fields = mysql_fetch_fields(result);
  EXPECT_STREQ(fields[0].name, "f1");
  EXPECT_STREQ(fields[1].name, "f2");
  EXPECT_EQ(fields[1].type, MYSQL_TYPE_VAR_STRING);
  EXPECT_EQ(fields[1].length, 255U);
  EXPECT_EQ(fields[0].max_length, 1U);
  EXPECT_EQ(fields[1].max_length, 3U);
  mysql_free_result(result);
}

TEST_F(ScriptedClientCalls, DescribeColumnsAsScriptedWithTheLengthsOfTheRows) {
  client.AnswerQuery(2, {{"1", std::string("a\0bc", 4)}})
      .Fields({{"id", MYSQL_TYPE_LONG, 11}, {"note", MYSQL_TYPE_BLOB, 4294967295}});
  mysql_query(handle, "SELECT");
  MYSQL_RES* const result = mysql_store_result(handle);
  MYSQL_FIELD const* const fields = mysql_fetch_fields(result);
  EXPECT_STREQ(fields[0].name, "id");
  EXPECT_EQ(fields[0].type, MYSQL_TYPE_LONG);
  EXPECT_EQ(fields[0].length, 11U);
  EXPECT_STREQ(fields[1].name, "note");
  EXPECT_EQ(fields[1].length, 4294967295U);
  EXPECT_EQ(fields[1].max_length, 4U);
  mysql_free_result(result);
}

TEST_F(ScriptedClientCalls, AnnounceAsManyRowsAsScripted) {
  client.AnswerQuery(1, {{"1"}}).AnnouncedRows(5000000000);
  mysql_query(handle, "SELECT");
  MYSQL_RES* const result = mysql_store_result(handle);
  EXPECT_EQ(mysql_num_rows(result), 5000000000U);
  EXPECT_NE(mysql_fetch_row(result), nullptr);
  EXPECT_EQ(mysql_fetch_row(result), nullptr);
  mysql_free_result(result);
}

TEST_F(ScriptedClientCalls, GoToFurtherResultsOneByOne) {
  client.AnswerQuery(1, {{"1"}}).Then(2, {{"2", "3"}}).Then();
  mysql_query(handle, "CALL p()");
  mysql_free_result(mysql_store_result(handle));
  client.ForgetCalls();
  EXPECT_EQ(mysql_next_result(handle), 0);
  MYSQL_RES* const second = mysql_store_result(handle);
  EXPECT_EQ(mysql_num_fields(second), 2U);
  EXPECT_STREQ(mysql_fetch_row(second)[1], "3");
  mysql_free_result(second);
  EXPECT_EQ(mysql_next_result(handle), 0);
  EXPECT_EQ(mysql_store_result(handle), nullptr);
  EXPECT_EQ(mysql_next_result(handle), -1);
  EXPECT_EQ(mysql_query(handle, "SELECT 1"), 0);
  EXPECT_THAT(client.Calls(), ElementsAre("next_result", "store_result", "free_result", "next_result", "store_result",
                                          "next_result", "query SELECT 1"));
}

TEST_F(ScriptedClientCalls, AreOutOfStepUntilFurtherResultsAreTaken) {
  client.AnswerQuery(1, {{"1"}}).Then(1, {{"2"}});
  mysql_query(handle, "CALL p()");
  EXPECT_EQ(mysql_next_result(handle), 1);
  EXPECT_EQ(mysql_errno(handle), 2014U);
  mysql_free_result(mysql_store_result(handle));
  EXPECT_EQ(mysql_query(handle, "SELECT 1"), 1);
  EXPECT_EQ(mysql_errno(handle), 2014U);
  EXPECT_EQ(mysql_next_result(handle), 0);
  mysql_free_result(mysql_store_result(handle));
  EXPECT_EQ(mysql_query(handle, "SELECT 1"), 0);
}

TEST_F(ScriptedClientCalls, FailOnTheWayToAFurtherResult) {
  client.AnswerQuery().Then();
  client.FailNextResult(1146, "no table");
  EXPECT_EQ(mysql_next_result(handle), -1);
  mysql_query(handle, "CALL p()");
  EXPECT_EQ(mysql_next_result(handle), 1);
  EXPECT_EQ(mysql_errno(handle), 1146U);
  EXPECT_EQ(mysql_next_result(handle), -1);
}

// ---- a result that is not stored

// Of the rows "1", "2" and "3".
class ScriptedClientUnstored : public ScriptedClientCalls {
 protected:
  MYSQL_RES* Taken() {
    client.AnswerQuery(1, {{"1"}, {"2"}, {"3"}});
    mysql_query(handle, "SELECT");
    client.ForgetCalls();
    return mysql_use_result(handle);
  }

  // Reads to the end.
  static unsigned CountRows(MYSQL_RES* result) {
    unsigned rows = 0;
    while (mysql_fetch_row(result) != nullptr) ++rows;
    return rows;
  }
};

TEST_F(ScriptedClientUnstored, GivesItsRowsOneByOneAndCountsThem) {
  MYSQL_RES* const result = Taken();
  EXPECT_EQ(mysql_num_fields(result), 1U);
  EXPECT_EQ(mysql_num_rows(result), 0U);
  EXPECT_EQ(mysql_fetch_lengths(result), nullptr);
  EXPECT_STREQ(mysql_fetch_row(result)[0], "1");
  EXPECT_EQ(mysql_fetch_lengths(result)[0], 1U);
  EXPECT_EQ(mysql_num_rows(result), 1U);
  EXPECT_EQ(CountRows(result), 2U);
  EXPECT_EQ(mysql_num_rows(result), 3U);
  EXPECT_EQ(mysql_fetch_row(result), nullptr);
  EXPECT_EQ(mysql_errno(handle), 0U);
  mysql_free_result(result);
  EXPECT_THAT(client.Calls(), ElementsAre("use_result", "free_result"));
}

TEST_F(ScriptedClientUnstored, SaysNothingOfRowsThatWereAnnounced) {
  client.AnswerQuery(1, {{"1"}}).AnnouncedRows(7);
  mysql_query(handle, "SELECT");
  MYSQL_RES* const result = mysql_use_result(handle);
  EXPECT_EQ(mysql_num_rows(result), 0U);
  EXPECT_EQ(CountRows(result), 1U);
  mysql_free_result(result);
}

TEST_F(ScriptedClientUnstored, KnowsNoLengthsOfItsColumns) {
  MYSQL_RES* const result = Taken();
  EXPECT_EQ(mysql_fetch_fields(result)[0].length, 255U);
  EXPECT_EQ(mysql_fetch_fields(result)[0].max_length, 0U);
  mysql_free_result(result);
}

TEST_F(ScriptedClientUnstored, KeepsItsHandleBusyUntilItsEndWasRead) {
  MYSQL_RES* const result = Taken();
  for (unsigned row = 0; row < 4; ++row) {
    EXPECT_EQ(mysql_query(handle, "DO 0"), 1);
    EXPECT_EQ(mysql_errno(handle), 2014U);
    EXPECT_EQ(mysql_fetch_row(result) != nullptr, row < 3) << row;
  }
  EXPECT_EQ(mysql_errno(handle), 2014U);
  EXPECT_EQ(mysql_query(handle, "DO 0"), 0);
  EXPECT_EQ(mysql_errno(handle), 0U);
  mysql_free_result(result);
}

TEST_F(ScriptedClientUnstored, WithoutRowsKeepsItsHandleBusyToo) {
  client.AnswerQuery(1, {});
  mysql_query(handle, "SELECT");
  MYSQL_RES* const result = mysql_use_result(handle);
  EXPECT_EQ(mysql_query(handle, "DO 0"), 1);
  EXPECT_EQ(mysql_fetch_row(result), nullptr);
  EXPECT_EQ(mysql_query(handle, "DO 0"), 0);
  mysql_free_result(result);
}

TEST_F(ScriptedClientUnstored, AdmitsNoOtherResultMeanwhile) {
  client.AnswerQuery(1, {{"1"}}).Then(1, {{"2"}});
  mysql_query(handle, "CALL p()");
  MYSQL_RES* const result = mysql_use_result(handle);
  EXPECT_EQ(mysql_store_result(handle), nullptr);
  EXPECT_EQ(mysql_errno(handle), 2014U);
  EXPECT_EQ(mysql_use_result(handle), nullptr);
  EXPECT_EQ(mysql_next_result(handle), 1);
  EXPECT_EQ(CountRows(result), 1U);
  EXPECT_EQ(mysql_next_result(handle), 0);
  MYSQL_RES* const further = mysql_use_result(handle);
  EXPECT_STREQ(mysql_fetch_row(further)[0], "2");
  mysql_free_result(further);
  mysql_free_result(result);
  EXPECT_EQ(mysql_query(handle, "DO 0"), 0);
}

TEST_F(ScriptedClientUnstored, IsReadToItsEndByBeingFreed) {
  mysql_free_result(Taken());
  EXPECT_EQ(mysql_query(handle, "DO 0"), 0);
  MYSQL_RES* const result = Taken();
  mysql_fetch_row(result);
  mysql_free_result(result);
  EXPECT_EQ(mysql_query(handle, "DO 0"), 0);
}

TEST_F(ScriptedClientUnstored, HasNoMoreRowsOnceItsHandleIsClosed) {
  MYSQL_RES* const result = Taken();
  mysql_fetch_row(result);
  mysql_close(handle);
  EXPECT_EQ(mysql_fetch_row(result), nullptr);
  mysql_free_result(result);
  handle = mysql_init(nullptr);
}

TEST_F(ScriptedClientUnstored, IsNoneOfAStatementWithoutResultOrOfOneThatWasRead) {
  mysql_query(handle, "DO 0");
  EXPECT_EQ(mysql_use_result(handle), nullptr);
  EXPECT_EQ(mysql_errno(handle), 0U);
  MYSQL_RES* const result = Taken();
  CountRows(result);
  EXPECT_EQ(mysql_use_result(handle), nullptr);
  EXPECT_EQ(mysql_errno(handle), 0U);
  mysql_free_result(result);
}

TEST_F(ScriptedClientUnstored, ThatThereIsNoMemoryForLeavesTheHandleOutOfStep) {
  client.FailUseResult(2008, "out of memory");
  EXPECT_EQ(Taken(), nullptr);
  EXPECT_EQ(mysql_errno(handle), 2008U);
  EXPECT_STREQ(mysql_error(handle), "out of memory");
  EXPECT_EQ(mysql_query(handle, "DO 0"), 1);
  EXPECT_EQ(mysql_errno(handle), 2014U);
  EXPECT_EQ(mysql_use_result(handle), nullptr);
  EXPECT_EQ(mysql_query(handle, "DO 0"), 1);
}

TEST_F(ScriptedClientUnstored, ThatThereIsNoMemoryForMayBeTakenAfterAll) {
  client.FailUseResult(2008, "out of memory");
  EXPECT_EQ(Taken(), nullptr);
  mysql_free_result(mysql_use_result(handle));
  EXPECT_EQ(mysql_query(handle, "DO 0"), 0);
}

TEST_F(ScriptedClientUnstored, BreaksOffAsScripted) {
  client.FailFetchRow(1317, "interrupted").After(2);
  MYSQL_RES* const result = Taken();
  EXPECT_EQ(CountRows(result), 2U);
  EXPECT_EQ(mysql_errno(handle), 1317U);
  EXPECT_STREQ(mysql_error(handle), "interrupted");
  EXPECT_EQ(mysql_fetch_row(result), nullptr);
  EXPECT_EQ(mysql_errno(handle), 1317U);
  EXPECT_EQ(mysql_query(handle, "DO 0"), 0);
  EXPECT_EQ(mysql_errno(handle), 0U);
  mysql_free_result(result);
}

TEST_F(ScriptedClientUnstored, BreaksOffInPlaceOfItsEnd) {
  client.FailFetchRow(1317, "interrupted").After(3);
  MYSQL_RES* const result = Taken();
  EXPECT_EQ(CountRows(result), 3U);
  EXPECT_EQ(mysql_errno(handle), 1317U);
  mysql_free_result(result);
}

TEST_F(ScriptedClientUnstored, BreaksOffWhileItIsFreed) {
  client.FailFetchRow(1317, "interrupted").After(2);
  MYSQL_RES* const result = Taken();
  mysql_fetch_row(result);
  mysql_free_result(result);
  EXPECT_EQ(mysql_errno(handle), 1317U);
  EXPECT_EQ(mysql_query(handle, "DO 0"), 0);
}

TEST_F(ScriptedClientUnstored, TakesTheConnectionWithItWhenThatIsLost) {
  client.FailFetchRow(2013, "lost").After(1);
  MYSQL_RES* const result = Taken();
  EXPECT_EQ(CountRows(result), 1U);
  EXPECT_EQ(mysql_errno(handle), 2013U);
  EXPECT_EQ(mysql_query(handle, "DO 0"), 1);
  EXPECT_EQ(mysql_errno(handle), 2006U);
  mysql_free_result(result);
  EXPECT_EQ(mysql_query(handle, "DO 0"), 1);
}

// A stored result has been read already.
TEST_F(ScriptedClientUnstored, BreaksOffWithoutHarmToOneThatIsStored) {
  client.FailFetchRow(1317, "interrupted");
  client.AnswerQuery(1, {{"1"}, {"2"}});
  mysql_query(handle, "SELECT");
  MYSQL_RES* const stored = mysql_store_result(handle);
  EXPECT_EQ(CountRows(stored), 2U);
  EXPECT_EQ(mysql_errno(handle), 0U);
  mysql_free_result(stored);
  mysql_free_result(Taken());
  EXPECT_EQ(mysql_errno(handle), 1317U);
}

// ---- the numbers and the rest

TEST_F(ScriptedClientCalls, AnswerServerGoneOnAHandleThatWasNeverConnected) {
  MYSQL* const fresh = mysql_init(nullptr);
  EXPECT_EQ(mysql_query(fresh, "SELECT 1"), 1);
  EXPECT_EQ(mysql_errno(fresh), 2006U);
  mysql_close(fresh);
}

TEST_F(ScriptedClientCalls, AreFollowedByTheNumbersOfTheirAnswer) {
  client.SetAffectedRows(3);
  client.AnswerQuery().Matching("UPDATE").AffectedRows(7).InsertId(9);
  mysql_query(handle, "UPDATE");
  EXPECT_EQ(mysql_affected_rows(handle), 7U);
  EXPECT_EQ(mysql_insert_id(handle), 9U);
  mysql_query(handle, "INSERT");
  EXPECT_EQ(mysql_affected_rows(handle), 3U);
  EXPECT_EQ(mysql_insert_id(handle), 0U);
}

TEST_F(ScriptedClientCalls, RecordTheSecondsOfAPauseThatTakesNoTime) {
  client.ForgetCalls();
  EXPECT_EQ(sleep(1000), 0U);
  EXPECT_THAT(client.Calls(), ElementsAre("sleep 1000"));
}

}  // namespace
}  // namespace corvane::test
