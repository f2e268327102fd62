#include "corvane/data/value/blob.h"

#include <cstring>
#include <utility>

#include "corvane/internal/same_kind.h"

using corvane::internal::SameKind;

Blob::Blob(short capacity, void const* data) {
  Allocate(capacity > 0 ? static_cast<std::size_t>(capacity) : 0);
  SetLengthField(static_cast<std::uint16_t>(allocated_));
  if (data != nullptr) std::memcpy(Room(), data, allocated_);
}

Blob::Blob(InPlace, std::uint16_t capacity) : inPlace_(true) { Allocate(capacity); }

Blob::Blob(Blob const& other) : basic_type() {
  if (other.block_ == nullptr) return;
  Allocate(other.Length());
  SetLengthField(static_cast<std::uint16_t>(allocated_));
  std::memcpy(Room(), other.Bytes(), allocated_);
}

Blob::~Blob() { delete[] block_; }

Blob& Blob::operator=(Blob const& other) {
  if (this == &other) return *this;
  if (inPlace_) {
    Fill(other.Bytes(), other.Length());
    return *this;
  }
  Blob fresh(other);
  std::swap(block_, fresh.block_);
  std::swap(allocated_, fresh.allocated_);
  return *this;
}

std::size_t Blob::Length() const {
  std::size_t const length = LengthField();
  return length < allocated_ ? length : allocated_;
}

bool Blob::operator==(Blob const& other) const {
  if (IsNull() != 0 || other.IsNull() != 0) return IsNull() != 0 && other.IsNull() != 0;
  return Length() == other.Length() && std::memcmp(Room(), other.Room(), Length()) == 0;
}

bool Blob::operator<(Blob const& other) const {
  if (IsNull() != 0 || other.IsNull() != 0) return IsNull() != 0 && other.IsNull() == 0;
  if (Length() != other.Length()) return Length() < other.Length();
  return std::memcmp(Room(), other.Room(), Length()) < 0;
}

bool Blob::Equals(basic_type const& other, char const* operation) const {
  return *this == SameKind<Blob>(*this, other, operation);
}

bool Blob::Less(basic_type const& other, char const* operation) const {
  return *this < SameKind<Blob>(*this, other, operation);
}

bool Blob::operator==(basic_type const& other) const { return Equals(other, "Blob::operator == ()"); }

bool Blob::operator<(basic_type const& other) const { return Less(other, "Blob::operator < ()"); }

void Blob::Assign(basic_type const& other, char const* operation) {
  Blob::operator=(SameKind<Blob>(*this, other, operation));
}

void Blob::copy(basic_type const& other) { Assign(other, "Blob::copy()"); }

int Blob::IsNull() const { return block_ == nullptr ? 1 : 0; }

void Blob::SetNull() {
  if (inPlace_) {
    std::memset(block_, 0, sizeof(std::uint16_t) + allocated_);
    return;
  }
  delete[] block_;
  block_ = nullptr;
  allocated_ = 0;
}

int Blob::GetSize() const { return LengthField(); }

int Blob::GetType() const { return corvane::kTypeBlob; }

Str Blob::getstr() const { return "BLOB"; }

void* Blob::voidptr() const { return block_; }

std::uint16_t Blob::LengthField() const {
  std::uint16_t length = 0;
  if (block_ != nullptr) std::memcpy(&length, block_, sizeof length);
  return length;
}

void Blob::SetLengthField(std::uint16_t length) { std::memcpy(block_, &length, sizeof length); }

void Blob::Fill(void const* bytes, std::size_t length) {
  std::size_t const fitting = length < allocated_ ? length : allocated_;
  if (fitting > 0) std::memmove(Room(), bytes, fitting);
  std::memset(Room() + fitting, 0, allocated_ - fitting);
  SetLengthField(static_cast<std::uint16_t>(fitting));
}

void Blob::TakeWhole(Blob const& other) {
  std::size_t const fitting = allocated_ < other.allocated_ ? allocated_ : other.allocated_;
  std::memmove(block_, other.block_, sizeof(std::uint16_t) + fitting);
}

void Blob::TakeBytes(basic_type const& other) {
  auto const* const blob = dynamic_cast<Blob const*>(&other);
  void const* const bytes = blob != nullptr ? blob->Bytes() : other.voidptr();
  int const size = bytes != nullptr ? other.GetSize() : 0;
  std::size_t taken = size > 0 ? static_cast<std::size_t>(size) : 0;
  if (taken > allocated_) taken = allocated_;
  if (blob != nullptr && taken > blob->allocated_) taken = blob->allocated_;
  if (taken > 0) std::memmove(Room(), bytes, taken);
  SetLengthField(static_cast<std::uint16_t>(taken));
}

void Blob::Allocate(std::size_t capacity) {
  block_ = new unsigned char[sizeof(std::uint16_t) + capacity]();
  allocated_ = capacity;
}
