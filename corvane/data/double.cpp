#include "corvane/data/double.h"

ASDouble::~ASDouble() = default;

int ASDouble::IsNull() const { return Double::IsNull(); }
void ASDouble::SetNull() { Double::SetNull(); }
int ASDouble::GetSize() const { return Double::GetSize(); }
int ASDouble::size() const { return Double::size(); }
int ASDouble::GetType() const { return Double::GetType(); }
Str ASDouble::getstr() const { return Double::getstr(); }
void* ASDouble::voidptr() const { return Double::voidptr(); }
bool ASDouble::operator==(basic_type const& other) const { return Double::Equals(other, "ASDouble::operator == ()"); }
bool ASDouble::operator<(basic_type const& other) const { return Double::Less(other, "ASDouble::operator < ()"); }
void ASDouble::copy(basic_type const& other) { Double::Assign(other, "ASDouble::copy()"); }
int ASDouble::GetDBType() const { return corvane::kDbDouble; }
void ASDouble::Trim() {}

ASDouble& ASDouble::operator=(Double const& other) {
  if (!(*this == other)) Double::operator=(other);
  return *this;
}

ASDouble& ASDouble::operator=(ASDouble const& other) { return *this = static_cast<Double const&>(other); }

ASDouble& ASDouble::operator+=(Double const& other) {
  if (!(other == 0.0)) Double::operator+=(other);
  return *this;
}

ASDouble& ASDouble::operator-=(Double const& other) {
  if (!(other == 0.0)) Double::operator-=(other);
  return *this;
}

ASDouble& ASDouble::operator*=(Double const& other) {
  if (!(other == 1.0)) Double::operator*=(other);
  return *this;
}

ASDouble& ASDouble::operator/=(Double const& other) {
  if (!(other == 1.0)) Double::operator/=(other);
  return *this;
}

ASDouble& ASDouble::operator+=(double other) { return *this += Double(other); }
ASDouble& ASDouble::operator-=(double other) { return *this -= Double(other); }
ASDouble& ASDouble::operator*=(double other) { return *this *= Double(other); }
ASDouble& ASDouble::operator/=(double other) { return *this /= Double(other); }
