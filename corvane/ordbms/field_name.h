#ifndef CORVANE_ORDBMS_FIELD_NAME_H
#define CORVANE_ORDBMS_FIELD_NAME_H

#include "corvane/data/value/str.h"

namespace ORDBMS {

/// The position and the name of a result column.
class CORVANE_API field_name : public Str {
 public:
  /// The text is the name.
  field_name(int position, Str const& name);
  /// Copies position and name.
  /// @{
  field_name(field_name const&);
  field_name& operator=(field_name const&);
  /// @}

  ~field_name() override;

  /// As given; the library counts nothing by it.
  int Position() const { return position_; }

 private:
  int position_;
};

}  // namespace ORDBMS

#endif
