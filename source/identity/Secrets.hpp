// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include <boost/json/object.hpp>

namespace vek {

/// `object` with a mark in the place of all that must not reach a text: tokens, and the codes that
/// tokens are had for.
[[nodiscard]] inline boost::json::object withoutSecrets(boost::json::object object) {
  constexpr std::array<std::string_view, 6> secrets{"access_token",  "refresh_token", "id_token",
                                                    "code_verifier", "recovery_code", "mfa_token"};
  for (auto&& [key, value] : object) {
    if (std::ranges::find(secrets, std::string_view(key)) != secrets.end()) value = "<REDACTED>";
  }
  return object;
}

}  // namespace vek
