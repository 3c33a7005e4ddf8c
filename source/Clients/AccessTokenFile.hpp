// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

#include "Clients/CredentialsClient.hpp"

namespace vek {

/// Credentials from a file that holds nothing but an access token. The file belongs to whoever
/// issues the token: it is read at each use and never written, so storing and logging out fail.
CredentialsClient credentialsFromAccessTokenFile(std::filesystem::path file);

}  // namespace vek
