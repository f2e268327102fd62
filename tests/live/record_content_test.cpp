#include <string>
#include <vector>

#include "tests/support/live.h"

using corvane::test::Failure;
using corvane::test::FailureOf;
using corvane::test::LiveTest;
using corvane::test::Rows;
using corvane::test::Session;

// Texts, binary and spatial values and GUIDs whose content is delicate.

namespace {

struct Words : ASDomain {
  ASInt id;
  ASVStr text;
  ASAttribute idColumn{"id", "Id", 0, corvane::kKey};
  ASAttribute textColumn{"text"};

  explicit Words(unsigned capacity) : ASDomain("words", "Words"), text(capacity) {
    id = 1;
    Add(idColumn, id).Add(textColumn, text);
  }
  Words(Words const&) = delete;
  Words& operator=(Words const&) = delete;
};

class RecordText : public LiveTest {
 protected:
  void CreateTables() override { Run("CREATE TABLE words (id INT PRIMARY KEY, text LONGTEXT)"); }
};

TEST_F(RecordText, QuotesAndBackslashesAreStoredAsTheyStand) {
  Session session(With());
  Words words(40);
  words.text = "'single' \"double\" \\back\\ `tick` \\' %_";
  session.Insert(words);
  EXPECT_EQ(Stored("SELECT text FROM words"), "'single' \"double\" \\back\\ `tick` \\' %_");
}

TEST_F(RecordText, ControlCharactersAreStoredAsTheyStand) {
  Session session(With());
  Words words(40);
  words.text = "line\nfeed\rreturn\ttab\x1Asub\bback\x7F";
  session.Insert(words);
  EXPECT_EQ(Stored("SELECT text FROM words"), "line\nfeed\rreturn\ttab\x1Asub\bback\x7F");
}

TEST_F(RecordText, EndsAtItsFirstNul) {
  Session session(With());
  Words words(40);
  words.text = Str("before\0after", 12);
  session.Insert(words);
  EXPECT_EQ(Stored("SELECT text FROM words"), "before");
}

TEST_F(RecordText, EmptyIsNotNull) {
  Session session(With());
  Words words(40);
  words.text = "";
  session.Insert(words);
  EXPECT_EQ(Stored("SELECT text FROM words"), "");
}

TEST_F(RecordText, IsCutAtItsCapacity) {
  Session session(With());
  Words words(5);
  words.text = "abcdefg";
  session.Insert(words);
  EXPECT_EQ(Stored("SELECT text FROM words"), "abcde");
}

TEST_F(RecordText, FullOfQuotesIsStoredWhateverItsLength) {
  Session session(With());
  Words words(200000);
  words.text = std::string(200000, '\'');
  session.Insert(words);
  EXPECT_EQ(Stored("SELECT text FROM words"), std::string(200000, '\''));
}

TEST_F(RecordText, FullOfQuotesIsReadWhateverItsLength) {
  Run("INSERT INTO words VALUES (1, REPEAT('\\'', 200000))");
  Session session(With());
  Words words(200000);
  session.Select(words);
  EXPECT_EQ(words.text, std::string(200000, '\''));
}

TEST_F(RecordText, OfFixedWidthStoresItsPaddingInAVariableColumn) {
  Session session(With());
  ASDomain record("words", "Words");
  ASInt id;
  ASStr text(5);
  ASAttribute idColumn("id", "Id", 0, corvane::kKey);
  ASAttribute textColumn("text");
  record.Add(idColumn, id).Add(textColumn, text);
  id = 1;
  text = "ab";
  session.Insert(record);
  EXPECT_EQ(Stored("SELECT text FROM words"), "ab   ");
}

// Capacities are bytes: an accented letter takes two on a connection in UTF-8.
TEST_F(RecordText, FiveAccentedLettersAreCutInsideACharacterAtFiveBytes) {
  Run("INSERT INTO words VALUES (1, '\xC3\xA4\xC3\xB6\xC3\xBC\xC3\xA9\xC3\xA8')");
  Session session(With());
  Words words(5);
  session.Select(words);
  EXPECT_EQ(words.text, "\xC3\xA4\xC3\xB6\xC3");
}

TEST_F(RecordText, FiveAccentedLettersOfASingleByteColumnTakeTenBytes) {
  Run("ALTER TABLE words MODIFY text VARCHAR(5) CHARACTER SET latin1");
  Run("INSERT INTO words VALUES (1, '\xC3\xA4\xC3\xB6\xC3\xBC\xC3\xA9\xC3\xA8')");
  Session session(With());
  Words words(10);
  session.Select(words);
  EXPECT_EQ(words.text, "\xC3\xA4\xC3\xB6\xC3\xBC\xC3\xA9\xC3\xA8");
}

TEST_F(RecordText, AccentedLettersAreStoredAsTheyStand) {
  Session session(With());
  Words words(20);
  words.text = "\xC3\xA4\xC3\xB6\xC3\xBC \xE2\x82\xAC \xF0\x9F\x98\x80";
  session.Insert(words);
  EXPECT_EQ(Stored("SELECT HEX(text) FROM words"), "C3A4C3B6C3BC20E282AC20F09F9880");
}

TEST_F(RecordText, CutInsideACharacterIsRefusedByAStrictServer) {
  Session session(With());
  session.Execute("SET SESSION sql_mode='STRICT_ALL_TABLES'");
  Words words(5);
  words.text = "\xC3\xA4\xC3\xB6\xC3\xBC";
  EXPECT_EQ(FailureOf([&] { session.Insert(words); }).number, 102);
  EXPECT_EQ(Stored("SELECT COUNT(*) FROM words"), "0");
}

TEST_F(RecordText, CutInsideACharacterLosesThatCharacterOnAServerThatIsNotStrict) {
  Session session(With());
  session.Execute("SET SESSION sql_mode=''");
  Words words(5);
  words.text = "\xC3\xA4\xC3\xB6\xC3\xBC";
  session.Insert(words);
  EXPECT_EQ(Stored("SELECT text FROM words"), IsMariaDb() ? "\xC3\xA4\xC3\xB6?" : "\xC3\xA4\xC3\xB6");
}

struct Binary : ASDomain {
  ASInt id;
  ASRealBlob bytes{0};
  ASAttribute idColumn{"id", "Id", 0, corvane::kKey};
  ASAttribute bytesColumn{"bytes"};

