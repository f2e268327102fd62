#ifndef CORVANE_TESTS_INJECTION_UNESCAPED_ENTRIES_H
#define CORVANE_TESTS_INJECTION_UNESCAPED_ENTRIES_H

#include <functional>
#include <string>
#include <vector>

#include "corvane/corvane.h"

namespace corvane::test {

/// An entry that by contract writes its text into statements as it stands.
struct UnescapedEntry {
  /// The member, as docs/security.md names it.
  std::string member;
  /// Runs a statement on the table canary with the text in it and returns how many rows came.
  std::function<int(ASSession& session, std::string const& text)> run;
  /// With this text no row comes, and the table stays as it is.
  std::string harmless;
  /// With this one all rows come, or the table is changed.
  std::string hostile;
};

/// All of them, some by several demonstrations.
std::vector<UnescapedEntry> UnescapedEntries();

}  // namespace corvane::test

#endif
