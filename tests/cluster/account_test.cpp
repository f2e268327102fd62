#include "tests/cluster/account.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <functional>
#include <stdexcept>

namespace corvane::test {

namespace {

using std::chrono::milliseconds;

Line At(int milliseconds_, Event event, Id id, char const* why = "") {
  return {event, id, Clock::time_point(milliseconds(milliseconds_)), why};
}

constexpr Clock::time_point kKill(milliseconds(10));
constexpr Clock::time_point kGone(milliseconds(25));

std::vector<Line> Attempt(Id id, Event outcome) { return {At(0, Event::kIntent, id), At(1, outcome, id)}; }

class JournalFile : public ::testing::Test {
 protected:
  void TearDown() override { std::remove(Name().c_str()); }
  static std::string Name() { return ::testing::TempDir() + "corvane_journal_test"; }
};

}  // namespace

TEST(Account, WhatWasAcknowledgedIsThere) {
  Account const account = Compare(Attempt(7, Event::kAcknowledged), {{7, "1,2"}});
  EXPECT_EQ(account.acknowledged, 1u);
  EXPECT_EQ(account.Faults(), 0u);
}

TEST(Account, WhatWasAcknowledgedAndIsMissingIsLost) {
  Account const account = Compare(Attempt(7, Event::kAcknowledged), {});
  EXPECT_EQ(account.lost, 1u);
  EXPECT_EQ(account.Faults(), 1u);
}

TEST(Account, HalfOfAnIdIsAFault) {
  Account const account = Compare(Attempt(7, Event::kAcknowledged), {{7, "1"}});
  EXPECT_EQ(account.notWhole, 1u);
  EXPECT_EQ(account.Faults(), 1u);
}

TEST(Account, AnIdStoredTwiceIsAFault) {
  EXPECT_EQ(Compare(Attempt(7, Event::kAcknowledged), {{7, "1,1,2,2"}}).notWhole, 1u);
}

TEST(Account, WhatWasRefusedIsNotThere) {
  Account const account = Compare(Attempt(7, Event::kRefused), {});
  EXPECT_EQ(account.refused, 1u);
  EXPECT_EQ(account.Faults(), 0u);
}

TEST(Account, WhatWasRefusedAndIsThereIsAFault) {
  Account const account = Compare(Attempt(7, Event::kRefused), {{7, "1,2"}});
  EXPECT_EQ(account.refusedStored, 1u);
  EXPECT_EQ(account.Faults(), 1u);
}

TEST(Account, TheUnknownMayBeThere) {
  Account const account = Compare(Attempt(7, Event::kUnknown), {{7, "1,2"}});
  EXPECT_EQ(account.unknown, 1u);
  EXPECT_EQ(account.unknownStored, 1u);
  EXPECT_EQ(account.Faults(), 0u);
}

TEST(Account, TheUnknownMayBeMissing) {
  Account const account = Compare(Attempt(7, Event::kUnknown), {});
  EXPECT_EQ(account.unknown, 1u);
  EXPECT_EQ(account.unknownStored, 0u);
  EXPECT_EQ(account.Faults(), 0u);
}

TEST(Account, TheUnknownIsNotThereByHalf) { EXPECT_EQ(Compare(Attempt(7, Event::kUnknown), {{7, "2"}}).notWhole, 1u); }

TEST(Account, AnIntentWithoutAnOutcomeIsUnclear) { EXPECT_EQ(Compare({At(0, Event::kIntent, 7)}, {}).unclear, 1u); }

TEST(Account, TwoOutcomesOfAnIntentAreUnclear) {
  std::vector<Line> journal = Attempt(7, Event::kRefused);
  journal.push_back(At(2, Event::kAcknowledged, 7));
  EXPECT_EQ(Compare(journal, {{7, "1,2"}}).unclear, 1u);
}

TEST(Account, AnIdBegunTwiceIsUnclear) {
  std::vector<Line> journal = Attempt(7, Event::kAcknowledged);
  journal.push_back(At(2, Event::kIntent, 7));
  EXPECT_EQ(Compare(journal, {{7, "1,2"}}).unclear, 1u);
}

TEST(Account, AnOutcomeWithoutAnIntentIsUnclear) {
  EXPECT_EQ(Compare({At(0, Event::kAcknowledged, 7)}, {{7, "1,2"}}).unclear, 1u);
}

TEST(Account, RowsOfNobodyAreAFault) {
  Account const account = Compare({}, {{7, "1,2"}});
  EXPECT_EQ(account.strange, 1u);
  EXPECT_EQ(account.Faults(), 1u);
}

TEST(Recovery, EndsWithTheAcknowledgementOfWhatWasBegunWhenTheNodeWasGone) {
  std::vector<Line> const journal = {
      At(5, Event::kIntent, 1),  At(15, Event::kAcknowledged, 1),  // begun before
      At(20, Event::kIntent, 2), At(28, Event::kAcknowledged, 2),  // perhaps, too
      At(30, Event::kIntent, 3), At(45, Event::kAcknowledged, 3),  //
      At(50, Event::kIntent, 4), At(55, Event::kAcknowledged, 4),
  };
  Recovery const recovery = RecoveryAfter(kKill, kGone, {journal});
  EXPECT_EQ(recovery.all, std::vector<Clock::duration>{milliseconds(35)});
  EXPECT_EQ(recovery.hit, std::vector<Clock::duration>{});
}

TEST(Recovery, KnowsTheWritersThatLostTheirConnection) {
  std::vector<Line> const lost = {
      At(5, Event::kIntent, 1),
      At(20, Event::kRefused, 1, "lost: DB Error 0 () in query"),
      At(30, Event::kIntent, 2),
      At(45, Event::kAcknowledged, 2),
  };
  std::vector<Line> const refused = {
      At(5, Event::kIntent, 1),
      At(20, Event::kRefused, 1, "DB Error 1213 (Deadlock) in query"),
      At(30, Event::kIntent, 2),
      At(65, Event::kAcknowledged, 2),
  };
  Recovery const recovery = RecoveryAfter(kKill, kGone, {lost, refused});
  EXPECT_EQ(recovery.hit, std::vector<Clock::duration>{milliseconds(35)});
  EXPECT_EQ(recovery.all, (std::vector<Clock::duration>{milliseconds(35), milliseconds(55)}));
}

TEST(Recovery, LeavesOutAWriterThatDidNotRecover) {
  std::vector<Line> const journal = {At(20, Event::kIntent, 1), At(30, Event::kUnknown, 1)};
  EXPECT_TRUE(RecoveryAfter(kKill, kGone, {journal}).all.empty());
}

TEST(Recovery, MedianIsTheMiddleOne) {
  EXPECT_EQ(Median({milliseconds(9), milliseconds(1), milliseconds(4)}), milliseconds(4));
}

TEST(Recovery, WorstIsTheLongest) {
  EXPECT_EQ(Worst({milliseconds(1), milliseconds(9), milliseconds(4)}), milliseconds(9));
}

TEST_F(JournalFile, IsReadAsItWasWritten) {
  Journal(Name()).Write(At(7, Event::kUnknown, 42, "DB Error 0 () in query"));
  std::vector<Line> const lines = ReadJournal(Name());
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_EQ(lines[0].event, Event::kUnknown);
  EXPECT_EQ(lines[0].id, 42);
  EXPECT_EQ(lines[0].at, Clock::time_point(milliseconds(7)));
  EXPECT_EQ(lines[0].why, "DB Error 0 () in query");
}

TEST_F(JournalFile, IsInTheFileAtOnce) {
  Journal journal(Name());
  journal.Write(At(7, Event::kIntent, 42));
  EXPECT_EQ(ReadJournal(Name()).size(), 1u);
}

TEST_F(JournalFile, CutOffInTheMiddleIsAnError) {
  std::ofstream(Name()) << "acknowledged 4";
  EXPECT_THROW(ReadJournal(Name()), std::runtime_error);
}

TEST_F(JournalFile, MissingIsAnError) { EXPECT_THROW(ReadJournal(Name()), std::runtime_error); }

}  // namespace corvane::test
