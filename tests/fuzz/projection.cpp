// Queries built step by step: select list, FROM, WHERE, GROUP BY, HAVING against an independent account.

#include <algorithm>
#include <list>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tests/fuzz/condition_model.h"
#include "tests/fuzz/sql_reader.h"
#include "tests/fuzz/target.h"

namespace corvane::fuzz {
namespace {

// What a query should hold; texts with a "?" for each literal.
struct Account {
  std::string projected;
  std::string plain;
  std::vector<std::string> items;
  std::vector<ASDomain*> domains;
  std::vector<Condition::Join> joins;
  std::string where;
  std::string having;
  std::string grouped;
  std::string hint;
  std::string prefix;
  std::string suffix;

  void Name(ASDomain* domain) {
    if (std::find(domains.begin(), domains.end(), domain) == domains.end()) domains.push_back(domain);
  }

  void Project(std::string const& text, ASDomain* domain, bool isPlain) {
    projected += (projected.empty() || projected == "DISTINCT " ? "" : ", ") + text;
    if (isPlain) plain += (plain.empty() ? "" : ", ") + text;
    items.push_back(text);
    Name(domain);
  }

  std::string Table(ASDomain const& record) const {
    std::string name;
    for (char const c : record.Name().ToString()) name += c == '.' ? prefix + "." + suffix : std::string(1, c);
    return prefix + name + suffix + " T" + std::to_string(reinterpret_cast<std::uintptr_t>(&record));
  }

  std::string From(bool parentheses) const {
    std::string plainTables;
    for (ASDomain const* const domain : domains) {
      bool const isOptional = std::any_of(joins.begin(), joins.end(),
                                          [&](Condition::Join const& join) { return join.optionalSide == domain; });
      if (domain != nullptr && !isOptional) plainTables += (plainTables.empty() ? "" : ", ") + Table(*domain);
    }
    if (parentheses && !plainTables.empty()) plainTables = "(" + plainTables + ")";
    std::string joined;
    std::set<ASDomain*> open;
    for (Condition::Join const& join : joins) {
      if (open.insert(join.optionalSide).second) {
        joined += (joined.empty() ? "" : ")") + (" LEFT JOIN " + Table(*join.optionalSide)) + " ON (" + join.on;
      } else {
        joined += " AND " + join.on;
      }
    }
    return plainTables + joined + (joined.empty() ? "" : ")");
  }

