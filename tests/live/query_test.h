#ifndef CORVANE_TESTS_LIVE_QUERY_TEST_H
#define CORVANE_TESTS_LIVE_QUERY_TEST_H

#include <memory>
#include <string>
#include <vector>

#include "tests/support/live.h"
#include "tests/support/sql.h"

// What the tests of the query language against a real server stand on.
namespace corvane::test {

using Ids = std::vector<int>;
using Aggregate = std::unique_ptr<ASGroupAttribute>;

inline Field const kNull;

// A table that is qualified by its schema; in the statements both names stand in backticks.
struct Towns : ASDomain {
  ASInt customer;
  ASVStr name{40};
  ASAttribute customerColumn{"customer_id"};
  ASAttribute nameColumn{"name"};

  explicit Towns(std::string const& schema) : ASDomain(schema + ".towns", "Towns") {
    Add(customerColumn, customer).Add(nameColumn, name);
  }
  Towns(Towns const&) = delete;
  Towns& operator=(Towns const&) = delete;
};

// All rows of a cursor; NULL and texts of the values that its columns are read into.
inline Rows RowsOf(ASCursor& cursor) {
  Rows rows;
  while (cursor.Fetch() != 0) {
    Row row;
    for (ASSimpleAttribute const* const column : cursor.Project().Items()) {
      ASData const& value = *column->Data();
      row.push_back(value.IsNull() != 0 ? kNull : value.getstr().ToString());
    }
    rows.push_back(row);
  }
  return rows;
}

// The fixture of these tests: a few orders, customers and towns, and a session.
class QueryTest : public LiveTest {
 protected:
  void CreateTables() override {
    Run("CREATE TABLE customers (id INT PRIMARY KEY, name VARCHAR(40)) COLLATE utf8mb4_bin");
    Run("INSERT INTO customers VALUES (1, 'Ada'), (2, 'O\\'Brien'), (3, '50!%'), (4, NULL), (5, 'off  ')");
    Run("CREATE TABLE orders (id INT PRIMARY KEY, customer_id INT, total INT, note VARCHAR(40)) COLLATE utf8mb4_bin");
    Run("INSERT INTO orders VALUES (1, 1, 10, 'Ada Lovelace'), (2, 1, -5, 'O\\'Brien'), (3, 2, 30, '50% off'), "
        "(4, NULL, 30, '500'), (5, 3, NULL, NULL), (6, 9, 0, 'a\\\\b')");
    Run("CREATE TABLE towns (customer_id INT, name VARCHAR(40))");
    Run("INSERT INTO towns VALUES (1, 'Oslo'), (2, 'Rome'), (9, 'Bern')");
    session_ = std::make_unique<Session>(With());
  }

  ASSession& TheSession() { return *session_; }

  // The ids of the record's rows that meet the condition, in ascending order.
  template <class Record>
  Ids Found(Record& record, ASComparison const& condition) {
    ASCursor cursor(session_.get());
    cursor.Project() << record.idColumn;
    cursor.Where(condition);
    cursor.Order(ASOrder(record.idColumn.Query()));
    return IdsOf(cursor, record.id);
  }

  // What the one value that the cursor reads becomes, row by row.
  static Ids IdsOf(ASCursor& cursor, ASInt const& value) {
    Ids ids;
    while (cursor.Fetch() != 0) ids.push_back(static_cast<int>(value));
    return ids;
  }

 private:
  std::unique_ptr<Session> session_;
};

}  // namespace corvane::test

#endif
