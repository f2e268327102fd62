#include <gmock/gmock.h>

#include <cstdint>
#include <limits>
#include <ostream>
#include <string>
#include <vector>

#include "tests/live/query_test.h"

using corvane::test::Failure;
using corvane::test::FailureOf;
using corvane::test::Field;
using corvane::test::Ids;
using corvane::test::kNull;
using corvane::test::LiveTest;
using corvane::test::Orders;
using corvane::test::QueryTest;
using corvane::test::Row;
using corvane::test::Rows;
using corvane::test::Session;
using ORDBMS::ASCENDING;
using ORDBMS::DESCENDING;
using ORDBMS::EQUAL;
using ORDBMS::GREATER;
using ORDBMS::GREATER_EQUAL;
using ORDBMS::IS_NOT_NULL;
using ORDBMS::IS_NULL;
using ORDBMS::LESS;
using ORDBMS::LESS_EQUAL;
using ORDBMS::NOT_EQUAL;
using ORDBMS::old_cursor;
using ORDBMS::old_filter;
using ORDBMS::Rdbms;
using testing::ElementsAre;
using testing::EndsWith;

// The older interface on a real server.
namespace {

constexpr char const* kOrders = "orders";
constexpr char const* kCustomers = "customers";

Failure DbError(int number) { return {102, "DB Error " + std::to_string(number) + " ("}; }

// A record of one number, in whatever column.
struct Number : ASDomain {
  ASInt value{};
  ASAttribute column{"id"};

  Number() : ASDomain("numbers", "Number") { Add(column, value); }
  Number(Number const&) = delete;
  Number& operator=(Number const&) = delete;
};

// A record of an order's number and a text.
struct Noted : ASDomain {
  ASInt id{};
  ASVStr text{40};
  ASAttribute idColumn{"id"}, textColumn{"note"};

  Noted() : ASDomain("noted", "Noted") { Add(idColumn, id).Add(textColumn, text); }
  Noted(Noted const&) = delete;
  Noted& operator=(Noted const&) = delete;
};

// A cursor with a record of its own.
template <class Record>
struct CursorOf : old_cursor {
  Record* const record = new Record;

  explicit CursorOf(ASSession* session = nullptr) : old_cursor(session) { SetRecord(record); }
  CursorOf(CursorOf const&) = delete;
  CursorOf& operator=(CursorOf const&) = delete;
};

Ids AllIds(CursorOf<Number>& cursor) {
  Ids ids;
  while (cursor.Fetch() != 0) ids.push_back(static_cast<int>(cursor.record->value));
  return ids;
}

Rows RowsOf(CursorOf<Noted>& cursor) {
  Rows rows;
  while (cursor.Fetch() != 0) {
    Noted const& row = *cursor.record;
    rows.push_back({row.id.getstr().ToString(), row.text.IsNull() != 0 ? kNull : Field(row.text.getstr().ToString())});
  }
  return rows;
}

// "P94271", by which a statement knows the table that was joined by this text.
Str AliasOf(void const* text) { return Str("P") << static_cast<unsigned long>(reinterpret_cast<std::uintptr_t>(text)); }
Str Qualified(void const* text, char const* column) { return AliasOf(text) << "." << column; }

// What opening the cursor throws, up to the server's own words.
Failure Refused(old_cursor& cursor, ASSession& session) {
  Failure failure = FailureOf([&] { cursor.Open(&session); });
  EXPECT_THAT(failure.message, EndsWith(") in query\n\b\n" + cursor.Query().ToString()));
  failure.message.erase(failure.message.find('(') + 1);
  return failure;
}

// Conditions: every form, executed.

struct Operands {
  ASInt minusFive, one, ten, thirty, null;
  ASVStr text{40};
  basic_type const* nothing = nullptr;

