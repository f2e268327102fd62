// The rows of a result, stored by the client library or read straight from the connection: they are the same.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <list>
#include <memory>
#include <new>
#include <ostream>
#include <string>
#include <vector>

#include "corvane/cache/map_buffer.h"
#include "corvane/cursor/internal/result_rows.h"
#include "tests/support/failing_allocation.h"
#include "tests/support/scripted_cursor.h"

namespace {

// What happens when a block of pages is resized: the system decides whether it stays where it is, or it always moves,
// or it fails after `passing` times, once or for good.
enum class Remap { kAsTheSystemDoes, kMove, kFailOnce, kFail };

Remap remap = Remap::kAsTheSystemDoes;
unsigned passing = 0;

void* Move(void* from, std::size_t size, std::size_t newSize) {
  void* const to = mmap(nullptr, newSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (to == MAP_FAILED) return to;
  std::memcpy(to, from, std::min(size, newSize));
  munmap(from, size);
  return to;
}

}  // namespace

// Takes precedence over the C library's.
extern "C" void* mremap(void* from, std::size_t size, std::size_t newSize, int flags, ...) noexcept {
  if (remap == Remap::kFail || remap == Remap::kFailOnce) {
    if (passing == 0) {
      if (remap == Remap::kFailOnce) remap = Remap::kAsTheSystemDoes;
      errno = ENOMEM;
      return MAP_FAILED;
    }
    --passing;
  }
  if (remap == Remap::kMove) return Move(from, size, newSize);
  return reinterpret_cast<void*>(syscall(SYS_mremap, from, size, newSize, flags, nullptr));
}

namespace corvane::test {
namespace {

using internal::ResultRows;
using testing::Each;

using Columns = std::list<ASSimpleAttribute*>;

constexpr char const* kFetchError = "MySQL fetch error. ";
constexpr char const* kTooLarge = "Result is too large for the row buffer. ";
constexpr char const* kNoMemory = "Out of memory for the row buffer. ";

// While it lives.
class Remapping {
 public:
  explicit Remapping(Remap how, unsigned calls = 0) { remap = how, passing = calls; }
  Remapping(Remapping const&) = delete;
  Remapping& operator=(Remapping const&) = delete;
  ~Remapping() { remap = Remap::kAsTheSystemDoes; }
};

// While it lives, blocks of this thread get new pages, which have to be resized to grow: it holds those that were kept.
class NoKeptPages {
 public:
  NoKeptPages() { kept_.Get(32 * 1024); }

 private:
  MapBuffer kept_;
};

enum class Way { kStored, kUnstored };

std::ostream& operator<<(std::ostream& out, Way way) { return out << (way == Way::kStored ? "Stored" : "Unstored"); }

// The rows of a result and the layout that they have.
struct Read {
  explicit Read(Columns const& columns) : layout(columns, {}) {}

  UU* Cell(int row, int column) {
    return static_cast<UU*>(buffer.GetBegin()) + std::ptrdiff_t{row} * layout.Width() + column;
  }

  ResultRows layout;
  MapBuffer buffer;
  int count = 0;
};

// A connection whose results are taken either way.
class ResultRowsTest : public testing::Test {
 protected:
  void SetUp() override {
    client.Reset();
    handle = mysql_init(nullptr);
    mysql_real_connect(handle, "", "", "", "", 0, nullptr, 0);
  }
  void TearDown() override {
    mysql_free_result(result);
    EXPECT_EQ(client.UnfreedResults(), 0U);
    EXPECT_EQ(client.UnusedSteps(), 0U);
    mysql_close(handle);
  }

  ScriptedClient::Answer& Answer(unsigned columns, std::vector<Row> rows) {
    return client.AnswerQuery(columns, std::move(rows));
  }

  // Sends a statement and takes its result.
  void Take(Way way) {
    ASSERT_EQ(mysql_query(handle, "SELECT"), 0);
    result = way == Way::kStored ? mysql_store_result(handle) : mysql_use_result(handle);
    ASSERT_NE(result, nullptr);
  }

