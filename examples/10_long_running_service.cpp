// A service that goes on when its connection is killed: time limits and bounded retries in the session's parameters,
// transactions that begin again by Kind(), and orders with a key, so that one whose commit got no answer is not booked
// twice.
//
//     ./run example 10

#include <corvane/corvane.h>

#include <iostream>

#include "example.h"

namespace {

struct Order : ASDomain {
  Order() : ASDomain("example_order", "") { Add(keyColumn, key).Add(amountColumn, amount); }
  Order(Order&&) = delete;

  ASVStr key{36};  // from the customer, the same in each attempt
  ASInt64 amount;

  ASAttribute keyColumn{"order_key", "", 0, corvane::kKey};
  ASAttribute amountColumn{"amount"};
};

example::Parameters ForProduction(example::Parameters parameters) {
  parameters["Charset"] = "utf8mb4";
  parameters["ConnectTimeout"] = "5";  // seconds
  parameters["ReadTimeout"] = "60";
  parameters["WriteTimeout"] = "60";
  parameters["RetryLimit"] = "5";     // reconnections for one statement
  parameters["RetryWrites"] = "off";  // what may have been carried out is not sent again
  parameters["SafeMode"] = "on";
  parameters["LogSecrets"] = "off";
  return parameters;
}

// Books an order once, however often it is tried: the key refuses the second row. `disturb` is called where losing the
// connection hurts most, between the INSERT and the COMMIT.
template <class Disturb>
void Book(ASSession& session, Order const& order, Disturb disturb) {
  for (int attempt = 1;; ++attempt) {
    try {
      session.Insert(order);
      disturb(attempt);
      session.Commit();
      std::cout << "order " << order.key << " is booked, attempt " << attempt << '\n';
      return;
    } catch (AException const& error) {
      bool again = false;
      switch (error.Kind()) {
        case corvane::ErrorKind::kDuplicateKey:
          std::cout << "order " << order.key << " has been booked already\n";
          session.Rollback();
          return;
        case corvane::ErrorKind::kConnectionLost:  // nothing was changed
        case corvane::ErrorKind::kOutcomeUnknown:  // or it was, and the next attempt meets the key
          again = true;
          break;
        case corvane::ErrorKind::kLockConflict:
          session.Rollback();
          again = true;
          break;
        default:
          break;  // the next attempt would end the same way
      }
      if (!again || attempt == 5) throw;
    }
  }
}

void Show(example::Parameters const& parameters) {
  example::Table const table(parameters, "example_order", "order_key VARCHAR(36) PRIMARY KEY, amount BIGINT NOT NULL");
  ASSession session(ForProduction(parameters), 0, false);
  ASSession administrator(parameters, 0, false);

  auto const quiet = [](int) {};
  auto const kill = [&] {
    Str const id = Str() << example::Number(session, "SELECT CONNECTION_ID()");
    administrator.Execute("DO SLEEP(0.05)");  // MySQL 5.6 can keep a connection that is killed while it answers
    administrator.Execute(Str("KILL ") << id);
  };
  auto const killBefore = [&](int attempt) {
    if (attempt > 1) return;
    kill();
    std::cout << "the connection is killed before the commit\n";
  };
  auto const killAfterwards = [&](int attempt) {
    if (attempt > 1) return;
    session.Commit();
    kill();
    std::cout << "the connection is killed after the commit, whose answer is lost\n";
  };

  Order order;
  order.key = "A-1";
  order.amount = 100;
  Book(session, order, quiet);
  order.key = "A-2";
  order.amount = 20;
  Book(session, order, killBefore);
  order.key = "A-3";
  order.amount = 3;
  Book(session, order, killAfterwards);
  Book(session, order, quiet);  // the customer sends it once more

  std::cout << example::Number(session, "SELECT COUNT(*) FROM example_order") << " orders, "
            << example::Number(session, "SELECT SUM(amount) FROM example_order") << " in all\n";
  session.Commit();
}

}  // namespace

int main(int count, char** arguments) { return example::Run(count, arguments, Show); }
