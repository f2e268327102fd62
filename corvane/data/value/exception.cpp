#include "corvane/data/value/exception.h"

#include "corvane/internal/server_error.h"

AException::AException(char const* message) : AException(0, message) {}

AException::AException(int number, char const* message) : AException(number, message, 0) {}

AException::AException(int number, char const* message, int serverError)
    : AException(number, message, serverError, corvane::internal::KindOf(serverError)) {}

AException::AException(int number, char const* message, int serverError, corvane::ErrorKind kind)
    : number_(number), message_(message), serverError_(serverError), kind_(kind) {}

AException::AException(AException const& other) = default;
AException& AException::operator=(AException const& other) = default;
AException::~AException() = default;

AException& AException::operator<<(char const* text) {
  message_ << text;
  return *this;
}

AException& AException::operator<<(Str const& text) {
  message_ << text;
  return *this;
}

AException& AException::operator<<(int number) {
  message_ << number;
  return *this;
}

AException& AException::operator<<(unsigned number) {
  message_ << number;
  return *this;
}

AException& AException::operator<<(long number) {
  message_ << number;
  return *this;
}

AException& AException::operator<<(unsigned long number) {
  message_ << number;
  return *this;
}

AException& AException::operator<<(long long number) {
  message_ << number;
  return *this;
}

AException& AException::operator<<(unsigned long long number) {
  message_ << number;
  return *this;
}

AException& AException::operator<<(double number) {
  message_ << number;
  return *this;
}

AException& AException::operator<<(char c) {
  message_ << c;
  return *this;
}

char const* AException::what() const noexcept { return message_.str(); }

Str AException::Message() const { return message_; }

int AException::Number() const noexcept { return number_; }

int AException::ServerError() const noexcept { return serverError_; }

char const* AException::SqlState() const noexcept { return corvane::internal::SqlStateOf(serverError_); }

corvane::ErrorKind AException::Kind() const noexcept { return kind_; }
