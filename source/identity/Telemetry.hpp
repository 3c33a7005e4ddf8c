// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

namespace vek {

/// What the identity provider is told of the program and the system: name and versions.
struct Telemetry {
  bool enabled = true;
  /// Told instead of the usual, in its encoded form.
  std::optional<std::string> info = {};

  /// The encoded form; nothing when telemetry is off.
  [[nodiscard]] std::optional<std::string> value() const;
};

}  // namespace vek
