// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <tuple>

#include "identity/Credentials.hpp"
#include "records/Field.hpp"

namespace vek {

/// What the identity provider's token endpoint answers.
struct TokenAnswer {
  std::string accessToken = {};
  std::string tokenType = {};
  /// In seconds from the answer.
  double expiresIn = 0;
  std::optional<std::string> refreshToken = {};
  /// A renewal need not bring a new one.
  std::optional<std::string> idToken = {};
  std::optional<std::string> scope = {};
  std::optional<std::string> recoveryCode = {};

  /// The credentials, which run from now.
  [[nodiscard]] Credentials credentials() &&;

  static constexpr auto fields() {
    return std::tuple{Field{"access_token", &TokenAnswer::accessToken},
                      Field{"token_type", &TokenAnswer::tokenType},
                      Field{"expires_in", &TokenAnswer::expiresIn},
                      Field{"refresh_token", &TokenAnswer::refreshToken},
                      Field{"id_token", &TokenAnswer::idToken},
                      Field{"scope", &TokenAnswer::scope},
                      Field{"recovery_code", &TokenAnswer::recoveryCode}};
  }
};

}  // namespace vek
