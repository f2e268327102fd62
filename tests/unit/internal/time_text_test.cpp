#include "corvane/internal/time_text.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <optional>
#include <string>
#include <vector>

#include "corvane/data/time.h"
#include "tests/unit/internal/guarded_page.h"

namespace {

using corvane::internal::AppendTime;
using corvane::internal::InCalendar;
using corvane::internal::kTimeLength;
using corvane::internal::ReadPlainTime;
using corvane::test::GuardedPage;

constexpr int kDay = 24 * 60 * 60;

std::string Written(int seconds) {
  Str text;
  AppendTime(text, seconds);
  return text.ToString();
}

std::string ByCLibrary(int seconds) {
  std::time_t const time = seconds;
  std::tm parts{};
  gmtime_r(&time, &parts);
  char text[32];
  return std::string(text, std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &parts));
}

struct Parts {
  int year, month, day, hour, minute, second;
};

std::string Text(Parts const& parts) {
  char text[96];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d", parts.year, parts.month, parts.day, parts.hour,
                parts.minute, parts.second);
  return text;
}

int Truncated(std::int64_t seconds) { return static_cast<int>(static_cast<std::uint32_t>(seconds)); }

// What the C library makes of the parts, in the lower 32 bits.
int ByCLibrary(Parts const& parts) {
  std::tm broken{};
  broken.tm_year = parts.year - 1900;
  broken.tm_mon = parts.month - 1;
  broken.tm_mday = parts.day;
  broken.tm_hour = parts.hour;
  broken.tm_min = parts.minute;
  broken.tm_sec = parts.second;
  return Truncated(timegm(&broken));
}

// The six numbers that stand at the places of a time, separators not looked at. The clock counts back as a whole when
// one of its numbers is negative.
int ByNumbersAtTheirPlaces(std::string const& text) {
  char const* const from = text.c_str();
  if (std::strlen(from) < kTimeLength) return INT_MIN;
  auto const numberAt = [from](int place) { return std::atoi(from + place); };
  Parts const date{numberAt(0), numberAt(5), numberAt(8), 0, 0, 0};
  if (!InCalendar(date.year, date.month, date.day)) return INT_MIN;
  int const hours = numberAt(11);
  int const minutes = numberAt(14);
  int const seconds = numberAt(17);
  std::int64_t const clock = (std::abs(hours) * 60LL + std::abs(minutes)) * 60 + std::abs(seconds);
  bool const back = hours < 0 || minutes < 0 || seconds < 0;
  return Truncated(ByCLibrary(date) + (back ? -clock : clock));
}

// Texts of the plain form, and what may follow one; with fields next to their limits, too.
std::vector<std::string> const& PlainTexts() {
  static std::vector<std::string> const texts = {
      "2004-07-01 13:45:00", "2000-02-29 23:59:59",        "1999-12-31 00:00:00", "1400-01-01 09:08:07",
      "9999-12-31 23:59:59", "2010-10-20 19:29:39.123456", "1970-01-01 00:00:00"};
  return texts;
}

// ---- AppendTime ----

TEST(TimeText, WritesTheBeginningOf1970) { EXPECT_EQ(Written(0), "1970-01-01 00:00:00"); }

TEST(TimeText, WritesTheLimits) {
  EXPECT_EQ(Written(INT_MAX), "2038-01-19 03:14:07");
  EXPECT_EQ(Written(INT_MIN + 1), "1901-12-13 20:45:53");
  EXPECT_EQ(Written(INT_MIN), "1901-12-13 20:45:52");
}

TEST(TimeText, WritesTheSecondsAroundMidnight) {
  EXPECT_EQ(Written(-1), "1969-12-31 23:59:59");
  EXPECT_EQ(Written(kDay - 1), "1970-01-01 23:59:59");
  EXPECT_EQ(Written(kDay), "1970-01-02 00:00:00");
  EXPECT_EQ(Written(-kDay), "1969-12-31 00:00:00");
  EXPECT_EQ(Written(-kDay - 1), "1969-12-30 23:59:59");
}

TEST(TimeText, WritesLeapDays) {
  EXPECT_EQ(Written(951782400), "2000-02-29 00:00:00");
  EXPECT_EQ(Written(1709251199), "2024-02-29 23:59:59");
  EXPECT_EQ(Written(1709251200), "2024-03-01 00:00:00");
  EXPECT_EQ(Written(-2077747200), "1904-02-29 00:00:00");
}

TEST(TimeText, AppendsBehindWhatIsThere) {
  Str text("at ");
  AppendTime(text, 1088689500);
  AppendTime(text, 1088689501);
  EXPECT_EQ(text, "at 2004-07-01 13:45:002004-07-01 13:45:01");
}

