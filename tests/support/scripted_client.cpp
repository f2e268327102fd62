#include "tests/support/scripted_client.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "tests/support/failing_allocation.h"

namespace corvane::test {

namespace {

// Holds the stand-in's state for this thread; what it allocates meanwhile does not count as the tested code's.
class Guard {
 public:
  explicit Guard(std::mutex& mutex) : lock_(mutex) {}

 private:
  std::lock_guard<std::mutex> lock_;
  UnfailingAllocation unfailing_;
};

constexpr unsigned kServerGone = 2006;
constexpr unsigned kServerLost = 2013;
constexpr unsigned kOutOfSync = 2014;
constexpr char const* kOutOfSyncText = "Commands out of sync; you can't run this command now";

[[noreturn]] void Misuse(char const* function, char const* what) {
  std::fprintf(stderr, "%s: %s\n", function, what);
  std::abort();
}

void CheckWidth(char const* function, unsigned columns, std::vector<Row> const& rows) {
  for (Row const& row : rows) {
    if (row.size() != columns) Misuse(function, "a row has more or fewer fields than the result has columns");
  }
}

std::string Shown(char const* text) { return text == nullptr ? "null" : *text == '\0' ? "''" : text; }

// The flag's place differs between the client libraries: MYSQL::reconnect or MYSQL::options.reconnect. Where the one is
// missing its overload drops out.
template <class Handle>
auto ReconnectFlag(Handle* handle, int) -> decltype((handle->reconnect)) {
  return handle->reconnect;
}

template <class Handle>
auto ReconnectFlag(Handle* handle, long) -> decltype((handle->options.reconnect)) {
  return handle->options.reconnect;
}

}  // namespace

ScriptedClient& ScriptedClient::Get() {
  static auto* const client = new ScriptedClient;  // outlives sessions that are destroyed late
  return *client;
}

// The first step that holds for the call. After() of every step counts every call, whichever step it ends by.
template <class Kind>
Kind* ScriptedClient::Find(std::list<Kind>& steps, std::string const& text) {
  Kind* found = nullptr;
  for (Kind& step : steps) {
    if (step.times_ == 0 || text.find(step.matching_) == std::string::npos) continue;
    if (step.after_ > 0) {
      --step.after_;
    } else if (found == nullptr) {
      found = &step;
    }
  }
  if (found != nullptr) --found->times_;
  return found;
}

ScriptedClient::Answer& ScriptedClient::Answer::Fields(std::vector<FieldDescription> fields) {
  if (fields.size() != columns_) Misuse("Fields", "more or fewer fields than the result has columns");
  fields_ = std::move(fields);
  return *this;
}

ScriptedClient::Answer& ScriptedClient::Answer::Then(unsigned columns, std::vector<Row> rows) {
  CheckWidth("Then", columns, rows);
  further_.push_back({columns, std::move(rows)});
  return *this;
}

ScriptedClient::Answer& ScriptedClient::Answer::Then() {
  further_.emplace_back();
  return *this;
}

void ScriptedClient::Reset() {
  Guard const guard(mutex_);
  initFailures_.clear();
  connectFailures_.clear();
  queryFailures_.clear();
  storeFailures_.clear();
  useFailures_.clear();
  rowFailures_.clear();
  nextFailures_.clear();
  answers_.clear();
  encrypted_ = false;
  affectedRows_ = 0;
  insertId_ = 0;
  calls_.clear();
  callsByHandle_.clear();
  lastHandle_ = 0;
  handles_.clear();
  results_.clear();
}

ScriptedClient::Failure& ScriptedClient::FailInit() {
  Guard const guard(mutex_);
  return initFailures_.emplace_back();
}

ScriptedClient::Failure& ScriptedClient::AddFailure(std::list<Failure>& failures, unsigned number, std::string text) {
  Guard const guard(mutex_);
  Failure& failure = failures.emplace_back();
  failure.number_ = number;
  failure.text_ = std::move(text);
  return failure;
}

ScriptedClient::Failure& ScriptedClient::FailConnect(unsigned number, std::string text) {
  return AddFailure(connectFailures_, number, std::move(text));
}

ScriptedClient::Failure& ScriptedClient::FailQuery(unsigned number, std::string text) {
  return AddFailure(queryFailures_, number, std::move(text));
}

ScriptedClient::Failure& ScriptedClient::FailStoreResult(unsigned number, std::string text) {
  return AddFailure(storeFailures_, number, std::move(text));
}

ScriptedClient::Failure& ScriptedClient::FailUseResult(unsigned number, std::string text) {
  return AddFailure(useFailures_, number, std::move(text));
}

ScriptedClient::Failure& ScriptedClient::FailFetchRow(unsigned number, std::string text) {
  return AddFailure(rowFailures_, number, std::move(text));
}

ScriptedClient::Failure& ScriptedClient::FailNextResult(unsigned number, std::string text) {
  return AddFailure(nextFailures_, number, std::move(text));
}

ScriptedClient::Answer& ScriptedClient::AnswerQuery(unsigned columns, std::vector<Row> rows) {
  CheckWidth("AnswerQuery", columns, rows);
  Guard const guard(mutex_);
  Answer& answer = answers_.emplace_back();
  answer.columns_ = columns;
  answer.rows_ = std::move(rows);
  return answer;
}

ScriptedClient::Answer& ScriptedClient::AnswerQuery() {
  Guard const guard(mutex_);
  return answers_.emplace_back();
}

void ScriptedClient::SetAffectedRows(std::uint64_t rows) {
  Guard const guard(mutex_);
  affectedRows_ = rows;
}

void ScriptedClient::SetInsertId(std::uint64_t id) {
  Guard const guard(mutex_);
  insertId_ = id;
}

std::vector<std::string> ScriptedClient::Calls() const {
  Guard const guard(mutex_);
  return calls_;
}

std::vector<std::string> ScriptedClient::CallsByHandle() const {
  Guard const guard(mutex_);
  return callsByHandle_;
}

void ScriptedClient::ForgetCalls() {
  Guard const guard(mutex_);
  calls_.clear();
  callsByHandle_.clear();
}

std::size_t ScriptedClient::OpenHandles() const {
  Guard const guard(mutex_);
  return handles_.size();
}

std::size_t ScriptedClient::UnfreedResults() const {
  Guard const guard(mutex_);
  return results_.size();
}

unsigned ScriptedClient::UnusedSteps() const {
  Guard const guard(mutex_);
  unsigned unused = 0;
  for (auto const* failures : {&initFailures_, &connectFailures_, &queryFailures_, &storeFailures_, &useFailures_,
                               &rowFailures_, &nextFailures_}) {
    for (Failure const& failure : *failures) unused += failure.times_;
  }
  for (Answer const& answer : answers_) unused += answer.times_;
  return unused;
}

bool ScriptedClient::AnyHandleReconnectsByItself() const {
  Guard const guard(mutex_);
  for (auto const& [address, handle] : handles_) {
    if (handle.connected && ReconnectFlag(address, 0) != 0) return true;
  }
  return false;
}

MYSQL* ScriptedClient::Init() {
  Guard const guard(mutex_);
  if (Find(initFailures_, "") != nullptr) {
    calls_.emplace_back("init");
    callsByHandle_.emplace_back("- init");
    return nullptr;
  }
  auto* const address = new MYSQL();
  Handle& handle = handles_[address];
  handle.number = ++lastHandle_;
  Record(handle.number, "init");
  return address;
}

bool ScriptedClient::Connect(MYSQL* address, char const* host, char const* user, char const* password,
                             char const* database, unsigned port, char const* socket) {
  Guard const guard(mutex_);
  Handle& handle = Known(address, "mysql_real_connect");
  std::string where =
      Shown(host) + " " + Shown(user) + " " + Shown(password) + " " + Shown(database) + " " + std::to_string(port);
  if (socket != nullptr) where += std::string(" socket ") + socket;
  Record(handle.number, "connect " + where);
  if (Failure const* const failure = Find(connectFailures_, where)) {
    return Fail(handle, failure->number_, failure->text_);
  }
  handle.connected = true;
  handle.encrypted = encrypted_;
  handle.errorNumber = 0;
  handle.errorText.clear();
  ReconnectFlag(address, 0) = 1;
  return true;
}

void ScriptedClient::SetOption(MYSQL* address, mysql_option option, void const* value) {
  Guard const guard(mutex_);
  Handle const& handle = Known(address, "mysql_options");
  enum class Kind { kNumber, kFlag, kText };
  struct Shape {
    char const* name;
    Kind kind;
  };
  static std::map<mysql_option, Shape> const shapes = {{MYSQL_OPT_CONNECT_TIMEOUT, {"connect_timeout", Kind::kNumber}},
                                                       {MYSQL_OPT_READ_TIMEOUT, {"read_timeout", Kind::kNumber}},
                                                       {MYSQL_OPT_WRITE_TIMEOUT, {"write_timeout", Kind::kNumber}},
                                                       {MYSQL_SET_CHARSET_NAME, {"charset", Kind::kText}},
                                                       {MYSQL_OPT_SSL_CA, {"ssl_ca", Kind::kText}},
                                                       {MYSQL_OPT_SSL_CERT, {"ssl_cert", Kind::kText}},
                                                       {MYSQL_OPT_SSL_KEY, {"ssl_key", Kind::kText}},
                                                       {MYSQL_OPT_SSL_ENFORCE, {"ssl_enforce", Kind::kFlag}},
                                                       {MYSQL_OPT_SSL_VERIFY_SERVER_CERT, {"ssl_verify", Kind::kFlag}}};
  auto const& [name, kind] = shapes.at(option);
  std::string text;
  if (kind == Kind::kNumber) text = std::to_string(*static_cast<unsigned const*>(value));
  if (kind == Kind::kFlag) text = std::to_string(static_cast<int>(*static_cast<my_bool const*>(value)));
  if (kind == Kind::kText) text = static_cast<char const*>(value);
  Record(handle.number, std::string("option ") + name + " " + text);
}

bool ScriptedClient::IsEncrypted(MYSQL* address) const {
  Guard const guard(mutex_);
  return Known(address, "mysql_get_ssl_cipher").encrypted;
}

void ScriptedClient::SetEncrypted(bool encrypted) {
  Guard const guard(mutex_);
  encrypted_ = encrypted;
}

void ScriptedClient::Close(MYSQL* address) {
  Guard const guard(mutex_);
  Handle& handle = Known(address, "mysql_close");
  Record(handle.number, "close");
  if (handle.reading != nullptr) {
    Result& result = results_.at(handle.reading);
    result.next = result.rows.size();
    EndReading(result);
  }
  handles_.erase(address);
  delete address;
}

bool ScriptedClient::Query(MYSQL* address, char const* statement) {
  Guard const guard(mutex_);
  Handle& handle = Known(address, "mysql_query");
  if (statement == nullptr) Misuse("mysql_query", "no statement");
  Record(handle.number, std::string("query ") + statement);
  if (!handle.connected) return Fail(handle, kServerGone, "Server has gone away");
  if (handle.reading != nullptr) return Fail(handle, kOutOfSync, kOutOfSyncText);
  if (handle.pending != nullptr || handle.outOfStep) {
    handle.pending.reset();
    handle.outOfStep = true;
    return Fail(handle, kOutOfSync, kOutOfSyncText);
  }
  if (!handle.further.empty()) return Fail(handle, kOutOfSync, kOutOfSyncText);
  if (Failure const* const failure = Find(queryFailures_, statement)) {
    handle.affectedRows = static_cast<std::uint64_t>(-1);
    return Fail(handle, failure->number_, failure->text_);
  }
  handle.errorNumber = 0;
  handle.errorText.clear();
  handle.affectedRows = affectedRows_;
  handle.insertId = insertId_;
  if (Answer const* const answer = Find(answers_, statement)) {
    handle.affectedRows = answer->affectedRows_.value_or(affectedRows_);
    handle.insertId = answer->insertId_.value_or(insertId_);
    if (answer->columns_.has_value()) {
      handle.pending = MakeResult(handle, *answer->columns_, answer->rows_);
      handle.pending->described = answer->fields_;
      handle.pending->announcedRows = answer->announcedRows_.value_or(answer->rows_.size());
    }
    handle.further = answer->further_;
  }
  return true;
}

MYSQL_RES* ScriptedClient::StoreResult(MYSQL* address) {
  Guard const guard(mutex_);
  Handle& handle = Known(address, "mysql_store_result");
  Record(handle.number, "store_result");
  if (Failure const* const failure = Find(storeFailures_, "")) {
    handle.pending.reset();
    handle.further.clear();
    Fail(handle, failure->number_, failure->text_);
    return nullptr;
  }
  return Take(handle);
}

MYSQL_RES* ScriptedClient::UseResult(MYSQL* address) {
  Guard const guard(mutex_);
  Handle& handle = Known(address, "mysql_use_result");
  Record(handle.number, "use_result");
  if (Failure const* const failure = Find(useFailures_, "")) {
    Fail(handle, failure->number_, failure->text_);
    return nullptr;
  }
  MYSQL_RES* const taken = Take(handle);
  if (taken == nullptr) return nullptr;
  Result& result = results_.at(taken);
  result.stored = false;
  result.announcedRows = 0;
  result.unstoredOf = address;
  handle.reading = taken;
  return taken;
}

// Makes the pending result the caller's; a null pointer when there is none.
MYSQL_RES* ScriptedClient::Take(Handle& handle) {
  if (IsBusy(handle)) return Fail(handle, kOutOfSync, kOutOfSyncText), nullptr;
  if (handle.pending == nullptr) return nullptr;
  auto* const result = new MYSQL_RES();
  results_.emplace(result, std::move(*handle.pending));
  handle.pending.reset();
  return result;
}

// Goes to the next row; false at the end of the result.
bool ScriptedClient::Advance(Result& result) {
  if (result.unstoredOf != nullptr) {
    if (Failure const* const failure = Find(rowFailures_, "")) {
      Handle& handle = Known(result.unstoredOf, "mysql_fetch_row");
      Fail(handle, failure->number_, failure->text_);
      if (failure->number_ == kServerGone || failure->number_ == kServerLost) handle.connected = false;
      result.next = result.rows.size();
    }
  }
  if (result.next < result.rows.size()) return ++result.next, true;
  EndReading(result);
  return false;
}

// The end of a result that was not stored: its handle takes statements again.
void ScriptedClient::EndReading(Result& result) {
  if (result.unstoredOf == nullptr) return;
  auto const handle = handles_.find(std::exchange(result.unstoredOf, nullptr));
  if (handle != handles_.end()) handle->second.reading = nullptr;
}

int ScriptedClient::NextResult(MYSQL* address) {
  Guard const guard(mutex_);
  Handle& handle = Known(address, "mysql_next_result");
  Record(handle.number, "next_result");
  if (handle.pending != nullptr || IsBusy(handle)) return Fail(handle, kOutOfSync, kOutOfSyncText), 1;
  if (handle.further.empty()) return -1;
  if (Failure const* const failure = Find(nextFailures_, "")) {
    handle.further.clear();
    return Fail(handle, failure->number_, failure->text_), 1;
  }
  Answer::Further further = std::move(handle.further.front());
  handle.further.pop_front();
  if (further.columns.has_value()) handle.pending = MakeResult(handle, *further.columns, std::move(further.rows));
  return 0;
}

MYSQL_ROW ScriptedClient::FetchRow(MYSQL_RES* address) {
  Guard const guard(mutex_);
  Result& result = Known(address, "mysql_fetch_row");
  result.fields.clear();
  result.lengths.clear();
  if (!Advance(result)) return nullptr;
  if (!result.stored) ++result.announcedRows;
  for (Field& field : result.rows[result.next - 1]) {
    result.fields.push_back(field.has_value() ? field->data() : nullptr);
    result.lengths.push_back(field.has_value() ? field->size() : 0);
  }
  return result.fields.data();
}

unsigned long* ScriptedClient::FetchLengths(MYSQL_RES* address) {
  Guard const guard(mutex_);
  Result& result = Known(address, "mysql_fetch_lengths");
  return result.lengths.empty() ? nullptr : result.lengths.data();
}

MYSQL_FIELD* ScriptedClient::FetchFields(MYSQL_RES* address) {
  Guard const guard(mutex_);
  Result& result = Known(address, "mysql_fetch_fields");
  if (result.descriptions.empty()) {
    for (std::size_t i = result.described.size(); i < result.columns; ++i) {
      result.described.push_back({"f" + std::to_string(i + 1)});
    }
    for (std::size_t i = 0; i < result.columns; ++i) {
      MYSQL_FIELD& field = result.descriptions.emplace_back();
      field.name = result.described[i].name.data();
      field.type = result.described[i].type;
      field.length = result.described[i].length;
      if (!result.stored) continue;
      for (Row const& row : result.rows) {
        field.max_length = std::max<unsigned long>(field.max_length, row[i].value_or("").size());
      }
    }
  }
  return result.descriptions.data();
}

unsigned ScriptedClient::NumFields(MYSQL_RES* result) const {
  Guard const guard(mutex_);
  return Known(result, "mysql_num_fields").columns;
}

std::uint64_t ScriptedClient::NumRows(MYSQL_RES* result) const {
  Guard const guard(mutex_);
  return Known(result, "mysql_num_rows").announcedRows;
}

void ScriptedClient::FreeResult(MYSQL_RES* address) {
  if (address == nullptr) return;
  Guard const guard(mutex_);
  Result& result = Known(address, "mysql_free_result");
  Record(result.handle, "free_result");
  while (result.unstoredOf != nullptr) Advance(result);
  results_.erase(address);
  delete address;
}

std::uint64_t ScriptedClient::AffectedRows(MYSQL* handle) const {
  Guard const guard(mutex_);
  return Known(handle, "mysql_affected_rows").affectedRows;
}

std::uint64_t ScriptedClient::InsertId(MYSQL* handle) const {
  Guard const guard(mutex_);
  return Known(handle, "mysql_insert_id").insertId;
}

unsigned ScriptedClient::ErrorNumber(MYSQL* handle) const {
  Guard const guard(mutex_);
  return handle != nullptr ? Known(handle, "mysql_errno").errorNumber : 0;
}

char const* ScriptedClient::ErrorText(MYSQL* handle) const {
  Guard const guard(mutex_);
  return handle != nullptr ? Known(handle, "mysql_error").errorText.c_str() : "";
}

void ScriptedClient::Sleep(unsigned seconds) {
  Guard const guard(mutex_);
  calls_.push_back("sleep " + std::to_string(seconds));
  callsByHandle_.push_back("- sleep " + std::to_string(seconds));
}

ScriptedClient::Handle& ScriptedClient::Known(MYSQL* handle, char const* function) {
  auto const found = handles_.find(handle);
  if (found == handles_.end()) Misuse(function, "not an open handle");
  return found->second;
}

ScriptedClient::Handle const& ScriptedClient::Known(MYSQL* handle, char const* function) const {
  auto const found = handles_.find(handle);
  if (found == handles_.end()) Misuse(function, "not an open handle");
  return found->second;
}

ScriptedClient::Result& ScriptedClient::Known(MYSQL_RES* result, char const* function) {
  auto const found = results_.find(result);
  if (found == results_.end()) Misuse(function, "not a result");
  return found->second;
}

ScriptedClient::Result const& ScriptedClient::Known(MYSQL_RES* result, char const* function) const {
  auto const found = results_.find(result);
  if (found == results_.end()) Misuse(function, "not a result");
  return found->second;
}

void ScriptedClient::Record(unsigned handle, std::string const& call) {
  calls_.push_back(call);
  callsByHandle_.push_back(std::to_string(handle) + " " + call);
}

std::unique_ptr<ScriptedClient::Result> ScriptedClient::MakeResult(Handle const& handle, unsigned columns,
                                                                   std::vector<Row> rows) {
  auto result = std::make_unique<Result>();
  result->handle = handle.number;
  result->columns = columns;
  result->announcedRows = rows.size();
  result->rows = std::move(rows);
  return result;
}

bool ScriptedClient::Fail(Handle& handle, unsigned number, std::string const& text) {
  handle.errorNumber = number;
  handle.errorText = text;
  return false;
}

}  // namespace corvane::test

