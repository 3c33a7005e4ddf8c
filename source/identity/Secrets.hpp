// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include <boost/json/object.hpp>

namespace vek {

/// The keys of all that must not reach a text: tokens, and the codes that tokens are had for.
inline constexpr std::array<std::string_view, 6> secretKeys{
    "access_token", "refresh_token", "id_token", "code_verifier", "recovery_code", "mfa_token"};

/// `object` with a mark in the place of all secrets.
[[nodiscard]] inline boost::json::object withoutSecrets(boost::json::object object) {
  for (auto&& [key, value] : object) {
    if (std::ranges::find(secretKeys, std::string_view(key)) != secretKeys.end()) {
      value = "<REDACTED>";
    }
  }
  return object;
}

/// Whether a text of any form names a secret, and may hold it.
[[nodiscard]] inline bool namesSecret(std::string_view text) {
  return std::ranges::any_of(
      secretKeys, [&](std::string_view key) { return text.find(key) != std::string_view::npos; });
}

}  // namespace vek
