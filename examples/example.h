#ifndef CORVANE_EXAMPLES_EXAMPLE_H
#define CORVANE_EXAMPLES_EXAMPLE_H

#include <corvane/corvane.h>

#include <exception>
#include <iostream>
#include <map>
#include <sstream>
#include <string>
#include <utility>

// What the ten examples share: the frame of main(), a session's parameters, one number asked for, and tables that more
// than one session can see.
namespace example {

using Parameters = std::map<std::string, std::string>;

/// The parts of "user:password@database/host:port", for a session without sequence connection, which closes its
/// connection when it is destroyed. `ASSession session(connection, 0, false)` would take the text as it is, and
/// `session.Disconnect()` close the connection.
inline Parameters ToParameters(std::string const& connection) {
  Parameters parameters = {{"EmulateSequences", "no"}, {"CloseOnDestroy", "on"}};
  std::istringstream parts(connection);
  std::getline(parts, parameters["UserName"], ':');
  std::getline(parts, parameters["Password"], '@');
  std::getline(parts, parameters["Database"], '/');
  std::getline(parts, parameters["Host"], ':');
  std::getline(parts, parameters["Port"]);
  return parameters;
}

/// The frame of main(): gives the connection's parameters to `body` and returns the status of the program.
template <class Body>
int Run(int count, char** arguments, Body body) {
  if (count != 2) {
    std::cerr << "Usage: " << arguments[0] << " user:password@database/host:port\n";
    return 2;
  }
  try {
    body(ToParameters(arguments[1]));
    std::cout.flush();
    if (std::cout) return 0;
    std::cerr << arguments[0] << ": cannot write to the standard output\n";
  } catch (std::exception const& error) {  // an AException, as a rule
    std::cout.flush();
    std::cerr << arguments[0] << ": " << error.what() << '\n';
  }
  return 1;
}

/// The number in the only row and column that a SELECT of one's own gives.
inline long Number(ASSession& session, Str const& statement) {
  struct Row : ASDomain {  // of no table
    Row() : ASDomain("", "") { Add(column, value); }
    Row(Row&&) = delete;
    ASInt64 value;
    ASAttribute column{"value"};
  } row;
  session.Execute(statement);
  session.Fetch(row);
  return row.value;
}

/// A table that all sessions see (a temporary one is there for its own session alone). It is made anew and dropped with
/// this object, by a session of its own. Another run of the same example is waited for: it holds the lock.
class Table {
 public:
  Table(Parameters const& parameters, Str name, Str const& columns)
      : session_(parameters, 0, false), name_(std::move(name)) {
    Str const lockName = corvane::Literal(Str("corvane ") + name_);
    if (Number(session_, Str("SELECT GET_LOCK(") + lockName + ", 60)") != 1) {
      throw AException("Another run of this example does not end. ");
    }
    session_.Execute("SET lock_wait_timeout = 60");  // seconds; the server's own limit is a year
    Drop();
    session_.Execute(Str("CREATE TABLE ") + name_ + " (" + columns + ") ENGINE=InnoDB CHARACTER SET utf8mb4");
  }
  Table(Table const&) = delete;
  Table& operator=(Table const&) = delete;
  ~Table() {
    try {
      Drop();
    } catch (AException const& error) {
      std::cerr << "The table " << name_ << " is still there: " << error.what() << '\n';
    }
  }

 private:
  void Drop() { session_.Execute(Str("DROP TABLE IF EXISTS ") + name_); }

  ASSession session_;
  Str name_;
};

}  // namespace example

#endif
