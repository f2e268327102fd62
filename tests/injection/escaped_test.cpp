#include <gmock/gmock.h>

#include <algorithm>
#include <memory>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "tests/injection/canary.h"
#include "tests/injection/escaped_entries.h"
#include "tests/injection/hostile_texts.h"
#include "tests/support/tally.h"

using corvane::test::Canary;
using corvane::test::CanaryByName;
using corvane::test::CanaryOf;
using corvane::test::CanaryTest;
using corvane::test::EscapedEntries;
using corvane::test::EscapedEntry;
using corvane::test::Fetched;
using corvane::test::Field;
using corvane::test::HexLiteral;
using corvane::test::HostileTexts;
using corvane::test::kCapacity;
using corvane::test::Parameters;
using corvane::test::Row;
using corvane::test::Rows;
using corvane::test::Session;
using corvane::test::Shown;
using corvane::test::Tally;

namespace {

// What stands before and behind the literal in an entry's statement; the literal is found by a harmless text.
struct Shape {
  explicit Shape(EscapedEntry const& entry) {
    std::string const harmless = entry.statement("harmless");
    std::string const literal = "'" + entry.taken("harmless") + "'";
    std::size_t const at = harmless.find(literal);
    if (at == std::string::npos || harmless.find(literal, at + 1) != std::string::npos) {
      ADD_FAILURE() << entry.name << " writes its literal not once: " << harmless;
      return;
    }
    head = harmless.substr(0, at);
    tail = harmless.substr(at + literal.size());
  }

  // The literal in a statement of the same shape; empty for another shape.
  std::string LiteralIn(std::string const& statement) const {
    if (statement.size() < head.size() + tail.size() + 2 || statement.compare(0, head.size(), head) != 0 ||
        statement.compare(statement.size() - tail.size(), tail.size(), tail) != 0) {
      return "";
    }
    std::string literal = statement.substr(head.size(), statement.size() - head.size() - tail.size());
    return literal.front() == '\'' && literal.back() == '\'' ? literal : "";
  }

  std::string head;
  std::string tail;
};

// What the server made of a statement, which is taken back: its rows, how many it changed, or its error.
std::string Outcome(ASSession& session, std::string const& statement) {
  std::string outcome;
  try {
    if (statement.compare(0, 6, "SELECT") == 0 || statement.compare(0, 7, "(SELECT") == 0) {
      for (Row const& row : Fetched(session, statement)) {
        for (Field const& field : row) outcome += field.value_or("NULL") + "|";
        outcome += '\n';
      }
    } else {
      outcome = std::to_string(session.Execute(statement)) + " changed";
    }
  } catch (AException const& refused) {
    outcome = std::string(refused.what()).substr(0, 14);  // "DB Error 1062 "
  }
  session.Rollback();
  return outcome;
}

class EscapedTexts : public CanaryTest {};

TEST_F(EscapedTexts, AreOneLiteralInAStatementOfUnchangedShapeAndGiveTheBytesBack) {
  Session session(With());
  std::unordered_map<std::string, std::string> literals;
  std::uint64_t tried = 0;
  std::vector<EscapedEntry> const entries = EscapedEntries(session);
  for (EscapedEntry const& entry : entries) {
    Shape const shape(entry);
    for (std::string const& text : HostileTexts()) {
      std::string const literal = shape.LiteralIn(entry.statement(text));
      ASSERT_NE(literal, "") << entry.name << " has another shape with " << Shown(text);
      std::string bytes = entry.taken(text);
      auto const [known, isNew] = literals.try_emplace(literal, bytes);
      ASSERT_EQ(known->second, bytes) << entry.name << ": " << Shown(literal) << " stands for two texts";
      ++tried;
    }
  }
  EXPECT_GT(HostileTexts().size(), 5000U);
  Tally("hostile texts", "distinct", HostileTexts().size());
  Tally("entries that escape", "each with every hostile text", entries.size());
  Tally("hostile texts through entries that escape", "shape unchanged, one literal, the bytes", tried);
  ExpectUnderstood(literals, "SET NAMES utf8mb4");
  ExpectUnderstood(literals, "SET NAMES latin1");
  EXPECT_EQ(CanaryRows(), Untouched());
}

// The same statement with the literal's digits in its place does the same, and nothing else.
TEST_F(EscapedTexts, DoWhatTheSameStatementDoesWithTheBytesInHexadecimal) {
  Session session(WithTransactions());
  std::vector<EscapedEntry> const entries = EscapedEntries(session);
  std::vector<Shape> const shapes(entries.begin(), entries.end());
  std::size_t next = 0;
  for (std::string const& text : HostileTexts()) {
    std::size_t const i = next++ % entries.size();
    std::string const given = Outcome(session, entries[i].statement(text));
    std::string const meant = Outcome(session, shapes[i].head + HexLiteral(entries[i].taken(text)) + shapes[i].tail);
    ASSERT_EQ(given, meant) << entries[i].name << " with " << Shown(text);
  }
  Tally("hostile statements run", "same rows or error as in hexadecimal", HostileTexts().size());
  EXPECT_EQ(CanaryRows(), Untouched());
}

TEST_F(EscapedTexts, RecordsAreInsertedSelectedUpdatedAndDeleted) {
  Session session(WithTransactions());
  CanaryOf<ASRealBlob> row;
  CanaryByName<ASVStr> byName;
  for (std::string const& text : HostileTexts()) {
    row.id = 7;
    row.name = RealBlob(static_cast<unsigned>(text.size()), text.data());
    ASSERT_EQ(session.Insert(row), 1U) << Shown(text);
    row.name.SetNull();
    ASSERT_EQ(session.Select(row), 1);
    ASSERT_EQ(std::string(static_cast<char const*>(row.name.voidptr()), row.name.Length()), text);

    byName.name = Str(text);
    byName.id = 7;
    std::string const taken = std::string(text, 0, kCapacity).c_str();
    bool const isWhole = taken == text;
    byName.name = taken;
    ASSERT_EQ(session.Select(byName), isWhole ? 1 : 0) << Shown(text);
    byName.name = taken;
    byName.id = 8;
    ASSERT_EQ(session.Update(byName), isWhole ? 1U : 0U) << Shown(text);
    ASSERT_EQ(session.Delete(byName), isWhole ? 1U : 0U) << Shown(text);
    session.Rollback();
  }
  Tally("hostile records", "inserted, selected, updated, deleted; others untouched", HostileTexts().size());
  EXPECT_EQ(CanaryRows(), Untouched());
}

struct CanaryCache : ASCache {
  ASVStr name{kCapacity};
  ASInt id;
  ASAttribute nameColumn{"name", "Name", 0, corvane::kKey};
  ASAttribute idColumn{"id"};

