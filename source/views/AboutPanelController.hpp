// SPDX-License-Identifier: MIT
#pragma once

#include <QQmlEngine>
#include <QQuickWindow>

#include <memory>

namespace vek {

/// Owns the panel that says what the program is. It is made when it is first wanted.
class AboutPanelController {
 public:
  /// The engine outlives this object.
  explicit AboutPanelController(QQmlEngine& engine) : engine_(engine) {}

  void orderFront();

 private:
  QQmlEngine& engine_;
  std::unique_ptr<QQuickWindow> panel_;
};

}  // namespace vek
