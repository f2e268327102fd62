#ifndef CORVANE_TESTS_CLUSTER_JOURNAL_H
#define CORVANE_TESTS_CLUSTER_JOURNAL_H

#include <chrono>
#include <cstdint>
#include <fstream>
#include <string>
#include <vector>

namespace corvane::test {

using Clock = std::chrono::steady_clock;
using Id = std::int64_t;

/// What a writer was about to do, and what became of it as far as the writer can tell.
enum class Event {
  kIntent,
  kAcknowledged,  ///< stored, says the library
  kRefused,       ///< not stored, and never will be
  kUnknown        ///< the answer was lost
};

struct Line {
  Event event;
  Id id;
  Clock::time_point at;
  std::string why;  ///< of what was not acknowledged: the exception in one line, kLost before it if it is one
};

/// Stands before an exception that says that there was no connection.
constexpr char const* kLost = "lost: ";

/// A writer's journal: a file, written before and after each attempt. What is written is in the file at once.
class Journal {
 public:
  explicit Journal(std::string const& file);
  /// Throws std::runtime_error when the line cannot be written.
  void Write(Line const& line);

 private:
  std::ofstream out_;
};

/// All lines of a journal; throws std::runtime_error for what is not one.
std::vector<Line> ReadJournal(std::string const& file);

}  // namespace corvane::test

#endif
