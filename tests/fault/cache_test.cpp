// The cache that does everything: reading in a section of its own, reading and writing together, the log of all
// commands, columns of every kind, and the ways in which applications derive from caches.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <sstream>
#include <string>

#include "corvane/corvane.h"
#include "tests/support/scripted_cache.h"
#include "tests/support/sql.h"

namespace corvane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Country = CountryOf<ASCache>;

constexpr char const* kReadNZ = "SELECT `code`, `name` FROM `country` WHERE `code`='NZ'";

class Cache : public ScriptedCache<Country> {
 protected:
  void Read() { ScriptedCache::Read("NZ", "New Zealand"); }
};

// ---- reading in a section of its own

TEST_F(Cache, LocksTheRowThatItReads) {
  Read();
  EXPECT_THAT(Statements(), ElementsAre(kSelectNZ));
}

TEST_F(Cache, ReadOnlyGetLocksNoRow) {
  country->ReadOnlyGet();
  Read();
  EXPECT_THAT(Statements(), ElementsAre(kReadNZ));
  EXPECT_EQ(country->name, "New Zealand");
  EXPECT_EQ(country->Size(), 1);
}

TEST_F(Cache, ReadOnlyGetEndsWithTheGet) {
  country->ReadOnlyGet();
  Read();
  EXPECT_EQ(session->IsReadOnly(), 0);
  country->Put();
  EXPECT_THAT(Statements(), ElementsAre(kReadNZ, kUpdateNZ));
}

TEST_F(Cache, ReadOnlyGetEndsWithAGetThatThrows) {
  country->ReadOnlyGet();
  client.FailQuery(1054, "Unknown column");
  country->code = "NZ";
  EXPECT_EQ(ThrownBy([&] { country->Get(-1); }),
            (Thrown{102, std::string("DB Error 1054 (Unknown column) in query\n\b\n") + kReadNZ}));
  EXPECT_EQ(session->IsReadOnly(), 0);
  Read();
  EXPECT_THAT(Statements(), ElementsAre(kReadNZ, kReadNZ));
}

TEST_F(Cache, ReadOnlyGetEndsWithAGetThatLosesTheConnection) {
  country->ReadOnlyGet();
  client.FailQuery(2013, "lost").Matching("SELECT");
  country->code = "NZ";
  EXPECT_EQ(ThrownBy([&] { country->Get(-1); }).number, 102);
  EXPECT_EQ(session->IsReadOnly(), 0);
}

TEST_F(Cache, ReadOnlyGetLeavesAReadOnlySessionSo) {
  session->ReadOnly();
  country->ReadOnlyGet();
  Read();
  EXPECT_EQ(session->IsReadOnly(), 1);
  EXPECT_THAT(Statements(), ElementsAre(kReadNZ));
}

TEST_F(Cache, ReadOnlyGetLeavesTheSectionThatItStandsIn) {
  session->PushReadOnly();
  country->ReadOnlyGet();
  Read();
  EXPECT_EQ(session->IsReadOnly(), 1);
  session->PopReadOnly();
  EXPECT_EQ(session->IsReadOnly(), 0);
}

TEST_F(Cache, ReadOnlyGetHoldsForHitsAndPlacesToo) {
  country->ReadOnlyGet();
  Read();
  country->Get(-1);
  country->Get(0);
  EXPECT_EQ(country->name, "New Zealand");
  country->Get(2);
  EXPECT_EQ(country->name.IsNull(), 1);
  EXPECT_EQ(session->IsReadOnly(), 0);
  EXPECT_EQ(Statements().size(), 1U);
}

TEST_F(Cache, ReadOnlyGetHoldsForTheFormWithARecord) {
  country->ReadOnlyGet();
  Answer(2, {{"NZ", "New Zealand"}});
  country->code = "NZ";
  country->Get(*country);
  EXPECT_THAT(Statements(), ElementsAre(kReadNZ));
}

