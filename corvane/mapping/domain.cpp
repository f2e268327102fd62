#include "corvane/mapping/domain.h"

#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>
#include <typeinfo>

#include "corvane/data/blob.h"
#include "corvane/data/data.h"
#include "corvane/data/dcurrency.h"
#include "corvane/data/double.h"
#include "corvane/data/geometry.h"
#include "corvane/data/guid.h"
#include "corvane/data/int64.h"
#include "corvane/data/real_blob.h"
#include "corvane/data/time.h"
#include "corvane/data/value/exception.h"
#include "corvane/data/vstr.h"
#include "corvane/internal/number_text.h"
#include "corvane/internal/same_kind.h"

using corvane::internal::To;

namespace {

constexpr char const* kOwningLabel = "COPY";

// A value whose type code says `Value`; the code of an application's class may promise what it is not.
template <class Value, class Column = Value, class Other = Column>
Value const& As(ASData const& data) {
  auto const* const value = To<Value, Column, Other>(data);
  if (value == nullptr) corvane::internal::ThrowIncompatible("ASDomain::ASDomain()");
  return *value;
}

template <class Column>
std::unique_ptr<ASData> CloneText(ASData const& data) {
  auto const& text = As<Str, Column>(data);
  auto clone = std::make_unique<Column>(static_cast<unsigned>(data.GetSize()));
  *clone = text.str();
  if (text.IsNull() != 0) clone->SetNull();
  return clone;
}

// Through the plain number, which has no null flag of its own.
template <class Column, class Value, class Scalar, class Other = Column>
std::unique_ptr<ASData> CloneNumber(ASData const& data) {
  auto clone = std::make_unique<Column>();
  *clone = static_cast<Scalar>(As<Value, Column, Other>(data));
  return clone;
}

template <class Column>
std::unique_ptr<ASData> CloneBlock(ASData const& data) {
  auto clone = std::make_unique<Column>(static_cast<std::uint16_t>(data.GetSize()));
  *clone = As<Column>(data);
  return clone;
}

// A new value of the kind that `data` is, holding the same.
std::unique_ptr<ASData> Clone(ASData const& data) {
  switch (data.GetType()) {
    case corvane::kTypeInt:  // Pinned: an ASTime too becomes an ASInt; held by Domain.CloneTurnsTimesIntoInts.
      return CloneNumber<ASInt, Int, int, ASTime>(data);
    case corvane::kTypeDouble:
      return CloneNumber<ASDouble, Double, double>(data);
    case corvane::kTypeStr:
      return data.GetDBType() == corvane::kDbVStr ? CloneText<ASVStr>(data) : CloneText<ASStr>(data);
    case corvane::kTypeInt64:  // Pinned: a NULL becomes a number; held by Domain.CloneTurnsANullInt64IntoANumber.
      return CloneNumber<ASInt64, Int64, long>(data);
    case corvane::kTypeDCurrency:
      return CloneNumber<ASDCurrency, Double, double>(data);
    case corvane::kTypeGuid: {
      auto clone = std::make_unique<ASGuid>();
      *clone = As<Guid, ASGuid>(data);
      return clone;
    }
    default:
      break;
  }
  if (data.GetDBType() == corvane::kDbGeometry) return CloneBlock<ASGeometry>(data);
  if (data.GetDBType() != corvane::kDbRealBlob) return CloneBlock<ASBlob>(data);
  auto clone = std::make_unique<ASRealBlob>(0);
  *clone = As<RealBlob, ASRealBlob>(data);
  return clone;
}

[[noreturn]] void ThrowIncompatibleAssignment() { throw AException("Incompatible types in ASDomain::operator=(). "); }

// Same-class assignment of two values that should both be of class `Column`.
template <class Column, class Other = Column>
void AssignAs(ASData& target, ASData const& source) {
  auto* const to = To<Column, Column, Other>(target);
  auto const* const from = To<Column, Column, Other>(source);
  if (to == nullptr || from == nullptr) ThrowIncompatibleAssignment();
  *to = *from;
}

void AssignText(ASData& target, ASData const& source) {
  auto* const to = To<ASStr, ASVStr, ASStr>(target);
  auto const* const from = To<Str, ASVStr, ASStr>(source);
  if (to == nullptr || from == nullptr) ThrowIncompatibleAssignment();
  *to = from->str();
  if (from->IsNull() != 0) to->SetNull();  // str() of a NULL is an empty text
}

void Assign(ASData& target, ASData const& source) {
  if (target.GetType() != source.GetType()) ThrowIncompatibleAssignment();
  switch (target.GetType()) {
    case corvane::kTypeInt:
      return AssignAs<ASInt, ASTime>(target, source);
    case corvane::kTypeDouble:
      return AssignAs<ASDouble>(target, source);
    case corvane::kTypeInt64:
      return AssignAs<ASInt64>(target, source);
    case corvane::kTypeGuid:
      return AssignAs<ASGuid>(target, source);
    case corvane::kTypeStr:
      return AssignText(target, source);
    case corvane::kTypeDCurrency:
      return AssignAs<ASDCurrency>(target, source);
    default:
      break;
  }
  if (target.GetDBType() == corvane::kDbRealBlob) return AssignAs<ASRealBlob>(target, source);
  if (target.GetDBType() == corvane::kDbGeometry) return AssignAs<ASGeometry>(target, source);
  AssignAs<ASBlob>(target, source);
}

// Calls `visit` with each value of the record.
template <class Visit>
void ForEachValue(ASDomain const& record, Visit visit) {
  for (ASAttribute* const attribute : record) {
    if (attribute != nullptr && attribute->Data() != nullptr) visit(*attribute, *attribute->Data());
  }
}

enum class Order { kLess, kEqual, kGreater };

template <class Number>
Order CompareNumbers(Number left, Number right) {
  return left < right ? Order::kLess : left == right ? Order::kEqual : Order::kGreater;
}

// Most keys are integers. Their NULL is the lowest number, of an ASInt64 because a copy of it is.
Order Compare(ASData const& left, ASData const& right) {
  if (typeid(left) == typeid(ASInt) && typeid(right) == typeid(ASInt)) {
    return CompareNumbers<int>(static_cast<ASInt const&>(left), static_cast<ASInt const&>(right));
  }
  if (typeid(left) == typeid(ASInt64) && typeid(right) == typeid(ASInt64)) {
    return CompareNumbers<long>(static_cast<ASInt64 const&>(left), static_cast<ASInt64 const&>(right));
  }
  basic_type const& value = right;
  return left < value ? Order::kLess : left == value ? Order::kEqual : Order::kGreater;
}

// Calls `visit` with the two values, null pointers among them, at each key position of `left`, as long as it returns
// true.
template <class Visit>
void ForEachKeyPair(ASDomain const& left, ASDomain const& right, Visit visit) {
  auto other = right.begin();
  for (ASAttribute* const attribute : left) {
    if (other == right.end()) return;
    ASAttribute* const counterpart = *other++;
    if (attribute == nullptr || counterpart == nullptr || attribute->IsKey() == 0) continue;
    if (!visit(attribute->Data(), counterpart->Data())) return;
  }
}

}  // namespace

