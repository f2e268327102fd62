#include "corvane/ordbms/old_filter.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <limits>
#include <memory>
#include <ostream>
#include <string>

#include "corvane/corvane.h"
#include "tests/support/sql.h"

using corvane::test::Customers;
using corvane::test::Orders;
using namespace ORDBMS;

namespace {

std::string Text(ASFilter const& filter) { return filter.Query().ToString(); }

enum class Word { kSet, kAnd, kOr };

template <class... Operands>
old_filter& Apply(old_filter& filter, Word word, Operands const&... operands) {
  switch (word) {
    case Word::kSet:
      return filter.Set("f", operands...);
    case Word::kAnd:
      return filter.And("f", operands...);
    case Word::kOr:
      break;
  }
  return filter.Or("f", operands...);
}

// What one call writes.
template <class... Operands>
std::string Applied(Word word, Operands const&... operands) {
  old_filter filter;
  Apply(filter, word, operands...);
  return Text(filter);
}

// ---- each word with each comparison

struct Compared {
  char const* name;
  Word word;
  comparison code;
  char const* text;   // of the text "v"
  char const* value;  // of the value -5
  char const* null;   // of a NULL value

  friend std::ostream& operator<<(std::ostream& out, Compared const& row) { return out << row.name; }
};

class OldFilterComparison : public testing::TestWithParam<Compared> {
 protected:
  std::string With(basic_type const* value) const { return Applied(GetParam().word, value, GetParam().code); }
};

TEST_P(OldFilterComparison, WithATextInsertsItAsItStands) {
  EXPECT_EQ(Applied(GetParam().word, Str("v"), GetParam().code), GetParam().text);
}

TEST_P(OldFilterComparison, WithALiteralInsertsItAsItStands) {
  EXPECT_EQ(Applied(GetParam().word, "v", GetParam().code), GetParam().text);
}

TEST_P(OldFilterComparison, WithAValueQuotesIt) {
  Int const value(-5);
  EXPECT_EQ(With(&value), GetParam().value);
}

TEST_P(OldFilterComparison, WithANullValueAsksForNull) {
  ASInt const null;
  EXPECT_EQ(With(&null), GetParam().null);
}

TEST_P(OldFilterComparison, WithANullPointerAsksForNull) { EXPECT_EQ(With(nullptr), GetParam().null); }

TEST_P(OldFilterComparison, WithANullTextValueAsksForNull) {
  Str const null;
  EXPECT_EQ(With(&null), GetParam().null);
}

constexpr Word kSet = Word::kSet;
constexpr Word kAnd = Word::kAnd;
constexpr Word kOr = Word::kOr;

Compared const kCompared[] = {
    {"SetEqual", kSet, EQUAL, "SELECT * FROM  WHERE f=v", "SELECT * FROM  WHERE f='-5'",
     "SELECT * FROM  WHERE f IS NULL "},
    {"SetNotEqual", kSet, NOT_EQUAL, "SELECT * FROM  WHERE f<>v", "SELECT * FROM  WHERE f<>'-5'",
     "SELECT * FROM  WHERE f IS NOT NULL "},
    {"SetLess", kSet, LESS, "SELECT * FROM  WHERE f<v", "SELECT * FROM  WHERE f<'-5'", "SELECT * FROM  WHERE 0 = 1 "},
    {"SetGreater", kSet, GREATER, "SELECT * FROM  WHERE f>v", "SELECT * FROM  WHERE f>'-5'",
     "SELECT * FROM  WHERE 0 = 1 "},
    {"SetLessEqual", kSet, LESS_EQUAL, "SELECT * FROM  WHERE f<=v", "SELECT * FROM  WHERE f<='-5'",
     "SELECT * FROM  WHERE 0 = 1 "},
    {"SetGreaterEqual", kSet, GREATER_EQUAL, "SELECT * FROM  WHERE f>=v", "SELECT * FROM  WHERE f>='-5'",
     "SELECT * FROM  WHERE 0 = 1 "},
    {"AndEqual", kAnd, EQUAL, "SELECT * FROM  AND f=v", "SELECT * FROM  AND f='-5'", "SELECT * FROM  AND f IS NULL "},
    {"AndNotEqual", kAnd, NOT_EQUAL, "SELECT * FROM  AND f<>v", "SELECT * FROM  AND f<>'-5'",
     "SELECT * FROM  AND f IS NOT NULL "},
    {"AndLess", kAnd, LESS, "SELECT * FROM  AND f<v", "SELECT * FROM  AND f<'-5'", "SELECT * FROM  AND 0 = 1 "},
    {"AndGreater", kAnd, GREATER, "SELECT * FROM  AND f>v", "SELECT * FROM  AND f>'-5'", "SELECT * FROM  AND 0 = 1 "},
    {"AndLessEqual", kAnd, LESS_EQUAL, "SELECT * FROM  AND f<=v", "SELECT * FROM  AND f<='-5'",
     "SELECT * FROM  AND 0 = 1 "},
    {"AndGreaterEqual", kAnd, GREATER_EQUAL, "SELECT * FROM  AND f>=v", "SELECT * FROM  AND f>='-5'",
     "SELECT * FROM  AND 0 = 1 "},
    {"OrEqual", kOr, EQUAL, "SELECT * FROM  OR f=v", "SELECT * FROM  OR f='-5'", "SELECT * FROM  OR f IS NULL "},
    {"OrNotEqual", kOr, NOT_EQUAL, "SELECT * FROM  OR f<>v", "SELECT * FROM  OR f<>'-5'",
     "SELECT * FROM  OR f IS NOT NULL "},
    {"OrLess", kOr, LESS, "SELECT * FROM  OR f<v", "SELECT * FROM  OR f<'-5'", "SELECT * FROM  OR 0 = 1 "},
    {"OrGreater", kOr, GREATER, "SELECT * FROM  OR f>v", "SELECT * FROM  OR f>'-5'", "SELECT * FROM  OR 0 = 1 "},
    {"OrLessEqual", kOr, LESS_EQUAL, "SELECT * FROM  OR f<=v", "SELECT * FROM  OR f<='-5'", "SELECT * FROM  OR 0 = 1 "},
    {"OrGreaterEqual", kOr, GREATER_EQUAL, "SELECT * FROM  OR f>=v", "SELECT * FROM  OR f>='-5'",
     "SELECT * FROM  OR 0 = 1 "},
};

INSTANTIATE_TEST_SUITE_P(All, OldFilterComparison, testing::ValuesIn(kCompared),
                         [](testing::TestParamInfo<Compared> const& row) { return std::string(row.param.name); });

// ---- each word with the other forms

struct Ranged {
  char const* name;
  Word word;
  char const* isNull;
  char const* isNotNull;
  char const* integers;  // 1 to 5
  char const* doubles;   // 1.5 to 5

