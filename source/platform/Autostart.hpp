// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

namespace vek {

/// Whether the desktop starts the program when the user logs in, by the entry that the user's
/// desktop settings show and change, too. Throws std::system_error when it cannot be read.
[[nodiscard]] bool isAutostarted();

/// Has the desktop start this program file from the next log-in on. Throws std::system_error.
void startAtLogin(std::filesystem::path const& program);

/// Has the desktop leave it alone. Throws std::system_error.
void doNotStartAtLogin();

}  // namespace vek
