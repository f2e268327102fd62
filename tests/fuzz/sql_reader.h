#ifndef CORVANE_TESTS_FUZZ_SQL_READER_H
#define CORVANE_TESTS_FUZZ_SQL_READER_H

#include <string>
#include <string_view>
#include <vector>

namespace corvane::fuzz {

/// Reads the literal whose quote stands at `at`, as servers do, and moves `at` behind it. Throws a Finding when it does
/// not end.
std::string ReadLiteral(std::string_view sql, std::size_t& at);

/// A statement's text with a "?" for each literal, and what the literals say.
struct Shape {
  std::string text;
  std::vector<std::string> literals;
};

/// Throws a Finding for parentheses that are not balanced, and for what would begin a comment.
Shape ShapeOf(std::string_view sql);

}  // namespace corvane::fuzz

#endif
