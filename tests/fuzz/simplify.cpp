// Rdbms::Simplify() against the letters of its description.

#include <string>

#include "corvane/corvane.h"
#include "tests/fuzz/target.h"

namespace corvane::fuzz {
namespace {

std::string Expected(std::string const& name) {
  std::string simple = name.substr(0, name.find('\0'));
  simple = simple.substr(0, simple.find(' ')).substr(0, 32);
  for (char& c : simple) {
    std::size_t const letter = std::string("abcdefghijklmnopqrstuvwxyz").find(c);
    if (letter != std::string::npos) c = "ABCDEFGHIJKLMNOPQRSTUVWXYZ"[letter];
  }
  return simple;
}

Target const target("simplify", "name against its description; simple names stay", [](Input input) {
  std::string const name = input.Rest();
  Str const simple = ORDBMS::Rdbms::Simplify(Str(name));
  CheckEqual(simple.ToString(), Expected(name), "the simple name");
  CheckEqual(ORDBMS::Rdbms::Simplify(simple).ToString(), simple.ToString(), "the simple name of a simple name");
});

}  // namespace
}  // namespace corvane::fuzz
