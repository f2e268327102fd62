#include "corvane/cursor/internal/result_rows.h"

#include <string.h>  // strnlen

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstring>
#include <optional>
#include <typeinfo>
#include <utility>

#include "corvane/cache/map_buffer.h"
#include "corvane/data/blob.h"
#include "corvane/data/dcurrency.h"
#include "corvane/data/geometry.h"
#include "corvane/data/guid.h"
#include "corvane/data/int64.h"
#include "corvane/data/real_blob.h"
#include "corvane/data/str.h"
#include "corvane/data/time.h"
#include "corvane/data/value/exception.h"
#include "corvane/data/vstr.h"
#include "corvane/internal/number_text.h"
#include "corvane/internal/same_kind.h"
#include "corvane/internal/time_text.h"

namespace corvane::internal {

namespace {

// What a currency's cell holds beside the number, as the layout has it.
constexpr char kCurrencyConstant[] = "";
constexpr int kCurrencyMark = 2;

// Servers put the number of the spatial reference system in front of a geometry.
constexpr std::size_t kSpatialId = 4;

// As ASTime::YYMMDDtoInt(), which has to look for the end of the text first.
int ReadTime(char const* text, std::size_t length) {
  if (text != nullptr && length >= kTimeLength) {
    if (std::optional<int> const seconds = ReadPlainTime(text)) return *seconds;
  }
  return ASTime::YYMMDDtoInt(text);
}

}  // namespace

ResultRows::ResultRows(std::list<ASSimpleAttribute*> const& items, std::list<std::shared_ptr<ASSimpleAttribute>> kept)
    : kept_(std::move(kept)) {
  columns_.reserve(items.size());
  std::size_t area = items.size() * sizeof(UU);
  for (ASSimpleAttribute const* const item : items) {
    Column column{item, nullptr, Kind::kNone, {nullptr}, 0, area, false, Store::kAssign};
    if (ASData* const data = item->Data()) {
      column.kind = KindOf(*data);
      if (!Bind(column, data)) ThrowIncompatible("ASCursor::Open()");
      column.size = static_cast<std::size_t>(std::max(data->GetSize(), column.kind == Kind::kGuid ? Guid::kBytes : 0));
      if (HasArea(column.kind)) area += column.size + 1;
    }
    columns_.push_back(column);
  }
  width_ = (area + sizeof(UU) - 1) / sizeof(UU);
}

int ResultRows::Read(MYSQL_RES* result, MapBuffer& buffer) {
  if (mysql_num_fields(result) < columns_.size()) throw AException("MySQL fetch error. ");
  MYSQL_FIELD const* const fields = mysql_fetch_fields(result);
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    columns_[i].hasSpatialId = columns_[i].kind == Kind::kGeometry && fields[i].type == MYSQL_TYPE_GEOMETRY;
  }
  std::size_t const rowSize = width_ * sizeof(UU);
  std::size_t const mostRows = rowSize > 0 ? INT_MAX / rowSize : INT_MAX;
  auto const sizeOf = [&](std::uint64_t count) {
    if (count > mostRows) throw AException("Result is too large for the row buffer. ");
    return static_cast<int>(count * rowSize);
  };
  // A stored result says how many rows it has; one that still comes in says 0, and the buffer grows with the rows.
  buffer.Get(sizeOf(mysql_num_rows(result)));
  std::size_t rows = 0;
  auto const fit = [&](auto resize, int size) {
    void const* const before = buffer.GetBegin();
    (buffer.*resize)(size);
    if (buffer.GetBegin() != before) Relocate(static_cast<char*>(buffer.GetBegin()), rows);
  };
  while (MYSQL_ROW const texts = mysql_fetch_row(result)) {
    int const size = sizeOf(rows + 1);
    if (size > buffer.Capacity()) fit(&MapBuffer::Grow, size);
    ReadRow(static_cast<char*>(buffer.GetBegin()) + rows * rowSize, texts, mysql_fetch_lengths(result), buffer);
    ++rows;
  }
  fit(&MapBuffer::Fit, sizeOf(rows));
  return static_cast<int>(rows);
}

