#include "corvane/internal/server_error.h"

#include <gtest/gtest.h>

namespace corvane::internal {
namespace {

TEST(SqlState, IsThatOfTheManuals) {
  EXPECT_STREQ(SqlStateOf(1022), "23000");  // the first of the table
  EXPECT_STREQ(SqlStateOf(1045), "28000");
  EXPECT_STREQ(SqlStateOf(1054), "42S22");
  EXPECT_STREQ(SqlStateOf(1062), "23000");
  EXPECT_STREQ(SqlStateOf(1064), "42000");
  EXPECT_STREQ(SqlStateOf(1146), "42S02");
  EXPECT_STREQ(SqlStateOf(1213), "40001");
  EXPECT_STREQ(SqlStateOf(1217), "23000");
  EXPECT_STREQ(SqlStateOf(1264), "22003");
  EXPECT_STREQ(SqlStateOf(1317), "70100");
  EXPECT_STREQ(SqlStateOf(1406), "22001");
  EXPECT_STREQ(SqlStateOf(1451), "23000");
  EXPECT_STREQ(SqlStateOf(4025), "23000");  // the last
}

TEST(SqlState, OfOtherNumbersIsTheGeneralError) {
  for (int const number : {-1, 0, 1, 1021, 1205, 2002, 2006, 2013, 2014, 4026, 4031, 2147483647}) {
    EXPECT_STREQ(SqlStateOf(number), "HY000") << number;
  }
}

TEST(ErrorKind, TellsWhatACallerCanDo) {
  for (int const number : {1022, 1062, 1169, 1586, 1761, 1762, 1859}) {
    EXPECT_EQ(KindOf(number), ErrorKind::kDuplicateKey) << number;
  }
  for (int const number : {1020, 1205, 1213, 1614, 3572}) {
    EXPECT_EQ(KindOf(number), ErrorKind::kLockConflict) << number;
  }
  for (int const number : {1048, 1216, 1217, 1451, 1452, 1557, 3819, 4025}) {
    EXPECT_EQ(KindOf(number), ErrorKind::kConstraint) << number;
  }
  for (int const number : {1040, 1047, 1053, 1152, 1927, 2002, 2003, 2005, 2006, 2012, 2013, 2014, 2055, 4031}) {
    EXPECT_EQ(KindOf(number), ErrorKind::kConnectionLost) << number;
  }
}

TEST(ErrorKind, OfAnyOtherServerErrorIsARefusal) {
  for (int const number :
       {1, 1044, 1045, 1049, 1052, 1054, 1064, 1146, 1153, 1227, 1264, 1290, 1317, 1364, 1406, 2026}) {
    EXPECT_EQ(KindOf(number), ErrorKind::kRefused) << number;
  }
}

TEST(ErrorKind, WithoutAServerErrorIsOther) { EXPECT_EQ(KindOf(0), ErrorKind::kOther); }

}  // namespace
}  // namespace corvane::internal
