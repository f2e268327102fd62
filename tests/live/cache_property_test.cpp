#include <algorithm>
#include <array>
#include <iterator>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/live.h"

using corvane::test::Fetched;
using corvane::test::Field;
using corvane::test::LiveTest;
using corvane::test::Row;
using corvane::test::Rows;
using corvane::test::Session;

namespace {

Field const kNull;

// A cache and a model of it, which take the same random steps.

using Key = std::pair<int, std::string>;
struct Content {
  std::optional<int> amount;
  Field note;
};
using Records = std::map<Key, Content>;
using Counts = std::map<std::string, int>;

// A record as texts.
Row RowOf(Records::value_type const& record) {
  Content const& content = record.second;
  return {std::to_string(record.first.first), record.first.second,
          content.amount ? Field(std::to_string(*content.amount)) : kNull, content.note};
}
Row const kNullRow(4);

struct Entries : ASCache {
  ASInt number, amount;
  ASVStr code{20}, note{60};
  ASAttribute numberColumn{"number", "Number", 0, corvane::kKey};
  ASAttribute codeColumn{"code", "Code", 0, corvane::kKey};
  ASAttribute amountColumn{"amount"}, noteColumn{"note"};

  explicit Entries(ASSession& session) : ASDomain("entry", "Entry"), ASCache(&session, 0) {
    Add(numberColumn, number).Add(codeColumn, code).Add(amountColumn, amount).Add(noteColumn, note);
  }
  Entries(Entries const&) = delete;
  Entries& operator=(Entries const&) = delete;

  void SetKey(Key const& key) {
    number = key.first;
    code = key.second.c_str();
  }
  void Set(Key const& key, Content const& content) {
    SetKey(key);
    amount = content.amount ? Int(*content.amount) : Int();
    note = content.note ? content.note->c_str() : nullptr;
  }
  Row Texts() const {
    Row row;
    for (ASAttribute const* const attribute : *this) {
      ASData const& value = *attribute->Data();
      row.push_back(value.IsNull() != 0 ? kNull : Field(value.getstr().ToString()));
    }
    return row;
  }
};

constexpr std::array<char const*, 8> kCodes{
    "a", "A", "", "O'Brien", "back\\slash", "\"quoted\"", "Z\xC3\xBCrich", "\xE6\x97\xA5\xE6\x9C\xAC"};
constexpr std::array<char const*, 8> kNotes{"plain",
                                            "",
                                            "it's",
                                            "\\",
                                            "'; DELETE FROM entry; -- ",
                                            "tab\tand\nline",
                                            "100% \"_\" \\'",
                                            "\xF0\x9F\x90\x9F\xC3\xBC"};
constexpr int kNumbers = 4;

struct Operation {
  char const* name;
  unsigned weight;  // in 1000 steps
};
enum Operations : std::size_t {
  kGet,
  kPut,
  kInsert,
  kDelete,
  kGetByPlace,
  kChangeByAnother,
  kRefusedPut,
  kReadOnlyGet,
  kPreFetch,
  kCacheOn,
  kCacheOff,
  kClear
};
constexpr std::array<Operation, 12> kOperations{{{"get", 550},
                                                 {"put", 110},
                                                 {"insert", 90},
                                                 {"delete", 70},
                                                 {"get by place", 80},
                                                 {"change by another", 25},
                                                 {"refused put", 20},
                                                 {"read-only get", 15},
                                                 {"prefetch", 8},
                                                 {"cache on", 14},
                                                 {"cache off", 6},
                                                 {"clear", 12}}};

class CacheModel : public LiveTest, public ::testing::WithParamInterface<unsigned> {
 protected:
  void CreateTables() override {
    Run("CREATE TABLE entry (number INT, code VARCHAR(20), amount INT, note VARCHAR(60), PRIMARY KEY (code, number)) "
        "ENGINE=MyISAM COLLATE utf8mb4_bin");
    session_ = std::make_unique<Session>(With());
    other_ = std::make_unique<Session>(With());
    entries_ = std::make_unique<Entries>(*session_);
    statements_ = Statements();
  }

  std::size_t Draw(std::size_t count) { return random_() % count; }

  std::size_t DrawOperation() {
    std::size_t ticket = Draw(1000);
    for (std::size_t operation = 0;; ++operation) {
      if (ticket < kOperations[operation].weight) return operation;
      ticket -= kOperations[operation].weight;
    }
  }
  Key DrawKey() { return {static_cast<int>(Draw(kNumbers)) - 1, kCodes[Draw(kCodes.size())]}; }
  Content DrawContent() {
    Content content;
    if (Draw(4) != 0) content.amount = static_cast<int>(Draw(2001)) - 1000;
    if (Draw(4) != 0) content.note = kNotes[Draw(kNotes.size())];
    return content;
  }

