#include "corvane/query/filter.h"

#include <gtest/gtest.h>

#include <list>
#include <memory>
#include <string>
#include <utility>

#include "tests/support/sql.h"

using corvane::test::Cities;
using corvane::test::Customers;
using corvane::test::Orders;
using corvane::test::Sql;

namespace {

using OwnedAggregate = std::unique_ptr<ASGroupAttribute>;
using Domains = std::list<ASDomain*>;

// Renders itself as a text of its own.
class Renamed : public ASFilter {
 public:
  Str Query() const override { return "TABLE x"; }
};

// Tells that it was deleted.
class Deleted : public ASFilter {
 public:
  explicit Deleted(bool& deleted) : deleted_(&deleted) {}
  ~Deleted() override { *deleted_ = true; }

 private:
  bool* deleted_;
};

class Filter : public testing::Test {
 protected:
  template <class Query>
  std::string Text(Query const& query) const {
    return Sql(query, {{&o, "o"}, {&c, "c"}, {&t, "t"}});
  }

  Orders o;
  Customers c;
  Cities t;
  OwnedAggregate const sum{o.totalColumn.Sum()};
  OwnedAggregate const count{c.idColumn.Count()};
  ASFilter f;
};

// ---- The parts of the statement ----

TEST_F(Filter, WithoutAnythingSelectsAllFromNothing) { EXPECT_EQ(f.Query(), "SELECT * FROM "); }

TEST_F(Filter, SelectsTheColumnsFromTheirTables) {
  f.Project() << o.idColumn << c.nameColumn;
  EXPECT_EQ(Text(f), "SELECT o.id, c.name FROM (orders o, customers c)");
}

TEST_F(Filter, WithoutColumnsSelectsAll) {
  f.Where(o.idColumn == 5);
  EXPECT_EQ(Text(f), "SELECT * FROM (orders o) WHERE o.id=5");
}

TEST_F(Filter, OfColumnsWithoutRecordHasAnEmptyFrom) {
  f.Project() << ASAttribute("1");
  EXPECT_EQ(f.Query(), "SELECT 1 FROM ");
}

TEST_F(Filter, ANegationAloneNamesNoTable) {
  f.Where(!(o.idColumn == 3));
  EXPECT_EQ(Text(f), "SELECT * FROM  WHERE  NOT (o.id=3) ");
}

TEST_F(Filter, ANegationBesideANamingConditionHasItsTable) {
  f.Where(o.idColumn.IsNotNull() && !(o.idColumn == 3));
  EXPECT_EQ(Text(f), "SELECT * FROM (orders o) WHERE (o.id IS NOT NULL) AND ( NOT (o.id=3) )");
}

TEST_F(Filter, WhereLeavesTheConditionAsItWas) {
  ASComparison const condition = ++o.customerColumn == c.idColumn && c.nameColumn == "x";
  f.Where(condition);
  EXPECT_EQ(Text(condition), "c.name='x'");
  EXPECT_EQ(condition.JoinConditions().size(), 1u);
  EXPECT_EQ(Text(f), "SELECT * FROM (customers c) LEFT JOIN orders o ON (o.customer_id=(c.id)) WHERE c.name='x'");
}

TEST_F(Filter, WhereTakesAConditionThatIsMoved) {
  ASComparison condition = ++o.customerColumn == c.idColumn && c.nameColumn == "x";
  f.Where(std::move(condition));
  EXPECT_EQ(Text(f), "SELECT * FROM (customers c) LEFT JOIN orders o ON (o.customer_id=(c.id)) WHERE c.name='x'");
}

TEST_F(Filter, WhereOfAMovedConditionWithoutTextKeepsTheOneBefore) {
  f.Where(c.nameColumn == "x");
  f.Where(++o.customerColumn == c.idColumn);
  EXPECT_EQ(Text(f), "SELECT * FROM (customers c) LEFT JOIN orders o ON (o.customer_id=(c.id)) WHERE c.name='x'");
}

TEST_F(Filter, DistinctProjectOpensTheSelectList) {
  f.DistinctProject() << o.idColumn;
  EXPECT_EQ(Text(f.Project().ProjectQuery()), "DISTINCT o.id");
}

TEST_F(Filter, DistinctProjectReturnsTheProjection) { EXPECT_EQ(&f.DistinctProject(), &f.Project()); }

TEST_F(Filter, EveryDistinctProjectAddsTheWord) {
  f.DistinctProject();
  f.DistinctProject();
  EXPECT_EQ(f.Query(), "SELECT DISTINCT DISTINCT  FROM ");
}

TEST_F(Filter, UsesTheKeywordsOfItsProjection) {
  f.Project() << t.idColumn;
  f.Project().setKW("`", "`");
  f.Where((++c.idColumn == t.idColumn) && (t.nameColumn == "x"));
  EXPECT_EQ(Text(f), "SELECT t.id FROM (`shop`.`cities` t) LEFT JOIN `customers` c ON (c.id=(t.id)) WHERE t.name='x'");
}

TEST_F(Filter, HasEveryPartInItsPlace) {
  f.Hint("INDEX(o)");
  f.DistinctProject() << o.customerColumn << *sum;
  f.Where((++c.idColumn == o.customerColumn) && (t.idColumn > 1));
  f.ConnectBy(o.idColumn == o.totalColumn, o.idColumn == 1);
  f.GroupBy() << o.noteColumn;
  f.Having(*sum > 10);
  EXPECT_EQ(Text(f),
            "SELECT /*+ INDEX(o) */DISTINCT o.customer_id, SUM(o.total) FROM (orders o, shop.cities t)"
            " LEFT JOIN customers c ON (c.id=(o.customer_id)) WHERE t.id>1 START WITH o.id=1"
            " CONNECT BY PRIOR o.id=(o.total) GROUP BY o.note  HAVING SUM(o.total)>10");
}

TEST_F(Filter, RendersTheSameAgain) {
  f.Project() << o.idColumn << *sum;
  f.Where(o.idColumn > 1);
  EXPECT_EQ(Text(f), "SELECT o.id, SUM(o.total) FROM (orders o) WHERE o.id>1 GROUP BY o.id");
  EXPECT_EQ(Text(f), "SELECT o.id, SUM(o.total) FROM (orders o) WHERE o.id>1 GROUP BY o.id");
}

// ---- Hint ----

TEST_F(Filter, TheHintStandsRightBeforeTheSelectList) {
  f.Project() << o.idColumn;
  f.Hint("x");
  EXPECT_EQ(Text(f), "SELECT /*+ x */o.id FROM (orders o)");
}

TEST_F(Filter, TheHintStandsRightBeforeTheStar) {
  f.Hint("x").Where(o.idColumn == 5);
  EXPECT_EQ(Text(f), "SELECT /*+ x */* FROM (orders o) WHERE o.id=5");
}

TEST_F(Filter, ASecondHintReplacesTheFirst) {
  f.Hint("x").Hint("y");
  EXPECT_EQ(f.Query(), "SELECT /*+ y */* FROM ");
}

TEST_F(Filter, AnEmptyHintTakesItAway) {
  f.Hint("x").Hint("");
  EXPECT_EQ(f.Query(), "SELECT * FROM ");
}

// ---- Where ----

TEST_F(Filter, WhereAndSetAreTheSame) {
  ASFilter other;
  f.Where(o.idColumn == c.idColumn);
  other.Set(o.idColumn == c.idColumn);
  EXPECT_EQ(Text(f), "SELECT * FROM (orders o, customers c) WHERE o.id=(c.id)");
  EXPECT_EQ(Text(other), "SELECT * FROM (orders o, customers c) WHERE o.id=(c.id)");
}

TEST_F(Filter, EveryStepReturnsTheFilter) {
  EXPECT_EQ(&f.Where(o.idColumn == 5), &f);
  EXPECT_EQ(&f.Set(o.idColumn == 5), &f);
  EXPECT_EQ(&f.Having(*sum > 1), &f);
  EXPECT_EQ(&f.ConnectBy(o.idColumn == 5, o.idColumn == 5), &f);
  EXPECT_EQ(&f.Hint("x"), &f);
}

TEST_F(Filter, WhereNamesTheRecordsBehindThoseOfTheColumnsOnce) {
  f.Project() << c.nameColumn;
  f.Where(o.customerColumn == c.idColumn && t.idColumn > 1);
  EXPECT_EQ(f.Project().Domains(), (Domains{&c, &o, &t}));
}

TEST_F(Filter, ColumnsStreamedAfterWhereNameNoRecordTwice) {
  f.Where(o.customerColumn == c.idColumn);
  f.Project() << c.nameColumn << t.nameColumn;
  EXPECT_EQ(Text(f), "SELECT c.name, t.name FROM (orders o, customers c, shop.cities t) WHERE o.customer_id=(c.id)");
}

TEST_F(Filter, WhereKeepsNoHoldOfTheCondition) {
  ASComparison condition = o.idColumn == 5;
  f.Where(condition);
  condition && (c.idColumn == 6);
  EXPECT_EQ(Text(f), "SELECT * FROM (orders o) WHERE o.id=5");
}

TEST_F(Filter, OuterJoinConditionMovesIntoTheOnClause) {
  f.Project() << o.idColumn;
  f.Where((++c.idColumn == o.customerColumn) && (o.totalColumn > 10));
  EXPECT_EQ(Text(f), "SELECT o.id FROM (orders o) LEFT JOIN customers c ON (c.id=(o.customer_id)) WHERE o.total>10");
}

TEST_F(Filter, AnOuterJoinAloneWritesNoWhere) {
  f.Project() << o.idColumn;
  f.Where(++c.idColumn == o.customerColumn);
  EXPECT_EQ(Text(f), "SELECT o.id FROM (orders o) LEFT JOIN customers c ON (c.id=(o.customer_id))");
}

TEST_F(Filter, AnOuterJoinAloneLeavesTheWhereBefore) {
  f.Where(o.totalColumn > 10);
  f.Where(++c.idColumn == o.customerColumn);
  EXPECT_EQ(Text(f), "SELECT * FROM (orders o) LEFT JOIN customers c ON (c.id=(o.customer_id)) WHERE o.total>10");
}

TEST_F(Filter, AnEmptyConditionLeavesTheWhereBefore) {
  f.Where(o.totalColumn > 10);
  f.Where(ASComparison("", &c, nullptr));
  EXPECT_EQ(Text(f), "SELECT * FROM (orders o, customers c) WHERE o.total>10");
}

TEST_F(Filter, SecondWhereReplacesTheFirst) {
  f.Where(o.idColumn == 5);
  f.Where(o.totalColumn > 10);
  EXPECT_EQ(Text(f), "SELECT * FROM (orders o) WHERE o.total>10");
}

TEST_F(Filter, SecondWhereKeepsTheRecordsOfTheFirst) {
  f.Where(o.idColumn == 5);
  f.Where(c.idColumn > 10);
  EXPECT_EQ(Text(f), "SELECT * FROM (orders o, customers c) WHERE c.id>10");
}

TEST_F(Filter, SecondWhereReplacesTheOuterJoins) {
  f.Project() << o.idColumn;
  f.Where(++c.idColumn == o.customerColumn);
  f.Where(++t.idColumn == o.totalColumn);
  EXPECT_EQ(Text(f), "SELECT o.id FROM (orders o) LEFT JOIN shop.cities t ON (t.id=(o.total))");
}

TEST_F(Filter, SecondWhereWithoutJoinLeavesTheOptionalTableAPlainOne) {
  f.Project() << o.idColumn << c.nameColumn;
  f.Where(++c.idColumn == o.customerColumn);
  f.Where(o.totalColumn > 10);
  EXPECT_EQ(Text(f), "SELECT o.id, c.name FROM (orders o, customers c) WHERE o.total>10");
}

TEST_F(Filter, AnEmptyConditionTakesTheOuterJoinsAway) {
  f.Project() << o.idColumn;
  f.Where((++c.idColumn == o.customerColumn) && (o.totalColumn > 10));
  f.Where(ASComparison("", nullptr, nullptr));
  EXPECT_EQ(Text(f), "SELECT o.id FROM (orders o) WHERE o.total>10");
}

// ---- GROUP BY ----

TEST_F(Filter, PlainColumnsAreNotGrouped) {
  f.Project() << o.idColumn << o.noteColumn;
  EXPECT_EQ(Text(f), "SELECT o.id, o.note FROM (orders o)");
}

TEST_F(Filter, AMixIsGroupedByItsPlainColumns) {
  f.Project() << o.idColumn << *sum << o.noteColumn;
  EXPECT_EQ(Text(f), "SELECT o.id, SUM(o.total), o.note FROM (orders o) GROUP BY o.id, o.note");
}

TEST_F(Filter, AMixThatBeginsWithAnAggregateIsGroupedToo) {
  f.Project() << *sum << o.idColumn;
  EXPECT_EQ(Text(f), "SELECT SUM(o.total), o.id FROM (orders o) GROUP BY o.id");
}

TEST_F(Filter, AggregatesAloneAreNotGrouped) {
  f.Project() << *sum << *count;
  EXPECT_EQ(Text(f), "SELECT SUM(o.total), COUNT(c.id) FROM (orders o, customers c)");
}

TEST_F(Filter, DistinctIsGroupedByAllItsColumns) {
  f.DistinctProject() << o.idColumn << o.noteColumn;
  EXPECT_EQ(Text(f), "SELECT DISTINCT o.id, o.note FROM (orders o) GROUP BY o.id, o.note");
}

TEST_F(Filter, DistinctAggregatesAreNotGrouped) {
  f.DistinctProject() << *sum;
  EXPECT_EQ(Text(f), "SELECT DISTINCT SUM(o.total) FROM (orders o)");
}

TEST_F(Filter, GroupByIsWrittenForPlainColumns) {
  f.Project() << o.idColumn;
  f.GroupBy() << o.noteColumn << o.totalColumn;
  EXPECT_EQ(Text(f), "SELECT o.id FROM (orders o) GROUP BY o.note, o.total");
}

TEST_F(Filter, GroupByReplacesTheDerivedOne) {
  f.Project() << o.idColumn << *sum;
  f.GroupBy() << o.noteColumn;
  EXPECT_EQ(Text(f), "SELECT o.id, SUM(o.total) FROM (orders o) GROUP BY o.note");
}

TEST_F(Filter, GroupByIsWrittenForAggregatesAlone) {
  f.Project() << *sum;
  f.GroupBy() << o.noteColumn;
  EXPECT_EQ(Text(f), "SELECT SUM(o.total) FROM (orders o) GROUP BY o.note");
}

TEST_F(Filter, GroupByIsWrittenForAllColumns) {
  f.Where(o.idColumn > 1);
  f.GroupBy() << o.noteColumn;
  EXPECT_EQ(Text(f), "SELECT * FROM (orders o) WHERE o.id>1 GROUP BY o.note");
}

TEST_F(Filter, GroupByNamesNoTables) {
  f.Project() << *sum;
  f.GroupBy() << c.nameColumn;
  EXPECT_EQ(Text(f), "SELECT SUM(o.total) FROM (orders o) GROUP BY c.name");
}

TEST_F(Filter, GroupByOfAggregatesAloneLeavesTheDerivedOne) {
  f.Project() << o.idColumn << *sum;
  f.GroupBy() << *count;
  EXPECT_EQ(Text(f), "SELECT o.id, SUM(o.total) FROM (orders o) GROUP BY o.id");
}

TEST_F(Filter, GroupByTakesDerivedColumns) {
  f.Project() << *sum;
  f.GroupBy() << o.noteColumn.Upper();
  EXPECT_EQ(Text(f), "SELECT SUM(o.total) FROM (orders o) GROUP BY  UPPER(o.note)");
}

// ---- HAVING ----

TEST_F(Filter, HavingStandsBehindTwoBlanks) {
  f.Project() << o.noteColumn << *sum;
  f.Having(*sum > 3);
  EXPECT_EQ(Text(f), "SELECT o.note, SUM(o.total) FROM (orders o) GROUP BY o.note  HAVING SUM(o.total)>3");
}

TEST_F(Filter, HavingGroupsPlainColumns) {
  f.Project() << o.noteColumn;
  f.Having(*sum > 3);
  EXPECT_EQ(Text(f), "SELECT o.note FROM (orders o) GROUP BY o.note  HAVING SUM(o.total)>3");
}

TEST_F(Filter, HavingOverAggregatesAloneIsNotGrouped) {
  f.Project() << *sum;
  f.Having(*sum > 3);
  EXPECT_EQ(Text(f), "SELECT SUM(o.total) FROM (orders o)  HAVING SUM(o.total)>3");
}

TEST_F(Filter, HavingWithoutColumnsIsNotGrouped) {
  f.Having(*sum > 3);
  EXPECT_EQ(Text(f), "SELECT * FROM (orders o)  HAVING SUM(o.total)>3");
}

TEST_F(Filter, HavingFollowsWhereAndGroupBy) {
  f.Project() << *sum;
  f.GroupBy() << o.noteColumn;
  f.Where(o.idColumn > 1);
  f.Having(*sum > 3);
  EXPECT_EQ(Text(f), "SELECT SUM(o.total) FROM (orders o) WHERE o.id>1 GROUP BY o.note  HAVING SUM(o.total)>3");
}

TEST_F(Filter, HavingNamesItsRecordsBehindTheOthersOnce) {
  f.Project() << c.nameColumn;
  f.Having(*sum > *count && t.idColumn.Expression("MAX(x)") > 1);
  EXPECT_EQ(f.Project().Domains(), (Domains{&c, &o, &t}));
}

TEST_F(Filter, TwoHavingsGiveTwoKeywords) {
  f.Having(*sum > 3);
  f.Having(*count < 9);
  EXPECT_EQ(Text(f), "SELECT * FROM (orders o, customers c)  HAVING SUM(o.total)>3 HAVING COUNT(c.id)<9");
}

// ---- CONNECT BY ----

TEST_F(Filter, ConnectByFollowsTheStart) {
  f.Where(o.totalColumn > 1);
  f.ConnectBy(o.idColumn == o.customerColumn, o.idColumn == 1);
  EXPECT_EQ(Text(f),
            "SELECT * FROM (orders o) WHERE o.total>1 START WITH o.id=1 CONNECT BY PRIOR o.id=(o.customer_id)");
}

TEST_F(Filter, ConnectByNamesTheRecordsOfTheStartFirst) {
  f.Project() << t.idColumn;
  f.ConnectBy(o.idColumn == t.idColumn, c.idColumn == 1);
  EXPECT_EQ(f.Project().Domains(), (Domains{&t, &c, &o}));
}

TEST_F(Filter, ConnectByLeavesOutAStartThatNamesNoRecord) {
  f.ConnectBy(o.idColumn == o.customerColumn, !(c.idColumn == 1));
  EXPECT_EQ(Text(f), "SELECT * FROM (orders o) CONNECT BY PRIOR o.id=(o.customer_id)");
}

TEST_F(Filter, ConnectByTakesNoOuterJoins) {
  f.Project() << o.idColumn;
  f.ConnectBy((++c.idColumn == o.customerColumn) && (o.idColumn == 1),
              (++t.idColumn == o.idColumn) && (o.idColumn == 2));
  EXPECT_EQ(Text(f), "SELECT o.id FROM (orders o) START WITH o.id=2 CONNECT BY PRIOR o.id=1");
}

TEST_F(Filter, ConnectByKeepsTheOuterJoinsOfTheCondition) {
  f.Project() << o.idColumn;
  f.Where(++c.idColumn == o.customerColumn);
  f.ConnectBy(o.idColumn == 1, o.idColumn == 2);
  EXPECT_EQ(Text(f),
            "SELECT o.id FROM (orders o) LEFT JOIN customers c ON (c.id=(o.customer_id))"
            " START WITH o.id=2 CONNECT BY PRIOR o.id=1");
}

TEST_F(Filter, WhereDropsAnEarlierConnectBy) {
  f.ConnectBy(o.idColumn == o.customerColumn, o.idColumn == 1);
  f.Where(o.totalColumn > 1);
  EXPECT_EQ(Text(f), "SELECT * FROM (orders o) WHERE o.total>1");
}

TEST_F(Filter, AnEmptyConditionKeepsAnEarlierConnectBy) {
  f.ConnectBy(o.idColumn == o.customerColumn, o.idColumn == 1);
  f.Where(ASComparison("", nullptr, nullptr));
  EXPECT_EQ(Text(f), "SELECT * FROM (orders o) START WITH o.id=1 CONNECT BY PRIOR o.id=(o.customer_id)");
}

// ---- As part of another query ----

TEST_F(Filter, BecomesAConditionOfExistence) {
  f.Where(o.idColumn == 5);
  EXPECT_EQ(Text(f.Exists()), " EXISTS (SELECT * FROM (orders o) WHERE o.id=5)");
  EXPECT_EQ(Text(f.NotExists()), " NOT EXISTS (SELECT * FROM (orders o) WHERE o.id=5)");
}

TEST_F(Filter, ExistenceNamesNoRecordAndJoinsNone) {
  f.Where((++c.idColumn == o.customerColumn) && (o.idColumn == 5));
  for (ASComparison const& condition : {f.Exists(), f.NotExists()}) {
    EXPECT_EQ(condition.Domains(), Domains{});
    EXPECT_TRUE(condition.JoinPairs().empty());
    EXPECT_TRUE(condition.JoinConditions().empty());
  }
}

TEST_F(Filter, BecomesAColumn) {
  f.Project() << o.idColumn;
  EXPECT_EQ(Text(f.Select()), "SELECT o.id FROM (orders o)");
  EXPECT_EQ(Text(f.Any()), " ANY (SELECT o.id FROM (orders o))");
}

TEST_F(Filter, AsAColumnHasNeitherRecordNorValue) {
  f.Project() << o.idColumn;
  for (ASAttribute const& column : {f.Select(), f.Any()}) {
    EXPECT_EQ(column.Domain(), nullptr);
    EXPECT_EQ(column.Data(), nullptr);
  }
}

TEST_F(Filter, StandsInConditionsOfAnotherQuery) {
  f.Project() << c.idColumn;
  struct Row {
    ASComparison condition;
    char const* text;
  };
  Row const rows[] = {
      {o.idColumn.In(f.Select()), "SELECT * FROM (orders o) WHERE o.id IN (SELECT c.id FROM (customers c))"},
      {o.idColumn.NotIn(f.Select()), "SELECT * FROM (orders o) WHERE o.id NOT IN (SELECT c.id FROM (customers c))"},
      {o.idColumn == f.Select(), "SELECT * FROM (orders o) WHERE o.id=(SELECT c.id FROM (customers c))"},
      {o.idColumn != f.Any(), "SELECT * FROM (orders o) WHERE o.id!= ANY (SELECT c.id FROM (customers c))"},
      {o.idColumn > f.Any(), "SELECT * FROM (orders o) WHERE o.id> ANY (SELECT c.id FROM (customers c))"},
  };
  for (Row const& row : rows) {
    ASFilter outer;
    outer.Where(row.condition);
    EXPECT_EQ(Text(outer), row.text);
  }
}

TEST_F(Filter, IsCorrelatedByAConditionThatNamesTheInnerRecordAlone) {
  f.Where(c.idColumn.In(o.customerColumn));
  ASFilter outer;
  outer.Project() << o.idColumn;
  outer.Where(f.Exists());
  EXPECT_EQ(Text(outer),
            "SELECT o.id FROM (orders o) WHERE  EXISTS (SELECT * FROM (customers c) WHERE c.id IN (o.customer_id))");
}

TEST_F(Filter, OfADerivedClassIsRenderedByItsOwnQuery) {
  Renamed const derived;
  EXPECT_EQ(derived.Exists().Query(), " EXISTS (TABLE x)");
  EXPECT_EQ(derived.NotExists().Query(), " NOT EXISTS (TABLE x)");
  EXPECT_EQ(derived.Select().Query(), "TABLE x");
  EXPECT_EQ(derived.Any().Query(), " ANY (TABLE x)");
  ASFilter const& base = derived;
  EXPECT_EQ(base.Query(), "TABLE x");
}

TEST_F(Filter, IsDestroyedThroughItsBase) {
  bool deleted = false;
  std::unique_ptr<ASFilter>(std::make_unique<Deleted>(deleted)).reset();
  EXPECT_TRUE(deleted);
}

// ---- Access, copy, assignment ----

TEST_F(Filter, IsReadWithoutBeingChanged) {
  f.Project() << o.idColumn;
  f.GroupBy() << o.noteColumn;
  ASFilter const& same = f;
  EXPECT_EQ(&same.Project(), &f.Project());
  EXPECT_EQ(&same.GroupBy(), &f.GroupBy());
  EXPECT_NE(&same.Project(), &same.GroupBy());
}

TEST_F(Filter, CopyHasEverything) {
  f.Hint("x");
  f.Project() << o.idColumn;
  f.Project().setKW("`", "`");
  f.GroupBy() << o.noteColumn;
  f.Where((++c.idColumn == o.customerColumn) && (o.totalColumn > 10));
  f.Having(*sum > 3);
  ASFilter const copy(f);
  EXPECT_EQ(Text(copy),
            "SELECT /*+ x */o.id FROM (`orders` o) LEFT JOIN `customers` c ON (c.id=(o.customer_id))"
            " WHERE o.total>10 GROUP BY o.note  HAVING SUM(o.total)>3");
}

TEST_F(Filter, CopyStandsOnItsOwn) {
  f.Project() << o.idColumn;
  ASFilter copy(f);
  copy.Where(c.idColumn == 5).Having(*sum > 3).Hint("x");
  copy.Project() << t.idColumn;
  copy.GroupBy() << o.noteColumn;
  EXPECT_EQ(Text(f), "SELECT o.id FROM (orders o)");
}

TEST_F(Filter, CopyKeepsTemporaryColumns) {
  auto original = std::make_unique<ASFilter>();
  original->Project() << o.noteColumn.Upper();
  ASFilter const copy(*original);
  original.reset();
  EXPECT_EQ(Text(copy.Project().Items().front()->Query()), " UPPER(o.note)");
}

TEST_F(Filter, AssignmentTakesProjectionWhereAndHaving) {
  ASFilter other;
  other.Project() << o.idColumn;
  other.Where(o.totalColumn > 10);
  other.Having(*sum > 3);
  f.Project() << t.idColumn;
  f.Where(c.idColumn == 5);
  f.Having(*count < 9);
  f = other;
  EXPECT_EQ(Text(f), "SELECT o.id FROM (orders o) WHERE o.total>10 GROUP BY o.id  HAVING SUM(o.total)>3");
}

TEST_F(Filter, AssignmentTakesAwayWhatTheSourceHasNot) {
  f.Project() << t.idColumn;
  f.Where(c.idColumn == 5);
  f.Having(*count < 9);
  f = ASFilter();
  EXPECT_EQ(f.Query(), "SELECT * FROM ");
}

TEST_F(Filter, AssignmentReturnsTheTarget) { EXPECT_EQ(&(f = ASFilter()), &f); }

TEST_F(Filter, AssignmentCopiesNeitherHintNorGroupBy) {
  ASFilter other;
  other.Hint("x");
  other.Project() << o.idColumn;
  other.GroupBy() << o.noteColumn;
  f = other;
  EXPECT_EQ(Text(f), "SELECT o.id FROM (orders o)");
}

TEST_F(Filter, AssignmentLeavesTheTargetItsHintAndGroupBy) {
  ASFilter other;
  other.Project() << o.idColumn;
  f.Hint("x");
  f.GroupBy() << o.noteColumn;
  f = other;
  EXPECT_EQ(Text(f), "SELECT /*+ x */o.id FROM (orders o) GROUP BY o.note");
}

TEST_F(Filter, AssignmentCopiesNoOuterJoins) {
  ASFilter other;
  other.Project() << o.idColumn << c.nameColumn;
  other.Where((++c.idColumn == o.customerColumn) && (o.totalColumn > 10));
  f = other;
  EXPECT_EQ(Text(f), "SELECT o.id, c.name FROM (orders o, customers c) WHERE o.total>10");
}

TEST_F(Filter, AssignmentLeavesTheTargetItsOuterJoins) {
  ASFilter other;
  other.Project() << o.idColumn << c.nameColumn;
  f.Where(++c.idColumn == o.customerColumn);
  f = other;
  EXPECT_EQ(Text(f), "SELECT o.id, c.name FROM (orders o) LEFT JOIN customers c ON (c.id=(o.customer_id))");
}

TEST_F(Filter, AssigningItToItselfChangesNothing) {
  f.Hint("x");
  f.Project() << o.idColumn << o.noteColumn.Upper();
  f.GroupBy() << o.noteColumn;
  f.Where((++c.idColumn == o.customerColumn) && (o.totalColumn > 10));
  f.Having(*sum > 3);
  ASFilter const& same = f;
  f = same;
  EXPECT_EQ(Text(f),
            "SELECT /*+ x */o.id,  UPPER(o.note) FROM (orders o) LEFT JOIN customers c ON (c.id=(o.customer_id))"
            " WHERE o.total>10 GROUP BY o.note  HAVING SUM(o.total)>3");
  EXPECT_EQ(Text(f.Project().Items().back()->Query()), " UPPER(o.note)");
}

}  // namespace
