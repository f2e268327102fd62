#ifndef CORVANE_TESTS_FUZZ_RESOLVER_H
#define CORVANE_TESTS_FUZZ_RESOLVER_H

#include <optional>
#include <string>

namespace corvane::fuzz {

/// What getaddrinfo() was asked for.
struct ResolverQuestion {
  std::optional<std::string> host;
  std::string service;
};

/// While it lives, getaddrinfo() (resolver.cpp replaces it in the program) knows no name and asks nobody.
class NoResolver {
 public:
  NoResolver();
  NoResolver(NoResolver const&) = delete;
  NoResolver& operator=(NoResolver const&) = delete;
  ~NoResolver();

  /// The last question.
  std::optional<ResolverQuestion> const& Asked() const { return asked_; }
  void Ask(char const* host, char const* service);

 private:
  std::optional<ResolverQuestion> asked_;
};

}  // namespace corvane::fuzz

#endif
