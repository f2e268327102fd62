#include "tests/fuzz/resolver.h"

#include <dlfcn.h>
#include <netdb.h>

namespace corvane::fuzz {

namespace {

thread_local NoResolver* instead = nullptr;

}  // namespace

NoResolver::NoResolver() { instead = this; }
NoResolver::~NoResolver() { instead = nullptr; }

void NoResolver::Ask(char const* host, char const* service) {
  asked_ = ResolverQuestion{host != nullptr ? std::optional<std::string>(host) : std::nullopt, service};
}

}  // namespace corvane::fuzz

extern "C" int getaddrinfo(char const* host, char const* service, addrinfo const* hints, addrinfo** found) {
  if (corvane::fuzz::instead != nullptr) {
    corvane::fuzz::instead->Ask(host, service);
    return EAI_NONAME;
  }
  using Function = int (*)(char const*, char const*, addrinfo const*, addrinfo**);
  static auto const real = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "getaddrinfo"));
  return real(host, service, hints, found);
}
