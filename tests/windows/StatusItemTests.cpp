// SPDX-License-Identifier: MIT
// The status item in a real panel, and the main window that it opens and closes.
#include <gmock/gmock.h>

#include <csignal>

#include "support/Desktop.hpp"

namespace vek::test {
namespace {

/// Below the right end of the panel, whose edge is a line of its own.
constexpr Point firstPlace{Desktop::width - 260, Desktop::panelHeight + 1 + 20};

class StatusItem : public testing::Test {
 protected:
  std::string shownWindow() {
    EXPECT_TRUE(eventually([this] { return desktop.window("VEK").has_value(); })) << desktop.log();
    return desktop.window("VEK").value_or("");
  }
  bool isHidden() {
    return eventually([this] { return !desktop.window("VEK"); });
  }
  Point shownItem() {
    EXPECT_TRUE(eventually([this] { return desktop.statusItem().has_value(); })) << desktop.log();
    return desktop.statusItem().value_or(Point{});
  }

  Desktop desktop;
};

TEST_F(StatusItem, AClickShowsTheWindowInFrontAndTheNextOneHidesIt) {
  desktop.startPanel();
  auto const vek = desktop.startVek();
  auto const item = shownItem();
  desktop.settle();
  EXPECT_FALSE(desktop.window("VEK")) << "it is shown before it is asked for";
  auto const other = desktop.start({"xmessage", "-title", "other", "text"});
  ASSERT_TRUE(eventually([&] { return desktop.window("other").has_value(); }));

  desktop.click(item);
  auto const window = shownWindow();
  EXPECT_TRUE(eventually([&] { return desktop.activeWindow() == window; }));
  EXPECT_EQ(desktop.position(window), firstPlace);
  EXPECT_FALSE(desktop.isInTaskbar(window));
  desktop.activate(desktop.window("other").value_or(""));
  EXPECT_EQ(desktop.topWindow(), window) << "it stays above the others";
  desktop.click(item);
  EXPECT_TRUE(isHidden());
  desktop.click(item);
  EXPECT_TRUE(eventually([&] { return desktop.activeWindow() == shownWindow(); }));
  EXPECT_FALSE(desktop.isInTaskbar(shownWindow()));
}

TEST_F(StatusItem, WithoutAStatusAreaTheWindowOpensAndALatePanelShowsTheItemStill) {
  auto const vek = desktop.startVek();
  auto const window = shownWindow();
  EXPECT_TRUE(desktop.isInTaskbar(window)) << "it could not be found again";
  desktop.startPanel();
  EXPECT_TRUE(eventually([&] { return !desktop.isInTaskbar(window); }));
  desktop.click(shownItem());
  EXPECT_TRUE(isHidden());
}

TEST_F(StatusItem, TheWindowStandsAfterARestartWhereItWasLeft) {
  auto vek = desktop.startVek();
  constexpr Point place{333, 222};
  desktop.move(shownWindow(), place);
  ASSERT_TRUE(eventually([&] { return desktop.position(shownWindow()) == place; }));
  vek->signal(SIGTERM);
  ASSERT_EQ(vek->wait(), 0) << desktop.log();

  vek = desktop.startVek();
  EXPECT_EQ(desktop.position(shownWindow()), place);
}

TEST_F(StatusItem, TheWindowIsRoundAsLongAsThereIsACompositor) {
  auto const vek = desktop.startVek();
  auto const corner = desktop.position(shownWindow());
  auto const isRound = [&] {
    return desktop.colour(corner) == desktop.colour({corner.x - 1, corner.y});
  };
  ASSERT_TRUE(eventually([&] { return !isRound(); }));
  for (int i = 0; i < 2; ++i) {
    auto const compositor = desktop.start({"xcompmgr"});
    EXPECT_TRUE(eventually(isRound));
    compositor->signal(SIGTERM);
    static_cast<void>(compositor->wait());
    EXPECT_TRUE(eventually([&] { return !isRound(); }));
  }
}

}  // namespace
}  // namespace vek::test
