// SPDX-License-Identifier: MIT
#include "platform/UserNotificationCenter.hpp"

#include <utility>

#include "platform/DesktopNotifications.hpp"
#include "runtime/SerialQueue.hpp"

namespace vek {
namespace {

/// The notifications with the thread on which the desktop is waited for.
struct Center {
  DesktopNotifications notifications;
  SerialQueue queue{"notifications"};
};

Center& center() {
  static auto* const instance = new Center;
  return *instance;
}

UserNotificationCenter make() {
  return {.requestAuthorization =
              [](UserNotificationAuthorizationOptions) {
                // Desktops put no such question; their settings say which programs may notify.
              },
          .add =
              [](NotificationRequest request) {
                center().queue.post(
                    [request = std::move(request)] { center().notifications.show(request); });
              },
          .removeDeliveredNotifications =
              [](std::vector<std::string> identifiers) {
                center().queue.post([identifiers = std::move(identifiers)] {
                  for (auto const& each : identifiers) center().notifications.withdraw(each);
                });
              }};
}

}  // namespace

UserNotificationCenter const& UserNotificationCenter::current() {
  static auto const* const instance = new UserNotificationCenter(make());
  return *instance;
}

}  // namespace vek
