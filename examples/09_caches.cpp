// A cache is a record that remembers what it has read: a key that was asked for before costs no statement. It writes
// through to the table at once, and has to be cleared after a rollback.
//
//     ./run example 09

#include <corvane/corvane.h>

#include <iostream>

#include "example.h"

namespace {

// Both constructors are named here: ASDomain and ASSimpleCache are virtual bases.
struct Country : ASCache {
  explicit Country(ASSession* session) : ASDomain("example_country", ""), ASCache(session, 0) {
    Add(codeColumn, code).Add(nameColumn, name);
  }

  ASVStr code{2};
  ASVStr name{4 * 60};

  ASAttribute codeColumn{"code", "", 0, corvane::kKey};
  ASAttribute nameColumn{"name"};
};

// A row of SHOW STATUS, taken by position.
struct Status : ASDomain {
  Status() : ASDomain("", "") { Add(nameColumn, name).Add(valueColumn, value); }
  Status(Status&&) = delete;

  ASVStr name{64};
  ASInt64 value;

  ASAttribute nameColumn{"Variable_name"};
  ASAttribute valueColumn{"Value"};
};

long SelectsSoFar(ASSession& session) {
  Status status;
  session.Execute("SHOW SESSION STATUS LIKE 'Com_select'");
  session.Fetch(status);
  return status.value;
}

// Prints what each code is called, and how many SELECTs that took.
void LookUp(ASSession& session, Country& country, std::initializer_list<char const*> codes) {
  long const before = SelectsSoFar(session);
  for (char const* const code : codes) {
    country.code = code;
    country.Get(-1);  // when there is no such row, all values become NULL
    std::cout << code << " is " << (country.name.IsNull() ? "unknown" : country.name.str()) << "; ";
  }
  std::cout << SelectsSoFar(session) - before << " SELECTs\n";
}

void Show(ASSession& session) {
  Country country(&session);
  country.ReadOnlyGet();  // or each row that is read would be locked
  LookUp(session, country, {"CI", "NZ", "CI", "CI", "NZ"});
  LookUp(session, country, {"XX", "XX"});  // what is not there is not remembered
  std::cout << country.Size() << " records are remembered\n";

  std::cout << country.PreFetch() << " records in the table, read at once\n";
  LookUp(session, country, {"CI", "DE", "NZ"});

  country.code = "NZ";
  country.Get(-1);
  country.name = "Aotearoa New Zealand";
  country.Put();
  country.code = "SE";
  country.name = "Sweden";
  country.Insert();
  LookUp(session, country, {"NZ", "SE"});

  session.Rollback();
  LookUp(session, country, {"NZ", "SE"});  // what was rolled back is still remembered
  country.Clear();
  LookUp(session, country, {"NZ", "SE"});
  session.Commit();
}

}  // namespace

int main(int count, char** arguments) {
  return example::Run(count, arguments, [](example::Parameters const& parameters) {
    ASSession session(parameters, 0, false);
    session.Execute(
        "CREATE TEMPORARY TABLE example_country (code CHAR(2) PRIMARY KEY, name VARCHAR(60)) ENGINE=InnoDB"
        " CHARACTER SET utf8mb4");
    session.Execute(
        "INSERT INTO example_country VALUES ('CI', 'Côte d\\'Ivoire'), ('DE', 'Germany'), ('NZ', 'New Zealand')");
    session.Commit();
    Show(session);
  });
}