void ResultRows::ReadRow(char* row, MYSQL_ROW texts, unsigned long const* lengths, MapBuffer& buffer) const {
  auto* cell = reinterpret_cast<UU*>(row);
  for (Column const& column : columns_) {
    ReadInto(*cell++, row + column.area, column, *texts++, *lengths++, buffer);
  }
}

// Has the cells of a block that was moved point into it again.
void ResultRows::Relocate(char* row, std::size_t rows) const {
  for (; rows > 0; --rows, row += width_ * sizeof(UU)) {
    auto* cell = reinterpret_cast<UU*>(row);
    for (Column const& column : columns_) {
      if (HasArea(column.kind)) cell->extra.text = row + column.area;
      ++cell;
    }
  }
}

void ResultRows::Deliver(UU const* row) {
  for (Column& column : columns_) {
    UU const& cell = *row++;
    ASData* const data = column.attribute->Data();
    if (data != column.data && (data == nullptr || KindOf(*data) != column.kind || !Bind(column, data))) continue;
    Deliver(cell, column);
  }
}

// A value of a type code that no column class has counts as what its class is.
ResultRows::Kind ResultRows::KindOf(ASData const& data) {
  switch (data.GetType()) {
    case kTypeInt:
      if (data.GetDBType() != kDbTime) return Kind::kInteger;
      return To<ASTime>(data) != nullptr ? Kind::kTime : Kind::kTimeNumber;
    case kTypeDouble:
      return Kind::kReal;
    case kTypeDCurrency:
      return Kind::kCurrency;
    case kTypeInt64:
      return Kind::kInteger64;
    case kTypeStr:
      return Kind::kText;
    case kTypeGuid:
      return Kind::kGuid;
    case kTypeRealBlob:
      return Kind::kRealBlob;
    default:
      break;
  }
  if (dynamic_cast<ASStr const*>(&data) != nullptr) return Kind::kText;
  return data.GetDBType() == kDbGeometry ? Kind::kGeometry : Kind::kBlob;
}

ResultRows::Store ResultRows::StoreOf(ASData const& data) {
  std::type_info const& type = typeid(data);
  if (type == typeid(ASTime)) return Store::kTime;
  if (type == typeid(ASStr)) return Store::kFixedText;
  if (type == typeid(ASVStr)) return Store::kVariableText;
  return Store::kAssign;
}

// Has the column read into the value. False, with the column as it was, when the value's class is not of its kind.
bool ResultRows::Bind(Column& column, ASData* data) {
  Target target{nullptr};
  switch (column.kind) {
    case Kind::kNone:
      break;
    case Kind::kInteger:
      if (To<Int, ASInt>(*data) != nullptr) target.storage = data->voidptr();
      break;
    case Kind::kReal:
    case Kind::kCurrency:
      if (To<Double, ASDouble, ASDCurrency>(*data) != nullptr) target.storage = data->voidptr();
      break;
    case Kind::kTime:
      target.time = To<ASTime>(*data);
      break;
    case Kind::kTimeNumber:
      target.integer = To<ASInt>(*data);
      break;
    case Kind::kInteger64:
      target.integer64 = To<Int64, ASInt64>(*data);
      break;
    case Kind::kText:
      target.text = To<ASStr, ASVStr, ASStr>(*data);
      break;
    case Kind::kGuid:
      target.guid = To<ASGuid>(*data);
      break;
    case Kind::kBlob:
      target.blob = To<ASBlob>(*data);
      break;
    case Kind::kGeometry:
      target.geometry = To<ASGeometry>(*data);
      break;
    case Kind::kRealBlob:
      target.realBlob = To<ASRealBlob>(*data);
      break;
  }
  if (target.storage == nullptr) return false;
  column.data = data;
  column.target = target;
  bool const hasStores = column.kind == Kind::kTime || column.kind == Kind::kText;
  column.store = hasStores ? StoreOf(*data) : Store::kAssign;
  return true;
}

