#ifndef CORVANE_DATA_DOUBLE_H
#define CORVANE_DATA_DOUBLE_H

#include <type_traits>

#include "corvane/data/data.h"
#include "corvane/data/value/double.h"

/// A column of a double-precision number; NULL is the lowest finite double. A new one is NULL.
///
/// Assignment writes only when the number changes. Compound assignment skips an operand that would change nothing:
/// `+=` and `-=` with 0, `*=` and `/=` with 1; a NULL stays NULL in any case.
class CORVANE_API ASDouble : public virtual basic_type, public ASData, public Double {
 public:
  /// NULL, and bound to no column.
  ASDouble() = default;
  /// Copies the value and the binding.
  ASDouble(ASDouble const&) = default;
  ~ASDouble() override;

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
  /// corvane::kDbDouble (4).
  int GetDBType() const override;
  /// Does nothing.
  void Trim() override;

  /// Assign a value, a NULL too, and write only when it changes; the binding stays.
  /// @{
  virtual ASDouble& operator=(Double const& other);
  virtual ASDouble& operator=(ASDouble const& other);
  /// @}

  /// Compute as Double does; an operand that would change nothing is skipped.
  /// @{
  virtual ASDouble& operator+=(Double const& other);
  virtual ASDouble& operator-=(Double const& other);
  virtual ASDouble& operator*=(Double const& other);
  virtual ASDouble& operator/=(Double const& other);
  virtual ASDouble& operator+=(double other);
  virtual ASDouble& operator-=(double other);
  virtual ASDouble& operator*=(double other);
  virtual ASDouble& operator/=(double other);
  /// @}

  /// Assigns a plain number of any type; the lowest finite double sets NULL.
  template <class T, std::enable_if_t<std::is_arithmetic<T>::value, int> = 0>
  ASDouble& operator=(T other) {
    return *this = Double(static_cast<double>(other));
  }
  /// Compares two columns by their values; an exact match, which the language prefers to the other forms.
  bool operator==(ASDouble const& other) const { return Double::operator==(other); }
  /// As Double has it.
  using Double::operator==;
  /// As Double has it.
  using Double::operator<;
};

#endif
