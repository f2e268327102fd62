#include "corvane/data/str.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <deque>
#include <string>
#include <type_traits>
#include <utility>

#include "corvane/data/value/exception.h"
#include "corvane/data/value/int.h"
#include "corvane/data/vstr.h"
#include "tests/unit/data/column_probes.h"

using corvane::test::Slot;
using testing::StrEq;
using testing::ThrowsMessage;

namespace {

static_assert(!std::is_convertible<unsigned, ASStr>::value, "");
static_assert(!std::is_assignable<ASStr&, int>::value, "a number is no text");
static_assert(!std::is_default_constructible<ASStr>::value, "");

// An application's column that counts what it is asked to do.
class CountingStr : public ASStr {
 public:
  using ASStr::ASStr;
  using ASStr::operator=;
  using ASStr::operator==;
  using ASStr::operator<;
  ASStr& operator=(Str const& text) override {
    ++assignments;
    return ASStr::operator=(text);
  }
  ASStr& operator=(char const* text) override {
    ++assignments;
    return ASStr::operator=(text);
  }

  int assignments = 0;
};

// An application's value of the text kind that is no Str.
class ForeignText : public basic_type {
 public:
  explicit ForeignText(char const* text) : text_(text) {}
  int IsNull() const override { return 0; }
  void SetNull() override { text_ = nullptr; }
  int GetSize() const override { return text_ != nullptr ? static_cast<int>(std::strlen(text_)) : 0; }
  int GetType() const override { return corvane::kTypeStr; }
  Str getstr() const override { return text_; }
  void* voidptr() const override { return const_cast<char*>(text_); }
  bool operator==(basic_type const&) const override { return false; }
  bool operator<(basic_type const&) const override { return false; }
  void copy(basic_type const&) override {}

