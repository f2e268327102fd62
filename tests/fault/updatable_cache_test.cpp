// Caches whose records can be changed: the statements of a Put, saving first, and what a failure leaves.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <new>
#include <optional>
#include <string>
#include <utility>

#include "corvane/corvane.h"
#include "tests/support/failing_allocation.h"
#include "tests/support/scripted_cache.h"

namespace corvane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Country = CountryOf<ASUpdatableCache>;

// A number that has no SQL form is possible as its key.
struct Rate : ASUpdatableCache {
  ASDouble rate;
  ASInt number;
  ASAttribute rateColumn{"rate", "", 0, corvane::kKey};
  ASAttribute numberColumn{"n"};

  explicit Rate(ASSession* session) : ASDomain("rate", ""), ASSimpleCache(session, 1), ASUpdatableCache(session, 1) {
    Add(rateColumn, rate).Add(numberColumn, number);
  }
};

struct WithoutKeys : ASUpdatableCache {
  ASInt number;
  ASAttribute numberColumn{"n"};

  explicit WithoutKeys(ASSession* session) : ASDomain("t", ""), ASUpdatableCache(session, 1) {
    Add(numberColumn, number);
  }
};

// A column of every kind.
struct Kinds : ASUpdatableCache {
  ASInt id, integer;
  ASInt64 big;
  ASDouble real;
  ASDCurrency money;
  ASTime time;
  ASStr fixed{6};
  ASVStr text{20};
  ASBlob small{8};
  ASGeometry shape{21};
  ASRealBlob large{0};
  ASGuid guid;
  ASAttribute idColumn{"id", "", 0, corvane::kKey};
  ASAttribute integerColumn{"integer"}, bigColumn{"big"}, realColumn{"real"}, moneyColumn{"money"}, timeColumn{"time"};
  ASAttribute fixedColumn{"fixed"}, textColumn{"text"}, smallColumn{"small"}, shapeColumn{"shape"};
  ASAttribute largeColumn{"large"}, guidColumn{"guid"};

  explicit Kinds(ASSession* session) : ASDomain("t", ""), ASUpdatableCache(session, 0) {
    Add(idColumn, id).Add(integerColumn, integer).Add(bigColumn, big).Add(realColumn, real).Add(moneyColumn, money);
    Add(timeColumn, time).Add(fixedColumn, fixed).Add(textColumn, text).Add(smallColumn, small);
    Add(shapeColumn, shape).Add(largeColumn, large).Add(guidColumn, guid);
  }
};

constexpr char const* kUpdateIT = "UPDATE `country` SET `name`='Italy' WHERE `code`='IT'";

class UpdatableCache : public ScriptedCache<Country> {
 protected:
  void Put(char const* code, char const* name) {
    country->code = code;
    country->name = name;
    country->Put();
  }
};

// ---- the statement and the store

TEST_F(UpdatableCache, PutSendsTheUpdateAlone) {
  Put("NZ", "New Zealand");
  EXPECT_THAT(client.Calls(), ElementsAre(std::string("query ") + kUpdateNZ));
}

TEST_F(UpdatableCache, PutRemembersTheRecord) {
  Put("NZ", "New Zealand");
  EXPECT_EQ(country->Size(), 1);
  EXPECT_EQ(Stored("NZ"), "New Zealand");
}

TEST_F(UpdatableCache, PutLeavesTheRecordAsItIs) {
  Put("NZ", "New Zealand");
  EXPECT_EQ(country->code, "NZ");
  EXPECT_EQ(country->name, "New Zealand");
}

TEST_F(UpdatableCache, PutReplacesTheStoredRecord) {
  Read("NZ", "old");
  Put("NZ", "New Zealand");
  EXPECT_EQ(country->Size(), 1);
  EXPECT_EQ(Stored("NZ"), "New Zealand");
}

TEST_F(UpdatableCache, PutLeavesOtherStoredRecords) {
  Read("IT", "Italy");
  Put("NZ", "New Zealand");
  EXPECT_EQ(country->Size(), 2);
  EXPECT_EQ(Stored("IT"), "Italy");
}

TEST_F(UpdatableCache, PutOfARowThatDoesNotExistIsRememberedAllTheSame) {
  client.AnswerQuery().AffectedRows(0);
  Put("NZ", "New Zealand");
  EXPECT_EQ(country->Size(), 1);
}

