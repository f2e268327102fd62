#ifndef CORVANE_DATA_VALUE_EXCEPTION_H
#define CORVANE_DATA_VALUE_EXCEPTION_H

#include <exception>

#include "corvane/data/value/str.h"

/// The exception type of the library: thrown by value, caught by reference.
/// The message begins with fixed English text that names the operation; details are appended with `<<`.
class CORVANE_API AException : public std::exception {
 public:
  /// Number 0. A null message counts as empty.
  explicit AException(char const* message);
  AException(int number, char const* message);
  AException(AException const& other);
  AException& operator=(AException const& other);
  ~AException() override;

  /// Each appends to the message and returns the exception; a null text appends nothing.
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

  /// The message with all that was appended. Valid until the next `<<`.
  char const* what() const noexcept override;
  Str Message() const;
  /// The number given at construction; 0 when none was.
  int Number() const noexcept;

 private:
  int number_;
  Str message_;
};

namespace corvane {

/// Numbers of the exceptions that ASSession::Execute throws.
enum : int {
  kErrForeignKey = 100,        ///< refused with the server's error 1217: a foreign key forbids the change
  kErrStatementRefused = 102,  ///< any other refused statement, and a transaction that died with its connection
  kErrConnectionLost = 103     ///< connection lost and reconnection forbidden
};

}  // namespace corvane

#endif