  friend std::ostream& operator<<(std::ostream& out, Ranged const& row) { return out << row.name; }
};

class OldFilterForm : public testing::TestWithParam<Ranged> {};

TEST_P(OldFilterForm, IsNull) { EXPECT_EQ(Applied(GetParam().word, IS_NULL), GetParam().isNull); }

TEST_P(OldFilterForm, IsNotNull) { EXPECT_EQ(Applied(GetParam().word, IS_NOT_NULL), GetParam().isNotNull); }

TEST_P(OldFilterForm, BetweenIntegers) { EXPECT_EQ(Applied(GetParam().word, 1, 5), GetParam().integers); }

TEST_P(OldFilterForm, BetweenDoublesOfSixDecimals) {
  EXPECT_EQ(Applied(GetParam().word, 1.5, 5.0), GetParam().doubles);
}

INSTANTIATE_TEST_SUITE_P(
    All, OldFilterForm,
    testing::Values(Ranged{"Set", kSet, "SELECT * FROM  WHERE f IS NULL", "SELECT * FROM  WHERE f IS NOT NULL",
                           "SELECT * FROM  WHERE f BETWEEN 1 AND 5",
                           "SELECT * FROM  WHERE f BETWEEN 1.500000 AND 5.000000"},
                    Ranged{"And", kAnd, "SELECT * FROM  AND f IS NULL", "SELECT * FROM  AND f IS NOT NULL",
                           "SELECT * FROM  AND f BETWEEN 1 AND 5",
                           "SELECT * FROM  AND f BETWEEN 1.500000 AND 5.000000"},
                    Ranged{"Or", kOr, "SELECT * FROM  OR f IS NULL", "SELECT * FROM  OR f IS NOT NULL",
                           "SELECT * FROM  OR f BETWEEN 1 AND 5", "SELECT * FROM  OR f BETWEEN 1.500000 AND 5.000000"}),
    [](testing::TestParamInfo<Ranged> const& row) { return std::string(row.param.name); });

// ---- operands

TEST(OldFilter, AValueIsQuotedAndNotEscaped) {
  Str const value("O'B\\n\"x");
  EXPECT_EQ(Applied(kSet, &value, EQUAL), "SELECT * FROM  WHERE f='O'B\\n\"x'");
}

TEST(OldFilter, ATextIsNeitherQuotedNorEscaped) {
  EXPECT_EQ(Applied(kSet, "'O'B' + \\", EQUAL), "SELECT * FROM  WHERE f='O'B' + \\");
}

TEST(OldFilter, AFieldIsInsertedAsItStands) {
  old_filter filter;
  filter.Set("LEFT(`na'me`, 2)", "'x'", LESS);
  EXPECT_EQ(Text(filter), "SELECT * FROM  WHERE LEFT(`na'me`, 2)<'x'");
}

TEST(OldFilter, ValuesAreWrittenAsTheirTexts) {
  Double const number(2.5);
  Int64 const large(9007199254740993);
  Str const empty("");
  EXPECT_EQ(Applied(kSet, &number, GREATER), "SELECT * FROM  WHERE f>'2.5'");
  EXPECT_EQ(Applied(kSet, &large, EQUAL), "SELECT * FROM  WHERE f='9007199254740993'");
  EXPECT_EQ(Applied(kSet, &empty, EQUAL), "SELECT * FROM  WHERE f=''");
}

TEST(OldFilter, AColumnValueIsWrittenAsItsText) {
  ASVStr name(20);
  name = "Italy";
  EXPECT_EQ(Applied(kSet, &name, EQUAL), "SELECT * FROM  WHERE f='Italy'");
}

TEST(OldFilter, ANullTimeAsksForNull) {
  ASTime const null;
  EXPECT_EQ(Applied(kSet, &null, EQUAL), "SELECT * FROM  WHERE f IS NULL ");
}

TEST(OldFilter, TheNullPointerItselfIsAValue) {
  old_filter filter;
  filter.Set("f", nullptr, NOT_EQUAL);
  EXPECT_EQ(Text(filter), "SELECT * FROM  WHERE f IS NOT NULL ");
}

TEST(OldFilter, ANullTextAddsNothingBehindTheOperator) {
  EXPECT_EQ(Applied(kSet, Str(), EQUAL), "SELECT * FROM  WHERE f=");
}

TEST(OldFilter, RangesOfTheLimitsOfIntegers) {
  EXPECT_EQ(Applied(kSet, INT_MIN, INT_MAX), "SELECT * FROM  WHERE f BETWEEN -2147483648 AND 2147483647");
}

TEST(OldFilter, RangesOfOtherIntegersAreWrittenInFull) {
  EXPECT_EQ(Applied(kSet, LONG_MIN, 5), "SELECT * FROM  WHERE f BETWEEN -9223372036854775808 AND 5");
  EXPECT_EQ(Applied(kAnd, 1U, ULONG_MAX), "SELECT * FROM  AND f BETWEEN 1 AND 18446744073709551615");
  EXPECT_EQ(Applied(kOr, short{1}, 5LL), "SELECT * FROM  OR f BETWEEN 1 AND 5");
}

TEST(OldFilter, AnIntegerBesideADoubleCountsAsOne) {
  EXPECT_EQ(Applied(kSet, 1, 2.5), "SELECT * FROM  WHERE f BETWEEN 1.000000 AND 2.500000");
  EXPECT_EQ(Applied(kAnd, 1.5F, 2L), "SELECT * FROM  AND f BETWEEN 1.500000 AND 2.000000");
  EXPECT_EQ(Applied(kOr, 1.5, 2U), "SELECT * FROM  OR f BETWEEN 1.500000 AND 2.000000");
}

TEST(OldFilter, RangesAreNotPutInOrder) { EXPECT_EQ(Applied(kSet, 5, -1), "SELECT * FROM  WHERE f BETWEEN 5 AND -1"); }

TEST(OldFilter, RangesOfDoublesAreRounded) {
  EXPECT_EQ(Applied(kSet, -2.0000006, 1e15), "SELECT * FROM  WHERE f BETWEEN -2.000001 AND 1000000000000000.000000");
}

TEST(OldFilter, RangesOfTheLargestDoublesAreWrittenInFull) {
  double const largest = std::numeric_limits<double>::max();
  std::string const text = Applied(kSet, -largest, largest);
  EXPECT_EQ(text.size(), std::string("SELECT * FROM  WHERE f BETWEEN - AND ").size() + 2 * 316);
  EXPECT_EQ(text.substr(0, 48), "SELECT * FROM  WHERE f BETWEEN -1797693134862315");
  EXPECT_EQ(text.substr(text.size() - 16), "124858368.000000");
}

TEST(OldFilter, ALongTextIsWrittenInFull) {
  std::string const longText(200000, 'x');
  EXPECT_EQ(Applied(kSet, Str(longText), EQUAL), "SELECT * FROM  WHERE f=" + longText);
}

TEST(OldFilter, ALongFieldIsWrittenInFull) {
  std::string const field(200000, 'x');
  old_filter filter;
  filter.Set(field, 1, 5);
  EXPECT_EQ(Text(filter), "SELECT * FROM  WHERE " + field + " BETWEEN 1 AND 5");
}

// ---- codes that are none

constexpr auto kNoComparison = static_cast<comparison>(6);

TEST(OldFilter, ACodeThatIsNoneGivesNoOperator) {
  Int const value(5);
  EXPECT_EQ(Applied(kSet, "v", kNoComparison), "SELECT * FROM  WHERE fv");
  EXPECT_EQ(Applied(kAnd, &value, static_cast<comparison>(7)), "SELECT * FROM  AND f'5'");
}

TEST(OldFilter, ACodeThatIsNoneComparesWithNullNever) {
  ASInt const null;
  EXPECT_EQ(Applied(kOr, &null, kNoComparison), "SELECT * FROM  OR 0 = 1 ");
}

TEST(OldFilter, ANullCodeThatIsNoneGivesNoWord) {
  EXPECT_EQ(Applied(kSet, static_cast<null_comparison>(2)), "SELECT * FROM  WHERE f");
}

TEST(OldFilter, ACodeFarFromAnyGivesNoOperator) {
  EXPECT_EQ(Applied(kSet, "v", static_cast<comparison>(1000)), "SELECT * FROM  WHERE fv");
}

// ---- the condition grows

TEST(OldFilter, EveryCallAppends) {
  ASInt const null;
  old_filter filter;
  filter.Set("a", "1", EQUAL).And("b", IS_NOT_NULL).Or("c", &null, LESS).And("d", 1, 5).Or("e", 0.5, 1.0);
  EXPECT_EQ(Text(filter),
            "SELECT * FROM  WHERE a=1 AND b IS NOT NULL OR 0 = 1  AND d BETWEEN 1 AND 5"
            " OR e BETWEEN 0.500000 AND 1.000000");
}

TEST(OldFilter, ASecondSetWritesTheWordAgain) {
  old_filter filter;
  filter.Set("a", "1", EQUAL).Set("b", "2", EQUAL);
  EXPECT_EQ(Text(filter), "SELECT * FROM  WHERE a=1 WHERE b=2");
}

TEST(OldFilter, EveryCallReturnsTheFilter) {
  Int const value(5);
  old_filter filter;
  for (Word const word : {kSet, kAnd, kOr}) {
    EXPECT_EQ(&Apply(filter, word, "v", EQUAL), &filter);
    EXPECT_EQ(&Apply(filter, word, &value, EQUAL), &filter);
    EXPECT_EQ(&Apply(filter, word, IS_NULL), &filter);
    EXPECT_EQ(&Apply(filter, word, 1, 5), &filter);
    EXPECT_EQ(&Apply(filter, word, 0.5, 5.0), &filter);
  }
  EXPECT_EQ(&filter.Project("a"), &filter);
  EXPECT_EQ(&filter.Distinct(1), &filter);
}

TEST(OldFilter, GoesOnBehindAConditionOfColumns) {
  Orders o;
  old_filter filter;
  filter.Where(o.idColumn == 3);
  filter.And("name", "'x'", EQUAL);
  EXPECT_EQ(corvane::test::Sql(filter, {{&o, "o"}}), "SELECT * FROM  WHERE o.id=3 AND name='x'");
}

TEST(OldFilter, AConditionOfColumnsReplacesWhatIsThere) {
  Orders o;
  old_filter filter;
  filter.Set("name", "'x'", EQUAL);
  filter.Set(o.idColumn == 3);
  EXPECT_EQ(corvane::test::Sql(filter, {{&o, "o"}}), "SELECT * FROM  WHERE o.id=3");
}

// ---- the select list

TEST(OldFilter, WithoutColumnsSelectsAll) { EXPECT_EQ(Text(old_filter()), "SELECT * FROM "); }

TEST(OldFilter, ListsItsColumns) {
  old_filter filter;
  filter.Project("code").Project("COUNT(*)").Project("'a, b' AS x");
  EXPECT_EQ(Text(filter), "SELECT code, COUNT(*), 'a, b' AS x FROM ");
}

TEST(OldFilter, ProjectedTextsAreNoColumnsToRead) {
  old_filter filter;
  filter.Project("code");
  EXPECT_TRUE(filter.ASFilter::Project().Items().empty());
}

TEST(OldFilter, ANullOrEmptyColumnAtFirstSelectsAll) {
  EXPECT_EQ(Text(old_filter().Project(Str())), "SELECT * FROM ");
  EXPECT_EQ(Text(old_filter().Project("")), "SELECT * FROM ");
}

TEST(OldFilter, TakesTheColumnsOfRecordsAsWell) {
  Orders o;
  old_filter filter;
  filter.Project("code");
  filter.Project() << o.idColumn << o.noteColumn;
  filter.Project("name");
  EXPECT_EQ(corvane::test::Sql(filter, {{&o, "o"}}), "SELECT code, o.id, o.note, name FROM ");
}

TEST(OldFilter, DistinctWithNoughtIsIgnored) {
  old_filter filter;
  filter.Distinct(0).Project("code");
  EXPECT_EQ(Text(filter), "SELECT code FROM ");
}

TEST(OldFilter, DistinctBeforeATextLeavesAComma) {
  old_filter filter;
  filter.Distinct(1).Project("code");
  EXPECT_EQ(Text(filter), "SELECT DISTINCT , code FROM ");
}

TEST(OldFilter, DistinctTakesAnyOtherNumber) { EXPECT_EQ(Text(old_filter().Distinct(-1)), "SELECT DISTINCT  FROM "); }

TEST(OldFilter, DistinctGoesWithTheColumnsOfRecords) {
  Orders o;
  old_filter filter;
  filter.Distinct(1);
  filter.Project() << o.idColumn << o.noteColumn;
  EXPECT_EQ(corvane::test::Sql(filter, {{&o, "o"}}), "SELECT DISTINCT o.id, o.note FROM ");
}

TEST(OldFilter, DistinctMayBeWrittenWithTheFirstColumn) {
  old_filter filter;
  filter.Project("DISTINCT code").Project("name");
  EXPECT_EQ(Text(filter), "SELECT DISTINCT code, name FROM ");
}

// ---- tables

std::string Number(void const* address) { return std::to_string(reinterpret_cast<std::uintptr_t>(address)); }

std::uint32_t LowerHalf(void const* address) {
  return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(address) & 0xFFFFFFFFU);
}

