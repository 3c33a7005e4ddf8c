// SPDX-License-Identifier: MIT
#include "features/MenuFeature.hpp"

#include "features/Application.hpp"
#include "runtime/Match.hpp"

namespace vek {

using Action = MenuFeature::Action;

Effect<Action> MenuFeature::reduce(State& state, Action const& action) const {
  return match(
      action,
      [&](Action::settingsMenuItemClicked) {
        state.isShowingSettings = !state.isShowingSettings;
        return Effect<Action>::none();
      },
      [](Action::quitMenuItemClicked) { return Effect<Action>::run(quitEffect); },
      [&](Action::checkForUpdatesMenuItemClicked) {
        return Effect<Action>::run([updater = updater](Send) { return checkEffect(updater); });
      },
      [](Action::aboutMenuItemClicked) { return Effect<Action>::run(aboutEffect); },
      [&](Action::settingsWindowCloseButtonClicked) {
        state.isShowingSettings = false;
        return Effect<Action>::none();
      });
}

Task<> MenuFeature::quitEffect(Send) {
  Application::shared().terminate();
  co_return;
}

Task<> MenuFeature::checkEffect(Client updater) {
  co_await updater->checkForUpdates();
}

Task<> MenuFeature::aboutEffect(Send) {
  Application::shared().orderFrontStandardAboutPanel();
  Application::shared().activate(ActivationOptions::activateIgnoringOtherApps);
  co_return;
}

}  // namespace vek
