#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <stdexcept>
#include <string>

#include "tests/support/live.h"
#include "tests/support/tally.h"
#include "tests/support/watchdog.h"

using corvane::ErrorKind;
using corvane::test::ConnectionId;
using corvane::test::Environment;
using corvane::test::FetchedValue;
using corvane::test::LiveTest;
using corvane::test::Session;
using corvane::test::Tally;
using corvane::test::Watchdog;

// A server whose files cannot grow any more.
namespace {

constexpr int kTextSize = 100000;
constexpr rlim_t kLittle = 40 << 20;  // more than the server's own files have

struct Page : ASDomain {
  static constexpr char const* kTable = "CREATE TABLE page (id INT PRIMARY KEY, t LONGTEXT) ENGINE=InnoDB";

  ASInt id;
  ASVStr text{unsigned{kTextSize}};
  ASAttribute idColumn{"id", "Id", 0, corvane::kKey};
  ASAttribute textColumn{"t"};

  explicit Page(int number) : ASDomain("page", "Page") {
    Add(idColumn, id).Add(textColumn, text);
    id = number;
    text = std::string(kTextSize, 'x').c_str();
  }
  Page(Page const&) = delete;
  Page& operator=(Page const&) = delete;
};

pid_t ServerProcess() {
  pid_t server = 0;
  std::ifstream(Environment("CORVANE_TEST_SERVER_DIR") + "/pid") >> server;
  return server;
}

// Whether a file that would become too long is an error for the server, and not its end.
bool ServerSurvivesItsLimit() {
  std::ifstream status("/proc/" + std::to_string(ServerProcess()) + "/status");
  std::string word;
  while (status >> word && word != "SigIgn:") continue;
  return status >> word && (std::stoull(word, nullptr, 16) >> (SIGXFSZ - 1) & 1) != 0;
}

// While it lives, the server can make no file longer than so many bytes, as on a disk that is full. The server is
// somebody else's process when root runs the tests: the limit is set in its owner's name.
class FullDisk {
 public:
  explicit FullDisk(rlim_t bytes) { Limit(bytes); }
  FullDisk(FullDisk const&) = delete;
  FullDisk& operator=(FullDisk const&) = delete;
  ~FullDisk() {
    try {
      Limit(RLIM_INFINITY);
    } catch (std::runtime_error const& error) {
      ADD_FAILURE() << error.what();
    }
  }

 private:
  static void Limit(rlim_t bytes) {
    pid_t const server = ServerProcess();
    struct stat owner {};
    if (server <= 0 || stat(("/proc/" + std::to_string(server)).c_str(), &owner) != 0) {
      throw std::runtime_error("the server's process is not known");
    }
    pid_t const child = fork();
    if (child == 0) {
      bool const isOwner = geteuid() == owner.st_uid || (setresgid(owner.st_gid, owner.st_gid, owner.st_gid) == 0 &&
                                                         setresuid(owner.st_uid, owner.st_uid, owner.st_uid) == 0);
      rlimit limit{};
      if (!isOwner || prlimit(server, RLIMIT_FSIZE, nullptr, &limit) != 0) _exit(1);
      limit.rlim_cur = bytes < limit.rlim_max ? bytes : limit.rlim_max;
      _exit(prlimit(server, RLIMIT_FSIZE, &limit, nullptr) == 0 ? 0 : 1);
    }
    int status = -1;
    if (waitpid(child, &status, 0) != child || status != 0) throw std::runtime_error("the limit cannot be set");
  }
};

class FullDiskTest : public LiveTest {
 protected:
  void CreateTables() override {
    if (!HasServerControl()) GTEST_SKIP() << "CORVANE_TEST_SERVER_DIR is not set";
    if (!ServerSurvivesItsLimit()) GTEST_SKIP() << "the server would be ended by SIGXFSZ";
    Run(Page::kTable);
  }

  // Inserts until the server refuses, and returns how many it took.
  static int Fill(ASSession& session, int first) {
    for (int number = first; number < first + 2000; ++number) {
      try {
        EXPECT_EQ(session.Insert(Page(number)), 1U);
      } catch (AException const& error) {
        EXPECT_EQ(error.Number(), 102);
        EXPECT_EQ(error.ServerError(), 1114);
        EXPECT_EQ(error.Kind(), ErrorKind::kRefused);
        std::string const text = error.what();
        EXPECT_EQ(text.substr(0, text.find('\n')), "DB Error 1114 (The table 'page' is full) in query");
        Tally("inserts into a full disk", "exception, rows, session usable, works again with room");
        return number - first;
      }
    }
    ADD_FAILURE() << "the disk never was full";
    return 0;
  }

 private:
  Watchdog const watchdog_{60, "a full disk"};
};

TEST_F(FullDiskTest, RefusesARowAndKeepsThoseBefore) {
  Session session(With());
  std::string const id = ConnectionId(session);
  int rows = 0;
  {
    FullDisk const full(kLittle);
    rows = Fill(session, 0);
    EXPECT_GT(rows, 100);
    EXPECT_EQ(FetchedValue(session, "SELECT COUNT(*) FROM page"), std::to_string(rows));
    Page page(0);
    page.text = "";
    EXPECT_EQ(session.Select(page), 1);
    EXPECT_EQ(page.text.length(), kTextSize);
  }
  EXPECT_EQ(session.Insert(Page(10000)), 1U);
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM page WHERE LENGTH(t)=100000"), std::to_string(rows + 1));
  EXPECT_EQ(ConnectionId(session), id);
}

TEST_F(FullDiskTest, LeavesTheTransactionToBeCommitted) {
  Session session(WithTransactions());
  int rows = 0;
  {
    FullDisk const full(kLittle);
    rows = Fill(session, 0);
    EXPECT_EQ(FetchedValue(session, "SELECT @@in_transaction"), "1");
    session.Commit();
  }
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM page WHERE LENGTH(t)=100000"), std::to_string(rows));
  EXPECT_EQ(session.Insert(Page(10000)), 1U);
  session.Commit();
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM page"), std::to_string(rows + 1));
}

TEST_F(FullDiskTest, LeavesTheTransactionToBeRolledBack) {
  Session session(WithTransactions());
  {
    FullDisk const full(kLittle);
    EXPECT_GT(Fill(session, 0), 100);
    session.Rollback();
    EXPECT_EQ(FetchedValue(session, "SELECT COUNT(*) FROM page"), "0");
  }
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM page"), "0");
}

}  // namespace
