#ifndef CORVANE_TESTS_LINK_SITE_H
#define CORVANE_TESTS_LINK_SITE_H

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "tests/link/conversation.h"
#include "tests/link/exchanges.h"
#include "tests/support/fault_proxy.h"
#include "tests/support/live.h"

namespace corvane::test {

/// What happened to an exchange over a link.
struct Report {
  Outcome outcome = Outcome::kDone;
  std::string message;  // of the exception, if there was one
  corvane::ErrorKind kind = corvane::ErrorKind::kOther;
  bool constructed = false;                    // the session
  bool recovered = true;                       // it could be used afterwards
  std::string wrong;                           // what was wrong in the values; empty as a rule
  std::string state;                           // of the tables when all connections had ended
  int sleeps = 0;                              // of all sites
  std::chrono::steady_clock::duration took{};  // up to the outcome
};

/// A proxy in front of the server, and a schema with the tables of the exchanges. Each belongs to one thread at a time.
class Site {
 public:
  explicit Site(std::string schema);
  Site(Site const&) = delete;
  Site& operator=(Site const&) = delete;
  ~Site();

  FaultProxy& Proxy() { return proxy_; }
  Observer& Other() { return observer_; }
  /// Parameters of a session that goes through the proxy.
  Parameters Through(Mode mode, Parameters changes = {}) const;

  /// What is said when a session is made and does the exchange, and nothing goes wrong.
  Conversation Listen(Exchange const& exchange, Mode mode);
  /// Makes a session and does the exchange while its connections suffer the faults, and looks what there is afterwards.
  Report Do(Exchange const& exchange, Mode mode, std::vector<Fault> const& faults, bool repeated,
            Parameters const& changes = {});

 private:
  void Restore();
  bool ConnectionsEnd();
  bool Dropped();
  static bool Recovers(ASSession& session, Mode mode);

  std::string schema_;
  Observer observer_;
  FaultProxy proxy_;
  std::string state_;  // of the tables, as last seen; empty when that is not known
};

/// The fixture of tests of a link. Without a server they are skipped.
class LinkTest : public LiveTest {
 protected:
  /// A site of its own for each number, up to 89; their schemas' names are of one length, so that all say the same.
  std::unique_ptr<Site> MakeSite(int number = 0) const;
  /// Compares, and counts.
  static void Check(Report const& report, Expected const& expected);
};

}  // namespace corvane::test

#endif
