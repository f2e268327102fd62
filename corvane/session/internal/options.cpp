#include "corvane/session/internal/options.h"

#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <iterator>

namespace corvane::internal {

namespace {

using Parameters = std::map<std::string, std::string>;

constexpr unsigned kMaxSeconds = 2147483;  // the client library counts milliseconds in an int
constexpr unsigned kMaxPort = 65535;
constexpr unsigned kMaxReconnections = 1000000;

constexpr char const* kUnsafeCharsets[] = {"big5", "cp932", "gb18030", "gbk", "sjis"};

// All others that servers take from a client.
constexpr char const* kCharsets[] = {"armscii8", "ascii",  "binary", "cp1250",  "cp1251",  "cp1256",   "cp1257",
                                     "cp850",    "cp852",  "cp866",  "dec8",    "eucjpms", "euckr",    "gb2312",
                                     "geostd8",  "greek",  "hebrew", "hp8",     "keybcs2", "koi8r",    "koi8u",
                                     "latin1",   "latin2", "latin5", "latin7",  "macce",   "macroman", "swe7",
                                     "tis620",   "ujis",   "utf8",   "utf8mb3", "utf8mb4"};

[[noreturn]] void Refuse(char const* key, std::string const& value, char const* expected) {
  AException refused("Session parameter ");
  refused << key << " cannot be '" << value.c_str() << "': " << expected << ". ";
  throw refused;
}

std::string const* Find(Parameters const& parameters, char const* key) {
  auto const found = parameters.find(key);
  return found != parameters.end() ? &found->second : nullptr;
}

// Whatever the locale.
std::string Lower(std::string text) {
  for (char& c : text) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return text;
}

template <std::size_t count>
bool Contains(char const* const (&names)[count], std::string const& name) {
  return std::find(std::begin(names), std::end(names), Lower(name)) != std::end(names);
}

std::optional<unsigned> Number(Parameters const& parameters, char const* key, unsigned max, char const* expected) {
  std::string const* const text = Find(parameters, key);
  if (text == nullptr) return std::nullopt;
  unsigned number = 0;
  char const* const end = text->data() + text->size();
  auto const [rest, error] = std::from_chars(text->data(), end, number);
  if (error != std::errc() || rest != end || number > max) Refuse(key, *text, expected);
  return number;
}

unsigned Seconds(Parameters const& parameters, char const* key) {
  return Number(parameters, key, kMaxSeconds, "seconds are expected, 0 to 2147483").value_or(0);
}

bool Switch(Parameters const& parameters, char const* key, bool byDefault) {
  std::string const* const text = Find(parameters, key);
  if (text == nullptr) return byDefault;
  std::string const word = Lower(*text);
  if (word != "on" && word != "off") Refuse(key, *text, "on or off is expected");
  return word == "on";
}

std::string Charset(Parameters const& parameters) {
  std::string const* const text = Find(parameters, "Charset");
  if (text == nullptr) return {};
  if (IsUnsafeCharset(*text)) {
    Refuse("Charset", *text, "a backslash can be part of a character there, and escaping would be unsafe");
  }
  if (!Contains(kCharsets, *text)) Refuse("Charset", *text, "no such character set for connections");
  return Lower(*text);
}

std::string SocketPath(Parameters const& parameters) {
  std::string const* const text = Find(parameters, "Socket");
  if (text == nullptr) return {};
  if (text->empty() || text->size() >= sizeof(sockaddr_un::sun_path) || text->find('\0') != std::string::npos) {
    Refuse("Socket", *text, "a path of 1 to 107 bytes is expected");
  }
  return *text;
}

SslMode Mode(Parameters const& parameters) {
  std::string const* const text = Find(parameters, "SslMode");
  if (text == nullptr) return SslMode::kUnset;
  std::string const word = Lower(*text);
  if (word == "disabled") return SslMode::kDisabled;
  if (word == "preferred") return SslMode::kPreferred;
  if (word == "required") return SslMode::kRequired;
  if (word == "verify-ca") return SslMode::kVerifyCa;
  if (word == "verify-identity") return SslMode::kVerifyIdentity;
  Refuse("SslMode", *text, "disabled, preferred, required, verify-ca or verify-identity is expected");
}

std::string SslFile(Parameters const& parameters, char const* key, SslMode mode) {
  std::string const* const text = Find(parameters, key);
  if (text == nullptr) return {};
  // Without a mode it would be a guess how much of a check is meant.
  if (mode == SslMode::kUnset) Refuse(key, *text, "it needs an SslMode beside it");
  struct stat file = {};
  bool const isFile = text->find('\0') == std::string::npos && stat(text->c_str(), &file) == 0 && S_ISREG(file.st_mode);
  if (!isFile || access(text->c_str(), R_OK) != 0) {
    Refuse(key, *text, "no file that can be read");
  }
  return *text;
}

}  // namespace

SessionOptions::SessionOptions(Parameters const& parameters)
    : connectTimeout(Seconds(parameters, "ConnectTimeout")),
      readTimeout(Seconds(parameters, "ReadTimeout")),
      writeTimeout(Seconds(parameters, "WriteTimeout")),
      controlTimeout(Seconds(parameters, "ControlTimeout")),
      charset(Charset(parameters)),
      socket(SocketPath(parameters)),
      sequencePort(Number(parameters, "SequencePort", kMaxPort, "a port is expected, 0 to 65535").value_or(0)),
      sslMode(Mode(parameters)),
      sslCa(SslFile(parameters, "SslCa", sslMode)),
      sslCert(SslFile(parameters, "SslCert", sslMode)),
      sslKey(SslFile(parameters, "SslKey", sslMode)),
      retryLimit(Number(parameters, "RetryLimit", kMaxReconnections, "a number is expected, 0 to 1000000")),
      retryWrites(Switch(parameters, "RetryWrites", true)),
      safeMode(Switch(parameters, "SafeMode", false)),
      closeOnDestroy(Switch(parameters, "CloseOnDestroy", false)),
      logSecrets(Switch(parameters, "LogSecrets", true)) {
  // The client library would check nothing then.
  if (sslMode == SslMode::kVerifyCa && sslCa.empty()) {
    Refuse("SslMode", *Find(parameters, "SslMode"), "it needs an SslCa beside it");
  }
}

AException WithoutCondition() {
  return AException(0, "SafeMode refuses a statement without a condition. ", 0, ErrorKind::kRefused);
}

bool IsUnsafeCharset(std::string const& name) { return Contains(kUnsafeCharsets, name); }

}  // namespace corvane::internal
