// TLS: servers with certificates of an authority that the test makes, and what each mode makes of them.

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <utility>

#include "tests/support/live.h"

using corvane::test::Environment;
using corvane::test::Failure;
using corvane::test::FailureOf;
using corvane::test::Fetched;
using corvane::test::LiveTest;
using corvane::test::Parameters;
using corvane::test::Session;
using ::testing::StartsWith;

namespace {

// The authority "ca", a stranger "other", and the server's certificates "good", "wrong-name" and "expired" of "ca".
void MakeCertificates(std::filesystem::path const& folder) {
  constexpr char const* kScript = R"(
    cd "$1" || exit 1
    authority() {
      openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes -days 2 -subj "/CN=$1" \
        -keyout "$1.key" -out "$1.pem" || exit 1
    }
    certificate() {  # NAME DAYS HOSTS
      openssl req -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes -subj "/CN=$1" -keyout "$1.key" -out "$1.csr" &&
        printf 'subjectAltName=%s\n' "$3" >"$1.ext" &&
        openssl x509 -req -in "$1.csr" -CA ca.pem -CAkey ca.key -CAcreateserial -days "$2" -extfile "$1.ext" \
          -out "$1.pem" || exit 1
    }
    authority ca
    authority other
    certificate good 2 DNS:localhost,IP:127.0.0.1
    certificate wrong-name 2 DNS:elsewhere.example
    certificate expired -1 DNS:localhost,IP:127.0.0.1
    certificate client 2 DNS:client
    chmod a+r ./*.key
  )";
  std::ofstream(folder / "make.sh") << kScript;
  std::string const command =
      "sh '" + (folder / "make.sh").string() + "' '" + folder.string() + "' >'" + (folder / "log").string() + "' 2>&1";
  if (std::system(command.c_str()) != 0) throw std::runtime_error("openssl could not make the certificates");
}

class Tls : public LiveTest {
 protected:
  void CreateTables() override {
    if (!HasServerControl()) GTEST_SKIP() << "no server: CORVANE_TEST_SERVER_DIR is not set";
    std::filesystem::create_directory(Folder());
    MakeCertificates(Folder());
  }

  ~Tls() override {
    std::error_code ignored;
    std::filesystem::remove_all(Folder(), ignored);
  }

  // Other programs use the server, too.
  static void TearDownTestSuite() {
    if (!HasServerControl()) return;
    std::filesystem::remove(Options());
    char const* const restart =
        R"("$CORVANE_TEST_SERVER_TOOL" stop "$CORVANE_TEST_SERVER_DIR" &&
           "$CORVANE_TEST_SERVER_TOOL" start "$CORVANE_TEST_SERVER_DIR")";
    EXPECT_EQ(std::system(restart), 0);
  }

  /// Starts the server again with a certificate, or without any: it offers no TLS then.
  void Serve(std::string const& certificate) {
    StopServer();
    std::ofstream(Options()) << "--ssl-ca=" << File("ca.pem") << "\n--ssl-cert=" << File(certificate + ".pem")
                             << "\n--ssl-key=" << File(certificate + ".key") << '\n';
    StartServer();
  }

  void ServeWithout() {
    StopServer();
    std::filesystem::remove(Options());
    StartServer();
  }

  std::string File(std::string const& name) const { return (Folder() / name).string(); }

  Parameters Mode(char const* mode, char const* authority = nullptr) const {
    Parameters parameters = With({{"SslMode", mode}});
    if (authority != nullptr) parameters["SslCa"] = File(std::string(authority) + ".pem");
    return parameters;
  }

  /// The cipher of a connection that could be opened; empty for one without TLS.
  static std::string Cipher(Parameters const& parameters) {
    Session session(parameters);
    return *Fetched(session, "SHOW SESSION STATUS LIKE 'Ssl_cipher'")[0][1];
  }

  static Failure Refusal(Parameters const& parameters) {
    return FailureOf([&] { Session const session(parameters); });
  }

  static auto IsTlsFailure() {
    return ::testing::Field(&Failure::message, StartsWith("mysql_real_connect failed\n Error 2026 ("));
  }

 private:
  static std::filesystem::path Directory() { return Environment("CORVANE_TEST_SERVER_DIR"); }
  static std::filesystem::path Options() { return Directory() / "options"; }
  std::filesystem::path Folder() const { return Directory() / ("tls-" + Schema()); }
};

TEST_F(Tls, EveryModeAcceptsAServerWithTheRightCertificate) {
  Serve("good");
  for (char const* const mode : {"preferred", "required"}) EXPECT_NE(Cipher(Mode(mode)), "") << mode;
  for (char const* const mode : {"preferred", "required", "verify-ca", "verify-identity"}) {
    EXPECT_NE(Cipher(Mode(mode, "ca")), "") << mode;
  }
}

TEST_F(Tls, DisabledUsesNone) {
  Serve("good");
  EXPECT_EQ(Cipher(Mode("disabled")), "");
  EXPECT_EQ(Cipher(Mode("disabled", "ca")), "");
}

TEST_F(Tls, ACertificateOfAnUnknownAuthorityIsRefusedWhereOneIsNamed) {
  Serve("good");
  for (char const* const mode : {"preferred", "required", "verify-ca", "verify-identity"}) {
    EXPECT_THAT(Refusal(Mode(mode, "other")), IsTlsFailure()) << mode;
  }
  EXPECT_THAT(Refusal(Mode("verify-identity")), IsTlsFailure()) << "the system's authorities do not know it either";
}

TEST_F(Tls, ACertificateOfAnotherHostIsRefusedByVerifyIdentity) {
  Serve("wrong-name");
  EXPECT_THAT(Refusal(Mode("verify-identity", "ca")), IsTlsFailure());
  EXPECT_NE(Cipher(Mode("verify-ca", "ca")), "");
  EXPECT_NE(Cipher(Mode("required")), "");
}

TEST_F(Tls, AnExpiredCertificateIsRefusedWhereItIsVerified) {
  Serve("expired");
  EXPECT_THAT(Refusal(Mode("verify-identity", "ca")), IsTlsFailure());
  EXPECT_THAT(Refusal(Mode("verify-ca", "ca")), IsTlsFailure());
}

TEST_F(Tls, AServerThatOffersNoneIsRefusedWhereItIsRequired) {
  ServeWithout();
  EXPECT_EQ(Cipher(Mode("preferred")), "");
  EXPECT_EQ(Cipher(Mode("preferred", "ca")), "");
  for (char const* const mode : {"required", "verify-ca", "verify-identity"}) {
    EXPECT_THAT(Refusal(Mode(mode, "ca")), IsTlsFailure()) << mode;
  }
  EXPECT_THAT(Refusal(Mode("required")), IsTlsFailure());
}

TEST_F(Tls, TheSequenceConnectionIsEncryptedToo) {
  Serve("good");
  Parameters parameters = Mode("verify-identity", "ca");
  parameters["EmulateSequences"] = "yes";
  parameters["SequenceHost"] = Host();
  parameters["SequencePort"] = Port();
  Session session(parameters);
  session.ExecuteSeq(
      "CREATE TABLE cipher AS SELECT VARIABLE_VALUE AS name FROM information_schema.SESSION_STATUS "
      "WHERE VARIABLE_NAME = 'SSL_CIPHER'");
  EXPECT_NE(Stored("SELECT name FROM cipher"), "");
}

TEST_F(Tls, TheServerSeesTheClientsCertificate) {
  Serve("good");
  Run("CREATE OR REPLACE USER tls_client@'%' REQUIRE X509");
  Run("GRANT ALL ON *.* TO tls_client@'%'");
  Parameters parameters = Mode("verify-ca", "ca");
  parameters["UserName"] = "tls_client";
  parameters["Password"] = "";
  EXPECT_THAT(Refusal(parameters).message, StartsWith("mysql_real_connect failed\n Error 1045 ("));
  parameters["SslCert"] = File("client.pem");
  parameters["SslKey"] = File("client.key");
  EXPECT_NE(Cipher(parameters), "");
  Run("DROP USER tls_client@'%'");
}

}  // namespace
