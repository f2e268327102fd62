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

/// Ten columns of mixed types, some of them NULL.
struct SaleColumns {
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

  void AddTo(ASDomain& record);
};

/// One row of the table `sale`.
struct Sale : ASDomain, SaleColumns {
  Sale();
  Sale(Sale const&) = delete;
  Sale& operator=(Sale const&) = delete;
};

/// A table of such rows, their ids counted from 1; one that is there is replaced.
void MakeSales(MYSQL* handle, int rows, std::string const& table = "sale");

/// How many rows are read: CORVANE_BENCH_ROWS, or 100,000.
int Rows();

}  // namespace bench

#endif