TEST_F(UpdatableCache, PutWritesNull) {
  country->code = "NZ";
  country->Put();
  EXPECT_THAT(Statements(), ElementsAre("UPDATE `country` SET `name`=NULL WHERE `code`='NZ'"));
}

TEST_F(UpdatableCache, PutEscapesValueAndKey) {
  Put("a'", "b'c");
  EXPECT_THAT(Statements(), ElementsAre("UPDATE `country` SET `name`='b\\'c' WHERE `code`='a\\''"));
}

TEST_F(UpdatableCache, SwitchedOffPutRemembersNothing) {
  country->CacheOff();
  Put("NZ", "New Zealand");
  EXPECT_THAT(Statements(), ElementsAre(kUpdateNZ));
  EXPECT_EQ(country->Size(), 0);
}

TEST_F(UpdatableCache, SwitchedOffPutDropsTheStoredRecord) {
  country->CacheOff();
  Answer(2, {{"IT", "Italy"}, {"NZ", "old"}});
  country->PreFetch();
  Put("NZ", "New Zealand");
  EXPECT_EQ(country->Size(), 1);
  EXPECT_EQ(Stored("NZ"), "none");
}

TEST_F(UpdatableCache, ReadsLikeASimpleCache) {
  Read("NZ", "New Zealand");
  country->code = "NZ";
  country->Get(-1);
  EXPECT_THAT(Statements(), ElementsAre(kSelectNZ));
  EXPECT_EQ(country->name, "New Zealand");
}

// ---- saving first

TEST_F(UpdatableCache, SavesARecordBeforeItsFirstPut) {
  SaveFirst();
  Put("NZ", "New Zealand");
  EXPECT_THAT(Statements(), ElementsAre(kSaveNZ, kUpdateNZ));
}

TEST_F(UpdatableCache, SavesARecordOnce) {
  SaveFirst();
  Put("NZ", "New Zealand");
  Put("NZ", "New Zealand");
  EXPECT_THAT(Statements(), ElementsAre(kSaveNZ, kUpdateNZ, kUpdateNZ));
}

TEST_F(UpdatableCache, SavesEachKeyOfItsOwn) {
  SaveFirst();
  Put("NZ", "New Zealand");
  Put("IT", "Italy");
  Put("NZ", "New Zealand");
  EXPECT_THAT(Statements(), ElementsAre(kSaveNZ, kUpdateNZ, kSaveIT, kUpdateIT, kUpdateNZ));
}

TEST_F(UpdatableCache, SavesAgainAfterClear) {
  SaveFirst();
  Put("NZ", "New Zealand");
  country->Clear();
  Put("NZ", "New Zealand");
  EXPECT_THAT(Statements(), ElementsAre(kSaveNZ, kUpdateNZ, kSaveNZ, kUpdateNZ));
}

TEST_F(UpdatableCache, SavesAgainAfterSwitchingOff) {
  SaveFirst();
  Put("NZ", "New Zealand");
  country->CacheOff();
  Put("NZ", "New Zealand");
  Put("NZ", "New Zealand");
  EXPECT_THAT(Statements(), ElementsAre(kSaveNZ, kUpdateNZ, kSaveNZ, kUpdateNZ, kUpdateNZ));
}

TEST_F(UpdatableCache, SavesARecordThatWasReadBefore) {
  SaveFirst();
  Read("NZ", "old");
  Put("NZ", "New Zealand");
  EXPECT_THAT(Statements(), ElementsAre(kSelectNZ, kSaveNZ, kUpdateNZ));
}

TEST_F(UpdatableCache, SavesAKeyOnceWhateverItsTrailingBlanks) {
  SaveFirst();
  Put("N", "x");
  Put("N ", "x");
  EXPECT_THAT(Statements(),
              ElementsAre("INSERT INTO `countryArc` (code, name) SELECT code, name FROM `country` WHERE code='N'",
                          "UPDATE `country` SET `name`='x' WHERE `code`='N'",
                          "UPDATE `country` SET `name`='x' WHERE `code`='N '"));
  EXPECT_EQ(country->Size(), 1);
}

