#include "corvane/session/internal/statement_kind.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <iterator>
#include <string>

namespace corvane::internal {

namespace {

bool IsWordByte(char c) {
  auto const byte = static_cast<unsigned char>(c);
  return std::isalnum(byte) != 0 || c == '_' || c == '$' || byte >= 0x80;
}

bool IsBlank(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }

// Cuts the word off the beginning, in capitals; empty when there is none.
std::string CutWord(std::string_view& text) {
  std::string word;
  while (!text.empty() && IsWordByte(text.front())) {
    word += static_cast<char>(std::toupper(static_cast<unsigned char>(text.front())));
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

// EXPLAIN ANALYZE runs its statement; NEXT VALUE FOR counts a sequence up.
constexpr std::string_view kChanging[] = {"ANALYZE", "INTO", "NEXT"};

// Words that may stand before a "(" and are no function.
constexpr std::string_view kKeywords[] = {
    "ALL",   "AND",       "ANY",      "AS",     "BETWEEN", "BINARY",    "BY",     "CASE",   "DISTINCT",
    "DIV",   "ELSE",      "EXCEPT",   "EXISTS", "FORCE",   "FROM",      "HAVING", "IGNORE", "IN",
    "INDEX", "INTERSECT", "INTERVAL", "IS",     "JOIN",    "KEY",       "LIKE",   "LIMIT",  "MINUS",
    "NOT",   "OFFSET",    "ON",       "OR",     "OVER",    "PARTITION", "REGEXP", "RLIKE",  "SELECT",
    "SOME",  "THEN",      "UNION",    "USE",    "USING",   "WHEN",      "WHERE",  "WITH",   "XOR"};

// Functions and types that read nothing but their arguments, the clock and what does not change with the connection.
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
      isName = isQualified || !(Contains(kKeywords, word) || Contains(kFunctions, word));
      isQualified = false;
    } else if (c == '\'' || c == '"' || c == '`') {
      CutQuoted(rest);
      isName = c != '\'';
      isQualified = false;
    } else if (BeginsWith(rest, "/*+")) {  // hints of a query
      rest.remove_prefix(std::min(rest.find("*/"), rest.size()));
    } else {
      bool const isComment = c == '#' || BeginsWith(rest, "--") || BeginsWith(rest, "/*");
      bool const isCall = c == '(' && isName;
      bool const isVariable = c == '@' || BeginsWith(rest, ":=");
      bool const isNextStatement = c == ';';
      if (isComment || isCall || isVariable || isNextStatement) return false;
      isName = false;
      isQualified = c == '.';
      rest.remove_prefix(1);
    }
  }
  return true;
}

bool CannotCommit(std::string_view statement) {
  std::string const verb = Verb(statement);
  return Contains(kReaders, verb) || Contains(kWriters, verb);
}

}  // namespace corvane::internal
