#ifndef CORVANE_INTERNAL_FINITE_H
#define CORVANE_INTERNAL_FINITE_H

#include "corvane/data/value/str.h"

class ASData;

namespace corvane::internal {

/// False for a number that is infinite or none, which has no SQL form: servers in a lenient mode would store 0.
bool IsFinite(basic_type const& value);
bool IsFinite(ASData const& value);

/// Throws AException "Value has no SQL form, it is not a finite number: " + column + ". ".
[[noreturn]] void ThrowNotFinite(Str const& column);

}  // namespace corvane::internal

#endif
