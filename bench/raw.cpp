// The bare client library, the way a careful programmer writes it by hand: mysql_store_result, std::from_chars, and
// statements appended to one std::string.

#include <mysql.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <map>
#include <memory>
#include <stdexcept>
#include <unordered_map>
#include <utility>

#include "growth.h"
#include "program.h"

namespace bench {

namespace {

struct CloseHandle {
  void operator()(MYSQL* handle) const { mysql_close(handle); }
};
struct FreeResult {
  void operator()(MYSQL_RES* result) const { mysql_free_result(result); }
};

template <class Number>
void Parse(Number& number, char const* text, unsigned long length) {
  std::from_chars(text, text + length, number);
}

void Read(Account& account, MYSQL_ROW row, unsigned long const* lengths) {
  Parse(account.id, row[0], lengths[0]);
  Parse(account.account, row[1], lengths[1]);
  account.name.assign(row[2], lengths[2]);
  account.code.assign(row[3], lengths[3]);
  Parse(account.balance, row[4], lengths[4]);
  Parse(account.price, row[5], lengths[5]);
  account.created = ParseTime(row[6]);
  account.hasNote = row[7] != nullptr;
  if (account.hasNote) account.note.assign(row[7], lengths[7]);
  account.hasAge = row[8] != nullptr;
  if (account.hasAge) Parse(account.age, row[8], lengths[8]);
  account.hasPhoto = row[9] != nullptr;
  if (account.hasPhoto) account.photo.assign(row[9], lengths[9]);
}

class Raw {
 public:
  explicit Raw(Server const& server) : handle_(mysql_init(nullptr)) {
    if (mysql_real_connect(handle_.get(), server.host.c_str(), server.user.c_str(), server.password.c_str(),
                           server.database.c_str(), server.port, nullptr, 0) == nullptr) {
      throw std::runtime_error(mysql_error(handle_.get()));
    }
  }

  void Fetch(long rows, std::vector<Account>& into) {
    auto const result = Query(kSelect + (" <= " + std::to_string(rows)));
    while (MYSQL_ROW const row = mysql_fetch_row(result.get())) {
      Read(into.emplace_back(), row, mysql_fetch_lengths(result.get()));
    }
  }

  void Iterate(long rows, Checksum& checksum) {
    auto const result = Query(kSelect + (" <= " + std::to_string(rows)));
    Account account;
    while (MYSQL_ROW const row = mysql_fetch_row(result.get())) {
      Read(account, row, mysql_fetch_lengths(result.get()));
      checksum.Add(account);
    }
  }

  template <class Map>
  void Fill(long rows, Map& store) {
    auto const result = Query(kSelect + (" <= " + std::to_string(rows)));
    while (MYSQL_ROW const row = mysql_fetch_row(result.get())) {
      Account account;
      Read(account, row, mysql_fetch_lengths(result.get()));
      store.emplace(account.id, std::move(account));
    }
  }

  void Select(int id, Account& account) {
    text_ = kSelect;
    text_ += " = ";
    Append(id);
    auto const result = Query(text_);
    MYSQL_ROW const row = mysql_fetch_row(result.get());
    if (row == nullptr) throw std::runtime_error("no such account");
    Read(account, row, mysql_fetch_lengths(result.get()));
  }

  void Begin() { Execute("START TRANSACTION"); }
  void Commit() { Execute("COMMIT"); }

  void Insert(Account const& account) {
    text_ = "INSERT INTO inserted (account, name, code, balance, price, created, note, age, photo) VALUES ";
    AppendValues(account);
    Execute(text_);
  }

