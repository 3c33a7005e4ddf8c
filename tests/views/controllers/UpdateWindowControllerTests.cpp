// SPDX-License-Identifier: MIT
#include "views/UpdateWindowController.hpp"

#include <gtest/gtest.h>
#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <stdexcept>

#include "platform/StandardUserDriver.hpp"
#include "views/Views.hpp"

namespace vek::test {
namespace {

/// Shows all that the schedule finds.
struct Delegate : StandardUserDriverDelegate {
  bool supportsGentleScheduledUpdateReminders() override { return true; }
  bool standardUserDriverShouldHandleShowingScheduledUpdate(UpdateItem const&, bool) override {
    return true;
  }
  void standardUserDriverWillHandleShowingUpdate(bool, UpdateItem const&,
                                                 UserUpdateState const&) override {}
  void standardUserDriverDidReceiveUserAttentionForUpdate(UpdateItem const&) override {
    ++attention;
  }
  int attention = 0;
};

class UpdateWindowControllerTests : public testing::Test {
 protected:
  UpdateWindowControllerTests() { controller.present(); }

  Task<> open(std::string) {
    if (!hasBrowser) throw std::runtime_error("There is no browser.");
    co_return;
  }

  void showUpdate(UserUpdateState state) {
    driver.showUpdateFound({.item = {.version = Version::parse("1.1").value(),
                                     .displayVersionString = "1.1",
                                     .notes = {},
                                     .link = "https://vek.test"},
                            .installedVersion = "1.0",
                            .packageManager = {},
                            .choose = [this](UpdateChoice choice) { choices.push_back(choice); }},
                           state);
  }

  static QQuickWindow* window() {
    for (auto* each : QGuiApplication::topLevelWindows()) {
      if (each->title() == QStringLiteral("Update VEK")) return qobject_cast<QQuickWindow*>(each);
    }
    return nullptr;
  }
  static QQuickItem* part(char const* name) {
    return window()->findChild<QQuickItem*>(QString::fromLatin1(name));
  }
  static void press(char const* button) { QMetaObject::invokeMethod(part(button), "clicked"); }

  bool hasBrowser = true;
  std::vector<UpdateChoice> choices;
  Delegate delegate;
  StandardUserDriver driver{delegate};
  std::unique_ptr<QQmlEngine> engine = makeEngine();
  UpdateWindowController controller{*engine,
                                    [this](std::string url) { return open(std::move(url)); }};
};

TEST_F(UpdateWindowControllerTests, TheWindowStaysUntilThePageOfTheUpdateIsShown) {
  EXPECT_EQ(window(), nullptr) << "it is made when it is first wanted";
  hasBrowser = false;
  showUpdate({.userInitiated = true});
  press("getButton");
  ASSERT_TRUE(QTest::qWaitFor([] { return part("unopened")->isVisible(); }));
  EXPECT_TRUE(window()->isVisible());
  EXPECT_TRUE(choices.empty());
  hasBrowser = true;
  press("getButton");
  EXPECT_TRUE(QTest::qWaitFor([] { return !window()->isVisible(); }));
  EXPECT_EQ(choices, std::vector{UpdateChoice::get});
}

TEST_F(UpdateWindowControllerTests, AttentionIsThatTheWindowBecomesActive) {
  showUpdate({.userInitiated = false});
  EXPECT_TRUE(window()->isVisible());
  EXPECT_TRUE(window()->property("_q_showWithoutActivating").toBool());
  window()->requestActivate();
  EXPECT_TRUE(QTest::qWaitFor([this] { return delegate.attention > 0; }));
  window()->close();
  EXPECT_EQ(choices, std::vector{UpdateChoice::later});
  showUpdate({.userInitiated = true});
  EXPECT_TRUE(window()->isVisible()) << "a window that was closed comes again";
  EXPECT_FALSE(window()->property("_q_showWithoutActivating").toBool());
}

}  // namespace
}  // namespace vek::test
