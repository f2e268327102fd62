#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/live.h"

using corvane::test::Item;
using corvane::test::ItemTest;
using corvane::test::OpenFiles;
using corvane::test::Parameters;
using corvane::test::Session;

namespace {

constexpr int kThreads = 8;
constexpr int kRecords = 25;  // of each thread

// Runs the work in eight threads at once, with the thread's number, and waits for all.
void InThreads(std::function<void(int)> const& work) {
  std::vector<std::thread> threads;
  for (int number = 0; number < kThreads; ++number) threads.emplace_back(work, number);
  for (std::thread& thread : threads) thread.join();
}

class Threads : public ItemTest {};

TEST_F(Threads, SessionEachInsertsItsRecords) {
  Parameters const parameters = With();
  InThreads([&](int number) {
    Session session(parameters);
    for (int i = 0; i < kRecords; ++i) {
      Item const item(number * kRecords + i, "x");
      EXPECT_EQ(session.Insert(item), 1U);
    }
  });
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM item"), "200");
}

TEST_F(Threads, SessionEachReadsBackWhatItWrote) {
  Parameters const parameters = With();
  InThreads([&](int number) {
    Session session(parameters);
    for (int i = 0; i < kRecords; ++i) {
      std::string const name = "name " + std::to_string(number) + "/" + std::to_string(i);
      Item item(number * kRecords + i, "");
      session.Insert(item);
      item.name = name;
      session.Update(item);
      item.name = "";
      EXPECT_EQ(session.Select(item), 1);
      EXPECT_EQ(item.name, name);
    }
  });
}

TEST_F(Threads, TransactionEachIsCommittedOrRolledBackOnItsOwn) {
  Parameters const parameters = WithTransactions();
  InThreads([&](int number) {
    Session session(parameters);
    for (int i = 0; i < kRecords; ++i) {
      Item const item(number * kRecords + i, "x");
      session.Insert(item);
      if (i % 5 == 0) {
        session.Commit();
      } else {
        session.Rollback();
      }
    }
  });
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM item"), "40");
}

TEST_F(Threads, SessionEachSurvivesALostConnection) {
  Parameters const parameters = With();
  InThreads([&](int number) {
    Session session(parameters);
    session.Disconnect();
    Item const item(number, "x");
    EXPECT_EQ(session.Insert(item), 1U);
  });
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM item"), "8");
}

TEST_F(Threads, SessionEachEndsWithItsConnectionLeftOpen) {
  Parameters const parameters = With();
  int const before = OpenFiles();
  InThreads([&](int) {
    for (int i = 0; i < 3; ++i) ASSession const session(parameters, 0, false);
  });
  EXPECT_EQ(OpenFiles(), before + 24);
  EXPECT_TRUE(ConnectionsBecome(24));
}

}  // namespace
