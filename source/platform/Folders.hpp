// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string_view>

namespace vek {

/// The user's home folder.
[[nodiscard]] std::filesystem::path homeFolder();

/// Where programs keep data (XDG_DATA_HOME) and settings (XDG_CONFIG_HOME) of the user.
[[nodiscard]] std::filesystem::path dataHome();
[[nodiscard]] std::filesystem::path configHome();

/// Where processes of the user find each other while the user is logged in (XDG_RUNTIME_DIR); the
/// data home where the system has no such place.
[[nodiscard]] std::filesystem::path runtimeFolder();

/// `text` with a leading "~/" replaced by the home folder, and "~/.local/share/" by the data home.
[[nodiscard]] std::filesystem::path expandedPath(std::string_view text);

}  // namespace vek
