// The statements of single records: their texts, running them, and reading a row back.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "corvane/corvane.h"
#include "tests/support/scripted_client.h"
#include "tests/support/scripted_session.h"

namespace corvane::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// Builders and runners on a session of their own.
class RecordTest : public ScriptedSession {
 protected:
  void SetUp() override {
    ScriptedSession::SetUp();
    session = &Ready();
  }

  ASSession* session = nullptr;
};

class InsertQuery : public RecordTest {};
class SelectQuery : public RecordTest {};
class UpdateQuery : public RecordTest {};
class DeleteQuery : public RecordTest {};
class SaveQuery : public RecordTest {};
class KeyCondition : public RecordTest {};
class RecordStatement : public RecordTest {};

// ---- records

// One column "c", its value built from the arguments.
template <class Value, int flags>
struct OneColumn : ASDomain {
  Value value;
  ASAttribute column{"c", "", 0, flags};

  template <class... Arguments>
  explicit OneColumn(Arguments... arguments) : ASDomain("t", ""), value(arguments...) {
    Add(column, value);
  }
};

template <class Value>
using Plain = OneColumn<Value, 0>;
template <class Value>
using Key = OneColumn<Value, corvane::kKey>;

struct Item : ASDomain {
  ASInt id;
  ASVStr name{40};
  ASDCurrency price;
  ASTime sold;
  ASAttribute idColumn{"id", "Number", 0, corvane::kKey | corvane::kAutoIncrement};
  ASAttribute nameColumn{"name"};
  ASAttribute priceColumn{"price"};
  ASAttribute soldColumn{"sold"};

  Item() : ASDomain("item", "Item") {
    Add(idColumn, id).Add(nameColumn, name).Add(priceColumn, price).Add(soldColumn, sold);
    id = 7;
    name = "Ball";
    price = 9.5;
  }
};

// Two key columns, with another column between them.
struct Stock : ASDomain {
  ASInt shop;
  ASInt count;
  ASVStr code{8};
  ASAttribute shopColumn{"shop", "Shop", 0, corvane::kKey};
  ASAttribute countColumn{"count"};
  ASAttribute codeColumn{"code", "Code", 0, corvane::kKey};

  Stock() : ASDomain("stock", "Stock") {
    Add(shopColumn, shop).Add(countColumn, count).Add(codeColumn, code);
    shop = 3;
    count = 12;
    code = "a'b";
  }
};

// A geometry beside its key.
struct Parcel : ASDomain {
  ASInt id;
  ASGeometry shape{256};
  ASVStr owner{20};
  ASAttribute idColumn{"id", "Number", 0, corvane::kKey};
  ASAttribute shapeColumn{"shape"};
  ASAttribute ownerColumn{"owner"};

  Parcel() : ASDomain("parcel", "Parcel") { Add(idColumn, id).Add(shapeColumn, shape).Add(ownerColumn, owner); }
};

// Key columns alone.
struct Link : ASDomain {
  ASInt from;
  ASInt to;
  ASAttribute fromColumn{"from", "", 0, corvane::kKey};
  ASAttribute toColumn{"to", "", 0, corvane::kKey};

  Link() : ASDomain("link", "") {
    Add(fromColumn, from).Add(toColumn, to);
    from = 1;
    to = 2;
  }
};

// A column without value between two that have one.
struct WithGap : ASDomain {
  ASInt first;
  ASInt last;
  ASAttribute firstColumn{"first"};
  ASAttribute gap{"gap"};
  ASAttribute lastColumn{"last"};

  WithGap() : ASDomain("t", "") {
    Add(firstColumn, first);
    push_back(&gap);
    gap.Register(nullptr, this);
    Add(lastColumn, last);
    first = 1;
    last = 2;
  }
};

// ---- values of applications

// A column value whose codes are not those of its class.
template <class Column, int type, int dbType>
class Called : public Column {
 public:
  using Column::Column;
  using Column::operator=;
  int GetType() const override { return type; }
  int GetDBType() const override { return dbType; }
};

constexpr int kUnknown = 77;

class Grams : public ASInt {
 public:
  using ASInt::operator=;
  Str getstr() const override { return ASInt::getstr() + " g"; }
};

class LowerCase : public ASVStr {
 public:
  using ASVStr::ASVStr;
  using ASVStr::operator=;
  Str getstr() const override { return ASVStr::getstr().toLower(); }
};

std::string Repeated(char const* text, int count) {
  std::string repeated;
  for (int i = 0; i < count; ++i) repeated += text;
  return repeated;
}

// ---- well-known binary

std::string Bytes(void const* bytes, std::size_t length) { return {static_cast<char const*>(bytes), length}; }

std::string Number(std::uint32_t number) { return Bytes(&number, sizeof number); }

// Byte order and type.
std::string Header(std::uint32_t type) { return "\1" + Number(type); }

std::string Coordinates(std::vector<double> const& coordinates) {
  return Bytes(coordinates.data(), coordinates.size() * sizeof(double));
}

void Fill(ASGeometry& geometry, std::string const& bytes) { geometry.Fill(bytes.data(), bytes.size()); }

constexpr std::uint32_t kPoint = 1;
constexpr std::uint32_t kLine = 2;
constexpr std::uint32_t kPolygon = 3;

// As servers give a polygon of one ring: counts of rings and points before the coordinates.
std::string Triangle() { return Header(kPolygon) + Number(1) + Number(4) + Coordinates({0, 0, 10, 0, 0, 10.5, 0, 0}); }

// ---- INSERT

TEST_F(InsertQuery, ListsColumnsAndValuesInOrderWithoutTheAutoIncrementKey) {
  EXPECT_EQ(session->InsertQuery(Item(), 0),
            "INSERT INTO `item` (`name`, `price`, `sold`) VALUES ('Ball', '9.5', NULL)");
}

TEST_F(InsertQuery, WritesKeysThatAreNotAutoIncremented) {
  EXPECT_EQ(session->InsertQuery(Stock(), 0),
            "INSERT INTO `stock` (`shop`, `count`, `code`) VALUES ('3', '12', 'a\\'b')");
}

TEST_F(InsertQuery, WritesAnAutoIncrementColumnThatIsNoKey) {
  OneColumn<ASInt, corvane::kAutoIncrement> record;
  record.value = 5;
  EXPECT_EQ(session->InsertQuery(record, 0), "INSERT INTO `t` (`c`) VALUES ('5')");
}

TEST_F(InsertQuery, OfAnAutoIncrementKeyAloneHasEmptyLists) {
  OneColumn<ASInt, corvane::kKey | corvane::kAutoIncrement> record;
  record.value = 5;
  EXPECT_EQ(session->InsertQuery(record, 0), "INSERT INTO `t` () VALUES ()");
}

TEST_F(InsertQuery, OfARecordWithoutColumnsHasEmptyLists) {
  EXPECT_EQ(session->InsertQuery(ASDomain("t", ""), 0), "INSERT INTO `t` () VALUES ()");
}

TEST_F(InsertQuery, IsTheSameInEveryMode) {
  Stock const record;
  EXPECT_EQ(session->InsertQuery(record, 1),
            "INSERT INTO `stock` (`shop`, `count`, `code`) VALUES ('3', '12', 'a\\'b')");
  EXPECT_EQ(session->InsertQuery(record, 2),
            "INSERT INTO `stock` (`shop`, `count`, `code`) VALUES ('3', '12', 'a\\'b')");
  EXPECT_EQ(session->InsertQuery(record, 7),
            "INSERT INTO `stock` (`shop`, `count`, `code`) VALUES ('3', '12', 'a\\'b')");
}

TEST_F(InsertQuery, PutsAQualifiedTableNameBetweenOnePairOfQuotes) {
  EXPECT_EQ(session->InsertQuery(ASDomain("shop.items", ""), 0), "INSERT INTO `shop.items` () VALUES ()");
}

TEST_F(InsertQuery, IsTheSameInReadOnlyMode) {
  session->ReadOnly();
  EXPECT_EQ(session->InsertQuery(Item(), 0),
            "INSERT INTO `item` (`name`, `price`, `sold`) VALUES ('Ball', '9.5', NULL)");
}

TEST_F(InsertQuery, LeavesTheRecordAsItIs) {
  Item const record;
  session->InsertQuery(record, 0);
  EXPECT_EQ(record.id.getstr(), "7");
  EXPECT_EQ(record.name.getstr(), "Ball");
  EXPECT_EQ(record.sold.IsNull(), 1);
}

TEST_F(InsertQuery, WritesInts) {
  Plain<ASInt> record;
  record.value = -2147483647;
  EXPECT_EQ(session->InsertQuery(record, 0), "INSERT INTO `t` (`c`) VALUES ('-2147483647')");
}

TEST_F(InsertQuery, WritesInt64s) {
  Plain<ASInt64> record;
  record.value = 9007199254740993L;
  EXPECT_EQ(session->InsertQuery(record, 0), "INSERT INTO `t` (`c`) VALUES ('9007199254740993')");
}

TEST_F(InsertQuery, WritesTheSmallestInt64AsANumber) {
  Plain<ASInt64> record;
  record.value = std::numeric_limits<long>::min();
  EXPECT_EQ(session->InsertQuery(record, 0), "INSERT INTO `t` (`c`) VALUES ('-9223372036854775808')");
}

TEST_F(InsertQuery, WritesDoublesWithAllTheirDigits) {
  Plain<ASDouble> record;
  record.value = 1234567.891;
  EXPECT_EQ(session->InsertQuery(record, 0), "INSERT INTO `t` (`c`) VALUES ('1234567.891')");
}

TEST_F(InsertQuery, WritesDoublesWithTheFewestDigits) {
  Plain<ASDouble> record;
  record.value = 0.1;
  EXPECT_EQ(session->InsertQuery(record, 0), "INSERT INTO `t` (`c`) VALUES ('0.1')");
}

TEST_F(InsertQuery, WritesLargeDoublesWithAnExponent) {
  Plain<ASDouble> record;
  record.value = 1e17;
  EXPECT_EQ(session->InsertQuery(record, 0), "INSERT INTO `t` (`c`) VALUES ('1e+17')");
}

TEST_F(InsertQuery, WritesAmountsOfMoney) {
  Plain<ASDCurrency> record;
  record.value = 100000;
  EXPECT_EQ(session->InsertQuery(record, 0), "INSERT INTO `t` (`c`) VALUES ('100000')");
}

