#ifndef CORVANE_DATA_REAL_BLOB_H
#define CORVANE_DATA_REAL_BLOB_H

#include "corvane/data/data.h"
#include "corvane/data/value/real_blob.h"

/// A column of a large binary value, up to 4 GiB. Memory exhaustion throws std::bad_alloc.
class CORVANE_API ASRealBlob : public virtual basic_type, public ASData, public RealBlob {
 public:
  /// NULL for a capacity of 0, else `capacity` zero bytes.
  explicit ASRealBlob(unsigned capacity);
  /// Copies the value and the binding.
  ASRealBlob(ASRealBlob const&) = default;
  ~ASRealBlob() override;

  int IsNull() const override;
  void SetNull() override;
  /// The length, at most INT_MAX.
  int GetSize() const override;
  /// The length, at most INT_MAX.
  int size() const override;
  int GetType() const override;
  /// "BLOB".
  Str getstr() const override;
  void* voidptr() const override;
  bool operator==(basic_type const& other) const override;
  bool operator<(basic_type const& other) const override;
  void copy(basic_type const& other) override;
  /// corvane::kDbRealBlob (95).
  int GetDBType() const override;
  /// Does nothing.
  void Trim() override;

  /// Duplicate the bytes, borrowed ones too; a NULL source makes this NULL. The binding stays.
  /// @{
  ASRealBlob& operator=(ASRealBlob const& other);
  ASRealBlob& operator=(RealBlob const& other);
  /// @}

  /// Checks that the types agree and changes nothing; throws AException "Incompatible types for
  /// ASRealBlob::operator = (). " when they do not. To assign, use the forms above or copy().
  ASRealBlob& operator=(basic_type const& other);

  /// The negation of `==`; throws AException "Incompatible types for ASRealBlob::operator != (). " for a value of
  /// another type.
  bool operator!=(basic_type const& other) const;
  /// Compared by length, then byte by byte. Two NULLs are equal; a NULL and an empty value are not.
  /// @{
  bool operator==(RealBlob const& other) const { return RealBlob::operator==(other); }
  bool operator!=(RealBlob const& other) const { return RealBlob::operator!=(other); }
  bool operator==(ASRealBlob const& other) const { return RealBlob::operator==(other); }
  bool operator!=(ASRealBlob const& other) const { return RealBlob::operator!=(other); }
  /// @}

  /// As RealBlob has it.
  using RealBlob::operator<;
};

#endif
