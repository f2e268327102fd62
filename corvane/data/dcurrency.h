#ifndef CORVANE_DATA_DCURRENCY_H
#define CORVANE_DATA_DCURRENCY_H

#include <type_traits>

#include "corvane/data/double.h"

/// A column of an amount of money: an ASDouble with a type code of its own, so that it neither compares with nor
/// copies from an ASDouble through basic_type.
class CORVANE_API ASDCurrency : public ASDouble {
 public:
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

  ASDCurrency& operator=(Double const& other) override;
  ASDCurrency& operator=(ASDouble const& other) override;
  virtual ASDCurrency& operator=(ASDCurrency const& other);

  template <class T, std::enable_if_t<std::is_arithmetic<T>::value, int> = 0>
  ASDCurrency& operator=(T other) {
    return *this = Double(static_cast<double>(other));
  }
  bool operator==(ASDCurrency const& other) const { return Double::operator==(other); }
  using ASDouble::operator==;
  using ASDouble::operator<;
};

#endif
