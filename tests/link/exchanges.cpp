#include "tests/link/exchanges.h"

#include <cstdint>
#include <stdexcept>

#include "tests/live/cache_test.h"
#include "tests/support/live.h"

namespace corvane::test {

namespace {

constexpr char const* kBefore = "1=one,2=two|41";
constexpr char const* kInserted = "1=one,2=two,3=three|41";
constexpr char const* kUpdated = "1=uno,2=two|41";
constexpr char const* kDeleted = "1=one|41";

// A record with a column of each kind whose bytes could come in half.
struct Wide : ASDomain {
  ASInt id;
  ASVStr text{40};
  ASBlob bytes{std::uint16_t{64}};
  ASRealBlob large{0U};
  ASDouble real;
  ASInt64 wide;
  ASInt number;
  ASAttribute idColumn{"id", "Id", 0, corvane::kKey};
  ASAttribute textColumn{"t"}, bytesColumn{"b"}, largeColumn{"r"}, realColumn{"d"}, wideColumn{"w"}, numberColumn{"n"};

  Wide() : ASDomain("wide", "Wide") {
    Add(idColumn, id).Add(textColumn, text).Add(bytesColumn, bytes).Add(largeColumn, large);
    Add(realColumn, real).Add(wideColumn, wide).Add(numberColumn, number);
  }
  Wide(Wide const&) = delete;
  Wide& operator=(Wide const&) = delete;
};

Field FieldOf(ASData const& value) {
  if (value.IsNull() != 0) return {};
  if (auto const* const small = dynamic_cast<Blob const*>(&value)) {
    return std::string(reinterpret_cast<char const*>(small->Bytes()), small->Length());
  }
  if (auto const* const large = dynamic_cast<RealBlob const*>(&value)) {
    return std::string(static_cast<char const*>(large->voidptr()), large->Length());
  }
  return value.getstr().ToString();
}

Rows const kWideRows{
    {"1", "a text of forty bytes, no more, no less.", std::string("\0\x01\xFE\xFF", 4), std::string(60, 'x'), "2.5",
     "9007199254740993", "86400"},
    {"2", {}, {}, {}, {}, {}, {}},
    {"3", "z", std::string(1, '\0'), "", "-0.125", "-1", "1"},
};

// What is wrong with the rows of a cursor whose columns are those of `values`.
std::string WrongRows(ASCursor& cursor, std::vector<ASData*> const& values, Rows const& expected) {
  Rows rows;
  while (cursor.Fetch() != 0) {
    Row row;
    for (ASData* const value : values) {
      value->Trim();
      row.push_back(FieldOf(*value));
    }
    rows.push_back(row);
  }
  if (rows == expected) return {};
  return "wrong values in " + std::to_string(rows.size()) + " rows: " + testing::PrintToString(rows);
}

std::string WrongCount(unsigned long count, bool repeated) {
  if (count == 1 || (count == 0 && repeated)) return {};
  return "affected rows: " + std::to_string(count);
}

// Values that a failing statement must not touch.
template <class Values, class Action>
void Untouched(Values const& values, Action action) {
  auto const before = values();
  try {
    action();
  } catch (AException const&) {
    if (values() != before) throw std::runtime_error("a value was half read");
    throw;
  }
}

std::string Insert(ASSession& session, bool) { return WrongCount(session.Insert(Item(3, "three")), false); }

std::string Update(ASSession& session, bool repeated) { return WrongCount(session.Update(Item(1, "uno")), repeated); }

std::string Delete(ASSession& session, bool repeated) { return WrongCount(session.Delete(Item(2, "")), repeated); }

std::string Select(ASSession& session, bool) {
  Item item(1, "before");
  int found = 0;
  Untouched([&] { return item.name.ToString(); }, [&] { found = session.Select(item); });
  if (found == 1 && item.name == "one") return {};
  return "selected " + std::to_string(found) + ": " + item.name.ToString();
}

std::string OpenCursor(ASSession& session, bool) {
  Wide wide;
  wide.id = 77;
  wide.text = "before";
  ASCursor cursor(&session);
  cursor.Order(ASOrder("id"));
  std::vector<ASData*> values;
  for (ASAttribute* const attribute : wide) {
    cursor.Project() << *attribute;
    values.push_back(attribute->Data());
  }
  Untouched([&] { return wide.id.getstr().ToString() + wide.text.ToString() + FieldOf(wide.large).value_or("null"); },
            [&] { cursor.Open(); });
  return WrongRows(cursor, values, kWideRows);
}

std::string RawStatement(ASSession& session, bool) {
  ASCursor cursor(&session);
  cursor.Statement("SELECT id, t, HEX(b) FROM wide ORDER BY id");
  std::vector<ASData*> values;
  for (ASSimpleAttribute const* const item : cursor.Project().Items()) values.push_back(item->Data());
  return WrongRows(cursor, values,
                   {{"1", "a text of forty bytes, no more, no less.", "0001FEFF"}, {"2", {}, {}}, {"3", "z", "00"}});
}

std::string ExecuteText(ASSession& session, bool repeated) {
  return WrongCount(session.Execute("UPDATE item SET name='uno' WHERE id=1"), repeated);
}

std::string ExecuteQuery(ASSession& session, bool) {
  Rows const rows = Fetched(session, "SELECT id, b, r FROM wide ORDER BY id");
  Rows expected;
  for (Row const& row : kWideRows) expected.push_back({row[0], row[2], row[3]});
  return rows == expected ? "" : "wrong values in " + std::to_string(rows.size()) + " rows";
}

std::string Commit(ASSession& session, bool) {
  std::string const wrong = WrongCount(session.Insert(Item(3, "three")), false);
  session.Commit();
  return wrong;
}

std::string Rollback(ASSession& session, bool) {
  std::string const wrong = WrongCount(session.Insert(Item(3, "three")), false);
  session.Rollback();
  return wrong;
}

std::string BulkUpdate(ASSession& session, bool repeated) {
  Item const item;
  ASUpdater updater(item.nameColumn.Set("uno"));
  updater.Where(item.idColumn == 1);
  return WrongCount(updater.Execute(&session), repeated);
}

std::string BulkDelete(ASSession& session, bool repeated) {
  Item const item;
  ASDeleter deleter(item);
  deleter.Where(item.nameColumn == "two");
  return WrongCount(deleter.Execute(&session), repeated);
}

std::string LoadCache(ASSession& session, bool) {
  ItemsOf<ASSimpleCache> items(session);
  items.Of(5, "before");
  int loaded = 0;
  try {
    loaded = items.PreFetch();
  } catch (AException const&) {
    if (items.Size() != 0) throw std::runtime_error("half of the cache was loaded");
    throw;
  }
  if (loaded != 2 || items.Look(1).name != "one" || items.Look(2).name != "two") return "wrong values in the cache";
  return {};
}

std::string MissInCache(ASSession& session, bool) {
  ItemsOf<ASSimpleCache> items(session);
  items.Of(2);
  try {
    items.Get(-1);
  } catch (AException const&) {
    if (items.Size() != 0) throw std::runtime_error("a record was stored that was not read");
    throw;
  }
  return items.name == "two" ? "" : "wrong value in the cache";
}

std::string WriteThroughCache(ASSession& session, bool) {
  ItemsOf<ASInsertableCache> items(session);
  items.Of(3, "three");
  try {
    items.Insert();
  } catch (AException const&) {
    if (items.Size() != 0) throw std::runtime_error("a record was stored that was not written");
    throw;
  }
  return items.Size() == 1 ? "" : "the record was not stored";
}

}  // namespace

char const* const kFreshState = kBefore;
char const* const kStateOfExchanges =
    "SELECT CONCAT((SELECT GROUP_CONCAT(id, '=', name ORDER BY id) FROM item), '|', (SELECT Val FROM counter))";

std::vector<std::string> TablesOfExchanges() {
  return {Item::kTable, "CREATE TABLE counter (Val INT NOT NULL)",
          "CREATE TABLE wide (id INT PRIMARY KEY, t VARCHAR(40), b BLOB, r LONGBLOB, d DOUBLE, w BIGINT, n INT)",
          "INSERT INTO wide VALUES (1, 'a text of forty bytes, no more, no less.', X'0001FEFF', REPEAT('x', 60), 2.5,"
          " 9007199254740993, 86400), (2, NULL, NULL, NULL, NULL, NULL, NULL), (3, 'z', X'00', '', -0.125, -1, 1)"};
}

std::vector<std::string> RowsOfExchanges() {
  return {"DELETE FROM item", "INSERT INTO item VALUES (1, 'one'), (2, 'two')", "DELETE FROM counter",
          "INSERT INTO counter VALUES (41)"};
}

std::ostream& operator<<(std::ostream& out, Exchange const& exchange) { return out << exchange.name; }

std::vector<Exchange> const& AllExchanges() {
  static std::vector<Exchange> const all{
      {"Insert", {Request::kInsert}, {kBefore, kInserted}, {kBefore, kBefore}, Insert},
      {"Update", {Request::kChange}, {kBefore, kUpdated}, {kBefore, kBefore}, Update},
      {"Delete", {Request::kChange}, {kBefore, kDeleted}, {kBefore, kBefore}, Delete},
      {"Select", {Request::kQuery}, {kBefore, kBefore}, {kBefore, kBefore}, Select},
      {"OpenCursor", {Request::kQuery}, {kBefore, kBefore}, {kBefore, kBefore}, OpenCursor},
      {"RawStatement",
       {Request::kQuery, Request::kQuery},
       {kBefore, kBefore, kBefore},
       {kBefore, kBefore, kBefore},
       RawStatement},
      {"ExecuteText", {Request::kChange}, {kBefore, kUpdated}, {kBefore, kBefore}, ExecuteText},
      {"ExecuteQuery", {Request::kQuery}, {kBefore, kBefore}, {kBefore, kBefore}, ExecuteQuery},
      {"Commit",
       {Request::kInsert, Request::kCommit},
       {kBefore, kInserted, kInserted},
       {kBefore, kBefore, kInserted},
       Commit},
      {"Rollback",
       {Request::kInsert, Request::kRollback},
       {kBefore, kInserted, kInserted},
       {kBefore, kBefore, kBefore},
       Rollback},
      {"BulkUpdate", {Request::kChange}, {kBefore, kUpdated}, {kBefore, kBefore}, BulkUpdate},
      {"BulkDelete", {Request::kChange}, {kBefore, kDeleted}, {kBefore, kBefore}, BulkDelete},
      {"LoadCache", {Request::kQuery}, {kBefore, kBefore}, {kBefore, kBefore}, LoadCache},
      {"MissInCache", {Request::kQuery}, {kBefore, kBefore}, {kBefore, kBefore}, MissInCache},
      {"WriteThroughCache", {Request::kInsert}, {kBefore, kInserted}, {kBefore, kBefore}, WriteThroughCache},
  };
  return all;
}

}  // namespace corvane::test
