#include "corvane/query/comparison.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "corvane/internal/sql_text.h"
#include "corvane/query/internal/condition_text.h"

using corvane::internal::sql::kAnd;
using corvane::internal::sql::kOr;

ASComparison::ASComparison(Str text, ASDomain* d1, ASDomain* d2) : text_(std::move(text)) {
  records_.Add(d1);
  records_.Add(d2);
}

ASComparison::ASComparison(ASComparison const&) = default;
ASComparison::ASComparison(ASComparison&&) = default;
ASComparison::~ASComparison() = default;

ASComparison ASComparison::OuterJoin(Str text, ASDomain* requiredSide, ASDomain* optionalSide) {
  ASComparison join("", nullptr, nullptr);
  join.joinPairs_.emplace_back(requiredSide, optionalSide);
  join.joinConditions_.push_back(std::move(text));
  return join;
}

// Pinned: the joins stay those of the target; held by Comparison.AssignmentKeepsTheTargetsOuterJoins.
ASComparison& ASComparison::operator=(ASComparison const& other) {
  text_ = other.text_;
  records_ = other.records_;
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

std::list<ASDomain*> const& ASComparison::Domains() const { return records_.List(); }

void ASComparison::Combine(char const* word, ASComparison const& other) {
  for (ASDomain* const record : other.records_) records_.Add(record);
  corvane::internal::sql::Combine(text_, word, other.text_);
}

ASComparison::Records::Records(Records const& other) : few_(other.few_), many_(other.many_), count_(other.count_) {}

ASComparison::Records::Records(Records&& other) noexcept
    : few_(other.few_),
      many_(std::move(other.many_)),
      count_(std::exchange(other.count_, 0)),
      list_(other.list_.load(std::memory_order_relaxed)) {
  other.list_.store(nullptr, std::memory_order_relaxed);  // only constant conditions are shared by threads
}

ASComparison::Records& ASComparison::Records::operator=(Records const& other) {
  if (this == &other) return *this;
  std::vector<ASDomain*> many = other.many_;  // first, so that memory exhaustion changes nothing
  if (auto* const list = list_.load()) std::list<ASDomain*>(other.begin(), other.end()).swap(*list);
  few_ = other.few_;
  many_.swap(many);
  count_ = other.count_;
  return *this;
}

ASComparison::Records::~Records() { delete list_.load(); }

void ASComparison::Records::Add(ASDomain* record) {
  if (record == nullptr || std::find(begin(), end(), record) != end()) return;
  auto* const list = list_.load();
  std::list<ASDomain*> last;  // what needs memory comes first
  if (list != nullptr) last.push_back(record);
  if (count_ < few_.size()) {
    few_[count_] = record;
  } else {
    if (many_.empty()) many_.assign(few_.begin(), few_.end());
    many_.push_back(record);
  }
  ++count_;
  if (list != nullptr) list->splice(list->end(), last);
}

// Several threads may ask a constant condition at once: the first one's list is kept.
std::list<ASDomain*> const& ASComparison::Records::List() const {
  std::list<ASDomain*>* kept = list_.load();
  if (kept != nullptr) return *kept;
  auto made = std::make_unique<std::list<ASDomain*>>(begin(), end());
  if (list_.compare_exchange_strong(kept, made.get())) kept = made.release();
  return *kept;
}
