#include "questions.h"

#include <memory>
#include <string>
#include <vector>

#include "answers.h"
#include "layout.h"
#include "records.h"
#include "text_table.h"

// In each question the records stand before the cursor, so that they outlive it: a cursor's statement names them, and
// its rows are read into their values. The answers are ordered by numbers and by country codes, in which the server
// and the program agree; by names each server has its own order.
namespace demo {

namespace {

constexpr unsigned kMostRows = 10;

// The condition under which a country, a link and a zone belong together, as it is printed.
constexpr char const* kLinked = "link.countryCodeColumn == country.codeColumn && link.zoneIdColumn == zone.idColumn";

void Check(Account& account, TextTable const& found, std::vector<Row> const& answer) {
  account.Rows(found);
  account.Result(found.Rows() == answer, Rows(found.Rows().size()) + ", the same as found in the files");
}

void JoinTables(ASSession& session, TimeZoneData const& data, Account& account) {
  constexpr double farNorth = 60;
  account.Step("Ask about several tables: zones in the far north, each with its country");
  Country country;
  Zone zone;
  ZoneCountry link;
  ASCursor cursor(&session);
  cursor.Project() << country.nameColumn << zone.nameColumn << zone.latitudeColumn;
  cursor.Where(link.countryCodeColumn == country.codeColumn && link.zoneIdColumn == zone.idColumn &&
               zone.latitudeColumn > farNorth);
  cursor.Order(-zone.latitudeColumn + zone.idColumn + country.codeColumn);
  cursor.Limit(kMostRows);
  account.Query({"cursor.Project() << country.nameColumn << zone.nameColumn << zone.latitudeColumn",
                 std::string("cursor.Where(") + kLinked + " && zone.latitudeColumn > farNorth)",
                 "cursor.Order(-zone.latitudeColumn + zone.idColumn + country.codeColumn)", "cursor.Limit(kMostRows)",
                 "while (cursor.Fetch()) ... country.name, zone.name, zone.latitude"},
                cursor.Query(), {&country, &zone, &link});

  TextTable table({"country", "zone", "latitude"});
  while (cursor.Fetch()) table.Add({ToCell(country.name), ToCell(zone.name), ToCell(zone.latitude)});
  Check(account, table, ZonesNorthOf(data, farNorth, kMostRows));
}

void JoinWhatIsMissing(ASSession& session, TimeZoneData const& data, Account& account) {
  account.Step("Ask for what is missing: countries without a zone, by an outer join, which ++ asks for");
  Country country;
  ZoneCountry link;
  ASCursor cursor(&session);
  cursor.Project() << country.codeColumn << country.nameColumn << link.zoneIdColumn;
  cursor.Where(++link.countryCodeColumn == country.codeColumn && link.zoneIdColumn.IsNull());
  cursor.Order(ASOrder(country.codeColumn.Query()));
  cursor.Limit(kMostRows);
  account.Query({"cursor.Project() << country.codeColumn << country.nameColumn << link.zoneIdColumn",
                 "cursor.Where(++link.countryCodeColumn == country.codeColumn && link.zoneIdColumn.IsNull())",
                 "cursor.Order(ASOrder(country.codeColumn.Query()))", "cursor.Limit(kMostRows)"},
                cursor.Query(), {&country, &link});

  TextTable table({"code", "country", "zone id"});
  while (cursor.Fetch()) table.Add({ToCell(country.code), ToCell(country.name), ToCell(link.zoneId)});
  Check(account, table, CountriesWithoutZone(data, kMostRows));
}

void CountInGroups(ASSession& session, TimeZoneData const& data, Account& account) {
  constexpr int few = 1;
  account.Step("Let the server count: the countries with most zones; the count is read into a value of its own");
  Country country;
  ZoneCountry link;
  ASInt64 zones;
  std::unique_ptr<ASGroupAttribute> const count(link.zoneIdColumn.Count());  // Count() leaves the deleting to us
  count->Register(&zones, &link);  // else the number would be read into link.zoneId
  ASCursor cursor(&session);
  cursor.Project() << country.codeColumn << country.nameColumn << *count;
  cursor.Where(link.countryCodeColumn == country.codeColumn);
  cursor.Having(*count > few);
  cursor.Order(-*count + country.codeColumn);
  cursor.Limit(kMostRows);
  account.Query(
      {"std::unique_ptr<ASGroupAttribute> const count(link.zoneIdColumn.Count())", "count->Register(&zones, &link)",
       "cursor.Project() << country.codeColumn << country.nameColumn << *count",
       "cursor.Where(link.countryCodeColumn == country.codeColumn)", "cursor.Having(*count > few)",
       "cursor.Order(-*count + country.codeColumn)", "cursor.Limit(kMostRows)"},
      cursor.Query(), {&country, &link});

  TextTable table({"code", "country", "zones"});
  while (cursor.Fetch()) table.Add({ToCell(country.code), ToCell(country.name), ToCell(zones)});
  Check(account, table, CountriesWithManyZones(data, few, kMostRows));
}

void AskWithinAQuestion(ASSession& session, TimeZoneData const& data, Account& account) {
  std::string const name = MostSharedZone(data);
  account.Step("Ask within a question: countries that share the zone " + name + ", by a sub-query");
  Country country;
  Zone zone;
  ZoneCountry link;
  ASFilter sharing;
  sharing.Project() << link.countryCodeColumn;
  sharing.Where(link.zoneIdColumn == zone.idColumn && zone.nameColumn == name);
  ASCursor cursor(&session);
  cursor.Project() << country.codeColumn << country.nameColumn;
  cursor.Where(country.codeColumn.In(sharing.Select()));
  cursor.Order(ASOrder(country.codeColumn.Query()));
  cursor.Limit(kMostRows);
  account.Query({"ASFilter sharing; sharing.Project() << link.countryCodeColumn",
                 "sharing.Where(link.zoneIdColumn == zone.idColumn && zone.nameColumn == \"" + name + "\")",
                 "cursor.Project() << country.codeColumn << country.nameColumn",
                 "cursor.Where(country.codeColumn.In(sharing.Select()))",
                 "cursor.Order(ASOrder(country.codeColumn.Query()))", "cursor.Limit(kMostRows)"},
                cursor.Query(), {&country, &link, &zone});

  TextTable table({"code", "country"});
  while (cursor.Fetch()) table.Add({ToCell(country.code), ToCell(country.name)});
  Check(account, table, CountriesOfZone(data, name, kMostRows));
}

void UniteQuestions(ASSession& session, TimeZoneData const& data, Account& account) {
  constexpr double farNorth = 65;
  constexpr double farEast = 165;
  account.Step("Unite two questions: countries far in the north and far in the east, each once, ordered by position");
  Country country;
  Zone zone;
  ZoneCountry link;
  ASComparison const linked = link.countryCodeColumn == country.codeColumn && link.zoneIdColumn == zone.idColumn;
  ASFilter eastern;
  eastern.Project() << country.codeColumn << country.nameColumn;
  eastern.Where(zone.longitudeColumn > farEast && linked);  // `&&` changes its left side, so that is the new one
  ASCursor cursor(&session);
  cursor.Project() << country.codeColumn << country.nameColumn;
  cursor.Where(zone.latitudeColumn > farNorth && linked);
  cursor.Union(eastern);
  cursor.Order(ASOrder("1 DESC"));
  cursor.Limit(kMostRows);
  account.Query({std::string("ASComparison const linked = ") + kLinked,
                 "ASFilter eastern; eastern.Project() << country.codeColumn << country.nameColumn",
                 "eastern.Where(zone.longitudeColumn > farEast && linked)",
                 "cursor.Project() << country.codeColumn << country.nameColumn",
                 "cursor.Where(zone.latitudeColumn > farNorth && linked)", "cursor.Union(eastern)",
                 "cursor.Order(ASOrder(\"1 DESC\"))", "cursor.Limit(kMostRows)"},
                cursor.Query(), {&country, &zone, &link});

  TextTable table({"code", "country"});
  while (cursor.Fetch()) table.Add({ToCell(country.code), ToCell(country.name)});
  Check(account, table, CountriesNorthOrEastOf(data, farNorth, farEast, kMostRows));
}

void AskInSql(ASSession& session, TimeZoneData const& data, Account& account) {
  account.Step("Ask in SQL what the query language has no words for: the result brings columns and values along");
  Str statement(
      "SELECT SUBSTRING_INDEX(name, '/', 1) AS area, COUNT(*) AS zones, COUNT(comment) AS noted FROM tz_zone"
      " GROUP BY area ORDER BY zones DESC, MIN(id) LIMIT ");
  statement << kMostRows;
  ASCursor cursor(&session);
  cursor.Statement(statement);
  account.Query(
      {"cursor.Statement(statement)", "for (ASSimpleAttribute* item : cursor.Project().Items()) ... item->Data()",
       "static_cast<ASAttribute*>(item)->Name()"},
      cursor.Query(), {});

  std::vector<std::string> names;
  for (ASSimpleAttribute* const item : cursor.Project().Items()) {
    names.push_back(static_cast<ASAttribute*>(item)->Name().ToString());
  }
  TextTable table(names);
  while (cursor.Fetch()) {
    Row row;
    for (ASSimpleAttribute* const item : cursor.Project().Items()) {
      item->Data()->Trim();  // texts come padded with blanks
      row.push_back(ToCell(*item->Data()));
    }
    table.Add(row);
  }
  Check(account, table, Areas(data, kMostRows));
}

}  // namespace

void AskQuestions(ASSession& session, TimeZoneData const& data, Account& account) {
  JoinTables(session, data, account);
  JoinWhatIsMissing(session, data, account);
  CountInGroups(session, data, account);
  AskWithinAQuestion(session, data, account);
  UniteQuestions(session, data, account);
  AskInSql(session, data, account);
  session.Commit();
}

}  // namespace demo
