// Records that remember what they have read: what is sent, what is stored, what a failure leaves.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <limits>
#include <new>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "corvane/corvane.h"
#include "tests/support/failing_allocation.h"
#include "tests/support/scripted_cursor.h"
#include "tests/support/sql.h"

namespace corvane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Country : ASSimpleCache {
  ASVStr code{2};
  ASVStr name{40};
  ASInt area;
  ASAttribute codeColumn{"code", "Code", 0, corvane::kKey};
  ASAttribute nameColumn{"name"};
  ASAttribute areaColumn{"area"};

  explicit Country(ASSession* session) : ASDomain("country", "Country"), ASSimpleCache(session, 0) {
    Add(codeColumn, code).Add(nameColumn, name).Add(areaColumn, area);
  }
};

// Two key columns with another one between them.
struct Stock : ASSimpleCache {
  ASInt shop;
  ASInt count;
  ASVStr item{8};
  ASAttribute shopColumn{"shop", "", 0, corvane::kKey};
  ASAttribute countColumn{"count"};
  ASAttribute itemColumn{"item", "", 0, corvane::kKey};

  explicit Stock(ASSession* session) : ASDomain("stock", ""), ASSimpleCache(session, 0) {
    Add(shopColumn, shop).Add(countColumn, count).Add(itemColumn, item);
  }
};

// A key "k" of any kind and a number "n".
template <class Key>
struct Keyed : ASSimpleCache {
  Key key;
  ASInt number;
  ASAttribute keyColumn{"k", "", 0, corvane::kKey};
  ASAttribute numberColumn{"n"};

  template <class... Arguments>
  explicit Keyed(ASSession* session, Arguments... arguments)
      : ASDomain("t", ""), ASSimpleCache(session, 0), key(arguments...) {
    Add(keyColumn, key).Add(numberColumn, number);
  }
};

struct WithoutKeys : ASSimpleCache {
  ASInt a, b;
  ASAttribute aColumn{"a"};
  ASAttribute bColumn{"b"};

  explicit WithoutKeys(ASSession* session) : ASDomain("t", ""), ASSimpleCache(session, 0) {
    Add(aColumn, a).Add(bColumn, b);
  }
};

// The values, "NZ|New Zealand|268"; NULL is "-".
std::string Values(ASDomain const& record) {
  std::string values;
  for (ASAttribute const* const attribute : record) {
    ASData const& data = *attribute->Data();
    values += (values.empty() ? "" : "|") + (data.IsNull() != 0 ? "-" : data.getstr().ToString());
  }
  return values;
}

Row const kNewZealand{"NZ", "New Zealand", "268"};
Row const kItaly{"IT", "Italy", "301"};
Row const kMalta{"MT", "Malta", "0"};

constexpr char const* kSelectNZ = "SELECT `code`, `name`, `area` FROM `country` WHERE `code`='NZ' FOR UPDATE";

class SimpleCache : public ScriptedCursor {
 protected:
  void SetUp() override {
    ScriptedCursor::SetUp();
    country.emplace(session);
  }

  void ReopenWith(Parameters parameters) {
    Reopen(std::move(parameters));
    country.emplace(session);
  }

  // Reads the record with the key from the server.
  void Read(Row const& row) {
    country->code = row[0].value().c_str();
    Answer(3, {row});
    country->Get(-1);
  }

  void Find(char const* code) {
    country->code = code;
    country->Get(-1);
  }

  std::string Record() const { return Values(*country); }
  // The record at a place of the store.
  std::string At(int index) {
    country->Get(index);
    return Record();
  }

  std::optional<Country> country;
};

// ---- a record by its key

TEST_F(SimpleCache, AMissIsReadFromTheServer) {
  Answer(3, {kNewZealand});
  Find("NZ");
  EXPECT_THAT(client.Calls(), ElementsAre(std::string("query ") + kSelectNZ, "store_result", "free_result"));
  EXPECT_EQ(Record(), "NZ|New Zealand|268");
  EXPECT_EQ(country->Size(), 1);
}

TEST_F(SimpleCache, AHitSendsNothing) {
  Read(kNewZealand);
  client.ForgetCalls();
  country->name = "changed";
  country->area = 5;
  country->Get(-1);
  EXPECT_THAT(client.Calls(), IsEmpty());
  EXPECT_EQ(Record(), "NZ|New Zealand|268");
  EXPECT_EQ(country->Size(), 1);
}

