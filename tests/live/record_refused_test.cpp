#include <gmock/gmock.h>

#include <string>

#include "tests/support/live.h"

using corvane::test::Failure;
using corvane::test::FailureOf;
using corvane::test::Item;
using corvane::test::ItemTest;
using corvane::test::Rows;
using corvane::test::Session;

namespace {

// The texts of syntax errors name the server, so they are compared with those that the observer gets.
class RecordRefused : public ItemTest {
 protected:
  Failure FailureWithServersText(unsigned number, std::string const& statement) {
    EXPECT_EQ(Refusal(statement), number);
    return {102, "DB Error " + std::to_string(number) + " (" + RefusalText() + ") in query\n\b\n" + statement};
  }
};

TEST_F(RecordRefused, DuplicateKey) {
  Run("INSERT INTO item VALUES (1, 'one')");
  Session session(With());
  Item const item(1, "again");
  EXPECT_EQ(FailureOf([&] { session.Insert(item); }),
            (Failure{102,
                     "DB Error 1062 (Duplicate entry '1' for key 'PRIMARY') in query\n\b\n"
                     "INSERT INTO `item` (`id`, `name`) VALUES ('1', 'again')"}));
  EXPECT_EQ(StoredRows("SELECT id, name FROM item"), (Rows{{"1", "one"}}));
}

TEST_F(RecordRefused, MissingTable) {
  Run("DROP TABLE item");
  Session session(With());
  Item item(1, "one");
  EXPECT_EQ(FailureOf([&] { session.Select(item); }),
            (Failure{102, "DB Error 1146 (Table '" + Schema() +
                              ".item' doesn't exist) in query\n\b\n"
                              "SELECT `id`, `name` FROM `item` WHERE `id`='1' FOR UPDATE"}));
}

TEST_F(RecordRefused, SyntaxError) {
  Session session(With());
  Failure const expected = FailureWithServersText(1064, "SELEKT 1");
  EXPECT_EQ(FailureOf([&] { session.Execute("SELEKT 1"); }), expected);
}

TEST_F(RecordRefused, ErrorOfAForeignKeyHasANumberOfItsOwn) {
  Session session(With());
  char const* const statement = "SIGNAL SQLSTATE '23000' SET MYSQL_ERRNO=1217, MESSAGE_TEXT='Cannot delete'";
  EXPECT_EQ(FailureOf([&] { session.Execute(statement); }),
            (Failure{100, std::string("DB Error 1217 (Cannot delete) in query\n\b\n") + statement}));
}

TEST_F(RecordRefused, ParentRowWithChildren) {
  Run("CREATE TABLE child (item INT, FOREIGN KEY (item) REFERENCES item (id))");
  Run("INSERT INTO item VALUES (1, 'one')");
  Run("INSERT INTO child VALUES (1)");
  Session session(With());
  Item const item(1, "one");
  Failure const expected = FailureWithServersText(1451, "DELETE FROM `item` WHERE `id`='1'");
  EXPECT_EQ(FailureOf([&] { session.Delete(item); }), expected);
}

TEST_F(RecordRefused, StatementsOfModeOne) {
  Session session(With());
  Item const item(1, "one");
  EXPECT_EQ(session.SelectQuery(item, 1), "SELECT `id`, `name` FROM `item` WHERE `id`=:id FOR UPDATE");
  EXPECT_EQ(session.UpdateQuery(item, 1), "UPDATE `item` SET `name`='one' WHERE `id`=:id");
  EXPECT_EQ(session.DeleteQuery(item, 1), "DELETE FROM `item` WHERE `id`=:id");
  EXPECT_EQ(session.SaveQuery(item, 1), "INSERT INTO `itemArc` (id, name) SELECT id, name FROM `item` WHERE id=:id");
  Failure expected = FailureWithServersText(1064, "SELECT `id`, `name` FROM `item` WHERE `id`=:id FOR UPDATE");
  EXPECT_EQ(FailureOf([&] { session.Execute(session.SelectQuery(item, 1)); }), expected);
  expected = FailureWithServersText(1064, "UPDATE `item` SET `name`='one' WHERE `id`=:id");
  EXPECT_EQ(FailureOf([&] { session.Execute(session.UpdateQuery(item, 1)); }), expected);
  expected = FailureWithServersText(1064, "DELETE FROM `item` WHERE `id`=:id");
  EXPECT_EQ(FailureOf([&] { session.Execute(session.DeleteQuery(item, 1)); }), expected);
  expected = FailureWithServersText(1064, "INSERT INTO `itemArc` (id, name) SELECT id, name FROM `item` WHERE id=:id");
  EXPECT_EQ(FailureOf([&] { session.Execute(session.SaveQuery(item, 1)); }), expected);
}

TEST_F(RecordRefused, UpdateOfARecordOfKeysOnly) {
  Session session(With());
  ASDomain record("item", "Item");
  ASInt id;
  ASAttribute idColumn("id", "Id", 0, corvane::kKey);
  record.Add(idColumn, id);
  id = 1;
  Failure const expected = FailureWithServersText(1064, "UPDATE `item` SET  WHERE `id`='1'");
  EXPECT_EQ(FailureOf([&] { session.Update(record); }), expected);
}

TEST_F(RecordRefused, SelectOfARecordWithoutColumns) {
  Session session(With());
  ASDomain record("item", "Item");
  Failure const expected = FailureWithServersText(1064, "SELECT  FROM `item` FOR UPDATE");
  EXPECT_EQ(FailureOf([&] { session.Select(record); }), expected);
}

TEST_F(RecordRefused, TableNameQualifiedByASchema) {
  Session session(With());
  ASDomain record("shop.items", "Items");
  ASInt id;
  ASAttribute idColumn("id", "Id", 0, corvane::kKey);
  record.Add(idColumn, id);
  id = 1;
  Failure const expected = FailureWithServersText(1146, "DELETE FROM `shop.items` WHERE `id`='1'");
  EXPECT_EQ(FailureOf([&] { session.Delete(record); }), expected);
}

TEST_F(RecordRefused, SaveTextWithAReservedWordForAColumn) {
  Run("CREATE TABLE words (id INT PRIMARY KEY, `order` INT)");
  Run("CREATE TABLE wordsArc LIKE words");
  Session session(With());
  ASDomain record("words", "Words");
  ASInt id;
  ASInt order;
  ASAttribute idColumn("id", "Id", 0, corvane::kKey);
  ASAttribute orderColumn("order");
  record.Add(idColumn, id).Add(orderColumn, order);
  id = 1;
  Failure const expected =
      FailureWithServersText(1064, "INSERT INTO `wordsArc` (id, order) SELECT id, order FROM `words` WHERE id='1'");
  EXPECT_EQ(FailureOf([&] { session.Execute(session.SaveQuery(record, 0)); }), expected);
}

TEST_F(RecordRefused, SaveTextWithAQuoteInTheKey) {
  Session session(With());
  ASDomain record("named", "Named");
  ASVStr name(20);
  ASAttribute nameColumn("name", "Name", 0, corvane::kKey);
  record.Add(nameColumn, name);
  name = "O'Brien";
  Failure const expected =
      FailureWithServersText(1064, "INSERT INTO `namedArc` (name) SELECT name FROM `named` WHERE name='O'Brien'");
  EXPECT_EQ(FailureOf([&] { session.Execute(session.SaveQuery(record, 0)); }), expected);
}

TEST_F(RecordRefused, SelectForUpdateInAReadOnlyTransaction) {
  Session session(With());
  session.Execute("START TRANSACTION READ ONLY");
  Item item(1, "one");
  EXPECT_THAT(FailureOf([&] { session.Select(item); }).message, ::testing::StartsWith("DB Error 1792 ("));
}

TEST_F(RecordRefused, StatementLeavesTheSessionUsable) {
  Session session(With());
  EXPECT_THROW(session.Execute("SELEKT 1"), AException);
  Item const item(1, "one");
  EXPECT_EQ(session.Insert(item), 1U);
}

TEST_F(RecordRefused, StatementIsSentOnceOnly) {
  Run("CREATE TABLE tries (n INT) ENGINE=MyISAM");  // never rolled back
  Run("INSERT INTO tries VALUES (0)");
  Run("CREATE TRIGGER attempt BEFORE INSERT ON item FOR EACH ROW UPDATE tries SET n=n+1");
  Run("INSERT INTO item VALUES (1, 'one')");
  Session session(With());
  Item const item(1, "again");
  EXPECT_THROW(session.Insert(item), AException);
  EXPECT_EQ(Stored("SELECT n FROM tries"), "2");
}

}  // namespace
