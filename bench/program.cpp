#include "program.h"

#include <cstdlib>
#include <fstream>
#include <stdexcept>

namespace bench {

namespace {

std::string Environment(char const* name) {
  char const* const value = std::getenv(name);
  return value != nullptr ? value : "";
}

// A figure of /proc/self/status, in KiB.
long Status(std::string const& name) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.compare(0, name.size() + 1, name + ":") == 0) return std::stol(line.substr(name.size() + 1));
  }
  throw std::runtime_error("no " + name + " in /proc/self/status");
}

}  // namespace

Server TheServer() {
  if (Environment("CORVANE_TEST_PORT").empty()) {
    throw std::runtime_error("no server: CORVANE_TEST_PORT is not set; use ./run bench");
  }
  return {Environment("CORVANE_TEST_HOST"), Environment("CORVANE_TEST_USER"), Environment("CORVANE_TEST_PASSWORD"),
          Environment("CORVANE_TEST_DATABASE"), static_cast<unsigned>(std::stoul(Environment("CORVANE_TEST_PORT")))};
}

void Measure(benchmark::State& state, std::function<std::uint32_t()> const& work) {
  std::ofstream("/proc/self/clear_refs") << 5;  // the peak begins anew
  long const before = Status("VmRSS");
  while (state.KeepRunning()) {
    CALLGRIND_TOGGLE_COLLECT;
    state.counters["checksum"] = work();
    CALLGRIND_TOGGLE_COLLECT;
  }
  state.counters["memory"] = static_cast<double>(Status("VmHWM") - before);
}

int Run(int argc, char** argv, Workloads const& workloads) try {
  auto const workload = argc > 2 ? workloads.find(argv[1]) : workloads.end();
  if (workload == workloads.end()) {
    std::fprintf(stderr, "usage: %s WORKLOAD SIZE [OPTION...], of\n", argv[0]);
    for (auto const& [name, work] : workloads) std::fprintf(stderr, "  %s\n", name.c_str());
    return 2;
  }
  long const size = std::stol(argv[2]);
  benchmark::RegisterBenchmark(argv[1], [&](benchmark::State& state) { workload->second(state, size); })
      ->Iterations(1)
      ->MeasureProcessCPUTime()
      ->UseRealTime()
      ->Unit(benchmark::kMillisecond);
  argv[2] = argv[0];
  argc -= 2;
  argv += 2;
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  benchmark::RunSpecifiedBenchmarks();
  return 0;
} catch (std::exception const& error) {
  std::fprintf(stderr, "%s: %s\n", argv[0], error.what());
  return 1;
}

}  // namespace bench
