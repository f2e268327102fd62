#ifndef CORVANE_SESSION_ARDBMS_H
#define CORVANE_SESSION_ARDBMS_H

#include <deque>
#include <initializer_list>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "corvane/data/value/exception.h"
#include "corvane/data/value/int.h"
#include "corvane/data/value/str.h"
#include "corvane/session/mysql_fwd.h"
#include "corvane/session/tcp_socket.h"

class ASDomain;

namespace corvane::internal {
struct SessionOptions;
}

/// One connection to a MySQL or MariaDB server: it runs statements, writes and runs those of single records, keeps
/// transactions and the read-only mode, and reopens a lost connection.
///
/// Session parameters (keys are case-sensitive):
///
/// | Key | Meaning | When absent |
/// |---|---|---|
/// | Host | host of the main and of the control connection | empty: the client library's default, its UNIX socket |
/// | SequenceHost | host of the sequence connection | empty, whatever Host says: as for an empty Host |
/// | Port | port of the main connection | 0: the client library's default |
/// | ControlPort | port of the control connection | below 1: no control connection |
/// | UserName, Password, Database | of both database connections | empty |
/// | AutoCommit | "on", in any case of letters, switches autocommit on | off |
/// | EmulateSequences | "no", in any case of letters: no sequence connection | it is opened |
/// | AutoReconnect | "off", in any case of letters: a lost connection stays lost | it is reopened |
///
/// And for production; a value that cannot be makes the constructor throw "Session parameter X cannot be 'value': ...":
///
/// | Key | Meaning | When absent |
/// |---|---|---|
/// | ConnectTimeout, ReadTimeout, WriteTimeout | seconds, on every connection; 0 for no limit | no limit |
/// | ControlTimeout | seconds to wait for the control connection's byte | no limit |
/// | Charset | character set of the connections; those in which escaping is unsafe are refused | the client library's |
/// | Socket | path of the UNIX socket to use, whatever Host says | none |
/// | SequencePort | port of the sequence connection | 0 |
/// | SslMode | disabled, preferred, required, verify-ca or verify-identity | the client library's way: no TLS |
/// | SslCa, SslCert, SslKey | files in PEM form; they need an SslMode | none |
/// | RetryLimit | reconnections for one statement, then exception 103 | no limit, but one attempt each |
/// | RetryWrites | "off": what may change data is not repeated after a loss, exception 104 | it is |
/// | SafeMode | "on": unsafe servers, and updates and deletions without a condition, are refused | they are not |
/// | CloseOnDestroy | "on": the destructor closes the database connections | it leaves them open |
/// | LogSecrets | "off": the log shows *** for the password | it shows the password |
///
/// A key of the first table that is looked up is added to the session's own map with an empty value. Without a
/// SequencePort the sequence connection always uses port 0: the client library takes the port from MYSQL_TCP_PORT and
/// the socket from MYSQL_UNIX_PORT.
///
/// Diagnostics go to the standard error stream: at debug level 1 and above failures and the statements of Insert(),
/// Update(), Delete() and Select(); at 2 and above every statement, the parameters (the password among them) and
/// disconnects; at 3 and above the commands of caches with their values; at 5 and above autocommit and
/// sequence-connection notices. A control connection that fails is reported at every level, one that closes without
/// answering at 2 and above.
///
/// A session and all that uses it belong to one thread at a time. Every failure is an AException unless said otherwise.
/// With the exit flag set, a main connection that cannot be opened and a database connection that is lost end the
/// process with status 1 instead; a control connection that fails throws in any case.
class CORVANE_API ASSession {
 public:
  /// Connects at once; throws what Connect() throws, and holds nothing then.
  ASSession(std::map<std::string, std::string> const& parameters, int debugLevel, bool exitOnError);
  /// The same from a braced list, an empty one included.
  ASSession(std::initializer_list<std::map<std::string, std::string>::value_type> parameters, int debugLevel,
            bool exitOnError)
      : ASSession(std::map<std::string, std::string>(parameters), debugLevel, exitOnError) {}
  /// From a connection string "user:password@database/host:port", in full
  /// "user:password@database/sequence-host/host:port/control-port": in this order the database stands before the host.
  /// The parts are NOT ESCAPED: a user name cannot hold a ":", a password no "@". Without a "/" behind the database no
  /// host and no port are set.
  ASSession(Str const& connectionString, int debugLevel, bool exitOnError);
  /// A session is not copied: its connections are its own.
  /// @{
  ASSession(ASSession const&) = delete;
  ASSession& operator=(ASSession const&) = delete;
  /// @}

  /// Closes the control connection. The database connections stay open until the process ends, and with them an open
  /// transaction and its locks: call Commit() or Rollback() first, or Disconnect() to close them. With CloseOnDestroy
  /// they are closed, and the server rolls back.
  ~ASSession();

  /// Opens all connections, after closing those that are there: control connection, main connection, autocommit
  /// mode, sequence connection. `exitOnError` decides about the main connection being refused: exit(1), or the
  /// exception "mysql_real_connect failed\n Error 1045 (...)\n"; either comes after a pause of one second. A control
  /// connection that fails throws "Failed to create a control connection to host:port\n" with the reason; it is
  /// waited for without limit. A failing sequence connection is logged only. When the autocommit mode cannot be set,
  /// that is thrown as by Execute() and the connections are closed; the next Execute() meets a lost one.
  void Connect(bool exitOnError);

