#include <cfloat>
#include <climits>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "tests/support/live.h"

using corvane::test::FailureOf;
using corvane::test::LiveTest;
using corvane::test::Rows;
using corvane::test::Session;

// Every kind of value, on its own in a record: as a column, as a key, and at its limits.

namespace {

// A kind of value: a column for it, how to make one, and the text that the server then shows.
struct Kind {
  char const* name;
  char const* columnType;
  std::unique_ptr<ASData> (*value)();
  std::string stored;
};

void PrintTo(Kind const& kind, std::ostream* out) { *out << kind.name << " in " << kind.columnType; }
std::string NameOf(::testing::TestParamInfo<Kind> const& info) { return info.param.name; }

template <class Column, class Value>
std::unique_ptr<ASData> Make(Value const& value) {
  auto column = std::make_unique<Column>();
  *column = value;
  return column;
}

template <class Column, class Value>
std::unique_ptr<ASData> MakeSized(unsigned capacity, Value const& value) {
  auto column = std::make_unique<Column>(capacity);
  *column = value;
  return column;
}

// A closed triangle as well-known binary: byte order, type, number of rings, number of points, points.
std::string TriangleBytes() {
  std::string bytes("\x01\x03\x00\x00\x00\x01\x00\x00\x00\x04\x00\x00\x00", 13);
  for (double const coordinate : {0.0, 0.0, 4.0, 0.0, 4.0, 4.5, 0.0, 0.0}) {
    char raw[sizeof coordinate];
    std::memcpy(raw, &coordinate, sizeof coordinate);
    bytes.append(raw, sizeof raw);
  }
  return bytes;
}

std::unique_ptr<ASData> MakeTriangle() {
  auto geometry = std::make_unique<ASGeometry>(static_cast<std::uint16_t>(100));
  std::string const bytes = TriangleBytes();
  geometry->Fill(bytes.data(), bytes.size());
  return geometry;
}

std::unique_ptr<ASData> MakeInt() { return Make<ASInt>(-42); }
std::unique_ptr<ASData> MakeInt64() { return Make<ASInt64>(9007199254740993L); }
std::unique_ptr<ASData> MakeDouble() { return Make<ASDouble>(1234567.891); }
std::unique_ptr<ASData> MakeCurrency() { return Make<ASDCurrency>(19.99); }
std::unique_ptr<ASData> MakeTime() { return Make<ASTime>(1088689500); }
std::unique_ptr<ASData> MakeStr() { return MakeSized<ASStr>(10, "O'Brien"); }
std::unique_ptr<ASData> MakeVStr() { return MakeSized<ASVStr>(20, "back\\slash"); }
std::unique_ptr<ASData> MakeGuid() { return Make<ASGuid>(Guid("{6F9619FF-8B86-D011-B42D-00C04FC964FF}")); }
std::unique_ptr<ASData> MakeRealBlob() { return MakeSized<ASRealBlob>(0, RealBlob(5, "a\0'\xFF\\", Copy)); }

// Those that can be keys.
std::vector<Kind> KeyKinds() {
  return {
      {"Int", "INT", MakeInt, "-42"},
      {"Int64", "BIGINT", MakeInt64, "9007199254740993"},
      {"Double", "DOUBLE", MakeDouble, "1234567.891"},
      {"Currency", "DECIMAL(12,2)", MakeCurrency, "19.99"},
      {"Time", "DATETIME", MakeTime, "2004-07-01 13:45:00"},
      {"Str", "CHAR(10)", MakeStr, "O'Brien"},
      {"VStr", "VARCHAR(20)", MakeVStr, "back\\slash"},
      {"Guid", "CHAR(36)", MakeGuid, "6f9619ff-8b86-d011-b42d-00c04fc964ff"},
  };
}

std::vector<Kind> AllKinds() {
  std::vector<Kind> kinds = KeyKinds();
  kinds.push_back({"RealBlob", "LONGBLOB", MakeRealBlob, std::string("a\0'\xFF\\", 5)});
  // The server shows the reference system's number before the well-known binary.
  kinds.push_back({"Geometry", "GEOMETRY", MakeTriangle, std::string(4, '\0') + TriangleBytes()});
  return kinds;
}

// Those whose NULL is a number or an identifier of its own.
std::vector<Kind> NumberAndGuidKinds() {
  return {
      {"Int", "INT", MakeInt, "-42"},
      {"Int64", "BIGINT", MakeInt64, "9007199254740993"},
      {"Double", "DOUBLE", MakeDouble, "1234567.891"},
      {"Currency", "DOUBLE", MakeCurrency, "19.99"},
      {"Guid", "CHAR(36)", MakeGuid, "6f9619ff-8b86-d011-b42d-00c04fc964ff"},
  };
}

struct ValueRecord : ASDomain {
  explicit ValueRecord(Kind const& kind) : ASDomain("kind", "Kind"), value(kind.value()) {
    id = 1;
    Add(idColumn, id).Add(valueColumn, *value);
  }
  ValueRecord(ValueRecord const&) = delete;
  ValueRecord& operator=(ValueRecord const&) = delete;

