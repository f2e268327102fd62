#include "corvane/internal/log.h"

#include <iostream>

namespace corvane::internal {

void WriteLog(Str const& text) { std::cerr.write(text.str(), text.length()); }

}  // namespace corvane::internal
