#include "tour.h"

#include <optional>
#include <string>
#include <vector>

#include "bulk.h"
#include "caches.h"
#include "layout.h"
#include "load.h"
#include "older.h"
#include "questions.h"
#include "records.h"
#include "sequence.h"

namespace demo {

namespace {

// What the steps share.
struct Tour {
  Target const& target;
  TimeZoneData const& data;
  Account& account;
  ASSession session;
  std::vector<int> zoneIds;  // in the order of the data
  std::vector<Guid> fileGuids;
};

std::string Shown(AException const& error) {
  return "AException " + std::to_string(error.Number()) + ": " + PlainWords(error);
}

bool Matches(ASVStr const& column, std::optional<std::string> const& text) {
  return text ? column == text->c_str() : column.IsNull() != 0;
}

bool Matches(SourceFile const& row, File const& file) {
  RealBlob const bytes(static_cast<unsigned>(file.bytes.size()), file.bytes.data(), NoCopy);
  return row.name == file.name.c_str() && row.modified == static_cast<int>(file.modified) && row.contents == bytes;
}

// The zone with a comment that comes first, else the first zone.
std::size_t ZoneWithComment(TimeZoneData const& data) {
  for (std::size_t i = 0; i < data.zones.size(); ++i) {
    if (data.zones[i].comment) return i;
  }
  return 0;
}

void MakeTables(Tour& tour) {
  tour.account.Step("Make the tables");
  CreateTables(tour.session);
  for (Table const& table : kTables) tour.account.Call("session.Execute(statement)", table.create);
}

void InsertCountries(Tour& tour) {
  tour.account.Step("Load the countries: an Insert for each line of iso3166.tab, in one transaction");
  Country first;
  first.Take(tour.data.countries.front());
  tour.account.Call("session.Insert(country)", tour.session.InsertQuery(first, 0));
  LoadCountries(tour.session, tour.data);
  long const rows = CountRows(tour.session, first.Name());
  tour.account.Result(rows == static_cast<long>(tour.data.countries.size()),
                      std::to_string(rows) + " rows, inserted one by one");

  tour.account.Call("session.Commit()", "COMMIT");
  tour.session.Commit();
}

void InsertZones(Tour& tour) {
  tour.account.Step("Load the zones: the server numbers them; a zone without comment gets NULL; links join both");
  Zone first;
  first.Take(tour.data.zones.front());
  tour.account.Call("session.Insert(zone)", tour.session.InsertQuery(first, 0));
  tour.zoneIds = LoadZones(tour.session, tour.data);
  tour.account.Call("link.zoneId = session.GetInsertId()");
  ZoneCountry link;
  link.zoneId = tour.zoneIds.front();
  link.countryCode = tour.data.zones.front().countryCodes.front();
  tour.account.Call("session.Insert(link)", tour.session.InsertQuery(link, 0));
  long const zones = CountRows(tour.session, first.Name());
  long const links = CountRows(tour.session, link.Name());
  tour.account.Result(
      zones == static_cast<long>(tour.data.zones.size()) && links == static_cast<long>(tour.data.LinkCount()),
      std::to_string(zones) + " zones and " + std::to_string(links) + " links");

  tour.account.Call("session.Commit()", "COMMIT");
  tour.session.Commit();
}

void SelectByKey(Tour& tour) {
  tour.account.Step(
      "Select a row by its key: it comes back into the record, and stays locked until the transaction ends");
  CountryLine const& expected = tour.data.countries.front();
  Country country;
  country.code = expected.code;
  tour.account.Call("country.code = \"" + expected.code + "\"; session.Select(country)",
                    tour.session.SelectQuery(country, 0));
  int const found = tour.session.Select(country);
  tour.account.Result(found == 1 && country.name == expected.name.c_str(),
                      Rows(static_cast<unsigned long>(found)) + ": country.name is " + Quoted(country.name));

  country.code = "??";
  tour.account.Call("country.code = \"??\"; session.Select(country)", tour.session.SelectQuery(country, 0));
  int const unknown = tour.session.Select(country);
  tour.account.Result(unknown == 0, Rows(static_cast<unsigned long>(unknown)) + ": there is no such country");

  tour.session.Commit();
}

void SelectReadOnly(Tour& tour) {
  tour.account.Step("In read-only mode a Select locks nothing: no FOR UPDATE");
  Country country;
  country.code = tour.data.countries.back().code;
  tour.session.PushReadOnly();
  tour.account.Call("session.PushReadOnly()");
  Str const statement = tour.session.SelectQuery(country, 0);
  tour.account.Call("session.Select(country)", statement);
  int const found = tour.session.Select(country);
  tour.account.Result(found == 1 && statement.findStr("FOR UPDATE") < 0, "country.name is " + Quoted(country.name));
  tour.session.PopReadOnly();
  tour.account.Call("session.PopReadOnly()");
}

void UpdateAndNull(Tour& tour) {
  std::size_t const index = ZoneWithComment(tour.data);
  tour.account.Step("Update a row: a comment becomes NULL, and gets its text back");
  Zone zone;
  zone.id = tour.zoneIds[index];
  tour.session.Select(zone);
  Str const comment = zone.comment.getstr();

  zone.comment.SetNull();
  tour.account.Call("zone.comment.SetNull(); session.Update(zone)", tour.session.UpdateQuery(zone, 0));
  unsigned long const changed = tour.session.Update(zone);
  tour.session.Commit();
  tour.session.Select(zone);
  tour.account.Result(changed <= 1 && zone.comment.IsNull() != 0, Rows(changed) + " changed; zone.comment is NULL");

  zone.comment = comment;
  tour.account.Call("zone.comment = comment; session.Update(zone)", tour.session.UpdateQuery(zone, 0));
  tour.session.Update(zone);
  tour.session.Commit();
  tour.session.Select(zone);
  tour.account.Result(Matches(zone.comment, tour.data.zones[index].comment),
                      "zone.comment is " + Quoted(zone.comment.getstr()));
  tour.session.Commit();
}

void DeleteAndRollback(Tour& tour) {
  tour.account.Step("Delete a row, and undo it by a Rollback");
  ZoneCountry link;
  link.zoneId = tour.zoneIds.front();
  link.countryCode = tour.data.zones.front().countryCodes.front();
  long const before = CountRows(tour.session, link.Name());

  tour.account.Call("session.Delete(link)", tour.session.DeleteQuery(link, 0));
  unsigned long const deleted = tour.session.Delete(link);
  long const between = CountRows(tour.session, link.Name());
  tour.account.Result(deleted == 1 && between == before - 1, Rows(deleted) + " deleted; " + std::to_string(between) +
                                                                 " of " + std::to_string(before) + " links are left");

  tour.account.Call("session.Rollback()", "ROLLBACK");
  tour.session.Rollback();
  long const after = CountRows(tour.session, link.Name());
  tour.account.Result(after == before, "all " + std::to_string(after) + " links are there again");
}

void BeRefused(Tour& tour) {
  tour.account.Step("What the server refuses is thrown");
  Country country;
  country.code = tour.data.zones.front().countryCodes.front();
  tour.account.Call("session.Delete(country)", tour.session.DeleteQuery(country, 0));
  try {
    tour.session.Delete(country);
    tour.account.Result(false, "deleted, although links still name this country");
  } catch (AException const& error) {
    if (error.Number() != corvane::kErrStatementRefused) throw;  // the server is not there any more
    tour.account.Result(true, Shown(error));
  }
  tour.session.Rollback();
}

void KeepFiles(Tour& tour) {
  tour.account.Step("Keep files under GUIDs, with date-times and large binaries, and compare them byte by byte");
  SourceFile first;
  first.Take(tour.data.files.back());
  tour.fileGuids = LoadFiles(tour.session, tour.data);
  first.guid = tour.fileGuids.back();
  tour.account.Call("session.Insert(file)", tour.session.InsertQuery(first, 0));
  tour.session.Commit();

  for (std::size_t i = 0; i < tour.data.files.size(); ++i) {
    File const& file = tour.data.files[i];
    SourceFile row;
    row.guid = tour.fileGuids[i];
    tour.account.Call("session.Select(file)", tour.session.SelectQuery(row, 0));
    int const found = tour.session.Select(row);
    tour.account.Result(found == 1 && Matches(row, file),
                        Quoted(row.name) + ", modified " + row.modified.getstr().ToString() + " UTC, " +
                            std::to_string(row.contents.Length()) + " bytes, the same as in the file");
  }
  tour.session.Commit();
}

void LoseTheConnection(Tour& tour) {
  tour.account.Step("Lose the connection within a transaction: the session reopens it, and says what was lost");
  Zone zone;
  zone.id = tour.zoneIds.front();
  tour.session.Select(zone);
  Str const comment = zone.comment.getstr();
  zone.comment = "not for long";
  tour.account.Call("zone.comment = \"not for long\"; session.Update(zone)", tour.session.UpdateQuery(zone, 0));
  tour.account.Result(tour.session.Update(zone) == 1, "1 row changed, not committed");

  long const connection = ConnectionNumber(tour.session);
  KillConnection(tour.target, connection);
  tour.account.Call("from a second session", Str("KILL CONNECTION ") << connection);

  tour.account.Call("session.Update(zone)", tour.session.UpdateQuery(zone, 0));
  try {
    tour.session.Update(zone);
    tour.account.Result(false, "the loss went unnoticed");
  } catch (AException const& error) {
    if (error.Number() != corvane::kErrStatementRefused) throw;  // the server is not there any more
    tour.account.Result(true, Shown(error));
  }

  tour.account.Call("session.Select(zone)", tour.session.SelectQuery(zone, 0));
  int const found = tour.session.Select(zone);
  tour.account.Result(
      found == 1 && Quoted(zone.comment.getstr()) == Quoted(comment) && ConnectionNumber(tour.session) != connection,
      "on a new connection: zone.comment is " + Quoted(zone.comment.getstr()) + " as before");
  tour.session.Commit();
}

bool SameCountry(ASSession& session, CountryLine const& line) {
  Country country;
  country.code = line.code;
  return session.Select(country) == 1 && country.name == line.name.c_str();
}

bool SameZone(ASSession& session, int id, ZoneLine const& line) {
  Zone zone;
  zone.id = id;
  bool same = session.Select(zone) == 1 && zone.name == line.name.c_str() && Matches(zone.comment, line.comment) &&
              zone.latitude == line.latitude && zone.longitude == line.longitude;
  for (std::string const& code : line.countryCodes) {
    ZoneCountry link;
    link.zoneId = id;
    link.countryCode = code;
    same = session.Select(link) == 1 && same;
  }
  return same;
}

void CompareWithFiles(Tour& tour) {
  tour.account.Step("Count the rows, and compare each with its line in the files");
  tour.account.Call("session.Execute(statement); session.Fetch(number)", "SELECT COUNT(*) FROM tz_country");
  for (Count const& count : CountAll(tour.session, tour.data)) {
    tour.account.Compare(count.table, count.rows, count.expected);
  }

  tour.session.PushReadOnly();
  std::size_t countries = 0;
  for (CountryLine const& line : tour.data.countries) countries += SameCountry(tour.session, line) ? 1 : 0;
  std::size_t zones = 0;
  for (std::size_t i = 0; i < tour.data.zones.size(); ++i) {
    zones += SameZone(tour.session, tour.zoneIds[i], tour.data.zones[i]) ? 1 : 0;
  }
  tour.session.PopReadOnly();
  tour.account.Result(countries == tour.data.countries.size() && zones == tour.data.zones.size(),
                      std::to_string(countries) + " countries and " + std::to_string(zones) +
                          " zones with their links are as in the files");
}

}  // namespace

void RunTour(Target const& target, TimeZoneData const& data, Account& account) {
  account.Line("Corvane: the countries and time zones of " + data.folder + " in a database");
  Tour tour{target, data, account, target.Open(), {}, {}};
  account.Line("Connected to " + target.Shown() + ", version " + ServerVersion(tour.session).ToString());

  MakeTables(tour);
  InsertCountries(tour);
  InsertZones(tour);
  SelectByKey(tour);
  SelectReadOnly(tour);
  UpdateAndNull(tour);
  DeleteAndRollback(tour);
  BeRefused(tour);
  KeepFiles(tour);
  LoseTheConnection(tour);
  CompareWithFiles(tour);
  AskQuestions(tour.session, data, account);
  ChangeInBulk(tour.session, data, account);
  CountFromTwoSessions(tour.session, target, account);
  UseACache(tour.session, target, data, account);
  AskInTheOlderWay(tour.session, data, account);
  tour.session.Disconnect();
}

}  // namespace demo
