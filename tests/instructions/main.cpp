// What ./run instructions counts. Each figure is a piece of the library's work, done a few times and then many times:
// what a single one takes is the difference of the counts, divided by that of the times. Prints what else the figures
// depend on.

#include <corvane/corvane.h>
#include <gnu/libc-version.h>
#include <mysql.h>
#include <valgrind/callgrind.h>

#include <array>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string>

#include "bench/account.h"
#include "bench/account_columns.h"
#include "rows.h"

#if __has_include(<sys/platform/x86.h>)
#define _Bool bool  // the header takes this for granted, and clang has it in C alone
#include <sys/platform/x86.h>
#undef _Bool
#endif

namespace corvane::test {

namespace {

using bench::AccountColumns;

struct Account : ASDomain, AccountColumns {
  Account() : ASDomain("account", "") { AddTo(*this); }
  Account(Account const&) = delete;
  Account& operator=(Account const&) = delete;
};

struct AccountCache : ASCache, AccountColumns {
  explicit AccountCache(ASSession* session) : ASDomain("account", ""), ASCache(session, 0) { AddTo(*this); }
};

struct Branch : ASDomain {
  ASInt id;
  ASInt city;
  ASVStr name{40};
  ASAttribute idColumn{"id", "", 0, kKey};
  ASAttribute cityColumn{"city_id"};
  ASAttribute nameColumn{"name"};
  Branch() : ASDomain("branch", "") { Add(idColumn, id).Add(cityColumn, city).Add(nameColumn, name); }
  Branch(Branch const&) = delete;
  Branch& operator=(Branch const&) = delete;
};

struct City : ASDomain {
  ASInt id;
  ASVStr name{40};
  ASAttribute idColumn{"id", "", 0, kKey};
  ASAttribute nameColumn{"name"};
  City() : ASDomain("city", "") { Add(idColumn, id).Add(nameColumn, name); }
  City(City const&) = delete;
  City& operator=(City const&) = delete;
};

void Check(bool holds, char const* what) {
  if (!holds) throw std::logic_error(what);
}

// Has what `work` does `few` and five times as many times counted by callgrind. What happens only once is over then.
template <class Work>
void Count(std::string const& figure, long few, Work work) {
  long const many = 5 * few;
  std::string const first = figure + " " + std::to_string(few);
  std::string const second = figure + " " + std::to_string(many);
  work(few);
  CALLGRIND_ZERO_STATS;
  work(few);
  CALLGRIND_DUMP_STATS_AT(first.c_str());
  work(many);
  CALLGRIND_DUMP_STATS_AT(second.c_str());
}

// The same of a text that `text` makes, given the number of the time.
template <class Text>
void CountText(std::string const& figure, Text text) {
  Count(figure, 200, [&](long times) {
    for (long i = 0; i < times; ++i) Check(text(i).length() > 0, "no text");
  });
}

class Figures {
 public:
  Figures() {
    session_.ReadOnly();
    for (std::size_t i = 0; i < accounts_.size(); ++i) {
      AnswerWith(static_cast<long>(i), 1);
      session_.Select(accounts_[i]);
    }
  }

  void CountAll() {
    CountRendering();
    CountRecords();
    CountReading();
    CountHits();
  }

 private:
  // Three tables, six columns, four conditions.
  void Build(ASCursor& cursor) {
    cursor.Project() << account_.idColumn << account_.nameColumn << account_.balanceColumn << account_.createdColumn
                     << branch_.nameColumn << city_.nameColumn;
    cursor.Where(account_.accountColumn == branch_.idColumn && branch_.cityColumn == city_.idColumn &&
                 account_.balanceColumn > 1000 && city_.nameColumn == "Saint John's");
    cursor.Order(ASOrder(city_.nameColumn.Query()) - account_.createdColumn);
    cursor.Limit(10, 20);
  }

  void CountRendering() {
    ASCursor kept(&session_);
    Build(kept);
    CountText("query kept", [&](long) { return kept.Query(); });
    CountText("query built anew", [&](long) {
      ASCursor cursor(&session_);
      Build(cursor);
      return cursor.Query();
    });
  }

  Account const& Filled(long i) const { return accounts_[static_cast<std::size_t>(i) % accounts_.size()]; }

