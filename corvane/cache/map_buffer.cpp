#include "corvane/cache/map_buffer.h"

#include <unistd.h>

#include <climits>
#include <cstdlib>
#include <cstring>

#include "corvane/data/value/exception.h"

namespace {

constexpr std::size_t kChunk = std::size_t{64} * 1024;

// Asked at the first use and not when the library is loaded: another library's static objects may be earlier.
std::size_t PageSize() {
  static auto const size = static_cast<std::size_t>(getpagesize());
  return size;
}

}  // namespace

MapBuffer::~MapBuffer() { std::free(data_); }

void* MapBuffer::Get(int size) {
  if (size <= capacity_) return data_;
  std::size_t const page = PageSize();
  std::size_t const pages = (static_cast<std::size_t>(size) + page - 1) / page * page;
  std::size_t const grown = pages < INT_MAX ? pages : INT_MAX;
  // A fresh block is zero-filled, which costs nothing where the system hands out new pages.
  void* const data = data_ == nullptr ? std::calloc(grown, 1) : std::realloc(data_, grown);
  if (data == nullptr) throw AException("Out of memory for the row buffer. ");
  data_ = data;
  capacity_ = static_cast<int>(grown);
  return data_;
}

RealBlob const* MapBuffer::KeepBlob(unsigned length, void const* bytes) {
  return &blobs_.emplace_back(length, bytes, Copy);
}

unsigned char const* MapBuffer::KeepBytes(void const* bytes, std::size_t length) {
  if (length > chunkRoom_) {
    std::size_t const room = length > kChunk ? length : kChunk;
    chunks_.push_back(std::make_unique<unsigned char[]>(room));
    chunk_ = chunks_.back().get();
    chunkRoom_ = room;
  }
  unsigned char* const kept = chunk_;
  if (length > 0) std::memcpy(kept, bytes, length);
  chunk_ += length;
  chunkRoom_ -= length;
  return kept;
}
