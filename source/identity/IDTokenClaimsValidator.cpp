// SPDX-License-Identifier: MIT
#include "identity/IDTokenClaimsValidator.hpp"

#include <algorithm>
#include <chrono>
#include <utility>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "identity/IDTokenValidator.hpp"

namespace vek {
namespace {

using enum IDTokenValidationError::Code;
using Code = IDTokenValidationError::Code;

/// The rule of all claims that have to be there and be a certain text.
IDTokenFault compare(std::optional<std::string> const& actual, std::string const& expected,
                     Code missing, Code mismatched) {
  if (!actual) return IDTokenValidationError(missing);
  if (*actual != expected) return IDTokenValidationError(mismatched, expected, *actual);
  return std::nullopt;
}

std::string seconds(JWT::Time time) {
  return std::to_string(std::chrono::floor<std::chrono::seconds>(time).time_since_epoch().count());
}

JWT::Time::duration duration(int seconds) {
  return std::chrono::seconds(seconds);
}

}  // namespace

IDTokenFault IDTokenIssValidator::validate(JWT const& jwt) const {
  return compare(jwt.iss(), expectedIss, missingIss, mismatchedIss);
}

IDTokenFault IDTokenSubValidator::validate(JWT const& jwt) const {
  if (!jwt.sub()) return IDTokenValidationError(missingSub);
  return std::nullopt;
}

IDTokenFault IDTokenAudValidator::validate(JWT const& jwt) const {
  auto const actual = jwt.aud();
  if (!actual) return IDTokenValidationError(missingAud);
  if (std::ranges::find(*actual, expectedAud) != actual->end()) return std::nullopt;
  auto const code = actual->size() == 1 ? mismatchedAudString : mismatchedAudArray;
  return IDTokenValidationError(code, expectedAud, fmt::format("{}", fmt::join(*actual, ", ")));
}

IDTokenFault IDTokenExpValidator::validate(JWT const& jwt) const {
  auto const exp = jwt.exp();
  if (!exp) return IDTokenValidationError(missingExp);
  if (*exp + duration(leeway) > baseTime) return std::nullopt;
  return IDTokenValidationError(pastExp, seconds(baseTime), seconds(*exp));
}

IDTokenFault IDTokenIatValidator::validate(JWT const& jwt) const {
  if (!jwt.iat()) return IDTokenValidationError(missingIat);
  return std::nullopt;
}

IDTokenFault IDTokenNonceValidator::validate(JWT const& jwt) const {
  return compare(jwt.text("nonce"), expectedNonce, missingNonce, mismatchedNonce);
}

IDTokenFault IDTokenAzpValidator::validate(JWT const& jwt) const {
  auto const aud = jwt.aud();
  if (!aud || aud->size() < 2) return std::nullopt;
  return compare(jwt.text("azp"), expectedAzp, missingAzp, mismatchedAzp);
}

IDTokenFault IDTokenAuthTimeValidator::validate(JWT const& jwt) const {
  auto const authTime = jwt.time("auth_time");
  if (!authTime) return IDTokenValidationError(missingAuthTime);
  if (*authTime + duration(maxAge) + duration(leeway) >= baseTime) return std::nullopt;
  return IDTokenValidationError(pastLastAuth, seconds(baseTime), seconds(*authTime));
}

IDTokenFault IDTokenOrgIDValidator::validate(JWT const& jwt) const {
  return compare(jwt.text("org_id"), expectedOrgID, missingOrgId, mismatchedOrgId);
}

IDTokenFault IDTokenOrgNameValidator::validate(JWT const& jwt) const {
  return compare(jwt.text("org_name"), expectedOrgName, missingOrgName, mismatchedOrgName);
}

IDTokenClaimsValidator IDTokenClaimsValidator::make(IDTokenValidatorContext const& context,
                                                    JWT::Time baseTime) {
  IDTokenClaimsValidator all;
  auto const add = [&all](auto validator) {
    all.validators.emplace_back(
        [validator = std::move(validator)](JWT const& jwt) { return validator.validate(jwt); });
  };
  add(IDTokenIssValidator{context.issuer});
  add(IDTokenSubValidator());
  add(IDTokenAudValidator{context.audience});
  add(IDTokenExpValidator{baseTime, context.leeway});
  add(IDTokenIatValidator());
  if (context.nonce) add(IDTokenNonceValidator{*context.nonce});
  add(IDTokenAzpValidator{context.audience});
  if (context.maxAge) add(IDTokenAuthTimeValidator{baseTime, context.leeway, *context.maxAge});
  if (auto const& organization = context.organization) {
    if (organization->starts_with("org_")) {
      add(IDTokenOrgIDValidator{*organization});
    } else {
      add(IDTokenOrgNameValidator{*organization});
    }
  }
  return all;
}

IDTokenFault IDTokenClaimsValidator::validate(JWT const& jwt) const {
  for (auto const& validator : validators) {
    if (auto fault = validator(jwt)) return fault;
  }
  return std::nullopt;
}

}  // namespace vek
