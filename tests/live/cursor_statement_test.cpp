#include <gmock/gmock.h>
#include <mysql.h>

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "tests/support/live.h"

using corvane::test::ConnectionId;
using corvane::test::Failure;
using corvane::test::FailureOf;
using corvane::test::FetchedValue;
using corvane::test::Field;
using corvane::test::Item;
using corvane::test::ItemTest;
using corvane::test::Row;
using corvane::test::Rows;
using corvane::test::Session;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::IsSupersetOf;
using ::testing::StartsWith;

// Raw texts run by a cursor.

namespace {

constexpr char const* kNoResult = "MySQL fetch error. ";
constexpr char const* kFailed = "Raw statement has failed, it is not run again. ";

// A column of the cursor: of those that the cursor made itself, or of a record.
ASAttribute const& Column(ASCursor& cursor, std::size_t number) {
  auto item = cursor.Project().Items().begin();
  std::advance(item, number);
  return dynamic_cast<ASAttribute const&>(**item);
}

ASData& Value(ASCursor& cursor, std::size_t number) { return *Column(cursor, number).Data(); }

std::vector<std::string> Names(ASCursor& cursor) {
  std::vector<std::string> names;
  for (std::size_t i = 0; i < cursor.Project().Items().size(); ++i) {
    names.push_back(Column(cursor, i).Name().ToString());
  }
  return names;
}

// The rows from the current one on, without the blanks behind texts.
Rows TrimmedRows(ASCursor& cursor) {
  Rows rows;
  while (cursor.Fetch()) {
    rows.emplace_back();
    for (ASSimpleAttribute const* const item : cursor.Project().Items()) {
      ASData& value = *item->Data();
      value.Trim();
      rows.back().push_back(value.IsNull() != 0 ? Field() : Field(value.getstr().ToString()));
    }
  }
  return rows;
}

class CursorStatement : public ItemTest {
 protected:
  void CreateTables() override {
    ItemTest::CreateTables();
    Run("INSERT INTO item VALUES (1, 'one'), (2, 'two'), (3, 'three')");
    // Each call of noted() leaves a row in `log`.
    Run("CREATE TABLE log (id INT AUTO_INCREMENT PRIMARY KEY)");
    Run("CREATE FUNCTION noted() RETURNS INT MODIFIES SQL DATA BEGIN INSERT INTO log VALUES (); RETURN 7; END");
  }
  Field Executions() { return Stored("SELECT COUNT(*) FROM log"); }
};

// Columns and values.

TEST_F(CursorStatement, RowsAreReadIntoColumnsOfItsOwn) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Statement("SELECT id, name FROM item ORDER BY id");
  EXPECT_EQ(TrimmedRows(cursor), (Rows{{"1", "one"}, {"2", "two"}, {"3", "three"}}));
}

TEST_F(CursorStatement, RowsAreThereAtOnce) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Statement("SELECT id, name FROM item");
  Run("DELETE FROM item");
  EXPECT_EQ(cursor.GetAmount(), 3);
}

TEST_F(CursorStatement, ColumnsAreNamedAsTheResultNamesThem) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Statement("SELECT id, i.name AS label, COUNT(*), 1 + 1, MAX(id) `the last` FROM item i");
  EXPECT_THAT(Names(cursor), ElementsAre("id", "label", "COUNT(*)", "1 + 1", "the last"));
}

TEST_F(CursorStatement, CountIsAnInt) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Statement("SELECT COUNT(*) FROM item");
  ASSERT_EQ(cursor.Fetch(), 1);
  EXPECT_EQ(static_cast<int>(dynamic_cast<ASInt&>(Value(cursor, 0))), 3);
}

TEST_F(CursorStatement, IntegersOfTwoToEightBytesAreInts) {
  Session session(With());
  ASCursor cursor(&session);
  Run("CREATE TABLE whole (a SMALLINT, b MEDIUMINT, c INT, d BIGINT, e TINYINT)");
  Run("INSERT INTO whole VALUES (-32768, -8388608, -2147483647, 4294967298, -128)");
  cursor.Statement("SELECT a, b, c, d, e FROM whole");
  std::vector<int> types;
  for (std::size_t i = 0; i < 5; ++i) types.push_back(Value(cursor, i).GetType());
  EXPECT_THAT(types, ElementsAre(1, 1, 1, 1, 12));
  EXPECT_EQ(TrimmedRows(cursor), (Rows{{"-32768", "-8388608", "-2147483647", "2", "-128"}}));
}

