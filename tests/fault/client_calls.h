#ifndef CORVANE_TESTS_FAULT_CLIENT_CALLS_H
#define CORVANE_TESTS_FAULT_CLIENT_CALLS_H

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/scripted_session.h"

// What a session, and all that uses it, does when one call of the client library fails: the rules, and what follows
// from them for a run of which is known how it goes when none fails.
namespace corvane::test {

/// How a session was opened.
struct Mode {
  bool autoCommit;
  bool autoReconnect;
  int level;
};

/// The calls and the log of a run, in the order in which they came.
struct Course {
  struct Line {
    std::size_t calls;  // how many had been made before
    std::string text;
  };
  /// With "m" for a main connection, "s" for a sequence connection: "m query COMMIT". "- init" is one that failed.
  std::vector<std::string> calls;
  std::vector<Line> log;
  std::string result;
  std::optional<Thrown> thrown;

  std::string LogBefore(std::size_t call) const;
  std::string LogBehind(std::size_t call) const;
  std::string Log() const { return LogBefore(0) + LogBehind(0); }
};

/// The calls that can fail. A row is one that comes in while it is read.
enum class Call { kNone, kInit, kConnect, kQuery, kStore, kUse, kRow, kNext };
Call CallOf(std::string const& call);

/// One call that fails.
struct Fault {
  Call kind;
  std::size_t call;  // index in the run
  unsigned number;
  std::string text;
};

/// What the connections are good for afterwards.
enum class Left { kUsable, kMainLost, kSequenceLost, kNoSequence };

struct Expected {
  std::vector<std::string> calls;
  std::string log;
  std::string result;
  std::optional<Thrown> thrown;
  Left left = Left::kUsable;
};

/// What is expected of a run that goes like `good` up to the fault. `reopening` is how a session that has both
/// connections opens them anew; `address` is the session's, as logged. `constructs` when the run is that of a
/// constructor, `sequenceAlone` when it reopens the sequence connection and nothing else.
class Rules {
 public:
  Rules(Mode mode, Course good, Course reopening, std::string address, bool constructs, bool sequenceAlone)
      : mode_(mode),
        good_(std::move(good)),
        reopening_(std::move(reopening)),
        address_(std::move(address)),
        constructs_(constructs),
        sequenceAlone_(sequenceAlone) {}

  Expected After(Fault const& fault) const;

  /// What the next statement on the main connection throws, when it has been lost.
  std::optional<Thrown> NextStatement(std::string const& statement) const;

 private:
  enum class Fate;

  Fate FateOf(Fault const& fault) const;
  std::string Statement(std::string const& statement) const;
  std::string Failed(Fault const& fault, std::string const& statement) const;
  std::string Lost(Fault const& fault, std::string const& statement) const;
  std::string Logged(int gate, std::string const& text) const { return mode_.level > gate ? text : ""; }
  bool IsOpen(char connection, std::size_t call) const;
  void CloseUnset(Expected& expected, bool reopened) const;
  void Reopen(Expected& expected, std::size_t call) const;
  void Repeat(Expected& expected, Fault const& fault) const;
  void GoOn(Expected& expected, Fault const& fault) const;
  void GoOnWithout(Expected& expected, Fault const& fault) const;

  Mode mode_;
  Course good_;
  Course reopening_;
  std::string address_;
  bool constructs_;
  bool sequenceAlone_;
};

}  // namespace corvane::test

#endif
