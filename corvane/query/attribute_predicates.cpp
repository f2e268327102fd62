// The conditions on a column, and the columns derived from it. Every family has one builder, which holds its text.

#include <utility>

#include "corvane/internal/sql_text.h"
#include "corvane/mapping/attribute.h"
#include "corvane/query/comparison.h"
#include "corvane/query/internal/condition_text.h"

namespace sql = corvane::internal::sql;
using corvane::Number;
using corvane::Relation;

namespace {

ASComparison Condition(Str text, ASAttribute const& a) { return ASComparison(std::move(text), a.Domain(), nullptr); }

template <class Operand>
ASComparison CompareWith(ASAttribute const& a, Relation relation, Operand const& operand) {
  return Condition(sql::ComparisonText(a, relation, operand), a);
}

ASComparison CompareColumns(ASAttribute const& a, Relation relation, ASAttribute const& b) {
  return ASComparison(sql::ColumnsText(a, relation, b), a.Domain(), b.Domain());
}

// Whether the column stands for the optional side of an outer join; without a record there is nothing to join.
bool IsOptional(ASAttribute const& a) { return a.CheckKey(corvane::kOptionalSide) != 0 && a.Domain() != nullptr; }

void AppendBound(Str& out, Number const& bound) { bound.AppendTo(out); }
void AppendBound(Str& out, ASAttribute const& bound) { out << bound.Query(); }
// Pinned: quoted, numbers too, and not escaped; held by AttributePredicates.BetweenQuotesItsBoundsWithoutEscaping.
void AppendBound(Str& out, std::string_view bound) { (out << '\'').Append(bound.data(), bound.size()) << '\''; }
void AppendBound(Str& out, basic_type const& bound) { AppendBound(out, bound.getstr().View()); }

template <class Low, class High>
ASComparison BetweenBounds(ASAttribute const& a, Low const& low, High const& high) {
  Str text = a.Query();
  text << sql::kBetween;
  AppendBound(text, low);
  text << sql::kAnd;
  AppendBound(text, high);
  return Condition(std::move(text), a);
}

// A derived column: " ABS(a)".
ASAttribute Function(char const* name, ASAttribute const& a) {
  Str text(name);
  text << a.Query() << ')';
  return ASAttribute(text);
}

}  // namespace

// Pinned: the right column stands in parentheses; held by AttributePredicates.EqualColumnsPutTheRightOneInParentheses.
ASComparison ASAttribute::operator==(ASAttribute const& other) const {
  Str text = sql::ColumnsText(*this, "=(", other, ")");
  if (IsOptional(*this)) return ASComparison::OuterJoin(std::move(text), other.Domain(), Domain());
  if (IsOptional(other)) return ASComparison::OuterJoin(std::move(text), Domain(), other.Domain());
  return ASComparison(std::move(text), Domain(), other.Domain());
}
// Pinned: "!=" between columns, "<>" everywhere else; held by AttributePredicates.ColumnsAreUnequalByAnExclamationMark.
ASComparison ASAttribute::operator!=(ASAttribute const& other) const {
  return ASComparison(sql::ColumnsText(*this, "!=", other), Domain(), other.Domain());
}
ASComparison ASAttribute::operator>(ASAttribute const& other) const {
  return CompareColumns(*this, Relation::kGreater, other);
}
ASComparison ASAttribute::operator<(ASAttribute const& other) const {
  return CompareColumns(*this, Relation::kLess, other);
}
ASComparison ASAttribute::operator>=(ASAttribute const& other) const {
  return CompareColumns(*this, Relation::kGreaterEqual, other);
}
ASComparison ASAttribute::operator<=(ASAttribute const& other) const {
  return CompareColumns(*this, Relation::kLessEqual, other);
}

ASComparison ASAttribute::operator==(basic_type const& value) const {
  Str text = sql::ComparisonText(*this, Relation::kEqual, value);
  return IsOptional(*this) ? ASComparison::OuterJoin(std::move(text), nullptr, Domain())
                           : Condition(std::move(text), *this);
}
ASComparison ASAttribute::operator!=(basic_type const& value) const {
  return CompareWith(*this, Relation::kNotEqual, value);
}
ASComparison ASAttribute::operator>(basic_type const& value) const {
  return CompareWith(*this, Relation::kGreater, value);
}
ASComparison ASAttribute::operator<(basic_type const& value) const {
  return CompareWith(*this, Relation::kLess, value);
}
ASComparison ASAttribute::operator>=(basic_type const& value) const {
  return CompareWith(*this, Relation::kGreaterEqual, value);
}
ASComparison ASAttribute::operator<=(basic_type const& value) const {
  return CompareWith(*this, Relation::kLessEqual, value);
}

ASComparison ASAttribute::Compare(Relation relation, Number const& number) const {
  return CompareWith(*this, relation, number);
}

ASComparison ASAttribute::operator==(int number) const { return Compare(Relation::kEqual, number); }
ASComparison ASAttribute::operator!=(int number) const { return Compare(Relation::kNotEqual, number); }
ASComparison ASAttribute::operator>(int number) const { return Compare(Relation::kGreater, number); }
ASComparison ASAttribute::operator<(int number) const { return Compare(Relation::kLess, number); }
ASComparison ASAttribute::operator>=(int number) const { return Compare(Relation::kGreaterEqual, number); }
ASComparison ASAttribute::operator<=(int number) const { return Compare(Relation::kLessEqual, number); }

ASComparison ASAttribute::operator==(double number) const { return Compare(Relation::kEqual, number); }
ASComparison ASAttribute::operator!=(double number) const { return Compare(Relation::kNotEqual, number); }
ASComparison ASAttribute::operator>(double number) const { return Compare(Relation::kGreater, number); }
ASComparison ASAttribute::operator<(double number) const { return Compare(Relation::kLess, number); }
ASComparison ASAttribute::operator>=(double number) const { return Compare(Relation::kGreaterEqual, number); }
ASComparison ASAttribute::operator<=(double number) const { return Compare(Relation::kLessEqual, number); }

