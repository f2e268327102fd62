#include <gmock/gmock.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "tests/live/cache_test.h"

using corvane::test::CacheTest;
using corvane::test::ConnectionId;
using corvane::test::Counts;
using corvane::test::Failure;
using corvane::test::FailureOf;
using corvane::test::Field;
using corvane::test::ItemsOf;
using corvane::test::kNothing;
using corvane::test::kOneSelect;
using corvane::test::LiveTest;
using corvane::test::Rows;
using corvane::test::Session;
using corvane::test::StatementsOf;
using ::testing::IsEmpty;

namespace {

Field const kNull;
constexpr int kSaveFirst = 1;

Counts const kOneUpdate{{"Com_update", 1}, {"Questions", 1}};
Counts const kOneInsert{{"Com_insert", 1}, {"Questions", 1}};
Counts const kOneDelete{{"Com_delete", 1}, {"Questions", 1}};
Counts const kSaveAndUpdate{{"Com_insert_select", 1}, {"Com_update", 1}, {"Questions", 2}};
Counts const kSaveAndDelete{{"Com_insert_select", 1}, {"Com_delete", 1}, {"Questions", 2}};

using Items = ItemsOf<ASCache>;

class CacheWriting : public CacheTest<Items> {
 protected:
  void CreateTables() override {
    CacheTest::CreateTables();
    Run("CREATE TABLE itemArc (id INT, name VARCHAR(20), number INT PRIMARY KEY AUTO_INCREMENT)");
    Run("INSERT INTO item VALUES (1, 'one'), (2, 'two'), (3, NULL)");
  }

