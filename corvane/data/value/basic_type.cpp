#include "corvane/data/value/basic_type.h"

basic_type::~basic_type() = default;

int basic_type::IsNotNull() const { return IsNull() == 0 ? 1 : 0; }

int basic_type::size() const { return GetSize(); }
