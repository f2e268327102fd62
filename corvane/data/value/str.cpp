#include "corvane/data/value/str.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <new>
#include <ostream>
#include <utility>

#include "corvane/data/value/exception.h"
#include "corvane/internal/number_text.h"
#include "corvane/internal/same_kind.h"

using corvane::internal::kNumberRoom;
using corvane::internal::WriteNumber;

namespace {

constexpr std::size_t kMaxLength = INT_MAX;  // length() is an int
constexpr std::size_t kSmallestRoom = 15;    // with the terminating NUL one block of 16 bytes
constexpr std::size_t kGrowingRoom = 63;     // of a text that is being appended to

// A smaller text grows by being copied into a new block. The C library keeps freed blocks of such sizes at hand for
// malloc(), while its realloc() searches the heap, and leaves blocks there that have to be joined with others.
constexpr std::size_t kCopiedRoom = 1024;

void CheckLength(std::size_t length) {
  if (length > kMaxLength) throw AException("Text is too long for Str. ");
}

template <class Number>
Str& AppendNumber(Str& text, Number number) {
  return text.AppendWith(kNumberRoom, [number](char* at) { return WriteNumber(at, number); });
}

}  // namespace

Str::Str(char const* text) {
  if (text != nullptr) Assign(text, std::strlen(text));
}

Str::Str(char const* bytes, std::size_t length) { Assign(bytes, length); }

Str::Str(Str const& other) : basic_type() {
  if (!other.Null()) Assign(other.str(), other.Length());
}

Str::Str(int capacity) { Grow(capacity > 0 ? static_cast<std::size_t>(capacity) : 0); }

Str::Str(InPlace, std::size_t capacity) : capacity_(capacity), inPlace_(true) {
  CheckLength(capacity);
  text_ = static_cast<char*>(std::calloc(capacity + 1, 1));
  if (text_ == nullptr) throw std::bad_alloc();
}

Str::~Str() {
  if (text_ != nullptr) std::free(text_);  // most temporaries have been moved from
}

Str& Str::operator=(char const* text) {
  if (text == nullptr) {
    Str::SetNull();
  } else {
    Assign(text, std::strlen(text));
  }
  return *this;
}

Str& Str::operator=(Str const& other) {
  if (this == &other) return *this;
  if (other.Null()) {
    Str::SetNull();
  } else {
    Assign(other.str(), other.Length());
  }
  return *this;
}

Str& Str::operator=(Str&& other) {
  // An in-place text keeps its buffer for good.
  if (inPlace_ || other.inPlace_) return *this = static_cast<Str const&>(other);
  Str taken(std::move(other));  // first: it may be this text itself
  Swap(taken);
  return *this;
}

Str& Str::operator<<(double number) { return AppendNumber(*this, number); }
Str& Str::operator<<(int number) { return AppendNumber(*this, static_cast<long long>(number)); }
Str& Str::operator<<(unsigned number) { return AppendNumber(*this, static_cast<unsigned long long>(number)); }
Str& Str::operator<<(long number) { return AppendNumber(*this, static_cast<long long>(number)); }
Str& Str::operator<<(unsigned long number) { return AppendNumber(*this, static_cast<unsigned long long>(number)); }
Str& Str::operator<<(long long number) { return AppendNumber(*this, number); }
Str& Str::operator<<(unsigned long long number) { return AppendNumber(*this, number); }

Str& Str::AppendGrowing(char const* bytes, std::size_t length) {
  if (inPlace_) return AppendInPlace(bytes, length);
  bool const own = text_ != nullptr && bytes >= text_ && bytes <= text_ + length_;
  std::size_t const offset = own ? static_cast<std::size_t>(bytes - text_) : 0;
  Extend(length);
  return Append(own ? text_ + offset : bytes, length);
}

Str& Str::AppendInPlace(char const* bytes, std::size_t length) {
  std::size_t const used = InPlaceLength();
  std::size_t const fitting = length < capacity_ - used ? length : capacity_ - used;
  if (fitting > 0) std::memmove(text_ + used, bytes, fitting);
  text_[used + fitting] = '\0';
  null_ = false;
  return *this;
}

void Str::Reserve(std::size_t length) {
  if (!inPlace_) Grow(length);
}

Str Str::operator+(char const* text) const {
  Str sum(*this);
  sum << text;
  return sum;
}

Str Str::operator+(Str const& text) const {
  Str sum(*this);
  sum << text;
  return sum;
}

Str Str::operator+(char c) const {
  Str sum(*this);
  sum << c;
  return sum;
}

Str operator+(char const* left, Str const& right) {
  Str sum(left);
  sum << right;
  return sum;
}

// Beside a column the column's rules count, on whichever side it stands.
bool Str::operator==(basic_type const& other) const {
  auto const& text = corvane::internal::SameKind<Str>(*this, other, "Str::operator == ()");
  return text.inPlace_ ? other == static_cast<basic_type const&>(*this) : *this == text;
}

