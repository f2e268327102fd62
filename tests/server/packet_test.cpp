#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "tests/support/live.h"
#include "tests/support/tally.h"
#include "tests/support/watchdog.h"

using corvane::ErrorKind;
using corvane::test::Failure;
using corvane::test::FailureOf;
using corvane::test::FetchedValue;
using corvane::test::Field;
using corvane::test::LiveTest;
using corvane::test::Observer;
using corvane::test::Session;
using corvane::test::Tally;
using corvane::test::Watchdog;

// Statements and values about as large as the server's max_allowed_packet.
namespace {

constexpr int kPacket = 65536;
// A statement travels behind one byte of command, and the whole has to be less than the packet.
constexpr int kLongest = kPacket - 2;
constexpr auto kTooLong = {kLongest + 1, 2 * kPacket, 100 * kPacket};

struct Text : ASDomain {
  static constexpr char const* kTable = "CREATE TABLE text (id INT PRIMARY KEY, t LONGTEXT)";

  ASInt id;
  ASVStr text;
  ASAttribute idColumn{"id", "Id", 0, corvane::kKey};
  ASAttribute textColumn{"t"};

  Text(int number, int length) : ASDomain("text", "Text"), text(static_cast<unsigned>(length)) {
    Add(idColumn, id).Add(textColumn, text);
    id = number;
    text = std::string(static_cast<std::size_t>(length), 'x').c_str();
  }
  Text(Text const&) = delete;
  Text& operator=(Text const&) = delete;
};

// While it lives, new connections have that limit.
class SmallPackets {
 public:
  explicit SmallPackets(std::string const& schema) : other_(schema) {
    before_ = other_.Value("SELECT @@GLOBAL.max_allowed_packet").value();
    other_.Run("SET GLOBAL max_allowed_packet=" + std::to_string(kPacket));
  }
  SmallPackets(SmallPackets const&) = delete;
  SmallPackets& operator=(SmallPackets const&) = delete;
  ~SmallPackets() { EXPECT_EQ(other_.Refusal("SET GLOBAL max_allowed_packet=" + before_), 0U); }

 private:
  Observer other_;
  std::string before_;
};

class Packet : public LiveTest {
 protected:
  void CreateTables() override { Run(Text::kTable); }

  // How long a text is whose INSERT has that length.
  static int TextFor(ASSession& session, int statement) {
    return statement - static_cast<int>(session.InsertQuery(Text(1, 0), 0).length());
  }
  static std::string QueryOf(int length) {
    std::string text = "SELECT LENGTH('')";
    text.insert(text.size() - 2, std::string(static_cast<std::size_t>(length) - text.size(), 'x'));
    return text;
  }

  // The server says why before it drops the connection, and that is read, or the loss is noticed first.
  template <class Action>
  static void ExpectTooLarge(Action action, Failure const& lost, ErrorKind whenLost) {
    try {
      action();
      ADD_FAILURE() << "accepted";
    } catch (AException const& error) {
      bool const isSaid = error.ServerError() == 1153;
      EXPECT_EQ(error.Number(), isSaid ? 102 : lost.number);
      EXPECT_EQ(error.Kind(), isSaid ? ErrorKind::kRefused : whenLost);
      std::string const begin =
          isSaid ? "DB Error 1153 (Got a packet bigger than 'max_allowed_packet' bytes) in query\n\b\n" : lost.message;
      EXPECT_EQ(std::string(error.what()).substr(0, begin.size()), begin);
      Tally(isSaid ? "statements above max_allowed_packet: refused" : "statements above max_allowed_packet: lost",
            "exception, rows, session usable");
    }
  }
  static inline Failure const kLost{103, "Database connection lost"};
  static inline Failure const kDied{102, "DB Error 0 () in query\n\b\n"};

