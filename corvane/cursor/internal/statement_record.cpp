#include "corvane/cursor/internal/statement_record.h"

#include <climits>
#include <cstdint>
#include <utility>

#include "corvane/cursor/cell.h"
#include "corvane/data/int.h"
#include "corvane/data/str.h"

namespace corvane::internal {

namespace {

// Columns above this are not held at their declared length when the result would not fit the row buffer.
constexpr unsigned long kLongText = 65535;

// Pinned: of the integers TINYINT is a text, and BIGINT is read into 32 bits; held by
// CursorStatement.IntegersOfTwoToEightBytesAreInts.
bool IsInteger(MYSQL_FIELD const& field) {
  return field.type == MYSQL_TYPE_SHORT || field.type == MYSQL_TYPE_LONG || field.type == MYSQL_TYPE_LONGLONG ||
         field.type == MYSQL_TYPE_INT24;
}

// How long the text columns of a stored result are held: as declared, as far as the rows then fit the buffer.
struct TextSizes {
  explicit TextSizes(MYSQL_RES* result) : sizes(mysql_num_fields(result)) {
    MYSQL_FIELD const* const fields = mysql_fetch_fields(result);
    std::uint64_t rowSize = sizes.size() * sizeof(UU);
    for (std::size_t i = 0; i < sizes.size(); ++i) {
      if (!IsInteger(fields[i])) rowSize += std::uint64_t{fields[i].length} + 1;
    }
    rowSize = (rowSize + sizeof(UU) - 1) / sizeof(UU) * sizeof(UU);
    asDeclared = rowSize <= INT_MAX && mysql_num_rows(result) <= INT_MAX / rowSize;
    for (std::size_t i = 0; i < sizes.size(); ++i) {
      bool const declared = asDeclared || fields[i].length <= kLongText;
      sizes[i] = static_cast<unsigned>(declared ? fields[i].length : fields[i].max_length);
    }
  }

  std::vector<unsigned> sizes;
  bool asDeclared = false;
};

}  // namespace

StatementRecord::StatementRecord(MYSQL_RES* result) : record_("Table", "") {
  std::vector<unsigned> const sizes = TextSizes(result).sizes;
  MYSQL_FIELD const* const fields = mysql_fetch_fields(result);
  for (std::size_t i = 0; i < sizes.size(); ++i) {
    std::unique_ptr<ASData> value;
    if (IsInteger(fields[i])) {
      value = std::make_unique<ASInt>();
    } else {
      value = std::make_unique<ASStr>(sizes[i]);
    }
    auto attribute = std::make_unique<ASAttribute>(fields[i].name, fields[i].name, 0, 0);
    record_.Add(*attribute, *value);
    own_.push_back(value.get());
    attributes_.push_back(std::move(attribute));
    values_.push_back(std::move(value));
  }
}

StatementRecord::~StatementRecord() = default;

void StatementRecord::Resize(MYSQL_RES* result) {
  TextSizes const needed(result);
  for (std::size_t i = 0; i < needed.sizes.size() && i < own_.size(); ++i) {
    ASData const* const value = attributes_[i]->Data();
    if (value == nullptr || value != own_[i] || value->GetType() != kTypeStr) continue;
    auto const size = static_cast<unsigned>(value->GetSize());
    if (needed.asDeclared ? size >= needed.sizes[i] : size == needed.sizes[i]) continue;
    values_.push_back(std::make_unique<ASStr>(needed.sizes[i]));
    own_[i] = values_.back().get();
    attributes_[i]->Register(own_[i], &record_);
    own_[i]->Bind(attributes_[i].get());
  }
}

}  // namespace corvane::internal
