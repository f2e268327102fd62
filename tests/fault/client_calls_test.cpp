// Each call of the client library fails once, with each error that matters, in everything public that makes one.

#include <gtest/gtest.h>

#include <cstdint>
#include <iostream>
#include <map>
#include <optional>
#include <streambuf>
#include <string>
#include <utility>
#include <vector>

#include "tests/fault/client_call_scenarios.h"
#include "tests/fault/client_calls.h"
#include "tests/support/tally.h"

namespace corvane::test {
namespace {

// Lost (three), lost without a number, refused (four of them by a lock, a duplicate or a constraint), interrupted,
// wrong password, no server, idle for too long, no memory in the client.
constexpr unsigned kNumbers[] = {2006, 2013, 2014, 0, 1062, 1205, 1213, 1217, 1317, 1045, 2002, 4031, 2008};
constexpr int kLevels[] = {0, 1, 2, 3, 5};
constexpr char const* kNoSequence = "Sequence connection is not established. ";
constexpr char const* kNoLuck = "no luck, 100%";

// Catches what is written to the standard error stream, and how many calls had been made by then.
class LogCatcher : public std::streambuf {
 public:
  explicit LogCatcher(ScriptedClient& client) : client_(client), before_(std::cerr.rdbuf(this)) {}
  LogCatcher(LogCatcher const&) = delete;
  LogCatcher& operator=(LogCatcher const&) = delete;
  ~LogCatcher() override { std::cerr.rdbuf(before_); }

  std::vector<Course::Line> const& Lines() const { return lines_; }

 protected:
  std::streamsize xsputn(char const* text, std::streamsize size) override {
    lines_.push_back({client_.Calls().size(), std::string(text, static_cast<std::size_t>(size))});
    return size;
  }
  int overflow(int c) override {
    char const written = static_cast<char>(c);
    if (c != traits_type::eof()) xsputn(&written, 1);
    return traits_type::not_eof(c);
  }

 private:
  ScriptedClient& client_;
  std::streambuf* before_;
  std::vector<Course::Line> lines_;
};

// Instead of the handles' numbers what the handles are: connected to the host "h" or "s".
std::vector<std::string> WithConnections(std::vector<std::string> calls) {
  std::map<std::string, std::string> connections;
  for (std::string const& call : calls) {
    std::size_t const at = call.find(" connect ");
    if (at != std::string::npos) connections[call.substr(0, at)] = call.substr(at + std::string(" connect ").size(), 1);
  }
  for (std::string& call : calls) {
    auto const found = connections.find(call.substr(0, call.find(' ')));
    if (found != connections.end()) call.replace(0, found->first.size(), found->second == "h" ? "m" : found->second);
  }
  return calls;
}

// A statement on a connection that could not be opened fails by itself.
std::size_t FirstCall(Scenario const& scenario) { return scenario.losesSequence ? 1 : 0; }

class ClientCalls : public testing::Test {
 protected:
  using Parameters = std::map<std::string, std::string>;

  void TearDown() override { client.Reset(); }

  static Parameters ParametersOf(Mode mode, bool sequences) {
    return {{"Host", "h"},
            {"SequenceHost", "s"},
            {"Port", "0"},
            {"ControlPort", "0"},
            {"UserName", "u"},
            {"Password", "p"},
            {"Database", "d"},
            {"AutoCommit", mode.autoCommit ? "on" : "off"},
            {"AutoReconnect", mode.autoReconnect ? "on" : "off"},
            {"EmulateSequences", sequences ? "yes" : "no"}};
  }

  // A new session, and nothing remembered of the one before.
  void Open(Mode mode, bool sequences, bool losesSequence = false) {
    client.Reset();
    AnswerAll(client);
    if (losesSequence) client.FailConnect(2002, "no server").Matching("s u p d");
    LogCatcher const unused(client);
    session_.emplace(ParametersOf(mode, sequences), mode.level, false);
  }

  // Runs the action; `before` calls had been made.
  template <class Action>
  Course Record(Action action) {
    Course run;
    std::size_t const before = client.Calls().size();
    {
      LogCatcher const log(client);
      try {
        run.result = action();
      } catch (AException const& error) {
        run.thrown = {error.Number(), error.what()};
      }
      for (Course::Line const& line : log.Lines()) run.log.push_back({line.calls - before, line.text});
    }
    std::vector<std::string> const calls = WithConnections(client.CallsByHandle());
    run.calls.assign(calls.begin() + static_cast<std::ptrdiff_t>(before), calls.end());
    return run;
  }

  Course RecordReopening(Mode mode, bool sequences) {
    Open(mode, sequences);
    Course const run = Record([&] { return session_->Connect(false), ""; });
    Close();
    return run;
  }

