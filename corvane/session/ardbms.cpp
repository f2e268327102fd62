#include "corvane/session/ardbms.h"

#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <list>
#include <mutex>
#include <utility>

#include "corvane/internal/client_library.h"
#include "corvane/internal/log.h"
#include "corvane/internal/number_text.h"

using corvane::internal::ClientError;
using corvane::internal::IsConnectionLost;
using corvane::internal::kLogFailures;
using corvane::internal::kLogNotices;
using corvane::internal::kLogStatements;
using corvane::internal::Log;
using corvane::internal::WriteLog;

namespace {

constexpr char const* kIdentifierQuote = "`";
constexpr std::size_t kWorkBufferSize = 133121;  // 2 * 66,560 + 1: an escaped literal of 65 KiB
// Line feed, backspace, line feed: between an error and the statement it is about.
constexpr char const* kStatementBreak = "\n\b\n";
constexpr int kWaitReadable = 1;
constexpr int kWaitStep = 1000;  // milliseconds

// Connections that outlive their sessions. Never destroyed, so that none is closed before the process ends and leak
// checkers still see an owner. The one thing that sessions of different threads share.
class Abandoned {
 public:
  static Abandoned& All() {
    static auto* const all = new Abandoned;
    return *all;
  }

  void Keep(MYSQL* handle) {
    if (handle == nullptr) return;
    std::lock_guard<std::mutex> const guard(mutex_);
    handles_.push_back(handle);
  }

  void Keep(std::unique_ptr<IO::TcpSocket> socket) {
    if (socket == nullptr) return;
    std::lock_guard<std::mutex> const guard(mutex_);
    sockets_.push_back(std::move(socket));
  }

 private:
  std::mutex mutex_;
  std::list<MYSQL*> handles_;
  std::list<std::unique_ptr<IO::TcpSocket>> sockets_;
};

std::map<std::string, std::string> ParseConnectionString(Str const& text) {
  std::map<std::string, std::string> parameters;
  // Cuts the text before the first `delimiter` off `rest`, the delimiter with it.
  auto const cut = [](Str& rest, char const* delimiter) {
    Str const head = rest.getUntil(delimiter, 0);
    rest = rest.getInterval(head.length() + 1, rest.length() - 1);
    return head.ToString();
  };
  Str rest = text;
  std::string const userName = cut(rest, ":");
  std::string const password = cut(rest, "@");
  bool const hasHost = rest.findStr("/") >= 0;
  std::string const database = cut(rest, "/");
  if (hasHost) {
    Str hosts = cut(rest, ":");
    std::string const firstHost = hosts.getUntil("/", 0).ToString();
    bool const hasSequenceHost = hosts.findStr("/") >= 0;
    if (hasSequenceHost) cut(hosts, "/");
    parameters["SequenceHost"] = firstHost;
    parameters["Host"] = hosts.ToString();
    parameters["Port"] = cut(rest, "/");
    parameters["ControlPort"] = rest.ToString();
  }
  parameters["UserName"] = userName;
  parameters["Password"] = password;
  parameters["Database"] = database;
  return parameters;
}

int ToInt(std::string const& text) {
  return corvane::internal::TruncateToInt(corvane::internal::ParseInteger(text.c_str()));
}

// False, with the error left in the handle, when the statement failed or there is no connection.
bool Run(MYSQL* handle, Str const& statement) {
  if (std::strlen(statement.str()) != static_cast<std::size_t>(statement.length())) {
    throw AException("Statement contains a NUL byte. ");
  }
  return handle != nullptr && mysql_query(handle, statement.str()) == 0;
}

AException Refused(int code, MYSQL* handle, Str const& statement) {
  ClientError const error(handle);
  AException refused(code, "DB Error ");
  refused << error.number << " (" << error.text << ") in query" << kStatementBreak << statement;
  return refused;
}

void LogStatement(int level, unsigned long session, Str const& statement) {
  Log(level, kLogStatements, "SESSION ", session, " EXECUTE ", statement, "\n\n");
}

void LogFailure(int level, unsigned long session, ClientError const& error, Str const& statement) {
  Log(level, kLogFailures, "SESSION ", session, " EXECUTE Failed\n Error ", error.number, " (", error.text,
      ") in query\n", statement, "\n");
}

void LogLost(int level, ClientError const& error, Str const& statement) {
  Log(level, kLogFailures, "DB fatal error ", error.number, " (", error.text, ") in query", kStatementBreak, statement,
      "\n");
}

void LogTransaction(int level, unsigned long session, Str const& statement) {
  Log(level, kLogStatements, "SESSION ", session, " \n", statement, "\n\n");
}

Str ConnectFailure(char const* what, MYSQL* handle) {
  ClientError const error(handle);
  Str failed(what);
  failed << "\n Error " << error.number << " (" << error.text << ")\n";
  return failed;
}

Str SequenceFailure(MYSQL* handle) { return ConnectFailure("mysql_real_connect failed for sequence", handle); }

}  // namespace

