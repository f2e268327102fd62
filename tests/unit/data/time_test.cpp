#include "corvane/data/time.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <boost/date_time/gregorian/gregorian_types.hpp>
#include <boost/date_time/posix_time/posix_time.hpp>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <exception>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

#include "tests/unit/data/column_probes.h"

using boost::gregorian::gregorian_calendar;
using corvane::test::Slot;
using corvane::test::WritesNothing;

namespace {

constexpr int kNull = INT_MIN;

// An application's column that counts what it is asked to do.
class CountingTime : public ASTime {
 public:
  using ASTime::operator=;
  ASTime& operator=(Int const& other) override {
    ++assignments;
    return ASTime::operator=(other);
  }

  int assignments = 0;
};

// The parts of a time; any numbers.
struct Parts {
  int year, month, day, hour, minute, second;
};

std::string Text(Parts const& parts) {
  char text[64];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d", parts.year, parts.month, parts.day, parts.hour,
                parts.minute, parts.second);
  return text;
}

// What the calendar makes of the parts: seconds since 1970, in the lower 32 bits.
int ByCalendar(Parts const& parts) {
  std::tm broken{};
  broken.tm_year = parts.year - 1900;
  broken.tm_mon = parts.month - 1;
  broken.tm_mday = parts.day;
  broken.tm_hour = parts.hour;
  broken.tm_min = parts.minute;
  broken.tm_sec = parts.second;
  broken.tm_isdst = -1;
  try {
    auto const since = boost::posix_time::ptime_from_tm(broken) - boost::posix_time::from_time_t(0);
    std::int64_t const seconds = since.ticks() / boost::posix_time::time_duration::ticks_per_second();
    return static_cast<int>(static_cast<std::uint32_t>(seconds));
  } catch (std::exception const&) {
    return kNull;
  }
}

bool InCalendar(Parts const& parts) {
  return parts.year >= 1400 && parts.year <= 9999 && parts.month >= 1 && parts.month <= 12 && parts.day >= 1 &&
         parts.day <= gregorian_calendar::end_of_month_day(static_cast<unsigned short>(parts.year),
                                                           static_cast<unsigned short>(parts.month));
}

// What the C library and the calendar make of any text: six numbers at fixed positions.
int ByCLibraryAndCalendar(std::string const& text) {
  char const* const from = text.c_str();
  if (std::strlen(from) < 19) return kNull;
  auto const numberAt = [&](int position) { return static_cast<int>(std::strtoll(from + position, nullptr, 10)); };
  Parts const parts{numberAt(0), numberAt(5), numberAt(8), numberAt(11), numberAt(14), numberAt(17)};
  return InCalendar(parts) ? ByCalendar(parts) : kNull;
}

// Reads a text in just as much memory as it needs, so that a sanitizer sees what is read behind its end.
int ReadCopy(std::string const& text) {
  std::vector<char> const copy(text.c_str(), text.c_str() + text.size() + 1);
  return ASTime::YYMMDDtoInt(copy.data());
}

// The text with any NUL and other odd character made visible.
std::string Shown(std::string const& text) { return testing::PrintToString(text); }

// Texts that are valid times of the plain form, and what may follow one.
std::vector<std::string> const& PlainTexts() {
  static std::vector<std::string> const texts = {"2004-07-01 13:45:00", "2004-07-01 13:45:00.123456",
                                                 "2000-02-29 23:59:59", "1999-12-31 00:00:00 trailing",
                                                 "1400-01-10 09:08:07", "9999-12-31 23:59:59+02:00"};
  return texts;
}

std::string CalendarText(int seconds) {
  std::string text = boost::posix_time::to_iso_extended_string(boost::posix_time::from_time_t(seconds));
  text[10] = ' ';
  return text;
}

int LastDay(int year, int month) {
  return gregorian_calendar::end_of_month_day(static_cast<unsigned short>(year), static_cast<unsigned short>(month));
}

// Sets the time zone of the process, and sets it back.
class TimeZone {
 public:
  explicit TimeZone(char const* name) {
    if (char const* const before = std::getenv("TZ")) before_ = before;
    setenv("TZ", name, 1);
    tzset();
  }
  TimeZone(TimeZone const&) = delete;
  TimeZone& operator=(TimeZone const&) = delete;
  ~TimeZone() {
    if (before_.empty()) {
      unsetenv("TZ");
    } else {
      setenv("TZ", before_.c_str(), 1);
    }
    tzset();
  }

