#include "corvane/ordbms/field_name.h"

#include <gtest/gtest.h>

#include "corvane/data/value/basic_type.h"

using ORDBMS::field_name;

namespace {

TEST(FieldName, HoldsPositionAndName) {
  field_name const field(2, "code");
  EXPECT_EQ(field.Position(), 2);
  EXPECT_EQ(field, "code");
}

TEST(FieldName, TakesAnyPosition) {
  EXPECT_EQ(field_name(0, "code").Position(), 0);
  EXPECT_EQ(field_name(-1, "code").Position(), -1);
}

TEST(FieldName, OfANullNameIsNull) { EXPECT_EQ(field_name(1, Str()).IsNull(), 1); }

TEST(FieldName, OfAnEmptyNameIsNotNull) { EXPECT_EQ(field_name(1, "").IsNull(), 0); }

TEST(FieldName, IsAText) {
  field_name const field(1, "Order Date");
  Str const& text = field;
  EXPECT_EQ(text, "Order Date");
  EXPECT_EQ(field.GetType(), corvane::kTypeStr);
  EXPECT_EQ(field.toLower(), "order date");
}

TEST(FieldName, ItsNameMayBeAppendedTo) {
  field_name field(2, "code");
  field << '_' << 7;
  EXPECT_EQ(field, "code_7");
  EXPECT_EQ(field.Position(), 2);
}

TEST(FieldName, ACopyHasBothAndGoesItsOwnWay) {
  field_name const field(2, "code");
  field_name copy(field);
  copy << 'x';
  EXPECT_EQ(copy.Position(), 2);
  EXPECT_EQ(copy, "codex");
  EXPECT_EQ(field, "code");
}

TEST(FieldName, AssignmentTakesBoth) {
  field_name field(2, "code");
  field_name const other(3, "name");
  field = other;
  EXPECT_EQ(field.Position(), 3);
  EXPECT_EQ(field, "name");
}

TEST(FieldName, IsDestroyedThroughItsBase) {
  Str* const field = new field_name(2, "a name that is longer than any buffer in place");
  delete field;
}

}  // namespace
