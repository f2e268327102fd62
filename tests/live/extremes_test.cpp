// Sizes and depths that servers come to know. Where a server refuses one it is recorded, and the session goes on.
#include <gmock/gmock.h>

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tests/live/both_ways.h"
#include "tests/support/live.h"
#include "tests/support/small_stack.h"
#include "tests/support/tally.h"

using corvane::test::FailureOf;
using corvane::test::FetchedValue;
using corvane::test::Field;
using corvane::test::Item;
using corvane::test::ItemTest;
using corvane::test::LiveTest;
using corvane::test::RunOnSmallStack;
using corvane::test::Session;
using corvane::test::Taking;
using corvane::test::Tally;
using corvane::test::TextCursor;
using corvane::test::Way;

namespace {

constexpr unsigned kLargest = 16 * 1024 * 1024;

// A record of one value of any size, by its number.
template <class Value>
struct Sized : ASDomain {
  ASInt id;
  Value value;
  ASAttribute idColumn{"id", "Id", 0, corvane::kKey};
  ASAttribute valueColumn{"value"};

  explicit Sized(unsigned capacity) : ASDomain("sized", "Sized"), value(capacity) {
    Add(idColumn, id).Add(valueColumn, value);
    id = 1;
  }
  Sized(Sized const&) = delete;
  Sized& operator=(Sized const&) = delete;
};

// Statements of up to 64 MiB, as long as the test runs.
class Capacity : public LiveTest, public ::testing::WithParamInterface<unsigned> {
 protected:
  class Packets {
   public:
    explicit Packets(std::function<void(std::string const&)> run, std::string before)
        : run_(std::move(run)), before_(std::move(before)) {
      run_("SET GLOBAL max_allowed_packet=67108864");
    }
    Packets(Packets const&) = delete;
    Packets& operator=(Packets const&) = delete;
    ~Packets() { run_("SET GLOBAL max_allowed_packet=" + before_); }

   private:
    std::function<void(std::string const&)> run_;
    std::string before_;
  };

  Packets LargePackets() {
    return Packets([this](std::string const& statement) { Run(statement); },
                   Stored("SELECT @@GLOBAL.max_allowed_packet").value());
  }

  // Bytes that need an escape in part, none of which is a NUL.
  static std::string Bytes(unsigned count) {
    std::string bytes(count, '\0');
    for (unsigned i = 0; i < count; ++i) bytes[i] = "'\\x\"y\n\xc3z"[i % 8];
    return bytes;
  }

  void CreateTables() override { Run("CREATE TABLE sized (id INT PRIMARY KEY, value LONGBLOB)"); }

  std::string StoredDigest() {
    return Stored("SELECT CONCAT(LENGTH(value), ' ', MD5(value)) FROM sized").value_or("NULL");
  }
  std::string DigestOf(ASSession& session, std::string const& bytes) {
    Str literal("SET @v=_binary'");
    corvane::AppendEscaped(literal, bytes.data(), bytes.size());
    session.Execute(literal << '\'');
    return FetchedValue(session, "SELECT CONCAT(LENGTH(@v), ' ', MD5(@v))").value();
  }
};

INSTANTIATE_TEST_SUITE_P(Of, Capacity, ::testing::Values(0U, 1U, 65535U, 65536U, kLargest),
                         [](auto const& bytes) { return std::to_string(bytes.param) + "Bytes"; });

TEST_P(Capacity, OfATextGoesToTheServerAndBack) {
  Packets const packets = LargePackets();
  Session session(WithTransactions());
  std::string const bytes = Bytes(GetParam());
  Sized<ASVStr> record(GetParam());
  record.value = bytes + "cut";
  ASSERT_EQ(session.Insert(record), 1U);
  session.Commit();
  EXPECT_EQ(Stored("SELECT LENGTH(value) FROM sized"), std::to_string(GetParam()));
  EXPECT_EQ(StoredDigest(), DigestOf(session, bytes));

  record.value.SetNull();
  ASSERT_EQ(session.Select(record), 1);
  EXPECT_TRUE(record.value.ToString() == bytes);
  record.value.SetNull();
  ASCursor cursor(&session);
  cursor.Project() << record.valueColumn;
  cursor.Where(record.idColumn == 1);
  ASSERT_EQ(cursor.Fetch(), 1);
  EXPECT_TRUE(record.value.ToString() == bytes);

  unsigned const less = GetParam() / 2;
  Sized<ASVStr> smaller(less);
  ASSERT_EQ(session.Select(smaller), 1);
  EXPECT_TRUE(smaller.value.ToString() == bytes.substr(0, less));
  Tally("values of 0 to 16 MiB", "inserted, selected, by cursor, cut");
}

TEST_P(Capacity, OfALargeBinaryGoesToTheServerAndBack) {
  Packets const packets = LargePackets();
  Session session(WithTransactions());
  std::string bytes = Bytes(GetParam());
  for (std::size_t i = 0; i < bytes.size(); i += 1000) bytes[i] = '\0';
  Sized<ASRealBlob> record(0);
  record.value = RealBlob(GetParam(), bytes.data());
  ASSERT_EQ(session.Insert(record), 1U);
  session.Commit();
  EXPECT_EQ(StoredDigest(), DigestOf(session, bytes));

  auto const held = [&record] {
    return std::string(static_cast<char const*>(record.value.voidptr()), record.value.Length());
  };
  record.value.SetNull();
  ASSERT_EQ(session.Select(record), 1);
  EXPECT_TRUE(held() == bytes);
  record.value.SetNull();
  ASCursor cursor(&session);
  cursor.Project() << record.valueColumn;
  cursor.Where(record.idColumn == 1);
  ASSERT_EQ(cursor.Fetch(), 1);
  EXPECT_TRUE(held() == bytes);
  Tally("values of 0 to 16 MiB", "inserted, selected, by cursor, cut");
}

class Depth : public ItemTest {
 protected:
  static constexpr int kDepth = 10000;

