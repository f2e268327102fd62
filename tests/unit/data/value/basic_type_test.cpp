#include "corvane/data/value/basic_type.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <ostream>
#include <string>
#include <type_traits>
#include <vector>

#include "corvane/data/value/blob.h"
#include "corvane/data/value/double.h"
#include "corvane/data/value/exception.h"
#include "corvane/data/value/guid.h"
#include "corvane/data/value/int.h"
#include "corvane/data/value/int64.h"
#include "corvane/data/value/numeric.h"
#include "corvane/data/value/real_blob.h"
#include "corvane/data/value/str.h"

namespace {

using Owned = std::unique_ptr<basic_type>;

// One row a value class: how to make its values, and what the operations of the root give for them.
struct Kind {
  char const* name;
  Owned (*null)();
  Owned (*low)();
  Owned (*high)();  // greater than low
  int type;
  int nullSize;
  int lowSize;
  char const* nullText;
  char const* lowText;
  bool nullHasAddress;
  bool isNumeric;
  char const* equalRefused;
  char const* lessRefused;
  char const* copyRefused;

  friend std::ostream& operator<<(std::ostream& out, Kind const& kind) { return out << kind.name; }
};

Kind const kKinds[] = {
    {"Int", [] { return Owned(new Int()); }, [] { return Owned(new Int(-7)); }, [] { return Owned(new Int(42)); }, 1, 4,
     4, "-2147483648", "-7", true, true, "Incompatible types for Int::operator == (). ",
     "Incompatible types for Int::operator < (). ", "Incompatible types for Int::copy(). "},
    {"Double", [] { return Owned(new Double()); }, [] { return Owned(new Double(-2.5)); },
     [] { return Owned(new Double(0.5)); }, 2, 8, 8, "-1.7976931348623157e+308", "-2.5", true, true,
     "Incompatible types for Double::operator == (). ", "Incompatible types for Double::operator < (). ",
     "Incompatible types for Double::copy(). "},
    {"Blob", [] { return Owned(new Blob()); }, [] { return Owned(new Blob(3, "abc")); },
     [] { return Owned(new Blob(3, "abd")); }, 3, 0, 3, "BLOB", "BLOB", false, false,
     "Incompatible types for Blob::operator == (). ", "Incompatible types for Blob::operator < (). ",
     "Incompatible types for Blob::copy(). "},
    {"Str", [] { return Owned(new Str()); }, [] { return Owned(new Str("abc")); }, [] { return Owned(new Str("abd")); },
     12, 0, 3, "", "abc", false, false, "Incompatible types for Str::operator == (). ",
     "Incompatible types for Str::operator < (). ", "Incompatible types for Str::copy(). "},
    {"RealBlob", [] { return Owned(new RealBlob()); }, [] { return Owned(new RealBlob(3, "abc")); },
     [] { return Owned(new RealBlob(3, "abd")); }, 14, 0, 3, "BLOB", "BLOB", false, false,
     "Incompatible types for RealBlob::operator == (). ", "Incompatible types for RealBlob::operator < (). ",
     "Incompatible types for RealBlob::copy(). "},
    {"Int64", [] { return Owned(new Int64()); }, [] { return Owned(new Int64(-5000000000L)); },
     [] { return Owned(new Int64(5000000000L)); }, 16, 8, 8, "-9223372036854775808", "-5000000000", true, true,
     "Incompatible types for Int64::operator == (). ", "Incompatible types for Int64::operator < (). ",
     "Incompatible types for Int64::copy(). "},
    {"Guid", [] { return Owned(new Guid()); }, [] { return Owned(new Guid("01234567-89ab-cdef-fedc-ba9876543210")); },
     [] { return Owned(new Guid("f1234567-89ab-cdef-fedc-ba9876543210")); }, 30, 0, 16, "",
     "01234567-89ab-cdef-fedc-ba9876543210", false, false, "Incompatible types for Guid::operator == (). ",
     "Incompatible types for Guid::operator < (). ", "Incompatible types for Guid::copy(). "},
};

std::string NameOf(testing::TestParamInfo<Kind> const& row) { return row.param.name; }

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

class EveryValue : public testing::TestWithParam<Kind> {
 protected:
  // A value of every other kind.
  static std::vector<Owned> Others() {
    std::vector<Owned> others;
    for (Kind const& kind : kKinds) {
      if (kind.type != GetParam().type) others.push_back(kind.low());
    }
    return others;
  }

