// The parameters beside those of a connection string: what each makes the session do, and values that it refuses.

#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <memory>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "corvane/corvane.h"
#include "tests/support/scripted_session.h"

namespace corvane::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

// A file that can be read, whatever it says.
constexpr char const* kFile = "/proc/self/status";

class SessionOptions : public ScriptedSession {
 protected:
  /// The calls of a construction.
  std::vector<std::string> CallsOf(Parameters const& parameters) {
    Construct(parameters);
    return client.Calls();
  }

  Thrown Refusal(Parameters const& parameters) {
    return ThrownBy([&] { Construct(parameters); });
  }
};

TEST_F(SessionOptions, WithoutThemNoOptionIsSet) {
  EXPECT_THAT(CallsOf({{"Host", "h"}, {"UserName", "u"}}),
              ElementsAre("init", "connect h u '' '' 0", "query SET AUTOCOMMIT=0"));
}

TEST_F(SessionOptions, TimeoutsAreSetOnBothConnections) {
  client.Reset();
  Construct({{"ConnectTimeout", "3"}, {"ReadTimeout", "30"}, {"WriteTimeout", "20"}, {"EmulateSequences", "yes"}});
  EXPECT_THAT(
      client.CallsByHandle(),
      ElementsAre("1 init", "1 option connect_timeout 3", "1 option read_timeout 30", "1 option write_timeout 20",
                  "1 connect '' '' '' '' 0", "1 query SET AUTOCOMMIT=0", "2 init", "2 option connect_timeout 3",
                  "2 option read_timeout 30", "2 option write_timeout 20", "2 connect '' '' '' '' 0"));
}

// Otherwise a server that accepts the connection and says nothing would be waited for without end.
TEST_F(SessionOptions, ReadTimeoutHoldsWhileConnectingToo) {
  EXPECT_THAT(CallsOf({{"ReadTimeout", "7"}}), Contains("option connect_timeout 7"));
  client.ForgetCalls();
  EXPECT_THAT(CallsOf({{"ReadTimeout", "7"}, {"ConnectTimeout", "3"}}), Contains("option connect_timeout 3"));
}

TEST_F(SessionOptions, ATimeoutOfZeroIsNoLimit) {
  EXPECT_THAT(CallsOf({{"ConnectTimeout", "0"}, {"ReadTimeout", "0"}, {"WriteTimeout", "0"}, {"ControlTimeout", "0"}}),
              ElementsAre("init", "connect '' '' '' '' 0", "query SET AUTOCOMMIT=0"));
}

TEST_F(SessionOptions, TheyAreSetAgainOnAReconnection) {
  ASSession& session = Ready({{"ReadTimeout", "7"}, {"AutoCommit", "on"}});
  client.FailQuery(2013, "lost").Matching("SELECT 1");
  session.Execute("SELECT 1");
  EXPECT_THAT(client.Calls(),
              ElementsAre("query SELECT 1", "close", "init", "option connect_timeout 7", "option read_timeout 7",
                          "connect '' '' '' '' 0", "query SET AUTOCOMMIT=1", "query SELECT 1"));
}

TEST_F(SessionOptions, CharsetIsGivenToTheClientLibraryInLowerCase) {
  EXPECT_THAT(CallsOf({{"Charset", "UTF8MB4"}}), Contains("option charset utf8mb4"));
}

TEST_F(SessionOptions, SocketIsUsedWhateverTheHost) {
  EXPECT_THAT(CallsOf({{"Host", "db1"}, {"Socket", "/run/s"}}), Contains("connect localhost '' '' '' 0 socket /run/s"));
}

TEST_F(SessionOptions, TheSequenceConnectionUsesTheSocketWhereItsHostIsThatOfTheSession) {
  for (char const* const host : {"", "localhost", "db1"}) {
    client.Reset();
    Construct({{"Host", "db1"}, {"SequenceHost", host}, {"Socket", "/run/s"}, {"EmulateSequences", "yes"}});
    EXPECT_THAT(client.CallsByHandle(), Contains("2 connect localhost '' '' '' 0 socket /run/s")) << host;
  }
  client.Reset();
  Construct({{"Host", "db1"}, {"SequenceHost", "db2"}, {"Socket", "/run/s"}, {"EmulateSequences", "yes"}});
  EXPECT_THAT(client.CallsByHandle(), Contains("2 connect db2 '' '' '' 0"));
}

