#include "corvane/cache/cache.h"

#include "corvane/session/ardbms.h"

namespace {

class ReadOnlySection {
 public:
  explicit ReadOnlySection(ASSession& session) : session_(session) { session_.PushReadOnly(); }
  ReadOnlySection(ReadOnlySection const&) = delete;
  ReadOnlySection& operator=(ReadOnlySection const&) = delete;
  ~ReadOnlySection() { session_.PopReadOnly(); }

 private:
  ASSession& session_;
};

}  // namespace

ASCache::ASCache() = default;

ASCache::ASCache(ASSession* session, int n)
    : ASSimpleCache(session, n), ASInsertableCache(session, n), ASUpdatableCache(session, n) {}

ASCache::~ASCache() = default;

void ASCache::Get(int index) {
  if (readOnlyGet_ == 0 || Session().IsReadOnly() != 0) return ASSimpleCache::Get(index);
  ReadOnlySection const section(Session());
  ASSimpleCache::Get(index);
}

void ASCache::Get(ASDomain&) { Get(-1); }

void ASCache::Clear() {
  readOnlyGet_ = 0;
  ASSimpleCache::Clear();
}