 private:
  Watchdog const watchdog_{60, "a large statement"};
};

TEST_F(Packet, RecordAtTheLimitIsInserted) {
  SmallPackets const small(Schema());
  Session session(With());
  Text const text(1, TextFor(session, kLongest));
  EXPECT_EQ(session.InsertQuery(text, 0).length(), kLongest);
  EXPECT_EQ(session.Insert(text), 1U);
  EXPECT_EQ(Stored("SELECT LENGTH(t) FROM text"), std::to_string(TextFor(session, kLongest)));
  Tally("statements at max_allowed_packet", "rows, values");
}

TEST_F(Packet, StatementAtTheLimitIsExecuted) {
  SmallPackets const small(Schema());
  Session session(With());
  EXPECT_EQ(FetchedValue(session, QueryOf(kLongest)), std::to_string(kLongest - 17));
  Tally("statements at max_allowed_packet", "rows, values");
}

TEST_F(Packet, RecordAboveTheLimitIsNotInsertedWithoutReconnect) {
  SmallPackets const small(Schema());
  Session session(With({{"AutoReconnect", "off"}}));
  for (int const length : kTooLong) {
    SCOPED_TRACE(length);
    Text const text(1, TextFor(session, length));
    ExpectTooLarge([&] { session.Insert(text); }, kLost, ErrorKind::kOutcomeUnknown);
    session.Connect(false);
    EXPECT_EQ(FetchedValue(session, "SELECT COUNT(*) FROM text"), "0");
  }
}

TEST_F(Packet, RecordAboveTheLimitEndsTheTransaction) {
  SmallPackets const small(Schema());
  Session session(WithTransactions());
  for (int const length : kTooLong) {
    SCOPED_TRACE(length);
    Text const text(1, TextFor(session, length));
    session.Insert(Text(2, 10));
    ExpectTooLarge([&] { session.Insert(text); }, kDied, ErrorKind::kConnectionLost);
    // When the server has said why, the loss is still to be told.
    EXPECT_LE(FailureOf([&] { session.Execute("DO 0"); }).number, 102);
    EXPECT_EQ(FetchedValue(session, "SELECT COUNT(*) FROM text"), "0");
    session.Commit();
  }
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM text"), "0");
}

TEST_F(Packet, StatementAboveTheLimitIsTriedAsOftenAsTheLimitOfReconnectionsSays) {
  SmallPackets const small(Schema());
  Session session(With({{"RetryLimit", "3"}}));
  for (int const length : kTooLong) {
    SCOPED_TRACE(length);
    ExpectTooLarge([&] { session.Execute(QueryOf(length)); }, kLost, ErrorKind::kConnectionLost);
    EXPECT_EQ(FetchedValue(session, "SELECT 7"), "7");
  }
}

TEST_F(Packet, ValueAtTheLimitIsRead) {
  SmallPackets const small(Schema());
  Session session(With());
  EXPECT_EQ(FetchedValue(session, "SELECT REPEAT('x', 65536)"), std::string(65536, 'x'));
  Tally("values at or above max_allowed_packet", "value, session usable");
}

// The server does not compute such a value.
TEST_F(Packet, ComputedValueAboveTheLimitIsNull) {
  SmallPackets const small(Schema());
  Session session(With());
  EXPECT_EQ(FetchedValue(session, "SELECT REPEAT('x', 65537)"), Field());
  EXPECT_EQ(FetchedValue(session, "SELECT 7"), "7");
  Tally("values at or above max_allowed_packet", "value, session usable");
}

TEST_F(Packet, StoredValueAboveTheLimitIsRead) {
  Run("INSERT INTO text VALUES (1, REPEAT('x', 3000000))");
  SmallPackets const small(Schema());
  Session session(With());
  Text text(1, 3000000);
  text.text = "";
  EXPECT_EQ(session.Select(text), 1);
  EXPECT_TRUE(text.text.ToString() == std::string(3000000, 'x'));
  EXPECT_EQ(FetchedValue(session, "SELECT 7"), "7");
  Tally("values at or above max_allowed_packet", "value, session usable");
}

}  // namespace
