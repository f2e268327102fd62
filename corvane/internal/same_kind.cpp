#include "corvane/internal/same_kind.h"

#include "corvane/data/value/exception.h"

namespace corvane::internal {

void ThrowIncompatible(char const* operation) {
  AException incompatible("Incompatible types for ");
  incompatible << operation << ". ";
  throw incompatible;
}

}  // namespace corvane::internal
