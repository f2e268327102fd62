#ifndef CORVANE_MAPPING_DOMAIN_H
#define CORVANE_MAPPING_DOMAIN_H

#include <cstring>
#include <list>
#include <string_view>

#include "corvane/data/int.h"
#include "corvane/data/value/str.h"
#include "corvane/mapping/allocator.h"
#include "corvane/mapping/attribute.h"

/// A record type mapped to one table: the list of its columns, in order, with the table's name.
///
/// Applications derive their record classes from it, with one value and one attribute member per column, joined by
/// Add() in the constructor. Such a record owns neither list entries nor values: they are its members.
/// Make record classes non-copyable, by `Item(Item&&) = delete;` (a deleted copy constructor alone leaves `a = b`), or
/// give them an `operator=` that calls only ASDomain's: the operators that the compiler would write copy the attribute
/// members too, and with them the pointers into the other record.
/// A record must stay where it is, and live as long as a column of it is written anywhere: statements name it by its
/// address.
///
/// A copy (by copy construction, or by assignment to a record without columns) makes columns and values of its own on
/// the heap and is labelled "COPY". The label alone decides: the destructor of whatever is labelled "COPY" deletes its
/// columns and their values. Never give a record that label, and never remove or splice entries of a copy's list.
class CORVANE_API ASDomain : public std::list<ASAttribute*, ASAllocator<ASAttribute*>> {
 public:
  /// No columns, empty name and label.
  ASDomain();
  /// `name` is the table's; it may be qualified by a schema ("shop.items") for cursors, but record statements take
  /// unqualified names only. It goes into statements as it stands, between backticks in those of records: NOT ESCAPED,
  /// and a backtick in it ends it.
  ASDomain(Str const& name, Str const& label);
  /// Clones every column: its name, label, tag, and of the flags the key flag alone; and its value by type, an ASTime
  /// as an ASInt of the same number, a NULL ASInt64 as the number -9223372036854775808, everything else NULL or not as
  /// it is. Throws AException "Incompatible types for ASDomain::ASDomain(). " for a value whose class is not the one
  /// that its type code names.
  ASDomain(ASDomain const& other);
  /// Into a record without columns: clones as above, all or, without memory, none; the name stays. Else value by value,
  /// in step until either list ends; throws AException "Incompatible types in ASDomain::operator=(). " at the first
  /// pair of different type, the values before it being assigned. Assigning a record to itself does nothing.
  ASDomain& operator=(ASDomain const& other);
  virtual ~ASDomain();

  /// Makes `attribute` the record's next column, held in `data`: registers it, binds the value to it and appends it.
  /// Neither is owned; both must outlive the record's use.
  ASDomain& Add(ASAttribute& attribute, ASData& data);

  /// The table's name and the label as given; the label of a copy is "COPY". The references are valid as long as the
  /// record lives.
  /// @{
  Str const& Name() const { return name_; }
  Str const& Label() const { return label_; }
  /// @}

  /// The table's name as stored.
  Str SimpleQuery() const { return name_; }
  /// "T" and the record's address in decimal: unlike that of any other living record.
  Str Alias() const;
  /// The table reference of a FROM clause: `prefix`, the name with each "." replaced by prefix + "." + suffix,
  /// `suffix`, a blank and the alias. With backticks: ``"`shop`.`items` T140721"``. All of it is NOT ESCAPED.
  Str Query(Str const& prefix, Str const& suffix) const;
  /// Append what Alias() and Query() give, without a text of their own; NOT ESCAPED. Prefix and suffix must not lie in
  /// `out`.
  /// @{
  void AppendAlias(Str& out) const { out.Append(alias_.text, alias_.length); }
  void AppendQuery(Str& out, std::string_view prefix, std::string_view suffix) const;
  /// @}

  /// Sets every value NULL.
  void SetNull();
  /// Refreshes every column's null indicator: -1 for NULL, else 0.
  void JustifyNull();
  /// Removes the padding of every value.
  void Trim();

  /// Compares the values at the key columns of this record with those at the same positions of the other: true when
  /// there is at least one and all are equal. A record without key columns equals nothing, itself included; nor does
  /// one that has a key column without value. Throws what the values throw for unlike types.
  bool operator==(ASDomain const& other) const;
  /// Lexicographic order over the same positions; a key column without value comes first.
  bool operator<(ASDomain const& other) const;
  /// The other comparisons, by `==` and `<`.
  /// @{
  bool operator!=(ASDomain const& other) const { return !(*this == other); }
  bool operator>(ASDomain const& other) const { return other < *this; }
  bool operator<=(ASDomain const& other) const { return !(other < *this); }
  bool operator>=(ASDomain const& other) const { return !(*this < other); }
  /// @}

 private:
  friend class ASAttribute;

  // Written once: a statement names its records more often than anything else.
  struct AliasText {
    explicit AliasText(ASDomain const* record);
    char text[21] = {};  // "T" and 64 bits in decimal
    unsigned char length;
  };

  // Appends Alias(), a dot and the name: a column of this record.
  void AppendColumn(Str& out, Str const& name) const {
    std::string_view const text = name.View();
    out.AppendWith(sizeof alias_.text + 1 + text.size(), [this, text](char* const begin) {
      std::memcpy(begin, alias_.text, sizeof alias_.text);  // all of it, which is quicker than what it has
      char* const at = begin + alias_.length;
      *at = '.';
      std::memcpy(at + 1, text.data(), text.size());
      return alias_.length + 1 + text.size();
    });
  }
  void CloneColumns(ASDomain const& other);
  void FreeColumns() noexcept;

  Str name_;
  Str label_;
  ASInt reserved_;
  AliasText const alias_{this};
};

#endif
