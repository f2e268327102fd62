#include "load.h"

#include <cstdint>
#include <iterator>
#include <random>
#include <stdexcept>

#include "database.h"
#include "records.h"

namespace demo {

// The comment tells the demo's tables from an application's.
Table const kTables[5] = {
    {"tz_country",
     "CREATE TABLE tz_country (code CHAR(2) PRIMARY KEY, name VARCHAR(100) NOT NULL)"
     " ENGINE=InnoDB CHARACTER SET utf8mb4 COMMENT 'Corvane demo'"},
    {"tz_zone",
     "CREATE TABLE tz_zone (id INT AUTO_INCREMENT PRIMARY KEY, name VARCHAR(64) NOT NULL UNIQUE,"
     " latitude DOUBLE NOT NULL, longitude DOUBLE NOT NULL, comment VARCHAR(255) NULL)"
     " ENGINE=InnoDB CHARACTER SET utf8mb4 COMMENT 'Corvane demo'"},
    {"tz_zone_country",
     "CREATE TABLE tz_zone_country (zone_id INT NOT NULL, country_code CHAR(2) NOT NULL,"
     " PRIMARY KEY (zone_id, country_code), FOREIGN KEY (zone_id) REFERENCES tz_zone (id),"
     " FOREIGN KEY (country_code) REFERENCES tz_country (code))"
     " ENGINE=InnoDB CHARACTER SET utf8mb4 COMMENT 'Corvane demo'"},
    {"tz_file",
     "CREATE TABLE tz_file (guid CHAR(36) PRIMARY KEY, name VARCHAR(64) NOT NULL, modified DATETIME NOT NULL,"
     " contents LONGBLOB NOT NULL)"
     " ENGINE=InnoDB CHARACTER SET utf8mb4 COMMENT 'Corvane demo'"},
    {"tz_number", "CREATE TABLE tz_number (Val INT NOT NULL) ENGINE=InnoDB COMMENT 'Corvane demo'"},  // a sequence
};

namespace {

// The tables' names, each in single quotes or bare, with commas between them.
Str TableNames(char const* quote) {
  Str names;
  for (Table const& table : kTables) {
    if (names.length() > 0) names << ", ";
    names << quote << table.name << quote;
  }
  return names;
}

void RefuseForeignTables(ASSession& session) {
  Str statement("SELECT COUNT(*) FROM information_schema.tables WHERE table_schema = DATABASE() AND table_name IN (");
  statement << TableNames("'") << ") AND table_comment <> 'Corvane demo'";
  if (SelectNumber(session, statement) == 0) return;
  throw std::runtime_error("the database holds tables of these names that are not the demo's: " +
                           TableNames("").ToString());
}

// A random GUID (version 4 of RFC 4122).
Guid NewGuid() {
  std::random_device random;
  auto const half = [&random] { return static_cast<std::uint64_t>(random()) << 32U | random(); };
  std::uint64_t const first = (half() & ~0xF000ULL) | 0x4000ULL;
  std::uint64_t const second = (half() & ~(3ULL << 62U)) | 2ULL << 62U;
  return Guid(first, second);
}

}  // namespace

void CreateTables(ASSession& session) {
  RefuseForeignTables(session);
  for (auto table = std::rbegin(kTables); table != std::rend(kTables); ++table) {
    Str drop("DROP TABLE IF EXISTS ");
    session.Execute(drop << table->name);
  }
  for (Table const& table : kTables) session.Execute(table.create);
}

void LoadCountries(ASSession& session, TimeZoneData const& data) {
  Country country;
  for (CountryLine const& line : data.countries) {
    country.Take(line);
    session.Insert(country);
  }
}

std::vector<int> LoadZones(ASSession& session, TimeZoneData const& data) {
  std::vector<int> ids;
  Zone zone;
  ZoneCountry link;
  for (ZoneLine const& line : data.zones) {
    zone.Take(line);
    session.Insert(zone);
    link.zoneId = session.GetInsertId();
    ids.push_back(link.zoneId);
    for (std::string const& code : line.countryCodes) {
      link.countryCode = code;
      session.Insert(link);
    }
  }
  return ids;
}

std::vector<Guid> LoadFiles(ASSession& session, TimeZoneData const& data) {
  std::vector<Guid> guids;
  SourceFile row;
  for (File const& file : data.files) {
    row.Take(file);
    row.guid = NewGuid();
    session.Insert(row);
    guids.push_back(row.guid);
  }
  return guids;
}

void Load(ASSession& session, TimeZoneData const& data) {
  CreateTables(session);
  LoadCountries(session, data);
  LoadZones(session, data);
  LoadFiles(session, data);
  session.Commit();
}

std::vector<Count> CountAll(ASSession& session, TimeZoneData const& data) {
  std::size_t const expected[] = {data.countries.size(), data.zones.size(), data.LinkCount(), data.files.size()};
  std::vector<Count> counts;
  for (std::size_t i = 0; i < std::size(expected); ++i) {
    counts.push_back({kTables[i].name, CountRows(session, kTables[i].name), static_cast<long>(expected[i])});
  }
  return counts;
}

}  // namespace demo
