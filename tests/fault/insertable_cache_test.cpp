// Caches whose records can be inserted and deleted: their statements, saving first, and what a failure leaves.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <new>
#include <string>
#include <utility>

#include "corvane/corvane.h"
#include "tests/support/failing_allocation.h"
#include "tests/support/scripted_cache.h"

namespace corvane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Country = CountryOf<ASInsertableCache>;

// Numbered by the server.
struct Visit : ASInsertableCache {
  ASInt id;
  ASVStr place{20};
  ASAttribute idColumn{"id", "", 0, corvane::kKey | corvane::kAutoIncrement};
  ASAttribute placeColumn{"place"};

  explicit Visit(ASSession* session) : ASDomain("visit", ""), ASSimpleCache(session, 0), ASInsertableCache(session, 0) {
    Add(idColumn, id).Add(placeColumn, place);
  }
};

// The same with a key of 64 bits.
struct Click : ASInsertableCache {
  ASInt64 id;
  ASAttribute idColumn{"id", "", 0, corvane::kKey | corvane::kAutoIncrement};

  explicit Click(ASSession* session) : ASDomain("click", ""), ASSimpleCache(session, 1), ASInsertableCache(session, 1) {
    Add(idColumn, id);
  }
};

constexpr char const* kInsertIT = "INSERT INTO `country` (`code`, `name`) VALUES ('IT', 'Italy')";
constexpr char const* kDeleteIT = "DELETE FROM `country` WHERE `code`='IT'";

class InsertableCache : public ScriptedCache<Country> {
 protected:
  void Insert(char const* code, char const* name) {
    country->code = code;
    country->name = name;
    country->Insert();
  }

  void Delete(char const* code) {
    country->code = code;
    country->Delete();
  }
};

// ---- inserting

TEST_F(InsertableCache, InsertSendsOneStatement) {
  Insert("NZ", "New Zealand");
  EXPECT_THAT(client.Calls(), ElementsAre(std::string("query ") + kInsertNZ));
}

TEST_F(InsertableCache, InsertRemembersTheRecord) {
  Insert("NZ", "New Zealand");
  EXPECT_EQ(country->Size(), 1);
  EXPECT_EQ(Stored("NZ"), "New Zealand");
}

TEST_F(InsertableCache, InsertLeavesTheRecordAsItIs) {
  Insert("NZ", "New Zealand");
  EXPECT_EQ(country->code, "NZ");
  EXPECT_EQ(country->name, "New Zealand");
}

TEST_F(InsertableCache, InsertReplacesTheStoredRecord) {
  Read("NZ", "old");
  Insert("NZ", "New Zealand");
  EXPECT_EQ(country->Size(), 1);
  EXPECT_EQ(Stored("NZ"), "New Zealand");
}

TEST_F(InsertableCache, InsertEscapesAndWritesNull) {
  country->code = "a'";
  country->Insert();
  EXPECT_THAT(Statements(), ElementsAre("INSERT INTO `country` (`code`, `name`) VALUES ('a\\'', NULL)"));
}

TEST_F(InsertableCache, SwitchedOffInsertRemembersNothing) {
  country->CacheOff();
  Insert("NZ", "New Zealand");
  EXPECT_THAT(Statements(), ElementsAre(kInsertNZ));
  EXPECT_EQ(country->Size(), 0);
}

TEST_F(InsertableCache, SwitchedOffInsertLeavesTheStore) {
  country->CacheOff();
  Answer(2, {{"NZ", "old"}});
  country->PreFetch();
  Insert("NZ", "New Zealand");
  EXPECT_EQ(country->Size(), 1);
  EXPECT_EQ(Stored("NZ"), "old");
}

TEST_F(InsertableCache, InsertNeverSaves) {
  SaveFirst();
  Insert("NZ", "New Zealand");
  EXPECT_THAT(Statements(), ElementsAre(kInsertNZ));
}

