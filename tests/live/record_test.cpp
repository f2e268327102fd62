#include "tests/support/live.h"

using corvane::test::Item;
using corvane::test::ItemTest;
using corvane::test::LiveTest;
using corvane::test::Rows;
using corvane::test::Session;

namespace {

class Record : public ItemTest {};

TEST_F(Record, InsertRunsItsStatement) {
  Session session(With());
  Item const item(1, "O'Brien");
  EXPECT_EQ(session.InsertQuery(item, 0), "INSERT INTO `item` (`id`, `name`) VALUES ('1', 'O\\'Brien')");
  EXPECT_EQ(session.Insert(item), 1U);
  EXPECT_EQ(StoredRows("SELECT id, name FROM item"), (Rows{{"1", "O'Brien"}}));
}

TEST_F(Record, SelectRunsItsStatement) {
  Run("INSERT INTO item VALUES (1, 'one'), (2, 'two')");
  Session session(With());
  Item item;
  item.id = 2;
  EXPECT_EQ(session.SelectQuery(item, 0), "SELECT `id`, `name` FROM `item` WHERE `id`='2' FOR UPDATE");
  EXPECT_EQ(session.Select(item), 1);
  EXPECT_EQ(item.name, "two");
}

TEST_F(Record, SelectRunsItsStatementInReadOnlyMode) {
  Run("INSERT INTO item VALUES (1, 'one'), (2, 'two')");
  Session session(With());
  session.ReadOnly();
  Item item;
  item.id = 2;
  EXPECT_EQ(session.SelectQuery(item, 0), "SELECT `id`, `name` FROM `item` WHERE `id`='2'");
  EXPECT_EQ(session.Select(item), 1);
  EXPECT_EQ(item.name, "two");
}

TEST_F(Record, SelectTextOfModeTwoReadsWithoutCondition) {
  Run("INSERT INTO item VALUES (1, 'one')");
  Session session(With());
  Item item;
  Str const statement = session.SelectQuery(item, 2);
  EXPECT_EQ(statement, "SELECT `id`, `name` FROM `item` FOR UPDATE");
  session.Execute(statement);
  EXPECT_EQ(session.Fetch(item), 1);
  EXPECT_EQ(item.name, "one");
}

TEST_F(Record, UpdateRunsItsStatement) {
  Run("INSERT INTO item VALUES (1, 'one'), (2, 'two')");
  Session session(With());
  Item const item(2, "zwei");
  EXPECT_EQ(session.UpdateQuery(item, 0), "UPDATE `item` SET `name`='zwei' WHERE `id`='2'");
  EXPECT_EQ(session.Update(item), 1U);
  EXPECT_EQ(StoredRows("SELECT id, name FROM item ORDER BY id"), (Rows{{"1", "one"}, {"2", "zwei"}}));
}

TEST_F(Record, DeleteRunsItsStatement) {
  Run("INSERT INTO item VALUES (1, 'one'), (2, 'two')");
  Session session(With());
  Item const item(2, "two");
  EXPECT_EQ(session.DeleteQuery(item, 0), "DELETE FROM `item` WHERE `id`='2'");
  EXPECT_EQ(session.Delete(item), 1U);
  EXPECT_EQ(StoredRows("SELECT id, name FROM item"), (Rows{{"1", "one"}}));
}

TEST_F(Record, SaveTextArchivesTheRow) {
  Run("CREATE TABLE itemArc LIKE item");
  Run("INSERT INTO item VALUES (1, 'one'), (2, 'two')");
  Session session(With());
  Item const item(2, "not looked at");
  Str const statement = session.SaveQuery(item, 0);
  EXPECT_EQ(statement, "INSERT INTO `itemArc` (id, name) SELECT id, name FROM `item` WHERE id='2'");
  EXPECT_EQ(session.Execute(statement), 1U);
  EXPECT_EQ(StoredRows("SELECT id, name FROM itemArc"), (Rows{{"2", "two"}}));
}

TEST_F(Record, UpdateOfTheSameValuesAffectsNoRow) {
  Run("INSERT INTO item VALUES (1, 'one')");
  Session session(With());
  Item const item(1, "one");
  EXPECT_EQ(session.Update(item), 0U);
}

TEST_F(Record, UpdateWithoutARowAffectsNone) {
  Session session(With());
  Item const item(1, "one");
  EXPECT_EQ(session.Update(item), 0U);
}

TEST_F(Record, DeleteWithoutARowAffectsNone) {
  Session session(With());
  Item const item(1, "one");
  EXPECT_EQ(session.Delete(item), 0U);
}

TEST_F(Record, RowsAffectedIsThatOfTheLastStatement) {
  Run("INSERT INTO item VALUES (1, 'one'), (2, 'two'), (3, 'three')");
  Session session(With());
  session.Execute("DELETE FROM item WHERE id > 1");
  EXPECT_EQ(session.RowsAffected(), 2U);
}

TEST_F(Record, RowsAffectedAfterASelectIsTheLargestNumber) {
  Session session(With());
  Item item(1, "one");
  session.Select(item);
  EXPECT_EQ(session.RowsAffected(), 18446744073709551615U);
}

TEST_F(Record, RowsAffectedSurvivesARefusedStatement) {
  Session session(With());
  Item const item(1, "one");
  session.Insert(item);
  EXPECT_THROW(session.Insert(item), AException);
  EXPECT_EQ(session.RowsAffected(), 1U);
}

struct Line : ASDomain {
  ASInt order;
  ASVStr article{20};
  ASInt amount;
  ASAttribute orderColumn{"order_id", "Order", 0, corvane::kKey};
  ASAttribute articleColumn{"article", "Article", 0, corvane::kKey};
  ASAttribute amountColumn{"amount"};

