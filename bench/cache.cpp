// A record cache: what filling it takes, in time and in memory, and what a hit takes, beside a std::map of structs.

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <map>
#include <memory>
#include <string>

#include "database.h"

namespace bench {

namespace {

struct SaleCache : ASSimpleCache, SaleColumns {
  SaleCache(ASSession* session, std::string const& table) : ASDomain(table, "Sale"), ASSimpleCache(session, 0) {
    AddTo(*this);
  }
};

// A line of /proc/self/status, in bytes; 0 when there is none.
double ProcessBytes(char const* line) {
  std::ifstream status("/proc/self/status");
  for (std::string text; std::getline(status, text);) {
    if (text.compare(0, std::strlen(line), line) == 0) return std::atof(text.c_str() + std::strlen(line) + 1) * 1024;
  }
  return 0;
}

// From here on the peak is counted anew.
void ForgetPeak() { std::ofstream("/proc/self/clear_refs") << "5"; }

// A cache of a whole table, and what it took to fill it.
struct Filled {
  explicit Filled(int rows) : session(Parameters(), 0, false) {
    std::string const table = "sale_" + std::to_string(rows);
    MakeSales(Connect().get(), rows, table);
    cache = std::make_unique<SaleCache>(&session, table);
    double const before = ProcessBytes("VmRSS");
    ForgetPeak();
    auto const start = std::chrono::steady_clock::now();
    bool const complete = cache->PreFetch() == rows;
    seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    if (!complete) std::abort();
    bytes = (ProcessBytes("VmRSS") - before) / rows;
    peak = (ProcessBytes("VmHWM") - before) / rows;
    session.Disconnect();
  }

  ASSession session;
  std::unique_ptr<SaleCache> cache;
  double seconds = 0;
  double bytes = 0;  // of each record in the store
  double peak = 0;   // the same, while it was filled
};

Filled& FilledWith(int rows) {
  static std::map<int, std::unique_ptr<Filled>> all;
  std::unique_ptr<Filled>& filled = all[rows];
  if (filled == nullptr) filled = std::make_unique<Filled>(rows);
  return *filled;
}

// Keys in no order that a processor could guess.
class Keys {
 public:
  explicit Keys(int rows) : rows_(static_cast<unsigned>(rows)) {}
  int Next() {
    state_ = state_ * 1664525 + 1013904223;
    return static_cast<int>((state_ >> 4) % rows_) + 1;
  }

 private:
  unsigned rows_;
  unsigned state_ = 1;
};

void Fill(benchmark::State& state, int rows) {
  Filled const& filled = FilledWith(rows);
  while (state.KeepRunning()) state.SetIterationTime(filled.seconds);
  state.counters["bytes/record"] = filled.bytes;
  state.counters["peak bytes/record"] = filled.peak;
}

void Hit(benchmark::State& state, int rows) {
  SaleCache& cache = *FilledWith(rows).cache;
  Keys keys(rows);
  while (state.KeepRunning()) {
    int const key = keys.Next();
    cache.id = key;
    cache.Get(-1);
    if (cache.quantity != key % 97) state.SkipWithError("not the record that was asked for");
  }
  state.SetItemsProcessed(state.iterations());
}

struct PlainSale {
  int id, quantity;
  long customer;
  double weight, price;
  long sold;
  char code[9], name[41], note[81];
  bool noteIsNull;
  unsigned char ticket[16];
};

void HitInMap(benchmark::State& state, int rows) {
  static std::map<int, std::map<int, PlainSale>> all;
  std::map<int, PlainSale>& store = all[rows];
  for (int id = static_cast<int>(store.size()) + 1; id <= rows; ++id)
    store[id] = {id, id % 97, 0, 0, 0, 0, {}, {}, {}, false, {}};
  Keys keys(rows);
  PlainSale sale{};
  while (state.KeepRunning()) {
    int const key = keys.Next();
    sale = store.find(key)->second;
    benchmark::DoNotOptimize(sale);
  }
  state.SetItemsProcessed(state.iterations());
}

// A hundredth to ten times the rows that are read elsewhere: 1,000 to 1,000,000.
int const registered = [] {
  for (int const rows : {Rows() / 100, Rows() / 10, Rows(), Rows() * 10}) {
    std::string const records = std::to_string(rows) + " records";
    benchmark::RegisterBenchmark(("cache filled with " + records).c_str(), Fill, rows)
        ->Unit(benchmark::kMillisecond)
        ->UseManualTime()
        ->Iterations(1)
        ->Repetitions(1);
    benchmark::RegisterBenchmark(("hit among " + records + "/corvane").c_str(), Hit, rows);
    benchmark::RegisterBenchmark(("hit among " + records + "/map").c_str(), HitInMap, rows);
  }
  return 0;
}();

}  // namespace

}  // namespace bench