TEST_F(InsertableCache, InsertItemInsertsWhateverTheText) {
  SetNewZealand();
  InsertItem("", *country);
  InsertItem("another text", *country);
  EXPECT_THAT(Statements(), ElementsAre(kInsertNZ, kInsertNZ));
}

struct CountsInserts : Country {
  int inserts = 0;
  explicit CountsInserts(ASSession* s) : ASDomain("country", ""), ASSimpleCache(s, 0), Country(s, 0) {}
  void Insert() override { ++inserts; }
};

TEST_F(InsertableCache, InsertItemGoesThroughAnOverriddenInsert) {
  CountsInserts counting(session);
  InsertItem("x", counting);
  EXPECT_EQ(counting.inserts, 1);
  EXPECT_THAT(client.Calls(), IsEmpty());
}

TEST_F(InsertableCache, ANumberedRecordIsStoredUnderTheKeyThatItHolds) {
  Visit visit(session);
  visit.place = "Pisa";
  client.AnswerQuery().InsertId(7);
  visit.Insert();
  EXPECT_THAT(Statements(), ElementsAre("INSERT INTO `visit` (`place`) VALUES ('Pisa')"));
  EXPECT_EQ(visit.id.IsNull(), 1);
  client.ForgetCalls();
  visit.place = "changed";
  visit.Get(-1);
  EXPECT_THAT(client.Calls(), IsEmpty());
  EXPECT_EQ(visit.place, "Pisa");
  EXPECT_EQ(visit.id.IsNull(), 1);
}

TEST_F(InsertableCache, ANumberedRecordIsReadUnderItsNumber) {
  Visit visit(session);
  visit.place = "Pisa";
  client.AnswerQuery().InsertId(7);
  visit.Insert();
  client.ForgetCalls();
  visit.id = session->GetInsertId();
  Answer(2, {{"7", "Pisa"}});
  visit.Get(-1);
  EXPECT_THAT(Statements(), ElementsAre("SELECT `id`, `place` FROM `visit` WHERE `id`='7' FOR UPDATE"));
  EXPECT_EQ(visit.id, 7);
  EXPECT_EQ(visit.Size(), 2);
}

// ---- deleting

TEST_F(InsertableCache, RecordsUnderANull64BitKeyReplaceEachOther) {
  Click click(session);
  click.Insert();
  click.Insert();
  EXPECT_EQ(click.Size(), 1);
  click.Get(-1);
  EXPECT_EQ(click.id, LONG_MIN);
}

TEST_F(InsertableCache, DeleteSendsOneStatement) {
  Delete("NZ");
  EXPECT_THAT(client.Calls(), ElementsAre(std::string("query ") + kDeleteNZ));
}

TEST_F(InsertableCache, DeleteDropsTheStoredRecord) {
  Read("IT", "Italy");
  Read("NZ", "New Zealand");
  Delete("NZ");
  EXPECT_EQ(country->Size(), 1);
  EXPECT_EQ(Stored("NZ"), "none");
  EXPECT_EQ(Stored("IT"), "Italy");
}

TEST_F(InsertableCache, DeleteSetsAllValuesNull) {
  Read("NZ", "New Zealand");
  Delete("NZ");
  EXPECT_EQ(country->code.IsNull(), 1);
  EXPECT_EQ(country->name.IsNull(), 1);
}

TEST_F(InsertableCache, DeleteOfARowThatDoesNotExistIsNoError) {
  client.AnswerQuery().AffectedRows(0);
  Delete("NZ");
  EXPECT_EQ(country->code.IsNull(), 1);
}

TEST_F(InsertableCache, SwitchedOffDeleteDropsTheStoredRecordToo) {
  country->CacheOff();
  Answer(2, {{"NZ", "New Zealand"}});
  country->PreFetch();
  Delete("NZ");
  EXPECT_EQ(country->Size(), 0);
}

TEST_F(InsertableCache, ADeletedRecordIsInsertedAgain) {
  Insert("NZ", "New Zealand");
  Delete("NZ");
  Insert("NZ", "New Zealand");
  EXPECT_THAT(Statements(), ElementsAre(kInsertNZ, kDeleteNZ, kInsertNZ));
  EXPECT_EQ(country->Size(), 1);
}

