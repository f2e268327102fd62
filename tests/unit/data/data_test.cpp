#include "corvane/data/data.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <type_traits>
#include <utility>

#include "corvane/data/blob.h"
#include "corvane/data/dcurrency.h"
#include "corvane/data/double.h"
#include "corvane/data/geometry.h"
#include "corvane/data/guid.h"
#include "corvane/data/int.h"
#include "corvane/data/int64.h"
#include "corvane/data/real_blob.h"
#include "corvane/data/str.h"
#include "corvane/data/time.h"
#include "corvane/data/value/exception.h"
#include "corvane/data/vstr.h"
#include "corvane/mapping/attribute.h"
#include "corvane/mapping/domain.h"
#include "tests/unit/data/column_probes.h"

using corvane::test::Slot;
using testing::StrEq;
using testing::ThrowsMessage;

namespace {

static_assert(std::is_abstract<ASData>::value, "");
static_assert(!std::is_constructible<ASData, ASData const&>::value, "");

// ---- Binding ----

TEST(ASData, UnboundValueIsCalledEmpty) {
  ASInt const value;
  EXPECT_EQ(value.GetName(), "EMPTY");
}

TEST(ASData, UnboundValueHasTag0) {
  ASInt const value;
  EXPECT_EQ(value.GetACType(), 0);
}

TEST(ASData, BindReturnsTheAttribute) {
  ASInt value;
  ASAttribute attribute(Str("id"));
  EXPECT_EQ(value.Bind(&attribute), &attribute);
}

TEST(ASData, BoundValueIsCalledByTheBareColumnName) {
  ASDomain orders("orders", "");
  ASInt value;
  ASAttribute attribute(Str("id"));
  orders.Add(attribute, value);
  EXPECT_EQ(value.GetName(), "id");
}

TEST(ASData, BoundValueHasTheTagOfItsColumn) {
  ASInt value;
  ASAttribute attribute("id", "", 42, corvane::kKey);
  value.Bind(&attribute);
  EXPECT_EQ(value.GetACType(), 42);
}

TEST(ASData, SecondBindReplacesTheFirst) {
  ASInt value;
  ASAttribute first(Str("first"));
  ASAttribute second(Str("second"));
  value.Bind(&first);
  value.Bind(&second);
  EXPECT_EQ(value.GetName(), "second");
}

TEST(ASData, BindingNothingUnbinds) {
  ASInt value;
  ASAttribute attribute("id", "", 42, 0);
  value.Bind(&attribute);
  EXPECT_EQ(value.Bind(nullptr), nullptr);
  EXPECT_EQ(value.GetName(), "EMPTY");
  EXPECT_EQ(value.GetACType(), 0);
}

TEST(ASData, BindingLeavesTheAttributeAsItWas) {
  ASInt value;
  ASAttribute attribute(Str("id"));
  value.Bind(&attribute);
  EXPECT_EQ(attribute.Data(), nullptr);
}

// ---- Places of the virtual functions ----

TEST(ASData, KeepsTheSlotsOfTheRoot) {
  EXPECT_EQ(Slot(&ASData::IsNull), 2);
  EXPECT_EQ(Slot(&ASData::SetNull), 4);
  EXPECT_EQ(Slot(&ASData::GetSize), 5);
  EXPECT_EQ(Slot(&ASData::size), 6);
  EXPECT_EQ(Slot(&ASData::GetType), 7);
  EXPECT_EQ(Slot(&ASData::getstr), 8);
  EXPECT_EQ(Slot(&ASData::voidptr), 9);
  EXPECT_EQ(Slot(&ASData::operator==), 10);
  EXPECT_EQ(Slot(&ASData::operator<), 11);
  EXPECT_EQ(Slot(&ASData::copy), 12);
}

TEST(ASData, AppendsTheDatabaseTypeAndTrim) {
  EXPECT_EQ(Slot(&ASData::GetDBType), 13);
  EXPECT_EQ(Slot(&ASData::Trim), 14);
}

// ---- What holds for every kind of column ----

// Each kind: its value type, a class of the same type code, the nearest of another one and what is said of it, a new
// column, and two values in order.
struct IntKind {
  using Column = ASInt;
  using Value = Int;
  using Like = Int;
  using Unlike = ASInt64;
  static constexpr char const* kName = "ASInt";
  static constexpr int kType = 1, kDbType = 3, kSize = 4, kNewLength = 4;
  static constexpr char const* kEqual = "Incompatible types for ASInt::operator == (). ";
  static constexpr char const* kLess = "Incompatible types for ASInt::operator < (). ";
  static constexpr char const* kCopy = "Incompatible types for ASInt::copy(). ";
  static Column New() { return {}; }
  static Unlike Other() { return {}; }
  static void SetLow(Column& column) { column = -7; }
  static void SetHigh(Column& column) { column = 5; }
};

struct Int64Kind {
  using Column = ASInt64;
  using Value = Int64;
  using Like = Int64;
  using Unlike = ASInt;
  static constexpr char const* kName = "ASInt64";
  static constexpr int kType = 16, kDbType = 16, kSize = 8, kNewLength = 8;
  static constexpr char const* kEqual = "Incompatible types for ASInt64::operator == (). ";
  static constexpr char const* kLess = "Incompatible types for ASInt64::operator < (). ";
  static constexpr char const* kCopy = "Incompatible types for ASInt64::copy(). ";
  static Column New() { return {}; }
  static Unlike Other() { return {}; }
  static void SetLow(Column& column) { column = -7; }
  static void SetHigh(Column& column) { column = 5000000000; }
};

struct DoubleKind {
  using Column = ASDouble;
  using Value = Double;
  using Like = Double;
  using Unlike = ASDCurrency;
  static constexpr char const* kName = "ASDouble";
  static constexpr int kType = 2, kDbType = 4, kSize = 8, kNewLength = 8;
  static constexpr char const* kEqual = "Incompatible types for ASDouble::operator == (). ";
  static constexpr char const* kLess = "Incompatible types for ASDouble::operator < (). ";
  static constexpr char const* kCopy = "Incompatible types for ASDouble::copy(). ";
  static Column New() { return {}; }
  static Unlike Other() { return {}; }
  static void SetLow(Column& column) { column = -0.5; }
  static void SetHigh(Column& column) { column = 2.5; }
};

struct DCurrencyKind {
  using Column = ASDCurrency;
  using Value = Double;
  using Like = ASDCurrency;
  using Unlike = ASDouble;
  static constexpr char const* kName = "ASDCurrency";
  static constexpr int kType = 29, kDbType = 4, kSize = 8, kNewLength = 8;
  static constexpr char const* kEqual = "Incompatible types for ASDCurrency::operator == (). ";
  static constexpr char const* kLess = "Incompatible types for ASDCurrency::operator < (). ";
  static constexpr char const* kCopy = "Incompatible types for ASDCurrency::copy(). ";
  static Column New() { return {}; }
  static Unlike Other() { return {}; }
  static void SetLow(Column& column) { column = -0.5; }
  static void SetHigh(Column& column) { column = 19.99; }
};

struct TimeKind {
  using Column = ASTime;
  using Value = Int;
  using Like = ASInt;
  using Unlike = ASInt64;
  static constexpr char const* kName = "ASTime";
  static constexpr int kType = 1, kDbType = 100, kSize = 4, kNewLength = 4;
  static constexpr char const* kEqual = "Incompatible types for ASTime::operator == (). ";
  static constexpr char const* kLess = "Incompatible types for ASTime::operator < (). ";
  static constexpr char const* kCopy = "Incompatible types for ASTime::copy(). ";
  static Column New() { return {}; }
  static Unlike Other() { return {}; }
  static void SetLow(Column& column) { column = -1; }
  static void SetHigh(Column& column) { column = 1088689500; }
};

struct StrKind {
  using Column = ASStr;
  using Value = Str;
  using Like = Str;
  using Unlike = ASInt;
  static constexpr char const* kName = "ASStr";
  static constexpr int kType = 12, kDbType = 5, kSize = 5, kNewLength = 5;
  static constexpr char const* kEqual = "Incompatible types for ASStr::operator == (). ";
  static constexpr char const* kLess = "Incompatible types for ASStr::operator < (). ";
  static constexpr char const* kCopy = "Incompatible types for ASStr::copy(). ";
  static Column New() { return Column(5); }
  static Unlike Other() { return {}; }
  static void SetLow(Column& column) { column = "ab"; }
  static void SetHigh(Column& column) { column = "abc"; }
};

struct VStrKind {
  using Column = ASVStr;
  using Value = Str;
  using Like = ASStr;
  using Unlike = ASInt;
  static constexpr char const* kName = "ASVStr";
  static constexpr int kType = 12, kDbType = 1, kSize = 5, kNewLength = 5;
  static constexpr char const* kEqual = "Incompatible types for ASStr::operator == (). ";
  static constexpr char const* kLess = "Incompatible types for ASStr::operator < (). ";
  static constexpr char const* kCopy = "Incompatible types for ASStr::copy(). ";
  static Column New() { return Column(5); }
  static Unlike Other() { return {}; }
  static void SetLow(Column& column) { column = "ab"; }
  static void SetHigh(Column& column) { column = "abc"; }
};

struct BlobKind {
  using Column = ASBlob;
  using Value = Blob;
  using Like = Blob;
  using Unlike = ASRealBlob;
  static constexpr char const* kName = "ASBlob";
  static constexpr int kType = 3, kDbType = 15, kSize = 5, kNewLength = 0;
  static constexpr char const* kEqual = "Incompatible types for ASBlob::operator == (). ";
  static constexpr char const* kLess = "Incompatible types for ASBlob::operator < (). ";
  static constexpr char const* kCopy = "Incompatible types for ASBlob::copy(). ";
  static Column New() { return Column(5); }
  static Unlike Other() { return Unlike(1); }
  static void SetLow(Column& column) { column.Fill("ab", 2); }
  static void SetHigh(Column& column) { column.Fill("ac", 2); }
};

struct GeometryKind {
  using Column = ASGeometry;
  using Value = Blob;
  using Like = Blob;
  using Unlike = ASRealBlob;
  static constexpr char const* kName = "ASGeometry";
  static constexpr int kType = 3, kDbType = 85, kSize = 5, kNewLength = 0;
  static constexpr char const* kEqual = "Incompatible types for ASGeometry::operator == (). ";
  static constexpr char const* kLess = "Incompatible types for ASGeometry::operator < (). ";
  static constexpr char const* kCopy = "Incompatible types for ASGeometry::copy(). ";
  static Column New() { return Column(5); }
  static Unlike Other() { return Unlike(1); }
  static void SetLow(Column& column) { column.Fill("ab", 2); }
  static void SetHigh(Column& column) { column.Fill("ac", 2); }
};

struct RealBlobKind {
  using Column = ASRealBlob;
  using Value = RealBlob;
  using Like = RealBlob;
  using Unlike = ASBlob;
  static constexpr char const* kName = "ASRealBlob";
  static constexpr int kType = 14, kDbType = 95, kSize = 0, kNewLength = 0;
  static constexpr char const* kEqual = "Incompatible types for ASRealBlob::operator == (). ";
  static constexpr char const* kLess = "Incompatible types for ASRealBlob::operator < (). ";
  static constexpr char const* kCopy = "Incompatible types for ASRealBlob::copy(). ";
  static Column New() { return Column(0); }
  static Unlike Other() { return Unlike(1); }
  static void SetLow(Column& column) { column = RealBlob(2, "ab"); }
  static void SetHigh(Column& column) { column = RealBlob(2, "ac"); }
};

struct GuidKind {
  using Column = ASGuid;
  using Value = Guid;
  using Like = Guid;
  using Unlike = ASStr;
  static constexpr char const* kName = "ASGuid";
  static constexpr int kType = 30, kDbType = 86, kSize = 16, kNewLength = 16;
  static constexpr char const* kEqual = "Incompatible types for ASGuid::operator < (). ";
  static constexpr char const* kLess = "Incompatible types for ASGuid::operator < (). ";
  static constexpr char const* kCopy = "Incompatible types for ASGuid::copy(). ";
  static Column New() { return {}; }
  static Unlike Other() { return Unlike(16); }
  static void SetLow(Column& column) { column = Guid("00112233-4455-6677-8899-aabbccddeeff"); }
  static void SetHigh(Column& column) { column = Guid("ff112233-4455-6677-8899-aabbccddee00"); }
};

// Compares through the root, whatever overloads the class has.
basic_type const& Root(basic_type const& value) { return value; }

struct NameOfKind {
  template <class Kind>
  static std::string GetName(int) {
    return Kind::kName;
  }
};

template <class Kind>
class EveryColumn : public testing::Test {
 protected:
  EveryColumn() {
    Kind::SetLow(low);
    Kind::SetHigh(high);
  }

