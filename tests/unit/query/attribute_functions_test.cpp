#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "corvane/corvane.h"
#include "tests/support/sql.h"

using corvane::test::Customers;
using corvane::test::Orders;

namespace {

class AttributeFunctions : public testing::Test {
 protected:
  std::string Text(ASAttribute const& column) const { return corvane::test::Sql(column, {{&o, "o"}, {&c, "c"}}); }

  Orders o;
  Customers c;
  ASAttribute& total = o.totalColumn;
  ASAttribute& note = o.noteColumn;
  ASAttribute free{"free"};
};

// A column of a text of 24 bytes with all flags but the mark of an outer join.
struct Secret : ASDomain {
  ASVStr value{24};
  ASAttribute column{"secret", "Secret", 7, corvane::kKey | corvane::kEncrypted | corvane::kAutoIncrement};

  Secret() : ASDomain("secrets", "Secrets") { Add(column, value); }
  Secret(Secret const&) = delete;
  Secret& operator=(Secret const&) = delete;
};

// ---- Derived columns ----

TEST_F(AttributeFunctions, AbsUpperAndLowerBeginWithABlank) {
  EXPECT_EQ(Text(total.Abs()), " ABS(o.total)");
  EXPECT_EQ(Text(note.Upper()), " UPPER(o.note)");
  EXPECT_EQ(Text(note.Lower()), " LOWER(o.note)");
}

TEST_F(AttributeFunctions, FunctionsOfAColumnWithoutRecord) {
  EXPECT_EQ(Text(free.Abs()), " ABS(free)");
  EXPECT_EQ(Text(free.Upper()), " UPPER(free)");
  EXPECT_EQ(Text(free.Lower()), " LOWER(free)");
  EXPECT_EQ(Text(free.InStr("x")), " INSTR(free, 'x')");
  EXPECT_EQ(Text(free.InStr(free)), " INSTR(free, RTRIM(free))");
}

TEST_F(AttributeFunctions, FunctionsNest) {
  EXPECT_EQ(Text(note.Lower().Upper()), " UPPER( LOWER(o.note))");
  EXPECT_EQ(Text(note.Upper().InStr("X").Abs()), " ABS( INSTR( UPPER(o.note), 'X'))");
}

TEST_F(AttributeFunctions, InStrOfATextOfEveryKind) {
  EXPECT_EQ(Text(note.InStr("x")), " INSTR(o.note, 'x')");
  EXPECT_EQ(Text(note.InStr(std::string("x"))), " INSTR(o.note, 'x')");
  EXPECT_EQ(Text(note.InStr(std::string_view("xyz", 1))), " INSTR(o.note, 'x')");
  EXPECT_EQ(Text(note.InStr(Str("x"))), " INSTR(o.note, 'x')");
  EXPECT_EQ(Text(note.InStr("")), " INSTR(o.note, '')");
}

TEST_F(AttributeFunctions, InStrEscapesItsText) {
  EXPECT_EQ(Text(note.InStr("'\"\\\n\r\x1A\xC3\xA9")), " INSTR(o.note, '\\'\\\"\\\\\\n\\r\\Z\xC3\xA9')");
  EXPECT_EQ(Text(note.InStr(std::string("a\0'", 3))), " INSTR(o.note, 'a\\0\\'')");
}

TEST_F(AttributeFunctions, InStrTakesLongTextsWhole) {
  std::string const plain(70001, 'x');
  EXPECT_TRUE(Text(note.InStr(plain.c_str())) == " INSTR(o.note, '" + plain + "')");
}

TEST_F(AttributeFunctions, InStrCountsANullPointerAsEmpty) {
  EXPECT_EQ(Text(note.InStr(static_cast<char const*>(nullptr))), " INSTR(o.note, '')");
}

TEST_F(AttributeFunctions, InStrOfAColumnTrimsItsPadding) {
  EXPECT_EQ(Text(note.InStr(c.nameColumn)), " INSTR(o.note, RTRIM(c.name))");
  EXPECT_EQ(Text(note.InStr(note)), " INSTR(o.note, RTRIM(o.note))");
  EXPECT_EQ(Text(note.InStr(c.nameColumn.Lower())), " INSTR(o.note, RTRIM( LOWER(c.name)))");
}

TEST_F(AttributeFunctions, DerivedColumnsHaveNeitherRecordNorValueNorFlags) {
  Secret s;
  for (ASAttribute const& derived : {s.column.Abs(), s.column.Upper(), s.column.Lower(), s.column.InStr("x"),
                                     s.column.InStr(std::string("x")), s.column.InStr(c.nameColumn)}) {
    EXPECT_EQ(derived.Domain(), nullptr) << derived.Name();
    EXPECT_EQ(derived.Data(), nullptr) << derived.Name();
    EXPECT_EQ(derived.CheckKey(-1), 0) << derived.Name();
    EXPECT_EQ(derived.Label(), "") << derived.Name();
    EXPECT_EQ(derived.ACType(), 0) << derived.Name();
    EXPECT_EQ(derived.CryptBuffer(), nullptr) << derived.Name();
  }
}

TEST_F(AttributeFunctions, DerivedColumnsOfMarkedOnesAreNotMarked) {
  ASAttribute const marked = ++note;
  EXPECT_EQ(marked.Upper().CheckKey(-1), 0);
  EXPECT_EQ(marked.InStr("x").CheckKey(-1), 0);
}

TEST_F(AttributeFunctions, TheNameOfADerivedColumnIsItsWholeText) {
  ASAttribute const derived = note.Upper();
  EXPECT_EQ(derived.Name(), derived.Query());
  EXPECT_EQ(corvane::test::Sql(derived.Name(), {{&o, "o"}}), " UPPER(o.note)");
}

// ---- The mark of an outer join ----

TEST_F(AttributeFunctions, AMarkedColumnIsACopyInEverythingElse) {
  Secret s;
  ASAttribute const marked = ++s.column;
  EXPECT_EQ(marked.Name(), "secret");
  EXPECT_EQ(marked.Label(), "Secret");
  EXPECT_EQ(marked.ACType(), 7);
  EXPECT_EQ(marked.Domain(), &s);
  EXPECT_EQ(marked.Data(), &s.value);
  EXPECT_EQ(marked.CheckKey(-1), 1 | 2 | 4 | 16);
  EXPECT_EQ(corvane::test::Sql(marked, {{&s, "s"}}), "s.secret");
}

TEST_F(AttributeFunctions, MarkingLeavesTheOriginalAsItWas) {
  Secret s;
  char const* const buffer = s.column.CryptBuffer();
  static_cast<void>(++s.column);
  EXPECT_EQ(s.column.CheckKey(-1), 1 | 2 | 16);
  EXPECT_EQ(s.column.CryptBuffer(), buffer);
}

TEST_F(AttributeFunctions, MarkingAnEncryptedColumnGivesTheCopyABufferOfItsOwn) {
  Secret s;
  ASAttribute const marked = ++s.column;
  ASAttribute const markedTwice = ++marked;
  ASSERT_NE(marked.CryptBuffer(), nullptr);
  ASSERT_NE(markedTwice.CryptBuffer(), nullptr);
  EXPECT_NE(marked.CryptBuffer(), s.column.CryptBuffer());
  EXPECT_NE(marked.CryptBuffer(), markedTwice.CryptBuffer());
  marked.CryptBuffer()[24] = 'x';
  markedTwice.CryptBuffer()[24] = 'x';
}

TEST_F(AttributeFunctions, MarkingTwiceIsMarkingOnce) {
  ASAttribute const marked = ++c.idColumn;
  EXPECT_EQ((++marked).CheckKey(-1), corvane::kKey | corvane::kOptionalSide);
}

TEST_F(AttributeFunctions, AColumnWithoutRecordAndValueCanBeMarked) {
  ASAttribute const marked = ++free;
  EXPECT_EQ(marked.Name(), "free");
  EXPECT_EQ(marked.CheckKey(-1), 4);
  EXPECT_EQ(marked.Domain(), nullptr);
  EXPECT_EQ(marked.Data(), nullptr);
}

TEST_F(AttributeFunctions, AMarkedColumnIsNoColumnOfTheRecord) {
  static_cast<void>(++c.idColumn);
  EXPECT_EQ(c.size(), 2u);
  EXPECT_EQ(c.front(), &c.idColumn);
}

TEST_F(AttributeFunctions, ConstColumnsHaveAllFunctions) {
  ASAttribute const& column = note;
  EXPECT_EQ(Text(column.Abs()), " ABS(o.note)");
  EXPECT_EQ(Text(column.InStr(column)), " INSTR(o.note, RTRIM(o.note))");
  EXPECT_EQ(Text(++column), "o.note");
}

}  // namespace
