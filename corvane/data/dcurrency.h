#ifndef CORVANE_DATA_DCURRENCY_H
#define CORVANE_DATA_DCURRENCY_H

#include <type_traits>

#include "corvane/data/double.h"

/// A column of an amount of money: an ASDouble with a type code of its own, so that it neither compares with nor
/// copies from an ASDouble through basic_type.
class CORVANE_API ASDCurrency : public ASDouble {
 public:
  /// NULL, and bound to no column.
  ASDCurrency() = default;
  /// Copies the value and the binding.
  ASDCurrency(ASDCurrency const&) = default;
  ~ASDCurrency() override;

  /// corvane::kTypeDCurrency (29).
  int GetType() const override;
  bool operator==(basic_type const& other) const override;
  bool operator<(basic_type const& other) const override;
  void copy(basic_type const& other) override;
  /// Does nothing.
  void Trim() override;

  /// Assign a value, a NULL too, and write only when it changes; the binding stays.
  /// @{
  ASDCurrency& operator=(Double const& other) override;
  ASDCurrency& operator=(ASDouble const& other) override;
  virtual ASDCurrency& operator=(ASDCurrency const& other);
  /// @}

  /// Assigns a plain number of any type; the lowest finite double sets NULL.
  template <class T, std::enable_if_t<std::is_arithmetic<T>::value, int> = 0>
  ASDCurrency& operator=(T other) {
    return *this = Double(static_cast<double>(other));
  }
  /// Compares two columns by their values; an exact match, which the language prefers to the other forms.
  bool operator==(ASDCurrency const& other) const { return Double::operator==(other); }
  /// As ASDouble has it.
  using ASDouble::operator==;
  /// As ASDouble has it.
  using ASDouble::operator<;
};

#endif
