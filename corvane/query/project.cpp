#include "corvane/query/project.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "corvane/data/data.h"
#include "corvane/internal/sql_text.h"
#include "corvane/mapping/attribute.h"
#include "corvane/mapping/domain.h"
#include "corvane/query/group_attribute.h"

namespace sql = corvane::internal::sql;

namespace {

constexpr char const* kDistinct = "DISTINCT ";

// Room for a list of a few columns; more is made when it does not suffice.
constexpr std::size_t kListRoom = 240;

void AppendSeparator(Str& list) {
  if (list.length() > 0) list << sql::kSeparator;
}

}  // namespace

ASProject::ASProject() = default;
ASProject::ASProject(ASProject const&) = default;
ASProject::~ASProject() = default;

ASProject& ASProject::operator=(ASProject const& other) {
  if (this == &other) return *this;
  ASProject copy(other);  // first, so that memory exhaustion leaves no column behind whose owner is gone
  if (!plainOnly_) copy.KeepGroupText();
  std::swap(projectText_, copy.projectText_);
  std::swap(groupText_, copy.groupText_);
  std::swap(plainOnly_, copy.plainOnly_);
  items_.swap(copy.items_);
  domains_.swap(copy.domains_);
  kept_.swap(copy.kept_);
  return *this;
}

ASProject& ASProject::operator<<(ASAttribute const& attribute) {
  AppendPlain(attribute, attribute);
  return *this;
}

void ASProject::AppendPlain(ASAttribute const& listed, ASAttribute const& written) {
  std::string_view const text = Append(listed, written);
  if (!plainOnly_) {
    AppendSeparator(groupText_);
    groupText_.Append(text.data(), text.size());
  }
  if (listed.Data() != nullptr && listed.Data()->GetType() == corvane::kTypeRealBlob) {
    binaryPositions_.push_back(static_cast<int>(items_.size()) - 1);
  }
}

// The text is the original's: it may be of a class that renders itself otherwise.
ASProject& ASProject::operator<<(ASAttribute const&& attribute) {
  auto const kept = std::make_shared<ASAttribute>(attribute);
  kept_.push_back(kept);
  AppendPlain(*kept, attribute);
  return *this;
}

ASProject& ASProject::operator<<(ASGroupAttribute const& aggregate) {
  KeepGroupText();
  Append(aggregate, aggregate);
  return *this;
}

ASProject& ASProject::operator<<(ASGroupAttribute const&& aggregate) {
  KeepGroupText();
  auto const kept = std::make_shared<ASGroupAttribute>(aggregate);
  kept_.push_back(kept);
  Append(*kept, aggregate);
  return *this;
}

ASProject& ASProject::operator<<(ASGroupAttribute const* aggregate) {
  return aggregate != nullptr ? *this << *aggregate : *this;
}

// Pinned: at the end, wherever that is; held by Project.DistinctAfterAColumnIsAppendedAllTheSame.
void ASProject::Distinct() { ProjectQueryForUpdate() << kDistinct; }

Str& ASProject::ProjectQueryForUpdate() {
  KeepGroupText();
  return projectText_;
}

// Pinned: positions and joins stay; held by Project.ClearKeepsPositionsJoinsAndKeywords.
void ASProject::Clear() {
  projectText_.SetNull();
  groupText_.SetNull();
  items_.clear();
  domains_.clear();
  kept_.clear();
}

Str ASProject::ProjectForLimitInternalQuery() const {
  Str list;
  int number = 0;
  for (ASSimpleAttribute const* const item : items_) {
    AppendSeparator(list);
    item->AppendTo(list);
    list << " AS Q" << ++number;
  }
  return list;
}

Str ASProject::ProjectForLimitQuery() const {
  Str list;
  for (std::size_t number = 1; number <= items_.size(); ++number) {
    if (number > 1) list << sql::kSeparator;
    list << "ALIAS.Q" << number;
  }
  return list;
}

void ASProject::setKW(Str const& prefix, Str const& suffix) const {
  if (kwPrefix_ != prefix.View()) kwPrefix_ = prefix.View();
  if (kwSuffix_ != suffix.View()) kwSuffix_ = suffix.View();
}

Str ASProject::JoinQuery() const {
  Str text;
  AppendTo(text, "(", ")");
  return text;
}

Str ASProject::JoinForDeleteQuery() const {
  Str text;
  AppendTo(text, "", "");
  return text;
}

// Appends a column to the select list and lists it, or another one in its place; returns what was written.
std::string_view ASProject::Append(ASSimpleAttribute const& listed, ASSimpleAttribute const& written) {
  if (projectText_.length() == 0) projectText_.Reserve(kListRoom);
  char const* before = "";
  if (projectText_ == kDistinct) {
    KeepGroupText();  // of a column with that name, behind which a comma stands
  } else if (projectText_.length() > 0) {
    before = sql::kSeparator;
  }
  std::size_t const begin = projectText_.View().size() + std::strlen(before);
  written.AppendTo(projectText_, before);
  items_.push_back(Item(listed));
  AddDomain(listed.Domain());
  return projectText_.View().substr(begin);
}

// Before the select list becomes another one than the plain columns. From then on there are two texts for good: whoever
// was given the one for writing may hold it beyond Clear() and an assignment.
void ASProject::KeepGroupText() {
  if (!plainOnly_) return;
  groupText_ = projectText_;
  plainOnly_ = false;
}

void ASProject::AddDomain(ASDomain* domain) {
  if (std::find(domains_.begin(), domains_.end(), domain) == domains_.end()) domains_.push_back(domain);
}

// Appends the tables of a FROM clause, the plain ones between `open` and `close`.
void ASProject::AppendTo(Str& out, char const* open, char const* close) const {
  char const* before = open;
  for (ASDomain const* const domain : domains_) {
    if (domain == nullptr || IsOptional(domain)) continue;
    out << before;
    domain->AppendQuery(out, kwPrefix_, kwSuffix_);
    before = sql::kSeparator;
  }
  if (before != open) out << close;

  std::list<ASDomain const*> joined;
  auto condition = joinConditions_.begin();
  for (auto pair = joinPairs_.begin(); pair != joinPairs_.end() && condition != joinConditions_.end(); ++pair) {
    ASDomain const* const optionalSide = pair->second;
    Str const& on = *condition++;
    if (optionalSide == nullptr) continue;
    if (std::find(joined.begin(), joined.end(), optionalSide) != joined.end()) {
      out << sql::kAnd << on;
      continue;
    }
    if (!joined.empty()) out << ')';
    out << " LEFT JOIN ";
    optionalSide->AppendQuery(out, kwPrefix_, kwSuffix_);
    out << " ON (" << on;
    joined.push_back(optionalSide);
  }
  if (!joined.empty()) out << ')';
}

bool ASProject::IsOptional(ASDomain const* domain) const {
  return std::any_of(joinPairs_.begin(), joinPairs_.end(),
                     [domain](ASComparison::JoinPair const& pair) { return pair.second == domain; });
}

void ASProject::Swap(ASProject& other) noexcept {
  std::swap(projectText_, other.projectText_);
  std::swap(groupText_, other.groupText_);
  std::swap(plainOnly_, other.plainOnly_);
  std::swap(kwPrefix_, other.kwPrefix_);
  std::swap(kwSuffix_, other.kwSuffix_);
  items_.swap(other.items_);
  reservedItems_.swap(other.reservedItems_);
  domains_.swap(other.domains_);
  binaryPositions_.swap(other.binaryPositions_);
  joinPairs_.swap(other.joinPairs_);
  joinConditions_.swap(other.joinConditions_);
  kept_.swap(other.kept_);
}