  // Nothing may be left then.
  void Close() {
    work_.reset();
    if (session_.has_value()) {
      LogCatcher const unused(client);
      session_->Disconnect();
      session_.reset();
    }
    EXPECT_EQ(client.OpenHandles(), 0U);
    EXPECT_EQ(client.UnfreedResults(), 0U);
  }

  std::string Address() const { return std::to_string(reinterpret_cast<std::uintptr_t>(&*session_)); }

  // Has the call fail that is the fault's in the good run; those before `first` are none of the script's.
  void Script(Course const& good, Fault const& fault, unsigned row, std::size_t first = 0) {
    unsigned earlier = 0;
    for (std::size_t i = first; i < fault.call; ++i) {
      if (CallOf(good.calls[i]) == CallOf(good.calls[fault.call])) ++earlier;
    }
    switch (fault.kind) {
      case Call::kInit:
        return static_cast<void>(client.FailInit().After(earlier));
      case Call::kConnect:
        return static_cast<void>(client.FailConnect(fault.number, fault.text).After(earlier));
      case Call::kQuery:
        return static_cast<void>(client.FailQuery(fault.number, fault.text).After(earlier));
      case Call::kStore:
        return static_cast<void>(client.FailStoreResult(fault.number, fault.text).After(earlier));
      case Call::kUse:
        return static_cast<void>(client.FailUseResult(fault.number, fault.text).After(earlier));
      case Call::kNext:
        return static_cast<void>(client.FailNextResult(fault.number, fault.text).After(earlier));
      case Call::kRow:
        return static_cast<void>(client.FailFetchRow(fault.number, fault.text).After(row));
      case Call::kNone:
        return;
    }
  }

  void Compare(Course const& run, Expected const& expected) {
    std::string log;
    for (Course::Line const& line : run.log) log += line.text;
    EXPECT_EQ(run.calls, expected.calls);
    EXPECT_EQ(log, expected.log);
    EXPECT_EQ(run.thrown, expected.thrown);
    EXPECT_EQ(run.result, expected.result);
    EXPECT_EQ(client.UnfreedResults(), 0U);
  }

  // The session goes on as is told of it.
  void ExpectUsable(Rules const& rules, Left left, bool sequences) {
    std::optional<Thrown> const lost = left == Left::kMainLost ? rules.NextStatement("SET @a=1") : std::nullopt;
    Course const probe = Record([&] { return session_->Execute("SET @a=1"), ""; });
    EXPECT_EQ(probe.thrown, lost);
    if (lost.has_value() && lost->number == kErrConnectionLost) Record([&] { return session_->Connect(false), ""; });
    if (!sequences) return;
    bool const none = left == Left::kNoSequence;
    Course const sequence = Record([&] { return session_->ExecuteSeq("SET @b=1"), ""; });
    EXPECT_EQ(sequence.thrown, none ? std::optional(Thrown{0, kNoSequence}) : std::nullopt);
    if (none) Record([&] { return session_->Connect(false), ""; });
  }

  void FailOne(Scenario const& scenario, Mode mode, Course const& good, Rules const& rules, Fault const& fault,
               unsigned row) {
    Open(mode, scenario.sequences, scenario.losesSequence);
    work_.emplace(*session_);
    std::string const before = scenario.state(*work_);
    Script(good, fault, row, FirstCall(scenario));
    Expected const expected = rules.After(fault);
    Course const run = Record([&] { return scenario.act(*work_); });
    Compare(run, expected);
    if (run.thrown.has_value() && !good.thrown.has_value()) {
      EXPECT_EQ(scenario.state(*work_), before);
    }
    ExpectUsable(rules, expected.left, scenario.sequences);
    Course const again = Record([&] { return scenario.act(*work_); });
    EXPECT_EQ(again.thrown, good.thrown);
    EXPECT_EQ(again.result, good.result);
    Close();
  }

