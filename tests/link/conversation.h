#ifndef CORVANE_TESTS_LINK_CONVERSATION_H
#define CORVANE_TESTS_LINK_CONVERSATION_H

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "tests/link/exchanges.h"
#include "tests/support/fault_proxy.h"

// What must come of an exchange over a link that fails at a certain byte.
namespace corvane::test {

/// How the session is set up.
struct Mode {
  bool autocommit;
  bool reconnect = true;
  bool repeatsWrites = true;
};
std::ostream& operator<<(std::ostream& out, Mode mode);

/// What came of an exchange; each has its exact number and message.
enum class Outcome {
  kDone,
  kConnectFailed,  // 0, "mysql_real_connect failed\n Error 20.. (...)\n"
  kLost,           // 103, "Database connection lost"
  kUnknown,        // 104, "Connection lost, outcome unknown: error 20.. in query\n\b\n..."
  kDied,           // 102, "DB Error 0 () in query\n\b\n..."
  kTwice,          // 102, "DB Error 1062 (Duplicate entry '3' for key 'PRIMARY') in query\n\b\n..."
  kNoRows,         // 0, "MySQL fetch error. "
  kNoRollback,     // 0, "DB fatal error 20.. (...) during ROLLBACK. "
  kOther           // what must not be
};
std::ostream& operator<<(std::ostream& out, Outcome outcome);
Outcome OutcomeOf(AException const& error);

/// The bytes that have gone each way at some moment.
struct Bytes {
  std::uint64_t toServer = 0;
  std::uint64_t toClient = 0;
};

/// Where in a conversation a link fails.
struct Place {
  std::size_t request;     // 0: connecting, then one after the other
  bool delivered;          // the server has received all of the request
  std::uint64_t answered;  // bytes of the answer that have gone through
};

/// What is said over a connection when all goes well: the bytes that have gone when connecting is over, and when each
/// request has been answered.
class Conversation {
 public:
  Conversation(std::vector<Turn> const& turns, std::size_t requests);

  std::size_t Requests() const { return answers_.size() - 1; }
  Bytes Connected() const { return answers_.front(); }
  Bytes End() const { return answers_.back(); }
  /// The bytes that have gone when the request, 1 being the first, is sent, and when it has been answered.
  Bytes Before(std::size_t request) const { return answers_.at(request - 1); }
  Bytes Behind(std::size_t request) const { return answers_.at(request); }

  Place PlaceOf(Fault const& fault) const;

 private:
  std::vector<Bytes> answers_;
};

/// What may come of it.
struct Expected {
  std::vector<Outcome> outcomes;
  corvane::ErrorKind kind = corvane::ErrorKind::kConnectionLost;  // unless it is done
  bool constructed = true;                                        // the session
  int sleeps = 0;
  // Of the tables, unless it is done: without the request that failed, and with it if it may have got through.
  std::vector<std::string> states;
  std::string done;  // of the tables when it is done
};

/// For an exchange on a connection that fails at the place, where the next one is all right. The session's first
/// request sets the autocommit mode.
Expected Expect(Exchange const& exchange, Mode mode, Place const& place);

}  // namespace corvane::test

#endif