  Operands() {
    minusFive = -5;
    one = 1;
    ten = 10;
    thirty = 30;
    null.SetNull();
    text = "50% off";
  }
};

struct Condition {
  char const* name;
  void (*apply)(old_filter&, Operands const&);
  Ids found;
};

void PrintTo(Condition const& row, std::ostream* out) { *out << row.name; }

class LiveOldFilter : public QueryTest, public testing::WithParamInterface<Condition> {};

TEST_P(LiveOldFilter, FindsTheRowsOfTheCondition) {
  CursorOf<Number> cursor;
  cursor.Join(kOrders);
  cursor.Project("id");
  GetParam().apply(cursor, Operands());
  cursor.orderby("id", ASCENDING);
  cursor.Open(&TheSession());
  EXPECT_EQ(AllIds(cursor), GetParam().found);
}

using F = old_filter&;
using V = Operands const&;

INSTANTIATE_TEST_SUITE_P(
    Set, LiveOldFilter,
    testing::Values(
        Condition{"Nothing", [](F, V) {}, {1, 2, 3, 4, 5, 6}},
        Condition{"TextEqual", [](F f, V) { f.Set("total", "30", EQUAL); }, {3, 4}},
        Condition{"TextNotEqual", [](F f, V) { f.Set("total", "30", NOT_EQUAL); }, {1, 2, 6}},
        Condition{"TextLess", [](F f, V) { f.Set("total", "10", LESS); }, {2, 6}},
        Condition{"TextGreater", [](F f, V) { f.Set("total", "10", GREATER); }, {3, 4}},
        Condition{"TextLessEqual", [](F f, V) { f.Set("total", "10", LESS_EQUAL); }, {1, 2, 6}},
        Condition{"TextGreaterEqual", [](F f, V) { f.Set("total", "10", GREATER_EQUAL); }, {1, 3, 4}},
        Condition{"TextInQuotes", [](F f, V) { f.Set("note", "'O\\'Brien'", EQUAL); }, {2}},
        Condition{"TextThatIsAColumn", [](F f, V) { f.Set("id", "customer_id", EQUAL); }, {1}},
        Condition{"TextThatIsAnExpression", [](F f, V) { f.Set("total", "id*10", EQUAL); }, {1, 3}},
        Condition{"FieldThatIsAnExpression", [](F f, V) { f.Set("id+total", "11", EQUAL); }, {1}},
        Condition{"ValueEqual", [](F f, V v) { f.Set("total", &v.thirty, EQUAL); }, {3, 4}},
        Condition{"ValueNotEqual", [](F f, V v) { f.Set("total", &v.thirty, NOT_EQUAL); }, {1, 2, 6}},
        Condition{"ValueLess", [](F f, V v) { f.Set("total", &v.ten, LESS); }, {2, 6}},
        Condition{"ValueGreater", [](F f, V v) { f.Set("total", &v.ten, GREATER); }, {3, 4}},
        Condition{"ValueLessEqual", [](F f, V v) { f.Set("total", &v.ten, LESS_EQUAL); }, {1, 2, 6}},
        Condition{"ValueGreaterEqual", [](F f, V v) { f.Set("total", &v.minusFive, GREATER_EQUAL); }, {1, 2, 3, 4, 6}},
        Condition{"TextValueEqual", [](F f, V v) { f.Set("note", &v.text, EQUAL); }, {3}},
        Condition{"NullEqual", [](F f, V v) { f.Set("total", &v.null, EQUAL); }, {5}},
        Condition{"NullNotEqual", [](F f, V v) { f.Set("total", &v.null, NOT_EQUAL); }, {1, 2, 3, 4, 6}},
        Condition{"NullLess", [](F f, V v) { f.Set("total", &v.null, LESS); }, {}},
        Condition{"NullGreater", [](F f, V v) { f.Set("total", &v.null, GREATER); }, {}},
        Condition{"NullLessEqual", [](F f, V v) { f.Set("total", &v.null, LESS_EQUAL); }, {}},
        Condition{"NullGreaterEqual", [](F f, V v) { f.Set("total", &v.null, GREATER_EQUAL); }, {}},
        Condition{"NullPointerEqual", [](F f, V v) { f.Set("note", v.nothing, EQUAL); }, {5}},
        Condition{"NullPointerLess", [](F f, V v) { f.Set("note", v.nothing, LESS); }, {}},
        Condition{"IsNull", [](F f, V) { f.Set("customer_id", IS_NULL); }, {4}},
        Condition{"IsNotNull", [](F f, V) { f.Set("customer_id", IS_NOT_NULL); }, {1, 2, 3, 5, 6}},
        Condition{"BetweenInts", [](F f, V) { f.Set("total", -5, 10); }, {1, 2, 6}},
        Condition{"BetweenDoubles", [](F f, V) { f.Set("total", 0.5, 29.999999); }, {1}},
        Condition{"BetweenLargeDoubles", [](F f, V) { f.Set("total", -1e20, 1e20); }, {1, 2, 3, 4, 6}}),
    [](auto const& row) { return row.param.name; });

INSTANTIATE_TEST_SUITE_P(
    And, LiveOldFilter,
    testing::Values(
        Condition{"Text", [](F f, V) { f.Set("id", "2", GREATER).And("total", "30", EQUAL); }, {3, 4}},
        Condition{"Value", [](F f, V v) { f.Set("total", 0, 10).And("customer_id", &v.one, EQUAL); }, {1}},
        Condition{"NullEqual", [](F f, V v) { f.Set("total", 30, 30).And("customer_id", &v.null, EQUAL); }, {4}},
        Condition{"NullNotEqual", [](F f, V v) { f.Set("total", 30, 30).And("customer_id", &v.null, NOT_EQUAL); }, {3}},
        Condition{"NullLess", [](F f, V v) { f.Set("total", 30, 30).And("id", &v.null, LESS); }, {}},
        Condition{"IsNull", [](F f, V) { f.Set("total", 30, 30).And("customer_id", IS_NULL); }, {4}},
        Condition{"IsNotNull", [](F f, V) { f.Set("total", 30, 30).And("customer_id", IS_NOT_NULL); }, {3}},
        Condition{"BetweenInts", [](F f, V) { f.Set("id", 1, 4).And("total", 5, 30); }, {1, 3, 4}},
        Condition{"BetweenDoubles", [](F f, V) { f.Set("id", 1, 4).And("total", 29.5, 30.5); }, {3, 4}},
        Condition{"Three", [](F f, V) { f.Set("id", 1, 5).And("total", 5, 30).And("customer_id", "2", EQUAL); }, {3}}),
    [](auto const& row) { return row.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Or, LiveOldFilter,
    testing::Values(
        Condition{"Text", [](F f, V) { f.Set("id", "2", EQUAL).Or("total", "30", EQUAL); }, {2, 3, 4}},
        Condition{"Value", [](F f, V v) { f.Set("total", 0, 0).Or("customer_id", &v.one, EQUAL); }, {1, 2, 6}},
        Condition{"NullEqual", [](F f, V v) { f.Set("id", 1, 1).Or("customer_id", &v.null, EQUAL); }, {1, 4}},
        Condition{
            "NullNotEqual", [](F f, V v) { f.Set("id", 5, 5).Or("total", &v.null, NOT_EQUAL); }, {1, 2, 3, 4, 5, 6}},
        Condition{"NullLess", [](F f, V v) { f.Set("id", 1, 1).Or("id", &v.null, LESS); }, {1}},
        Condition{"IsNull", [](F f, V) { f.Set("id", 1, 1).Or("total", IS_NULL); }, {1, 5}},
        Condition{"IsNotNull", [](F f, V) { f.Set("id", 4, 4).Or("customer_id", IS_NOT_NULL); }, {1, 2, 3, 4, 5, 6}},
        Condition{"BetweenInts", [](F f, V) { f.Set("id", 6, 6).Or("total", 5, 10); }, {1, 6}},
        Condition{"BetweenDoubles", [](F f, V) { f.Set("id", 6, 6).Or("total", 29.5, 30.5); }, {3, 4, 6}},
        Condition{
            "BehindAnd", [](F f, V) { f.Set("id", 3, 4).And("customer_id", IS_NULL).Or("id", "1", EQUAL); }, {1, 4}}),
    [](auto const& row) { return row.param.name; });

// Refused statements, and the cursor after them.

class LiveOldCursor : public QueryTest {
 protected:
  // The numbers of all orders.
  static void SelectOrders(old_filter& filter) {
    filter.Join(kOrders);
    filter.Project("id");
  }
};

TEST_F(LiveOldCursor, SetTwiceIsRefused) {
  CursorOf<Number> cursor;
  SelectOrders(cursor);
  cursor.Set("id", 1, 2);
  cursor.Set("id", 1, 2);
  EXPECT_EQ(Refused(cursor, TheSession()), DbError(1064));
}

TEST_F(LiveOldCursor, AndWithoutSetIsRefused) {
  CursorOf<Number> cursor;
  SelectOrders(cursor);
  cursor.And("id", 1, 2);
  EXPECT_EQ(Refused(cursor, TheSession()), DbError(1064));
}

TEST_F(LiveOldCursor, ValueWithAQuoteIsRefused) {
  CursorOf<Number> cursor;
  SelectOrders(cursor);
  ASVStr name(40);
  name = "O'Brien";
  cursor.Set("note", &name, EQUAL);
  EXPECT_EQ(Refused(cursor, TheSession()), DbError(1064));
}

TEST_F(LiveOldCursor, RangeThatIsNotFiniteIsRefused) {
  CursorOf<Number> cursor;
  SelectOrders(cursor);
  cursor.Set("total", 0.5, std::numeric_limits<double>::infinity());
  EXPECT_EQ(Refused(cursor, TheSession()), DbError(1054));
}

TEST_F(LiveOldCursor, WithoutATableIsRefused) {
  CursorOf<Number> cursor;
  cursor.Project("id");
  EXPECT_EQ(Refused(cursor, TheSession()), DbError(1064));
}

TEST_F(LiveOldCursor, SameTextJoinedTwiceIsRefused) {
  CursorOf<Number> cursor;
  SelectOrders(cursor);
  cursor.Join(kOrders);
  EXPECT_EQ(Refused(cursor, TheSession()), DbError(1066));
}

TEST_F(LiveOldCursor, SameStrJoinedTwiceIsRefused) {
  Str const table("orders");
  CursorOf<Number> cursor;
  cursor.Join(table);
  cursor.Join(table);
  EXPECT_EQ(Refused(cursor, TheSession()), DbError(1066));
}

TEST_F(LiveOldCursor, TableOfConditionsOnRecordsMustBeJoined) {
  Orders o;
  CursorOf<Number> cursor;
  SelectOrders(cursor);
  cursor.Where(o.idColumn == 1);
  EXPECT_EQ(Refused(cursor, TheSession()), DbError(1054));
}

TEST_F(LiveOldCursor, RefusedStatementIsCorrectedAndOpened) {
  CursorOf<Number> cursor;
  cursor.Project("id");
  cursor.Join("missing");
  EXPECT_EQ(Refused(cursor, TheSession()), DbError(1146));
  EXPECT_EQ(cursor.GetUURecord(0), nullptr);

  old_filter corrected;
  SelectOrders(corrected);
  corrected.Set("id", 2, 3);
  cursor << &corrected;
  cursor.Open(&TheSession());
  EXPECT_EQ(AllIds(cursor), (Ids{2, 3}));
  EXPECT_EQ(cursor.GetAmount(), 2);
}

TEST_F(LiveOldCursor, OpensOnASecondSessionWhenTheFirstFailed) {
  Session elsewhere(With({{"Database", "mysql"}}));
  CursorOf<Number> cursor;
  SelectOrders(cursor);
  EXPECT_EQ(Refused(cursor, elsewhere), DbError(1146));
  cursor.Open(&TheSession());
  EXPECT_EQ(cursor.GetAmount(), 6);
}

TEST_F(LiveOldCursor, FewerColumnsThanTheRecordHasThrowsAndIsCorrected) {
  CursorOf<Noted> cursor;
  SelectOrders(cursor);
  cursor.Set("id", 1, 1);
  EXPECT_EQ(FailureOf([&] { cursor.Open(&TheSession()); }), (Failure{0, "MySQL fetch error. "}));
  cursor.Project("note");
  cursor.Open(&TheSession());
  EXPECT_EQ(RowsOf(cursor), (Rows{{"1", "Ada Lovelace"}}));
}

// Joins and select lists.

TEST_F(LiveOldCursor, TwoTablesAreJoinedByQualifiedColumns) {
  CursorOf<Noted> cursor;
  cursor.Join(kOrders);
  cursor.Join(kCustomers);
  cursor.Project(Qualified(kOrders, "id"));
  cursor.Project(Qualified(kCustomers, "name"));
  cursor.Set(Qualified(kOrders, "customer_id"), Qualified(kCustomers, "id"), EQUAL);
  cursor.And(Qualified(kOrders, "total"), 0, 30);
  cursor.orderby(Qualified(kOrders, "id"), DESCENDING);
  cursor.Open(&TheSession());
  EXPECT_EQ(RowsOf(cursor), (Rows{{"3", "O'Brien"}, {"1", "Ada"}}));
}

TEST_F(LiveOldCursor, TableIsJoinedWithItselfByAnotherText) {
  Str const orders("orders"), others("orders");
  CursorOf<Noted> cursor;
  cursor.Join(orders);
  cursor.Join(others);
  cursor.Project(Qualified(orders.voidptr(), "id"));
  cursor.Project(Qualified(others.voidptr(), "note"));
  cursor.Set(Qualified(orders.voidptr(), "total"), Qualified(others.voidptr(), "total"), EQUAL);
  cursor.And(Qualified(orders.voidptr(), "id"), Qualified(others.voidptr(), "id"), LESS);
  cursor.Open(&TheSession());
  EXPECT_EQ(RowsOf(cursor), (Rows{{"3", "500"}}));
}

TEST_F(LiveOldCursor, NumberOfTheTextsAddressIsReturned) {
  CursorOf<Noted> cursor;
  EXPECT_EQ(cursor.Join(kOrders), static_cast<int>(reinterpret_cast<std::uintptr_t>(kOrders)));
}

TEST_F(LiveOldCursor, AllColumnsAreReadWithoutASelectList) {
  CursorOf<Noted> cursor;
  cursor.Join(kCustomers);
  cursor.Set("id", 1, 4);
  cursor.orderby(1, ASCENDING);
  cursor.Open(&TheSession());
  EXPECT_EQ(RowsOf(cursor), (Rows{{"1", "Ada"}, {"2", "O'Brien"}, {"3", "50!%"}, {"4", kNull}}));
}

// The alias of the record stands in the text; that of the text goes to a table of one row.
TEST_F(LiveOldCursor, ConditionOnARecordHoldsWhenItsAliasIsJoined) {
  Orders o;
  CursorOf<Number> cursor;
  cursor.Join(("orders " + o.Alias().ToString() + ", (SELECT 1)").c_str());
  cursor.Project(o.idColumn.Query());
  cursor.Where(o.totalColumn == 30);
  cursor.Open(&TheSession());
  EXPECT_EQ(AllIds(cursor), (Ids{3, 4}));
}

TEST_F(LiveOldCursor, LimitAndUnionHaveNoEffect) {
  CursorOf<Number> cursor(&TheSession());
  SelectOrders(cursor);
  cursor.Limit(1);
  cursor.UnionAll(cursor);
  cursor.Open(&TheSession());
  EXPECT_EQ(cursor.GetAmount(), 6);
}

TEST_F(LiveOldCursor, StreamedColumnsAreReadBeforeThoseOfTheRecord) {
  Orders o;
  CursorOf<Number> cursor;
  cursor.Join(("orders " + o.Alias().ToString() + ", (SELECT 1)").c_str());
  cursor.ASFilter::Project() << o.noteColumn;
  cursor.Project(o.idColumn.Query());
  cursor.Set(o.idColumn == 2);
  cursor.Open(&TheSession());
  EXPECT_EQ(cursor.Fetch(), 1);
  EXPECT_EQ(o.note, "O'Brien");
  EXPECT_EQ(cursor.record->value, 2);
}

TEST_F(LiveOldCursor, DistinctAsTheFirstColumnsWordIsAccepted) {
  CursorOf<Number> cursor;
  cursor.Join(kOrders);
  cursor.Project("DISTINCT total");
  cursor.Set("total", 0, 30);
  cursor.orderby("total", ASCENDING);
  cursor.Open(&TheSession());
  EXPECT_EQ(AllIds(cursor), (Ids{0, 10, 30}));
}

TEST_F(LiveOldCursor, DistinctBeforeANamedColumnIsRefused) {
  CursorOf<Number> cursor;
  cursor.Join(kOrders);
  cursor.Distinct(1);
  cursor.Project("total");
  EXPECT_EQ(Refused(cursor, TheSession()), DbError(1064));
}

TEST_F(LiveOldCursor, DistinctBeforeAStreamedColumnIsAccepted) {
  Number total;
  ASAttribute column("total");
  column.Register(&total.value, nullptr);
  old_cursor cursor;
  cursor.Join(kOrders);
  cursor.Distinct(1);
  cursor.ASFilter::Project() << column;
  cursor.Open(&TheSession());
  EXPECT_EQ(cursor.GetAmount(), 5);
}

TEST_F(LiveOldCursor, DistinctOfZeroDoesNothing) {
  CursorOf<Number> cursor;
  cursor.Join(kOrders);
  cursor.Distinct(0);
  cursor.Project("total");
  cursor.Open(&TheSession());
  EXPECT_EQ(cursor.GetAmount(), 6);
}

// Orders.

TEST_F(LiveOldCursor, OrderByPosition) {
  CursorOf<Number> cursor;
  SelectOrders(cursor);
  cursor.orderby(1, DESCENDING);
  cursor.Open(&TheSession());
  EXPECT_EQ(AllIds(cursor), (Ids{6, 5, 4, 3, 2, 1}));
}

TEST_F(LiveOldCursor, OrderByNameAndThenByPosition) {
  CursorOf<Noted> cursor;
  cursor.Join(kOrders);
  cursor.Project("id");
  cursor.Project("total");
  cursor.orderby("total", DESCENDING);
  cursor.orderby(1, DESCENDING);
  cursor.Set("id", 1, 4);
  EXPECT_THAT(cursor.Query().ToString(), EndsWith(" WHERE id BETWEEN 1 AND 4) ORDER BY total DESC, 1 DESC"));
  cursor.Open(&TheSession());
  EXPECT_EQ(RowsOf(cursor), (Rows{{"4", "30"}, {"3", "30"}, {"1", "10"}, {"2", "-5"}}));
}

// Walks.

TEST_F(LiveOldCursor, TakesOverAnotherFilter) {
  old_filter filter;
  SelectOrders(filter);
  filter.Set("id", 4, 5);
  CursorOf<Number> cursor;
  cursor.Join("missing");
  cursor << &filter;
  filter.And("id", 4, 4);  // too late
  cursor.Open(&TheSession());
  EXPECT_EQ(AllIds(cursor), (Ids{4, 5}));
}

TEST_F(LiveOldCursor, FetchSingleLeavesOneRow) {
  CursorOf<Number> cursor(&TheSession());
  SelectOrders(cursor);
  cursor.orderby(1, ASCENDING);
  cursor.Open(&TheSession());
  EXPECT_EQ(cursor.FetchSingle(), 1);
  EXPECT_EQ(cursor.record->value, 1);
  EXPECT_EQ(cursor.GetAmount(), 1);
  EXPECT_EQ(cursor.Fetch(), 0);
}

TEST_F(LiveOldCursor, FetchSingleOfNoRowsGivesZero) {
  CursorOf<Number> cursor(&TheSession());
  SelectOrders(cursor);
  cursor.Set("id", 7, 9);
  cursor.Open(&TheSession());
  EXPECT_EQ(cursor.FetchSingle(), 0);
  EXPECT_EQ(cursor.GetAmount(), 0);
}

TEST_F(LiveOldCursor, ResetGoesToTheFirstRow) {
  CursorOf<Number> cursor;
  SelectOrders(cursor);
  cursor.orderby(1, ASCENDING);
  cursor.Open(&TheSession());
  EXPECT_EQ(cursor.Fetch(4), 5);
  EXPECT_EQ(cursor.record->value, 5);
  cursor.Reset();
  EXPECT_EQ(AllIds(cursor), (Ids{1, 2, 3, 4, 5, 6}));
}

TEST_F(LiveOldCursor, SecondOpenKeepsTheRows) {
  CursorOf<Number> cursor;
  SelectOrders(cursor);
  cursor.Open(&TheSession());
  Run("DELETE FROM orders");
  cursor.Open(&TheSession());
  EXPECT_EQ(cursor.GetAmount(), 6);
}

// The older calling names.

class LiveRdbms : public LiveOldCursor {
 protected:
  void CreateTables() override {
    LiveOldCursor::CreateTables();
    Rdbms::SetSession(&TheSession());
  }
  ~LiveRdbms() override { Rdbms::SetSession(nullptr); }
};

TEST_F(LiveRdbms, WalksTheRowsAndHandsOutTheFields) {
  CursorOf<Noted> cursor;
  cursor.Join(kOrders);
  cursor.Project("id");
  cursor.Project("note");
  cursor.orderby("id", ASCENDING);
  Noted wanted;
  ASVStr byName(40);
  EXPECT_EQ(Rdbms::OpenCursor(cursor), 1);
  EXPECT_EQ(Rdbms::CursorBulk(cursor), 6);
  Rows rows;
  for (int next = 1; Rdbms::Fetch(cursor) == next; ++next) {
    Rdbms::GetField(cursor, wanted.id);
    Rdbms::GetField(cursor, byName, "NOTE of the order");
    rows.push_back({wanted.id.getstr().ToString(), byName.IsNull() != 0 ? kNull : Field(byName.getstr().ToString())});
  }
  EXPECT_EQ(Rdbms::CloseCursor(cursor), 1);
  EXPECT_EQ(
      rows,
      (Rows{{"1", "Ada Lovelace"}, {"2", "O'Brien"}, {"3", "50% off"}, {"4", "500"}, {"5", kNull}, {"6", "a\\b"}}));
}

TEST_F(LiveRdbms, UnknownFieldThrowsATextAndTheWalkGoesOn) {
  CursorOf<Number> cursor;
  SelectOrders(cursor);
  Rdbms::OpenCursor(cursor);
  Rdbms::Fetch(cursor);
  ASInt value;
  EXPECT_THROW(Rdbms::GetField(cursor, value, "total"), Str);
  EXPECT_EQ(Rdbms::Fetch(cursor), 2);
}

TEST_F(LiveRdbms, RefusalIsThrownByOpenCursor) {
  CursorOf<Number> cursor;
  cursor.Join("missing");
  EXPECT_THROW(Rdbms::OpenCursor(cursor), AException);
}

// A record of its own with columns of all kinds.

struct Kinds : ASDomain {
  static constexpr char const* kTable =
      "CREATE TABLE kinds (a INT, b BIGINT, c DOUBLE, d DECIMAL(10,2), e DATETIME, f VARCHAR(10), g VARCHAR(10), "
      "h CHAR(36), i VARBINARY(10), j LONGBLOB, k GEOMETRY)";
  static constexpr char const* kRow =
      "INSERT INTO kinds VALUES (-7, 9007199254740993, 2.5, 12.34, '2004-07-01 13:45:00', 'fixed', 'O\\'Brien', "
      "'6f9619ff-8b86-d011-b42d-00c04fc964ff', X'00FF27', X'0001020327', ST_GeomFromText('POINT(1 2)'))";

  ASInt a{};
  ASInt64 b;
  ASDouble c;
  ASDCurrency d;
  ASTime e;
  ASStr f{10};
  ASVStr g{10};
  ASGuid h;
  ASBlob i{10};
  ASRealBlob j{0};
  ASGeometry k{100};
  ASAttribute aColumn{"a"}, bColumn{"b"}, cColumn{"c"}, dColumn{"d"}, eColumn{"e"}, fColumn{"f"}, gColumn{"g"},
      hColumn{"h"}, iColumn{"i"}, jColumn{"j"}, kColumn{"k"};

  Kinds() : ASDomain("kinds", "Kinds") {
    Add(aColumn, a).Add(bColumn, b).Add(cColumn, c).Add(dColumn, d).Add(eColumn, e).Add(fColumn, f);
    Add(gColumn, g).Add(hColumn, h).Add(iColumn, i).Add(jColumn, j).Add(kColumn, k);
  }
  Kinds(Kinds const&) = delete;
  Kinds& operator=(Kinds const&) = delete;

  // The values; those of binary columns by their bytes.
  Row Fields() const {
    return {a.getstr().ToString(),
            b.getstr().ToString(),
            c.getstr().ToString(),
            d.getstr().ToString(),
            e.getstr().ToString(),
            f.getstr().ToString(),
            g.getstr().ToString(),
            h.getstr().ToString(),
            std::string(reinterpret_cast<char const*>(i.Bytes()), i.Length()),
            std::string(static_cast<char const*>(j.voidptr()), j.Length()),
            std::to_string(k.Length())};
  }
  // Of every column whether it is NULL.
  std::vector<int> Nulls() const {
    std::vector<int> nulls;
    for (ASAttribute const* const column : *this) nulls.push_back(column->Data()->IsNull() != 0 ? 1 : 0);
    return nulls;
  }
};

class LiveOldCursorRecord : public LiveTest {
 protected:
  void CreateTables() override {
    Run(Kinds::kTable);
    Run(Kinds::kRow);
    Run("INSERT INTO kinds () VALUES ()");
  }
};

TEST_F(LiveOldCursorRecord, IsReadWithColumnsOfAllKinds) {
  Session session(With());
  CursorOf<Kinds> cursor;
  cursor.Join("kinds");
  cursor.orderby("a", DESCENDING);
  cursor.Open(&session);
  EXPECT_EQ(cursor.Fetch(), 1);
  cursor.record->Trim();
  EXPECT_EQ(cursor.record->Fields(), (Row{"-7", "9007199254740993", "2.5", "12.34", "2004-07-01 13:45:00", "fixed",
                                          "O'Brien", "6f9619ff-8b86-d011-b42d-00c04fc964ff",
                                          std::string("\x00\xFF'", 3), std::string("\x00\x01\x02\x03'", 5), "21"}));
  EXPECT_EQ(cursor.Fetch(), 2);
  EXPECT_THAT(cursor.record->Nulls(), ElementsAre(1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1));
}

TEST_F(LiveOldCursorRecord, IsReplacedByTheNextBeforeItOpens) {
  Session session(With());
  old_cursor cursor;
  cursor.SetRecord(new Number);
  auto* const kinds = new Kinds;
  cursor.SetRecord(kinds);
  cursor.Join("kinds");
  cursor.Set("a", IS_NOT_NULL);
  cursor.Open(&session);
  EXPECT_EQ(cursor.Fetch(), 1);
  EXPECT_EQ(kinds->a, -7);
}

}  // namespace
