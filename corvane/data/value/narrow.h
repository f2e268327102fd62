#ifndef CORVANE_DATA_VALUE_NARROW_H
#define CORVANE_DATA_VALUE_NARROW_H

#include <limits>
#include <type_traits>

#include "corvane/api.h"

/// @file
/// Integers that have to fit another type, for the assignments of the value types.

namespace corvane {

/// Throws AException "Number is out of range for " + type + ". ".
[[noreturn]] CORVANE_API void ThrowOutOfRange(char const* type);

/// Whether the integer `number` fits `To`.
template <class To, class From>
constexpr bool Fits(From number) {
  if constexpr (std::is_signed<From>::value) {
    return static_cast<long long>(number) >= static_cast<long long>(std::numeric_limits<To>::min()) &&
           static_cast<long long>(number) <= static_cast<long long>(std::numeric_limits<To>::max());
  } else {
    return static_cast<unsigned long long>(number) <= static_cast<unsigned long long>(std::numeric_limits<To>::max());
  }
}

/// The number as the scalar of the value type `V`; throws for an integer that does not fit an integer.
template <class V, class From>
typename V::Scalar Narrow(From number) {
  using Scalar = typename V::Scalar;
  if constexpr (std::is_integral<Scalar>::value && std::is_integral<From>::value) {
    if (!Fits<Scalar>(number)) ThrowOutOfRange(V::kName);
  }
  return static_cast<Scalar>(number);
}

}  // namespace corvane

#endif
