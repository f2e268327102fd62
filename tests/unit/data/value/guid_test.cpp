#include "corvane/data/value/guid.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <type_traits>

namespace {

constexpr char const* kText = "01234567-89ab-cdef-fedc-ba9876543210";
constexpr char const* kOtherText = "01234567-89ab-cdef-fedc-ba9876543211";

// Construction

TEST(Guid, IsNullByDefault) {
  Guid const guid;
  EXPECT_EQ(guid.IsNull(), 1);
  EXPECT_EQ(guid.IsNotNull(), 0);
}

TEST(Guid, HasNothingWhenNull) {
  Guid const guid;
  EXPECT_EQ(guid.length(), 0);
  EXPECT_EQ(guid.GetSize(), 0);
  EXPECT_EQ(guid.size(), 0);
  EXPECT_EQ(guid.voidptr(), nullptr);
}

TEST(Guid, ReadsTheFormWithDashes) {
  Guid const guid("01234567-89ab-cdef-fedc-ba9876543210");
  EXPECT_EQ(guid.IsNull(), 0);
  EXPECT_EQ(guid.getstr(), "01234567-89ab-cdef-fedc-ba9876543210");
}

TEST(Guid, ReadsTheFormWithoutDashes) {
  Guid const guid("0123456789abcdeffedcba9876543210");
  EXPECT_EQ(guid.getstr(), "01234567-89ab-cdef-fedc-ba9876543210");
}

TEST(Guid, ReadsTheFormWithBraces) {
  Guid const guid("{01234567-89ab-cdef-fedc-ba9876543210}");
  EXPECT_EQ(guid.getstr(), "01234567-89ab-cdef-fedc-ba9876543210");
}

TEST(Guid, ReadsTheFormWithBracesAndWithoutDashes) {
  Guid const guid("{0123456789abcdeffedcba9876543210}");
  EXPECT_EQ(guid.getstr(), "01234567-89ab-cdef-fedc-ba9876543210");
}

TEST(Guid, ReadsUpperCase) {
  Guid const guid("01234567-89AB-CDEF-FEDC-BA9876543210");
  EXPECT_EQ(guid.getstr(), "01234567-89ab-cdef-fedc-ba9876543210");
}

TEST(Guid, ReadsMixedCase) {
  Guid const guid("01234567-89Ab-cDEf-FeDC-bA9876543210");
  EXPECT_EQ(guid.getstr(), "01234567-89ab-cdef-fedc-ba9876543210");
}

TEST(Guid, ReadsAFormWhereSomeDashesAreMissing) {
  Guid const guid("0123456789ab-cdeffedc-ba9876543210");
  EXPECT_EQ(guid.getstr(), "01234567-89ab-cdef-fedc-ba9876543210");
}

TEST(Guid, ReadsAllZerosAsAValue) {
  Guid const guid("00000000-0000-0000-0000-000000000000");
  EXPECT_EQ(guid.IsNull(), 0);
  EXPECT_EQ(guid.getstr(), "00000000-0000-0000-0000-000000000000");
}

TEST(Guid, ReadsAllOnes) {
  Guid const guid("ffffffff-ffff-ffff-ffff-ffffffffffff");
  EXPECT_EQ(guid.getstr(), "ffffffff-ffff-ffff-ffff-ffffffffffff");
}

TEST(Guid, IsMadeImplicitlyFromAText) { EXPECT_TRUE((std::is_convertible<char const*, Guid>::value)); }

TEST(Guid, ReadsAStr) {
  Str const text(kText);
  Guid const guid(text);
  EXPECT_EQ(guid.getstr(), kText);
}

TEST(Guid, IsNullFromANullPointer) {
  Guid const guid(static_cast<char const*>(nullptr));
  EXPECT_EQ(guid.IsNull(), 1);
}

struct Unreadable {
  char const* name;
  char const* text;
};

Unreadable const kUnreadable[] = {
    {"Empty", ""},
    {"Word", "guid"},
    {"Braces", "{}"},
    {"Dashes", "----"},
    {"OneDigitMissing", "01234567-89ab-cdef-fedc-ba987654321"},
    {"OneDigitTooMany", "01234567-89ab-cdef-fedc-ba98765432100"},
    {"OneByteMissing", "01234567-89ab-cdef-fedc-ba98765432"},
    {"OneByteTooMany", "01234567-89ab-cdef-fedc-ba987654321000"},
    {"LetterBeyondF", "01234567-89ag-cdef-fedc-ba9876543210"},
    {"BlankInside", "01234567 89ab-cdef-fedc-ba9876543210"},
    {"BlankBefore", " 01234567-89ab-cdef-fedc-ba9876543210"},
    {"BlankBehind", "01234567-89ab-cdef-fedc-ba9876543210 "},
    {"DashInTheWrongPlace", "0123456-789ab-cdef-fedc-ba9876543210"},
    {"DashInsideAByte", "01234567-89a-bcdef-fedc-ba9876543210"},
    {"TwoDashes", "01234567--89ab-cdef-fedc-ba9876543210"},
    {"DashBefore", "-01234567-89ab-cdef-fedc-ba9876543210"},
    {"DashBehind", "01234567-89ab-cdef-fedc-ba9876543210-"},
    {"OpeningBraceOnly", "{01234567-89ab-cdef-fedc-ba9876543210"},
    {"ClosingBraceOnly", "01234567-89ab-cdef-fedc-ba9876543210}"},
    {"AnotherClosingBrace", "{01234567-89ab-cdef-fedc-ba9876543210)"},
    {"BracesTheWrongWayRound", "}01234567-89ab-cdef-fedc-ba9876543210{"},
    {"BracesTwice", "{{01234567-89ab-cdef-fedc-ba9876543210}}"},
    {"SignedByte", "01234567-89ab-cdef-fedc-ba98765432+1"},
    {"HexPrefix", "0x0123456789abcdeffedcba98765432"},
    {"ByteBeyondAscii", "01234567-89ab-cdef-fedc-ba98765432\xB2\xB2"},
};

class UnreadableGuid : public testing::TestWithParam<Unreadable> {};

std::string NameOf(testing::TestParamInfo<Unreadable> const& row) { return row.param.name; }

INSTANTIATE_TEST_SUITE_P(Guid, UnreadableGuid, testing::ValuesIn(kUnreadable), NameOf);

TEST_P(UnreadableGuid, IsNull) {
  Guid const guid(GetParam().text);
  EXPECT_EQ(guid.IsNull(), 1);
  EXPECT_EQ(guid.length(), 0);
  EXPECT_EQ(guid.voidptr(), nullptr);
}

TEST(Guid, IsMadeFromTwoHalves) {
  Guid const guid(0x0123456789abcdefU, 0xfedcba9876543210U);
  EXPECT_EQ(guid.IsNull(), 0);
  EXPECT_EQ(guid.getstr(), "01234567-89ab-cdef-fedc-ba9876543210");
}

TEST(Guid, IsAValueWithTwoZeroHalves) {
  Guid const guid(0, 0);
  EXPECT_EQ(guid.IsNull(), 0);
  EXPECT_EQ(guid.getstr(), "00000000-0000-0000-0000-000000000000");
}

TEST(Guid, KeepsItsBytesInTheOrderOfTheText) {
  Guid const guid(kText);
  EXPECT_EQ(std::memcmp(guid.voidptr(), "\x01\x23\x45\x67\x89\xab\xcd\xef\xfe\xdc\xba\x98\x76\x54\x32\x10", 16), 0);
}

TEST(Guid, HasSixteenBytes) {
  Guid const guid(kText);
  EXPECT_EQ(guid.length(), 16);
  EXPECT_EQ(guid.GetSize(), 16);
  EXPECT_EQ(guid.size(), 16);
}

// Copying

TEST(Guid, CopiesAnotherDeeply) {
  Guid const original(kText);
  Guid const copy(original);
  std::memset(original.voidptr(), 0, 16);
  EXPECT_EQ(copy.getstr(), kText);
}

TEST(Guid, CopiesNull) {
  Guid const original;
  Guid const copy(original);
  EXPECT_EQ(copy.IsNull(), 1);
}

TEST(Guid, AssignsAnotherDeeply) {
  Guid const original(kText);
  Guid assigned(kOtherText);
  assigned = original;
  std::memset(original.voidptr(), 0, 16);
  EXPECT_EQ(assigned.getstr(), kText);
}

TEST(Guid, StopsBeingNullByAssigningAValue) {
  Guid const original(kText);
  Guid assigned;
  assigned = original;
  EXPECT_EQ(assigned.IsNull(), 0);
  EXPECT_EQ(assigned.getstr(), kText);
}

TEST(Guid, AssignsAText) {
  Guid guid;
  guid = kText;
  EXPECT_EQ(guid.getstr(), kText);
}

TEST(Guid, BecomesNullByAssigningNull) {
  Guid const null;
  Guid guid(kText);
  guid = null;
  EXPECT_EQ(guid.IsNull(), 1);
  EXPECT_EQ(guid.voidptr(), nullptr);
}

TEST(Guid, SurvivesSelfAssignment) {
  Guid guid(kText);
  Guid const& same = guid;
  guid = same;
  EXPECT_EQ(guid.getstr(), kText);
}

TEST(Guid, StaysNullBySelfAssignment) {
  Guid guid;
  Guid const& same = guid;
  guid = same;
  EXPECT_EQ(guid.IsNull(), 1);
}

TEST(Guid, ReturnsItselfFromAssignment) {
  Guid const other(kText);
  Guid guid;
  EXPECT_EQ(&(guid = other), &guid);
}

TEST(Guid, DropsItsBytesBySetNull) {
  Guid guid(kText);
  guid.SetNull();
  EXPECT_EQ(guid.IsNull(), 1);
  EXPECT_EQ(guid.length(), 0);
  EXPECT_EQ(guid.size(), 0);
  EXPECT_EQ(guid.voidptr(), nullptr);
}

TEST(Guid, StaysNullBySetNull) {
  Guid guid;
  guid.SetNull();
  EXPECT_EQ(guid.IsNull(), 1);
}

TEST(Guid, TakesAValueAfterSetNull) {
  Guid guid(kText);
  guid.SetNull();
  guid = Guid(kOtherText);
  EXPECT_EQ(guid.getstr(), kOtherText);
}

// Comparisons

TEST(Guid, EqualsTheSameBytes) {
  EXPECT_TRUE(Guid(kText) == Guid("{0123456789ABCDEFFEDCBA9876543210}"));
  EXPECT_FALSE(Guid(kText) == Guid(kOtherText));
}

TEST(Guid, DiffersFromOtherBytes) {
  EXPECT_FALSE(Guid(kText) != Guid(kText));
  EXPECT_TRUE(Guid(kText) != Guid(kOtherText));
}

TEST(Guid, OrdersByteByByte) {
  EXPECT_TRUE(Guid(kText) < Guid(kOtherText));
  EXPECT_FALSE(Guid(kOtherText) < Guid(kText));
  EXPECT_FALSE(Guid(kText) < Guid(kText));
}

TEST(Guid, OrdersByTheFirstByteFirst) {
  EXPECT_TRUE(Guid("01000000-0000-0000-0000-0000000000ff") < Guid("02000000-0000-0000-0000-000000000000"));
}

TEST(Guid, OrdersBytesAsUnsignedNumbers) {
  EXPECT_TRUE(Guid("7f000000-0000-0000-0000-000000000000") < Guid("80000000-0000-0000-0000-000000000000"));
  EXPECT_FALSE(Guid("80000000-0000-0000-0000-000000000000") < Guid("7f000000-0000-0000-0000-000000000000"));
}

TEST(Guid, ComparesBehindAZeroByte) {
  EXPECT_FALSE(Guid("00000000-0000-0000-0000-000000000001") == Guid("00000000-0000-0000-0000-000000000002"));
}

TEST(Guid, TakesTwoNullsForEqual) {
  EXPECT_TRUE(Guid() == Guid());
  EXPECT_FALSE(Guid() != Guid());
  EXPECT_FALSE(Guid() < Guid());
}

TEST(Guid, OrdersNullBeforeAllZeros) {
  EXPECT_TRUE(Guid() < Guid(0, 0));
  EXPECT_FALSE(Guid(0, 0) < Guid());
  EXPECT_FALSE(Guid() == Guid(0, 0));
  EXPECT_TRUE(Guid() != Guid(0, 0));
}

TEST(Guid, ComparesWithAGuidBehindTheRoot) {
  Guid const same(kText);
  Guid const greater(kOtherText);
  basic_type const& sameRoot = same;
  basic_type const& greaterRoot = greater;
  EXPECT_TRUE(Guid(kText) == sameRoot);
  EXPECT_FALSE(Guid(kText) == greaterRoot);
  EXPECT_TRUE(Guid(kText) < greaterRoot);
  EXPECT_FALSE(Guid(kText) < sameRoot);
}

// Text

TEST(Guid, WritesThirtySixCharacters) { EXPECT_EQ(Guid(kText).getstr().length(), 36); }

TEST(Guid, WritesAnEmptyTextForNull) { EXPECT_EQ(Guid().getstr(), ""); }

// Parsing into bytes

TEST(Guid, ParsesATextIntoSixteenBytes) {
  char bytes[17] = {};
  EXPECT_EQ(int{Guid::kBytes}, 16);
  EXPECT_TRUE(Guid::Parse("{01234567-89ab-cdef-fedc-ba9876543210}", bytes));
  EXPECT_EQ(std::string(bytes, 17),
            std::string("\x01\x23\x45\x67\x89\xab\xcd\xef\xfe\xdc\xba\x98\x76\x54\x32\x10\0", 17));
}

TEST(Guid, ParsesNoOtherText) {
  char bytes[16] = {};
  EXPECT_FALSE(Guid::Parse("01234567-89ab-cdef-fedc-ba987654321", bytes));
  EXPECT_FALSE(Guid::Parse("", bytes));
  EXPECT_FALSE(Guid::Parse(nullptr, bytes));
}

}  // namespace