 private:
  std::string before_;
};

// ---- Construction and assignment ----

TEST(ASTime, IsBuiltFromSeconds) { EXPECT_EQ(static_cast<int>(ASTime(1088689500)), 1088689500); }

TEST(ASTime, IsNullWhenBuiltFromTheSmallestNumber) { EXPECT_EQ(ASTime(INT_MIN).IsNull(), 1); }

TEST(ASTime, IsNotBuiltFromANumberUnasked) { EXPECT_FALSE((std::is_convertible<int, ASTime>::value)); }

TEST(ASTime, TakesSeconds) {
  ASTime time;
  time = 5;
  EXPECT_EQ(static_cast<int>(time), 5);
  time = -5L;
  EXPECT_EQ(static_cast<int>(time), -5);
  time = Int(6);
  EXPECT_EQ(static_cast<int>(time), 6);
  time = ASTime(7);
  EXPECT_EQ(static_cast<int>(time), 7);
}

TEST(ASTime, TakesSecondsOfOtherTypes) {
  ASTime time;
  time = 5u;
  EXPECT_EQ(static_cast<int>(time), 5);
  time = 6LL;
  EXPECT_EQ(static_cast<int>(time), 6);
  time = 7ul;
  EXPECT_EQ(static_cast<int>(time), 7);
  time = 8ull;
  EXPECT_EQ(static_cast<int>(time), 8);
  time = static_cast<short>(9);
  EXPECT_EQ(static_cast<int>(time), 9);
}

TEST(ASTime, TakesTheNumberOfAnASInt) {
  ASInt seconds;
  seconds = 5;
  ASTime time;
  time = seconds;
  EXPECT_EQ(static_cast<int>(time), 5);
}

TEST(ASTime, TakesNullFromAnASInt) {
  ASTime time(5);
  time = ASInt();
  EXPECT_EQ(time.IsNull(), 1);
}

TEST(ASTime, LongIsTruncatedTo32Bits) {
  ASTime time;
  time = 4294967301L;
  EXPECT_EQ(static_cast<int>(time), 5);
  time = 2208988800L;
  EXPECT_EQ(static_cast<int>(time), -2085978496);
}

TEST(ASTime, LongOf2To31BecomesNull) {
  ASTime time(5);
  time = 2147483648L;
  EXPECT_EQ(time.IsNull(), 1);
}

TEST(ASTime, AssignmentReturnsTheTime) {
  ASTime time;
  ASTime& byInt = time = 5;
  ASTime& byLong = time = 5L;
  ASTime& byValue = time = Int(5);
  EXPECT_EQ(&byInt, &time);
  EXPECT_EQ(&byLong, &time);
  EXPECT_EQ(&byValue, &time);
}

TEST(ASTime, AssigningTheTimeItHasWritesNothing) {
  ASTime const five(5);
  EXPECT_TRUE(WritesNothing(five, [](ASTime& time) { time = 5; }));
  EXPECT_TRUE(WritesNothing(five, [](ASTime& time) { time = 5L; }));
  EXPECT_TRUE(WritesNothing(five, [](ASTime& time) { time = 4294967301L; }));
  EXPECT_TRUE(WritesNothing(five, [](ASTime& time) { time = Int(5); }));
  EXPECT_TRUE(WritesNothing(five, [](ASTime& time) { time = ASTime(5); }));
}

TEST(ASTime, AssigningAnotherTimeWrites) {
  EXPECT_FALSE(WritesNothing(ASTime(5), [](ASTime& time) { time = 6L; }));
}

// ---- Arithmetic and comparison ----

TEST(ASTime, SecondsAreAdded) {
  ASTime time(1088689500);
  time += 3600;
  EXPECT_EQ(time.getstr(), "2004-07-01 14:45:00");
  time -= Int(1);
  EXPECT_EQ(time.getstr(), "2004-07-01 14:44:59");
  ++time;
  EXPECT_EQ(time.getstr(), "2004-07-01 14:45:00");
}

