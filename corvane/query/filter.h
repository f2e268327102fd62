#ifndef CORVANE_QUERY_FILTER_H
#define CORVANE_QUERY_FILTER_H

#include <cstddef>
#include <utility>

#include "corvane/data/value/str.h"
#include "corvane/query/project.h"

class ASAttribute;
class ASComparison;
class ASGroupComparison;

/// One SELECT: what it projects, the condition, the grouping. ASCursor derives from it and runs it; by itself it serves
/// as a sub-query or as a side of a UNION.
///
/// Texts are taken over as they are given: a column, condition or sub-query that changes later changes nothing here.
/// Records are named by address and must outlive the use of the statement. Nothing here throws but memory exhaustion
/// (std::bad_alloc), and what a derived class's Query() throws. The order of the virtual functions and of the members
/// is binary contract.
class CORVANE_API ASFilter {
 public:
  /// Projects nothing and has no condition.
  ASFilter();
  /// Copies all of it: hint, GroupBy() and outer joins too, which assigning does not.
  ASFilter(ASFilter const&);
  /// Copies the projection (as its own assignment does), the WHERE and the HAVING; not the hint, not GroupBy().
  ASFilter& operator=(ASFilter const& other);
  virtual ~ASFilter();

  /// The select list; stream columns into it. Without any, "*" is selected.
  /// @{
  ASProject& Project() { return projection_; }
  ASProject const& Project() const { return projection_; }
  /// @}

  /// The same after Project().Distinct(): call it once.
  ASProject& DistinctProject();
  /// The columns of an explicit GROUP BY; stream them into it. Without any, a select list that mixes plain columns and
  /// aggregates is grouped by its plain columns, and so is every query with a HAVING. Its columns name no tables.
  /// @{
  ASProject& GroupBy() { return groupProjection_; }
  ASProject const& GroupBy() const { return groupProjection_; }
  /// @}

  /// Sets the condition: " WHERE " and its text. A condition without text (an outer join alone) leaves the one before.
  /// Always replaces the outer joins, and adds the condition's records to those of an earlier one: after a second call
  /// a record that was outer-joined before stands in the FROM clause without a condition.
  /// @{
  ASFilter& Where(ASComparison const& condition) { return Set(condition); }
  ASFilter& Where(ASComparison&& condition) { return Set(std::move(condition)); }
  ASFilter& Set(ASComparison const& condition);
  ASFilter& Set(ASComparison&& condition);
  /// @}

  /// Appends " HAVING " and the text; call it once, servers refuse a second one.
  ASFilter& Having(ASGroupComparison const& condition);
  /// Appends " START WITH " and the text of `start`, if that names a record, then " CONNECT BY PRIOR " and that of
  /// `prior`. MySQL and MariaDB refuse both (error 1064). Call it behind Where(), which would drop it.
  ASFilter& ConnectBy(ASComparison const& prior, ASComparison const& start);
  /// Sets an optimizer hint: a comment with a plus sign at its beginning, behind the word SELECT; Query() shows it. An
  /// empty text takes it away. NOT ESCAPED: the two characters that end a comment end this one.
  ASFilter& Hint(Str const& hint);

  /// " EXISTS (SELECT ...)" and " NOT EXISTS (SELECT ...)", conditions that name no record. To correlate them, compare
  /// an inner column with an outer one by In() or Between(): these name the inner record alone, while `==` would list
  /// the outer one in the sub-query's FROM too, and so compare with all its rows.
  /// @{
  ASComparison Exists() const;
  ASComparison NotExists() const;
  /// @}

  /// The statement as a column, for In(), NotIn() and `==`: "a IN (SELECT ...)".
  ASAttribute Select() const;
  /// " ANY (SELECT ...)" as a column, for `!=`, `>` and the like; with `==` and In() servers refuse it (error 1064).
  ASAttribute Any() const;

  /// The statement, each part only when there is something to say:
  /// @code{.unparsed}
  /// SELECT /*+ hint */a, SUM(b) FROM (t T1, u T2) WHERE c GROUP BY a  HAVING d
  /// @endcode
  virtual Str Query() const;

 protected:
  /// " WHERE ..." and what ConnectBy() wrote behind it, for the statements of derived classes; null without a
  /// condition. What is written there is NOT ESCAPED.
  /// @{
  Str const& Condition() const { return where_; }
  Str& ConditionForUpdate() { return where_; }
  /// @}

  /// Takes over all of the other filter, its outer joins too, which assigning would lose.
  void CopyWhole(ASFilter const& other);

 private:
  friend class ASCursor;

  // Query(), with room for so many more bytes.
  Str Rendered(std::size_t more) const;
  void Merge(ASComparison const& condition);

  Str where_;
  Str having_;
  Str hint_;
  ASProject projection_;
  ASProject groupProjection_;
};

#endif
