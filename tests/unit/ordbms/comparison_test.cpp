#include "corvane/ordbms/comparison.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <ostream>
#include <string>

using namespace ORDBMS;

namespace {

struct Row {
  char const* name;
  int code;
  int value;
  char const* text;
  char const* expected;

  friend std::ostream& operator<<(std::ostream& out, Row const& row) { return out << row.name; }
};

class OldCodes : public testing::TestWithParam<Row> {};

TEST_P(OldCodes, HaveTheirValues) { EXPECT_EQ(GetParam().code, GetParam().value); }

TEST_P(OldCodes, StandForTheirTexts) { EXPECT_STREQ(GetParam().text, GetParam().expected); }

INSTANTIATE_TEST_SUITE_P(Comparisons, OldCodes,
                         testing::Values(Row{"Equal", EQUAL, 0, comp_string[EQUAL], "="},
                                         Row{"NotEqual", NOT_EQUAL, 1, comp_string[NOT_EQUAL], "<>"},
                                         Row{"Less", LESS, 2, comp_string[LESS], "<"},
                                         Row{"Greater", GREATER, 3, comp_string[GREATER], ">"},
                                         Row{"LessEqual", LESS_EQUAL, 4, comp_string[LESS_EQUAL], "<="},
                                         Row{"GreaterEqual", GREATER_EQUAL, 5, comp_string[GREATER_EQUAL], ">="}),
                         [](testing::TestParamInfo<Row> const& row) { return std::string(row.param.name); });

INSTANTIATE_TEST_SUITE_P(NullComparisons, OldCodes,
                         testing::Values(Row{"IsNull", IS_NULL, 0, null_comp_string[IS_NULL], " IS NULL"},
                                         Row{"IsNotNull", IS_NOT_NULL, 1, null_comp_string[IS_NOT_NULL],
                                             " IS NOT NULL"}),
                         [](testing::TestParamInfo<Row> const& row) { return std::string(row.param.name); });

INSTANTIATE_TEST_SUITE_P(SortOrders, OldCodes,
                         testing::Values(Row{"Ascending", ASCENDING, 0, order_string[ASCENDING], " ASC"},
                                         Row{"Descending", DESCENDING, 1, order_string[DESCENDING], " DESC"}),
                         [](testing::TestParamInfo<Row> const& row) { return std::string(row.param.name); });

// Runs before the constructors of all static objects, which have lower priorities.
char early[64];

__attribute__((constructor(101))) void ReadTheTables() {
  char* to = early;
  for (char const* const text : {comp_string[LESS_EQUAL], null_comp_string[IS_NOT_NULL], order_string[DESCENDING]}) {
    for (char const* from = text; from != nullptr && *from != '\0'; ++from) *to++ = *from;
  }
}

TEST(OldCodeTables, CanBeUsedBeforeAnyStaticObjectIsMade) { EXPECT_STREQ(early, "<= IS NOT NULL DESC"); }

}  // namespace
