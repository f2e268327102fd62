#include "corvane/ordbms/rdbms.h"

#include "corvane/data/data.h"
#include "corvane/data/value/exception.h"
#include "corvane/mapping/attribute.h"
#include "corvane/ordbms/old_cursor.h"

namespace {

constexpr std::size_t kNameLength = 32;

void AppendUnreadable(Str& out, int count) {
  for (; count > 0; --count) out << "\xEF\xBF\xBD";  // U+FFFD in UTF-8
}

// Pinned: a Str is thrown, of these bytes; held by Rdbms.AnUnknownColumnThrowsAText.
[[noreturn]] void ThrowUnknownColumn(Str const& name) {
  Str text;
  AppendUnreadable(text, 4);
  text << ' ' << name << ' ';
  AppendUnreadable(text, 2);
  text << ' ';
  AppendUnreadable(text, 10);
  text << ' ';
  AppendUnreadable(text, 1);
  text << ' ';
  AppendUnreadable(text, 7);
  text << ". ";
  throw text;
}

constexpr char ToUpper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

}  // namespace

namespace ORDBMS {

ASSession* Rdbms::session = nullptr;

void Rdbms::SetSession(ASSession* other) { session = other; }

int Rdbms::OpenCursor(old_cursor& cursor) {
  cursor.Open(session);
  return 1;
}

int Rdbms::CursorBulk(old_cursor& cursor) { return cursor.GetAmount(); }

int Rdbms::Fetch(old_cursor& cursor) { return cursor.Fetch(); }

int Rdbms::CloseCursor(old_cursor&) { return 1; }

void Rdbms::GetField(old_cursor& cursor, ASData& value) { GetField(cursor, value, value.GetName()); }

void Rdbms::GetField(old_cursor& cursor, basic_type& value, Str const& name) {
  Str const wanted = Simplify(name);
  for (ASSimpleAttribute const* const column : cursor.Project().Items()) {
    if (column->Data() == nullptr || Simplify(column->Data()->GetName()) != wanted) continue;
    return value.copy(*column->Data());
  }
  ThrowUnknownColumn(name);
}

Str Rdbms::Simplify(Str const& name) {
  Str simple("");
  for (char const c : name.View().substr(0, kNameLength)) {
    if (c == ' ' || c == '\0') break;
    simple << ToUpper(c);
  }
  return simple;
}

}  // namespace ORDBMS
