#ifndef CORVANE_DATA_VALUE_STR_H
#define CORVANE_DATA_VALUE_STR_H

#include <string.h>  // strnlen

#include <cstddef>
#include <cstring>
#include <iosfwd>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "corvane/data/value/basic_type.h"

/// The text type in which statements, names and messages are built, by appending with `<<`.
///
/// A Str is null (no text) or holds a text of any bytes, NUL included, always followed by a terminating NUL.
/// A null Str and an empty one are equal as texts in every comparison; only IsNull() tells them apart.
/// Lengths and positions are bytes. A text longer than INT_MAX throws AException
/// "Text is too long for Str. "; memory exhaustion throws std::bad_alloc; the text is then unchanged.
class CORVANE_API Str : public virtual basic_type {
 public:
  /// Null.
  Str() noexcept {}
  /// Copies the NUL-terminated text; null for a null pointer.
  Str(char const* text);
  /// Copies `length` bytes, never null; `bytes` may be null when `length` is 0.
  Str(char const* bytes, std::size_t length);
  /// Copies text and null state.
  Str(Str const& other);
  /// Takes the text over, and leaves the other one null; of a text column, which keeps its buffer, copies it.
  Str(Str&& other) : basic_type() {
    if (other.inPlace_) {
      *this = static_cast<Str const&>(other);  // whose buffer stays with it
    } else {
      Swap(other);
    }
  }
  /// Empty (not null), with room for `capacity` bytes; a negative capacity counts as 0.
  explicit Str(int capacity);
  template <class T, std::enable_if_t<std::is_same<T, char>::value, int> = 0>
  explicit Str(T) = delete;  ///< a character is no capacity: append it with `<<`
  /// Copies the whole standard string, never null. A template of exactly std::string, so that a braced pair of
  /// literals is never taken for one.
  template <class S, std::enable_if_t<std::is_same<S, std::string>::value, int> = 0>
  Str(S const& text) : Str(text.data(), text.size()) {}
  ~Str() override;

  /// Assign a text, which may lie in this one; a null pointer and a null Str make this null. A text that is moved from
  /// is null afterwards, unless it is a column's.
  /// @{
  Str& operator=(char const* text);
  Str& operator=(Str const& other);
  Str& operator=(Str&& other);
  /// @}

  /// Each appends and returns the text itself. A null pointer or null Str appends nothing; anything else makes a
  /// null text non-null. Integers are written in decimal. Doubles are written with the fewest digits that read back
  /// as the same number: plain decimal notation for 0 and 1e-6 <= |x| < 1e17, with an exponent outside that range
  /// ("1e+17"); never dependent on the locale. A text may be appended to itself.
  /// @{
  Str& operator<<(char const* text) { return text != nullptr ? Append(text, std::strlen(text)) : *this; }
  Str& operator<<(Str const& text) { return text.Null() ? *this : Append(text.str(), text.Length()); }
  Str& operator<<(char c) { return Append(&c, 1); }
  Str& operator<<(double number);
  Str& operator<<(int number);
  Str& operator<<(unsigned number);
  Str& operator<<(long number);
  Str& operator<<(unsigned long number);
  Str& operator<<(long long number);
  Str& operator<<(unsigned long long number);
  /// @}

  /// Appends `length` bytes as they stand, which may lie in the text itself; a null text is not null afterwards.
  Str& Append(char const* bytes, std::size_t length) {
    if (inPlace_ || text_ == nullptr || length > capacity_ - length_) return AppendGrowing(bytes, length);
    if (length > 0) std::memmove(text_ + length_, bytes, length);  // they may be the text's own
    length_ += length;
    text_[length_] = '\0';
    return *this;
  }
  /// Makes room for `extra` more bytes, calls `write(char* at)`, which returns how many bytes it wrote there
  /// (at most `extra`), and takes these into the text. For appending without a temporary.
  template <class Writer>
  Str& AppendWith(std::size_t extra, Writer&& write);
  /// Makes room for a text of `length` bytes in all. A null text becomes an empty one.
  void Reserve(std::size_t length);

  /// A new text of both; null when both sides are.
  /// @{
  Str operator+(char const* text) const;
  Str operator+(Str const& text) const;
  Str operator+(char c) const;
  /// @}

  Str operator+(int) const = delete;  ///< neither a digit nor pointer arithmetic: append with `<<`

  /// Byte-wise comparisons; a null text or null pointer counts as the empty text.
  /// @{
  bool operator==(char const* text) const { return View() == Viewed(text); }
  bool operator!=(char const* text) const { return View() != Viewed(text); }
  bool operator<(char const* text) const { return View() < Viewed(text); }
  bool operator>(char const* text) const { return View() > Viewed(text); }
  bool operator<=(char const* text) const { return View() <= Viewed(text); }
  bool operator>=(char const* text) const { return View() >= Viewed(text); }
  bool operator==(Str const& text) const { return View() == text.View(); }
  bool operator!=(Str const& text) const { return View() != text.View(); }
  bool operator<(Str const& text) const { return View() < text.View(); }
  bool operator>(Str const& text) const { return View() > text.View(); }
  bool operator<=(Str const& text) const { return View() <= text.View(); }
  bool operator>=(Str const& text) const { return View() >= text.View(); }
  /// @}

