// SPDX-License-Identifier: MIT
#include "platform/OpenSSLLifetime.hpp"

#include <openssl/crypto.h>

namespace vek {

bool keepOpenSSL() noexcept {
  return OPENSSL_init_crypto(OPENSSL_INIT_NO_ATEXIT, nullptr) == 1;
}

}  // namespace vek
