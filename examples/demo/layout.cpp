#include "layout.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace demo {

namespace {

constexpr std::size_t kWidth = 88;
constexpr std::size_t kIndentation = 2;

constexpr std::string_view kUnion = "UNION ";
constexpr std::string_view kClauses[] = {"SET ",      "USING ",  "FROM ",     "LEFT JOIN ", "WHERE ",
                                         "GROUP BY ", "HAVING ", "ORDER BY ", "LIMIT ",     kUnion};

bool StartsWith(std::string_view text, std::string_view start) { return text.substr(0, start.size()) == start; }

bool StartsWithClause(std::string_view text) {
  return std::any_of(std::begin(kClauses), std::end(kClauses),
                     [text](std::string_view clause) { return StartsWith(text, clause); });
}

// Where a text between quotes ends that begins at `from`: behind its closing quote. A doubled quote begins another one.
std::size_t EndOfQuoted(std::string_view text, std::size_t from) {
  std::size_t at = from + 1;
  while (at < text.size() && text[at] != text[from]) at += text[at] == '\\' ? 2 : 1;
  return std::min(at + 1, text.size());
}

}  // namespace

std::string Rows(unsigned long count) { return std::to_string(count) + (count == 1 ? " row" : " rows"); }

std::string Quoted(Str const& text) { return text.IsNull() != 0 ? "NULL" : "'" + text.ToString() + "'"; }

std::vector<std::string> Wrapped(std::string const& text, std::size_t indentation) {
  std::vector<std::string> lines;
  std::string rest = text;
  while (rest.size() > kWidth) {
    std::size_t const blank = rest.rfind(' ', kWidth);
    if (blank == std::string::npos || blank <= indentation) break;
    lines.push_back(rest.substr(0, blank));
    rest = std::string(indentation, ' ') + rest.substr(blank + 1);
  }
  lines.push_back(rest);
  return lines;
}

std::vector<std::string> BrokenIntoClauses(std::string const& statement) {
  std::string_view const text = statement;
  std::vector<std::string> lines;
  std::vector<std::size_t> open;  // for each open parenthesis the indentation of the SELECT around it
  std::size_t indentation = 0;    // of the SELECT that the position is in
  std::string line;
  auto const endLine = [&] {
    line.erase(line.find_last_not_of(' ') + 1);
    std::size_t const lineIndentation = std::min(line.find_first_not_of(' '), line.size());
    for (std::string const& part : Wrapped(line, lineIndentation + kIndentation)) lines.push_back(part);
  };

  for (std::size_t at = 0; at < text.size(); ++at) {
    char const c = text[at];
    if (c == '\'' || c == '"' || c == '`') {
      std::size_t const end = EndOfQuoted(text, at);
      line += text.substr(at, end - at);
      at = end - 1;
      continue;
    }
    if (c == ' ' && line != "DELETE" && StartsWithClause(text.substr(at + 1))) {
      endLine();
      bool const isUnion = StartsWith(text.substr(at + 1), kUnion);
      line = std::string(indentation + (isUnion ? 0 : kIndentation), ' ');
      continue;
    }
    if (c == '(') {
      open.push_back(indentation);
      if (StartsWith(text.substr(at + 1), "SELECT ")) indentation += 2 * kIndentation;
    } else if (c == ')' && !open.empty()) {
      indentation = open.back();
      open.pop_back();
    }
    line += c;
  }
  endLine();
  return lines;
}

}  // namespace demo
