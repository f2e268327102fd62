#include "older.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "answers.h"
#include "layout.h"
#include "records.h"
#include "text_table.h"

namespace demo {

namespace {

constexpr int kFarNorth = 65;

// No table: what the question's three columns are read into.
struct NorthernZone : ASDomain {
  NorthernZone() : ASDomain("", "") { Add(countryColumn, country).Add(zoneColumn, zone).Add(latitudeColumn, latitude); }
  NorthernZone(NorthernZone&&) = delete;

  ASVStr country{100 * kBytesPerCharacter};
  ASVStr zone{64 * kBytesPerCharacter};
  ASDouble latitude;

  ASAttribute countryColumn{"country"};
  ASAttribute zoneColumn{"zone"};
  ASAttribute latitudeColumn{"latitude"};
};

// The alias that Join() gives a table: "P" and the address of the text.
Str Alias(char const* table) {
  Str alias("P");
  alias << reinterpret_cast<std::uintptr_t>(table);
  return alias;
}

// A column that more than one table has.
Str Column(char const* table, char const* name) {
  Str column = Alias(table);
  column << "." << name;
  return column;
}

// The answer that ASCursor gives.
std::vector<Row> AskASCursor(ASSession& session) {
  Country country;
  Zone zone;
  ZoneCountry link;
  ASCursor cursor(&session);
  cursor.Project() << country.nameColumn << zone.nameColumn << zone.latitudeColumn;
  cursor.Where(link.countryCodeColumn == country.codeColumn && link.zoneIdColumn == zone.idColumn &&
               zone.latitudeColumn > kFarNorth);
  cursor.Order(-zone.latitudeColumn + zone.nameColumn + country.nameColumn);
  std::vector<Row> rows;
  while (cursor.Fetch()) rows.push_back({ToCell(country.name), ToCell(zone.name), ToCell(zone.latitude)});
  return rows;
}

}  // namespace

void AskInTheOlderWay(ASSession& session, TimeZoneData const& data, Account& account) {
  account.Step("Ask in the older way, by texts: zones in the far north again, beside what ASCursor answers");
  static constexpr char country[] = "tz_country";
  static constexpr char zone[] = "tz_zone";
  static constexpr char link[] = "tz_zone_country";
  Str farNorth;
  farNorth << kFarNorth;

  ORDBMS::old_cursor cursor;
  auto* const row = new NorthernZone;
  cursor.SetRecord(row);  // deleted with the cursor
  cursor.Join(country);
  cursor.Join(zone);
  cursor.Join(link);
  cursor.Project(Column(country, "name")).Project(Column(zone, "name")).Project("latitude");
  cursor.Set("latitude", farNorth, ORDBMS::GREATER);  // texts go into the statement as they are
  cursor.And("country_code", "code", ORDBMS::EQUAL);
  cursor.And("zone_id", "id", ORDBMS::EQUAL);
  cursor.orderby(3, ORDBMS::DESCENDING);
  cursor.orderby(2, ORDBMS::ASCENDING);
  cursor.orderby(1, ORDBMS::ASCENDING);
  Str sql = cursor.Query();
  sql.replaceStr(Alias(country), "country").replaceStr(Alias(zone), "zone").replaceStr(Alias(link), "link");
  account.Query({"cursor.SetRecord(new NorthernZone)", "cursor.Join(country) ... Join(zone) ... Join(link)",
                 "cursor.Project(Column(country, \"name\")) ... Project(\"latitude\")",
                 "cursor.Set(\"latitude\", farNorth, ORDBMS::GREATER)",
                 "cursor.And(\"country_code\", \"code\", ORDBMS::EQUAL) ...",
                 "cursor.orderby(3, ORDBMS::DESCENDING) ...", "cursor.Open(&session)"},
                sql, {});

  TextTable table({"country", "zone", "latitude"});
  cursor.Open(&session);  // without it nothing would be read into the row
  while (cursor.Fetch()) table.Add({ToCell(row->country), ToCell(row->zone), ToCell(row->latitude)});
  account.Rows(table);
  std::vector<Row> const& rows = table.Rows();
  account.Result(rows == AskASCursor(session), Rows(rows.size()) + ", the same as by ASCursor");
  std::vector<Row> const answer = ZonesNorthOf(data, kFarNorth, data.LinkCount());
  account.Result(std::is_permutation(rows.begin(), rows.end(), answer.begin(), answer.end()),
                 "and the same as found in the files");
  session.Commit();
}

}  // namespace demo