  Binary() : ASDomain("binaries", "Binaries") {
    id = 1;
    Add(idColumn, id).Add(bytesColumn, bytes);
  }
  explicit Binary(std::string const& content) : Binary() {
    bytes = RealBlob(static_cast<unsigned>(content.size()), content.data());
  }
  Binary(Binary const&) = delete;
  Binary& operator=(Binary const&) = delete;

  std::string Content() const { return {static_cast<char const*>(bytes.voidptr()), bytes.Length()}; }
};

// All 256 bytes, three times.
std::string EveryByte() {
  std::string bytes;
  for (int i = 0; i < 3 * 256; ++i) bytes.push_back(static_cast<char>(i));
  return bytes;
}

std::string FiveMegabytes() {
  std::string bytes;
  while (bytes.size() < 5000000) bytes += EveryByte();
  return bytes;
}

class RecordBinary : public LiveTest {
 protected:
  void CreateTables() override { Run("CREATE TABLE binaries (id INT PRIMARY KEY, bytes LONGBLOB)"); }
};

TEST_F(RecordBinary, EveryByteIsStored) {
  Session session(With());
  Binary const record(EveryByte());
  session.Insert(record);
  EXPECT_EQ(Stored("SELECT bytes FROM binaries"), EveryByte());
}

TEST_F(RecordBinary, EveryByteIsRead) {
  Session session(With());
  Binary const written(EveryByte());
  session.Insert(written);
  Binary record;
  session.Select(record);
  EXPECT_EQ(record.Content(), EveryByte());
}

TEST_F(RecordBinary, EveryByteIsUpdated) {
  Run("INSERT INTO binaries VALUES (1, 'old')");
  Session session(With());
  Binary const record(EveryByte());
  session.Update(record);
  EXPECT_EQ(Stored("SELECT bytes FROM binaries"), EveryByte());
}

TEST_F(RecordBinary, FiveMegabytesAreStored) {
  Session session(With());
  Binary const record(FiveMegabytes());
  session.Insert(record);
  EXPECT_TRUE(Stored("SELECT bytes FROM binaries") == FiveMegabytes());
}

TEST_F(RecordBinary, FiveMegabytesAreRead) {
  Session session(With());
  Binary const written(FiveMegabytes());
  session.Insert(written);
  Binary record;
  session.Select(record);
  EXPECT_TRUE(record.Content() == FiveMegabytes());
}

TEST_F(RecordBinary, EmptyIsNotNull) {
  Session session(With());
  Binary const record{std::string()};
  session.Insert(record);
  EXPECT_EQ(Stored("SELECT bytes FROM binaries"), "");
}

TEST_F(RecordBinary, SmallOneIsWrittenAsTheWordBlob) {
  Run("INSERT INTO binaries VALUES (1, 'bytes')");
  Session session(With());
  ASDomain record("binaries", "Binaries");
  ASInt id;
  ASBlob bytes(10);
  ASAttribute idColumn("id", "Id", 0, corvane::kKey);
  ASAttribute bytesColumn("bytes");
  record.Add(idColumn, id).Add(bytesColumn, bytes);
  id = 1;
  session.Select(record);
  session.Update(record);
  EXPECT_EQ(Stored("SELECT bytes FROM binaries"), "BLOB");
}

struct Place : ASDomain {
  ASInt id;
  ASVStr name{20};
  ASGeometry shape{500};
  ASAttribute idColumn{"id", "Id", 0, corvane::kKey};
  ASAttribute nameColumn{"name"};
  ASAttribute shapeColumn{"shape"};

