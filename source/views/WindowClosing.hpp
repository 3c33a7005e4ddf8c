// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QWindow>

#include <functional>
#include <utility>

namespace vek {

/// Tells each time that a window is about to close.
class WindowClosing : public QObject {
 public:
  /// Lives as long as the window.
  static void tell(QWindow& window, std::function<void()> windowWillClose) {
    window.installEventFilter(new WindowClosing(window, std::move(windowWillClose)));
  }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Close) windowWillClose_();
    return QObject::eventFilter(watched, event);
  }

 private:
  WindowClosing(QWindow& window, std::function<void()> windowWillClose)
      : QObject(&window), windowWillClose_(std::move(windowWillClose)) {}

  std::function<void()> windowWillClose_;
};

}  // namespace vek
