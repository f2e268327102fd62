#include <clocale>
#include <cstring>
#include <string>

#include "tests/support/live.h"

using corvane::Literal;
using corvane::test::FetchedValue;
using corvane::test::LiveTest;
using corvane::test::Rows;
using corvane::test::Session;

namespace {

struct Measure : ASDomain {
  ASDouble key;
  ASDouble value;
  ASDCurrency price;
  ASInt number;
  ASInt64 big;
  ASTime at;
  ASAttribute keyColumn{"k", "Key", 0, corvane::kKey};
  ASAttribute valueColumn{"value"};
  ASAttribute priceColumn{"price"};
  ASAttribute numberColumn{"number"};
  ASAttribute bigColumn{"big"};
  ASAttribute atColumn{"at"};

  Measure() : ASDomain("measure", "Measure") {
    Add(keyColumn, key).Add(valueColumn, value).Add(priceColumn, price);
    Add(numberColumn, number).Add(bigColumn, big).Add(atColumn, at);
  }
  Measure(Measure const&) = delete;
  Measure& operator=(Measure const&) = delete;

  void Fill() {
    key = 1.5;
    value = 1234567.891;
    price = 0.01;
    number = 1234567;
    big = 12345678901;
    at = 1088689500;
  }
};

// Everything runs under German conventions: a comma before the fraction, points between thousands.
class Locale : public LiveTest {
 protected:
  void CreateTables() override {
    if (std::setlocale(LC_ALL, "de_DE.UTF-8") == nullptr) {
      GTEST_SKIP() << "the locale de_DE.UTF-8 is not installed; LOCPATH may name a folder with it";
    }
    ASSERT_STREQ(std::localeconv()->decimal_point, ",");
    Run("CREATE TABLE measure "
        "(k DOUBLE PRIMARY KEY, value DOUBLE, price DECIMAL(10,2), number INT, big BIGINT, at DATETIME)");
  }

  ~Locale() override { std::setlocale(LC_ALL, before_.c_str()); }

 private:
  std::string before_ = std::setlocale(LC_ALL, nullptr);
};

TEST_F(Locale, InsertTextIsTheSame) {
  Session session(With());
  Measure measure;
  measure.Fill();
  EXPECT_EQ(session.InsertQuery(measure, 0),
            "INSERT INTO `measure` (`k`, `value`, `price`, `number`, `big`, `at`) "
            "VALUES ('1.5', '1234567.891', '0.01', '1234567', '12345678901', '2004-07-01 13:45:00')");
}

TEST_F(Locale, InsertStoresTheSame) {
  Session session(With());
  Measure measure;
  measure.Fill();
  session.Insert(measure);
  EXPECT_EQ(StoredRows("SELECT * FROM measure"),
            (Rows{{"1.5", "1234567.891", "0.01", "1234567", "12345678901", "2004-07-01 13:45:00"}}));
}

TEST_F(Locale, SelectReadsTheSame) {
  Run("INSERT INTO measure VALUES (1.5, 1234567.891, 0.01, 1234567, 12345678901, '2004-07-01 13:45:00')");
  Session session(With());
  Measure measure;
  measure.key = 1.5;
  EXPECT_EQ(session.Select(measure), 1);
  EXPECT_EQ(static_cast<double>(measure.value), 1234567.891);
  EXPECT_EQ(static_cast<double>(measure.price), 0.01);
  EXPECT_EQ(static_cast<int>(measure.number), 1234567);
  EXPECT_EQ(static_cast<long>(measure.big), 12345678901);
  EXPECT_EQ(static_cast<int>(measure.at), 1088689500);
}

TEST_F(Locale, KeyWithAFractionFindsItsRow) {
  Run("INSERT INTO measure (k) VALUES (1.5), (1)");
  Session session(With());
  Measure measure;
  measure.key = 1.5;
  EXPECT_EQ(session.Delete(measure), 1U);
  EXPECT_EQ(StoredRows("SELECT k FROM measure"), (Rows{{"1"}}));
}

TEST_F(Locale, UpdateStoresTheSame) {
  Run("INSERT INTO measure (k) VALUES (1.5)");
  Session session(With());
  Measure measure;
  measure.Fill();
  session.Update(measure);
  EXPECT_EQ(StoredRows("SELECT value, price FROM measure"), (Rows{{"1234567.891", "0.01"}}));
}

TEST_F(Locale, LiteralIsTheSame) {
  Session session(With());
  EXPECT_EQ(Literal(Double(0.5)), "0.5");
  EXPECT_EQ(FetchedValue(session, ("SELECT " + Literal(Double(0.5)) + "+1").ToString()), "1.5");
}

TEST_F(Locale, PolygonIsStoredTheSame) {
  Run("CREATE TABLE place (id INT PRIMARY KEY, shape GEOMETRY)");
  Session session(With());
  ASDomain place("place", "Place");
  ASInt id;
  ASGeometry shape(200);
  ASAttribute idColumn("id", "Id", 0, corvane::kKey);
  ASAttribute shapeColumn("shape");
  place.Add(idColumn, id).Add(shapeColumn, shape);
  id = 1;
  double const ring[] = {0.5, 0, 4, 0, 4, 4.25, 0.5, 0};
  char bytes[5 + sizeof ring] = {1, 3, 0, 0, 0};
  std::memcpy(bytes + 5, ring, sizeof ring);
  shape.Fill(bytes, sizeof bytes);
  session.Insert(place);
  EXPECT_EQ(Stored("SELECT ST_AsText(shape) FROM place"), "POLYGON((0.5 0,4 0,4 4.25,0.5 0))");
}

}  // namespace
