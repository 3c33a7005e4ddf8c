// SPDX-License-Identifier: MIT
#include "identity/IDTokenSignatureValidator.hpp"

#include <algorithm>
#include <string>

#include "identity/IDTokenValidator.hpp"
#include "platform/PublicKey.hpp"
#include "records/Base64URL.hpp"

namespace vek {
namespace {

using enum IDTokenValidationError::Code;

constexpr char const* absent = "nil";
constexpr char const* onlyAlgorithm = "RS256";

IDTokenValidationError noKey(JWT const& jwt) {
  return IDTokenValidationError(missingPublicKey, jwt.headerText("kid").value_or(absent));
}

std::optional<PublicKey> rsaPublicKey(JWK const& key) {
  if (key.keyType != "RSA") return std::nullopt;
  auto const modulus = Base64URL::decode(key.modulus.value_or(""));
  auto const exponent = Base64URL::decode(key.exponent.value_or(""));
  if (!modulus || !exponent) return std::nullopt;
  return PublicKey::createWithData(*modulus, *exponent);
}

}  // namespace

IDTokenFault IDTokenSignatureValidator::validateAlgorithm(JWT const& jwt) {
  auto const algorithm = jwt.headerText("alg").value_or(absent);
  if (algorithm == onlyAlgorithm) return std::nullopt;
  return IDTokenValidationError(invalidAlgorithm, algorithm, onlyAlgorithm);
}

IDTokenFault IDTokenSignatureValidator::validateSignature(JWT const& jwt, JWKS const& keySet) {
  auto const keyId = jwt.headerText("kid");
  if (!keyId) return noKey(jwt);
  auto const found = std::ranges::find(keySet.keys, keyId, &JWK::keyId);
  if (found == keySet.keys.end()) return noKey(jwt);
  auto const key = rsaPublicKey(*found);
  auto const signature = Base64URL::decode(jwt.signature().value_or(""));
  bool const holds = key && signature && key->verifySignature(jwt.signedPart(), *signature);
  if (!holds) return IDTokenValidationError(invalidSignature);
  return std::nullopt;
}

Task<IDTokenFault> IDTokenSignatureValidator::validate(JWT const& jwt) const {
  if (auto fault = validateAlgorithm(jwt)) co_return fault;
  JWKS keySet;
  try {
    keySet = co_await context_.jwksRequest.value();
  } catch (AuthenticationError const&) {
    co_return noKey(jwt);
  }
  co_return validateSignature(jwt, keySet);
}

}  // namespace vek
