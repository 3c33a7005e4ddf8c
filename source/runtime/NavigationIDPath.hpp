// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <vector>

#include "runtime/AnyHashable.hpp"
#include "runtime/DependencyValues.hpp"

namespace vek {

/// The elements within which a reducer runs, outermost first. It keeps the effects of two elements
/// apart and lets those of one be cancelled together.
struct NavigationIDPath {
  std::vector<AnyHashable> ids;

  bool operator==(NavigationIDPath const&) const = default;

  /// This path with one more element at its end.
  [[nodiscard]] NavigationIDPath appending(AnyHashable id) const {
    auto longer = *this;
    longer.ids.push_back(std::move(id));
    return longer;
  }

  [[nodiscard]] std::size_t hash() const {
    std::size_t result = ids.size();
    for (auto const& id : ids) result = result * 31 + id.hash();
    return result;
  }
};

struct NavigationIDPathKey {
  using Value = NavigationIDPath;
  static NavigationIDPath liveValue() { return {}; }
};
inline constexpr DependencyKeyPath<NavigationIDPathKey> navigationIDPath;

}  // namespace vek

template <>
struct std::hash<vek::NavigationIDPath> {
  std::size_t operator()(vek::NavigationIDPath const& path) const noexcept { return path.hash(); }
};