// Takes a field of the result, null for NULL, over into its cell.
void ResultRows::ReadInto(UU& cell, char* area, Column const& column, char const* text, std::size_t length,
                          MapBuffer& buffer) {
  switch (column.kind) {
    case Kind::kNone:
      return;
    case Kind::kInteger:
      cell.value.integer = text != nullptr ? TruncateToInt(ParseInteger(text, length)) : Int::kNull;
      return;
    case Kind::kTime:
    case Kind::kTimeNumber:
      cell.value.integer = ReadTime(text, length);
      return;
    case Kind::kCurrency:
      cell.extra.constant = kCurrencyConstant;
      cell.mark = kCurrencyMark;
      [[fallthrough]];
    case Kind::kReal:
      cell.value.number = text != nullptr ? ParseDouble(text, length) : Double::kNull;
      return;
    case Kind::kInteger64:
      cell.value.integer64 = text != nullptr ? ParseInteger(text, length) : 0;
      cell.extra.null = text == nullptr ? 1 : 0;
      return;
    case Kind::kText: {
      cell.extra.text = area;
      cell.value.length = 0;
      if (text == nullptr) return;  // the area is zero-filled already
      std::size_t const taken = strnlen(text, std::min(length, column.size));
      std::memcpy(area, text, taken);
      area[taken] = '\0';
      cell.value.length = static_cast<std::uint32_t>(taken + 1);
      return;
    }
    case Kind::kGuid: {
      cell.extra.text = area;
      bool const valid = Guid::Parse(text, area);
      if (!valid) std::memset(area, 0, Guid::kBytes);
      cell.value.length = valid ? Guid::kBytes : 0;
      return;
    }
    case Kind::kBlob:
    case Kind::kGeometry: {
      std::size_t const skipped = column.hasSpatialId ? kSpatialId : 0;
      std::size_t const stored = text != nullptr && length > skipped ? length - skipped : 0;
      std::size_t const taken = std::min(stored, column.size);
      cell.value.length = static_cast<std::uint32_t>(taken);
      cell.extra.bytes = taken > 0 ? buffer.KeepBytes(text + skipped, taken) : nullptr;
      return;
    }
    case Kind::kRealBlob:
      cell.value.blob = text != nullptr ? buffer.KeepBlob(static_cast<unsigned>(length), text) : nullptr;
      return;
  }
}

inline void ResultRows::Deliver(UU const& cell, Column const& column) {
  switch (column.kind) {
    case Kind::kNone:
      return;
    case Kind::kInteger:
      std::memcpy(column.target.storage, &cell.value.integer, sizeof cell.value.integer);
      return;
    case Kind::kTime: {
      int const seconds = cell;
      if (column.store == Store::kAssign) {
        *column.target.time = seconds;
      } else {
        column.target.time->Int::operator=(seconds);
      }
      return;
    }
    case Kind::kTimeNumber:
      *column.target.integer = Int(cell);
      return;
    case Kind::kReal:
    case Kind::kCurrency:
      std::memcpy(column.target.storage, &cell.value.number, sizeof cell.value.number);
      return;
    case Kind::kInteger64:
      if (cell.extra.null != 0) return column.data->SetNull();
      column.target.integer64->Int64::operator=(cell.value.integer64);
      return;
    case Kind::kText: {
      ASStr& text = *column.target.text;
      char const* const bytes = cell.value.length != 0 ? cell.extra.text : nullptr;
      if (column.store == Store::kAssign) {
        text = bytes;
      } else if (bytes == nullptr) {
        text.ASStr::SetNull();
      } else if (column.store == Store::kFixedText) {
        text.Pad(bytes, std::strlen(bytes));
      } else {
        text.Fill(bytes, std::strlen(bytes));
      }
      return;
    }
    case Kind::kGuid:
      if (cell.value.length == 0) return column.data->SetNull();
      std::memcpy(column.target.guid->voidptr(), cell.extra.text, cell.value.length);
      column.target.guid->SetNotNull();
      return;
    case Kind::kBlob:
      return column.target.blob->Fill(cell.extra.bytes, cell.value.length);
    case Kind::kGeometry:
      return column.target.geometry->Fill(cell.extra.bytes, cell.value.length);
    case Kind::kRealBlob:
      if (cell.value.blob == nullptr) return column.data->SetNull();
      *column.target.realBlob = *cell.value.blob;
      return;
  }
}

}  // namespace corvane::internal
