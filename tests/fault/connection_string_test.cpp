// Connection strings, by the parameters that they become: those that are logged, and those that reach the client
// library.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "tests/support/scripted_session.h"

namespace corvane::test {
namespace {

using testing::ElementsAre;

struct Form {
  char const* name;
  char const* text;
  char const* parameters;  // as logged

  friend std::ostream& operator<<(std::ostream& out, Form const& form) { return out << '"' << form.text << '"'; }
};

class ConnectionString : public ScriptedSession, public testing::WithParamInterface<Form> {};

TEST_P(ConnectionString, BecomesParameters) {
  EXPECT_EQ(LogOf([&] { ConstructFrom(GetParam().text, 2); }), std::string("SESSION ADDR CONNECTION PARAMETERS:\n") +
                                                                   GetParam().parameters +
                                                                   "\n"
                                                                   "SESSION ADDR EXECUTE SET AUTOCOMMIT=0\n"
                                                                   "\n"
                                                                   "EXECUTE COMPLETE\n");
}

// No row has a control port above 0: there is nothing to connect to.
Form const kForms[] = {
    {"HostAndPort", "u:p@db/h:3306",
     "  ControlPort=\n  Database=db\n  Host=h\n  Password=p\n  Port=3306\n  SequenceHost=h\n  UserName=u\n"},
    {"SequenceHost", "u:p@db/s/h:3306",
     "  ControlPort=\n  Database=db\n  Host=h\n  Password=p\n  Port=3306\n  SequenceHost=s\n  UserName=u\n"},
    {"ControlPort", "u:p@db/h:3306/-4",
     "  ControlPort=-4\n  Database=db\n  Host=h\n  Password=p\n  Port=3306\n  SequenceHost=h\n  UserName=u\n"},
    {"InFull", "user:pass word@shop/seq.example/db.example:3306/0",
     "  ControlPort=0\n  Database=shop\n  Host=db.example\n  Password=pass word\n  Port=3306\n"
     "  SequenceHost=seq.example\n  UserName=user\n"},
    {"WithoutSlashNoHostIsSet", "u:p@db", "  Database=db\n  Password=p\n  UserName=u\n"},
    {"WithoutSlashColonsBelongToTheDatabase", "u:p@db:3306", "  Database=db:3306\n  Password=p\n  UserName=u\n"},
    {"HostWithoutPort", "u:p@db/h",
     "  ControlPort=\n  Database=db\n  Host=h\n  Password=p\n  Port=\n  SequenceHost=h\n  UserName=u\n"},
    {"BothHostsWithoutPort", "u:p@db/s/h",
     "  ControlPort=\n  Database=db\n  Host=h\n  Password=p\n  Port=\n  SequenceHost=s\n  UserName=u\n"},
    {"NothingBehindTheDatabase", "u:p@db/",
     "  ControlPort=\n  Database=db\n  Host=\n  Password=p\n  Port=\n  SequenceHost=\n  UserName=u\n"},
    {"NothingBehindTheHost",
     "u:p@db/h:", "  ControlPort=\n  Database=db\n  Host=h\n  Password=p\n  Port=\n  SequenceHost=h\n  UserName=u\n"},
    {"NothingBehindThePort", "u:p@db/h:3306/",
     "  ControlPort=\n  Database=db\n  Host=h\n  Password=p\n  Port=3306\n  SequenceHost=h\n  UserName=u\n"},
    {"PortLeftOut", "u:p@db/h:/x",
     "  ControlPort=x\n  Database=db\n  Host=h\n  Password=p\n  Port=\n  SequenceHost=h\n  UserName=u\n"},
    {"SequenceHostOnly", "u:p@db/s/:3306",
     "  ControlPort=\n  Database=db\n  Host=\n  Password=p\n  Port=3306\n  SequenceHost=s\n  UserName=u\n"},
    {"EmptySequenceHost", "u:p@db//h:3306",
     "  ControlPort=\n  Database=db\n  Host=h\n  Password=p\n  Port=3306\n  SequenceHost=\n  UserName=u\n"},
    {"FurtherHostsBelongToTheHost", "u:p@db/s/h/i:3306",
     "  ControlPort=\n  Database=db\n  Host=h/i\n  Password=p\n  Port=3306\n  SequenceHost=s\n  UserName=u\n"},
    {"FurtherColonsBelongToThePort", "u:p@db/h:3306:7/x",
     "  ControlPort=x\n  Database=db\n  Host=h\n  Password=p\n  Port=3306:7\n  SequenceHost=h\n  UserName=u\n"},
    {"FurtherSlashesBelongToTheControlPort", "u:p@db/h:3306/x/y",
     "  ControlPort=x/y\n  Database=db\n  Host=h\n  Password=p\n  Port=3306\n  SequenceHost=h\n  UserName=u\n"},
    {"ColonInThePassword", "u:p:q@db", "  Database=db\n  Password=p:q\n  UserName=u\n"},
    {"SlashInThePassword", "u:p/q@db", "  Database=db\n  Password=p/q\n  UserName=u\n"},
    {"AtSignInTheUserName", "u@v:p@db", "  Database=db\n  Password=p\n  UserName=u@v\n"},
    {"SlashInTheUserName", "u/v:p@db", "  Database=db\n  Password=p\n  UserName=u/v\n"},
    {"AtSignBehindThePassword", "u:p@q@db/h:1",
     "  ControlPort=\n  Database=q@db\n  Host=h\n  Password=p\n  Port=1\n  SequenceHost=h\n  UserName=u\n"},
    {"EmptyUserName", ":p@db", "  Database=db\n  Password=p\n  UserName=\n"},
    {"EmptyPassword", "u:@db", "  Database=db\n  Password=\n  UserName=u\n"},
    {"EmptyDatabase", "u:p@", "  Database=\n  Password=p\n  UserName=u\n"},
    {"EmptyDatabaseWithHost", "u:p@/h:1",
     "  ControlPort=\n  Database=\n  Host=h\n  Password=p\n  Port=1\n  SequenceHost=h\n  UserName=u\n"},
    {"Empty", "", "  Database=\n  Password=\n  UserName=\n"},
    {"WithoutColonAllIsTheUserName", "u", "  Database=\n  Password=\n  UserName=u\n"},
    {"WithoutColonAtSignAndSlashesBelongToTheUserName", "u@db/h", "  Database=\n  Password=\n  UserName=u@db/h\n"},
    {"FirstColonBehindTheHostEndsTheUserName", "u@db/h:3306", "  Database=\n  Password=3306\n  UserName=u@db/h\n"},
    {"WithoutAtSignAllIsThePassword", "u:p", "  Database=\n  Password=p\n  UserName=u\n"},
    {"WithoutAtSignSlashesBelongToThePassword", "u:db/h:3306", "  Database=\n  Password=db/h:3306\n  UserName=u\n"},
    {"ColonAlone", ":", "  Database=\n  Password=\n  UserName=\n"},
    {"AtSignAlone", "@", "  Database=\n  Password=\n  UserName=@\n"},
    {"SlashAlone", "/", "  Database=\n  Password=\n  UserName=/\n"},
    {"DelimitersOnly", ":@//:/",
     "  ControlPort=\n  Database=\n  Host=\n  Password=\n  Port=\n  SequenceHost=\n  UserName=\n"},
    {"DelimitersDoubled",
     "::@@//::", "  ControlPort=\n  Database=@\n  Host=\n  Password=:\n  Port=:\n  SequenceHost=\n  UserName=\n"},
    {"BytesAsTheyStand", "\xC3\xA9:%s\n=@d b", "  Database=d b\n  Password=%s\n=\n  UserName=\xC3\xA9\n"},
};

INSTANTIATE_TEST_SUITE_P(Forms, ConnectionString, testing::ValuesIn(kForms),
                         [](auto const& form) { return form.param.name; });

using ConnectionStringCalls = ScriptedSession;

TEST_F(ConnectionStringCalls, ReachBothDatabaseConnections) {
  ConstructFrom("u:p@db/s/h:3306");
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("1 init", "1 connect h u p db 3306", "1 query SET AUTOCOMMIT=0",
                                                  "2 init", "2 connect s u p db 0"));
}

TEST_F(ConnectionStringCalls, UseTheOneHostForBothDatabaseConnections) {
  ConstructFrom("u:p@db/h:3306");
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("1 init", "1 connect h u p db 3306", "1 query SET AUTOCOMMIT=0",
                                                  "2 init", "2 connect h u p db 0"));
}

