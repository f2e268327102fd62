#ifndef CORVANE_MAPPING_ATTRIBUTE_H
#define CORVANE_MAPPING_ATTRIBUTE_H

#include <memory>
#include <string_view>
#include <utility>

#include "corvane/data/value/number.h"
#include "corvane/data/value/relation.h"
#include "corvane/data/value/str.h"

class ASComparison;
class ASData;
class ASDomain;
class ASExpression;
class ASGroupAttribute;
class ASOrder;
class ASSetter;

namespace corvane {

/// Key flags of an ASAttribute.
enum : int {
  kKey = 1,            ///< part of the record's identity
  kEncrypted = 2,      ///< reserves a buffer; nothing is encrypted here
  kOptionalSide = 4,   ///< set and tested by the query operators: a column of the optional side of an outer join
  kAutoIncrement = 16  ///< numbered by the server; counts only together with kKey
};

}  // namespace corvane

/// The base of all columns: of a record's own and of aggregates.
/// The order of the virtual functions and of the members is binary contract.
class CORVANE_API ASSimpleAttribute {
 public:
  virtual ~ASSimpleAttribute();
  /// The text that stands for the column in a statement.
  virtual Str Query() const = 0;
  /// Appends `before`, NOT ESCAPED, and Query(), without a text of its own for an ASAttribute. Nothing when Query()
  /// throws.
  void AppendTo(Str& out, char const* before = "") const;

  /// The value that holds the column; null until registered. Not owned.
  ASData* Data() const { return data_; }
  /// The record type that the column belongs to; null when free-standing. Not owned.
  ASDomain* Domain() const { return domain_; }

 protected:
  /// Of no record, with no value.
  ASSimpleAttribute() = default;
  /// Copies both pointers.
  /// @{
  ASSimpleAttribute(ASSimpleAttribute const&) = default;
  ASSimpleAttribute& operator=(ASSimpleAttribute const&) = default;
  /// @}

  /// Stores both pointers. Neither is owned; either may be null.
  void SetColumn(ASDomain* domain, ASData* data) {
    domain_ = domain;
    data_ = data;
  }

 private:
  ASDomain* domain_ = nullptr;  // not owned
  ASData* data_ = nullptr;      // not owned
};

/// One column of a record type: its name and flags, and the pairing of its record with the value that holds it.
/// Nothing here throws but memory exhaustion (std::bad_alloc).
///
/// It is also the operand of the query language. In the texts given below a and b stand for Query() of the columns. A
/// condition names the record of its left column, and of the right one where that is said; a column without record
/// names none. To use these members include the header of what they return (corvane/query/comparison.h, ...), or
/// corvane/corvane.h. Their texts are made in query/attribute_predicates.cpp (conditions and derived columns) and in
/// the sources of what they return.
class CORVANE_API ASAttribute : public ASSimpleAttribute {
 public:
  /// An empty name and label, no flags, neither record nor value.
  ASAttribute();
  /// The name goes into statements as it stands, between backticks in those of records: NOT ESCAPED, and a backtick in
  /// it ends it.
  explicit ASAttribute(Str const& name);
  /// The name is NOT ESCAPED. `acType` is the application's own tag; `flags` are corvane::kKey and others, with |.
  ASAttribute(Str const& name, Str const& label, int acType, int flags);
  /// Copies everything, the pointers to record and value included; the buffer of an encrypted column is a new one.
  /// @{
  ASAttribute(ASAttribute const& other);
  ASAttribute& operator=(ASAttribute const& other);
  /// @}

  ~ASAttribute() override;

  /// Stores both pointers (neither is owned; either may be null) and gives an encrypted column its buffer. It neither
  /// binds the value to the column nor appends the column to the record: ASDomain::Add() does all three.
  ASAttribute& Register(ASData* data, ASDomain* domain);

  /// The record's Alias(), a dot and the name: "T140721.id"; the name alone without a record.
  Str Query() const override;
  /// The name alone.
  Str SimpleQuery() const { return names_->name; }
  /// The name and the label by reference, valid until the column is assigned to or destroyed.
  /// @{
  Str const& Name() const { return names_->name; }
  Str const& Label() const { return names_->label; }
  /// @}

  /// The application's tag; the library only stores and copies it.
  int ACType() const { return acType_; }

  /// 1 for a key column, else 0.
  int IsKey() const { return flags_ & corvane::kKey; }
  /// Not 0 for an encrypted column.
  int IsEncrypted() const { return flags_ & corvane::kEncrypted; }
  /// 1 when both corvane::kKey and corvane::kAutoIncrement are set, else 0.
  int IsAutoIncKey() const;
  /// The flags that are in `mask`.
  int CheckKey(int mask) const { return mask & flags_; }
  /// Adds the flags in `mask`.
  void SetKey(int mask) { flags_ |= mask; }

