// SPDX-License-Identifier: MIT
#include "services/support/Secret.hpp"

#include <openssl/evp.h>
#include <openssl/rand.h>
#include <openssl/sha.h>

#include <array>
#include <stdexcept>

namespace vek::services {

std::string randomToken() {
  std::array<unsigned char, 33> bytes{};  // a multiple of three needs no padding
  if (RAND_bytes(bytes.data(), bytes.size()) != 1) throw std::runtime_error("no random bytes");
  std::string text(bytes.size() / 3 * 4 + 1, '\0');
  EVP_EncodeBlock(reinterpret_cast<unsigned char*>(text.data()), bytes.data(), bytes.size());
  text.resize(43);
  for (char& c : text) c = c == '+' ? '-' : c == '/' ? '_' : c;
  return text;
}

std::string tokenHash(std::string_view token) {
  std::array<unsigned char, SHA256_DIGEST_LENGTH> digest{};
  SHA256(reinterpret_cast<unsigned char const*>(token.data()), token.size(), digest.data());
  constexpr std::string_view digits = "0123456789abcdef";
  std::string text;
  for (auto const byte : digest) {
    text += digits[byte >> 4];
    text += digits[byte & 15];
  }
  return text;
}

}  // namespace vek::services
