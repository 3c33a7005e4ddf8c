// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>

namespace vek::services {

/// Whom the identity provider serves, and for how long what it issues holds.
struct IdentityConfiguration {
  /// The provider's base URL, which ends in a slash.
  std::string issuer;
  /// The one program that may ask for sign-ins, and where it takes the answers.
  std::string client = "vek-desktop";
  std::string redirectURL = "com.vek.app://localhost/macos/com.vek.app/callback";
  /// Whom the access tokens are for.
  std::string audience;

  std::chrono::seconds codeLifetime{60};
  std::chrono::seconds accessTokenLifetime = std::chrono::hours(1);
  std::chrono::seconds idTokenLifetime = std::chrono::hours(10);
  /// A sign-in ends when it has not been renewed for so long.
  std::chrono::seconds idleLifetime = std::chrono::days(180);
  /// How long a key signs before another takes its place.
  std::chrono::seconds keyLifetime = std::chrono::days(1);

  /// That of a provider on this machine.
  static IdentityConfiguration onPort(std::uint16_t port, std::string audience);

  /// Writes the property list by which the program finds the provider.
  void writePropertyList(std::filesystem::path const& file) const;
};

}  // namespace vek::services