  void Free() {
    mysql_free_result(result);
    result = nullptr;
  }

  std::unique_ptr<Read> ReadRows(Way way, Columns const& columns) {
    NoKeptPages const none;
    auto read = std::make_unique<Read>(columns);
    Take(way);
    read->count = read->layout.Read(result, read->buffer);
    Free();
    return read;
  }

  // What reading throws, the connection being usable afterwards.
  Thrown Failure(Way way, Columns const& columns) {
    NoKeptPages const none;
    Read read(columns);
    Take(way);
    Thrown const thrown = ThrownBy([&] { read.layout.Read(result, read.buffer); });
    Free();
    EXPECT_EQ(mysql_query(handle, "DO 0"), 0);
    return thrown;
  }

  ScriptedClient& client = ScriptedClient::Get();
  MYSQL* handle = nullptr;
  MYSQL_RES* result = nullptr;
};

class ResultRowsTaken : public ResultRowsTest, public testing::WithParamInterface<Way> {};

constexpr auto kWayName = testing::PrintToStringParamName();
INSTANTIATE_TEST_SUITE_P(Ways, ResultRowsTaken, testing::Values(Way::kStored, Way::kUnstored), kWayName);

// A column of every kind.
struct Everything {
  Column<ASInt> integer{"i"};
  Column<ASTime> time{"t"};
  Column<Called<ASInt, kTypeInt, kDbTime>> timeNumber{"T"};
  Column<ASDouble> real{"d"};
  Column<ASDCurrency> money{"m"};
  Column<ASInt64> large{"l"};
  Column<ASStr> fixed{"f", 8U};
  Column<ASVStr> variable{"v", 200U};
  Column<ASGuid> guid{"u"};
  ASAttribute none{"n"};
  Column<ASBlob> bytes{"b", std::uint16_t{100}};
  Column<ASGeometry> shape{"g", std::uint16_t{100}};
  Column<ASRealBlob> blob{"r", 0U};

  Columns All() {
    return {&integer,  &time, &timeNumber, &real,  &money, &large, &fixed,
            &variable, &guid, &none,       &bytes, &shape, &blob};
  }

