// One statement changes or deletes all rows that a condition chooses, also by what another table says. Without a
// condition that would be every row; in safe mode the session refuses it.
//
//     ./run example 07

#include <corvane/corvane.h>

#include <iostream>

#include "example.h"

namespace {

struct Item : ASDomain {
  Item() : ASDomain("example_item", "") { Add(idColumn, id).Add(makerColumn, maker).Add(priceColumn, price); }
  Item(Item&&) = delete;

  ASInt id, maker;
  ASDouble price;

  ASAttribute idColumn{"id", "", 0, corvane::kKey};
  ASAttribute makerColumn{"maker"};
  ASAttribute priceColumn{"price"};
};

struct Maker : ASDomain {
  Maker() : ASDomain("example_maker", "") { Add(idColumn, id).Add(nameColumn, name); }
  Maker(Maker&&) = delete;

  ASInt id;
  ASVStr name{4 * 40};

  ASAttribute idColumn{"id", "", 0, corvane::kKey};
  ASAttribute nameColumn{"name"};
};

// An updater or a deleter.
template <class Change>
void Execute(ASSession& session, Change const& change, Item const& item, Maker const& maker) {
  Str sql = change.Query();
  std::cout << sql.replaceStr(item.Alias(), "i").replaceStr(maker.Alias(), "m") << '\n';
  try {
    unsigned long const rows = change.Execute(&session);
    std::cout << "  " << rows << (rows == 1 ? " row\n" : " rows\n");
  } catch (AException const& error) {
    std::cout << "  " << error.what() << '\n';
  }
}

void PrintItems(ASSession& session) {
  Item item;
  ASCursor cursor(&session);
  cursor.Order(ASOrder(item.idColumn.Query()));
  std::cout << "  items:";
  while (cursor.Fetch(item) != 0) {
    std::cout << ' ' << item.id << " at " << (item.price.IsNull() ? "no price" : item.price.getstr().str()) << ';';
  }
  std::cout << '\n';
}

void Show(ASSession& session) {
  Item item;
  Maker maker;
  PrintItems(session);

  ASUpdater raise(item.priceColumn.Set(item.priceColumn * 1.5 + 1));  // computed by the server
  raise.Where(item.priceColumn < 20);
  Execute(session, raise, item, maker);

  ASUpdater move(item.makerColumn.Set(2));
  move << item.priceColumn.Set(nullptr);  // several columns of one table
  move.Where(item.makerColumn == maker.idColumn && maker.nameColumn == "O'Brien");
  Execute(session, move, item, maker);
  PrintItems(session);

  ASDeleter unpriced(item);
  unpriced.Where(item.priceColumn.IsNull());
  Execute(session, unpriced, item, maker);

  // A negation names no record, and the deleter would drop it: the other condition says which table is meant.
  ASDeleter others(item);
  others.Where(item.idColumn.IsNotNull() && !(item.makerColumn == 2));
  Execute(session, others, item, maker);
  PrintItems(session);

  ASDeleter all(item);  // the condition was forgotten
  Execute(session, all, item, maker);
  session.Rollback();
  PrintItems(session);
  session.Commit();
}

}  // namespace

int main(int count, char** arguments) {
  return example::Run(count, arguments, [](example::Parameters parameters) {
    parameters["SafeMode"] = "on";
    ASSession session(parameters, 0, false);
    session.Execute("CREATE TEMPORARY TABLE example_item (id INT PRIMARY KEY, maker INT, price DOUBLE) ENGINE=InnoDB");
    session.Execute("CREATE TEMPORARY TABLE example_maker (id INT PRIMARY KEY, name VARCHAR(40)) ENGINE=InnoDB");
    session.Execute("INSERT INTO example_item VALUES (1, 1, 9), (2, 1, 30), (3, 2, 15), (4, 3, 50)");
    session.Execute("INSERT INTO example_maker VALUES (1, 'O\\'Brien'), (2, 'Sato'), (3, 'Ode')");
    session.Commit();
    Show(session);
  });
}
