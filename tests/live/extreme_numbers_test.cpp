// Numbers and times at every edge of their classes, to the server and back, and texts that are numbers or times in
// part.
#include <gmock/gmock.h>

#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "tests/live/both_ways.h"
#include "tests/support/live.h"
#include "tests/support/tally.h"

using corvane::test::Fetched;
using corvane::test::Field;
using corvane::test::LiveTest;
using corvane::test::Row;
using corvane::test::Rows;
using corvane::test::Session;
using corvane::test::Taking;
using corvane::test::Tally;
using corvane::test::TextCursor;
using corvane::test::Way;

namespace {

template <class Value>
struct Numbered : ASDomain {
  ASInt id;
  Value value;
  ASAttribute idColumn{"id", "Id", 0, corvane::kKey};
  ASAttribute valueColumn{"value"};

  Numbered() : ASDomain("edge", "Edge") { Add(idColumn, id).Add(valueColumn, value); }
  Numbered(Numbered const&) = delete;
  Numbered& operator=(Numbered const&) = delete;
};

std::uint64_t Bits(double number) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &number, sizeof bits);
  return bits;
}

// Servers keep no negative zero: it counts as 0.
template <class Value>
auto Plain(Value const& value) {
  if constexpr (std::is_base_of<Double, Value>::value) {
    return Bits(static_cast<double>(value) + 0.0);
  } else {
    return static_cast<long>(value);
  }
}

std::vector<double> Doubles() {
  std::vector<double> all{0.0,   -0.0,    1e-323, DBL_TRUE_MIN, DBL_MIN, std::nextafter(DBL_MIN, 0.0), 1e-6, 9.999e-7,
                          1e308, DBL_MAX, 1e17,   1e16,         1e15,    9007199254740993.0,           0.1,  2.0 / 3.0,
                          1e22,  1e23,    5e-324, 123456789.0,  1.0,     std::nextafter(1.0, 2.0),     0.5,  1e-17};
  std::mt19937_64 random(17);
  for (int i = 0; i < 300; ++i) {
    std::uint64_t const bits = random();
    double number = 0;
    std::memcpy(&number, &bits, sizeof number);
    if (std::isfinite(number)) all.push_back(number);
  }
  std::size_t const positive = all.size();
  for (std::size_t i = 0; i < positive; ++i) all.push_back(std::nextafter(-all[i], 0.0));  // the lowest is NULL
  return all;
}

class Edges : public LiveTest {
 protected:
  // Inserts the numbers, reads them by record and by cursor, and finds each by a condition.
  template <class Value, class Number>
  void ExpectRoundTrip(std::string const& columnType, std::vector<Number> const& numbers) {
    Run("CREATE TABLE edge (id INT PRIMARY KEY, value " + columnType + ")");
    Session session(WithTransactions());
    session.ReadOnly();
    Numbered<Value> record;
    int id = 0;
    for (Number const number : numbers) {
      record.id = ++id;
      record.value = number;
      ASSERT_EQ(session.Insert(record), 1U);
    }
    session.Commit();

    Numbered<Value> expected;
    ASCursor cursor(&session);
    cursor.Project() << record.idColumn << record.valueColumn;
    cursor.Where(record.idColumn > 0);
    cursor.Order(ASOrder(record.idColumn.Query()));
    for (Number const number : numbers) {
      expected.value = number;
      ASSERT_NE(cursor.Fetch(), 0);
      EXPECT_EQ(Plain(record.value), Plain(expected.value)) << "by cursor: " << number;
      record.value.SetNull();
      ASSERT_EQ(session.Select(record), 1);
      EXPECT_EQ(Plain(record.value), Plain(expected.value)) << "by record: " << number;
      EXPECT_EQ(record.value.IsNull(), 0);

      ASCursor found(&session);
      found.Project() << record.idColumn;
      found.Where(record.idColumn == static_cast<int>(record.id) && record.valueColumn == expected.value);
      EXPECT_EQ(found.GetAmount(), 1) << "by condition: " << number;
    }
    Tally("numbers and times at edges, " + columnType, "stored, read by record and cursor, found by condition",
          numbers.size());
  }
};

TEST_F(Edges, OfDoublesGoToTheServerAndBack) { ExpectRoundTrip<ASDouble>("DOUBLE", Doubles()); }

TEST_F(Edges, OfCurrenciesGoToTheServerAndBack) { ExpectRoundTrip<ASDCurrency>("DOUBLE", Doubles()); }

TEST_F(Edges, OfLongIntegersGoToTheServerAndBack) {
  std::vector<long> numbers{LONG_MIN, LONG_MAX};
  for (int bit = 0; bit < 63; ++bit) {
    for (long const near : {-1L, 0L, 1L}) {
      numbers.push_back((1L << bit) + near);
      numbers.push_back(-(1L << bit) + near);
    }
  }
  ExpectRoundTrip<ASInt64>("BIGINT", numbers);
}

