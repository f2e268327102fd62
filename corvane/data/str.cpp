#include "corvane/data/str.h"

#include <cstring>
#include <string_view>

#include "corvane/internal/same_kind.h"

using corvane::internal::SameKind;
using corvane::internal::ThrowIncompatible;

namespace {

// A text as the comparisons see it: null, or up to its first NUL without trailing blanks.
struct Trimmed {
  Trimmed(char const* text, std::size_t capacity, bool isNull) : null(isNull || text == nullptr) {
    if (isNull || text == nullptr) return;
    std::size_t length = strnlen(text, capacity);
    while (length > 0 && text[length - 1] == ' ') --length;
    bytes = std::string_view(text, length);
  }

  bool operator==(Trimmed const& other) const { return null == other.null && bytes == other.bytes; }
  bool operator<(Trimmed const& other) const { return null ? !other.null : !other.null && bytes < other.bytes; }

  bool null;
  std::string_view bytes;
};

Trimmed Of(ASStr const& text) {
  return {static_cast<char const*>(text.voidptr()), text.Capacity(), text.IsNull() != 0};
}

Trimmed Of(Str const& text) { return {text.str(), text.View().size(), text.IsNull() != 0}; }

Trimmed Of(char const* text) { return {text, text != nullptr ? std::strlen(text) : 0, false}; }

Trimmed Of(ASStr const& own, basic_type const& other, char const* operation) {
  if (own.GetType() != other.GetType()) ThrowIncompatible(operation);
  int const size = other.GetSize();
  return {static_cast<char const*>(other.voidptr()), size > 0 ? static_cast<std::size_t>(size) : 0,
          other.IsNull() != 0};
}

}  // namespace

ASStr::ASStr(unsigned capacity) : Str(InPlace{}, capacity), capacity_(capacity) {}

ASStr::ASStr(ASStr const& other)
    : basic_type(), ASData(other), Str(InPlace{}, other.capacity_), capacity_(other.capacity_) {
  std::memcpy(Buffer(), other.Buffer(), capacity_);
  MarkNull(other.IsNull() != 0);
}

ASStr::~ASStr() = default;

int ASStr::IsNull() const { return Str::IsNull(); }
void ASStr::SetNull() { Str::SetNull(); }
int ASStr::GetSize() const { return static_cast<int>(capacity_); }
int ASStr::size() const { return static_cast<int>(capacity_); }
int ASStr::GetType() const { return Str::GetType(); }
Str ASStr::getstr() const { return Str::getstr(); }
void* ASStr::voidptr() const { return Buffer(); }
int ASStr::GetDBType() const { return corvane::kDbStr; }

bool ASStr::operator==(basic_type const& other) const { return Of(*this) == Of(*this, other, "ASStr::operator == ()"); }
bool ASStr::operator<(basic_type const& other) const { return Of(*this) < Of(*this, other, "ASStr::operator < ()"); }
bool ASStr::operator<(Str const& text) const { return Of(*this) < Of(text); }
bool ASStr::operator==(Str const& text) const { return Of(*this) == Of(text); }
bool ASStr::operator<(char const* text) const { return Of(*this) < Of(text); }
bool ASStr::operator==(char const* text) const { return Of(*this) == Of(text); }

void ASStr::copy(basic_type const& other) {
  auto const& text = SameKind<Str>(*this, other, "ASStr::copy()");
  *this = text.getstr();
  if (text.IsNull() != 0) SetNull();
}

void ASStr::Trim() {
  for (std::size_t i = capacity_; i > 1 && Buffer()[i - 1] == ' '; --i) Buffer()[i - 1] = '\0';
}

ASStr& ASStr::operator=(Str const& text) {
  if (text.IsNull() != 0) {
    SetNull();
  } else {
    Pad(text.str(), text.View().size());
  }
  return *this;
}

ASStr& ASStr::operator=(char const* text) {
  if (text == nullptr) {
    SetNull();
  } else {
    Pad(text, std::strlen(text));
  }
  return *this;
}

ASStr& ASStr::operator=(ASStr const& text) { return *this = static_cast<Str const&>(text); }

void ASStr::Fill(char const* text, std::size_t length) { Str::Assign(text, length); }

void ASStr::Pad(char const* text, std::size_t length) {
  std::size_t const taken = length < capacity_ ? length : capacity_;
  std::memmove(Buffer(), text, taken);  // `text` may lie in the buffer
  std::memset(Buffer() + taken, ' ', capacity_ - taken);
  Buffer()[capacity_] = '\0';
  MarkNull(false);
}
