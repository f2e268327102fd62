#include "corvane/query/internal/condition_text.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "corvane/data/literal.h"
#include "corvane/internal/sql_text.h"
#include "corvane/mapping/attribute.h"

namespace corvane::internal::sql {

namespace {

// The only place where the kinds of operands differ.
void AppendOperand(Str& out, Number const& number) { number.AppendTo(out); }
void AppendOperand(Str& out, std::string_view text) { AppendQuoted(out, text); }
void AppendOperand(Str& out, basic_type const& value) { AppendLiteral(out, value); }

template <class Operand>
Str Compared(ASSimpleAttribute const& column, Relation relation, Operand const& operand) {
  Str text = column.Query();
  text << Word(relation);
  AppendOperand(text, operand);
  return text;
}

// Pinned: `==` and `!=` carry a blank behind, IsNull() does not; held by AttributePredicates.EqualNullCarriesABlank.
Str ComparedWithNull(ASSimpleAttribute const& column, Relation relation) {
  if (relation != Relation::kEqual && relation != Relation::kNotEqual) return " 0 = 1 ";
  Str text = column.Query();
  text << (relation == Relation::kEqual ? kIsNull : kIsNotNull) << ' ';
  return text;
}

}  // namespace

Str ComparisonText(ASSimpleAttribute const& column, Relation relation, Number const& operand) {
  return Compared(column, relation, operand);
}

Str ComparisonText(ASSimpleAttribute const& column, Relation relation, basic_type const& operand) {
  return operand.IsNull() != 0 ? ComparedWithNull(column, relation) : Compared(column, relation, operand);
}

Str ComparisonText(ASSimpleAttribute const& column, Relation relation, std::string_view operand) {
  return Compared(column, relation, operand);
}

Str ComparisonText(ASSimpleAttribute const& column, Relation relation, char const* operand) {
  return operand == nullptr ? ComparedWithNull(column, relation) : Compared(column, relation, View(operand));
}

Str ColumnsText(ASSimpleAttribute const& column, char const* word, ASSimpleAttribute const& other, char const* end) {
  Str text = column.Query();
  other.AppendTo(text, word);
  text << end;
  return text;
}

Str ColumnsText(ASSimpleAttribute const& column, Relation relation, ASSimpleAttribute const& other) {
  return ColumnsText(column, Word(relation), other);
}

Str LikeText(ASSimpleAttribute const& column, char const* word, std::string_view pattern, char escape) {
  Str text = column.Query();
  text << word;
  AppendQuoted(text, pattern);
  if (escape != 0) text << " ESCAPE '" << escape << '\'';
  return text;
}

void Combine(Str& text, char const* word, Str const& other) {
  if (other.length() == 0) return;
  if (text.length() == 0) {
    text = other;
    return;
  }
  if (&text == &other) return Combine(text, word, Str(other));
  std::size_t const length = text.View().size();
  std::size_t const wordLength = std::strlen(word);
  std::size_t const otherLength = other.View().size();
  text.AppendWith(sizeof "()()" + wordLength + otherLength, [&](char* end) {
    std::memmove(end - length + 1, end - length, length);
    end[-static_cast<std::ptrdiff_t>(length)] = '(';
    char* at = end + 1;
    *at++ = ')';
    at = std::copy_n(word, wordLength, at);
    *at++ = '(';
    at = std::copy_n(other.str(), otherLength, at);
    *at++ = ')';
    return static_cast<std::size_t>(at - end);
  });
}

void AppendQuoted(Str& out, std::string_view text) {
  out << '\'';
  AppendEscaped(out, text.data(), text.size());
  out << '\'';
}

std::string_view View(char const* text) { return text != nullptr ? std::string_view(text) : std::string_view(); }

}  // namespace corvane::internal::sql