ASDomain::ASDomain() : name_(""), label_("") {}

ASDomain::ASDomain(Str const& name, Str const& label) : name_(name), label_(label) {}

// NOLINTNEXTLINE(bugprone-copy-constructor-init): the columns are cloned, their list is not copied
ASDomain::ASDomain(ASDomain const& other) : list(), name_(other.name_), label_(kOwningLabel) {
  try {
    CloneColumns(other);
  } catch (...) {
    FreeColumns();  // the destructor will not run
    throw;
  }
}

ASDomain& ASDomain::operator=(ASDomain const& other) {
  if (this == &other) return *this;
  if (empty()) {
    label_ = kOwningLabel;
    try {
      CloneColumns(other);
    } catch (std::bad_alloc const&) {
      FreeColumns();
      clear();  // a record with some of the columns would pass for the whole one
      throw;
    }
    return *this;
  }
  auto source = other.begin();
  for (auto target = begin(); target != end() && source != other.end(); ++target, ++source) {
    ASData* const to = *target != nullptr ? (*target)->Data() : nullptr;
    ASData const* const from = *source != nullptr ? (*source)->Data() : nullptr;
    if (to == nullptr && from == nullptr) continue;
    if (to == nullptr || from == nullptr) ThrowIncompatibleAssignment();
    Assign(*to, *from);
  }
  return *this;
}

