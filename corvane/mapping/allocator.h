#ifndef CORVANE_MAPPING_ALLOCATOR_H
#define CORVANE_MAPPING_ALLOCATOR_H

#include <cstddef>
#include <memory>

/// The allocator of ASDomain's list. It behaves as std::allocator; a type of its own, not derived from it, so that
/// rebinding gives this template again in every language version.
template <class T>
class ASAllocator {
 public:
  using value_type = T;

  ASAllocator() = default;
  template <class U>
  ASAllocator(ASAllocator<U> const&) noexcept {}

  T* allocate(std::size_t count) { return std::allocator<T>().allocate(count); }
  void deallocate(T* at, std::size_t count) noexcept { std::allocator<T>().deallocate(at, count); }
};

template <class T, class U>
bool operator==(ASAllocator<T> const&, ASAllocator<U> const&) noexcept {
  return true;
}

template <class T, class U>
bool operator!=(ASAllocator<T> const&, ASAllocator<U> const&) noexcept {
  return false;
}

#endif
