// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "runtime/SharedText.hpp"

namespace vek {

enum class ColorScheme { light, dark };

/// An image of a text, before it is fetched.
struct RawImageData {
  std::string source;
  std::string alt;
  /// Where a press on it leads.
  std::optional<SharedText> destination = {};

  /// False when the fragment of its source names the other colour scheme.
  [[nodiscard]] bool isFor(ColorScheme scheme) const {
    std::string_view const other =
        scheme == ColorScheme::dark ? "#gh-light-mode-only" : "#gh-dark-mode-only";
    return !source.ends_with(other);
  }

  bool operator==(RawImageData const&) const = default;
};

}  // namespace vek
