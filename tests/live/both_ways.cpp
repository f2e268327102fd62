#include "tests/live/both_ways.h"

#include <dlfcn.h>
#include <mysql.h>

#include <algorithm>
#include <atomic>
#include <cstring>

namespace {

std::atomic<bool> stores{false};
std::atomic<int> results{0};
std::atomic<unsigned long long> announcedRows{0};
std::atomic<MYSQL_RES*> lastResult{nullptr};  // until its rows have ended; only compared
std::atomic<int> givenRows{0};

template <class Function>
Function* OfTheClientLibrary(char const* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

// Called instead of the client library's by whatever is linked to this program: the program's names come first.
MYSQL_RES* STDCALL mysql_use_result(MYSQL* handle) {
  static auto* const use = OfTheClientLibrary<decltype(mysql_use_result)>("mysql_use_result");
  MYSQL_RES* const result = stores ? mysql_store_result(handle) : use(handle);
  ++results;
  announcedRows = result != nullptr ? mysql_num_rows(result) : 0;
  lastResult = result;
  givenRows = 0;
  return result;
}

MYSQL_ROW STDCALL mysql_fetch_row(MYSQL_RES* result) {
  static auto* const fetch = OfTheClientLibrary<decltype(mysql_fetch_row)>("mysql_fetch_row");
  MYSQL_ROW const row = fetch(result);
  if (result != lastResult) return row;
  if (row != nullptr) {
    ++givenRows;
  } else {
    lastResult = nullptr;
  }
  return row;
}

namespace corvane::test {

std::string NameOf(::testing::TestParamInfo<Way> const& info) {
  switch (info.param) {
    case Way::kUnstored:
      return "Unstored";
    case Way::kStored:
      return "Stored";
    case Way::kStatement:
      break;
  }
  return "Statement";
}

Taking::Taking(Way way) {
  stores = way == Way::kStored;
  lastResult = nullptr;
  givenRows = 0;
}
Taking::~Taking() { stores = false; }
int Taking::Results() { return results; }
unsigned long long Taking::AnnouncedRows() { return announcedRows; }
int Taking::GivenRows() { return givenRows; }

Field FieldOf(ASData const& value) {
  if (value.IsNull() != 0) return {};
  if (auto const* const small = dynamic_cast<Blob const*>(&value)) {
    return std::string(reinterpret_cast<char const*>(small->Bytes()), small->Length());
  }
  if (auto const* const large = dynamic_cast<RealBlob const*>(&value)) {
    return std::string(static_cast<char const*>(large->voidptr()), large->Length());
  }
  return value.getstr().ToString();
}

Rows RowsOf(ASCursor& cursor) {
  Rows rows;
  while (cursor.Fetch() != 0) {
    Row row;
    for (ASSimpleAttribute const* const item : cursor.Project().Items()) row.push_back(FieldOf(*item->Data()));
    rows.push_back(row);
  }
  return rows;
}

namespace {

bool IsText(ASData const& value) { return dynamic_cast<ASStr const*>(&value) != nullptr; }
bool IsGuid(ASData const& value) { return dynamic_cast<ASGuid const*>(&value) != nullptr; }

std::size_t RowSizeOf(ASCursor& cursor) {
  std::size_t size = 0;
  for (ASSimpleAttribute const* const item : cursor.Project().Items()) {
    size += sizeof(UU);
    ASData const* const value = item->Data();
    if (value == nullptr) continue;
    if (IsText(*value)) size += static_cast<std::size_t>(value->GetSize()) + 1;
    if (IsGuid(*value)) size += static_cast<std::size_t>(std::max(value->GetSize(), 16)) + 1;
  }
  return (size + sizeof(UU) - 1) / sizeof(UU) * sizeof(UU);
}

// What the cell points to outside of its row; its pointers are replaced.
std::string Resolve(UU& cell, ASData const& value, char const* row) {
  std::string target;
  if (IsText(value) || IsGuid(value)) {
    auto const distance = static_cast<std::size_t>(cell.extra.text - row);
    std::memcpy(&cell.extra, &distance, sizeof distance);
  } else if (dynamic_cast<ASBlob const*>(&value) != nullptr || dynamic_cast<ASGeometry const*>(&value) != nullptr) {
    if (cell.value.length > 0) target.assign(reinterpret_cast<char const*>(cell.extra.bytes), cell.value.length);
    cell.extra.bytes = nullptr;
  } else if (dynamic_cast<ASRealBlob const*>(&value) != nullptr) {
    if (RealBlob const* const blob = cell.value.blob) {
      target = "not null: " + std::string(static_cast<char const*>(blob->voidptr()), blob->Length());
    }
    cell.value.blob = nullptr;
  } else if (dynamic_cast<ASDCurrency const*>(&value) != nullptr) {
    target = cell.extra.constant;
    cell.extra.constant = nullptr;
  }
  return target;
}

}  // namespace

std::vector<std::string> ImagesOf(ASCursor& cursor) {
  std::size_t const rowSize = RowSizeOf(cursor);
  std::vector<std::string> images;
  for (int i = 0; i < cursor.GetAmount(); ++i) {
    auto const* const row = reinterpret_cast<char const*>(cursor.GetUURecord(i));
    std::string image(row, rowSize);
    std::size_t offset = 0;
    for (ASSimpleAttribute const* const item : cursor.Project().Items()) {
      UU cell;
      std::memcpy(&cell, row + offset, sizeof cell);
      if (ASData const* const value = item->Data()) image += Resolve(cell, *value, row);
      std::memcpy(image.data() + offset, &cell, sizeof cell);
      offset += sizeof cell;
    }
    images.push_back(image);
  }
  return images;
}

void NumbersTest::CreateTables() {
  Run("CREATE TABLE n (id INT PRIMARY KEY)");
  std::string values = "(1)";
  for (int i = 2; i <= kNumbers; ++i) values += ",(" + std::to_string(i) + ")";
  Run("INSERT INTO n VALUES " + values);
}

std::future<void> BothWays::OnceAsleep(std::string const& connectionId, std::string const& statement) const {
  return std::async(std::launch::async, [schema = Schema(), connectionId, statement] {
    Observer other(schema);
    EXPECT_TRUE(other.SeesSleeping(connectionId));
    other.Run(statement);
  });
}

}  // namespace corvane::test