TEST(ASTime, NeutralOperandWritesNothing) {
  EXPECT_TRUE(WritesNothing(ASTime(5), [](ASTime& time) { time += 0; }));
  EXPECT_TRUE(WritesNothing(ASTime(5), [](ASTime& time) { time *= Int(1); }));
}

TEST(ASTime, NullStaysNullUnderArithmetic) {
  ASTime time;
  time += 3600;
  EXPECT_EQ(time.IsNull(), 1);
}

TEST(ASTime, EqualsTheSameSeconds) {
  ASTime const time(5);
  EXPECT_TRUE(time == ASTime(5));
  EXPECT_FALSE(time == ASTime(6));
  EXPECT_TRUE(time == 5);
  EXPECT_TRUE(time == 5L);
  EXPECT_TRUE(time == Int(5));
  EXPECT_FALSE(time == 4294967301L);
}

TEST(ASTime, IsLessThanALaterTime) {
  EXPECT_TRUE(ASTime(5) < ASTime(6));
  EXPECT_FALSE(ASTime(5) < ASTime(5));
  EXPECT_TRUE(ASTime(-1) < ASTime(0));
  EXPECT_TRUE(ASTime(5) < 6);
}

TEST(ASTime, ComparesWithAnASIntThroughTheRoot) {
  ASInt seconds;
  seconds = 5;
  basic_type const& number = seconds;
  basic_type const& time = ASTime(5);
  basic_type const& later = ASTime(6);
  EXPECT_TRUE(time == number);
  EXPECT_FALSE(later == number);
  EXPECT_FALSE(time < number);
  EXPECT_FALSE(later < number);
}

// ---- Text ----

TEST(ASTime, NullIsTheTextNULL) { EXPECT_EQ(ASTime().getstr(), "NULL"); }

TEST(ASTime, ZeroIsTheBeginningOf1970) { EXPECT_EQ(ASTime(0).getstr(), "1970-01-01 00:00:00"); }

TEST(ASTime, TextIsDateBlankTime) { EXPECT_EQ(ASTime(1088689500).getstr(), "2004-07-01 13:45:00"); }

TEST(ASTime, TimesBefore1970AreNegative) { EXPECT_EQ(ASTime(-1).getstr(), "1969-12-31 23:59:59"); }

TEST(ASTime, TextOfTheLimits) {
  EXPECT_EQ(ASTime(INT_MAX).getstr(), "2038-01-19 03:14:07");
  EXPECT_EQ(ASTime(INT_MIN + 1).getstr(), "1901-12-13 20:45:53");
}

TEST(ASTime, TextOfALeapDay) { EXPECT_EQ(ASTime(951827696).getstr(), "2000-02-29 12:34:56"); }

TEST(ASTime, TextSeenFromTheRootIsTheDateToo) {
  ASTime const time(0);
  EXPECT_EQ(static_cast<basic_type const&>(time).getstr(), "1970-01-01 00:00:00");
  EXPECT_EQ(static_cast<ASInt const&>(time).getstr(), "1970-01-01 00:00:00");
  EXPECT_EQ(static_cast<Int const&>(time).getstr(), "1970-01-01 00:00:00");
}

TEST(ASTime, TextIsThatOfTheCalendar) {
  std::mt19937 random(20040701);
  std::uniform_int_distribution<int> anySecond(INT_MIN + 1, INT_MAX);
  for (int i = 0; i < 20000; ++i) {
    int const seconds = anySecond(random);
    ASSERT_EQ(ASTime(seconds).getstr(), CalendarText(seconds).c_str()) << seconds;
  }
}

TEST(ASTime, TextOfEveryMidnightIsThatOfTheCalendar) {
  for (std::int64_t midnight = -24855 * 86400L; midnight <= 24855 * 86400L; midnight += 86400) {
    int const seconds = static_cast<int>(midnight);
    ASSERT_EQ(ASTime(seconds).getstr(), CalendarText(seconds).c_str()) << seconds;
    ASSERT_EQ(ASTime(seconds - 1).getstr(), CalendarText(seconds - 1).c_str()) << seconds - 1;
  }
}

TEST(ASTime, TextReadsBack) {
  std::mt19937 random(20380119);
  std::uniform_int_distribution<int> anySecond(INT_MIN + 1, INT_MAX);
  for (int i = 0; i < 20000; ++i) {
    int const seconds = anySecond(random);
    ASSERT_EQ(ASTime::YYMMDDtoInt(ASTime(seconds).getstr().str()), seconds);
  }
}