 private:
  char const* text_;
};

// An application's text that writes its NULL as a word.
class TextWithNullWord : public Str {
 public:
  int IsNull() const override { return 1; }
  Str getstr() const override { return "NULL"; }
};

// The whole buffer with the NUL at its end.
std::string Buffer(ASStr const& text) {
  return std::string(static_cast<char const*>(text.voidptr()), text.Capacity() + std::size_t{1});
}

// Writes bytes to the beginning of the buffer, as a fetch in place does.
void WriteRaw(ASStr const& text, char const* bytes, std::size_t length) { std::memcpy(text.voidptr(), bytes, length); }

ASStr Holding(char const* text, unsigned capacity = 5) {
  ASStr value(capacity);
  value = text;
  return value;
}

basic_type const& Root(basic_type const& value) { return value; }

// ---- Construction ----

TEST(ASStr, NewBufferIsAllNul) { EXPECT_EQ(Buffer(ASStr(5)), std::string("\0\0\0\0\0\0", 6)); }

TEST(ASStr, HasTheCapacityItWasBuiltWith) {
  ASStr const text(5);
  EXPECT_EQ(text.Capacity(), 5u);
  EXPECT_EQ(text.GetSize(), 5);
  EXPECT_EQ(text.size(), 5);
}

TEST(ASStr, CapacityOverIntMaxThrows) {
  EXPECT_THAT([] { ASStr text(2147483648u); }, ThrowsMessage<AException>(StrEq("Text is too long for Str. ")));
  EXPECT_THAT([] { ASStr text(4294967295u); }, ThrowsMessage<AException>(StrEq("Text is too long for Str. ")));
}

TEST(ASStr, CopyHasTheSameCapacityAndBytes) {
  ASStr source(5);
  WriteRaw(source, "a\0bcd", 5);
  ASStr const copy(source);
  EXPECT_EQ(Buffer(copy), std::string("a\0bcd\0", 6));
}

TEST(ASStr, CopyHasABufferOfItsOwn) {
  ASStr const source = Holding("ab");
  ASStr const copy(source);
  EXPECT_NE(copy.voidptr(), source.voidptr());
}

// ---- Assignment ----

TEST(ASStr, AssignedTextIsPaddedWithBlanks) { EXPECT_EQ(Buffer(Holding("ab")), std::string("ab   \0", 6)); }

TEST(ASStr, AssignedStrIsPaddedWithBlanks) {
  ASStr text(5);
  text = Str("ab");
  EXPECT_EQ(Buffer(text), std::string("ab   \0", 6));
}

TEST(ASStr, AssignedStandardStringIsPaddedWithBlanks) {
  ASStr text(5);
  text = std::string("ab");
  EXPECT_EQ(Buffer(text), std::string("ab   \0", 6));
}

TEST(ASStr, TextOfExactlyTheCapacityFits) { EXPECT_EQ(Buffer(Holding("abcde")), std::string("abcde\0", 6)); }

TEST(ASStr, LongerTextIsCut) {
  EXPECT_EQ(Buffer(Holding("abcdefgh")), std::string("abcde\0", 6));
  ASStr text(5);
  text = Str("abcdefgh");
  EXPECT_EQ(Buffer(text), std::string("abcde\0", 6));
}

TEST(ASStr, TextIsCutAtBytesEvenInsideACharacter) {
  EXPECT_EQ(Holding("\xC3\xA9\xC3\xA9\xC3\xA9").getstr(), "\xC3\xA9\xC3\xA9\xC3");
}

TEST(ASStr, EmptyTextBecomesBlanks) {
  ASStr text(5);
  text = "";
  EXPECT_EQ(text.IsNull(), 0);
  EXPECT_EQ(Buffer(text), std::string("     \0", 6));
}

TEST(ASStr, EmptyStrBecomesBlanks) {
  ASStr text(5);
  text = Str("");
  EXPECT_EQ(text.IsNull(), 0);
  EXPECT_EQ(Buffer(text), std::string("     \0", 6));
}

TEST(ASStr, NullPointerMakesNullAndZeroesTheBuffer) {
  ASStr text = Holding("abcde");
  text = static_cast<char const*>(nullptr);
  EXPECT_EQ(text.IsNull(), 1);
  EXPECT_EQ(Buffer(text), std::string("\0\0\0\0\0\0", 6));
}

TEST(ASStr, NullStrMakesNullAndZeroesTheBuffer) {
  ASStr text = Holding("abcde");
  text = Str();
  EXPECT_EQ(text.IsNull(), 1);
  EXPECT_EQ(Buffer(text), std::string("\0\0\0\0\0\0", 6));
}

TEST(ASStr, ShorterTextLeavesNothingOfALongerOne) {
  ASStr text = Holding("abcde");
  text = "x";
  EXPECT_EQ(Buffer(text), std::string("x    \0", 6));
}

TEST(ASStr, ColumnOfLargerCapacityIsCut) {
  ASStr text(3);
  text = Holding("abcdefgh", 10);
  EXPECT_EQ(Buffer(text), std::string("abc\0", 4));
}

TEST(ASStr, ColumnOfSmallerCapacityIsPadded) {
  ASStr text(5);
  text = Holding("abc", 3);
  EXPECT_EQ(Buffer(text), std::string("abc  \0", 6));
}

TEST(ASStr, AssignmentKeepsTheCapacity) {
  ASStr text(3);
  text = Holding("abcdefgh", 10);
  EXPECT_EQ(text.Capacity(), 3u);
}

TEST(ASStr, TakesAVariableText) {
  ASVStr source(10);
  source = "ab";
  ASStr text(5);
  text = source;
  EXPECT_EQ(Buffer(text), std::string("ab   \0", 6));
}

TEST(ASStr, NullColumnMakesNull) {
  ASStr text = Holding("ab");
  text = ASVStr(10);
  EXPECT_EQ(text.IsNull(), 1);
  EXPECT_EQ(Buffer(text), std::string("\0\0\0\0\0\0", 6));
}

TEST(ASStr, TextFromItsOwnBufferIsTaken) {
  ASStr text = Holding("abcde");
  text = text.str() + 1;
  EXPECT_EQ(Buffer(text), std::string("bcde \0", 6));
}

TEST(ASStr, TextAtTheEndOfItsOwnBufferIsTaken) {
  ASStr text = Holding("abcde");
  text = text.str() + 5;
  EXPECT_EQ(Buffer(text), std::string("     \0", 6));
}

TEST(ASStr, ItsOwnTextIsTaken) {
  ASStr text = Holding("ab");
  text = text.str();
  EXPECT_EQ(Buffer(text), std::string("ab   \0", 6));
}

TEST(ASStr, ItselfSeenAsAStrIsTaken) {
  ASStr text = Holding("ab");
  text = static_cast<Str const&>(text);
  EXPECT_EQ(Buffer(text), std::string("ab   \0", 6));
}

TEST(ASStr, TextEndsAtItsFirstNul) {
  ASStr text(5);
  text = Str("a\0b", 3);
  EXPECT_EQ(text.getstr(), "a");
  EXPECT_EQ(text.length(), 1);
  EXPECT_TRUE(text == "a");
}

TEST(ASStr, AssignmentReturnsTheColumn) {
  ASStr text(5);
  EXPECT_EQ(&(text = "ab"), &text);
  EXPECT_EQ(&(text = Str("ab")), &text);
  EXPECT_EQ(&(text = nullptr), &text);
}

// ---- Null state ----

TEST(ASStr, SetNullFillsTheBufferWithNul) {
  ASStr text = Holding("abcde");
  text.SetNull();
  EXPECT_EQ(Buffer(text), std::string("\0\0\0\0\0\0", 6));
}

TEST(ASStr, NullIsANullText) {
  EXPECT_EQ(ASStr(5).getstr().IsNull(), 1);
  EXPECT_EQ(Str(ASStr(5)).IsNull(), 1);
}

TEST(ASStr, BlankTextIsNotANullText) { EXPECT_EQ(Holding("").getstr().IsNull(), 0); }

TEST(ASStr, NullIsAnEmptyTextToACReader) { EXPECT_STREQ(ASStr(5).str(), ""); }

TEST(ASStr, RawWriteDoesNotEndTheNullState) {
  ASStr const text(5);
  WriteRaw(text, "ab", 2);
  EXPECT_EQ(text.IsNull(), 1);
  EXPECT_EQ(text.getstr().IsNull(), 1);
}

TEST(ASStr, SetNullDropsWhatWasWrittenUnderNull) {
  ASStr text(5);
  WriteRaw(text, "ab", 2);
  text.SetNull();
  EXPECT_EQ(Buffer(text), std::string("\0\0\0\0\0\0", 6));
}

// ---- Text ----

TEST(ASStr, TextHasItsPadding) {
  EXPECT_EQ(Holding("ab").getstr(), "ab   ");
  EXPECT_STREQ(Holding("ab").str(), "ab   ");
  EXPECT_EQ(Holding("ab").length(), 5);
}

TEST(ASStr, CopiedIntoAStrItIsThePaddedText) {
  Str const text = Holding("ab");
  EXPECT_TRUE(text == "ab   ");
}

TEST(ASStr, RawWriteIsReadUpToItsFirstNul) {
  ASStr const text = Holding("abcde");
  WriteRaw(text, "xy", 3);
  EXPECT_EQ(text.getstr(), "xy");
  EXPECT_EQ(text.length(), 2);
}

TEST(ASStr, RawWriteOfTheWholeCapacityIsReadWhole) {
  ASStr const text = Holding("");
  WriteRaw(text, "abcde", 5);
  EXPECT_EQ(text.getstr(), "abcde");
}

// ---- Fill ----

TEST(ASStr, FilledTextIsNotPadded) {
  ASStr text(5);
  text.Fill("xy", 2);
  EXPECT_EQ(text.IsNull(), 0);
  EXPECT_EQ(Buffer(text), std::string("xy\0\0\0\0", 6));
}

TEST(ASStr, FillLeavesNothingOfALongerText) {
  ASStr text = Holding("abcde");
  text.Fill("xy", 2);
  EXPECT_EQ(Buffer(text), std::string("xy\0\0\0\0", 6));
}

TEST(ASStr, FillCutsALongerText) {
  ASStr text(5);
  text.Fill("abcdefgh", 8);
  EXPECT_EQ(Buffer(text), std::string("abcde\0", 6));
}

TEST(ASStr, FillTakesNoMoreThanTheGivenLength) {
  ASStr text(5);
  text.Fill("abcdefgh", 3);
  EXPECT_EQ(text.getstr(), "abc");
}

TEST(ASStr, FilledWithNothingIsEmptyNotNull) {
  ASStr text(5);
  text.Fill(nullptr, 0);
  EXPECT_EQ(text.IsNull(), 0);
  EXPECT_EQ(text.getstr(), "");
}

TEST(ASStr, FilledFromItsOwnBufferItMoves) {
  ASStr text = Holding("abcde");
  text.Fill(text.str() + 2, 3);
  EXPECT_EQ(text.getstr(), "cde");
}

// ---- Trim ----

TEST(ASStr, TrimRemovesThePadding) {
  ASStr text = Holding("ab");
  text.Trim();
  EXPECT_EQ(Buffer(text), std::string("ab\0\0\0\0", 6));
  EXPECT_EQ(text.getstr(), "ab");
}

TEST(ASStr, TrimReachedThroughTheColumnSideRemovesThePadding) {
  ASStr text = Holding("ab");
  static_cast<ASData&>(text).Trim();
  EXPECT_EQ(text.getstr(), "ab");
}

TEST(ASStr, TrimOfBlanksKeepsTheFirst) {
  ASStr text = Holding("");
  text.Trim();
  EXPECT_EQ(Buffer(text), std::string(" \0\0\0\0\0", 6));
}

TEST(ASStr, TrimOfAFullTextChangesNothing) {
  ASStr text = Holding("abcde");
  text.Trim();
  EXPECT_EQ(Buffer(text), std::string("abcde\0", 6));
}

TEST(ASStr, TrimLeavesInnerAndLeadingBlanks) {
  ASStr text = Holding(" a b");
  text.Trim();
  EXPECT_EQ(Buffer(text), std::string(" a b\0\0", 6));
}

TEST(ASStr, TrimRemovesBlanksThatWereAssigned) {
  ASStr text = Holding("ab  c");
  text = "ab  ";
  text.Trim();
  EXPECT_EQ(text.getstr(), "ab");
}

TEST(ASStr, TrimOfAnUnpaddedTextStopsAtItsEnd) {
  ASStr text(5);
  text.Fill("a ", 2);
  text.Trim();
  EXPECT_EQ(text.getstr(), "a ");
}

TEST(ASStr, SecondTrimChangesNothing) {
  ASStr text = Holding("ab");
  text.Trim();
  text.Trim();
  EXPECT_EQ(text.getstr(), "ab");
}

TEST(ASStr, TrimmedTextIsNotNull) {
  ASStr text = Holding("");
  text.Trim();
  EXPECT_EQ(text.IsNull(), 0);
}

// ---- Capacities at the limits ----

TEST(ASStr, CapacityZeroTakesTheEmptyText) {
  ASStr text(0);
  text = "abc";
  EXPECT_EQ(text.IsNull(), 0);
  EXPECT_EQ(text.getstr(), "");
  EXPECT_EQ(text.GetSize(), 0);
  EXPECT_EQ(Buffer(text), std::string("\0", 1));
}

TEST(ASStr, CapacityZeroCanBeTrimmed) {
  ASStr text = Holding("abc", 0);
  text.Trim();
  EXPECT_EQ(Buffer(text), std::string("\0", 1));
}

TEST(ASStr, CapacityZeroHasItsNullState) {
  ASStr text = Holding("abc", 0);
  text.SetNull();
  EXPECT_EQ(text.IsNull(), 1);
  EXPECT_NE(text.voidptr(), nullptr);
}

TEST(ASStr, CapacityZeroEqualsBlanks) {
  EXPECT_TRUE(Root(Holding("abc", 0)) == Holding(""));
  EXPECT_TRUE(Root(Holding("abc", 0)) == Str(""));
}

TEST(ASStr, CapacityZeroCanBeCopied) {
  ASStr const text = Holding("abc", 0);
  ASStr const copy(text);
  EXPECT_EQ(copy.IsNull(), 0);
  EXPECT_EQ(copy.Capacity(), 0u);
}

TEST(ASStr, CapacityOneKeepsItsBlankUnderTrim) {
  ASStr text = Holding("", 1);
  text.Trim();
  EXPECT_EQ(text.getstr(), " ");
}

TEST(ASStr, LargeCapacityIsFilled) {
  std::string const longer(70000, 'x');
  ASStr text(65535);
  text = longer;
  EXPECT_EQ(text.length(), 65535);
  EXPECT_EQ(text.getstr(), std::string(65535, 'x').c_str());
}

TEST(ASStr, LargeCapacityIsPaddedAndTrimmed) {
  ASStr text(65535);
  text = "ab";
  EXPECT_EQ(text.length(), 65535);
  text.Trim();
  EXPECT_EQ(text.getstr(), "ab");
}

// ---- copy ----

TEST(ASStr, CopyPadsTheText) {
  ASStr text(5);
  text.copy(Str("ab"));
  EXPECT_EQ(Buffer(text), std::string("ab   \0", 6));
}

TEST(ASStr, CopyCutsALongerText) {
  ASStr text(5);
  text.copy(Str("abcdefgh"));
  EXPECT_EQ(text.getstr(), "abcde");
}

TEST(ASStr, CopyOfANullStrMakesNull) {
  ASStr text = Holding("ab");
  text.copy(Str());
  EXPECT_EQ(text.IsNull(), 1);
  EXPECT_EQ(Buffer(text), std::string("\0\0\0\0\0\0", 6));
}

TEST(ASStr, CopyTakesTheNullStateWhateverTheTextForm) {
  ASStr text = Holding("ab");
  text.copy(TextWithNullWord());
  EXPECT_EQ(text.IsNull(), 1);
}

TEST(ASStr, CopyOfAnEmptyStrIsNotNull) {
  ASStr text(5);
  text.copy(Str(""));
  EXPECT_EQ(text.IsNull(), 0);
  EXPECT_EQ(text.getstr(), "     ");
}

TEST(ASStr, CopyOfAVariableTextEndsTheNullState) {
  ASVStr source(10);
  source = "ab";
  ASStr text(5);
  text.copy(source);
  EXPECT_EQ(text.IsNull(), 0);
  EXPECT_EQ(text.getstr(), "ab   ");
}

// ---- Comparison through the root ----

TEST(ASStr, PaddingDoesNotCountInEquality) {
  EXPECT_TRUE(Root(Holding("ab")) == Str("ab"));
  EXPECT_TRUE(Root(Holding("ab")) == Str("ab "));
  EXPECT_TRUE(Root(Holding("ab")) == Holding("ab", 20));
  EXPECT_TRUE(Root(Holding("ab", 20)) == Holding("ab"));
}

TEST(ASStr, LeadingBlanksCountInEquality) { EXPECT_FALSE(Root(Holding(" ab")) == Holding("ab")); }

TEST(ASStr, PaddedTextEqualsTheTrimmedOne) {
  ASStr trimmed = Holding("ab");
  trimmed.Trim();
  EXPECT_TRUE(Root(Holding("ab")) == trimmed);
  EXPECT_TRUE(Root(trimmed) == Holding("ab"));
}

TEST(ASStr, PrefixIsNotEqualAndComesFirst) {
  EXPECT_FALSE(Root(Holding("ab")) == Holding("abc"));
  EXPECT_TRUE(Root(Holding("ab")) < Holding("abc"));
  EXPECT_FALSE(Root(Holding("abc")) < Holding("ab"));
}

TEST(ASStr, TextsAreOrderedByBytes) {
  EXPECT_TRUE(Root(Holding("abc")) < Holding("abd"));
  EXPECT_TRUE(Root(Holding("B")) < Holding("a"));
  EXPECT_FALSE(Root(Holding("abd")) < Holding("abc"));
}

TEST(ASStr, BytesAreOrderedAsUnsigned) {
  EXPECT_TRUE(Root(Holding("z")) < Holding("\xE9"));
  EXPECT_FALSE(Root(Holding("\xE9")) < Holding("z"));
}

TEST(ASStr, TextWithAControlCharacterBehindComesAfterItsPrefix) {
  EXPECT_TRUE(Root(Holding("ab")) < Holding("ab\x01"));
  EXPECT_FALSE(Root(Holding("ab\x01")) < Holding("ab"));
}

TEST(ASStr, BytesBehindTheFirstNulDoNotCount) {
  ASStr const left = Holding("abcde");
  ASStr const right = Holding("abxyz");
  WriteRaw(left, "ab", 3);
  WriteRaw(right, "ab", 3);
  EXPECT_TRUE(Root(left) == right);
  EXPECT_FALSE(Root(left) < right);
}

TEST(ASStr, LongerTextThanTheCapacityIsComparedWhole) {
  EXPECT_FALSE(Root(Holding("abcde")) == Str("abcdef"));
  EXPECT_TRUE(Root(Holding("abcde")) < Str("abcdef"));
  EXPECT_TRUE(Root(Holding("abcde")) == Str("abcde          "));
}

TEST(ASStr, NullLiesBeforeBlanks) {
  EXPECT_TRUE(Root(ASStr(5)) < Holding(""));
  EXPECT_FALSE(Root(ASStr(5)) == Holding(""));
  EXPECT_FALSE(Root(Holding("")) == ASStr(5));
  EXPECT_FALSE(Root(Holding("")) < ASStr(5));
}

TEST(ASStr, NullStrCountsAsNull) {
  EXPECT_TRUE(Root(ASStr(5)) == Str());
  EXPECT_FALSE(Root(ASStr(5)) < Str());
  EXPECT_FALSE(Root(Holding("")) == Str());
  EXPECT_FALSE(Root(Holding("ab")) < Str());
  EXPECT_TRUE(Root(ASStr(5)) < Str(""));
}

TEST(ASStr, NullComparesAsNullWhateverItsBufferHolds) {
  ASStr const null(5);
  WriteRaw(null, "ab", 2);
  EXPECT_TRUE(Root(null) == ASStr(5));
  EXPECT_FALSE(Root(null) == Holding("ab"));
  EXPECT_TRUE(Root(null) < Holding("aa"));
}

TEST(ASStr, ForeignTextIsReadThroughItsPointer) {
  EXPECT_TRUE(Root(Holding("ab")) == ForeignText("ab "));
  EXPECT_TRUE(Root(Holding("ab")) < ForeignText("abc"));
  EXPECT_FALSE(Root(Holding("ab")) < ForeignText("aa"));
}

TEST(ASStr, MissingForeignTextCountsAsNull) {
  EXPECT_TRUE(Root(ASStr(5)) == ForeignText(nullptr));
  EXPECT_FALSE(Root(Holding("")) == ForeignText(nullptr));
  EXPECT_FALSE(Root(Holding("")) < ForeignText(nullptr));
}

// ---- Comparison with texts ----

TEST(ASStr, EqualsATextWhateverThePadding) {
  ASStr const text = Holding("ab");
  EXPECT_TRUE(text == "ab");
  EXPECT_TRUE(text == "ab  ");
  EXPECT_TRUE(text == Str("ab"));
  EXPECT_TRUE(text == Holding("ab", 20));
  EXPECT_TRUE("ab" == text);
  EXPECT_FALSE(text == "abc");
  EXPECT_FALSE(text == Str("a"));
  EXPECT_FALSE("abc" == text);
}

TEST(ASStr, DiffersFromAnotherText) {
  ASStr const text = Holding("ab");
  EXPECT_TRUE(text != "abc");
  EXPECT_TRUE(text != Str("a"));
  EXPECT_TRUE(text != Holding("abc"));
  EXPECT_TRUE("x" != text);
  EXPECT_FALSE(text != "ab");
  EXPECT_FALSE(text != Str("ab "));
  EXPECT_FALSE(text != Holding("ab", 20));
  EXPECT_FALSE("ab" != text);
}

TEST(ASStr, IsOrderedAgainstAPlainText) {
  ASStr const text = Holding("ab");
  EXPECT_TRUE(text < "abc");
  EXPECT_FALSE(text < "ab");
  EXPECT_TRUE(text <= "ab ");
  EXPECT_FALSE(text <= "aa");
  EXPECT_TRUE(text > "aa");
  EXPECT_FALSE(text > "ab ");
  EXPECT_TRUE(text >= "ab ");
  EXPECT_FALSE(text >= "abc");
}

TEST(ASStr, PlainTextOnTheLeftIsOrderedTheSameWay) {
  ASStr const text = Holding("ab");
  EXPECT_TRUE("aa" < text);
  EXPECT_FALSE("ab " < text);
  EXPECT_TRUE("ab " <= text);
  EXPECT_FALSE("abc" <= text);
  EXPECT_TRUE("abc" > text);
  EXPECT_FALSE("ab " > text);
  EXPECT_TRUE("ab " >= text);
  EXPECT_FALSE("aa" >= text);
}

TEST(ASStr, IsOrderedAgainstAStr) {
  ASStr const text = Holding("ab");
  EXPECT_TRUE(text < Str("abc"));
  EXPECT_FALSE(text < Str("ab"));
  EXPECT_TRUE(text <= Str("ab "));
  EXPECT_FALSE(text <= Str("aa"));
  EXPECT_TRUE(text > Str("aa"));
  EXPECT_FALSE(text > Str("ab "));
  EXPECT_TRUE(text >= Str("ab "));
  EXPECT_FALSE(text >= Str("abc"));
}

TEST(ASStr, StrOnTheLeftIsComparedTheSameWay) {
  ASStr const text = Holding("ab");
  EXPECT_TRUE(Str("ab") == text);
  EXPECT_FALSE(Str("abc") == text);
  EXPECT_TRUE(Str("abc") != text);
  EXPECT_FALSE(Str("ab ") != text);
  EXPECT_TRUE(Str("aa") < text);
  EXPECT_FALSE(Str("ab") < text);
  EXPECT_TRUE(Str("ab ") <= text);
  EXPECT_FALSE(Str("abc") <= text);
  EXPECT_TRUE(Str("abc") > text);
  EXPECT_FALSE(Str("ab") > text);
  EXPECT_TRUE(Str("ab") >= text);
  EXPECT_FALSE(Str("aa") >= text);
}

TEST(ASStr, NullStrOnTheLeftCountsAsNull) {
  EXPECT_TRUE(Str() == ASStr(5));
  EXPECT_FALSE(Str() == Holding(""));
  EXPECT_TRUE(Str() < Holding(""));
  EXPECT_FALSE(Str() < ASStr(5));
}

TEST(ASStr, IsOrderedAgainstAnotherColumn) {
  ASStr const text = Holding("ab");
  EXPECT_TRUE(text < Holding("abc"));
  EXPECT_TRUE(text <= Holding("ab", 20));
  EXPECT_TRUE(text > Holding("aa"));
  EXPECT_TRUE(text >= Holding("ab", 20));
  EXPECT_FALSE(text < Holding("ab", 20));
  EXPECT_FALSE(text <= Holding("aa"));
  EXPECT_FALSE(text > Holding("ab", 20));
  EXPECT_FALSE(text >= Holding("abc"));
}

TEST(ASStr, NullPointerCountsAsNull) {
  char const* const none = nullptr;
  EXPECT_TRUE(ASStr(5) == none);
  EXPECT_FALSE(ASStr(5) < none);
  EXPECT_FALSE(Holding("") == none);
  EXPECT_FALSE(Holding("") < none);
  EXPECT_TRUE(Holding("") > none);
  EXPECT_TRUE(Holding("") != none);
}

TEST(ASStr, NullStrAsTextCountsAsNull) {
  EXPECT_TRUE(ASStr(5) == Str());
  EXPECT_FALSE(ASStr(5) < Str());
  EXPECT_FALSE(Holding("") == Str());
  EXPECT_FALSE(Holding("") < Str());
  EXPECT_TRUE(Holding("") > Str());
}

TEST(ASStr, NullIsLessThanEveryText) {
  ASStr const null(5);
  EXPECT_TRUE(null < "");
  EXPECT_TRUE(null < Str(""));
  EXPECT_TRUE(null < Holding(""));
  EXPECT_TRUE(null <= "");
  EXPECT_FALSE(null > "");
  EXPECT_FALSE(null >= "");
  EXPECT_FALSE(null == "");
  EXPECT_TRUE(null != "");
}

TEST(ASStr, UnlikeKindIsRefusedByInequality) {
  ASStr const text = Holding("ab");
  EXPECT_THAT([&] { static_cast<void>(text != Root(Int(5))); },
              ThrowsMessage<AException>(StrEq("Incompatible types for ASStr::operator == (). ")));
}

// ---- Order ----

// Texts that lie close together: null, padded, filled without padding, trimmed, of several capacities.
class ASStrOrder : public testing::Test {
 protected:
  ASStrOrder() {
    for (unsigned const capacity : {0u, 2u, 6u}) {
      values.emplace_back(capacity);  // NULL
      for (char const* const text : {"", " ", "a", "ab", " a", "a b", "ab\x01", "a\x1F", "a!", "\xE9", "\xFF", "A"}) {
        values.push_back(Holding(text, capacity));
        values.push_back(Holding(text, capacity));
        values.back().Trim();
        values.emplace_back(capacity);
        values.back().Fill(text, std::strlen(text));
        values.emplace_back(capacity);
        values.back().Fill("zzzzzz", 6);
        WriteRaw(values.back(), text, std::min<std::size_t>(capacity, std::strlen(text) + 1));
      }
    }
  }

