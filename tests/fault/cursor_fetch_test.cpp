// Rows of a cursor: which one comes, into which values, and to whom the rows belong.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "corvane/cache/map_buffer.h"
#include "corvane/corvane.h"
#include "tests/support/scripted_cursor.h"
#include "tests/support/sql.h"

namespace corvane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// A cursor over "SELECT a FROM ", the rows 1, 2 and 3.
class CursorFetch : public ScriptedCursor {
 protected:
  void SetUp() override {
    ScriptedCursor::SetUp();
    cursor.AssignSession(session);
    cursor.Project() << a;
  }

  void AnswerThreeRows() { Answer(1, {{"1"}, {"2"}, {"3"}}); }

  Column<ASInt> a{"a"};
  ASCursor cursor{nullptr};
};

// ---- rows by number

TEST_F(CursorFetch, WalksAllRowsAndReturnsTheNumberOfTheNext) {
  AnswerThreeRows();
  EXPECT_EQ(cursor.Fetch(), 1);
  EXPECT_EQ(a.value, 1);
  EXPECT_EQ(cursor.Fetch(), 2);
  EXPECT_EQ(a.value, 2);
  EXPECT_EQ(cursor.Fetch(), 3);
  EXPECT_EQ(a.value, 3);
  EXPECT_EQ(cursor.Fetch(), 0);
  EXPECT_EQ(cursor.Fetch(), 0);
}

TEST_F(CursorFetch, BehindTheLastRowLeavesTheValues) {
  Answer(1, {{"1"}});
  cursor.Fetch();
  cursor.Fetch();
  EXPECT_EQ(a.value, 1);
}

TEST_F(CursorFetch, OfARowMakesTheOneBehindItTheCurrent) {
  AnswerThreeRows();
  EXPECT_EQ(cursor.Fetch(1), 2);
  EXPECT_EQ(a.value, 2);
  EXPECT_EQ(cursor.Fetch(), 3);
  EXPECT_EQ(a.value, 3);
  EXPECT_EQ(cursor.Fetch(0), 1);
  EXPECT_EQ(a.value, 1);
}

TEST_F(CursorFetch, OfARowThatIsNotThereReturnsZeroAndStaysThere) {
  AnswerThreeRows();
  a.value = 7;
  EXPECT_EQ(cursor.Fetch(3), 0);
  EXPECT_EQ(cursor.Fetch(), 0);
  EXPECT_EQ(cursor.Fetch(-1), 0);
  EXPECT_EQ(cursor.Fetch(), 0);
  EXPECT_EQ(cursor.Fetch(2147483647), 0);
  EXPECT_EQ(cursor.Fetch(-2147483647 - 1), 0);
  EXPECT_EQ(cursor.Fetch(), 0);
  EXPECT_EQ(a.value, 7);
}

TEST_F(CursorFetch, OfARowOutsideOpensTheCursorAllTheSame) {
  AnswerThreeRows();
  EXPECT_EQ(cursor.Fetch(-1), 0);
  EXPECT_THAT(Statements(), ElementsAre("SELECT a FROM "));
}

TEST_F(CursorFetch, KeepsItsCurrentRowThroughGetAmount) {
  AnswerThreeRows();
  cursor.Fetch();
  EXPECT_EQ(cursor.GetAmount(), 3);
  EXPECT_EQ(cursor.Fetch(), 2);
}

TEST_F(CursorFetch, AfterResetBeginsAtTheFirstRow) {
  AnswerThreeRows();
  cursor.Fetch(2);
  EXPECT_EQ(&cursor.Reset(), &cursor);
  EXPECT_EQ(cursor.Fetch(), 1);
  EXPECT_EQ(a.value, 1);
  EXPECT_THAT(Statements(), ElementsAre("SELECT a FROM "));
}

