#include "corvane/data/value/int.h"

#include "corvane/internal/same_kind.h"

using corvane::internal::SameKind;

namespace {

// Applies `combine` to two numbers as unsigned ones, where overflow wraps; NULL with anything is NULL.
template <class Combine>
Int Combined(Int const& a, Int const& b, Combine combine) {
  if (a == Int::kNull || b == Int::kNull) return Int();
  return static_cast<int>(
      combine(static_cast<unsigned>(static_cast<int>(a)), static_cast<unsigned>(static_cast<int>(b))));
}

}  // namespace

Int::~Int() = default;

Int Int::operator+(Int const& other) const {
  return Combined(*this, other, [](unsigned a, unsigned b) { return a + b; });
}

Int Int::operator-(Int const& other) const {
  return Combined(*this, other, [](unsigned a, unsigned b) { return a - b; });
}

Int Int::operator*(Int const& other) const {
  return Combined(*this, other, [](unsigned a, unsigned b) { return a * b; });
}

// The smallest number is NULL, so that no quotient overflows.
Int Int::operator/(Int const& other) const {
  if (value_ == kNull || other.value_ == kNull || other.value_ == 0) return Int();
  return value_ / other.value_;
}

Int Int::operator-() const { return value_ == kNull ? Int() : Int(-value_); }

Int Int::operator++(int) {
  Int const previous(value_);
  ++*this;
  return previous;
}

Int Int::operator--(int) {
  Int const previous(value_);
  --*this;
  return previous;
}

bool Int::Equals(basic_type const& other, char const* operation) const {
  return value_ == SameKind<Int>(*this, other, operation).value_;
}

bool Int::Less(basic_type const& other, char const* operation) const {
  return value_ < SameKind<Int>(*this, other, operation).value_;
}

bool Int::operator==(basic_type const& other) const { return Equals(other, "Int::operator == ()"); }

bool Int::operator<(basic_type const& other) const { return Less(other, "Int::operator < ()"); }

void Int::Assign(basic_type const& other, char const* operation) {
  Int::operator=(SameKind<Int>(*this, other, operation));
}

void Int::copy(basic_type const& other) { Assign(other, "Int::copy()"); }

int Int::IsNull() const { return value_ == kNull ? 1 : 0; }

void Int::SetNull() { value_ = kNull; }

int Int::GetSize() const { return sizeof value_; }

int Int::GetType() const { return corvane::kTypeInt; }

Str Int::getstr() const {
  Str text;
  text << value_;
  return text;
}

void* Int::voidptr() const { return const_cast<int*>(&value_); }
