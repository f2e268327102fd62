#ifndef CORVANE_CACHE_MAP_BUFFER_H
#define CORVANE_CACHE_MAP_BUFFER_H

#include <cstddef>
#include <memory>
#include <vector>

#include "corvane/data/value/real_blob.h"

/// A block of raw memory that grows in whole pages, and the binary values that its content points to. It holds the rows
/// of a cursor.
class CORVANE_API MapBuffer {
 public:
  /// Empty: no block yet.
  MapBuffer() = default;
  /// A buffer is not copied: its content points into it.
  /// @{
  MapBuffer(MapBuffer const&) = delete;
  MapBuffer& operator=(MapBuffer const&) = delete;
  /// @}

  /// Frees the block and the binary values.
  ~MapBuffer();

  /// The block, of at least `size` bytes; it may have moved. It grows to the next multiple of the page size (at most
  /// INT_MAX), keeping its content; what is added is zero-filled. A negative size counts as 0. Throws AException "Out
  /// of memory for the row buffer. ", block and capacity then being as before.
  void* Get(int size);
  /// Get(), with room for more to come: twice the block, or 256 MiB more than it has, if the system gives as much.
  void* Grow(int size);
  /// Gives back the pages behind the first `size` bytes, unless the system refuses; does nothing when there are none,
  /// or for a size of 0 or less. The block may have moved. Throws nothing.
  void Fit(int size);
  /// The block; a null pointer before the first Get() of more than 0 bytes.
  void* GetBegin() const { return data_; }
  /// Its size in bytes.
  int Capacity() const { return capacity_; }

  /// Keep a copy of the bytes, which stays where it is as long as the buffer lives. `bytes` may be null when `length`
  /// is 0. Throw std::bad_alloc.
  /// @{
  RealBlob const* KeepBlob(unsigned length, void const* bytes);
  unsigned char const* KeepBytes(void const* bytes, std::size_t length);
  /// @}

 private:
  bool Resize(std::size_t size);
  bool ResizeHeap(std::size_t size);
  bool ResizePages(std::size_t size);
  void Free();
  unsigned char* Take(std::size_t length);

  void* data_ = nullptr;  // owned
  int capacity_ = 0;
  std::size_t pages_ = 0;  // bytes of the block's own pages, capacity_ or more; 0 while it is malloc's
  std::size_t used_ = 0;   // how many of them another block has written to before
  std::vector<std::unique_ptr<unsigned char[]>> chunks_;
  unsigned char* chunk_ = nullptr;  // where the last chunk goes on
  std::size_t chunkRoom_ = 0;
};

#endif