using corvane::test::ScriptedClient;

extern "C" {

MYSQL* STDCALL mysql_init(MYSQL*) { return ScriptedClient::Get().Init(); }

MYSQL* STDCALL mysql_real_connect(MYSQL* handle, char const* host, char const* user, char const* password,
                                  char const* database, unsigned port, char const* socket, unsigned long) {
  return ScriptedClient::Get().Connect(handle, host, user, password, database, port, socket) ? handle : nullptr;
}

int STDCALL mysql_options(MYSQL* handle, mysql_option option, void const* value) {
  ScriptedClient::Get().SetOption(handle, option, value);
  return 0;
}

char const* STDCALL mysql_get_ssl_cipher(MYSQL* handle) {
  return ScriptedClient::Get().IsEncrypted(handle) ? "TLS_AES_256_GCM_SHA384" : nullptr;
}

void STDCALL mysql_close(MYSQL* handle) { ScriptedClient::Get().Close(handle); }

int STDCALL mysql_query(MYSQL* handle, char const* statement) {
  return ScriptedClient::Get().Query(handle, statement) ? 0 : 1;
}

MYSQL_RES* STDCALL mysql_store_result(MYSQL* handle) { return ScriptedClient::Get().StoreResult(handle); }

MYSQL_RES* STDCALL mysql_use_result(MYSQL* handle) { return ScriptedClient::Get().UseResult(handle); }

int STDCALL mysql_next_result(MYSQL* handle) { return ScriptedClient::Get().NextResult(handle); }

MYSQL_FIELD* STDCALL mysql_fetch_fields(MYSQL_RES* result) { return ScriptedClient::Get().FetchFields(result); }

MYSQL_ROW STDCALL mysql_fetch_row(MYSQL_RES* result) { return ScriptedClient::Get().FetchRow(result); }

unsigned long* STDCALL mysql_fetch_lengths(MYSQL_RES* result) { return ScriptedClient::Get().FetchLengths(result); }

unsigned STDCALL mysql_num_fields(MYSQL_RES* result) { return ScriptedClient::Get().NumFields(result); }

auto STDCALL mysql_num_rows(MYSQL_RES* result) -> decltype(mysql_num_rows(result)) {
  return ScriptedClient::Get().NumRows(result);
}

void STDCALL mysql_free_result(MYSQL_RES* result) { ScriptedClient::Get().FreeResult(result); }

auto STDCALL mysql_affected_rows(MYSQL* handle) -> decltype(mysql_affected_rows(handle)) {
  return ScriptedClient::Get().AffectedRows(handle);
}

auto STDCALL mysql_insert_id(MYSQL* handle) -> decltype(mysql_insert_id(handle)) {
  return ScriptedClient::Get().InsertId(handle);
}

unsigned STDCALL mysql_errno(MYSQL* handle) { return ScriptedClient::Get().ErrorNumber(handle); }

char const* STDCALL mysql_error(MYSQL* handle) { return ScriptedClient::Get().ErrorText(handle); }

unsigned sleep(unsigned seconds) {
  ScriptedClient::Get().Sleep(seconds);
  return 0;
}

}  // extern "C"
