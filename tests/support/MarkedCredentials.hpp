// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>

#include "identity/CredentialsManager.hpp"
#include "identity/SimpleKeychain.hpp"

namespace vek::test {

/// A scope that no answer of the provider has, so that each call renews.
inline constexpr char const* scopeOfNoRecord = "openid never-granted";

/// The ID token of a record that is marked with `mark`: long, and marked at both ends.
inline std::string longTokenOf(std::string const& mark) {
  return mark + std::string(20'000, '.') + mark;
}

/// A valid record that shows in its fields which one it is.
inline Credentials markedRecord(int number, std::string refreshToken) {
  auto const mark = std::to_string(number);
  return Credentials({.accessToken = mark,
                      .tokenType = mark,
                      .expiresIn = std::chrono::system_clock::now() + std::chrono::hours(1),
                      .refreshToken = std::move(refreshToken),
                      .idToken = longTokenOf(mark),
                      .scope = mark});
}

/// The manager of the tests' one item in the process's keychain.
inline CredentialsManager managerFor(std::string url, std::filesystem::path authority) {
  return {
      .storage = std::make_shared<SimpleKeychain const>("com.vek.test"),
      .storeKey = "credentials",
      .authentication = {.clientId = "client",
                         .url = std::move(url),
                         .session = HTTPClient::make({.trustedAuthority = std::move(authority)})}};
}

}  // namespace vek::test
