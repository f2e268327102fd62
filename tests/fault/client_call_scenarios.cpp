#include "tests/fault/client_call_scenarios.h"

#include "corvane/internal/client_library.h"

namespace corvane::test {

namespace {

constexpr unsigned kAlways = 1000000;

std::string Text(ASData const& value) { return value.IsNull() != 0 ? "NULL" : value.getstr().ToString(); }

std::string Text(CountryColumns const& country) { return Text(country.code) + " " + Text(country.name); }

std::string Number(unsigned long number) { return std::to_string(number); }

// The state of what has none.
std::string Nothing(Work&) { return ""; }

std::string StateOfCountry(Work& work) { return Text(work.country); }

std::string StateOfCursor(Work& work) {
  bool const open = work.cursor.GetUURecord(0) != nullptr || work.older.GetUURecord(0) != nullptr;
  return std::string(open ? "open, " : "closed, ") + Text(work.country);
}

// Of cursors that get their columns by the call.
std::string StateOfColumns(Work& work) {
  return StateOfCursor(work) + ", columns " + Number(work.cursor.Project().Items().size());
}

std::string StateOfCaches(Work& work) {
  return Number(static_cast<unsigned long>(work.cache.Size())) + ", " + Text(work.cache.code) + "; " +
         Number(static_cast<unsigned long>(work.saving.Size())) + ", " + Text(work.saving.code) + "; " +
         Number(static_cast<unsigned long>(work.simple.Size())) + ", read-only " +
         Number(static_cast<unsigned long>(work.session.IsReadOnly()));
}

std::string AllRows(Work& work) {
  std::string rows;
  work.cursor.Reset();
  while (work.cursor.Fetch() != 0) rows += Text(work.country) + ", ";
  return rows + Number(static_cast<unsigned long>(work.cursor.GetAmount()));
}

std::string RowsOf(ASSession& session) {
  internal::ResultPtr const result(session.FetchMultiple());
  return Number(mysql_num_rows(result.get()));
}

void ProjectCountry(Work& work) {
  if (work.cursor.Project().Items().empty())
    work.cursor.Project() << work.country.codeColumn << work.country.nameColumn;
}

std::string FirstOfStatement(Work& work) {
  return work.cursor.Reset().Fetch() != 0 ? Text(*work.cursor.Project().Items().front()->Data()) : "none";
}

// ---- the session

std::string Connect(Work& work) { return work.session.Connect(false), "connected"; }

std::string ExecuteInsert(Work& work) { return Number(work.session.Execute("INSERT t")); }

std::string ExecuteSelect(Work& work) {
  work.session.Execute("SELECT code FROM t");
  return RowsOf(work.session);
}

std::string Transaction(Work& work) {
  std::string rows = Number(work.session.Execute("INSERT t"));
  rows += Number(work.session.Execute("UPDATE t"));
  work.session.Commit();
  return rows;
}

std::string ExecuteWithoutConnection(Work& work) {
  work.session.Disconnect();
  return Number(work.session.Execute("INSERT t"));
}

std::string OpenWithoutConnection(Work& work) {
  delete work.cursor.Detach();
  ProjectCountry(work);
  work.session.Disconnect();
  return AllRows(work);
}

std::string ExecuteSeq(Work& work) { return work.session.ExecuteSeq("DO 1"), "done"; }
std::string Commit(Work& work) { return work.session.Commit(), "done"; }
std::string Rollback(Work& work) { return work.session.Rollback(), "done"; }
std::string Ping(Work& work) { return work.session.Ping() ? "yes" : "no"; }

// ---- single records

std::string Insert(Work& work) { return Number(work.session.Insert(work.country)); }
std::string Update(Work& work) { return Number(work.session.Update(work.country)); }
std::string Delete(Work& work) { return Number(work.session.Delete(work.country)); }

std::string Select(Work& work) {
  int const found = work.session.Select(work.country);
  std::string const read = Text(work.country);
  work.country.name = "New Zealand";
  return read + ", " + Number(static_cast<unsigned long>(found));
}

std::string Fetch(Work& work) {
  work.session.Execute("SELECT `code`, `name` FROM `country` WHERE `code`='NZ'");
  int const found = work.session.Fetch(work.country);
  std::string const read = Text(work.country);
  work.country.name = "New Zealand";
  return read + ", " + Number(static_cast<unsigned long>(found));
}

// ---- cursors

std::string CursorOpen(Work& work) {
  ProjectCountry(work);
  work.cursor.Open();
  return AllRows(work);
}

std::string CursorReadAgain(Work& work) {
  ProjectCountry(work);
  std::string rows = AllRows(work);
  delete work.cursor.Detach();
  rows += "; ";
  return rows + AllRows(work);
}

std::string CursorFetch(Work& work) {
  ProjectCountry(work);
  int const next = work.cursor.Fetch(2);
  return Text(work.country) + ", " + Number(static_cast<unsigned long>(next));
}

std::string CursorFetchSingle(Work& work) {
  delete work.cursor.Detach();
  ProjectCountry(work);
  work.cursor.Fetch(-1);
  work.cursor.Reset();
  int const next = work.cursor.FetchSingle();
  return Text(work.country) + ", " + Number(static_cast<unsigned long>(next));
}

std::string CursorFetchRecord(Work& work) {
  if (work.cursor.GetUURecord(0) != nullptr) work.cursor.Reset();
  int const next = work.cursor.Fetch(work.country);
  return Number(static_cast<unsigned long>(next)) + "; " + AllRows(work);
}

std::string CursorAmount(Work& work) {
  ProjectCountry(work);
  return Number(static_cast<unsigned long>(work.cursor.GetAmount()));
}

std::string CursorUnion(Work& work) {
  ASFilter others;
  others.Project() << work.other.codeColumn << work.other.nameColumn;
  if (work.cursor.Project().Items().empty()) {
    ProjectCountry(work);
    work.cursor.Where(work.country.codeColumn != "XX");
    work.cursor.Union(others).Limit(10, 1).Order(ASOrder("1"));
  }
  return AllRows(work);
}

std::string StatementSelect(Work& work) {
  work.cursor.Statement("SELECT code FROM t");
  return FirstOfStatement(work);
}

std::string StatementUpdate(Work& work) {
  work.cursor.Statement("UPDATE t");
  return Number(work.session.RowsAffected());
}

std::string StatementShow(Work& work) {
  work.cursor.Statement("SHOW TABLES");
  return RowsOf(work.session);
}

// Its result is not taken, and in nobody's way.
std::string StatementShowAndGoOn(Work& work) {
  work.cursor.Statement("SHOW TABLES");
  return Number(work.session.Execute("INSERT t"));
}

std::string StatementCall(Work& work) {
  work.cursor.Statement("CALL p()");
  return RowsOf(work.session);
}

std::string UpdaterExecute(Work& work) { return Number(work.updater.Execute(&work.session)); }
std::string DeleterExecute(Work& work) { return Number(work.deleter.Execute(&work.session)); }

std::string OlderOpen(Work& work) {
  delete work.older.Detach();
  work.older.Open(&work.session);
  int const next = work.older.Reset().Fetch();
  return Number(static_cast<unsigned long>(work.older.GetAmount())) + ", " + Number(static_cast<unsigned long>(next));
}

std::string OlderCalls(Work& work) {
  delete work.older.Detach();
  ORDBMS::Rdbms::SetSession(&work.session);
  ORDBMS::Rdbms::OpenCursor(work.older);
  int const amount = ORDBMS::Rdbms::CursorBulk(work.older);
  work.older.Reset();
  ORDBMS::Rdbms::Fetch(work.older);
  ORDBMS::Rdbms::GetField(work.older, work.other.name, "name");
  ORDBMS::Rdbms::CloseCursor(work.older);
  return Number(static_cast<unsigned long>(amount)) + ", " + Text(work.other.name);
}

// ---- caches

template <class Cache>
std::string Got(Cache& cache) {
  cache.code = "NZ";
  cache.Get(-1);
  std::string const got = Text(cache);
  cache.Clear();
  cache.code = "NZ";
  cache.name = "New Zealand";
  return got;
}

std::string SimpleCacheGet(Work& work) { return Got(work.simple); }
std::string CacheGet(Work& work) { return Got(work.cache); }

std::string CacheGetFromMemory(Work& work) {
  work.cache.Get(-1);
  return Got(work.cache);
}

std::string CachePreFetch(Work& work) {
  std::string const size = Number(static_cast<unsigned long>(work.simple.PreFetch()));
  std::string const last = Text(work.simple.code);
  work.simple.Clear();
  return size + ", " + last;
}

template <class Cache>
std::string Put(Cache& cache) {
  cache.Put();
  std::string const size = Number(static_cast<unsigned long>(cache.Size()));
  cache.Clear();
  cache.code = "NZ";
  cache.name = "New Zealand";
  return size;
}

template <class Cache>
std::string Deleted(Cache& cache) {
  cache.Delete();
  std::string const left = Number(static_cast<unsigned long>(cache.Size())) + ", " + Text(cache.code);
  cache.Clear();
  cache.code = "NZ";
  cache.name = "New Zealand";
  return left;
}

template <class Cache>
std::string Inserted(Cache& cache) {
  cache.Insert();
  std::string const size = Number(static_cast<unsigned long>(cache.Size()));
  cache.Clear();
  cache.code = "NZ";
  cache.name = "New Zealand";
  return size;
}

std::string CachePut(Work& work) { return Put(work.cache); }
std::string CachePutSaving(Work& work) { return Put(work.saving); }
std::string CacheDelete(Work& work) { return Deleted(work.cache); }
std::string CacheDeleteSaving(Work& work) { return Deleted(work.saving); }
std::string CacheInsert(Work& work) { return Inserted(work.cache); }
std::string CacheInsertItem(Work& work) {
  InsertItem("", work.saving);
  std::string const size = Number(static_cast<unsigned long>(work.saving.Size()));
  work.saving.Clear();
  work.saving.code = "NZ";
  work.saving.name = "New Zealand";
  return size;
}

// ---- sequences

std::string SequenceNext(Work& work) { return Number(static_cast<unsigned long>(work.sequence.getNext())); }

}  // namespace

Work::Work(ASSession& with)
    : session(with),
      cursor(&with),
      cache(&with),
      saving(&with, 1),
      simple(&with),
      sequence(&with, "numbers"),
      updater(country.nameColumn.Set("x")),
      deleter(country),
      older(&with) {
  for (CountryColumns* const each : {static_cast<CountryColumns*>(&country), static_cast<CountryColumns*>(&other),
                                     static_cast<CountryColumns*>(&cache), static_cast<CountryColumns*>(&saving),
                                     static_cast<CountryColumns*>(&simple)}) {
    each->code = "NZ";
    each->name = "New Zealand";
  }
  updater.Where(country.codeColumn == "NZ");
  deleter.Where(country.codeColumn == "NZ");
  auto* const owned = new CountryRecord;
  older.SetRecord(owned);  // deleted with the cursor
  older.Join("country");
  older.Project("code");
  older.Project("name");
  older.Set("code", "'NZ'", ORDBMS::EQUAL);
}

Work::~Work() { ORDBMS::Rdbms::SetSession(nullptr); }

std::vector<Scenario> const& Scenarios() {
  static std::vector<Scenario> const scenarios{
      {"Connect", Connect, "connected", Nothing, true},
      {"ConnectWithoutSequences", Connect, "connected", Nothing},
      {"ExecuteInsert", ExecuteInsert, "3", Nothing, true},
      {"ExecuteSelect", ExecuteSelect, "2", Nothing},
      {"Transaction", Transaction, "34", Nothing, true},
      {"ExecuteWithoutConnection", ExecuteWithoutConnection, "3", Nothing, true},
      {"OpenWithoutConnection", OpenWithoutConnection, "AU Australia, NZ New Zealand, IT NULL, 3", StateOfCursor, false,
       3},
      {"ExecuteSeq", ExecuteSeq, "done", Nothing, true},
      {"ExecuteSeqWithoutConnection", ExecuteSeq, "done", Nothing, true, 0, true},
      {"Commit", Commit, "done", Nothing},
      {"Rollback", Rollback, "done", Nothing},
      {"Ping", Ping, "yes", Nothing},
      {"Insert", Insert, "1", StateOfCountry},
      {"Update", Update, "2", StateOfCountry},
      {"Delete", Delete, "5", StateOfCountry},
      {"Select", Select, "NZ Aotearoa, 1", StateOfCountry},
      {"Fetch", Fetch, "NZ Aotearoa, 1", StateOfCountry},
      {"CursorOpen", CursorOpen, "AU Australia, NZ New Zealand, IT NULL, 3", StateOfCursor, true, 3},
      {"CursorReadAgain", CursorReadAgain,
       "AU Australia, NZ New Zealand, IT NULL, 3; AU Australia, NZ New Zealand, IT NULL, 3", Nothing, false, 3},
      {"CursorFetch", CursorFetch, "IT NULL, 3", StateOfCursor, false, 3},
      {"CursorFetchSingle", CursorFetchSingle, "AU Australia, 1", StateOfCursor, false, 3},
      {"CursorFetchRecord", CursorFetchRecord, "1; AU Australia, NZ New Zealand, IT NULL, 3", StateOfColumns, false, 3},
      {"CursorAmount", CursorAmount, "3", StateOfCursor, false, 3},
      {"CursorUnion", CursorUnion, "AU Australia, NZ New Zealand, IT NULL, 3", StateOfCursor, false, 3},
      {"StatementSelect", StatementSelect, "7", StateOfColumns},
      {"StatementUpdate", StatementUpdate, "4", StateOfColumns},
      {"StatementShow", StatementShow, "1", StateOfColumns},
      {"StatementShowAndGoOn", StatementShowAndGoOn, "3", StateOfColumns},
      {"StatementCall", StatementCall, "2", StateOfColumns},
      {"UpdaterExecute", UpdaterExecute, "6", Nothing},
      {"DeleterExecute", DeleterExecute, "7", Nothing},
      {"OlderOpen", OlderOpen, "3, 1", StateOfCursor, false, 3},
      {"OlderCalls", OlderCalls, "3, Australia", StateOfCursor, false, 3},
      {"SimpleCacheGet", SimpleCacheGet, "NZ Aotearoa", StateOfCaches},
      {"CacheGet", CacheGet, "NZ Aotearoa", StateOfCaches, true},
      {"CacheGetFromMemory", CacheGetFromMemory, "NZ Aotearoa", StateOfCaches},
      {"CachePreFetch", CachePreFetch, "3, IT", StateOfCaches, false, 3},
      {"CachePut", CachePut, "1", StateOfCaches},
      {"CachePutSaving", CachePutSaving, "1", StateOfCaches},
      {"CacheDelete", CacheDelete, "0, NULL", StateOfCaches},
      {"CacheDeleteSaving", CacheDeleteSaving, "0, NULL", StateOfCaches},
      {"CacheInsert", CacheInsert, "1", StateOfCaches},
      {"CacheInsertItem", CacheInsertItem, "1", StateOfCaches},
      {"SequenceNext", SequenceNext, "42", Nothing, true},
  };
  return scenarios;
}

void AnswerAll(ScriptedClient& client) {
  struct Changed {
    char const* statement;
    unsigned rows;
  };
  for (Changed const changed :
       {Changed{"INSERT t", 3}, Changed{"UPDATE t", 4}, Changed{"INSERT INTO `country` ", 1},
        Changed{"UPDATE `country` ", 2}, Changed{"DELETE FROM `country` ", 5}, Changed{"UPDATE country ", 6},
        Changed{"DELETE FROM T", 7}, Changed{"UPDATE numbers", 1}}) {
    client.AnswerQuery().Matching(changed.statement).AffectedRows(changed.rows).Times(kAlways);
  }
  std::vector<Row> const countries{{"AU", "Australia"}, {"NZ", "New Zealand"}, {"IT", std::nullopt}};
  client.AnswerQuery(1, {{"7"}, {"8"}})
      .Matching("SELECT code FROM t")
      .Fields({{"code", MYSQL_TYPE_LONG, 11}})
      .Times(kAlways);
  client.AnswerQuery(2, {{"NZ", "Aotearoa"}}).Matching("SELECT `code`, `name` FROM `country`").Times(kAlways);
  client.AnswerQuery(2, countries).Matching("SELECT T").Times(kAlways);
  client.AnswerQuery(2, countries).Matching("(SELECT code, name").Times(kAlways);
  client.AnswerQuery(1, {{"country"}}).Matching("SHOW TABLES").Times(kAlways);
  client.AnswerQuery(1, {{"1"}, {"2"}}).Matching("CALL p()").Then(1, {{"3"}}).Then().Times(kAlways);
  client.AnswerQuery(1, {{"42"}}).Matching("SELECT LAST_INSERT_ID()").Times(kAlways);
}

}  // namespace corvane::test
