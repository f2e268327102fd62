#include <gmock/gmock.h>

#include <string>

#include "tests/injection/canary.h"
using corvane::test::Canary;
using corvane::test::CanaryTest;
using corvane::test::HostileTexts;
using corvane::test::Literals;
using corvane::test::Session;

namespace {

// What the escaping needs of a server: shown where it has it, and where it does not.
class SqlMode : public CanaryTest {
 protected:
  // How many rows have the name; there is none.
  static int Found(ASSession& session, std::string const& name) {
    Canary row;
    ASCursor cursor(&session);
    cursor.Project() << row.idColumn;
    cursor.Where(row.nameColumn == name);
    return cursor.GetAmount();
  }

  void ExpectSafe(char const* setting) {
    Literals literals;
    for (std::string const& text : HostileTexts()) {
      Str literal("'");
      corvane::AppendEscaped(literal, text.data(), text.size());
      literals[(literal << '\'').ToString()] = text;
    }
    ExpectUnderstood(literals, setting);
    EXPECT_EQ(CanaryRows(), Untouched());
  }
};

TEST_F(SqlMode, AnsiQuotesAreSafe) { ExpectSafe("SET sql_mode='ANSI_QUOTES,PIPES_AS_CONCAT,IGNORE_SPACE'"); }

TEST_F(SqlMode, WithoutBackslashEscapesATextEndsItsLiteral) {
  Session session(With());
  std::string const plain = "x' OR 1=1 -- ";
  EXPECT_EQ(Found(session, plain), 0);
  session.Execute("SET sql_mode='NO_BACKSLASH_ESCAPES'");
  EXPECT_EQ(Found(session, plain), 3);
  Canary row;
  row.id = 2;
  row.name = "x', name=0x79 -- ";
  session.Update(row);
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM canary WHERE name='y'"), "3");
}

TEST_F(SqlMode, UnderMultiByteSetsWithABackslashAsSecondByteATextEndsItsLiteral) {
  struct {
    char const* set;
    char const* hostile;
  } const sets[] = {{"gbk", "\xbf' OR 1=1 -- "},
                    {"big5", "\xa4' OR 1=1 -- "},
                    {"sjis", "\x95' OR 1=1 -- "},
                    {"cp932", "\x95' OR 1=1 -- "}};
  for (auto const& [set, hostile] : sets) {
    Session session(With());
    EXPECT_EQ(Found(session, hostile), 0) << set;
    session.Execute(std::string("SET NAMES ") + set);
    EXPECT_EQ(Found(session, hostile), 3) << set;
  }
}

TEST_F(SqlMode, OtherCharacterSetsAreSafe) {
  for (char const* const setting : {"SET NAMES binary", "SET NAMES utf8", "SET NAMES ujis", "SET NAMES euckr",
                                    "SET NAMES gb2312", "SET NAMES eucjpms", "SET NAMES cp1251"}) {
    ExpectSafe(setting);
  }
}

}  // namespace
