#include "corvane/cursor/internal/raw_text.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <string_view>

namespace corvane::internal {

namespace {

constexpr std::string_view kBlanks = " \t\r\n\v\f(";

// The lower-case text from its first word on; comments that servers execute count as one.
std::string_view SkipComments(std::string_view text) {
  while (true) {
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    bool const block = text.substr(0, 2) == "/*" && text.substr(0, 3) != "/*!" && text.substr(0, 4) != "/*m!";
    bool const line = text.substr(0, 1) == "#" || text.substr(0, 2) == "--";
    if (!block && !line) return text;
    std::string_view const end = block ? "*/" : "\n";
    std::size_t const at = text.find(end, block ? 2 : 0);
    text.remove_prefix(at != std::string_view::npos ? at + end.size() : text.size());
  }
}

bool IsWordCharacter(char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_'; }

}  // namespace

bool ContainsSelect(Str const& statement) { return statement.toLower().findStr("select") >= 0; }

bool MayGiveResults(Str const& statement) {
  Str const lower = statement.toLower();
  std::string_view const text = SkipComments(lower.View());
  if (text.substr(0, 2) == "/*") return true;
  std::string_view const word = text.substr(
      0, static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), IsWordCharacter) - text.begin()));
  constexpr std::string_view kWords[] = {"call", "execute", "begin", "if", "case", "loop", "repeat", "while", "for"};
  if (word == "set") return text.find("call") != std::string_view::npos;  // SET STATEMENT ... FOR CALL
  return std::find(std::begin(kWords), std::end(kWords), word) != std::end(kWords);
}

}  // namespace corvane::internal