TEST_F(InsertQuery, WritesTimes) {
  Plain<ASTime> const record(1088689500);
  EXPECT_EQ(session->InsertQuery(record, 0), "INSERT INTO `t` (`c`) VALUES ('2004-07-01 13:45:00')");
}

TEST_F(InsertQuery, WritesTextsWithTheirPadding) {
  Plain<ASStr> record(5U);
  record.value = "ab";
  EXPECT_EQ(session->InsertQuery(record, 0), "INSERT INTO `t` (`c`) VALUES ('ab   ')");
}

TEST_F(InsertQuery, WritesVariableTextsWithoutPadding) {
  Plain<ASVStr> record(5U);
  record.value = "ab";
  EXPECT_EQ(session->InsertQuery(record, 0), "INSERT INTO `t` (`c`) VALUES ('ab')");
}

TEST_F(InsertQuery, WritesEmptyTexts) {
  Plain<ASVStr> record(5U);
  record.value = "";
  EXPECT_EQ(session->InsertQuery(record, 0), "INSERT INTO `t` (`c`) VALUES ('')");
}

TEST_F(InsertQuery, EscapesTexts) {
  Plain<ASVStr> record(20U);
  record.value = "'\"\\\n\r\x1A%_";
  EXPECT_EQ(session->InsertQuery(record, 0), "INSERT INTO `t` (`c`) VALUES ('\\'\\\"\\\\\\n\\r\\Z%_')");
}

TEST_F(InsertQuery, EscapesTextsOfFixedWidth) {
  Plain<ASStr> record(8U);
  record.value = "O'Brien";
  EXPECT_EQ(session->InsertQuery(record, 0), "INSERT INTO `t` (`c`) VALUES ('O\\'Brien ')");
}

TEST_F(InsertQuery, LeavesBytesBeyondAsciiAsTheyAre) {
  Plain<ASVStr> record(20U);
  record.value = "Gr\xC3\xBC\xC3\x9F'e";
  EXPECT_EQ(session->InsertQuery(record, 0), "INSERT INTO `t` (`c`) VALUES ('Gr\xC3\xBC\xC3\x9F\\'e')");
}

TEST_F(InsertQuery, WritesTextsPutIntoTheBufferUpToTheFirstNul) {
  Plain<ASVStr> record(8U);
  record.value = "abcdef";
  std::memcpy(record.value.voidptr(), "x\0z", 3);
  EXPECT_EQ(session->InsertQuery(record, 0), "INSERT INTO `t` (`c`) VALUES ('x')");
}

TEST_F(InsertQuery, WritesTextsOfAnyLengthWhole) {
  Plain<ASVStr> record(102400U);
  record.value = std::string(102400, '\'').c_str();
  EXPECT_TRUE(session->InsertQuery(record, 0) ==
              ("INSERT INTO `t` (`c`) VALUES ('" + Repeated("\\'", 102400) + "')").c_str());
}

TEST_F(InsertQuery, WritesGuids) {
  Plain<ASGuid> record;
  record.value = Guid("{01234567-89AB-CDEF-0123-456789ABCDEF}");
  EXPECT_EQ(session->InsertQuery(record, 0), "INSERT INTO `t` (`c`) VALUES ('01234567-89ab-cdef-0123-456789abcdef')");
}

TEST_F(InsertQuery, EscapesLargeBinariesByteForByte) {
  Plain<ASRealBlob> record(0U);
  record.value = RealBlob(10, "\0\n\r\x1A'\"\\%a\xFF");
  EXPECT_EQ(session->InsertQuery(record, 0), "INSERT INTO `t` (`c`) VALUES ('\\0\\n\\r\\Z\\'\\\"\\\\%a\xFF')");
}

TEST_F(InsertQuery, WritesEmptyLargeBinaries) {
  Plain<ASRealBlob> record(0U);
  record.value = RealBlob(0, "");
  EXPECT_EQ(session->InsertQuery(record, 0), "INSERT INTO `t` (`c`) VALUES ('')");
}

TEST_F(InsertQuery, WritesLargeBinariesOfAnyLengthWhole) {
  Plain<ASRealBlob> const record(102400U);  // so many NULs
  EXPECT_TRUE(session->InsertQuery(record, 0) ==
              ("INSERT INTO `t` (`c`) VALUES ('" + Repeated("\\0", 102400) + "')").c_str());
}

// Applications read these columns only; bytes that are to be saved belong in an ASRealBlob.
TEST_F(InsertQuery, WritesSmallBinariesAsAWord) {
  Plain<ASBlob> record(std::uint16_t{8});
  record.value.Fill("abc", 3);
  EXPECT_EQ(session->InsertQuery(record, 0), "INSERT INTO `t` (`c`) VALUES ('BLOB')");
}

TEST_F(InsertQuery, WritesNullOfEveryKind) {
  constexpr char const* null = "INSERT INTO `t` (`c`) VALUES (NULL)";
  EXPECT_EQ(session->InsertQuery(Plain<ASInt>(), 0), null);
  EXPECT_EQ(session->InsertQuery(Plain<ASInt64>(), 0), null);
  EXPECT_EQ(session->InsertQuery(Plain<ASDouble>(), 0), null);
  EXPECT_EQ(session->InsertQuery(Plain<ASDCurrency>(), 0), null);
  EXPECT_EQ(session->InsertQuery(Plain<ASTime>(), 0), null);
  EXPECT_EQ(session->InsertQuery(Plain<ASStr>(8U), 0), null);
  EXPECT_EQ(session->InsertQuery(Plain<ASVStr>(8U), 0), null);
  EXPECT_EQ(session->InsertQuery(Plain<ASGuid>(), 0), null);
  EXPECT_EQ(session->InsertQuery(Plain<ASBlob>(std::uint16_t{8}), 0), null);
  EXPECT_EQ(session->InsertQuery(Plain<ASGeometry>(std::uint16_t{21}), 0), null);
  EXPECT_EQ(session->InsertQuery(Plain<ASRealBlob>(0U), 0), null);
}

TEST_F(InsertQuery, WritesNullForANullKey) {
  EXPECT_EQ(session->InsertQuery(Key<ASInt>(), 0), "INSERT INTO `t` (`c`) VALUES (NULL)");
}

TEST_F(InsertQuery, WritesNullForAColumnWithoutValue) {
  EXPECT_EQ(session->InsertQuery(WithGap(), 0), "INSERT INTO `t` (`first`, `gap`, `last`) VALUES ('1', NULL, '2')");
}

TEST_F(InsertQuery, WritesAnApplicationsOwnClassByItsTextForm) {
  Plain<Grams> record;
  record.value = 5;
  EXPECT_EQ(session->InsertQuery(record, 0), "INSERT INTO `t` (`c`) VALUES ('5 g')");
}

TEST_F(InsertQuery, WritesTheCharactersOfAnApplicationsOwnText) {
  Plain<LowerCase> record(8U);
  record.value = "A'B";
  EXPECT_EQ(session->InsertQuery(record, 0), "INSERT INTO `t` (`c`) VALUES ('A\\'B')");
}

TEST_F(InsertQuery, WritesAnUnknownTypeByItsTextForm) {
  Plain<Called<ASInt, kUnknown, kUnknown>> record;
  record.value = 5;
  EXPECT_EQ(session->InsertQuery(record, 0), "INSERT INTO `t` (`c`) VALUES ('5')");
}

TEST_F(InsertQuery, RefusesNumbersThatAreNotFinite) {
  Plain<ASDouble> record;
  record.value = kInfinity;
  EXPECT_THROW(session->InsertQuery(record, 0), AException);
  record.value = -kInfinity;
  EXPECT_THROW(session->InsertQuery(record, 0), AException);
  record.value = kNaN;
  EXPECT_THROW(session->InsertQuery(record, 0), AException);
}

TEST_F(InsertQuery, RefusesAmountsThatAreNotFinite) {
  Plain<ASDCurrency> record;
  record.value = kInfinity;
  EXPECT_THROW(session->InsertQuery(record, 0), AException);
}

TEST_F(InsertQuery, RefusesNumbersThatAreNotFiniteWhateverTheirDatabaseType) {
  Plain<Called<ASDouble, corvane::kTypeDouble, kUnknown>> unknown;
  Plain<Called<ASDouble, corvane::kTypeDouble, corvane::kDbInt>> integer;
  Plain<Called<ASDouble, corvane::kTypeDouble, corvane::kDbVStr>> text;
  unknown.value = kNaN;
  integer.value = kNaN;
  text.value = kNaN;
  EXPECT_THROW(session->InsertQuery(unknown, 0), AException);
  EXPECT_THROW(session->InsertQuery(integer, 0), AException);
  EXPECT_THROW(session->InsertQuery(text, 0), AException);
}

TEST_F(InsertQuery, NamesTheColumnWhoseNumberIsNotFinite) {
  Item record;
  record.price = kNaN;
  EXPECT_THAT(ThrownBy([&] { session->InsertQuery(record, 0); }).message, HasSubstr("price"));
}

TEST_F(InsertQuery, RefusesValuesThatAreNotOfTheKindTheyClaim) {
  Plain<Called<ASInt, corvane::kTypeInt, corvane::kDbGeometry>> geometry;
  Plain<Called<ASInt, corvane::kTypeInt, corvane::kDbRealBlob>> binary;
  geometry.value = 5;
  binary.value = 5;
  EXPECT_THROW(session->InsertQuery(geometry, 0), AException);
  EXPECT_THROW(session->InsertQuery(binary, 0), AException);
}

TEST_F(InsertQuery, WritesAValueThatClaimsToBeATextByItsTextForm) {
  Plain<Called<ASInt, corvane::kTypeInt, corvane::kDbVStr>> record;
  record.value = 5;
  EXPECT_EQ(session->InsertQuery(record, 0), "INSERT INTO `t` (`c`) VALUES ('5')");
}

// ---- geometries, in INSERT

class InsertedGeometry : public RecordTest {
 protected:
  // The statement for a geometry of these bytes in a block of exactly their number.
  Str Inserted(std::string const& bytes) const {
    Plain<ASGeometry> record(static_cast<std::uint16_t>(bytes.size()));
    Fill(record.value, bytes);
    return session->InsertQuery(record, 0);
  }
};

