// SPDX-License-Identifier: MIT
#include "platform/Ed25519PublicKey.hpp"

#include <fmt/ranges.h>
#include <openssl/err.h>
#include <openssl/evp.h>
#include <openssl/pem.h>

#include <algorithm>
#include <array>
#include <new>
#include <utility>

#include "platform/Cryptography.hpp"
#include "platform/OpenSSLLifetime.hpp"

namespace vek {
namespace {

unsigned char const* bytes(std::string_view text) {
  return reinterpret_cast<unsigned char const*>(text.data());
}

}  // namespace

std::optional<Ed25519PublicKey> Ed25519PublicKey::fromPEM(std::string_view text) {
  std::unique_ptr<BIO, decltype(&BIO_free)> const reader(
      BIO_new_mem_buf(text.data(), static_cast<int>(text.size())), &BIO_free);
  if (!reader) throw std::bad_alloc();
  std::shared_ptr<EVP_PKEY> key(PEM_read_bio_PUBKEY(reader.get(), nullptr, nullptr, nullptr),
                                &EVP_PKEY_free);
  if (!key) ERR_clear_error();
  if (!key || EVP_PKEY_get_base_id(key.get()) != EVP_PKEY_ED25519) return std::nullopt;
  return Ed25519PublicKey(std::move(key));
}

bool Ed25519PublicKey::verifySignature(std::string_view message, std::string_view signature) const {
  std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> const context(EVP_MD_CTX_new(),
                                                                        &EVP_MD_CTX_free);
  if (!context) throw std::bad_alloc();
  bool const holds = EVP_DigestVerifyInit(context.get(), nullptr, nullptr, nullptr,
                                          static_cast<EVP_PKEY*>(key_.get())) == 1 &&
                     EVP_DigestVerify(context.get(), bytes(signature), signature.size(),
                                      bytes(message), message.size()) == 1;
  if (!holds) ERR_clear_error();
  return holds;
}

std::string Ed25519PublicKey::fingerprint() const {
  std::array<unsigned char, 32> key{};
  auto size = key.size();
  EVP_PKEY_get_raw_public_key(static_cast<EVP_PKEY*>(key_.get()), key.data(), &size);
  auto const digest = sha256({reinterpret_cast<char const*>(key.data()), size});
  std::array<unsigned char, 8> first{};
  std::copy_n(digest.begin(), first.size(), first.begin());
  return fmt::format("{:02x}", fmt::join(first, ""));
}

}  // namespace vek
