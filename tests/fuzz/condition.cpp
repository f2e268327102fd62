// Trees of conditions: text, literals, records and outer joins against an independent account.

#include <string>
#include <utility>

#include "tests/fuzz/condition_model.h"
#include "tests/fuzz/sql_reader.h"
#include "tests/fuzz/target.h"

namespace corvane::fuzz {
namespace {

void CheckText(Str const& text, std::string const& expected, std::vector<std::string> const& literals) {
  Shape const shape = ShapeOf(text.View());
  CheckEqual(shape.text, expected, "the shape of a condition");
  CheckEqual(shape.literals, literals, "the literals of a condition");
}

Target const target("condition", "balanced; literals intact; shape, records and joins as counted", [](Input input) {
  Condition const condition = MakeCondition(input);
  CheckText(condition.built.Query(), condition.text, condition.literals);
  Check(std::vector<ASDomain*>(condition.built.Domains().begin(), condition.built.Domains().end()) == condition.domains,
        "the records that a condition names");
  CheckEqual(condition.built.JoinPairs().size(), condition.joins.size(), "the number of joins");
  CheckEqual(condition.built.JoinConditions().size(), condition.joins.size(), "the number of join conditions");
  auto pair = condition.built.JoinPairs().begin();
  auto on = condition.built.JoinConditions().begin();
  for (Condition::Join const& join : condition.joins) {
    Check(*pair++ == std::pair(join.requiredSide, join.optionalSide), "the records of a join");
    CheckText(*on++, join.on, join.literals);
  }
});

}  // namespace
}  // namespace corvane::fuzz
