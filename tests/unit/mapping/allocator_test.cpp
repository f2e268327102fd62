#include "corvane/mapping/allocator.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <new>
#include <string>
#include <type_traits>
#include <vector>

namespace {

using Numbers = std::vector<int, ASAllocator<int>>;

template <class T, class U>
using Rebound = typename std::allocator_traits<ASAllocator<T>>::template rebind_alloc<U>;

TEST(Allocator, StaysItselfWhenReboundToAnotherType) {
  EXPECT_TRUE((std::is_same<Rebound<int, std::string>, ASAllocator<std::string>>::value));
}

TEST(Allocator, ConvertsToThatOfAnotherType) {
  ASAllocator<int> const numbers;
  ASAllocator<std::string> texts(numbers);
  std::string* const text = texts.allocate(1);
  EXPECT_NE(text, nullptr);
  texts.deallocate(text, 1);
}

TEST(Allocator, GivesMemoryAlignedForTheType) {
  struct alignas(64) Line {
    char bytes[64];
  };
  ASAllocator<Line> lines;
  Line* const line = lines.allocate(3);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(line) % 64, 0U);
  lines.deallocate(line, 3);
}

TEST(Allocator, FreesWhatAnotherOneGave) {
  int* const number = ASAllocator<int>().allocate(1);
  ASAllocator<int>().deallocate(number, 1);
  EXPECT_TRUE(ASAllocator<int>() == ASAllocator<int>());
  EXPECT_FALSE(ASAllocator<int>() != ASAllocator<int>());
}

TEST(Allocator, EqualsThatOfAnotherType) {
  EXPECT_TRUE(ASAllocator<int>() == ASAllocator<std::string>());
  EXPECT_FALSE(ASAllocator<int>() != ASAllocator<std::string>());
}

TEST(Allocator, RefusesMoreThanThereCanBe) {
  EXPECT_THROW(ASAllocator<int>().allocate(static_cast<std::size_t>(-1)), std::bad_alloc);
}

TEST(Allocator, ServesAVectorThatGrows) {
  Numbers numbers;
  numbers.assign(1000, 7);
  numbers.push_back(8);
  EXPECT_EQ(numbers.size(), 1001U);
  EXPECT_EQ(numbers.front(), 7);
  EXPECT_EQ(numbers.back(), 8);
}

TEST(Allocator, LetsListsExchangeTheirElements) {
  std::list<std::string, ASAllocator<std::string>> from{"a", "b"};
  std::list<std::string, ASAllocator<std::string>> to{"c"};
  to.splice(to.end(), from);
  EXPECT_EQ(to, (std::list<std::string, ASAllocator<std::string>>{"c", "a", "b"}));
  EXPECT_TRUE(from.empty());
}

}  // namespace