// Notes the number that it is asked for.
struct Asked : Country {
  int index = 0;
  explicit Asked(ASSession* session) : ASDomain("country", ""), ASSimpleCache(session, 0), Country(session) {}
  using Country::Get;
  void Get(int i) override { index = i; }
};

TEST_F(Cache, GetOfARecordGoesThroughAnOverriddenGet) {
  Asked asked(session);
  asked.Get(*country);
  EXPECT_EQ(asked.index, -1);
}

// What ends ReadOnlyGet().
struct End {
  char const* name;
  std::function<void(Country&)> action;
  friend std::ostream& operator<<(std::ostream& out, End const& end) { return out << end.name; }
};

class CacheReadOnlyGet : public Cache, public testing::WithParamInterface<End> {};

TEST_P(CacheReadOnlyGet, IsEndedByIt) {
  country->ReadOnlyGet();
  GetParam().action(*country);
  country->CacheOn();
  client.ForgetCalls();
  Read();
  EXPECT_THAT(Statements(), ElementsAre(kSelectNZ));
}

INSTANTIATE_TEST_SUITE_P(Ends, CacheReadOnlyGet,
                         testing::Values(End{"Clear", [](Country& country) { country.Clear(); }},
                                         End{"CacheOff", [](Country& country) { country.CacheOff(); }},
                                         End{"PreFetch",
                                             [](Country& country) {
                                               ScriptedClient::Get().AnswerQuery(2, {});
                                               country.PreFetch();
                                             }},
                                         End{"ReadOnlyGet(0)", [](Country& country) { country.ReadOnlyGet(0); }}));

TEST_F(Cache, ReadOnlyGetStaysThroughWrites) {
  country->ReadOnlyGet();
  SetNewZealand();
  country->Insert();
  country->Put();
  country->Delete();
  Read();
  EXPECT_THAT(Statements(), ElementsAre(kInsertNZ, kUpdateNZ, kDeleteNZ, kReadNZ));
}

// Notes the session's mode whenever it is set NULL, and ends the innermost section.
struct ModeProbe : ASInt {
  ASSession* session = nullptr;
  int mode = -1;
  using ASInt::operator=;
  void SetNull() override {
    ASInt::SetNull();
    if (session == nullptr) return;
    mode = session->IsReadOnly();
    session->PopReadOnly();
  }
};

struct Probed : ASCache {
  ASInt id;
  ModeProbe probe;
  ASAttribute idColumn{"id", "", 0, corvane::kKey};
  ASAttribute probeColumn{"probe"};

  explicit Probed(ASSession* session) : ASDomain("t", ""), ASCache(session, 0) {
    Add(idColumn, id).Add(probeColumn, probe);
    id = 1;
    probe.session = session;
  }
};

TEST_F(Cache, ReadOnlyGetIsASectionOfItsOwn) {
  Probed probed(session);
  probed.ReadOnlyGet();
  Answer(2, {{"1", "2"}});
  probed.Get(-1);
  EXPECT_EQ(probed.probe.mode, 1);
}

TEST_F(Cache, ReadOnlyGetBeginsNoSectionInAReadOnlySession) {
  Probed probed(session);
  session->PushReadOnly();
  probed.ReadOnlyGet();
  Answer(2, {{"1", "2"}});
  probed.Get(-1);
  EXPECT_EQ(probed.probe.mode, 1);
  EXPECT_THAT(Statements(), ElementsAre("SELECT `id`, `probe` FROM `t` WHERE `id`='1' FOR UPDATE"));
}

// ---- reading and writing together

TEST_F(Cache, ServesWhatWasPut) {
  SetNewZealand();
  country->Put();
  country->name = "changed";
  country->Get(-1);
  EXPECT_EQ(country->name, "New Zealand");
  EXPECT_THAT(Statements(), ElementsAre(kUpdateNZ));
}

