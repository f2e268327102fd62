#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "corvane/corvane.h"
#include "tests/support/sql.h"

using corvane::test::Customers;
using corvane::test::Described;
using corvane::test::Orders;
using testing::ElementsAre;

namespace {

// The bytes that the escaping treats, one beyond ASCII among them; and what becomes of them.
constexpr char const* kNasty = "'\"\\\n\r\x1A\xC3\xA9%_";
#define NASTY_ESCAPED "\\'\\\"\\\\\\n\\r\\Z\xC3\xA9%_"

// What the six comparisons with a NULL make of o.total.
std::vector<std::string> const kNullForms = {
    "[o.total IS NULL ] o", "[o.total IS NOT NULL ] o", "[ 0 = 1 ] o", "[ 0 = 1 ] o", "[ 0 = 1 ] o", "[ 0 = 1 ] o"};

class AttributePredicates : public testing::Test {
 protected:
  struct Row {
    ASComparison condition;
    char const* expected;
  };

  std::string All(ASComparison const& condition) const { return Described(condition, {{&o, "o"}, {&c, "c"}}); }

  void Expect(std::vector<Row> const& rows) const {
    for (Row const& row : rows) EXPECT_EQ(All(row.condition), row.expected);
  }

  // The comparisons by ==, !=, >, <, >= and <=.
  template <class Operand>
  std::vector<std::string> SixWays(ASAttribute const& a, Operand const& operand) const {
    return {All(a == operand), All(a != operand), All(a > operand),
            All(a < operand),  All(a >= operand), All(a <= operand)};
  }
  template <class Operand>
  std::vector<std::string> SixWays(Operand const& operand) const {
    return SixWays(total, operand);
  }

