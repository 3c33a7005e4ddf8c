// SPDX-License-Identifier: MIT
#include "services/support/Secret.hpp"

#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/hmac.h>
#include <openssl/rand.h>
#include <openssl/sha.h>

#include <array>
#include <stdexcept>

#include "records/Base64URL.hpp"

namespace vek::services {

namespace {

unsigned char const* data(std::string_view text) {
  return reinterpret_cast<unsigned char const*>(text.data());
}

}  // namespace

std::string randomBytes(std::size_t count) {
  std::string bytes(count, '\0');
  if (RAND_bytes(reinterpret_cast<unsigned char*>(bytes.data()), static_cast<int>(count)) != 1) {
    throw std::runtime_error("no random bytes");
  }
  return bytes;
}

std::string randomToken() {
  return Base64URL::encode(randomBytes(32));
}

std::string tokenHash(std::string_view token) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string text;
  for (char const byte : sha256(token)) {
    text += digits[static_cast<unsigned char>(byte) >> 4];
    text += digits[static_cast<unsigned char>(byte) & 15];
  }
  return text;
}

std::string sha256(std::string_view text) {
  std::array<unsigned char, SHA256_DIGEST_LENGTH> digest{};
  SHA256(data(text), text.size(), digest.data());
  return {digest.begin(), digest.end()};
}

std::string hmac(std::string_view key, std::string_view text) {
  std::array<unsigned char, SHA256_DIGEST_LENGTH> code{};
  unsigned int size = code.size();
  if (HMAC(EVP_sha256(), key.data(), static_cast<int>(key.size()), data(text), text.size(),
           code.data(), &size) == nullptr) {
    throw std::runtime_error("no message authentication code");
  }
  return {code.begin(), code.end()};
}

bool areEqual(std::string_view secret, std::string_view other) {
  return secret.size() == other.size() &&
         CRYPTO_memcmp(secret.data(), other.data(), secret.size()) == 0;
}

}  // namespace vek::services
