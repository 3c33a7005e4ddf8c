// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>
#include <thread>

namespace vek {

/// Runs an action once after a while, on a thread of its own, unless the timer goes before. Who
/// destroys it waits for an action that is running; the action itself may destroy it.
class Timer {
 public:
  Timer(std::chrono::milliseconds delay, std::function<void()> action);
  Timer(Timer const&) = delete;
  Timer& operator=(Timer const&) = delete;
  ~Timer();

 private:
  std::jthread thread_;
};

}  // namespace vek