  Orders o;
  Customers c;
  ASAttribute& total = o.totalColumn;
  ASAttribute& customer = o.customerColumn;
  ASAttribute& note = o.noteColumn;
  ASAttribute free{"free"};
};

template <class Column, class Value>
Column Holding(Column column, Value const& value) {
  column = value;
  return column;
}

ASAttribute Marked(ASAttribute const& column) { return ++column; }

// ---- With another column ----

TEST_F(AttributePredicates, EqualColumnsPutTheRightOneInParentheses) {
  EXPECT_EQ(All(total == c.idColumn), "[o.total=(c.id)] o c");
}

TEST_F(AttributePredicates, ColumnsAreUnequalByAnExclamationMark) {
  EXPECT_EQ(All(total != c.idColumn), "[o.total!=c.id] o c");
}

TEST_F(AttributePredicates, ColumnsCompareWithoutParenthesesAndNameBothRecords) {
  EXPECT_THAT(SixWays(c.idColumn), ElementsAre("[o.total=(c.id)] o c", "[o.total!=c.id] o c", "[o.total>c.id] o c",
                                               "[o.total<c.id] o c", "[o.total>=c.id] o c", "[o.total<=c.id] o c"));
}

TEST_F(AttributePredicates, ColumnsOfOneRecordNameItOnce) {
  EXPECT_THAT(SixWays(o.idColumn), ElementsAre("[o.total=(o.id)] o", "[o.total!=o.id] o", "[o.total>o.id] o",
                                               "[o.total<o.id] o", "[o.total>=o.id] o", "[o.total<=o.id] o"));
}

TEST_F(AttributePredicates, AColumnComparesWithItself) { EXPECT_EQ(All(total == total), "[o.total=(o.total)] o"); }

TEST_F(AttributePredicates, TheRecordOfTheLeftColumnComesFirst) {
  EXPECT_EQ(All(c.idColumn == customer), "[c.id=(o.customer_id)] c o");
  EXPECT_EQ(All(c.idColumn < customer), "[c.id<o.customer_id] c o");
}

TEST_F(AttributePredicates, AColumnWithoutRecordNamesNone) {
  EXPECT_THAT(SixWays(free), ElementsAre("[o.total=(free)] o", "[o.total!=free] o", "[o.total>free] o",
                                         "[o.total<free] o", "[o.total>=free] o", "[o.total<=free] o"));
  EXPECT_THAT(SixWays(free, total), ElementsAre("[free=(o.total)] o", "[free!=o.total] o", "[free>o.total] o",
                                                "[free<o.total] o", "[free>=o.total] o", "[free<=o.total] o"));
  EXPECT_THAT(SixWays(free, free), ElementsAre("[free=(free)]", "[free!=free]", "[free>free]", "[free<free]",
                                               "[free>=free]", "[free<=free]"));
}

TEST_F(AttributePredicates, WithoutRecordConditionsNameNoneWhateverTheOperand) {
  Expect({
      {free == 5, "[free=5]"},
      {free == 2.5, "[free=2.5]"},
      {free == 5U, "[free=5]"},
      {free == "x", "[free='x']"},
      {free == std::string("x"), "[free='x']"},
      {free == Int(5), "[free=5]"},
      {free == Int(), "[free IS NULL ]"},
      {free > Int(), "[ 0 = 1 ]"},
      {free.Like("x"), "[free LIKE 'x']"},
      {free.NotLike("x"), "[free NOT LIKE 'x']"},
      {free.Like(total), "[free LIKE CONCAT(o.total, '%') ]"},
      {free.IsNull(), "[free IS NULL]"},
      {free.IsNotNull(), "[free IS NOT NULL]"},
      {free.In(total), "[free IN (o.total)]"},
      {free.NotIn(total), "[free NOT IN (o.total)]"},
      {free.Between(1, 2), "[free BETWEEN 1 AND 2]"},
      {free.Between("1", "2"), "[free BETWEEN '1' AND '2']"},
      {free.Between(total, c.idColumn), "[free BETWEEN o.total AND c.id]"},
      {free.IntersectGeo("0 0"), "[ Intersects(free,GeomFromText('POLYGON((0 0))'))]"},
  });
}

// ---- Outer joins ----

TEST_F(AttributePredicates, EqualityOfAMarkedColumnIsAnOuterJoin) {
  EXPECT_EQ(All(++c.idColumn == customer), "[] (o) LEFT JOIN c ON [c.id=(o.customer_id)]");
}

TEST_F(AttributePredicates, OuterJoinsByWhichSideIsMarked) {
  ASAttribute const id = ++c.idColumn;
  ASAttribute const markedFree = ++free;
  Expect({
      {id == customer, "[] (o) LEFT JOIN c ON [c.id=(o.customer_id)]"},
      {customer == id, "[] (o) LEFT JOIN c ON [o.customer_id=(c.id)]"},
      {id == ++customer, "[] (o) LEFT JOIN c ON [c.id=(o.customer_id)]"},
      {++customer == id, "[] (c) LEFT JOIN o ON [o.customer_id=(c.id)]"},
      {++total == customer, "[] (o) LEFT JOIN o ON [o.total=(o.customer_id)]"},
      {id == free, "[] (null) LEFT JOIN c ON [c.id=(free)]"},
      {free == id, "[] (null) LEFT JOIN c ON [free=(c.id)]"},
      {id == markedFree, "[] (null) LEFT JOIN c ON [c.id=(free)]"},
      {markedFree == id, "[] (null) LEFT JOIN c ON [free=(c.id)]"},
  });
}

TEST_F(AttributePredicates, AMarkWithoutRecordDoesNotCount) {
  ASAttribute const markedFree = ++free;
  Expect({
      {markedFree == total, "[free=(o.total)] o"},
      {total == markedFree, "[o.total=(free)] o"},
      {markedFree == markedFree, "[free=(free)]"},
      {markedFree == Int(5), "[free=5]"},
      {markedFree == Int(), "[free IS NULL ]"},
  });
}

TEST_F(AttributePredicates, AMarkSetAsAFlagCounts) {
  ASAttribute column("id", "Id", 0, corvane::kKey | corvane::kOptionalSide);
  column.Register(nullptr, &c);
  EXPECT_EQ(All(column == customer), "[] (o) LEFT JOIN c ON [c.id=(o.customer_id)]");
  c.idColumn.SetKey(4);
  EXPECT_EQ(All(customer == c.idColumn), "[] (o) LEFT JOIN c ON [o.customer_id=(c.id)]");
}

TEST_F(AttributePredicates, OtherFlagsAreNoMark) {
  ASAttribute column("id", "Id", 0, corvane::kKey | corvane::kEncrypted | corvane::kAutoIncrement | 8 | 32);
  column.Register(nullptr, &c);
  EXPECT_EQ(All(column == customer), "[c.id=(o.customer_id)] c o");
  EXPECT_EQ(All(customer == column), "[o.customer_id=(c.id)] o c");
  EXPECT_EQ(All(column == Int(5)), "[c.id=5] c");
}

TEST_F(AttributePredicates, EqualityOfAMarkedColumnWithAValueIsAnOuterJoinWithoutRequiredSide) {
  ASAttribute const id = ++c.idColumn;
  Expect({
      {id == Int(5), "[] (null) LEFT JOIN c ON [c.id=5]"},
      {id == Int(), "[] (null) LEFT JOIN c ON [c.id IS NULL ]"},
      {id == Str("O'B"), "[] (null) LEFT JOIN c ON [c.id='O\\'B']"},
      {id == o.total, "[] (null) LEFT JOIN c ON [c.id IS NULL ]"},
      {id == ASTime(0), "[] (null) LEFT JOIN c ON [c.id='1970-01-01 00:00:00']"},
  });
}

TEST_F(AttributePredicates, OtherConditionsDoNotLookAtTheMark) {
  ASAttribute const id = ++c.idColumn;
  ASAttribute const other = ++customer;
  Expect({
      {id != other, "[c.id!=o.customer_id] c o"},
      {id > other, "[c.id>o.customer_id] c o"},
      {id < other, "[c.id<o.customer_id] c o"},
      {id >= other, "[c.id>=o.customer_id] c o"},
      {id <= other, "[c.id<=o.customer_id] c o"},
      {id != Int(5), "[c.id<>5] c"},
      {id != Int(), "[c.id IS NOT NULL ] c"},
      {id > Int(5), "[c.id>5] c"},
      {id < Int(), "[ 0 = 1 ] c"},
      {id >= Int(5), "[c.id>=5] c"},
      {id <= Int(5), "[c.id<=5] c"},
      {id == 5, "[c.id=5] c"},
      {id == 5U, "[c.id=5] c"},
      {id == 2.5, "[c.id=2.5] c"},
      {id == "x", "[c.id='x'] c"},
      {id == std::string("x"), "[c.id='x'] c"},
      {id.Like("x"), "[c.id LIKE 'x'] c"},
      {id.NotLike("x"), "[c.id NOT LIKE 'x'] c"},
      {id.Like(other), "[c.id LIKE CONCAT(o.customer_id, '%') ] c"},
      {id.IsNull(), "[c.id IS NULL] c"},
      {id.IsNotNull(), "[c.id IS NOT NULL] c"},
      {id.In(other), "[c.id IN (o.customer_id)] c"},
      {id.NotIn(other), "[c.id NOT IN (o.customer_id)] c"},
      {id.Between(1, 2), "[c.id BETWEEN 1 AND 2] c"},
      {id.Between(other, other), "[c.id BETWEEN o.customer_id AND o.customer_id] c"},
      {id.IntersectGeo("0 0"), "[ Intersects(c.id,GeomFromText('POLYGON((0 0))'))] c"},
  });
}

// ---- With plain numbers ----

TEST_F(AttributePredicates, CompareWithAnInt) {
  EXPECT_THAT(SixWays(5), ElementsAre("[o.total=5] o", "[o.total<>5] o", "[o.total>5] o", "[o.total<5] o",
                                      "[o.total>=5] o", "[o.total<=5] o"));
}

TEST_F(AttributePredicates, CompareWithADouble) {
  EXPECT_THAT(SixWays(2.5), ElementsAre("[o.total=2.5] o", "[o.total<>2.5] o", "[o.total>2.5] o", "[o.total<2.5] o",
                                        "[o.total>=2.5] o", "[o.total<=2.5] o"));
}

TEST_F(AttributePredicates, CompareWithAnUnsigned) {
  EXPECT_THAT(SixWays(4000000000U),
              ElementsAre("[o.total=4000000000] o", "[o.total<>4000000000] o", "[o.total>4000000000] o",
                          "[o.total<4000000000] o", "[o.total>=4000000000] o", "[o.total<=4000000000] o"));
}

TEST_F(AttributePredicates, CompareWithALong) {
  EXPECT_THAT(SixWays(-5000000000L),
              ElementsAre("[o.total=-5000000000] o", "[o.total<>-5000000000] o", "[o.total>-5000000000] o",
                          "[o.total<-5000000000] o", "[o.total>=-5000000000] o", "[o.total<=-5000000000] o"));
}

TEST_F(AttributePredicates, CompareWithAnUnsignedLong) {
  EXPECT_THAT(SixWays(5UL), ElementsAre("[o.total=5] o", "[o.total<>5] o", "[o.total>5] o", "[o.total<5] o",
                                        "[o.total>=5] o", "[o.total<=5] o"));
}

TEST_F(AttributePredicates, CompareWithALongLong) {
  EXPECT_THAT(SixWays(-5LL), ElementsAre("[o.total=-5] o", "[o.total<>-5] o", "[o.total>-5] o", "[o.total<-5] o",
                                         "[o.total>=-5] o", "[o.total<=-5] o"));
}

TEST_F(AttributePredicates, CompareWithAnUnsignedLongLong) {
  EXPECT_THAT(SixWays(18446744073709551615ULL),
              ElementsAre("[o.total=18446744073709551615] o", "[o.total<>18446744073709551615] o",
                          "[o.total>18446744073709551615] o", "[o.total<18446744073709551615] o",
                          "[o.total>=18446744073709551615] o", "[o.total<=18446744073709551615] o"));
}

TEST_F(AttributePredicates, CompareWithAShort) {
  EXPECT_THAT(SixWays(short{-5}), ElementsAre("[o.total=-5] o", "[o.total<>-5] o", "[o.total>-5] o", "[o.total<-5] o",
                                              "[o.total>=-5] o", "[o.total<=-5] o"));
}

TEST_F(AttributePredicates, ATruthValueIsANumber) {
  EXPECT_THAT(SixWays(true), ElementsAre("[o.total=1] o", "[o.total<>1] o", "[o.total>1] o", "[o.total<1] o",
                                         "[o.total>=1] o", "[o.total<=1] o"));
  EXPECT_EQ(All(total == false), "[o.total=0] o");
}

TEST_F(AttributePredicates, ACharacterIsANumber) {
  EXPECT_THAT(SixWays('c'), ElementsAre("[o.total=99] o", "[o.total<>99] o", "[o.total>99] o", "[o.total<99] o",
                                        "[o.total>=99] o", "[o.total<=99] o"));
}

TEST_F(AttributePredicates, LiteralZeroesAreNumbers) {
  Expect({
      {total == 0, "[o.total=0] o"},
      {total != 0, "[o.total<>0] o"},
      {total > 0, "[o.total>0] o"},
      {total == 0L, "[o.total=0] o"},
      {total == 0U, "[o.total=0] o"},
      {total == 0.0, "[o.total=0] o"},
  });
}

TEST_F(AttributePredicates, NumbersAtTheirLimitsAreNumbersNotNull) {
  Expect({
      {total == 2147483647, "[o.total=2147483647] o"},
      {total == (-2147483647 - 1), "[o.total=-2147483648] o"},
      {total > (-2147483647 - 1), "[o.total>-2147483648] o"},
      {total == (-9223372036854775807L - 1), "[o.total=-9223372036854775808] o"},
      {total == -1.7976931348623157e308, "[o.total=-1.7976931348623157e+308] o"},
  });
}

TEST_F(AttributePredicates, DoublesKeepAllTheirDigits) {
  Expect({
      {total == 1234567.891, "[o.total=1234567.891] o"},
      {total == 0.1, "[o.total=0.1] o"},
      {total == -0.5, "[o.total=-0.5] o"},
      {total == 100000.0, "[o.total=100000] o"},
      {total == 1e100, "[o.total=1e+100] o"},
      {total == 0.5F, "[o.total=0.5] o"},
  });
}

// ---- With texts ----

TEST_F(AttributePredicates, CompareWithALiteral) {
  EXPECT_THAT(SixWays("x"), ElementsAre("[o.total='x'] o", "[o.total<>'x'] o", "[o.total>'x'] o", "[o.total<'x'] o",
                                        "[o.total>='x'] o", "[o.total<='x'] o"));
}

TEST_F(AttributePredicates, CompareWithAStandardString) {
  EXPECT_THAT(SixWays(std::string("x")), ElementsAre("[o.total='x'] o", "[o.total<>'x'] o", "[o.total>'x'] o",
                                                     "[o.total<'x'] o", "[o.total>='x'] o", "[o.total<='x'] o"));
}

TEST_F(AttributePredicates, CompareWithAStringView) {
  EXPECT_THAT(SixWays(std::string_view("xyz", 1)),
              ElementsAre("[o.total='x'] o", "[o.total<>'x'] o", "[o.total>'x'] o", "[o.total<'x'] o",
                          "[o.total>='x'] o", "[o.total<='x'] o"));
}

TEST_F(AttributePredicates, EqualNullCarriesABlank) {
  EXPECT_EQ(All(total == Int()), "[o.total IS NULL ] o");
  EXPECT_EQ(All(total != Int()), "[o.total IS NOT NULL ] o");
  EXPECT_EQ(All(total.IsNull()), "[o.total IS NULL] o");
  EXPECT_EQ(All(total.IsNotNull()), "[o.total IS NOT NULL] o");
}

TEST_F(AttributePredicates, ANullPointerCountsAsANullValue) {
  EXPECT_EQ(SixWays(static_cast<char const*>(nullptr)), kNullForms);
  EXPECT_EQ(All(total == nullptr), "[o.total IS NULL ] o");
  EXPECT_EQ(All(total != nullptr), "[o.total IS NOT NULL ] o");
}

TEST_F(AttributePredicates, EmptyTextsAreTwoQuotes) {
  Expect({
      {total == "", "[o.total=''] o"},
      {total != std::string(), "[o.total<>''] o"},
      {total > std::string_view(), "[o.total>''] o"},
      {total == Str(""), "[o.total=''] o"},
  });
}

TEST_F(AttributePredicates, TextsAreEscaped) {
  Expect({
      {note == kNasty, "[o.note='" NASTY_ESCAPED "'] o"},
      {note != kNasty, "[o.note<>'" NASTY_ESCAPED "'] o"},
      {note > kNasty, "[o.note>'" NASTY_ESCAPED "'] o"},
      {note < kNasty, "[o.note<'" NASTY_ESCAPED "'] o"},
      {note >= kNasty, "[o.note>='" NASTY_ESCAPED "'] o"},
      {note <= kNasty, "[o.note<='" NASTY_ESCAPED "'] o"},
      {note == std::string(kNasty), "[o.note='" NASTY_ESCAPED "'] o"},
      {note == std::string_view(kNasty), "[o.note='" NASTY_ESCAPED "'] o"},
      {note == Str(kNasty), "[o.note='" NASTY_ESCAPED "'] o"},
      {note == Holding(ASVStr(40), kNasty), "[o.note='" NASTY_ESCAPED "'] o"},
  });
}

TEST_F(AttributePredicates, NulsOfAStandardStringAreEscaped) {
  EXPECT_EQ(All(note == std::string("a\0b", 3)), "[o.note='a\\0b'] o");
  EXPECT_EQ(All(note == std::string_view("a\0b", 3)), "[o.note='a\\0b'] o");
}

TEST_F(AttributePredicates, LongTextsAreTakenWhole) {
  std::string const long_(70001, '\'');
  std::string escaped;
  for (int i = 0; i < 70001; ++i) escaped += "\\'";
  EXPECT_TRUE(All(note == long_.c_str()) == "[o.note='" + escaped + "'] o");
  EXPECT_TRUE(All(note == long_) == "[o.note='" + escaped + "'] o");
  EXPECT_TRUE(All(note == Str(long_)) == "[o.note='" + escaped + "'] o");
  EXPECT_TRUE(All(note.Like(long_.c_str())) == "[o.note LIKE '" + escaped + "'] o");
  EXPECT_TRUE(All(note.Between(long_, long_)) == "[o.note BETWEEN '" + long_ + "' AND '" + long_ + "'] o");
}

// ---- With values ----

TEST_F(AttributePredicates, CompareWithNumbersOfTheValueClasses) {
  auto const five = ElementsAre("[o.total=5] o", "[o.total<>5] o", "[o.total>5] o", "[o.total<5] o", "[o.total>=5] o",
                                "[o.total<=5] o");
  EXPECT_THAT(SixWays(Int(5)), five);
  EXPECT_THAT(SixWays(Int64(5)), five);
  EXPECT_THAT(SixWays(Double(5)), five);
  EXPECT_THAT(SixWays(Holding(ASInt(), 5)), five);
  EXPECT_THAT(SixWays(Holding(ASInt64(), 5)), five);
  EXPECT_THAT(SixWays(Holding(ASDouble(), 5)), five);
  EXPECT_THAT(SixWays(Holding(ASDCurrency(), 5)), five);
}

TEST_F(AttributePredicates, CompareWithTextsOfTheValueClasses) {
  auto const text = ElementsAre("[o.total='x'] o", "[o.total<>'x'] o", "[o.total>'x'] o", "[o.total<'x'] o",
                                "[o.total>='x'] o", "[o.total<='x'] o");
  EXPECT_THAT(SixWays(Str("x")), text);
  EXPECT_THAT(SixWays(Holding(ASStr(1), "x")), text);
  EXPECT_THAT(SixWays(Holding(ASVStr(20), "x")), text);
}

TEST_F(AttributePredicates, AFixedTextIsComparedWithItsPadding) {
  EXPECT_EQ(All(total == Holding(ASStr(5), "ab")), "[o.total='ab   '] o");
}

TEST_F(AttributePredicates, CompareWithATime) {
  EXPECT_THAT(SixWays(ASTime(1088689500)),
              ElementsAre("[o.total='2004-07-01 13:45:00'] o", "[o.total<>'2004-07-01 13:45:00'] o",
                          "[o.total>'2004-07-01 13:45:00'] o", "[o.total<'2004-07-01 13:45:00'] o",
                          "[o.total>='2004-07-01 13:45:00'] o", "[o.total<='2004-07-01 13:45:00'] o"));
}

TEST_F(AttributePredicates, CompareWithAGuid) {
  auto const guid = ElementsAre(
      "[o.total='00000000-0000-0001-0000-000000000002'] o", "[o.total<>'00000000-0000-0001-0000-000000000002'] o",
      "[o.total>'00000000-0000-0001-0000-000000000002'] o", "[o.total<'00000000-0000-0001-0000-000000000002'] o",
      "[o.total>='00000000-0000-0001-0000-000000000002'] o", "[o.total<='00000000-0000-0001-0000-000000000002'] o");
  EXPECT_THAT(SixWays(Guid(1, 2)), guid);
  EXPECT_THAT(SixWays(Holding(ASGuid(), Guid(1, 2))), guid);
}

TEST_F(AttributePredicates, BinaryValuesAreComparedAsTheWordBLOB) {
  auto const blob = ElementsAre("[o.total='BLOB'] o", "[o.total<>'BLOB'] o", "[o.total>'BLOB'] o", "[o.total<'BLOB'] o",
                                "[o.total>='BLOB'] o", "[o.total<='BLOB'] o");
  EXPECT_THAT(SixWays(Blob(3, "abc")), blob);
  EXPECT_THAT(SixWays(RealBlob(3, "abc")), blob);
  EXPECT_THAT(SixWays(Holding(ASBlob(5), Blob(3, "abc"))), blob);
  EXPECT_THAT(SixWays(Holding(ASGeometry(5), Blob(3, "abc"))), blob);
  EXPECT_THAT(SixWays(Holding(ASRealBlob(0), RealBlob(3, "abc"))), blob);
}

TEST_F(AttributePredicates, CompareWithNullsOfEveryKind) {
  EXPECT_EQ(SixWays(Int()), kNullForms);
  EXPECT_EQ(SixWays(Int64()), kNullForms);
  EXPECT_EQ(SixWays(Double()), kNullForms);
  EXPECT_EQ(SixWays(Str()), kNullForms);
  EXPECT_EQ(SixWays(Guid()), kNullForms);
  EXPECT_EQ(SixWays(Blob()), kNullForms);
  EXPECT_EQ(SixWays(RealBlob()), kNullForms);
  EXPECT_EQ(SixWays(ASInt()), kNullForms);
  EXPECT_EQ(SixWays(ASInt64()), kNullForms);
  EXPECT_EQ(SixWays(ASDouble()), kNullForms);
  EXPECT_EQ(SixWays(ASDCurrency()), kNullForms);
  EXPECT_EQ(SixWays(ASStr(5)), kNullForms);
  EXPECT_EQ(SixWays(ASVStr(5)), kNullForms);
  EXPECT_EQ(SixWays(ASTime()), kNullForms);
  EXPECT_EQ(SixWays(ASGuid()), kNullForms);
  EXPECT_EQ(SixWays(ASBlob(5)), kNullForms);
  EXPECT_EQ(SixWays(ASGeometry(5)), kNullForms);
  EXPECT_EQ(SixWays(ASRealBlob(0)), kNullForms);
}

TEST_F(AttributePredicates, AValueIsTakenAsItIsWhenTheConditionIsMade) {
  Int value(5);
  ASComparison const condition = total == value;
  value = Int(6);
  EXPECT_EQ(All(condition), "[o.total=5] o");
}

TEST_F(AttributePredicates, AValueSeenThroughItsRootIsComparedAsWhatItIs) {
  ASTime const time(0);
  basic_type const& root = time;
  EXPECT_EQ(All(total == root), "[o.total='1970-01-01 00:00:00'] o");
}

// ---- LIKE ----

TEST_F(AttributePredicates, LikeWithAndWithoutEscapeCharacter) {
  Expect({
      {note.Like("x%"), "[o.note LIKE 'x%'] o"},
      {note.Like("x%", 0), "[o.note LIKE 'x%'] o"},
      {note.Like("x!%", '!'), "[o.note LIKE 'x!%' ESCAPE '!'] o"},
      {note.Like(std::string("x%")), "[o.note LIKE 'x%'] o"},
      {note.Like(std::string("x!%"), '!'), "[o.note LIKE 'x!%' ESCAPE '!'] o"},
      {note.Like(std::string_view("x%yz", 2)), "[o.note LIKE 'x%'] o"},
      {note.Like(Str("x%")), "[o.note LIKE 'x%'] o"},
      {note.Like(Str("x%"), 0), "[o.note LIKE 'x%'] o"},
      {note.Like(Str("x!%"), '!'), "[o.note LIKE 'x!%' ESCAPE '!'] o"},
      {note.Like(""), "[o.note LIKE ''] o"},
  });
}

TEST_F(AttributePredicates, NotLikeWithAndWithoutEscapeCharacter) {
  Expect({
      {note.NotLike("x%"), "[o.note NOT LIKE 'x%'] o"},
      {note.NotLike("x%", 0), "[o.note NOT LIKE 'x%'] o"},
      {note.NotLike("x!%", '!'), "[o.note NOT LIKE 'x!%' ESCAPE '!'] o"},
      {note.NotLike(std::string("x%")), "[o.note NOT LIKE 'x%'] o"},
      {note.NotLike(std::string("x!%"), '!'), "[o.note NOT LIKE 'x!%' ESCAPE '!'] o"},
      {note.NotLike(std::string_view("x%yz", 2)), "[o.note NOT LIKE 'x%'] o"},
      {note.NotLike(Str("x%")), "[o.note NOT LIKE 'x%'] o"},
      {note.NotLike(Str("x!%"), '!'), "[o.note NOT LIKE 'x!%' ESCAPE '!'] o"},
      {note.NotLike(""), "[o.note NOT LIKE ''] o"},
  });
}

TEST_F(AttributePredicates, PatternsAreEscapedLikeOtherTexts) {
  Expect({
      {note.Like(kNasty), "[o.note LIKE '" NASTY_ESCAPED "'] o"},
      {note.Like(std::string(kNasty)), "[o.note LIKE '" NASTY_ESCAPED "'] o"},
      {note.Like(std::string_view("a\0b", 3)), "[o.note LIKE 'a\\0b'] o"},
      {note.NotLike(kNasty), "[o.note NOT LIKE '" NASTY_ESCAPED "'] o"},
      {note.NotLike(std::string(kNasty)), "[o.note NOT LIKE '" NASTY_ESCAPED "'] o"},
      {note.NotLike(std::string_view("a\0b", 3)), "[o.note NOT LIKE 'a\\0b'] o"},
  });
}

TEST_F(AttributePredicates, TheEscapeCharacterIsNotEscaped) {
  Expect({
      {note.Like("x", '\\'), "[o.note LIKE 'x' ESCAPE '\\'] o"},
      {note.Like("x", '\''), "[o.note LIKE 'x' ESCAPE '''] o"},
      {note.NotLike("x", '\\'), "[o.note NOT LIKE 'x' ESCAPE '\\'] o"},
      {note.Like(c.nameColumn, '\\'), "[o.note LIKE CONCAT(c.name, '%') ESCAPE '\\' ] o"},
  });
}

TEST_F(AttributePredicates, ANullPatternCountsAsEmpty) {
  char const* const none = nullptr;
  Expect({
      {note.Like(none), "[o.note LIKE ''] o"},
      {note.Like(none, '!'), "[o.note LIKE '' ESCAPE '!'] o"},
      {note.NotLike(none), "[o.note NOT LIKE ''] o"},
  });
}

TEST_F(AttributePredicates, LikeAColumnMatchesItAsAPrefixAndNamesTheLeftRecordAlone) {
  Expect({
      {note.Like(c.nameColumn), "[o.note LIKE CONCAT(c.name, '%') ] o"},
      {note.Like(c.nameColumn, 0), "[o.note LIKE CONCAT(c.name, '%') ] o"},
      {note.Like(c.nameColumn, '!'), "[o.note LIKE CONCAT(c.name, '%') ESCAPE '!' ] o"},
      {note.Like(free), "[o.note LIKE CONCAT(free, '%') ] o"},
  });
}

// ---- IN, BETWEEN ----

TEST_F(AttributePredicates, InAndNotInNameTheLeftRecordAlone) {
  Expect({
      {customer.In(c.idColumn), "[o.customer_id IN (c.id)] o"},
      {customer.NotIn(c.idColumn), "[o.customer_id NOT IN (c.id)] o"},
      {customer.In(ASAttribute("1, 2, 3")), "[o.customer_id IN (1, 2, 3)] o"},
      {customer.NotIn(ASAttribute("1, 2, 3")), "[o.customer_id NOT IN (1, 2, 3)] o"},
  });
}

TEST_F(AttributePredicates, BetweenNumbersIsNotQuoted) {
  Expect({
      {total.Between(1, 5), "[o.total BETWEEN 1 AND 5] o"},
      {total.Between(-5, 0), "[o.total BETWEEN -5 AND 0] o"},
      {total.Between(0, 0), "[o.total BETWEEN 0 AND 0] o"},
      {total.Between(1.5, 2.25), "[o.total BETWEEN 1.5 AND 2.25] o"},
      {total.Between(1, 2.5), "[o.total BETWEEN 1 AND 2.5] o"},
      {total.Between(0.5, 2), "[o.total BETWEEN 0.5 AND 2] o"},
      {total.Between(1L, 2L), "[o.total BETWEEN 1 AND 2] o"},
      {total.Between(0L, 0L), "[o.total BETWEEN 0 AND 0] o"},
      {total.Between(1, 5000000000L), "[o.total BETWEEN 1 AND 5000000000] o"},
      {total.Between(1U, 4000000000U), "[o.total BETWEEN 1 AND 4000000000] o"},
      {total.Between(-1LL, 18446744073709551615ULL), "[o.total BETWEEN -1 AND 18446744073709551615] o"},
      {total.Between(0.5F, 1.5F), "[o.total BETWEEN 0.5 AND 1.5] o"},
      {total.Between(short{1}, short{2}), "[o.total BETWEEN 1 AND 2] o"},
      {total.Between(5, 1), "[o.total BETWEEN 5 AND 1] o"},
  });
}

TEST_F(AttributePredicates, BetweenQuotesItsBoundsWithoutEscaping) {
  Expect({
      {note.Between("O'B", "x\\"), "[o.note BETWEEN 'O'B' AND 'x\\'] o"},
      {note.Between(std::string("O'B"), std::string("x\\")), "[o.note BETWEEN 'O'B' AND 'x\\'] o"},
      {note.Between(Str("O'B"), Str("x\\")), "[o.note BETWEEN 'O'B' AND 'x\\'] o"},
      {note.Between(Holding(ASVStr(20), "O'B"), Str("x\n")), "[o.note BETWEEN 'O'B' AND 'x\n'] o"},
      {note.Between(Int(1), Int(5)), "[o.note BETWEEN '1' AND '5'] o"},
  });
}

TEST_F(AttributePredicates, BetweenTextsOfEveryKind) {
  char const* const none = nullptr;
  Expect({
      {note.Between("a", "m"), "[o.note BETWEEN 'a' AND 'm'] o"},
      {note.Between(std::string("a"), std::string("m")), "[o.note BETWEEN 'a' AND 'm'] o"},
      {note.Between(std::string_view("abc", 1), std::string_view("mno", 1)), "[o.note BETWEEN 'a' AND 'm'] o"},
      {note.Between("a", std::string("m")), "[o.note BETWEEN 'a' AND 'm'] o"},
      {note.Between("", ""), "[o.note BETWEEN '' AND ''] o"},
      {note.Between(none, "m"), "[o.note BETWEEN '' AND 'm'] o"},
      {note.Between("a", none), "[o.note BETWEEN 'a' AND ''] o"},
      {note.Between(none, none), "[o.note BETWEEN '' AND ''] o"},
  });
}

TEST_F(AttributePredicates, BetweenValuesOfEveryKindQuotesTheirTextForm) {
  Expect({
      {total.Between(Int(1), Int(5)), "[o.total BETWEEN '1' AND '5'] o"},
      {total.Between(Int64(1), Int64(5)), "[o.total BETWEEN '1' AND '5'] o"},
      {total.Between(Double(1.5), Double(5)), "[o.total BETWEEN '1.5' AND '5'] o"},
      {total.Between(Int(1), Double(2.5)), "[o.total BETWEEN '1' AND '2.5'] o"},
      {total.Between(Str("a"), Str("m")), "[o.total BETWEEN 'a' AND 'm'] o"},
      {total.Between(Holding(ASInt(), 1), Holding(ASInt64(), 5)), "[o.total BETWEEN '1' AND '5'] o"},
      {total.Between(Holding(ASDouble(), 1.5), Holding(ASDCurrency(), 5)), "[o.total BETWEEN '1.5' AND '5'] o"},
      {total.Between(Holding(ASStr(3), "a"), Holding(ASVStr(3), "m")), "[o.total BETWEEN 'a  ' AND 'm'] o"},
      {total.Between(ASTime(0), ASTime(1088689500)),
       "[o.total BETWEEN '1970-01-01 00:00:00' AND '2004-07-01 13:45:00'] o"},
      {total.Between(Guid(1, 2), Holding(ASGuid(), Guid(3, 4))),
       "[o.total BETWEEN '00000000-0000-0001-0000-000000000002' AND '00000000-0000-0003-0000-000000000004'] o"},
      {total.Between(Blob(3, "abc"), RealBlob(3, "abc")), "[o.total BETWEEN 'BLOB' AND 'BLOB'] o"},
  });
}

TEST_F(AttributePredicates, BetweenAValueAndANumberQuotesTheValueAlone) {
  Expect({
      {total.Between(Int(1), 5), "[o.total BETWEEN '1' AND 5] o"},
      {total.Between(1, Int(5)), "[o.total BETWEEN 1 AND '5'] o"},
      {total.Between(Double(1.5), 5000000000L), "[o.total BETWEEN '1.5' AND 5000000000] o"},
      {total.Between(0.5, Str("m")), "[o.total BETWEEN 0.5 AND 'm'] o"},
  });
}

TEST_F(AttributePredicates, BetweenDoesNotTreatNullSpecially) {
  Expect({
      {total.Between(Int(), Int(5)), "[o.total BETWEEN '-2147483648' AND '5'] o"},
      {total.Between(Int64(5), ASInt64()), "[o.total BETWEEN '5' AND '-9223372036854775808'] o"},
      {total.Between(Double(), ASDCurrency()),
       "[o.total BETWEEN '-1.7976931348623157e+308' AND '-1.7976931348623157e+308'] o"},
      {total.Between(Str(), ASVStr(5)), "[o.total BETWEEN '' AND ''] o"},
      {total.Between(ASTime(), ASTime(0)), "[o.total BETWEEN 'NULL' AND '1970-01-01 00:00:00'] o"},
      {total.Between(Guid(), ASGuid()), "[o.total BETWEEN '' AND '00000000-0000-0000-0000-000000000000'] o"},
      {total.Between(ASBlob(5), ASRealBlob(0)), "[o.total BETWEEN 'BLOB' AND 'BLOB'] o"},
  });
}

TEST_F(AttributePredicates, BetweenColumnsNamesTheLeftRecordAlone) {
  Expect({
      {total.Between(c.idColumn, o.idColumn), "[o.total BETWEEN c.id AND o.id] o"},
      {total.Between(c.idColumn, c.idColumn), "[o.total BETWEEN c.id AND c.id] o"},
      {total.Between(free, ++c.idColumn), "[o.total BETWEEN free AND c.id] o"},
  });
}

// ---- Geometry ----

TEST_F(AttributePredicates, IntersectGeoInsertsThePointsAsTheyStand) {
  Expect({
      {note.IntersectGeo("0 0,0 1,1 1,0 0"), "[ Intersects(o.note,GeomFromText('POLYGON((0 0,0 1,1 1,0 0))'))] o"},
      {note.IntersectGeo("'\\"), "[ Intersects(o.note,GeomFromText('POLYGON(('\\))'))] o"},
      {note.IntersectGeo(Str()), "[ Intersects(o.note,GeomFromText('POLYGON(())'))] o"},
      {note.IntersectGeo(std::string("0 0")), "[ Intersects(o.note,GeomFromText('POLYGON((0 0))'))] o"},
  });
}

// ---- Operands that are themselves derived ----

TEST_F(AttributePredicates, ADerivedColumnNamesNoRecord) {
  Expect({
      {note.Upper() == "X", "[ UPPER(o.note)='X']"},
      {note.Upper() == c.nameColumn.Upper(), "[ UPPER(o.note)=( UPPER(c.name))]"},
      {note.Upper() == c.nameColumn, "[ UPPER(o.note)=(c.name)] c"},
      {note == c.nameColumn.Upper(), "[o.note=( UPPER(c.name))] o"},
      {note.Upper().Like("X%"), "[ UPPER(o.note) LIKE 'X%']"},
      {note.InStr("x") > 0, "[ INSTR(o.note, 'x')>0]"},
  });
}

TEST_F(AttributePredicates, ADerivedColumnIsNotMarked) {
  EXPECT_EQ(All(Marked(note).Upper() == c.nameColumn), "[ UPPER(o.note)=(c.name)] c");
}

TEST_F(AttributePredicates, ConditionsLeaveTheColumnAsItWas) {
  static_cast<void>(++c.idColumn == customer);
  EXPECT_EQ(c.idColumn.CheckKey(corvane::kOptionalSide), 0);
  EXPECT_EQ(All(c.idColumn == customer), "[c.id=(o.customer_id)] c o");
}

}  // namespace
