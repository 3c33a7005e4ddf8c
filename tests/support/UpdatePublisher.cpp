// SPDX-License-Identifier: MIT
#include "support/UpdatePublisher.hpp"

#include <openssl/evp.h>
#include <openssl/pem.h>

#include <cstdio>
#include <stdexcept>

namespace vek::test {

UpdatePublisher::UpdatePublisher()
    : key_(EVP_PKEY_Q_keygen(nullptr, nullptr, "ED25519"),
           [](void* key) { EVP_PKEY_free(static_cast<EVP_PKEY*>(key)); }) {
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> const file(std::fopen(publicKey().c_str(), "w"),
                                                             &std::fclose);
  bool const isWritten =
      file && key_ && PEM_write_PUBKEY(file.get(), static_cast<EVP_PKEY*>(key_.get())) == 1;
  if (!isWritten) throw std::runtime_error("no key to sign updates with");
}

std::string UpdatePublisher::sign(std::string_view list) const {
  std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> const context(EVP_MD_CTX_new(),
                                                                        &EVP_MD_CTX_free);
  std::string signature(64, '\0');
  auto size = signature.size();
  bool const isSigned =
      EVP_DigestSignInit(context.get(), nullptr, nullptr, nullptr,
                         static_cast<EVP_PKEY*>(key_.get())) == 1 &&
      EVP_DigestSign(context.get(), reinterpret_cast<unsigned char*>(signature.data()), &size,
                     reinterpret_cast<unsigned char const*>(list.data()), list.size()) == 1;
  if (!isSigned) throw std::runtime_error("the list of updates was not signed");
  return signature;
}

}  // namespace vek::test