// ---- saving first

TEST_F(InsertableCache, SavesARecordBeforeItsFirstDelete) {
  SaveFirst();
  Delete("NZ");
  EXPECT_THAT(Statements(), ElementsAre(kSaveNZ, kDeleteNZ));
}

TEST_F(InsertableCache, SavesEachKeyOnce) {
  SaveFirst();
  Delete("NZ");
  Delete("IT");
  Delete("NZ");
  EXPECT_THAT(Statements(), ElementsAre(kSaveNZ, kDeleteNZ, kSaveIT, kDeleteIT, kDeleteNZ));
}

TEST_F(InsertableCache, SavesAgainAfterClear) {
  SaveFirst();
  Delete("NZ");
  country->Clear();
  Delete("NZ");
  EXPECT_THAT(Statements(), ElementsAre(kSaveNZ, kDeleteNZ, kSaveNZ, kDeleteNZ));
}

TEST_F(InsertableCache, AnInsertedRecordNeedsNoSave) {
  SaveFirst();
  Insert("NZ", "New Zealand");
  Delete("NZ");
  EXPECT_THAT(Statements(), ElementsAre(kInsertNZ, kDeleteNZ));
}

TEST_F(InsertableCache, AnInsertedRecordNeedsNoSaveWithRememberingOff) {
  SaveFirst();
  country->CacheOff();
  Insert("NZ", "New Zealand");
  Delete("NZ");
  EXPECT_THAT(Statements(), ElementsAre(kInsertNZ, kDeleteNZ));
}

TEST_F(InsertableCache, AnInsertedRecordIsSavedAfterClear) {
  SaveFirst();
  Insert("IT", "Italy");
  country->Clear();
  Delete("IT");
  EXPECT_THAT(Statements(), ElementsAre(kInsertIT, kSaveIT, kDeleteIT));
}

TEST_F(InsertableCache, AFailingSaveIsIgnored) {
  SaveFirst();
  client.FailQuery(1146, "no table").Matching("Arc");
  Delete("NZ");
  Delete("NZ");
  EXPECT_THAT(Statements(), ElementsAre(kSaveNZ, kDeleteNZ, kDeleteNZ));
}

TEST_F(InsertableCache, ASaveThatLosesTheConnectionIsIgnoredInATransactionToo) {
  SaveFirst();
  client.FailQuery(2006, "gone").Matching("Arc");
  Delete("NZ");
  EXPECT_THAT(client.CallsByHandle(),
              ElementsAre(std::string("1 query ") + kSaveNZ, "1 close", "2 init", "2 connect '' '' '' '' 0",
                          "2 query SET AUTOCOMMIT=0", std::string("2 query ") + kDeleteNZ));
}

// ---- failures

class InsertableCacheFailure : public InsertableCache {
 protected:
  // "NZ" is stored with another name than the record has.
  void Start(Parameters parameters, int saveFirst = 0) {
    ReopenWith(std::move(parameters), saveFirst);
    Read("NZ", "old");
    country->name = "New Zealand";
    client.ForgetCalls();
  }

  Thrown Inserted() {
    return ThrownBy([&] { country->Insert(); });
  }
  Thrown Deleted() {
    return ThrownBy([&] { country->Delete(); });
  }

  void ExpectUnchanged() {
    EXPECT_EQ(country->code, "NZ");
    EXPECT_EQ(country->name, "New Zealand");
    EXPECT_EQ(country->Size(), 1);
    EXPECT_EQ(Stored("NZ"), "old");
  }

  std::string const insertRefused = std::string(" in query\n\b\n") + kInsertNZ;
  std::string const deleteRefused = std::string(" in query\n\b\n") + kDeleteNZ;
};

