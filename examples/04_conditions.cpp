// A search form: the condition is put together while the program runs, from the fields that somebody filled in. What
// they wrote may be anything; it stays a value.
//
//     ./run example 04

#include <corvane/corvane.h>

#include <iostream>
#include <optional>
#include <string>

#include "example.h"

namespace {

struct Product : ASDomain {
  Product() : ASDomain("example_product", "") { Add(idColumn, id).Add(nameColumn, name).Add(priceColumn, price); }
  Product(Product&&) = delete;

  ASInt id;
  ASVStr name{4 * 60};
  ASDouble price;

  ASAttribute idColumn{"id", "", 0, corvane::kKey};
  ASAttribute nameColumn{"name"};
  ASAttribute priceColumn{"price"};
};

struct SearchForm {
  std::string contains;
  std::optional<double> atLeast, below;
  std::string exactly;
};

// Any text that contains `words` as they are: % and _ mean something in a pattern, and are escaped by '!'.
std::string PatternOf(std::string const& words) {
  std::string pattern = "%";
  for (char const c : words) {
    if (c == '%' || c == '_' || c == '!') pattern += '!';
    pattern += c;
  }
  return pattern + '%';
}

// Names the record it belongs to: a cursor takes its tables from conditions and columns.
ASComparison ConditionOf(SearchForm const& form, Product const& product) {
  ASComparison condition("", nullptr, nullptr);  // the neutral start
  if (!form.contains.empty()) condition = condition && product.nameColumn.Like(PatternOf(form.contains), '!');
  if (form.atLeast) condition = condition && product.priceColumn >= *form.atLeast;
  if (form.below) condition = condition && product.priceColumn < *form.below;
  if (!form.exactly.empty()) condition = condition && product.nameColumn == form.exactly;
  return condition;
}

void Search(ASSession& session, SearchForm const& form) {
  Product product;
  ASCursor cursor(&session);
  cursor.Project() << product.nameColumn << product.priceColumn;
  cursor.Where(ConditionOf(form, product));
  cursor.Order(-product.priceColumn);
  cursor.Limit(10);
  Str sql = cursor.Query();  // the record goes by an alias that holds its address
  std::cout << sql.replaceStr(product.Alias(), "p") << '\n';
  std::cout << "  " << cursor.GetAmount() << " found\n";
  while (cursor.Fetch() != 0) std::cout << "  " << product.name << ", " << product.price.getstr() << '\n';
}

void Show(ASSession& session) {
  session.Execute(
      "CREATE TEMPORARY TABLE example_product (id INT PRIMARY KEY, name VARCHAR(60), price DOUBLE)"
      " CHARACTER SET utf8mb4");
  session.Execute(
      "INSERT INTO example_product VALUES (1, 'Lamp', 40), (2, 'Desk lamp', 75.5), (3, 'Desk', 320),"
      " (4, '100% wool', 12), (5, '100 candles', 9)");
  session.Commit();

  Search(session, {});
  Search(session, {"lamp", 50, 100, ""});
  Search(session, {"100%", {}, {}, ""});
  Search(session, {"", {}, {}, "x' OR '1'='1"});
  Search(session, {"'; DROP TABLE example_product; -- \\", {}, {}, ""});
  session.Commit();
}

}  // namespace

int main(int count, char** arguments) {
  return example::Run(count, arguments, [](example::Parameters const& parameters) {
    ASSession session(parameters, 0, false);
    Show(session);
  });
}
