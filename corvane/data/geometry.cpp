#include "corvane/data/geometry.h"

ASGeometry::ASGeometry(std::uint16_t capacity) : Blob(InPlace{}, capacity) {}

ASGeometry::ASGeometry(ASGeometry const& other) : basic_type(), ASData(other), Blob(InPlace{}, other.Capacity()) {
  Blob::TakeWhole(other);
}

ASGeometry::~ASGeometry() = default;

int ASGeometry::IsNull() const { return LengthField() == 0 ? 1 : 0; }
void ASGeometry::SetNull() { Blob::SetNull(); }
int ASGeometry::GetSize() const { return Capacity(); }
int ASGeometry::size() const { return static_cast<int>(Length()); }
int ASGeometry::GetType() const { return Blob::GetType(); }
Str ASGeometry::getstr() const { return Blob::getstr(); }
void* ASGeometry::voidptr() const { return Blob::voidptr(); }
bool ASGeometry::operator==(basic_type const& other) const { return Equals(other, "ASGeometry::operator == ()"); }
bool ASGeometry::operator<(basic_type const& other) const { return Less(other, "ASGeometry::operator < ()"); }
void ASGeometry::copy(basic_type const& other) { Blob::Assign(other, "ASGeometry::copy()"); }
int ASGeometry::GetDBType() const { return corvane::kDbGeometry; }
void ASGeometry::Trim() {}

// Pinned: the length field may say more than fits here; held by ASGeometry.AssignmentKeepsTheLengthOfALongerSource.
ASGeometry& ASGeometry::operator=(ASGeometry const& other) {
  Blob::TakeWhole(other);
  return *this;
}

ASGeometry& ASGeometry::operator=(Blob const& other) {
  Blob::TakeBytes(other);
  return *this;
}
