#include "corvane/cache/map_buffer.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

#include "corvane/data/value/exception.h"

namespace {

constexpr std::size_t kChunk = std::size_t{64} * 1024;

// A block of this size gets pages of its own: they come zero-filled, growing does not copy them, and they can be kept.
constexpr std::size_t kOwnPages = std::size_t{32} * 1024;

// Of a freed block each thread keeps as much at most, for its next one.
constexpr std::size_t kMostSpare = std::size_t{16} * 1024 * 1024;

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

struct Pages {
  void* begin;
  std::size_t size;
};

// The pages of a freed block. Touching new ones costs several times as much as clearing them, and many cursors read
// results of a middling size, one after the other. Trivial, so that blocks that are freed after the thread's other
// objects find it.
thread_local Pages spare{nullptr, 0};
thread_local bool keepsSpare = true;

void Unmap(Pages pages) {
  if (pages.begin != nullptr) munmap(pages.begin, pages.size);
}

struct SpareGuard {
  ~SpareGuard() {
    keepsSpare = false;
    Unmap(std::exchange(spare, Pages{nullptr, 0}));
  }
};

void KeepOrUnmap(Pages pages) {
  thread_local SpareGuard const guard;
  if (keepsSpare && pages.size <= kMostSpare && pages.size > spare.size) std::swap(pages, spare);
  Unmap(pages);
}

std::size_t Aligned(std::size_t size) { return (size + alignof(RealBlob) - 1) / alignof(RealBlob) * alignof(RealBlob); }

// The next size of a block that goes on growing: twice as large, but not by more than the step.
int Grown(int size) {
  constexpr int kStep = 256 * 1024 * 1024;
  return size <= INT_MAX - kStep ? size + std::min(size, kStep) : INT_MAX;
}

}  // namespace

MapBuffer::~MapBuffer() { Free(); }

void* MapBuffer::Get(int size) {
  if (size > capacity_ && !Resize(WholePages(size))) throw AException("Out of memory for the row buffer. ");
  return data_;
}

void* MapBuffer::Grow(int size) {
  if (size <= capacity_ || Resize(WholePages(std::max(size, Grown(capacity_))))) return data_;
  return Get(size);
}

void MapBuffer::Fit(int size) {
  if (size > 0 && size < capacity_ && WholePages(size) < static_cast<std::size_t>(capacity_)) Resize(WholePages(size));
}

// False, with the block as it was, when the system does not give the memory.
bool MapBuffer::Resize(std::size_t size) {
  bool const done = pages_ > 0 || size >= kOwnPages ? ResizePages(size) : ResizeHeap(size);
  if (done) capacity_ = static_cast<int>(size);
  return done;
}

bool MapBuffer::ResizeHeap(std::size_t size) {
  void* const data = std::realloc(data_, size);
  if (data == nullptr) return false;
  auto const held = static_cast<std::size_t>(capacity_);
  if (size > held) std::memset(static_cast<char*>(data) + held, 0, size - held);
  data_ = data;
  return true;
}

bool MapBuffer::ResizePages(std::size_t size) {
  auto const held = static_cast<std::size_t>(capacity_);
  if (pages_ == 0) {
    bool const reused = spare.size >= size;
    Pages const pages = reused ? std::exchange(spare, Pages{nullptr, 0}) : Pages{MapPages(size), size};
    if (pages.begin == nullptr) return false;
    if (held > 0) std::memcpy(pages.begin, data_, held);
    std::free(data_);
    data_ = pages.begin;
    pages_ = pages.size;
    used_ = reused ? pages.size : 0;
  } else if (size > pages_ || size < held) {
    void* const data = OrNull(mremap(data_, pages_, size, MREMAP_MAYMOVE));
    if (data == nullptr) return false;
    data_ = data;
    pages_ = size;
  }
  // Of pages that were used before, those that come into the block now are cleared.
  used_ = std::min(used_, pages_);
  std::size_t const end = std::min(size, used_);
  if (end > held) std::memset(static_cast<char*>(data_) + held, 0, end - held);
  return true;
}

void MapBuffer::Free() {
  if (pages_ > 0) {
    KeepOrUnmap({data_, pages_});
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
    bool const ownChunk = length > kChunk / 4;  // the last chunk goes on behind it
    std::size_t const room = ownChunk ? length : kChunk;
    chunks_.push_back(std::unique_ptr<unsigned char[]>(new unsigned char[room]));
    if (ownChunk) return chunks_.back().get();
    chunk_ = chunks_.back().get();
    chunkRoom_ = room;
  }
  unsigned char* const taken = chunk_;
  chunk_ += length;
  chunkRoom_ -= length;
  return taken;
}