TEST(OldFilter, ATableIsNamedByTheAddressOfItsCharacters) {
  Str const table("country");
  old_filter filter;
  filter.Join(table);
  EXPECT_EQ(Text(filter), "SELECT * FROM country P" + Number(table.str()));
}

TEST(OldFilter, ATableOfCharactersIsNamedByTheirAddress) {
  char const table[] = "country";
  old_filter filter;
  filter.Join(table);
  EXPECT_EQ(Text(filter), "SELECT * FROM country P" + Number(table));
}

TEST(OldFilter, JoinReturnsTheLowerHalfOfTheAddress) {
  Str const table("country");
  char const characters[] = "city";
  old_filter filter;
  EXPECT_EQ(static_cast<std::uint32_t>(filter.Join(table)), LowerHalf(table.str()));
  EXPECT_EQ(static_cast<std::uint32_t>(filter.Join(characters)), LowerHalf(characters));
}

TEST(OldFilter, ListsItsTables) {
  Str const country("country");
  Str const city("city");
  old_filter filter;
  filter.Join(country);
  filter.Join(city);
  EXPECT_EQ(Text(filter), "SELECT * FROM country P" + Number(country.str()) + ", city P" + Number(city.str()));
}

TEST(OldFilter, TwoTextsOfOneTableAreToldApart) {
  Str const first("country");
  Str const second("country");
  old_filter filter;
  filter.Join(first);
  filter.Join(second);
  EXPECT_EQ(Text(filter), "SELECT * FROM country P" + Number(first.str()) + ", country P" + Number(second.str()));
}

