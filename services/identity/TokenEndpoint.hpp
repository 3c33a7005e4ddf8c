// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>

#include "runtime/Date.hpp"
#include "services/identity/IdentityConfiguration.hpp"
#include "services/identity/IdentityStore.hpp"
#include "services/identity/Tokens.hpp"
#include "services/support/HTTPMessage.hpp"

namespace vek::services {

/// Where a client changes a code, or a refresh token, for tokens. Takes JSON and forms; answers
/// JSON, a refusal as "error" and "error_description". One thread at a time.
class TokenEndpoint {
 public:
  /// Store and tokens outlive the endpoint.
  TokenEndpoint(IdentityConfiguration const& configuration, IdentityStore& store, Tokens& tokens)
      : configuration_(configuration), store_(store), tokens_(tokens) {}

  Response answer(Request const& request, Date now);

 private:
  using Parameters = std::map<std::string, std::string>;

  Response exchangeCode(Parameters const& parameters, Date now);
  Response renew(Parameters const& parameters, Date now);
  Response issue(Grant const& grant, std::string const& refreshToken,
                 std::optional<std::string> const& nonce, Date now);

  IdentityConfiguration const configuration_;
  IdentityStore& store_;
  Tokens& tokens_;
};

}  // namespace vek::services
