#include "answers.h"

#include <algorithm>
#include <map>
#include <utility>

namespace demo {

namespace {

// A zone and one of the countries that keep its time.
struct Link {
  ZoneLine const* zone;
  std::string code;
};

// In the order of the zones, and for each in the order of the codes.
std::vector<Link> Links(TimeZoneData const& data) {
  std::vector<Link> links;
  for (ZoneLine const& zone : data.zones) {
    std::vector<std::string> codes = zone.countryCodes;
    std::sort(codes.begin(), codes.end());
    for (std::string const& code : codes) links.push_back({&zone, code});
  }
  return links;
}

// In the order of the codes.
std::map<std::string, std::string> NamesByCode(TimeZoneData const& data) {
  std::map<std::string, std::string> names;
  for (CountryLine const& country : data.countries) names[country.code] = country.name;
  return names;
}

std::vector<Row> First(std::size_t limit, std::vector<Row> rows) {
  if (rows.size() > limit) rows.resize(limit);
  return rows;
}

// Code and name of the countries with a link that meets a condition, in the order of the codes.
template <class Condition>
std::vector<Row> CountriesWithLink(TimeZoneData const& data, Condition meets) {
  std::vector<Link> const links = Links(data);
  std::vector<Row> rows;
  for (auto const& [code, name] : NamesByCode(data)) {
    bool const found = std::any_of(links.begin(), links.end(), [&, &wanted = code](Link const& link) {
      return link.code == wanted && meets(link);
    });
    if (found) rows.push_back({code, name});
  }
  return rows;
}

}  // namespace

std::vector<Row> ZonesNorthOf(TimeZoneData const& data, double latitude, std::size_t limit) {
  std::vector<Link> links = Links(data);
  std::stable_sort(links.begin(), links.end(),
                   [](Link const& a, Link const& b) { return a.zone->latitude > b.zone->latitude; });
  std::map<std::string, std::string> const names = NamesByCode(data);
  std::vector<Row> rows;
  for (Link const& link : links) {
    ZoneLine const& zone = *link.zone;
    if (zone.latitude > latitude) rows.push_back({names.at(link.code), zone.name, zone.latitude});
  }
  return First(limit, rows);
}

std::vector<Row> CountriesWithoutZone(TimeZoneData const& data, std::size_t limit) {
  std::map<std::string, std::string> names = NamesByCode(data);
  for (Link const& link : Links(data)) names.erase(link.code);
  std::vector<Row> rows;
  rows.reserve(names.size());
  for (auto const& [code, name] : names) rows.push_back({code, name, Cell()});
  return First(limit, rows);
}

std::vector<Row> CountriesWithManyZones(TimeZoneData const& data, long few, std::size_t limit) {
  std::map<std::string, long> counts;
  for (Link const& link : Links(data)) ++counts[link.code];
  std::vector<std::pair<std::string, long>> sorted(counts.begin(), counts.end());
  std::stable_sort(sorted.begin(), sorted.end(), [](auto const& a, auto const& b) { return a.second > b.second; });
  std::map<std::string, std::string> const names = NamesByCode(data);
  std::vector<Row> rows;
  for (auto const& [code, count] : sorted) {
    if (count > few) rows.push_back({code, names.at(code), count});
  }
  return First(limit, rows);
}

std::string MostSharedZone(TimeZoneData const& data) {
  return std::max_element(
             data.zones.begin(), data.zones.end(),
             [](ZoneLine const& a, ZoneLine const& b) { return a.countryCodes.size() < b.countryCodes.size(); })
      ->name;
}

std::vector<Row> CountriesOfZone(TimeZoneData const& data, std::string const& zone, std::size_t limit) {
  return First(limit, CountriesWithLink(data, [&](Link const& link) { return link.zone->name == zone; }));
}

std::vector<Row> CountriesNorthOrEastOf(TimeZoneData const& data, double latitude, double longitude,
                                        std::size_t limit) {
  std::vector<Row> rows = CountriesWithLink(
      data, [&](Link const& link) { return link.zone->latitude > latitude || link.zone->longitude > longitude; });
  std::reverse(rows.begin(), rows.end());
  return First(limit, rows);
}

std::vector<Row> Areas(TimeZoneData const& data, std::size_t limit) {
  struct Area {
    std::string name;
    long zones = 0;
    long comments = 0;
  };
  std::vector<Area> areas;  // in the order of their first zones
  for (ZoneLine const& zone : data.zones) {
    std::string const name = zone.name.substr(0, zone.name.find('/'));
    auto area = std::find_if(areas.begin(), areas.end(), [&](Area const& known) { return known.name == name; });
    if (area == areas.end()) area = areas.insert(area, Area{name});
    ++area->zones;
    if (zone.comment) ++area->comments;
  }
  std::stable_sort(areas.begin(), areas.end(), [](Area const& a, Area const& b) { return a.zones > b.zones; });
  std::vector<Row> rows;
  rows.reserve(areas.size());
  for (Area const& area : areas) rows.push_back({area.name, area.zones, area.comments});
  return First(limit, rows);
}

std::vector<Row> LongitudesEastwards(TimeZoneData const& data) {
  std::vector<Row> rows;
  rows.reserve(data.zones.size());
  for (ZoneLine const& zone : data.zones) {
    rows.push_back({zone.name, zone.longitude < 0 ? zone.longitude + 360 : zone.longitude});
  }
  return rows;
}

std::vector<Row> NorthernLinks(TimeZoneData const& data) {
  std::vector<Row> rows;
  for (Link const& link : Links(data)) {
    if (!(link.zone->latitude < 0)) rows.push_back({link.zone->name, link.code});
  }
  return rows;
}

}  // namespace demo
