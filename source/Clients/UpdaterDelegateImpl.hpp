// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <utility>

#include "platform/SoftwareUpdaterDelegate.hpp"
#include "platform/StandardUserDriverDelegate.hpp"
#include "platform/UserNotificationCenter.hpp"

namespace vek {

/// Tells the user of an update that the schedule has found by a notification too, until the user
/// turns to it.
class UpdaterDelegate final : public SoftwareUpdaterDelegate, public StandardUserDriverDelegate {
 public:
  explicit UpdaterDelegate(UserNotificationCenter center) : center_(std::move(center)) {}

  std::string const updateNotificationIdentifier = "com.vek.app.update";

  void updaterWillScheduleUpdateCheckAfterDelay(std::chrono::milliseconds delay) override;
  [[nodiscard]] bool supportsGentleScheduledUpdateReminders() override { return true; }
  [[nodiscard]] bool standardUserDriverShouldHandleShowingScheduledUpdate(
      UpdateItem const& update, bool inImmediateFocus) override;
  void standardUserDriverWillHandleShowingUpdate(bool handleShowingUpdate, UpdateItem const& update,
                                                 UserUpdateState const& state) override;
  void standardUserDriverDidReceiveUserAttentionForUpdate(UpdateItem const& update) override;

 private:
  UserNotificationCenter center_;
};

}  // namespace vek
