// Reading a whole table: through a cursor into a record, and by a loop over the bare client library into a struct.
// Both turn every column into a value of its type and add up the same checksum, which must agree.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <ctime>

#include "database.h"

namespace bench {

namespace {

constexpr char const* kQuery =
    "SELECT s.id, s.quantity, s.customer, s.weight, s.price, s.sold, s.code, s.name, s.note, s.ticket FROM sale s";

struct Checksum {
  std::uint64_t sum = 0;

  void Add(std::int64_t number) { sum = sum * 31 + static_cast<std::uint64_t>(number); }
  void Add(double number) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &number, sizeof bits);
    sum = sum * 31 + bits;
  }
  void Add(char const* text) { sum = sum * 31 + static_cast<unsigned char>(text[0]) + std::strlen(text); }
  void Add(unsigned char const* bytes) { sum = sum * 31 + bytes[0] + bytes[15]; }
};

// Makes the table at the first use, for all of them.
MYSQL* Database() {
  static Handle const handle = [] {
    Handle made = Connect();
    MakeSales(made.get(), Rows());
    return made;
  }();
  return handle.get();
}

std::uint64_t ByCursor(ASSession& session) {
  Checksum checksum;
  Sale sale;
  ASCursor cursor(&session);
  while (cursor.Fetch(sale) != 0) {
    checksum.Add(std::int64_t{sale.id});
    checksum.Add(std::int64_t{sale.quantity});
    checksum.Add(std::int64_t{sale.customer});
    checksum.Add(double{sale.weight});
    checksum.Add(double{sale.price});
    checksum.Add(std::int64_t{sale.sold});
    checksum.Add(static_cast<char const*>(sale.code.voidptr()));
    checksum.Add(static_cast<char const*>(sale.name.voidptr()));
    if (sale.note.IsNull() == 0) checksum.Add(static_cast<char const*>(sale.note.voidptr()));
    checksum.Add(static_cast<unsigned char const*>(sale.ticket.voidptr()));
  }
  return checksum.sum;
}

int Digits(char const* text, int count) {
  int number = 0;
  for (int i = 0; i < count; ++i) number = number * 10 + (text[i] - '0');
  return number;
}

std::int64_t Time(char const* text) {
  std::tm parts{};
  parts.tm_year = Digits(text, 4) - 1900;
  parts.tm_mon = Digits(text + 5, 2) - 1;
  parts.tm_mday = Digits(text + 8, 2);
  parts.tm_hour = Digits(text + 11, 2);
  parts.tm_min = Digits(text + 14, 2);
  parts.tm_sec = Digits(text + 17, 2);
  return timegm(&parts);
}

unsigned HexDigit(char c) { return static_cast<unsigned>(c <= '9' ? c - '0' : c - 'a' + 10); }

void Ticket(unsigned char* bytes, char const* text) {
  for (int i = 0; i < 16; ++i, text += 2) {
    if (*text == '-') ++text;
    bytes[i] = static_cast<unsigned char>(HexDigit(text[0]) * 16 + HexDigit(text[1]));
  }
}

template <std::size_t kSize>
void Copy(char (&to)[kSize], char const* text) {
  std::size_t const length = strnlen(text, kSize - 1);
  std::memcpy(to, text, length);
  to[length] = '\0';
}

// The text, padded with blanks, as a CHAR column holds it.
void Padded(char* to, std::size_t size, char const* text) {
  std::size_t const length = std::strlen(text);
  std::memcpy(to, text, length);
  std::memset(to + length, ' ', size - length);
  to[size] = '\0';
}

struct PlainSale {
  int id, quantity;
  std::int64_t customer;
  double weight, price;
  std::int64_t sold;
  char code[9], name[41], note[81];
  bool noteIsNull;
  unsigned char ticket[16];
};

std::uint64_t AddRows(MYSQL_RES* result) {
  Checksum checksum;
  PlainSale sale;
  while (MYSQL_ROW const row = mysql_fetch_row(result)) {
    sale.id = std::atoi(row[0]);
    sale.quantity = std::atoi(row[1]);
    sale.customer = std::strtoll(row[2], nullptr, 10);
    sale.weight = std::atof(row[3]);
    sale.price = std::atof(row[4]);
    sale.sold = Time(row[5]);
    Padded(sale.code, sizeof sale.code - 1, row[6]);
    Copy(sale.name, row[7]);
    sale.noteIsNull = row[8] == nullptr;
    if (!sale.noteIsNull) Copy(sale.note, row[8]);
    Ticket(sale.ticket, row[9]);
    checksum.Add(std::int64_t{sale.id});
    checksum.Add(std::int64_t{sale.quantity});
    checksum.Add(sale.customer);
    checksum.Add(sale.weight);
    checksum.Add(sale.price);
    checksum.Add(sale.sold);
    checksum.Add(sale.code);
    checksum.Add(sale.name);
    if (!sale.noteIsNull) checksum.Add(sale.note);
    checksum.Add(sale.ticket);
  }
  return checksum.sum;
}

std::uint64_t ByHand(MYSQL* handle, MYSQL_RES* (*take)(MYSQL*)) {
  if (mysql_query(handle, kQuery) != 0) return 0;
  MYSQL_RES* const result = take(handle);
  std::uint64_t const sum = AddRows(result);
  mysql_free_result(result);
  return sum;
}

MYSQL_RES* Store(MYSQL* handle) { return mysql_store_result(handle); }
MYSQL_RES* Use(MYSQL* handle) { return mysql_use_result(handle); }

void FetchCursor(benchmark::State& state) {
  std::uint64_t const expected = ByHand(Database(), Store);
  ASSession session(Parameters(), 0, false);
  while (state.KeepRunning()) {
    if (ByCursor(session) != expected) state.SkipWithError("the rows are not those of the bare client library");
  }
  session.Disconnect();
}

void FetchByHand(benchmark::State& state, MYSQL_RES* (*take)(MYSQL*)) {
  while (state.KeepRunning()) benchmark::DoNotOptimize(ByHand(Database(), take));
}

BENCHMARK(FetchCursor)->Name("fetch/corvane")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(FetchByHand, store, Store)->Name("fetch/bare")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(FetchByHand, use, Use)->Name("fetch/bare unbuffered")->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

}  // namespace bench
