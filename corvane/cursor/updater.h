#ifndef CORVANE_CURSOR_UPDATER_H
#define CORVANE_CURSOR_UPDATER_H

#include "corvane/data/value/str.h"
#include "corvane/query/filter.h"

class ASSession;
class ASSetter;

/// One UPDATE of all rows that a condition chooses; nothing is read.
///
///     ASUpdater updater(item.priceColumn.Set(item.priceColumn * 1.1));
///     updater << item.markColumn.Set("raised");
///     updater.Where(item.kindColumn == 3);
///     unsigned long const changed = updater.Execute(&session);
///
/// The tables are those of the records that the condition and Project() name; an assignment names none. WITHOUT A
/// CONDITION EVERY ROW IS CHANGED; the table has to be named then: `updater.Project() << item.idColumn`. Where no
/// record is named at all, the statement names no table, and servers refuse it (error 1064).
///
/// Assignments are rendered at once: setters and expressions may be temporaries. Table names stand without quotes
/// unless Project().setKW() gives some. Of the filter only WHERE, tables and outer joins count.
///
/// The order of the virtual functions and of the members is binary contract.
class CORVANE_API ASUpdater : public virtual ASFilter {
 public:
  /// With its first assignment. Throws what ASSetter::Query() throws.
  explicit ASUpdater(ASSetter const& assignment);
  /// Copying and assigning take over the outer joins as well, which assigning an ASFilter does not.
  /// @{
  ASUpdater(ASUpdater const&);
  ASUpdater& operator=(ASUpdater const& other);
  /// @}

  ~ASUpdater() override;

  /// Appends ", " and the assignment; the first one's table is that of them all. Throws AException "Only single table
  /// may be updated in single UPDATE SQL query. " for a column of another table, and the assignment is in the list all
  /// the same: do not execute the statement then. Throws what ASSetter::Query() throws; the list is unchanged then.
  ASUpdater& operator<<(ASSetter const& assignment);

  /// "UPDATE t T1, u T2 SET T1.a = T2.b, T1.c = '5' WHERE T1.id=(T2.id)".
  Str Query() const override;

  /// Runs Query() and returns the number of rows that were changed; rows that held the new values already do not count.
  /// Throws what ASSession::Execute() throws, "There is no session for updater. " for a null pointer, and
  /// "SafeMode refuses a statement without a condition. " where the session is in safe mode. At debug level 2 and above
  /// the statement is logged.
  unsigned long Execute(ASSession* session) const;

 private:
  Str assignments_;
  Str table_;
};

#endif
