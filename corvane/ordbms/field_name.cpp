#include "corvane/ordbms/field_name.h"

namespace ORDBMS {

field_name::field_name(int position, Str const& name) : Str(name), position_(position) {}
field_name::field_name(field_name const& other) : basic_type(), Str(other), position_(other.position_) {}
field_name& field_name::operator=(field_name const&) = default;
field_name::~field_name() = default;

}  // namespace ORDBMS