// Servers read the doubled parentheses as NULL.
TEST_F(InsertQuery, PointStandsInDoubledParentheses) {
  Plain<ASGeometry> record(std::uint16_t{21});
  Fill(record.value, Header(kPoint) + Coordinates({1.5, -2}));
  EXPECT_EQ(session->InsertQuery(record, 0), "INSERT INTO `t` (`c`) VALUES (GeomFromText('POINT((1.5 -2))'))");
}

TEST_F(InsertedGeometry, PolygonOfCoordinatesAlone) {
  EXPECT_EQ(Inserted(Header(kPolygon) + Coordinates({0, 0, 10, 0, 0, 10.5, 0, 0})),
            "INSERT INTO `t` (`c`) VALUES (GeomFromText('POLYGON((0 0,10 0,0 10.5,0 0))'))");
}

TEST_F(InsertedGeometry, PolygonOfCoordinatesThatStartLikeALargeRingCount) {
  EXPECT_EQ(Inserted(Header(kPolygon) + Coordinates({0.1, 0.2, 0.3, 0.7})),
            "INSERT INTO `t` (`c`) VALUES (GeomFromText('POLYGON((0.1 0.2,0.3 0.7))'))");
}

TEST_F(InsertedGeometry, PolygonWithItsCountsAsServersGiveIt) {
  EXPECT_EQ(Inserted(Triangle()), "INSERT INTO `t` (`c`) VALUES (GeomFromText('POLYGON((0 0,10 0,0 10.5,0 0))'))");
}

TEST_F(InsertedGeometry, PolygonOfAnEmptyRing) {
  EXPECT_EQ(Inserted(Header(kPolygon) + Number(1) + Number(0)),
            "INSERT INTO `t` (`c`) VALUES (GeomFromText('POLYGON(())'))");
}

TEST_F(InsertedGeometry, PolygonOfTwoRingsIsRefused) {
  EXPECT_THROW(Inserted(Header(kPolygon) + Number(2) + Number(4) + Coordinates({0, 0, 9, 0, 0, 9, 0, 0}) + Number(4) +
                        Coordinates({1, 1, 2, 1, 1, 2, 1, 1})),
               AException);
}

TEST_F(InsertedGeometry, PolygonWithoutRingsHasNoPoints) {
  EXPECT_EQ(Inserted(Header(kPolygon) + Number(0)), "INSERT INTO `t` (`c`) VALUES (GeomFromText('POLYGON(())'))");
}

TEST_F(InsertedGeometry, PolygonWhoseCountsDoNotAddUpIsReadAsCoordinatesAlone) {
  EXPECT_EQ(Inserted(Header(kPolygon) + Number(1) + Number(4) + Coordinates({1, 2, 3})),
            "INSERT INTO `t` (`c`) VALUES (GeomFromText('POLYGON((8.4879831644e-314 1,2 3))'))");
}

TEST_F(InsertedGeometry, PolygonWithTwoRingsThatDoNotAddUpIsReadAsCoordinatesAlone) {
  EXPECT_EQ(Inserted(Header(kPolygon) + Number(2) + Number(0) + Coordinates({1})),
            "INSERT INTO `t` (`c`) VALUES (GeomFromText('POLYGON((1e-323 1))'))");
}

TEST_F(InsertedGeometry, OfAnotherTypeHasNoWord) {
  EXPECT_EQ(Inserted(Header(kLine) + Coordinates({1, 2, 3, 4})),
            "INSERT INTO `t` (`c`) VALUES (GeomFromText('1 2,3 4))'))");
}

TEST_F(InsertedGeometry, DropsAPointThatIsNotWhole) {
  EXPECT_EQ(Inserted(Header(kPoint) + Coordinates({1, 2, 3})),
            "INSERT INTO `t` (`c`) VALUES (GeomFromText('POINT((1 2))'))");
}

TEST_F(InsertedGeometry, OfHeaderAloneHasNoPoints) {
  EXPECT_EQ(Inserted(Header(kPoint)), "INSERT INTO `t` (`c`) VALUES (GeomFromText('POINT(())'))");
}

TEST_F(InsertedGeometry, ShorterThanItsHeaderHasNoPoints) {
  EXPECT_EQ(Inserted(std::string("\1\0\0\0", 4)), "INSERT INTO `t` (`c`) VALUES (GeomFromText('))'))");
}

TEST_F(InsertedGeometry, WritesCoordinatesWithAllTheirDigits) {
  EXPECT_EQ(Inserted(Header(kPoint) + Coordinates({1234567.891, -1.5e-7})),
            "INSERT INTO `t` (`c`) VALUES (GeomFromText('POINT((1234567.891 -1.5e-07))'))");
}

TEST_F(InsertedGeometry, RefusesCoordinatesThatAreNotFinite) {
  EXPECT_THROW(Inserted(Header(kPoint) + Coordinates({kNaN, 0})), AException);
  EXPECT_THROW(Inserted(Header(kPoint) + Coordinates({0, kInfinity})), AException);
}

TEST_F(InsertedGeometry, EndsWithTheBlockWhateverTheLengthSays) {
  Plain<ASGeometry> record(std::uint16_t{21});
  Fill(record.value, Header(kPolygon) + Coordinates({1, 2}));
  std::uint16_t const tooLong = 65535;
  std::memcpy(record.value.voidptr(), &tooLong, sizeof tooLong);
  EXPECT_EQ(session->InsertQuery(record, 0), "INSERT INTO `t` (`c`) VALUES (GeomFromText('POLYGON((1 2))'))");
}

TEST_F(InsertedGeometry, AssignedFromALongerOneEndsWithItsOwnBlock) {
  ASGeometry longer(53);
  Fill(longer, Header(kPolygon) + Coordinates({1, 2, 3, 4, 5, 6}));
  Plain<ASGeometry> record(std::uint16_t{21});
  record.value = longer;
  EXPECT_EQ(session->InsertQuery(record, 0), "INSERT INTO `t` (`c`) VALUES (GeomFromText('POLYGON((1 2))'))");
}

TEST_F(InsertedGeometry, EndsWithItsLengthWhateverTheBlockHolds) {
  Plain<ASGeometry> record(std::uint16_t{256});
  Fill(record.value, Header(kPolygon) + Coordinates({1, 2, 3, 4}));
  EXPECT_EQ(session->InsertQuery(record, 0), "INSERT INTO `t` (`c`) VALUES (GeomFromText('POLYGON((1 2,3 4))'))");
}

// ---- SELECT

TEST_F(SelectQuery, ListsAllColumnsAndLocksTheRowOfTheKey) {
  EXPECT_EQ(session->SelectQuery(Item(), 0),
            "SELECT `id`, `name`, `price`, `sold` FROM `item` WHERE `id`='7' FOR UPDATE");
}

TEST_F(SelectQuery, JoinsSeveralKeys) {
  EXPECT_EQ(session->SelectQuery(Stock(), 0),
            "SELECT `shop`, `count`, `code` FROM `stock` WHERE `shop`='3' AND `code`='a\\'b' FOR UPDATE");
}

TEST_F(SelectQuery, WithoutKeysHasNoCondition) {
  EXPECT_EQ(session->SelectQuery(Plain<ASInt>(), 0), "SELECT `c` FROM `t` FOR UPDATE");
}

TEST_F(SelectQuery, OfARecordWithoutColumnsListsNone) {
  EXPECT_EQ(session->SelectQuery(ASDomain("t", ""), 0), "SELECT  FROM `t` FOR UPDATE");
}

TEST_F(SelectQuery, DoesNotLockInReadOnlyMode) {
  session->ReadOnly();
  EXPECT_EQ(session->SelectQuery(Item(), 0), "SELECT `id`, `name`, `price`, `sold` FROM `item` WHERE `id`='7'");
}

TEST_F(SelectQuery, DoesNotLockInReadOnlyModeWithoutKeys) {
  session->PushReadOnly();
  EXPECT_EQ(session->SelectQuery(Plain<ASInt>(), 0), "SELECT `c` FROM `t`");
}

TEST_F(SelectQuery, LocksAgainAfterReadOnlyMode) {
  session->ReadOnly();
  session->ClearReadOnly();
  EXPECT_EQ(session->SelectQuery(Plain<ASInt>(), 0), "SELECT `c` FROM `t` FOR UPDATE");
}

TEST_F(SelectQuery, InMode1NamesThePlaceOfTheKey) {
  EXPECT_EQ(session->SelectQuery(Item(), 1),
            "SELECT `id`, `name`, `price`, `sold` FROM `item` WHERE `id`=:id FOR UPDATE");
}

TEST_F(SelectQuery, InMode1AndReadOnlyModeEndsWithThePlaceOfTheKey) {
  session->ReadOnly();
  EXPECT_EQ(session->SelectQuery(Item(), 1), "SELECT `id`, `name`, `price`, `sold` FROM `item` WHERE `id`=:id");
}

TEST_F(SelectQuery, InMode1NamesThePlacesOfSeveralKeys) {
  EXPECT_EQ(session->SelectQuery(Stock(), 1),
            "SELECT `shop`, `count`, `code` FROM `stock` WHERE `shop`=:shop AND `code`=:code FOR UPDATE");
}

TEST_F(SelectQuery, InMode2HasNoCondition) {
  EXPECT_EQ(session->SelectQuery(Item(), 2), "SELECT `id`, `name`, `price`, `sold` FROM `item` FOR UPDATE");
}

TEST_F(SelectQuery, InAnyOtherModeNamesThePlaceOfTheKey) {
  EXPECT_EQ(session->SelectQuery(Item(), 7),
            "SELECT `id`, `name`, `price`, `sold` FROM `item` WHERE `id`=:id FOR UPDATE");
  EXPECT_EQ(session->SelectQuery(Item(), -1),
            "SELECT `id`, `name`, `price`, `sold` FROM `item` WHERE `id`=:id FOR UPDATE");
}

TEST_F(SelectQuery, ReadsGeometriesAsBinaryByTheirBareName) {
  Parcel record;
  record.id = 4;
  EXPECT_EQ(session->SelectQuery(record, 0),
            "SELECT `id`, AsBinary(shape), `owner` FROM `parcel` WHERE `id`='4' FOR UPDATE");
}

TEST_F(SelectQuery, ReadsAGeometryAloneAsBinary) {
  EXPECT_EQ(session->SelectQuery(Plain<ASGeometry>(std::uint16_t{21}), 0), "SELECT AsBinary(c) FROM `t` FOR UPDATE");
}