TEST_F(SessionOptions, SequencePortTakesThePlaceOfZero) {
  Construct({{"Port", "3306"}, {"SequencePort", "3307"}, {"EmulateSequences", "yes"}});
  EXPECT_THAT(client.CallsByHandle(), Contains("2 connect '' '' '' '' 3307"));
}

struct TlsRow {
  std::string mode;
  std::vector<std::string> calls;
  friend std::ostream& operator<<(std::ostream& out, TlsRow const& row) { return out << row.mode; }
};

class Tls : public SessionOptions, public testing::WithParamInterface<TlsRow> {};

TEST_P(Tls, ModeAndFilesGoToTheClientLibrary) {
  client.SetEncrypted(true);
  Construct({{"SslMode", GetParam().mode}, {"SslCa", kFile}, {"SslCert", kFile}, {"SslKey", kFile}});
  std::vector<std::string> expected = {"init"};
  expected.insert(expected.end(), GetParam().calls.begin(), GetParam().calls.end());
  expected.insert(expected.end(), {"connect '' '' '' '' 0", "query SET AUTOCOMMIT=0"});
  EXPECT_EQ(client.Calls(), expected);
}

std::vector<std::string> WithFiles(char const* enforce, char const* verify) {
  std::string const file = kFile;
  return {std::string("option ssl_enforce ") + enforce, std::string("option ssl_verify ") + verify,
          "option ssl_ca " + file, "option ssl_cert " + file, "option ssl_key " + file};
}

INSTANTIATE_TEST_SUITE_P(, Tls,
                         testing::Values(TlsRow{"disabled", {"option ssl_enforce 0", "option ssl_verify 0"}},
                                         TlsRow{"preferred", WithFiles("1", "0")},
                                         TlsRow{"required", WithFiles("1", "0")},
                                         TlsRow{"verify-ca", WithFiles("1", "0")},
                                         TlsRow{"Verify-Identity", WithFiles("1", "1")}));

constexpr char const* kNoTls =
    "mysql_real_connect failed\n Error 2026 (TLS is required, but the server does not offer it)\n";

TEST_F(SessionOptions, AConnectionThatHasNotComeToBeEncryptedIsRefusedWhereTlsIsRequired) {
  for (char const* const mode : {"required", "verify-ca", "verify-identity"}) {
    client.Reset();
    EXPECT_EQ(Refusal({{"SslMode", mode}, {"SslCa", kFile}}), (Thrown{0, kNoTls})) << mode;
    EXPECT_THAT(client.Calls(), Not(Contains(HasSubstr("query")))) << mode;
    EXPECT_EQ(client.OpenHandles(), 0U) << mode;
  }
}

TEST_F(SessionOptions, AConnectionWithoutTlsIsUsedWhereItIsOnlyPreferred) {
  EXPECT_THAT(CallsOf({{"SslMode", "preferred"}}), Contains("query SET AUTOCOMMIT=0"));
}

TEST_F(SessionOptions, ASequenceConnectionWithoutTlsIsRefusedAsWell) {
  client.SetEncrypted(true);
  ASSession& session = Ready({{"SslMode", "required"}, {"EmulateSequences", "yes"}});
  client.SetEncrypted(false);
  client.FailQuery(2013, "lost").Matching("SELECT 1");
  EXPECT_EQ(ThrownBy([&] { session.ExecuteSeq("SELECT 1"); }), (Thrown{0, kNoTls}));
  EXPECT_EQ(ThrownBy([&] { session.ExecuteSeq("SELECT 1"); }), (Thrown{0, "Sequence connection is not established. "}));
}

TEST_F(SessionOptions, LogSecretsOffHidesThePassword) {
  std::string const log = LogOf([&] {
    Construct({{"Password", "secret"}, {"UserName", "u"}, {"LogSecrets", "off"}}, 2);
  });
  EXPECT_THAT(log, HasSubstr("  LogSecrets=off\n  Password=***\n  UserName=u\n"));
  EXPECT_THAT(log, Not(HasSubstr("secret")));
}

