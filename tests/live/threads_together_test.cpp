// What several threads do at the very same moment, each with a session of its own. ./run threads runs these under the
// thread sanitizer.
#include <gmock/gmock.h>
#include <pthread.h>

#include <atomic>
#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "tests/live/cache_test.h"
#include "tests/support/live.h"
#include "tests/support/tally.h"

using corvane::test::Environment;
using corvane::test::Fetched;
using corvane::test::FetchedValue;
using corvane::test::Item;
using corvane::test::ItemsOf;
using corvane::test::ItemTest;
using corvane::test::OpenFiles;
using corvane::test::Parameters;
using corvane::test::Session;
using corvane::test::Tally;

namespace {

constexpr int kThreads = 8;

// Where threads wait for each other, as often as they like.
class Meeting {
 public:
  explicit Meeting(unsigned count) { pthread_barrier_init(&barrier_, nullptr, count); }
  Meeting(Meeting const&) = delete;
  Meeting& operator=(Meeting const&) = delete;
  ~Meeting() { pthread_barrier_destroy(&barrier_); }
  void Wait() { pthread_barrier_wait(&barrier_); }

 private:
  pthread_barrier_t barrier_;
};

// Runs the work in eight threads, which all begin at once; it gets the thread's number and the place to meet again.
void Together(std::function<void(int, Meeting&)> const& work) {
  Meeting meeting(kThreads);
  std::vector<std::thread> threads;
  for (int number = 0; number < kThreads; ++number) {
    threads.emplace_back([&work, &meeting, number] {
      meeting.Wait();
      work(number, meeting);
    });
  }
  for (std::thread& thread : threads) thread.join();
}

// In a process of their own, which has never used the client library before.

void EndAfterFirstSessions() {
  std::atomic<int> failures{0};
  Together([&](int number, Meeting&) {
    try {
      Session session({{"Host", Environment("CORVANE_TEST_HOST")},
                       {"Port", Environment("CORVANE_TEST_PORT")},
                       {"UserName", Environment("CORVANE_TEST_USER")},
                       {"Password", Environment("CORVANE_TEST_PASSWORD")},
                       {"Database", Environment("CORVANE_TEST_DATABASE")},
                       {"EmulateSequences", "no"}});
      std::string const text = "it's " + std::to_string(number);
      if (FetchedValue(session, ("SELECT " + corvane::Literal(Str(text))).ToString()) != text) ++failures;
    } catch (std::exception const&) {
      ++failures;
    }
  });
  std::exit(failures);
}

void EndAfterFirstLiterals() {
  std::atomic<int> failures{0};
  Together([&](int, Meeting&) {
    Item const item;
    if ((item.nameColumn == "it's").Query().findStr("'it\\'s'") < 0) ++failures;
  });
  std::exit(failures);
}

class FirstOfAProcess : public ::testing::Test {
 protected:
  FirstOfAProcess() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

TEST_F(FirstOfAProcess, ConnectionsAreMadeAtTheSameMoment) {
  if (Environment("CORVANE_TEST_PORT").empty()) {
    GTEST_SKIP() << "no server: CORVANE_TEST_PORT is not set; see tools/private-server";
  }
  for (int i = 0; i < 5; ++i) {
    EXPECT_EXIT(EndAfterFirstSessions(), ::testing::ExitedWithCode(0), "");
    Tally("first connections of a process, 8 at the same moment", "each works", kThreads);
  }
}

TEST_F(FirstOfAProcess, LiteralsAreWrittenAtTheSameMoment) {
  for (int i = 0; i < 5; ++i) {
    EXPECT_EXIT(EndAfterFirstLiterals(), ::testing::ExitedWithCode(0), "");
    Tally("first literals of a process, 8 at the same moment", "each is escaped", kThreads);
  }
}

class ThreadsTogether : public ItemTest {
 protected:
  void CreateTables() override {
    ItemTest::CreateTables();
    Run("CREATE TABLE number (Val INT NOT NULL)");
    Run("INSERT INTO number VALUES (0)");
  }

