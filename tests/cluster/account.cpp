#include "tests/cluster/account.h"

#include <algorithm>

namespace corvane::test {

namespace {

bool TellsOfALoss(Line const& line) { return line.event == Event::kUnknown || line.why.rfind(kLost, 0) == 0; }

struct Events {
  int intents = 0;
  int outcomes = 0;
  Event outcome = Event::kIntent;
};

void Judge(Account& account, Events const& events, std::string const* rows) {
  if (rows != nullptr && *rows != kWhole) ++account.notWhole;
  if (events.intents != 1 || events.outcomes != 1) {
    ++account.unclear;
  } else if (events.outcome == Event::kAcknowledged) {
    ++account.acknowledged;
    if (rows == nullptr) ++account.lost;
  } else if (events.outcome == Event::kRefused) {
    ++account.refused;
    if (rows != nullptr) ++account.refusedStored;
  } else {
    ++account.unknown;
    if (rows != nullptr) ++account.unknownStored;
  }
}

}  // namespace

Account Compare(std::vector<Line> const& journal, Stored const& stored) {
  std::map<Id, Events> attempts;
  for (Line const& line : journal) {
    Events& events = attempts[line.id];
    if (line.event == Event::kIntent) {
      ++events.intents;
    } else {
      ++events.outcomes;
      events.outcome = line.event;
    }
  }

  Account account;
  for (auto const& [id, events] : attempts) {
    auto const found = stored.find(id);
    Judge(account, events, found != stored.end() ? &found->second : nullptr);
  }
  for (auto const& [id, rows] : stored) {
    if (attempts.count(id) == 0) ++account.strange;
  }
  return account;
}

std::ostream& operator<<(std::ostream& out, Account const& account) {
  return out << account.acknowledged << " acknowledged, lost " << account.lost << "; " << account.refused
             << " refused, stored all the same " << account.refusedStored << "; " << account.unknown
             << " unknown, stored " << account.unknownStored << "; in part or twice " << account.notWhole
             << ", without a clear outcome " << account.unclear << ", of nobody " << account.strange;
}

Recovery RecoveryAfter(Clock::time_point kill, Clock::time_point gone, std::vector<std::vector<Line>> const& journals) {
  Recovery recovery;
  for (std::vector<Line> const& journal : journals) {
    bool begunAfter = false;
    bool hit = false;
    for (Line const& line : journal) {
      if (line.at < kill) continue;
      if (line.event == Event::kIntent) {
        begunAfter = line.at >= gone;
      } else if (line.event != Event::kAcknowledged) {
        hit = hit || TellsOfALoss(line);
      } else if (begunAfter) {
        recovery.all.push_back(line.at - kill);
        if (hit) recovery.hit.push_back(line.at - kill);
        break;
      }
    }
  }
  return recovery;
}

Clock::duration Median(std::vector<Clock::duration> times) {
  if (times.empty()) return Clock::duration::zero();
  std::sort(times.begin(), times.end());
  return times[times.size() / 2];
}

Clock::duration Worst(std::vector<Clock::duration> const& times) {
  return times.empty() ? Clock::duration::zero() : *std::max_element(times.begin(), times.end());
}

}  // namespace corvane::test
