#include "caches.h"

#include <cstddef>
#include <map>
#include <set>
#include <string>

#include "layout.h"
#include "records.h"

namespace demo {

namespace {

// The record Country once more, as one that remembers what it has read. It cannot be derived from Country, since the
// caches share one ASDomain, their virtual base.
struct CountryCache : ASCache {
  explicit CountryCache(ASSession* session) : ASDomain("tz_country", ""), ASCache(session, 0) {
    Add(codeColumn, code).Add(nameColumn, name);
  }

  ASStr code{2};
  ASVStr name{100 * kBytesPerCharacter};

  ASAttribute codeColumn{"code", "", 0, corvane::kKey};
  ASAttribute nameColumn{"name"};
};

// No table: a row of SHOW STATUS.
struct StatusRow : ASDomain {
  StatusRow() : ASDomain("", "") { Add(nameColumn, name).Add(valueColumn, value); }
  StatusRow(StatusRow&&) = delete;

  ASVStr name{64};
  ASInt64 value;

  ASAttribute nameColumn{"Variable_name"};
  ASAttribute valueColumn{"Value"};
};

// How many SELECTs the server has run for this session.
long SelectsSoFar(ASSession& session) {
  StatusRow row;
  session.Execute("SHOW SESSION STATUS LIKE 'Com_select'");
  session.Fetch(row);
  return row.value;
}

void ReadThroughACache(ASSession& session, TimeZoneData const& data, Account& account) {
  account.Step("Read through a cache: the country of every link; the server counts how often it was asked");
  std::map<std::string, std::string> names;
  for (CountryLine const& line : data.countries) names[line.code] = line.name;

  CountryCache country(&session);
  country.ReadOnlyGet();  // else every country that is read would be locked
  account.Call("CountryCache country(&session); country.ReadOnlyGet()");
  account.Call("for (each link) { country.code = ...; country.Get(-1); ... country.name }");
  std::set<std::string> codes;
  std::size_t asInFiles = 0;
  long const before = SelectsSoFar(session);
  for (ZoneLine const& zone : data.zones) {
    for (std::string const& code : zone.countryCodes) {
      country.code = code;
      country.Get(-1);
      codes.insert(code);
      asInFiles += country.name == names.at(code).c_str() ? 1 : 0;
    }
  }
  long const misses = SelectsSoFar(session) - before;
  long const hits = static_cast<long>(data.LinkCount()) - misses;
  account.Result(asInFiles == data.LinkCount(), std::to_string(asInFiles) + " names are as in the files");
  account.Result(
      misses == static_cast<long>(codes.size()) && misses == country.Size(),
      std::to_string(misses) + " SELECTs, one for each country; " + std::to_string(hits) + " answers came from memory");
  session.Commit();
}

void WriteThroughACache(ASSession& session, Target const& target, TimeZoneData const& data, Account& account) {
  account.Step("Write through a cache: others see what is committed; what they write is seen after Clear()");
  CountryLine const& line = data.countries.front();
  CountryCache country(&session);
  country.code = line.code;
  country.Get(-1);
  country.name = "Renamed";
  account.Call("country.name = \"Renamed\"; country.Put(); session.Commit()", session.UpdateQuery(country, 0));
  country.Put();
  session.Commit();

  ASSession second = target.Open();
  Country same;
  same.code = line.code;
  account.Call("second.Select(same)", second.SelectQuery(same, 0));
  int const found = second.Select(same);
  account.Result(found == 1 && same.name == "Renamed", "for a second session same.name is " + Quoted(same.name));

  same.name = line.name;
  account.Call("same.name = ...; second.Update(same); second.Commit()", second.UpdateQuery(same, 0));
  second.Update(same);
  second.Commit();
  second.Disconnect();

  long const before = SelectsSoFar(session);
  country.Get(-1);
  account.Call("country.Get(-1)");
  account.Result(country.name == "Renamed" && SelectsSoFar(session) == before,
                 "country.name still is " + Quoted(country.name) + ", from memory");

  account.Call("country.Clear(); country.code = \"" + line.code + "\"; country.Get(-1)",
               session.SelectQuery(country, 0));
  country.Clear();
  country.code = line.code;
  country.Get(-1);
  account.Result(country.name == line.name.c_str() && SelectsSoFar(session) == before + 1,
                 "country.name is " + Quoted(country.name) + " again");
  session.Commit();
}

}  // namespace

void UseACache(ASSession& session, Target const& target, TimeZoneData const& data, Account& account) {
  ReadThroughACache(session, data, account);
  WriteThroughACache(session, target, data, account);
}

}  // namespace demo