TEST(OldFilter, TheSameTextTwiceIsTheSameAliasTwice) {
  Str const table("country");
  old_filter filter;
  filter.Join(table);
  filter.Join(table);
  EXPECT_EQ(Text(filter), "SELECT * FROM country P" + Number(table.str()) + ", country P" + Number(table.str()));
}

TEST(OldFilter, ANullTableHasTheAliasP0) {
  old_filter filter;
  EXPECT_EQ(filter.Join(Str()), 0);
  EXPECT_EQ(filter.Join(static_cast<char const*>(nullptr)), 0);
  EXPECT_EQ(Text(filter), "SELECT * FROM  P0,  P0");
}

TEST(OldFilter, AColumnMayBeQualifiedByTheAddressOfItsTable) {
  Str const table("country");
  Str column("P");
  column << reinterpret_cast<unsigned long>(table.voidptr()) << ".code";
  old_filter filter;
  filter.Join(table);
  filter.Project(column);
  std::string const number = Number(table.str());
  EXPECT_EQ(Text(filter), "SELECT P" + number + ".code FROM country P" + number);
}

TEST(OldFilter, TheRecordsOfColumnsAndConditionsAreNotListed) {
  Orders o;
  Customers c;
  old_filter filter;
  filter.Project() << o.idColumn;
  filter.Where(++c.idColumn == o.customerColumn && o.totalColumn > 10);
  EXPECT_EQ(corvane::test::Sql(filter, {{&o, "o"}, {&c, "c"}}), "SELECT o.id FROM  WHERE o.total>10");
}