TEST(ASTime, TimeZoneOfTheProcessPlaysNoPart) {
  TimeZone const zone("America/New_York");
  EXPECT_EQ(ASTime(1088689500).getstr(), "2004-07-01 13:45:00");
  EXPECT_EQ(ASTime::YYMMDDtoInt("2004-07-01 13:45:00"), 1088689500);
}

// ---- Reading ----

TEST(ASTimeReading, ReadsTheSeconds) {
  EXPECT_EQ(ASTime::YYMMDDtoInt("1970-01-01 00:00:00"), 0);
  EXPECT_EQ(ASTime::YYMMDDtoInt("1970-01-01 00:00:01"), 1);
  EXPECT_EQ(ASTime::YYMMDDtoInt("2004-07-01 13:45:00"), 1088689500);
  EXPECT_EQ(ASTime::YYMMDDtoInt("1969-12-31 23:59:59"), -1);
  EXPECT_EQ(ASTime::YYMMDDtoInt("2000-02-29 12:34:56"), 951827696);
}

TEST(ASTimeReading, NoTextIsNull) { EXPECT_EQ(ASTime::YYMMDDtoInt(nullptr), kNull); }

TEST(ASTimeReading, EmptyTextIsNull) { EXPECT_EQ(ASTime::YYMMDDtoInt(""), kNull); }

TEST(ASTimeReading, TextOf18CharactersIsNull) {
  EXPECT_EQ(ASTime::YYMMDDtoInt("1970-01-01 00:00:0"), kNull);
  EXPECT_EQ(ASTime::YYMMDDtoInt("2004-07-01 13:45:0"), kNull);
}

TEST(ASTimeReading, DateAloneIsNull) { EXPECT_EQ(ASTime::YYMMDDtoInt("2004-07-01"), kNull); }

TEST(ASTimeReading, FractionIsDropped) {
  EXPECT_EQ(ASTime::YYMMDDtoInt("2004-07-01 13:45:00.999999"), 1088689500);
  EXPECT_EQ(ASTime::YYMMDDtoInt("1969-12-31 23:59:59.9"), -1);
}

TEST(ASTimeReading, SeparatorsAreNotLookedAt) {
  EXPECT_EQ(ASTime::YYMMDDtoInt("2004/07/01T13.45.00"), 1088689500);
  EXPECT_EQ(ASTime::YYMMDDtoInt("2004x07x01x13x45x00"), 1088689500);
}

TEST(ASTimeReading, LeadingBlanksOfANumberAreSkipped) {
  EXPECT_EQ(ASTime::YYMMDDtoInt("2004- 7- 1 13:45: 0"), 1088689500);
}

TEST(ASTimeReading, NumberEndsAtTheFirstOtherCharacter) {
  EXPECT_EQ(ASTime::YYMMDDtoInt("2004-07-01 13:45:0x"), 1088689500);
  EXPECT_EQ(ASTime::YYMMDDtoInt("2004-07-1x 13:45:00"), 1088689500);
}

TEST(ASTimeReading, NumberWithoutDigitsIsZero) {
  EXPECT_EQ(ASTime::YYMMDDtoInt("1970-01-01 ab:cd:ef"), 0);
  EXPECT_EQ(ASTime::YYMMDDtoInt("1970-xx-01 00:00:00"), kNull);
}

TEST(ASTimeReading, TextWithoutNumbersIsNull) { EXPECT_EQ(ASTime::YYMMDDtoInt("abcdefghijklmnopqrst"), kNull); }

TEST(ASTimeReading, ZeroDateIsNull) { EXPECT_EQ(ASTime::YYMMDDtoInt("0000-00-00 00:00:00"), kNull); }

TEST(ASTimeReading, DayBeyondTheMonthIsNull) {
  EXPECT_EQ(ASTime::YYMMDDtoInt("2004-02-30 00:00:00"), kNull);
  EXPECT_EQ(ASTime::YYMMDDtoInt("2003-02-29 00:00:00"), kNull);
  EXPECT_EQ(ASTime::YYMMDDtoInt("1900-02-29 00:00:00"), kNull);
  EXPECT_EQ(ASTime::YYMMDDtoInt("2004-04-31 00:00:00"), kNull);
  EXPECT_EQ(ASTime::YYMMDDtoInt("2004-07-32 00:00:00"), kNull);
  EXPECT_EQ(ASTime::YYMMDDtoInt("2004-07-00 00:00:00"), kNull);
}

