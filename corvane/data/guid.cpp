#include "corvane/data/guid.h"

#include "corvane/internal/same_kind.h"

namespace {

// Pinned: equality reports itself with the text of the ordering; held by ASGuid.EqualityReportsTheTextOfTheOrdering.
constexpr char const* kComparison = "ASGuid::operator < ()";

}  // namespace

ASGuid::ASGuid() : Guid(InPlace{}) {}

ASGuid::ASGuid(ASGuid const& other) : basic_type(), ASData(other), Guid(InPlace{}) { Guid::operator=(other); }

ASGuid::~ASGuid() = default;

int ASGuid::IsNull() const { return Guid::IsNull(); }
void ASGuid::SetNull() { Guid::SetNull(); }
void ASGuid::SetNotNull() { MarkNull(false); }
int ASGuid::GetSize() const { return kBytes; }
int ASGuid::size() const { return kBytes; }
int ASGuid::GetType() const { return Guid::GetType(); }
Str ASGuid::getstr() const { return Guid::getstr(); }
void* ASGuid::voidptr() const { return Guid::voidptr(); }
bool ASGuid::operator==(basic_type const& other) const { return Equals(other, kComparison); }
bool ASGuid::operator<(basic_type const& other) const { return Less(other, kComparison); }
int ASGuid::GetDBType() const { return corvane::kDbGuid; }
void ASGuid::Trim() {}

void ASGuid::copy(basic_type const& other) {
  Guid::operator=(corvane::internal::SameKind<Guid>(*this, other, "ASGuid::copy()"));
}

ASGuid& ASGuid::operator=(Guid const& other) {
  Guid::operator=(other);
  return *this;
}

ASGuid& ASGuid::operator=(ASGuid const& other) { return *this = static_cast<Guid const&>(other); }