TEST_F(CursorFetch, AfterResetOfAClosedCursorBeginsAtTheFirstRow) {
  AnswerThreeRows();
  AnswerThreeRows();
  cursor.Fetch(1);
  delete cursor.Detach();
  cursor.Reset();
  EXPECT_EQ(cursor.Fetch(), 1);
}

TEST_F(CursorFetch, NeedsNoSessionOnceTheCursorIsOpen) {
  AnswerThreeRows();
  cursor.Open();
  cursor.AssignSession(nullptr);
  EXPECT_EQ(cursor.Fetch(1), 2);
  EXPECT_EQ(a.value, 2);
  EXPECT_EQ(cursor.GetAmount(), 3);
  EXPECT_EQ(cursor.Reset().Fetch(), 1);
}

TEST_F(CursorFetch, IsNotDisturbedByOtherStatements) {
  AnswerThreeRows();
  cursor.Fetch();
  session->Execute("DELETE FROM t");
  session->Disconnect();
  EXPECT_EQ(cursor.Fetch(), 2);
  EXPECT_EQ(a.value, 2);
}

// ---- a single row

TEST_F(CursorFetch, SingleReturns1AndLeavesThatRowAlone) {
  Answer(1, {{"1"}, {"2"}});
  EXPECT_EQ(cursor.FetchSingle(), 1);
  EXPECT_EQ(a.value, 1);
  EXPECT_EQ(cursor.GetAmount(), 1);
  EXPECT_EQ(cursor.Fetch(), 0);
  EXPECT_EQ(cursor.Fetch(1), 0);
  EXPECT_EQ(cursor.Fetch(0), 1);
}

TEST_F(CursorFetch, SingleWithoutARowReturnsZero) {
  Answer(1, {});
  a.value = 7;
  EXPECT_EQ(cursor.FetchSingle(), 0);
  EXPECT_EQ(cursor.GetAmount(), 0);
  EXPECT_EQ(a.value, 7);
  EXPECT_THAT(Statements(), ElementsAre("SELECT a FROM "));
}

TEST_F(CursorFetch, SingleAfterRowsReturnsTheNumberOfTheNextRow) {
  AnswerThreeRows();
  cursor.Fetch();
  EXPECT_EQ(cursor.FetchSingle(), 2);
  EXPECT_EQ(a.value, 2);
  EXPECT_EQ(cursor.GetAmount(), 2);
  EXPECT_EQ(cursor.Fetch(), 0);
}

TEST_F(CursorFetch, SingleAfterTheLastRowLeavesNone) {
  AnswerThreeRows();
  cursor.Fetch(2);
  EXPECT_EQ(cursor.FetchSingle(), 0);
  EXPECT_EQ(cursor.GetAmount(), 0);
  EXPECT_EQ(cursor.Fetch(0), 0);
}

TEST_F(CursorFetch, SingleWithoutSessionThrowsEvenWhenOpen) {
  AnswerThreeRows();
  cursor.Open();
  cursor.AssignSession(nullptr);
  EXPECT_EQ(ThrownBy([&] { cursor.FetchSingle(); }), (Thrown{0, "There is no session for cursor. "}));
  EXPECT_EQ(cursor.GetAmount(), 3);
}

TEST_F(CursorFetch, SingleFreesTheLargeBinariesOfAllRows) {
  Column<ASRealBlob> blob("b", 0U);
  Answer(2, {{"1", "x"}, {"2", "y"}, {"3", "z"}});
  cursor.Project() << blob;
  cursor.FetchSingle();
  EXPECT_EQ(Bytes(blob.value.voidptr(), 1), "x");
}

// ---- into a record

class CursorFetchRecord : public ScriptedCursor {
 protected:
  void SetUp() override {
    ScriptedCursor::SetUp();
    cursor.AssignSession(session);
  }

  std::string Sent() const { return Sql(Str(Statements().back()), {{&c, "c"}, {&y, "y"}}); }

  Customers c;
  Cities y;
  ASCursor cursor{nullptr};
};

