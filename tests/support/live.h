#ifndef CORVANE_TESTS_SUPPORT_LIVE_H
#define CORVANE_TESTS_SUPPORT_LIVE_H

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "corvane/corvane.h"

// What tests against a real server stand on. The server is found through CORVANE_TEST_HOST, _PORT, _USER and _PASSWORD;
// tools/private-server starts one and sets them.
namespace corvane::test {

/// A field as the server sends it; without value for NULL.
using Field = std::optional<std::string>;
using Row = std::vector<Field>;
using Rows = std::vector<Row>;

using Parameters = std::map<std::string, std::string>;

/// An environment variable; empty when it is not set.
std::string Environment(char const* name);

/// A connection of the bare client library, which shares no code with the sessions under test: it reads what is really
/// stored, and does what another program would do meanwhile. It never waits for a row lock.
/// Throws std::runtime_error for whatever goes wrong, unless said otherwise.
class Observer {
 public:
  explicit Observer(std::string schema, std::string port = Environment("CORVANE_TEST_PORT"));
  Observer(Observer const&) = delete;
  Observer& operator=(Observer const&) = delete;
  ~Observer();

  void Run(std::string const& statement);
  /// Runs a statement and returns the server's error number; 0 when it was accepted.
  unsigned Refusal(std::string const& statement);
  /// The server's text for the last refusal.
  std::string RefusalText() const;
  Rows Read(std::string const& query);
  /// The first field of the only row.
  Field Value(std::string const& query);
  /// Asks until the answer is `value`; false when it is not within five seconds.
  bool Becomes(std::string const& query, std::string const& value);
  /// Kills a connection and waits until the server has ended it.
  void Kill(std::string const& connectionId);
  /// Waits until the connection sleeps in its statement; false when it does not within five seconds.
  bool SeesSleeping(std::string const& connectionId);
  /// Connects again, after the server has been away; tries for five seconds.
  void Connect();

 private:
  void Close();
  bool Opens();
  MYSQL* Handle() const;

  std::string schema_;
  std::string port_;
  MYSQL* handle_ = nullptr;  // owned; null until connected
};

/// A session that closes its connections at its end, so that tests do not use up those that the server admits.
class Session : public ASSession {
 public:
  using ASSession::ASSession;
  explicit Session(Parameters const& parameters) : ASSession(parameters, 0, false) {}
  Session(Session const&) = delete;
  Session& operator=(Session const&) = delete;
  ~Session() { Disconnect(); }
};

/// Runs a query on a session's main connection and takes its result.
Rows Fetched(ASSession& session, std::string const& query);
/// The first field of the only row.
Field FetchedValue(ASSession& session, std::string const& query);
/// The server's number of the session's main connection.
std::string ConnectionId(ASSession& session);

/// How many files and sockets this process has open.
int OpenFiles();

/// What an action threw.
struct Failure {
  int number;
  std::string message;
};
inline bool operator==(Failure const& left, Failure const& right) {
  return left.number == right.number && left.message == right.message;
}
inline std::ostream& operator<<(std::ostream& out, Failure const& failure) {
  return out << failure.number << " \"" << failure.message << '"';
}

/// Runs the action and returns the AException that it throws; number -1 when it throws none.
template <class Action>
Failure FailureOf(Action action) {
  try {
    action();
  } catch (AException const& error) {
    return {error.Number(), error.what()};
  }
  return {-1, "nothing was thrown"};
}

/// The fixture of all live tests: a schema of its own for every test, dropped with whatever connections still use it.
/// Without a server its tests are skipped.
class LiveTest : public ::testing::Test {
 protected:
  void SetUp() final;
  void TearDown() final;
  /// Called in the fresh schema.
  virtual void CreateTables() {}

  static std::string Host() { return Environment("CORVANE_TEST_HOST"); }
  static std::string Port() { return Environment("CORVANE_TEST_PORT"); }
  static std::string User() { return Environment("CORVANE_TEST_USER"); }
  static std::string Password() { return Environment("CORVANE_TEST_PASSWORD"); }
  std::string const& Schema() const { return schema_; }

  /// Parameters of a session in the schema over TCP: autocommit on, no sequence connection, `changes` on top.
  Parameters With(Parameters const& changes = {}) const;
  /// The same with autocommit off.
  Parameters WithTransactions(Parameters const& changes = {}) const;

  // Through the observer.
  void Run(std::string const& statement) { observer_->Run(statement); }
  unsigned Refusal(std::string const& statement) { return observer_->Refusal(statement); }
  std::string RefusalText() const { return observer_->RefusalText(); }
  Rows StoredRows(std::string const& query) { return observer_->Read(query); }
  Field Stored(std::string const& query) { return observer_->Value(query); }
  bool Becomes(std::string const& query, std::string const& value) { return observer_->Becomes(query, value); }
  /// Where servers differ by nature, a test says what each does: MariaDB, or MySQL.
  bool IsMariaDb() { return Stored("SELECT VERSION() LIKE '%MariaDB%'") == "1"; }
  void Kill(std::string const& connectionId) { observer_->Kill(connectionId); }
  /// Whether the server counts `count` connections to the schema, or does so within five seconds.
  bool ConnectionsBecome(int count);
  /// The hosts from which the schema's connections come, without ports: "localhost" for the UNIX socket.
  Rows ConnectionHosts();

  // Need CORVANE_TEST_SERVER_TOOL and _DIR; the server is running again when the test has ended.
  static bool HasServerControl();
  void StopServer();
  void KillServer();
  void StartServer();

 private:
  void ControlServer(char const* action);

  std::string schema_;
  std::unique_ptr<Observer> observer_;
  bool serverIsDown_ = false;
};

/// A record of two columns.
struct Item : ASDomain {
  static constexpr char const* kTable = "CREATE TABLE item (id INT PRIMARY KEY, name VARCHAR(20))";

  ASInt id;
  ASVStr name{20};
  ASAttribute idColumn{"id", "Id", 0, corvane::kKey};
  ASAttribute nameColumn{"name"};

  Item() : ASDomain("item", "Item") { Add(idColumn, id).Add(nameColumn, name); }
  Item(int number, char const* text) : Item() {
    id = number;
    name = text;
  }
  Item(Item const&) = delete;
  Item& operator=(Item const&) = delete;
};

/// The fixture of tests with that record's table.
class ItemTest : public LiveTest {
 protected:
  void CreateTables() override { Run(Item::kTable); }
};

}  // namespace corvane::test

#endif
