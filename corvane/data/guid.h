#ifndef CORVANE_DATA_GUID_H
#define CORVANE_DATA_GUID_H

#include "corvane/data/data.h"
#include "corvane/data/value/guid.h"

/// A column of a GUID, written as its 36-character text, so for CHAR(36). A new one is NULL. Whenever the value
/// becomes NULL its 16 bytes are zero, so that no stale GUID ever stands in a statement.
class CORVANE_API ASGuid : public virtual basic_type, public ASData, public Guid {
 public:
  /// NULL, and bound to no column.
  ASGuid();
  /// Copies the value and the binding.
  ASGuid(ASGuid const& other);
  ~ASGuid() override;

  int IsNull() const override;
  /// Zeroes the 16 bytes.
  void SetNull() override;
  /// Clears the null flag; the bytes stay.
  void SetNotNull();
  /// 16.
  int GetSize() const override;
  /// 16.
  int size() const override;
  int GetType() const override;
  /// The form 8-4-4-4-12 in lower case; all zeros when NULL.
  Str getstr() const override;
  /// The 16 bytes, never a null pointer.
  void* voidptr() const override;
  /// Compare as Guid does. Both throw AException "Incompatible types for ASGuid::operator < (). " for a value of
  /// another type.
  /// @{
  bool operator==(basic_type const& other) const override;
  bool operator<(basic_type const& other) const override;
  /// @}

  void copy(basic_type const& other) override;
  /// corvane::kDbGuid (86).
  int GetDBType() const override;
  /// Does nothing.
  void Trim() override;

  /// Copy the bytes, or set NULL as the other one is; the binding stays.
  /// @{
  ASGuid& operator=(Guid const& other);
  ASGuid& operator=(ASGuid const& other);
  /// @}

  /// Compare byte by byte as unsigned numbers. Two NULLs are equal; NULL comes before everything.
  /// @{
  bool operator==(Guid const& other) const { return Guid::operator==(other); }
  bool operator==(ASGuid const& other) const { return Guid::operator==(other); }
  bool operator<(Guid const& other) const { return Guid::operator<(other); }
  /// @}
};

#endif
