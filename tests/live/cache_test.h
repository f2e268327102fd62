#ifndef CORVANE_TESTS_LIVE_CACHE_TEST_H
#define CORVANE_TESTS_LIVE_CACHE_TEST_H

#include <map>
#include <memory>
#include <string>

#include "tests/support/live.h"

// What the tests of caches against a real server stand on.
namespace corvane::test {

// How many statements of each kind the server ran for the session, by the server's own count.
using Counts = std::map<std::string, int>;
inline Counts const kNothing;
inline Counts const kOneSelect{{"Com_select", 1}, {"Questions", 1}};

inline Counts CountsOf(ASSession& session) {
  Counts counts;
  for (Row const& row : Fetched(session,
                                "SHOW SESSION STATUS WHERE Variable_name IN ('Questions', 'Com_select', "
                                "'Com_insert', 'Com_insert_select', 'Com_update', 'Com_delete')")) {
    counts[row.at(0).value()] = std::stoi(row.at(1).value());
  }
  return counts;
}

// Those that ran meanwhile.
template <class Action>
Counts StatementsOf(ASSession& session, Action action) {
  Counts const before = CountsOf(session);
  action();
  Counts counts;
  for (auto const& [kind, count] : CountsOf(session)) {
    int const own = kind == "Questions" ? 1 : 0;  // the question for the counts
    if (int const difference = count - before.at(kind) - own) counts[kind] = difference;
  }
  return counts;
}

// The record of ItemTest in a cache of the class.
template <class Cache>
struct ItemsOf : Cache {
  ASInt id;
  ASVStr name{20};
  ASAttribute idColumn{"id", "Id", 0, corvane::kKey};
  ASAttribute nameColumn{"name"};

  explicit ItemsOf(ASSession& session, int saveFirst = 0) : ASDomain("item", "Item"), Cache(&session, saveFirst) {
    this->Add(idColumn, id).Add(nameColumn, name);
  }
  ItemsOf(ItemsOf const&) = delete;
  ItemsOf& operator=(ItemsOf const&) = delete;

  ItemsOf& Of(int key, char const* text = nullptr) {
    id = key;
    name = text;
    return *this;
  }
  ItemsOf& Look(int key) {
    id = key;
    this->Get(-1);
    return *this;
  }
  void PutAs(int key, char const* text) { Of(key, text).Put(); }
  bool IsAllNull() const { return id.IsNull() != 0 && name.IsNull() != 0; }
};

// The fixture of these tests: the table of items, a session and a cache of it, of the class `Items`.
template <class Items>
class CacheTest : public ItemTest {
 protected:
  void CreateTables() override {
    ItemTest::CreateTables();
    session_ = std::make_unique<Session>(With());
    items_ = std::make_unique<Items>(*session_);
  }

  ASSession& TheSession() { return *session_; }
  Items& TheItems() { return *items_; }

 private:
  std::unique_ptr<Session> session_;
  std::unique_ptr<Items> items_;
};

}  // namespace corvane::test

#endif