TEST_F(UpdatableCache, WithoutKeysChangesEveryRowAndKeepsOneRecord) {
  WithoutKeys record(session);
  record.number = 1;
  record.Put();
  record.number = 2;
  record.Put();
  EXPECT_THAT(Statements(), ElementsAre("INSERT INTO `tArc` (n) SELECT n FROM `t`", "UPDATE `t` SET `n`='1'",
                                        "UPDATE `t` SET `n`='2'"));
  record.number = 3;
  record.Get(-1);
  EXPECT_EQ(record.number, 2);
  EXPECT_EQ(record.Size(), 1);
}

class UpdatableCacheSwitch : public UpdatableCache, public testing::WithParamInterface<int> {};

TEST_P(UpdatableCacheSwitch, OtherThanZeroSaves) {
  country.emplace(session, GetParam());
  Put("NZ", "New Zealand");
  EXPECT_THAT(Statements(), ElementsAre(kSaveNZ, kUpdateNZ));
}

INSTANTIATE_TEST_SUITE_P(Numbers, UpdatableCacheSwitch,
                         testing::Values(1, 2, -1, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()));

// ---- a save that fails

TEST_F(UpdatableCache, AFailingSaveIsIgnored) {
  SaveFirst();
  client.FailQuery(1146, "no table").Matching("Arc");
  Put("NZ", "New Zealand");
  EXPECT_THAT(Statements(), ElementsAre(kSaveNZ, kUpdateNZ));
  EXPECT_EQ(country->Size(), 1);
}

TEST_F(UpdatableCache, AFailingSaveIsNotRepeated) {
  SaveFirst();
  client.FailQuery(1062, "duplicate").Matching("Arc");
  Put("NZ", "New Zealand");
  Put("NZ", "New Zealand");
  EXPECT_THAT(Statements(), ElementsAre(kSaveNZ, kUpdateNZ, kUpdateNZ));
}

TEST_F(UpdatableCache, ASaveThatAParentRowRefusesIsIgnored) {
  SaveFirst();
  client.FailQuery(1217, "parent").Matching("Arc");
  Put("NZ", "New Zealand");
  EXPECT_THAT(Statements(), ElementsAre(kSaveNZ, kUpdateNZ));
}

TEST_F(UpdatableCache, ASaveThatLosesTheConnectionIsIgnoredInATransactionToo) {
  SaveFirst();
  client.FailQuery(2013, "lost").Matching("Arc");
  Put("NZ", "New Zealand");
  EXPECT_THAT(client.CallsByHandle(),
              ElementsAre(std::string("1 query ") + kSaveNZ, "1 close", "2 init", "2 connect '' '' '' '' 0",
                          "2 query SET AUTOCOMMIT=0", std::string("2 query ") + kUpdateNZ));
  EXPECT_EQ(country->Size(), 1);
}

TEST_F(UpdatableCache, ASaveThatLosesTheConnectionIsRepeatedWithAutocommit) {
  ReopenWith({{"AutoCommit", "on"}}, 1);
  client.FailQuery(2006, "gone").Matching("Arc");
  Put("NZ", "New Zealand");
  EXPECT_THAT(Statements(), ElementsAre(kSaveNZ, "SET AUTOCOMMIT=1", kSaveNZ, kUpdateNZ));
}

TEST_F(UpdatableCache, WhereTheConnectionStaysLostTheUpdateFails) {
  ReopenWith({{"AutoReconnect", "off"}}, 1);
  client.FailQuery(2006, "gone").Times(2);
  EXPECT_EQ(ThrownBy([&] { Put("NZ", "New Zealand"); }), (Thrown{103, "Database connection lost"}));
  EXPECT_THAT(Statements(), ElementsAre(kSaveNZ, kUpdateNZ));
  EXPECT_EQ(country->Size(), 0);
}

TEST_F(UpdatableCache, AFailingSaveIsLogged) {
  LogOf([&] { session = &Construct({}, 1); });
  SaveFirst();
  client.FailQuery(1146, "no table").Matching("Arc");
  EXPECT_EQ(LogOf([&] { Put("NZ", "New Zealand"); }),
            std::string("SESSION ADDR EXECUTE Failed\n Error 1146 (no table) in query\n") + kSaveNZ + "\n");
}

TEST_F(UpdatableCache, ASaveWithoutSqlFormIsRefusedAndNothingSent) {
  Rate rate(session);
  rate.rate = std::numeric_limits<double>::infinity();
  EXPECT_EQ(ThrownBy([&] { rate.Put(); }), (Thrown{0, "Value has no SQL form, it is not a finite number: rate. "}));
  EXPECT_THAT(client.Calls(), IsEmpty());
  EXPECT_EQ(rate.Size(), 0);
}

