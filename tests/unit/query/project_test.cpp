#include "corvane/query/project.h"

#include <gtest/gtest.h>

#include <list>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

#include "tests/support/sql.h"

using corvane::test::Cities;
using corvane::test::Customers;
using corvane::test::Orders;
using corvane::test::Sql;

namespace {

using OwnedAggregate = std::unique_ptr<ASGroupAttribute>;
using Domains = std::list<ASDomain*>;
using Items = std::list<ASSimpleAttribute*>;
using Positions = std::list<int>;

ASGroupAttribute const* const kNoAggregate = nullptr;

struct Files : ASDomain {
  ASInt id;
  ASRealBlob body{0}, preview{0};
  ASBlob note{16};
  ASAttribute idColumn{"id"};
  ASAttribute bodyColumn{"body"};
  ASAttribute previewColumn{"preview"};
  ASAttribute noteColumn{"note"};

  Files() : ASDomain("files", "Files") {
    Add(idColumn, id).Add(bodyColumn, body).Add(previewColumn, preview).Add(noteColumn, note);
  }
  Files(Files const&) = delete;
  Files& operator=(Files const&) = delete;
};

class Project : public testing::Test {
 protected:
  std::string Text(Str const& text) const { return Sql(text, {{&o, "o"}, {&c, "c"}, {&t, "t"}, {&files, "f"}}); }

  // A projection gets its outer joins from the condition of a filter.
  std::string From(ASComparison const& condition) {
    filter.Where(condition);
    return Text(filter.Project().JoinQuery());
  }
  std::string FromForDelete(ASComparison const& condition) {
    filter.Where(condition);
    return Text(filter.Project().JoinForDeleteQuery());
  }

