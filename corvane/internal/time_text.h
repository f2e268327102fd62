#ifndef CORVANE_INTERNAL_TIME_TEXT_H
#define CORVANE_INTERNAL_TIME_TEXT_H

#include <cstddef>
#include <optional>

#include "corvane/data/value/str.h"

// Times as servers write them, "2004-07-01 13:45:00", and as seconds since 1970-01-01 00:00:00 UTC.
namespace corvane::internal {

constexpr std::size_t kTimeLength = 19;

/// Appends the text of a time.
void AppendTime(Str& out, int seconds);

/// The seconds, truncated to 32 bits, of a valid time in that very form, whatever follows but a digit; nothing for any
/// other text. It has kTimeLength characters at least.
std::optional<int> ReadPlainTime(char const* text);

/// Whether there is such a day in the Gregorian calendar of the years 1400 to 9999.
bool InCalendar(int year, int month, int day);

}  // namespace corvane::internal

#endif