TEST_F(CursorFetchRecord, SelectsItsColumnsAndFillsItsValues) {
  Answer(2, {{"1", "Ann"}, {"2", std::nullopt}});
  EXPECT_EQ(cursor.Fetch(c), 1);
  EXPECT_EQ(Sent(), "SELECT c.id, c.name FROM (`customers` c)");
  EXPECT_EQ(c.id, 1);
  EXPECT_EQ(c.name.getstr(), "Ann");
  EXPECT_EQ(cursor.Fetch(c), 2);
  EXPECT_EQ(c.id, 2);
  EXPECT_EQ(c.name.IsNull(), 1);
  EXPECT_EQ(cursor.Fetch(c), 0);
}

TEST_F(CursorFetchRecord, OfAnOpenCursorLooksAtNoOtherRecord) {
  Answer(2, {{"1", "Ann"}, {"2", "Bob"}});
  cursor.Fetch(c);
  EXPECT_EQ(cursor.Fetch(y), 2);
  EXPECT_EQ(c.id, 2);
  EXPECT_EQ(y.id.IsNull(), 1);
  EXPECT_EQ(Sql(cursor, {{&c, "c"}}), "SELECT c.id, c.name FROM (`customers` c)");
}

TEST_F(CursorFetchRecord, AppendsToTheColumnsThatAreThere) {
  Answer(3, {{"5", "1", "Ann"}});
  cursor.Project() << y.idColumn;
  cursor.Fetch(c);
  EXPECT_EQ(Sent(), "SELECT y.id, c.id, c.name FROM (`shop`.`cities` y, `customers` c)");
  EXPECT_EQ(y.id, 5);
  EXPECT_EQ(c.name.getstr(), "Ann");
}

TEST_F(CursorFetchRecord, OfAClosedCursorBeginsAtTheFirstRow) {
  Answer(2, {{"1", "Ann"}, {"2", "Bob"}});
  Answer(4, {{"3", "Cat", "3", "Cat"}, {"4", "Dan", "4", "Dan"}});
  cursor.Fetch(c);
  delete cursor.Detach();
  EXPECT_EQ(cursor.Fetch(c), 1);
  EXPECT_EQ(c.id, 3);
}

TEST_F(CursorFetchRecord, PassesOverNullEntriesOfItsList) {
  ASInt id;
  ASAttribute idColumn("id");
  ASDomain record("t", "");
  record.Add(idColumn, id);
  record.push_front(nullptr);
  record.push_back(nullptr);
  Answer(1, {{"5"}});
  EXPECT_EQ(cursor.Fetch(record), 1);
  EXPECT_EQ(id, 5);
  EXPECT_EQ(Sql(cursor, {{&record, "r"}}), "SELECT r.id FROM (`t` r)");
}

TEST_F(CursorFetchRecord, ThatFailsToOpenLeavesTheProjectionAsItWas) {
  cursor.Project() << y.idColumn;
  client.FailQuery(1146, "no table");
  EXPECT_EQ(ThrownBy([&] { cursor.Fetch(c); }).number, 102);
  EXPECT_EQ(Sql(cursor, {{&y, "y"}}), "SELECT y.id FROM (`shop`.`cities` y)");
  EXPECT_EQ(cursor.Project().Items().size(), 1U);
  EXPECT_EQ(cursor.Project().Domains().size(), 1U);
  Answer(3, {{"5", "1", "Ann"}});
  EXPECT_EQ(cursor.Fetch(c), 1);
  EXPECT_EQ(Sent(), "SELECT y.id, c.id, c.name FROM (`shop`.`cities` y, `customers` c)");
}

TEST_F(CursorFetchRecord, WithTooFewColumnsLeavesTheProjectionAsItWas) {
  Answer(1, {{"1"}});
  EXPECT_EQ(ThrownBy([&] { cursor.Fetch(c); }), (Thrown{0, "MySQL fetch error. "}));
  EXPECT_EQ(Sql(cursor, {}), "SELECT * FROM ");
  EXPECT_EQ(client.UnfreedResults(), 0U);
}

