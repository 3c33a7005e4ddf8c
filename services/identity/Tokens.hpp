// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "services/identity/IdentityConfiguration.hpp"
#include "services/identity/IdentityStore.hpp"
#include "services/identity/SigningKeys.hpp"

namespace vek::services {

/// Makes the signed tokens of the identity provider, and says what an access token allows. Any
/// thread.
class Tokens {
 public:
  /// Store and keys outlive it.
  Tokens(IdentityConfiguration const& configuration, IdentityStore& store, SigningKeys& keys)
      : configuration_(configuration), store_(store), keys_(keys) {}

  std::string accessToken(Grant const& grant, Date now);

  /// Says to the client who signed in. `nonce` is the client's own, where it sent one.
  std::string idToken(Grant const& grant, std::optional<std::string> const& nonce, Date now);

  /// Whose data an access token opens: nothing unless it was issued here for this audience, has not
  /// ended, and its grant has not either.
  std::optional<UserID> user(std::string_view accessToken, Date now);

 private:
  IdentityConfiguration const configuration_;
  IdentityStore& store_;
  SigningKeys& keys_;
};

}  // namespace vek::services
