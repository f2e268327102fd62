#ifndef CORVANE_CACHE_SIMPLE_CACHE_H
#define CORVANE_CACHE_SIMPLE_CACHE_H

#include <set>

#include "corvane/mapping/domain.h"

class ASSession;

/// A record that remembers what it has read: records of its table are kept in memory by their keys, and a record that
/// is there is not asked for again.
///
///     struct Countries : ASSimpleCache {
///       explicit Countries(ASSession* session) : ASDomain("country", "Country"), ASSimpleCache(session, 0) {
///         Add(codeColumn, code).Add(nameColumn, name);
///       }
///       ASStr code{2};
///       ASVStr name{80};
///       ASAttribute codeColumn{"code", "Code", 0, corvane::kKey};
///       ASAttribute nameColumn{"name"};
///     };
///
///     countries.code = "NZ";
///     countries.Get(-1);  // from the server the first time, from memory from then on
///
/// ASDomain and ASSimpleCache are virtual bases: the class of the object itself gives both constructors their
/// arguments, or the table has no name. The record is otherwise an ASDomain like any other; every class of cache may be
/// derived from further. A record class that derives from ASDomain plainly cannot become a cache: declare its columns
/// again.
///
/// Nothing is ever dropped from the store but by Clear() and CacheOff(), and nothing tells it what others change in the
/// table. After ASSession::Rollback(), or a connection lost in a transaction, it still holds what was rolled back:
/// Clear() it. A hit locks no row, where a record's SELECT would.
///
/// Records are stored as ASDomain copies and assigns them: an ASTime as an ASInt of the same number, a NULL ASInt64 as
/// the number -9223372036854775808, which a hit gives back and the next Put() writes; and a hit pads an ASStr, which a
/// miss does not. A record without key columns is like every other one: the first that is read is found from then on.
///
/// The session is not owned and must outlive the cache. Without one everything that would use it throws AException
/// "There is no session for cache. ". A cache belongs to one thread at a time. At debug level 3 and above the commands
/// are logged with the values of their columns. The order of the virtual functions and of the members is binary
/// contract.
class CORVANE_API ASSimpleCache : public virtual ASDomain {
 public:
  /// Without session; for virtual inheritance, where the write caches' constructors give one later.
  ASSimpleCache();
  /// `n` is what the write caches call the save-first switch; nothing else reads it.
  ASSimpleCache(ASSession* session, int n);
  /// A cache is not copied: its store is its own.
  /// @{
  ASSimpleCache(ASSimpleCache const&) = delete;
  ASSimpleCache& operator=(ASSimpleCache const&) = delete;
  /// @}

  ~ASSimpleCache() override;

  /// A negative `index`: the record with the key that this one holds, from the store, or else from the server by the
  /// session's SelectQuery(); that locks its row outside read-only mode. It is put into the store then. When there is
  /// none, all values become NULL, the key too. Throws what the session throws; the store is unchanged then, and of
  /// the values only the key can be relied on.
  ///
  /// Any other `index`: the record at that place of the store, in the order of keys, from 0. All values become NULL
  /// when `index` is not less than THE NUMBER OF COLUMNS of the record, however many records there are; and behind the
  /// end of the store.
  virtual void Get(int index);
  /// Get(-1); the argument is not looked at.
  virtual void Get(ASDomain&);
  /// Switches remembering on, as it is from the beginning. The store stays as it is.
  virtual ASSimpleCache& CacheOn();
  /// Switches remembering off, and calls Clear(). What is not in the store is asked for every time from then on.
  virtual void CacheOff();
  /// Clear(), then reads the whole table into the store, by one SELECT, which locks nothing, whether remembering is on
  /// or off. Returns Size(); this record is the last one read, all NULL when there was none. Throws what ASCursor
  /// throws, the store being empty then. The whole result is in memory besides the store meanwhile.
  virtual int PreFetch();
  /// How many records are in the store.
  virtual int Size();
  /// Empties the store and forgets which records have been saved; all values become NULL.
  virtual void Clear();

 private:
  friend class ASCache;
  friend class ASInsertableCache;
  friend class ASUpdatableCache;

  enum Columns { kAll, kKeys };

  // What the two-argument constructor does, for derived classes whose virtual base was constructed without arguments.
  void Attach(ASSession* session, int n);
  ASSession& Session() const;
  void CheckWritable(char const* refusal) const;
  void LogCommand(char const* command, Columns columns) const;
  void AppendColumns(Str& out, Columns columns, char const* lineEnd) const;
  void Find();
  void SaveFirst();
  void Replace();
  void Remember() { store_.insert(*this); }
  void Forget() { store_.erase(*this); }

  int saveFirst_ = 0;  // the constructor's integer
  int untouched_ = 0;  // 1 until a save or an insert ran
  int caching_ = 0;
  std::set<ASDomain> store_;
  std::set<ASDomain> saved_;      // records that need no save any more
  ASSession* session_ = nullptr;  // not owned
};

#endif
