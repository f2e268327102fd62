#include "corvane/cursor/deleter.h"

#include "corvane/cursor/internal/bulk.h"
#include "corvane/mapping/domain.h"

ASDeleter::ASDeleter(ASDomain const& record) : table_(record.SimpleQuery()), alias_(record.Alias()) {}

// Not through ASFilter's copy: a class that derives from this one and copies it would construct an empty filter, its
// virtual base, and lose the condition.
// NOLINTNEXTLINE(bugprone-copy-constructor-init)
ASDeleter::ASDeleter(ASDeleter const& other) : ASFilter(), table_(other.table_), alias_(other.alias_) {
  CopyWhole(other);
}

ASDeleter& ASDeleter::operator=(ASDeleter const& other) {
  CopyWhole(other);
  table_ = other.table_;
  alias_ = other.alias_;
  return *this;
}

ASDeleter::~ASDeleter() = default;

Str ASDeleter::Query() const {
  Str const tables = Project().JoinForDeleteQuery();
  Str text;
  text << "DELETE FROM " << alias_ << " USING ";
  if (tables.length() > 0) {
    text << tables << Condition();
  } else {
    // Pinned: without the condition, so EVERY ROW goes; held by Deleter.AConditionThatNamesNoRecordIsDropped.
    text << table_ << ' ' << alias_;
  }
  return text;
}

unsigned long ASDeleter::Execute(ASSession* session) const {
  return corvane::internal::ExecuteBulk(session, this, *this, Condition(), "There is no session for deleter. ");
}
