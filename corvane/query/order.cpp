#include "corvane/query/order.h"

#include <utility>

#include "corvane/internal/sql_text.h"
#include "corvane/mapping/attribute.h"
#include "corvane/query/group_attribute.h"

using corvane::internal::sql::kAscending;
using corvane::internal::sql::kDescending;
using corvane::internal::sql::kSeparator;

namespace {

// Room for a few columns with alias, name and direction; more is made when it does not suffice.
constexpr std::size_t kOrderRoom = 119;

// The order's text with the separator, the column and its direction behind it.
Str Directed(Str order, char const* separator, ASSimpleAttribute const& column, char const* direction) {
  order.Reserve(kOrderRoom);
  column.AppendTo(order, separator);
  order << direction;
  return order;
}

}  // namespace

ASOrder& ASOrder::operator<<(Str const& text) {
  if (text_.length() > 0) text_ << kSeparator;
  text_ << text;
  return *this;
}

ASOrder ASAttribute::operator-() const { return ASOrder(Directed(Str(), "", *this, kDescending)); }
ASOrder ASGroupAttribute::operator-() const { return ASOrder(Directed(Str(), "", *this, kDescending)); }

// Pinned: the separator stands behind an empty list, too; held by Order.ContinuingAnEmptyOrderWritesTheCommaAllTheSame.
ASOrder operator-(ASOrder&& order, ASAttribute const& attribute) {
  return ASOrder(Directed(std::move(order.text_), kSeparator, attribute, kDescending));
}
ASOrder operator+(ASOrder&& order, ASAttribute const& attribute) {
  return ASOrder(Directed(std::move(order.text_), kSeparator, attribute, kAscending));
}
ASOrder operator-(ASOrder const& order, ASAttribute const& attribute) { return ASOrder(order) - attribute; }
ASOrder operator+(ASOrder const& order, ASAttribute const& attribute) { return ASOrder(order) + attribute; }
ASOrder& operator-(ASOrder& order, ASGroupAttribute const& aggregate) {
  return order << Directed(Str(), "", aggregate, kDescending);
}
ASOrder& operator+(ASOrder& order, ASGroupAttribute const& aggregate) {
  return order << Directed(Str(), "", aggregate, kAscending);
}
