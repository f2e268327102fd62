// A sequence hands out numbers that no other session or process gets. It counts on a connection of its own: a number is
// taken at once, and a rollback does not give it back.
//
//     ./run example 08

#include <corvane/corvane.h>

#include <iostream>

#include "example.h"

namespace {

struct Invoice : ASDomain {
  Invoice() : ASDomain("example_invoice", "") { Add(numberColumn, number).Add(customerColumn, customer); }
  Invoice(Invoice&&) = delete;

  ASInt number;  // given by the sequence: it is known before the row is inserted
  ASVStr customer{4 * 40};

  ASAttribute numberColumn{"number", "", 0, corvane::kKey};
  ASAttribute customerColumn{"customer"};
};

void Write(ASSession& session, ASSequence& numbers, char const* customer) {
  Invoice invoice;
  invoice.number = numbers.getNext();
  invoice.customer = customer;
  session.Insert(invoice);
  std::cout << "invoice " << invoice.number << " for " << invoice.customer << '\n';
}

void Show(example::Parameters parameters) {
  // One row with the column Val, the last number given. It is read and counted up by other connections than this one.
  example::Table const counter(parameters, "example_invoice_numbers", "Val INT NOT NULL");

  // The sequence connection goes to a host and a port of its own, here those of the main connection.
  parameters["EmulateSequences"] = "yes";
  parameters["SequenceHost"] = parameters["Host"];
  if (!parameters["Port"].empty()) parameters["SequencePort"] = parameters["Port"];
  ASSession session(parameters, 0, false);
  session.Execute("INSERT INTO example_invoice_numbers VALUES (1000)");
  session.Commit();
  session.Execute(
      "CREATE TEMPORARY TABLE example_invoice (number INT PRIMARY KEY, customer VARCHAR(40)) ENGINE=InnoDB"
      " CHARACTER SET utf8mb4");

  ASSequence numbers(&session, "example_invoice_numbers");
  Write(session, numbers, "Ada");
  Write(session, numbers, "Zoë");
  session.Commit();

  Write(session, numbers, "Carl");
  session.Rollback();
  std::cout << "which is rolled back: its number stays used\n";
  Write(session, numbers, "Dana");
  session.Commit();

  ASSession other(parameters, 0, false);
  ASSequence same(&other, "example_invoice_numbers");
  std::cout << "another session gets " << same.getNext() << " and " << same.getNext() << '\n';
  std::cout << "this one gets " << numbers.getNext() << '\n';

  session.Execute("DELETE FROM example_invoice_numbers");
  session.Commit();
  std::cout << "without a row there is no number, which is " << numbers.getNext() << '\n';
}

}  // namespace

int main(int count, char** arguments) { return example::Run(count, arguments, Show); }
