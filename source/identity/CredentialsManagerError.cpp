// SPDX-License-Identifier: MIT
#include "identity/CredentialsManagerError.hpp"

#include <fmt/format.h>

#include "runtime/ErrorObject.hpp"

namespace vek {
namespace {

std::string message(CredentialsManagerError::Code code) {
  using enum CredentialsManagerError::Code;
  switch (code) {
    case largeMinTTL:
      break;
    case noCredentials:
      return "No credentials were found in the store.";
    case noRefreshToken:
      return "The stored credentials instance does not contain a refresh token.";
    case renewFailed:
      return "The credentials renewal failed.";
    case storeFailed:
      return "Storing the renewed credentials failed.";
    case biometricsFailed:
      return "The biometric authentication failed.";
    case revokeFailed:
      return "The revocation of the refresh token failed.";
  }
  return {};
}

}  // namespace

CredentialsManagerError::CredentialsManagerError(Code code, std::exception_ptr cause)
    : code_(code), cause_(std::move(cause)), description_(message(code)) {
  if (cause_) description_ += " CAUSE: " + ErrorObject(cause_).localizedDescription();
}

CredentialsManagerError CredentialsManagerError::largeMinTTL(std::chrono::seconds minTTL,
                                                             std::chrono::seconds lifetime) {
  return {Code::largeMinTTL,
          fmt::format("The minTTL requested ({}s) is greater than the lifetime of the renewed "
                      "access token ({}s). Request a lower minTTL or increase the 'Token "
                      "Expiration' value in the settings page of your Auth0 API.",
                      minTTL.count(), lifetime.count())};
}

}  // namespace vek
