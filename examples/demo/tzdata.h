#ifndef CORVANE_EXAMPLES_DEMO_TZDATA_H
#define CORVANE_EXAMPLES_DEMO_TZDATA_H

#include <cstddef>
#include <ctime>
#include <optional>
#include <string>
#include <vector>

// The demo's input: the tables of countries and time zones that every Unix system has (Debian: package tzdata).
namespace demo {

/// A line of iso3166.tab: "AD", tab, "Andorra".
struct CountryLine {
  std::string code;
  std::string name;
};

/// A line of zone1970.tab: "CH,DE,LI", tab, "+4723+00832", tab, "Europe/Zurich", and tab and "Büsingen" where there is
/// a comment.
struct ZoneLine {
  std::vector<std::string> countryCodes;
  double latitude = 0;   // degrees, north positive
  double longitude = 0;  // degrees, east positive
  std::string name;
  std::optional<std::string> comment;
};

struct File {
  std::string name;
  std::time_t modified = 0;
  std::string bytes;
};

struct TimeZoneData {
  std::string folder;
  std::vector<CountryLine> countries;
  std::vector<ZoneLine> zones;
  std::vector<File> files;  // the two tables, and the compiled rules of all zones as one file

  /// How many pairs of a zone and a country there are.
  std::size_t LinkCount() const;
};

/// Reads the folder that TZDIR names, else /usr/share/zoneinfo.
/// Throws std::runtime_error, with file and line, when a table is missing, empty or not as expected.
TimeZoneData ReadTimeZoneData();

}  // namespace demo

#endif
