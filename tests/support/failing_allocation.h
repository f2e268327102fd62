#ifndef CORVANE_TESTS_SUPPORT_FAILING_ALLOCATION_H
#define CORVANE_TESTS_SUPPORT_FAILING_ALLOCATION_H

namespace corvane::test {

/// While it lives, the operators new of this thread (failing_allocation.cpp replaces them in the test program and in
/// the libraries that it uses) let `allocations` pass and throw std::bad_alloc at the next one, once, or from then on.
/// So do malloc, calloc, realloc, mmap and mremap, which give nothing, as far as libcorvane calls them, in programs
/// with failing_c_allocation.cpp.
class FailingAllocation {
 public:
  enum Times { kOnce, kFromThenOn };

  explicit FailingAllocation(unsigned allocations, Times times = kOnce);
  FailingAllocation(FailingAllocation const&) = delete;
  FailingAllocation& operator=(FailingAllocation const&) = delete;
  ~FailingAllocation();

  /// Whether it came to that.
  bool Failed() const;
};

/// While it lives, allocations neither count nor fail: for what is the test's own.
class UnfailingAllocation {
 public:
  UnfailingAllocation();
  UnfailingAllocation(UnfailingAllocation const&) = delete;
  UnfailingAllocation& operator=(UnfailingAllocation const&) = delete;
  ~UnfailingAllocation();
};

/// Whether the allocation that is asked for is to fail; for the functions that allocate.
bool AllocationFails();

}  // namespace corvane::test

#endif
