// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "identity/AuthenticationError.hpp"
#include "identity/Credentials.hpp"
#include "identity/JWKS.hpp"
#include "identity/Request.hpp"
#include "identity/Telemetry.hpp"
#include "platform/HTTPClient.hpp"
#include "platform/Log.hpp"

namespace vek {

/// The endpoints of the identity provider. Nothing is sent before a request is started, and no
/// request is sent twice.
struct Auth0Authentication {
  std::string clientId;
  /// What all paths begin with, ended by "/".
  std::string url;
  Telemetry telemetry = {};
  std::optional<Logger> logger = {};
  HTTPClient session = {};

  /// For the provider and the client that the main bundle's "Auth0.plist" names. Stops the process
  /// when it does not.
  [[nodiscard]] static Auth0Authentication ofMainBundle(HTTPClient session = HTTPClient::shared());

  /// Credentials for the code that a login has ended with.
  [[nodiscard]] Request<Credentials, AuthenticationError> codeExchange(
      std::string_view code, std::string_view verifier, std::string_view redirectURL) const;

  /// New credentials for a refresh token, with the scope of the old ones unless another is given.
  [[nodiscard]] Request<Credentials, AuthenticationError> renew(
      std::string_view refreshToken, std::optional<std::string> const& scope = {}) const;

  /// The keys that ID tokens are signed with.
  [[nodiscard]] Request<JWKS, AuthenticationError> jwks() const;

 private:
  [[nodiscard]] Request<Credentials, AuthenticationError> token(
      boost::json::object parameters) const;
};

/// `scope` with the word "openid", which stands in front when it was not there.
[[nodiscard]] std::string includingRequiredScope(std::string_view scope);

}  // namespace vek