TEST(ASTimeReading, MonthOutside1To12IsNull) {
  EXPECT_EQ(ASTime::YYMMDDtoInt("2004-00-01 00:00:00"), kNull);
  EXPECT_EQ(ASTime::YYMMDDtoInt("2004-13-01 00:00:00"), kNull);
  EXPECT_EQ(ASTime::YYMMDDtoInt("2004--1-01 00:00:00"), kNull);
}

TEST(ASTimeReading, YearOutsideTheCalendarIsNull) {
  EXPECT_EQ(ASTime::YYMMDDtoInt("1399-12-31 23:59:59"), kNull);
  EXPECT_EQ(ASTime::YYMMDDtoInt("10000 01 01 00:00:00"), kNull);
  EXPECT_EQ(ASTime::YYMMDDtoInt("-999-01-01 00:00:00"), kNull);
}

TEST(ASTimeReading, VeryLargeNumbersAreNull) {
  EXPECT_EQ(ASTime::YYMMDDtoInt("99999999999999999999999999999999"), kNull);
  EXPECT_EQ(ASTime::YYMMDDtoInt("2004-99999999999999999999999999"), kNull);
  EXPECT_EQ(ASTime::YYMMDDtoInt("2004-07-9999999999999999999999"), kNull);
}

TEST(ASTimeReading, HoursMinutesAndSecondsRollOver) {
  EXPECT_EQ(ASTime::YYMMDDtoInt("2004-07-01 25:00:00"), 1088730000);  // 2004-07-02 01:00:00
  EXPECT_EQ(ASTime::YYMMDDtoInt("2004-12-31 24:00:00"), 1104537600);  // 2005-01-01 00:00:00
  EXPECT_EQ(ASTime::YYMMDDtoInt("1970-01-01 00:60:00"), 3600);
  EXPECT_EQ(ASTime::YYMMDDtoInt("1970-01-01 00:00:60"), 60);
  EXPECT_EQ(ASTime::YYMMDDtoInt("1970-01-01 99:99:99"), 362439);
}

TEST(ASTimeReading, FarTimesAreTruncatedTo32Bits) {
  EXPECT_EQ(ASTime(ASTime::YYMMDDtoInt("9999-12-31 23:59:59")).getstr(), "1969-12-23 02:12:15");
  EXPECT_EQ(ASTime(ASTime::YYMMDDtoInt("2040-01-01 00:00:00")).getstr(), "1903-11-25 17:31:44");
  EXPECT_EQ(ASTime(ASTime::YYMMDDtoInt("1900-01-01 00:00:00")).getstr(), "2036-02-07 06:28:16");
}

TEST(ASTimeReading, LastSecondOfTheRangeIsRead) {
  EXPECT_EQ(ASTime::YYMMDDtoInt("2038-01-19 03:14:07"), INT_MAX);
  EXPECT_EQ(ASTime::YYMMDDtoInt("1901-12-13 20:45:53"), INT_MIN + 1);
}

TEST(ASTimeReading, SecondAfterTheRangeIsNull) {
  EXPECT_EQ(ASTime::YYMMDDtoInt("2038-01-19 03:14:08"), kNull);
  EXPECT_EQ(ASTime::YYMMDDtoInt("1901-12-13 20:45:52"), kNull);
}

TEST(ASTimeReading, NumberGoesOnThroughTheDigitsBehindIt) {
  EXPECT_EQ(ASTime::YYMMDDtoInt("2004-07-01 13:45:001"), 1088689501);
  EXPECT_EQ(ASTime::YYMMDDtoInt("2004-07-01 13:45:100"), 1088689600);
  EXPECT_EQ(ASTime::YYMMDDtoInt("2004-07-01 13:45300"), 1091404800);  // 45300 minutes, 0 seconds
  EXPECT_EQ(ASTime::YYMMDDtoInt("2004-07-01 13045:00"), 1135604700);  // 13045 hours, 45 minutes
  EXPECT_EQ(ASTime::YYMMDDtoInt("2004-07-01013:45:00"), kNull);
  EXPECT_EQ(ASTime::YYMMDDtoInt("2004-07001 13:45:00"), kNull);
  EXPECT_EQ(ASTime::YYMMDDtoInt("2004007-01 13:45:00"), kNull);
}