TEST_F(CursorFetchRecord, WithoutSessionLeavesTheProjectionAsItWas) {
  cursor.AssignSession(nullptr);
  EXPECT_EQ(ThrownBy([&] { cursor.Fetch(c); }), (Thrown{0, "There is no session for cursor. "}));
  EXPECT_THAT(cursor.Project().Items(), IsEmpty());
}

TEST_F(CursorFetchRecord, ThatFailsToOpenForgetsItsLargeBinaries) {
  ASRealBlob bytes(0);
  ASAttribute bytesColumn("b");
  ASDomain record("t", "");
  record.Add(bytesColumn, bytes);
  client.FailQuery(1146, "no table");
  EXPECT_EQ(ThrownBy([&] { cursor.Fetch(record); }).number, 102);
  EXPECT_THAT(cursor.Project().BinaryPositions(), IsEmpty());
}

// ---- the rows given away

TEST_F(CursorFetch, AfterDetachFindsTheCursorClosedAndRunsAgain) {
  AnswerThreeRows();
  Answer(1, {{"7"}});
  cursor.Open();
  std::unique_ptr<MapBuffer> const rows(cursor.Detach());
  EXPECT_NE(rows, nullptr);
  EXPECT_EQ(cursor.GetUURecord(0), nullptr);
  EXPECT_EQ(cursor.Fetch(), 1);
  EXPECT_EQ(a.value, 7);
  EXPECT_EQ(cursor.GetAmount(), 1);
  EXPECT_THAT(Statements(), ElementsAre("SELECT a FROM ", "SELECT a FROM "));
}

TEST_F(CursorFetch, AfterDetachGoesOnFromTheCurrentRow) {
  AnswerThreeRows();
  AnswerThreeRows();
  cursor.Fetch();
  delete cursor.Detach();
  EXPECT_EQ(cursor.Fetch(), 2);
  EXPECT_EQ(a.value, 2);
}

TEST_F(CursorFetch, DetachOfAClosedCursorGivesNothing) {
  EXPECT_EQ(cursor.Detach(), nullptr);
  AnswerThreeRows();
  cursor.Open();
  delete cursor.Detach();
  EXPECT_EQ(cursor.Detach(), nullptr);
}

TEST_F(CursorFetch, DetachedRowsOutliveTheCursor) {
  Column<ASVStr> text("s", 4U);
  Column<ASRealBlob> large("r", 0U);
  Column<ASBlob> small("b", std::uint16_t{4});
  Answer(4, {{"1", "ab", "xyz", "qr"}, {"2", "cd", "uvw", "st"}});
  std::unique_ptr<MapBuffer> rows;
  {
    ASCursor other(session);
    other.Project() << a << text << large << small;
    other.Open();
    rows.reset(other.Detach());
  }
  auto const* const second = static_cast<UU const*>(rows->GetBegin()) + 5;  // 4 cells and 5 bytes a row
  EXPECT_EQ(static_cast<int>(second[0]), 2);
  EXPECT_STREQ(second[1].extra.text, "cd");
  EXPECT_EQ(Bytes(second[2].value.blob->voidptr(), 3), "uvw");
  EXPECT_EQ(Bytes(second[3].extra.bytes, 2), "st");
}

TEST_F(CursorFetch, DetachedRowsAreNoOthersWhenTheCursorRunsAgain) {
  Answer(1, {{"1"}});
  Answer(1, {{"2"}});
  cursor.Open();
  std::unique_ptr<MapBuffer> const rows(cursor.Detach());
  cursor.Open();
  EXPECT_EQ(static_cast<int>(*static_cast<UU const*>(rows->GetBegin())), 1);
  EXPECT_EQ(static_cast<int>(*cursor.GetUURecord(0)), 2);
}

// ---- values that are bound meanwhile