ASDomain::~ASDomain() {
  // Pinned: whoever wrote the label; held by Domain.TheLabelCopyAloneMeansOwnership.
  if (label_ == kOwningLabel) FreeColumns();
}

ASDomain& ASDomain::Add(ASAttribute& attribute, ASData& data) {
  push_back(&attribute);
  attribute.Register(&data, this);
  data.Bind(&attribute);
  return *this;
}

Str ASDomain::Alias() const {
  Str alias;
  AppendAlias(alias);
  return alias;
}

Str ASDomain::Query(Str const& prefix, Str const& suffix) const {
  Str text;
  AppendQuery(text, prefix.View(), suffix.View());
  return text;
}

ASDomain::AliasText::AliasText(ASDomain const* record) {
  auto const address = static_cast<std::intptr_t>(reinterpret_cast<std::uintptr_t>(record));
  char number[corvane::internal::kNumberRoom];
  std::size_t const digits =
      corvane::internal::WriteNumber(number, static_cast<unsigned long long>(address < 0 ? -address : address));
  text[0] = 'T';
  std::memcpy(text + 1, number, digits);
  length = static_cast<unsigned char>(1 + digits);
}

void ASDomain::AppendQuery(Str& out, std::string_view prefix, std::string_view suffix) const {
  out.Append(prefix.data(), prefix.size());
  std::string_view rest = name_.View();
  for (std::size_t dot; (dot = rest.find('.')) != std::string_view::npos; rest.remove_prefix(dot + 1)) {
    out.Append(rest.data(), dot).Append(prefix.data(), prefix.size()) << '.';
    out.Append(suffix.data(), suffix.size());
  }
  out.Append(rest.data(), rest.size()).Append(suffix.data(), suffix.size()) << ' ';
  AppendAlias(out);
}

void ASDomain::SetNull() {
  ForEachValue(*this, [](ASAttribute&, ASData& data) { data.SetNull(); });
}

void ASDomain::JustifyNull() {
  ForEachValue(*this, [](ASAttribute& attribute, ASData& data) {
    *attribute.IsNullFlag() = data.IsNull() != 0 ? short{-1} : short{0};
  });
}

void ASDomain::Trim() {
  ForEachValue(*this, [](ASAttribute&, ASData& data) { data.Trim(); });
}

bool ASDomain::operator==(ASDomain const& other) const {
  bool equal = false;
  ForEachKeyPair(*this, other, [&equal](ASData const* own, ASData const* counterpart) {
    return equal = own != nullptr && counterpart != nullptr && *own == static_cast<basic_type const&>(*counterpart);
  });
  return equal;
}

bool ASDomain::operator<(ASDomain const& other) const {
  bool less = false;
  ForEachKeyPair(*this, other, [&less](ASData const* own, ASData const* counterpart) {
    if (own == nullptr || counterpart == nullptr) {
      less = own == nullptr && counterpart != nullptr;
      return false;
    }
    Order const order = Compare(*own, *counterpart);
    less = order == Order::kLess;
    return order == Order::kEqual;
  });
  return less;
}

void ASDomain::CloneColumns(ASDomain const& other) {
  for (ASAttribute const* const attribute : other) {
    if (attribute == nullptr) {
      push_back(nullptr);  // the others keep their places
      continue;
    }
    std::unique_ptr<ASAttribute> column(new ASAttribute(*attribute, attribute->IsKey()));
    auto value = attribute->Data() != nullptr ? Clone(*attribute->Data()) : nullptr;
    push_back(column.get());
    column->Register(value.get(), this);
    if (value != nullptr) value->Bind(column.get());
    value.release();   // the list owns both from here on,
    column.release();  // by this record's label
  }
}

void ASDomain::FreeColumns() noexcept {
  ForEachValue(*this, [](ASAttribute&, ASData& data) { delete &data; });
  for (ASAttribute* const attribute : *this) delete attribute;
}