  // Takes the step on the cache and on the model, and checks the record and the number of records.
  void Take(std::size_t operation) {
    switch (operation) {
      case kGet:
        return Get(DrawKey());
      case kPut:
        return Put(DrawKey(), DrawContent());
      case kInsert:
        return Insert(DrawKey(), DrawContent());
      case kDelete:
        return Delete(DrawKey());
      case kGetByPlace:
        return GetByPlace(Draw(6));
      case kChangeByAnother:
        return ChangeByAnother(DrawKey(), DrawContent());
      case kRefusedPut:
        return RefusedPut(DrawKey(), DrawContent());
      case kReadOnlyGet:
        return entries_->ReadOnlyGet();
      case kPreFetch:
        return PreFetch();
      case kCacheOn:
        caching_ = true;
        entries_->CacheOn();
        return;
      case kCacheOff:
        caching_ = false;
        entries_->CacheOff();
        store_.clear();
        return ExpectRecord(kNullRow);
      default:
        entries_->Clear();
        store_.clear();
        return ExpectRecord(kNullRow);
    }
  }

  void ExpectRecord(Row const& row) { EXPECT_EQ(entries_->Texts(), row); }
  void ExpectSize() {
    EXPECT_EQ(entries_->Size(), static_cast<int>(store_.size()));
    EXPECT_EQ(session_->IsReadOnly(), 0);
  }
  void ExpectTable() {
    Rows rows;
    std::transform(table_.begin(), table_.end(), std::back_inserter(rows), RowOf);
    EXPECT_EQ(StoredRows("SELECT number, code, amount, note FROM entry ORDER BY number, code"), rows);
  }
  // By the server's own count: hits have asked nothing, nor has anything else asked too often.
  void ExpectStatements() { EXPECT_EQ(Statements(), statements_); }

 private:
  void Get(Key const& key) {
    entries_->SetKey(key);
    entries_->Get(-1);
    if (auto const stored = store_.find(key); stored != store_.end()) return ExpectRecord(RowOf(*stored));
    ++statements_["Com_select"];
    auto const row = table_.find(key);
    if (row == table_.end()) return ExpectRecord(kNullRow);
    ExpectRecord(RowOf(*row));
    if (caching_) store_.insert(*row);
  }

  void Put(Key const& key, Content const& content) {
    entries_->Set(key, content);
    entries_->Put();
    ++statements_["Com_update"];
    if (auto const row = table_.find(key); row != table_.end()) row->second = content;
    store_.erase(key);
    if (caching_) store_[key] = content;
    ExpectRecord(RowOf({key, content}));
  }

  void Insert(Key const& key, Content const& content) {
    entries_->Set(key, content);
    ++statements_["Com_insert"];
    if (table_.count(key) != 0) {
      EXPECT_THROW(entries_->Insert(), AException);
    } else {
      entries_->Insert();
      table_[key] = content;
      if (caching_) store_[key] = content;
    }
    ExpectRecord(RowOf({key, content}));
  }

  void Delete(Key const& key) {
    entries_->SetKey(key);
    entries_->Delete();
    ++statements_["Com_delete"];
    table_.erase(key);
    store_.erase(key);
    ExpectRecord(kNullRow);
  }

  void GetByPlace(std::size_t place) {
    entries_->Get(static_cast<int>(place));
    bool const exists = place < kNullRow.size() && place < store_.size();
    ExpectRecord(exists ? RowOf(*std::next(store_.begin(), static_cast<std::ptrdiff_t>(place))) : kNullRow);
  }

  // Of which the cache knows nothing.
  void ChangeByAnother(Key const& key, Content const& content) {
    Entries entry(*other_);
    entry.Set(key, content);
    other_->Delete(entry);
    table_.erase(key);
    if (Draw(2) == 0) return;
    other_->Insert(entry);
    table_[key] = content;
  }

  void RefusedPut(Key const& key, Content const& content) {
    entries_->Set(key, content);
    session_->PushReadOnly();
    EXPECT_THROW(entries_->Put(), AException);
    session_->PopReadOnly();
    ExpectRecord(RowOf({key, content}));
  }

  Counts Statements() {
    Counts counts;
    for (Row const& row : Fetched(*session_,
                                  "SHOW SESSION STATUS WHERE Variable_name IN ('Com_select', 'Com_insert', "
                                  "'Com_insert_select', 'Com_update', 'Com_delete')")) {
      counts[row.at(0).value()] = std::stoi(row.at(1).value());
    }
    return counts;
  }

