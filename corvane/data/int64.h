#ifndef CORVANE_DATA_INT64_H
#define CORVANE_DATA_INT64_H

#include <type_traits>

#include "corvane/data/data.h"
#include "corvane/data/value/int64.h"

/// A column of a signed 64-bit integer with a null flag. A new one is NULL.
///
/// Assignment carries the null state over, and writes the number only when it changes; assigning a plain number clears
/// the null flag. Compound assignment skips an operand that would change nothing:
/// `+=` and `-=` with 0, `*=` and `/=` with 1; a NULL stays NULL in any case.
class CORVANE_API ASInt64 : public virtual basic_type, public ASData, public Int64 {
 public:
  /// NULL, and bound to no column.
  ASInt64() = default;
  /// Copies the value and the binding.
  ASInt64(ASInt64 const&) = default;
  ~ASInt64() override;

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
  /// corvane::kDbInt64 (16).
  int GetDBType() const override;
  /// Does nothing.
  void Trim() override;

  /// Assign a value, a NULL too, and write only when it changes; the binding stays.
  /// @{
  virtual ASInt64& operator=(Int64 const& other);
  virtual ASInt64& operator=(ASInt64 const& other);
  /// @}

  /// Compare as Int64 does: two NULLs are equal, and a NULL equals no number.
  /// @{
  virtual bool operator==(Int64 const& other) const;
  virtual bool operator==(long other) const;
  /// @}

  /// Add and subtract 1, wrapping; a NULL stays NULL. The forms behind the value return what it was before.
  /// @{
  virtual ASInt64& operator++();
  virtual Int64 operator++(int);
  virtual ASInt64& operator--();
  virtual Int64 operator--(int);
  /// @}

  /// Compute as Int64 does; an operand that would change nothing is skipped.
  /// @{
  virtual ASInt64& operator+=(Int64 const& other);
  virtual ASInt64& operator-=(Int64 const& other);
  virtual ASInt64& operator*=(Int64 const& other);
  virtual ASInt64& operator/=(Int64 const& other);
  virtual ASInt64& operator+=(long other);
  virtual ASInt64& operator-=(long other);
  virtual ASInt64& operator*=(long other);
  virtual ASInt64& operator/=(long other);
  /// @}

  /// Assigns a plain integer of any type and clears the null flag. When it does not fit, throws AException
  /// "Number is out of range for Int64. "; the value is then unchanged.
  template <class T, std::enable_if_t<std::is_integral<T>::value, int> = 0>
  ASInt64& operator=(T other) {
    return *this = Int64(corvane::Narrow<Int64>(other));
  }
  /// Compares two columns by their values; an exact match, which the language prefers to the other forms.
  bool operator==(ASInt64 const& other) const { return *this == static_cast<Int64 const&>(other); }
  /// As Int64 has it.
  using Int64::operator!=;
  /// As Int64 has it.
  using Int64::operator<;
};

#endif
