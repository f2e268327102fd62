#include <chrono>
#include <cstdlib>
#include <iomanip>
#include <iostream>
#include <optional>
#include <stdexcept>
#include <string>

#include "account.h"
#include "database.h"
#include "load.h"
#include "tour.h"
#include "tzdata.h"

namespace {

constexpr int kUsageError = 2;

constexpr char const* kUsage =
    R"(Usage: demo [--load-only] [--pause] [CONNECTION]

Loads the system's countries and time zones into a MySQL or MariaDB database, and shows on them what the
library does: each call, the SQL it became, and what came back.

  CONNECTION    user:password@database/host:port; without it, the environment says where the database is:
                CORVANE_TEST_HOST, _PORT, _USER, _PASSWORD and _DATABASE
  --load-only   load, and only say how much
  --pause       wait for Enter before each step
  --help        this text

It makes the tables tz_country, tz_zone, tz_zone_country, tz_file and tz_number in the database, in place of
those of an earlier run, and leaves them there. TZDIR names another folder than /usr/share/zoneinfo.
)";

struct Options {
  bool help = false;
  bool loadOnly = false;
  bool pause = false;
  std::string connection;
};

// Nothing when the arguments are not as the usage text says.
std::optional<Options> ReadOptions(int count, char** arguments) {
  Options options;
  for (int i = 1; i < count; ++i) {
    std::string const argument = arguments[i];
    if (argument == "--help") {
      options.help = true;
    } else if (argument == "--load-only") {
      options.loadOnly = true;
    } else if (argument == "--pause") {
      options.pause = true;
    } else if (options.connection.empty() && argument.find(':') < argument.find('@')) {
      options.connection = argument;
    } else {
      return std::nullopt;
    }
  }
  bool const knowsDatabase = !options.connection.empty() || std::getenv("CORVANE_TEST_PORT") != nullptr;
  if (!knowsDatabase && !options.help) return std::nullopt;
  return options;
}

bool LoadOnly(demo::Target const& target, demo::TimeZoneData const& data) {
  ASSession session = target.Open();
  demo::Load(session, data);
  std::cout << "Loaded into " << target.Shown() << ":\n";
  bool complete = true;
  for (demo::Count const& count : demo::CountAll(session, data)) {
    complete = complete && count.rows == count.expected;
    std::cout << "  " << std::left << std::setw(16) << count.table << std::right << std::setw(6) << count.rows
              << " rows" << (count.rows == count.expected ? "" : ", which is WRONG") << '\n';
  }
  session.Disconnect();
  return complete;
}

bool Tour(demo::Target const& target, demo::TimeZoneData const& data, bool pause) {
  auto const start = std::chrono::steady_clock::now();
  demo::Account account(pause);
  demo::RunTour(target, data, account);
  std::chrono::duration<double> const seconds = std::chrono::steady_clock::now() - start;
  std::cout << '\n'
            << (account.Surprises() == 0 ? "Everything was as expected" : "NOT everything was as expected") << " ("
            << std::fixed << std::setprecision(1) << seconds.count() << " s).\n";
  return account.Surprises() == 0;
}

bool Run(Options const& options) {
  demo::Target const target = options.connection.empty() ? demo::Target::FromEnvironment()
                                                         : demo::Target::FromConnectionString(options.connection);
  demo::TimeZoneData const data = demo::ReadTimeZoneData();
  bool const asExpected = options.loadOnly ? LoadOnly(target, data) : Tour(target, data, options.pause);
  std::cout.flush();
  if (!std::cout) throw std::runtime_error("cannot write to the standard output");
  return asExpected;
}

int Fail(std::string const& words) {
  std::cout.flush();
  std::cerr << "demo: " << words << '\n';
  return EXIT_FAILURE;
}

}  // namespace

int main(int count, char** arguments) {
  try {
    std::optional<Options> const options = ReadOptions(count, arguments);
    if (!options) {
      std::cerr << kUsage;
      return kUsageError;
    }
    if (options->help) {
      std::cout << kUsage;
      return EXIT_SUCCESS;
    }
    return Run(*options) ? EXIT_SUCCESS : EXIT_FAILURE;
  } catch (AException const& error) {
    return Fail(demo::PlainWords(error));
  } catch (std::exception const& error) {
    return Fail(error.what());
  }
}
