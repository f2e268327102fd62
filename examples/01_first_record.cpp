// A record is a class: a table's name, and for each column a value and the column's name. One record is inserted, read,
// changed and deleted; each statement is shown as it is sent.
//
//     ./run example 01

#include <corvane/corvane.h>

#include <iostream>

#include "example.h"

namespace {

struct Book : ASDomain {
  Book() : ASDomain("example_book", "") { Add(idColumn, id).Add(titleColumn, title).Add(pagesColumn, pages); }
  Book(Book&&) = delete;  // a record stays where it is

  ASInt id;
  ASVStr title{4 * 60};  // VARCHAR(60): capacities are in bytes, four at most for a character
  ASInt pages;

  ASAttribute idColumn{"id", "", 0, corvane::kKey | corvane::kAutoIncrement};
  ASAttribute titleColumn{"title"};
  ASAttribute pagesColumn{"pages"};
};

void Show(ASSession& session) {
  session.Execute(
      "CREATE TEMPORARY TABLE example_book (id INT AUTO_INCREMENT PRIMARY KEY, title VARCHAR(60), pages INT)"
      " CHARACTER SET utf8mb4");

  Book book;
  book.title = "Gulliver's Travels";
  book.pages = 306;
  std::cout << session.InsertQuery(book, 0) << '\n';
  session.Insert(book);
  book.id = session.GetInsertId();  // the key that the server gave
  session.Commit();

  Book found;
  found.id = book.id;
  std::cout << session.SelectQuery(found, 0) << '\n';
  if (session.Select(found) == 1) std::cout << found.title << ", " << found.pages << " pages\n";

  found.pages = 311;  // an UPDATE writes all columns: read the record first, as here
  std::cout << session.UpdateQuery(found, 0) << '\n';
  std::cout << session.Update(found) << " row changed\n";
  session.Commit();

  std::cout << session.DeleteQuery(found, 0) << '\n';
  std::cout << session.Delete(found) << " row deleted\n";
  session.Commit();
  if (session.Select(found) == 0) std::cout << "There is no such book any more.\n";
  session.Commit();
}

}  // namespace

int main(int count, char** arguments) {
  return example::Run(count, arguments, [](example::Parameters const& parameters) {
    ASSession session(parameters, 0, false);  // the exit flag: false throws where true would end the process
    Show(session);
  });
}
