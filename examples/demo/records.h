#ifndef CORVANE_EXAMPLES_DEMO_RECORDS_H
#define CORVANE_EXAMPLES_DEMO_RECORDS_H

#include "corvane/corvane.h"
#include "tzdata.h"

// The demo's record types. Each is a table; each column is a value, which the program reads and writes, and an
// attribute with the column's name, by which queries name the column; Add() in the constructor joins the two. Records
// stay where they are, so copying is deleted.
namespace demo {

/// Capacities of texts are in bytes; a character of UTF-8 takes up to four.
constexpr unsigned kBytesPerCharacter = 4;

struct Country : ASDomain {
  Country();
  Country(Country&&) = delete;

  void Take(CountryLine const& line);

  ASStr code{2};                          // CHAR(2)
  ASVStr name{100 * kBytesPerCharacter};  // VARCHAR(100)

  ASAttribute codeColumn{"code", "", 0, corvane::kKey};
  ASAttribute nameColumn{"name"};
};

struct Zone : ASDomain {
  Zone();
  Zone(Zone&&) = delete;

  /// Everything but the key, which the server gives.
  void Take(ZoneLine const& line);

  ASInt id;
  ASVStr name{64 * kBytesPerCharacter};
  ASDouble latitude;
  ASDouble longitude;
  ASVStr comment{255 * kBytesPerCharacter};  // NULL for a zone without one

  ASAttribute idColumn{"id", "", 0, corvane::kKey | corvane::kAutoIncrement};
  ASAttribute nameColumn{"name"};
  ASAttribute latitudeColumn{"latitude"};
  ASAttribute longitudeColumn{"longitude"};
  ASAttribute commentColumn{"comment"};
};

/// A link: in this country the zone's time is kept.
struct ZoneCountry : ASDomain {
  ZoneCountry();
  ZoneCountry(ZoneCountry&&) = delete;

  ASInt zoneId;
  ASStr countryCode{2};

  ASAttribute zoneIdColumn{"zone_id", "", 0, corvane::kKey};
  ASAttribute countryCodeColumn{"country_code", "", 0, corvane::kKey};
};

/// A file that was read.
struct SourceFile : ASDomain {
  SourceFile();
  SourceFile(SourceFile&&) = delete;

  /// Everything but the key.
  void Take(File const& file);

  ASGuid guid;
  ASVStr name{64 * kBytesPerCharacter};
  ASTime modified;
  ASRealBlob contents{0};

  ASAttribute guidColumn{"guid", "", 0, corvane::kKey};
  ASAttribute nameColumn{"name"};
  ASAttribute modifiedColumn{"modified"};
  ASAttribute contentsColumn{"contents"};
};

/// No table: what a SELECT of one number gives, fetched by position.
struct NumberRow : ASDomain {
  NumberRow();
  NumberRow(NumberRow&&) = delete;

  ASInt64 number;

 private:
  ASAttribute numberColumn_{"number"};
};

/// No table: what a SELECT of one text gives.
struct TextRow : ASDomain {
  TextRow();
  TextRow(TextRow&&) = delete;

  ASVStr text{255};

 private:
  ASAttribute textColumn_{"text"};
};

}  // namespace demo

#endif
