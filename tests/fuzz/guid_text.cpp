// Guid texts against patterns of all the forms that there are.

#include <cctype>
#include <cstring>
#include <string>

#include "corvane/corvane.h"
#include "tests/fuzz/target.h"

namespace corvane::fuzz {
namespace {

// Whether the text has this form: with braces or without, and with those of the four dashes whose bits are set.
bool HasForm(std::string const& text, bool braces, unsigned dashes) {
  std::string form;
  constexpr std::size_t kDigits[] = {8, 4, 4, 4, 12};
  for (std::size_t i = 0; i < 5; ++i) {
    if (i > 0 && (dashes >> (i - 1) & 1) != 0) form += '-';
    form += std::string(kDigits[i], 'h');
  }
  if (braces) form = "{" + form + "}";
  if (text.size() != form.size()) return false;
  for (std::size_t i = 0; i < form.size(); ++i) {
    if (form[i] == 'h' ? std::isxdigit(static_cast<unsigned char>(text[i])) == 0 : text[i] != form[i]) return false;
  }
  return true;
}

bool IsGuid(std::string const& text) {
  for (unsigned dashes = 0; dashes < 16; ++dashes) {
    if (HasForm(text, false, dashes) || HasForm(text, true, dashes)) return true;
  }
  return false;
}

std::string Canonical(std::string const& text) {
  std::string canonical;
  for (char const c : text) {
    if (std::isxdigit(static_cast<unsigned char>(c)) == 0) continue;
    std::size_t const at = canonical.size();
    if (at == 8 || at == 13 || at == 18 || at == 23) canonical += '-';
    canonical += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  }
  return canonical;
}

void CheckText(std::string const& text) {
  Guid const guid{static_cast<char const*>(ExactText(text))};
  ASGuid column;
  column = Guid(1, 2);  // of which nothing may be left
  column = guid;
  if (!IsGuid(text)) {
    CheckEqual(guid.IsNull(), 1, "a text that is no GUID");
    CheckEqual(column.IsNull(), 1, "a column with a text that is no GUID");
    CheckEqual(column.getstr().ToString(), "00000000-0000-0000-0000-000000000000", "the text of a NULL column");
    return;
  }
  CheckEqual(guid.IsNull(), 0, "a text that is a GUID");
  CheckEqual(guid.getstr().ToString(), Canonical(text), "the text of a GUID");
  CheckEqual(column.getstr().ToString(), Canonical(text), "the text of a column");
  Check(Guid(guid.getstr().str()) == guid, "a GUID that was written and read is another one");
}

void CheckHalves(std::uint64_t first, std::uint64_t second) {
  std::ostringstream digits;
  digits << std::hex;
  digits.fill('0');
  digits.width(16);
  digits << first;
  digits.width(16);
  digits << second;
  CheckEqual(Guid(first, second).getstr().ToString(), Canonical(digits.str()), "the text of two halves");
  Check(Guid(first, second) == Guid(digits.str().c_str()), "two halves are not the GUID of their digits");
}

Target const target("guid_text", "GUID against all forms of text; there and back", [](Input input) {
  Input ofHalves = input;
  auto const first = ofHalves.Take<std::uint64_t>();
  CheckHalves(first, ofHalves.Take<std::uint64_t>());
  CheckText(input.Rest().c_str());
});

}  // namespace
}  // namespace corvane::fuzz