TEST_F(InsertableCacheFailure, OfInsertIsTheSessions) {
  Start({});
  client.FailQuery(1062, "Duplicate entry");
  EXPECT_EQ(Inserted(), (Thrown{102, "DB Error 1062 (Duplicate entry)" + insertRefused}));
  ExpectUnchanged();
  Insert("NZ", "New Zealand");
  EXPECT_EQ(Stored("NZ"), "New Zealand");
}

TEST_F(InsertableCacheFailure, OfInsertCountsAsNoSave) {
  Start({}, 1);
  client.FailQuery(1062, "Duplicate entry");
  EXPECT_EQ(Inserted().number, 102);
  Delete("NZ");
  EXPECT_THAT(Statements(), ElementsAre(kInsertNZ, kSaveNZ, kDeleteNZ));
}

TEST_F(InsertableCacheFailure, OfInsertByALostConnectionInATransactionThrows) {
  Start({});
  client.FailQuery(2013, "lost").Matching("INSERT INTO `country`");
  EXPECT_EQ(Inserted(), (Thrown{102, "DB Error 0 ()" + insertRefused}));
  EXPECT_THAT(Statements(), ElementsAre(kInsertNZ, "SET AUTOCOMMIT=0"));
  ExpectUnchanged();
}

TEST_F(InsertableCacheFailure, OfInsertByALostConnectionWithAutocommitIsNone) {
  Start({{"AutoCommit", "on"}});
  client.FailQuery(2013, "lost").Matching("INSERT INTO `country`");
  country->Insert();
  EXPECT_THAT(Statements(), ElementsAre(kInsertNZ, "SET AUTOCOMMIT=1", kInsertNZ));
  EXPECT_EQ(Stored("NZ"), "New Zealand");
}

TEST_F(InsertableCacheFailure, OfDeleteIsTheSessions) {
  Start({});
  client.FailQuery(1217, "parent");
  EXPECT_EQ(Deleted(), (Thrown{100, "DB Error 1217 (parent)" + deleteRefused}));
  ExpectUnchanged();
  Delete("NZ");
  EXPECT_EQ(country->Size(), 0);
}

TEST_F(InsertableCacheFailure, OfDeleteLeavesTheRecordSaved) {
  Start({}, 1);
  client.FailQuery(1451, "parent row").Matching("DELETE");
  EXPECT_EQ(Deleted(), (Thrown{102, "DB Error 1451 (parent row)" + deleteRefused}));
  ExpectUnchanged();
  Delete("NZ");
  EXPECT_THAT(Statements(), ElementsAre(kSaveNZ, kDeleteNZ, kDeleteNZ));
}

TEST_F(InsertableCacheFailure, OfDeleteByALostConnectionInATransactionThrows) {
  Start({});
  client.FailQuery(2006, "gone").Matching("DELETE");
  EXPECT_EQ(Deleted(), (Thrown{102, "DB Error 0 ()" + deleteRefused}));
  EXPECT_THAT(Statements(), ElementsAre(kDeleteNZ, "SET AUTOCOMMIT=0"));
  ExpectUnchanged();
}

TEST_F(InsertableCacheFailure, OfDeleteByALostConnectionWithAutocommitIsNone) {
  Start({{"AutoCommit", "on"}});
  client.FailQuery(2006, "gone").Matching("DELETE");
  country->Delete();
  EXPECT_THAT(Statements(), ElementsAre(kDeleteNZ, "SET AUTOCOMMIT=1", kDeleteNZ));
  EXPECT_EQ(country->Size(), 0);
}

TEST_F(InsertableCacheFailure, OfAConnectionThatStaysLostThrows) {
  Start({{"AutoReconnect", "off"}});
  client.FailQuery(2006, "gone").Times(2);
  EXPECT_EQ(Inserted(), (Thrown{103, "Database connection lost"}));
  EXPECT_EQ(Deleted(), (Thrown{103, "Database connection lost"}));
  ExpectUnchanged();
}

