// SPDX-License-Identifier: MIT
#include "services/identity/SigningKeys.hpp"

#include <openssl/core_names.h>
#include <openssl/rsa.h>

#include <algorithm>
#include <boost/json/array.hpp>
#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>

#include "records/Base64URL.hpp"
#include "records/DuplicateMembers.hpp"
#include "services/support/OpenSSL.hpp"
#include "services/support/Secret.hpp"

namespace vek::services {

namespace {

constexpr unsigned int keyBits = 2048;

using Digest = Owned<EVP_MD_CTX, EVP_MD_CTX_free>;

unsigned char const* data(std::string_view text) {
  return reinterpret_cast<unsigned char const*>(text.data());
}

std::string signature(EVP_PKEY* key, std::string_view text) {
  Digest const digest(checked(EVP_MD_CTX_new(), "signing a token"));
  std::size_t size = 0;
  checked(EVP_DigestSignInit(digest.get(), nullptr, EVP_sha256(), nullptr, key) == 1 &&
              EVP_DigestSign(digest.get(), nullptr, &size, data(text), text.size()) == 1,
          "signing a token");
  std::string bytes(size, '\0');
  checked(EVP_DigestSign(digest.get(), reinterpret_cast<unsigned char*>(bytes.data()), &size,
                         data(text), text.size()) == 1,
          "signing a token");
  bytes.resize(size);
  return bytes;
}

bool isSignature(EVP_PKEY* key, std::string_view bytes, std::string_view text) {
  Digest const digest(checked(EVP_MD_CTX_new(), "verifying a token"));
  return EVP_DigestVerifyInit(digest.get(), nullptr, EVP_sha256(), nullptr, key) == 1 &&
         EVP_DigestVerify(digest.get(), data(bytes), bytes.size(), data(text), text.size()) == 1;
}

/// A part of the public key ("n" or "e") as key sets have it.
std::string publicNumber(EVP_PKEY const* key, char const* name) {
  BIGNUM* number = nullptr;
  checked(EVP_PKEY_get_bn_param(key, name, &number), "reading a key");
  Number const owned(number);
  std::string bytes(static_cast<std::size_t>(BN_num_bytes(number)), '\0');
  BN_bn2bin(number, reinterpret_cast<unsigned char*>(bytes.data()));
  return Base64URL::encode(bytes);
}

std::optional<boost::json::object> objectOf(std::string_view part) {
  auto const text = Base64URL::decode(part);
  if (!text) return std::nullopt;
  boost::system::error_code error;
  auto value = boost::json::parse(*text, error);
  if (error || !value.is_object() || hasDuplicateMembers(value.as_object(), *text)) {
    return std::nullopt;
  }
  return std::move(value.as_object());
}

bool isText(boost::json::object const& object, std::string_view key, std::string_view expected) {
  auto const* value = object.if_contains(key);
  return value != nullptr && value->is_string() && value->get_string() == expected;
}

}  // namespace

struct SigningKeys::SigningKey {
  std::string id;
  Date created;
  Key key;
};

SigningKeys::SigningKeys(IdentityStore& store, Lifetimes lifetimes, Date now)
    : store_(store), lifetimes_(lifetimes) {
  for (auto const& stored : store_.signingKeys()) {
    keys_.push_back(std::make_shared<SigningKey const>(stored.id, stored.created,
                                                       checked(keyFromPEM(stored.pem), "a key")));
  }
  static_cast<void>(keyAt(now));
}

SigningKeys::~SigningKeys() = default;

std::string SigningKeys::sign(boost::json::object const& claims, Date now) {
  auto const key = keyAt(now);
  boost::json::object const header{{"alg", "RS256"}, {"typ", "JWT"}, {"kid", key->id}};
  auto const text = Base64URL::encode(boost::json::serialize(header)) + '.' +
                    Base64URL::encode(boost::json::serialize(claims));
  return text + '.' + Base64URL::encode(signature(key->key.get(), text));
}

std::optional<boost::json::object> SigningKeys::verified(std::string_view token) const {
  auto const first = token.find('.');
  auto const last = token.rfind('.');
  if (first == last || token.find('.', first + 1) != last) return std::nullopt;
  auto const header = objectOf(token.substr(0, first));
  auto const bytes = Base64URL::decode(token.substr(last + 1));
  if (!header || !bytes || !isText(*header, "alg", "RS256")) return std::nullopt;

  Keys keys;
  {
    std::lock_guard lock(mutex_);
    keys = keys_;
  }
  auto const key = std::ranges::find_if(
      keys, [&](auto const& each) { return isText(*header, "kid", each->id); });
  if (key == keys.end() || !isSignature((*key)->key.get(), *bytes, token.substr(0, last))) {
    return std::nullopt;
  }
  return objectOf(token.substr(first + 1, last - first - 1));
}

std::string SigningKeys::keySet() const {
  boost::json::array set;
  std::lock_guard lock(mutex_);
  for (auto const& each : keys_) {
    set.push_back({{"kty", "RSA"},
                   {"use", "sig"},
                   {"alg", "RS256"},
                   {"kid", each->id},
                   {"n", publicNumber(each->key.get(), OSSL_PKEY_PARAM_RSA_N)},
                   {"e", publicNumber(each->key.get(), OSSL_PKEY_PARAM_RSA_E)}});
  }
  return boost::json::serialize(boost::json::object{{"keys", std::move(set)}});
}

std::shared_ptr<SigningKeys::SigningKey const> SigningKeys::keyAt(Date now) {
  std::lock_guard lock(mutex_);
  if (keys_.empty() || now - keys_.back()->created >= lifetimes_.key) rotate(now);
  return keys_.back();
}

void SigningKeys::rotate(Date now) {
  auto made = std::make_shared<SigningKey const>(
      randomToken(), now, Key(checked(EVP_RSA_gen(keyBits), "making a key")));
  store_.addSigningKey({made->id, made->created, pem(made->key.get())});
  keys_.push_back(std::move(made));
  // A key has signed until the next one was made.
  while (keys_.size() > 1 && now - keys_[1]->created > lifetimes_.token) {
    store_.removeSigningKey(keys_.front()->id);
    keys_.erase(keys_.begin());
  }
}

}  // namespace vek::services
