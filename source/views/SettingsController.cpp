// SPDX-License-Identifier: MIT
#include "views/SettingsController.hpp"

#include <QCoreApplication>

#include <utility>

#include "views/WindowClosing.hpp"

namespace vek {

namespace {

QString translated(char const* text) {
  return QCoreApplication::translate("SettingsWindow", text);
}

}  // namespace

SettingsController::SettingsController(QQmlEngine& engine, AppStore::Observed::Shared rootStore)
    : engine_(engine),
      store(std::move(rootStore)),
      session_(store->scope<KeyPath<&AppFeature::State::session>,
                            CasePath<AppFeature::Action, AppFeature::Action::session>>()) {
  // Equal values are not left out: while the settings are wanted, each change of state brings them
  // to the front.
  auto const isShowing = store->publisher().map<bool>(
      [](AppFeature::State const& state) { return state.menu.isShowingSettings; });
  cancellables.push_back(
      isShowing.subscribe({[this](bool const& wanted) { isShowingSettingsIs(wanted); }, [] {}}));
}

void SettingsController::isShowingSettingsIs(bool isShowing) {
  if (!isShowing) return;
  if (!settingsController) settingsController = makeWindowController();
  settingsController->showWindow();
}

std::unique_ptr<SettingsWindowController> SettingsController::makeWindowController() {
  auto made = std::make_unique<SettingsWindowController>(
      engine_,
      std::vector<Pane>{
          {.identifier = QStringLiteral("general"),
           .title = translated(QT_TRANSLATE_NOOP("SettingsWindow", "General")),
           .toolbarIcon = QStringLiteral("gear"),
           .content = QStringLiteral("PreferencesGeneralView")},
          {.identifier = QStringLiteral("account"),
           .title = translated(QT_TRANSLATE_NOOP("SettingsWindow", "Account")),
           .toolbarIcon = QStringLiteral("person-circle"),
           .content = QStringLiteral("PreferencesAccountView"),
           .contentProperties = {{QStringLiteral("store"), QVariant::fromValue(&session_)}}}});
  auto& window = made->window();
  WindowClosing::tell(window, [this, &window] { windowWillClose(window); });
  return made;
}

void SettingsController::windowWillClose(QWindow const& window) {
  if (!settingsController || &settingsController->window() != &window) return;
  store->send(AppFeature::Action::menu{MenuFeature::Action::settingsWindowCloseButtonClicked{}});
}

}  // namespace vek
