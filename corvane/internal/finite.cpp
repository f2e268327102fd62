#include "corvane/internal/finite.h"

#include <cmath>

#include "corvane/data/value/double.h"
#include "corvane/data/value/exception.h"

namespace corvane::internal {

bool IsFinite(basic_type const& value) {
  int const type = value.GetType();
  if (type != kTypeDouble && type != kTypeDCurrency) return true;
  auto const* const number = dynamic_cast<Double const*>(&value);
  return number == nullptr || std::isfinite(static_cast<double>(*number));
}

void ThrowNotFinite(Str const& column) {
  AException notFinite("Value has no SQL form, it is not a finite number: ");
  notFinite << column << ". ";
  throw notFinite;
}

}  // namespace corvane::internal
