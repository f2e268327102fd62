#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <memory>
#include <random>
#include <sstream>
#include <stdexcept>

#include "tests/cluster/account.h"
#include "tests/cluster/cluster.h"
#include "tests/cluster/writer.h"
#include "tests/support/tally.h"

// Sixteen writers at a cluster of three nodes, of which one after the other is killed under load and started again.
// CORVANE_CLUSTER_KILLS says how often, CORVANE_CLUSTER_JOURNALS in which folder the journals are left.
namespace corvane::test {

namespace {

constexpr int kWriters = 16;
constexpr std::chrono::seconds kPatience(60);
constexpr std::chrono::milliseconds kPollStep(5);
constexpr std::chrono::milliseconds kLeastLoad(500);
constexpr std::chrono::milliseconds kMostLoad(2500);

struct Killing {
  int node;
  bool empty;  // what the node comes back with
  Clock::time_point at;
  Clock::time_point gone;
  Clock::duration inSync;  // from the start until the node takes part again
};

// Of four writers two use transactions.
Kind KindOf(int writer) {
  constexpr Kind kinds[] = {Kind::kTransaction, Kind::kRepeating, Kind::kTransaction, Kind::kOnce};
  return kinds[writer % 4];
}

int Kills() {
  std::string const kills = Environment("CORVANE_CLUSTER_KILLS");
  return kills.empty() ? 2 : std::stoi(kills);
}

std::string JournalFile(int writer) {
  std::string const folder = Environment("CORVANE_CLUSTER_JOURNALS");
  return (folder.empty() ? ::testing::TempDir() : folder + "/") + "writer" + std::to_string(writer) + ".journal";
}

std::string Seconds(Clock::duration time) {
  char text[32];
  std::snprintf(text, sizeof text, "%.2f", std::chrono::duration<double>(time).count());
  return text;
}

using Writers = std::vector<std::unique_ptr<Writer>>;

Writers StartWriters(Parameters const& parameters) {
  Writers writers;
  for (int number = 1; number <= kWriters; ++number) {
    writers.push_back(std::make_unique<Writer>(number, KindOf(number), parameters, JournalFile(number)));
  }
  return writers;
}

/// Waits until every writer has had something acknowledged which it began after `since`.
void AwaitAll(Writers const& writers, Clock::time_point since) {
  for (auto const& writer : writers) {
    while (writer->LastAcknowledged() < since) {
      if (writer->Ended()) writer->Join();  // throws why
      if (Clock::now() - since > kPatience) {
        throw std::runtime_error("writer " + std::to_string(writer->Number()) + " hangs");
      }
      std::this_thread::sleep_for(kPollStep);
    }
  }
}

std::vector<Killing> KillNodes(Cluster& cluster, Writers const& writers, int kills) {
  std::random_device device;
  std::uniform_int_distribution<Clock::rep> load(kLeastLoad.count(), kMostLoad.count());
  std::vector<Killing> killings;
  for (int kill = 0; kill < kills; ++kill) {
    AwaitAll(writers, Clock::now());
    std::this_thread::sleep_for(std::chrono::milliseconds(load(device)));
    Killing killing{kill % cluster.Nodes() + 1, kill % 2 == 1, Clock::now(), {}, {}};
    cluster.Kill(killing.node);
    killing.gone = Clock::now();
    AwaitAll(writers, killing.gone);
    Clock::time_point const start = Clock::now();
    cluster.Start(killing.node, killing.empty);
    killing.inSync = Clock::now() - start;
    killings.push_back(killing);
  }
  AwaitAll(writers, Clock::now());
  return killings;
}

/// The journals of all writers, read back from their files.
std::vector<std::vector<Line>> ReadJournals() {
  std::vector<std::vector<Line>> journals;
  for (int number = 1; number <= kWriters; ++number) journals.push_back(ReadJournal(JournalFile(number)));
  return journals;
}

std::vector<Line> JournalOf(Kind kind, std::vector<std::vector<Line>> const& journals) {
  std::vector<Line> lines;
  for (int number = 1; number <= kWriters; ++number) {
    if (KindOf(number) != kind) continue;
    std::vector<Line> const& journal = journals.at(static_cast<std::size_t>(number - 1));
    lines.insert(lines.end(), journal.begin(), journal.end());
  }
  return lines;
}

void PrintReasons(std::vector<std::vector<Line>> const& journals) {
  std::map<std::string, int> reasons;
  for (auto const& journal : journals) {
    for (Line const& line : journal) {
      if (line.event != Event::kRefused && line.event != Event::kUnknown) continue;
      std::string const event = line.event == Event::kRefused ? "refused  " : "unknown  ";
      ++reasons[event + line.why.substr(0, line.why.find("'"))];  // without the values of a duplicate key
    }
  }
  std::cout << "\nNot acknowledged:\n";
  for (auto const& [reason, count] : reasons) std::printf("%7d  %s\n", count, reason.c_str());
}

void PrintRecoveries(std::vector<Killing> const& killings, std::vector<std::vector<Line>> const& journals) {
  std::vector<Clock::duration> hit;
  std::vector<Clock::duration> all;
  std::printf("\nSeconds from a kill until the first acknowledgement of something begun when the node was gone:\n");
  std::printf("%5s %5s %8s  %-22s  %-22s  %s\n", "KILL", "NODE", "WRITERS", "HIT: MEDIAN, WORST", "ALL: MEDIAN, WORST",
              "NODE IN SYNC AFTER");
  for (std::size_t kill = 0; kill < killings.size(); ++kill) {
    Killing const& killing = killings[kill];
    Recovery const recovery = RecoveryAfter(killing.at, killing.gone, journals);
    EXPECT_EQ(recovery.all.size(), static_cast<std::size_t>(kWriters));
    hit.insert(hit.end(), recovery.hit.begin(), recovery.hit.end());
    all.insert(all.end(), recovery.all.begin(), recovery.all.end());
    std::printf("%5zu %5d %2zu of %2zu  %10s %10s   %10s %10s   %s, with %s data\n", kill + 1, killing.node,
                recovery.hit.size(), recovery.all.size(), Seconds(Median(recovery.hit)).c_str(),
                Seconds(Worst(recovery.hit)).c_str(), Seconds(Median(recovery.all)).c_str(),
                Seconds(Worst(recovery.all)).c_str(), Seconds(killing.inSync).c_str(), killing.empty ? "no" : "its");
  }
  std::printf("  all       %8zu  %10s %10s   %10s %10s\n", hit.size(), Seconds(Median(hit)).c_str(),
              Seconds(Worst(hit)).c_str(), Seconds(Median(all)).c_str(), Seconds(Worst(all)).c_str());
}

void ExpectNothingWrong(Cluster const& cluster, std::vector<std::vector<Line>> const& journals) {
  for (Kind const kind : kKinds) {
    std::vector<Line> const journal = JournalOf(kind, journals);
    Stored const first = cluster.Read(1, TableOf(kind));
    Account const onFirst = Compare(journal, first);
    for (int node = 1; node <= cluster.Nodes(); ++node) {
      Stored const stored = cluster.Read(node, TableOf(kind));
      Account const account = Compare(journal, stored);
      std::cout << "node " << node << ", " << TableOf(kind) << ": " << account << '\n';
      EXPECT_EQ(account.Faults(), 0u);
      EXPECT_TRUE(stored == first) << "node " << node << " differs from node 1";
      if (kind == Kind::kTransaction) {
        EXPECT_EQ(cluster.Value(node, kSumOfCounters), std::to_string(stored.size()));
      }
    }
    EXPECT_GT(onFirst.acknowledged, 0u);
    Tally("commits acknowledged", "there once and whole on each of the three nodes", onFirst.acknowledged);
    Tally("transactions refused", "not there on any of the three nodes", onFirst.refused);
    Tally("outcomes unknown", "whole or not there, the same on all nodes", onFirst.unknown);
  }
}

}  // namespace

TEST(Cluster, LosesNothingWhenNodesAreKilledUnderLoad) {
  Cluster cluster;
  for (std::string const& statement : CreateTables()) cluster.Run(statement);

  Writers writers = StartWriters(cluster.SessionParameters());
  std::vector<Killing> const killings = KillNodes(cluster, writers, Kills());
  for (auto const& writer : writers) writer->Stop();
  for (auto const& writer : writers) writer->Join();

  std::vector<std::vector<Line>> const journals = ReadJournals();
  PrintRecoveries(killings, journals);
  PrintReasons(journals);
  std::cout << '\n';
  ExpectNothingWrong(cluster, journals);
  Tally("nodes of a cluster killed under load", "every writer goes on, the node is in sync again", killings.size());
}

}  // namespace corvane::test
