// SPDX-License-Identifier: MIT
#include "support/TokenSigner.hpp"

#include <fmt/format.h>
#include <openssl/bio.h>
#include <openssl/bn.h>
#include <openssl/core_names.h>
#include <openssl/evp.h>
#include <openssl/pem.h>

#include <stdexcept>

#include "records/Base64URL.hpp"

namespace vek::test {
namespace {

template <class Result>
Result checked(Result result) {
  if (!result || result == Result(-1)) throw std::runtime_error("OpenSSL refuses.");
  return result;
}

unsigned char* bytes(std::string& text) {
  return reinterpret_cast<unsigned char*>(text.data());
}

std::string number(void* key, char const* name) {
  BIGNUM* value = nullptr;
  checked(EVP_PKEY_get_bn_param(static_cast<EVP_PKEY*>(key), name, &value));
  std::string text(static_cast<std::size_t>(BN_num_bytes(value)), '\0');
  BN_bn2bin(value, bytes(text));
  BN_free(value);
  return text;
}

}  // namespace

TokenSigner::TokenSigner(unsigned bits, unsigned long exponent) {
  EVP_PKEY_CTX* const context = checked(EVP_PKEY_CTX_new_from_name(nullptr, "RSA", nullptr));
  OSSL_PARAM const parameters[] = {OSSL_PARAM_construct_uint(OSSL_PKEY_PARAM_RSA_BITS, &bits),
                                   OSSL_PARAM_construct_ulong(OSSL_PKEY_PARAM_RSA_E, &exponent),
                                   OSSL_PARAM_construct_end()};
  EVP_PKEY* key = nullptr;
  checked(EVP_PKEY_keygen_init(context));
  checked(EVP_PKEY_CTX_set_params(context, parameters));
  checked(EVP_PKEY_generate(context, &key));
  key_ = {key, EVP_PKEY_free};
  EVP_PKEY_CTX_free(context);
}

TokenSigner::TokenSigner(std::string const& pem) {
  std::shared_ptr<BIO> const memory(
      checked(BIO_new_mem_buf(pem.data(), static_cast<int>(pem.size()))), BIO_free);
  key_ = {checked(PEM_read_bio_PrivateKey(memory.get(), nullptr, nullptr, nullptr)), EVP_PKEY_free};
}

std::string TokenSigner::publicPEM() const {
  std::shared_ptr<BIO> const memory(checked(BIO_new(BIO_s_mem())), BIO_free);
  checked(PEM_write_bio_PUBKEY(memory.get(), static_cast<EVP_PKEY*>(key_.get())));
  char* text = nullptr;
  auto const size = BIO_get_mem_data(memory.get(), &text);
  return {text, static_cast<std::size_t>(size)};
}

std::string TokenSigner::modulus() const {
  return number(key_.get(), OSSL_PKEY_PARAM_RSA_N);
}

std::string TokenSigner::exponent() const {
  return number(key_.get(), OSSL_PKEY_PARAM_RSA_E);
}

std::string TokenSigner::jwk(std::string_view keyId) const {
  return fmt::format(R"({{"kty":"RSA","use":"sig","alg":"RS256","kid":"{}","n":"{}","e":"{}"}})",
                     keyId, Base64URL::encode(modulus()), Base64URL::encode(exponent()));
}

std::string TokenSigner::token(std::string_view header, std::string_view body) const {
  auto const message = Base64URL::encode(header) + "." + Base64URL::encode(body);
  return message + "." + Base64URL::encode(signature(message));
}

std::string TokenSigner::signature(std::string_view message) const {
  EVP_MD_CTX* const context = checked(EVP_MD_CTX_new());
  auto* const key = static_cast<EVP_PKEY*>(key_.get());
  std::size_t size = static_cast<std::size_t>(EVP_PKEY_get_size(key));
  std::string result(size, '\0');
  std::string text(message);
  checked(EVP_DigestSignInit(context, nullptr, EVP_sha256(), nullptr, key));
  checked(EVP_DigestSign(context, bytes(result), &size, bytes(text), text.size()));
  EVP_MD_CTX_free(context);
  return result;
}

}  // namespace vek::test
