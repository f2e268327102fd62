#include "rows.h"

#include <mysql.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "bench/account.h"

namespace corvane::test {

namespace {

constexpr unsigned kColumns = 10;

// A row as the client library hands it out: its texts one behind the other, each with a NUL.
class Row {
 public:
  explicit Row(bench::Account const& account) {
    Add(true, Text(account.id));
    Add(true, Text(account.account));
    Add(true, account.name);
    Add(true, account.code);
    Add(true, Text(account.balance));
    Add(true, Text(account.price));
    Add(true, bench::TimeText(account.created));
    Add(account.hasNote, account.note);
    Add(account.hasAge, Text(account.age));
    Add(account.hasPhoto, account.photo);
    char* text = bytes_.data();
    for (unsigned i = 0; i < kColumns; ++i) {
      if (isNull_[i]) continue;
      fields_[i] = text;
      text += lengths_[i] + 1;
    }
  }

  // The fields point into the row's own bytes.
  Row(Row const&) = delete;
  Row& operator=(Row const&) = delete;

  MYSQL_ROW Fields() { return fields_.data(); }
  unsigned long* Lengths() { return lengths_.data(); }

 private:
  template <class Number>
  static std::string Text(Number number) {
    char digits[32];
    return {digits, std::to_chars(digits, digits + sizeof digits, number).ptr};
  }

  void Add(bool has, std::string const& text) {
    isNull_[added_] = !has;
    if (has) {
      lengths_[added_] = text.size();
      bytes_.append(text.c_str(), text.size() + 1);
    }
    ++added_;
  }

  std::string bytes_;
  unsigned added_ = 0;
  std::array<bool, kColumns> isNull_{};
  std::array<char*, kColumns> fields_{};
  std::array<unsigned long, kColumns> lengths_{};
};

std::vector<std::unique_ptr<Row>> const& Rows() {
  static auto const* const rows = [] {
    auto* const made = new std::vector<std::unique_ptr<Row>>;
    for (int id = 1; id <= kAccounts; ++id) made->push_back(std::make_unique<Row>(bench::MakeAccount(id)));
    return made;
  }();
  return *rows;
}

// There is one connection, and one result at a time.
MYSQL connection;
MYSQL_RES result;
std::array<MYSQL_FIELD, kColumns> descriptions;
long firstRow, rowCount;  // of the results to come
long nextRow, rowsLeft;   // of the result
long rowsHeld;            // of the result, those that the client library has taken from the connection at first

MYSQL_RES* StartResult(long held) {
  nextRow = firstRow;
  rowsLeft = rowCount;
  rowsHeld = held;
  return &result;
}

}  // namespace

void AnswerWith(long first, long count) {
  firstRow = first;
  rowCount = count;
}

}  // namespace corvane::test

using namespace corvane::test;

extern "C" {

MYSQL* STDCALL mysql_init(MYSQL*) {
  Rows();
  return &connection;
}

MYSQL* STDCALL mysql_real_connect(MYSQL* handle, char const*, char const*, char const*, char const*, unsigned,
                                  char const*, unsigned long) {
  return handle;
}

void STDCALL mysql_close(MYSQL*) {}
int STDCALL mysql_query(MYSQL*, char const*) { return 0; }
int STDCALL mysql_real_query(MYSQL*, char const*, unsigned long) { return 0; }
my_ulonglong STDCALL mysql_affected_rows(MYSQL*) { return 1; }
unsigned STDCALL mysql_errno(MYSQL*) { return 0; }
char const* STDCALL mysql_error(MYSQL*) { return ""; }
int STDCALL mysql_next_result(MYSQL*) { return -1; }

MYSQL_RES* STDCALL mysql_store_result(MYSQL*) { return StartResult(rowCount); }
MYSQL_RES* STDCALL mysql_use_result(MYSQL*) { return StartResult(0); }
void STDCALL mysql_free_result(MYSQL_RES*) {}
unsigned STDCALL mysql_num_fields(MYSQL_RES*) { return kColumns; }
my_ulonglong STDCALL mysql_num_rows(MYSQL_RES*) {
  return static_cast<my_ulonglong>(std::max(rowsHeld, rowCount - rowsLeft));
}
MYSQL_FIELD* STDCALL mysql_fetch_fields(MYSQL_RES*) { return descriptions.data(); }

MYSQL_ROW STDCALL mysql_fetch_row(MYSQL_RES*) {
  if (rowsLeft == 0) return nullptr;
  --rowsLeft;
  if (nextRow == kAccounts) nextRow = 0;
  return Rows()[static_cast<std::size_t>(nextRow++)]->Fields();
}

unsigned long* STDCALL mysql_fetch_lengths(MYSQL_RES*) {
  return Rows()[static_cast<std::size_t>(nextRow - 1)]->Lengths();
}

}  // extern "C"
