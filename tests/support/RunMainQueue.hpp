// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>
#include <thread>

#include "runtime/MainQueue.hpp"

namespace vek::test {

/// Runs the main thread's work until `isDone`, which is asked before each piece of work. False when
/// that takes longer than `limit`.
inline bool runMainQueueUntil(std::function<bool()> const& isDone,
                              std::chrono::milliseconds limit = std::chrono::seconds(5)) {
  auto const deadline = std::chrono::steady_clock::now() + limit;
  while (!isDone()) {
    if (MainQueue::shared().runPending(1) == 1) continue;
    if (std::chrono::steady_clock::now() > deadline) return false;
    std::this_thread::sleep_for(std::chrono::microseconds(200));
  }
  return true;
}

/// Runs what waits on the main thread, and what that posts there.
inline void runMainQueue() {
  while (MainQueue::shared().runPending() > 0) {
  }
}

}  // namespace vek::test
