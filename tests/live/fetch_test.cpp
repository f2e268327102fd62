#include <climits>
#include <cstdint>
#include <cstring>
#include <ostream>
#include <string>

#include "tests/support/live.h"

using corvane::test::LiveTest;
using corvane::test::Session;

namespace {

// A record of one value of the given class, for reading whatever a query gives.
template <class Column>
struct Of : ASDomain {
  Column value;
  ASAttribute column{"value"};

  template <class... Capacity>
  explicit Of(Capacity... capacity) : ASDomain("t", "T"), value(capacity...) {
    Add(column, value);
  }
  Of(Of const&) = delete;
  Of& operator=(Of const&) = delete;
};

// What a column of this type, filled with this value, is read as; every test makes the table `t` with one such row.
class Fetch : public LiveTest {
 protected:
  void Store(std::string const& columnType, std::string const& value) {
    Run("CREATE TABLE t (value " + columnType + ")");
    Run("INSERT INTO t VALUES (" + value + ")");
  }
  // Reads that row into the record; 1 when there is one.
  int Read(ASDomain& record) {
    Session session(With());
    session.ReadOnly();
    return session.Select(record);
  }
};

template <class Number>
struct NumberColumn {
  char const* name;
  char const* columnType;
  char const* value;
  Number read;
};

template <class Number>
void PrintTo(NumberColumn<Number> const& column, std::ostream* out) {
  *out << column.value << " in " << column.columnType;
}

template <class Number>
std::string NameOf(::testing::TestParamInfo<NumberColumn<Number>> const& info) {
  return info.param.name;
}

class FetchInt : public Fetch, public ::testing::WithParamInterface<NumberColumn<int>> {};

TEST_P(FetchInt, ReadsTheColumn) {
  Store(GetParam().columnType, GetParam().value);
  Of<ASInt> record;
  EXPECT_EQ(Read(record), 1);
  EXPECT_EQ(static_cast<int>(record.value), GetParam().read);
}

// A number beyond 32 bits keeps its low 32 bits; 2147483648 is then the number that stands for NULL.
INSTANTIATE_TEST_SUITE_P(Of, FetchInt,
                         ::testing::Values(NumberColumn<int>{"TinyInt", "TINYINT", "-128", -128},
                                           NumberColumn<int>{"Bool", "BOOL", "TRUE", 1},
                                           NumberColumn<int>{"SmallInt", "SMALLINT", "-32768", -32768},
                                           NumberColumn<int>{"MediumInt", "MEDIUMINT", "8388607", 8388607},
                                           NumberColumn<int>{"Int", "INT", "2147483647", 2147483647},
                                           NumberColumn<int>{"Year", "YEAR", "2024", 2024},
                                           NumberColumn<int>{"ZeroFilled", "INT(6) ZEROFILL", "42", 42},
                                           NumberColumn<int>{"UnsignedFits", "INT UNSIGNED", "2147483647", 2147483647},
                                           NumberColumn<int>{"UnsignedIsTruncated", "INT UNSIGNED", "4294967295", -1},
                                           NumberColumn<int>{"UnsignedThatReadsAsNull", "INT UNSIGNED", "2147483648",
                                                             INT_MIN},
                                           NumberColumn<int>{"BigIntIsTruncated", "BIGINT", "4294967297", 1},
                                           NumberColumn<int>{"DecimalLosesItsFraction", "DECIMAL(10,2)", "12.99", 12},
                                           NumberColumn<int>{"TextWithDigits", "VARCHAR(10)", "' 12abc'", 12},
                                           NumberColumn<int>{"TextWithoutDigits", "VARCHAR(10)", "'abc'", 0}),
                         NameOf<int>);

class FetchInt64 : public Fetch, public ::testing::WithParamInterface<NumberColumn<long>> {};

TEST_P(FetchInt64, ReadsTheColumn) {
  Store(GetParam().columnType, GetParam().value);
  Of<ASInt64> record;
  EXPECT_EQ(Read(record), 1);
  EXPECT_EQ(record.value.IsNull(), 0);
  EXPECT_EQ(static_cast<long>(record.value), GetParam().read);
}

INSTANTIATE_TEST_SUITE_P(
    Of, FetchInt64,
    ::testing::Values(NumberColumn<long>{"BigInt", "BIGINT", "9223372036854775807", LONG_MAX},
                      NumberColumn<long>{"BigIntSmallest", "BIGINT", "-9223372036854775808", LONG_MIN},
                      NumberColumn<long>{"UnsignedInt", "INT UNSIGNED", "4294967295", 4294967295},
                      NumberColumn<long>{"UnsignedBigIntFits", "BIGINT UNSIGNED", "9223372036854775807", LONG_MAX},
                      NumberColumn<long>{"UnsignedBigIntSaturates", "BIGINT UNSIGNED", "18446744073709551615",
                                         LONG_MAX}),
    NameOf<long>);

class FetchDouble : public Fetch, public ::testing::WithParamInterface<NumberColumn<double>> {};

TEST_P(FetchDouble, ReadsTheColumn) {
  Store(GetParam().columnType, GetParam().value);
  Of<ASDouble> record;
  EXPECT_EQ(Read(record), 1);
  EXPECT_EQ(static_cast<double>(record.value), GetParam().read);
}

TEST_P(FetchDouble, ReadsTheColumnAsMoney) {
  Store(GetParam().columnType, GetParam().value);
  Of<ASDCurrency> record;
  EXPECT_EQ(Read(record), 1);
  EXPECT_EQ(static_cast<double>(record.value), GetParam().read);
}

INSTANTIATE_TEST_SUITE_P(
    Of, FetchDouble,
    ::testing::Values(NumberColumn<double>{"Double", "DOUBLE", "0.30000000000000004", 0.30000000000000004},
                      NumberColumn<double>{"Float", "FLOAT", "1.5", 1.5},
                      NumberColumn<double>{"Decimal", "DECIMAL(20,4)", "1234567890.1234", 1234567890.1234},
                      NumberColumn<double>{"Exponent", "DOUBLE", "-1e300", -1e300},
                      NumberColumn<double>{"Int", "INT", "-7", -7.0},
                      NumberColumn<double>{"Text", "VARCHAR(10)", "' 2.5 EUR'", 2.5}),
    NameOf<double>);

template <class Column>
class FetchNull : public Fetch {
 protected:
  // A NULL column is read into a value that holds something.
  void ExpectNullFrom(char const* columnType, Of<Column>& record) {
    Store(columnType, "NULL");
    ASSERT_EQ(record.value.IsNull(), 0);
    EXPECT_EQ(Read(record), 1);
    EXPECT_EQ(record.value.IsNull(), 1);
  }
};

using FetchNullInt = FetchNull<ASInt>;
TEST_F(FetchNullInt, SetsTheValueNull) {
  Of<ASInt> record;
  record.value = 1;
  ExpectNullFrom("INT", record);
}

using FetchNullInt64 = FetchNull<ASInt64>;
TEST_F(FetchNullInt64, SetsTheValueNull) {
  Of<ASInt64> record;
  record.value = 1;
  ExpectNullFrom("BIGINT", record);
}

using FetchNullDouble = FetchNull<ASDouble>;
TEST_F(FetchNullDouble, SetsTheValueNull) {
  Of<ASDouble> record;
  record.value = 1;
  ExpectNullFrom("DOUBLE", record);
}

using FetchNullCurrency = FetchNull<ASDCurrency>;
TEST_F(FetchNullCurrency, SetsTheValueNull) {
  Of<ASDCurrency> record;
  record.value = 1;
  ExpectNullFrom("DECIMAL(10,2)", record);
}

using FetchNullTime = FetchNull<ASTime>;
TEST_F(FetchNullTime, SetsTheValueNull) {
  Of<ASTime> record;
  record.value = 1;
  ExpectNullFrom("DATETIME", record);
}

using FetchNullStr = FetchNull<ASStr>;
TEST_F(FetchNullStr, SetsTheValueNull) {
  Of<ASStr> record(5U);
  record.value = "x";
  ExpectNullFrom("CHAR(5)", record);
}

using FetchNullVStr = FetchNull<ASVStr>;
TEST_F(FetchNullVStr, SetsTheValueNull) {
  Of<ASVStr> record(5U);
  record.value = "x";
  ExpectNullFrom("VARCHAR(5)", record);
}

using FetchNullGuid = FetchNull<ASGuid>;
TEST_F(FetchNullGuid, SetsTheValueNull) {
  Of<ASGuid> record;
  record.value = Guid(1, 2);
  ExpectNullFrom("CHAR(36)", record);
}

using FetchNullBlob = FetchNull<ASBlob>;
TEST_F(FetchNullBlob, SetsTheValueNull) {
  Of<ASBlob> record(std::uint16_t{5});
  record.value.Fill("x", 1);
  ExpectNullFrom("VARBINARY(5)", record);
}

using FetchNullGeometry = FetchNull<ASGeometry>;
TEST_F(FetchNullGeometry, SetsTheValueNull) {
  Of<ASGeometry> record(std::uint16_t{5});
  record.value.Fill("x", 1);
  ExpectNullFrom("GEOMETRY", record);
}

using FetchNullRealBlob = FetchNull<ASRealBlob>;
TEST_F(FetchNullRealBlob, SetsTheValueNull) {
  Of<ASRealBlob> record(5U);
  ExpectNullFrom("LONGBLOB", record);
}

struct TimeColumn {
  char const* name;
  char const* columnType;
  char const* value;
  char const* read;
};

void PrintTo(TimeColumn const& column, std::ostream* out) { *out << column.value << " in " << column.columnType; }

class FetchTime : public Fetch, public ::testing::WithParamInterface<TimeColumn> {};

TEST_P(FetchTime, ReadsTheColumn) {
  Run("SET sql_mode=''");  // of the observer: 0 for a date
  Store(GetParam().columnType, GetParam().value);
  Of<ASTime> record;
  record.value = 1;
  EXPECT_EQ(Read(record), 1);
  EXPECT_EQ(record.value.getstr(), GetParam().read);
}

INSTANTIATE_TEST_SUITE_P(
    Of, FetchTime,
    ::testing::Values(TimeColumn{"DateTime", "DATETIME", "'2004-07-01 13:45:00'", "2004-07-01 13:45:00"},
                      TimeColumn{"Timestamp", "TIMESTAMP", "'2004-07-01 13:45:00'", "2004-07-01 13:45:00"},
                      TimeColumn{"FractionsAreDropped", "DATETIME(6)", "'2004-07-01 13:45:00.999999'",
                                 "2004-07-01 13:45:00"},
                      TimeColumn{"Text", "VARCHAR(20)", "'2004-07-01T13:45:00Z'", "2004-07-01 13:45:00"},
                      TimeColumn{"DateIsNull", "DATE", "'2004-07-01'", "NULL"},
                      TimeColumn{"TimeIsNull", "TIME", "'13:45:00'", "NULL"},
                      TimeColumn{"ZeroIsNull", "DATETIME", "'0000-00-00 00:00:00'", "NULL"},
                      TimeColumn{"DayThatDoesNotExistIsNull", "VARCHAR(20)", "'2004-02-30 00:00:00'", "NULL"},
                      TimeColumn{"LastOfAll", "DATETIME", "'2038-01-19 03:14:07'", "2038-01-19 03:14:07"},
                      TimeColumn{"OneSecondLaterIsNull", "DATETIME", "'2038-01-19 03:14:08'", "NULL"},
                      TimeColumn{"FarFutureIsTruncated", "DATETIME", "'9999-12-31 23:59:59'", "1969-12-23 02:12:15"},
                      TimeColumn{"BeforeTheEpoch", "DATETIME", "'1969-12-31 23:59:59'", "1969-12-31 23:59:59"},
                      TimeColumn{"FirstOfAll", "DATETIME", "'1901-12-13 20:45:53'", "1901-12-13 20:45:53"}),
    [](auto const& column) { return column.param.name; });

TEST_F(Fetch, FarDateKeepsInAText) {
  Store("DATETIME", "'9999-12-31 23:59:59'");
  Of<ASVStr> record(19U);
  Read(record);
  EXPECT_EQ(record.value, "9999-12-31 23:59:59");
}

TEST_F(Fetch, CharIsReadWithoutPadding) {
  Store("CHAR(10)", "'ab'");
  Of<ASStr> record(10U);
  Read(record);
  EXPECT_EQ(record.value.getstr(), "ab");
}

TEST_F(Fetch, VarcharKeepsItsTrailingBlanks) {
  Store("VARCHAR(10)", "'ab  '");
  Of<ASVStr> record(10U);
  Read(record);
  EXPECT_EQ(record.value.getstr(), "ab  ");
}

TEST_F(Fetch, ShorterTextLeavesNothingOfALongerOne) {
  Store("VARCHAR(10)", "'xy'");
  Of<ASStr> record(10U);
  record.value = "abcdefghij";
  Read(record);
  EXPECT_EQ(record.value.getstr(), "xy");
}

TEST_F(Fetch, TextLongerThanTheCapacityIsCut) {
  Store("VARCHAR(100)", "'abcdefghij'");
  Of<ASVStr> record(5U);
  Read(record);
  EXPECT_EQ(record.value.getstr(), "abcde");
}

TEST_F(Fetch, FixedTextLongerThanTheCapacityIsCut) {
  Store("VARCHAR(100)", "'abcdefghij'");
  Of<ASStr> record(5U);
  Read(record);
  EXPECT_EQ(record.value.getstr(), "abcde");
}

TEST_F(Fetch, TextOfExactlyTheCapacityIsWhole) {
  Store("VARCHAR(100)", "'abcde'");
  Of<ASVStr> record(5U);
  Read(record);
  EXPECT_EQ(record.value.getstr(), "abcde");
}

TEST_F(Fetch, EmptyTextIsNotNull) {
  Store("VARCHAR(10)", "''");
  Of<ASVStr> record(10U);
  Read(record);
  EXPECT_EQ(record.value.IsNull(), 0);
  EXPECT_EQ(record.value.getstr(), "");
}

TEST_F(Fetch, LongTextIsReadAsAText) {
  Store("LONGTEXT", "REPEAT('x', 100000)");
  Of<ASVStr> record(100000U);
  Read(record);
  EXPECT_EQ(record.value.getstr(), std::string(100000, 'x'));
}

TEST_F(Fetch, EnumIsReadAsItsName) {
  Store("ENUM('small', 'medium', 'large')", "'medium'");
  Of<ASVStr> record(10U);
  Read(record);
  EXPECT_EQ(record.value.getstr(), "medium");
}

TEST_F(Fetch, SetIsReadAsItsNames) {
  Store("SET('a', 'b', 'c')", "'a,c'");
  Of<ASVStr> record(10U);
  Read(record);
  EXPECT_EQ(record.value.getstr(), "a,c");
}

TEST_F(Fetch, NumberIsReadIntoATextAsTheServerShowsIt) {
  Store("DECIMAL(10,2)", "-0.5");
  Of<ASVStr> record(10U);
  Read(record);
  EXPECT_EQ(record.value.getstr(), "-0.50");
}

TEST_F(Fetch, TextEndsAtItsFirstNul) {
  Store("VARCHAR(20)", "'before\\0after'");
  Of<ASVStr> record(20U);
  Read(record);
  EXPECT_EQ(record.value.getstr(), "before");
}

std::string BytesOf(Blob const& value) { return {reinterpret_cast<char const*>(value.Bytes()), value.Length()}; }

std::string BytesOf(RealBlob const& value) { return {static_cast<char const*>(value.voidptr()), value.Length()}; }

TEST_F(Fetch, SmallBinaryIsReadWithItsNuls) {
  Store("VARBINARY(10)", "X'00FF270000'");
  Of<ASBlob> record(std::uint16_t{10});
  Read(record);
  EXPECT_EQ(BytesOf(record.value), std::string("\x00\xFF'\x00\x00", 5));
}

TEST_F(Fetch, SmallBinaryLongerThanTheCapacityIsCut) {
  Store("VARBINARY(10)", "X'0001020304050607'");
  Of<ASBlob> record(std::uint16_t{4});
  Read(record);
  EXPECT_EQ(BytesOf(record.value), std::string("\x00\x01\x02\x03", 4));
}

TEST_F(Fetch, ShorterSmallBinaryLeavesNothingOfALongerOne) {
  Store("VARBINARY(10)", "X'01'");
  Of<ASBlob> record(std::uint16_t{4});
  record.value.Fill("abcd", 4);
  Read(record);
  EXPECT_EQ(BytesOf(record.value), "\x01");
  EXPECT_EQ(std::memcmp(record.value.voidptr(), "\x01\x00\x01\x00\x00\x00", 6), 0);
}

TEST_F(Fetch, EmptySmallBinaryIsNull) {
  Store("VARBINARY(10)", "''");
  Of<ASBlob> record(std::uint16_t{4});
  record.value.Fill("abcd", 4);
  Read(record);
  EXPECT_EQ(record.value.IsNull(), 1);
}

TEST_F(Fetch, LargeBinaryIsReadWithItsNulsWhateverTheCapacity) {
  Store("LONGBLOB", "X'00FF27000000'");
  Of<ASRealBlob> record(2U);
  Read(record);
  EXPECT_EQ(BytesOf(record.value), std::string("\x00\xFF'\x00\x00\x00", 6));
}

TEST_F(Fetch, EmptyLargeBinaryIsNotNull) {
  Store("LONGBLOB", "''");
  Of<ASRealBlob> record(0U);
  Read(record);
  EXPECT_EQ(record.value.IsNull(), 0);
  EXPECT_EQ(record.value.Length(), 0U);
}

TEST_F(Fetch, GeometryIsReadAsWellKnownBinary) {
  Store("GEOMETRY", "ST_GeomFromText('POINT(1 2)')");
  Of<ASGeometry> record(std::uint16_t{100});
  Read(record);
  EXPECT_EQ(BytesOf(record.value), std::string("\x01\x01\x00\x00\x00"
                                               "\x00\x00\x00\x00\x00\x00\xF0\x3F"
                                               "\x00\x00\x00\x00\x00\x00\x00\x40",
                                               21));
}

TEST_F(Fetch, GeometryLongerThanTheCapacityIsCut) {
  Store("GEOMETRY", "ST_GeomFromText('POINT(1 2)')");
  Of<ASGeometry> record(std::uint16_t{5});
  Read(record);
  EXPECT_EQ(BytesOf(record.value), std::string("\x01\x01\x00\x00\x00", 5));
}

struct GuidColumn {
  char const* name;
  char const* columnType;
  char const* value;
};

void PrintTo(GuidColumn const& column, std::ostream* out) { *out << column.value << " in " << column.columnType; }

class FetchGuid : public Fetch, public ::testing::WithParamInterface<GuidColumn> {};

TEST_P(FetchGuid, ReadsTheColumn) {
  Store(GetParam().columnType, GetParam().value);
  Of<ASGuid> record;
  Read(record);
  EXPECT_EQ(record.value.IsNull(), 0);
  EXPECT_EQ(record.value.getstr(), "6f9619ff-8b86-d011-b42d-00c04fc964ff");
}

INSTANTIATE_TEST_SUITE_P(
    Of, FetchGuid,
    ::testing::Values(GuidColumn{"Plain", "CHAR(36)", "'6f9619ff-8b86-d011-b42d-00c04fc964ff'"},
                      GuidColumn{"InCapitalsAndBraces", "CHAR(38)", "'{6F9619FF-8B86-D011-B42D-00C04FC964FF}'"},
                      GuidColumn{"WithoutDashes", "CHAR(32)", "'6f9619ff8b86d011b42d00c04fc964ff'"}),
    [](auto const& column) { return column.param.name; });

TEST_F(Fetch, TextThatIsNoGuidReadsAsNull) {
  Store("CHAR(36)", "'not a guid'");
  Of<ASGuid> record;
  record.value = Guid(1, 2);
  Read(record);
  EXPECT_EQ(record.value.IsNull(), 1);
  EXPECT_EQ(record.value.getstr(), "00000000-0000-0000-0000-000000000000");
}

}  // namespace
