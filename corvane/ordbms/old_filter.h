#ifndef CORVANE_ORDBMS_OLD_FILTER_H
#define CORVANE_ORDBMS_OLD_FILTER_H

#include <type_traits>

#include "corvane/data/value/number.h"
#include "corvane/ordbms/comparison.h"
#include "corvane/query/filter.h"

namespace ORDBMS {

/// A query whose columns, tables and values are given as texts, for applications that were written so; new ones are
/// better off with ASFilter's conditions, whose values are escaped.
///
///     ORDBMS::old_filter filter;
///     filter.Join("country");
///     filter.Project("code");
///     filter.Set("name", "'Italy'", ORDBMS::EQUAL);
///     filter.Or("name", "'Malta'", ORDBMS::EQUAL);
///     filter.Query();  // "SELECT code FROM country P94271 WHERE name='Italy' OR name='Malta'"
///
/// ALL IS NOT ESCAPED HERE, neither names nor values: never with untrusted text.
///
/// The tables are those of Join() alone: the columns and conditions of records, which name their own aliases, do not
/// fit here. An ASAttribute without record may be streamed into Project(): `ASAttribute("code")`, with a value given by
/// `Register(&value, nullptr)`. HAVING, GROUP BY and hints are not written. Nothing here throws but memory exhaustion
/// (std::bad_alloc). The order of the virtual functions and of the members is binary contract.
class CORVANE_API old_filter : public virtual ASFilter {
  // Two plain numbers, not codes, for which there is no overload.
  template <class Low, class High>
  using IfOtherRange = std::enable_if_t<std::is_arithmetic<Low>::value && std::is_arithmetic<High>::value,
                                        corvane::IfOtherNumbers<Low, High, old_filter&>>;

 public:
  /// Without tables, columns and condition.
  old_filter();
  /// Copies all of it.
  old_filter(old_filter const&);
  /// As ASFilter's, and the tables of Join().
  old_filter& operator=(old_filter const& other);
  ~old_filter() override;

  /// As ASFilter has it.
  using ASFilter::Project;
  /// As ASFilter has it.
  using ASFilter::Set;

  /// Each appends to the condition: Set() begins it with " WHERE ", And() and Or() go on with " AND " and " OR ".
  /// Nothing is replaced: Set() comes first and once, servers refuse two WHERE (error 1064).
  ///
  /// " WHERE name=value", the value as it stands: with its quotes. A code that is none gives no operator. A text column
  /// given by value is such a text, too: give its address to have it quoted.
  /// @{
  old_filter& Set(Str const& field, Str const& value, comparison code);
  old_filter& And(Str const& field, Str const& value, comparison code);
  old_filter& Or(Str const& field, Str const& value, comparison code);
  /// @}

  /// " WHERE name='value'", as the value's getstr() has it. A NULL value, or a null pointer: " WHERE name IS NULL " for
  /// EQUAL, " WHERE name IS NOT NULL " for NOT_EQUAL, and " WHERE 0 = 1 " for all else.
  /// @{
  old_filter& Set(Str const& field, basic_type const* value, comparison code);
  old_filter& And(Str const& field, basic_type const* value, comparison code);
  old_filter& Or(Str const& field, basic_type const* value, comparison code);
  /// @}

  /// " WHERE name IS NULL", " WHERE name IS NOT NULL".
  /// @{
  old_filter& Set(Str const& field, null_comparison code);
  old_filter& And(Str const& field, null_comparison code);
  old_filter& Or(Str const& field, null_comparison code);
  /// @}

  /// " WHERE name BETWEEN 1 AND 5".
  /// @{
  old_filter& Set(Str const& field, int low, int high);
  old_filter& And(Str const& field, int low, int high);
  old_filter& Or(Str const& field, int low, int high);
  /// @}

  /// " WHERE name BETWEEN 1.500000 AND 5.000000": six decimals, in every locale. What is not finite servers refuse
  /// (error 1054).
  /// @{
  old_filter& Set(Str const& field, double low, double high);
  old_filter& And(Str const& field, double low, double high);
  old_filter& Or(Str const& field, double low, double high);
  /// @}

  /// Numbers of other types: integers in full, an integer beside a double as one.
  /// @{
  template <class Low, class High>
  IfOtherRange<Low, High> Set(Str const& field, Low low, High high) {
    return AddRange(" WHERE ", field, low, high);
  }
  template <class Low, class High>
  IfOtherRange<Low, High> And(Str const& field, Low low, High high) {
    return AddRange(" AND ", field, low, high);
  }
  template <class Low, class High>
  IfOtherRange<Low, High> Or(Str const& field, Low low, High high) {
    return AddRange(" OR ", field, low, high);
  }
  /// @}

  /// A code is a number, too: this would be BETWEEN. Give the value as a text, or by its address.
  /// @{
  old_filter& Set(Str const& field, int value, comparison code) = delete;
  old_filter& And(Str const& field, int value, comparison code) = delete;
  old_filter& Or(Str const& field, int value, comparison code) = delete;
  /// @}

  /// Appends to the select list, behind ", " unless that is empty. Without any, "*" is selected.
  old_filter& Project(Str const& column);
  /// Project().Distinct() for any number but 0: behind it Project() writes "DISTINCT , name", which servers refuse
  /// (error 1064). Give the word with the first column: "DISTINCT name".
  old_filter& Distinct(int on);
  /// Appends "table P94271" to the list of tables, behind ", " unless that is empty. The number is the address of the
  /// text's characters, and what is returned of it are the lower 32 bits. So every table has an alias of its own, as
  /// long as the texts live, and another one in every run. Servers refuse the same text twice (error 1066). A column is
  /// qualified by `Str("P") << reinterpret_cast<unsigned long>(table)`, with a Str's voidptr().
  /// @{
  int Join(Str const& table);
  int Join(char const* table);
  /// @}

  /// "SELECT code FROM country P94271 WHERE name='Italy'".
  Str Query() const override;

 private:
  template <class... Parts>
  old_filter& Add(char const* word, Parts const&... parts);
  template <class Low, class High>
  old_filter& AddRange(char const* word, Str const& field, Low low, High high) {
    if constexpr (std::is_integral<Low>::value && std::is_integral<High>::value) {
      return AddIntegers(word, field, low, high);
    } else {
      return AddDoubles(word, field, static_cast<double>(low), static_cast<double>(high));
    }
  }
  old_filter& AddIntegers(char const* word, Str const& field, corvane::Number const& low, corvane::Number const& high);
  old_filter& AddDoubles(char const* word, Str const& field, double low, double high);
  int JoinAs(Str const& table, void const* address);

  Str join_;
};

}  // namespace ORDBMS

#endif
