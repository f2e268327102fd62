// Escaping: what a server reads from the literal are the bytes, the literal ends where it should, and no byte is
// escaped that need not be. And literals of values, and of the columns of an INSERT.

#include <cstring>
#include <string>
#include <vector>

#include "corvane/corvane.h"
#include "tests/fuzz/scripted.h"
#include "tests/fuzz/sql_reader.h"
#include "tests/fuzz/target.h"

namespace corvane::fuzz {
namespace {

std::string SlowlyEscaped(std::string const& bytes) {
  std::string escaped;
  for (char const c : bytes) {
    constexpr char kEscaped[] = "\0\n\r\\'\"\x1a";
    constexpr char kWritten[] = "0nr\\'\"Z";
    auto const* const found = static_cast<char const*>(std::memchr(kEscaped, c, sizeof kEscaped - 1));
    if (found != nullptr) {
      escaped += {'\\', kWritten[found - kEscaped]};
    } else {
      escaped += c;
    }
  }
  return escaped;
}

void CheckLiteral(std::string const& literal, std::string const& bytes, char const* what) {
  std::size_t at = 0;
  Check(!literal.empty() && literal.front() == '\'', what);
  CheckEqual(ReadLiteral(literal, at), bytes, what);
  CheckEqual(at, literal.size(), "where the literal ends");
}

void CheckEscaping(std::string const& before, std::string const& bytes) {
  ExactText const exact(bytes);
  Str out(before);
  AppendEscaped(out, exact, bytes.size());
  std::string const escaped = out.ToString().substr(before.size());
  CheckEqual(out.ToString(), before + escaped, "what stood there before");
  CheckLiteral("'" + escaped + "'", bytes, "the bytes of a literal");
  CheckEqual(escaped, SlowlyEscaped(bytes), "the escaped text");
  CheckEqual(Escaped(exact).ToString(), SlowlyEscaped(bytes.c_str()), "Escaped()");

  Str own(bytes);
  AppendEscaped(own, own.str(), bytes.size());
  CheckEqual(own.ToString(), bytes + SlowlyEscaped(bytes), "a text with its own bytes appended");
}

// The literals of an INSERT are those of its values, in order.
void CheckInsert(std::string const& bytes, unsigned capacity) {
  struct Texts : ASDomain {
    explicit Texts(unsigned capacity) : ASDomain("t", ""), fixed(capacity), variable(capacity), binary(0) {
      Add(columns[0], fixed).Add(columns[1], variable).Add(columns[2], binary);
    }
    ASStr fixed;
    ASVStr variable;
    ASRealBlob binary;
    ASAttribute columns[3] = {ASAttribute("a"), ASAttribute("b"), ASAttribute("c")};
  } record(capacity);
  record.fixed.Fill(bytes.data(), bytes.size());
  record.variable.Fill(bytes.data(), bytes.size());
  record.binary = RealBlob(static_cast<unsigned>(bytes.size()), bytes.data());
  std::string const text = bytes.substr(0, capacity).c_str();
  Shape const insert = ShapeOf(Scripted::One().InsertQuery(record, 0).View());
  CheckEqual(insert.text, "INSERT INTO `t` (`a`, `b`, `c`) VALUES (?, ?, ?)", "the shape of an INSERT");
  CheckEqual(insert.literals, std::vector<std::string>{text, text, bytes}, "the literals of an INSERT");

  record.columns[1].SetKey(corvane::kKey);
  Shape const update = ShapeOf(Scripted::One().UpdateQuery(record, 0).View());
  CheckEqual(update.text, "UPDATE `t` SET `a`=?, `c`=? WHERE `b`=?", "the shape of an UPDATE");
  CheckEqual(update.literals, std::vector<std::string>{text, bytes, text}, "the literals of an UPDATE");
}

Target const target("literal", "unescaped gives the bytes; one literal; slow escaping", [](Input input) {
  std::string const before = input.Text();
  unsigned const capacity = input.Byte();
  std::string const bytes = input.Rest();
  CheckEscaping(before, bytes);
  ASVStr column(capacity);
  column = bytes.c_str();
  CheckLiteral(Literal(column).ToString(), std::string(bytes.c_str()).substr(0, capacity), "the literal of a column");
  CheckLiteral(Literal(Str(bytes)).ToString(), bytes.c_str(), "the literal of a text");
  CheckInsert(bytes, capacity);
});

}  // namespace
}  // namespace corvane::fuzz
