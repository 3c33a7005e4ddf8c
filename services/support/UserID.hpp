// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace vek::services {

/// Whom data belong to: the key of a user in the backend's store.
enum class UserID : std::int64_t {};

}  // namespace vek::services