// A record that was replaced in the table is never served from the store as it was before.
TEST_F(InsertableCacheFailure, OfEachAllocationOfInsertLeavesNoStaleRecord) {
  char const* const name = "New Zealand, a name that is a little longer";
  unsigned failures = 0;
  for (bool failed = true; failed; ++failures) {
    client.Reset();
    Start({}, 1);
    country->name = name;
    try {
      FailingAllocation const failing(failures);
      country->Insert();
      failed = failing.Failed();
    } catch (std::bad_alloc const&) {
      bool const sent = !Statements().empty();
      EXPECT_EQ(country->name, name);
      std::string const stored = Stored("NZ");
      EXPECT_TRUE(sent ? stored == "none" || stored == name : stored == "old") << stored;
    }
  }
  EXPECT_GE(failures, 8U);
  EXPECT_EQ(Stored("NZ"), name);
}

TEST_F(InsertableCacheFailure, OfEachAllocationOfDeleteLeavesNoStaleRecord) {
  unsigned failures = 0;
  for (bool failed = true; failed; ++failures) {
    client.Reset();
    Start({}, 1);
    try {
      FailingAllocation const failing(failures);
      country->Delete();
      failed = failing.Failed();
    } catch (std::bad_alloc const&) {
      bool const sent = Statements().size() == 2;
      EXPECT_EQ(Stored("NZ"), sent ? "none" : "old");
    }
  }
  EXPECT_GE(failures, 8U);
  EXPECT_EQ(country->Size(), 0);
  EXPECT_EQ(country->code.IsNull(), 1);
}

// ---- read-only mode

class InsertableCacheReadOnly : public InsertableCache {
 protected:
  void SetUp() override {
    InsertableCache::SetUp();
    ReadyAt(5, 1);
  }

  void ExpectRefused() {
    EXPECT_EQ(ThrownBy([&] { country->Insert(); }),
              (Thrown{0, "System error: Data may not be modified. Readonly mode is active. "}));
    EXPECT_EQ(ThrownBy([&] { InsertItem("x", *country); }),
              (Thrown{0, "System error: Data may not be modified. Readonly mode is active. "}));
    EXPECT_EQ(ThrownBy([&] { country->Delete(); }),
              (Thrown{0, "Internal Error: Attempt to change data in const transaction. "}));
    EXPECT_EQ(LogOf([&] { country->Insert(); }), "");
    EXPECT_EQ(LogOf([&] { country->Delete(); }), "");
    EXPECT_THAT(client.Calls(), IsEmpty());
    EXPECT_EQ(country->Size(), 0);
    EXPECT_EQ(country->name, "New Zealand");
  }

  void ExpectDone() {
    LogOf([&] { country->Insert(), country->Delete(); });
    EXPECT_THAT(Statements(), ElementsAre(kInsertNZ, kDeleteNZ));
  }
};

TEST_F(InsertableCacheReadOnly, RefusesBeforeAnythingIsLoggedOrSent) {
  session->ReadOnly();
  ExpectRefused();
}

TEST_F(InsertableCacheReadOnly, RefusesInASectionUntilItEnds) {
  session->PushReadOnly();
  ExpectRefused();
  session->PopReadOnly();
  ExpectDone();
}

TEST_F(InsertableCacheReadOnly, DoesItAfterClearReadOnly) {
  session->ReadOnly();
  ExpectRefused();
  session->ClearReadOnly();
  ExpectDone();
}

TEST_F(InsertableCache, WithoutSessionSaysSo) {
  Country alone(nullptr, 1);
  Thrown const thrown{0, "There is no session for cache. "};
  EXPECT_EQ(ThrownBy([&] { alone.Insert(); }), thrown);
  EXPECT_EQ(ThrownBy([&] { alone.Delete(); }), thrown);
  EXPECT_EQ(ThrownBy([&] { InsertItem("x", alone); }), thrown);
}

TEST_F(InsertableCache, ConstructedWithoutArgumentsHasNoSession) {
  ASInsertableCache alone;
  EXPECT_EQ(ThrownBy([&] { alone.Insert(); }), (Thrown{0, "There is no session for cache. "}));
}

}  // namespace
}  // namespace corvane::test
