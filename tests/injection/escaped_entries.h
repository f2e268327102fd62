#ifndef CORVANE_TESTS_INJECTION_ESCAPED_ENTRIES_H
#define CORVANE_TESTS_INJECTION_ESCAPED_ENTRIES_H

#include <functional>
#include <string>
#include <vector>

#include "corvane/corvane.h"

namespace corvane::test {

/// A way by which a text gets into a statement as a literal.
struct EscapedEntry {
  std::string name;
  /// A whole statement on the table canary, the same for every text but for one literal.
  std::function<std::string(std::string const& text)> statement;
  /// What of the text the literal stands for.
  std::string (*taken)(std::string const& text);
};

/// All of them; the session must outlive them.
std::vector<EscapedEntry> EscapedEntries(ASSession& session);

}  // namespace corvane::test

#endif
