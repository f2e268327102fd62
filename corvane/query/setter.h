#ifndef CORVANE_QUERY_SETTER_H
#define CORVANE_QUERY_SETTER_H

#include "corvane/data/value/str.h"

class ASAttribute;
class ASExpression;

/// One assignment of an UPDATE, made by ASAttribute::Set(). Column and expression are not owned and must outlive it.
class CORVANE_API ASSetter {
 public:
  /// Assigns `value` to `target`; neither may be a null pointer.
  ASSetter(ASAttribute const* target, ASExpression const* value) : target_(target), value_(value) {}

  /// "T1.a = T1.a + '5'". Throws AException "Value has no SQL form, it is not a finite number: a. " when the expression
  /// has a number that is infinite or none.
  Str Query() const;
  /// The name of the table that is written: the target's record's Name(); a null Str when it has no record.
  Str UpdateQuery() const;

 private:
  ASAttribute const* target_;  // not owned
  ASExpression const* value_;  // not owned
};

#endif
