#include "corvane/data/real_blob.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <type_traits>

#include "corvane/data/blob.h"
#include "corvane/data/value/exception.h"

using testing::StrEq;
using testing::ThrowsMessage;

namespace {

static_assert(!std::is_convertible<unsigned, ASRealBlob>::value, "");
static_assert(!std::is_default_constructible<ASRealBlob>::value, "");

std::string Bytes(RealBlob const& blob) { return std::string(static_cast<char const*>(blob.voidptr()), blob.Length()); }

ASRealBlob Holding(char const* text) {
  ASRealBlob blob(0);
  blob = RealBlob(static_cast<unsigned>(std::strlen(text)), text);
  return blob;
}

basic_type const& Root(basic_type const& value) { return value; }

// ---- Construction, sizes ----

TEST(ASRealBlob, CapacityZeroIsNull) {
  ASRealBlob const blob(0);
  EXPECT_EQ(blob.IsNull(), 1);
  EXPECT_EQ(blob.GetSize(), 0);
  EXPECT_EQ(blob.size(), 0);
  EXPECT_EQ(blob.voidptr(), nullptr);
}

TEST(ASRealBlob, AnyOtherCapacityIsAValueOfThatLength) {
  ASRealBlob const blob(10);
  EXPECT_EQ(blob.IsNull(), 0);
  EXPECT_EQ(blob.GetSize(), 10);
  EXPECT_EQ(blob.size(), 10);
  EXPECT_EQ(blob.Length(), 10u);
}

TEST(ASRealBlob, NewBytesAreZero) { EXPECT_EQ(Bytes(ASRealBlob(10)), std::string(10, '\0')); }

TEST(ASRealBlob, NewBytesOfALargeCapacityAreZero) { EXPECT_EQ(Bytes(ASRealBlob(1000000)), std::string(1000000, '\0')); }

TEST(ASRealBlob, RawWriteIsTaken) {
  ASRealBlob const blob(4);
  std::memcpy(blob.voidptr(), "abcd", 4);
  EXPECT_EQ(Bytes(blob), "abcd");
}

TEST(ASRealBlob, CopyHasBytesOfItsOwn) {
  ASRealBlob const source = Holding("abc");
  ASRealBlob const copy(source);
  EXPECT_EQ(Bytes(copy), "abc");
  EXPECT_NE(copy.voidptr(), source.voidptr());
}

// ---- Null state ----

TEST(ASRealBlob, SetNullDropsTheBytes) {
  ASRealBlob blob = Holding("abc");
  blob.SetNull();
  EXPECT_EQ(blob.voidptr(), nullptr);
  EXPECT_EQ(blob.GetSize(), 0);
}

TEST(ASRealBlob, EmptyValueIsNotNull) {
  ASRealBlob blob(0);
  blob = RealBlob(0, "");
  EXPECT_EQ(blob.IsNull(), 0);
  EXPECT_EQ(blob.GetSize(), 0);
}

TEST(ASRealBlob, NullIsNoEmptyValue) {
  EXPECT_FALSE(ASRealBlob(0) == RealBlob(0, ""));
  EXPECT_TRUE(ASRealBlob(0) < RealBlob(0, ""));
  EXPECT_TRUE(ASRealBlob(0) != RealBlob(0, ""));
}

// ---- Assignment ----

TEST(ASRealBlob, AssignmentCopiesTheBytes) {
  ASRealBlob const source = Holding("abc");
  ASRealBlob blob(0);
  blob = source;
  EXPECT_EQ(Bytes(blob), "abc");
  EXPECT_NE(blob.voidptr(), source.voidptr());
}

TEST(ASRealBlob, AssignmentTakesAnyLength) {
  ASRealBlob blob(2);
  blob = Holding("abcdef");
  EXPECT_EQ(blob.size(), 6);
  blob = Holding("x");
  EXPECT_EQ(blob.size(), 1);
}

TEST(ASRealBlob, AssignmentTakesZeroBytesToo) {
  ASRealBlob blob(0);
  blob = RealBlob(3, "a\0b");
  EXPECT_EQ(Bytes(blob), std::string("a\0b", 3));
}

TEST(ASRealBlob, AssignmentOfAPlainRealBlobReturnsTheColumn) {
  ASRealBlob blob(0);
  EXPECT_EQ(&(blob = RealBlob(3, "abc")), &blob);
}

TEST(ASRealBlob, AssignmentOfANullRealBlobMakesNull) {
  ASRealBlob blob = Holding("abc");
  blob = RealBlob();
  EXPECT_EQ(blob.IsNull(), 1);
}

TEST(ASRealBlob, ItselfSeenAsARealBlobIsTaken) {
  ASRealBlob blob = Holding("abc");
  blob = static_cast<RealBlob const&>(blob);
  EXPECT_EQ(Bytes(blob), "abc");
}

TEST(ASRealBlob, AssignmentDuplicatesBorrowedBytes) {
  char bytes[] = "abc";
  ASRealBlob blob(0);
  blob = RealBlob(3, bytes, NoCopy);
  bytes[0] = 'x';
  EXPECT_EQ(Bytes(blob), "abc");
}

TEST(ASRealBlob, AssigningThroughTheRootChangesNothing) {
  ASRealBlob blob = Holding("abc");
  blob = Root(Holding("xyz"));
  EXPECT_EQ(Bytes(blob), "abc");
  blob = Root(ASRealBlob(0));
  EXPECT_EQ(Bytes(blob), "abc");
}

TEST(ASRealBlob, AssigningThroughTheRootLeavesNullNull) {
  ASRealBlob blob(0);
  blob = Root(Holding("xyz"));
  EXPECT_EQ(blob.IsNull(), 1);
}

TEST(ASRealBlob, AssigningThroughTheRootReturnsTheColumn) {
  ASRealBlob blob(0);
  EXPECT_EQ(&(blob = Root(Holding("xyz"))), &blob);
}

TEST(ASRealBlob, AssigningAnUnlikeKindThroughTheRootThrows) {
  ASRealBlob blob = Holding("abc");
  EXPECT_THAT([&] { blob = Root(ASBlob(3)); },
              ThrowsMessage<AException>(StrEq("Incompatible types for ASRealBlob::operator = (). ")));
  EXPECT_EQ(Bytes(blob), "abc");
}

// ---- copy ----

TEST(ASRealBlob, CopyOfAPlainRealBlobIsTaken) {
  ASRealBlob blob(0);
  static_cast<basic_type&>(blob).copy(RealBlob(3, "abc"));
  EXPECT_EQ(Bytes(blob), "abc");
}

TEST(ASRealBlob, CopyOfAnEmptyValueIsNotNull) {
  ASRealBlob blob(0);
  blob.copy(RealBlob(0, ""));
  EXPECT_EQ(blob.IsNull(), 0);
}

// ---- Comparison ----

TEST(ASRealBlob, EqualsTheSameBytes) {
  ASRealBlob const blob = Holding("abc");
  EXPECT_TRUE(blob == Holding("abc"));
  EXPECT_TRUE(blob == RealBlob(3, "abc"));
  EXPECT_TRUE(blob == Root(RealBlob(3, "abc")));
  EXPECT_FALSE(blob == Holding("abd"));
  EXPECT_FALSE(blob == RealBlob(2, "ab"));
  EXPECT_FALSE(blob == Root(RealBlob()));
}

TEST(ASRealBlob, DiffersFromOtherBytes) {
  ASRealBlob const blob = Holding("abc");
  EXPECT_TRUE(blob != Holding("abd"));
  EXPECT_TRUE(blob != RealBlob(2, "ab"));
  EXPECT_TRUE(blob != Root(RealBlob(2, "ab")));
  EXPECT_TRUE(blob != Root(RealBlob()));
  EXPECT_FALSE(blob != Holding("abc"));
  EXPECT_FALSE(blob != RealBlob(3, "abc"));
  EXPECT_FALSE(blob != Root(RealBlob(3, "abc")));
}

TEST(ASRealBlob, TwoNullsDoNotDiffer) {
  EXPECT_FALSE(ASRealBlob(0) != RealBlob());
  EXPECT_FALSE(ASRealBlob(0) != Root(RealBlob()));
}

TEST(ASRealBlob, IsOrderedByLengthThenByBytes) {
  EXPECT_TRUE(Holding("z") < Holding("aa"));
  EXPECT_FALSE(Holding("aa") < Holding("z"));
  EXPECT_TRUE(Holding("ab") < RealBlob(2, "ac"));
  EXPECT_TRUE(Holding("ab") < Root(RealBlob(2, "ac")));
  EXPECT_FALSE(Holding("ab") < RealBlob(2, "ab"));
}

TEST(ASRealBlob, BytesAreOrderedAsUnsigned) { EXPECT_TRUE(Holding("z") < Holding("\xE9")); }

TEST(ASRealBlob, InequalityWithAnUnlikeKindThrows) {
  EXPECT_THAT([] { static_cast<void>(Holding("abc") != Root(ASBlob(3))); },
              ThrowsMessage<AException>(StrEq("Incompatible types for ASRealBlob::operator != (). ")));
}

TEST(ASRealBlob, TextIsBLOBWhateverTheBytes) {
  EXPECT_EQ(Holding("abc").getstr(), "BLOB");
  EXPECT_EQ(ASRealBlob(0).getstr(), "BLOB");
}

}  // namespace
