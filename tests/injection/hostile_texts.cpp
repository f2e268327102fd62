#include "tests/injection/hostile_texts.h"

#include <cstdlib>
#include <iostream>
#include <random>
#include <set>
#include <string_view>
#include <utility>

namespace corvane::test {

namespace {

using namespace std::string_view_literals;

// What stands before: nothing, a text, a backslash, a NUL, and first bytes of characters, which would swallow the
// backslash of an escape where the character set takes a backslash for the second byte.
constexpr std::string_view kBefore[] = {"", "x", "\\", "a\0"sv, "\xbf", "\xc2", "\xe2\x80", "\xf0\x9f\x98"};

// What ends a literal, a name, a comment or a list, in ASCII, in overlong UTF-8, and what looks or decodes like it.
constexpr std::string_view kBreakers[] = {"'",
                                          "''",
                                          "'''",
                                          "\\'",
                                          "\\\\'",
                                          "\"",
                                          "\"\"",
                                          "`",
                                          "``",
                                          ")",
                                          "')",
                                          "'))",
                                          "\n",
                                          "\r\n",
                                          "\0"sv,
                                          "\0'"sv,
                                          "\x1a",
                                          "\x08'",
                                          "\x7f'",
                                          "%27",
                                          "\\x27",
                                          "\\u0027",
                                          "&#39;",
                                          "\xc0\xa7",
                                          "\xe0\x80\xa7",
                                          "\xf0\x80\x80\xa7",
                                          "\xbf\x27",
                                          "\xbf\x5c\x27",
                                          "\xca\xbc",
                                          "\xe2\x80\x99",
                                          "\xef\xbc\x87",
                                          "*/",
                                          "%",
                                          "_"};

// What would run then.
constexpr std::string_view kPayloads[] = {"",
                                          "\\",
                                          "'",
                                          " OR 1=1 -- ",
                                          " OR '1'='1",
                                          " OR 1=1 #",
                                          " OR 1=1 /*",
                                          "/*! OR 1=1 */",
                                          "/*!50000 OR*/ 1=1;%00",
                                          "; DELETE FROM canary; -- ",
                                          "; DROP TABLE canary; #",
                                          ") OR (SELECT COUNT(*) FROM canary) > 0 -- ",
                                          " UNION ALL SELECT id, name, note FROM canary -- ",
                                          " AND SLEEP(0) AND '1'='1"};

// Whole texts.
constexpr std::string_view kWhole[] = {"NULL",
                                       "null",
                                       "DEFAULT",
                                       "BLOB",
                                       "0x27",
                                       "X'27'",
                                       "b'1'",
                                       "_utf8'x'",
                                       "N'x'",
                                       "{d '2020-01-01'}",
                                       "@@version",
                                       "@a:=1",
                                       "CHAR(39)",
                                       "?",
                                       ":name",
                                       "$1",
                                       "${name}",
                                       "{{1}}",
                                       "%s%s%s%n",
                                       "%1$n",
                                       "../../etc/passwd",
                                       "--",
                                       "-- ",
                                       "--\t",
                                       "#",
                                       "/*",
                                       "*/",
                                       "/**/",
                                       "/*! */",
                                       "/*+ */",
                                       ";",
                                       "DELIMITER //",
                                       "1e309",
                                       "-0",
                                       " ",
                                       "    ",
                                       "trailing blanks   ",
                                       "\t",
                                       "\xef\xbb\xbf",
                                       "\xfe\xff",
                                       "\xed\xa0\x80",
                                       "\xf4\x90\x80\x80",
                                       "\xe2\x80\xae'",
                                       "\xc2\xa0' OR 1=1 -- ",
                                       "'/**/OR/**/1=1#",
                                       "'||'1",
                                       "'+'",
                                       "' 'a'",
                                       "'\n'a'",
                                       "' COLLATE utf8mb4_bin OR 1=1 -- ",
                                       "' INTO OUTFILE '/tmp/canary",
                                       "\\' OR 1=1 -- ",
                                       "\xbf\\' OR 1=1 -- "};

void AddCombined(std::vector<std::string>& texts) {
  for (std::string_view const before : kBefore) {
    for (std::string_view const breaker : kBreakers) {
      for (std::string_view const payload : kPayloads) {
        texts.push_back(std::string(before).append(breaker).append(payload));
      }
    }
  }
}

// Each breaker across the end of the capacity, at every place around it.
void AddCut(std::vector<std::string>& texts) {
  for (std::string_view const breaker : kBreakers) {
    for (std::size_t length = kCapacity - 4; length <= kCapacity + 1; ++length) {
      for (char const filler : {'a', '\'', '\\'}) texts.push_back(std::string(length, filler).append(breaker));
    }
  }
}

void AddLong(std::vector<std::string>& texts) {
  for (std::size_t const length : {65535U, 65536U}) {
    texts.emplace_back(length, '\'');
    texts.emplace_back(length, '\\');
    texts.push_back(std::string(length, 'x') + "' OR 1=1 -- ");
  }
  texts.emplace_back(std::size_t{256} * 1024, '\'');
}

unsigned Seed() {
  char const* const given = std::getenv("CORVANE_TEST_SEED");
  return given != nullptr ? static_cast<unsigned>(std::strtoul(given, nullptr, 10)) : 20260131U;
}

void AddRandom(std::vector<std::string>& texts) {
  unsigned const seed = Seed();
  std::cout << "hostile texts: CORVANE_TEST_SEED=" << seed << '\n';
  std::mt19937 random(seed);
  constexpr std::string_view alphabet = "\0'\"`\\\x1a\n\r%_-#/*!;()= \xbf\xc2\xe5\x5c\x27OR1"sv;
  for (int i = 0; i < 1000; ++i) {
    std::string bytes(1 + random() % 80, '\0');
    for (char& byte : bytes) byte = static_cast<char>(random());
    texts.push_back(std::move(bytes));
  }
  for (int i = 0; i < 1000; ++i) {
    std::string bytes(1 + random() % 80, '\0');
    for (char& byte : bytes) byte = alphabet[random() % alphabet.size()];
    texts.push_back(std::move(bytes));
  }
}

std::vector<std::string> Made() {
  std::vector<std::string> texts(std::begin(kWhole), std::end(kWhole));
  for (int byte = 0; byte < 256; ++byte) texts.emplace_back(1, static_cast<char>(byte));
  AddCombined(texts);
  AddCut(texts);
  AddLong(texts);
  AddRandom(texts);

  std::vector<std::string> distinct;
  std::set<std::string> known;
  for (std::string& text : texts) {
    if (known.insert(text).second) distinct.push_back(std::move(text));
  }
  return distinct;
}

}  // namespace

std::vector<std::string> const& HostileTexts() {
  static std::vector<std::string> const texts = Made();
  return texts;
}

std::string Hex(std::string const& bytes) {
  constexpr char digits[] = "0123456789ABCDEF";
  std::string text;
  text.reserve(2 * bytes.size());
  for (char const c : bytes) {
    auto const byte = static_cast<unsigned char>(c);
    text.push_back(digits[byte / 16]);
    text.push_back(digits[byte % 16]);
  }
  return text;
}

std::string HexLiteral(std::string const& bytes) { return "X'" + Hex(bytes) + "'"; }

std::string Shown(std::string const& text) {
  if (text.size() > 200) {
    return Shown(text.substr(0, 60)) + " ... " + std::to_string(text.size()) + " bytes ... " +
           Shown(text.substr(text.size() - 60));
  }
  std::string shown;
  for (char const c : text) {
    if (c >= ' ' && c <= '~') {
      shown.push_back(c);
    } else {
      shown += "\\x" + Hex(std::string(1, c));
    }
  }
  return shown;
}

}  // namespace corvane::test
