#include <cstring>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "corvane/internal/client_library.h"
#include "tests/fault/allocation_operations.h"
#include "tests/support/failing_allocation.h"

namespace corvane::test {

namespace {

constexpr unsigned kAlways = 1000000;
constexpr char const* kText = "a text that is longer than any text that is kept without an allocation of its own";

template <class Number>
Str Of(Number number) {
  return Str() << number;
}

// What does nothing but send something.
template <class Send>
SessionOperation Sending(char const* name, char const* gives, Send send) {
  return {name, gives, [=](ASSession& session) -> Prepared {
            auto const record = std::make_shared<Everything>();
            record->Fill();
            return {[=, &session] { return send(session, *record); }, nullptr};
          }};
}

// On a cursor of its own, over what `project` chooses.
template <class Project, class Read>
SessionOperation Reading(char const* name, char const* gives, Project project, Read read) {
  return {name, gives, [=](ASSession& session) -> Prepared {
            auto const record = std::make_shared<Everything>();
            auto const cursor = std::make_shared<ASCursor>(&session);
            project(*cursor, *record);
            return {[=] { return read(*cursor, *record); },
                    [=] { return Str(cursor->GetUURecord(0) != nullptr ? "open" : "closed"); }};
          }};
}

// On a cache of its own.
struct EverythingCache : ASCache {
  EverythingCache(ASSession* session, int saveFirst)
      : ASDomain("everything", "Everything"), ASSimpleCache(session, saveFirst), ASCache(session, saveFirst) {
    Add(idColumn, id).Add(textColumn, text).Add(largeColumn, large);
    id = 7;
    text = kText;
    large = RealBlob(3, "l\0'");
  }

  ASInt id;
  ASVStr text{100};
  ASRealBlob large{0};
  ASAttribute idColumn{"id", "Id", 0, kKey};
  ASAttribute textColumn{"text"};
  ASAttribute largeColumn{"large"};
};

template <class Use>
SessionOperation Caching(char const* name, char const* gives, Use use) {
  return {name, gives, [=](ASSession& session) -> Prepared {
            auto const cache = std::make_shared<EverythingCache>(&session, 1);
            return {[=] {
                      cache->id = 7;
                      return use(*cache);
                    },
                    [=, &session] { return Of(session.IsReadOnly()); }};
          }};
}

Str Construct(ASSession&, Everything const&) {
  std::map<std::string, std::string> const parameters{{"Host", "another host with a long name"},
                                                      {"AutoCommit", "on"},
                                                      {"Database", "a database with a name of some length"}};
  // As whoever holds a session does: it is closed, whatever happens.
  struct Closed {
    std::optional<ASSession> session;
    ~Closed() {
      if (!session.has_value()) return;
      UnfailingAllocation const unfailing;
      session->Disconnect();
    }
  };
  Closed closed;
  closed.session.emplace(parameters, 5, false);
  Closed fromText;
  fromText.session.emplace(Str("a user:a password@a database/a sequence host/a host:3307/0"), 0, false);
  return "constructed";
}

Str TakeResult(ASSession& session, Everything const&) {
  session.Execute("SELECT n FROM numbers");
  internal::ResultPtr const result(session.FetchMultiple());
  return Of(static_cast<unsigned long>(mysql_num_rows(result.get())));
}

Str Select(ASSession& session, Everything const&) {
  Everything record;
  record.id = 7;
  Str text = Of(session.Select(record));
  return text << Everything::Shown(record);
}

Str Texts(ASSession& session, Everything const& r) {
  return session.InsertQuery(r, 0) << ';' << session.UpdateQuery(r, 0) << ';' << session.DeleteQuery(r, 0) << ';'
                                   << session.SelectQuery(r, 1) << ';' << session.SaveQuery(r, 0);
}

Str Update(ASSession& session, Everything const& r) {
  ASUpdater updater(r.textColumn.Set(kText));
  updater.Where(r.idColumn == 7);
  ASDeleter deleter(r);
  deleter.Where(r.idColumn == 7);
  return Of(updater.Execute(&session)) << ' ' << deleter.Execute(&session);
}

Str Number(ASSession& session, Everything const&) {
  ASSequence sequence(&session, "a sequence with a name of some length");
  return Of(sequence.getNext());
}

void ProjectNothing(ASCursor&, Everything&) {}

void ProjectAll(ASCursor& cursor, Everything const& record) {
  for (ASAttribute const* const column : record) cursor.Project() << *column;
}

Str AllRows(ASCursor& cursor, Everything const& record) {
  Str rows;
  cursor.Reset();
  while (cursor.Fetch() != 0) rows << Everything::Shown(record);
  return rows;
}

Str FetchRecord(ASCursor& cursor, Everything& record) {
  if (cursor.GetUURecord(0) != nullptr) cursor.Reset();
  Str row = Of(cursor.Fetch(record));
  return row << Everything::Shown(record) << cursor.GetAmount();
}

// Rows that take pages of their own.
struct Wide {
  ASVStr text{20000};
  ASAttribute column{"wide"};

