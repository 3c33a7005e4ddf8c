// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

namespace vek {

/// An image of a text, before it is fetched.
struct RawImageData {
  std::string source;
  std::string alt;
  /// Where a press on it leads.
  std::optional<std::string> destination = {};

  bool operator==(RawImageData const&) const = default;
};

}  // namespace vek
