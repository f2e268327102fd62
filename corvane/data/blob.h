#ifndef CORVANE_DATA_BLOB_H
#define CORVANE_DATA_BLOB_H

#include <cstddef>
#include <cstdint>

#include "corvane/data/data.h"
#include "corvane/data/value/blob.h"

/// A column of a small binary value of at most `capacity` bytes; NULL is length 0. A new one is NULL.
///
/// An ASBlob is for reading only: in INSERT and UPDATE it is written as the four letters BLOB, which replace the stored
/// bytes. Bytes that are to be saved belong in an ASRealBlob.
class CORVANE_API ASBlob : public virtual basic_type, public ASData, public Blob {
 public:
  /// NULL, with room for `capacity` bytes, and bound to no column.
  explicit ASBlob(std::uint16_t capacity);
  /// Copies capacity, value and binding.
  ASBlob(ASBlob const& other);
  ~ASBlob() override;

  /// 1 when the length is 0.
  int IsNull() const override;
  /// Zeroes length and bytes.
  void SetNull() override;
  /// The capacity.
  int GetSize() const override;
  /// The length, at most the capacity.
  int size() const override;
  int GetType() const override;
  /// "BLOB".
  Str getstr() const override;
  /// The block: the 16-bit length, then `capacity` bytes.
  void* voidptr() const override;
  bool operator==(basic_type const& other) const override;
  bool operator<(basic_type const& other) const override;
  void copy(basic_type const& other) override;
  /// corvane::kDbBlob (15).
  int GetDBType() const override;
  /// Does nothing.
  void Trim() override;

  /// Copies the length field and as many bytes as both capacities have. The length field is the source's even when
  /// fewer bytes fit; size() and every reader then stop at the capacity.
  ASBlob& operator=(ASBlob const& other);
  /// Takes the first min(capacity, other.GetSize()) bytes of any value, and that as the length: of a Blob the bytes
  /// behind its length field (of a column its whole capacity, whatever its length), of another value what voidptr()
  /// points to.
  ASBlob& operator=(basic_type const& other);

  /// The capacity in bytes.
  std::uint16_t Capacity() const { return static_cast<std::uint16_t>(Allocated()); }
  /// Takes the first `capacity` of `length` bytes and zeroes the rest, as a fetch does.
  void Fill(void const* bytes, std::size_t length) { Blob::Fill(bytes, length); }
};

#endif
