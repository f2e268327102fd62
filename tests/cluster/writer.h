#ifndef CORVANE_TESTS_CLUSTER_WRITER_H
#define CORVANE_TESTS_CLUSTER_WRITER_H

#include <atomic>
#include <exception>
#include <string>
#include <thread>

#include "tests/cluster/journal.h"
#include "tests/support/live.h"

namespace corvane::test {

/// How writers write: each kind has a table of its own, without a key that would refuse what is stored twice unless
/// said otherwise.
enum class Kind {
  kTransaction,  ///< autocommit off: a row, a counter, another row, and COMMIT
  kRepeating,    ///< autocommit on, two rows in one statement, which is repeated after a loss; the table has a key
  kOnce          ///< the same with RetryWrites off, and without a key
};
constexpr Kind kKinds[] = {Kind::kTransaction, Kind::kRepeating, Kind::kOnce};

char const* TableOf(Kind kind);
/// The tables of all kinds, and the counters.
std::vector<std::string> CreateTables();
/// Asks for the sum of the counters: one for each id of the kind kTransaction.
extern char const* const kSumOfCounters;

/// Writes one id after the other through a session of its own, in a thread of its own, from its creation until Stop().
class Writer {
 public:
  /// `parameters` are those of the session, without the autocommit mode.
  Writer(int number, Kind kind, Parameters parameters, std::string const& journalFile);
  Writer(Writer const&) = delete;
  Writer& operator=(Writer const&) = delete;
  ~Writer();

  /// Ends after the id at hand.
  void Stop();
  /// Waits for the end; throws what ended the writer early.
  void Join();
  bool Ended() const { return ended_; }

  int Number() const { return number_; }
  Kind HowItWrites() const { return kind_; }
  /// When the last id that was acknowledged was begun.
  Clock::time_point LastAcknowledged() const { return Clock::time_point(Clock::duration(lastAcknowledged_)); }

 private:
  void Run();
  void WriteIds();
  Line Attempt(ASSession& session, Id id) const;

  int number_;
  Kind kind_;
  Parameters parameters_;
  Journal journal_;
  std::atomic<bool> stopping_{false};
  std::atomic<bool> ended_{false};
  std::atomic<Clock::rep> lastAcknowledged_{0};
  std::exception_ptr failure_;  // set before ended_
  std::thread thread_;          // the last one: it uses the others
};

}  // namespace corvane::test

#endif