  Line(int number, char const* text, int pieces) : ASDomain("line", "Line") {
    order = number;
    article = text;
    amount = pieces;
    Add(orderColumn, order).Add(articleColumn, article).Add(amountColumn, amount);
  }
  Line(Line const&) = delete;
  Line& operator=(Line const&) = delete;
};

class RecordSeveralKeys : public LiveTest {
 protected:
  void CreateTables() override {
    Run("CREATE TABLE line (order_id INT, article VARCHAR(20), amount INT, PRIMARY KEY (order_id, article))");
    Run("INSERT INTO line VALUES (1, 'nut', 10), (1, 'bolt', 20), (2, 'nut', 30)");
  }
};

TEST_F(RecordSeveralKeys, SelectReadsTheRowThatAllKeysName) {
  Session session(With());
  Line line(1, "bolt", 0);
  EXPECT_EQ(session.SelectQuery(line, 0),
            "SELECT `order_id`, `article`, `amount` FROM `line` WHERE `order_id`='1' AND `article`='bolt' FOR UPDATE");
  EXPECT_EQ(session.Select(line), 1);
  EXPECT_EQ(static_cast<int>(line.amount), 20);
}

TEST_F(RecordSeveralKeys, UpdateChangesTheRowThatAllKeysName) {
  Session session(With());
  Line const line(1, "nut", 11);
  EXPECT_EQ(session.Update(line), 1U);
  EXPECT_EQ(StoredRows("SELECT amount FROM line ORDER BY amount"), (Rows{{"11"}, {"20"}, {"30"}}));
}

TEST_F(RecordSeveralKeys, DeleteRemovesTheRowThatAllKeysName) {
  Session session(With());
  Line const line(2, "nut", 0);
  EXPECT_EQ(session.Delete(line), 1U);
  EXPECT_EQ(StoredRows("SELECT amount FROM line ORDER BY amount"), (Rows{{"10"}, {"20"}}));
}

struct Numbered : ASDomain {
  ASInt id;
  ASVStr name{20};
  ASAttribute idColumn{"id", "Id", 0, corvane::kKey | corvane::kAutoIncrement};
  ASAttribute nameColumn{"name"};