  ASAttribute attribute{Str("mine")};
  ASAttribute other{Str("others")};
  typename Kind::Column null = Kind::New();
  typename Kind::Column low = Kind::New();
  typename Kind::Column high = Kind::New();
};

using Kinds = testing::Types<IntKind, Int64Kind, DoubleKind, DCurrencyKind, TimeKind, StrKind, VStrKind, BlobKind,
                             GeometryKind, RealBlobKind, GuidKind>;
TYPED_TEST_SUITE(EveryColumn, Kinds, NameOfKind);

TYPED_TEST(EveryColumn, StartsNull) {
  basic_type const& value = this->null;
  EXPECT_EQ(value.IsNull(), 1);
  EXPECT_EQ(value.IsNotNull(), 0);
}

TYPED_TEST(EveryColumn, StartsUnbound) { EXPECT_EQ(this->null.GetName(), "EMPTY"); }

TYPED_TEST(EveryColumn, IsNotNullOnceItHasAValue) {
  basic_type const& value = this->low;
  EXPECT_EQ(value.IsNull(), 0);
  EXPECT_EQ(value.IsNotNull(), 1);
}

TYPED_TEST(EveryColumn, HasTheTypeCodeOfItsKind) {
  basic_type const& value = this->null;
  EXPECT_EQ(value.GetType(), TypeParam::kType);
}

TYPED_TEST(EveryColumn, HasTheDatabaseTypeCodeOfItsKind) {
  ASData const& value = this->null;
  EXPECT_EQ(value.GetDBType(), TypeParam::kDbType);
}

TYPED_TEST(EveryColumn, NewOneHasTheStorageSizeOfItsKind) {
  basic_type const& value = this->null;
  EXPECT_EQ(value.GetSize(), TypeParam::kSize);
}

TYPED_TEST(EveryColumn, NewOneHasTheLengthOfItsKind) {
  basic_type const& value = this->null;
  EXPECT_EQ(value.size(), TypeParam::kNewLength);
}

TYPED_TEST(EveryColumn, SharesOneRootBetweenItsTwoSides) {
  basic_type const* const columnSide = static_cast<ASData const*>(&this->low);
  basic_type const* const valueSide = static_cast<typename TypeParam::Value const*>(&this->low);
  EXPECT_EQ(columnSide, valueSide);
}

TYPED_TEST(EveryColumn, IsTheSameValueSeenFromItsTwoSides) {
  ASData const& columnSide = this->low;
  typename TypeParam::Value const& valueSide = this->low;
  EXPECT_EQ(columnSide.voidptr(), valueSide.voidptr());
  EXPECT_EQ(columnSide.getstr(), valueSide.getstr());
  EXPECT_EQ(columnSide.size(), valueSide.size());
  EXPECT_EQ(columnSide.GetSize(), valueSide.GetSize());
  EXPECT_EQ(columnSide.IsNull(), valueSide.IsNull());
}

TYPED_TEST(EveryColumn, SetNullFromTheValueSideMakesTheColumnNull) {
  static_cast<typename TypeParam::Value&>(this->low).SetNull();
  EXPECT_EQ(static_cast<ASData const&>(this->low).IsNull(), 1);
}

TYPED_TEST(EveryColumn, SetNullMakesItNull) {
  static_cast<ASData&>(this->low).SetNull();
  EXPECT_EQ(this->low.IsNull(), 1);
}

TYPED_TEST(EveryColumn, SecondSetNullChangesNothing) {
  this->low.SetNull();
  this->low.SetNull();
  EXPECT_EQ(this->low.IsNull(), 1);
}

TYPED_TEST(EveryColumn, TakesAValueAgainAfterSetNull) {
  this->low.SetNull();
  TypeParam::SetHigh(this->low);
  EXPECT_TRUE(Root(this->low) == this->high);
}

TYPED_TEST(EveryColumn, EqualsItself) {
  basic_type const& value = this->low;
  EXPECT_TRUE(value == value);
  EXPECT_FALSE(value < value);
}

TYPED_TEST(EveryColumn, LowerValueIsLess) {
  EXPECT_TRUE(Root(this->low) < Root(this->high));
  EXPECT_FALSE(Root(this->high) < Root(this->low));
  EXPECT_FALSE(Root(this->low) == Root(this->high));
}

TYPED_TEST(EveryColumn, NullLiesBeforeEveryValue) {
  EXPECT_TRUE(Root(this->null) < Root(this->low));
  EXPECT_FALSE(Root(this->low) < Root(this->null));
}

TYPED_TEST(EveryColumn, NullEqualsNoValue) {
  EXPECT_FALSE(Root(this->null) == Root(this->low));
  EXPECT_FALSE(Root(this->low) == Root(this->null));
}

TYPED_TEST(EveryColumn, TwoNullsAreEqualAndNeitherIsLess) {
  this->low.SetNull();
  EXPECT_TRUE(Root(this->null) == Root(this->low));
  EXPECT_FALSE(Root(this->null) < Root(this->low));
  EXPECT_FALSE(Root(this->low) < Root(this->null));
}

TYPED_TEST(EveryColumn, EqualityWithAnUnlikeKindThrows) {
  auto const unlike = TypeParam::Other();
  basic_type const& value = this->low;
  EXPECT_THAT([&] { static_cast<void>(value == unlike); }, ThrowsMessage<AException>(StrEq(TypeParam::kEqual)));
}

TYPED_TEST(EveryColumn, OrderingWithAnUnlikeKindThrows) {
  auto const unlike = TypeParam::Other();
  basic_type const& value = this->low;
  EXPECT_THAT([&] { static_cast<void>(value < unlike); }, ThrowsMessage<AException>(StrEq(TypeParam::kLess)));
}

TYPED_TEST(EveryColumn, CopyOfAnUnlikeKindThrows) {
  auto const unlike = TypeParam::Other();
  basic_type& value = this->low;
  EXPECT_THAT([&] { value.copy(unlike); }, ThrowsMessage<AException>(StrEq(TypeParam::kCopy)));
}

TYPED_TEST(EveryColumn, RefusedCopyChangesNothing) {
  auto const before = this->low;
  auto const unlike = TypeParam::Other();
  EXPECT_THROW(this->low.copy(unlike), AException);
  EXPECT_TRUE(Root(this->low) == before);
}

TYPED_TEST(EveryColumn, NullOfAnUnlikeKindIsRefusedToo) {
  auto unlike = TypeParam::Other();
  unlike.SetNull();
  EXPECT_THAT([&] { static_cast<void>(Root(this->null) == unlike); },
              ThrowsMessage<AException>(StrEq(TypeParam::kEqual)));
}

TYPED_TEST(EveryColumn, CopyTakesTheValue) {
  basic_type& target = this->null;
  target.copy(this->high);
  EXPECT_EQ(target.IsNull(), 0);
  EXPECT_TRUE(target == this->high);
}

TYPED_TEST(EveryColumn, CopyTakesTheNullState) {
  basic_type& target = this->high;
  target.copy(this->null);
  EXPECT_EQ(target.IsNull(), 1);
}

TYPED_TEST(EveryColumn, CopyOfItselfChangesNothing) {
  auto const before = this->high;
  basic_type& target = this->high;
  target.copy(this->high);
  EXPECT_TRUE(target == before);
}

TYPED_TEST(EveryColumn, CopyOfAnotherClassOfItsKindIsTaken) {
  typename TypeParam::Like const like(this->high);
  basic_type& target = this->null;
  target.copy(like);
  EXPECT_TRUE(target == this->high);
}

TYPED_TEST(EveryColumn, CopyLeavesTheBindingAlone) {
  this->low.Bind(&this->attribute);
  this->high.Bind(&this->other);
  this->low.copy(this->high);
  EXPECT_EQ(this->low.GetName(), "mine");
}

TYPED_TEST(EveryColumn, CopyConstructionCopiesTheValue) {
  typename TypeParam::Column const copy(this->high);
  EXPECT_TRUE(Root(copy) == this->high);
}

TYPED_TEST(EveryColumn, CopyConstructionCopiesTheNullState) {
  typename TypeParam::Column const copy(this->null);
  EXPECT_EQ(copy.IsNull(), 1);
}

TYPED_TEST(EveryColumn, CopyConstructionCopiesTheBinding) {
  this->high.Bind(&this->attribute);
  typename TypeParam::Column const copy(this->high);
  EXPECT_EQ(copy.GetName(), "mine");
}

TYPED_TEST(EveryColumn, CopyIsIndependentOfItsSource) {
  typename TypeParam::Column copy(this->high);
  TypeParam::SetLow(copy);
  EXPECT_TRUE(Root(this->low) == copy);
  EXPECT_TRUE(Root(this->low) < this->high);
}

TYPED_TEST(EveryColumn, MovedFromColumnCanStillTakeAValue) {
  typename TypeParam::Column const taken(std::move(this->high));
  TypeParam::SetLow(this->high);
  EXPECT_TRUE(Root(this->high) == this->low);
  EXPECT_TRUE(Root(this->high) < taken);
}

TYPED_TEST(EveryColumn, AssignmentCopiesTheValue) {
  this->low = this->high;
  EXPECT_TRUE(Root(this->low) == this->high);
}

TYPED_TEST(EveryColumn, AssignmentCopiesTheNullState) {
  this->low = this->null;
  EXPECT_EQ(this->low.IsNull(), 1);
}

TYPED_TEST(EveryColumn, AssignmentEndsTheNullState) {
  this->null = this->high;
  EXPECT_EQ(this->null.IsNull(), 0);
}

TYPED_TEST(EveryColumn, AssignmentToItselfChangesNothing) {
  auto const before = this->high;
  auto const& itself = this->high;
  this->high = itself;
  EXPECT_TRUE(Root(this->high) == before);
  EXPECT_EQ(this->high.IsNull(), 0);
}

TYPED_TEST(EveryColumn, AssignmentOfNullToItselfLeavesNull) {
  auto const& itself = this->null;
  this->null = itself;
  EXPECT_EQ(this->null.IsNull(), 1);
}

TYPED_TEST(EveryColumn, AssignmentReturnsTheTarget) { EXPECT_EQ(&(this->low = this->high), &this->low); }

TYPED_TEST(EveryColumn, AssignmentLeavesTheBindingAlone) {
  this->low.Bind(&this->attribute);
  this->high.Bind(&this->other);
  this->low = this->high;
  EXPECT_EQ(this->low.GetName(), "mine");
}

TYPED_TEST(EveryColumn, AssignmentLeavesAnUnboundTargetUnbound) {
  this->high.Bind(&this->other);
  this->low = this->high;
  EXPECT_EQ(this->low.GetName(), "EMPTY");
}

TYPED_TEST(EveryColumn, SetNullLeavesTheBindingAlone) {
  this->low.Bind(&this->attribute);
  this->low.SetNull();
  EXPECT_EQ(this->low.GetName(), "mine");
}

TYPED_TEST(EveryColumn, TrimOfAValueWithoutPaddingChangesNothing) {
  this->low.Trim();
  auto const before = this->low;
  static_cast<ASData&>(this->low).Trim();
  EXPECT_TRUE(Root(this->low) == before);
  EXPECT_EQ(this->low.getstr(), before.getstr());
}

TYPED_TEST(EveryColumn, TrimLeavesNullAlone) {
  static_cast<ASData&>(this->null).Trim();
  EXPECT_EQ(this->null.IsNull(), 1);
}

TYPED_TEST(EveryColumn, IsDestroyedThroughItsColumnSide) {
  std::unique_ptr<ASData> const column = std::make_unique<typename TypeParam::Column>(this->high);
  EXPECT_EQ(column->IsNull(), 0);
}

TYPED_TEST(EveryColumn, IsDestroyedThroughItsValueSide) {
  std::unique_ptr<typename TypeParam::Value> const value = std::make_unique<typename TypeParam::Column>(this->high);
  EXPECT_EQ(value->IsNull(), 0);
}

TYPED_TEST(EveryColumn, IsDestroyedThroughItsRoot) {
  std::unique_ptr<basic_type> const root = std::make_unique<typename TypeParam::Column>(this->high);
  EXPECT_EQ(root->IsNull(), 0);
}

TYPED_TEST(EveryColumn, KeepsTheSlotsOfTheColumnSide) {
  using C = typename TypeParam::Column;
  EXPECT_EQ(Slot(&C::IsNull), 2);
  EXPECT_EQ(Slot(&C::SetNull), 4);
  EXPECT_EQ(Slot(&C::GetSize), 5);
  EXPECT_EQ(Slot(&C::size), 6);
  EXPECT_EQ(Slot(&C::GetType), 7);
  EXPECT_EQ(Slot(&C::getstr), 8);
  EXPECT_EQ(Slot(&C::voidptr), 9);
  EXPECT_EQ(Slot(static_cast<bool (C::*)(basic_type const&) const>(&C::operator==)), 10);
  EXPECT_EQ(Slot(static_cast<bool (C::*)(basic_type const&) const>(&C::operator<)), 11);
  EXPECT_EQ(Slot(&C::copy), 12);
  EXPECT_EQ(Slot(&C::GetDBType), 13);
  EXPECT_EQ(Slot(&C::Trim), 14);
}

}  // namespace
