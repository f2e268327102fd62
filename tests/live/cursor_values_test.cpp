#include <gmock/gmock.h>

#include <climits>
#include <cstdint>
#include <memory>
#include <ostream>
#include <random>
#include <string>
#include <vector>

#include "tests/support/live.h"

using corvane::test::Field;
using corvane::test::LiveTest;
using corvane::test::Row;
using corvane::test::Rows;
using corvane::test::Session;
using ::testing::ElementsAre;

// What a cursor reads into a value of each kind.

namespace {

Field const kNull;

// What a value holds: its bytes, or its text.
Field FieldOf(ASData const& value) {
  if (value.IsNull() != 0) return kNull;
  if (auto const* const small = dynamic_cast<Blob const*>(&value)) {
    return std::string(reinterpret_cast<char const*>(small->Bytes()), small->Length());
  }
  if (auto const* const large = dynamic_cast<RealBlob const*>(&value)) {
    return std::string(static_cast<char const*>(large->voidptr()), large->Length());
  }
  return value.getstr().ToString();
}

Row FieldsOf(ASDomain const& record) {
  Row row;
  for (ASAttribute const* const attribute : record) row.push_back(FieldOf(*attribute->Data()));
  return row;
}

// The same without the blanks that fill up a text of fixed width.
Row TrimmedFieldsOf(ASDomain const& record) {
  for (ASAttribute const* const attribute : record) attribute->Data()->Trim();
  return FieldsOf(record);
}

// All byte values in turn, as often as it takes.
std::string EveryByte(std::size_t length) {
  std::string bytes;
  for (std::size_t i = 0; i < length; ++i) bytes.push_back(static_cast<char>(i % 256));
  return bytes;
}

std::string Hex(std::string const& bytes) {
  constexpr char const* kDigits = "0123456789ABCDEF";
  std::string text = "X'";
  for (char const byte : bytes) {
    auto const number = static_cast<unsigned char>(byte);
    text += kDigits[number / 16];
    text += kDigits[number % 16];
  }
  return text + "'";
}

// Well-known binary of POINT(1 2), and of POLYGON((0 0,1 0,1 2,0 0)).
std::string const kPoint(
    "\x01\x01\x00\x00\x00"
    "\x00\x00\x00\x00\x00\x00\xF0\x3F"
    "\x00\x00\x00\x00\x00\x00\x00\x40",
    21);
std::string const kPolygon(
    "\x01\x03\x00\x00\x00\x01\x00\x00\x00\x04\x00\x00\x00"
    "\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00"
    "\x00\x00\x00\x00\x00\x00\xF0\x3F\x00\x00\x00\x00\x00\x00\x00\x00"
    "\x00\x00\x00\x00\x00\x00\xF0\x3F\x00\x00\x00\x00\x00\x00\x00\x40"
    "\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00",
    77);
constexpr char const* kGuid = "6f9619ff-8b86-d011-b42d-00c04fc964ff";

using Maker = std::unique_ptr<ASData> (*)();

template <class Column>
std::unique_ptr<ASData> Make() {
  return std::make_unique<Column>();
}
template <class Column, unsigned capacity>
std::unique_ptr<ASData> MakeSized() {
  return std::make_unique<Column>(capacity);
}
template <class Column, std::uint16_t capacity>
std::unique_ptr<ASData> MakeSmall() {
  return std::make_unique<Column>(capacity);
}

// A record of one value, in the table `t`.
struct Single : ASDomain {
  ASInt id{};
  std::unique_ptr<ASData> value;
  ASAttribute idColumn{"id", "Id", 0, corvane::kKey};
  ASAttribute valueColumn{"value"};

