// SPDX-License-Identifier: MIT
#pragma once

#include <openssl/bio.h>
#include <openssl/bn.h>
#include <openssl/evp.h>

#include <memory>
#include <string>
#include <string_view>

namespace vek::services {

template <auto release>
struct Release {
  template <class T>
  void operator()(T* object) const {
    release(object);
  }
};
/// An object of the library, and how it is released.
template <class T, auto release>
using Owned = std::unique_ptr<T, Release<release>>;

using Key = Owned<EVP_PKEY, EVP_PKEY_free>;
using Memory = Owned<BIO, BIO_free>;
using Number = Owned<BIGNUM, BN_free>;

/// Throws `std::runtime_error` with the cause that the library names.
[[noreturn]] void failOpenSSL(char const* what);

/// The result of a call into the library; throws when it is none.
template <class T>
T checked(T result, char const* what) {
  if (!result) failOpenSSL(what);
  return result;
}

/// Reads from `text`, which must outlive it.
[[nodiscard]] Memory reader(std::string_view text);
/// What was written to a memory.
[[nodiscard]] std::string contents(Memory const& memory);

/// A private key as PEM, without a password; and back, or nothing when it is damaged.
[[nodiscard]] std::string pem(EVP_PKEY* key);
[[nodiscard]] Key keyFromPEM(std::string_view text);

}  // namespace vek::services
