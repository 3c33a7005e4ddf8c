// SPDX-License-Identifier: MIT
#pragma once

#include "Clients/CredentialsClient.hpp"
#include "identity/CredentialsManager.hpp"

namespace vek {

/// The operations of the client, done by `manager`. What blocks runs on the pool.
[[nodiscard]] CredentialsClient credentialsClientOf(CredentialsManager manager);

}  // namespace vek
