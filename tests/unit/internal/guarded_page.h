#ifndef CORVANE_TESTS_UNIT_INTERNAL_GUARDED_PAGE_H
#define CORVANE_TESTS_UNIT_INTERNAL_GUARDED_PAGE_H

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstring>
#include <new>
#include <string_view>

namespace corvane::test {

/// Room for a text that ends where readable memory ends: whoever reads behind its NUL ends the program.
class GuardedPage {
 public:
  GuardedPage() : page_(static_cast<std::size_t>(getpagesize())) {
    void* const pages = mmap(nullptr, 2 * page_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (pages == MAP_FAILED) throw std::bad_alloc();
    begin_ = static_cast<char*>(pages);
    if (mprotect(begin_ + page_, page_, PROT_NONE) != 0) throw std::bad_alloc();
  }
  ~GuardedPage() { munmap(begin_, 2 * page_); }
  GuardedPage(GuardedPage const&) = delete;
  GuardedPage& operator=(GuardedPage const&) = delete;

  /// The text, of less than a page, and its NUL; valid until the next call.
  char const* Put(std::string_view text) {
    char* const at = begin_ + page_ - text.size() - 1;
    if (!text.empty()) std::memcpy(at, text.data(), text.size());
    at[text.size()] = '\0';
    return at;
  }

 private:
  std::size_t page_;
  char* begin_ = nullptr;
};

}  // namespace corvane::test

#endif