  /// Runs a statement, which is NOT ESCAPED, on the main connection and returns the number of affected rows (for a
  /// SELECT 18446744073709551615). The result of a SELECT is left to FetchMultiple(); a statement before it has been
  /// taken counts as a lost connection (error 2014).
  ///
  /// Throws "DB Error 1062 (...) in query\n\b\n" and the statement, numbered 102 (100 for server error 1217). A lost
  /// connection (2006, 2013, 2014) is reopened; then, with autocommit on, the statement is run again, as often as it
  /// takes: it may so be executed more than once, and one that is too large for the server is tried for ever. With
  /// autocommit off the transaction has died with its connection, and error 102 is thrown with the number of the new
  /// connection, usually 0. With AutoReconnect off: 103 "Database connection lost". The exception's Kind() tells
  /// whether the statement may have been carried out all the same, and its ServerError() how the connection was lost.
  /// With RetryLimit the reconnections are bounded, and an attempt that does not reach the server is repeated within
  /// the bound; with RetryWrites off a statement that may change data ends in 104 instead of being repeated. A
  /// statement with a NUL byte, which the client library would cut there, throws "Statement contains a NUL byte. " and
  /// is not sent.
  unsigned long Execute(Str const& statement);
  /// Runs a statement, NOT ESCAPED, on the sequence connection. Throws "Sequence connection is not established. "
  /// without one, and as Execute() otherwise, without a number. A lost connection is always reopened and the statement
  /// run again.
  void ExecuteSeq(Str const& statement);
  /// The whole result of the last statement; the caller frees it with mysql_free_result.
  /// Throws "MySQL fetch error. " when there is none.
  MYSQL_RES* FetchMultiple();

  /// Execute("COMMIT").
  void Commit();
  /// Sends "ROLLBACK"; nothing before the first connection and after Disconnect(). Throws "DB fatal error 2013 (...)
  /// during ROLLBACK. " when the connection is lost, and never reopens it; any other failure is only logged.
  void Rollback();

  /// Read-only mode: record SELECTs then do not lock their row, and write caches refuse to write. The session itself
  /// refuses nothing. ReadOnly() and ClearReadOnly() forget the saved states; PopReadOnly() without one does nothing.
  /// @{
  void ReadOnly();
  void ClearReadOnly();
  void PushReadOnly();
  void PopReadOnly();
  /// @}

  /// 1 in read-only mode, else 0.
  int IsReadOnly() const { return readOnly_; }

  /// The INSERT of a record, without an auto-increment key: ``"INSERT INTO `t` (`a`, `b`) VALUES ('1', NULL)"``.
  ///
  /// Of this statement text and of those below: `mode` 0 writes key values as escaped literals; any other writes ":"
  /// and the column name in their place; 2 also leaves out the WHERE clause of the SELECT; the INSERT looks at none of
  /// them. A NULL key is written as its text form, which for numbers and GUIDs matches no row, for texts '' and for a
  /// time 'NULL'. A record without key columns gives a statement without WHERE: an UPDATE or DELETE of EVERY ROW. Each
  /// throws AException for what has no SQL form: a number that is not finite, a polygon of more than one ring, a value
  /// whose class is not what its type code says.
  Str InsertQuery(ASDomain const& record, int mode) const;
  /// The SELECT of a record: ``"SELECT `id`, `a` FROM `t` WHERE `id`='1' FOR UPDATE"``, in read-only mode without
  /// " FOR UPDATE". As InsertQuery() says of mode, keys and errors.
  Str SelectQuery(ASDomain const& record, int mode) const;
  /// The UPDATE of a record: ``"UPDATE `t` SET `a`='1', `b`=NULL WHERE `id`='1'"``. WITHOUT KEY COLUMNS IT CHANGES
  /// EVERY ROW. As InsertQuery() says of mode, keys and errors.
  Str UpdateQuery(ASDomain const& record, int mode) const;
  /// The DELETE of a record: ``"DELETE FROM `t` WHERE `id`='1'"``. WITHOUT KEY COLUMNS IT DELETES EVERY ROW. As
  /// InsertQuery() says of mode, keys and errors.
  Str DeleteQuery(ASDomain const& record, int mode) const;
  /// Archives the row of a record: ``"INSERT INTO `tArc` (id, a) SELECT id, a FROM `t` WHERE id='1'"``. Column names
  /// are bare and key values are NOT ESCAPED: never with keys of untrusted text.
  Str SaveQuery(ASDomain const& record, int mode) const;

  /// Write the statement with mode 0, run it by Execute(), and return the number of affected rows. WITHOUT KEY COLUMNS
  /// Update() AND Delete() CONCERN EVERY ROW; with SafeMode on they throw
  /// "SafeMode refuses a statement without a condition. " then.
  /// @{
  unsigned long Insert(ASDomain const& record);
  unsigned long Update(ASDomain const& record);
  unsigned long Delete(ASDomain const& record);
  /// @}

