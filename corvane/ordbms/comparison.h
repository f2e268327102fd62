#ifndef CORVANE_ORDBMS_COMPARISON_H
#define CORVANE_ORDBMS_COMPARISON_H

#include "corvane/api.h"

/// The older, string-based interface: its codes, and the texts that they stand for: `comp_string[LESS]` is "<". The
/// tables can be used by whatever runs before main().
namespace ORDBMS {

/// "=", "<>", "<", ">", "<=", ">=".
enum comparison : int { EQUAL, NOT_EQUAL, LESS, GREATER, LESS_EQUAL, GREATER_EQUAL };
/// The text of each comparison: `comp_string[LESS]`.
CORVANE_API extern char const* const comp_string[6];

/// " IS NULL", " IS NOT NULL".
enum null_comparison : int { IS_NULL, IS_NOT_NULL };
/// The text of each null_comparison.
CORVANE_API extern char const* const null_comp_string[2];

/// " ASC", " DESC".
enum sort_order : int { ASCENDING, DESCENDING };
/// The text of each sort_order.
CORVANE_API extern char const* const order_string[2];

}  // namespace ORDBMS

#endif
