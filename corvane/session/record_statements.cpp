// The statements of single records: their texts, their execution, and reading a row back.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <typeinfo>
#include <utility>

#include "corvane/data/blob.h"
#include "corvane/data/dcurrency.h"
#include "corvane/data/geometry.h"
#include "corvane/data/guid.h"
#include "corvane/data/int64.h"
#include "corvane/data/literal.h"
#include "corvane/data/real_blob.h"
#include "corvane/data/time.h"
#include "corvane/data/vstr.h"
#include "corvane/internal/client_library.h"
#include "corvane/internal/finite.h"
#include "corvane/internal/log.h"
#include "corvane/internal/number_text.h"
#include "corvane/internal/same_kind.h"
#include "corvane/internal/sql_text.h"
#include "corvane/internal/time_text.h"
#include "corvane/mapping/domain.h"
#include "corvane/session/ardbms.h"
#include "corvane/session/internal/options.h"

using corvane::AppendEscaped;
using corvane::internal::kLogFailures;
using corvane::internal::Log;
using corvane::internal::ParseInteger;
using corvane::internal::To;
using corvane::internal::sql::kAnd;
using corvane::internal::sql::kSeparator;

namespace {

constexpr int kKeyValues = 0;    // any other mode writes placeholders for them
constexpr int kNoCondition = 2;  // of a SELECT

// Room for a column's name, quotes and short value in a statement; more is made when it does not suffice.
constexpr std::size_t kColumnRoom = 48;

// The value as a `Column`, when it is of that class and not of one derived from it, which might write itself otherwise.
template <class Column>
Column const* Exactly(ASData const& data) {
  return typeid(data) == typeid(Column) ? static_cast<Column const*>(&data) : nullptr;
}

void CheckFinite(ASAttribute const& attribute, ASData const& data) {
  if (!corvane::internal::IsFinite(data)) corvane::internal::ThrowNotFinite(attribute.Name());
}

template <class Column, class Scalar>
bool AppendExactly(Str& out, ASData const& data) {
  auto const* const number = Exactly<Column>(data);
  if (number == nullptr || number->IsNull() != 0) return false;
  out << static_cast<Scalar>(*number);
  return true;
}

bool AppendTime(Str& out, ASData const& data) {
  auto const* const time = Exactly<ASTime>(data);
  if (time == nullptr || time->IsNull() != 0) return false;
  corvane::internal::AppendTime(out, *time);
  return true;
}

// Appends getstr() of the library's own plain numbers and times, without a temporary; it needs no escaping. False, with
// nothing appended, for all else and for NULL.
bool AppendNumber(Str& out, ASData const& data) {
  switch (data.GetType()) {
    case corvane::kTypeInt:
      if (data.GetDBType() == corvane::kDbTime) return AppendTime(out, data);
      return AppendExactly<ASInt, int>(out, data);
    case corvane::kTypeInt64:
      return AppendExactly<ASInt64, long>(out, data);
    case corvane::kTypeDouble:
      return AppendExactly<ASDouble, double>(out, data);
    case corvane::kTypeDCurrency:
      return AppendExactly<ASDCurrency, double>(out, data);
    default:
      return false;
  }
}

void AppendText(Str& out, ASData const& data) {
  if (!AppendNumber(out, data)) out << data.getstr();
}

// Appends getstr() up to its first NUL, escaped.
void AppendEscapedText(Str& out, ASData const& data) {
  if (AppendNumber(out, data)) return;
  Str const text = data.getstr();
  AppendEscaped(out, text.str(), std::strlen(text.str()));
}

// Well-known binary behind the 16-bit length of a geometry's block, as the literal reads it.
class GeometryReader {
 public:
  explicit GeometryReader(Blob const& block) : bytes_(block.Bytes()), length_(block.Length()) {}

  std::uint32_t Type() const { return length_ >= kHeader ? Read<std::uint32_t>(kTypeOffset) : 0; }

