// SPDX-License-Identifier: MIT
#include "identity/IDTokenValidationError.hpp"

#include <fmt/format.h>

namespace vek {
namespace {

/// The text of a code, with {0} and {1} for its two values.
fmt::string_view message(IDTokenValidationError::Code code) {
  using enum IDTokenValidationError::Code;
  switch (code) {
    case missingIss:
      return "Issuer (iss) claim must be a string present in the ID token";
    case mismatchedIss:
      return "Issuer (iss) claim mismatch in the ID token, expected ({0}), found ({1})";
    case missingSub:
      return "Subject (sub) claim must be a string present in the ID token";
    case missingAud:
      return "Audience (aud) claim must be a string or array of strings present in the ID token";
    case mismatchedAudString:
      return "Audience (aud) claim mismatch in the ID token; expected ({0}) but found ({1})";
    case mismatchedAudArray:
      return "Audience (aud) claim mismatch in the ID token; expected ({0}) but was not one of "
             "({1})";
    case missingExp:
      return "Expiration time (exp) claim must be a number present in the ID token";
    case pastExp:
      return "Expiration time (exp) claim error in the ID token; current time ({0}) is after "
             "expiration time ({1})";
    case missingIat:
      return "Issued At (iat) claim must be a number present in the ID token";
    case missingNonce:
      return "Nonce (nonce) claim must be a string present in the ID token";
    case mismatchedNonce:
      return "Nonce (nonce) claim value mismatch in the ID token; expected ({0}), found ({1})";
    case missingAzp:
      return "Authorized Party (azp) claim must be a string present in the ID token when Audience "
             "(aud) claim has multiple values";
    case mismatchedAzp:
      return "Authorized Party (azp) claim mismatch in the ID token; expected ({0}), found ({1})";
    case missingAuthTime:
      return "Authentication Time (auth_time) claim must be a number present in the ID token when "
             "Max Age (max_age) is specified";
    case pastLastAuth:
      return "Authentication Time (auth_time) claim in the ID token indicates that too much time "
             "has passed since the last user authentication. Current time ({0}) is after last "
             "auth time ({1})";
    case missingOrgId:
      return "Organization Id (org_id) claim must be a string present in the ID token";
    case mismatchedOrgId:
      return "Organization Id (org_id) claim value mismatch in the ID token; expected ({0}), "
             "found ({1})";
    case missingOrgName:
      return "Organization Name (org_name) claim must be a string present in the ID token";
    case mismatchedOrgName:
      return "Organization Name (org_name) claim value mismatch in the ID token; expected ({0}), "
             "found ({1})";
    case invalidAlgorithm:
      return "Signature algorithm of \"{0}\" is not supported. Expected the ID token to be signed "
             "with \"{1}\"";
    case missingPublicKey:
      return "Could not find a public key for Key ID (kid) \"{0}\"";
    case invalidSignature:
      return "Invalid ID token signature";
  }
  return "";
}

}  // namespace

IDTokenValidationError::IDTokenValidationError(Code code, std::string_view first,
                                               std::string_view second)
    : code_(code), description_(fmt::format(fmt::runtime(message(code)), first, second)) {}

}  // namespace vek
