// SPDX-License-Identifier: MIT
#include "identity/WebAuthError.hpp"

#include <fmt/format.h>
#include <boost/json/serialize.hpp>
#include <boost/json/value_from.hpp>

#include "identity/Secrets.hpp"
#include "runtime/ErrorObject.hpp"

namespace vek {
namespace {

std::string message(WebAuthError::Code code) {
  using enum WebAuthError::Code;
  switch (code) {
    case noBundleIdentifier:
      return "Unable to retrieve the bundle identifier from Bundle.main.bundleIdentifier, or it "
             "could not be used to build a valid URL.";
    case transactionActiveAlready:
      return "Failed to start this transaction, as there is an active transaction at the moment.";
    case userCancelled:
      return "The user cancelled the Web Auth operation.";
    case pkceNotAllowed:
      return "Unable to perform authentication with PKCE. Enable PKCE support in the settings page "
             "of the Auth0 application, by setting the 'Application Type' to 'Native'.";
    case idTokenValidationFailed:
      return "The ID token validation performed after authentication failed.";
    case invalidInvitationURL:
    case noAuthorizationCode:
    case unknown:
    case other:
      break;
  }
  return "An unexpected error occurred.";
}

}  // namespace

WebAuthError::WebAuthError(Code code, std::exception_ptr cause)
    : code_(code), cause_(std::move(cause)), description_(message(code)) {
  if (cause_) description_ += " CAUSE: " + ErrorObject(cause_).localizedDescription();
}

WebAuthError WebAuthError::invalidInvitationURL(std::string_view url) {
  return {Code::invalidInvitationURL,
          fmt::format("The invitation URL ({}) is missing the 'invitation' and/or the "
                      "'organization' query parameters.",
                      url)};
}

WebAuthError WebAuthError::noAuthorizationCode(CallbackValues const& values) {
  auto const shown = withoutSecrets(boost::json::value_from(values).as_object());
  return {Code::noAuthorizationCode,
          fmt::format("The callback URL is missing the authorization code in its query parameters "
                      "({}).",
                      boost::json::serialize(shown))};
}

WebAuthError WebAuthError::unknown(std::string message) {
  return {Code::unknown, std::move(message)};
}

}  // namespace vek
