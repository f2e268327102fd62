// The parameters beside those of a connection string, on a real server. TLS has a file of its own.

#include <gmock/gmock.h>

#include <string>

#include "tests/support/live.h"

using corvane::test::Environment;
using corvane::test::Failure;
using corvane::test::FailureOf;
using corvane::test::FetchedValue;
using corvane::test::Item;
using corvane::test::ItemTest;
using corvane::test::Observer;
using corvane::test::Rows;
using corvane::test::Session;
using ::testing::StartsWith;

namespace {

using SessionOptions = ItemTest;

// The server admits 151 connections at a time.
TEST_F(SessionOptions, CloseOnDestroyLetsManySessionsComeAndGo) {
  ASSERT_EQ(Stored("SELECT @@max_connections"), "151");
  for (int i = 0; i < 2000; ++i) {
    ASSession session(WithTransactions({{"CloseOnDestroy", "on"}}), 0, false);
    if (i % 100 == 0) {
      EXPECT_EQ(session.Insert(Item(i, "x")), 1U);
    }
  }
  EXPECT_TRUE(ConnectionsBecome(0));
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM item"), "0") << "open transactions are rolled back";
}

TEST_F(SessionOptions, CloseOnDestroyClosesTheSequenceConnection) {
  {
    ASSession const session(With({{"CloseOnDestroy", "on"},
                                  {"EmulateSequences", "yes"},
                                  {"SequenceHost", Host()},
                                  {"SequencePort", Port()}}),
                            0, false);
    EXPECT_TRUE(ConnectionsBecome(2));
  }
  EXPECT_TRUE(ConnectionsBecome(0));
}

TEST_F(SessionOptions, SocketIsUsedInsteadOfTheHost) {
  std::string const path = Environment("CORVANE_TEST_SOCKET");
  if (path.empty()) GTEST_SKIP() << "no server: CORVANE_TEST_SOCKET is not set";
  Session session(With({{"Host", "nowhere.invalid"}, {"Port", "1"}, {"Socket", path}}));
  EXPECT_EQ(FetchedValue(session, "SELECT 1"), "1");
  EXPECT_EQ(ConnectionHosts(), (Rows{{"localhost"}}));
}

TEST_F(SessionOptions, ASocketThatIsNotThereIsAFailedConnection) {
  Failure const failure = FailureOf([&] { Session const session(With({{"Socket", "/nowhere/socket"}})); });
  EXPECT_THAT(failure.message, StartsWith("mysql_real_connect failed\n Error 2002 ("));
}

TEST_F(SessionOptions, SequencePortIsThatOfTheSequenceConnection) {
  Session session(With({{"EmulateSequences", "yes"}, {"SequenceHost", Host()}, {"SequencePort", Port()}}));
  session.ExecuteSeq("INSERT INTO item VALUES (1, 'sequence')");
  EXPECT_EQ(Stored("SELECT name FROM item"), "sequence");
  EXPECT_EQ(ConnectionHosts().size(), 2U);
}

TEST_F(SessionOptions, CharsetIsThatOfTheConnection) {
  for (char const* const charset : {"latin1", "utf8mb4", "LATIN2", "binary", "euckr"}) {
    Session session(With({{"Charset", charset}}));
    EXPECT_EQ(FetchedValue(session, std::string("SELECT @@character_set_client = '") + charset + "'"), "1") << charset;
  }
}

TEST_F(SessionOptions, TextIsStoredInTheCharacterSetOfTheConnection) {
  Run("ALTER TABLE item CONVERT TO CHARACTER SET utf8mb4");
  Session session(With({{"Charset", "latin1"}}));
  session.Insert(Item(1, "\xE9"));
  EXPECT_EQ(Stored("SELECT HEX(name) FROM item"), "C3A9");
  Item read(1, "");
  EXPECT_EQ(session.Select(read), 1);
  EXPECT_STREQ(read.name.str(), "\xE9");
}

using SafeMode = ItemTest;

TEST_F(SafeMode, WorksOnAServerWithSafeSettings) {
  Session session(With({{"SafeMode", "on"}, {"Charset", "utf8mb4"}}));
  session.Insert(Item(1, "it's \\"));
  EXPECT_EQ(Stored("SELECT name FROM item"), "it's \\");
}

// The mode that new connections begin with, for a while.
class GlobalMode {
 public:
  GlobalMode(Observer& observer, std::string const& mode)
      : observer_(observer), before_(observer.Value("SELECT @@GLOBAL.sql_mode").value()) {
    observer_.Run("SET GLOBAL sql_mode = '" + mode + "'");
  }
  GlobalMode(GlobalMode const&) = delete;
  GlobalMode& operator=(GlobalMode const&) = delete;
  ~GlobalMode() { observer_.Refusal("SET GLOBAL sql_mode = '" + before_ + "'"); }

 private:
  Observer& observer_;
  std::string before_;
};

TEST_F(SafeMode, RefusesAServerThatTakesBackslashesLiterally) {
  Observer observer(Schema());
  GlobalMode const mode(observer, "NO_BACKSLASH_ESCAPES");
  EXPECT_EQ(FailureOf([&] {
              Session const session(With({{"SafeMode", "on"}}));
            }),
            (Failure{0, "SafeMode refuses the sql_mode NO_BACKSLASH_ESCAPES. "}));
  EXPECT_TRUE(ConnectionsBecome(1)) << "but the observer's, what was opened is closed";
}

TEST_F(SafeMode, UpdaterAndDeleterRefuseToRunWithoutACondition) {
  Session session(With({{"SafeMode", "on"}}));
  session.Insert(Item(1, "a"));
  session.Insert(Item(2, "b"));
  Item item;
  Failure const refused{0, "SafeMode refuses a statement without a condition. "};
  EXPECT_EQ(FailureOf([&] { ASDeleter(item).Execute(&session); }), refused);
  EXPECT_EQ(FailureOf([&] { ASUpdater(item.idColumn.Set(item.idColumn + 5)).Execute(&session); }), refused);
  EXPECT_EQ(Stored("SELECT SUM(id) FROM item"), "3");
  ASDeleter one(item);
  one.Where(item.idColumn == 1);
  EXPECT_EQ(one.Execute(&session), 1U);
}

}  // namespace
