#include "tests/fuzz/sql_reader.h"

#include "tests/fuzz/target.h"

namespace corvane::fuzz {

namespace {

char Unescaped(char c) {
  switch (c) {
    case '0':
      return '\0';
    case 'n':
      return '\n';
    case 'r':
      return '\r';
    case 't':
      return '\t';
    case 'b':
      return '\b';
    case 'Z':
      return '\x1a';
    default:
      return c;
  }
}

}  // namespace

std::string ReadLiteral(std::string_view sql, std::size_t& at) {
  std::string bytes;
  for (++at; at < sql.size(); ++at) {
    char const next = at + 1 < sql.size() ? sql[at + 1] : '\0';
    if (sql[at] == '\\' && at + 1 < sql.size()) {
      if (next == '%' || next == '_') bytes += '\\';  // of LIKE: both characters stay
      bytes += Unescaped(next);
      ++at;
    } else if (sql[at] != '\'') {
      bytes += sql[at];
    } else if (next == '\'') {
      bytes += '\'';
      ++at;
    } else {
      ++at;
      return bytes;
    }
  }
  throw Finding("a literal does not end: " + Shown(sql));
}

Shape ShapeOf(std::string_view sql) {
  Shape shape;
  int open = 0;
  for (std::size_t at = 0; at < sql.size();) {
    if (sql[at] == '\'') {
      shape.literals.push_back(ReadLiteral(sql, at));
      shape.text += '?';
      continue;
    }
    std::string_view const two = sql.substr(at, 2);
    if (sql[at] == '#' || sql[at] == '"' || two == "/*" || two == "-- ") {
      throw Finding("not a condition's character: " + Shown(sql.substr(at)));
    }
    if (sql[at] == '(') ++open;
    if (sql[at] == ')') --open;
    if (open < 0) break;
    shape.text += sql[at++];
  }
  if (open != 0) throw Finding("parentheses are not balanced: " + Shown(sql));
  return shape;
}

}  // namespace corvane::fuzz
