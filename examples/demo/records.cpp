#include "records.h"

namespace demo {

Country::Country() : ASDomain("tz_country", "") { Add(codeColumn_, code).Add(nameColumn_, name); }

void Country::Take(CountryLine const& line) {
  code = line.code;
  name = line.name;
}

Zone::Zone() : ASDomain("tz_zone", "") {
  Add(idColumn_, id).Add(nameColumn_, name);
  Add(latitudeColumn_, latitude).Add(longitudeColumn_, longitude);
  Add(commentColumn_, comment);
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
  Add(zoneIdColumn_, zoneId).Add(countryCodeColumn_, countryCode);
}

SourceFile::SourceFile() : ASDomain("tz_file", "") {
  Add(guidColumn_, guid).Add(nameColumn_, name);
  Add(modifiedColumn_, modified).Add(contentsColumn_, contents);
}

void SourceFile::Take(File const& file) {
  name = file.name;
  modified = file.modified;
  contents = RealBlob(static_cast<unsigned>(file.bytes.size()), file.bytes.data(), NoCopy);  // assigning copies
}

NumberRow::NumberRow() : ASDomain("", "") { Add(numberColumn_, number); }

TextRow::TextRow() : ASDomain("", "") { Add(textColumn_, text); }

}  // namespace demo