  Rows ItemRows() { return StoredRows("SELECT id, name FROM item ORDER BY id"); }
  Rows Archived() { return StoredRows("SELECT id, name FROM itemArc ORDER BY number"); }
};

// Changes.

TEST_F(CacheWriting, PutIsOneUpdate) {
  TheItems().Look(1).name = "uno";
  EXPECT_EQ(StatementsOf(TheSession(), [&] { TheItems().Put(); }), kOneUpdate);
  EXPECT_EQ(ItemRows(), (Rows{{"1", "uno"}, {"2", "two"}, {"3", kNull}}));
}

TEST_F(CacheWriting, PutIsRemembered) {
  TheItems().Look(1).name = "uno";
  TheItems().Put();
  TheItems().name = "scribble";
  EXPECT_EQ(StatementsOf(TheSession(), [&] { TheItems().Look(1); }), kNothing);
  EXPECT_EQ(TheItems().name, "uno");
  EXPECT_EQ(TheItems().Size(), 1);
}

TEST_F(CacheWriting, PutOfARecordThatWasNeverReadIsRemembered) {
  TheItems().PutAs(2, "dos");
  EXPECT_EQ(StatementsOf(TheSession(), [&] { TheItems().Of(2).Get(-1); }), kNothing);
  EXPECT_EQ(TheItems().name, "dos");
}

TEST_F(CacheWriting, PutWithoutARowChangesNothingAndIsNoError) {
  EXPECT_EQ(StatementsOf(TheSession(), [&] { TheItems().PutAs(77, "none"); }), kOneUpdate);
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM item WHERE id=77"), "0");
}

TEST_F(CacheWriting, PutWithCacheOffOnlyDropsTheStoredRecord) {
  TheItems().CacheOff();
  TheItems().PreFetch();
  TheItems().PutAs(1, "uno");
  EXPECT_EQ(TheItems().Size(), 2);
  EXPECT_EQ(StatementsOf(TheSession(), [&] { TheItems().Look(1); }), kOneSelect);
  EXPECT_EQ(TheItems().name, "uno");
}

TEST_F(CacheWriting, PutOfAHitWithNullKeepsTheNull) {
  TheItems().PreFetch();
  TheItems().Look(3).Put();
  EXPECT_EQ(Stored("SELECT name FROM item WHERE id=3"), kNull);
}

TEST_F(CacheWriting, PutStoresTextsAsTheyAre) {
  TheItems().PutAs(1, "O'B\\\"\n%\xC3\xBC\xF0\x9F\x90\x9F");
  EXPECT_EQ(Stored("SELECT name FROM item WHERE id=1"), "O'B\\\"\n%\xC3\xBC\xF0\x9F\x90\x9F");
  TheItems().Look(1);
  EXPECT_EQ(TheItems().name, "O'B\\\"\n%\xC3\xBC\xF0\x9F\x90\x9F");
}

TEST_F(CacheWriting, InsertIsOneInsertAndIsRemembered) {
  EXPECT_EQ(StatementsOf(TheSession(), [&] { TheItems().Of(4, "four").Insert(); }), kOneInsert);
  EXPECT_EQ(Stored("SELECT name FROM item WHERE id=4"), "four");
  TheItems().name = "scribble";
  EXPECT_EQ(StatementsOf(TheSession(), [&] { TheItems().Look(4); }), kNothing);
  EXPECT_EQ(TheItems().name, "four");
}

TEST_F(CacheWriting, InsertWithCacheOffIsNotRemembered) {
  TheItems().CacheOff();
  TheItems().Of(4, "four").Insert();
  EXPECT_EQ(TheItems().Size(), 0);
  EXPECT_EQ(Stored("SELECT name FROM item WHERE id=4"), "four");
}

TEST_F(CacheWriting, InsertItemInserts) {
  InsertItem("no matter what", TheItems().Of(4, "four"));
  EXPECT_EQ(Stored("SELECT name FROM item WHERE id=4"), "four");
  EXPECT_EQ(TheItems().Size(), 1);
}

TEST_F(CacheWriting, DeleteIsOneDeleteAndForgets) {
  TheItems().PreFetch();
  EXPECT_EQ(StatementsOf(TheSession(), [&] { TheItems().Of(1).Delete(); }), kOneDelete);
  EXPECT_EQ(ItemRows(), (Rows{{"2", "two"}, {"3", kNull}}));
  EXPECT_EQ(TheItems().Size(), 2);
  EXPECT_TRUE(TheItems().IsAllNull());
  EXPECT_EQ(StatementsOf(TheSession(), [&] { TheItems().Look(1); }), kOneSelect);
  EXPECT_TRUE(TheItems().IsAllNull());
}

TEST_F(CacheWriting, DeleteWithCacheOffForgetsToo) {
  TheItems().CacheOff();
  TheItems().PreFetch();
  TheItems().Of(1).Delete();
  EXPECT_EQ(TheItems().Size(), 2);
}

TEST_F(CacheWriting, DeleteWithoutARowIsNoError) {
  TheItems().Of(77).Delete();
  EXPECT_TRUE(TheItems().IsAllNull());
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM item"), "3");
}

// Rollback.

TEST_F(CacheWriting, RollbackLeavesTheStoreStaleAndClearCuresIt) {
  Session session(WithTransactions());
  Items items(session);
  items.PutAs(1, "uno");
  session.Rollback();
  EXPECT_EQ(items.Look(1).name, "uno");
  items.Clear();
  EXPECT_EQ(items.Look(1).name, "one");
}

TEST_F(CacheWriting, RolledBackInsertIsServedUntilClear) {
  Session session(WithTransactions());
  Items items(session);
  items.Of(4, "four").Insert();
  session.Rollback();
  EXPECT_EQ(items.Look(4).name, "four");
  items.Clear();
  EXPECT_TRUE(items.Look(4).IsAllNull());
}

TEST_F(CacheWriting, RolledBackDeleteIsReadAgain) {
  Session session(WithTransactions());
  Items items(session);
  items.Look(1).Delete();
  session.Rollback();
  EXPECT_EQ(items.Look(1).name, "one");
}

TEST_F(CacheWriting, ChangesAreStoredByCommit) {
  Session session(WithTransactions());
  Items items(session);
  items.PutAs(1, "uno");
  items.Of(4, "four").Insert();
  items.Of(2).Delete();
  EXPECT_EQ(ItemRows(), (Rows{{"1", "one"}, {"2", "two"}, {"3", kNull}}));
  session.Commit();
  EXPECT_EQ(ItemRows(), (Rows{{"1", "uno"}, {"3", kNull}, {"4", "four"}}));
}

// Read-only mode.

struct Write {
  char const* name;
  std::function<void(Items&)> run;
  char const* refusal;
  char const* statement;  // on record 1, "new"
};

std::string NameOf(::testing::TestParamInfo<Write> const& info) { return info.param.name; }

std::vector<Write> Writes() {
  return {
      {"Put", [](Items& items) { items.Put(); }, "Internal Error: Attempt to change data in const transaction. ",
       "UPDATE `item` SET `name`='new' WHERE `id`='1'"},
      {"Insert", [](Items& items) { items.Insert(); },
       "System error: Data may not be modified. Readonly mode is active. ",
       "INSERT INTO `item` (`id`, `name`) VALUES ('1', 'new')"},
      {"Delete", [](Items& items) { items.Delete(); }, "Internal Error: Attempt to change data in const transaction. ",
       "DELETE FROM `item` WHERE `id`='1'"},
  };
}

class CacheWriteRefused : public CacheWriting, public ::testing::WithParamInterface<Write> {};

TEST_P(CacheWriteRefused, InReadOnlyModeWithoutAnyStatement) {
  Items items(TheSession(), kSaveFirst);
  items.Of(1, "new");
  TheSession().ReadOnly();
  EXPECT_EQ(StatementsOf(TheSession(),
                         [&] {
                           EXPECT_EQ(FailureOf([&] { GetParam().run(items); }), (Failure{0, GetParam().refusal}));
                         }),
            kNothing);
  EXPECT_EQ(ItemRows(), (Rows{{"1", "one"}, {"2", "two"}, {"3", kNull}}));
  EXPECT_THAT(Archived(), IsEmpty());
}

TEST_P(CacheWriteRefused, InReadOnlyModeAndTheStoreStays) {
  TheItems().Look(1);
  TheSession().PushReadOnly();
  TheItems().name = "new";
  EXPECT_THROW(GetParam().run(TheItems()), AException);
  EXPECT_EQ(TheItems().name, "new");
  EXPECT_EQ(TheItems().Size(), 1);
  EXPECT_EQ(TheItems().Look(1).name, "one");
}

TEST_P(CacheWriteRefused, NoLongerWhenReadOnlyModeEnds) {
  Run("DELETE FROM item");
  TheSession().PushReadOnly();
  EXPECT_THROW(GetParam().run(TheItems().Of(1, "new")), AException);
  TheSession().PopReadOnly();
  EXPECT_NO_THROW(GetParam().run(TheItems()));
}

TEST_P(CacheWriteRefused, ByAMissingTableAndTheStoreStays) {
  TheItems().Look(1);
  Run("DROP TABLE item");
  TheItems().name = "new";
  EXPECT_EQ(FailureOf([&] { GetParam().run(TheItems()); }),
            (Failure{102, "DB Error 1146 (Table '" + Schema() + ".item' doesn't exist) in query\n\b\n" +
                              GetParam().statement}));
  EXPECT_EQ(TheItems().name, "new");
  EXPECT_EQ(TheItems().Size(), 1);
  EXPECT_EQ(TheItems().Look(1).name, "one");
}

TEST_P(CacheWriteRefused, ByAConnectionKilledInATransactionAndTheStoreStays) {
  Session session(WithTransactions());
  Items items(session);
  items.Look(1);
  Kill(ConnectionId(session));
  items.name = "new";
  EXPECT_EQ(FailureOf([&] { GetParam().run(items); }),
            (Failure{102, std::string("DB Error 0 () in query\n\b\n") + GetParam().statement}));
  session.Commit();
  EXPECT_EQ(ItemRows(), (Rows{{"1", "one"}, {"2", "two"}, {"3", kNull}}));
  EXPECT_EQ(items.Look(1).name, "one");
}

TEST_P(CacheWriteRefused, ByALockThatIsNotWaitedForAndTheStoreStays) {
  Session other(WithTransactions());
  other.Execute("UPDATE item SET name='pending' WHERE id=1");
  TheItems().PreFetch();
  TheSession().Execute("SET innodb_lock_wait_timeout=0");
  EXPECT_THROW(GetParam().run(TheItems().Of(1, "new")), AException);
  EXPECT_EQ(TheItems().Size(), 3);
  EXPECT_EQ(TheItems().Look(1).name, "one");
}

INSTANTIATE_TEST_SUITE_P(Of, CacheWriteRefused, ::testing::ValuesIn(Writes()), NameOf);

TEST_F(CacheWriting, KilledConnectionIsReopenedByEveryWrite) {
  Kill(ConnectionId(TheSession()));
  TheItems().PutAs(1, "uno");
  Kill(ConnectionId(TheSession()));
  TheItems().Of(4, "four").Insert();
  Kill(ConnectionId(TheSession()));
  TheItems().Of(2).Delete();
  EXPECT_EQ(ItemRows(), (Rows{{"1", "uno"}, {"3", kNull}, {"4", "four"}}));
}

// Refused by what the table holds.

TEST_F(CacheWriting, DuplicateInsertIsNotRemembered) {
  EXPECT_EQ(FailureOf([&] { TheItems().Of(1, "again").Insert(); }),
            (Failure{102,
                     "DB Error 1062 (Duplicate entry '1' for key 'PRIMARY') in query\n\b\n"
                     "INSERT INTO `item` (`id`, `name`) VALUES ('1', 'again')"}));
  EXPECT_EQ(TheItems().Size(), 0);
  EXPECT_EQ(TheItems().name, "again");
  EXPECT_EQ(TheItems().Look(1).name, "one");
}

TEST_F(CacheWriting, DuplicateInsertLeavesTheStoredRecord) {
  TheItems().Look(1);
  EXPECT_THROW(TheItems().Of(1, "again").Insert(), AException);
  EXPECT_EQ(TheItems().Size(), 1);
  EXPECT_EQ(TheItems().Look(1).name, "one");
}

struct Parts : ASCache {
  ASInt id, item;
  ASAttribute idColumn{"id", "Id", 0, corvane::kKey};
  ASAttribute itemColumn{"item"};

