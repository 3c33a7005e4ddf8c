// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

#include "services/backend/BackendStore.hpp"

namespace vek::services {

/// Lets the token in `file` speak for the user, and makes file and token when they are missing. The
/// file is for its owner alone; the store knows only the token's hash.
void grantAccessToken(BackendStore& store, UserID user, std::filesystem::path const& file);

}  // namespace vek::services
