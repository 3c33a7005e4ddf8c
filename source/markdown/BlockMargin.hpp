// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

namespace vek {

/// The room that a block asks for above and below, in points.
struct BlockMargin {
  std::optional<double> top = {};
  std::optional<double> bottom = {};

  bool operator==(BlockMargin const&) const = default;
};

}  // namespace vek
