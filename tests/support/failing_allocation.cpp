#include "tests/support/failing_allocation.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

thread_local bool armed = false;
thread_local bool failed = false;
thread_local bool failsOnce = true;
thread_local unsigned passing = 0;
thread_local unsigned suspended = 0;

void* Allocate(std::size_t size) noexcept {
  return corvane::test::AllocationFails() ? nullptr : std::malloc(size > 0 ? size : 1);
}

void* AllocateOrThrow(std::size_t size) {
  void* const memory = Allocate(size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

namespace corvane::test {

bool AllocationFails() {
  if (!armed || suspended > 0) return false;
  if (passing > 0) {
    --passing;
    return false;
  }
  armed = !failsOnce;
  return failed = true;
}

FailingAllocation::FailingAllocation(unsigned allocations, Times times) {
  passing = allocations;
  failsOnce = times == kOnce;
  failed = false;
  armed = true;
}

FailingAllocation::~FailingAllocation() { armed = false; }

bool FailingAllocation::Failed() const { return failed; }

UnfailingAllocation::UnfailingAllocation() { ++suspended; }
UnfailingAllocation::~UnfailingAllocation() { --suspended; }

}  // namespace corvane::test

void* operator new(std::size_t size) { return AllocateOrThrow(size); }
void* operator new[](std::size_t size) { return AllocateOrThrow(size); }
void* operator new(std::size_t size, std::nothrow_t const&) noexcept { return Allocate(size); }
void* operator new[](std::size_t size, std::nothrow_t const&) noexcept { return Allocate(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete(void* memory, std::nothrow_t const&) noexcept { std::free(memory); }
void operator delete[](void* memory, std::nothrow_t const&) noexcept { std::free(memory); }
