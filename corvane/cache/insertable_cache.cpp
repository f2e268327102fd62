#include "corvane/cache/insertable_cache.h"

#include "corvane/session/ardbms.h"
#include "corvane/session/internal/options.h"

ASInsertableCache::ASInsertableCache() = default;

ASInsertableCache::ASInsertableCache(ASSession* session, int n) : ASSimpleCache(session, n) { Attach(session, n); }

ASInsertableCache::~ASInsertableCache() = default;

void ASInsertableCache::Insert() {
  CheckWritable("System error: Data may not be modified. Readonly mode is active. ");
  LogCommand("INSERT", kAll);
  session_->Execute(session_->InsertQuery(*this, 0));
  untouched_ = 0;
  if (caching_ != 0) Replace();
  if (saveFirst_ != 0) saved_.insert(*this);
}

void ASInsertableCache::Delete() {
  CheckWritable("Internal Error: Attempt to change data in const transaction. ");
  corvane::internal::CheckKeys(Session(), *this);
  LogCommand("DELETE", kKeys);
  SaveFirst();
  session_->Execute(session_->DeleteQuery(*this, 0));
  Forget();
  SetNull();
}

void InsertItem(Str const&, ASInsertableCache& cache) { cache.Insert(); }
