// A cursor holds its whole result in memory, each row as long as the capacities of its columns. Ask for what is needed:
// few columns, or pages by key; give the rows back when they are done with.
//
//     ./run example 06

#include <corvane/corvane.h>

#include <iostream>
#include <memory>

#include "example.h"

namespace {

constexpr int kReadings = 4000;

struct Reading : ASDomain {
  Reading() : ASDomain("example_reading", "") { Add(idColumn, id).Add(degreesColumn, degrees).Add(noteColumn, note); }
  Reading(Reading&&) = delete;

  ASInt id;
  ASDouble degrees;
  ASVStr note{4 * 100};

  ASAttribute idColumn{"id", "", 0, corvane::kKey};
  ASAttribute degreesColumn{"degrees"};
  ASAttribute noteColumn{"note"};
};

// Many rows by few statements.
void Fill(ASSession& session) {
  constexpr int rowsOfAStatement = 1000;
  for (int id = 1; id <= kReadings;) {
    Str insert("INSERT INTO example_reading VALUES ");
    for (int i = 0; i < rowsOfAStatement; ++i, ++id) {
      insert << (i > 0 ? ", (" : "(") << id << ", " << (id % 400) / 10.0 << ", " << corvane::Literal(Str("it's a note"))
             << ')';
    }
    session.Execute(insert);
  }
  session.Commit();
}

// In tens. Detach() hands out the rows as memory of their own, and closes the cursor, which can run again.
int BytesPerRow(ASCursor& cursor) {
  int const rows = cursor.GetAmount();
  std::unique_ptr<MapBuffer> const buffer(cursor.Detach());
  return (buffer->Capacity() / rows + 5) / 10 * 10;
}

void CompareMemory(ASSession& session) {
  Reading reading;
  ASCursor whole(&session);
  whole.Project() << reading.idColumn << reading.degreesColumn << reading.noteColumn;
  ASCursor narrow(&session);
  narrow.Project() << reading.idColumn << reading.degreesColumn;
  std::cout << "a row takes about " << BytesPerRow(whole) << " bytes, without the text " << BytesPerRow(narrow) << '\n';
}

// By the key, not by an offset: each page starts where the last one ended, and costs the same however far it is.
void ReadByPages(ASSession& session) {
  constexpr int rowsOfAPage = 600;
  Reading reading;
  int last = 0, pages = 0, rows = 0;
  double sum = 0;
  for (bool more = true; more; ++pages) {
    ASCursor cursor(&session);
    cursor.Project() << reading.idColumn << reading.degreesColumn;
    cursor.Where(reading.idColumn > last);
    cursor.Order(ASOrder(reading.idColumn.Query()));
    cursor.Limit(rowsOfAPage);
    while (cursor.Fetch() != 0) {
      last = reading.id;
      sum += reading.degrees;
      ++rows;
    }
    more = cursor.GetAmount() == rowsOfAPage;
  }
  std::cout << rows << " rows in " << pages << " pages, " << sum / rows << " degrees on the average\n";
}

// The rows that were read can be walked again and again, in any order, without the server.
void ReadAgain(ASSession& session) {
  Reading reading;
  ASCursor cursor(&session);
  cursor.Project() << reading.idColumn << reading.degreesColumn;
  cursor.Where(reading.degreesColumn >= 39.5 && reading.idColumn <= 400);
  cursor.Order(ASOrder(reading.idColumn.Query()));
  for (char const* const round : {"first", "second"}) {
    std::cout << "the " << round << " time:";
    while (cursor.Fetch() != 0) std::cout << ' ' << reading.degrees.getstr();
    std::cout << '\n';
    cursor.Reset();
  }
  cursor.Fetch(2);  // counted from 0
  std::cout << "row 2 is reading " << reading.id << '\n';

  session.Execute("UPDATE example_reading SET degrees = 41 WHERE id = 395");
  delete cursor.Detach();  // frees the rows; the cursor can run once more
  cursor.Reset();          // which it does here
  cursor.Fetch();
  std::cout << cursor.GetAmount() << " rows now, the first one of " << reading.degrees.getstr() << " degrees\n";
  session.Rollback();
}

}  // namespace

int main(int count, char** arguments) {
  return example::Run(count, arguments, [](example::Parameters const& parameters) {
    ASSession session(parameters, 0, false);
    session.Execute("CREATE TEMPORARY TABLE example_reading (id INT PRIMARY KEY, degrees DOUBLE, note VARCHAR(100))");
    Fill(session);
    CompareMemory(session);
    ReadByPages(session);
    ReadAgain(session);
  });
}