  void PreFetch() {
    EXPECT_EQ(entries_->PreFetch(), static_cast<int>(table_.size()));
    ++statements_["Com_select"];
    store_ = table_;
    if (table_.empty()) return ExpectRecord(kNullRow);
    EXPECT_TRUE(std::any_of(table_.begin(), table_.end(),
                            [this](auto const& record) { return RowOf(record) == entries_->Texts(); }));
  }

  std::mt19937 random_{GetParam()};
  std::unique_ptr<Session> session_;
  std::unique_ptr<Session> other_;
  std::unique_ptr<Entries> entries_;
  Records table_;  // what the table must hold,
  Records store_;  // and the cache
  bool caching_ = true;
  Counts statements_;  // that the server must have run for the session
};

TEST_P(CacheModel, HoldsWhatTheModelHolds) {
  constexpr int kSteps = 20000;
  constexpr int kTableInterval = 500;
  for (int step = 1; step <= kSteps; ++step) {
    std::size_t const operation = DrawOperation();
    Take(operation);
    ExpectSize();
    if (step % kTableInterval == 0) ExpectTable();
    if (HasFailure()) FAIL() << "seed " << GetParam() << ", step " << step << ": " << kOperations[operation].name;
  }
  ExpectTable();
  ExpectStatements();
}

INSTANTIATE_TEST_SUITE_P(Seed, CacheModel, ::testing::Values(1U, 20261121U));

// Columns of all kinds, and thousands of rows of them.

struct Columns {
  ASInt id, amount;
  ASInt64 big;
  ASDouble ratio;
  ASDCurrency price;
  ASTime moment;
  ASStr code{10};
  ASVStr note{80};
  ASGuid guid;
  ASBlob digest{20};
  ASRealBlob bytes{0};
  ASGeometry shape{200};
  ASAttribute idColumn{"id", "Id", 0, corvane::kKey};
  ASAttribute amountColumn{"amount"}, bigColumn{"big"}, ratioColumn{"ratio"}, priceColumn{"price"},
      momentColumn{"moment"}, codeColumn{"code"}, noteColumn{"note"}, guidColumn{"guid"}, digestColumn{"digest"},
      bytesColumn{"bytes"}, shapeColumn{"shape"};

  void AddTo(ASDomain& record) {
    record.Add(idColumn, id).Add(amountColumn, amount).Add(bigColumn, big).Add(ratioColumn, ratio);
    record.Add(priceColumn, price).Add(momentColumn, moment).Add(codeColumn, code).Add(noteColumn, note);
    record.Add(guidColumn, guid).Add(digestColumn, digest).Add(bytesColumn, bytes).Add(shapeColumn, shape);
  }
};

struct Sample : ASDomain, Columns {
  Sample() : ASDomain("sample", "Sample") { AddTo(*this); }
  Sample(Sample const&) = delete;
  Sample& operator=(Sample const&) = delete;
};

struct Samples : ASCache, Columns {
  explicit Samples(ASSession& session) : ASDomain("sample", "Sample"), ASCache(&session, 0) { AddTo(*this); }
  Samples(Samples const&) = delete;
  Samples& operator=(Samples const&) = delete;

  void Look(int key) {
    id = key;
    Get(-1);
  }
};

void ExpectEqual(ASDomain const& record, ASDomain const& expected) {
  auto counterpart = expected.begin();
  for (ASAttribute const* const attribute : record) {
    ASData const& value = *attribute->Data();
    ASData const& expectedValue = *(*counterpart++)->Data();
    EXPECT_EQ(value.IsNull(), expectedValue.IsNull()) << attribute->Name();
    EXPECT_TRUE(value == static_cast<basic_type const&>(expectedValue)) << attribute->Name();
  }
}

// The ids go from -1500 to 1499, and of every eleven rows each column but the id has one NULL.
class CacheOfAllKinds : public LiveTest {
 protected:
  static constexpr int kFirst = -1500;
  static constexpr int kEnd = 1500;
  static constexpr int kNullBig = -1500 + 2;  // where that column is NULL

