// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vek {

/// Bytes that nobody can guess. Throws std::runtime_error when the system has none.
[[nodiscard]] std::string randomBytes(std::size_t count);

/// The 32 bytes of the SHA-256 of `bytes`.
[[nodiscard]] std::string sha256(std::string_view bytes);

}  // namespace vek
