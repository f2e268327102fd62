#ifndef CORVANE_TESTS_FUZZ_TARGET_H
#define CORVANE_TESTS_FUZZ_TARGET_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::fuzz {

/// The bytes of an input, taken from the front. Behind the end there are zeros and empty texts.
class Input {
 public:
  Input(std::uint8_t const* bytes, std::size_t size) : rest_(reinterpret_cast<char const*>(bytes), size) {}
  explicit Input(std::string_view bytes) : rest_(bytes) {}

  bool AtEnd() const { return rest_.empty(); }

  template <class Number>
  Number Take() {
    Number number{};
    std::string_view const bytes = Bytes(sizeof number);
    if (!bytes.empty()) std::memcpy(&number, bytes.data(), bytes.size());
    return number;
  }
  unsigned Byte() { return Take<std::uint8_t>(); }
  /// A byte that chooses one of `count`, 256 at most.
  unsigned Below(unsigned count) { return Byte() % count; }
  bool Flag() { return Below(2) == 1; }

  std::string_view Bytes(std::size_t size) {
    std::string_view const taken = rest_.substr(0, size);
    rest_.remove_prefix(taken.size());
    return taken;
  }
  /// A byte that says how many bytes, then these.
  std::string Text() {
    unsigned const size = Byte();
    return std::string(Bytes(size));
  }
  /// The same without what lies behind a NUL: what a C string of these bytes says.
  std::string CText() { return Text().c_str(); }
  std::string Rest() { return std::string(Bytes(rest_.size())); }

 private:
  std::string_view rest_;
};

/// What a target throws when the library does not do what it says.
class Finding : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The value as it is reported: bytes that are not printed as they stand in hexadecimal form.
std::string Shown(std::string_view bytes);
template <class Value>
std::string Shown(Value const& value) {
  if constexpr (std::is_convertible_v<Value const&, std::string_view>) {
    return Shown(std::string_view(value));
  } else {
    std::ostringstream out;
    out.precision(17);
    out << value;
    return out.str();
  }
}

/// Each on a line of its own.
std::string Shown(std::vector<std::string> const& texts);

inline void Check(bool holds, char const* what) {
  if (!holds) throw Finding(what);
}

template <class Actual, class Expected>
void CheckEqual(Actual const& actual, Expected const& expected, char const* what) {
  if (actual == expected) return;
  throw Finding(std::string(what) + "\n  is        " + Shown(actual) + "\n  should be " + Shown(expected));
}

/// A C string in a block of its own with not a byte to spare, so that the sanitizers see every step beyond it.
class ExactText {
 public:
  explicit ExactText(std::string_view text) : text_(new char[text.size() + 1]) {
    if (!text.empty()) std::memcpy(text_.get(), text.data(), text.size());
    text_[text.size()] = '\0';
  }
  operator char const*() const { return text_.get(); }

 private:
  std::unique_ptr<char[]> text_;
};

/// One way of feeding the library arbitrary bytes. Each is defined in a source of its own and registers itself.
struct Target {
  /// `name` is that of its corpus; `checked` says what is checked of every input, for the table of counts. `run` throws
  /// a Finding.
  Target(char const* name, char const* checked, void (*run)(Input input));

  char const* name;
  char const* checked;
  void (*run)(Input input);
  Target const* next;

  /// The first of the program's targets; they are chained by `next`.
  static Target const* First();
};

}  // namespace corvane::fuzz

#endif