  Place() : ASDomain("place", "Place") {
    id = 1;
    Add(idColumn, id).Add(nameColumn, name).Add(shapeColumn, shape);
  }
  Place(Place const&) = delete;
  Place& operator=(Place const&) = delete;

  void SetShape(char type, std::vector<double> const& coordinates) {
    std::string bytes{'\x01', type, '\0', '\0', '\0'};
    bytes.append(reinterpret_cast<char const*>(coordinates.data()), coordinates.size() * sizeof(double));
    shape.Fill(bytes.data(), bytes.size());
  }
};

class RecordGeometry : public LiveTest {
 protected:
  void CreateTables() override { Run("CREATE TABLE place (id INT PRIMARY KEY, name VARCHAR(20), shape GEOMETRY)"); }
};

TEST_F(RecordGeometry, PointStoresNull) {
  Session session(With());
  Place place;
  place.SetShape(1, {1.5, -2.5});
  EXPECT_EQ(session.InsertQuery(place, 0),
            "INSERT INTO `place` (`id`, `name`, `shape`) VALUES ('1', NULL, GeomFromText('POINT((1.5 -2.5))'))");
  EXPECT_EQ(session.Insert(place), 1U);
  EXPECT_EQ(Stored("SELECT shape FROM place"), std::nullopt);
}

TEST_F(RecordGeometry, PointIsRefusedByAColumnThatIsNotNull) {
  Run("ALTER TABLE place MODIFY shape GEOMETRY NOT NULL");
  Session session(With());
  Place place;
  place.SetShape(1, {1.5, -2.5});
  EXPECT_EQ(
      FailureOf([&] { session.Insert(place); }),
      (Failure{102,
               "DB Error 1048 (Column 'shape' cannot be null) in query\n\b\n"
               "INSERT INTO `place` (`id`, `name`, `shape`) VALUES ('1', NULL, GeomFromText('POINT((1.5 -2.5))'))"}));
}

TEST_F(RecordGeometry, PointsOfARingAreStoredAsAPolygon) {
  Session session(With());
  Place place;
  place.SetShape(3, {0, 0, 4, 0, 4, 4.5, 0, 0});
  EXPECT_EQ(session.InsertQuery(place, 0),
            "INSERT INTO `place` (`id`, `name`, `shape`) "
            "VALUES ('1', NULL, GeomFromText('POLYGON((0 0,4 0,4 4.5,0 0))'))");
  session.Insert(place);
  EXPECT_EQ(Stored("SELECT ST_AsText(shape) FROM place"), "POLYGON((0 0,4 0,4 4.5,0 0))");
}

TEST_F(RecordGeometry, PolygonKeepsEveryDigitAndExponent) {
  Session session(With());
  Place place;
  place.SetShape(3, {0.1, 1e20, 0.30000000000000004, -1.5e-7, 3, 4, 0.1, 1e20});
  session.Insert(place);
  Place read;
  session.Select(read);
  EXPECT_EQ(session.InsertQuery(read, 0),
            "INSERT INTO `place` (`id`, `name`, `shape`) VALUES ('1', NULL, "
            "GeomFromText('POLYGON((0.1 1e+20,0.30000000000000004 -1.5e-07,3 4,0.1 1e+20))'))");
}

TEST_F(RecordGeometry, SelectReadsThroughAsBinary) {
  Run("INSERT INTO place VALUES (1, 'spot', ST_GeomFromText('POINT(1 2)'))");
  Session session(With());
  Place place;
  EXPECT_EQ(session.SelectQuery(place, 0),
            "SELECT `id`, `name`, AsBinary(shape) FROM `place` WHERE `id`='1' FOR UPDATE");
  session.Select(place);
  EXPECT_EQ(place.shape.size(), 21);
}

TEST_F(RecordGeometry, PolygonThatWasReadIsWrittenBackUnchanged) {
  Run("INSERT INTO place VALUES (1, 'old', ST_GeomFromText('POLYGON((0 0,4 0,4 4.5,0 0))'))");
  Session session(With());
  Place place;
  session.Select(place);
  place.name = "new";
  session.Update(place);
  EXPECT_EQ(StoredRows("SELECT name, ST_AsText(shape) FROM place"), (Rows{{"new", "POLYGON((0 0,4 0,4 4.5,0 0))"}}));
}

TEST_F(RecordGeometry, PolygonOfTwoRingsIsNeverWrittenBack) {
  Run("INSERT INTO place VALUES "
      "(1, 'old', ST_GeomFromText('POLYGON((0 0,9 0,9 9,0 9,0 0),(2 2,4 2,4 4,2 4,2 2))'))");
  Session session(With());
  Place place;
  session.Select(place);
  place.name = "new";
  EXPECT_THROW(session.Update(place), AException);
  EXPECT_EQ(StoredRows("SELECT name, ST_AsText(shape) FROM place"),
            (Rows{{"old", "POLYGON((0 0,9 0,9 9,0 9,0 0),(2 2,4 2,4 4,2 4,2 2))"}}));
}

struct Token : ASDomain {
  ASGuid id;
  ASVStr name{20};
  ASAttribute idColumn{"id", "Id", 0, corvane::kKey};
  ASAttribute nameColumn{"name"};

