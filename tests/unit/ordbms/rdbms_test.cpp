#include "corvane/ordbms/rdbms.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <ostream>
#include <string>

#include "corvane/corvane.h"
#include "tests/support/sql.h"

using corvane::test::Customers;
using corvane::test::Orders;
using ORDBMS::old_cursor;

namespace {

class Rdbms : public testing::Test {
 protected:
  Rdbms() {
    o.id = 3;
    o.total = 70;
    o.note = "red";
    cursor.Project() << o.idColumn << o.totalColumn << o.noteColumn;
  }

  // What reading a field throws, as a text or as an exception.
  template <class... Arguments>
  std::string Unknown(Arguments&&... arguments) {
    try {
      ORDBMS::Rdbms::GetField(cursor, arguments...);
    } catch (Str const& text) {
      return text.ToString();
    }
    return "no text was thrown";
  }

  Orders o;
  old_cursor cursor;
};

// ---- the session

TEST_F(Rdbms, HasNoSessionAtFirst) { EXPECT_EQ(ORDBMS::Rdbms::session, nullptr); }

TEST_F(Rdbms, OpensNoCursorWithoutASession) {
  try {
    ORDBMS::Rdbms::OpenCursor(cursor);
    FAIL() << "nothing was thrown";
  } catch (AException const& error) {
    EXPECT_STREQ(error.what(), "There is no session for cursor. ");
  }
}

TEST_F(Rdbms, ClosesACursorByDoingNothing) {
  EXPECT_EQ(ORDBMS::Rdbms::CloseCursor(cursor), 1);
  EXPECT_EQ(corvane::test::Sql(cursor, {{&o, "o"}}), "(SELECT o.id, o.total, o.note FROM )");
}

// ---- GetField by the name of a bound value

TEST_F(Rdbms, GivesTheFieldOfAValuesColumn) {
  Orders other;
  ORDBMS::Rdbms::GetField(cursor, other.total);
  EXPECT_EQ(other.total, 70);
}

TEST_F(Rdbms, GivesATextField) {
  Orders other;
  ORDBMS::Rdbms::GetField(cursor, other.note);
  EXPECT_EQ(other.note, "red");
}

TEST_F(Rdbms, AcceptsTheColumnsOwnValue) {
  ORDBMS::Rdbms::GetField(cursor, o.total);
  EXPECT_EQ(o.total, 70);
}

TEST_F(Rdbms, LeavesTheBindingOfTheValueAlone) {
  ASAttribute column("TOTAL");
  ASInt value;
  value.Bind(&column);
  ORDBMS::Rdbms::GetField(cursor, value);
  EXPECT_EQ(value, 70);
  EXPECT_EQ(value.GetName(), "TOTAL");
}

TEST_F(Rdbms, CopiesANull) {
  Orders other;
  o.total.SetNull();
  other.total = 5;
  ORDBMS::Rdbms::GetField(cursor, other.total);
  EXPECT_EQ(other.total.IsNull(), 1);
}

// ---- GetField by a given name

TEST_F(Rdbms, GivesTheFieldOfAGivenName) {
  Int value(0);
  ORDBMS::Rdbms::GetField(cursor, value, "total");
  EXPECT_EQ(value, 70);
}

TEST_F(Rdbms, GivesATextOfAGivenName) {
  Str value;
  ORDBMS::Rdbms::GetField(cursor, value, "note");
  EXPECT_EQ(value, "red");
}

TEST_F(Rdbms, NamesAreComparedInUpperCaseUpToTheirFirstBlank) {
  Int value(0);
  ORDBMS::Rdbms::GetField(cursor, value, "ToTaL of all");
  EXPECT_EQ(value, 70);
}

TEST_F(Rdbms, TheNamesOfColumnsAreSimplifiedToo) {
  ASAttribute column("Order Date");
  ASInt data;
  data = 8;
  data.Bind(&column);
  column.Register(&data, nullptr);
  cursor.Project() << column;
  Int value(0);
  ORDBMS::Rdbms::GetField(cursor, value, "order");
  EXPECT_EQ(value, 8);
}

TEST_F(Rdbms, TheGivenNameCountsAndNotTheBoundOne) {
  Orders other;
  ORDBMS::Rdbms::GetField(cursor, other.id, "total");
  EXPECT_EQ(other.id, 70);
}

TEST_F(Rdbms, OfSeveralColumnsOfTheNameTheFirstCounts) {
  Customers c;
  c.id = 9;
  cursor.Project() << c.idColumn;
  Int value(0);
  ORDBMS::Rdbms::GetField(cursor, value, "id");
  EXPECT_EQ(value, 3);
}

TEST_F(Rdbms, GivesTheValueAsItIsNow) {
  Int value(0);
  o.total = 71;
  ORDBMS::Rdbms::GetField(cursor, value, "total");
  EXPECT_EQ(value, 71);
}

TEST_F(Rdbms, LeavesTheColumnAlone) {
  Int value(5);
  ORDBMS::Rdbms::GetField(cursor, value, "total");
  EXPECT_EQ(o.total, 70);
}

// ---- columns without value, values without column

TEST_F(Rdbms, AColumnWithoutValueIsPassedOver) {
  ASAttribute const empty("size");
  ASAttribute sized("size");
  ASInt data;
  data = 8;
  data.Bind(&sized);
  sized.Register(&data, nullptr);
  cursor.Project() << empty << sized;
  Int value(0);
  ORDBMS::Rdbms::GetField(cursor, value, "size");
  EXPECT_EQ(value, 8);
}

TEST_F(Rdbms, AColumnWithoutValueAloneIsUnknown) {
  ASAttribute const empty("size");
  cursor.Project() << empty;
  Int value(5);
  EXPECT_NE(Unknown(value, "size"), "no text was thrown");
  EXPECT_EQ(value, 5);
}

TEST_F(Rdbms, AnUnboundValueFindsAColumnWhoseValueIsUnbound) {
  ASAttribute column("size");
  ASInt data;
  data = 8;
  column.Register(&data, nullptr);
  cursor.Project() << column;
  ASInt value;
  ORDBMS::Rdbms::GetField(cursor, value);
  EXPECT_EQ(value, 8);
}

// ---- failures

TEST_F(Rdbms, AnUnknownColumnThrowsAText) {
  Int value(5);
  EXPECT_EQ(Unknown(value, "size"),
            "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD size "
            "\xEF\xBF\xBD\xEF\xBF\xBD "
            "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"
            "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD "
            "\xEF\xBF\xBD "
            "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD. ");
  EXPECT_EQ(value, 5);
}

TEST_F(Rdbms, AnUnknownColumnIsNamedAsItWasGiven) {
  Int value(5);
  EXPECT_EQ(Unknown(value, "ship Date"),
            "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD ship Date "
            "\xEF\xBF\xBD\xEF\xBF\xBD "
            "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"
            "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD "
            "\xEF\xBF\xBD "
            "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD. ");
}

TEST_F(Rdbms, AnUnboundValueIsNamedEmpty) {
  ASInt value;
  EXPECT_EQ(Unknown(value),
            "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD EMPTY "
            "\xEF\xBF\xBD\xEF\xBF\xBD "
            "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"
            "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD "
            "\xEF\xBF\xBD "
            "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD. ");
}

TEST_F(Rdbms, ColumnsProjectedAsTextsAreUnknown) {
  old_cursor texts;
  texts.Project("total");
  Int value(5);
  EXPECT_THROW(ORDBMS::Rdbms::GetField(texts, value, "total"), Str);
}

TEST_F(Rdbms, ValuesOfDifferentTypesThrow) {
  Double value(5);
  EXPECT_THROW(ORDBMS::Rdbms::GetField(cursor, value, "total"), AException);
  EXPECT_EQ(value, 5.0);
}

TEST_F(Rdbms, AColumnValueOfAnotherTypeThrows) {
  ASAttribute column("total");
  ASVStr value(10);
  value = "five";
  value.Bind(&column);
  EXPECT_THROW(ORDBMS::Rdbms::GetField(cursor, value), AException);
  EXPECT_EQ(value, "five");
}

TEST_F(Rdbms, OfAnotherTypeTheFirstColumnOfTheNameCountsAllTheSame) {
  ASAttribute column("total");
  ASVStr data(10);
  data = "five";
  data.Bind(&column);
  column.Register(&data, nullptr);
  cursor.Project() << column;
  Str value;
  EXPECT_THROW(ORDBMS::Rdbms::GetField(cursor, value, "total"), AException);
}

// ---- simplified names

struct Simplified {
  char const* name;
  std::string given;
  std::string expected;

