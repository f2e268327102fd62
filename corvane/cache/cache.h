#ifndef CORVANE_CACHE_CACHE_H
#define CORVANE_CACHE_CACHE_H

#include "corvane/cache/insertable_cache.h"
#include "corvane/cache/updatable_cache.h"

/// A cache whose records can be changed, inserted and deleted, and read in a read-only section of their own.
class CORVANE_API ASCache : public virtual ASSimpleCache, public ASInsertableCache, public ASUpdatableCache {
 public:
  /// Leaves session and switch to ASSimpleCache: for derived classes that give them to that one.
  ASCache();
  /// Also gives session and switch to an ASSimpleCache that was constructed without: derived classes need not name it.
  ASCache(ASSession* session, int n);
  /// A cache is not copied: its store is its own.
  /// @{
  ASCache(ASCache const&) = delete;
  ASCache& operator=(ASCache const&) = delete;
  /// @}

  ~ASCache() override;

  /// A switch, which reads nothing itself. With 1, each Get() asks the server in read-only mode, whatever the
  /// session's: by a SELECT that locks no row. 0 after construction and after Clear(), and so after CacheOff() and
  /// PreFetch().
  void ReadOnlyGet(int on = 1) { readOnlyGet_ = on; }

  void Get(int index) override;
  void Get(ASDomain&) override;
  /// As ASSimpleCache::Clear(); also ends ReadOnlyGet().
  void Clear() override;

 private:
  int readOnlyGet_ = 0;
};

#endif
