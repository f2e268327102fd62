#include "corvane/mapping/domain.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <list>
#include <string>
#include <type_traits>
#include <typeinfo>

#include "corvane/data/blob.h"
#include "corvane/data/dcurrency.h"
#include "corvane/data/double.h"
#include "corvane/data/geometry.h"
#include "corvane/data/guid.h"
#include "corvane/data/int64.h"
#include "corvane/data/real_blob.h"
#include "corvane/data/time.h"
#include "corvane/data/value/exception.h"
#include "corvane/data/vstr.h"

namespace {

constexpr char const* kIncompatibleAssignment = "Incompatible types in ASDomain::operator=(). ";

// A record of one key column, its value built from the arguments.
template <class Value>
struct Single : ASDomain {
  Value value;
  ASAttribute column{"c", "Column", 7, corvane::kKey};

  template <class... Arguments>
  explicit Single(Arguments... arguments) : ASDomain("single", "Single"), value(arguments...) {
    Add(column, value);
  }
};

// A record without key columns.
struct Keyless : ASDomain {
  ASInt value;
  ASAttribute column{"value"};

  Keyless() : ASDomain("keyless", "Keyless") { Add(column, value); }
};

// A record with two key columns and another column between them.
struct Article : ASDomain {
  ASInt shop;
  ASInt price;
  ASVStr code{8};
  ASAttribute shopColumn{"shop", "Shop", 0, corvane::kKey};
  ASAttribute priceColumn{"price", "Price", 0, 0};
  ASAttribute codeColumn{"code", "Code", 0, corvane::kKey};

  Article(int shopNumber, char const* codeText, int priceNumber = 0) : ASDomain("article", "Article") {
    Add(shopColumn, shop).Add(priceColumn, price).Add(codeColumn, code);
    shop = shopNumber;
    price = priceNumber;
    code = codeText;
  }
};

// A record with a column that has no value between two that have one.
struct WithGap : ASDomain {
  ASInt first;
  ASInt last;
  ASAttribute firstColumn{"first"};
  ASAttribute gap{"gap", "Gap", 3, corvane::kKey};
  ASAttribute lastColumn{"last"};

  WithGap() : ASDomain("gap", "") {
    Add(firstColumn, first);
    push_back(&gap);
    gap.Register(nullptr, this);
    Add(lastColumn, last);
  }
};

// Values of an application that say what they are not.
class IntCalledInt64 : public ASInt {
 public:
  using ASInt::operator=;
  int GetType() const override { return corvane::kTypeInt64; }
};

class IntCalledGuid : public ASInt {
 public:
  using ASInt::operator=;
  int GetType() const override { return corvane::kTypeGuid; }
};

class Int64CalledInt : public ASInt64 {
 public:
  using ASInt64::operator=;
  int GetType() const override { return corvane::kTypeInt; }
};

class IntOfUnknownType : public ASInt {
 public:
  using ASInt::operator=;
  int GetType() const override { return 77; }
};

class BlobOfUnknownType : public ASBlob {
 public:
  BlobOfUnknownType() : ASBlob(4) {}
  int GetType() const override { return 77; }
};

// A text of an application: a column of the library's kind.
class Currency : public ASVStr {
 public:
  using ASVStr::operator=;
  Currency() : ASVStr(3) {}
};

// Counts those that are alive.
class Counted : public ASInt {
 public:
  using ASInt::operator=;
  explicit Counted(int& alive) : alive_(&alive) { ++*alive_; }
  ~Counted() override { --*alive_; }

 private:
  int* alive_;
};

class CountedColumn : public ASAttribute {
 public:
  explicit CountedColumn(int& alive) : ASAttribute(Str("c")), alive_(&alive) { ++*alive_; }
  ~CountedColumn() override { --*alive_; }