  Orders o;
  Customers c;
  Cities t;
  Files files;
  OwnedAggregate const sum{o.totalColumn.Sum()};
  OwnedAggregate const count{c.idColumn.Count()};
  ASProject p;
  ASFilter filter;
  ASProject& joined = filter.Project();
};

// ---- Columns ----

TEST_F(Project, StartsEmpty) {
  EXPECT_EQ(p.ProjectQuery(), "");
  EXPECT_EQ(p.GroupQuery(), "");
  EXPECT_EQ(p.JoinQuery(), "");
  EXPECT_EQ(p.JoinForDeleteQuery(), "");
  EXPECT_EQ(p.ProjectForLimitQuery(), "");
  EXPECT_EQ(p.ProjectForLimitInternalQuery(), "");
  EXPECT_EQ(p.Items(), Items{});
  EXPECT_EQ(p.Domains(), Domains{});
  EXPECT_EQ(p.BinaryPositions(), Positions{});
}

TEST_F(Project, ListsPlainColumnsToSelectAndToGroup) {
  p << o.idColumn << c.nameColumn << o.noteColumn;
  EXPECT_EQ(Text(p.ProjectQuery()), "o.id, c.name, o.note");
  EXPECT_EQ(Text(p.GroupQuery()), "o.id, c.name, o.note");
}

TEST_F(Project, ListsAggregatesToSelectAlone) {
  p << *sum << count.get();
  EXPECT_EQ(Text(p.ProjectQuery()), "SUM(o.total), COUNT(c.id)");
  EXPECT_EQ(p.GroupQuery(), "");
}

TEST_F(Project, SeparatesMixedColumnsInBothLists) {
  p << *sum << o.idColumn << count.get() << o.noteColumn;
  EXPECT_EQ(Text(p.ProjectQuery()), "SUM(o.total), o.id, COUNT(c.id), o.note");
  EXPECT_EQ(Text(p.GroupQuery()), "o.id, o.note");
}

TEST_F(Project, ListsAColumnAsOftenAsItIsStreamed) {
  p << o.idColumn << o.idColumn;
  EXPECT_EQ(Text(p.ProjectQuery()), "o.id, o.id");
  EXPECT_EQ(p.Items(), (Items{&o.idColumn, &o.idColumn}));
}

TEST_F(Project, ListsTheColumnsThemselvesInOrder) {
  p << o.idColumn << *sum << c.nameColumn << count.get();
  EXPECT_EQ(p.Items(), (Items{&o.idColumn, sum.get(), &c.nameColumn, count.get()}));
}

TEST_F(Project, StreamingReturnsTheProjection) {
  EXPECT_EQ(&(p << o.idColumn), &p);
  EXPECT_EQ(&(p << *sum), &p);
  EXPECT_EQ(&(p << sum.get()), &p);
  EXPECT_EQ(&(p << o.noteColumn.Upper()), &p);
  EXPECT_EQ(&(p << o.noteColumn.Expression("x")), &p);
}

TEST_F(Project, IgnoresANullPointer) {
  EXPECT_EQ(&(p << o.idColumn << kNoAggregate), &p);
  EXPECT_EQ(Text(p.ProjectQuery()), "o.id");
  EXPECT_EQ(p.Items(), (Items{&o.idColumn}));
  EXPECT_EQ(p.Domains(), (Domains{&o}));
}

TEST_F(Project, TakesNoPlainText) {
  EXPECT_FALSE((std::is_convertible_v<Str, ASAttribute>));
  EXPECT_FALSE((std::is_convertible_v<char const*, ASAttribute>));
}

TEST_F(Project, KeepsTheTextsAsTheyWereWhenStreamed) {
  ASAttribute column("a");
  p << column;
  column = ASAttribute("b");
  EXPECT_EQ(p.ProjectQuery(), "a");
  EXPECT_EQ(p.GroupQuery(), "a");
}

TEST_F(Project, OffersTheSelectListForChange) {
  p << o.idColumn;
  p.ProjectQueryForUpdate() << ", 1";
  EXPECT_EQ(Text(p.ProjectQuery()), "o.id, 1");
  EXPECT_EQ(Text(p.GroupQuery()), "o.id");
}

// ---- Temporary columns ----

TEST_F(Project, KeepsACopyOfATemporaryColumn) {
  auto column = std::make_unique<ASAttribute>(o.noteColumn);
  p << std::move(*column);
  EXPECT_NE(p.Items().front(), column.get());
  *column = ASAttribute("overwritten");
  column.reset();
  EXPECT_EQ(Text(p.Items().front()->Query()), "o.note");
  EXPECT_EQ(p.Items().front()->Domain(), &o);
  EXPECT_EQ(p.Items().front()->Data(), &o.note);
  EXPECT_EQ(Text(p.GroupQuery()), "o.note");
}

TEST_F(Project, KeepsACopyOfATemporaryAggregate) {
  OwnedAggregate aggregate(o.totalColumn.Max());
  p << std::move(*aggregate);
  EXPECT_NE(p.Items().front(), aggregate.get());
  *aggregate = c.nameColumn.Expression("overwritten");
  aggregate.reset();
  EXPECT_EQ(Text(p.Items().front()->Query()), "MAX(o.total)");
  EXPECT_EQ(p.Items().front()->Domain(), &o);
  EXPECT_EQ(p.Items().front()->Data(), &o.total);
  EXPECT_EQ(p.GroupQuery(), "");
}

TEST_F(Project, KeepsACopyOfAConstTemporaryColumn) {
  auto column = std::make_unique<ASAttribute const>(o.noteColumn);
  p << std::move(*column);
  EXPECT_NE(p.Items().front(), column.get());
  column.reset();
  EXPECT_EQ(Text(p.Items().front()->Query()), "o.note");
}

TEST_F(Project, KeepsACopyOfAConstTemporaryAggregate) {
  auto aggregate = std::make_unique<ASGroupAttribute const>("MAX(x)", &o, &o.total);
  p << std::move(*aggregate);
  EXPECT_NE(p.Items().front(), aggregate.get());
  aggregate.reset();
  EXPECT_EQ(p.Items().front()->Query(), "MAX(x)");
}

TEST_F(Project, KeepsEveryTemporary) {
  ASFilter subQuery;
  subQuery.Project() << c.idColumn;
  p << o.noteColumn.Upper() << o.idColumn << subQuery.Select() << o.totalColumn.Expression("SUM(x)") << ++c.idColumn;
  EXPECT_EQ(Text(p.ProjectForLimitInternalQuery()),
            " UPPER(o.note) AS Q1, o.id AS Q2, SELECT c.id FROM (customers c) AS Q3, SUM(x) AS Q4, c.id AS Q5");
  EXPECT_EQ(p.Domains(), (Domains{nullptr, &o, &c}));
}

TEST_F(Project, SharesKeptColumnsWithItsCopies) {
  auto original = std::make_unique<ASProject>();
  *original << o.noteColumn.Upper() << o.totalColumn.Expression("SUM(x)");
  ASProject const copy(*original);
  EXPECT_EQ(copy.Items(), original->Items());
  original.reset();
  EXPECT_EQ(Text(copy.ProjectForLimitInternalQuery()), " UPPER(o.note) AS Q1, SUM(x) AS Q2");
}

TEST_F(Project, SharesKeptColumnsWithWhatItIsAssignedTo) {
  auto original = std::make_unique<ASProject>();
  *original << o.noteColumn.Upper() << o.totalColumn.Expression("SUM(x)");
  p << c.nameColumn.Lower();
  p = *original;
  EXPECT_EQ(p.Items(), original->Items());
  original.reset();
  EXPECT_EQ(Text(p.ProjectForLimitInternalQuery()), " UPPER(o.note) AS Q1, SUM(x) AS Q2");
}

TEST_F(Project, ClearLeavesKeptColumnsToTheCopies) {
  p << o.noteColumn.Upper();
  ASProject const copy(p);
  p.Clear();
  EXPECT_EQ(Text(copy.ProjectForLimitInternalQuery()), " UPPER(o.note) AS Q1");
}

// ---- Distinct ----

TEST_F(Project, DistinctOpensTheSelectListWithoutAComma) {
  p.Distinct();
  p << o.idColumn << o.noteColumn;
  EXPECT_EQ(Text(p.ProjectQuery()), "DISTINCT o.id, o.note");
  EXPECT_EQ(Text(p.GroupQuery()), "o.id, o.note");
}

TEST_F(Project, DistinctOpensAListOfAggregatesWithoutAComma) {
  p.Distinct();
  p << *sum << count.get();
  EXPECT_EQ(Text(p.ProjectQuery()), "DISTINCT SUM(o.total), COUNT(c.id)");
}

TEST_F(Project, DistinctTwiceIsNoLongerTakenForTheOpening) {
  p.Distinct();
  p.Distinct();
  p << o.idColumn;
  EXPECT_EQ(Text(p.ProjectQuery()), "DISTINCT DISTINCT , o.id");
}

TEST_F(Project, AColumnCalledDistinctIsAPlainColumn) {
  ASAttribute const distinct("DISTINCT ");
  p << distinct << o.idColumn;
  EXPECT_EQ(Text(p.ProjectQuery()), "DISTINCT o.id");
  EXPECT_EQ(Text(p.GroupQuery()), "DISTINCT , o.id");
}

TEST_F(Project, WhatIsWrittenThroughAnOldReferenceIsNotGroupedBy) {
  Str& list = p.ProjectQueryForUpdate();
  p.Clear();
  list << "NOW(), ";
  p << o.idColumn;
  EXPECT_EQ(Text(p.GroupQuery()), "o.id");
  ASProject plain;
  plain << o.noteColumn;
  p = plain;
  list << ", NOW()";
  p << o.idColumn;
  EXPECT_EQ(Text(p.ProjectQuery()), "o.note, NOW(), o.id");
  EXPECT_EQ(Text(p.GroupQuery()), "o.note, o.id");
}

TEST_F(Project, PlainColumnsAreGroupedByWithoutWhatWasWrittenIntoTheSelectList) {
  p << o.idColumn;
  p.ProjectQueryForUpdate() << ", NOW()";
  p << o.noteColumn;
  EXPECT_EQ(Text(p.ProjectQuery()), "o.id, NOW(), o.note");
  EXPECT_EQ(Text(p.GroupQuery()), "o.id, o.note");
  p.Clear();
  p << o.noteColumn;
  EXPECT_EQ(Text(p.GroupQuery()), "o.note");
}

TEST_F(Project, DistinctAfterAColumnIsAppendedAllTheSame) {
  p << o.idColumn;
  p.Distinct();
  EXPECT_EQ(Text(p.ProjectQuery()), "o.idDISTINCT ");
  p << o.noteColumn;
  EXPECT_EQ(Text(p.ProjectQuery()), "o.idDISTINCT , o.note");
}

TEST_F(Project, DistinctAloneIsNoColumn) {
  p.Distinct();
  EXPECT_EQ(p.ProjectQuery(), "DISTINCT ");
  EXPECT_EQ(p.Items(), Items{});
}

// ---- Records ----

TEST_F(Project, NamesEachRecordOnceInOrderOfFirstAppearance) {
  p << c.nameColumn << *sum << o.idColumn << c.idColumn << count.get() << t.idColumn;
  EXPECT_EQ(p.Domains(), (Domains{&c, &o, &t}));
}

TEST_F(Project, NamesTheRecordsOfAggregates) {
  p << *sum << count.get() << t.nameColumn.Expression("MAX(x)");
  EXPECT_EQ(p.Domains(), (Domains{&o, &c, &t}));
}

TEST_F(Project, NamesANullRecordOnceForColumnsWithoutOne) {
  p << o.noteColumn.Upper() << o.idColumn << o.noteColumn.Lower();
  EXPECT_EQ(p.Domains(), (Domains{nullptr, &o}));
}

TEST_F(Project, LeavesTheNullRecordOutOfTheTables) {
  p << o.noteColumn.Upper() << o.idColumn;
  EXPECT_EQ(Text(p.JoinQuery()), "(orders o)");
  EXPECT_EQ(Text(p.JoinForDeleteQuery()), "orders o");
}

TEST_F(Project, OfColumnsWithoutRecordHasNoTables) {
  p << o.noteColumn.Upper();
  EXPECT_EQ(p.JoinQuery(), "");
  EXPECT_EQ(p.JoinForDeleteQuery(), "");
}

// ---- Binary positions ----

TEST_F(Project, BinaryPositionsCountEveryColumnBefore) {
  p << files.bodyColumn << *sum << files.idColumn << count.get() << files.previewColumn;
  EXPECT_EQ(p.BinaryPositions(), (Positions{0, 4}));
}

TEST_F(Project, BinaryPositionsAreOfLargeBinaryValuesAlone) {
  p << files.noteColumn << files.idColumn << o.noteColumn;
  EXPECT_EQ(p.BinaryPositions(), Positions{});
}

TEST_F(Project, BinaryPositionsLeaveAggregatesOut) {
  OwnedAggregate const highest(files.bodyColumn.Max());
  p << *highest << highest.get() << files.bodyColumn.Expression("MIN(body)");
  EXPECT_EQ(p.BinaryPositions(), Positions{});
}

TEST_F(Project, BinaryPositionsLeaveColumnsWithoutValueOut) {
  p << files.bodyColumn.Upper() << ASAttribute("body") << files.bodyColumn;
  EXPECT_EQ(p.BinaryPositions(), (Positions{2}));
}

TEST_F(Project, BinaryPositionsHoldTemporaryColumns) {
  p << files.idColumn << ++files.bodyColumn;
  EXPECT_EQ(p.BinaryPositions(), (Positions{1}));
}

// ---- Clear, copy, assignment ----

TEST_F(Project, ClearEmptiesTextsColumnsAndRecords) {
  p.Distinct();
  p << o.idColumn << c.nameColumn << *sum << o.noteColumn.Upper();
  p.Clear();
  EXPECT_EQ(p.ProjectQuery(), "");
  EXPECT_EQ(p.GroupQuery(), "");
  EXPECT_EQ(p.Items(), Items{});
  EXPECT_EQ(p.Domains(), Domains{});
  EXPECT_EQ(p.JoinQuery(), "");
}

TEST_F(Project, ClearKeepsPositionsJoinsAndKeywords) {
  joined << files.idColumn << files.bodyColumn;
  joined.setKW("`", "'");
  filter.Where(++c.idColumn == o.customerColumn);
  joined.Clear();
  EXPECT_EQ(joined.BinaryPositions(), (Positions{1}));
  EXPECT_EQ(Text(joined.JoinQuery()), " LEFT JOIN `customers' c ON (c.id=(o.customer_id))");
}

TEST_F(Project, IsFilledAnewAfterClear) {
  p << o.idColumn;
  p.Clear();
  p << c.nameColumn;
  EXPECT_EQ(Text(p.ProjectQuery()), "c.name");
  EXPECT_EQ(Text(p.GroupQuery()), "c.name");
  EXPECT_EQ(Text(p.JoinQuery()), "(customers c)");
}

TEST_F(Project, CopyHasEverything) {
  joined << files.bodyColumn << *sum << c.nameColumn;
  joined.setKW("`", "'");
  filter.Where(++c.idColumn == o.customerColumn);
  ASProject const copy(joined);
  EXPECT_EQ(Text(copy.ProjectQuery()), "f.body, SUM(o.total), c.name");
  EXPECT_EQ(Text(copy.GroupQuery()), "f.body, c.name");
  EXPECT_EQ(copy.Items(), (Items{&files.bodyColumn, sum.get(), &c.nameColumn}));
  EXPECT_EQ(copy.Domains(), (Domains{&files, &o, &c}));
  EXPECT_EQ(copy.BinaryPositions(), (Positions{0}));
  EXPECT_EQ(Text(copy.JoinQuery()), "(`files' f, `orders' o) LEFT JOIN `customers' c ON (c.id=(o.customer_id))");
}

TEST_F(Project, CopyStandsOnItsOwn) {
  p << o.idColumn;
  ASProject copy(p);
  copy << c.nameColumn;
  EXPECT_EQ(Text(p.ProjectQuery()), "o.id");
  EXPECT_EQ(p.Items(), (Items{&o.idColumn}));
  EXPECT_EQ(p.Domains(), (Domains{&o}));
}

TEST_F(Project, AssignmentReplacesTextsColumnsAndRecords) {
  p << t.idColumn << count.get();
  ASProject other;
  other.Distinct();
  other << o.idColumn << *sum << o.noteColumn;
  p = other;
  EXPECT_EQ(Text(p.ProjectQuery()), "DISTINCT o.id, SUM(o.total), o.note");
  EXPECT_EQ(Text(p.GroupQuery()), "o.id, o.note");
  EXPECT_EQ(p.Items(), (Items{&o.idColumn, sum.get(), &o.noteColumn}));
  EXPECT_EQ(p.Domains(), (Domains{&o}));
}

TEST_F(Project, AssignmentReturnsTheTarget) {
  ASProject const other;
  EXPECT_EQ(&(p = other), &p);
}

TEST_F(Project, AssignmentTakesNoPositionsJoinsAndKeywords) {
  joined << files.bodyColumn << c.nameColumn;
  joined.setKW("`", "'");
  filter.Where(++c.idColumn == o.customerColumn);
  p = joined;
  EXPECT_EQ(p.BinaryPositions(), Positions{});
  EXPECT_EQ(Text(p.JoinQuery()), "(files f, customers c)");
}

TEST_F(Project, AssignmentLeavesTheTargetItsPositionsJoinsAndKeywords) {
  joined << files.bodyColumn;
  joined.setKW("`", "'");
  filter.Where(++c.idColumn == o.customerColumn);
  p << o.idColumn << c.nameColumn;
  joined = p;
  EXPECT_EQ(joined.BinaryPositions(), (Positions{0}));
  EXPECT_EQ(Text(joined.JoinQuery()), "(`orders' o) LEFT JOIN `customers' c ON (c.id=(o.customer_id))");
}

TEST_F(Project, AssigningItToItselfChangesNothing) {
  p << o.noteColumn.Upper() << *sum;
  ASProject const& same = p;
  p = same;
  EXPECT_EQ(Text(p.ProjectForLimitInternalQuery()), " UPPER(o.note) AS Q1, SUM(o.total) AS Q2");
  EXPECT_EQ(Text(p.ProjectQuery()), " UPPER(o.note), SUM(o.total)");
  EXPECT_EQ(Text(p.GroupQuery()), " UPPER(o.note)");
  EXPECT_EQ(p.Domains(), (Domains{nullptr, &o}));
}

// ---- Named columns ----

TEST_F(Project, ForLimitNumbersTheColumnsFromOne) {
  p << o.idColumn << *sum << c.nameColumn;
  EXPECT_EQ(Text(p.ProjectForLimitInternalQuery()), "o.id AS Q1, SUM(o.total) AS Q2, c.name AS Q3");
  EXPECT_EQ(p.ProjectForLimitQuery(), "ALIAS.Q1, ALIAS.Q2, ALIAS.Q3");
}

TEST_F(Project, ForLimitOfOneColumnHasNoComma) {
  p << o.idColumn;
  EXPECT_EQ(Text(p.ProjectForLimitInternalQuery()), "o.id AS Q1");
  EXPECT_EQ(p.ProjectForLimitQuery(), "ALIAS.Q1");
}

TEST_F(Project, ForLimitKnowsNoDistinct) {
  p.Distinct();
  p << o.idColumn;
  EXPECT_EQ(Text(p.ProjectForLimitInternalQuery()), "o.id AS Q1");
}

TEST_F(Project, ForLimitCountsToTenAndOn) {
  for (int column = 0; column < 11; ++column) p << o.idColumn;
  EXPECT_EQ(p.ProjectForLimitQuery(),
            "ALIAS.Q1, ALIAS.Q2, ALIAS.Q3, ALIAS.Q4, ALIAS.Q5, ALIAS.Q6, ALIAS.Q7, ALIAS.Q8, ALIAS.Q9, ALIAS.Q10, "
            "ALIAS.Q11");
}

// ---- FROM: plain tables ----

TEST_F(Project, OneTableStandsInParentheses) {
  p << o.idColumn;
  EXPECT_EQ(Text(p.JoinQuery()), "(orders o)");
  EXPECT_EQ(Text(p.JoinForDeleteQuery()), "orders o");
}

TEST_F(Project, SeveralTablesStandInOneParenthesis) {
  p << o.idColumn << c.idColumn << t.idColumn;
  EXPECT_EQ(Text(p.JoinQuery()), "(orders o, customers c, shop.cities t)");
  EXPECT_EQ(Text(p.JoinForDeleteQuery()), "orders o, customers c, shop.cities t");
}

TEST_F(Project, TwoRecordsOfOneTypeAreTwoTables) {
  Orders second;
  p << o.idColumn << second.idColumn;
  EXPECT_EQ(Sql(p.JoinQuery(), {{&o, "o"}, {&second, "o2"}}), "(orders o, orders o2)");
}

TEST_F(Project, KeywordsStandBeforeAndBehindEveryTable) {
  p << o.idColumn << c.idColumn;
  p.setKW("`", "'");
  EXPECT_EQ(Text(p.JoinQuery()), "(`orders' o, `customers' c)");
  EXPECT_EQ(Text(p.JoinForDeleteQuery()), "`orders' o, `customers' c");
}

TEST_F(Project, KeywordsStandAroundEveryPartOfAQualifiedName) {
  p << t.idColumn;
  p.setKW("`", "`");
  EXPECT_EQ(Text(p.JoinQuery()), "(`shop`.`cities` t)");
  EXPECT_EQ(Text(p.JoinForDeleteQuery()), "`shop`.`cities` t");
}

TEST_F(Project, KeywordsMayBeSetOnAConstProjection) {
  p << o.idColumn;
  ASProject const& same = p;
  same.setKW("<", ">");
  EXPECT_EQ(Text(p.JoinQuery()), "(<orders> o)");
}

TEST_F(Project, KeywordsReplaceEarlierOnes) {
  p << o.idColumn;
  p.setKW("<", ">");
  p.setKW("`", "'");
  EXPECT_EQ(Text(p.JoinQuery()), "(`orders' o)");
}

TEST_F(Project, KeywordsLeaveTheColumnsAlone) {
  p.setKW("`", "'");
  p << o.idColumn << *sum;
  EXPECT_EQ(Text(p.ProjectQuery()), "o.id, SUM(o.total)");
  EXPECT_EQ(Text(p.GroupQuery()), "o.id");
}

// ---- FROM: outer joins ----

TEST_F(Project, AnOptionalSideIsTakenOutOfThePlainTables) {
  joined << c.nameColumn << o.idColumn;
  EXPECT_EQ(From(++c.idColumn == o.customerColumn), "(orders o) LEFT JOIN customers c ON (c.id=(o.customer_id))");
}

TEST_F(Project, AnOptionalSideIsJoinedWithoutBeingAmongTheRecords) {
  joined << o.idColumn;
  EXPECT_EQ(From(o.customerColumn == ++c.idColumn), "(orders o) LEFT JOIN customers c ON (o.customer_id=(c.id))");
}

TEST_F(Project, ForDeleteTheJoinFollowsTheBareTables) {
  joined << t.idColumn << o.idColumn;
  EXPECT_EQ(FromForDelete(++c.idColumn == o.customerColumn),
            "shop.cities t, orders o LEFT JOIN customers c ON (c.id=(o.customer_id))");
}

TEST_F(Project, KeywordsStandAroundOptionalTables) {
  joined << o.idColumn;
  joined.setKW("`", "`");
  EXPECT_EQ(From((++t.idColumn == o.idColumn) && (++c.idColumn == o.customerColumn)),
            "(`orders` o) LEFT JOIN `shop`.`cities` t ON (t.id=(o.id))"
            " LEFT JOIN `customers` c ON (c.id=(o.customer_id))");
  EXPECT_EQ(Text(joined.JoinForDeleteQuery()),
            "`orders` o LEFT JOIN `shop`.`cities` t ON (t.id=(o.id))"
            " LEFT JOIN `customers` c ON (c.id=(o.customer_id))");
}

TEST_F(Project, TwoConditionsOnOneTableStandInOneJoin) {
  joined << o.idColumn;
  EXPECT_EQ(From((++c.idColumn == o.customerColumn) && (++c.nameColumn == o.noteColumn)),
            "(orders o) LEFT JOIN customers c ON (c.id=(o.customer_id) AND c.name=(o.note))");
}

TEST_F(Project, OptionalTablesAreJoinedInOrder) {
  joined << o.idColumn;
  EXPECT_EQ(From((++c.idColumn == o.customerColumn) && (++t.idColumn == o.totalColumn)),
            "(orders o) LEFT JOIN customers c ON (c.id=(o.customer_id)) LEFT JOIN shop.cities t ON (t.id=(o.total))");
}

TEST_F(Project, ThreeOptionalTablesCloseEachOnClause) {
  joined << o.idColumn;
  EXPECT_EQ(
      From((++c.idColumn == o.customerColumn) && (++t.idColumn == o.totalColumn) && (++files.idColumn == o.idColumn)),
      "(orders o) LEFT JOIN customers c ON (c.id=(o.customer_id)) LEFT JOIN shop.cities t ON (t.id=(o.total))"
      " LEFT JOIN files f ON (f.id=(o.id))");
}

TEST_F(Project, AConditionOnAnEarlierOptionalTableGoesIntoTheOpenOnClause) {
  joined << o.idColumn;
  EXPECT_EQ(
      From((++c.idColumn == o.customerColumn) && (++t.idColumn == o.totalColumn) && (++c.nameColumn == o.noteColumn)),
      "(orders o) LEFT JOIN customers c ON (c.id=(o.customer_id)) LEFT JOIN shop.cities t ON (t.id=(o.total)"
      " AND c.name=(o.note))");
}

TEST_F(Project, ATableAfterAnInterleavedConditionOpensItsOwnJoin) {
  joined << o.idColumn;
  EXPECT_EQ(
      From((++c.idColumn == o.customerColumn) && (++t.idColumn == o.totalColumn) && (++c.nameColumn == o.noteColumn) &&
           (++files.idColumn == o.idColumn) && (++t.nameColumn == c.nameColumn)),
      "(orders o) LEFT JOIN customers c ON (c.id=(o.customer_id)) LEFT JOIN shop.cities t ON (t.id=(o.total)"
      " AND c.name=(o.note)) LEFT JOIN files f ON (f.id=(o.id) AND t.name=(c.name))");
}

TEST_F(Project, TheRequiredSideIsNotListedByTheJoin) {
  EXPECT_EQ(From(++c.idColumn == o.customerColumn), " LEFT JOIN customers c ON (c.id=(o.customer_id))");
  EXPECT_EQ(Text(joined.JoinForDeleteQuery()), " LEFT JOIN customers c ON (c.id=(o.customer_id))");
}

TEST_F(Project, TheRequiredSideOfOneJoinMayBeTheOptionalSideOfAnother) {
  joined << o.idColumn << c.idColumn;
  EXPECT_EQ(From((++c.idColumn == o.customerColumn) && (++t.idColumn == c.idColumn)),
            "(orders o) LEFT JOIN customers c ON (c.id=(o.customer_id)) LEFT JOIN shop.cities t ON (t.id=(c.id))");
}

TEST_F(Project, OfOptionalTablesAloneHasNoParentheses) {
  joined << c.nameColumn << t.nameColumn;
  EXPECT_EQ(From((++c.idColumn == t.idColumn) && (++t.idColumn == c.idColumn)),
            " LEFT JOIN customers c ON (c.id=(t.id)) LEFT JOIN shop.cities t ON (t.id=(c.id))");
}

TEST_F(Project, AJoinWithoutRequiredSideIsAJoinLikeAnyOther) {
  joined << o.idColumn << c.nameColumn;
  EXPECT_EQ(From(++c.idColumn == Int(5)), "(orders o) LEFT JOIN customers c ON (c.id=5)");
}

TEST_F(Project, AJoinWithoutOptionalSideIsLeftOut) {
  joined << o.idColumn << o.noteColumn.Upper();
  EXPECT_EQ(From(ASComparison::OuterJoin("x", &o, nullptr)), "(orders o)");
  EXPECT_EQ(From(ASComparison::OuterJoin("x", &o, nullptr) && (++c.idColumn == o.customerColumn) &&
                 ASComparison::OuterJoin("y", nullptr, nullptr) && (++c.nameColumn == o.noteColumn)),
            "(orders o) LEFT JOIN customers c ON (c.id=(o.customer_id) AND c.name=(o.note))");
}

}  // namespace
