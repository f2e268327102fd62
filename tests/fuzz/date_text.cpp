// ASTime::YYMMDDtoInt() of any text against arithmetic that counts day by day, and every time there and back.

#include <climits>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <string>

#include "corvane/data/time.h"
#include "tests/fuzz/target.h"

namespace corvane::fuzz {
namespace {

bool IsLeap(long long year) { return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0); }

long long DaysOf(long long year, long long month) {
  constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return month == 2 && IsLeap(year) ? 29 : kDays[month - 1];
}

long long DaysSince1970(long long year, long long month, long long day) {
  long long days = day - 1;
  for (long long m = 1; m < month; ++m) days += DaysOf(year, m);
  for (long long y = 1970; y < year; ++y) days += IsLeap(y) ? 366 : 365;
  for (long long y = year; y < 1970; ++y) days -= IsLeap(y) ? 366 : 365;
  return days;
}

// A number as an int holds it that takes the low half of a wider one; never INT_MIN.
long long ReadNumber(std::string const& text, std::size_t position) {
  auto const number = static_cast<std::int32_t>(std::strtoll(text.c_str() + position, nullptr, 10));
  return number == INT_MIN ? -INT_MAX : number;
}

int Expected(std::string const& text) {
  if (text.size() < 19) return INT_MIN;
  long long const year = ReadNumber(text, 0);
  long long const month = ReadNumber(text, 5);
  long long const day = ReadNumber(text, 8);
  if (year < 1400 || year > 9999 || month < 1 || month > 12 || day < 1 || day > DaysOf(year, month)) return INT_MIN;
  long long const hour = ReadNumber(text, 11);
  long long const minute = ReadNumber(text, 14);
  long long const second = ReadNumber(text, 17);
  long long const clock = std::llabs(hour) * 3600 + std::llabs(minute) * 60 + std::llabs(second);
  bool const back = hour < 0 || minute < 0 || second < 0;
  return static_cast<std::int32_t>(DaysSince1970(year, month, day) * 86400 + (back ? -clock : clock));
}

void ThereAndBack(std::int32_t seconds) {
  std::string const text = ASTime(seconds).getstr().ToString();
  if (seconds == INT_MIN) return CheckEqual(text, "NULL", "the text of a NULL time");
  std::time_t const moment = seconds;
  std::tm parts{};
  gmtime_r(&moment, &parts);
  char expected[32];
  CheckEqual(text, std::string(expected, std::strftime(expected, sizeof expected, "%Y-%m-%d %H:%M:%S", &parts)),
             "the text of a time");
  CheckEqual(ASTime::YYMMDDtoInt(text.c_str()), seconds, "a time that was written and read");
}

Target const target("date_text", "time against counted days; text there and back", [](Input input) {
  Input ofNumber = input;
  ThereAndBack(ofNumber.Take<std::int32_t>());
  std::string const text = input.Rest().c_str();
  CheckEqual(ASTime::YYMMDDtoInt(ExactText(text)), Expected(text), "the time of a text");
});

}  // namespace
}  // namespace corvane::fuzz