TEST_F(CursorStatement, NullsAreRead) {
  Session session(With());
  ASCursor cursor(&session);
  Run("INSERT INTO item VALUES (4, NULL)");
  cursor.Statement("SELECT name, NULLIF(id, 4), NULL FROM item WHERE id>=3 ORDER BY id");
  EXPECT_EQ(TrimmedRows(cursor), (Rows{{"three", "3", Field()}, {Field(), Field(), Field()}}));
}

// What is no integer is a text, padded to the declared length.
struct TextColumn {
  char const* name;
  char const* columnType;
  char const* literal;
  int size;
  std::string read;
};

void PrintTo(TextColumn const& column, std::ostream* out) { *out << column.literal << " in " << column.columnType; }

std::string Padded(std::string text, std::size_t size) {
  text.resize(size, ' ');
  return text;
}

class CursorStatementText : public CursorStatement, public ::testing::WithParamInterface<TextColumn> {
 protected:
  void CreateTables() override {
    CursorStatement::CreateTables();
    Run(std::string("CREATE TABLE t (value ") + GetParam().columnType + ")");
    Run(std::string("INSERT INTO t VALUES (") + GetParam().literal + ")");
  }
};

TEST_P(CursorStatementText, IsReadAtItsDeclaredLength) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Statement("SELECT value FROM t");
  ASSERT_EQ(cursor.Fetch(), 1);
  EXPECT_EQ(Value(cursor, 0).GetType(), corvane::kTypeStr);
  EXPECT_EQ(Value(cursor, 0).GetDBType(), corvane::kDbStr);
  EXPECT_EQ(Value(cursor, 0).GetSize(), GetParam().size);
  EXPECT_TRUE(Value(cursor, 0).getstr() == GetParam().read);
}

INSTANTIATE_TEST_SUITE_P(
    Of, CursorStatementText,
    ::testing::Values(TextColumn{"TinyInt", "TINYINT", "-128", 4, "-128"}, TextColumn{"Bool", "BOOL", "TRUE", 1, "1"},
                      TextColumn{"Decimal", "DECIMAL(10,2)", "-1.5", 12, "-1.50       "},
                      TextColumn{"Double", "DOUBLE", "0.1", 22, "0.1                   "},
                      TextColumn{"Float", "FLOAT", "1.5", 12, "1.5         "},
                      TextColumn{"Date", "DATE", "'2004-07-01'", 10, "2004-07-01"},
                      TextColumn{"DateTime", "DATETIME", "'2004-07-01 13:45:00'", 19, "2004-07-01 13:45:00"},
                      TextColumn{"Fraction", "DATETIME(3)", "'2004-07-01 13:45:00.125'", 23, "2004-07-01 13:45:00.125"},
                      TextColumn{"Time", "TIME", "'13:45:00'", 10, "13:45:00  "},
                      TextColumn{"Year", "YEAR", "2004", 4, "2004"},
                      TextColumn{"Char", "CHAR(3)", "'ab'", 12, "ab          "},
                      TextColumn{"Varchar", "VARCHAR(3)", "'ab'", 12, "ab          "},
                      TextColumn{"FourBytesEach", "VARCHAR(2)", "'\xF0\x9F\x98\x80\xF0\x9F\x98\x80'", 8,
                                 "\xF0\x9F\x98\x80\xF0\x9F\x98\x80"},
                      TextColumn{"Varbinary", "VARBINARY(5)", "'ab'", 5, "ab   "},
                      TextColumn{"Enum", "ENUM('a', 'big')", "'a'", 12, "a           "},
                      TextColumn{"Text", "TEXT", "REPEAT('x', 65535)", 262140, Padded(std::string(65535, 'x'), 262140)},
                      TextColumn{"MediumText", "MEDIUMTEXT", "'ab'", 67108860, Padded("ab", 67108860)}),
    [](auto const& column) { return column.param.name; });