  static bool Equivalent(basic_type const& a, basic_type const& b) { return !(a < b) && !(b < a); }

  std::deque<ASStr> values;
};

TEST_F(ASStrOrder, NoTextIsLessThanItself) {
  for (basic_type const& a : values) ASSERT_FALSE(a < a);
}

TEST_F(ASStrOrder, NoTwoTextsAreLessThanEachOther) {
  for (basic_type const& a : values) {
    for (basic_type const& b : values) ASSERT_FALSE(a < b && b < a) << a.getstr() << '|' << b.getstr();
  }
}

TEST_F(ASStrOrder, EqualTextsAreThoseOfWhichNeitherIsLess) {
  for (basic_type const& a : values) {
    for (basic_type const& b : values) ASSERT_EQ(a == b, Equivalent(a, b)) << a.getstr() << '|' << b.getstr();
  }
}

TEST_F(ASStrOrder, LessIsTransitive) {
  for (basic_type const& a : values) {
    for (basic_type const& b : values) {
      if (!(a < b)) continue;
      for (basic_type const& c : values) {
        ASSERT_TRUE(!(b < c) || a < c) << a.getstr() << '|' << b.getstr() << '|' << c.getstr();
      }
    }
  }
}

TEST_F(ASStrOrder, EqualityIsTransitive) {
  for (basic_type const& a : values) {
    for (basic_type const& b : values) {
      if (!Equivalent(a, b)) continue;
      for (basic_type const& c : values) {
        ASSERT_TRUE(!Equivalent(b, c) || Equivalent(a, c)) << a.getstr() << '|' << b.getstr() << '|' << c.getstr();
      }
    }
  }
}

TEST_F(ASStrOrder, TextOperatorsAgreeWithThoseOfTheRoot) {
  for (ASStr const& a : values) {
    for (ASStr const& b : values) {
      Str const text = b;
      ASSERT_EQ(a < text, Root(a) < b) << a.getstr() << '|' << b.getstr();
      ASSERT_EQ(a == text, Root(a) == b) << a.getstr() << '|' << b.getstr();
      ASSERT_EQ(a > text, Root(b) < a) << a.getstr() << '|' << b.getstr();
    }
  }
}

// ---- The text members of its base ----

TEST(ASStr, AppendedTextStaysInTheBuffer) {
  ASStr text(5);
  void* const buffer = text.voidptr();
  text.Fill("ab", 2);
  text << "cdefgh";
  EXPECT_EQ(text.voidptr(), buffer);
  EXPECT_EQ(Buffer(text), std::string("abcde\0", 6));
}

TEST(ASStr, AppendingEndsTheNullState) {
  ASStr text(5);
  text << "ab";
  EXPECT_EQ(text.IsNull(), 0);
  EXPECT_EQ(text.getstr(), "ab");
}

TEST(ASStr, AppendingToAFullTextChangesNothing) {
  ASStr text = Holding("ab");
  text << 'c' << 5 << Str("d");
  EXPECT_EQ(Buffer(text), std::string("ab   \0", 6));
}

TEST(ASStr, AppendedNumberIsCut) {
  ASStr text(5);
  text << 123 << 4567;
  EXPECT_EQ(text.getstr(), "12345");
}

TEST(ASStr, AppendedToItselfItDoubles) {
  ASStr text(5);
  text.Fill("ab", 2);
  text << text;
  EXPECT_EQ(text.getstr(), "abab");
}

TEST(ASStr, AssignedThroughTheTextClassItKeepsItsBuffer) {
  ASStr text = Holding("ab");
  void* const buffer = text.voidptr();
  static_cast<Str&>(text) = Str("abcdefgh");
  EXPECT_EQ(text.voidptr(), buffer);
  EXPECT_EQ(Buffer(text), std::string("abcde\0", 6));
}

TEST(ASStr, MovedIntoAStrItKeepsItsBuffer) {
  ASStr text = Holding("ab");
  void* const buffer = text.voidptr();
  Str const taken(std::move(text));
  EXPECT_EQ(taken, "ab   ");
  EXPECT_EQ(text.voidptr(), buffer);
}

TEST(ASStr, ReplacedTextIsCutAtTheCapacity) {
  ASStr text(5);
  text.Fill("a.b.c", 5);
  text.replaceStr(".", "::");
  EXPECT_EQ(Buffer(text), std::string("a::b:\0", 6));
}

// ---- Virtual functions ----

TEST(ASStr, PutsItsOperatorsBehindTrim) {
  EXPECT_EQ(Slot(static_cast<ASStr& (ASStr::*)(Str const&)>(&ASStr::operator=)), 15);
  EXPECT_EQ(Slot(static_cast<ASStr& (ASStr::*)(char const*)>(&ASStr::operator=)), 16);
  EXPECT_EQ(Slot(static_cast<ASStr& (ASStr::*)(ASStr const&)>(&ASStr::operator=)), 17);
  EXPECT_EQ(Slot(static_cast<bool (ASStr::*)(Str const&) const>(&ASStr::operator<)), 18);
  EXPECT_EQ(Slot(static_cast<bool (ASStr::*)(Str const&) const>(&ASStr::operator==)), 19);
  EXPECT_EQ(Slot(static_cast<bool (ASStr::*)(char const*) const>(&ASStr::operator<)), 20);
  EXPECT_EQ(Slot(static_cast<bool (ASStr::*)(char const*) const>(&ASStr::operator==)), 21);
}

TEST(ASStr, OverriddenAssignmentIsReachedThroughTheColumnClass) {
  CountingStr counting(5);
  ASStr& text = counting;
  text = Str("ab");
  text = "cd";
  text = Holding("ef");
  EXPECT_EQ(counting.assignments, 3);
}

TEST(ASStr, CopyGoesThroughTheAssignment) {
  CountingStr counting(5);
  counting.copy(Str("ab"));
  EXPECT_EQ(counting.assignments, 1);
}

}  // namespace