TEST_F(CursorFetch, FollowsAColumnToAnotherValueOfItsType) {
  AnswerThreeRows();
  cursor.Fetch();
  ASInt other;
  a.Register(&other, nullptr);
  cursor.Fetch();
  EXPECT_EQ(other, 2);
  EXPECT_EQ(a.value, 1);
  a.Register(&a.value, nullptr);
  cursor.Fetch();
  EXPECT_EQ(other, 2);
  EXPECT_EQ(a.value, 3);
}

TEST_F(CursorFetch, LeavesAColumnWithAValueOfAnotherTypeOut) {
  AnswerThreeRows();
  cursor.Fetch();
  ASVStr text(4);
  ASDouble real;
  ASTime time;
  ASInt64 large;
  a.Register(&text, nullptr);
  EXPECT_EQ(cursor.Fetch(1), 2);
  a.Register(&real, nullptr);
  EXPECT_EQ(cursor.Fetch(1), 2);
  a.Register(&time, nullptr);
  EXPECT_EQ(cursor.Fetch(1), 2);
  a.Register(&large, nullptr);
  EXPECT_EQ(cursor.Fetch(1), 2);
  EXPECT_EQ(text.IsNull(), 1);
  EXPECT_EQ(real.IsNull(), 1);
  EXPECT_EQ(time.IsNull(), 1);
  EXPECT_EQ(large.IsNull(), 1);
  EXPECT_EQ(a.value, 1);
}

TEST_F(CursorFetch, LeavesAColumnWithAValueOfAFalseTypeOut) {
  AnswerThreeRows();
  cursor.Fetch();
  Called<ASInt64, kTypeInt, kDbInt> other;
  a.Register(&other, nullptr);
  EXPECT_EQ(cursor.Fetch(), 2);
  EXPECT_EQ(other.IsNull(), 1);
}

TEST_F(CursorFetch, LeavesAColumnWithoutValueOut) {
  AnswerThreeRows();
  cursor.Fetch();
  a.Register(nullptr, nullptr);
  EXPECT_EQ(cursor.Fetch(), 2);
  EXPECT_EQ(a.value, 1);
}

TEST_F(CursorFetch, LeavesAColumnThatHadNoValueWhenItOpenedOut) {
  AnswerThreeRows();
  a.Register(nullptr, nullptr);
  cursor.Open();
  a.Register(&a.value, nullptr);
  EXPECT_EQ(cursor.Fetch(), 1);
  EXPECT_EQ(a.value.IsNull(), 1);
}

TEST_F(CursorFetch, ReadsATextIntoAValueOfAnotherCapacity) {
  Column<ASVStr> text("s", 5U);
  Answer(2, {{"1", "abcde"}});
  cursor.Project() << text;
  cursor.Open();
  ASVStr shorter(2);
  text.Register(&shorter, nullptr);
  cursor.Fetch(0);
  EXPECT_EQ(shorter.getstr(), "ab");
  ASVStr longer(9);
  text.Register(&longer, nullptr);
  cursor.Fetch(0);
  EXPECT_EQ(longer.getstr(), "abcde");
}

TEST_F(CursorFetch, LeavesASmallBinaryOutThatBecameAGeometry) {
  Column<ASBlob> small("b", std::uint16_t{4});
  Answer(2, {{"1", "ab"}});
  cursor.Project() << small;
  cursor.Open();
  ASGeometry shape(4);
  small.Register(&shape, nullptr);
  EXPECT_EQ(cursor.Fetch(), 1);
  EXPECT_EQ(shape.IsNull(), 1);
}

// ---- a projection that changes meanwhile

TEST_F(CursorFetch, DoesNotReadColumnsThatAreProjectedLater) {
  AnswerThreeRows();
  cursor.Open();
  Column<ASVStr> late("b", 8U);
  Column<ASRealBlob> large("c", 0U);
  cursor.Project() << late << large;
  EXPECT_EQ(cursor.Fetch(2), 3);
  EXPECT_EQ(a.value, 3);
  EXPECT_EQ(late.value.IsNull(), 1);
  EXPECT_EQ(large.value.IsNull(), 1);
}

