// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/NotificationRequest.hpp"

namespace vek {

/// In which ways a program wants to notify the user.
enum class UserNotificationAuthorizationOptions : std::uint8_t { badge = 1, sound = 2, alert = 4 };

/// The notifications that the desktop shows for this program. Operations return at once and are
/// done in order; those that fail are told to the log. Any thread.
struct UserNotificationCenter {
  std::function<void(UserNotificationAuthorizationOptions)> requestAuthorization;
  std::function<void(NotificationRequest)> add;
  std::function<void(std::vector<std::string> identifiers)> removeDeliveredNotifications;

  /// That of the session that the process runs in.
  static UserNotificationCenter const& current();
};

}  // namespace vek
