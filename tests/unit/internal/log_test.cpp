#include "corvane/internal/log.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <sstream>
#include <string>

namespace {

using corvane::internal::kLogCommands;
using corvane::internal::kLogFailures;
using corvane::internal::kLogNotices;
using corvane::internal::kLogStatements;
using corvane::internal::Log;
using corvane::internal::Pointer;
using corvane::internal::WriteLog;

std::string Written(std::uintptr_t address) {
  Str text;
  text << Pointer{reinterpret_cast<void*>(address)};
  return text.ToString();
}

// What the action writes to the standard error stream.
template <class Action>
std::string LogOf(Action action) {
  testing::internal::CaptureStderr();
  action();
  return testing::internal::GetCapturedStderr();
}

// ---- addresses

TEST(LogPointer, IsHexadecimalInLowerCase) {
  EXPECT_EQ(Written(0x7ffd10), "0x7ffd10");
  EXPECT_EQ(Written(0x123456789abcdef0), "0x123456789abcdef0");
}

TEST(LogPointer, HasNoLeadingZeros) { EXPECT_EQ(Written(1), "0x1"); }

TEST(LogPointer, OfTheLastAddressHasAllDigits) { EXPECT_EQ(Written(UINTPTR_MAX), "0xffffffffffffffff"); }

TEST(LogPointer, OfNothingIsZero) { EXPECT_EQ(Written(0), "0"); }

TEST(LogPointer, IsThatOfTheStandardStreams) {
  int object = 0;
  std::ostringstream expected;
  expected << static_cast<void const*>(&object);
  Str text;
  text << Pointer{&object};
  EXPECT_EQ(text.ToString(), expected.str());
}

TEST(LogPointer, IsAppended) {
  Str text("a ");
  text << Pointer{reinterpret_cast<void*>(std::uintptr_t{0xab})} << " b " << Pointer{nullptr} << " c";
  EXPECT_EQ(text.ToString(), "a 0xab b 0 c");
}

TEST(LogPointer, AppendingReturnsTheText) {
  Str text;
  EXPECT_EQ(&(text << Pointer{nullptr}), &text);
}

// ---- writing

TEST(Log, WritesATextAsItStands) {
  Str const text("a\0b\nc", 5);
  EXPECT_EQ(LogOf([&] { WriteLog(text); }), std::string("a\0b\nc", 5));
}

TEST(Log, OfANullTextWritesNothing) {
  EXPECT_EQ(LogOf([] { WriteLog(Str()); }), "");
}

TEST(Log, WritesItsPartsOneBehindTheOther) {
  EXPECT_EQ(LogOf([] { Log(1, 0, "SESSION ", 7UL, ' ', Str("x"), Pointer{nullptr}, "\n"); }), "SESSION 7 x0\n");
}

// ---- the levels

struct Gate {
  char const* name;
  int gate;
  int lastSilent;
};

class LogGate : public testing::TestWithParam<Gate> {};

TEST_P(LogGate, LetsNothingThroughUpToItsLevel) {
  EXPECT_EQ(LogOf([] { Log(GetParam().lastSilent, GetParam().gate, "x"); }), "");
  EXPECT_EQ(LogOf([] { Log(-1, GetParam().gate, "x"); }), "");
}

TEST_P(LogGate, OpensAboveItsLevel) {
  EXPECT_EQ(LogOf([] { Log(GetParam().lastSilent + 1, GetParam().gate, "x"); }), "x");
  EXPECT_EQ(LogOf([] { Log(1000, GetParam().gate, "x"); }), "x");
}

INSTANTIATE_TEST_SUITE_P(Gates, LogGate,
                         testing::Values(Gate{"Failures", kLogFailures, 0}, Gate{"Statements", kLogStatements, 1},
                                         Gate{"Commands", kLogCommands, 2}, Gate{"Notices", kLogNotices, 4}),
                         [](testing::TestParamInfo<Gate> const& row) { return std::string(row.param.name); });

// A part that tells whether it was made a text.
struct Probe {
  bool& asked;

  friend Str& operator<<(Str& out, Probe const& probe) {
    probe.asked = true;
    return out << "probe";
  }
};

TEST(Log, BuildsNoTextThatIsNotWritten) {
  bool asked = false;
  LogOf([&] { Log(1, kLogStatements, Probe{asked}); });
  EXPECT_FALSE(asked);
}

TEST(Log, BuildsTheTextThatIsWritten) {
  bool asked = false;
  EXPECT_EQ(LogOf([&] { Log(2, kLogStatements, Probe{asked}); }), "probe");
  EXPECT_TRUE(asked);
}

}  // namespace
