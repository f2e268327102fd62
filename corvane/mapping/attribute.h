#ifndef CORVANE_MAPPING_ATTRIBUTE_H
#define CORVANE_MAPPING_ATTRIBUTE_H

#include <memory>

#include "corvane/data/value/str.h"

class ASData;
class ASDomain;

namespace corvane {

/// Key flags of an ASAttribute.
enum : int {
  kKey = 1,            ///< part of the record's identity
  kEncrypted = 2,      ///< reserves a buffer; nothing is encrypted here
  kOptionalSide = 4,   ///< set and tested by the query operators: a column of the optional side of an outer join
  kAutoIncrement = 16  ///< numbered by the server; counts only together with kKey
};

}  // namespace corvane

/// The base of all columns: of a record's own and of aggregates.
/// The order of the virtual functions and of the members is binary contract.
class CORVANE_API ASSimpleAttribute {
 public:
  virtual ~ASSimpleAttribute();
  /// The text that stands for the column in a statement.
  virtual Str Query() const = 0;

  /// The value that holds the column; null until registered. Not owned.
  ASData* Data() const { return data_; }
  /// The record type that the column belongs to; null when free-standing. Not owned.
  ASDomain* Domain() const { return domain_; }

 protected:
  ASSimpleAttribute() = default;
  ASSimpleAttribute(ASSimpleAttribute const&) = default;
  ASSimpleAttribute& operator=(ASSimpleAttribute const&) = default;
  void SetColumn(ASDomain* domain, ASData* data) {
    domain_ = domain;
    data_ = data;
  }

 private:
  ASDomain* domain_ = nullptr;  // not owned
  ASData* data_ = nullptr;      // not owned
};

/// One column of a record type: its name and flags, and the pairing of its record with the value that holds it.
/// Nothing here throws but memory exhaustion (std::bad_alloc).
class CORVANE_API ASAttribute : public ASSimpleAttribute {
 public:
  ASAttribute();
  explicit ASAttribute(Str const& name);
  /// `acType` is the application's own tag; `flags` are corvane::kKey and the others, combined by |.
  ASAttribute(Str const& name, Str const& label, int acType, int flags);
  /// Copies everything, the pointers to record and value included; the buffer of an encrypted column is a new one.
  ASAttribute(ASAttribute const& other);
  ASAttribute& operator=(ASAttribute const& other);
  ~ASAttribute() override;

  /// Stores both pointers (neither is owned; either may be null) and gives an encrypted column its buffer. It neither
  /// binds the value to the column nor appends the column to the record: ASDomain::Add() does all three.
  ASAttribute& Register(ASData* data, ASDomain* domain);

  /// The record's Alias(), a dot and the name: "T140721.id"; the name alone without a record.
  Str Query() const override;
  /// The name alone.
  Str SimpleQuery() const { return name_; }
  Str const& Name() const { return name_; }
  Str const& Label() const { return label_; }
  /// The application's tag; the library only stores and copies it.
  int ACType() const { return acType_; }

  /// 1 for a key column, else 0.
  int IsKey() const { return flags_ & corvane::kKey; }
  /// Not 0 for an encrypted column.
  int IsEncrypted() const { return flags_ & corvane::kEncrypted; }
  /// 1 when both corvane::kKey and corvane::kAutoIncrement are set, else 0.
  int IsAutoIncKey() const;
  /// The flags that are in `mask`.
  int CheckKey(int mask) const { return mask & flags_; }
  /// Adds the flags in `mask`.
  void SetKey(int mask) { flags_ |= mask; }

  /// A null indicator beside the value: -1 when NULL, 0 otherwise, as of the last ASDomain::JustifyNull().
  short* IsNullFlag() { return &nullIndicator_; }
  /// The buffer of an encrypted column: the registered value's GetSize() + 1 bytes, for the application to fill; a null
  /// pointer for other columns and before Register(). Owned by the column.
  char* CryptBuffer() const { return cryptBuffer_.get(); }

 private:
  int acType_ = 0;
  Str name_;
  Str label_;
  int flags_ = 0;
  short nullIndicator_ = 0;
  std::unique_ptr<char[]> cryptBuffer_;
};

#endif
