#include "corvane/data/time.h"

#include <algorithm>
#include <boost/date_time/posix_time/conversion.hpp>
#include <boost/date_time/posix_time/posix_time_types.hpp>
#include <climits>
#include <cstring>
#include <ctime>
#include <exception>
#include <optional>

#include "corvane/internal/number_text.h"

namespace {

constexpr std::size_t kTextLength = 19;  // "2004-07-01 13:45:00"

boost::posix_time::ptime Epoch() { return boost::posix_time::ptime(boost::gregorian::date(1970, 1, 1)); }

char* PutDigits(char* at, unsigned number, int digits) {
  for (int i = digits - 1; i >= 0; --i, number /= 10) at[i] = static_cast<char>('0' + number % 10);
  return at + digits;
}

// Never INT_MIN, which has no absolute value.
int ReadNumber(char const* text, int position) {
  return std::max(corvane::internal::TruncateToInt(corvane::internal::ParseInteger(text + position)), -INT_MAX);
}

int LastDay(int year, int month) {
  constexpr int kLastDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  bool const leapDay = month == 2 && year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
  return leapDay ? 29 : kLastDays[month - 1];
}

bool InCalendar(int year, int month, int day) {
  return year >= 1400 && year <= 9999 && month >= 1 && month <= 12 && day >= 1 && day <= LastDay(year, month);
}

// Days from 1970-01-01 to a date of the Gregorian calendar in the year 1 or later: days_from_civil of Howard Hinnant's
// public "chrono-Compatible Low-Level Date Algorithms". Its years begin in March, so that the leap day is the last.
int DaysSince1970(int year, int month, int day) {
  if (month <= 2) --year;
  int const era = year / 400;
  int const yearOfEra = year % 400;
  int const dayOfYear = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;
  int const dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
  return era * 146097 + dayOfEra - 719468;
}

// The number of two digits; -1 when one of them is another character. Reads nothing behind that one.
int ReadTwoDigits(char const* at) {
  using corvane::internal::IsDigit;
  return IsDigit(at[0]) && IsDigit(at[1]) ? (at[0] - '0') * 10 + (at[1] - '0') : -1;
}

// The seconds of a valid time in the very form that servers send, "2004-07-01 13:45:00", whatever follows but a digit;
// nothing for any other text. Every character is looked at before the next one is, so nothing behind the end is read.
std::optional<int> ReadPlainTime(char const* text) {
  int const century = ReadTwoDigits(text);
  if (century < 0) return std::nullopt;
  int const yearOfCentury = ReadTwoDigits(text + 2);
  if (yearOfCentury < 0 || text[4] != '-') return std::nullopt;
  int const year = century * 100 + yearOfCentury;
  int const month = ReadTwoDigits(text + 5);
  if (month < 0 || text[7] != '-') return std::nullopt;
  int const day = ReadTwoDigits(text + 8);
  if (day < 0 || text[10] != ' ' || !InCalendar(year, month, day)) return std::nullopt;
  int const hour = ReadTwoDigits(text + 11);
  if (hour < 0 || hour > 23 || text[13] != ':') return std::nullopt;
  int const minute = ReadTwoDigits(text + 14);
  if (minute < 0 || minute > 59 || text[16] != ':') return std::nullopt;
  int const second = ReadTwoDigits(text + 17);
  if (second < 0 || second > 59 || corvane::internal::IsDigit(text[19])) return std::nullopt;
  long long const days = DaysSince1970(year, month, day);
  return corvane::internal::TruncateToInt(((days * 24 + hour) * 60 + minute) * 60 + second);
}

}  // namespace

ASTime::~ASTime() = default;

bool ASTime::operator==(basic_type const& other) const { return Equals(other, "ASTime::operator == ()"); }
bool ASTime::operator<(basic_type const& other) const { return Less(other, "ASTime::operator < ()"); }
void ASTime::copy(basic_type const& other) { Assign(other, "ASTime::copy()"); }
int ASTime::GetDBType() const { return corvane::kDbTime; }

Str ASTime::getstr() const {
  if (IsNull() != 0) return "NULL";
  boost::posix_time::ptime const time = Epoch() + boost::posix_time::seconds(static_cast<int>(*this));
  boost::gregorian::date::ymd_type const day = time.date().year_month_day();
  boost::posix_time::time_duration const clock = time.time_of_day();
  Str text;
  text.AppendWith(kTextLength, [&](char* at) {
    at = PutDigits(at, static_cast<unsigned short>(day.year), 4);
    *at++ = '-';
    at = PutDigits(at, static_cast<unsigned short>(day.month), 2);
    *at++ = '-';
    at = PutDigits(at, static_cast<unsigned short>(day.day), 2);
    *at++ = ' ';
    at = PutDigits(at, static_cast<unsigned>(clock.hours()), 2);
    *at++ = ':';
    at = PutDigits(at, static_cast<unsigned>(clock.minutes()), 2);
    *at++ = ':';
    PutDigits(at, static_cast<unsigned>(clock.seconds()), 2);
    return kTextLength;
  });
  return text;
}

ASTime& ASTime::operator=(long seconds) { return *this = Int(corvane::internal::TruncateToInt(seconds)); }

ASTime& ASTime::operator=(int const& seconds) { return *this = Int(seconds); }

ASTime& ASTime::operator=(Int64 const& seconds) {
  return seconds.IsNull() != 0 ? *this = Int() : *this = static_cast<long>(seconds);
}

ASTime& ASTime::operator=(Int const& other) {
  ASInt::operator=(other);
  return *this;
}

ASTime& ASTime::operator=(ASInt const& other) { return *this = static_cast<Int const&>(other); }

int ASTime::YYMMDDtoInt(char const* text) {
  if (text == nullptr) return kNull;
  if (std::optional<int> const seconds = ReadPlainTime(text)) return *seconds;
  if (strnlen(text, kTextLength) < kTextLength) return kNull;
  int const year = ReadNumber(text, 0);
  int const month = ReadNumber(text, 5);
  int const day = ReadNumber(text, 8);
  // Asked here and not left to the calendar's exceptions: it would first cut the numbers to 16 bits.
  if (!InCalendar(year, month, day)) return kNull;
  std::tm parts{};
  parts.tm_year = year - 1900;
  parts.tm_mon = month - 1;
  parts.tm_mday = day;
  parts.tm_hour = ReadNumber(text, 11);
  parts.tm_min = ReadNumber(text, 14);
  parts.tm_sec = ReadNumber(text, 17);
  parts.tm_isdst = -1;
  try {
    boost::posix_time::time_duration const since = boost::posix_time::ptime_from_tm(parts) - Epoch();
    return corvane::internal::TruncateToInt(since.ticks() / boost::posix_time::time_duration::ticks_per_second());
  } catch (std::exception const&) {  // hours beyond the end of the calendar
    return kNull;
  }
}
