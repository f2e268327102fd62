#include "corvane/query/group_attribute.h"

#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "corvane/query/group_comparison.h"
#include "tests/support/sql.h"

using corvane::test::Cities;
using corvane::test::Customers;
using corvane::test::Orders;
using corvane::test::Sql;

namespace {

using OwnedAggregate = std::unique_ptr<ASGroupAttribute>;
using Domains = std::set<ASDomain*>;

char const* const kNoText = nullptr;

// An aggregate that renders itself.
class Doubled : public ASGroupAttribute {
 public:
  using ASGroupAttribute::ASGroupAttribute;
  Str Query() const override { return "2*" + ASGroupAttribute::Query(); }
};

// Tells that it was deleted.
class Deleted : public ASGroupAttribute {
 public:
  explicit Deleted(bool& deleted) : ASGroupAttribute("", nullptr, nullptr), deleted_(&deleted) {}
  ~Deleted() override { *deleted_ = true; }

 private:
  bool* deleted_;
};

class GroupAttribute : public testing::Test {
 protected:
  template <class Query>
  std::string Text(Query const& query) const {
    return Sql(query, {{&o, "o"}, {&c, "c"}, {&t, "t"}});
  }

  Orders o;
  Customers c;
  Cities t;
};

// ---- Making aggregates ----

TEST_F(GroupAttribute, MakersWrapTheColumn) {
  struct Row {
    OwnedAggregate aggregate;
    char const* text;
  };
  Row const rows[] = {
      {OwnedAggregate(o.totalColumn.Sum()), "SUM(o.total)"},
      {OwnedAggregate(o.totalColumn.Average()), "AVG(o.total)"},
      {OwnedAggregate(o.totalColumn.Max()), "MAX(o.total)"},
      {OwnedAggregate(o.totalColumn.Min()), "MIN(o.total)"},
      {OwnedAggregate(o.totalColumn.Count()), "COUNT(o.total)"},
      {OwnedAggregate(o.totalColumn.CountDistinct()), "COUNT( DISTINCT o.total)"},
  };
  for (Row const& row : rows) {
    EXPECT_EQ(Text(*row.aggregate), row.text);
    EXPECT_EQ(row.aggregate->Domain(), &o) << row.text;
    EXPECT_EQ(row.aggregate->Data(), &o.total) << row.text;
  }
}

TEST_F(GroupAttribute, EveryCallMakesAnotherObject) {
  OwnedAggregate const first(o.totalColumn.Sum());
  OwnedAggregate const second(o.totalColumn.Sum());
  EXPECT_NE(first, second);
}

TEST_F(GroupAttribute, OutlivesTheColumnThatItIsMadeOf) {
  auto column = std::make_unique<ASAttribute>(o.totalColumn);
  OwnedAggregate const sum(column->Sum());
  column.reset();
  EXPECT_EQ(Text(*sum), "SUM(o.total)");
}

TEST_F(GroupAttribute, OfAFreeStandingColumnHasNeitherRecordNorValue) {
  OwnedAggregate const highest(o.noteColumn.Upper().Max());
  EXPECT_EQ(Text(*highest), "MAX( UPPER(o.note))");
  EXPECT_EQ(highest->Domain(), nullptr);
  EXPECT_EQ(highest->Data(), nullptr);
}

TEST_F(GroupAttribute, ExpressionTakesTheTextAsItStands) {
  ASGroupAttribute const free = o.totalColumn.Expression("SUM(total) / 'two' ");
  EXPECT_EQ(free.Query(), "SUM(total) / 'two' ");
  EXPECT_EQ(free.Domain(), &o);
  EXPECT_EQ(free.Data(), &o.total);
}

TEST_F(GroupAttribute, ExpressionKeepsNoHoldOfTheText) {
  Str text("SUM(total)");
  ASGroupAttribute const free = o.totalColumn.Expression(text);
  text << "/2";
  EXPECT_EQ(free.Query(), "SUM(total)");
}

TEST_F(GroupAttribute, TakesTextRecordAndValue) {
  ASGroupAttribute const now("NOW()", &c, &c.name);
  EXPECT_EQ(now.Query(), "NOW()");
  EXPECT_EQ(now.Domain(), &c);
  EXPECT_EQ(now.Data(), &c.name);
}

TEST_F(GroupAttribute, TakesNeitherRecordNorValueFromNullPointers) {
  ASGroupAttribute const now("NOW()", nullptr, nullptr);
  EXPECT_EQ(now.Domain(), nullptr);
  EXPECT_EQ(now.Data(), nullptr);
}

TEST_F(GroupAttribute, RegisterNamesAnotherValueAndRecordAndLeavesTheText) {
  OwnedAggregate const count(o.noteColumn.Count());
  ASInt number;
  count->Register(&number, &c);
  EXPECT_EQ(count->Data(), &number);
  EXPECT_EQ(count->Domain(), &c);
  EXPECT_EQ(Text(*count), "COUNT(o.note)");
}

TEST_F(GroupAttribute, RegisterTakesNullPointersAndReturnsTheAggregate) {
  OwnedAggregate const count(o.noteColumn.Count());
  EXPECT_EQ(&count->Register(nullptr, nullptr), count.get());
  EXPECT_EQ(count->Data(), nullptr);
  EXPECT_EQ(count->Domain(), nullptr);
}

TEST_F(GroupAttribute, RegisterDoesNotTouchTheColumnThatItIsMadeOf) {
  OwnedAggregate const count(o.noteColumn.Count());
  ASInt number;
  count->Register(&number, &c);
  EXPECT_EQ(o.noteColumn.Data(), &o.note);
  EXPECT_EQ(o.noteColumn.Domain(), &o);
}

TEST_F(GroupAttribute, CopyHasTextRecordAndValue) {
  OwnedAggregate original(o.totalColumn.Sum());
  ASGroupAttribute const copy(*original);
  original.reset();
  EXPECT_EQ(Text(copy), "SUM(o.total)");
  EXPECT_EQ(copy.Domain(), &o);
  EXPECT_EQ(copy.Data(), &o.total);
}

TEST_F(GroupAttribute, AssignmentReplacesTextRecordAndValue) {
  ASGroupAttribute target = o.totalColumn.Expression("a");
  target = c.nameColumn.Expression("b");
  EXPECT_EQ(target.Query(), "b");
  EXPECT_EQ(target.Domain(), &c);
  EXPECT_EQ(target.Data(), &c.name);
}

TEST_F(GroupAttribute, IsRenderedByADerivedClassEverywhere) {
  Doubled const g("MAX(x)", &o, &o.total);
  ASSimpleAttribute const& column = g;
  EXPECT_EQ(column.Query(), "2*MAX(x)");
  EXPECT_EQ((g > 3).Query(), "2*MAX(x)>3");
  EXPECT_EQ((g == "x").Query(), "2*MAX(x)=x");
  EXPECT_EQ((g != o.totalColumn.Expression("y")).Query(), "2*MAX(x)<>y");
  EXPECT_EQ((o.totalColumn.Expression("y") < g).Query(), "y<2*MAX(x)");
  EXPECT_EQ(g.Like("a%").Query(), "2*MAX(x) LIKE 'a%'");
  EXPECT_EQ(g.InStr("y").Query(), " INSTR (2*MAX(x), y)");
  EXPECT_EQ(g.IsNull().Query(), "2*MAX(x) IS NULL");
  EXPECT_EQ(g.IsNotNull().Query(), "2*MAX(x) IS NOT NULL");
  EXPECT_EQ(g.In(ASAttribute("1")).Query(), "2*MAX(x) IN (1)");
  EXPECT_EQ((-g).Query(), "2*MAX(x) DESC");
}

TEST_F(GroupAttribute, IsDestroyedThroughItsBase) {
  bool deleted = false;
  std::unique_ptr<ASSimpleAttribute>(std::make_unique<Deleted>(deleted)).reset();
  EXPECT_TRUE(deleted);
}

// ---- Predicates. g, h and the columns below stand for every row; no row changes them ----

struct Row {
  ASGroupComparison condition;
  char const* text;
  Domains domains;
};

class GroupPredicates : public GroupAttribute {
 protected:
  GroupPredicates() : g(o.totalColumn.Expression("SUM(g)")), h(c.nameColumn.Expression("MAX(h)")) {}

