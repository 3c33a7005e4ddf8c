// SPDX-License-Identifier: MIT
#include "platform/TrustedCertificates.hpp"

#include <openssl/err.h>
#include <openssl/pem.h>
#include <openssl/ssl.h>

#include <memory>
#include <optional>

#include "platform/Files.hpp"
#include "platform/Log.hpp"

namespace vek {
namespace {

void addCertificates(X509_STORE* store, std::filesystem::path const& file) {
  auto const pem = readFile(file);
  if (!pem) return;
  std::unique_ptr<BIO, decltype(&BIO_free)> const source(
      BIO_new_mem_buf(pem->data(), static_cast<int>(pem->size())), BIO_free);
  int count = 0;
  while (X509* certificate = PEM_read_bio_X509(source.get(), nullptr, nullptr, nullptr)) {
    X509_STORE_add_cert(store, certificate);
    X509_free(certificate);
    ++count;
  }
  ERR_clear_error();  // the end of the file counts as one
  if (count == 0) Logger("TLS").error("There is no certificate in " + file.string());
}

}  // namespace

void trustCertificates(SSL_CTX* context, std::filesystem::path const& authority) {
  X509_STORE* const store = SSL_CTX_get_cert_store(context);
  X509_STORE_set_default_paths(store);
  if (authority.empty()) return;
  try {
    addCertificates(store, authority);
  } catch (std::exception const& error) {
    Logger("TLS").error(error.what());
  }
}

}  // namespace vek