  ASInt id;
  std::unique_ptr<ASData> value;
  ASAttribute idColumn{"id", "Id", 0, corvane::kKey};
  ASAttribute valueColumn{"value"};
};

class RecordValue : public LiveTest, public ::testing::WithParamInterface<Kind> {
 protected:
  void CreateTables() override {
    Run(std::string("CREATE TABLE kind (id INT PRIMARY KEY, value ") + GetParam().columnType + ")");
  }
};

TEST_P(RecordValue, InsertStoresTheValue) {
  Session session(With());
  ValueRecord const record(GetParam());
  EXPECT_EQ(session.Insert(record), 1U);
  EXPECT_EQ(StoredRows("SELECT id, value FROM kind"), (Rows{{"1", GetParam().stored}}));
}

TEST_P(RecordValue, InsertStoresNull) {
  Session session(With());
  ValueRecord record(GetParam());
  record.value->SetNull();
  EXPECT_EQ(session.Insert(record), 1U);
  EXPECT_EQ(StoredRows("SELECT id, value FROM kind"), (Rows{{"1", std::nullopt}}));
}

TEST_P(RecordValue, SelectReadsTheValue) {
  Session session(With());
  ValueRecord record(GetParam());
  session.Insert(record);
  record.value->SetNull();
  EXPECT_EQ(session.Select(record), 1);
  EXPECT_EQ(record.value->IsNull(), 0);
  EXPECT_TRUE(*record.value == *GetParam().value());
}

TEST_P(RecordValue, SelectReadsNull) {
  Run("INSERT INTO kind (id, value) VALUES (1, NULL)");
  Session session(With());
  ValueRecord record(GetParam());
  EXPECT_EQ(session.Select(record), 1);
  EXPECT_EQ(record.value->IsNull(), 1);
}

TEST_P(RecordValue, SelectWithoutARowLeavesTheValue) {
  Session session(With());
  ValueRecord record(GetParam());
  EXPECT_EQ(session.Select(record), 0);
  EXPECT_TRUE(*record.value == *GetParam().value());
}

TEST_P(RecordValue, UpdateStoresTheValue) {
  Run("INSERT INTO kind (id, value) VALUES (1, NULL)");
  Session session(With());
  ValueRecord const record(GetParam());
  EXPECT_EQ(session.Update(record), 1U);
  EXPECT_EQ(StoredRows("SELECT id, value FROM kind"), (Rows{{"1", GetParam().stored}}));
}

TEST_P(RecordValue, UpdateStoresNull) {
  Session session(With());
  ValueRecord record(GetParam());
  session.Insert(record);
  record.value->SetNull();
  EXPECT_EQ(session.Update(record), 1U);
  EXPECT_EQ(StoredRows("SELECT id, value FROM kind"), (Rows{{"1", std::nullopt}}));
}

TEST_P(RecordValue, UpdateOfWhatWasSelectedChangesNothing) {
  Session session(With());
  ValueRecord record(GetParam());
  session.Insert(record);
  session.Select(record);
  EXPECT_EQ(session.Update(record), 0U);
}

INSTANTIATE_TEST_SUITE_P(Of, RecordValue, ::testing::ValuesIn(AllKinds()), NameOf);

struct KeyRecord : ASDomain {
  explicit KeyRecord(Kind const& kind) : ASDomain("keyed", "Keyed"), key(kind.value()) {
    Add(keyColumn, *key).Add(noteColumn, note);
  }
  KeyRecord(KeyRecord const&) = delete;
  KeyRecord& operator=(KeyRecord const&) = delete;

