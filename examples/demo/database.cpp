#include "database.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <stdexcept>
#include <thread>

#include "records.h"

namespace demo {

namespace {

std::string Environment(char const* name) {
  char const* const value = std::getenv(name);
  return value != nullptr ? value : "";
}

// The text in one line: control characters and runs of blanks become one blank.
std::string OneLine(std::string const& text) {
  std::string line;
  for (char const c : text) {
    bool const blank = static_cast<unsigned char>(c) <= ' ';
    if (!blank) {
      line += c;
    } else if (!line.empty() && line.back() != ' ') {
      line += ' ';
    }
  }
  while (!line.empty() && line.back() == ' ') line.pop_back();
  return line;
}

// Lets the sequence connections go to the server's port. No session can give it to them: the client library takes it
// from here when the first session is opened.
void SetSequencePort(std::string const& port) {
  if (!port.empty()) setenv("MYSQL_TCP_PORT", port.c_str(), 1);
}

bool StartsWith(std::string const& text, std::string const& start) { return text.compare(0, start.size(), start) == 0; }

}  // namespace

Target Target::FromConnectionString(std::string const& text) {
  Target target;
  target.connectionString_ = text;
  std::size_t const slash = text.find('/', text.find('@'));
  if (slash != std::string::npos && text.find('/', slash + 1) == std::string::npos) {
    std::string const host = text.substr(slash, text.find(':', slash) - slash);
    target.connectionString_.insert(slash, host);  // the host for sequences
    SetSequencePort(text.substr(std::min(slash + host.size() + 1, text.size())));
  }
  target.shown_ = text.substr(0, text.find(':')) + text.substr(text.find('@'));
  return target;
}

Target Target::FromEnvironment() {
  Target target;
  target.parameters_ = {
      {"Host", Environment("CORVANE_TEST_HOST")},
      {"Port", Environment("CORVANE_TEST_PORT")},
      {"UserName", Environment("CORVANE_TEST_USER")},
      {"Password", Environment("CORVANE_TEST_PASSWORD")},
      {"Database", Environment("CORVANE_TEST_DATABASE")},
      {"EmulateSequences", "no"},  // one connection is enough for most sessions
  };
  SetSequencePort(target.parameters_["Port"]);
  target.shown_ = target.parameters_["UserName"] + "@" + target.parameters_["Database"] + "/" +
                  target.parameters_["Host"] + ":" + target.parameters_["Port"];
  return target;
}

ASSession Target::Open() const {
  constexpr int silent = 0;
  constexpr bool exitOnError = false;  // throw instead
  if (!connectionString_.empty()) return ASSession(connectionString_, silent, exitOnError);
  return ASSession(parameters_, silent, exitOnError);
}

ASSession Target::OpenWithSequences() const {
  Target withSequences = *this;
  withSequences.parameters_["EmulateSequences"] = "yes";
  withSequences.parameters_["SequenceHost"] = withSequences.parameters_["Host"];
  return withSequences.Open();
}

long SelectNumber(ASSession& session, Str const& statement) {
  NumberRow row;
  session.Execute(statement);
  session.Fetch(row);
  return row.number;
}

long CountRows(ASSession& session, Str const& table) {
  Str statement("SELECT COUNT(*) FROM ");
  statement << table;
  return SelectNumber(session, statement);
}

long ConnectionNumber(ASSession& session) { return SelectNumber(session, "SELECT CONNECTION_ID()"); }

Str ServerVersion(ASSession& session) {
  TextRow row;
  session.Execute("SELECT VERSION()");
  session.Fetch(row);
  return row.text.getstr();
}

void KillConnection(Target const& target, long connection) {
  ASSession second = target.Open();
  Str kill("KILL CONNECTION ");
  second.Execute(kill << connection);

  Str living("SELECT COUNT(*) FROM information_schema.processlist WHERE id = ");
  living << connection;
  for (int i = 0; SelectNumber(second, living) != 0; ++i) {
    if (i == 500) throw std::runtime_error("the killed connection does not end");
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  second.Disconnect();
}

std::string PlainWords(AException const& error) {
  std::string const message = error.what();
  std::string const reason = OneLine(message.substr(0, message.find(" in query\n")));  // then comes the statement
  if (StartsWith(message, "mysql_real_connect failed")) return "cannot connect to the database server: " + reason;
  if (StartsWith(message, "DB Error 0 ")) {
    return "the connection to the database server was lost in a transaction, which the server rolls back: " + reason;
  }
  if (StartsWith(message, "DB Error ")) return "the database server refused a statement: " + reason;
  return "the database server failed: " + reason;
}

}  // namespace demo