  explicit CanaryCache(ASSession& session)
      : ASDomain("canary", "Canary"), ASSimpleCache(&session, 0), ASCache(&session, 0) {
    Add(nameColumn, name).Add(idColumn, id);
  }
  CanaryCache(CanaryCache const&) = delete;
  CanaryCache& operator=(CanaryCache const&) = delete;
};

TEST_F(EscapedTexts, CachesRememberAndWriteThem) {
  Session session(WithTransactions());
  std::uint64_t tried = 0;
  for (std::string const& text : HostileTexts()) {
    std::string const taken = std::string(text, 0, kCapacity).c_str();
    if (taken.empty()) continue;
    CanaryCache cache(session);
    auto const look = [&] {
      cache.name = taken;
      cache.Get(-1);
    };
    cache.name = taken;
    cache.id = 7;
    cache.Insert();
    cache.Clear();
    look();
    ASSERT_EQ(cache.id, 7) << Shown(text);
    ASSERT_EQ(cache.name, taken);
    cache.id = 8;
    cache.Put();
    cache.Clear();
    look();
    ASSERT_EQ(cache.id, 8) << Shown(text);
    cache.Delete();
    look();
    ASSERT_NE(cache.id.IsNull(), 0) << Shown(text);
    session.Rollback();
    ++tried;
  }
  Tally("hostile keys of caches", "inserted, read, put, deleted; others untouched", tried);
  EXPECT_EQ(CanaryRows(), Untouched());
}

// A text that is none gives a NULL GUID.
TEST_F(EscapedTexts, AsGuidsGiveHexadecimalDigitsAlone) {
  for (std::string const& text : HostileTexts()) {
    std::string const literal = corvane::Literal(Guid(text.c_str())).ToString();
    ASSERT_TRUE(literal.size() == 38 || literal == "''") << Shown(text);
    ASSERT_EQ(literal.find_first_not_of("'0123456789abcdef-"), std::string::npos) << Shown(text);
  }
  Tally("hostile texts as GUIDs", "hexadecimal digits and dashes, or nothing", HostileTexts().size());
}

}  // namespace
