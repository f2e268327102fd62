#include "corvane/cursor/internal/result_rows.h"

#include <string.h>  // memccpy

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstring>
#include <utility>

#include "corvane/cache/map_buffer.h"
#include "corvane/data/blob.h"
#include "corvane/data/geometry.h"
#include "corvane/data/guid.h"
#include "corvane/data/int64.h"
#include "corvane/data/real_blob.h"
#include "corvane/data/str.h"
#include "corvane/data/time.h"
#include "corvane/data/value/exception.h"
#include "corvane/internal/number_text.h"
#include "corvane/internal/same_kind.h"

namespace corvane::internal {

namespace {

// What a currency's cell holds beside the number, as the layout has it.
constexpr char kCurrencyConstant[] = "";
constexpr int kCurrencyMark = 2;

// Servers put the number of the spatial reference system in front of a geometry.
constexpr std::size_t kSpatialId = 4;

// The value as `Column`, when its class is that.
template <class Column>
Column* As(ASData* data) {
  return dynamic_cast<Column*>(data);
}

}  // namespace

ResultRows::ResultRows(std::list<ASSimpleAttribute*> const& items, std::list<std::shared_ptr<ASSimpleAttribute>> kept)
    : kept_(std::move(kept)) {
  columns_.reserve(items.size());
  std::size_t area = items.size() * sizeof(UU);
  for (ASSimpleAttribute const* const item : items) {
    Column column{item, nullptr, Kind::kNone, {nullptr}, 0, area, false};
    if (ASData* const data = item->Data()) {
      column.kind = KindOf(*data);
      if (!Bind(column, data)) ThrowIncompatible("ASCursor::Open()");
      column.size = static_cast<std::size_t>(std::max(data->GetSize(), column.kind == Kind::kGuid ? Guid::kBytes : 0));
      if (column.kind == Kind::kText || column.kind == Kind::kGuid) area += column.size + 1;
    }
    bool const binary = column.kind == Kind::kBlob || column.kind == Kind::kGeometry || column.kind == Kind::kRealBlob;
    needsLengths_ = needsLengths_ || binary;
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
  std::uint64_t const announced = mysql_num_rows(result);
  std::size_t const rowSize = width_ * sizeof(UU);
  if (announced > INT_MAX || (rowSize > 0 && announced > INT_MAX / rowSize)) {
    throw AException("Result is too large for the row buffer. ");
  }
  auto* row = static_cast<char*>(buffer.Get(static_cast<int>(announced * rowSize)));
  int rows = 0;
  for (; rows < static_cast<int>(announced); ++rows, row += rowSize) {
    MYSQL_ROW const texts = mysql_fetch_row(result);
    if (texts == nullptr) break;
    unsigned long const* const lengths = needsLengths_ ? mysql_fetch_lengths(result) : nullptr;
    auto* const cells = reinterpret_cast<UU*>(row);
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      ReadInto(cells[i], row + columns_[i].area, columns_[i], texts[i], lengths != nullptr ? lengths[i] : 0, buffer);
    }
  }
  return rows;
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
      return dynamic_cast<ASTime const*>(&data) != nullptr ? Kind::kTime : Kind::kTimeNumber;
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

// Has the column read into the value. False, with the column as it was, when the value's class is not of its kind.
bool ResultRows::Bind(Column& column, ASData* data) {
  Target target{nullptr};
  switch (column.kind) {
    case Kind::kNone:
      break;
    case Kind::kInteger:
      if (As<Int>(data) != nullptr) target.storage = data->voidptr();
      break;
    case Kind::kReal:
    case Kind::kCurrency:
      if (As<Double>(data) != nullptr) target.storage = data->voidptr();
      break;
    case Kind::kTime:
      target.time = As<ASTime>(data);
      break;
    case Kind::kTimeNumber:
      target.integer = As<ASInt>(data);
      break;
    case Kind::kInteger64:
      target.integer64 = As<Int64>(data);
      break;
    case Kind::kText:
      target.text = As<ASStr>(data);
      break;
    case Kind::kGuid:
      target.guid = As<ASGuid>(data);
      break;
    case Kind::kBlob:
      target.blob = As<ASBlob>(data);
      break;
    case Kind::kGeometry:
      target.geometry = As<ASGeometry>(data);
      break;
    case Kind::kRealBlob:
      target.realBlob = As<ASRealBlob>(data);
      break;
  }
  if (target.storage == nullptr) return false;
  column.data = data;
  column.target = target;
  return true;
}

// Takes a field of the result, null for NULL, over into its cell.
void ResultRows::ReadInto(UU& cell, char* area, Column const& column, char const* text, unsigned long length,
                          MapBuffer& buffer) {
  switch (column.kind) {
    case Kind::kNone:
      return;
    case Kind::kInteger:
      cell.value.integer = text != nullptr ? TruncateToInt(ParseInteger(text)) : Int::kNull;
      return;
    case Kind::kTime:
    case Kind::kTimeNumber:
      cell.value.integer = ASTime::YYMMDDtoInt(text);
      return;
    case Kind::kCurrency:
      cell.extra.constant = kCurrencyConstant;
      cell.mark = kCurrencyMark;
      [[fallthrough]];
    case Kind::kReal:
      cell.value.number = text != nullptr ? ParseDouble(text) : Double::kNull;
      return;
    case Kind::kInteger64:
      cell.value.integer64 = Int64::atoint64_t(text);
      cell.extra.null = text == nullptr ? 1 : 0;
      return;
    case Kind::kText: {
      cell.extra.text = area;
      if (text == nullptr) {  // the area is zero-filled already
        cell.value.length = 0;
        return;
      }
      auto const* const end = static_cast<char const*>(memccpy(area, text, '\0', column.size));
      std::size_t const copied = end != nullptr ? static_cast<std::size_t>(end - area) - 1 : column.size;
      area[copied] = '\0';
      cell.value.length = static_cast<std::uint32_t>(copied + 1);
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

void ResultRows::Deliver(UU const& cell, Column const& column) {
  switch (column.kind) {
    case Kind::kNone:
      return;
    case Kind::kInteger:
      std::memcpy(column.target.storage, &cell.value.integer, sizeof cell.value.integer);
      return;
    case Kind::kTime: {
      int const seconds = cell;
      *column.target.time = seconds;
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
    case Kind::kText:
      *column.target.text = cell.value.length != 0 ? cell.extra.text : nullptr;
      return;
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
