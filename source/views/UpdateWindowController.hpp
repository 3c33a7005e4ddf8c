// SPDX-License-Identifier: MIT
#pragma once

#include <QQmlEngine>
#include <QQuickWindow>

#include <memory>

#include "views/UpdatePanel.hpp"

namespace vek {

/// Owns the window of updates, and shows there what the updater has to say. The window is made when
/// it is first wanted.
class UpdateWindowController : public QObject {
 public:
  /// The engine outlives this object.
  explicit UpdateWindowController(QQmlEngine& engine);

  /// Has the updater of the process show updates here. This object lives as long as the process
  /// checks for them.
  void present();

 private:
  enum class Focus { taken, left };

  void show(Focus focus);

  QQmlEngine& engine_;
  UpdatePanel panel_;
  std::unique_ptr<QQuickWindow> window_;
};

}  // namespace vek