  // A query over three tables, appended to one string. The aliases are those given, or numbers of the place where a
  // record lies, formatted anew, as the library has to do it.
  template <class Alias>
  std::string const& Render(Alias sale, Alias customer, Alias city, int quantity, std::string const& name) {
    text_ = "SELECT ";
    AppendColumn(sale, ".id, ");
    AppendColumn(sale, ".sold, ");
    AppendColumn(sale, ".price, ");
    AppendColumn(customer, ".name, ");
    AppendColumn(city, ".name, ");
    AppendColumn(sale, ".note FROM (`sale` ");
    AppendColumn(sale, ", `customer` ");
    AppendColumn(customer, ", `city` ");
    AppendColumn(city, ") WHERE (((");
    AppendColumn(sale, ".customer=(");
    AppendColumn(customer, ".id)) AND (");
    AppendColumn(customer, ".city_id=(");
    AppendColumn(city, ".id))) AND (");
    AppendColumn(sale, ".quantity>");
    Append(quantity);
    text_ += ")) AND (";
    AppendColumn(city, ".name=");
    Append(name);
    text_ += ") ORDER BY ";
    AppendColumn(sale, ".price DESC, ");
    AppendColumn(sale, ".id ASC LIMIT ");
    Append(10);
    text_ += " OFFSET ";
    Append(20);
    return text_;
  }

  // Conditions as the library nests them, "((id=0) AND (id=1)) AND (id=2)", the parentheses at once.
  template <class Alias>
  std::string const& RenderConditions(Alias account, int count) {
    text_ = "SELECT ";
    AppendColumn(account, ".id FROM (account ");
    AppendColumn(account, ") WHERE ");
    text_.append(static_cast<std::size_t>(count - 1), '(');
    for (int i = 0; i < count; ++i) {
      if (i > 0) text_ += ") AND (";
      AppendColumn(account, ".id=");
      Append(i);
      if (i > 0) text_ += ')';
    }
    return text_;
  }

  void IterateWide(long columns, Checksum& checksum) {
    auto const result = Query("SELECT * FROM " + Sized("wide", columns));
    auto const count = static_cast<std::size_t>(columns);
    std::vector<int> integers(count / 3 + 1);
    std::vector<std::string> texts(count / 3 + 1);
    std::vector<double> doubles(count / 3 + 1);
    while (MYSQL_ROW const row = mysql_fetch_row(result.get())) {
      unsigned long const* const lengths = mysql_fetch_lengths(result.get());
      for (std::size_t i = 0; i < count; ++i) {
        if (i % 3 == 0) Parse(integers[i / 3], row[i], lengths[i]);
        if (i % 3 == 1) texts[i / 3].assign(row[i], lengths[i]);
        if (i % 3 == 2) Parse(doubles[i / 3], row[i], lengths[i]);
      }
      for (std::size_t i = 0; i < count; ++i) {
        if (i % 3 == 0) checksum.Add(std::int64_t{integers[i / 3]});
        if (i % 3 == 1) checksum.Add(std::string_view(texts[i / 3]));
        if (i % 3 == 2) checksum.Add(doubles[i / 3]);
      }
    }
  }

  void IterateText(long bytes, Checksum& checksum) {
    auto const result = Query("SELECT content FROM " + Sized("text", bytes));
    std::string text;
    while (MYSQL_ROW const row = mysql_fetch_row(result.get())) {
      text.assign(row[0], mysql_fetch_lengths(result.get())[0]);
      checksum.Add(std::string_view(text));
    }
  }

  // Stands for all that a table holds.
  std::uint32_t TableChecksum(std::string const& table) {
    auto const result = Query(
        "SELECT COUNT(*) + COALESCE(SUM(CRC32(CONCAT_WS('|', id, account, name, code, balance, price, created, "
        "COALESCE(note, 'NULL'), COALESCE(age, 'NULL'), COALESCE(HEX(photo), 'NULL')))), 0) FROM " +
        table);
    return static_cast<std::uint32_t>(std::stoull(mysql_fetch_row(result.get())[0]));
  }

  // The accounts from one number up to, not including, another, by one statement.
  void InsertAll(int begin, int end) {
    text_ = "INSERT INTO account (account, name, code, balance, price, created, note, age, photo) VALUES ";
    for (int id = begin; id < end; ++id) {
      if (id > begin) text_ += ", ";
      AppendValues(MakeAccount(id));
    }
    Execute(text_);
  }

