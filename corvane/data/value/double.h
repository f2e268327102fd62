#ifndef CORVANE_DATA_VALUE_DOUBLE_H
#define CORVANE_DATA_VALUE_DOUBLE_H

#include <limits>
#include <type_traits>

#include "corvane/data/value/mixed_arithmetic.h"
#include "corvane/data/value/numeric.h"
#include "corvane/data/value/str.h"

/// A double-precision number. NULL is the lowest finite double (bits 0xFFEFFFFFFFFFFFFF, -1.7976931348623157e+308)
/// itself, which can therefore never be held as a number. Arithmetic with a NULL gives NULL, else what IEEE 754 gives,
/// infinities and NaN included; these have no SQL form, and the statement builders throw for them.
class CORVANE_API Double : public virtual numeric {
 public:
  /// The plain type of the number.
  using Scalar = double;
  /// The class's name, for messages.
  static constexpr char const* kName = "Double";
  /// The number that stands for NULL.
  static constexpr double kNull = std::numeric_limits<double>::lowest();

  /// NULL.
  Double() = default;
  /// The number; the lowest finite double is NULL.
  Double(double value) : value_(value) {}
  /// From a plain number of another type, or a value of another type, whose NULL is carried over. What does not fit
  /// throws as in mixed_arithmetic.h; a fraction is truncated toward zero.
  template <class T, corvane::MixedWithT<Double, T>* = nullptr>
  Double(T const& number) : Double(corvane::Converted<Double>(number)) {}
  /// Copies the number, and with it the null state.
  Double(Double const&) = default;
  ~Double() override;

  /// Assigns the number, and with it the null state.
  Double& operator=(Double const& other) {
    value_ = other.value_;
    return *this;
  }
  /// Assigns a plain number of any type; the lowest finite double sets NULL.
  template <class T, std::enable_if_t<std::is_arithmetic<T>::value, int> = 0>
  Double& operator=(T value) {
    value_ = static_cast<double>(value);
    return *this;
  }
  /// The stored number; the lowest finite double when NULL.
  operator double() const { return value_; }

  /// Sum, difference, product, quotient and the two signs: NULL when an operand is, else what IEEE 754 gives.
  /// @{
  Double operator+(Double const& other) const;
  Double operator-(Double const& other) const;
  Double operator*(Double const& other) const;
  Double operator/(Double const& other) const;
  Double operator+(double other) const { return *this + Double(other); }
  Double operator-(double other) const { return *this - Double(other); }
  Double operator*(double other) const { return *this * Double(other); }
  Double operator/(double other) const { return *this / Double(other); }
  Double operator+() const { return value_; }
  Double operator-() const;
  /// @}

  /// `+`, `-`, `*` and `/` with the result assigned to this value.
  /// @{
  Double& operator+=(Double const& other) { return *this = *this + other; }
  Double& operator-=(Double const& other) { return *this = *this - other; }
  Double& operator*=(Double const& other) { return *this = *this * other; }
  Double& operator/=(Double const& other) { return *this = *this / other; }
  Double& operator+=(double other) { return *this += Double(other); }
  Double& operator-=(double other) { return *this -= Double(other); }
  Double& operator*=(double other) { return *this *= Double(other); }
  Double& operator/=(double other) { return *this /= Double(other); }
  /// @}

  /// As doubles compare, a NaN equals nothing and lies nowhere; but a NULL lies before every number, -infinity too.
  /// @{
  bool operator==(Double const& other) const { return value_ == other.value_; }
  bool operator==(double other) const { return value_ == other; }
  bool operator<(Double const& other) const { return *this < other.value_; }
  bool operator<(double other) const {
    return value_ == kNull || other == kNull ? value_ == kNull && other != kNull : value_ < other;
  }
  bool operator>(Double const& other) const { return Double(other) < *this; }
  bool operator<=(Double const& other) const { return *this < other || *this == other; }
  bool operator>=(Double const& other) const { return *this > other || *this == other; }
  bool operator>(double other) const { return Double(other) < *this; }
  bool operator<=(double other) const { return *this < other || *this == other; }
  bool operator>=(double other) const { return *this > other || *this == other; }
  /// @}

  /// Compare with a Double of any class as ordered sets need it: a NaN counts as NULL, two NULLs are equal, and NULL
  /// comes before every number. Throw AException "Incompatible types for Double::operator == (). ", or with "<" for
  /// "==", for a value of another type.
  /// @{
  bool operator==(basic_type const& other) const override;
  bool operator<(basic_type const& other) const override;
  /// @}

  int IsNull() const override;
  void SetNull() override;
  /// 8.
  int GetSize() const override;
  /// corvane::kTypeDouble (2).
  int GetType() const override;
  /// The stored number as `Str << double` writes it, NULL included.
  Str getstr() const override;
  /// The address of the double.
  void* voidptr() const override;
  void copy(basic_type const& other) override;

 protected:
  /// `==`, `<` and copy() of a value of any type, for the columns, which name themselves in what they throw:
  /// "Incompatible types for ", `operation` (like "ASDouble::copy()") and ". ".
  /// @{
  bool Equals(basic_type const& other, char const* operation) const;
  bool Less(basic_type const& other, char const* operation) const;
  void Assign(basic_type const& other, char const* operation);
  /// @}

 private:
  double value_ = kNull;
};

#endif
