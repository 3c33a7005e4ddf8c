// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "identity/AuthenticationError.hpp"
#include "identity/IDTokenClaimsValidator.hpp"
#include "identity/IDTokenSignatureValidator.hpp"
#include "identity/JWKS.hpp"
#include "identity/Request.hpp"
#include "runtime/Date.hpp"
#include "runtime/Task.hpp"

namespace vek {

/// What an ID token has to say to be the answer to a login.
struct IDTokenValidatorContext {
  std::string issuer;
  /// The client's identifier.
  std::string audience;
  Request<JWKS, AuthenticationError> jwksRequest;
  /// Added to times as it stands, in seconds.
  int leeway = 0;
  /// The most seconds since the user has authenticated.
  std::optional<int> maxAge = {};
  std::optional<std::string> nonce = {};
  /// The organization's identifier, which begins with "org_", or its name.
  std::optional<std::string> organization = {};
};

/// Decides whether an ID token counts.
class IDTokenValidator {
 public:
  IDTokenValidator(IDTokenValidatorContext context, Date baseTime);
  IDTokenValidator(IDTokenValidator const&) = delete;
  IDTokenValidator& operator=(IDTokenValidator const&) = delete;
  ~IDTokenValidator() = default;

  /// Ends when the token counts. Throws IDTokenDecodingError or IDTokenValidationError when it does
  /// not. The validator has to live as long as the task.
  [[nodiscard]] Task<> validate(std::string idToken) const;

 private:
  IDTokenValidatorContext context_;
  IDTokenSignatureValidator signatureValidator_;
  IDTokenClaimsValidator claimsValidator_;
};

/// The token taken apart. Throws IDTokenDecodingError, also for one that no provider would give.
[[nodiscard]] JWT decodedIDToken(std::string idToken);

}  // namespace vek
