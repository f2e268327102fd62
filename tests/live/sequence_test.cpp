#include <gmock/gmock.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstddef>
#include <cstdio>
#include <exception>
#include <new>
#include <random>
#include <string>
#include <vector>

#include "tests/support/live.h"

using corvane::test::ConnectionId;
using corvane::test::Environment;
using corvane::test::Failure;
using corvane::test::FailureOf;
using corvane::test::FetchedValue;
using corvane::test::Field;
using corvane::test::LiveTest;
using corvane::test::Parameters;
using corvane::test::Rows;
using corvane::test::Session;
using testing::AnyOf;
using testing::ElementsAre;
using testing::StartsWith;

namespace {

Field const kNull;

// The sequence connection goes through the UNIX socket unless it is given a host, and to the client library's port.
class LiveSequence : public LiveTest {
 protected:
  void CreateTables() override {
    if (Environment("MYSQL_UNIX_PORT").empty()) GTEST_SKIP() << "MYSQL_UNIX_PORT is not set";
    Run("CREATE TABLE counter (Val INT NOT NULL)");
    Run("INSERT INTO counter VALUES (41)");
  }

  Parameters WithSequence(Parameters changes = {}) const {
    changes["EmulateSequences"] = "yes";
    return With(changes);
  }
  Parameters OverTcp() const { return WithSequence({{"SequenceHost", Host()}}); }