TEST(TimeText, WritesEveryDayAsTheCLibraryDoes) {
  for (int day = INT_MIN / kDay; day <= INT_MAX / kDay; ++day) {
    int const midnight = day * kDay;
    ASSERT_EQ(Written(midnight), ByCLibrary(midnight));
    if (day == INT_MAX / kDay) break;
    ASSERT_EQ(Written(midnight + kDay - 1), ByCLibrary(midnight + kDay - 1));
  }
}

TEST(TimeText, WritesEverySecondOfSomeDaysAsTheCLibraryDoes) {
  for (int const midnight : {INT_MIN / kDay * kDay, -kDay, 0, 951782400, INT_MAX / kDay * kDay - kDay}) {
    for (int second = 0; second < kDay; ++second) ASSERT_EQ(Written(midnight + second), ByCLibrary(midnight + second));
  }
}

TEST(TimeText, WritesTheFirstAndLastHoursOfTheRangeAsTheCLibraryDoes) {
  for (int second = 0; second < 3 * 3600; ++second) {
    ASSERT_EQ(Written(INT_MAX - second), ByCLibrary(INT_MAX - second));
    ASSERT_EQ(Written(INT_MIN + second), ByCLibrary(INT_MIN + second));
  }
}

// ---- ReadPlainTime ----

TEST(TimeText, ReadsTheSeconds) {
  EXPECT_EQ(ReadPlainTime("1970-01-01 00:00:00"), 0);
  EXPECT_EQ(ReadPlainTime("2004-07-01 13:45:00"), 1088689500);
  EXPECT_EQ(ReadPlainTime("1969-12-31 23:59:59"), -1);
  EXPECT_EQ(ReadPlainTime("2038-01-19 03:14:07"), INT_MAX);
}

TEST(TimeText, ReadsWhateverFollowsButADigit) {
  EXPECT_EQ(ReadPlainTime("2004-07-01 13:45:00.999"), 1088689500);
  EXPECT_EQ(ReadPlainTime("2004-07-01 13:45:00 UTC"), 1088689500);
  EXPECT_EQ(ReadPlainTime("2004-07-01 13:45:009"), std::nullopt);
}

TEST(TimeText, ReadsNoTimeOutOfTheRangeOfItsParts) {
  for (char const* const text :
       {"1399-12-31 00:00:00", "0000-00-00 00:00:00", "2004-00-01 13:45:00", "2004-13-01 13:45:00",
        "2004-07-00 13:45:00", "2004-07-32 13:45:00", "2004-06-31 13:45:00", "2003-02-29 13:45:00",
        "1900-02-29 13:45:00", "2004-07-01 24:00:00", "2004-07-01 13:60:00", "2004-07-01 13:45:60"}) {
    EXPECT_EQ(ReadPlainTime(text), std::nullopt) << text;
  }
}

TEST(TimeText, ReadsNoTimeOfAnotherForm) {
  for (char const* const text :
       {"2004/07/01 13:45:00", "2004-07-01T13:45:00", "2004-07-01 13-45-00", " 004-07-01 13:45:00",
        "2004- 7-01 13:45:00", "2004-07-+1 13:45:00", "2004-07-01 1:345:00", "a004-07-01 13:45:00"}) {
    EXPECT_EQ(ReadPlainTime(text), std::nullopt) << text;
  }
}

TEST(TimeText, ReadsEveryDayOfTheCalendarAsTheCLibraryDoes) {
  int seconds = 0;  // another time of day each day
  for (int year = 1400; year <= 9999; ++year) {
    for (int month = 1; month <= 12; ++month) {
      for (int day = 1; InCalendar(year, month, day); ++day, seconds = (seconds + 4321) % kDay) {
        Parts const parts{year, month, day, seconds / 3600, seconds / 60 % 60, seconds % 60};
        std::string const text = Text(parts);
        ASSERT_EQ(ReadPlainTime(text.c_str()), ByCLibrary(parts)) << text;
      }
    }
  }
}

TEST(TimeText, ReadsEveryTimeOfADayAsTheCLibraryDoes) {
  for (int second = 0; second < kDay; ++second) {
    Parts const parts{2004, 7, 1, second / 3600, second / 60 % 60, second % 60};
    std::string const text = Text(parts);
    ASSERT_EQ(ReadPlainTime(text.c_str()), ByCLibrary(parts)) << text;
  }
}

TEST(TimeText, ReadsBackWhatItWrites) {
  for (std::int64_t seconds = INT_MIN; seconds <= INT_MAX; seconds += 34'567) {
    int const expected = static_cast<int>(seconds);
    ASSERT_EQ(ReadPlainTime(Written(expected).c_str()), expected);
  }
}

