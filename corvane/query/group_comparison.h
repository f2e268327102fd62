#ifndef CORVANE_QUERY_GROUP_COMPARISON_H
#define CORVANE_QUERY_GROUP_COMPARISON_H

#include <set>

#include "corvane/data/value/str.h"

class ASDomain;

/// A condition of a HAVING clause: its text and the record types that it names. The predicates of ASGroupAttribute make
/// them, `&&` and `||` combine them, ASFilter::Having() takes one. The record types are not owned. Nothing here throws
/// but memory exhaustion (std::bad_alloc).
class CORVANE_API ASGroupComparison {
 public:
  /// A condition that names `d1` and `d2`; either may be null. The text is NOT ESCAPED: it stands as it is given.
  ASGroupComparison(Str text, ASDomain* d1, ASDomain* d2);

  /// "(this) AND (other)", "(this) OR (other)": this condition is changed and returned (a constant one is copied); an
  /// empty side leaves the text to the other one. The other's record types are added.
  /// @{
  ASGroupComparison& operator&&(ASGroupComparison const& other) &;
  ASGroupComparison operator&&(ASGroupComparison const& other) &&;
  ASGroupComparison operator&&(ASGroupComparison const& other) const&;
  ASGroupComparison& operator||(ASGroupComparison const& other) &;
  ASGroupComparison operator||(ASGroupComparison const& other) &&;
  ASGroupComparison operator||(ASGroupComparison const& other) const&;
  /// @}

  /// The text.
  Str Query() const { return text_; }
  /// The record types that are named, ordered by address; never a null pointer among them.
  std::set<ASDomain*> const& Domains() const { return domains_; }

 private:
  void Combine(char const* word, ASGroupComparison const& other);

  Str text_;
  std::set<ASDomain*> domains_;  // not owned
};

#endif
