// SPDX-License-Identifier: MIT
#pragma once

#include <QQmlEngine>
#include <QQuickWindow>

#include <memory>

#include "views/AppStore.hpp"
#include "views/Compositor.hpp"
#include "views/FrameAutosave.hpp"
#include "views/Taskbar.hpp"

namespace vek {

/// Owns the main window. Closing it only takes it off the screen.
class MainWindowController {
 public:
  /// The window is not shown yet. The engine outlives this object.
  MainWindowController(QQmlEngine& engine, AppStore::Observed::Shared store);

  /// Hides the window when it is on screen, otherwise brings it to the front.
  void didClickStatusItem();

  void show();
  /// Where the window is found again when it is out of sight, besides the status item.
  void setTaskbar(Taskbar taskbar);

 private:
  AppStore::Observed::Shared store;
  AppStore viewStore_;
  Compositor compositor_;
  Taskbar taskbar_ = Taskbar::listed;
  std::unique_ptr<QQuickWindow> window;
  FrameAutosave frame_;
};

}  // namespace vek
