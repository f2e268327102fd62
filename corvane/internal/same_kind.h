#ifndef CORVANE_INTERNAL_SAME_KIND_H
#define CORVANE_INTERNAL_SAME_KIND_H

#include <typeinfo>

#include "corvane/data/value/basic_type.h"

namespace corvane::internal {

/// Throws AException "Incompatible types for " + operation + ". ".
[[noreturn]] void ThrowIncompatible(char const* operation);

/// The value as a `Value`, or a null pointer. One whose very class is `Column`, or else `Other`, is found without
/// searching its bases, which costs more than most of what is then done with it.
template <class Value, class Column = Value, class Other = Column, class Data>
Value const* To(Data const& data) {
  std::type_info const& type = typeid(data);
  if (type == typeid(Column)) return static_cast<Column const*>(&data);
  if (type == typeid(Other)) return static_cast<Other const*>(&data);
  return dynamic_cast<Value const*>(&data);
}

template <class Value, class Column = Value, class Other = Column, class Data>
Value* To(Data& data) {
  return const_cast<Value*>(To<Value, Column, Other>(static_cast<Data const&>(data)));
}

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
