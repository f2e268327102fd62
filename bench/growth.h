#ifndef CORVANE_BENCH_GROWTH_H
#define CORVANE_BENCH_GROWTH_H

#include <malloc.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "program.h"

// The workloads that the library and the bare client library alone do: what both sides share.
namespace bench {

// Each of these gives the statements that make a table, or a view, where it is not there yet.
using Statements = std::vector<std::string>;

/// The name of a table made for that size.
inline std::string Sized(char const* name, long size) { return name + ('_' + std::to_string(size)); }

/// `first_N`, the first accounts alone.
inline Statements FirstAccounts(long rows) {
  return {"CREATE OR REPLACE VIEW " + Sized("first", rows) +
          " AS SELECT * FROM account WHERE id <= " + std::to_string(rows)};
}

// The statements that make `table`, and fill it with that many rows of `values`, where `seq` counts from 1.
inline Statements Filled(std::string const& table, std::string const& columns, std::string const& values, long rows) {
  return {"CREATE TABLE IF NOT EXISTS " + table + " (" + columns + ") ENGINE=InnoDB CHARACTER SET utf8mb4",
          "INSERT INTO " + table + " SELECT " + values + " FROM seq_1_to_" + std::to_string(rows) +
              " WHERE NOT EXISTS (SELECT * FROM " + table + ")"};
}

inline long WideRows(long columns) {
  constexpr long kCells = 200'000;
  return kCells / columns;
}
/// `wide_N`, of that many columns, an integer, a text of up to 20 bytes and a double by turns: c0, c1, c2, c3, ...
inline Statements WideTable(long columns) {
  static char const* const types[] = {" INT NOT NULL", " VARCHAR(20) NOT NULL", " DOUBLE NOT NULL"};
  static char const* const values[] = {"(seq * 7919 + ", "LEFT(MD5(seq + ", "SQRT(seq + "};
  static char const* const ends[] = {") % 1000003", "), 4 + seq % 17)", ")"};
  std::string names, all;
  for (long i = 0; i < columns; ++i) {
    names += (i > 0 ? ", c" : "c") + std::to_string(i) + types[i % 3];
    all += (i > 0 ? ", " : "") + (values[i % 3] + std::to_string(i)) + ends[i % 3];
  }
  return Filled(Sized("wide", columns), names, all, WideRows(columns));
}

inline long TextRows(long bytes) {
  constexpr long kBytes = 16L << 20, kMostRows = 100'000;
  return std::min(kBytes / bytes, kMostRows);
}
/// `text_N`, of one text of that many bytes.
inline Statements TextTable(long bytes) {
  return Filled(Sized("text", bytes), "content MEDIUMTEXT NOT NULL",
                "RPAD(CONCAT('T', MD5(seq)), " + std::to_string(bytes) + ", 'long text ')", TextRows(bytes));
}

/// How often that many conditions are rendered.
inline long Renderings(long conditions) { return std::max(1L, 200'000 / conditions); }

/// A statement that was rendered, without the digits behind each T: records go by aliases that hold their addresses.
inline std::uint32_t TextChecksum(std::string_view text) {
  Checksum checksum;
  bool inAlias = false;
  for (char const c : text) {
    bool const digit = c >= '0' && c <= '9';
    if (inAlias && digit) continue;
    inAlias = c == 'T';
    checksum.Add(std::int64_t{c});
  }
  return checksum.Sum();
}

constexpr long kHits = 200'000;

// Keys from 1 to `count`, in no order that a processor could guess.
class RandomKeys {
 public:
  explicit RandomKeys(long count) : count_(static_cast<std::uint32_t>(count)) {}
  int Next() {
    state_ = state_ * 1664525 + 1013904223;
    return static_cast<int>((state_ >> 4) % count_) + 1;
  }

 private:
  std::uint32_t count_;
  std::uint32_t state_ = 1;
};

/// Runs `fill`, which puts that many records into a store, and tells the bytes that are allocated for each of them.
template <class Fill>
void TellBytes(benchmark::State& state, long records, Fill fill) {
  auto const allocated = [] {
    struct mallinfo2 const all = mallinfo2();
    return all.uordblks + all.hblkhd;
  };
  std::size_t const before = allocated();
  fill();
  state.counters["bytes"] = static_cast<double>(allocated() - before) / static_cast<double>(records);
}

}  // namespace bench

#endif
