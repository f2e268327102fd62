#include "account.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <iomanip>
#include <iostream>

#include "corvane/mapping/domain.h"
#include "layout.h"

namespace demo {

namespace {

constexpr std::size_t kLongStatement = 600;  // bytes; longer ones are cut
constexpr std::size_t kShownOfLong = 200;
constexpr int kLabelWidth = 8;
constexpr int kIndent = 4;
constexpr std::size_t kCallIndentation = 2;  // of what does not fit the first line of a call

bool IsColourTerminal() {
  char const* const terminal = std::getenv("TERM");
  return isatty(STDOUT_FILENO) != 0 && std::getenv("NO_COLOR") == nullptr && terminal != nullptr &&
         std::string(terminal) != "dumb";
}

// The beginning of a long statement, with a point for every byte that is not plain text, and its length.
std::string Shortened(Str const& statement) {
  std::string text = statement.ToString();
  if (text.size() <= kLongStatement) return text;
  std::string const length = std::to_string(text.size());
  text.resize(kShownOfLong);
  std::replace_if(
      text.begin(), text.end(), [](char c) { return c < ' ' || c > '~'; }, '.');
  return text + " ... (" + length + " bytes)";
}

// "T140721 tz_country, T140722 tz_zone".
std::string Aliases(std::vector<ASDomain const*> const& records) {
  std::string list;
  for (ASDomain const* const record : records) {
    if (!list.empty()) list += ", ";
    list += record->Alias().ToString() + " " + record->Name().ToString();
  }
  return list;
}

}  // namespace

Account::Account(bool pauses) : pauses_(pauses), colours_(IsColourTerminal()) {}

void Account::Line(std::string const& text) { std::cout << text << '\n'; }

void Account::Step(std::string const& title) {
  if (pauses_ && std::cin) {
    std::cout << "\nEnter goes on. " << std::flush;
    std::string ignored;
    std::getline(std::cin, ignored);
  }
  ++steps_;
  std::string const number = std::to_string(steps_);
  std::cout << '\n' << std::setw(kIndent - 2) << number << "  ";
  std::cout << (colours_ ? "\033[1m" : "") << title << (colours_ ? "\033[0m" : "") << std::endl;
}

void Account::Call(std::string const& code, Str const& statement) {
  Call(code);
  Entry("SQL", Shortened(statement));
}

void Account::Call(std::string const& code) { Entry("call", code); }

void Account::Query(std::vector<std::string> const& calls, Str const& statement,
                    std::vector<ASDomain const*> const& records) {
  char const* label = "call";
  for (std::string const& call : calls) {
    Entry(label, Wrapped(call, kCallIndentation));
    label = "";
  }
  Entry("SQL", BrokenIntoClauses(statement.ToString()));
  if (!records.empty()) Entry("tables", Aliases(records));
}

void Account::Rows(TextTable const& table) { Entry("rows", table.Lines()); }

void Account::Result(bool asExpected, std::string const& text) {
  if (!asExpected) ++surprises_;
  Entry("result", asExpected ? text : "NOT AS EXPECTED: " + text);
}

void Account::Compare(std::string const& what, long found, long expected) {
  bool const equal = found == expected;
  if (!equal) ++surprises_;
  std::cout << std::string(kIndent, ' ') << std::left << std::setw(16) << what << std::right << std::setw(6) << found
            << " rows" << std::setw(8) << expected << " expected   " << (equal ? "ok" : "WRONG") << '\n';
}

void Account::Entry(char const* label, std::string const& text) { Entry(label, Wrapped(text)); }

void Account::Entry(char const* label, std::vector<std::string> const& lines) {
  for (std::string const& line : lines) {
    std::cout << std::string(kIndent, ' ') << (colours_ ? "\033[36m" : "") << std::left << std::setw(kLabelWidth)
              << label << std::right << (colours_ ? "\033[0m" : "") << line << '\n';
    label = "";
  }
}

}  // namespace demo
