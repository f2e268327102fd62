#include <gmock/gmock.h>

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "tests/live/query_test.h"

using corvane::test::ConnectionId;
using corvane::test::Customers;
using corvane::test::Failure;
using corvane::test::FailureOf;
using corvane::test::Field;
using corvane::test::kNull;
using corvane::test::LiveTest;
using corvane::test::Orders;
using corvane::test::QueryTest;
using corvane::test::Rows;
using corvane::test::Session;
using corvane::test::Sql;
using corvane::test::Towns;
using testing::EndsWith;

// Bulk updates and deletes on a real server, read back through another connection.
namespace {

// The failure of a statement that the server refuses, up to the server's own words.
Failure DbError(int number) { return {102, "DB Error " + std::to_string(number) + " ("}; }

// What executing the statement throws.
template <class Statement>
Failure Refused(Statement const& statement, ASSession& session) {
  Failure failure = FailureOf([&] { statement.Execute(&session); });
  EXPECT_THAT(failure.message, EndsWith(") in query\n\b\n" + statement.Query().ToString()));
  failure.message.erase(failure.message.find('(') + 1);
  return failure;
}

// A table that is named by a reserved word.
struct Reserved : ASDomain {
  static constexpr char const* kTable = "CREATE TABLE `order` (id INT, `group` INT)";

  ASInt id, group;
  ASAttribute idColumn{"id", "Id", 0, corvane::kKey};
  ASAttribute groupColumn{"group"};

  Reserved() : ASDomain("order", "Reserved") { Add(idColumn, id).Add(groupColumn, group); }
  Reserved(Reserved const&) = delete;
  Reserved& operator=(Reserved const&) = delete;
};

// Expressions: the row (7, 2, 2.5, 1, '3') is assigned each of them.

struct Numbers : ASDomain {
  static constexpr char const* kTable =
      "CREATE TABLE numbers (a INT, b INT, real_number DOUBLE, wide BIGINT UNSIGNED, text VARCHAR(40))";
  static constexpr char const* kRow = "INSERT INTO numbers VALUES (7, 2, 2.5, 1, '3')";

  ASInt aValue, bValue;
  ASDouble realValue;
  ASInt64 wideValue;
  ASVStr textValue{40};
  ASAttribute a{"a"}, b{"b"}, real{"real_number"}, wide{"wide"}, text{"text"};

