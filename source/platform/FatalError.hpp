// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace vek {

/// Stops the process with status 1, after `text` on stderr: for what no installation that works can
/// meet. Any thread.
[[noreturn]] void fatalError(std::string_view text);

}  // namespace vek
