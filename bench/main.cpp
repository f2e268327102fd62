// Runs the timings, interleaved and repeated, and prints what the library takes beside the same work done without it.

#include <benchmark/benchmark.h>
#include <mysql.h>

#include <cstdio>
#include <exception>
#include <map>
#include <string>
#include <vector>

namespace {

// Remembers the medians.
class RatioReporter : public benchmark::ConsoleReporter {
 public:
  RatioReporter() : ConsoleReporter(OO_Tabular) {}

  void ReportRuns(std::vector<Run> const& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (Run const& run : runs) {
      if (run.error_occurred) failed_ = true;
      if (run.aggregate_name == "median") {
        medians_[run.run_name.function_name] = {run.real_accumulated_time, run.cpu_accumulated_time};
      }
    }
  }

  bool Failed() const { return failed_; }

  // "fetch/corvane" beside "fetch/bare", "fetch/bare unbuffered" and so on.
  void PrintRatios() const {
    for (auto const& [name, other] : medians_) {
      auto const own = medians_.find(name.substr(0, name.find('/') + 1) + "corvane");
      if (own == medians_.end() || own->first == name) continue;
      std::printf("%s takes %.2f times as long as %s, %.2f times its processor time\n", own->first.c_str(),
                  own->second.elapsed / other.elapsed, name.c_str(), own->second.processor / other.processor);
    }
  }

 private:
  struct Times {
    double elapsed;
    double processor;  // of this process, not of the server's
  };

  std::map<std::string, Times> medians_;
  bool failed_ = false;
};

}  // namespace

int main(int argc, char** argv) try {
  std::vector<std::string> arguments{argv[0], "--benchmark_repetitions=15",
                                     "--benchmark_enable_random_interleaving=true",
                                     "--benchmark_report_aggregates_only=true"};
  arguments.insert(arguments.end(), argv + 1, argv + argc);  // the last of two contrary options counts
  std::vector<char*> pointers;
  pointers.reserve(arguments.size());
  for (std::string& argument : arguments) pointers.push_back(argument.data());
  auto count = static_cast<int>(pointers.size());
  benchmark::Initialize(&count, pointers.data());
  if (benchmark::ReportUnrecognizedArguments(count, pointers.data())) return 2;
  mysql_library_init(0, nullptr, nullptr);  // else escaping crashes when it comes before the first connection
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintRatios();
  return reporter.Failed() ? 1 : 0;
} catch (std::exception const& error) {
  std::fprintf(stderr, "bench: %s\n", error.what());
  return 1;
}