ASSession::ASSession(std::map<std::string, std::string> const& parameters, int debugLevel, bool exitOnError)
    : parameters_(parameters), debugLevel_(debugLevel), exitOnError_(exitOnError) {
  Start();
}

ASSession::ASSession(Str const& connectionString, int debugLevel, bool exitOnError)
    : parameters_(ParseConnectionString(connectionString)), debugLevel_(debugLevel), exitOnError_(exitOnError) {
  Start();
}

void ASSession::Start() {
  workBuffer_.reset(new char[kWorkBufferSize]);
  try {
    Connect(exitOnError_);
  } catch (...) {
    CloseDatabase();  // the destructor will not run
    throw;
  }
}

// Pinned: the database connections stay open; held by SessionEnd.DestructorClosesNoDatabaseConnection.
ASSession::~ASSession() {
  mysql_free_result(std::exchange(untaken_, nullptr));
  try {
    Log(debugLevel_, kLogStatements, "SESSION ", Address(), " DISCONNECT\n\n");
    Abandoned::All().Keep(mainHandle_);
    Abandoned::All().Keep(sequenceHandle_);
  } catch (...) {
    // No memory for a line of log or a list entry: nothing that a destructor could report.
  }
}

// Setting the autocommit mode may lose the connection too, and then another one is opened within the opening of this
// one. `opening` counts those begun and not completed; they are completed from the innermost outwards, each sending its
// mode statement again, as nested calls would do, but without growing the stack.
void ASSession::Connect(bool exitOnError) {
  OpenMain(exitOnError);
  for (unsigned long opening = 1; opening > 0;) {
    bool const on = ParameterIs("AutoCommit", "on");
    Str const mode = on ? "SET AUTOCOMMIT=1" : "SET AUTOCOMMIT=0";
    if (!Send(mode)) {
      OpenMain(exitOnError_);
      ++opening;
      continue;
    }
    Log(debugLevel_, kLogNotices, "autocommit mode swithced ", on ? "ON" : "OFF", "\n");
    OpenSequence();
    connected_ = true;
    --opening;
    if (opening > 0 && !on) throw Refused(corvane::kErrStatementRefused, mainHandle_, mode);
  }
}

void ASSession::OpenMain(bool exitOnError) {
  if (debugLevel_ > kLogStatements) {
    Str lines;
    for (auto const& [key, value] : parameters_) lines << "  " << key << "=" << value << "\n";
    Log(debugLevel_, kLogStatements, "SESSION ", Address(), " CONNECTION PARAMETERS:\n", lines, "\n");
  }
  OpenControl();
  connected_ = false;
  kwPrefix_ = kIdentifierQuote;
  kwSuffix_ = kIdentifierQuote;
  CloseDatabase();
  corvane::internal::EnsureClientLibrary();
  mainHandle_ = mysql_init(nullptr);
  if (mainHandle_ == nullptr) Log(debugLevel_, kLogFailures, "SESSION ", Address(), " mysql_init failed\n");
  // One by one: looking up a parameter that was never given adds it to the map, where later logs show it.
  char const* const host = parameters_["Host"].c_str();
  char const* const user = parameters_["UserName"].c_str();
  char const* const password = parameters_["Password"].c_str();
  char const* const database = parameters_["Database"].c_str();
  auto const port = static_cast<unsigned>(ToInt(parameters_["Port"]));
  if (mainHandle_ == nullptr ||
      mysql_real_connect(mainHandle_, host, user, password, database, port, nullptr, 0) == nullptr) {
    Str const failed = ConnectFailure("mysql_real_connect failed", mainHandle_);
    Log(debugLevel_, kLogFailures, failed);
    sleep(1);
    if (exitOnError) std::exit(1);
    throw AException(failed.str());
  }
  corvane::internal::ForbidReconnect(mainHandle_);
}

