#include "corvane/data/blob.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <type_traits>

#include "corvane/data/geometry.h"
#include "corvane/data/guid.h"
#include "corvane/data/int.h"
#include "corvane/data/real_blob.h"
#include "corvane/data/str.h"
#include "corvane/data/value/exception.h"

using testing::StrEq;
using testing::ThrowsMessage;

namespace {

static_assert(!std::is_convertible<std::uint16_t, ASBlob>::value, "");
static_assert(!std::is_default_constructible<ASBlob>::value, "");

// The bytes that count.
std::string Bytes(Blob const& blob) { return std::string(reinterpret_cast<char const*>(blob.Bytes()), blob.Length()); }

std::uint16_t LengthField(Blob const& blob) {
  std::uint16_t length = 0;
  std::memcpy(&length, blob.voidptr(), sizeof length);
  return length;
}

void SetLengthField(Blob const& blob, std::uint16_t length) { std::memcpy(blob.voidptr(), &length, sizeof length); }

// The length field and all that the column has room for.
std::string Block(ASBlob const& blob) {
  return std::string(static_cast<char const*>(blob.voidptr()), blob.Capacity() + sizeof(std::uint16_t));
}

ASBlob Holding(char const* text, std::uint16_t capacity = 10) {
  ASBlob blob(capacity);
  blob.Fill(text, std::strlen(text));
  return blob;
}

basic_type const& Root(basic_type const& value) { return value; }

// ---- Construction, sizes ----

TEST(ASBlob, NewBlockIsAllZero) { EXPECT_EQ(Block(ASBlob(4)), std::string(6, '\0')); }

TEST(ASBlob, GetSizeIsTheCapacity) {
  EXPECT_EQ(Holding("abc").GetSize(), 10);
  EXPECT_EQ(Holding("abc").Capacity(), 10);
}

TEST(ASBlob, SizeIsTheLength) { EXPECT_EQ(Holding("abc").size(), 3); }

TEST(ASBlob, LengthIsTheFirstFieldOfTheBlock) {
  EXPECT_EQ(LengthField(Holding("abc")), 3);
  EXPECT_EQ(Block(Holding("abc")).substr(2), std::string("abc\0\0\0\0\0\0\0", 10));
}

TEST(ASBlob, CapacityOverASigned16BitNumberIsKept) {
  ASBlob blob(40000);
  EXPECT_EQ(blob.GetSize(), 40000);
  blob.Fill(std::string(40000, 'x').data(), 40000);
  EXPECT_EQ(blob.size(), 40000);
}

TEST(ASBlob, LargestCapacityCutsALongerValue) {
  ASBlob blob(65535);
  blob.Fill(std::string(70000, 'x').data(), 70000);
  EXPECT_EQ(blob.size(), 65535);
  EXPECT_EQ(Bytes(blob), std::string(65535, 'x'));
}

TEST(ASBlob, CopyHasTheSameCapacityAndBytes) {
  ASBlob const source = Holding("abc");
  ASBlob const copy(source);
  EXPECT_EQ(Block(copy), Block(source));
  EXPECT_NE(copy.voidptr(), source.voidptr());
}

// ---- Null state ----

TEST(ASBlob, LengthZeroIsNull) {
  ASBlob const blob = Holding("abc");
  SetLengthField(blob, 0);
  EXPECT_EQ(blob.IsNull(), 1);
  EXPECT_EQ(blob.size(), 0);
}

TEST(ASBlob, RawLengthEndsTheNullState) {
  ASBlob const blob(4);
  SetLengthField(blob, 2);
  EXPECT_EQ(blob.IsNull(), 0);
  EXPECT_EQ(Bytes(blob), std::string("\0\0", 2));
}

TEST(ASBlob, SetNullZeroesLengthAndBytes) {
  ASBlob blob = Holding("abcdefghij");
  blob.SetNull();
  EXPECT_EQ(Block(blob), std::string(12, '\0'));
}

TEST(ASBlob, SetNullZeroesBytesBehindTheLength) {
  ASBlob blob = Holding("abcdefghij");
  SetLengthField(blob, 2);
  blob.SetNull();
  EXPECT_EQ(Block(blob), std::string(12, '\0'));
}

TEST(ASBlob, SetNullKeepsTheBlock) {
  ASBlob blob = Holding("abc");
  void* const block = blob.voidptr();
  blob.SetNull();
  EXPECT_EQ(blob.voidptr(), block);
}

// ---- Fill ----

TEST(ASBlob, FillTakesZeroBytesToo) {
  ASBlob blob(10);
  blob.Fill("a\0b", 3);
  EXPECT_EQ(Bytes(blob), std::string("a\0b", 3));
}

TEST(ASBlob, FillCutsALongerValue) {
  ASBlob blob(4);
  blob.Fill("abcdefgh", 8);
  EXPECT_EQ(LengthField(blob), 4);
  EXPECT_EQ(Bytes(blob), "abcd");
}

TEST(ASBlob, FillLeavesNothingOfALongerValue) {
  ASBlob blob = Holding("abcdefghij");
  blob.Fill("xy", 2);
  EXPECT_EQ(Block(blob).substr(2), std::string("xy\0\0\0\0\0\0\0\0", 10));
}

TEST(ASBlob, FilledWithNothingIsNull) {
  ASBlob blob = Holding("abc");
  blob.Fill(nullptr, 0);
  EXPECT_EQ(blob.IsNull(), 1);
}

TEST(ASBlob, FilledFromItsOwnBytesItMoves) {
  ASBlob blob = Holding("abcdef");
  blob.Fill(blob.Bytes() + 2, 3);
  EXPECT_EQ(Bytes(blob), "cde");
}

// ---- Assignment ----

TEST(ASBlob, AssignmentCopiesTheBytes) {
  ASBlob blob(10);
  blob = Holding("abc");
  EXPECT_EQ(Bytes(blob), "abc");
  EXPECT_EQ(LengthField(blob), 3);
}

TEST(ASBlob, AssignmentFromASmallerCapacity) {
  ASBlob blob = Holding("0123456789");
  blob = Holding("abc", 4);
  EXPECT_EQ(Bytes(blob), "abc");
  EXPECT_EQ(blob.Capacity(), 10);
}

TEST(ASBlob, AssignmentKeepsTheLengthOfALongerSource) {
  ASBlob blob(4);
  blob = Holding("0123456789");
  EXPECT_EQ(LengthField(blob), 10);
}

TEST(ASBlob, AssignmentOfALongerSourceTakesWhatFits) {
  ASBlob blob(4);
  blob = Holding("0123456789");
  EXPECT_EQ(Bytes(blob), "0123");
  EXPECT_EQ(blob.Capacity(), 4);
}

TEST(ASBlob, AssignmentOfNullMakesNull) {
  ASBlob blob = Holding("abc");
  blob = ASBlob(10);
  EXPECT_EQ(blob.IsNull(), 1);
}

TEST(ASBlob, AssignmentKeepsTheBlock) {
  ASBlob blob = Holding("abc");
  void* const block = blob.voidptr();
  blob = Holding("xyz", 20);
  EXPECT_EQ(blob.voidptr(), block);
}

// ---- A length field that says more than fits ----

class ASBlobOverlongLength : public testing::Test {
 protected:
  ASBlobOverlongLength() { SetLengthField(overlong, 60000); }

