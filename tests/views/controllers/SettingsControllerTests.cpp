// SPDX-License-Identifier: MIT
#include "views/SettingsController.hpp"

#include <gtest/gtest.h>
#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QScreen>
#include <QTest>

#include "Clients/RecognitionProvider.hpp"
#include "platform/UserDefaults.hpp"
#include "views/Views.hpp"

namespace vek::test {
namespace {

using State = AppFeature::State;
using Action = AppFeature::Action;
using Menu = MenuFeature::Action;

/// Keeps what the settings window needs of the root, and counts how often it was told of a close.
struct Reducer {
  std::shared_ptr<int> closes;

  Effect<Action> reduce(State& state, Action const& action) const {
    auto& isShowing = state.menu.isShowingSettings;
    if (auto const* menu = std::get_if<Action::menu>(&action.value)) {
      if (std::holds_alternative<Menu::settingsMenuItemClicked>(menu->action.value)) {
        isShowing = !isShowing;
      } else {
        isShowing = false;
        ++*closes;
      }
    } else if (std::holds_alternative<Action::session>(action.value)) {
      state.session.credentials.reset();
    }
    return Effect<Action>::none();
  }
};

class SettingsControllerTests : public testing::Test {
 protected:
  static State signedIn() {
    State state;
    state.session.credentials =
        Credentials({.accessToken = "secret", .tokenType = "Bearer", .expiresIn = {}});
    return state;
  }

  void clickSettings() {
    store->send(Action::menu{Menu::settingsMenuItemClicked{}});
    QCoreApplication::processEvents();
  }

  QQuickWindow& window() { return controller.windowController()->window(); }

  QObject* part(char const* name) {
    auto const* content = window().findChild<QObject*>(QStringLiteral("content"));
    return content->property("item").value<QObject*>()->findChild<QObject*>(
        QString::fromLatin1(name));
  }

  std::shared_ptr<int> closes = std::make_shared<int>(0);
  std::unique_ptr<QQmlEngine> engine = makeEngine();
  AppStore::Observed::Shared store =
      Store<State, Action>::make(signedIn(), [this] { return Reducer{closes}; });
  SettingsController controller{*engine, store};
};

TEST_F(SettingsControllerTests, TheFirstClickMakesTheWindowAndLaterOnesFollowTheFlag) {
  EXPECT_EQ(controller.windowController(), nullptr);
  clickSettings();
  ASSERT_NE(controller.windowController(), nullptr);
  EXPECT_TRUE(window().isVisible());
  EXPECT_EQ(window().title(), QStringLiteral("General"));
  auto const offset =
      window().geometry().center() - window().screen()->availableGeometry().center();
  EXPECT_LE(offset.manhattanLength(), 2);
  EXPECT_TRUE(QTest::qWaitFor([&] { return window().isActive(); }));

  QWindow other;
  other.show();
  other.requestActivate();
  ASSERT_TRUE(QTest::qWaitFor([&] { return other.isActive(); }));
  clickSettings();
  EXPECT_TRUE(window().isVisible());
  EXPECT_TRUE(other.isActive()) << "it stays where it is";
  clickSettings();
  EXPECT_TRUE(QTest::qWaitFor([&] { return window().isActive(); }));
}

TEST_F(SettingsControllerTests, AnyChangeBringsTheWantedWindowForward) {
  clickSettings();
  window().hide();
  store->send(Action::session{SessionFeature::Action::logout{}});
  QCoreApplication::processEvents();
  EXPECT_TRUE(window().isVisible());
  clickSettings();
  window().hide();
  store->send(Action::session{SessionFeature::Action::logout{}});
  QCoreApplication::processEvents();
  EXPECT_FALSE(window().isVisible());
}

TEST_F(SettingsControllerTests, ClosingIsToldAndTheNextShowingBeginsWithGeneralAtTheSavedPlace) {
  clickSettings();
  controller.windowController()->changeContentView(QStringLiteral("account"));
  EXPECT_EQ(window().title(), QStringLiteral("Account"));
  window().setPosition(40, 50);
  auto const savedPlace = [] {
    return UserDefaults::standard().string("NSWindow Frame VEK.Settings").value_or("").substr(0, 6);
  };
  EXPECT_TRUE(QTest::qWaitFor([&] { return savedPlace() == "40 50 "; }));
  window().close();
  EXPECT_EQ(*closes, 1);
  EXPECT_FALSE(store->state().menu.isShowingSettings);

  clickSettings();
  EXPECT_EQ(window().title(), QStringLiteral("General"));
  EXPECT_EQ(window().position(), QPoint(40, 50));

  auto const another = std::make_unique<SettingsController>(*engine, store);
  QCoreApplication::processEvents();
  EXPECT_EQ(another->windowController()->window().position(), QPoint(40, 50));
  another->windowWillClose(window());
  EXPECT_EQ(*closes, 1);
}

TEST_F(SettingsControllerTests, TheChoiceIsStoredAtOnceAndFollowsOtherPrograms) {
  clickSettings();
  auto* picker = part("providerPicker");
  auto* note = part("providerNote");
  EXPECT_EQ(picker->property("displayText"), QStringLiteral("Apple"));
  EXPECT_EQ(note->property("text"),
            QStringLiteral("The recognition by Apple is done on the device."));
  ASSERT_TRUE(QMetaObject::invokeMethod(picker, "activated", Q_ARG(int, 1)));
  EXPECT_EQ(recognitionProviderSetting(), RecognitionProvider::deepgram);
  EXPECT_EQ(picker->property("displayText"), QStringLiteral("Deepgram"));
  EXPECT_EQ(note->property("text"),
            QStringLiteral("The recognition by Deepgram is performed on a server."));

  // As another program of the user does it.
  setRecognitionProviderSetting(RecognitionProvider::apple);
  EXPECT_TRUE(QTest::qWaitFor([&] { return picker->property("currentIndex") == 0; }));
  EXPECT_EQ(note->property("text"),
            QStringLiteral("The recognition by Apple is done on the device."));
}

TEST_F(SettingsControllerTests, TheAccountShowsItsTokenCopiesItAndLogsOut) {
  clickSettings();
  controller.windowController()->changeContentView(QStringLiteral("account"));
  EXPECT_EQ(part("accessToken")->property("text"), QStringLiteral("secret"));
  QMetaObject::invokeMethod(part("copyButton"), "clicked");
  auto const* copied = QGuiApplication::clipboard()->mimeData();
  EXPECT_EQ(copied->text(), QStringLiteral("Bearer secret"));
  EXPECT_FALSE(copied->hasHtml());
  QMetaObject::invokeMethod(part("logoutButton"), "clicked");
  EXPECT_FALSE(part("tokenRow")->property("visible").toBool());
  EXPECT_FALSE(part("logoutButton")->property("visible").toBool());
}

}  // namespace
}  // namespace vek::test