  // Where the coordinates begin, and how many points there are. Bytes that are a well-known polygon in full hold the
  // counts of its rings and points before the coordinates; all else holds coordinates right behind the type.
  struct Points {
    std::size_t offset;
    std::size_t count;
  };
  Points Coordinates(ASAttribute const& attribute) const {
    if (IsPolygon()) {
      if (Read<std::uint32_t>(kHeader) > 1) {
        AException rings("Polygon of more than one ring has no SQL form: ");
        rings << attribute.Name() << ". ";
        throw rings;
      }
      return {kRingHeader, Read<std::uint32_t>(kHeader + kCount)};
    }
    return {kHeader, length_ >= kHeader ? (length_ - kHeader) / kPoint : 0};
  }

  double Coordinate(std::size_t offset) const { return Read<double>(offset); }

  static constexpr std::uint32_t kPointType = 1;
  static constexpr std::uint32_t kPolygonType = 3;
  static constexpr std::size_t kPoint = 16;  // bytes: two doubles

 private:
  static constexpr std::size_t kTypeOffset = 1;  // behind the byte order
  static constexpr std::size_t kHeader = 5;      // byte order and type
  static constexpr std::size_t kCount = 4;       // a number of rings or points
  static constexpr std::size_t kRingHeader = kHeader + 2 * kCount;

  template <class Number>
  Number Read(std::size_t offset) const {
    Number number;
    std::memcpy(&number, bytes_ + offset, sizeof number);
    return number;
  }

  // Whether ring and point counts add up to the length exactly.
  bool IsPolygon() const {
    if (length_ < kHeader + kCount || Type() != kPolygonType) return false;
    auto const rings = Read<std::uint32_t>(kHeader);
    std::size_t offset = kHeader + kCount;
    for (std::uint32_t ring = 0; ring < rings; ++ring) {
      if (length_ - offset < kCount) return false;
      std::size_t const points = Read<std::uint32_t>(offset);
      offset += kCount;
      if (points > (length_ - offset) / kPoint) return false;
      offset += points * kPoint;
    }
    return rings > 0 && offset == length_;
  }

  unsigned char const* bytes_;
  std::size_t length_;
};

// Pinned: a point stands in doubled parentheses, which servers read as NULL; held by
// InsertQuery.PointStandsInDoubledParentheses.
void AppendGeometry(Str& out, ASAttribute const& attribute, ASData const& data) {
  auto const* const block = dynamic_cast<Blob const*>(&data);
  if (block == nullptr) corvane::internal::ThrowIncompatible("geometry literal");
  GeometryReader const reader(*block);
  out << "GeomFromText('";
  if (reader.Type() == GeometryReader::kPointType) out << "POINT((";
  if (reader.Type() == GeometryReader::kPolygonType) out << "POLYGON((";
  auto const points = reader.Coordinates(attribute);
  for (std::size_t i = 0; i < points.count; ++i) {
    double const x = reader.Coordinate(points.offset + i * GeometryReader::kPoint);
    double const y = reader.Coordinate(points.offset + i * GeometryReader::kPoint + sizeof x);
    if (!std::isfinite(x) || !std::isfinite(y)) corvane::internal::ThrowNotFinite(attribute.Name());
    out << (i > 0 ? "," : "") << x << ' ' << y;
  }
  out << "))')";
}

// Appends the characters of a text column, escaped, up to the first NUL.
void AppendCharacters(Str& out, ASData const& data) {
  auto const* const column = To<ASStr, ASVStr, ASStr>(data);
  if (column == nullptr) return AppendEscapedText(out, data);
  AppendEscaped(out, column->str(), column->View().size());
}

// The value as it is written into a row.
void AppendValue(Str& out, ASAttribute const& attribute) {
  ASData const* const data = attribute.Data();
  if (data == nullptr || data->IsNull() != 0) {
    out << "NULL";
    return;
  }
  int const dbType = data->GetDBType();
  if (dbType == corvane::kDbGeometry) return AppendGeometry(out, attribute, *data);
  CheckFinite(attribute, *data);
  out << '\'';
  if (dbType == corvane::kDbVStr || dbType == corvane::kDbStr) {
    AppendCharacters(out, *data);
  } else if (dbType == corvane::kDbRealBlob) {
    auto const* const blob = To<RealBlob, ASRealBlob>(*data);
    if (blob == nullptr) corvane::internal::ThrowIncompatible("binary literal");
    AppendEscaped(out, static_cast<char const*>(blob->voidptr()), blob->Length());
  } else {
    AppendText(out, *data);
  }
  out << '\'';
}

// A null entry in a record's list is no column.
bool IsColumn(ASAttribute const* attribute) { return attribute != nullptr; }

// Calls `part` for each attribute that `wanted` admits, and writes `first` before the first of them, `separator`
// before the others.
template <class Wanted, class Part>
void AppendEach(Str& out, ASDomain const& record, std::string_view first, std::string_view separator, Wanted wanted,
                Part part) {
  std::string_view before = first;
  for (ASAttribute const* const attribute : record) {
    if (!IsColumn(attribute) || !wanted(*attribute)) continue;
    out.Append(before.data(), before.size());
    part(*attribute);
    before = separator;
  }
}

// Objects, not functions, which would be called through a pointer.
constexpr auto IsKey = [](ASAttribute const& attribute) { return attribute.IsKey() != 0; };
constexpr auto IsNoKey = [](ASAttribute const& attribute) { return attribute.IsKey() == 0; };
constexpr auto IsWrittenOnInsert = [](ASAttribute const& attribute) { return attribute.IsAutoIncKey() == 0; };
constexpr auto Any = [](ASAttribute const&) { return true; };
constexpr auto None = [](ASAttribute const&) { return false; };

// What stands before and behind a name.
struct Quoted {
  std::string_view prefix;
  std::string_view suffix;

