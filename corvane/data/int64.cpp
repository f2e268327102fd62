#include "corvane/data/int64.h"

ASInt64::~ASInt64() = default;

int ASInt64::IsNull() const { return Int64::IsNull(); }
void ASInt64::SetNull() { Int64::SetNull(); }
int ASInt64::GetSize() const { return Int64::GetSize(); }
int ASInt64::size() const { return Int64::size(); }
int ASInt64::GetType() const { return Int64::GetType(); }
Str ASInt64::getstr() const { return Int64::getstr(); }
void* ASInt64::voidptr() const { return Int64::voidptr(); }
bool ASInt64::operator==(basic_type const& other) const { return Int64::Equals(other, "ASInt64::operator == ()"); }
bool ASInt64::operator<(basic_type const& other) const { return Int64::Less(other, "ASInt64::operator < ()"); }
void ASInt64::copy(basic_type const& other) { Int64::Assign(other, "ASInt64::copy()"); }
int ASInt64::GetDBType() const { return corvane::kDbInt64; }
void ASInt64::Trim() {}

// Equality tells a NULL from every number, so that the null state is carried over by the same comparison. A NULL is
// always written: the stored number may be stale.
ASInt64& ASInt64::operator=(Int64 const& other) {
  if (other.IsNull() != 0 || !(*this == other)) Int64::operator=(other);
  return *this;
}

ASInt64& ASInt64::operator=(ASInt64 const& other) { return *this = static_cast<Int64 const&>(other); }

bool ASInt64::operator==(Int64 const& other) const { return Int64::operator==(other); }
bool ASInt64::operator==(long other) const { return Int64::operator==(other); }

ASInt64& ASInt64::operator++() {
  Int64::operator++();
  return *this;
}

Int64 ASInt64::operator++(int) { return Int64::operator++(0); }

ASInt64& ASInt64::operator--() {
  Int64::operator--();
  return *this;
}

Int64 ASInt64::operator--(int) { return Int64::operator--(0); }

ASInt64& ASInt64::operator+=(Int64 const& other) {
  if (!(other == 0L)) Int64::operator+=(other);
  return *this;
}

ASInt64& ASInt64::operator-=(Int64 const& other) {
  if (!(other == 0L)) Int64::operator-=(other);
  return *this;
}

ASInt64& ASInt64::operator*=(Int64 const& other) {
  if (!(other == 1L)) Int64::operator*=(other);
  return *this;
}

ASInt64& ASInt64::operator/=(Int64 const& other) {
  if (!(other == 1L)) Int64::operator/=(other);
  return *this;
}

ASInt64& ASInt64::operator+=(long other) { return *this += Int64(other); }
ASInt64& ASInt64::operator-=(long other) { return *this -= Int64(other); }
ASInt64& ASInt64::operator*=(long other) { return *this *= Int64(other); }
ASInt64& ASInt64::operator/=(long other) { return *this /= Int64(other); }
