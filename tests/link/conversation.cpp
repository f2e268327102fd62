#include "tests/link/conversation.h"

#include <array>
#include <regex>
#include <stdexcept>

namespace corvane::test {

namespace {

struct Known {
  Outcome outcome;
  int number;
  std::regex message;
};

// What may come of a request that is lost at a place.
std::vector<Outcome> OutcomesOf(Request request, Place const& place, Mode mode) {
  constexpr std::uint64_t kFirstPacket = 5;  // bytes at least, which say that there will be rows
  if (request == Request::kRollback) return {Outcome::kNoRollback};
  std::vector<Outcome> outcomes;
  if (!mode.reconnect) {
    outcomes = {Outcome::kLost};
  } else if (!mode.autocommit) {
    outcomes = {Outcome::kDied};
  } else if (!mode.repeatsWrites && request != Request::kQuery) {
    outcomes = {Outcome::kUnknown};
  } else {
    outcomes = {Outcome::kDone};
    if (request == Request::kInsert && place.delivered) outcomes.push_back(Outcome::kTwice);
  }
  if (request == Request::kQuery && place.answered >= kFirstPacket) outcomes.push_back(Outcome::kNoRows);
  return outcomes;
}

// Whether a lost request may have changed something for good.
bool IsUnknown(Request request, Mode mode) {
  if (request == Request::kCommit) return true;
  return mode.autocommit && (request == Request::kChange || request == Request::kInsert);
}

}  // namespace

std::ostream& operator<<(std::ostream& out, Mode mode) {
  return out << (mode.autocommit ? "autocommit" : "transactions") << (mode.reconnect ? "" : ", no reconnection")
             << (mode.repeatsWrites ? "" : ", no repetition");
}

std::ostream& operator<<(std::ostream& out, Outcome outcome) {
  std::array<char const*, 9> const names{
      "done",        "connect failed", "lost",        "outcome unknown",  "died with its transaction",
      "a duplicate", "no rows",        "no rollback", "another exception"};
  return out << names.at(static_cast<std::size_t>(outcome));
}

Outcome OutcomeOf(AException const& error) {
  static std::array<Known, 7> const all{{
      {Outcome::kConnectFailed, 0, std::regex("mysql_real_connect failed\n Error 20[0-9][0-9] \\([^\n]+\\)\n")},
      {Outcome::kLost, 103, std::regex("Database connection lost")},
      {Outcome::kUnknown, 104, std::regex("Connection lost, outcome unknown: error (2006|2013) in query\n\b\n[^\n]+")},
      {Outcome::kDied, 102, std::regex("DB Error 0 \\(\\) in query\n\b\n[^\n]+")},
      {Outcome::kTwice, 102,
       std::regex("DB Error 1062 \\(Duplicate entry '3' for key 'PRIMARY'\\) in query\n\b\nINSERT [^\n]+")},
      {Outcome::kNoRows, 0, std::regex("MySQL fetch error\\. ")},
      {Outcome::kNoRollback, 0, std::regex("DB fatal error (2006|2013) \\([^\n]+\\) during ROLLBACK\\. ")},
  }};
  for (Known const& known : all) {
    if (error.Number() == known.number && std::regex_match(error.what(), known.message)) return known.outcome;
  }
  return Outcome::kOther;
}

// The server's greeting comes unasked, and what else belongs to connecting comes before the last answers.
Conversation::Conversation(std::vector<Turn> const& turns, std::size_t requests) {
  Bytes bytes;
  for (Turn const& turn : turns) {
    (turn.way == Way::kToServer ? bytes.toServer : bytes.toClient) = turn.end;
    if (turn.way == Way::kToClient) answers_.push_back(bytes);
  }
  if (answers_.size() < requests + 2) throw std::runtime_error("there were fewer answers than requests");
  answers_.erase(answers_.begin(), answers_.end() - static_cast<std::ptrdiff_t>(requests + 1));
}

// A link that fails with a request's last byte has delivered it; with an answer's last byte it fails before the next
// request.
Place Conversation::PlaceOf(Fault const& fault) const {
  std::size_t request = 0;
  if (fault.way == Way::kToServer) {
    while (fault.after > answers_.at(request).toServer) ++request;
    return {request, fault.after == answers_[request].toServer, 0};
  }
  while (request < answers_.size() && fault.after >= answers_[request].toClient) ++request;
  std::uint64_t const answered = fault.after - (request > 0 ? answers_[request - 1].toClient : 0);
  return {request, answered > 0, answered};
}

Expected Expect(Exchange const& exchange, Mode mode, Place const& place) {
  constexpr std::size_t kOwnRequests = 2;  // connecting, and the autocommit mode
  auto const& states = mode.autocommit ? exchange.withAutocommit : exchange.inTransaction;
  Expected expected;
  expected.done = states.back();
  if (place.request < kOwnRequests) {
    // The autocommit mode is set anew on every connection.
    Mode const repeating{mode.autocommit, mode.reconnect, true};
    expected.outcomes = place.request == 0 ? std::vector<Outcome>{Outcome::kConnectFailed}
                                           : OutcomesOf(Request::kChange, place, repeating);
    expected.constructed = expected.outcomes.front() == Outcome::kDone;
    expected.sleeps = place.request == 0 ? 1 : 0;
    expected.states = {states.front()};
    return expected;
  }
  std::size_t const done = place.request - kOwnRequests;
  if (done == exchange.requests.size()) {
    expected.outcomes = {Outcome::kDone};
    return expected;
  }
  expected.outcomes = OutcomesOf(exchange.requests[done], place, mode);
  if (IsUnknown(exchange.requests[done], mode)) expected.kind = corvane::ErrorKind::kOutcomeUnknown;
  expected.states = {states[done]};
  if (place.delivered) expected.states.emplace_back(states[done + 1]);
  return expected;
}

}  // namespace corvane::test