TEST_F(SimpleCache, KeepsEachRecordThatWasRead) {
  Read(kNewZealand);
  Read(kItaly);
  client.ForgetCalls();
  Find("NZ");
  EXPECT_EQ(Record(), "NZ|New Zealand|268");
  Find("IT");
  EXPECT_EQ(Record(), "IT|Italy|301");
  EXPECT_THAT(client.Calls(), IsEmpty());
  EXPECT_EQ(country->Size(), 2);
}

TEST_F(SimpleCache, AMissWithoutRowGivesNullTheKeyToo) {
  Read(kItaly);
  Answer(3, {});
  country->area = 5;
  Find("NZ");
  EXPECT_EQ(Record(), "-|-|-");
  EXPECT_EQ(country->Size(), 1);
}

TEST_F(SimpleCache, AMissWithoutRowIsAskedForAgain) {
  Answer(3, {}).Times(2);
  Find("NZ");
  Find("NZ");
  EXPECT_THAT(Statements(), ElementsAre(kSelectNZ, kSelectNZ));
}

TEST_F(SimpleCache, OfSeveralRowsTheFirstCounts) {
  Answer(3, {kNewZealand, kItaly});
  Find("NZ");
  EXPECT_EQ(Record(), "NZ|New Zealand|268");
  EXPECT_EQ(country->Size(), 1);
}

TEST_F(SimpleCache, IsStoredUnderTheKeyThatTheServerGave) {
  Answer(3, {kNewZealand}).Times(2);
  Find("nz");
  Find("nz");
  EXPECT_EQ(Statements().size(), 2U);
  client.ForgetCalls();
  Find("NZ");
  EXPECT_THAT(client.Calls(), IsEmpty());
  EXPECT_EQ(country->Size(), 1);
}

TEST_F(SimpleCache, TheKeyIsEscaped) {
  Answer(3, {});
  Find("a'");
  EXPECT_THAT(Statements(), ElementsAre("SELECT `code`, `name`, `area` FROM `country` WHERE `code`='a\\'' FOR UPDATE"));
}

TEST_F(SimpleCache, InReadOnlyModeLocksNoRow) {
  session->ReadOnly();
  Answer(3, {kNewZealand});
  Find("NZ");
  EXPECT_THAT(Statements(), ElementsAre("SELECT `code`, `name`, `area` FROM `country` WHERE `code`='NZ'"));
}

class SimpleCacheNegative : public SimpleCache, public testing::WithParamInterface<int> {};

TEST_P(SimpleCacheNegative, IndexLooksTheKeyUp) {
  Answer(3, {kNewZealand});
  country->code = "NZ";
  country->Get(GetParam());
  EXPECT_EQ(Record(), "NZ|New Zealand|268");
  EXPECT_THAT(Statements(), ElementsAre(kSelectNZ));
}

INSTANTIATE_TEST_SUITE_P(Numbers, SimpleCacheNegative, testing::Values(-1, -2, -3, -1000, INT_MIN));

// ---- by the form with a record

// Notes the number that it is asked for.
struct Asked : Country {
  int index = 0;
  explicit Asked(ASSession* s) : ASDomain("country", ""), Country(s) {}
  using Country::Get;
  void Get(int i) override { index = i; }
};

TEST_F(SimpleCache, GetOfARecordLooksTheOwnKeyUp) {
  Country other(session);
  other.code = "IT";
  country->code = "NZ";
  Answer(3, {kNewZealand});
  country->Get(other);
  EXPECT_THAT(Statements(), ElementsAre(kSelectNZ));
  EXPECT_EQ(Record(), "NZ|New Zealand|268");
  EXPECT_EQ(Values(other), "IT|-|-");
}

TEST_F(SimpleCache, GetOfARecordGoesThroughAnOverriddenGet) {
  Asked asked(session);
  asked.Get(*country);
  EXPECT_EQ(asked.index, -1);
  EXPECT_THAT(client.Calls(), IsEmpty());
}

// ---- by place

class SimpleCacheIndex : public SimpleCache, public testing::WithParamInterface<std::pair<int, char const*>> {};

