#ifndef CORVANE_QUERY_EXPRESSION_H
#define CORVANE_QUERY_EXPRESSION_H

#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

#include "corvane/data/value/number.h"
#include "corvane/data/value/str.h"

class ASAttribute;

/// The right-hand side of an UPDATE's assignment: a tree of + - * / over columns, constants and other expressions.
///
/// Constants are written as escaped texts between single quotes, numbers too ("T1.a + '5'"): the server converts them.
/// A character is its number.
/// A NULL value and a null pointer are written as the keyword NULL; but the macro NULL is the number 0.
/// A BINARY VALUE IS WRITTEN AS THE WORD BLOB, its getstr(): ASSession::Update() writes its bytes. No parentheses are
/// ever written: (a + b) * c gives "T1.a + T1.b * T1.c", and the server's precedence applies to that.
///
/// Columns named in an expression must outlive it; of temporary ones (`a.Abs() + 1`) the text is kept. Trees may be of
/// any depth, and a copy shares the sub-trees, whatever their size. Nothing here throws but memory exhaustion
/// (std::bad_alloc); a number that is not finite makes the setter throw.
class CORVANE_API ASExpression {
 public:
  /// Empty: renders nothing.
  ASExpression();
  /// One constant: "'7'", "'2.5'", "'text'". A null pointer is the keyword NULL.
  /// @{
  ASExpression(int number);
  template <class T, std::enable_if_t<corvane::kIsNumber<T> && !std::is_same<T, int>::value, int> = 0>
  ASExpression(T number) : ASExpression(corvane::Number(number)) {}
  ASExpression(char const* text);
  ASExpression(std::string_view text);
  /// @}

  /// A template of exactly std::string, so that nothing that becomes one is taken for it.
  template <class S, std::enable_if_t<std::is_same<S, std::string>::value, int> = 0>
  ASExpression(S const& text) : ASExpression(std::string_view(text)) {}
  /// The value's getstr(), as of now; a NULL value is the keyword NULL.
  ASExpression(basic_type const& value);
  /// One column: its Query(), as of when the expression is rendered; of a temporary one, as of now.
  /// @{
  ASExpression(ASAttribute const& attribute);
  ASExpression(ASAttribute const&& attribute);
  /// @}

  /// As if it copied the whole tree, but not the columns that it points to.
  /// @{
  ASExpression(ASExpression const& other);
  ASExpression& operator=(ASExpression const& other);
  /// @}

  ~ASExpression();

  /// The tree of both: "T1.a + '1'", "T1.a - '1'", "T1.a * '1'", "T1.a / '1'", without parentheses. Neither side is
  /// changed.
  /// @{
  ASExpression operator+(ASExpression const& right) const;
  ASExpression operator-(ASExpression const& right) const;
  ASExpression operator*(ASExpression const& right) const;
  ASExpression operator/(ASExpression const& right) const;
  /// @}

  /// The text: "T1.a + '1' * T1.b".
  Str Query() const;

 private:
  enum Code : int {
    kEmpty = 0,
    kLeaf = 2,  // one operand, on the left
    kAdd = 3,
    kSubtract = 4,
    kNegate = 5,  // rendered, but built by nothing
    kMultiply = 6,
    kDivide = 7
  };
  enum Side { kLeft, kRight };

  // A sub-tree, which is never changed; all expressions that have it share it, those of other threads too.
  struct Node;
  struct Release {
    void operator()(Node* node) const noexcept;
  };
  using SubTree = std::unique_ptr<Node, Release>;  // one use of the node

  explicit ASExpression(corvane::Number const& number);
  friend class ASSetter;

  ASExpression(ASExpression const& left, Code code, ASExpression const& right);
  void SetConstant(Str constant);
  void Take(Side side, ASExpression const& operand);
  static SubTree Shared(SubTree const& tree);
  void AppendTo(Str& out) const;
  void AppendOperand(Str& out, Side side) const;
  static char const* Word(Code code);

  // Each side holds one operand at most: a sub-expression, else a column, else a constant, which is null when there is
  // none. The order is binary contract.
  SubTree expression_[2];
  ASAttribute const* attribute_[2] = {};  // not owned; in kept_ when it was a temporary
  Str constant_[2];
  Code code_ = kEmpty;
  std::shared_ptr<ASAttribute const> kept_[2];
  bool null_[2] = {};   // the operand is the keyword NULL
  bool finite_ = true;  // so are all constants in the tree
};

/// With a column on the left: as the expression of that column; of a temporary one the text is kept. On the right may
/// stand whatever makes an expression.
/// @{
CORVANE_API ASExpression operator+(ASAttribute const& left, ASExpression const& right);
CORVANE_API ASExpression operator-(ASAttribute const& left, ASExpression const& right);
CORVANE_API ASExpression operator*(ASAttribute const& left, ASExpression const& right);
CORVANE_API ASExpression operator/(ASAttribute const& left, ASExpression const& right);
CORVANE_API ASExpression operator+(ASAttribute const&& left, ASExpression const& right);
CORVANE_API ASExpression operator-(ASAttribute const&& left, ASExpression const& right);
CORVANE_API ASExpression operator*(ASAttribute const&& left, ASExpression const& right);
CORVANE_API ASExpression operator/(ASAttribute const&& left, ASExpression const& right);
/// @}

#endif