TEST_F(SessionOptions, LogSecretsOnShowsItAsWithout) {
  EXPECT_THAT(LogOf([&] {
                Construct({{"Password", "secret"}, {"LogSecrets", "ON"}}, 2);
              }),
              HasSubstr("  Password=secret\n"));
}

TEST_F(SessionOptions, CloseOnDestroyClosesBothConnections) {
  Ready({{"CloseOnDestroy", "on"}, {"EmulateSequences", "yes"}});
  Destroy();
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("2 close", "1 close"));
  EXPECT_EQ(client.OpenHandles(), 0U);
}

TEST_F(SessionOptions, CloseOnDestroyOffLeavesThemOpen) {
  Ready({{"CloseOnDestroy", "off"}});
  Destroy();
  EXPECT_THAT(client.Calls(), ElementsAre());
  EXPECT_EQ(client.OpenHandles(), 1U);
}

// A listening socket that accepts connections, at most two, and says nothing.
class Silent {
 public:
  Silent() : handle_(socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const any = reinterpret_cast<sockaddr*>(&address);
    EXPECT_EQ(bind(handle_, any, size), 0);
    EXPECT_EQ(listen(handle_, 1), 0);
    EXPECT_EQ(getsockname(handle_, any, &size), 0);
    port_ = std::to_string(ntohs(address.sin_port));
  }
  Silent(Silent const&) = delete;
  Silent& operator=(Silent const&) = delete;
  ~Silent() { close(handle_); }
  std::string const& Port() const { return port_; }

 private:
  int handle_;
  std::string port_;
};

TEST_F(SessionOptions, ControlTimeoutEndsTheWaitForTheByte) {
  Silent const silent;
  auto const begin = std::chrono::steady_clock::now();
  Thrown const thrown = Refusal({{"Host", "127.0.0.1"}, {"ControlPort", silent.Port()}, {"ControlTimeout", "1"}});
  auto const took = std::chrono::steady_clock::now() - begin;
  EXPECT_EQ(thrown,
            (Thrown{0, "Failed to create a control connection to 127.0.0.1:" + silent.Port() + "\nMuxer timeout.\n"}));
  EXPECT_GE(took, std::chrono::seconds(1));
  EXPECT_LT(took, std::chrono::seconds(5));
}

TEST_F(SessionOptions, ConnectTimeoutHoldsForTheControlConnection) {
  Silent const silent;
  std::vector<std::unique_ptr<IO::TcpSocket>> waiting;  // fill the queue of connections to be accepted
  for (int i = 0; i < 2; ++i) {
    waiting.push_back(std::make_unique<IO::TcpSocket>("127.0.0.1", std::stoi(silent.Port()), 1));
  }
  std::string const log = LogOf([&] {
    EXPECT_EQ(Refusal({{"Host", "127.0.0.1"}, {"ControlPort", silent.Port()}, {"ConnectTimeout", "1"}}),
              (Thrown{0, "Failed to create a control connection to 127.0.0.1:" + silent.Port() +
                             "\nConnection to 127.0.0.1:" + silent.Port() + " failed: Connection timed out\n"}));
  });
}

struct BadRow {
  std::string key;
  std::string value;
  std::string expected;
  friend std::ostream& operator<<(std::ostream& out, BadRow const& row) {
    return out << row.key << "='" << row.value << '\'';
  }
};

class BadValue : public SessionOptions, public testing::WithParamInterface<BadRow> {};

TEST_P(BadValue, IsAnErrorAtConstructionThatNamesKeyAndValue) {
  BadRow const& row = GetParam();
  EXPECT_EQ(Refusal({{row.key, row.value}}),
            (Thrown{0, "Session parameter " + row.key + " cannot be '" + row.value + "': " + row.expected + ". "}));
  EXPECT_THAT(client.Calls(), ElementsAre());
}

