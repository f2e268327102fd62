#include "tzdata.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace demo {

namespace {

std::vector<std::string> Split(std::string const& text, char separator) {
  std::vector<std::string> parts;
  std::istringstream in(text);
  for (std::string part; std::getline(in, part, separator);) parts.push_back(part);
  return parts;
}

// Nothing when there is no such file.
std::optional<File> ReadFile(std::string const& folder, std::string const& name) {
  std::string const path = folder + "/" + name;
  struct stat status {};
  std::ifstream in(path, std::ios::binary);
  if (!in || stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
  return File{name, status.st_mtime, std::string(std::istreambuf_iterator<char>(in), {})};
}

File ReadTable(std::string const& folder, std::string const& name) {
  std::optional<File> table = ReadFile(folder, name);
  if (!table) throw std::runtime_error("cannot read " + folder + "/" + name + " (Debian: package tzdata)");
  return *std::move(table);
}

// Makes one line out of each line of the table that is not a comment, from its columns.
template <class Line>
std::vector<Line> ParseTable(File const& table, Line (*parse)(std::vector<std::string> const& columns)) {
  std::vector<Line> lines;
  std::istringstream in(table.bytes);
  int number = 0;
  for (std::string text; std::getline(in, text);) {
    ++number;
    if (text.empty() || text[0] == '#') continue;
    try {
      lines.push_back(parse(Split(text, '\t')));
    } catch (std::invalid_argument const& error) {
      throw std::runtime_error(table.name + ", line " + std::to_string(number) + ": " + error.what());
    }
  }
  if (lines.empty()) throw std::runtime_error(table.name + " holds no lines");
  return lines;
}

std::string const& CheckedCode(std::string const& code) {
  if (code.size() != 2) throw std::invalid_argument("expected country codes of two letters");
  return code;
}

CountryLine ParseCountry(std::vector<std::string> const& columns) {
  if (columns.size() != 2) throw std::invalid_argument("expected a code and a name, with a tab between them");
  return {CheckedCode(columns[0]), columns[1]};
}

[[noreturn]] void ThrowBadCoordinates() {
  throw std::invalid_argument("expected coordinates of the form +4230+00131 or +423000+0013100");
}

int Number(std::string const& text, std::size_t from, std::size_t digits) {
  std::string const part = text.substr(from, digits);
  if (part.find_first_not_of("0123456789") != std::string::npos) ThrowBadCoordinates();
  return std::stoi(part);
}

// The degrees of an angle like "+4230" (degrees and minutes) or "-720041" (with seconds).
double ParseAngle(std::string const& text, std::size_t degreeDigits) {
  std::size_t const minutesAt = 1 + degreeDigits;
  std::size_t const secondsAt = minutesAt + 2;
  std::size_t const end = secondsAt + 2;
  if (text.size() != secondsAt && text.size() != end) ThrowBadCoordinates();
  if (text[0] != '+' && text[0] != '-') ThrowBadCoordinates();
  int const degrees = Number(text, 1, degreeDigits);
  int const minutes = Number(text, minutesAt, 2);
  int const seconds = text.size() == end ? Number(text, secondsAt, 2) : 0;
  double const angle = degrees + minutes / 60.0 + seconds / 3600.0;
  return text[0] == '-' ? -angle : angle;
}

ZoneLine ParseZone(std::vector<std::string> const& columns) {
  if (columns.size() != 3 && columns.size() != 4) {
    throw std::invalid_argument("expected codes, coordinates, a zone and perhaps a comment, with tabs between them");
  }
  if (columns[0].empty()) throw std::invalid_argument("expected a country code");
  std::string const& coordinates = columns[1];
  std::size_t const longitudeAt = std::min(coordinates.find_first_of("+-", 1), coordinates.size());
  ZoneLine zone;
  for (std::string const& code : Split(columns[0], ',')) zone.countryCodes.push_back(CheckedCode(code));
  zone.latitude = ParseAngle(coordinates.substr(0, longitudeAt), 2);
  zone.longitude = ParseAngle(coordinates.substr(longitudeAt), 3);
  zone.name = columns[2];
  if (columns.size() == 4) zone.comment = columns[3];
  return zone;
}

// The compiled rules of all zones, one behind the other: a large binary. A folder may lack some of them.
File ReadCompiledZones(std::string const& folder, std::vector<ZoneLine> const& zones) {
  File all{"compiled zones", 0, ""};
  for (ZoneLine const& zone : zones) {
    if (std::optional<File> const compiled = ReadFile(folder, zone.name)) {
      all.bytes += compiled->bytes;
      all.modified = std::max(all.modified, compiled->modified);
    }
  }
  return all;
}

}  // namespace

std::size_t TimeZoneData::LinkCount() const {
  std::size_t count = 0;
  for (ZoneLine const& zone : zones) count += zone.countryCodes.size();
  return count;
}

TimeZoneData ReadTimeZoneData() {
  char const* const configured = std::getenv("TZDIR");
  TimeZoneData data;
  data.folder = configured != nullptr && *configured != '\0' ? configured : "/usr/share/zoneinfo";
  data.files.push_back(ReadTable(data.folder, "iso3166.tab"));
  data.files.push_back(ReadTable(data.folder, "zone1970.tab"));
  data.countries = ParseTable(data.files[0], ParseCountry);
  data.zones = ParseTable(data.files[1], ParseZone);
  data.files.push_back(ReadCompiledZones(data.folder, data.zones));
  return data;
}

}  // namespace demo