  explicit Numbered(char const* text) : ASDomain("numbered", "Numbered") {
    name = text;
    Add(idColumn, id).Add(nameColumn, name);
  }
  Numbered(Numbered const&) = delete;
  Numbered& operator=(Numbered const&) = delete;
};

class RecordAutoIncrement : public LiveTest {
 protected:
  void CreateTables() override {
    Run("CREATE TABLE numbered (id INT UNSIGNED PRIMARY KEY AUTO_INCREMENT, name VARCHAR(20))");
  }
};

TEST_F(RecordAutoIncrement, InsertLeavesTheNumberToTheServer) {
  Session session(With());
  Numbered record("first");
  record.id = 77;
  EXPECT_EQ(session.InsertQuery(record, 0), "INSERT INTO `numbered` (`name`) VALUES ('first')");
  session.Insert(record);
  EXPECT_EQ(StoredRows("SELECT id, name FROM numbered"), (Rows{{"1", "first"}}));
}

TEST_F(RecordAutoIncrement, InsertIdIsTheNewNumber) {
  Run("ALTER TABLE numbered AUTO_INCREMENT=41");
  Session session(With());
  Numbered const record("first");
  session.Insert(record);
  EXPECT_EQ(static_cast<int>(session.GetInsertId()), 41);
}

TEST_F(RecordAutoIncrement, InsertedRowIsFoundByTheInsertId) {
  Session session(With());
  Numbered record("first");
  session.Insert(record);
  record.id = session.GetInsertId();
  record.name = "";
  EXPECT_EQ(session.Select(record), 1);
  EXPECT_EQ(record.name, "first");
}

TEST_F(RecordAutoIncrement, InsertIdBeyondTheIntegersReadsAsNull) {
  Run("ALTER TABLE numbered AUTO_INCREMENT=2147483648");
  Session session(With());
  Numbered const record("first");
  session.Insert(record);
  EXPECT_EQ(session.GetInsertId().IsNull(), 1);
}

TEST_F(RecordAutoIncrement, RecordOfNothingButTheNumberIsInserted) {
  Run("CREATE TABLE onlyauto (id INT PRIMARY KEY AUTO_INCREMENT)");
  Session session(With());
  ASDomain record("onlyauto", "OnlyAuto");
  ASInt id;
  ASAttribute idColumn("id", "Id", 0, corvane::kKey | corvane::kAutoIncrement);
  record.Add(idColumn, id);
  EXPECT_EQ(session.InsertQuery(record, 0), "INSERT INTO `onlyauto` () VALUES ()");
  session.Insert(record);
  EXPECT_EQ(StoredRows("SELECT id FROM onlyauto"), (Rows{{"1"}}));
}

TEST_F(RecordAutoIncrement, FlagWithoutTheKeyFlagWritesTheColumn) {
  Session session(With());
  ASDomain record("numbered", "Numbered");
  ASInt id;
  ASAttribute idColumn("id", "Id", 0, corvane::kAutoIncrement);
  record.Add(idColumn, id);
  id = 77;
  session.Insert(record);
  EXPECT_EQ(StoredRows("SELECT id FROM numbered"), (Rows{{"77"}}));
}

struct Note : ASDomain {
  ASVStr text{20};
  ASAttribute textColumn{"name"};

