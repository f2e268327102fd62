#include "corvane/ordbms/old_filter.h"

#include <cstdint>

#include "corvane/internal/number_text.h"
#include "corvane/internal/sql_text.h"
#include "corvane/ordbms/internal/code_text.h"

namespace sql = corvane::internal::sql;
using corvane::internal::CodeText;

namespace {

constexpr char const* kWhere = " WHERE ";

// What stands before and between the ends of a range.
void AppendStart(Str& out, char const* word, Str const& field) { out << word << field << sql::kBetween; }

void AppendFixed(Str& out, double number) {
  out.AppendWith(corvane::internal::kFixedRoom,
                 [number](char* at) { return corvane::internal::WriteFixed(at, number); });
}

}  // namespace

namespace ORDBMS {

namespace {

void Append(Str& out, char const* word, Str const& field, Str const& value, comparison code) {
  out << word << field << CodeText(comp_string, code) << value;
}

// Pinned: the value's text is not escaped; held by OldFilter.AValueIsQuotedAndNotEscaped.
void Append(Str& out, char const* word, Str const& field, basic_type const* value, comparison code) {
  out << word;
  if (value != nullptr && value->IsNull() == 0) {
    out << field << CodeText(comp_string, code) << '\'' << value->getstr() << '\'';
  } else if (code == EQUAL) {
    out << field << sql::kIsNull << ' ';
  } else if (code == NOT_EQUAL) {
    out << field << sql::kIsNotNull << ' ';
  } else {
    out << "0 = 1 ";
  }
}

void Append(Str& out, char const* word, Str const& field, null_comparison code) {
  out << word << field << CodeText(null_comp_string, code);
}

}  // namespace

old_filter::old_filter() = default;

// Not through ASFilter's copy: a class that derives from this one and copies it would construct an empty filter, its
// virtual base, and lose the condition.
// NOLINTNEXTLINE(bugprone-copy-constructor-init)
old_filter::old_filter(old_filter const& other) : ASFilter(), join_(other.join_) { CopyWhole(other); }

old_filter::~old_filter() = default;

old_filter& old_filter::operator=(old_filter const& other) {
  ASFilter::operator=(other);
  join_ = other.join_;
  return *this;
}

template <class... Parts>
old_filter& old_filter::Add(char const* word, Parts const&... parts) {
  Append(ConditionForUpdate(), word, parts...);
  return *this;
}

old_filter& old_filter::Set(Str const& field, Str const& value, comparison code) {
  return Add(kWhere, field, value, code);
}
old_filter& old_filter::And(Str const& field, Str const& value, comparison code) {
  return Add(sql::kAnd, field, value, code);
}
old_filter& old_filter::Or(Str const& field, Str const& value, comparison code) {
  return Add(sql::kOr, field, value, code);
}

old_filter& old_filter::Set(Str const& field, basic_type const* value, comparison code) {
  return Add(kWhere, field, value, code);
}
old_filter& old_filter::And(Str const& field, basic_type const* value, comparison code) {
  return Add(sql::kAnd, field, value, code);
}
old_filter& old_filter::Or(Str const& field, basic_type const* value, comparison code) {
  return Add(sql::kOr, field, value, code);
}

old_filter& old_filter::Set(Str const& field, null_comparison code) { return Add(kWhere, field, code); }
old_filter& old_filter::And(Str const& field, null_comparison code) { return Add(sql::kAnd, field, code); }
old_filter& old_filter::Or(Str const& field, null_comparison code) { return Add(sql::kOr, field, code); }

old_filter& old_filter::Set(Str const& field, int low, int high) { return AddIntegers(kWhere, field, low, high); }
old_filter& old_filter::And(Str const& field, int low, int high) { return AddIntegers(sql::kAnd, field, low, high); }
old_filter& old_filter::Or(Str const& field, int low, int high) { return AddIntegers(sql::kOr, field, low, high); }

old_filter& old_filter::Set(Str const& field, double low, double high) { return AddDoubles(kWhere, field, low, high); }
old_filter& old_filter::And(Str const& field, double low, double high) {
  return AddDoubles(sql::kAnd, field, low, high);
}
old_filter& old_filter::Or(Str const& field, double low, double high) { return AddDoubles(sql::kOr, field, low, high); }

old_filter& old_filter::AddIntegers(char const* word, Str const& field, corvane::Number const& low,
                                    corvane::Number const& high) {
  Str& text = ConditionForUpdate();
  AppendStart(text, word, field);
  low.AppendTo(text);
  text << sql::kAnd;
  high.AppendTo(text);
  return *this;
}

old_filter& old_filter::AddDoubles(char const* word, Str const& field, double low, double high) {
  Str& text = ConditionForUpdate();
  AppendStart(text, word, field);
  AppendFixed(text, low);
  text << sql::kAnd;
  AppendFixed(text, high);
  return *this;
}

old_filter& old_filter::Project(Str const& column) {
  Str& list = ASFilter::Project().ProjectQueryForUpdate();
  if (list.length() > 0) list << sql::kSeparator;
  list << column;
  return *this;
}

old_filter& old_filter::Distinct(int on) {
  if (on != 0) ASFilter::Project().Distinct();
  return *this;
}

int old_filter::Join(Str const& table) { return JoinAs(table, table.voidptr()); }
int old_filter::Join(char const* table) { return JoinAs(table, table); }

int old_filter::JoinAs(Str const& table, void const* address) {
  unsigned long const number = reinterpret_cast<std::uintptr_t>(address);
  if (join_.length() > 0) join_ << sql::kSeparator;
  join_ << table << " P" << number;
  return static_cast<int>(number);
}

Str old_filter::Query() const {
  Str const& columns = ASFilter::Project().ProjectQuery();
  Str text("SELECT ");
  if (columns.length() > 0) {
    text << columns;
  } else {
    text << '*';
  }
  text << " FROM " << join_ << Condition();
  return text;
}

}  // namespace ORDBMS
