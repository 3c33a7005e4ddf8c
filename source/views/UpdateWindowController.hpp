// SPDX-License-Identifier: MIT
#pragma once

#include <QQmlEngine>
#include <QQuickWindow>

#include <functional>
#include <memory>
#include <string>

#include "views/UpdatePanel.hpp"

namespace vek {

/// Owns the window of updates, and shows there what the updater has to say. The window is made when
/// it is first wanted.
class UpdateWindowController : public QObject {
 public:
  /// The engine outlives this object. `open` shows a page in the browser, or throws.
  explicit UpdateWindowController(QQmlEngine& engine,
                                  std::function<Task<>(std::string url)> open = openInBrowser);

  /// Has the updater of the process show updates here. This object lives as long as the process
  /// checks for them.
  void present();

 private:
  static Task<> openInBrowser(std::string url);

  enum class Focus { taken, left };

  void show(Focus focus);

  QQmlEngine& engine_;
  UpdatePanel panel_;
  std::unique_ptr<QQuickWindow> window_;
};

}  // namespace vek