// ---- an update that fails

class UpdatableCacheFailure : public UpdatableCache {
 protected:
  void Start(Parameters parameters, int saveFirst = 0) {
    ReopenWith(std::move(parameters), saveFirst);
    Read("NZ", "old");
    client.ForgetCalls();
  }

  Thrown Failed() {
    return ThrownBy([&] { Put("NZ", "New Zealand"); });
  }

  void ExpectUnchangedAndUsable() {
    EXPECT_EQ(country->code, "NZ");
    EXPECT_EQ(country->name, "New Zealand");
    EXPECT_EQ(country->Size(), 1);
    country->Get(0);
    EXPECT_EQ(country->name, "old");
    Put("NZ", "New Zealand");
    EXPECT_EQ(Stored("NZ"), "New Zealand");
  }

  std::string const refused = std::string(" in query\n\b\n") + kUpdateNZ;
};

TEST_F(UpdatableCacheFailure, IsTheSessions) {
  Start({});
  client.FailQuery(1062, "Duplicate entry");
  EXPECT_EQ(Failed(), (Thrown{102, "DB Error 1062 (Duplicate entry)" + refused}));
  ExpectUnchangedAndUsable();
}

TEST_F(UpdatableCacheFailure, OfAParentRowHasItsOwnNumber) {
  Start({});
  client.FailQuery(1217, "parent");
  EXPECT_EQ(Failed(), (Thrown{100, "DB Error 1217 (parent)" + refused}));
  ExpectUnchangedAndUsable();
}

TEST_F(UpdatableCacheFailure, OfALostConnectionInATransactionThrows) {
  Start({});
  client.FailQuery(2006, "gone").Matching("UPDATE `country`");
  EXPECT_EQ(Failed(), (Thrown{102, "DB Error 0 ()" + refused}));
  EXPECT_THAT(Statements(), ElementsAre(kUpdateNZ, "SET AUTOCOMMIT=0"));
  ExpectUnchangedAndUsable();
}

TEST_F(UpdatableCacheFailure, OfALostConnectionWithAutocommitIsNone) {
  Start({{"AutoCommit", "on"}});
  client.FailQuery(2013, "lost").Matching("UPDATE `country`");
  Put("NZ", "New Zealand");
  EXPECT_THAT(Statements(), ElementsAre(kUpdateNZ, "SET AUTOCOMMIT=1", kUpdateNZ));
  EXPECT_EQ(Stored("NZ"), "New Zealand");
}

TEST_F(UpdatableCacheFailure, LeavesTheRecordSaved) {
  Start({}, 1);
  client.FailQuery(1205, "lock wait").Matching("UPDATE `country`");
  EXPECT_EQ(Failed(), (Thrown{102, "DB Error 1205 (lock wait)" + refused}));
  EXPECT_THAT(Statements(), ElementsAre(kSaveNZ, kUpdateNZ));
  ExpectUnchangedAndUsable();
  EXPECT_THAT(Statements(), ElementsAre(kSaveNZ, kUpdateNZ, kUpdateNZ));
}

// A record that was changed in the table is never served from the store as it was before.
TEST_F(UpdatableCacheFailure, OfEachAllocationLeavesNoStaleRecord) {
  char const* const name = "New Zealand, a name that is a little longer";
  unsigned failures = 0;
  for (bool failed = true; failed; ++failures) {
    client.Reset();
    Start({}, 1);
    country->code = "NZ";
    country->name = name;
    try {
      FailingAllocation const failing(failures);
      country->Put();
      failed = failing.Failed();
    } catch (std::bad_alloc const&) {
      bool const sent = Statements().size() == 2;
      EXPECT_EQ(country->name, name);
      EXPECT_EQ(Stored("NZ"), sent ? "none" : "old");
    }
  }
  EXPECT_GE(failures, 10U);
  EXPECT_EQ(Stored("NZ"), name);
}

// ---- read-only mode

class UpdatableCacheReadOnly : public UpdatableCache {
 protected:
  void SetUp() override {
    UpdatableCache::SetUp();
    ReadyAt(5, 1);
  }