  void Update(Account const& account) {
    text_ = "UPDATE updated SET account = ";
    Append(account.account);
    text_ += ", name = ";
    Append(account.name);
    text_ += ", code = ";
    Append(account.code);
    text_ += ", balance = ";
    Append(account.balance);
    text_ += ", price = ";
    Append(account.price);
    text_ += ", created = '";
    text_ += TimeText(account.created);
    text_ += "', note = ";
    AppendIf(account.hasNote, account.note);
    text_ += ", age = ";
    AppendIf(account.hasAge, account.age);
    text_ += ", photo = ";
    AppendIf(account.hasPhoto, account.photo);
    text_ += " WHERE id = ";
    Append(account.id);
    Execute(text_);
  }

  void Make(Statements const& statements) {
    for (std::string const& statement : statements) Execute(statement);
  }

  void Execute(std::string const& statement) {
    if (mysql_real_query(handle_.get(), statement.data(), statement.size()) != 0) {
      throw std::runtime_error(mysql_error(handle_.get()));
    }
  }

 private:
  std::unique_ptr<MYSQL_RES, FreeResult> Query(std::string const& statement) {
    Execute(statement);
    std::unique_ptr<MYSQL_RES, FreeResult> result(mysql_store_result(handle_.get()));
    if (result == nullptr) throw std::runtime_error(mysql_error(handle_.get()));
    return result;
  }

  void AppendValues(Account const& account) {
    text_ += '(';
    Append(account.account);
    text_ += ", ";
    Append(account.name);
    text_ += ", ";
    Append(account.code);
    text_ += ", ";
    Append(account.balance);
    text_ += ", ";
    Append(account.price);
    text_ += ", '";
    text_ += TimeText(account.created);
    text_ += "', ";
    AppendIf(account.hasNote, account.note);
    text_ += ", ";
    AppendIf(account.hasAge, account.age);
    text_ += ", ";
    AppendIf(account.hasPhoto, account.photo);
    text_ += ')';
  }

