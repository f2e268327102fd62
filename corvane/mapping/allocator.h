#ifndef CORVANE_MAPPING_ALLOCATOR_H
#define CORVANE_MAPPING_ALLOCATOR_H

#include <cstddef>
#include <memory>

/// The allocator of ASDomain's list. It behaves as std::allocator; a type of its own, not derived from it, so that
/// rebinding gives this template again in every language version.
template <class T>
class ASAllocator {
 public:
  /// What is allocated.
  using value_type = T;

  /// An allocator holds nothing: what one has allocated any other may free.
  /// @{
  ASAllocator() = default;
  template <class U>
  ASAllocator(ASAllocator<U> const&) noexcept {}
  /// @}

  /// Room for `count` objects, none of which is constructed. Throws std::bad_alloc.
  T* allocate(std::size_t count) { return std::allocator<T>().allocate(count); }
  /// Frees what allocate() returned for the same `count`.
  void deallocate(T* at, std::size_t count) noexcept { std::allocator<T>().deallocate(at, count); }
};

/// All allocators are equal.
/// @{
template <class T, class U>
bool operator==(ASAllocator<T> const&, ASAllocator<U> const&) noexcept {
  return true;
}

template <class T, class U>
bool operator!=(ASAllocator<T> const&, ASAllocator<U> const&) noexcept {
  return false;
}
/// @}

#endif