  explicit Note(char const* words) : ASDomain("item", "Item") {
    text = words;
    Add(textColumn, text);
  }
  Note(Note const&) = delete;
  Note& operator=(Note const&) = delete;
};

class RecordWithoutKeys : public ItemTest {
 protected:
  void CreateTables() override {
    ItemTest::CreateTables();
    Run("INSERT INTO item VALUES (1, 'one'), (2, 'two')");
  }
};

TEST_F(RecordWithoutKeys, UpdateChangesEveryRow) {
  Session session(With());
  Note const note("same");
  EXPECT_EQ(session.UpdateQuery(note, 0), "UPDATE `item` SET `name`='same'");
  EXPECT_EQ(session.Update(note), 2U);
  EXPECT_EQ(StoredRows("SELECT name FROM item"), (Rows{{"same"}, {"same"}}));
}

TEST_F(RecordWithoutKeys, DeleteRemovesEveryRow) {
  Session session(With());
  Note const note("same");
  EXPECT_EQ(session.DeleteQuery(note, 0), "DELETE FROM `item`");
  EXPECT_EQ(session.Delete(note), 2U);
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM item"), "0");
}

TEST_F(RecordWithoutKeys, SelectReadsOneRow) {
  Run("DELETE FROM item WHERE id=1");
  Session session(With());
  Note note("");
  EXPECT_EQ(session.SelectQuery(note, 0), "SELECT `name` FROM `item` FOR UPDATE");
  EXPECT_EQ(session.Select(note), 1);
  EXPECT_EQ(note.text, "two");
}

TEST_F(RecordWithoutKeys, SaveTextArchivesEveryRow) {
  Run("CREATE TABLE itemArc (name VARCHAR(20))");
  Session session(With());
  Note const note("");
  EXPECT_EQ(session.SaveQuery(note, 0), "INSERT INTO `itemArc` (name) SELECT name FROM `item`");
  session.Execute(session.SaveQuery(note, 0));
  EXPECT_EQ(StoredRows("SELECT name FROM itemArc ORDER BY name"), (Rows{{"one"}, {"two"}}));
}

struct NamedItem : ASDomain {
  ASVStr name{20};
  ASInt amount;
  ASAttribute nameColumn{"name", "Name", 0, corvane::kKey};
  ASAttribute amountColumn{"amount"};

  explicit NamedItem(char const* text) : ASDomain("named", "Named") {
    name = text;
    Add(nameColumn, name).Add(amountColumn, amount);
  }
  NamedItem(NamedItem const&) = delete;
  NamedItem& operator=(NamedItem const&) = delete;
};

class RecordTextKey : public LiveTest {
 protected:
  void CreateTables() override {
    Run("CREATE TABLE named (name VARCHAR(20) PRIMARY KEY, amount INT)");
    Run("INSERT INTO named VALUES ('', 0), ('x', 1)");
  }
};

TEST_F(RecordTextKey, ThatLooksLikeAConditionStaysAText) {
  Session session(With());
  NamedItem const record("x' OR '1'='1");
  EXPECT_EQ(session.Delete(record), 0U);
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM named"), "2");
}

TEST_F(RecordTextKey, NullMatchesTheEmptyText) {
  Session session(With());
  NamedItem record("x");
  record.name.SetNull();
  EXPECT_EQ(session.DeleteQuery(record, 0), "DELETE FROM `named` WHERE `name`=''");
  EXPECT_EQ(session.Delete(record), 1U);
  EXPECT_EQ(StoredRows("SELECT name FROM named"), (Rows{{"x"}}));
}

class RecordUnfilledColumn : public ItemTest {
 protected:
  RecordUnfilledColumn() {
    record_.Add(idColumn_, id_);
    record_.push_back(&nameColumn_);
    id_ = 1;
  }

  ASDomain record_{"item", "Item"};
  ASInt id_;
  ASAttribute idColumn_{"id", "Id", 0, corvane::kKey};
  ASAttribute nameColumn_{"name"};
};

TEST_F(RecordUnfilledColumn, IsInsertedAsNull) {
  Session session(With());
  session.Insert(record_);
  EXPECT_EQ(StoredRows("SELECT id, name FROM item"), (Rows{{"1", std::nullopt}}));
}

TEST_F(RecordUnfilledColumn, IsSkippedBySelect) {
  Run("INSERT INTO item VALUES (1, 'one')");
  Session session(With());
  EXPECT_EQ(session.Select(record_), 1);
}

TEST_F(RecordUnfilledColumn, IsUpdatedToNull) {
  Run("INSERT INTO item VALUES (1, 'one')");
  Session session(With());
  EXPECT_EQ(session.Update(record_), 1U);
  EXPECT_EQ(StoredRows("SELECT id, name FROM item"), (Rows{{"1", std::nullopt}}));
}

}  // namespace