TEST(ASTimeReading, SignIsPartOfTheNumber) {
  EXPECT_EQ(ASTime::YYMMDDtoInt("2004-+7-+1 13:45:00"), 1088689500);
  EXPECT_EQ(ASTime::YYMMDDtoInt("2004-07--1 13:45:00"), kNull);
}

TEST(ASTimeReading, TextThatEndsEarlyIsNullWhateverLiesBehindIt) {
  for (std::size_t end = 0; end < 19; ++end) {
    std::string text = "2004-07-01 13:45:00";
    text[end] = '\0';
    ASSERT_EQ(ASTime::YYMMDDtoInt(text.c_str()), kNull) << Shown(text);
  }
}

TEST(ASTimeReading, ReadsNothingBehindTheEndOfTheText) {
  std::string const text = "2004-07-01 13:45:00";
  for (std::size_t length = 0; length < text.size(); ++length) {
    ASSERT_EQ(ReadCopy(text.substr(0, length)), kNull) << length;
  }
  EXPECT_EQ(ReadCopy(text), 1088689500);
}

TEST(ASTimeReading, AgreesWithTheCalendarOnAnyParts) {
  std::mt19937 random(19700101);
  std::uniform_int_distribution<int> year(1390, 9999);
  std::uniform_int_distribution<int> month(0, 13);
  std::uniform_int_distribution<int> day(0, 32);
  std::uniform_int_distribution<int> two(0, 99);
  for (int i = 0; i < 50000; ++i) {
    Parts const parts{year(random), month(random), day(random), two(random), two(random), two(random)};
    ASSERT_EQ(ASTime::YYMMDDtoInt(Text(parts).c_str()), ByCalendar(parts)) << Text(parts);
  }
}

TEST(ASTimeReading, AgreesWithTheCalendarOnEveryDay) {
  int seconds = 0;  // another time of day each day
  for (int year = 1400; year <= 9999; ++year) {
    for (int month = 1; month <= 12; ++month) {
      for (int day = 1; day <= LastDay(year, month); ++day) {
        seconds = (seconds + 52711) % 86400;
        Parts const parts{year, month, day, seconds / 3600, seconds / 60 % 60, seconds % 60};
        std::string const text = Text(parts);
        ASSERT_EQ(ASTime::YYMMDDtoInt(text.c_str()), ByCalendar(parts)) << text;
      }
    }
  }
}

TEST(ASTimeReading, AgreesWithTheCalendarOnEverySecondOfADay) {
  // Among them the days on which the seconds pass a multiple of 2^31 or 2^32.
  Parts const days[] = {{1400, 1, 1, 0, 0, 0},   {1833, 11, 24, 0, 0, 0}, {1901, 12, 13, 0, 0, 0},
                        {1969, 12, 31, 0, 0, 0}, {1970, 1, 1, 0, 0, 0},   {2000, 2, 29, 0, 0, 0},
                        {2038, 1, 19, 0, 0, 0},  {2106, 2, 7, 0, 0, 0},   {9999, 12, 31, 0, 0, 0}};
  for (Parts parts : days) {
    for (int second = 0; second < 86400; ++second) {
      parts.hour = second / 3600;
      parts.minute = second / 60 % 60;
      parts.second = second % 60;
      std::string const text = Text(parts);
      ASSERT_EQ(ASTime::YYMMDDtoInt(text.c_str()), ByCalendar(parts)) << text;
    }
  }
}

TEST(ASTimeReading, AgreesWithTheCalendarOnAnySecond) {
  std::mt19937 random(99991231);
  std::uniform_int_distribution<int> year(1400, 9999);
  std::uniform_int_distribution<int> month(1, 12);
  std::uniform_int_distribution<int> day(1, 31);
  std::uniform_int_distribution<int> hour(0, 23);
  std::uniform_int_distribution<int> sixty(0, 59);
  for (int i = 0; i < 200000; ++i) {
    Parts const parts{year(random), month(random), day(random), hour(random), sixty(random), sixty(random)};
    std::string const text = Text(parts);
    ASSERT_EQ(ASTime::YYMMDDtoInt(text.c_str()), ByCalendar(parts)) << text;
  }
}

