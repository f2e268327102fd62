#include "records.h"

namespace demo {

Country::Country() : ASDomain("tz_country", "") { Add(codeColumn, code).Add(nameColumn, name); }

void Country::Take(CountryLine const& line) {
  code = line.code;
  name = line.name;
}

Zone::Zone() : ASDomain("tz_zone", "") {
  Add(idColumn, id).Add(nameColumn, name);
  Add(latitudeColumn, latitude).Add(longitudeColumn, longitude);
  Add(commentColumn, comment);
}

void Zone::Take(ZoneLine const& line) {
  name = line.name;
  latitude = line.latitude;
  longitude = line.longitude;
  if (line.comment) {
    comment = *line.comment;
  } else {
    comment.SetNull();
  }
}

ZoneCountry::ZoneCountry() : ASDomain("tz_zone_country", "") {
  Add(zoneIdColumn, zoneId).Add(countryCodeColumn, countryCode);
}

SourceFile::SourceFile() : ASDomain("tz_file", "") {
  Add(guidColumn, guid).Add(nameColumn, name);
  Add(modifiedColumn, modified).Add(contentsColumn, contents);
}

void SourceFile::Take(File const& file) {
  name = file.name;
  modified = file.modified;
  contents = RealBlob(static_cast<unsigned>(file.bytes.size()), file.bytes.data(), NoCopy);  // assigning copies
}

NumberRow::NumberRow() : ASDomain("", "") { Add(numberColumn_, number); }

TextRow::TextRow() : ASDomain("", "") { Add(textColumn_, text); }

}  // namespace demo
