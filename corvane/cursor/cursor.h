#ifndef CORVANE_CURSOR_CURSOR_H
#define CORVANE_CURSOR_CURSOR_H

#include <memory>

#include "corvane/cursor/cell.h"
#include "corvane/data/value/str.h"
#include "corvane/query/filter.h"
#include "corvane/session/mysql_fwd.h"

class ASDomain;
class ASOrder;
class ASSession;
class MapBuffer;

namespace corvane::internal {
class ResultRows;
class StatementRecord;
}  // namespace corvane::internal

/// Runs a query and hands out its rows one by one, into the values bound to the projected columns.
///
///     ASCursor cursor(&session);
///     cursor.Project() << zone.nameColumn << country.nameColumn;
///     cursor.Where(zone.countryColumn == country.codeColumn);
///     cursor.Order(-zone.nameColumn);
///     while (cursor.Fetch()) Use(zone.name, country.name);
///
/// The query is the filter that the cursor is, with what only a cursor has: ORDER BY, LIMIT, UNION and the like; or a
/// raw text given to Statement(). It runs once, when the cursor opens: by Open(), or by the first Fetch(),
/// FetchSingle(), GetAmount() or Reset(). The whole result is read then, straight from the connection, which is free
/// for other statements afterwards. What is changed on the filter afterwards shows in Query() alone; which columns
/// there are is settled when it opens.
///
/// Columns, values and session are not owned. They must outlive the open cursor and stay where they are. A column that
/// is bound to another value of the same type meanwhile is read into that; one that is bound to none, or to another
/// type, is left out.
///
/// Integers, doubles and times are read as by a session's Fetch(); a text is cut at its value's capacity, a small
/// binary or a geometry likewise. A geometry (of a server's geometry column) arrives without the four bytes that
/// servers keep in front of it.
///
/// Every failure of opening is an AException, and the cursor is not open then: "There is no session for cursor. ", what
/// ASSession::Execute() throws, "MySQL fetch error. " (no result, one with fewer columns than are projected, or a
/// statement that was killed while its result was read), "Result is too large for the row buffer. " (INT_MAX bytes or
/// rows), "Out of memory for the row buffer. ", "Incompatible types for ASCursor::Open(). " (a value whose class is not
/// what its type code says), "Raw statement has failed, it is not run again. " (after a Statement() whose query
/// failed).
///
/// The order of the virtual functions and of the members is binary contract.
class CORVANE_API ASCursor : public virtual ASFilter {
 public:
  /// `session` may be null and be given later.
  explicit ASCursor(ASSession* session);
  /// A cursor is not copied: rows and columns are its own.
  /// @{
  ASCursor(ASCursor const&) = delete;
  ASCursor& operator=(ASCursor const&) = delete;
  /// @}

  /// Of a filter: takes over its projection, WHERE and HAVING.
  using ASFilter::operator=;
  ~ASCursor() override;

  /// Replaces the session. Rows held are not changed.
  void AssignSession(ASSession* session) { session_ = session; }
  /// Sets " LIMIT 10", with an offset " LIMIT 10 OFFSET 5"; replaces an earlier one.
  ASCursor& Limit(unsigned count, unsigned offset = 0);
  /// Appends to the ORDER BY list, behind ", " unless it is empty.
  /// @{
  void Order(ASOrder const& order);
  void Order(ASOrder&& order);
  /// @}

  /// Append " UNION ", " UNION ALL ", " INTERSECT " or " MINUS " and the other filter's statement as of now. MySQL and
  /// MariaDB refuse MINUS (error 1064). An operand's own ORDER BY or LIMIT is refused, too, or, of the last operand,
  /// holds for the whole. Order the whole by position or by bare name: `ASOrder("1")`. Throw "There is no session for
  /// cursor. " without a session.
  /// @{
  ASCursor& Union(ASFilter const& other);
  ASCursor& UnionAll(ASFilter const& other);
  ASCursor& Intersect(ASFilter const& other);
  ASCursor& Minus(ASFilter const& other);
  /// @}

  /// The whole statement: the filter's, the set operations, " ORDER BY ...", " LIMIT ..."; or the raw text alone.
  /// Throws "There is no session for cursor. " without a session, which a raw text does not need.
  Str Query() const override;
  /// "(SELECT ... UNION ...)": without ORDER BY and LIMIT; or the raw text alone, without parentheses.
  virtual Str SimpleQuery() const;