TEST_P(SimpleCacheIndex, IsThePlaceInTheOrderOfKeys) {
  Read(kNewZealand);
  Read(kItaly);
  client.ForgetCalls();
  country->name = "changed";
  EXPECT_EQ(At(GetParam().first), GetParam().second);
  EXPECT_THAT(client.Calls(), IsEmpty());
  EXPECT_EQ(country->Size(), 2);
}

INSTANTIATE_TEST_SUITE_P(OfTwoRecords, SimpleCacheIndex,
                         testing::Values(std::pair{0, "IT|Italy|301"}, std::pair{1, "NZ|New Zealand|268"},
                                         std::pair{2, "-|-|-"}, std::pair{3, "-|-|-"}, std::pair{4, "-|-|-"},
                                         std::pair{INT_MAX, "-|-|-"}));

TEST_F(SimpleCache, AnIndexOfTheNumberOfColumnsGivesNull) {
  Answer(3, {{"A", "a", "1"}, {"B", "b", "2"}, {"C", "c", "3"}, {"D", "d", "4"}, {"E", "e", "5"}});
  country->PreFetch();
  EXPECT_EQ(At(2), "C|c|3");
  EXPECT_EQ(At(3), "-|-|-");
  EXPECT_EQ(At(4), "-|-|-");
  EXPECT_EQ(At(5), "-|-|-");
  EXPECT_EQ(country->Size(), 5);
}

TEST_F(SimpleCache, AnyPlaceOfAnEmptyStoreIsNull) {
  country->code = "NZ";
  EXPECT_EQ(At(0), "-|-|-");
  EXPECT_THAT(client.Calls(), IsEmpty());
}

// ---- the whole table

class SimpleCachePreFetch : public SimpleCache {
 protected:
  std::vector<std::string> TheStatements() const {
    std::vector<std::string> texts;
    for (std::string const& statement : Statements()) texts.push_back(Sql(Str(statement), {{&*country, "c"}}));
    return texts;
  }

  static constexpr char const* kSelectAll = "SELECT c.code, c.name, c.area FROM (`country` c)";
};

TEST_F(SimpleCachePreFetch, ReadsTheTableByOneSelectThatLocksNothing) {
  Answer(3, {kNewZealand, kItaly, kMalta});
  EXPECT_EQ(country->PreFetch(), 3);
  EXPECT_THAT(TheStatements(), ElementsAre(kSelectAll));
  EXPECT_EQ(country->Size(), 3);
}

TEST_F(SimpleCachePreFetch, IsTheSameInReadOnlyMode) {
  session->ReadOnly();
  Answer(3, {kNewZealand});
  EXPECT_EQ(country->PreFetch(), 1);
  EXPECT_THAT(TheStatements(), ElementsAre(kSelectAll));
}

TEST_F(SimpleCachePreFetch, LeavesTheLastRowThatWasRead) {
  Answer(3, {kNewZealand, kItaly});
  country->PreFetch();
  EXPECT_EQ(Record(), "IT|Italy|301");
}

TEST_F(SimpleCachePreFetch, PutsRowsInTheOrderOfKeys) {
  Answer(3, {kNewZealand, kItaly, kMalta});
  country->PreFetch();
  EXPECT_EQ(At(0), "IT|Italy|301");
  EXPECT_EQ(At(1), "MT|Malta|0");
  EXPECT_EQ(At(2), "NZ|New Zealand|268");
}

TEST_F(SimpleCachePreFetch, MakesEveryRecordAHit) {
  Answer(3, {kNewZealand, kItaly});
  country->PreFetch();
  client.ForgetCalls();
  Find("NZ");
  EXPECT_EQ(Record(), "NZ|New Zealand|268");
  EXPECT_THAT(client.Calls(), IsEmpty());
}

TEST_F(SimpleCachePreFetch, OfTwoRowsWithAKeyKeepsTheFirst) {
  Answer(3, {kNewZealand, {"NZ", "Aotearoa", "269"}, kItaly});
  EXPECT_EQ(country->PreFetch(), 2);
  EXPECT_EQ(At(1), "NZ|New Zealand|268");
}

TEST_F(SimpleCachePreFetch, OfAnEmptyTableLeavesNull) {
  Read(kNewZealand);
  Answer(3, {});
  EXPECT_EQ(country->PreFetch(), 0);
  EXPECT_EQ(country->Size(), 0);
  EXPECT_EQ(Record(), "-|-|-");
}

