#include "corvane/cache/map_buffer.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <climits>
#include <cstring>
#include <fstream>
#include <string>
#include <type_traits>
#include <vector>

#include "corvane/data/value/exception.h"

// The allocators of the sanitizers end the program when memory runs out, and touch what others only map.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define CORVANE_TEST_OWN_ALLOCATOR 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer) || __has_feature(memory_sanitizer)
#define CORVANE_TEST_OWN_ALLOCATOR 1
#endif
#endif

namespace {

int const kPage = getpagesize();

std::string Bytes(void const* bytes, std::size_t length) {
  return std::string(static_cast<char const*>(bytes), length);
}

// ---- The block ----

TEST(MapBuffer, StartsWithoutABlock) {
  MapBuffer const buffer;
  EXPECT_EQ(buffer.GetBegin(), nullptr);
  EXPECT_EQ(buffer.Capacity(), 0);
}

TEST(MapBuffer, IsNeitherCopiedNorAssigned) {
  EXPECT_FALSE(std::is_copy_constructible_v<MapBuffer>);
  EXPECT_FALSE(std::is_copy_assignable_v<MapBuffer>);
  EXPECT_FALSE(std::is_move_constructible_v<MapBuffer>);
  EXPECT_FALSE(std::is_move_assignable_v<MapBuffer>);
}

TEST(MapBuffer, GrowsInWholePages) {
  struct Row {
    int size;
    int capacity;
  };
  Row const rows[] = {
      {1, kPage},
      {kPage - 1, kPage},
      {kPage, kPage},
      {kPage + 1, 2 * kPage},
      {2 * kPage, 2 * kPage},
      {2 * kPage + 1, 3 * kPage},
      {100 * kPage - 1, 100 * kPage},
  };
  for (Row const& row : rows) {
    MapBuffer buffer;
    EXPECT_NE(buffer.Get(row.size), nullptr) << row.size;
    EXPECT_EQ(buffer.Capacity(), row.capacity) << row.size;
  }
}

TEST(MapBuffer, ReturnsTheBlockThatItHolds) {
  MapBuffer buffer;
  void* const first = buffer.Get(1);
  EXPECT_EQ(first, buffer.GetBegin());
  void* const grown = buffer.Get(40 * kPage);
  EXPECT_EQ(grown, buffer.GetBegin());
}

TEST(MapBuffer, ReturnsTheSameBlockWhileTheSizeFits) {
  MapBuffer buffer;
  void* const block = buffer.Get(1);
  EXPECT_EQ(buffer.Get(kPage), block);
  EXPECT_EQ(buffer.Get(2), block);
  EXPECT_EQ(buffer.Capacity(), kPage);
}

TEST(MapBuffer, GrowsWhenTheSizeDoesNotFit) {
  MapBuffer buffer;
  buffer.Get(1);
  buffer.Get(kPage + 1);
  EXPECT_EQ(buffer.Capacity(), 2 * kPage);
}

TEST(MapBuffer, GrowingKeepsTheContent) {
  MapBuffer buffer;
  std::string content(static_cast<std::size_t>(kPage), 'a');
  content.front() = 'b';
  content.back() = 'c';
  std::memcpy(buffer.Get(kPage), content.data(), content.size());
  for (int pages = 2; pages < 400; pages += 13) buffer.Get(pages * kPage);
  EXPECT_TRUE(Bytes(buffer.GetBegin(), content.size()) == content);
}

TEST(MapBuffer, IsWritableToItsEnd) {
  MapBuffer buffer;
  void* const block = buffer.Get(3 * kPage + 1);
  std::string const content(4 * static_cast<std::size_t>(kPage), 'x');
  std::memcpy(block, content.data(), content.size());
  EXPECT_TRUE(Bytes(block, content.size()) == content);
}

TEST(MapBuffer, NeverShrinks) {
  MapBuffer buffer;
  void* const block = buffer.Get(5 * kPage);
  EXPECT_EQ(buffer.Get(1), block);
  EXPECT_EQ(buffer.Capacity(), 5 * kPage);
}

TEST(MapBuffer, NothingIsNoSize) {
  MapBuffer buffer;
  EXPECT_EQ(buffer.Get(0), nullptr);
  EXPECT_EQ(buffer.Capacity(), 0);
}

TEST(MapBuffer, ANegativeSizeCountsAsNothing) {
  MapBuffer buffer;
  EXPECT_EQ(buffer.Get(-1), nullptr);
  EXPECT_EQ(buffer.Get(INT_MIN), nullptr);
  EXPECT_EQ(buffer.Capacity(), 0);
}

TEST(MapBuffer, NothingAndNegativeSizesLeaveTheBlock) {
  MapBuffer buffer;
  void* const block = buffer.Get(1);
  EXPECT_EQ(buffer.Get(0), block);
  EXPECT_EQ(buffer.Get(-1), block);
  EXPECT_EQ(buffer.Get(INT_MIN), block);
  EXPECT_EQ(buffer.Capacity(), kPage);
}

#ifndef CORVANE_TEST_OWN_ALLOCATOR

TEST(MapBuffer, RoundsUpToTheLargestIntAtMost) {
  MapBuffer buffer;
  EXPECT_NE(buffer.Get(INT_MAX - kPage + 2), nullptr);
  EXPECT_EQ(buffer.Capacity(), INT_MAX);
}

TEST(MapBuffer, HoldsTheLargestInt) {
  MapBuffer buffer;
  EXPECT_NE(buffer.Get(INT_MAX), nullptr);
  EXPECT_EQ(buffer.Capacity(), INT_MAX);
}

TEST(MapBuffer, RoundsTheLastWholePageToItself) {
  MapBuffer buffer;
  EXPECT_NE(buffer.Get(INT_MAX - kPage + 1), nullptr);
  EXPECT_EQ(buffer.Capacity(), INT_MAX - kPage + 1);
}

// While it lives, the program gets little more memory than it has.
class LowMemory {
 public:
  LowMemory() {
    getrlimit(RLIMIT_AS, &before_);
    rlimit low = before_;
    low.rlim_cur = Used() + 64 * 1024 * 1024;
    setrlimit(RLIMIT_AS, &low);
  }
  ~LowMemory() { setrlimit(RLIMIT_AS, &before_); }
  LowMemory(LowMemory const&) = delete;
  LowMemory& operator=(LowMemory const&) = delete;

