// Stands in for the C library's allocation and for pages from the system. Only the library that is tested meets
// failures: what the standard library and the client library do without memory is their own affair.

#include <link.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "tests/support/failing_allocation.h"

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define CORVANE_TEST_SANITIZER_ALLOCATES 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define CORVANE_TEST_SANITIZER_ALLOCATES 1
#endif
#endif

// The functions behind the names that are defined here.
#ifdef CORVANE_TEST_SANITIZER_ALLOCATES
#define CORVANE_TEST_BEHIND(function) __interceptor_##function
#else
#define CORVANE_TEST_BEHIND(function) __libc_##function
#endif

// The loader allocates before the sanitizers can look at memory.
#define CORVANE_TEST_PLAIN __attribute__((no_sanitize("address", "thread", "undefined")))

extern "C" {
void* CORVANE_TEST_BEHIND(malloc)(std::size_t size);
void* CORVANE_TEST_BEHIND(calloc)(std::size_t count, std::size_t size);
void* CORVANE_TEST_BEHIND(realloc)(void* memory, std::size_t size);
}

namespace {

struct Range {
  std::uintptr_t begin = 0;
  std::uintptr_t end = 0;
};

int FindLibrary(dl_phdr_info* object, std::size_t, void* found) {
  if (object->dlpi_name == nullptr || std::strstr(object->dlpi_name, "/libcorvane.") == nullptr) return 0;
  auto& range = *static_cast<Range*>(found);
  for (int i = 0; i < object->dlpi_phnum; ++i) {
    auto const& segment = object->dlpi_phdr[i];
    if (segment.p_type == PT_LOAD && (segment.p_flags & PF_X) != 0) {
      range.begin = object->dlpi_addr + segment.p_vaddr;
      range.end = range.begin + segment.p_memsz;
    }
  }
  return 1;
}

// Looked for once, before main(): that takes a lock of the loader's, which may allocate under it.
Range const library = [] {
  Range found;
  dl_iterate_phdr(FindLibrary, &found);
  return found;
}();

CORVANE_TEST_PLAIN bool Fails(void const* caller) {
  auto const address = reinterpret_cast<std::uintptr_t>(caller);
  return address >= library.begin && address < library.end && corvane::test::AllocationFails();
}

}  // namespace

extern "C" {

CORVANE_TEST_PLAIN void* malloc(std::size_t size) {
  return Fails(__builtin_return_address(0)) ? nullptr : CORVANE_TEST_BEHIND(malloc)(size);
}

CORVANE_TEST_PLAIN void* calloc(std::size_t count, std::size_t size) {
  return Fails(__builtin_return_address(0)) ? nullptr : CORVANE_TEST_BEHIND(calloc)(count, size);
}

CORVANE_TEST_PLAIN void* realloc(void* memory, std::size_t size) {
  return Fails(__builtin_return_address(0)) ? nullptr : CORVANE_TEST_BEHIND(realloc)(memory, size);
}

CORVANE_TEST_PLAIN void* mmap(void* address, std::size_t size, int protection, int flags, int file, off_t offset) {
  if (Fails(__builtin_return_address(0))) return MAP_FAILED;
  return reinterpret_cast<void*>(syscall(SYS_mmap, address, size, long{protection}, long{flags}, long{file}, offset));
}

CORVANE_TEST_PLAIN void* mremap(void* memory, std::size_t size, std::size_t newSize, int flags, ...) {
  if (Fails(__builtin_return_address(0))) return MAP_FAILED;
  std::va_list more;
  va_start(more, flags);
  void* const address = (flags & MREMAP_FIXED) != 0 ? va_arg(more, void*) : nullptr;
  va_end(more);
  return reinterpret_cast<void*>(syscall(SYS_mremap, memory, size, newSize, long{flags}, address));
}

}  // extern "C"
