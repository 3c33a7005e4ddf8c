// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string_view>

#include "runtime/SerialQueue.hpp"
#include "services/identity/AuthorizeEndpoint.hpp"
#include "services/identity/IdentityConfiguration.hpp"
#include "services/identity/IdentityStore.hpp"
#include "services/identity/SigningKeys.hpp"
#include "services/identity/TokenEndpoint.hpp"
#include "services/identity/Tokens.hpp"
#include "services/support/HTTPMessage.hpp"

namespace vek::services {

/// Signs people in on the web and issues the tokens by which programs act for them: authorization
/// codes with proof keys, rotating refresh tokens, signed ID and access tokens. Any thread.
class IdentityProvider {
 public:
  /// The store outlives the provider.
  IdentityProvider(IdentityConfiguration const& configuration, IdentityStore& store);

  /// Whether a path is one of the provider's.
  [[nodiscard]] static bool serves(std::string_view path);

  /// Answers a request to one of its paths.
  void handle(Request request, Reply reply);

  /// Whose data an access token opens; nothing when it is not valid now.
  std::optional<UserID> user(std::string_view accessToken);

 private:
  struct Route;
  static Route const routes[];

  Response showForm(Request const& request);
  Response submitForm(Request const& request);
  Response tokens(Request const& request);
  Response keySet(Request const& request);

  SigningKeys keys_;
  Tokens tokens_;
  AuthorizeEndpoint authorize_;
  TokenEndpoint token_;
  // The last member, so that what is under way ends before the rest goes.
  SerialQueue queue_{"identity"};
};

}  // namespace vek::services
