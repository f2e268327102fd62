#include "corvane/data/int.h"

ASInt::~ASInt() = default;

int ASInt::IsNull() const { return Int::IsNull(); }
void ASInt::SetNull() { Int::SetNull(); }
int ASInt::GetSize() const { return Int::GetSize(); }
int ASInt::size() const { return Int::size(); }
int ASInt::GetType() const { return Int::GetType(); }
Str ASInt::getstr() const { return Int::getstr(); }
void* ASInt::voidptr() const { return Int::voidptr(); }
bool ASInt::operator==(basic_type const& other) const { return Int::Equals(other, "ASInt::operator == ()"); }
bool ASInt::operator<(basic_type const& other) const { return Int::Less(other, "ASInt::operator < ()"); }
void ASInt::copy(basic_type const& other) { Int::Assign(other, "ASInt::copy()"); }
int ASInt::GetDBType() const { return corvane::kDbInt; }
void ASInt::Trim() {}

ASInt& ASInt::operator=(Int const& other) {
  if (!(*this == other)) Int::operator=(other);
  return *this;
}

ASInt& ASInt::operator=(ASInt const& other) { return *this = static_cast<Int const&>(other); }

bool ASInt::operator==(Int const& other) const { return Int::operator==(other); }
bool ASInt::operator==(int other) const { return Int::operator==(other); }

ASInt& ASInt::operator++() {
  Int::operator++();
  return *this;
}

Int ASInt::operator++(int) { return Int::operator++(0); }

ASInt& ASInt::operator--() {
  Int::operator--();
  return *this;
}

Int ASInt::operator--(int) { return Int::operator--(0); }

ASInt& ASInt::operator+=(Int const& other) {
  if (!(other == 0)) Int::operator+=(other);
  return *this;
}

ASInt& ASInt::operator-=(Int const& other) {
  if (!(other == 0)) Int::operator-=(other);
  return *this;
}

ASInt& ASInt::operator*=(Int const& other) {
  if (!(other == 1)) Int::operator*=(other);
  return *this;
}

ASInt& ASInt::operator/=(Int const& other) {
  if (!(other == 1)) Int::operator/=(other);
  return *this;
}

ASInt& ASInt::operator+=(int other) { return *this += Int(other); }
ASInt& ASInt::operator-=(int other) { return *this -= Int(other); }
ASInt& ASInt::operator*=(int other) { return *this *= Int(other); }
ASInt& ASInt::operator/=(int other) { return *this /= Int(other); }