TEST_F(Cache, AnInsertedRecordIsPutWithoutASave) {
  country.emplace(session, 1);
  SetNewZealand();
  country->Insert();
  country->Put();
  country->Put();
  EXPECT_THAT(Statements(), ElementsAre(kInsertNZ, kUpdateNZ, kUpdateNZ));
}

TEST_F(Cache, ARecordThatWasSavedForPutIsNotSavedForDelete) {
  country.emplace(session, 1);
  SetNewZealand();
  country->Put();
  country->Delete();
  EXPECT_THAT(Statements(), ElementsAre(kSaveNZ, kUpdateNZ, kDeleteNZ));
}

TEST_F(Cache, ARecordThatWasSavedForDeleteIsNotSavedAfterItsInsert) {
  country.emplace(session, 1);
  SetNewZealand();
  country->Delete();
  SetNewZealand();
  country->Insert();
  country->Put();
  EXPECT_THAT(Statements(), ElementsAre(kSaveNZ, kDeleteNZ, kInsertNZ, kUpdateNZ));
}

TEST_F(Cache, InsertItemTakesIt) {
  SetNewZealand();
  InsertItem("country", *country);
  EXPECT_THAT(Statements(), ElementsAre(kInsertNZ));
}

TEST_F(Cache, ServesWhatWasRolledBackUntilItIsCleared) {
  SetNewZealand();
  country->Put();
  session->Rollback();
  country->name = "x";
  country->Get(-1);
  EXPECT_EQ(country->name, "New Zealand");
  country->Clear();
  client.ForgetCalls();
  Read();
  EXPECT_THAT(Statements(), ElementsAre(kSelectNZ));
}

// ---- the log

// Two key columns with another one between them, and a time.
struct Stock : ASCache {
  ASInt shop, count;
  ASVStr item{8};
  ASTime counted;
  ASAttribute shopColumn{"shop", "", 0, corvane::kKey};
  ASAttribute countColumn{"count"};
  ASAttribute itemColumn{"item", "", 0, corvane::kKey};
  ASAttribute countedColumn{"counted"};

  explicit Stock(ASSession* session) : ASDomain("stock", ""), ASCache(session, 0) {
    Add(shopColumn, shop).Add(countColumn, count).Add(itemColumn, item).Add(countedColumn, counted);
  }
};

class CacheLog : public Cache {
 protected:
  // With the address of the session, as the caches write it, replaced by "PTR".
  template <class Action>
  std::string CacheLogOf(Action action) {
    std::ostringstream address;
    address << static_cast<void const*>(session);
    Str log = LogOf(action).c_str();
    return log.replaceStr(address.str().c_str(), "PTR").ToString();
  }

  static std::string Executed(std::string const& statement) {
    return "SESSION ADDR EXECUTE " + statement + "\n\nEXECUTE COMPLETE\n";
  }
};

struct Command {
  char const* name;
  std::function<void(Country&)> run;
  char const* columns;    // logged behind the name
  char const* statement;  // sent then
  char const* row;        // logged at the end
  friend std::ostream& operator<<(std::ostream& out, Command const& command) { return out << command.name; }
};

class CacheLogOfCommands : public CacheLog, public testing::WithParamInterface<Command> {
 protected:
  std::string LogAt(int level) {
    ReadyAt(level);
    return CacheLogOf([&] { GetParam().run(*country); });
  }

  std::string const statement = Executed(GetParam().statement);
  std::string const all = std::string("SESSION PTR CACHE COMMAND-> ") + GetParam().name + "\n" + GetParam().columns +
                          statement + GetParam().row;
};

TEST_P(CacheLogOfCommands, IsEmptyAtLevel0) { EXPECT_EQ(LogAt(0), ""); }
TEST_P(CacheLogOfCommands, IsEmptyAtLevel1) { EXPECT_EQ(LogAt(1), ""); }
TEST_P(CacheLogOfCommands, IsTheStatementAtLevel2) { EXPECT_EQ(LogAt(2), statement); }
TEST_P(CacheLogOfCommands, HasTheCommandAtLevel3) { EXPECT_EQ(LogAt(3), all); }
TEST_P(CacheLogOfCommands, HasTheCommandAtLevel4) { EXPECT_EQ(LogAt(4), all); }
TEST_P(CacheLogOfCommands, HasTheCommandAtLevel5) { EXPECT_EQ(LogAt(5), all); }

