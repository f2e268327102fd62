#ifndef CORVANE_TESTS_SUPPORT_SCRIPTED_CURSOR_H
#define CORVANE_TESTS_SUPPORT_SCRIPTED_CURSOR_H

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "corvane/corvane.h"
#include "tests/support/scripted_session.h"

namespace corvane::test {

/// A column that belongs to no record, with its value: `cursor.Project() << column` reads it by "SELECT c FROM ".
template <class Value>
struct Column : ASAttribute {
  Value value;

  template <class... Arguments>
  explicit Column(char const* name, Arguments... arguments) : ASAttribute(name), value(arguments...) {
    Register(&value, nullptr);
    value.Bind(this);
  }
  Column(Column const&) = delete;
  Column& operator=(Column const&) = delete;
};

/// A column value whose codes are not those of its class.
template <class Value, int type, int dbType>
class Called : public Value {
 public:
  using Value::Value;
  using Value::operator=;
  int GetType() const override { return type; }
  int GetDBType() const override { return dbType; }
};

inline std::string Bytes(void const* from, std::size_t count) {
  return std::string(static_cast<char const*>(from), count);
}

/// A session on the scripted client library, for cursors.
class ScriptedCursor : public ScriptedSession {
 protected:
  void SetUp() override {
    ScriptedSession::SetUp();
    session = &Ready();
  }

  /// The session with other parameters.
  void Reopen(Parameters parameters) { session = &Ready(std::move(parameters)); }

  /// The result of the next statement.
  ScriptedClient::Answer& Answer(unsigned columns, std::vector<Row> rows) {
    return client.AnswerQuery(columns, std::move(rows));
  }

  /// The statements that were sent.
  std::vector<std::string> Statements() const {
    std::string const word = "query ";
    std::vector<std::string> statements;
    for (std::string const& call : client.Calls()) {
      if (call.compare(0, word.size(), word) == 0) statements.push_back(call.substr(word.size()));
    }
    return statements;
  }

  ASSession* session = nullptr;
};

}  // namespace corvane::test

#endif
