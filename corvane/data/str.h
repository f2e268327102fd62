#ifndef CORVANE_DATA_STR_H
#define CORVANE_DATA_STR_H

#include <cstddef>

#include "corvane/data/data.h"
#include "corvane/data/value/str.h"

namespace corvane::internal {
class ResultRows;
}

/// A column of fixed-width text: assigned texts are padded with blanks to the capacity. A new one is NULL.
///
/// The capacity is in bytes, and a longer text is cut there without error, possibly inside a character of several
/// bytes. What a session's Fetch() puts in is not padded, what a cursor's does is. A padded value written to a VARCHAR
/// column stores its blanks, and as a key it matches only under collations that ignore trailing blanks: use ASVStr for
/// VARCHAR. A NULL value as a key is written as '' and so matches empty texts.
class CORVANE_API ASStr : public virtual basic_type, public ASData, public Str {
 public:
  /// Room for `capacity` bytes, 0 included. Throws AException "Text is too long for Str. " above INT_MAX.
  explicit ASStr(unsigned capacity);
  /// Copies capacity, value and binding.
  ASStr(ASStr const& other);
  ~ASStr() override;

  int IsNull() const override;
  /// Fills the buffer with NUL.
  void SetNull() override;
  /// The capacity.
  int GetSize() const override;
  /// The capacity.
  int size() const override;
  int GetType() const override;
  /// The text with its padding; a null Str when NULL.
  Str getstr() const override;
  /// The buffer: capacity + 1 bytes, never a null pointer. Bytes written there count up to the first NUL; they do not
  /// end a NULL state.
  void* voidptr() const override;
  /// Against a value of type 12, its text read through voidptr() up to the first NUL. Trailing blanks do not count:
  /// the rest is compared as unsigned bytes. Two NULLs are equal and NULL lies before everything.
  bool operator==(basic_type const& other) const override;
  bool operator<(basic_type const& other) const override;
  /// Assigns the text of a value of type 12 and takes over its null state.
  void copy(basic_type const& other) override;
  /// corvane::kDbStr (5).
  int GetDBType() const override;
  /// Turns trailing blanks into NULs, beginning at the last position of the buffer and never at the first: a text of
  /// blanks keeps one.
  void Trim() override;

  /// A null Str or pointer sets NULL. Otherwise the first `capacity` bytes are taken and padded with blanks. The
  /// binding stays.
  /// @{
  virtual ASStr& operator=(Str const& text);
  virtual ASStr& operator=(char const* text);
  virtual ASStr& operator=(ASStr const& text);
  /// @}

  /// Compare without trailing blanks, as with basic_type; a null Str or pointer counts as NULL.
  /// @{
  virtual bool operator<(Str const& text) const;
  virtual bool operator==(Str const& text) const;
  virtual bool operator<(char const* text) const;
  virtual bool operator==(char const* text) const;

  bool operator!=(Str const& text) const { return !(*this == text); }
  bool operator!=(char const* text) const { return !(*this == text); }
  bool operator!=(basic_type const& other) const { return !(*this == other); }
  bool operator>=(Str const& text) const { return !(*this < text); }
  bool operator>=(char const* text) const { return !(*this < text); }
  bool operator>(Str const& text) const { return *this >= text && *this != text; }
  bool operator>(char const* text) const { return *this >= text && *this != text; }
  bool operator<=(Str const& text) const { return !(*this > text); }
  bool operator<=(char const* text) const { return !(*this > text); }
  /// @}

  /// Of two columns; exact matches, which the language prefers to the forms above and to their mirror images.
  /// @{
  bool operator==(ASStr const& text) const { return *this == static_cast<Str const&>(text); }
  bool operator!=(ASStr const& text) const { return *this != static_cast<Str const&>(text); }
  bool operator<(ASStr const& text) const { return *this < static_cast<Str const&>(text); }
  bool operator>(ASStr const& text) const { return *this > static_cast<Str const&>(text); }
  bool operator<=(ASStr const& text) const { return *this <= static_cast<Str const&>(text); }
  bool operator>=(ASStr const& text) const { return *this >= static_cast<Str const&>(text); }
  /// @}

  /// The capacity in bytes.
  unsigned Capacity() const { return capacity_; }
  /// Takes the first `capacity` of `length` bytes without padding, as a fetch does; not NULL afterwards.
  void Fill(char const* text, std::size_t length);

 private:
  friend class corvane::internal::ResultRows;

  void Pad(char const* text, std::size_t length);

  unsigned capacity_;
};

/// With the column on the right: as when it stands on the left.
/// @{
inline bool operator==(char const* left, ASStr const& right) { return right == left; }
inline bool operator!=(char const* left, ASStr const& right) { return right != left; }
inline bool operator<(char const* left, ASStr const& right) { return right > left; }
inline bool operator>(char const* left, ASStr const& right) { return right < left; }
inline bool operator<=(char const* left, ASStr const& right) { return right >= left; }
inline bool operator>=(char const* left, ASStr const& right) { return right <= left; }
inline bool operator==(Str const& left, ASStr const& right) { return right == left; }
inline bool operator!=(Str const& left, ASStr const& right) { return right != left; }
inline bool operator<(Str const& left, ASStr const& right) { return right > left; }
inline bool operator>(Str const& left, ASStr const& right) { return right < left; }
inline bool operator<=(Str const& left, ASStr const& right) { return right >= left; }
inline bool operator>=(Str const& left, ASStr const& right) { return right <= left; }
/// @}

#endif
