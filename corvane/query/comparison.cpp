#include "corvane/query/comparison.h"

#include <algorithm>

#include "corvane/internal/sql_text.h"
#include "corvane/query/internal/condition_text.h"

using corvane::internal::sql::kAnd;
using corvane::internal::sql::kOr;

ASComparison::ASComparison(Str text, ASDomain* d1, ASDomain* d2) : text_(std::move(text)) {
  Name(d1);
  Name(d2);
}

ASComparison ASComparison::OuterJoin(Str text, ASDomain* requiredSide, ASDomain* optionalSide) {
  ASComparison join("", nullptr, nullptr);
  join.joinPairs_.emplace_back(requiredSide, optionalSide);
  join.joinConditions_.push_back(std::move(text));
  return join;
}

// Pinned: the joins stay those of the target; held by Comparison.AssignmentKeepsTheTargetsOuterJoins.
ASComparison& ASComparison::operator=(ASComparison const& other) {
  text_ = other.text_;
  domains_ = other.domains_;
  return *this;
}

ASComparison& ASComparison::operator&&(ASComparison const& other) & {
  if (this == &other) return *this && ASComparison(other);  // a list cannot be appended to itself
  joinPairs_.insert(joinPairs_.end(), other.joinPairs_.begin(), other.joinPairs_.end());
  joinConditions_.insert(joinConditions_.end(), other.joinConditions_.begin(), other.joinConditions_.end());
  Combine(kAnd, other);
  return *this;
}

ASComparison ASComparison::operator&&(ASComparison const& other) && { return std::move(*this && other); }

ASComparison ASComparison::operator&&(ASComparison const& other) const& { return ASComparison(*this) && other; }

// Pinned: the other's outer joins are dropped; held by Comparison.OrDropsTheOuterJoinsOfItsRightSide.
ASComparison& ASComparison::operator||(ASComparison const& other) & {
  Combine(kOr, other);
  return *this;
}

ASComparison ASComparison::operator||(ASComparison const& other) && { return std::move(*this || other); }

ASComparison ASComparison::operator||(ASComparison const& other) const& { return ASComparison(*this) || other; }

// Pinned: neither records nor joins; held by Comparison.NotNamesNoRecordsAndHasNoJoins.
ASComparison ASComparison::operator!() const {
  Str text(" NOT (");
  text << text_ << ") ";
  return ASComparison(std::move(text), nullptr, nullptr);
}

void ASComparison::Name(ASDomain* domain) {
  if (domain == nullptr || std::find(domains_.begin(), domains_.end(), domain) != domains_.end()) return;
  domains_.push_back(domain);
}

void ASComparison::Combine(char const* word, ASComparison const& other) {
  for (ASDomain* const domain : other.domains_) Name(domain);
  corvane::internal::sql::Combine(text_, word, other.text_);
}
