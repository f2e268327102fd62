#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/support/live.h"

using corvane::test::ConnectionId;
using corvane::test::Failure;
using corvane::test::FailureOf;
using corvane::test::Field;
using corvane::test::LiveTest;
using corvane::test::Row;
using corvane::test::Rows;
using corvane::test::Session;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::IsEmpty;
using ::testing::StartsWith;

namespace {

Field const kNull;

struct City : ASDomain {
  ASInt id;
  ASVStr name{80};
  ASAttribute idColumn{"id", "Id", 0, corvane::kKey};
  ASAttribute nameColumn{"name"};

  explicit City(char const* table = "city") : ASDomain(table, "City") { Add(idColumn, id).Add(nameColumn, name); }
  City(City const&) = delete;
  City& operator=(City const&) = delete;
};

struct Customer : ASDomain {
  ASInt id, cityId;
  ASVStr name{80};
  ASAttribute idColumn{"id", "Id", 0, corvane::kKey};
  ASAttribute cityColumn{"city"}, nameColumn{"name"};

  Customer() : ASDomain("customer", "Customer") { Add(idColumn, id).Add(cityColumn, cityId).Add(nameColumn, name); }
  Customer(Customer const&) = delete;
  Customer& operator=(Customer const&) = delete;
};

struct Purchase : ASDomain {
  ASInt id, customerId, total;
  ASAttribute idColumn{"id", "Id", 0, corvane::kKey};
  ASAttribute customerColumn{"customer"}, totalColumn{"total"};

  Purchase() : ASDomain("purchase", "Purchase") {
    Add(idColumn, id).Add(customerColumn, customerId).Add(totalColumn, total);
  }
  Purchase(Purchase const&) = delete;
  Purchase& operator=(Purchase const&) = delete;
};

Field FieldOf(ASData const& value) { return value.IsNull() != 0 ? kNull : Field(value.getstr().ToString()); }

// The rows from the current one on, the values in the order given.
Rows RowsOf(ASCursor& cursor, std::vector<ASData const*> const& values) {
  Rows rows;
  while (cursor.Fetch()) {
    rows.emplace_back();
    for (ASData const* const value : values) rows.back().push_back(FieldOf(*value));
  }
  return rows;
}

ASOrder By(ASAttribute const& column) { return ASOrder(column.Query()); }

class Cursor : public LiveTest {
 protected:
  void CreateTables() override {
    Run("CREATE TABLE city (id INT PRIMARY KEY, name VARCHAR(20))");
    Run("CREATE TABLE customer (id INT PRIMARY KEY, city INT, name VARCHAR(20))");
    Run("CREATE TABLE purchase (id INT PRIMARY KEY, customer INT, total INT)");
    Run("INSERT INTO city VALUES (1, 'Bonn'), (2, 'Ulm')");
    Run("INSERT INTO customer VALUES (1, 1, 'Ann'), (2, 1, 'Bob'), (3, 2, 'Cy'), (4, NULL, 'Dot')");
    Run("INSERT INTO purchase VALUES (10, 1, 5), (11, 1, 7), (12, 2, 9), (13, 3, 40)");
  }

  City city, otherCity;
  Customer customer;
  Purchase purchase;
};

// Joins.

TEST_F(Cursor, JoinReadsTheRowsThatBelongTogether) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Project() << customer.nameColumn << purchase.totalColumn;
  cursor.Where(purchase.customerColumn == customer.idColumn);
  cursor.Order(By(purchase.idColumn));
  EXPECT_EQ(RowsOf(cursor, {&customer.name, &purchase.total}),
            (Rows{{"Ann", "5"}, {"Ann", "7"}, {"Bob", "9"}, {"Cy", "40"}}));
}

TEST_F(Cursor, JoinOfThreeRecordsIsRead) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Project() << city.nameColumn << customer.nameColumn << purchase.totalColumn;
  cursor.Where(purchase.customerColumn == customer.idColumn && customer.cityColumn == city.idColumn &&
               purchase.totalColumn > 5);
  cursor.Order(By(purchase.idColumn));
  EXPECT_EQ(RowsOf(cursor, {&city.name, &customer.name, &purchase.total}),
            (Rows{{"Bonn", "Ann", "7"}, {"Bonn", "Bob", "9"}, {"Ulm", "Cy", "40"}}));
}

