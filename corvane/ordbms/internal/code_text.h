#ifndef CORVANE_ORDBMS_INTERNAL_CODE_TEXT_H
#define CORVANE_ORDBMS_INTERNAL_CODE_TEXT_H

#include <cstddef>

namespace corvane::internal {

/// The text that stands for a code in its table; an empty one for a code that is none.
template <class Code, std::size_t count>
char const* CodeText(char const* const (&texts)[count], Code code) {
  auto const index = static_cast<std::size_t>(code);
  return index < count ? texts[index] : "";
}

}  // namespace corvane::internal

#endif
