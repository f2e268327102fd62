#ifndef CORVANE_ORDBMS_RDBMS_H
#define CORVANE_ORDBMS_RDBMS_H

#include "corvane/data/value/str.h"

class ASData;
class ASSession;

namespace ORDBMS {

class old_cursor;

/// The older calling names, as functions, on one session for the whole process.
class CORVANE_API Rdbms {
 public:
  /// The session that OpenCursor() uses; not owned, null at first. Not guarded: set it before other threads use it, and
  /// open cursors in one thread at a time.
  static void SetSession(ASSession* session);

  /// cursor.Open(session); returns 1. Throws "There is no session for cursor. " without one.
  static int OpenCursor(old_cursor& cursor);
  /// cursor.GetAmount(): how many rows there are.
  static int CursorBulk(old_cursor& cursor);
  /// cursor.Fetch(): the number of the row behind the one fetched; 0 when there was none.
  static int Fetch(old_cursor& cursor);
  /// Does nothing; returns 1.
  static int CloseCursor(old_cursor& cursor);

  /// Copies the value of the column with the name of the one that `value` is bound to, or with the given name, from the
  /// cursor's record. Names are compared as Simplify() has them; of several the first counts. An unbound value has the
  /// name "EMPTY". Throws A Str, NOT AN AException, when there is no such column; its text is unreadable: groups of the
  /// character U+FFFD around the name, as it was given. Throws AException when the values are of different types.
  /// @{
  static void GetField(old_cursor& cursor, ASData& value);
  static void GetField(old_cursor& cursor, basic_type& value, Str const& name);
  /// @}

  /// A name in upper case (ASCII letters only), cut at its first blank and at 32 bytes: "order date" gives "ORDER".
  static Str Simplify(Str const& name);

  /// What SetSession() has set.
  static ASSession* session;
};

}  // namespace ORDBMS

#endif