TEST_F(Cursor, OuterJoinSetsTheMissingSideNull) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Project() << customer.nameColumn << city.idColumn << city.nameColumn;
  cursor.Where(++city.idColumn == customer.cityColumn);
  cursor.Order(By(customer.idColumn));
  EXPECT_EQ(RowsOf(cursor, {&customer.name, &city.id, &city.name}),
            (Rows{{"Ann", "1", "Bonn"}, {"Bob", "1", "Bonn"}, {"Cy", "2", "Ulm"}, {"Dot", kNull, kNull}}));
}

TEST_F(Cursor, TableIsJoinedWithItself) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Project() << city.nameColumn << otherCity.nameColumn;
  cursor.Where(city.idColumn < otherCity.idColumn);
  EXPECT_EQ(RowsOf(cursor, {&city.name, &otherCity.name}), (Rows{{"Bonn", "Ulm"}}));
}

TEST_F(Cursor, TableOfAnotherSchemaIsRead) {
  City qualified((Schema() + ".city").c_str());
  Session session(With({{"Database", ""}}));
  ASCursor cursor(&session);
  cursor.Project() << qualified.nameColumn;
  cursor.Where(qualified.idColumn == 2);
  EXPECT_EQ(RowsOf(cursor, {&qualified.name}), (Rows{{"Ulm"}}));
}

TEST_F(Cursor, DistinctRowsAreRead) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.DistinctProject() << customer.cityColumn;
  cursor.Order(ASOrder("1"));
  EXPECT_EQ(RowsOf(cursor, {&customer.cityId}), (Rows{{kNull}, {"1"}, {"2"}}));
}

TEST_F(Cursor, ColumnWithoutValueIsLeftOut) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Project() << city.nameColumn.Upper() << city.nameColumn;
  cursor.Order(By(city.idColumn));
  EXPECT_EQ(RowsOf(cursor, {&city.name}), (Rows{{"Bonn"}, {"Ulm"}}));
}

TEST_F(Cursor, TextWithQuotesIsFoundAndRead) {
  Run("INSERT INTO city VALUES (3, 'L\\'\\\\ \\\"x\\\"')");
  Session session(With());
  ASCursor cursor(&session);
  cursor.Project() << city.nameColumn;
  cursor.Where(city.nameColumn == "L'\\ \"x\"");
  EXPECT_EQ(RowsOf(cursor, {&city.name}), (Rows{{"L'\\ \"x\""}}));
}

// The forms of Fetch.

TEST_F(Cursor, FetchReturnsTheNumberOfTheNextRow) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Project() << city.idColumn;
  std::vector<int> returned;
  for (int i = 0; i < 4; ++i) returned.push_back(cursor.Fetch());
  EXPECT_THAT(returned, ElementsAre(1, 2, 0, 0));
}

TEST_F(Cursor, FetchBehindTheLastRowLeavesTheValues) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Project() << city.idColumn << city.nameColumn;
  cursor.Order(By(city.idColumn));
  while (cursor.Fetch()) continue;
  EXPECT_EQ(city.name, "Ulm");
}

TEST_F(Cursor, EmptyResultHasNoRowsAndLeavesTheValues) {
  city.name = "before";
  Session session(With());
  ASCursor cursor(&session);
  cursor.Project() << city.nameColumn;
  cursor.Where(city.idColumn == 99);
  EXPECT_EQ(cursor.GetAmount(), 0);
  EXPECT_EQ(cursor.Fetch(), 0);
  EXPECT_EQ(city.name, "before");
}

TEST_F(Cursor, FetchByNumberReadsThatRowAndFetchTheNext) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Project() << customer.nameColumn;
  cursor.Order(By(customer.idColumn));
  EXPECT_EQ(cursor.Fetch(2), 3);
  EXPECT_EQ(customer.name, "Cy");
  EXPECT_EQ(cursor.Fetch(), 4);
  EXPECT_EQ(customer.name, "Dot");
  EXPECT_EQ(cursor.Fetch(0), 1);
  EXPECT_EQ(customer.name, "Ann");
}

TEST_F(Cursor, FetchByANumberThatIsNoRowReadsNothing) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Project() << city.nameColumn;
  city.name = "before";
  EXPECT_EQ(cursor.Fetch(-1), 0);
  EXPECT_EQ(cursor.Fetch(2), 0);
  EXPECT_EQ(city.name, "before");
}