  // A table with that row's value.
  void CreateSequence(std::string const& table, std::string const& type, std::string const& value) {
    Run("CREATE TABLE " + table + " (Val " + type + ")");
    Run("INSERT INTO " + table + " VALUES (" + value + ")");
  }
  // The server's number of the sequence connection.
  std::string SequenceConnectionId(ASSession& session) {
    Run("CREATE TABLE seen (connection BIGINT)");
    session.ExecuteSeq("INSERT INTO seen VALUES (CONNECTION_ID())");
    return Stored("SELECT connection FROM seen").value();
  }
};

// Numbers.

TEST_F(LiveSequence, CountsFromTheStoredNumber) {
  Session session(WithSequence());
  ASSequence numbers(&session, "counter");
  EXPECT_EQ(numbers.getNext(), 42);
  EXPECT_EQ(numbers.getNext(), 43);
  EXPECT_EQ(Stored("SELECT Val FROM counter"), "43");
}

TEST_F(LiveSequence, CountsOverTcp) {
  Session session(OverTcp());
  ASSequence numbers(&session, "counter");
  EXPECT_EQ(numbers.getNext(), 42);
  EXPECT_EQ(numbers.getNext(), 43);
}

TEST_F(LiveSequence, StartsWithOneAtZero) {
  Run("UPDATE counter SET Val=0");
  Session session(WithSequence());
  EXPECT_EQ(ASSequence(&session, "counter").getNext(), 1);
}

TEST_F(LiveSequence, MakingOneTouchesNothing) {
  Session session(WithSequence());
  ASSequence const numbers(&session, "missing");
  EXPECT_EQ(Stored("SELECT Val FROM counter"), "41");
}

TEST_F(LiveSequence, SessionsInTurnShareTheNumbers) {
  Session first(WithSequence()), second(OverTcp());
  ASSequence ofFirst(&first, "counter"), ofSecond(&second, "counter");
  std::vector<int> numbers;
  for (int i = 0; i < 3; ++i) {
    numbers.push_back(ofFirst.getNext());
    numbers.push_back(ofSecond.getNext());
  }
  EXPECT_THAT(numbers, ElementsAre(42, 43, 44, 45, 46, 47));
}

TEST_F(LiveSequence, TwoOfOneSessionCountForThemselves) {
  CreateSequence("other", "INT", "7");
  Session session(WithSequence());
  ASSequence counter(&session, "counter"), other(&session, "other");
  EXPECT_EQ(counter.getNext(), 42);
  EXPECT_EQ(other.getNext(), 8);
  EXPECT_EQ(counter.getNext(), 43);
  EXPECT_EQ(other.getNext(), 9);
}

TEST_F(LiveSequence, NameMayBeQualifiedAndQuoted) {
  CreateSequence("`order`", "INT", "7");
  Session session(WithSequence());
  EXPECT_EQ(ASSequence(&session, ("`" + Schema() + "`.`order`").c_str()).getNext(), 8);
}

// Beside the main connection.

TEST_F(LiveSequence, NumberStaysUsedAfterARollback) {
  Run("CREATE TABLE used (number INT)");
  Session session(WithSequence({{"AutoCommit", "off"}}));
  ASSequence numbers(&session, "counter");
  session.Execute("INSERT INTO used VALUES (1)");
  EXPECT_EQ(numbers.getNext(), 42);
  session.Rollback();
  EXPECT_EQ(Stored("SELECT Val FROM counter"), "42");
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM used"), "0");
  EXPECT_EQ(numbers.getNext(), 43);
}

TEST_F(LiveSequence, IsStoredAtOnceWhileTheMainTransactionIsOpen) {
  Run("CREATE TABLE used (number INT)");
  Session session(WithSequence({{"AutoCommit", "off"}}));
  session.Execute("INSERT INTO used VALUES (1)");
  EXPECT_EQ(ASSequence(&session, "counter").getNext(), 42);
  EXPECT_EQ(Stored("SELECT Val FROM counter"), "42");
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM used"), "0");
}

TEST_F(LiveSequence, LeavesTheMainConnectionsInsertIdAlone) {
  Run("CREATE TABLE numbered (id INT PRIMARY KEY AUTO_INCREMENT) AUTO_INCREMENT=7");
  Session session(WithSequence());
  session.Execute("INSERT INTO numbered VALUES (NULL)");
  EXPECT_EQ(ASSequence(&session, "counter").getNext(), 42);
  EXPECT_EQ(static_cast<int>(session.GetInsertId()), 7);
  EXPECT_EQ(FetchedValue(session, "SELECT LAST_INSERT_ID()"), "7");
}

TEST_F(LiveSequence, LeavesTheMainConnectionsRowsAffectedAlone) {
  Run("CREATE TABLE used (number INT)");
  Session session(WithSequence());
  session.Execute("INSERT INTO used VALUES (1), (2), (3)");
  EXPECT_EQ(ASSequence(&session, "counter").getNext(), 42);
  EXPECT_EQ(session.RowsAffected(), 3U);
}

TEST_F(LiveSequence, GoesOnWhenTheMainConnectionWasReopened) {
  Session session(WithSequence());
  ASSequence numbers(&session, "counter");
  EXPECT_EQ(numbers.getNext(), 42);
  Kill(ConnectionId(session));
  session.Execute("DO 0");
  EXPECT_EQ(numbers.getNext(), 43);
}

// Tables without a number to give.

TEST_F(LiveSequence, MissingTableThrowsWithoutANumber) {
  Session session(WithSequence());
  ASSequence numbers(&session, "missing");
  EXPECT_EQ(FailureOf([&] { numbers.getNext(); }),
            (Failure{0, "DB Error 1146 (Table '" + Schema() +
                            ".missing' doesn't exist) in query\n\b\nUPDATE missing SET Val=LAST_INSERT_ID(Val+1)"}));
}

TEST_F(LiveSequence, MissingTableThatIsMadeThenIsCountedIn) {
  Session session(WithSequence());
  ASSequence numbers(&session, "late");
  EXPECT_THROW(numbers.getNext(), AException);
  CreateSequence("late", "INT", "7");
  EXPECT_EQ(numbers.getNext(), 8);
}

TEST_F(LiveSequence, TableWithoutTheColumnThrows) {
  Run("CREATE TABLE wrong (number INT)");
  Session session(WithSequence());
  Failure const failure = FailureOf([&] { ASSequence(&session, "wrong").getNext(); });
  EXPECT_EQ(failure.number, 0);
  EXPECT_THAT(failure.message, StartsWith("DB Error 1054 ("));
}

TEST_F(LiveSequence, EmptyTableGivesZeroAndRepeatsNoNumber) {
  Session session(WithSequence());
  ASSequence numbers(&session, "counter");
  EXPECT_EQ(numbers.getNext(), 42);
  Run("DELETE FROM counter");
  EXPECT_EQ(numbers.getNext(), 0);
  EXPECT_EQ(numbers.getNext(), 0);
}

TEST_F(LiveSequence, EmptyTableDoesNotRepeatAnotherSequencesNumber) {
  Run("CREATE TABLE other (Val INT)");
  Session session(WithSequence());
  EXPECT_EQ(ASSequence(&session, "counter").getNext(), 42);
  EXPECT_EQ(ASSequence(&session, "other").getNext(), 0);
}

TEST_F(LiveSequence, EmptyTableThatIsFilledThenIsCountedIn) {
  Run("DELETE FROM counter");
  Session session(WithSequence());
  ASSequence numbers(&session, "counter");
  EXPECT_EQ(numbers.getNext(), 0);
  Run("INSERT INTO counter VALUES (7)");
  EXPECT_EQ(numbers.getNext(), 8);
}

TEST_F(LiveSequence, NullGivesZeroAndStaysNull) {
  CreateSequence("other", "INT", "NULL");
  Session session(WithSequence());
  EXPECT_EQ(ASSequence(&session, "counter").getNext(), 42);
  EXPECT_EQ(ASSequence(&session, "other").getNext(), 0);
  EXPECT_EQ(Stored("SELECT Val FROM other"), kNull);
}

TEST_F(LiveSequence, OfTwoRowsBothAreCountedAndOneIsReturned) {
  Run("INSERT INTO counter VALUES (100)");
  Session session(WithSequence());
  EXPECT_THAT(ASSequence(&session, "counter").getNext(), AnyOf(42, 101));
  EXPECT_EQ(StoredRows("SELECT Val FROM counter ORDER BY Val"), (Rows{{"42"}, {"101"}}));
}

// The end of the column's type.

TEST_F(LiveSequence, LastNumberOfTheTypeIsHandedOut) {
  Run("UPDATE counter SET Val=2147483646");
  Session session(WithSequence());
  EXPECT_EQ(ASSequence(&session, "counter").getNext(), 2147483647);
}

TEST_F(LiveSequence, FullIntThrowsInStrictMode) {
  Run("UPDATE counter SET Val=2147483647");
  Session session(WithSequence());
  session.ExecuteSeq("SET SESSION sql_mode='STRICT_ALL_TABLES'");
  Failure const failure = FailureOf([&] { ASSequence(&session, "counter").getNext(); });
  EXPECT_EQ(failure.number, 0);
  EXPECT_THAT(failure.message, StartsWith("DB Error 1264 ("));
  EXPECT_EQ(Stored("SELECT Val FROM counter"), "2147483647");
}

TEST_F(LiveSequence, FullIntGivesZeroOutsideStrictMode) {
  Run("UPDATE counter SET Val=2147483646");
  Session session(WithSequence());
  session.ExecuteSeq("SET SESSION sql_mode=''");
  ASSequence numbers(&session, "counter");
  EXPECT_EQ(numbers.getNext(), 2147483647);
  EXPECT_EQ(numbers.getNext(), 0);
  EXPECT_EQ(numbers.getNext(), 0);
  EXPECT_EQ(Stored("SELECT Val FROM counter"), "2147483647");
}

TEST_F(LiveSequence, NumberBeyond32BitsIsCut) {
  CreateSequence("large", "BIGINT", "2147483647");
  Session session(WithSequence());
  ASSequence numbers(&session, "large");
  EXPECT_EQ(numbers.getNext(), -2147483647 - 1);
  EXPECT_EQ(numbers.getNext(), -2147483647);
  EXPECT_EQ(Stored("SELECT Val FROM large"), "2147483649");
}

// Sessions without a sequence connection, and lost ones.

TEST_F(LiveSequence, WithEmulateSequencesNoThrows) {
  Session session(With({{"EmulateSequences", "no"}}));
  EXPECT_EQ(FailureOf([&] { ASSequence(&session, "counter").getNext(); }),
            (Failure{0, "Sequence connection is not established. "}));
  EXPECT_EQ(Stored("SELECT Val FROM counter"), "41");
}

TEST_F(LiveSequence, AfterDisconnectThrowsAndCountsAgainWhenReopened) {
  Session session(WithSequence());
  ASSequence numbers(&session, "counter");
  session.Disconnect();
  EXPECT_EQ(FailureOf([&] { numbers.getNext(); }), (Failure{0, "Sequence connection is not established. "}));
  session.Execute("DO 0");
  EXPECT_EQ(numbers.getNext(), 42);
}

TEST_F(LiveSequence, KilledBeforeTheUpdateSkipsNoNumber) {
  Session session(WithSequence());
  Kill(SequenceConnectionId(session));
  EXPECT_EQ(ASSequence(&session, "counter").getNext(), 42);
  EXPECT_TRUE(ConnectionsBecome(2));
}

TEST_F(LiveSequence, KilledBetweenTwoNumbersSkipsNone) {
  Session session(OverTcp());
  ASSequence numbers(&session, "counter");
  EXPECT_EQ(numbers.getNext(), 42);
  Kill(SequenceConnectionId(session));
  EXPECT_EQ(numbers.getNext(), 43);
}

TEST_F(LiveSequence, LockedRowThrowsAndIsCountedLater) {
  Session session(WithSequence());
  session.ExecuteSeq("SET SESSION innodb_lock_wait_timeout=0");
  ASSequence numbers(&session, "counter");
  Run("BEGIN");
  Run("UPDATE counter SET Val=50");
  Failure const failure = FailureOf([&] { numbers.getNext(); });
  EXPECT_EQ(failure.number, 0);
  EXPECT_THAT(failure.message, StartsWith("DB Error 1205 ("));
  Run("ROLLBACK");
  EXPECT_EQ(numbers.getNext(), 42);
}

// Processes.

constexpr int kProcesses = 8;
constexpr std::size_t kNumbersEach = 2500;
constexpr unsigned kPatience = 30;  // seconds
constexpr int kMostKills = 400;     // so that there is an end

// What a process tells its parent, in memory that both see.
struct Report {
  std::array<int, kNumbersEach> numbers;
  int refused;  // killed in the middle of a statement, or while it connected again
  char failure[512];
};

class Reports {
 public:
  Reports()
      : memory_(mmap(nullptr, sizeof(Report) * kProcesses, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0)) {
    if (memory_ == MAP_FAILED) throw std::bad_alloc();
  }
  Reports(Reports const&) = delete;
  Reports& operator=(Reports const&) = delete;
  ~Reports() { munmap(memory_, sizeof(Report) * kProcesses); }
  Report& operator[](int process) const { return static_cast<Report*>(memory_)[process]; }

