#include <mysql.h>

#include "tests/support/live.h"

using corvane::test::Failure;
using corvane::test::FailureOf;
using corvane::test::Item;
using corvane::test::ItemTest;
using corvane::test::Session;

namespace {

class FetchRows : public ItemTest {
 protected:
  void CreateTables() override {
    ItemTest::CreateTables();
    Run("INSERT INTO item VALUES (1, 'one'), (2, 'two'), (3, 'three')");
  }
};

using FetchRowsDeathTest = FetchRows;

TEST_F(FetchRows, FirstOfSeveralRowsIsRead) {
  Session session(With());
  Item item;
  session.Execute("SELECT id, name FROM item ORDER BY id DESC");
  EXPECT_EQ(session.Fetch(item), 1);
  EXPECT_EQ(static_cast<int>(item.id), 3);
  EXPECT_EQ(item.name, "three");
}

TEST_F(FetchRows, FurtherColumnsAreLeftOut) {
  Session session(With());
  Item item;
  session.Execute("SELECT id, name, NOW(), 'more' FROM item WHERE id=2");
  EXPECT_EQ(session.Fetch(item), 1);
  EXPECT_EQ(static_cast<int>(item.id), 2);
  EXPECT_EQ(item.name, "two");
}

TEST_F(FetchRows, ColumnsAreTakenByPositionNotByName) {
  Session session(With());
  Item item;
  session.Execute("SELECT id AS name, name AS id FROM item WHERE id=2");
  session.Fetch(item);
  EXPECT_EQ(static_cast<int>(item.id), 2);
  EXPECT_EQ(item.name, "two");
}

TEST_F(FetchRows, NoRowLeavesTheRecord) {
  Session session(With());
  Item item(7, "seven");
  session.Execute("SELECT id, name FROM item WHERE id=99");
  EXPECT_EQ(session.Fetch(item), 0);
  EXPECT_EQ(static_cast<int>(item.id), 7);
  EXPECT_EQ(item.name, "seven");
}

TEST_F(FetchRows, StatementWithoutAResultGivesNothingToFetch) {
  Session session(With());
  Item item;
  session.Execute("DELETE FROM item");
  EXPECT_EQ(FailureOf([&] { session.Fetch(item); }), (Failure{0, "MySQL fetch error. "}));
}

TEST_F(FetchRows, ResultIsTakenOnceOnly) {
  Session session(With());
  Item item;
  session.Execute("SELECT id, name FROM item");
  session.Fetch(item);
  EXPECT_EQ(FailureOf([&] { session.Fetch(item); }), (Failure{0, "MySQL fetch error. "}));
}

TEST_F(FetchRows, FetchFreesTheConnectionForTheNextStatement) {
  Session session(WithTransactions());
  Item item;
  session.Execute("SELECT id, name FROM item");
  session.Fetch(item);
  EXPECT_EQ(session.Execute("DELETE FROM item WHERE id=1"), 1U);
}

TEST_F(FetchRows, FetchMultipleGivesEveryRow) {
  Session session(With());
  session.Execute("SELECT id, name FROM item");
  MYSQL_RES* const result = session.FetchMultiple();
  EXPECT_EQ(mysql_num_rows(result), 3U);
  mysql_free_result(result);
}

TEST_F(FetchRows, FetchMultipleWithoutAResultFails) {
  Session session(With());
  session.Execute("DELETE FROM item");
  EXPECT_EQ(FailureOf([&] { session.FetchMultiple(); }), (Failure{0, "MySQL fetch error. "}));
}

TEST_F(FetchRows, FetchMultipleAfterDisconnectFails) {
  Session session(With());
  session.Execute("SELECT id, name FROM item");
  session.Disconnect();
  EXPECT_EQ(FailureOf([&] { session.FetchMultiple(); }), (Failure{0, "MySQL fetch error. "}));
}

TEST_F(FetchRowsDeathTest, FewerColumnsThanTheRecordHasEndTheProgram) {
  Session session(With());
  Item item;
  session.Execute("SELECT id FROM item");
  EXPECT_DEATH(session.Fetch(item), "int ASSession::Fetch\\(ASDomain&\\).*mysql_num_fields\\(res\\) >= d\\.size\\(\\)");
}

TEST_F(FetchRows, StatementWithTableReferenceAndAliasedColumnsIsRead) {
  Session session(With());
  Item item;
  Str statement;
  statement << "SELECT " << item.idColumn.Query() << ", " << item.nameColumn.Query() << " FROM ("
            << item.Query("`", "`") << ") WHERE " << item.idColumn.Query() << "=2";
  session.Execute(statement);
  session.Fetch(item);
  EXPECT_EQ(item.name, "two");
}

TEST_F(FetchRows, TableReferenceOfAQualifiedNameIsRead) {
  Session session(With({{"Database", ""}}));
  ASDomain record((Schema() + ".item").c_str(), "Item");
  ASVStr name(20);
  ASAttribute nameColumn("name");
  record.Add(nameColumn, name);
  Str statement;
  statement << "SELECT " << nameColumn.Query() << " FROM (" << record.Query("`", "`") << ") WHERE id=2";
  session.Execute(statement);
  session.Fetch(record);
  EXPECT_EQ(name, "two");
}

}  // namespace
