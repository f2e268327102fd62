// Questions over several tables: an inner join, an outer join for what is missing, sums by group with a condition on
// the sum, and a sub-query. The tables of the FROM clause follow from the columns that are named.
//
//     ./run example 05

#include <corvane/corvane.h>

#include <iostream>
#include <memory>

#include "example.h"

namespace {

struct Author : ASDomain {
  Author() : ASDomain("example_author", "") { Add(idColumn, id).Add(nameColumn, name); }
  Author(Author&&) = delete;

  ASInt id;
  ASVStr name{4 * 40};

  ASAttribute idColumn{"id", "", 0, corvane::kKey};
  ASAttribute nameColumn{"name"};
};

struct Sale : ASDomain {
  Sale() : ASDomain("example_sale", "") { Add(idColumn, id).Add(authorColumn, author).Add(amountColumn, amount); }
  Sale(Sale&&) = delete;

  ASInt id, author;
  ASDouble amount;

  ASAttribute idColumn{"id", "", 0, corvane::kKey};
  ASAttribute authorColumn{"author"};
  ASAttribute amountColumn{"amount"};
};

void PrintStatement(ASCursor const& cursor, Author const& author, Sale const& sale) {
  Str sql = cursor.Query();
  std::cout << sql.replaceStr(author.Alias(), "a").replaceStr(sale.Alias(), "s") << '\n';
}

void LargeSales(ASSession& session) {
  Author author;
  Sale sale;
  ASCursor cursor(&session);
  cursor.Project() << author.nameColumn << sale.amountColumn;
  cursor.Where(sale.authorColumn == author.idColumn && sale.amountColumn >= 20);
  cursor.Order(-sale.amountColumn);
  PrintStatement(cursor, author, sale);
  while (cursor.Fetch() != 0) std::cout << "  " << author.name << ", " << sale.amount.getstr() << '\n';
}

// `++` marks the optional side: authors without a sale have a row, too, with NULL in its columns.
void WithoutSales(ASSession& session) {
  Author author;
  Sale sale;
  ASCursor cursor(&session);
  cursor.Project() << author.nameColumn;
  cursor.Where(++sale.authorColumn == author.idColumn && sale.idColumn.IsNull());
  PrintStatement(cursor, author, sale);
  while (cursor.Fetch() != 0) std::cout << "  " << author.name << '\n';
}

// Plain columns beside aggregates are grouped by. An aggregate belongs to the caller, and is read into the value of its
// column unless Register() gives it another.
void Totals(ASSession& session) {
  Author author;
  Sale sale;
  ASInt sales;
  std::unique_ptr<ASGroupAttribute> const total(sale.amountColumn.Sum());
  std::unique_ptr<ASGroupAttribute> const count(sale.idColumn.Count());
  count->Register(&sales, &sale);
  ASCursor cursor(&session);
  cursor.Project() << author.nameColumn << *total << *count;
  cursor.Where(sale.authorColumn == author.idColumn);
  cursor.Having(*total > 15);
  cursor.Order(-*total);
  PrintStatement(cursor, author, sale);
  while (cursor.Fetch() != 0) {
    std::cout << "  " << author.name << ": " << sale.amount.getstr() << " by " << sales.getstr() << " sales\n";
  }
}

void AmongThem(ASSession& session) {
  Author author;
  Sale sale;
  ASFilter sold;
  sold.Project() << sale.authorColumn;
  sold.Where(sale.amountColumn > 10);
  ASCursor cursor(&session);
  cursor.Project() << author.nameColumn;
  cursor.Where(author.idColumn.In(sold.Select()));
  cursor.Order(ASOrder(author.nameColumn.Query()));
  PrintStatement(cursor, author, sale);
  while (cursor.Fetch() != 0) std::cout << "  " << author.name << '\n';
}

}  // namespace

int main(int count, char** arguments) {
  return example::Run(count, arguments, [](example::Parameters const& parameters) {
    ASSession session(parameters, 0, false);
    session.Execute(
        "CREATE TEMPORARY TABLE example_author (id INT PRIMARY KEY, name VARCHAR(40)) CHARACTER SET utf8mb4");
    session.Execute("CREATE TEMPORARY TABLE example_sale (id INT PRIMARY KEY, author INT, amount DOUBLE)");
    session.Execute("INSERT INTO example_author VALUES (1, 'Ada'), (2, 'Zoë'), (3, 'Carl')");
    session.Execute("INSERT INTO example_sale VALUES (1, 1, 12.5), (2, 1, 7), (3, 2, 240), (4, 2, 20.5)");
    session.Commit();
    LargeSales(session);
    WithoutSales(session);
    Totals(session);
    AmongThem(session);
    session.Commit();
  });
}
