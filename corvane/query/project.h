#ifndef CORVANE_QUERY_PROJECT_H
#define CORVANE_QUERY_PROJECT_H

#include <list>
#include <memory>
#include <string>
#include <string_view>

#include "corvane/data/value/str.h"
#include "corvane/query/comparison.h"

class ASAttribute;
class ASDomain;
class ASGroupAttribute;
class ASSimpleAttribute;

/// The select list of a query, and all that its FROM clause needs: the record types that the query touches and the
/// outer joins between them. The FROM clause is derived from these alone.
///
/// Columns and records are not owned: they must outlive the use of the projection. A temporary column
/// (`project << a.Upper()`) is copied and kept. Nothing here throws but memory exhaustion (std::bad_alloc).
class CORVANE_API ASProject {
 public:
  /// Without columns and keywords.
  ASProject();
  /// Copies all of it, the outer joins too.
  ASProject(ASProject const&);
  /// Copies both texts, the columns and the record types; not the keywords, the binary positions and the outer joins.
  ASProject& operator=(ASProject const& other);
  ~ASProject();

  /// Appends a plain column to the select list and to the GROUP BY list: "a, b". Adds its record.
  /// @{
  ASProject& operator<<(ASAttribute const& attribute);
  ASProject& operator<<(ASAttribute const&& attribute);
  /// @}

  /// Appends an aggregate to the select list alone. A null pointer is ignored; otherwise the caller keeps the object
  /// and deletes it after the query is done: `project << a.Sum()` leaks it, hold it in a std::unique_ptr.
  /// @{
  ASProject& operator<<(ASGroupAttribute const& aggregate);
  ASProject& operator<<(ASGroupAttribute const&& aggregate);
  ASProject& operator<<(ASGroupAttribute const* aggregate);
  /// @}

  /// Appends "DISTINCT " to the select list: call it once, before the first column; servers refuse other uses.
  void Distinct();
  /// Empties both texts, the columns and the record types; keeps keywords, binary positions and outer joins.
  void Clear();

  /// The select list: "DISTINCT a, SUM(b)"; empty without columns.
  Str ProjectQuery() const { return projectText_; }
  /// The same for writing, past the columns and the GROUP BY list. What is written there is NOT ESCAPED.
  Str& ProjectQueryForUpdate();
  /// The plain columns: "a, b".
  Str GroupQuery() const { return GroupText(); }
  /// A select list with names, "a AS Q1, b AS Q2", for a derived table ALIAS, and the list that selects from that:
  /// "ALIAS.Q1, ALIAS.Q2".
  /// @{
  Str ProjectForLimitInternalQuery() const;
  Str ProjectForLimitQuery() const;
  /// @}

  /// What stands before and behind each table name from now on: the session's getKWPrefix() and getKWSuffix(). Cursors
  /// set them; a projection on its own begins without. They are NOT ESCAPED. They are no part of what is projected,
  /// hence const.
  void setKW(Str const& prefix, Str const& suffix) const;

  /// The FROM clause of a SELECT: ``"(`t` T1, `u` T2) LEFT JOIN `v` T3 ON (c1 AND c2) LEFT JOIN `w` T4 ON (c3)"``. A
  /// record that is the optional side of an outer join is left out of the parentheses. The required sides are not
  /// looked at: they must have been named by a column or a condition. A condition for a record that has been joined
  /// already goes into the ON clause that is open then. Empty without records.
  Str JoinQuery() const;
  /// The same without the parentheses around the plain tables, for UPDATE and DELETE.
  Str JoinForDeleteQuery() const;

  /// The columns in order. Those whose text is in the select list, and those that Statement() and its like list.
  std::list<ASSimpleAttribute*> const& Items() const { return items_; }
  /// The record types in order of first appearance; with a null pointer for columns without record.
  std::list<ASDomain*> const& Domains() const { return domains_; }
  /// For each plain column whose value is of type corvane::kTypeRealBlob, how many columns stand before it.
  std::list<int> const& BinaryPositions() const { return binaryPositions_; }

 private:
  friend class ASCursor;
  friend class ASFilter;

  std::string_view Append(ASSimpleAttribute const& listed, ASSimpleAttribute const& written);
  void AppendPlain(ASAttribute const& listed, ASAttribute const& written);
  Str const& GroupText() const { return plainOnly_ ? projectText_ : groupText_; }
  void KeepGroupText();
  void AddDomain(ASDomain* domain);
  void AppendTo(Str& out, char const* open, char const* close) const;
  bool IsOptional(ASDomain const* domain) const;
  void Swap(ASProject& other) noexcept;
  // The const is the caller's promise to the caller: the columns are filled by whoever reads rows.
  static ASSimpleAttribute* Item(ASSimpleAttribute const& column) { return const_cast<ASSimpleAttribute*>(&column); }

  Str projectText_;
  Str groupText_;  // not kept while there are only plain columns: projectText_ is the same then
  mutable std::string kwPrefix_;
  mutable std::string kwSuffix_;
  std::list<ASSimpleAttribute*> items_;          // not owned, or in kept_
  std::list<ASSimpleAttribute*> reservedItems_;  // keeps the layout; empty
  std::list<ASDomain*> domains_;                 // not owned
  std::list<int> binaryPositions_;
  std::list<ASComparison::JoinPair> joinPairs_;
  std::list<Str> joinConditions_;
  std::list<std::shared_ptr<ASSimpleAttribute>> kept_;  // copies of temporary columns
  bool plainOnly_ = true;                               // nothing but plain columns has gone into the select list
};

#endif