 private:
  void* memory_;
};

// Whether a number was refused because the connection was killed meanwhile, which the server and the client library
// tell in several ways. There is no number then, and the next attempt finds the connection lost.
bool WasKilled(AException const& error) {
  return testing::Value(std::string(error.what()),
                        AnyOf(StartsWith("DB Error 1927 ("), StartsWith("DB Error 1317 ("),
                              StartsWith("mysql_real_connect failed for sequence\n Error 20"),
                              StartsWith("mysql_real_connect failed for sequence\n Error 1927 (")));
}

// The number, 0 when there was none.
int NextNumber(ASSequence& sequence, Report& report) {
  try {
    return sequence.getNext();
  } catch (AException const& error) {
    if (!WasKilled(error)) throw;
    ++report.refused;
    return 0;
  }
}

// The life of a process.
[[noreturn]] void TakeNumbers(Parameters const& parameters, Report& report) {
  alarm(kPatience);
  try {
    Session session(parameters);
    session.Execute("INSERT INTO mains VALUES (CONNECTION_ID())");
    ASSequence sequence(&session, "counter");
    for (std::size_t taken = 0; taken < kNumbersEach;) {
      int const number = NextNumber(sequence, report);
      if (number != 0) report.numbers[taken++] = number;
    }
  } catch (std::exception const& error) {
    std::snprintf(report.failure, sizeof(report.failure), "%s", error.what());
    _exit(1);
  }
  _exit(0);
}

class SequenceProcesses : public LiveSequence {
 public:
  SequenceProcesses() = default;
  SequenceProcesses(SequenceProcesses const&) = delete;
  SequenceProcesses& operator=(SequenceProcesses const&) = delete;
  ~SequenceProcesses() override {
    for (pid_t const child : children_) kill(child, SIGKILL);  // after a failure
    for (pid_t const child : children_) waitpid(child, nullptr, 0);
  }