  std::size_t Room() const { return prefix.size() + suffix.size(); }
  char* Put(char* at, std::string_view name) const { return PutText(PutText(PutText(at, prefix), name), suffix); }

  void Append(Str& out, Str const& name) const {
    std::string_view const text = name.View();
    out.AppendWith(Room() + text.size(),
                   [this, text](char* const begin) { return static_cast<std::size_t>(Put(begin, text) - begin); });
  }

  // Quotes are one character, or none.
  static char* PutText(char* at, std::string_view text) {
    if (text.size() == 1) {
      *at = text.front();
    } else if (!text.empty()) {
      std::memcpy(at, text.data(), text.size());
    }
    return at + text.size();
  }
};

// A geometry is read as well-known binary.
constexpr Quoted kAsBinary{"AsBinary(", ")"};

constexpr auto IsGeometry = [](ASAttribute const& attribute) {
  return attribute.Data() != nullptr && attribute.Data()->GetDBType() == corvane::kDbGeometry;
};

// Appends the names of the attributes that `wanted` admits, with separators; those that `binary` admits as binary. Room
// for all is made at once, since making it name by name takes longer than writing them.
template <class Wanted, class Binary>
void AppendNames(Str& out, Quoted const& quoted, ASDomain const& record, Wanted wanted, Binary binary) {
  constexpr std::string_view kBetween = kSeparator;
  std::size_t room = record.size() * (quoted.Room() + kAsBinary.Room() + kBetween.size());
  for (ASAttribute const* const attribute : record) {
    if (IsColumn(attribute)) room += attribute->Name().View().size();
  }
  out.AppendWith(room, [&](char* const begin) {
    char* at = begin;
    bool first = true;
    for (ASAttribute const* const attribute : record) {
      if (!IsColumn(attribute) || !wanted(*attribute)) continue;
      if (!std::exchange(first, false)) at = Quoted::PutText(at, kBetween);
      at = (binary(*attribute) ? kAsBinary : quoted).Put(at, attribute->Name().View());
    }
    return static_cast<std::size_t>(at - begin);
  });
}

// Appends the value of a key column through `append`, or its placeholder; nothing for a column without value.
template <class Append>
void AppendKeyValue(Str& out, ASAttribute const& attribute, int mode, Append append) {
  if (mode != kKeyValues) {
    out << ':' << attribute.Name();
    return;
  }
  out << '\'';
  if (ASData const* const data = attribute.Data()) {
    CheckFinite(attribute, *data);
    append(out, *data);
  }
  out << '\'';
}

// Appends the condition that the key columns identify, with its WHERE; nothing for a record without.
void AppendKeyCondition(Str& out, Quoted const& quoted, ASDomain const& record, int mode) {
  AppendEach(out, record, " WHERE ", kAnd, IsKey, [&](ASAttribute const& attribute) {
    quoted.Append(out, attribute.Name());
    out << '=';
    AppendKeyValue(out, attribute, mode, AppendEscapedText);
  });
}

Str StartStatement(ASDomain const& record) {
  Str text;
  text.Reserve((record.size() + 2) * kColumnRoom);
  return text;
}

// The value as the class that its type code promises; an application's class may promise what it is not.
template <class Value, class Column = Value, class Other = Column>
Value& As(ASData& data) {
  auto* const value = To<Value, Column, Other>(data);
  if (value == nullptr) corvane::internal::ThrowIncompatible("ASSession::Fetch()");
  return *value;
}

int ParseInt(char const* text, std::size_t length) {
  return corvane::internal::TruncateToInt(ParseInteger(text, length));
}

// Takes a field of a result row over into a value. Numbers go straight into the storage, past the columns' own
// assignment.
void FetchField(ASData& data, char const* field, std::size_t length) {
  if (field == nullptr) return data.SetNull();
  switch (data.GetType()) {
    case corvane::kTypeInt:
      As<Int, ASInt, ASTime>(data).Int::operator=(data.GetDBType() == corvane::kDbTime ? ASTime::YYMMDDtoInt(field)
                                                                                       : ParseInt(field, length));
      return;
    case corvane::kTypeInt64:
      As<Int64, ASInt64>(data).Int64::operator=(static_cast<long>(ParseInteger(field, length)));
      return;
    case corvane::kTypeDouble:
    case corvane::kTypeDCurrency:
      As<Double, ASDouble, ASDCurrency>(data).Double::operator=(corvane::internal::ParseDouble(field, length));
      return;
    case corvane::kTypeGuid:
      As<ASGuid>(data) = Guid(field);
      return;
    case corvane::kTypeRealBlob:
      As<ASRealBlob>(data) = RealBlob(static_cast<unsigned>(length), field, NoCopy);
      return;
    case corvane::kTypeStr:
      return As<ASStr, ASVStr, ASStr>(data).Fill(field, strnlen(field, length));
    default:
      break;
  }
  if (data.GetDBType() == corvane::kDbGeometry) return As<ASGeometry>(data).Fill(field, length);
  As<ASBlob>(data).Fill(field, length);
}

}  // namespace