TEST_F(CursorStatement, TrimTakesThePaddingAway) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Statement("SELECT name FROM item WHERE id=2");
  cursor.Fetch();
  EXPECT_EQ(Value(cursor, 0).getstr(), Padded("two", 80));
  Value(cursor, 0).Trim();
  EXPECT_EQ(Value(cursor, 0).getstr(), "two");
}

// Columns for which rows of the declared length have no room are as long as their longest value.

class CursorStatementLong : public CursorStatement {
 protected:
  void CreateTables() override {
    CursorStatement::CreateTables();
    Run("CREATE TABLE book (id INT PRIMARY KEY, body LONGTEXT, cover LONGBLOB, summary MEDIUMTEXT)");
    Run("INSERT INTO book VALUES (1, REPEAT('x', 1000000), REPEAT(X'41', 5), 'short'), (2, 'y', NULL, NULL)");
  }
};

TEST_F(CursorStatementLong, ColumnsAreAsLongAsTheirLongestValue) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Statement("SELECT body, cover, summary, id FROM book ORDER BY id");
  EXPECT_EQ(Value(cursor, 0).GetSize(), 1000000);
  EXPECT_EQ(Value(cursor, 1).GetSize(), 5);
  EXPECT_EQ(Value(cursor, 2).GetSize(), 5);
  EXPECT_EQ(TrimmedRows(cursor),
            (Rows{{std::string(1000000, 'x'), "AAAAA", "short", "1"}, {"y", Field(), Field(), "2"}}));
}

TEST_F(CursorStatementLong, ShorterColumnsKeepTheirDeclaredLength) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Statement("SELECT body, 'abc' AS word FROM book WHERE id=2");
  EXPECT_EQ(Value(cursor, 1).GetSize(), 12);
}

TEST_F(CursorStatementLong, EmptyResultIsRead) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Statement("SELECT body FROM book WHERE id=99");
  EXPECT_EQ(cursor.GetAmount(), 0);
  EXPECT_EQ(Value(cursor, 0).GetSize(), 0);
}

TEST_F(CursorStatementLong, ManyRowsThatDoNotFitAtTheDeclaredLengthAreRead) {
  Run("CREATE TABLE page (id INT PRIMARY KEY, body MEDIUMTEXT)");
  for (int id = 1; id <= 40; ++id) Run("INSERT INTO page VALUES (" + std::to_string(id) + ", 'text')");
  Session session(With());
  ASCursor cursor(&session);
  cursor.Statement("SELECT body FROM page");
  EXPECT_EQ(cursor.GetAmount(), 40);
  EXPECT_EQ(Value(cursor, 0).GetSize(), 4);
}

// The statement is executed for its columns and for its rows. What it gives may have changed in between.

TEST_F(CursorStatement, SelectIsExecutedTwice) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Statement("SELECT noted()");
  EXPECT_EQ(Executions(), "2");
  EXPECT_EQ(TrimmedRows(cursor), (Rows{{"7"}}));
  cursor.Reset();
  EXPECT_EQ(cursor.GetAmount(), 1);
  EXPECT_EQ(Executions(), "2");
}

TEST_F(CursorStatement, SelectInMixedCaseIsExecutedTwice) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Statement("sElEcT noted()");
  EXPECT_EQ(Executions(), "2");
  EXPECT_EQ(TrimmedRows(cursor), (Rows{{"7"}}));
}

TEST_F(CursorStatement, RowsOfTheSecondExecutionAreRead) {
  Session session(With());
  session.Execute("SET @runs=0");
  ASCursor cursor(&session);
  cursor.Statement("SELECT @runs:=@runs+1 AS run");
  EXPECT_EQ(TrimmedRows(cursor), (Rows{{"2"}}));
}

TEST_F(CursorStatement, RowsThatCameInBetweenAreRead) {
  Session session(With());
  ASCursor cursor(&session);
  Run("CREATE FUNCTION runs() RETURNS INT MODIFIES SQL DATA "
      "BEGIN INSERT INTO log VALUES (); RETURN LAST_INSERT_ID(); END");
  cursor.Statement("SELECT item.id FROM (SELECT runs() AS n LIMIT 1) counted, item WHERE item.id<=counted.n");
  EXPECT_EQ(TrimmedRows(cursor), (Rows{{"1"}, {"2"}}));
}

