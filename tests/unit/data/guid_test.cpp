#include "corvane/data/guid.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "corvane/data/str.h"
#include "corvane/data/value/exception.h"

using testing::StrEq;
using testing::ThrowsMessage;

namespace {

constexpr char const* kText = "00112233-4455-6677-8899-aabbccddeeff";
constexpr char const* kZeroText = "00000000-0000-0000-0000-000000000000";

std::string Bytes(Guid const& guid) { return std::string(static_cast<char const*>(guid.voidptr()), 16); }

ASGuid Holding(char const* text) {
  ASGuid guid;
  guid = Guid(text);
  return guid;
}

basic_type const& Root(basic_type const& value) { return value; }

// ---- Construction, sizes ----

TEST(ASGuid, NewOneHasZeroBytes) { EXPECT_EQ(Bytes(ASGuid()), std::string(16, '\0')); }

TEST(ASGuid, SizesAre16WithAndWithoutAValue) {
  EXPECT_EQ(ASGuid().GetSize(), 16);
  EXPECT_EQ(ASGuid().size(), 16);
  EXPECT_EQ(Holding(kText).GetSize(), 16);
  EXPECT_EQ(Holding(kText).size(), 16);
}

TEST(ASGuid, BytesLieInTheOrderOfTheText) {
  EXPECT_EQ(Bytes(Holding(kText)), std::string("\x00\x11\x22\x33\x44\x55\x66\x77\x88\x99\xAA\xBB\xCC\xDD\xEE\xFF", 16));
}

TEST(ASGuid, CopyHasBytesOfItsOwn) {
  ASGuid const source = Holding(kText);
  ASGuid const copy(source);
  EXPECT_EQ(copy.getstr(), kText);
  EXPECT_NE(copy.voidptr(), source.voidptr());
}

// ---- Null state ----

TEST(ASGuid, SetNullZeroesTheBytes) {
  ASGuid guid = Holding(kText);
  guid.SetNull();
  EXPECT_EQ(Bytes(guid), std::string(16, '\0'));
}

TEST(ASGuid, SetNotNullEndsTheNullStateAndKeepsTheBytes) {
  ASGuid guid;
  std::memcpy(guid.voidptr(), "abcdefghijklmnop", 16);
  guid.SetNotNull();
  EXPECT_EQ(guid.IsNull(), 0);
  EXPECT_EQ(guid.getstr(), "61626364-6566-6768-696a-6b6c6d6e6f70");
}

TEST(ASGuid, ZeroGuidIsNotNull) {
  ASGuid guid;
  guid = Guid(0, 0);
  EXPECT_EQ(guid.IsNull(), 0);
  EXPECT_FALSE(guid == ASGuid());
}

TEST(ASGuid, RawWriteDoesNotEndTheNullState) {
  ASGuid const guid;
  std::memcpy(guid.voidptr(), "abcdefghijklmnop", 16);
  EXPECT_EQ(guid.IsNull(), 1);
}

TEST(ASGuid, AssignedNullZeroesTheBytes) {
  ASGuid guid = Holding(kText);
  guid = Guid();
  EXPECT_EQ(guid.IsNull(), 1);
  EXPECT_EQ(Bytes(guid), std::string(16, '\0'));
}

TEST(ASGuid, AssignedNullColumnZeroesTheBytes) {
  ASGuid guid = Holding(kText);
  guid = ASGuid();
  EXPECT_EQ(Bytes(guid), std::string(16, '\0'));
}

TEST(ASGuid, CopiedNullZeroesTheBytes) {
  ASGuid guid = Holding(kText);
  guid.copy(Guid());
  EXPECT_EQ(Bytes(guid), std::string(16, '\0'));
}

TEST(ASGuid, SetNullFromTheValueSideZeroesTheBytes) {
  ASGuid guid = Holding(kText);
  static_cast<Guid&>(guid).SetNull();
  EXPECT_EQ(guid.IsNull(), 1);
  EXPECT_EQ(Bytes(guid), std::string(16, '\0'));
}

TEST(ASGuid, NullAssignedThroughTheValueSideZeroesTheBytes) {
  ASGuid guid = Holding(kText);
  static_cast<Guid&>(guid) = Guid();
  EXPECT_EQ(guid.IsNull(), 1);
  EXPECT_EQ(Bytes(guid), std::string(16, '\0'));
}

// ---- Text ----

TEST(ASGuid, TextIsLowerCaseWithDashes) { EXPECT_EQ(Holding("{00112233445566778899AABBCCDDEEFF}").getstr(), kText); }

TEST(ASGuid, NullIsTheZeroText) { EXPECT_EQ(ASGuid().getstr(), kZeroText); }

TEST(ASGuid, RawBytesUnderNullNeverReachTheText) {
  ASGuid const guid;
  std::memcpy(guid.voidptr(), "abcdefghijklmnop", 16);
  EXPECT_EQ(guid.getstr(), kZeroText);
}

// ---- Assignment ----

TEST(ASGuid, TakesAGuid) {
  ASGuid guid;
  EXPECT_EQ(&(guid = Guid(kText)), &guid);
  EXPECT_EQ(guid.IsNull(), 0);
  EXPECT_EQ(guid.getstr(), kText);
}

TEST(ASGuid, TakesAText) {
  ASGuid guid;
  guid = kText;
  EXPECT_EQ(guid.getstr(), kText);
}

TEST(ASGuid, UnreadableTextMakesNull) {
  ASGuid guid = Holding(kText);
  guid = "no guid";
  EXPECT_EQ(guid.IsNull(), 1);
  EXPECT_EQ(guid.getstr(), kZeroText);
}

TEST(ASGuid, AssignmentKeepsTheArray) {
  ASGuid guid;
  void* const bytes = guid.voidptr();
  guid = Guid(kText);
  guid = ASGuid();
  guid = Holding(kText);
  EXPECT_EQ(guid.voidptr(), bytes);
}

TEST(ASGuid, ItselfSeenAsAGuidIsTaken) {
  ASGuid guid = Holding(kText);
  guid = static_cast<Guid const&>(guid);
  EXPECT_EQ(guid.getstr(), kText);
  EXPECT_EQ(guid.IsNull(), 0);
}

TEST(ASGuid, CopiedIntoAPlainGuidItIsTheValue) { EXPECT_EQ(Guid(Holding(kText)).getstr(), kText); }

TEST(ASGuid, NullCopiedIntoAPlainGuidIsAbsent) {
  Guid const plain{ASGuid()};
  EXPECT_EQ(plain.IsNull(), 1);
  EXPECT_EQ(plain.length(), 0);
}

// ---- Comparison ----

TEST(ASGuid, EqualsTheSameGuid) {
  ASGuid const guid = Holding(kText);
  EXPECT_TRUE(guid == Guid(kText));
  EXPECT_TRUE(guid == Holding(kText));
  EXPECT_TRUE(guid == Root(Guid(kText)));
  EXPECT_FALSE(guid == Guid(0, 0));
  EXPECT_FALSE(guid == Guid());
  EXPECT_TRUE(guid != Guid(0, 0));
  EXPECT_FALSE(guid != Guid(kText));
}

TEST(ASGuid, IsOrderedByUnsignedBytes) {
  ASGuid const guid = Holding(kText);
  EXPECT_TRUE(guid < Guid("80000000-0000-0000-0000-000000000000"));
  EXPECT_TRUE(guid < Holding("00112233-4455-6677-8899-aabbccddef00"));
  EXPECT_TRUE(guid < Root(Guid("01000000-0000-0000-0000-000000000000")));
  EXPECT_FALSE(guid < Guid(kText));
  EXPECT_FALSE(guid < Guid(0, 0));
}

TEST(ASGuid, NullLiesBeforeTheZeroGuid) {
  EXPECT_TRUE(ASGuid() < Guid(0, 0));
  EXPECT_FALSE(Holding(kZeroText) < Guid());
  EXPECT_TRUE(ASGuid() == Guid());
}

TEST(ASGuid, BytesUnderNullDoNotCount) {
  ASGuid const guid;
  std::memcpy(guid.voidptr(), "abcdefghijklmnop", 16);
  EXPECT_TRUE(guid == ASGuid());
  EXPECT_FALSE(ASGuid() < guid);
}

TEST(ASGuid, EqualityReportsTheTextOfTheOrdering) {
  EXPECT_THAT([] { static_cast<void>(Holding(kText) == Root(Str(kText))); },
              ThrowsMessage<AException>(StrEq("Incompatible types for ASGuid::operator < (). ")));
}

TEST(ASGuid, OrderingReportsItself) {
  EXPECT_THAT([] { static_cast<void>(Holding(kText) < Root(Str(kText))); },
              ThrowsMessage<AException>(StrEq("Incompatible types for ASGuid::operator < (). ")));
}

}  // namespace