  std::unique_ptr<ASData> key;
  ASVStr note{10};
  ASAttribute keyColumn{"key", "Key", 0, corvane::kKey};
  ASAttribute noteColumn{"note"};
};

// A table with two rows, that of the record noted 'mine'.
class RecordKey : public LiveTest, public ::testing::WithParamInterface<Kind> {
 protected:
  void CreateTables() override {
    Run(std::string("CREATE TABLE keyed (`key` ") + GetParam().columnType + " PRIMARY KEY, note VARCHAR(10))");
    Session session(With());
    KeyRecord record(GetParam());
    record.note = "mine";
    session.Insert(record);
    Run("SET sql_mode=''");  // of the observer: 0 for a date
    Run("INSERT INTO keyed VALUES ('0', 'zero')");
  }
};

TEST_P(RecordKey, SelectFindsItsRow) {
  Session session(With());
  KeyRecord record(GetParam());
  EXPECT_EQ(session.Select(record), 1);
  EXPECT_EQ(record.note, "mine");
}

TEST_P(RecordKey, UpdateChangesItsRowOnly) {
  Session session(With());
  KeyRecord record(GetParam());
  record.note = "changed";
  EXPECT_EQ(session.Update(record), 1U);
  EXPECT_EQ(StoredRows("SELECT note FROM keyed ORDER BY note"), (Rows{{"changed"}, {"zero"}}));
}

TEST_P(RecordKey, DeleteRemovesItsRowOnly) {
  Session session(With());
  KeyRecord const record(GetParam());
  EXPECT_EQ(session.Delete(record), 1U);
  EXPECT_EQ(StoredRows("SELECT note FROM keyed"), (Rows{{"zero"}}));
}

INSTANTIATE_TEST_SUITE_P(Of, RecordKey, ::testing::ValuesIn(KeyKinds()), NameOf);

// The value was set before it became NULL: nothing of it may be left in the key.
class RecordNullKey : public RecordKey {};

TEST_P(RecordNullKey, SelectFindsNoRow) {
  Session session(With());
  KeyRecord record(GetParam());
  record.key->SetNull();
  EXPECT_EQ(session.Select(record), 0);
}

TEST_P(RecordNullKey, UpdateChangesNoRow) {
  Session session(With());
  KeyRecord record(GetParam());
  record.key->SetNull();
  record.note = "changed";
  EXPECT_EQ(session.Update(record), 0U);
  EXPECT_EQ(StoredRows("SELECT note FROM keyed ORDER BY note"), (Rows{{"mine"}, {"zero"}}));
}

TEST_P(RecordNullKey, DeleteRemovesNoRow) {
  Session session(With());
  KeyRecord record(GetParam());
  record.key->SetNull();
  EXPECT_EQ(session.Delete(record), 0U);
  EXPECT_EQ(StoredRows("SELECT note FROM keyed ORDER BY note"), (Rows{{"mine"}, {"zero"}}));
}

INSTANTIATE_TEST_SUITE_P(Of, RecordNullKey, ::testing::ValuesIn(NumberAndGuidKinds()), NameOf);

class RecordNullDecimalKey : public LiveTest {};

// The number that stands for NULL does not fit the column: a strict MariaDB refuses to compare for a change.
TEST_F(RecordNullDecimalKey, UpdateIsRefusedOrFindsNoRow) {
  Run("CREATE TABLE keyed (`key` DECIMAL(12,2) PRIMARY KEY, note VARCHAR(10))");
  Run("INSERT INTO keyed VALUES (0, 'zero'), (-9999999999.99, 'least')");
  Session session(With());
  session.Execute("SET SESSION sql_mode='STRICT_ALL_TABLES'");
  KeyRecord record({"Currency", "DECIMAL(12,2)", MakeCurrency, "19.99"});
  record.key->SetNull();
  record.note = "changed";
  EXPECT_EQ(FailureOf([&] { session.Update(record); }).number, IsMariaDb() ? 102 : -1);
  EXPECT_EQ(StoredRows("SELECT note FROM keyed ORDER BY note"), (Rows{{"least"}, {"zero"}}));
}

TEST_F(RecordNullDecimalKey, UpdateChangesNoRowOfAServerThatIsNotStrict) {
  Run("CREATE TABLE keyed (`key` DECIMAL(12,2) PRIMARY KEY, note VARCHAR(10))");
  Run("INSERT INTO keyed VALUES (0, 'zero'), (-9999999999.99, 'least')");
  Session session(With());
  session.Execute("SET SESSION sql_mode=''");
  KeyRecord record({"Currency", "DECIMAL(12,2)", MakeCurrency, "19.99"});
  record.key->SetNull();
  record.note = "changed";
  session.Update(record);
  EXPECT_EQ(StoredRows("SELECT note FROM keyed ORDER BY note"), (Rows{{"least"}, {"zero"}}));
}

TEST_F(RecordNullDecimalKey, DeleteRemovesNoRow) {
  Run("CREATE TABLE keyed (`key` DECIMAL(12,2) PRIMARY KEY, note VARCHAR(10))");
  Run("INSERT INTO keyed VALUES (0, 'zero'), (-9999999999.99, 'least')");
  Session session(With());
  KeyRecord record({"Currency", "DECIMAL(12,2)", MakeCurrency, "19.99"});
  record.key->SetNull();
  session.Delete(record);
  EXPECT_EQ(StoredRows("SELECT note FROM keyed ORDER BY note"), (Rows{{"least"}, {"zero"}}));
}

template <class Column, class Value>
struct Limit {
  char const* name;
  Value value;
  char const* stored;
};

template <class Column, class Value>
void PrintTo(Limit<Column, Value> const& limit, std::ostream* out) {
  *out << limit.stored;
}
template <class AnyLimit>
std::string NameOfLimit(::testing::TestParamInfo<AnyLimit> const& info) {
  return info.param.name;
}

template <class Column>
struct NumberRecord : ASDomain {
  ASInt id;
  Column number;
  ASAttribute idColumn{"id", "Id", 0, corvane::kKey};
  ASAttribute numberColumn{"number"};

