#include "tests/fuzz/target.h"

namespace corvane::fuzz {

namespace {

Target const* first = nullptr;

}  // namespace

Target::Target(char const* itsName, char const* itsChecks, void (*itsRun)(Input))
    : name(itsName), checked(itsChecks), run(itsRun), next(first) {
  first = this;
}

Target const* Target::First() { return first; }

std::string Shown(std::string_view bytes) {
  std::string shown = "\"";
  for (char const c : bytes) {
    if (c >= ' ' && c <= '~') {
      shown += c;
    } else {
      constexpr char kHex[] = "0123456789abcdef";
      auto const byte = static_cast<unsigned char>(c);
      shown += {'\\', 'x', kHex[byte >> 4], kHex[byte & 15]};
    }
  }
  return shown + '"';
}

std::string Shown(std::vector<std::string> const& texts) {
  std::string shown;
  for (std::string const& text : texts) shown += "\n    " + Shown(std::string_view(text));
  return shown;
}

}  // namespace corvane::fuzz
