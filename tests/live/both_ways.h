#ifndef CORVANE_TESTS_LIVE_BOTH_WAYS_H
#define CORVANE_TESTS_LIVE_BOTH_WAYS_H

#include <future>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/live.h"

// A cursor reads the result of its own query straight from the connection. What these tests stand on has the client
// library store that result first, so that the same query of the same cursor can be read both ways.
namespace corvane::test {

enum class Way {
  kUnstored,   // the cursor's own query, as it is
  kStored,     // the same, the result being stored by the client library before the cursor sees it
  kStatement,  // the query's text given to Statement(), whose result is always stored
};
std::string NameOf(::testing::TestParamInfo<Way> const& info);

/// While it lives, results that the library asks for unstored are taken in the way given.
class Taking {
 public:
  explicit Taking(Way way);
  Taking(Taking const&) = delete;
  Taking& operator=(Taking const&) = delete;
  ~Taking();

  /// How many results have been asked for unstored, and how many rows the last one announced: 0 unless it was stored.
  static int Results();
  static unsigned long long AnnouncedRows();
  /// How many rows the client library has given of it.
  static int GivenRows();
};

/// A cursor whose query is a given text.
class TextCursor : public ASCursor {
 public:
  TextCursor(ASSession& session, Way way, std::string const& text)
      : ASCursor(&session), way_(way), text_(text.c_str()) {}
  TextCursor(TextCursor const&) = delete;
  TextCursor& operator=(TextCursor const&) = delete;

  Str Query() const override { return way_ == Way::kStatement ? ASCursor::Query() : text_; }
  /// Opens with the text.
  void Run() {
    if (way_ == Way::kStatement) {
      Statement(text_);
    } else {
      Open();
    }
  }
  bool IsClosed() { return GetUURecord(0) == nullptr; }

 private:
  Way way_;
  Str text_;
};

/// What a value holds: its bytes, or its text.
Field FieldOf(ASData const& value);
/// The rows of a cursor from the current one on.
Rows RowsOf(ASCursor& cursor);
/// The cells and areas of an open cursor's rows, byte by byte; for pointers into a row their distance from its
/// beginning, and what other pointers point to behind the row.
std::vector<std::string> ImagesOf(ASCursor& cursor);

/// The fixture of tests with a table `n` of the numbers from 1 to 5,000.
class NumbersTest : public LiveTest {
 protected:
  static constexpr int kNumbers = 5000;

  void CreateTables() override;
};

/// That of tests that run in each way.
class BothWays : public NumbersTest, public ::testing::WithParamInterface<Way> {
 protected:
  /// With the text `text` as its query, read in the test's way.
  std::unique_ptr<TextCursor> Cursor(ASSession& session, std::string const& text) const {
    return std::make_unique<TextCursor>(session, GetParam(), text);
  }
  /// Does in the background, once the connection sleeps in its statement, what `statement` says.
  std::future<void> OnceAsleep(std::string const& connectionId, std::string const& statement) const;

 private:
  Taking const taking_{GetParam()};
};

}  // namespace corvane::test

#endif
