// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

#include "runtime/SharedText.hpp"

namespace vek {

/// An image of a text, before it is fetched.
struct RawImageData {
  std::string source;
  std::string alt;
  /// Where a press on it leads.
  std::optional<SharedText> destination = {};

  bool operator==(RawImageData const&) const = default;
};

}  // namespace vek