  NumberRecord() : ASDomain("numbers", "Numbers") {
    id = 1;
    Add(idColumn, id).Add(numberColumn, number);
  }
  NumberRecord(NumberRecord const&) = delete;
  NumberRecord& operator=(NumberRecord const&) = delete;
};

using IntLimit = Limit<ASInt, int>;
class RecordInt : public LiveTest, public ::testing::WithParamInterface<IntLimit> {};

TEST_P(RecordInt, IsStoredExactlyAndReadBack) {
  Run("CREATE TABLE numbers (id INT PRIMARY KEY, number INT)");
  Session session(With());
  NumberRecord<ASInt> record;
  record.number = GetParam().value;
  session.Insert(record);
  EXPECT_EQ(Stored("SELECT number FROM numbers"), GetParam().stored);
  record.number.SetNull();
  session.Select(record);
  EXPECT_EQ(static_cast<int>(record.number), GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(Of, RecordInt,
                         ::testing::Values(IntLimit{"Zero", 0, "0"}, IntLimit{"Largest", INT_MAX, "2147483647"},
                                           IntLimit{"Smallest", INT_MIN + 1, "-2147483647"}),
                         NameOfLimit<IntLimit>);

using Int64Limit = Limit<ASInt64, long>;
class RecordInt64 : public LiveTest, public ::testing::WithParamInterface<Int64Limit> {};

TEST_P(RecordInt64, IsStoredExactlyAndReadBack) {
  Run("CREATE TABLE numbers (id INT PRIMARY KEY, number BIGINT)");
  Session session(With());
  NumberRecord<ASInt64> record;
  record.number = GetParam().value;
  session.Insert(record);
  EXPECT_EQ(Stored("SELECT number FROM numbers"), GetParam().stored);
  record.number.SetNull();
  session.Select(record);
  EXPECT_EQ(record.number.IsNull(), 0);
  EXPECT_EQ(static_cast<long>(record.number), GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(Of, RecordInt64,
                         ::testing::Values(Int64Limit{"Zero", 0, "0"},
                                           Int64Limit{"Largest", LONG_MAX, "9223372036854775807"},
                                           Int64Limit{"Smallest", LONG_MIN, "-9223372036854775808"}),
                         NameOfLimit<Int64Limit>);

using DoubleLimit = Limit<ASDouble, double>;
class RecordDouble : public LiveTest, public ::testing::WithParamInterface<DoubleLimit> {};

TEST_P(RecordDouble, IsStoredExactlyAndReadBack) {
  Run("CREATE TABLE numbers (id INT PRIMARY KEY, number DOUBLE)");
  Session session(With());
  NumberRecord<ASDouble> record;
  record.number = GetParam().value;
  session.Insert(record);
  EXPECT_EQ(Stored("SELECT number FROM numbers"), GetParam().stored);
  record.number.SetNull();
  session.Select(record);
  EXPECT_EQ(static_cast<double>(record.number), GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(Of, RecordDouble,
                         ::testing::Values(DoubleLimit{"Zero", 0.0, "0"}, DoubleLimit{"Tenth", 0.1, "0.1"},
                                           DoubleLimit{"AllDigits", 0.30000000000000004, "0.30000000000000004"},
                                           DoubleLimit{"Small", 1.5e-7, "0.00000015"},
                                           DoubleLimit{"Large", 1e17, "1e17"},
                                           DoubleLimit{"Largest", DBL_MAX, "1.7976931348623157e308"},
                                           DoubleLimit{"SmallestNormal", DBL_MIN, "2.2250738585072014e-308"}),
                         NameOfLimit<DoubleLimit>);

using TimeLimit = Limit<ASTime, int>;
class RecordTime : public LiveTest, public ::testing::WithParamInterface<TimeLimit> {};

TEST_P(RecordTime, IsStoredExactlyAndReadBack) {
  Run("CREATE TABLE numbers (id INT PRIMARY KEY, number DATETIME)");
  Session session(With());
  NumberRecord<ASTime> record;
  record.number = GetParam().value;
  session.Insert(record);
  EXPECT_EQ(Stored("SELECT number FROM numbers"), GetParam().stored);
  record.number.SetNull();
  session.Select(record);
  EXPECT_EQ(static_cast<int>(record.number), GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(Of, RecordTime,
                         ::testing::Values(TimeLimit{"Epoch", 0, "1970-01-01 00:00:00"},
                                           TimeLimit{"LeapDay", 1078055999, "2004-02-29 11:59:59"},
                                           TimeLimit{"Last", INT_MAX, "2038-01-19 03:14:07"},
                                           TimeLimit{"First", INT_MIN + 1, "1901-12-13 20:45:53"}),
                         NameOfLimit<TimeLimit>);

class RecordNotFinite : public LiveTest {};

TEST_F(RecordNotFinite, IsNeverSent) {
  Run("CREATE TABLE numbers (id INT PRIMARY KEY, number DOUBLE)");
  Session session(With());
  NumberRecord<ASDouble> record;
  record.number = std::numeric_limits<double>::infinity();
  EXPECT_THROW(session.Insert(record), AException);
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM numbers"), "0");
}

}  // namespace