  void ExpectRefused() {
    EXPECT_EQ(ThrownBy([&] { country->Put(); }),
              (Thrown{0, "Internal Error: Attempt to change data in const transaction. "}));
    EXPECT_EQ(LogOf([&] { country->Put(); }), "");
    EXPECT_THAT(client.Calls(), IsEmpty());
    EXPECT_EQ(country->Size(), 0);
    EXPECT_EQ(country->name, "New Zealand");
  }
};

TEST_F(UpdatableCacheReadOnly, PutIsRefusedBeforeAnythingIsLoggedOrSent) {
  session->ReadOnly();
  ExpectRefused();
}

TEST_F(UpdatableCacheReadOnly, PutIsRefusedInASectionUntilItEnds) {
  session->PushReadOnly();
  ExpectRefused();
  session->PopReadOnly();
  LogOf([&] { country->Put(); });
  EXPECT_THAT(Statements(), ElementsAre(kSaveNZ, kUpdateNZ));
}

TEST_F(UpdatableCacheReadOnly, PutIsPossibleAfterClearReadOnly) {
  session->ReadOnly();
  ExpectRefused();
  session->ClearReadOnly();
  LogOf([&] { country->Put(); });
  EXPECT_THAT(Statements(), ElementsAre(kSaveNZ, kUpdateNZ));
}

TEST_F(UpdatableCache, WithoutSessionPutSaysSo) {
  Country alone(nullptr, 1);
  EXPECT_EQ(ThrownBy([&] { alone.Put(); }), (Thrown{0, "There is no session for cache. "}));
}

TEST_F(UpdatableCache, ConstructedWithoutArgumentsHasNoSession) {
  ASUpdatableCache alone;
  EXPECT_EQ(ThrownBy([&] { alone.Put(); }), (Thrown{0, "There is no session for cache. "}));
}

// ---- columns of every kind

class UpdatableCacheKinds : public UpdatableCache {
 protected:
  void SetUp() override {
    UpdatableCache::SetUp();
    record.emplace(session);
  }

  // A miss.
  void Read(Row row) {
    Answer(12, {std::move(row)});
    record->id = 1;
    record->Get(-1);
  }

  // From the store, all values being NULL before.
  void ReadAgain() {
    client.ForgetCalls();
    record->Get(99);
    record->id = 1;
    record->Get(-1);
    EXPECT_THAT(client.Calls(), IsEmpty());
  }

  void ExpectValues() {
    EXPECT_EQ(record->id, 1);
    EXPECT_EQ(record->integer, -5);
    EXPECT_EQ(record->big, 9007199254740993);
    EXPECT_EQ(record->real, 0.1);
    EXPECT_EQ(record->money, 19.99);
    EXPECT_EQ(record->time.getstr(), "2004-07-01 13:45:00");
    EXPECT_EQ(record->fixed, "ab");
    EXPECT_EQ(record->text, "caf\xC3\xA9 ");
    EXPECT_EQ(Bytes(record->small.Bytes(), record->small.Length()), std::string("a\0b", 3));
    EXPECT_EQ(Bytes(record->shape.Bytes(), record->shape.Length()), point);
    EXPECT_EQ(Bytes(record->large.voidptr(), record->large.Length()), std::string("\0\1\0\xFF", 4));
    EXPECT_EQ(record->guid.getstr(), "00112233-4455-6677-8899-aabbccddeeff");
  }

  std::optional<Kinds> record;
  std::string const point = std::string("\1\1\0\0\0\0\0\0\0\0\0\xF0\x3F\0\0\0\0\0\0\0\x40", 21);  // 1 2
  Row const values{"1",
                   "-5",
                   "9007199254740993",
                   "0.1",
                   "19.99",
                   "2004-07-01 13:45:00",
                   "ab",
                   "caf\xC3\xA9 ",
                   std::string("a\0b", 3),
                   point,
                   std::string("\0\1\0\xFF", 4),
                   "00112233-4455-6677-8899-aabbccddeeff"};
  Row const nulls{"1",          std::nullopt, std::nullopt, std::nullopt, std::nullopt, std::nullopt,
                  std::nullopt, std::nullopt, std::nullopt, std::nullopt, std::nullopt, std::nullopt};
};