TEST_F(CursorStatement, LongTextThatGrewInBetweenIsReadWhole) {
  Session session(With());
  ASCursor cursor(&session);
  Run("CREATE FUNCTION growing() RETURNS LONGTEXT MODIFIES SQL DATA "
      "BEGIN INSERT INTO log VALUES (); RETURN REPEAT('x', 100000 * LAST_INSERT_ID()); END");
  cursor.Statement("SELECT growing()");
  EXPECT_EQ(TrimmedRows(cursor), (Rows{{std::string(200000, 'x')}}));
}

TEST_F(CursorStatement, RunAgainAfterDetachItIsExecutedOnceMore) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Statement("SELECT noted()");
  std::unique_ptr<MapBuffer> const rows(cursor.Detach());
  EXPECT_EQ(TrimmedRows(cursor), (Rows{{"7"}}));
  EXPECT_EQ(Executions(), "3");
}

// Statements without a result.

// Whatever could open the cursor.
void AskForRows(ASCursor& cursor) {
  Item item;
  EXPECT_EQ(cursor.GetAmount(), 0);
  EXPECT_EQ(cursor.Fetch(), 0);
  EXPECT_EQ(cursor.Fetch(0), 0);
  EXPECT_EQ(cursor.Fetch(item), 0);
  EXPECT_EQ(cursor.FetchSingle(), 0);
  cursor.Open();
  cursor.Reset();
  EXPECT_EQ(cursor.Detach(), nullptr);
  EXPECT_EQ(cursor.GetAmount(), 0);
}

TEST_F(CursorStatement, ChangeIsExecutedOnceWhateverIsAskedAfterwards) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Statement("UPDATE item SET id=id+10");
  AskForRows(cursor);
  EXPECT_EQ(StoredRows("SELECT id FROM item ORDER BY id"), (Rows{{"11"}, {"12"}, {"13"}}));
}

TEST_F(CursorStatement, ChangeInATransactionIsCommittedWithIt) {
  Session session(WithTransactions());
  ASCursor cursor(&session);
  cursor.Statement("DELETE FROM item WHERE id=1");
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM item"), "3");
  session.Commit();
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM item"), "2");
}

// The letters "select" are in the text, but there is no result.
class CursorStatementWithoutResult : public CursorStatement, public ::testing::WithParamInterface<char const*> {};

char const* const kWritesWhileATableIsMade = "CREATE TABLE made AS SELECT noted() AS n";

TEST_P(CursorStatementWithoutResult, IsExecutedOnceAndReported) {
  Session session(With());
  std::string const id = ConnectionId(session);
  session.Execute("SET @runs=0");
  ASCursor cursor(&session);
  if (!IsMariaDb() && std::string(GetParam()) == kWritesWhileATableIsMade) {  // MySQL forbids it
    EXPECT_THAT(FailureOf([&] { cursor.Statement(GetParam()); }).message, StartsWith("DB Error 1746 ("));
    EXPECT_EQ(Executions(), "0");
    return;
  }
  EXPECT_EQ(FailureOf([&] { cursor.Statement(GetParam()); }), (Failure{0, kNoResult}));
  AskForRows(cursor);
  EXPECT_EQ(Executions(), "1");
  EXPECT_THAT(cursor.Project().Items(), IsEmpty());
  EXPECT_EQ(ConnectionId(session), id);
}

INSTANTIATE_TEST_SUITE_P(Of, CursorStatementWithoutResult,
                         ::testing::Values("INSERT INTO log SELECT NULL", "insert into log select null",
                                           "INSERT INTO log VALUES (LENGTH('selected'))", kWritesWhileATableIsMade,
                                           "SELECT noted() INTO @noted", "DO (SELECT noted())",
                                           "SET @noted=(SELECT noted())"));

TEST_F(CursorStatement, SelectIntoAVariableSetsIt) {
  Session session(With());
  ASCursor cursor(&session);
  EXPECT_THROW(cursor.Statement("SELECT name FROM item WHERE id=2 INTO @name"), AException);
  EXPECT_EQ(FetchedValue(session, "SELECT @name"), "two");
}

