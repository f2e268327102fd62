#include "corvane/query/group_attribute.h"

#include <utility>

#include "corvane/data/literal.h"
#include "corvane/data/value/numeric.h"
#include "corvane/internal/sql_text.h"
#include "corvane/query/group_comparison.h"
#include "corvane/query/internal/condition_text.h"

namespace sql = corvane::internal::sql;
using corvane::Number;
using corvane::Relation;

namespace {

ASGroupComparison Condition(Str text, ASGroupAttribute const& g) {
  return ASGroupComparison(std::move(text), g.Domain(), nullptr);
}

ASGroupComparison CompareColumns(ASGroupAttribute const& g, Relation relation, ASSimpleAttribute const& b) {
  return ASGroupComparison(sql::ColumnsText(g, relation, b), g.Domain(), b.Domain());
}

ASGroupComparison CompareValue(ASGroupAttribute const& g, Relation relation, numeric const& value) {
  return Condition(sql::ComparisonText(g, relation, static_cast<basic_type const&>(value)), g);
}

// Pinned: neither quoted nor escaped; held by GroupPredicates.TextsAreInsertedAsTheyStand.
ASGroupComparison CompareText(ASGroupAttribute const& g, Relation relation, std::string_view operand) {
  Str text = g.Query();
  text << sql::Word(relation);
  text.Append(operand.data(), operand.size());
  return Condition(std::move(text), g);
}

// The caller owns the aggregate.
ASGroupAttribute* Aggregate(char const* function, ASAttribute const& a) {
  Str text(function);
  text << a.Query() << ')';
  return new ASGroupAttribute(text, a.Domain(), a.Data());
}

}  // namespace

ASGroupAttribute::ASGroupAttribute(Str const& text, ASDomain* domain, ASData* data) : text_(text) {
  SetColumn(domain, data);
}

ASGroupAttribute::~ASGroupAttribute() = default;

ASGroupAttribute& ASGroupAttribute::Register(ASData* data, ASDomain* domain) {
  SetColumn(domain, data);
  return *this;
}

Str ASGroupAttribute::Query() const { return text_; }

ASGroupComparison ASGroupAttribute::operator==(ASSimpleAttribute const& other) const {
  return CompareColumns(*this, Relation::kEqual, other);
}
ASGroupComparison ASGroupAttribute::operator!=(ASSimpleAttribute const& other) const {
  return CompareColumns(*this, Relation::kNotEqual, other);
}
ASGroupComparison ASGroupAttribute::operator>(ASSimpleAttribute const& other) const {
  return CompareColumns(*this, Relation::kGreater, other);
}
ASGroupComparison ASGroupAttribute::operator<(ASSimpleAttribute const& other) const {
  return CompareColumns(*this, Relation::kLess, other);
}
ASGroupComparison ASGroupAttribute::operator>=(ASSimpleAttribute const& other) const {
  return CompareColumns(*this, Relation::kGreaterEqual, other);
}
ASGroupComparison ASGroupAttribute::operator<=(ASSimpleAttribute const& other) const {
  return CompareColumns(*this, Relation::kLessEqual, other);
}
ASGroupComparison ASGroupAttribute::operator==(ASGroupAttribute const& other) const {
  return CompareColumns(*this, Relation::kEqual, other);
}
ASGroupComparison ASGroupAttribute::operator!=(ASGroupAttribute const& other) const {
  return CompareColumns(*this, Relation::kNotEqual, other);
}

ASGroupComparison ASGroupAttribute::Compare(Relation relation, Number const& number) const {
  return Condition(sql::ComparisonText(*this, relation, number), *this);
}

ASGroupComparison ASGroupAttribute::operator==(int number) const { return Compare(Relation::kEqual, number); }
ASGroupComparison ASGroupAttribute::operator!=(int number) const { return Compare(Relation::kNotEqual, number); }
ASGroupComparison ASGroupAttribute::operator>(int number) const { return Compare(Relation::kGreater, number); }
ASGroupComparison ASGroupAttribute::operator<(int number) const { return Compare(Relation::kLess, number); }
ASGroupComparison ASGroupAttribute::operator>=(int number) const { return Compare(Relation::kGreaterEqual, number); }
ASGroupComparison ASGroupAttribute::operator<=(int number) const { return Compare(Relation::kLessEqual, number); }

