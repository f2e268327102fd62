#include <gmock/gmock.h>

#include <memory>
#include <ostream>
#include <string>

#include "tests/support/live.h"

using corvane::Escaped;
using corvane::Literal;
using corvane::test::Fetched;
using corvane::test::FetchedValue;
using corvane::test::LiveTest;
using corvane::test::Rows;
using corvane::test::Session;

namespace {

class LiteralText : public LiveTest {
 protected:
  void CreateTables() override {
    Run("CREATE TABLE t (i INT, l BIGINT, d DOUBLE, at DATETIME, v VARCHAR(40), g CHAR(36))");
    Run("INSERT INTO t VALUES (42, 9007199254740993, 0.1, '2004-07-01 13:45:00', 'O\\'Brien\\\\', "
        "'6f9619ff-8b86-d011-b42d-00c04fc964ff')");
    Run("INSERT INTO t VALUES (0, 0, 0, '1970-01-01', '', '')");
  }

  // How many rows the server finds for a condition on one column.
  corvane::test::Field Found(char const* column, Str const& literal) {
    Session session(With());
    return FetchedValue(session, (Str("SELECT COUNT(*) FROM t WHERE ") + column + "=" + literal).ToString());
  }
};

TEST_F(LiteralText, OfAnIntFindsItsRow) {
  Str const literal = Literal(Int(42));
  EXPECT_EQ(literal, "42");
  EXPECT_EQ(Found("i", literal), "1");
}

TEST_F(LiteralText, OfAnInt64FindsItsRow) {
  Str const literal = Literal(Int64(9007199254740993L));
  EXPECT_EQ(literal, "9007199254740993");
  EXPECT_EQ(Found("l", literal), "1");
}

TEST_F(LiteralText, OfADoubleFindsItsRow) {
  Str const literal = Literal(Double(0.1));
  EXPECT_EQ(literal, "0.1");
  EXPECT_EQ(Found("d", literal), "1");
}

TEST_F(LiteralText, OfALargeDoubleIsUnderstood) {
  Session session(With());
  Str const literal = Literal(Double(1e300));
  EXPECT_EQ(literal, "1e+300");
  EXPECT_EQ(FetchedValue(session, ("SELECT " + literal).ToString()), "1e300");
}

TEST_F(LiteralText, OfATimeFindsItsRow) {
  Str const literal = Literal(ASTime(1088689500));
  EXPECT_EQ(literal, "'2004-07-01 13:45:00'");
  EXPECT_EQ(Found("at", literal), "1");
}

TEST_F(LiteralText, OfATextFindsItsRow) {
  Str const literal = Literal(Str("O'Brien\\"));
  EXPECT_EQ(literal, "'O\\'Brien\\\\'");
  EXPECT_EQ(Found("v", literal), "1");
}

TEST_F(LiteralText, OfAGuidFindsItsRow) {
  Str const literal = Literal(Guid("6F9619FF8B86D011B42D00C04FC964FF"));
  EXPECT_EQ(literal, "'6f9619ff-8b86-d011-b42d-00c04fc964ff'");
  EXPECT_EQ(Found("g", literal), "1");
}

TEST_F(LiteralText, OfANullNumberFindsNoRow) {
  EXPECT_EQ(Found("i", Literal(Int())), "0");
  EXPECT_EQ(Found("l", Literal(Int64())), "0");
  EXPECT_EQ(Found("d", Literal(Double())), "0");
}

TEST_F(LiteralText, OfABinaryValueIsTheWordBlob) {
  Session session(With());
  EXPECT_EQ(FetchedValue(session, ("SELECT " + Literal(RealBlob(3, "abc"))).ToString()), "BLOB");
}

TEST_F(LiteralText, OfANullTimeIsTheWordNullAsAText) {
  Session session(With());
  EXPECT_EQ(Fetched(session, ("SELECT " + Literal(ASTime())).ToString()), (Rows{{"NULL"}}));
}

TEST_F(LiteralText, EscapedBytesArriveAsTheyStand) {
  std::string bytes;
  for (int i = 1; i < 128; ++i) bytes.push_back(static_cast<char>(i));
  Session session(With());
  EXPECT_EQ(FetchedValue(session, ("SELECT '" + Escaped(bytes.c_str()) + "'").ToString()), bytes);
}

}  // namespace