 private:
  int* alive_;
};

void Assign(ASDomain& target, ASDomain const& source) { target = source; }

ASData const& FirstValue(ASDomain const& record) { return *record.front()->Data(); }

// The class of the first value, not one that it derives from.
template <class Value>
bool FirstValueIs(ASDomain const& record) {
  ASData const& value = FirstValue(record);
  return typeid(value) == typeid(Value);
}

std::string Bytes(void const* bytes, std::size_t length) {
  return std::string(static_cast<char const*>(bytes), length);
}

template <class Action>
std::string MessageOf(Action action) {
  try {
    action();
  } catch (AException const& error) {
    return error.what();
  }
  return "nothing was thrown";
}

// ---- construction, names

TEST(Domain, StartsEmpty) {
  ASDomain const record;
  EXPECT_TRUE(record.empty());
  EXPECT_EQ(record.Name(), "");
  EXPECT_EQ(record.Label(), "");
}

TEST(Domain, TakesNameAndLabel) {
  ASDomain const record("shop.items", "Items on sale");
  EXPECT_TRUE(record.empty());
  EXPECT_EQ(record.Name(), "shop.items");
  EXPECT_EQ(record.Label(), "Items on sale");
}

TEST(Domain, IsTheListOfItsColumns) {
  EXPECT_TRUE((std::is_base_of<std::list<ASAttribute*, ASAllocator<ASAttribute*>>, ASDomain>::value));
}

TEST(Domain, IsDestroyedThroughItsBase) { EXPECT_TRUE(std::has_virtual_destructor<ASDomain>::value); }

TEST(Domain, KeepsColumnsInTheOrderOfTheirAddition) {
  Article const record(1, "a");
  auto column = record.begin();
  EXPECT_EQ(*column++, &record.shopColumn);
  EXPECT_EQ(*column++, &record.priceColumn);
  EXPECT_EQ(*column++, &record.codeColumn);
  EXPECT_EQ(column, record.end());
}

TEST(Domain, AddRegistersTheColumn) {
  ASDomain record;
  ASInt value;
  ASAttribute column("c");
  record.Add(column, value);
  EXPECT_EQ(column.Data(), &value);
  EXPECT_EQ(column.Domain(), &record);
}

TEST(Domain, AddBindsTheValue) {
  ASDomain record;
  ASInt value;
  ASAttribute column("c");
  record.Add(column, value);
  EXPECT_EQ(value.GetName(), "c");
}

TEST(Domain, AddGivesAnEncryptedColumnItsBuffer) {
  ASDomain record;
  ASInt value;
  ASAttribute column("c", "", 0, corvane::kEncrypted);
  record.Add(column, value);
  EXPECT_NE(column.CryptBuffer(), nullptr);
}

TEST(Domain, SimpleQueryIsTheNameAsStored) { EXPECT_EQ(ASDomain("shop.items", "").SimpleQuery(), "shop.items"); }

TEST(Domain, AliasIsTheLetterTAndTheAddress) {
  ASDomain const record("items", "");
  EXPECT_EQ(record.Alias(), ("T" + std::to_string(reinterpret_cast<std::uintptr_t>(&record))).c_str());
}

TEST(Domain, AliasesOfLivingRecordsDiffer) {
  ASDomain const one("items", "");
  ASDomain const other("items", "");
  EXPECT_NE(one.Alias(), other.Alias());
}

TEST(Domain, AliasStaysWhenTheContentChanges) {
  Article record(1, "a");
  Str const before = record.Alias();
  Assign(record, Article(2, "b"));
  EXPECT_EQ(record.Alias(), before);
}

TEST(Domain, AppendAliasAppendsBehindWhatIsThere) {
  ASDomain const record("items", "");
  Str text("SELECT ");
  record.AppendAlias(text);
  EXPECT_EQ(text, ("SELECT T" + std::to_string(reinterpret_cast<std::uintptr_t>(&record))).c_str());
}

TEST(Domain, QueryPutsTheNameBetweenPrefixAndSuffix) {
  ASDomain const record("items", "");
  EXPECT_EQ(record.Query("<", ">"), "<items> " + record.Alias());
}

TEST(Domain, AppendQueryAppendsBehindWhatIsThere) {
  ASDomain const record("items", "");
  Str text("FROM ");
  record.AppendQuery(text, "<", ">");
  EXPECT_EQ(text, "FROM <items> " + record.Alias());
}

TEST(Domain, QueryQuotesEachPartOfAQualifiedName) {
  ASDomain const record("shop.items", "");
  EXPECT_EQ(record.Query("`", "`"), "`shop`.`items` " + record.Alias());
}

TEST(Domain, QueryPutsThePrefixBeforeTheDotAndTheSuffixBehindIt) {
  ASDomain const record("shop.items", "");
  EXPECT_EQ(record.Query("<", ">"), "<shop<.>items> " + record.Alias());
}

TEST(Domain, QueryQuotesAroundEveryDot) {
  ASDomain const record("a.b..c", "");
  EXPECT_EQ(record.Query("`", "`"), "`a`.`b`.``.`c` " + record.Alias());
}

TEST(Domain, QueryWithEmptyPrefixAndSuffixIsTheNameAndTheAlias) {
  ASDomain const record("a.b", "");
  EXPECT_EQ(record.Query("", ""), "a.b " + record.Alias());
}

TEST(Domain, QueryWithNullPrefixAndSuffixIsTheNameAndTheAlias) {
  ASDomain const record("a.b", "");
  EXPECT_EQ(record.Query(Str(), Str()), "a.b " + record.Alias());
}

TEST(Domain, QueryLeavesTheNameAsItIs) {
  ASDomain const record("shop.items", "");
  record.Query("`", "`");
  EXPECT_EQ(record.Name(), "shop.items");
}

// ---- null, indicators, padding

TEST(Domain, SetNullReachesEveryValue) {
  Article record(1, "a", 5);
  record.SetNull();
  EXPECT_EQ(record.shop.IsNull(), 1);
  EXPECT_EQ(record.price.IsNull(), 1);
  EXPECT_EQ(record.code.IsNull(), 1);
}

TEST(Domain, SetNullLeavesTheIndicatorsToJustifyNull) {
  Article record(1, "a", 5);
  record.SetNull();
  EXPECT_EQ(*record.shopColumn.IsNullFlag(), 0);
}

TEST(Domain, SetNullPassesOverAColumnWithoutValue) {
  WithGap record;
  record.first = 1;
  record.last = 2;
  record.SetNull();
  EXPECT_EQ(record.first.IsNull(), 1);
  EXPECT_EQ(record.last.IsNull(), 1);
}

TEST(Domain, JustifyNullSetsTheIndicatorOfANull) {
  Article record(1, "a", 5);
  record.price.SetNull();
  record.JustifyNull();
  EXPECT_EQ(*record.shopColumn.IsNullFlag(), 0);
  EXPECT_EQ(*record.priceColumn.IsNullFlag(), -1);
  EXPECT_EQ(*record.codeColumn.IsNullFlag(), 0);
}

TEST(Domain, JustifyNullClearsTheIndicatorOfAValue) {
  Article record(1, "a", 5);
  *record.priceColumn.IsNullFlag() = -1;
  record.JustifyNull();
  EXPECT_EQ(*record.priceColumn.IsNullFlag(), 0);
}

TEST(Domain, JustifyNullPassesOverAColumnWithoutValue) {
  WithGap record;
  record.last = 2;
  record.JustifyNull();
  EXPECT_EQ(*record.firstColumn.IsNullFlag(), -1);
  EXPECT_EQ(*record.lastColumn.IsNullFlag(), 0);
}

TEST(Domain, TrimRemovesThePaddingOfEveryValue) {
  ASDomain record;
  ASStr one(5);
  ASStr other(4);
  ASAttribute oneColumn("one");
  ASAttribute otherColumn("other");
  record.Add(oneColumn, one).Add(otherColumn, other);
  one = "ab";
  other = "xyz";
  record.Trim();
  EXPECT_EQ(one.getstr(), "ab");
  EXPECT_EQ(other.getstr(), "xyz");
}

TEST(Domain, TrimPassesOverAColumnWithoutValue) {
  WithGap record;
  record.first = 1;
  record.last = 2;
  record.Trim();
  EXPECT_EQ(record.last.getstr(), "2");
}

// ---- equality of keys

TEST(DomainEquality, HoldsForEqualKeys) { EXPECT_TRUE(Article(1, "a") == Article(1, "a")); }

TEST(DomainEquality, DoesNotLookAtOtherColumns) { EXPECT_TRUE(Article(1, "a", 5) == Article(1, "a", 6)); }

TEST(DomainEquality, FailsForADifferentFirstKey) { EXPECT_FALSE(Article(1, "a") == Article(2, "a")); }

TEST(DomainEquality, FailsForADifferentLastKey) { EXPECT_FALSE(Article(1, "a") == Article(1, "b")); }

TEST(DomainEquality, DoesNotHoldForRecordsWithoutKeys) {
  Keyless const one;
  Keyless const other;
  EXPECT_FALSE(one == other);
}

TEST(DomainEquality, DoesNotHoldForARecordWithoutKeysAndItself) {
  Keyless const record;
  EXPECT_FALSE(record == record);
}

TEST(DomainEquality, DoesNotHoldForEmptyRecords) { EXPECT_FALSE(ASDomain() == ASDomain()); }

TEST(DomainEquality, HoldsForNullKeys) {
  Single<ASInt> const one;
  Single<ASInt> const other;
  EXPECT_TRUE(one == other);
}

TEST(DomainEquality, FailsForANullKeyAndAValue) {
  Single<ASInt> const null;
  Single<ASInt> zero;
  zero.value = 0;
  EXPECT_FALSE(null == zero);
}

TEST(DomainEquality, DoesNotCountTrailingBlanksOfTexts) {
  Single<ASStr> padded(8U);
  Single<ASVStr> plain(3U);
  padded.value = "ab";
  plain.value = "ab";
  EXPECT_TRUE(padded == plain);
}

TEST(DomainEquality, TakesTheKeysOfTheLeftRecord) {
  Single<ASInt> keyed;
  Keyless keyless;
  keyed.value = 1;
  keyless.value = 1;
  EXPECT_TRUE(keyed == keyless);
  EXPECT_FALSE(keyless == keyed);
}

TEST(DomainEquality, ComparesAsManyColumnsAsBothHave) {
  Single<ASInt> shorter;
  shorter.value = 1;
  EXPECT_TRUE(shorter == Article(1, "a"));
  EXPECT_TRUE(Article(1, "a") == shorter);
}

TEST(DomainEquality, ComparesByPositionAndNotByName) {
  ASDomain renamed;
  ASInt value;
  ASAttribute column("other", "", 0, corvane::kKey);
  renamed.Add(column, value);
  value = 1;
  Single<ASInt> record;
  record.value = 1;
  EXPECT_TRUE(record == renamed);
}

TEST(DomainEquality, HoldsForATimeAndItsCopy) {
  Single<ASTime> record(1000);
  ASDomain const copy(record);
  EXPECT_TRUE(record == copy);
  EXPECT_TRUE(copy == record);
}

TEST(DomainEquality, FailsForAKeyWithoutValue) {
  WithGap const record;
  EXPECT_FALSE(record == record);
}

TEST(DomainEquality, ThrowsForKeysOfUnlikeTypes) {
  Single<ASInt> const number;
  Single<ASInt64> const large;
  EXPECT_EQ(MessageOf([&] { return number == large; }), "Incompatible types for ASInt::operator == (). ");
}

TEST(DomainEquality, HasItsNegation) {
  EXPECT_FALSE(Article(1, "a") != Article(1, "a"));
  EXPECT_TRUE(Article(1, "a") != Article(1, "b"));
  Keyless const record;
  EXPECT_TRUE(record != record);
}

// ---- order of keys

TEST(DomainOrder, GoesByTheLastKeyWhenTheFirstAreEqual) {
  EXPECT_TRUE(Article(1, "a") < Article(1, "b"));
  EXPECT_FALSE(Article(1, "b") < Article(1, "a"));
}

TEST(DomainOrder, GoesByTheFirstKeyThatDiffers) {
  EXPECT_FALSE(Article(2, "a") < Article(1, "z"));
  EXPECT_TRUE(Article(1, "z") < Article(2, "a"));
}

TEST(DomainOrder, PutsNeitherOfEqualKeysFirst) { EXPECT_FALSE(Article(1, "a") < Article(1, "a")); }

TEST(DomainOrder, DoesNotLookAtOtherColumns) {
  EXPECT_FALSE(Article(1, "a", 5) < Article(1, "a", 6));
  EXPECT_TRUE(Article(1, "a", 6) < Article(1, "b", 5));
}

TEST(DomainOrder, PutsNeitherOfRecordsWithoutKeysFirst) {
  Keyless one;
  Keyless other;
  one.value = 1;
  other.value = 2;
  EXPECT_FALSE(one < other);
  EXPECT_FALSE(other < one);
}

TEST(DomainOrder, PutsNullBeforeEveryValue) {
  Single<ASInt64> const null;
  Single<ASInt64> smallest;
  smallest.value = LONG_MIN + 1;
  EXPECT_TRUE(null < smallest);
  EXPECT_FALSE(smallest < null);
}

// Whose copy holds the lowest number: it must be found by the original.
TEST(DomainOrder, PutsANullInt64WhereItsCopyIs) {
  Single<ASInt64> const null;
  ASDomain const copy(null);
  EXPECT_FALSE(null < copy);
  EXPECT_FALSE(copy < null);
}

TEST(DomainOrder, PutsNullTextsBeforeEmptyOnes) {
  Single<ASVStr> const null(4U);
  Single<ASVStr> empty(4U);
  empty.value = "";
  EXPECT_TRUE(null < empty);
  EXPECT_FALSE(empty < null);
}

TEST(DomainOrder, PutsNeitherOfNullKeysFirst) {
  Single<ASVStr> const one(4U);
  Single<ASVStr> const other(4U);
  EXPECT_FALSE(one < other);
  EXPECT_FALSE(other < one);
}

TEST(DomainOrder, PutsAKeyWithoutValueBeforeAValue) {
  WithGap const gap;
  Article record(0, "a");
  record.price = 1;
  record.priceColumn.SetKey(corvane::kKey);
  record.shop.SetNull();
  EXPECT_TRUE(gap < record);
  EXPECT_FALSE(record < gap);
}

TEST(DomainOrder, PutsNeitherOfKeysWithoutValueFirst) {
  WithGap const one;
  WithGap const other;
  EXPECT_FALSE(one < other);
}

TEST(DomainOrder, TakesTheKeysOfTheLeftRecord) {
  Single<ASInt> keyed;
  Keyless keyless;
  keyed.value = 1;
  keyless.value = 2;
  EXPECT_TRUE(keyed < keyless);
  EXPECT_FALSE(keyless < keyed);
}

TEST(DomainOrder, ComparesAsManyColumnsAsBothHave) {
  Single<ASInt> shorter;
  shorter.value = 1;
  EXPECT_FALSE(shorter < Article(1, "a"));
  EXPECT_FALSE(Article(1, "a") < shorter);
  EXPECT_TRUE(shorter < Article(2, "a"));
}

TEST(DomainOrder, ThrowsForKeysOfUnlikeTypes) {
  Single<ASInt> const number;
  Single<ASInt64> const large;
  EXPECT_EQ(MessageOf([&] { return number < large; }), "Incompatible types for ASInt::operator < (). ");
}

TEST(DomainOrder, HasAllFourRelations) {
  EXPECT_TRUE(Article(2, "a") > Article(1, "a"));
  EXPECT_FALSE(Article(1, "a") > Article(1, "a"));
  EXPECT_TRUE(Article(1, "a") <= Article(1, "a"));
  EXPECT_FALSE(Article(2, "a") <= Article(1, "a"));
  EXPECT_TRUE(Article(1, "a") >= Article(1, "a"));
  EXPECT_FALSE(Article(1, "a") >= Article(2, "a"));
}

// ---- copies

TEST(DomainCopy, TakesTheNameAndIsLabelledCopy) {
  Article const record(1, "a");
  ASDomain const copy(record);
  EXPECT_EQ(copy.Name(), "article");
  EXPECT_EQ(copy.Label(), "COPY");
}

TEST(DomainCopy, OfAnEmptyRecordIsEmptyAndLabelledCopy) {
  ASDomain const record("items", "Items");
  ASDomain const copy(record);
  EXPECT_TRUE(copy.empty());
  EXPECT_EQ(copy.Name(), "items");
  EXPECT_EQ(copy.Label(), "COPY");
}

TEST(DomainCopy, HasEveryColumnInOrder) {
  Article const record(1, "a", 5);
  ASDomain const copy(record);
  ASSERT_EQ(copy.size(), 3U);
  auto column = copy.begin();
  EXPECT_EQ((*column++)->Name(), "shop");
  EXPECT_EQ((*column++)->Name(), "price");
  EXPECT_EQ((*column)->Name(), "code");
}

TEST(DomainCopy, HasColumnsAndValuesOfItsOwn) {
  Single<ASInt> const record;
  ASDomain const copy(record);
  EXPECT_NE(copy.front(), record.front());
  EXPECT_NE(copy.front()->Data(), record.front()->Data());
}

TEST(DomainCopy, TakesLabelsAndTagsOfTheColumns) {
  Single<ASInt> const record;
  ASDomain const copy(record);
  EXPECT_EQ(copy.front()->Label(), "Column");
  EXPECT_EQ(copy.front()->ACType(), 7);
}

TEST(DomainCopy, RegistersTheColumnsToItself) {
  Single<ASInt> const record;
  ASDomain const copy(record);
  EXPECT_EQ(copy.front()->Domain(), &copy);
}

TEST(DomainCopy, BindsTheValuesToItsColumns) {
  Single<ASInt> const record;
  ASDomain const copy(record);
  EXPECT_EQ(FirstValue(copy).GetName(), "c");
  EXPECT_EQ(FirstValue(copy).GetACType(), 7);
}

TEST(DomainCopy, KeepsOfTheFlagsTheKeyAlone) {
  Single<ASInt> record;
  record.column.SetKey(2 | 4 | 16 | 0x400);
  ASDomain const copy(record);
  EXPECT_EQ(copy.front()->CheckKey(-1), 1);
}

TEST(DomainCopy, OfAColumnThatIsNoKeyHasNoFlags) {
  Keyless record;
  record.column.SetKey(2 | 4 | 16);
  ASDomain const copy(record);
  EXPECT_EQ(copy.front()->CheckKey(-1), 0);
}

TEST(DomainCopy, OfAnEncryptedColumnHasNoBuffer) {
  ASDomain record;
  ASInt value;
  ASAttribute column("c", "", 0, corvane::kEncrypted);
  record.Add(column, value);
  EXPECT_EQ(ASDomain(record).front()->CryptBuffer(), nullptr);
}

TEST(DomainCopy, KeepsItsValuesWhenTheRecordChanges) {
  Single<ASVStr> record(8U);
  record.value = "before";
  ASDomain const copy(record);
  record.value = "after";
  EXPECT_EQ(FirstValue(copy).getstr(), "before");
}

TEST(DomainCopy, OutlivesTheRecord) {
  auto* const record = new Single<ASVStr>(8U);
  record->value = "text";
  ASDomain const copy(*record);
  delete record;
  EXPECT_EQ(copy.front()->Name(), "c");
  EXPECT_EQ(FirstValue(copy).getstr(), "text");
  EXPECT_EQ(FirstValue(copy).GetName(), "c");
}

TEST(DomainCopy, OfACopyIsAsGood) {
  Article const record(1, "a", 5);
  ASDomain const copy(record);
  ASDomain const second(copy);
  EXPECT_EQ(second.Label(), "COPY");
  EXPECT_TRUE(second == record);
}

TEST(DomainCopy, HoldsInts) {
  Single<ASInt> record;
  record.value = -5;
  ASDomain const copy(record);
  EXPECT_TRUE(FirstValueIs<ASInt>(copy));
  EXPECT_EQ(FirstValue(copy).getstr(), "-5");
}

TEST(DomainCopy, HoldsNullInts) {
  Single<ASInt> const record;
  ASDomain const copy(record);
  EXPECT_EQ(FirstValue(copy).IsNull(), 1);
}

// The store of a cache knows times by their number only.
TEST(Domain, CloneKeepsThePlacesOfEntriesThatAreNoColumns) {
  WithGap record;
  *std::next(record.begin()) = nullptr;
  record.last = 5;
  ASDomain const copy(record);
  ASSERT_EQ(copy.size(), 3U);
  EXPECT_EQ(*std::next(copy.begin()), nullptr);
  EXPECT_EQ(copy.back()->Data()->getstr(), "5");
}

TEST(Domain, CloneTurnsTimesIntoInts) {
  Single<ASTime> const record(1088689500);
  ASDomain const copy(record);
  EXPECT_TRUE(FirstValueIs<ASInt>(copy));
  EXPECT_EQ(FirstValue(copy).getstr(), "1088689500");
}

TEST(DomainCopy, HoldsNullTimesAsNullInts) {
  Single<ASTime> const record;
  ASDomain const copy(record);
  EXPECT_TRUE(FirstValueIs<ASInt>(copy));
  EXPECT_EQ(FirstValue(copy).IsNull(), 1);
}

TEST(DomainCopy, HoldsDoubles) {
  Single<ASDouble> record;
  record.value = 0.1;
  ASDomain const copy(record);
  EXPECT_TRUE(FirstValueIs<ASDouble>(copy));
  EXPECT_EQ(FirstValue(copy).getstr(), "0.1");
}

TEST(DomainCopy, HoldsNullDoubles) {
  Single<ASDouble> const record;
  ASDomain const copy(record);
  EXPECT_EQ(FirstValue(copy).IsNull(), 1);
}

TEST(DomainCopy, HoldsAmountsOfMoney) {
  Single<ASDCurrency> record;
  record.value = 12.5;
  ASDomain const copy(record);
  EXPECT_TRUE(FirstValueIs<ASDCurrency>(copy));
  EXPECT_EQ(FirstValue(copy).getstr(), "12.5");
}

TEST(DomainCopy, HoldsNullAmountsOfMoney) {
  Single<ASDCurrency> const record;
  ASDomain const copy(record);
  EXPECT_TRUE(FirstValueIs<ASDCurrency>(copy));
  EXPECT_EQ(FirstValue(copy).IsNull(), 1);
}

TEST(DomainCopy, HoldsInt64s) {
  Single<ASInt64> record;
  record.value = 9007199254740993L;
  ASDomain const copy(record);
  EXPECT_TRUE(FirstValueIs<ASInt64>(copy));
  EXPECT_EQ(FirstValue(copy).getstr(), "9007199254740993");
}

// A plain number carries no null state.
TEST(Domain, CloneTurnsANullInt64IntoANumber) {
  Single<ASInt64> record;
  record.value = 5L;
  record.value.SetNull();
  ASDomain const copy(record);
  EXPECT_EQ(FirstValue(copy).IsNull(), 0);
  EXPECT_EQ(FirstValue(copy).getstr(), "-9223372036854775808");
}

TEST(DomainCopy, HoldsTextsWithTheirPadding) {
  Single<ASStr> record(5U);
  record.value = "ab";
  ASDomain const copy(record);
  EXPECT_TRUE(FirstValueIs<ASStr>(copy));
  EXPECT_EQ(FirstValue(copy).GetSize(), 5);
  EXPECT_EQ(FirstValue(copy).getstr(), "ab   ");
}

TEST(DomainCopy, HoldsVariableTextsWithoutPadding) {
  Single<ASVStr> record(5U);
  record.value = "ab";
  ASDomain const copy(record);
  EXPECT_TRUE(FirstValueIs<ASVStr>(copy));
  EXPECT_EQ(FirstValue(copy).GetSize(), 5);
  EXPECT_EQ(FirstValue(copy).getstr(), "ab");
}

TEST(DomainCopy, HoldsNullTexts) {
  Single<ASStr> const fixed(5U);
  Single<ASVStr> const variable(5U);
  EXPECT_EQ(FirstValue(ASDomain(fixed)).IsNull(), 1);
  EXPECT_EQ(FirstValue(ASDomain(variable)).IsNull(), 1);
}

TEST(DomainCopy, HoldsEmptyTexts) {
  Single<ASVStr> record(5U);
  record.value = "";
  ASDomain const copy(record);
  EXPECT_EQ(FirstValue(copy).IsNull(), 0);
  EXPECT_EQ(FirstValue(copy).getstr(), "");
}

TEST(DomainCopy, HoldsTextsWithoutCapacity) {
  Single<ASStr> record(0U);
  record.value = "lost";
  ASDomain const copy(record);
  EXPECT_EQ(FirstValue(copy).GetSize(), 0);
  EXPECT_EQ(FirstValue(copy).getstr(), "");
}

TEST(DomainCopy, HoldsGuids) {
  Single<ASGuid> record;
  record.value = Guid("01234567-89ab-cdef-0123-456789abcdef");
  ASDomain const copy(record);
  EXPECT_TRUE(FirstValueIs<ASGuid>(copy));
  EXPECT_EQ(FirstValue(copy).getstr(), "01234567-89ab-cdef-0123-456789abcdef");
}

TEST(DomainCopy, HoldsNullGuids) {
  Single<ASGuid> const record;
  ASDomain const copy(record);
  EXPECT_EQ(FirstValue(copy).IsNull(), 1);
}

TEST(DomainCopy, HoldsLargeBinaries) {
  Single<ASRealBlob> record(0U);
  record.value = RealBlob(4, "a\0b\xFF");
  ASDomain const copy(record);
  EXPECT_TRUE(FirstValueIs<ASRealBlob>(copy));
  ASSERT_EQ(FirstValue(copy).GetSize(), 4);
  EXPECT_EQ(Bytes(FirstValue(copy).voidptr(), 4), std::string("a\0b\xFF", 4));
}

TEST(DomainCopy, HoldsNullLargeBinaries) {
  Single<ASRealBlob> const record(0U);
  ASDomain const copy(record);
  EXPECT_TRUE(FirstValueIs<ASRealBlob>(copy));
  EXPECT_EQ(FirstValue(copy).IsNull(), 1);
}

TEST(DomainCopy, HoldsEmptyLargeBinaries) {
  Single<ASRealBlob> record(0U);
  record.value = RealBlob(0, "");
  ASDomain const copy(record);
  EXPECT_EQ(FirstValue(copy).IsNull(), 0);
  EXPECT_EQ(FirstValue(copy).GetSize(), 0);
}

TEST(DomainCopy, HoldsSmallBinariesWithTheirCapacity) {
  Single<ASBlob> record(std::uint16_t{8});
  record.value.Fill("a\0b", 3);
  ASDomain const copy(record);
  EXPECT_TRUE(FirstValueIs<ASBlob>(copy));
  EXPECT_EQ(FirstValue(copy).GetSize(), 8);
  EXPECT_EQ(FirstValue(copy).size(), 3);
  EXPECT_TRUE(FirstValue(copy) == static_cast<basic_type const&>(record.value));
}

TEST(DomainCopy, HoldsNullSmallBinaries) {
  Single<ASBlob> const record(std::uint16_t{8});
  ASDomain const copy(record);
  EXPECT_EQ(FirstValue(copy).GetSize(), 8);
  EXPECT_EQ(FirstValue(copy).IsNull(), 1);
}

TEST(DomainCopy, HoldsSmallBinariesOfTheLargestCapacity) {
  Single<ASBlob> record(std::uint16_t{65535});
  record.value.Fill(std::string(65535, 'x').data(), 65535);
  ASDomain const copy(record);
  EXPECT_EQ(FirstValue(copy).GetSize(), 65535);
  EXPECT_EQ(FirstValue(copy).size(), 65535);
}

TEST(DomainCopy, HoldsGeometriesWithTheirCapacity) {
  Single<ASGeometry> record(std::uint16_t{21});
  record.value.Fill("\1\1\0\0\0", 5);
  ASDomain const copy(record);
  EXPECT_TRUE(FirstValueIs<ASGeometry>(copy));
  EXPECT_EQ(FirstValue(copy).GetSize(), 21);
  EXPECT_EQ(FirstValue(copy).size(), 5);
  EXPECT_TRUE(FirstValue(copy) == static_cast<basic_type const&>(record.value));
}

TEST(DomainCopy, HoldsNullGeometries) {
  Single<ASGeometry> const record(std::uint16_t{21});
  ASDomain const copy(record);
  EXPECT_TRUE(FirstValueIs<ASGeometry>(copy));
  EXPECT_EQ(FirstValue(copy).IsNull(), 1);
}

TEST(DomainCopy, HasNoValueWhereTheRecordHasNone) {
  WithGap record;
  record.last = 2;
  ASDomain const copy(record);
  ASSERT_EQ(copy.size(), 3U);
  ASAttribute const& gap = **++copy.begin();
  EXPECT_EQ(gap.Data(), nullptr);
  EXPECT_EQ(gap.Name(), "gap");
  EXPECT_EQ(gap.ACType(), 3);
  EXPECT_EQ(gap.Domain(), &copy);
  EXPECT_EQ(copy.back()->Data()->getstr(), "2");
}

TEST(DomainCopy, HoldsAnApplicationsOwnClassAsTheColumnItDerivesFrom) {
  Single<Currency> record;
  record.value = "EUR";
  ASDomain const copy(record);
  EXPECT_TRUE(FirstValueIs<ASVStr>(copy));
  EXPECT_EQ(FirstValue(copy).getstr(), "EUR");
}

TEST(DomainCopy, HoldsABinaryOfUnknownTypeAsABinary) {
  Single<BlobOfUnknownType> record;
  record.value.Fill("ab", 2);
  ASDomain const copy(record);
  EXPECT_TRUE(FirstValueIs<ASBlob>(copy));
  EXPECT_EQ(FirstValue(copy).size(), 2);
}

TEST(DomainCopy, RefusesAValueThatIsNotOfItsTypeCode) {
  EXPECT_THROW(ASDomain{static_cast<ASDomain const&>(Single<IntCalledInt64>())}, AException);
  EXPECT_THROW(ASDomain{static_cast<ASDomain const&>(Single<IntCalledGuid>())}, AException);
  EXPECT_THROW(ASDomain{static_cast<ASDomain const&>(Single<Int64CalledInt>())}, AException);
}

TEST(DomainCopy, RefusesAValueOfUnknownTypeThatIsNoBinary) {
  EXPECT_THROW(ASDomain{static_cast<ASDomain const&>(Single<IntOfUnknownType>())}, AException);
}

TEST(DomainCopy, NamesItselfInWhatItThrows) {
  Single<IntCalledInt64> const record;
  EXPECT_EQ(MessageOf([&] { ASDomain{static_cast<ASDomain const&>(record)}; }),
            "Incompatible types for ASDomain::ASDomain(). ");
}

// What was copied before the refusal is freed, which a leak checker sees.
TEST(DomainCopy, RefusedMidwayLeavesNothingBehind) {
  ASDomain record;
  ASVStr text(100);
  IntCalledInt64 refused;
  ASAttribute textColumn("text");
  ASAttribute refusedColumn("refused");
  record.Add(textColumn, text).Add(refusedColumn, refused);
  EXPECT_THROW(ASDomain{static_cast<ASDomain const&>(record)}, AException);
  EXPECT_EQ(record.size(), 2U);
}

// ---- ownership

TEST(Domain, LeavesColumnsAndValuesOfTheApplicationAlone) {
  int values = 0;
  int columns = 0;
  Counted value(values);
  CountedColumn column(columns);
  {
    ASDomain record("items", "Items");
    record.Add(column, value);
  }
  EXPECT_EQ(values, 1);
  EXPECT_EQ(columns, 1);
}

TEST(Domain, TheLabelCopyAloneMeansOwnership) {
  int values = 0;
  int columns = 0;
  {
    ASDomain record("items", "COPY");
    record.Add(*new CountedColumn(columns), *new Counted(values));
    record.Add(*new CountedColumn(columns), *new Counted(values));
    EXPECT_EQ(values, 2);
    EXPECT_EQ(columns, 2);
  }
  EXPECT_EQ(values, 0);
  EXPECT_EQ(columns, 0);
}

TEST(Domain, LabelThatOnlyResemblesCopyMeansNothing) {
  int values = 0;
  int columns = 0;
  Counted value(values);
  CountedColumn column(columns);
  {
    ASDomain record("items", "copy");
    record.Add(column, value);
  }
  {
    ASDomain record("items", "COPY ");
    record.Add(column, value);
  }
  EXPECT_EQ(values, 1);
  EXPECT_EQ(columns, 1);
}

TEST(Domain, OwnerPassesOverMissingColumnsAndValues) {
  int columns = 0;
  {
    ASDomain record("items", "COPY");
    record.push_back(nullptr);
    record.push_back(new CountedColumn(columns));
  }
  EXPECT_EQ(columns, 0);
}

// ---- assignment to an empty record

TEST(DomainAssignmentToEmpty, LabelsTheRecordCopyAndLeavesItsName) {
  ASDomain target("mine", "Mine");
  target = Article(1, "a");
  EXPECT_EQ(target.Label(), "COPY");
  EXPECT_EQ(target.Name(), "mine");
}

TEST(DomainAssignmentToEmpty, GivesColumnsOfItsOwn) {
  Single<ASVStr> record(8U);
  record.value = "text";
  ASDomain target;
  target = record;
  ASSERT_EQ(target.size(), 1U);
  EXPECT_NE(target.front(), &record.column);
  EXPECT_EQ(target.front()->Name(), "c");
  EXPECT_EQ(target.front()->Label(), "Column");
  EXPECT_EQ(target.front()->ACType(), 7);
  EXPECT_EQ(target.front()->Domain(), &target);
  EXPECT_EQ(FirstValue(target).getstr(), "text");
  EXPECT_EQ(FirstValue(target).GetName(), "c");
}

TEST(DomainAssignmentToEmpty, KeepsOfTheFlagsTheKeyAlone) {
  Single<ASInt> record;
  record.column.SetKey(2 | 4 | 16);
  ASDomain target;
  target = record;
  EXPECT_EQ(target.front()->CheckKey(-1), 1);
}

TEST(DomainAssignmentToEmpty, TurnsTimesIntoInts) {
  Single<ASTime> const record(1000);
  ASDomain target;
  target = record;
  EXPECT_TRUE(FirstValueIs<ASInt>(target));
  EXPECT_EQ(FirstValue(target).getstr(), "1000");
}

TEST(DomainAssignmentToEmpty, LabelsTheRecordCopyEvenWhenThereIsNothingToCopy) {
  ASDomain target("mine", "Mine");
  target = ASDomain("other", "Other");
  EXPECT_EQ(target.Label(), "COPY");
  EXPECT_TRUE(target.empty());
}

TEST(DomainAssignmentToEmpty, OfItselfDoesNothing) {
  ASDomain target("mine", "Mine");
  ASDomain const& same = target;
  target = same;
  EXPECT_EQ(target.Label(), "Mine");
}

TEST(DomainAssignmentToEmpty, ReturnsTheRecord) {
  ASDomain target;
  EXPECT_EQ(&(target = Article(1, "a")), &target);
}

TEST(DomainAssignmentToEmpty, RefusedMidwayKeepsAndOwnsWhatWasCopied) {
  ASDomain record;
  ASInt number;
  IntCalledInt64 refused;
  ASAttribute numberColumn("number");
  ASAttribute refusedColumn("refused");
  record.Add(numberColumn, number).Add(refusedColumn, refused);
  number = 5;
  ASDomain target;
  EXPECT_THROW(target = record, AException);
  EXPECT_EQ(target.Label(), "COPY");
  ASSERT_EQ(target.size(), 1U);
  EXPECT_EQ(FirstValue(target).getstr(), "5");
}

// ---- assignment of values

TEST(DomainAssignment, TakesEveryValue) {
  Article target(1, "a", 5);
  Assign(target, Article(2, "b", 6));
  EXPECT_EQ(target.shop.getstr(), "2");
  EXPECT_EQ(target.price.getstr(), "6");
  EXPECT_EQ(target.code.getstr(), "b");
}

TEST(DomainAssignment, ReturnsTheRecord) {
  Article target(1, "a");
  EXPECT_EQ(&(static_cast<ASDomain&>(target) = Article(2, "b")), &target);
}

TEST(DomainAssignment, LeavesNameAndLabel) {
  Single<ASInt> target;
  Assign(target, Article(2, "b"));
  EXPECT_EQ(target.Name(), "single");
  EXPECT_EQ(target.Label(), "Single");
}

TEST(DomainAssignment, LeavesTheColumnsAsTheyAre) {
  Single<ASInt> target;
  Assign(target, Keyless());
  EXPECT_EQ(target.front(), &target.column);
  EXPECT_EQ(target.column.Name(), "c");
  EXPECT_EQ(target.column.CheckKey(-1), 1);
  EXPECT_EQ(target.column.Data(), &target.value);
  EXPECT_EQ(target.column.Domain(), &target);
}

TEST(DomainAssignment, LeavesTheValuesBound) {
  Single<ASInt> target;
  Assign(target, Keyless());
  EXPECT_EQ(target.value.GetName(), "c");
}

TEST(DomainAssignment, ToItselfChangesNothing) {
  Article record(1, "a", 5);
  Assign(record, record);
  EXPECT_EQ(record.Label(), "Article");
  EXPECT_EQ(record.size(), 3U);
  EXPECT_EQ(record.code.getstr(), "a");
}

TEST(DomainAssignment, LeavesFurtherColumnsOfTheTargetAlone) {
  Article target(1, "a", 5);
  Single<ASInt> source;
  source.value = 2;
  Assign(target, source);
  EXPECT_EQ(target.shop.getstr(), "2");
  EXPECT_EQ(target.price.getstr(), "5");
  EXPECT_EQ(target.code.getstr(), "a");
}

TEST(DomainAssignment, LeavesFurtherColumnsOfTheSourceOut) {
  Single<ASInt> target;
  Assign(target, Article(2, "b", 6));
  EXPECT_EQ(target.size(), 1U);
  EXPECT_EQ(target.value.getstr(), "2");
}

TEST(DomainAssignment, FromAnEmptyRecordChangesNothing) {
  Article target(1, "a", 5);
  Assign(target, ASDomain("other", "Other"));
  EXPECT_EQ(target.shop.getstr(), "1");
  EXPECT_EQ(target.Label(), "Article");
}

TEST(DomainAssignment, ClearsTheNullOfTheTarget) {
  Article target(1, "a", 5);
  target.SetNull();
  Assign(target, Article(2, "b", 6));
  EXPECT_EQ(target.shop.IsNull(), 0);
  EXPECT_EQ(target.code.IsNull(), 0);
}

TEST(DomainAssignment, TakesNullInts) {
  Single<ASInt> target;
  target.value = 1;
  Assign(target, Single<ASInt>());
  EXPECT_EQ(target.value.IsNull(), 1);
}

TEST(DomainAssignment, TakesTimes) {
  Single<ASTime> target;
  Assign(target, Single<ASTime>(1088689500));
  EXPECT_EQ(target.value.getstr(), "2004-07-01 13:45:00");
}

TEST(DomainAssignment, TakesTheIntsOfACopyIntoTimes) {
  Single<ASTime> const source(1088689500);
  ASDomain const copy(source);
  Single<ASTime> target;
  Assign(target, copy);
  EXPECT_EQ(target.value.getstr(), "2004-07-01 13:45:00");
}

TEST(DomainAssignment, TakesTimesIntoTheIntsOfACopy) {
  Single<ASTime> const source(1088689500);
  ASDomain copy((Single<ASTime>()));
  Assign(copy, source);
  EXPECT_EQ(FirstValue(copy).getstr(), "1088689500");
  EXPECT_EQ(copy.Label(), "COPY");
}

TEST(DomainAssignment, TakesDoubles) {
  Single<ASDouble> source;
  Single<ASDouble> target;
  source.value = 1234567.891;
  Assign(target, source);
  EXPECT_EQ(target.value.getstr(), "1234567.891");
}

TEST(DomainAssignment, TakesNullDoubles) {
  Single<ASDouble> target;
  target.value = 1.5;
  Assign(target, Single<ASDouble>());
  EXPECT_EQ(target.value.IsNull(), 1);
}

TEST(DomainAssignment, TakesAmountsOfMoney) {
  Single<ASDCurrency> source;
  Single<ASDCurrency> target;
  source.value = 12.5;
  Assign(target, source);
  EXPECT_EQ(target.value.getstr(), "12.5");
}

TEST(DomainAssignment, TakesInt64s) {
  Single<ASInt64> source;
  Single<ASInt64> target;
  source.value = 9007199254740993L;
  Assign(target, source);
  EXPECT_EQ(target.value.getstr(), "9007199254740993");
  EXPECT_EQ(target.value.IsNull(), 0);
}

TEST(DomainAssignment, TakesNullInt64s) {
  Single<ASInt64> target;
  target.value = 5L;
  Assign(target, Single<ASInt64>());
  EXPECT_EQ(target.value.IsNull(), 1);
}

TEST(DomainAssignment, TakesGuids) {
  Single<ASGuid> source;
  Single<ASGuid> target;
  source.value = Guid("01234567-89ab-cdef-0123-456789abcdef");
  Assign(target, source);
  EXPECT_EQ(target.value.getstr(), "01234567-89ab-cdef-0123-456789abcdef");
}

TEST(DomainAssignment, TakesNullGuids) {
  Single<ASGuid> target;
  target.value = Guid("01234567-89ab-cdef-0123-456789abcdef");
  Assign(target, Single<ASGuid>());
  EXPECT_EQ(target.value.IsNull(), 1);
  EXPECT_EQ(target.value.getstr(), "00000000-0000-0000-0000-000000000000");
}

TEST(DomainAssignment, PadsTextsToTheTargetsCapacity) {
  Single<ASVStr> source(8U);
  Single<ASStr> target(5U);
  source.value = "ab";
  Assign(target, source);
  EXPECT_EQ(target.value.getstr(), "ab   ");
}

TEST(DomainAssignment, TakesThePaddingOfTextsOver) {
  Single<ASStr> source(5U);
  Single<ASVStr> target(8U);
  source.value = "ab";
  Assign(target, source);
  EXPECT_EQ(target.value.getstr(), "ab   ");
}

TEST(DomainAssignment, CutsTextsAtTheTargetsCapacity) {
  Single<ASVStr> source(8U);
  Single<ASVStr> target(3U);
  source.value = "abcdef";
  Assign(target, source);
  EXPECT_EQ(target.value.getstr(), "abc");
}

TEST(DomainAssignment, LeavesNothingOfALongerText) {
  Single<ASVStr> source(8U);
  Single<ASVStr> target(8U);
  source.value = "xy";
  target.value = "abcdef";
  Assign(target, source);
  EXPECT_EQ(target.value.getstr(), "xy");
}

TEST(DomainAssignment, TakesNullTexts) {
  Single<ASVStr> variable(8U);
  Single<ASStr> fixed(8U);
  variable.value = "text";
  fixed.value = "text";
  Assign(variable, Single<ASVStr>(8U));
  Assign(fixed, Single<ASVStr>(8U));
  EXPECT_EQ(variable.value.IsNull(), 1);
  EXPECT_EQ(fixed.value.IsNull(), 1);
}

TEST(DomainAssignment, TakesEmptyTexts) {
  Single<ASVStr> source(8U);
  Single<ASVStr> target(8U);
  source.value = "";
  Assign(target, source);
  EXPECT_EQ(target.value.IsNull(), 0);
  EXPECT_EQ(target.value.getstr(), "");
}

TEST(DomainAssignment, TakesLargeBinaries) {
  Single<ASRealBlob> source(0U);
  Single<ASRealBlob> target(0U);
  source.value = RealBlob(3, "a\0b");
  Assign(target, source);
  ASSERT_EQ(target.value.Length(), 3U);
  EXPECT_NE(target.value.voidptr(), source.value.voidptr());
  EXPECT_EQ(Bytes(target.value.voidptr(), 3), std::string("a\0b", 3));
}

TEST(DomainAssignment, TakesNullLargeBinaries) {
  Single<ASRealBlob> target(4U);
  Assign(target, Single<ASRealBlob>(0U));
  EXPECT_EQ(target.value.IsNull(), 1);
}

TEST(DomainAssignment, TakesSmallBinaries) {
  Single<ASBlob> source(std::uint16_t{8});
  Single<ASBlob> target(std::uint16_t{8});
  source.value.Fill("a\0b", 3);
  Assign(target, source);
  ASSERT_EQ(target.value.size(), 3);
  EXPECT_EQ(Bytes(target.value.Bytes(), 3), std::string("a\0b", 3));
}

TEST(DomainAssignment, CutsSmallBinariesAtTheTargetsCapacity) {
  Single<ASBlob> source(std::uint16_t{8});
  Single<ASBlob> target(std::uint16_t{4});
  source.value.Fill("abcdef", 6);
  Assign(target, source);
  ASSERT_EQ(target.value.size(), 4);
  EXPECT_EQ(Bytes(target.value.Bytes(), 4), "abcd");
}

TEST(DomainAssignment, TakesGeometries) {
  Single<ASGeometry> source(std::uint16_t{21});
  Single<ASGeometry> target(std::uint16_t{21});
  source.value.Fill("\1\3\0\0\0", 5);
  Assign(target, source);
  ASSERT_EQ(target.value.size(), 5);
  EXPECT_EQ(Bytes(target.value.Bytes(), 5), std::string("\1\3\0\0\0", 5));
}

TEST(DomainAssignment, TakesNullGeometries) {
  Single<ASGeometry> target(std::uint16_t{21});
  target.value.Fill("\1\3\0\0\0", 5);
  Assign(target, Single<ASGeometry>(std::uint16_t{21}));
  EXPECT_EQ(target.value.IsNull(), 1);
}

TEST(DomainAssignment, PassesOverColumnsWithoutValue) {
  WithGap source;
  WithGap target;
  source.first = 1;
  source.last = 2;
  Assign(target, source);
  EXPECT_EQ(target.first.getstr(), "1");
  EXPECT_EQ(target.last.getstr(), "2");
}

TEST(DomainAssignment, RefusesNumbersOfDifferentWidth) {
  Single<ASInt> number;
  Single<ASInt64> large;
  EXPECT_EQ(MessageOf([&] { Assign(number, large); }), kIncompatibleAssignment);
  EXPECT_EQ(MessageOf([&] { Assign(large, number); }), kIncompatibleAssignment);
}

TEST(DomainAssignment, RefusesDoublesForAmountsOfMoney) {
  Single<ASDouble> number;
  Single<ASDCurrency> money;
  EXPECT_EQ(MessageOf([&] { Assign(money, number); }), kIncompatibleAssignment);
  EXPECT_EQ(MessageOf([&] { Assign(number, money); }), kIncompatibleAssignment);
}

TEST(DomainAssignment, RefusesTextsForNumbers) {
  Single<ASVStr> text(8U);
  Single<ASInt> number;
  text.value = "5";
  EXPECT_EQ(MessageOf([&] { Assign(number, text); }), kIncompatibleAssignment);
}

TEST(DomainAssignment, RefusesSmallBinariesAndGeometriesForEachOther) {
  Single<ASBlob> binary(std::uint16_t{8});
  Single<ASGeometry> geometry(std::uint16_t{8});
  EXPECT_EQ(MessageOf([&] { Assign(binary, geometry); }), kIncompatibleAssignment);
  EXPECT_EQ(MessageOf([&] { Assign(geometry, binary); }), kIncompatibleAssignment);
}

TEST(DomainAssignment, RefusesSmallBinariesForLargeOnes) {
  Single<ASBlob> small(std::uint16_t{8});
  Single<ASRealBlob> large(0U);
  EXPECT_EQ(MessageOf([&] { Assign(large, small); }), kIncompatibleAssignment);
}

TEST(DomainAssignment, RefusesAValueThatIsNotOfItsTypeCode) {
  Single<ASInt64> large;
  Single<IntCalledInt64> called;
  called.value = 5;
  EXPECT_EQ(MessageOf([&] { Assign(large, called); }), kIncompatibleAssignment);
  EXPECT_EQ(MessageOf([&] { Assign(called, large); }), kIncompatibleAssignment);
  EXPECT_EQ(large.value.IsNull(), 1);
  EXPECT_EQ(called.value.getstr(), "5");
}

TEST(DomainAssignment, RefusesAValueForAColumnWithoutOne) {
  WithGap gap;
  gap.first = 7;
  Article article(1, "a", 5);
  EXPECT_EQ(MessageOf([&] { Assign(article, gap); }), kIncompatibleAssignment);
  EXPECT_EQ(MessageOf([&] { Assign(gap, article); }), kIncompatibleAssignment);
}

TEST(DomainAssignment, RefusedMidwayKeepsTheValuesAlreadyAssigned) {
  Article target(1, "a", 5);
  ASDomain source;
  ASInt shop;
  ASInt64 price;
  ASVStr code(8);
  ASAttribute shopColumn("shop");
  ASAttribute priceColumn("price");
  ASAttribute codeColumn("code");
  source.Add(shopColumn, shop).Add(priceColumn, price).Add(codeColumn, code);
  shop = 2;
  price = 6L;
  code = "b";
  EXPECT_EQ(MessageOf([&] { Assign(target, source); }), kIncompatibleAssignment);
  EXPECT_EQ(target.shop.getstr(), "2");
  EXPECT_EQ(target.price.getstr(), "5");
  EXPECT_EQ(target.code.getstr(), "a");
}

}  // namespace