void ASSession::OpenControl() {
  int const port = ToInt(parameters_["ControlPort"]);
  if (port < 1) return;
  Str failed("Failed to create a control connection to ");
  failed << parameters_["Host"] << ":" << port << "\n";
  try {
    controlSocket_.reset();
    controlSocket_ = std::make_unique<IO::TcpSocket>(parameters_["Host"], port);
    IO::Select<IO::TcpSocket> select(*controlSocket_, kWaitReadable, kWaitStep);
    while (select.Wait() == 1) {
    }
    char byte = 0;
    if (controlSocket_->Read(&byte, 1) == 1) return;
  } catch (IO::Exception const& error) {
    Abandoned::All().Keep(std::move(controlSocket_));  // Pinned: let go without being closed; held by
                                                       // ControlConnection.ASocketThatFailsIsLeftOpen.
    failed << error.Message() << "\n";
    WriteLog(failed);
    throw AException(failed.str());
  }
  failed << "Muxer timeout.\n";
  Log(debugLevel_, kLogStatements, failed);
  throw AException(failed.str());
}

void ASSession::OpenSequence() {
  if (ParameterIs("EmulateSequences", "no")) return;
  if (!ConnectSequence()) Log(debugLevel_, kLogFailures, SequenceFailure(sequenceHandle_));
  // Pinned: also after the failure; held by Connect.SequenceNoticeIsWrittenEvenAfterAFailure.
  Log(debugLevel_, kLogNotices, "Sequence connection established\n");
}

// Opens the sequence connection anew. A handle that could not be connected is kept: its next use tries again.
bool ASSession::ConnectSequence() {
  if (sequenceHandle_ != nullptr) mysql_close(std::exchange(sequenceHandle_, nullptr));
  sequenceHandle_ = mysql_init(nullptr);
  if (sequenceHandle_ == nullptr) {
    Log(debugLevel_, kLogFailures, "SESSION ", Address(), " mysql_init failed for sequence\n");
    return false;
  }
  char const* const host = parameters_["SequenceHost"].c_str();
  char const* const user = parameters_["UserName"].c_str();
  char const* const password = parameters_["Password"].c_str();
  char const* const database = parameters_["Database"].c_str();
  // Pinned: port 0 whatever the parameters say; held by Connect.SequenceConnectionAlwaysUsesPortZero.
  return mysql_real_connect(sequenceHandle_, host, user, password, database, 0, nullptr, 0) != nullptr;
}

void ASSession::CloseDatabase() {
  mayBeUntaken_ = false;
  DropUntaken();
  if (sequenceHandle_ != nullptr) mysql_close(std::exchange(sequenceHandle_, nullptr));
  if (mainHandle_ != nullptr) mysql_close(std::exchange(mainHandle_, nullptr));
}

unsigned long ASSession::Execute(Str const& statement) {
  while (!Send(statement)) {
    Connect(exitOnError_);
    // Not run again in a transaction, whose first part died with the connection. Pinned: number and text are those of
    // the new connection; held by Execute.LostWithAutocommitOffReconnectsAndReportsTheNewConnection.
    if (!ParameterIs("AutoCommit", "on")) throw Refused(corvane::kErrStatementRefused, mainHandle_, statement);
  }
  return rowsAffected_;
}

// Runs the statement on the main connection. False when the connection was lost and is to be opened again.
bool ASSession::Send(Str const& statement) {
  LogStatement(debugLevel_, Address(), statement);
  if (Query(statement)) {
    rowsAffected_ = static_cast<unsigned long>(mysql_affected_rows(mainHandle_));
    Log(debugLevel_, kLogStatements, "EXECUTE COMPLETE\n");
    return true;
  }
  ClientError const error(mainHandle_);
  LogFailure(debugLevel_, Address(), error, statement);
  if (error.number != 0 && !IsConnectionLost(error.number)) {
    int const code =
        error.number == corvane::internal::kServerForeignKey ? corvane::kErrForeignKey : corvane::kErrStatementRefused;
    throw Refused(code, mainHandle_, statement);
  }
  LogLost(debugLevel_, error, statement);
  if (exitOnError_) std::exit(1);
  if (ParameterIs("AutoReconnect", "off")) throw AException(corvane::kErrConnectionLost, "Database connection lost");
  Log(debugLevel_, kLogFailures, "Reconnecting.\n");
  return false;
}

// Sends the statement on the main connection.
bool ASSession::Query(Str const& statement) {
  DropUntaken();
  return Run(mainHandle_, statement);
}

void ASSession::AdmitUntaken() { mayBeUntaken_ = true; }

void ASSession::AdmitUntakenOf(Str const& statement) {
  untaken_ = mysql_store_result(mainHandle_);
  while (!HasError() && mysql_next_result(mainHandle_) == 0) {
    corvane::internal::ResultPtr const dropped(mysql_store_result(mainHandle_));
  }
  if (!HasError()) return;
  DropUntaken();
  LogFailure(debugLevel_, Address(), ClientError(mainHandle_), statement);
  throw Refused(corvane::kErrStatementRefused, mainHandle_, statement);
}

