// SPDX-License-Identifier: MIT
#include "platform/Cryptography.hpp"

#include <openssl/rand.h>
#include <openssl/sha.h>

#include <stdexcept>

#include "platform/OpenSSLLifetime.hpp"

namespace vek {
namespace {

unsigned char* writable(std::string& bytes) {
  return reinterpret_cast<unsigned char*>(bytes.data());
}

}  // namespace

std::string randomBytes(std::size_t count) {
  std::string bytes(count, '\0');
  if (RAND_bytes(writable(bytes), static_cast<int>(count)) != 1) {
    throw std::runtime_error("The system has no random bytes.");
  }
  return bytes;
}

std::string sha256(std::string_view bytes) {
  std::string hash(SHA256_DIGEST_LENGTH, '\0');
  SHA256(reinterpret_cast<unsigned char const*>(bytes.data()), bytes.size(), writable(hash));
  return hash;
}

}  // namespace vek
