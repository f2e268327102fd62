#include "tests/cluster/journal.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace corvane::test {

namespace {

constexpr std::array<char const*, 4> kEvents = {"intent", "acknowledged", "refused", "unknown"};

Event EventOf(std::string const& name, std::string const& line) {
  auto const* const found = std::find(kEvents.begin(), kEvents.end(), name);
  if (found == kEvents.end()) throw std::runtime_error("not a line of a journal: " + line);
  return static_cast<Event>(std::distance(kEvents.begin(), found));
}

Line Parse(std::string const& text) {
  std::istringstream in(text);
  std::string name;
  Id id = 0;
  Clock::rep at = 0;
  if (!(in >> name >> id >> at)) throw std::runtime_error("not a line of a journal: " + text);
  std::string why;
  std::getline(in >> std::ws, why);
  return {EventOf(name, text), id, Clock::time_point(Clock::duration(at)), why};
}

}  // namespace

Journal::Journal(std::string const& file) : out_(file) {}

void Journal::Write(Line const& line) {
  out_ << kEvents.at(static_cast<std::size_t>(line.event)) << ' ' << line.id << ' '
       << line.at.time_since_epoch().count() << ' ' << line.why << '\n'
       << std::flush;
  if (!out_) throw std::runtime_error("a journal cannot be written");
}

std::vector<Line> ReadJournal(std::string const& file) {
  std::ifstream in(file);
  if (!in) throw std::runtime_error("no journal: " + file);
  std::vector<Line> lines;
  for (std::string text; std::getline(in, text);) lines.push_back(Parse(text));
  return lines;
}

}  // namespace corvane::test
