#include "corvane/cache/updatable_cache.h"

#include "corvane/session/ardbms.h"
#include "corvane/session/internal/options.h"

ASUpdatableCache::ASUpdatableCache() = default;

ASUpdatableCache::ASUpdatableCache(ASSession* session, int n) : ASSimpleCache(session, n) { Attach(session, n); }

ASUpdatableCache::~ASUpdatableCache() = default;

void ASUpdatableCache::Put() {
  CheckWritable("Internal Error: Attempt to change data in const transaction. ");
  corvane::internal::CheckKeys(Session(), *this);
  LogCommand("PUT", kAll);
  SaveFirst();
  session_->Execute(session_->UpdateQuery(*this, 0));
  Replace();
}