  template <class Number>
  void Append(Number number) {
    char digits[32];
    text_.append(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
  }

  void AppendColumn(char const* alias, char const* rest) {
    text_ += alias;
    text_ += rest;
  }

  void AppendColumn(std::uintptr_t alias, char const* rest) {
    text_ += 'T';
    Append(alias);
    text_ += rest;
  }

  void Append(std::string const& bytes) {
    text_ += '\'';
    std::size_t const at = text_.size();
    text_.resize(at + 2 * bytes.size() + 1);
    text_.resize(at + mysql_real_escape_string(handle_.get(), &text_[at], bytes.data(), bytes.size()));
    text_ += '\'';
  }

  template <class Value>
  void AppendIf(bool has, Value const& value) {
    if (has) {
      Append(value);
    } else {
      text_ += "NULL";
    }
  }

  std::unique_ptr<MYSQL, CloseHandle> handle_;
  std::string text_;
};

// Makes the tables and fills `account`.
void Load(benchmark::State& state, long size) {
  Raw raw(TheServer());
  for (char const* const table : {"account", "inserted", "updated"}) {
    raw.Execute(std::string("DROP TABLE IF EXISTS ") + table);
    raw.Execute(std::string("CREATE TABLE ") + table + kColumns);
  }
  Measure(state, [&] {
    raw.Begin();
    constexpr int kTogether = 500;
    auto const end = static_cast<int>(size) + 1;
    for (int id = 1; id < end; id += kTogether) raw.InsertAll(id, std::min(id + kTogether, end));
    raw.Commit();
    return 0;
  });
}

// The tables that are written, as they are before that.
void Empty(benchmark::State& state, long) {
  Raw raw(TheServer());
  Measure(state, [&] {
    raw.Execute("TRUNCATE inserted");
    return 0;
  });
}

void Copy(benchmark::State& state, long size) {
  Raw raw(TheServer());
  raw.Execute("TRUNCATE updated");
  Measure(state, [&] {
    raw.Execute("INSERT INTO updated SELECT * FROM account WHERE id <= " + std::to_string(size));
    return 0;
  });
}

template <char const* kTable>
void Sum(benchmark::State& state, long) {
  Raw raw(TheServer());
  Measure(state, [&] { return raw.TableChecksum(kTable); });
}
constexpr char kInserted[] = "inserted";
constexpr char kUpdated[] = "updated";

// Renders that often, and tells the checksum of the text.
template <class Render>
void MeasureRendering(benchmark::State& state, long times, Render render) {
  std::string const* text = nullptr;
  Measure(state, [&] {
    for (long i = 0; i < times; ++i) benchmark::DoNotOptimize((text = &render())->data());
    return 0;
  });
  state.counters["times"] = static_cast<double>(times);
  state.counters["checksum"] = TextChecksum(*text);
}

std::uintptr_t Place(int const& record) { return reinterpret_cast<std::uintptr_t>(&record); }

void RenderPlaces(benchmark::State& state, long size) {
  Raw raw(TheServer());
  int sale = 0, customer = 0, city = 0;
  MeasureRendering(state, size, [&]() -> std::string const& {
    return raw.Render(Place(sale), Place(customer), Place(city), 10, "Saint John's");
  });
}

void RenderFixed(benchmark::State& state, long size) {
  Raw raw(TheServer());
  MeasureRendering(state, size,
                   [&]() -> std::string const& { return raw.Render("T1", "T2", "T3", 10, "Saint John's"); });
}

void RenderConditions(benchmark::State& state, long size) {
  Raw raw(TheServer());
  int account = 0;
  MeasureRendering(state, Renderings(size), [&]() -> std::string const& {
    return raw.RenderConditions(Place(account), static_cast<int>(size));
  });
}

void Fill(benchmark::State& state, long size) {
  Raw raw(TheServer());
  std::map<int, Account> store;
  Measure(state, [&] {
    raw.Fill(size, store);
    return static_cast<std::uint32_t>(store.size());
  });
}

template <class Map>
void Hit(benchmark::State& state, long size) {
  Raw raw(TheServer());
  Map store;
  TellBytes(state, size, [&] { raw.Fill(size, store); });
  Account account;
  RandomKeys keys(size);
  state.counters["times"] = kHits;
  Measure(state, [&] {
    Checksum checksum;
    for (long i = 0; i < kHits; ++i) {
      account = store.find(keys.Next())->second;
      checksum.Add(account);
    }
    return checksum.Sum();
  });
}

template <void (Raw::*kIterate)(long, Checksum&)>
Workloads::mapped_type Iterate(Statements make(long), long rows(long)) {
  return [make, rows](benchmark::State& state, long size) {
    Raw raw(TheServer());
    raw.Make(make(size));
    state.counters["times"] = static_cast<double>(rows(size));
    Measure(state, [&] {
      Checksum checksum;
      (raw.*kIterate)(size, checksum);
      return checksum.Sum();
    });
  };
}

}  // namespace

}  // namespace bench

int main(int argc, char** argv) {
  auto workloads = bench::CommonWorkloads<bench::Raw>();
  workloads["load"] = bench::Load;
  workloads["empty"] = bench::Empty;
  workloads["copy"] = bench::Copy;
  workloads["sum_inserted"] = bench::Sum<bench::kInserted>;
  workloads["sum_updated"] = bench::Sum<bench::kUpdated>;
  workloads["render_kept"] = bench::RenderPlaces;
  workloads["render_built"] = bench::RenderPlaces;
  workloads["render_fixed"] = bench::RenderFixed;
  workloads["conditions"] = bench::RenderConditions;
  workloads["fill"] = bench::Fill;
  workloads["hit"] = bench::Hit<std::map<int, bench::Account>>;
  workloads["hit_hashed"] = bench::Hit<std::unordered_map<int, bench::Account>>;
  workloads["columns"] = bench::Iterate<&bench::Raw::IterateWide>(bench::WideTable, bench::WideRows);
  workloads["text"] = bench::Iterate<&bench::Raw::IterateText>(bench::TextTable, bench::TextRows);
  return bench::Run(argc, argv, workloads);
}