 protected:
  void CreateTables() override {
    LiveSequence::CreateTables();
    if (IsSkipped()) return;
    Run("UPDATE counter SET Val=0");
    Run("CREATE TABLE mains (connection BIGINT)");
  }

  // Half of the processes have their sequence connection over TCP, the others through the socket.
  void Start(Reports const& reports) {
    for (int process = 0; process < kProcesses; ++process) {
      pid_t const child = fork();
      ASSERT_NE(child, -1);
      if (child == 0) TakeNumbers(process % 2 == 0 ? OverTcp() : WithSequence(), reports[process]);
      children_.push_back(child);
    }
  }

  // Takes the status of those that have ended; true while there are others.
  bool AnyRuns() {
    auto const hasEnded = [this](pid_t child) {
      int status = 0;
      if (waitpid(child, &status, WNOHANG) == 0) return false;
      if (status != 0) failed_ = true;
      return true;
    };
    children_.erase(std::remove_if(children_.begin(), children_.end(), hasEnded), children_.end());
    return !children_.empty();
  }

  // Kills one of their sequence connections, if there is any.
  bool KillOne(std::mt19937& random) {
    Rows const connections =
        StoredRows("SELECT id FROM information_schema.processlist WHERE db='" + Schema() + "' AND user='" + User() +
                   "' AND id<>CONNECTION_ID() AND id NOT IN (SELECT connection FROM mains) ORDER BY id");
    if (connections.empty()) return false;
    auto const chosen = random() % connections.size();
    return Refusal("KILL CONNECTION " + connections[chosen].at(0).value()) == 0;
  }

