#ifndef CORVANE_DATA_VALUE_MIXED_ARITHMETIC_H
#define CORVANE_DATA_VALUE_MIXED_ARITHMETIC_H

#include <limits>
#include <type_traits>

#include "corvane/data/value/narrow.h"

/// @file
/// Int, Int64, Double and the columns built on them beside a number of another type: a plain one, as in `asint == 5L`
/// or `asdouble * 2`, or a value, as in `price * count`. Without these templates the compiler would see two equally
/// good ways (one side to a plain number, the other to the value's type) and refuse, or lose a NULL.
///
/// Sums, differences, products and quotients are of the wider type: of an Int and an integer of more bits (or unsigned)
/// an Int64, of an integer and a floating number a Double. A compound assignment computes in the wider type too,
/// truncates toward zero, and throws AException "Number is out of range for Int. " (Int64) when the result does not
/// fit, as assignment and construction do. Comparisons of integers are exact whatever their sizes and signs; with a
/// floating number on one side they are those of doubles. NULL with anything is NULL; in comparisons two NULLs are
/// equal and a NULL lies before every number.

// The headers of the value types include this one: it names them, and asks of them what they are only where it is used.
class Int;
class Int64;
class Double;

namespace corvane {
/// @cond

// The value type that `N` is or is built on, or void.
template <class N>
using NumberOf =
    std::conditional_t<std::is_base_of<Int, N>::value, Int,
                       std::conditional_t<std::is_base_of<Int64, N>::value, Int64,
                                          std::conditional_t<std::is_base_of<Double, N>::value, Double, void>>>;

// The plain type of a number that is one, or of a value.
template <class T, bool Arithmetic = std::is_arithmetic<T>::value>
struct PlainOf {
  using Type = T;
};
template <class T>
struct PlainOf<T, false> : PlainOf<NumberOf<T>, false> {};
template <>
struct PlainOf<Int, false> {
  using Type = int;
};
template <>
struct PlainOf<Int64, false> {
  using Type = long;
};
template <>
struct PlainOf<Double, false> {
  using Type = double;
};
template <>
struct PlainOf<void, false> {
  using Type = void;
};

// Present, as the value type of `N`, when `N` is one of ours and `T` a number of another type.
template <class V, class Plain>
struct Mixed : std::enable_if<!std::is_same<typename PlainOf<V>::Type, Plain>::value, V> {};
template <class V>
struct Mixed<V, void> {};
template <class Plain>
struct Mixed<void, Plain> {};
template <>
struct Mixed<void, void> {};
template <class N, class T>
using MixedT = typename Mixed<NumberOf<N>, typename PlainOf<T>::Type>::type;
// The same for the value type `V` itself, which need not be complete yet.
template <class V, class T>
using MixedWithT = typename Mixed<V, typename PlainOf<T>::Type>::type;
// Present, as the value type of `N`, when `T` is a plain number.
template <class T, class N>
using LeftT = std::enable_if_t<std::is_arithmetic<T>::value && !std::is_void<NumberOf<N>>::value, NumberOf<N>>;

// Whether the operation is one of doubles although the value is an integer.
template <class V, class T>
constexpr bool kByDouble =
    std::is_integral<typename V::Scalar>::value&& std::is_floating_point<typename PlainOf<T>::Type>::value;

// The type that an operation of `V` with a `T` is computed in.
template <class V, class T, class Plain = typename PlainOf<T>::Type>
using ResultT =
    std::conditional_t<kByDouble<V, T>, Double,
                       std::conditional_t<std::is_same<V, Int>::value && std::is_integral<Plain>::value &&
                                              (sizeof(Plain) > sizeof(int) ||
                                               (sizeof(Plain) == sizeof(int) && std::is_unsigned<Plain>::value)),
                                          Int64, V>>;

template <class T>
bool IsNullNumber(T const& number) {
  if constexpr (std::is_arithmetic<T>::value) {
    return false;
  } else {
    return number.IsNull() != 0;
  }
}

template <class T>
typename PlainOf<T>::Type Plain(T const& number) {
  return static_cast<typename PlainOf<T>::Type>(number);
}

/// The number as a Double; NULL stays NULL.
template <class T, class D = Double>
D AsDouble(T const& number) {
  return IsNullNumber(number) ? D() : D(static_cast<double>(Plain(number)));
}

/// The number truncated toward zero; NULL stays NULL. Throws when it does not fit.
template <class V, class D>
V Truncate(D const& number) {
  if (number.IsNull() != 0) return V();
  using Scalar = typename PlainOf<V>::Type;
  double const plain = number;
  // The bounds are powers of two, and so exact as doubles, whatever the size of the integer.
  double const bound = -static_cast<double>(std::numeric_limits<Scalar>::min());
  if (!((plain >= -bound || plain > -bound - 1) && plain < bound)) ThrowOutOfRange(V::kName);
  return V(static_cast<Scalar>(plain));
}

/// The number as a value of type `V`; NULL stays NULL. Throws when it does not fit.
template <class V, class T>
V Converted(T const& number) {
  if constexpr (kByDouble<V, T>) {
    return Truncate<V>(AsDouble(number));
  } else {
    return IsNullNumber(number) ? V() : V(Narrow<V>(Plain(number)));
  }
}

// -1, 0 or 1 as `a` lies before, at or behind `b`; 2 when neither, which a NaN does.
template <class A, class B>
int ComparePlain(A a, B b) {
  if constexpr (std::is_integral<A>::value && std::is_integral<B>::value) {
    if (!Fits<long long>(b)) return -1;  // an unsigned number beyond every value of ours
    auto const left = static_cast<long long>(a);
    auto const right = static_cast<long long>(b);
    return left < right ? -1 : left == right ? 0 : 1;
  } else {
    auto const left = static_cast<double>(a);
    auto const right = static_cast<double>(b);
    return left < right ? -1 : left == right ? 0 : left > right ? 1 : 2;
  }
}

/// @endcond
}  // namespace corvane