  ScriptedClient& client = ScriptedClient::Get();
  std::optional<ASSession> session_;
  std::optional<Work> work_;
};

// A call that fails and has no number is, behind the end of a result, no failure: nothing tells it from the end.
bool IsFailure(Call kind, unsigned number, bool procedure) {
  if (kind == Call::kInit) return number == 2008;  // it has no number
  return number != 0 || !(kind == Call::kRow || kind == Call::kNext || (kind == Call::kStore && procedure));
}

std::vector<Mode> Modes() {
  std::vector<Mode> modes;
  for (bool const autoCommit : {false, true}) {
    for (bool const autoReconnect : {false, true}) {
      for (int const level : kLevels) modes.push_back({autoCommit, autoReconnect, level});
    }
  }
  return modes;
}

std::string Named(Mode mode) {
  return std::string("AutoCommit ") + (mode.autoCommit ? "on" : "off") + ", AutoReconnect " +
         (mode.autoReconnect ? "on" : "off") + ", level " + std::to_string(mode.level);
}

class ClientCallsOf : public ClientCalls, public testing::WithParamInterface<Scenario> {
 protected:
  // Every number at one call; counts what was tried.
  void FailWithEach(Mode mode, Course const& good, Rules const& rules, std::size_t call, Call kind, unsigned row) {
    bool const procedure = good.calls[0].find("query CALL") != std::string::npos;
    for (unsigned const number : kNumbers) {
      if (HasFailure() || !IsFailure(kind, number, procedure)) continue;
      SCOPED_TRACE(Named(mode) + ", " + std::to_string(number) + " at " + std::to_string(call + 1) + ": " +
                   good.calls[call] + (kind == Call::kRow ? ", row " + std::to_string(row + 1) : ""));
      FailOne(GetParam(), mode, good, rules, {kind, call, number, kNoLuck}, row);
      Tally("client calls failed", "exception, number, message, log, calls, state, then the same again");
    }
  }
};

TEST_P(ClientCallsOf, FailOneByOne) {
  Scenario const& scenario = GetParam();
  for (Mode const mode : Modes()) {
    Course const reopening = RecordReopening(mode, scenario.sequences);
    Open(mode, scenario.sequences, scenario.losesSequence);
    work_.emplace(*session_);
    Course const good = Record([&] { return scenario.act(*work_); });
    std::string const address = Address();
    Close();
    EXPECT_EQ(good.result, good.thrown.has_value() ? "" : scenario.gives) << Named(mode);
    ASSERT_FALSE(HasFailure());
    Rules const rules(mode, good, reopening, address, false, scenario.losesSequence);
    unsigned rows = 0;
    for (std::size_t call = FirstCall(scenario); call < good.calls.size(); ++call) {
      Call const kind = CallOf(good.calls[call]);
      bool const lastOfResults =
          kind == Call::kNext && (call + 1 == good.calls.size() || CallOf(good.calls[call + 1]) != Call::kStore);
      if (kind == Call::kNone || lastOfResults) continue;
      FailWithEach(mode, good, rules, call, kind, 0);
      if (kind != Call::kUse) continue;
      for (unsigned row = 0; row <= scenario.rows; ++row) {  // the end counts as a row
        FailWithEach(mode, good, rules, call, Call::kRow, rows++);
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Everything, ClientCallsOf, testing::ValuesIn(Scenarios()),
                         [](auto const& row) { return row.param.name; });

// The same of the constructor, after which there is no session.
class ClientCallsOfTheConstructor : public ClientCalls, public testing::WithParamInterface<bool> {
 protected:
  Course Construct(Mode mode) {
    return Record([&] { return session_.emplace(ParametersOf(mode, GetParam()), mode.level, false), "opened"; });
  }

  void FailOne(Mode mode, Course const& good, Rules const& rules, Fault const& fault) {
    client.Reset();
    Script(good, fault, 0);
    Expected const expected = rules.After(fault);
    Course const run = Construct(mode);
    Compare(run, expected);
    if (run.thrown.has_value()) {
      EXPECT_EQ(client.OpenHandles(), 0U);
      EXPECT_FALSE(session_.has_value());
      EXPECT_EQ(Construct(mode).result, "opened");
    } else {
      ExpectUsable(rules, expected.left, GetParam());
    }
    Close();
  }
};

TEST_P(ClientCallsOfTheConstructor, FailOneByOne) {
  for (Mode const mode : Modes()) {
    Course const reopening = RecordReopening(mode, GetParam());
    client.Reset();
    Course const good = Construct(mode);
    std::string const address = Address();
    EXPECT_EQ(good.result, "opened");
    Close();
    Rules const rules(mode, good, reopening, address, true, false);
    for (std::size_t call = 0; call < good.calls.size(); ++call) {
      Call const kind = CallOf(good.calls[call]);
      for (unsigned const number : kNumbers) {
        if (HasFailure() || kind == Call::kNone || !IsFailure(kind, number, false)) continue;
        SCOPED_TRACE(Named(mode) + ", " + std::to_string(number) + " at " + good.calls[call]);
        FailOne(mode, good, rules, {kind, call, number, kNoLuck});
        Tally("client calls failed in the constructor", "exception, number, message, log, calls, nothing left open");
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Sequences, ClientCallsOfTheConstructor, testing::Values(false, true),
                         [](auto const& row) { return row.param ? "With" : "Without"; });

}  // namespace
}  // namespace corvane::test
