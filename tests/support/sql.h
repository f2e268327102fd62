#ifndef CORVANE_TESTS_SUPPORT_SQL_H
#define CORVANE_TESTS_SUPPORT_SQL_H

#include <string>
#include <utility>
#include <vector>

#include "corvane/corvane.h"

namespace corvane::test {

/// A record and the name that stands for its alias in expected texts.
using Name = std::pair<ASDomain const*, char const*>;

/// The text with the records' aliases, which hold addresses, replaced by their names.
inline std::string Sql(Str text, std::vector<Name> const& names) {
  for (auto const& [record, name] : names) text.replaceStr(record->Alias(), name);
  return text.ToString();
}

/// The same of anything that has a Query().
template <class Query>
std::string Sql(Query const& query, std::vector<Name> const& names) {
  return Sql(query.Query(), names);
}

/// All that a condition holds: its text in brackets, the records that it names, its outer joins.
/// "[o.total=5] o", "[] (o) LEFT JOIN c ON [c.id=(o.customer_id)]".
inline std::string Described(ASComparison const& condition, std::vector<Name> const& names) {
  auto const nameOf = [&names](ASDomain const* record) -> std::string {
    if (record == nullptr) return "null";
    for (auto const& [known, name] : names) {
      if (known == record) return name;
    }
    return "unknown";
  };
  std::string all = "[" + Sql(condition, names) + "]";
  for (ASDomain const* const record : condition.Domains()) all += " " + nameOf(record);
  auto on = condition.JoinConditions().begin();
  for (auto const& [requiredSide, optionalSide] : condition.JoinPairs()) {
    if (on == condition.JoinConditions().end()) return all + " JOIN WITHOUT CONDITION";
    all += " (" + nameOf(requiredSide) + ") LEFT JOIN " + nameOf(optionalSide) + " ON [" + Sql(*on++, names) + "]";
  }
  return on == condition.JoinConditions().end() ? all : all + " CONDITION WITHOUT JOIN";
}

/// The records that queries of the tests are about.
struct Orders : ASDomain {
  ASInt id, customer, total;
  ASVStr note{40};
  ASAttribute idColumn{"id", "Id", 0, corvane::kKey};
  ASAttribute customerColumn{"customer_id"};
  ASAttribute totalColumn{"total"};
  ASAttribute noteColumn{"note"};

  Orders() : ASDomain("orders", "Orders") {
    Add(idColumn, id).Add(customerColumn, customer).Add(totalColumn, total).Add(noteColumn, note);
  }
  Orders(Orders const&) = delete;
  Orders& operator=(Orders const&) = delete;
};

struct Customers : ASDomain {
  ASInt id;
  ASVStr name{40};
  ASAttribute idColumn{"id", "Id", 0, corvane::kKey};
  ASAttribute nameColumn{"name"};

  Customers() : ASDomain("customers", "Customers") { Add(idColumn, id).Add(nameColumn, name); }
  Customers(Customers const&) = delete;
  Customers& operator=(Customers const&) = delete;
};

struct Cities : ASDomain {
  ASInt id;
  ASVStr name{40};
  ASAttribute idColumn{"id", "Id", 0, corvane::kKey};
  ASAttribute nameColumn{"name"};

  Cities() : ASDomain("shop.cities", "Cities") { Add(idColumn, id).Add(nameColumn, name); }
  Cities(Cities const&) = delete;
  Cities& operator=(Cities const&) = delete;
};

}  // namespace corvane::test

#endif
