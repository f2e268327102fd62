#include "corvane/data/value/guid.h"

#include <array>
#include <cstring>
#include <string_view>
#include <utility>

#include "corvane/internal/same_kind.h"

using corvane::internal::SameKind;

namespace {

// The value of each character as a hexadecimal digit; -1 for the others.
constexpr std::array<signed char, 256> HexDigits() {
  std::array<signed char, 256> digits{};
  for (auto& digit : digits) digit = -1;
  for (int i = 0; i < 10; ++i) digits['0' + static_cast<std::size_t>(i)] = static_cast<signed char>(i);
  for (int i = 0; i < 6; ++i) {
    digits['a' + static_cast<std::size_t>(i)] = static_cast<signed char>(10 + i);
    digits['A' + static_cast<std::size_t>(i)] = static_cast<signed char>(10 + i);
  }
  return digits;
}

int HexDigit(char c) {
  static constexpr std::array<signed char, 256> kDigits = HexDigits();
  return kDigits[static_cast<unsigned char>(c)];
}

// A dash stands before the bytes 4, 6, 8 and 10.
bool DashBefore(int byte) { return byte == 4 || byte == 6 || byte == 8 || byte == 10; }

bool ParseText(std::string_view text, char* bytes) {
  if (text.size() >= 2 && text.front() == '{' && text.back() == '}') text = text.substr(1, text.size() - 2);
  for (int i = 0; i < Guid::kBytes; ++i) {
    if (DashBefore(i) && !text.empty() && text.front() == '-') text.remove_prefix(1);
    if (text.size() < 2) return false;
    int const high = HexDigit(text[0]);
    int const low = HexDigit(text[1]);
    if (high < 0 || low < 0) return false;
    bytes[i] = static_cast<char>(high * 16 + low);
    text.remove_prefix(2);
  }
  return text.empty();
}

void PutBigEndian(char* to, std::uint64_t number) {
  for (int i = 7; i >= 0; --i, number >>= 8) to[i] = static_cast<char>(number & 0xFF);
}

}  // namespace

Guid::Guid(char const* text) {
  char bytes[kBytes];
  if (!Parse(text, bytes)) return;
  bytes_ = new char[kBytes];
  std::memcpy(bytes_, bytes, kBytes);
}

Guid::Guid(std::uint64_t first, std::uint64_t second) : bytes_(new char[kBytes]) {
  PutBigEndian(bytes_, first);
  PutBigEndian(bytes_ + 8, second);
}

bool Guid::Parse(char const* text, char* bytes) { return text != nullptr && ParseText(text, bytes); }

Guid::Guid(InPlace) : bytes_(new char[kBytes]()), inPlace_(true) {}

Guid::Guid(Guid const& other) : basic_type() {
  if (other.IsNull() != 0) return;
  bytes_ = new char[kBytes];
  std::memcpy(bytes_, other.bytes_, kBytes);
}

Guid::~Guid() { delete[] bytes_; }

Guid& Guid::operator=(Guid const& other) {
  if (this == &other) return *this;
  if (other.IsNull() != 0) {
    SetNull();
    return *this;
  }
  if (bytes_ == nullptr) bytes_ = new char[kBytes];
  std::memcpy(bytes_, other.bytes_, kBytes);
  null_ = false;
  return *this;
}

bool Guid::operator==(Guid const& other) const {
  if (IsNull() != 0 || other.IsNull() != 0) return IsNull() != 0 && other.IsNull() != 0;
  return std::memcmp(bytes_, other.bytes_, kBytes) == 0;
}

bool Guid::operator<(Guid const& other) const {
  if (IsNull() != 0 || other.IsNull() != 0) return IsNull() != 0 && other.IsNull() == 0;
  return std::memcmp(bytes_, other.bytes_, kBytes) < 0;
}

bool Guid::Equals(basic_type const& other, char const* operation) const {
  return *this == SameKind<Guid>(*this, other, operation);
}

bool Guid::Less(basic_type const& other, char const* operation) const {
  return *this < SameKind<Guid>(*this, other, operation);
}

bool Guid::operator==(basic_type const& other) const { return Equals(other, "Guid::operator == ()"); }

bool Guid::operator<(basic_type const& other) const { return Less(other, "Guid::operator < ()"); }

void Guid::copy(basic_type const& other) { *this = SameKind<Guid>(*this, other, "Guid::copy()"); }

int Guid::IsNull() const { return (inPlace_ ? null_ : bytes_ == nullptr) ? 1 : 0; }

void Guid::SetNull() {
  if (inPlace_) {
    std::memset(bytes_, 0, kBytes);
    null_ = true;
    return;
  }
  delete[] bytes_;
  bytes_ = nullptr;
}

int Guid::GetSize() const { return length(); }

int Guid::size() const { return length(); }

int Guid::GetType() const { return corvane::kTypeGuid; }

Str Guid::getstr() const {
  Str text;
  if (bytes_ == nullptr) return text;
  constexpr std::size_t kTextLength = 36;
  text.AppendWith(kTextLength, [this](char* at) {
    for (int i = 0; i < kBytes; ++i) {
      if (DashBefore(i)) *at++ = '-';
      // Bytes written through voidptr() while the value is NULL never reach a statement.
      auto const byte = static_cast<unsigned char>(IsNull() == 0 ? bytes_[i] : 0);
      *at++ = "0123456789abcdef"[byte >> 4];
      *at++ = "0123456789abcdef"[byte & 15];
    }
    return kTextLength;
  });
  return text;
}

void* Guid::voidptr() const { return bytes_; }