bool Str::operator<(basic_type const& other) const {
  auto const& text = corvane::internal::SameKind<Str>(*this, other, "Str::operator < ()");
  if (!text.inPlace_) return *this < text;
  basic_type const& self = *this;
  return !(other < self) && !(other == self);
}

void Str::copy(basic_type const& other) { *this = corvane::internal::SameKind<Str>(*this, other, "Str::copy()"); }

int Str::findStr(char const* what, unsigned from) const { return Find(Viewed(what), from); }

Str Str::getInterval(int first, int last) const {
  int const begin = first > 0 ? first : 0;
  int const end = last < length() ? last : length() - 1;
  return begin <= end ? Str(str() + begin, static_cast<std::size_t>(end) - static_cast<std::size_t>(begin) + 1)
                      : Str("");
}

Str Str::getUntil(Str const& delimiter, int from) const {
  int const begin = from > 0 ? from : 0;
  int const end = Find(delimiter.View(), static_cast<std::size_t>(begin));
  return end == 0 ? Str("") : getInterval(begin, end > 0 ? end - 1 : length() - 1);
}

Str Str::toLower() const {
  Str lower(*this);
  for (char* c = lower.text_; c != nullptr && c < lower.text_ + lower.length_; ++c) {
    if (*c >= 'A' && *c <= 'Z') *c = static_cast<char>(*c - 'A' + 'a');
  }
  return lower;
}

void Str::strReplace(Str& text, Str const& from, Str const& to) {
  std::string_view const whole = text.View();
  std::string_view const sought = from.View();
  if (sought.empty() || whole.find(sought) == std::string_view::npos) return;
  Str replaced;
  replaced.Reserve(whole.size());
  std::size_t begin = 0;
  for (std::size_t at; (at = whole.find(sought, begin)) != std::string_view::npos; begin = at + sought.size()) {
    replaced.Append(whole.data() + begin, at - begin) << to;
  }
  replaced.Append(whole.data() + begin, whole.size() - begin);
  text = std::move(replaced);  // only now: `from` and `to` may be `text` itself
}

Str& Str::replaceStr(Str const& from, Str const& to) {
  strReplace(*this, from, to);
  return *this;
}

int Str::IsNull() const { return Null() ? 1 : 0; }

void Str::SetNull() {
  if (inPlace_) {
    std::memset(text_, 0, capacity_ + 1);
    null_ = true;
  } else {
    Str().Swap(*this);
  }
}

int Str::GetSize() const { return length(); }

int Str::GetType() const { return corvane::kTypeStr; }

Str Str::getstr() const { return *this; }

void* Str::voidptr() const { return text_; }

int Str::Find(std::string_view what, std::size_t from) const {
  std::size_t const position = what.empty() ? std::string_view::npos : View().find(what, from);
  return position != std::string_view::npos ? static_cast<int>(position) : -1;
}

void Str::Assign(char const* bytes, std::size_t length) {
  if (inPlace_) {
    std::size_t const fitting = length < capacity_ ? length : capacity_;
    if (fitting > 0) std::memmove(text_, bytes, fitting);
    std::memset(text_ + fitting, 0, capacity_ + 1 - fitting);
    null_ = false;
    return;
  }
  if (text_ != nullptr && length > capacity_) {
    // Into a new buffer: `bytes` may lie in the old one.
    Str fresh;
    fresh.Grow(length);
    fresh.Append(bytes, length);
    Swap(fresh);
    return;
  }
  Grow(length);
  if (length > 0) std::memmove(text_, bytes, length);
  length_ = length;
  text_[length] = '\0';
}

// Makes room for `length` bytes and the terminating NUL.
void Str::Grow(std::size_t length) {
  if (text_ != nullptr && length <= capacity_) return;
  CheckLength(length);
  std::size_t const room = length < kSmallestRoom ? kSmallestRoom : length;
  bool const copied = capacity_ < kCopiedRoom;
  auto* const grown = static_cast<char*>(copied ? std::malloc(room + 1) : std::realloc(text_, room + 1));
  if (grown == nullptr) throw std::bad_alloc();
  if (copied && text_ != nullptr) {
    std::memcpy(grown, text_, length_);
    std::free(text_);
  }
  text_ = grown;
  text_[length_] = '\0';
  capacity_ = room;
}

// Makes room for `extra` more bytes, doubling, and returns where they go.
char* Str::Extend(std::size_t extra) {
  std::size_t const needed = length_ + extra;
  if (text_ == nullptr || needed > capacity_ || needed < extra) {
    if (needed < extra) CheckLength(extra);
    std::size_t const doubled = capacity_ < kMaxLength / 2 ? 2 * capacity_ + 1 : kMaxLength;
    Grow(std::max({needed, doubled, text_ != nullptr ? kGrowingRoom : 0}));
  }
  return text_ + length_;
}

std::ostream& operator<<(std::ostream& out, Str const& text) { return out << text.View(); }