TEST_F(Cursor, FetchOfARecordReadsAllItsColumns) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Where(customer.idColumn == 2);
  ASSERT_EQ(cursor.Fetch(customer), 1);
  EXPECT_EQ(static_cast<int>(customer.id), 2);
  EXPECT_EQ(static_cast<int>(customer.cityId), 1);
  EXPECT_EQ(customer.name, "Bob");
  EXPECT_EQ(cursor.Fetch(customer), 0);
}

TEST_F(Cursor, FetchOfAnotherRecordReadsIntoTheFirstOne) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Order(By(city.idColumn));
  cursor.Fetch(city);
  EXPECT_EQ(cursor.Fetch(otherCity), 2);
  EXPECT_EQ(city.name, "Ulm");
  EXPECT_EQ(otherCity.name.IsNull(), 1);
}

TEST_F(Cursor, FetchOfARecordThatFailsCanBeRepeated) {
  Run("RENAME TABLE city TO town");
  Session session(With());
  ASCursor cursor(&session);
  cursor.Where(city.idColumn == 1);
  EXPECT_EQ(FailureOf([&] { cursor.Fetch(city); }).number, 102);
  Run("RENAME TABLE town TO city");
  EXPECT_EQ(cursor.Fetch(city), 1);
  EXPECT_EQ(city.name, "Bonn");
  EXPECT_EQ(cursor.Project().Items().size(), 2U);
}

TEST_F(Cursor, FetchSingleLeavesOneRow) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Project() << city.nameColumn;
  cursor.Order(By(city.idColumn));
  EXPECT_EQ(cursor.FetchSingle(), 1);
  EXPECT_EQ(city.name, "Bonn");
  EXPECT_EQ(cursor.GetAmount(), 1);
  EXPECT_EQ(cursor.Fetch(), 0);
}

TEST_F(Cursor, FetchSingleWithoutARowReturnsZero) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Project() << city.nameColumn;
  cursor.Where(city.idColumn == 99);
  EXPECT_EQ(cursor.FetchSingle(), 0);
  EXPECT_EQ(cursor.GetAmount(), 0);
}

TEST_F(Cursor, GetAmountCountsTheRows) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Project() << customer.idColumn;
  EXPECT_EQ(cursor.GetAmount(), 4);
  cursor.Fetch();
  EXPECT_EQ(cursor.GetAmount(), 4);
}

TEST_F(Cursor, ResetGoesToTheFirstRow) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Project() << city.nameColumn;
  cursor.Order(By(city.idColumn));
  cursor.Fetch();
  cursor.Fetch();
  EXPECT_EQ(RowsOf(cursor.Reset(), {&city.name}), (Rows{{"Bonn"}, {"Ulm"}}));
}

TEST_F(Cursor, ResetOpens) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Project() << city.nameColumn;
  cursor.Reset();
  Run("DELETE FROM city");
  EXPECT_EQ(cursor.GetAmount(), 2);
}

TEST_F(Cursor, ColumnBoundToAnotherValueIsReadIntoThat) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Project() << city.nameColumn;
  cursor.Order(By(city.idColumn));
  cursor.Fetch();
  ASVStr other(80);
  city.nameColumn.Register(&other, &city);
  cursor.Fetch();
  EXPECT_EQ(city.name, "Bonn");
  EXPECT_EQ(other, "Ulm");
}

// Order, limit, set operations.

TEST_F(Cursor, OrderSorts) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Project() << customer.nameColumn;
  cursor.Order(-customer.cityColumn);
  cursor.Order(-customer.idColumn);
  EXPECT_EQ(RowsOf(cursor, {&customer.name}), (Rows{{"Cy"}, {"Bob"}, {"Ann"}, {"Dot"}}));
}

TEST_F(Cursor, OrderOfManyColumnsSorts) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Project() << customer.nameColumn;
  cursor.Order(-customer.cityColumn + customer.idColumn);
  EXPECT_EQ(RowsOf(cursor, {&customer.name}), (Rows{{"Cy"}, {"Ann"}, {"Bob"}, {"Dot"}}));
}

TEST_F(Cursor, LimitCutsTheRows) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Project() << customer.nameColumn;
  cursor.Order(By(customer.idColumn));
  cursor.Limit(2);
  EXPECT_EQ(RowsOf(cursor, {&customer.name}), (Rows{{"Ann"}, {"Bob"}}));
}

