#include "corvane/query/filter.h"

#include <cstring>
#include <string_view>
#include <utility>

#include "corvane/mapping/attribute.h"
#include "corvane/query/comparison.h"
#include "corvane/query/group_comparison.h"

namespace {

// Room for the fixed words and the tables of a statement; more is made when it does not suffice.
constexpr std::size_t kStatementRoom = 160;

constexpr std::string_view kWhere = " WHERE ";

Str Wrapped(char const* word, Str const& statement) {
  Str text(word);
  text << " (" << statement << ')';
  return text;
}

}  // namespace

ASFilter::ASFilter() = default;
ASFilter::ASFilter(ASFilter const&) = default;
ASFilter::~ASFilter() = default;

// Pinned: neither hint nor GROUP BY; held by Filter.AssignmentCopiesNeitherHintNorGroupBy.
ASFilter& ASFilter::operator=(ASFilter const& other) {
  projection_ = other.projection_;
  where_ = other.where_;
  having_ = other.having_;
  return *this;
}

void ASFilter::CopyWhole(ASFilter const& other) {
  ASFilter copy(other);
  std::swap(where_, copy.where_);
  std::swap(having_, copy.having_);
  std::swap(hint_, copy.hint_);
  projection_.Swap(copy.projection_);
  groupProjection_.Swap(copy.groupProjection_);
}

ASProject& ASFilter::DistinctProject() {
  projection_.Distinct();
  return projection_;
}

ASFilter& ASFilter::Set(ASComparison const& condition) { return Set(ASComparison(condition)); }

ASFilter& ASFilter::Set(ASComparison&& condition) {
  Merge(condition);
  Str& text = condition.text_;
  if (text.length() > 0) {
    std::size_t const length = text.View().size();
    text.AppendWith(kWhere.size(), [length](char* const end) {
      char* const begin = end - length;
      std::memmove(begin + kWhere.size(), begin, length);
      std::memcpy(begin, kWhere.data(), kWhere.size());
      return kWhere.size();
    });
    where_ = std::move(text);
  }
  projection_.joinPairs_ = std::move(condition.joinPairs_);
  projection_.joinConditions_ = std::move(condition.joinConditions_);
  return *this;
}

// Pinned: appended, not replaced; held by Filter.TwoHavingsGiveTwoKeywords.
ASFilter& ASFilter::Having(ASGroupComparison const& condition) {
  for (ASDomain* const domain : condition.Domains()) projection_.AddDomain(domain);
  having_ << " HAVING " << condition.Query();
  return *this;
}

ASFilter& ASFilter::ConnectBy(ASComparison const& prior, ASComparison const& start) {
  if (start.records_.begin() != start.records_.end()) {
    Merge(start);
    where_ << " START WITH " << start.Query();
  }
  Merge(prior);
  where_ << " CONNECT BY PRIOR " << prior.Query();
  return *this;
}

ASFilter& ASFilter::Hint(Str const& hint) {
  hint_ = hint;
  return *this;
}

ASComparison ASFilter::Exists() const { return ASComparison(Wrapped(" EXISTS", Query()), nullptr, nullptr); }
ASComparison ASFilter::NotExists() const { return ASComparison(Wrapped(" NOT EXISTS", Query()), nullptr, nullptr); }
ASAttribute ASFilter::Select() const { return ASAttribute(Query()); }
ASAttribute ASFilter::Any() const { return ASAttribute(Wrapped(" ANY", Query())); }

Str ASFilter::Query() const { return Rendered(0); }

Str ASFilter::Rendered(std::size_t more) const {
  Str const& projected = projection_.projectText_;
  Str const& plain = projection_.GroupText();
  // Pinned: "DISTINCT " makes the select list the longer one, too; held by Filter.DistinctIsGroupedByAllItsColumns.
  bool const groupsByPlain = plain.length() < projected.length() || having_.length() > 0;
  Str const& explicitly = groupProjection_.GroupText();
  Str const& grouped = explicitly.length() > 0 || !groupsByPlain ? explicitly : plain;
  Str text;
  text.Reserve(kStatementRoom + hint_.View().size() + projected.View().size() + where_.View().size() +
               grouped.View().size() + having_.View().size() + more);
  text << "SELECT ";
  if (hint_.length() > 0) text << "/*+ " << hint_ << " */";
  if (projected.length() > 0) {
    text << projected;
  } else {
    text << '*';
  }
  text << " FROM ";
  projection_.AppendTo(text, "(", ")");
  text << where_;
  if (grouped.length() > 0) text << " GROUP BY " << grouped;
  if (having_.length() > 0) text << ' ' << having_;
  return text;
}

void ASFilter::Merge(ASComparison const& condition) {
  for (ASDomain* const domain : condition.records_) projection_.AddDomain(domain);
}
