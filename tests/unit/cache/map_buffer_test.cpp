#include "corvane/cache/map_buffer.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <memory>
#include <string>
#include <thread>
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

// A block from this size on has pages of its own.
constexpr int kOwnPages = 32 * 1024;

// So many bytes, each of them told by its place.
std::string Content(std::size_t length) {
  std::string content(length, '\0');
  for (std::size_t i = 0; i < length; ++i) content[i] = static_cast<char>(1 + i % 251);
  return content;
}

// Fills the whole block with bytes that are not 0.
std::string Fill(MapBuffer& buffer) {
  std::string const content = Content(static_cast<std::size_t>(buffer.Capacity()));
  std::copy(content.begin(), content.end(), static_cast<char*>(buffer.GetBegin()));
  return content;
}

// Whether the block begins with the content and has zeros behind it up to its end.
testing::AssertionResult HoldsAndIsZeroBehind(MapBuffer const& buffer, std::string const& content) {
  std::string const bytes = Bytes(buffer.GetBegin(), static_cast<std::size_t>(buffer.Capacity()));
  if (bytes.compare(0, content.size(), content) != 0) return testing::AssertionFailure() << "the content is another";
  std::size_t const other = bytes.find_first_not_of('\0', content.size());
  if (other == std::string::npos) return testing::AssertionSuccess();
  return testing::AssertionFailure() << "the byte at " << other << " is not 0";
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

TEST(MapBuffer, StartsZeroFilled) {
  for (int const size : {1, kPage + 1, kOwnPages - kPage, kOwnPages, 10 * kOwnPages}) {
    MapBuffer buffer;
    buffer.Get(size);
    EXPECT_TRUE(HoldsAndIsZeroBehind(buffer, "")) << size;
  }
}

TEST(MapBuffer, GrowsZeroFilled) {
  MapBuffer buffer;
  for (int const size : {1, kPage + 1, 9 * kPage, kOwnPages - kPage, kOwnPages, kOwnPages + 1, 8 * kOwnPages,
                         8 * kOwnPages + 1, 50 * kOwnPages}) {
    std::string const content = Fill(buffer);
    buffer.Get(size);
    ASSERT_TRUE(HoldsAndIsZeroBehind(buffer, content)) << size;
  }
}

TEST(MapBuffer, GrowsZeroFilledInOneStepFromASmallBlock) {
  for (int const size : {kOwnPages - kPage, kOwnPages - 1, kOwnPages, kOwnPages + 1, 100 * kOwnPages}) {
    MapBuffer buffer;
    buffer.Get(1);
    std::string const content = Fill(buffer);
    buffer.Get(size);
    ASSERT_TRUE(HoldsAndIsZeroBehind(buffer, content)) << size;
  }
}

// The pages of a freed block may come back in the next one.
TEST(MapBuffer, StartsAndGrowsZeroFilledAfterAFullBlockWasFreed) {
  for (int const freed : {kOwnPages, 10 * kOwnPages, 100 * kOwnPages, 1000 * kOwnPages}) {
    for (int const size : {1, kOwnPages, 3 * kOwnPages, 100 * kOwnPages}) {
      {
        MapBuffer full;
        full.Get(freed);
        Fill(full);
      }
      MapBuffer buffer;
      buffer.Get(size);
      ASSERT_TRUE(HoldsAndIsZeroBehind(buffer, "")) << freed << ' ' << size;
      std::string const content = Fill(buffer);
      buffer.Get(2 * size);
      ASSERT_TRUE(HoldsAndIsZeroBehind(buffer, content)) << freed << ' ' << size;
      buffer.Fit(size);
      buffer.Get(200 * kOwnPages);
      ASSERT_TRUE(HoldsAndIsZeroBehind(buffer, content)) << freed << ' ' << size;
    }
  }
}

TEST(MapBuffer, IsFreedByAnotherThreadAndByOneThatEnds) {
  auto buffer = std::make_unique<MapBuffer>();
  buffer->Get(10 * kOwnPages);
  std::thread([&buffer] { buffer.reset(); }).join();
  std::thread([] {
    thread_local MapBuffer late;  // freed with the thread's other objects
    late.Get(5 * kOwnPages);
    MapBuffer early;
    early.Get(10 * kOwnPages);
  }).join();
  MapBuffer after;
  after.Get(10 * kOwnPages);
  EXPECT_TRUE(HoldsAndIsZeroBehind(after, ""));
}

TEST(MapBuffer, GrowDoublesTheBlock) {
  MapBuffer buffer;
  EXPECT_NE(buffer.Grow(1), nullptr);
  EXPECT_EQ(buffer.Capacity(), kPage);
  buffer.Grow(kPage + 1);
  EXPECT_EQ(buffer.Capacity(), 2 * kPage);
  buffer.Grow(2 * kPage + 1);
  EXPECT_EQ(buffer.Capacity(), 4 * kPage);
}

TEST(MapBuffer, GrowGivesWhatIsAskedForWhenThatIsMoreThanTwice) {
  MapBuffer buffer;
  buffer.Get(kPage);
  buffer.Grow(9 * kPage);
  EXPECT_EQ(buffer.Capacity(), 9 * kPage);
}

TEST(MapBuffer, GrowReturnsTheBlockThatFits) {
  MapBuffer buffer;
  void* const block = buffer.Get(10 * kPage);
  EXPECT_EQ(buffer.Grow(10 * kPage), block);
  EXPECT_EQ(buffer.Grow(0), block);
  EXPECT_EQ(buffer.Grow(-1), block);
  EXPECT_EQ(buffer.Capacity(), 10 * kPage);
}

TEST(MapBuffer, GrowKeepsTheContentAndIsZeroFilledBehindIt) {
  MapBuffer buffer;
  buffer.Get(1);
  for (int round = 0; round < 9; ++round) {
    std::string const content = Fill(buffer);
    buffer.Grow(buffer.Capacity() + 1);
    ASSERT_TRUE(HoldsAndIsZeroBehind(buffer, content)) << round;
  }
}

TEST(MapBuffer, GrowsZeroFilledOverMemoryThatWasUsedBefore) {
  for (int round = 0; round < 20; ++round) {
    MapBuffer buffer;
    for (int pages = 1; pages <= 40; ++pages) {
      std::string const content = Fill(buffer);
      buffer.Get(pages * kPage);
      ASSERT_TRUE(HoldsAndIsZeroBehind(buffer, content)) << pages;
    }
  }
}

// ---- Giving pages back ----

TEST(MapBuffer, FitGivesBackWholePages) {
  struct Row {
    int held;
    int size;
    int capacity;
  };
  Row const rows[] = {
      {5 * kPage, 1, kPage},
      {5 * kPage, kPage, kPage},
      {5 * kPage, kPage + 1, 2 * kPage},
      {5 * kPage, 4 * kPage, 4 * kPage},
      {2 * kOwnPages, kOwnPages + 1, kOwnPages + kPage},
      {2 * kOwnPages, kOwnPages, kOwnPages},
      {2 * kOwnPages, kOwnPages - 1, kOwnPages},
      {2 * kOwnPages, kOwnPages - kPage, kOwnPages - kPage},
      {2 * kOwnPages, 1, kPage},
      {64 * kOwnPages, 3 * kPage - 1, 3 * kPage},
  };
  for (Row const& row : rows) {
    MapBuffer buffer;
    buffer.Get(row.held);
    buffer.Fit(row.size);
    EXPECT_EQ(buffer.Capacity(), row.capacity) << row.held << " fitted to " << row.size;
  }
}

TEST(MapBuffer, FitKeepsTheContent) {
  for (int const held : {5 * kPage, kOwnPages - kPage, kOwnPages, 3 * kOwnPages, 64 * kOwnPages}) {
    for (int const size : {1, kPage, 2 * kPage + 1, 4 * kPage, held / 2, held - 1}) {
      MapBuffer buffer;
      buffer.Get(held);
      std::string const content = Fill(buffer);
      buffer.Fit(size);
      auto const kept = static_cast<std::size_t>(buffer.Capacity());
      ASSERT_GE(buffer.Capacity(), size);
      ASSERT_TRUE(Bytes(buffer.GetBegin(), kept) == content.substr(0, kept)) << held << " fitted to " << size;
    }
  }
}

TEST(MapBuffer, FitLeavesTheBlockWritableToItsEnd) {
  for (int const held : {5 * kPage, 3 * kOwnPages}) {
    MapBuffer buffer;
    buffer.Get(held);
    buffer.Fit(2 * kPage);
    std::string const content = Fill(buffer);
    EXPECT_TRUE(HoldsAndIsZeroBehind(buffer, content)) << held;
  }
}

TEST(MapBuffer, FitDoesNothingWithoutPagesToGiveBack) {
  for (int const held : {3 * kPage, 3 * kOwnPages}) {
    MapBuffer buffer;
    void* const block = buffer.Get(held);
    std::string const content = Fill(buffer);
    for (int const size : {held, held - 1, held - kPage + 1, held + 1, INT_MAX}) {
      buffer.Fit(size);
      EXPECT_EQ(buffer.GetBegin(), block) << size;
      EXPECT_EQ(buffer.Capacity(), held) << size;
    }
    EXPECT_TRUE(HoldsAndIsZeroBehind(buffer, content));
  }
}

TEST(MapBuffer, FitDoesNothingForNothingAndNegativeSizes) {
  for (int const held : {3 * kPage, 3 * kOwnPages}) {
    MapBuffer buffer;
    void* const block = buffer.Get(held);
    for (int const size : {0, -1, INT_MIN}) {
      buffer.Fit(size);
      EXPECT_EQ(buffer.GetBegin(), block) << size;
      EXPECT_EQ(buffer.Capacity(), held) << size;
    }
  }
}

TEST(MapBuffer, FitDoesNothingWithoutABlock) {
  MapBuffer buffer;
  for (int const size : {1, 0, -1, INT_MAX}) buffer.Fit(size);
  EXPECT_EQ(buffer.GetBegin(), nullptr);
  EXPECT_EQ(buffer.Capacity(), 0);
}

TEST(MapBuffer, GrowsZeroFilledWhereFitGaveDirtyPagesBack) {
  struct Row {
    int held;
    int fitted;
    int grown;
  };
  Row const rows[] = {
      {9 * kPage, 1, 9 * kPage},
      {9 * kPage, 2 * kPage, 20 * kPage},
      {9 * kPage, kPage, kOwnPages},
      {3 * kOwnPages, 2 * kOwnPages, 3 * kOwnPages},
      {3 * kOwnPages, 1, 2 * kPage},
      {3 * kOwnPages, 1, kOwnPages},
      {3 * kOwnPages, kPage, 64 * kOwnPages},
      {64 * kOwnPages, kOwnPages - 1, 65 * kOwnPages},
  };
  for (Row const& row : rows) {
    MapBuffer buffer;
    buffer.Get(row.held);
    Fill(buffer);
    buffer.Fit(row.fitted);
    std::string const content = Fill(buffer);
    buffer.Get(row.grown);
    EXPECT_EQ(buffer.Capacity(), row.grown);
    EXPECT_TRUE(HoldsAndIsZeroBehind(buffer, content)) << row.held << ", " << row.fitted << ", " << row.grown;
  }
}

TEST(MapBuffer, FitsAndGrowsAgainAsOftenAsItIsAsked) {
  MapBuffer buffer;
  for (int round = 1; round <= 60; ++round) {
    buffer.Get(round * 3 * kPage);
    Fill(buffer);
    buffer.Fit(round * kPage);
    std::string const content = Fill(buffer);
    buffer.Get(round * 2 * kPage);
    ASSERT_TRUE(HoldsAndIsZeroBehind(buffer, content)) << round;
  }
}

#ifndef CORVANE_TEST_OWN_ALLOCATOR

// Of the whole program, in bytes.
std::size_t ResidentMemory() {
  std::size_t pages = 0;
  std::size_t resident = 0;
  std::ifstream("/proc/self/statm") >> pages >> resident;
  return resident * static_cast<std::size_t>(kPage);
}

TEST(MapBuffer, FitGivesTheMemoryBackToTheSystem) {
  constexpr std::size_t kMebibyte = std::size_t{1024} * 1024;
  MapBuffer buffer;
  std::memset(buffer.Get(64 * 1024 * 1024), 'x', 64 * kMebibyte);
  std::size_t const before = ResidentMemory();
  buffer.Fit(1);
  EXPECT_LT(ResidentMemory() + 60 * kMebibyte, before);
}

TEST(MapBuffer, FitsTheLargestBlock) {
  MapBuffer buffer;
  std::memcpy(buffer.Get(INT_MAX), "kept", 4);
  buffer.Fit(kPage + 1);
  EXPECT_EQ(buffer.Capacity(), 2 * kPage);
  EXPECT_EQ(Bytes(buffer.GetBegin(), 4), "kept");
  buffer.Get(INT_MAX);
  EXPECT_EQ(Bytes(buffer.GetBegin(), 4), "kept");
}

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

TEST(MapBuffer, GrowAddsAQuarterOfAGibibyteAtMost) {
  MapBuffer buffer;
  buffer.Get(1024 * 1024 * 1024);
  buffer.Grow(1024 * 1024 * 1024 + 1);
  EXPECT_EQ(buffer.Capacity(), 1280 * 1024 * 1024);
}

TEST(MapBuffer, GrowGivesWhatIsAskedForWhenThereIsNoMemoryForMore) {
  MapBuffer buffer;
  buffer.Get(256 * 1024 * 1024);
  LowMemory const low;
  buffer.Grow(260 * 1024 * 1024);
  EXPECT_EQ(buffer.Capacity(), 260 * 1024 * 1024);
}

TEST(MapBuffer, GrowThrowsWhenThereIsNoMemoryForWhatIsAskedFor) {
  MapBuffer buffer;
  void* const block = buffer.Get(256 * 1024 * 1024);
  LowMemory const low;
  EXPECT_THROW(buffer.Grow(1024 * 1024 * 1024), AException);
  EXPECT_EQ(buffer.GetBegin(), block);
  EXPECT_EQ(buffer.Capacity(), 256 * 1024 * 1024);
}

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

TEST(MapBuffer, OutOfMemoryLeavesABlockOfOwnPages) {
  MapBuffer buffer;
  void* const block = buffer.Get(3 * kOwnPages);
  std::string const content = Fill(buffer);
  EXPECT_EQ(Refused(buffer, kTooMuch), "Out of memory for the row buffer. ");
  EXPECT_EQ(buffer.GetBegin(), block);
  EXPECT_EQ(buffer.Capacity(), 3 * kOwnPages);
  EXPECT_TRUE(HoldsAndIsZeroBehind(buffer, content));
  buffer.Get(4 * kOwnPages);
  EXPECT_TRUE(HoldsAndIsZeroBehind(buffer, content));
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

// One length, and the blob of that many bytes that was kept.
struct KeptBlob {
  RealBlob const* blob;
  std::string expected;
};

// Blobs of lengths around those of the chunks that they are kept in, with odd bytes kept between them.
std::vector<KeptBlob> KeepBlobs(MapBuffer& buffer) {
  std::vector<KeptBlob> kept;
  char fill = 'a';
  for (int round = 0; round < 3; ++round) {
    for (unsigned const length : {0U, 1U, 2U, 7U, 8U, 9U, 64U, 4'097U, 65'495U, 65'496U, 65'497U, 65'535U, 65'536U, 0U,
                                  65'537U, 1U, 200'000U, 3U}) {
      std::string const bytes(length, fill);
      kept.push_back({buffer.KeepBlob(length, bytes.data()), bytes});
      buffer.KeepBytes(bytes.data(), length % 13);
      fill = fill == 'z' ? 'a' : static_cast<char>(fill + 1);
    }
  }
  return kept;
}

TEST(MapBuffer, KeepsBlobsOfAllLengthsWhereTheyAre) {
  MapBuffer buffer;
  for (KeptBlob const& one : KeepBlobs(buffer)) {
    ASSERT_EQ(one.blob->Length(), one.expected.size());
    ASSERT_EQ(one.blob->IsNull(), 0);
    ASSERT_TRUE(Bytes(one.blob->voidptr(), one.expected.size()) == one.expected) << one.expected.size();
  }
}

TEST(MapBuffer, KeepsBlobsWhenTheBlockGrowsAndIsFitted) {
  MapBuffer buffer;
  buffer.Get(1);
  std::vector<KeptBlob> const kept = KeepBlobs(buffer);
  buffer.Get(64 * kOwnPages);
  buffer.Fit(1);
  for (KeptBlob const& one : kept) {
    ASSERT_TRUE(Bytes(one.blob->voidptr(), one.expected.size()) == one.expected) << one.expected.size();
  }
}

TEST(MapBuffer, KeepsBlobsAlignedWhateverIsKeptBetweenThem) {
  MapBuffer buffer;
  for (unsigned length = 0; length < 300; ++length) {
    std::string const bytes(length, 'x');
    auto const address = reinterpret_cast<std::uintptr_t>(buffer.KeepBlob(length, bytes.data()));
    ASSERT_EQ(address % alignof(RealBlob), 0U) << length;
    buffer.KeepBytes(bytes.data(), length);
  }
}

TEST(MapBuffer, AKeptBlobHasNoBytesWhenItIsEmpty) {
  MapBuffer buffer;
  EXPECT_EQ(buffer.KeepBlob(0, nullptr)->voidptr(), nullptr);
  EXPECT_EQ(buffer.KeepBlob(0, "x")->voidptr(), nullptr);
}

TEST(MapBuffer, ACopyOfAKeptBlobOutlivesTheBuffer) {
  RealBlob copy;
  RealBlob empty;
  {
    MapBuffer buffer;
    RealBlob const built(*buffer.KeepBlob(4, "blob"));
    copy = *buffer.KeepBlob(4, "blob");
    EXPECT_TRUE(built == copy);
    empty = *buffer.KeepBlob(0, nullptr);
  }
  EXPECT_EQ(Bytes(copy.voidptr(), 4), "blob");
  EXPECT_EQ(empty.IsNull(), 0);
  EXPECT_EQ(empty.Length(), 0U);
}

TEST(MapBuffer, AKeptBlobIsAValueLikeAnyOther) {
  MapBuffer buffer;
  RealBlob const& kept = *buffer.KeepBlob(3, "abc");
  EXPECT_TRUE(kept == RealBlob(3, "abc"));
  EXPECT_TRUE(kept < RealBlob(3, "abd"));
  EXPECT_EQ(kept.GetSize(), 3);
  EXPECT_EQ(kept.GetType(), corvane::kTypeRealBlob);
  EXPECT_EQ(kept.getstr(), "BLOB");
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
