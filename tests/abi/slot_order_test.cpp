// The order of the virtual functions, as callers that were built earlier have it compiled in.

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <ostream>
#include <string>

#include "corvane/corvane.h"

namespace corvane::test {
namespace {

constexpr std::size_t kNotVirtual = 999;

// Where the function stands in the table of its class, as the Itanium C++ ABI writes it into a pointer to a virtual
// member: 1 + its offset in bytes. (The addresses of other functions are even.)
template <class Class, class Signature>
std::size_t Slot(Signature Class::*function) {
  std::size_t word = 0;
  static_assert(sizeof function >= sizeof word, "a pointer to member begins with this word");
  std::memcpy(&word, &function, sizeof word);
  return word % 2 == 1 ? (word - 1) / sizeof(void*) : kNotVirtual;
}

// What a derived class adds, it adds behind all that its first base has.
template <class Base>
struct Extended : Base {
  using Base::operator=;
  virtual void Added() = 0;
};

template <class Base>
std::size_t SlotCount() {
  return Slot(&Extended<Base>::Added);
}

struct SlotRow {
  char const* function;
  std::size_t actual;
  std::size_t expected;

  friend std::ostream& operator<<(std::ostream& out, SlotRow const& row) { return out << row.function; }
};

// The two destructors, the complete object's and the deleting one, take the slots 0 and 1 of every class.
class SlotOrder : public testing::TestWithParam<SlotRow> {};

TEST_P(SlotOrder, IsAsRecorded) { EXPECT_EQ(GetParam().actual, GetParam().expected); }

TEST(Slot, OfAFunctionThatIsNotVirtualIsNone) { EXPECT_EQ(Slot(&ASDomain::Trim), kNotVirtual); }

// ---- values

INSTANTIATE_TEST_SUITE_P(
    BasicType, SlotOrder,
    testing::Values(SlotRow{"IsNull", Slot(&basic_type::IsNull), 2},
                    SlotRow{"IsNotNull", Slot(&basic_type::IsNotNull), 3},
                    SlotRow{"SetNull", Slot(&basic_type::SetNull), 4},
                    SlotRow{"GetSize", Slot(&basic_type::GetSize), 5}, SlotRow{"size", Slot(&basic_type::size), 6},
                    SlotRow{"GetType", Slot(&basic_type::GetType), 7}, SlotRow{"getstr", Slot(&basic_type::getstr), 8},
                    SlotRow{"voidptr", Slot(&basic_type::voidptr), 9},
                    SlotRow{"operator==", Slot(&basic_type::operator==), 10},
                    SlotRow{"operator<", Slot(&basic_type::operator<), 11},
                    SlotRow{"copy", Slot(&basic_type::copy), 12}, SlotRow{"end", SlotCount<basic_type>(), 13}));

INSTANTIATE_TEST_SUITE_P(Numeric, SlotOrder, testing::Values(SlotRow{"end", SlotCount<numeric>(), 13}));

// They override those of basic_type and add none.
INSTANTIATE_TEST_SUITE_P(Value, SlotOrder,
                         testing::Values(SlotRow{"Str", SlotCount<Str>(), 13}, SlotRow{"Int", SlotCount<Int>(), 13},
                                         SlotRow{"Int64", SlotCount<Int64>(), 13},
                                         SlotRow{"Double", SlotCount<Double>(), 13},
                                         SlotRow{"Blob", SlotCount<Blob>(), 13},
                                         SlotRow{"RealBlob", SlotCount<RealBlob>(), 13},
                                         SlotRow{"Guid", SlotCount<Guid>(), 13}));

INSTANTIATE_TEST_SUITE_P(
    Data, SlotOrder,
    testing::Values(SlotRow{"IsNull", Slot(&ASData::IsNull), 2}, SlotRow{"SetNull", Slot(&ASData::SetNull), 4},
                    SlotRow{"GetSize", Slot(&ASData::GetSize), 5}, SlotRow{"size", Slot(&ASData::size), 6},
                    SlotRow{"GetType", Slot(&ASData::GetType), 7}, SlotRow{"getstr", Slot(&ASData::getstr), 8},
                    SlotRow{"voidptr", Slot(&ASData::voidptr), 9}, SlotRow{"operator==", Slot(&ASData::operator==), 10},
                    SlotRow{"operator<", Slot(&ASData::operator<), 11}, SlotRow{"copy", Slot(&ASData::copy), 12},
                    SlotRow{"GetDBType", Slot(&ASData::GetDBType), 13}, SlotRow{"Trim", Slot(&ASData::Trim), 14},
                    SlotRow{"end", SlotCount<ASData>(), 15}));

INSTANTIATE_TEST_SUITE_P(
    Int, SlotOrder,
    testing::Values(SlotRow{"GetDBType", Slot(&ASInt::GetDBType), 13}, SlotRow{"Trim", Slot(&ASInt::Trim), 14},
                    SlotRow{"=(Int)", Slot<ASInt, ASInt&(Int const&)>(&ASInt::operator=), 15},
                    SlotRow{"=(ASInt)", Slot<ASInt, ASInt&(ASInt const&)>(&ASInt::operator=), 16},
                    SlotRow{"==(Int)", Slot<ASInt, bool(Int const&) const>(&ASInt::operator==), 17},
                    SlotRow{"==(int)", Slot<ASInt, bool(int) const>(&ASInt::operator==), 18},
                    SlotRow{"++", Slot<ASInt, ASInt&()>(&ASInt::operator++), 19},
                    SlotRow{"++(int)", Slot<ASInt, Int(int)>(&ASInt::operator++), 20},
                    SlotRow{"--", Slot<ASInt, ASInt&()>(&ASInt::operator--), 21},
                    SlotRow{"--(int)", Slot<ASInt, Int(int)>(&ASInt::operator--), 22},
                    SlotRow{"+=(Int)", Slot<ASInt, ASInt&(Int const&)>(&ASInt::operator+=), 23},
                    SlotRow{"-=(Int)", Slot<ASInt, ASInt&(Int const&)>(&ASInt::operator-=), 24},
                    SlotRow{"*=(Int)", Slot<ASInt, ASInt&(Int const&)>(&ASInt::operator*=), 25},
                    SlotRow{"/=(Int)", Slot<ASInt, ASInt&(Int const&)>(&ASInt::operator/=), 26},
                    SlotRow{"+=(int)", Slot<ASInt, ASInt&(int)>(&ASInt::operator+=), 27},
                    SlotRow{"-=(int)", Slot<ASInt, ASInt&(int)>(&ASInt::operator-=), 28},
                    SlotRow{"*=(int)", Slot<ASInt, ASInt&(int)>(&ASInt::operator*=), 29},
                    SlotRow{"/=(int)", Slot<ASInt, ASInt&(int)>(&ASInt::operator/=), 30},
                    SlotRow{"end", SlotCount<ASInt>(), 31}));

INSTANTIATE_TEST_SUITE_P(Time, SlotOrder,
                         testing::Values(SlotRow{"=(Int)", Slot<ASTime, ASTime&(Int const&)>(&ASTime::operator=), 15},
                                         SlotRow{"=(ASInt)", Slot<ASTime, ASTime&(ASInt const&)>(&ASTime::operator=),
                                                 16},
                                         SlotRow{"=(long)", Slot<ASTime, ASTime&(long)>(&ASTime::operator=), 31},
                                         SlotRow{"=(int)", Slot<ASTime, ASTime&(int const&)>(&ASTime::operator=), 32},
                                         SlotRow{"end", SlotCount<ASTime>(), 33}));

INSTANTIATE_TEST_SUITE_P(
    Int64, SlotOrder,
    testing::Values(SlotRow{"GetDBType", Slot(&ASInt64::GetDBType), 13}, SlotRow{"Trim", Slot(&ASInt64::Trim), 14},
                    SlotRow{"=(Int64)", Slot<ASInt64, ASInt64&(Int64 const&)>(&ASInt64::operator=), 15},
                    SlotRow{"=(ASInt64)", Slot<ASInt64, ASInt64&(ASInt64 const&)>(&ASInt64::operator=), 16},
                    SlotRow{"==(Int64)", Slot<ASInt64, bool(Int64 const&) const>(&ASInt64::operator==), 17},
                    SlotRow{"==(long)", Slot<ASInt64, bool(long) const>(&ASInt64::operator==), 18},
                    SlotRow{"++", Slot<ASInt64, ASInt64&()>(&ASInt64::operator++), 19},
                    SlotRow{"++(int)", Slot<ASInt64, Int64(int)>(&ASInt64::operator++), 20},
                    SlotRow{"--", Slot<ASInt64, ASInt64&()>(&ASInt64::operator--), 21},
                    SlotRow{"--(int)", Slot<ASInt64, Int64(int)>(&ASInt64::operator--), 22},
                    SlotRow{"+=(Int64)", Slot<ASInt64, ASInt64&(Int64 const&)>(&ASInt64::operator+=), 23},
                    SlotRow{"-=(Int64)", Slot<ASInt64, ASInt64&(Int64 const&)>(&ASInt64::operator-=), 24},
                    SlotRow{"*=(Int64)", Slot<ASInt64, ASInt64&(Int64 const&)>(&ASInt64::operator*=), 25},
                    SlotRow{"/=(Int64)", Slot<ASInt64, ASInt64&(Int64 const&)>(&ASInt64::operator/=), 26},
                    SlotRow{"+=(long)", Slot<ASInt64, ASInt64&(long)>(&ASInt64::operator+=), 27},
                    SlotRow{"-=(long)", Slot<ASInt64, ASInt64&(long)>(&ASInt64::operator-=), 28},
                    SlotRow{"*=(long)", Slot<ASInt64, ASInt64&(long)>(&ASInt64::operator*=), 29},
                    SlotRow{"/=(long)", Slot<ASInt64, ASInt64&(long)>(&ASInt64::operator/=), 30},
                    SlotRow{"end", SlotCount<ASInt64>(), 31}));

INSTANTIATE_TEST_SUITE_P(
    Double, SlotOrder,
    testing::Values(SlotRow{"GetDBType", Slot(&ASDouble::GetDBType), 13}, SlotRow{"Trim", Slot(&ASDouble::Trim), 14},
                    SlotRow{"=(Double)", Slot<ASDouble, ASDouble&(Double const&)>(&ASDouble::operator=), 15},
                    SlotRow{"=(ASDouble)", Slot<ASDouble, ASDouble&(ASDouble const&)>(&ASDouble::operator=), 16},
                    SlotRow{"+=(Double)", Slot<ASDouble, ASDouble&(Double const&)>(&ASDouble::operator+=), 17},
                    SlotRow{"-=(Double)", Slot<ASDouble, ASDouble&(Double const&)>(&ASDouble::operator-=), 18},
                    SlotRow{"*=(Double)", Slot<ASDouble, ASDouble&(Double const&)>(&ASDouble::operator*=), 19},
                    SlotRow{"/=(Double)", Slot<ASDouble, ASDouble&(Double const&)>(&ASDouble::operator/=), 20},
                    SlotRow{"+=(double)", Slot<ASDouble, ASDouble&(double)>(&ASDouble::operator+=), 21},
                    SlotRow{"-=(double)", Slot<ASDouble, ASDouble&(double)>(&ASDouble::operator-=), 22},
                    SlotRow{"*=(double)", Slot<ASDouble, ASDouble&(double)>(&ASDouble::operator*=), 23},
                    SlotRow{"/=(double)", Slot<ASDouble, ASDouble&(double)>(&ASDouble::operator/=), 24},
                    SlotRow{"end", SlotCount<ASDouble>(), 25}));

INSTANTIATE_TEST_SUITE_P(
    Currency, SlotOrder,
    testing::Values(
        SlotRow{"Trim", Slot(&ASDCurrency::Trim), 14},
        SlotRow{"=(Double)", Slot<ASDCurrency, ASDCurrency&(Double const&)>(&ASDCurrency::operator=), 15},
        SlotRow{"=(ASDouble)", Slot<ASDCurrency, ASDCurrency&(ASDouble const&)>(&ASDCurrency::operator=), 16},
        SlotRow{"=(ASDCurrency)", Slot<ASDCurrency, ASDCurrency&(ASDCurrency const&)>(&ASDCurrency::operator=), 25},
        SlotRow{"end", SlotCount<ASDCurrency>(), 26}));

INSTANTIATE_TEST_SUITE_P(
    Str, SlotOrder,
    testing::Values(SlotRow{"GetDBType", Slot(&ASStr::GetDBType), 13}, SlotRow{"Trim", Slot(&ASStr::Trim), 14},
                    SlotRow{"=(Str)", Slot<ASStr, ASStr&(Str const&)>(&ASStr::operator=), 15},
                    SlotRow{"=(char const*)", Slot<ASStr, ASStr&(char const*)>(&ASStr::operator=), 16},
                    SlotRow{"=(ASStr)", Slot<ASStr, ASStr&(ASStr const&)>(&ASStr::operator=), 17},
                    SlotRow{"<(Str)", Slot<ASStr, bool(Str const&) const>(&ASStr::operator<), 18},
                    SlotRow{"==(Str)", Slot<ASStr, bool(Str const&) const>(&ASStr::operator==), 19},
                    SlotRow{"<(char const*)", Slot<ASStr, bool(char const*) const>(&ASStr::operator<), 20},
                    SlotRow{"==(char const*)", Slot<ASStr, bool(char const*) const>(&ASStr::operator==), 21},
                    SlotRow{"end", SlotCount<ASStr>(), 22}));

INSTANTIATE_TEST_SUITE_P(
    VStr, SlotOrder,
    testing::Values(SlotRow{"GetDBType", Slot(&ASVStr::GetDBType), 13},
                    SlotRow{"=(Str)", Slot<ASVStr, ASVStr&(Str const&)>(&ASVStr::operator=), 15},
                    SlotRow{"=(char const*)", Slot<ASVStr, ASVStr&(char const*)>(&ASVStr::operator=), 16},
                    SlotRow{"=(ASStr)", Slot<ASVStr, ASVStr&(ASStr const&)>(&ASVStr::operator=), 17},
                    SlotRow{"end", SlotCount<ASVStr>(), 22}));

// Those of ASData, and none of their own.
INSTANTIATE_TEST_SUITE_P(Binary, SlotOrder,
                         testing::Values(SlotRow{"ASBlob", SlotCount<ASBlob>(), 15},
                                         SlotRow{"ASGeometry", SlotCount<ASGeometry>(), 15},
                                         SlotRow{"ASRealBlob", SlotCount<ASRealBlob>(), 15},
                                         SlotRow{"ASGuid", SlotCount<ASGuid>(), 15}));

// ---- columns and records

INSTANTIATE_TEST_SUITE_P(SimpleAttribute, SlotOrder,
                         testing::Values(SlotRow{"Query", Slot(&ASSimpleAttribute::Query), 2},
                                         SlotRow{"end", SlotCount<ASSimpleAttribute>(), 3}));

INSTANTIATE_TEST_SUITE_P(Attribute, SlotOrder,
                         testing::Values(SlotRow{"Query", Slot(&ASAttribute::Query), 2},
                                         SlotRow{"end", SlotCount<ASAttribute>(), 3}));

INSTANTIATE_TEST_SUITE_P(GroupAttribute, SlotOrder,
                         testing::Values(SlotRow{"Query", Slot(&ASGroupAttribute::Query), 2},
                                         SlotRow{"end", SlotCount<ASGroupAttribute>(), 3}));

INSTANTIATE_TEST_SUITE_P(Domain, SlotOrder, testing::Values(SlotRow{"end", SlotCount<ASDomain>(), 2}));

// ---- queries

INSTANTIATE_TEST_SUITE_P(Filter, SlotOrder,
                         testing::Values(SlotRow{"Query", Slot(&ASFilter::Query), 2},
                                         SlotRow{"end", SlotCount<ASFilter>(), 3}));

INSTANTIATE_TEST_SUITE_P(
    Cursor, SlotOrder,
    testing::Values(SlotRow{"Query", Slot(&ASCursor::Query), 2},
                    SlotRow{"SimpleQuery", Slot(&ASCursor::SimpleQuery), 3},
                    SlotRow{"Fetch()", Slot<ASCursor, int()>(&ASCursor::Fetch), 4},
                    SlotRow{"Fetch(int)", Slot<ASCursor, int(int)>(&ASCursor::Fetch), 5},
                    SlotRow{"Fetch(ASDomain)", Slot<ASCursor, int(ASDomain&)>(&ASCursor::Fetch), 6},
                    SlotRow{"FetchSingle", Slot(&ASCursor::FetchSingle), 7}, SlotRow{"end", SlotCount<ASCursor>(), 8}));

INSTANTIATE_TEST_SUITE_P(Updater, SlotOrder,
                         testing::Values(SlotRow{"Query", Slot(&ASUpdater::Query), 2},
                                         SlotRow{"end", SlotCount<ASUpdater>(), 3}));

INSTANTIATE_TEST_SUITE_P(Deleter, SlotOrder,
                         testing::Values(SlotRow{"Query", Slot(&ASDeleter::Query), 2},
                                         SlotRow{"end", SlotCount<ASDeleter>(), 3}));

INSTANTIATE_TEST_SUITE_P(OldFilter, SlotOrder,
                         testing::Values(SlotRow{"Query", Slot(&ORDBMS::old_filter::Query), 2},
                                         SlotRow{"end", SlotCount<ORDBMS::old_filter>(), 3}));

// Of its two bases the cursor comes first.
INSTANTIATE_TEST_SUITE_P(OldCursor, SlotOrder,
                         testing::Values(SlotRow{"Query", Slot(&ORDBMS::old_cursor::Query), 2},
                                         SlotRow{"SimpleQuery", Slot(&ORDBMS::old_cursor::SimpleQuery), 3},
                                         SlotRow{"end", SlotCount<ORDBMS::old_cursor>(), 8}));

INSTANTIATE_TEST_SUITE_P(FieldName, SlotOrder, testing::Values(SlotRow{"end", SlotCount<ORDBMS::field_name>(), 13}));

// ---- caches

INSTANTIATE_TEST_SUITE_P(
    SimpleCache, SlotOrder,
    testing::Values(SlotRow{"Get(int)", Slot<ASSimpleCache, void(int)>(&ASSimpleCache::Get), 2},
                    SlotRow{"Get(ASDomain)", Slot<ASSimpleCache, void(ASDomain&)>(&ASSimpleCache::Get), 3},
                    SlotRow{"CacheOn", Slot(&ASSimpleCache::CacheOn), 4},
                    SlotRow{"CacheOff", Slot(&ASSimpleCache::CacheOff), 5},
                    SlotRow{"PreFetch", Slot(&ASSimpleCache::PreFetch), 6},
                    SlotRow{"Size", Slot(&ASSimpleCache::Size), 7}, SlotRow{"Clear", Slot(&ASSimpleCache::Clear), 8},
                    SlotRow{"end", SlotCount<ASSimpleCache>(), 9}));

INSTANTIATE_TEST_SUITE_P(UpdatableCache, SlotOrder,
                         testing::Values(SlotRow{"Put", Slot(&ASUpdatableCache::Put), 2},
                                         SlotRow{"end", SlotCount<ASUpdatableCache>(), 3}));

INSTANTIATE_TEST_SUITE_P(InsertableCache, SlotOrder,
                         testing::Values(SlotRow{"Insert", Slot(&ASInsertableCache::Insert), 2},
                                         SlotRow{"Delete", Slot(&ASInsertableCache::Delete), 3},
                                         SlotRow{"end", SlotCount<ASInsertableCache>(), 4}));

// Behind those of its first base, ASInsertableCache.
INSTANTIATE_TEST_SUITE_P(Cache, SlotOrder,
                         testing::Values(SlotRow{"Insert", Slot(&ASCache::Insert), 2},
                                         SlotRow{"Get(int)", Slot<ASCache, void(int)>(&ASCache::Get), 4},
                                         SlotRow{"Get(ASDomain)", Slot<ASCache, void(ASDomain&)>(&ASCache::Get), 5},
                                         SlotRow{"Clear", Slot(&ASCache::Clear), 6},
                                         SlotRow{"end", SlotCount<ASCache>(), 7}));

// ---- exceptions

// The one of std::exception is the last.
INSTANTIATE_TEST_SUITE_P(Exception, SlotOrder,
                         testing::Values(SlotRow{"what", Slot(&AException::what), 2},
                                         SlotRow{"end", SlotCount<AException>(), 3}));

INSTANTIATE_TEST_SUITE_P(IoException, SlotOrder,
                         testing::Values(SlotRow{"what", Slot(&IO::Exception::what), 2},
                                         SlotRow{"end", SlotCount<IO::Exception>(), 3}));

}  // namespace
}  // namespace corvane::test