  Owned const null_ = GetParam().null();
  Owned const low_ = GetParam().low();
  Owned const high_ = GetParam().high();
};

INSTANTIATE_TEST_SUITE_P(BasicType, EveryValue, testing::ValuesIn(kKinds), NameOf);

TEST_P(EveryValue, TellsWhetherItIsNull) {
  EXPECT_EQ(null_->IsNull(), 1);
  EXPECT_EQ(low_->IsNull(), 0);
}

TEST_P(EveryValue, TellsWhetherItIsNotNull) {
  EXPECT_EQ(null_->IsNotNull(), 0);
  EXPECT_EQ(low_->IsNotNull(), 1);
}

TEST_P(EveryValue, BecomesNull) {
  low_->SetNull();
  EXPECT_EQ(low_->IsNull(), 1);
  EXPECT_TRUE(*low_ == *null_);
}

TEST_P(EveryValue, StaysNull) {
  null_->SetNull();
  EXPECT_EQ(null_->IsNull(), 1);
}

TEST_P(EveryValue, GivesItsStorageSize) {
  EXPECT_EQ(low_->GetSize(), GetParam().lowSize);
  EXPECT_EQ(null_->GetSize(), GetParam().nullSize);
}

TEST_P(EveryValue, GivesTheSameSizeByBothNames) {
  EXPECT_EQ(low_->size(), GetParam().lowSize);
  EXPECT_EQ(null_->size(), GetParam().nullSize);
}

TEST_P(EveryValue, GivesItsTypeCode) {
  EXPECT_EQ(low_->GetType(), GetParam().type);
  EXPECT_EQ(null_->GetType(), GetParam().type);
}

TEST_P(EveryValue, GivesItsText) {
  EXPECT_EQ(low_->getstr(), GetParam().lowText);
  EXPECT_EQ(null_->getstr(), GetParam().nullText);
}

TEST_P(EveryValue, GivesTheAddressOfItsRawValue) {
  EXPECT_NE(low_->voidptr(), nullptr);
  EXPECT_EQ(null_->voidptr() != nullptr, GetParam().nullHasAddress);
}

TEST_P(EveryValue, GivesTheSameAddressAgain) { EXPECT_EQ(low_->voidptr(), low_->voidptr()); }

TEST_P(EveryValue, EqualsTheSameValueOnly) {
  EXPECT_TRUE(*low_ == *GetParam().low());
  EXPECT_FALSE(*low_ == *high_);
  EXPECT_FALSE(*high_ == *low_);
}

TEST_P(EveryValue, EqualsItself) {
  EXPECT_TRUE(*low_ == *low_);
  EXPECT_FALSE(*low_ < *low_);
}

TEST_P(EveryValue, OrdersStrictly) {
  EXPECT_TRUE(*low_ < *high_);
  EXPECT_FALSE(*high_ < *low_);
  EXPECT_FALSE(*low_ < *GetParam().low());
}

TEST_P(EveryValue, TakesTwoNullsForEqual) {
  EXPECT_TRUE(*null_ == *GetParam().null());
  EXPECT_FALSE(*null_ < *GetParam().null());
}

TEST_P(EveryValue, OrdersNullFirst) {
  EXPECT_TRUE(*null_ < *low_);
  EXPECT_FALSE(*low_ < *null_);
}

TEST_P(EveryValue, TellsNullFromAValue) {
  EXPECT_FALSE(*null_ == *low_);
  EXPECT_FALSE(*low_ == *null_);
}

TEST_P(EveryValue, CopiesAValue) {
  high_->copy(*low_);
  EXPECT_TRUE(*high_ == *low_);
  EXPECT_EQ(high_->getstr(), GetParam().lowText);
}

TEST_P(EveryValue, CopiesAValueOverNull) {
  null_->copy(*low_);
  EXPECT_EQ(null_->IsNull(), 0);
  EXPECT_TRUE(*null_ == *low_);
}

TEST_P(EveryValue, CopiesNullOverAValue) {
  low_->copy(*null_);
  EXPECT_EQ(low_->IsNull(), 1);
}

TEST_P(EveryValue, CopiesNullOverNull) {
  null_->copy(*GetParam().null());
  EXPECT_EQ(null_->IsNull(), 1);
}

TEST_P(EveryValue, CopiesItself) {
  low_->copy(*low_);
  EXPECT_TRUE(*low_ == *GetParam().low());
}

TEST_P(EveryValue, KeepsItsCopyWhenTheSourceChanges) {
  high_->copy(*low_);
  low_->SetNull();
  EXPECT_TRUE(*high_ == *GetParam().low());
}

TEST_P(EveryValue, KeepsItsCopyWhenTheSourceIsGone) {
  {
    Owned const source = GetParam().low();
    high_->copy(*source);
  }
  EXPECT_TRUE(*high_ == *low_);
}

TEST_P(EveryValue, RefusesToEqualAnotherKind) {
  for (Owned const& other : Others()) {
    EXPECT_EQ(MessageOf([&] { EXPECT_FALSE(*low_ == *other); }), GetParam().equalRefused) << other->GetType();
  }
}

TEST_P(EveryValue, RefusesToOrderBesideAnotherKind) {
  for (Owned const& other : Others()) {
    EXPECT_EQ(MessageOf([&] { EXPECT_FALSE(*low_ < *other); }), GetParam().lessRefused) << other->GetType();
  }
}

TEST_P(EveryValue, RefusesToCopyAnotherKind) {
  for (Owned const& other : Others()) {
    EXPECT_EQ(MessageOf([&] { low_->copy(*other); }), GetParam().copyRefused) << other->GetType();
  }
}

TEST_P(EveryValue, StaysAsItIsWhenItRefusesToCopy) {
  for (Owned const& other : Others()) {
    EXPECT_THROW(low_->copy(*other), AException);
    EXPECT_TRUE(*low_ == *GetParam().low()) << other->GetType();
  }
}

TEST_P(EveryValue, RefusesAnotherKindWhileNull) {
  for (Owned const& other : Others()) {
    other->SetNull();
    EXPECT_EQ(MessageOf([&] { EXPECT_FALSE(*null_ == *other); }), GetParam().equalRefused) << other->GetType();
    EXPECT_EQ(MessageOf([&] { null_->copy(*other); }), GetParam().copyRefused) << other->GetType();
  }
}

TEST_P(EveryValue, TellsWhetherItIsNumeric) {
  EXPECT_EQ(dynamic_cast<numeric*>(low_.get()) != nullptr, GetParam().isNumeric);
}

// What makes two values of one kind

struct OwnInt : Int {
  using Int::Int;
};

struct Money : Double {
  using Double::Double;
  int GetType() const override { return corvane::kTypeDCurrency; }
};

// Claims the type code of Int without being one.
struct Impostor : basic_type {
  int IsNull() const override { return 0; }
  void SetNull() override {}
  int GetSize() const override { return 4; }
  int GetType() const override { return corvane::kTypeInt; }
  Str getstr() const override { return "impostor"; }
  void* voidptr() const override { return nullptr; }
  bool operator==(basic_type const&) const override { return true; }
  bool operator<(basic_type const&) const override { return false; }
  void copy(basic_type const&) override {}
};

TEST(BasicType, TakesADerivedClassOfTheSameTypeCodeForTheSameKind) {
  OwnInt const derived(42);
  Int value(7);
  basic_type& root = value;
  EXPECT_TRUE(root < derived);
  root.copy(derived);
  EXPECT_TRUE(root == derived);
  EXPECT_EQ(static_cast<int>(value), 42);
}

TEST(BasicType, TakesADerivedClassOfAnotherTypeCodeForAnotherKind) {
  Money const derived(42.0);
  Double value(42.0);
  basic_type& root = value;
  EXPECT_EQ(MessageOf([&] { EXPECT_TRUE(root == derived); }), "Incompatible types for Double::operator == (). ");
  EXPECT_EQ(MessageOf([&] { EXPECT_TRUE(root < derived); }), "Incompatible types for Double::operator < (). ");
  EXPECT_EQ(MessageOf([&] { root.copy(derived); }), "Incompatible types for Double::copy(). ");
}

TEST(BasicType, TakesAnotherClassOfTheSameTypeCodeForAnotherKind) {
  Impostor const impostor;
  Int value(7);
  basic_type& root = value;
  EXPECT_EQ(MessageOf([&] { EXPECT_TRUE(root == impostor); }), "Incompatible types for Int::operator == (). ");
  EXPECT_EQ(MessageOf([&] { EXPECT_TRUE(root < impostor); }), "Incompatible types for Int::operator < (). ");
  EXPECT_EQ(MessageOf([&] { root.copy(impostor); }), "Incompatible types for Int::copy(). ");
  EXPECT_EQ(static_cast<int>(value), 7);
}

// What the root itself defines

struct ChangingSize : Impostor {
  int GetSize() const override { return 17; }
  int IsNull() const override { return 1; }
};

TEST(BasicType, AsksTheDerivedClassForItsSize) {
  ChangingSize const value;
  basic_type const& root = value;
  EXPECT_EQ(root.size(), 17);
}

TEST(BasicType, NegatesWhatTheDerivedClassSaysOfNull) {
  ChangingSize const null;
  Impostor const value;
  basic_type const& nullRoot = null;
  basic_type const& valueRoot = value;
  EXPECT_EQ(nullRoot.IsNotNull(), 0);
  EXPECT_EQ(valueRoot.IsNotNull(), 1);
}

struct Watched : Impostor {
  explicit Watched(bool& gone) : gone_(gone) {}
  Watched(Watched const&) = delete;
  Watched& operator=(Watched const&) = delete;
  ~Watched() override { gone_ = true; }

