#ifndef CORVANE_DATA_VSTR_H
#define CORVANE_DATA_VSTR_H

#include "corvane/data/str.h"

/// A column of variable-width text: an ASStr whose assigned texts are not padded. A new one is NULL.
class CORVANE_API ASVStr : public ASStr {
 public:
  /// Room for `capacity` bytes, 0 included. Throws AException "Text is too long for Str. " above INT_MAX.
  explicit ASVStr(unsigned capacity);
  /// Copies capacity, value and binding.
  ASVStr(ASVStr const&) = default;
  ~ASVStr() override;

  /// corvane::kDbVStr (1).
  int GetDBType() const override;

  /// A null Str or pointer sets NULL. Otherwise the first `capacity` bytes are taken, and the rest of the buffer is
  /// filled with NUL. The binding stays.
  /// @{
  ASVStr& operator=(Str const& text) override;
  ASVStr& operator=(char const* text) override;
  ASVStr& operator=(ASStr const& text) override;
  ASVStr& operator=(ASVStr const& text) { return *this = static_cast<Str const&>(text); }
  /// @}

  /// Compares two columns by their values; an exact match, which the language prefers to the other forms.
  bool operator==(ASVStr const& text) const { return *this == static_cast<Str const&>(text); }
  /// As ASStr has it.
  using ASStr::operator==;
};

#endif
