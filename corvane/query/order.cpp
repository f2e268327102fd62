#include "corvane/query/order.h"

#include "corvane/internal/sql_text.h"
#include "corvane/mapping/attribute.h"
#include "corvane/query/group_attribute.h"

using corvane::internal::sql::kAscending;
using corvane::internal::sql::kDescending;
using corvane::internal::sql::kSeparator;

namespace {

// Room for an alias, a name and a direction; more is made when it does not suffice.
constexpr std::size_t kOrderRoom = 79;

// `before`, the separator, the column and its direction.
Str Directed(std::string_view before, char const* separator, ASSimpleAttribute const& column, char const* direction) {
  Str text;
  text.Reserve(before.size() + kOrderRoom);
  text.Append(before.data(), before.size());
  column.AppendTo(text, separator);
  text << direction;
  return text;
}

}  // namespace

ASOrder& ASOrder::operator<<(Str const& text) {
  if (text_.length() > 0) text_ << kSeparator;
  text_ << text;
  return *this;
}

ASOrder ASAttribute::operator-() const { return ASOrder(Directed("", "", *this, kDescending)); }
ASOrder ASGroupAttribute::operator-() const { return ASOrder(Directed("", "", *this, kDescending)); }

// Pinned: the separator stands behind an empty list, too; held by Order.ContinuingAnEmptyOrderWritesTheCommaAllTheSame.
ASOrder operator-(ASOrder const& order, ASAttribute const& attribute) {
  return ASOrder(Directed(order.text_.View(), kSeparator, attribute, kDescending));
}
ASOrder operator+(ASOrder const& order, ASAttribute const& attribute) {
  return ASOrder(Directed(order.text_.View(), kSeparator, attribute, kAscending));
}
ASOrder& operator-(ASOrder& order, ASGroupAttribute const& aggregate) {
  return order << Directed("", "", aggregate, kDescending);
}
ASOrder& operator+(ASOrder& order, ASGroupAttribute const& aggregate) {
  return order << Directed("", "", aggregate, kAscending);
}
