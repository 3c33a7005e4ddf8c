// SPDX-License-Identifier: MIT
#include "platform/DesktopNotifications.hpp"

#include <vector>

#include "platform/Log.hpp"
#include "platform/UserNotificationCenter.hpp"
#include "support/Environment.hpp"
#include "support/NotificationDaemon.hpp"
#include "support/SessionBus.hpp"

namespace vek {
namespace {

using test::NotificationDaemon;
using testing::HasSubstr;
using testing::Optional;
using testing::StartsWith;

NotificationRequest saying(std::string body) {
  return {.identifier = "update", .content = {.title = "Title", .body = std::move(body)}};
}

class DesktopNotificationsTest : public testing::Test {
 protected:
  test::SessionBus bus_;
  test::EnvironmentVariable address_{"DBUS_SESSION_BUS_ADDRESS", bus_.address()};
  DesktopNotifications notifications_;
};

TEST_F(DesktopNotificationsTest, AreShownReplacedAndWithdrawn) {
  NotificationDaemon daemon(bus_.address());
  notifications_.withdraw("update");
  notifications_.show(saying("a < b & c"));
  auto const shown = daemon.nextCall();
  EXPECT_THAT(
      shown,
      Optional(StartsWith(R"(Notify "VEK" 0 "com.vek.app" "Title" "a &lt; b &amp; c" [] {)")));
  EXPECT_THAT(shown, Optional(HasSubstr(R"("urgency": 1)")));
  EXPECT_THAT(shown, Optional(HasSubstr(R"("desktop-entry": "com.vek.app")")));
  notifications_.show(saying("second"));
  EXPECT_THAT(daemon.nextCall(), Optional(std::string("CloseNotification 1")));
  EXPECT_THAT(daemon.nextCall(), Optional(HasSubstr("second")));
  notifications_.withdraw("update");
  EXPECT_THAT(daemon.nextCall(), Optional(std::string("CloseNotification 2")));
  notifications_.withdraw("update");
  notifications_.show(saying("third"));
  EXPECT_THAT(daemon.nextCall(), Optional(HasSubstr("third")));
}

TEST_F(DesktopNotificationsTest, OfAnotherDaemonAreLeftAlone) {
  {
    NotificationDaemon const first(bus_.address());
    notifications_.show(saying("first"));
  }
  NotificationDaemon second(bus_.address());
  notifications_.withdraw("update");
  notifications_.show(saying("second"));
  EXPECT_THAT(second.nextCall(), Optional(HasSubstr("second")));
}

TEST_F(DesktopNotificationsTest, WithoutADaemonOnlyTheLogHears) {
  std::vector<std::string> told;
  LogRedirection const log(
      [&](LogLevel, std::string_view, std::string_view message) { told.emplace_back(message); },
      LogLevel::error);
  notifications_.show(saying("unheard"));
  notifications_.withdraw("update");
  ASSERT_EQ(told.size(), 1U);
  EXPECT_THAT(told.front(), HasSubstr("shows no notification"));
}

TEST_F(DesktopNotificationsTest, OfTheSessionAreShownAndWithdrawnInOrder) {
  NotificationDaemon daemon(bus_.address());
  auto const& center = UserNotificationCenter::current();
  center.requestAuthorization(UserNotificationAuthorizationOptions::alert);
  center.add(saying("short-lived"));
  center.removeDeliveredNotifications({"other", "update"});
  EXPECT_THAT(daemon.nextCall(), Optional(HasSubstr("short-lived")));
  EXPECT_THAT(daemon.nextCall(), Optional(std::string("CloseNotification 1")));
}

}  // namespace
}  // namespace vek