ASGroupComparison ASGroupAttribute::operator==(double number) const { return Compare(Relation::kEqual, number); }
ASGroupComparison ASGroupAttribute::operator!=(double number) const { return Compare(Relation::kNotEqual, number); }
ASGroupComparison ASGroupAttribute::operator>(double number) const { return Compare(Relation::kGreater, number); }
ASGroupComparison ASGroupAttribute::operator<(double number) const { return Compare(Relation::kLess, number); }
ASGroupComparison ASGroupAttribute::operator>=(double number) const { return Compare(Relation::kGreaterEqual, number); }
ASGroupComparison ASGroupAttribute::operator<=(double number) const { return Compare(Relation::kLessEqual, number); }

ASGroupComparison ASGroupAttribute::operator==(numeric const& value) const {
  return CompareValue(*this, Relation::kEqual, value);
}
ASGroupComparison ASGroupAttribute::operator!=(numeric const& value) const {
  return CompareValue(*this, Relation::kNotEqual, value);
}
ASGroupComparison ASGroupAttribute::operator>(numeric const& value) const {
  return CompareValue(*this, Relation::kGreater, value);
}
ASGroupComparison ASGroupAttribute::operator<(numeric const& value) const {
  return CompareValue(*this, Relation::kLess, value);
}
ASGroupComparison ASGroupAttribute::operator>=(numeric const& value) const {
  return CompareValue(*this, Relation::kGreaterEqual, value);
}
ASGroupComparison ASGroupAttribute::operator<=(numeric const& value) const {
  return CompareValue(*this, Relation::kLessEqual, value);
}

ASGroupComparison ASGroupAttribute::operator==(char const* text) const {
  return CompareText(*this, Relation::kEqual, sql::View(text));
}
ASGroupComparison ASGroupAttribute::operator!=(char const* text) const {
  return CompareText(*this, Relation::kNotEqual, sql::View(text));
}
ASGroupComparison ASGroupAttribute::operator==(std::string_view text) const {
  return CompareText(*this, Relation::kEqual, text);
}
ASGroupComparison ASGroupAttribute::operator!=(std::string_view text) const {
  return CompareText(*this, Relation::kNotEqual, text);
}

ASGroupComparison ASGroupAttribute::Like(char const* pattern, char escape) const {
  return Like(sql::View(pattern), escape);
}
ASGroupComparison ASGroupAttribute::Like(std::string_view pattern, char escape) const {
  return Condition(sql::LikeText(*this, sql::kLike, pattern, escape), *this);
}

ASGroupComparison ASGroupAttribute::InStr(char const* text) const { return InStr(sql::View(text)); }
// Pinned: escaped but not quoted; held by GroupPredicates.InStrEscapesButDoesNotQuote.
ASGroupComparison ASGroupAttribute::InStr(std::string_view text) const {
  Str condition(" INSTR (");
  condition << Query() << sql::kSeparator;
  corvane::AppendEscaped(condition, text.data(), text.size());
  condition << ')';
  return Condition(std::move(condition), *this);
}

ASGroupComparison ASGroupAttribute::IsNull() const { return Condition(Query() + sql::kIsNull, *this); }
ASGroupComparison ASGroupAttribute::IsNotNull() const { return Condition(Query() + sql::kIsNotNull, *this); }

ASGroupComparison ASGroupAttribute::In(ASSimpleAttribute const& other) const {
  return Condition(sql::ColumnsText(*this, sql::kIn, other, ")"), *this);
}
ASGroupComparison ASGroupAttribute::NotIn(ASSimpleAttribute const& other) const {
  return Condition(sql::ColumnsText(*this, sql::kNotIn, other, ")"), *this);
}

ASGroupAttribute* ASAttribute::Sum() const { return Aggregate("SUM(", *this); }
ASGroupAttribute* ASAttribute::Average() const { return Aggregate("AVG(", *this); }
ASGroupAttribute* ASAttribute::Max() const { return Aggregate("MAX(", *this); }
ASGroupAttribute* ASAttribute::Min() const { return Aggregate("MIN(", *this); }
ASGroupAttribute* ASAttribute::Count() const { return Aggregate("COUNT(", *this); }
ASGroupAttribute* ASAttribute::CountDistinct() const { return Aggregate("COUNT( DISTINCT ", *this); }
ASGroupAttribute ASAttribute::Expression(Str const& text) const { return ASGroupAttribute(text, Domain(), Data()); }
