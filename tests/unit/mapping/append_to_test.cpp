// ASSimpleAttribute::AppendTo(): what each kind of column appends of itself to a text.

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "corvane/corvane.h"
#include "tests/support/sql.h"

using corvane::test::Orders;
using corvane::test::Sql;

namespace {

// A column that renders itself.
class Wrapped : public ASAttribute {
 public:
  using ASAttribute::ASAttribute;
  Str Query() const override { return "f(" + ASAttribute::Query() + ")"; }
};

// A column of a class that changes nothing.
class Plain : public ASAttribute {
 public:
  using ASAttribute::ASAttribute;
};

class Refusing : public ASAttribute {
 public:
  using ASAttribute::ASAttribute;
  Str Query() const override { throw AException("No such column. "); }
};

// A column that is neither of a record nor an aggregate.
class Position : public ASSimpleAttribute {
 public:
  explicit Position(int number) : number_(number) {}
  Str Query() const override {
    Str text;
    text << number_;
    return text;
  }

 private:
  int number_;
};

class Null : public ASSimpleAttribute {
 public:
  Str Query() const override { return Str(); }
};

class AppendTo : public testing::Test {
 protected:
  std::string Appended(ASSimpleAttribute const& column, char const* before) const {
    Str text("SELECT x");
    column.AppendTo(text, before);
    return Sql(text, {{&o, "o"}});
  }

