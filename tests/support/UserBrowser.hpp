// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <map>
#include <string>

#include "support/LocalServices.hpp"

namespace vek::test {

/// The browser of a desktop's user, which trusts the local services, and the user in front of it.
/// What the browser is redirected to reaches the login that waits for it.
class UserBrowser {
 public:
  /// Variables of the user's programs, with the homes of their settings and data among them.
  using Environment = std::map<std::string, std::string>;

  /// Of the user whose files are in `folder`. Adds to the variables what a program finds the
  /// browser by.
  UserBrowser(LocalServices const& services, std::filesystem::path folder,
              Environment& environment);

  /// Tells the user what to do with the page that opens next: an errand of browser.js.
  void sendFor(std::string const& errand) const;
  /// What the user saw, once the browser is closed.
  [[nodiscard]] std::string seen() const;

 private:
  LocalServices const& services_;
  std::filesystem::path folder_;
};

}  // namespace vek::test
