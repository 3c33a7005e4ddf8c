// SPDX-License-Identifier: MIT
#include "identity/TokenAnswer.hpp"

#include <algorithm>
#include <chrono>
#include <utility>

namespace vek {

Credentials TokenAnswer::credentials() && {
  // A date has no room for more than a few centuries.
  constexpr double century = 100 * 365.25 * 86'400;
  std::chrono::duration<double> const life(std::clamp(expiresIn, -century, century));
  return Credentials({.accessToken = std::move(accessToken),
                      .tokenType = std::move(tokenType),
                      .expiresIn = std::chrono::system_clock::now() +
                                   std::chrono::duration_cast<Date::duration>(life),
                      .refreshToken = std::move(refreshToken),
                      .idToken = std::move(idToken).value_or(""),
                      .scope = std::move(scope),
                      .recoveryCode = std::move(recoveryCode)});
}

}  // namespace vek