  /// As basic_type gives them, but null equals empty. For a value of a type other than 12 they throw AException
  /// "Incompatible types for Str::operator == (). ", or with "<" for "==". Beside a column they compare as the column
  /// does: trailing blanks do not count, and its NULL equals only another.
  /// @{
  bool operator==(basic_type const& other) const override;
  bool operator<(basic_type const& other) const override;
  bool operator!=(basic_type const& other) const { return !(*this == other); }
  /// @}

  /// The text, NUL-terminated; of a null Str an empty text, never a null pointer. Valid until the next change.
  /// @{
  char const* str() const { return text_ != nullptr ? text_ : ""; }
  char const* c_str() const { return str(); }
  operator char const*() const { return str(); }
  /// @}

  /// The bytes, NUL among them; of a null Str none. Valid until the next change.
  std::string_view View() const { return {str(), Length()}; }
  /// A copy of the bytes; of a null Str an empty text.
  std::string ToString() const { return std::string(View()); }

  /// Length in bytes; 0 when null.
  int length() const { return static_cast<int>(Length()); }
  /// 0-based position of the first `what` at or after `from`, or -1. An empty or null `what` is never found.
  int findStr(char const* what, unsigned from = 0) const;
  /// The bytes from position `first` to position `last`, both inclusive, clamped to the text;
  /// empty when `last` lies before `first`.
  Str getInterval(int first, int last) const;
  /// The bytes from position `from` up to, not including, the next `delimiter`; all the rest when there is none
  /// (or when it is empty); empty when `from` lies past the end. A negative `from` counts as 0.
  Str getUntil(Str const& delimiter, int from) const;
  /// A copy with the letters A to Z in lower case (ASCII only); this text is unchanged.
  Str toLower() const;
  /// Replaces every `from` in `text` by `to`, going on behind the inserted text. An empty `from` changes nothing.
  static void strReplace(Str& text, Str const& from, Str const& to);
  /// strReplace(*this, from, to); returns the text itself.
  Str& replaceStr(Str const& from, Str const& to);

  int IsNull() const override;
  /// Drops the text.
  void SetNull() override;
  /// The length in bytes.
  int GetSize() const override;
  /// corvane::kTypeStr (12).
  int GetType() const override;
  /// A copy.
  Str getstr() const override;
  /// The text, or a null pointer when null.
  void* voidptr() const override;
  void copy(basic_type const& other) override;

 protected:
  /// Chooses the constructor for columns.
  struct InPlace {};
  /// For columns, whose buffer is filled in place: a NULL text over a zero-filled buffer of `capacity` + 1 bytes that
  /// is never replaced, shrunk or outgrown; whatever is written through the members above is cut at `capacity`, and
  /// the length is that up to the first NUL, however it got there.
  Str(InPlace, std::size_t capacity);
  /// The buffer of an in-place text, `capacity` + 1 bytes. Owned by the text.
  char* Buffer() const { return text_; }
  /// Sets the null state of an in-place text; the bytes stay.
  void MarkNull(bool null) { null_ = null; }
  /// Replaces the text by `length` bytes, which may lie in it; never null afterwards.
  void Assign(char const* bytes, std::size_t length);

 private:
  static std::string_view Viewed(char const* text) {
    return text != nullptr ? std::string_view(text) : std::string_view();
  }
  bool Null() const { return inPlace_ ? null_ : text_ == nullptr; }
  std::size_t Length() const { return inPlace_ ? InPlaceLength() : length_; }
  std::size_t InPlaceLength() const { return text_ != nullptr ? strnlen(text_, capacity_) : 0; }
  Str& AppendGrowing(char const* bytes, std::size_t length);
  Str& AppendInPlace(char const* bytes, std::size_t length);
  int Find(std::string_view what, std::size_t from) const;
  void Grow(std::size_t length);
  char* Extend(std::size_t extra);
  void Swap(Str& other) noexcept {
    std::swap(text_, other.text_);
    std::swap(length_, other.length_);
    std::swap(capacity_, other.capacity_);
  }

  char* text_ = nullptr;      // owned (malloc); capacity_ + 1 bytes
  std::size_t length_ = 0;    // not used by an in-place text
  std::size_t capacity_ = 0;  // bytes that fit before the terminating NUL
  bool inPlace_ = false;
  bool null_ = true;  // of an in-place text only; else a text is null when it has no buffer
};

/// A new text of both; null when both sides are.
CORVANE_API Str operator+(char const* left, Str const& right);
/// Neither a digit nor pointer arithmetic: append with `<<`.
Str operator+(int, Str const&) = delete;
/// The comparisons of Str with the text on the left: byte-wise, a null text or null pointer counting as the empty text.
/// @{
inline bool operator==(char const* left, Str const& right) { return right == left; }
inline bool operator!=(char const* left, Str const& right) { return right != left; }
inline bool operator<(char const* left, Str const& right) { return right > left; }
inline bool operator>(char const* left, Str const& right) { return right < left; }
inline bool operator<=(char const* left, Str const& right) { return right >= left; }
inline bool operator>=(char const* left, Str const& right) { return right <= left; }
/// @}

/// Writes the bytes of the text; nothing for a null one.
CORVANE_API std::ostream& operator<<(std::ostream& out, Str const& text);

template <class Writer>
Str& Str::AppendWith(std::size_t extra, Writer&& write) {
  if (inPlace_) {
    Str part;
    part.AppendWith(extra, std::forward<Writer>(write));
    return *this << part;
  }
  char* const at = text_ != nullptr && extra <= capacity_ - length_ ? text_ + length_ : Extend(extra);
  std::size_t const written = write(at);
  length_ += written;
  at[written] = '\0';
  return *this;
}

#endif