  Wide() {
    column.Register(&text, nullptr);
    text.Bind(&column);
  }
};

SessionOperation ManyRows() {
  return {"CursorManyRows", "20000,1,1,0,", [](ASSession& session) -> Prepared {
            auto const wide = std::make_shared<Wide>();
            auto const cursor = std::make_shared<ASCursor>(&session);
            cursor->Project() << wide->column;
            return {[=] {
                      Str lengths;
                      cursor->Reset();
                      while (cursor->Fetch() != 0) lengths << wide->text.getstr().length() << ',';
                      return lengths;
                    },
                    nullptr};
          }};
}

Str DetachAndGoOn(ASCursor& cursor, Everything const& record) {
  AllRows(cursor, record);
  std::unique_ptr<MapBuffer> const rows(cursor.Detach());
  return AllRows(cursor, record).getInterval(0, 40);
}

Str CursorText(ASSession& session, Everything const& record) {
  ASFilter other;
  other.Project() << record.bigColumn;
  ASCursor cursor(&session);
  cursor.Project() << record.idColumn;
  cursor.Where(record.idColumn > 0);
  cursor.Union(other).UnionAll(other).Limit(10, 5).Order(ASOrder("a column with a name of some length"));
  Str text = cursor.Query();
  return text << ';' << cursor.SimpleQuery();
}

Str Statement(ASCursor& cursor, Everything&) {
  cursor.Statement("SELECT n, a_text FROM numbers_and_texts");
  Str rows;
  while (cursor.Fetch() != 0) {
    for (ASSimpleAttribute const* const item : cursor.Project().Items()) rows << item->Data()->getstr() << ',';
  }
  return rows;
}

Str Call(ASCursor& cursor, Everything&) {
  cursor.Statement("CALL a_procedure_with_a_name()");
  return "called";
}

SessionOperation Older() {
  return {"Older",
          "a text that is longer than any text that is kept without an allocation of its "
          "ownid=7;big=12345678901;real=2.5;money=9.99;time=2020-01-02 03:04:05;fixed=fixed   ;text=a text that is "
          "longer than any text that is kept without an allocation of its "
          "own;guid=00112233-4455-6677-8899-aabbccddeeff;small=s.t;large=l.'rg;shape=.....................;",
          [](ASSession& session) -> Prepared {
            auto const cursor = std::make_shared<ORDBMS::old_cursor>(&session);
            auto* const record = new Everything;
            cursor->SetRecord(record);  // deleted with the cursor
            cursor->Join("everything");
            cursor->Set("id", "7", ORDBMS::EQUAL);
            cursor->orderby("id", ORDBMS::DESCENDING);
            return {[=, &session] {
                      cursor->Open(&session);
                      cursor->Reset();
                      cursor->Fetch();
                      ASVStr text(100);
                      ORDBMS::Rdbms::GetField(*cursor, text, "text");
                      return text.getstr() << Everything::Shown(*record);
                    },
                    [=] { return Str(cursor->GetUURecord(0) != nullptr ? "open" : "closed"); }};
          }};
}

Str GetAndAgain(EverythingCache& cache) {
  cache.Get(-1);
  cache.id = 7;
  cache.text = "x";
  cache.Get(-1);
  return Everything::Shown(cache) << cache.Size();
}

Str Put(EverythingCache& cache) {
  cache.text = kText;
  cache.Put();
  return Everything::Shown(cache) << cache.Size();
}

Str Insert(EverythingCache& cache) {
  cache.text = kText;
  InsertItem("", cache);
  return Everything::Shown(cache) << cache.Size();
}

Str Delete(EverythingCache& cache) {
  cache.Delete();
  return Everything::Shown(cache) << cache.Size();
}

Str PreFetch(EverythingCache& cache) {
  Str rows = Of(cache.PreFetch());
  for (int i = 0; i < 3; ++i) {
    cache.Get(i);
    rows << Everything::Shown(cache);
  }
  return rows;
}

}  // namespace

std::vector<SessionOperation> const& SessionOperations() {
  static std::vector<SessionOperation> const operations{
      Sending("Construct", "constructed", Construct),
      Sending("Connect", "connected",
              [](ASSession& session, Everything const&) { return session.Connect(false), Str("connected"); }),
      Sending("Execute", "1", [](ASSession& session, Everything const&) { return Of(session.Execute("INSERT t")); }),
      Sending("Commit", "done", [](ASSession& session, Everything const&) { return session.Commit(), Str("done"); }),
      Sending("Rollback", "done",
              [](ASSession& session, Everything const&) { return session.Rollback(), Str("done"); }),
      Sending("Ping", "1", [](ASSession& session, Everything const&) { return Of(session.Ping() ? 1 : 0); }),
      Sending("TakeResult", "2", TakeResult),
      Sending("Insert", "1", [](ASSession& session, Everything const& r) { return Of(session.Insert(r)); }),
      Sending("Update", "2", [](ASSession& session, Everything const& r) { return Of(session.Update(r)); }),
      Sending("Delete", "3", [](ASSession& session, Everything const& r) { return Of(session.Delete(r)); }),
      Sending("Select",
              "1id=7;big=12345678901;real=2.5;money=9.99;time=2020-01-02 03:04:05;fixed=fixed;text=a text that is "
              "longer than any text that is kept without an allocation of its "
              "own;guid=00112233-4455-6677-8899-aabbccddeeff;small=s.t;large=l.'rg;shape=.....................;",
              Select),
      Sending("Texts",
              "INSERT INTO `everything` (`id`, `big`, `real`, `money`, `time`, `fixed`, `text`, `guid`, `small`, "
              "`large`, `shape`) VALUES ('7', '12345678901', '2.5', '9.99', '2020-01-02 03:04:05', 'fixed   ', 'a text "
              "that is longer than any text that is kept without an allocation of its own', "
              "'00112233-4455-6677-8899-aabbccddeeff', 'BLOB', 'l\\0\\'rg', GeomFromText('POINT((1.5 -2))'));UPDATE "
              "`everything` SET `big`='12345678901', `real`='2.5', `money`='9.99', `time`='2020-01-02 03:04:05', "
              "`fixed`='fixed   ', `text`='a text that is longer than any text that is kept without an allocation of "
              "its own', `guid`='00112233-4455-6677-8899-aabbccddeeff', `small`='BLOB', `large`='l\\0\\'rg', "
              "`shape`=GeomFromText('POINT((1.5 -2))') WHERE `id`='7';DELETE FROM `everything` WHERE `id`='7';SELECT "
              "`id`, `big`, `real`, `money`, `time`, `fixed`, `text`, `guid`, `small`, `large`, AsBinary(shape) FROM "
              "`everything` WHERE `id`=:id FOR UPDATE;INSERT INTO `everythingArc` (id, big, real, money, time, fixed, "
              "text, guid, small, large, shape) SELECT id, big, real, money, time, fixed, text, guid, small, large, "
              "shape FROM `everything` WHERE id='7'",
              Texts),
      Sending("UpdaterAndDeleter", "2 3", Update),
      Sending("Sequence", "42", Number),
      Reading(
          "CursorAllRows",
          "id=1;big=12345678901;real=2.5;money=9.99;time=2020-01-02 03:04:05;fixed=fixed   ;text=a text that is longer "
          "than any text that is kept without an allocation of its "
          "own;guid=00112233-4455-6677-8899-aabbccddeeff;small=s.t;large=l.'rg;shape=.....................;id=2;big="
          "12345678901;real=2.5;money=9.99;time=2020-01-02 03:04:05;fixed=fixed   ;text=a text that is longer than any "
          "text that is kept without an allocation of its "
          "own;guid=00112233-4455-6677-8899-aabbccddeeff;small=s.t;large=l.'rg;shape=.....................;id=3;big="
          "NULL;real=NULL;money=NULL;time=NULL;fixed=NULL;text=NULL;guid=NULL;small=NULL;large=NULL;shape=NULL;",
          ProjectAll, AllRows),
      Reading("CursorFetchRecord",
              "1id=1;big=12345678901;real=2.5;money=9.99;time=2020-01-02 03:04:05;fixed=fixed   ;text=a text that is "
              "longer than any text that is kept without an allocation of its "
              "own;guid=00112233-4455-6677-8899-aabbccddeeff;small=s.t;large=l.'rg;shape=.....................;3",
              ProjectNothing, FetchRecord),
      ManyRows(),
      Reading("CursorDetach", "id=1;big=12345678901;real=2.5;money=9.99;", ProjectAll, DetachAndGoOn),
      Sending("CursorText",
              "SELECT T#.id FROM (`everything` T#) WHERE T#.id>0 UNION SELECT T#.big FROM (`everything` T#) UNION ALL "
              "SELECT T#.big FROM (`everything` T#) ORDER BY a column with a name of some length LIMIT 10 OFFSET "
              "5;(SELECT T#.id FROM (`everything` T#) WHERE T#.id>0 UNION SELECT T#.big FROM (`everything` T#) UNION "
              "ALL SELECT T#.big FROM (`everything` T#))",
              CursorText),
      Reading("Statement", "7,seven               ,8,,", ProjectNothing, Statement),
      Reading("StatementCall", "called", ProjectNothing, Call),
      Older(),
      Caching("CacheGet",
              "id=7;text=a text that is longer than any text that is kept without an allocation of its own;large=l.';1",
              GetAndAgain),
      Caching("CachePut",
              "id=7;text=a text that is longer than any text that is kept without an allocation of its own;large=l.';1",
              Put),
      Caching("CacheInsert",
              "id=7;text=a text that is longer than any text that is kept without an allocation of its own;large=l.';1",
              Insert),
      Caching("CacheDelete", "id=NULL;text=NULL;large=NULL;0", Delete),
      Caching("CachePreFetch",
              "3id=7;text=a text that is longer than any text that is kept without an allocation of its "
              "own;large=l;id=8;text=NULL;large=NULL;id=9;text=nine;large=;",
              PreFetch),
  };
  return operations;
}

void AnswerOperations(ScriptedClient& client) {
  std::string const shape = std::string("\x01\x01\x00\x00\x00", 5) + std::string(16, '\0');
  auto const row = [&](char const* id) {
    return Row{id,
               "12345678901",
               "2.5",
               "9.99",
               "2020-01-02 03:04:05",
               "fixed",
               kText,
               "00112233445566778899aabbccddeeff",
               std::string("s\0t", 3),
               std::string("l\0'rg", 5),
               shape};
  };
  Row const none{"3",          std::nullopt, std::nullopt, std::nullopt, std::nullopt, std::nullopt,
                 std::nullopt, std::nullopt, std::nullopt, std::nullopt, std::nullopt};
  client.AnswerQuery(1, {{"7"}, {"8"}}).Matching("SELECT n FROM numbers").Times(kAlways);
  client.AnswerQuery(2, {{"7", "seven"}, {"8", std::nullopt}})
      .Matching("SELECT n, a_text")
      .Fields({{"n", MYSQL_TYPE_LONG, 11}, {"a_text", MYSQL_TYPE_VAR_STRING, 20}})
      .Times(kAlways);
  client.AnswerQuery(3, {{"7", kText, std::string("l\0'", 3)}}).Matching("SELECT `id`, `text`, `large`").Times(kAlways);
  client.AnswerQuery(11, {row("7")}).Matching("SELECT `id`").Times(kAlways);
  client.AnswerQuery(1, {{std::string(20000, 'w')}, {"x"}, {"y"}, {std::nullopt}})
      .Matching("SELECT wide")
      .Times(kAlways);
  client.AnswerQuery(3, {{"7", kText, "l"}, {"8", std::nullopt, std::nullopt}, {"9", "nine", ""}})
      .Matching(".large FROM (`everything`")
      .Times(kAlways);
  client.AnswerQuery(11, {row("1"), row("2"), none}).Matching("shape FROM (`everything`").Times(kAlways);
  client.AnswerQuery(11, {row("7")}).Matching("(SELECT * FROM everything").Times(kAlways);
  client.AnswerQuery(1, {{"5"}}).Matching(".id FROM (`everything`").Times(kAlways);
  client.AnswerQuery(1, {{"1"}}).Matching("CALL").Then(1, {{"3"}}).Then().Times(kAlways);
  client.AnswerQuery().Matching("UPDATE a sequence").AffectedRows(1).Times(kAlways);
  client.AnswerQuery(1, {{"42"}}).Matching("SELECT LAST_INSERT_ID()").Times(kAlways);
  client.AnswerQuery().Matching("INSERT").AffectedRows(1).Times(kAlways);
  client.AnswerQuery().Matching("UPDATE").AffectedRows(2).Times(kAlways);
  client.AnswerQuery().Matching("DELETE").AffectedRows(3).Times(kAlways);
}

}  // namespace corvane::test