  explicit Single(Maker make) : ASDomain("t", "T"), value(make()) { Add(idColumn, id).Add(valueColumn, *value); }
  Single(Single const&) = delete;
  Single& operator=(Single const&) = delete;
};

class CursorValues : public LiveTest {
 protected:
  void CreateTables() override { Run("SET sql_mode=''"); }  // of the observer: 0 for a date
  // Makes the table with the value in the rows 1 and 3, and NULL in row 2.
  void Store(std::string const& columnType, std::string const& literal) {
    Run("CREATE TABLE t (id INT PRIMARY KEY, value " + columnType + ")");
    Run("INSERT INTO t VALUES (1, " + literal + "), (2, NULL), (3, " + literal + ")");
  }
};

// A column of the server's, what is stored in it, and what is read from it into a value.
struct Stored {
  char const* name;
  Maker make;
  char const* columnType;
  std::string literal;
  Field read;
};

void PrintTo(Stored const& stored, std::ostream* out) { *out << stored.name << " in " << stored.columnType; }
std::string NameOf(::testing::TestParamInfo<Stored> const& info) { return info.param.name; }

class CursorValue : public CursorValues, public ::testing::WithParamInterface<Stored> {
 protected:
  void CreateTables() override {
    CursorValues::CreateTables();
    Store(GetParam().columnType, GetParam().literal);
  }
};

TEST_P(CursorValue, IsReadBeforeAndBehindANull) {
  Session session(With());
  Single record(GetParam().make);
  ASCursor cursor(&session);
  cursor.Project() << record.valueColumn;
  cursor.Order(ASOrder(record.idColumn.Query()));
  cursor.Where(record.idColumn > 0);
  std::vector<Field> read;
  while (cursor.Fetch()) read.push_back(FieldOf(*record.value));
  EXPECT_THAT(read, ElementsAre(GetParam().read, kNull, GetParam().read));
}

TEST_P(CursorValue, IsReadAsByARecordSelect) {
  Session session(With());
  Single selected(GetParam().make);
  selected.id = 1;
  ASSERT_EQ(session.Select(selected), 1);
  Single fetched(GetParam().make);
  ASCursor cursor(&session);
  cursor.Where(fetched.idColumn == 1);
  ASSERT_EQ(cursor.Fetch(fetched), 1);
  EXPECT_EQ(TrimmedFieldsOf(fetched), TrimmedFieldsOf(selected));
}

// A number beyond 32 bits keeps its low 32 bits; -2147483648 is the number that stands for NULL.
INSTANTIATE_TEST_SUITE_P(
    Int, CursorValue,
    ::testing::Values(Stored{"TinyInt", Make<ASInt>, "TINYINT", "-128", "-128"},
                      Stored{"UnsignedTinyInt", Make<ASInt>, "TINYINT UNSIGNED", "255", "255"},
                      Stored{"Bool", Make<ASInt>, "BOOL", "FALSE", "0"},
                      Stored{"SmallInt", Make<ASInt>, "SMALLINT", "-32768", "-32768"},
                      Stored{"UnsignedSmallInt", Make<ASInt>, "SMALLINT UNSIGNED", "65535", "65535"},
                      Stored{"MediumInt", Make<ASInt>, "MEDIUMINT", "-8388608", "-8388608"},
                      Stored{"UnsignedMediumInt", Make<ASInt>, "MEDIUMINT UNSIGNED", "16777215", "16777215"},
                      Stored{"Largest", Make<ASInt>, "INT", "2147483647", "2147483647"},
                      Stored{"Smallest", Make<ASInt>, "INT", "-2147483647", "-2147483647"},
                      Stored{"NumberOfNull", Make<ASInt>, "INT", "-2147483648", kNull},
                      Stored{"UnsignedInt", Make<ASInt>, "INT UNSIGNED", "4294967295", "-1"},
                      Stored{"BigInt", Make<ASInt>, "BIGINT", "4294967297", "1"},
                      Stored{"ZeroFilled", Make<ASInt>, "INT(6) ZEROFILL", "42", "42"},
                      Stored{"Year", Make<ASInt>, "YEAR", "2024", "2024"},
                      Stored{"DecimalWithoutItsFraction", Make<ASInt>, "DECIMAL(10,2)", "12.99", "12"},
                      Stored{"TextWithDigits", Make<ASInt>, "VARCHAR(10)", "' 12abc'", "12"},
                      Stored{"TextWithoutDigits", Make<ASInt>, "VARCHAR(10)", "'abc'", "0"}),
    NameOf);

INSTANTIATE_TEST_SUITE_P(
    Int64, CursorValue,
    ::testing::Values(Stored{"Largest", Make<ASInt64>, "BIGINT", "9223372036854775807", "9223372036854775807"},
                      Stored{"Smallest", Make<ASInt64>, "BIGINT", "-9223372036854775808", "-9223372036854775808"},
                      Stored{"Zero", Make<ASInt64>, "BIGINT", "0", "0"},
                      Stored{"UnsignedInt", Make<ASInt64>, "INT UNSIGNED", "4294967295", "4294967295"},
                      Stored{"UnsignedBeyond63Bits", Make<ASInt64>, "BIGINT UNSIGNED", "18446744073709551615",
                             "9223372036854775807"}),
    NameOf);

INSTANTIATE_TEST_SUITE_P(
    Double, CursorValue,
    ::testing::Values(Stored{"Double", Make<ASDouble>, "DOUBLE", "0.30000000000000004", "0.30000000000000004"},
                      Stored{"Zero", Make<ASDouble>, "DOUBLE", "0", "0"},
                      Stored{"Exponent", Make<ASDouble>, "DOUBLE", "-1e300", "-1e+300"},
                      Stored{"Lowest", Make<ASDouble>, "DOUBLE", "-1.7976931348623157e308", kNull},
                      Stored{"Float", Make<ASDouble>, "FLOAT", "1.5", "1.5"},
                      Stored{"Decimal", Make<ASDouble>, "DECIMAL(20,4)", "1234567890.1234", "1234567890.1234"},
                      Stored{"Int", Make<ASDouble>, "INT", "-7", "-7"},
                      Stored{"Text", Make<ASDouble>, "VARCHAR(10)", "' 2.5 EUR'", "2.5"}),
    NameOf);

INSTANTIATE_TEST_SUITE_P(Currency, CursorValue,
                         ::testing::Values(Stored{"Decimal", Make<ASDCurrency>, "DECIMAL(12,2)", "19.99", "19.99"},
                                           Stored{"NegativeDecimal", Make<ASDCurrency>, "DECIMAL(12,2)", "-0.50",
                                                  "-0.5"},
                                           Stored{"Zero", Make<ASDCurrency>, "DECIMAL(12,2)", "0", "0"},
                                           Stored{"Double", Make<ASDCurrency>, "DOUBLE", "0.1", "0.1"},
                                           Stored{"Int", Make<ASDCurrency>, "INT", "1000000", "1000000"}),
                         NameOf);

// Capacities are in bytes. A text of fixed width is filled up with blanks.
INSTANTIATE_TEST_SUITE_P(
    Text, CursorValue,
    ::testing::Values(
        Stored{"Char", MakeSized<ASStr, 10>, "CHAR(10)", "'ab'", "ab        "},
        Stored{"CharOfTheCapacity", MakeSized<ASStr, 2>, "CHAR(10)", "'ab'", "ab"},
        Stored{"CharLongerThanTheCapacity", MakeSized<ASStr, 5>, "CHAR(10)", "'abcdefghij'", "abcde"},
        Stored{"VarcharInFixedWidth", MakeSized<ASStr, 5>, "VARCHAR(100)", "'abc'", "abc  "},
        Stored{"Varchar", MakeSized<ASVStr, 10>, "VARCHAR(10)", "'ab'", "ab"},
        Stored{"VarcharWithBlanks", MakeSized<ASVStr, 10>, "VARCHAR(10)", "' ab\t  '", " ab\t  "},
        Stored{"Empty", MakeSized<ASVStr, 10>, "VARCHAR(10)", "''", ""},
        Stored{"WithoutCapacity", MakeSized<ASVStr, 0>, "VARCHAR(10)", "'ab'", ""},
        Stored{"OfTheCapacity", MakeSized<ASVStr, 5>, "VARCHAR(100)", "'abcde'", "abcde"},
        Stored{"LongerThanTheCapacity", MakeSized<ASVStr, 5>, "VARCHAR(100)", "'abcdef'", "abcde"},
        Stored{"ThreeBytesEach", MakeSized<ASVStr, 12>, "VARCHAR(4)", "'\xE6\x97\xA5\xE6\x9C\xAC'",
               "\xE6\x97\xA5\xE6\x9C\xAC"},
        Stored{"FourBytes", MakeSized<ASVStr, 4>, "VARCHAR(4)", "'\xF0\x9F\x98\x80'", "\xF0\x9F\x98\x80"},
        Stored{"LatinTakesTwoBytesEach", MakeSized<ASVStr, 10>, "VARCHAR(5) CHARACTER SET latin1",
               "'\xC3\xA4\xC3\xB6\xC3\xBC'", "\xC3\xA4\xC3\xB6\xC3\xBC"},
        Stored{"CutInsideACharacter", MakeSized<ASVStr, 3>, "VARCHAR(4)", "'\xC3\xA4\xC3\xB6'", "\xC3\xA4\xC3"},
        Stored{"CutInsideACharacterOfFixedWidth", MakeSized<ASStr, 3>, "CHAR(4)", "'\xC3\xA4\xC3\xB6'", "\xC3\xA4\xC3"},
        Stored{"Text", MakeSized<ASVStr, 65535>, "TEXT", "REPEAT('x', 65535)", std::string(65535, 'x')},
        Stored{"LongText", MakeSized<ASVStr, 1048576>, "LONGTEXT", "REPEAT('ab', 524288)",
               [] {
                 std::string text;
                 for (int i = 0; i < 524288; ++i) text += "ab";
                 return text;
               }()},
        Stored{"UpToItsFirstNul", MakeSized<ASVStr, 20>, "VARCHAR(20)", "'before\\0after'", "before"},
        Stored{"Enum", MakeSized<ASVStr, 10>, "ENUM('small', 'large')", "'large'", "large"},
        Stored{"Set", MakeSized<ASVStr, 10>, "SET('a', 'b', 'c')", "'a,c'", "a,c"},
        Stored{"Number", MakeSized<ASVStr, 10>, "DECIMAL(10,2)", "-0.5", "-0.50"},
        Stored{"NumberLongerThanTheCapacity", MakeSized<ASStr, 1>, "INT", "10000", "1"},
        Stored{"FarDate", MakeSized<ASVStr, 19>, "DATETIME", "'9999-12-31 23:59:59'", "9999-12-31 23:59:59"}),
    NameOf);

INSTANTIATE_TEST_SUITE_P(
    Time, CursorValue,
    ::testing::Values(Stored{"DateTime", Make<ASTime>, "DATETIME", "'2004-07-01 13:45:00'", "2004-07-01 13:45:00"},
                      Stored{"Timestamp", Make<ASTime>, "TIMESTAMP NULL", "'2004-07-01 13:45:00'",
                             "2004-07-01 13:45:00"},
                      Stored{"TimestampWithoutItsFraction", Make<ASTime>, "TIMESTAMP(3) NULL",
                             "'2004-07-01 13:45:00.999'", "2004-07-01 13:45:00"},
                      Stored{"DateTimeWithoutItsFraction", Make<ASTime>, "DATETIME(6)", "'2004-07-01 13:45:59.999999'",
                             "2004-07-01 13:45:59"},
                      Stored{"DateAlone", Make<ASTime>, "DATE", "'2004-07-01'", kNull},
                      Stored{"TimeAlone", Make<ASTime>, "TIME", "'13:45:00'", kNull},
                      Stored{"ZeroDateTime", Make<ASTime>, "DATETIME", "'0000-00-00 00:00:00'", kNull},
                      Stored{"ZeroDay", Make<ASTime>, "DATETIME", "'2004-07-00 00:00:00'", kNull},
                      Stored{"Epoch", Make<ASTime>, "DATETIME", "'1970-01-01 00:00:00'", "1970-01-01 00:00:00"},
                      Stored{"LeapDay", Make<ASTime>, "DATETIME", "'2000-02-29 23:59:59'", "2000-02-29 23:59:59"},
                      Stored{"First", Make<ASTime>, "DATETIME", "'1901-12-13 20:45:53'", "1901-12-13 20:45:53"},
                      Stored{"Last", Make<ASTime>, "DATETIME", "'2038-01-19 03:14:07'", "2038-01-19 03:14:07"},
                      Stored{"NumberOfNull", Make<ASTime>, "DATETIME", "'2038-01-19 03:14:08'", kNull},
                      Stored{"Far", Make<ASTime>, "DATETIME", "'9999-12-31 23:59:59'", "1969-12-23 02:12:15"},
                      Stored{"Text", Make<ASTime>, "VARCHAR(20)", "'2004-07-01T13:45:00Z'", "2004-07-01 13:45:00"}),
    NameOf);

INSTANTIATE_TEST_SUITE_P(
    Guid, CursorValue,
    ::testing::Values(Stored{"Plain", Make<ASGuid>, "CHAR(36)", "'6f9619ff-8b86-d011-b42d-00c04fc964ff'", kGuid},
                      Stored{"InCapitalsAndBraces", Make<ASGuid>, "CHAR(38)",
                             "'{6F9619FF-8B86-D011-B42D-00C04FC964FF}'", kGuid},
                      Stored{"WithoutDashes", Make<ASGuid>, "CHAR(32)", "'6f9619ff8b86d011b42d00c04fc964ff'", kGuid},
                      Stored{"Zero", Make<ASGuid>, "CHAR(36)", "'00000000-0000-0000-0000-000000000000'",
                             "00000000-0000-0000-0000-000000000000"},
                      Stored{"NoGuid", Make<ASGuid>, "CHAR(36)", "'not a guid'", kNull}),
    NameOf);

// A large binary takes any length, whatever its capacity.
INSTANTIATE_TEST_SUITE_P(
    LargeBinary, CursorValue,
    ::testing::Values(
        Stored{"TinyBlob", MakeSized<ASRealBlob, 0>, "TINYBLOB", Hex(EveryByte(255)), EveryByte(255)},
        Stored{"Blob", MakeSized<ASRealBlob, 2>, "BLOB", Hex(EveryByte(256)), EveryByte(256)},
        Stored{"MediumBlob", MakeSized<ASRealBlob, 0>, "MEDIUMBLOB", Hex(EveryByte(70000)), EveryByte(70000)},
        Stored{"LongBlob", MakeSized<ASRealBlob, 0>, "LONGBLOB", "REPEAT(" + Hex(EveryByte(256)) + ", 4096)",
               EveryByte(1048576)},
        Stored{"Varbinary", MakeSized<ASRealBlob, 0>, "VARBINARY(10)", "X'00FF2700'", std::string("\x00\xFF'\x00", 4)},
        Stored{"Empty", MakeSized<ASRealBlob, 3>, "LONGBLOB", "''", ""}),
    NameOf);

INSTANTIATE_TEST_SUITE_P(SmallBinary, CursorValue,
                         ::testing::Values(Stored{"Varbinary", MakeSmall<ASBlob, 256>, "VARBINARY(256)",
                                                  Hex(EveryByte(256)), EveryByte(256)},
                                           Stored{"OnlyNuls", MakeSmall<ASBlob, 10>, "VARBINARY(10)", "X'000000'",
                                                  std::string(3, '\0')},
                                           Stored{"BinaryIsFilledWithNuls", MakeSmall<ASBlob, 10>, "BINARY(4)", "X'FF'",
                                                  std::string("\xFF\x00\x00\x00", 4)},
                                           Stored{"LongerThanTheCapacity", MakeSmall<ASBlob, 4>, "VARBINARY(10)",
                                                  "X'0001020304'", std::string("\x00\x01\x02\x03", 4)},
                                           Stored{"LargestOfAll", MakeSmall<ASBlob, 65535>, "LONGBLOB",
                                                  Hex(EveryByte(70000)), EveryByte(65535)},
                                           Stored{"EmptyIsNull", MakeSmall<ASBlob, 4>, "VARBINARY(10)", "''", kNull}),
                         NameOf);

INSTANTIATE_TEST_SUITE_P(Geometry, CursorValue,
                         ::testing::Values(Stored{"Point", MakeSmall<ASGeometry, 100>, "POINT",
                                                  "ST_GeomFromText('POINT(1 2)')", kPoint},
                                           Stored{"Polygon", MakeSmall<ASGeometry, 100>, "POLYGON",
                                                  "ST_GeomFromText('POLYGON((0 0,1 0,1 2,0 0))')", kPolygon},
                                           Stored{"PointInAGeometryColumn", MakeSmall<ASGeometry, 21>, "GEOMETRY",
                                                  "ST_GeomFromText('POINT(1 2)')", kPoint},
                                           Stored{"OtherReferenceSystem", MakeSmall<ASGeometry, 100>, "GEOMETRY",
                                                  "ST_GeomFromText('POINT(1 2)', 3857)", kPoint},
                                           Stored{"LongerThanTheCapacity", MakeSmall<ASGeometry, 5>, "GEOMETRY",
                                                  "ST_GeomFromText('POINT(1 2)')", kPoint.substr(0, 5)}),
                         NameOf);

// What no record Select reads.

TEST_F(CursorValues, WellKnownBinaryFromAnExpressionIsReadWhole) {
  Store("GEOMETRY", "ST_GeomFromText('POLYGON((0 0,1 0,1 2,0 0))')");
  Session session(With());
  Single record(MakeSmall<ASGeometry, 100>);
  ASGroupAttribute const bytes = record.valueColumn.Expression(Str("ST_AsBinary(") + record.valueColumn.Query() + ")");
  ASCursor cursor(&session);
  cursor.Project() << bytes;
  cursor.Where(record.idColumn != 3);
  cursor.Order(ASOrder("1 DESC"));
  ASSERT_EQ(cursor.Fetch(), 1);
  EXPECT_EQ(FieldOf(*record.value), kPolygon);
  ASSERT_EQ(cursor.Fetch(), 2);
  EXPECT_EQ(FieldOf(*record.value), kNull);
}

TEST_F(CursorValues, WellKnownBinaryInABlobIsReadWhole) {
  Store("BLOB", Hex(kPoint));
  Session session(With());
  Single record(MakeSmall<ASGeometry, 100>);
  ASCursor cursor(&session);
  ASSERT_EQ(cursor.Fetch(record), 1);
  EXPECT_EQ(FieldOf(*record.value), kPoint);
}

TEST_F(CursorValues, GeometryColumnInASmallBinaryKeepsItsReferenceSystem) {
  Store("GEOMETRY", "ST_GeomFromText('POINT(1 2)')");
  Session session(With());
  Single record(MakeSmall<ASBlob, 100>);
  ASCursor cursor(&session);
  ASSERT_EQ(cursor.Fetch(record), 1);
  EXPECT_EQ(FieldOf(*record.value), std::string(4, '\0') + kPoint);
}

TEST_F(CursorValues, LargeBinaryIsReadAgainAsOftenAsItIsAskedFor) {
  Store("LONGBLOB", "X'010203'");
  Session session(With());
  Single record(MakeSized<ASRealBlob, 0>);
  ASCursor cursor(&session);
  cursor.Fetch(record);
  record.value->SetNull();
  cursor.Fetch(0);
  EXPECT_EQ(FieldOf(*record.value), "\x01\x02\x03");
}

TEST_F(CursorValues, LargeBinaryOutlivesItsCursor) {
  Store("LONGBLOB", Hex(EveryByte(256)));
  Session session(With());
  Single record(MakeSized<ASRealBlob, 0>);
  {
    ASCursor cursor(&session);
    cursor.Fetch(record);
  }
  EXPECT_EQ(FieldOf(*record.value), EveryByte(256));
}

// All kinds side by side.

struct Mixed : ASDomain {
  static constexpr char const* kTable =
      "CREATE TABLE mixed (id INT PRIMARY KEY, number INT, big BIGINT, real_number DOUBLE, price DOUBLE, moment "
      "DATETIME, fixed CHAR(8), text VARCHAR(40), guid CHAR(36), large LONGBLOB, small VARBINARY(10), place GEOMETRY)";
  // What is stored, a geometry as it is read.
  static constexpr char const* kStored =
      "SELECT id, number, big, real_number, price, moment, fixed, text, guid, large, small, ST_AsBinary(place) FROM "
      "mixed ORDER BY id";

