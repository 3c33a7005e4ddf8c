// SPDX-License-Identifier: MIT
#include "identity/Credentials.hpp"

#include <fmt/format.h>

#include "records/DateFormatter.hpp"

namespace vek {
namespace {

constexpr char const* redacted = "<REDACTED>";

}  // namespace

std::string Credentials::description() const {
  auto const secret = [](auto const& value) { return value ? redacted : "none"; };
  return fmt::format(
      "Credentials(accessToken: {}, tokenType: {}, expiresIn: {}, refreshToken: {}, idToken: {}, "
      "scope: {}, recoveryCode: {})",
      redacted, tokenType(), DateFormatter::format(expiresIn()), secret(refreshToken()), redacted,
      scope().value_or("none"), secret(recoveryCode()));
}

}  // namespace vek