  void CountRecords() {
    Count("record made", 200, [](long times) {
      for (long i = 0; i < times; ++i) Check(Account().size() == 10, "not all columns");
    });
    CountText("insert text", [&](long i) { return session_.InsertQuery(Filled(i), 0); });
    CountText("update text", [&](long i) { return session_.UpdateQuery(Filled(i), 0); });
    CountText("select text", [&](long i) { return session_.SelectQuery(Filled(i), 0); });
  }

  void CountReading() {
    Count("cursor row", kAccounts, [&](long rows) {
      AnswerWith(0, rows);
      ASCursor cursor(&session_);
      long fetched = 0;
      while (cursor.Fetch(account_) != 0) ++fetched;
      Check(fetched == rows && account_.id == kAccounts, "the rows were not read");
    });
    Count("cursor opened for a row", 200, [&](long times) {
      AnswerWith(0, 1);
      for (long i = 0; i < times; ++i) {
        ASCursor cursor(&session_);
        Check(cursor.Fetch(account_) == 1, "the row was not read");
      }
    });
    Count("record select", kAccounts, [&](long times) {
      for (long i = 0; i < times; ++i) {
        AnswerWith(i % kAccounts, 1);
        account_.id = static_cast<int>(i % kAccounts) + 1;
        Check(session_.Select(account_) == 1, "the record was not read");
      }
    });
    Check(account_.name.View() == bench::MakeAccount(kAccounts).name, "the record was not read");
  }

  void CountHits() {
    AccountCache cache(&session_);
    AnswerWith(0, kAccounts);
    Check(cache.PreFetch() == kAccounts, "the cache was not filled");
    AnswerWith(0, 0);  // what is not in the cache is not found
    Count("cache hit", kAccounts, [&](long times) {
      for (long i = 0; i < times; ++i) {
        cache.id = bench::MixedKey(i, kAccounts);
        cache.Get(-1);
        Check(cache.id.IsNull() == 0, "not in the cache");
      }
    });
  }

  ASSession session_{{{"EmulateSequences", "no"}}, 0, false};
  Account account_;
  Branch branch_;
  City city_;
  std::array<Account, 20> accounts_;  // some of the values are NULL
};

std::string Compiler() {
#ifdef __clang__
  return "clang++ " __clang_version__;
#else
  return "g++ " __VERSION__;
#endif
}

// "3.3" of "3.3.20": others of the same line count alike.
std::string ReleaseLine(std::string const& version) {
  return version.substr(0, version.find('.', version.find('.') + 1));
}

// What the C library knows of the processor and chooses its string functions by.
std::string Processor() {
#ifdef CPU_FEATURE_ACTIVE
  std::string name = "x86-64";
  if (CPU_FEATURE_ACTIVE(SSSE3)) name += " SSSE3";
  if (CPU_FEATURE_ACTIVE(SSE4_1)) name += " SSE4.1";
  if (CPU_FEATURE_ACTIVE(SSE4_2)) name += " SSE4.2";
  if (CPU_FEATURE_ACTIVE(AVX)) name += " AVX";
  if (CPU_FEATURE_ACTIVE(AVX2)) name += " AVX2";
  if (CPU_FEATURE_ACTIVE(AVX512VL)) name += " AVX512";
  if (CPU_FEATURE_ACTIVE(BMI2)) name += " BMI2";
  if (CPU_FEATURE_ACTIVE(ERMS)) name += " ERMS";
  if (CPU_FEATURE_ACTIVE(FSRM)) name += " FSRM";
  return name;
#else
  return "no x86-64 with the GNU C library";
#endif
}

void PrintConditions() {
  std::printf("compiler: %s\n", Compiler().c_str());
  std::printf("C library: %s\n", gnu_get_libc_version());
  std::printf("client library: %s\n", ReleaseLine(mysql_get_client_info()).c_str());
  std::printf("processor: %s\n", Processor().c_str());
}

}  // namespace

}  // namespace corvane::test

int main() try {
  corvane::test::PrintConditions();
  // Copying takes more or fewer instructions by how the bytes lie. The stack begins where the environment ends, and
  // columns and records, whose addresses stand in the texts, are on it.
  alignas(4096) corvane::test::Figures figures;
  figures.CountAll();
  return 0;
} catch (std::exception const& error) {
  std::fprintf(stderr, "instructions: %s\n", error.what());
  return 1;
}
