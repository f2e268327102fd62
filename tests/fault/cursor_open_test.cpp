// Opening a cursor: the calls it makes, the rows it builds, and what becomes of every kind of text.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <ostream>
#include <string>

#include "corvane/corvane.h"
#include "tests/support/scripted_cursor.h"
#include "tests/support/sql.h"

namespace corvane::test {
namespace {

using testing::ElementsAre;

constexpr char const* kNoSession = "There is no session for cursor. ";
constexpr char const* kIncompatible = "Incompatible types for ASCursor::Open(). ";

using CursorOpen = ScriptedCursor;

// ---- the calls

TEST_F(CursorOpen, ExecutesTheQueryTakesTheResultOnceAndFreesIt) {
  Orders o;
  Answer(1, {{"1"}, {"2"}});
  ASCursor cursor(session);
  cursor.Project() << o.idColumn;
  cursor.Limit(2);
  cursor.Open();
  ASSERT_EQ(client.Calls().size(), 3U);
  EXPECT_EQ(Sql(Str(client.Calls()[0]), {{&o, "o"}}), "query SELECT o.id FROM (`orders` o) LIMIT 2");
  EXPECT_EQ(client.Calls()[1], "use_result");
  EXPECT_EQ(client.Calls()[2], "free_result");
}

TEST_F(CursorOpen, DoesNothingOnAnOpenCursor) {
  Column<ASInt> a("a");
  Answer(1, {{"1"}});
  ASCursor cursor(session);
  cursor.Project() << a;
  cursor.Open();
  UU* const row = cursor.GetUURecord(0);
  client.ForgetCalls();
  cursor.Open();
  EXPECT_THAT(client.Calls(), ElementsAre());
  EXPECT_EQ(cursor.GetUURecord(0), row);
}

TEST_F(CursorOpen, IgnoresItsArguments) {
  Column<ASInt> a("a");
  Answer(1, {{"1"}, {"2"}});
  ASCursor cursor(session);
  cursor.Project() << a;
  cursor.Open(1, -3);
  EXPECT_THAT(Statements(), ElementsAre("SELECT a FROM "));
  EXPECT_EQ(cursor.GetAmount(), 2);
}

TEST_F(CursorOpen, LeavesTheCurrentRowWhereItIs) {
  Column<ASInt> a("a");
  Answer(1, {{"1"}, {"2"}, {"3"}});
  Answer(1, {{"4"}, {"5"}, {"6"}});
  ASCursor cursor(session);
  cursor.Project() << a;
  cursor.Fetch(1);
  delete cursor.Detach();
  cursor.Open();
  EXPECT_EQ(cursor.Fetch(), 3);
  EXPECT_EQ(a.value, 6);
}

TEST_F(CursorOpen, LeavesTheValuesAlone) {
  Column<ASInt> a("a");
  a.value = 7;
  Answer(1, {{"1"}});
  ASCursor cursor(session);
  cursor.Project() << a;
  cursor.Open();
  EXPECT_EQ(a.value, 7);
}

TEST_F(CursorOpen, UsesTheSessionAssignedLast) {
  ASSession other({{"EmulateSequences", "no"}}, 0, false);
  client.ForgetCalls();
  Column<ASInt> a("a");
  Answer(1, {});
  ASCursor cursor(session);
  cursor.AssignSession(&other);
  cursor.Project() << a;
  cursor.Open();
  EXPECT_THAT(client.CallsByHandle(), ElementsAre("2 query SELECT a FROM ", "2 use_result", "2 free_result"));
}

TEST_F(CursorOpen, WithoutSessionThrowsWhateverOpensIt) {
  ASDomain record;
  ASCursor cursor(nullptr);
  EXPECT_EQ(ThrownBy([&] { cursor.Open(); }), (Thrown{0, kNoSession}));
  EXPECT_EQ(ThrownBy([&] { cursor.Fetch(); }), (Thrown{0, kNoSession}));
  EXPECT_EQ(ThrownBy([&] { cursor.Fetch(0); }), (Thrown{0, kNoSession}));
  EXPECT_EQ(ThrownBy([&] { cursor.Fetch(record); }), (Thrown{0, kNoSession}));
  EXPECT_EQ(ThrownBy([&] { cursor.FetchSingle(); }), (Thrown{0, kNoSession}));
  EXPECT_EQ(ThrownBy([&] { cursor.GetAmount(); }), (Thrown{0, kNoSession}));
  EXPECT_EQ(ThrownBy([&] { cursor.Reset(); }), (Thrown{0, kNoSession}));
  EXPECT_EQ(cursor.GetUURecord(0), nullptr);
}

// Of two rows one after the other, so that opening a second time would be seen.
template <class Open>
void ExpectOpenedOnce(ScriptedClient& client, ASSession* session, Open open) {
  Column<ASInt> a("a");
  client.AnswerQuery(1, {{"1"}, {"2"}});
  client.ForgetCalls();
  ASCursor cursor(session);
  cursor.Project() << a;
  open(cursor);
  cursor.GetAmount();
  EXPECT_THAT(client.Calls(), ElementsAre("query SELECT a FROM ", "use_result", "free_result"));
}

TEST_F(CursorOpen, HappensOnceWhateverOpensTheCursor) {
  ASDomain empty;
  ExpectOpenedOnce(client, session, [](ASCursor& cursor) { cursor.Open(); });
  ExpectOpenedOnce(client, session, [](ASCursor& cursor) { cursor.Fetch(); });
  ExpectOpenedOnce(client, session, [](ASCursor& cursor) { cursor.Fetch(1); });
  ExpectOpenedOnce(client, session, [&](ASCursor& cursor) { cursor.Fetch(empty); });
  ExpectOpenedOnce(client, session, [](ASCursor& cursor) { cursor.FetchSingle(); });
  ExpectOpenedOnce(client, session, [](ASCursor& cursor) { cursor.GetAmount(); });
  ExpectOpenedOnce(client, session, [](ASCursor& cursor) { cursor.Reset(); });
}

// ---- rows and columns of the result

TEST_F(CursorOpen, CountsTheRows) {
  Column<ASInt> a("a");
  Answer(1, {{"1"}, {std::nullopt}, {"3"}});
  ASCursor cursor(session);
  cursor.Project() << a;
  EXPECT_EQ(cursor.GetAmount(), 3);
}

TEST_F(CursorOpen, OfAnEmptyResultHasNoRows) {
  Column<ASInt> a("a");
  a.value = 7;
  Answer(1, {});
  ASCursor cursor(session);
  cursor.Project() << a;
  cursor.Open();
  client.ForgetCalls();
  EXPECT_EQ(cursor.GetAmount(), 0);
  EXPECT_EQ(cursor.Fetch(), 0);
  EXPECT_EQ(a.value, 7);
  EXPECT_THAT(client.Calls(), ElementsAre());
}

// The result of a raw text is stored: it says how many rows it has.
TEST_F(CursorOpen, CountsTheRowsThatCameWhenMoreWereAnnounced) {
  Answer(1, {{"1"}, {"2"}}).Times(2).AnnouncedRows(3);
  ASCursor cursor(session);
  cursor.Statement("SELECT a");
  EXPECT_EQ(cursor.GetAmount(), 2);
  EXPECT_EQ(cursor.Fetch(2), 0);
}

TEST_F(CursorOpen, TakesTheRowsThatCameWhenFewerWereAnnounced) {
  std::string const second(5000, 'x');
  Answer(1, {{"1"}, {second}}).Times(2).Fields({{"a", MYSQL_TYPE_VAR_STRING, 5000}}).AnnouncedRows(1);
  ASCursor cursor(session);
  cursor.Statement("SELECT a");
  EXPECT_EQ(cursor.GetAmount(), 2);
  EXPECT_EQ(cursor.Fetch(1), 2);
  EXPECT_EQ(cursor.Project().Items().front()->Data()->getstr(), second.c_str());
}

TEST_F(CursorOpen, LeavesFurtherColumnsOfTheResultOut) {
  Column<ASInt> a("a");
  Answer(3, {{"1", "2", std::nullopt}});
  ASCursor cursor(session);
  cursor.Project() << a;
  EXPECT_EQ(cursor.Fetch(), 1);
  EXPECT_EQ(a.value, 1);
}

TEST_F(CursorOpen, OfFewerColumnsThanAreProjectedThrowsAndLeavesTheCursorClosed) {
  Column<ASInt> a("a");
  Column<ASInt> b("b");
  Answer(1, {{"1"}});
  ASCursor cursor(session);
  cursor.Project() << a << b;
  EXPECT_EQ(ThrownBy([&] { cursor.Open(); }), (Thrown{0, "MySQL fetch error. "}));
  EXPECT_EQ(client.UnfreedResults(), 0U);
  EXPECT_EQ(cursor.GetUURecord(0), nullptr);
  Answer(2, {{"1", "2"}});
  EXPECT_EQ(cursor.GetAmount(), 1);
}

TEST_F(CursorOpen, OfFewerColumnsThrowsEvenWithoutRows) {
  Column<ASInt> a("a");
  Column<ASInt> b("b");
  Answer(1, {});
  ASCursor cursor(session);
  cursor.Project() << a << b;
  EXPECT_EQ(ThrownBy([&] { cursor.Open(); }), (Thrown{0, "MySQL fetch error. "}));
}

TEST_F(CursorOpen, WithoutColumnsOnlyCountsTheRows) {
  Answer(2, {{"1", "2"}, {"3", "4"}});
  ASCursor cursor(session);
  EXPECT_EQ(cursor.GetAmount(), 2);
  EXPECT_EQ(cursor.Fetch(), 1);
  EXPECT_EQ(cursor.Fetch(), 2);
  EXPECT_EQ(cursor.Fetch(), 0);
}

TEST_F(CursorOpen, LeavesAColumnWithoutValueOut) {
  Column<ASInt> a("a");
  ASAttribute none("n");
  Column<ASVStr> b("b", 8U);
  Answer(3, {{"1", "2", "xyz"}, {"4", std::nullopt, "uvw"}});
  ASCursor cursor(session);
  cursor.Project() << a << none << b;
  EXPECT_EQ(cursor.Fetch(1), 2);
  EXPECT_EQ(a.value, 4);
  EXPECT_EQ(b.value.getstr(), "uvw");
}

// ---- the layout of a row

TEST_F(CursorOpen, TakesACellForEachColumnAndRoundsItsTextsUpToWholeCells) {
  Column<ASInt> number("i");
  Column<ASTime> time("t");
  Column<ASDouble> real("d");
  Column<ASDCurrency> money("m");
  Column<ASInt64> large("l");
  Column<ASBlob> small("b", std::uint16_t{100});
  Column<ASGeometry> shape("g", std::uint16_t{100});
  Column<ASRealBlob> binary("r", 100U);
  Column<ASGuid> guid("u");
  Column<ASStr> none("s", 0U);
  Column<ASVStr> fits("s", 23U);
  Column<ASVStr> above("s", 24U);
  ASAttribute unbound("n");
  auto const width = [&](auto const&... columns) {
    Row const row(sizeof...(columns), std::nullopt);
    Answer(sizeof...(columns), {row, row});
    ASCursor cursor(session);
    (cursor.Project() << ... << columns);
    cursor.Open();
    return cursor.GetUURecord(1) - cursor.GetUURecord(0);
  };
  EXPECT_EQ(width(number), 1);
  EXPECT_EQ(width(time), 1);
  EXPECT_EQ(width(real), 1);
  EXPECT_EQ(width(money), 1);
  EXPECT_EQ(width(large), 1);
  EXPECT_EQ(width(small), 1);
  EXPECT_EQ(width(shape), 1);
  EXPECT_EQ(width(binary), 1);
  EXPECT_EQ(width(unbound), 1);
  EXPECT_EQ(width(guid), 2);   // 24 + 17
  EXPECT_EQ(width(none), 2);   // 24 + 1
  EXPECT_EQ(width(fits), 2);   // 24 + 24
  EXPECT_EQ(width(above), 3);  // 24 + 25
  EXPECT_EQ(width(number, unbound, real), 3);
  EXPECT_EQ(width(none, guid), 3);          // 48 + 18
  EXPECT_EQ(width(fits, number, fits), 5);  // 72 + 48
}

TEST_F(CursorOpen, HoldsIntegersInTheFirstFourBytes) {
  Column<ASInt> a("a");
  Column<ASTime> b("b");
  Answer(2, {{"-5", "1970-01-02 00:00:01"}, {std::nullopt, std::nullopt}});
  ASCursor cursor(session);
  cursor.Project() << a << b;
  cursor.Open();
  EXPECT_EQ(static_cast<int>(cursor.GetUURecord(0)[0]), -5);
  EXPECT_EQ(Bytes(cursor.GetUURecord(0) + 1, 4), std::string("\x81\x51\x01\x00", 4));
  EXPECT_EQ(static_cast<int>(cursor.GetUURecord(1)[0]), std::numeric_limits<int>::min());
  EXPECT_EQ(Bytes(cursor.GetUURecord(1) + 1, 4), std::string("\0\0\0\x80", 4));
}

TEST_F(CursorOpen, HoldsDoublesInTheFirstEightBytes) {
  Column<ASDouble> a("a");
  Answer(1, {{"1.5"}, {std::nullopt}});
  ASCursor cursor(session);
  cursor.Project() << a;
  cursor.Open();
  EXPECT_EQ(Bytes(cursor.GetUURecord(0), 8), std::string("\0\0\0\0\0\0\xF8\x3F", 8));
  EXPECT_EQ(Bytes(cursor.GetUURecord(1), 8), "\xFF\xFF\xFF\xFF\xFF\xFF\xEF\xFF");
}

TEST_F(CursorOpen, HoldsAmountsOfMoneyAsDoublesWithTheConstantAndTheirMark) {
  Column<ASDCurrency> a("a");
  Answer(1, {{"1.5"}, {std::nullopt}});
  ASCursor cursor(session);
  cursor.Project() << a;
  cursor.Open();
  UU const& present = *cursor.GetUURecord(0);
  UU const& null = *cursor.GetUURecord(1);
  EXPECT_EQ(Bytes(&present, 8), std::string("\0\0\0\0\0\0\xF8\x3F", 8));
  EXPECT_EQ(Bytes(&null, 8), "\xFF\xFF\xFF\xFF\xFF\xFF\xEF\xFF");
  EXPECT_NE(present.extra.constant, nullptr);
  EXPECT_EQ(null.extra.constant, present.extra.constant);
  EXPECT_EQ(Bytes(&present, 20).substr(16), std::string("\2\0\0\0", 4));
  EXPECT_EQ(Bytes(&null, 20).substr(16), std::string("\2\0\0\0", 4));
}

TEST_F(CursorOpen, HoldsInt64sWithANullFlagInByteEight) {
  Column<ASInt64> a("a");
  Answer(1, {{"72623859790382856"}, {std::nullopt}});
  ASCursor cursor(session);
  cursor.Project() << a;
  cursor.Open();
  EXPECT_EQ(Bytes(cursor.GetUURecord(0), 9), std::string("\x08\x07\x06\x05\x04\x03\x02\x01\0", 9));
  EXPECT_EQ(Bytes(cursor.GetUURecord(1), 9).substr(8), "\1");
}

TEST_F(CursorOpen, HoldsTextsInTheRowsAreaAndCountsTheirTerminator) {
  Column<ASStr> a("a", 8U);
  Column<ASVStr> b("b", 8U);
  Answer(2, {{"abc", "de"}, {"", ""}});
  ASCursor cursor(session);
  cursor.Project() << a << b;
  cursor.Open();
  UU* const row = cursor.GetUURecord(0);
  EXPECT_EQ(row[0].value.length, 4U);
  EXPECT_EQ(row[1].value.length, 3U);
  EXPECT_STREQ(row[0].extra.text, "abc");
  EXPECT_STREQ(row[1].extra.text, "de");
  EXPECT_EQ(cursor.GetUURecord(1)[0].value.length, 1U);
  EXPECT_STREQ(cursor.GetUURecord(1)[0].extra.text, "");
  EXPECT_EQ(cursor.GetUURecord(1)[1].value.length, 1U);
}

TEST_F(CursorOpen, HoldsANullTextAsLengthZeroAndZeroBytes) {
  Column<ASStr> a("a", 3U);
  Column<ASVStr> b("b", 3U);
  Answer(2, {{std::nullopt, std::nullopt}});
  ASCursor cursor(session);
  cursor.Project() << a << b;
  cursor.Open();
  UU* const row = cursor.GetUURecord(0);
  EXPECT_EQ(row[0].value.length, 0U);
  EXPECT_EQ(row[1].value.length, 0U);
  EXPECT_EQ(Bytes(row[0].extra.text, 3), std::string(3, '\0'));
  EXPECT_EQ(Bytes(row[1].extra.text, 3), std::string(3, '\0'));
}

TEST_F(CursorOpen, HoldsGuidsAsSixteenBytesInTheRowsArea) {
  Column<ASGuid> a("a");
  Answer(1, {{"01234567-89ab-cdef-0123-456789abcdef"}, {std::nullopt}, {"none"}});
  ASCursor cursor(session);
  cursor.Project() << a;
  cursor.Open();
  UU const* const present = cursor.GetUURecord(0);
  EXPECT_EQ(present->value.length, 16U);
  EXPECT_EQ(Bytes(present->extra.text, 16), "\x01\x23\x45\x67\x89\xAB\xCD\xEF\x01\x23\x45\x67\x89\xAB\xCD\xEF");
  EXPECT_EQ(cursor.GetUURecord(1)->value.length, 0U);
  EXPECT_EQ(Bytes(cursor.GetUURecord(1)->extra.text, 16), std::string(16, '\0'));
  EXPECT_EQ(cursor.GetUURecord(2)->value.length, 0U);
  EXPECT_EQ(Bytes(cursor.GetUURecord(2)->extra.text, 16), std::string(16, '\0'));
}

TEST_F(CursorOpen, PutsTheAreaBehindTheCellsInTheOrderOfTheColumns) {
  Column<ASVStr> a("a", 4U);
  Column<ASInt> b("b");
  Column<ASGuid> c("c");
  Column<ASVStr> d("d", 9U);
  Row const row{"x", "1", "0123456789abcdef0123456789abcdef", "y"};
  Answer(4, {row, row});
  ASCursor cursor(session);
  cursor.Project() << a << b << c << d;
  cursor.Open();
  EXPECT_EQ(cursor.GetUURecord(1) - cursor.GetUURecord(0), 6);  // 4 * 24 + 5 + 17 + 10 bytes
  UU* const second = cursor.GetUURecord(1);
  char const* const start = reinterpret_cast<char const*>(second);
  EXPECT_EQ(second[0].extra.text - start, 96);
  EXPECT_EQ(second[2].extra.text - start, 101);
  EXPECT_EQ(second[3].extra.text - start, 118);
}

TEST_F(CursorOpen, HoldsSmallBinariesByLengthAndBytes) {
  Column<ASBlob> a("a", std::uint16_t{8});
  Column<ASGeometry> b("b", std::uint16_t{8});
  Answer(2, {{std::string("x\0y", 3), std::string("\0\1", 2)}, {std::nullopt, std::nullopt}});
  ASCursor cursor(session);
  cursor.Project() << a << b;
  cursor.Open();
  UU const* const row = cursor.GetUURecord(0);
  EXPECT_EQ(row[0].value.length, 3U);
  EXPECT_EQ(Bytes(row[0].extra.bytes, 3), std::string("x\0y", 3));
  EXPECT_EQ(row[1].value.length, 2U);
  EXPECT_EQ(Bytes(row[1].extra.bytes, 2), std::string("\0\1", 2));
  EXPECT_EQ(cursor.GetUURecord(1)[0].value.length, 0U);
  EXPECT_EQ(cursor.GetUURecord(1)[1].value.length, 0U);
}

TEST_F(CursorOpen, HoldsLargeBinariesAsObjects) {
  Column<ASRealBlob> a("a", 0U);
  Answer(1, {{std::string("x\0y", 3)}, {""}, {std::nullopt}});
  ASCursor cursor(session);
  cursor.Project() << a;
  cursor.Open();
  RealBlob const* const blob = cursor.GetUURecord(0)->value.blob;
  ASSERT_NE(blob, nullptr);
  EXPECT_EQ(blob->Length(), 3U);
  EXPECT_EQ(Bytes(blob->voidptr(), 3), std::string("x\0y", 3));
  ASSERT_NE(cursor.GetUURecord(1)->value.blob, nullptr);
  EXPECT_EQ(cursor.GetUURecord(1)->value.blob->Length(), 0U);
  EXPECT_EQ(cursor.GetUURecord(2)->value.blob, nullptr);
}

TEST(Cell, HasItsMembersAtTheirPlaces) {
  EXPECT_EQ(offsetof(UU, value), 0U);
  EXPECT_EQ(offsetof(UU, extra), 8U);
  EXPECT_EQ(offsetof(UU, mark), 16U);
  EXPECT_EQ(offsetof(UU, unused), 20U);
}

TEST_F(CursorOpen, ShowsNumbersByTheMembersOfTheirCells) {
  Column<ASInt> a("a");
  Column<ASDouble> b("b");
  Column<ASInt64> c("c");
  Column<ASDCurrency> d("d");
  Answer(4, {{"-5", "0.5", "72623859790382856", "1.5"}, {std::nullopt, std::nullopt, std::nullopt, std::nullopt}});
  ASCursor cursor(session);
  cursor.Project() << a << b << c << d;
  cursor.Open();
  UU const* const row = cursor.GetUURecord(0);
  EXPECT_EQ(row[0].value.integer, -5);
  EXPECT_EQ(row[1].value.number, 0.5);
  EXPECT_EQ(row[2].value.integer64, 72623859790382856);
  EXPECT_EQ(row[2].extra.null, 0);
  EXPECT_EQ(row[3].value.number, 1.5);
  EXPECT_EQ(row[3].mark, 2);
  EXPECT_EQ(cursor.GetUURecord(1)[2].extra.null, 1);
}

// ---- what a text reads as

struct Reading {
  Field text;
  char const* value;