TEST_F(SelectQuery, ReadsOtherBinariesByTheirName) {
  EXPECT_EQ(session->SelectQuery(Plain<ASBlob>(std::uint16_t{8}), 0), "SELECT `c` FROM `t` FOR UPDATE");
  EXPECT_EQ(session->SelectQuery(Plain<ASRealBlob>(0U), 0), "SELECT `c` FROM `t` FOR UPDATE");
}

TEST_F(SelectQuery, ReadsAColumnWithoutValueByItsName) {
  EXPECT_EQ(session->SelectQuery(WithGap(), 0), "SELECT `first`, `gap`, `last` FROM `t` FOR UPDATE");
}

TEST_F(SelectQuery, PutsAQualifiedTableNameBetweenOnePairOfQuotes) {
  EXPECT_EQ(session->SelectQuery(ASDomain("shop.items", ""), 0), "SELECT  FROM `shop.items` FOR UPDATE");
}

TEST_F(SelectQuery, WritesNoKeyValueOutsideMode0) {
  Key<ASDouble> record;
  record.value = kNaN;
  EXPECT_EQ(session->SelectQuery(record, 1), "SELECT `c` FROM `t` WHERE `c`=:c FOR UPDATE");
  EXPECT_EQ(session->SelectQuery(record, 2), "SELECT `c` FROM `t` FOR UPDATE");
}

// ---- UPDATE

TEST_F(UpdateQuery, SetsAllButTheKey) {
  EXPECT_EQ(session->UpdateQuery(Item(), 0),
            "UPDATE `item` SET `name`='Ball', `price`='9.5', `sold`=NULL WHERE `id`='7'");
}

TEST_F(UpdateQuery, JoinsSeveralKeys) {
  EXPECT_EQ(session->UpdateQuery(Stock(), 0), "UPDATE `stock` SET `count`='12' WHERE `shop`='3' AND `code`='a\\'b'");
}

TEST_F(UpdateQuery, WithoutKeysSetsEveryRow) {
  Plain<ASInt> record;
  record.value = 5;
  EXPECT_EQ(session->UpdateQuery(record, 0), "UPDATE `t` SET `c`='5'");
}

TEST_F(UpdateQuery, OfKeysAloneSetsNothing) {
  EXPECT_EQ(session->UpdateQuery(Link(), 0), "UPDATE `link` SET  WHERE `from`='1' AND `to`='2'");
}

TEST_F(UpdateQuery, OfARecordWithoutColumnsSetsNothing) {
  EXPECT_EQ(session->UpdateQuery(ASDomain("t", ""), 0), "UPDATE `t` SET ");
}

TEST_F(UpdateQuery, SetsAnAutoIncrementColumnThatIsNoKey) {
  OneColumn<ASInt, corvane::kAutoIncrement> record;
  record.value = 5;
  EXPECT_EQ(session->UpdateQuery(record, 0), "UPDATE `t` SET `c`='5'");
}

TEST_F(UpdateQuery, NamesThePlacesOfTheKeysInEveryOtherMode) {
  Stock const record;
  EXPECT_EQ(session->UpdateQuery(record, 1), "UPDATE `stock` SET `count`='12' WHERE `shop`=:shop AND `code`=:code");
  EXPECT_EQ(session->UpdateQuery(record, 2), "UPDATE `stock` SET `count`='12' WHERE `shop`=:shop AND `code`=:code");
  EXPECT_EQ(session->UpdateQuery(record, 7), "UPDATE `stock` SET `count`='12' WHERE `shop`=:shop AND `code`=:code");
}

TEST_F(UpdateQuery, EscapesTexts) {
  Plain<ASVStr> record(20U);
  record.value = "O'Brien\\";
  EXPECT_EQ(session->UpdateQuery(record, 0), "UPDATE `t` SET `c`='O\\'Brien\\\\'");
}

TEST_F(UpdateQuery, EscapesLargeBinariesByteForByte) {
  Plain<ASRealBlob> record(0U);
  record.value = RealBlob(3, "\0'\xFF");
  EXPECT_EQ(session->UpdateQuery(record, 0), "UPDATE `t` SET `c`='\\0\\'\xFF'");
}

TEST_F(UpdateQuery, WritesTheOtherKinds) {
  Plain<ASInt64> large;
  Plain<ASDouble> number;
  Plain<ASTime> const time(0);
  Plain<ASGuid> guid;
  Plain<ASBlob> binary(std::uint16_t{8});
  large.value = -5L;
  number.value = 0.5;
  guid.value = Guid("0123456789abcdef0123456789abcdef");
  binary.value.Fill("abc", 3);
  EXPECT_EQ(session->UpdateQuery(large, 0), "UPDATE `t` SET `c`='-5'");
  EXPECT_EQ(session->UpdateQuery(number, 0), "UPDATE `t` SET `c`='0.5'");
  EXPECT_EQ(session->UpdateQuery(time, 0), "UPDATE `t` SET `c`='1970-01-01 00:00:00'");
  EXPECT_EQ(session->UpdateQuery(guid, 0), "UPDATE `t` SET `c`='01234567-89ab-cdef-0123-456789abcdef'");
  EXPECT_EQ(session->UpdateQuery(binary, 0), "UPDATE `t` SET `c`='BLOB'");
}

TEST_F(UpdateQuery, WritesPoints) {
  Parcel record;
  record.id = 4;
  Fill(record.shape, Header(kPoint) + Coordinates({1, 2}));
  EXPECT_EQ(session->UpdateQuery(record, 0),
            "UPDATE `parcel` SET `shape`=GeomFromText('POINT((1 2))'), `owner`=NULL WHERE `id`='4'");
}

TEST_F(UpdateQuery, WritesPolygons) {
  Parcel record;
  record.id = 4;
  Fill(record.shape, Triangle());
  EXPECT_EQ(session->UpdateQuery(record, 0),
            "UPDATE `parcel` SET `shape`=GeomFromText('POLYGON((0 0,10 0,0 10.5,0 0))'), `owner`=NULL WHERE `id`='4'");
}

TEST_F(UpdateQuery, WritesNullOfEveryKind) {
  constexpr char const* null = "UPDATE `t` SET `c`=NULL";
  EXPECT_EQ(session->UpdateQuery(Plain<ASInt>(), 0), null);
  EXPECT_EQ(session->UpdateQuery(Plain<ASInt64>(), 0), null);
  EXPECT_EQ(session->UpdateQuery(Plain<ASDouble>(), 0), null);
  EXPECT_EQ(session->UpdateQuery(Plain<ASDCurrency>(), 0), null);
  EXPECT_EQ(session->UpdateQuery(Plain<ASTime>(), 0), null);
  EXPECT_EQ(session->UpdateQuery(Plain<ASStr>(8U), 0), null);
  EXPECT_EQ(session->UpdateQuery(Plain<ASVStr>(8U), 0), null);
  EXPECT_EQ(session->UpdateQuery(Plain<ASGuid>(), 0), null);
  EXPECT_EQ(session->UpdateQuery(Plain<ASBlob>(std::uint16_t{8}), 0), null);
  EXPECT_EQ(session->UpdateQuery(Plain<ASGeometry>(std::uint16_t{21}), 0), null);
  EXPECT_EQ(session->UpdateQuery(Plain<ASRealBlob>(0U), 0), null);
}

TEST_F(UpdateQuery, WritesNullForAColumnWithoutValue) {
  EXPECT_EQ(session->UpdateQuery(WithGap(), 0), "UPDATE `t` SET `first`='1', `gap`=NULL, `last`='2'");
}

TEST_F(UpdateQuery, RefusesNumbersThatAreNotFinite) {
  Plain<ASDouble> record;
  record.value = kNaN;
  EXPECT_THROW(session->UpdateQuery(record, 0), AException);
}

TEST_F(UpdateQuery, PutsAQualifiedTableNameBetweenOnePairOfQuotes) {
  EXPECT_EQ(session->UpdateQuery(ASDomain("shop.items", ""), 0), "UPDATE `shop.items` SET ");
}

// ---- DELETE

TEST_F(DeleteQuery, DeletesTheRowOfTheKey) {
  EXPECT_EQ(session->DeleteQuery(Item(), 0), "DELETE FROM `item` WHERE `id`='7'");
}

TEST_F(DeleteQuery, JoinsSeveralKeys) {
  EXPECT_EQ(session->DeleteQuery(Stock(), 0), "DELETE FROM `stock` WHERE `shop`='3' AND `code`='a\\'b'");
}

TEST_F(DeleteQuery, WithoutKeysDeletesEveryRow) {
  EXPECT_EQ(session->DeleteQuery(Plain<ASInt>(), 0), "DELETE FROM `t`");
}

TEST_F(DeleteQuery, NamesThePlacesOfTheKeysInEveryOtherMode) {
  Stock const record;
  EXPECT_EQ(session->DeleteQuery(record, 1), "DELETE FROM `stock` WHERE `shop`=:shop AND `code`=:code");
  EXPECT_EQ(session->DeleteQuery(record, 2), "DELETE FROM `stock` WHERE `shop`=:shop AND `code`=:code");
  EXPECT_EQ(session->DeleteQuery(record, 7), "DELETE FROM `stock` WHERE `shop`=:shop AND `code`=:code");
}

TEST_F(DeleteQuery, PutsAQualifiedTableNameBetweenOnePairOfQuotes) {
  EXPECT_EQ(session->DeleteQuery(ASDomain("shop.items", ""), 0), "DELETE FROM `shop.items`");
}

// ---- archiving

TEST_F(SaveQuery, CopiesTheRowOfTheKeyIntoTheArchive) {
  EXPECT_EQ(session->SaveQuery(Item(), 0),
            "INSERT INTO `itemArc` (id, name, price, sold) SELECT id, name, price, sold FROM `item` WHERE id='7'");
}

TEST_F(SaveQuery, NamesAreBareAndKeysNotEscaped) {
  EXPECT_EQ(session->SaveQuery(Stock(), 0),
            "INSERT INTO `stockArc` (shop, count, code) SELECT shop, count, code FROM `stock` "
            "WHERE shop='3' AND code='a'b'");
}

TEST_F(SaveQuery, WithoutKeysCopiesEveryRow) {
  EXPECT_EQ(session->SaveQuery(Plain<ASInt>(), 0), "INSERT INTO `tArc` (c) SELECT c FROM `t`");
}

TEST_F(SaveQuery, OfARecordWithoutColumnsListsNone) {
  EXPECT_EQ(session->SaveQuery(ASDomain("t", ""), 0), "INSERT INTO `tArc` () SELECT  FROM `t`");
}

