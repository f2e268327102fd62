#include "corvane/data/value/blob.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace {

// The bytes that can be read.
std::string_view BytesOf(Blob const& blob) {
  return {static_cast<char const*>(static_cast<void const*>(blob.Bytes())), blob.Length()};
}

// Writes the length field, as whoever fills a block from outside does.
void PutLengthField(Blob const& blob, std::uint16_t length) { std::memcpy(blob.voidptr(), &length, sizeof length); }

// Construction

TEST(Blob, IsNullByDefault) {
  Blob const blob;
  EXPECT_EQ(blob.IsNull(), 1);
  EXPECT_EQ(blob.IsNotNull(), 0);
}

TEST(Blob, HasNothingWhenNull) {
  Blob const blob;
  EXPECT_EQ(blob.GetSize(), 0);
  EXPECT_EQ(blob.size(), 0);
  EXPECT_EQ(blob.voidptr(), nullptr);
  EXPECT_EQ(blob.Bytes(), nullptr);
  EXPECT_EQ(blob.Length(), 0U);
  EXPECT_EQ(blob.Allocated(), 0U);
}

TEST(Blob, CopiesItsBytes) {
  char bytes[] = {'a', '\0', 'c'};
  Blob const blob(3, bytes);
  bytes[0] = 'X';
  EXPECT_EQ(blob.IsNull(), 0);
  EXPECT_EQ(blob.GetSize(), 3);
  EXPECT_EQ(blob.size(), 3);
  EXPECT_EQ(blob.Allocated(), 3U);
  EXPECT_EQ(BytesOf(blob), std::string_view("a\0c", 3));
}

TEST(Blob, IsZeroFilledWithoutBytes) {
  Blob const blob(3, nullptr);
  EXPECT_EQ(blob.IsNull(), 0);
  EXPECT_EQ(blob.GetSize(), 3);
  EXPECT_EQ(BytesOf(blob), std::string_view("\0\0\0", 3));
}

TEST(Blob, IsEmptyButNotNullWithoutCapacity) {
  Blob const blob(0, "abc");
  EXPECT_EQ(blob.IsNull(), 0);
  EXPECT_EQ(blob.GetSize(), 0);
  EXPECT_NE(blob.voidptr(), nullptr);
}

TEST(Blob, TakesANegativeCapacityForNone) {
  Blob const blob(-1, "abc");
  EXPECT_EQ(blob.IsNull(), 0);
  EXPECT_EQ(blob.GetSize(), 0);
  EXPECT_EQ(Blob(SHRT_MIN, "abc").GetSize(), 0);
}

TEST(Blob, HoldsTheLargestCapacity) {
  std::string const bytes(32767, 'x');
  Blob const blob(SHRT_MAX, bytes.data());
  EXPECT_EQ(blob.GetSize(), 32767);
  EXPECT_EQ(BytesOf(blob), bytes);
}

// Layout

TEST(Blob, PointsToItsLengthFieldBeforeTheBytes) {
  Blob const blob(3, "abc");
  std::uint16_t length = 0;
  std::memcpy(&length, blob.voidptr(), sizeof length);
  EXPECT_EQ(length, 3);
  EXPECT_EQ(std::string_view(static_cast<char const*>(blob.voidptr()) + 2, 3), "abc");
}

TEST(Blob, HasItsBytesBehindTheLengthField) {
  Blob const blob(3, "abc");
  EXPECT_EQ(blob.Bytes(), static_cast<unsigned char const*>(blob.voidptr()) + 2);
}

TEST(Blob, HasTheSizeThatItsLengthFieldSays) {
  Blob const blob(5, "abcde");
  PutLengthField(blob, 2);
  EXPECT_EQ(blob.GetSize(), 2);
  EXPECT_EQ(blob.Length(), 2U);
  EXPECT_EQ(blob.Allocated(), 5U);
}

TEST(Blob, HasAnUnsignedLengthField) {
  Blob const blob(5, "abcde");
  PutLengthField(blob, 65535);
  EXPECT_EQ(blob.GetSize(), 65535);
}

TEST(Blob, IsReadNoFurtherThanItsBlockWhateverTheLengthFieldSays) {
  Blob const blob(5, "abcde");
  PutLengthField(blob, 65535);
  EXPECT_EQ(blob.Length(), 5U);
}

TEST(Blob, CopiesNoMoreThanTheBlockOfTheOther) {
  Blob const original(5, "abcde");
  PutLengthField(original, 65535);
  Blob const copy(original);
  Blob assigned;
  assigned = original;
  EXPECT_EQ(BytesOf(copy), "abcde");
  EXPECT_EQ(BytesOf(assigned), "abcde");
}

TEST(Blob, ComparesNoMoreThanItsBlocks) {
  Blob const left(5, "abcde");
  Blob const right(5, "abcde");
  PutLengthField(left, 65535);
  PutLengthField(right, 65535);
  EXPECT_TRUE(left == right);
  EXPECT_FALSE(left < right);
}

// Copying

TEST(Blob, CopiesAnotherDeeply) {
  Blob const original(3, "abc");
  Blob const copy(original);
  std::memset(static_cast<char*>(original.voidptr()) + 2, 'X', 3);
  EXPECT_EQ(BytesOf(copy), "abc");
  EXPECT_EQ(copy.GetSize(), 3);
}

TEST(Blob, CopiesNull) {
  Blob const original;
  Blob const copy(original);
  EXPECT_EQ(copy.IsNull(), 1);
}

