// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

namespace vek {

/// How much a notification may disturb.
enum class UserNotificationInterruptionLevel : std::uint8_t {
  passive,
  active,
  timeSensitive,
  critical
};

/// What a notification says.
struct MutableNotificationContent {
  std::string title;
  std::string body;
  UserNotificationInterruptionLevel interruptionLevel = UserNotificationInterruptionLevel::active;
};

/// A notification that is to be shown at once, in place of an earlier one of its identifier.
struct NotificationRequest {
  std::string identifier;
  MutableNotificationContent content;
};

}  // namespace vek