TEST_F(CursorFetch, GoesOnAfterTheProjectionWasCleared) {
  Column<ASRealBlob> large("b", 0U);
  Answer(2, {{"1", "x"}, {"2", "y"}});
  cursor.Project() << large;
  cursor.Fetch();
  cursor.Project().Clear();
  EXPECT_EQ(cursor.Fetch(), 2);
  EXPECT_EQ(a.value, 2);
  EXPECT_EQ(Bytes(large.value.voidptr(), 1), "y");
}

TEST_F(CursorFetch, GoesOnAfterTheProjectionWasAssigned) {
  Column<ASRealBlob> large("b", 0U);
  Answer(2, {{"1", "x"}, {"2", "y"}});
  cursor.Project() << large;
  cursor.Fetch();
  Column<ASVStr> other("c", 4U);
  ASFilter filter;
  filter.Project() << other;
  cursor = filter;
  EXPECT_EQ(cursor.Fetch(), 2);
  EXPECT_EQ(a.value, 2);
  EXPECT_EQ(Bytes(large.value.voidptr(), 1), "y");
  EXPECT_EQ(other.value.IsNull(), 1);
}

TEST_F(CursorFetch, ReadsTheNewColumnsAfterRunningAgain) {
  Answer(1, {{"1"}});
  Answer(1, {{"x"}});
  cursor.Open();
  delete cursor.Detach();
  Column<ASVStr> other("c", 4U);
  cursor.Project().Clear();
  cursor.Project() << other;
  EXPECT_EQ(cursor.Fetch(), 1);
  EXPECT_EQ(other.value.getstr(), "x");
  EXPECT_THAT(Statements(), ElementsAre("SELECT a FROM ", "SELECT c FROM "));
}

// ---- temporary columns and aggregates

TEST_F(CursorFetch, PassesOverATemporaryColumnWithoutValue) {
  Column<ASVStr> text("s", 4U);
  Answer(3, {{"1", "AB", "ab"}});
  cursor.Project() << text.Upper() << text;
  cursor.Fetch();
  EXPECT_EQ(a.value, 1);
  EXPECT_EQ(text.value.getstr(), "ab");
  EXPECT_THAT(Statements(), ElementsAre("SELECT a,  UPPER(s), s FROM "));
}

TEST_F(CursorFetch, ReadsATemporaryExpressionIntoItsColumnsValue) {
  Column<ASInt> b("b");
  Answer(2, {{"1", "5"}, {"2", "6"}});
  cursor.Project() << b.Expression("b+1");
  cursor.Fetch();
  cursor.Project().Clear();
  cursor.Fetch();
  EXPECT_EQ(b.value, 6);
}

TEST_F(CursorFetch, OfTwoAggregatesOfOneColumnKeepsTheLast) {
  std::unique_ptr<ASGroupAttribute> const smallest(a.Min());
  std::unique_ptr<ASGroupAttribute> const largest(a.Max());
  Answer(2, {{"1", "9"}});
  ASCursor both(session);
  both.Project() << *smallest << *largest;
  both.Fetch();
  EXPECT_EQ(a.value, 9);
  EXPECT_THAT(Statements(), ElementsAre("SELECT MIN(a), MAX(a) FROM "));
}

TEST_F(CursorFetch, ReadsAnAggregateIntoTheValueThatItWasGiven) {
  std::unique_ptr<ASGroupAttribute> const smallest(a.Min());
  std::unique_ptr<ASGroupAttribute> const mean(a.Average());
  ASDouble average;
  mean->Register(&average, nullptr);
  Answer(2, {{"1", "2.5"}});
  ASCursor both(session);
  both.Project() << *smallest << *mean;
  both.Fetch();
  EXPECT_EQ(a.value, 1);
  EXPECT_EQ(average, 2.5);
}

