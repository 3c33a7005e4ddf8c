// SPDX-License-Identifier: MIT
#include "identity/Auth0Authentication.hpp"

#include <utility>

#include "identity/Auth0Configuration.hpp"
#include "identity/TokenAnswer.hpp"

namespace vek {

Auth0Authentication Auth0Authentication::ofMainBundle(HTTPClient session) {
  auto configuration = Auth0Configuration::ofMainBundle();
  return {.clientId = std::move(configuration.clientId),
          .url = baseURL(configuration.domain),
          .session = std::move(session)};
}

Request<Credentials, AuthenticationError> Auth0Authentication::codeExchange(
    std::string_view code, std::string_view verifier, std::string_view redirectURL) const {
  return token({{"code", code},
                {"code_verifier", verifier},
                {"redirect_uri", redirectURL},
                {"grant_type", "authorization_code"},
                {"client_id", clientId}});
}

Request<Credentials, AuthenticationError> Auth0Authentication::renew(
    std::string_view refreshToken, std::optional<std::string> const& scope) const {
  if (logger) logger->debug("renew(parameters:headers:)");
  boost::json::object parameters{
      {"refresh_token", refreshToken}, {"grant_type", "refresh_token"}, {"client_id", clientId}};
  if (scope) parameters.emplace("scope", includingRequiredScope(*scope));
  return token(std::move(parameters));
}

Request<JWKS, AuthenticationError> Auth0Authentication::jwks() const {
  return {{.session = session,
           .url = url + ".well-known/jwks.json",
           .method = "GET",
           .logger = logger,
           .telemetry = telemetry},
          [](Response const& response) { return response.decoded<JWKS>(); }};
}

Request<Credentials, AuthenticationError> Auth0Authentication::token(
    boost::json::object parameters) const {
  return {{.session = session,
           .url = url + "oauth/token",
           .method = "POST",
           .parameters = std::move(parameters),
           .logger = logger,
           .telemetry = telemetry},
          [](Response const& response) { return response.decoded<TokenAnswer>().credentials(); }};
}

std::string includingRequiredScope(std::string_view scope) {
  bool const hasIt = (" " + std::string(scope) + " ").find(" openid ") != std::string::npos;
  return hasIt ? std::string(scope) : "openid " + std::string(scope);
}

}  // namespace vek
