#ifndef CORVANE_TESTS_SUPPORT_SCRIPTED_CACHE_H
#define CORVANE_TESTS_SUPPORT_SCRIPTED_CACHE_H

#include <optional>
#include <string>
#include <utility>

#include "corvane/corvane.h"
#include "tests/support/scripted_cursor.h"

namespace corvane::test {

/// The columns of a country: its code is the key.
struct CountryColumns {
  ASVStr code{2};
  ASVStr name{60};
  ASAttribute codeColumn{"code", "Code", 0, corvane::kKey};
  ASAttribute nameColumn{"name"};

  void AddTo(ASDomain& record) { record.Add(codeColumn, code).Add(nameColumn, name); }
};

/// A country as a record of the cache class.
template <class Cache>
struct CountryOf : Cache, CountryColumns {
  explicit CountryOf(ASSession* session, int saveFirst = 0)
      : ASDomain("country", "Country"), ASSimpleCache(session, saveFirst), Cache(session, saveFirst) {
    AddTo(*this);
  }
};

/// The statements of a country, with the name "New Zealand" where they write one.
inline constexpr char const* kSelectNZ = "SELECT `code`, `name` FROM `country` WHERE `code`='NZ' FOR UPDATE";
inline constexpr char const* kSaveNZ =
    "INSERT INTO `countryArc` (code, name) SELECT code, name FROM `country` WHERE code='NZ'";
inline constexpr char const* kSaveIT =
    "INSERT INTO `countryArc` (code, name) SELECT code, name FROM `country` WHERE code='IT'";
inline constexpr char const* kInsertNZ = "INSERT INTO `country` (`code`, `name`) VALUES ('NZ', 'New Zealand')";
inline constexpr char const* kUpdateNZ = "UPDATE `country` SET `name`='New Zealand' WHERE `code`='NZ'";
inline constexpr char const* kDeleteNZ = "DELETE FROM `country` WHERE `code`='NZ'";

/// A session on the scripted client library and a cache of countries; `Country` is the CountryOf its class.
template <class Country>
class ScriptedCache : public ScriptedCursor {
 protected:
  void SetUp() override {
    ScriptedCursor::SetUp();
    country.emplace(session);
  }

  /// The cache with the save-first switch on.
  void SaveFirst() { country.emplace(session, 1); }

  /// Session and cache with other parameters.
  void ReopenWith(Parameters parameters, int saveFirst) {
    Reopen(std::move(parameters));
    country.emplace(session, saveFirst);
  }

  /// Session and cache at a debug level; the record is set.
  void ReadyAt(int level, int saveFirst = 0) {
    session = &Ready({}, level);
    country.emplace(session, saveFirst);
    SetNewZealand();
  }

  void SetNewZealand() {
    country->code = "NZ";
    country->name = "New Zealand";
  }

  /// A miss that the server answers.
  void Read(char const* code, char const* name) {
    Answer(2, {{code, name}}).Matching("SELECT `code`");
    country->code = code;
    country->Get(-1);
  }

  /// The name that the store has for the key; "none" when the server is asked, which has no answer.
  std::string Stored(char const* code) {
    country->code = code;
    if (ThrownBy([&] { country->Get(-1); }) == Thrown{0, "MySQL fetch error. "}) return "none";
    return country->name.getstr().ToString();
  }

  std::optional<Country> country;
};

}  // namespace corvane::test

#endif
