// Connection strings: the parameters that are logged, and those that reach the client library and the resolver, against
// another way of cutting the text.

#include <netdb.h>

#include <cstdint>
#include <cstdlib>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "corvane/session/ardbms.h"
#include "tests/fuzz/resolver.h"
#include "tests/fuzz/scripted.h"
#include "tests/fuzz/target.h"

namespace corvane::fuzz {
namespace {

using Parameters = std::map<std::string, std::string>;

// The text before the first delimiter, and what lies behind it.
std::pair<std::string, std::string> Split(std::string const& text, char delimiter) {
  std::size_t const at = text.find(delimiter);
  return at == std::string::npos ? std::pair(text, std::string()) : std::pair(text.substr(0, at), text.substr(at + 1));
}

Parameters Expected(std::string const& text) {
  Parameters parameters;
  auto const [user, behindUser] = Split(text, ':');
  auto const [password, rest] = Split(behindUser, '@');
  parameters["UserName"] = user;
  parameters["Password"] = password;
  parameters["Database"] = Split(rest, '/').first;
  if (rest.find('/') == std::string::npos) return parameters;
  auto const [hosts, ports] = Split(Split(rest, '/').second, ':');
  bool const two = hosts.find('/') != std::string::npos;
  parameters["SequenceHost"] = Split(hosts, '/').first;
  parameters["Host"] = two ? Split(hosts, '/').second : hosts;
  parameters["Port"] = Split(ports, '/').first;
  parameters["ControlPort"] = Split(ports, '/').second;
  return parameters;
}

std::int32_t Number(std::string const& text) {
  return static_cast<std::int32_t>(std::strtoll(text.c_str(), nullptr, 10));
}

std::string Logged(Parameters const& parameters) {
  std::string log = " CONNECTION PARAMETERS:\n";
  for (auto const& [key, value] : parameters) log += "  " + key + "=" + value + "\n";
  return log + "\n";
}

// As a C string, the way the stand-in for the client library records it.
std::string Recorded(std::string const& value) { return value.c_str()[0] == '\0' ? "''" : value.c_str(); }

std::string Connecting(std::string const& host, Parameters& parameters, std::uint32_t port) {
  return "connect " + Recorded(host) + " " + Recorded(parameters["UserName"]) + " " + Recorded(parameters["Password"]) +
         " " + Recorded(parameters["Database"]) + " " + std::to_string(port);
}

void CheckRefused(std::string const& message, Parameters& parameters, int controlPort,
                  std::optional<ResolverQuestion> const& asked) {
  std::string const host = parameters["Host"];
  std::string const peer = host + ":" + std::to_string(controlPort);
  std::string const expected = "Failed to create a control connection to " + peer + "\nConnection to " + peer +
                               " failed: " + (controlPort > 65535 ? "no such port" : gai_strerror(EAI_NONAME)) + "\n";
  // The message is a C string.
  if (host.find('\0') == std::string::npos) {
    CheckEqual(message, expected, "the exception");
  } else {
    CheckEqual(message, std::string(expected.c_str()), "the exception");
  }
  CheckEqual(asked.has_value(), controlPort <= 65535, "whether the host's address was asked for");
  if (!asked.has_value()) return;
  CheckEqual(asked->service, std::to_string(controlPort), "the control port");
  if (host.empty()) return Check(!asked->host.has_value(), "an empty host has a name");
  CheckEqual(asked->host.value_or("none"), std::string(host.c_str()), "the control host");
}

Target const target("connection_string", "parameters as logged and as used", [](Input input) {
  std::string const text = input.Rest();
  Parameters parameters = Expected(text);
  std::string const logged = Logged(parameters);
  int const controlPort = Number(parameters["ControlPort"]);
  auto& client = test::ScriptedClient::Get();
  client.Reset();
  CapturedLog const log;
  NoResolver const resolver;
  std::string message;
  try {
    ASSession session(Str(text), 2, false);
    CheckEqual(
        client.Calls(),
        std::vector<std::string>{
            "init", Connecting(parameters["Host"], parameters, static_cast<std::uint32_t>(Number(parameters["Port"]))),
            "query SET AUTOCOMMIT=0", "init", Connecting(parameters["SequenceHost"], parameters, 0)},
        "the calls");
    session.Disconnect();
  } catch (AException const& error) {
    message = error.what();
  }
  std::size_t const behindAddress = log.Text().find(' ', std::string("SESSION ").size());
  CheckEqual(log.Text().substr(behindAddress, logged.size()), logged, "the log");
  if (controlPort >= 1) {
    CheckRefused(message, parameters, controlPort, resolver.Asked());
  } else {
    CheckEqual(message, "", "the exception");
    Check(!resolver.Asked().has_value(), "a name was asked for without a control port");
  }
  client.Reset();
});

}  // namespace
}  // namespace corvane::fuzz
