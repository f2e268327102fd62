#ifndef CORVANE_TESTS_SUPPORT_SCRIPTED_CLIENT_H
#define CORVANE_TESTS_SUPPORT_SCRIPTED_CLIENT_H

#include <mysql.h>

#include <cstdint>
#include <deque>
#include <list>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace corvane::test {

/// A field of a result row: its bytes, or NULL.
using Field = std::optional<std::string>;
using Row = std::vector<Field>;

/// How a result describes one of its columns.
struct FieldDescription {
  std::string name = "f1";
  enum_field_types type = MYSQL_TYPE_VAR_STRING;
  unsigned long length = 255;
};

/// Stands in for the client library and for sleep(): scripted_client.cpp defines these functions in the test program,
/// where they take precedence over those of the shared libraries. mysql_escape_string and the library's initialisation
/// stay real.
///
/// Without a script everything succeeds and no statement has a result. As with the real library, a handle that was
/// never connected answers 2006, and a result that was not taken makes the handle's next statements fail with 2014, as
/// do further results of a statement until they have been gone to, and taken, one by one, and a result of
/// mysql_use_result() until its end was read or it was freed, which reads the rest. Such a result counts the rows that
/// were read so far, knows no `max_length`, and has no more rows once its handle is closed.
/// Whatever the real library does not survive (a null or closed handle, an unknown result) ends the program with a
/// message. May be used from several threads.
class ScriptedClient {
 public:
  static ScriptedClient& Get();

  /// A step of the script holds for the next call, unless told otherwise. After() counts calls that Matching() admits.
  template <class Kind>
  class Step {
   public:
    /// Lets `calls` calls pass first.
    Kind& After(unsigned calls) { return after_ = calls, static_cast<Kind&>(*this); }
    /// Holds for `calls` calls.
    Kind& Times(unsigned calls) { return times_ = calls, static_cast<Kind&>(*this); }
    /// Only statements, or connections ("host user password database port"), that contain the text.
    Kind& Matching(std::string text) { return matching_ = std::move(text), static_cast<Kind&>(*this); }

   private:
    friend class ScriptedClient;
    std::string matching_;
    unsigned after_ = 0;
    unsigned times_ = 1;
  };

  class Failure : public Step<Failure> {
    friend class ScriptedClient;
    unsigned number_ = 0;
    std::string text_;
  };

  class Answer : public Step<Answer> {
   public:
    /// What the handle then says of the statement; by default what SetAffectedRows() and SetInsertId() gave.
    Answer& AffectedRows(std::uint64_t rows) { return affectedRows_ = rows, *this; }
    Answer& InsertId(std::uint64_t id) { return insertId_ = id, *this; }
    /// The columns, of which there must be as many as the result has. By default they are "f1", "f2" and so on, of type
    /// MYSQL_TYPE_VAR_STRING and declared length 255. `max_length` is that of the rows of a stored result.
    Answer& Fields(std::vector<FieldDescription> fields);
    /// What mysql_num_rows() says of the stored result, whatever rows there are.
    Answer& AnnouncedRows(std::uint64_t rows) { return announcedRows_ = rows, *this; }
    /// A further result of the same statement, as CALL gives; without arguments the end of a CALL, which has no result
    /// to be taken but is gone to like one.
    Answer& Then(unsigned columns, std::vector<Row> rows);
    Answer& Then();

   private:
    friend class ScriptedClient;
    struct Further {
      std::optional<unsigned> columns;
      std::vector<Row> rows;
    };
    std::optional<unsigned> columns_;
    std::vector<Row> rows_;
    std::vector<FieldDescription> fields_;
    std::optional<std::uint64_t> announcedRows_;
    std::deque<Further> further_;
    std::optional<std::uint64_t> affectedRows_;
    std::optional<std::uint64_t> insertId_;
  };

  /// Forgets the script, the calls, the handles and the results. The memory of handles that are open is left to those
  /// who opened them.
  void Reset();

  /// Failures; a step's reference is valid until Reset(). mysql_init gives null; the others leave number and text in
  /// the handle, which stays usable.
  Failure& FailInit();
  Failure& FailConnect(unsigned number, std::string text);
  Failure& FailQuery(unsigned number, std::string text);
  Failure& FailStoreResult(unsigned number, std::string text);
  /// The result stays untaken, as in the real library, which has no memory then: the next statement fails with 2014,
  /// unless the result is taken after all.
  Failure& FailUseResult(unsigned number, std::string text);
  /// Of a result that mysql_use_result gave: a row, counted by After(), does not come, nor does any behind it. The end
  /// counts as a row. With 2006 and 2013 the connection has gone: the handle's next statements fail with 2006.
  Failure& FailFetchRow(unsigned number, std::string text);
  /// Only calls that would go to a further result.
  Failure& FailNextResult(unsigned number, std::string text);

  /// The result of a statement that does not fail: rows of `columns` fields each, binary safe.
  Answer& AnswerQuery(unsigned columns, std::vector<Row> rows);
  /// A statement that does not fail and has no result.
  Answer& AnswerQuery();

  /// Whether connections opened from now on use TLS; they do not after Reset().
  void SetEncrypted(bool encrypted);

