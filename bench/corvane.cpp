// The library itself.

#include <corvane/corvane.h>

#include <deque>
#include <stdexcept>

#include "account_columns.h"
#include "growth.h"
#include "program.h"

namespace bench {

namespace {

// The values of a record and those of the plain struct.
struct AccountValues : AccountColumns {
  void To(Account& to) const {
    to.id = id;
    to.account = account;
    to.name = name.View();
    to.code = code.View();
    to.balance = balance;
    to.price = price;
    to.created = static_cast<int>(created);
    to.hasNote = note.IsNull() == 0;
    if (to.hasNote) to.note = note.View();
    to.hasAge = age.IsNull() == 0;
    if (to.hasAge) to.age = age;
    to.hasPhoto = photo.IsNull() == 0;
    if (to.hasPhoto) to.photo.assign(static_cast<char const*>(photo.voidptr()), photo.Length());
  }

  void From(Account const& from) {
    id = from.id;
    account = from.account;
    name = from.name.c_str();
    code = from.code.c_str();
    balance = from.balance;
    price = from.price;
    created = static_cast<int>(from.created);
    note = from.hasNote ? from.note.c_str() : nullptr;
    if (from.hasAge) {
      age = from.age;
    } else {
      age.SetNull();
    }
    if (from.hasPhoto) {
      photo = RealBlob(static_cast<unsigned>(from.photo.size()), from.photo.data(), NoCopy);
    } else {
      photo.SetNull();
    }
  }

  using AccountColumns::AddTo;
  void AddTo(Checksum& checksum) const {
    checksum.Add(std::int64_t{id});
    checksum.Add(std::int64_t{account});
    checksum.Add(name.View());
    checksum.Add(code.View());
    checksum.Add(double{balance});
    checksum.Add(double{price});
    checksum.Add(std::int64_t{created});
    if (note.IsNull() == 0) checksum.Add(note.View());
    if (age.IsNull() == 0) checksum.Add(std::int64_t{age});
    if (photo.IsNull() == 0) {
      checksum.Add(std::string_view(static_cast<char const*>(photo.voidptr()), photo.Length()));
    }
  }
};

struct AccountRecord : ASDomain, AccountValues {
  explicit AccountRecord(char const* table) : ASDomain(table, "") { AddTo(*this); }
  AccountRecord(AccountRecord const&) = delete;
  AccountRecord& operator=(AccountRecord const&) = delete;
};

std::map<std::string, std::string> Parameters(Server const& server) {
  return {{"Host", server.host},         {"Port", std::to_string(server.port)}, {"UserName", server.user},
          {"Password", server.password}, {"Database", server.database},         {"AutoCommit", "on"},
          {"EmulateSequences", "no"}};
}

class Corvane {
 public:
  explicit Corvane(Server const& server) : session_(Parameters(server), 0, false) {
    session_.ReadOnly();  // a plain SELECT, without FOR UPDATE
  }

  void Fetch(long rows, std::vector<Account>& into) {
    ASCursor cursor(&session_);
    cursor.Where(account_.idColumn <= rows);
    while (cursor.Fetch(account_) != 0) account_.To(into.emplace_back());
  }

  void Iterate(long rows, Checksum& checksum) {
    ASCursor cursor(&session_);
    cursor.Where(account_.idColumn <= rows);
    while (cursor.Fetch(account_) != 0) account_.AddTo(checksum);
  }

  void Select(int id, Account& account) {
    account_.id = id;
    if (session_.Select(account_) == 0) throw std::runtime_error("no such account");
    account_.To(account);
  }

  void Begin() { session_.Execute("START TRANSACTION"); }
  void Commit() { session_.Commit(); }

  void Insert(Account const& account) {
    inserted_.From(account);
    session_.Insert(inserted_);
  }

  void Update(Account const& account) {
    updated_.From(account);
    session_.Update(updated_);
  }

 private:
  ASSession session_;
  AccountRecord account_{"account"};
  AccountRecord inserted_{"inserted"};
  AccountRecord updated_{"updated"};
};

struct Sale : ASDomain {
  ASInt id, quantity, customer;
  ASTime sold;
  ASDouble price;
  ASVStr note{80};
  ASAttribute idColumn{"id", "", 0, corvane::kKey};
  ASAttribute quantityColumn{"quantity"};
  ASAttribute customerColumn{"customer"};
  ASAttribute soldColumn{"sold"};
  ASAttribute priceColumn{"price"};
  ASAttribute noteColumn{"note"};
  Sale() : ASDomain("sale", "") {
    Add(idColumn, id).Add(quantityColumn, quantity).Add(customerColumn, customer).Add(soldColumn, sold);
    Add(priceColumn, price).Add(noteColumn, note);
  }
};

struct Customer : ASDomain {
  ASInt id, city;
  ASVStr name{40};
  ASAttribute idColumn{"id", "", 0, corvane::kKey};
  ASAttribute nameColumn{"name"};
  ASAttribute cityColumn{"city_id"};
  Customer() : ASDomain("customer", "") { Add(idColumn, id).Add(nameColumn, name).Add(cityColumn, city); }
};

struct City : ASDomain {
  ASInt id;
  ASVStr name{40};
  ASAttribute idColumn{"id", "", 0, corvane::kKey};
  ASAttribute nameColumn{"name"};
  City() : ASDomain("city", "") { Add(idColumn, id).Add(nameColumn, name); }
};

// The query over three tables.
struct Sales {
  Sale sale;
  Customer customer;
  City city;

