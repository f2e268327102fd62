#ifndef CORVANE_DATA_LITERAL_H
#define CORVANE_DATA_LITERAL_H

#include <cstddef>

#include "corvane/data/value/basic_type.h"
#include "corvane/data/value/str.h"

/// @file
/// How values become statement text. There is one escaping function and one literal function; every value reaches a
/// statement through them.
///
/// The escaping knows neither the connection's character set nor its SQL mode. It is safe for single-byte sets and for
/// UTF-8; a server running NO_BACKSLASH_ESCAPES, or a client set in which a backslash can be the second byte of a
/// character (GBK, Big5, Shift-JIS), would read the escaped text otherwise than it was meant.

namespace corvane {

/// Appends the bytes as they may stand between single quotes, escaped by the client library: a backslash goes before
/// single quote, double quote and backslash, and NUL, line feed, carriage return and code 26 become `\0`, `\n`, `\r`
/// and `\Z`. Texts of any length are taken whole. It protects between single quotes alone: elsewhere, in backticks too,
/// the text counts as NOT ESCAPED.
void CORVANE_API AppendEscaped(Str& out, char const* bytes, std::size_t length);
/// The NUL-terminated text escaped likewise, without quotes (anywhere else than between them it counts as NOT ESCAPED);
/// empty for a null pointer.
Str CORVANE_API Escaped(char const* text);

/// Appends a value as it stands in a condition: a number (not an ASTime) as its text form, anything else as its text
/// form up to the first NUL, escaped, between single quotes. A NULL value is not treated specially: a NULL ASTime gives
/// 'NULL', a quoted word, and a NULL number its stored number; binary values give 'BLOB'.
void CORVANE_API AppendLiteral(Str& out, basic_type const& value);
/// The value as AppendLiteral() writes it: for values that go into a text of one's own.
Str CORVANE_API Literal(basic_type const& value);

}  // namespace corvane

#endif