// ---- what is not written

TEST(OldFilter, WritesNeitherHavingNorGroupingNorHint) {
  Orders o;
  std::unique_ptr<ASGroupAttribute> const sum(o.totalColumn.Sum());
  old_filter filter;
  filter.Project() << o.idColumn << *sum;
  filter.Having(*sum > 100);
  filter.GroupBy() << o.idColumn;
  filter.Hint("first");
  EXPECT_EQ(corvane::test::Sql(filter, {{&o, "o"}}), "SELECT o.id, SUM(o.total) FROM ");
}

// ---- as a filter

TEST(OldFilter, IsASubQuery) {
  old_filter filter;
  filter.Project("code");
  filter.Set("name", "'x'", EQUAL);
  EXPECT_EQ(filter.Select().Query().ToString(), "SELECT code FROM  WHERE name='x'");
  EXPECT_EQ(filter.Exists().Query().ToString(), " EXISTS (SELECT code FROM  WHERE name='x')");
}

// ---- copies

class OldFilterCopy : public testing::Test {
 protected:
  OldFilterCopy() {
    filter.Join(table);
    filter.Project("code");
    filter.Set("name", "'x'", EQUAL);
  }

  Str const table{"country"};
  std::string const alias = "P" + Number(table.str());
  old_filter filter;
};

