// SPDX-License-Identifier: MIT
#pragma once

#include <utility>
#include <variant>

namespace vek {

namespace detail {
template <class... Branches>
struct Overloaded : Branches... {
  using Branches::operator()...;
};
}  // namespace detail

/// Calls the branch that takes the case which `sum` holds. Every case needs a branch.
template <class Sum, class... Branches>
decltype(auto) match(Sum&& sum, Branches&&... branches) {
  return std::visit(detail::Overloaded{std::forward<Branches>(branches)...},
                    std::forward<Sum>(sum).value);
}

}  // namespace vek
