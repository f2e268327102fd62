#include <gmock/gmock.h>

#include <string>

#include "tests/live/cache_test.h"

using corvane::test::CacheTest;
using corvane::test::ConnectionId;
using corvane::test::Counts;
using corvane::test::Failure;
using corvane::test::FailureOf;
using corvane::test::FetchedValue;
using corvane::test::ItemsOf;
using corvane::test::kNothing;
using corvane::test::kOneSelect;
using corvane::test::LiveTest;
using corvane::test::Session;
using corvane::test::StatementsOf;
using ::testing::StartsWith;

namespace {

constexpr unsigned kAccepted = 0;
constexpr unsigned kLockWaitTimeout = 1205;

Counts const kTwoSelects{{"Com_select", 2}, {"Questions", 2}};

using Items = ItemsOf<ASSimpleCache>;
using LockingItems = ItemsOf<ASCache>;

class CacheReading : public CacheTest<Items> {
 protected:
  void CreateTables() override {
    CacheTest::CreateTables();
    Run("INSERT INTO item VALUES (1, 'one'), (2, 'two'), (-5, 'minus five'), (3, NULL)");
  }
};

// What is asked for.

TEST_F(CacheReading, MissAsksOnce) {
  EXPECT_EQ(StatementsOf(TheSession(), [&] { TheItems().Look(1); }), kOneSelect);
  EXPECT_EQ(TheItems().name, "one");
  EXPECT_EQ(TheItems().Size(), 1);
}

TEST_F(CacheReading, HitAsksNothing) {
  TheItems().Look(1);
  TheItems().Look(2);
  EXPECT_EQ(StatementsOf(TheSession(), [&] { TheItems().Look(1); }), kNothing);
  EXPECT_EQ(TheItems().name, "one");
}

TEST_F(CacheReading, HitIsNoStatementOfAnyOtherConnectionEither) {
  auto const selects = [this] { return StoredRows("SHOW GLOBAL STATUS LIKE 'Com_select'").at(0).at(1).value(); };
  TheItems().Look(1);
  std::string const before = selects();
  for (int i = 0; i < 100; ++i) TheItems().Look(1);
  EXPECT_EQ(selects(), before);
}

TEST_F(CacheReading, HitIsServedWhileTheConnectionIsGone) {
  TheItems().Look(1);
  Kill(ConnectionId(TheSession()));
  TheItems().Look(1);
  EXPECT_EQ(TheItems().name, "one");
  EXPECT_TRUE(ConnectionsBecome(0));
}

TEST_F(CacheReading, HitGivesWhatWasReadThen) {
  TheItems().Look(1);
  Run("UPDATE item SET name='changed' WHERE id=1");
  TheItems().Look(1);
  EXPECT_EQ(TheItems().name, "one");
}

TEST_F(CacheReading, HitReplacesWhatTheRecordHolds) {
  TheItems().Look(1);
  TheItems().name = "scribble";
  TheItems().Look(1);
  EXPECT_EQ(TheItems().name, "one");
}

TEST_F(CacheReading, HitOfANullIsNull) {
  TheItems().Look(3);
  TheItems().name = "scribble";
  EXPECT_EQ(StatementsOf(TheSession(), [&] { TheItems().Look(3); }), kNothing);
  EXPECT_EQ(TheItems().name.IsNull(), 1);
}

TEST_F(CacheReading, GetOfARecordIsALookUpOfTheOwnKey) {
  Items other(TheSession());
  other.id = 2;
  TheItems().id = 1;
  EXPECT_EQ(StatementsOf(TheSession(), [&] { TheItems().Get(other); }), kOneSelect);
  EXPECT_EQ(TheItems().name, "one");
}

TEST_F(CacheReading, RowThatDoesNotExistGivesNull) {
  TheItems().Look(77);
  EXPECT_TRUE(TheItems().IsAllNull());
  EXPECT_EQ(TheItems().Size(), 0);
}

TEST_F(CacheReading, RowThatDoesNotExistIsAskedForEveryTime) {
  EXPECT_EQ(StatementsOf(TheSession(),
                         [&] {
                           TheItems().Look(77);
                           TheItems().Look(77);
                         }),
            kTwoSelects);
}

TEST_F(CacheReading, CacheOffAsksEveryTime) {
  TheItems().CacheOff();
  EXPECT_EQ(StatementsOf(TheSession(),
                         [&] {
                           TheItems().Look(1);
                           TheItems().Look(1);
                         }),
            kTwoSelects);
  EXPECT_EQ(TheItems().name, "one");
  EXPECT_EQ(TheItems().Size(), 0);
}

TEST_F(CacheReading, CacheOffForgets) {
  TheItems().Look(1);
  TheItems().CacheOff();
  EXPECT_EQ(TheItems().Size(), 0);
  EXPECT_TRUE(TheItems().IsAllNull());
  EXPECT_EQ(StatementsOf(TheSession(), [&] { TheItems().Look(1); }), kOneSelect);
}

TEST_F(CacheReading, CacheOnRemembersAgain) {
  TheItems().CacheOff();
  TheItems().CacheOn().CacheOn();
  TheItems().Look(1);
  EXPECT_EQ(StatementsOf(TheSession(), [&] { TheItems().Look(1); }), kNothing);
}

TEST_F(CacheReading, CacheOnKeepsTheStore) {
  TheItems().Look(1);
  TheItems().CacheOn();
  EXPECT_EQ(TheItems().Size(), 1);
  EXPECT_EQ(TheItems().name, "one");
}

TEST_F(CacheReading, ClearMakesTheNextGetAsk) {
  TheItems().Look(1);
  Run("UPDATE item SET name='changed' WHERE id=1");
  TheItems().Clear();
  EXPECT_EQ(TheItems().Size(), 0);
  EXPECT_EQ(StatementsOf(TheSession(), [&] { TheItems().Look(1); }), kOneSelect);
  EXPECT_EQ(TheItems().name, "changed");
}

TEST_F(CacheReading, TwoCachesOfOneSessionKnowNothingOfEachOther) {
  Items other(TheSession());
  TheItems().Look(1);
  EXPECT_EQ(StatementsOf(TheSession(), [&] { other.Look(1); }), kOneSelect);
  EXPECT_EQ(other.name, "one");
}

// By place.

TEST_F(CacheReading, PlacesFollowTheKeysAndAskNothing) {
  TheItems().Look(2);
  TheItems().Look(-5);
  EXPECT_EQ(StatementsOf(TheSession(), [&] { TheItems().Get(0); }), kNothing);
  EXPECT_EQ(static_cast<int>(TheItems().id), -5);
  EXPECT_EQ(TheItems().name, "minus five");
  TheItems().Get(1);
  EXPECT_EQ(static_cast<int>(TheItems().id), 2);
}

TEST_F(CacheReading, PlaceBehindTheStoreIsNull) {
  TheItems().Look(2);
  TheItems().Get(1);
  EXPECT_TRUE(TheItems().IsAllNull());
}

TEST_F(CacheReading, PlaceOfTheNumberOfColumnsIsNullAmongMoreRecords) {
  EXPECT_EQ(TheItems().PreFetch(), 4);
  TheItems().Get(2);
  EXPECT_TRUE(TheItems().IsAllNull());
}

// Reading the whole table.

TEST_F(CacheReading, PreFetchIsOneSelect) {
  EXPECT_EQ(StatementsOf(TheSession(), [&] { EXPECT_EQ(TheItems().PreFetch(), 4); }), kOneSelect);
  EXPECT_EQ(TheItems().Size(), 4);
}

TEST_F(CacheReading, EveryRowIsAHitAfterPreFetch) {
  TheItems().PreFetch();
  EXPECT_EQ(StatementsOf(TheSession(),
                         [&] {
                           for (int const key : {-5, 1, 2, 3}) TheItems().Look(key);
                         }),
            kNothing);
  TheItems().Look(2);
  EXPECT_EQ(TheItems().name, "two");
}

TEST_F(CacheReading, SmallestKeyIsFirstAfterPreFetch) {
  TheItems().PreFetch();
  TheItems().Get(0);
  EXPECT_EQ(static_cast<int>(TheItems().id), -5);
  EXPECT_EQ(TheItems().name, "minus five");
}

TEST_F(CacheReading, SmallestKeyIsFirstWhenTheServerSendsAnotherOrder) {
  Run("CREATE TABLE heap (id INT, name VARCHAR(20)) ENGINE=MyISAM");
  Run("INSERT INTO heap VALUES (7, 'g'), (-2147483647, 'least'), (2147483647, 'greatest'), (0, 'zero'), (-1, 'neg')");
  Run("DROP TABLE item");
  Run("RENAME TABLE heap TO item");
  EXPECT_EQ(TheItems().PreFetch(), 5);
  TheItems().Get(0);
  EXPECT_EQ(static_cast<int>(TheItems().id), -2147483647);
  TheItems().Get(1);
  EXPECT_EQ(static_cast<int>(TheItems().id), -1);
}

TEST_F(CacheReading, PreFetchGivesTheTableAsItIsNow) {
  TheItems().PreFetch();
  Run("DELETE FROM item WHERE id=1");
  Run("UPDATE item SET name='changed' WHERE id=2");
  EXPECT_EQ(TheItems().PreFetch(), 3);
  TheItems().Look(2);
  EXPECT_EQ(TheItems().name, "changed");
  TheItems().Look(1);
  EXPECT_TRUE(TheItems().IsAllNull());
}

TEST_F(CacheReading, PreFetchReadsTheTableWithCacheOffToo) {
  TheItems().CacheOff();
  EXPECT_EQ(TheItems().PreFetch(), 4);
  EXPECT_EQ(TheItems().Size(), 4);
}

TEST_F(CacheReading, PreFetchOfATableWithoutRows) {
  TheItems().PreFetch();
  Run("DELETE FROM item");
  EXPECT_EQ(TheItems().PreFetch(), 0);
  EXPECT_TRUE(TheItems().IsAllNull());
  TheItems().Get(0);
  EXPECT_TRUE(TheItems().IsAllNull());
}

TEST_F(CacheReading, PreFetchLeavesTheConnectionFree) {
  TheItems().PreFetch();
  EXPECT_EQ(FetchedValue(TheSession(), "SELECT name FROM item WHERE id=2"), "two");
}

// Failures.

TEST_F(CacheReading, MissingTableIsReportedAndTheStoreServesOn) {
  TheItems().Look(1);
  Run("DROP TABLE item");
  TheItems().name = "scribble";
  EXPECT_EQ(FailureOf([&] { TheItems().Look(2); }),
            (Failure{102, "DB Error 1146 (Table '" + Schema() +
                              ".item' doesn't exist) in query\n\b\n"
                              "SELECT `id`, `name` FROM `item` WHERE `id`='2' FOR UPDATE"}));
  EXPECT_EQ(static_cast<int>(TheItems().id), 2);
  EXPECT_EQ(TheItems().name.IsNull(), 1);
  EXPECT_EQ(TheItems().Size(), 1);
  TheItems().Look(1);
  EXPECT_EQ(TheItems().name, "one");
}

TEST_F(CacheReading, TableThatCameBackIsRead) {
  Run("RENAME TABLE item TO away");
  EXPECT_THROW(TheItems().Look(2), AException);
  Run("RENAME TABLE away TO item");
  TheItems().Get(-1);  // with the key that it kept
  EXPECT_EQ(TheItems().name, "two");
  EXPECT_EQ(TheItems().Size(), 1);
}

TEST_F(CacheReading, PreFetchOfAMissingTableLeavesNothing) {
  TheItems().Look(1);
  Run("DROP TABLE item");
  Failure const failure = FailureOf([&] { TheItems().PreFetch(); });
  EXPECT_EQ(failure.number, 102);
  EXPECT_THAT(failure.message, StartsWith("DB Error 1146 (Table '" + Schema() + ".item' doesn't exist) in query\n"));
  EXPECT_EQ(TheItems().Size(), 0);
  EXPECT_TRUE(TheItems().IsAllNull());
}

TEST_F(CacheReading, KilledConnectionIsReopenedByAMiss) {
  TheItems().Look(1);
  Kill(ConnectionId(TheSession()));
  TheItems().Look(2);
  EXPECT_EQ(TheItems().name, "two");
  EXPECT_EQ(TheItems().Size(), 2);
}

TEST_F(CacheReading, KilledConnectionIsReopenedByPreFetch) {
  Kill(ConnectionId(TheSession()));
  EXPECT_EQ(TheItems().PreFetch(), 4);
}

TEST_F(CacheReading, ConnectionKilledInATransactionIsReportedByAMiss) {
  Session session(WithTransactions());
  Items items(session);
  items.Look(1);
  Kill(ConnectionId(session));
  EXPECT_EQ(FailureOf([&] { items.Look(2); }),
            (Failure{102, "DB Error 0 () in query\n\b\nSELECT `id`, `name` FROM `item` WHERE `id`='2' FOR UPDATE"}));
  EXPECT_EQ(static_cast<int>(items.id), 2);
  EXPECT_EQ(items.Size(), 1);
  items.Get(-1);
  EXPECT_EQ(items.name, "two");
}

TEST_F(CacheReading, ConnectionKilledInATransactionIsReportedByPreFetch) {
  Session session(WithTransactions());
  Items items(session);
  items.Look(1);
  Kill(ConnectionId(session));
  Failure const failure = FailureOf([&] { items.PreFetch(); });
  EXPECT_EQ(failure.number, 102);
  EXPECT_THAT(failure.message, StartsWith("DB Error 0 () in query\n"));
  EXPECT_EQ(items.Size(), 0);
  EXPECT_EQ(items.PreFetch(), 4);
}

TEST_F(CacheReading, ConnectionThatMayNotBeReopenedStaysLostAndHitsAreServed) {
  Session session(With({{"AutoReconnect", "off"}}));
  Items items(session);
  items.Look(1);
  Kill(ConnectionId(session));
  EXPECT_EQ(FailureOf([&] { items.Look(2); }), (Failure{103, "Database connection lost"}));
  items.Look(1);
  EXPECT_EQ(items.name, "one");
}

// Locks: what another connection may change meanwhile.

class CacheLocks : public CacheReading {
 protected:
  unsigned RefusalOfAChange() { return Refusal("UPDATE item SET name='changed' WHERE id=1"); }
};

TEST_F(CacheLocks, GetLocksTheRowUntilTheTransactionEnds) {
  Session session(WithTransactions());
  LockingItems items(session);
  items.Look(1);
  EXPECT_EQ(RefusalOfAChange(), kLockWaitTimeout);
  session.Commit();
  EXPECT_EQ(RefusalOfAChange(), kAccepted);
}

TEST_F(CacheLocks, GetOfASimpleCacheLocksTheRow) {
  Session session(WithTransactions());
  Items items(session);
  items.Look(1);
  EXPECT_EQ(RefusalOfAChange(), kLockWaitTimeout);
}

TEST_F(CacheLocks, ReadOnlyGetLocksNoRow) {
  Session session(WithTransactions());
  LockingItems items(session);
  items.ReadOnlyGet();
  items.Look(1);
  EXPECT_EQ(items.name, "one");
  EXPECT_EQ(RefusalOfAChange(), kAccepted);
}

TEST_F(CacheLocks, ReadOnlyGetEndsWithItsArgument) {
  Session session(WithTransactions());
  LockingItems items(session);
  items.ReadOnlyGet();
  items.ReadOnlyGet(0);
  items.Look(1);
  EXPECT_EQ(RefusalOfAChange(), kLockWaitTimeout);
}

TEST_F(CacheLocks, ReadOnlyGetEndsWithClear) {
  Session session(WithTransactions());
  LockingItems items(session);
  items.ReadOnlyGet();
  items.Clear();
  items.Look(1);
  EXPECT_EQ(RefusalOfAChange(), kLockWaitTimeout);
}

TEST_F(CacheLocks, ReadOnlyGetByARecordLocksNoRow) {
  Session session(WithTransactions());
  LockingItems items(session);
  items.ReadOnlyGet();
  items.id = 1;
  items.Get(items);
  EXPECT_EQ(RefusalOfAChange(), kAccepted);
}

TEST_F(CacheLocks, ReadOnlyGetLeavesTheSessionWritable) {
  LockingItems items(TheSession());
  items.ReadOnlyGet();
  items.Look(1);
  EXPECT_EQ(TheSession().IsReadOnly(), 0);
  items.name = "written";
  items.Put();
  EXPECT_EQ(Stored("SELECT name FROM item WHERE id=1"), "written");
}

TEST_F(CacheLocks, ReadOnlyGetThatFailsLeavesTheSessionWritable) {
  LockingItems items(TheSession());
  items.ReadOnlyGet();
  Run("RENAME TABLE item TO away");
  EXPECT_EQ(FailureOf([&] { items.Look(1); }),
            (Failure{102, "DB Error 1146 (Table '" + Schema() +
                              ".item' doesn't exist) in query\n\b\nSELECT `id`, `name` FROM `item` WHERE `id`='1'"}));
  EXPECT_EQ(TheSession().IsReadOnly(), 0);
  Run("RENAME TABLE away TO item");
  items.name = "written";
  items.Put();
  EXPECT_EQ(Stored("SELECT name FROM item WHERE id=1"), "written");
}

TEST_F(CacheLocks, GetOfAReadOnlySessionLocksNoRow) {
  Session session(WithTransactions());
  LockingItems items(session);
  session.ReadOnly();
  items.Look(1);
  EXPECT_EQ(RefusalOfAChange(), kAccepted);
}

TEST_F(CacheLocks, ReadOnlyGetLeavesAReadOnlySessionSo) {
  LockingItems items(TheSession());
  TheSession().ReadOnly();
  items.ReadOnlyGet();
  items.Look(1);
  EXPECT_EQ(TheSession().IsReadOnly(), 1);
}

TEST_F(CacheLocks, HitLocksNoRow) {
  Session session(WithTransactions());
  LockingItems items(session);
  items.Look(1);
  session.Commit();
  items.Look(1);
  EXPECT_EQ(RefusalOfAChange(), kAccepted);
}

TEST_F(CacheLocks, PreFetchLocksNoRow) {
  Session session(WithTransactions());
  LockingItems items(session);
  EXPECT_EQ(items.PreFetch(), 4);
  EXPECT_EQ(RefusalOfAChange(), kAccepted);
}

TEST_F(CacheLocks, PreFetchWaitsForNoLockAndReadsWhatIsCommitted) {
  Session writer(WithTransactions());
  writer.Execute("UPDATE item SET name='pending'");
  TheSession().Execute("SET innodb_lock_wait_timeout=0");
  EXPECT_EQ(TheItems().PreFetch(), 4);
  TheItems().Look(1);
  EXPECT_EQ(TheItems().name, "one");
}

TEST_F(CacheLocks, ReadOnlyGetWaitsForNoLock) {
  Session writer(WithTransactions());
  writer.Execute("UPDATE item SET name='pending'");
  TheSession().Execute("SET innodb_lock_wait_timeout=0");
  LockingItems items(TheSession());
  items.ReadOnlyGet();
  items.Look(1);
  EXPECT_EQ(items.name, "one");
}

TEST_F(CacheLocks, GetWaitsForTheLockOfAnother) {
  Session writer(WithTransactions());
  writer.Execute("UPDATE item SET name='pending' WHERE id=1");
  TheSession().Execute("SET innodb_lock_wait_timeout=0");
  Failure const failure = FailureOf([&] { TheItems().Look(1); });
  EXPECT_EQ(failure.number, 102);
  EXPECT_THAT(failure.message, StartsWith("DB Error 1205 ("));
  EXPECT_EQ(TheItems().Size(), 0);
  writer.Commit();
  TheItems().Get(-1);
  EXPECT_EQ(TheItems().name, "pending");
}

// Keys of other kinds.

struct Lines : ASSimpleCache {
  ASInt order;
  ASVStr article{20};
  ASInt amount;
  ASAttribute amountColumn{"amount"};
  ASAttribute orderColumn{"order_id", "Order", 0, corvane::kKey};
  ASAttribute articleColumn{"article", "Article", 0, corvane::kKey};

