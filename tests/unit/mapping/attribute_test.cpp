#include "corvane/mapping/attribute.h"

#include <gtest/gtest.h>
#include <malloc.h>

#include <cstdint>
#include <string>
#include <type_traits>

#include "corvane/data/int.h"
#include "corvane/data/vstr.h"
#include "corvane/mapping/domain.h"

namespace {

// An encrypted column of a text of 24 bytes, in no record.
struct Secret {
  ASVStr value{24};
  ASAttribute column{"secret", "Secret", 0, corvane::kEncrypted};

  Secret() { column.Register(&value, nullptr); }
};

// Tells that it was deleted.
class Deleted : public ASInt {
 public:
  using ASInt::operator=;
  explicit Deleted(bool& deleted) : deleted_(&deleted) {}
  ~Deleted() override { *deleted_ = true; }

 private:
  bool* deleted_;
};

class OfSize : public ASInt {
 public:
  using ASInt::operator=;
  explicit OfSize(int size) : size_(size) {}
  int GetSize() const override { return size_; }

 private:
  int size_;
};

TEST(Attribute, StartsWithEmptyTexts) {
  ASAttribute const column;
  EXPECT_EQ(column.Name(), "");
  EXPECT_EQ(column.Label(), "");
  EXPECT_EQ(column.SimpleQuery(), "");
  EXPECT_EQ(column.Query(), "");
}

TEST(Attribute, StartsWithoutRecordAndValue) {
  ASAttribute const column;
  EXPECT_EQ(column.Domain(), nullptr);
  EXPECT_EQ(column.Data(), nullptr);
}

TEST(Attribute, StartsWithoutTagFlagsAndBuffer) {
  ASAttribute const column;
  EXPECT_EQ(column.ACType(), 0);
  EXPECT_EQ(column.CheckKey(-1), 0);
  EXPECT_EQ(column.CryptBuffer(), nullptr);
}

TEST(Attribute, StartsWithTheNullIndicatorOff) {
  ASAttribute column;
  EXPECT_EQ(*column.IsNullFlag(), 0);
}

TEST(Attribute, TakesANameAlone) {
  ASAttribute const column("id");
  EXPECT_EQ(column.Name(), "id");
  EXPECT_EQ(column.Label(), "");
  EXPECT_EQ(column.ACType(), 0);
  EXPECT_EQ(column.CheckKey(-1), 0);
  EXPECT_EQ(column.Domain(), nullptr);
  EXPECT_EQ(column.Data(), nullptr);
}

TEST(Attribute, DoesNotComeFromATextUnasked) {
  EXPECT_FALSE((std::is_convertible<Str, ASAttribute>::value));
  EXPECT_FALSE((std::is_convertible<char const*, ASAttribute>::value));
}

TEST(Attribute, TakesNameLabelTagAndFlags) {
  ASAttribute const column("id", "Number", -7, 17);
  EXPECT_EQ(column.Name(), "id");
  EXPECT_EQ(column.Label(), "Number");
  EXPECT_EQ(column.ACType(), -7);
  EXPECT_EQ(column.CheckKey(-1), 17);
}

TEST(Attribute, HasNoBufferBeforeItIsRegistered) {
  ASAttribute const column("secret", "Secret", 0, corvane::kEncrypted);
  EXPECT_EQ(column.CryptBuffer(), nullptr);
}

TEST(Attribute, FlagsHaveTheirNumbers) {
  EXPECT_EQ(corvane::kKey, 1);
  EXPECT_EQ(corvane::kEncrypted, 2);
  EXPECT_EQ(corvane::kOptionalSide, 4);
  EXPECT_EQ(corvane::kAutoIncrement, 16);
}

TEST(Attribute, IsAKeyByTheFirstFlag) {
  EXPECT_EQ(ASAttribute("a", "", 0, 1).IsKey(), 1);
  EXPECT_EQ(ASAttribute("a", "", 0, 1 | 2 | 4 | 16).IsKey(), 1);
  EXPECT_EQ(ASAttribute("a", "", 0, 2 | 4 | 16).IsKey(), 0);
}

TEST(Attribute, IsEncryptedByTheSecondFlag) {
  EXPECT_NE(ASAttribute("a", "", 0, 2).IsEncrypted(), 0);
  EXPECT_NE(ASAttribute("a", "", 0, 1 | 2 | 4 | 16).IsEncrypted(), 0);
  EXPECT_EQ(ASAttribute("a", "", 0, 1 | 4 | 16).IsEncrypted(), 0);
}

TEST(Attribute, IsAnAutoIncrementKeyByBothFlags) {
  EXPECT_NE(ASAttribute("a", "", 0, 17).IsAutoIncKey(), 0);
  EXPECT_NE(ASAttribute("a", "", 0, 1 | 2 | 4 | 16).IsAutoIncKey(), 0);
}

TEST(Attribute, IsNoAutoIncrementKeyByOneFlagOfTheTwo) {
  EXPECT_EQ(ASAttribute("a", "", 0, 16).IsAutoIncKey(), 0);
  EXPECT_EQ(ASAttribute("a", "", 0, 1).IsAutoIncKey(), 0);
  EXPECT_EQ(ASAttribute("a", "", 0, 0).IsAutoIncKey(), 0);
}

TEST(Attribute, CheckKeyGivesTheFlagsOfTheMask) {
  ASAttribute const column("a", "", 0, 1 | 16);
  EXPECT_EQ(column.CheckKey(1), 1);
  EXPECT_EQ(column.CheckKey(16), 16);
  EXPECT_EQ(column.CheckKey(17), 17);
  EXPECT_EQ(column.CheckKey(1 | 4), 1);
  EXPECT_EQ(column.CheckKey(2 | 4), 0);
  EXPECT_EQ(column.CheckKey(0), 0);
}

TEST(Attribute, CheckKeyGivesFlagsThatAreTheApplicationsOwn) {
  EXPECT_EQ(ASAttribute("a", "", 0, 0x400).CheckKey(0x400), 0x400);
}

TEST(Attribute, SetKeyAddsFlags) {
  ASAttribute column("a", "", 0, 1);
  column.SetKey(16);
  EXPECT_EQ(column.CheckKey(-1), 17);
  column.SetKey(4 | 1);
  EXPECT_EQ(column.CheckKey(-1), 21);
}

TEST(Attribute, RegisterStoresValueAndRecord) {
  ASDomain record;
  ASInt value;
  ASAttribute column("a");
  EXPECT_EQ(&column.Register(&value, &record), &column);
  EXPECT_EQ(column.Data(), &value);
  EXPECT_EQ(column.Domain(), &record);
}

TEST(Attribute, RegisterDoesNotBindTheValue) {
  ASDomain record;
  ASInt value;
  ASAttribute column("a");
  column.Register(&value, &record);
  EXPECT_EQ(value.GetName(), "EMPTY");
}

TEST(Attribute, RegisterDoesNotAppendTheColumnToTheRecord) {
  ASDomain record;
  ASInt value;
  ASAttribute column("a");
  column.Register(&value, &record);
  EXPECT_TRUE(record.empty());
}

TEST(Attribute, RegisterAgainReplacesValueAndRecord) {
  ASDomain first;
  ASDomain second;
  ASInt one;
  ASInt other;
  ASAttribute column("a");
  column.Register(&one, &first).Register(&other, &second);
  EXPECT_EQ(column.Data(), &other);
  EXPECT_EQ(column.Domain(), &second);
}

TEST(Attribute, RegisterTakesNullPointers) {
  ASDomain record;
  ASInt value;
  ASAttribute column("a");
  column.Register(&value, &record).Register(nullptr, nullptr);
  EXPECT_EQ(column.Data(), nullptr);
  EXPECT_EQ(column.Domain(), nullptr);
}

TEST(Attribute, RegisterGivesNoBufferToAColumnThatIsNotEncrypted) {
  ASInt value;
  ASAttribute column("a", "", 0, corvane::kKey);
  column.Register(&value, nullptr);
  EXPECT_EQ(column.CryptBuffer(), nullptr);
}

TEST(Attribute, RegisterGivesAnEncryptedColumnOneByteMoreThanItsValueHolds) {
  Secret secret;
  ASSERT_NE(secret.column.CryptBuffer(), nullptr);
  EXPECT_GE(malloc_usable_size(secret.column.CryptBuffer()), 25U);
}

TEST(Attribute, RegisterGivesABufferOfTheNewValuesSize) {
  Secret secret;
  ASVStr longer(120);
  secret.column.Register(&longer, nullptr);
  ASSERT_NE(secret.column.CryptBuffer(), nullptr);
  EXPECT_GE(malloc_usable_size(secret.column.CryptBuffer()), 121U);
}

TEST(Attribute, RegisterOfNoValueTakesTheBufferAway) {
  Secret secret;
  secret.column.Register(nullptr, nullptr);
  EXPECT_EQ(secret.column.CryptBuffer(), nullptr);
}

TEST(Attribute, RegisterGivesAValueOfNegativeSizeASmallBuffer) {
  OfSize value(-1000);
  ASAttribute column("secret", "", 0, corvane::kEncrypted);
  column.Register(&value, nullptr);
  ASSERT_NE(column.CryptBuffer(), nullptr);
  EXPECT_LT(malloc_usable_size(column.CryptBuffer()), 64U);
}

TEST(Attribute, QueryWithoutARecordIsTheName) {
  ASInt value;
  ASAttribute column("id");
  column.Register(&value, nullptr);
  EXPECT_EQ(column.Query(), "id");
}

TEST(Attribute, QueryInARecordIsQualifiedByItsAlias) {
  ASDomain record("orders", "Orders");
  ASInt value;
  ASAttribute column("id");
  column.Register(&value, &record);
  EXPECT_EQ(column.Query(), ("T" + std::to_string(reinterpret_cast<std::uintptr_t>(&record)) + ".id").c_str());
}

TEST(Attribute, QueryTellsTheSameThroughTheBase) {
  ASAttribute const column("id");
  ASSimpleAttribute const& base = column;
  EXPECT_EQ(base.Query(), "id");
}

TEST(Attribute, SimpleQueryNeverCarriesTheAlias) {
  ASDomain record("orders", "Orders");
  ASInt value;
  ASAttribute column("id");
  column.Register(&value, &record);
  EXPECT_EQ(column.SimpleQuery(), "id");
}

TEST(Attribute, NameIsTakenAsItStands) { EXPECT_EQ(ASAttribute("a`b'c.d e").SimpleQuery(), "a`b'c.d e"); }

TEST(Attribute, TagIsSeenThroughTheBoundValue) {
  ASInt value;
  ASAttribute column("id", "", 42, 0);
  value.Bind(&column);
  EXPECT_EQ(value.GetACType(), 42);
}

TEST(Attribute, NullIndicatorIsTheApplicationsToWrite) {
  ASAttribute column("a");
  *column.IsNullFlag() = -1;
  EXPECT_EQ(*column.IsNullFlag(), -1);
}

TEST(Attribute, CopyTakesEverythingOver) {
  ASDomain record;
  ASInt value;
  ASAttribute column("id", "Number", 5, 1 | 4 | 16);
  column.Register(&value, &record);
  *column.IsNullFlag() = -1;
  ASAttribute copy(column);
  EXPECT_EQ(copy.Name(), "id");
  EXPECT_EQ(copy.Label(), "Number");
  EXPECT_EQ(copy.ACType(), 5);
  EXPECT_EQ(copy.CheckKey(-1), 21);
  EXPECT_EQ(copy.Data(), &value);
  EXPECT_EQ(copy.Domain(), &record);
  EXPECT_EQ(*copy.IsNullFlag(), -1);
}

TEST(Attribute, CopyHasANullIndicatorOfItsOwn) {
  ASAttribute column("a");
  ASAttribute copy(column);
  *copy.IsNullFlag() = -1;
  EXPECT_EQ(*column.IsNullFlag(), 0);
}

TEST(Attribute, CopyIsNotAppendedToTheRecord) {
  ASDomain record;
  ASInt value;
  ASAttribute column("a");
  record.Add(column, value);
  ASAttribute const copy(column);
  EXPECT_EQ(record.size(), 1U);
  EXPECT_EQ(record.front(), &column);
}

TEST(Attribute, CopyOfAnEncryptedColumnHasABufferOfItsOwn) {
  Secret secret;
  secret.column.CryptBuffer()[0] = 'x';
  ASAttribute const copy(secret.column);
  ASSERT_NE(copy.CryptBuffer(), nullptr);
  EXPECT_NE(copy.CryptBuffer(), secret.column.CryptBuffer());
  EXPECT_GE(malloc_usable_size(copy.CryptBuffer()), 25U);
}

TEST(Attribute, CopyDoesNotTakeTheBuffersContent) {
  Secret secret;
  secret.column.CryptBuffer()[0] = 'x';
  ASAttribute const copy(secret.column);
  EXPECT_NE(copy.CryptBuffer()[0], 'x');
}

TEST(Attribute, CopyOfAColumnWithoutBufferHasNone) {
  ASInt value;
  ASAttribute column("a");
  column.Register(&value, nullptr);
  EXPECT_EQ(ASAttribute(column).CryptBuffer(), nullptr);
}

TEST(Attribute, CopyOfAnEncryptedColumnNotYetRegisteredHasNoBuffer) {
  ASAttribute const column("secret", "", 0, corvane::kEncrypted);
  ASAttribute const copy(column);
  EXPECT_EQ(copy.CryptBuffer(), nullptr);
  EXPECT_NE(copy.IsEncrypted(), 0);
}

TEST(Attribute, AssignmentTakesEverythingOver) {
  ASDomain record;
  ASInt value;
  ASAttribute column("id", "Number", 5, 1 | 4 | 16);
  column.Register(&value, &record);
  *column.IsNullFlag() = -1;
  ASAttribute target("other", "Other", 6, 2);
  target = column;
  EXPECT_EQ(target.Name(), "id");
  EXPECT_EQ(target.Label(), "Number");
  EXPECT_EQ(target.ACType(), 5);
  EXPECT_EQ(target.CheckKey(-1), 21);
  EXPECT_EQ(target.Data(), &value);
  EXPECT_EQ(target.Domain(), &record);
  EXPECT_EQ(*target.IsNullFlag(), -1);
}

TEST(Attribute, AssignmentOfAnEncryptedColumnGivesABuffer) {
  Secret secret;
  ASAttribute target("other");
  target = secret.column;
  ASSERT_NE(target.CryptBuffer(), nullptr);
  EXPECT_NE(target.CryptBuffer(), secret.column.CryptBuffer());
  EXPECT_GE(malloc_usable_size(target.CryptBuffer()), 25U);
}

TEST(Attribute, AssignmentReplacesTheBufferByOneOfTheSourcesSize) {
  Secret secret;
  ASVStr longer(120);
  ASAttribute source("longer", "", 0, corvane::kEncrypted);
  source.Register(&longer, nullptr);
  secret.column = source;
  ASSERT_NE(secret.column.CryptBuffer(), nullptr);
  EXPECT_NE(secret.column.CryptBuffer(), source.CryptBuffer());
  EXPECT_GE(malloc_usable_size(secret.column.CryptBuffer()), 121U);
}

TEST(Attribute, AssignmentOfAColumnWithoutBufferTakesItAway) {
  Secret secret;
  secret.column = ASAttribute("plain");
  EXPECT_EQ(secret.column.CryptBuffer(), nullptr);
}

TEST(Attribute, AssignmentToItselfChangesNothing) {
  Secret secret;
  char* const buffer = secret.column.CryptBuffer();
  ASAttribute const& same = secret.column;
  secret.column = same;
  EXPECT_EQ(secret.column.CryptBuffer(), buffer);
  EXPECT_EQ(secret.column.Name(), "secret");
  EXPECT_EQ(secret.column.Label(), "Secret");
  EXPECT_EQ(secret.column.Data(), &secret.value);
}

TEST(Attribute, DestructorLeavesTheValueAlone) {
  bool deleted = false;
  auto* const value = new Deleted(deleted);
  {
    ASAttribute column("a");
    column.Register(value, nullptr);
  }
  EXPECT_FALSE(deleted);
  delete value;
}

TEST(Attribute, DestructorLeavesTheRecordAlone) {
  ASDomain record("orders", "Orders");
  {
    ASAttribute column("a");
    column.Register(nullptr, &record);
  }
  EXPECT_EQ(record.Name(), "orders");
}

}  // namespace