TEST_F(Edges, OfIntegersGoToTheServerAndBack) {
  std::vector<int> numbers{INT_MIN + 1, INT_MAX};
  for (int bit = 0; bit < 31; ++bit) {
    for (int const near : {-1, 0}) {
      numbers.push_back((1 << bit) + near);
      numbers.push_back(-(1 << bit) - near);
    }
  }
  ExpectRoundTrip<ASInt>("INT", numbers);
}

// The program's own time zone while it lives.
class Zone {
 public:
  explicit Zone(char const* name) {
    if (char const* const before = std::getenv("TZ")) before_ = before;
    setenv("TZ", name, 1);
    tzset();
  }
  Zone(Zone const&) = delete;
  Zone& operator=(Zone const&) = delete;
  ~Zone() {
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

std::vector<int> Moments() {
  std::vector<int> all{INT_MIN + 1, INT_MIN + 2, INT_MAX, INT_MAX - 1, -1, 0, 1};
  // Around the ends of years and of February, and the hours at which clocks are put forward and back in Europe, the
  // United States and on Lord Howe Island.
  for (int const seconds : {-2145916800, -1, 951782400, 978307200, 1709164800, 1711846800, 1729990800, 1710054000,
                            1730613600, 1712415600, 1728145800, 2147385600}) {
    for (int const near : {-86400, -7200, -3600, -1800, -1, 0, 1, 1800, 3600, 7200, 86000})
      all.push_back(seconds + near);
  }
  return all;
}

std::string TextOf(int seconds) {
  std::time_t const time = seconds;
  std::tm parts{};
  gmtime_r(&time, &parts);
  char text[32];
  std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &parts);
  return text;
}

class EdgesOfTime : public Edges, public ::testing::WithParamInterface<char const*> {};

INSTANTIATE_TEST_SUITE_P(In, EdgesOfTime,
                         ::testing::Values("UTC0", "CET-1CEST,M3.5.0,M10.5.0/3", "EST5EDT,M3.2.0,M11.1.0",
                                           "<+1030>-10:30<+11>-11,M10.1.0,M4.1.0", "<+0545>-5:45", "<-12>12",
                                           "<+14>-14"),
                         [](auto const& zone) { return "Zone" + std::to_string(zone.index); });

TEST_P(EdgesOfTime, GoToTheServerAndBackInEveryTimeZone) {
  Zone const zone(GetParam());
  ExpectRoundTrip<ASTime>("DATETIME", Moments());
  std::vector<int> const moments = Moments();
  Rows const stored = StoredRows("SELECT value FROM edge ORDER BY id");
  ASSERT_EQ(stored.size(), moments.size());
  for (std::size_t i = 0; i < moments.size(); ++i) EXPECT_EQ(stored[i][0], TextOf(moments[i]));
}

// A text as a column of every kind of number and of time, by Fetch() and by a cursor.
struct Reading : ASDomain {
  ASInt integer;
  ASInt64 integer64;
  ASDouble real;
  ASDCurrency money;
  ASTime time;
  ASVStr text{40};
  ASAttribute columns[6]{ASAttribute("a"), ASAttribute("b"), ASAttribute("c"),
                         ASAttribute("d"), ASAttribute("e"), ASAttribute("f")};

