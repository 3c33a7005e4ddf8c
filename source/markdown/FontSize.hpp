// SPDX-License-Identifier: MIT
#pragma once

#include <variant>

namespace vek {

/// A length that follows a font: of the parent's size, or of the root's.
struct RelativeSize {
  enum class Unit { em, rem };

  double value = 1;
  Unit unit = Unit::em;

  static constexpr RelativeSize em(double value) { return {value, Unit::em}; }
  static constexpr RelativeSize rem(double value) { return {value, Unit::rem}; }

  bool operator==(RelativeSize const&) const = default;
};

/// Points, or a relative size.
using FontSize = std::variant<double, RelativeSize>;

}  // namespace vek
