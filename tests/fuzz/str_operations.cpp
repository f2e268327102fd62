// A Str and what is done to it, beside an optional std::string.

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <utility>

#include "corvane/data/value/str.h"
#include "tests/fuzz/target.h"

namespace corvane::fuzz {
namespace {

constexpr std::size_t kLongest = 1500;

struct Pair {
  Str text;
  std::optional<std::string> expected;  // none for a null text

  std::string Plain() const { return expected.value_or(""); }
};

void CheckPair(Pair const& pair) {
  CheckEqual(pair.text.ToString(), pair.Plain(), "the text");
  CheckEqual(pair.text.IsNull(), pair.expected.has_value() ? 0 : 1, "whether it is null");
  CheckEqual(pair.text.length(), static_cast<int>(pair.Plain().size()), "its length");
  CheckEqual(pair.text.str()[pair.text.length()], '\0', "its end");
}

std::string Replaced(std::string const& text, std::string const& from, std::string const& to) {
  if (from.empty()) return text;
  std::string replaced;
  for (std::size_t at = 0; at < text.size();) {
    if (text.compare(at, from.size(), from) == 0) {
      replaced += to;
      at += from.size();
    } else {
      replaced += text[at++];
    }
  }
  return replaced;
}

// Where the text begins at or behind `from`, looked for place by place; -1 when it is nowhere or empty.
int Position(std::string const& text, std::string const& what, long long from) {
  if (what.empty()) return -1;
  for (long long at = std::max(from, 0LL);
       at + static_cast<long long>(what.size()) <= static_cast<long long>(text.size()); ++at) {
    if (text.compare(static_cast<std::size_t>(at), what.size(), what) == 0) return static_cast<int>(at);
  }
  return -1;
}

std::string Interval(std::string const& text, long long first, long long last) {
  std::string interval;
  for (long long at = std::max(first, 0LL); at <= last && at < static_cast<long long>(text.size()); ++at) {
    interval += text[static_cast<std::size_t>(at)];
  }
  return interval;
}

std::string Until(std::string const& text, std::string const& delimiter, int from) {
  int const end = Position(text, delimiter, from);
  return Interval(text, from, end >= 0 ? end - 1 : static_cast<long long>(text.size()) - 1);
}

std::string Lower(std::string text) {
  for (char& c : text) {
    std::size_t const letter = std::string("ABCDEFGHIJKLMNOPQRSTUVWXYZ").find(c);
    if (letter != std::string::npos) c = "abcdefghijklmnopqrstuvwxyz"[letter];
  }
  return text;
}

void Append(Pair& pair, std::string const& text) { pair.expected = pair.Plain() + text; }

// Small positions mostly, any at times.
int Number(Input& input) {
  int const small = static_cast<int>(input.Byte()) - 64;
  return small < 160 ? small : input.Take<int>();
}

void Ask(Input& input, Pair const& one, Pair const& other) {
  int const from = Number(input);
  std::string const text = one.Plain();
  std::string const what = other.Plain();
  CheckEqual(one.text.getUntil(other.text, from).ToString(), Until(text, what, from), "getUntil()");
  int const last = Number(input);
  CheckEqual(one.text.getInterval(from, last).ToString(), Interval(text, from, last), "getInterval()");
  std::string const c = what.c_str();
  CheckEqual(one.text.findStr(other.text.str(), static_cast<unsigned>(from)),
             Position(text, c, static_cast<unsigned>(from)), "findStr()");
  CheckEqual(one.text.toLower().ToString(), Lower(text), "toLower()");
  CheckEqual((one.text + other.text).ToString(), text + what, "a sum");
  CheckEqual(("x" + one.text + 'y').ToString(), "x" + text + "y", "a longer sum");
  Check((one.text == other.text) == (text == what), "==");
  Check((one.text < other.text) == (text < what), "<");
  Check((one.text >= other.text.str()) == (text >= c), ">=");
}

void Change(Input& input, Pair& one, Pair& other) {
  switch (input.Below(14)) {
    case 0: {
      std::string const text = input.Text();
      one.text = Str(text.data(), text.size());
      one.expected = text;
      return;
    }
    case 1: {
      std::string const text = input.CText();
      one.text << ExactText(text);
      return Append(one, text);
    }
    case 2:
      one.text << other.text;
      if (other.expected.has_value()) Append(one, *other.expected);
      return;
    case 3: {
      std::string const text = input.Text();
      one.text.Append(text.data(), text.size());
      return Append(one, text);
    }
    case 4: {
      int const number = input.Take<int>();
      one.text << number;
      return Append(one, std::to_string(number));
    }
    case 5: {
      char const c = static_cast<char>(input.Byte());
      one.text << c;
      return Append(one, std::string(1, c));
    }
    case 6: {
      std::string const to = input.Text();
      Str::strReplace(one.text, other.text, Str(to));
      if (one.expected.has_value()) one.expected = Replaced(*one.expected, other.Plain(), to);
      return;
    }
    case 7: {
      std::string const from = input.Text();
      one.text.replaceStr(Str(from), one.text);
      if (one.expected.has_value()) one.expected = Replaced(*one.expected, from, *one.expected);
      return;
    }
    case 8:
      one.text = other.text;
      one.expected = other.expected;
      return;
    case 9: {
      Str moved(std::move(other.text));
      one.text = std::move(moved);
      if (&one != &other) one.expected = std::exchange(other.expected, std::nullopt);
      return;
    }
    case 10:
      one.text.SetNull();
      one.expected.reset();
      return;
    case 11:
      one.text.Reserve(input.Byte());
      one.expected = one.Plain();
      return;
    case 12: {  // from within the text itself
      int const from = one.text.length() > 0 ? static_cast<int>(input.Byte()) % one.text.length() : 0;
      std::string const tail = one.Plain().substr(static_cast<std::size_t>(from)).c_str();
      if (input.Flag()) {
        one.text = one.text.str() + from;
        one.expected = tail;
      } else {
        one.text << one.text.str() + from;
        Append(one, tail);
      }
      return;
    }
    default: {
      std::string const text = input.Text();
      one.text.AppendWith(text.size() + 3, [&text](char* at) { return text.copy(at, text.size()); });
      return Append(one, text);
    }
  }
}

Target const target("str_operations", "texts, null states and answers against std::string", [](Input input) {
  std::array<Pair, 3> pairs;
  while (!input.AtEnd()) {
    Pair& one = pairs[input.Below(3)];
    Pair& other = pairs[input.Below(3)];
    Change(input, one, other);
    for (Pair& pair : pairs) {
      CheckPair(pair);
      if (pair.Plain().size() > kLongest) pair = Pair();
    }
    Ask(input, one, other);
  }
});

}  // namespace
}  // namespace corvane::fuzz
