#include "bulk.h"

#include <algorithm>
#include <string>
#include <vector>

#include "answers.h"
#include "database.h"
#include "layout.h"
#include "records.h"
#include "text_table.h"

namespace demo {

namespace {

void UpdateManyRows(ASSession& session, TimeZoneData const& data, Account& account) {
  account.Step("Update many rows at once: western longitudes are counted eastwards (aliases are shown by names)");
  Zone zone;
  ASUpdater updater(zone.longitudeColumn.Set(zone.longitudeColumn + 360));
  updater.Where(zone.longitudeColumn < 0);
  Str sql = updater.Query();
  account.Query({"ASUpdater updater(zone.longitudeColumn.Set(zone.longitudeColumn + 360))",
                 "updater.Where(zone.longitudeColumn < 0)", "updater.Execute(&session)"},
                sql.replaceStr(zone.Alias(), "zone"), {});

  unsigned long const changed = updater.Execute(&session);
  auto const western =
      std::count_if(data.zones.begin(), data.zones.end(), [](ZoneLine const& line) { return line.longitude < 0; });
  account.Result(changed == static_cast<unsigned long>(western),
                 Rows(changed) + " changed, as many as lie in the west by the files");

  std::vector<Row> rows;
  ASCursor cursor(&session);
  cursor.Project() << zone.nameColumn << zone.longitudeColumn;
  cursor.Order(ASOrder(zone.idColumn.Query()));
  while (cursor.Fetch()) rows.push_back({ToCell(zone.name), ToCell(zone.longitude)});
  account.Result(rows == LongitudesEastwards(data),
                 std::to_string(rows.size()) + " longitudes are as calculated from the files");
  session.Rollback();
}

void DeleteByAnotherTable(ASSession& session, TimeZoneData const& data, Account& account) {
  account.Step("Delete rows by what another table says: the links of southern zones; a Rollback brings them back");
  Zone zone;
  ZoneCountry link;
  ASDeleter deleter(link);
  deleter.Where(link.zoneIdColumn == zone.idColumn && zone.latitudeColumn < 0);
  Str sql = deleter.Query();
  account.Query(
      {"ASDeleter deleter(link)", "deleter.Where(link.zoneIdColumn == zone.idColumn && zone.latitudeColumn < 0)",
       "deleter.Execute(&session)"},
      sql.replaceStr(link.Alias(), "link").replaceStr(zone.Alias(), "zone"), {});

  std::vector<Row> const northern = NorthernLinks(data);
  unsigned long const deleted = deleter.Execute(&session);
  account.Result(deleted == data.LinkCount() - northern.size(),
                 Rows(deleted) + " deleted, as many as the files have in the south");

  std::vector<Row> rows;
  ASCursor cursor(&session);
  cursor.Project() << zone.nameColumn << link.countryCodeColumn;
  cursor.Where(link.zoneIdColumn == zone.idColumn);
  cursor.Order(ASOrder(zone.idColumn.Query()) + link.countryCodeColumn);
  while (cursor.Fetch()) rows.push_back({ToCell(zone.name), ToCell(link.countryCode)});
  account.Result(rows == northern, Rows(rows.size()) + " left, the same as the northern ones in the files");

  session.Rollback();
  long const after = CountRows(session, link.Name());
  account.Result(after == static_cast<long>(data.LinkCount()),
                 "all " + std::to_string(after) + " links are there again");
}

}  // namespace

void ChangeInBulk(ASSession& session, TimeZoneData const& data, Account& account) {
  UpdateManyRows(session, data, account);
  DeleteByAnotherTable(session, data, account);
  session.Commit();
}

}  // namespace demo
