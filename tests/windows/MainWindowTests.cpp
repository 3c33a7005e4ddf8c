// SPDX-License-Identifier: MIT
// The main window on a real desktop: what its menu does, and that it grows with what it shows.
#include <gmock/gmock.h>

#include <fstream>

#include "support/Desktop.hpp"
#include "support/LocalServices.hpp"
#include "support/StoredCredentials.hpp"

namespace vek::test {
namespace {

/// In the main window.
constexpr Point menuButton{215, 214};
constexpr Point listButton{25, 214};
constexpr int listHeight = 181;
/// Of the window of updates, while it checks.
constexpr int heightWithoutUpdate = 148;

class MainWindow : public testing::Test {
 protected:
  MainWindow() {
    std::ofstream(desktop.folder() / "deployment.json")
        << R"({"backendURL": ")" << services.url() << R"(", "updateFeedURL": ")" << services.url()
        << R"(/updates/feed.json", "updatePublicKey": ")"
        << (services.folder() / "update-key.pem").string() << R"(", "authConfiguration": ")"
        << (services.folder() / "Auth0.plist").string() << R"(", "trustedAuthority": ")"
        << services.authority().string() << R"("})";
  }

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
