// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace vek {

/// The version of the running system's kernel, such as "6.1".
[[nodiscard]] std::string systemVersion();

}  // namespace vek
