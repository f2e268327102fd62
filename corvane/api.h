#ifndef CORVANE_API_H
#define CORVANE_API_H

// Each #error is followed by a file that does not exist: there the compiler stops, before it lists what follows from
// it.
#if __cplusplus < 201703L
#error "Corvane needs C++17: compile with -std=c++17 or later."
#include <corvane/needs/c++17>
#endif
// The library asks the records and values that programs derive for their types, and reports errors by exceptions.
#ifndef __cpp_rtti
#error "Corvane needs run-time type information: compile without -fno-rtti."
#include <corvane/needs/rtti>
#endif
#ifndef __cpp_exceptions
#error "Corvane needs exceptions: compile without -fno-exceptions."
#include <corvane/needs/exceptions>
#endif

/// Marks what leaves the shared library; everything else is compiled with hidden visibility.
#define CORVANE_API __attribute__((visibility("default")))

#endif
