#include "corvane/mapping/attribute.h"

#include <typeinfo>
#include <utility>

#include "corvane/data/data.h"
#include "corvane/mapping/domain.h"

namespace {

// Room for an alias and, since most texts go on to be conditions, for an operand behind the name and a second
// condition.
constexpr std::size_t kConditionRoom = 110;

// Its size is all that is copied of a buffer, and that follows the value.
std::unique_ptr<char[]> NewCryptBuffer(ASData const* data) {
  if (data == nullptr) return nullptr;
  int const size = data->GetSize();
  return std::make_unique<char[]>(size > 0 ? static_cast<std::size_t>(size) + 1 : 1);
}

}  // namespace

ASSimpleAttribute::~ASSimpleAttribute() = default;

void ASSimpleAttribute::AppendTo(Str& out, char const* before) const {
  if (typeid(*this) != typeid(ASAttribute)) {
    Str const text = Query();
    out << before << text;
    return;
  }
  out << before;
  static_cast<ASAttribute const*>(this)->AppendText(out);
}

ASAttribute::ASAttribute() : ASAttribute("") {}

ASAttribute::ASAttribute(Str const& name) : names_(std::make_shared<Names const>(name, "")) {}

ASAttribute::ASAttribute(Str const& name, Str const& label, int acType, int flags)
    : acType_(acType), names_(std::make_shared<Names const>(name, label)), flags_(flags) {}

ASAttribute::ASAttribute(ASAttribute const& other, int flags)
    : acType_(other.acType_), names_(other.names_), flags_(flags) {}

ASAttribute::ASAttribute(ASAttribute const& other)
    : ASSimpleAttribute(other),
      acType_(other.acType_),
      names_(other.names_),
      flags_(other.flags_),
      nullIndicator_(other.nullIndicator_),
      cryptBuffer_(other.cryptBuffer_ != nullptr ? NewCryptBuffer(other.Data()) : nullptr) {}

ASAttribute& ASAttribute::operator=(ASAttribute const& other) {
  if (this == &other) return *this;
  ASAttribute copy(other);
  ASSimpleAttribute::operator=(other);
  acType_ = other.acType_;
  names_ = std::move(copy.names_);
  flags_ = other.flags_;
  nullIndicator_ = other.nullIndicator_;
  cryptBuffer_ = std::move(copy.cryptBuffer_);
  return *this;
}

ASAttribute::~ASAttribute() = default;

ASAttribute& ASAttribute::Register(ASData* data, ASDomain* domain) {
  cryptBuffer_ = IsEncrypted() != 0 ? NewCryptBuffer(data) : nullptr;
  SetColumn(domain, data);
  return *this;
}

Str ASAttribute::Query() const {
  Str text;
  text.Reserve(kConditionRoom + Name().View().size());
  AppendText(text);
  return text;
}

void ASAttribute::AppendText(Str& out) const {
  if (ASDomain const* const domain = Domain()) {
    domain->AppendColumn(out, Name());
  } else {
    out << Name();
  }
}

int ASAttribute::IsAutoIncKey() const {
  return CheckKey(corvane::kKey | corvane::kAutoIncrement) == (corvane::kKey | corvane::kAutoIncrement) ? 1 : 0;
}
