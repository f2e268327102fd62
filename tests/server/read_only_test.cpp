#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "tests/support/live.h"
#include "tests/support/tally.h"

using corvane::ErrorKind;
using corvane::test::ConnectionId;
using corvane::test::Item;
using corvane::test::ItemTest;
using corvane::test::Observer;
using corvane::test::Parameters;
using corvane::test::Session;
using corvane::test::Tally;

// A server that has been made read-only, as one that is to be replaced by another is.
namespace {

// A user of the schema alone, who may not write to such a server; while it lives, the server may be made one.
class LimitedUser {
 public:
  explicit LimitedUser(std::string const& schema) : other_(schema), name_("limited") {
    other_.Run("CREATE OR REPLACE USER limited@'%' IDENTIFIED BY 'secret', limited@localhost IDENTIFIED BY 'secret'");
    other_.Run("GRANT ALL ON " + schema + ".* TO limited@'%', limited@localhost");
  }
  LimitedUser(LimitedUser const&) = delete;
  LimitedUser& operator=(LimitedUser const&) = delete;
  ~LimitedUser() {
    EXPECT_EQ(other_.Refusal("SET GLOBAL read_only=0"), 0U);
    EXPECT_EQ(other_.Refusal("DROP USER limited@'%', limited@localhost"), 0U);
  }

  Parameters With(Parameters parameters) const {
    parameters["UserName"] = name_;
    parameters["Password"] = "secret";
    return parameters;
  }

 private:
  Observer other_;
  std::string name_;
};

class ReadOnlyServer : public ItemTest {
 protected:
  void CreateTables() override {
    ItemTest::CreateTables();
    Run("INSERT INTO item VALUES (1, 'one')");
  }

  template <class Action>
  static void ExpectRefused(Action action, std::string const& statement) {
    try {
      action();
      ADD_FAILURE() << "written: " << statement;
    } catch (AException const& error) {
      EXPECT_EQ(error.Number(), 102);
      EXPECT_EQ(error.ServerError(), 1290);
      EXPECT_EQ(error.Kind(), ErrorKind::kRefused);
      EXPECT_EQ(error.what(),
                "DB Error 1290 (The MariaDB server is running with the --read-only option so it cannot execute this "
                "statement) in query\n\b\n" +
                    statement);
    }
    Tally("statements that a read-only server refuses", "exception, rows, connection kept, session usable");
  }
};

TEST_F(ReadOnlyServer, RefusesToWriteAndKeepsTheConnection) {
  LimitedUser const user(Schema());
  Session session(user.With(With()));
  std::string const id = ConnectionId(session);
  Run("SET GLOBAL read_only=1");
  ExpectRefused([&] { session.Insert(Item(2, "two")); }, "INSERT INTO `item` (`id`, `name`) VALUES ('2', 'two')");
  ExpectRefused([&] { session.Update(Item(1, "x")); }, "UPDATE `item` SET `name`='x' WHERE `id`='1'");
  ExpectRefused([&] { session.Delete(Item(1, "")); }, "DELETE FROM `item` WHERE `id`='1'");
  ExpectRefused([&] { session.Execute("DELETE FROM item"); }, "DELETE FROM item");
  Item item(1, "");
  ExpectRefused([&] { session.Select(item); }, "SELECT `id`, `name` FROM `item` WHERE `id`='1' FOR UPDATE");
  session.ReadOnly();
  EXPECT_EQ(session.Select(item), 1);
  EXPECT_EQ(item.name, "one");
  Run("SET GLOBAL read_only=0");
  EXPECT_EQ(session.Insert(Item(2, "two")), 1U);
  EXPECT_EQ(ConnectionId(session), id);
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM item"), "2");
}

TEST_F(ReadOnlyServer, RefusesTheCommitOfWhatWasWrittenBefore) {
  LimitedUser const user(Schema());
  Session session(user.With(WithTransactions()));
  session.Insert(Item(2, "two"));
  Run("SET GLOBAL read_only=1");
  ExpectRefused([&] { session.Commit(); }, "COMMIT");
  session.Rollback();
  Run("SET GLOBAL read_only=0");
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM item"), "1");
  session.Insert(Item(2, "two"));
  session.Commit();
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM item"), "2");
}

}  // namespace
