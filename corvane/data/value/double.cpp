#include "corvane/data/value/double.h"

#include <cmath>

#include "corvane/internal/same_kind.h"

using corvane::internal::SameKind;

namespace {

double Ordered(double number) { return std::isnan(number) ? Double::kNull : number; }

}  // namespace

Double::~Double() = default;

Double Double::operator+(Double const& other) const {
  return value_ == kNull || other.value_ == kNull ? Double() : Double(value_ + other.value_);
}

Double Double::operator-(Double const& other) const {
  return value_ == kNull || other.value_ == kNull ? Double() : Double(value_ - other.value_);
}

Double Double::operator*(Double const& other) const {
  return value_ == kNull || other.value_ == kNull ? Double() : Double(value_ * other.value_);
}

Double Double::operator/(Double const& other) const {
  return value_ == kNull || other.value_ == kNull ? Double() : Double(value_ / other.value_);
}

Double Double::operator-() const { return value_ == kNull ? Double() : Double(-value_); }

bool Double::Equals(basic_type const& other, char const* operation) const {
  return Ordered(value_) == Ordered(SameKind<Double>(*this, other, operation).value_);
}

bool Double::Less(basic_type const& other, char const* operation) const {
  return Double(Ordered(value_)) < Ordered(SameKind<Double>(*this, other, operation).value_);
}

bool Double::operator==(basic_type const& other) const { return Equals(other, "Double::operator == ()"); }

bool Double::operator<(basic_type const& other) const { return Less(other, "Double::operator < ()"); }

void Double::Assign(basic_type const& other, char const* operation) {
  Double::operator=(SameKind<Double>(*this, other, operation));
}

void Double::copy(basic_type const& other) { Assign(other, "Double::copy()"); }

int Double::IsNull() const { return value_ == kNull ? 1 : 0; }

void Double::SetNull() { value_ = kNull; }

int Double::GetSize() const { return sizeof value_; }

int Double::GetType() const { return corvane::kTypeDouble; }

Str Double::getstr() const {
  Str text;
  text << value_;
  return text;
}

void* Double::voidptr() const { return const_cast<double*>(&value_); }
