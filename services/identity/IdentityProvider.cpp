// SPDX-License-Identifier: MIT
#include "services/identity/IdentityProvider.hpp"

#include <fmt/format.h>

#include <algorithm>

#include "platform/Log.hpp"

namespace vek::services {

namespace {

Logger const logger("identity");

Date now() {
  return std::chrono::system_clock::now();
}

}  // namespace

struct IdentityProvider::Route {
  std::string_view method;
  std::string_view path;
  Response (IdentityProvider::*operation)(Request const&);
  /// It takes its time, or its turn: not on a server thread.
  bool isQueued = false;
};

IdentityProvider::Route const IdentityProvider::routes[] = {
    {"GET", "/authorize", &IdentityProvider::showForm},
    {"POST", "/authorize", &IdentityProvider::submitForm, true},
    {"POST", "/oauth/token", &IdentityProvider::tokens, true},
    {"GET", "/.well-known/jwks.json", &IdentityProvider::keySet},
};

IdentityProvider::IdentityProvider(IdentityConfiguration const& configuration, IdentityStore& store)
    : keys_(store,
            {.key = configuration.keyLifetime,
             .token = std::max(configuration.accessTokenLifetime, configuration.idTokenLifetime)},
            now()),
      tokens_(configuration, store, keys_),
      authorize_(configuration, store),
      token_(configuration, store, tokens_) {}

bool IdentityProvider::serves(std::string_view path) {
  return std::ranges::any_of(routes, [path](Route const& route) { return route.path == path; });
}

void IdentityProvider::handle(Request request, Reply reply) {
  std::string allowed;
  for (auto const& route : routes) {
    if (route.path != request.path) continue;
    if (route.method != request.method) {
      allowed += (allowed.empty() ? "" : ", ") + std::string(route.method);
      continue;
    }
    auto work = [this, &route, request = std::move(request), reply = std::move(reply)] {
      try {
        reply((this->*route.operation)(request));
      } catch (std::exception const& error) {
        logger.error(fmt::format("{} {}: {}", route.method, route.path, error.what()));
        reply(Response::refusal(500, "The identity provider failed."));
      }
    };
    return route.isQueued ? queue_.post(std::move(work)) : work();
  }
  auto response = Response::refusal(405, "This address takes " + allowed + " only.");
  response.headers.emplace_back("Allow", allowed);
  reply(std::move(response));
}

std::optional<UserID> IdentityProvider::user(std::string_view accessToken) {
  return tokens_.user(accessToken, now());
}

Response IdentityProvider::showForm(Request const& request) {
  return authorize_.show(request);
}

Response IdentityProvider::submitForm(Request const& request) {
  return authorize_.submit(request, now());
}

Response IdentityProvider::tokens(Request const& request) {
  return token_.answer(request, now());
}

Response IdentityProvider::keySet(Request const&) {
  return {.status = 200, .body = keys_.keySet()};
}

}  // namespace vek::services