TEST_F(CursorStatement, RefusedOneIsReportedWithItsText) {
  Session session(With());
  ASCursor cursor(&session);
  EXPECT_EQ(FailureOf([&] { cursor.Statement("SELECT name FROM nothing"); }),
            (Failure{102, "DB Error 1146 (Table '" + Schema() +
                              ".nothing' doesn't exist) in query\n\b\nSELECT name FROM nothing"}));
  EXPECT_THAT(cursor.Project().Items(), IsEmpty());
  cursor.Statement("SELECT id FROM item WHERE id=1");
  EXPECT_EQ(TrimmedRows(cursor), (Rows{{"1"}}));
}

TEST_F(CursorStatement, RefusedChangeIsReportedWithItsText) {
  Session session(With());
  ASCursor cursor(&session);
  EXPECT_THAT(FailureOf([&] { cursor.Statement("INSERT INTO item VALUES (1, 'again')"); }).message,
              StartsWith("DB Error 1062 (Duplicate entry '1' for key "));
  AskForRows(cursor);
}

TEST_F(CursorStatement, OneThatFailsTheSecondTimeIsReported) {
  Session session(With());
  ASCursor cursor(&session);
  Run("CREATE FUNCTION once() RETURNS INT MODIFIES SQL DATA BEGIN INSERT INTO log VALUES (1); RETURN 1; END");
  EXPECT_THROW(cursor.Statement("SELECT once()"), AException);
  EXPECT_THAT(cursor.Project().Items(), IsEmpty());
  EXPECT_EQ(FailureOf([&] { cursor.Fetch(); }), (Failure{0, kFailed}));
}

// Other statements that give a result.

TEST_F(CursorStatement, ResultOfShowCanBeTaken) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Statement("SHOW TABLES LIKE 'it%'");
  EXPECT_EQ(cursor.GetAmount(), 0);
  std::unique_ptr<MYSQL_RES, decltype(&mysql_free_result)> const result(session.FetchMultiple(), mysql_free_result);
  EXPECT_STREQ(mysql_fetch_row(result.get())[0], "item");
}

TEST_F(CursorStatement, ResultOfShowThatIsNotTakenIsDropped) {
  Session session(WithTransactions());
  Item const item(4, "four");
  session.Insert(item);
  ASCursor cursor(&session);
  cursor.Statement("SHOW TABLES");
  session.Commit();
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM item"), "4");
}

TEST_F(CursorStatement, ShowOfANameWithTheLettersIsRead) {
  Run("CREATE TABLE selection (id INT)");
  Session session(With());
  ASCursor cursor(&session);
  cursor.Statement("SHOW TABLES LIKE 'selection'");
  EXPECT_EQ(TrimmedRows(cursor), (Rows{{"selection"}}));
}

TEST_F(CursorStatement, ExplainIsRead) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Statement("EXPLAIN SELECT id, name FROM item");
  EXPECT_THAT(Names(cursor), IsSupersetOf({"id", "select_type", "table", "type", "key", "rows"}));
  Rows const rows = TrimmedRows(cursor);
  ASSERT_EQ(rows.size(), 1U);
  EXPECT_THAT(rows[0], IsSupersetOf({Field("1"), Field("SIMPLE"), Field("item"), Field("ALL"), Field("3")}));
}

TEST_F(CursorStatement, CommonTableExpressionIsRead) {
  Session session(With());
  ASCursor cursor(&session);
  char const* const statement = "WITH few AS (SELECT id FROM item WHERE id<3) SELECT id FROM few ORDER BY id";
  if (!IsMariaDb()) {  // MySQL 5.6 knows none
    EXPECT_THAT(FailureOf([&] { cursor.Statement(statement); }).message, StartsWith("DB Error 1064 ("));
    return;
  }
  cursor.Statement(statement);
  EXPECT_EQ(TrimmedRows(cursor), (Rows{{"1"}, {"2"}}));
}

class CursorStatementCall : public CursorStatement {
 protected:
  void CreateTables() override {
    CursorStatement::CreateTables();
    Run("CREATE PROCEDURE none() BEGIN INSERT INTO log VALUES (); END");
    Run("CREATE PROCEDURE one() BEGIN INSERT INTO log VALUES (); SELECT id FROM item WHERE id=1; END");
    Run("CREATE PROCEDURE two() BEGIN INSERT INTO log VALUES (); SELECT id FROM item WHERE id=1; "
        "SELECT name FROM item WHERE id=2; END");
    Run("CREATE PROCEDURE fails() BEGIN SELECT id FROM item WHERE id=1; INSERT INTO item VALUES (1, 'again'); END");
    Run("CREATE PROCEDURE select_two() BEGIN CALL two(); END");
  }