ASComparison ASAttribute::operator==(char const* text) const { return CompareWith(*this, Relation::kEqual, text); }
ASComparison ASAttribute::operator!=(char const* text) const { return CompareWith(*this, Relation::kNotEqual, text); }
ASComparison ASAttribute::operator>(char const* text) const { return CompareWith(*this, Relation::kGreater, text); }
ASComparison ASAttribute::operator<(char const* text) const { return CompareWith(*this, Relation::kLess, text); }
ASComparison ASAttribute::operator>=(char const* text) const {
  return CompareWith(*this, Relation::kGreaterEqual, text);
}
ASComparison ASAttribute::operator<=(char const* text) const { return CompareWith(*this, Relation::kLessEqual, text); }

ASComparison ASAttribute::operator==(std::string_view text) const { return CompareWith(*this, Relation::kEqual, text); }
ASComparison ASAttribute::operator!=(std::string_view text) const {
  return CompareWith(*this, Relation::kNotEqual, text);
}
ASComparison ASAttribute::operator>(std::string_view text) const {
  return CompareWith(*this, Relation::kGreater, text);
}
ASComparison ASAttribute::operator<(std::string_view text) const { return CompareWith(*this, Relation::kLess, text); }
ASComparison ASAttribute::operator>=(std::string_view text) const {
  return CompareWith(*this, Relation::kGreaterEqual, text);
}
ASComparison ASAttribute::operator<=(std::string_view text) const {
  return CompareWith(*this, Relation::kLessEqual, text);
}

ASComparison ASAttribute::Like(char const* pattern, char escape) const { return Like(sql::View(pattern), escape); }
ASComparison ASAttribute::Like(std::string_view pattern, char escape) const {
  return Condition(sql::LikeText(*this, sql::kLike, pattern, escape), *this);
}
ASComparison ASAttribute::NotLike(char const* pattern, char escape) const {
  return NotLike(sql::View(pattern), escape);
}
ASComparison ASAttribute::NotLike(std::string_view pattern, char escape) const {
  return Condition(sql::LikeText(*this, " NOT LIKE ", pattern, escape), *this);
}
ASComparison ASAttribute::Like(ASAttribute const& prefix, char escape) const {
  Str text = sql::ColumnsText(*this, " LIKE CONCAT(", prefix, ", '%') ");
  if (escape != 0) text << "ESCAPE '" << escape << "' ";
  return Condition(std::move(text), *this);
}

ASComparison ASAttribute::IsNull() const { return Condition(Query() + sql::kIsNull, *this); }
ASComparison ASAttribute::IsNotNull() const { return Condition(Query() + sql::kIsNotNull, *this); }

ASComparison ASAttribute::In(ASAttribute const& other) const {
  return Condition(sql::ColumnsText(*this, sql::kIn, other, ")"), *this);
}
ASComparison ASAttribute::NotIn(ASAttribute const& other) const {
  return Condition(sql::ColumnsText(*this, sql::kNotIn, other, ")"), *this);
}

ASComparison ASAttribute::Between(basic_type const& low, basic_type const& high) const {
  return BetweenBounds(*this, low, high);
}
ASComparison ASAttribute::Between(char const* low, char const* high) const {
  return BetweenBounds(*this, sql::View(low), sql::View(high));
}
ASComparison ASAttribute::Between(std::string_view low, std::string_view high) const {
  return BetweenBounds(*this, low, high);
}
ASComparison ASAttribute::Between(double const& low, double const& high) const { return BetweenNumbers(low, high); }
ASComparison ASAttribute::Between(int low, int high) const { return BetweenNumbers(low, high); }
ASComparison ASAttribute::BetweenNumbers(Number const& low, Number const& high) const {
  return BetweenBounds(*this, low, high);
}
ASComparison ASAttribute::BetweenMixed(basic_type const& low, Number const& high) const {
  return BetweenBounds(*this, low, high);
}
ASComparison ASAttribute::BetweenMixed(Number const& low, basic_type const& high) const {
  return BetweenBounds(*this, low, high);
}
ASComparison ASAttribute::Between(ASAttribute const& low, ASAttribute const& high) const {
  return BetweenBounds(*this, low, high);
}

// Pinned: the points are not escaped; held by AttributePredicates.IntersectGeoInsertsThePointsAsTheyStand.
ASComparison ASAttribute::IntersectGeo(Str const& points) const {
  Str text(" Intersects(");
  text << Query() << ",GeomFromText('POLYGON((" << points << "))'))";
  return Condition(std::move(text), *this);
}

ASAttribute ASAttribute::Abs() const { return Function(" ABS(", *this); }
ASAttribute ASAttribute::Upper() const { return Function(" UPPER(", *this); }
ASAttribute ASAttribute::Lower() const { return Function(" LOWER(", *this); }

ASAttribute ASAttribute::InStr(char const* text) const { return InStr(sql::View(text)); }
ASAttribute ASAttribute::InStr(std::string_view text) const {
  Str name(" INSTR(");
  name << Query() << sql::kSeparator;
  sql::AppendQuoted(name, text);
  name << ')';
  return ASAttribute(name);
}
ASAttribute ASAttribute::InStr(ASAttribute const& other) const {
  Str name(" INSTR(");
  name << Query() << ", RTRIM(" << other.Query() << "))";
  return ASAttribute(name);
}

ASAttribute ASAttribute::operator++() const {
  ASAttribute optional(*this);
  optional.SetKey(corvane::kOptionalSide);
  return optional;
}