TEST_F(SimpleCachePreFetch, ReplacesWhatWasStored) {
  Answer(3, {kNewZealand, kItaly});
  country->PreFetch();
  Answer(3, {kMalta});
  EXPECT_EQ(country->PreFetch(), 1);
  EXPECT_EQ(At(0), "MT|Malta|0");
  EXPECT_THAT(TheStatements(), ElementsAre(kSelectAll, kSelectAll));
}

TEST_F(SimpleCachePreFetch, FillsTheStoreWithRememberingOffToo) {
  country->CacheOff();
  Answer(3, {kNewZealand, kItaly});
  EXPECT_EQ(country->PreFetch(), 2);
  client.ForgetCalls();
  Find("NZ");
  EXPECT_EQ(Record(), "NZ|New Zealand|268");
  EXPECT_THAT(client.Calls(), IsEmpty());
}

TEST_F(SimpleCachePreFetch, ThatFailsLeavesTheStoreEmpty) {
  Read(kNewZealand);
  client.FailQuery(1146, "no table");
  EXPECT_EQ(ThrownBy([&] { country->PreFetch(); }).number, 102);
  EXPECT_EQ(country->Size(), 0);
  EXPECT_EQ(Record(), "-|-|-");
  Answer(3, {kItaly});
  EXPECT_EQ(country->PreFetch(), 1);
}

TEST_F(SimpleCachePreFetch, WithoutResultLeavesTheStoreEmpty) {
  Read(kNewZealand);
  EXPECT_EQ(ThrownBy([&] { country->PreFetch(); }), (Thrown{0, "MySQL fetch error. "}));
  EXPECT_EQ(country->Size(), 0);
}

TEST_F(SimpleCachePreFetch, OfWhichAnyAllocationFailsLeavesTheStoreEmpty) {
  unsigned failures = 0;
  for (bool failed = true; failed; ++failures) {
    client.Reset();
    ReopenWith({});
    Read(kMalta);
    Answer(3, {kNewZealand, {"IT", "Italy, a name that is a little longer", "301"}});
    try {
      FailingAllocation const failing(failures);
      country->PreFetch();
      failed = failing.Failed();
    } catch (std::bad_alloc const&) {
      EXPECT_EQ(country->Size(), 0);
      EXPECT_EQ(client.UnfreedResults(), 0U);
    } catch (AException const& error) {
      EXPECT_STREQ(error.what(), "Out of memory for the row buffer. ");
      EXPECT_EQ(country->Size(), 0);
    }
  }
  EXPECT_GE(failures, 10U);
  EXPECT_EQ(country->Size(), 2);
}

// ---- clearing and switching

TEST_F(SimpleCache, ClearEmptiesTheStoreAndTheRecord) {
  Read(kNewZealand);
  client.ForgetCalls();
  country->Clear();
  EXPECT_EQ(country->Size(), 0);
  EXPECT_EQ(Record(), "-|-|-");
  EXPECT_THAT(client.Calls(), IsEmpty());
  Read(kNewZealand);
  EXPECT_THAT(Statements(), ElementsAre(kSelectNZ));
}

TEST_F(SimpleCache, SwitchedOffAsksEachTimeAndStoresNothing) {
  Read(kNewZealand);
  country->CacheOff();
  EXPECT_EQ(country->Size(), 0);
  EXPECT_EQ(Record(), "-|-|-");
  client.ForgetCalls();
  Read(kNewZealand);
  Read(kNewZealand);
  EXPECT_EQ(Record(), "NZ|New Zealand|268");
  EXPECT_EQ(country->Size(), 0);
  EXPECT_THAT(Statements(), ElementsAre(kSelectNZ, kSelectNZ));
}

TEST_F(SimpleCache, SwitchedOnRemembersAgain) {
  country->CacheOff();
  EXPECT_EQ(&country->CacheOn(), &*country);
  Read(kNewZealand);
  EXPECT_EQ(country->Size(), 1);
}

TEST_F(SimpleCache, SwitchingOnLeavesTheStore) {
  Read(kNewZealand);
  country->CacheOn();
  EXPECT_EQ(country->Size(), 1);
  EXPECT_EQ(Record(), "NZ|New Zealand|268");
}

