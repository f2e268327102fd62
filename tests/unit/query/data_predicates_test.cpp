#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "corvane/corvane.h"
#include "tests/support/sql.h"

using testing::ElementsAre;

namespace {

template <class Column, class Value>
Column Holding(Column column, Value const& value) {
  column = value;
  return column;
}

ASInt One() { return Holding(ASInt(), 1); }

// The conditions by EQ, NE, GT, LT, GE and LE, with all that they name.
std::vector<std::string> SixWays(ASData const& value, basic_type const& other) {
  std::vector<std::string> all;
  for (ASComparison const& condition :
       {value.EQ(other), value.NE(other), value.GT(other), value.LT(other), value.GE(other), value.LE(other)}) {
    all.push_back(corvane::test::Described(condition, {}));
  }
  return all;
}

std::string Equal(ASData const& value, basic_type const& other) {
  return corvane::test::Described(value.EQ(other), {});
}

TEST(DataPredicates, BothValuesAreQuotedAndNoRecordIsNamed) {
  EXPECT_THAT(SixWays(One(), Int(2)),
              ElementsAre("['1'='2']", "['1'<>2']", "['1'>'2']", "['1'<'2']", "['1'>='2']", "['1'<='2']"));
}

TEST(DataPredicates, NotEqualOpensNoQuoteOnTheRight) {
  EXPECT_EQ(One().NE(Int(2)).Query(), "'1'<>2'");
  EXPECT_EQ(Holding(ASVStr(5), "a").NE(Str("b")).Query(), "'a'<>b'");
}

TEST(DataPredicates, AColumnOfARecordNamesNoRecordEither) {
  corvane::test::Orders o;
  o.id = 1;
  o.total = 2;
  EXPECT_THAT(SixWays(o.id, o.total),
              ElementsAre("['1'='2']", "['1'<>2']", "['1'>'2']", "['1'<'2']", "['1'>='2']", "['1'<='2']"));
}

TEST(DataPredicates, NothingIsEscaped) {
  EXPECT_THAT(SixWays(Holding(ASVStr(9), "O'B\\"), Str("x'\n\"")),
              ElementsAre("['O'B\\'='x'\n\"']", "['O'B\\'<>x'\n\"']", "['O'B\\'>'x'\n\"']", "['O'B\\'<'x'\n\"']",
                          "['O'B\\'>='x'\n\"']", "['O'B\\'<='x'\n\"']"));
}

TEST(DataPredicates, ValuesOfEveryKindOnTheLeft) {
  EXPECT_EQ(Equal(One(), Int(2)), "['1'='2']");
  EXPECT_EQ(Equal(Holding(ASInt64(), 5000000000), Int(2)), "['5000000000'='2']");
  EXPECT_EQ(Equal(Holding(ASDouble(), 2.5), Int(2)), "['2.5'='2']");
  EXPECT_EQ(Equal(Holding(ASDCurrency(), 19.99), Int(2)), "['19.99'='2']");
  EXPECT_EQ(Equal(Holding(ASStr(4), "ab"), Int(2)), "['ab  '='2']");
  EXPECT_EQ(Equal(Holding(ASVStr(4), "ab"), Int(2)), "['ab'='2']");
  EXPECT_EQ(Equal(ASTime(1088689500), Int(2)), "['2004-07-01 13:45:00'='2']");
  EXPECT_EQ(Equal(Holding(ASGuid(), Guid(1, 2)), Int(2)), "['00000000-0000-0001-0000-000000000002'='2']");
  EXPECT_EQ(Equal(Holding(ASBlob(5), Blob(3, "abc")), Int(2)), "['BLOB'='2']");
  EXPECT_EQ(Equal(Holding(ASGeometry(5), Blob(3, "abc")), Int(2)), "['BLOB'='2']");
  EXPECT_EQ(Equal(Holding(ASRealBlob(0), RealBlob(3, "abc")), Int(2)), "['BLOB'='2']");
}

TEST(DataPredicates, ValuesOfEveryKindOnTheRight) {
  EXPECT_EQ(Equal(One(), Int64(5000000000)), "['1'='5000000000']");
  EXPECT_EQ(Equal(One(), Double(2.5)), "['1'='2.5']");
  EXPECT_EQ(Equal(One(), Str("ab")), "['1'='ab']");
  EXPECT_EQ(Equal(One(), Guid(1, 2)), "['1'='00000000-0000-0001-0000-000000000002']");
  EXPECT_EQ(Equal(One(), Blob(3, "abc")), "['1'='BLOB']");
  EXPECT_EQ(Equal(One(), RealBlob(3, "abc")), "['1'='BLOB']");
  EXPECT_EQ(Equal(One(), Holding(ASInt(), 2)), "['1'='2']");
  EXPECT_EQ(Equal(One(), Holding(ASInt64(), 5000000000)), "['1'='5000000000']");
  EXPECT_EQ(Equal(One(), Holding(ASDouble(), 2.5)), "['1'='2.5']");
  EXPECT_EQ(Equal(One(), Holding(ASDCurrency(), 19.99)), "['1'='19.99']");
  EXPECT_EQ(Equal(One(), Holding(ASStr(4), "ab")), "['1'='ab  ']");
  EXPECT_EQ(Equal(One(), Holding(ASVStr(4), "ab")), "['1'='ab']");
  EXPECT_EQ(Equal(One(), ASTime(0)), "['1'='1970-01-01 00:00:00']");
  EXPECT_EQ(Equal(One(), Holding(ASGuid(), Guid(1, 2))), "['1'='00000000-0000-0001-0000-000000000002']");
  EXPECT_EQ(Equal(One(), Holding(ASBlob(5), Blob(3, "abc"))), "['1'='BLOB']");
  EXPECT_EQ(Equal(One(), Holding(ASGeometry(5), Blob(3, "abc"))), "['1'='BLOB']");
  EXPECT_EQ(Equal(One(), Holding(ASRealBlob(0), RealBlob(3, "abc"))), "['1'='BLOB']");
}

TEST(DataPredicates, ANullOnTheLeftContributesItsTextForm) {
  EXPECT_EQ(Equal(ASInt(), Int(2)), "['-2147483648'='2']");
  EXPECT_EQ(Equal(ASInt64(), Int(2)), "['-9223372036854775808'='2']");
  EXPECT_EQ(Equal(ASDouble(), Int(2)), "['-1.7976931348623157e+308'='2']");
  EXPECT_EQ(Equal(ASDCurrency(), Int(2)), "['-1.7976931348623157e+308'='2']");
  EXPECT_EQ(Equal(ASStr(4), Int(2)), "[''='2']");
  EXPECT_EQ(Equal(ASVStr(4), Int(2)), "[''='2']");
  EXPECT_EQ(Equal(ASTime(), Int(2)), "['NULL'='2']");
  EXPECT_EQ(Equal(ASGuid(), Int(2)), "['00000000-0000-0000-0000-000000000000'='2']");
  EXPECT_EQ(Equal(ASBlob(5), Int(2)), "['BLOB'='2']");
  EXPECT_EQ(Equal(ASGeometry(5), Int(2)), "['BLOB'='2']");
  EXPECT_EQ(Equal(ASRealBlob(0), Int(2)), "['BLOB'='2']");
}

TEST(DataPredicates, ANullOnTheRightContributesItsTextForm) {
  EXPECT_EQ(Equal(One(), Int()), "['1'='-2147483648']");
  EXPECT_EQ(Equal(One(), Int64()), "['1'='-9223372036854775808']");
  EXPECT_EQ(Equal(One(), Double()), "['1'='-1.7976931348623157e+308']");
  EXPECT_EQ(Equal(One(), Str()), "['1'='']");
  EXPECT_EQ(Equal(One(), Guid()), "['1'='']");
  EXPECT_EQ(Equal(One(), Blob()), "['1'='BLOB']");
  EXPECT_EQ(Equal(One(), RealBlob()), "['1'='BLOB']");
  EXPECT_EQ(Equal(One(), ASInt()), "['1'='-2147483648']");
  EXPECT_EQ(Equal(One(), ASInt64()), "['1'='-9223372036854775808']");
  EXPECT_EQ(Equal(One(), ASDouble()), "['1'='-1.7976931348623157e+308']");
  EXPECT_EQ(Equal(One(), ASDCurrency()), "['1'='-1.7976931348623157e+308']");
  EXPECT_EQ(Equal(One(), ASStr(4)), "['1'='']");
  EXPECT_EQ(Equal(One(), ASVStr(4)), "['1'='']");
  EXPECT_EQ(Equal(One(), ASTime()), "['1'='NULL']");
  EXPECT_EQ(Equal(One(), ASGuid()), "['1'='00000000-0000-0000-0000-000000000000']");
  EXPECT_EQ(Equal(One(), ASBlob(5)), "['1'='BLOB']");
  EXPECT_EQ(Equal(One(), ASGeometry(5)), "['1'='BLOB']");
  EXPECT_EQ(Equal(One(), ASRealBlob(0)), "['1'='BLOB']");
}

TEST(DataPredicates, NullIsTheSameInAllSix) {
  EXPECT_THAT(SixWays(ASVStr(4), Str()),
              ElementsAre("[''='']", "[''<>']", "[''>'']", "[''<'']", "[''>='']", "[''<='']"));
}

TEST(DataPredicates, AValueComparesWithItself) {
  ASInt const value = One();
  EXPECT_EQ(Equal(value, value), "['1'='1']");
}

TEST(DataPredicates, CombineLikeOtherConditions) {
  EXPECT_EQ(corvane::test::Described(One().EQ(Int(1)) && One().LT(Int(2)), {}), "[('1'='1') AND ('1'<'2')]");
}

}  // namespace