TEST_F(Cursor, OffsetSkipsRows) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Project() << customer.nameColumn;
  cursor.Order(By(customer.idColumn));
  cursor.Limit(1).Limit(2, 1);
  EXPECT_EQ(RowsOf(cursor, {&customer.name}), (Rows{{"Bob"}, {"Cy"}}));
}

TEST_F(Cursor, LimitOfZeroReadsNothing) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Project() << customer.nameColumn;
  EXPECT_EQ(cursor.Limit(0).GetAmount(), 0);
}

TEST_F(Cursor, LargestLimitIsAccepted) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Project() << customer.nameColumn;
  EXPECT_EQ(cursor.Limit(4294967295U, 1).GetAmount(), 3);
}

class CursorSets : public Cursor {
 protected:
  CursorSets() {
    low.Project() << customer.idColumn;
    low.Where(customer.idColumn <= 3);
    high.Project() << otherCustomer.idColumn;
    high.Where(otherCustomer.idColumn >= 2);
  }

  Customer otherCustomer;
  ASCursor low{nullptr};  // 1, 2, 3
  ASFilter high;          // 2, 3, 4
};

TEST_F(CursorSets, UnionReadsEveryRowOnce) {
  Session session(With());
  low.AssignSession(&session);
  low.Union(high).Order(ASOrder("1"));
  EXPECT_EQ(RowsOf(low, {&customer.id}), (Rows{{"1"}, {"2"}, {"3"}, {"4"}}));
}

TEST_F(CursorSets, UnionAllReadsTheRowsOfBoth) {
  Session session(With());
  low.AssignSession(&session);
  low.UnionAll(high).Order(ASOrder("id"));
  EXPECT_EQ(RowsOf(low, {&customer.id}), (Rows{{"1"}, {"2"}, {"2"}, {"3"}, {"3"}, {"4"}}));
}

TEST_F(CursorSets, IntersectReadsTheRowsInBoth) {
  Session session(With());
  low.AssignSession(&session);
  low.Intersect(high).Order(ASOrder("1"));
  if (!IsMariaDb()) {  // MySQL has none before 8.0.31
    EXPECT_THAT(FailureOf([&] { low.Fetch(); }).message, StartsWith("DB Error 1064 ("));
    return;
  }
  EXPECT_EQ(RowsOf(low, {&customer.id}), (Rows{{"2"}, {"3"}}));
}

TEST_F(CursorSets, MinusIsRefused) {
  Session session(With());
  low.AssignSession(&session);
  low.Minus(high);
  EXPECT_THAT(FailureOf([&] { low.Fetch(); }).message, StartsWith("DB Error 1064 ("));
}

TEST_F(CursorSets, LimitCutsTheWhole) {
  Session session(With());
  low.AssignSession(&session);
  low.Union(high).UnionAll(high).Limit(2, 3).Order(ASOrder("1"));
  EXPECT_EQ(RowsOf(low, {&customer.id}), (Rows{{"3"}, {"3"}}));
}

TEST_F(CursorSets, OperandWithALimitIsRefused) {
  Session session(With());
  low.AssignSession(&session);
  low.Limit(1);
  ASCursor cursor(&session);
  cursor.Project() << otherCustomer.idColumn;
  low.Union(cursor.Limit(1));
  EXPECT_THAT(FailureOf([&] { low.Fetch(); }).message, StartsWith("DB Error 1"));
}

TEST_F(CursorSets, SimpleQueryStandsAsAnOperandOfItsOwn) {
  Session session(With());
  low.AssignSession(&session);
  low.Union(high).Limit(1);
  Str sql;
  sql << "SELECT COUNT(*) FROM " << low.SimpleQuery() << " both_of_them";
  EXPECT_EQ(corvane::test::FetchedValue(session, sql.ToString()), "4");
}

// Aggregates.

TEST_F(Cursor, AggregatesAreReadIntoValuesOfTheirOwn) {
  Session session(With());
  ASInt count;
  ASDouble average;
  ASInt64 sum;
  std::unique_ptr<ASGroupAttribute> const counted(purchase.totalColumn.Count());
  std::unique_ptr<ASGroupAttribute> const averaged(purchase.totalColumn.Average());
  std::unique_ptr<ASGroupAttribute> const summed(purchase.totalColumn.Sum());
  counted->Register(&count, &purchase);
  averaged->Register(&average, &purchase);
  summed->Register(&sum, &purchase);
  ASCursor cursor(&session);
  cursor.Project() << *counted << *averaged << *summed;
  EXPECT_EQ(RowsOf(cursor, {&count, &average, &sum, &purchase.total}), (Rows{{"4", "15.25", "61", kNull}}));
}