  // With the keys from 0.
  void InsertItems(int count) {
    std::string statement = "INSERT INTO item VALUES (0, 'name 0')";
    for (int i = 1; i < count; ++i) statement += ", (" + std::to_string(i) + ", 'name " + std::to_string(i) + "')";
    Run(statement);
  }
};

TEST_F(ThreadsTogether, SessionsBeginAndEndAtTheSameMoment) {
  constexpr int rounds = 5;
  Parameters const parameters = With();
  int const before = OpenFiles();
  Together([&](int, Meeting& meeting) {
    for (int i = 0; i < rounds; ++i) {
      auto session = std::make_unique<ASSession>(parameters, 0, false);
      session->Execute("DO 0");
      meeting.Wait();
      session.reset();
      meeting.Wait();
    }
  });
  EXPECT_EQ(OpenFiles(), before + kThreads * rounds);  // they are left open
  EXPECT_TRUE(ConnectionsBecome(kThreads * rounds));
  Tally("sessions that begin and end at the same moment as others", "works, its connection is left open",
        kThreads * rounds);
}

TEST_F(ThreadsTogether, SessionsDisconnectAtTheSameMoment) {
  Parameters const parameters = With();
  Together([&](int number, Meeting& meeting) {
    for (int i = 0; i < 5; ++i) {
      ASSession session(parameters, 0, false);
      Item const item(number * 100 + i, "x");
      session.Insert(item);
      meeting.Wait();
      session.Disconnect();
    }
  });
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM item"), "40");
  EXPECT_TRUE(ConnectionsBecome(0));
}

// Everything that a session can do, at once with what the others do on theirs.
void UseAll(Session& session, int number, int round) {
  int const first = 10000 + 1000 * number + 10 * round;
  for (int i = 0; i < 10; ++i) {
    Item item(first + i, "new");
    ASSERT_EQ(session.Insert(item), 1U);
    item.name = "it's";
    ASSERT_EQ(session.Update(item), 1U);
  }

  Item row;
  ASCursor cursor(&session);
  cursor.Project() << row.idColumn << row.nameColumn;
  cursor.Where(row.idColumn >= first && row.idColumn < first + 10 && row.nameColumn == "it's");
  cursor.Order(-row.idColumn);
  ASSERT_EQ(cursor.GetAmount(), 10);
  for (int i = 9; i >= 0; --i) {
    ASSERT_NE(cursor.Fetch(), 0);
    ASSERT_EQ(row.id, first + i);
    ASSERT_EQ(row.name, "it's");
  }

  // Enough rows for pages of the row buffer's own.
  ASCursor all(&session);
  all.Project() << row.idColumn << row.nameColumn;
  all.Where(row.idColumn < 1000);
  ASSERT_EQ(all.GetAmount(), 1000);

  ItemsOf<ASCache> cache(session);
  cache.Look(first);
  ASSERT_EQ(cache.name, "it's");
  cache.name = "cached";
  cache.Put();
  cache.CacheOff();
  cache.Look(first);
  ASSERT_EQ(cache.name, "cached");

  ASUpdater updater(row.nameColumn.Set("raised"));
  updater.Where(row.idColumn >= first && row.idColumn < first + 5);
  ASSERT_EQ(updater.Execute(&session), 5U);
  ASDeleter deleter(row);
  deleter.Where(row.idColumn >= first && row.idColumn < first + 10);
  ASSERT_EQ(deleter.Execute(&session), 10U);
}

TEST_F(ThreadsTogether, StatementsCursorsAndCachesRunOnSessionsOfTheirOwn) {
  InsertItems(1000);
  Parameters const parameters = With();
  constexpr int rounds = 5;
  Together([&](int number, Meeting& meeting) {
    Session session(parameters);
    for (int round = 0; round < rounds; ++round) {
      UseAll(session, number, round);
      meeting.Wait();
    }
  });
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM item"), "1000");
  Tally("rounds of statements, cursors and caches, 8 sessions at once", "each sees its own rows", kThreads * rounds);
}

TEST_F(ThreadsTogether, SequencesGiveNoNumberTwice) {
  if (Environment("MYSQL_UNIX_PORT").empty()) GTEST_SKIP() << "MYSQL_UNIX_PORT is not set";
  Parameters const parameters = With({{"EmulateSequences", "yes"}});
  std::vector<std::atomic<int>> given(8 * 25 + 1);
  Together([&](int, Meeting&) {
    Session session(parameters);
    ASSequence numbers(&session, "number");
    for (int i = 0; i < 25; ++i) ++given.at(static_cast<std::size_t>(numbers.getNext()));
  });
  EXPECT_EQ(given[0], 0);
  for (std::size_t number = 1; number < given.size(); ++number) EXPECT_EQ(given[number], 1) << number;
}

TEST_F(ThreadsTogether, FailuresAreReportedAtTheSameMoment) {
  Parameters const parameters = With();
  Run("INSERT INTO item VALUES (1, 'one')");
  ::testing::internal::CaptureStderr();
  Together([&](int, Meeting& meeting) {
    Session session(parameters, 5, false);  // logs all
    for (int i = 0; i < 5; ++i) {
      meeting.Wait();
      Item const item(1, "again");
      try {
        session.Insert(item);
        ADD_FAILURE() << "inserted twice";
      } catch (AException const& refused) {
        EXPECT_EQ(refused.Number(), 102);
      }
    }
  });
  EXPECT_THAT(::testing::internal::GetCapturedStderr(), ::testing::HasSubstr("Duplicate entry"));
}

// The rows of a cursor may be freed by another thread than the one that read them, which may have ended before.
TEST_F(ThreadsTogether, RowsReadByAThreadAreFreedByAnother) {
  InsertItems(2000);
  Parameters const parameters = With();
  std::vector<std::unique_ptr<MapBuffer>> buffers(kThreads);
  Together([&](int number, Meeting& meeting) {
    Session session(parameters);
    auto& own = buffers[static_cast<std::size_t>(number)];
    auto& neighbours = buffers[static_cast<std::size_t>((number + 1) % kThreads)];
    Item row;
    for (int round = 0; round < 10; ++round) {
      ASCursor cursor(&session);
      cursor.Project() << row.idColumn << row.nameColumn;
      cursor.Where(row.idColumn.IsNotNull());
      cursor.Order(-row.idColumn);
      EXPECT_EQ(cursor.GetAmount(), 2000);
      own.reset(cursor.Detach());
      meeting.Wait();
      EXPECT_EQ(*static_cast<UU const*>(neighbours->GetBegin()), 1999);
      neighbours.reset();
      meeting.Wait();
    }
    ASCursor cursor(&session);
    cursor.Project() << row.idColumn << row.nameColumn;
    cursor.Where(row.idColumn.IsNotNull());
    cursor.Order(-row.idColumn);
    cursor.Open();
    own.reset(cursor.Detach());
  });
  // Their threads have ended.
  for (auto& buffer : buffers) {
    EXPECT_EQ(*static_cast<UU const*>(buffer->GetBegin()), 1999);
    buffer.reset();
  }
  Tally("row buffers freed by another thread", "intact until then", kThreads * 11);
}

TEST_F(ThreadsTogether, ASessionGoesFromThreadToThread) {
  std::optional<Session> session;
  session.emplace(With());
  for (int number = 0; number < kThreads; ++number) {
    std::thread([&session, number] {
      Item const item(number, "x");
      EXPECT_EQ(session->Insert(item), 1U);
    }).join();
  }
  std::thread([&session] { session.reset(); }).join();
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM item"), "8");
}

}  // namespace
