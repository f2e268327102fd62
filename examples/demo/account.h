#ifndef CORVANE_EXAMPLES_DEMO_ACCOUNT_H
#define CORVANE_EXAMPLES_DEMO_ACCOUNT_H

#include <string>

#include "corvane/data/value/str.h"

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
  /// What came back.
  void Result(bool asExpected, std::string const& text);
  void Compare(std::string const& what, long found, long expected);

  /// How many results were not as expected.
  int Surprises() const { return surprises_; }

 private:
  void Entry(char const* label, std::string const& text);

  bool pauses_;
  bool colours_;
  int steps_ = 0;
  int surprises_ = 0;
};

}  // namespace demo

#endif