  // One run of a procedure, and the connection takes more statements.
  void ExpectExecutedOnce(char const* statement) {
    Session session(WithTransactions());
    Item const item(4, "four");
    session.Insert(item);
    std::string const id = ConnectionId(session);
    ASCursor cursor(&session);
    cursor.Statement(statement);
    EXPECT_EQ(ConnectionId(session), id);
    AskForRows(cursor);
    session.Commit();
    EXPECT_EQ(Executions(), "1");
    EXPECT_EQ(Stored("SELECT COUNT(*) FROM item"), "4");
  }
};

class CursorStatementCallOf : public CursorStatementCall, public ::testing::WithParamInterface<char const*> {};

TEST_P(CursorStatementCallOf, IsExecutedOnceAndLeavesTheConnectionReady) { ExpectExecutedOnce(GetParam()); }

INSTANTIATE_TEST_SUITE_P(Procedure, CursorStatementCallOf,
                         ::testing::Values("CALL none()", "CALL one()", "CALL two()", "call two", "  CALL two()",
                                           "/* why */ CALL two()", "-- why\nCALL two()", "# why\n\tCALL two()",
                                           "/*!50003 CALL two() */"));

// What only MariaDB knows, and what MySQL 5.6 throws: nothing where it sees a comment.
struct MariaDbCall {
  char const* statement;
  char const* refusal;
};

void PrintTo(MariaDbCall const& call, std::ostream* out) { *out << call.statement; }

class CursorStatementMariaDbCall : public CursorStatementCall, public ::testing::WithParamInterface<MariaDbCall> {};

TEST_P(CursorStatementMariaDbCall, IsExecutedOnceOrRefused) {
  if (IsMariaDb()) {
    ExpectExecutedOnce(GetParam().statement);
    return;
  }
  Session session(With());
  std::string const id = ConnectionId(session);
  ASCursor cursor(&session);
  EXPECT_THAT(FailureOf([&] { cursor.Statement(GetParam().statement); }).message, StartsWith(GetParam().refusal));
  EXPECT_EQ(Executions(), "0");
  EXPECT_EQ(ConnectionId(session), id);
}

INSTANTIATE_TEST_SUITE_P(Procedure, CursorStatementMariaDbCall,
                         ::testing::Values(MariaDbCall{"EXECUTE IMMEDIATE 'CALL two()'", "DB Error 1064 ("},
                                           MariaDbCall{"/*M! CALL two() */", "nothing was thrown"},
                                           MariaDbCall{"BEGIN NOT ATOMIC CALL two(); END", "DB Error 1064 ("},
                                           MariaDbCall{"IF 1 THEN CALL two(); END IF", "DB Error 1064 ("},
                                           MariaDbCall{"SET STATEMENT max_statement_time=5 FOR CALL two()",
                                                       "DB Error 1193 ("}));

TEST_F(CursorStatementCall, FirstResultCanBeTaken) {
  Session session(With());
  std::string const id = ConnectionId(session);
  ASCursor cursor(&session);
  cursor.Statement("CALL two()");
  {
    std::unique_ptr<MYSQL_RES, decltype(&mysql_free_result)> const result(session.FetchMultiple(), mysql_free_result);
    EXPECT_STREQ(mysql_fetch_row(result.get())[0], "1");
  }
  EXPECT_EQ(ConnectionId(session), id);
}

TEST_F(CursorStatementCall, FailureBehindTheFirstResultIsThrown) {
  Session session(WithTransactions());
  Item const item(4, "four");
  session.Insert(item);
  ASCursor cursor(&session);
  Failure const failure = FailureOf([&] { cursor.Statement("CALL fails()"); });
  EXPECT_EQ(failure.number, 102);
  EXPECT_THAT(failure.message, StartsWith("DB Error 1062 ("));
  session.Commit();
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM item"), "4");
}

