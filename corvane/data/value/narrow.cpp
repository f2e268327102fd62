#include "corvane/data/value/narrow.h"

#include "corvane/data/value/exception.h"

namespace corvane {

void ThrowOutOfRange(char const* type) {
  AException outOfRange("Number is out of range for ");
  outOfRange << type << ". ";
  throw outOfRange;
}

}  // namespace corvane
