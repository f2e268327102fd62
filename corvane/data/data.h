#ifndef CORVANE_DATA_DATA_H
#define CORVANE_DATA_DATA_H

#include "corvane/data/value/basic_type.h"
#include "corvane/data/value/str.h"

class ASAttribute;
class ASComparison;

namespace corvane {

/// Database type codes that `ASData::GetDBType()` returns; they choose how a value is written into a statement and
/// tell apart what one type code stands for.
enum : int {
  kDbVStr = 1,       ///< ASVStr
  kDbInt = 3,        ///< ASInt
  kDbDouble = 4,     ///< ASDouble and ASDCurrency
  kDbStr = 5,        ///< ASStr
  kDbBlob = 15,      ///< ASBlob
  kDbInt64 = 16,     ///< ASInt64
  kDbGeometry = 85,  ///< ASGeometry
  kDbGuid = 86,      ///< ASGuid
  kDbRealBlob = 95,  ///< ASRealBlob
  kDbTime = 100      ///< ASTime
};

}  // namespace corvane

/// A column value: the side of every column class that knows its attribute and its database type. A column class
/// derives from ASData and from one value type; both share one basic_type.
///
/// Copying a value copies the binding; assigning one leaves the target's binding alone.
/// The order of the virtual functions is binary contract.
class CORVANE_API ASData : public virtual basic_type {
 public:
  ~ASData() override;
  int IsNull() const override = 0;
  void SetNull() override = 0;
  int GetSize() const override = 0;
  int size() const override = 0;
  int GetType() const override = 0;
  Str getstr() const override = 0;
  void* voidptr() const override = 0;
  bool operator==(basic_type const& other) const override = 0;
  bool operator<(basic_type const& other) const override = 0;
  void copy(basic_type const& other) override = 0;

  /// The database type code, one of `corvane::kDbVStr` to `corvane::kDbTime` for the library's own classes.
  virtual int GetDBType() const = 0;
  /// Removes padding in place; does something for ASStr and ASVStr only.
  virtual void Trim() = 0;

  /// Binds the value to its column; null unbinds it. The attribute is not owned and must outlive its use here.
  /// Returns `attribute`.
  ASAttribute* Bind(ASAttribute* attribute);
  /// The bound attribute's SimpleQuery(), its bare column name; "EMPTY" when unbound.
  Str GetName() const;
  /// The bound attribute's ACType(); 0 when unbound.
  int GetACType() const;

  /// Conditions that compare this value with another, both as quoted texts: "'1'='2'". Both are NOT ESCAPED: never with
  /// untrusted text. A NULL contributes what its getstr() gives. They name no record type, and throw nothing but memory
  /// exhaustion. Include corvane/query/comparison.h to use them.
  ASComparison EQ(basic_type const& other) const;
  /// "'1'<>2'": no quote opens before the other value, and servers refuse the text (error 1064). NOT ESCAPED.
  ASComparison NE(basic_type const& other) const;
  /// Conditions with the other comparisons, NOT ESCAPED either: "'1'>'2'", and so on with "<", ">=", "<=".
  /// @{
  ASComparison GT(basic_type const& other) const;
  ASComparison LT(basic_type const& other) const;
  ASComparison GE(basic_type const& other) const;
  ASComparison LE(basic_type const& other) const;
  /// @}

 protected:
  /// Bound to no column.
  ASData() = default;
  /// Copies the binding.
  ASData(ASData const& other) : basic_type(), attribute_(other.attribute_) {}
  /// Keeps the binding.
  // NOLINTNEXTLINE(bugprone-unhandled-self-assignment): nothing is assigned, the binding stays
  ASData& operator=(ASData const&) { return *this; }

 private:
  ASAttribute* attribute_ = nullptr;  // not owned
};

#endif
