// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

namespace vek {

/// Hears from the updater when it checks by itself. Main thread.
class SoftwareUpdaterDelegate {
 public:
  SoftwareUpdaterDelegate() = default;
  SoftwareUpdaterDelegate(SoftwareUpdaterDelegate const&) = delete;
  SoftwareUpdaterDelegate& operator=(SoftwareUpdaterDelegate const&) = delete;
  virtual ~SoftwareUpdaterDelegate() = default;

  virtual void updaterWillScheduleUpdateCheckAfterDelay(std::chrono::milliseconds delay) = 0;
};

}  // namespace vek
