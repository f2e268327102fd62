#include <gtest/gtest.h>

#include <regex>
#include <string>
#include <vector>

#include "tests/support/live.h"

using corvane::test::Environment;
using corvane::test::LiveTest;
using corvane::test::Rows;
using corvane::test::Session;

// The examples in the comments of the public headers, word for word: installed_as_shown compares them.
namespace {

struct Country : ASDomain {
  Country() : ASDomain("country", "") { Add(codeColumn, code).Add(nameColumn, name); }
  Country(Country&&) = delete;

  ASStr code{2};
  ASVStr name{80};
  ASAttribute codeColumn{"code", "", 0, corvane::kKey};
  ASAttribute nameColumn{"name"};
};

struct Zone : ASDomain {
  Zone() : ASDomain("zone", "") { Add(nameColumn, name).Add(countryColumn, country); }
  Zone(Zone&&) = delete;

  ASVStr name{80};
  ASStr country{2};
  ASAttribute nameColumn{"name", "", 0, corvane::kKey};
  ASAttribute countryColumn{"country"};
};

struct Maker : ASDomain {
  Maker() : ASDomain("maker", "") { Add(idColumn, id).Add(nameColumn, name); }
  Maker(Maker&&) = delete;

  ASInt id;
  ASVStr name{80};
  ASAttribute idColumn{"id", "", 0, corvane::kKey};
  ASAttribute nameColumn{"name"};
};

struct Item : ASDomain {
  Item() : ASDomain("item", "") {
    Add(idColumn, id).Add(kindColumn, kind).Add(makerColumn, maker).Add(priceColumn, price).Add(markColumn, mark);
  }
  Item(Item&&) = delete;

  ASInt id, kind, maker;
  ASDouble price;
  ASVStr mark{20};
  ASAttribute idColumn{"id", "", 0, corvane::kKey};
  ASAttribute kindColumn{"kind"};
  ASAttribute makerColumn{"maker"};
  ASAttribute priceColumn{"price"};
  ASAttribute markColumn{"mark"};
};

class HeaderExamples : public LiveTest {
 protected:
  void CreateTables() override {
    Run("CREATE TABLE country (code CHAR(2) PRIMARY KEY, name VARCHAR(80))");
    Run("INSERT INTO country VALUES ('IT', 'Italy'), ('MT', 'Malta'), ('NZ', 'New Zealand')");
    Run("CREATE TABLE zone (name VARCHAR(80) PRIMARY KEY, country CHAR(2))");
    Run("INSERT INTO zone VALUES ('Europe/Malta', 'MT'), ('Europe/Rome', 'IT')");
    Run("CREATE TABLE maker (id INT PRIMARY KEY, name VARCHAR(80))");
    Run("INSERT INTO maker VALUES (1, 'x'), (2, 'y')");
    Run("CREATE TABLE item (id INT PRIMARY KEY, kind INT, maker INT, price DOUBLE, mark VARCHAR(20))");
    Run("INSERT INTO item VALUES (1, 3, 1, 100, ''), (2, 3, 2, 200, ''), (3, 4, 1, 300, '')");
  }

  // What the examples do with a row.
  void Use(ASVStr const& name, ASVStr const& other) { used_.push_back({name.ToString(), other.ToString()}); }
  void Use(ASStr const& code, ASVStr const& name) { used_.push_back({code.ToString(), name.ToString()}); }

