#ifndef CORVANE_DATA_VALUE_BLOB_H
#define CORVANE_DATA_VALUE_BLOB_H

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "corvane/data/value/basic_type.h"
#include "corvane/data/value/str.h"

/// A small binary value: one heap block whose first field is an unsigned 16-bit length, followed by the bytes.
/// NULL is the absent block. Memory exhaustion throws std::bad_alloc; the value is then unchanged.
///
/// A length field may say more than the block holds (voidptr() is open to writing, and columns copy the field whole):
/// every reader takes the smaller of the two, Length().
class CORVANE_API Blob : public virtual basic_type {
 public:
  /// NULL.
  Blob() = default;
  /// A block of `capacity` bytes with that length, copied from `data`, zero-filled when `data` is null.
  /// A negative capacity counts as 0.
  Blob(short capacity, void const* data);
  /// Copies the bytes that can be read, Length() of them, into a block of their own; of a NULL value makes another
  /// NULL.
  Blob(Blob const& other);
  ~Blob() override;

  /// Copies the bytes; a NULL source makes this NULL.
  Blob& operator=(Blob const& other);

  /// The bytes behind the length field, or a null pointer without a block.
  unsigned char const* Bytes() const { return block_ != nullptr ? block_ + sizeof(std::uint16_t) : nullptr; }
  /// Bytes that can be read: the length field, at most what the block holds.
  std::size_t Length() const;
  /// Bytes that the block has room for; 0 without one.
  std::size_t Allocated() const { return allocated_; }

  /// Compared by length, then byte by byte as unsigned numbers. Two NULLs are equal; NULL comes before everything.
  /// @{
  bool operator==(Blob const& other) const;
  bool operator!=(Blob const& other) const { return !(*this == other); }
  bool operator<(Blob const& other) const;
  /// @}

  bool operator==(basic_type const& other) const override;
  bool operator<(basic_type const& other) const override;

  int IsNull() const override;
  /// Frees the block.
  void SetNull() override;
  /// The length field, 0 when NULL.
  int GetSize() const override;
  /// corvane::kTypeBlob (3).
  int GetType() const override;
  /// "BLOB", whatever the bytes: these never reach a statement through a Blob.
  Str getstr() const override;
  /// The start of the block, which is the length field; a null pointer when NULL.
  void* voidptr() const override;
  void copy(basic_type const& other) override;

 protected:
  /// Chooses the constructor for columns.
  struct InPlace {};
  /// For columns, whose block is filled in place: `capacity` zero bytes with length 0, never replaced or freed.
  Blob(InPlace, std::uint16_t capacity);

  /// The length field as it stands, 0 without a block. Only a value with a block may have it set.
  /// @{
  std::uint16_t LengthField() const;
  void SetLengthField(std::uint16_t length);
  /// @}

  /// Puts the first min(length, Allocated()) bytes behind the length field, which says so, and zeroes the rest.
  /// `bytes` may lie in this block. Of an in-place block.
  void Fill(void const* bytes, std::size_t length);
  /// Copies the other's length field and as many bytes as both have room for. Of two in-place blocks.
  void TakeWhole(Blob const& other);
  /// Takes the first min(Allocated(), other.GetSize()) bytes of any value, and that as the length. Of an in-place
  /// block.
  void TakeBytes(basic_type const& other);

  /// `==`, `<` and copy() of a value of any type, for the columns, which name themselves in what they throw:
  /// "Incompatible types for ", `operation` (like "ASBlob::copy()") and ". ".
  /// @{
  bool Equals(basic_type const& other, char const* operation) const;
  bool Less(basic_type const& other, char const* operation) const;
  void Assign(basic_type const& other, char const* operation);
  /// @}

 private:
  unsigned char* Room() const { return block_ + sizeof(std::uint16_t); }
  void Allocate(std::size_t capacity);

  unsigned char* block_ = nullptr;  // owned
  std::size_t allocated_ = 0;       // bytes behind the length field
  bool inPlace_ = false;
};

/// Blobs and the columns built on them, whichever stands on the left. Templates that match exactly, so that no language
/// version finds the columns' own comparisons with basic_type, or their mirror images, equally good.
/// @{
template <class Left, class Right,
          std::enable_if_t<std::is_base_of<Blob, Left>::value && std::is_base_of<Blob, Right>::value, int> = 0>
bool operator==(Left const& left, Right const& right) {
  return static_cast<Blob const&>(left) == static_cast<Blob const&>(right);
}
template <class Left, class Right,
          std::enable_if_t<std::is_base_of<Blob, Left>::value && std::is_base_of<Blob, Right>::value, int> = 0>
bool operator!=(Left const& left, Right const& right) {
  return !(left == right);
}
template <class Left, class Right,
          std::enable_if_t<std::is_base_of<Blob, Left>::value && std::is_base_of<Blob, Right>::value, int> = 0>
bool operator<(Left const& left, Right const& right) {
  return static_cast<Blob const&>(left) < static_cast<Blob const&>(right);
}
/// @}

#endif
