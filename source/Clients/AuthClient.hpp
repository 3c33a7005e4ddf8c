// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "identity/Credentials.hpp"
#include "runtime/DependencyValues.hpp"
#include "runtime/Task.hpp"

namespace vek {

/// The login on the web.
struct AuthClient {
  /// Ends when the user has logged in or given it up. Throws what the login failed with.
  std::function<Task<Credentials>()> logIn;
};

struct AuthClientKey {
  using Value = AuthClient;
  static AuthClient liveValue();
};
inline constexpr DependencyKeyPath<AuthClientKey> authClient;

}  // namespace vek