bool ASSession::HasError() const { return ClientError(mainHandle_).number != 0; }

void ASSession::DropUntaken() {
  corvane::internal::ResultPtr const kept(std::exchange(untaken_, nullptr));
  if (!std::exchange(mayBeUntaken_, false) || mainHandle_ == nullptr) return;
  corvane::internal::ResultPtr const dropped(mysql_store_result(mainHandle_));
}

void ASSession::ExecuteSeq(Str const& statement) { ReopensForSeq(statement); }

void ASSession::CheckSequence(ASSession const* session) {
  if (session == nullptr || session->sequenceHandle_ == nullptr) {
    throw AException("Sequence connection is not established. ");
  }
}

bool ASSession::ReopensForSeq(Str const& statement) {
  for (bool reopened = false;; reopened = true) {
    LogStatement(debugLevel_, Address(), statement);
    CheckSequence(this);
    if (Run(sequenceHandle_, statement)) return reopened;
    ClientError const error(sequenceHandle_);
    LogFailure(debugLevel_, Address(), error, statement);
    if (!IsConnectionLost(error.number)) throw Refused(0, sequenceHandle_, statement);
    LogLost(debugLevel_, error, statement);
    Log(debugLevel_, kLogFailures, "Trying to reconnect...\n");
    if (ConnectSequence()) continue;
    if (sequenceHandle_ == nullptr) {
      if (exitOnError_) std::exit(1);
      throw AException("mysql_init failed for sequence. ");
    }
    Str const failed = SequenceFailure(sequenceHandle_);
    Log(debugLevel_, kLogFailures, failed);
    if (exitOnError_) std::exit(1);
    throw AException(failed.str());
  }
}

MYSQL_RES* ASSession::FetchMultiple() {
  mayBeUntaken_ = false;
  if (untaken_ != nullptr) return std::exchange(untaken_, nullptr);  // the caller's from here on
  MYSQL_RES* const result = mainHandle_ != nullptr ? mysql_store_result(mainHandle_) : nullptr;
  if (result == nullptr) throw AException("MySQL fetch error. ");
  return result;
}

MYSQL_RES* ASSession::FetchUnstored() {
  MYSQL_RES* const result = mainHandle_ != nullptr ? mysql_use_result(mainHandle_) : nullptr;
  if (result == nullptr) throw AException("MySQL fetch error. ");
  return result;
}

void ASSession::Commit() {
  Str const statement("COMMIT");
  LogTransaction(debugLevel_, Address(), statement);
  Execute(statement);
}

void ASSession::Rollback() {
  Str const statement("ROLLBACK");
  LogTransaction(debugLevel_, Address(), statement);
  if (!connected_ || Query(statement)) return;
  ClientError const error(mainHandle_);
  Str during;
  during << error.number << " (" << error.text << ") during ROLLBACK";
  if (!IsConnectionLost(error.number)) {
    Log(debugLevel_, kLogFailures, "SESSION ", Address(), "  Error ", during, "\n");
    return;
  }
  Log(debugLevel_, kLogFailures, "DB fatal error ", during, "\n");
  if (exitOnError_) std::exit(1);
  AException lost("DB fatal error ");
  lost << during << ". ";
  throw lost;
}

void ASSession::ReadOnly() {
  readOnly_ = 1;
  readOnlyStack_.clear();
}

void ASSession::ClearReadOnly() {
  readOnly_ = 0;
  readOnlyStack_.clear();
}

void ASSession::PushReadOnly() {
  readOnlyStack_.push_back(readOnly_);
  readOnly_ = 1;
}

void ASSession::PopReadOnly() {
  if (readOnlyStack_.empty()) return;
  readOnly_ = readOnlyStack_.back();
  readOnlyStack_.pop_back();
}

Int ASSession::GetInsertId() {
  return mainHandle_ != nullptr
             ? Int(corvane::internal::TruncateToInt(static_cast<long long>(mysql_insert_id(mainHandle_))))
             : Int(0);
}

// Not mysql_ping: where the client library was told to reconnect, that would.
bool ASSession::Ping() { return Query("DO 0"); }

void ASSession::Disconnect() {
  Log(debugLevel_, kLogStatements, "SESSION ", Address(), " DISCONNECT\n\n");
  connected_ = false;
  CloseDatabase();
}

// Compares without regard to the case of letters.
bool ASSession::ParameterIs(char const* key, char const* lowerCase) {
  return Str(parameters_[key]).toLower() == lowerCase;
}

unsigned long ASSession::Address() const { return reinterpret_cast<std::uintptr_t>(this); }