TEST_F(SimpleCache, SwitchedOffAndOnIsEmpty) {
  Read(kNewZealand);
  country->CacheOff();
  country->CacheOn();
  EXPECT_EQ(country->Size(), 0);
}

TEST_F(SimpleCache, ClearLeavesTheSwitchOn) {
  country->Clear();
  Read(kNewZealand);
  EXPECT_EQ(country->Size(), 1);
}

TEST_F(SimpleCache, ClearLeavesTheSwitchOff) {
  country->CacheOff();
  country->Clear();
  Read(kNewZealand);
  EXPECT_EQ(country->Size(), 0);
}

struct CountsClears : Country {
  int clears = 0;
  explicit CountsClears(ASSession* s) : ASDomain("country", ""), Country(s) {}
  void Clear() override {
    ++clears;
    Country::Clear();
  }
};

TEST_F(SimpleCache, SwitchingOffAndPreFetchGoThroughAnOverriddenClear) {
  CountsClears counting(session);
  counting.CacheOff();
  EXPECT_EQ(counting.clears, 1);
  Answer(3, {});
  EXPECT_EQ(counting.PreFetch(), 0);
  EXPECT_EQ(counting.clears, 2);
}

// ---- failures

// Of a miss on "NZ" beside a stored "IT".
class SimpleCacheFailure : public SimpleCache {
 protected:
  void Start(Parameters parameters) {
    ReopenWith(std::move(parameters));
    Read(kItaly);
    client.ForgetCalls();
    country->name = "changed";
    country->area = 5;
  }

  Thrown Failed() {
    return ThrownBy([&] { Find("NZ"); });
  }

  void ExpectUnchangedAndUsable() {
    EXPECT_EQ(Record(), "NZ|-|-");
    EXPECT_EQ(country->Size(), 1);
    Read(kNewZealand);
    EXPECT_EQ(Record(), "NZ|New Zealand|268");
    EXPECT_EQ(country->Size(), 2);
  }

  std::string const refused = std::string(" in query\n\b\n") + kSelectNZ;
};

TEST_F(SimpleCacheFailure, OfARefusedSelectIsTheSessions) {
  Start({});
  client.FailQuery(1054, "Unknown column");
  EXPECT_EQ(Failed(), (Thrown{102, "DB Error 1054 (Unknown column)" + refused}));
  ExpectUnchangedAndUsable();
}

TEST_F(SimpleCacheFailure, OfALostConnectionInATransactionThrows) {
  Start({});
  client.FailQuery(2013, "lost").Matching("SELECT");
  EXPECT_EQ(Failed(), (Thrown{102, "DB Error 0 ()" + refused}));
  EXPECT_THAT(Statements(), ElementsAre(kSelectNZ, "SET AUTOCOMMIT=0"));
  ExpectUnchangedAndUsable();
}

TEST_F(SimpleCacheFailure, OfALostConnectionWithAutocommitIsNone) {
  Start({{"AutoCommit", "on"}});
  client.FailQuery(2006, "gone").Matching("SELECT");
  Answer(3, {kNewZealand}).Matching("SELECT");
  Find("NZ");
  EXPECT_THAT(Statements(), ElementsAre(kSelectNZ, "SET AUTOCOMMIT=1", kSelectNZ));
  EXPECT_EQ(Record(), "NZ|New Zealand|268");
  EXPECT_EQ(country->Size(), 2);
}

TEST_F(SimpleCacheFailure, OfALostConnectionThatStaysLostThrows) {
  Start({{"AutoReconnect", "off"}});
  client.FailQuery(2006, "gone");
  EXPECT_EQ(Failed(), (Thrown{103, "Database connection lost"}));
  ExpectUnchangedAndUsable();
}

TEST_F(SimpleCacheFailure, OfTheResultIsAFetchError) {
  Start({});
  Answer(3, {kNewZealand});
  client.FailStoreResult(2013, "lost");
  EXPECT_EQ(Failed(), (Thrown{0, "MySQL fetch error. "}));
  ExpectUnchangedAndUsable();
}

TEST_F(SimpleCacheFailure, OfAKeyWithoutSqlFormSendsNothing) {
  Keyed<ASDouble> cache(session);
  cache.key = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(ThrownBy([&] { cache.Get(-1); }), (Thrown{0, "Value has no SQL form, it is not a finite number: k. "}));
  EXPECT_THAT(client.Calls(), IsEmpty());
  EXPECT_EQ(cache.Size(), 0);
}

