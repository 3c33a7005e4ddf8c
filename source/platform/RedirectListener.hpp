// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

namespace vek {

/// Takes the redirects that end logins from the processes that the desktop starts with them, and
/// hands them to this process's WebAuthenticationSession. It listens where only the user's own
/// processes reach it, and needs no desktop itself.
class RedirectListener {
 public:
  /// Another process of the user listens under the name.
  struct NameIsTaken : std::runtime_error {
    using std::runtime_error::runtime_error;
  };

  /// `name`: which of the user's programs this is. Throws NameIsTaken, std::system_error.
  explicit RedirectListener(std::string_view name);
  RedirectListener(RedirectListener const&) = delete;
  RedirectListener& operator=(RedirectListener const&) = delete;
  ~RedirectListener();

 private:
  class Impl;
  std::unique_ptr<Impl> impl_;
};

/// Hands a redirect to the login that waits for it, in whatever process that is: to the one whose
/// state it carries or, if there is none, to any that waits, which then fails. False when none
/// does.
bool deliverRedirect(std::string const& url);

}  // namespace vek
