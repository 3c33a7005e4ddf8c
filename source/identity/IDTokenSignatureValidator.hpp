// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <utility>

#include "identity/IDTokenClaimsValidator.hpp"
#include "identity/JWKS.hpp"
#include "identity/JWT.hpp"
#include "identity/Request.hpp"
#include "runtime/Task.hpp"

namespace vek {

/// Checks that the identity provider has signed a token, with a key that it owns to now.
class IDTokenSignatureValidator {
 public:
  explicit IDTokenSignatureValidator(IDTokenValidatorContext const& context) : context_(context) {}

  /// Fetches the provider's keys, unless the token is refused before. Token and context have to
  /// live as long as the task.
  [[nodiscard]] Task<IDTokenFault> validate(JWT const& jwt) const;

  /// The parts of the above before and after the fetch.
  [[nodiscard]] static IDTokenFault validateAlgorithm(JWT const& jwt);
  [[nodiscard]] static IDTokenFault validateSignature(JWT const& jwt, JWKS const& keySet);

 private:
  IDTokenValidatorContext const& context_;
};

}  // namespace vek
