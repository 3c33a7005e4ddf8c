// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace vek {

/// Which identity provider users sign in at, and the name that it knows the program by.
struct Auth0Configuration {
  std::string clientId;
  std::string domain;

  /// What the main bundle's "Auth0.plist" says. A missing file or entry stops the process.
  [[nodiscard]] static Auth0Configuration ofMainBundle();
};

/// The URL at which the provider of `domain` is found, ended by "/". Stops the process when that
/// is no URL.
[[nodiscard]] std::string baseURL(std::string_view domain);

}  // namespace vek
