// What is made of texts as numbers, against the C library: by the functions themselves, by a session's Fetch() and by
// Int64::atoint64_t(). These programs run in the "C" locale.

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "corvane/corvane.h"
#include "corvane/internal/number_text.h"
#include "tests/fuzz/scripted.h"
#include "tests/fuzz/target.h"

namespace corvane::fuzz {
namespace {

void CheckSame(double actual, double expected, char const* what) {
  if (std::isnan(actual) && std::isnan(expected)) return;
  CheckEqual(actual, expected, what);
  CheckEqual(std::signbit(actual), std::signbit(expected), what);
}

struct Numbers : ASDomain {
  ASInt integer;
  ASInt64 wide;
  ASDouble real;
  ASDCurrency currency;
  ASAttribute columns[4] = {ASAttribute("i"), ASAttribute("w"), ASAttribute("r"), ASAttribute("c")};

  Numbers() : ASDomain("numbers", "") {
    Add(columns[0], integer).Add(columns[1], wide).Add(columns[2], real).Add(columns[3], currency);
  }
};

Target const target("number_text", "numbers against strtoll and strtod", [](Input input) {
  std::string const bytes = input.Rest();
  ExactText const text(bytes);
  long long const integer = std::strtoll(text, nullptr, 10);
  double const real = std::strtod(text, nullptr);
  CheckEqual(internal::ParseInteger(text), integer, "ParseInteger(text)");
  CheckEqual(internal::ParseInteger(text, bytes.size()), integer, "ParseInteger(text, length)");
  CheckEqual(Int64::atoint64_t(text), integer, "Int64::atoint64_t");
  CheckSame(internal::ParseDouble(text), real, "ParseDouble(text)");
  CheckSame(internal::ParseDouble(text, bytes.size()), real, "ParseDouble(text, length)");

  Numbers record;
  Scripted scripted;
  scripted.client.AnswerQuery(4, {test::Row(4, bytes)});
  CheckEqual(scripted.session.Select(record), 1, "Select()");
  CheckEqual(static_cast<int>(record.integer), static_cast<std::int32_t>(integer), "an ASInt");
  CheckEqual(static_cast<long>(record.wide), integer, "an ASInt64");
  CheckEqual(record.wide.IsNull(), 0, "an ASInt64");
  CheckSame(record.real, real, "an ASDouble");
  CheckSame(record.currency, real, "an ASDCurrency");
});

}  // namespace
}  // namespace corvane::fuzz
