// SPDX-License-Identifier: MIT
// What the menu's entries do on a real desktop.
#include <gmock/gmock.h>

#include <fstream>

#include "support/Desktop.hpp"
#include "support/LocalServices.hpp"

namespace vek::test {
namespace {

/// In the main window.
constexpr Point menuButton{215, 214};
/// Of the window of updates, while it checks.
constexpr int heightWithoutUpdate = 148;

class Menu : public testing::Test {
 protected:
  Menu() {
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
  void press(std::string const& keys) { static_cast<void>(desktop.run({"xdotool", "key", keys})); }

  LocalServices const services{{"--update-version", "9.9"}};
  Desktop desktop;
};

TEST_F(Menu, ShowsTheAboutPanelAndUpdatesInFrontAndQuits) {
  auto const vek = desktop.startVek();
  auto const place = desktop.position(inFront("VEK"));
  desktop.click({place.x + menuButton.x, place.y + menuButton.y});
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

}  // namespace
}  // namespace vek::test
