// SPDX-License-Identifier: MIT
#pragma once

#include <mutex>

namespace vek {

/// Held by who starts a program, and by who sets a variable that no such program should inherit.
[[nodiscard]] inline std::unique_lock<std::mutex> heldEnvironment() {
  static auto* const mutex = new std::mutex;
  return std::unique_lock(*mutex);
}

}  // namespace vek