void corvane::internal::CheckKeys(ASSession const& session, ASDomain const& record) {
  if (!session.IsSafeMode()) return;
  auto const isKey = [](ASAttribute const* attribute) { return attribute != nullptr && IsKey(*attribute); };
  if (std::none_of(record.begin(), record.end(), isKey)) throw WithoutCondition();
}

Str ASSession::InsertQuery(ASDomain const& record, int /*mode*/) const {
  Quoted const quoted{kwPrefix_.View(), kwSuffix_.View()};
  Str text = StartStatement(record);
  text << "INSERT INTO ";
  quoted.Append(text, record.Name());
  text << " (";
  AppendNames(text, quoted, record, IsWrittenOnInsert, None);
  text << ") VALUES (";
  AppendEach(text, record, "", kSeparator, IsWrittenOnInsert,
             [&](ASAttribute const& attribute) { AppendValue(text, attribute); });
  text << ')';
  return text;
}

Str ASSession::SelectQuery(ASDomain const& record, int mode) const {
  Quoted const quoted{kwPrefix_.View(), kwSuffix_.View()};
  Str text = StartStatement(record);
  text << "SELECT ";
  AppendNames(text, quoted, record, Any, IsGeometry);
  text << " FROM ";
  quoted.Append(text, record.Name());
  if (mode != kNoCondition) AppendKeyCondition(text, quoted, record, mode);
  if (readOnly_ == 0) text << " FOR UPDATE";
  return text;
}

