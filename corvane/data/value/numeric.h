#ifndef CORVANE_DATA_VALUE_NUMERIC_H
#define CORVANE_DATA_VALUE_NUMERIC_H

#include "corvane/data/value/basic_type.h"

/// The root of the numeric values (Int, Int64, Double); asked for at run time to tell whether a literal
/// is written without quotes. It adds no operation.
class CORVANE_API numeric : public virtual basic_type {
 public:
  ~numeric() override;

 protected:
  /// There is nothing here to be copied.
  /// @{
  numeric() = default;
  numeric(numeric const&) = default;
  numeric& operator=(numeric const&) { return *this; }  // no data; the virtual root has none either
  /// @}
};

#endif