TEST_F(CursorFetch, CutsAnAggregateAtTheCapacityOfItsColumnsValue) {
  Column<ASVStr> letter("s", 1U);
  std::unique_ptr<ASGroupAttribute> const count(letter.Count());
  Answer(2, {{"123", "7"}});
  ASCursor both(session);
  both.Project() << *count << a;
  both.Fetch();
  EXPECT_EQ(letter.value.getstr(), "1");
  EXPECT_EQ(a.value, 7);
}

// ---- values from row to row

TEST_F(CursorFetch, GoesBetweenNullAndNotNull) {
  Column<ASInt64> large("l");
  Column<ASDouble> real("d");
  Column<ASVStr> text("s", 4U);
  Column<ASGuid> guid("g");
  Column<ASRealBlob> blob("r", 0U);
  Column<ASTime> time("t");
  Row const present{"0", "0", "0", "", "00000000-0000-0000-0000-000000000000", "", "1970-01-01 00:00:00"};
  Answer(7, {present, Row(7, std::nullopt), present});
  cursor.Project() << large << real << text << guid << blob << time;
  ASData const* const values[] = {&a.value,    &large.value, &real.value, &text.value,
                                  &guid.value, &blob.value,  &time.value};
  cursor.Fetch();
  for (ASData const* const value : values) EXPECT_EQ(value->IsNull(), 0) << value->GetName().str();
  cursor.Fetch();
  for (ASData const* const value : values) EXPECT_EQ(value->IsNull(), 1) << value->GetName().str();
  cursor.Fetch();
  for (ASData const* const value : values) EXPECT_EQ(value->IsNull(), 0) << value->GetName().str();
}

TEST_F(CursorFetch, OfTheSameRowGivesTheSameLargeBinaryAgain) {
  Column<ASRealBlob> blob("b", 0U);
  Answer(2, {{"1", "xyz"}});
  cursor.Project() << blob;
  cursor.Fetch(0);
  blob.value.SetNull();
  cursor.Fetch(0);
  EXPECT_EQ(Bytes(blob.value.voidptr(), blob.value.Length()), "xyz");
}

TEST_F(CursorFetch, GivesTheValueALargeBinaryOfItsOwn) {
  Column<ASRealBlob> blob("b", 0U);
  Answer(2, {{"1", "xyz"}});
  {
    ASCursor other(session);
    other.Project() << a << blob;
    other.Fetch();
    EXPECT_NE(blob.value.voidptr(), other.GetUURecord(0)[1].value.blob->voidptr());
  }
  EXPECT_EQ(Bytes(blob.value.voidptr(), blob.value.Length()), "xyz");
}

TEST_F(CursorFetch, IntoAValueThatStandsTwiceKeepsTheLast) {
  Answer(2, {{"1", "2"}});
  cursor.Project() << a;
  cursor.Fetch();
  EXPECT_EQ(a.value, 2);
}

// ---- records that a cursor owns

class Owned : public ASDomain {
 public:
  explicit Owned(int& deleted) : ASDomain("t", ""), deleted_(deleted) {}
  Owned(Owned const&) = delete;
  Owned& operator=(Owned const&) = delete;
  ~Owned() override { ++deleted_; }

 private:
  int& deleted_;
};

class OwningCursor : public ASCursor {
 public:
  using ASCursor::ASCursor;
  using ASCursor::SetRecord;
};

TEST_F(CursorFetch, ARecordThatTheCursorOwnsGoesWithIt) {
  int deleted = 0;
  {
    OwningCursor owner(session);
    owner.SetRecord(new Owned(deleted));
    EXPECT_EQ(deleted, 0);
    owner.SetRecord(new Owned(deleted));
    EXPECT_EQ(deleted, 1);
  }
  EXPECT_EQ(deleted, 2);
}

}  // namespace
}  // namespace corvane::test
