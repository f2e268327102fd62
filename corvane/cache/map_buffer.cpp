#include "corvane/cache/map_buffer.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <new>

#include "corvane/data/value/exception.h"

namespace {

constexpr std::size_t kChunk = std::size_t{64} * 1024;

// A block of this size gets pages of its own, as malloc() does it too: they come zero-filled, and growing does not copy
// them.
constexpr std::size_t kOwnPages = std::size_t{128} * 1024;

// Asked at the first use and not when the library is loaded: another library's static objects may be earlier.
std::size_t PageSize() {
  static auto const size = static_cast<std::size_t>(getpagesize());
  return size;
}

// At most INT_MAX.
std::size_t WholePages(int size) {
  std::size_t const page = PageSize();
  return std::min((static_cast<std::size_t>(size) + page - 1) / page * page, std::size_t{INT_MAX});
}

void* OrNull(void* mapped) { return mapped != MAP_FAILED ? mapped : nullptr; }

// New pages in the midst of free addresses, if there are as many, so that the block can grow where it is.
void* MapPages(std::size_t size) {
  void* const free = OrNull(mmap(nullptr, INT_MAX, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0));
  if (free != nullptr) munmap(free, INT_MAX);
  return OrNull(mmap(free, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
}

std::size_t Aligned(std::size_t size) { return (size + alignof(RealBlob) - 1) / alignof(RealBlob) * alignof(RealBlob); }

}  // namespace

MapBuffer::~MapBuffer() { Free(); }

void* MapBuffer::Get(int size) {
  if (size > capacity_ && !Resize(WholePages(size))) throw AException("Out of memory for the row buffer. ");
  return data_;
}

void MapBuffer::Fit(int size) {
  if (size > 0 && size < capacity_ && WholePages(size) < static_cast<std::size_t>(capacity_)) Resize(WholePages(size));
}

// False, with the block as it was, when the system does not give the memory.
bool MapBuffer::Resize(std::size_t size) {
  auto const held = static_cast<std::size_t>(capacity_);
  bool const ownPages = ownPages_ || size >= kOwnPages;
  void* const data = ownPages_  ? OrNull(mremap(data_, held, size, MREMAP_MAYMOVE))
                     : ownPages ? MapPages(size)
                                : std::realloc(data_, size);
  if (data == nullptr) return false;
  if (!ownPages && size > held) std::memset(static_cast<char*>(data) + held, 0, size - held);
  if (ownPages && !ownPages_) {
    if (held > 0) std::memcpy(data, data_, held);
    Free();
  }
  data_ = data;
  capacity_ = static_cast<int>(size);
  ownPages_ = ownPages;
  return true;
}

void MapBuffer::Free() {
  if (ownPages_) {
    munmap(data_, static_cast<std::size_t>(capacity_));
  } else {
    std::free(data_);
  }
}

RealBlob const* MapBuffer::KeepBlob(unsigned length, void const* bytes) {
  // One piece for the value, its descriptor and the bytes. It is never destroyed: it owns nothing.
  static_assert(sizeof(RealBlob) % alignof(BlobData) == 0, "the descriptor lies right behind the value");
  auto* const piece = Take(sizeof(RealBlob) + sizeof(BlobData) + length);
  auto* const data = new (piece + sizeof(RealBlob)) BlobData;
  data->length = length;
  data->owned = 0;
  if (length > 0) data->bytes = std::memcpy(piece + sizeof(RealBlob) + sizeof(BlobData), bytes, length);
  return new (piece) RealBlob(data);
}

unsigned char const* MapBuffer::KeepBytes(void const* bytes, std::size_t length) {
  unsigned char* const kept = Take(length);
  if (length > 0) std::memcpy(kept, bytes, length);
  return kept;
}

// Room that stays where it is, aligned for anything in here.
unsigned char* MapBuffer::Take(std::size_t length) {
  length = Aligned(length);
  if (length > chunkRoom_) {
    std::size_t const room = std::max(length, kChunk);
    chunks_.push_back(std::unique_ptr<unsigned char[]>(new unsigned char[room]));
    chunk_ = chunks_.back().get();
    chunkRoom_ = room;
  }
  unsigned char* const taken = chunk_;
  chunk_ += length;
  chunkRoom_ -= length;
  return taken;
}
