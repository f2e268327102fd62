#ifndef CORVANE_INTERNAL_SAME_KIND_H
#define CORVANE_INTERNAL_SAME_KIND_H

#include "corvane/data/value/basic_type.h"

namespace corvane::internal {

/// Throws AException "Incompatible types for " + operation + ". ".
[[noreturn]] void ThrowIncompatible(char const* operation);

/// `other` as a `Value`, when it has the type code of `own` and is one. Two values are of the same kind by their type
/// code, not by their class: an ASTime compares with an ASInt. Throws as above otherwise; `operation` is written
/// like "ASStr::operator < ()".
template <class Value>
Value const& SameKind(basic_type const& own, basic_type const& other, char const* operation) {
  if (own.GetType() == other.GetType()) {
    if (auto const* const value = dynamic_cast<Value const*>(&other)) return *value;
  }
  ThrowIncompatible(operation);
}

}  // namespace corvane::internal

#endif
