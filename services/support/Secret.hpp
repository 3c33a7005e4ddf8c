// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace vek::services {

/// 256 random bits as 43 characters that are safe in a header or a URL.
[[nodiscard]] std::string randomToken();

/// The SHA-256 of a token in hexadecimal. Comparing hashes tells a prober nothing about the token,
/// however long the comparison takes, since nobody can choose the hash of what he tries.
[[nodiscard]] std::string tokenHash(std::string_view token);

}  // namespace vek::services