std::vector<BadRow> BadValues() {
  std::vector<BadRow> rows;
  for (char const* const key : {"ConnectTimeout", "ReadTimeout", "WriteTimeout", "ControlTimeout"}) {
    for (char const* const value : {"", "x", "-1", "+1", " 1", "1 ", "1.5", "1s", "0x10", "2147484", "99999999999"}) {
      rows.push_back({key, value, "seconds are expected, 0 to 2147483"});
    }
  }
  for (char const* const value : {"", "65536", "-1", "port"}) {
    rows.push_back({"SequencePort", value, "a port is expected, 0 to 65535"});
  }
  for (char const* const value : {"", "1000001", "-1", "many"}) {
    rows.push_back({"RetryLimit", value, "a number is expected, 0 to 1000000"});
  }
  for (char const* const key : {"RetryWrites", "SafeMode", "CloseOnDestroy", "LogSecrets"}) {
    for (char const* const value : {"", "of", "true", "1", "yes", "on ", "onn"}) {
      rows.push_back({key, value, "on or off is expected"});
    }
  }
  for (char const* const value : {"gbk", "GBK", "big5", "sjis", "cp932", "gb18030", "Big5"}) {
    rows.push_back({"Charset", value, "a backslash can be part of a character there, and escaping would be unsafe"});
  }
  for (char const* const value : {"", "utf9", "utf-8", "utf8mb4 ", "utf16", "ucs2", "utf32", "gbk'"}) {
    rows.push_back({"Charset", value, "no such character set for connections"});
  }
  rows.push_back({"Socket", "", "a path of 1 to 107 bytes is expected"});
  rows.push_back({"Socket", std::string(108, 'a'), "a path of 1 to 107 bytes is expected"});
  for (char const* const value : {"", "on", "require", "verify_ca", "verify-identity "}) {
    rows.push_back({"SslMode", value, "disabled, preferred, required, verify-ca or verify-identity is expected"});
  }
  for (char const* const key : {"SslCa", "SslCert", "SslKey"}) {
    rows.push_back({key, kFile, "it needs an SslMode beside it"});
  }
  rows.push_back({"SslMode", "verify-ca", "it needs an SslCa beside it"});
  return rows;
}

INSTANTIATE_TEST_SUITE_P(, BadValue, testing::ValuesIn(BadValues()));

TEST_F(SessionOptions, TheGreatestNumbersAreTaken) {
  EXPECT_THAT(CallsOf({{"ReadTimeout", "2147483"}, {"SequencePort", "65535"}, {"RetryLimit", "1000000"}}),
              Contains("option read_timeout 2147483"));
}

TEST_F(SessionOptions, AFileThatCannotBeReadIsRefused) {
  for (char const* const key : {"SslCa", "SslCert", "SslKey"}) {
    for (std::string const& path : {std::string(), std::string("/nowhere/ca.pem"), std::string("/proc\0x", 7)}) {
      EXPECT_EQ(Refusal({{"SslMode", "required"}, {key, path}}),
                (Thrown{0, std::string("Session parameter ") + key + " cannot be '" + path.c_str() +
                               "': no file that can be read. "}));
    }
  }
}

TEST_F(SessionOptions, KeysAreCaseSensitive) {
  EXPECT_THAT(CallsOf({{"readtimeout", "x"}, {"SSLMODE", "x"}}),
              ElementsAre("init", "connect '' '' '' '' 0", "query SET AUTOCOMMIT=0"));
}

class SafeMode : public ScriptedSession {
 protected:
  static constexpr char const* kQuery = "SELECT @@SESSION.sql_mode, @@SESSION.character_set_client";

  void Answer(char const* mode, char const* charset) { client.AnswerQuery(2, {{mode, charset}}).Matching(kQuery); }
  ASSession& Safe(Parameters parameters = {}) {
    Answer("STRICT_TRANS_TABLES", "utf8mb4");
    parameters["SafeMode"] = "on";
    return Ready(std::move(parameters));
  }
};

TEST_F(SafeMode, LooksAtTheServerBeforeAnythingElse) {
  Answer("STRICT_TRANS_TABLES,NO_ENGINE_SUBSTITUTION", "utf8mb4");
  Construct({{"SafeMode", "on"}});
  EXPECT_THAT(client.Calls(), ElementsAre("init", "connect '' '' '' '' 0", std::string("query ") + kQuery,
                                          "store_result", "free_result", "query SET AUTOCOMMIT=0"));
}

TEST_F(SafeMode, IsOffUnlessSwitchedOn) {
  EXPECT_FALSE(Ready().IsSafeMode());
  EXPECT_FALSE(Ready({{"SafeMode", "off"}}).IsSafeMode());
  EXPECT_TRUE(Safe().IsSafeMode());
}

