#ifndef CORVANE_BENCH_ACCOUNT_H
#define CORVANE_BENCH_ACCOUNT_H

#include <cstdint>
#include <string>
#include <string_view>

namespace bench {

/// A row of the table that every library reads and writes, as a plain struct.
struct Account {
  int id = 0;  // numbered by the server
  std::int64_t account = 0;
  std::string name;
  std::string code;
  double balance = 0;
  double price = 0;
  std::int64_t created = 0;  // seconds since 1970, UTC
  std::string note;
  bool hasNote = false;
  int age = 0;
  bool hasAge = false;
  std::string photo;
  bool hasPhoto = false;
};

/// The columns behind the name of the table, for CREATE TABLE.
extern char const* const kColumns;
/// "SELECT id, account, ... FROM ", and " WHERE id <= " for the first rows of a table.
extern char const* const kSelect;

/// The account of that number, counted from 1; the same in every program and every run.
Account MakeAccount(int id);
/// Another content for the same account.
Account ChangedAccount(int id);
/// The keys 1 to `count` in a mixed order: the i-th of them, counted from 0.
int MixedKey(long i, long count);

/// Seconds since 1970 of a date and time in UTC; the month from 1.
std::int64_t Seconds(int year, int month, int day, int hour, int minute, int second);
/// "2004-07-01 13:45:00" and back.
std::string TimeText(std::int64_t seconds);
std::int64_t ParseTime(char const* text);

/// Adds up what was read, so that nothing is left out and all programs can be compared.
class Checksum {
 public:
  void Add(std::int64_t number) { sum_ = sum_ * 31 + static_cast<std::uint64_t>(number); }
  void Add(double number);
  void Add(std::string_view text) {
    Add(static_cast<std::int64_t>(text.size()));
    if (!text.empty())
      Add(std::int64_t{static_cast<unsigned char>(text.front())} + static_cast<unsigned char>(text.back()));
  }
  void Add(Account const& account);

  /// 32 bits, which a double holds exactly.
  std::uint32_t Sum() const { return static_cast<std::uint32_t>(sum_ ^ (sum_ >> 32)); }

 private:
  std::uint64_t sum_ = 0;
};

}  // namespace bench

#endif