  std::string Select() const {
    std::string text = "SELECT " + (hint.empty() ? "" : "/*+ " + hint + " */");
    text += (projected.empty() ? "*" : projected) + " FROM " + From(true) + where;
    bool const byPlain = plain.size() < projected.size() || !having.empty();
    std::string const& by = !grouped.empty() || !byPlain ? grouped : plain;
    if (!by.empty()) text += " GROUP BY " + by;
    if (!having.empty()) text += " " + having;
    return text;
  }
};

// A query, and what is listed in it by address.
struct Built {
  ASFilter filter;
  std::list<ASAttribute> columns;
  std::list<std::unique_ptr<ASGroupAttribute>> aggregates;
};

// The aggregate, owned by `built`, and its text.
std::pair<ASGroupAttribute*, std::string> MakeAggregate(Input& input, Built& built) {
  Column const column = MakeColumn(input);
  using Maker = ASGroupAttribute* (ASAttribute::*)() const;
  constexpr std::pair<Maker, char const*> kMakers[] = {
      {&ASAttribute::Sum, "SUM("}, {&ASAttribute::Average, "AVG("}, {&ASAttribute::Max, "MAX("},
      {&ASAttribute::Min, "MIN("}, {&ASAttribute::Count, "COUNT("}, {&ASAttribute::CountDistinct, "COUNT( DISTINCT "}};
  auto const& [maker, text] = kMakers[input.Below(6)];
  built.aggregates.emplace_back((column.attribute.*maker)());
  return {built.aggregates.back().get(), text + column.text + ")"};
}

void AddHaving(Input& input, Built& built, Account& account) {
  auto const [aggregate, text] = MakeAggregate(input, built);
  int const number = input.Take<int>();
  ASGroupComparison condition = *aggregate > number;
  std::string expected = text + ">" + std::to_string(number);
  std::set<ASDomain*> domains{aggregate->Domain()};
  if (input.Flag()) {
    auto const [other, otherText] = MakeAggregate(input, built);
    condition || other->Like(input.Text());
    expected = "(" + expected + ") OR (" + otherText + " LIKE ?)";
    domains.insert(other->Domain());
  }
  built.filter.Having(condition);
  account.having += " HAVING " + expected;
  for (ASDomain* const domain : domains) {
    if (domain != nullptr) account.Name(domain);
  }
}

// A hint looks like a comment, which no other part of a query may.
std::string ShapeWithHints(Str text, std::string const& hint) {
  std::string const written = "/*+ " + hint + " */";
  if (hint.empty() || text.findStr(written.c_str()) != 7) return ShapeOf(text.View()).text;
  Shape const behind = ShapeOf(text.getInterval(static_cast<int>(7 + written.size()), text.length() - 1).View());
  return "SELECT " + written + behind.text;
}

void Step(Input& input, Built& built, Account& account) {
  ASProject& project = built.filter.Project();
  switch (input.Below(14)) {
    case 0:
    case 1: {
      Column column = MakeColumn(input);
      account.Project(column.text, column.attribute.Domain(), true);
      if (input.Flag()) {
        project << std::move(column.attribute);
      } else {
        built.columns.push_back(column.attribute);
        project << built.columns.back();
      }
      return;
    }
    case 2: {
      auto const [aggregate, text] = MakeAggregate(input, built);
      account.Project(text, aggregate->Domain(), false);
      if (input.Flag()) {
        project << aggregate;
      } else {
        project << ASGroupAttribute(*aggregate);
      }
      return;
    }
    case 3:
      account.projected += "DISTINCT ";
      return project.Distinct();
    case 4:
      account.projected = account.plain = "";
      account.items.clear();
      account.domains.clear();
      return project.Clear();
    case 5:
    case 6:
    case 7: {
      Condition condition = MakeCondition(input);
      for (ASDomain* const domain : condition.domains) account.Name(domain);
      if (!condition.text.empty()) account.where = " WHERE " + condition.text;
      account.joins = condition.joins;
      if (input.Flag()) {
        built.filter.Where(condition.built);
      } else {
        built.filter.Where(std::move(condition.built));
      }
      return;
    }
    case 8: {
      Column const column = MakeColumn(input);
      account.grouped += (account.grouped.empty() ? "" : ", ") + column.text;
      built.filter.GroupBy() << ASAttribute(column.attribute);
      return;
    }
    case 9:
      return AddHaving(input, built, account);
    case 10:
      account.hint = Harmless(input.Text());
      built.filter.Hint(Str(account.hint));
      return;
    case 11:
      account.prefix = Harmless(input.Text());
      account.suffix = Harmless(input.Text());
      return project.setKW(Str(account.prefix), Str(account.suffix));
    case 12: {
      ASFilter copy(built.filter);
      built.filter = copy;
      return;
    }
    default: {
      ASFilter fresh;
      fresh = built.filter;
      // Neither keywords nor outer joins, hint and GROUP BY are assigned.
      Account expected = account;
      expected.joins.clear();
      expected.prefix = expected.suffix = expected.hint = expected.grouped = "";
      CheckEqual(ShapeWithHints(fresh.Query(), expected.hint), expected.Select(), "an assigned query");
      return;
    }
  }
}

Target const target("projection", "statement, FROM and lists as counted", [](Input input) {
  Built built;
  Account account;
  for (unsigned steps = 0; steps < 30 && !input.AtEnd(); ++steps) Step(input, built, account);
  ASProject const& project = built.filter.Project();
  CheckEqual(ShapeWithHints(built.filter.Query(), account.hint), account.Select(), "the statement");
  CheckEqual(ShapeOf(project.ProjectQuery().View()).text, account.projected, "the select list");
  CheckEqual(ShapeOf(project.GroupQuery().View()).text, account.plain, "the plain columns");
  CheckEqual(ShapeOf(project.JoinQuery().View()).text, account.From(true), "the FROM clause");
  CheckEqual(ShapeOf(project.JoinForDeleteQuery().View()).text, account.From(false), "the tables of a DELETE");
  CheckEqual(project.Items().size(), account.items.size(), "the number of columns");
  Check(std::vector<ASDomain*>(project.Domains().begin(), project.Domains().end()) == account.domains, "the records");
  std::string named;
  std::string outer;
  for (std::size_t i = 0; i < account.items.size(); ++i) {
    std::string const number = std::to_string(i + 1);
    named += (i > 0 ? ", " : "") + account.items[i] + " AS Q" + number;
    outer += (i > 0 ? ", ALIAS.Q" : "ALIAS.Q") + number;
  }
  CheckEqual(ShapeOf(project.ProjectForLimitInternalQuery().View()).text, named, "the named list");
  CheckEqual(project.ProjectForLimitQuery().ToString(), outer, "the list that selects from it");
});

}  // namespace
}  // namespace corvane::fuzz
