#include "corvane/ordbms/old_cursor.h"

#include "corvane/data/value/exception.h"
#include "corvane/internal/sql_text.h"
#include "corvane/ordbms/internal/code_text.h"
#include "corvane/query/order.h"

namespace ORDBMS {

old_cursor::old_cursor(ASSession* session) : ASCursor(session) {}

old_cursor::~old_cursor() = default;

old_cursor& old_cursor::operator<<(old_filter* filter) {
  if (filter == nullptr) throw AException("There is no filter for cursor. ");
  old_filter::operator=(*filter);
  return *this;
}

void old_cursor::orderby(Str const& column, sort_order order) {
  Str ordered(column);
  ordered << corvane::internal::CodeText(order_string, order);
  Order(ASOrder(ordered));
  if (ordering_.length() > 0) ordering_ << corvane::internal::sql::kSeparator;
  ordering_ << ordered;
}

void old_cursor::orderby(int position, sort_order order) {
  Str column;
  column << position;
  orderby(column, order);
}

void old_cursor::Open(ASSession* session) {
  AssignSession(session);
  Query();  // the text is not needed; an application's own rendering may count on being asked
  OpenWithRecord();
}

Str old_cursor::Query() const {
  Str text = SimpleQuery();
  if (ordering_.length() > 0) text << " ORDER BY " << ordering_;
  return text;
}

Str old_cursor::SimpleQuery() const {
  Str text("(");
  text << old_filter::Query() << ')';
  return text;
}

}  // namespace ORDBMS
