#include "corvane/query/expression.h"

#include <atomic>
#include <cstring>
#include <utility>
#include <vector>

#include "corvane/data/literal.h"
#include "corvane/internal/finite.h"
#include "corvane/mapping/attribute.h"

namespace {

// The expression of a temporary column, which it copies.
ASExpression Kept(ASAttribute const& temporary) { return static_cast<ASAttribute const&&>(temporary); }

}  // namespace

struct ASExpression::Node {
  explicit Node(ASExpression const& whole) : tree(whole) {}

  ASExpression tree;
  std::atomic<unsigned long> uses{1};
  Node* next = nullptr;  // while they are deleted
};

// Deletes what is used no more without recursion: a chain may be longer than the stack is deep.
void ASExpression::Release::operator()(Node* node) const noexcept {
  Node* unused = nullptr;
  auto const drop = [&unused](Node* used) {
    if (used == nullptr || --used->uses > 0) return;
    used->next = unused;
    unused = used;
  };
  drop(node);
  while (unused != nullptr) {
    std::unique_ptr<Node> const first(unused);
    unused = first->next;
    for (SubTree& tree : first->tree.expression_) drop(tree.release());
  }
}

ASExpression::SubTree ASExpression::Shared(SubTree const& tree) {
  if (tree != nullptr) ++tree->uses;
  return SubTree(tree.get());
}

ASExpression::ASExpression() = default;

ASExpression::ASExpression(int number) : ASExpression(corvane::Number(number)) {}

ASExpression::ASExpression(corvane::Number const& number) {
  Str text;
  number.AppendTo(text);
  SetConstant(std::move(text));
  finite_ = number.IsFinite();
}

ASExpression::ASExpression(char const* text) { SetConstant(text); }

ASExpression::ASExpression(std::string_view text) { SetConstant(Str(text.data(), text.size())); }

ASExpression::ASExpression(basic_type const& value) {
  SetConstant(value.IsNull() != 0 ? Str() : value.getstr());
  finite_ = corvane::internal::IsFinite(value);
}

ASExpression::ASExpression(ASAttribute const& attribute) : attribute_{&attribute, nullptr}, code_(kLeaf) {}

ASExpression::ASExpression(ASAttribute const&& attribute) : code_(kLeaf) {
  // By its text: it may be of a class that renders itself otherwise.
  kept_[kLeft] = std::make_shared<ASAttribute const>(attribute.Query());
  attribute_[kLeft] = kept_[kLeft].get();
}

ASExpression::ASExpression(ASExpression const& left, Code code, ASExpression const& right) : code_(code) {
  Take(kLeft, left);
  Take(kRight, right);
}

ASExpression::ASExpression(ASExpression const& other)
    : expression_{Shared(other.expression_[kLeft]), Shared(other.expression_[kRight])},
      attribute_{other.attribute_[kLeft], other.attribute_[kRight]},
      constant_{other.constant_[kLeft], other.constant_[kRight]},
      code_(other.code_),
      kept_{other.kept_[kLeft], other.kept_[kRight]},
      null_{other.null_[kLeft], other.null_[kRight]},
      finite_(other.finite_) {}

ASExpression& ASExpression::operator=(ASExpression const& other) {
  ASExpression copy(other);
  std::swap(expression_, copy.expression_);
  std::swap(attribute_, copy.attribute_);
  std::swap(constant_, copy.constant_);
  std::swap(code_, copy.code_);
  std::swap(kept_, copy.kept_);
  std::swap(null_, copy.null_);
  std::swap(finite_, copy.finite_);
  return *this;
}

ASExpression::~ASExpression() = default;

ASExpression ASExpression::operator+(ASExpression const& right) const { return {*this, kAdd, right}; }
ASExpression ASExpression::operator-(ASExpression const& right) const { return {*this, kSubtract, right}; }
ASExpression ASExpression::operator*(ASExpression const& right) const { return {*this, kMultiply, right}; }
ASExpression ASExpression::operator/(ASExpression const& right) const { return {*this, kDivide, right}; }

Str ASExpression::Query() const {
  Str text("");
  AppendTo(text);
  return text;
}

void ASExpression::SetConstant(Str constant) {
  code_ = kLeaf;
  null_[kLeft] = constant.IsNull() != 0;
  constant_[kLeft] = std::move(constant);
}

// One operand moves into this node as it is; a tree becomes a sub-tree.
void ASExpression::Take(Side side, ASExpression const& operand) {
  finite_ = finite_ && operand.finite_;
  if (operand.code_ != kLeaf) {
    expression_[side] = SubTree(new Node(operand));  // owned by its first use
    return;
  }
  attribute_[side] = operand.attribute_[kLeft];
  constant_[side] = operand.constant_[kLeft];
  kept_[side] = operand.kept_[kLeft];
  null_[side] = operand.null_[kLeft];
}

// Pinned: no parentheses, whatever the tree's shape; held by Expression.ParenthesesAreNeverWritten.
// Without recursion: a tree may be deeper than the stack.
void ASExpression::AppendTo(Str& out) const {
  std::vector<std::pair<ASExpression const*, Side>> ahead{{this, kLeft}};  // trees, and from which side on
  while (!ahead.empty()) {
    auto const [tree, side] = ahead.back();
    ahead.pop_back();
    if (tree->code_ == kEmpty) continue;
    if (side == kLeft) {
      ahead.emplace_back(tree, kRight);
    } else {
      out << Word(tree->code_);
    }
    if (tree->expression_[side] != nullptr) {
      ahead.emplace_back(&tree->expression_[side]->tree, kLeft);
    } else {
      tree->AppendOperand(out, side);
    }
  }
}

// Of an operand that is no tree.
void ASExpression::AppendOperand(Str& out, Side side) const {
  if (attribute_[side] != nullptr) {
    out << attribute_[side]->Query();
  } else if (null_[side]) {
    out << "NULL";
  } else if (constant_[side].IsNull() == 0) {
    // Pinned: quoted, numbers too; held by Expression.NumbersAreQuoted.
    out << '\'';
    corvane::AppendEscaped(out, constant_[side].str(), constant_[side].View().size());
    out << '\'';
  }
}

char const* ASExpression::Word(Code code) {
  switch (code) {
    case kAdd:
      return " + ";
    case kSubtract:
      return " - ";
    case kNegate:
      return "- ";
    case kMultiply:
      return " * ";
    case kDivide:
      return " / ";
    default:
      return "";
  }
}

ASExpression operator+(ASAttribute const& left, ASExpression const& right) { return ASExpression(left) + right; }
ASExpression operator-(ASAttribute const& left, ASExpression const& right) { return ASExpression(left) - right; }
ASExpression operator*(ASAttribute const& left, ASExpression const& right) { return ASExpression(left) * right; }
ASExpression operator/(ASAttribute const& left, ASExpression const& right) { return ASExpression(left) / right; }

ASExpression operator+(ASAttribute const&& left, ASExpression const& right) { return Kept(left) + right; }
ASExpression operator-(ASAttribute const&& left, ASExpression const& right) { return Kept(left) - right; }
ASExpression operator*(ASAttribute const&& left, ASExpression const& right) { return Kept(left) * right; }
ASExpression operator/(ASAttribute const&& left, ASExpression const& right) { return Kept(left) / right; }
