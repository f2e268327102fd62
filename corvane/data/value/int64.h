#ifndef CORVANE_DATA_VALUE_INT64_H
#define CORVANE_DATA_VALUE_INT64_H

#include <limits>
#include <type_traits>

#include "corvane/data/value/double.h"
#include "corvane/data/value/mixed_arithmetic.h"
#include "corvane/data/value/narrow.h"
#include "corvane/data/value/numeric.h"
#include "corvane/data/value/str.h"

/// A signed 64-bit number with a null flag beside it. While the flag is set the stored number is the smallest one,
/// -9223372036854775808, so that a stale number never reaches a statement. Every assignment of a plain number clears
/// the flag. Arithmetic with a NULL gives NULL; so do a division by zero and the smallest number divided by -1; other
/// overflow wraps. Throws nothing but what is said of basic_type and of mixed_arithmetic.h.
class CORVANE_API Int64 : public virtual numeric {
 public:
  /// The plain type of the number.
  using Scalar = long;
  /// The class's name, for messages.
  static constexpr char const* kName = "Int64";

  /// NULL.
  Int64() = default;
  /// The number, not NULL, whatever it is.
  Int64(long value) : value_(value), null_(0) {}
  /// From a plain number of another type, or a value of another type, whose NULL is carried over. What does not fit
  /// throws as in mixed_arithmetic.h; a fraction is truncated toward zero.
  template <class T, corvane::MixedWithT<Int64, T>* = nullptr>
  Int64(T const& number) : Int64(corvane::Converted<Int64>(number)) {}
  /// Copies number and null flag.
  Int64(Int64 const&) = default;
  ~Int64() override;

  /// Assigns number and null flag.
  Int64& operator=(Int64 const& other) {
    value_ = other.value_;
    null_ = other.null_;
    return *this;
  }
  /// Assigns a plain integer of any type and clears the null flag. When it does not fit, throws AException
  /// "Number is out of range for Int64. "; the value is then unchanged.
  template <class T, std::enable_if_t<std::is_integral<T>::value, int> = 0>
  Int64& operator=(T value) {
    value_ = corvane::Narrow<Int64>(value);
    null_ = 0;
    return *this;
  }
  /// The stored number; as a rule the smallest one when NULL.
  operator long() const { return value_; }

  /// Sum, difference, product, quotient and the two signs: NULL when an operand is. A division by zero and that of the
  /// smallest number by -1 give NULL, other overflow wraps.
  /// @{
  Int64 operator+(Int64 const& other) const;
  Int64 operator-(Int64 const& other) const;
  Int64 operator*(Int64 const& other) const;
  Int64 operator/(Int64 const& other) const;
  Int64 operator+(long other) const { return *this + Int64(other); }
  Int64 operator-(long other) const { return *this - Int64(other); }
  Int64 operator*(long other) const { return *this * Int64(other); }
  Int64 operator/(long other) const { return *this / Int64(other); }
  Int64 operator+() const { return Int64(*this); }
  Int64 operator-() const;
  /// @}

  /// `+`, `-`, `*` and `/` with the result assigned to this value.
  /// @{
  Int64& operator+=(Int64 const& other) { return *this = *this + other; }
  Int64& operator-=(Int64 const& other) { return *this = *this - other; }
  Int64& operator*=(Int64 const& other) { return *this = *this * other; }
  Int64& operator/=(Int64 const& other) { return *this = *this / other; }
  Int64& operator+=(long other) { return *this += Int64(other); }
  Int64& operator-=(long other) { return *this -= Int64(other); }
  Int64& operator*=(long other) { return *this *= Int64(other); }
  Int64& operator/=(long other) { return *this /= Int64(other); }
  /// @}

  /// Add and subtract 1, wrapping; a NULL stays NULL. The forms behind the value return what it was before.
  /// @{
  Int64& operator++() { return *this += 1L; }
  Int64 operator++(int);
  Int64& operator--() { return *this -= 1L; }
  Int64 operator--(int);
  /// @}

  /// Two NULLs are equal; a NULL equals no number and lies before all of them.
  /// @{
  bool operator==(Int64 const& other) const { return null_ == other.null_ && (null_ != 0 || value_ == other.value_); }
  bool operator==(long other) const { return null_ == 0 && value_ == other; }
  bool operator!=(Int64 const& other) const { return !(*this == other); }
  bool operator!=(long other) const { return !(*this == other); }
  bool operator<(Int64 const& other) const {
    return null_ != 0 ? other.null_ == 0 : other.null_ == 0 && value_ < other.value_;
  }
  bool operator<(long other) const { return null_ != 0 || value_ < other; }
  bool operator>(Int64 const& other) const { return Int64(other) < *this; }
  bool operator<=(Int64 const& other) const { return !(*this > other); }
  bool operator>=(Int64 const& other) const { return !(*this < other); }
  bool operator>(long other) const { return Int64(other) < *this; }
  bool operator<=(long other) const { return !(*this > other); }
  bool operator>=(long other) const { return !(*this < other); }
  /// @}

  bool operator==(basic_type const& other) const override;
  bool operator<(basic_type const& other) const override;

  int IsNull() const override;
  void SetNull() override;
  /// Clears the null flag; the stored number stays.
  void SetNotNull() { null_ = 0; }
  /// 8.
  int GetSize() const override;
  /// corvane::kTypeInt64 (16).
  int GetType() const override;
  /// The stored number in decimal; "-9223372036854775808" when NULL, which as a key matches no row.
  Str getstr() const override;
  /// The address of the long. Writing there does not clear the null flag: call SetNotNull().
  void* voidptr() const override;
  void copy(basic_type const& other) override;

  /// Reads a decimal number, leading blanks and a sign included, up to the first other character. 0 for a null
  /// pointer or a text without digits; what does not fit becomes the nearest number that does.
  static long atoint64_t(char const* text);

 protected:
  /// `==`, `<` and copy() of a value of any type, for the columns, which name themselves in what they throw:
  /// "Incompatible types for ", `operation` (like "ASInt64::copy()") and ". ".
  /// @{
  bool Equals(basic_type const& other, char const* operation) const;
  bool Less(basic_type const& other, char const* operation) const;
  void Assign(basic_type const& other, char const* operation);
  /// @}

 private:
  long value_ = std::numeric_limits<long>::min();
  char null_ = 1;
};

#endif