  std::string Values() const {
    std::string text;
    for (ASData const* const value :
         {static_cast<ASData const*>(&integer.value), static_cast<ASData const*>(&time.value),
          static_cast<ASData const*>(&timeNumber.value), static_cast<ASData const*>(&real.value),
          static_cast<ASData const*>(&money.value), static_cast<ASData const*>(&large.value),
          static_cast<ASData const*>(&fixed.value), static_cast<ASData const*>(&variable.value),
          static_cast<ASData const*>(&guid.value)}) {
      text += value->IsNull() != 0 ? "NULL" : value->getstr().str();
      text += '|';
    }
    text += Bytes(bytes.value.Bytes(), 100) + '|' + Bytes(shape.value.Bytes(), 100) + '|';
    text += blob.value.IsNull() != 0 ? "NULL" : Bytes(blob.value.voidptr(), blob.value.Length());
    return text;
  }
};

std::vector<FieldDescription> EverythingDescribed() {
  std::vector<FieldDescription> fields(13);
  fields[11].type = MYSQL_TYPE_GEOMETRY;
  return fields;
}

// Rows that take turns: plain ones, NULLs, empty ones, and texts that are cut by their capacity or by a NUL byte.
std::vector<Row> EverythingRows(std::size_t count) {
  Row const plain{"-5",
                  "1970-01-02 00:00:01",
                  "1970-01-02 00:00:02",
                  "2.5",
                  "1.25",
                  "72623859790382856",
                  "abc",
                  "variable",
                  "01234567-89ab-cdef-0123-456789abcdef",
                  "none",
                  std::string("b\0c", 3),
                  "SRIDgeo",
                  std::string("large\0", 6)};
  Row const null(13, std::nullopt);
  Row const empty(13, "");
  Row const cut{"2147483647",
                "2038-01-19 03:14:07",
                "2004-02-30 00:00:00",
                "1e5",
                "-0.005",
                "-9223372036854775808",
                "123456789",
                std::string(1000, 'v'),
                "none",
                std::string(1000, 'n'),
                std::string(1000, 'b'),
                std::string(1000, 'g'),
                std::string(1000, 'r')};
  Row withNul = plain;
  withNul[6] = withNul[7] = withNul[8] = std::string("ab\0cd", 5);
  std::vector<Row> const turns{plain, null, empty, cut, withNul};
  std::vector<Row> rows;
  for (std::size_t i = 0; i < count; ++i) {
    rows.push_back(turns[i % turns.size()]);
    if (i % turns.size() == 0) rows.back()[0] = std::to_string(i);
  }
  return rows;
}

// The block with the pointers in it replaced: those of texts by where they point in their row, the others by nothing;
// then what they point at.
std::string Image(Read& read, Columns const& columns) {
  std::string block = Bytes(read.buffer.GetBegin(), static_cast<std::size_t>(read.buffer.Capacity()));
  std::string pointedAt;
  auto const replace = [&](void const* pointer, std::ptrdiff_t by) {
    auto const at = static_cast<char const*>(pointer) - static_cast<char const*>(read.buffer.GetBegin());
    std::memcpy(&block[static_cast<std::size_t>(at)], &by, sizeof by);
  };
  for (int row = 0; row < read.count; ++row) {
    int column = 0;
    for (ASSimpleAttribute const* const attribute : columns) {
      UU const& cell = *read.Cell(row, column++);
      switch (attribute->Data() != nullptr ? attribute->Data()->GetType() : 0) {
        case kTypeStr:
        case kTypeGuid: {
          auto const offset = cell.extra.text - reinterpret_cast<char const*>(read.Cell(row, 0));
          EXPECT_TRUE(offset > 0 && offset < read.layout.Width() * std::ptrdiff_t{sizeof(UU)}) << "row " << row;
          replace(&cell.extra, offset);
          break;
        }
        case kTypeBlob:
          pointedAt += Bytes(cell.extra.bytes, cell.value.length) + '|';
          replace(&cell.extra, 0);
          break;
        case kTypeRealBlob:
          if (RealBlob const* const blob = cell.value.blob) pointedAt += Bytes(blob->voidptr(), blob->Length());
          replace(&cell.value, cell.value.blob != nullptr ? 1 : 0);
          pointedAt += '|';
          break;
        default:
          break;
      }
    }
  }
  return block + pointedAt;
}

std::vector<std::string> Delivered(Read& read, Everything const& record) {
  std::vector<std::string> rows;
  for (int row = 0; row < read.count; ++row) {
    read.layout.Deliver(read.Cell(row, 0));
    rows.push_back(record.Values());
  }
  return rows;
}

// ---- the values

TEST_P(ResultRowsTaken, HoldEveryKindOfColumn) {
  Everything record;
  Answer(13, EverythingRows(5)).Fields(EverythingDescribed());
  std::string const rest(97, '\0');
  EXPECT_THAT(
      Delivered(*ReadRows(GetParam(), record.All()), record),
      testing::ElementsAre(
          std::string("0|1970-01-02 00:00:01|86402|2.5|1.25|72623859790382856|abc     |variable|"
                      "01234567-89ab-cdef-0123-456789abcdef|b") +
              '\0' + 'c' + rest + "|geo" + rest + "|large" + '\0',
          "NULL|NULL|NULL|NULL|NULL|NULL|NULL|NULL|NULL|" + std::string(100, '\0') + '|' + std::string(100, '\0') +
              "|NULL",
          "0|NULL|NULL|0|0|0|        ||NULL|" + std::string(100, '\0') + '|' + std::string(100, '\0') + '|',
          "2147483647|2038-01-19 03:14:07|NULL|100000|-0.005|-9223372036854775808|12345678|" + std::string(200, 'v') +
              "|NULL|" + std::string(100, 'b') + '|' + std::string(100, 'g') + '|' + std::string(1000, 'r'),
          std::string("-5|1970-01-02 00:00:01|86402|2.5|1.25|72623859790382856|ab      |ab|NULL|b") + '\0' + 'c' +
              rest + "|geo" + rest + "|large" + '\0'));
}

// ---- as many rows as there are

TEST_P(ResultRowsTaken, TakeWholePagesForAsManyAsThereAre) {
  Column<ASInt> a("a");
  struct {
    std::size_t rows;
    int capacity;
  } const blocks[] = {{0, 0},           {1, 4096},        {170, 4096},      {171, 8192},
                      {5461, 131072},   {5462, 135168},   {10922, 262144},  {10923, 266240},
                      {43690, 1048576}, {43691, 1052672}, {87381, 2097152}, {87382, 2101248}};
  for (auto const& block : blocks) {
    Answer(1, std::vector<Row>(block.rows, Row{"5"}));
    auto const read = ReadRows(GetParam(), {&a});
    EXPECT_EQ(read->count, static_cast<int>(block.rows));
    EXPECT_EQ(read->buffer.Capacity(), block.capacity) << block.rows << " rows";
  }
}

TEST_P(ResultRowsTaken, WithoutColumnsAreCountedOnly) {
  Answer(2, {{"1", "2"}, {"3", std::nullopt}, {"4", "5"}});
  auto const read = ReadRows(GetParam(), {});
  EXPECT_EQ(read->count, 3);
  EXPECT_EQ(read->layout.Width(), 0);
  EXPECT_EQ(read->buffer.Capacity(), 0);
}

TEST_P(ResultRowsTaken, AreZeroBehindTheirTexts) {
  Column<ASVStr> text("s", 100U);
  Answer(1, std::vector<Row>(3000, Row{"ab"}));
  auto const read = ReadRows(GetParam(), {&text});
  for (int row = 0; row < 3000; ++row) {
    ASSERT_EQ(Bytes(read->Cell(row, 1), 101), "ab" + std::string(99, '\0')) << row;
  }
}

// ---- the same both ways

class ResultRowsBothWays : public ResultRowsTest, public testing::WithParamInterface<std::size_t> {
 protected:
  void ExpectEqualRows() {
    Everything record;
    Answer(13, EverythingRows(GetParam())).Fields(EverythingDescribed()).Times(2);
    auto const stored = ReadRows(Way::kStored, record.All());
    auto const unstored = ReadRows(Way::kUnstored, record.All());
    EXPECT_EQ(stored->count, static_cast<int>(GetParam()));
    EXPECT_EQ(unstored->count, stored->count);
    EXPECT_EQ(unstored->layout.Width(), stored->layout.Width());
    EXPECT_EQ(unstored->buffer.Capacity(), stored->buffer.Capacity());
    EXPECT_TRUE(Image(*unstored, record.All()) == Image(*stored, record.All()));
    EXPECT_TRUE(Delivered(*unstored, record) == Delivered(*stored, record));
  }
};

TEST_P(ResultRowsBothWays, AreEqualByteForByte) { ExpectEqualRows(); }

TEST_P(ResultRowsBothWays, AreEqualByteForByteThoughTheBlockMoves) {
  Remapping const moving(Remap::kMove);
  ExpectEqualRows();
}

// A row takes 552 bytes: around one page, 32 KiB and 1 MiB, where the block grows, and their doubles.
INSTANTIATE_TEST_SUITE_P(Counts, ResultRowsBothWays,
                         testing::Values(0, 1, 2, 7, 8, 14, 15, 29, 30, 59, 60, 118, 119, 237, 238, 474, 475, 949, 950,
                                         1899, 1900, 3799, 3800));

// A row takes exactly three pages, so that every row or so makes the block grow.
TEST_F(ResultRowsTest, OfWholePagesAreEqualBothWaysAfterEveryGrowth) {
  Column<ASVStr> text("s", 12263U);
  Remapping const moving(Remap::kMove);
  for (std::size_t count = 1; count <= 90; ++count) {
    Answer(1, std::vector<Row>(count, Row{std::string(12263, 's')})).Times(2);
    auto const stored = ReadRows(Way::kStored, {&text});
    auto const unstored = ReadRows(Way::kUnstored, {&text});
    EXPECT_EQ(unstored->buffer.Capacity(), stored->buffer.Capacity()) << count;
    EXPECT_EQ(unstored->buffer.Capacity(), static_cast<int>(count) * 12288);
    EXPECT_TRUE(Image(*unstored, {&text}) == Image(*stored, {&text})) << count;
  }
}

// ---- failures

TEST_P(ResultRowsTaken, OfFewerColumnsThanAreWantedAreAFetchError) {
  Column<ASInt> a("a");
  Column<ASInt> b("b");
  Answer(1, {{"1"}, {"2"}});
  EXPECT_EQ(Failure(GetParam(), {&a, &b}), (Thrown{0, kFetchError}));
}

// A text of an application that tells a size which it never needs, so that few rows are large.
class Roomy : public ASVStr {
 public:
  explicit Roomy(int size) : ASVStr(8), size_(size) {}
  using ASVStr::operator=;
  int GetSize() const override { return size_; }

