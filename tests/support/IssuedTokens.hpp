// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <tuple>

#include "records/Field.hpp"

namespace vek::test {

/// What the token endpoint answers.
struct IssuedTokens {
  std::string accessToken = {};
  std::string tokenType = {};
  std::int64_t expiresIn = 0;
  std::string refreshToken = {};
  std::string idToken = {};
  std::string scope = {};
  static constexpr auto fields() {
    return std::tuple{Field{"access_token", &IssuedTokens::accessToken},
                      Field{"token_type", &IssuedTokens::tokenType},
                      Field{"expires_in", &IssuedTokens::expiresIn},
                      Field{"refresh_token", &IssuedTokens::refreshToken},
                      Field{"id_token", &IssuedTokens::idToken},
                      Field{"scope", &IssuedTokens::scope}};
  }
};

}  // namespace vek::test
