// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "identity/IDTokenValidationError.hpp"
#include "identity/JWT.hpp"

namespace vek {

struct IDTokenValidatorContext;

// Each validator looks at one claim and gives what is wrong with it, if anything is. Leeways and
// ages are in seconds.

using IDTokenFault = std::optional<IDTokenValidationError>;

struct IDTokenIssValidator {
  std::string expectedIss;
  [[nodiscard]] IDTokenFault validate(JWT const& jwt) const;
};

struct IDTokenSubValidator {
  [[nodiscard]] IDTokenFault validate(JWT const& jwt) const;
};

struct IDTokenAudValidator {
  std::string expectedAud;
  [[nodiscard]] IDTokenFault validate(JWT const& jwt) const;
};

struct IDTokenExpValidator {
  JWT::Time baseTime;
  int leeway = 0;
  [[nodiscard]] IDTokenFault validate(JWT const& jwt) const;
};

struct IDTokenIatValidator {
  [[nodiscard]] IDTokenFault validate(JWT const& jwt) const;
};

struct IDTokenNonceValidator {
  std::string expectedNonce;
  [[nodiscard]] IDTokenFault validate(JWT const& jwt) const;
};

/// Has a say only for a token with more than one audience.
struct IDTokenAzpValidator {
  std::string expectedAzp;
  [[nodiscard]] IDTokenFault validate(JWT const& jwt) const;
};

struct IDTokenAuthTimeValidator {
  JWT::Time baseTime;
  int leeway = 0;
  int maxAge = 0;
  [[nodiscard]] IDTokenFault validate(JWT const& jwt) const;
};

struct IDTokenOrgIDValidator {
  std::string expectedOrgID;
  [[nodiscard]] IDTokenFault validate(JWT const& jwt) const;
};

struct IDTokenOrgNameValidator {
  std::string expectedOrgName;
  [[nodiscard]] IDTokenFault validate(JWT const& jwt) const;
};

/// Asks its validators in their order, up to the first that finds something.
struct IDTokenClaimsValidator {
  using Validator = std::function<IDTokenFault(JWT const&)>;

  std::vector<Validator> validators;

  /// Those for what `context` expects of a token at `baseTime`.
  [[nodiscard]] static IDTokenClaimsValidator make(IDTokenValidatorContext const& context,
                                                   JWT::Time baseTime);
  [[nodiscard]] IDTokenFault validate(JWT const& jwt) const;
};

}  // namespace vek
