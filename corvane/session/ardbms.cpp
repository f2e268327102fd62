#include "corvane/session/ardbms.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <list>
#include <mutex>
#include <new>
#include <optional>
#include <thread>
#include <utility>

#include "corvane/internal/client_library.h"
#include "corvane/internal/log.h"
#include "corvane/internal/number_text.h"
#include "corvane/internal/server_error.h"
#include "corvane/session/internal/options.h"
#include "corvane/session/internal/statement_kind.h"

using corvane::ErrorKind;
using corvane::internal::ClientError;
using corvane::internal::IsConnectionLost;
using corvane::internal::kLogFailures;
using corvane::internal::kLogNotices;
using corvane::internal::kLogStatements;
using corvane::internal::Log;
using corvane::internal::ResultPtr;
using corvane::internal::SslMode;
using corvane::internal::WriteLog;

namespace {

constexpr char const* kIdentifierQuote = "`";
constexpr std::size_t kWorkBufferSize = 133121;  // 2 * 66,560 + 1: an escaped literal of 65 KiB
// Line feed, backspace, line feed: between an error and the statement it is about.
constexpr char const* kStatementBreak = "\n\b\n";
constexpr unsigned long kResult = static_cast<unsigned long>(-1);  // in place of affected rows
constexpr char const* kLocalHost = "localhost";
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

int CodeOf(unsigned number) {
  return number == corvane::internal::kServerForeignKey ? corvane::kErrForeignKey : corvane::kErrStatementRefused;
}

AException Refused(int code, MYSQL* handle, Str const& statement) {
  ClientError const error(handle);
  AException refused(code, "DB Error ", static_cast<int>(error.number));
  refused << error.number << " (" << error.text << ") in query" << kStatementBreak << statement;
  return refused;
}

AException ConnectionLost(unsigned by) {
  return AException(corvane::kErrConnectionLost, "Database connection lost", static_cast<int>(by),
                    ErrorKind::kConnectionLost);
}

// A transaction died with its connection. Pinned: number and text in the message are those of the new connection; held
// by Execute.LostWithAutocommitOffReconnectsAndReportsTheNewConnection.
AException Died(MYSQL* reopened, Str const& statement, unsigned lostBy) {
  AException died(corvane::kErrStatementRefused, "", static_cast<int>(lostBy), ErrorKind::kConnectionLost);
  died << Refused(0, reopened, statement).Message();
  return died;
}

AException OutcomeUnknown(unsigned lostBy, Str const& statement) {
  AException unknown(corvane::kErrOutcomeUnknown, "Connection lost, outcome unknown: error ", static_cast<int>(lostBy),
                     ErrorKind::kOutcomeUnknown);
  unknown << lostBy << " in query" << kStatementBreak << statement;
  return unknown;
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

AException ConnectFailure(char const* what, unsigned number, char const* text) {
  AException failed(0, what, static_cast<int>(number));
  failed << "\n Error " << number << " (" << text << ")\n";
  return failed;
}

AException ConnectFailure(char const* what, MYSQL* handle) {
  ClientError const error(handle);
  return ConnectFailure(what, error.number, error.text);
}

// Whether connecting may succeed later. A server that goes away while TLS is agreed upon is no different from one with
// a wrong certificate.
bool MayComeBack(AException const& failed) {
  return failed.Kind() == ErrorKind::kConnectionLost || failed.ServerError() == corvane::internal::kClientTls;
}

AException SequenceFailure(MYSQL* handle) { return ConnectFailure("mysql_real_connect failed for sequence", handle); }

// Waits for the byte that a control connection answers with; 0 for as long as it takes.
bool IsAnswered(IO::TcpSocket& socket, unsigned seconds) {
  using Clock = std::chrono::steady_clock;
  auto const end = Clock::now() + std::chrono::seconds(seconds);
  IO::Select<IO::TcpSocket> select(socket, kWaitReadable, kWaitStep);
  while (select.Wait() == 1) {
    if (seconds > 0 && Clock::now() >= end) return false;
  }
  char byte = 0;
  return socket.Read(&byte, 1) == 1;
}

// Before the second reconnection for a statement and those after it: 50 ms, and twice as long each time, up to 1.6 s.
void Pause(unsigned reconnections) {
  constexpr int kFirst = 50;
  constexpr unsigned kMaxDoublings = 5;
  if (reconnections == 0) return;
  std::this_thread::sleep_for(std::chrono::milliseconds(kFirst << std::min(reconnections - 1, kMaxDoublings)));
}

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
  options_ = std::make_unique<corvane::internal::SessionOptions const>(parameters_);
  workBuffer_.reset(new char[kWorkBufferSize]);
  try {
    Connect(exitOnError_);
  } catch (...) {
    CloseDatabase();  // the destructor will not run
    throw;
  }
}

// Pinned: unless CloseOnDestroy is on, the database connections stay open; held by
// SessionEnd.DestructorClosesNoDatabaseConnection.
ASSession::~ASSession() {
  mysql_free_result(std::exchange(untaken_, nullptr));
  try {
    Log(debugLevel_, kLogStatements, "SESSION ", Address(), " DISCONNECT\n\n");
    if (options_->closeOnDestroy) CloseDatabase();
    Abandoned::All().Keep(mainHandle_);
    Abandoned::All().Keep(sequenceHandle_);
  } catch (...) {
    // No memory for a line of log or a list entry: nothing that a destructor could report.
  }
}

void ASSession::Connect(bool exitOnError) {
  reconnections_ = 0;
  OpenMain(exitOnError);
  Complete();
}

// What remains once the main connection is open.
void ASSession::Complete() {
  try {
    SetMode();
  } catch (...) {
    // Left open, the connection would commit each statement by itself, as servers do by default.
    if (!connected_) CloseDatabase();
    throw;
  }
}

// Setting the autocommit mode may lose the connection too, and then another one is opened within the opening of this
// one. `opening` counts those begun and not completed; they are completed from the innermost outwards, each sending its
// mode statement again, as nested calls would do, but without growing the stack.
void ASSession::SetMode() {
  std::optional<unsigned> lostBy;
  for (unsigned long opening = 1; opening > 0;) {
    bool const on = ParameterIs("AutoCommit", "on");
    Str const mode = on ? "SET AUTOCOMMIT=1" : "SET AUTOCOMMIT=0";
    if (!Send(mode, lostBy)) {
      Reopen();
      ++opening;
      continue;
    }
    Log(debugLevel_, kLogNotices, "autocommit mode swithced ", on ? "ON" : "OFF", "\n");
    OpenSequence();
    connected_ = true;
    --opening;
    if (opening > 0 && !on) throw Died(mainHandle_, mode, lostBy.value_or(0));
  }
}

bool ASSession::MayReconnect() const { return !options_->retryLimit || reconnections_ < *options_->retryLimit; }

void ASSession::CountReconnection() {
  if (options_->retryLimit) Pause(reconnections_);
  ++reconnections_;
}

// With a RetryLimit a server that cannot be reached is tried again, as often as that says.
void ASSession::Reopen() {
  while (true) {
    CountReconnection();
    try {
      return OpenMain(exitOnError_);
    } catch (AException const& error) {
      if (!options_->retryLimit || !MayComeBack(error)) throw;
      if (!MayReconnect()) throw ConnectionLost(static_cast<unsigned>(error.ServerError()));
    }
  }
}

void ASSession::OpenMain(bool exitOnError) {
  if (debugLevel_ > kLogStatements) {
    Str lines;
    for (auto const& [key, value] : parameters_) {
      bool const isHidden = key == "Password" && !options_->logSecrets;
      lines << "  " << key << "=" << (isHidden ? "***" : value) << "\n";
    }
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
  auto const port = static_cast<unsigned>(ToInt(parameters_["Port"]));
  isOpen_ = OpenDatabase(mainHandle_, "Host", port);
  if (isOpen_) corvane::internal::ForbidReconnect(mainHandle_);
  try {
    if (!isOpen_) throw ConnectFailure("mysql_real_connect failed", mainHandle_);
    CheckSafe(mainHandle_);
  } catch (AException const& failed) {
    if (isOpen_) CloseDatabase();
    Log(debugLevel_, kLogFailures, failed.Message());
    sleep(1);
    if (exitOnError) std::exit(1);
    throw;
  } catch (...) {
    CloseDatabase();  // what could not be looked at is not used
    throw;
  }
}

// Opens a new handle's connection to the host that the parameter names. False, with the error left in the handle, when
// that fails; also without a handle.
bool ASSession::OpenDatabase(MYSQL* handle, char const* hostKey, unsigned port) {
  // One by one: looking up a parameter that was never given adds it to the map, where later logs show it.
  char const* host = parameters_[hostKey].c_str();
  char const* const user = parameters_["UserName"].c_str();
  char const* const password = parameters_["Password"].c_str();
  char const* const database = parameters_["Database"].c_str();
  if (handle == nullptr) return false;
  corvane::internal::SetOptions(handle, *options_);
  char const* socket = nullptr;
  if (!options_->socket.empty() && IsOfSocket(hostKey)) {
    host = kLocalHost;
    socket = options_->socket.c_str();
  }
  return mysql_real_connect(handle, host, user, password, database, port, socket, 0) != nullptr;
}

// The sequence connection may go to another server than the one behind the socket.
bool ASSession::IsOfSocket(char const* hostKey) {
  std::string const& host = parameters_[hostKey];
  return host.empty() || host == kLocalHost || host == parameters_["Host"];
}

// Throws when the options forbid to use a connection that has just been opened.
void ASSession::CheckSafe(MYSQL* handle) const {
  if (options_->sslMode >= SslMode::kRequired && !corvane::internal::IsEncrypted(handle)) {
    throw ConnectFailure("mysql_real_connect failed", corvane::internal::kClientTls,
                         "TLS is required, but the server does not offer it");
  }
  if (!options_->safeMode) return;
  Str const statement("SELECT @@SESSION.sql_mode, @@SESSION.character_set_client");
  LogStatement(debugLevel_, Address(), statement);
  bool const isSent = Run(handle, statement);
  ResultPtr const result(isSent ? mysql_store_result(handle) : nullptr);
  MYSQL_ROW const row = result != nullptr ? mysql_fetch_row(result.get()) : nullptr;
  if (row == nullptr || row[0] == nullptr || row[1] == nullptr) {
    throw ConnectFailure("SafeMode cannot read the server's sql_mode", handle);
  }
  if (std::strstr(row[0], "NO_BACKSLASH_ESCAPES") != nullptr) {
    throw AException(0, "SafeMode refuses the sql_mode NO_BACKSLASH_ESCAPES. ", 0, ErrorKind::kRefused);
  }
  if (!corvane::internal::IsUnsafeCharset(row[1])) return;
  AException unsafe(0, "SafeMode refuses the character set ", 0, ErrorKind::kRefused);
  unsafe << row[1] << ". ";
  throw unsafe;
}

void ASSession::OpenControl() {
  int const port = ToInt(parameters_["ControlPort"]);
  if (port < 1) return;
  Str failed("Failed to create a control connection to ");
  failed << parameters_["Host"] << ":" << port << "\n";
  try {
    controlSocket_.reset();
    controlSocket_ = std::make_unique<IO::TcpSocket>(parameters_["Host"], port, options_->connectTimeout);
    if (IsAnswered(*controlSocket_, options_->controlTimeout)) return;
  } catch (IO::Exception const& error) {
    Abandoned::All().Keep(std::move(controlSocket_));  // Pinned: let go without being closed; held by
                                                       // ControlConnection.ASocketThatFailsIsLeftOpen.
    failed << error.Message() << "\n";
    WriteLog(failed);
    throw AException(0, failed.str(), 0, ErrorKind::kConnectionLost);
  }
  failed << "Muxer timeout.\n";
  Log(debugLevel_, kLogStatements, failed);
  throw AException(0, failed.str(), 0, ErrorKind::kConnectionLost);
}

void ASSession::OpenSequence() {
  if (ParameterIs("EmulateSequences", "no")) return;
  try {
    if (!ConnectSequence()) Log(debugLevel_, kLogFailures, SequenceFailure(sequenceHandle_).Message());
  } catch (AException const& error) {
    if (error.Kind() != ErrorKind::kConnectionLost) throw;
    Log(debugLevel_, kLogFailures, error.Message());
  }
  // Pinned: also after the failure; held by Connect.SequenceNoticeIsWrittenEvenAfterAFailure.
  Log(debugLevel_, kLogNotices, "Sequence connection established\n");
}

// Opens the sequence connection anew. A handle that could not be connected is kept: its next use tries again. Throws
// what CheckSafe() throws, and keeps no handle where that is a refusal.
bool ASSession::ConnectSequence() {
  isSequenceOpen_ = false;
  if (sequenceHandle_ != nullptr) mysql_close(std::exchange(sequenceHandle_, nullptr));
  sequenceHandle_ = mysql_init(nullptr);
  if (sequenceHandle_ == nullptr) {
    Log(debugLevel_, kLogFailures, "SESSION ", Address(), " mysql_init failed for sequence\n");
    return false;
  }
  // Pinned: unless a SequencePort is given, port 0 whatever the parameters say; held by
  // Connect.SequenceConnectionAlwaysUsesPortZero.
  if (!OpenDatabase(sequenceHandle_, "SequenceHost", options_->sequencePort)) return false;
  try {
    CheckSafe(sequenceHandle_);
  } catch (AException const& error) {
    mysql_close(std::exchange(sequenceHandle_, nullptr));
    if (error.Kind() == ErrorKind::kConnectionLost) sequenceHandle_ = mysql_init(nullptr);
    throw;
  } catch (...) {
    mysql_close(std::exchange(sequenceHandle_, nullptr));
    throw;
  }
  return isSequenceOpen_ = true;
}

void ASSession::CloseDatabase() {
  isOpen_ = false;
  isSequenceOpen_ = false;
  mayBeUntaken_ = false;
  DropUntaken();
  if (sequenceHandle_ != nullptr) mysql_close(std::exchange(sequenceHandle_, nullptr));
  if (mainHandle_ != nullptr) mysql_close(std::exchange(mainHandle_, nullptr));
}

unsigned long ASSession::Execute(Str const& statement) {
  reconnections_ = 0;
  std::optional<unsigned> lostBy;
  try {
    while (!Send(statement, lostBy)) {
      Reopen();
      Complete();
      // Not run again in a transaction, whose first part died with the connection.
      if (!ParameterIs("AutoCommit", "on")) throw Died(mainHandle_, statement, lostBy.value_or(0));
      if (!options_->retryWrites && IsUnknown(statement, lostBy)) throw OutcomeUnknown(*lostBy, statement);
    }
  } catch (AException& error) {
    // Also when the connection could not be opened again, or the repetition was refused.
    if (!IsUnknown(statement, lostBy)) throw;
    if (!options_->retryWrites && ParameterIs("AutoCommit", "on")) throw OutcomeUnknown(*lostBy, statement);
    error.kind_ = ErrorKind::kOutcomeUnknown;
    throw;
  }
  return rowsAffected_;
}

// Whether a statement may have changed something for good when it was sent and the connection was lost.
bool ASSession::IsUnknown(Str const& statement, std::optional<unsigned> lostBy) {
  if (!lostBy) return false;
  return ParameterIs("AutoCommit", "on") ? !corvane::internal::CannotChangeData(statement.View())
                                         : !corvane::internal::CannotCommit(statement.View());
}

// Runs the statement on the main connection. False when the connection was lost and is to be opened again; `lostBy` is
// then given the error, unless there was no connection any more over which the statement could have been sent.
bool ASSession::Send(Str const& statement, std::optional<unsigned>& lostBy) {
  LogStatement(debugLevel_, Address(), statement);
  if (Query(statement)) {
    rowsAffected_ = static_cast<unsigned long>(mysql_affected_rows(mainHandle_));
    if (rowsAffected_ == kResult) Remember(statement);
    Log(debugLevel_, kLogStatements, "EXECUTE COMPLETE\n");
    return true;
  }
  ClientError const error(mainHandle_);
  LogFailure(debugLevel_, Address(), error, statement);
  if (error.number != 0 && !IsLost(error.number)) throw Refused(CodeOf(error.number), mainHandle_, statement);
  LogLost(debugLevel_, error, statement);
  if (exitOnError_) std::exit(1);
  if (isOpen_) lostBy = error.number;
  isOpen_ = isOpen_ && error.number == corvane::internal::kClientOutOfSync;
  if (ParameterIs("AutoReconnect", "off") || !MayReconnect()) throw ConnectionLost(error.number);
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
    ResultPtr const dropped(mysql_store_result(mainHandle_));
  }
  if (!HasError()) return;
  DropUntaken();
  ClientError const error(mainHandle_);
  LogFailure(debugLevel_, Address(), error, statement);
  AException refused = Refused(CodeOf(error.number), mainHandle_, statement);
  refused.kind_ = KindOfFetch(error.number, statement);
  throw AException(refused);
}

bool ASSession::HasError() const { return ClientError(mainHandle_).number != 0; }

void ASSession::DropUntaken() {
  ResultPtr const kept(std::exchange(untaken_, nullptr));
  if (!std::exchange(mayBeUntaken_, false) || mainHandle_ == nullptr) return;
  ResultPtr const dropped(mysql_store_result(mainHandle_));
}

void ASSession::ExecuteSeq(Str const& statement) {
  reconnections_ = 0;
  ReopensForSeq(statement, options_->retryWrites);
}

void ASSession::CheckSequence(ASSession const* session) {
  if (session == nullptr || session->sequenceHandle_ == nullptr) {
    throw AException("Sequence connection is not established. ");
  }
}

bool ASSession::ReopensForSeq(Str const& statement, bool repeatsWrites) {
  bool isReopened = false;
  std::optional<unsigned> lostBy;
  auto const isUnknown = [&] { return lostBy && !corvane::internal::CannotChangeData(statement.View()); };
  try {
    while (true) {
      LogStatement(debugLevel_, Address(), statement);
      CheckSequence(this);
      if (Run(sequenceHandle_, statement)) return isReopened;
      ClientError const error(sequenceHandle_);
      LogFailure(debugLevel_, Address(), error, statement);
      if (!IsLost(error.number)) throw Refused(0, sequenceHandle_, statement);
      LogLost(debugLevel_, error, statement);
      if (isSequenceOpen_) lostBy = error.number;
      isReopened = true;
      ReopenSequence(error.number);
      if (!repeatsWrites && isUnknown()) throw OutcomeUnknown(*lostBy, statement);
    }
  } catch (AException& error) {
    // As in Execute().
    if (!isUnknown()) throw;
    if (!repeatsWrites) throw OutcomeUnknown(*lostBy, statement);
    error.kind_ = ErrorKind::kOutcomeUnknown;
    throw;
  }
}

void ASSession::ReopenSequence(unsigned lostBy) {
  while (true) {
    if (!MayReconnect()) throw ConnectionLost(lostBy);
    CountReconnection();
    Log(debugLevel_, kLogFailures, "Trying to reconnect...\n");
    try {
      if (ConnectSequence()) return;
      if (sequenceHandle_ == nullptr) throw AException("mysql_init failed for sequence. ");
      throw SequenceFailure(sequenceHandle_);
    } catch (AException const& failed) {
      if (sequenceHandle_ != nullptr) Log(debugLevel_, kLogFailures, failed.Message());
      if (exitOnError_) std::exit(1);
      if (!options_->retryLimit || !MayComeBack(failed)) throw;
    }
  }
}

AException ASSession::FetchError() {
  unsigned const number = ClientError(mainHandle_).number;
  return AException(0, "MySQL fetch error. ", static_cast<int>(number), KindOfFetch(number, resultOf_));
}

// The statement has run: without memory it is taken for one that may change data.
void ASSession::Remember(Str const& statement) noexcept {
  try {
    resultOf_ = statement;
  } catch (std::bad_alloc const&) {
    resultOf_ = Str();
  }
}

// Of an error that came with the result of a statement. What the statement changes it may have changed by then.
ErrorKind ASSession::KindOfFetch(unsigned number, Str const& statement) {
  if (!IsLost(number)) return corvane::internal::KindOf(static_cast<int>(number));
  return IsUnknown(statement, number) ? ErrorKind::kOutcomeUnknown : ErrorKind::kConnectionLost;
}

// With TLS, whatever happens to the connection is an error of TLS to the client library.
bool ASSession::IsLost(unsigned number) const {
  return IsConnectionLost(number) || (number == corvane::internal::kClientTls && options_->sslMode != SslMode::kUnset);
}

bool ASSession::IsSafeMode() const { return options_->safeMode; }

MYSQL_RES* ASSession::FetchMultiple() {
  mayBeUntaken_ = false;
  if (untaken_ != nullptr) return std::exchange(untaken_, nullptr);  // the caller's from here on
  MYSQL_RES* const result = mainHandle_ != nullptr ? mysql_store_result(mainHandle_) : nullptr;
  if (result == nullptr) throw FetchError();
  return result;
}

MYSQL_RES* ASSession::FetchUnstored() {
  MYSQL_RES* const result = mainHandle_ != nullptr ? mysql_use_result(mainHandle_) : nullptr;
  if (result == nullptr) throw FetchError();
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
  if (!IsLost(error.number)) {
    Log(debugLevel_, kLogFailures, "SESSION ", Address(), "  Error ", during, "\n");
    return;
  }
  Log(debugLevel_, kLogFailures, "DB fatal error ", during, "\n");
  if (exitOnError_) std::exit(1);
  AException lost(0, "DB fatal error ", static_cast<int>(error.number), ErrorKind::kConnectionLost);
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
