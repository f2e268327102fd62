#include "corvane/data/data.h"

#include "corvane/mapping/attribute.h"

ASData::~ASData() = default;

ASAttribute* ASData::Bind(ASAttribute* attribute) { return attribute_ = attribute; }

Str ASData::GetName() const { return attribute_ != nullptr ? attribute_->SimpleQuery() : Str("EMPTY"); }

int ASData::GetACType() const { return attribute_ != nullptr ? attribute_->ACType() : 0; }
