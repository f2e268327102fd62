#ifndef CORVANE_CACHE_INSERTABLE_CACHE_H
#define CORVANE_CACHE_INSERTABLE_CACHE_H

#include "corvane/cache/simple_cache.h"

/// A cache whose records can be inserted and deleted. Every change goes to the database at once. What ASUpdatableCache
/// says of the save-first switch goes for Delete(), too; a record that was inserted here needs no saving later.
///
/// The order of the virtual functions is binary contract.
class CORVANE_API ASInsertableCache : public virtual ASSimpleCache {
 public:
  /// Leaves session and switch to ASSimpleCache: for derived classes that give them to that one.
  ASInsertableCache();
  /// Also gives session and switch to an ASSimpleCache that was constructed without: derived classes need not name it.
  ASInsertableCache(ASSession* session, int n);
  /// A cache is not copied: its store is its own.
  /// @{
  ASInsertableCache(ASInsertableCache const&) = delete;
  ASInsertableCache& operator=(ASInsertableCache const&) = delete;
  /// @}

  ~ASInsertableCache() override;

  /// Inserts this record by ASSession::InsertQuery() and remembers it. An auto-increment key is numbered by the server
  /// alone: the record is remembered under the key that it holds, NULL as a rule. Set the key to
  /// ASSession::GetInsertId() and Get(-1) again. Throws "System error: Data may not be modified. Readonly mode is
  /// active. " in read-only mode, before anything is logged or sent, and what ASSession::Execute() throws; the store is
  /// unchanged then.
  virtual void Insert();
  /// Deletes the row with this record's key by ASSession::DeleteQuery(), drops the stored one, and sets all values
  /// NULL. WITHOUT KEY COLUMNS EVERY ROW GOES; safe mode refuses it. A row that does not exist is not an error. Throws
  /// "Internal Error: Attempt to change data in const transaction. " or "SafeMode refuses a statement without a
  /// condition. " before anything is logged or sent, and what ASSession::Execute() throws; record and store are
  /// unchanged then. With the save-first switch the key is NOT ESCAPED.
  virtual void Delete();
};

/// cache.Insert(); the text is not looked at.
CORVANE_API void InsertItem(Str const& text, ASInsertableCache& cache);

#endif