  explicit Parts(ASSession& session) : ASDomain("part", "Part"), ASCache(&session, 0) {
    Add(idColumn, id).Add(itemColumn, item);
  }
  Parts(Parts const&) = delete;
  Parts& operator=(Parts const&) = delete;
};

class CacheForeignKey : public CacheWriting {
 protected:
  void CreateTables() override {
    CacheWriting::CreateTables();
    Run("CREATE TABLE part (id INT PRIMARY KEY, item INT, FOREIGN KEY (item) REFERENCES item (id))");
    Run("INSERT INTO part VALUES (10, 1)");
  }
};

TEST_F(CacheForeignKey, DeleteOfAParentIsRefusedAndTheRecordStays) {
  TheItems().Look(1);
  Failure const failure = FailureOf([&] { TheItems().Delete(); });
  EXPECT_EQ(failure.number, 102);
  EXPECT_THAT(failure.message, ::testing::StartsWith("DB Error 1451 ("));
  EXPECT_EQ(static_cast<int>(TheItems().id), 1);
  EXPECT_EQ(TheItems().name, "one");
  EXPECT_EQ(StatementsOf(TheSession(), [&] { TheItems().Look(1); }), kNothing);
}

TEST_F(CacheForeignKey, InsertOfAChildWithoutParentIsNotRemembered) {
  Parts parts(TheSession());
  parts.id = 11;
  parts.item = 77;
  Failure const failure = FailureOf([&] { parts.Insert(); });
  EXPECT_EQ(failure.number, 102);
  EXPECT_THAT(failure.message, ::testing::StartsWith("DB Error 1452 ("));
  EXPECT_EQ(parts.Size(), 0);
}

TEST_F(CacheForeignKey, PutOfAChildWithoutParentLeavesTheStoredRecord) {
  Parts parts(TheSession());
  parts.id = 10;
  parts.Get(-1);
  parts.item = 77;
  Failure const failure = FailureOf([&] { parts.Put(); });
  EXPECT_THAT(failure.message, ::testing::StartsWith("DB Error 1452 ("));
  EXPECT_EQ(static_cast<int>(parts.item), 77);
  parts.Get(-1);
  EXPECT_EQ(static_cast<int>(parts.item), 1);
}

// Saving first.

class CacheSaving : public CacheWriting {
 protected:
  void CreateTables() override {
    CacheWriting::CreateTables();
    saving_ = std::make_unique<Items>(TheSession(), kSaveFirst);
  }
  Items& Saving() { return *saving_; }

