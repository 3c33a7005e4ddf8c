// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "identity/Auth0Authentication.hpp"
#include "identity/Credentials.hpp"
#include "platform/CallbackValues.hpp"
#include "runtime/Task.hpp"

namespace vek {

/// The second half of a login: exchanges the code of the redirect for tokens, which takes the
/// secret that only this login knows, and checks the ID token among them.
struct PKCE {
  Auth0Authentication authentication;
  std::string redirectURL;
  /// What the authorize URL says of this exchange.
  std::map<std::string, std::string> defaults;
  std::string verifier;
  std::string issuer;
  int leeway = 0;
  std::optional<int> maxAge = {};
  std::optional<std::string> organization = {};

  /// Throws WebAuthError. The task may outlive this.
  [[nodiscard]] Task<Credentials> credentials(CallbackValues values) const;

  /// The base64url of 32 random bytes: a verifier, or the state of a login.
  [[nodiscard]] static std::string randomText();
  /// What of a verifier may be known before it is used.
  [[nodiscard]] static std::string challenge(std::string_view verifier);
};

}  // namespace vek
