#include "corvane/data/geometry.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <type_traits>

#include "corvane/data/blob.h"
#include "corvane/data/str.h"
#include "corvane/data/value/exception.h"

using testing::StrEq;
using testing::ThrowsMessage;

namespace {

static_assert(!std::is_convertible<std::uint16_t, ASGeometry>::value, "");
static_assert(!std::is_default_constructible<ASGeometry>::value, "");
static_assert(!std::is_assignable<ASGeometry&, Str const&>::value, "only binary values are assigned");

// The bytes that count.
std::string Bytes(Blob const& blob) { return std::string(reinterpret_cast<char const*>(blob.Bytes()), blob.Length()); }

std::uint16_t LengthField(Blob const& blob) {
  std::uint16_t length = 0;
  std::memcpy(&length, blob.voidptr(), sizeof length);
  return length;
}

void SetLengthField(Blob const& blob, std::uint16_t length) { std::memcpy(blob.voidptr(), &length, sizeof length); }

// The length field and all that the column has room for.
std::string Block(ASGeometry const& geometry) {
  return std::string(static_cast<char const*>(geometry.voidptr()), geometry.Capacity() + sizeof(std::uint16_t));
}

ASGeometry Holding(char const* text, std::uint16_t capacity = 10) {
  ASGeometry geometry(capacity);
  geometry.Fill(text, std::strlen(text));
  return geometry;
}

basic_type const& Root(basic_type const& value) { return value; }

// ---- Construction, sizes, null state ----

TEST(ASGeometry, NewBlockIsAllZero) { EXPECT_EQ(Block(ASGeometry(4)), std::string(6, '\0')); }

TEST(ASGeometry, GetSizeIsTheCapacity) {
  EXPECT_EQ(Holding("abc").GetSize(), 10);
  EXPECT_EQ(Holding("abc").Capacity(), 10);
}

TEST(ASGeometry, SizeIsTheLength) { EXPECT_EQ(Holding("abc").size(), 3); }

TEST(ASGeometry, LengthIsTheFirstFieldOfTheBlock) {
  EXPECT_EQ(LengthField(Holding("abc")), 3);
  EXPECT_EQ(Block(Holding("abc")).substr(2), std::string("abc\0\0\0\0\0\0\0", 10));
}

TEST(ASGeometry, CapacityOverASigned16BitNumberIsKept) {
  ASGeometry geometry(65535);
  geometry.Fill(std::string(70000, 'x').data(), 70000);
  EXPECT_EQ(geometry.GetSize(), 65535);
  EXPECT_EQ(geometry.size(), 65535);
}

TEST(ASGeometry, CopyHasTheSameCapacityAndBytes) {
  ASGeometry const source = Holding("abc");
  ASGeometry const copy(source);
  EXPECT_EQ(Block(copy), Block(source));
  EXPECT_NE(copy.voidptr(), source.voidptr());
}

TEST(ASGeometry, LengthZeroIsNull) {
  ASGeometry const geometry = Holding("abc");
  SetLengthField(geometry, 0);
  EXPECT_EQ(geometry.IsNull(), 1);
}

TEST(ASGeometry, SetNullZeroesLengthAndBytes) {
  ASGeometry geometry = Holding("abcdefghij");
  SetLengthField(geometry, 2);
  geometry.SetNull();
  EXPECT_EQ(Block(geometry), std::string(12, '\0'));
}

TEST(ASGeometry, SetNullKeepsTheBlock) {
  ASGeometry geometry = Holding("abc");
  void* const block = geometry.voidptr();
  geometry.SetNull();
  EXPECT_EQ(geometry.voidptr(), block);
}

// ---- Fill ----

TEST(ASGeometry, FillTakesWellKnownBinaryWhole) {
  // POINT(1 2): byte order, type, two doubles; most of the bytes are zero.
  char const point[] = "\x01\x01\0\0\0\0\0\0\0\0\0\xF0\x3F\0\0\0\0\0\0\0\x40";
  ASGeometry geometry(100);
  geometry.Fill(point, 21);
  EXPECT_EQ(geometry.size(), 21);
  EXPECT_EQ(Bytes(geometry), std::string(point, 21));
}

TEST(ASGeometry, FillCutsALongerValue) {
  ASGeometry geometry(4);
  geometry.Fill("abcdefgh", 8);
  EXPECT_EQ(LengthField(geometry), 4);
  EXPECT_EQ(Bytes(geometry), "abcd");
}

TEST(ASGeometry, FillLeavesNothingOfALongerValue) {
  ASGeometry geometry = Holding("abcdefghij");
  geometry.Fill("xy", 2);
  EXPECT_EQ(Block(geometry).substr(2), std::string("xy\0\0\0\0\0\0\0\0", 10));
}

TEST(ASGeometry, FilledWithNothingIsNull) {
  ASGeometry geometry = Holding("abc");
  geometry.Fill(nullptr, 0);
  EXPECT_EQ(geometry.IsNull(), 1);
}

// ---- Assignment of a geometry ----

TEST(ASGeometry, AssignmentCopiesTheBytes) {
  ASGeometry geometry(10);
  geometry = Holding("abc");
  EXPECT_EQ(Bytes(geometry), "abc");
}

TEST(ASGeometry, AssignmentFromASmallerCapacity) {
  ASGeometry geometry = Holding("0123456789");
  geometry = Holding("abc", 4);
  EXPECT_EQ(Bytes(geometry), "abc");
  EXPECT_EQ(geometry.Capacity(), 10);
}

TEST(ASGeometry, AssignmentKeepsTheLengthOfALongerSource) {
  ASGeometry geometry(4);
  geometry = Holding("0123456789");
  EXPECT_EQ(LengthField(geometry), 10);
}

TEST(ASGeometry, AssignmentOfALongerSourceTakesWhatFits) {
  ASGeometry geometry(4);
  geometry = Holding("0123456789");
  EXPECT_EQ(Bytes(geometry), "0123");
  EXPECT_EQ(geometry.size(), 4);
  EXPECT_EQ(geometry.Capacity(), 4);
}

TEST(ASGeometry, AssignmentOfNullMakesNull) {
  ASGeometry geometry = Holding("abc");
  geometry = ASGeometry(10);
  EXPECT_EQ(geometry.IsNull(), 1);
}

// ---- A length field that says more than fits ----

TEST(ASGeometry, OverlongLengthIsReadAsFarAsTheCapacity) {
  ASGeometry const overlong = Holding("0123", 4);
  SetLengthField(overlong, 60000);
  EXPECT_EQ(overlong.size(), 4);
  EXPECT_TRUE(Root(overlong) == Holding("0123"));
  EXPECT_EQ(Bytes(Blob(overlong)), "0123");
}

TEST(ASGeometry, OverlongLengthIsCopiedAsFarAsTheCapacity) {
  ASGeometry const overlong = Holding("0123", 4);
  SetLengthField(overlong, 60000);
  ASGeometry geometry(10);
  geometry.copy(overlong);
  EXPECT_EQ(Bytes(geometry), "0123");
  geometry = static_cast<Blob const&>(overlong);
  EXPECT_EQ(Bytes(geometry), "0123");
}

// ---- Assignment of a plain Blob ----

TEST(ASGeometry, TakesThePlainBlob) {
  ASGeometry geometry(10);
  geometry = Blob(3, "abc");
  EXPECT_EQ(LengthField(geometry), 3);
  EXPECT_EQ(Bytes(geometry), "abc");
}

TEST(ASGeometry, TakesWhatFitsOfAPlainBlob) {
  ASGeometry geometry(4);
  geometry = Blob(10, "0123456789");
  EXPECT_EQ(LengthField(geometry), 4);
  EXPECT_EQ(Bytes(geometry), "0123");
}

TEST(ASGeometry, NullBlobMakesNull) {
  ASGeometry geometry = Holding("abc");
  geometry = Blob();
  EXPECT_EQ(geometry.IsNull(), 1);
}

TEST(ASGeometry, PlainBlobThatSaysMoreThanItHoldsIsReadAsFarAsItGoes) {
  Blob const plain(3, "abc");
  SetLengthField(plain, 60000);
  ASGeometry geometry(10);
  geometry = plain;
  EXPECT_EQ(Bytes(geometry), "abc");
}

TEST(ASGeometry, TakesAnASBlobsWholeCapacity) {
  ASBlob blob(6);
  blob.Fill("ab", 2);
  ASGeometry geometry(10);
  geometry = blob;
  EXPECT_EQ(LengthField(geometry), 6);
  EXPECT_EQ(Bytes(geometry), std::string("ab\0\0\0\0", 6));
}

TEST(ASGeometry, AssignmentOfABlobReturnsTheColumn) {
  ASGeometry geometry(10);
  EXPECT_EQ(&(geometry = Blob(3, "abc")), &geometry);
}

// ---- copy, comparison, text ----

TEST(ASGeometry, CopyOfAColumnTakesItsLength) {
  ASGeometry geometry(10);
  geometry.copy(Holding("ab", 6));
  EXPECT_EQ(Bytes(geometry), "ab");
}

TEST(ASGeometry, CopyOfALongerValueIsCut) {
  ASGeometry geometry(4);
  geometry.copy(Holding("0123456789"));
  EXPECT_EQ(LengthField(geometry), 4);
  EXPECT_EQ(Bytes(geometry), "0123");
}

TEST(ASGeometry, CopyOfAnASBlobIsTaken) {
  ASBlob blob(6);
  blob.Fill("ab", 2);
  ASGeometry geometry(10);
  geometry.copy(blob);
  EXPECT_EQ(Bytes(geometry), "ab");
}

TEST(ASGeometry, EqualsTheSameBytesInAnotherCapacity) {
  EXPECT_TRUE(Root(Holding("abc")) == Holding("abc", 20));
  EXPECT_TRUE(Root(Holding("abc")) == Blob(3, "abc"));
  EXPECT_FALSE(Root(Holding("abc")) == Holding("abd"));
}

TEST(ASGeometry, NullEqualsTheAbsentBlob) {
  EXPECT_TRUE(Root(ASGeometry(4)) == Blob());
  EXPECT_FALSE(Root(ASGeometry(4)) < Blob());
}

TEST(ASGeometry, ComparisonWithATextThrows) {
  EXPECT_THAT([] { static_cast<void>(Root(ASGeometry(4)) < Str("abc")); },
              ThrowsMessage<AException>(StrEq("Incompatible types for ASGeometry::operator < (). ")));
}

TEST(ASGeometry, CapacityZeroHoldsNothing) {
  ASGeometry geometry(0);
  geometry.Fill("abc", 3);
  EXPECT_EQ(geometry.IsNull(), 1);
  geometry = Blob(3, "abc");
  EXPECT_EQ(geometry.IsNull(), 1);
  EXPECT_EQ(geometry.size(), 0);
  EXPECT_NE(geometry.voidptr(), nullptr);
}

TEST(ASGeometry, TextIsBLOBWhateverTheBytes) {
  EXPECT_EQ(Holding("abc").getstr(), "BLOB");
  EXPECT_EQ(ASGeometry(4).getstr(), "BLOB");
}

}  // namespace
