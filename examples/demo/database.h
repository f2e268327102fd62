#ifndef CORVANE_EXAMPLES_DEMO_DATABASE_H
#define CORVANE_EXAMPLES_DEMO_DATABASE_H

#include <map>
#include <string>

#include "corvane/corvane.h"

// Where the database is, and small questions to it.
namespace demo {

/// A server and a database in it.
class Target {
 public:
  /// "user:password@database/host:port".
  static Target FromConnectionString(std::string const& text);
  /// From CORVANE_TEST_HOST, _PORT, _USER, _PASSWORD and _DATABASE.
  static Target FromEnvironment();

  /// A new session, with autocommit off.
  ASSession Open() const;
  /// The same for one that gives numbers from sequences, too, by a second connection of its own.
  ASSession OpenWithSequences() const;
  /// "user@database/host:port": without the password.
  std::string const& Shown() const { return shown_; }

 private:
  Target() = default;

  std::string connectionString_;  // empty: the parameters count
  std::map<std::string, std::string> parameters_;
  std::string shown_;
};

/// The number that a SELECT of one row and one column gives.
long SelectNumber(ASSession& session, Str const& statement);
long CountRows(ASSession& session, Str const& table);
long ConnectionNumber(ASSession& session);
Str ServerVersion(ASSession& session);

/// Ends a connection by its number, from a second session, and waits until it is gone.
void KillConnection(Target const& target, long connection);

/// Says in one line what went wrong, without the statement.
std::string PlainWords(AException const& error);

}  // namespace demo

#endif
