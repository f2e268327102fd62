#ifndef CORVANE_TESTS_UNIT_DATA_COLUMN_PROBES_H
#define CORVANE_TESTS_UNIT_DATA_COLUMN_PROBES_H

#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstddef>
#include <cstring>
#include <new>

// What the tests of the columns look at from outside the language.
namespace corvane::test {

/// The place of a virtual function in the table of its class, counted in pointers; the destructor takes the places 0
/// and 1. -1 for a function that is not virtual. As the Itanium ABI has it on x86-64, where a pointer to a virtual
/// member function is one more than its offset in the table.
template <class Member>
int Slot(Member member) {
  std::ptrdiff_t parts[2];
  static_assert(sizeof member == sizeof parts, "a pointer to a member function is a pair");
  std::memcpy(parts, &member, sizeof parts);
  if ((parts[0] & 1) == 0) return -1;
  return static_cast<int>((parts[0] - 1) / static_cast<std::ptrdiff_t>(sizeof(void*)));
}

/// Whether `action`, done to a copy of `value` (a column that keeps nothing on the heap), writes to no byte of it. It
/// is done by a child process, on a page that cannot be written; the child falls where `action` writes.
template <class Column, class Action>
bool WritesNothing(Column const& value, Action action) {
  auto const page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  void* const memory = mmap(nullptr, page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) throw std::bad_alloc();
  auto* const column = new (memory) Column(value);
  pid_t const child = fork();
  if (child == 0) {
    rlimit const noCoreFile{0, 0};
    setrlimit(RLIMIT_CORE, &noCoreFile);
    close(STDERR_FILENO);  // a sanitizer would report the fall there
    if (mprotect(memory, page, PROT_READ) != 0) _exit(2);
    action(*column);
    _exit(0);
  }
  int status = -1;
  waitpid(child, &status, 0);
  column->~Column();
  munmap(memory, page);
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace corvane::test

#endif
