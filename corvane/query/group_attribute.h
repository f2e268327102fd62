#ifndef CORVANE_QUERY_GROUP_ATTRIBUTE_H
#define CORVANE_QUERY_GROUP_ATTRIBUTE_H

#include <string_view>

#include "corvane/data/value/number.h"
#include "corvane/data/value/str.h"
#include "corvane/mapping/attribute.h"

class ASGroupComparison;
class ASOrder;
class numeric;

/// An aggregate as a column of a projection, made by ASAttribute::Sum() and its like, or a free-form column, made by
/// ASAttribute::Expression(). Streamed into an ASProject it does not count as plain: it is not grouped by. Its
/// predicates make conditions of a HAVING clause. In the texts given below g stands for the aggregate.
///
/// The order of the virtual functions and of the members is binary contract. Nothing here throws but memory exhaustion
/// (std::bad_alloc).
class CORVANE_API ASGroupAttribute : public ASSimpleAttribute {
 public:
  /// `text` is the whole text of the column, NOT ESCAPED. Record and value are not owned; either may be null.
  ASGroupAttribute(Str const& text, ASDomain* domain, ASData* data);
  /// Copies the text and the pointers to record and value.
  /// @{
  ASGroupAttribute(ASGroupAttribute const&) = default;
  ASGroupAttribute& operator=(ASGroupAttribute const&) = default;
  /// @}

  ~ASGroupAttribute() override;

  /// Has the column read into another value, and names another record. Neither is owned; either may be null.
  ASGroupAttribute& Register(ASData* data, ASDomain* domain);

  /// The text of the aggregate: "SUM(T140721.amount)".
  Str Query() const override;

  /// Comparisons with another column or aggregate: "g=b", "g<>b", "g>b", "g<b", "g>=b", "g<=b"; they name both records.
  /// @{
  ASGroupComparison operator==(ASSimpleAttribute const& other) const;
  ASGroupComparison operator!=(ASSimpleAttribute const& other) const;
  ASGroupComparison operator>(ASSimpleAttribute const& other) const;
  ASGroupComparison operator<(ASSimpleAttribute const& other) const;
  ASGroupComparison operator>=(ASSimpleAttribute const& other) const;
  ASGroupComparison operator<=(ASSimpleAttribute const& other) const;
  /// @}

  /// "g=h", "g<>h" of two aggregates; exact matches, which the language prefers to the forms above and their mirror
  /// images.
  /// @{
  ASGroupComparison operator==(ASGroupAttribute const& other) const;
  ASGroupComparison operator!=(ASGroupAttribute const& other) const;
  /// @}

  /// Comparisons with a number: "g=5", "g<>5", "g>2.5"; a character is one, too. Servers refuse a double that is not
  /// finite (error 1054).
  /// @{
  ASGroupComparison operator==(int number) const;
  ASGroupComparison operator!=(int number) const;
  ASGroupComparison operator>(int number) const;
  ASGroupComparison operator<(int number) const;
  ASGroupComparison operator>=(int number) const;
  ASGroupComparison operator<=(int number) const;
  ASGroupComparison operator==(double number) const;
  ASGroupComparison operator!=(double number) const;
  ASGroupComparison operator>(double number) const;
  ASGroupComparison operator<(double number) const;
  ASGroupComparison operator>=(double number) const;
  ASGroupComparison operator<=(double number) const;
  template <class T>
  corvane::IfOtherNumber<T, ASGroupComparison> operator==(T number) const {
    return Compare(corvane::Relation::kEqual, number);
  }
  template <class T>
  corvane::IfOtherNumber<T, ASGroupComparison> operator!=(T number) const {
    return Compare(corvane::Relation::kNotEqual, number);
  }
  template <class T>
  corvane::IfOtherNumber<T, ASGroupComparison> operator>(T number) const {
    return Compare(corvane::Relation::kGreater, number);
  }
  template <class T>
  corvane::IfOtherNumber<T, ASGroupComparison> operator<(T number) const {
    return Compare(corvane::Relation::kLess, number);
  }
  template <class T>
  corvane::IfOtherNumber<T, ASGroupComparison> operator>=(T number) const {
    return Compare(corvane::Relation::kGreaterEqual, number);
  }
  template <class T>
  corvane::IfOtherNumber<T, ASGroupComparison> operator<=(T number) const {
    return Compare(corvane::Relation::kLessEqual, number);
  }
  /// @}

  /// Comparisons with a number value: "g=5", "g<>5", "g>5". With a NULL one: "g IS NULL " and "g IS NOT NULL ", and for
  /// the other four " 0 = 1 ".
  /// @{
  ASGroupComparison operator==(numeric const& value) const;
  ASGroupComparison operator!=(numeric const& value) const;
  ASGroupComparison operator>(numeric const& value) const;
  ASGroupComparison operator<(numeric const& value) const;
  ASGroupComparison operator>=(numeric const& value) const;
  ASGroupComparison operator<=(numeric const& value) const;
  /// @}

  /// "g=text" and "g<>text", the text inserted as it stands: NOT QUOTED AND NOT ESCAPED. So is that of a Str and of a
  /// text column. The caller quotes it, `*max == corvane::Literal(name)`; never with untrusted text. A null pointer
  /// counts as "".
  /// @{
  ASGroupComparison operator==(char const* text) const;
  ASGroupComparison operator!=(char const* text) const;
  ASGroupComparison operator==(std::string_view text) const;
  ASGroupComparison operator!=(std::string_view text) const;
  /// @}

  /// "g LIKE 'x%'", the pattern escaped; with an escape character " ESCAPE '!'" behind it, which alone is NOT ESCAPED.
  /// A null pattern counts as "".
  /// @{
  ASGroupComparison Like(char const* pattern, char escape = 0) const;
  ASGroupComparison Like(std::string_view pattern, char escape = 0) const;
  /// @}

  /// A condition (not a column, as ASAttribute::InStr() gives) " INSTR (g, x)", the text escaped but NOT QUOTED. Quotes
  /// in it are escaped too, so it can only be a number or a column's name. But what needs no quotes breaks out, as if
  /// it were NOT ESCAPED: never with untrusted text. A null pointer counts as "".
  /// @{
  ASGroupComparison InStr(char const* text) const;
  ASGroupComparison InStr(std::string_view text) const;
  /// @}

  /// "g IS NULL", "g IS NOT NULL".
  /// @{
  ASGroupComparison IsNull() const;
  ASGroupComparison IsNotNull() const;
  /// @}

  /// "g IN (b)", "g NOT IN (b)"; mostly with ASFilter::Select(). Name the aggregate's record alone.
  /// @{
  ASGroupComparison In(ASSimpleAttribute const& other) const;
  ASGroupComparison NotIn(ASSimpleAttribute const& other) const;
  /// @}

  /// "g DESC", the start of an order.
  ASOrder operator-() const;

 private:
  ASGroupComparison Compare(corvane::Relation relation, corvane::Number const& number) const;

  Str text_;
};

#endif
