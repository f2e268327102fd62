#include <gmock/gmock.h>

#include <atomic>
#include <chrono>
#include <map>
#include <random>
#include <string>
#include <thread>

#include "tests/support/live.h"
#include "tests/support/seed.h"
#include "tests/support/tally.h"
#include "tests/support/watchdog.h"

using corvane::ErrorKind;
using corvane::test::Chosen;
using corvane::test::ConnectionId;
using corvane::test::FetchedValue;
using corvane::test::IsLongRun;
using corvane::test::Item;
using corvane::test::ItemTest;
using corvane::test::Observer;
using corvane::test::Parameters;
using corvane::test::Row;
using corvane::test::Seed;
using corvane::test::Session;
using corvane::test::Tally;
using corvane::test::Watchdog;
using testing::AnyOf;

// KILL CONNECTION and KILL QUERY, whatever the session is doing.
namespace {

constexpr int kRows = 3000;
constexpr char const* kChecked = "exception, values read, rows stored, session usable";

// Kills the schema's connections, but for its own and another one, at moments that chance chooses.
class Killer {
 public:
  Killer(std::string const& schema, std::string const& spared, int kills, unsigned seed)
      : thread_([this, schema, spared, kills, seed] { Work(schema, spared, kills, seed); }) {}
  Killer(Killer const&) = delete;
  Killer& operator=(Killer const&) = delete;
  ~Killer() { thread_.join(); }
  bool IsDone() const { return done_; }

 private:
  void Work(std::string const& schema, std::string const& spared, int kills, unsigned seed) {
    Observer other(schema);
    std::mt19937 chance(seed);
    for (int i = 0; i < kills;) {
      std::this_thread::sleep_for(std::chrono::microseconds(Chosen(chance, 0, 8000)));
      bool const query = Chosen(chance, 0, 1) == 1;
      for (Row const& row : other.Read("SELECT id, command FROM information_schema.processlist WHERE db='" + schema +
                                       "' AND id NOT IN (CONNECTION_ID(), " + spared + ")")) {
        if (other.Refusal((query ? "KILL QUERY " : "KILL CONNECTION ") + *row[0]) != 0) continue;  // it has ended
        Tally(std::string(query ? "KILL QUERY" : "KILL CONNECTION") +
                  (row[1] == "Sleep" ? " while idle" : " while a statement runs or is read"),
              kChecked);
        ++i;
      }
    }
    done_ = true;
  }

  std::atomic<bool> done_{false};
  std::thread thread_;
};

enum class Said { kWritten, kNotWritten, kUnknown };

class Killed : public ItemTest {
 protected:
  void CreateTables() override {
    ItemTest::CreateTables();
    Run("CREATE TABLE other (id INT PRIMARY KEY) ENGINE=InnoDB");
    Run("CREATE TABLE many (id INT PRIMARY KEY, name VARCHAR(500)) ENGINE=InnoDB");
    std::string values;
    for (int i = 1; i <= kRows; ++i) values += (i > 1 ? ",(" : "(") + std::to_string(i) + ",REPEAT('y', 500))";
    Run("INSERT INTO many VALUES " + values);
    Run("INSERT INTO item VALUES (0, 'zero')");
  }

  // What may come of being killed.
  static void Expect(AException const& error) {
    if (error.Kind() == ErrorKind::kConnectionLost || error.Kind() == ErrorKind::kOutcomeUnknown) return;
    if (error.Message() == "MySQL fetch error. ") return;
    EXPECT_THAT(error.ServerError(), AnyOf(1317, 1927)) << error.what();
  }

  // All rows, right, or an exception.
  static void ReadAll(ASSession& session) {
    ASInt id;
    ASVStr text(500U);
    ASAttribute idColumn("id"), textColumn("name");
    ASDomain many("many", "Many");
    many.Add(idColumn, id).Add(textColumn, text);
    ASCursor cursor(&session);
    cursor.Project() << idColumn << textColumn;
    cursor.Order(ASOrder("id"));
    int expected = 1;
    while (cursor.Fetch() != 0) {
      EXPECT_EQ(static_cast<int>(id), expected++);
      EXPECT_EQ(text.length(), 500);
    }
    EXPECT_EQ(expected, kRows + 1);
  }
  static void ReadAllRaw(ASSession& session) {
    ASCursor cursor(&session);
    cursor.Statement("SELECT id, name FROM many ORDER BY id");
    EXPECT_EQ(cursor.GetAmount(), kRows);
  }
  static void ReadOne(ASSession& session) {
    Item item(0, "");
    EXPECT_EQ(session.Select(item), 1);
    EXPECT_EQ(item.name, "zero");
  }

