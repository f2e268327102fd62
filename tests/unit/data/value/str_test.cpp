#include "corvane/data/str.h"
#include "corvane/data/value/str.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstddef>
#include <cstring>
#include <limits>
#include <sstream>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "corvane/data/value/double.h"
#include "corvane/data/value/exception.h"
#include "corvane/data/value/int.h"
#include "corvane/data/value/int64.h"

namespace {

constexpr char const* kNoText = nullptr;
constexpr std::size_t kTooLong = std::size_t{INT_MAX} + 1;

// The message of the AException that `action` throws.
template <class Action>
std::string MessageOf(Action action) {
  try {
    action();
  } catch (AException const& exception) {
    return exception.what();
  }
  return "nothing thrown";
}

// Construction

TEST(Str, IsNullByDefault) {
  Str const text;
  EXPECT_EQ(text.IsNull(), 1);
  EXPECT_EQ(text.length(), 0);
}

TEST(Str, IsNullFromANullPointer) {
  Str const text(kNoText);
  EXPECT_EQ(text.IsNull(), 1);
  EXPECT_EQ(text.length(), 0);
}

TEST(Str, CopiesAPlainText) {
  char source[] = "abc";
  Str const text(source);
  source[0] = 'X';
  EXPECT_STREQ(text.str(), "abc");
  EXPECT_EQ(text.length(), 3);
  EXPECT_EQ(text.IsNull(), 0);
}

TEST(Str, IsEmptyButNotNullFromAnEmptyText) {
  Str const text("");
  EXPECT_EQ(text.IsNull(), 0);
  EXPECT_EQ(text.length(), 0);
}

TEST(Str, CopiesBytesOfALength) {
  Str const text("abcdef", 3);
  EXPECT_STREQ(text.str(), "abc");
}

TEST(Str, KeepsNulsAmongBytesOfALength) {
  Str const text("a\0b", 3);
  EXPECT_EQ(text.length(), 3);
  EXPECT_EQ(text.View(), std::string_view("a\0b", 3));
}

TEST(Str, IsEmptyButNotNullFromNoBytesAtNoAddress) {
  Str const text(nullptr, 0);
  EXPECT_EQ(text.IsNull(), 0);
  EXPECT_EQ(text.length(), 0);
}

TEST(Str, CopiesAStandardStringWithItsNuls) {
  Str const text(std::string("a\0b", 3));
  EXPECT_EQ(text.View(), std::string_view("a\0b", 3));
}

TEST(Str, IsEmptyButNotNullFromAnEmptyStandardString) {
  Str const text{std::string()};
  EXPECT_EQ(text.IsNull(), 0);
  EXPECT_EQ(text.length(), 0);
}

TEST(Str, IsMadeImplicitlyFromTextsOnly) {
  EXPECT_TRUE((std::is_convertible<char const*, Str>::value));
  EXPECT_TRUE((std::is_convertible<std::string, Str>::value));
  EXPECT_FALSE((std::is_convertible<int, Str>::value));
}

TEST(Str, IsEmptyButNotNullFromACapacity) {
  Str const text(100);
  EXPECT_EQ(text.IsNull(), 0);
  EXPECT_EQ(text.length(), 0);
  EXPECT_STREQ(text.str(), "");
}

TEST(Str, TakesANegativeCapacityForNone) {
  Str text(-1);
  EXPECT_EQ(text.IsNull(), 0);
  EXPECT_EQ(text.length(), 0);
  text << "grows";
  EXPECT_EQ(text, "grows");
}

TEST(Str, TakesTheSmallestCapacityForNone) {
  Str text(INT_MIN);
  text << "grows";
  EXPECT_EQ(text, "grows");
}

TEST(Str, GrowsBeyondItsCapacity) {
  Str text(2);
  text << "much longer than two bytes";
  EXPECT_EQ(text, "much longer than two bytes");
}

TEST(Str, CopiesAnotherStrDeeply) {
  Str original("abc");
  Str const copy(original);
  original << "def";
  EXPECT_EQ(copy, "abc");
  EXPECT_NE(copy.voidptr(), original.voidptr());
}

TEST(Str, CopiesANullStrAsNull) {
  Str const original;
  Str const copy(original);
  EXPECT_EQ(copy.IsNull(), 1);
}

TEST(Str, CopiesAnEmptyStrAsEmpty) {
  Str const original("");
  Str const copy(original);
  EXPECT_EQ(copy.IsNull(), 0);
}

TEST(Str, CopiesNuls) {
  Str const original("a\0b", 3);
  Str const copy(original);
  EXPECT_EQ(copy.View(), std::string_view("a\0b", 3));
}

TEST(Str, MovesTheText) {
  Str source("abc");
  Str const moved(std::move(source));
  EXPECT_EQ(moved, "abc");
}

TEST(Str, MovesNull) {
  Str source;
  Str const moved(std::move(source));
  EXPECT_EQ(moved.IsNull(), 1);
}

TEST(Str, CanBeUsedAfterItWasMovedFrom) {
  Str source("abc");
  Str const moved(std::move(source));
  source = "new";
  source << " text";
  EXPECT_EQ(source, "new text");
  EXPECT_EQ(moved, "abc");
}

// Assignment

TEST(Str, AssignsAPlainText) {
  Str text("old");
  text = "new text";
  EXPECT_EQ(text, "new text");
}

TEST(Str, AssignsAShorterText) {
  Str text("a longer text");
  text = "b";
  EXPECT_STREQ(text.str(), "b");
  EXPECT_EQ(text.length(), 1);
}

TEST(Str, AssignsAnEmptyText) {
  Str text("old");
  text = "";
  EXPECT_EQ(text.length(), 0);
  EXPECT_EQ(text.IsNull(), 0);
}

TEST(Str, BecomesNullByAssigningANullPointer) {
  Str text("old");
  text = kNoText;
  EXPECT_EQ(text.IsNull(), 1);
}

TEST(Str, AssignsAnotherStrDeeply) {
  Str source("new");
  Str text("old");
  text = source;
  source << "er";
  EXPECT_EQ(text, "new");
}

TEST(Str, BecomesNullByAssigningANullStr) {
  Str const source;
  Str text("old");
  text = source;
  EXPECT_EQ(text.IsNull(), 1);
}

TEST(Str, StopsBeingNullByAssigningAnEmptyStr) {
  Str const source("");
  Str text;
  text = source;
  EXPECT_EQ(text.IsNull(), 0);
}

TEST(Str, AssignsNuls) {
  Str const source("a\0b", 3);
  Str text;
  text = source;
  EXPECT_EQ(text.View(), std::string_view("a\0b", 3));
}

TEST(Str, AssignsAStandardString) {
  Str text("old");
  text = std::string("new");
  EXPECT_EQ(text, "new");
}

TEST(Str, SurvivesSelfAssignment) {
  Str text("abc");
  Str const& same = text;
  text = same;
  EXPECT_EQ(text, "abc");
}

TEST(Str, SurvivesAssigningItsOwnText) {
  Str text("abc");
  text = text.str();
  EXPECT_EQ(text, "abc");
}

TEST(Str, AssignsItsOwnTail) {
  Str text("abcdef");
  text = text.str() + 2;
  EXPECT_EQ(text, "cdef");
}

TEST(Str, MoveAssignsTheText) {
  Str source("new");
  Str text("old");
  text = std::move(source);
  EXPECT_EQ(text, "new");
}

TEST(Str, MoveAssignsNull) {
  Str source;
  Str text("old");
  text = std::move(source);
  EXPECT_EQ(text.IsNull(), 1);
}

TEST(Str, SurvivesMovingOntoItself) {
  Str text("abc");
  Str& same = text;
  text = std::move(same);
  EXPECT_EQ(text, "abc");
}

TEST(Str, CanBeUsedAfterItWasMoveAssignedFrom) {
  Str source("abc");
  Str text("old");
  text = std::move(source);
  source = "again";
  EXPECT_EQ(source, "again");
  EXPECT_EQ(text, "abc");
}

TEST(Str, ReturnsItselfFromAssignment) {
  Str const other("b");
  Str text;
  EXPECT_EQ(&(text = "a"), &text);
  EXPECT_EQ(&(text = other), &text);
  EXPECT_EQ(&(text = Str("c")), &text);
}

// Appending

TEST(Str, AppendsAPlainText) {
  Str text("SELECT ");
  text << "a";
  EXPECT_EQ(text, "SELECT a");
}

TEST(Str, AppendsAStr) {
  Str text("SELECT ");
  text << Str("a");
  EXPECT_EQ(text, "SELECT a");
}

TEST(Str, AppendsAStrWithItsNuls) {
  Str text("x");
  text << Str("a\0b", 3);
  EXPECT_EQ(text.View(), std::string_view("xa\0b", 4));
}

TEST(Str, AppendsAStandardString) {
  Str text("SELECT ");
  text << std::string("a");
  EXPECT_EQ(text, "SELECT a");
}

TEST(Str, AppendsACharacter) {
  Str text("a");
  text << '.';
  EXPECT_EQ(text, "a.");
}

TEST(Str, AppendsTheNulCharacter) {
  Str text("a");
  text << '\0' << 'b';
  EXPECT_EQ(text.View(), std::string_view("a\0b", 3));
}

TEST(Str, AppendsADouble) {
  Str text("x=");
  text << 2.5;
  EXPECT_EQ(text, "x=2.5");
}

TEST(Str, AppendsAnInt) {
  Str text;
  text << 0 << ' ' << 42 << ' ' << INT_MAX << ' ' << INT_MIN;
  EXPECT_EQ(text, "0 42 2147483647 -2147483648");
}

TEST(Str, AppendsAnUnsignedInt) {
  Str text;
  text << 0U << ' ' << UINT_MAX;
  EXPECT_EQ(text, "0 4294967295");
}

TEST(Str, AppendsALong) {
  Str text;
  text << LONG_MAX << ' ' << LONG_MIN;
  EXPECT_EQ(text, "9223372036854775807 -9223372036854775808");
}

TEST(Str, AppendsAnUnsignedLong) {
  Str text;
  text << 0UL << ' ' << ULONG_MAX;
  EXPECT_EQ(text, "0 18446744073709551615");
}

TEST(Str, AppendsALongLong) {
  Str text;
  text << LLONG_MAX << ' ' << LLONG_MIN;
  EXPECT_EQ(text, "9223372036854775807 -9223372036854775808");
}

TEST(Str, AppendsAnUnsignedLongLong) {
  Str text;
  text << ULLONG_MAX;
  EXPECT_EQ(text, "18446744073709551615");
}

TEST(Str, AppendsTheNumberOfAValue) {
  Str text;
  text << Int(7) << ' ' << Int64(5000000000L) << ' ' << Double(0.5);
  EXPECT_EQ(text, "7 5000000000 0.5");
}

TEST(Str, ReturnsItselfFromEveryAppend) {
  Str const other("b");
  Str text("a");
  EXPECT_EQ(&(text << "a"), &text);
  EXPECT_EQ(&(text << other), &text);
  EXPECT_EQ(&(text << 'c'), &text);
  EXPECT_EQ(&(text << 1.5), &text);
  EXPECT_EQ(&(text << 1), &text);
  EXPECT_EQ(&(text << 1U), &text);
  EXPECT_EQ(&(text << 1L), &text);
  EXPECT_EQ(&(text << 1UL), &text);
  EXPECT_EQ(&(text << 1LL), &text);
  EXPECT_EQ(&(text << 1ULL), &text);
}

TEST(Str, ChainsAppends) {
  Str text;
  text << "LIMIT " << 10 << Str(" OFFSET ") << 5U << ';';
  EXPECT_EQ(text, "LIMIT 10 OFFSET 5;");
}

TEST(Str, StaysAsItIsWhenANullPointerIsAppended) {
  Str text("abc");
  text << kNoText;
  EXPECT_EQ(text, "abc");
}

TEST(Str, StaysNullWhenANullPointerIsAppended) {
  Str text;
  text << kNoText;
  EXPECT_EQ(text.IsNull(), 1);
}

TEST(Str, StaysNullWhenANullStrIsAppended) {
  Str text;
  text << Str();
  EXPECT_EQ(text.IsNull(), 1);
}

TEST(Str, StaysEmptyWhenANullStrIsAppended) {
  Str text("");
  text << Str();
  EXPECT_EQ(text.IsNull(), 0);
}

TEST(Str, StopsBeingNullWhenAnEmptyTextIsAppended) {
  Str text;
  text << "";
  EXPECT_EQ(text.IsNull(), 0);
  EXPECT_EQ(text.length(), 0);
}

TEST(Str, StopsBeingNullWhenAnEmptyStrIsAppended) {
  Str text;
  text << Str("");
  EXPECT_EQ(text.IsNull(), 0);
  EXPECT_EQ(text.length(), 0);
}

TEST(Str, StaysNullWhenANullIsAppendedToItself) {
  Str text;
  text << text;
  EXPECT_EQ(text.IsNull(), 1);
}

TEST(Str, AppendsItself) {
  Str text("a text long enough to need a new block. ");
  text << text;
  EXPECT_EQ(text, "a text long enough to need a new block. a text long enough to need a new block. ");
}

TEST(Str, AppendsItsOwnText) {
  Str text("a text long enough to need a new block. ");
  text << text.str();
  EXPECT_EQ(text, "a text long enough to need a new block. a text long enough to need a new block. ");
}

TEST(Str, AppendsItsOwnTail) {
  Str text("a text long enough to need a new block");
  text << text.str() + 28;
  EXPECT_EQ(text, "a text long enough to need a new block new block");
}

TEST(Str, AppendsBytesAsTheyStand) {
  Str text("x");
  EXPECT_EQ(&text.Append("a\0bc", 3), &text);
  EXPECT_EQ(text.View(), std::string_view("xa\0b", 4));
}

TEST(Str, AppendsBytesOfItsOwn) {
  Str text("0123456789abcdef0123456789abcdef");
  text.Append(text.str() + 10, 6);
  EXPECT_EQ(text, "0123456789abcdef0123456789abcdefabcdef");
}

TEST(Str, AppendsNoBytes) {
  Str text("abc");
  text.Append(nullptr, 0);
  EXPECT_EQ(text, "abc");
}

TEST(Str, AppendsBytesOfItsOwnWhereThereIsRoom) {
  Str text(1000);
  text << "abcdef";
  text.Append(text.str() + 2, 3);
  EXPECT_EQ(text, "abcdefcde");
}

TEST(Str, StopsBeingNullWhenNoBytesAreAppended) {
  Str text;
  text.Append(nullptr, 0);
  EXPECT_EQ(text.IsNull(), 0);
  EXPECT_EQ(text.length(), 0);
}

TEST(Str, KeepsItsTextOverManyAppends) {
  Str text;
  for (int i = 0; i < 100000; ++i) text << 'x';
  EXPECT_EQ(text.ToString(), std::string(100000, 'x'));
}

TEST(Str, IsTerminatedAfterEveryAppend) {
  Str text("a");
  text << 'b';
  EXPECT_EQ(std::strlen(text.str()), 2U);
  text << "cdef";
  EXPECT_EQ(std::strlen(text.str()), 6U);
  text << 12;
  EXPECT_EQ(std::strlen(text.str()), 8U);
}

TEST(Str, AppendsWhatAWriterSaysItWrote) {
  Str text("x=");
  text.AppendWith(10, [](char* at) {
    std::memcpy(at, "12345", 5);
    return std::size_t{3};
  });
  EXPECT_STREQ(text.str(), "x=123");
  EXPECT_EQ(text.length(), 5);
}

TEST(Str, GivesAWriterAllTheRoomItAsksFor) {
  Str text("x");
  text.AppendWith(1000, [](char* at) {
    std::memset(at, 'y', 1000);
    return std::size_t{1000};
  });
  EXPECT_EQ(text.ToString(), "x" + std::string(1000, 'y'));
}

TEST(Str, ReturnsItselfFromAppendingWithAWriter) {
  Str text;
  EXPECT_EQ(&text.AppendWith(1, [](char*) { return std::size_t{0}; }), &text);
}

TEST(Str, ReservesWithoutChangingTheText) {
  Str text("abc");
  text.Reserve(1000);
  EXPECT_EQ(text, "abc");
  EXPECT_EQ(text.length(), 3);
}

TEST(Str, ReservesForTheAppendsToCome) {
  Str text("abc");
  text.Reserve(1000);
  void const* const before = text.voidptr();
  text << std::string(997, 'x');
  EXPECT_EQ(text.voidptr(), before);
}

TEST(Str, KeepsALongTextWhenLessIsReserved) {
  Str text("a text longer than what is reserved for it");
  text.Reserve(3);
  EXPECT_EQ(text, "a text longer than what is reserved for it");
}

TEST(Str, BecomesEmptyWhenRoomIsReservedForNull) {
  Str text;
  text.Reserve(100);
  EXPECT_EQ(text.IsNull(), 0);
  EXPECT_EQ(text.length(), 0);
}

// Doubles in text

TEST(Str, WritesDoublesInPlainNotationFromAMillionthUpToAHundredQuadrillion) {
  Str text;
  text << 0.0 << ' ' << 1.0 << ' ' << -1.0 << ' ' << 100000.0 << ' ' << 0.0001 << ' ' << 1e-6 << ' ' << 1e16;
  EXPECT_EQ(text, "0 1 -1 100000 0.0001 0.000001 10000000000000000");
}

TEST(Str, WritesDoublesOutsideThatRangeWithAnExponent) {
  Str text;
  text << 1e17 << ' ' << 9.99e-7 << ' ' << -1e20 << ' ' << 1e-300;
  EXPECT_EQ(text, "1e+17 9.99e-07 -1e+20 1e-300");
}

TEST(Str, WritesDoublesWithTheFewestDigitsThatReadBack) {
  Str text;
  text << 0.1 << ' ' << 1234567.891 << ' ' << 1.0 / 3 << ' ' << 99999999999999984.0;
  EXPECT_EQ(text, "0.1 1234567.891 0.3333333333333333 99999999999999984");
}

TEST(Str, WritesTheLimitsOfDoubles) {
  Str text;
  text << std::numeric_limits<double>::max() << ' ' << std::numeric_limits<double>::min() << ' '
       << std::numeric_limits<double>::denorm_min();
  EXPECT_EQ(text, "1.7976931348623157e+308 2.2250738585072014e-308 5e-324");
}

// Concatenation

TEST(Str, AddsAPlainText) {
  Str const left("a");
  EXPECT_EQ(left + "b", "ab");
  EXPECT_EQ(left, "a");
}

TEST(Str, AddsAStr) {
  Str const left("a");
  Str const right("b\0c", 3);
  EXPECT_EQ((left + right).View(), std::string_view("ab\0c", 4));
}

TEST(Str, AddsACharacter) {
  Str const left("a");
  EXPECT_EQ(left + 'b', "ab");
}

TEST(Str, IsAddedToAPlainText) {
  Str const right("b");
  EXPECT_EQ("a" + right, "ab");
}

TEST(Str, AddsNothingForANullPointer) {
  Str const left("a");
  EXPECT_EQ(left + kNoText, "a");
}

TEST(Str, AddsNothingForANullStr) {
  Str const left("a");
  EXPECT_EQ(left + Str(), "a");
  EXPECT_EQ(Str() + left, "a");
}

TEST(Str, IsAddedToANullPointer) {
  Str const right("b");
  EXPECT_EQ(kNoText + right, "b");
}

TEST(Str, IsNullAsTheSumOfNulls) {
  EXPECT_EQ((Str() + Str()).IsNull(), 1);
  EXPECT_EQ((Str() + kNoText).IsNull(), 1);
  EXPECT_EQ((kNoText + Str()).IsNull(), 1);
}

TEST(Str, IsEmptyAsTheSumOfNullAndEmpty) {
  EXPECT_EQ((Str() + Str("")).IsNull(), 0);
  EXPECT_EQ((Str("") + Str()).IsNull(), 0);
  EXPECT_EQ((Str() + "").IsNull(), 0);
  EXPECT_EQ(("" + Str()).IsNull(), 0);
}

TEST(Str, AddsItself) {
  Str const text("ab");
  EXPECT_EQ(text + text, "abab");
}

TEST(Str, ChainsAdditions) { EXPECT_EQ(Str("a") + "b" + Str("c") + 'd', "abcd"); }

// Comparisons

TEST(Str, EqualsAPlainText) {
  Str const text("abc");
  EXPECT_TRUE(text == "abc");
  EXPECT_FALSE(text == "abd");
  EXPECT_FALSE(text == "ab");
  EXPECT_FALSE(text == "abcd");
}

TEST(Str, DiffersFromAPlainText) {
  Str const text("abc");
  EXPECT_FALSE(text != "abc");
  EXPECT_TRUE(text != "abd");
}

TEST(Str, ComparesWithAPlainTextOnItsLeft) {
  Str const text("abc");
  EXPECT_TRUE("abc" == text);
  EXPECT_FALSE("abd" == text);
  EXPECT_FALSE("abc" != text);
  EXPECT_TRUE("abd" != text);
}

TEST(Str, EqualsAnotherStr) {
  Str const text("abc");
  EXPECT_TRUE(text == Str("abc"));
  EXPECT_FALSE(text == Str("abd"));
}

TEST(Str, DiffersFromAnotherStr) {
  Str const text("abc");
  EXPECT_FALSE(text != Str("abc"));
  EXPECT_TRUE(text != Str("abd"));
}

TEST(Str, OrdersBesideAPlainText) {
  Str const text("b");
  EXPECT_TRUE(text < "c");
  EXPECT_FALSE(text < "b");
  EXPECT_FALSE(text < "a");
  EXPECT_TRUE(text > "a");
  EXPECT_FALSE(text > "b");
  EXPECT_FALSE(text > "c");
  EXPECT_TRUE(text <= "c");
  EXPECT_TRUE(text <= "b");
  EXPECT_FALSE(text <= "a");
  EXPECT_TRUE(text >= "a");
  EXPECT_TRUE(text >= "b");
  EXPECT_FALSE(text >= "c");
}

TEST(Str, OrdersBesideAPlainTextOnItsLeft) {
  char const* const a = "a";
  char const* const b = "b";
  char const* const c = "c";
  Str const text("b");
  EXPECT_TRUE(a < text);
  EXPECT_FALSE(b < text);
  EXPECT_TRUE(c > text);
  EXPECT_FALSE(b > text);
  EXPECT_TRUE(b <= text);
  EXPECT_FALSE(c <= text);
  EXPECT_TRUE(b >= text);
  EXPECT_FALSE(a >= text);
}

TEST(Str, OrdersBesideAnotherStr) {
  Str const a("a");
  Str const b("b");
  EXPECT_TRUE(a < b);
  EXPECT_FALSE(b < a);
  EXPECT_FALSE(a < Str("a"));
  EXPECT_TRUE(b > a);
  EXPECT_FALSE(a > b);
  EXPECT_FALSE(a > Str("a"));
  EXPECT_TRUE(a <= b);
  EXPECT_TRUE(a <= Str("a"));
  EXPECT_FALSE(b <= a);
  EXPECT_TRUE(b >= a);
  EXPECT_TRUE(a >= Str("a"));
  EXPECT_FALSE(a >= b);
}

TEST(Str, OrdersAPrefixFirst) {
  Str const prefix("ab");
  EXPECT_TRUE(prefix < "abc");
  EXPECT_TRUE(Str("abc") > prefix);
}

TEST(Str, OrdersBytesAsUnsignedNumbers) {
  Str const ascii("\x7f");
  Str const beyond("\x80");
  EXPECT_TRUE(ascii < beyond);
  EXPECT_FALSE(beyond < ascii);
}

TEST(Str, TellsTextsApartBehindANul) {
  Str const left("a\0b", 3);
  Str const right("a\0c", 3);
  EXPECT_FALSE(left == right);
  EXPECT_TRUE(left < right);
  EXPECT_FALSE(left == "a");
}

TEST(Str, TakesNullAndEmptyForTheSameText) {
  Str const null;
  Str const empty("");
  EXPECT_TRUE(null == empty);
  EXPECT_TRUE(empty == null);
  EXPECT_FALSE(null != empty);
  EXPECT_FALSE(null < empty);
  EXPECT_FALSE(empty < null);
  EXPECT_TRUE(null <= empty);
  EXPECT_TRUE(null >= empty);
}

TEST(Str, TakesANullPointerForTheEmptyTextInComparisons) {
  Str const empty("");
  Str const text("a");
  EXPECT_TRUE(empty == kNoText);
  EXPECT_TRUE(kNoText == empty);
  EXPECT_TRUE(text != kNoText);
  EXPECT_TRUE(text > kNoText);
  EXPECT_FALSE(text < kNoText);
  EXPECT_FALSE(text <= kNoText);
  EXPECT_TRUE(text >= kNoText);
}

TEST(Str, OrdersNullBeforeEveryTextThatIsNotEmpty) {
  Str const null;
  EXPECT_TRUE(null < Str("a"));
  EXPECT_FALSE(Str("a") < null);
}

TEST(Str, EqualsAStandardString) {
  Str const text("abc");
  EXPECT_TRUE(text == std::string("abc"));
  EXPECT_TRUE(text != std::string("abd"));
}

TEST(Str, ComparesWithAStrBehindTheRoot) {
  Str const text("b");
  Str const same("b");
  Str const greater("c");
  basic_type const& sameRoot = same;
  basic_type const& greaterRoot = greater;
  EXPECT_TRUE(text == sameRoot);
  EXPECT_FALSE(text == greaterRoot);
  EXPECT_FALSE(text != sameRoot);
  EXPECT_TRUE(text != greaterRoot);
  EXPECT_TRUE(text < greaterRoot);
  EXPECT_FALSE(text < sameRoot);
}

// Access

TEST(Str, GivesAnEmptyTextForNull) {
  Str const null;
  EXPECT_STREQ(null.str(), "");
  EXPECT_STREQ(null.c_str(), "");
  EXPECT_STREQ(static_cast<char const*>(null), "");
}

TEST(Str, GivesAnEmptyTextForEmpty) {
  Str const empty("");
  EXPECT_STREQ(empty.str(), "");
  EXPECT_STREQ(empty.c_str(), "");
  EXPECT_STREQ(static_cast<char const*>(empty), "");
}

TEST(Str, GivesTheSameTextByEveryName) {
  Str const text("abc");
  EXPECT_STREQ(text.str(), "abc");
  EXPECT_EQ(text.c_str(), text.str());
  EXPECT_EQ(static_cast<char const*>(text), text.str());
}

TEST(Str, GivesItsBytes) {
  Str const text("abc");
  EXPECT_EQ(text[0], 'a');
  EXPECT_EQ(text[2], 'c');
}

TEST(Str, GivesAViewOfAllItsBytes) {
  Str const text("a\0b", 3);
  EXPECT_EQ(text.View(), std::string_view("a\0b", 3));
  EXPECT_TRUE(Str().View().empty());
}

TEST(Str, GivesAStandardStringOfAllItsBytes) {
  Str const text("a\0b", 3);
  EXPECT_EQ(text.ToString(), std::string("a\0b", 3));
  EXPECT_EQ(Str().ToString(), "");
}

TEST(Str, CountsBytesNotCharacters) {
  Str const text("\xC3\xA9");
  EXPECT_EQ(text.length(), 2);
}

TEST(Str, PutsItsTextIntoAStream) {
  std::ostringstream out;
  out << Str("a\0b", 3) << Str() << Str("c");
  EXPECT_EQ(out.str(), std::string("a\0bc", 4));
}

TEST(Str, PointsToItsTextAsItsRawValue) {
  Str const text("abc");
  EXPECT_EQ(text.voidptr(), text.str());
}

TEST(Str, PointsToNothingWhenNull) {
  Str const null;
  EXPECT_EQ(null.voidptr(), nullptr);
}

TEST(Str, PointsToItsTerminatorWhenEmpty) {
  Str const empty("");
  ASSERT_NE(empty.voidptr(), nullptr);
  EXPECT_STREQ(static_cast<char const*>(empty.voidptr()), "");
}

TEST(Str, DropsItsTextBySetNull) {
  Str text("abc");
  text.SetNull();
  EXPECT_EQ(text.IsNull(), 1);
  EXPECT_EQ(text.length(), 0);
  EXPECT_STREQ(text.str(), "");
  EXPECT_EQ(text.voidptr(), nullptr);
}

TEST(Str, TakesATextAfterSetNull) {
  Str text("abc");
  text.SetNull();
  text << "new";
  EXPECT_EQ(text, "new");
}

TEST(Str, GivesACopyAsItsTextForm) {
  Str text("O'Brien");
  Str const form = text.getstr();
  text << "!";
  EXPECT_EQ(form, "O'Brien");
}

// findStr

TEST(Str, FindsTheFirstOccurrence) {
  Str const text("abcabc");
  EXPECT_EQ(text.findStr("bc"), 1);
}

TEST(Str, FindsAnOccurrenceAtTheStartPosition) {
  Str const text("abcabc");
  EXPECT_EQ(text.findStr("abc", 0), 0);
  EXPECT_EQ(text.findStr("abc", 3), 3);
}

TEST(Str, FindsTheNextOccurrenceFromAPosition) {
  Str const text("abcabc");
  EXPECT_EQ(text.findStr("bc", 2), 4);
}

TEST(Str, FindsAnOverlappingOccurrence) {
  Str const text("aaa");
  EXPECT_EQ(text.findStr("aa", 1), 1);
}

TEST(Str, DoesNotFindWhatIsAbsent) {
  Str const text("abc");
  EXPECT_EQ(text.findStr("x"), -1);
  EXPECT_EQ(text.findStr("abcd"), -1);
  EXPECT_EQ(text.findStr("ab", 1), -1);
}

TEST(Str, DoesNotFindAnythingFromPastTheEnd) {
  Str const text("abc");
  EXPECT_EQ(text.findStr("c", 3), -1);
  EXPECT_EQ(text.findStr("c", 4), -1);
  EXPECT_EQ(text.findStr("c", UINT_MAX), -1);
}

TEST(Str, DoesNotFindAnEmptyText) {
  Str const text("abc");
  EXPECT_EQ(text.findStr(""), -1);
  EXPECT_EQ(text.findStr("", 3), -1);
}

TEST(Str, DoesNotFindANullPointer) {
  Str const text("abc");
  EXPECT_EQ(text.findStr(kNoText), -1);
}

TEST(Str, FindsNothingInNullOrEmpty) {
  EXPECT_EQ(Str().findStr("a"), -1);
  EXPECT_EQ(Str("").findStr("a"), -1);
  EXPECT_EQ(Str().findStr(""), -1);
}

TEST(Str, FindsBehindANul) {
  Str const text("a\0bc", 4);
  EXPECT_EQ(text.findStr("bc"), 2);
}

TEST(Str, FindsUpperAndLowerCaseApart) {
  Str const text("SELECT select");
  EXPECT_EQ(text.findStr("select"), 7);
}

// getInterval

TEST(Str, GivesTheBytesBetweenTwoPositionsBothIncluded) {
  Str const text("abcdef");
  EXPECT_EQ(text.getInterval(1, 3), "bcd");
}

TEST(Str, GivesOneByteBetweenEqualPositions) {
  Str const text("abcdef");
  EXPECT_EQ(text.getInterval(0, 0), "a");
  EXPECT_EQ(text.getInterval(5, 5), "f");
}

TEST(Str, GivesTheWholeBetweenItsFirstAndLastPosition) {
  Str const text("abcdef");
  EXPECT_EQ(text.getInterval(0, 5), "abcdef");
}

TEST(Str, ClampsAnIntervalAtTheEnd) {
  Str const text("abcdef");
  EXPECT_EQ(text.getInterval(4, 6), "ef");
  EXPECT_EQ(text.getInterval(4, INT_MAX), "ef");
}

TEST(Str, ClampsAnIntervalAtTheBeginning) {
  Str const text("abcdef");
  EXPECT_EQ(text.getInterval(-1, 1), "ab");
  EXPECT_EQ(text.getInterval(INT_MIN, 1), "ab");
}

TEST(Str, ClampsAnIntervalAtBothEnds) {
  Str const text("abcdef");
  EXPECT_EQ(text.getInterval(INT_MIN, INT_MAX), "abcdef");
}

TEST(Str, GivesAnEmptyIntervalFromPastTheEnd) {
  Str const text("abcdef");
  EXPECT_EQ(text.getInterval(6, 8), "");
  EXPECT_EQ(text.getInterval(INT_MAX, INT_MAX), "");
}

TEST(Str, GivesAnEmptyIntervalBeforeTheBeginning) {
  Str const text("abcdef");
  EXPECT_EQ(text.getInterval(-5, -1), "");
  EXPECT_EQ(text.getInterval(INT_MIN, INT_MIN), "");
}

TEST(Str, GivesAnEmptyIntervalWhenTheLastPositionLiesBeforeTheFirst) {
  Str const text("abcdef");
  EXPECT_EQ(text.getInterval(3, 2), "");
  EXPECT_EQ(text.getInterval(INT_MAX, INT_MIN), "");
}

TEST(Str, GivesAnEmptyIntervalOfNullAndEmpty) {
  EXPECT_EQ(Str().getInterval(0, 5), "");
  EXPECT_EQ(Str("").getInterval(0, 0), "");
}

TEST(Str, GivesAnIntervalWithItsNuls) {
  Str const text("ab\0cd", 5);
  EXPECT_EQ(text.getInterval(1, 3).View(), std::string_view("b\0c", 3));
}

TEST(Str, StaysAsItIsWhenAnIntervalIsTaken) {
  Str const text("abcdef");
  text.getInterval(1, 3);
  EXPECT_EQ(text, "abcdef");
}

// getUntil

TEST(Str, GivesTheTextUpToTheDelimiter) {
  Str const text("host=db;port=3306");
  EXPECT_EQ(text.getUntil("=", 0), "host");
  EXPECT_EQ(text.getUntil(";", 5), "db");
}

TEST(Str, GivesTheTextUpToALongDelimiter) {
  Str const text("a AND b");
  EXPECT_EQ(text.getUntil(" AND ", 0), "a");
}

TEST(Str, GivesNothingWhenTheDelimiterStandsAtThePosition) {
  Str const text(";abc;def");
  EXPECT_EQ(text.getUntil(";", 0), "");
  EXPECT_EQ(text.getUntil(";", 4), "");
}

TEST(Str, GivesTheRestWithoutTheDelimiter) {
  Str const text("host=db");
  EXPECT_EQ(text.getUntil(";", 5), "db");
  EXPECT_EQ(text.getUntil(";", 0), "host=db");
}

TEST(Str, LooksForTheDelimiterFromThePositionOnly) {
  Str const text("a;b");
  EXPECT_EQ(text.getUntil(";", 2), "b");
}

TEST(Str, GivesTheRestForAnEmptyDelimiter) {
  Str const text("abc");
  EXPECT_EQ(text.getUntil("", 1), "bc");
  EXPECT_EQ(text.getUntil(Str(), 1), "bc");
}

TEST(Str, GivesNothingUpToADelimiterFromPastTheEnd) {
  Str const text("abc");
  EXPECT_EQ(text.getUntil(";", 3), "");
  EXPECT_EQ(text.getUntil(";", INT_MAX), "");
}

TEST(Str, TakesANegativePositionForTheBeginning) {
  Str const text("ab;c");
  EXPECT_EQ(text.getUntil(";", -1), "ab");
  EXPECT_EQ(text.getUntil(";", INT_MIN), "ab");
}

TEST(Str, GivesNothingUpToADelimiterOfNullAndEmpty) {
  EXPECT_EQ(Str().getUntil(";", 0), "");
  EXPECT_EQ(Str("").getUntil(";", 0), "");
}

TEST(Str, GivesTheTextUpToADelimiterWithItsNuls) {
  Str const text("a\0b;c", 5);
  EXPECT_EQ(text.getUntil(";", 0).View(), std::string_view("a\0b", 3));
}

TEST(Str, TakesADelimiterWithItsNuls) {
  Str const text("a;b;\0c", 6);
  EXPECT_EQ(text.getUntil(Str(";\0", 2), 0), "a;b");
}

TEST(Str, GivesTheTextUpToItself) {
  Str const text("abc");
  EXPECT_EQ(text.getUntil(text, 0), "");
  EXPECT_EQ(text.getUntil(text, 1), "bc");
}

// toLower

TEST(Str, GivesALowerCaseCopy) {
  Str const text("SELECT Name FROM AZ");
  EXPECT_EQ(text.toLower(), "select name from az");
}

TEST(Str, StaysAsItIsWhenALowerCaseCopyIsTaken) {
  Str const text("ABC");
  text.toLower();
  EXPECT_EQ(text, "ABC");
}

TEST(Str, LowersAsciiLettersOnly) {
  Str const text("@[`{09_\xC3\x84\xC0\xDE");
  EXPECT_EQ(text.toLower(), "@[`{09_\xC3\x84\xC0\xDE");
}

TEST(Str, LowersBehindANul) {
  Str const text("A\0B", 3);
  EXPECT_EQ(text.toLower().View(), std::string_view("a\0b", 3));
}

TEST(Str, LowersNullToNull) { EXPECT_EQ(Str().toLower().IsNull(), 1); }

TEST(Str, LowersEmptyToEmpty) {
  EXPECT_EQ(Str("").toLower().IsNull(), 0);
  EXPECT_EQ(Str("").toLower().length(), 0);
}

// strReplace

TEST(Str, ReplacesEveryOccurrence) {
  Str text("a.b.c");
  Str::strReplace(text, ".", "->");
  EXPECT_EQ(text, "a->b->c");
}

TEST(Str, ReplacesAtBothEnds) {
  Str text(".a.");
  Str::strReplace(text, ".", "`");
  EXPECT_EQ(text, "`a`");
}

TEST(Str, ReplacesNeighbours) {
  Str text("..");
  Str::strReplace(text, ".", "ab");
  EXPECT_EQ(text, "abab");
}

TEST(Str, ReplacesTheWholeText) {
  Str text("abc");
  Str::strReplace(text, "abc", "x");
  EXPECT_EQ(text, "x");
}

TEST(Str, ReplacesByALongerTextThatContainsWhatIsReplaced) {
  Str text("db.tab");
  Str::strReplace(text, ".", "`.`");
  EXPECT_EQ(text, "db`.`tab");
}

TEST(Str, ReplacesByTheSameText) {
  Str text("a.b");
  Str::strReplace(text, ".", ".");
  EXPECT_EQ(text, "a.b");
}

TEST(Str, ReplacesByNothing) {
  Str text("a.b.c");
  Str::strReplace(text, ".", "");
  EXPECT_EQ(text, "abc");
}

TEST(Str, ReplacesByANullTextAsByNothing) {
  Str text("a.b.c");
  Str::strReplace(text, ".", Str());
  EXPECT_EQ(text, "abc");
}

TEST(Str, ReplacesOverlappingOccurrencesFromTheLeft) {
  Str text("aaa");
  Str::strReplace(text, "aa", "b");
  EXPECT_EQ(text, "ba");
}

TEST(Str, DoesNotReplaceWhatComesAboutByReplacing) {
  Str text("aabb");
  Str::strReplace(text, "ab", "");
  EXPECT_EQ(text, "ab");
}

TEST(Str, ReplacesNothingForAnEmptyText) {
  Str text("abc");
  Str::strReplace(text, "", "x");
  EXPECT_EQ(text, "abc");
}

TEST(Str, ReplacesNothingForANullText) {
  Str text("abc");
  Str::strReplace(text, Str(), "x");
  EXPECT_EQ(text, "abc");
}

TEST(Str, StaysAsItIsWhenThereIsNothingToReplace) {
  Str text("abc");
  Str::strReplace(text, "x", "y");
  EXPECT_EQ(text, "abc");
}

TEST(Str, StaysNullWhenReplacedIn) {
  Str text;
  Str::strReplace(text, "x", "y");
  EXPECT_EQ(text.IsNull(), 1);
}

TEST(Str, StaysEmptyRatherThanNullWhenAllIsReplacedByNothing) {
  Str text("xx");
  Str::strReplace(text, "x", Str());
  EXPECT_EQ(text.IsNull(), 0);
  EXPECT_EQ(text.length(), 0);
}

TEST(Str, ReplacesWithNulsInEveryPart) {
  Str text("a\0b\0", 4);
  Str::strReplace(text, Str("\0", 1), Str("x\0", 2));
  EXPECT_EQ(text.View(), std::string_view("ax\0bx\0", 6));
}

TEST(Str, ReplacesItselfByItself) {
  Str text("abc");
  Str::strReplace(text, text, text);
  EXPECT_EQ(text, "abc");
}

TEST(Str, ReplacesItselfByAnotherText) {
  Str text("abc");
  Str::strReplace(text, text, "x");
  EXPECT_EQ(text, "x");
}

TEST(Str, ReplacesAPartByItself) {
  Str text("a.b.c");
  Str::strReplace(text, ".", text);
  EXPECT_EQ(text, "aa.b.cba.b.cc");
}

TEST(Str, ReplacesByMember) {
  Str text("a.b.c");
  text.replaceStr(".", "->");
  EXPECT_EQ(text, "a->b->c");
}

TEST(Str, ReturnsItselfFromReplacingByMember) {
  Str text("a.b.c");
  EXPECT_EQ(&text.replaceStr(".", "-"), &text);
}

// Limits

TEST(Str, RefusesToReserveMoreThanALengthCanSay) {
  Str text("abc");
  EXPECT_EQ(MessageOf([&] { text.Reserve(kTooLong); }), "Text is too long for Str. ");
  EXPECT_EQ(text, "abc");
}

TEST(Str, RefusesToAppendMoreThanALengthCanSay) {
  Str text("abc");
  EXPECT_EQ(MessageOf([&] { text.Append("x", kTooLong); }), "Text is too long for Str. ");
  EXPECT_EQ(text, "abc");
}

TEST(Str, RefusesALengthThatFitsOnlyWithoutTheTextBefore) {
  Str text("abc");
  EXPECT_EQ(MessageOf([&] { text.Append("x", INT_MAX); }), "Text is too long for Str. ");
  EXPECT_EQ(text, "abc");
}

TEST(Str, RefusesALengthThatOverflowsWithTheTextBefore) {
  Str text("abc");
  EXPECT_EQ(MessageOf([&] { text.Append("x", SIZE_MAX); }), "Text is too long for Str. ");
  EXPECT_EQ(text, "abc");
}

TEST(Str, RefusesRoomForAWriterThatALengthCannotSay) {
  Str text("abc");
  EXPECT_EQ(MessageOf([&] { text.AppendWith(kTooLong, [](char*) { return std::size_t{0}; }); }),
            "Text is too long for Str. ");
  EXPECT_EQ(text, "abc");
}

TEST(Str, RefusesMoreBytesThanALengthCanSay) {
  EXPECT_EQ(MessageOf([] { Str("x", kTooLong); }), "Text is too long for Str. ");
}

TEST(Str, ComparesWithAColumnBehindTheRootAsTheColumnDoes) {
  ASStr column(5);
  basic_type const& root = column;
  EXPECT_FALSE(Str("") == root);
  EXPECT_TRUE(Str() == root);
  column = "ab";
  EXPECT_TRUE(Str("ab") == root);
  EXPECT_FALSE(Str("ab") < root);
  EXPECT_TRUE(Str("aa") < root);
}

}  // namespace
