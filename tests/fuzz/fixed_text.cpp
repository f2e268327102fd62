// Columns of fixed-width and of variable text, beside their buffers as they should be.

#include <algorithm>
#include <string>

#include "corvane/corvane.h"
#include "tests/fuzz/target.h"

namespace corvane::fuzz {
namespace {

// The buffer of a column; the text is what lies before its first NUL.
struct Buffer {
  explicit Buffer(unsigned capacity) : bytes(capacity, '\0') {}

  std::string Text() const { return bytes.substr(0, bytes.find('\0')); }
  std::string Trimmed() const { return Text().substr(0, Text().find_last_not_of(' ') + 1); }

  void Fill(std::string const& text, char with) {
    std::string const taken = text.substr(0, bytes.size());
    bytes = taken + std::string(bytes.size() - taken.size(), with);
    null = false;
  }
  void Append(std::string const& text) {
    std::size_t const used = Text().size();
    std::string const taken = text.substr(0, bytes.size() - used);
    bytes.replace(used, taken.size(), taken);
    if (used + taken.size() < bytes.size()) bytes[used + taken.size()] = '\0';
    null = false;
  }
  void Trim() {
    for (std::size_t i = bytes.size(); i > 1 && bytes[i - 1] == ' '; --i) bytes[i - 1] = '\0';
  }
  void SetNull() {
    Fill("", '\0');
    null = true;
  }

  std::string bytes;
  bool null = true;
};

template <class Column>
struct Pair {
  explicit Pair(unsigned capacity) : column(capacity), buffer(capacity) {}

  static constexpr char kFiller = std::is_same_v<Column, ASVStr> ? '\0' : ' ';
  Column column;
  Buffer buffer;
};

void CheckColumn(ASStr const& column, Buffer const& buffer) {
  CheckEqual(column.getstr().ToString(), buffer.null ? "" : buffer.Text(), "the text");
  CheckEqual(column.IsNull(), buffer.null ? 1 : 0, "whether it is NULL");
  CheckEqual(column.getstr().IsNull(), buffer.null ? 1 : 0, "whether its text is null");
  CheckEqual(column.GetSize(), static_cast<int>(buffer.bytes.size()), "the capacity");
  CheckEqual(static_cast<char const*>(column.voidptr())[buffer.bytes.size()], '\0', "the end of the buffer");
  CheckEqual(std::string(column.str()), buffer.Text(), "str()");
}

bool Less(Buffer const& left, Buffer const& right) {
  return left.null ? !right.null : !right.null && left.Trimmed() < right.Trimmed();
}

template <class Column, class Other>
void CheckOrder(Pair<Column> const& left, Pair<Other> const& right) {
  Buffer const& one = left.buffer;
  Buffer const& other = right.buffer;
  bool const equal = one.null == other.null && (one.null || one.Trimmed() == other.Trimmed());
  basic_type const& value = right.column;
  Check((left.column == value) == equal, "==");
  Check((left.column < value) == Less(one, other), "<");
  Check((left.column == static_cast<ASStr const&>(right.column)) == equal, "== of columns");
  Check((left.column < static_cast<ASStr const&>(right.column)) == Less(one, other), "< of columns");
}

template <class Column, class Other>
void Change(Input& input, Pair<Column>& one, Pair<Other>& other) {
  char const filler = Pair<Column>::kFiller;
  switch (input.Below(12)) {
    case 0: {
      std::string const text = input.Text();
      one.column = Str(text);
      return one.buffer.Fill(text, filler);
    }
    case 1: {
      std::string const text = input.CText();
      one.column = static_cast<char const*>(ExactText(text));
      return one.buffer.Fill(text, filler);
    }
    case 2: {
      std::string const text = input.Text();
      one.column.Fill(text.data(), text.size());
      return one.buffer.Fill(text, '\0');
    }
    case 3:
      one.column.Trim();
      return one.buffer.Trim();
    case 4: {
      std::string const text = input.Text();
      one.column << Str(text);
      return one.buffer.Append(text);
    }
    case 5: {
      int const number = input.Take<int>();
      one.column << number;
      return one.buffer.Append(std::to_string(number));
    }
    case 6:
      one.column.SetNull();
      return one.buffer.SetNull();
    case 7:
      if (input.Flag()) {
        one.column = static_cast<ASStr const&>(other.column);
      } else {
        one.column.copy(other.column);
      }
      return other.buffer.null ? one.buffer.SetNull() : one.buffer.Fill(other.buffer.Text(), filler);
    case 8: {  // from within its own buffer
      std::string const text = one.buffer.Text();
      std::size_t const from = text.empty() ? 0 : input.Byte() % text.size();
      one.column = one.column.str() + from;
      return one.buffer.Fill(text.substr(from), filler);
    }
    case 9: {
      std::string const from = input.CText();
      std::string const to = input.CText();
      std::string const text = one.buffer.Text();
      if (from.empty() || text.find(from) == std::string::npos) {
        Str::strReplace(one.column, Str(from), Str(to));
        return;
      }
      std::string replaced = text;
      for (std::size_t at = 0; (at = replaced.find(from, at)) != std::string::npos; at += to.size()) {
        replaced.replace(at, from.size(), to);
      }
      Str::strReplace(one.column, Str(from), Str(to));
      return one.buffer.Fill(replaced, '\0');
    }
    case 10: {
      Column const copy(one.column);
      CheckColumn(copy, one.buffer);
      return;
    }
    default: {
      Str plain(one.column);
      CheckEqual(plain.ToString(), one.buffer.null ? "" : one.buffer.Text(), "a plain copy");
      plain << "longer than any capacity";
      return;
    }
  }
}

Target const target("fixed_text", "buffers, null states and order as counted", [](Input input) {
  unsigned const capacities[] = {input.Byte() % 40, input.Byte() % 40};
  Pair<ASStr> fixed(capacities[0]);
  Pair<ASVStr> variable(capacities[1]);
  while (!input.AtEnd()) {
    if (input.Flag()) {
      Change(input, fixed, variable);
    } else {
      Change(input, variable, fixed);
    }
    CheckColumn(fixed.column, fixed.buffer);
    CheckColumn(variable.column, variable.buffer);
    CheckOrder(fixed, variable);
    CheckOrder(variable, fixed);
  }
});

}  // namespace
}  // namespace corvane::fuzz
