#ifndef CORVANE_BENCH_DATABASE_H
#define CORVANE_BENCH_DATABASE_H

#include <corvane/corvane.h>
#include <mysql.h>

#include <map>
#include <memory>
#include <string>

namespace bench {

/// The server that tools/private-server started; throws std::runtime_error when there is none.
std::map<std::string, std::string> Parameters();

struct CloseHandle {
  void operator()(MYSQL* handle) const { mysql_close(handle); }
};
/// A connection of the bare client library to the same server.
using Handle = std::unique_ptr<MYSQL, CloseHandle>;
Handle Connect();

/// One row of the table `sale`: ten columns of mixed types, some of them NULL.
struct Sale : ASDomain {
  ASInt id, quantity;
  ASInt64 customer;
  ASDouble weight;
  ASDCurrency price;
  ASTime sold;
  ASStr code{8};
  ASVStr name{40};
  ASVStr note{80};
  ASGuid ticket;
  ASAttribute idColumn{"id", "Id", 0, corvane::kKey};
  ASAttribute quantityColumn{"quantity"};
  ASAttribute customerColumn{"customer"};
  ASAttribute weightColumn{"weight"};
  ASAttribute priceColumn{"price"};
  ASAttribute soldColumn{"sold"};
  ASAttribute codeColumn{"code"};
  ASAttribute nameColumn{"name"};
  ASAttribute noteColumn{"note"};
  ASAttribute ticketColumn{"ticket"};

  Sale();
  Sale(Sale const&) = delete;
  Sale& operator=(Sale const&) = delete;
};

/// Makes that table, with `rows` rows.
void MakeSales(MYSQL* handle, int rows);

/// How many rows are read: CORVANE_BENCH_ROWS, or 100,000.
int Rows();

}  // namespace bench

#endif
