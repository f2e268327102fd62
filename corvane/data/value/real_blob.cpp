#include "corvane/data/value/real_blob.h"

#include <climits>
#include <cstring>
#include <memory>
#include <utility>

#include "corvane/internal/same_kind.h"

using corvane::internal::SameKind;

namespace {

BlobData* NewData(unsigned length, void const* bytes, CpFlag flag) {
  auto data = std::make_unique<BlobData>();
  data->length = length;
  if (length == 0) return data.release();
  if (flag == NoCopy && bytes != nullptr) {
    data->bytes = const_cast<void*>(bytes);
    data->owned = 0;
  } else {
    data->bytes =
        bytes != nullptr ? std::memcpy(new unsigned char[length], bytes, length) : new unsigned char[length]();
  }
  return data.release();
}

}  // namespace

RealBlob::RealBlob(unsigned length, void const* bytes, CpFlag flag) : data_(NewData(length, bytes, flag)) {}

RealBlob::RealBlob(RealBlob const& other)
    : basic_type(), data_(other.data_ != nullptr ? NewData(other.data_->length, other.data_->bytes, Copy) : nullptr) {}

RealBlob::~RealBlob() { RealBlob::SetNull(); }

RealBlob& RealBlob::operator=(RealBlob const& other) {
  if (this != &other) {
    bool const fits = data_ != nullptr && other.data_ != nullptr && data_->owned != 0 && Length() == other.Length();
    if (fits && Length() > 0) {
      std::memmove(data_->bytes, other.data_->bytes, Length());  // the other one may have borrowed them
      return *this;
    }
    RealBlob fresh(other);
    std::swap(data_, fresh.data_);
  }
  return *this;
}

bool RealBlob::operator==(RealBlob const& other) const {
  if (data_ == nullptr || other.data_ == nullptr) return data_ == other.data_;
  return Length() == other.Length() && (Length() == 0 || std::memcmp(data_->bytes, other.data_->bytes, Length()) == 0);
}

bool RealBlob::operator<(RealBlob const& other) const {
  if (data_ == nullptr || other.data_ == nullptr) return data_ == nullptr && other.data_ != nullptr;
  if (Length() != other.Length()) return Length() < other.Length();
  return Length() > 0 && std::memcmp(data_->bytes, other.data_->bytes, Length()) < 0;
}

bool RealBlob::operator==(basic_type const& other) const {
  return *this == SameKind<RealBlob>(*this, other, "RealBlob::operator == ()");
}

bool RealBlob::operator<(basic_type const& other) const {
  return *this < SameKind<RealBlob>(*this, other, "RealBlob::operator < ()");
}

bool RealBlob::operator!=(basic_type const& other) const {
  return *this != SameKind<RealBlob>(*this, other, "RealBlob::operator != ()");
}

void RealBlob::copy(basic_type const& other) { *this = SameKind<RealBlob>(*this, other, "RealBlob::copy()"); }

int RealBlob::IsNull() const { return data_ == nullptr ? 1 : 0; }

void RealBlob::SetNull() {
  if (data_ != nullptr && data_->owned != 0) delete[] static_cast<unsigned char*>(data_->bytes);
  delete data_;
  data_ = nullptr;
}

int RealBlob::GetSize() const { return Length() < INT_MAX ? static_cast<int>(Length()) : INT_MAX; }

int RealBlob::GetType() const { return corvane::kTypeRealBlob; }

Str RealBlob::getstr() const { return "BLOB"; }

void* RealBlob::voidptr() const { return data_ != nullptr ? data_->bytes : nullptr; }