  void CreateTables() override {
    Run("CREATE TABLE sample (id INT PRIMARY KEY, amount INT, big BIGINT, ratio DOUBLE, price DECIMAL(12,2), "
        "moment DATETIME, code CHAR(10), note VARCHAR(80), guid CHAR(36), digest VARBINARY(20), bytes LONGBLOB, "
        "shape GEOMETRY, KEY (amount)) ENGINE=MyISAM");
    std::string ids;
    for (int id = kEnd - 1; id >= kFirst; --id) ids += (ids.empty() ? "(" : ",(") + std::to_string(id) + ")";
    Run("INSERT INTO sample (id) VALUES " + ids);
    Run("UPDATE sample SET amount=id*7919, big=9007199254740993-id, ratio=id/7e-3, price=id/100, "
        "moment=DATE_ADD('2004-07-01 13:45:00', INTERVAL id*10007 MINUTE), code=CONCAT('c', id), "
        "note=CONCAT(' O''Brien\\\\ \\\"Z\xC3\xBCrich\\\"\\n', id, '  '), "
        "guid=CONCAT('6f9619ff-8b86-d011-b42d-', LPAD(HEX(id+1500), 12, '0')), digest=UNHEX(SHA1(id)), "
        "bytes=REPEAT(UNHEX('00275C0AFF'), (id+1500) MOD 300), "
        "shape=ST_GeomFromText(CONCAT('POLYGON((0 0,', id+0.25, ' 0,4 ', id+1e10, ',0 0))'))");
    int place = 0;
    for (char const* const column :
         {"amount", "big", "ratio", "price", "moment", "code", "note", "guid", "digest", "bytes", "shape"}) {
      std::string const name = column;
      Run("UPDATE sample SET " + name + "=NULL WHERE (id+1500) MOD 11=" + std::to_string(++place % 11));
    }
  }
};

TEST_F(CacheOfAllKinds, EveryRecordOfPreFetchIsWhatASelectGives) {
  Session session(With());
  Samples samples(session);
  EXPECT_EQ(samples.PreFetch(), 3000);
  Sample selected;
  for (int id = kFirst; id < kEnd && !HasFailure(); ++id) {
    SCOPED_TRACE(id);
    samples.Look(id);
    selected.id = id;
    ASSERT_EQ(session.Select(selected), 1);
    // A NULL of 64 bits is stored as the number.
    if (selected.big.IsNull() != 0) selected.big = std::numeric_limits<long>::min();
    ExpectEqual(samples, selected);
    EXPECT_EQ(samples.note.getstr(), selected.note.getstr());  // to the last blank
  }
}

TEST_F(CacheOfAllKinds, EveryRecordOfAMissIsWhatTheHitGives) {
  Session session(With());
  Samples samples(session);
  Sample read;
  for (int id = kFirst; id < kFirst + 330 && !HasFailure(); ++id) {
    SCOPED_TRACE(id);
    samples.Look(id);
    static_cast<ASDomain&>(read) = samples;
    if (read.big.IsNull() != 0) read.big = std::numeric_limits<long>::min();
    samples.SetNull();
    samples.Look(id);
    ExpectEqual(samples, read);
    EXPECT_EQ(samples.note.getstr(), read.note.getstr());
  }
  EXPECT_EQ(samples.Size(), 330);
}

TEST_F(CacheOfAllKinds, TimeFromTheStoreIsTheTimeAgain) {
  Session session(With());
  Samples samples(session);
  samples.PreFetch();
  samples.Look(0);
  EXPECT_EQ(samples.moment.getstr(), "2004-07-01 13:45:00");
}

TEST_F(CacheOfAllKinds, NullOf64BitsIsNullOnAMissAndANumberOnAHit) {
  Session session(With());
  Samples samples(session);
  samples.Look(kNullBig);
  EXPECT_EQ(samples.big.IsNull(), 1);
  samples.Look(kNullBig);
  EXPECT_EQ(samples.big.IsNull(), 0);
  EXPECT_EQ(samples.big.getstr(), "-9223372036854775808");
}

TEST_F(CacheOfAllKinds, SmallestKeyIsFirstAfterPreFetch) {
  Session session(With());
  Samples samples(session);
  samples.PreFetch();
  samples.Get(0);
  EXPECT_EQ(static_cast<int>(samples.id), kFirst);
  samples.Get(11);
  EXPECT_EQ(static_cast<int>(samples.id), kFirst + 11);
}

// But for the small binaries, which are for reading only, and the NULL of 64 bits, which is a number now.
TEST_F(CacheOfAllKinds, PutOfEveryHitWritesWhatWasThere) {
  Run("CREATE TABLE before_put AS SELECT * FROM sample");
  Session session(With());
  Samples samples(session);
  samples.PreFetch();
  for (int id = kFirst; id < kFirst + 330; ++id) {
    samples.Look(id);
    samples.Put();
  }
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM sample s JOIN before_put b USING (id) WHERE s.amount<=>b.amount AND "
                   "s.ratio<=>b.ratio AND s.price<=>b.price AND s.moment<=>b.moment AND s.code<=>b.code AND "
                   "s.note<=>b.note AND LENGTH(s.note)<=>LENGTH(b.note) AND s.guid<=>b.guid AND "
                   "s.bytes<=>b.bytes AND ST_AsText(s.shape)<=>ST_AsText(b.shape)"),
            "3000");
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM sample WHERE big=-9223372036854775808"), "30");
}