  /// Runs a raw text, NOT ESCAPED: values go in by corvane::Literal(). One without the letters "select", in any case,
  /// is executed, once, and the cursor stays closed without rows; its result, if it has one (SHOW, CALL), can be taken
  /// by the session's FetchMultiple() before the next statement. Any other is executed twice: for its columns, and by
  /// Open() for its rows. One that has the letters but no result (INSERT ... SELECT) is executed once, then "MySQL
  /// fetch error. " is thrown. Of the results of a procedure the first one counts, and the failure of a later one is
  /// thrown too. A text that has failed is not run again by Open(): give it to Statement() once more.
  ///
  /// For each column of the result the cursor makes a column and a value, which live until the next Statement() or the
  /// cursor's end: `static_cast<ASAttribute*>(item)->Name()` and `item->Data()` for the items of Project().Items(). The
  /// value is an ASInt for SMALLINT, MEDIUMINT, INT and BIGINT (32 bits of it), and for all else, TINYINT, DECIMAL,
  /// DOUBLE and dates too, an ASStr of the column's declared length, padded with blanks (Trim() removes them). Where
  /// rows of that length would not fit the row buffer, columns above 65,535 bytes are as long as their longest value,
  /// and may get another value when the text is run again after Detach(): ask Data() then.
  ///
  /// On an open cursor the earlier rows, and the columns of an earlier Statement(), go first, and reading starts at the
  /// first row. Columns that the caller projected stay and count as the first columns of the result, which then has
  /// fewer columns than are projected: project none.
  void Statement(Str const& sql);
  /// Runs the query and reads its result. Does nothing on an open cursor, whose rows stay: use another cursor, or
  /// Detach(), to run the query again. The arguments have no meaning. The current row is not changed.
  void Open(int = 0, int = 0);

  /// Fetch(current row): `while (cursor.Fetch())` walks all rows from the current one. Each Fetch opens first.
  virtual int Fetch();
  /// Copies one row, 0-based, into the projected values. Returns the number of the row behind it, which is the current
  /// one then; 0 when there is no such row, the current row then being `row`, and the values unchanged.
  virtual int Fetch(int row);
  /// On a closed cursor projects all columns of `record` first and goes to the first row; then Fetch(). On an open one
  /// the record is not looked at. When opening fails, the projection is as before. (After Detach() the columns are
  /// projected once more.)
  virtual int Fetch(ASDomain& record);
  /// Fetch(), after which the rows behind that one are gone: returns its number + 1, 1 for the first row, and that is
  /// GetAmount() from then on. Without a next row it returns 0, and no row is left.
  virtual int FetchSingle();

  /// How many rows there are; opens first.
  int GetAmount();
  /// Goes to the first row; opens first.
  ASCursor& Reset();
  /// The first cell of a row. There is no check: `row` must be one of the rows. A null pointer while closed.
  UU* GetUURecord(int row);
  /// Hands the row buffer to the caller, who deletes it, and closes the cursor; a null pointer when it is closed. The
  /// current row stays: call Reset() to read from the first again.
  MapBuffer* Detach();

 protected:
  /// Gives the cursor a record to own: deleted with the cursor, or by the next call with another one, which may be a
  /// null pointer. The cursor is closed then, and lists the columns of the record before no more; nothing else that
  /// was made of those, like a condition, may be used any longer.
  void SetRecord(ASDomain* owned);
  /// Open() with the columns of the owned record listed behind the projected ones, but not written into the select
  /// list: they are read into from where those end. Those that are listed already, or a missing record, add nothing.
  /// When opening fails, the projection is as before.
  void OpenWithRecord();

 private:
  // Of the raw text: Open() may execute it; it has been executed as often as it may be, and has no rows; it has failed.
  enum class RawState { kReady, kDone, kFailed };

  void SetKeywords(ASFilter const& filter) const;
  ASCursor& Append(char const* word, ASFilter const& other);
  int FetchFirst(ASDomain& record);
  bool IsOpen() const { return buffer_ != nullptr; }
  void Close();
  void Execute(Str const& statement);
  MYSQL_RES* TakeResult();
  void Describe();
  void DropStatementColumns();

  std::unique_ptr<MapBuffer> buffer_;  // the cursor is open while there is one
  UU* grid_ = nullptr;                 // the first cell in buffer_
  int rowCount_ = 0;
  int rowWidth_ = 0;  // cells
  int currentRow_ = 0;
  std::unique_ptr<ASDomain> record_;
  Str setOperations_;
  Str order_;
  Str raw_;
  ASSession* session_;  // not owned
  std::unique_ptr<corvane::internal::ResultRows> rows_;
  std::unique_ptr<corvane::internal::StatementRecord> statement_;
  RawState rawState_ = RawState::kReady;
  bool limited_ = false;
  unsigned limit_ = 0;  // rows
  unsigned offset_ = 0;
};

#endif
