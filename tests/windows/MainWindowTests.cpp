// SPDX-License-Identifier: MIT
// The main window on a real desktop: what its menu does, that it grows with what it shows, and the
// windows beside it.
#include <gmock/gmock.h>

#include <csignal>

#include "support/NotificationDaemon.hpp"
#include "support/StoredCredentials.hpp"
#include "windows/Deployment.hpp"

namespace vek::test {
namespace {

/// In the main window.
constexpr Point menuButton{215, 214};
constexpr Point listButton{25, 214};
constexpr Point settingsEntry{66, 141};
constexpr int listHeight = 181;
/// Of the window of updates, while it checks.
constexpr int heightWithoutUpdate = 148;

using testing::AllOf;
using testing::HasSubstr;
using testing::Optional;
using testing::StartsWith;

class MainWindow : public testing::Test {
 protected:
  MainWindow() { deploy(desktop, services); }

  /// The window, in front.
  std::string inFront(std::string const& title) {
    std::optional<std::string> window;
    EXPECT_TRUE(eventually([&] {
      window = desktop.window(title);
      return window && desktop.activeWindow() == *window;
    })) << title
        << '\n'
        << desktop.log();
    return window.value_or("");
  }
  bool isGone(std::string const& title) {
    return eventually([&] { return !desktop.window(title); });
  }
  int height(std::string const& window) {
    auto const geometry = desktop.run({"xdotool", "getwindowgeometry", "--shell", window});
    return std::stoi(geometry.substr(geometry.find("HEIGHT=") + 7));
  }
  void click(Point window, Point place) { desktop.click({window.x + place.x, window.y + place.y}); }
  /// The settings window, in front.
  std::string shownSettings() {
    // Each other time it stays where it is.
    EXPECT_TRUE(eventually([&] {
      auto const window = desktop.window("VEK");
      if (!window) return false;
      desktop.activate(*window);
      auto const place = desktop.position(*window);
      click(place, menuButton);
      // The menu takes a click once it has come up.
      return eventually(
          [&] {
            click(place, settingsEntry);
            return eventually([&] { return desktop.activeWindow() == desktop.window("General"); },
                              std::chrono::seconds(1));
          },
          std::chrono::seconds(3));
    })) << desktop.log();
    return desktop.window("General").value_or("");
  }
  void press(std::string const& keys) { static_cast<void>(desktop.run({"xdotool", "key", keys})); }

  LocalServices const services{{"--update-version", "9.9"}};
  Desktop desktop;
};

TEST_F(MainWindow, ItsMenuShowsTheAboutPanelAndUpdatesInFrontAndQuits) {
  auto const vek = desktop.startVek();
  auto const place = desktop.position(inFront("VEK"));
  click(place, menuButton);
  // The menu takes the keys once it has come up.
  ASSERT_TRUE(eventually([&] {
    press("Down");
    press("Return");
    return desktop.window("About VEK").has_value();
  }));
  inFront("About VEK");
  press("Escape");
  EXPECT_TRUE(isGone("About VEK"));

  inFront("VEK");
  press("ctrl+comma");
  auto const update = inFront("Update VEK");
  EXPECT_TRUE(eventually([&] { return height(update) > heightWithoutUpdate; }))
      << "it grows with what it shows";
  press("Escape");
  EXPECT_TRUE(isGone("Update VEK"));

  inFront("VEK");
  press("ctrl+q");
  EXPECT_EQ(vek->wait(), 0) << desktop.log();
}

TEST_F(MainWindow, SettingsComeForwardAndStandAfterARestartWhereTheyWereLeft) {
  auto vek = desktop.startVek();
  auto const first = shownSettings();
  EXPECT_EQ(shownSettings(), first);
  auto const before = desktop.position(first);
  desktop.move(first, {333, 222});
  ASSERT_TRUE(eventually([&] { return desktop.position(first) != before; }));
  auto const place = desktop.position(first);
  vek->signal(SIGTERM);
  ASSERT_EQ(vek->wait(), 0) << desktop.log();

  vek = desktop.startVek();
  EXPECT_EQ(desktop.position(shownSettings()), place);
}

TEST_F(MainWindow, AnUpdateThatTheScheduleFindsIsNotifiedUntilTheUserTurnsToIt) {
  deploy(desktop, services, {{"updateInterval", "1"}});
  NotificationDaemon daemon(desktop.environment["DBUS_SESSION_BUS_ADDRESS"]);
  desktop.startPanel();
  auto const other = desktop.start({"xmessage", "-title", "other", "text"});
  auto const busyWith = inFront("other");
  auto const vek = desktop.startVek();
  EXPECT_THAT(daemon.nextCall(std::chrono::seconds(60)),
              Optional(AllOf(StartsWith("Notify"), HasSubstr("Version 9.9 is now available"))));
  ASSERT_TRUE(eventually([&] { return desktop.window("Update VEK").has_value(); }));
  EXPECT_EQ(desktop.activeWindow(), busyWith) << "it takes no keys from others";
  desktop.activate(desktop.window("Update VEK").value_or(""));
  EXPECT_THAT(daemon.nextCall(), Optional(std::string("CloseNotification 1")));
}

TEST_F(MainWindow, GrowsByTheListAndShrinksAgain) {
  storeCredentials(services, desktop.folder() / "data");
  auto const vek = desktop.startVek();
  auto const window = inFront("VEK");
  auto const place = desktop.position(window);
  int const closed = height(window);
  // The button comes with the user, whom the program finds signed in.
  EXPECT_TRUE(eventually([&] {
    click(place, listButton);
    return eventually([&] { return height(window) == closed + listHeight; },
                      std::chrono::seconds(2));
  })) << desktop.log();
  click(place, listButton);
  EXPECT_TRUE(eventually([&] { return height(window) == closed; }));
}

}  // namespace
}  // namespace vek::test