INSTANTIATE_TEST_SUITE_P(Commands, CacheLogOfCommands,
                         testing::Values(Command{"GET",
                                                 [](Country& country) {
                                                   ScriptedClient::Get().AnswerQuery(2, {{"NZ", "New Zealand"}});
                                                   country.Get(-1);
                                                 },
                                                 "\tcode\tNZ\n\n", kSelectNZ, "\tcode\tNZ.\n\tname\tNew Zealand.\n\n"},
                                         Command{"PUT", [](Country& country) { country.Put(); },
                                                 "\tcode\tNZ\n\tname\tNew Zealand\n\n", kUpdateNZ, ""},
                                         Command{"INSERT", [](Country& country) { country.Insert(); },
                                                 "\tcode\tNZ\n\tname\tNew Zealand\n\n", kInsertNZ, ""},
                                         Command{"DELETE", [](Country& country) { country.Delete(); }, "\tcode\tNZ\n\n",
                                                 kDeleteNZ, ""}));

TEST_F(CacheLog, OfAHitHasTheKeysAlone) {
  ReadyAt(3);
  LogOf([&] { country->Insert(); });
  EXPECT_EQ(CacheLogOf([&] { country->Get(-1); }), "SESSION PTR CACHE COMMAND-> GET\n\tcode\tNZ\n\n");
}

TEST_F(CacheLog, OfAMissWithoutRowHasNoColumns) {
  ReadyAt(3);
  Answer(2, {});
  EXPECT_EQ(CacheLogOf([&] { country->Get(-1); }),
            "SESSION PTR CACHE COMMAND-> GET\n\tcode\tNZ\n\n" + Executed(kSelectNZ));
}

TEST_F(CacheLog, OfAMissWithRememberingOffHasTheColumns) {
  ReadyAt(3);
  country->CacheOff();
  Answer(2, {{"NZ", std::nullopt}});
  country->code = "NZ";
  EXPECT_EQ(CacheLogOf([&] { country->Get(-1); }),
            "SESSION PTR CACHE COMMAND-> GET\n\tcode\tNZ\n\n" + Executed(kSelectNZ) + "\tcode\tNZ.\n\tname\t.\n\n");
}

TEST_F(CacheLog, OfAPlaceHasTheKeysFromBefore) {
  ReadyAt(3);
  LogOf([&] { country->Insert(); });
  country->code = "IT";
  EXPECT_EQ(CacheLogOf([&] { country->Get(0); }), "SESSION PTR CACHE COMMAND-> GET\n\tcode\tIT\n\n");
  EXPECT_EQ(CacheLogOf([&] { country->Get(2); }), "SESSION PTR CACHE COMMAND-> GET\n\tcode\tNZ\n\n");
}

TEST_F(CacheLog, HasALineForEachColumnAndEachKey) {
  ReadyAt(3);
  Stock stock(session);
  stock.shop = 1;
  stock.item = "a'b";
  EXPECT_EQ(CacheLogOf([&] { stock.Put(); }),
            "SESSION PTR CACHE COMMAND-> PUT\n\tshop\t1\n\tcount\t-2147483648\n\titem\ta'b\n\tcounted\tNULL\n\n" +
                Executed("UPDATE `stock` SET `count`=NULL, `counted`=NULL WHERE `shop`='1' AND `item`='a\\'b'"));
  EXPECT_EQ(CacheLogOf([&] { stock.Delete(); }),
            "SESSION PTR CACHE COMMAND-> DELETE\n\tshop\t1\n\titem\ta'b\n\n" +
                Executed("DELETE FROM `stock` WHERE `shop`='1' AND `item`='a\\'b'"));
}