TEST(ASTimeReading, AgreesWithTheCalendarOnEveryTwoDigitMonthAndDay) {
  for (int const year : {0, 1399, 1400, 1600, 1900, 2000, 2003, 2004, 2100, 9999}) {
    for (int month = 0; month <= 99; ++month) {
      for (int day = 0; day <= 99; ++day) {
        Parts const parts{year, month, day, 12, 34, 56};
        std::string const text = Text(parts);
        ASSERT_EQ(ASTime::YYMMDDtoInt(text.c_str()), InCalendar(parts) ? ByCalendar(parts) : kNull) << text;
      }
    }
  }
}

TEST(ASTimeReading, AgreesWithTheCalendarOnEveryTwoDigitTimeOfDay) {
  for (int hour = 0; hour <= 99; ++hour) {
    for (int minute = 0; minute <= 99; ++minute) {
      for (int const second : {0, 1, 9, 10, 58, 59, 60, 61, 98, 99}) {
        Parts const parts{2004, 7, 1, hour, minute, second};
        std::string const text = Text(parts);
        ASSERT_EQ(ASTime::YYMMDDtoInt(text.c_str()), ByCalendar(parts)) << text;
      }
    }
  }
  for (int second = 0; second <= 99; ++second) {
    Parts const parts{2004, 7, 1, 13, 45, second};
    std::string const text = Text(parts);
    ASSERT_EQ(ASTime::YYMMDDtoInt(text.c_str()), ByCalendar(parts)) << text;
  }
}

TEST(ASTimeReading, AgreesWithTheCLibraryOnAnyCharacterInPlaceOfAnother) {
  for (std::string const& plain : PlainTexts()) {
    for (std::size_t at = 0; at < plain.size(); ++at) {
      for (int c = 0; c < 256; ++c) {
        std::string text = plain;
        text[at] = static_cast<char>(c);
        ASSERT_EQ(ASTime::YYMMDDtoInt(text.c_str()), ByCLibraryAndCalendar(text)) << Shown(text);
      }
    }
  }
}

TEST(ASTimeReading, AgreesWithTheCLibraryOnAnyCharacterTooManyOrTooFew) {
  for (std::string const& plain : PlainTexts()) {
    for (std::size_t at = 0; at <= plain.size(); ++at) {
      std::string const without = plain.substr(0, at) + plain.substr(at < plain.size() ? at + 1 : at);
      ASSERT_EQ(ReadCopy(without), ByCLibraryAndCalendar(without)) << Shown(without);
      for (int c = 0; c < 256; ++c) {
        std::string text = plain;
        text.insert(at, 1, static_cast<char>(c));
        ASSERT_EQ(ReadCopy(text), ByCLibraryAndCalendar(text)) << Shown(text);
      }
    }
  }
}

TEST(ASTimeReading, AgreesWithTheCLibraryOnLongerRunsOfDigits) {
  for (std::string const& plain : PlainTexts()) {
    for (std::size_t at = 0; at <= plain.size(); ++at) {
      for (char const digit : {'0', '1', '9'}) {
        for (std::size_t count = 1; count <= 24; ++count) {
          std::string text = plain;
          text.insert(at, count, digit);
          ASSERT_EQ(ReadCopy(text), ByCLibraryAndCalendar(text)) << Shown(text);
        }
      }
    }
  }
}

TEST(ASTimeReading, AgreesWithTheCLibraryOnAnyTwoOddCharacters) {
  std::string const odd("0159 \t+-:.xT\0", 13);
  for (std::string const& plain : PlainTexts()) {
    for (std::size_t first = 0; first < 20 && first < plain.size(); ++first) {
      for (std::size_t second = first + 1; second < 20 && second < plain.size(); ++second) {
        std::string text = plain;
        for (char const a : odd) {
          text[first] = a;
          for (char const b : odd) {
            text[second] = b;
            ASSERT_EQ(ASTime::YYMMDDtoInt(text.c_str()), ByCLibraryAndCalendar(text)) << Shown(text);
          }
        }
      }
    }
  }
}