  friend std::ostream& operator<<(std::ostream& out, Simplified const& row) { return out << row.name; }
};

class RdbmsSimplify : public testing::TestWithParam<Simplified> {};

TEST_P(RdbmsSimplify, GivesTheNameForComparison) {
  EXPECT_EQ(ORDBMS::Rdbms::Simplify(GetParam().given).ToString(), GetParam().expected);
}

std::string Repeated(std::size_t count, char letter) { return std::string(count, letter); }

Simplified const kSimplified[] = {
    {"Empty", "", ""},
    {"LowerCase", "order", "ORDER"},
    {"UpperCase", "ORDER", "ORDER"},
    {"EndsOfTheAlphabet", "azAZ", "AZAZ"},
    {"BesideTheAlphabet", "`{@[", "`{@["},
    {"Digits", "line2_0", "LINE2_0"},
    {"CutAtItsBlank", "order date", "ORDER"},
    {"CutAtTheFirstOfItsBlanks", "a b c", "A"},
    {"BlankAtTheEnd", "order   ", "ORDER"},
    {"BlankAtTheStart", " order", ""},
    {"BlanksOnly", "   ", ""},
    {"ATabIsNoBlank", "order\tdate", "ORDER\tDATE"},
    {"CutAtNul", std::string("order\0date", 10), "ORDER"},
    {"Dotted", "t.order", "T.ORDER"},
    {"OtherBytesStay",
     "stra\xC3\x9F"
     "e\xE4\xFF",
     "STRA\xC3\x9F"
     "E\xE4\xFF"},
    {"Of31", Repeated(31, 'x'), "XXXXXXXXXXXXXXXXXXXXXXXXXXXXXXX"},
    {"Of32", Repeated(32, 'x'), "XXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXX"},
    {"Of33", Repeated(33, 'x'), "XXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXX"},
    {"Of38", Repeated(32, 'x') + "y23456", "XXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXX"},
    {"Of39", Repeated(39, 'x'), "XXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXX"},
    {"Of40", Repeated(40, 'x'), "XXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXX"},
    {"Of1000", Repeated(1000, 'x'), "XXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXX"},
    {"BlankAt31", Repeated(31, 'x') + " yyy", "XXXXXXXXXXXXXXXXXXXXXXXXXXXXXXX"},
    {"BlankAt32", Repeated(32, 'x') + " yyy", "XXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXX"},
    {"BlankAt33", Repeated(33, 'x') + " yyy", "XXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXX"},
};

INSTANTIATE_TEST_SUITE_P(Names, RdbmsSimplify, testing::ValuesIn(kSimplified),
                         [](testing::TestParamInfo<Simplified> const& row) { return std::string(row.param.name); });

TEST_F(Rdbms, SimplifiesANullNameToAnEmptyOne) { EXPECT_EQ(ORDBMS::Rdbms::Simplify(Str()), ""); }

TEST_F(Rdbms, SimplifyingLeavesTheNameAlone) {
  Str const name("order date");
  ORDBMS::Rdbms::Simplify(name);
  EXPECT_EQ(name, "order date");
}

TEST_F(Rdbms, SimplifyingASimpleNameChangesNothing) {
  EXPECT_EQ(ORDBMS::Rdbms::Simplify(ORDBMS::Rdbms::Simplify("order date")), "ORDER");
}

}  // namespace
