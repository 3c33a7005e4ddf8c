// SPDX-License-Identifier: MIT
#include "identity/IDTokenValidator.hpp"

#include <utility>

namespace vek {
namespace {

/// Hundreds of times what an ID token takes, and little for a reader of JSON.
constexpr std::size_t largestToken = std::size_t{256} << 10U;

void throwIfAny(IDTokenFault fault) {
  if (fault) throw IDTokenValidationError(std::move(*fault));
}

}  // namespace

IDTokenValidator::IDTokenValidator(IDTokenValidatorContext context, Date baseTime)
    : context_(std::move(context)),
      signatureValidator_(context_),
      claimsValidator_(IDTokenClaimsValidator::make(context_, JWT::Time(baseTime))) {}

Task<> IDTokenValidator::validate(std::string idToken) const {
  JWT const jwt = decodedIDToken(std::move(idToken));
  throwIfAny(co_await signatureValidator_.validate(jwt));
  throwIfAny(claimsValidator_.validate(jwt));
}

JWT decodedIDToken(std::string idToken) {
  if (idToken.size() > largestToken) throw IDTokenDecodingError();
  try {
    return JWT(std::move(idToken));
  } catch (JWTDecodingError const&) {
    throw IDTokenDecodingError();
  }
}

}  // namespace vek
