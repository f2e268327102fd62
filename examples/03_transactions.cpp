// Two sessions change the same rows at the same time. Select() locks its row until Commit() or Rollback(), so no update
// is lost; two transfers in opposite directions meet in a deadlock, and the one that the server gives up begins again.
//
//     ./run example 03

#include <corvane/corvane.h>

#include <future>
#include <iostream>

#include "example.h"

namespace {

struct Account : ASDomain {
  Account() : ASDomain("example_account", "") { Add(idColumn, id).Add(balanceColumn, balance); }
  Account(Account&&) = delete;

  ASInt id;
  ASInt64 balance;

  ASAttribute idColumn{"id", "", 0, corvane::kKey};
  ASAttribute balanceColumn{"balance"};
};

// Runs `body` and commits; begins again when the server has chosen the transaction to end a deadlock. Returns how often
// that was. Whatever else is thrown ends the transaction, too.
template <class Body>
int InTransaction(ASSession& session, Body body) {
  for (int conflicts = 0;; ++conflicts) {
    try {
      body();
      session.Commit();
      return conflicts;
    } catch (AException const& error) {
      session.Rollback();
      if (error.Kind() != corvane::ErrorKind::kLockConflict || conflicts == 5) throw;
    }
  }
}

void Add(ASSession& session, int id, int amount) {
  Account account;
  account.id = id;
  session.Select(account);  // the row is locked from here on
  account.balance += amount;
  session.Update(account);
}

void Deposit(example::Parameters const& parameters, int times) {
  ASSession session(parameters, 0, false);  // a session for each thread
  for (int i = 0; i < times; ++i) InTransaction(session, [&] { Add(session, 1, 1); });
}

// The other one has locked account 2 and waits for account 1, which is locked here.
int DeadlockOfTwo(example::Parameters const& parameters) {
  std::promise<void> otherHasLocked;
  std::future<void> const locked = otherHasLocked.get_future();
  std::future<int> other;  // declared before the session, so that it waits when that one's locks are gone
  ASSession session(parameters, 0, false);
  int const conflicts = InTransaction(session, [&] {
    Add(session, 1, -30);
    if (!other.valid()) {
      other = std::async(std::launch::async, [&parameters, hasLocked = std::move(otherHasLocked)]() mutable {
        ASSession second(parameters, 0, false);
        bool isFirst = true;
        return InTransaction(second, [&] {
          Add(second, 2, -5);
          if (isFirst) hasLocked.set_value();
          isFirst = false;
          Add(second, 1, 5);
        });
      });
      locked.wait();
    }
    Add(session, 2, 30);
  });
  return conflicts + other.get();
}

void Show(example::Parameters const& parameters) {
  example::Table const table(parameters, "example_account", "id INT PRIMARY KEY, balance BIGINT NOT NULL");
  ASSession session(parameters, 0, false);
  session.Execute("INSERT INTO example_account VALUES (1, 0), (2, 100)");
  session.Commit();

  Add(session, 1, 1000000);
  session.Rollback();
  std::cout << "after a rollback: " << example::Number(session, "SELECT balance FROM example_account WHERE id = 1")
            << '\n';
  session.Commit();  // after reading, too: the transaction would go on seeing the rows as they are now

  {
    std::future<void> const other = std::async(std::launch::async, Deposit, parameters, 50);
    Deposit(parameters, 50);
  }
  std::cout << "100 deposits by two sessions: "
            << example::Number(session, "SELECT balance FROM example_account WHERE id = 1") << '\n';
  session.Commit();

  std::cout << "transactions that a deadlock ended, and that began again: " << DeadlockOfTwo(parameters) << '\n';
  ASCursor cursor(&session);
  Account account;
  cursor.Order(ASOrder(account.idColumn.Query()));
  while (cursor.Fetch(account) != 0) std::cout << "account " << account.id << ": " << account.balance.getstr() << '\n';
  session.Commit();
}

}  // namespace

int main(int count, char** arguments) { return example::Run(count, arguments, Show); }