  void CreateTables() override {
    ItemTest::CreateTables();
    Run("INSERT INTO item VALUES (1, 'one'), (2, 'two')");
  }

  // The rows that the condition admits, or the server's refusal, on a small stack; the session is of use afterwards.
  void Record(std::string const& what, ASComparison const& condition, int rows) {
    Session session(With());
    std::string found;
    RunOnSmallStack([&] {
      try {
        ASCursor cursor(&session);
        cursor.Project() << row.idColumn;
        cursor.Where(condition);
        found = std::to_string(cursor.GetAmount()) + " rows";
      } catch (AException const& refused) {
        found = std::string(refused.what()).substr(0, 13);  // "DB Error 1436"
      }
    });
    EXPECT_THAT(found, ::testing::AnyOf(std::to_string(rows) + " rows", "DB Error 1436", "DB Error 1064",
                                        "DB Error 1041", "DB Error 1038"))
        << what;
    EXPECT_EQ(FetchedValue(session, "SELECT 1"), "1");
    Tally("conditions of 10,000 parts on the server", what + ": " + found);
  }

  Item row;
};

TEST_F(Depth, OfAndsNestedToTheLeftIsAcceptedOrRefused) {
  ASComparison all = row.idColumn == 1;
  for (int i = 0; i < kDepth; ++i) all&& row.idColumn == 1;
  Record("AND to the left", all, 1);
}

TEST_F(Depth, OfOrsNestedToTheLeftIsAcceptedOrRefused) {
  ASComparison all = row.idColumn == 1;
  for (int i = 0; i < kDepth; ++i) all || row.idColumn == 2;
  Record("OR to the left", all, 2);
}

TEST_F(Depth, OfAndsNestedToTheRightIsAcceptedOrRefused) {
  ASComparison all = row.idColumn == 1;
  for (int i = 0; i < kDepth; ++i) {
    ASComparison next = row.idColumn == 1;
    next&& all;
    all = next;
  }
  Record("AND to the right", all, 1);
}

TEST_F(Depth, OfAListIsAccepted) {
  Str list = corvane::Literal(Int(2));
  for (int i = 1; i < kDepth; ++i) list << ", " << corvane::Literal(Int(1000 + i));
  Record("IN list", row.idColumn.In(ASAttribute(list)), 1);
}

TEST_F(Depth, OfAnExpressionIsAcceptedOrRefused) {
  Session session(With());
  ASExpression sum(row.idColumn);
  for (int i = 0; i < kDepth; ++i) sum = sum + 1;
  ASUpdater updater(row.idColumn.Set(sum));
  updater.Where(row.idColumn == 2);
  std::string outcome = "accepted";
  auto const failure = FailureOf([&] { EXPECT_EQ(updater.Execute(&session), 1U); });
  if (failure.number == -1) {
    EXPECT_EQ(Stored("SELECT MAX(id) FROM item"), "10002");
  } else {
    outcome = failure.message.substr(0, 13);
    EXPECT_THAT(outcome, ::testing::AnyOf("DB Error 1436", "DB Error 1064"));
  }
  EXPECT_EQ(FetchedValue(session, "SELECT 1"), "1");
  Tally("expressions of 10,000 operators on the server", outcome);
}

// A record of many columns, c0 being the key.
struct Wide : ASDomain {
  std::deque<ASInt> values;
  std::deque<ASAttribute> columns;