TEST_F(ConnectionStringCalls, HaveNoHostAndPortZeroWithoutASlash) {
  ConstructFrom("u:p@db");
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("1 init", "1 connect '' u p db 0", "1 query SET AUTOCOMMIT=0",
                                                  "2 init", "2 connect '' u p db 0"));
}

TEST_F(ConnectionStringCalls, HaveNothingAtAllFromANullText) {
  ConstructFrom(Str());
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("1 init", "1 connect '' '' '' '' 0", "1 query SET AUTOCOMMIT=0",
                                                  "2 init", "2 connect '' '' '' '' 0"));
}

TEST_F(ConnectionStringCalls, ReconnectAfterALoss) {
  ASSession& session = ConstructFrom("u:p@db/h:3306");
  client.ForgetCalls();
  client.FailQuery(2013, "lost").Matching("SELECT 1");
  EXPECT_EQ(ThrownBy([&] { session.Execute("SELECT 1"); }), (Thrown{102, "DB Error 0 () in query\n\b\nSELECT 1"}));
  EXPECT_THAT(client.CallsByHandle(),
              ElementsAre("1 query SELECT 1", "2 close", "1 close", "3 init", "3 connect h u p db 3306",
                          "3 query SET AUTOCOMMIT=0", "4 init", "4 connect h u p db 0"));
}

TEST_F(ConnectionStringCalls, AddTheKeysThatTheyLookUpInVain) {
  ASSession* session = nullptr;
  LogOf([&] { session = &ConstructFrom("u:p@db", 2); });
  EXPECT_EQ(LogOf([&] { session->Connect(false); }),
            "SESSION ADDR CONNECTION PARAMETERS:\n"
            "  AutoCommit=\n"
            "  ControlPort=\n"
            "  Database=db\n"
            "  EmulateSequences=\n"
            "  Host=\n"
            "  Password=p\n"
            "  Port=\n"
            "  SequenceHost=\n"
            "  UserName=u\n"
            "\n"
            "SESSION ADDR EXECUTE SET AUTOCOMMIT=0\n"
            "\n"
            "EXECUTE COMPLETE\n");
}

TEST_F(ConnectionStringCalls, RefusedLeavesNoHandleBehind) {
  client.FailConnect(1045, "denied").Matching("h u p db 3306");
  EXPECT_EQ(ThrownBy([&] { ConstructFrom("u:p@db/h:3306"); }),
            (Thrown{0, "mysql_real_connect failed\n Error 1045 (denied)\n"}));
  EXPECT_EQ(client.OpenHandles(), 0U);
}

}  // namespace
}  // namespace corvane::test