 private:
  std::unique_ptr<Items> saving_;
};

TEST_F(CacheSaving, FirstPutArchivesTheRowAsItWas) {
  EXPECT_EQ(StatementsOf(TheSession(), [&] { Saving().PutAs(1, "uno"); }), kSaveAndUpdate);
  EXPECT_EQ(Archived(), (Rows{{"1", "one"}}));
  EXPECT_EQ(ItemRows(), (Rows{{"1", "uno"}, {"2", "two"}, {"3", kNull}}));
}

TEST_F(CacheSaving, RowIsArchivedAsTheTableHasItNotAsTheCacheHasIt) {
  Saving().Look(1);
  Run("UPDATE item SET name='changed' WHERE id=1");
  Saving().PutAs(1, "uno");
  EXPECT_EQ(Archived(), (Rows{{"1", "changed"}}));
}

TEST_F(CacheSaving, NullIsArchivedAsNull) {
  Saving().PutAs(3, "tres");
  EXPECT_EQ(Archived(), (Rows{{"3", kNull}}));
}

TEST_F(CacheSaving, SecondPutArchivesNothing) {
  Saving().PutAs(1, "uno");
  EXPECT_EQ(StatementsOf(TheSession(), [&] { Saving().PutAs(1, "eins"); }), kOneUpdate);
  EXPECT_EQ(Archived(), (Rows{{"1", "one"}}));
}

TEST_F(CacheSaving, EveryKeyIsArchivedOnce) {
  for (char const* const name : {"a", "b", "c"}) {
    for (int const key : {1, 2, 3}) Saving().PutAs(key, name);
  }
  EXPECT_EQ(Archived(), (Rows{{"1", "one"}, {"2", "two"}, {"3", kNull}}));
}

TEST_F(CacheSaving, PutAfterClearArchivesAgain) {
  Saving().PutAs(1, "uno");
  Saving().Clear();
  EXPECT_EQ(StatementsOf(TheSession(), [&] { Saving().PutAs(1, "eins"); }), kSaveAndUpdate);
  EXPECT_EQ(Archived(), (Rows{{"1", "one"}, {"1", "uno"}}));
}

TEST_F(CacheSaving, CacheOffAndPreFetchMakeItArchiveAgain) {
  Saving().PutAs(1, "uno");
  Saving().CacheOff();
  Saving().PutAs(1, "eins");
  Saving().PreFetch();
  Saving().PutAs(1, "ichi");
  EXPECT_EQ(Archived(), (Rows{{"1", "one"}, {"1", "uno"}, {"1", "eins"}}));
}

TEST_F(CacheSaving, ArchivesOnceWithCacheOffToo) {
  Saving().CacheOff();
  Saving().PutAs(1, "uno");
  Saving().PutAs(1, "eins");
  EXPECT_EQ(Archived(), (Rows{{"1", "one"}}));
}

TEST_F(CacheSaving, GetArchivesNothing) {
  Saving().Look(1).PreFetch();
  EXPECT_THAT(Archived(), IsEmpty());
}

TEST_F(CacheSaving, DeleteArchivesTheRow) {
  EXPECT_EQ(StatementsOf(TheSession(), [&] { Saving().Of(1).Delete(); }), kSaveAndDelete);
  EXPECT_EQ(Archived(), (Rows{{"1", "one"}}));
  EXPECT_EQ(ItemRows(), (Rows{{"2", "two"}, {"3", kNull}}));
}

TEST_F(CacheSaving, DeleteAfterPutArchivesNothingMore) {
  Saving().PutAs(1, "uno");
  EXPECT_EQ(StatementsOf(TheSession(), [&] { Saving().Delete(); }), kOneDelete);
  EXPECT_EQ(Archived(), (Rows{{"1", "one"}}));
}

TEST_F(CacheSaving, InsertedRecordIsNeverArchived) {
  EXPECT_EQ(StatementsOf(TheSession(), [&] { Saving().Of(4, "four").Insert(); }), kOneInsert);
  EXPECT_EQ(StatementsOf(TheSession(), [&] { Saving().PutAs(4, "vier"); }), kOneUpdate);
  EXPECT_EQ(StatementsOf(TheSession(), [&] { Saving().Delete(); }), kOneDelete);
  EXPECT_THAT(Archived(), IsEmpty());
}

TEST_F(CacheSaving, RecordWhoseInsertWasRefusedIsArchived) {
  EXPECT_THROW(Saving().Of(1, "again").Insert(), AException);
  EXPECT_EQ(StatementsOf(TheSession(), [&] { Saving().Put(); }), kSaveAndUpdate);
  EXPECT_EQ(Archived(), (Rows{{"1", "one"}}));
}

TEST_F(CacheSaving, SwitchZeroArchivesNothing) {
  TheItems().PutAs(1, "uno");
  TheItems().Of(2).Delete();
  EXPECT_THAT(Archived(), IsEmpty());
}

TEST_F(CacheSaving, AnyOtherSwitchArchives) {
  Items items(TheSession(), -7);
  items.PutAs(1, "uno");
  EXPECT_EQ(Archived(), (Rows{{"1", "one"}}));
}

TEST_F(CacheSaving, MissingArchiveTableIsIgnored) {
  Run("DROP TABLE itemArc");
  Saving().PutAs(1, "uno");
  Saving().Of(2).Delete();
  EXPECT_EQ(ItemRows(), (Rows{{"1", "uno"}, {"3", kNull}}));
}

TEST_F(CacheSaving, MissingArchiveTableIsTriedOncePerKey) {
  Run("DROP TABLE itemArc");
  Saving().PutAs(1, "uno");
  EXPECT_EQ(StatementsOf(TheSession(), [&] { Saving().PutAs(1, "eins"); }), kOneUpdate);
}

TEST_F(CacheSaving, RowThatIsArchivedAlreadyIsNoError) {
  Run("ALTER TABLE itemArc ADD UNIQUE (id)");
  Run("INSERT INTO itemArc (id, name) VALUES (1, 'first')");
  Saving().PutAs(1, "uno");
  EXPECT_EQ(Archived(), (Rows{{"1", "first"}}));
  EXPECT_EQ(Stored("SELECT name FROM item WHERE id=1"), "uno");
}

TEST_F(CacheSaving, RollbackTakesTheArchivedRowBack) {
  Session session(WithTransactions());
  Items items(session, kSaveFirst);
  items.PutAs(1, "uno");
  session.Rollback();
  session.Commit();
  EXPECT_THAT(Archived(), IsEmpty());
}

TEST_F(CacheSaving, KilledConnectionIsReopenedByTheSaving) {
  Kill(ConnectionId(TheSession()));
  Saving().PutAs(1, "uno");
  EXPECT_EQ(Archived(), (Rows{{"1", "one"}}));
  EXPECT_EQ(Stored("SELECT name FROM item WHERE id=1"), "uno");
}

TEST_F(CacheSaving, ConnectionKilledInATransactionLosesThatAndTheChangeRunsAlone) {
  Session session(WithTransactions());
  Items items(session, kSaveFirst);
  session.Execute("UPDATE item SET name='lost' WHERE id=2");
  Kill(ConnectionId(session));
  items.PutAs(1, "uno");
  session.Commit();
  EXPECT_EQ(ItemRows(), (Rows{{"1", "uno"}, {"2", "two"}, {"3", kNull}}));
  EXPECT_THAT(Archived(), IsEmpty());
}

// A key that the server numbers.

struct Tickets : ASCache {
  ASInt id;
  ASVStr name{20};
  ASAttribute idColumn{"id", "Id", 0, corvane::kKey | corvane::kAutoIncrement};
  ASAttribute nameColumn{"name"};

