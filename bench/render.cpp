// The text of a query over three tables with six columns and four conditions: in the query language, from the columns
// to the whole statement, and by appending to a standard string.

#include <benchmark/benchmark.h>

#include <string>

#include "database.h"

namespace bench {

namespace {

struct Customer : ASDomain {
  ASInt id;
  ASVStr name{40};
  ASAttribute idColumn{"id", "Id", 0, corvane::kKey};
  ASAttribute nameColumn{"name"};
  ASAttribute cityColumn{"city_id"};
  Customer() : ASDomain("customer", "Customer") { Add(idColumn, id).Add(nameColumn, name).Add(cityColumn, id); }
};

struct City : ASDomain {
  ASInt id;
  ASVStr name{40};
  ASAttribute idColumn{"id", "Id", 0, corvane::kKey};
  ASAttribute nameColumn{"name"};
  City() : ASDomain("city", "City") { Add(idColumn, id).Add(nameColumn, name); }
};

void RenderCorvane(benchmark::State& state) {
  Sale sale;
  Customer customer;
  City city;
  while (state.KeepRunning()) {
    ASFilter filter;
    filter.Project() << sale.idColumn << sale.soldColumn << sale.priceColumn << customer.nameColumn << city.nameColumn
                     << sale.noteColumn;
    filter.Where(sale.customerColumn == customer.idColumn && customer.cityColumn == city.idColumn &&
                 sale.quantityColumn > 10 && city.nameColumn == "Saint John's");
    benchmark::DoNotOptimize(filter.Query());
  }
}

void AppendQuoted(std::string& text, char const* value) {
  std::string::size_type const length = std::char_traits<char>::length(value);
  std::string::size_type const begin = text.size();
  text.resize(begin + 2 * length + 1);
  text.resize(begin + mysql_escape_string(&text[begin], value, length));
}

void RenderByHand(benchmark::State& state) {
  while (state.KeepRunning()) {
    std::string text = "SELECT s.id, s.sold, s.price, c.name, t.name, s.note";
    text += " FROM (`sale` s, `customer` c, `city` t)";
    text += " WHERE s.customer=c.id AND c.city_id=t.id AND s.quantity>";
    text += std::to_string(10);
    text += " AND t.name='";
    AppendQuoted(text, "Saint John's");
    text += "'";
    benchmark::DoNotOptimize(text);
  }
}

BENCHMARK(RenderCorvane)->Name("render/corvane");
BENCHMARK(RenderByHand)->Name("render/bare");

}  // namespace

}  // namespace bench
