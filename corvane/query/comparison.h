#ifndef CORVANE_QUERY_COMPARISON_H
#define CORVANE_QUERY_COMPARISON_H

#include <array>
#include <atomic>
#include <cstddef>
#include <list>
#include <utility>
#include <vector>

#include "corvane/data/value/str.h"

class ASDomain;

/// A condition of a WHERE clause: its text, the record types that the text names, and the outer joins that it asks for.
/// The predicates of ASAttribute make them; `&&`, `||` and `!` combine them; ASFilter::Where() takes one.
///
/// An empty condition (text "") is the neutral start of a chain. The record types are not owned: they must outlive the
/// statement. Nothing here throws but memory exhaustion (std::bad_alloc).
class CORVANE_API ASComparison {
 public:
  /// The record whose rows are kept whatever the condition says (may be null), and the one to be LEFT JOINed.
  using JoinPair = std::pair<ASDomain*, ASDomain*>;

  /// A condition that names `d1` and `d2`; either may be null. The text is NOT ESCAPED: it stands as it is given.
  ASComparison(Str text, ASDomain* d1, ASDomain* d2);
  /// An outer join: `text` is its ON condition, NOT ESCAPED; the WHERE text is empty and no record is named by it.
  static ASComparison OuterJoin(Str text, ASDomain* requiredSide, ASDomain* optionalSide);

  /// Copy or move all of it, the outer joins too.
  /// @{
  ASComparison(ASComparison const&);
  ASComparison(ASComparison&&);
  /// @}
  ~ASComparison();

  /// Takes over the text and the record types, but not the outer joins: this condition keeps its own. So initialise,
  /// `ASComparison c = ++a == b;`, and do not assign. Containers that assign lose joins, too.
  // NOLINTNEXTLINE(bugprone-unhandled-self-assignment): it does nothing, as its members' own does
  ASComparison& operator=(ASComparison const& other);

  /// "(this) AND (other)": this condition is changed and returned (a constant one is copied); an empty side leaves the
  /// text to the other one. The other's record types that are not named yet, and its outer joins, are added.
  /// @{
  ASComparison& operator&&(ASComparison const& other) &;
  ASComparison operator&&(ASComparison const& other) &&;
  ASComparison operator&&(ASComparison const& other) const&;
  /// @}

  /// "(this) OR (other)", otherwise as `&&`; but the other's outer joins are dropped.
  /// @{
  ASComparison& operator||(ASComparison const& other) &;
  ASComparison operator||(ASComparison const& other) &&;
  ASComparison operator||(ASComparison const& other) const&;
  /// @}

  /// " NOT (this) ", a new condition which names no record type and has no outer joins: combine it with one that does.
  /// AN ASDELETER WHOSE WHOLE CONDITION IS A NEGATION DROPS IT AND DELETES EVERY ROW OF ITS TABLE; write
  /// `a.IsNotNull() && !(a == 3)`.
  ASComparison operator!() const;

  /// The text; empty for an outer join alone.
  Str Query() const { return text_; }
  /// The record types that are named, without duplicates, in order of first appearance; never a null pointer among
  /// them. The list stays where it is, and changes with the condition.
  std::list<ASDomain*> const& Domains() const;
  /// One for each outer-join condition, in order: its two records, and its ON text.
  /// @{
  std::list<JoinPair> const& JoinPairs() const { return joinPairs_; }
  std::list<Str> const& JoinConditions() const { return joinConditions_; }
  /// @}

 private:
  friend class ASFilter;

  // The record types named. Most conditions name one or two: these take no memory of their own, and the list that
  // callers see is made when one asks for it.
  class Records {
   public:
    Records() = default;
    Records(Records const& other);
    Records(Records&& other) noexcept;
    Records& operator=(Records const& other);
    ~Records();

    /// Ignores a null pointer and what is named already.
    void Add(ASDomain* record);
    ASDomain* const* begin() const { return many_.empty() ? few_.data() : many_.data(); }
    ASDomain* const* end() const { return begin() + count_; }
    std::list<ASDomain*> const& List() const;

   private:
    std::array<ASDomain*, 4> few_{};
    std::vector<ASDomain*> many_;  // all of them, once they are more than few
    std::size_t count_ = 0;
    mutable std::atomic<std::list<ASDomain*>*> list_{nullptr};  // owned; kept up to date once it is there
  };

  void Combine(char const* word, ASComparison const& other);

  Str text_;
  Records records_;  // not owned
  std::list<JoinPair> joinPairs_;
  std::list<Str> joinConditions_;
};

#endif