 private:
  int size_;
};

TEST_P(ResultRowsTaken, ThatDoNotFitAreTooLarge) {
  Column<Roomy> wide("s", 1000000000);
  Answer(1, {{"x"}, {"y"}, {"z"}, {"z"}});
  EXPECT_EQ(Failure(GetParam(), {&wide}), (Thrown{0, kTooLarge}));
}

TEST_F(ResultRowsTest, WithoutColumnsAreTooLargeAboveTheLargestInt) {
  Answer(1, {{"1"}}).AnnouncedRows(2147483648);
  EXPECT_EQ(Failure(Way::kStored, {}), (Thrown{0, kTooLarge}));
  Answer(1, {{"1"}}).AnnouncedRows(2147483647);
  EXPECT_EQ(ReadRows(Way::kStored, {})->count, 1);
}

TEST_F(ResultRowsTest, WithoutMemoryForABinaryFailAlikeBothWays) {
  Everything record;
  std::vector<Row> rows = EverythingRows(12);
  for (Row& row : rows) row[12] = std::string(70000, 'r');
  // What each operator new of reading leads to when it fails.
  auto const thrownByEachAllocation = [&](Way way) {
    std::vector<std::string> thrown;
    for (bool failed = true; failed;) {
      Read read(record.All());
      Answer(13, rows).Fields(EverythingDescribed());
      Take(way);
      std::string what = "nothing";
      {
        FailingAllocation const failing(static_cast<unsigned>(thrown.size()));
        try {
          read.layout.Read(result, read.buffer);
        } catch (std::bad_alloc const&) {
          UnfailingAllocation const unfailing;
          what = "bad_alloc";
        }
        failed = failing.Failed();
      }
      Free();
      EXPECT_EQ(mysql_query(handle, "DO 0"), 0);
      if (failed) thrown.push_back(what);
    }
    return thrown;
  };
  std::vector<std::string> const stored = thrownByEachAllocation(Way::kStored);
  EXPECT_GE(stored.size(), 12U);
  EXPECT_THAT(stored, Each("bad_alloc"));
  EXPECT_EQ(thrownByEachAllocation(Way::kUnstored), stored);
}

// Of 1,500 rows of 552 bytes the block grows from its first 32 KiB to 64, 128, 256, 512 and 1,024.
class ResultRowsGrowth : public ResultRowsTest, public testing::WithParamInterface<unsigned> {};

TEST_P(ResultRowsGrowth, ThatFailsIsReportedAndTheRowsComeTheNextTime) {
  Everything record;
  Answer(13, EverythingRows(1500)).Fields(EverythingDescribed()).Matching("SELECT").Times(2);
  {
    Remapping const failing(Remap::kFail, GetParam());
    EXPECT_EQ(Failure(Way::kUnstored, record.All()), (Thrown{0, kNoMemory}));
  }
  EXPECT_EQ(ReadRows(Way::kUnstored, record.All())->count, 1500);
}

// It grows by what is needed then.
TEST_P(ResultRowsGrowth, ThatIsRefusedTwiceTheBlockGivesTheRowsAllTheSame) {
  Everything record;
  Answer(13, EverythingRows(1500)).Fields(EverythingDescribed()).Matching("SELECT").Times(2);
  auto const undisturbed = ReadRows(Way::kUnstored, record.All());
  Remapping const failing(Remap::kFailOnce, GetParam());
  auto const read = ReadRows(Way::kUnstored, record.All());
  EXPECT_EQ(remap, Remap::kAsTheSystemDoes);  // it has been refused
  EXPECT_EQ(read->count, 1500);
  EXPECT_TRUE(Image(*read, record.All()) == Image(*undisturbed, record.All()));
}

INSTANTIATE_TEST_SUITE_P(Growth, ResultRowsGrowth, testing::Values(0, 1, 2, 3, 4));

#if defined(__SANITIZE_ADDRESS__)
#define CORVANE_TEST_ADDRESS_SPACE_IS_TAKEN 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define CORVANE_TEST_ADDRESS_SPACE_IS_TAKEN 1
#endif
#endif
#ifndef CORVANE_TEST_ADDRESS_SPACE_IS_TAKEN

// While it lives, the program's address space may grow by 8 MiB only.
class LittleMoreAddressSpace {
 public:
  LittleMoreAddressSpace() {
    rlim_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    getrlimit(RLIMIT_AS, &before_);
    rlimit little = before_;
    little.rlim_cur = pages * static_cast<rlim_t>(getpagesize()) + (rlim_t{8} << 20);
    setrlimit(RLIMIT_AS, &little);
  }
  LittleMoreAddressSpace(LittleMoreAddressSpace const&) = delete;
  LittleMoreAddressSpace& operator=(LittleMoreAddressSpace const&) = delete;
  ~LittleMoreAddressSpace() { setrlimit(RLIMIT_AS, &before_); }

 private:
  rlimit before_{};
};

using ResultRowsDeathTest = ResultRowsTaken;
INSTANTIATE_TEST_SUITE_P(Ways, ResultRowsDeathTest, testing::Values(Way::kStored, Way::kUnstored), kWayName);

// In a process of its own; 64 rows of 1 MiB.
TEST_P(ResultRowsDeathTest, WithoutAddressSpaceAreReportedAndComeTheNextTime) {
  Column<Roomy> wide("s", 1048535);
  auto const run = [&] {
    Answer(1, std::vector<Row>(64, Row{"x"})).Matching("SELECT").Times(2);
    Read read({&wide});
    Take(GetParam());
    {
      LittleMoreAddressSpace const little;
      EXPECT_EQ(ThrownBy([&] { read.layout.Read(result, read.buffer); }), (Thrown{0, kNoMemory}));
    }
    Free();
    EXPECT_EQ(mysql_query(handle, "DO 0"), 0);
    EXPECT_EQ(ReadRows(GetParam(), {&wide})->count, 64);
    std::_Exit(HasFailure() ? 1 : 0);
  };
  EXPECT_EXIT(run(), testing::ExitedWithCode(0), "");
}

#endif

}  // namespace
}  // namespace corvane::test