/// Sum, difference, product and quotient of a value and a number of another type, of the wider type of the two; NULL
/// when an operand is.
/// @{
template <class N, class T, class V = corvane::MixedT<N, T>, class R = corvane::ResultT<V, T>>
R operator+(N const& a, T const& b) {
  return corvane::Converted<R>(a) + corvane::Converted<R>(b);
}

template <class N, class T, class V = corvane::MixedT<N, T>, class R = corvane::ResultT<V, T>>
R operator-(N const& a, T const& b) {
  return corvane::Converted<R>(a) - corvane::Converted<R>(b);
}

template <class N, class T, class V = corvane::MixedT<N, T>, class R = corvane::ResultT<V, T>>
R operator*(N const& a, T const& b) {
  return corvane::Converted<R>(a) * corvane::Converted<R>(b);
}

template <class N, class T, class V = corvane::MixedT<N, T>, class R = corvane::ResultT<V, T>>
R operator/(N const& a, T const& b) {
  return corvane::Converted<R>(a) / corvane::Converted<R>(b);
}
/// @}

/// `+`, `-`, `*` and `/` with the result assigned to the value on the left: an integer takes it truncated toward zero,
/// and throws AException "Number is out of range for Int. " (Int64) when it does not fit. A column skips an operand
/// that would change nothing, as in its own operators.
/// @{
template <class N, class T, class V = corvane::MixedT<N, T>, class R = corvane::ResultT<V, T>>
N& operator+=(N& a, T const& b) {
  if constexpr (std::is_same<R, V>::value) {
    a += corvane::Converted<V>(b);
  } else {
    R const operand = corvane::Converted<R>(b);
    if (!(operand == R(0))) a = corvane::Converted<V>(corvane::Converted<R>(a) + operand);
  }
  return a;
}

template <class N, class T, class V = corvane::MixedT<N, T>, class R = corvane::ResultT<V, T>>
N& operator-=(N& a, T const& b) {
  if constexpr (std::is_same<R, V>::value) {
    a -= corvane::Converted<V>(b);
  } else {
    R const operand = corvane::Converted<R>(b);
    if (!(operand == R(0))) a = corvane::Converted<V>(corvane::Converted<R>(a) - operand);
  }
  return a;
}

template <class N, class T, class V = corvane::MixedT<N, T>, class R = corvane::ResultT<V, T>>
N& operator*=(N& a, T const& b) {
  if constexpr (std::is_same<R, V>::value) {
    a *= corvane::Converted<V>(b);
  } else {
    R const operand = corvane::Converted<R>(b);
    if (!(operand == R(1))) a = corvane::Converted<V>(corvane::Converted<R>(a) * operand);
  }
  return a;
}

