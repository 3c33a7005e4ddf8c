// SPDX-License-Identifier: MIT
#include "Clients/UpdaterDelegateImpl.hpp"

namespace vek {

void UpdaterDelegate::updaterWillScheduleUpdateCheckAfterDelay(std::chrono::milliseconds) {
  // So that the question comes before the first notification.
  center_.requestAuthorization(UserNotificationAuthorizationOptions::alert);
}

bool UpdaterDelegate::standardUserDriverShouldHandleShowingScheduledUpdate(UpdateItem const&,
                                                                           bool) {
  return true;
}

void UpdaterDelegate::standardUserDriverWillHandleShowingUpdate(bool, UpdateItem const& update,
                                                                UserUpdateState const& state) {
  if (state.userInitiated) return;
  center_.add({.identifier = updateNotificationIdentifier,
               .content = {.title = "A new update is available",
                           .body = "Version " + update.displayVersionString + " is now available",
                           .interruptionLevel = UserNotificationInterruptionLevel::active}});
}

void UpdaterDelegate::standardUserDriverDidReceiveUserAttentionForUpdate(UpdateItem const&) {
  center_.removeDeliveredNotifications({updateNotificationIdentifier});
}

}  // namespace vek