  /// For statements without an answer of their own; 0 after Reset().
  void SetAffectedRows(std::uint64_t rows);
  void SetInsertId(std::uint64_t id);

  /// What was called, in order: "init", "option read_timeout 5", "connect host user password database port" (each ''
  /// when empty; " socket" and its path behind, where one is given), "query SET
  /// AUTOCOMMIT=0", "store_result", "use_result", "next_result", "free_result", "close", "sleep 1".
  std::vector<std::string> Calls() const;
  /// The same with the number of the handle, counted from 1 in the order of "init": "1 init", "2 connect h u p d 0",
  /// "1 query COMMIT", "1 store_result", "1 close". A result goes by the handle that it came from.
  std::vector<std::string> CallsByHandle() const;
  void ForgetCalls();

  /// Handles not closed, results not freed.
  std::size_t OpenHandles() const;
  std::size_t UnfreedResults() const;
  /// Calls that the script still holds something for: a test that leaves any did not do what it says.
  unsigned UnusedSteps() const;
  /// Whether any open, connected handle would let the client library reconnect by itself, as all do after connecting.
  bool AnyHandleReconnectsByItself() const;

  // What the functions of the client library do.
  MYSQL* Init();
  bool Connect(MYSQL* handle, char const* host, char const* user, char const* password, char const* database,
               unsigned port, char const* socket);
  void SetOption(MYSQL* handle, mysql_option option, void const* value);
  bool IsEncrypted(MYSQL* handle) const;
  void Close(MYSQL* handle);
  bool Query(MYSQL* handle, char const* statement);
  MYSQL_RES* StoreResult(MYSQL* handle);
  MYSQL_RES* UseResult(MYSQL* handle);
  /// 0: at the next result; -1: there is none; 1: an error.
  int NextResult(MYSQL* handle);
  MYSQL_ROW FetchRow(MYSQL_RES* result);
  unsigned long* FetchLengths(MYSQL_RES* result);
  MYSQL_FIELD* FetchFields(MYSQL_RES* result);
  unsigned NumFields(MYSQL_RES* result) const;
  std::uint64_t NumRows(MYSQL_RES* result) const;
  void FreeResult(MYSQL_RES* result);
  std::uint64_t AffectedRows(MYSQL* handle) const;
  std::uint64_t InsertId(MYSQL* handle) const;
  unsigned ErrorNumber(MYSQL* handle) const;
  char const* ErrorText(MYSQL* handle) const;
  void Sleep(unsigned seconds);

 private:
  struct Result {
    unsigned handle = 0;
    unsigned columns = 0;
    std::vector<Row> rows;
    std::size_t next = 0;
    std::vector<char*> fields;  // of the current row
    std::vector<unsigned long> lengths;
    std::uint64_t announcedRows = 0;
    bool stored = true;
    MYSQL* unstoredOf = nullptr;  // the handle whose statements have to wait for the end of this result
    std::vector<FieldDescription> described;
    std::vector<MYSQL_FIELD> descriptions;  // made when first asked for
  };

  struct Handle {
    unsigned number = 0;
    bool connected = false;
    bool encrypted = false;
    bool outOfStep = false;  // a statement was sent before the result of the last one was taken
    std::unique_ptr<Result> pending;
    MYSQL_RES* reading = nullptr;         // an unstored result that has not come to its end
    std::deque<Answer::Further> further;  // results of the last statement that were not gone to
    std::uint64_t affectedRows = 0;
    std::uint64_t insertId = 0;
    unsigned errorNumber = 0;
    std::string errorText;
  };

  Failure& AddFailure(std::list<Failure>& failures, unsigned number, std::string text);
  Handle& Known(MYSQL* handle, char const* function);
  Handle const& Known(MYSQL* handle, char const* function) const;
  Result& Known(MYSQL_RES* result, char const* function);
  Result const& Known(MYSQL_RES* result, char const* function) const;
  void Record(unsigned handle, std::string const& call);
  template <class Kind>
  static Kind* Find(std::list<Kind>& steps, std::string const& text);
  static std::unique_ptr<Result> MakeResult(Handle const& handle, unsigned columns, std::vector<Row> rows);
  static bool IsBusy(Handle const& handle) { return handle.reading != nullptr || handle.outOfStep; }
  MYSQL_RES* Take(Handle& handle);
  bool Advance(Result& result);
  void EndReading(Result& result);
  static bool Fail(Handle& handle, unsigned number, std::string const& text);

  mutable std::mutex mutex_;
  std::list<Failure> initFailures_;
  std::list<Failure> connectFailures_;
  std::list<Failure> queryFailures_;
  std::list<Failure> storeFailures_;
  std::list<Failure> useFailures_;
  std::list<Failure> rowFailures_;
  std::list<Failure> nextFailures_;
  std::list<Answer> answers_;
  bool encrypted_ = false;
  std::uint64_t affectedRows_ = 0;
  std::uint64_t insertId_ = 0;
  std::vector<std::string> calls_;
  std::vector<std::string> callsByHandle_;
  unsigned lastHandle_ = 0;
  std::map<MYSQL*, Handle> handles_;
  std::map<MYSQL_RES*, Result> results_;
};

}  // namespace corvane::test

#endif