 private:
  static rlim_t Used() {
    rlim_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    return pages * static_cast<rlim_t>(kPage);
  }

  rlimit before_{};
};

constexpr int kTooMuch = 1024 * 1024 * 1024;

// What is thrown when there is no memory for so many bytes.
std::string Refused(MapBuffer& buffer, int size) {
  LowMemory const low;
  try {
    buffer.Get(size);
  } catch (AException const& refused) {
    return refused.what();
  }
  return "nothing";
}

TEST(MapBuffer, OutOfMemoryThrows) {
  MapBuffer buffer;
  EXPECT_EQ(Refused(buffer, kTooMuch), "Out of memory for the row buffer. ");
  EXPECT_EQ(buffer.GetBegin(), nullptr);
  EXPECT_EQ(buffer.Capacity(), 0);
}

TEST(MapBuffer, OutOfMemoryLeavesBlockAndCapacity) {
  MapBuffer buffer;
  void* const block = buffer.Get(1);
  std::memcpy(block, "kept", 4);
  EXPECT_EQ(Refused(buffer, kTooMuch), "Out of memory for the row buffer. ");
  EXPECT_EQ(buffer.GetBegin(), block);
  EXPECT_EQ(buffer.Capacity(), kPage);
  EXPECT_EQ(Bytes(block, 4), "kept");
}

TEST(MapBuffer, GrowsAgainAfterARefusal) {
  MapBuffer buffer;
  std::memcpy(buffer.Get(1), "kept", 4);
  EXPECT_EQ(Refused(buffer, kTooMuch), "Out of memory for the row buffer. ");
  EXPECT_EQ(Bytes(buffer.Get(kPage + 1), 4), "kept");
  EXPECT_EQ(buffer.Capacity(), 2 * kPage);
}

#endif

// ---- Binary values ----

TEST(MapBuffer, KeepsACopyOfABlob) {
  MapBuffer buffer;
  std::string bytes("a\0b", 3);
  RealBlob const* const kept = buffer.KeepBlob(3, bytes.data());
  bytes = "xyz";
  EXPECT_EQ(kept->Length(), 3U);
  EXPECT_EQ(Bytes(kept->voidptr(), 3), std::string("a\0b", 3));
}

TEST(MapBuffer, KeepsEveryBlobWhereItIs) {
  MapBuffer buffer;
  std::vector<RealBlob const*> kept;
  std::vector<void const*> bytes;
  for (int number = 0; number < 1000; ++number) {
    kept.push_back(buffer.KeepBlob(sizeof number, &number));
    bytes.push_back(kept.back()->voidptr());
  }
  for (int number = 0; number < 1000; ++number) {
    RealBlob const& blob = *kept[static_cast<std::size_t>(number)];
    ASSERT_EQ(blob.Length(), sizeof number);
    ASSERT_EQ(blob.voidptr(), bytes[static_cast<std::size_t>(number)]);
    ASSERT_EQ(std::memcmp(blob.voidptr(), &number, sizeof number), 0);
  }
}

TEST(MapBuffer, KeepsAnEmptyBlobWhichIsNotNull) {
  MapBuffer buffer;
  for (RealBlob const* const kept : {buffer.KeepBlob(0, nullptr), buffer.KeepBlob(0, "")}) {
    EXPECT_EQ(kept->Length(), 0U);
    EXPECT_EQ(kept->IsNull(), 0);
  }
}

TEST(MapBuffer, KeepsALargeBlob) {
  MapBuffer buffer;
  std::string const bytes(3'000'001, 'x');
  RealBlob const* const kept = buffer.KeepBlob(3'000'001, bytes.data());
  EXPECT_EQ(kept->Length(), 3'000'001U);
  EXPECT_TRUE(Bytes(kept->voidptr(), bytes.size()) == bytes);
}

TEST(MapBuffer, KeepsACopyOfBytes) {
  MapBuffer buffer;
  std::string bytes("a\0b", 3);
  unsigned char const* const kept = buffer.KeepBytes(bytes.data(), 3);
  bytes = "xyz";
  EXPECT_EQ(Bytes(kept, 3), std::string("a\0b", 3));
}

TEST(MapBuffer, KeepsBytesOfAllLengthsWhereTheyAre) {
  MapBuffer buffer;
  struct Kept {
    unsigned char const* bytes;
    std::string expected;
  };
  std::vector<Kept> kept;
  char fill = 'a';
  for (int round = 0; round < 40; ++round) {
    for (std::size_t const length : {1U, 7U, 4096U, 20000U, 65535U, 1U, 65536U, 1U, 65537U, 1U, 200000U, 3U}) {
      std::string const bytes(length, fill);
      kept.push_back({buffer.KeepBytes(bytes.data(), length), bytes});
      fill = fill == 'z' ? 'a' : static_cast<char>(fill + 1);
    }
  }
  for (Kept const& one : kept) ASSERT_TRUE(Bytes(one.bytes, one.expected.size()) == one.expected);
}

TEST(MapBuffer, KeepsNoBytes) {
  MapBuffer buffer;
  buffer.KeepBytes(nullptr, 0);
  unsigned char const* const first = buffer.KeepBytes("first", 5);
  buffer.KeepBytes(nullptr, 0);
  buffer.KeepBytes("", 0);
  unsigned char const* const second = buffer.KeepBytes("second", 6);
  EXPECT_EQ(Bytes(first, 5), "first");
  EXPECT_EQ(Bytes(second, 6), "second");
}

TEST(MapBuffer, KeepsValuesWhenTheBlockMoves) {
  MapBuffer buffer;
  buffer.Get(1);
  RealBlob const* const blob = buffer.KeepBlob(4, "blob");
  unsigned char const* const bytes = buffer.KeepBytes("bytes", 5);
  buffer.Get(1000 * kPage);
  EXPECT_EQ(Bytes(blob->voidptr(), 4), "blob");
  EXPECT_EQ(Bytes(bytes, 5), "bytes");
}

TEST(MapBuffer, KeepingValuesLeavesTheBlockAlone) {
  MapBuffer buffer;
  buffer.KeepBlob(4, "blob");
  buffer.KeepBytes("bytes", 5);
  EXPECT_EQ(buffer.GetBegin(), nullptr);
  EXPECT_EQ(buffer.Capacity(), 0);
}

}  // namespace