TEST_F(Cursor, AggregateIsGroupedByThePlainColumns) {
  Session session(With());
  ASInt count;
  std::unique_ptr<ASGroupAttribute> const counted(purchase.idColumn.Count());
  counted->Register(&count, &purchase);
  ASCursor cursor(&session);
  cursor.Project() << customer.nameColumn << *counted;
  cursor.Where(purchase.customerColumn == customer.idColumn);
  cursor.Order(By(customer.nameColumn));
  EXPECT_EQ(RowsOf(cursor, {&customer.name, &count}), (Rows{{"Ann", "2"}, {"Bob", "1"}, {"Cy", "1"}}));
}

TEST_F(Cursor, HavingChoosesGroups) {
  Session session(With());
  std::unique_ptr<ASGroupAttribute> const summed(purchase.totalColumn.Sum());
  ASCursor cursor(&session);
  cursor.Project() << purchase.customerColumn << *summed;
  cursor.Having(*summed > 9);
  cursor.Order(-*summed);
  EXPECT_EQ(RowsOf(cursor, {&purchase.customerId, &purchase.total}), (Rows{{"3", "40"}, {"1", "12"}}));
}

TEST_F(Cursor, AggregateOfNoRowsIsNull) {
  Session session(With());
  std::unique_ptr<ASGroupAttribute> const largest(purchase.totalColumn.Max());
  purchase.total = 1;
  ASCursor cursor(&session);
  cursor.Project() << *largest;
  cursor.Where(purchase.idColumn == 99);
  EXPECT_EQ(RowsOf(cursor, {&purchase.total}), (Rows{{kNull}}));
}

TEST_F(Cursor, CountIsCutByATextThatIsTooShort) {
  Run("INSERT INTO city VALUES (3, 'x'), (4, 'x'), (5, 'x'), (6, 'x'), (7, 'x'), (8, 'x'), (9, 'x'), (10, 'x')");
  Session session(With());
  ASStr count(1);
  std::unique_ptr<ASGroupAttribute> const counted(city.nameColumn.Count());
  counted->Register(&count, &city);
  ASCursor cursor(&session);
  cursor.Project() << *counted;
  EXPECT_EQ(RowsOf(cursor, {&count}), (Rows{{"1"}}));
}

// The result is read whole when the cursor opens.

TEST_F(Cursor, ChangesBehindOpenAreNotSeen) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Project() << city.nameColumn;
  cursor.Order(By(city.idColumn));
  cursor.Open();
  Run("UPDATE city SET name='changed'");
  Run("INSERT INTO city VALUES (3, 'new')");
  cursor.Open();
  EXPECT_EQ(RowsOf(cursor, {&city.name}), (Rows{{"Bonn"}, {"Ulm"}}));
}

TEST_F(Cursor, RunAgainAfterDetachItSeesTheChanges) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Project() << city.nameColumn;
  cursor.Order(By(city.idColumn));
  while (cursor.Fetch()) continue;
  Run("INSERT INTO city VALUES (3, 'new')");
  std::unique_ptr<MapBuffer> const rows(cursor.Detach());
  EXPECT_EQ(RowsOf(cursor.Reset(), {&city.name}), (Rows{{"Bonn"}, {"Ulm"}, {"new"}}));
}

TEST_F(Cursor, DetachLeavesNoCells) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Project() << city.nameColumn;
  cursor.Open();
  ASSERT_NE(cursor.GetUURecord(0), nullptr);
  std::unique_ptr<MapBuffer> const rows(cursor.Detach());
  EXPECT_EQ(cursor.GetUURecord(0), nullptr);
}

TEST_F(Cursor, DetachedRowsOutliveTheCursor) {
  std::unique_ptr<MapBuffer> rows;
  {
    Session session(With());
    ASCursor cursor(&session);
    cursor.Project() << city.idColumn << city.nameColumn;
    cursor.Order(-city.idColumn);
    cursor.Open();
    rows.reset(cursor.Detach());
    EXPECT_EQ(cursor.Detach(), nullptr);
  }
  auto const* const cells = static_cast<UU const*>(rows->GetBegin());
  EXPECT_EQ(cells[0].value.integer, 2);
  EXPECT_EQ(cells[1].value.length, 4U);
  EXPECT_STREQ(cells[1].extra.text, "Ulm");
}