TEST(ASTimeReading, AgreesWithTheCLibraryOnNoise) {
  std::string const alphabet("00011122334455667789 -+:.T\0", 28);
  std::mt19937 random(20121221);
  std::uniform_int_distribution<std::size_t> any(0, alphabet.size() - 1);
  std::uniform_int_distribution<std::size_t> anyLength(15, 30);
  for (int i = 0; i < 200000; ++i) {
    std::string text = "2";
    for (std::size_t left = anyLength(random); left > 0; --left) text += alphabet[any(random)];
    ASSERT_EQ(ReadCopy(text), ByCLibraryAndCalendar(text)) << Shown(text);
  }
}

TEST(ASTimeReading, AgreesWithTheCalendarOnBothEndsOfEveryMonth) {
  for (int year = 1400; year <= 9999; ++year) {
    for (int month = 1; month <= 12; ++month) {
      Parts const first{year, month, 1, 0, 0, 0};
      Parts const last{year, month, LastDay(year, month), 23, 59, 59};
      ASSERT_EQ(ASTime::YYMMDDtoInt(Text(first).c_str()), ByCalendar(first)) << Text(first);
      ASSERT_EQ(ASTime::YYMMDDtoInt(Text(last).c_str()), ByCalendar(last)) << Text(last);
    }
  }
}

TEST(ASTimeReading, DayAfterTheEndOfEveryMonthIsNull) {
  for (int year = 1400; year <= 9999; ++year) {
    for (int month = 1; month <= 12; ++month) {
      Parts const beyond{year, month, LastDay(year, month) + 1, 0, 0, 0};
      ASSERT_EQ(ASTime::YYMMDDtoInt(Text(beyond).c_str()), kNull) << Text(beyond);
    }
  }
}

TEST(ASTimeReading, LeapDayIsReadInLeapYearsOnly) {
  for (int year = 1400; year <= 9999; ++year) {
    bool const leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    Parts const leapDay{year, 2, 29, 0, 0, 1};  // in no year does this second truncate to NULL
    ASSERT_EQ(ASTime::YYMMDDtoInt(Text(leapDay).c_str()) != kNull, leap) << year;
  }
}

// ---- Virtual functions ----

TEST(ASTime, OverridesTheAssignmentsOfTheIntInPlace) {
  EXPECT_EQ(Slot(static_cast<ASTime& (ASTime::*)(Int const&)>(&ASTime::operator=)), 15);
  EXPECT_EQ(Slot(static_cast<ASTime& (ASTime::*)(ASInt const&)>(&ASTime::operator=)), 16);
}

TEST(ASTime, PutsItsOwnAssignmentsBehindThoseOfTheInt) {
  EXPECT_EQ(Slot(static_cast<ASTime& (ASTime::*)(long)>(&ASTime::operator=)), 31);
  EXPECT_EQ(Slot(static_cast<ASTime& (ASTime::*)(int const&)>(&ASTime::operator=)), 32);
}

TEST(ASTime, AssignedThroughTheIntClassItTakesTheSeconds) {
  ASTime time;
  ASInt& value = time;
  value = Int(0);
  EXPECT_EQ(time.getstr(), "1970-01-01 00:00:00");
  value = ASTime(1088689500);
  EXPECT_EQ(time.getstr(), "2004-07-01 13:45:00");
}

TEST(ASTime, OverriddenAssignmentIsReachedThroughTheIntClass) {
  CountingTime counting;
  ASInt& value = counting;
  value = Int(5);
  value = 6;
  EXPECT_EQ(counting.assignments, 2);
}

TEST(ASTime, OverriddenAssignmentIsReachedFromEveryForm) {
  CountingTime counting;
  ASTime& time = counting;
  time = 5;
  time = 6L;
  time = 7u;
  time = Int(8);
  time = ASTime(9);
  EXPECT_EQ(counting.assignments, 5);
  EXPECT_EQ(static_cast<int>(counting), 9);
}

TEST(ASTime, TakesANullOfMoreBitsAsNull) {
  ASTime time(5);
  time = Int64();
  EXPECT_EQ(time.IsNull(), 1);
}

TEST(ASTimeReading, GivesNullForAYearThatIsAValidOneInSixteenBits) {
  EXPECT_EQ(ASTime::YYMMDDtoInt("67540 07 01 13:45:00"), ASTime::kNull);
}

}  // namespace
