// Appending to a text where it has room and where it must grow, of its own parts as well, and what moving leaves.

#include <gtest/gtest.h>

#include <climits>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "corvane/data/str.h"
#include "corvane/data/value/exception.h"
#include "corvane/data/value/str.h"
#include "corvane/data/vstr.h"

namespace {

char const* const kNoText = nullptr;

// So many letters, each of them told by its place.
std::string Letters(std::size_t length) {
  std::string letters;
  for (std::size_t i = 0; i < length; ++i) letters += static_cast<char>('a' + i % 23);
  return letters;
}

// A text of so many letters without room for more than `room` further bytes.
Str TextOf(std::size_t length, std::size_t room) {
  Str text(static_cast<int>(length + room));
  std::string const letters = Letters(length);
  return std::move(text.Append(letters.data(), letters.size()));
}

// ---- Own parts ----

TEST(StrAppend, AppendsAnyPartOfItsOwnWithAndWithoutGrowing) {
  for (std::size_t const length : {1U, 14U, 15U, 16U, 31U, 63U, 64U, 100U}) {
    std::string const letters = Letters(length);
    for (std::size_t begin = 0; begin <= length; ++begin) {
      for (std::size_t count = 0; begin + count <= length; count += 1 + count / 2) {
        for (std::size_t const room : {std::size_t{0}, count / 2, count, count + 1, std::size_t{200}}) {
          Str text = TextOf(length, room);
          text.Append(text.str() + begin, count);
          ASSERT_EQ(text.ToString(), letters + letters.substr(begin, count)) << begin << " " << count << " " << room;
        }
      }
    }
  }
}

TEST(StrAppend, AppendsTheEndOfItsOwnWhichIsNothing) {
  for (std::size_t const room : {0U, 200U}) {
    Str text = TextOf(20, room);
    text << text.str() + 20;
    text.Append(text.str() + 20, 0);
    EXPECT_EQ(text.ToString(), Letters(20)) << room;
  }
}

TEST(StrAppend, AppendsItsOwnTerminator) {
  for (std::size_t const room : {0U, 1U, 200U}) {
    Str text = TextOf(20, room);
    text.Append(text.str() + 20, 1);
    EXPECT_EQ(text.View(), std::string_view(Letters(20).c_str(), 21)) << room;
  }
}

TEST(StrAppend, AppendsItselfAgainAndAgain) {
  Str text("ab");
  std::string expected = "ab";
  for (int i = 0; i < 14; ++i) {
    text << text;
    expected += std::string(expected);
    ASSERT_EQ(text.ToString(), expected);
  }
}

TEST(StrAppend, AppendsItsOwnTextAgainAndAgain) {
  Str text("ab");
  std::string expected = "ab";
  for (int i = 0; i < 14; ++i) {
    text << text.str();
    expected += std::string(expected);
    ASSERT_EQ(text.ToString(), expected);
  }
}

TEST(StrAppend, AppendsAnEmptyTextOfItsOwn) {
  Str text("");
  text << text << text.str();
  text.Append(text.str(), 0);
  EXPECT_EQ(text, "");
  EXPECT_EQ(text.IsNull(), 0);
}

// ---- Room ----

TEST(StrAppend, AppendsAnyLengthToAnyLength) {
  for (std::size_t length = 0; length < 140; ++length) {
    for (std::size_t count = 0; count < 140; count += 3) {
      std::string const more(count, '#');
      Str text = TextOf(length, 0);
      text.Append(more.data(), more.size());
      ASSERT_EQ(text.ToString(), Letters(length) + more);
      ASSERT_EQ(text.str()[length + count], '\0');
    }
  }
}

TEST(StrAppend, AppendsNoBytesFromNowhere) {
  for (std::size_t const room : {0U, 200U}) {
    Str text = TextOf(20, room);
    text.Append(nullptr, 0);
    text << kNoText << Str();
    EXPECT_EQ(text.ToString(), Letters(20)) << room;
  }
}

TEST(StrAppend, ANullTextIsMadeEmptyByNoBytesOnly) {
  Str text;
  text << kNoText << Str();
  EXPECT_EQ(text.IsNull(), 1);
  text.Append(nullptr, 0);
  EXPECT_EQ(text.IsNull(), 0);
  EXPECT_EQ(text, "");
}

TEST(StrAppend, AppendsToATextThatWasMovedFrom) {
  Str text("abc");
  Str const taken(std::move(text));
  text << 'x' << "yz" << 1;
  EXPECT_EQ(text, "xyz1");
  EXPECT_EQ(taken, "abc");
}

TEST(StrAppend, AWriterFindsItsRoomBehindTheText) {
  for (std::size_t const room : {0U, 3U, 4U, 200U}) {
    Str text = TextOf(20, room);
    text.AppendWith(4, [](char* at) {
      at[0] = 'X';
      at[1] = 'Y';
      return std::size_t{2};
    });
    EXPECT_EQ(text.ToString(), Letters(20) + "XY") << room;
    EXPECT_EQ(text.str()[22], '\0') << room;
  }
}

TEST(StrAppend, AWriterOfNothingLeavesTheText) {
  Str text("abc");
  text.AppendWith(0, [](char*) { return std::size_t{0}; });
  text.AppendWith(500, [](char*) { return std::size_t{0}; });
  EXPECT_EQ(text, "abc");
}

TEST(StrAppend, RefusesMoreThanALengthCanSayAndStaysAsItWas) {
  Str text("abc");
  EXPECT_THROW(text.Append("", std::size_t{INT_MAX}), AException);
  EXPECT_THROW(text.Append("", SIZE_MAX), AException);
  EXPECT_THROW(text.Append(text.str(), SIZE_MAX - 1), AException);
  EXPECT_EQ(text, "abc");
}

// ---- Texts of columns ----

TEST(StrAppend, AColumnTakesWhatFitsItsCapacity) {
  ASVStr text(5);
  text = "ab";
  text << "cd" << 'e' << 'f' << "gh";
  EXPECT_STREQ(text.str(), "abcde");
}

TEST(StrAppend, AColumnTakesItsOwnText) {
  ASVStr text(8);
  text = "abc";
  text << text.str();
  EXPECT_STREQ(text.str(), "abcabc");
  text.Append(text.str() + 1, 4);
  EXPECT_STREQ(text.str(), "abcabcbc");
}

TEST(StrAppend, AColumnTakesItself) {
  ASVStr text(5);
  text = "abc";
  text << static_cast<Str const&>(text);
  EXPECT_STREQ(text.str(), "abcab");
}

TEST(StrAppend, ANullColumnStopsBeingNull) {
  ASVStr text(5);
  text << kNoText << Str();
  EXPECT_EQ(text.IsNull(), 1);
  text << "";
  EXPECT_EQ(text.IsNull(), 0);
  EXPECT_STREQ(text.str(), "");
}

TEST(StrAppend, AColumnTakesNoBytesFromNowhere) {
  ASVStr text(5);
  text = "abc";
  text.Append(nullptr, 0);
  EXPECT_STREQ(text.str(), "abc");
}

TEST(StrAppend, AColumnTakesNumbersAsFarAsTheyFit) {
  ASVStr text(5);
  text = "n=";
  text << 12345;
  EXPECT_STREQ(text.str(), "n=123");
}

TEST(StrAppend, AColumnIsAppendedUpToItsFirstNul) {
  ASVStr column(8);
  column = "abc";
  Str text("<");
  text << static_cast<Str const&>(column) << '>';
  EXPECT_EQ(text, "<abc>");
}

TEST(StrAppend, ANullColumnIsAppendedAsNothing) {
  ASVStr const column(8);
  Str text;
  text << static_cast<Str const&>(column);
  EXPECT_EQ(text.IsNull(), 1);
}

// ---- Moving ----

TEST(StrMove, TakesTheBufferOver) {
  Str text("a text long enough to have a block of its own");
  char const* const buffer = text.str();
  Str const moved(std::move(text));
  EXPECT_EQ(moved.str(), buffer);
  EXPECT_EQ(moved, "a text long enough to have a block of its own");
}

TEST(StrMove, KeepsTheRoomOfTheText) {
  Str text(100);
  text << "abc";
  Str moved(std::move(text));
  char const* const buffer = moved.str();
  moved << Letters(97).c_str();
  EXPECT_EQ(moved.str(), buffer);
  EXPECT_EQ(moved.ToString(), "abc" + Letters(97));
}

TEST(StrMove, KeepsNullAndEmptyApart) {
  Str null;
  Str empty("");
  EXPECT_EQ(Str(std::move(null)).IsNull(), 1);
  EXPECT_EQ(Str(std::move(empty)).IsNull(), 0);
}

TEST(StrMove, LeavesTheBufferOfAColumn) {
  ASVStr column(8);
  column = "abc";
  char const* const buffer = column.str();
  Str moved(std::move(static_cast<Str&>(column)));
  moved << " and more than fits the column";
  EXPECT_EQ(moved, "abc and more than fits the column");
  EXPECT_EQ(column.str(), buffer);
  EXPECT_STREQ(column.str(), "abc");
  column = "12345678";
  EXPECT_STREQ(column.str(), "12345678");
}

TEST(StrMove, OfANullColumnIsNull) {
  ASVStr column(8);
  EXPECT_EQ(Str(std::move(static_cast<Str&>(column))).IsNull(), 1);
  EXPECT_EQ(column.IsNull(), 1);
}

TEST(StrMove, IntoAColumnCutsTheText) {
  ASVStr column(4);
  Str text("abcdefgh");
  static_cast<Str&>(column) = std::move(text);
  EXPECT_STREQ(column.str(), "abcd");
}

TEST(StrMove, BackAndForthKeepsTheText) {
  Str one("a text long enough to have a block of its own");
  Str other;
  for (int i = 0; i < 100; ++i) {
    other = std::move(one);
    one = std::move(other);
  }
  EXPECT_EQ(one, "a text long enough to have a block of its own");
}

}  // namespace