TEST_F(CursorStatementCall, CompoundStatementOfSeveralQueriesIsReadUpToTheFirst) {
  Session session(With());
  std::string const id = ConnectionId(session);
  ASCursor cursor(&session);
  char const* const statement = "BEGIN NOT ATOMIC SELECT id FROM item WHERE id=1; SELECT name FROM item; END";
  if (IsMariaDb()) {
    cursor.Statement(statement);
    EXPECT_EQ(TrimmedRows(cursor), (Rows{{"1"}}));
  } else {  // MySQL has them in procedures only
    EXPECT_THAT(FailureOf([&] { cursor.Statement(statement); }).message, StartsWith("DB Error 1064 ("));
  }
  EXPECT_EQ(ConnectionId(session), id);
}

TEST_F(CursorStatementCall, NameWithTheLettersIsReadAndExecutedTwice) {
  Session session(With());
  std::string const id = ConnectionId(session);
  ASCursor cursor(&session);
  cursor.Statement("CALL select_two()");
  EXPECT_EQ(TrimmedRows(cursor), (Rows{{"1"}}));
  EXPECT_EQ(Executions(), "2");
  EXPECT_EQ(ConnectionId(session), id);
}

TEST_F(CursorStatementCall, RollbackDropsTheResultsFirst) {
  Session session(WithTransactions());
  ASCursor cursor(&session);
  cursor.Statement("CALL two()");
  session.Rollback();
  EXPECT_EQ(Executions(), "0");
}

// Several statements by one cursor.

TEST_F(CursorStatement, SecondOneReplacesRowsAndColumns) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Statement("SELECT id, name FROM item ORDER BY id");
  cursor.Fetch();
  cursor.Fetch();
  cursor.Statement("SELECT UPPER(name) AS loud FROM item ORDER BY id");
  EXPECT_THAT(Names(cursor), ElementsAre("loud"));
  EXPECT_EQ(TrimmedRows(cursor), (Rows{{"ONE"}, {"TWO"}, {"THREE"}}));
}

TEST_F(CursorStatement, ChangeBehindASelectLeavesNoRows) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Statement("SELECT id FROM item");
  cursor.Statement("DELETE FROM item WHERE id=1");
  EXPECT_THAT(cursor.Project().Items(), IsEmpty());
  EXPECT_EQ(cursor.GetAmount(), 0);
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM item"), "2");
}

TEST_F(CursorStatement, TextMayBeAValueThatTheCursorHolds) {
  Session session(With());
  ASCursor cursor(&session);
  cursor.Statement("SELECT 'SELECT name FROM item WHERE id=2'");
  cursor.Fetch();
  cursor.Statement(dynamic_cast<ASStr&>(Value(cursor, 0)));
  EXPECT_EQ(TrimmedRows(cursor), (Rows{{"two"}}));
}

// Columns that somebody else projected count as the first ones: those that the statement makes then find none.

TEST_F(CursorStatement, ProjectedColumnsThatTheResultLacksAreReported) {
  Session session(With());
  Item item;
  ASCursor cursor(&session);
  cursor.Project() << item.idColumn;
  EXPECT_EQ(FailureOf([&] { cursor.Statement("SELECT noted()"); }), (Failure{0, kNoResult}));
  EXPECT_EQ(cursor.Project().Items().size(), 1U);
  EXPECT_EQ(FailureOf([&] { cursor.GetAmount(); }), (Failure{0, kFailed}));
  EXPECT_EQ(Executions(), "2");
}

TEST_F(CursorStatement, OnTheOpenCursorOfARecordTakesItsRowsAway) {
  Session session(With());
  Item item;
  ASCursor cursor(&session);
  cursor.Fetch(item);
  EXPECT_THROW(cursor.Statement("SELECT id, name FROM item"), AException);
  EXPECT_EQ(cursor.GetUURecord(0), nullptr);
  EXPECT_EQ(FailureOf([&] { cursor.Fetch(); }), (Failure{0, kFailed}));
}

TEST_F(CursorStatement, NeedsASession) {
  ASCursor cursor(nullptr);
  EXPECT_EQ(FailureOf([&] { cursor.Statement("SELECT 1"); }), (Failure{0, "There is no session for cursor. "}));
}

}  // namespace