TEST_F(SimpleCacheFailure, OfEachAllocationLeavesAUsableCache) {
  unsigned failures = 0;
  for (bool failed = true; failed; ++failures) {
    client.Reset();
    Start({});
    Answer(3, {{"NZ", "New Zealand, a name that is a little longer", "268"}});
    try {
      FailingAllocation const failing(failures);
      Find("NZ");
      failed = failing.Failed();
    } catch (std::bad_alloc const&) {
      EXPECT_EQ(country->Size(), 1);
      EXPECT_EQ(client.UnfreedResults(), 0U);
      EXPECT_EQ(At(0), "IT|Italy|301");
    }
  }
  EXPECT_GE(failures, 5U);
  EXPECT_EQ(Record(), "NZ|New Zealand, a name that is a little lon|268");
  EXPECT_EQ(country->Size(), 2);
}

TEST_F(SimpleCacheFailure, OfEachAllocationOfAHitLeavesTheStore) {
  unsigned failures = 0;
  Read({"NZ", "New Zealand, a name that is a little longer", "268"});
  for (bool failed = true; failed; ++failures) {
    country->Get(3);
    country->code = "NZ";
    try {
      FailingAllocation const failing(failures);
      country->Get(-1);
      failed = failing.Failed();
    } catch (std::bad_alloc const&) {
      EXPECT_EQ(country->Size(), 1);
    }
  }
  EXPECT_EQ(Record(), "NZ|New Zealand, a name that is a little lon|268");
}

// ---- without session

TEST_F(SimpleCache, WithoutSessionSaysSo) {
  Country alone(nullptr);
  Thrown const thrown{0, "There is no session for cache. "};
  EXPECT_EQ(ThrownBy([&] { alone.Get(-1); }), thrown);
  EXPECT_EQ(ThrownBy([&] { alone.Get(0); }), thrown);
  EXPECT_EQ(ThrownBy([&] { alone.Get(3); }), thrown);
  EXPECT_EQ(ThrownBy([&] { alone.Get(alone); }), thrown);
  EXPECT_EQ(ThrownBy([&] { alone.PreFetch(); }), thrown);
}

TEST_F(SimpleCache, ConstructedWithoutArgumentsHasNoSession) {
  ASSimpleCache alone;
  EXPECT_EQ(ThrownBy([&] { alone.Get(-1); }), (Thrown{0, "There is no session for cache. "}));
}

TEST_F(SimpleCache, WithoutSessionDoesWhatAsksNoServer) {
  Country alone(nullptr);
  alone.code = "NZ";
  EXPECT_EQ(alone.Size(), 0);
  EXPECT_EQ(&alone.CacheOn(), &alone);
  EXPECT_EQ(Values(alone), "NZ|-|-");
  alone.Clear();
  EXPECT_EQ(Values(alone), "-|-|-");
  alone.code = "NZ";
  alone.CacheOff();
  EXPECT_EQ(Values(alone), "-|-|-");
}

// ---- keys

class SimpleCacheKey : public SimpleCache {
 protected:
  // Reads a row, and then the same record again, its values NULL meanwhile but for the key.
  template <class Value, class Other>
  void ExpectHit(Keyed<Value>& cache, Other const& key, char const* field) {
    Answer(2, {{field, "5"}});
    cache.key = key;
    cache.Get(-1);
    client.ForgetCalls();
    cache.Get(9);
    cache.key = key;
    cache.Get(-1);
    EXPECT_THAT(client.Calls(), IsEmpty());
    EXPECT_EQ(cache.number, 5);
    EXPECT_EQ(cache.Size(), 1);
  }
};