  Token() : ASDomain("token", "Token") { Add(idColumn, id).Add(nameColumn, name); }
  Token(Token const&) = delete;
  Token& operator=(Token const&) = delete;
};

class RecordGuid : public LiveTest {
 protected:
  void CreateTables() override { Run("CREATE TABLE token (id CHAR(36) PRIMARY KEY, name VARCHAR(20))"); }
};

TEST_F(RecordGuid, IsWrittenInLowerCaseWithDashes) {
  Session session(With());
  Token token;
  token.id = Guid("{6F9619FF8B86D011B42D00C04FC964FF}");
  EXPECT_EQ(session.InsertQuery(token, 0),
            "INSERT INTO `token` (`id`, `name`) VALUES ('6f9619ff-8b86-d011-b42d-00c04fc964ff', NULL)");
  session.Insert(token);
  EXPECT_EQ(Stored("SELECT id FROM token"), "6f9619ff-8b86-d011-b42d-00c04fc964ff");
}

TEST_F(RecordGuid, OfTwoHalvesIsWrittenInTextOrder) {
  Session session(With());
  Token token;
  token.id = Guid(0x0123456789ABCDEF, 0xFEDCBA9876543210);
  session.Insert(token);
  EXPECT_EQ(Stored("SELECT id FROM token"), "01234567-89ab-cdef-fedc-ba9876543210");
}

}  // namespace