  explicit Tickets(ASSession& session) : ASDomain("ticket", "Ticket"), ASCache(&session, 0) {
    Add(idColumn, id).Add(nameColumn, name);
  }
  Tickets(Tickets const&) = delete;
  Tickets& operator=(Tickets const&) = delete;

  void InsertAs(char const* text) {
    id.SetNull();
    name = text;
    Insert();
  }
};

class CacheAutoIncrement : public LiveTest {
 protected:
  void CreateTables() override {
    Run("CREATE TABLE ticket (id INT PRIMARY KEY AUTO_INCREMENT, name VARCHAR(20)) AUTO_INCREMENT=41");
  }
};

TEST_F(CacheAutoIncrement, RecordIsFoundByTheInsertId) {
  Session session(With());
  Tickets tickets(session);
  tickets.InsertAs("first");
  EXPECT_EQ(tickets.id.IsNull(), 1);
  tickets.id = session.GetInsertId();
  EXPECT_EQ(static_cast<int>(tickets.id), 41);
  EXPECT_EQ(StatementsOf(session, [&] { tickets.Get(-1); }), kOneSelect);
  EXPECT_EQ(tickets.name, "first");
}

TEST_F(CacheAutoIncrement, EachOfSeveralIsFoundByItsInsertId) {
  Session session(With());
  Tickets tickets(session);
  tickets.InsertAs("first");
  Int const first = session.GetInsertId();
  tickets.InsertAs("second");
  Int const second = session.GetInsertId();
  tickets.id = first;
  tickets.Get(-1);
  EXPECT_EQ(tickets.name, "first");
  tickets.id = second;
  tickets.Get(-1);
  EXPECT_EQ(tickets.name, "second");
  EXPECT_EQ(StoredRows("SELECT id, name FROM ticket ORDER BY id"), (Rows{{"41", "first"}, {"42", "second"}}));
}

TEST_F(CacheAutoIncrement, RecordFoundByTheInsertIdIsChanged) {
  Session session(With());
  Tickets tickets(session);
  tickets.InsertAs("first");
  tickets.id = session.GetInsertId();
  tickets.Get(-1);
  tickets.name = "changed";
  tickets.Put();
  EXPECT_EQ(StoredRows("SELECT id, name FROM ticket"), (Rows{{"41", "changed"}}));
}

}  // namespace