  Reading() : ASDomain("reading", "Reading") {
    ASData* const values[] = {&integer, &integer64, &real, &money, &time, &text};
    for (int i = 0; i < 6; ++i) Add(columns[i], *values[i]);
  }
  Reading(Reading const&) = delete;
  Reading& operator=(Reading const&) = delete;
};

class EdgesOfText : public LiveTest {
 protected:
  // What each of the three ways reads from the same field six times.
  template <class Expect>
  void ExpectOf(std::string const& field, Expect expect) {
    Session session(With());
    session.Execute("SET sql_mode=''");
    std::string query = "SELECT " + field;
    for (int i = 1; i < 6; ++i) query += ", " + field;
    Reading record;
    session.Execute(query);
    ASSERT_EQ(session.Fetch(record), 1);
    expect(record);
    for (Way const way : {Way::kUnstored, Way::kStored}) {
      record.SetNull();
      Taking const taking(way);
      TextCursor cursor(session, way, query);
      for (ASAttribute const& column : record.columns) cursor.Project() << column;
      ASSERT_EQ(cursor.Fetch(), 1);
      expect(record);
    }
  }
};

TEST_F(EdgesOfText, AreReadAsTheCLibraryReadsNumbers) {
  for (std::string const text : {"",
                                 " ",
                                 "0",
                                 "-0",
                                 "+0",
                                 "-",
                                 "+",
                                 "+-1",
                                 "--1",
                                 ".",
                                 "-.5",
                                 "5.",
                                 "1e400",
                                 "-1e400",
                                 "1e-400",
                                 "4.9e-324",
                                 "2.4e-324",
                                 "2.5e-324",
                                 "1.7976931348623157e308",
                                 "1.7976931348623159e308",
                                 "1e308",
                                 "nan",
                                 "NaN",
                                 "-nan",
                                 "inf",
                                 "-Infinity",
                                 "1e",
                                 "1e+",
                                 "1d5",
                                 "0x10",
                                 "0x1p3",
                                 "1_000",
                                 "1,5",
                                 "1.5.5",
                                 " \t\n12",
                                 "12 34",
                                 "2147483647",
                                 "2147483648",
                                 "-2147483648",
                                 "-2147483649",
                                 "4294967295",
                                 "4294967296",
                                 "9223372036854775807",
                                 "9223372036854775808",
                                 "-9223372036854775808",
                                 "-9223372036854775809",
                                 "18446744073709551615",
                                 "18446744073709551616",
                                 "99999999999999999999999999999999999999",
                                 "0000000000000000000000000000000000000007"}) {
    long const integer = std::strtol(text.c_str(), nullptr, 10);
    double const real = std::strtod(text.c_str(), nullptr);
    ExpectOf("'" + text + "'", [&](Reading const& record) {
      EXPECT_EQ(static_cast<int>(record.integer), static_cast<int>(static_cast<unsigned>(integer))) << text;
      EXPECT_EQ(static_cast<long>(record.integer64), integer) << text;
      EXPECT_EQ(record.integer64.IsNull(), 0) << text;
      if (std::isnan(real)) {
        EXPECT_TRUE(std::isnan(static_cast<double>(record.real))) << text;
        EXPECT_TRUE(std::isnan(static_cast<double>(record.money))) << text;
      } else {
        EXPECT_EQ(Bits(static_cast<double>(record.real)), Bits(real)) << text;
        EXPECT_EQ(Bits(static_cast<double>(record.money)), Bits(real)) << text;
      }
      EXPECT_EQ(record.text.ToString(), text);
    });
    Tally("texts that are numbers in part", "as 5 classes, by Fetch and cursor");
  }
}

TEST_F(EdgesOfText, AreReadAsTimesOrAsNull) {
  struct {
    char const* field;
    char const* text;
    char const* time;
  } const all[] = {
      {"CAST('0000-00-00 00:00:00' AS CHAR)", "0000-00-00 00:00:00", "NULL"},
      {"CAST('2004-00-00 00:00:00' AS CHAR)", "2004-00-00 00:00:00", "NULL"},
      {"CAST('0001-01-01 00:00:00' AS DATETIME)", "0001-01-01 00:00:00", "NULL"},
      {"CAST('1399-12-31 23:59:59' AS DATETIME)", "1399-12-31 23:59:59", "NULL"},
      {"CAST('1901-12-13 20:45:53' AS DATETIME)", "1901-12-13 20:45:53", "1901-12-13 20:45:53"},
      {"CAST('1901-12-13 20:45:52' AS DATETIME)", "1901-12-13 20:45:52", "NULL"},
      {"CAST('1970-01-01 00:00:00' AS DATETIME)", "1970-01-01 00:00:00", "1970-01-01 00:00:00"},
      {"CAST('2038-01-19 03:14:07.999999' AS DATETIME(6))", "2038-01-19 03:14:07.999999", "2038-01-19 03:14:07"},
      {"CAST('2004-02-29 23:59:59.000001' AS DATETIME(6))", "2004-02-29 23:59:59.000001", "2004-02-29 23:59:59"},
      {"CAST('1900-02-29 00:00:00' AS CHAR)", "1900-02-29 00:00:00", "NULL"},
      {"CAST('-838:59:59' AS TIME)", "-838:59:59", "NULL"},
      {"CAST('-838:59:59.999999' AS TIME(6))", "-838:59:59.999999", "NULL"},
      {"CAST('838:59:59' AS TIME)", "838:59:59", "NULL"},
      {"CAST('-00:00:01' AS TIME)", "-00:00:01", "NULL"},
      {"CAST('2004-07-01' AS DATE)", "2004-07-01", "NULL"},
      {"'10000-01-01 00:00:00'", "10000-01-01 00:00:00", nullptr},
      {"'-001-01-01 00:00:00'", "-001-01-01 00:00:00", nullptr}};
  for (auto const& [field, text, time] : all) {
    std::string const expected = time != nullptr ? time : ASTime(ASTime::YYMMDDtoInt(text)).getstr().ToString();
    ExpectOf(field, [&, shown = text](Reading const& record) {
      EXPECT_EQ(record.text.ToString(), shown);
      EXPECT_EQ(record.time.getstr().ToString(), expected) << shown;
    });
    Tally("texts that are times in part", "by Fetch and cursor, times and texts");
  }
}

}  // namespace