  explicit Wide(int count) : ASDomain("wide", "Wide") {
    for (int i = 0; i < count; ++i) {
      values.emplace_back();
      columns.emplace_back(Str("c") << i, Str(), 0, i == 0 ? corvane::kKey : 0);
      Add(columns.back(), values.back());
      values.back() = i;
    }
  }
  Wide(Wide const&) = delete;
  Wide& operator=(Wide const&) = delete;
};

class Columns : public LiveTest {
 protected:
  static std::string List(int count, std::string const& before, std::string const& behind) {
    std::string list;
    for (int i = 0; i < count; ++i) list += (i > 0 ? ", " : "") + before + std::to_string(i) + behind;
    return list;
  }
};

constexpr int kMostOfATable = 1017;  // InnoDB's
constexpr int kManyColumns = 4096;

TEST_F(Columns, AsManyAsATableMayHaveAreWrittenAndRead) {
  EXPECT_NE(Refusal("CREATE TABLE wide (" + List(kMostOfATable + 1, "c", " INT") + ") ENGINE=InnoDB"), 0U);
  Run("CREATE TABLE wide (" + List(kMostOfATable, "c", " INT") + ", PRIMARY KEY (c0)) ENGINE=InnoDB");
  Session session(With());
  Wide record(kMostOfATable);
  ASSERT_EQ(session.Insert(record), 1U);
  record.SetNull();
  record.values[0] = 0;
  ASSERT_EQ(session.Select(record), 1);
  for (int i = 0; i < kMostOfATable; ++i) ASSERT_EQ(record.values[static_cast<unsigned>(i)], i);

  record.SetNull();
  ASCursor cursor(&session);
  ASSERT_EQ(cursor.Fetch(record), 1);
  for (int i = 0; i < kMostOfATable; ++i) ASSERT_EQ(record.values[static_cast<unsigned>(i)], i);

  record.values[kMostOfATable - 1] = 7;
  EXPECT_EQ(session.Update(record), 1U);
  EXPECT_EQ(Stored("SELECT c1016 FROM wide"), "7");
  EXPECT_EQ(session.Delete(record), 1U);
  Tally("records of 1,017 columns", "inserted, selected, by cursor, updated, deleted");
}

TEST_F(Columns, FourThousandAreRenderedAndRefusedWithoutHarm) {
  Session session(With());
  Wide const record(kManyColumns);
  EXPECT_EQ(session.InsertQuery(record, 0).ToString(),
            "INSERT INTO `wide` (" + List(kManyColumns, "`c", "`") + ") VALUES (" + List(kManyColumns, "'", "'") + ")");
  EXPECT_EQ(session.SelectQuery(record, 0).ToString(),
            "SELECT " + List(kManyColumns, "`c", "`") + " FROM `wide` WHERE `c0`='0' FOR UPDATE");
  EXPECT_EQ(FailureOf([&] { session.Insert(record); }).number, 102);
  EXPECT_EQ(FetchedValue(session, "SELECT 1"), "1");
  Tally("records of 4,096 columns", "rendered; refused by the server, the session goes on");
}

TEST_F(Columns, FourThousandOfAResultAreRead) {
  Session session(With());
  std::string const query = "SELECT " + List(kManyColumns, "", "");
  Wide record(kManyColumns);
  record.SetNull();
  session.Execute(query);
  ASSERT_EQ(session.Fetch(record), 1);
  for (int i = 0; i < kManyColumns; ++i) ASSERT_EQ(record.values[static_cast<unsigned>(i)], i);

  for (Way const way : {Way::kUnstored, Way::kStored}) {
    record.SetNull();
    Taking const taking(way);
    TextCursor cursor(session, way, query);
    for (ASAttribute const& column : record.columns) cursor.Project() << column;
    ASSERT_EQ(cursor.Fetch(), 1);
    for (int i = 0; i < kManyColumns; ++i) ASSERT_EQ(record.values[static_cast<unsigned>(i)], i);
  }

  ASCursor raw(&session);
  raw.Statement(Str(query));
  ASSERT_EQ(raw.Fetch(), 1);
  ASSERT_EQ(raw.Project().Items().size(), static_cast<std::size_t>(kManyColumns));
  EXPECT_EQ(raw.Project().Items().back()->Data()->getstr(), "4095");
  Tally("results of 4,096 columns", "by Fetch, cursor, raw cursor");
}

}  // namespace
