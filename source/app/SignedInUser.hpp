// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include <boost/json/object.hpp>

#include "identity/Credentials.hpp"

namespace vek {

/// Who the credentials belong to, as their ID token says. What it does not say is empty.
struct SignedInUser {
  std::string name;
  std::string email;
  /// What the identity provider knows the user by.
  std::string subject;

  static SignedInUser of(Credentials const& credentials);

  /// On one line, for people.
  [[nodiscard]] std::string text() const;
  /// The same for programs.
  [[nodiscard]] boost::json::object object() const;
};

}  // namespace vek