TEST_F(SafeMode, RefusesAServerThatTakesBackslashesLiterally) {
  Answer("ANSI,NO_BACKSLASH_ESCAPES", "utf8mb4");
  EXPECT_EQ(ThrownBy([&] {
              Construct({{"SafeMode", "on"}});
            }),
            (Thrown{0, "SafeMode refuses the sql_mode NO_BACKSLASH_ESCAPES. "}));
  EXPECT_EQ(client.OpenHandles(), 0U);
}

TEST_F(SafeMode, RefusesAnUnsafeCharacterSet) {
  for (std::string const charset : {"gbk", "big5", "sjis", "cp932", "gb18030"}) {
    Answer("", charset.c_str());
    EXPECT_EQ(ThrownBy([&] {
                Construct({{"SafeMode", "on"}});
              }),
              (Thrown{0, "SafeMode refuses the character set " + charset + ". "}));
  }
}

TEST_F(SafeMode, RefusesWhatItCannotRead) {
  client.FailQuery(1227, "denied").Matching(kQuery);
  EXPECT_EQ(ThrownBy([&] {
              Construct({{"SafeMode", "on"}});
            }),
            (Thrown{0, "SafeMode cannot read the server's sql_mode\n Error 1227 (denied)\n"}));
  client.AnswerQuery(2, {}).Matching(kQuery);
  EXPECT_EQ(ThrownBy([&] {
              Construct({{"SafeMode", "on"}});
            }),
            (Thrown{0, "SafeMode cannot read the server's sql_mode\n Error 0 ()\n"}));
}

TEST_F(SafeMode, LooksAgainAfterAReconnectionAndUsesNoUnsafeConnection) {
  ASSession& session = Safe({{"AutoCommit", "on"}});
  client.FailQuery(2006, "gone").Matching("DELETE");
  Answer("NO_BACKSLASH_ESCAPES", "utf8mb4");
  EXPECT_EQ(ThrownBy([&] { session.Execute("DELETE FROM t"); }),
            (Thrown{0, "SafeMode refuses the sql_mode NO_BACKSLASH_ESCAPES. "}));
  EXPECT_EQ(client.OpenHandles(), 0U);
}

TEST_F(SafeMode, LooksAtTheSequenceConnectionToo) {
  Answer("", "utf8mb4");
  Answer("NO_BACKSLASH_ESCAPES", "utf8mb4");
  EXPECT_EQ(ThrownBy([&] {
              Construct({{"SafeMode", "on"}, {"EmulateSequences", "yes"}});
            }),
            (Thrown{0, "SafeMode refuses the sql_mode NO_BACKSLASH_ESCAPES. "}));
  EXPECT_EQ(client.OpenHandles(), 0U);
}

struct Keyed : ASDomain {
  Keyed() : ASDomain("t", "T") { Add(idColumn, id).Add(valueColumn, value); }
  Keyed(Keyed const&) = delete;
  Keyed& operator=(Keyed const&) = delete;
  ASInt id;
  ASInt value;
  ASAttribute idColumn{"id", "", 0, corvane::kKey};
  ASAttribute valueColumn{"v"};
};

struct Keyless : ASDomain {
  Keyless() : ASDomain("t", "T") { Add(valueColumn, value); }
  Keyless(Keyless const&) = delete;
  Keyless& operator=(Keyless const&) = delete;
  ASInt value;
  ASAttribute valueColumn{"v"};
};

struct KeylessCache : ASCache {
  explicit KeylessCache(ASSession* session) : ASDomain("t", "T"), ASCache(session, 1) { Add(valueColumn, value); }
  ASInt value;
  ASAttribute valueColumn{"v"};
};

Thrown const kWithoutCondition{0, "SafeMode refuses a statement without a condition. "};

TEST_F(SafeMode, UpdaterRefusesToChangeEveryRow) {
  ASSession& session = Safe();
  Keyed t;
  ASUpdater const updater(t.valueColumn.Set(t.valueColumn + 1));
  EXPECT_EQ(ThrownBy([&] { updater.Execute(&session); }), kWithoutCondition);
  EXPECT_THAT(client.Calls(), ElementsAre());
}

TEST_F(SafeMode, UpdaterWithAConditionRuns) {
  ASSession& session = Safe();
  Keyed t;
  ASUpdater updater(t.valueColumn.Set(t.valueColumn + 1));
  updater.Where(t.idColumn == 1);
  updater.Execute(&session);
  EXPECT_EQ(client.Calls().size(), 1U);
}

