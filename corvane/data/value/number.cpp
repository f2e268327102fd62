#include "corvane/data/value/number.h"

#include <cmath>

namespace corvane {

void Number::AppendTo(Str& out) const {
  switch (kind_) {
    case Kind::kSigned:
      out << signed_;
      return;
    case Kind::kUnsigned:
      out << unsigned_;
      return;
    case Kind::kReal:
      out << real_;
      return;
  }
}

bool Number::IsFinite() const { return kind_ != Kind::kReal || std::isfinite(real_); }

}  // namespace corvane
