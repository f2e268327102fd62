#ifndef CORVANE_DATA_VALUE_BASIC_TYPE_H
#define CORVANE_DATA_VALUE_BASIC_TYPE_H

#include "corvane/api.h"

class Str;

/// What the library has besides its classes: codes, the numbers and kinds of exceptions, literals, plain numbers as
/// operands.
namespace corvane {

/// Type codes that `basic_type::GetType()` returns; the record mapper switches on them.
enum : int {
  kTypeInt = 1,         ///< Int, ASInt, ASTime
  kTypeDouble = 2,      ///< Double, ASDouble
  kTypeBlob = 3,        ///< Blob, ASBlob, ASGeometry
  kTypeStr = 12,        ///< Str, ASStr, ASVStr
  kTypeRealBlob = 14,   ///< RealBlob, ASRealBlob
  kTypeInt64 = 16,      ///< Int64, ASInt64
  kTypeDCurrency = 29,  ///< ASDCurrency
  kTypeGuid = 30        ///< Guid, ASGuid
};

}  // namespace corvane

/// The root of every value: null state, size, type code, text form, comparison and copying.
/// Derived from virtually, so that a column class holds one root for its value side and its column side.
///
/// The order of the virtual functions is binary contract.
class CORVANE_API basic_type {
 public:
  /// Virtual: a value may be deleted through a pointer to any of its bases.
  virtual ~basic_type();

  /// 1 when the value is SQL NULL, else 0. Throws nothing.
  virtual int IsNull() const = 0;
  /// The negation of IsNull().
  virtual int IsNotNull() const;
  /// Makes the value NULL.
  virtual void SetNull() = 0;
  /// Storage size in bytes: fixed for scalars and for columns with a capacity, else the current length.
  virtual int GetSize() const = 0;
  /// GetSize() for the plain value types; columns with a capacity say what they return.
  virtual int size() const;
  /// The type code, one of `corvane::kTypeInt` to `corvane::kTypeGuid` for the library's own classes.
  virtual int GetType() const = 0;
  /// The value as text, unquoted and unescaped: what goes into statements.
  virtual Str getstr() const = 0;
  /// Address of the raw value; each class says what lies there. Not owned by the caller.
  virtual void* voidptr() const = 0;
  /// Equality with a value of the same GetType(). Two NULLs are equal, and no other value is (but a plain Str makes no
  /// difference between null and empty). Throws AException
  /// "Incompatible types for Int::operator == (). " (with the class at hand) for another type.
  virtual bool operator==(basic_type const& other) const = 0;
  /// Strict weak ordering among values of the same GetType(): NULL comes before everything.
  /// Throws AException "Incompatible types for Int::operator < (). " for another type.
  virtual bool operator<(basic_type const& other) const = 0;
  /// Assigns the value and the null state of a value of the same GetType().
  /// Throws AException "Incompatible types for Int::copy(). " for another type; this value is then unchanged.
  virtual void copy(basic_type const& other) = 0;

 protected:
  /// There is nothing here to be copied: the classes of the values copy what they hold.
  /// @{
  basic_type() = default;
  basic_type(basic_type const&) = default;
  basic_type& operator=(basic_type const&) = default;
  /// @}
};

#endif