TEST_F(OldFilterCopy, HasColumnsTablesAndCondition) {
  old_filter const copy(filter);
  EXPECT_EQ(Text(copy), "SELECT code FROM country " + alias + " WHERE name='x'");
}

// Its copy constructor says nothing of the virtual base, and many will not.
struct Named : old_filter {
  explicit Named(char const* text) : name(text) {}
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wextra"
  Named(Named const& other) : old_filter(other), name(other.name) {}
#pragma GCC diagnostic pop
  std::string name;
};

TEST_F(OldFilterCopy, OfADerivedClassKeepsColumnsAndCondition) {
  Named named("x");
  named.Project("code");
  named.Set("code", 1, 5);
  Named const copy(named);
  EXPECT_EQ(copy.Query(), "SELECT code FROM  WHERE code BETWEEN 1 AND 5");
}

TEST_F(OldFilterCopy, GoesItsOwnWay) {
  Str const city("city");
  old_filter copy(filter);
  copy.Join(city);
  copy.Project("name").And("a", 1, 5);
  EXPECT_EQ(Text(filter), "SELECT code FROM country " + alias + " WHERE name='x'");
  EXPECT_EQ(Text(copy), "SELECT code, name FROM country " + alias + ", city P" + Number(city.str()) +
                            " WHERE name='x' AND a BETWEEN 1 AND 5");
}

TEST_F(OldFilterCopy, AssignmentReplacesColumnsTablesAndCondition) {
  old_filter target;
  target.Join("city");
  target.Project("id").Set("id", 1, 5);
  target = filter;
  EXPECT_EQ(Text(target), "SELECT code FROM country " + alias + " WHERE name='x'");
}

TEST_F(OldFilterCopy, AssignmentReturnsTheTarget) {
  old_filter target;
  EXPECT_EQ(&(target = filter), &target);
}

TEST_F(OldFilterCopy, AssignmentToItselfChangesNothing) {
  old_filter const& same = filter;
  filter = same;
  EXPECT_EQ(Text(filter), "SELECT code FROM country " + alias + " WHERE name='x'");
}

TEST_F(OldFilterCopy, AssignmentTakesTheColumnsToRead) {
  Orders o;
  filter.Project() << o.idColumn;
  old_filter target;
  target = filter;
  EXPECT_EQ(target.ASFilter::Project().Items(), filter.ASFilter::Project().Items());
}

TEST_F(OldFilterCopy, AssignmentOfAnEmptyFilterEmpties) {
  filter = old_filter();
  EXPECT_EQ(Text(filter), "SELECT * FROM ");
}

}  // namespace
