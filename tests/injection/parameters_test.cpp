#include <gmock/gmock.h>

#include <string>

#include "tests/support/live.h"
#include "tests/support/tally.h"

using corvane::test::Fetched;
using corvane::test::FetchedValue;
using corvane::test::LiveTest;
using corvane::test::Rows;
using corvane::test::Session;
using corvane::test::Tally;

namespace {

// Names as a server admits them, which would mean something else in a connection string or a statement.
constexpr char const* kNames[] = {"a'b",   "a\"b",           "a``b",  "a\\",  "a\\'; DROP DATABASE x; -- ",
                                  "a@b:c", "x' OR 1=1 -- x", "a;b#c", "%s%n", "\xc3\xa4\xe2\x82\xac",
                                  "/*x*/", "a b\tc"};

// Made with the observer, whose statements double the quotes, and dropped at the end.
class HostileParameters : public LiveTest {
 protected:
  static std::string Quoted(std::string const& text, char quote) {
    std::string quoted(1, quote);
    for (char const c : text) {
      quoted.append(c == quote || (c == '\\' && quote == '\'') ? 2 : 1, c);
    }
    return quoted + quote;
  }
};

TEST_F(HostileParameters, ADatabaseIsChosenByItsName) {
  for (std::string const name : kNames) {
    std::string const own = Schema().substr(0, 30) + (name.back() == ' ' ? name + "." : name);
    std::string const database = Quoted(own, '`');
    Run("SET NAMES utf8mb4");
    Run("CREATE DATABASE " + database);
    Session session(With({{"Database", own}}));
    EXPECT_EQ(FetchedValue(session, "SELECT HEX(CONVERT(DATABASE() USING utf8mb4))"),
              Stored("SELECT HEX(CONVERT(" + Quoted(own, '\'') + " USING utf8mb4))"));
    Run("DROP DATABASE " + database);
    Tally("hostile names of databases", "chosen by the Database parameter");
  }
}

TEST_F(HostileParameters, AUserAndAPasswordAreTakenAsTheyStand) {
  Run("SET NAMES utf8mb4");
  for (std::string const name : kNames) {
    std::string const account = Quoted(name, '\'') + "@'%'";
    std::string const password = name + "'\"\\` :@/";
    Run("DROP USER IF EXISTS " + account);
    Run("CREATE USER " + account + " IDENTIFIED BY " + Quoted(password, '\''));
    Run("GRANT ALL ON " + Schema() + ".* TO " + account);
    {
      Session session(With({{"UserName", name}, {"Password", password}}));
      EXPECT_EQ(FetchedValue(session, "SELECT HEX(SUBSTRING_INDEX(USER(), '@', -1)) <> ''"), "1");
      EXPECT_EQ(FetchedValue(session, "SELECT HEX(CONVERT(CURRENT_USER() USING utf8mb4))"),
                Stored("SELECT HEX(CONVERT(CONCAT(" + Quoted(name, '\'') + ", '@%') USING utf8mb4))"));
    }
    Run("DROP USER " + account);
    Tally("hostile users with hostile passwords", "logged in by the map of parameters");
  }
}

}  // namespace
