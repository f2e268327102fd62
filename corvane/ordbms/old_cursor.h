#ifndef CORVANE_ORDBMS_OLD_CURSOR_H
#define CORVANE_ORDBMS_OLD_CURSOR_H

#include "corvane/cursor/cursor.h"
#include "corvane/ordbms/comparison.h"
#include "corvane/ordbms/old_filter.h"

namespace ORDBMS {

/// Runs an old_filter, its own part or another one's, and hands out the rows as ASCursor does.
///
/// With a record type Country, whose columns are code and name:
///
///     ORDBMS::old_cursor cursor(&session);
///     auto* const country = new Country;
///     cursor.SetRecord(country);  // deleted with the cursor
///     cursor.Join("country");
///     cursor.Project("code");
///     cursor.Project("name");
///     cursor.orderby("name", ORDBMS::DESCENDING);
///     cursor.Open(&session);
///     while (cursor.Fetch() != 0) Use(country->code, country->name);
///
/// The statement is that of the old_filter and the order alone: Limit(), the set operations and the text of Statement()
/// have no effect on it. The order of the virtual functions and of the members is binary contract.
class CORVANE_API old_cursor : public ASCursor, public virtual old_filter {
 public:
  /// `session` may be null and be given later.
  explicit old_cursor(ASSession* session = nullptr);
  ~old_cursor() override;

  /// Takes over another filter's select list, condition and tables, its HAVING too. Throws AException "There is no
  /// filter for cursor. " for a null pointer.
  old_cursor& operator<<(old_filter* filter);

  /// Append "name DESC", NOT ESCAPED, and "2 DESC" to the order, behind ", " unless that is empty. A code that is none
  /// gives no word.
  /// @{
  void orderby(Str const& column, sort_order order);
  void orderby(int position, sort_order order);
  /// @}

  /// Reads the result: its columns go to those that were streamed into Project(), then to those of the record given to
  /// SetRecord(), in their order, wherever the select list came from. Does nothing on an open cursor but take the
  /// session. Throws as ASCursor::Open() does.
  void Open(ASSession* session);
  /// Without the record: NOTHING IS READ INTO IT. So does Fetch() on a closed cursor.
  using ASCursor::Open;
  /// Gives the cursor a record to own and to read into: deleted with the cursor, or by the next call with another one,
  /// which may be a null pointer. The cursor is closed then, and lists the columns of the record before no more.
  using ASCursor::SetRecord;

  /// "(SELECT code, name FROM country P94271) ORDER BY name DESC".
  Str Query() const override;
  /// "(SELECT code, name FROM country P94271)".
  Str SimpleQuery() const override;

 private:
  Str ordering_;
};

}  // namespace ORDBMS

#endif
