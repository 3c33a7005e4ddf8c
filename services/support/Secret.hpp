// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vek::services {

/// Bytes of the system's random source.
[[nodiscard]] std::string randomBytes(std::size_t count);

/// 256 random bits as 43 characters that are safe in a header or a URL.
[[nodiscard]] std::string randomToken();

/// The SHA-256 of a token in hexadecimal. Comparing hashes tells a prober nothing about the token,
/// however long the comparison takes, since nobody can choose the hash of what he tries.
[[nodiscard]] std::string tokenHash(std::string_view token);

/// The 32 bytes of a SHA-256, and of a text's HMAC with SHA-256.
[[nodiscard]] std::string sha256(std::string_view text);
[[nodiscard]] std::string hmac(std::string_view key, std::string_view text);

/// Whether two secrets are equal; takes as long when they are not.
[[nodiscard]] bool areEqual(std::string_view secret, std::string_view other);

}  // namespace vek::services