  void Expect(std::vector<Row> const& rows) const {
    for (Row const& row : rows) {
      EXPECT_EQ(Text(row.condition), row.text);
      EXPECT_EQ(row.condition.Domains(), row.domains) << row.text;
    }
  }

  ASGroupAttribute g;
  ASGroupAttribute h;
  ASGroupAttribute free{"COUNT(*)", nullptr, nullptr};
};

TEST_F(GroupPredicates, WithAColumnNameBothRecords) {
  Expect({
      {g == c.nameColumn, "SUM(g)=c.name", {&o, &c}},
      {g != c.nameColumn, "SUM(g)<>c.name", {&o, &c}},
      {g > c.nameColumn, "SUM(g)>c.name", {&o, &c}},
      {g < c.nameColumn, "SUM(g)<c.name", {&o, &c}},
      {g >= c.nameColumn, "SUM(g)>=c.name", {&o, &c}},
      {g <= c.nameColumn, "SUM(g)<=c.name", {&o, &c}},
  });
}

TEST_F(GroupPredicates, WithAnAggregateNameBothRecords) {
  Expect({
      {g == h, "SUM(g)=MAX(h)", {&o, &c}},
      {g != h, "SUM(g)<>MAX(h)", {&o, &c}},
      {g > h, "SUM(g)>MAX(h)", {&o, &c}},
      {g < h, "SUM(g)<MAX(h)", {&o, &c}},
      {g >= h, "SUM(g)>=MAX(h)", {&o, &c}},
      {g <= h, "SUM(g)<=MAX(h)", {&o, &c}},
  });
}

TEST_F(GroupPredicates, TakeAnyColumnThroughItsBase) {
  ASSimpleAttribute const& column = t.idColumn;
  Expect({
      {g == column, "SUM(g)=t.id", {&o, &t}},
      {g != column, "SUM(g)<>t.id", {&o, &t}},
      {g > column, "SUM(g)>t.id", {&o, &t}},
      {g < column, "SUM(g)<t.id", {&o, &t}},
      {g >= column, "SUM(g)>=t.id", {&o, &t}},
      {g <= column, "SUM(g)<=t.id", {&o, &t}},
  });
}

TEST_F(GroupPredicates, OfOneRecordNameItOnce) {
  Expect({
      {g == o.idColumn, "SUM(g)=o.id", {&o}},
      {g > g, "SUM(g)>SUM(g)", {&o}},
  });
}

TEST_F(GroupPredicates, NameNoRecordForWhatHasNone) {
  Expect({
      {free == g, "COUNT(*)=SUM(g)", {&o}},
      {g != free, "SUM(g)<>COUNT(*)", {&o}},
      {free > free, "COUNT(*)>COUNT(*)", {}},
      {free == 1, "COUNT(*)=1", {}},
      {free == "x", "COUNT(*)=x", {}},
      {free.IsNull(), "COUNT(*) IS NULL", {}},
      {g < o.noteColumn.Upper(), "SUM(g)< UPPER(o.note)", {&o}},
  });
}

TEST_F(GroupPredicates, AColumnMarkedForAnOuterJoinIsAColumnLikeAnyOther) {
  Expect({{g == ++c.idColumn, "SUM(g)=c.id", {&o, &c}}});
}

TEST_F(GroupPredicates, WithAnInt) {
  Expect({
      {g == 5, "SUM(g)=5", {&o}},
      {g != 5, "SUM(g)<>5", {&o}},
      {g > 5, "SUM(g)>5", {&o}},
      {g < 5, "SUM(g)<5", {&o}},
      {g >= 5, "SUM(g)>=5", {&o}},
      {g <= 5, "SUM(g)<=5", {&o}},
      {g == 0, "SUM(g)=0", {&o}},
      {g > -5, "SUM(g)>-5", {&o}},
      {g > INT_MIN, "SUM(g)>-2147483648", {&o}},
  });
}

TEST_F(GroupPredicates, WithADouble) {
  Expect({
      {g == 2.5, "SUM(g)=2.5", {&o}},
      {g != 2.5, "SUM(g)<>2.5", {&o}},
      {g > 2.5, "SUM(g)>2.5", {&o}},
      {g < 2.5, "SUM(g)<2.5", {&o}},
      {g >= 2.5, "SUM(g)>=2.5", {&o}},
      {g <= 2.5, "SUM(g)<=2.5", {&o}},
      {g > -0.1, "SUM(g)>-0.1", {&o}},
      {g > 1234567.891, "SUM(g)>1234567.891", {&o}},
  });
}

TEST_F(GroupPredicates, WithALong) {
  Expect({
      {g == 5L, "SUM(g)=5", {&o}},
      {g != 5L, "SUM(g)<>5", {&o}},
      {g > 5L, "SUM(g)>5", {&o}},
      {g < 5L, "SUM(g)<5", {&o}},
      {g >= 5L, "SUM(g)>=5", {&o}},
      {g <= 5L, "SUM(g)<=5", {&o}},
      {g == 0L, "SUM(g)=0", {&o}},
  });
}

TEST_F(GroupPredicates, WithOtherIntegers) {
  Expect({
      {g == 4294967295U, "SUM(g)=4294967295", {&o}},
      {g != 18446744073709551615ULL, "SUM(g)<>18446744073709551615", {&o}},
      {g > LLONG_MIN, "SUM(g)>-9223372036854775808", {&o}},
      {g < static_cast<short>(-7), "SUM(g)<-7", {&o}},
      {g >= 7UL, "SUM(g)>=7", {&o}},
      {g <= static_cast<unsigned short>(65535), "SUM(g)<=65535", {&o}},
  });
}

TEST_F(GroupPredicates, WithANumberValue) {
  Expect({
      {g == Int(5), "SUM(g)=5", {&o}},
      {g != Int(5), "SUM(g)<>5", {&o}},
      {g > Int(5), "SUM(g)>5", {&o}},
      {g < Double(2.5), "SUM(g)<2.5", {&o}},
      {g >= Double(2.5), "SUM(g)>=2.5", {&o}},
      {g <= Double(2.5), "SUM(g)<=2.5", {&o}},
  });
}

TEST_F(GroupPredicates, WithANullNumberValue) {
  Expect({
      {g == Int(), "SUM(g) IS NULL ", {&o}},
      {g != Int(), "SUM(g) IS NOT NULL ", {&o}},
      {g > Int(), " 0 = 1 ", {&o}},
      {g < Int(), " 0 = 1 ", {&o}},
      {g >= Double(), " 0 = 1 ", {&o}},
      {g <= Double(), " 0 = 1 ", {&o}},
  });
}

TEST_F(GroupPredicates, TextsAreInsertedAsTheyStand) {
  Expect({
      {g == "x", "SUM(g)=x", {&o}},
      {g != "x", "SUM(g)<>x", {&o}},
      {g == "'O'Brien\\'", "SUM(g)='O'Brien\\'", {&o}},
      {g != "'O'Brien\\'", "SUM(g)<>'O'Brien\\'", {&o}},
      {g == "", "SUM(g)=", {&o}},
      {g != "", "SUM(g)<>", {&o}},
      {g == kNoText, "SUM(g)=", {&o}},
      {g != kNoText, "SUM(g)<>", {&o}},
  });
}

TEST_F(GroupPredicates, TakeTextsOfOtherTypes) {
  Expect({
      {g == Str("'x'"), "SUM(g)='x'", {&o}},
      {g != Str("'x'"), "SUM(g)<>'x'", {&o}},
      {g == std::string("'x'"), "SUM(g)='x'", {&o}},
      {g != std::string("'x'"), "SUM(g)<>'x'", {&o}},
      {g == std::string_view("'xy'", 2), "SUM(g)='x", {&o}},
      {g != std::string_view("'xy'", 2), "SUM(g)<>'x", {&o}},
  });
}

TEST_F(GroupPredicates, LikeQuotesAndEscapesThePattern) {
  Expect({
      {h.Like("a%"), "MAX(h) LIKE 'a%'", {&c}},
      {h.Like("a%", 0), "MAX(h) LIKE 'a%'", {&c}},
      {h.Like("a!%%", '!'), "MAX(h) LIKE 'a!%%' ESCAPE '!'", {&c}},
      {h.Like("O'Brien\\_"), "MAX(h) LIKE 'O\\'Brien\\\\_'", {&c}},
      {h.Like("O'B%", '!'), "MAX(h) LIKE 'O\\'B%' ESCAPE '!'", {&c}},
      {h.Like(""), "MAX(h) LIKE ''", {&c}},
      {h.Like(kNoText, 0), "MAX(h) LIKE ''", {&c}},
      {h.Like(kNoText, '!'), "MAX(h) LIKE '' ESCAPE '!'", {&c}},
      {h.Like(Str("a'%"), 0), "MAX(h) LIKE 'a\\'%'", {&c}},
      {h.Like(std::string("a'%"), '!'), "MAX(h) LIKE 'a\\'%' ESCAPE '!'", {&c}},
      {h.Like(std::string_view("a%b", 2)), "MAX(h) LIKE 'a%'", {&c}},
  });
}

TEST_F(GroupPredicates, LikeTakesAPatternOfAnyLength) {
  EXPECT_EQ(h.Like(std::string(70000, '\'')).Query().length(), 6 + 7 + 140000 + 1);
}

TEST_F(GroupPredicates, InStrEscapesButDoesNotQuote) {
  Expect({
      {h.InStr("name"), " INSTR (MAX(h), name)", {&c}},
      {h.InStr("'O'Brien'"), " INSTR (MAX(h), \\'O\\'Brien\\')", {&c}},
      {h.InStr(""), " INSTR (MAX(h), )", {&c}},
      {h.InStr(kNoText), " INSTR (MAX(h), )", {&c}},
      {h.InStr(Str("a'b")), " INSTR (MAX(h), a\\'b)", {&c}},
      {h.InStr(std::string("a'b")), " INSTR (MAX(h), a\\'b)", {&c}},
      {h.InStr(std::string_view("a'b", 2)), " INSTR (MAX(h), a\\')", {&c}},
  });
}

TEST_F(GroupPredicates, IsNullCarriesNoBlank) {
  Expect({
      {g.IsNull(), "SUM(g) IS NULL", {&o}},
      {g.IsNotNull(), "SUM(g) IS NOT NULL", {&o}},
  });
}

TEST_F(GroupPredicates, InNamesTheRecordOfTheAggregateAlone) {
  Expect({
      {g.In(c.idColumn), "SUM(g) IN (c.id)", {&o}},
      {g.NotIn(c.idColumn), "SUM(g) NOT IN (c.id)", {&o}},
      {g.In(h), "SUM(g) IN (MAX(h))", {&o}},
      {g.NotIn(h), "SUM(g) NOT IN (MAX(h))", {&o}},
      {free.In(c.idColumn), "COUNT(*) IN (c.id)", {}},
      {free.NotIn(c.idColumn), "COUNT(*) NOT IN (c.id)", {}},
  });
}

TEST_F(GroupPredicates, InTakesASubQuery) {
  ASFilter f;
  f.Project() << c.idColumn;
  Expect({
      {g.In(f.Select()), "SUM(g) IN (SELECT c.id FROM (customers c))", {&o}},
      {g.NotIn(f.Select()), "SUM(g) NOT IN (SELECT c.id FROM (customers c))", {&o}},
      {g >= f.Any(), "SUM(g)>= ANY (SELECT c.id FROM (customers c))", {&o}},
  });
}

TEST_F(GroupPredicates, KeepNoHoldOfTheAggregate) {
  OwnedAggregate sum(o.totalColumn.Sum());
  ASGroupComparison const condition = *sum > 3;
  sum.reset();
  EXPECT_EQ(Text(condition), "SUM(o.total)>3");
}

}  // namespace
