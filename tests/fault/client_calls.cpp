#include "tests/fault/client_calls.h"

#include <algorithm>
#include <array>
#include <map>
#include <utility>

namespace corvane::test {

namespace {

bool StartsWith(std::string const& text, std::string const& with) { return text.compare(0, with.size(), with) == 0; }

// Behind the connection and the word, "m query COMMIT".
std::string StatementOf(std::string const& call) { return call.substr(std::string("m query ").size()); }

std::string DatabaseError(unsigned number, std::string const& text, std::string const& statement) {
  return "DB Error " + std::to_string(number) + " (" + text + ") in query\n\b\n" + statement;
}

std::string NotConnected(char const* what, unsigned number, std::string const& text) {
  return what + ("\n Error " + std::to_string(number)) + " (" + text + ")\n";
}

constexpr char const* kComplete = "EXECUTE COMPLETE\n";
constexpr char const* kSaves = "INSERT INTO `countryArc`";
constexpr char const* kReadsNumber = "SELECT LAST_INSERT_ID()";

}  // namespace

Call CallOf(std::string const& call) {
  static std::map<std::string, Call> const kCalls{{"init", Call::kInit},      {"connect", Call::kConnect},
                                                  {"query", Call::kQuery},    {"store_result", Call::kStore},
                                                  {"use_result", Call::kUse}, {"next_result", Call::kNext}};
  std::size_t const begin = call.find(' ') + 1;
  auto const found = kCalls.find(call.substr(begin, call.find(' ', begin) - begin));
  return found != kCalls.end() ? found->second : Call::kNone;
}

std::string Course::LogBefore(std::size_t call) const {
  std::string text;
  for (Line const& line : log) {
    if (line.calls <= call) text += line.text;
  }
  return text;
}

std::string Course::LogBehind(std::size_t call) const {
  std::string text;
  for (Line const& line : log) {
    if (line.calls > call) text += line.text;
  }
  return text;
}

// What becomes of a call that fails.
enum class Rules::Fate {
  kRefused,            // thrown with 102, number and text
  kForeignKey,         // the same with 100
  kLost,               // of the following three the one that the mode says
  kLostForGood,        // 103, nothing is reopened
  kTransactionLost,    // all is reopened, then 102 with the new connection's number, 0
  kRepeated,           // all is reopened, then the statement runs again
  kIgnored,            // as refused, but nothing is thrown, and it goes on
  kIgnoredLost,        // as lost, but what that throws is not thrown
  kOnlyLogged,         // on a line of ROLLBACK's own
  kRollbackLost,       // thrown and logged as such
  kSaysNo,             // the return value, and nothing else
  kPlainRefused,       // as refused, without a number
  kSequenceRepeated,   // the sequence connection is reopened, whatever the mode
  kNoConnection,       // thrown after a second's pause, and logged
  kNoSequence,         // logged only
  kSequenceStaysLost,  // thrown and logged
  kFetchError,         // thrown, nothing is logged
  kDropped,            // it goes on: the result was to be dropped
  kFetchErrorUntaken,  // the same; the result that stays in the way is a lost connection for the next statement
  kRowsError,          // the same; what has come of the result is freed
  kLaterError,         // of a procedure's results: as refused, and the first result is freed
  kNoNumber            // 0 is returned
};

// The rules.
Rules::Fate Rules::FateOf(Fault const& fault) const {
  std::string const& call = good_.calls[fault.call];
  bool const sequence = call[0] == 's';
  bool const lostNumber = fault.number == 2006 || fault.number == 2013 || fault.number == 2014;
  switch (fault.kind) {
    case Call::kNone:
      break;
    case Call::kInit:
    case Call::kConnect:
      return !sequence ? Fate::kNoConnection : sequenceAlone_ ? Fate::kSequenceStaysLost : Fate::kNoSequence;
    case Call::kStore:
      if (sequence) return Fate::kNoNumber;
      if (fault.call + 2 < good_.calls.size() && StartsWith(good_.calls[0], "m query SHOW")) return Fate::kDropped;
      return StartsWith(good_.calls[0], "m query CALL") ? Fate::kLaterError : Fate::kFetchError;
    case Call::kUse:
      return Fate::kFetchErrorUntaken;
    case Call::kRow:
      return Fate::kRowsError;
    case Call::kNext:
      return Fate::kLaterError;
    case Call::kQuery:
      break;
  }
  enum Kind { kExecuted, kSaving, kRollback, kPing, kSequence };
  enum Number { kOther, k1217, kLostNumber, kZero };
  static constexpr std::array<std::array<Fate, 4>, 5> kFates{{
      //                 any other            1217                 2006, 2013, 2014         0
      /* executed */ {{Fate::kRefused, Fate::kForeignKey, Fate::kLost, Fate::kLost}},
      /* saving   */ {{Fate::kIgnored, Fate::kIgnored, Fate::kIgnoredLost, Fate::kIgnoredLost}},
      /* rollback */ {{Fate::kOnlyLogged, Fate::kOnlyLogged, Fate::kRollbackLost, Fate::kOnlyLogged}},
      /* ping     */ {{Fate::kSaysNo, Fate::kSaysNo, Fate::kSaysNo, Fate::kSaysNo}},
      /* sequence */ {{Fate::kPlainRefused, Fate::kPlainRefused, Fate::kSequenceRepeated, Fate::kPlainRefused}},
  }};
  Kind const kind = sequence                                             ? kSequence
                    : call == "m query ROLLBACK"                         ? kRollback
                    : call == "m query DO 0"                             ? kPing
                    : StartsWith(call, std::string("m query ") + kSaves) ? kSaving
                                                                         : kExecuted;
  Number const number = lostNumber ? kLostNumber : fault.number == 0 ? kZero : fault.number == 1217 ? k1217 : kOther;
  Fate const fate = kFates.at(kind).at(number);
  if (fate != Fate::kLost && fate != Fate::kIgnoredLost) return fate;
  if (mode_.autoReconnect && mode_.autoCommit) return Fate::kRepeated;
  if (fate == Fate::kIgnoredLost) return fate;
  return mode_.autoReconnect ? Fate::kTransactionLost : Fate::kLostForGood;
}

Expected Rules::After(Fault const& fault) const {
  Expected expected;
  auto& [calls, log, result, thrown, left] = expected;
  calls.assign(good_.calls.begin(), good_.calls.begin() + static_cast<std::ptrdiff_t>(fault.call) + 1);
  log = good_.LogBefore(fault.call);
  bool const init = fault.kind == Call::kInit;
  unsigned const number = init ? 0 : fault.number;
  std::string const text = init ? "" : fault.text;
  std::string const statement = fault.kind == Call::kQuery ? StatementOf(calls.back()) : "";
  std::string const during = std::to_string(number) + " (" + text + ") during ROLLBACK";
  if (init) calls.back() = "- init";

  Fate const fate = FateOf(fault);
  switch (fate) {
    case Fate::kLost:
      break;
    case Fate::kRefused:
    case Fate::kForeignKey:
    case Fate::kPlainRefused: {
      int const code = fate == Fate::kRefused ? 102 : fate == Fate::kForeignKey ? 100 : 0;
      log += Failed(fault, statement);
      thrown = {code, DatabaseError(number, text, statement)};
      break;
    }
    case Fate::kLostForGood:
      log += Lost(fault, statement);
      thrown = {103, "Database connection lost"};
      break;
    case Fate::kTransactionLost:
      log += Lost(fault, statement);
      Reopen(expected, fault.call);
      thrown = {102, DatabaseError(0, "", statement)};
      break;
    case Fate::kRepeated:
      log += Lost(fault, statement);
      Reopen(expected, fault.call);
      Repeat(expected, fault);
      break;
    case Fate::kIgnored:
      log += Failed(fault, statement);
      GoOnWithout(expected, fault);
      break;
    case Fate::kIgnoredLost:
      log += Lost(fault, statement);
      if (mode_.autoReconnect) Reopen(expected, fault.call);
      GoOnWithout(expected, fault);
      break;
    case Fate::kOnlyLogged:
      log += Logged(0, "SESSION " + address_ + "  Error " + during + "\n");
      GoOnWithout(expected, fault);
      break;
    case Fate::kRollbackLost:
      log += Logged(0, "DB fatal error " + during + "\n");
      thrown = {0, "DB fatal error " + during + ". "};
      break;
    case Fate::kSaysNo:
      result = "no";
      break;
    case Fate::kSequenceRepeated:
      log += Failed(fault, statement);
      log += Logged(0, "DB fatal error " + std::to_string(number) + " (" + text + ") in query\n\b\n" + statement +
                           "\nTrying to reconnect...\n");
      calls.insert(calls.end(), {"s close", "s init", "s connect s u p d 0"});
      Repeat(expected, fault);
      if (statement == kReadsNumber) {
        // Which number it was is known only to the connection that has gone: another one is counted.
        calls.insert(calls.end(), good_.calls.begin(), good_.calls.end());
        log += good_.Log();
      }
      break;
    case Fate::kNoConnection: {
      std::string const failed = NotConnected("mysql_real_connect failed", number, text);
      if (init) log += Logged(0, "SESSION " + address_ + " mysql_init failed\n");
      log += Logged(0, failed);
      calls.emplace_back("- sleep 1");
      if (constructs_ && !init) calls.emplace_back("m close");
      thrown = {0, failed};
      left = Left::kMainLost;
      break;
    }
    case Fate::kNoSequence:
    case Fate::kSequenceStaysLost: {
      std::string const failed = NotConnected("mysql_real_connect failed for sequence", number, text);
      if (init) log += Logged(0, "SESSION " + address_ + " mysql_init failed for sequence\n");
      left = init ? Left::kNoSequence : Left::kSequenceLost;
      if (fate == Fate::kNoSequence) {
        log += Logged(0, failed);
        GoOn(expected, fault);
      } else if (init) {
        thrown = {0, "mysql_init failed for sequence. "};
      } else {
        log += Logged(0, failed);
        thrown = {0, failed};
      }
      break;
    }
    case Fate::kDropped:
      GoOn(expected, fault);
      calls.erase(std::find(calls.begin(), calls.end(), "m free_result"));
      break;
    case Fate::kFetchErrorUntaken:
      left = Left::kMainLost;
      thrown = {0, "MySQL fetch error. "};
      break;
    case Fate::kRowsError:
      if (number == 2006 || number == 2013) left = Left::kMainLost;
      calls.emplace_back("m free_result");
      thrown = {0, "MySQL fetch error. "};
      break;
    case Fate::kFetchError:
      thrown = {0, "MySQL fetch error. "};
      break;
    case Fate::kLaterError: {
      std::string const procedure = StatementOf(good_.calls[0]);
      log += Failed(fault, procedure);
      if (fault.call > 1) calls.emplace_back("m free_result");
      thrown = {number == 1217 ? 100 : 102, DatabaseError(number, text, procedure)};
      break;
    }
    case Fate::kNoNumber:
      result = "0";
      break;
  }
  if (StartsWith(statement, "SET AUTOCOMMIT=") && thrown.has_value())
    CloseUnset(expected, fate == Fate::kTransactionLost);
  return expected;
}

std::optional<Thrown> Rules::NextStatement(std::string const& statement) const {
  if (!mode_.autoReconnect) return Thrown{103, "Database connection lost"};
  if (!mode_.autoCommit) return Thrown{102, DatabaseError(0, "", statement)};
  return std::nullopt;
}

std::string Rules::Statement(std::string const& statement) const {
  return Logged(1, "SESSION " + address_ + " EXECUTE " + statement + "\n\n");
}

std::string Rules::Failed(Fault const& fault, std::string const& statement) const {
  return Logged(0, "SESSION " + address_ + " EXECUTE Failed\n Error " + std::to_string(fault.number) + " (" +
                       fault.text + ") in query\n" + statement + "\n");
}

std::string Rules::Lost(Fault const& fault, std::string const& statement) const {
  return Failed(fault, statement) + Logged(0, "DB fatal error " + std::to_string(fault.number) + " (" + fault.text +
                                                  ") in query\n\b\n" + statement + "\n");
}

// A connection whose mode could not be set is not kept. One that was reopened meanwhile has it, and is, by a session.
void Rules::CloseUnset(Expected& expected, bool reopened) const {
  if (reopened && !constructs_) return;
  auto const& opening = reopening_.calls;
  if (reopened && std::find(opening.begin(), opening.end(), "s init") != opening.end()) {
    expected.calls.emplace_back("s close");
  }
  expected.calls.emplace_back("m close");
  expected.left = Left::kMainLost;
}

// Whether the connection has a handle before the call; runs that open none begin with both.
bool Rules::IsOpen(char connection, std::size_t call) const {
  std::string const init = std::string(1, connection) + " init";
  std::string const close = std::string(1, connection) + " close";
  bool const opens = std::find(good_.calls.begin(), good_.calls.end(), "m init") != good_.calls.end();
  bool open = !opens && !constructs_;
  for (std::size_t i = 0; i < call; ++i) {
    if (good_.calls[i] == init) open = true;
    if (good_.calls[i] == close) open = false;
  }
  return open;
}

void Rules::Reopen(Expected& expected, std::size_t call) const {
  expected.log += Logged(0, "Reconnecting.\n") + reopening_.Log();
  bool const sequence = IsOpen('s', call);
  for (std::string const& each : reopening_.calls) {
    if (each != "s close" || sequence) expected.calls.push_back(each);
  }
}

void Rules::Repeat(Expected& expected, Fault const& fault) const {
  std::string const& call = good_.calls[fault.call];
  expected.log += Statement(StatementOf(call));
  expected.calls.push_back(call);
  GoOn(expected, fault);
}

// As if nothing had been.
void Rules::GoOn(Expected& expected, Fault const& fault) const {
  bool const again =
      std::count(expected.calls.begin(), expected.calls.end(), "s init") >
      std::count(good_.calls.begin(), good_.calls.begin() + static_cast<std::ptrdiff_t>(fault.call) + 1, "s init");
  for (std::size_t i = fault.call + 1; i < good_.calls.size(); ++i) {
    // An opening within the opening has left a sequence connection already.
    if (again && good_.calls[i] == "s init") expected.calls.emplace_back("s close");
    // One that has no handle is not tried to be connected.
    if (fault.kind == Call::kInit && i == fault.call + 1) continue;
    expected.calls.push_back(good_.calls[i]);
  }
  expected.log += good_.LogBehind(fault.call);
  expected.result = good_.result;
  expected.thrown = good_.thrown;
}

// The statement itself has not come to its end.
void Rules::GoOnWithout(Expected& expected, Fault const& fault) const {
  std::size_t const end = expected.log.size();
  GoOn(expected, fault);
  if (StartsWith(expected.log.substr(end), kComplete)) expected.log.erase(end, std::string(kComplete).size());
}

}  // namespace corvane::test