  explicit Lines(ASSession& session) : ASDomain("line", "Line"), ASSimpleCache(&session, 0) {
    Add(amountColumn, amount).Add(orderColumn, order).Add(articleColumn, article);
  }
  Lines(Lines const&) = delete;
  Lines& operator=(Lines const&) = delete;

  int Amount(int number, char const* text) {
    order = number;
    article = text;
    Get(-1);
    return static_cast<int>(amount);
  }
};

class CacheSeveralKeys : public LiveTest {
 protected:
  void CreateTables() override {
    Run("CREATE TABLE line (order_id INT, article VARCHAR(20), amount INT, PRIMARY KEY (article, order_id))");
    Run("INSERT INTO line VALUES (1, 'nut', 10), (1, 'bolt', 20), (-2, 'nut', 30), (-2, 'screw', 40)");
  }
};

TEST_F(CacheSeveralKeys, AllOfThemNameTheRecord) {
  Session session(With());
  Lines lines(session);
  EXPECT_EQ(lines.Amount(1, "nut"), 10);
  EXPECT_EQ(lines.Amount(1, "bolt"), 20);
  EXPECT_EQ(lines.Amount(-2, "nut"), 30);
  EXPECT_EQ(lines.Size(), 3);
  EXPECT_EQ(StatementsOf(session, [&] { EXPECT_EQ(lines.Amount(1, "bolt"), 20); }), kNothing);
}

TEST_F(CacheSeveralKeys, SmallestIsFirstAfterPreFetchByTheFirstKeyThenTheNext) {
  Session session(With());
  Lines lines(session);
  EXPECT_EQ(lines.PreFetch(), 4);
  lines.Get(0);
  EXPECT_EQ(static_cast<int>(lines.amount), 30);
  lines.Get(1);
  EXPECT_EQ(static_cast<int>(lines.amount), 40);
  lines.Get(2);
  EXPECT_EQ(static_cast<int>(lines.amount), 20);
}

// `Key` is the class of the column.
template <class Key>
struct Words : ASSimpleCache {
  Key word{10};
  ASInt amount;
  ASAttribute wordColumn{"word", "Word", 0, corvane::kKey};
  ASAttribute amountColumn{"amount"};

