#ifndef CORVANE_DATA_VALUE_NUMBER_H
#define CORVANE_DATA_VALUE_NUMBER_H

#include <type_traits>

#include "corvane/data/value/str.h"

namespace corvane {

/// A built-in number, or an enumerator that converts to one.
template <class T>
constexpr bool kIsNumber = std::is_arithmetic<T>::value ||
                           (std::is_enum<T>::value && std::is_convertible<T, long long>::value);

/// A plain number of any built-in type as an operand of a condition or an expression. Not for keeping.
class CORVANE_API Number {
 public:
  /// Takes a number of any built-in type as it is; a `long double` becomes a double, and an enumerator the number
  /// behind it.
  template <class T, std::enable_if_t<kIsNumber<T>, int> = 0>
  Number(T number) {
    if constexpr (std::is_enum<T>::value) {
      *this = Number(static_cast<std::underlying_type_t<T>>(number));
    } else if constexpr (std::is_floating_point<T>::value) {
      kind_ = Kind::kReal;
      real_ = static_cast<double>(number);
    } else if constexpr (std::is_signed<T>::value) {
      kind_ = Kind::kSigned;
      signed_ = number;
    } else {
      kind_ = Kind::kUnsigned;
      unsigned_ = number;
    }
  }

  /// Appends the number as Str's own `<<` writes it: integers (characters and truth values among them) in decimal,
  /// doubles with the fewest digits that read back as the same number.
  void AppendTo(Str& out) const;
  /// False for a double that is infinite or no number.
  bool IsFinite() const;

 private:
  enum class Kind { kSigned, kUnsigned, kReal };

  Kind kind_;
  // The members of an unnamed union would pass for public ones in the reference.
  /// @cond
  union {
    long long signed_;
    unsigned long long unsigned_;
    double real_;
  };
  /// @endcond
};

/// `Result` for a number.
template <class T, class Result>
using IfNumber = std::enable_if_t<kIsNumber<T>, Result>;

/// `Result` for a number that is neither int nor double, which have overloads of their own.
template <class T, class Result>
using IfOtherNumber =
    std::enable_if_t<kIsNumber<T> && !std::is_same<T, int>::value && !std::is_same<T, double>::value, Result>;

/// `Result` for two numbers that are neither both int nor both double, which have overloads of their own.
template <class T, class U, class Result>
using IfOtherNumbers = std::enable_if_t<kIsNumber<T> && kIsNumber<U> &&
                                            !(std::is_same<T, U>::value &&
                                              (std::is_same<T, int>::value || std::is_same<T, double>::value)),
                                        Result>;

}  // namespace corvane

#endif