  /// Comparisons with another column: "a=(b)", "a!=b", "a>b", "a<b", "a>=b", "a<=b"; they name both records.
  /// `==` with a column marked by `++`: an outer join. The marked column's record becomes the optional side, the other
  /// one's the required side, the text the ON condition; the left one's mark comes first. Only this `==` and the one
  /// with a value look at the mark.
  /// @{
  ASComparison operator==(ASAttribute const& other) const;
  ASComparison operator!=(ASAttribute const& other) const;
  ASComparison operator>(ASAttribute const& other) const;
  ASComparison operator<(ASAttribute const& other) const;
  ASComparison operator>=(ASAttribute const& other) const;
  ASComparison operator<=(ASAttribute const& other) const;
  /// @}

  /// Comparisons with a value, written as corvane::Literal() does (a text up to its first NUL): "a='x'", "a<>'x'",
  /// "a>5". With a NULL value: "a IS NULL " and "a IS NOT NULL ", and for the other four " 0 = 1 ". `==` with the
  /// column marked by `++`: an outer join without required side.
  /// @{
  ASComparison operator==(basic_type const& value) const;
  ASComparison operator!=(basic_type const& value) const;
  ASComparison operator>(basic_type const& value) const;
  ASComparison operator<(basic_type const& value) const;
  ASComparison operator>=(basic_type const& value) const;
  ASComparison operator<=(basic_type const& value) const;
  /// @}

  /// Comparisons with a number: "a=5", "a<>5", "a>2.5"; a character is one, too. Servers refuse a double that is not
  /// finite (error 1054), and compare a time with the number of its digits, 20260131120000: give an ASTime instead.
  /// @{
  ASComparison operator==(int number) const;
  ASComparison operator!=(int number) const;
  ASComparison operator>(int number) const;
  ASComparison operator<(int number) const;
  ASComparison operator>=(int number) const;
  ASComparison operator<=(int number) const;
  ASComparison operator==(double number) const;
  ASComparison operator!=(double number) const;
  ASComparison operator>(double number) const;
  ASComparison operator<(double number) const;
  ASComparison operator>=(double number) const;
  ASComparison operator<=(double number) const;
  template <class T>
  corvane::IfOtherNumber<T, ASComparison> operator==(T number) const {
    return Compare(corvane::Relation::kEqual, number);
  }
  template <class T>
  corvane::IfOtherNumber<T, ASComparison> operator!=(T number) const {
    return Compare(corvane::Relation::kNotEqual, number);
  }
  template <class T>
  corvane::IfOtherNumber<T, ASComparison> operator>(T number) const {
    return Compare(corvane::Relation::kGreater, number);
  }
  template <class T>
  corvane::IfOtherNumber<T, ASComparison> operator<(T number) const {
    return Compare(corvane::Relation::kLess, number);
  }
  template <class T>
  corvane::IfOtherNumber<T, ASComparison> operator>=(T number) const {
    return Compare(corvane::Relation::kGreaterEqual, number);
  }
  template <class T>
  corvane::IfOtherNumber<T, ASComparison> operator<=(T number) const {
    return Compare(corvane::Relation::kLessEqual, number);
  }
  /// @}

  /// Comparisons with a text, escaped: "a='x'", "a<>'x'", "a>'x'". A null pointer counts as a NULL value.
  /// @{
  ASComparison operator==(char const* text) const;
  ASComparison operator!=(char const* text) const;
  ASComparison operator>(char const* text) const;
  ASComparison operator<(char const* text) const;
  ASComparison operator>=(char const* text) const;
  ASComparison operator<=(char const* text) const;
  ASComparison operator==(std::string_view text) const;
  ASComparison operator!=(std::string_view text) const;
  ASComparison operator>(std::string_view text) const;
  ASComparison operator<(std::string_view text) const;
  ASComparison operator>=(std::string_view text) const;
  ASComparison operator<=(std::string_view text) const;
  /// @}

  /// "a LIKE 'x%'" and "a NOT LIKE 'x%'", the pattern escaped; with an escape character " ESCAPE '!'" behind it. That
  /// character alone is NOT ESCAPED: servers refuse the quote and the backslash (error 1064). A null pattern counts as
  /// "".
  /// @{
  ASComparison Like(char const* pattern, char escape = 0) const;
  ASComparison Like(std::string_view pattern, char escape = 0) const;
  ASComparison NotLike(char const* pattern, char escape = 0) const;
  ASComparison NotLike(std::string_view pattern, char escape = 0) const;
  /// @}

  /// "a LIKE CONCAT(b, '%') ", with an escape character "ESCAPE '!' " behind it. Names the left record alone.
  ASComparison Like(ASAttribute const& prefix, char escape = 0) const;
  /// "a IS NULL", without the blank that `==` writes behind it.
  ASComparison IsNull() const;
  /// "a IS NOT NULL".
  ASComparison IsNotNull() const;
  /// "a IN (b)" and "a NOT IN (b)"; mostly with ASFilter::Select(). Name the left record alone.
  /// @{
  ASComparison In(ASAttribute const& other) const;
  ASComparison NotIn(ASAttribute const& other) const;
  /// @}

