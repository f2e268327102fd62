#include "corvane/internal/time_text.h"

#include <cstdint>

#include "corvane/internal/number_text.h"

namespace corvane::internal {

namespace {

constexpr int kDay = 24 * 60 * 60;  // seconds
constexpr int kEpoch = 719468;      // days from 0000-03-01 to 1970-01-01
constexpr int kEra = 146097;        // days of 400 years

int LastDay(int year, int month) {
  constexpr int kLastDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  bool const leapDay = month == 2 && year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
  return leapDay ? 29 : kLastDays[month - 1];
}

// Days from 1970-01-01 to a date of the Gregorian calendar in the year 1 or later: days_from_civil of Howard Hinnant's
// public "chrono-Compatible Low-Level Date Algorithms". Its years begin in March, so that the leap day is the last.
int DaysSince1970(int year, int month, int day) {
  if (month <= 2) --year;
  int const era = year / 400;
  int const yearOfEra = year % 400;
  int const dayOfYear = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;
  int const dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
  return era * kEra + dayOfEra - kEpoch;
}

// Eight characters of a time: where the pattern has a '0', any digit, and the others as they stand.
class Pattern {
 public:
  constexpr explicit Pattern(char const (&pattern)[9]) : word_(0), room_(0) {
    for (int i = 0; i < 8; ++i) {
      word_ |= std::uint64_t{static_cast<unsigned char>(pattern[i])} << (8 * i);
      room_ |= (pattern[i] == '0' ? 0x7F - 9 : std::uint64_t{0x7F}) << (8 * i);
    }
  }

  // False when the characters are others. Where two digits stand together, the byte of the first one is their number.
  bool Read(std::uint64_t& pairs, char const* at) const {
    std::uint64_t const digits = LoadWord(at) ^ word_;
    constexpr std::uint64_t kHighest = 0x8080808080808080;
    if ((((digits + room_) | digits) & kHighest) != 0) return false;
    pairs = digits * 10 + (digits >> 8);
    return true;
  }

 private:
  std::uint64_t word_;
  std::uint64_t room_;  // what each byte of the digits may be raised by before its highest bit is set
};

constexpr int Byte(std::uint64_t word, int index) { return static_cast<int>(word >> (8 * index) & 0xFF); }

struct Date {
  int year;
  int month;
  int day;
};

// The date so many days after 1970-01-01, likewise (civil_from_days); it is in the year 0 or later.
Date DateOf(int days) {
  int const since = days + kEpoch;
  int const era = since / kEra;
  int const dayOfEra = since % kEra;
  int const yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  int const dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  int const monthFromMarch = (5 * dayOfYear + 2) / 153;
  int const month = monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9;
  return {era * 400 + yearOfEra + (month <= 2 ? 1 : 0), month, dayOfYear - (153 * monthFromMarch + 2) / 5 + 1};
}

void PutTwoDigits(char* at, int number) {
  at[0] = static_cast<char>('0' + number / 10);
  at[1] = static_cast<char>('0' + number % 10);
}

}  // namespace

void AppendTime(Str& out, int seconds) {
  int const clock = (seconds % kDay + kDay) % kDay;
  Date const date = DateOf(static_cast<int>((static_cast<long long>(seconds) - clock) / kDay));
  char text[] = "0000-00-00 00:00:00";
  PutTwoDigits(text, date.year / 100);
  PutTwoDigits(text + 2, date.year % 100);
  PutTwoDigits(text + 5, date.month);
  PutTwoDigits(text + 8, date.day);
  PutTwoDigits(text + 11, clock / 3600);
  PutTwoDigits(text + 14, clock / 60 % 60);
  PutTwoDigits(text + 17, clock % 60);
  out.Append(text, kTimeLength);
}

bool InCalendar(int year, int month, int day) {
  return year >= 1400 && year <= 9999 && month >= 1 && month <= 12 && day >= 1 && day <= LastDay(year, month);
}

std::optional<int> ReadPlainTime(char const* text) {
  constexpr Pattern kDate("0000-00-");
  constexpr Pattern kMiddle("00 00:00");
  constexpr Pattern kClock("00:00:00");
  std::uint64_t date = 0;
  std::uint64_t middle = 0;
  std::uint64_t clock = 0;
  bool const plain = kDate.Read(date, text) && kMiddle.Read(middle, text + 8) && kClock.Read(clock, text + 11);
  if (!plain || IsDigit(text[kTimeLength])) return std::nullopt;
  int const year = Byte(date, 0) * 100 + Byte(date, 2);
  int const month = Byte(date, 5);
  int const day = Byte(middle, 0);
  int const hour = Byte(clock, 0);
  int const minute = Byte(clock, 3);
  int const second = Byte(clock, 6);
  if (!InCalendar(year, month, day) || hour > 23 || minute > 59 || second > 59) return std::nullopt;
  long long const days = DaysSince1970(year, month, day);
  return TruncateToInt(((days * 24 + hour) * 60 + minute) * 60 + second);
}

}  // namespace corvane::internal
