#include "corvane/data/literal.h"

#include <cstdint>
#include <cstring>
#include <functional>

#include "corvane/data/time.h"
#include "corvane/data/value/numeric.h"
#include "corvane/internal/client_library.h"

namespace corvane {

namespace {

constexpr std::uint64_t Repeated(unsigned char byte) { return 0x0101010101010101U * byte; }

// The high bit of each byte of `word` that is 0; of a byte behind such a one it may be set too.
constexpr std::uint64_t ZeroBytes(std::uint64_t word) { return (word - Repeated(1)) & ~word & Repeated(0x80); }

// Whether one of eight bytes is a control character, a quote or a backslash, or lies beyond ASCII.
constexpr bool NeedsEscape(std::uint64_t word) {
  std::uint64_t const control = (word - Repeated(' ')) & ~word & Repeated(0x80);
  std::uint64_t const beyond = word & Repeated(0x80);
  return (control | beyond | ZeroBytes(word ^ Repeated('\'')) | ZeroBytes(word ^ Repeated('"')) |
          ZeroBytes(word ^ Repeated('\\'))) != 0;
}

// Whether the client library would copy every byte as it stands. Bytes from 0x80 on are left to it: they may be part
// of a character. Eight bytes at a time, the last ones filled up with blanks.
bool NeedsNoEscape(char const* bytes, std::size_t length) {
  std::uint64_t word = 0;
  for (; length >= sizeof word; bytes += sizeof word, length -= sizeof word) {
    std::memcpy(&word, bytes, sizeof word);
    if (NeedsEscape(word)) return false;
  }
  word = Repeated(' ');
  if (length > 0) std::memcpy(&word, bytes, length);
  return !NeedsEscape(word);
}

}  // namespace

void AppendEscaped(Str& out, char const* bytes, std::size_t length) {
  if (std::less_equal<char const*>()(out.str(), bytes) &&
      std::less_equal<char const*>()(bytes, out.str() + out.length())) {
    Str const part(bytes, length);  // growing `out` would move its own bytes away
    return AppendEscaped(out, part.str(), length);
  }
  if (NeedsNoEscape(bytes, length)) {
    out.Append(bytes, length);
    return;
  }
  out.AppendWith(2 * length + 1, [&](char* at) { return internal::Escape(at, bytes, length); });
}

Str Escaped(char const* text) {
  Str out("");
  if (text != nullptr) AppendEscaped(out, text, std::strlen(text));
  return out;
}

void AppendLiteral(Str& out, basic_type const& value) {
  Str const text = value.getstr();
  if (dynamic_cast<numeric const*>(&value) != nullptr && dynamic_cast<ASTime const*>(&value) == nullptr) {
    out << text;
    return;
  }
  out << '\'';
  AppendEscaped(out, text.str(), std::strlen(text.str()));
  out << '\'';
}

Str Literal(basic_type const& value) {
  Str out;
  AppendLiteral(out, value);
  return out;
}

}  // namespace corvane