  ASInt id{}, number{};
  ASInt64 big{};
  ASDouble real{};
  ASDCurrency price{};
  ASTime moment{};
  ASStr fixed{8U};
  ASVStr text{40U};
  ASGuid guid{};
  ASRealBlob large{0U};
  ASBlob small{std::uint16_t{10}};
  ASGeometry place{std::uint16_t{100}};
  ASAttribute idColumn{"id", "Id", 0, corvane::kKey};
  ASAttribute numberColumn{"number"}, bigColumn{"big"}, realColumn{"real_number"}, priceColumn{"price"},
      momentColumn{"moment"}, fixedColumn{"fixed"}, textColumn{"text"}, guidColumn{"guid"}, largeColumn{"large"},
      smallColumn{"small"}, placeColumn{"place"};

  Mixed() : ASDomain("mixed", "Mixed") {
    Add(idColumn, id).Add(numberColumn, number).Add(bigColumn, big).Add(realColumn, real).Add(priceColumn, price);
    Add(momentColumn, moment).Add(fixedColumn, fixed).Add(textColumn, text).Add(guidColumn, guid);
    Add(largeColumn, large).Add(smallColumn, small).Add(placeColumn, place);
  }
  Mixed(Mixed const&) = delete;
  Mixed& operator=(Mixed const&) = delete;
};

constexpr char const* kFullRow =
    "-7, 9007199254740993, 0.25, 19.5, '2004-07-01 13:45:00', 'ab', 'O\\'Brien', "
    "'6f9619ff-8b86-d011-b42d-00c04fc964ff', X'00FF00', X'010200', ST_GeomFromText('POINT(1 2)')";
constexpr char const* kEmptyRow = "NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL";

class CursorMixedValues : public LiveTest {
 protected:
  void CreateTables() override { Run(Mixed::kTable); }
  void Store(int id, std::string const& values) {
    Run("INSERT INTO mixed VALUES (" + std::to_string(id) + ", " + values + ")");
  }
};

TEST_F(CursorMixedValues, EveryColumnArrivesInItsValue) {
  Store(1, kFullRow);
  Session session(With());
  Mixed record;
  ASCursor cursor(&session);
  ASSERT_EQ(cursor.Fetch(record), 1);
  EXPECT_EQ(FieldsOf(record),
            (Row{"1", "-7", "9007199254740993", "0.25", "19.5", "2004-07-01 13:45:00", "ab      ", "O'Brien", kGuid,
                 std::string("\x00\xFF\x00", 3), std::string("\x01\x02\x00", 3), kPoint}));
}

TEST_F(CursorMixedValues, EveryColumnOfAnEmptyRowIsNull) {
  Store(1, kFullRow);
  Store(2, kEmptyRow);
  Session session(With());
  Mixed record;
  ASCursor cursor(&session);
  cursor.Order(ASOrder(record.idColumn.Query()));
  cursor.Fetch(record);
  ASSERT_EQ(cursor.Fetch(record), 2);
  EXPECT_EQ(FieldsOf(record), (Row{"2", kNull, kNull, kNull, kNull, kNull, kNull, kNull, kNull, kNull, kNull, kNull}));
}

TEST_F(CursorMixedValues, WhatARecordInsertStoredIsRead) {
  Session session(With());
  Mixed stored;
  stored.id = 1;
  stored.number = -42;
  stored.big = INT64_MAX;
  stored.real = 1234567.891;
  stored.price = 19.99;
  stored.moment = 1088689500;
  stored.fixed = "O'Brien";
  stored.text = "back\\slash \"\xE6\x97\xA5\"\n\r\x1A";
  stored.guid = Guid(kGuid);
  stored.large = RealBlob(256, EveryByte(256).data(), Copy);
  stored.place.Fill(kPolygon.data(), kPolygon.size());
  session.Insert(stored);
  Mixed fetched;
  ASCursor cursor(&session);
  ASSERT_EQ(cursor.Fetch(fetched), 1);
  EXPECT_EQ(FieldsOf(fetched), FieldsOf(stored));
}

TEST_F(CursorMixedValues, RowsAreReadInAnyOrderAndAgain) {
  Store(1, kFullRow);
  Store(2, kEmptyRow);
  Store(3, kFullRow);
  Session session(With());
  Mixed record;
  ASCursor cursor(&session);
  cursor.Order(ASOrder(record.idColumn.Query()));
  cursor.Fetch(record);
  Row first = FieldsOf(record);
  cursor.Fetch(1);
  cursor.Fetch(0);
  EXPECT_EQ(FieldsOf(record), first);
  first[0] = "3";
  cursor.Fetch(2);
  EXPECT_EQ(FieldsOf(record), first);
}

TEST_F(CursorMixedValues, BinaryIsReadWhenTheLastColumnIsNone) {
  Store(1, kFullRow);
  Session session(With());
  Mixed record;
  ASCursor cursor(&session);
  cursor.Project() << record.largeColumn << record.smallColumn << record.idColumn;
  ASSERT_EQ(cursor.Fetch(), 1);
  EXPECT_EQ(FieldOf(record.large), std::string("\x00\xFF\x00", 3));
  EXPECT_EQ(FieldOf(record.small), std::string("\x01\x02\x00", 3));
  EXPECT_EQ(FieldOf(record.id), "1");
}

TEST_F(CursorMixedValues, TextsThatAreCutLeaveTheirNeighboursAlone) {
  Run("CREATE TABLE words (id INT PRIMARY KEY, a VARCHAR(100), b VARCHAR(100), n BIGINT)");
  Run("INSERT INTO words VALUES (1, REPEAT('a', 100), REPEAT('b', 100), 1), (2, REPEAT('c', 100), 'd', 2)");
  Session session(With());
  ASDomain words("words", "Words");
  ASVStr a(3);
  ASStr b(2);
  ASInt64 n;
  ASAttribute aColumn("a"), bColumn("b"), nColumn("n");
  words.Add(aColumn, a).Add(bColumn, b).Add(nColumn, n);
  ASCursor cursor(&session);
  cursor.Order(ASOrder(nColumn.Query()));
  cursor.Fetch(words);
  EXPECT_EQ(FieldsOf(words), (Row{"aaa", "bb", "1"}));
  cursor.Fetch(words);
  EXPECT_EQ(FieldsOf(words), (Row{"ccc", "d ", "2"}));
}

// Literals of a random row; each value is NULL now and then.
class RandomRows {
 public:
  std::string Next() {
    std::string values = Maybe(std::to_string(Number(-INT_MAX, INT_MAX)));
    auto const add = [&](std::string const& literal) { values += ", " + Maybe(literal); };
    add(std::to_string(Number(-INT64_MAX, INT64_MAX)));
    add(Eighths());
    add(Eighths());
    add("'" + ASTime(static_cast<int>(Number(-INT_MAX, INT_MAX))).getstr().ToString() + "'");
    add("'" + Letters(8) + "'");
    add("CONVERT(" + Hex(Letters(20) + "\xC3\xA4'\\ \n") + " USING utf8mb4)");
    add("'" + Guid(Word(), Word()).getstr().ToString() + "'");
    add(Hex(Bytes(0, 300)));
    add(Hex(Bytes(1, 10)));
    add("ST_GeomFromText('POINT(" + Eighths() + " " + Eighths() + ")')");
    return values;
  }

