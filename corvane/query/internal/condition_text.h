#ifndef CORVANE_QUERY_INTERNAL_CONDITION_TEXT_H
#define CORVANE_QUERY_INTERNAL_CONDITION_TEXT_H

#include <string_view>

#include "corvane/data/value/number.h"
#include "corvane/data/value/relation.h"
#include "corvane/data/value/str.h"

class ASSimpleAttribute;

// The texts that conditions on columns and on aggregates have in common.
namespace corvane::internal::sql {

/// "a=5", "a>='x'": a column, an operator and an operand, texts and values as literals. A NULL value and a null pointer
/// give "a IS NULL ", "a IS NOT NULL " and, for the other relations, " 0 = 1 ".
Str ComparisonText(ASSimpleAttribute const& column, Relation relation, Number const& operand);
Str ComparisonText(ASSimpleAttribute const& column, Relation relation, basic_type const& operand);
Str ComparisonText(ASSimpleAttribute const& column, Relation relation, std::string_view operand);
Str ComparisonText(ASSimpleAttribute const& column, Relation relation, char const* operand);

/// "a IN (b)": a column, a word, another column and what closes the word.
Str ColumnsText(ASSimpleAttribute const& column, char const* word, ASSimpleAttribute const& other,
                char const* end = "");
/// "a>b".
Str ColumnsText(ASSimpleAttribute const& column, Relation relation, ASSimpleAttribute const& other);

/// "a LIKE 'x%'", with an escape character that is not 0 " ESCAPE '!'" behind it.
Str LikeText(ASSimpleAttribute const& column, char const* word, std::string_view pattern, char escape);

/// `text` becomes "(text) AND (other)", with the word given: kAnd or kOr; one of both when the other is empty.
/// They may be the same object.
void Combine(Str& text, char const* word, Str const& other);

/// Appends "'", the escaped text and "'".
void AppendQuoted(Str& out, std::string_view text);

/// The text, empty for a null pointer.
std::string_view View(char const* text);

}  // namespace corvane::internal::sql

#endif
