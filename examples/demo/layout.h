#ifndef CORVANE_EXAMPLES_DEMO_LAYOUT_H
#define CORVANE_EXAMPLES_DEMO_LAYOUT_H

#include <cstddef>
#include <string>
#include <vector>

#include "corvane/data/value/str.h"

// How texts are laid out for a reader.
namespace demo {

/// "1 row", "3 rows".
std::string Rows(unsigned long count);

/// "'Andorra'", "NULL".
std::string Quoted(Str const& text);

/// The text broken at blanks into lines of at most 88 bytes, as far as it has blanks; all but the first begin with
/// `indentation` blanks. There is always a line.
std::vector<std::string> Wrapped(std::string const& text, std::size_t indentation = 0);

/// The statement with every clause on a line of its own, indented, the more so in sub-queries; long ones are wrapped.
/// Only the blanks between words become other ones: what stands between quotes is as it was, unless it is wrapped.
std::vector<std::string> BrokenIntoClauses(std::string const& statement);

}  // namespace demo

#endif
