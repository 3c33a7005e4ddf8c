// SPDX-License-Identifier: MIT
#pragma once

#include <concepts>
#include <utility>
#include <variant>

namespace vek {

/// One of several cases, made from any of them. Actions are sums whose cases can be named in them:
///
///     struct ActionCases { struct start {…}; struct stop {…}; };
///     struct Action : ActionCases, Sum<ActionCases::start, ActionCases::stop> { using Sum::Sum; };
template <class... Cases>
struct Sum {
  std::variant<Cases...> value;

  template <class Case>
    requires(std::same_as<Case, Cases> || ...)
  Sum(Case which) : value(std::move(which)) {}

  bool operator==(Sum const&) const = default;
};

}  // namespace vek
