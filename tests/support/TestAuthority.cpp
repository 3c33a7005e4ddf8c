// SPDX-License-Identifier: MIT
#include "support/TestAuthority.hpp"

#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>

#include <cstdio>
#include <memory>
#include <stdexcept>

namespace vek::test {
namespace {

using Key = std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)>;
using Certificate = std::unique_ptr<X509, decltype(&X509_free)>;

void addExtension(X509* certificate, X509* issuer, int kind, char const* value) {
  X509V3_CTX context;
  X509V3_set_ctx(&context, issuer, certificate, nullptr, nullptr, 0);
  X509_EXTENSION* extension = X509V3_EXT_conf_nid(nullptr, &context, kind, value);
  if (!extension) throw std::runtime_error("A certificate extension could not be made.");
  X509_add_ext(certificate, extension, -1);
  X509_EXTENSION_free(extension);
}

constexpr long hour = 3600;

Certificate makeCertificate(EVP_PKEY* key, char const* name, long serial, long end = hour) {
  Certificate certificate(X509_new(), X509_free);
  X509_set_version(certificate.get(), 2);
  ASN1_INTEGER_set(X509_get_serialNumber(certificate.get()), serial);
  X509_gmtime_adj(X509_getm_notBefore(certificate.get()), -2 * hour);
  X509_gmtime_adj(X509_getm_notAfter(certificate.get()), end);
  X509_set_pubkey(certificate.get(), key);
  X509_NAME_add_entry_by_txt(X509_get_subject_name(certificate.get()), "CN", MBSTRING_UTF8,
                             reinterpret_cast<unsigned char const*>(name), -1, -1, 0);
  return certificate;
}

template <class Write>
void writePEM(std::filesystem::path const& path, Write write) {
  std::unique_ptr<FILE, decltype(&std::fclose)> const file(std::fopen(path.c_str(), "w"),
                                                           std::fclose);
  if (!file || write(file.get()) != 1) throw std::runtime_error("No PEM file could be written.");
}

}  // namespace

TestAuthority::TestAuthority() {
  Key const authorityKey(EVP_EC_gen("P-256"), EVP_PKEY_free);
  auto const authority = makeCertificate(authorityKey.get(), "Test Authority", 1);
  X509_set_issuer_name(authority.get(), X509_get_subject_name(authority.get()));
  addExtension(authority.get(), authority.get(), NID_basic_constraints, "critical,CA:TRUE");
  X509_sign(authority.get(), authorityKey.get(), EVP_sha256());

  Key const serverKey(EVP_EC_gen("P-256"), EVP_PKEY_free);
  auto const writeCertificate = [](X509* one) {
    return [one](FILE* file) { return PEM_write_X509(file, one); };
  };
  long serial = 1;
  auto const issue = [&](std::filesystem::path const& path, std::string const& name, long end) {
    auto const server = makeCertificate(serverKey.get(), name.c_str(), ++serial, end);
    X509_set_issuer_name(server.get(), X509_get_subject_name(authority.get()));
    addExtension(server.get(), authority.get(), NID_subject_alt_name, ("DNS:" + name).c_str());
    X509_sign(server.get(), authorityKey.get(), EVP_sha256());
    writePEM(path, writeCertificate(server.get()));
  };
  issue(localhost().certificate, "localhost", hour);
  issue(otherName().certificate, "elsewhere.test", hour);
  issue(expired().certificate, "localhost", -hour);
  writePEM(this->authority(), writeCertificate(authority.get()));
  writePEM(key(), [&](FILE* file) {
    return PEM_write_PrivateKey(file, serverKey.get(), nullptr, nullptr, 0, nullptr, nullptr);
  });
}

}  // namespace vek::test
