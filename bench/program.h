#ifndef CORVANE_BENCH_PROGRAM_H
#define CORVANE_BENCH_PROGRAM_H

#include <benchmark/benchmark.h>
#include <valgrind/callgrind.h>

#include <cstdio>
#include <exception>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "account.h"

// One program for each library: PROGRAM WORKLOAD SIZE [OPTION of Google Benchmark...]. It does the work once, in a
// process of its own, so that its peak memory and, under callgrind, its instructions are those of this work alone.
namespace bench {

/// Where the server is; throws std::runtime_error when there is none.
struct Server {
  std::string host, user, password, database;
  unsigned port;
};
Server TheServer();

/// Runs `work` as the timed part, counted by callgrind too (--collect-atstart=no), and tells the growth of the peak of
/// memory in KiB over it, and the checksum that `work` returns.
void Measure(benchmark::State& state, std::function<std::uint32_t()> const& work);

/// What is done, by name; the number is the size of the work.
using Workloads = std::map<std::string, std::function<void(benchmark::State&, long size)>>;

/// The work that every library can do. `Library` is constructed from a Server and connected then; it has the members
/// used here.
template <class Library>
Workloads CommonWorkloads() {
  Workloads workloads;
  workloads["fetch"] = [](benchmark::State& state, long size) {
    Library library(TheServer());
    std::vector<Account> accounts;
    Measure(state, [&] {
      library.Fetch(size, accounts);
      return static_cast<std::uint32_t>(accounts.size());
    });
    Checksum checksum;
    for (Account const& account : accounts) checksum.Add(account);
    state.counters["checksum"] = checksum.Sum();
  };
  workloads["iterate"] = [](benchmark::State& state, long size) {
    Library library(TheServer());
    Measure(state, [&] {
      Checksum checksum;
      library.Iterate(size, checksum);
      return checksum.Sum();
    });
  };
  workloads["select"] = [](benchmark::State& state, long size) {
    Library library(TheServer());
    Account account;
    Measure(state, [&] {
      Checksum checksum;
      for (long i = 0; i < size; ++i) {
        library.Select(MixedKey(i, size), account);
        checksum.Add(account);
      }
      return checksum.Sum();
    });
  };
  auto const write = [](benchmark::State& state, long size, Account make(int), void (Library::*one)(Account const&)) {
    Library library(TheServer());
    std::vector<Account> accounts;
    accounts.reserve(static_cast<std::size_t>(size));
    for (long i = 1; i <= size; ++i) accounts.push_back(make(static_cast<int>(i)));
    Measure(state, [&] {
      library.Begin();
      for (Account const& account : accounts) (library.*one)(account);
      library.Commit();
      return 0;
    });
  };
  workloads["insert"] = [write](benchmark::State& state, long size) {
    write(state, size, MakeAccount, &Library::Insert);
  };
  workloads["update"] = [write](benchmark::State& state, long size) {
    write(state, size, ChangedAccount, &Library::Update);
  };
  return workloads;
}

/// The whole of main().
int Run(int argc, char** argv, Workloads const& workloads);

}  // namespace bench

#endif
