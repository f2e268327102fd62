#ifndef CORVANE_TESTS_INJECTION_CANARY_H
#define CORVANE_TESTS_INJECTION_CANARY_H

#include <memory>
#include <string>
#include <unordered_map>

#include "tests/injection/hostile_texts.h"
#include "tests/support/live.h"

namespace corvane::test {

/// A record of the table that nothing hostile may change. `Text` is the class of its text, of kCapacity bytes.
template <class Text>
struct CanaryOf : ASDomain {
  ASInt id;
  Text name{kCapacity};
  ASAttribute idColumn{"id", "Id", 0, corvane::kKey};
  ASAttribute nameColumn{"name"};

  CanaryOf() : ASDomain("canary", "Canary") { Add(idColumn, id).Add(nameColumn, name); }
  CanaryOf(CanaryOf const&) = delete;
  CanaryOf& operator=(CanaryOf const&) = delete;
};

/// The same with the text as key.
template <class Text>
struct CanaryByName : ASDomain {
  Text name{kCapacity};
  ASInt id;
  ASAttribute nameColumn{"name", "Name", 0, corvane::kKey};
  ASAttribute idColumn{"id"};

  CanaryByName() : ASDomain("canary", "Canary") { Add(nameColumn, name).Add(idColumn, id); }
  CanaryByName(CanaryByName const&) = delete;
  CanaryByName& operator=(CanaryByName const&) = delete;
};

using Canary = CanaryOf<ASVStr>;

/// Literals, and the bytes that each stands for.
using Literals = std::unordered_map<std::string, std::string>;

/// The fixture of tests with that table: three rows, the columns of which take bytes as they are.
class CanaryTest : public LiveTest {
 protected:
  void CreateTables() override {
    Run("CREATE TABLE canary (id INT PRIMARY KEY, name LONGBLOB, note LONGBLOB)");
    AddRows();
  }

  void AddRows() {
    Run("INSERT INTO canary VALUES (1, 'tweet', 'first'), (2, 'sing', 'second'), (3, 'O\\'Brien', NULL)");
  }

  /// Sends the literals, many at once, and compares the bytes that the server has of each with those it stands for.
  void ExpectUnderstood(Literals const& literals, char const* setting);

  Rows CanaryRows() { return StoredRows("SELECT id, name, note FROM canary ORDER BY id"); }

  static Rows Untouched() { return {{"1", "tweet", "first"}, {"2", "sing", "second"}, {"3", "O'Brien", Field()}}; }
};

}  // namespace corvane::test

#endif
