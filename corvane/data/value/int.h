#ifndef CORVANE_DATA_VALUE_INT_H
#define CORVANE_DATA_VALUE_INT_H

#include <limits>
#include <type_traits>

#include "corvane/data/value/double.h"
#include "corvane/data/value/int64.h"
#include "corvane/data/value/mixed_arithmetic.h"
#include "corvane/data/value/narrow.h"
#include "corvane/data/value/numeric.h"
#include "corvane/data/value/str.h"

/// A signed 32-bit number. NULL is the value 0x80000000 (-2147483648) itself, which can therefore never be held as a
/// number. Arithmetic with a NULL gives NULL; so does a division by zero; other overflow wraps. Throws nothing but
/// what is said of basic_type and of mixed_arithmetic.h.
class CORVANE_API Int : public virtual numeric {
 public:
  /// The plain type of the number.
  using Scalar = int;
  /// The class's name, for messages.
  static constexpr char const* kName = "Int";
  /// The number that stands for NULL.
  static constexpr int kNull = std::numeric_limits<int>::min();

  /// NULL.
  Int() = default;
  /// The number; -2147483648 is NULL.
  Int(int value) : value_(value) {}
  /// From a plain number of another type, or a value of another type, whose NULL is carried over. What does not fit
  /// throws as in mixed_arithmetic.h; a fraction is truncated toward zero.
  template <class T, corvane::MixedWithT<Int, T>* = nullptr>
  Int(T const& number) : Int(corvane::Converted<Int>(number)) {}
  /// Copies the number, and with it the null state.
  Int(Int const&) = default;
  ~Int() override;

  /// Assigns the number, and with it the null state.
  Int& operator=(Int const& other) {
    value_ = other.value_;
    return *this;
  }
  /// Assigns a plain integer of any type; -2147483648 sets NULL. When it does not fit, throws AException
  /// "Number is out of range for Int. "; the value is then unchanged.
  template <class T, std::enable_if_t<std::is_integral<T>::value, int> = 0>
  Int& operator=(T value) {
    value_ = corvane::Narrow<Int>(value);
    return *this;
  }
  /// The number; -2147483648 when NULL.
  operator int() const { return value_; }

  /// Sum, difference, product, quotient and the two signs: NULL when an operand is. A division by zero gives NULL,
  /// other overflow wraps; what wraps to -2147483648 is NULL, too.
  /// @{
  Int operator+(Int const& other) const;
  Int operator-(Int const& other) const;
  Int operator*(Int const& other) const;
  Int operator/(Int const& other) const;
  Int operator+(int other) const { return *this + Int(other); }
  Int operator-(int other) const { return *this - Int(other); }
  Int operator*(int other) const { return *this * Int(other); }
  Int operator/(int other) const { return *this / Int(other); }
  Int operator+() const { return value_; }
  Int operator-() const;
  /// @}

  /// `+`, `-`, `*` and `/` with the result assigned to this value.
  /// @{
  Int& operator+=(Int const& other) { return *this = *this + other; }
  Int& operator-=(Int const& other) { return *this = *this - other; }
  Int& operator*=(Int const& other) { return *this = *this * other; }
  Int& operator/=(Int const& other) { return *this = *this / other; }
  Int& operator+=(int other) { return *this += Int(other); }
  Int& operator-=(int other) { return *this -= Int(other); }
  Int& operator*=(int other) { return *this *= Int(other); }
  Int& operator/=(int other) { return *this /= Int(other); }
  /// @}

  /// Add and subtract 1, wrapping; a NULL stays NULL. The forms behind the value return what it was before.
  /// @{
  Int& operator++() { return *this += 1; }
  Int operator++(int);
  Int& operator--() { return *this -= 1; }
  Int operator--(int);
  /// @}

  /// Two NULLs are equal, and so are a NULL and the plain number -2147483648; a NULL lies before every other number.
  /// @{
  bool operator==(Int const& other) const { return value_ == other.value_; }
  bool operator==(int other) const { return value_ == other; }
  bool operator<(Int const& other) const { return value_ < other.value_; }
  bool operator<(int other) const { return value_ < other; }
  /// @}

  bool operator==(basic_type const& other) const override;
  bool operator<(basic_type const& other) const override;

  int IsNull() const override;
  void SetNull() override;
  /// 4.
  int GetSize() const override;
  /// corvane::kTypeInt (1).
  int GetType() const override;
  /// The stored number in decimal; "-2147483648" when NULL, which as a key matches no row.
  Str getstr() const override;
  /// The address of the int.
  void* voidptr() const override;
  void copy(basic_type const& other) override;

 protected:
  /// `==`, `<` and copy() of a value of any type, for the columns, which name themselves in what they throw:
  /// "Incompatible types for ", `operation` (like "ASInt::copy()") and ". ".
  /// @{
  bool Equals(basic_type const& other, char const* operation) const;
  bool Less(basic_type const& other, char const* operation) const;
  void Assign(basic_type const& other, char const* operation);
  /// @}

 private:
  int value_ = kNull;
};

#endif