  explicit Words(ASSession& session) : ASDomain("word", "Word"), ASSimpleCache(&session, 0) {
    Add(wordColumn, word).Add(amountColumn, amount);
  }
  Words(Words const&) = delete;
  Words& operator=(Words const&) = delete;

  int Amount(char const* text) {
    word = text;
    Get(-1);
    return static_cast<int>(amount);
  }
};

class CacheTextKey : public LiveTest {
 protected:
  void CreateTables() override {
    Run("CREATE TABLE word (word CHAR(10) PRIMARY KEY, amount INT) COLLATE utf8mb4_general_ci");
    Run("INSERT INTO word VALUES ('zoo', 1), ('Zebra', 2), ('apple', 3), ('ABC', 4), ('O\\'Brien', 5)");
  }
};

TEST_F(CacheTextKey, SmallestByItsBytesIsFirstAfterPreFetch) {
  Session session(With());
  Words<ASVStr> words(session);
  EXPECT_EQ(words.PreFetch(), 5);
  words.Get(0);
  EXPECT_EQ(words.word, "ABC");
  words.Get(1);
  EXPECT_EQ(words.word, "O'Brien");
}

TEST_F(CacheTextKey, WithAQuoteIsFoundAndRemembered) {
  Session session(With());
  Words<ASVStr> words(session);
  EXPECT_EQ(words.Amount("O'Brien"), 5);
  EXPECT_EQ(StatementsOf(session, [&] { EXPECT_EQ(words.Amount("O'Brien"), 5); }), kNothing);
}

TEST_F(CacheTextKey, PaddedOneIsAHitTheSecondTime) {
  Session session(With());
  Words<ASStr> words(session);
  EXPECT_EQ(words.Amount("zoo"), 1);
  EXPECT_EQ(StatementsOf(session, [&] { EXPECT_EQ(words.Amount("zoo"), 1); }), kNothing);
  EXPECT_EQ(words.Size(), 1);
}

TEST_F(CacheTextKey, PaddedOneIsAHitAfterPreFetch) {
  Session session(With());
  Words<ASStr> words(session);
  words.PreFetch();
  EXPECT_EQ(StatementsOf(session, [&] { EXPECT_EQ(words.Amount("zoo"), 1); }), kNothing);
}

TEST_F(CacheTextKey, TrailingBlanksMakeNoDifference) {
  Session session(With());
  Words<ASVStr> words(session);
  EXPECT_EQ(words.Amount("zoo  "), 1);
  EXPECT_EQ(words.word.getstr(), "zoo");  // as the row has it
  EXPECT_EQ(StatementsOf(session,
                         [&] {
                           EXPECT_EQ(words.Amount("zoo"), 1);
                           EXPECT_EQ(words.Amount("zoo   "), 1);
                         }),
            kNothing);
  EXPECT_EQ(words.Size(), 1);
}

TEST_F(CacheTextKey, OtherSpellingFindsTheRowAndIsRememberedAsTheRowHasIt) {
  Session session(With());
  Words<ASVStr> words(session);
  EXPECT_EQ(words.Amount("abc"), 4);
  EXPECT_EQ(words.word, "ABC");
  words.Get(0);
  EXPECT_EQ(words.word, "ABC");
}

TEST_F(CacheTextKey, SpellingOfTheRowIsAHitTheSecondTime) {
  Session session(With());
  Words<ASVStr> words(session);
  words.Amount("abc");
  EXPECT_EQ(StatementsOf(session, [&] { EXPECT_EQ(words.Amount("ABC"), 4); }), kNothing);
}

TEST_F(CacheTextKey, OtherSpellingAsksEveryTimeAndIsOneRecord) {
  Session session(With());
  Words<ASVStr> words(session);
  words.Amount("abc");
  EXPECT_EQ(StatementsOf(session, [&] { EXPECT_EQ(words.Amount("abc"), 4); }), kOneSelect);
  EXPECT_EQ(StatementsOf(session, [&] { EXPECT_EQ(words.Amount("Abc"), 4); }), kOneSelect);
  EXPECT_EQ(words.Size(), 1);
}

}  // namespace