  long long ConnectionsSoFar() {
    return std::stoll(StoredRows("SHOW GLOBAL STATUS LIKE 'Connections'").at(0).at(1).value());
  }

  bool AnyFailed() const { return failed_; }

 private:
  std::vector<pid_t> children_;
  bool failed_ = false;
};

TEST_F(SequenceProcesses, GetDifferentNumbersWhileTheirConnectionsAreKilled) {
  Reports const reports;
  Start(reports);
  ASSERT_TRUE(Becomes("SELECT COUNT(*) FROM mains", std::to_string(kProcesses)));
  long long const before = ConnectionsSoFar();
  std::mt19937 random(20240229);  // NOLINT(cert-msc32-c,cert-msc51-cpp): the same on every run
  int kills = 0;
  while (AnyRuns()) {
    if (kills < kMostKills && KillOne(random)) ++kills;
    usleep(5000);
  }
  long long const reopened = ConnectionsSoFar() - before;

  std::vector<int> numbers;
  int refused = 0;
  for (int process = 0; process < kProcesses; ++process) {
    Report const& report = reports[process];
    EXPECT_STREQ(report.failure, "");
    EXPECT_TRUE(std::is_sorted(report.numbers.begin(), report.numbers.end()));
    numbers.insert(numbers.end(), report.numbers.begin(), report.numbers.end());
    refused += report.refused;
  }
  EXPECT_FALSE(AnyFailed());
  std::sort(numbers.begin(), numbers.end());
  EXPECT_TRUE(std::adjacent_find(numbers.begin(), numbers.end()) == numbers.end()) << "a number was handed out twice";
  EXPECT_EQ(numbers.size(), 20000U);
  EXPECT_GE(numbers.front(), 1);
  EXPECT_LE(numbers.back(), std::stoi(Stored("SELECT Val FROM counter").value()));
  EXPECT_GE(kills, 36);
  EXPECT_GE(reopened, 36);
  RecordProperty("kills", kills);
  RecordProperty("reopened", static_cast<int>(reopened));
  RecordProperty("refused", refused);
}

}  // namespace
