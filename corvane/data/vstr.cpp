#include "corvane/data/vstr.h"

ASVStr::ASVStr(unsigned capacity) : ASStr(capacity) {}

ASVStr::~ASVStr() = default;

int ASVStr::GetDBType() const { return corvane::kDbVStr; }

ASVStr& ASVStr::operator=(Str const& text) {
  Str::operator=(text);
  return *this;
}

ASVStr& ASVStr::operator=(char const* text) {
  Str::operator=(text);
  return *this;
}

ASVStr& ASVStr::operator=(ASStr const& text) { return *this = static_cast<Str const&>(text); }