 private:
  std::int64_t Number(std::int64_t least, std::int64_t most) {
    return std::uniform_int_distribution<std::int64_t>(least, most)(engine_);
  }
  std::uint64_t Word() { return static_cast<std::uint64_t>(Number(INT64_MIN, INT64_MAX)); }
  std::string Maybe(std::string const& literal) { return Number(1, 4) == 1 ? "NULL" : literal; }
  std::string Eighths() { return Double(static_cast<double>(Number(-100000, 100000)) / 8).getstr().ToString(); }
  std::string Letters(int most) {
    std::string text;
    for (std::int64_t n = Number(1, most); n > 0; --n) text.push_back(static_cast<char>(Number('a', 'z')));
    return text;
  }
  std::string Bytes(int least, int most) {
    std::string bytes;
    for (std::int64_t n = Number(least, most); n > 0; --n) bytes.push_back(static_cast<char>(Number(-128, 127)));
    return bytes;
  }

  std::mt19937 engine_{20040701};
};

class CursorRandomValues : public CursorMixedValues {
 protected:
  static constexpr int kRows = 200;

  void CreateTables() override {
    CursorMixedValues::CreateTables();
    RandomRows random;
    for (int id = 1; id <= kRows; ++id) Store(id, random.Next());
  }
};

TEST_F(CursorRandomValues, AreWhatTheServerHolds) {
  Session session(With());
  Mixed record;
  ASCursor cursor(&session);
  cursor.Order(ASOrder(record.idColumn.Query()));
  Rows read;
  while (cursor.Fetch(record)) read.push_back(TrimmedFieldsOf(record));
  EXPECT_EQ(read, StoredRows(Mixed::kStored));
}

TEST_F(CursorRandomValues, AreThoseThatARecordSelectReads) {
  Session session(With());
  Mixed fetched;
  Mixed selected;
  ASCursor cursor(&session);
  while (cursor.Fetch(fetched)) {
    selected.id = fetched.id;
    ASSERT_EQ(session.Select(selected), 1);
    ASSERT_EQ(TrimmedFieldsOf(fetched), TrimmedFieldsOf(selected));
  }
  EXPECT_EQ(cursor.GetAmount(), kRows);
}

TEST_F(CursorRandomValues, AreThoseThatASessionFetchReads) {
  Session session(With());
  Mixed record;
  Mixed fetched;
  ASCursor cursor(&session);
  cursor.Where(record.idColumn == 17);
  ASSERT_EQ(cursor.Fetch(record), 1);
  session.Execute(
      std::string(Mixed::kStored).replace(std::string(Mixed::kStored).find("ORDER"), 5, "WHERE id=17 ORDER"));
  ASSERT_EQ(session.Fetch(fetched), 1);
  EXPECT_EQ(TrimmedFieldsOf(record), TrimmedFieldsOf(fetched));
}

TEST_F(CursorMixedValues, TenThousandRowsAreRead) {
  Run("CREATE TABLE digit (d INT)");
  Run("INSERT INTO digit VALUES (0), (1), (2), (3), (4), (5), (6), (7), (8), (9)");
  Run("INSERT INTO mixed SELECT a.d + 10 * b.d + 100 * c.d + 1000 * e.d AS n, a.d, b.d, c.d / 2, e.d / 4, NULL, b.d, "
      "REPEAT('x', 4 * a.d), NULL, IF(a.d = 0, NULL, REPEAT(X'00FF', b.d)), CHAR(c.d, e.d, 1), NULL "
      "FROM digit a, digit b, digit c, digit e");
  Session session(With());
  Mixed record;
  ASCursor cursor(&session);
  cursor.Order(ASOrder(record.idColumn.Query()));
  Rows read;
  while (cursor.Fetch(record)) read.push_back(TrimmedFieldsOf(record));
  EXPECT_EQ(read.size(), 10000U);
  EXPECT_TRUE(read == StoredRows(Mixed::kStored));  // without printing what differs
}

}  // namespace
