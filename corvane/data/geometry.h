#ifndef CORVANE_DATA_GEOMETRY_H
#define CORVANE_DATA_GEOMETRY_H

#include <cstddef>
#include <cstdint>

#include "corvane/data/data.h"
#include "corvane/data/value/blob.h"

/// A column of spatial data: a small binary value of at most `capacity` bytes that holds well-known binary; NULL is
/// length 0. A new one is NULL.
///
/// In the block, behind the 16-bit length, lie the byte order (1 byte), the geometry type (32 bits: 1 point, 3 polygon)
/// and the coordinates. In INSERT and UPDATE it is written as GeomFromText('POINT((x y))') or
/// GeomFromText('POLYGON((x y,...))'). Servers read the doubled parentheses of a point as NULL, without a warning:
/// points cannot be stored through an ASGeometry, polygons of one ring can.
class CORVANE_API ASGeometry : public virtual basic_type, public ASData, public Blob {
 public:
  /// NULL, with room for `capacity` bytes, and bound to no column.
  explicit ASGeometry(std::uint16_t capacity);
  /// Copies capacity, value and binding.
  ASGeometry(ASGeometry const& other);
  ~ASGeometry() override;

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
  /// corvane::kDbGeometry (85).
  int GetDBType() const override;
  /// Does nothing.
  void Trim() override;

  /// Copies the length field and as many bytes as both capacities have. The length field is the source's even when
  /// fewer bytes fit; size() and every reader then stop at the capacity.
  ASGeometry& operator=(ASGeometry const& other);
  /// Takes the first min(capacity, other.GetSize()) bytes behind the other's length field (of a column its whole
  /// capacity, whatever its length), and that as the length.
  ASGeometry& operator=(Blob const& other);

  /// The capacity in bytes.
  std::uint16_t Capacity() const { return static_cast<std::uint16_t>(Allocated()); }
  /// Takes the first `capacity` of `length` bytes and zeroes the rest, as a fetch does.
  void Fill(void const* bytes, std::size_t length) { Blob::Fill(bytes, length); }
};

#endif