TEST_F(UpdatableCacheKinds, ComeFromTheServer) {
  Read(values);
  EXPECT_THAT(Statements(),
              ElementsAre("SELECT `id`, `integer`, `big`, `real`, `money`, `time`, `fixed`, `text`, `small`, "
                          "AsBinary(shape), `large`, `guid` FROM `t` WHERE `id`='1' FOR UPDATE"));
  ExpectValues();
}

TEST_F(UpdatableCacheKinds, ComeFromTheStoreAsTheyWere) {
  Read(values);
  ReadAgain();
  ExpectValues();
}

TEST_F(UpdatableCacheKinds, ComeFromTheStoreAsTheyWerePut) {
  Read(values);
  record->Clear();
  Read(values);
  record->Put();
  ReadAgain();
  ExpectValues();
}

TEST_F(UpdatableCacheKinds, ComeFromTheWholeTableToo) {
  Row row = values;
  row[9] = std::string(4, '\0') + point;  // a geometry as servers send it
  Answer(12, {row}).Fields({{"id"},
                            {"integer"},
                            {"big"},
                            {"real"},
                            {"money"},
                            {"time"},
                            {"fixed"},
                            {"text"},
                            {"small"},
                            {"shape", MYSQL_TYPE_GEOMETRY},
                            {"large"},
                            {"guid"}});
  record->PreFetch();
  ReadAgain();
  ExpectValues();
}

TEST_F(UpdatableCacheKinds, AreWrittenFromTheStoreAsTheyWere) {
  Read(values);
  ReadAgain();
  record->Put();
  EXPECT_THAT(Statements(),
              ElementsAre("UPDATE `t` SET `integer`='-5', `big`='9007199254740993', `real`='0.1', `money`='19.99', "
                          "`time`='2004-07-01 13:45:00', `fixed`='ab    ', `text`='caf\xC3\xA9 ', `small`='BLOB', "
                          "`shape`=GeomFromText('POINT((1 2))'), "
                          "`large`='\\0\1\\0\xFF', `guid`='00112233-4455-6677-8899-aabbccddeeff' WHERE `id`='1'"));
}

TEST_F(UpdatableCacheKinds, ThatAreNullComeFromTheServerSo) {
  Read(nulls);
  EXPECT_EQ(record->integer.IsNull(), 1);
  EXPECT_EQ(record->big.IsNull(), 1);
  EXPECT_EQ(record->text.IsNull(), 1);
}

TEST_F(UpdatableCacheKinds, ThatAreNullStaySoInTheStoreButForABigNumber) {
  Read(nulls);
  ReadAgain();
  EXPECT_EQ(record->integer.IsNull(), 1);
  EXPECT_EQ(record->big.IsNull(), 0);
  EXPECT_EQ(record->big.getstr(), "-9223372036854775808");
  EXPECT_EQ(record->real.IsNull(), 1);
  EXPECT_EQ(record->money.IsNull(), 1);
  EXPECT_EQ(record->time.IsNull(), 1);
  EXPECT_EQ(record->fixed.IsNull(), 1);
  EXPECT_EQ(record->text.IsNull(), 1);
  EXPECT_EQ(record->small.IsNull(), 1);
  EXPECT_EQ(record->shape.IsNull(), 1);
  EXPECT_EQ(record->large.IsNull(), 1);
  EXPECT_EQ(record->guid.IsNull(), 1);
}

TEST_F(UpdatableCacheKinds, ThatAreNullAreWrittenFromTheStoreSoButForABigNumber) {
  Read(nulls);
  ReadAgain();
  record->Put();
  EXPECT_THAT(Statements(),
              ElementsAre("UPDATE `t` SET `integer`=NULL, `big`='-9223372036854775808', `real`=NULL, `money`=NULL, "
                          "`time`=NULL, `fixed`=NULL, `text`=NULL, `small`=NULL, `shape`=NULL, `large`=NULL, "
                          "`guid`=NULL WHERE `id`='1'"));
}

TEST_F(UpdatableCacheKinds, ThatAreEmptyAreNotNullInTheStore) {
  Row row = nulls;
  row[7] = "";
  row[10] = "";
  Read(row);
  ReadAgain();
  EXPECT_EQ(record->text.IsNull(), 0);
  EXPECT_EQ(record->text, "");
  EXPECT_EQ(record->large.IsNull(), 0);
}

}  // namespace
}  // namespace corvane::test
