#include "corvane/internal/finite.h"

#include <cmath>

#include "corvane/data/dcurrency.h"
#include "corvane/data/double.h"
#include "corvane/data/value/exception.h"
#include "corvane/internal/same_kind.h"

namespace corvane::internal {

namespace {

template <class Data, class Find>
bool IsFiniteOrOther(Data const& data, Find find) {
  int const type = data.GetType();
  if (type != kTypeDouble && type != kTypeDCurrency) return true;
  Double const* const number = find(data);
  return number == nullptr || std::isfinite(static_cast<double>(*number));
}

}  // namespace

bool IsFinite(basic_type const& value) {
  return IsFiniteOrOther(value, [](basic_type const& other) { return dynamic_cast<Double const*>(&other); });
}

bool IsFinite(ASData const& value) {
  return IsFiniteOrOther(value, [](ASData const& other) { return To<Double, ASDouble, ASDCurrency>(other); });
}

void ThrowNotFinite(Str const& column) {
  AException notFinite("Value has no SQL form, it is not a finite number: ");
  notFinite << column << ". ";
  throw notFinite;
}

}  // namespace corvane::internal
