// SPDX-License-Identifier: MIT
#pragma once

#include <QQmlEngine>

#include <memory>
#include <vector>

#include "views/AppStore.hpp"
#include "views/SettingsWindowController.hpp"

namespace vek {

/// Shows the settings window while the state asks for it, and tells the state when it closes.
class SettingsController {
 public:
  /// Follows the store from now on. The engine outlives this object.
  SettingsController(QQmlEngine& engine, AppStore::Observed::Shared store);

  void windowWillClose(QWindow const& window);

  /// The window's controller, or null before its first use.
  [[nodiscard]] SettingsWindowController* windowController() { return settingsController.get(); }

 private:
  void isShowingSettingsIs(bool isShowing);
  [[nodiscard]] std::unique_ptr<SettingsWindowController> makeWindowController();

  QQmlEngine& engine_;
  AppStore::Observed::Shared store;
  SessionStore session_;
  std::unique_ptr<SettingsWindowController> settingsController;
  std::vector<Subscription> cancellables;
};

}  // namespace vek
