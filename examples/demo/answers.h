#ifndef CORVANE_EXAMPLES_DEMO_ANSWERS_H
#define CORVANE_EXAMPLES_DEMO_ANSWERS_H

#include <cstddef>
#include <string>
#include <vector>

#include "text_table.h"
#include "tzdata.h"

// The answers to the demo's questions, found in the files without any database. Each function gives the rows that the
// server must give, `limit` at most.
namespace demo {

/// Country, zone and latitude of the zones north of a latitude, from north to south.
std::vector<Row> ZonesNorthOf(TimeZoneData const& data, double latitude, std::size_t limit);

/// Code and name of the countries without a zone, and NULL for that.
std::vector<Row> CountriesWithoutZone(TimeZoneData const& data, std::size_t limit);

/// Code, name and number of zones of the countries with more zones than `few`, those with most first.
std::vector<Row> CountriesWithManyZones(TimeZoneData const& data, long few, std::size_t limit);

/// The name of the zone that most countries share.
std::string MostSharedZone(TimeZoneData const& data);

/// Code and name of the countries that share a zone.
std::vector<Row> CountriesOfZone(TimeZoneData const& data, std::string const& zone, std::size_t limit);

/// Code and name of the countries with a zone north of a latitude or east of a longitude, in descending order.
std::vector<Row> CountriesNorthOrEastOf(TimeZoneData const& data, double latitude, double longitude, std::size_t limit);

/// The areas, which are what the zones' names begin with; for each how many zones it has, and how many with a comment.
std::vector<Row> Areas(TimeZoneData const& data, std::size_t limit);

/// Name and longitude of all zones, in their order, the longitudes counted eastwards from 0 to 360.
std::vector<Row> LongitudesEastwards(TimeZoneData const& data);

/// Zone and country code of all links but those of zones south of the equator, in the order of the zones.
std::vector<Row> NorthernLinks(TimeZoneData const& data);

}  // namespace demo

#endif