TEST_F(CacheLog, OfAFailingSaveStandsBetweenCommandAndUpdate) {
  ReadyAt(3, 1);
  client.FailQuery(1146, "no table");
  EXPECT_EQ(CacheLogOf([&] { country->Put(); }),
            std::string("SESSION PTR CACHE COMMAND-> PUT\n\tcode\tNZ\n\tname\tNew Zealand\n\n"
                        "SESSION ADDR EXECUTE ") +
                kSaveNZ + "\n\nSESSION ADDR EXECUTE Failed\n Error 1146 (no table) in query\n" + kSaveNZ + "\n" +
                Executed(kUpdateNZ));
}

TEST_F(CacheLog, OfPreFetchIsTheStatement) {
  ReadyAt(5);
  Answer(2, {{"NZ", "New Zealand"}});
  EXPECT_EQ(Sql(Str(CacheLogOf([&] { country->PreFetch(); }).c_str()), {{&*country, "c"}}),
            Executed("SELECT c.code, c.name FROM (`country` c)"));
}

TEST_F(CacheLog, OfClearingAndSwitchingIsEmpty) {
  ReadyAt(5);
  EXPECT_EQ(CacheLogOf([&] { country->CacheOff(), country->CacheOn(), country->Clear(), country->Size(); }), "");
}

// ---- without session

struct Use {
  char const* name;
  std::function<void(ASCache&)> action;
  friend std::ostream& operator<<(std::ostream& out, Use const& use) { return out << use.name; }
};

class CacheWithoutSession : public testing::TestWithParam<Use> {};

TEST_P(CacheWithoutSession, SaysSo) {
  Country country(nullptr);
  EXPECT_EQ(ThrownBy([&] { GetParam().action(country); }), (Thrown{0, "There is no session for cache. "}));
}

TEST_P(CacheWithoutSession, SaysSoAsAReadOnlyGet) {
  Country country(nullptr);
  country.ReadOnlyGet();
  EXPECT_EQ(ThrownBy([&] { GetParam().action(country); }), (Thrown{0, "There is no session for cache. "}));
}

TEST_P(CacheWithoutSession, SaysSoWhenConstructedWithoutArguments) {
  ASCache cache;
  EXPECT_EQ(ThrownBy([&] { GetParam().action(cache); }), (Thrown{0, "There is no session for cache. "}));
}

INSTANTIATE_TEST_SUITE_P(Members, CacheWithoutSession,
                         testing::Values(Use{"Get(-1)", [](ASCache& cache) { cache.Get(-1); }},
                                         Use{"Get(0)", [](ASCache& cache) { cache.Get(0); }},
                                         Use{"Get(9)", [](ASCache& cache) { cache.Get(9); }},
                                         Use{"Get(record)", [](ASCache& cache) { cache.Get(cache); }},
                                         Use{"PreFetch", [](ASCache& cache) { cache.PreFetch(); }},
                                         Use{"Put", [](ASCache& cache) { cache.Put(); }},
                                         Use{"Insert", [](ASCache& cache) { cache.Insert(); }},
                                         Use{"Delete", [](ASCache& cache) { cache.Delete(); }},
                                         Use{"InsertItem", [](ASCache& cache) { InsertItem("x", cache); }}));

TEST_F(Cache, WithoutSessionDoesWhatAsksNoServer) {
  ASCache alone;
  EXPECT_EQ(alone.Size(), 0);
  EXPECT_EQ(&alone.CacheOn(), &alone);
  alone.Clear();
  alone.CacheOff();
}

// ---- classes of applications

struct OnlyItsOwn : ASCache, CountryColumns {
  explicit OnlyItsOwn(ASSession* session) : ASDomain("country", ""), ASCache(session, 1) { AddTo(*this); }
};

struct OnlySimple : ASCache, CountryColumns {
  explicit OnlySimple(ASSession* session) : ASDomain("country", ""), ASSimpleCache(session, 1) { AddTo(*this); }
};

