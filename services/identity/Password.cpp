// SPDX-License-Identifier: MIT
#include "services/identity/Password.hpp"

#include <openssl/evp.h>

#include "records/Base64URL.hpp"
#include "services/support/OpenSSL.hpp"
#include "services/support/Secret.hpp"

namespace vek::services {

namespace {

constexpr std::size_t hashSize = 32;
constexpr std::size_t saltSize = 16;
constexpr std::uint64_t memoryLimit = 256 << 20;

std::string scrypt(std::string_view password, PasswordHash const& kept) {
  std::string hash(hashSize, '\0');
  checked(EVP_PBE_scrypt(password.data(), password.size(),
                         reinterpret_cast<unsigned char const*>(kept.salt.data()), kept.salt.size(),
                         static_cast<std::uint64_t>(kept.cost),
                         static_cast<std::uint64_t>(kept.blockSize),
                         static_cast<std::uint64_t>(kept.lanes), memoryLimit,
                         reinterpret_cast<unsigned char*>(hash.data()), hash.size()) == 1,
          "hashing a password");
  return Base64URL::encode(hash);
}

}  // namespace

PasswordHash hashOf(std::string_view password) {
  PasswordHash made;
  made.salt = Base64URL::encode(randomBytes(saltSize));
  made.hash = scrypt(password, made);
  return made;
}

bool isPassword(std::string_view attempt, PasswordHash const& kept) {
  return areEqual(scrypt(attempt, kept), kept.hash);
}

std::string randomPassword() {
  constexpr std::string_view letters = "abcdefghijkmnpqrstuvwxyz23456789";
  static_assert(letters.size() == 32);
  std::string password;
  for (char const byte : randomBytes(20)) {
    if (password.size() % 6 == 5) password += '-';
    password += letters[static_cast<unsigned char>(byte) % letters.size()];
  }
  return password;
}

}  // namespace vek::services
