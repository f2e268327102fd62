#include <gmock/gmock.h>

#include <list>
#include <memory>
#include <string>
#include <vector>

#include "tests/live/both_ways.h"

using corvane::test::BothWays;
using corvane::test::Field;
using corvane::test::ImagesOf;
using corvane::test::NameOf;
using corvane::test::NumbersTest;
using corvane::test::Row;
using corvane::test::Rows;
using corvane::test::RowsOf;
using corvane::test::Session;
using corvane::test::Taking;
using corvane::test::Way;
using ::testing::ElementsAre;

// The rows of a cursor's own query are the same, whether they are read straight from the connection or stored by the
// client library first.

namespace {

constexpr auto kBoth = {Way::kUnstored, Way::kStored};

// A column of every kind. The texts and the small binaries hold up to 10 bytes.
struct Everything : ASDomain {
  ASInt id;
  ASInt64 large;
  ASDouble real;
  ASDCurrency price;
  ASTime made;
  ASStr code{10U};
  ASVStr name{10U};
  ASGuid guid;
  ASBlob small{std::uint16_t{10}};
  ASGeometry shape{std::uint16_t{100}};
  ASRealBlob photo{0U};
  ASAttribute idColumn{"id", "Id", 0, corvane::kKey};
  ASAttribute largeColumn{"large"}, realColumn{"real_"}, priceColumn{"price"}, madeColumn{"made"}, codeColumn{"code"},
      nameColumn{"name"}, guidColumn{"guid"}, smallColumn{"small"}, shapeColumn{"shape"}, photoColumn{"photo"};

  Everything() : ASDomain("everything", "Everything") {
    Add(idColumn, id).Add(largeColumn, large).Add(realColumn, real).Add(priceColumn, price).Add(madeColumn, made);
    Add(codeColumn, code).Add(nameColumn, name).Add(guidColumn, guid).Add(smallColumn, small);
    Add(shapeColumn, shape).Add(photoColumn, photo);
  }
  Everything(Everything const&) = delete;
  Everything& operator=(Everything const&) = delete;

  void Ask(ASCursor& cursor, unsigned rows) {
    cursor.Project() << idColumn << largeColumn << realColumn << priceColumn << madeColumn << codeColumn << nameColumn
                     << guidColumn << smallColumn << shapeColumn << photoColumn;
    cursor.Order(ASOrder(idColumn.Query()));
    cursor.Limit(rows);
  }
};

constexpr int kRowSize = 312;  // of Everything: 11 cells, 11 bytes for each text, 17 for the GUID

// NULL, empty, of the capacity and longer ones take turns in every column.
constexpr char const* kEverything[] = {
    "SET sql_mode='NO_BACKSLASH_ESCAPES'",
    "CREATE TABLE everything (id INT PRIMARY KEY, `large` BIGINT, real_ DOUBLE, price DECIMAL(12,2), made DATETIME,"
    " code CHAR(20), name VARBINARY(200), guid CHAR(36), small VARBINARY(20), shape GEOMETRY, photo BLOB)",
    "INSERT INTO everything SELECT id, IF(id%2, NULL, id*1000000007*IF(id%4, 1, -1)), IF(id%3, id/4, NULL),"
    " IF(id%5, id/2, NULL), IF(id%7, '2004-02-28 23:59:59' + INTERVAL id*86399 SECOND, NULL),"
    " ELT(id%6, '', REPEAT('c', 10), REPEAT('d', 11), CONCAT('e', id), REPEAT('f', 20)),"
    " ELT(id%7, '', REPEAT('x', 10), REPEAT('y', 11), CONCAT('a', CHAR(0), id), CONCAT('z', id), REPEAT('u', 200)),"
    " IF(id%4, INSERT(INSERT(INSERT(INSERT(MD5(id), 21, 0, '-'), 17, 0, '-'), 13, 0, '-'), 9, 0, '-'), NULL),"
    " ELT(id%5, '', REPEAT(CHAR(0), 10), REPEAT(CHAR(255), 11), CHAR(id%256)),"
    " IF(id%3, Point(id, -id), NULL), ELT(id%4, '', REPEAT(CHAR(id%256), id%700), REPEAT('p', 64)) FROM n"};

// What a bare connection reads of the first rows, with what becomes of it in the values.
std::string Expected(unsigned rows) {
  return "SELECT id, `large`, real_, price+0e0, made, LEFT(RPAD(code, 10, ' '), 10),"
         " LEFT(SUBSTRING_INDEX(name, CHAR(0), 1), 10), guid, NULLIF(LEFT(small, 10), ''), ST_AsBinary(shape), photo"
         " FROM everything ORDER BY id LIMIT " +
         std::to_string(rows);
}

class UnstoredRows : public BothWays {
 protected:
  void CreateTables() override {
    BothWays::CreateTables();
    for (char const* const statement : kEverything) Run(statement);
  }

