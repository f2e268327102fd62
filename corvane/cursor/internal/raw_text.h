#ifndef CORVANE_CURSOR_INTERNAL_RAW_TEXT_H
#define CORVANE_CURSOR_INTERNAL_RAW_TEXT_H

#include "corvane/data/value/str.h"

// What a cursor has to know of a raw statement.
namespace corvane::internal {

/// Whether the letters "select" occur anywhere, in any case.
bool ContainsSelect(Str const& statement);

/// Whether it may give several results: what can run a procedure's statements, by its first word (CALL, EXECUTE, and
/// the words that begin a compound statement), or stands in a comment that servers execute.
bool MayGiveResults(Str const& statement);

}  // namespace corvane::internal

#endif