Str ASSession::UpdateQuery(ASDomain const& record, int mode) const {
  Quoted const quoted{kwPrefix_.View(), kwSuffix_.View()};
  Str text = StartStatement(record);
  text << "UPDATE ";
  quoted.Append(text, record.Name());
  text << " SET ";
  AppendEach(text, record, "", kSeparator, IsNoKey, [&](ASAttribute const& attribute) {
    quoted.Append(text, attribute.Name());
    text << '=';
    AppendValue(text, attribute);
  });
  AppendKeyCondition(text, quoted, record, mode);
  return text;
}

Str ASSession::DeleteQuery(ASDomain const& record, int mode) const {
  Quoted const quoted{kwPrefix_.View(), kwSuffix_.View()};
  Str text = StartStatement(record);
  text << "DELETE FROM ";
  quoted.Append(text, record.Name());
  AppendKeyCondition(text, quoted, record, mode);  // Pinned: without keys every row goes; held by
                                                   // DeleteQuery.WithoutKeysDeletesEveryRow.
  return text;
}

// Pinned: columns without quotes and key values without escaping; held by SaveQuery.NamesAreBareAndKeysNotEscaped.
Str ASSession::SaveQuery(ASDomain const& record, int mode) const {
  Quoted const quoted{kwPrefix_.View(), kwSuffix_.View()};
  Str text = StartStatement(record);
  auto const appendColumns = [&] { AppendNames(text, Quoted{}, record, Any, None); };
  text << "INSERT INTO ";
  quoted.Append(text, record.Name() + "Arc");
  text << " (";
  appendColumns();
  text << ") SELECT ";
  appendColumns();
  text << " FROM ";
  quoted.Append(text, record.Name());
  AppendEach(text, record, " WHERE ", kAnd, IsKey, [&](ASAttribute const& attribute) {
    text << attribute.Name() << '=';
    AppendKeyValue(text, attribute, mode, AppendText);
  });
  return text;
}

unsigned long ASSession::Insert(ASDomain const& record) {
  Str const statement = InsertQuery(record, kKeyValues);
  Log(debugLevel_, kLogFailures, "ASSession::Insert   Query   ", statement, "\n");
  return Execute(statement);
}

unsigned long ASSession::Update(ASDomain const& record) {
  corvane::internal::CheckKeys(*this, record);
  Str const statement = UpdateQuery(record, kKeyValues);
  Log(debugLevel_, kLogFailures, "ASSession::Update   Query   ", statement, "\n");
  return Execute(statement);
}

unsigned long ASSession::Delete(ASDomain const& record) {
  corvane::internal::CheckKeys(*this, record);
  Str const statement = DeleteQuery(record, kKeyValues);
  Log(debugLevel_, kLogFailures, "ASSession::Delete   Query   ", statement, "\n");
  return Execute(statement);
}

int ASSession::Select(ASDomain& record) {
  Str const statement = SelectQuery(record, kKeyValues);
  Log(debugLevel_, kLogFailures, "ASSession::Select   Query   ", statement, "\n");
  Execute(statement);
  return Fetch(record);
}

int ASSession::Fetch(ASDomain& record) {
  corvane::internal::ResultPtr const result(FetchMultiple());
  if (mysql_num_fields(result.get()) <
      static_cast<std::size_t>(std::count_if(record.begin(), record.end(), IsColumn))) {
    // An assertion that release builds keep: the row would be read past its end.
    std::fprintf(stderr,
                 "ardbms: int ASSession::Fetch(ASDomain&): Assertion `mysql_num_fields(res) >= d.size()' failed.\n");
    std::abort();
  }
  MYSQL_ROW const row = mysql_fetch_row(result.get());
  if (row == nullptr) return 0;
  unsigned long const* const lengths = mysql_fetch_lengths(result.get());
  std::size_t column = 0;
  for (ASAttribute* const attribute : record) {
    if (!IsColumn(attribute)) continue;
    if (attribute->Data() != nullptr) FetchField(*attribute->Data(), row[column], lengths[column]);
    ++column;
  }
  return 1;
}
