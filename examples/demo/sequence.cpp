#include "sequence.h"

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

namespace demo {

void CountFromTwoSessions(ASSession& session, Target const& target, Account& account) {
  account.Step("Count from two sessions in turn: a sequence gives each number once");
  Str const start("INSERT INTO tz_number VALUES (0)");
  account.Call("session.Execute(statement); session.Commit()", start);
  session.Execute(start);
  session.Commit();

  ASSession first = target.OpenWithSequences();
  ASSession second = target.OpenWithSequences();
  ASSequence ofFirst(&first, "tz_number");
  ASSequence ofSecond(&second, "tz_number");
  account.Call("ASSequence ofFirst(&first, \"tz_number\"), ofSecond(&second, \"tz_number\")");
  account.Call("ofFirst.getNext(), ofSecond.getNext(), ofFirst.getNext(), ...");
  std::vector<int> numbers;
  for (int i = 0; i < 3; ++i) {
    numbers.push_back(ofFirst.getNext());
    numbers.push_back(ofSecond.getNext());
  }
  first.Disconnect();
  second.Disconnect();

  std::string shown;
  for (int const number : numbers) shown += std::to_string(number) + " ";
  bool const ascending = std::adjacent_find(numbers.begin(), numbers.end(), std::greater_equal<>()) == numbers.end();
  long const last = SelectNumber(session, "SELECT Val FROM tz_number");
  account.Result(numbers.front() > 0 && ascending && last == numbers.back(),
                 shown + "were given, none twice; the table holds " + std::to_string(last));
  session.Commit();
}

}  // namespace demo