  /// "a BETWEEN '1' AND '5'": texts and values of any kind (numbers as well) are quoted, as their getstr() has them,
  /// and NOT ESCAPED: never with untrusted text. A null pointer counts as "".
  /// @{
  ASComparison Between(basic_type const& low, basic_type const& high) const;
  ASComparison Between(char const* low, char const* high) const;
  ASComparison Between(std::string_view low, std::string_view high) const;
  /// @}

  /// "a BETWEEN 1 AND 5", each number as it is.
  /// @{
  ASComparison Between(double const& low, double const& high) const;
  ASComparison Between(int low, int high) const;
  template <class T, class U>
  corvane::IfOtherNumbers<T, U, ASComparison> Between(T low, U high) const {
    return BetweenNumbers(low, high);
  }
  /// @}

  /// "a BETWEEN '1' AND 5": a value, NOT ESCAPED, and a number, each as above.
  /// @{
  template <class T>
  corvane::IfNumber<T, ASComparison> Between(basic_type const& low, T high) const {
    return BetweenMixed(low, high);
  }
  template <class T>
  corvane::IfNumber<T, ASComparison> Between(T low, basic_type const& high) const {
    return BetweenMixed(low, high);
  }
  /// @}

  /// "a BETWEEN b AND c". Names the left record alone.
  ASComparison Between(ASAttribute const& low, ASAttribute const& high) const;
  /// " Intersects(a,GeomFromText('POLYGON((0 0,0 1,1 1,0 0))'))". `points` is the ring, blanks between the coordinates
  /// of a point, commas between points, the first one repeated at the end; NOT ESCAPED: never with untrusted text.
  ASComparison IntersectGeo(Str const& points) const;

  /// Derived columns, for conditions, projections and orders. They have neither record nor value.
  /// " ABS(a)", " UPPER(a)", " LOWER(a)".
  /// @{
  ASAttribute Abs() const;
  ASAttribute Upper() const;
  ASAttribute Lower() const;
  /// @}

  /// Derived columns likewise: " INSTR(a, 'x')", the text escaped (null counts as ""), and " INSTR(a, RTRIM(b))".
  /// @{
  ASAttribute InStr(char const* text) const;
  ASAttribute InStr(std::string_view text) const;
  ASAttribute InStr(ASAttribute const& other) const;
  /// @}

  /// A copy marked for an outer join, with record and value: `++a == b` makes a's record the optional side.
  ASAttribute operator++() const;

  /// Aggregates: "SUM(a)", "AVG(a)", "MAX(a)", "MIN(a)", "COUNT(a)", "COUNT( DISTINCT a)". The caller owns the new
  /// object, which must outlive every use of the statement: `std::unique_ptr<ASGroupAttribute> const sum(a.Sum());`
  /// `project << *sum`. Each is read into this column's own value, which may be of another type than the aggregate and
  /// can hold only one of them: give it another by Register().
  /// @{
  ASGroupAttribute* Sum() const;
  ASGroupAttribute* Average() const;
  ASGroupAttribute* Max() const;
  ASGroupAttribute* Min() const;
  ASGroupAttribute* Count() const;
  ASGroupAttribute* CountDistinct() const;
  /// @}

  /// `text` as a column of a projection which does not count as plain, read into this column's value. NOT ESCAPED.
  ASGroupAttribute Expression(Str const& text) const;

  /// "a DESC", the start of an order.
  ASOrder operator-() const;
  /// "a = expression", an assignment of an UPDATE. The expression is not copied: it must outlive the setter.
  ASSetter Set(ASExpression const& expression) const;

  /// A null indicator beside the value: -1 when NULL, 0 otherwise, as of the last ASDomain::JustifyNull().
  short* IsNullFlag() { return &nullIndicator_; }
  /// The buffer of an encrypted column: the registered value's GetSize() + 1 bytes, for the application to fill; a null
  /// pointer for other columns and before Register(). Owned by the column.
  char* CryptBuffer() const { return cryptBuffer_.get(); }

 private:
  friend class ASDomain;
  friend class ASSimpleAttribute;

  struct Names {
    Names(Str ofColumn, Str forPeople) : name(std::move(ofColumn)), label(std::move(forPeople)) {}
    Str name;
    Str label;
  };

  // A free-standing column of the same names and tag.
  ASAttribute(ASAttribute const& other, int flags);

  void AppendText(Str& out) const;
  ASComparison Compare(corvane::Relation relation, corvane::Number const& number) const;
  ASComparison BetweenNumbers(corvane::Number const& low, corvane::Number const& high) const;
  ASComparison BetweenMixed(basic_type const& low, corvane::Number const& high) const;
  ASComparison BetweenMixed(corvane::Number const& low, basic_type const& high) const;

  int acType_ = 0;
  std::shared_ptr<Names const> names_;  // shared by all copies of a column, which a stored record has many of
  int flags_ = 0;
  short nullIndicator_ = 0;
  std::unique_ptr<char[]> cryptBuffer_;
};

#endif
