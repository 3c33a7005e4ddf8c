// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "markdown/FontProperties.hpp"
#include "markdown/ThemeColor.hpp"

namespace vek {

/// How a piece of text looks, all styles applied.
struct TextAttributes {
  FontProperties font;
  ThemeColor foreground = ThemeColor::primary;
  std::optional<ThemeColor> background;
  bool isUnderlined = false;
  bool isStruckThrough = false;

  bool operator==(TextAttributes const&) const = default;
};

}  // namespace vek