  ASBlob const overlong = Holding("0123", 4);
};

TEST_F(ASBlobOverlongLength, SizeStopsAtTheCapacity) {
  EXPECT_EQ(overlong.size(), 4);
  EXPECT_EQ(overlong.GetSize(), 4);
}

TEST_F(ASBlobOverlongLength, ComparisonStopsAtTheCapacity) {
  EXPECT_TRUE(Root(overlong) == Holding("0123"));
  EXPECT_TRUE(Root(Holding("0123")) == overlong);
  EXPECT_FALSE(Root(overlong) < Holding("0123"));
  EXPECT_FALSE(Root(Holding("0123")) < overlong);
  EXPECT_TRUE(Root(overlong) < Holding("01234"));
}

TEST_F(ASBlobOverlongLength, CopyIntoAPlainBlobStopsAtTheCapacity) {
  Blob const plain(overlong);
  EXPECT_EQ(plain.GetSize(), 4);
  EXPECT_EQ(Bytes(plain), "0123");
}

TEST_F(ASBlobOverlongLength, AssignmentToAPlainBlobStopsAtTheCapacity) {
  Blob plain;
  plain = overlong;
  EXPECT_EQ(Bytes(plain), "0123");
}

TEST_F(ASBlobOverlongLength, CopyStopsAtTheCapacity) {
  ASBlob blob(10);
  blob.copy(overlong);
  EXPECT_EQ(Bytes(blob), "0123");
}

TEST_F(ASBlobOverlongLength, AssignmentToALargerColumnReadsNoFurtherThanItsOwnCapacity) {
  ASBlob blob(10);
  blob = overlong;
  EXPECT_EQ(LengthField(blob), 60000);
  EXPECT_EQ(blob.size(), 10);
  EXPECT_EQ(Bytes(blob).substr(0, 4), "0123");
}

TEST_F(ASBlobOverlongLength, AssignmentFromTheRootStopsAtTheCapacity) {
  ASBlob blob(10);
  blob = Root(overlong);
  EXPECT_EQ(LengthField(blob), 4);
  EXPECT_EQ(Bytes(blob), "0123");
}

// ---- Assignment of any value ----

TEST(ASBlob, TakesThePlainBlob) {
  ASBlob blob(10);
  blob = Blob(3, "abc");
  EXPECT_EQ(LengthField(blob), 3);
  EXPECT_EQ(Bytes(blob), "abc");
}

TEST(ASBlob, TakesWhatFitsOfAPlainBlob) {
  ASBlob blob(4);
  blob = Blob(10, "0123456789");
  EXPECT_EQ(LengthField(blob), 4);
  EXPECT_EQ(Bytes(blob), "0123");
}

TEST(ASBlob, NullBlobMakesNull) {
  ASBlob blob = Holding("abc");
  blob = Blob();
  EXPECT_EQ(blob.IsNull(), 1);
}

TEST(ASBlob, PlainBlobThatSaysMoreThanItHoldsIsReadAsFarAsItGoes) {
  Blob const plain(3, "abc");
  SetLengthField(plain, 60000);
  ASBlob blob(10);
  blob = plain;
  EXPECT_EQ(LengthField(blob), 3);
  EXPECT_EQ(Bytes(blob), "abc");
}

TEST(ASBlob, FromTheRootItTakesAColumnsWholeCapacity) {
  ASBlob blob(10);
  blob = Root(Holding("ab", 6));
  EXPECT_EQ(LengthField(blob), 6);
  EXPECT_EQ(Bytes(blob), std::string("ab\0\0\0\0", 6));
}

TEST(ASBlob, FromTheRootItTakesWhatFitsOfAColumn) {
  ASBlob blob(4);
  blob = Root(Holding("0123456789"));
  EXPECT_EQ(LengthField(blob), 4);
  EXPECT_EQ(Bytes(blob), "0123");
}

TEST(ASBlob, TakesAGeometrysWholeCapacity) {
  ASGeometry geometry(4);
  geometry.Fill("abc", 3);
  ASBlob blob(10);
  blob = geometry;
  EXPECT_EQ(Bytes(blob), std::string("abc\0", 4));
}

TEST(ASBlob, TakesTheBytesOfAText) {
  ASBlob blob(10);
  blob = Str("abc");
  EXPECT_EQ(Bytes(blob), "abc");
}

TEST(ASBlob, TakesTheWholeBufferOfAFixedText) {
  ASStr text(4);
  text = "ab";
  ASBlob blob(10);
  blob = text;
  EXPECT_EQ(Bytes(blob), "ab  ");
}

TEST(ASBlob, TakesTheBytesOfALargeBinary) {
  ASBlob blob(4);
  blob = RealBlob(6, "abcdef");
  EXPECT_EQ(Bytes(blob), "abcd");
}

TEST(ASBlob, TakesTheBytesOfANumber) {
  ASBlob blob(10);
  blob = Int(0x01020301);
  EXPECT_EQ(Bytes(blob), "\x01\x03\x02\x01");
}

TEST(ASBlob, TakesTheBytesOfAGuid) {
  ASBlob blob(20);
  blob = Guid("61626364-6566-6768-696a-6b6c6d6e6f70");
  EXPECT_EQ(Bytes(blob), "abcdefghijklmnop");
}

TEST(ASBlob, ValueWithoutBytesMakesNull) {
  ASBlob blob = Holding("abc");
  blob = Str();
  EXPECT_EQ(blob.IsNull(), 1);
  blob = Holding("abc");
  blob = RealBlob();
  EXPECT_EQ(blob.IsNull(), 1);
  blob = Holding("abc");
  blob = Guid();
  EXPECT_EQ(blob.IsNull(), 1);
}

TEST(ASBlob, AssignmentOfAnyValueReturnsTheColumn) {
  ASBlob blob(10);
  EXPECT_EQ(&(blob = Blob(3, "abc")), &blob);
}

TEST(ASBlob, AssignmentOfAnyValueLeavesTheSourceAlone) {
  ASBlob const source = Holding("abc", 6);
  ASBlob blob(10);
  blob = Root(source);
  EXPECT_EQ(Bytes(source), "abc");
}

// ---- copy ----

TEST(ASBlob, CopyOfAColumnTakesItsLength) {
  ASBlob blob(10);
  blob.copy(Holding("ab", 6));
  EXPECT_EQ(Bytes(blob), "ab");
}

TEST(ASBlob, CopyOfALongerValueIsCut) {
  ASBlob blob(4);
  blob.copy(Holding("0123456789"));
  EXPECT_EQ(LengthField(blob), 4);
  EXPECT_EQ(Bytes(blob), "0123");
}

TEST(ASBlob, CopyOfANullBlobMakesNull) {
  ASBlob blob = Holding("abc");
  blob.copy(Blob());
  EXPECT_EQ(blob.IsNull(), 1);
}

TEST(ASBlob, CopyOfAGeometryIsTaken) {
  ASGeometry geometry(10);
  geometry.Fill("abc", 3);
  ASBlob blob(10);
  blob.copy(geometry);
  EXPECT_EQ(Bytes(blob), "abc");
}

// ---- Comparison ----

TEST(ASBlob, EqualsTheSameBytesInAnotherCapacity) {
  EXPECT_TRUE(Root(Holding("abc")) == Holding("abc", 20));
  EXPECT_TRUE(Root(Holding("abc")) == Blob(3, "abc"));
  EXPECT_FALSE(Root(Holding("abc")) == Holding("abd"));
  EXPECT_FALSE(Root(Holding("abc")) == Holding("abcd"));
}

TEST(ASBlob, BytesBehindTheLengthDoNotCount) {
  ASBlob const left = Holding("abcd");
  ASBlob const right = Holding("abxy");
  SetLengthField(left, 2);
  SetLengthField(right, 2);
  EXPECT_TRUE(Root(left) == right);
  EXPECT_FALSE(Root(left) < right);
}

TEST(ASBlob, EqualsAGeometryOfTheSameBytes) {
  ASGeometry geometry(4);
  geometry.Fill("abc", 3);
  EXPECT_TRUE(Root(Holding("abc")) == geometry);
}

TEST(ASBlob, ComparesWithAPlainBlobOnEitherSide) {
  EXPECT_TRUE(Holding("abc") == Blob(3, "abc"));
  EXPECT_TRUE(Blob(3, "abc") == Holding("abc"));
  EXPECT_FALSE(Holding("abc") == Blob(3, "abd"));
  EXPECT_FALSE(Holding("abc") != Blob(3, "abc"));
  EXPECT_TRUE(Blob(3, "abd") != Holding("abc"));
  EXPECT_TRUE(Holding("abc") < Blob(3, "abd"));
  EXPECT_TRUE(Blob(3, "abc") < Holding("abd"));
  EXPECT_FALSE(Holding("abd") < Blob(3, "abc"));
}

TEST(ASBlob, NullEqualsTheAbsentBlob) {
  EXPECT_TRUE(Root(ASBlob(4)) == Blob());
  EXPECT_FALSE(Root(ASBlob(4)) < Blob());
  EXPECT_FALSE(Root(Blob()) < ASBlob(4));
}

TEST(ASBlob, ComparisonWithATextThrows) {
  EXPECT_THAT([] { static_cast<void>(Root(ASBlob(4)) == Str("abc")); },
              ThrowsMessage<AException>(StrEq("Incompatible types for ASBlob::operator == (). ")));
}

// ---- Capacity 0, text ----

TEST(ASBlob, CapacityZeroHoldsNothing) {
  ASBlob blob(0);
  blob.Fill("abc", 3);
  EXPECT_EQ(blob.IsNull(), 1);
  EXPECT_EQ(blob.GetSize(), 0);
  EXPECT_EQ(blob.size(), 0);
  EXPECT_NE(blob.voidptr(), nullptr);
}

TEST(ASBlob, CapacityZeroTakesNothingOfALongerSource) {
  ASBlob blob(0);
  blob = Holding("abc");
  EXPECT_EQ(blob.size(), 0);
  EXPECT_EQ(Bytes(blob), "");
  blob = Blob(3, "abc");
  EXPECT_EQ(blob.size(), 0);
  blob.SetNull();
  EXPECT_EQ(blob.IsNull(), 1);
}

TEST(ASBlob, TextIsBLOBWhateverTheBytes) {
  EXPECT_EQ(Holding("abc").getstr(), "BLOB");
  EXPECT_EQ(ASBlob(4).getstr(), "BLOB");
}

}  // namespace
