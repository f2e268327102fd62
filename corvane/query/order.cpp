#include "corvane/query/order.h"

#include "corvane/internal/sql_text.h"
#include "corvane/mapping/attribute.h"
#include "corvane/query/group_attribute.h"

using corvane::internal::sql::kAscending;
using corvane::internal::sql::kDescending;
using corvane::internal::sql::kSeparator;

namespace {

// `start`, the column and its direction.
Str Directed(Str start, ASSimpleAttribute const& column, char const* direction) {
  start << column.Query() << direction;
  return start;
}

// Pinned: the separator stands behind an empty list, too; held by Order.ContinuingAnEmptyOrderWritesTheCommaAllTheSame.
ASOrder Continued(ASOrder const& order, ASAttribute const& attribute, char const* direction) {
  return ASOrder(Directed(order.Query() + kSeparator, attribute, direction));
}

}  // namespace

ASOrder& ASOrder::operator<<(Str const& text) {
  if (text_.length() > 0) text_ << kSeparator;
  text_ << text;
  return *this;
}

ASOrder ASAttribute::operator-() const { return ASOrder(Directed("", *this, kDescending)); }
ASOrder ASGroupAttribute::operator-() const { return ASOrder(Directed("", *this, kDescending)); }

ASOrder operator-(ASOrder const& order, ASAttribute const& attribute) {
  return Continued(order, attribute, kDescending);
}
ASOrder operator+(ASOrder const& order, ASAttribute const& attribute) {
  return Continued(order, attribute, kAscending);
}
ASOrder& operator-(ASOrder& order, ASGroupAttribute const& aggregate) {
  return order << Directed("", aggregate, kDescending);
}
ASOrder& operator+(ASOrder& order, ASGroupAttribute const& aggregate) {
  return order << Directed("", aggregate, kAscending);
}
