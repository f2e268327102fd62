// Depths and sizes that nobody writes by hand, but that programs come to.
#include <gtest/gtest.h>

#include <ctime>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "corvane/corvane.h"
#include "tests/support/small_stack.h"
#include "tests/support/tally.h"

using corvane::test::RunOnSmallStack;
using corvane::test::Tally;

namespace {

constexpr int kDepth = 10000;

// In seconds of the processor, which others on the machine do not take away. Builds for debugging take what they take.
#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define CORVANE_IS_SANITIZED
#endif
#endif
#if defined(__OPTIMIZE__) && !defined(CORVANE_IS_SANITIZED) && !defined(__SANITIZE_ADDRESS__)
constexpr std::clock_t kAtMost = 1;
#else
constexpr std::clock_t kAtMost = 20;
#endif

// Runs the action on a small stack; false when it takes longer than it may.
template <class Action>
bool IsQuick(Action action) {
  std::clock_t const start = std::clock();
  RunOnSmallStack(std::move(action));
  return std::clock() - start < kAtMost * CLOCKS_PER_SEC;
}

std::string Repeated(std::string const& text, int times) {
  std::string all;
  for (int i = 0; i < times; ++i) all += text;
  return all;
}

class DeepCondition : public ::testing::Test {
 protected:
  ASAttribute const a{"a"};
};

TEST_F(DeepCondition, OfAndsNestedToTheLeftIsRenderedInTime) {
  std::string text;
  EXPECT_TRUE(IsQuick([&] {
    ASComparison all = a == 1;
    for (int i = 0; i < kDepth; ++i) all&& a == 1;
    text = all.Query().ToString();
  }));
  EXPECT_EQ(text, Repeated("(", kDepth) + "a=1" + Repeated(") AND (a=1)", kDepth));
  Tally("conditions of 10,000 words, deeply nested", "text, time, stack");
}

TEST_F(DeepCondition, OfOrsNestedToTheLeftIsRenderedInTime) {
  std::string text;
  EXPECT_TRUE(IsQuick([&] {
    ASComparison all = a == 1;
    for (int i = 0; i < kDepth; ++i) all || a == 1;
    text = all.Query().ToString();
  }));
  EXPECT_EQ(text, Repeated("(", kDepth) + "a=1" + Repeated(") OR (a=1)", kDepth));
  Tally("conditions of 10,000 words, deeply nested", "text, time, stack");
}

TEST_F(DeepCondition, NestedToTheRightIsRenderedInTime) {
  std::string text;
  EXPECT_TRUE(IsQuick([&] {
    Str all = (a == 1).Query();
    for (int i = 0; i < kDepth; ++i) {
      ASComparison next = a == 1;
      if (i % 2 == 0) {
        next&& ASComparison(std::move(all), nullptr, nullptr);
      } else {
        next || ASComparison(std::move(all), nullptr, nullptr);
      }
      all = next.Query();
    }
    text = all.ToString();
  }));
  EXPECT_EQ(text, Repeated("(a=1) OR ((a=1) AND (", kDepth / 2) + "a=1" + Repeated(")", kDepth));
  Tally("conditions of 10,000 words, deeply nested", "text, time, stack");
}

TEST_F(DeepCondition, OfNegationsIsRenderedInTime) {
  std::string text;
  EXPECT_TRUE(IsQuick([&] {
    Str all = (a == 1).Query();
    for (int i = 0; i < kDepth; ++i) all = (!ASComparison(std::move(all), nullptr, nullptr)).Query();
    text = all.ToString();
  }));
  EXPECT_EQ(text, Repeated(" NOT (", kDepth) + "a=1" + Repeated(") ", kDepth));
  Tally("conditions of 10,000 words, deeply nested", "text, time, stack");
}

TEST_F(DeepCondition, OnAggregatesIsRenderedInTime) {
  ASGroupAttribute const g("SUM(a)", nullptr, nullptr);
  std::string text;
  EXPECT_TRUE(IsQuick([&] {
    ASGroupComparison all = g == 1;
    for (int i = 0; i < kDepth; ++i) all&& g == 1;
    text = all.Query().ToString();
  }));
  EXPECT_EQ(text, Repeated("(", kDepth) + "SUM(a)=1" + Repeated(") AND (SUM(a)=1)", kDepth));
  Tally("conditions of 10,000 words, deeply nested", "text, time, stack");
}

class DeepExpression : public DeepCondition {};

TEST_F(DeepExpression, NestedToTheLeftIsRenderedInTime) {
  std::string text;
  EXPECT_TRUE(IsQuick([&] {
    ASExpression sum(a);
    for (int i = 0; i < kDepth; ++i) sum = sum + 1;
    text = sum.Query().ToString();
  }));
  EXPECT_EQ(text, "a" + Repeated(" + '1'", kDepth));
  Tally("expressions of 10,000 operators, deeply nested", "text, time, stack");
}

TEST_F(DeepExpression, NestedToTheRightIsRenderedInTime) {
  std::string text;
  EXPECT_TRUE(IsQuick([&] {
    ASExpression product("x");
    for (int i = 0; i < kDepth; ++i) product = a * product;
    text = product.Query().ToString();
  }));
  EXPECT_EQ(text, Repeated("a * ", kDepth) + "'x'");
  Tally("expressions of 10,000 operators, deeply nested", "text, time, stack");
}

// 2^13 leaves from thirteen operators.
TEST_F(DeepExpression, OfItsOwnHalvesIsRenderedInTime) {
  std::string text;
  EXPECT_TRUE(IsQuick([&] {
    ASExpression sum(a);
    for (int i = 0; i < 13; ++i) sum = sum + sum;
    text = sum.Query().ToString();
  }));
  EXPECT_EQ(text, "a" + Repeated(" + a", 8191));
  Tally("expressions of 10,000 operators, deeply nested", "text, time, stack");
}

TEST_F(DeepExpression, OfManyMoreOperatorsIsDestroyed) {
  EXPECT_TRUE(IsQuick([&] {
    ASExpression sum(a);
    for (int i = 0; i < 200000; ++i) sum = sum - 1;
  }));
}

TEST_F(DeepExpression, IsSharedByThreads) {
  ASExpression sum(a);
  for (int i = 0; i < 100; ++i) sum = sum + 1;
  ASExpression const shared(sum);
  sum = ASExpression();
  std::string const expected = shared.Query().ToString();
  std::vector<int> right(8);
  std::vector<std::thread> threads;
  for (int& own : right) {
    threads.emplace_back([&shared, &expected, &own] {
      for (int i = 0; i < 100; ++i) {
        ASExpression const copy = shared * 2;
        if (copy.Query().ToString() == expected + " * '2'") ++own;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(right, std::vector<int>(8, 100));
}

// A list of values in a condition is a column of that name.
TEST_F(DeepCondition, OfAListOfTenThousandLiteralsIsRenderedInTime) {
  std::string text;
  EXPECT_TRUE(IsQuick([&] {
    Str list = corvane::Literal(Str("it's"));
    for (int i = 1; i < kDepth; ++i) list << ", " << corvane::Literal(Int(i));
    text = a.In(ASAttribute(list)).Query().ToString();
  }));
  EXPECT_EQ(text.substr(0, 24), "a IN ('it\\'s', 1, 2, 3, ");
  EXPECT_EQ(text.substr(text.size() - 11), "9998, 9999)");
}

class Capacity : public ::testing::TestWithParam<unsigned> {
 protected:
  static std::string Bytes(unsigned count) { return std::string(count, '\''); }
};

INSTANTIATE_TEST_SUITE_P(Of, Capacity, ::testing::Values(0U, 1U, 65535U, 65536U, 16U * 1024 * 1024),
                         [](auto const& bytes) { return std::to_string(bytes.param) + "Bytes"; });

TEST_P(Capacity, OfATextIsFilledAndCutThere) {
  unsigned const capacity = GetParam();
  ASVStr text(capacity);
  EXPECT_EQ(text.Capacity(), capacity);
  for (unsigned const length : {capacity, capacity + 1, 2 * capacity + 10}) {
    text = Bytes(length);
    EXPECT_EQ(text.ToString(), Bytes(capacity));
    text.SetNull();
    text.Fill(Bytes(length).data(), length);
    EXPECT_EQ(text.ToString(), Bytes(capacity));
  }
  EXPECT_EQ(corvane::Literal(text).length(), static_cast<int>(2 * capacity + 2));
  ASVStr const copy(text);
  EXPECT_EQ(copy.ToString(), Bytes(capacity));
  Tally("capacities of values, 0 to 16 MiB", "filled, cut, copied, escaped");
}

TEST_P(Capacity, OfAFixedTextIsPaddedAndCutThere) {
  unsigned const capacity = GetParam();
  ASStr text(capacity);
  text = "";
  EXPECT_EQ(text.getstr().ToString(), std::string(capacity, ' '));
  text = Bytes(capacity + 1);
  EXPECT_EQ(text.getstr().ToString(), Bytes(capacity));
  ASStr const copy(text);
  EXPECT_TRUE(copy == text);
  Tally("capacities of values, 0 to 16 MiB", "filled, cut, copied, escaped");
}

TEST_P(Capacity, OfALargeBinaryIsItsLength) {
  unsigned const capacity = GetParam();
  ASRealBlob blob(capacity);
  EXPECT_EQ(blob.Length(), capacity);
  EXPECT_EQ(blob.IsNull() != 0, capacity == 0);
  blob = RealBlob(capacity, Bytes(capacity).data());
  ASRealBlob const copy(blob);
  EXPECT_TRUE(copy == blob);
  EXPECT_EQ(copy.Length(), capacity);
  Tally("capacities of values, 0 to 16 MiB", "filled, cut, copied, escaped");
}

}  // namespace
