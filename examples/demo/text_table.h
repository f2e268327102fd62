#ifndef CORVANE_EXAMPLES_DEMO_TEXT_TABLE_H
#define CORVANE_EXAMPLES_DEMO_TEXT_TABLE_H

#include <string>
#include <variant>
#include <vector>

class ASData;

namespace demo {

/// NULL, a text or a number.
using Cell = std::variant<std::monostate, std::string, long, double>;
using Row = std::vector<Cell>;

/// What a column's value holds now.
Cell ToCell(ASData const& value);

/// Rows under labels, to be printed with a fixed-width font.
class TextTable {
 public:
  explicit TextTable(std::vector<std::string> labels);

  /// Appends a row, which must have a cell for each label.
  void Add(Row row);
  std::vector<Row> const& Rows() const { return rows_; }

  /// The labels, a line below them, and the rows, without line ends. Columns with numbers are aligned to the right, all
  /// others to the left. Texts are in UTF-8; NULL is shown as "NULL", a double with two digits behind the point.
  std::vector<std::string> Lines() const;

 private:
  std::vector<std::string> labels_;
  std::vector<Row> rows_;
};

}  // namespace demo

#endif
