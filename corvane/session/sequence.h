#ifndef CORVANE_SESSION_SEQUENCE_H
#define CORVANE_SESSION_SEQUENCE_H

#include "corvane/data/value/str.h"

class ASSession;

/// Numbers that no other session or process gets: a table of one row counts them.
///
///     session.Execute("CREATE TABLE invoice_numbers (Val INT NOT NULL)");
///     session.Execute("INSERT INTO invoice_numbers VALUES (0)");
///     ASSequence numbers(&session, "invoice_numbers");
///     int const first = numbers.getNext();  // 1
///
/// The table's only row must have the integer column `Val`, the last number handed out, 0 or more. It is counted up on
/// the session's sequence connection, in the server's default autocommit mode: with autocommit on, as servers come, a
/// number is committed at once, stays used when the session rolls back, and waits for no open transaction.
///
/// Used by one thread at a time, as its session is.
class CORVANE_API ASSequence {
 public:
  /// `name` is the table's, written into the statements as it stands: NOT QUOTED AND NOT ESCAPED. Sends nothing. The
  /// session is not owned and must outlive the sequence.
  ASSequence(ASSession* session, Str const& name);

  /// The next number; 0 when there is none: the table is empty, `Val` is NULL or has reached its type's end (in strict
  /// mode that throws, as error 1264), or the answer was lost. Throws "Sequence connection is not established. " when
  /// the session has none (EmulateSequences=no, after Disconnect(), a null session) and what ASSession::ExecuteSeq()
  /// throws.
  ///
  /// A lost connection is reopened and the statement repeated, as by ExecuteSeq(): numbers may be skipped then, none is
  /// handed out twice. A `Val` beyond 2147483647 is cut to 32 bits: make it an INT.
  int getNext();

 private:
  int value_ = 0;  // the last number returned
  Str update_;
  Str select_;
  ASSession* session_;  // not owned
};

#endif
