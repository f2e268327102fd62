#include "corvane/cursor/updater.h"

#include "corvane/cursor/internal/bulk.h"
#include "corvane/data/value/exception.h"
#include "corvane/internal/sql_text.h"
#include "corvane/query/setter.h"

ASUpdater::ASUpdater(ASSetter const& assignment) : assignments_(assignment.Query()), table_(assignment.UpdateQuery()) {}

// Not through ASFilter's copy: a class that derives from this one and copies it would construct an empty filter, its
// virtual base, and lose the condition.
// NOLINTNEXTLINE(bugprone-copy-constructor-init)
ASUpdater::ASUpdater(ASUpdater const& other) : ASFilter(), assignments_(other.assignments_), table_(other.table_) {
  CopyWhole(other);
}

ASUpdater& ASUpdater::operator=(ASUpdater const& other) {
  CopyWhole(other);
  assignments_ = other.assignments_;
  table_ = other.table_;
  return *this;
}

ASUpdater::~ASUpdater() = default;

ASUpdater& ASUpdater::operator<<(ASSetter const& assignment) {
  Str const table = assignment.UpdateQuery();
  Str const text = assignment.Query();
  // Pinned: appended before the table is looked at; held by Updater.AnAssignmentThatIsRefusedIsInTheListAllTheSame.
  if (assignments_.IsNull() == 0) assignments_ << corvane::internal::sql::kSeparator;
  assignments_ << text;
  if (table_.IsNull() != 0) {
    table_ = table;
  } else if (table_ != table) {
    throw AException("Only single table may be updated in single UPDATE SQL query. ");
  }
  return *this;
}

Str ASUpdater::Query() const {
  Str text;
  text << "UPDATE " << Project().JoinForDeleteQuery() << " SET " << assignments_ << Condition();
  return text;
}

unsigned long ASUpdater::Execute(ASSession* session) const {
  return corvane::internal::ExecuteBulk(session, this, *this, Condition(), "There is no session for updater. ");
}