TEST_F(Cursor, CursorsOfOneSessionReadInTurn) {
  Session session(With());
  ASCursor cities(&session);
  cities.Project() << city.nameColumn;
  cities.Order(By(city.idColumn));
  ASCursor customers(&session);
  customers.Project() << customer.nameColumn;
  customers.Order(By(customer.idColumn));
  std::vector<std::string> read;
  while (customers.Fetch()) {
    cities.Fetch();
    read.push_back((customer.name.getstr() + " " + city.name.getstr()).ToString());
  }
  EXPECT_THAT(read, ElementsAre("Ann Bonn", "Bob Ulm", "Cy Ulm", "Dot Ulm"));
}

TEST_F(Cursor, CursorOpensInsideTheLoopOfAnother) {
  Session session(With());
  ASCursor cities(&session);
  cities.Project() << city.idColumn;
  cities.Order(By(city.idColumn));
  Rows read;
  while (cities.Fetch()) {
    ASCursor customers(&session);
    customers.Project() << customer.nameColumn;
    customers.Where(customer.cityColumn == city.id);
    customers.Order(By(customer.idColumn));
    for (Row const& row : RowsOf(customers, {&city.id, &customer.name})) read.push_back(row);
  }
  EXPECT_EQ(read, (Rows{{"1", "Ann"}, {"1", "Bob"}, {"2", "Cy"}}));
}

TEST_F(Cursor, StatementsBetweenFetchesRunOnTheSameConnection) {
  Session session(With());
  std::string const id = ConnectionId(session);
  ASCursor cursor(&session);
  cursor.Order(By(city.idColumn));
  while (cursor.Fetch(city)) {
    city.name = (city.name.getstr() + "!").str();
    EXPECT_EQ(session.Update(city), 1U);
  }
  EXPECT_EQ(StoredRows("SELECT name FROM city ORDER BY id"), (Rows{{"Bonn!"}, {"Ulm!"}}));
  EXPECT_EQ(ConnectionId(session), id);
}

TEST_F(Cursor, RowsStayReadableOnceTheSessionIsDisconnected) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Project() << city.nameColumn;
  cursor.Order(By(city.idColumn));
  cursor.Open();
  session.Disconnect();
  EXPECT_EQ(RowsOf(cursor, {&city.name}), (Rows{{"Bonn"}, {"Ulm"}}));
}

TEST_F(Cursor, ConditionAddedBehindOpenCountsForTheNextRun) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Project() << city.nameColumn;
  cursor.Open();
  cursor.Where(city.idColumn == 2);
  EXPECT_EQ(cursor.GetAmount(), 2);
  std::unique_ptr<MapBuffer> const rows(cursor.Detach());
  EXPECT_EQ(RowsOf(cursor, {&city.name}), (Rows{{"Ulm"}}));
}

// Sessions, transactions, locks.

TEST_F(Cursor, WithoutASessionItDoesNotOpen) {
  ASCursor cursor(nullptr);
  cursor.Project() << city.nameColumn;
  EXPECT_EQ(FailureOf([&] { cursor.Fetch(); }), (Failure{0, "There is no session for cursor. "}));
}

TEST_F(Cursor, AssignedSessionRunsTheQuery) {
  Session first(WithTransactions());
  Session second(WithTransactions());
  first.Execute("UPDATE city SET name='first'");
  ASCursor cursor(&second);
  cursor.Project() << city.nameColumn;
  cursor.Limit(1);
  cursor.AssignSession(&first);
  EXPECT_EQ(RowsOf(cursor, {&city.name}), (Rows{{"first"}}));
}

TEST_F(Cursor, AssignedSessionLeavesTheRowsOfTheOtherOne) {
  Session first(WithTransactions());
  Session second(WithTransactions());
  first.Execute("UPDATE city SET name='first'");
  ASCursor cursor(&second);
  cursor.Project() << city.nameColumn;
  cursor.Order(By(city.idColumn));
  cursor.Open();
  cursor.AssignSession(&first);
  EXPECT_EQ(RowsOf(cursor, {&city.name}), (Rows{{"Bonn"}, {"Ulm"}}));
}

TEST_F(Cursor, OwnChangesAreSeenInTheTransaction) {
  Session session(WithTransactions());
  session.Execute("DELETE FROM city WHERE id=1");
  ASCursor cursor(&session);
  cursor.Project() << city.nameColumn;
  EXPECT_EQ(RowsOf(cursor, {&city.name}), (Rows{{"Ulm"}}));
  session.Rollback();
  std::unique_ptr<MapBuffer> const rows(cursor.Detach());
  EXPECT_EQ(cursor.GetAmount(), 2);
}

