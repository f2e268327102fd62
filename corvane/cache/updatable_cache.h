#ifndef CORVANE_CACHE_UPDATABLE_CACHE_H
#define CORVANE_CACHE_UPDATABLE_CACHE_H

#include "corvane/cache/simple_cache.h"

/// A cache whose records can be changed. Every change goes to the database at once.
///
///     countries.code = "NZ";
///     countries.Get(-1);
///     countries.name = "Aotearoa New Zealand";
///     countries.Put();
///
/// With the save-first switch (the constructor's `n` other than 0) the row as it is in the table is copied to the
/// archive table, the table's name with "Arc" behind it, by ASSession::SaveQuery(), before this cache changes it for
/// the first time since Clear(). In that statement keys are NOT ESCAPED: never with keys of untrusted text. WHATEVER IT
/// REPORTS IS IGNORED, the loss of the connection included: without autocommit the transaction so far is lost then, and
/// the change runs alone on the new connection.
///
/// The order of the virtual functions is binary contract.
class CORVANE_API ASUpdatableCache : public virtual ASSimpleCache {
 public:
  /// Leaves session and switch to ASSimpleCache: for derived classes that give them to that one.
  ASUpdatableCache();
  /// Also gives session and switch to an ASSimpleCache that was constructed without: derived classes need not name it.
  ASUpdatableCache(ASSession* session, int n);
  /// A cache is not copied: its store is its own.
  /// @{
  ASUpdatableCache(ASUpdatableCache const&) = delete;
  ASUpdatableCache& operator=(ASUpdatableCache const&) = delete;
  /// @}

  ~ASUpdatableCache() override;

  /// Writes this record by ASSession::UpdateQuery() and remembers it in place of the stored one with its key, also when
  /// the table has no such row; while remembering is off, that one is only dropped. WITHOUT KEY COLUMNS EVERY ROW IS
  /// CHANGED; safe mode refuses it. Throws "Internal Error: Attempt to change data in const transaction. " or "SafeMode
  /// refuses a statement without a condition. " before anything is logged or sent, and what ASSession::Execute()
  /// throws; the store is unchanged then. With the save-first switch the key is NOT ESCAPED.
  virtual void Put();
};

#endif
