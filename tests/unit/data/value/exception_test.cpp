#include "corvane/data/value/exception.h"

#include <gtest/gtest.h>

#include <exception>
#include <string>
#include <type_traits>

namespace {

TEST(AException, KeepsTheMessage) {
  AException const exception("There is no session for cursor. ");
  EXPECT_STREQ(exception.what(), "There is no session for cursor. ");
}

TEST(AException, HasNumberZeroWhenNoneIsGiven) {
  AException const exception("DB Error ");
  EXPECT_EQ(exception.Number(), 0);
}

TEST(AException, KeepsTheNumber) {
  AException const exception(102, "DB Error ");
  EXPECT_EQ(exception.Number(), 102);
}

TEST(AException, KeepsTheNumberOutOfTheMessage) {
  AException const exception(102, "DB Error ");
  EXPECT_STREQ(exception.what(), "DB Error ");
}

TEST(AException, HasNoServerErrorWhenNoneIsGiven) {
  AException const exception(102, "DB Error ");
  EXPECT_EQ(exception.ServerError(), 0);
  EXPECT_STREQ(exception.SqlState(), "HY000");
  EXPECT_EQ(exception.Kind(), corvane::ErrorKind::kOther);
}

TEST(AException, TellsWhatTheServerSaid) {
  AException const exception(102, "DB Error ", 1062);
  EXPECT_EQ(exception.Number(), 102);
  EXPECT_STREQ(exception.what(), "DB Error ");
  EXPECT_EQ(exception.ServerError(), 1062);
  EXPECT_STREQ(exception.SqlState(), "23000");
  EXPECT_EQ(exception.Kind(), corvane::ErrorKind::kDuplicateKey);
}

TEST(AException, IsOfTheKindThatItIsGiven) {
  AException const exception(102, "DB Error ", 1062, corvane::ErrorKind::kOutcomeUnknown);
  EXPECT_EQ(exception.ServerError(), 1062);
  EXPECT_EQ(exception.Kind(), corvane::ErrorKind::kOutcomeUnknown);
}

TEST(AException, CopiesWhatTheServerSaid) {
  AException const exception(102, "DB Error ", 1062, corvane::ErrorKind::kOutcomeUnknown);
  AException copy(exception);
  EXPECT_EQ(copy.ServerError(), 1062);
  EXPECT_EQ(copy.Kind(), corvane::ErrorKind::kOutcomeUnknown);
  AException assigned("");
  assigned = exception;
  EXPECT_EQ(assigned.ServerError(), 1062);
  EXPECT_EQ(assigned.Kind(), corvane::ErrorKind::kOutcomeUnknown);
}

TEST(AException, TakesANullMessageForAnEmptyOne) {
  AException const exception(static_cast<char const*>(nullptr));
  EXPECT_STREQ(exception.what(), "");
}

TEST(AException, TakesANullMessageBesideANumber) {
  AException const exception(103, nullptr);
  EXPECT_STREQ(exception.what(), "");
}

TEST(AException, AppendsText) {
  AException exception("DB Error ");
  exception << "refused";
  EXPECT_STREQ(exception.what(), "DB Error refused");
}

TEST(AException, AppendsAStr) {
  AException exception("DB Error ");
  exception << Str("refused");
  EXPECT_STREQ(exception.what(), "DB Error refused");
}

TEST(AException, AppendsAnInt) {
  AException exception("DB Error ");
  exception << 1062;
  EXPECT_STREQ(exception.what(), "DB Error 1062");
}

TEST(AException, AppendsAnUnsignedInt) {
  AException exception("DB Error ");
  exception << 4294967295U;
  EXPECT_STREQ(exception.what(), "DB Error 4294967295");
}

TEST(AException, AppendsALong) {
  AException exception("DB Error ");
  exception << 9223372036854775807L;
  EXPECT_STREQ(exception.what(), "DB Error 9223372036854775807");
}

TEST(AException, AppendsAnUnsignedLong) {
  AException exception("DB Error ");
  exception << 18446744073709551615UL;
  EXPECT_STREQ(exception.what(), "DB Error 18446744073709551615");
}

TEST(AException, AppendsALongLong) {
  AException exception("DB Error ");
  exception << -9223372036854775807LL;
  EXPECT_STREQ(exception.what(), "DB Error -9223372036854775807");
}

TEST(AException, AppendsAnUnsignedLongLong) {
  AException exception("DB Error ");
  exception << 18446744073709551615ULL;
  EXPECT_STREQ(exception.what(), "DB Error 18446744073709551615");
}

TEST(AException, AppendsADouble) {
  AException exception("DB Error ");
  exception << 2.5;
  EXPECT_STREQ(exception.what(), "DB Error 2.5");
}

TEST(AException, AppendsACharacter) {
  AException exception("DB Error ");
  exception << 'x';
  EXPECT_STREQ(exception.what(), "DB Error x");
}

TEST(AException, AppendsNothingForANullText) {
  AException exception("DB Error ");
  exception << static_cast<char const*>(nullptr);
  EXPECT_STREQ(exception.what(), "DB Error ");
}

TEST(AException, AppendsNothingForANullStr) {
  AException exception("DB Error ");
  exception << Str();
  EXPECT_STREQ(exception.what(), "DB Error ");
}

TEST(AException, ChainsAppends) {
  AException exception(102, "DB Error ");
  exception << 1062 << " (" << Str("Duplicate entry") << ") in query";
  EXPECT_STREQ(exception.what(), "DB Error 1062 (Duplicate entry) in query");
}

TEST(AException, ReturnsItselfFromEveryAppend) {
  AException exception("x");
  EXPECT_EQ(&(exception << "text"), &exception);
  EXPECT_EQ(&(exception << Str("text")), &exception);
  EXPECT_EQ(&(exception << 1), &exception);
  EXPECT_EQ(&(exception << 1U), &exception);
  EXPECT_EQ(&(exception << 1L), &exception);
  EXPECT_EQ(&(exception << 1UL), &exception);
}

TEST(AException, KeepsTheNumberWhenAppendedTo) {
  AException exception(102, "DB Error ");
  exception << 1062;
  EXPECT_EQ(exception.Number(), 102);
}

TEST(AException, GivesTheWholeMessageAsAStr) {
  AException exception("DB Error ");
  exception << 1062;
  EXPECT_EQ(exception.Message(), "DB Error 1062");
}

TEST(AException, GivesTheMessageAsACopy) {
  AException exception("DB Error ");
  Str const before = exception.Message();
  exception << 1062;
  EXPECT_EQ(before, "DB Error ");
}

TEST(AException, AppendsItsOwnText) {
  AException exception("again ");
  exception << exception.what();
  EXPECT_STREQ(exception.what(), "again again ");
}

TEST(AException, CopiesMessageAndNumber) {
  AException original(102, "DB Error ");
  original << 1062;
  AException const copy(original);
  EXPECT_STREQ(copy.what(), "DB Error 1062");
  EXPECT_EQ(copy.Number(), 102);
}

TEST(AException, LeavesTheOriginalAloneWhenACopyIsAppendedTo) {
  AException const original("DB Error ");
  AException copy(original);
  copy << 1062;
  EXPECT_STREQ(original.what(), "DB Error ");
}

TEST(AException, AssignsMessageAndNumber) {
  AException const original(102, "DB Error ");
  AException assigned(103, "Lost ");
  assigned = original;
  EXPECT_STREQ(assigned.what(), "DB Error ");
  EXPECT_EQ(assigned.Number(), 102);
}

TEST(AException, SurvivesSelfAssignment) {
  AException exception(102, "DB Error ");
  AException const& same = exception;
  exception = same;
  EXPECT_STREQ(exception.what(), "DB Error ");
}

TEST(AException, KeepsALongMessageWhole) {
  std::string const statement(100000, 'x');
  AException exception("DB Error ");
  exception << statement.c_str();
  EXPECT_EQ(exception.what(), "DB Error " + statement);
}

TEST(AException, IsCaughtByReferenceWithWhatWasAppended) {
  try {
    throw AException(102, "DB Error ") << 1062 << " in query";
  } catch (AException const& caught) {
    EXPECT_STREQ(caught.what(), "DB Error 1062 in query");
    EXPECT_EQ(caught.Number(), 102);
  }
}

TEST(AException, CanBeAppendedToWhereItIsCaught) {
  try {
    try {
      throw AException("DB Error ");
    } catch (AException& caught) {
      caught << "in query";
      throw;
    }
  } catch (AException const& caught) {
    EXPECT_STREQ(caught.what(), "DB Error in query");
  }
}

TEST(AException, IsCaughtAsAStandardException) {
  try {
    throw AException("DB Error ");
  } catch (std::exception const& caught) {
    EXPECT_STREQ(caught.what(), "DB Error ");
  }
}

TEST(AException, IsNotMadeFromATextByAccident) { EXPECT_FALSE((std::is_convertible<char const*, AException>::value)); }

TEST(AException, NumbersOfExecute) {
  EXPECT_EQ(static_cast<int>(corvane::kErrForeignKey), 100);
  EXPECT_EQ(static_cast<int>(corvane::kErrStatementRefused), 102);
  EXPECT_EQ(static_cast<int>(corvane::kErrConnectionLost), 103);
  EXPECT_EQ(static_cast<int>(corvane::kErrOutcomeUnknown), 104);
}

}  // namespace
