#include "text_table.h"

#include <algorithm>
#include <cstddef>
#include <iomanip>
#include <sstream>
#include <utility>

#include "corvane/corvane.h"

namespace demo {

namespace {

constexpr char const* kGap = "  ";  // between columns

bool IsNumber(Cell const& cell) { return std::holds_alternative<long>(cell) || std::holds_alternative<double>(cell); }

std::string Text(Cell const& cell) {
  if (auto const* const text = std::get_if<std::string>(&cell)) return *text;
  if (auto const* const integer = std::get_if<long>(&cell)) return std::to_string(*integer);
  auto const* const number = std::get_if<double>(&cell);
  if (number == nullptr) return "NULL";
  std::ostringstream out;
  out << std::fixed << std::setprecision(2) << *number;
  return out.str();
}

// The characters of a text in UTF-8: all bytes but those which continue a character.
std::size_t Width(std::string const& text) {
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
}

// Appends a column to lines that are all equally wide.
void AppendColumn(std::vector<std::string>& lines, std::vector<std::string> const& texts, bool toTheRight) {
  std::size_t width = 0;
  for (std::string const& text : texts) width = std::max(width, Width(text));
  for (std::size_t i = 0; i < lines.size(); ++i) {
    std::string const blanks(width - Width(texts[i]), ' ');
    if (!lines[i].empty()) lines[i] += kGap;
    lines[i] += toTheRight ? blanks + texts[i] : texts[i] + blanks;
  }
}

}  // namespace

Cell ToCell(ASData const& value) {
  if (value.IsNull() != 0) return {};
  switch (value.GetDBType()) {
    case corvane::kDbInt:
      return static_cast<long>(dynamic_cast<ASInt const&>(value));
    case corvane::kDbInt64:
      return static_cast<long>(dynamic_cast<ASInt64 const&>(value));
    case corvane::kDbDouble:
      return static_cast<double>(dynamic_cast<ASDouble const&>(value));
    default:
      return value.getstr().ToString();
  }
}

TextTable::TextTable(std::vector<std::string> labels) : labels_(std::move(labels)) {}

void TextTable::Add(Row row) { rows_.push_back(std::move(row)); }

std::vector<std::string> TextTable::Lines() const {
  std::vector<std::string> lines(rows_.size() + 2);
  for (std::size_t column = 0; column < labels_.size(); ++column) {
    std::vector<std::string> texts{labels_[column], ""};
    bool hasNumbers = false;
    for (Row const& row : rows_) {
      texts.push_back(Text(row.at(column)));
      hasNumbers = hasNumbers || IsNumber(row[column]);
    }
    AppendColumn(lines, texts, hasNumbers);
  }
  lines[1].assign(Width(lines[0]), '-');
  for (std::string& line : lines) line.erase(line.find_last_not_of(' ') + 1);
  return lines;
}

}  // namespace demo