TEST_F(SaveQuery, OfAColumnWithoutNameKeepsItsPlace) {
  struct : ASDomain {
    ASInt first, second;
    ASAttribute firstColumn{""}, secondColumn{"b"};
  } record;
  record.Add(record.firstColumn, record.first).Add(record.secondColumn, record.second);
  EXPECT_EQ(session->SaveQuery(record, 0), "INSERT INTO `Arc` (, b) SELECT , b FROM ``");
  EXPECT_EQ(session->InsertQuery(record, 0), "INSERT INTO `` (``, `b`) VALUES (NULL, NULL)");
}

TEST_F(SaveQuery, NamesThePlacesOfTheKeysInEveryOtherMode) {
  Link const record;
  EXPECT_EQ(session->SaveQuery(record, 1),
            "INSERT INTO `linkArc` (from, to) SELECT from, to FROM `link` WHERE from=:from AND to=:to");
  EXPECT_EQ(session->SaveQuery(record, 2),
            "INSERT INTO `linkArc` (from, to) SELECT from, to FROM `link` WHERE from=:from AND to=:to");
  EXPECT_EQ(session->SaveQuery(record, 7),
            "INSERT INTO `linkArc` (from, to) SELECT from, to FROM `link` WHERE from=:from AND to=:to");
}

TEST_F(SaveQuery, CopiesGeometriesAsTheyAre) {
  Parcel record;
  record.id = 4;
  EXPECT_EQ(session->SaveQuery(record, 0),
            "INSERT INTO `parcelArc` (id, shape, owner) SELECT id, shape, owner FROM `parcel` WHERE id='4'");
}

TEST_F(SaveQuery, PutsAQualifiedTableNameBetweenOnePairOfQuotes) {
  EXPECT_EQ(session->SaveQuery(ASDomain("shop.items", ""), 0),
            "INSERT INTO `shop.itemsArc` () SELECT  FROM `shop.items`");
}

TEST_F(SaveQuery, DoesNotLockTheRow) {
  session->ClearReadOnly();
  EXPECT_EQ(session->SaveQuery(Key<ASInt>(), 0), "INSERT INTO `tArc` (c) SELECT c FROM `t` WHERE c='-2147483648'");
}

TEST_F(SaveQuery, WritesANullTextAsAnEmptyOne) {
  EXPECT_EQ(session->SaveQuery(Key<ASVStr>(8U), 0), "INSERT INTO `tArc` (c) SELECT c FROM `t` WHERE c=''");
}

TEST_F(SaveQuery, WritesAKeyWithoutValueAsAnEmptyText) {
  ASDomain record("t", "");
  ASAttribute key("c", "", 0, corvane::kKey);
  record.push_back(&key);
  key.Register(nullptr, &record);
  EXPECT_EQ(session->SaveQuery(record, 0), "INSERT INTO `tArc` (c) SELECT c FROM `t` WHERE c=''");
}

TEST_F(SaveQuery, RefusesKeysThatAreNotFinite) {
  Key<ASDouble> record;
  record.value = kInfinity;
  EXPECT_THROW(session->SaveQuery(record, 0), AException);
}

// ---- keys, in DELETE

TEST_F(KeyCondition, EscapesTexts) {
  Key<ASVStr> record(20U);
  record.value = "'\"\\\n\r\x1A";
  EXPECT_EQ(session->DeleteQuery(record, 0), "DELETE FROM `t` WHERE `c`='\\'\\\"\\\\\\n\\r\\Z'");
}

TEST_F(KeyCondition, TakesThePaddingOfTexts) {
  Key<ASStr> record(5U);
  record.value = "ab";
  EXPECT_EQ(session->DeleteQuery(record, 0), "DELETE FROM `t` WHERE `c`='ab   '");
}

TEST_F(KeyCondition, TakesTextsOfAnyLengthWhole) {
  Key<ASVStr> record(102400U);
  record.value = std::string(102400, '\\').c_str();
  EXPECT_TRUE(session->DeleteQuery(record, 0) ==
              ("DELETE FROM `t` WHERE `c`='" + Repeated("\\\\", 102400) + "'").c_str());
}

TEST_F(KeyCondition, TakesNumbersWithAllTheirDigits) {
  Key<ASDouble> number;
  Key<ASInt64> large;
  number.value = 1234567.891;
  large.value = 9007199254740993L;
  EXPECT_EQ(session->DeleteQuery(number, 0), "DELETE FROM `t` WHERE `c`='1234567.891'");
  EXPECT_EQ(session->DeleteQuery(large, 0), "DELETE FROM `t` WHERE `c`='9007199254740993'");
}

TEST_F(KeyCondition, TakesTimesAndGuids) {
  Key<ASTime> const time(1088689500);
  Key<ASGuid> guid;
  guid.value = Guid("0123456789ABCDEF0123456789ABCDEF");
  EXPECT_EQ(session->DeleteQuery(time, 0), "DELETE FROM `t` WHERE `c`='2004-07-01 13:45:00'");
  EXPECT_EQ(session->DeleteQuery(guid, 0), "DELETE FROM `t` WHERE `c`='01234567-89ab-cdef-0123-456789abcdef'");
}

TEST_F(KeyCondition, TakesBinariesAsAWord) {
  Key<ASBlob> small(std::uint16_t{8});
  Key<ASRealBlob> const large(4U);
  Key<ASGeometry> geometry(std::uint16_t{21});
  small.value.Fill("abc", 3);
  Fill(geometry.value, Header(kPoint) + Coordinates({1, 2}));
  EXPECT_EQ(session->DeleteQuery(small, 0), "DELETE FROM `t` WHERE `c`='BLOB'");
  EXPECT_EQ(session->DeleteQuery(large, 0), "DELETE FROM `t` WHERE `c`='BLOB'");
  EXPECT_EQ(session->DeleteQuery(geometry, 0), "DELETE FROM `t` WHERE `c`='BLOB'");
}

// Numbers that no row can hold: neither 0 nor the empty text, which servers take for 0.
TEST_F(KeyCondition, OfANullNumberMatchesNoRow) {
  EXPECT_EQ(session->DeleteQuery(Key<ASInt>(), 0), "DELETE FROM `t` WHERE `c`='-2147483648'");
  EXPECT_EQ(session->DeleteQuery(Key<ASInt64>(), 0), "DELETE FROM `t` WHERE `c`='-9223372036854775808'");
  EXPECT_EQ(session->DeleteQuery(Key<ASDouble>(), 0), "DELETE FROM `t` WHERE `c`='-1.7976931348623157e+308'");
  EXPECT_EQ(session->DeleteQuery(Key<ASDCurrency>(), 0), "DELETE FROM `t` WHERE `c`='-1.7976931348623157e+308'");
}

TEST_F(KeyCondition, OfANumberMadeNullForgetsTheNumber) {
  Key<ASInt64> record;
  record.value = 5L;
  record.value.SetNull();
  EXPECT_EQ(session->DeleteQuery(record, 0), "DELETE FROM `t` WHERE `c`='-9223372036854775808'");
}

TEST_F(KeyCondition, OfANullGuidIsAllZero) {
  EXPECT_EQ(session->DeleteQuery(Key<ASGuid>(), 0), "DELETE FROM `t` WHERE `c`='00000000-0000-0000-0000-000000000000'");
}

TEST_F(KeyCondition, OfAGuidMadeNullForgetsTheGuid) {
  Key<ASGuid> record;
  record.value = Guid("0123456789abcdef0123456789abcdef");
  record.value = Guid();
  EXPECT_EQ(session->DeleteQuery(record, 0), "DELETE FROM `t` WHERE `c`='00000000-0000-0000-0000-000000000000'");
}

TEST_F(KeyCondition, OfANullTextIsTheEmptyText) {
  EXPECT_EQ(session->DeleteQuery(Key<ASStr>(8U), 0), "DELETE FROM `t` WHERE `c`=''");
  EXPECT_EQ(session->DeleteQuery(Key<ASVStr>(8U), 0), "DELETE FROM `t` WHERE `c`=''");
}

TEST_F(KeyCondition, OfANullTextIsTheEmptyTextWhateverItsBufferHolds) {
  Key<ASVStr> record(8U);
  std::memcpy(record.value.voidptr(), "abc", 4);
  ASSERT_EQ(record.value.IsNull(), 1);
  EXPECT_EQ(session->DeleteQuery(record, 0), "DELETE FROM `t` WHERE `c`=''");
}

TEST_F(KeyCondition, OfANullTimeIsAWord) {
  EXPECT_EQ(session->DeleteQuery(Key<ASTime>(), 0), "DELETE FROM `t` WHERE `c`='NULL'");
}

TEST_F(KeyCondition, OfANullBinaryIsAWord) {
  EXPECT_EQ(session->DeleteQuery(Key<ASBlob>(std::uint16_t{8}), 0), "DELETE FROM `t` WHERE `c`='BLOB'");
  EXPECT_EQ(session->DeleteQuery(Key<ASGeometry>(std::uint16_t{21}), 0), "DELETE FROM `t` WHERE `c`='BLOB'");
  EXPECT_EQ(session->DeleteQuery(Key<ASRealBlob>(0U), 0), "DELETE FROM `t` WHERE `c`='BLOB'");
}

TEST_F(KeyCondition, OfAColumnWithoutValueIsTheEmptyText) {
  ASDomain record("t", "");
  ASAttribute key("c", "", 0, corvane::kKey);
  record.push_back(&key);
  key.Register(nullptr, &record);
  EXPECT_EQ(session->DeleteQuery(record, 0), "DELETE FROM `t` WHERE `c`=''");
}

TEST_F(KeyCondition, TakesAnApplicationsOwnNumberByItsTextForm) {
  Key<Grams> record;
  record.value = 5;
  EXPECT_EQ(session->DeleteQuery(record, 0), "DELETE FROM `t` WHERE `c`='5 g'");
}

TEST_F(KeyCondition, TakesAnApplicationsOwnTextByItsTextForm) {
  Key<LowerCase> record(8U);
  record.value = "A'B";
  EXPECT_EQ(session->DeleteQuery(record, 0), "DELETE FROM `t` WHERE `c`='a\\'b'");
}

