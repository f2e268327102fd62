#ifndef CORVANE_CURSOR_CELL_H
#define CORVANE_CURSOR_CELL_H

#include <cstdint>

#include "corvane/api.h"

class RealBlob;

/// A cell of a cursor's rows, 24 bytes. A row is a cell for each column, then the area with the bytes of its texts and
/// GUIDs, each as long as the value's GetSize() + 1, filled up to whole cells. Of a NULL text or GUID the bytes are 0.
///
/// | Column | `value` | `extra` |
/// |---|---|---|
/// | integer, time | `integer`; -2147483648 for NULL | |
/// | double | `number`; the lowest double for NULL | |
/// | currency | `number`; the lowest double for NULL | `constant`, and 2 in `mark` |
/// | 64-bit integer | `integer64` | `null`: 1 for NULL |
/// | text | `length`: with its terminating NUL; 0 for NULL | `text`: in the row's area, of a NULL too |
/// | GUID | `length`: 16; 0 for NULL | `text`: its bytes in the row's area, of a NULL too |
/// | small binary, geometry | `length` in bytes; 0 for NULL | `bytes`: kept by the MapBuffer |
/// | large binary | `blob`, kept by the MapBuffer; null for NULL | |
///
/// The cell of a column without value is not set.
struct CORVANE_API UU {
  /// The column's value, or the length of its bytes.
  union {
    std::int32_t integer;    ///< of an integer or a time
    std::uint32_t length;    ///< of what `extra` points to, as the table says
    double number;           ///< of a double or a currency
    std::int64_t integer64;  ///< of a 64-bit integer
    RealBlob const* blob;    ///< of a large binary value; not owned
  } value;
  /// What else there is of it.
  union {
    char* text;                  ///< of a text or a GUID; not owned
    unsigned char const* bytes;  ///< of a small binary value or a geometry; not owned
    char const* constant;        ///< of a currency; a text that is never freed
    unsigned char null;          ///< of a 64-bit integer: 1 for NULL
  } extra;
  /// 2 in the cell of a currency; without meaning in others.
  std::int32_t mark;
  /// Fills the cell up.
  std::int32_t unused;

  /// The first 32 bits.
  operator int() const { return value.integer; }
};

static_assert(sizeof(UU) == 24, "the layout is binary contract");

#endif
