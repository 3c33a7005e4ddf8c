// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "identity/Credentials.hpp"
#include "runtime/DependencyValues.hpp"
#include "runtime/Task.hpp"

namespace vek {

/// The store of the user's credentials.
struct CredentialsClient {
  /// Whether they could be stored.
  std::function<Task<bool>(Credentials)> storeCredentials;
  /// Credentials that are valid now. Throws CredentialsManagerError.
  std::function<Task<Credentials>()> credentials;
  /// Forgets the credentials; whether that went well.
  std::function<Task<bool>()> logOut;
};

struct CredentialsClientKey {
  using Value = CredentialsClient;
  /// Around the item of this program in the user's keychain, renewed at the provider that the main
  /// bundle names. Stops the process when the bundle names none.
  static CredentialsClient liveValue();
};
inline constexpr DependencyKeyPath<CredentialsClientKey> credentialsClient;

}  // namespace vek
