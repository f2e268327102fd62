#include "corvane/data/dcurrency.h"

ASDCurrency::~ASDCurrency() = default;

int ASDCurrency::GetType() const { return corvane::kTypeDCurrency; }
bool ASDCurrency::operator==(basic_type const& other) const { return Equals(other, "ASDCurrency::operator == ()"); }
bool ASDCurrency::operator<(basic_type const& other) const { return Less(other, "ASDCurrency::operator < ()"); }
void ASDCurrency::copy(basic_type const& other) { Assign(other, "ASDCurrency::copy()"); }
void ASDCurrency::Trim() {}

ASDCurrency& ASDCurrency::operator=(Double const& other) {
  ASDouble::operator=(other);
  return *this;
}

ASDCurrency& ASDCurrency::operator=(ASDouble const& other) { return *this = static_cast<Double const&>(other); }

ASDCurrency& ASDCurrency::operator=(ASDCurrency const& other) { return *this = static_cast<Double const&>(other); }
