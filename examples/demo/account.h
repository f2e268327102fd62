#ifndef CORVANE_EXAMPLES_DEMO_ACCOUNT_H
#define CORVANE_EXAMPLES_DEMO_ACCOUNT_H

#include <string>
#include <vector>

#include "corvane/data/value/str.h"
#include "text_table.h"

class ASDomain;

namespace demo {

/// Prints to the standard output stream what the demo does: numbered steps, and in each the calls, the statements that
/// they became, and what came back. Counts what came back otherwise than expected.
class Account {
 public:
  /// With `pauses` each step waits for Enter (not at the end of the input).
  explicit Account(bool pauses);

  void Line(std::string const& text);
  void Step(std::string const& title);
  /// A call and the statement that it became; a long or binary statement is cut short.
  void Call(std::string const& code, Str const& statement);
  /// A call that sends nothing.
  void Call(std::string const& code);
  /// The calls that make up a query, the whole statement that they became, a line for each of its clauses, and which of
  /// its aliases stands for which record's table.
  void Query(std::vector<std::string> const& calls, Str const& statement, std::vector<ASDomain const*> const& records);
  /// What came back: rows, or a text.
  void Rows(TextTable const& table);
  void Result(bool asExpected, std::string const& text);
  void Compare(std::string const& what, long found, long expected);

  /// How many results were not as expected.
  int Surprises() const { return surprises_; }

 private:
  void Entry(char const* label, std::string const& text);
  void Entry(char const* label, std::vector<std::string> const& lines);

  bool pauses_;
  bool colours_;
  int steps_ = 0;
  int surprises_ = 0;
};

}  // namespace demo

#endif
