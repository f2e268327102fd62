#include "corvane/session/internal/statement_kind.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string>

namespace corvane::internal {

namespace {

// The locale must have no say in this.
bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
char Capital(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

bool IsWordByte(char c) { return IsLetter(c) || (c >= '0' && c <= '9') || c == '_' || c == '$'; }

bool IsBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

// Cuts the word off the beginning, in capitals; empty when there is none.
std::string CutWord(std::string_view& text) {
  std::string word;
  while (!text.empty() && IsWordByte(text.front())) {
    word += Capital(text.front());
    text.remove_prefix(1);
  }
  return word;
}

// Cuts a quoted text off the beginning; everything when it does not end.
void CutQuoted(std::string_view& text) {
  char const quote = text.front();
  std::size_t at = 1;
  while (at < text.size() && text[at] != quote) at += text[at] == '\\' && quote != '`' ? 2 : 1;
  text.remove_prefix(std::min(at + 1, text.size()));
}

template <std::size_t count>
bool Contains(std::string_view const (&words)[count], std::string_view word) {
  return std::find(std::begin(words), std::end(words), word) != std::end(words);
}

constexpr std::string_view kReaders[] = {"DESC", "DESCRIBE", "EXPLAIN", "SELECT", "SHOW"};

constexpr std::string_view kWriters[] = {"DELETE", "DO", "INSERT", "REPLACE", "ROLLBACK", "SAVEPOINT", "UPDATE"};

// EXPLAIN ANALYZE runs its statement; the others write into a file or variables, or count a sequence up.
constexpr std::string_view kChanging[] = {"ANALYZE", "INTO", "NEXT", "NEXTVAL"};

// Words that may stand before a "(" and are no function on any server: those of set operations are on some.
constexpr std::string_view kKeywords[] = {
    "ALL",    "AND",   "ANY",  "AS",     "BETWEEN", "BINARY", "BY",        "CASE",     "DISTINCT", "DIV",    "ELSE",
    "EXISTS", "FORCE", "FROM", "HAVING", "IGNORE",  "IN",     "INDEX",     "INTERVAL", "IS",       "JOIN",   "KEY",
    "LIKE",   "LIMIT", "NOT",  "OFFSET", "ON",      "OR",     "PARTITION", "REGEXP",   "RLIKE",    "SELECT", "SOME",
    "THEN",   "UNION", "USE",  "USING",  "WHEN",    "WHERE",  "WITH",      "XOR"};

// Functions and types that read nothing but their arguments, the clock and what does not change with the connection.
// Only with the "(" right behind: a stored function of the same name is called with a blank between them.
constexpr std::string_view kFunctions[] = {"ABS",
                                           "ASCII",
                                           "AVG",
                                           "CAST",
                                           "CEIL",
                                           "CEILING",
                                           "CHAR",
                                           "CHARACTER_LENGTH",
                                           "CHAR_LENGTH",
                                           "COALESCE",
                                           "CONCAT",
                                           "CONCAT_WS",
                                           "CONVERT",
                                           "COUNT",
                                           "CRC32",
                                           "CURDATE",
                                           "CURRENT_TIMESTAMP",
                                           "CURTIME",
                                           "DATABASE",
                                           "DATE",
                                           "DATEDIFF",
                                           "DATE_ADD",
                                           "DATE_FORMAT",
                                           "DATE_SUB",
                                           "DAY",
                                           "DAYOFMONTH",
                                           "DAYOFWEEK",
                                           "DAYOFYEAR",
                                           "DECIMAL",
                                           "ELT",
                                           "EXP",
                                           "EXTRACT",
                                           "FIELD",
                                           "FIND_IN_SET",
                                           "FLOOR",
                                           "FORMAT",
                                           "FROM_UNIXTIME",
                                           "GREATEST",
                                           "GROUP_CONCAT",
                                           "HEX",
                                           "HOUR",
                                           "IF",
                                           "IFNULL",
                                           "INSTR",
                                           "ISNULL",
                                           "LAST_DAY",
                                           "LCASE",
                                           "LEAST",
                                           "LEFT",
                                           "LENGTH",
                                           "LN",
                                           "LOCATE",
                                           "LOG",
                                           "LOWER",
                                           "LPAD",
                                           "LTRIM",
                                           "MAX",
                                           "MD5",
                                           "MID",
                                           "MIN",
                                           "MINUTE",
                                           "MOD",
                                           "MONTH",
                                           "NOW",
                                           "NULLIF",
                                           "OCTET_LENGTH",
                                           "POSITION",
                                           "POW",
                                           "POWER",
                                           "QUARTER",
                                           "QUOTE",
                                           "RAND",
                                           "REPEAT",
                                           "REPLACE",
                                           "REVERSE",
                                           "RIGHT",
                                           "ROUND",
                                           "RPAD",
                                           "RTRIM",
                                           "SECOND",
                                           "SHA1",
                                           "SHA2",
                                           "SIGN",
                                           "SPACE",
                                           "SQRT",
                                           "STD",
                                           "STDDEV",
                                           "STR_TO_DATE",
                                           "SUBSTR",
                                           "SUBSTRING",
                                           "SUBSTRING_INDEX",
                                           "SUM",
                                           "TIME",
                                           "TIMESTAMP",
                                           "TIMESTAMPADD",
                                           "TIMESTAMPDIFF",
                                           "TO_DAYS",
                                           "TRIM",
                                           "TRUNCATE",
                                           "UCASE",
                                           "UNHEX",
                                           "UNIX_TIMESTAMP",
                                           "UPPER",
                                           "UTC_TIMESTAMP",
                                           "VARCHAR",
                                           "VARIANCE",
                                           "VERSION",
                                           "WEEK",
                                           "WEEKDAY",
                                           "YEAR"};

// The first word, behind blanks and opening brackets.
std::string Verb(std::string_view statement) {
  while (!statement.empty() && (IsBlank(statement.front()) || statement.front() == '(')) statement.remove_prefix(1);
  return CutWord(statement);
}

bool BeginsWith(std::string_view text, std::string_view start) { return text.substr(0, start.size()) == start; }

}  // namespace

bool CannotChangeData(std::string_view statement) {
  if (!Contains(kReaders, Verb(statement))) return false;
  bool isName = false;  // what stands before a "(" would be called
  bool isQualified = false;
  for (std::string_view rest = statement; !rest.empty();) {
    char const c = rest.front();
    if (IsBlank(c)) {
      rest.remove_prefix(1);
    } else if (IsWordByte(c)) {
      std::string const word = CutWord(rest);
      if (Contains(kChanging, word)) return false;
      bool const isFunction = BeginsWith(rest, "(") && Contains(kFunctions, word);
      isName = isQualified || !(Contains(kKeywords, word) || isFunction);
      isQualified = false;
    } else if (c == '\'' || c == '"' || c == '`') {
      std::string_view const quoted = rest;
      CutQuoted(rest);
      // Between double quotes it depends on the SQL mode what a backslash is.
      std::string_view const text = quoted.substr(0, quoted.size() - rest.size());
      if (c == '"' && text.find('\\') != std::string_view::npos) return false;
      isName = c != '\'';
      isQualified = false;
    } else if (BeginsWith(rest, "/*+")) {  // hints of a query
      std::size_t const end = rest.find("*/");
      if (end == std::string_view::npos) return false;
      rest.remove_prefix(end + 2);
    } else {
      // In some character sets a byte of the upper half is a blank.
      bool const isForeign = static_cast<unsigned char>(c) >= 0x80;
      bool const isComment = c == '#' || BeginsWith(rest, "--") || BeginsWith(rest, "/*");
      bool const isCall = c == '(' && isName;
      bool const isVariable = c == '@' || BeginsWith(rest, ":=");
      bool const isNextStatement = c == ';';
      if (isForeign || isComment || isCall || isVariable || isNextStatement) return false;
      isName = false;
      isQualified = c == '.';
      rest.remove_prefix(1);
    }
  }
  return true;
}

bool CannotCommit(std::string_view statement) {
  std::string const verb = Verb(statement);
  if (Contains(kWriters, verb)) return true;
  if (!Contains(kReaders, verb)) return false;
  // What goes into a file, and the numbers of a sequence, no rollback takes back. Quoted words are counted, too.
  for (std::string_view rest = statement; !rest.empty();) {
    std::string const word = CutWord(rest);
    if (Contains(kChanging, word)) return false;
    if (word.empty()) rest.remove_prefix(1);
  }
  return true;
}

}  // namespace corvane::internal