  /// Builds with mode 0, runs, and returns Fetch().
  int Select(ASDomain& record);
  /// Copies the first row of the last statement's result into the record, column by column, and returns 1; 0 when there
  /// is no row, the record then being unchanged. NULL columns set their values NULL; texts and small binaries are cut
  /// at their capacity. Throws "MySQL fetch error. " when there is no result, and "Incompatible types for
  /// ASSession::Fetch(). " for a value whose class is not what its type code says, the columns before it being set. A
  /// result with fewer columns than the record is a programming error and ends the program, in release builds too.
  int Fetch(ASDomain& record);

  /// Affected rows of the last successful Execute().
  unsigned long RowsAffected() const { return rowsAffected_; }
  /// The auto-increment number that the last statement gave, narrowed to 32 bits: 2147483648 reads as NULL.
  Int GetInsertId();
  /// The debug level given to the constructor.
  int DebugLevel() const { return debugLevel_; }
  /// What stands before and behind an identifier: the backtick.
  /// @{
  Str const& getKWPrefix() const { return kwPrefix_; }
  Str const& getKWSuffix() const { return kwSuffix_; }
  /// @}

  /// Whether the server answers on the main connection to a statement that does nothing ("DO 0"). Reopens nothing, logs
  /// nothing, throws nothing of its own. It is a statement like any other: take a result before, and ask GetInsertId().
  bool Ping();
  /// Closes both database connections at once; the server rolls back an open transaction. The next Execute() meets a
  /// lost connection.
  void Disconnect();

  /// Whether SafeMode is on: Update() and Delete() then refuse a record without key columns, caches do so in Put() and
  /// Delete(), and ASUpdater and ASDeleter refuse a statement without a condition.
  bool IsSafeMode() const;

  /// No-ops of the interface: they do nothing, and return 0 and an empty text.
  /// @{
  void Break() {}
  int Error() { return 0; }
  Str Error(int) { return ""; }
  /// @}

 private:
  friend class ASCursor;
  friend class ASSequence;

  // For a statement of a cursor's which has just been executed: FetchMultiple() may take its result, and nobody need.
  // It is dropped before the next statement is sent. Of several results the first one is kept, and the others are
  // dropped at once; throws when one of them could not be made.
  void AdmitUntaken();
  void AdmitUntakenOf(Str const& statement);
  void DropUntaken();
  // FetchMultiple() for a result that is read to its end before anything else is sent: the rows come in one by one.
  MYSQL_RES* FetchUnstored();
  bool HasError() const;
  // "MySQL fetch error. " with what the main connection says of it.
  AException FetchError();
  corvane::ErrorKind KindOfFetch(unsigned number, Str const& statement);
  void Remember(Str const& statement) noexcept;
  bool IsLost(unsigned number) const;
  bool Query(Str const& statement);
  void Start();
  void OpenControl();
  void OpenMain(bool exitOnError);
  bool OpenDatabase(MYSQL* handle, char const* hostKey, unsigned port);
  bool IsOfSocket(char const* hostKey);
  void CheckSafe(MYSQL* handle) const;
  void Complete();
  void SetMode();
  void OpenSequence();
  bool ConnectSequence();
  void CloseDatabase();
  // Opens a lost connection again.
  void Reopen();
  void ReopenSequence(unsigned lostBy);
  bool MayReconnect() const;
  void CountReconnection();
  bool Send(Str const& statement, std::optional<unsigned>& lostBy);
  bool IsUnknown(Str const& statement, std::optional<unsigned> lostBy);
  // Runs a statement on the sequence connection, as ExecuteSeq() says, and returns whether that had to be reopened.
  bool ReopensForSeq(Str const& statement, bool repeatsWrites);
  // Throws when there is no sequence connection; `session` may be null.
  static void CheckSequence(ASSession const* session);
  bool ParameterIs(char const* key, char const* lowerCase);
  unsigned long Address() const;

  std::map<std::string, std::string> parameters_;
  Str kwPrefix_;
  Str kwSuffix_;
  int debugLevel_;
  int readOnly_ = 0;
  std::deque<int> readOnlyStack_;
  bool exitOnError_;
  std::unique_ptr<char[]> workBuffer_;  // keeps the layout; literals are escaped straight into their statement
  bool connected_ = false;
  MYSQL* mainHandle_ = nullptr;      // owned until the destructor, which leaves it open
  MYSQL* sequenceHandle_ = nullptr;  // likewise
  unsigned long rowsAffected_ = 0;
  std::unique_ptr<IO::TcpSocket> controlSocket_;
  bool mayBeUntaken_ = false;     // a result that the client library still holds
  MYSQL_RES* untaken_ = nullptr;  // the first of several; owned
  std::unique_ptr<corvane::internal::SessionOptions const> options_;
  bool isOpen_ = false;          // whether a statement can be sent on the main connection, as far as is known
  bool isSequenceOpen_ = false;  // likewise on the sequence connection
  Str resultOf_;                 // the last statement with a result
  unsigned reconnections_ = 0;   // for the statement that runs
};

#endif
