#ifndef CORVANE_TESTS_SUPPORT_SMALL_STACK_H
#define CORVANE_TESTS_SUPPORT_SMALL_STACK_H

#include <pthread.h>

#include <cstddef>
#include <stdexcept>

namespace corvane::test {

/// Runs the action, which must not throw, in a thread with a stack of 512 KiB and waits for its end.
template <class Action>
void RunOnSmallStack(Action action) {
  constexpr std::size_t size = 512 * 1024;
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstacksize(&attributes, size);
  auto* const run = +[](void* given) -> void* {
    (*static_cast<Action*>(given))();
    return nullptr;
  };
  pthread_t thread;
  int const failed = pthread_create(&thread, &attributes, run, &action);
  pthread_attr_destroy(&attributes);
  if (failed != 0) throw std::runtime_error("no thread");
  pthread_join(thread, nullptr);
}

}  // namespace corvane::test

#endif
