// Rows of arbitrary fields, read into a record of every kind of column by a session and by a cursor, and by a raw
// statement; each value against another reading of its field.

#include <climits>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "corvane/corvane.h"
#include "tests/fuzz/scripted.h"
#include "tests/fuzz/target.h"

namespace corvane::fuzz {
namespace {

using test::Field;
using test::Row;

constexpr unsigned kColumns = 11;

struct Everything : ASDomain {
  Everything(unsigned texts, std::uint16_t binaries)
      : ASDomain("t", ""), fixed(texts), variable(texts), blob(binaries), geometry(binaries) {
    ASData* const values[kColumns] = {&integer,  &wide, &real, &currency, &time,    &fixed,
                                      &variable, &guid, &blob, &geometry, &realBlob};
    for (unsigned i = 0; i < kColumns; ++i) Add(columns[i], *values[i]);
  }

  ASInt integer;
  ASInt64 wide;
  ASDouble real;
  ASDCurrency currency;
  ASTime time;
  ASStr fixed;
  ASVStr variable;
  ASGuid guid;
  ASBlob blob;
  ASGeometry geometry;
  ASRealBlob realBlob{0};
  ASAttribute columns[kColumns] = {ASAttribute("i"), ASAttribute("w"), ASAttribute("r"), ASAttribute("c"),
                                   ASAttribute("t"), ASAttribute("f"), ASAttribute("v"), ASAttribute("u"),
                                   ASAttribute("b"), ASAttribute("g"), ASAttribute("l")};
};

// Something of which no row may leave anything behind.
void Scribble(Everything& record) {
  record.integer = 77;
  record.wide = Int64(77L);
  record.real = 7.5;
  record.currency = 7.5;
  record.time = 77;
  record.fixed = "scribble";
  record.variable = "scribble";
  record.guid = Guid(7, 7);
  record.blob.Fill("scribble", 8);
  record.geometry.Fill("scribble", 8);
  record.realBlob = RealBlob(8, "scribble");
}

std::string BytesOf(Blob const& blob) {
  return std::string(reinterpret_cast<char const*>(blob.Bytes()), blob.Length());
}

std::string BytesOf(RealBlob const& blob) {
  return std::string(static_cast<char const*>(blob.voidptr()), blob.Length());
}

void CheckReal(Double const& value, Field const& field, char const* what) {
  if (!field.has_value()) return CheckEqual(value.IsNull(), 1, what);
  double const expected = std::strtod(field->c_str(), nullptr);
  double const actual = value;
  Check(std::memcmp(&actual, &expected, sizeof actual) == 0 || (actual != actual && expected != expected), what);
}

void CheckText(ASStr const& value, Field const& field, bool padded, char const* what) {
  CheckEqual(value.IsNull(), field.has_value() ? 0 : 1, what);
  if (!field.has_value()) return;
  std::size_t const capacity = value.Capacity();
  std::string text = std::string(field->c_str()).substr(0, capacity);
  if (padded) text.resize(capacity, ' ');
  CheckEqual(value.getstr().ToString(), text, what);
}

template <class Column>
void CheckBlock(Column const& value, Field const& field, std::size_t skipped, char const* what) {
  std::string bytes = field.value_or("");
  bytes = bytes.size() > skipped ? bytes.substr(skipped, value.Capacity()) : "";
  CheckEqual(BytesOf(value), bytes, what);
  std::string const whole(reinterpret_cast<char const*>(value.Bytes()), value.Capacity());
  CheckEqual(whole.find_first_not_of('\0', bytes.size()), std::string::npos, "where what lies behind a blob begins");
}

// What differs between the ways of reading a row.
struct Way {
  bool padsFixedTexts;
  std::size_t spatialId;  // bytes in front of a geometry
};

void CheckRow(Everything const& record, Row const& row, Way const& way) {
  Field const& integer = row[0];
  long long const number = integer.has_value() ? std::strtoll(integer->c_str(), nullptr, 10) : INT_MIN;
  CheckEqual(static_cast<int>(record.integer), static_cast<std::int32_t>(number), "an integer");
  CheckEqual(record.wide.IsNull(), row[1].has_value() ? 0 : 1, "whether a wide integer is NULL");
  if (row[1].has_value()) {
    CheckEqual(static_cast<long>(record.wide), std::strtoll(row[1]->c_str(), nullptr, 10), "a wide integer");
  }
  CheckReal(record.real, row[2], "a double");
  CheckReal(record.currency, row[3], "a currency");
  CheckEqual(static_cast<int>(record.time), ASTime::YYMMDDtoInt(row[4].has_value() ? row[4]->c_str() : nullptr),
             "a time");
  CheckText(record.fixed, row[5], way.padsFixedTexts, "a fixed text");
  CheckText(record.variable, row[6], false, "a text");
  Guid const guid(row[7].has_value() ? row[7]->c_str() : nullptr);
  CheckEqual(record.guid.IsNull(), guid.IsNull(), "whether a GUID is NULL");
  Check(guid.IsNull() != 0 || record.guid.getstr() == guid.getstr(), "a GUID");
  CheckBlock(record.blob, row[8], 0, "a blob");
  CheckBlock(record.geometry, row[9], way.spatialId, "a geometry");
  CheckEqual(record.realBlob.IsNull(), row[10].has_value() ? 0 : 1, "whether a large blob is NULL");
  if (row[10].has_value()) CheckEqual(BytesOf(record.realBlob), *row[10], "a large blob");
}

// A text's cell: as long as it says, within its area, which has a byte more than the value and is filled up with NUL.
void CheckCell(UU const& cell, Field const& field, std::size_t capacity) {
  std::string const text = std::string(field.value_or("").c_str()).substr(0, capacity);
  CheckEqual(cell.value.length, field.has_value() ? text.size() + 1 : 0, "the length in a cell");
  std::string const area(cell.extra.text, capacity + 1);
  CheckEqual(area, text + std::string(capacity + 1 - text.size(), '\0'), "the area of a text");
}

void CheckCells(ASCursor& cursor, std::vector<Row> const& rows, Everything const& record) {
  for (std::size_t i = 0; i < rows.size(); ++i) {
    UU const* const cells = cursor.GetUURecord(static_cast<int>(i));
    CheckCell(cells[5], rows[i][5], record.fixed.Capacity());
    CheckCell(cells[6], rows[i][6], record.variable.Capacity());
  }
}

Field MakeField(Input& input) {
  unsigned const kind = input.Below(16);
  if (kind == 0) return std::nullopt;
  std::string const text = input.Text();
  if (kind != 1 || text.empty()) return text;
  std::size_t const length = text.front() == 'L' ? 70000 : 700;
  std::string repeated;
  while (repeated.size() < length) repeated += text;
  return repeated;
}

Row MakeRow(Input& input, unsigned columns) {
  Row row;
  for (unsigned i = 0; i < columns; ++i) row.push_back(MakeField(input));
  return row;
}

std::vector<Row> MakeRows(Input& input, unsigned columns) {
  std::vector<Row> rows(input.Below(4));
  for (Row& row : rows) row = MakeRow(input, columns);
  return rows;
}

void BySession(Input& input, Everything& record) {
  Scripted scripted;
  std::vector<Row> const rows = MakeRows(input, kColumns);
  scripted.client.AnswerQuery(kColumns, rows);
  CheckEqual(scripted.session.Select(record), rows.empty() ? 0 : 1, "Select()");
  if (rows.empty()) {
    CheckEqual(static_cast<int>(record.integer), 77, "a record without row");
  } else {
    CheckRow(record, rows.front(), {false, 0});
  }
  CheckEqual(scripted.client.UnfreedResults(), 0U, "the results that were not freed");
}

void ByCursor(Input& input, Everything& record) {
  Scripted scripted;
  bool const spatial = input.Flag();
  std::vector<Row> const rows = MakeRows(input, kColumns);
  std::vector<test::FieldDescription> fields(kColumns);
  if (spatial) fields[9].type = MYSQL_TYPE_GEOMETRY;
  scripted.client.AnswerQuery(kColumns, rows).Fields(fields).Times(100);
  ASCursor cursor(&scripted.session);
  for (ASAttribute const& column : record.columns) cursor.Project() << column;
  int amount = static_cast<int>(rows.size());
  int current = 0;
  auto const expectRow = [&](int returned, int row) {
    current = row;
    if (row < 0 || row >= amount) return CheckEqual(returned, 0, "Fetch() without row");
    current = row + 1;
    CheckEqual(returned, current, "Fetch()");
    CheckRow(record, rows[static_cast<std::size_t>(row)], {true, spatial ? 4U : 0U});
  };
  for (unsigned steps = 0; steps < 20 && !input.AtEnd(); ++steps) {
    Scribble(record);
    switch (input.Below(8)) {
      case 0: {
        int const row = static_cast<int>(input.Byte()) - 2;
        expectRow(cursor.Fetch(row), row);
        break;
      }
      case 1:
        cursor.Reset();
        current = 0;
        break;
      case 2:
        CheckEqual(cursor.GetAmount(), amount, "GetAmount()");
        CheckCells(cursor, rows, record);
        break;
      case 3: {
        int const returned = cursor.FetchSingle();
        expectRow(returned, current);
        amount = returned;
        break;
      }
      case 4: {
        std::unique_ptr<MapBuffer> const rowsKept(cursor.Detach());
        amount = static_cast<int>(rows.size());
        break;
      }
      default:
        expectRow(cursor.Fetch(), current);
    }
  }
  CheckEqual(scripted.client.UnfreedResults(), 0U, "the results that were not freed");
}

void ByStatement(Input& input) {
  Scripted scripted;
  unsigned const columns = 1 + input.Below(5);
  std::vector<test::FieldDescription> fields(columns);
  for (auto& field : fields) {
    constexpr enum_field_types kTypes[] = {MYSQL_TYPE_LONG, MYSQL_TYPE_LONGLONG, MYSQL_TYPE_VAR_STRING,
                                           MYSQL_TYPE_TINY, MYSQL_TYPE_BLOB,     MYSQL_TYPE_NULL};
    constexpr unsigned long kLengths[] = {0, 1, 20, 255, 66000, 4294967295};
    field.type = kTypes[input.Below(6)];
    field.length = kLengths[input.Below(6)];
  }
  std::vector<Row> const rows = MakeRows(input, columns);
  scripted.client.AnswerQuery(columns, rows).Fields(fields).Times(2);
  ASCursor cursor(&scripted.session);
  cursor.Statement("select");
  for (Row const& row : rows) {
    Check(cursor.Fetch() != 0, "a row of a statement");
    auto item = cursor.Project().Items().begin();
    for (unsigned i = 0; i < columns; ++i) {
      ASData const* const value = (*item++)->Data();
      if (fields[i].type == MYSQL_TYPE_LONG || fields[i].type == MYSQL_TYPE_LONGLONG) {
        long long const number = row[i].has_value() ? std::strtoll(row[i]->c_str(), nullptr, 10) : INT_MIN;
        CheckEqual(static_cast<int>(dynamic_cast<ASInt const&>(*value)), static_cast<std::int32_t>(number),
                   "an integer of a statement");
      } else {
        auto const& text = dynamic_cast<ASStr const&>(*value);
        if (fields[i].length <= 65535) CheckEqual(text.Capacity(), fields[i].length, "the capacity of a column");
        CheckText(text, row[i], true, "a text of a statement");
      }
    }
  }
  CheckEqual(cursor.Fetch(), 0, "Fetch() behind the rows of a statement");
  CheckEqual(scripted.client.UnfreedResults(), 0U, "the results that were not freed");
}

void ByHand(Input& input) {
  Scripted scripted;
  unsigned const columns = 1 + input.Below(5);
  std::vector<Row> const rows = MakeRows(input, columns);
  scripted.client.AnswerQuery(columns, rows);
  scripted.session.Execute("SELECT");
  MYSQL_RES* const result = scripted.session.FetchMultiple();
  for (Row const& row : rows) {
    MYSQL_ROW const texts = mysql_fetch_row(result);
    unsigned long const* const lengths = mysql_fetch_lengths(result);
    for (unsigned i = 0; i < columns; ++i) {
      CheckEqual(texts[i] != nullptr, row[i].has_value(), "whether a field is NULL");
      if (texts[i] != nullptr) CheckEqual(std::string(texts[i], lengths[i]), *row[i], "a field");
    }
  }
  Check(mysql_fetch_row(result) == nullptr, "a row too many");
  mysql_free_result(result);
}

Target const target("row", "each value against another reading of its field", [](Input input) {
  unsigned const way = input.Below(4);
  if (way == 2) return ByStatement(input);
  if (way == 3) return ByHand(input);
  Everything record(input.Byte() % 64, input.Byte() % 64);
  Scribble(record);
  if (way == 0) return BySession(input, record);
  ByCursor(input, record);
});

}  // namespace
}  // namespace corvane::fuzz