  friend std::ostream& operator<<(std::ostream& out, Reading const& row) {
    return out << (row.text.has_value() ? "\"" + *row.text + "\"" : "NULL");
  }
};

std::string Shown(ASData const& value) { return value.IsNull() != 0 ? "NULL" : value.getstr().ToString(); }

// The text, read into a value that was NULL and into one that was not.
template <class Value>
class CursorReads : public ScriptedCursor, public testing::WithParamInterface<Reading> {
 protected:
  template <class... Arguments>
  void ExpectRead(char const* before, Arguments... arguments) {
    Column<Value> fresh("a", arguments...);
    Column<Value> used("b", arguments...);
    Answer(2, {{before, before}, {GetParam().text, GetParam().text}});
    ASCursor cursor(session);
    cursor.Project() << fresh << used;
    cursor.Fetch(0);
    fresh.value.SetNull();
    ASSERT_EQ(used.value.IsNull(), 0);
    cursor.Fetch(1);
    EXPECT_EQ(Shown(fresh.value), GetParam().value);
    EXPECT_EQ(Shown(used.value), GetParam().value);
  }
};

using CursorReadsInt = CursorReads<ASInt>;
TEST_P(CursorReadsInt, From) { ExpectRead("7"); }
INSTANTIATE_TEST_SUITE_P(Texts, CursorReadsInt,
                         testing::Values(Reading{"0", "0"}, Reading{"-5", "-5"}, Reading{"2147483647", "2147483647"},
                                         Reading{"-2147483647", "-2147483647"}, Reading{"-2147483648", "NULL"},
                                         Reading{"2147483648", "NULL"}, Reading{"4294967295", "-1"},
                                         Reading{"4294967301", "5"}, Reading{"18446744073709551615", "-1"},
                                         Reading{"-99999999999999999999", "0"}, Reading{"", "0"}, Reading{"   ", "0"},
                                         Reading{" +12.75 m", "12"}, Reading{"none", "0"}, Reading{"1e3", "1"},
                                         Reading{"--5", "0"}, Reading{std::string("4\0002", 3), "4"},
                                         Reading{std::nullopt, "NULL"}));

using CursorReadsInt64 = CursorReads<ASInt64>;
TEST_P(CursorReadsInt64, From) { ExpectRead("7"); }
INSTANTIATE_TEST_SUITE_P(Texts, CursorReadsInt64,
                         testing::Values(Reading{"0", "0"}, Reading{"9007199254740993", "9007199254740993"},
                                         Reading{"9223372036854775807", "9223372036854775807"},
                                         Reading{"-9223372036854775808", "-9223372036854775808"},
                                         Reading{"18446744073709551615", "9223372036854775807"},
                                         Reading{"-9223372036854775809", "-9223372036854775808"}, Reading{"", "0"},
                                         Reading{"  ", "0"}, Reading{" +12.75 m", "12"}, Reading{"none", "0"},
                                         Reading{std::nullopt, "NULL"}));

using CursorReadsDouble = CursorReads<ASDouble>;
TEST_P(CursorReadsDouble, From) { ExpectRead("7"); }
using CursorReadsMoney = CursorReads<ASDCurrency>;
TEST_P(CursorReadsMoney, From) { ExpectRead("7"); }
auto const kDoubleReadings =
    testing::Values(Reading{"0", "0"}, Reading{"1234567.891", "1234567.891"}, Reading{"-1.5e-7", "-1.5e-07"},
                    Reading{" +12.75 m", "12.75"}, Reading{"1,5", "1"}, Reading{"", "0"}, Reading{"  ", "0"},
                    Reading{"none", "0"}, Reading{".5", "0.5"}, Reading{"1e400", "inf"}, Reading{"1e-400", "0"},
                    Reading{"-1.7976931348623157e308", "NULL"}, Reading{std::nullopt, "NULL"});
INSTANTIATE_TEST_SUITE_P(Texts, CursorReadsDouble, kDoubleReadings);
INSTANTIATE_TEST_SUITE_P(Texts, CursorReadsMoney, kDoubleReadings);

using CursorReadsTime = CursorReads<ASTime>;
TEST_P(CursorReadsTime, From) { ExpectRead("2004-07-01 13:45:00"); }
INSTANTIATE_TEST_SUITE_P(Texts, CursorReadsTime,
                         testing::Values(Reading{"1970-01-01 00:00:00", "1970-01-01 00:00:00"},
                                         Reading{"2004-02-29 23:59:59", "2004-02-29 23:59:59"},
                                         Reading{"2004-02-29 23:59:59.999999", "2004-02-29 23:59:59"},
                                         Reading{"2004-07-01 25:00:00", "2004-07-02 01:00:00"},
                                         Reading{"9999-12-31 23:59:59", "1969-12-23 02:12:15"},
                                         Reading{"2038-01-19 03:14:08", "NULL"}, Reading{"2004-02-30 00:00:00", "NULL"},
                                         Reading{"0000-00-00 00:00:00", "NULL"}, Reading{"2004-07-01", "NULL"},
                                         Reading{"2004-07-01 13:45:0", "NULL"}, Reading{"", "NULL"},
                                         Reading{"not a date, but long enough", "NULL"},
                                         Reading{std::nullopt, "NULL"}));

using CursorReadsGuid = CursorReads<ASGuid>;
TEST_P(CursorReadsGuid, From) { ExpectRead("ffffffff-ffff-ffff-ffff-ffffffffffff"); }
INSTANTIATE_TEST_SUITE_P(
    Texts, CursorReadsGuid,
    testing::Values(Reading{"01234567-89ab-cdef-0123-456789abcdef", "01234567-89ab-cdef-0123-456789abcdef"},
                    Reading{"{01234567-89AB-CDEF-0123-456789ABCDEF}", "01234567-89ab-cdef-0123-456789abcdef"},
                    Reading{"0123456789abcdef0123456789abcdef", "01234567-89ab-cdef-0123-456789abcdef"},
                    Reading{"00000000-0000-0000-0000-000000000000", "00000000-0000-0000-0000-000000000000"},
                    Reading{"01234567-89ab-cdef-0123-456789abcde", "NULL"}, Reading{"none", "NULL"},
                    Reading{"", "NULL"}, Reading{"01234567-89ab-cdef-0123-456789abcdefff", "NULL"},
                    Reading{"{01234567-89ab-cdef-0123-456789abcdef", "NULL"}, Reading{std::nullopt, "NULL"}));

TEST_F(CursorOpen, ANullGuidKeepsNoStaleBytes) {
  Column<ASGuid> a("a");
  Answer(1, {{"ffffffff-ffff-ffff-ffff-ffffffffffff"}, {std::nullopt}});
  ASCursor cursor(session);
  cursor.Project() << a;
  cursor.Fetch();
  cursor.Fetch();
  EXPECT_EQ(a.value.getstr(), "00000000-0000-0000-0000-000000000000");
}

TEST_F(CursorOpen, AnUnreadableGuidLeavesNoBytesInItsCell) {
  Column<ASGuid> a("a");
  Answer(1, {{"ffffffff-ffff-ffff-ffff-fffffffffffx"}});
  ASCursor cursor(session);
  cursor.Project() << a;
  cursor.Open();
  EXPECT_EQ(cursor.GetUURecord(0)->value.length, 0U);
  EXPECT_EQ(Bytes(cursor.GetUURecord(0)->extra.text, 16), std::string(16, '\0'));
}

// A GUID of an application that tells a wrong size.
struct SmallGuid : ASGuid {
  int GetSize() const override { return 1; }
};

TEST_F(CursorOpen, AGuidHasRoomForItsBytesWhateverItsSizeSays) {
  Column<SmallGuid> a("a");
  Column<SmallGuid> b("b");
  Answer(2, {{"00000000-0000-0000-0000-000000000001", "ffffffff-ffff-ffff-ffff-ffffffffffff"}});
  ASCursor cursor(session);
  cursor.Project() << a << b;
  cursor.Fetch();
  EXPECT_EQ(a.value.getstr(), "00000000-0000-0000-0000-000000000001");
  EXPECT_EQ(b.value.getstr(), "ffffffff-ffff-ffff-ffff-ffffffffffff");
}

TEST_F(CursorOpen, ANullInt64KeepsNoStaleNumber) {
  Column<ASInt64> a("a");
  Answer(1, {{"5"}, {std::nullopt}});
  ASCursor cursor(session);
  cursor.Project() << a;
  cursor.Fetch();
  cursor.Fetch();
  EXPECT_EQ(a.value.getstr(), "-9223372036854775808");
}

// ---- texts

using CursorReadsVariableText = CursorReads<ASVStr>;
TEST_P(CursorReadsVariableText, From) { ExpectRead("zzzzz", 5U); }
INSTANTIATE_TEST_SUITE_P(Texts, CursorReadsVariableText,
                         testing::Values(Reading{"ab", "ab"}, Reading{"abcde", "abcde"}, Reading{"abcdef", "abcde"},
                                         Reading{std::string(100000, 'x'), "xxxxx"}, Reading{"", ""},
                                         Reading{"a  ", "a  "}, Reading{std::string("ab\0cd", 5), "ab"},
                                         Reading{std::string("\0ab", 3), ""},
                                         Reading{"\xC3\xA9\xC3\xA9\xC3\xA9", "\xC3\xA9\xC3\xA9\xC3"},
                                         Reading{std::nullopt, "NULL"}));

using CursorReadsFixedText = CursorReads<ASStr>;
TEST_P(CursorReadsFixedText, From) { ExpectRead("zzzzz", 5U); }
INSTANTIATE_TEST_SUITE_P(Texts, CursorReadsFixedText,
                         testing::Values(Reading{"ab", "ab   "}, Reading{"abcde", "abcde"}, Reading{"abcdef", "abcde"},
                                         Reading{"", "     "}, Reading{std::string("ab\0cd", 5), "ab   "},
                                         Reading{std::nullopt, "NULL"}));

TEST_F(CursorOpen, CutsATextWithoutTouchingItsNeighbours) {
  Column<ASVStr> a("a", 5U);
  Column<ASVStr> b("b", 5U);
  Column<ASInt> c("c");
  Answer(3, {{std::string(1000, 'x'), "second", "3"}, {"abcdef", std::nullopt, "4"}, {"first", "abcde", "5"}});
  ASCursor cursor(session);
  cursor.Project() << a << b << c;
  cursor.Fetch(0);
  EXPECT_EQ(a.value.getstr(), "xxxxx");
  EXPECT_EQ(b.value.getstr(), "secon");
  EXPECT_EQ(c.value, 3);
  cursor.Fetch(1);
  EXPECT_EQ(a.value.getstr(), "abcde");
  EXPECT_EQ(b.value.IsNull(), 1);
  EXPECT_EQ(c.value, 4);
  cursor.Fetch(2);
  EXPECT_EQ(a.value.getstr(), "first");
  EXPECT_EQ(b.value.getstr(), "abcde");
  EXPECT_EQ(cursor.GetUURecord(0)[0].value.length, 6U);
  EXPECT_EQ(cursor.GetUURecord(0)[0].extra.text[5], '\0');
}

TEST_F(CursorOpen, OfATextWithoutCapacityReadsNothing) {
  Column<ASVStr> a("a", 0U);
  Column<ASVStr> b("b", 2U);
  Answer(2, {{"abcdef", "xy"}, {std::nullopt, "zw"}});
  ASCursor cursor(session);
  cursor.Project() << a << b;
  cursor.Fetch();
  EXPECT_EQ(a.value.IsNull(), 0);
  EXPECT_EQ(a.value.getstr(), "");
  EXPECT_EQ(b.value.getstr(), "xy");
  cursor.Fetch();
  EXPECT_EQ(a.value.IsNull(), 1);
}

// ---- binaries

TEST_F(CursorOpen, ReadsSmallBinariesByteForByteAndZeroesTheRest) {
  Column<ASBlob> a("a", std::uint16_t{4});
  Answer(1, {{"abcd"}, {std::string("\0x", 2)}});
  ASCursor cursor(session);
  cursor.Project() << a;
  cursor.Fetch();
  EXPECT_EQ(Bytes(a.value.voidptr(), 6), std::string("\4\0abcd", 6));
  cursor.Fetch();
  EXPECT_EQ(Bytes(a.value.voidptr(), 6), std::string("\2\0\0x\0\0", 6));
}

TEST_F(CursorOpen, ReadsEmptyAndNullSmallBinariesAsNull) {
  Column<ASBlob> a("a", std::uint16_t{4});
  Answer(1, {{"abcd"}, {""}, {"abcd"}, {std::nullopt}});
  ASCursor cursor(session);
  cursor.Project() << a;
  cursor.Fetch(0);
  cursor.Fetch(1);
  EXPECT_EQ(Bytes(a.value.voidptr(), 6), std::string(6, '\0'));
  cursor.Fetch(2);
  cursor.Fetch(3);
  EXPECT_EQ(Bytes(a.value.voidptr(), 6), std::string(6, '\0'));
}

TEST_F(CursorOpen, CutsSmallBinariesAtTheirCapacity) {
  Column<ASBlob> a("a", std::uint16_t{4});
  Column<ASBlob> b("b", std::uint16_t{65535});
  Answer(2, {{std::string("a\0b\0c\0d", 7), std::string(200000, 'x')}, {"abcd", "y"}});
  ASCursor cursor(session);
  cursor.Project() << a << b;
  cursor.Fetch();
  EXPECT_EQ(Bytes(a.value.voidptr(), 6), std::string("\4\0a\0b\0", 6));
  EXPECT_EQ(b.value.size(), 65535);
  EXPECT_EQ(cursor.GetUURecord(0)[0].value.length, 4U);
  EXPECT_EQ(cursor.GetUURecord(0)[1].value.length, 65535U);
  cursor.Fetch();
  EXPECT_EQ(Bytes(a.value.voidptr(), 6), std::string("\4\0abcd", 6));
  EXPECT_EQ(b.value.size(), 1);
}

TEST_F(CursorOpen, KeepsTheSmallBinariesOfManyRowsApart) {
  Column<ASBlob> a("a", std::uint16_t{40000});
  Answer(1, {{std::string(40000, 'a')}, {std::string(30000, 'b')}, {std::string(20000, 'c')}, {"d"}});
  ASCursor cursor(session);
  cursor.Project() << a;
  cursor.Fetch(0);
  EXPECT_TRUE(Bytes(a.value.Bytes(), 40000) == std::string(40000, 'a'));
  cursor.Fetch(1);
  EXPECT_TRUE(Bytes(a.value.Bytes(), 40000) == std::string(30000, 'b') + std::string(10000, '\0'));
  cursor.Fetch(2);
  EXPECT_TRUE(Bytes(a.value.Bytes(), 20001) == std::string(20000, 'c') + std::string(1, '\0'));
  cursor.Fetch(3);
  EXPECT_EQ(Bytes(a.value.Bytes(), 2), std::string("d\0", 2));
}

// A server's geometry column has four bytes in front.
struct Drop {
  enum_field_types type;
  Field field;
  std::string bytes;  // of a value with a capacity of 6