TEST_F(KeyCondition, RefusesNumbersThatAreNotFinite) {
  Key<ASDouble> number;
  Key<ASDCurrency> money;
  number.value = kNaN;
  money.value = kInfinity;
  EXPECT_THROW(session->DeleteQuery(number, 0), AException);
  EXPECT_THROW(session->SelectQuery(number, 0), AException);
  EXPECT_THROW(session->UpdateQuery(number, 0), AException);
  EXPECT_THROW(session->DeleteQuery(money, 0), AException);
}

// ---- running them

TEST_F(RecordStatement, InsertSendsItsStatement) {
  session->Insert(Item());
  EXPECT_THAT(client.Calls(),
              ElementsAre("query INSERT INTO `item` (`name`, `price`, `sold`) VALUES ('Ball', '9.5', NULL)"));
}

TEST_F(RecordStatement, UpdateSendsItsStatement) {
  session->Update(Stock());
  EXPECT_THAT(client.Calls(), ElementsAre("query UPDATE `stock` SET `count`='12' WHERE `shop`='3' AND `code`='a\\'b'"));
}

TEST_F(RecordStatement, DeleteSendsItsStatement) {
  session->Delete(Item());
  EXPECT_THAT(client.Calls(), ElementsAre("query DELETE FROM `item` WHERE `id`='7'"));
}

TEST_F(RecordStatement, SelectSendsItsStatementAndTakesTheResult) {
  Item record;
  client.AnswerQuery(4, {{"7", "Bat", "12.5", "2004-07-01 13:45:00"}});
  session->Select(record);
  EXPECT_THAT(client.Calls(),
              ElementsAre("query SELECT `id`, `name`, `price`, `sold` FROM `item` WHERE `id`='7' FOR UPDATE",
                          "store_result", "free_result"));
}

TEST_F(RecordStatement, SelectReadsTheRowIntoTheRecord) {
  Item record;
  client.AnswerQuery(4, {{"8", "Bat", "12.5", "2004-07-01 13:45:00"}});
  EXPECT_EQ(session->Select(record), 1);
  EXPECT_EQ(record.id.getstr(), "8");
  EXPECT_EQ(record.name.getstr(), "Bat");
  EXPECT_EQ(record.price.getstr(), "12.5");
  EXPECT_EQ(record.sold.getstr(), "2004-07-01 13:45:00");
}

TEST_F(RecordStatement, SelectWithoutARowReturns0) {
  Item record;
  client.AnswerQuery(4, {});
  EXPECT_EQ(session->Select(record), 0);
  EXPECT_EQ(record.name.getstr(), "Ball");
}

TEST_F(RecordStatement, SelectedPolygonIsWrittenBackAsItWas) {
  Parcel record;
  record.id = 4;
  client.AnswerQuery(3, {{"4", Triangle(), "Jones"}});
  session->Select(record);
  EXPECT_EQ(
      session->UpdateQuery(record, 0),
      "UPDATE `parcel` SET `shape`=GeomFromText('POLYGON((0 0,10 0,0 10.5,0 0))'), `owner`='Jones' WHERE `id`='4'");
}

TEST_F(RecordStatement, InsertReturnsTheAffectedRows) {
  client.AnswerQuery().AffectedRows(1);
  EXPECT_EQ(session->Insert(Item()), 1U);
}

TEST_F(RecordStatement, UpdateReturnsTheAffectedRows) {
  client.AnswerQuery().AffectedRows(5000000000);
  EXPECT_EQ(session->Update(Plain<ASInt>()), 5000000000U);
}

TEST_F(RecordStatement, DeleteReturnsTheAffectedRows) {
  client.AnswerQuery().AffectedRows(0);
  EXPECT_EQ(session->Delete(Item()), 0U);
}

TEST_F(RecordStatement, InsertLeavesTheNumberThatTheServerGave) {
  Item const record;
  client.AnswerQuery().InsertId(42);
  session->Insert(record);
  EXPECT_EQ(session->GetInsertId().getstr(), "42");
  EXPECT_EQ(record.id.getstr(), "7");
}

TEST_F(RecordStatement, InsertSendsTextsOfAnyLengthWhole) {
  Plain<ASVStr> record(102400U);
  record.value = std::string(102400, 'x').c_str();
  session->Insert(record);
  EXPECT_THAT(client.Calls(), ElementsAre("query INSERT INTO `t` (`c`) VALUES ('" + std::string(102400, 'x') + "')"));
}

TEST_F(RecordStatement, NothingIsSentForANumberThatIsNotFinite) {
  Item record;
  record.price = kInfinity;
  EXPECT_THROW(session->Insert(record), AException);
  EXPECT_THROW(session->Update(record), AException);
  EXPECT_THAT(client.Calls(), IsEmpty());
}

TEST_F(RecordStatement, RefusedByTheServerThrowsItsErrorAndTheStatement) {
  client.FailQuery(1062, "Duplicate entry '7'");
  EXPECT_EQ(ThrownBy([&] { session->Delete(Item()); }),
            (Thrown{102, "DB Error 1062 (Duplicate entry '7') in query\n\b\nDELETE FROM `item` WHERE `id`='7'"}));
}

TEST_F(RecordStatement, SelectRefusedByTheServerLeavesTheRecordAsItWas) {
  Item record;
  client.FailQuery(1146, "No table");
  EXPECT_EQ(ThrownBy([&] { session->Select(record); }).number, 102);
  EXPECT_EQ(record.name.getstr(), "Ball");
  EXPECT_THAT(client.Calls(),
              ElementsAre("query SELECT `id`, `name`, `price`, `sold` FROM `item` WHERE `id`='7' FOR UPDATE"));
}

TEST_F(RecordStatement, InsertIsLoggedAtLevel1) {
  ASSession& logged = Ready({}, 1);
  EXPECT_EQ(LogOf([&] { logged.Insert(Item()); }),
            "ASSession::Insert   Query   INSERT INTO `item` (`name`, `price`, `sold`) VALUES ('Ball', '9.5', NULL)\n");
}

TEST_F(RecordStatement, UpdateIsLoggedAtLevel1) {
  ASSession& logged = Ready({}, 1);
  EXPECT_EQ(LogOf([&] { logged.Update(Stock()); }),
            "ASSession::Update   Query   UPDATE `stock` SET `count`='12' WHERE `shop`='3' AND `code`='a\\'b'\n");
}

TEST_F(RecordStatement, DeleteIsLoggedAtLevel1) {
  ASSession& logged = Ready({}, 1);
  EXPECT_EQ(LogOf([&] { logged.Delete(Item()); }), "ASSession::Delete   Query   DELETE FROM `item` WHERE `id`='7'\n");
}

TEST_F(RecordStatement, SelectIsLoggedAtLevel1) {
  ASSession& logged = Ready({}, 1);
  Plain<ASInt> record;
  client.AnswerQuery(1, {{"5"}});
  EXPECT_EQ(LogOf([&] { logged.Select(record); }), "ASSession::Select   Query   SELECT `c` FROM `t` FOR UPDATE\n");
}

TEST_F(RecordStatement, NothingIsLoggedAtLevel0) {
  Plain<ASInt> record;
  client.AnswerQuery(1, {{"5"}}).Matching("SELECT");
  EXPECT_EQ(LogOf([&] {
              session->Insert(record);
              session->Update(record);
              session->Delete(record);
              session->Select(record);
            }),
            "");
}

TEST_F(RecordStatement, IsLoggedBeforeTheFailureOfItsExecution) {
  ASSession& logged = Ready({}, 1);
  client.FailQuery(1062, "Duplicate");
  EXPECT_EQ(LogOf([&] { logged.Delete(Item()); }),
            "ASSession::Delete   Query   DELETE FROM `item` WHERE `id`='7'\n"
            "SESSION ADDR EXECUTE Failed\n Error 1062 (Duplicate) in query\nDELETE FROM `item` WHERE `id`='7'\n");
}

// ---- reading a row back

class RecordFetch : public RecordTest {
 protected:
  // Runs a statement with these rows as its result.
  void Answer(unsigned columns, std::vector<Row> rows) {
    client.AnswerQuery(columns, std::move(rows));
    session->Execute("SELECT");
  }

  // Fetches the field into the first column of the record.
  int FetchInto(ASDomain& record, Field field) {
    Answer(1, {{std::move(field)}});
    return session->Fetch(record);
  }
};

using RecordFetchDeathTest = RecordFetch;

TEST_F(RecordFetch, Returns1ForARow) {
  Plain<ASInt> record;
  EXPECT_EQ(FetchInto(record, "5"), 1);
}

TEST_F(RecordFetch, FreesTheResult) {
  Plain<ASInt> record;
  FetchInto(record, "5");
  EXPECT_EQ(client.UnfreedResults(), 0U);
}

TEST_F(RecordFetch, TakesTheFirstRowOnly) {
  Plain<ASInt> record;
  Answer(1, {{"5"}, {"6"}});
  EXPECT_EQ(session->Fetch(record), 1);
  EXPECT_EQ(record.value.getstr(), "5");
}

TEST_F(RecordFetch, TakesColumnsByPosition) {
  Stock record;
  Answer(3, {{"4", "15", "xyz"}});
  session->Fetch(record);
  EXPECT_EQ(record.shop.getstr(), "4");
  EXPECT_EQ(record.count.getstr(), "15");
  EXPECT_EQ(record.code.getstr(), "xyz");
}

TEST_F(RecordFetch, WithoutARowReturns0AndLeavesTheRecordAsItWas) {
  Stock record;
  Answer(3, {});
  EXPECT_EQ(session->Fetch(record), 0);
  EXPECT_EQ(record.shop.getstr(), "3");
  EXPECT_EQ(record.count.getstr(), "12");
  EXPECT_EQ(record.code.getstr(), "a'b");
}

TEST_F(RecordFetch, WithoutARowFreesTheResult) {
  Plain<ASInt> record;
  Answer(1, {});
  session->Fetch(record);
  EXPECT_EQ(client.UnfreedResults(), 0U);
}

TEST_F(RecordFetch, WithoutAResultThrows) {
  Plain<ASInt> record;
  record.value = 5;
  session->Execute("SET x=1");
  EXPECT_EQ(ThrownBy([&] { session->Fetch(record); }), (Thrown{0, "MySQL fetch error. "}));
  EXPECT_EQ(record.value.getstr(), "5");
}

TEST_F(RecordFetch, OfAResultThatIsLostOnTheWayThrows) {
  Plain<ASInt> record;
  record.value = 5;
  Answer(1, {{"6"}});
  client.FailStoreResult(2013, "Lost connection");
  EXPECT_EQ(ThrownBy([&] { session->Fetch(record); }), (Thrown{0, "MySQL fetch error. "}));
  EXPECT_EQ(record.value.getstr(), "5");
}

