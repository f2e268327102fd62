#ifndef CORVANE_TESTS_FUZZ_SCRIPTED_H
#define CORVANE_TESTS_FUZZ_SCRIPTED_H

#include <iostream>
#include <sstream>
#include <string>

#include "corvane/session/ardbms.h"
#include "tests/support/scripted_client.h"

namespace corvane::fuzz {

/// A session on the scripted client library, which has forgotten everything before and after. It is one and the same
/// session, connected again.
class Scripted {
 public:
  Scripted() {
    client.Reset();
    session.Connect(false);
  }
  Scripted(Scripted const&) = delete;
  Scripted& operator=(Scripted const&) = delete;
  ~Scripted() {
    session.Disconnect();
    client.Reset();
  }

  /// The session, connected or not: for what needs no server.
  static ASSession& One() {
    static ASSession* const one = [] {
      auto* const fresh = new ASSession({{"EmulateSequences", "no"}}, 0, false);
      fresh->Disconnect();
      return fresh;
    }();
    return *one;
  }

  ASSession& session = One();
  test::ScriptedClient& client = test::ScriptedClient::Get();
};

/// While it lives, what is written to the standard error stream goes here.
class CapturedLog {
 public:
  CapturedLog() : before_(std::cerr.rdbuf(log_.rdbuf())) {}
  CapturedLog(CapturedLog const&) = delete;
  CapturedLog& operator=(CapturedLog const&) = delete;
  ~CapturedLog() { std::cerr.rdbuf(before_); }

  std::string Text() const { return log_.str(); }

 private:
  std::ostringstream log_;
  std::streambuf* before_;
};

}  // namespace corvane::fuzz

#endif
