#include "corvane/data/blob.h"

ASBlob::ASBlob(std::uint16_t capacity) : Blob(InPlace{}, capacity) {}

ASBlob::ASBlob(ASBlob const& other) : basic_type(), ASData(other), Blob(InPlace{}, other.Capacity()) {
  Blob::TakeWhole(other);
}

ASBlob::~ASBlob() = default;

int ASBlob::IsNull() const { return LengthField() == 0 ? 1 : 0; }
void ASBlob::SetNull() { Blob::SetNull(); }
int ASBlob::GetSize() const { return Capacity(); }
int ASBlob::size() const { return static_cast<int>(Length()); }
int ASBlob::GetType() const { return Blob::GetType(); }
Str ASBlob::getstr() const { return Blob::getstr(); }
void* ASBlob::voidptr() const { return Blob::voidptr(); }
bool ASBlob::operator==(basic_type const& other) const { return Equals(other, "ASBlob::operator == ()"); }
bool ASBlob::operator<(basic_type const& other) const { return Less(other, "ASBlob::operator < ()"); }
void ASBlob::copy(basic_type const& other) { Blob::Assign(other, "ASBlob::copy()"); }
int ASBlob::GetDBType() const { return corvane::kDbBlob; }
void ASBlob::Trim() {}

// Pinned: the length field may say more than fits here; held by ASBlob.AssignmentKeepsTheLengthOfALongerSource.
ASBlob& ASBlob::operator=(ASBlob const& other) {
  Blob::TakeWhole(other);
  return *this;
}

ASBlob& ASBlob::operator=(basic_type const& other) {
  Blob::TakeBytes(other);
  return *this;
}
