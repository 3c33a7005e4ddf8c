// SPDX-License-Identifier: MIT
#pragma once

#include "Clients/CredentialsClient.hpp"
#include "identity/CredentialsManager.hpp"

namespace vek {

/// The operations of the client, done by `manager`. What blocks runs on the pool.
[[nodiscard]] CredentialsClient credentialsClientOf(CredentialsManager manager);

/// The client around the item of this program in the user's keychain, renewed at the provider that
/// the main bundle names. Stops the process when the bundle names none.
[[nodiscard]] CredentialsClient credentialsClientOfMainBundle();

}  // namespace vek
