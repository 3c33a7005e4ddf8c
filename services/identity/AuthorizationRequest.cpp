// SPDX-License-Identifier: MIT
#include "services/identity/AuthorizationRequest.hpp"

#include <fmt/format.h>

#include <algorithm>

#include "platform/URLComponents.hpp"
#include "records/Base64URL.hpp"
#include "services/identity/Scope.hpp"

namespace vek::services {

namespace {

/// The parameters of a query. One without a value counts as left out.
class Parameters {
 public:
  explicit Parameters(Items const& query) : query_(query) {}

  [[nodiscard]] std::optional<std::string> find(std::string_view name) const {
    auto value = std::ranges::find(query_, name, &Items::value_type::first);
    if (value == query_.end() || value->second.empty()) return std::nullopt;
    return value->second;
  }
  [[nodiscard]] std::string text(std::string_view name) const { return find(name).value_or(""); }

  [[nodiscard]] bool isRepeated(std::string_view name) const {
    return std::ranges::count(query_, name, &Items::value_type::first) > 1;
  }
  [[nodiscard]] std::optional<std::string> repeated() const {
    for (auto const& [name, value] : query_) {
      if (isRepeated(name)) return name;
    }
    return std::nullopt;
  }

 private:
  Items const& query_;
};

void checkClient(Parameters const& parameters, IdentityConfiguration const& configuration) {
  if (parameters.text("client_id") != configuration.client || parameters.isRepeated("client_id")) {
    throw UntrustedRequest("No known program asked for this sign-in.");
  }
  if (parameters.text("redirect_uri") != configuration.redirectURL ||
      parameters.isRepeated("redirect_uri")) {
    throw UntrustedRequest("The answer would go to an address that is not the program's own.");
  }
}

/// Checks what a known client asked for. Throws `RefusedRequest`.
void check(AuthorizationRequest const& request, Parameters const& parameters,
           IdentityConfiguration const& configuration) {
  auto const refuse = [&](std::string_view error, std::string_view description) {
    throw RefusedRequest{request.locationWithError(error, description)};
  };
  if (auto const name = parameters.repeated()) {
    refuse("invalid_request", fmt::format("The parameter {} is there more than once.", *name));
  }
  auto const type = parameters.find("response_type");
  if (!type) refuse("invalid_request", "The parameter response_type is missing.");
  if (type != "code") refuse("unsupported_response_type", "The response_type has to be code.");
  if (parameters.find("code_challenge_method") != "S256") {
    refuse("invalid_request", "The code_challenge_method has to be S256.");
  }
  if (Base64URL::decode(request.challenge).value_or("").size() != 32) {
    refuse("invalid_request", "The code_challenge is not that of S256.");
  }
  if (parameters.find("audience") != configuration.audience) {
    refuse("access_denied", "Service not found: " + parameters.text("audience"));
  }
  if (!hasWord(request.scope, "openid")) {
    refuse("invalid_scope", "The scope has to hold openid.");
  }
  if (parameters.find("organization") || parameters.find("invitation")) {
    refuse("invalid_request", "There are no organizations here.");
  }
}

}  // namespace

AuthorizationRequest AuthorizationRequest::read(Items const& query,
                                                IdentityConfiguration const& configuration) {
  Parameters const parameters(query);
  checkClient(parameters, configuration);
  AuthorizationRequest request{.client = configuration.client,
                               .redirectURL = configuration.redirectURL,
                               .challenge = parameters.text("code_challenge"),
                               .scope = knownScope(parameters.text("scope")),
                               .nonce = parameters.find("nonce"),
                               .state = parameters.find("state")};
  check(request, parameters, configuration);
  return request;
}

std::string AuthorizationRequest::locationWithCode(std::string const& code) const {
  return location({{"code", code}});
}

std::string AuthorizationRequest::locationWithError(std::string_view error,
                                                    std::string_view description) const {
  return location({{"error", std::string(error)}, {"error_description", std::string(description)}});
}

std::string AuthorizationRequest::location(Items items) const {
  if (state) items.emplace_back("state", *state);
  std::string url = redirectURL;
  char separator = '?';
  for (auto const& [name, value] : items) {
    url += separator + name + '=' + percentEncoded(value);
    separator = '&';
  }
  return url;
}

}  // namespace vek::services