TEST_F(SimpleCacheKey, OfTwoColumnsIsBoth) {
  Stock stock(session);
  Answer(3, {{"1", "10", "a"}});
  Answer(3, {{"1", "11", "b"}});
  Answer(3, {{"2", "12", "a"}});
  stock.shop = 1, stock.item = "a", stock.Get(-1);
  stock.shop = 1, stock.item = "b", stock.Get(-1);
  stock.shop = 2, stock.item = "a", stock.Get(-1);
  EXPECT_THAT(Statements(),
              ElementsAre("SELECT `shop`, `count`, `item` FROM `stock` WHERE `shop`='1' AND `item`='a' FOR UPDATE",
                          "SELECT `shop`, `count`, `item` FROM `stock` WHERE `shop`='1' AND `item`='b' FOR UPDATE",
                          "SELECT `shop`, `count`, `item` FROM `stock` WHERE `shop`='2' AND `item`='a' FOR UPDATE"));
  client.ForgetCalls();
  stock.shop = 1, stock.item = "b", stock.Get(-1);
  EXPECT_EQ(Values(stock), "1|11|b");
  EXPECT_THAT(client.Calls(), IsEmpty());
}

TEST_F(SimpleCacheKey, OfTwoColumnsOrdersByTheFirstAndThenTheSecond) {
  Stock stock(session);
  Answer(3, {{"2", "1", "a"}, {"1", "2", "b"}, {"1", "3", "a"}});
  stock.PreFetch();
  stock.Get(0);
  EXPECT_EQ(Values(stock), "1|3|a");
  stock.Get(1);
  EXPECT_EQ(Values(stock), "1|2|b");
  stock.Get(2);
  EXPECT_EQ(Values(stock), "2|1|a");
}

TEST_F(SimpleCacheKey, OfAFixedTextIsFoundWithItsPadding) {
  Keyed<ASStr> cache(session, 5U);
  ExpectHit(cache, "ab", "ab");
}

TEST_F(SimpleCacheKey, IsFoundWhateverItsTrailingBlanks) {
  Keyed<ASVStr> cache(session, 8U);
  ExpectHit(cache, "ab  ", "ab");
  cache.key = "ab ";
  cache.Get(-1);
  EXPECT_THAT(client.Calls(), IsEmpty());
  EXPECT_EQ(Values(cache), "ab|5");
}

TEST_F(SimpleCacheKey, OfATimeIsFound) {
  Keyed<ASTime> cache(session);
  ExpectHit(cache, 1088689500, "2004-07-01 13:45:00");
  EXPECT_EQ(Values(cache), "2004-07-01 13:45:00|5");
}

TEST_F(SimpleCacheKey, OfABigNumberIsFound) {
  Keyed<ASInt64> cache(session);
  ExpectHit(cache, 9007199254740993, "9007199254740993");
}

TEST_F(SimpleCacheKey, OfAnAmountIsFound) {
  Keyed<ASDCurrency> cache(session);
  ExpectHit(cache, 19.99, "19.99");
}

TEST_F(SimpleCacheKey, OfAGuidIsFound) {
  Keyed<ASGuid> cache(session);
  ExpectHit(cache, Guid("00112233-4455-6677-8899-aabbccddeeff"), "00112233-4455-6677-8899-aabbccddeeff");
}

TEST_F(SimpleCacheKey, ThatIsNullIsNoEmptyText) {
  Keyed<ASVStr> cache(session, 8U);
  Answer(2, {{"", "5"}}).Times(2);
  cache.key.SetNull(), cache.Get(-1);
  cache.key.SetNull(), cache.Get(-1);
  EXPECT_THAT(Statements(), ElementsAre("SELECT `k`, `n` FROM `t` WHERE `k`='' FOR UPDATE",
                                        "SELECT `k`, `n` FROM `t` WHERE `k`='' FOR UPDATE"));
  EXPECT_EQ(cache.Size(), 1);
}

TEST_F(SimpleCacheKey, ThatIsMissingMakesTheFirstRecordEveryHit) {
  WithoutKeys cache(session);
  Answer(2, {{"1", "2"}, {"3", "4"}});
  cache.Get(-1);
  EXPECT_THAT(Statements(), ElementsAre("SELECT `a`, `b` FROM `t` FOR UPDATE"));
  cache.a = 7;
  cache.Get(-1);
  EXPECT_EQ(Values(cache), "1|2");
  EXPECT_EQ(Statements().size(), 1U);
}

TEST_F(SimpleCacheKey, ThatIsMissingMakesPreFetchKeepOneRecord) {
  WithoutKeys cache(session);
  Answer(2, {{"1", "2"}, {"3", "4"}});
  EXPECT_EQ(cache.PreFetch(), 1);
  cache.Get(0);
  EXPECT_EQ(Values(cache), "1|2");
}

}  // namespace
}  // namespace corvane::test
