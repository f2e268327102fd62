#include "corvane/query/group_comparison.h"

#include <utility>

#include "corvane/internal/sql_text.h"
#include "corvane/query/internal/condition_text.h"

using corvane::internal::sql::kAnd;
using corvane::internal::sql::kOr;

ASGroupComparison::ASGroupComparison(Str text, ASDomain* d1, ASDomain* d2) : text_(std::move(text)) {
  if (d1 != nullptr) domains_.insert(d1);
  if (d2 != nullptr) domains_.insert(d2);
}

ASGroupComparison& ASGroupComparison::operator&&(ASGroupComparison const& other) & {
  Combine(kAnd, other);
  return *this;
}

ASGroupComparison ASGroupComparison::operator&&(ASGroupComparison const& other) && {
  Combine(kAnd, other);
  return std::move(*this);
}

ASGroupComparison ASGroupComparison::operator&&(ASGroupComparison const& other) const& {
  return ASGroupComparison(*this) && other;
}

ASGroupComparison& ASGroupComparison::operator||(ASGroupComparison const& other) & {
  Combine(kOr, other);
  return *this;
}

ASGroupComparison ASGroupComparison::operator||(ASGroupComparison const& other) && {
  Combine(kOr, other);
  return std::move(*this);
}

ASGroupComparison ASGroupComparison::operator||(ASGroupComparison const& other) const& {
  return ASGroupComparison(*this) || other;
}

void ASGroupComparison::Combine(char const* word, ASGroupComparison const& other) {
  domains_.insert(other.domains_.begin(), other.domains_.end());
  corvane::internal::sql::Combine(text_, word, other.text_);
}