  Everything record;
};

INSTANTIATE_TEST_SUITE_P(Ways, UnstoredRows, ::testing::ValuesIn(kBoth), NameOf);

TEST_P(UnstoredRows, AreTakenInTheWayOfTheTest) {
  Session session(With());
  ASCursor cursor(&session);
  record.Ask(cursor, 20);
  int const before = Taking::Results();
  cursor.Open();
  EXPECT_EQ(Taking::Results(), before + 1);
  EXPECT_EQ(Taking::AnnouncedRows(), GetParam() == Way::kStored ? 20U : 0U);
}

TEST_P(UnstoredRows, OfAStatementAreAlwaysStored) {
  Session session(With());
  int const before = Taking::Results();
  ASCursor cursor(&session);
  cursor.Statement("SELECT id FROM n");
  EXPECT_EQ(cursor.GetAmount(), kNumbers);
  EXPECT_EQ(Taking::Results(), before);
}

TEST_P(UnstoredRows, HoldWhatIsStoredInColumnsOfEveryKind) {
  Session session(With());
  ASCursor cursor(&session);
  record.Ask(cursor, kNumbers);
  EXPECT_EQ(RowsOf(cursor), StoredRows(Expected(kNumbers)));
}

TEST_P(UnstoredRows, AreReadInAnyOrder) {
  Session session(With());
  ASCursor cursor(&session);
  record.Ask(cursor, kNumbers);
  std::vector<int> read;
  for (int const row : {4999, 0, 2500, 11, 12}) {
    EXPECT_EQ(cursor.Fetch(row), row + 1);
    read.push_back(static_cast<int>(record.id));
  }
  EXPECT_THAT(read, ElementsAre(5000, 1, 2501, 12, 13));
  EXPECT_EQ(cursor.Fetch(5000), 0);
}

TEST_P(UnstoredRows, OfNoColumnsAreCounted) {
  Session session(With());
  auto const cursor = Cursor(session, "SELECT * FROM everything");
  EXPECT_EQ(cursor->GetAmount(), kNumbers);
  EXPECT_EQ(cursor->Fetch(4999), 5000);
  EXPECT_EQ(cursor->Fetch(), 0);
}

TEST_P(UnstoredRows, OfUnionsAndLimitsAreRead) {
  Session session(With());
  ASInt id;
  ASAttribute column("id");
  ASDomain first("n", ""), second("n", "");
  first.Add(column, id);
  ASAttribute otherColumn("id");
  second.Add(otherColumn, id);
  ASCursor other(&session);
  other.Project() << otherColumn;
  other.Where(otherColumn <= 2);
  ASCursor cursor(&session);
  cursor.Project() << column;
  cursor.Where(column >= 4999);
  cursor.UnionAll(other);
  cursor.Order(ASOrder("1"));
  EXPECT_EQ(RowsOf(cursor), (Rows{{"1"}, {"2"}, {"4999"}, {"5000"}}));
  ASCursor none(&session);
  none.Project() << column;
  none.Limit(0);
  EXPECT_EQ(none.GetAmount(), 0);
  EXPECT_EQ(none.Fetch(), 0);
}

// Wide and long rows.

TEST_P(UnstoredRows, OfTwoHundredColumnsAreRead) {
  constexpr int kColumns = 200;
  std::string columns = "id INT PRIMARY KEY", values = "id";
  for (int i = 0; i < kColumns; ++i) {
    columns += ", c" + std::to_string(i) + " VARCHAR(20)";
    values += ", IF(id%3, CONCAT(id, '/" + std::to_string(i) + "'), NULL)";
  }
  Run("CREATE TABLE wide (" + columns + ") CHARACTER SET latin1");
  Run("INSERT INTO wide SELECT " + values + " FROM n WHERE id<=300");
  Session session(With());
  ASDomain wide("wide", "");
  ASInt id;
  ASAttribute idColumn("id");
  wide.Add(idColumn, id);
  std::list<ASVStr> texts;
  std::list<ASAttribute> attributes;
  for (int i = 0; i < kColumns; ++i) {
    wide.Add(attributes.emplace_back(("c" + std::to_string(i)).c_str()), texts.emplace_back(20U));
  }
  ASCursor cursor(&session);
  for (ASAttribute const* const attribute : wide) cursor.Project() << *attribute;
  cursor.Order(ASOrder(idColumn.Query()));
  EXPECT_EQ(RowsOf(cursor), StoredRows("SELECT * FROM wide ORDER BY id"));
}

class UnstoredLongRow : public BothWays {
 protected:
  Row Read(std::string const& query, unsigned capacity) {
    Session session(With());
    ASVStr text(capacity);
    ASRealBlob bytes(0U);
    ASAttribute textColumn("t"), bytesColumn("b");
    ASDomain record("n", "");
    record.Add(textColumn, text).Add(bytesColumn, bytes);
    auto const cursor = Cursor(session, query);
    cursor->Project() << textColumn << bytesColumn;
    Rows const rows = RowsOf(*cursor);
    return rows.size() == 1 ? rows[0] : Row{};
  }
};

INSTANTIATE_TEST_SUITE_P(Ways, UnstoredLongRow, ::testing::ValuesIn(kBoth), NameOf);

constexpr unsigned kMiB = 1048576;

TEST_P(UnstoredLongRow, OfOneMebibyteIsReadWhole) {
  EXPECT_TRUE(Read("SELECT REPEAT('x', 1048576), REPEAT('y', 1048576)", kMiB) ==
              (Row{std::string(kMiB, 'x'), std::string(kMiB, 'y')}));
}

TEST_P(UnstoredLongRow, OfFifteenMebibytesIsReadWhole) {
  EXPECT_TRUE(Read("SELECT REPEAT('x', 15728640), 'y'", 15 * kMiB) == (Row{std::string(15 * kMiB, 'x'), "y"}));
  EXPECT_TRUE(Read("SELECT 'x', REPEAT('y', 15728640)", 1) == (Row{"x", std::string(15 * kMiB, 'y')}));
}

// A packet holds 16,777,215 bytes; what is longer comes in several.
TEST_P(UnstoredLongRow, OfSeveralPacketsIsReadWhole) {
  EXPECT_TRUE(Read("SELECT REPEAT('x', 12582912), REPEAT('y', 12582912)", 12 * kMiB) ==
              (Row{std::string(12 * kMiB, 'x'), std::string(12 * kMiB, 'y')}));
}

TEST_P(UnstoredLongRow, IsCutAtTheCapacity) {
  EXPECT_TRUE(Read("SELECT REPEAT('x', 15728640), NULL", kMiB) == (Row{std::string(kMiB, 'x'), Field()}));
}

TEST_P(UnstoredLongRow, BetweenShortOnesLeavesThemAsTheyAre) {
  Session session(With());
  ASVStr text(3 * kMiB);
  ASAttribute textColumn("t");
  ASDomain record("n", "");
  record.Add(textColumn, text);
  auto const cursor = Cursor(session, "SELECT 'a' UNION ALL SELECT REPEAT('b', 3145728) UNION ALL SELECT 'c'");
  cursor->Project() << textColumn;
  EXPECT_TRUE(RowsOf(*cursor) == (Rows{{"a"}, {std::string(3 * kMiB, 'b')}, {"c"}}));
}

// Whatever the number of rows. The buffer grows with rows that come in one by one: it holds 13, 26, 52, 105, 210,
// 420, 840, 1680, 3360 of them. From 128 KiB on it has pages of its own.

class UnstoredRowCount : public ::testing::WithParamInterface<unsigned>, public NumbersTest {
 protected:
  void CreateTables() override {
    NumbersTest::CreateTables();
    for (char const* const statement : kEverything) Run(statement);
  }