  Orders o;
  ASAttribute const free{"free"};
};

TEST_F(AppendTo, AppendsTheColumnBehindItsRecord) {
  Str text("SELECT ");
  o.idColumn.AppendTo(text);
  EXPECT_EQ(Sql(text, {{&o, "o"}}), "SELECT o.id");
}

TEST_F(AppendTo, AppendsTheNameAloneWithoutARecord) {
  Str text("SELECT ");
  free.AppendTo(text);
  EXPECT_EQ(text, "SELECT free");
}

TEST_F(AppendTo, AppendsWhatIsToStandBeforeIt) {
  EXPECT_EQ(Appended(o.idColumn, ", "), "SELECT x, o.id");
  EXPECT_EQ(Appended(free, ", "), "SELECT x, free");
  EXPECT_EQ(Appended(free, ""), "SELECT xfree");
  EXPECT_EQ(Appended(Position(3), ", "), "SELECT x, 3");
}

TEST_F(AppendTo, BeginsATextThatIsNull) {
  Str plain;
  free.AppendTo(plain);
  EXPECT_EQ(plain, "free");
  Str derived;
  Wrapped("a").AppendTo(derived, "-");
  EXPECT_EQ(derived, "-f(a)");
}

TEST_F(AppendTo, AppendsACopyAsItsOriginal) {
  EXPECT_EQ(Appended(ASAttribute(o.idColumn), ", "), "SELECT x, o.id");
  EXPECT_EQ(Appended(++o.idColumn, ", "), "SELECT x, o.id");
}

TEST_F(AppendTo, AppendsAColumnWithoutName) { EXPECT_EQ(Appended(ASAttribute(), ", "), "SELECT x, "); }

TEST_F(AppendTo, AppendsDerivedColumns) { EXPECT_EQ(Appended(o.noteColumn.Upper(), ","), "SELECT x, UPPER(o.note)"); }

TEST_F(AppendTo, AppendsWhatADerivedClassMakesOfItself) {
  Wrapped column("id");
  EXPECT_EQ(Appended(column, ", "), "SELECT x, f(id)");
  column.Register(&o.id, &o);
  EXPECT_EQ(Appended(column, ", "), "SELECT x, f(o.id)");
}

TEST_F(AppendTo, AppendsADerivedClassThatChangesNothing) {
  Plain column("id");
  column.Register(&o.id, &o);
  EXPECT_EQ(Appended(column, ", "), "SELECT x, o.id");
}

TEST_F(AppendTo, AppendsACopyOfADerivedClassAsAPlainColumn) {
  EXPECT_EQ(Appended(ASAttribute(Wrapped("id")), ", "), "SELECT x, id");
}

TEST_F(AppendTo, AppendsAggregatesAndExpressions) {
  std::unique_ptr<ASGroupAttribute> const sum(o.totalColumn.Sum());
  EXPECT_EQ(Appended(*sum, ", "), "SELECT x, SUM(o.total)");
  EXPECT_EQ(Appended(o.totalColumn.Expression("NOW()"), ", "), "SELECT x, NOW()");
}

TEST_F(AppendTo, AppendsWhatStandsBeforeANullText) { EXPECT_EQ(Appended(Null(), ", "), "SELECT x, "); }

TEST_F(AppendTo, AppendsNothingWhenQueryThrows) {
  Str text("SELECT x");
  EXPECT_THROW(Refusing("id").AppendTo(text), AException);
  EXPECT_THROW(Refusing("id").AppendTo(text, ", "), AException);
  EXPECT_EQ(text, "SELECT x");
}

TEST_F(AppendTo, LeavesANullTextNullWhenQueryThrows) {
  Str text;
  EXPECT_THROW(Refusing("id").AppendTo(text, ", "), AException);
  EXPECT_EQ(text.IsNull(), 1);
}

TEST_F(AppendTo, AppendsLongNamesWhole) {
  std::string const name(5000, 'n');
  ASAttribute const column{Str(name)};
  EXPECT_EQ(Appended(column, ", "), "SELECT x, " + name);
}

TEST_F(AppendTo, IsCutAtTheCapacityOfAColumn) {
  ASVStr text(8);
  text = "x";
  free.AppendTo(text, ", ");
  EXPECT_STREQ(text.str(), "x, free");
  free.AppendTo(text, ", ");
  EXPECT_STREQ(text.str(), "x, free,");
}

// ---- Aliases, which the columns begin with ----

// What a record is called: by its own address.
std::string AliasOf(ASDomain const& record) { return "T" + std::to_string(reinterpret_cast<std::uintptr_t>(&record)); }

TEST(Alias, IsTheAddressOfEveryRecordOnTheStackAndOnTheHeap) {
  Orders const one;
  Orders const two;
  auto const heap = std::make_unique<Orders>();
  EXPECT_EQ(one.Alias(), AliasOf(one).c_str());
  EXPECT_EQ(two.Alias(), AliasOf(two).c_str());
  EXPECT_EQ(heap->Alias(), AliasOf(*heap).c_str());
}

TEST(Alias, OfACopyIsItsOwnAddress) {
  Orders const original;
  ASDomain const copy(original);
  ASDomain const copyOfCopy(copy);
  auto const heap = std::make_unique<ASDomain>(original);
  EXPECT_EQ(copy.Alias(), AliasOf(copy).c_str());
  EXPECT_EQ(copyOfCopy.Alias(), AliasOf(copyOfCopy).c_str());
  EXPECT_EQ(heap->Alias(), AliasOf(*heap).c_str());
  EXPECT_EQ(original.Alias(), AliasOf(original).c_str());
}

TEST(Alias, OfAMovedRecordIsItsOwnAddress) {
  ASDomain original("items", "");
  ASDomain const moved(std::move(original));
  EXPECT_EQ(moved.Alias(), AliasOf(moved).c_str());
}

TEST(Alias, StaysWhenARecordIsAssigned) {
  ASDomain source("items", "");
  ASDomain empty;
  ASDomain& assigned = empty;
  assigned = source;
  EXPECT_EQ(empty.Alias(), AliasOf(empty).c_str());
  Orders one;
  Orders const two;
  static_cast<ASDomain&>(one) = two;
  EXPECT_EQ(one.Alias(), AliasOf(one).c_str());
  EXPECT_EQ(two.Alias(), AliasOf(two).c_str());
}

TEST(Alias, OfRecordsInAVectorFollowsThemWhenTheyMove) {
  std::vector<ASDomain> records;
  for (int i = 0; i < 20; ++i) records.emplace_back("items", "");
  for (ASDomain const& record : records) ASSERT_EQ(record.Alias(), AliasOf(record).c_str());
}

TEST(Alias, NamesTheRecordThatAColumnOfACopyBelongsTo) {
  Orders const original;
  ASDomain const copy(original);
  EXPECT_EQ(copy.front()->Query(), (AliasOf(copy) + ".id").c_str());
  EXPECT_EQ(original.front()->Query(), (AliasOf(original) + ".id").c_str());
}

TEST(Alias, IsTheSameInEveryText) {
  Orders const record;
  Str appended;
  record.AppendAlias(appended);
  Str query("FROM ");
  record.AppendQuery(query, "`", "`");
  EXPECT_EQ(appended, AliasOf(record).c_str());
  EXPECT_EQ(query, ("FROM `orders` " + AliasOf(record)).c_str());
  EXPECT_EQ(record.Query("", ""), ("orders " + AliasOf(record)).c_str());
}

TEST(Alias, StandsBehindATableBetweenQuotes) {
  ASDomain const record("shop.items", "");
  Str text;
  record.AppendQuery(text, "<", ">");
  EXPECT_EQ(text, ("<shop<.>items> " + AliasOf(record)).c_str());
}

}  // namespace