TEST_F(Cursor, ChangesThatAreNotCommittedAreNotSeenByOthers) {
  Session writer(WithTransactions());
  writer.Execute("DELETE FROM city");
  Session reader(With());
  ASCursor cursor(&reader);
  cursor.Project() << city.nameColumn;
  EXPECT_EQ(cursor.GetAmount(), 2);
}

TEST_F(Cursor, TransactionReadsWhatItReadBefore) {
  Session session(WithTransactions());
  ASCursor first(&session);
  first.Project() << city.nameColumn;
  first.Open();
  Run("DELETE FROM city");
  ASCursor second(&session);
  second.Project() << city.nameColumn;
  EXPECT_EQ(second.GetAmount(), 2);
  session.Commit();
  std::unique_ptr<MapBuffer> const rows(second.Detach());
  EXPECT_EQ(second.GetAmount(), 0);
}

TEST_F(Cursor, LocksNoRow) {
  Session session(WithTransactions());
  ASCursor cursor(&session);
  cursor.Fetch(city);
  EXPECT_EQ(Refusal("UPDATE city SET name='changed'"), 0U);
}

TEST_F(Cursor, ReadsRowsThatAnotherSessionHasLocked) {
  Session locking(WithTransactions());
  city.id = 1;
  locking.Select(city);
  ASSERT_EQ(Refusal("UPDATE city SET name='changed' WHERE id=1"), 1205U);
  Session session(WithTransactions());
  session.Execute("SET innodb_lock_wait_timeout=1");
  ASCursor cursor(&session);
  cursor.Project() << city.nameColumn;
  EXPECT_EQ(cursor.GetAmount(), 2);
}

TEST_F(Cursor, ReadOnlyModeChangesNothing) {
  Session session(WithTransactions());
  ASCursor cursor(&session);
  cursor.Project() << city.nameColumn;
  cursor.Order(By(city.idColumn));
  std::string const query = cursor.Query().ToString();
  session.ReadOnly();
  EXPECT_EQ(cursor.Query().ToString(), query);
  EXPECT_EQ(RowsOf(cursor, {&city.name}), (Rows{{"Bonn"}, {"Ulm"}}));
}

TEST_F(Cursor, ReadsInAReadOnlyTransaction) {
  Session session(WithTransactions());
  session.Execute("START TRANSACTION READ ONLY");
  ASCursor cursor(&session);
  EXPECT_EQ(cursor.Fetch(city), 1);
}

// Statements that the server refuses.

TEST_F(Cursor, RefusedStatementIsReportedWithItsText) {
  Session session(With());
  ASDomain missing("missing", "Missing");
  ASInt id;
  ASAttribute idColumn("id");
  missing.Add(idColumn, id);
  ASCursor cursor(&session);
  cursor.Project() << idColumn;
  std::string const query = cursor.Query().ToString();
  EXPECT_EQ(FailureOf([&] { cursor.Open(); }),
            (Failure{102, "DB Error 1146 (Table '" + Schema() + ".missing' doesn't exist) in query\n\b\n" + query}));
  EXPECT_EQ(cursor.Detach(), nullptr);
}

TEST_F(Cursor, RefusedStatementLeavesTransactionAndConnection) {
  Session session(WithTransactions());
  std::string const id = ConnectionId(session);
  session.Execute("DELETE FROM city WHERE id=1");
  ASCursor cursor(&session);
  cursor.Project() << city.nameColumn;
  cursor.Order(ASOrder("no_such_column"));
  EXPECT_THAT(FailureOf([&] { cursor.Open(); }).message, EndsWith(" ORDER BY no_such_column"));
  session.Commit();
  EXPECT_EQ(ConnectionId(session), id);
  EXPECT_EQ(StoredRows("SELECT id FROM city"), (Rows{{"2"}}));
}

TEST_F(Cursor, QueryWithoutColumnsReadsRowsWithoutValues) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Where(city.idColumn > 0);
  EXPECT_EQ(cursor.GetAmount(), 2);
  EXPECT_EQ(cursor.Fetch(), 1);
  EXPECT_THAT(cursor.Project().Items(), IsEmpty());
}

}  // namespace
