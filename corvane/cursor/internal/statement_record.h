#ifndef CORVANE_CURSOR_INTERNAL_STATEMENT_RECORD_H
#define CORVANE_CURSOR_INTERNAL_STATEMENT_RECORD_H

#include <mysql.h>

#include <cstddef>
#include <memory>
#include <vector>

#include "corvane/mapping/domain.h"

namespace corvane::internal {

/// The record type that a raw statement gets: a column and a value for each column of its result.
class StatementRecord {
 public:
  /// Of a stored result.
  explicit StatementRecord(MYSQL_RES* result);
  StatementRecord(StatementRecord const&) = delete;
  StatementRecord& operator=(StatementRecord const&) = delete;
  ~StatementRecord();

  /// Has the texts fit another result of the same statement. A value of another size than it needs is replaced, and
  /// lives on with the record all the same: somebody may hold it. Values that are not the record's own are left alone.
  void Resize(MYSQL_RES* result);

  ASDomain const& Record() const { return record_; }

 private:
  ASDomain record_;
  std::vector<std::unique_ptr<ASAttribute>> attributes_;
  std::vector<std::unique_ptr<ASData>> values_;  // replaced ones among them
  std::vector<ASData*> own_;                     // the one of each attribute
};

}  // namespace corvane::internal

#endif
