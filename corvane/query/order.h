#ifndef CORVANE_QUERY_ORDER_H
#define CORVANE_QUERY_ORDER_H

#include <utility>

#include "corvane/data/value/str.h"

class ASAttribute;
class ASGroupAttribute;

/// The list of an ORDER BY. `-a + b - c` gives "a DESC, b ASC, c DESC"; a list that begins in ascending order begins
/// with a text, `ASOrder(a.Query()) - b`. Nothing here throws but memory exhaustion (std::bad_alloc).
class CORVANE_API ASOrder {
 public:
  /// An empty list.
  ASOrder() = default;
  /// The text as it stands, NOT ESCAPED: a column's Query(), a position, or a whole list.
  explicit ASOrder(Str text) : text_(std::move(text)) {}

  /// Appends the text, NOT ESCAPED, behind ", " unless the list is empty.
  ASOrder& operator<<(Str const& text);

  /// The list as it stands behind ORDER BY: "a DESC, b ASC"; empty without an entry.
  Str Query() const { return text_; }

 private:
  friend class ASCursor;
  friend CORVANE_API ASOrder operator-(ASOrder&& order, ASAttribute const& attribute);
  friend CORVANE_API ASOrder operator+(ASOrder&& order, ASAttribute const& attribute);

  Str text_;
};

/// A new list: the other one, ", " (even behind an empty one, which servers refuse) and "a DESC" or "a ASC".
/// @{
CORVANE_API ASOrder operator-(ASOrder const& order, ASAttribute const& attribute);
CORVANE_API ASOrder operator-(ASOrder&& order, ASAttribute const& attribute);
CORVANE_API ASOrder operator+(ASOrder const& order, ASAttribute const& attribute);
CORVANE_API ASOrder operator+(ASOrder&& order, ASAttribute const& attribute);
/// @}

/// Appends "SUM(a) DESC" or "SUM(a) ASC" to the list itself, which needs a name, as `<<` does, and returns it.
/// @{
CORVANE_API ASOrder& operator-(ASOrder& order, ASGroupAttribute const& aggregate);
CORVANE_API ASOrder& operator+(ASOrder& order, ASGroupAttribute const& aggregate);
/// @}

#endif
