// SPDX-License-Identifier: MIT
#include "features/MenuFeature.hpp"

#include <gtest/gtest.h>

#include "features/AppFeature.hpp"
#include "features/Application.hpp"
#include "support/TestStore.hpp"

namespace vek {
namespace {

using test::TestStore;
using Feature = MenuFeature;
using State = Feature::State;
using Action = Feature::Action;
using Calls = std::vector<std::string>;

/// An application that writes down what it is asked, in place of the running one.
class RecordedApplication {
 public:
  RecordedApplication() {
    Application::shared() = {.terminate = [this] { add("terminate"); },
                             .orderFrontStandardAboutPanel = [this] { add("about panel"); },
                             .activate =
                                 [this](ActivationOptions options) {
                                   add("activate " + std::to_string(static_cast<int>(options)));
                                 }};
  }
  RecordedApplication(RecordedApplication const&) = delete;
  RecordedApplication& operator=(RecordedApplication const&) = delete;
  ~RecordedApplication() { Application::shared() = {}; }

  [[nodiscard]] Calls const& calls() const { return calls_; }

 private:
  void add(std::string call) {
    EXPECT_TRUE(MainQueue::shared().isMainThread());
    calls_.push_back(std::move(call));
  }

  Calls calls_;
};

void isShown(State& state) {
  state.isShowingSettings = true;
}
void isNotShown(State& state) {
  state.isShowingSettings = false;
}

TEST(MenuFeature, SettingsAreInvertedByTheirEntryAndClosedByTheirButton) {
  TestStore<Feature> store(State{}, Feature());
  store.send(Action::settingsMenuItemClicked{}, isShown);
  store.send(Action::settingsMenuItemClicked{}, isNotShown);
  store.send(Action::settingsWindowCloseButtonClicked{});
  store.send(Action::settingsMenuItemClicked{}, isShown);
  store.send(Action::settingsWindowCloseButtonClicked{}, isNotShown);
}

TEST(MenuFeature, QuitAndAboutAskTheApplicationAfterTheDrain) {
  RecordedApplication const application;
  TestStore<Feature> store(State{}, Feature());
  store.send(Action::quitMenuItemClicked{});
  EXPECT_THAT(application.calls(), testing::IsEmpty()) << "never within the drain";
  store.finish();
  EXPECT_EQ(application.calls(), Calls{"terminate"});
  TestStore<Feature> other(State{}, Feature());
  other.send(Action::aboutMenuItemClicked{});
  other.finish();
  EXPECT_EQ(application.calls(), (Calls{"terminate", "about panel", "activate 2"}));
}

TEST(MenuFeature, ACheckForUpdatesIsAwaited) {
  int checks = 0;
  Updater client;
  client.checkForUpdates = [&]() -> Task<> {
    ++checks;
    co_return;
  };
  TestStore<Feature> store(State{}, [&](DependencyValues& values) { values.set(updater, client); });
  store.send(Action::checkForUpdatesMenuItemClicked{});
  store.finish();
  EXPECT_EQ(checks, 1);
}

TEST(MenuFeature, HasItsSlotInTheRootWhichAddsNothing) {
  RecordedApplication const application;
  TestStore<AppFeature> store(AppFeature::State{}, AppFeature());
  store.send(AppFeature::Action::menu{Action::settingsMenuItemClicked{}},
             [](AppFeature::State& state) { state.menu.isShowingSettings = true; });
  store.send(AppFeature::Action::menu{Action::quitMenuItemClicked{}});
  store.finish();
  EXPECT_EQ(application.calls(), Calls{"terminate"});
}

}  // namespace
}  // namespace vek
