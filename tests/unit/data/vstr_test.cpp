#include "corvane/data/vstr.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <type_traits>

#include "corvane/data/value/exception.h"
#include "tests/unit/data/column_probes.h"

using corvane::test::Slot;
using testing::StrEq;
using testing::ThrowsMessage;

namespace {

static_assert(!std::is_convertible<unsigned, ASVStr>::value, "");
static_assert(!std::is_assignable<ASVStr&, int>::value, "a number is no text");

// The whole buffer with the NUL at its end.
std::string Buffer(ASStr const& text) {
  return std::string(static_cast<char const*>(text.voidptr()), text.Capacity() + std::size_t{1});
}

ASVStr Holding(char const* text, unsigned capacity = 5) {
  ASVStr value(capacity);
  value = text;
  return value;
}

ASStr Padded(char const* text, unsigned capacity) {
  ASStr value(capacity);
  value = text;
  return value;
}

TEST(ASVStr, NewBufferIsAllNul) { EXPECT_EQ(Buffer(ASVStr(5)), std::string("\0\0\0\0\0\0", 6)); }

TEST(ASVStr, CapacityOverIntMaxThrows) {
  EXPECT_THAT([] { ASVStr text(2147483648u); }, ThrowsMessage<AException>(StrEq("Text is too long for Str. ")));
}

TEST(ASVStr, SizeIsTheCapacityWhateverTheText) {
  ASVStr const text = Holding("ab");
  EXPECT_EQ(text.GetSize(), 5);
  EXPECT_EQ(text.size(), 5);
  EXPECT_EQ(text.length(), 2);
}

TEST(ASVStr, AssignedTextIsNotPadded) {
  ASVStr const text = Holding("ab");
  EXPECT_EQ(text.getstr(), "ab");
  EXPECT_EQ(Buffer(text), std::string("ab\0\0\0\0", 6));
}

TEST(ASVStr, AssignedStrIsNotPadded) {
  ASVStr text(5);
  text = Str("ab");
  EXPECT_EQ(Buffer(text), std::string("ab\0\0\0\0", 6));
}

TEST(ASVStr, AssignedStandardStringIsNotPadded) {
  ASVStr text(5);
  text = std::string("ab");
  EXPECT_EQ(text.getstr(), "ab");
}

TEST(ASVStr, LongerTextIsCut) {
  EXPECT_EQ(Holding("abcdefg").getstr(), "abcde");
  ASVStr text(5);
  text = Str("abcdefg");
  EXPECT_EQ(text.getstr(), "abcde");
}

TEST(ASVStr, TextOfExactlyTheCapacityFits) { EXPECT_EQ(Holding("abcde").getstr(), "abcde"); }

TEST(ASVStr, ShorterTextLeavesNothingOfALongerOne) {
  ASVStr text = Holding("abcde");
  text = "x";
  EXPECT_EQ(Buffer(text), std::string("x\0\0\0\0\0", 6));
  text = "abcde";
  text = Str("y");
  EXPECT_EQ(Buffer(text), std::string("y\0\0\0\0\0", 6));
}

TEST(ASVStr, EmptyTextIsNotNull) {
  ASVStr const text = Holding("");
  EXPECT_EQ(text.IsNull(), 0);
  EXPECT_EQ(text.getstr(), "");
  EXPECT_EQ(text.getstr().IsNull(), 0);
}

TEST(ASVStr, EmptyStrIsNotNull) {
  ASVStr text(5);
  text = Str("");
  EXPECT_EQ(text.IsNull(), 0);
}

TEST(ASVStr, NullPointerMakesNullAndZeroesTheBuffer) {
  ASVStr text = Holding("abcde");
  text = static_cast<char const*>(nullptr);
  EXPECT_EQ(text.IsNull(), 1);
  EXPECT_EQ(Buffer(text), std::string("\0\0\0\0\0\0", 6));
}

TEST(ASVStr, NullStrMakesNullAndZeroesTheBuffer) {
  ASVStr text = Holding("abcde");
  text = Str();
  EXPECT_EQ(text.IsNull(), 1);
  EXPECT_EQ(Buffer(text), std::string("\0\0\0\0\0\0", 6));
}

TEST(ASVStr, BlanksThatWereAssignedStay) { EXPECT_EQ(Holding("ab ").getstr(), "ab "); }

TEST(ASVStr, TakesAFixedTextWithItsPadding) {
  ASVStr text(5);
  text = Padded("ab", 4);
  EXPECT_EQ(text.getstr(), "ab  ");
}

TEST(ASVStr, ColumnOfLargerCapacityIsCut) {
  ASVStr text(3);
  text = Holding("abcdefgh", 10);
  EXPECT_EQ(text.getstr(), "abc");
  EXPECT_EQ(text.Capacity(), 3u);
}

TEST(ASVStr, NullColumnMakesNull) {
  ASVStr text = Holding("ab");
  text = ASVStr(10);
  EXPECT_EQ(text.IsNull(), 1);
  text = "ab";
  text = ASStr(10);
  EXPECT_EQ(text.IsNull(), 1);
}

TEST(ASVStr, TextFromItsOwnBufferIsTaken) {
  ASVStr text = Holding("abcde");
  text = text.str() + 1;
  EXPECT_EQ(Buffer(text), std::string("bcde\0\0", 6));
}

TEST(ASVStr, ItsOwnTextIsTaken) {
  ASVStr text = Holding("ab");
  text = text.str();
  EXPECT_EQ(text.getstr(), "ab");
}

TEST(ASVStr, ItselfSeenAsAStrIsTaken) {
  ASVStr text = Holding("ab");
  text = static_cast<Str const&>(text);
  EXPECT_EQ(text.getstr(), "ab");
  text = static_cast<ASStr const&>(text);
  EXPECT_EQ(text.getstr(), "ab");
}

TEST(ASVStr, TextEndsAtItsFirstNul) {
  ASVStr text(5);
  text = Str("a\0b", 3);
  EXPECT_EQ(text.getstr(), "a");
  EXPECT_EQ(text.length(), 1);
}

TEST(ASVStr, AssignmentReturnsTheVariableText) {
  ASVStr text(5);
  ASVStr& byText = text = "ab";
  ASVStr& byStr = text = Str("ab");
  ASVStr& byColumn = text = Padded("ab", 5);
  EXPECT_EQ(&byText, &text);
  EXPECT_EQ(&byStr, &text);
  EXPECT_EQ(&byColumn, &text);
}

TEST(ASVStr, AssignedThroughTheFixedTextClassItIsNotPadded) {
  ASVStr variable(5);
  ASStr& text = variable;
  text = "ab";
  EXPECT_EQ(Buffer(variable), std::string("ab\0\0\0\0", 6));
  text = Str("cd");
  EXPECT_EQ(Buffer(variable), std::string("cd\0\0\0\0", 6));
  text = Padded("e", 1);
  EXPECT_EQ(Buffer(variable), std::string("e\0\0\0\0\0", 6));
}

TEST(ASVStr, CopyDoesNotPad) {
  ASVStr text(5);
  static_cast<basic_type&>(text).copy(Str("ab"));
  EXPECT_EQ(Buffer(text), std::string("ab\0\0\0\0", 6));
}

TEST(ASVStr, CopyOfANullStrMakesNull) {
  ASVStr text = Holding("ab");
  text.copy(Str());
  EXPECT_EQ(text.IsNull(), 1);
}

TEST(ASVStr, CopyOfAnEmptyStrIsNotNull) {
  ASVStr text(5);
  text.copy(Str(""));
  EXPECT_EQ(text.IsNull(), 0);
}

TEST(ASVStr, TrimOfAShorterTextStopsAtOnce) {
  ASVStr text = Holding("ab ");
  text.Trim();
  EXPECT_EQ(text.getstr(), "ab ");
}

TEST(ASVStr, TrimOfAFullTextRemovesItsBlanks) {
  ASVStr text = Holding("ab   ");
  text.Trim();
  EXPECT_EQ(text.getstr(), "ab");
}

TEST(ASVStr, TrimDoesNotDependOnAnEarlierText) {
  ASVStr text = Holding("     ");
  text = "ab ";
  text.Trim();
  EXPECT_EQ(text.getstr(), "ab ");
}

TEST(ASVStr, CapacityZeroTakesTheEmptyText) {
  ASVStr text(0);
  text = "abc";
  text.Trim();
  EXPECT_EQ(text.IsNull(), 0);
  EXPECT_EQ(text.getstr(), "");
}

TEST(ASVStr, LargeCapacityIsFilled) {
  ASVStr text(65535);
  text = std::string(70000, 'x');
  EXPECT_EQ(text.getstr(), std::string(65535, 'x').c_str());
}

TEST(ASVStr, FilledTextIsCutAndEndsTheNullState) {
  ASVStr text(5);
  text.Fill("abcdefgh", 8);
  EXPECT_EQ(text.IsNull(), 0);
  EXPECT_EQ(text.getstr(), "abcde");
}

TEST(ASVStr, TrailingBlanksDoNotCountInComparisons) {
  EXPECT_TRUE(Holding("ab") == Holding("ab "));
  EXPECT_TRUE(Holding("ab") == Padded("ab", 20));
  EXPECT_TRUE(Padded("ab", 20) == Holding("ab"));
  EXPECT_TRUE(Holding("ab ") == "ab");
  EXPECT_TRUE(Holding("ab ") == Str("ab"));
  EXPECT_FALSE(Holding("ab ") != "ab");
  EXPECT_TRUE("ab" == Holding("ab "));
}

TEST(ASVStr, IsOrderedAgainstAFixedText) {
  EXPECT_TRUE(Holding("ab") < Padded("abc", 5));
  EXPECT_FALSE(Holding("ab") < Padded("ab", 5));
  EXPECT_TRUE(Padded("aa", 5) < Holding("ab"));
}

TEST(ASVStr, StrOnTheLeftIsComparedTheSameWay) {
  EXPECT_TRUE(Str("ab") == Holding("ab "));
  EXPECT_FALSE(Str("ab") != Holding("ab "));
  EXPECT_FALSE(Str("ab") < Holding("ab "));
  EXPECT_TRUE(Str("aa") < Holding("ab "));
}

TEST(ASVStr, StaleBytesBehindARawTextDoNotCount) {
  ASVStr const text = Holding("abcde");
  std::memcpy(text.voidptr(), "ab", 3);
  EXPECT_TRUE(text == Holding("ab"));
  EXPECT_FALSE(text < Holding("ab"));
  EXPECT_FALSE(Holding("ab") < text);
}

TEST(ASVStr, NullIsNoEmptyText) {
  EXPECT_FALSE(ASVStr(5) == Holding(""));
  EXPECT_TRUE(ASVStr(5) < Holding(""));
  EXPECT_TRUE(ASVStr(5) == ASVStr(7));
}

TEST(ASVStr, AppendedTextIsCutAtTheCapacity) {
  ASVStr text = Holding("ab");
  text << "cd"
       << "efgh";
  EXPECT_EQ(Buffer(text), std::string("abcde\0", 6));
}

TEST(ASVStr, OverridesTheAssignmentsOfTheFixedTextInPlace) {
  EXPECT_EQ(Slot(static_cast<ASVStr& (ASVStr::*)(Str const&)>(&ASVStr::operator=)), 15);
  EXPECT_EQ(Slot(static_cast<ASVStr& (ASVStr::*)(char const*)>(&ASVStr::operator=)), 16);
  EXPECT_EQ(Slot(static_cast<ASVStr& (ASVStr::*)(ASStr const&)>(&ASVStr::operator=)), 17);
}

}  // namespace
