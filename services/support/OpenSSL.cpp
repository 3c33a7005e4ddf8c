// SPDX-License-Identifier: MIT
#include "services/support/OpenSSL.hpp"

#include <openssl/err.h>
#include <openssl/pem.h>

#include <array>
#include <stdexcept>

namespace vek::services {

void failOpenSSL(char const* what) {
  std::array<char, 256> cause{};
  ERR_error_string_n(ERR_get_error(), cause.data(), cause.size());
  throw std::runtime_error(std::string(what) + ": " + cause.data());
}

Memory reader(std::string_view text) {
  return Memory(BIO_new_mem_buf(text.data(), static_cast<int>(text.size())));
}

std::string contents(Memory const& memory) {
  char* data = nullptr;
  auto const size = BIO_get_mem_data(memory.get(), &data);
  return {data, static_cast<std::size_t>(size)};
}

std::string pem(EVP_PKEY* key) {
  Memory const memory(BIO_new(BIO_s_mem()));
  checked(PEM_write_bio_PKCS8PrivateKey(memory.get(), key, nullptr, nullptr, 0, nullptr, nullptr),
          "writing a key");
  return contents(memory);
}

Key keyFromPEM(std::string_view text) {
  Key key(PEM_read_bio_PrivateKey(reader(text).get(), nullptr, nullptr, nullptr));
  ERR_clear_error();
  return key;
}

}  // namespace vek::services