 private:
  bool& gone_;
};

TEST(BasicType, DestroysTheDerivedClass) {
  bool gone = false;
  { Owned const value(new Watched(gone)); }
  EXPECT_TRUE(gone);
}

// Inheritance. A class that comes by a base on two paths has one of it only when both paths are virtual; otherwise
// the conversion to that base is ambiguous.

template <class Base>
struct OtherPath : virtual Base {};

template <class Base, class Value>
struct WithSecond : OtherPath<Base>, Value {};

template <class Base, class Value>
constexpr bool kHasOne = std::is_convertible<WithSecond<Base, Value>*, Base*>::value;

TEST(BasicType, IsAVirtualBaseOfEveryValue) {
  EXPECT_TRUE((kHasOne<basic_type, Str>));
  EXPECT_TRUE((kHasOne<basic_type, Int>));
  EXPECT_TRUE((kHasOne<basic_type, Int64>));
  EXPECT_TRUE((kHasOne<basic_type, Double>));
  EXPECT_TRUE((kHasOne<basic_type, Blob>));
  EXPECT_TRUE((kHasOne<basic_type, RealBlob>));
  EXPECT_TRUE((kHasOne<basic_type, Guid>));
  EXPECT_TRUE((kHasOne<basic_type, numeric>));
}

TEST(BasicType, HasNumericAsAVirtualBaseOfEveryNumber) {
  EXPECT_TRUE((kHasOne<numeric, Int>));
  EXPECT_TRUE((kHasOne<numeric, Int64>));
  EXPECT_TRUE((kHasOne<numeric, Double>));
}

TEST(BasicType, IsAbstract) {
  EXPECT_TRUE(std::is_abstract<basic_type>::value);
  EXPECT_TRUE(std::is_abstract<numeric>::value);
}

TEST(BasicType, HasKnownTypeCodes) {
  EXPECT_EQ(static_cast<int>(corvane::kTypeInt), 1);
  EXPECT_EQ(static_cast<int>(corvane::kTypeDouble), 2);
  EXPECT_EQ(static_cast<int>(corvane::kTypeBlob), 3);
  EXPECT_EQ(static_cast<int>(corvane::kTypeStr), 12);
  EXPECT_EQ(static_cast<int>(corvane::kTypeRealBlob), 14);
  EXPECT_EQ(static_cast<int>(corvane::kTypeInt64), 16);
  EXPECT_EQ(static_cast<int>(corvane::kTypeDCurrency), 29);
  EXPECT_EQ(static_cast<int>(corvane::kTypeGuid), 30);
}

}  // namespace
