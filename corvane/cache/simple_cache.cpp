#include "corvane/cache/simple_cache.h"

#include <iterator>

#include "corvane/cursor/cursor.h"
#include "corvane/data/data.h"
#include "corvane/data/value/exception.h"
#include "corvane/internal/log.h"
#include "corvane/session/ardbms.h"

using corvane::internal::kLogCommands;
using corvane::internal::Pointer;
using corvane::internal::WriteLog;

ASSimpleCache::ASSimpleCache() = default;

ASSimpleCache::ASSimpleCache(ASSession* session, int n) { Attach(session, n); }

ASSimpleCache::~ASSimpleCache() = default;

void ASSimpleCache::Attach(ASSession* session, int n) {
  saveFirst_ = n;
  untouched_ = 1;
  caching_ = 1;
  session_ = session;
}

void ASSimpleCache::Get(int index) {
  LogCommand("GET", kKeys);
  if (index < 0) return Find();
  // Pinned: compared with the number of columns; held by SimpleCache.AnIndexOfTheNumberOfColumnsGivesNull.
  auto const place = static_cast<std::size_t>(index);
  if (place >= size() || place >= store_.size()) return SetNull();
  ASDomain::operator=(*std::next(store_.begin(), index));
}

void ASSimpleCache::Get(ASDomain&) { Get(-1); }

ASSimpleCache& ASSimpleCache::CacheOn() {
  caching_ = 1;
  return *this;
}

void ASSimpleCache::CacheOff() {
  caching_ = 0;
  Clear();
}

int ASSimpleCache::PreFetch() {
  Clear();
  try {
    ASCursor cursor(&Session());
    // The rows come in the order of the primary key as a rule, and so belong at the end.
    while (cursor.Fetch(*this) != 0) store_.insert(store_.end(), *this);
  } catch (...) {
    Clear();
    throw;
  }
  return Size();
}

int ASSimpleCache::Size() { return static_cast<int>(store_.size()); }

void ASSimpleCache::Clear() {
  untouched_ = 1;
  store_.clear();
  saved_.clear();
  SetNull();
}

ASSession& ASSimpleCache::Session() const {
  if (session_ == nullptr) throw AException("There is no session for cache. ");
  return *session_;
}

void ASSimpleCache::CheckWritable(char const* refusal) const {
  if (Session().IsReadOnly() != 0) throw AException(refusal);
}

void ASSimpleCache::LogCommand(char const* command, Columns columns) const {
  if (Session().DebugLevel() <= kLogCommands) return;
  Str text("SESSION ");
  text << Pointer{session_} << " CACHE COMMAND-> " << command << '\n';
  AppendColumns(text, columns, "\n");
  WriteLog(text);
}

// A line for each column, its name and value, and an empty line.
void ASSimpleCache::AppendColumns(Str& out, Columns columns, char const* lineEnd) const {
  for (ASAttribute const* const attribute : *this) {
    if (attribute == nullptr || (columns == kKeys && attribute->IsKey() == 0)) continue;
    out << '\t' << attribute->SimpleQuery() << '\t';
    if (attribute->Data() != nullptr) out << attribute->Data()->getstr();
    out << lineEnd;
  }
  out << '\n';
}

// The record with this one's key.
void ASSimpleCache::Find() {
  auto const stored = store_.find(*this);
  if (stored != store_.end()) {
    ASDomain::operator=(*stored);
    return;
  }
  for (ASAttribute const* const attribute : *this) {
    if (attribute != nullptr && attribute->IsKey() == 0 && attribute->Data() != nullptr) attribute->Data()->SetNull();
  }
  session_->Execute(session_->SelectQuery(*this, 0));
  if (session_->Fetch(*this) == 0) return SetNull();
  if (caching_ != 0) Remember();
  if (session_->DebugLevel() <= kLogCommands) return;
  Str text;
  AppendColumns(text, kAll, ".\n");
  WriteLog(text);
}

// Runs the save statement for a record that has not been saved yet, when the caller asked for that.
void ASSimpleCache::SaveFirst() {
  if (saveFirst_ == 0 || saved_.count(*this) != 0) return;
  Str const statement = session_->SaveQuery(*this, 0);
  try {
    session_->Execute(statement);
  } catch (AException const&) {
    // Pinned: the change goes on without it; held by UpdatableCache.AFailingSaveIsIgnored.
  }
  untouched_ = 0;
  saved_.insert(*this);
}

// Brings the store in line with what was written.
void ASSimpleCache::Replace() {
  Forget();
  if (caching_ != 0) Remember();
}
