// SPDX-License-Identifier: MIT
#include "services/identity/TokenEndpoint.hpp"

#include <fmt/format.h>

#include "platform/Log.hpp"
#include "records/Base64URL.hpp"
#include "records/DecodingError.hpp"
#include "records/JSON.hpp"
#include "services/identity/Scope.hpp"
#include "services/support/Secret.hpp"

namespace vek::services {

namespace {

Logger const logger("identity");

/// Why a request gets no tokens.
struct TokenError {
  int status;
  std::string error;
  std::string description;
  static constexpr auto fields() {
    return std::tuple{Field{"error", &TokenError::error},
                      Field{"error_description", &TokenError::description}};
  }
};

struct TokenAnswer {
  std::string accessToken;
  std::string tokenType = "Bearer";
  std::int64_t expiresIn = 0;
  std::string refreshToken;
  std::string idToken;
  std::string scope;
  static constexpr auto fields() {
    return std::tuple{Field{"access_token", &TokenAnswer::accessToken},
                      Field{"token_type", &TokenAnswer::tokenType},
                      Field{"expires_in", &TokenAnswer::expiresIn},
                      Field{"refresh_token", &TokenAnswer::refreshToken},
                      Field{"id_token", &TokenAnswer::idToken},
                      Field{"scope", &TokenAnswer::scope}};
  }
};

TokenError invalidRequest(std::string description) {
  return {400, "invalid_request", std::move(description)};
}

TokenError invalidGrant(std::string description) {
  return {403, "invalid_grant", std::move(description)};
}

std::map<std::string, std::string> parametersOf(Request const& request) {
  auto const type = request.header("Content-Type");
  if (type.starts_with("application/json")) {
    try {
      return json::decode<std::map<std::string, std::string>>(request.body);
    } catch (DecodingError const& error) {
      throw invalidRequest(error.what());
    }
  }
  if (!type.starts_with("application/x-www-form-urlencoded")) {
    throw invalidRequest("The body has to be JSON or a form.");
  }
  auto const items = readItems(request.body);
  if (!items) throw invalidRequest("The form is malformed.");
  std::map<std::string, std::string> parameters;
  for (auto const& [name, value] : *items) {
    if (!parameters.emplace(name, value).second) {
      throw invalidRequest(fmt::format("The parameter {} is there more than once.", name));
    }
  }
  return parameters;
}

std::string const& required(std::map<std::string, std::string> const& parameters,
                            std::string const& name) {
  auto const found = parameters.find(name);
  if (found != parameters.end() && !found->second.empty()) return found->second;
  throw invalidRequest(fmt::format("The parameter {} is missing.", name));
}

}  // namespace

Response TokenEndpoint::answer(Request const& request, Date now) {
  try {
    auto const parameters = parametersOf(request);
    auto const& type = required(parameters, "grant_type");
    if (required(parameters, "client_id") != configuration_.client) {
      throw TokenError{401, "invalid_client", "Unknown client."};
    }
    if (type == "authorization_code") return exchangeCode(parameters, now);
    if (type == "refresh_token") return renew(parameters, now);
    throw TokenError{403, "unsupported_grant_type",
                     "The grant_type has to be authorization_code or refresh_token."};
  } catch (TokenError const& error) {
    return {.status = error.status, .body = json::encode(error)};
  }
}

Response TokenEndpoint::exchangeCode(Parameters const& parameters, Date now) {
  auto const code = tokenHash(required(parameters, "code"));
  auto const& verifier = required(parameters, "code_verifier");
  auto const& redirectURL = required(parameters, "redirect_uri");
  auto const spent = store_.spendCode(code);
  if (!spent || now - spent->issued > configuration_.codeLifetime) {
    throw invalidGrant("The code is not valid, has been used or has ended.");
  }
  if (spent->request.client != configuration_.client || spent->request.redirectURL != redirectURL) {
    throw invalidGrant("The code was issued for another client or redirect URL.");
  }
  if (!areEqual(Base64URL::encode(sha256(verifier)), spent->request.challenge)) {
    throw invalidGrant("The code_verifier is not the one of this code.");
  }
  auto const refreshToken = randomToken();
  auto const grant = store_.addGrant(code, *spent, tokenHash(refreshToken), now);
  return issue(grant, refreshToken, spent->request.nonce, now);
}

Response TokenEndpoint::renew(Parameters const& parameters, Date now) {
  auto const next = randomToken();
  auto grant = store_.renewGrant(tokenHash(required(parameters, "refresh_token")),
                                 configuration_.client, tokenHash(next), now);
  if (!grant) {
    logger.notice("a refresh token that is not valid was refused");
    throw invalidGrant("The refresh token is not valid, has been replaced or has ended.");
  }
  if (auto const asked = parameters.find("scope"); asked != parameters.end()) {
    if (!hasWords(grant->scope, asked->second) || !hasWord(asked->second, "openid")) {
      throw TokenError{400, "invalid_scope", "The scope goes beyond what was granted."};
    }
    grant->scope = knownScope(asked->second);
  }
  return issue(*grant, next, std::nullopt, now);
}

Response TokenEndpoint::issue(Grant const& grant, std::string const& refreshToken,
                              std::optional<std::string> const& nonce, Date now) {
  return {.status = 200,
          .body = json::encode(TokenAnswer{.accessToken = tokens_.accessToken(grant, now),
                                           .expiresIn = configuration_.accessTokenLifetime.count(),
                                           .refreshToken = refreshToken,
                                           .idToken = tokens_.idToken(grant, nonce, now),
                                           .scope = grant.scope})};
}

}  // namespace vek::services
