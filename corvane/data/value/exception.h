#ifndef CORVANE_DATA_VALUE_EXCEPTION_H
#define CORVANE_DATA_VALUE_EXCEPTION_H

#include <exception>

#include "corvane/data/value/str.h"

namespace corvane {

/// Numbers of the exceptions that ASSession::Execute throws.
enum : int {
  kErrForeignKey = 100,        ///< refused with the server's error 1217: a foreign key forbids the change
  kErrStatementRefused = 102,  ///< any other refused statement, and a transaction that died with its connection
  kErrConnectionLost = 103,    ///< connection lost, and not opened again: forbidden, or tried often enough
  kErrOutcomeUnknown = 104     ///< the connection was lost, and the statement is not repeated (RetryWrites off)
};

/// What a caller can do about an exception.
enum class ErrorKind {
  kOther,           ///< no matter of the server's: correct the program
  kConnectionLost,  ///< there is no connection, and nothing was changed: try again, a transaction from its beginning
  kDuplicateKey,    ///< there is such a row
  kLockConflict,    ///< deadlock or lock timeout: Rollback(), and the transaction once more
  kConstraint,      ///< a foreign key, NOT NULL or CHECK forbids the change
  kRefused,         ///< the server refuses for any other reason
  kOutcomeUnknown   ///< the connection was lost on the way: look whether the change was made before making it again
};

}  // namespace corvane

/// The exception type of the library: thrown by value, caught by reference.
/// The message begins with fixed English text that names the operation; details are appended with `<<`.
class CORVANE_API AException : public std::exception {
 public:
  /// Number 0. A null message counts as empty.
  explicit AException(char const* message);
  /// With a number; corvane::ErrorKind::kOther, and no error of a server.
  AException(int number, char const* message);
  /// With the error number of the server or of the client library, 0 for none; the kind follows from it.
  AException(int number, char const* message, int serverError);
  /// With a kind of its own.
  AException(int number, char const* message, int serverError, corvane::ErrorKind kind);
  /// Copies all of it, the message with what was appended. Throws std::bad_alloc.
  /// @{
  AException(AException const& other);
  AException& operator=(AException const& other);
  /// @}

  ~AException() override;

  /// Each appends to the message and returns the exception; a null text appends nothing.
  /// @{
  AException& operator<<(char const* text);
  AException& operator<<(Str const& text);
  AException& operator<<(int number);
  AException& operator<<(unsigned number);
  AException& operator<<(long number);
  AException& operator<<(unsigned long number);
  AException& operator<<(long long number);
  AException& operator<<(unsigned long long number);
  AException& operator<<(double number);
  AException& operator<<(char c);
  /// @}

  /// The message with all that was appended. Valid until the next `<<`.
  char const* what() const noexcept override;
  /// A copy of what().
  Str Message() const;
  /// The number given at construction; 0 when none was.
  int Number() const noexcept;

  /// The error number of the server (1062) or of the client library (2013) behind this; 0 when there is none. Where the
  /// message gives the number of a connection that was opened since, this is the one of the connection that was lost.
  int ServerError() const noexcept;
  /// The SQLSTATE of that number, five characters: "23000" for 1062; "HY000" for 0 and for all that have none of their
  /// own, those of the client library among them. A constant text.
  char const* SqlState() const noexcept;
  /// What can be done about it.
  corvane::ErrorKind Kind() const noexcept;

 private:
  friend class ASSession;  // tells the kind when the whole story of a statement is known

  int number_;
  Str message_;
  int serverError_;
  corvane::ErrorKind kind_;
};

#endif
