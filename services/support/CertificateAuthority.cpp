// SPDX-License-Identifier: MIT
#include "services/support/CertificateAuthority.hpp"

#include <openssl/err.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/rand.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>

#include <array>
#include <optional>
#include <string>

#include "platform/Files.hpp"
#include "services/support/OpenSSL.hpp"

namespace vek::services {

namespace {

using Clock = std::chrono::system_clock;
using Days = std::chrono::days;

constexpr Days authorityLife{3650};
// Browsers refuse server certificates that hold for longer than 398 days.
constexpr Days serverLife{390};
constexpr Days renewalMargin{30};

using Certificate = Owned<X509, X509_free>;
using Extension = Owned<X509_EXTENSION, X509_EXTENSION_free>;

struct Identity {
  Certificate certificate;
  Key key;
};

std::string pem(X509* certificate) {
  Memory memory(BIO_new(BIO_s_mem()));
  checked(PEM_write_bio_X509(memory.get(), certificate), "writing a certificate");
  return contents(memory);
}

Clock::time_point expiry(X509 const* certificate) {
  std::tm parts{};
  checked(ASN1_TIME_to_tm(X509_get0_notAfter(certificate), &parts), "reading an expiry");
  return Clock::from_time_t(timegm(&parts));
}

/// The certificate and key stored in two files; nothing when they are missing, damaged, no pair, or
/// soon over.
std::optional<Identity> stored(std::filesystem::path const& certificatePath,
                               std::filesystem::path const& keyPath, Clock::time_point now) {
  auto const certificateText = readFile(certificatePath);
  auto const keyText = readFile(keyPath);
  if (!certificateText || !keyText) return std::nullopt;
  Identity identity{
      Certificate(PEM_read_bio_X509(reader(*certificateText).get(), nullptr, nullptr, nullptr)),
      keyFromPEM(*keyText)};
  bool const isPair = identity.certificate && identity.key &&
                      X509_check_private_key(identity.certificate.get(), identity.key.get()) == 1;
  ERR_clear_error();
  if (!isPair || expiry(identity.certificate.get()) < now + renewalMargin) return std::nullopt;
  return identity;
}

void addExtension(X509* certificate, X509* issuer, int kind, char const* value) {
  X509V3_CTX context;
  X509V3_set_ctx(&context, issuer, certificate, nullptr, nullptr, 0);
  Extension extension(
      checked(X509V3_EXT_conf_nid(nullptr, &context, kind, value), "making an extension"));
  checked(X509_add_ext(certificate, extension.get(), -1), "adding an extension");
}

void setName(X509_NAME* name, char const* commonName) {
  checked(X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_UTF8,
                                     reinterpret_cast<unsigned char const*>(commonName), -1, -1, 0),
          "naming a certificate");
}

/// A new key with a certificate that lacks its extensions and signature.
Identity makeIdentity(char const* commonName, Clock::time_point now, Days life) {
  Identity identity{Certificate(X509_new()), Key(checked(EVP_EC_gen("P-256"), "making a key"))};
  auto* certificate = identity.certificate.get();
  checked(X509_set_version(certificate, X509_VERSION_3), "making a certificate");
  std::array<unsigned char, 16> serial{};
  checked(RAND_bytes(serial.data(), serial.size()) == 1, "making a serial number");
  serial[0] &= 0x7f;
  Number const number(BN_bin2bn(serial.data(), serial.size(), nullptr));
  checked(BN_to_ASN1_INTEGER(number.get(), X509_get_serialNumber(certificate)), "numbering");
  // A day of grace for clocks that are behind.
  ASN1_TIME_set(X509_getm_notBefore(certificate), Clock::to_time_t(now - Days(1)));
  ASN1_TIME_set(X509_getm_notAfter(certificate), Clock::to_time_t(now + life));
  setName(X509_get_subject_name(certificate), commonName);
  checked(X509_set_pubkey(certificate, identity.key.get()), "making a certificate");
  return identity;
}

void sign(X509* certificate, EVP_PKEY* key) {
  checked(X509_sign(certificate, key, EVP_sha256()), "signing a certificate");
}

Identity makeAuthority(Clock::time_point now) {
  auto identity = makeIdentity("VEK local services authority", now, authorityLife);
  auto* certificate = identity.certificate.get();
  X509_set_issuer_name(certificate, X509_get_subject_name(certificate));
  addExtension(certificate, certificate, NID_basic_constraints, "critical,CA:TRUE,pathlen:0");
  addExtension(certificate, certificate, NID_key_usage, "critical,keyCertSign,cRLSign");
  addExtension(certificate, certificate, NID_subject_key_identifier, "hash");
  addExtension(certificate, certificate, NID_name_constraints,
               "critical,permitted;DNS:localhost,permitted;IP:127.0.0.1/255.255.255.255,"
               "permitted;IP:::1/ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff");
  sign(certificate, identity.key.get());
  return identity;
}

Identity issueServer(Identity const& authority, Clock::time_point now) {
  auto identity = makeIdentity("localhost", now, serverLife);
  auto* certificate = identity.certificate.get();
  auto* issuer = authority.certificate.get();
  X509_set_issuer_name(certificate, X509_get_subject_name(issuer));
  addExtension(certificate, issuer, NID_basic_constraints, "critical,CA:FALSE");
  addExtension(certificate, issuer, NID_key_usage, "critical,digitalSignature");
  addExtension(certificate, issuer, NID_ext_key_usage, "serverAuth");
  addExtension(certificate, issuer, NID_subject_key_identifier, "hash");
  addExtension(certificate, issuer, NID_authority_key_identifier, "keyid:always");
  addExtension(certificate, issuer, NID_subject_alt_name, "DNS:localhost,IP:127.0.0.1,IP:::1");
  sign(certificate, authority.key.get());
  return identity;
}

}  // namespace

CertificateAuthority::CertificateAuthority(std::filesystem::path folder, Clock::time_point now)
    : folder_(std::move(folder)) {
  auto authority = stored(certificate(), key(), now);
  bool const isNew = !authority;
  if (isNew) {
    authority = makeAuthority(now);
    replaceFile(key(), pem(authority->key.get()));
    replaceFile(certificate(), pem(authority->certificate.get()));
  }
  auto server = isNew ? std::nullopt : stored(serverCertificate(), serverKey(), now);
  if (server && X509_verify(server->certificate.get(), authority->key.get()) == 1) return;
  ERR_clear_error();
  server = issueServer(*authority, now);
  replaceFile(serverKey(), pem(server->key.get()));
  replaceFile(serverCertificate(), pem(server->certificate.get()));
}

}  // namespace vek::services