template <class N, class T, class V = corvane::MixedT<N, T>, class R = corvane::ResultT<V, T>>
N& operator/=(N& a, T const& b) {
  if constexpr (std::is_same<R, V>::value) {
    a /= corvane::Converted<V>(b);
  } else {
    R const operand = corvane::Converted<R>(b);
    if (!(operand == R(1))) a = corvane::Converted<V>(corvane::Converted<R>(a) / operand);
  }
  return a;
}
/// @}

/// Comparisons of a value with a number of another type: exact for integers, as doubles when one of them is a floating
/// number. Two NULLs are equal; a NULL lies before every number.
/// @{
template <class N, class T, class V = corvane::MixedT<N, T>>
bool operator==(N const& a, T const& b) {
  if (corvane::IsNullNumber(a) || corvane::IsNullNumber(b)) {
    return corvane::IsNullNumber(a) && corvane::IsNullNumber(b);
  }
  return corvane::ComparePlain(corvane::Plain(a), corvane::Plain(b)) == 0;
}

template <class N, class T, class V = corvane::MixedT<N, T>>
bool operator!=(N const& a, T const& b) {
  return !(a == b);
}

template <class N, class T, class V = corvane::MixedT<N, T>>
bool operator<(N const& a, T const& b) {
  if (corvane::IsNullNumber(a) || corvane::IsNullNumber(b)) {
    return corvane::IsNullNumber(a) && !corvane::IsNullNumber(b);
  }
  return corvane::ComparePlain(corvane::Plain(a), corvane::Plain(b)) < 0;
}

template <class N, class T, class V = corvane::MixedT<N, T>>
bool operator>(N const& a, T const& b) {
  if (corvane::IsNullNumber(a) || corvane::IsNullNumber(b)) {
    return !corvane::IsNullNumber(a) && corvane::IsNullNumber(b);
  }
  return corvane::ComparePlain(corvane::Plain(a), corvane::Plain(b)) == 1;
}

template <class N, class T, class V = corvane::MixedT<N, T>>
bool operator<=(N const& a, T const& b) {
  return a < b || a == b;
}

template <class N, class T, class V = corvane::MixedT<N, T>>
bool operator>=(N const& a, T const& b) {
  return a > b || a == b;
}
/// @}

/// A plain number on the left, of the type of the value, too: the built-in operators would take a NULL for a number,
/// and end the process in a division by zero. NULL when the value is.
/// @{
template <class T, class N, class V = corvane::LeftT<T, N>, class R = corvane::ResultT<V, T>>
R operator+(T a, N const& b) {
  return corvane::Converted<R>(a) + corvane::Converted<R>(b);
}

template <class T, class N, class V = corvane::LeftT<T, N>, class R = corvane::ResultT<V, T>>
R operator-(T a, N const& b) {
  return corvane::Converted<R>(a) - corvane::Converted<R>(b);
}

template <class T, class N, class V = corvane::LeftT<T, N>, class R = corvane::ResultT<V, T>>
R operator*(T a, N const& b) {
  return corvane::Converted<R>(a) * corvane::Converted<R>(b);
}

template <class T, class N, class V = corvane::LeftT<T, N>, class R = corvane::ResultT<V, T>>
R operator/(T a, N const& b) {
  return corvane::Converted<R>(a) / corvane::Converted<R>(b);
}
/// @}

/// Comparisons with a plain number on the left: as with the value there.
/// @{
template <class T, class N, class V = corvane::LeftT<T, N>>
bool operator==(T a, N const& b) {
  return b == a;
}

template <class T, class N, class V = corvane::LeftT<T, N>>
bool operator!=(T a, N const& b) {
  return b != a;
}

template <class T, class N, class V = corvane::LeftT<T, N>>
bool operator<(T a, N const& b) {
  return b > a;
}

template <class T, class N, class V = corvane::LeftT<T, N>>
bool operator>(T a, N const& b) {
  return b < a;
}

template <class T, class N, class V = corvane::LeftT<T, N>>
bool operator<=(T a, N const& b) {
  return b >= a;
}

template <class T, class N, class V = corvane::LeftT<T, N>>
bool operator>=(T a, N const& b) {
  return b <= a;
}
/// @}

#endif
