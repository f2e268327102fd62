#include "corvane/data/value/int64.h"

#include "corvane/internal/number_text.h"
#include "corvane/internal/same_kind.h"

using corvane::internal::SameKind;

namespace {

// Applies `combine` to two numbers as unsigned ones, where overflow wraps; NULL with anything is NULL.
template <class Combine>
Int64 Combined(Int64 const& a, Int64 const& b, Combine combine) {
  if (a.IsNull() != 0 || b.IsNull() != 0) return Int64();
  auto const left = static_cast<unsigned long>(static_cast<long>(a));
  auto const right = static_cast<unsigned long>(static_cast<long>(b));
  return Int64(static_cast<long>(combine(left, right)));
}

}  // namespace

Int64::~Int64() = default;

Int64 Int64::operator+(Int64 const& other) const {
  return Combined(*this, other, [](unsigned long a, unsigned long b) { return a + b; });
}

Int64 Int64::operator-(Int64 const& other) const {
  return Combined(*this, other, [](unsigned long a, unsigned long b) { return a - b; });
}

Int64 Int64::operator*(Int64 const& other) const {
  return Combined(*this, other, [](unsigned long a, unsigned long b) { return a * b; });
}

Int64 Int64::operator/(Int64 const& other) const {
  bool const overflows = value_ == std::numeric_limits<long>::min() && other.value_ == -1;
  if (null_ != 0 || other.null_ != 0 || other.value_ == 0 || overflows) return Int64();
  return Int64(value_ / other.value_);
}

Int64 Int64::operator-() const { return null_ != 0 ? Int64() : Int64(0L) - *this; }

Int64 Int64::operator++(int) {
  Int64 const previous(*this);
  ++*this;
  return previous;
}

Int64 Int64::operator--(int) {
  Int64 const previous(*this);
  --*this;
  return previous;
}

bool Int64::Equals(basic_type const& other, char const* operation) const {
  return *this == SameKind<Int64>(*this, other, operation);
}

bool Int64::Less(basic_type const& other, char const* operation) const {
  return *this < SameKind<Int64>(*this, other, operation);
}

bool Int64::operator==(basic_type const& other) const { return Equals(other, "Int64::operator == ()"); }

bool Int64::operator<(basic_type const& other) const { return Less(other, "Int64::operator < ()"); }

void Int64::Assign(basic_type const& other, char const* operation) {
  Int64::operator=(SameKind<Int64>(*this, other, operation));
}

void Int64::copy(basic_type const& other) { Assign(other, "Int64::copy()"); }

int Int64::IsNull() const { return null_; }

void Int64::SetNull() { *this = Int64(); }

int Int64::GetSize() const { return sizeof value_; }

int Int64::GetType() const { return corvane::kTypeInt64; }

Str Int64::getstr() const {
  Str text;
  text << (null_ == 0 ? value_ : std::numeric_limits<long>::min());  // whatever was written through voidptr()
  return text;
}

void* Int64::voidptr() const { return const_cast<long*>(&value_); }

long Int64::atoint64_t(char const* text) {
  return text != nullptr ? static_cast<long>(corvane::internal::ParseInteger(text)) : 0;
}