// Binary columns and geometries.

struct Shapes : ASCache {
  ASInt id;
  ASRealBlob bytes{0};
  ASGeometry shape{200};
  ASAttribute idColumn{"id", "Id", 0, corvane::kKey};
  ASAttribute bytesColumn{"bytes"}, shapeColumn{"shape"};

  explicit Shapes(ASSession& session) : ASDomain("shape", "Shape"), ASCache(&session, 0) {
    id = 1;
    Add(idColumn, id).Add(bytesColumn, bytes).Add(shapeColumn, shape);
  }
  Shapes(Shapes const&) = delete;
  Shapes& operator=(Shapes const&) = delete;
};

std::string const kTriangle = "POLYGON((0 0,4 0,4 4.5,0 0))";
RealBlob const kBytes(6, "a\0'\\\xFF\x1A", Copy);

class CacheBinary : public LiveTest {
 protected:
  void CreateTables() override {
    Run("CREATE TABLE shape (id INT PRIMARY KEY, bytes LONGBLOB, shape GEOMETRY)");
    Run("INSERT INTO shape VALUES (1, UNHEX('6100275CFF1A'), ST_GeomFromText('" + kTriangle + "'))");
    Run("INSERT INTO shape VALUES (2, NULL, NULL), (3, '', ST_GeomFromText('POINT(1 2)'))");
  }
  Rows ShapeRows(char const* id) {
    return StoredRows(std::string("SELECT HEX(bytes), ST_AsText(shape) FROM shape WHERE id=") + id);
  }
};

TEST_F(CacheBinary, HitIsEqualToWhatWasRead) {
  Session session(With());
  Shapes shapes(session), hit(session);
  shapes.Get(-1);
  hit.PreFetch();
  hit.id = 1;
  Run("DELETE FROM shape");
  hit.Get(-1);
  EXPECT_TRUE(hit.bytes == kBytes);
  EXPECT_EQ(hit.shape.size(), 13 + 4 * 16);
  EXPECT_TRUE(hit.shape == static_cast<basic_type const&>(shapes.shape));
}

TEST_F(CacheBinary, HitOfANullIsNullAndThatOfAnEmptyOneIsNot) {
  Session session(With());
  Shapes shapes(session);
  shapes.PreFetch();
  shapes.id = 2;
  shapes.Get(-1);
  EXPECT_EQ(shapes.bytes.IsNull(), 1);
  EXPECT_EQ(shapes.shape.IsNull(), 1);
  shapes.id = 3;
  shapes.Get(-1);
  EXPECT_EQ(shapes.bytes.IsNull(), 0);
  EXPECT_EQ(shapes.bytes.size(), 0);
  EXPECT_EQ(shapes.shape.size(), 21);
}

TEST_F(CacheBinary, PutOfAHitWritesTheSame) {
  Session session(With());
  Shapes shapes(session);
  shapes.PreFetch();
  Run("UPDATE shape SET bytes=NULL, shape=NULL WHERE id=1");
  shapes.id = 1;
  shapes.Get(-1);
  shapes.Put();
  EXPECT_EQ(ShapeRows("1"), (Rows{{"6100275CFF1A", "POLYGON((0 0,4 0,4 4.5,0 0))"}}));
}

TEST_F(CacheBinary, InsertOfAHitUnderAnotherKeyWritesTheSame) {
  Session session(With());
  Shapes shapes(session);
  shapes.Get(-1);
  shapes.Get(-1);
  shapes.id = 4;
  shapes.Insert();
  EXPECT_EQ(ShapeRows("4"), (Rows{{"6100275CFF1A", "POLYGON((0 0,4 0,4 4.5,0 0))"}}));
  EXPECT_EQ(shapes.Size(), 2);
}

TEST_F(CacheBinary, PutOfNullIsRememberedAsNull) {
  Session session(With());
  Shapes shapes(session);
  shapes.Get(-1);
  shapes.bytes.SetNull();
  shapes.shape.SetNull();
  shapes.Put();
  EXPECT_EQ(ShapeRows("1"), (Rows{{kNull, kNull}}));
  shapes.bytes = kBytes;
  shapes.Get(-1);
  EXPECT_EQ(shapes.bytes.IsNull(), 1);
  EXPECT_EQ(shapes.shape.IsNull(), 1);
}

}  // namespace
