// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vek::services {

/// What is kept of a password: its scrypt hash, with the salt and the costs it was made with.
struct PasswordHash {
  std::string salt;
  std::string hash;
  std::int64_t cost = 1 << 15;
  std::int64_t blockSize = 8;
  std::int64_t lanes = 3;
};

/// Takes a fifth of a second or so and 32 MiB, as does `isPassword`.
[[nodiscard]] PasswordHash hashOf(std::string_view password);
[[nodiscard]] bool isPassword(std::string_view attempt, PasswordHash const& kept);

/// A password of 100 random bits, in letters and digits that are easily told apart.
[[nodiscard]] std::string randomPassword();

}  // namespace vek::services
