#include "corvane/data/real_blob.h"

#include "corvane/internal/same_kind.h"

using corvane::internal::SameKind;

ASRealBlob::ASRealBlob(unsigned capacity) : RealBlob(capacity, nullptr) {
  if (capacity == 0) RealBlob::SetNull();
}

ASRealBlob::~ASRealBlob() = default;

int ASRealBlob::IsNull() const { return RealBlob::IsNull(); }
void ASRealBlob::SetNull() { RealBlob::SetNull(); }
int ASRealBlob::GetSize() const { return RealBlob::GetSize(); }
int ASRealBlob::size() const { return RealBlob::GetSize(); }
int ASRealBlob::GetType() const { return RealBlob::GetType(); }
Str ASRealBlob::getstr() const { return RealBlob::getstr(); }
void* ASRealBlob::voidptr() const { return RealBlob::voidptr(); }
int ASRealBlob::GetDBType() const { return corvane::kDbRealBlob; }
void ASRealBlob::Trim() {}

bool ASRealBlob::operator==(basic_type const& other) const {
  return RealBlob::operator==(SameKind<RealBlob>(*this, other, "ASRealBlob::operator == ()"));
}

bool ASRealBlob::operator<(basic_type const& other) const {
  return RealBlob::operator<(SameKind<RealBlob>(*this, other, "ASRealBlob::operator < ()"));
}

bool ASRealBlob::operator!=(basic_type const& other) const {
  return RealBlob::operator!=(SameKind<RealBlob>(*this, other, "ASRealBlob::operator != ()"));
}

void ASRealBlob::copy(basic_type const& other) {
  RealBlob::operator=(SameKind<RealBlob>(*this, other, "ASRealBlob::copy()"));
}

ASRealBlob& ASRealBlob::operator=(ASRealBlob const& other) { return *this = static_cast<RealBlob const&>(other); }

ASRealBlob& ASRealBlob::operator=(RealBlob const& other) {
  RealBlob::operator=(other);
  return *this;
}

// Pinned: compares and assigns nothing; held by ASRealBlob.AssigningThroughTheRootChangesNothing.
ASRealBlob& ASRealBlob::operator=(basic_type const& other) {
  static_cast<void>(RealBlob::operator==(SameKind<RealBlob>(*this, other, "ASRealBlob::operator = ()")));
  return *this;
}