TEST(TimeText, ReadsTwoDigitsOfEveryKindAtEveryPlace) {
  GuardedPage page;
  for (std::size_t const place : {0U, 2U, 5U, 8U, 11U, 14U, 17U}) {
    for (int number = 0; number <= 99; ++number) {
      std::string text = "2004-07-01 13:45:00";
      text[place] = static_cast<char>('0' + number / 10);
      text[place + 1] = static_cast<char>('0' + number % 10);
      Parts const parts{std::stoi(text),
                        std::stoi(text.substr(5)),
                        std::stoi(text.substr(8)),
                        std::stoi(text.substr(11)),
                        std::stoi(text.substr(14)),
                        std::stoi(text.substr(17))};
      bool const valid =
          InCalendar(parts.year, parts.month, parts.day) && parts.hour < 24 && parts.minute < 60 && parts.second < 60;
      ASSERT_EQ(ReadPlainTime(page.Put(text)), valid ? std::optional<int>(ByCLibrary(parts)) : std::nullopt) << text;
    }
  }
}

// ---- The column that reads with both ----

TEST(TimeText, AnyByteAtAnyPlaceIsReadAsTheNumbersAtTheirPlacesAre) {
  GuardedPage page;
  for (std::string const& plain : PlainTexts()) {
    for (std::size_t at = 0; at < plain.size(); ++at) {
      for (int byte = 0; byte < 256; ++byte) {
        std::string text = plain;
        text[at] = static_cast<char>(byte);
        ASSERT_EQ(ASTime::YYMMDDtoInt(page.Put(text)), ByNumbersAtTheirPlaces(text)) << testing::PrintToString(text);
      }
    }
  }
}

TEST(TimeText, AnyByteAtAnyPlaceIsNeverAPlainTimeOfAnotherForm) {
  GuardedPage page;
  std::string const plain = "2011-11-11 11:11:11";
  for (std::size_t at = 0; at < plain.size(); ++at) {
    bool const digitPlace = plain[at] == '1' || plain[at] == '2' || plain[at] == '0';
    for (int byte = 0; byte < 256; ++byte) {
      std::string text = plain;
      text[at] = static_cast<char>(byte);
      bool const ofTheForm = digitPlace ? byte >= '0' && byte <= '9' : text == plain;
      if (ofTheForm) continue;
      ASSERT_EQ(ReadPlainTime(page.Put(text)), std::nullopt) << testing::PrintToString(text);
    }
  }
}

TEST(TimeText, NothingIsReadBehindTheEndOfAText) {
  GuardedPage page;
  std::string const text = "2004-07-01 13:45:00";
  EXPECT_EQ(ReadPlainTime(page.Put(text)), 1088689500);
  EXPECT_EQ(ASTime::YYMMDDtoInt(page.Put(text)), 1088689500);
  for (std::size_t length = 0; length < text.size(); ++length) {
    EXPECT_EQ(ASTime::YYMMDDtoInt(page.Put(text.substr(0, length))), INT_MIN) << length;
  }
}

TEST(TimeText, NothingIsReadBehindANulInsideAText) {
  GuardedPage page;
  for (std::size_t at = 0; at < kTimeLength; ++at) {
    std::string text = "2004-07-01 13:45:00";
    text[at] = '\0';
    EXPECT_EQ(ASTime::YYMMDDtoInt(page.Put(text)), INT_MIN) << at;
  }
}

// ---- InCalendar ----

TEST(TimeText, TheCalendarBeginsIn1400AndEndsIn9999) {
  EXPECT_TRUE(InCalendar(1400, 1, 1));
  EXPECT_TRUE(InCalendar(9999, 12, 31));
  EXPECT_FALSE(InCalendar(1399, 12, 31));
  EXPECT_FALSE(InCalendar(10000, 1, 1));
}

TEST(TimeText, TheCalendarKnowsTheLastDaysOfTheMonths) {
  int const lastDays[] = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  for (int month = 1; month <= 12; ++month) {
    EXPECT_TRUE(InCalendar(2004, month, 1));
    EXPECT_TRUE(InCalendar(2004, month, lastDays[month - 1]));
    EXPECT_FALSE(InCalendar(2004, month, lastDays[month - 1] + 1));
    EXPECT_FALSE(InCalendar(2004, month, 0));
    EXPECT_FALSE(InCalendar(2004, month, -1));
  }
}

TEST(TimeText, TheCalendarKnowsLeapYears) {
  EXPECT_TRUE(InCalendar(2000, 2, 29));
  EXPECT_TRUE(InCalendar(2024, 2, 29));
  EXPECT_FALSE(InCalendar(1900, 2, 29));
  EXPECT_FALSE(InCalendar(2023, 2, 29));
}

TEST(TimeText, TheCalendarHasTwelveMonths) {
  EXPECT_FALSE(InCalendar(2004, 0, 1));
  EXPECT_FALSE(InCalendar(2004, 13, 1));
  EXPECT_FALSE(InCalendar(2004, INT_MIN, INT_MAX));
}

}  // namespace
