#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/live.h"
#include "tests/support/seed.h"
#include "tests/support/tally.h"
#include "tests/support/watchdog.h"

using corvane::ErrorKind;
using corvane::test::Chosen;
using corvane::test::IsLongRun;
using corvane::test::LiveTest;
using corvane::test::Parameters;
using corvane::test::Row;
using corvane::test::Seed;
using corvane::test::Session;
using corvane::test::Tally;
using corvane::test::Watchdog;

// A server that is stopped and started, or killed, under several sessions at work.
namespace {

constexpr int kWriters = 8;

// In a table with a key, which refuses what is repeated, or in one without, which would take it twice.
struct Entry : ASDomain {
  ASInt writer, number;
  ASAttribute writerColumn{"writer", "Writer", 0, corvane::kKey};
  ASAttribute numberColumn{"number", "Number", 0, corvane::kKey};

  Entry(char const* table, int ofWriter) : ASDomain(table, "Entry") {
    Add(writerColumn, writer).Add(numberColumn, number);
    writer = ofWriter;
  }
  Entry(Entry const&) = delete;
  Entry& operator=(Entry const&) = delete;
};

enum class Said { kWritten, kNotWritten, kUnknown };

// Writes one entry after the other, in a thread of its own, and notes what the library says of each.
class Writer {
 public:
  Writer(int number, bool autocommit, bool reconnect, Parameters const& parameters)
      : autocommit_(autocommit),
        reconnect_(reconnect),
        entry_(autocommit ? "keyed" : "keyless", number),
        session_(parameters),
        thread_([this] { Work(); }) {}
  Writer(Writer const&) = delete;
  Writer& operator=(Writer const&) = delete;
  ~Writer() { Stop(); }

  void Stop() {
    ends_ = true;
    if (thread_.joinable()) thread_.join();
  }
  int Written() const { return written_; }
  std::string Table() const { return entry_.Name().ToString(); }
  // What was said of each number, and what should not have been. After Stop().
  std::vector<Said> const& Journal() const { return journal_; }
  std::string const& Surprise() const { return surprise_; }

 private:
  void Work() {
    while (!ends_) {
      entry_.number = static_cast<int>(journal_.size());
      journal_.push_back(Write());
      if (journal_.back() == Said::kWritten) ++written_;
    }
  }

  Said Write() {
    try {
      session_.Insert(entry_);
      if (!autocommit_) session_.Commit();
      return Said::kWritten;
    } catch (AException const& error) {
      Said const said = error.Kind() == ErrorKind::kOutcomeUnknown ? Said::kUnknown : Said::kNotWritten;
      // While it shuts down, the server ends statements and connections in words of its own.
      int const number = error.ServerError();
      bool const isOfShutdown = number == 1053 || number == 1317 || number == 1927;
      if (error.Kind() == ErrorKind::kRefused && !isOfShutdown) surprise_ = error.what();
      if (!autocommit_) Abandon();
      while (!reconnect_ && !ends_ && !Connects()) std::this_thread::sleep_for(std::chrono::milliseconds(1));
      return said;
    }
  }

  void Abandon() {
    try {
      session_.Rollback();
    } catch (AException const&) {
      // Lost: the server has rolled back.
    }
  }
  bool Connects() {
    try {
      session_.Connect(false);
      return true;
    } catch (AException const&) {
      return false;
    }
  }

  bool autocommit_;
  bool reconnect_;
  Entry entry_;
  Session session_;
  std::vector<Said> journal_;
  std::string surprise_;
  std::atomic<int> written_{0};
  std::atomic<bool> ends_{false};
  std::thread thread_;  // uses all of the above
};

class Restart : public LiveTest {
 protected:
  void CreateTables() override {
    if (!HasServerControl()) GTEST_SKIP() << "CORVANE_TEST_SERVER_TOOL is not set";
    Run("CREATE TABLE keyed (writer INT, number INT, PRIMARY KEY (writer, number)) ENGINE=InnoDB");
    Run("CREATE TABLE keyless (writer INT, number INT) ENGINE=InnoDB");
  }

  void StartWriters() {
    for (int number = 0; number < kWriters; ++number) {
      bool const autocommit = number % 2 == 0;
      bool const reconnect = number < kWriters / 2;
      Parameters const changes{{"AutoReconnect", reconnect ? "on" : "off"}};
      Parameters const parameters = autocommit ? With(changes) : WithTransactions(changes);
      writers_.push_back(std::make_unique<Writer>(number, autocommit, reconnect, parameters));
    }
  }

  // Whether each writer writes something more, within 20 seconds.
  bool AllWriteAgain() const {
    std::vector<int> before;
    for (auto const& writer : writers_) before.push_back(writer->Written());
    auto const end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    for (std::size_t i = 0; i < writers_.size(); ++i) {
      while (writers_[i]->Written() == before[i]) {
        if (std::chrono::steady_clock::now() > end) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
      }
    }
    return true;
  }

  void RestartOften(bool kills, int times) {
    StartWriters();
    std::mt19937 chance(Seed());
    for (int i = 0; i < times; ++i) {
      SCOPED_TRACE(testing::Message() << "restart " << i);
      Watchdog const watchdog(120, "restart " + std::to_string(i));
      ASSERT_TRUE(AllWriteAgain());
      std::this_thread::sleep_for(std::chrono::milliseconds(Chosen(chance, 0, 20)));
      if (kills) {
        KillServer();
      } else {
        StopServer();
      }
      StartServer();
      Tally(kills ? "servers killed under 8 sessions" : "servers stopped under 8 sessions",
            "every session recovers, nothing lost, nothing twice");
    }
    EXPECT_TRUE(AllWriteAgain());
    for (auto const& writer : writers_) writer->Stop();
    for (std::size_t i = 0; i < writers_.size(); ++i) Compare(i, *writers_[i]);
  }

 private:
  // Written: once. Not written: not there. Unknown: at most once.
  void Compare(std::size_t number, Writer const& writer) {
    EXPECT_EQ(writer.Surprise(), "");
    std::vector<int> stored(writer.Journal().size());
    for (Row const& row : StoredRows("SELECT number, COUNT(*) FROM " + writer.Table() +
                                     " WHERE writer=" + std::to_string(number) + " GROUP BY number")) {
      stored.at(std::stoul(*row[0])) = std::stoi(*row[1]);
    }
    for (std::size_t i = 0; i < stored.size(); ++i) {
      SCOPED_TRACE(testing::Message() << writer.Table() << ", writer " << number << ", entry " << i);
      switch (writer.Journal()[i]) {
        case Said::kWritten:
          EXPECT_EQ(stored[i], 1);
          Tally("inserts acknowledged while the server restarts", "there, once");
          break;
        case Said::kNotWritten:
          EXPECT_EQ(stored[i], 0);
          Tally("inserts refused while the server restarts", "not there");
          break;
        case Said::kUnknown:
          EXPECT_LE(stored[i], 1);
          Tally("inserts of unknown outcome while the server restarts", "not there twice");
          break;
      }
    }
  }

  std::vector<std::unique_ptr<Writer>> writers_;
};

TEST_F(Restart, OfAStoppedServerLosesAndDoublesNothing) { RestartOften(false, 20); }
TEST_F(Restart, OfAKilledServerLosesAndDoublesNothing) { RestartOften(true, IsLongRun() ? 20 : 5); }

}  // namespace
