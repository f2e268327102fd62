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
  union {
    std::int32_t integer;
    std::uint32_t length;
    double number;
    std::int64_t integer64;
    RealBlob const* blob;
  } value;
  union {
    char* text;
    unsigned char const* bytes;
    char const* constant;
    unsigned char null;
  } extra;
  std::int32_t mark;
  std::int32_t unused;

  /// The first 32 bits.
  operator int() const { return value.integer; }
};

static_assert(sizeof(UU) == 24, "the layout is binary contract");

#endif
