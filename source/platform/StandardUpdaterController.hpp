// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "platform/SoftwareUpdater.hpp"
#include "platform/StandardUserDriver.hpp"

namespace vek {

enum class StartingUpdater { no, yes };

/// An updater with the standard way to show what it finds. Main thread.
class StandardUpdaterController {
 public:
  /// Both delegates outlive the controller.
  StandardUpdaterController(StartingUpdater starting, SoftwareUpdaterDelegate& updaterDelegate,
                            StandardUserDriverDelegate& userDriverDelegate,
                            SoftwareUpdater::Parts parts = SoftwareUpdater::Parts::live())
      : driver_(userDriverDelegate),
        updater_(std::make_shared<SoftwareUpdater>(std::move(parts), driver_, updaterDelegate)) {
    if (starting == StartingUpdater::yes) updater_->start();
  }

  void checkForUpdates() { updater_->checkForUpdates(); }
  [[nodiscard]] SoftwareUpdater& updater() { return *updater_; }

 private:
  StandardUserDriver driver_;
  std::shared_ptr<SoftwareUpdater> updater_;
};

}  // namespace vek