TEST_F(RecordFetch, AgainWithoutAnotherStatementThrows) {
  Plain<ASInt> record;
  FetchInto(record, "5");
  EXPECT_EQ(ThrownBy([&] { session->Fetch(record); }), (Thrown{0, "MySQL fetch error. "}));
}

TEST_F(RecordFetch, AfterDisconnectingThrows) {
  Plain<ASInt> record;
  session->Disconnect();
  EXPECT_EQ(ThrownBy([&] { session->Fetch(record); }), (Thrown{0, "MySQL fetch error. "}));
}

TEST_F(RecordFetch, LeavesFurtherColumnsOfTheResultOut) {
  Plain<ASInt> record;
  Answer(3, {{"5", "6", std::nullopt}});
  EXPECT_EQ(session->Fetch(record), 1);
  EXPECT_EQ(record.value.getstr(), "5");
}

TEST_F(RecordFetch, OfARecordWithoutColumnsReturns1) {
  ASDomain record("t", "");
  Answer(1, {{"5"}});
  EXPECT_EQ(session->Fetch(record), 1);
}

TEST_F(RecordFetch, PassesOverAColumnWithoutValue) {
  WithGap record;
  Answer(3, {{"10", "20", "30"}});
  session->Fetch(record);
  EXPECT_EQ(record.first.getstr(), "10");
  EXPECT_EQ(record.last.getstr(), "30");
}

TEST_F(RecordFetch, LeavesTheValuesBound) {
  Plain<ASInt> record;
  FetchInto(record, "5");
  EXPECT_EQ(record.value.GetName(), "c");
}

TEST_F(RecordFetchDeathTest, OfFewerColumnsThanTheRecordHasEndsTheProgram) {
  Stock record;
  Answer(2, {{"4", "15"}});
  EXPECT_DEATH(session->Fetch(record), "mysql_num_fields\\(res\\) >= d\\.size\\(\\)");
}

TEST_F(RecordFetchDeathTest, OfFewerColumnsNamesTheFunctionAndItsSource) {
  Stock record;
  Answer(2, {{"4", "15"}});
  EXPECT_DEATH(session->Fetch(record), "ardbms.*int ASSession::Fetch\\(ASDomain&\\)");
}

TEST_F(RecordFetchDeathTest, OfFewerColumnsWithoutARowEndsTheProgram) {
  Stock record;
  Answer(2, {});
  EXPECT_DEATH(session->Fetch(record), "mysql_num_fields\\(res\\) >= d\\.size\\(\\)");
}

TEST_F(RecordFetch, ReadsInts) {
  Plain<ASInt> record;
  FetchInto(record, "-2147483647");
  EXPECT_EQ(record.value.getstr(), "-2147483647");
  EXPECT_EQ(record.value.IsNull(), 0);
}

TEST_F(RecordFetch, ReadsTheDigitsInFrontOfATextAsAnInt) {
  Plain<ASInt> record;
  FetchInto(record, " +12.75 m");
  EXPECT_EQ(record.value.getstr(), "12");
}

TEST_F(RecordFetch, ReadsATextWithoutDigitsAsZero) {
  Plain<ASInt> record;
  FetchInto(record, "none");
  EXPECT_EQ(record.value.getstr(), "0");
}

TEST_F(RecordFetch, TruncatesNumbersThatAreTooLargeForAnInt) {
  Plain<ASInt> record;
  FetchInto(record, "4294967295");
  EXPECT_EQ(record.value.getstr(), "-1");
  FetchInto(record, "2147483648");
  EXPECT_EQ(record.value.IsNull(), 1);
}

TEST_F(RecordFetch, ReadsTimes) {
  Plain<ASTime> record;
  FetchInto(record, "2004-07-01 13:45:00");
  EXPECT_EQ(record.value.getstr(), "2004-07-01 13:45:00");
}

TEST_F(RecordFetch, ReadsTimesByTheirDatabaseType) {
  Plain<Called<ASInt, corvane::kTypeInt, corvane::kDbTime>> record;
  FetchInto(record, "1970-01-02 00:00:01");
  EXPECT_EQ(record.value.getstr(), "86401");
}

TEST_F(RecordFetch, ReadsADateAloneAsNullTime) {
  Plain<ASTime> record(5);
  FetchInto(record, "2004-07-01");
  EXPECT_EQ(record.value.IsNull(), 1);
}

TEST_F(RecordFetch, ReadsTheZeroDateAsNullTime) {
  Plain<ASTime> record(5);
  FetchInto(record, "0000-00-00 00:00:00");
  EXPECT_EQ(record.value.IsNull(), 1);
}

TEST_F(RecordFetch, ReadsInt64s) {
  Plain<ASInt64> record;
  FetchInto(record, "9007199254740993");
  EXPECT_EQ(record.value.getstr(), "9007199254740993");
  EXPECT_EQ(record.value.IsNull(), 0);
}

TEST_F(RecordFetch, ReadsTheSmallestInt64AsANumber) {
  Plain<ASInt64> record;
  FetchInto(record, "-9223372036854775808");
  EXPECT_EQ(record.value.getstr(), "-9223372036854775808");
  EXPECT_EQ(record.value.IsNull(), 0);
}

TEST_F(RecordFetch, ReadsTheLargestInt64ForNumbersBeyondIt) {
  Plain<ASInt64> record;
  FetchInto(record, "18446744073709551615");
  EXPECT_EQ(record.value.getstr(), "9223372036854775807");
}

TEST_F(RecordFetch, ReadsDoubles) {
  Plain<ASDouble> record;
  FetchInto(record, "1234567.891");
  EXPECT_EQ(record.value.getstr(), "1234567.891");
  EXPECT_EQ(record.value.IsNull(), 0);
}

TEST_F(RecordFetch, ReadsDoublesWithAnExponent) {
  Plain<ASDouble> record;
  FetchInto(record, "-1.5e-7");
  EXPECT_EQ(record.value.getstr(), "-1.5e-07");
}

TEST_F(RecordFetch, ReadsAmountsOfMoney) {
  Plain<ASDCurrency> record;
  FetchInto(record, "12.50");
  EXPECT_EQ(record.value.getstr(), "12.5");
}

TEST_F(RecordFetch, ReadsGuids) {
  Plain<ASGuid> record;
  FetchInto(record, "{01234567-89AB-CDEF-0123-456789ABCDEF}");
  EXPECT_EQ(record.value.getstr(), "01234567-89ab-cdef-0123-456789abcdef");
  EXPECT_EQ(record.value.IsNull(), 0);
}

TEST_F(RecordFetch, ReadsATextThatIsNoGuidAsNullGuid) {
  Plain<ASGuid> record;
  record.value = Guid("0123456789abcdef0123456789abcdef");
  FetchInto(record, "none");
  EXPECT_EQ(record.value.IsNull(), 1);
  EXPECT_EQ(record.value.getstr(), "00000000-0000-0000-0000-000000000000");
}

TEST_F(RecordFetch, ReadsTextsWithoutPadding) {
  Plain<ASStr> record(8U);
  FetchInto(record, "ab");
  EXPECT_EQ(record.value.getstr(), "ab");
}

TEST_F(RecordFetch, ReadsVariableTexts) {
  Plain<ASVStr> record(8U);
  FetchInto(record, "ab");
  EXPECT_EQ(record.value.getstr(), "ab");
}

TEST_F(RecordFetch, ReadsEmptyTexts) {
  Plain<ASStr> fixed(8U);
  Plain<ASVStr> variable(8U);
  FetchInto(fixed, "");
  FetchInto(variable, "");
  EXPECT_EQ(fixed.value.IsNull(), 0);
  EXPECT_EQ(fixed.value.getstr(), "");
  EXPECT_EQ(variable.value.IsNull(), 0);
  EXPECT_EQ(variable.value.getstr(), "");
}

TEST_F(RecordFetch, LeavesNothingOfALongerText) {
  Plain<ASStr> fixed(10U);
  Plain<ASVStr> variable(10U);
  fixed.value = "abcdefghij";
  variable.value = "abcdefghij";
  FetchInto(fixed, "xy");
  FetchInto(variable, "xy");
  EXPECT_EQ(Bytes(fixed.value.voidptr(), 11), std::string("xy\0\0\0\0\0\0\0\0", 11));
  EXPECT_EQ(Bytes(variable.value.voidptr(), 11), std::string("xy\0\0\0\0\0\0\0\0", 11));
}

TEST_F(RecordFetch, CutsTextsAtTheirCapacity) {
  Plain<ASStr> fixed(3U);
  Plain<ASVStr> variable(3U);
  FetchInto(fixed, "abcdef");
  FetchInto(variable, "abcdef");
  EXPECT_EQ(fixed.value.getstr(), "abc");
  EXPECT_EQ(variable.value.getstr(), "abc");
}

TEST_F(RecordFetch, ReadsTextsThatJustFit) {
  Plain<ASVStr> record(6U);
  FetchInto(record, "abcdef");
  EXPECT_EQ(record.value.getstr(), "abcdef");
}

TEST_F(RecordFetch, OfATextWithoutCapacityReadsNothing) {
  Plain<ASStr> record(0U);
  FetchInto(record, "abcdef");
  EXPECT_EQ(record.value.IsNull(), 0);
  EXPECT_EQ(record.value.getstr(), "");
}

TEST_F(RecordFetch, ReadsTextsUpToTheirFirstNul) {
  Plain<ASStr> fixed(8U);
  Plain<ASVStr> variable(8U);
  FetchInto(fixed, std::string("ab\0cd", 5));
  FetchInto(variable, std::string("ab\0cd", 5));
  EXPECT_EQ(Bytes(fixed.value.voidptr(), 9), std::string("ab\0\0\0\0\0\0", 9));
  EXPECT_EQ(Bytes(variable.value.voidptr(), 9), std::string("ab\0\0\0\0\0\0", 9));
}

TEST_F(RecordFetch, ReadsLongTextsWhole) {
  Plain<ASVStr> record(102400U);
  FetchInto(record, std::string(102400, 'x'));
  EXPECT_TRUE(record.value.getstr() == std::string(102400, 'x').c_str());
}