struct OnlyUpdatable : ASUpdatableCache, CountryColumns {
  explicit OnlyUpdatable(ASSession* session) : ASDomain("country", ""), ASUpdatableCache(session, 1) { AddTo(*this); }
};

struct OnlyInsertable : ASInsertableCache, CountryColumns {
  explicit OnlyInsertable(ASSession* session) : ASDomain("country", ""), ASInsertableCache(session, 1) { AddTo(*this); }
};

struct BothWriters : ASInsertableCache, ASUpdatableCache, CountryColumns {
  explicit BothWriters(ASSession* session)
      : ASDomain("country", ""), ASInsertableCache(session, 1), ASUpdatableCache(session, 1) {
    AddTo(*this);
  }
};

struct DerivedTwice : OnlyItsOwn {
  ASInt area;
  ASAttribute areaColumn{"area"};

  explicit DerivedTwice(ASSession* session) : ASDomain("country", ""), OnlyItsOwn(session) { Add(areaColumn, area); }
};

class CacheClasses : public Cache {
 protected:
  // A save and an update are sent, and the record is a hit then.
  template <class Record>
  void ExpectPut(Record& record) {
    record.code = "NZ";
    record.name = "New Zealand";
    record.Put();
    record.Get(-1);
    EXPECT_THAT(Statements(), ElementsAre(kSaveNZ, kUpdateNZ));
    EXPECT_EQ(record.Size(), 1);
    EXPECT_EQ(record.name, "New Zealand");
    client.ForgetCalls();
  }

  // No save is sent for an inserted record.
  template <class Record>
  void ExpectInsertAndDelete(Record& record) {
    record.Clear();
    record.code = "NZ";
    record.name = "New Zealand";
    record.Insert();
    record.Delete();
    EXPECT_THAT(Statements(), ElementsAre(kInsertNZ, kDeleteNZ));
    EXPECT_EQ(record.Size(), 0);
  }
};

TEST_F(CacheClasses, MayNameTheCacheAlone) {
  OnlyItsOwn record(session);
  ExpectPut(record);
  ExpectInsertAndDelete(record);
}

TEST_F(CacheClasses, MayNameTheSimpleCacheAlone) {
  OnlySimple record(session);
  ExpectPut(record);
  ExpectInsertAndDelete(record);
}

TEST_F(CacheClasses, MayNameTheUpdatableCacheAlone) {
  OnlyUpdatable record(session);
  ExpectPut(record);
}

TEST_F(CacheClasses, MayNameTheInsertableCacheAlone) {
  OnlyInsertable record(session);
  ExpectInsertAndDelete(record);
}

TEST_F(CacheClasses, MayJoinTheWritersOfTheirOwn) {
  BothWriters record(session);
  ExpectPut(record);
  ExpectInsertAndDelete(record);
}

TEST_F(CacheClasses, MayBeDerivedFromFurther) {
  DerivedTwice record(session);
  record.code = "NZ";
  record.name = "New Zealand";
  record.area = 268;
  record.Insert();
  record.Get(99);
  record.code = "NZ";
  record.Get(-1);
  EXPECT_EQ(record.area, 268);
  EXPECT_THAT(Statements(), ElementsAre("INSERT INTO `country` (`code`, `name`, `area`) VALUES ('NZ', 'New Zealand', "
                                        "'268')"));
}

TEST_F(CacheClasses, AreDestroyedThroughEveryBase) {
  std::unique_ptr<ASDomain>(std::make_unique<DerivedTwice>(session)).reset();
  std::unique_ptr<ASSimpleCache>(std::make_unique<DerivedTwice>(session)).reset();
  std::unique_ptr<ASUpdatableCache>(std::make_unique<DerivedTwice>(session)).reset();
  std::unique_ptr<ASInsertableCache>(std::make_unique<DerivedTwice>(session)).reset();
  EXPECT_THAT(client.Calls(), IsEmpty());
}

}  // namespace
}  // namespace corvane::test
