// SPDX-License-Identifier: MIT
#include "platform/PublicKey.hpp"

#include <openssl/bn.h>
#include <openssl/core_names.h>
#include <openssl/err.h>
#include <openssl/evp.h>
#include <openssl/param_build.h>

#include <mutex>
#include <new>
#include <string>
#include <utility>

#include "platform/OpenSSLLifetime.hpp"

namespace vek {
namespace {

constexpr int smallestModulus = 2048;
constexpr int largestModulus = 8192;
constexpr int largestExponent = 64;
constexpr BN_ULONG leastExponent = 65537;

template <auto release>
struct Release {
  template <class T>
  void operator()(T* object) const {
    release(object);
  }
};
using Number = std::unique_ptr<BIGNUM, Release<BN_free>>;

unsigned char const* bytes(std::string_view text) {
  return reinterpret_cast<unsigned char const*>(text.data());
}

/// Null when it has more than `largestBits`.
Number number(std::string_view text, int largestBits) {
  auto const begin = text.find_first_not_of('\0');
  text.remove_prefix(begin == text.npos ? text.size() : begin);
  if (text.size() > static_cast<std::size_t>(largestBits) / 8) return nullptr;
  return Number(BN_bin2bn(bytes(text), static_cast<int>(text.size()), nullptr));
}

std::shared_ptr<EVP_PKEY> makeKey(BIGNUM const* modulus, BIGNUM const* exponent) {
  std::unique_ptr<OSSL_PARAM_BLD, Release<OSSL_PARAM_BLD_free>> const builder(OSSL_PARAM_BLD_new());
  if (!builder || OSSL_PARAM_BLD_push_BN(builder.get(), OSSL_PKEY_PARAM_RSA_N, modulus) != 1 ||
      OSSL_PARAM_BLD_push_BN(builder.get(), OSSL_PKEY_PARAM_RSA_E, exponent) != 1) {
    throw std::bad_alloc();
  }
  std::unique_ptr<OSSL_PARAM, Release<OSSL_PARAM_free>> const parameters(
      OSSL_PARAM_BLD_to_param(builder.get()));
  std::unique_ptr<EVP_PKEY_CTX, Release<EVP_PKEY_CTX_free>> const context(
      EVP_PKEY_CTX_new_from_name(nullptr, "RSA", nullptr));
  EVP_PKEY* key = nullptr;
  if (EVP_PKEY_fromdata_init(context.get()) != 1 ||
      EVP_PKEY_fromdata(context.get(), &key, EVP_PKEY_PUBLIC_KEY, parameters.get()) != 1) {
    ERR_clear_error();
    return nullptr;
  }
  return {key, EVP_PKEY_free};
}

/// The key that was made last. An owner signs with the same key for months, and making it costs
/// half as much as to verify with it.
struct LastKey {
  std::mutex mutex;
  std::string modulus;
  std::string exponent;
  std::shared_ptr<EVP_PKEY> key;
};

LastKey& lastKey() {
  static auto* const instance = new LastKey;
  return *instance;
}

}  // namespace

std::optional<PublicKey> PublicKey::createWithData(std::string_view modulus,
                                                   std::string_view exponent) {
  std::lock_guard const lock(lastKey().mutex);
  auto& last = lastKey();
  if (last.key && last.modulus == modulus && last.exponent == exponent) return PublicKey(last.key);

  auto const n = number(modulus, largestModulus);
  auto const e = number(exponent, largestExponent);
  bool const isSound = n && e && BN_num_bits(n.get()) >= smallestModulus && BN_is_odd(n.get()) &&
                       BN_is_odd(e.get()) && BN_get_word(e.get()) >= leastExponent;
  if (!isSound) return std::nullopt;
  auto key = makeKey(n.get(), e.get());
  if (!key) return std::nullopt;
  last.modulus = modulus;
  last.exponent = exponent;
  last.key = std::move(key);
  return PublicKey(last.key);
}

bool PublicKey::verifySignature(std::string_view message, std::string_view signature) const {
  std::unique_ptr<EVP_MD_CTX, Release<EVP_MD_CTX_free>> const context(EVP_MD_CTX_new());
  if (!context) throw std::bad_alloc();
  bool const holds = EVP_DigestVerifyInit(context.get(), nullptr, EVP_sha256(), nullptr,
                                          static_cast<EVP_PKEY*>(key_.get())) == 1 &&
                     EVP_DigestVerify(context.get(), bytes(signature), signature.size(),
                                      bytes(message), message.size()) == 1;
  if (!holds) ERR_clear_error();
  return holds;
}

}  // namespace vek