  Numbers() : ASDomain("numbers", "Numbers") {
    Add(a, aValue).Add(b, bValue).Add(real, realValue).Add(wide, wideValue).Add(text, textValue);
    aValue = 20;
    realValue = 0.25;
    wideValue.SetNull();
    textValue = "O'Brien";
  }
  Numbers(Numbers const&) = delete;
  Numbers& operator=(Numbers const&) = delete;
};

struct Assigned {
  char const* name;
  ASAttribute Numbers::*target;
  ASExpression (*value)(Numbers const&);
  char const* set;  // of the statement
  Field stored;
};

void PrintTo(Assigned const& row, std::ostream* out) { *out << row.set; }

class LiveExpression : public LiveTest, public testing::WithParamInterface<Assigned> {
 protected:
  void CreateTables() override {
    Run(Numbers::kTable);
    Run(Numbers::kRow);
  }
};

TEST_P(LiveExpression, IsWhatTheServerStores) {
  Session session(With());
  Numbers n;
  ASAttribute const& target = n.*GetParam().target;
  ASUpdater updater(target.Set(GetParam().value(n)));
  updater.Project() << n.a;
  EXPECT_EQ(Sql(updater, {{&n, "n"}}), std::string("UPDATE numbers n SET ") + GetParam().set);
  EXPECT_EQ(updater.Execute(&session), 1U);
  EXPECT_EQ(Stored("SELECT " + target.Name().ToString() + " FROM numbers"), GetParam().stored);
}

using N = Numbers const&;
using E = ASExpression;

INSTANTIATE_TEST_SUITE_P(
    Constants, LiveExpression,
    testing::Values(
        Assigned{"Int", &Numbers::a, [](N) { return E(-5); }, "n.a = '-5'", "-5"},
        Assigned{"Double", &Numbers::real, [](N) { return E(-0.1); }, "n.real_number = '-0.1'", "-0.1"},
        Assigned{"LargeDouble", &Numbers::real, [](N) { return E(1e300); }, "n.real_number = '1e+300'", "1e300"},
        Assigned{"Wide", &Numbers::wide, [](N) { return E(9007199254740993LL); }, "n.wide = '9007199254740993'",
                 "9007199254740993"},
        Assigned{"Widest", &Numbers::wide, [](N) { return E(18446744073709551615ULL); },
                 "n.wide = '18446744073709551615'", "18446744073709551615"},
        Assigned{"Text", &Numbers::text, [](N) { return E("Ada"); }, "n.text = 'Ada'", "Ada"},
        Assigned{"TextWithQuotes", &Numbers::text, [](N) { return E("O'B\\ \"x\" %_"); },
                 R"(n.text = 'O\'B\\ \"x\" %_')", "O'B\\ \"x\" %_"},
        Assigned{"TextThatEndsInABackslash", &Numbers::text, [](N) { return E("x\\"); }, R"(n.text = 'x\\')", "x\\"},
        Assigned{"TextThatIsSql", &Numbers::text, [](N) { return E("', a = '1"); }, R"(n.text = '\', a = \'1')",
                 "', a = '1"},
        Assigned{"TextWithLineBreaksAndNul", &Numbers::text, [](N) { return E(std::string_view("a\r\n\0b\x1a", 6)); },
                 R"(n.text = 'a\r\n\0b\Z')", std::string("a\r\n\0b\x1a", 6)},
        Assigned{"TextInUtf8", &Numbers::text, [](N) { return E(std::string("\xC3\xA4\xE2\x82\xAC")); },
                 "n.text = '\xC3\xA4\xE2\x82\xAC'", "\xC3\xA4\xE2\x82\xAC"},
        Assigned{"EmptyText", &Numbers::text, [](N) { return E(""); }, "n.text = ''", ""},
        Assigned{"BlanksBehind", &Numbers::text, [](N) { return E("x  "); }, "n.text = 'x  '", "x  "},
        Assigned{"NullPointer", &Numbers::text, [](N) { return E(static_cast<char const*>(nullptr)); }, "n.text = NULL",
                 kNull},
        Assigned{"NullValue", &Numbers::wide, [](N n) { return E(n.wideValue); }, "n.wide = NULL", kNull},
        Assigned{"Value", &Numbers::a, [](N n) { return E(n.aValue); }, "n.a = '20'", "20"},
        Assigned{"TextValue", &Numbers::text, [](N n) { return E(n.textValue); }, R"(n.text = 'O\'Brien')", "O'Brien"},
        Assigned{"Column", &Numbers::a, [](N n) { return E(n.b); }, "n.a = n.b", "2"},
        Assigned{"DerivedColumn", &Numbers::text, [](N n) { return E(n.text.InStr("3")); },
                 R"(n.text =  INSTR(n.text, '3'))", "1"}),
    [](auto const& row) { return row.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Operators, LiveExpression,
    testing::Values(
        Assigned{"ColumnPlusInt", &Numbers::a, [](N n) { return n.a + 5; }, "n.a = n.a + '5'", "12"},
        Assigned{"ColumnMinusInt", &Numbers::a, [](N n) { return n.a - 5; }, "n.a = n.a - '5'", "2"},
        Assigned{"ColumnTimesInt", &Numbers::a, [](N n) { return n.a * 5; }, "n.a = n.a * '5'", "35"},
        Assigned{"ColumnByInt", &Numbers::real, [](N n) { return n.a / 2; }, "n.real_number = n.a / '2'", "3.5"},
        Assigned{"ColumnMinusNegativeInt", &Numbers::a, [](N n) { return n.a - -5; }, "n.a = n.a - '-5'", "12"},
        Assigned{"ColumnPlusDouble", &Numbers::real, [](N n) { return n.a + 0.25; }, "n.real_number = n.a + '0.25'",
                 "7.25"},
        Assigned{"ColumnMinusDouble", &Numbers::real, [](N n) { return n.a - 0.25; }, "n.real_number = n.a - '0.25'",
                 "6.75"},
        Assigned{"ColumnTimesDouble", &Numbers::real, [](N n) { return n.a * 1e-2; }, "n.real_number = n.a * '0.01'",
                 "0.07"},
        Assigned{"ColumnByDouble", &Numbers::real, [](N n) { return n.real / 0.5; },
                 "n.real_number = n.real_number / '0.5'", "5"},
        Assigned{"ColumnPlusWide", &Numbers::wide, [](N n) { return n.wide + 4294967296LL; },
                 "n.wide = n.wide + '4294967296'", "4294967297"},
        Assigned{"ColumnTimesWide", &Numbers::wide, [](N n) { return n.b * 4294967296ULL; },
                 "n.wide = n.b * '4294967296'", "8589934592"},
        Assigned{"ColumnPlusText", &Numbers::a, [](N n) { return n.a + "3"; }, "n.a = n.a + '3'", "10"},
        Assigned{"ColumnPlusValue", &Numbers::a, [](N n) { return n.a + n.aValue; }, "n.a = n.a + '20'", "27"},
        Assigned{"ColumnTimesDoubleValue", &Numbers::real, [](N n) { return n.b * n.realValue; },
                 "n.real_number = n.b * '0.25'", "0.5"},
        Assigned{"ColumnPlusNullValue", &Numbers::a, [](N n) { return n.a + n.wideValue; }, "n.a = n.a + NULL", kNull},
        Assigned{"ColumnTimesNullPointer", &Numbers::a, [](N n) { return n.a * static_cast<char const*>(nullptr); },
                 "n.a = n.a * NULL", kNull},
        Assigned{"ColumnPlusColumn", &Numbers::a, [](N n) { return n.a + n.b; }, "n.a = n.a + n.b", "9"},
        Assigned{"ColumnMinusColumn", &Numbers::a, [](N n) { return n.a - n.b; }, "n.a = n.a - n.b", "5"},
        Assigned{"ColumnTimesColumn", &Numbers::a, [](N n) { return n.a * n.b; }, "n.a = n.a * n.b", "14"},
        Assigned{"ColumnByColumn", &Numbers::real, [](N n) { return n.a / n.b; }, "n.real_number = n.a / n.b", "3.5"},
        Assigned{"ColumnPlusTextColumn", &Numbers::a, [](N n) { return n.a + n.text; }, "n.a = n.a + n.text", "10"},
        Assigned{"DerivedColumnPlusInt", &Numbers::a, [](N n) { return n.b.Abs() + 1; }, "n.a =  ABS(n.b) + '1'", "3"},
        Assigned{"IntMinusColumn", &Numbers::a, [](N n) { return E(10) - n.a; }, "n.a = '10' - n.a", "3"},
        Assigned{"DoubleTimesColumn", &Numbers::real, [](N n) { return E(0.5) * n.a; }, "n.real_number = '0.5' * n.a",
                 "3.5"},
        Assigned{"IntByInt", &Numbers::real, [](N) { return E(1) / 8; }, "n.real_number = '1' / '8'", "0.125"}),
    [](auto const& row) { return row.param.name; });

// The server's precedence holds, whatever the parentheses of the program.
INSTANTIATE_TEST_SUITE_P(
    Precedence, LiveExpression,
    testing::Values(
        Assigned{"SumTimesColumn", &Numbers::a, [](N n) { return (n.a + n.b) * n.b; }, "n.a = n.a + n.b * n.b", "11"},
        Assigned{"ColumnTimesSum", &Numbers::a, [](N n) { return n.b * (n.a + n.b); }, "n.a = n.b * n.a + n.b", "16"},
        Assigned{"SumTimesInt", &Numbers::a, [](N n) { return (n.a + 1) * n.b; }, "n.a = n.a + '1' * n.b", "9"},
        Assigned{"ColumnMinusDifference", &Numbers::a, [](N n) { return n.a - (n.b - 1); }, "n.a = n.a - n.b - '1'",
                 "4"},
        Assigned{"ColumnByProduct", &Numbers::a, [](N n) { return n.a / (n.b * 4); }, "n.a = n.a / n.b * '4'", "14"},
        Assigned{"ColumnByDifference", &Numbers::real, [](N n) { return n.a / (n.b - 3); },
                 "n.real_number = n.a / n.b - '3'", "0.5"},
        Assigned{"SumAndProduct", &Numbers::a, [](N n) { return n.a + n.b * 10; }, "n.a = n.a + n.b * '10'", "27"},
        Assigned{"AllFour", &Numbers::real, [](N n) { return n.a + n.b * 3 - n.a / 2; },
                 "n.real_number = n.a + n.b * '3' - n.a / '2'", "9.5"}),
    [](auto const& row) { return row.param.name; });

// The fixture of both kinds of statements: the orders that are left, and what they hold.
class Bulk : public QueryTest {
 protected:
  std::string OrderIds() {
    std::string ids;
    for (auto const& row : StoredRows("SELECT id FROM orders ORDER BY id")) ids += row.at(0).value();
    return ids;
  }
  Rows StoredOrders(std::string const& column) {
    return StoredRows("SELECT id, " + column + " FROM orders ORDER BY id");
  }

  // Makes the customers parents of the orders.
  void TieOrdersToCustomers() {
    Run("DELETE FROM orders WHERE id=6");
    Run("ALTER TABLE orders ADD FOREIGN KEY (customer_id) REFERENCES customers (id)");
  }

  Orders o, other;
  Customers c;
  Reserved reserved;
};

// Updates.

using LiveUpdater = Bulk;

TEST_F(LiveUpdater, ChangesTheRowsOfTheCondition) {
  ASUpdater updater(o.noteColumn.Set("cheap"));
  updater.Where(o.totalColumn < 10);
  EXPECT_EQ(Sql(updater, {{&o, "o"}}), "UPDATE orders o SET o.note = 'cheap' WHERE o.total<10");
  EXPECT_EQ(updater.Execute(&TheSession()), 2U);
  EXPECT_EQ(
      StoredOrders("note"),
      (Rows{{"1", "Ada Lovelace"}, {"2", "cheap"}, {"3", "50% off"}, {"4", "500"}, {"5", kNull}, {"6", "cheap"}}));
}

TEST_F(LiveUpdater, CountsOnlyTheRowsThatWereChanged) {
  ASUpdater updater(o.totalColumn.Set(30));
  updater.Where(o.idColumn <= 4);
  EXPECT_EQ(updater.Execute(&TheSession()), 2U);
  EXPECT_EQ(TheSession().RowsAffected(), 2U);
  EXPECT_EQ(updater.Execute(&TheSession()), 0U);
}

TEST_F(LiveUpdater, ConditionThatNoRowMeetsChangesNothing) {
  ASUpdater updater(o.totalColumn.Set(0));
  updater.Where(o.idColumn == 99);
  EXPECT_EQ(updater.Execute(&TheSession()), 0U);
}

TEST_F(LiveUpdater, AssignsSeveralColumns) {
  ASUpdater updater(o.totalColumn.Set(o.totalColumn * 2));
  updater << o.noteColumn.Set("it's new") << o.customerColumn.Set(static_cast<char const*>(nullptr));
  updater.Where(o.idColumn == 1);
  EXPECT_EQ(Sql(updater, {{&o, "o"}}),
            "UPDATE orders o SET o.total = o.total * '2', o.note = 'it\\'s new', o.customer_id = NULL WHERE o.id=1");
  EXPECT_EQ(updater.Execute(&TheSession()), 1U);
  EXPECT_EQ(StoredRows("SELECT * FROM orders WHERE id=1"), (Rows{{"1", kNull, "20", "it's new"}}));
}

TEST_F(LiveUpdater, AssignsFromAnotherTable) {
  ASUpdater updater(o.noteColumn.Set(c.nameColumn));
  updater.Where(o.customerColumn == c.idColumn);
  EXPECT_EQ(Sql(updater, {{&o, "o"}, {&c, "c"}}),
            "UPDATE orders o, customers c SET o.note = c.name WHERE o.customer_id=(c.id)");
  EXPECT_EQ(updater.Execute(&TheSession()), 4U);
  EXPECT_EQ(StoredOrders("note"),
            (Rows{{"1", "Ada"}, {"2", "Ada"}, {"3", "O'Brien"}, {"4", "500"}, {"5", "50!%"}, {"6", "a\\b"}}));
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM customers WHERE name='Ada'"), "1");
}

TEST_F(LiveUpdater, AssignsFromAnotherRowOfTheSameTable) {
  ASUpdater updater(o.totalColumn.Set(o.totalColumn + other.totalColumn));
  updater.Where(o.idColumn == 1 && other.idColumn == 3);
  EXPECT_EQ(Sql(updater, {{&o, "o"}, {&other, "p"}}),
            "UPDATE orders o, orders p SET o.total = o.total + p.total WHERE (o.id=1) AND (p.id=3)");
  EXPECT_EQ(updater.Execute(&TheSession()), 1U);
  EXPECT_EQ(Stored("SELECT GROUP_CONCAT(total ORDER BY id) FROM orders"), "40,-5,30,30,0");
}

TEST_F(LiveUpdater, OuterJoinAssignsNullWhereThereIsNoPartner) {
  ASUpdater updater(o.noteColumn.Set(c.nameColumn));
  updater.Where(o.totalColumn >= 0 && ++c.idColumn == o.customerColumn);
  EXPECT_EQ(Sql(updater, {{&o, "o"}, {&c, "c"}}),
            "UPDATE orders o LEFT JOIN customers c ON (c.id=(o.customer_id)) SET o.note = c.name WHERE o.total>=0");
  EXPECT_EQ(updater.Execute(&TheSession()), 4U);
  EXPECT_EQ(StoredOrders("note"),
            (Rows{{"1", "Ada"}, {"2", "O'Brien"}, {"3", "O'Brien"}, {"4", kNull}, {"5", kNull}, {"6", kNull}}));
}

TEST_F(LiveUpdater, OuterJoinFindsTheRowsWithoutAPartner) {
  ASUpdater updater(o.noteColumn.Set("nobody's"));
  updater.Where(c.idColumn.IsNull() && ++c.idColumn == o.customerColumn);
  updater.Project() << o.idColumn;
  EXPECT_EQ(Sql(updater, {{&o, "o"}, {&c, "c"}}),
            "UPDATE orders o LEFT JOIN customers c ON (c.id=(o.customer_id)) SET o.note = 'nobody\\'s' "
            "WHERE c.id IS NULL");
  EXPECT_EQ(updater.Execute(&TheSession()), 2U);
  EXPECT_EQ(Stored("SELECT GROUP_CONCAT(id ORDER BY id) FROM orders WHERE note='nobody\\'s'"), "4,6");
}

TEST_F(LiveUpdater, OuterJoinOfTheLastOfTwoTablesIsAccepted) {
  ASUpdater updater(o.noteColumn.Set("x"));
  updater.Where(other.idColumn == 1 && o.idColumn == 2 && ++c.idColumn == o.customerColumn);
  EXPECT_EQ(Sql(updater, {{&o, "o"}, {&other, "p"}, {&c, "c"}}),
            "UPDATE orders p, orders o LEFT JOIN customers c ON (c.id=(o.customer_id)) SET o.note = 'x' "
            "WHERE (p.id=1) AND (o.id=2)");
  EXPECT_EQ(updater.Execute(&TheSession()), 1U);
}

TEST_F(LiveUpdater, OuterJoinOfAnotherTableThanTheLastIsRefused) {
  ASUpdater updater(o.noteColumn.Set("x"));
  updater.Where(o.idColumn == 2 && other.idColumn == 1 && ++c.idColumn == o.customerColumn);
  EXPECT_EQ(Refused(updater, TheSession()), DbError(1054));
}

TEST_F(LiveUpdater, WithoutATableIsRefused) {
  ASUpdater const updater(o.noteColumn.Set("x"));
  EXPECT_EQ(Sql(updater, {{&o, "o"}}), "UPDATE  SET o.note = 'x'");
  EXPECT_EQ(Refused(updater, TheSession()), DbError(1064));
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM orders WHERE note='x'"), "0");
}

TEST_F(LiveUpdater, WithANegationAloneIsRefused) {
  ASUpdater updater(o.noteColumn.Set("x"));
  updater.Where(!(o.totalColumn == 30));
  EXPECT_EQ(Refused(updater, TheSession()), DbError(1064));
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM orders WHERE note='x'"), "0");
}

TEST_F(LiveUpdater, WithoutAConditionChangesEveryRowOfTheProjectedTable) {
  ASUpdater updater(o.noteColumn.Set("x"));
  updater.Project() << o.idColumn;
  EXPECT_EQ(Sql(updater, {{&o, "o"}}), "UPDATE orders o SET o.note = 'x'");
  EXPECT_EQ(updater.Execute(&TheSession()), 6U);
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM orders WHERE note='x'"), "6");
}

TEST_F(LiveUpdater, NegationWithTheProjectedTableHolds) {
  ASUpdater updater(o.noteColumn.Set("x"));
  updater.Where(!(o.totalColumn == 30));
  updater.Project() << o.idColumn;
  EXPECT_EQ(updater.Execute(&TheSession()), 3U);
  EXPECT_EQ(Stored("SELECT GROUP_CONCAT(id ORDER BY id) FROM orders WHERE note='x'"), "1,2,6");
}

TEST_F(LiveUpdater, ColumnOfATableThatIsNotNamedIsRefused) {
  ASUpdater updater(o.noteColumn.Set("x"));
  updater.Where(c.idColumn == 1);
  EXPECT_EQ(Refused(updater, TheSession()), DbError(1054));
}

TEST_F(LiveUpdater, OnlyConditionTablesAndJoinsCountOfTheFilter) {
  ASUpdater updater(o.noteColumn.Set("x"));
  corvane::test::Aggregate const sum(o.totalColumn.Sum());
  updater.DistinctProject() << o.customerColumn;
  updater.Where(o.idColumn == 1);
  updater.Having(*sum > 5);
  updater.GroupBy() << o.customerColumn;
  updater.Hint("x");
  EXPECT_EQ(Sql(updater, {{&o, "o"}}), "UPDATE orders o SET o.note = 'x' WHERE o.id=1");
  EXPECT_EQ(updater.Execute(&TheSession()), 1U);
}

TEST_F(LiveUpdater, ReservedWordAsTheTableIsRefusedBare) {
  Run(Reserved::kTable);
  ASUpdater updater(reserved.groupColumn.Set(1));
  updater.Where(reserved.idColumn == 1);
  EXPECT_EQ(Sql(updater, {{&reserved, "r"}}), "UPDATE order r SET r.group = '1' WHERE r.id=1");
  EXPECT_EQ(Refused(updater, TheSession()), DbError(1064));
}

TEST_F(LiveUpdater, ReservedWordAsTheTableIsAcceptedWithKeywords) {
  Run(Reserved::kTable);
  Run("INSERT INTO `order` VALUES (1, 5), (2, 6)");
  ASUpdater updater(reserved.groupColumn.Set(reserved.groupColumn + 1));
  updater.Where(reserved.idColumn == 1);
  updater.Project().setKW(TheSession().getKWPrefix(), TheSession().getKWSuffix());
  EXPECT_EQ(Sql(updater, {{&reserved, "r"}}), "UPDATE `order` r SET r.group = r.group + '1' WHERE r.id=1");
  EXPECT_EQ(updater.Execute(&TheSession()), 1U);
  EXPECT_EQ(StoredRows("SELECT * FROM `order` ORDER BY id"), (Rows{{"1", "6"}, {"2", "6"}}));
}

TEST_F(LiveUpdater, TableOfAnotherSchemaIsChanged) {
  Towns towns(Schema());
  Session elsewhere(With({{"Database", ""}}));
  ASUpdater updater(towns.nameColumn.Set("Pisa"));
  updater.Where(towns.customerColumn == 2);
  EXPECT_EQ(updater.Execute(&elsewhere), 1U);
  updater.Where(towns.customerColumn == 1);
  updater.Project().setKW(elsewhere.getKWPrefix(), elsewhere.getKWSuffix());
  EXPECT_EQ(updater.Execute(&elsewhere), 1U);
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM towns WHERE name='Pisa'"), "2");
}

TEST_F(LiveUpdater, ValueThatTheColumnCannotHoldIsRefused) {
  ASUpdater updater(o.totalColumn.Set("many"));
  updater.Where(o.idColumn == 1);
  TheSession().Execute("SET SESSION sql_mode='STRICT_ALL_TABLES'");
  EXPECT_EQ(Refused(updater, TheSession()), DbError(1366));
  EXPECT_EQ(Stored("SELECT total FROM orders WHERE id=1"), "10");
}

TEST_F(LiveUpdater, ForeignKeyThatIsViolatedIsRefused) {
  TieOrdersToCustomers();
  ASUpdater ofChild(o.customerColumn.Set(99));
  ofChild.Where(o.idColumn == 1);
  EXPECT_EQ(Refused(ofChild, TheSession()), DbError(1452));
  ASUpdater ofParent(c.idColumn.Set(99));
  ofParent.Where(c.idColumn == 1);
  EXPECT_EQ(Refused(ofParent, TheSession()), DbError(1451));
  EXPECT_EQ(Stored("SELECT GROUP_CONCAT(id ORDER BY id) FROM customers"), "1,2,3,4,5");
}

TEST_F(LiveUpdater, IsRolledBack) {
  Session session(WithTransactions());
  ASUpdater updater(o.totalColumn.Set(1));
  updater.Where(o.idColumn <= 3);
  EXPECT_EQ(updater.Execute(&session), 3U);
  session.Rollback();
  session.Commit();
  EXPECT_EQ(Stored("SELECT GROUP_CONCAT(total ORDER BY id) FROM orders"), "10,-5,30,30,0");
}

TEST_F(LiveUpdater, IsStoredByCommitAlone) {
  Session session(WithTransactions());
  ASUpdater updater(o.totalColumn.Set(1));
  updater.Where(o.idColumn <= 3);
  updater.Execute(&session);
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM orders WHERE total=1"), "0");
  session.Commit();
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM orders WHERE total=1"), "3");
}

TEST_F(LiveUpdater, LostConnectionIsReopenedWithAutocommitOn) {
  Kill(ConnectionId(TheSession()));
  ASUpdater updater(o.totalColumn.Set(o.totalColumn + 1));
  updater.Where(o.idColumn == 1);
  EXPECT_EQ(updater.Execute(&TheSession()), 1U);
  EXPECT_EQ(Stored("SELECT total FROM orders WHERE id=1"), "11");
}

TEST_F(LiveUpdater, LostConnectionInATransactionThrows) {
  Session session(WithTransactions());
  ASUpdater updater(o.totalColumn.Set(1));
  updater.Where(o.idColumn == 1);
  updater.Execute(&session);
  Kill(ConnectionId(session));
  EXPECT_EQ(FailureOf([&] { updater.Execute(&session); }),
            (Failure{102, "DB Error 0 () in query\n\b\n" + updater.Query().ToString()}));
  session.Commit();
  EXPECT_EQ(Stored("SELECT total FROM orders WHERE id=1"), "10");
}

// Deletes.

using LiveDeleter = Bulk;

TEST_F(LiveDeleter, DeletesTheRowsOfTheCondition) {
  ASDeleter deleter(o);
  deleter.Where(o.totalColumn < 10 || o.noteColumn == "500");
  EXPECT_EQ(Sql(deleter, {{&o, "o"}}), "DELETE FROM o USING orders o WHERE (o.total<10) OR (o.note='500')");
  EXPECT_EQ(deleter.Execute(&TheSession()), 3U);
  EXPECT_EQ(TheSession().RowsAffected(), 3U);
  EXPECT_EQ(OrderIds(), "135");
  EXPECT_EQ(deleter.Execute(&TheSession()), 0U);
}

TEST_F(LiveDeleter, TextWithQuotesIsFound) {
  ASDeleter deleter(o);
  deleter.Where(o.noteColumn == "O'Brien" || o.noteColumn == "a\\b");
  EXPECT_EQ(deleter.Execute(&TheSession()), 2U);
  EXPECT_EQ(OrderIds(), "1345");
}

TEST_F(LiveDeleter, DeletesOfItsOwnTableAlone) {
  ASDeleter deleter(o);
  deleter.Where(o.customerColumn == c.idColumn && c.nameColumn == "Ada");
  EXPECT_EQ(Sql(deleter, {{&o, "o"}, {&c, "c"}}),
            "DELETE FROM o USING orders o, customers c WHERE (o.customer_id=(c.id)) AND (c.name='Ada')");
  EXPECT_EQ(deleter.Execute(&TheSession()), 2U);
  EXPECT_EQ(OrderIds(), "3456");
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM customers"), "5");
}

TEST_F(LiveDeleter, DeletesOfTheSecondOfTwoTables) {
  ASDeleter deleter(c);
  deleter.Where(o.customerColumn == c.idColumn && o.totalColumn == 30);
  EXPECT_EQ(deleter.Execute(&TheSession()), 1U);
  EXPECT_EQ(Stored("SELECT GROUP_CONCAT(id ORDER BY id) FROM customers"), "1,3,4,5");
  EXPECT_EQ(OrderIds(), "123456");
}

TEST_F(LiveDeleter, DeletesDuplicatesOfTheSameTable) {
  ASDeleter deleter(other);
  deleter.Where(o.totalColumn == other.totalColumn && o.idColumn < other.idColumn);
  EXPECT_EQ(deleter.Execute(&TheSession()), 1U);
  EXPECT_EQ(OrderIds(), "12356");
}

TEST_F(LiveDeleter, OuterJoinFindsTheRowsWithoutAPartner) {
  ASDeleter deleter(o);
  deleter.Where(c.idColumn.IsNull() && ++c.idColumn == o.customerColumn);
  deleter.Project() << o.idColumn;
  EXPECT_EQ(Sql(deleter, {{&o, "o"}, {&c, "c"}}),
            "DELETE FROM o USING orders o LEFT JOIN customers c ON (c.id=(o.customer_id)) WHERE c.id IS NULL");
  EXPECT_EQ(deleter.Execute(&TheSession()), 2U);
  EXPECT_EQ(OrderIds(), "1235");
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM customers"), "5");
}

TEST_F(LiveDeleter, OuterJoinOfAnotherTableThanTheLastIsRefused) {
  ASDeleter deleter(o);
  deleter.Where(o.idColumn == 2 && other.idColumn == 1 && ++c.idColumn == o.customerColumn);
  EXPECT_EQ(Refused(deleter, TheSession()), DbError(1054));
  EXPECT_EQ(OrderIds(), "123456");
}

TEST_F(LiveDeleter, OuterJoinAloneIsRefused) {
  ASDeleter deleter(o);
  deleter.Where(++c.idColumn == o.customerColumn);
  EXPECT_EQ(Refused(deleter, TheSession()), DbError(1064));
  EXPECT_EQ(OrderIds(), "123456");
}

TEST_F(LiveDeleter, ConditionThatNamesOnlyOtherTablesIsRefused) {
  ASDeleter deleter(o);
  deleter.Where(c.idColumn == 1);
  EXPECT_EQ(Sql(deleter, {{&o, "o"}, {&c, "c"}}), "DELETE FROM o USING customers c WHERE c.id=1");
  EXPECT_EQ(Refused(deleter, TheSession()), DbError(1109));
  EXPECT_EQ(OrderIds(), "123456");
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM customers"), "5");
}

TEST_F(LiveDeleter, OnlyConditionTablesAndJoinsCountOfTheFilter) {
  ASDeleter deleter(o);
  corvane::test::Aggregate const sum(o.totalColumn.Sum());
  deleter.DistinctProject() << o.customerColumn;
  deleter.Where(o.idColumn == 1);
  deleter.Having(*sum > 5);
  deleter.GroupBy() << o.customerColumn;
  deleter.Hint("x");
  EXPECT_EQ(Sql(deleter, {{&o, "o"}}), "DELETE FROM o USING orders o WHERE o.id=1");
  EXPECT_EQ(deleter.Execute(&TheSession()), 1U);
  EXPECT_EQ(OrderIds(), "23456");
}

TEST_F(LiveDeleter, ReservedWordAsTheTableIsRefusedBare) {
  Run(Reserved::kTable);
  Run("INSERT INTO `order` VALUES (1, 5), (2, 6)");
  ASDeleter deleter(reserved);
  EXPECT_EQ(Refused(deleter, TheSession()), DbError(1064));
  deleter.Where(reserved.groupColumn == 5);
  EXPECT_EQ(Sql(deleter, {{&reserved, "r"}}), "DELETE FROM r USING order r WHERE r.group=5");
  EXPECT_EQ(Refused(deleter, TheSession()), DbError(1064));
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM `order`"), "2");
}

TEST_F(LiveDeleter, ReservedWordAsTheTableIsAcceptedWithKeywords) {
  Run(Reserved::kTable);
  Run("INSERT INTO `order` VALUES (1, 5), (2, 6)");
  ASDeleter deleter(reserved);
  deleter.Where(reserved.groupColumn == 5);
  deleter.Project().setKW(TheSession().getKWPrefix(), TheSession().getKWSuffix());
  EXPECT_EQ(Sql(deleter, {{&reserved, "r"}}), "DELETE FROM r USING `order` r WHERE r.group=5");
  EXPECT_EQ(deleter.Execute(&TheSession()), 1U);
  EXPECT_EQ(StoredRows("SELECT * FROM `order`"), (Rows{{"2", "6"}}));
}

TEST_F(LiveDeleter, KeywordsAreNotWrittenWhenEveryRowGoes) {
  Run(Reserved::kTable);
  ASDeleter deleter(reserved);
  deleter.Project().setKW(TheSession().getKWPrefix(), TheSession().getKWSuffix());
  EXPECT_EQ(Sql(deleter, {{&reserved, "r"}}), "DELETE FROM r USING order r");
  EXPECT_EQ(Refused(deleter, TheSession()), DbError(1064));
}

TEST_F(LiveDeleter, RowsOfAnotherSchemaAreDeleted) {
  Towns towns(Schema());
  Session elsewhere(With({{"Database", "mysql"}}));
  ASDeleter deleter(towns);
  deleter.Where(towns.customerColumn == 2);
  EXPECT_EQ(deleter.Execute(&elsewhere), 1U);
  deleter.Where(towns.customerColumn == 9);
  deleter.Project().setKW(elsewhere.getKWPrefix(), elsewhere.getKWSuffix());
  EXPECT_EQ(deleter.Execute(&elsewhere), 1U);
  EXPECT_EQ(Stored("SELECT GROUP_CONCAT(customer_id) FROM towns"), "1");
  EXPECT_EQ(ASDeleter(towns).Execute(&elsewhere), 1U);
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM towns"), "0");
}

TEST_F(LiveDeleter, ParentRowIsRefused) {
  TieOrdersToCustomers();
  ASDeleter deleter(c);
  deleter.Where(c.idColumn == 1);
  EXPECT_EQ(Refused(deleter, TheSession()), DbError(1451));
  EXPECT_EQ(Refused(ASDeleter(c), TheSession()), DbError(1451));
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM customers"), "5");
}

TEST_F(LiveDeleter, ForeignKeyRefusalOfTheOlderKindHasANumberOfItsOwn) {
  Run("CREATE TRIGGER refuse BEFORE DELETE ON orders FOR EACH ROW "
      "SIGNAL SQLSTATE '23000' SET MYSQL_ERRNO=1217, MESSAGE_TEXT='Cannot delete'");
  ASDeleter deleter(o);
  deleter.Where(o.idColumn == 1);
  EXPECT_EQ(FailureOf([&] { deleter.Execute(&TheSession()); }),
            (Failure{100, "DB Error 1217 (Cannot delete) in query\n\b\n" + deleter.Query().ToString()}));
  EXPECT_EQ(OrderIds(), "123456");
}

TEST_F(LiveDeleter, IsRolledBack) {
  Session session(WithTransactions());
  EXPECT_EQ(ASDeleter(o).Execute(&session), 6U);
  session.Rollback();
  session.Commit();
  EXPECT_EQ(OrderIds(), "123456");
}

TEST_F(LiveDeleter, IsStoredByCommitAlone) {
  Session session(WithTransactions());
  ASDeleter deleter(o);
  deleter.Where(o.idColumn <= 3);
  EXPECT_EQ(deleter.Execute(&session), 3U);
  EXPECT_EQ(OrderIds(), "123456");
  session.Commit();
  EXPECT_EQ(OrderIds(), "456");
}

TEST_F(LiveDeleter, LostConnectionIsReopenedWithAutocommitOn) {
  Kill(ConnectionId(TheSession()));
  ASDeleter deleter(o);
  deleter.Where(o.idColumn == 1);
  EXPECT_EQ(deleter.Execute(&TheSession()), 1U);
  EXPECT_EQ(OrderIds(), "23456");
}

// Conditions that name no record: alone they delete every row, and with the record they hold.

struct Nameless {
  char const* name;
  ASComparison (*condition)(Orders const&, Customers const&);
  std::string left;  // where the condition holds
};

void PrintTo(Nameless const& row, std::ostream* out) { *out << row.name; }

// The customers of an order, correlated with the orders outside.
ASFilter CustomersOf(Orders const& o, Customers const& c) {
  ASFilter filter;
  filter.Project() << c.idColumn;
  filter.Where(c.idColumn.In(o.customerColumn));
  return filter;
}

// The comparison of two values.
ASComparison Compared(int left, int right) {
  ASInt leftValue, rightValue;
  leftValue = left;
  rightValue = right;
  return leftValue.EQ(rightValue);
}

class LiveDeleterWithoutARecord : public Bulk, public testing::WithParamInterface<Nameless> {
 protected:
  ASComparison Condition() const { return GetParam().condition(o, c); }
};

TEST_P(LiveDeleterWithoutARecord, DeletesEveryRow) {
  ASDeleter deleter(o);
  deleter.Where(Condition());
  EXPECT_EQ(Sql(deleter, {{&o, "o"}}), "DELETE FROM o USING orders o");
  EXPECT_EQ(deleter.Execute(&TheSession()), 6U);
  EXPECT_EQ(OrderIds(), "");
}

TEST_P(LiveDeleterWithoutARecord, HoldsBehindAConditionThatNamesIt) {
  ASDeleter deleter(o);
  deleter.Where(o.idColumn.IsNotNull() && Condition());
  EXPECT_EQ(deleter.Execute(&TheSession()), 6U - GetParam().left.size());
  EXPECT_EQ(OrderIds(), GetParam().left);
}

TEST_P(LiveDeleterWithoutARecord, HoldsWithAProjectedColumn) {
  ASDeleter deleter(o);
  deleter.Where(Condition());
  deleter.Project() << o.idColumn;
  EXPECT_EQ(deleter.Execute(&TheSession()), 6U - GetParam().left.size());
  EXPECT_EQ(OrderIds(), GetParam().left);
}

using O = Orders const&;
using C = Customers const&;

INSTANTIATE_TEST_SUITE_P(
    Kinds, LiveDeleterWithoutARecord,
    testing::Values(
        Nameless{"Negation", [](O o, C) { return !(o.totalColumn == 30); }, "345"},
        Nameless{"NegationOfAnAnd", [](O o, C) { return !(o.totalColumn == 30 && o.idColumn == 3); }, "3"},
        Nameless{"DoubleNegation", [](O o, C) { return !!(o.totalColumn == 30); }, "1256"},
        Nameless{"Exists", [](O o, C c) { return CustomersOf(o, c).Exists(); }, "46"},
        Nameless{"NotExists", [](O o, C c) { return CustomersOf(o, c).NotExists(); }, "1235"},
        Nameless{"Upper", [](O o, C) { return o.noteColumn.Upper() == "ADA LOVELACE"; }, "23456"},
        Nameless{"Lower", [](O o, C) { return o.noteColumn.Lower() == "o'brien"; }, "13456"},
        Nameless{"Abs", [](O o, C) { return o.totalColumn.Abs() == 5; }, "13456"},
        Nameless{"InStr", [](O o, C) { return o.noteColumn.InStr("50") > 0; }, "1256"},
        Nameless{"DerivedIsNull", [](O o, C) { return o.noteColumn.Upper().IsNull(); }, "12346"},
        Nameless{"ColumnWithoutRecord", [](O, C) { return ASAttribute("total") == 30; }, "1256"},
        Nameless{"ColumnWithoutRecordLike", [](O, C) { return ASAttribute("note").Like("A%"); }, "23456"},
        Nameless{"ValuesThatDiffer", [](O, C) { return Compared(1, 2); }, "123456"},
        Nameless{"AndOfThese", [](O o, C c) { return !(o.totalColumn == 30) && CustomersOf(o, c).Exists(); }, "3456"},
        Nameless{"OrOfThese", [](O o, C) { return o.noteColumn.Upper() == "500" || Compared(1, 2); }, "12356"},
        Nameless{"AndWithValuesThatAreEqual", [](O, C) { return ASAttribute("total") == 30 && Compared(1, 1); },
                 "1256"}),
    [](auto const& row) { return row.param.name; });

TEST_F(LiveDeleter, WithoutAConditionDeletesEveryRow) {
  ASDeleter const deleter(o);
  EXPECT_EQ(Sql(deleter, {{&o, "o"}}), "DELETE FROM o USING orders o");
  EXPECT_EQ(deleter.Execute(&TheSession()), 6U);
  EXPECT_EQ(OrderIds(), "");
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM customers"), "5");
}

TEST_F(LiveDeleter, NegationBeforeAConditionThatNamesTheRecordHolds) {
  ASDeleter deleter(o);
  deleter.Where(!(o.totalColumn == 30) && o.idColumn.IsNotNull());
  EXPECT_EQ(deleter.Execute(&TheSession()), 3U);
  EXPECT_EQ(OrderIds(), "345");
}

TEST_F(LiveDeleter, WithAProjectedColumnAndNoConditionDeletesEveryRow) {
  ASDeleter deleter(o);
  deleter.Project() << o.idColumn;
  EXPECT_EQ(deleter.Execute(&TheSession()), 6U);
  EXPECT_EQ(OrderIds(), "");
}

}  // namespace