  // Opens a cursor in the way given and takes the bytes of its rows and the size of its buffer.
  void Open(Way way, std::vector<std::string>& images, int& capacity) {
    Taking const taking(way);
    Session session(With());
    Everything record;
    ASCursor cursor(&session);
    record.Ask(cursor, GetParam());
    cursor.Open();
    images = ImagesOf(cursor);
    capacity = std::unique_ptr<MapBuffer>(cursor.Detach())->Capacity();
  }
};

TEST_P(UnstoredRowCount, GivesTheSameBytesInABufferOfTheSameSize) {
  std::vector<std::string> unstored, stored;
  int unstoredCapacity = 0, storedCapacity = 0;
  Open(Way::kUnstored, unstored, unstoredCapacity);
  Open(Way::kStored, stored, storedCapacity);
  EXPECT_EQ(unstored.size(), GetParam());
  EXPECT_TRUE(unstored == stored);
  EXPECT_EQ(unstoredCapacity, storedCapacity);
}

TEST_P(UnstoredRowCount, GivesTheValuesThatAreStored) {
  Session session(With());
  Everything record;
  ASCursor cursor(&session);
  record.Ask(cursor, GetParam());
  EXPECT_EQ(cursor.GetAmount(), static_cast<int>(GetParam()));
  EXPECT_EQ(RowsOf(cursor), StoredRows(Expected(GetParam())));
}

INSTANTIATE_TEST_SUITE_P(Rows, UnstoredRowCount,
                         ::testing::Values(0U, 1U, 2U, 13U, 14U, 26U, 27U, 52U, 53U, 105U, 106U, 210U, 211U, 420U, 421U,
                                           840U, 841U, 1680U, 1681U, 3360U, 3361U, 5000U));

TEST_F(NumbersTest, RowOfEverythingHasTheSizeThatTheCountsAreMadeFor) {
  for (char const* const statement : kEverything) Run(statement);
  Session session(With());
  Everything record;
  ASCursor cursor(&session);
  record.Ask(cursor, 2);
  cursor.Open();
  EXPECT_EQ((cursor.GetUURecord(1) - cursor.GetUURecord(0)) * static_cast<int>(sizeof(UU)), kRowSize);
}

}  // namespace