  void Ask(ASCursor& cursor) {
    cursor.Project() << sale.idColumn << sale.soldColumn << sale.priceColumn << customer.nameColumn << city.nameColumn
                     << sale.noteColumn;
    cursor.Where(sale.customerColumn == customer.idColumn && customer.cityColumn == city.idColumn &&
                 sale.quantityColumn > 10 && city.nameColumn == "Saint John's");
    cursor.Order(-sale.priceColumn + sale.idColumn);
    cursor.Limit(10, 20);
  }
};

// Renders that often, and tells the checksum of the text.
template <class Render>
void MeasureRendering(benchmark::State& state, long times, Render render) {
  Str text;
  Measure(state, [&] {
    for (long i = 0; i < times; ++i) benchmark::DoNotOptimize((text = render()).str());
    return 0;
  });
  state.counters["times"] = static_cast<double>(times);
  state.counters["checksum"] = TextChecksum(text.str());
}

// The session knows the quotes around names.
void RenderKept(benchmark::State& state, long size) {
  ASSession session(Parameters(TheServer()), 0, false);
  Sales sales;
  ASCursor cursor(&session);
  sales.Ask(cursor);
  MeasureRendering(state, size, [&] { return cursor.Query(); });
}

void RenderBuilt(benchmark::State& state, long size) {
  ASSession session(Parameters(TheServer()), 0, false);
  Sales sales;
  MeasureRendering(state, size, [&] {
    ASCursor cursor(&session);
    sales.Ask(cursor);
    return cursor.Query();
  });
}

void RenderConditions(benchmark::State& state, long size) {
  struct Account : ASDomain {
    ASInt id;
    ASAttribute idColumn{"id", "", 0, corvane::kKey};
    Account() : ASDomain("account", "") { Add(idColumn, id); }
  } account;
  MeasureRendering(state, Renderings(size), [&] {
    ASComparison all("", nullptr, nullptr);
    for (int i = 0; i < size; ++i) all&& account.idColumn == i;
    ASFilter filter;
    filter.Project() << account.idColumn;
    filter.Where(all);
    return filter.Query();
  });
}

struct AccountCache : ASCache, AccountValues {
  AccountCache(ASSession* session, std::string const& table) : ASDomain(table, ""), ASCache(session, 0) {
    AddTo(*this);
  }
};

void Make(ASSession& session, Statements const& statements) {
  for (std::string const& statement : statements) session.Execute(statement);
}

void Fill(benchmark::State& state, long size) {
  ASSession session(Parameters(TheServer()), 0, false);
  Make(session, FirstAccounts(size));
  AccountCache cache(&session, Sized("first", size));
  Measure(state, [&] { return static_cast<std::uint32_t>(cache.PreFetch()); });
}

void Hit(benchmark::State& state, long size) {
  ASSession session(Parameters(TheServer()), 0, false);
  Make(session, FirstAccounts(size));
  AccountCache cache(&session, Sized("first", size));
  TellBytes(state, size, [&] { cache.PreFetch(); });
  RandomKeys keys(size);
  state.counters["times"] = kHits;
  Measure(state, [&] {
    Checksum checksum;
    for (long i = 0; i < kHits; ++i) {
      cache.id = keys.Next();
      cache.Get(-1);
      cache.AccountValues::AddTo(checksum);
    }
    return checksum.Sum();
  });
}

// A record of that many columns, an integer, a text and a double by turns.
class Wide : public ASDomain {
 public:
  explicit Wide(long columns) : ASDomain(Sized("wide", columns), "") {
    for (long i = 0; i < columns; ++i) {
      ASAttribute& column = columns_.emplace_back(Str("c") << static_cast<int>(i));
      if (i % 3 == 0) Add(column, integers_.emplace_back());
      if (i % 3 == 1) Add(column, texts_.emplace_back(20));
      if (i % 3 == 2) Add(column, doubles_.emplace_back());
    }
  }

  void AddTo(Checksum& checksum) const {
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      if (i % 3 == 0) checksum.Add(std::int64_t{integers_[i / 3]});
      if (i % 3 == 1) checksum.Add(texts_[i / 3].View());
      if (i % 3 == 2) checksum.Add(double{doubles_[i / 3]});
    }
  }

 private:
  std::deque<ASAttribute> columns_;
  std::deque<ASInt> integers_;
  std::deque<ASVStr> texts_;
  std::deque<ASDouble> doubles_;
};

class Text : public ASDomain {
 public:
  explicit Text(long bytes) : ASDomain(Sized("text", bytes), ""), content_(static_cast<int>(bytes)) {
    Add(contentColumn_, content_);
  }

  void AddTo(Checksum& checksum) const { checksum.Add(content_.View()); }

 private:
  ASVStr content_;
  ASAttribute contentColumn_{"content"};
};

template <class Record>
Workloads::mapped_type Iterate(Statements make(long), long rows(long)) {
  return [make, rows](benchmark::State& state, long size) {
    ASSession session(Parameters(TheServer()), 0, false);
    Make(session, make(size));
    state.counters["times"] = static_cast<double>(rows(size));
    Record record(size);
    Measure(state, [&] {
      Checksum checksum;
      ASCursor cursor(&session);
      while (cursor.Fetch(record) != 0) record.AddTo(checksum);
      return checksum.Sum();
    });
  };
}

}  // namespace

}  // namespace bench

int main(int argc, char** argv) {
  auto workloads = bench::CommonWorkloads<bench::Corvane>();
  workloads["render_kept"] = bench::RenderKept;
  workloads["render_built"] = bench::RenderBuilt;
  workloads["conditions"] = bench::RenderConditions;
  workloads["fill"] = bench::Fill;
  workloads["hit"] = bench::Hit;
  workloads["columns"] = bench::Iterate<bench::Wide>(bench::WideTable, bench::WideRows);
  workloads["text"] = bench::Iterate<bench::Text>(bench::TextTable, bench::TextRows);
  return bench::Run(argc, argv, workloads);
}
