#include "corvane/internal/log.h"

#include <charconv>
#include <cstdint>
#include <iostream>

namespace corvane::internal {

Str& operator<<(Str& out, Pointer pointer) {
  constexpr std::size_t kDigits = 2 * sizeof pointer.address;
  auto const address = reinterpret_cast<std::uintptr_t>(pointer.address);
  if (address != 0) out << "0x";
  return out.AppendWith(kDigits, [address](char* at) {
    return static_cast<std::size_t>(std::to_chars(at, at + kDigits, address, 16).ptr - at);
  });
}

void WriteLog(Str const& text) { std::cerr.write(text.str(), text.length()); }

}  // namespace corvane::internal
