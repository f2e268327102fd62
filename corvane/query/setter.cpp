#include "corvane/query/setter.h"

#include "corvane/internal/finite.h"
#include "corvane/mapping/attribute.h"
#include "corvane/mapping/domain.h"
#include "corvane/query/expression.h"

Str ASSetter::Query() const {
  if (!value_->finite_) corvane::internal::ThrowNotFinite(target_->Name());
  Str text = target_->Query();
  text << " = " << value_->Query();
  return text;
}

Str ASSetter::UpdateQuery() const { return target_->Domain() != nullptr ? target_->Domain()->Name() : Str(); }

ASSetter ASAttribute::Set(ASExpression const& expression) const { return ASSetter(this, &expression); }
