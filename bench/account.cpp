#include "account.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <random>

namespace bench {

namespace {

constexpr char kLetters[] = "abcdefghijklmnopqrstuvwxyz ABCDEFGHIJKLMNOPQRSTUVWXYZ 0123456789";

class Source {
 public:
  explicit Source(std::uint64_t seed) : random_(seed) {}

  // From 0 up to, not including, `end`. Not a distribution of the standard library: these differ between libraries.
  std::uint64_t Below(std::uint64_t end) { return random_() % end; }
  bool Percent(unsigned percent) { return Below(100) < percent; }

  std::string Text(std::size_t shortest, std::size_t longest) {
    std::string text(shortest + Below(longest - shortest + 1), ' ');
    for (char& c : text) c = kLetters[Below(sizeof kLetters - 1)];
    text.front() = 'T';
    text.back() = 't';  // no blank, which some column types drop
    return text;
  }

  std::string Bytes(std::size_t length) {
    std::string bytes(length, '\0');
    for (char& c : bytes) c = static_cast<char>(Below(256));
    return bytes;
  }

 private:
  std::minstd_rand random_;
};

Account Make(int id, std::uint64_t seed) {
  Source source(seed);
  Account account;
  account.id = id;
  account.account = 9'007'199'254'740'993 + static_cast<std::int64_t>(source.Below(1'000'000'000));
  account.name = source.Text(8, 40);
  account.code = source.Text(8, 8);
  account.balance = (static_cast<double>(source.Below(2'000'000'000)) - 1e9) / 997;
  account.price = static_cast<double>(source.Below(100'000'000)) / 100;
  account.created = 946'684'800 + static_cast<std::int64_t>(source.Below(900'000'000));
  account.hasNote = !source.Percent(40);
  if (account.hasNote) account.note = source.Text(20, 160);
  account.hasAge = !source.Percent(20);
  if (account.hasAge) account.age = static_cast<int>(source.Below(100));
  account.hasPhoto = !source.Percent(50);
  if (account.hasPhoto) account.photo = source.Bytes(64);
  return account;
}

}  // namespace

char const* const kColumns =
    " (id INT AUTO_INCREMENT PRIMARY KEY, account BIGINT NOT NULL, name VARCHAR(64) NOT NULL, code CHAR(8) NOT NULL, "
    "balance DOUBLE NOT NULL, price DECIMAL(12,2) NOT NULL, created DATETIME NOT NULL, note VARCHAR(200), age INT, "
    "photo BLOB) ENGINE=InnoDB CHARACTER SET utf8mb4";
char const* const kSelect =
    "SELECT id, account, name, code, balance, price, created, note, age, photo FROM account WHERE id";

Account MakeAccount(int id) { return Make(id, static_cast<std::uint64_t>(id) * 2654435761U + 1); }
Account ChangedAccount(int id) { return Make(id, static_cast<std::uint64_t>(id) * 2246822519U + 7); }

// A step without a common divisor with the count visits every key once.
int MixedKey(long i, long count) {
  constexpr long kStep = 7'919'993;  // a prime
  return static_cast<int>(i * kStep % count) + 1;
}

// The days by the formula of Howard Hinnant's "chrono-Compatible Low-Level Date Algorithms": timegm() would cost more
// than the rest of the row.
std::int64_t Seconds(int year, int month, int day, int hour, int minute, int second) {
  if (month <= 2) --year;
  int const dayOfYear = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;
  std::int64_t const days = year * 365L + year / 4 - year / 100 + year / 400 + dayOfYear - 719'468;
  return ((days * 24 + hour) * 60 + minute) * 60 + second;
}

std::string TimeText(std::int64_t seconds) {
  std::time_t const time = seconds;
  std::tm parts{};
  gmtime_r(&time, &parts);
  char text[20];
  std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &parts);
  return text;
}

namespace {

int Digits(char const* text, int count) {
  int number = 0;
  for (int i = 0; i < count; ++i) number = number * 10 + (text[i] - '0');
  return number;
}

}  // namespace

std::int64_t ParseTime(char const* text) {
  return Seconds(Digits(text, 4), Digits(text + 5, 2), Digits(text + 8, 2), Digits(text + 11, 2), Digits(text + 14, 2),
                 Digits(text + 17, 2));
}

void Checksum::Add(double number) {
  std::int64_t bits = 0;
  std::memcpy(&bits, &number, sizeof bits);
  Add(bits);
}

void Checksum::Add(Account const& account) {
  Add(std::int64_t{account.id});
  Add(account.account);
  Add(std::string_view(account.name));
  Add(std::string_view(account.code));
  Add(account.balance);
  Add(account.price);
  Add(account.created);
  if (account.hasNote) Add(std::string_view(account.note));
  if (account.hasAge) Add(std::int64_t{account.age});
  if (account.hasPhoto) Add(std::string_view(account.photo));
}

}  // namespace bench
