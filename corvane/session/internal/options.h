#ifndef CORVANE_SESSION_INTERNAL_OPTIONS_H
#define CORVANE_SESSION_INTERNAL_OPTIONS_H

#include <map>
#include <optional>
#include <string>

#include "corvane/data/value/exception.h"

class ASDomain;
class ASSession;

namespace corvane::internal {

/// How a connection is protected; each mode includes what those before it give.
enum class SslMode {
  kUnset,           // whatever the client library does by itself
  kDisabled,        //
  kPreferred,       // TLS where the server offers it
  kRequired,        // always TLS
  kVerifyCa,        // with a certificate of a known authority
  kVerifyIdentity,  // and for the host that was asked for
};

/// The session parameters that a session understands beside those of a connection string, read and checked. Without any
/// of them nothing differs from a session that knows none.
struct SessionOptions {
  /// Throws AException for a value that cannot be, with the names of parameter and value.
  explicit SessionOptions(std::map<std::string, std::string> const& parameters);

  // Seconds; 0 for no limit.
  unsigned connectTimeout = 0;
  unsigned readTimeout = 0;
  unsigned writeTimeout = 0;
  unsigned controlTimeout = 0;

  std::string charset;  // empty: the client library's
  std::string socket;   // empty: none
  unsigned sequencePort = 0;

  SslMode sslMode = SslMode::kUnset;
  std::string sslCa;  // these three empty: none
  std::string sslCert;
  std::string sslKey;

  std::optional<unsigned> retryLimit;
  bool retryWrites = true;
  bool safeMode = false;
  bool closeOnDestroy = false;
  bool logSecrets = true;
};

/// Whether in this character set a backslash or a quote can be the second byte of a character: escaping, which goes by
/// bytes, is not safe there.
bool IsUnsafeCharset(std::string const& name);

/// What is thrown in safe mode for an UPDATE or DELETE of every row.
AException WithoutCondition();

/// Throws WithoutCondition() in safe mode for a record without key columns, which stands for every row.
void CheckKeys(ASSession const& session, ASDomain const& record);

}  // namespace corvane::internal

#endif
