// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace vek {

/// The program as it is installed: its name in the system, its version and the files that belong to
/// it.
struct Bundle {
  std::optional<std::string> bundleIdentifier = {};
  std::string version = {};

  /// That of this process.
  [[nodiscard]] static Bundle main();

  /// Where the file of that name is; nothing when the deployment has none or it is not there.
  [[nodiscard]] std::optional<std::filesystem::path> path(std::string_view resource) const;
};

}  // namespace vek
