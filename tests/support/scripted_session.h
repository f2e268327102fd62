#ifndef CORVANE_TESTS_SUPPORT_SCRIPTED_SESSION_H
#define CORVANE_TESTS_SUPPORT_SCRIPTED_SESSION_H

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <new>
#include <ostream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "corvane/session/ardbms.h"
#include "tests/support/scripted_client.h"

namespace corvane::test {

/// What an action threw.
struct Thrown {
  int number;
  std::string message;

  bool operator==(Thrown const& other) const { return number == other.number && message == other.message; }
  friend std::ostream& operator<<(std::ostream& out, Thrown const& thrown) {
    return out << thrown.number << " \"" << thrown.message << '"';
  }
};

/// Runs the action and returns the AException that it threw; {-1, "nothing was thrown"} without one.
template <class Action>
Thrown ThrownBy(Action action) {
  try {
    action();
  } catch (AException const& error) {
    return {error.Number(), error.what()};
  }
  return {-1, "nothing was thrown"};
}

/// One session on the scripted client library.
class ScriptedSession : public testing::Test {
 protected:
  using Parameters = std::map<std::string, std::string>;

  void SetUp() override { client.Reset(); }

  void TearDown() override {
    LogOf([&] { Destroy(); });
    EXPECT_EQ(client.UnfreedResults(), 0U);
    EXPECT_EQ(client.UnusedSteps(), 0U) << "of the script";
    client.Reset();
  }

  /// Opens the session, without sequences unless the parameters ask for them.
  ASSession& Construct(Parameters parameters = {}, int debugLevel = 0, bool exitOnError = false) {
    parameters.try_emplace("EmulateSequences", "no");
    Destroy();
    session_ = new (storage_) ASSession(parameters, debugLevel, exitOnError);
    return *session_;
  }

  /// From a connection string, which cannot speak of sequences: they are opened.
  ASSession& ConstructFrom(Str const& connectionString, int debugLevel = 0, bool exitOnError = false) {
    Destroy();
    session_ = new (storage_) ASSession(connectionString, debugLevel, exitOnError);
    return *session_;
  }

  /// As Construct(), with the calls and the log that it made forgotten.
  ASSession& Ready(Parameters parameters = {}, int debugLevel = 0, bool exitOnError = false) {
    LogOf([&] { Construct(std::move(parameters), debugLevel, exitOnError); });
    if (session_ == nullptr) throw std::runtime_error("the session could not be opened");
    client.ForgetCalls();
    return *session_;
  }

  void Destroy() {
    if (session_ != nullptr) session_->~ASSession();
    session_ = nullptr;
  }

  /// What the action writes to the standard error stream, with the address of the session, as it appears in its log
  /// lines, replaced by "ADDR".
  template <class Action>
  std::string LogOf(Action action) {
    testing::internal::CaptureStderr();
    try {
      action();
    } catch (AException const&) {
      // Tests of what is thrown look at that alone.
    }
    return WithoutAddress(testing::internal::GetCapturedStderr());
  }

  std::string WithoutAddress(std::string text) const {
    std::string const address = std::to_string(reinterpret_cast<std::uintptr_t>(storage_));
    for (std::size_t at = text.find(address); at != std::string::npos; at = text.find(address)) {
      text.replace(at, address.size(), "ADDR");
    }
    return text;
  }

  ScriptedClient& client = ScriptedClient::Get();

 private:
  // In place, so that the address is known while the constructor runs.
  alignas(ASSession) unsigned char storage_[sizeof(ASSession)];
  ASSession* session_ = nullptr;
};

/// One session whose process ends: the script is used up in a child process.
class ScriptedSessionDeathTest : public ScriptedSession {
 protected:
  void TearDown() override {
    client.Reset();
    ScriptedSession::TearDown();
  }

  /// Matches exactly this log, the session's address written as "ADDR".
  auto Logged(std::string const& log) const {
    return testing::ResultOf([this](std::string const& text) { return WithoutAddress(text); }, log);
  }
};

/// What is logged at a debug level.
struct LevelLog {
  int level;
  std::string log;

  friend std::ostream& operator<<(std::ostream& out, LevelLog const& row) { return out << "level " << row.level; }
};

/// One row for each level from 0 to 5; levels 2, 3 and 4 log the same.
inline std::vector<LevelLog> ByLevel(std::string const& nothing, std::string const& failures,
                                     std::string const& statements, std::string const& notices) {
  return {{0, nothing}, {1, failures}, {2, statements}, {3, statements}, {4, statements}, {5, notices}};
}

/// Names a test after its level.
inline std::string LevelName(testing::TestParamInfo<LevelLog> const& row) {
  return "Level" + std::to_string(row.param.level);
}

/// A session at the level of the test's row.
class ScriptedSessionAtLevel : public ScriptedSession, public testing::WithParamInterface<LevelLog> {
 protected:
  int Level() const { return GetParam().level; }
  std::string const& Log() const { return GetParam().log; }
};

}  // namespace corvane::test

#endif
