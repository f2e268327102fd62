#include "corvane/data/literal.h"

#include <gtest/gtest.h>
#include <mysql.h>

#include <cstddef>
#include <random>
#include <string>
#include <vector>

#include "corvane/data/blob.h"
#include "corvane/data/dcurrency.h"
#include "corvane/data/double.h"
#include "corvane/data/geometry.h"
#include "corvane/data/guid.h"
#include "corvane/data/int.h"
#include "corvane/data/int64.h"
#include "corvane/data/real_blob.h"
#include "corvane/data/str.h"
#include "corvane/data/time.h"
#include "corvane/data/vstr.h"

using corvane::AppendEscaped;
using corvane::AppendLiteral;
using corvane::Escaped;
using corvane::Literal;

namespace {

std::string EscapedBytes(std::string const& bytes) {
  Str out;
  AppendEscaped(out, bytes.data(), bytes.size());
  return out.ToString();
}

// What the client library itself makes of the bytes. It has to be initialised, which our own escaping sees to.
std::string EscapedByClientLibrary(std::string const& bytes) {
  static_cast<void>(Escaped("'"));
  std::vector<char> room(2 * bytes.size() + 1);
  std::size_t const length = mysql_escape_string(room.data(), bytes.data(), bytes.size());
  return std::string(room.data(), length);
}

template <class Column, class Value>
Column Holding(Column column, Value const& value) {
  column = value;
  return column;
}

// ---- Escaping ----

TEST(Escaped, NeedsNoSession) { EXPECT_EQ(Escaped("O'Brien"), "O\\'Brien"); }

TEST(Escaped, PlainTextStaysAsItIs) { EXPECT_EQ(Escaped("plain text 123"), "plain text 123"); }

TEST(Escaped, QuotesAndBackslashGetABackslash) { EXPECT_EQ(Escaped("'\"\\"), "\\'\\\"\\\\"); }

TEST(Escaped, ControlCharactersAreWrittenAsLetters) { EXPECT_EQ(Escaped("\n\r\x1A"), "\\n\\r\\Z"); }

TEST(Escaped, OtherControlCharactersStayAsTheyAre) { EXPECT_EQ(Escaped("\t\b\x01\x7F"), "\t\b\x01\x7F"); }

TEST(Escaped, WildcardsStayAsTheyAre) { EXPECT_EQ(Escaped("100%_"), "100%_"); }

TEST(Escaped, Utf8StaysAsItIs) {
  EXPECT_EQ(Escaped("\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"), "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
}

TEST(Escaped, EmptyTextIsEmptyNotNull) {
  EXPECT_EQ(Escaped(""), "");
  EXPECT_EQ(Escaped("").IsNull(), 0);
}

TEST(Escaped, NullPointerCountsAsEmpty) { EXPECT_EQ(Escaped(nullptr), ""); }

TEST(Escaped, TextFarBeyond65536CharactersIsTakenWhole) {
  std::string const quotes(200000, '\'');
  std::string expected;
  for (int i = 0; i < 200000; ++i) expected += "\\'";
  EXPECT_TRUE(Escaped(quotes.c_str()).View() == expected);
}

TEST(Escaped, TextsAroundTheOldLimitAreTakenWhole) {
  for (std::size_t const length : {32766u, 32767u, 32768u, 65535u, 65536u, 65537u}) {
    EXPECT_EQ(Escaped(std::string(length, '\\').c_str()).length(), static_cast<int>(2 * length));
    EXPECT_EQ(Escaped(std::string(length, 'x').c_str()).length(), static_cast<int>(length));
  }
}

TEST(AppendEscaped, AppendsBehindWhatIsThere) {
  Str out("a='");
  AppendEscaped(out, "O'B", 3);
  EXPECT_EQ(out, "a='O\\'B");
}

TEST(AppendEscaped, AppendsToANullText) {
  Str out;
  AppendEscaped(out, "O'B", 3);
  EXPECT_EQ(out, "O\\'B");
}

TEST(AppendEscaped, NothingAppendsNothing) {
  Str out("a");
  AppendEscaped(out, "", 0);
  AppendEscaped(out, nullptr, 0);
  EXPECT_EQ(out, "a");
}

TEST(AppendEscaped, TakesNoMoreThanTheGivenLength) {
  Str out;
  AppendEscaped(out, "a'b'c", 3);
  EXPECT_EQ(out, "a\\'b");
}

TEST(AppendEscaped, NulIsWrittenAsBackslashZero) { EXPECT_EQ(EscapedBytes(std::string("a\0b", 3)), "a\\0b"); }

TEST(AppendEscaped, EveryByteIsEscapedAsTheClientLibraryDoes) {
  for (int byte = 0; byte < 256; ++byte) {
    std::string const bytes(1, static_cast<char>(byte));
    ASSERT_EQ(EscapedBytes(bytes), EscapedByClientLibrary(bytes)) << byte;
  }
}

TEST(AppendEscaped, EveryByteAmongOthersIsEscapedAsTheClientLibraryDoes) {
  for (int byte = 0; byte < 256; ++byte) {
    std::string const bytes = std::string("ab") + static_cast<char>(byte) + "cd";
    ASSERT_EQ(EscapedBytes(bytes), EscapedByClientLibrary(bytes)) << byte;
  }
}

TEST(AppendEscaped, EveryByteThreeTimesIsEscapedAsTheClientLibraryDoes) {
  for (int byte = 0; byte < 256; ++byte) {
    std::string const bytes(3, static_cast<char>(byte));
    ASSERT_EQ(EscapedBytes(bytes), EscapedByClientLibrary(bytes)) << byte;
  }
}

TEST(AppendEscaped, EveryByteBeforeAQuoteIsEscapedAsTheClientLibraryDoes) {
  for (int byte = 0; byte < 256; ++byte) {
    std::string const bytes = static_cast<char>(byte) + std::string("'");
    ASSERT_EQ(EscapedBytes(bytes), EscapedByClientLibrary(bytes)) << byte;
  }
}

TEST(AppendEscaped, EveryByteAtEveryPlaceOfAPlainTextIsEscapedAsTheClientLibraryDoes) {
  std::string const plain = "plain text of 30 characters...";
  for (std::size_t place = 0; place < plain.size(); ++place) {
    for (int byte = 0; byte < 256; ++byte) {
      std::string bytes = plain;
      bytes[place] = static_cast<char>(byte);
      ASSERT_EQ(EscapedBytes(bytes), EscapedByClientLibrary(bytes)) << byte << " at " << place;
    }
  }
}

TEST(AppendEscaped, AnyPrintableTextIsEscapedAsTheClientLibraryDoes) {
  std::mt19937 random(424);
  std::uniform_int_distribution<int> anyCharacter(' ', '~');
  std::uniform_int_distribution<std::size_t> anyLength(0, 40);
  for (int i = 0; i < 20000; ++i) {
    std::string text(anyLength(random), '\0');
    for (char& character : text) character = static_cast<char>(anyCharacter(random));
    ASSERT_EQ(EscapedBytes(text), EscapedByClientLibrary(text)) << i;
  }
}

TEST(AppendEscaped, AnyBytesAreEscapedAsTheClientLibraryDoes) {
  std::mt19937 random(42);
  std::uniform_int_distribution<int> anyByte(0, 255);
  std::uniform_int_distribution<std::size_t> anyLength(0, 200);
  for (int i = 0; i < 2000; ++i) {
    std::string bytes(anyLength(random), '\0');
    for (char& byte : bytes) byte = static_cast<char>(anyByte(random));
    ASSERT_EQ(EscapedBytes(bytes), EscapedByClientLibrary(bytes)) << i;
  }
}

TEST(AppendEscaped, LongBinaryIsEscapedAsTheClientLibraryDoes) {
  std::mt19937 random(4242);
  std::uniform_int_distribution<int> anyByte(0, 255);
  std::string bytes(1000000, '\0');
  for (char& byte : bytes) byte = static_cast<char>(anyByte(random));
  EXPECT_TRUE(EscapedBytes(bytes) == EscapedByClientLibrary(bytes));
}

TEST(AppendEscaped, PartOfTheTextItselfIsAppendedPlain) {
  Str out("plain text that fills more than its first buffer");
  AppendEscaped(out, out.str(), 10);
  EXPECT_EQ(out, "plain text that fills more than its first bufferplain text");
}

TEST(AppendEscaped, PartOfTheTextItselfIsAppendedEscaped) {
  Str out("a 'quoted' text that fills more than its first buffer");
  AppendEscaped(out, out.str(), 10);
  EXPECT_EQ(out, "a 'quoted' text that fills more than its first buffera \\'quoted\\'");
}

// ---- Literals of numbers ----

TEST(Literal, IntegersStandWithoutQuotes) {
  EXPECT_EQ(Literal(Holding(ASInt(), 5)), "5");
  EXPECT_EQ(Literal(Holding(ASInt(), -5)), "-5");
  EXPECT_EQ(Literal(Holding(ASInt64(), 5000000000)), "5000000000");
}

TEST(Literal, FloatingNumbersStandWithoutQuotes) {
  EXPECT_EQ(Literal(Holding(ASDouble(), 2.5)), "2.5");
  EXPECT_EQ(Literal(Holding(ASDouble(), 1e100)), "1e+100");
  EXPECT_EQ(Literal(Holding(ASDCurrency(), 19.99)), "19.99");
}

TEST(Literal, PlainNumbersStandWithoutQuotes) {
  EXPECT_EQ(Literal(Int(5)), "5");
  EXPECT_EQ(Literal(Int64(5000000000)), "5000000000");
  EXPECT_EQ(Literal(Double(-2.5)), "-2.5");
}

TEST(Literal, NullNumberIsItsStoredNumber) {
  EXPECT_EQ(Literal(ASInt()), "-2147483648");
  EXPECT_EQ(Literal(ASInt64()), "-9223372036854775808");
  EXPECT_EQ(Literal(ASDouble()), "-1.7976931348623157e+308");
  EXPECT_EQ(Literal(ASDCurrency()), "-1.7976931348623157e+308");
}

// ---- Literals of times ----

TEST(Literal, TimeIsQuoted) { EXPECT_EQ(Literal(ASTime(1088689500)), "'2004-07-01 13:45:00'"); }

TEST(Literal, NullTimeIsAQuotedWord) { EXPECT_EQ(Literal(ASTime()), "'NULL'"); }

TEST(Literal, TimeSeenAsAnIntIsQuotedToo) {
  ASTime const time(0);
  EXPECT_EQ(Literal(static_cast<ASInt const&>(time)), "'1970-01-01 00:00:00'");
}

// ---- Literals of texts ----

TEST(Literal, TextIsEscapedAndQuoted) {
  EXPECT_EQ(Literal(Str("O'Brien")), "'O\\'Brien'");
  EXPECT_EQ(Literal(Holding(ASVStr(20), "O'Brien")), "'O\\'Brien'");
}

TEST(Literal, FixedTextKeepsItsPadding) { EXPECT_EQ(Literal(Holding(ASStr(5), "ab")), "'ab   '"); }

TEST(Literal, TrimmedFixedTextHasNoPadding) {
  ASStr text = Holding(ASStr(5), "ab");
  text.Trim();
  EXPECT_EQ(Literal(text), "'ab'");
}

TEST(Literal, EmptyTextIsTwoQuotes) {
  EXPECT_EQ(Literal(Str("")), "''");
  EXPECT_EQ(Literal(Holding(ASVStr(5), "")), "''");
}

TEST(Literal, NullTextIsTwoQuotes) {
  EXPECT_EQ(Literal(Str()), "''");
  EXPECT_EQ(Literal(ASStr(5)), "''");
  EXPECT_EQ(Literal(ASVStr(5)), "''");
}

TEST(Literal, TextEndsAtItsFirstNul) { EXPECT_EQ(Literal(Str("a\0b", 3)), "'a'"); }

TEST(Literal, LongTextIsTakenWhole) {
  std::string const text = Literal(Str(std::string(100000, '\''))).ToString();
  EXPECT_EQ(text.size(), 200002u);
  EXPECT_EQ(text.substr(0, 5), "'\\'\\'");
  EXPECT_EQ(text.substr(199997), "\\'\\''");
}

TEST(Literal, TextThatTriesToEndTheLiteralStaysInside) {
  EXPECT_EQ(Literal(Str("' OR '1'='1")), "'\\' OR \\'1\\'=\\'1'");
  EXPECT_EQ(Literal(Str("\\' OR 1=1 -- ")), "'\\\\\\' OR 1=1 -- '");
}

// ---- Literals of the other kinds ----

TEST(Literal, GuidIsQuoted) {
  EXPECT_EQ(Literal(Guid("00112233-4455-6677-8899-AABBCCDDEEFF")), "'00112233-4455-6677-8899-aabbccddeeff'");
  EXPECT_EQ(Literal(Holding(ASGuid(), Guid(1, 2))), "'00000000-0000-0001-0000-000000000002'");
}

TEST(Literal, NullGuid) {
  EXPECT_EQ(Literal(ASGuid()), "'00000000-0000-0000-0000-000000000000'");
  EXPECT_EQ(Literal(Guid()), "''");
}

TEST(Literal, BinaryIsTheQuotedWordBLOB) {
  EXPECT_EQ(Literal(Blob(3, "abc")), "'BLOB'");
  EXPECT_EQ(Literal(Holding(ASBlob(5), Blob(3, "abc"))), "'BLOB'");
  EXPECT_EQ(Literal(Holding(ASGeometry(5), Blob(3, "abc"))), "'BLOB'");
  EXPECT_EQ(Literal(RealBlob(3, "abc")), "'BLOB'");
  EXPECT_EQ(Literal(Holding(ASRealBlob(0), RealBlob(3, "abc"))), "'BLOB'");
}

TEST(Literal, NullBinaryIsTheQuotedWordBLOBToo) {
  EXPECT_EQ(Literal(Blob()), "'BLOB'");
  EXPECT_EQ(Literal(ASBlob(5)), "'BLOB'");
  EXPECT_EQ(Literal(ASGeometry(5)), "'BLOB'");
  EXPECT_EQ(Literal(RealBlob()), "'BLOB'");
  EXPECT_EQ(Literal(ASRealBlob(0)), "'BLOB'");
}

TEST(AppendLiteral, AppendsBehindWhatIsThere) {
  Str out("a=");
  AppendLiteral(out, Str("b"));
  AppendLiteral(out, Int(5));
  EXPECT_EQ(out, "a='b'5");
}

TEST(AppendLiteral, TextItselfIsTakenAsItWas) {
  Str out("it's");
  AppendLiteral(out, out);
  EXPECT_EQ(out, "it's'it\\'s'");
}

}  // namespace