TEST(Blob, CopiesEmpty) {
  Blob const original(0, nullptr);
  Blob const copy(original);
  EXPECT_EQ(copy.IsNull(), 0);
  EXPECT_EQ(copy.GetSize(), 0);
}

TEST(Blob, OutlivesWhatItWasCopiedFrom) {
  Blob assigned;
  {
    Blob const original(3, "abc");
    assigned = original;
  }
  EXPECT_EQ(BytesOf(assigned), "abc");
}

TEST(Blob, AssignsAnotherDeeply) {
  Blob const original(3, "abc");
  Blob assigned(5, "vwxyz");
  assigned = original;
  std::memset(static_cast<char*>(original.voidptr()) + 2, 'X', 3);
  EXPECT_EQ(BytesOf(assigned), "abc");
  EXPECT_EQ(assigned.GetSize(), 3);
}

TEST(Blob, AssignsALongerOne) {
  Blob const original(5, "vwxyz");
  Blob assigned(3, "abc");
  assigned = original;
  EXPECT_EQ(BytesOf(assigned), "vwxyz");
}

TEST(Blob, BecomesNullByAssigningNull) {
  Blob const null;
  Blob assigned(3, "abc");
  assigned = null;
  EXPECT_EQ(assigned.IsNull(), 1);
  EXPECT_EQ(assigned.voidptr(), nullptr);
}

TEST(Blob, SurvivesSelfAssignment) {
  Blob blob(3, "abc");
  Blob const& same = blob;
  blob = same;
  EXPECT_EQ(BytesOf(blob), "abc");
}

TEST(Blob, StaysNullBySelfAssignment) {
  Blob blob;
  Blob const& same = blob;
  blob = same;
  EXPECT_EQ(blob.IsNull(), 1);
}

TEST(Blob, SurvivesCopyingItself) {
  Blob blob(3, "abc");
  blob.copy(blob);
  EXPECT_EQ(BytesOf(blob), "abc");
}

TEST(Blob, ReturnsItselfFromAssignment) {
  Blob const other(3, "abc");
  Blob blob;
  EXPECT_EQ(&(blob = other), &blob);
}

TEST(Blob, DropsItsBlockBySetNull) {
  Blob blob(3, "abc");
  blob.SetNull();
  EXPECT_EQ(blob.IsNull(), 1);
  EXPECT_EQ(blob.GetSize(), 0);
  EXPECT_EQ(blob.voidptr(), nullptr);
  EXPECT_EQ(blob.Allocated(), 0U);
}

TEST(Blob, StaysNullBySetNull) {
  Blob blob;
  blob.SetNull();
  EXPECT_EQ(blob.IsNull(), 1);
}

TEST(Blob, TakesBytesAfterSetNull) {
  Blob const other(3, "abc");
  Blob blob(5, "vwxyz");
  blob.SetNull();
  blob = other;
  EXPECT_EQ(BytesOf(blob), "abc");
}

// Comparisons

TEST(Blob, EqualsTheSameBytes) {
  EXPECT_TRUE(Blob(3, "abc") == Blob(3, "abc"));
  EXPECT_FALSE(Blob(3, "abc") == Blob(3, "abd"));
  EXPECT_FALSE(Blob(3, "abc") == Blob(2, "abc"));
}

TEST(Blob, DiffersFromOtherBytes) {
  EXPECT_FALSE(Blob(3, "abc") != Blob(3, "abc"));
  EXPECT_TRUE(Blob(3, "abc") != Blob(3, "abd"));
  EXPECT_TRUE(Blob(3, "abc") != Blob(2, "abc"));
}

TEST(Blob, TellsBytesApartBehindANul) { EXPECT_FALSE(Blob(3, "a\0b") == Blob(3, "a\0c")); }

TEST(Blob, OrdersByLengthFirst) {
  EXPECT_TRUE(Blob(1, "z") < Blob(2, "aa"));
  EXPECT_FALSE(Blob(2, "aa") < Blob(1, "z"));
}

TEST(Blob, OrdersByBytesAsUnsignedNumbers) {
  EXPECT_TRUE(Blob(2, "a\x7f") < Blob(2, "a\x80"));
  EXPECT_FALSE(Blob(2, "a\x80") < Blob(2, "a\x7f"));
  EXPECT_FALSE(Blob(2, "ab") < Blob(2, "ab"));
}

TEST(Blob, TakesTwoNullsForEqual) {
  EXPECT_TRUE(Blob() == Blob());
  EXPECT_FALSE(Blob() < Blob());
}

TEST(Blob, OrdersNullBeforeEmpty) {
  EXPECT_TRUE(Blob() < Blob(0, nullptr));
  EXPECT_FALSE(Blob(0, nullptr) < Blob());
  EXPECT_FALSE(Blob() == Blob(0, nullptr));
}

TEST(Blob, TakesTwoEmptyOnesForEqual) {
  EXPECT_TRUE(Blob(0, nullptr) == Blob(0, "abc"));
  EXPECT_FALSE(Blob(0, nullptr) < Blob(0, "abc"));
}

// Text

TEST(Blob, WritesAFixedTextWhateverTheBytes) {
  EXPECT_EQ(Blob(3, "abc").getstr(), "BLOB");
  EXPECT_EQ(Blob(0, nullptr).getstr(), "BLOB");
  EXPECT_EQ(Blob().getstr(), "BLOB");
}

}  // namespace
