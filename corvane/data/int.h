#ifndef CORVANE_DATA_INT_H
#define CORVANE_DATA_INT_H

#include <type_traits>

#include "corvane/data/data.h"
#include "corvane/data/value/int.h"

/// A column of a signed 32-bit integer; NULL is 0x80000000. A new one is NULL.
///
/// Assignment writes only when the number changes. Compound assignment skips an operand that would change nothing:
/// `+=` and `-=` with 0, `*=` and `/=` with 1; a NULL stays NULL in any case.
class CORVANE_API ASInt : public virtual basic_type, public ASData, public Int {
 public:
  /// NULL, and bound to no column.
  ASInt() = default;
  /// Copies the value and the binding.
  ASInt(ASInt const&) = default;
  ~ASInt() override;

  int IsNull() const override;
  void SetNull() override;
  int GetSize() const override;
  int size() const override;
  int GetType() const override;
  Str getstr() const override;
  void* voidptr() const override;
  bool operator==(basic_type const& other) const override;
  bool operator<(basic_type const& other) const override;
  void copy(basic_type const& other) override;
  /// corvane::kDbInt (3).
  int GetDBType() const override;
  /// Does nothing.
  void Trim() override;

  /// Assign a value, a NULL too, and write only when it changes; the binding stays.
  /// @{
  virtual ASInt& operator=(Int const& other);
  virtual ASInt& operator=(ASInt const& other);
  /// @}

  /// Compare as Int does: two NULLs are equal, and so are a NULL and -2147483648.
  /// @{
  virtual bool operator==(Int const& other) const;
  virtual bool operator==(int other) const;
  /// @}

  /// Add and subtract 1, wrapping; a NULL stays NULL. The forms behind the value return what it was before.
  /// @{
  virtual ASInt& operator++();
  virtual Int operator++(int);
  virtual ASInt& operator--();
  virtual Int operator--(int);
  /// @}

  /// Compute as Int does; an operand that would change nothing is skipped.
  /// @{
  virtual ASInt& operator+=(Int const& other);
  virtual ASInt& operator-=(Int const& other);
  virtual ASInt& operator*=(Int const& other);
  virtual ASInt& operator/=(Int const& other);
  virtual ASInt& operator+=(int other);
  virtual ASInt& operator-=(int other);
  virtual ASInt& operator*=(int other);
  virtual ASInt& operator/=(int other);
  /// @}

  /// Assigns a plain integer of any type; -2147483648 sets NULL. When it does not fit, throws AException
  /// "Number is out of range for Int. "; the value is then unchanged.
  template <class T, std::enable_if_t<std::is_integral<T>::value, int> = 0>
  ASInt& operator=(T other) {
    return *this = Int(corvane::Narrow<Int>(other));
  }
  /// Compares two columns by their values; an exact match, which the language prefers to the other forms.
  bool operator==(ASInt const& other) const { return *this == static_cast<Int const&>(other); }
  /// As Int has it.
  using Int::operator<;
};

#endif