TEST_F(RecordFetch, ReadsLargeBinariesByteForByte) {
  Plain<ASRealBlob> record(0U);
  FetchInto(record, std::string("a\0b\xFF", 4));
  ASSERT_EQ(record.value.Length(), 4U);
  EXPECT_EQ(Bytes(record.value.voidptr(), 4), std::string("a\0b\xFF", 4));
}

TEST_F(RecordFetch, ReadsEmptyLargeBinaries) {
  Plain<ASRealBlob> record(8U);
  FetchInto(record, "");
  EXPECT_EQ(record.value.IsNull(), 0);
  EXPECT_EQ(record.value.Length(), 0U);
}

TEST_F(RecordFetch, ReadsLargeBinariesThatOutliveTheResult) {
  Plain<ASRealBlob> record(0U);
  FetchInto(record, std::string(102400, '\1'));
  Plain<ASInt> other;
  FetchInto(other, "5");
  ASSERT_EQ(record.value.Length(), 102400U);
  EXPECT_TRUE(Bytes(record.value.voidptr(), 102400) == std::string(102400, '\1'));
}

TEST_F(RecordFetch, ReadsSmallBinariesByteForByte) {
  Plain<ASBlob> record(std::uint16_t{8});
  FetchInto(record, std::string("a\0b", 3));
  EXPECT_EQ(record.value.size(), 3);
  EXPECT_EQ(Bytes(record.value.voidptr(), 10), std::string("\3\0a\0b\0\0\0\0\0", 10));
}

TEST_F(RecordFetch, LeavesNothingOfALongerSmallBinary) {
  Plain<ASBlob> record(std::uint16_t{4});
  record.value.Fill("abcd", 4);
  FetchInto(record, "x");
  EXPECT_EQ(Bytes(record.value.voidptr(), 6), std::string("\1\0x\0\0\0", 6));
}

TEST_F(RecordFetch, CutsSmallBinariesAtTheirCapacity) {
  Plain<ASBlob> record(std::uint16_t{4});
  FetchInto(record, std::string("a\0b\0c\0d", 7));
  EXPECT_EQ(Bytes(record.value.voidptr(), 6), std::string("\4\0a\0b\0", 6));
}

TEST_F(RecordFetch, CutsSmallBinariesOfTheLargestCapacity) {
  Plain<ASBlob> record(std::uint16_t{65535});
  FetchInto(record, std::string(70000, 'x'));
  EXPECT_EQ(record.value.size(), 65535);
}

TEST_F(RecordFetch, ReadsEmptySmallBinariesAsNull) {
  Plain<ASBlob> record(std::uint16_t{4});
  record.value.Fill("abcd", 4);
  FetchInto(record, "");
  EXPECT_EQ(record.value.IsNull(), 1);
}

TEST_F(RecordFetch, ReadsGeometriesByteForByte) {
  Plain<ASGeometry> record(std::uint16_t{21});
  FetchInto(record, Header(kPoint) + Coordinates({1.5, -2}));
  EXPECT_EQ(Bytes(record.value.voidptr(), 23), std::string("\x15\0", 2) + Header(kPoint) + Coordinates({1.5, -2}));
}

TEST_F(RecordFetch, CutsGeometriesAtTheirCapacity) {
  Plain<ASGeometry> record(std::uint16_t{21});
  FetchInto(record, Triangle());
  EXPECT_EQ(record.value.size(), 21);
  EXPECT_EQ(Bytes(record.value.Bytes(), 21), Triangle().substr(0, 21));
}

TEST_F(RecordFetch, ReadsNullInts) {
  Plain<ASInt> record;
  record.value = 5;
  EXPECT_EQ(FetchInto(record, std::nullopt), 1);
  EXPECT_EQ(record.value.IsNull(), 1);
}

TEST_F(RecordFetch, ReadsNullTimes) {
  Plain<ASTime> record(5);
  FetchInto(record, std::nullopt);
  EXPECT_EQ(record.value.IsNull(), 1);
}

TEST_F(RecordFetch, ReadsNullInt64s) {
  Plain<ASInt64> record;
  record.value = 5L;
  FetchInto(record, std::nullopt);
  EXPECT_EQ(record.value.IsNull(), 1);
  EXPECT_EQ(record.value.getstr(), "-9223372036854775808");
}

TEST_F(RecordFetch, ReadsNullDoubles) {
  Plain<ASDouble> record;
  record.value = 1.5;
  FetchInto(record, std::nullopt);
  EXPECT_EQ(record.value.IsNull(), 1);
}

TEST_F(RecordFetch, ReadsNullAmountsOfMoney) {
  Plain<ASDCurrency> record;
  record.value = 1.5;
  FetchInto(record, std::nullopt);
  EXPECT_EQ(record.value.IsNull(), 1);
}

TEST_F(RecordFetch, ReadsNullGuids) {
  Plain<ASGuid> record;
  record.value = Guid("0123456789abcdef0123456789abcdef");
  FetchInto(record, std::nullopt);
  EXPECT_EQ(record.value.IsNull(), 1);
  EXPECT_EQ(record.value.getstr(), "00000000-0000-0000-0000-000000000000");
}

TEST_F(RecordFetch, ReadsNullTexts) {
  Plain<ASStr> fixed(8U);
  Plain<ASVStr> variable(8U);
  fixed.value = "text";
  variable.value = "text";
  FetchInto(fixed, std::nullopt);
  FetchInto(variable, std::nullopt);
  EXPECT_EQ(fixed.value.IsNull(), 1);
  EXPECT_EQ(variable.value.IsNull(), 1);
}

TEST_F(RecordFetch, ReadsNullBinaries) {
  Plain<ASBlob> small(std::uint16_t{4});
  Plain<ASRealBlob> large(4U);
  Plain<ASGeometry> geometry(std::uint16_t{21});
  small.value.Fill("abcd", 4);
  Fill(geometry.value, Header(kPoint));
  FetchInto(small, std::nullopt);
  FetchInto(large, std::nullopt);
  FetchInto(geometry, std::nullopt);
  EXPECT_EQ(small.value.IsNull(), 1);
  EXPECT_EQ(large.value.IsNull(), 1);
  EXPECT_EQ(geometry.value.IsNull(), 1);
}

// A value that was NULL and is not any more must not be written back as NULL.
TEST_F(RecordFetch, EndsTheNullOfEveryKind) {
  Plain<ASInt> number;
  Plain<ASTime> time;
  Plain<ASInt64> large;
  Plain<ASDouble> real;
  Plain<ASDCurrency> money;
  Plain<ASStr> fixed(8U);
  Plain<ASVStr> variable(8U);
  Plain<ASGuid> guid;
  FetchInto(number, "0");
  FetchInto(time, "1970-01-01 00:00:00");
  FetchInto(large, "0");
  FetchInto(real, "0");
  FetchInto(money, "0");
  FetchInto(fixed, "");
  FetchInto(variable, "");
  FetchInto(guid, "00000000-0000-0000-0000-000000000000");
  EXPECT_EQ(number.value.IsNull(), 0);
  EXPECT_EQ(time.value.IsNull(), 0);
  EXPECT_EQ(large.value.IsNull(), 0);
  EXPECT_EQ(real.value.IsNull(), 0);
  EXPECT_EQ(money.value.IsNull(), 0);
  EXPECT_EQ(fixed.value.IsNull(), 0);
  EXPECT_EQ(variable.value.IsNull(), 0);
  EXPECT_EQ(guid.value.IsNull(), 0);
}

// A class that claims to be of a type which it is not.
template <class Value>
class RecordFetchOfAClaim : public RecordFetch {};

using Claims = testing::Types<
    Called<ASInt, corvane::kTypeDouble, corvane::kDbDouble>, Called<ASInt, corvane::kTypeDCurrency, corvane::kDbDouble>,
    Called<ASInt, corvane::kTypeInt64, corvane::kDbInt64>, Called<ASInt, corvane::kTypeGuid, corvane::kDbGuid>,
    Called<ASInt, corvane::kTypeRealBlob, corvane::kDbRealBlob>, Called<ASInt, corvane::kTypeStr, corvane::kDbStr>,
    Called<ASInt, corvane::kTypeStr, corvane::kDbVStr>, Called<ASInt, corvane::kTypeBlob, corvane::kDbBlob>,
    Called<ASInt, corvane::kTypeBlob, corvane::kDbGeometry>, Called<ASInt, kUnknown, kUnknown>>;

// "Type16Database95", for example.
struct ClaimName {
  template <class Value>
  static std::string GetName(int) {
    return "Type" + std::to_string(Value().GetType()) + "Database" + std::to_string(Value().GetDBType());
  }
};
TYPED_TEST_SUITE(RecordFetchOfAClaim, Claims, ClaimName);

TYPED_TEST(RecordFetchOfAClaim, ThatTheClassDoesNotKeepThrowsAndLeavesTheValueAlone) {
  Plain<TypeParam> record;
  record.value = 5;
  EXPECT_THROW(this->FetchInto(record, "0123456789abcdef0123456789abcdef"), AException);
  EXPECT_EQ(record.value.getstr(), "5");
  EXPECT_EQ(this->client.UnfreedResults(), 0U);
}

TYPED_TEST(RecordFetchOfAClaim, ThatTheClassDoesNotKeepStillReadsNull) {
  Plain<TypeParam> record;
  record.value = 5;
  EXPECT_EQ(this->FetchInto(record, std::nullopt), 1);
  EXPECT_EQ(record.value.IsNull(), 1);
}

TEST_F(RecordFetch, OfALargeNumberThatClaimsToBeAnIntThrows) {
  Plain<Called<ASInt64, corvane::kTypeInt, corvane::kDbInt>> record;
  record.value = 5L;
  EXPECT_THROW(FetchInto(record, "6"), AException);
  EXPECT_EQ(record.value.getstr(), "5");
}

TEST_F(RecordFetch, OfASmallBinaryThatClaimsToBeAGeometryThrows) {
  Plain<Called<ASBlob, corvane::kTypeBlob, corvane::kDbGeometry>> record(std::uint16_t{21});
  EXPECT_THROW(FetchInto(record, Header(kPoint)), AException);
  EXPECT_EQ(record.value.IsNull(), 1);
}

TEST_F(RecordFetch, ReadsAnUnknownTypeOfASmallBinaryAsWhatItIs) {
  Plain<Called<ASBlob, kUnknown, kUnknown>> record(std::uint16_t{4});
  FetchInto(record, "ab");
  EXPECT_EQ(record.value.size(), 2);
}

}  // namespace
}  // namespace corvane::test
