#include "corvane/data/value/real_blob.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "corvane/data/value/exception.h"
#include "corvane/data/value/int.h"

namespace {

std::string_view BytesOf(RealBlob const& blob) { return {static_cast<char const*>(blob.voidptr()), blob.Length()}; }

TEST(CpFlag, HasKnownNumbers) {
  EXPECT_EQ(static_cast<int>(NoCopy), 0);
  EXPECT_EQ(static_cast<int>(Copy), 1);
}

TEST(BlobData, IsEmptyAndOwnsItsBytesByDefault) {
  BlobData const data;
  EXPECT_EQ(data.length, 0U);
  EXPECT_EQ(data.bytes, nullptr);
  EXPECT_EQ(data.owned, 1);
}

// Construction

TEST(RealBlob, IsNullByDefault) {
  RealBlob const blob;
  EXPECT_EQ(blob.IsNull(), 1);
  EXPECT_EQ(blob.IsNotNull(), 0);
}

TEST(RealBlob, HasNothingWhenNull) {
  RealBlob const blob;
  EXPECT_EQ(blob.GetSize(), 0);
  EXPECT_EQ(blob.size(), 0);
  EXPECT_EQ(blob.Length(), 0U);
  EXPECT_EQ(blob.voidptr(), nullptr);
}

TEST(RealBlob, CopiesItsBytes) {
  char bytes[] = {'a', '\0', 'c'};
  RealBlob const blob(3, bytes, Copy);
  bytes[0] = 'X';
  EXPECT_EQ(blob.IsNull(), 0);
  EXPECT_EQ(blob.IsNotNull(), 1);
  EXPECT_EQ(blob.GetSize(), 3);
  EXPECT_EQ(blob.size(), 3);
  EXPECT_EQ(blob.Length(), 3U);
  EXPECT_EQ(BytesOf(blob), std::string_view("a\0c", 3));
}

TEST(RealBlob, CopiesUnlessToldOtherwise) {
  char bytes[] = {'a', 'b', 'c'};
  RealBlob const blob(3, bytes);
  bytes[0] = 'X';
  EXPECT_EQ(BytesOf(blob), "abc");
}

TEST(RealBlob, BorrowsItsBytes) {
  char bytes[] = {'a', 'b', 'c'};
  RealBlob const blob(3, bytes, NoCopy);
  EXPECT_EQ(blob.voidptr(), bytes);
  bytes[0] = 'X';
  EXPECT_EQ(BytesOf(blob), "Xbc");
}

TEST(RealBlob, LeavesBorrowedBytesToTheirOwner) {
  auto const bytes = std::make_unique<char[]>(3);
  { RealBlob const blob(3, bytes.get(), NoCopy); }
  std::memcpy(bytes.get(), "abc", 3);
  EXPECT_EQ(std::string_view(bytes.get(), 3), "abc");
}

TEST(RealBlob, LeavesBorrowedBytesToTheirOwnerBySetNull) {
  auto const bytes = std::make_unique<char[]>(3);
  RealBlob blob(3, bytes.get(), NoCopy);
  blob.SetNull();
  std::memcpy(bytes.get(), "abc", 3);
  EXPECT_EQ(std::string_view(bytes.get(), 3), "abc");
  EXPECT_EQ(blob.IsNull(), 1);
}

TEST(RealBlob, LeavesBorrowedBytesToTheirOwnerWhenAssigned) {
  auto const bytes = std::make_unique<char[]>(3);
  std::memcpy(bytes.get(), "abc", 3);
  RealBlob blob(3, bytes.get(), NoCopy);
  blob = RealBlob(2, "xy", Copy);
  EXPECT_EQ(BytesOf(blob), "xy");
  EXPECT_EQ(std::string_view(bytes.get(), 3), "abc");
}

TEST(RealBlob, IsZeroFilledWithoutBytes) {
  RealBlob const blob(3, nullptr, Copy);
  EXPECT_EQ(blob.IsNull(), 0);
  EXPECT_EQ(BytesOf(blob), std::string_view("\0\0\0", 3));
}

TEST(RealBlob, IsZeroFilledWhenThereIsNothingToBorrow) {
  RealBlob const blob(3, nullptr, NoCopy);
  EXPECT_EQ(blob.IsNull(), 0);
  EXPECT_EQ(BytesOf(blob), std::string_view("\0\0\0", 3));
}

TEST(RealBlob, IsEmptyButNotNullWithLengthZero) {
  RealBlob const blob(0, "abc", Copy);
  EXPECT_EQ(blob.IsNull(), 0);
  EXPECT_EQ(blob.GetSize(), 0);
  EXPECT_EQ(blob.voidptr(), nullptr);
}

TEST(RealBlob, IsEmptyButNotNullWithoutBytes) {
  RealBlob const blob(0, nullptr);
  EXPECT_EQ(blob.IsNull(), 0);
  EXPECT_EQ(blob.GetSize(), 0);
  EXPECT_EQ(blob.voidptr(), nullptr);
}

TEST(RealBlob, PointsToNothingWhenItBorrowsNoBytes) {
  RealBlob const blob(0, "abc", NoCopy);
  EXPECT_EQ(blob.IsNull(), 0);
  EXPECT_EQ(blob.voidptr(), nullptr);
}

TEST(RealBlob, HoldsMoreThanASmallBlob) {
  std::string const bytes(100000, 'x');
  RealBlob const blob(100000, bytes.data(), Copy);
  EXPECT_EQ(blob.GetSize(), 100000);
  EXPECT_EQ(BytesOf(blob), bytes);
}

TEST(RealBlob, KeepsALengthThatItsSizeCannotSay) {
  char const byte = 'a';
  RealBlob const blob(3000000000U, &byte, NoCopy);  // never read
  EXPECT_EQ(blob.Length(), 3000000000U);
  EXPECT_EQ(blob.GetSize(), INT_MAX);
}

// Copying

TEST(RealBlob, CopiesAnotherDeeply) {
  RealBlob const original(3, "abc", Copy);
  RealBlob const copy(original);
  std::memset(original.voidptr(), 'X', 3);
  EXPECT_EQ(BytesOf(copy), "abc");
}

TEST(RealBlob, DuplicatesBorrowedBytesWhenCopied) {
  char bytes[] = {'a', 'b', 'c'};
  RealBlob const original(3, bytes, NoCopy);
  RealBlob const copy(original);
  bytes[0] = 'X';
  EXPECT_EQ(BytesOf(copy), "abc");
}

TEST(RealBlob, CopiesNull) {
  RealBlob const original;
  RealBlob const copy(original);
  EXPECT_EQ(copy.IsNull(), 1);
}

TEST(RealBlob, CopiesEmpty) {
  RealBlob const original(0, nullptr);
  RealBlob const copy(original);
  EXPECT_EQ(copy.IsNull(), 0);
  EXPECT_EQ(copy.GetSize(), 0);
}

TEST(RealBlob, AssignsAnotherDeeply) {
  RealBlob const original(3, "abc", Copy);
  RealBlob assigned(5, "vwxyz", Copy);
  assigned = original;
  std::memset(original.voidptr(), 'X', 3);
  EXPECT_EQ(BytesOf(assigned), "abc");
}

TEST(RealBlob, DuplicatesBorrowedBytesWhenAssigned) {
  char bytes[] = {'a', 'b', 'c'};
  RealBlob const original(3, bytes, NoCopy);
  RealBlob assigned;
  assigned = original;
  bytes[0] = 'X';
  EXPECT_EQ(BytesOf(assigned), "abc");
}

TEST(RealBlob, DuplicatesBorrowedBytesByCopy) {
  char bytes[] = {'a', 'b', 'c'};
  RealBlob const original(3, bytes, NoCopy);
  RealBlob assigned;
  assigned.copy(original);
  bytes[0] = 'X';
  EXPECT_EQ(BytesOf(assigned), "abc");
}

TEST(RealBlob, BecomesNullByAssigningNull) {
  RealBlob const null;
  RealBlob assigned(3, "abc", Copy);
  assigned = null;
  EXPECT_EQ(assigned.IsNull(), 1);
  EXPECT_EQ(assigned.voidptr(), nullptr);
}

TEST(RealBlob, SurvivesSelfAssignment) {
  RealBlob blob(3, "abc", Copy);
  RealBlob const& same = blob;
  blob = same;
  EXPECT_EQ(BytesOf(blob), "abc");
}

TEST(RealBlob, SurvivesSelfAssignmentWhileBorrowing) {
  char bytes[] = {'a', 'b', 'c'};
  RealBlob blob(3, bytes, NoCopy);
  RealBlob const& same = blob;
  blob = same;
  EXPECT_EQ(BytesOf(blob), "abc");
}

// Assignment of as many bytes as there are already

TEST(RealBlob, AssignsAnotherOfItsLengthDeeply) {
  RealBlob const original(3, "abc");
  RealBlob assigned(3, "xyz");
  assigned = original;
  EXPECT_NE(assigned.voidptr(), original.voidptr());
  std::memset(original.voidptr(), 'X', 3);
  EXPECT_EQ(BytesOf(assigned), "abc");
}

TEST(RealBlob, LeavesTheSourceOfItsLengthAsItWas) {
  RealBlob const original(3, "abc");
  RealBlob assigned(3, "xyz");
  assigned = original;
  std::memset(assigned.voidptr(), 'X', 3);
  EXPECT_EQ(BytesOf(original), "abc");
}

TEST(RealBlob, NeverWritesIntoBytesThatItBorrows) {
  char bytes[] = {'a', 'b', 'c'};
  RealBlob const owned(3, "xyz");
  RealBlob assigned(3, bytes, NoCopy);
  assigned = owned;
  EXPECT_EQ(std::string_view(bytes, 3), "abc");
  EXPECT_EQ(BytesOf(assigned), "xyz");
  EXPECT_NE(assigned.voidptr(), bytes);
}

TEST(RealBlob, NeverWritesIntoBytesThatItBorrowsByCopy) {
  char bytes[] = {'a', 'b', 'c'};
  RealBlob assigned(3, bytes, NoCopy);
  assigned.copy(RealBlob(3, "xyz"));
  EXPECT_EQ(std::string_view(bytes, 3), "abc");
  EXPECT_EQ(BytesOf(assigned), "xyz");
}

TEST(RealBlob, OwnsItsBytesOnceItWasAssignedTo) {
  char bytes[] = {'a', 'b', 'c'};
  RealBlob assigned(3, bytes, NoCopy);
  assigned = RealBlob(3, "uvw");
  assigned = RealBlob(3, "xyz");
  bytes[0] = 'X';
  EXPECT_EQ(BytesOf(assigned), "xyz");
}

TEST(RealBlob, DuplicatesBorrowedBytesOfItsLength) {
  char bytes[] = {'a', 'b', 'c'};
  RealBlob const original(3, bytes, NoCopy);
  RealBlob assigned(3, "xyz");
  assigned = original;
  bytes[0] = 'X';
  EXPECT_EQ(BytesOf(assigned), "abc");
}

TEST(RealBlob, DuplicatesBorrowedBytesOfItsLengthWhenItBorrowsItself) {
  char bytes[] = {'a', 'b', 'c', 'd'};
  RealBlob const original(3, bytes, NoCopy);
  RealBlob assigned(3, bytes + 1, NoCopy);
  assigned = original;
  EXPECT_EQ(std::string_view(bytes, 4), "abcd");
  EXPECT_EQ(BytesOf(assigned), "abc");
}

TEST(RealBlob, TakesItsOwnBytesFromOneThatBorrowsThem) {
  RealBlob blob(3, "abc");
  RealBlob const borrowed(3, blob.voidptr(), NoCopy);
  blob = borrowed;
  EXPECT_EQ(BytesOf(blob), "abc");
}

TEST(RealBlob, TakesAPartOfItsOwnBytesFromOneThatBorrowsIt) {
  RealBlob blob(6, "abcdef");
  RealBlob const borrowed(3, static_cast<char*>(blob.voidptr()) + 2, NoCopy);
  blob = borrowed;
  EXPECT_EQ(BytesOf(blob), "cde");
}

TEST(RealBlob, TakesBytesThatOverlapItsOwn) {
  RealBlob blob(6, "abcdef");
  char* const bytes = static_cast<char*>(blob.voidptr());
  RealBlob inner(4, bytes, NoCopy);
  inner = RealBlob(4, bytes + 2, NoCopy);
  EXPECT_EQ(BytesOf(inner), "cdef");
  EXPECT_EQ(BytesOf(blob), "abcdef");
}

TEST(RealBlob, TakesNulsOfItsLength) {
  RealBlob blob(3, "xyz");
  blob = RealBlob(3, "a\0b");
  EXPECT_EQ(BytesOf(blob), std::string_view("a\0b", 3));
}

TEST(RealBlob, SwitchesBetweenNullEmptyAndBytes) {
  RealBlob const null;
  RealBlob const empty(0, nullptr);
  RealBlob const bytes(3, "abc");
  RealBlob blob;
  blob = empty;
  EXPECT_EQ(blob.IsNull(), 0);
  EXPECT_EQ(blob.voidptr(), nullptr);
  blob = empty;
  EXPECT_EQ(blob.IsNull(), 0);
  blob = bytes;
  EXPECT_EQ(BytesOf(blob), "abc");
  blob = empty;
  EXPECT_EQ(blob.IsNull(), 0);
  EXPECT_EQ(blob.Length(), 0U);
  blob = null;
  EXPECT_EQ(blob.IsNull(), 1);
  blob = null;
  EXPECT_EQ(blob.IsNull(), 1);
}

TEST(RealBlob, TakesZerosOfItsLength) {
  RealBlob blob(3, "xyz");
  blob = RealBlob(3, nullptr);
  EXPECT_EQ(BytesOf(blob), std::string_view("\0\0\0", 3));
}

TEST(RealBlob, ReturnsItselfFromAssignment) {
  RealBlob const other(3, "abc", Copy);
  RealBlob blob;
  EXPECT_EQ(&(blob = other), &blob);
}

TEST(RealBlob, DropsItsBytesBySetNull) {
  RealBlob blob(3, "abc", Copy);
  blob.SetNull();
  EXPECT_EQ(blob.IsNull(), 1);
  EXPECT_EQ(blob.GetSize(), 0);
  EXPECT_EQ(blob.voidptr(), nullptr);
}

TEST(RealBlob, StaysNullBySetNull) {
  RealBlob blob;
  blob.SetNull();
  EXPECT_EQ(blob.IsNull(), 1);
}

// Comparisons

TEST(RealBlob, EqualsTheSameBytes) {
  EXPECT_TRUE(RealBlob(3, "abc") == RealBlob(3, "abc"));
  EXPECT_FALSE(RealBlob(3, "abc") == RealBlob(3, "abd"));
  EXPECT_FALSE(RealBlob(3, "abc") == RealBlob(2, "abc"));
}

TEST(RealBlob, DiffersFromOtherBytes) {
  EXPECT_FALSE(RealBlob(3, "abc") != RealBlob(3, "abc"));
  EXPECT_TRUE(RealBlob(3, "abc") != RealBlob(3, "abd"));
  EXPECT_TRUE(RealBlob(3, "abc") != RealBlob(2, "abc"));
}

TEST(RealBlob, TellsBytesApartBehindANul) { EXPECT_TRUE(RealBlob(3, "a\0b") != RealBlob(3, "a\0c")); }

TEST(RealBlob, EqualsTheSameBytesWhoeverOwnsThem) {
  char const bytes[] = {'a', 'b', 'c'};
  EXPECT_TRUE(RealBlob(3, bytes, NoCopy) == RealBlob(3, "abc", Copy));
}

TEST(RealBlob, OrdersByLengthFirst) {
  EXPECT_TRUE(RealBlob(1, "z") < RealBlob(2, "aa"));
  EXPECT_FALSE(RealBlob(2, "aa") < RealBlob(1, "z"));
}

TEST(RealBlob, OrdersByBytesAsUnsignedNumbers) {
  EXPECT_TRUE(RealBlob(2, "a\x7f") < RealBlob(2, "a\x80"));
  EXPECT_FALSE(RealBlob(2, "a\x80") < RealBlob(2, "a\x7f"));
  EXPECT_FALSE(RealBlob(2, "ab") < RealBlob(2, "ab"));
}

TEST(RealBlob, TakesTwoNullsForEqual) {
  EXPECT_TRUE(RealBlob() == RealBlob());
  EXPECT_FALSE(RealBlob() != RealBlob());
  EXPECT_FALSE(RealBlob() < RealBlob());
}

TEST(RealBlob, OrdersNullBeforeEmpty) {
  EXPECT_TRUE(RealBlob() < RealBlob(0, nullptr));
  EXPECT_FALSE(RealBlob(0, nullptr) < RealBlob());
  EXPECT_TRUE(RealBlob() != RealBlob(0, nullptr));
}

TEST(RealBlob, TakesTwoEmptyOnesForEqual) {
  EXPECT_TRUE(RealBlob(0, nullptr) == RealBlob(0, "abc", NoCopy));
  EXPECT_FALSE(RealBlob(0, nullptr) < RealBlob(0, "abc", NoCopy));
}

TEST(RealBlob, ComparesWithARealBlobBehindTheRoot) {
  RealBlob const same(3, "abc");
  RealBlob const greater(3, "abd");
  basic_type const& sameRoot = same;
  basic_type const& greaterRoot = greater;
  EXPECT_TRUE(RealBlob(3, "abc") == sameRoot);
  EXPECT_FALSE(RealBlob(3, "abc") == greaterRoot);
  EXPECT_FALSE(RealBlob(3, "abc") != sameRoot);
  EXPECT_TRUE(RealBlob(3, "abc") != greaterRoot);
  EXPECT_TRUE(RealBlob(3, "abc") < greaterRoot);
  EXPECT_FALSE(RealBlob(3, "abc") < sameRoot);
}

TEST(RealBlob, NamesTheOperatorWhenItDiffersFromAnotherKind) {
  RealBlob const blob(3, "abc");
  Int const other(1);
  basic_type const& otherRoot = other;
  try {
    EXPECT_TRUE(blob != otherRoot);
    FAIL() << "nothing thrown";
  } catch (AException const& exception) {
    EXPECT_STREQ(exception.what(), "Incompatible types for RealBlob::operator != (). ");
  }
}

// Text

TEST(RealBlob, WritesAFixedTextWhateverTheBytes) {
  EXPECT_EQ(RealBlob(3, "abc").getstr(), "BLOB");
  EXPECT_EQ(RealBlob(0, nullptr).getstr(), "BLOB");
  EXPECT_EQ(RealBlob().getstr(), "BLOB");
}

}  // namespace