  Rows used_;
};

TEST_F(HeaderExamples, Cursor) {
  Session session(With());
  Zone zone;
  Country country;

  ASCursor cursor(&session);
  cursor.Project() << zone.nameColumn << country.nameColumn;
  cursor.Where(zone.countryColumn == country.codeColumn);
  cursor.Order(-zone.nameColumn);
  while (cursor.Fetch()) Use(zone.name, country.name);

  EXPECT_EQ(used_, (Rows{{"Europe/Rome", "Italy"}, {"Europe/Malta", "Malta"}}));
}

TEST_F(HeaderExamples, Updater) {
  Session session(With());
  Item item;

  ASUpdater updater(item.priceColumn.Set(item.priceColumn * 1.1));
  updater << item.markColumn.Set("raised");
  updater.Where(item.kindColumn == 3);
  unsigned long const changed = updater.Execute(&session);

  EXPECT_EQ(changed, 2U);
  EXPECT_EQ(StoredRows("SELECT id, ROUND(price), mark FROM item ORDER BY id"),
            (Rows{{"1", "110", "raised"}, {"2", "220", "raised"}, {"3", "300", ""}}));
}

TEST_F(HeaderExamples, Deleter) {
  Session session(With());
  Item item;
  Maker maker;

  ASDeleter deleter(item);
  deleter.Where(item.kindColumn == 3 && item.makerColumn == maker.idColumn && maker.nameColumn == "x");
  unsigned long const deleted = deleter.Execute(&session);

  EXPECT_EQ(deleted, 1U);
  EXPECT_EQ(StoredRows("SELECT id FROM item ORDER BY id"), (Rows{{"2"}, {"3"}}));
}

struct Countries : ASSimpleCache {
  explicit Countries(ASSession* session) : ASDomain("country", "Country"), ASSimpleCache(session, 0) {
    Add(codeColumn, code).Add(nameColumn, name);
  }
  ASStr code{2};
  ASVStr name{80};
  ASAttribute codeColumn{"code", "Code", 0, corvane::kKey};
  ASAttribute nameColumn{"name"};
};

TEST_F(HeaderExamples, SimpleCache) {
  Session session(With());
  Countries countries(&session);

  countries.code = "NZ";
  countries.Get(-1);  // from the server the first time, from memory from then on

  EXPECT_EQ(countries.name.ToString(), "New Zealand");
  Run("DELETE FROM country");
  countries.name = "";
  countries.code = "NZ";
  countries.Get(-1);
  EXPECT_EQ(countries.name.ToString(), "New Zealand");
}

struct WritableCountries : ASUpdatableCache {
  explicit WritableCountries(ASSession* session) : ASDomain("country", "Country"), ASUpdatableCache(session, 0) {
    Add(codeColumn, code).Add(nameColumn, name);
  }
  ASStr code{2};
  ASVStr name{80};
  ASAttribute codeColumn{"code", "Code", 0, corvane::kKey};
  ASAttribute nameColumn{"name"};
};

TEST_F(HeaderExamples, UpdatableCache) {
  Session session(With());
  WritableCountries countries(&session);

  countries.code = "NZ";
  countries.Get(-1);
  countries.name = "Aotearoa New Zealand";
  countries.Put();

  EXPECT_EQ(Stored("SELECT name FROM country WHERE code = 'NZ'"), "Aotearoa New Zealand");
}

TEST_F(HeaderExamples, Sequence) {
  if (Environment("MYSQL_UNIX_PORT").empty()) GTEST_SKIP() << "MYSQL_UNIX_PORT is not set";
  Session session(With({{"EmulateSequences", "yes"}}));

  session.Execute("CREATE TABLE invoice_numbers (Val INT NOT NULL)");
  session.Execute("INSERT INTO invoice_numbers VALUES (0)");
  ASSequence numbers(&session, "invoice_numbers");
  int const first = numbers.getNext();  // 1

  EXPECT_EQ(first, 1);
}

TEST_F(HeaderExamples, OldFilter) {
  ORDBMS::old_filter filter;
  filter.Join("country");
  filter.Project("code");
  filter.Set("name", "'Italy'", ORDBMS::EQUAL);
  filter.Or("name", "'Malta'", ORDBMS::EQUAL);
  filter.Query();  // "SELECT code FROM country P94271 WHERE name='Italy' OR name='Malta'"

  EXPECT_EQ(std::regex_replace(filter.Query().ToString(), std::regex("P[0-9]+"), "P94271"),
            "SELECT code FROM country P94271 WHERE name='Italy' OR name='Malta'");
  EXPECT_EQ(StoredRows(filter.Query().ToString()), (Rows{{"IT"}, {"MT"}}));
}

TEST_F(HeaderExamples, OldCursor) {
  Session session(With());

  ORDBMS::old_cursor cursor(&session);
  auto* const country = new Country;
  cursor.SetRecord(country);  // deleted with the cursor
  cursor.Join("country");
  cursor.Project("code");
  cursor.Project("name");
  cursor.orderby("name", ORDBMS::DESCENDING);
  cursor.Open(&session);
  while (cursor.Fetch() != 0) Use(country->code, country->name);

  EXPECT_EQ(used_, (Rows{{"NZ", "New Zealand"}, {"MT", "Malta"}, {"IT", "Italy"}}));
}

}  // namespace
