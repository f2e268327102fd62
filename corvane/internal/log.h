#ifndef CORVANE_INTERNAL_LOG_H
#define CORVANE_INTERNAL_LOG_H

#include <new>

#include "corvane/data/value/str.h"

namespace corvane::internal {

/// A line is written when the session's debug level is above these.
constexpr int kLogFailures = 0;
constexpr int kLogStatements = 1;
constexpr int kLogCommands = 2;
constexpr int kLogNotices = 4;

/// An address as the standard streams write it, "0x7ffd10"; a null pointer is "0".
struct Pointer {
  void const* address;
};
Str& operator<<(Str& out, Pointer pointer);

/// Writes the text to the standard error stream in one piece.
void WriteLog(Str const& text);

/// Writes the parts, one behind the other, when `level` is above `gate`; builds no text otherwise. Without memory for
/// the text it is not written, and nothing is thrown: what it tells of may be done already.
template <class... Parts>
void Log(int level, int gate, Parts const&... parts) {
  if (level <= gate) return;
  try {
    Str text;
    (text << ... << parts);
    WriteLog(text);
  } catch (std::bad_alloc const&) {
    // Nobody to tell.
  }
}

}  // namespace corvane::internal

#endif
