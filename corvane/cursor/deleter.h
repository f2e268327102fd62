#ifndef CORVANE_CURSOR_DELETER_H
#define CORVANE_CURSOR_DELETER_H

#include "corvane/data/value/str.h"
#include "corvane/query/filter.h"

class ASDomain;
class ASSession;

/// One DELETE of all rows of a table that a condition chooses; nothing is read.
///
///     ASDeleter deleter(item);
///     deleter.Where(item.kindColumn == 3 && item.makerColumn == maker.idColumn && maker.nameColumn == "x");
///     unsigned long const deleted = deleter.Execute(&session);
///
/// A DELETER WHOSE CONDITION NAMES NO RECORD DELETES EVERY ROW OF THE TABLE: THE CONDITION IS DROPPED. Not only the
/// missing condition is such a one, but also a negation, `!(item.kindColumn == 3)`; filter.Exists() and NotExists(); a
/// comparison of derived columns (`item.nameColumn.Upper() == "X"`) or of columns without record; the comparisons of
/// values (`kind.EQ(value)`); and all that combines only these. Name the record: `item.kindColumn.IsNotNull() &&
/// !(item.kindColumn == 3)`, or `deleter.Project() << item.kindColumn`.
///
/// The rows that go are those of the constructor's record, whatever other records the condition names. When it names
/// others only, servers refuse the statement (error 1109); MariaDB refuses it, too, on a session without a database
/// (1046). Table names stand without quotes unless Project().setKW()
/// gives some, and always when every row goes. Of the filter only WHERE, tables and outer joins count.
///
/// The order of the virtual functions and of the members is binary contract.
class CORVANE_API ASDeleter : public virtual ASFilter {
 public:
  /// Takes over the record's table and alias; the record itself must outlive the condition's use only.
  explicit ASDeleter(ASDomain const& record);
  /// Copying and assigning take over the outer joins as well, which assigning an ASFilter does not.
  /// @{
  ASDeleter(ASDeleter const&);
  ASDeleter& operator=(ASDeleter const& other);
  /// @}

  ~ASDeleter() override;

  /// "DELETE FROM T1 USING t T1, u T2 WHERE T1.a=(T2.id)"; "DELETE FROM T1 USING t T1" when no record is named.
  Str Query() const override;

  /// Runs Query() and returns the number of rows deleted. Throws what ASSession::Execute() throws,
  /// "There is no session for deleter. " for a null pointer, and "SafeMode refuses a statement without a condition. "
  /// where the session is in safe mode. At debug level 2 and above the statement is logged.
  unsigned long Execute(ASSession* session) const;

 private:
  Str table_;
  Str alias_;
};

#endif
