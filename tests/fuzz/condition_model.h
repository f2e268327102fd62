#ifndef CORVANE_TESTS_FUZZ_CONDITION_MODEL_H
#define CORVANE_TESTS_FUZZ_CONDITION_MODEL_H

#include <list>
#include <string>
#include <vector>

#include "corvane/corvane.h"
#include "tests/fuzz/target.h"
#include "tests/support/sql.h"

namespace corvane::fuzz {

/// The records whose columns the targets use; they stay where they are.
struct Records {
  test::Orders orders;
  test::Customers customers;
  test::Cities cities;

  static Records& All();
};

/// A column, beside what is to be known of it.
struct Column {
  ASAttribute attribute;
  std::string text;
  std::vector<std::string> literals;
  bool optional = false;  // of an outer join
};
Column MakeColumn(Input& input);

/// A condition as the library builds it, beside an independent account of what it should hold.
struct Condition {
  ASComparison built;
  std::string text;
  std::vector<std::string> literals;  // of `text`
  std::vector<ASDomain*> domains;
  struct Join {
    ASDomain* requiredSide;
    ASDomain* optionalSide;
    std::string on;
    std::vector<std::string> literals;
  };
  std::vector<Join> joins;
};
/// A tree of operators over predicates on columns and values.
Condition MakeCondition(Input& input);

/// Letters, digits and blanks alone, for what is written as it stands.
std::string Harmless(std::string text);

}  // namespace corvane::fuzz

#endif
