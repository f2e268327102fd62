#ifndef CORVANE_EXAMPLES_DEMO_LOAD_H
#define CORVANE_EXAMPLES_DEMO_LOAD_H

#include <string>
#include <vector>

#include "corvane/corvane.h"
#include "tzdata.h"

// Brings the files into the database. Each function runs its statements in the session's transaction; the caller
// commits.
namespace demo {

/// The tables, in an order in which they can be created; the last one is a sequence.
struct Table {
  char const* name;
  char const* create;  // the whole statement
};
extern Table const kTables[5];

/// Makes the tables anew. Throws std::runtime_error when one of that name is there and is not the demo's.
void CreateTables(ASSession& session);

void LoadCountries(ASSession& session, TimeZoneData const& data);

/// Zones and their links to countries; returns the keys of the zones, in the order of the data.
std::vector<int> LoadZones(ASSession& session, TimeZoneData const& data);

/// The files that were read; returns their keys.
std::vector<Guid> LoadFiles(ASSession& session, TimeZoneData const& data);

/// Everything at once, with its own commits.
void Load(ASSession& session, TimeZoneData const& data);

/// A count of rows beside what it should be.
struct Count {
  std::string table;
  long rows;
  long expected;
};
std::vector<Count> CountAll(ASSession& session, TimeZoneData const& data);

}  // namespace demo

#endif
