#ifndef CORVANE_INTERNAL_SQL_TEXT_H
#define CORVANE_INTERNAL_SQL_TEXT_H

#include "corvane/data/value/relation.h"

// The words of statements that more than one place writes.
namespace corvane::internal::sql {

constexpr char const* kSeparator = ", ";
constexpr char const* kAnd = " AND ";
constexpr char const* kOr = " OR ";
constexpr char const* kIsNull = " IS NULL";
constexpr char const* kIsNotNull = " IS NOT NULL";
constexpr char const* kIn = " IN (";
constexpr char const* kNotIn = " NOT IN (";
constexpr char const* kLike = " LIKE ";
constexpr char const* kBetween = " BETWEEN ";
constexpr char const* kAscending = " ASC";
constexpr char const* kDescending = " DESC";

/// The operators.
constexpr char const* Word(Relation relation) {
  switch (relation) {
    case Relation::kEqual:
      return "=";
    case Relation::kNotEqual:
      return "<>";
    case Relation::kGreater:
      return ">";
    case Relation::kLess:
      return "<";
    case Relation::kGreaterEqual:
      return ">=";
    case Relation::kLessEqual:
      return "<=";
  }
  return "";
}

}  // namespace corvane::internal::sql

#endif
