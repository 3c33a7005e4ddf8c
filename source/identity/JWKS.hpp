// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "records/Field.hpp"

namespace vek {

/// A public key of the identity provider. Numbers and bytes are base64url.
struct JWK {
  std::string keyType = {};
  std::optional<std::string> keyId = {};
  std::optional<std::string> usage = {};
  std::optional<std::string> algorithm = {};
  std::optional<std::string> certUrl = {};
  std::optional<std::string> certThumbprint = {};
  std::optional<std::vector<std::string>> certChain = {};
  std::optional<std::string> modulus = {};
  std::optional<std::string> exponent = {};

  static constexpr auto fields() {
    return std::tuple{Field{"kty", &JWK::keyType},   Field{"kid", &JWK::keyId},
                      Field{"use", &JWK::usage},     Field{"alg", &JWK::algorithm},
                      Field{"x5u", &JWK::certUrl},   Field{"x5t", &JWK::certThumbprint},
                      Field{"x5c", &JWK::certChain}, Field{"n", &JWK::modulus},
                      Field{"e", &JWK::exponent}};
  }
};

/// The keys that the identity provider signs with.
struct JWKS {
  std::vector<JWK> keys = {};

  static constexpr auto fields() { return std::tuple{Field{"keys", &JWKS::keys}}; }
};

}  // namespace vek
