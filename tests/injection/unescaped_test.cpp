#include <gmock/gmock.h>

#include <fstream>
#include <set>
#include <sstream>
#include <string>

#include "tests/injection/canary.h"
#include "tests/injection/unescaped_entries.h"
#include "tests/support/tally.h"

using corvane::test::Canary;
using corvane::test::CanaryTest;
using corvane::test::FailureOf;
using corvane::test::Parameters;
using corvane::test::Session;
using corvane::test::Tally;
using corvane::test::UnescapedEntries;
using corvane::test::UnescapedEntry;

namespace {

// The members that the first column of the table in docs/security.md names.
std::set<std::string> DocumentedMembers() {
  std::ifstream page(CORVANE_SECURITY_PAGE);
  std::set<std::string> members;
  for (std::string line; std::getline(page, line);) {
    if (line.rfind("| `", 0) != 0) continue;
    std::istringstream names(line.substr(2, line.find(" | ") - 2));
    for (std::string name; std::getline(names, name, '`') && std::getline(names, name, '`');) {
      if (name.find("::") != std::string::npos) members.insert(name);
    }
  }
  return members;
}

class UnescapedTexts : public CanaryTest {
 protected:
  void CreateTables() override {
    CanaryTest::CreateTables();
    Run("CREATE TABLE canaryArc (name LONGBLOB, id INT)");
    Run("CREATE TABLE numbers (Val INT)");
    Run("INSERT INTO numbers VALUES (0)");
  }

  // How many rows came; all of them if the table was changed instead.
  int Leaked(UnescapedEntry const& entry, std::string const& text) {
    Session session(With({{"EmulateSequences", "yes"}, {"SequenceHost", Host()}}));
    int rows = 0;
    try {
      rows = entry.run(session, text);
    } catch (AException const&) {  // a sequence over another table, and what the harmless text of NE() gives
    }
    bool const isChanged = CanaryRows() != Untouched();
    Run("DELETE FROM canary");
    Run("DELETE FROM canaryArc");
    Run("UPDATE numbers SET Val=0");
    AddRows();
    return isChanged ? 3 : rows;
  }
};

TEST_F(UnescapedTexts, ReadOrChangeWhatTheyShouldNot) {
  for (UnescapedEntry const& entry : UnescapedEntries()) {
    EXPECT_EQ(Leaked(entry, entry.harmless), 0) << entry.member << " with " << entry.harmless;
    EXPECT_GE(Leaked(entry, entry.hostile), 3) << entry.member << " with " << entry.hostile;
  }
  Tally("entries that do not escape", "a text that breaks out, and one that does not", UnescapedEntries().size());
}

TEST_F(UnescapedTexts, AreThoseOfTheDocumentedEntries) {
  std::set<std::string> shown{"ASAttribute::Like", "ASAttribute::NotLike", "ASGroupAttribute::Like",
                              "ASSession::ASSession"};  // below
  for (UnescapedEntry const& entry : UnescapedEntries()) shown.insert(entry.member);
  EXPECT_EQ(DocumentedMembers(), shown);
}

// One character cannot do harm: what it opens is an escape text of more than one, which servers refuse.
TEST_F(UnescapedTexts, AnEscapeCharacterThatIsAQuoteOrABackslashChangesTheShapeAndIsRefused) {
  Session session(With());
  Canary row;
  for (char const escape : {'\'', '\\'}) {
    auto const refused = [&](ASComparison const& condition) {
      ASCursor cursor(&session);
      cursor.Project() << row.idColumn;
      cursor.Where(condition && row.nameColumn == " OR 1=1 -- ");
      return FailureOf([&] { cursor.Open(); }).number;
    };
    EXPECT_EQ(refused(row.nameColumn.Like("x", escape)), 102);
    EXPECT_EQ(refused(row.nameColumn.NotLike("x", escape)), 102);
    EXPECT_EQ(refused(row.nameColumn.Like(row.idColumn, escape)), 102);

    std::unique_ptr<ASGroupAttribute> const max(row.nameColumn.Max());
    ASCursor cursor(&session);
    cursor.Project() << row.idColumn << *max;
    cursor.Having(max->Like("x", escape) && max->Like(" OR 1=1 -- "));
    EXPECT_EQ(FailureOf([&] { cursor.Open(); }).number, 102);
  }
  EXPECT_EQ(CanaryRows(), Untouched());
}

// A password with an "@" names another database.
TEST_F(UnescapedTexts, InAConnectionStringAPasswordCanNameAnotherDatabaseAndHost) {
  auto const connected = [&](std::string const& user, std::string const& password) {
    return user + ":" + password + "@" + Schema() + "/" + Host() + ":" + Port();
  };
  std::string const hostile = Password() + "@mysql/" + Host() + ":" + Port() + "/";
  Session session(Str(connected(User(), hostile)), 0, false);
  EXPECT_EQ(corvane::test::FetchedValue(session, "SELECT DATABASE()"), "mysql");
}

}  // namespace