TEST_F(SafeMode, DeleterRefusesToDeleteEveryRow) {
  ASSession& session = Safe();
  Keyed t;
  ASDeleter const deleter(t);
  EXPECT_EQ(ThrownBy([&] { deleter.Execute(&session); }), kWithoutCondition);
  EXPECT_THAT(client.Calls(), ElementsAre());
}

// Such a condition is dropped, and every row would go.
TEST_F(SafeMode, DeleterRefusesAConditionThatNamesNoRecord) {
  ASSession& session = Safe();
  Keyed t;
  ASDeleter deleter(t);
  deleter.Where(!(t.valueColumn == 3));
  EXPECT_EQ(ThrownBy([&] { deleter.Execute(&session); }), kWithoutCondition);
  EXPECT_THAT(client.Calls(), ElementsAre());
}

// What an application's class makes of itself.
struct Careless : ASDeleter {
  using ASDeleter::ASDeleter;
  Str Query() const override { return text; }
  Str& Condition() { return ConditionForUpdate(); }
  Str text = "DELETE FROM t";
};

TEST_F(SafeMode, RefusesAStatementThatDoesNotContainItsCondition) {
  ASSession& session = Safe();
  Keyed t;
  Careless deleter(t);
  deleter.Where(t.idColumn == 1);
  EXPECT_EQ(ThrownBy([&] { deleter.Execute(&session); }), kWithoutCondition);
  EXPECT_THAT(client.Calls(), ElementsAre());
}

TEST_F(SafeMode, RefusesConditionsThatSayNothing) {
  ASSession& session = Safe();
  Keyed t;
  for (char const* const condition : {" ", " ORDER BY v", " START WITH v=1", " WHERE ", " WHERE \t", " WHERE -- x",
                                      " WHERE # x", " WHERE /* x */", "WHERE v=1"}) {
    Careless deleter(t);
    deleter.Condition() << condition;
    deleter.text << condition;
    EXPECT_EQ(ThrownBy([&] { deleter.Execute(&session); }), kWithoutCondition) << condition;
  }
  EXPECT_THAT(client.Calls(), ElementsAre());
}

TEST_F(SafeMode, ASequenceConnectionLostWhileItIsLookedAtIsTriedAgain) {
  Answer("", "utf8mb4");
  client.FailQuery(2013, "lost").Matching(kQuery).After(1);
  ASSession& session = Ready({{"SafeMode", "on"}, {"EmulateSequences", "yes"}});
  Answer("", "utf8mb4");
  session.ExecuteSeq("SELECT 1");
  EXPECT_THAT(client.CallsByHandle(), Contains("4 query SELECT 1")) << "not on the connection that was not looked at";
}

TEST_F(SafeMode, DeleterWithAConditionRuns) {
  ASSession& session = Safe();
  Keyed t;
  ASDeleter deleter(t);
  deleter.Where(t.idColumn == 1);
  deleter.Execute(&session);
  EXPECT_EQ(client.Calls().size(), 1U);
}

TEST_F(SafeMode, RecordsWithoutKeysAreNeitherUpdatedNorDeleted) {
  ASSession& session = Safe();
  Keyless const record;
  EXPECT_EQ(ThrownBy([&] { session.Update(record); }), kWithoutCondition);
  EXPECT_EQ(ThrownBy([&] { session.Delete(record); }), kWithoutCondition);
  EXPECT_THAT(client.Calls(), ElementsAre());
  Keyed const keyed;
  session.Update(keyed);
  session.Delete(keyed);
  EXPECT_EQ(client.Calls().size(), 2U);
}

TEST_F(SafeMode, CachesWithoutKeysAreNeitherPutNorDeleted) {
  ASSession& session = Safe();
  KeylessCache cache(&session);
  cache.value = 5;
  EXPECT_EQ(ThrownBy([&] { cache.Put(); }), kWithoutCondition);
  EXPECT_EQ(ThrownBy([&] { cache.Delete(); }), kWithoutCondition);
  EXPECT_EQ(cache.value, 5);
  EXPECT_THAT(client.Calls(), ElementsAre());
}

}  // namespace
}  // namespace corvane::test
