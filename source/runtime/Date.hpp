// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

namespace vek {

/// A point in time.
using Date = std::chrono::system_clock::time_point;

}  // namespace vek