  static void Read(ASSession& session, int choice) {
    if (choice == 0) ReadAll(session);
    if (choice == 1) ReadAllRaw(session);
    if (choice == 2) ReadOne(session);
    if (choice == 3) session.Execute("DO SLEEP(0.003)");
    if (choice == 4) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }

  // The number in one table, or in a transaction in two.
  static void Write(ASSession& session, int number, bool autocommit) {
    session.Insert(Item(number, "x"));
    if (autocommit) return;
    session.Execute(Str("INSERT INTO other VALUES (") + std::to_string(number).c_str() + ")");
    session.Commit();
  }

  // Whether the action was done; otherwise with what was said instead.
  template <class Action>
  static Said SaidOf(ASSession& session, Action action) {
    try {
      action();
      return Said::kWritten;
    } catch (AException const& error) {
      Expect(error);
      Said const said = error.Kind() == ErrorKind::kOutcomeUnknown ? Said::kUnknown : Said::kNotWritten;
      try {
        session.Rollback();
      } catch (AException const&) {
        // Lost: the server has rolled back.
      }
      return said;
    }
  }

  // Reads and writes until the killing is over; what was said of each number that was written.
  std::map<int, Said> Work(Parameters const& parameters, bool autocommit) {
    std::mt19937 chance(Seed());
    std::map<int, Said> journal;
    Session session(parameters);
    Watchdog const watchdog(200, "a session that is killed, seed " + std::to_string(Seed()));
    {
      Killer const killer(Schema(), *Stored("SELECT CONNECTION_ID()"), IsLongRun() ? 3000 : 300, Seed() + 1);
      for (int number = 1; !killer.IsDone(); ++number) {
        int const choice = Chosen(chance, 0, 4);
        SaidOf(session, [&] {
          Read(session, choice);
          if (!autocommit) session.Commit();
        });
        journal[number] = SaidOf(session, [&] { Write(session, number, autocommit); });
      }
    }
    SaidOf(session, [&] { session.Execute("DO 0"); });  // has the last loss to tell
    EXPECT_EQ(FetchedValue(session, "SELECT 7"), "7");
    return journal;
  }

  void Compare(std::map<int, Said> const& journal, std::string const& table) {
    std::map<int, int> stored;
    for (Row const& row : StoredRows("SELECT id FROM " + table)) ++stored[std::stoi(*row[0])];
    for (auto const& [number, said] : journal) {
      SCOPED_TRACE(testing::Message() << table << ", number " << number << ", seed " << Seed());
      if (said == Said::kWritten) {
        EXPECT_EQ(stored.count(number), 1U);
        Tally("inserts acknowledged under KILL", "there");
      } else if (said == Said::kNotWritten) {
        EXPECT_EQ(stored.count(number), 0U);
        Tally("inserts refused under KILL", "not there");
      } else {
        Tally("inserts of unknown outcome under KILL", "said to be unknown");
      }
    }
  }
};

TEST_F(Killed, AtAnyMomentWithAutocommitLosesNothing) { Compare(Work(With(), true), "item"); }

TEST_F(Killed, AtAnyMomentInATransactionLosesNothingAndHalvesNone) {
  std::map<int, Said> const journal = Work(WithTransactions(), false);
  Compare(journal, "item");
  Compare(journal, "other");
  EXPECT_EQ(StoredRows("SELECT id FROM item WHERE id>0 ORDER BY id"), StoredRows("SELECT id FROM other ORDER BY id"));
}

TEST_F(Killed, QueryOfAnIdleSessionChangesNothing) {
  Session session(WithTransactions());
  std::string const id = ConnectionId(session);
  for (int number = 1; number <= 20; ++number) {
    session.Insert(Item(number, "x"));
    Run("KILL QUERY " + id);
    Tally("KILL QUERY while idle", kChecked);
  }
  session.Commit();
  EXPECT_EQ(ConnectionId(session), id);
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM item"), "21");
}

}  // namespace
