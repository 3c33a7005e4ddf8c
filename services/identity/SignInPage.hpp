// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "services/support/HTTPMessage.hpp"

namespace vek::services {

/// What the sign-in form shows.
struct SignInForm {
  /// What was wrong with the last attempt, and the fields that it is about.
  enum class Fields { none, name, password, both };
  struct Problem {
    std::string text = {};
    Fields fields = Fields::none;
  };

  /// Hidden: what makes the form acceptable.
  std::string guard;
  std::string name = {};
  Problem problem = {};
};

// Pages in plain HTML, without scripts, for light and dark screens. Nobody may store or frame them.

[[nodiscard]] Response signInPage(int status, SignInForm const& form);

/// Says why a sign-in cannot go on.
[[nodiscard]] Response problemPage(int status, std::string_view reason);

/// Sends the browser to the program, with a link for one that does not go by itself.
[[nodiscard]] Response redirectPage(std::string const& location);

}  // namespace vek::services