  friend std::ostream& operator<<(std::ostream& out, Drop const& row) {
    return out << row.type << " " << (row.field.has_value() ? std::to_string(row.field->size()) : "NULL");
  }
};

class CursorReadsGeometry : public ScriptedCursor, public testing::WithParamInterface<Drop> {};

TEST_P(CursorReadsGeometry, WithoutTheFourBytesThatServersPutInFront) {
  Column<ASGeometry> a("a", std::uint16_t{6});
  a.value.Fill("zzzzzz", 6);
  Answer(1, {{GetParam().field}}).Fields({{"a", GetParam().type, 4294967295}});
  ASCursor cursor(session);
  cursor.Project() << a;
  cursor.Fetch();
  EXPECT_EQ(a.value.size(), static_cast<int>(GetParam().bytes.size()));
  EXPECT_EQ(a.value.IsNull(), GetParam().bytes.empty() ? 1 : 0);
  EXPECT_EQ(Bytes(a.value.Bytes(), 6), GetParam().bytes + std::string(6 - GetParam().bytes.size(), '\0'));
}

INSTANTIATE_TEST_SUITE_P(
    Fields, CursorReadsGeometry,
    testing::Values(Drop{MYSQL_TYPE_GEOMETRY, "SRIDabc", "abc"}, Drop{MYSQL_TYPE_GEOMETRY, "SRIDabcdef", "abcdef"},
                    Drop{MYSQL_TYPE_GEOMETRY, "SRIDabcdefg", "abcdef"},
                    Drop{MYSQL_TYPE_GEOMETRY, std::string("\0\0\0\0\1\1\0", 7), std::string("\1\1\0", 3)},
                    Drop{MYSQL_TYPE_GEOMETRY, "SRID", ""}, Drop{MYSQL_TYPE_GEOMETRY, "SRI", ""},
                    Drop{MYSQL_TYPE_GEOMETRY, "", ""}, Drop{MYSQL_TYPE_GEOMETRY, std::nullopt, ""},
                    Drop{MYSQL_TYPE_BLOB, "SRIDabc", "SRIDab"}, Drop{MYSQL_TYPE_LONG_BLOB, "SRI", "SRI"},
                    Drop{MYSQL_TYPE_VAR_STRING, "SRID", "SRID"}, Drop{MYSQL_TYPE_BLOB, std::nullopt, ""}));

TEST_F(CursorOpen, DropsNothingOfAGeometryColumnInAnotherKindOfBinary) {
  Column<ASBlob> a("a", std::uint16_t{8});
  Column<ASRealBlob> b("b", 0U);
  Answer(2, {{"SRIDabc", "SRIDabc"}}).Fields({{"a", MYSQL_TYPE_GEOMETRY, 10}, {"b", MYSQL_TYPE_GEOMETRY, 10}});
  ASCursor cursor(session);
  cursor.Project() << a << b;
  cursor.Fetch();
  EXPECT_EQ(Bytes(a.value.Bytes(), 8), std::string("SRIDabc\0", 8));
  EXPECT_EQ(b.value.Length(), 7U);
}

TEST_F(CursorOpen, DropsTheFourBytesOfTheGeometryColumnsAlone) {
  Column<ASGeometry> a("a", std::uint16_t{8});
  Column<ASGeometry> b("b", std::uint16_t{8});
  Answer(2, {{"SRIDabc", "SRIDabc"}}).Fields({{"a", MYSQL_TYPE_BLOB, 10}, {"b", MYSQL_TYPE_GEOMETRY, 10}});
  ASCursor cursor(session);
  cursor.Project() << a << b;
  cursor.Fetch();
  EXPECT_EQ(a.value.size(), 7);
  EXPECT_EQ(b.value.size(), 3);
}

TEST_F(CursorOpen, ReadsLargeBinariesByteForByte) {
  Column<ASRealBlob> a("a", 3U);
  Answer(1, {{std::string("a\0b\xFF", 4)}, {""}, {std::nullopt}, {std::string(1000000, '\1')}});
  ASCursor cursor(session);
  cursor.Project() << a;
  cursor.Fetch();
  EXPECT_EQ(a.value.Length(), 4U);
  EXPECT_EQ(Bytes(a.value.voidptr(), 4), std::string("a\0b\xFF", 4));
  cursor.Fetch();
  EXPECT_EQ(a.value.IsNull(), 0);
  EXPECT_EQ(a.value.Length(), 0U);
  cursor.Fetch();
  EXPECT_EQ(a.value.IsNull(), 1);
  cursor.Fetch();
  EXPECT_TRUE(Bytes(a.value.voidptr(), a.value.Length()) == std::string(1000000, '\1'));
}

TEST_F(CursorOpen, ReadsEveryKindBesideTheOthers) {
  Column<ASInt> number("i");
  Column<ASVStr> text("s", 4U);
  Column<ASRealBlob> large("r", 0U);
  Column<ASGuid> guid("u");
  Column<ASBlob> small("b", std::uint16_t{4});
  Column<ASDouble> real("d");
  Column<ASStr> fixed("f", 2U);
  Answer(7, {{"1", "ab", "xyz", "0123456789abcdef0123456789abcdef", "qr", "2.5", "uv"}});
  ASCursor cursor(session);
  cursor.Project() << number << text << large << guid << small << real << fixed;
  cursor.Fetch();
  EXPECT_EQ(number.value, 1);
  EXPECT_EQ(text.value.getstr(), "ab");
  EXPECT_EQ(Bytes(large.value.voidptr(), large.value.Length()), "xyz");
  EXPECT_EQ(guid.value.getstr(), "01234567-89ab-cdef-0123-456789abcdef");
  EXPECT_EQ(Bytes(small.value.Bytes(), 4), std::string("qr\0\0", 4));
  EXPECT_EQ(real.value, 2.5);
  EXPECT_EQ(fixed.value.getstr(), "uv");
}

// ---- values of applications

class Grams : public ASInt {
 public:
  using ASInt::operator=;
  Str getstr() const override { return ASInt::getstr() + " g"; }
};

class Code : public ASVStr {
 public:
  Code() : ASVStr(3) {}
  using ASVStr::operator=;
};

class Stamp : public ASTime {
 public:
  using ASTime::operator=;
  ASTime& operator=(int const& seconds) override {
    ++assigned;
    return ASTime::operator=(seconds);
  }
  int assigned = 0;
};

TEST_F(CursorOpen, ReadsValuesOfDerivedClasses) {
  Column<Grams> weight("w");
  Column<Code> code("c");
  Answer(2, {{"5", "abcd"}});
  ASCursor cursor(session);
  cursor.Project() << weight << code;
  cursor.Fetch();
  EXPECT_EQ(weight.value.getstr(), "5 g");
  EXPECT_EQ(code.value.getstr(), "abc");
}

TEST_F(CursorOpen, AssignsATimeThroughItsOwnOperator) {
  Column<Stamp> a("a");
  Answer(1, {{"1970-01-01 00:00:07"}});
  ASCursor cursor(session);
  cursor.Project() << a;
  cursor.Fetch();
  EXPECT_EQ(a.value.assigned, 1);
  EXPECT_EQ(a.value.getstr(), "1970-01-01 00:00:07");
}

// An integer is a time by its database type alone, as it is for a session.
TEST_F(CursorOpen, ReadsTimesByTheirDatabaseType) {
  Column<Called<ASInt, kTypeInt, kDbTime>> a("a");
  Answer(1, {{"1970-01-02 00:00:01"}});
  ASCursor cursor(session);
  cursor.Project() << a;
  cursor.Fetch();
  EXPECT_EQ(a.value.getstr(), "86401");
}

TEST_F(CursorOpen, ReadsATextByItsTypeWhateverItsDatabaseType) {
  Column<Called<ASVStr, kTypeStr, 99>> a("a", 4U);
  Answer(1, {{"abcdef"}});
  ASCursor cursor(session);
  cursor.Project() << a;
  cursor.Fetch();
  EXPECT_EQ(a.value.getstr(), "abcd");
  EXPECT_EQ(cursor.GetUURecord(0)->value.length, 5U);
}

template <class Value>
class CursorOpenOfAClaim : public ScriptedCursor {};

using Claims =
    testing::Types<Called<ASInt, kTypeDouble, kDbDouble>, Called<ASInt, kTypeDCurrency, kDbDouble>,
                   Called<ASInt, kTypeInt64, kDbInt64>, Called<ASInt, kTypeGuid, kDbGuid>,
                   Called<ASInt, kTypeRealBlob, kDbRealBlob>, Called<ASInt, kTypeStr, kDbStr>,
                   Called<ASInt, kTypeStr, kDbVStr>, Called<ASInt, kTypeBlob, kDbBlob>,
                   Called<ASInt, kTypeBlob, kDbGeometry>, Called<ASInt, 77, 77>, Called<ASInt64, kTypeInt, kDbInt>,
                   Called<ASInt64, kTypeInt, kDbTime>, Called<ASGuid, kTypeStr, kDbStr>>;

// "Type16Database95", for example.
struct ClaimName {
  template <class Value>
  static std::string GetName(int index) {
    return "Type" + std::to_string(Value().GetType()) + "Database" + std::to_string(Value().GetDBType()) + "Number" +
           std::to_string(index);
  }
};
TYPED_TEST_SUITE(CursorOpenOfAClaim, Claims, ClaimName);

TYPED_TEST(CursorOpenOfAClaim, ThatTheClassDoesNotKeepThrowsAndLeavesTheCursorClosed) {
  Column<ASInt> a("a");
  Column<TypeParam> b("b");
  this->Answer(2, {{"1", "2"}});
  ASCursor cursor(this->session);
  cursor.Project() << a << b;
  EXPECT_EQ(ThrownBy([&] { cursor.Open(); }), (Thrown{0, kIncompatible}));
  EXPECT_EQ(this->client.UnfreedResults(), 0U);
  EXPECT_EQ(cursor.GetUURecord(0), nullptr);
  EXPECT_EQ(a.value.IsNull(), 1);
  b.Register(nullptr, nullptr);
  this->Answer(2, {{"1", "2"}});
  EXPECT_EQ(cursor.GetAmount(), 1);
}

}  // namespace
}  // namespace corvane::test
