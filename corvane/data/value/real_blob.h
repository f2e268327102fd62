#ifndef CORVANE_DATA_VALUE_REAL_BLOB_H
#define CORVANE_DATA_VALUE_REAL_BLOB_H

#include <cstdint>

#include "corvane/data/value/basic_type.h"
#include "corvane/data/value/str.h"

class MapBuffer;

/// Whether a RealBlob takes a copy of the bytes it is built from or borrows them.
enum CpFlag {
  NoCopy = 0,  ///< borrowed: the caller keeps and frees them, and they must outlive the value
  Copy = 1     ///< copied: the value owns its copy
};

/// What a RealBlob points to.
struct BlobData {
  std::uint32_t length = 0;  ///< in bytes
  void* bytes = nullptr;     ///< a null pointer when there are none
  std::int32_t owned = 1;    ///< 1: the bytes are freed with the descriptor; 0: borrowed, never freed
};

/// A large binary value: a descriptor of up to 4 GiB of bytes. NULL is the absent descriptor; a descriptor of length 0
/// is an empty value, not NULL. Copying and assignment always duplicate the bytes. Memory exhaustion throws
/// std::bad_alloc; the value is then unchanged.
class CORVANE_API RealBlob : public virtual basic_type {
 public:
  /// NULL.
  RealBlob() = default;
  /// `length` bytes from `bytes`; when `bytes` is null as many zero bytes, owned whatever the flag says.
  RealBlob(unsigned length, void const* bytes, CpFlag flag = Copy);
  /// Duplicates the bytes, borrowed ones too; of a NULL value makes another NULL.
  RealBlob(RealBlob const& other);
  ~RealBlob() override;

  /// Duplicates the bytes, borrowed ones too; a NULL source makes this NULL.
  RealBlob& operator=(RealBlob const& other);

  /// The length in bytes, 0 when NULL.
  unsigned Length() const { return data_ != nullptr ? data_->length : 0; }

  /// Compared by length, then byte by byte as unsigned numbers. Two NULLs are equal; NULL comes before everything, an
  /// empty value too.
  /// @{
  bool operator==(RealBlob const& other) const;
  bool operator!=(RealBlob const& other) const { return !(*this == other); }
  bool operator<(RealBlob const& other) const;
  /// @}

  bool operator==(basic_type const& other) const override;
  bool operator<(basic_type const& other) const override;
  /// The negation of `==`; throws AException "Incompatible types for RealBlob::operator != (). " for a value of another
  /// type.
  bool operator!=(basic_type const& other) const;

  int IsNull() const override;
  /// Drops the descriptor, and the bytes when they are owned.
  void SetNull() override;
  /// Length(), at most INT_MAX.
  int GetSize() const override;
  /// corvane::kTypeRealBlob (14).
  int GetType() const override;
  /// "BLOB", whatever the bytes.
  Str getstr() const override;
  /// The bytes; a null pointer when NULL or empty.
  void* voidptr() const override;
  void copy(basic_type const& other) override;

 private:
  friend class MapBuffer;

  // Of a descriptor that is nobody's to free: the value must not be destroyed or changed.
  explicit RealBlob(BlobData* data) : data_(data) {}

  BlobData* data_ = nullptr;  // owned
};

#endif
